// eicas_bench.cpp: one whole frame of the PROLINE_EICAS strip (two dials and
// the readings' block) through the display frame, at its design size and at
// twice it. Without a simulator the readings are 0: the drawing is the same.
// The strip and the C-17 engine pages in the phases of a flight are in
// instrument_frame_bench.cpp.
#include "display/display_frame.h"
#include "frame/sim_state.h"

#include <benchmark/benchmark.h>
#include <orbhost.h>

#include <cstdint>
#include <vector>

namespace {
constexpr int kDesignWidth = 486;   // the strip's design canvas
constexpr int kDesignHeight = 110;

void BM_ProlineEicasFrame(benchmark::State& state) {
    int scale = static_cast<int>(state.range(0));
    int width = kDesignWidth * scale, height = kDesignHeight * scale;
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * height);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), width, height, width * 4};
    g_sim.avionics_power = 1;
    for (auto _ : state) DrawDisplay(GaugeId::PROLINE_EICAS, &dc, width, height, 1);
    benchmark::DoNotOptimize(pixels.data());
}
}  // namespace

BENCHMARK(BM_ProlineEicasFrame)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);
