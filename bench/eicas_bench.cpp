// eicas_bench.cpp: one whole frame of the PROLINE_EICAS strip (two dials and
// the readings' block) through the display frame, at its design size and at
// twice it. Without a simulator the readings are 0: the drawing is the same.
// Then each of the four C-17 engine pages, in a normal state and over limits.
#include "display/c17_engine_pages.h"
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

// [SECTION] The C-17 engine pages
// Each page from one inputs state at its design size, the frame cleared
// first as the display frame does. Arg 1 puts every engine over its limits
// (red readings, reversers, both limit times, spoilers and flaps out).

namespace {
C17EngineInputs C17BenchState(bool over_limits) {
    C17EngineInputs in;
    in.n1 = {85.2, 86.1, 84.9, 85.7};
    in.n2 = {92.0, 93.1, 91.8, 92.4};
    in.egt = {540, 548, 536, 551};
    in.fuel_flow = {3120, 3180, 3090, 3150};
    in.oil_pressure = {82, 84, 81, 80};
    in.oil_temperature = {96, 98, 95, 97};
    in.oil_quantity = {14, 13.5, 14, 12};
    in.epr_source = {22000, 22100, 21900, 22050};
    in.epr_ambient = 16212;
    in.fuel_used = {1520, 1544, 1498, 1530};
    in.gear = {16383, 16383, 16383};
    if (over_limits) {
        in.n1 = {101.2, 102.0, 100.9, 14.0};
        in.egt = {660, 640, 700, 300};
        in.oil_pressure = {60, 65, 90, 10};
        in.oil_temperature = {180, 170, 30, 178};
        in.oil_quantity = {3, 2, 14, 1};
        in.reverser = {true, true, true, true};
        in.max_thrust_seconds = 1000;
        in.max_egt_seconds = 400;
        in.spoiler = {16000, 16000};
        in.flaps_raw = 16383;
        in.slats_degrees = 20;
        in.gear = {16383, 8000, 0};
    }
    return in;
}

template <void (*Page)(const DisplaySurface&, const C17EngineInputs&)>
void BM_C17EnginePage(benchmark::State& state) {
    std::vector<uint32_t> pixels(static_cast<size_t>(kC17Width) * kC17Height);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), kC17Width, kC17Height, kC17Width * 4};
    C17EngineInputs in = C17BenchState(state.range(0) != 0);
    for (auto _ : state) {
        gdi::Graphics graphics(&dc);
        graphics.Clear(palette::kBlack);
        DisplaySurface surface;
        surface.graphics = &graphics;
        surface.width = kC17Width;
        surface.height = kC17Height;
        Page(surface, in);
    }
    benchmark::DoNotOptimize(pixels.data());
}
}  // namespace

BENCHMARK(BM_C17EnginePage<DrawC17EnginesFrom>)->Name("C17Engines")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_C17EnginePage<DrawC17EnginesSecondaryFrom>)
    ->Name("C17EnginesSecondary")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_C17EnginePage<DrawC17OilAndFuelFrom>)->Name("C17OilAndFuel")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_C17EnginePage<DrawC17ConfigurationFrom>)
    ->Name("C17Configuration")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
