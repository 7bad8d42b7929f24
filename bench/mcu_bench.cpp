// mcu_bench.cpp: the MCU's name lookup on a full-size database (every table
// at its limit, written by gen_fullsize_db into the build folder): a rocker
// step or a typed letter rebuilds the candidates by a prefix walk over the
// navaid, intersection and airport tables within one frame.
#include "cdu/mcu_pages.h"
#include "frame/module_state.h"
#include "navdata/nav_database.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {
void LoadFullSize() {
    static bool loaded = [] {
        std::string dir = std::string(ORB_BINARY_DIR) + "/fullsize-db";
        if (!std::filesystem::exists(dir + "/orb/navdata/apps.txt")) {
            std::string command = std::string(ORB_BINARY_DIR) + "/gen_fullsize_db " + dir;
            if (std::system(command.c_str()) != 0) std::fprintf(stderr, "mcu_bench: %s failed\n", command.c_str());
        }
        std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", dir.c_str());
        LoadNavDatabase();
        return true;
    }();
    (void)loaded;
}

// A prefix of one letter fills the 250 rows early; a name that nothing
// starts with walks every row of the three tables.
void BM_McuCandidates(benchmark::State& state, const char* prefix, bool airports_only) {
    LoadFullSize();
    int found = 0;
    for (auto _ : state) found = BuildMcuCandidates(prefix, airports_only);
    state.counters["candidates"] = found;
}
BENCHMARK_CAPTURE(BM_McuCandidates, one_letter, "B", false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_McuCandidates, three_letters, "BNC", false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_McuCandidates, nothing_matches, "QQQQQQ", false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_McuCandidates, airports_nothing_matches, "QQQQ", true)->Unit(benchmark::kMicrosecond);
}  // namespace
