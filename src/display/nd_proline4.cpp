// nd_proline4.cpp: the PROLINE4_MFD page: four modes on one 247 x 285 canvas,
// every text of its own in the typewriter face, over the shared map layers.
//
//   0 ROSE HSI   a full compass rose round the aircraft with the NAV 1 course
//                needle and deviation bar: the page a pilot flies a radial
//                or a localiser on; no map
//   1 ARC HSI    the same needle under the expanded arc; no map
//   2 CTR MAP    the small centred map, radius 70, inside a full rose
//   3 ARC MAP    the expanded arc map, radius 140, with the T/C and T/D
//                marks and (up to 160 nm) the traffic
//
// The radius goes with the map modes: entering 2 or 3 sets it, and the HSI
// modes 0 and 1 keep the last one in their map view, though they draw no map.
//
// Two bearing pointers, each stepped by its panel key through four sources,
// in the order the cockpit's source selectors go round:
//   0 off, 1 VOR (VOR 1 for the first pointer, VOR 2 for the second),
//   2 ADF (while it has a signal), 3 FMS (the bearing to the active waypoint).
// The first pointer is a single cyan needle marked by a circle, the second a
// double white needle marked by a diamond; their sources are named at the
// bottom corners whether or not the source has something to show.
//
// Index:
//   [SECTION] Map view
//   [SECTION] Navaids by kind
//   [SECTION] Compass furniture
//   [SECTION] Course needle and bearing pointers
//   [SECTION] Texts
//   [SECTION] The page
#include "display/nd_proline4.h"

#include "display/display_state.h"
#include "display/map_symbols.h"
#include "display/traffic.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {
constexpr double kNeedleFullScale = 127;     // NAV1 needle token at two dots
constexpr double kAdfSignalMin = 1.0;        // the ADF pointer shows above this signal
constexpr double kNoTasBelow = 100;          // knots: TAS shows dashes at or below
constexpr double kArcHalfSweep = 50;         // degrees of the arc each side of the top
constexpr int kMapClipBottom = 242;          // the arc's map ends above the bottom lines
constexpr int kArcNeedleDrop = 70;           // the arc HSI's needle turns this far above own-ship
constexpr int kDotSpacing = 18;              // pixels between deviation dots
constexpr float kArcPointerTail = 34;        // pixels of a bearing pointer's tail under the arc
constexpr float kIdentFontPx = 10;           // idents of the navaid layer, as the shared layers
constexpr double kMaxDrawnPx = 20000;        // projected points farther out are left to the clip
constexpr int kRightEdge = 243;              // right-aligned texts end here
constexpr int kLeftEdge = 4;

float F(double v) { return static_cast<float>(v); }
int Mode() {
    int mode = g_display.proline4_mode;
    return mode >= kProline4ModeRose && mode <= kProline4ModeArcMap ? mode : kProline4ModeArcMap;
}
bool IsArc(int mode) { return mode == kProline4ModeArcHsi || mode == kProline4ModeArcMap; }
// Compass centre and radius of each page.
float CompassY(int mode) {
    if (IsArc(mode)) return kProline4ArcCentreY;
    return mode == kProline4ModeCentred ? kProline4CentredY : kProline4RoseCentreY;
}
float CompassRadius(int mode) {
    if (IsArc(mode)) return kProline4ArcRadius;
    return mode == kProline4ModeCentred ? kProline4CentredRadius : kProline4RoseRadius;
}
}  // namespace

bool Proline4ModeHasMap(int mode) { return mode == kProline4ModeCentred || mode == kProline4ModeArcMap; }

// [SECTION] Map view
MapView Proline4MapView(const DisplaySurface& surface) {
    MapView view;
    int mode = Mode();
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    view.instance = surface.instance;
    view.range = g_display.proline4_range > 0 ? g_display.proline4_range : 40;
    // The map modes have their own radius; the HSI modes keep the last one
    // (a value that is neither goes back to the arc's).
    int radius = g_display.proline4_radius == kProline4CentredRadius ? kProline4CentredRadius : kProline4ArcRadius;
    if (mode == kProline4ModeCentred) radius = kProline4CentredRadius;
    if (mode == kProline4ModeArcMap) radius = kProline4ArcRadius;
    view.MapRadiusPx = radius;
    view.PixelsPerNm = radius / view.range;
    view.CentreX = kProline4CentreX;
    view.CentreY = radius == kProline4CentredRadius ? kProline4CentredY : kProline4ArcCentreY;
    view.MapHeading = g_sim.heading_true;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    view.plan_mode = false;
    return view;
}

// [SECTION] Navaids by kind
namespace {
// The navaids of the proximity subset, VORs (and the other non-NDB kinds) by
// the common navaids switch and NDBs by the display's own switch; both in
// blue, culled and projected as the shared object layers do.
void DrawNavaidsByKind(gdi::Graphics& g, const MapView& view, bool vors, bool ndbs) {
    if (!vors && !ndbs) return;
    BeginMapLayer(g, view);
    gdi::Font font(kArialFont, kIdentFontPx, FontStyleBold);
    const auto& subset = g_nearby.NavaidsNear320;
    int count = std::min(subset.count, subset.kLimit);
    double cull_nm = 2 * view.range + kNavaidCullMarginNm;
    for (int i = 1; i <= count; ++i) {
        const NearbyRecord& r = subset.rows[static_cast<size_t>(i)];
        bool ndb = std::strcmp(r.Kind.data(), "N") == 0;
        if (ndb ? !ndbs : !vors) continue;
        // 1. Cull by distance before any projection.
        double distance = 0, bearing = 0;
        GreatCircle(view.MapCentreLatitude, view.MapCentreLongitude, r.Latitude, r.Longitude, distance, bearing);
        if (!(distance <= cull_nm) || !std::isfinite(bearing)) continue;
        // 2. Project, and draw the symbol and its ident.
        double x = 0, y = 0;
        PolarToScreen(view.MapHeading, bearing, 0.0, 0.0, distance * view.PixelsPerNm, x, y);
        int px = static_cast<int>(std::clamp(x, -kMaxDrawnPx, kMaxDrawnPx));
        int py = static_cast<int>(std::clamp(y, -kMaxDrawnPx, kMaxDrawnPx));
        int kind = std::strcmp(r.Kind.data(), "V") == 0 ? kSymbolVor : kSymbolNavaid;
        DrawMapSymbol(g, px, py, kind, kNoLabel, 1, 1, kMapBlue, view.range);
        g.DrawText(r.Ident.data(), font, palette::kBlue, F(px + 7), F(py - 10));
    }
    EndMapLayer(g, view);
}
}  // namespace

// [SECTION] Compass furniture
namespace {
// The cards: the big ones with digits every 30 degrees, the small centred
// map's with smaller digits every 30 as well.
constexpr CompassCardStyle kRoseCard{9, 5, 13, 11, 90, 30, true, kProline4Font};
constexpr CompassCardStyle kCentredCard{7, 4, 11, 10, 90, 30, true, kProline4Font};

// The compass of the mode: a full circle or the arc, the heading bug, the
// half-range ring on map pages, the lubber triangle and own-ship.
void DrawCompass(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading, double range) {
    bool arc = IsArc(mode);
    float cx = kProline4CentreX, cy = CompassY(mode), r = CompassRadius(mode);
    double sweep = arc ? kArcHalfSweep : 180;
    int left = static_cast<int>(cx - r), top = static_cast<int>(cy - r), size = static_cast<int>(2 * r);
    gdi::Pen ring(palette::kWhite, 1.5f);
    if (arc)
        g.DrawArc(ring, left, top, size, size, F(270 - sweep), F(2 * sweep));
    else
        g.DrawEllipse(ring, left, top, size, size);
    DrawCompassCard(g, surface, cx, cy, r, heading, -sweep, sweep,
                    mode == kProline4ModeCentred ? kCentredCard : kRoseCard);
    DrawHeadingBugNotch(g, surface, cx, cy, r, heading, sweep, 6);
    ResetToDesign(surface);

    // The half-range ring with its figure, on the map pages.
    if (Proline4ModeHasMap(mode)) {
        gdi::Pen dashed(palette::kWhite, 1.0f);
        dashed.SetDash(DashStyleDash);
        int half = static_cast<int>(r / 2);
        int hx = static_cast<int>(cx) - half, hy = static_cast<int>(cy) - half;
        if (arc)
            g.DrawArc(dashed, hx, hy, 2 * half, 2 * half, F(270 - sweep), F(2 * sweep));
        else
            g.DrawEllipse(dashed, hx, hy, 2 * half, 2 * half);
        char text[16];
        std::snprintf(text, sizeof text, "%g", range / 2);
        gdi::Font font(kProline4Font, 10);
        double a = (arc ? 270 - sweep : 180) * kDegToRad;
        g.DrawText(text, font, palette::kWhite, F(cx + half * std::cos(a) - 2), F(cy + half * std::sin(a) - 12),
                   gdi::TextAlign::Right);
    }

    // The lubber triangle over the card's top.
    gdi::SolidBrush white(palette::kWhite);
    INT x = static_cast<INT>(cx), t = static_cast<INT>(cy - r);
    const GpPoint lubber[] = {{x, t + 1}, {x - 5, t - 8}, {x + 5, t - 8}};
    g.FillPolygon(white, lubber, 3);

    // Own-ship: the HSI's fixed aircraft on the rose, a triangle elsewhere.
    gdi::Pen ship(palette::kWhite, 2.0f);
    INT y = static_cast<INT>(cy);
    if (mode == kProline4ModeRose) {
        g.DrawLine(ship, F(x), F(y - 12), F(x), F(y + 12));
        g.DrawLine(ship, F(x - 12), F(y - 2), F(x + 12), F(y - 2));
        g.DrawLine(ship, F(x - 5), F(y + 10), F(x + 5), F(y + 10));
    } else {
        const GpPoint triangle[] = {{x, y - 12}, {x + 6, y + 4}, {x - 6, y + 4}};
        g.DrawPolygon(ship, triangle, 3);
    }
}
}  // namespace

// [SECTION] Course needle and bearing pointers
bool Proline4PointerBearing(int pointer, int source, double& relative_bearing) {
    const SimState& s = g_sim;
    switch (source) {
    case kProline4PointerVor:
        relative_bearing = pointer == 0 ? s.nav1_relative_bearing : s.nav2_relative_bearing;
        break;
    case kProline4PointerAdf:
        if (!(s.adf_signal > kAdfSignalMin)) return false;
        relative_bearing = s.adf_needle;
        break;
    case kProline4PointerFms: {
        MapGuidance guidance = ReadMapGuidance();
        if (!guidance.has_active) return false;
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
        double distance = 0, bearing = 0;
        GreatCircle(s.latitude, s.longitude, w.Latitude, w.Longitude, distance, bearing);
        relative_bearing = bearing - s.heading_true;
        break;
    }
    default:
        return false;
    }
    if (!std::isfinite(relative_bearing)) return false;
    relative_bearing = ModuloPositive(relative_bearing, 360);
    return true;
}

namespace {
// The NAV 1 course needle of the HSI pages, with its deviation bar and dots:
// through the rose's centre, or above own-ship under the arc.
void DrawCourseNeedle(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading) {
    double course = g_sim.nav1_obs;
    double dots = g_sim.nav1_needle / kNeedleFullScale * 2;
    if (!std::isfinite(course) || !std::isfinite(dots)) return;
    dots = std::clamp(dots, -2.5, 2.5);
    bool arc = IsArc(mode);
    float cy = arc ? F(kProline4ArcCentreY - kArcNeedleDrop) : CompassY(mode);
    float length = arc ? 56 : CompassRadius(mode) - 20;
    gdi::Pen pen(palette::kGreen, 2.0f);
    gdi::Pen dot_pen(palette::kWhite, 1.5f);
    ResetToDesign(surface);
    g.Translate(kProline4CentreX, cy);
    g.Rotate(F(course - heading));
    g.DrawLine(pen, 0, -length, 0, -length / 2);
    g.DrawLine(pen, 0, length / 2, 0, length);
    const GpPoint head[] = {{0, static_cast<INT>(-length - 8)}, {-5, static_cast<INT>(-length)},
                            {5, static_cast<INT>(-length)}};
    g.DrawPolygon(pen, head, 3);
    for (int d : {-2, -1, 1, 2}) g.DrawEllipse(dot_pen, d * kDotSpacing - 3, -3, 6, 6);
    float bar = F(dots * kDotSpacing);
    g.DrawLine(pen, bar, -length / 2 + 4, bar, length / 2 - 4);
    ResetToDesign(surface);
}

// One bearing pointer through the compass centre: the head on the station's
// side, the tail on the other; single for the first pointer, double for the second.
void DrawBearingPointer(gdi::Graphics& g, const DisplaySurface& surface, int mode, int pointer) {
    double relative = 0;
    if (!Proline4PointerBearing(pointer, g_display.proline4_bearing[static_cast<size_t>(pointer)], relative)) return;
    float r = CompassRadius(mode);
    // On the arc the needle stays well inside the card, clear of the canvas sides.
    float length = IsArc(mode) ? r * 0.7f : r - 10;
    float inner = mode == kProline4ModeRose ? 24.0f : 16.0f;
    // Under the arc a short tail, clear of the bottom lines.
    float tail = IsArc(mode) ? kArcPointerTail : length - 4;
    gdi::Pen pen(pointer == 0 ? palette::kCyan : palette::kWhite, 1.5f);
    ResetToDesign(surface);
    g.Translate(kProline4CentreX, CompassY(mode));
    g.Rotate(F(relative));
    auto shaft = [&](float side) {
        g.DrawLine(pen, side, -length + 10, side, -inner);
        g.DrawLine(pen, side, inner, side, tail);
    };
    if (pointer == 0) {
        shaft(0);
    } else {
        shaft(-3);
        shaft(3);
    }
    g.DrawLine(pen, -6, -length + 10, 0, -length);
    g.DrawLine(pen, 6, -length + 10, 0, -length);
    ResetToDesign(surface);
}

// A pointer's source name, as its bottom corner shows it.
const char* PointerSourceName(int pointer, int source) {
    switch (source) {
    case kProline4PointerVor: return pointer == 0 ? "VOR1" : "VOR2";
    case kProline4PointerAdf: return "ADF";
    case kProline4PointerFms: return "FMS";
    default: return nullptr;
    }
}
}  // namespace

// [SECTION] Texts
namespace {
void DrawTexts(gdi::Graphics& g, const DisplaySurface& surface, int mode, double heading, bool traffic_drawn) {
    ResetToDesign(surface);
    const SimState& s = g_sim;
    const DisplayState& d = g_display;
    gdi::Font label(kProline4Font, 11);
    gdi::Font value(kProline4Font, 12, FontStyleBold);
    gdi::Font big(kProline4Font, 15, FontStyleBold);
    char text[48];

    // Ground speed and true airspeed, top left.
    g.DrawText("GS", label, palette::kWhite, kLeftEdge, 4);
    std::snprintf(text, sizeof text, "%.0f", std::isfinite(s.ground_speed) ? s.ground_speed : 0.0);
    g.DrawText(text, value, palette::kGreen, 30, 3);
    g.DrawText("TAS", label, palette::kWhite, kLeftEdge, 18);
    if (s.true_airspeed.now > kNoTasBelow)
        std::snprintf(text, sizeof text, "%.0f", s.true_airspeed.now);
    else
        std::snprintf(text, sizeof text, "---");
    g.DrawText(text, value, palette::kGreen, 30, 17);

    // The heading, boxed, over the lubber triangle of the page's card.
    float box_top = CompassY(mode) - CompassRadius(mode) - 30;
    std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(std::round(heading), 360));
    gdi::Pen box(palette::kWhite, 1.0f);
    g.DrawRectangle(box, kProline4CentreX - 19, static_cast<int>(box_top), 38, 19);
    g.DrawText(text, big, palette::kWhite, kProline4CentreX, box_top + 1, gdi::TextAlign::Centre);

    if (Proline4ModeHasMap(mode)) {
        // The active waypoint, its distance and ETA, top right.
        MapGuidance guidance = ReadMapGuidance();
        if (guidance.has_active) {
            const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
            g.DrawText(w.Ident.data(), value, palette::kMagenta, kRightEdge, 3, gdi::TextAlign::Right);
            std::snprintf(text, sizeof text, "%.1f NM", guidance.distance_to_active);
            g.DrawText(text, label, palette::kWhite, kRightEdge, 18, gdi::TextAlign::Right);
            FormatActiveWaypointEta(text, sizeof text);
            g.DrawText(text, label, palette::kWhite, kRightEdge, 32, gdi::TextAlign::Right);
        }
        // The range, lower right.
        std::snprintf(text, sizeof text, "%.0f NM", d.proline4_range);
        g.DrawText(text, label, palette::kWhite, kRightEdge, kProline4StatusTextY, gdi::TextAlign::Right);
    } else {
        // The HSI pages: the receiver and its DME top right, the course top left.
        g.DrawText(s.nav1_is_vor ? "VOR1" : "LOC1", value, palette::kGreen, kRightEdge, 3, gdi::TextAlign::Right);
        if (s.dme1_distance > 0 && std::isfinite(s.dme1_distance))
            std::snprintf(text, sizeof text, "%.1f NM", s.dme1_distance);
        else
            std::snprintf(text, sizeof text, "--- NM");
        g.DrawText(text, label, palette::kWhite, kRightEdge, 18, gdi::TextAlign::Right);
        double course = std::isfinite(s.nav1_obs) ? ModuloPositive(std::round(s.nav1_obs), 360) : 0;
        std::snprintf(text, sizeof text, "CRS %03.0f", course);
        g.DrawText(text, label, palette::kGreen, kLeftEdge, 32);
    }

    // The heading bug's value, lower left, always: the pilot sets it by it.
    double bug = std::isfinite(s.heading_bug.now) ? ModuloPositive(std::round(s.heading_bug.now), 360) : 0;
    std::snprintf(text, sizeof text, "HDG %03.0f", bug);
    g.DrawText(text, label, palette::kCyan, kLeftEdge, kProline4StatusTextY);

    // Traffic on the arc map: shown, or switched on but beyond its range.
    const MapSwitches& toggles = d.switches[static_cast<size_t>(MapFamily::PROLINE4)];
    if (mode == kProline4ModeArcMap && toggles.traffic == 1)
        g.DrawText(traffic_drawn ? "TFC" : "TFC RNG", label, traffic_drawn ? palette::kCyan : palette::kAmber,
                   kProline4CentreX, kProline4StatusTextY, gdi::TextAlign::Centre);

    // The bearing pointers' sources at the bottom corners, each with its mark.
    const char* first = PointerSourceName(0, d.proline4_bearing[0]);
    if (first != nullptr) {
        gdi::Pen cyan(palette::kCyan, 1.5f);
        g.DrawEllipse(cyan, kLeftEdge, kProline4PointerTextY + 3, 8, 8);
        g.DrawText(first, label, palette::kCyan, kLeftEdge + 12, kProline4PointerTextY);
    }
    const char* second = PointerSourceName(1, d.proline4_bearing[1]);
    if (second != nullptr) {
        gdi::Pen white(palette::kWhite, 1.5f);
        INT x = kRightEdge - 4, y = kProline4PointerTextY + 7;
        const GpPoint diamond[] = {{x, y - 5}, {x + 4, y}, {x, y + 5}, {x - 4, y}};
        g.DrawPolygon(white, diamond, 4);
        g.DrawText(second, label, palette::kWhite, kRightEdge - 12, kProline4PointerTextY, gdi::TextAlign::Right);
    }
}
}  // namespace

// [SECTION] The page
void DrawProline4Mfd(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    int mode = Mode();
    // 1. The view; a map mode set by the profile or a variable takes its
    //    radius as if the knob had entered it.
    MapView view = Proline4MapView(surface);
    if (Proline4ModeHasMap(mode)) g_display.proline4_radius = static_cast<int>(view.MapRadiusPx);
    double heading = g_sim.heading_magnetic.now;
    if (!std::isfinite(heading)) heading = 0;
    bool traffic_drawn = false;

    if (Proline4ModeHasMap(mode)) {
        // 2. The map is clipped to the compass: the centred map's disc, or
        //    the arc's circle cut level above the bottom lines.
        ResetToDesign(surface);
        gdi::Path disc;
        AddMapClipOutline(disc, view.CentreX, view.CentreY, static_cast<int>(view.MapRadiusPx),
                          mode == kProline4ModeCentred, kMapClipBottom);
        g.SetClip(disc);

        // 3. The route with the runways, the fixes' circles, the ILS course line.
        const MapSwitches& toggles = g_display.switches[static_cast<size_t>(MapFamily::PROLINE4)];
        RefreshProximitySubsets();
        DrawAtcBoundariesLayer(g, view);
        DrawAirportDiagramLayer(g, view);
        DrawRunwaysLayer(g, view);
        DrawRouteLayer(g, view);
        DrawFixCirclesLayer(g, view);
        DrawIlsCourseLine(g, view);
        // 4. Navaids to 160 (NDBs by their own switch), airports to 80,
        //    intersections to 40 and not in the virtual cockpit's instance.
        ObjectLayerStyle style;
        style.navaid_colour = kMapBlue;
        style.fix_kind = kSymbolFix;
        style.fix_colour = kMapBlue;
        style.airport_colour = palette::kCyan;
        if (view.range <= kProline4NavaidMaxRange)
            DrawNavaidsByKind(g, view, toggles.navaids == 1, g_display.proline4_ndb == 1);
        if (toggles.airports == 1 && view.range <= kProline4AirportMaxRange) DrawAirportsLayer(g, view, style);
        if (toggles.intersections == 1 && surface.instance != 3 && view.range <= kProline4FixMaxRange)
            DrawIntersectionsLayer(g, view, style);
        // 5. Holds, the modification route, trend vector, altitude range arc.
        DrawHoldFigureLayer(g, view);
        DrawModificationRouteLayer(g, view);
        DrawTrendVector(g, view);
        DrawAltitudeRangeArc(g, view);
        ResetToDesign(surface);
        g.ResetClip();

        // 6. Traffic on the arc map only, up to 160 nm, with its switch on.
        //    The family has no traffic style of its own: it takes the one of
        //    the other arc maps of its size (plain 11-pixel text, white for
        //    other traffic), which reads on this canvas as on theirs.
        traffic_drawn = mode == kProline4ModeArcMap && toggles.traffic == 1 && view.range <= kProline4TrafficMaxRange;
        if (traffic_drawn)
            DrawTraffic(surface, view.MapRadiusPx, view.range, view.CentreX, view.CentreY, kTrafficKindMd11);
        // 7. The T/C and T/D marks over the arc map.
        if (mode == kProline4ModeArcMap) DrawVerticalMarks(g, view, kVerticalMarksStyleProline4);
        ResetToDesign(surface);
    }

    // 8. Furniture over the map, the pointers, the texts last.
    DrawCompass(g, surface, mode, heading, view.range);
    if (!Proline4ModeHasMap(mode)) DrawCourseNeedle(g, surface, mode, heading);
    DrawBearingPointer(g, surface, mode, 1);
    DrawBearingPointer(g, surface, mode, 0);
    DrawTexts(g, surface, mode, heading, traffic_drawn);
}
