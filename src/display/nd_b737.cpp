// nd_b737.cpp: the HW_B737_ND page: seven modes on one 244 x 302 canvas.
//
//   1 NAV rose, 2 VOR rose           a full compass rose, no map
//   3 expanded NAV, 4 expanded VOR   the arc of radius 215, no map
//   5 MAP                            the arc with every map layer
//   6 centred MAP                    a circle of radius 110 with the map
//   7 PLAN                           north-up around the plan's centre row
//
// Index:
//   [SECTION] Map view
//   [SECTION] Compass furniture
//   [SECTION] Course and deviation
//   [SECTION] Texts
//   [SECTION] Vertical deviation scale
//   [SECTION] The page
#include "display/nd_b737.h"

#include "display/display_state.h"
#include "display/map_symbols.h"
#include "display/traffic.h"
#include "frame/sim_state.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {
constexpr double kVorNeedleFullScale = 127;  // NAV1 needle token at two dots
constexpr double kNmPerDot = 1;              // FMS cross-track: one dot a mile
constexpr int kDotSpacing = 20;              // pixels between deviation dots
constexpr double kAdfSignalMin = 1.0;        // ADF pointer and text above this signal
constexpr double kNoTasBelow = 100;          // knots: TAS shows dashes at or below
constexpr double kNoWindBelow = 1;           // knots

float F(double v) { return static_cast<float>(v); }
int Mode() { return g_display.b737_mode; }
bool IsMapMode(int mode) { return mode > kB737ModeExpVor; }
bool IsArcMode(int mode) { return mode >= kB737ModeExpNav && mode <= kB737ModeMap; }
bool IsRoseMode(int mode) { return mode <= kB737ModeVor; }
bool RadioSource(int mode) { return mode == kB737ModeVor || mode == kB737ModeExpVor; }
}  // namespace

// [SECTION] Map view
MapView B737MapView(const DisplaySurface& surface) {
    MapView view;
    int mode = Mode();
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    view.instance = surface.instance;
    view.range = g_display.b737_range;
    // The scale comes from the last frame's radius: this frame's mode sets
    // the radius for the next one.
    view.PixelsPerNm = g_display.b737_radius / view.range;
    view.CentreX = kB737ArcCentreX;
    bool centred = mode >= kB737ModeCtrMap;
    view.CentreY = centred ? kB737CtrCentreY : kB737ArcCentreY;
    view.MapRadiusPx = centred ? kB737CtrRadius : kB737ArcRadius;
    view.plan_mode = mode == kB737ModePlan;
    view.MapHeading = view.plan_mode ? 0 : g_sim.heading_true;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    // The LEGS page's centre entry, else the active waypoint, else the aircraft.
    if (view.plan_mode) CentreOnPlan(view);
    return view;
}

// [SECTION] Compass furniture
namespace {
// The card: long ticks of 9, digits of 13 on the thirties and 10 between.
CompassCardStyle B737Card(bool digits_inside, int digit_step) {
    CompassCardStyle style;
    style.digits_inside = digits_inside;
    style.digit_step = digit_step;
    return style;
}

// The fixed heading pointer at the top of the card and the track line.
void DrawHeadingPointer(gdi::Graphics& g, const DisplaySurface& surface, float cx, float cy, float radius) {
    gdi::SolidBrush white(palette::kWhite);
    int top = static_cast<int>(cy - radius);
    const GpPoint pointer[] = {{static_cast<INT>(cx), top + 1}, {static_cast<INT>(cx) - 6, top - 9},
                               {static_cast<INT>(cx) + 6, top - 9}};
    g.FillPolygon(white, pointer, 3);
    // The track line: where the aircraft goes over the ground, off the
    // heading at the top of the card (clockwise on the screen is right).
    gdi::Pen track(palette::kWhite, 1.0f);
    ResetToDesign(surface);
    g.Translate(cx, cy);
    double off_heading = ModuloPositive(g_sim.track - g_sim.heading_magnetic.now + 180, 360) - 180;
    if (!std::isfinite(off_heading)) off_heading = 0;
    g.Rotate(F(off_heading));
    g.DrawLine(track, 0, -radius + 10, 0, -22);
    ResetToDesign(surface);
}

// Own-ship: a white triangle, nose up, at the centre of the card.
void DrawOwnShip(gdi::Graphics& g, float cx, float cy) {
    gdi::Pen pen(palette::kWhite, 2.0f);
    const GpPoint ship[] = {{static_cast<INT>(cx), static_cast<INT>(cy) - 14},
                            {static_cast<INT>(cx) + 7, static_cast<INT>(cy) + 4},
                            {static_cast<INT>(cx) - 7, static_cast<INT>(cy) + 4}};
    g.DrawPolygon(pen, ship, 3);
}

// The half-range ring and its label.
void DrawRangeRing(gdi::Graphics& g, float cx, float cy, float radius, bool full_circle) {
    gdi::Pen pen(palette::kWhite, 1.0f);
    pen.SetDash(DashStyleDash);
    int r = static_cast<int>(radius / 2);
    if (full_circle)
        g.DrawEllipse(pen, static_cast<int>(cx) - r, static_cast<int>(cy) - r, 2 * r, 2 * r);
    else
        g.DrawArc(pen, static_cast<int>(cx) - r, static_cast<int>(cy) - r, 2 * r, 2 * r, 215, 110);
    char text[16];
    std::snprintf(text, sizeof text, "%g", g_display.b737_range / 2);
    gdi::Font font(kHwFont, 10);
    // Left of the ring, just above the horizontal.
    double a = (full_circle ? 180.0 : 215.0) * kDegToRad;
    g.DrawText(text, font, palette::kWhite, F(cx + r * std::cos(a) - 3), F(cy + r * std::sin(a) - 12),
               gdi::TextAlign::Right);
}
}  // namespace

// [SECTION] Course and deviation
namespace {
// The course in use (magnetic) and the deviation in dots, left negative.
bool CourseAndDeviation(int mode, double& course, double& dots) {
    if (RadioSource(mode)) {
        course = g_sim.nav1_obs;
        dots = g_sim.nav1_needle / kVorNeedleFullScale * 2;
        return std::isfinite(course) && std::isfinite(dots);
    }
    MapGuidance guidance = ReadMapGuidance();
    if (!guidance.has_active) return false;
    const PlanTable& plan = g_plan.ActivePlan;
    const PlanWaypoint& to = plan[static_cast<size_t>(guidance.active_row)];
    CrossTrackInput in;
    in.has_active_waypoint = true;
    if (guidance.intercept_active) {
        in.start_lat = guidance.intercept_latitude;
        in.start_lon = guidance.intercept_longitude;
    } else if (guidance.active_row >= 1) {
        in.start_lat = plan[static_cast<size_t>(guidance.active_row - 1)].Latitude;
        in.start_lon = plan[static_cast<size_t>(guidance.active_row - 1)].Longitude;
    } else {
        in.start_lat = g_sim.latitude;
        in.start_lon = g_sim.longitude;
    }
    in.waypoint_lat = to.Latitude;
    in.waypoint_lon = to.Longitude;
    in.aircraft_lat = g_sim.latitude;
    in.aircraft_lon = g_sim.longitude;
    double bearing = 0;
    GreatCircle(in.start_lat, in.start_lon, to.Latitude, to.Longitude, in.leg_length, bearing);
    in.distance_to_go = guidance.distance_to_active;
    in.leg_course_magnetic = NormaliseMagnetic(bearing - g_sim.magnetic_variation);
    in.heading_magnetic = g_sim.heading_magnetic.now;
    in.magnetic_variation = g_sim.magnetic_variation;
    CrossTrackResult out;
    CrossTrackSolve(in, out);
    course = in.leg_course_magnetic;
    double xtk = out.xtk_distance < 0 ? 0 : out.xtk_distance;
    // Right of the course the bar stands to the left.
    dots = (out.xtk_side == 1 ? -xtk : xtk) / kNmPerDot;
    return std::isfinite(course) && std::isfinite(dots);
}

// Course arrow through (cx, cy) with its deviation bar and dots.
void DrawCourseArrow(gdi::Graphics& g, const DisplaySurface& surface, float cx, float cy, float length, int mode) {
    double course = 0, dots = 0;
    if (!CourseAndDeviation(mode, course, dots)) return;
    if (dots > 2.5) dots = 2.5;
    if (dots < -2.5) dots = -2.5;
    ARGB colour = RadioSource(mode) ? palette::kWhite : palette::kMagenta;
    gdi::Pen pen(colour, 2.0f);
    gdi::Pen dot_pen(palette::kWhite, 1.5f);
    ResetToDesign(surface);
    g.Translate(cx, cy);
    g.Rotate(F(course - g_sim.heading_magnetic.now));
    g.DrawLine(pen, 0, -length, 0, -30);
    g.DrawLine(pen, 0, 30, 0, length);
    const GpPoint head[] = {{0, static_cast<INT>(-length - 8)}, {-5, static_cast<INT>(-length)},
                            {5, static_cast<INT>(-length)}};
    g.DrawPolygon(pen, head, 3);
    for (int d : {-2, -1, 1, 2}) g.DrawEllipse(dot_pen, d * kDotSpacing - 3, -3, 6, 6);
    float bar = F(dots * kDotSpacing);
    g.DrawLine(pen, bar, -26, bar, 26);
    ResetToDesign(surface);
}

// The ADF pointer: a green needle through the centre at the station's bearing.
void DrawAdfPointer(gdi::Graphics& g, const DisplaySurface& surface, float cx, float cy, float length) {
    if (!(g_sim.adf_signal > kAdfSignalMin) || !std::isfinite(g_sim.adf_needle)) return;
    gdi::Pen pen(palette::kGreen, 1.5f);
    ResetToDesign(surface);
    g.Translate(cx, cy);
    g.Rotate(F(g_sim.adf_needle));
    g.DrawLine(pen, 0, -length, 0, length);
    g.DrawLine(pen, -5, -length + 10, 0, -length);
    g.DrawLine(pen, 5, -length + 10, 0, -length);
    ResetToDesign(surface);
}
}  // namespace

// [SECTION] Texts
namespace {
// Ident of the NAV1 station: the nearest navaid of the subset on that frequency.
void TunedStationIdent(double frequency, char* out, size_t size) {
    out[0] = 0;
    const auto& subset = g_nearby.NavaidsNear320;
    int count = subset.count < subset.kLimit ? subset.count : subset.kLimit;
    double best = 1e9;
    for (int i = 1; i <= count; ++i) {
        const NearbyRecord& r = subset.rows[static_cast<size_t>(i)];
        if (std::fabs(std::atof(r.Frequency.data()) - frequency) > 0.001) continue;
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, r.Latitude, r.Longitude, distance, bearing);
        if (distance < best) {
            best = distance;
            std::snprintf(out, size, "%s", r.Ident.data());
        }
    }
}

void DrawTexts(gdi::Graphics& g, const DisplaySurface& surface, int mode) {
    ResetToDesign(surface);
    const SimState& s = g_sim;
    gdi::Font label(kHwFont, 10);
    gdi::Font value(kHwFont, 13);
    gdi::Font big(kHwFont, 15, FontStyleBold);
    char text[48];
    MapGuidance guidance = ReadMapGuidance();
    bool fms_source = mode == 1 || mode == 3 || mode >= 5;

    // Distance to go and TAS.
    if (fms_source && guidance.has_active) {
        std::snprintf(text, sizeof text, "%.1f", guidance.distance_to_active);
        g.DrawText(text, value, palette::kWhite, 10, 8);
        GpRectF box = g.MeasureText(text, value);
        g.DrawText("NM", label, palette::kCyan, 10 + box.Width, 11);
        g.DrawText("TAS", label, palette::kWhite, 10, 23);
        if (s.true_airspeed.now > kNoTasBelow)
            std::snprintf(text, sizeof text, "%3.0f", s.true_airspeed.now);
        else
            std::snprintf(text, sizeof text, "- - -");
        g.DrawText(text, value, palette::kWhite, 33, 21);
    }
    // DME of the radio source.
    if (RadioSource(mode)) {
        g.DrawText("DME", label, palette::kWhite, 5, 10);
        if (s.dme1_distance > 0 && std::isfinite(s.dme1_distance))
            std::snprintf(text, sizeof text, "%.1f", s.dme1_distance);
        else
            std::snprintf(text, sizeof text, "- - -");
        g.DrawText(text, value, palette::kWhite, 30, 8);
    }
    // Heading.
    g.DrawText("HDG", label, palette::kGreen, 83, 10);
    std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(std::round(s.heading_magnetic.now), 360));
    g.DrawText(text, big, palette::kGreen, 107, 6);
    g.DrawText("M", label, palette::kGreen, 140, 10);
    // ETA of the active waypoint.
    if (guidance.has_active) {
        ZuluEta eta = ActiveWaypointEta();
        std::snprintf(text, sizeof text, "%02.0f%02.0f.%1.0f", eta.hours, eta.minutes, eta.tenths);
        g.DrawText(text, value, palette::kWhite, 190, 8);
        GpRectF box = g.MeasureText(text, value);
        g.DrawText("Z", label, palette::kWhite, 190 + box.Width - 2, 11);
    }
    // Ground speed.
    g.DrawText("GS", label, palette::kWhite, 190, 22);
    std::snprintf(text, sizeof text, "%.0f", s.ground_speed);
    g.DrawText(text, value, palette::kWhite, 206, 20);
    // Wind, below PLAN.
    if (mode < kB737ModePlan) {
        if (s.wind_speed >= kNoWindBelow) {
            std::snprintf(text, sizeof text, "%03.0f\u00B0/%2.0f", s.wind_direction_display, s.wind_speed);
            g.DrawText(text, label, palette::kWhite, 10, 255);
            // The arrow points where the wind blows to (it comes from the
            // direction shown), turned as the map is: heading up.
            gdi::Pen arrow(palette::kWhite, 1.5f);
            ResetToDesign(surface);
            g.Translate(kWindArrowX, kWindArrowY);
            double blows_to = s.wind_direction_true + 180 - s.heading_true;
            g.Rotate(F(std::isfinite(blows_to) ? blows_to : 0));
            g.DrawLine(arrow, 0, 9, 0, -9);
            g.DrawLine(arrow, -4, -4, 0, -9);
            g.DrawLine(arrow, 4, -4, 0, -9);
            ResetToDesign(surface);
        } else {
            g.DrawText("---\u00B0/---", label, palette::kWhite, 10, 255);
        }
    }
    // Mode name of the rose and expanded pages.
    if (mode <= kB737ModeExpVor) {
        const char* name = RadioSource(mode) ? (s.nav1_is_vor ? "VOR 1" : "ILS 1") : "NAV";
        g.DrawText(name, value, palette::kGreen, 10, 285, gdi::TextAlign::Left, gdi::TextBaseline::Middle);
    }
    // The tuned station.
    if (RadioSource(mode)) {
        double frequency = BcdNavFrequencyMhz(Token::NAV1_FREQUENCY);
        std::snprintf(text, sizeof text, "%04.1f", frequency);
        g.DrawText(text, label, palette::kWhite, 190, 270);
        char ident[16];
        TunedStationIdent(frequency, ident, sizeof ident);
        g.DrawText(ident, label, palette::kWhite, 190, 285);
    }
    // ADF 1 on the VOR rose with the pointer switch on and a signal.
    if (mode == kB737ModeVor && g_display.b737_adf_pointer == 1 && s.adf_signal > kAdfSignalMin) {
        g.DrawText("ADF 1", label, palette::kGreen, 10, 232);
        std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(s.heading_magnetic.now + s.adf_needle, 360));
        g.DrawText(text, label, palette::kGreen, 10, 243);
    }
    // Traffic switch at the side.
    if (mode >= kB737ModeExpNav && mode <= kB737ModeCtrMap) {
        if (g_display.switches[static_cast<size_t>(MapFamily::B737)].traffic == 1) {
            g.DrawText("TFC", label, palette::kCyan, 6, 215);
        } else {
            g.DrawText("TCAS", label, palette::kAmber, 6, 205);
            g.DrawText("OFF", label, palette::kAmber, 6, 217);
        }
    }
    // The bug's value while it has just moved.
    DrawHeadingBugDigits(g, 10, 40);
}
}  // namespace

// [SECTION] Vertical deviation scale
namespace {
void DrawVerticalDeviation(gdi::Graphics& g, int mode) {
    constexpr int kBoxX = 218, kBoxY = 185, kBoxW = 25, kBoxH = 90;
    constexpr int kZeroY = 226;         // pointer with no deviation
    constexpr double kFullDeviation = 400;  // feet to the stop
    constexpr int kStopPx = 30;
    constexpr int kDeviationLimit = 9999;
    const VnavState& v = g_vnav;
    if (v.DescentSpeedPhase != 1 || !ReadMapGuidance().has_active) return;
    if (mode != 1 && mode != 3 && mode != 5 && mode != 6) return;
    gdi::Pen frame(palette::kWhite, 1.0f);
    gdi::SolidBrush pointer(palette::kMagenta);
    g.DrawRectangle(frame, kBoxX, kBoxY, kBoxW, kBoxH);
    g.DrawLine(frame, kBoxX + 4, kZeroY, kBoxX + kBoxW - 4, kZeroY);
    int y = kZeroY;
    if (v.PathDeviationValid == 1) {
        double altitude = g_sim.indicated_altitude.now;
        double d = std::fabs(altitude - v.PathAltitude);
        if (!std::isfinite(d) || d > kDeviationLimit) d = kDeviationLimit;
        bool below = altitude < v.PathAltitude;
        int offset = d < kFullDeviation ? static_cast<int>(d / kFullDeviation * kStopPx) : kStopPx;
        y = below ? kZeroY - offset : kZeroY + offset;
        if (d >= kFullDeviation) {
            char text[16];
            std::snprintf(text, sizeof text, "%4d", static_cast<int>(d));
            gdi::Font font(kHwFont, 10);
            g.DrawText(text, font, palette::kMagenta, kBoxX, below ? 185 - 12 : 265 + 12);
        }
    }
    const GpPoint diamond[] = {{kBoxX + 12, y - 5}, {kBoxX + 17, y}, {kBoxX + 12, y + 5}, {kBoxX + 7, y}};
    g.FillPolygon(pointer, diamond, 4);
}
}  // namespace

// [SECTION] The page
void DrawB737Nd(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    int mode = Mode();
    if (mode < kB737ModeNav || mode > kB737ModePlan) mode = g_display.b737_mode = kB737ModeNav;
    // 2. The scale of the last frame's radius, then this mode's radius for the next.
    MapView view = B737MapView(surface);
    if (mode >= kB737ModeCtrMap) g_display.b737_radius = kB737CtrRadius;
    else if (mode >= kB737ModeExpNav) g_display.b737_radius = kB737ArcRadius;

    if (IsMapMode(mode)) {
        // 3. The fan of the compass arc holds every map layer.
        ResetToDesign(surface);
        gdi::Path fan;
        fan.AddArc(-52, 32, 350, 350, 225, 89);
        fan.AddLine(244, 79, 244, 302);
        fan.AddLine(244, 302, 0, 302);
        fan.AddLine(0, 302, 0, 81);
        fan.CloseFigure();
        g.SetClip(fan);

        bool below_plan = mode < kB737ModePlan;
        const MapSwitches& toggles = g_display.switches[static_cast<size_t>(MapFamily::B737)];
        // 1, 2. ATC boundaries and the airport diagram (each gates itself).
        DrawAtcBoundariesLayer(g, view);
        DrawAirportDiagramLayer(g, view);
        // 3. The selected runways under the route, then the route.
        DrawRunwaysLayer(g, view);
        DrawRouteLayer(g, view);
        // 4. The fixes of the FIX INFO page.
        DrawFixCirclesLayer(g, view);
        // 5. The localiser's course, below PLAN.
        if (below_plan) DrawIlsCourseLine(g, view);
        // 6. Navaids, airports and intersections by their switches and range gates.
        RefreshProximitySubsets();
        ObjectLayerStyle style;
        style.navaid_colour = kMapGreen;
        style.fix_kind = kSymbolFix;
        style.fix_colour = kMapBlue;
        style.airport_colour = palette::kCyan;
        if (toggles.navaids == 1 && view.range <= kB737NavaidMaxRange) DrawNavaidsLayer(g, view, style);
        if (toggles.airports == 1 && view.range <= kB737AirportMaxRange) DrawAirportsLayer(g, view, style);
        if (toggles.intersections == 1 && view.range <= kB737FixMaxRange && surface.instance != 3)
            DrawIntersectionsLayer(g, view, style);
        // 7. The hold figures, on the maps that turn with the aircraft.
        if (below_plan) DrawHoldFigureLayer(g, view);
        // 8. The modification route.
        DrawModificationRouteLayer(g, view);
        // 9, 10. Trend vector and altitude range arc.
        if (below_plan) {
            DrawTrendVector(g, view);
            DrawAltitudeRangeArc(g, view);
        }
        ResetToDesign(surface);
        g.ResetClip();
    }
    // 11. Traffic below PLAN, from the arc modes on, with the transform reset and the traffic toggle on.
    if (mode >= kB737ModeExpNav && mode < kB737ModePlan &&
        g_display.switches[static_cast<size_t>(MapFamily::B737)].traffic == 1) {
        ResetToDesign(surface);
        DrawTraffic(surface, view.MapRadiusPx, view.range, view.CentreX, view.CentreY, kTrafficKindB737);
    }

    // 12. Furniture over the map; the vertical marks on every page with an arc or a map.
    if (mode >= kB737ModeExpNav) DrawVerticalMarks(g, view, kVerticalMarksStyleB737);
    ResetToDesign(surface);
    double heading = g_sim.heading_magnetic.now;
    if (!std::isfinite(heading)) heading = 0;
    if (IsRoseMode(mode)) {
        float cx = kB737ArcCentreX, cy = kB737RoseCentreY, r = kB737RoseRadius;
        gdi::Pen ring(palette::kWhite, 1.5f);
        g.DrawEllipse(ring, static_cast<int>(cx - r), static_cast<int>(cy - r), static_cast<int>(2 * r),
                      static_cast<int>(2 * r));
        DrawCompassCard(g, surface, cx, cy, r, heading, -180, 180, B737Card(true, 30));
        DrawHeadingBugNotch(g, surface, cx, cy, r, heading, 180, 7);
        DrawCourseArrow(g, surface, cx, cy, r - 24, mode);
        if (mode == kB737ModeVor && g_display.b737_adf_pointer == 1) DrawAdfPointer(g, surface, cx, cy, r - 12);
        DrawHeadingPointer(g, surface, cx, cy, r);
        DrawOwnShip(g, cx, cy + 8);
    } else if (IsArcMode(mode)) {
        float cx = kB737ArcCentreX, cy = kB737ArcCentreY, r = kB737ArcRadius;
        gdi::Pen arc(palette::kWhite, 1.5f);
        g.DrawArc(arc, static_cast<int>(cx - r), static_cast<int>(cy - r), static_cast<int>(2 * r),
                  static_cast<int>(2 * r), 225, 90);
        DrawCompassCard(g, surface, cx, cy, r, heading, -45, 45, B737Card(true, 10));
        DrawHeadingBugNotch(g, surface, cx, cy, r, heading, 180, 7);
        DrawRangeRing(g, cx, cy, r, false);
        if (mode != kB737ModeMap) DrawCourseArrow(g, surface, cx, cy - 80, 70, mode);
        DrawHeadingPointer(g, surface, cx, cy, r);
        DrawOwnShip(g, cx, cy);
    } else {
        float cx = kB737ArcCentreX, cy = kB737CtrCentreY, r = kB737CtrRadius;
        gdi::Pen ring(palette::kWhite, 1.5f);
        g.DrawEllipse(ring, static_cast<int>(cx - r), static_cast<int>(cy - r), static_cast<int>(2 * r),
                      static_cast<int>(2 * r));
        DrawRangeRing(g, cx, cy, r, true);
        if (mode == kB737ModeCtrMap) {
            DrawCompassCard(g, surface, cx, cy, r, heading, -180, 180, B737Card(false, 30));
            DrawHeadingBugNotch(g, surface, cx, cy, r, heading, 180, 7);
            DrawHeadingPointer(g, surface, cx, cy, r);
            DrawOwnShip(g, cx, cy);
        } else {
            // PLAN: north up, the aircraft where it is, turned by its heading.
            gdi::Font font(kHwFont, 13, FontStyleBold);
            gdi::Pen pen(palette::kWhite, 1.5f);
            g.DrawText("N", font, palette::kWhite, 122, 151, gdi::TextAlign::Centre, gdi::TextBaseline::Top);
            const GpPoint arrow[] = {{122, 139}, {117, 150}, {127, 150}};
            g.DrawPolygon(pen, arrow, 3);
            double x = 0, y = 0;
            ProjectToMap(view, g_sim.latitude, g_sim.longitude, x, y);
            if (std::fabs(x) <= r && std::fabs(y) <= r) {
                g.Translate(F(cx + x), F(cy + y));
                g.Rotate(F(g_sim.heading_true));
                DrawMapSymbol(g, 0, -10, kSymbolOwnShipOutline, kNoLabel, 1, 1, kMapWhite, view.range);
                ResetToDesign(surface);
            }
        }
    }
    DrawVerticalDeviation(g, mode);
    DrawTexts(g, surface, mode);
}
