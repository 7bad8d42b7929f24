// nd_du1000.cpp: the DU_1000_EHSI page: four modes on one 318 x 310 canvas.
//
//   0 ROSE   a full rose with the NAV 1 course needle and the ADF pointer; no map
//   1 ARC    the EHSI arc of radius 234 with the course needle; no map
//   3 ARC    the same EHSI page over the map layers
//   2 MAP    the arc with its range rings over the map layers, no needle
//
// The map layers run on the two map modes only while there is something to
// show: an active leg, one of the display's map switches, the traffic switch
// or the ATC boundaries. Its map has its own symbols: VORs (kind 76, green)
// by the navaids switch, NDBs (kind 3, magenta) by the display's own NDB
// switch, intersections as magenta diamonds.
//
// Index:
//   [SECTION] Map view and the layer rule
//   [SECTION] Navaids layer
//   [SECTION] Compass furniture
//   [SECTION] Course and bearing pointers
//   [SECTION] Texts
//   [SECTION] The page
#include "display/nd_du1000.h"

#include "display/display_state.h"
#include "display/map_symbols.h"
#include "display/traffic.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {
constexpr double kNeedleFullScale = 127;     // NAV1 needle token at two dots
constexpr double kAdfSignalMin = 1.0;        // the ADF pointer shows above this signal
constexpr double kNoWindBelow = 1;           // knots: the wind shows dashes below
constexpr double kArcHalfSweep = 40;         // degrees of the arc each side of the top
constexpr int kMapClipBottom = 284;          // the map ends above the bottom texts
constexpr int kArcNeedleY = 150;             // the arc's course needle turns about this row
constexpr float kArcNeedleLength = 72;
constexpr int kDotSpacing = 20;              // pixels between deviation dots
constexpr int kIdentFont = 10;               // the map's idents, bold Arial
constexpr int kRightColumnX = 312;           // right edge of the right-hand texts

float F(double v) { return static_cast<float>(v); }
int Mode() {
    int mode = g_display.du1000_mode;
    return mode >= kDu1000ModeRose && mode <= kDu1000ModeEhsiMap ? mode : kDu1000ModeRose;
}
bool IsMapMode(int mode) { return mode == kDu1000ModeMap || mode == kDu1000ModeEhsiMap; }
bool HasCourseNeedle(int mode) { return mode != kDu1000ModeMap; }
const MapSwitches& Toggles() { return g_display.switches[static_cast<size_t>(MapFamily::DU1000)]; }
}  // namespace

// [SECTION] Map view and the layer rule
MapView Du1000MapView(const DisplaySurface& surface) {
    MapView view;
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    view.instance = surface.instance;
    view.range = g_display.du1000_range;
    if (!(view.range > 0) || !std::isfinite(view.range)) view.range = 60;
    view.MapRadiusPx = kDu1000ArcRadius;
    view.PixelsPerNm = kDu1000ArcRadius / view.range;
    view.CentreX = kDu1000CentreX;
    view.CentreY = kDu1000ArcCentreY;
    view.MapHeading = g_sim.heading_true;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    view.plan_mode = false;
    return view;
}

bool Du1000MapLayersRun(int mode) {
    if (!IsMapMode(mode)) return false;
    const MapSwitches& s = Toggles();
    bool any_switch = s.airports == 1 || s.navaids == 1 || s.intersections == 1 || g_display.du1000_ndb == 1;
    return ReadMapGuidance().has_active || any_switch || s.traffic == 1 || g_display.AtcBoundariesShown == 1;
}

// [SECTION] Navaids layer
void DrawDu1000NavaidsLayer(gdi::Graphics& g, const MapView& view, bool vors, bool ndbs) {
    if (!vors && !ndbs) return;
    BeginMapLayer(g, view);
    gdi::Font font(kArialFont, kIdentFont, FontStyleBold);
    const auto& subset = g_nearby.NavaidsNear320;
    int count = subset.count < subset.kLimit ? subset.count : subset.kLimit;
    double cull_nm = 2 * view.range + kNavaidCullMarginNm;
    for (int i = 1; i <= count; ++i) {
        const NearbyRecord& r = subset.rows[static_cast<size_t>(i)];
        bool vor = std::strcmp(r.Kind.data(), "V") == 0;
        if (vor ? !vors : !ndbs) continue;
        // Cull before anything else is worked out for the symbol.
        double x = 0, y = 0;
        double distance = ProjectToMap(view, r.Latitude, r.Longitude, x, y);
        if (!(distance <= cull_nm)) continue;
        int px = static_cast<int>(x), py = static_cast<int>(y);
        int colour = vor ? kMapGreen : kMapMagenta;
        DrawMapSymbol(g, px, py, vor ? kSymbolTunedVor : kSymbolFix, kNoLabel, 1, 1, colour, view.range);
        g.DrawText(r.Ident.data(), font, MapColourArgb(colour), F(px + 7), F(py - 10));
    }
    EndMapLayer(g, view);
}

// [SECTION] Compass furniture
namespace {
// The card: ticks of 9 and 5, digits every 10 degrees on the arc, every 30 on the rose.
constexpr CompassCardStyle kArcCard{9, 5, 13, 10, 30, 10, true};
constexpr CompassCardStyle kRoseCard{9, 5, 13, 10, 30, 30, true};

// Dashed range rings at half and at full range on the map modes, the half
// labelled at the left.
void DrawRangeRings(gdi::Graphics& g, double range) {
    gdi::Pen pen(palette::kWhite, 1.0f);
    pen.SetDash(DashStyleDash);
    int r = kDu1000ArcRadius / 2;
    g.DrawArc(pen, kDu1000CentreX - r, kDu1000ArcCentreY - r, 2 * r, 2 * r, F(270 - kArcHalfSweep - 20),
              F(2 * (kArcHalfSweep + 20)));
    char text[16];
    std::snprintf(text, sizeof text, "%g", range / 2);
    gdi::Font font(kArialFont, 10);
    double a = (270 - kArcHalfSweep - 20) * kDegToRad;
    g.DrawText(text, font, palette::kCyan, F(kDu1000CentreX + r * std::cos(a) - 3),
               F(kDu1000ArcCentreY + r * std::sin(a) - 12), gdi::TextAlign::Right);
}

// The compass of the mode: the rose or the arc with its card, the heading
// bug, the yellow lubber line and the aircraft.
void DrawCompass(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading) {
    bool rose = mode == kDu1000ModeRose;
    int cx = kDu1000CentreX, cy = rose ? kDu1000RoseCentreY : kDu1000ArcCentreY;
    int r = rose ? kDu1000RoseRadius : kDu1000ArcRadius;
    double sweep = rose ? 180 : kArcHalfSweep;
    gdi::Pen ring(palette::kWhite, 1.5f);
    if (rose)
        g.DrawEllipse(ring, cx - r, cy - r, 2 * r, 2 * r);
    else
        g.DrawArc(ring, cx - r, cy - r, 2 * r, 2 * r, F(270 - sweep), F(2 * sweep));
    DrawCompassCard(g, surface, F(cx), F(cy), F(r), heading, -sweep, sweep, rose ? kRoseCard : kArcCard);
    DrawHeadingBugNotch(g, surface, F(cx), F(cy), F(r), heading, sweep, 7);
    if (IsMapMode(mode)) DrawRangeRings(g, g_display.du1000_range);
    // The lubber line over the card's top.
    gdi::Pen lubber(palette::kYellow, 3.0f);
    g.DrawLine(lubber, F(cx), F(cy - r - 10), F(cx), F(cy - r + 4));
    // The aircraft, yellow: wings, fuselage and tail at the centre.
    gdi::Pen ship(palette::kYellow, 3.0f);
    g.DrawLine(ship, F(cx), F(cy - 10), F(cx), F(cy + 14));
    g.DrawLine(ship, F(cx - 14), F(cy), F(cx + 14), F(cy));
    g.DrawLine(ship, F(cx - 5), F(cy + 12), F(cx + 5), F(cy + 12));
}
}  // namespace

// [SECTION] Course and bearing pointers
namespace {
// NAV 1's course needle with its deviation bar and dots: green for a VOR,
// magenta for a localiser. On the rose it turns about the centre, on the
// arc about a point above the aircraft.
void DrawCourseNeedle(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading) {
    double course = g_sim.nav1_obs;
    double dots = g_sim.nav1_needle / kNeedleFullScale * 2;
    if (!std::isfinite(course) || !std::isfinite(dots)) return;
    if (dots > 2.5) dots = 2.5;
    if (dots < -2.5) dots = -2.5;
    bool rose = mode == kDu1000ModeRose;
    float cy = F(rose ? kDu1000RoseCentreY : kArcNeedleY);
    float length = rose ? F(kDu1000RoseRadius - 22) : kArcNeedleLength;
    ARGB colour = g_sim.nav1_is_vor ? palette::kGreen : palette::kMagenta;
    gdi::Pen pen(colour, 2.5f);
    gdi::Pen dot_pen(palette::kWhite, 1.5f);
    ResetToDesign(surface);
    g.Translate(kDu1000CentreX, cy);
    g.Rotate(F(course - heading));
    g.DrawLine(pen, 0, -length, 0, -32);
    g.DrawLine(pen, 0, 32, 0, length);
    const GpPoint head[] = {{0, static_cast<INT>(-length - 9)}, {-6, static_cast<INT>(-length)},
                            {6, static_cast<INT>(-length)}};
    g.DrawPolygon(pen, head, 3);
    for (int d : {-2, -1, 1, 2}) g.DrawEllipse(dot_pen, d * kDotSpacing - 3, -3, 6, 6);
    float bar = F(dots * kDotSpacing);
    g.DrawLine(pen, bar, -28, bar, 28);
    ResetToDesign(surface);
}

// The ADF's bearing pointer, cyan and double-lined, through the compass
// centre, while the ADF has a signal.
void DrawAdfPointer(gdi::Graphics& g, const DisplaySurface& surface, int mode) {
    if (!(g_sim.adf_signal > kAdfSignalMin)) return;
    bool rose = mode == kDu1000ModeRose;
    BearingNeedle needle;
    needle.cx = kDu1000CentreX;
    needle.cy = F(rose ? kDu1000RoseCentreY : kDu1000ArcCentreY);
    needle.relative = g_sim.adf_needle;
    needle.length = rose ? F(kDu1000RoseRadius - 10) : F(kDu1000ArcRadius * 0.55);
    needle.inner = 24;
    needle.head_half = 7;
    needle.double_line = true;
    needle.colour = palette::kCyan;
    DrawBearingNeedle(g, surface, needle);
}
}  // namespace

// [SECTION] Texts
namespace {
void DrawTexts(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading) {
    ResetToDesign(surface);
    const SimState& s = g_sim;
    gdi::Font label(kArialFont, 10);
    gdi::Font value(kArialFont, 13);
    gdi::Font big(kArialFont, 15, FontStyleBold);
    char text[48];

    // Ground speed and true airspeed, top left.
    DrawSpeedCorner(g, label, value, palette::kGreen, {6, 5, 26, 2, 21, 32, 18});

    // The heading, boxed, over the lubber line.
    std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(std::round(heading), 360));
    gdi::Pen box(palette::kWhite, 1.0f);
    g.DrawRectangle(box, kDu1000CentreX - 20, 2, 40, 20);
    g.DrawText(text, big, palette::kWhite, kDu1000CentreX, 4, gdi::TextAlign::Centre);

    // The active waypoint, its distance and ETA, top right.
    MapGuidance guidance = ReadMapGuidance();
    if (guidance.has_active) {
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
        g.DrawText(w.Ident.data(), value, palette::kMagenta, kRightColumnX, 2, gdi::TextAlign::Right);
        std::snprintf(text, sizeof text, "%.1f NM", guidance.distance_to_active);
        g.DrawText(text, label, palette::kWhite, kRightColumnX, 18, gdi::TextAlign::Right);
        FormatActiveWaypointEta(text, sizeof text);
        g.DrawText(text, label, palette::kWhite, kRightColumnX, 31, gdi::TextAlign::Right);
    }

    // The wind, bottom left, over the mode's name.
    if (s.wind_speed >= kNoWindBelow && std::isfinite(s.wind_speed))
        std::snprintf(text, sizeof text, "%03.0f\u00B0/%2.0f", s.wind_direction_display, s.wind_speed);
    else
        std::snprintf(text, sizeof text, "---\u00B0/---");
    g.DrawText(text, label, palette::kWhite, kDu1000ModeTextX, kDu1000ModeTextY - 16);
    const char* name = mode == kDu1000ModeRose ? "ROSE" : mode == kDu1000ModeMap ? "MAP" : "ARC";
    g.DrawText(name, value, palette::kGreen, kDu1000ModeTextX, kDu1000ModeTextY);

    // The traffic switch on a map mode, left, over the wind.
    if (IsMapMode(mode) && Toggles().traffic == 1) g.DrawText("TFC", label, palette::kCyan, 6, 244);
    // The ADF's name while its pointer shows.
    if (s.adf_signal > kAdfSignalMin) g.DrawText("ADF", label, palette::kCyan, 6, 260);

    // The range, bottom right, on the map modes.
    if (IsMapMode(mode)) {
        std::snprintf(text, sizeof text, "%g NM", g_display.du1000_range);
        g.DrawText(text, label, palette::kWhite, kDu1000RangeTextX, kDu1000RangeTextY + 2, gdi::TextAlign::Right);
    }

    // The course needle's receiver, its course and DME, right, above the range.
    if (HasCourseNeedle(mode)) {
        ARGB colour = s.nav1_is_vor ? palette::kGreen : palette::kMagenta;
        g.DrawText(s.nav1_is_vor ? "VOR 1" : "ILS 1", label, colour, kRightColumnX, 244, gdi::TextAlign::Right);
        std::snprintf(text, sizeof text, "CRS %03.0f",
                      std::isfinite(s.nav1_obs) ? ModuloPositive(std::round(s.nav1_obs), 360) : 0.0);
        g.DrawText(text, label, colour, kRightColumnX, 260, gdi::TextAlign::Right);
        if (s.dme1_distance > 0 && std::isfinite(s.dme1_distance))
            std::snprintf(text, sizeof text, "DME %.1f", s.dme1_distance);
        else
            std::snprintf(text, sizeof text, "DME ---");
        g.DrawText(text, label, palette::kWhite, kRightColumnX, 276, gdi::TextAlign::Right);
    }

    // The bug's value while it has just moved.
    DrawHeadingBugDigits(g, 6, 36);
}
}  // namespace

// [SECTION] The page
void DrawDu1000Ehsi(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    int mode = Mode();
    MapView view = Du1000MapView(surface);
    double heading = g_sim.heading_magnetic.now;
    if (!std::isfinite(heading)) heading = 0;

    if (Du1000MapLayersRun(mode)) {
        // 1. The map is clipped to the arc's circle, cut level above the bottom texts.
        ResetToDesign(surface);
        gdi::Path disc;
        AddMapClipOutline(disc, kDu1000CentreX, kDu1000ArcCentreY, kDu1000ArcRadius, false, kMapClipBottom);
        g.SetClip(disc);

        // 2. ATC boundaries and the airport diagram come with the airport
        //    extras. The runways and the route, the fixes' circles and the
        //    localiser's course line.
        const MapSwitches& toggles = Toggles();
        RefreshProximitySubsets();
        DrawAtcBoundariesLayer(g, view);
        DrawAirportDiagramLayer(g, view);
        DrawRunwaysLayer(g, view);
        DrawRouteLayer(g, view);
        DrawFixCirclesLayer(g, view);
        DrawIlsCourseLine(g, view);
        // 3. VORs and NDBs by their own switches and airports to 160,
        //    intersections to 40 and not at instance 3.
        if (view.range <= kDu1000NavaidMaxRange)
            DrawDu1000NavaidsLayer(g, view, toggles.navaids == 1, g_display.du1000_ndb == 1);
        ObjectLayerStyle style;
        style.fix_kind = kSymbolDiamond;
        style.fix_colour = kMapMagenta;
        style.airport_colour = palette::kCyan;
        if (toggles.airports == 1 && view.range <= kDu1000AirportMaxRange) DrawAirportsLayer(g, view, style);
        if (toggles.intersections == 1 && surface.instance != 3 && view.range <= kDu1000FixMaxRange)
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
            DrawTraffic(surface, view.MapRadiusPx, view.range, view.CentreX, view.CentreY, kTrafficKindB737);
        DrawVerticalMarks(g, view, kVerticalMarksStyleDu1000);
        ResetToDesign(surface);
    }

    // 6. Furniture over the map, the texts last.
    DrawCompass(g, surface, mode, heading);
    if (HasCourseNeedle(mode)) DrawCourseNeedle(g, surface, mode, heading);
    DrawAdfPointer(g, surface, mode);
    DrawTexts(g, surface, mode, heading);
}
