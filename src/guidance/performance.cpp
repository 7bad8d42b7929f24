// performance.cpp: the performance state the pages keep (the cruise
// temperature pair, the kept fuel) and the simple distances to the
// destination the tick and pages ask for. The tables are read in
// performance_table.cpp, the predictions made in predictions.cpp, times and
// fuel in page_times.cpp.
#include "guidance/performance.h"

#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "plan/plan_tables.h"

#include <algorithm>

PerformanceState g_performance;
PerformanceTable g_performance_table;
PlanDistanceState g_plan_distances;

namespace {
// How much colder than 15 C the standard atmosphere is at the cruise
// altitude, counted in whole thousands of feet.
double StandardLapse() { return (g_plan.context.CruiseAltitude / 1000) * 1.98; }
}  // namespace

void EnterCruiseOat(double cruise_oat) {
    g_performance.CruiseOat = cruise_oat;
    g_performance.IsaDeviation = cruise_oat - (15.0 - StandardLapse());
}

void EnterIsaDeviation(double isa_deviation) {
    g_performance.IsaDeviation = isa_deviation;
    g_performance.CruiseOat = isa_deviation + 15.0 - StandardLapse();
}

double RouteDistanceToDestination(double distance_to_active) {
    const PlanContext& pc = g_plan.context;
    if (pc.ActiveLastRow < 0 || pc.ActiveLeg == kNoActiveLeg || pc.ActiveLeg > pc.ActiveLastRow) return -1;
    double total = std::max(0.0, distance_to_active);
    // Legs behind the active one; a discontinuity adds nothing, and the leg
    // after it is measured from the row before it.
    int from = pc.ActiveLeg;
    for (int row = pc.ActiveLeg + 1; row <= pc.ActiveLastRow; ++row) {
        const PlanWaypoint& to = g_plan.ActivePlan[row];
        if (IsDiscontinuity(to)) continue;
        const PlanWaypoint& start = g_plan.ActivePlan[from];
        double distance = 0, bearing = 0;
        GreatCircle(start.Latitude, start.Longitude, to.Latitude, to.Longitude, distance, bearing);
        total += distance;
        from = row;
    }
    return total;
}

double DirectDistanceToDestination() {
    const PlanContext& pc = g_plan.context;
    if (pc.ActiveLastRow < 0) return -1;
    const PlanWaypoint& last = g_plan.ActivePlan[pc.ActiveLastRow];
    double distance = 0, bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, last.Latitude, last.Longitude, distance, bearing);
    return distance;
}

double KeptDirectDistanceToDestination() { return g_performance.kept_direct_to_destination; }

void ReapplyRampFuel() { g_performance.fuel_kept = -1; }

void LoadDefaultSpeeds() {
    AircraftProfile& p = g_profile;
    p.ClimbIas = p.ClimbIasBase;
    p.CruiseIas = p.CruiseIasBase;
    p.DescentIas = p.DescentIasBase;
    p.ClimbTas = TasAt15000(p.ClimbIas);
    p.DescentTas = TasAt15000(p.DescentIas);
}

double FuelOnBoardKept() {
    double now = FuelOnBoardPounds();
    if (g_performance.fuel_kept < 0 || now < g_performance.fuel_kept) g_performance.fuel_kept = now;
    return g_performance.fuel_kept;
}

