// holds_bench.cpp: the cost a hold adds to the tick: one HoldStep of a hold
// being flown (the pattern rebuilt, the corner measured, the bug decided),
// with the aircraft moving round it, and DeleteHoldsBehind over a full table.
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "plan/plan_tables.h"

#include <benchmark/benchmark.h>

namespace {
constexpr double kFixLat = 47.43;
constexpr double kFixLon = -121.72;

// A three-row plan with a hold at row 1, LNAV on, the aircraft at the fix.
void PlaceHold() {
    g_plan = PlanTables{};
    g_holds = HoldState{};
    const double rows[3][2] = {{47.43, -122.3}, {kFixLat, kFixLon}, {47.40, -120.4}};
    for (PlanTable* plan : {&g_plan.ActivePlan, &g_plan.ModPlan})
        for (int i = 0; i < 3; ++i) {
            NewPlanRow((*plan)[static_cast<size_t>(i)]);
            (*plan)[static_cast<size_t>(i)].Latitude = rows[i][0];
            (*plan)[static_cast<size_t>(i)].Longitude = rows[i][1];
        }
    g_plan.context.ActiveLastRow = g_plan.context.ModLastRow = 2;
    g_plan.context.ActiveLeg = 1;
    AddHold(1, 1);
    g_plan.ActivePlan[1].HoldIndex = 1;
    g_lnav.LnavOn = 1;
    g_lnav.ChangeDistance = 3;
    g_sim.ground_speed = 280;
    g_sim.latitude = kFixLat;
    g_sim.longitude = kFixLon;
}

void BM_HoldStepInThePattern(benchmark::State& state) {
    PlaceHold();
    // The aircraft goes round a 3 nm circle about the fix, a degree a step.
    int step = 0;
    for (auto _ : state) {
        ProjectPoint(kFixLat, kFixLon, step % 360, 3.0, g_sim.latitude, g_sim.longitude);
        ++step;
        HoldStep();
        benchmark::DoNotOptimize(g_holds.HoldHeading);
    }
}
BENCHMARK(BM_HoldStepInThePattern);

void BM_DeleteHoldsBehindFullTable(benchmark::State& state) {
    PlaceHold();
    for (auto _ : state) {
        // Ten holds ahead of the active leg: a scan that deletes nothing.
        g_holds.HoldCount = kHoldLimit;
        for (int k = 1; k <= kHoldLimit; ++k) g_holds.HoldTable[static_cast<size_t>(k)].ActiveRow = 5 + k;
        DeleteHoldsBehind(1);
        benchmark::DoNotOptimize(g_holds.HoldCount);
    }
}
BENCHMARK(BM_DeleteHoldsBehindFullTable);
}  // namespace
