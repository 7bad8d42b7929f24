// engine_limits.cpp: the shared engine limits, colours and limit-time texts
// (see engine_limits.h).
#include "display/engine_limits.h"

#include "display/display_surface.h"

#include <cmath>
#include <cstdio>

using namespace engine_limits;

// [SECTION] Colours of readings
LimitLevel N1Level(double n1_percent) {
    if (n1_percent < kN1Low) return LimitLevel::Caution;
    if (n1_percent > kN1Red) return LimitLevel::Warning;
    return LimitLevel::Normal;
}

LimitLevel EgtLevel(double egt_celsius) {
    if (egt_celsius > kEgtRed) return LimitLevel::Warning;
    if (egt_celsius > kEgtYellow) return LimitLevel::Caution;
    return LimitLevel::Normal;
}

LimitLevel OilPressureLevel(double psi) { return psi < kOilPressureLow ? LimitLevel::Warning : LimitLevel::Normal; }

LimitLevel OilTemperatureLevel(double degrees) {
    if (degrees < kOilTemperatureLow) return LimitLevel::Caution;
    if (degrees > kOilTemperatureRed) return LimitLevel::Warning;
    if (degrees > kOilTemperatureHigh) return LimitLevel::Caution;
    return LimitLevel::Normal;
}

LimitLevel OilNeedleLevel(double degrees) {
    if (degrees < kOilTemperatureLow) return LimitLevel::Caution;
    if (degrees > kOilNeedleRed) return LimitLevel::Warning;
    if (degrees > kOilNeedleYellow) return LimitLevel::Caution;
    return LimitLevel::Normal;
}

LimitLevel OilQuantityLevel(double quarts) { return quarts < kOilQuantityLow ? LimitLevel::Caution : LimitLevel::Normal; }

ARGB LimitColour(LimitLevel level) {
    switch (level) {
    case LimitLevel::Caution: return palette::kYellow;
    case LimitLevel::Warning: return palette::kRed;
    default: return palette::kGreen;
    }
}

// [SECTION] Limit-time texts
namespace {
// Minutes and seconds of a whole count; the minutes are taken whole so that
// 59 seconds reads 00:59, not a rounded 01:59.
void MinutesSeconds(const char* format, double seconds, char* out, std::size_t size) {
    double whole = std::floor(std::fmax(seconds, 0.0));
    std::snprintf(out, size, format, std::floor(whole / 60.0), std::fmod(whole, 60.0));
}
}  // namespace

void ThrustTimeText(double seconds, char* out, std::size_t size) {
    if (out == nullptr || size == 0) return;
    out[0] = 0;
    // 1. Nothing while the counter rests.
    if (!(seconds > 0)) return;
    // 2. Counting up to 15 minutes, then the time left of 20.
    if (seconds <= kThrustCountUp) MinutesSeconds("MAX THR TIME OVER %02.0f:%02.0f", seconds, out, size);
    else if (seconds <= kThrustAllowed)
        MinutesSeconds("MAX THR TIME REM %02.0f:%02.0f", kThrustAllowed - seconds, out, size);
    else std::snprintf(out, size, "MAX THR TIME REM 00:00");
}

void EgtTimeText(double seconds, char* out, std::size_t size, int* y) {
    if (out == nullptr || size == 0) return;
    out[0] = 0;
    if (y != nullptr) *y = 40;
    // 1. Nothing while the counter rests.
    if (!(seconds > 0)) return;
    // 2. Held at five minutes for the first five, then the time left of ten.
    if (seconds <= kEgtHeld) {
        MinutesSeconds("TIME REM %02.0f:%02.0f", kEgtAllowed - kEgtHeld, out, size);
        if (y != nullptr) *y = 43;
    } else if (seconds <= kEgtAllowed) {
        MinutesSeconds("TIME REM %02.0f:%02.0f", kEgtAllowed - seconds, out, size);
    } else {
        std::snprintf(out, size, "TIME REM 00:00");
    }
}

// [SECTION] Other readings
double EngineEpr(int engine, double raw, double ambient) {
    // Engine 2's factor is not given: it takes engine 1's, its twin.
    static constexpr double kFactor[4] = {0.32, 0.32, 0.315, 0.317};
    if (engine < 0 || engine > 3 || ambient == 0 || !std::isfinite(raw) || !std::isfinite(ambient)) return 1.0;
    return 1.0 + raw * kFactor[engine] / ambient;
}

const char* FlapText(double raw) {
    if (raw < kFlapQuarter) return "UP";
    if (raw < kFlapHalf) return "1/2";
    if (raw < kFlapThreeQuarters) return "3/4";
    return "FULL";
}
