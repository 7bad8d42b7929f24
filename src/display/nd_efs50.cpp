// nd_efs50.cpp: the EFS50_EHSI page: eight HSI modes on one 266 x 230 canvas,
// crossed with the nav mode (1 radio, 2 flight plan).
//
//   1 HSI       full rose, course needle, no map
//   2 ROSE      full rose, course needle, the map
//   3 ROSE MAP  full rose, the map; the needle only where there is no map
//   4 ARC HSI   expanded arc, course needle, no map
//   5 ARC       expanded arc, course needle, the map
//   6 ARC MAP   expanded arc, the map; the needle only where there is no map
//   7 ARC BRG   expanded arc with the bearing pointers alone
//   8 TFC       the traffic picture at the traffic range (the TCAS key)
//
// The map runs only with nav mode 2 and HSI mode 2, 3, 5 or 6. Its scale is
// the range ring's (50 pixels on the rose, 95 on the arc); the card stands
// farther out and clips the map, so the picture reaches past the range.
// The course needle follows the nav mode: NAV 1's course and deviation, or
// the active leg's course and cross-track error. Two bearing pointers take
// their sources from the panel: off, VOR 1, VOR 2, ADF.
//
// Index:
//   [SECTION] Modes and map view
//   [SECTION] Compass furniture
//   [SECTION] Course needle and bearing pointers
//   [SECTION] Texts
//   [SECTION] The page
#include "display/nd_efs50.h"

#include "display/display_state.h"
#include "display/efs50_tcas.h"
#include "display/map_symbols.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>

namespace {
constexpr double kNeedleFullScale = 127;     // NAV1 needle token at two dots
constexpr double kXtkNmPerDot = 1.0;         // the flight plan's needle: a dot a mile
constexpr double kDeviationLimitDots = 2.5;  // the bar stops just beyond the outer dot
constexpr double kAdfSignalMin = 1.0;        // the ADF pointer shows above this signal
constexpr double kArcHalfSweep = 45;         // degrees of the arc each side of the top
constexpr int kMapClipBottom = 206;          // the arc's map ends above the bottom texts
constexpr int kRoseDotSpacing = 16;          // pixels between deviation dots (rose)
constexpr int kArcDotSpacing = 18;           // pixels between deviation dots (arc)
constexpr float kArcNeedleLength = 60;       // the arc's needle, each side of its pivot

float F(double v) { return static_cast<float>(v); }
int HsiMode() {
    int mode = g_display.efs50_hsi_mode;
    return mode >= kEfs50ModeHsi && mode <= kEfs50ModeTraffic ? mode : kEfs50ModeHsi;
}
int NavMode() { return g_display.efs50_nav_mode == kEfs50NavFms ? kEfs50NavFms : kEfs50NavRadio; }
bool IsRose(int mode) { return mode <= kEfs50ModeRoseMap; }
float CardRadius(int mode) { return F(IsRose(mode) ? kEfs50RoseCardRadius : kEfs50ArcCardRadius); }
float CentreY(int mode) { return F(IsRose(mode) ? kEfs50RoseCentreY : kEfs50ArcCentreY); }
double HalfSweep(int mode) { return IsRose(mode) ? 180 : kArcHalfSweep; }
// Degrees within -180 .. 180.
double Signed(double degrees) { return ModuloPositive(degrees + 180, 360) - 180; }
}  // namespace

// [SECTION] Modes and map view
bool Efs50MapShown(int hsi_mode, int nav_mode) {
    if (nav_mode != kEfs50NavFms) return false;
    return hsi_mode == kEfs50ModeRoseNav || hsi_mode == kEfs50ModeRoseMap || hsi_mode == kEfs50ModeArcNav ||
           hsi_mode == kEfs50ModeArcMap;
}

const char* Efs50ModeName(int hsi_mode) {
    switch (hsi_mode) {
    case kEfs50ModeRoseNav: return "ROSE";
    case kEfs50ModeRoseMap: return "ROSE MAP";
    case kEfs50ModeArcHsi: return "ARC HSI";
    case kEfs50ModeArcNav: return "ARC";
    case kEfs50ModeArcMap: return "ARC MAP";
    case kEfs50ModeArcBearing: return "ARC BRG";
    case kEfs50ModeTraffic: return "TFC";
    default: return "HSI";
    }
}

MapView Efs50MapView(const DisplaySurface& surface) {
    MapView view;
    int mode = HsiMode();
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    view.instance = surface.instance;
    view.range = g_display.efs50_range > 0 ? g_display.efs50_range : 12.5;
    int radius = IsRose(mode) ? kEfs50RoseMapRadius : kEfs50ArcMapRadius;
    view.PixelsPerNm = radius / view.range;
    view.MapRadiusPx = radius;
    view.CentreX = kEfs50CentreX;
    view.CentreY = CentreY(mode);
    view.MapHeading = g_sim.heading_true;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    view.plan_mode = false;
    return view;
}

// [SECTION] Compass furniture
namespace {
// The card: ticks of 8 and 4, every digit of 11 under its tick.
constexpr CompassCardStyle kEfs50Card{8, 4, 12, 11, 90, 30, true};

// Where the heading pointer stands, degrees off the top of the card: still
// at the top with EhsiStaticHdgPointer, else over the ground track, so the
// drift shows as the pointer's offset.
double HeadingPointerOffset(double heading) {
    if (g_config.EhsiStaticHdgPointer == 1) return 0;
    double off = Signed(g_sim.track - heading);
    return std::isfinite(off) ? off : 0;
}

// The card, the heading bug, the range ring with the map, the heading
// pointer over the card's top, and the aircraft at the centre.
void DrawCompass(gdi::Graphics& g, const DisplaySurface& surface, int mode, bool map, double heading) {
    float cx = kEfs50CentreX, cy = CentreY(mode), r = CardRadius(mode);
    double sweep = HalfSweep(mode);
    int left = static_cast<int>(cx - r), top = static_cast<int>(cy - r), size = static_cast<int>(2 * r);
    gdi::Pen ring(palette::kWhite, 1.5f);
    if (IsRose(mode))
        g.DrawEllipse(ring, left, top, size, size);
    else
        g.DrawArc(ring, left, top, size, size, F(270 - sweep), F(2 * sweep));
    DrawCompassCard(g, surface, cx, cy, r, heading, -sweep, sweep, kEfs50Card);
    DrawHeadingBugNotch(g, surface, cx, cy, r, heading, sweep, 6);

    // The range ring: where the selected range lies on the map.
    if (map) {
        gdi::Pen dashed(palette::kWhite, 1.0f);
        dashed.SetDash(DashStyleDash);
        int rr = IsRose(mode) ? kEfs50RoseMapRadius : kEfs50ArcMapRadius;
        int x = static_cast<int>(cx) - rr, y = static_cast<int>(cy) - rr;
        if (IsRose(mode))
            g.DrawEllipse(dashed, x, y, 2 * rr, 2 * rr);
        else
            g.DrawArc(dashed, x, y, 2 * rr, 2 * rr, F(270 - sweep), F(2 * sweep));
    }

    // The heading pointer: a filled white triangle pointing into the card.
    double off = HeadingPointerOffset(heading);
    if (std::fabs(off) <= sweep) {
        gdi::SolidBrush white(palette::kWhite);
        ResetToDesign(surface);
        g.Translate(cx, cy);
        g.Rotate(F(off));
        INT tip = static_cast<INT>(-r), base = static_cast<INT>(-r - 9);
        const GpPoint pointer[] = {{0, tip}, {-6, base}, {6, base}};
        g.FillPolygon(white, pointer, 3);
        ResetToDesign(surface);
    }

    // The aircraft: fuselage, wings, tail in white.
    gdi::Pen ship(palette::kWhite, 2.0f);
    g.DrawLine(ship, cx, cy - 11, cx, cy + 10);
    g.DrawLine(ship, cx - 11, cy - 2, cx + 11, cy - 2);
    g.DrawLine(ship, cx - 4, cy + 9, cx + 4, cy + 9);
}
}  // namespace

// [SECTION] Course needle and bearing pointers
namespace {
// The course and the deviation in dots of the nav mode's source; false
// when the source has no course to show.
bool CourseOf(int nav, double& course, double& dots, bool& has_deviation) {
    if (nav == kEfs50NavFms) {
        if (!ReadMapGuidance().has_active) return false;
        course = g_lnav.LegCourse;
        has_deviation = g_lnav.XtkDistance >= 0;
        // Right of the course line: the line, and the bar, lie to the left.
        double xtk = g_lnav.XtkDistance / kXtkNmPerDot;
        dots = g_lnav.XtkSide == 1 ? -xtk : xtk;
    } else {
        course = g_sim.nav1_obs;
        dots = g_sim.nav1_needle / kNeedleFullScale * 2;
        has_deviation = true;
    }
    if (!std::isfinite(course) || !std::isfinite(dots)) return false;
    if (dots > kDeviationLimitDots) dots = kDeviationLimitDots;
    if (dots < -kDeviationLimitDots) dots = -kDeviationLimitDots;
    return true;
}

// The needle through its pivot, turned to the course, with the deviation
// dots and bar: green for the radio, magenta for the flight plan.
void DrawCourseNeedle(gdi::Graphics& g, const DisplaySurface& surface, int mode, int nav, double heading) {
    double course = 0, dots = 0;
    bool has_deviation = false;
    if (!CourseOf(nav, course, dots, has_deviation)) return;
    bool rose = IsRose(mode);
    float r = CardRadius(mode);
    float pivot_y = rose ? CentreY(mode) : F(kEfs50ArcCentreY - kEfs50ArcCardRadius / 2);
    float length = rose ? r - 18 : kArcNeedleLength;
    float spacing = F(rose ? kRoseDotSpacing : kArcDotSpacing);
    ARGB colour = nav == kEfs50NavFms ? palette::kMagenta : palette::kGreen;
    gdi::Pen pen(colour, 2.0f);
    gdi::Pen dot_pen(palette::kWhite, 1.5f);
    ResetToDesign(surface);
    g.Translate(kEfs50CentreX, pivot_y);
    g.Rotate(F(course - heading));
    g.DrawLine(pen, 0, -length, 0, -length / 2);
    g.DrawLine(pen, 0, length / 2, 0, length);
    const GpPoint head[] = {{0, static_cast<INT>(-length - 8)}, {-5, static_cast<INT>(-length)},
                            {5, static_cast<INT>(-length)}};
    g.DrawPolygon(pen, head, 3);
    for (int d : {-2, -1, 1, 2}) g.DrawEllipse(dot_pen, static_cast<int>(d * spacing) - 3, -3, 6, 6);
    if (has_deviation) {
        float bar = F(dots * spacing);
        g.DrawLine(pen, bar, -length / 2 + 4, bar, length / 2 - 4);
    }
    ResetToDesign(surface);
}

// The relative bearing of a pointer's source; false when it shows nothing.
bool BearingOf(int source, double& relative) {
    switch (source) {
    case kEfs50BearingVor1: relative = g_sim.nav1_relative_bearing; break;
    case kEfs50BearingVor2: relative = g_sim.nav2_relative_bearing; break;
    case kEfs50BearingAdf:
        if (!(g_sim.adf_signal > kAdfSignalMin)) return false;
        relative = g_sim.adf_needle;
        break;
    default: return false;
    }
    return std::isfinite(relative);
}

const char* BearingName(int source) {
    switch (source) {
    case kEfs50BearingVor1: return "VOR1";
    case kEfs50BearingVor2: return "VOR2";
    case kEfs50BearingAdf: return "ADF";
    default: return "";
    }
}

// Pointer 1 a single cyan line, pointer 2 a double white one, each from
// tail to head across the card.
void DrawBearingPointers(gdi::Graphics& g, const DisplaySurface& surface, int mode) {
    for (int i = 0; i < 2; ++i) {
        double relative = 0;
        if (!BearingOf(g_display.efs50_bearing[static_cast<size_t>(i)], relative)) continue;
        float r = CardRadius(mode);
        BearingNeedle needle;
        needle.cx = kEfs50CentreX;
        needle.cy = CentreY(mode);
        needle.relative = relative;
        // On the arc the pointer stops well inside the card, clear of the canvas sides.
        needle.length = IsRose(mode) ? r - 14 : r * 0.65f;
        needle.inner = 22;
        needle.double_line = i == 1;
        needle.tail = IsRose(mode);
        needle.colour = i == 0 ? palette::kCyan : palette::kWhite;
        DrawBearingNeedle(g, surface, needle);
    }
}
}  // namespace

// [SECTION] Texts
namespace {
void FormatRange(double range, char* text, size_t size) {
    if (range == std::floor(range))
        std::snprintf(text, size, "%.0f NM", range);
    else
        std::snprintf(text, size, "%.1f NM", range);
}

void DrawTexts(gdi::Graphics& g, const DisplaySurface& surface, int mode, int nav, bool map) {
    ResetToDesign(surface);
    const SimState& s = g_sim;
    gdi::Font label(kArialFont, 10);
    gdi::Font value(kArialFont, 12, FontStyleBold);
    char text[48];
    MapGuidance guidance = ReadMapGuidance();
    bool fms = nav == kEfs50NavFms;
    ARGB source_colour = fms ? palette::kMagenta : palette::kGreen;

    // The nav source and its course, top left; ground speed under them.
    const char* source = fms ? "FMS" : s.nav1_is_vor ? "VOR1" : "LOC1";
    g.DrawText(source, value, source_colour, kEfs50LeftX, kEfs50TopY);
    double course = fms ? g_lnav.LegCourse : s.nav1_obs;
    if (fms && !guidance.has_active)
        std::snprintf(text, sizeof text, "CRS ---");
    else
        std::snprintf(text, sizeof text, "CRS %03.0f", ModuloPositive(std::round(std::isfinite(course) ? course : 0), 360));
    g.DrawText(text, label, source_colour, kEfs50LeftX, kEfs50SecondY);
    std::snprintf(text, sizeof text, "GS %.0f", std::isfinite(s.ground_speed) ? s.ground_speed : 0.0);
    g.DrawText(text, label, palette::kWhite, kEfs50LeftX, kEfs50ThirdY);

    // Top right: the active waypoint and its distance, or the receiver's
    // frequency and DME.
    if (fms) {
        if (guidance.has_active) {
            const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
            g.DrawText(w.Ident.data(), value, palette::kMagenta, kEfs50RightX, kEfs50TopY, gdi::TextAlign::Right);
            std::snprintf(text, sizeof text, "%.1f NM", guidance.distance_to_active);
        } else {
            std::snprintf(text, sizeof text, "--- NM");
        }
    } else {
        std::snprintf(text, sizeof text, "%06.2f", BcdNavFrequencyMhz(Token::NAV1_FREQUENCY));
        g.DrawText(text, value, palette::kGreen, kEfs50RightX, kEfs50TopY, gdi::TextAlign::Right);
        if (s.dme1_distance > 0 && std::isfinite(s.dme1_distance))
            std::snprintf(text, sizeof text, "%.1f NM", s.dme1_distance);
        else
            std::snprintf(text, sizeof text, "--- NM");
    }
    g.DrawText(text, label, palette::kWhite, kEfs50RightX, kEfs50SecondY, gdi::TextAlign::Right);

    // The bearing pointers' sources, bottom corners over the mode and range.
    double unused = 0;
    int first = g_display.efs50_bearing[0], second = g_display.efs50_bearing[1];
    if (BearingOf(first, unused)) g.DrawText(BearingName(first), label, palette::kCyan, kEfs50LeftX, kEfs50LegendY);
    if (BearingOf(second, unused))
        g.DrawText(BearingName(second), label, palette::kWhite, kEfs50RightX, kEfs50LegendY, gdi::TextAlign::Right);

    // The mode's name, bottom left; the range, bottom right, over a map.
    g.DrawText(Efs50ModeName(mode), value, palette::kWhite, kEfs50LeftX, kEfs50BottomY);
    if (map) {
        FormatRange(g_display.efs50_range, text, sizeof text);
        g.DrawText(text, label, palette::kWhite, kEfs50RightX, kEfs50BottomY, gdi::TextAlign::Right);
    }

    // The bug's value while it has just moved.
    DrawHeadingBugDigits(g, 200, kEfs50ThirdY);
}

// HSI mode 8: the shared traffic picture at the traffic range, with the
// mode's name and the range; with the traffic switch off only "OFF".
void DrawTrafficMode(gdi::Graphics& g, const DisplaySurface& surface) {
    ResetToDesign(surface);
    gdi::Font value(kArialFont, 12, FontStyleBold);
    gdi::Font label(kArialFont, 10);
    g.DrawText(Efs50ModeName(kEfs50ModeTraffic), value, palette::kCyan, kEfs50LeftX, kEfs50BottomY);
    if (g_display.switches[static_cast<size_t>(MapFamily::EFS50)].traffic != 1) {
        g.DrawText("OFF", value, palette::kAmber, kEfs50CentreX, kEfs50TrafficCentreY, gdi::TextAlign::Centre);
        return;
    }
    char text[24];
    FormatRange(g_display.efs50_traffic_range, text, sizeof text);
    g.DrawText(text, label, palette::kWhite, kEfs50RightX, kEfs50BottomY, gdi::TextAlign::Right);
    DrawEfs50TrafficPicture(surface, kEfs50CentreX, kEfs50TrafficCentreY, kEfs50TrafficRadius);
    ResetToDesign(surface);
}
}  // namespace

// [SECTION] The page
void DrawEfs50Ehsi(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    int mode = HsiMode();
    int nav = NavMode();

    // 1. HSI mode 8 is the traffic picture alone.
    if (mode == kEfs50ModeTraffic) {
        DrawTrafficMode(g, surface);
        return;
    }
    MapView view = Efs50MapView(surface);
    bool map = Efs50MapShown(mode, nav);
    double heading = g_sim.heading_magnetic.now;
    if (!std::isfinite(heading)) heading = 0;

    if (map) {
        // 2. The map is clipped to the card: the rose's disc (box (29, 14),
        //    200 across), or the arc's circle cut level above the bottom texts.
        ResetToDesign(surface);
        gdi::Path disc;
        AddMapClipOutline(disc, kEfs50CentreX, view.CentreY, static_cast<int>(CardRadius(mode)), IsRose(mode),
                          kMapClipBottom);
        g.SetClip(disc);

        // 3. Runways and the route, the fixes' circles, the ILS course line.
        const MapSwitches& toggles = g_display.switches[static_cast<size_t>(MapFamily::EFS50)];
        DrawAtcBoundariesLayer(g, view);
        DrawAirportDiagramLayer(g, view);
        DrawRunwaysLayer(g, view);
        DrawRouteLayer(g, view);
        DrawFixCirclesLayer(g, view);
        DrawIlsCourseLine(g, view);
        // 4. Navaids and airports to 160, intersections to 40, by their switches.
        RefreshProximitySubsets();
        ObjectLayerStyle style;
        style.navaid_colour = kMapGreen;
        style.fix_kind = kSymbolFix;
        style.fix_colour = kMapBlue;
        style.airport_colour = palette::kCyan;
        if (toggles.navaids == 1 && view.range <= kEfs50NavaidMaxRange) DrawNavaidsLayer(g, view, style);
        if (toggles.airports == 1 && view.range <= kEfs50AirportMaxRange) DrawAirportsLayer(g, view, style);
        if (toggles.intersections == 1 && view.range <= kEfs50FixMaxRange && surface.instance != 3)
            DrawIntersectionsLayer(g, view, style);
        // 5. Holds, the modification route and the trend vector.
        DrawHoldFigureLayer(g, view);
        DrawModificationRouteLayer(g, view);
        DrawTrendVector(g, view);
        // 6. The altitude range arc, by its option.
        if (g_config.DrawBodArcOnEFS50EHSI == 1) DrawAltitudeRangeArc(g, view);
        // 7. The descent marks, by their option and with more than 8 nm to
        //    go, under the same clip (on the rose the card's circle).
        MapGuidance guidance = ReadMapGuidance();
        if (g_config.ShowTodBodIndicators == 1 && guidance.has_active &&
            guidance.distance_to_active > kEfs50MarksMinToGoNm)
            DrawVerticalMarks(g, view, kVerticalMarksStyleEfs50);
        ResetToDesign(surface);
        g.ResetClip();
    }

    // 8. Furniture over the map: compass, needle, bearing pointers, texts last.
    DrawCompass(g, surface, mode, map, heading);
    bool needle = mode != kEfs50ModeArcBearing &&
                  !(map && (mode == kEfs50ModeRoseMap || mode == kEfs50ModeArcMap));
    if (needle) DrawCourseNeedle(g, surface, mode, nav, heading);
    DrawBearingPointers(g, surface, mode);
    DrawTexts(g, surface, mode, nav, map);
}
