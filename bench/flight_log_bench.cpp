// flight_log_bench.cpp: what the flight log costs. The step runs at every
// tick of a flight, so its quiet case (no line due) is paid 18 times a
// second; the summary reads a whole flight's fpl.log once, at its end, inside
// one frame.
#include "flightlog/flight_log.h"
#include "frame/sim_state.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {
// A cruise step with no line due: the stage tests and the line-due tests only.
void BM_FlightLogStepQuiet(benchmark::State& state) {
    g_flight_log = {};
    g_flight_log.flight_stage = kFlightStageCruise;
    g_flight_log.first_pass_done = 1;
    g_flight_log.last_line_seconds = 1000;
    g_tick.flight_seconds = 1030;
    g_sim.ground_speed = 450;
    g_sim.vertical_speed.now = 0;
    for (auto _ : state) {
        FlightLogStep(kFlightLogTick);
        benchmark::DoNotOptimize(g_flight_log.flight_stage);
    }
}
BENCHMARK(BM_FlightLogStepQuiet);

// The lines of a flight of state.range(0) lines, mostly cruise, summarised
// and its record written (to the null device).
void BM_FlightSummary(benchmark::State& state) {
    std::vector<std::string> lines;
    const int count = static_cast<int>(state.range(0));
    for (int i = 0; i < count; ++i) {
        const char* segment = i < count / 10 ? "Climb" : i > count * 9 / 10 ? "Descent" : "Cruise";
        double alt = i < count / 10 ? 4000.0 + 35000.0 * i / (count / 10) : 37000;
        char text[160];
        std::snprintf(text, sizeof text,
                      "%02d:%02d:%02d %-10s %6s %5.0f  %5.0f   %5.0f  %6.0f  %5.0f %7.0f  %7.0f %7.0f %-3.0f", i / 60,
                      i % 60, 0, segment, "---", 450.0, 455.0, 0.0, alt, 5200.0, 40000.0 - 2.0 * i, 90000.0,
                      18000.0, 270.0);
        lines.emplace_back(text);
    }
    FILE* sink = std::fopen("/dev/null", "w");
    for (auto _ : state) {
        FlightSummary summary{};
        for (const std::string& line : lines) SummaryAddLine(summary, line);
        if (sink != nullptr) WriteSummaryRecord(sink, summary, "KSEA", "KGEG", 2026, 11, 24, "TwinJet");
        benchmark::DoNotOptimize(summary.lines_read);
    }
    if (sink != nullptr) std::fclose(sink);
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_FlightSummary)->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);
}  // namespace
