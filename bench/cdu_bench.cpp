// cdu_bench.cpp: the cost of one frame of the Boeing-style CDU's RTE page
// with a loaded route (page 1 and the route's lines), as the simulator draws
// it on the gauge's 284 x 233 surface, drawing objects made anew each frame;
// and of NAV STATUS, which finds the tuned and the nearest stations anew in
// every frame.
#include "cdu/cdu_draw.h"
#include "cdu/cdu_keys.h"
#include "cdu/keypad.h"
#include "cdu/plan_data_texts.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"
#include "plan/route_files.h"

#include <benchmark/benchmark.h>
#include <orbhost.h>

#include <vector>

namespace {
constexpr int kWidth = 284;
constexpr int kHeight = 233;

void LoadRoute() {
    CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), ORB_SOURCE_DIR "/data/sim");
    if (g_navdb.AirportTable.count == 0) LoadNavDatabase();
    if (g_stored_plans.count == 0) BuildStoredPlanTable();
    PresetPlanDataTexts();
    g_smiths.CduPage = 22;
    SetScratchpad("KSEAKGEG");
    PressCduKey(*FindCduKey(GaugeId::SMITHS_FMS, "LSK2L"));
}

void BM_CduRteFrame(benchmark::State& state) {
    std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), kWidth, kHeight, kWidth * 4};
    LoadRoute();
    SmithsPageDispatcher(&dc, kWidth, kHeight);
    g_smiths.rte.page = static_cast<int>(state.range(0));
    for (auto _ : state) SmithsPageDispatcher(&dc, kWidth, kHeight);
}
BENCHMARK(BM_CduRteFrame)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);
}  // namespace

namespace {
void BM_CduNavStatusFrame(benchmark::State& state) {
    std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), kWidth, kHeight, kWidth * 4};
    LoadRoute();
    g_sim.latitude = 47.44;
    g_sim.longitude = -122.31;
    g_smiths.CduPage = 31;
    g_smiths.nav_status.page = 1;
    SmithsPageDispatcher(&dc, kWidth, kHeight);  // the subsets are built once, here
    for (auto _ : state) SmithsPageDispatcher(&dc, kWidth, kHeight);
}
BENCHMARK(BM_CduNavStatusFrame)->Unit(benchmark::kMicrosecond);
}  // namespace
