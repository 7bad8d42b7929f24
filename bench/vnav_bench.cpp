// vnav_bench.cpp: VNAV's share of a tick on a full plan of 201 rows: the
// vertical steps (phase tests, the distance pass, the commands, the speed
// setter) in cruise and in descent, and putting T/D anew, which walks the
// plan back from its end. No simulator is attached: key events go nowhere,
// as a missing panel slot does.
#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/sim_state.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {
constexpr int kRows = kPlanLastRowLimit + 1;   // a plan as long as the tables allow
constexpr double kFirstLatitude = 30.0;        // degrees; rows run due north
constexpr double kRowSpacing = 0.1;            // degrees of latitude, 6 nm legs
constexpr double kLongitude = -100.0;
constexpr int kActiveRow = 100;

// A 1200 nm plan at FL350, the aircraft on the leg to row 100.
void BuildPlan() {
    for (int i = 0; i < kRows; ++i) {
        PlanWaypoint& row = g_plan.ActivePlan[i];
        NewPlanRow(row);
        std::snprintf(row.Ident.data(), row.Ident.size(), "W%03d", i);
        std::snprintf(row.WaypointType.data(), row.WaypointType.size(), "%s", i == 0 || i == kRows - 1 ? "APT" : "WPT");
        row.Latitude = kFirstLatitude + i * kRowSpacing;
        row.Longitude = kLongitude;
        row.Altitude = i == 0 || i == kRows - 1 ? 500 : 35000;
        row.Speed = 280;
    }
    // Two restrictions in the descent, so that T/D has a level segment to find.
    g_plan.ActivePlan[180].Altitude = 12000;
    g_plan.ActivePlan[180].Restricted = 1;
    g_plan.ActivePlan[190].Altitude = 6000;
    g_plan.ActivePlan[190].Restricted = 1;
    PlanContext& pc = g_plan.context;
    pc.ActiveLastRow = kRows - 1;
    pc.ActiveLeg = kActiveRow;
    pc.ActiveWaypointLatitude = g_plan.ActivePlan[kActiveRow].Latitude;
    pc.ActiveWaypointLongitude = kLongitude;
    pc.NextRestrictionRow = 180;
    pc.CruiseAltitude = 35000;
    pc.PlanState = 3;
    g_sim.latitude = pc.ActiveWaypointLatitude - 0.05;
    g_sim.longitude = kLongitude;
    g_sim.indicated_altitude.now = 35000;
    g_sim.ground_speed = 450;
    g_sim.ias_smoothed = 280;
    g_lnav.DistToActive = 3;
    g_lnav.LegCourse = 360;
    g_lnav.BearingToActive = 360;
}

void BM_VnavStepCruise(benchmark::State& state) {
    BuildPlan();
    g_vnav = VnavState{};
    g_vnav.VnavOn = 1;
    g_vnav.CruiseReached = 1;
    RecomputeTopOfDescent(0);
    g_vnav.AltSetDone = g_vnav.SpdSetDone = 1;
    for (auto _ : state) {
        VnavVerticalSteps();
        benchmark::DoNotOptimize(g_vnav.DescentActive);
    }
    if (g_vnav.DescentActive != 0) state.SkipWithError("the cruise left for descent");
}
BENCHMARK(BM_VnavStepCruise);

void BM_VnavStepDescent(benchmark::State& state) {
    BuildPlan();
    g_vnav = VnavState{};
    g_vnav.VnavOn = 1;
    g_vnav.CruiseReached = 1;
    g_vnav.DescentActive = 1;
    g_vnav.DescentSpeedPhase = 1;
    g_vnav.TargetAltitude = 12000;
    g_vnav.TargetDistance = 480;
    g_vnav.AltSetDone = 1;
    for (auto _ : state) {
        VnavVerticalSteps();
        benchmark::DoNotOptimize(g_vnav.CommandedVs);
    }
}
BENCHMARK(BM_VnavStepDescent);

void BM_RecomputeTopOfDescent(benchmark::State& state) {
    BuildPlan();
    g_vnav = VnavState{};
    g_vnav.CruiseReached = 1;
    for (auto _ : state) {
        RecomputeTopOfDescent(0);
        benchmark::DoNotOptimize(g_vnav.TopOfDescentLatitude);
    }
}
BENCHMARK(BM_RecomputeTopOfDescent);
}  // namespace
