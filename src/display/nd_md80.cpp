// nd_md80.cpp: the MD80_EHSI_NB page: four modes on one 266 x 232 canvas,
// plain furniture in white and green over the shared map layers.
//
//   0 ROSE   full rose round the aircraft, the map, the VOR/ILS course needle
//   1 ARC    the expanded arc, the map, the course needle
//   3 MAP    the expanded arc, the map, no course needle (the route leads)
//   2 VOR/ILS  the map-less mode: the full-rose HSI a pilot flies a radial or
//            a localiser on, with its deviation bar, glideslope scale on an
//            ILS, the tuned frequency and the DME; named by the receiver
//
// The panel's ADF switch gives the bearing pointer to the ADF (cyan, while
// the ADF has a signal) instead of VOR 1 (green), in every mode.
//
// Index:
//   [SECTION] Map view
//   [SECTION] Compass furniture
//   [SECTION] Course and bearing pointers
//   [SECTION] Texts
//   [SECTION] The page
#include "display/nd_md80.h"

#include "display/display_state.h"
#include "display/map_symbols.h"
#include "display/traffic.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>
#include <iterator>

namespace {
constexpr double kNeedleFullScale = 127;     // NAV1 needle token at two dots
constexpr double kGlideFullScale = 119;      // glideslope needle token at two dots
constexpr double kAdfSignalMin = 1.0;        // the ADF pointer shows above this signal
constexpr double kArcHalfSweep = 45;         // degrees of the arc each side of the top
constexpr int kMapClipBottom = 206;          // the arc's map ends above the bottom texts
constexpr int kGlideScaleX = 246;            // the HSI's glideslope scale column
constexpr int kDotSpacing = 18;              // pixels between deviation dots (arc)
constexpr int kRoseDotSpacing = 14;          // pixels between deviation dots (rose)

float F(double v) { return static_cast<float>(v); }
int Mode() {
    int mode = g_display.md80_mode;
    return mode >= kMd80ModeRose && mode <= kMd80ModeMap ? mode : kMd80ModeMap;
}
bool IsRose(int mode) { return mode == kMd80ModeRose || mode == kMd80ModeHsi; }
bool HasCourseNeedle(int mode) { return mode != kMd80ModeMap; }
}  // namespace

bool Md80ModeHasMap(int mode) { return mode != kMd80ModeHsi; }

// [SECTION] Map view
MapView Md80MapView(const DisplaySurface& surface) {
    MapView view;
    int mode = Mode();
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    view.instance = surface.instance;
    view.range = g_display.md80_range;
    int radius = IsRose(mode) ? kMd80RoseRadius : kMd80ArcRadius;
    view.PixelsPerNm = radius / view.range;
    view.MapRadiusPx = radius;
    view.CentreX = kMd80CentreX;
    view.CentreY = IsRose(mode) ? kMd80RoseCentreY : kMd80ArcCentreY;
    view.MapHeading = g_sim.heading_true;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    view.plan_mode = false;
    return view;
}

// [SECTION] Compass furniture
namespace {
// The card: ticks of 8 and 4, every digit of 11 under its tick.
constexpr CompassCardStyle kMd80Card{8, 4, 11, 11, 30, 30, true};

// The compass of the mode: a full circle or the arc, the lubber line at its
// top, the half-range ring dashed (on map modes), and the aircraft symbol.
void DrawCompass(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading) {
    bool rose = IsRose(mode);
    float cx = kMd80CentreX, cy = F(rose ? kMd80RoseCentreY : kMd80ArcCentreY);
    float r = F(rose ? kMd80RoseRadius : kMd80ArcRadius);
    double sweep = rose ? 180 : kArcHalfSweep;
    int left = static_cast<int>(cx - r), top = static_cast<int>(cy - r), size = static_cast<int>(2 * r);
    gdi::Pen ring(palette::kWhite, 1.5f);
    if (rose)
        g.DrawEllipse(ring, left, top, size, size);
    else
        g.DrawArc(ring, left, top, size, size, F(270 - sweep), F(2 * sweep));
    DrawCompassCard(g, surface, cx, cy, r, heading, -sweep, sweep, kMd80Card);
    DrawHeadingBugNotch(g, surface, cx, cy, r, heading, sweep, 6);
    if (Md80ModeHasMap(mode)) {
        gdi::Pen dashed(palette::kWhite, 1.0f);
        dashed.SetDash(DashStyleDash);
        int half = static_cast<int>(r / 2);
        if (rose)
            g.DrawEllipse(dashed, static_cast<int>(cx) - half, static_cast<int>(cy) - half, 2 * half, 2 * half);
        else
            g.DrawArc(dashed, static_cast<int>(cx) - half, static_cast<int>(cy) - half, 2 * half, 2 * half,
                      F(270 - sweep), F(2 * sweep));
    }
    // The lubber line over the card's top.
    gdi::Pen lubber(palette::kWhite, 2.0f);
    g.DrawLine(lubber, cx, cy - r - 8, cx, cy - r + 2);
    // The aircraft: a plain white outline, at the centre.
    gdi::Pen ship(palette::kWhite, 2.0f);
    INT x = static_cast<INT>(cx), y = static_cast<INT>(cy);
    if (rose && !Md80ModeHasMap(mode)) {
        // The HSI's fixed aircraft: fuselage, wings, tail.
        g.DrawLine(ship, F(x), F(y - 12), F(x), F(y + 12));
        g.DrawLine(ship, F(x - 12), F(y - 2), F(x + 12), F(y - 2));
        g.DrawLine(ship, F(x - 5), F(y + 10), F(x + 5), F(y + 10));
    } else {
        const GpPoint triangle[] = {{x, y - 12}, {x + 6, y + 4}, {x - 6, y + 4}};
        g.DrawPolygon(ship, triangle, 3);
    }
}
}  // namespace

// [SECTION] Course and bearing pointers
namespace {
// The tuned receiver's course needle through the compass centre, with its
// deviation bar and dots: green for a VOR, magenta for a localiser.
void DrawCourseNeedle(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading) {
    double course = g_sim.nav1_obs;
    double dots = g_sim.nav1_needle / kNeedleFullScale * 2;
    if (!std::isfinite(course) || !std::isfinite(dots)) return;
    if (dots > 2.5) dots = 2.5;
    if (dots < -2.5) dots = -2.5;
    bool rose = IsRose(mode);
    float r = F(rose ? kMd80RoseRadius : kMd80ArcRadius);
    float cy = F(rose ? kMd80RoseCentreY : kMd80ArcCentreY - kMd80ArcRadius / 2);
    float length = rose ? r - 16 : 60;
    float spacing = F(rose ? kRoseDotSpacing : kDotSpacing);
    ARGB colour = g_sim.nav1_is_vor ? palette::kGreen : palette::kMagenta;
    gdi::Pen pen(colour, 2.0f);
    gdi::Pen dot_pen(palette::kWhite, 1.5f);
    ResetToDesign(surface);
    g.Translate(kMd80CentreX, cy);
    g.Rotate(F(course - heading));
    g.DrawLine(pen, 0, -length, 0, -length / 2);
    g.DrawLine(pen, 0, length / 2, 0, length);
    const GpPoint head[] = {{0, static_cast<INT>(-length - 8)}, {-5, static_cast<INT>(-length)},
                            {5, static_cast<INT>(-length)}};
    g.DrawPolygon(pen, head, 3);
    for (int d : {-2, -1, 1, 2}) g.DrawEllipse(dot_pen, static_cast<int>(d * spacing) - 3, -3, 6, 6);
    float bar = F(dots * spacing);
    g.DrawLine(pen, bar, -length / 2 + 4, bar, length / 2 - 4);
    ResetToDesign(surface);
}

// The HSI's glideslope scale on an ILS: four dots and the diamond.
void DrawGlideslope(gdi::Graphics& g) {
    if (g_sim.nav1_is_vor) return;
    double dots = g_sim.nav1_gs_needle.now / kGlideFullScale * 2;
    if (!std::isfinite(dots)) return;
    if (dots > 2.5) dots = 2.5;
    if (dots < -2.5) dots = -2.5;
    gdi::Pen dot_pen(palette::kWhite, 1.5f);
    for (int d : {-2, -1, 1, 2})
        g.DrawEllipse(dot_pen, kGlideScaleX - 3, kMd80RoseCentreY + d * kRoseDotSpacing - 3, 6, 6);
    g.DrawLine(dot_pen, F(kGlideScaleX - 7), F(kMd80RoseCentreY), F(kGlideScaleX + 7), F(kMd80RoseCentreY));
    gdi::SolidBrush magenta(palette::kMagenta);
    INT y = static_cast<INT>(kMd80RoseCentreY + dots * kRoseDotSpacing);
    const GpPoint diamond[] = {{kGlideScaleX, y - 6}, {kGlideScaleX + 5, y}, {kGlideScaleX, y + 6},
                               {kGlideScaleX - 5, y}};
    g.FillPolygon(magenta, diamond, 4);
}

// The bearing pointer, by the panel's ADF switch: the ADF's relative
// bearing (cyan, double-lined) or VOR 1's (green, single).
void DrawBearingPointer(gdi::Graphics& g, const DisplaySurface& surface, int mode) {
    bool adf = g_display.md80_adf_pointer == 1;
    if (adf && !(g_sim.adf_signal > kAdfSignalMin)) return;
    bool rose = IsRose(mode);
    float r = F(rose ? kMd80RoseRadius : kMd80ArcRadius);
    BearingNeedle needle;
    needle.cx = kMd80CentreX;
    needle.cy = F(rose ? kMd80RoseCentreY : kMd80ArcCentreY);
    needle.relative = adf ? g_sim.adf_needle : g_sim.nav1_relative_bearing;
    // On the arc the pointer stops well inside the card, clear of the canvas sides.
    needle.length = rose ? r - 12 : r * 0.7f;
    needle.double_line = adf;
    needle.colour = adf ? palette::kCyan : palette::kGreen;
    DrawBearingNeedle(g, surface, needle);
}
}  // namespace

// [SECTION] Texts
namespace {
void DrawTexts(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading) {
    ResetToDesign(surface);
    const SimState& s = g_sim;
    gdi::Font label(kHwFont, 10);
    gdi::Font value(kHwFont, 12);
    gdi::Font big(kHwFont, 13, FontStyleBold);
    char text[48];

    // Ground speed and true airspeed, top left.
    DrawSpeedCorner(g, label, value, palette::kGreen, {4, 4, 22, 2, 17, 26, 15});

    // The heading, boxed, over the lubber line.
    std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(std::round(heading), 360));
    gdi::Pen box(palette::kWhite, 1.0f);
    g.DrawRectangle(box, kMd80CentreX - 17, 1, 34, 17);
    g.DrawText(text, big, palette::kWhite, kMd80CentreX, 3, gdi::TextAlign::Centre);

    // The active waypoint, its distance and ETA, top right, on map modes.
    MapGuidance guidance = ReadMapGuidance();
    if (Md80ModeHasMap(mode) && guidance.has_active) {
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
        g.DrawText(w.Ident.data(), value, palette::kMagenta, 262, 2, gdi::TextAlign::Right);
        std::snprintf(text, sizeof text, "%.1f NM", guidance.distance_to_active);
        g.DrawText(text, label, palette::kWhite, 262, 16, gdi::TextAlign::Right);
        FormatActiveWaypointEta(text, sizeof text);
        g.DrawText(text, label, palette::kWhite, 262, 28, gdi::TextAlign::Right);
    }

    // The mode's name, bottom left; the HSI is named by its receiver.
    const char* name = "MAP";
    switch (mode) {
    case kMd80ModeRose: name = "ROSE"; break;
    case kMd80ModeArc: name = "ARC"; break;
    case kMd80ModeHsi: name = s.nav1_is_vor ? "VOR" : "ILS"; break;
    default: break;
    }
    g.DrawText(name, value, palette::kGreen, kMd80ModeTextX, kMd80ModeTextY);

    // The range, bottom right, on map modes: whole miles, or one decimal below 10.
    if (Md80ModeHasMap(mode)) {
        double range = g_display.md80_range;
        if (range == std::floor(range))
            std::snprintf(text, sizeof text, "%.0f NM", range);
        else
            std::snprintf(text, sizeof text, "%.1f NM", range);
        g.DrawText(text, label, palette::kWhite, kMd80RangeTextX, kMd80RangeTextY, gdi::TextAlign::Right);
    }

    // The HSI's receiver: frequency and DME, top right where the map shows the waypoint.
    if (mode == kMd80ModeHsi) {
        std::snprintf(text, sizeof text, "%06.2f", BcdNavFrequencyMhz(Token::NAV1_FREQUENCY));
        g.DrawText(text, value, palette::kGreen, 262, 2, gdi::TextAlign::Right);
        if (s.dme1_distance > 0 && std::isfinite(s.dme1_distance))
            std::snprintf(text, sizeof text, "DME %.1f", s.dme1_distance);
        else
            std::snprintf(text, sizeof text, "DME ---");
        g.DrawText(text, label, palette::kWhite, 262, 16, gdi::TextAlign::Right);
    }

    // The bearing pointer's source, bottom, left of the range.
    bool adf = g_display.md80_adf_pointer == 1;
    if (!adf || s.adf_signal > kAdfSignalMin)
        g.DrawText(adf ? "ADF" : "VOR 1", label, adf ? palette::kCyan : palette::kGreen, 200, kMd80ModeTextY,
                   gdi::TextAlign::Right);

    // The bug's value while it has just moved.
    DrawHeadingBugDigits(g, 64, 4);
}
}  // namespace

// [SECTION] The page
void DrawMd80Ehsi(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    int mode = Mode();
    MapView view = Md80MapView(surface);
    double heading = g_sim.heading_magnetic.now;
    if (!std::isfinite(heading)) heading = 0;

    if (Md80ModeHasMap(mode)) {
        // 1. The map is clipped to the compass: the rose's disc, or the arc's
        //    circle cut level above the bottom texts.
        ResetToDesign(surface);
        gdi::Path disc;
        AddMapClipOutline(disc, view.CentreX, view.CentreY, static_cast<int>(view.MapRadiusPx), IsRose(mode),
                          kMapClipBottom);
        g.SetClip(disc);

        // 2. The route and the fixes' circles.
        const MapSwitches& toggles = g_display.switches[static_cast<size_t>(MapFamily::MD80)];
        ObjectLayerStyle style;
        style.navaid_colour = kMapBlue;
        style.fix_kind = kSymbolFix;
        style.fix_colour = kMapBlue;
        style.airport_colour = palette::kCyan;
        RefreshProximitySubsets();
        DrawAtcBoundariesLayer(g, view);
        DrawAirportDiagramLayer(g, view);
        DrawRunwaysLayer(g, view);
        DrawRouteLayer(g, view);
        DrawFixCirclesLayer(g, view);
        DrawIlsCourseLine(g, view);
        // 3. Navaids and airports to 160, intersections to 80, by their switches.
        if (toggles.navaids == 1 && view.range <= kMd80NavaidMaxRange) DrawNavaidsLayer(g, view, style);
        if (toggles.airports == 1 && view.range <= kMd80AirportMaxRange) DrawAirportsLayer(g, view, style);
        if (toggles.intersections == 1 && surface.instance != 3 && view.range <= kMd80FixMaxRange)
            DrawIntersectionsLayer(g, view, style);
        // 4. Holds, the modification route, trend vector, altitude range arc.
        DrawHoldFigureLayer(g, view);
        DrawModificationRouteLayer(g, view);
        DrawTrendVector(g, view);
        DrawAltitudeRangeArc(g, view);
        ResetToDesign(surface);
        g.ResetClip();
        // 5. Traffic with its switch on; then the T/C and T/D marks over the map.
        if (toggles.traffic == 1)
            DrawTraffic(surface, view.MapRadiusPx, view.range, view.CentreX, view.CentreY, kTrafficKindMd11);
        DrawVerticalMarks(g, view, kVerticalMarksStyleMd80);
        ResetToDesign(surface);
    }

    // 6. Furniture over the map, the texts last.
    DrawCompass(g, surface, mode, heading);
    if (HasCourseNeedle(mode)) DrawCourseNeedle(g, surface, mode, heading);
    if (mode == kMd80ModeHsi) DrawGlideslope(g);
    DrawBearingPointer(g, surface, mode);
    DrawTexts(g, surface, mode, heading);
}
