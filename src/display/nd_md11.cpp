// nd_md11.cpp: the HW_MD11_ND page: four named modes on one 240 x 258 canvas.
//
//   2 PLAN   north-up around the plan's centre row, a ring of the PLAN radius
//   3 MAP    heading-up on the arc of radius 150, every map layer
//   4 VOR    the arc with the VOR course and deviation, no map
//   5 APPR   the arc with the localiser course and deviation, no map
//
// The map radius is the panel's: its MAP button sets 150, its PLAN button 94,
// and the VOR and APPR buttons keep the last one. A mode outside 2 to 5 (the
// profile's "off") shows the MAP page without a mode name.
//
// Index:
//   [SECTION] Map view
//   [SECTION] Compass furniture
//   [SECTION] Course and bearing pointers
//   [SECTION] Texts
//   [SECTION] The page
#include "display/nd_md11.h"

#include "display/display_state.h"
#include "display/map_symbols.h"
#include "display/traffic.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>
#include <iterator>

namespace {
constexpr double kNeedleFullScale = 127;     // NAV1 needle token at two dots
constexpr int kDotSpacing = 20;              // pixels between deviation dots
constexpr double kAdfSignalMin = 1.0;        // the ADF pointer shows above this signal
constexpr double kCardHalfSweep = 50;        // degrees of the arc each side of the top
constexpr int kSwitchLabelX = 5;             // the column of the map switches' labels
constexpr int kSwitchLabelTop = 163;
constexpr int kSwitchLabelStep = 12;
constexpr int kMd11MapClipBottom = 210;      // the MAP page's map ends at this row

float F(double v) { return static_cast<float>(v); }
int Mode() { return g_display.md11_mode; }
bool IsPlan(int mode) { return mode == kMd11ModePlan; }
bool IsRadioMode(int mode) { return mode == kMd11ModeVor || mode == kMd11ModeAppr; }
bool IsMapPage(int mode) { return !IsPlan(mode) && !IsRadioMode(mode); }
}  // namespace

// [SECTION] Map view
MapView Md11MapView(const DisplaySurface& surface) {
    MapView view;
    int mode = Mode();
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    view.instance = surface.instance;
    view.range = g_display.md11_range;
    int radius = g_display.md11_radius > 0 ? g_display.md11_radius : kMd11ArcRadius;
    view.PixelsPerNm = radius / view.range;
    view.MapRadiusPx = radius;
    view.CentreX = kMd11CentreX;
    view.plan_mode = IsPlan(mode);
    view.CentreY = view.plan_mode ? kMd11PlanCentreY : kMd11ArcCentreY;
    view.MapHeading = view.plan_mode ? 0 : g_sim.heading_true;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    // The LEGS page's centre entry, else the active waypoint, else the aircraft.
    if (view.plan_mode) CentreOnPlan(view);
    return view;
}

// [SECTION] Compass furniture
namespace {
// The card: ticks of 8 and 4, digits under them, the cardinal ones larger.
constexpr CompassCardStyle kMd11Card{8, 4, 12, 10, 90, 30, true};

// The fixed heading pointer at the top of the arc, and the own-ship triangle.
void DrawArcFurniture(gdi::Graphics& g, const DisplaySurface& surface, double heading) {
    float cx = kMd11CentreX, cy = kMd11ArcCentreY, r = kMd11ArcRadius;
    gdi::Pen arc(palette::kWhite, 1.5f);
    g.DrawArc(arc, static_cast<int>(cx - r), static_cast<int>(cy - r), static_cast<int>(2 * r), static_cast<int>(2 * r),
              F(270 - kCardHalfSweep), F(2 * kCardHalfSweep));
    DrawCompassCard(g, surface, cx, cy, r, heading, -kCardHalfSweep, kCardHalfSweep, kMd11Card);
    DrawHeadingBugNotch(g, surface, cx, cy, r, heading, kCardHalfSweep, 6);
    // The half-range ring, dashed.
    gdi::Pen ring(palette::kWhite, 1.0f);
    ring.SetDash(DashStyleDash);
    int half = static_cast<int>(r / 2);
    g.DrawArc(ring, static_cast<int>(cx) - half, static_cast<int>(cy) - half, 2 * half, 2 * half,
              F(270 - kCardHalfSweep), F(2 * kCardHalfSweep));
    gdi::SolidBrush white(palette::kWhite);
    int top = static_cast<int>(cy - r);
    const GpPoint pointer[] = {{static_cast<INT>(cx), top + 1}, {static_cast<INT>(cx) - 5, top - 8},
                               {static_cast<INT>(cx) + 5, top - 8}};
    g.FillPolygon(white, pointer, 3);
    gdi::Pen ship(palette::kWhite, 2.0f);
    const GpPoint triangle[] = {{static_cast<INT>(cx), static_cast<INT>(cy) - 12},
                                {static_cast<INT>(cx) + 6, static_cast<INT>(cy) + 4},
                                {static_cast<INT>(cx) - 6, static_cast<INT>(cy) + 4}};
    g.DrawPolygon(ship, triangle, 3);
}

// PLAN: the ring of the PLAN radius, north up with its "N", and the aircraft
// where it stands, turned by its heading.
void DrawPlanFurniture(gdi::Graphics& g, const DisplaySurface& surface, const MapView& view) {
    float cx = F(view.CentreX), cy = F(view.CentreY), r = F(view.MapRadiusPx);
    gdi::Pen ring(palette::kWhite, 1.5f);
    g.DrawEllipse(ring, static_cast<int>(cx - r), static_cast<int>(cy - r), static_cast<int>(2 * r),
                  static_cast<int>(2 * r));
    gdi::Pen dashed(palette::kWhite, 1.0f);
    dashed.SetDash(DashStyleDash);
    int half = static_cast<int>(r / 2);
    g.DrawEllipse(dashed, static_cast<int>(cx) - half, static_cast<int>(cy) - half, 2 * half, 2 * half);
    gdi::Font font(kHwFont, 12, FontStyleBold);
    g.DrawText("N", font, palette::kWhite, cx, cy - r - 15, gdi::TextAlign::Centre, gdi::TextBaseline::Top);
    double x = 0, y = 0;
    ProjectToMap(view, g_sim.latitude, g_sim.longitude, x, y);
    if (std::fabs(x) <= r && std::fabs(y) <= r) {
        g.Translate(F(cx + x), F(cy + y));
        g.Rotate(F(g_sim.heading_true));
        DrawMapSymbol(g, 0, -10, kSymbolOwnShipOutline, kNoLabel, 1, 1, kMapWhite, view.range);
        ResetToDesign(surface);
    }
}
}  // namespace

// [SECTION] Course and bearing pointers
namespace {
// The tuned receiver's course arrow through the arc's centre, with its
// deviation bar and dots: white for the VOR, magenta for the localiser.
void DrawRadioCourse(gdi::Graphics& g, const DisplaySurface& surface, int mode) {
    double course = g_sim.nav1_obs;
    double dots = g_sim.nav1_needle / kNeedleFullScale * 2;
    if (!std::isfinite(course) || !std::isfinite(dots)) return;
    if (dots > 2.5) dots = 2.5;
    if (dots < -2.5) dots = -2.5;
    ARGB colour = mode == kMd11ModeAppr ? palette::kMagenta : palette::kWhite;
    gdi::Pen pen(colour, 2.0f);
    gdi::Pen dot_pen(palette::kWhite, 1.5f);
    constexpr float kLength = 70;
    ResetToDesign(surface);
    g.Translate(kMd11CentreX, kMd11ArcCentreY - 70);
    g.Rotate(F(course - g_sim.heading_magnetic.now));
    g.DrawLine(pen, 0, -kLength, 0, -28);
    g.DrawLine(pen, 0, 28, 0, kLength);
    const GpPoint head[] = {{0, static_cast<INT>(-kLength - 8)}, {-5, static_cast<INT>(-kLength)},
                            {5, static_cast<INT>(-kLength)}};
    g.DrawPolygon(pen, head, 3);
    for (int d : {-2, -1, 1, 2}) g.DrawEllipse(dot_pen, d * kDotSpacing - 3, -3, 6, 6);
    float bar = F(dots * kDotSpacing);
    g.DrawLine(pen, bar, -24, bar, 24);
    ResetToDesign(surface);
}

// One bearing pointer: a needle through the arc's centre at a bearing off
// the nose, single-lined for the first, double for the second.
void DrawBearingPointer(gdi::Graphics& g, const DisplaySurface& surface, double relative_bearing, ARGB colour,
                        bool double_line) {
    BearingNeedle needle;
    needle.cx = kMd11CentreX;
    needle.cy = kMd11ArcCentreY;
    needle.relative = relative_bearing;
    needle.length = kMd11ArcRadius - 14;
    needle.inner = 30;
    needle.double_line = double_line;
    needle.colour = colour;
    DrawBearingNeedle(g, surface, needle);
}

// The panel's bearing pointers: the first from VOR 1 or the ADF, the second
// from VOR 2.
void DrawBearingPointers(gdi::Graphics& g, const DisplaySurface& surface) {
    const DisplayState& d = g_display;
    if (d.md11_bearing1 == 1) DrawBearingPointer(g, surface, g_sim.nav1_relative_bearing, palette::kGreen, false);
    if (d.md11_bearing1 == 2 && g_sim.adf_signal > kAdfSignalMin)
        DrawBearingPointer(g, surface, g_sim.adf_needle, palette::kCyan, false);
    if (d.md11_bearing2 == 1) DrawBearingPointer(g, surface, g_sim.nav2_relative_bearing, palette::kWhite, true);
}
}  // namespace

// [SECTION] Texts
namespace {
void DrawTexts(gdi::Graphics& g, const DisplaySurface& surface, int mode) {
    ResetToDesign(surface);
    const SimState& s = g_sim;
    const MapSwitches& toggles = g_display.switches[static_cast<size_t>(MapFamily::MD11)];
    gdi::Font label(kHwFont, 10);
    gdi::Font value(kHwFont, 12);
    gdi::Font big(kHwFont, 13, FontStyleBold);
    char text[48];
    MapGuidance guidance = ReadMapGuidance();

    // Ground speed and true airspeed, top left.
    DrawSpeedCorner(g, label, value, palette::kWhite, {4, 4, 20, 2, 17, 26, 15});
    // Heading at the top of the arc.
    std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(std::round(s.heading_magnetic.now), 360));
    g.DrawText(text, big, palette::kGreen, kMd11CentreX, 2, gdi::TextAlign::Centre);
    // The active waypoint, its distance and ETA, top right.
    if (guidance.has_active) {
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
        g.DrawText(w.Ident.data(), value, palette::kMagenta, 236, 2, gdi::TextAlign::Right);
        std::snprintf(text, sizeof text, "%.1f NM", guidance.distance_to_active);
        g.DrawText(text, label, palette::kWhite, 236, 16, gdi::TextAlign::Right);
        FormatActiveWaypointEta(text, sizeof text);
        g.DrawText(text, label, palette::kWhite, 236, 28, gdi::TextAlign::Right);
    }
    // The range, left, level with the mode line.
    std::snprintf(text, sizeof text, "RNG %2.0f", g_display.md11_range);
    g.DrawText(text, label, palette::kWhite, kSwitchLabelX, kMd11ModeTextY);
    // The map switches that are on, stacked above the range.
    if (!IsRadioMode(mode)) {
        int y = kSwitchLabelTop;
        auto row = [&](bool on, const char* name) {
            if (on) g.DrawText(name, label, palette::kCyan, kSwitchLabelX, F(y));
            y += kSwitchLabelStep;
        };
        row(toggles.intersections == 1, "WPT");
        row(toggles.airports == 1, "ARPT");
        row(toggles.navaids == 1, "NAV");
        row(toggles.traffic == 1 && !IsPlan(mode), "TRFC");
    }
    // The mode line: the mode's name, then LNAV and VNAV under it by the options.
    const char* name = nullptr;
    switch (mode) {
    case kMd11ModePlan: name = "PLAN"; break;
    case kMd11ModeMap: name = "MAP"; break;
    case kMd11ModeVor: name = "VOR"; break;
    case kMd11ModeAppr: name = "APPR"; break;
    default: break;
    }
    int line_y = kMd11ModeTextY;
    if (name != nullptr) {
        g.DrawText(name, value, palette::kGreen, kMd11ModeTextX, F(line_y));
        line_y += kMd11StatusLineStep;
    }
    if (g_config.DisplayLnavStatusOnMD11ND == 1 && g_lnav.LnavOn == 1) {
        g.DrawText("LNAV", label, palette::kMagenta, kMd11ModeTextX, F(line_y));
        line_y += kMd11StatusLineStep;
    }
    if (g_config.DisplayVnavStatusOnMD11ND == 1 && g_vnav.VnavOn == 1)
        g.DrawText("VNAV", label, palette::kMagenta, kMd11ModeTextX, F(line_y));
    // The receiver of the radio pages, its frequency and DME, bottom left.
    if (IsRadioMode(mode)) {
        g.DrawText(mode == kMd11ModeAppr ? "LOC1" : "VOR1", value, palette::kGreen, 4, 230);
        std::snprintf(text, sizeof text, "%06.2f", BcdNavFrequencyMhz(Token::NAV1_FREQUENCY));
        g.DrawText(text, label, palette::kWhite, 40, 232);
        if (s.dme1_distance > 0 && std::isfinite(s.dme1_distance))
            std::snprintf(text, sizeof text, "DME %.1f", s.dme1_distance);
        else
            std::snprintf(text, sizeof text, "DME ---");
        g.DrawText(text, label, palette::kWhite, 4, 244);
    }
    // The bug's value while it has just moved.
    DrawHeadingBugDigits(g, 60, 4);
}
}  // namespace

// [SECTION] The page
void DrawMd11Nd(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    int mode = Mode();
    MapView view = Md11MapView(surface);
    bool plan = IsPlan(mode);
    bool map = IsMapPage(mode);

    if (plan || map) {
        // 1. The map is clipped to its disc: the PLAN ring, or on MAP the
        //    arc's circle cut level a little behind the aircraft, so that the
        //    bottom corners' texts stand clear.
        ResetToDesign(surface);
        gdi::Path disc;
        AddMapClipOutline(disc, view.CentreX, view.CentreY, static_cast<int>(view.MapRadiusPx), plan,
                          kMd11MapClipBottom);
        g.SetClip(disc);

        const MapSwitches& toggles = g_display.switches[static_cast<size_t>(MapFamily::MD11)];
        ObjectLayerStyle style;
        style.navaid_colour = kMapBlue;
        style.fix_kind = kSymbolFix;
        style.fix_colour = kMapBlue;
        style.airport_colour = palette::kCyan;
        bool fixes_allowed = surface.instance != 3 && view.range <= kMd11FixMaxRange;
        RefreshProximitySubsets();
        if (plan) {
            // 2. PLAN: route, fix circles, navaids, airports, intersections,
            //    in that order, over the selected runways.
            DrawRunwaysLayer(g, view);
            DrawRouteLayer(g, view);
            DrawFixCirclesLayer(g, view);
            if (toggles.navaids == 1 && view.range <= kMd11PlanNavaidMaxRange) DrawNavaidsLayer(g, view, style);
            if (toggles.airports == 1 && view.range <= kMd11AirportMaxRange) DrawAirportsLayer(g, view, style);
            if (toggles.intersections == 1 && fixes_allowed) DrawIntersectionsLayer(g, view, style);
        } else {
            // 3. MAP: the ATC boundaries and the airport diagram at range 2.5
            //    and below; then the runways, the route, the fixes' circles
            //    and the localiser's course.
            DrawAtcBoundariesLayer(g, view);
            DrawAirportDiagramLayer(g, view);
            DrawRunwaysLayer(g, view);
            DrawRouteLayer(g, view);
            DrawFixCirclesLayer(g, view);
            DrawIlsCourseLine(g, view);
            // 4. Navaids to 320, airports to 160, intersections to 80.
            if (toggles.navaids == 1 && view.range <= kMd11MapNavaidMaxRange) DrawNavaidsLayer(g, view, style);
            if (toggles.airports == 1 && view.range <= kMd11AirportMaxRange) DrawAirportsLayer(g, view, style);
            if (toggles.intersections == 1 && fixes_allowed) DrawIntersectionsLayer(g, view, style);
            // 5. Holds, the modification route, trend vector, altitude range arc.
            DrawHoldFigureLayer(g, view);
            DrawModificationRouteLayer(g, view);
            DrawTrendVector(g, view);
            DrawAltitudeRangeArc(g, view);
        }
        ResetToDesign(surface);
        g.ResetClip();
        // 6. Traffic on MAP, with the traffic switch on.
        if (!plan && g_display.switches[static_cast<size_t>(MapFamily::MD11)].traffic == 1)
            DrawTraffic(surface, view.MapRadiusPx, view.range, view.CentreX, view.CentreY, kTrafficKindMd11);
        // 7. The T/C and T/D chevrons over the map.
        DrawVerticalMarks(g, view, kVerticalMarksStyleMd11);
        ResetToDesign(surface);
    }

    // 8. Furniture over the map, the texts last.
    double heading = g_sim.heading_magnetic.now;
    if (!std::isfinite(heading)) heading = 0;
    if (plan) {
        DrawPlanFurniture(g, surface, view);
    } else {
        DrawArcFurniture(g, surface, heading);
        if (IsRadioMode(mode)) DrawRadioCourse(g, surface, mode);
        DrawBearingPointers(g, surface);
    }
    DrawTexts(g, surface, mode);
}
