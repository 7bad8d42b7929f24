// The shared engine rules: the colour of readings at and around each limit,
// the limit-time texts of the tick's counters, the EPR rule and flap texts.
#include "display/display_surface.h"
#include "display/engine_limits.h"

#include <gtest/gtest.h>

#include <string>

namespace {
std::string Thrust(double seconds) {
    char text[engine_limits::kLimitTextSize];
    ThrustTimeText(seconds, text, sizeof text);
    return text;
}
std::string Egt(double seconds, int* y = nullptr) {
    char text[engine_limits::kLimitTextSize];
    int at = -1;
    EgtTimeText(seconds, text, sizeof text, &at);
    if (y != nullptr) *y = at;
    return text;
}
}  // namespace

TEST(EngineLimits, ReadingColoursChangeJustPastTheirLimits) {
    // N1 (and N2): below 15 yellow, above 100.5 red, between green.
    EXPECT_EQ(N1Level(0.0), LimitLevel::Caution);   // a stopped engine
    EXPECT_EQ(N1Level(14.9), LimitLevel::Caution);
    EXPECT_EQ(N1Level(15.0), LimitLevel::Normal);
    EXPECT_EQ(N1Level(100.5), LimitLevel::Normal);
    EXPECT_EQ(N1Level(100.6), LimitLevel::Warning);
    // EGT: 625 green, 655 yellow, 656 red.
    EXPECT_EQ(EgtLevel(625.0), LimitLevel::Normal);
    EXPECT_EQ(EgtLevel(625.1), LimitLevel::Caution);
    EXPECT_EQ(EgtLevel(655.0), LimitLevel::Caution);
    EXPECT_EQ(EgtLevel(656.0), LimitLevel::Warning);
    // Oil.
    EXPECT_EQ(OilPressureLevel(69.9), LimitLevel::Warning);
    EXPECT_EQ(OilPressureLevel(70.0), LimitLevel::Normal);
    EXPECT_EQ(OilTemperatureLevel(38.9), LimitLevel::Caution);
    EXPECT_EQ(OilTemperatureLevel(39.0), LimitLevel::Normal);
    EXPECT_EQ(OilTemperatureLevel(163.5), LimitLevel::Normal);
    EXPECT_EQ(OilTemperatureLevel(163.6), LimitLevel::Caution);
    EXPECT_EQ(OilTemperatureLevel(177.5), LimitLevel::Caution);
    EXPECT_EQ(OilTemperatureLevel(177.6), LimitLevel::Warning);
    // The needle turns at whole degrees where the reading turns at halves.
    EXPECT_EQ(OilNeedleLevel(38.9), LimitLevel::Caution);
    EXPECT_EQ(OilNeedleLevel(163.0), LimitLevel::Normal);
    EXPECT_EQ(OilNeedleLevel(163.2), LimitLevel::Caution);
    EXPECT_EQ(OilTemperatureLevel(163.2), LimitLevel::Normal);
    EXPECT_EQ(OilNeedleLevel(177.0), LimitLevel::Caution);
    EXPECT_EQ(OilNeedleLevel(177.2), LimitLevel::Warning);
    EXPECT_EQ(OilTemperatureLevel(177.2), LimitLevel::Caution);
    EXPECT_EQ(OilQuantityLevel(3.9), LimitLevel::Caution);
    EXPECT_EQ(OilQuantityLevel(4.0), LimitLevel::Normal);
    // The colours themselves.
    EXPECT_EQ(LimitColour(LimitLevel::Normal), 0xFF00FA00u);
    EXPECT_EQ(LimitColour(LimitLevel::Warning), 0xFFFF0000u);
    EXPECT_EQ(LimitColour(LimitLevel::Caution), palette::kYellow);
}

TEST(EngineLimits, ThrustTimeCountsUpToFifteenMinutesThenDownToTwenty) {
    EXPECT_EQ(Thrust(0), "");
    EXPECT_EQ(Thrust(-5), "");
    EXPECT_EQ(Thrust(1), "MAX THR TIME OVER 00:01");
    EXPECT_EQ(Thrust(59), "MAX THR TIME OVER 00:59");   // minutes taken whole, not rounded
    EXPECT_EQ(Thrust(61), "MAX THR TIME OVER 01:01");
    EXPECT_EQ(Thrust(899), "MAX THR TIME OVER 14:59");
    EXPECT_EQ(Thrust(900), "MAX THR TIME OVER 15:00");
    EXPECT_EQ(Thrust(901), "MAX THR TIME REM 04:59");
    EXPECT_EQ(Thrust(1170), "MAX THR TIME REM 00:30");
    EXPECT_EQ(Thrust(1200), "MAX THR TIME REM 00:00");
    EXPECT_EQ(Thrust(5000), "MAX THR TIME REM 00:00");
    // A tiny buffer is cut short, never overrun.
    char small[8] = "xxxxxxx";
    ThrustTimeText(100, small, 4);
    EXPECT_EQ(std::string(small), "MAX");
}

TEST(EngineLimits, TemperatureTimeHoldsAtFiveMinutesThenCountsDownToTen) {
    int y = 0;
    EXPECT_EQ(Egt(0, &y), "");
    EXPECT_EQ(Egt(1, &y), "TIME REM 05:00");
    EXPECT_EQ(y, 43);
    EXPECT_EQ(Egt(300, &y), "TIME REM 05:00");
    EXPECT_EQ(y, 43);
    EXPECT_EQ(Egt(301, &y), "TIME REM 04:59");
    EXPECT_EQ(y, 40);
    EXPECT_EQ(Egt(540, &y), "TIME REM 01:00");
    EXPECT_EQ(Egt(600, &y), "TIME REM 00:00");
    EXPECT_EQ(Egt(601, &y), "TIME REM 00:00");
    EXPECT_EQ(y, 40);
}

TEST(EngineLimits, EprFactorsAndFlapTexts) {
    // 1 + raw x k / ambient, with each engine's own k.
    EXPECT_NEAR(EngineEpr(0, 1000, 320), 1.0 + 1000 * 0.32 / 320, 1e-12);
    EXPECT_NEAR(EngineEpr(2, 1000, 315), 1.0 + 1000 * 0.315 / 315, 1e-12);
    EXPECT_NEAR(EngineEpr(3, 500, 317), 1.0 + 500 * 0.317 / 317, 1e-12);
    EXPECT_NEAR(EngineEpr(1, 1000, 320), 2.0, 1e-12);
    // No ambient value, or no such engine: the idle reading, no division by 0.
    EXPECT_EQ(EngineEpr(0, 1000, 0), 1.0);
    EXPECT_EQ(EngineEpr(4, 1000, 320), 1.0);
    // Flaps by the raw value of 0 to 16383.
    EXPECT_STREQ(FlapText(0), "UP");
    EXPECT_STREQ(FlapText(4680), "UP");
    EXPECT_STREQ(FlapText(4681), "1/2");
    EXPECT_STREQ(FlapText(9361), "1/2");
    EXPECT_STREQ(FlapText(9362), "3/4");
    EXPECT_STREQ(FlapText(14042), "3/4");
    EXPECT_STREQ(FlapText(14043), "FULL");
    EXPECT_STREQ(FlapText(16383), "FULL");
}
