// progress_pages.cpp: PROGRESS, three pages: the last waypoint passed and
// the times and fuel to the active and next waypoints and the destination
// (page 1); wind components, temperature, cross-track and path deviation,
// track and true airspeed (page 2); RTA PROGRESS, dashes only (page 3).
//
// Times and fuel come from the predictions' helpers, at the present ground
// speed: wind reaches them only through it.
//
// Index:
//   [SECTION] Helpers
//   [SECTION] PROGRESS page 1
//   [SECTION] PROGRESS page 2
//   [SECTION] PROGRESS page
#include "cdu/perf_pages.h"

#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

// [SECTION] Helpers
namespace {
constexpr double kProgressMinGroundSpeed = 75; // knots; at or below, no times
constexpr double kPathBand = 200;              // feet either side of the path shown as on it
constexpr double kStandardLapse = 1.98;        // degrees Celsius a 1000 feet
constexpr double kSeaLevelCelsius = 15;
constexpr float kBearingX = 63;                // PROGRESS page 1 columns
constexpr float kTimeX = 140;

// A true bearing made magnetic with the simulator's variation, 1..360.
double Magnetic(double bearing_true) {
    double m = std::fmod(bearing_true - g_sim.magnetic_variation, 360.0);
    if (m < 0.5) m += 360;
    return m;
}

// One waypoint line of page 1: name, bearing and distance, time, fuel.
void DrawWaypointLine(CduScreen& screen, const char* name, double bearing, double distance, bool to_destination,
                      float y) {
    char value[48];
    std::snprintf(value, sizeof value, "%-5s", name);
    screen.Value(value, 0, y);
    std::snprintf(value, sizeof value, "%03.0f %.0f", bearing, distance);
    screen.Value(value, kBearingX, y);
    double gs = g_sim.ground_speed;
    if (gs <= kProgressMinGroundSpeed) return;
    double fuel = 0;
    bool timed = false;
    char time[24];
    if (to_destination) {
        // Beyond 100 nm the last 100 are flown at the descent's mean speed:
        // the minutes come from there, turned into a clock time at 60 knots.
        double minutes = 0;
        timed = DestinationTimeAndFuel(distance, gs, minutes, fuel) &&
                FormatArrivalTime(minutes, 60, 0, time, sizeof time);
    } else {
        timed = FormatArrivalTime(distance, gs, kProgressMinGroundSpeed, time, sizeof time);
        fuel = FuelAtDistance(distance, gs);
    }
    if (!timed) return;
    screen.Value(time, kTimeX, y);
    std::snprintf(value, sizeof value, "%3.1f", WeightInDisplayUnit(fuel) / 1000);
    screen.Value(value, kCduRightEdge, y, gdi::TextAlign::Right);
}
}  // namespace

// [SECTION] PROGRESS page 1
namespace {
void DrawProgressOne(CduScreen& screen) {
    const PlanContext& pc = g_plan.context;
    const LnavState& l = g_lnav;
    char value[48];
    // FROM: the last waypoint passed, its altitude, time and fuel then.
    screen.Label("F R O M          A L T              A T A     F U E L", kCduLeftLabelX, CduLabelY(1));
    const LastPassedWaypoint& from = l.LastPassed;
    if (from.ident[0] != 0) {
        std::snprintf(value, sizeof value, "%-5s", from.ident.data());
        screen.Value(value, 0, CduValueY(1));
        if (from.altitude > g_config.TransAlt)
            std::snprintf(value, sizeof value, "FL%3.0f", from.altitude / 100);
        else
            std::snprintf(value, sizeof value, "%5.0f", from.altitude);
        screen.Value(value, kBearingX, CduValueY(1));
        screen.Value(from.time.data(), kTimeX, CduValueY(1));
        std::snprintf(value, sizeof value, "%3.1f", from.fuel / 1000);
        screen.Value(value, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
    }
    // DTG lines: the active entry, the one after it, the destination.
    screen.Label("D T G              E T A     F U E L", kCduLeftLabelX + kBearingX, CduLabelY(2));
    bool active = pc.ActiveLeg != kNoActiveLeg && pc.ActiveLeg >= 1 && pc.ActiveLeg <= pc.ActiveLastRow &&
                  pc.ActiveLeg < kPlanRows;
    if (active) {
        const PlanWaypoint& row = g_plan.ActivePlan[pc.ActiveLeg];
        double to_active = std::max(0.0, l.DistToActive);
        DrawWaypointLine(screen, row.Ident.data(), l.BearingToActive, to_active, false, CduValueY(2));
        if (pc.ActiveLeg + 1 <= pc.ActiveLastRow) {
            const PlanWaypoint& next = g_plan.ActivePlan[pc.ActiveLeg + 1];
            double leg = 0, bearing = 0;
            GreatCircle(row.Latitude, row.Longitude, next.Latitude, next.Longitude, leg, bearing);
            DrawWaypointLine(screen, next.Ident.data(), Magnetic(bearing), to_active + leg, false, CduValueY(3));
        }
        const PlanWaypoint& last = g_plan.ActivePlan[pc.ActiveLastRow];
        double to_destination = RouteDistanceToDestination(to_active);
        double direct = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, last.Latitude, last.Longitude, direct, bearing);
        if (to_destination >= 0)
            DrawWaypointLine(screen, last.Ident.data(), Magnetic(bearing), to_destination, true, CduValueY(4));
    }
    // Fuel on board and the wind.
    screen.Label("F U E L    Q T Y", kCduLeftLabelX, CduLabelY(5));
    std::snprintf(value, sizeof value, "%3.1f", WeightInDisplayUnit(FuelOnBoardPounds()) / 1000);
    screen.Value(value, 0, CduValueY(5));
    screen.Label("W I N D         I R S  (   )", kCduRightLabelEdge, CduLabelY(5), gdi::TextAlign::Right);
    std::snprintf(value, sizeof value, "%03.0f\u00B0/%3.0f", g_sim.wind_direction_display, g_sim.wind_speed);
    screen.Value(value, kCduRightEdge, CduValueY(5), gdi::TextAlign::Right);
    screen.Rule();
    screen.Value("< INDEX", 0, kPerfRow6Y);
    screen.Value("NAV  STATUS >", kCduRightEdge, kPerfRow6Y, gdi::TextAlign::Right);
}
}  // namespace

// [SECTION] PROGRESS page 2
namespace {
void DrawProgressTwo(CduScreen& screen) {
    const SimState& s = g_sim;
    const VnavState& v = g_vnav;
    char value[96];
    // Wind components along and across the heading.
    screen.Label(s.head_wind >= 0 ? "H E A D W I N D                 C R O S S W I N D"
                                  : "T A I L W I N D                 C R O S S W I N D",
                 kCduLeftLabelX, CduLabelY(1));
    std::snprintf(value, sizeof value, "%2d KT                             %s %3d KT",
                  static_cast<int>(std::lround(std::fabs(s.head_wind))), s.cross_wind >= 0 ? "R" : "L",
                  static_cast<int>(std::lround(std::fabs(s.cross_wind))));
    screen.Value(value, 0, CduValueY(1));
    // Wind, static air temperature and its deviation from standard.
    screen.Label("W I N D                         S A T / I S A    D E V", kCduLeftLabelX, CduLabelY(2));
    std::snprintf(value, sizeof value, "%03.0f\u00B0/%2.0f", s.wind_direction_display, s.wind_speed);
    screen.Value(value, 0, CduValueY(2));
    double isa = s.outside_temperature - (kSeaLevelCelsius - s.indicated_altitude.now / 1000 * kStandardLapse);
    std::snprintf(value, sizeof value, "%2.0f\u00B0C / %2.0f\u00B0C", s.outside_temperature, isa);
    screen.Value(value, kCduRightEdge, CduValueY(2), gdi::TextAlign::Right);
    // Cross-track error, and the path deviation in descent.
    screen.Label("X T K   E R R O R", kCduLeftLabelX, CduLabelY(3));
    if (g_lnav.XtkDistance >= 0) {
        std::snprintf(value, sizeof value, "%s %3.2f NM", g_lnav.XtkSide == 1 ? "L" : "R", g_lnav.XtkDistance);
        screen.Value(value, 0, CduValueY(3));
    }
    screen.Label("V E R T  D E V", kCduRightLabelEdge, CduLabelY(3), gdi::TextAlign::Right);
    double deviation = s.indicated_altitude.now - v.PathAltitude;
    if (v.DescentActive == 1 && v.PathDeviationValid == 1 && std::fabs(deviation) > kPathBand) {
        std::snprintf(value, sizeof value, deviation > 0 ? "%5.0f HI" : "%5.0f LO", std::fabs(deviation));
        screen.Value(value, kCduRightEdge, CduValueY(3), gdi::TextAlign::Right);
    }
    // Track and true airspeed.
    screen.Label("G P S - L    T R K                             T A S", kCduLeftLabelX, CduLabelY(4));
    std::snprintf(value, sizeof value, "%03.0f", s.track);
    screen.Value(value, 0, CduValueY(4));
    std::snprintf(value, sizeof value, "%3.0f KT", s.true_airspeed.now);
    screen.Value(value, kCduRightEdge, CduValueY(4), gdi::TextAlign::Right);
    screen.Rule();
    screen.Value("< INDEX", 0, kPerfRow6Y);
}

void DrawRtaProgress(CduScreen& screen) {
    screen.Label("R T A    W P T", kCduLeftLabelX, CduLabelY(1));
    screen.Value("- - - - - -", 0, CduValueY(1));
    screen.Rule();
    screen.Value("< LIMITS", 0, kPerfRow6Y);
}
}  // namespace

// [SECTION] PROGRESS page
void ProgressPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    StepPages(s.progress, kProgressPageCount);

    // The key of this frame, on the page of the counter.
    int key = s.LineSelectLatch;
    int page = s.progress.page;
    if (key == kLeftRow6Key) {
        if (page == 3) {
            s.CduPage = cdu_page::kPerfInit;
            s.perf.page = 2;
        } else {
            s.CduPage = cdu_page::kInitRefIndex;
        }
    }
    if (key == kRightRow6Key && page == 1) s.CduPage = cdu_page::kNavStatus;
    if (s.CduPage != cdu_page::kProgress) return;

    // Draw.
    screen.Title(page == 3 ? "RTA  PROGRESS" : "PROGRESS");
    screen.Count("%d / %d", page, kProgressPageCount);
    if (page == 1) DrawProgressOne(screen);
    if (page == 2) DrawProgressTwo(screen);
    if (page == 3) DrawRtaProgress(screen);
}
