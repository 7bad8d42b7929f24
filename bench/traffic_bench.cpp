// traffic_bench.cpp: the traffic layer at its count limit: a block of twelve
// target pointers (the walk reads the last five), every target inside the
// vertical range, all classes and trends, drawn on a 488 x 604 surface from
// the ND's 244 x 302 design. One variant gets a new sequence each frame (the
// block is read and the table refilled every time), the other an unchanged
// one (only the drawing).
#include "display/display_surface.h"
#include "display/traffic.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"

#include <benchmark/benchmark.h>
#include <orbhost.h>

#include <array>
#include <cstring>
#include <vector>

namespace {
constexpr int kPointers = 12;

struct Block {
    alignas(8) std::array<unsigned char, kTrafficBlockBytes> bytes{};
    alignas(8) std::array<std::array<unsigned char, kTargetRecordBytes>, kPointers + 1> records{};
    uint16_t sequence = 0;

    Block() {
        for (int i = 1; i <= kPointers; ++i) {
            unsigned char* r = records[static_cast<size_t>(i)].data();
            float altitude = static_cast<float>(i * 700 - 4000), distance = static_cast<float>(i % 9 + 1);
            float bearing = static_cast<float>(i) * 0.5f - 3.0f;
            uint32_t flags = (static_cast<uint32_t>(i % 3 - 1) & 0xF) << kTargetTrendShift |
                             static_cast<uint32_t>(i % 4) << kTargetClassShift;
            std::memcpy(r + kTargetAltitudeOffset, &altitude, 4);
            std::memcpy(r + kTargetFlagsOffset, &flags, 4);
            r[kTargetValidOffset] = 1;
            std::memcpy(r + kTargetDistanceOffset, &distance, 4);
            std::memcpy(r + kTargetBearingOffset, &bearing, 4);
            void* p = r;
            std::memcpy(bytes.data() + TrafficPointerOffset(i), &p, sizeof p);
        }
        bytes[kTrafficBlockCountOffset] = kPointers;
    }
    void NextSequence() {
        ++sequence;
        std::memcpy(bytes.data() + kTrafficBlockSequenceOffset, &sequence, 2);
    }
};

void RunLayer(benchmark::State& state, bool new_sequence) {
    std::vector<uint32_t> pixels(488 * 604);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), 488, 604, 488 * 4};
    Block block;
    block.NextSequence();
    g_traffic = {};
    g_module.traffic_link = block.bytes.data();
    g_config.TcasVertRange = 140;
    g_sim.heading_true = 75;
    for (auto _ : state) {
        if (new_sequence) block.NextSequence();
        gdi::Graphics g(&dc);
        DisplaySurface surface;
        surface.graphics = &g;
        surface.width = 488;
        surface.height = 604;
        surface.scale_x = surface.scale_y = 2;
        g.SetSmoothing(SmoothingModeHighQuality);
        g.ResetTransform();
        g.Scale(2, 2);
        DrawTraffic(surface, 215, 10, 122, 249, kTrafficKindB737);
    }
    if (g_traffic.TargetCount != kTrafficTableRows) state.SkipWithError("the table did not fill");
    state.SetItemsProcessed(state.iterations() * g_traffic.TargetCount);
    g_module.traffic_link = nullptr;
}

void BM_TrafficLayerNewSequence(benchmark::State& state) { RunLayer(state, true); }
void BM_TrafficLayerSameSequence(benchmark::State& state) { RunLayer(state, false); }
BENCHMARK(BM_TrafficLayerNewSequence)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TrafficLayerSameSequence)->Unit(benchmark::kMicrosecond);
}  // namespace
