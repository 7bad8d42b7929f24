// performance_bench.cpp: the predictions on a full plan. PredictProfile runs
// on every EXEC and plan load (with the optimiser when no cruise altitude is
// given); PlanDistances runs several times a tick, so its cost is paid 18
// times a second and more.
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

constexpr int kBenchRows = 200;

// A 200-row plan from Seattle eastwards, rows 5 nm or so apart, with a climb
// restriction, a descent restriction and a discontinuity.
void BuildPlan() {
    for (int i = 0; i < kBenchRows; ++i) {
        PlanWaypoint& row = g_plan.ActivePlan[i];
        row = PlanWaypoint{};
        std::snprintf(row.Ident.data(), row.Ident.size(), "WP%03d", i);
        row.Latitude = 47.45 + 0.01 * (i % 7);
        row.Longitude = -122.3 + 0.12 * i;
    }
    std::snprintf(g_plan.ActivePlan[100].Ident.data(), 24, "DISCO");
    g_plan.ActivePlan[0].Altitude = 433;
    g_plan.ActivePlan[kBenchRows - 1].Altitude = 2376;
    g_plan.ActivePlan[10].Restricted = 1;
    g_plan.ActivePlan[10].Altitude = 10000;
    g_plan.ActivePlan[10].Speed = 250;
    g_plan.ActivePlan[185].Restricted = 1;
    g_plan.ActivePlan[185].Altitude = 11000;
    g_plan.context.ActiveLastRow = kBenchRows - 1;
    g_plan.context.ActiveLeg = 1;
    g_plan.context.NextRestrictionRow = 185;
    g_plan.context.CruiseAltitude = 0;
    g_vnav = VnavState{};
    g_sim.latitude = 47.45;
    g_sim.longitude = -122.2;
    g_sim.indicated_altitude.now = 2000;
}

void LoadTwinJetTables() {
    std::string path = std::string(ORB_SOURCE_DIR) + "/data/sim/orb/Aircraft/TwinJet_perf.txt";
    std::snprintf(g_profile.PerformanceData.data(), g_profile.PerformanceData.size(), "%s", path.c_str());
    LoadPerformanceTable();
}

void BM_PredictProfileGivenCruise(benchmark::State& state) {
    BuildPlan();
    g_performance_table.ClimbCount = 0;
    for (auto _ : state) {
        PredictProfile(35000, 1);
        benchmark::DoNotOptimize(g_plan.ActivePlan[50].Altitude);
    }
}
BENCHMARK(BM_PredictProfileGivenCruise)->Unit(benchmark::kMicrosecond);

void BM_PredictProfileFromTables(benchmark::State& state) {
    BuildPlan();
    LoadTwinJetTables();
    const AircraftProfile saved = g_profile;
    for (auto _ : state) {
        g_profile = saved;
        g_plan.context.CruiseAltitude = 0;
        PredictProfile(0, 1);
        benchmark::DoNotOptimize(g_plan.context.CruiseAltitude);
    }
    state.counters["cruise_ft"] = g_plan.context.CruiseAltitude;
}
BENCHMARK(BM_PredictProfileFromTables)->Unit(benchmark::kMicrosecond);

void BM_PlanDistancesClimb(benchmark::State& state) {
    BuildPlan();
    g_performance_table.ClimbCount = 0;
    PredictProfile(35000, 0);
    for (auto _ : state) {
        g_vnav.CruiseReached = 0;
        PlanDistances();
        benchmark::DoNotOptimize(g_plan_distances.DistToGo);
    }
}
BENCHMARK(BM_PlanDistancesClimb)->Unit(benchmark::kMicrosecond);

void BM_PlanDistancesDescent(benchmark::State& state) {
    BuildPlan();
    g_performance_table.ClimbCount = 0;
    PredictProfile(35000, 0);
    g_sim.longitude = -122.3 + 0.12 * 170;
    g_plan.context.ActiveLeg = 171;
    for (auto _ : state) {
        g_vnav.CruiseReached = 1;
        g_vnav.DescentActive = 1;
        PlanDistances();
        benchmark::DoNotOptimize(g_vnav.PathAltitude);
    }
}
BENCHMARK(BM_PlanDistancesDescent)->Unit(benchmark::kMicrosecond);

}  // namespace
