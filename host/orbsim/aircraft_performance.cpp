// aircraft_performance.cpp: reading the twin jet's book at any altitude and
// weight, and the thrust the vertical speed asks for.
#include "aircraft_performance.h"

#include <algorithm>
#include <cmath>

namespace orbsim {

namespace {
// A column of the book at an altitude: straight between rows, flat beyond the ends.
template <typename Column>
double ReadColumn(double altitude, Column column) {
    const auto& book = kTwinJetBook;
    if (!(altitude > book.front().altitude)) return column(book.front());
    if (altitude >= book.back().altitude) return column(book.back());
    size_t i = 1;
    while (i + 1 < book.size() && altitude > book[i].altitude) ++i;
    const PerformanceRow& lo = book[i - 1];
    const PerformanceRow& hi = book[i];
    double f = (altitude - lo.altitude) / (hi.altitude - lo.altitude);
    return column(lo) + f * (column(hi) - column(lo));
}
}  // namespace

double BookClimbRate(double altitude) {
    if (altitude > kCeilingFt) return 0;
    return ReadColumn(altitude, [](const PerformanceRow& r) { return r.climb_rate; });
}

double BookClimbFlow(double altitude) {
    return ReadColumn(altitude, [](const PerformanceRow& r) { return r.climb_flow; });
}

double BookDescentFlow(double altitude) {
    return ReadColumn(altitude, [](const PerformanceRow& r) { return r.descent_flow; });
}

double BookCruiseFlow(double altitude, double gross_lb) {
    // The weight column pair that holds the weight, or the nearer end pair.
    size_t k = 1;
    while (k + 1 < kCruiseWeights.size() && gross_lb > kCruiseWeights[k]) ++k;
    double f = (gross_lb - kCruiseWeights[k - 1]) / (kCruiseWeights[k] - kCruiseWeights[k - 1]);
    f = std::clamp(std::isfinite(f) ? f : 0.0, 0.0, 1.0);
    double lo = ReadColumn(altitude, [k](const PerformanceRow& r) { return r.cruise_flow[k - 1]; });
    double hi = ReadColumn(altitude, [k](const PerformanceRow& r) { return r.cruise_flow[k]; });
    return lo + f * (hi - lo);
}

ThrustMix ThrustForVerticalSpeed(double vs_fpm) {
    ThrustMix mix;
    double share = std::clamp(std::fabs(std::isfinite(vs_fpm) ? vs_fpm : 0.0) / kPhaseBlendFpm, 0.0, 1.0);
    mix.cruise = 1 - share;
    if (vs_fpm > 0) mix.climb = share;
    else mix.idle = share;
    return mix;
}

double BookFlow(const ThrustMix& mix, double altitude, double gross_lb) {
    return mix.climb * BookClimbFlow(altitude) + mix.cruise * BookCruiseFlow(altitude, gross_lb) +
           mix.idle * BookDescentFlow(altitude);
}

double N1ForThrust(const ThrustMix& mix) { return mix.climb * kClimbN1 + mix.cruise * kCruiseN1 + mix.idle * kIdleN1; }

}  // namespace orbsim
