// geodesy_bench.cpp: the cost of the module's hottest numeric calls.
// GreatCircle runs several times per plan waypoint per recompute and once per
// map object per frame; ProjectPoint draws every leg; MagneticVariation runs
// a full model set-up and synthesis, once per procedure file opened.
#include "guidance/geodesy.h"
#include "navdata/magnetic_model.h"

#include <benchmark/benchmark.h>

#include <array>

namespace {

// A spread of pairs so that no one branch of the trigonometry is favoured.
struct Pair {
    double lat1, lon1, lat2, lon2;
};
constexpr std::array<Pair, 8> kPairs = {{
    {33.95, -118.4, 40.633, -73.783},
    {51.47, -0.45, 40.64, -73.78},
    {-33.94, 151.18, 1.36, 103.99},
    {0.0, 179.5, 0.0, -179.5},
    {64.13, -21.94, 64.13, -21.93},
    {-89.0, 0.0, 89.0, 180.0},
    {47.45, -122.31, 47.46, -122.30},
    {35.55, 139.78, 37.62, -122.38},
}};

void BM_GreatCircle(benchmark::State& state) {
    size_t i = 0;
    for (auto _ : state) {
        const Pair& p = kPairs[i++ & 7];
        double distance = 0, bearing = 0;
        GreatCircle(p.lat1, p.lon1, p.lat2, p.lon2, distance, bearing);
        benchmark::DoNotOptimize(distance);
        benchmark::DoNotOptimize(bearing);
    }
}
BENCHMARK(BM_GreatCircle);

void BM_ProjectPoint(benchmark::State& state) {
    size_t i = 0;
    for (auto _ : state) {
        const Pair& p = kPairs[i & 7];
        double lat = 0, lon = 0;
        ProjectPoint(p.lat1, p.lon1, static_cast<double>((i * 37) % 360 + 1), 50.0 + (i & 15) * 25.0, lat, lon);
        ++i;
        benchmark::DoNotOptimize(lat);
        benchmark::DoNotOptimize(lon);
    }
}
BENCHMARK(BM_ProjectPoint);

void BM_MagneticVariation(benchmark::State& state) {
    StoreMagneticCoefficients();
    int lat = -80, lon = -180;
    for (auto _ : state) {
        benchmark::DoNotOptimize(MagneticVariation(lat, lon));
        lat = lat >= 80 ? -80 : lat + 7;
        lon = lon >= 170 ? -180 : lon + 13;
    }
}
BENCHMARK(BM_MagneticVariation);

}  // namespace
