// nd_map.cpp: the map core: projection, culling, and the layers every moving
// map draws from the plan, the proximity subsets and the guidance state.
//
// The map is a flat polar plot around its centre: true distances along
// straight radials, legs drawn as straight lines between their projected
// ends. All the cost is one GreatCircle per object, hence the cull by
// distance before any projection and the small proximity subsets in place of
// the bulk tables.
//
// Index:
//   [SECTION] Projection
//   [SECTION] Guidance as the map reads it
//   [SECTION] Object layers
//   [SECTION] Route and modification route
//   [SECTION] Trend vector and altitude range arc
//   [SECTION] Vertical marks
//   [SECTION] Heading bug digits
#include "display/nd_map.h"

#include "display/display_state.h"
#include "display/map_symbols.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "frame/global_config.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>

RouteScreenPoints g_route_screen;

namespace {
constexpr float kIdentFontPx = 10;      // object and waypoint idents
constexpr double kMaxDrawnPx = 20000;   // farther points are left to the clip as this

float F(double v) { return static_cast<float>(v); }

// Keeps a projected point within what the drawing layer takes as a number.
double Bound(double v) { return v > kMaxDrawnPx ? kMaxDrawnPx : v < -kMaxDrawnPx ? -kMaxDrawnPx : v; }
}  // namespace

// [SECTION] Projection
void PolarToScreen(double map_heading, double bearing, double cx, double cy, double radius_px, double& x, double& y) {
    double delta = AngleBetween(map_heading, bearing);
    // Above 90 degrees the same figure folds back below the centre.
    double folded = delta >= 91 ? 180 - delta : delta;
    double dx = std::fabs(std::sin(folded * kDegToRad)) * radius_px;
    double dy = std::fabs(std::cos(folded * kDegToRad)) * radius_px;
    x = TurnSideTo(bearing, map_heading) == 1 ? cx - dx : cx + dx;
    y = delta <= 90 ? cy - dy : cy + dy;
}

void PolarToScreen(double map_heading, double bearing, int cx, int cy, int radius_px, int& x, int& y) {
    double fx = 0, fy = 0;
    PolarToScreen(map_heading, bearing, static_cast<double>(cx), static_cast<double>(cy),
                  static_cast<double>(radius_px), fx, fy);
    x = static_cast<int>(Bound(fx));
    y = static_cast<int>(Bound(fy));
}

double ProjectToMap(const MapView& view, double latitude, double longitude, double& x, double& y) {
    double distance = 0, bearing = 0;
    GreatCircle(view.MapCentreLatitude, view.MapCentreLongitude, latitude, longitude, distance, bearing);
    if (!std::isfinite(distance) || !std::isfinite(bearing)) {
        x = y = kMaxDrawnPx;
        return 1e9;
    }
    PolarToScreen(view.MapHeading, bearing, 0.0, 0.0, distance * view.PixelsPerNm, x, y);
    x = Bound(x);
    y = Bound(y);
    return distance;
}

void BeginMapLayer(gdi::Graphics& g, const MapView& view) {
    g.ResetTransform();
    g.Scale(F(view.ScaleX), F(view.ScaleY));
    g.Translate(F(view.CentreX), F(view.CentreY));
}

void EndMapLayer(gdi::Graphics& g, const MapView& view) {
    g.ResetTransform();
    g.Scale(F(view.ScaleX), F(view.ScaleY));
}

bool IsMapGap(const char* ident) { return std::strcmp(ident, "DISCO") == 0 || std::strcmp(ident, "THEN") == 0; }

// [SECTION] Guidance as the map reads it
// The one place the map reads the guidance state.
ZuluEta ActiveWaypointEta() {
    double total = g_sim.zulu_hour * 60 + g_sim.zulu_minute + g_tick.to_active.hours * 60 + g_tick.to_active.minutes;
    if (!std::isfinite(total) || total < 0 || total > 1e7) total = 0;
    ZuluEta eta;
    eta.hours = ModuloPositive(std::floor(total / 60), 24);
    double minutes = std::fmod(total, 60);
    eta.minutes = std::floor(minutes);
    eta.tenths = std::floor((minutes - eta.minutes) * 10);
    return eta;
}

void FormatActiveWaypointEta(char* text, size_t size) {
    ZuluEta eta = ActiveWaypointEta();
    std::snprintf(text, size, "%02.0f%02.0fZ", eta.hours, eta.minutes);
}

MapGuidance ReadMapGuidance() {
    MapGuidance m;
    const PlanContext& pc = g_plan.context;
    m.has_active = pc.ActiveLeg != kNoActiveLeg && pc.ActiveLeg >= 0 && pc.ActiveLastRow >= 0 &&
                   pc.ActiveLeg <= pc.ActiveLastRow && pc.ActiveLeg < kPlanRows;
    if (!m.has_active) return m;
    m.active_row = pc.ActiveLeg;
    m.distance_to_active = g_lnav.DistToActive;
    if (m.distance_to_active < 0) {
        // Before guidance has measured it (or behind the aircraft): the straight distance.
        const PlanWaypoint& row = g_plan.ActivePlan[static_cast<size_t>(m.active_row)];
        double bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, row.Latitude, row.Longitude, m.distance_to_active, bearing);
    }
    m.intercept_active = g_lnav.InterceptActive == 1;
    m.intercept_latitude = g_lnav.InterceptStart.lat;
    m.intercept_longitude = g_lnav.InterceptStart.lon;
    return m;
}

bool PlanMapCentre(double& latitude, double& longitude) {
    // The centre entry, in the plan the LEGS page numbers it by.
    const PlanContext& pc = g_plan.context;
    bool modified = pc.PlanState == 4;
    const PlanTable& plan = modified ? g_plan.ModPlan : g_plan.ActivePlan;
    int last = modified ? pc.ModLastRow : pc.ActiveLastRow;
    int row = g_display.PlanCentreIndex;
    // No centre entry (or one the plan no longer has): the active waypoint.
    if (row <= 0 || row > last || row >= kPlanRows) {
        MapGuidance guidance = ReadMapGuidance();
        if (!guidance.has_active) return false;
        row = guidance.active_row;
        if (row < 0 || row > pc.ActiveLastRow || row >= kPlanRows) return false;
        const PlanWaypoint& active = g_plan.ActivePlan[static_cast<size_t>(row)];
        if (IsMapGap(active.Ident.data())) return false;
        latitude = active.Latitude;
        longitude = active.Longitude;
        return true;
    }
    const PlanWaypoint& centre = plan[static_cast<size_t>(row)];
    if (IsMapGap(centre.Ident.data())) return false;
    latitude = centre.Latitude;
    longitude = centre.Longitude;
    return true;
}

// [SECTION] Object layers
void RefreshProximitySubsets() { UpdateProximitySubsets(g_sim.latitude, g_sim.longitude); }

namespace {
// Walks one subset: cull by distance, project, then draw.
template <int N, typename DrawOne>
void WalkSubset(const ProximitySubset<N>& subset, const MapView& view, double cull_nm, DrawOne draw) {
    int count = subset.count < N ? subset.count : N;
    for (int i = 1; i <= count; ++i) {
        const NearbyRecord& r = subset.rows[static_cast<size_t>(i)];
        double distance = 0, bearing = 0;
        GreatCircle(view.MapCentreLatitude, view.MapCentreLongitude, r.Latitude, r.Longitude, distance, bearing);
        if (!(distance <= cull_nm)) continue;
        double x = 0, y = 0;
        PolarToScreen(view.MapHeading, bearing, 0.0, 0.0, distance * view.PixelsPerNm, x, y);
        draw(r, static_cast<int>(Bound(x)), static_cast<int>(Bound(y)));
    }
}

void DrawIdent(gdi::Graphics& g, const gdi::Font& font, const char* ident, ARGB colour, int x, int y) {
    g.DrawText(ident, font, colour, F(x + 7), F(y - 10));
}
}  // namespace

void DrawAirportsLayer(gdi::Graphics& g, const MapView& view, const ObjectLayerStyle& style) {
    BeginMapLayer(g, view);
    gdi::Pen pen(style.airport_colour);
    gdi::Font font(kArialFont, kIdentFontPx, FontStyleBold);
    WalkSubset(g_nearby.AirportsNear180, view, 2 * view.range + kAirportCullMarginNm,
               [&](const NearbyRecord& r, int x, int y) {
                   g.DrawEllipse(pen, x - 5, y - 5, 10, 10);
                   DrawIdent(g, font, r.Ident.data(), style.airport_colour, x, y);
               });
    EndMapLayer(g, view);
}

void DrawNavaidsLayer(gdi::Graphics& g, const MapView& view, const ObjectLayerStyle& style) {
    BeginMapLayer(g, view);
    gdi::Font font(kArialFont, kIdentFontPx, FontStyleBold);
    ARGB colour = style.navaid_colour == kMapBlue ? palette::kBlue
                  : style.navaid_colour == kMapWhite ? palette::kWhite : palette::kGreen;
    WalkSubset(g_nearby.NavaidsNear320, view, 2 * view.range + kNavaidCullMarginNm,
               [&](const NearbyRecord& r, int x, int y) {
                   int kind = std::strcmp(r.Kind.data(), "V") == 0 ? kSymbolVor : kSymbolNavaid;
                   DrawMapSymbol(g, x, y, kind, kNoLabel, 1, 1, style.navaid_colour, view.range);
                   DrawIdent(g, font, r.Ident.data(), colour, x, y);
               });
    EndMapLayer(g, view);
}

void DrawIntersectionsLayer(gdi::Graphics& g, const MapView& view, const ObjectLayerStyle& style) {
    BeginMapLayer(g, view);
    gdi::Font font(kArialFont, kIdentFontPx, FontStyleBold);
    ARGB colour = style.fix_colour == kMapMagenta ? palette::kMagenta
                  : style.fix_colour == kMapBlue ? palette::kBlue : palette::kGrey;
    WalkSubset(g_nearby.FixesNear200, view, 2 * view.range + kNavaidCullMarginNm,
               [&](const NearbyRecord& r, int x, int y) {
                   DrawMapSymbol(g, x, y, style.fix_kind, kNoLabel, 1, 1, style.fix_colour, view.range);
                   DrawIdent(g, font, r.Ident.data(), colour, x, y);
               });
    EndMapLayer(g, view);
}

// [SECTION] Route and modification route
namespace {
void WaypointMark(gdi::Graphics& g, const gdi::Font& font, const char* ident, int colour, int x, int y) {
    DrawMapSymbol(g, x, y - 6, kSymbolWaypoint, kNoLabel, 1, 1, colour, 0);
    g.DrawText(ident, font, MapColourArgb(colour), F(x + 7), F(y - 7));
}
}  // namespace

void DrawRouteLayer(gdi::Graphics& g, const MapView& view) {
    // 1. Nothing without an active waypoint.
    MapGuidance guidance = ReadMapGuidance();
    if (!guidance.has_active) return;
    const PlanTable& plan = g_plan.ActivePlan;
    int last = g_plan.context.ActiveLastRow < kPlanRows ? g_plan.context.ActiveLastRow : kPlanRows - 1;
    int active = guidance.active_row;

    BeginMapLayer(g, view);
    gdi::Pen white(palette::kWhite, 1.5f);
    gdi::Pen magenta(palette::kMagenta, 2.0f);
    gdi::Font font(kHwFont, kIdentFontPx, FontStyleBold);
    double ax = 0, ay = 0;
    ProjectToMap(view, g_sim.latitude, g_sim.longitude, ax, ay);
    double active_x = 0, active_y = 0;
    ProjectToMap(view, plan[static_cast<size_t>(active)].Latitude, plan[static_cast<size_t>(active)].Longitude,
                 active_x, active_y);

    // 2. The waypoint behind the aircraft, or the intercept point of a direct.
    if (g_config.DispPrevWpt == 1 && active >= 1 && view.range >= kPrevWaypointMinRange && !view.plan_mode) {
        const PlanWaypoint& previous = plan[static_cast<size_t>(active - 1)];
        double lat = guidance.intercept_active ? guidance.intercept_latitude : previous.Latitude;
        double lon = guidance.intercept_active ? guidance.intercept_longitude : previous.Longitude;
        const char* label = guidance.intercept_active ? "DCT" : previous.Ident.data();
        if (guidance.intercept_active || !IsMapGap(previous.Ident.data())) {
            double px = 0, py = 0;
            ProjectToMap(view, lat, lon, px, py);
            g.DrawLine(white, F(px), F(py), F(active_x), F(active_y));
            WaypointMark(g, font, label, kMapWhite, static_cast<int>(px), static_cast<int>(py));
        }
    }

    // 3, 4, 5. From the active waypoint (PLAN: the first row) to the last.
    int start = view.plan_mode ? 0 : active;
    bool have_previous = false;
    double previous_x = 0, previous_y = 0;
    for (int i = start; i <= last; ++i) {
        const PlanWaypoint& row = plan[static_cast<size_t>(i)];
        // Discontinuity rows lie at 0, 0: they and the legs through them are left out.
        if (IsMapGap(row.Ident.data())) {
            have_previous = false;
            continue;
        }
        double x = 0, y = 0;
        ProjectToMap(view, row.Latitude, row.Longitude, x, y);
        g_route_screen.x[static_cast<size_t>(i)] = static_cast<int>(x);
        g_route_screen.y[static_cast<size_t>(i)] = static_cast<int>(y);
        if (i == active) {
            if (row.InboundCourse > kNoCourse) {
                // A course to the fix: the line runs out from it along that course.
                double end_lat = 0, end_lon = 0;
                ProjectPoint(row.Latitude, row.Longitude, row.InboundCourse + g_sim.magnetic_variation,
                             kInboundCourseLineNm, end_lat, end_lon);
                double ex = 0, ey = 0;
                ProjectToMap(view, end_lat, end_lon, ex, ey);
                g.DrawLine(magenta, F(x), F(y), F(ex), F(ey));
            } else {
                g.DrawLine(magenta, F(ax), F(ay), F(x), F(y));
            }
        } else if (have_previous) {
            g.DrawLine(white, F(previous_x), F(previous_y), F(x), F(y));
        }
        WaypointMark(g, font, row.Ident.data(), i == active ? kMapMagenta : kMapWhite, static_cast<int>(x),
                     static_cast<int>(y));
        previous_x = x;
        previous_y = y;
        have_previous = true;
    }
    EndMapLayer(g, view);
}

void DrawModificationRouteLayer(gdi::Graphics& g, const MapView& view) {
    const PlanContext& pc = g_plan.context;
    if (pc.PlanState != 1 && pc.PlanState != 2 && pc.PlanState != 4) return;
    if (pc.ModLastRow < 0) return;
    int last = pc.ModLastRow < kPlanRows ? pc.ModLastRow : kPlanRows - 1;
    int active = pc.ModActiveLeg == kNoActiveLeg ? 1 : pc.ModActiveLeg;
    int start = view.plan_mode ? 0 : (active >= 0 && active <= last ? active : 0);

    BeginMapLayer(g, view);
    gdi::Pen pen(palette::kWhite, 1.5f);
    pen.SetDash(DashStyleDash);
    gdi::Font font(kHwFont, kIdentFontPx);
    bool have_previous = false;
    double previous_x = 0, previous_y = 0;
    for (int i = start; i <= last; ++i) {
        const PlanWaypoint& row = g_plan.ModPlan[static_cast<size_t>(i)];
        // A leg that ends on a discontinuity or THEN row isn't drawn.
        if (IsMapGap(row.Ident.data())) {
            have_previous = false;
            continue;
        }
        double x = 0, y = 0;
        ProjectToMap(view, row.Latitude, row.Longitude, x, y);
        if (have_previous) g.DrawLine(pen, F(previous_x), F(previous_y), F(x), F(y));
        WaypointMark(g, font, row.Ident.data(), kMapWhite, static_cast<int>(x), static_cast<int>(y));
        previous_x = x;
        previous_y = y;
        have_previous = true;
    }
    EndMapLayer(g, view);
}

// [SECTION] Trend vector and altitude range arc
void DrawTrendVector(gdi::Graphics& g, const MapView& view) {
    if (view.plan_mode) return;
    double v = g_sim.ground_speed;
    double bank = g_sim.bank.now;
    double phi = std::fabs(bank) * 0.01745;
    if (!(v > 1) || !(phi > 0) || !std::isfinite(phi)) return;
    // 1, 2, 3. Turn radius in feet, rate in degrees a second, radius on the map.
    double radius_ft = v * v / (std::tan(phi) * 11.23);
    double rate = v * 96.7 / radius_ft;
    double radius_px = radius_ft / 6076.1 * view.PixelsPerNm;
    if (!std::isfinite(radius_px) || radius_px < 1 || radius_px > kMaxDrawnPx) return;
    // 4. Arcs of the circle through the aircraft, on the side of the bank
    // (right wing down reads positive).
    bool right = bank > 0;
    double ax = 0, ay = 0;
    ProjectToMap(view, g_sim.latitude, g_sim.longitude, ax, ay);
    BeginMapLayer(g, view);
    gdi::Pen pen(palette::kWhite, 1.5f);
    int r = static_cast<int>(radius_px);
    int box_x = static_cast<int>(right ? ax : ax - 2 * radius_px);
    int box_y = static_cast<int>(ay - radius_px);
    // The aircraft stands at 180 degrees of a right-hand circle, at 0 of a left one.
    float origin = right ? 180.0f : 0.0f;
    float sign = right ? 1.0f : -1.0f;
    auto arc = [&](double from_s, double to_s) {
        g.DrawArc(pen, box_x, box_y, 2 * r, 2 * r, origin + sign * F(from_s * rate), sign * F((to_s - from_s) * rate));
    };
    arc(0, 30);
    if (view.range >= 20) arc(33, 60);
    if (view.range > 20) arc(63, 90);
    EndMapLayer(g, view);
}

void DrawAltitudeRangeArc(gdi::Graphics& g, const MapView& view) {
    const SimState& s = g_sim;
    double altitude = s.indicated_altitude.now;
    double selected = s.autopilot_altitude.now;
    double vs = s.vertical_speed.now;
    if (s.autopilot_master == 0 || s.altitude_hold == 0 || !(selected < altitude) || !(vs < -200)) return;
    double distance_px = std::fabs((altitude - selected) / vs * (s.ground_speed / 60.0)) * view.PixelsPerNm;
    if (!std::isfinite(distance_px) || distance_px > kMaxDrawnPx) return;
    constexpr int kDiameter = 217;      // pixels of the arc's circle
    BeginMapLayer(g, view);
    gdi::Pen pen(palette::kGreen, 1.5f);
    // The circle's top lies at the distance ahead of the centre.
    int top = static_cast<int>(-distance_px);
    g.DrawArc(pen, -kDiameter / 2, top, kDiameter, kDiameter, 240, 60);
    EndMapLayer(g, view);
}

// [SECTION] Vertical marks
namespace {
bool HasPoint(double lat, double lon) { return lat != 0 || lon != 0; }

// Where the descent to the target altitude begins, walked back along the plan
// from the next restriction towards the active waypoint.
bool FloatingDescentPoint(double& lat, double& lon) {
    const VnavState& v = g_vnav;
    const PlanContext& pc = g_plan.context;
    MapGuidance guidance = ReadMapGuidance();
    if (!guidance.has_active || g_profile.DescentRate <= 0) return false;
    double need = (g_sim.indicated_altitude.now - v.TargetAltitude) / g_profile.DescentRate *
                  (g_profile.DescentTas / 60.0);
    if (!std::isfinite(need) || need <= 0) return false;
    int row = pc.NextRestrictionRow;
    if (row <= guidance.active_row || row > pc.ActiveLastRow || row >= kPlanRows) row = guidance.active_row;
    const PlanTable& plan = g_plan.ActivePlan;
    for (int i = row; i > guidance.active_row; --i) {
        const PlanWaypoint& later = plan[static_cast<size_t>(i)];
        const PlanWaypoint& earlier = plan[static_cast<size_t>(i - 1)];
        double leg = 0, back = 0;
        GreatCircle(later.Latitude, later.Longitude, earlier.Latitude, earlier.Longitude, leg, back);
        if (need <= leg) {
            ProjectPoint(later.Latitude, later.Longitude, back, need, lat, lon);
            return true;
        }
        need -= leg;
    }
    // The walk ended first: the rest lies back from the active waypoint.
    const PlanWaypoint& active = plan[static_cast<size_t>(guidance.active_row)];
    double distance = 0, bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, active.Latitude, active.Longitude, distance, bearing);
    ProjectPoint(active.Latitude, active.Longitude, ModuloPositive(bearing + 180, 360), need, lat, lon);
    return true;
}
}  // namespace

void DrawVerticalMarks(gdi::Graphics& g, const MapView& view, int style) {
    const VnavState& v = g_vnav;
    double altitude = g_sim.indicated_altitude.now;
    int cruise = g_plan.context.CruiseAltitude;
    BeginMapLayer(g, view);
    gdi::Font font(kHwFont, 10);
    gdi::SolidBrush amber(palette::kAmber);
    gdi::SolidBrush green(palette::kGreen);
    gdi::Pen light_green(palette::kLightGreen, 1.5f);
    double x = 0, y = 0;
    char text[24];

    // 1, 2. Floating point of descent and the altitude target.
    bool plain = style == 8 || style == 9 || style == 10;
    if (!plain || g_profile.ShowFloatingTodBodIndicators == 1) {
        double lat = 0, lon = 0;
        if (v.TargetAltitude < altitude - 500 && FloatingDescentPoint(lat, lon)) {
            ProjectToMap(view, lat, lon, x, y);
            g.FillEllipse(amber, static_cast<int>(x) - 4, static_cast<int>(y) - 4, 8, 8);
            g.DrawText("[TOD]", font, palette::kAmber, F(x - 6), F(y), gdi::TextAlign::Right, gdi::TextBaseline::Middle);
        }
        bool target_is_toc = v.TargetAltitude == cruise && v.CruiseReached == 0;
        if (HasPoint(v.TargetLatitude, v.TargetLongitude) && !(v.VnavOn == 1 && target_is_toc)) {
            ProjectToMap(view, v.TargetLatitude, v.TargetLongitude, x, y);
            g.FillEllipse(amber, static_cast<int>(x) - 4, static_cast<int>(y) - 4, 8, 8);
            if (v.CruiseReached == 0 && v.TargetAltitude == cruise && v.VnavOn == 0)
                std::snprintf(text, sizeof text, "[TOC]");
            else if (v.CruiseReached == 1 && v.DescentActive == 0 && v.TargetAltitude == cruise && v.VnavOn == 0)
                std::snprintf(text, sizeof text, "[TOD]");
            else
                std::snprintf(text, sizeof text, "[%.0f]", v.TargetAltitude);
            if (v.VnavOn == 0)
                g.DrawText(text, font, palette::kAmber, F(x - 6), F(y), gdi::TextAlign::Right, gdi::TextBaseline::Middle);
            else
                g.DrawText(text, font, palette::kAmber, F(x + 6), F(y), gdi::TextAlign::Left, gdi::TextBaseline::Middle);
        }
    }

    // 3. Without a cruise altitude there are no T/C and T/D.
    if (cruise == 0) {
        EndMapLayer(g, view);
        return;
    }
    bool before_cruise = v.CruiseReached == 0;
    if (style == 8) {
        // 4. The plain style: light green rings with their names.
        auto mark = [&](double lat, double lon, const char* name) {
            ProjectToMap(view, lat, lon, x, y);
            g.DrawEllipse(light_green, static_cast<int>(x) - 3, static_cast<int>(y) - 3, 6, 6);
            g.DrawText(name, font, palette::kGreen, F(x + 8), F(y - 7));
        };
        if (before_cruise && HasPoint(v.TopOfClimbLatitude, v.TopOfClimbLongitude))
            mark(v.TopOfClimbLatitude, v.TopOfClimbLongitude, "T/C");
        if (v.DescentActive == 0 && HasPoint(v.TopOfDescentLatitude, v.TopOfDescentLongitude))
            mark(v.TopOfDescentLatitude, v.TopOfDescentLongitude, "T/D");
    } else if (style == 9 || style == 10) {
        // 5. The arrow style: a tail rising (T/C) or falling (T/D) to a bar with a head.
        gdi::Pen tail(palette::kBlue, 2.0f);
        gdi::Pen head(palette::kBlue, style == 10 ? 3.0f : 2.0f);
        if (style == 10) head.SetDash(DashStyleDash);
        auto chevron = [&](double lat, double lon, int rise) {
            ProjectToMap(view, lat, lon, x, y);
            float fx = F(x), fy = F(y);
            g.DrawLine(tail, fx - 20, fy + rise * 8.0f, fx - 6, fy);
            g.DrawLine(head, fx - 6, fy, fx + 6, fy);
            g.DrawLine(head, fx + 2, fy - 3, fx + 6, fy);
            g.DrawLine(head, fx + 2, fy + 3, fx + 6, fy);
        };
        if (before_cruise && HasPoint(v.TopOfClimbLatitude, v.TopOfClimbLongitude))
            chevron(v.TopOfClimbLatitude, v.TopOfClimbLongitude, 1);
        if (v.DescentActive == 0 && HasPoint(v.TopOfDescentLatitude, v.TopOfDescentLongitude))
            chevron(v.TopOfDescentLatitude, v.TopOfDescentLongitude, -1);
    } else if (v.VnavOn == 1) {
        // 6. Any other style: green dots with bracketed names, with VNAV on.
        auto dot = [&](double lat, double lon, const char* name) {
            ProjectToMap(view, lat, lon, x, y);
            g.FillEllipse(green, static_cast<int>(x) - 3, static_cast<int>(y) - 3, 6, 6);
            g.DrawText(name, font, palette::kGreen, F(x + 6), F(y - 7));
        };
        if (HasPoint(v.TopOfClimbLatitude, v.TopOfClimbLongitude)) dot(v.TopOfClimbLatitude, v.TopOfClimbLongitude, "[TOC]");
        if (HasPoint(v.TopOfDescentLatitude, v.TopOfDescentLongitude))
            dot(v.TopOfDescentLatitude, v.TopOfDescentLongitude, "[TOD]");
    }
    EndMapLayer(g, view);
}

// [SECTION] Heading bug digits
void DrawHeadingBugDigits(gdi::Graphics& g, float x, float y) {
    if (g_tick.heading_bug_display <= 0) return;
    char text[16];
    double bug = g_sim.heading_bug.now;
    if (!std::isfinite(bug)) return;
    std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(std::round(bug), 360));
    gdi::Font font(kHwFont, 13);
    g.DrawText(text, font, palette::kMagenta, x, y);
}

// [SECTION] Compass furniture the families share
void DrawCompassCard(gdi::Graphics& g, const DisplaySurface& surface, float cx, float cy, float radius,
                     double heading, double from, double to, const CompassCardStyle& style) {
    gdi::Pen pen(palette::kWhite, 1.5f);
    gdi::Font big(style.font, style.big_font);
    gdi::Font small(style.font, style.small_font);
    for (int card = 0; card < 360; card += 5) {
        double off = ModuloPositive(card - heading + 180, 360) - 180;
        if (off < from - 0.01 || off > to + 0.01) continue;
        ResetToDesign(surface);
        g.Translate(cx, cy);
        g.Rotate(F(off));
        float length = card % 10 == 0 ? style.major_tick : style.minor_tick;
        g.DrawLine(pen, 0, -radius, 0, -radius + length);
        if (card % style.digit_step == 0) {
            char text[8];
            std::snprintf(text, sizeof text, "%d", card / 10);
            float y = style.digits_inside ? -radius + length + 1 : -radius - 17;
            g.DrawText(text, card % style.big_every == 0 ? big : small, palette::kWhite, 0, y,
                       gdi::TextAlign::Centre);
        }
    }
    ResetToDesign(surface);
}

void DrawHeadingBugNotch(gdi::Graphics& g, const DisplaySurface& surface, float cx, float cy, float radius,
                         double heading, double half_sweep, int half_width) {
    double off = ModuloPositive(g_sim.heading_bug.now - heading + 180, 360) - 180;
    if (!std::isfinite(off) || std::fabs(off) > half_sweep) return;
    gdi::Pen pen(palette::kMagenta, 2.0f);
    ResetToDesign(surface);
    g.Translate(cx, cy);
    g.Rotate(F(off));
    int top = static_cast<int>(-radius), w = half_width;
    const GpPoint notch[] = {{-w, top - 5}, {-w, top}, {w, top}, {w, top - 5}, {3, top - 5}, {0, top}, {-3, top - 5},
                             {-w, top - 5}};
    g.DrawLines(pen, notch, static_cast<int>(std::size(notch)));
    ResetToDesign(surface);
}

void DrawBearingNeedle(gdi::Graphics& g, const DisplaySurface& surface, const BearingNeedle& n) {
    if (!std::isfinite(n.relative)) return;
    constexpr float kHeadLength = 12;
    gdi::Pen pen(n.colour, 1.5f);
    ResetToDesign(surface);
    g.Translate(n.cx, n.cy);
    g.Rotate(static_cast<float>(n.relative));
    if (n.double_line) {
        g.DrawLine(pen, -3, -n.length + kHeadLength, -3, -n.inner);
        g.DrawLine(pen, 3, -n.length + kHeadLength, 3, -n.inner);
    } else {
        g.DrawLine(pen, 0, -n.length + kHeadLength, 0, -n.inner);
    }
    g.DrawLine(pen, -n.head_half, -n.length + kHeadLength, 0, -n.length);
    g.DrawLine(pen, n.head_half, -n.length + kHeadLength, 0, -n.length);
    if (n.tail) g.DrawLine(pen, 0, n.length - kHeadLength, 0, n.length);
    ResetToDesign(surface);
}

void AddMapClipOutline(gdi::Path& path, double cx, double cy, int radius, bool full_circle, double clip_bottom) {
    int left = static_cast<int>(cx) - radius, top = static_cast<int>(cy) - radius;
    if (full_circle) {
        path.AddEllipse(left, top, 2 * radius, 2 * radius);
        return;
    }
    double below = clip_bottom - cy;
    double cut = below < radius ? std::asin(below / radius) / kDegToRad : 90;
    path.AddArc(left, top, 2 * radius, 2 * radius, static_cast<float>(180 - cut), static_cast<float>(180 + 2 * cut));
    path.CloseFigure();
}

void CentreOnPlan(MapView& view) {
    double latitude = 0, longitude = 0;
    if (!PlanMapCentre(latitude, longitude)) return;
    view.MapCentreLatitude = latitude;
    view.MapCentreLongitude = longitude;
}

void DrawSpeedCorner(gdi::Graphics& g, const gdi::Font& label, const gdi::Font& value, ARGB value_colour,
                     const SpeedCornerPlaces& at) {
    constexpr double kNoTasAtOrBelowKt = 100;
    const SimState& s = g_sim;
    char text[24];
    g.DrawText("GS", label, palette::kWhite, at.label_x, at.gs_y);
    std::snprintf(text, sizeof text, "%.0f", std::isfinite(s.ground_speed) ? s.ground_speed : 0.0);
    g.DrawText(text, value, value_colour, at.gs_value_x, at.gs_value_y);
    g.DrawText("TAS", label, palette::kWhite, at.label_x, at.tas_y);
    if (s.true_airspeed.now > kNoTasAtOrBelowKt)
        std::snprintf(text, sizeof text, "%3.0f", s.true_airspeed.now);
    else
        std::snprintf(text, sizeof text, "- - -");
    g.DrawText(text, value, value_colour, at.tas_value_x, at.tas_value_y);
}
