// Fuzz target of the performance file reader: any bytes as a performance
// file, then the cruise altitude worked out from whatever tables they left,
// on a small plan. Built with -DORB_FUZZ=ON (clang); the unit tests run the
// same entry over a few hostile inputs by including this file with
// ORB_NO_FUZZ_MAIN defined.
#include "frame/aircraft_profile.h"
#include "guidance/performance.h"
#include "plan/plan_tables.h"

#include <cstdint>
#include <cstdio>

namespace performance_fuzz {
inline int ReadPerformanceBytes(const uint8_t* data, size_t size) {
    PerformanceTable& table = g_performance_table;
    ReadPerformanceText(reinterpret_cast<const char*>(data), size, table);
    // What the reader leaves must stay within its bounds.
    if (table.ClimbCount < 0 || table.ClimbCount > kPerformanceRowLimit) __builtin_trap();
    if (table.CruiseCount < 0 || table.CruiseCount > kPerformanceRowLimit) __builtin_trap();
    if (table.DescentCount < 0 || table.DescentCount > kPerformanceRowLimit) __builtin_trap();
    if (table.AltitudeLimitCount < 0 || table.AltitudeLimitCount > kPerformanceRowLimit) __builtin_trap();
    if (table.CruiseWeightCount < 0 || table.CruiseWeightCount > kCruiseWeightLimit) __builtin_trap();
    for (int r = 1; r <= table.CruiseCount; ++r)
        if (table.Cruise[r].FuelFlowCount < 0 || table.Cruise[r].FuelFlowCount > kCruiseFlowColumns) __builtin_trap();
    // Any tables, however odd their figures, give an altitude without a hang.
    g_profile = {};
    g_plan.context.ActiveLastRow = 2;
    for (int i = 0; i <= 2; ++i) {
        g_plan.ActivePlan[i] = PlanWaypoint{};
        g_plan.ActivePlan[i].Latitude = 47;
        g_plan.ActivePlan[i].Longitude = -122 + 2.0 * i;
    }
    g_plan.ActivePlan[0].Altitude = 0;
    g_plan.ActivePlan[2].Altitude = 0;
    int cruise = OptimizeProfile();
    if (cruise < 0 || cruise > 100000) __builtin_trap();
    if (!(g_profile.ClimbRate >= 0) || !(g_profile.DescentRate >= 0)) __builtin_trap();
    return 0;
}
}  // namespace performance_fuzz

#ifndef ORB_NO_FUZZ_MAIN
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return performance_fuzz::ReadPerformanceBytes(data, size);
}
#endif
