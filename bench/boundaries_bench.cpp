// boundaries_bench.cpp: the ATC boundaries layer on a full table (400 areas
// of 800 points): every area beyond reach (one great circle each), and a
// number of areas near the aircraft whose every point is projected and
// joined. Also the reading of such a file.
#include "display/display_state.h"
#include "display/gdi_objects.h"
#include "display/nd_map.h"
#include "frame/data_text.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "navdata/atc_boundaries.h"

#include <benchmark/benchmark.h>
#include <orbhost.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {
struct Surface {
    std::vector<uint32_t> pixels;
    OrbDeviceContext dc{};
    Surface(int w, int h) : pixels(static_cast<size_t>(w) * h) {
        dc = OrbDeviceContext{kOrbDeviceContextMagic, pixels.data(), w, h, w * 4};
    }
};

// A full table around Seattle: `near` areas of 800 points within 40 nm, the
// rest 2,000 nm away.
void FillTable(int near) {
    AtcBoundaryTable& t = g_atc_boundaries;
    t = AtcBoundaryTable{};
    t.AtcBoundariesLoaded = 1;
    t.count = kAtcBoundaryRows;
    for (int r = 1; r <= kAtcBoundaryRows; ++r) {
        AtcBoundary& row = t.rows[static_cast<size_t>(r)];
        char id[16];
        std::snprintf(id, sizeof id, "B%03d", r);
        SetText(row.Id, id);
        SetText(row.Name, id);
        double centre_lat = 0, centre_lon = 0;
        ProjectPoint(47.45, -122.31, r * 7.0, r <= near ? 20 : 2000, centre_lat, centre_lon);
        row.PointCount = kAtcBoundaryPoints;
        for (int p = 1; p <= kAtcBoundaryPoints; ++p)
            ProjectPoint(centre_lat, centre_lon, p * 360.0 / (kAtcBoundaryPoints - 1), 15,
                         row.Points[static_cast<size_t>(p)].Latitude, row.Points[static_cast<size_t>(p)].Longitude);
        row.Centre = {centre_lat, centre_lon};
    }
}

void BM_AtcBoundariesLayer(benchmark::State& state) {
    FillTable(static_cast<int>(state.range(0)));
    g_display.AtcBoundariesShown = 1;
    g_sim.latitude = 47.45;
    g_sim.longitude = -122.31;
    MapView view;
    view.CentreX = 122;
    view.CentreY = 249;
    view.MapRadiusPx = 215;
    view.range = 40;
    view.PixelsPerNm = view.MapRadiusPx / view.range;
    view.ScaleX = view.ScaleY = 2;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    Surface s(488, 604);
    for (auto _ : state) {
        gdi::Graphics g(&s.dc);
        DrawAtcBoundariesLayer(g, view);
    }
    state.SetItemsProcessed(state.iterations());
}
// Argument: areas near the aircraft, of 400.
BENCHMARK(BM_AtcBoundariesLayer)->Arg(0)->Arg(5)->Arg(40)->Unit(benchmark::kMillisecond);

void BM_LoadAtcBoundaries(benchmark::State& state) {
    std::filesystem::path root = std::filesystem::path(ORB_BINARY_DIR) / "bench-boundaries";
    std::filesystem::create_directories(root / "orb" / "navdata");
    {
        std::ofstream out(root / "orb" / "navdata" / "atc_bdry.txt");
        for (int r = 0; r < kAtcBoundaryRows; ++r)
            for (int p = 0; p < kAtcBoundaryPoints; ++p)
                out << "B" << r << " NAME" << r << " " << 47 + p * 0.001 << " " << -122 - r * 0.01 << "\n";
    }
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root.c_str());
    for (auto _ : state) LoadAtcBoundaries();
    state.SetItemsProcessed(state.iterations() * kAtcBoundaryRows * kAtcBoundaryPoints);
}
BENCHMARK(BM_LoadAtcBoundaries)->Unit(benchmark::kMillisecond);
}  // namespace
