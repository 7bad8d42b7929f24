// The PROLINE_EICAS strip drawn from token readings: its texts, where they
// stand and their colours, the unit conversions of its oil readings, and the
// needle, limit and reference marks found by their pixels.
#include "display/display_families.h"
#include "display/eicas_proline.h"
#include "frame/sim_access.h"
#include "nd_fixture.h"
#include "support/fake_panels.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nd_test;

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kRankineZero = 491.69;  // 0 degrees Celsius in Rankine

Frame DrawEicas() { return DrawNd(1, GaugeId::PROLINE_EICAS, kEicasWidth, kEicasHeight); }

void Power() {
    ResetModuleState();
    g_sim.avionics_power = 1;
}

// Pixels of a colour in a square of half-size `half` about the point at
// `radius` and `degrees` (clockwise from the right) of a dial.
int NearOnDial(const Frame& f, double centre_x, double degrees, double radius, uint32_t argb, int half = 4) {
    double a = degrees * kPi / 180.0;
    int x = static_cast<int>(std::lround(centre_x + radius * std::cos(a)));
    int y = static_cast<int>(std::lround(55 + radius * std::sin(a)));
    return f.Near(argb, 40, x - half, y - half, x + half + 1, y + half + 1);
}
}  // namespace

TEST(ProlineEicas, TextsValuesAndColoursOfBothEngines) {
    Power();
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[Token::N1_1] = 85.34;
    t[Token::N1_2] = 101.0;
    t[Token::EICAS_N2_1] = 95.24;
    t[Token::EICAS_N2_2] = 96.06;
    t[Token::FUEL_FLOW_1] = 0;            // the turbine reading stands in
    t[Token::TURBINE_FUEL_FLOW_1] = 2412.4;
    t[Token::FUEL_FLOW_2] = 2587.6;
    t[Token::OIL_PRESSURE_1] = 45 * 144.0;  // pounds a square foot
    t[Token::OIL_PRESSURE_2] = 72 * 144.0;
    t[Token::OIL_TEMP_1] = kRankineZero + 90 * 1.8;
    t[Token::OIL_TEMP_2] = kRankineZero + 104 * 1.8;
    Frame f = DrawEicas();
    f.WritePng("eicas_running.png");

    // Labels: an "N1" over each dial and the block's names, white, Arial 16 bold.
    EXPECT_EQ(f.CountText("N1"), 2);
    for (const char* label : {"N1", "N2", "FF", "PRESS", "OIL", "TEMP"}) {
        const auto* s = f.Find(label);
        ASSERT_NE(s, nullptr) << label;
        EXPECT_EQ(s->box.argb, 0xFFDEE6E9u) << label;
        EXPECT_EQ(s->family, "Arial") << label;
        EXPECT_EQ(s->box.font_style & 1, 1) << label;
        EXPECT_NEAR(s->box.font_size_px, 16.0, 0.5) << label;
    }
    const auto* press = f.Find("PRESS");
    EXPECT_NEAR(press->box.layout_x, 380, 1);
    EXPECT_NEAR(press->box.layout_y, 46, 1);

    // The digital N1 of each dial, top left of its centre.
    const auto* n1_left = f.Find("85.3");
    const auto* n1_right = f.Find("101.0");
    ASSERT_NE(n1_left, nullptr);
    ASSERT_NE(n1_right, nullptr);
    EXPECT_NEAR(n1_left->box.layout_x, 100 - 95, 1);
    EXPECT_NEAR(n1_left->box.layout_y, 55 - 15, 1);
    EXPECT_NEAR(n1_right->box.layout_x, 270 - 95, 1);
    EXPECT_EQ(n1_left->box.argb, 0xFF00FA00u);

    // The block: engine 2 at its left edge, engine 1 ending at its right.
    struct Row {
        const char* engine1;
        const char* engine2;
        double y;
    };
    const Row rows[] = {
        {"95.2", "96.1", 10},      // N2
        {"2412", "2588", 28},      // fuel flow, engine 1 from the turbine reading
        {"45", "72", 46},          // oil pressure in psi
        {"90", "104", 82},         // oil temperature in Celsius
    };
    for (const Row& row : rows) {
        const auto* one = f.Find(row.engine1);
        const auto* two = f.Find(row.engine2);
        ASSERT_NE(one, nullptr) << row.engine1;
        ASSERT_NE(two, nullptr) << row.engine2;
        EXPECT_NEAR(two->box.text_x, 362, 3) << row.engine2;
        EXPECT_NEAR(one->box.text_x + one->box.text_width, 485, 4) << row.engine1;
        EXPECT_NEAR(one->box.layout_y, row.y, 1) << row.engine1;
        EXPECT_NEAR(two->box.layout_y, row.y, 1) << row.engine2;
        EXPECT_EQ(one->box.argb, 0xFF00FA00u) << row.engine1;
        EXPECT_EQ(two->box.argb, 0xFF00FA00u) << row.engine2;
    }
}

TEST(ProlineEicas, NeedleTurnsWithN1AndPassesTheEndOfTheScale) {
    Power();
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    // 57.5 per cent is half the scale: 145 degrees. 130 per cent: 327.8.
    t[Token::N1_1] = 57.5;
    t[Token::N1_2] = 130.0;
    Frame f = DrawEicas();
    f.WritePng("eicas_needles.png");
    constexpr uint32_t kGreen = 0xFF00FA00;
    double over = 130.0 / 115.0 * 290.0;
    EXPECT_GE(NearOnDial(f, 100, 145, 36, kGreen), 3);
    EXPECT_EQ(NearOnDial(f, 100, 0, 36, kGreen, 2), 0);      // nothing left at zero
    EXPECT_GE(NearOnDial(f, 270, over, 36, kGreen), 3);
    EXPECT_EQ(NearOnDial(f, 270, 290, 36, kGreen, 2), 0);    // not stopped at the scale's end
    // The red limit at 100 per cent and the cyan bug at 92.5, on both dials.
    for (double centre : {100.0, 270.0}) {
        EXPECT_GE(NearOnDial(f, centre, 100.0 / 115.0 * 290.0, 39, 0xFFFF0000, 2), 3);
        EXPECT_GE(NearOnDial(f, centre, 92.5 / 115.0 * 290.0, 45, 0xFF02A7EB, 2), 3);
        EXPECT_EQ(NearOnDial(f, centre, 180, 45, 0xFF02A7EB, 3), 0);
    }
    // The scale's white arc: on it at 200 degrees, nothing white off its end at 325.
    EXPECT_GE(NearOnDial(f, 100, 200, 40, 0xFFDEE6E9, 2), 2);
    EXPECT_EQ(NearOnDial(f, 100, 325, 40, 0xFFDEE6E9, 2), 0);
}

TEST(ProlineEicas, MissingEnginesReadIdleAndPowerOffDrawsNothing) {
    Power();
    FakeSimulatorScope scope;
    // No readings at all: both columns idle, every value 0 (oil temperature
    // of 0 Rankine converts like any other reading).
    Frame idle = DrawEicas();
    EXPECT_EQ(idle.CountText("0.0"), 2 + 2);   // two digital N1s and two N2s
    EXPECT_EQ(idle.CountText("0"), 2 + 2);     // fuel flow and oil pressure
    EXPECT_EQ(idle.CountText("-273"), 2);
    EXPECT_GE(NearOnDial(idle, 100, 0, 36, 0xFF00FA00), 3);  // needles at the start
    g_sim.avionics_power = 0;
    Frame dark = DrawEicas();
    EXPECT_TRUE(dark.seen.empty());
    EXPECT_EQ(dark.Near(0xFF00FA00), 0);
}
