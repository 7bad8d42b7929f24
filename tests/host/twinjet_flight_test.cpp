// twinjet_flight_test.cpp: orbsim's aircraft flies by the twin jet's book:
// climbs the engines cannot sustain cost speed at the energy rate, the
// autothrottle's accelerations are limited, fuel flows by phase and weight,
// the take-off roll, and the key events guidance sends.
//
// Expected figures are worked out here from the book's rows and from
// dV/dt = g x (asked - sustainable rate) / V, not read back from the model.
#include "orbsim/aircraft_model.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace orbsim;

namespace {
constexpr double kG = 32.174;          // ft/s2
constexpr double kFpsPerKnot = 1.68781;

// Knots of indicated speed a second that an energy surplus (+) or deficit (-)
// of `excess_fpm` gives at an indicated speed and altitude: the true speed
// changes by g x excess / V, and the indicated one by that over the density
// gain of 1.9 % a thousand feet.
double IndicatedRate(double ias, double alt, double excess_fpm) {
    double gain = 1 + 0.019 * alt / 1000;
    double v_fps = ias * gain * kFpsPerKnot;
    return kG * (excess_fpm / 60) / v_fps / kFpsPerKnot / gain;
}

AircraftModel Airborne(double alt, double ias) {
    AircraftModel a = DefaultAircraft();
    a.alt = alt;
    a.ias = ias;
    a.ap_master = 1;
    return a;
}
}  // namespace

TEST(TwinJetFlight, ClimbBeyondTheThrustKeepsTheRateAndBleedsSpeed) {
    // FL300: the book sustains 1600 ft/min. Asked for 4000 with the
    // autothrottle on its target, the jet climbs at 4000 and loses
    // 32.174 x 40 / 741.96 ft/s2 = 1.0277 kt/s true, 0.6546 kt/s indicated.
    AircraftModel a = Airborne(30000, 280);
    a.vs_hold = 1;
    a.ap_vs = 4000;
    a.spd_hold = 1;
    a.ap_spd = 280;
    StepAircraft(a, 1);
    EXPECT_DOUBLE_EQ(a.vs, 4000);
    EXPECT_NEAR(a.alt, 30000 + 4000 / 60.0, 1e-6);
    double expected = IndicatedRate(280, 30000, 2400);
    EXPECT_NEAR(expected, 0.6546, 1e-4);
    EXPECT_NEAR(280 - a.ias, expected, 0.02 * expected);
    // The bleed goes on while the climb is steeper than the thrust allows.
    StepAircraft(a, 9);
    EXPECT_LT(a.ias, 280 - 9 * expected * 0.95);

    // Asking for less than the book gives on the target: no loss at all.
    a = Airborne(30000, 280);
    a.vs_hold = 1;
    a.ap_vs = 1500;
    a.spd_hold = 1;
    a.ap_spd = 280;
    StepAircraft(a, 30);
    EXPECT_DOUBLE_EQ(a.ias, 280);
    EXPECT_NEAR(a.alt, 30750, 1e-6);

    // Lower down the book gives more: 2900 ft/min at FL100, so the same
    // 4000 costs only (4000 - 2900) worth.
    a = Airborne(10000, 250);
    a.vs_hold = 1;
    a.ap_vs = 4000;
    StepAircraft(a, 1);
    double low = IndicatedRate(250, 10000, 1100);
    EXPECT_NEAR(250 - a.ias, low, 0.02 * low);

    // At the lowest speed that flies (vs1) the bleed stops and the climb
    // falls back to what the thrust sustains at the altitude reached,
    // 1600 - 400 x (alt - 30000) / 5000 between FL300 and FL350.
    a = Airborne(30000, 140);
    a.vs_hold = 1;
    a.ap_vs = 4000;
    StepAircraft(a, 60);
    EXPECT_GE(a.ias, a.vs1 - 1e-9);
    EXPECT_LT(a.ias, a.vs1 + 1);
    ASSERT_GT(a.alt, 30000);
    ASSERT_LT(a.alt, 35000);
    EXPECT_NEAR(a.vs, 1600 - 400 * (a.alt - 30000) / 5000, 1.0);

    // Above the ceiling nothing is sustainable: even 500 ft/min bleeds.
    a = Airborne(41500, 220);
    a.vs_hold = 1;
    a.ap_vs = 500;
    StepAircraft(a, 1);
    EXPECT_LT(a.ias, 220);

    // Nor with the engines stopped: 500 ft/min at 5000 ft costs all of it.
    a = Airborne(5000, 220);
    a.n1_set = 0;
    a.vs_hold = 1;
    a.ap_vs = 500;
    StepAircraft(a, 1);
    double glide = IndicatedRate(220, 5000, 500);
    EXPECT_NEAR(220 - a.ias, glide, 0.02 * glide);
}

TEST(TwinJetFlight, AutothrottleAcceleratesWithinItsLimits) {
    // Level at 2000 ft the spare thrust could give 3.18 kt/s; the
    // autothrottle takes 2.
    AircraftModel a = Airborne(2000, 180);
    EXPECT_GT(IndicatedRate(180, 2000, 3280), 2);
    a.spd_hold = 1;
    a.ap_spd = 250;
    StepAircraft(a, 5);
    EXPECT_NEAR(a.ias, 190, 1e-6);

    // Climbing 500 ft/min there leaves 2.70 kt/s; the climb limit is 1.5.
    a = Airborne(2000, 180);
    EXPECT_GT(IndicatedRate(180, 2000, 2780), 1.5);
    a.spd_hold = 1;
    a.ap_spd = 250;
    a.vs_hold = 1;
    a.ap_vs = 500;
    StepAircraft(a, 5);
    EXPECT_NEAR(a.ias, 187.5, 1e-6);

    // At FL100 a 2000 ft/min climb leaves 900 of the book's 2900: 0.479 kt/s,
    // below the limit, so the spare thrust decides.
    a = Airborne(10000, 250);
    a.spd_hold = 1;
    a.ap_spd = 280;
    a.vs_hold = 1;
    a.ap_vs = 2000;
    StepAircraft(a, 10);
    double spare = IndicatedRate(250, 10000, 900);
    EXPECT_NEAR(spare, 0.4785, 1e-4);
    EXPECT_NEAR(a.ias - 250, 10 * spare, 0.05 * 10 * spare);

    // Mach hold accelerates the same way, towards the Mach's speed.
    a = Airborne(2000, 180);
    a.mach_hold = 1;
    a.ap_mach = 0.5;
    StepAircraft(a, 5);
    EXPECT_NEAR(a.ias, 190, 1e-6);

    // Descending, idle and speed brakes hold the speed and slow at 2 kt/s.
    a = Airborne(20000, 300);
    a.spd_hold = 1;
    a.ap_spd = 300;
    a.vs_hold = 1;
    a.ap_vs = -2500;
    StepAircraft(a, 30);
    EXPECT_DOUBLE_EQ(a.ias, 300);
    EXPECT_NEAR(a.alt, 18750, 1e-6);
    a.ap_spd = 280;
    StepAircraft(a, 5);
    EXPECT_NEAR(a.ias, 290, 1e-6);

    // Without the autothrottle a climb within the book keeps its speed.
    a = Airborne(10000, 250);
    a.vs_hold = 1;
    a.ap_vs = 2000;
    StepAircraft(a, 30);
    EXPECT_DOUBLE_EQ(a.ias, 250);
}

TEST(TwinJetFlight, FuelFlowsByPhaseAndWeight) {
    // The default set-up weighs 102,000 empty + 18,000 payload + 20,000 fuel.
    AircraftModel a = DefaultAircraft();
    EXPECT_NEAR(GrossWeight(a), 140000, 1e-6);

    // Climbing above 300 ft/min: the book's climb flow, 6800 at 10000 ft, halved per engine.
    a.alt = 10000;
    a.ias = 250;
    a.vs = 2000;
    EXPECT_NEAR(EngineFuelFlow(a, 0), 3400, 1e-6);
    EXPECT_NEAR(EngineFuelFlow(a, 1), 3400, 1e-6);
    EXPECT_NEAR(EngineN1(a, 0), 90, 1e-9);

    // Level at FL350 and 140,000 lb: 3600 for both.
    a.alt = 35000;
    a.vs = 0;
    EXPECT_NEAR(EngineFuelFlow(a, 0) + EngineFuelFlow(a, 1), 3600, 1e-6);
    EXPECT_NEAR(EngineN1(a, 1), 82, 1e-9);

    // Level at FL250 and 150,000 lb: half way between 4000 and 4300.
    LoadFuelPounds(a, 30000);
    a.alt = 25000;
    EXPECT_NEAR(EngineFuelFlow(a, 0) + EngineFuelFlow(a, 1), 4150, 1e-6);
    // Between two rows: FL275 at 150,000 lb is the mean of 4150 and (3800 + 4100) / 2.
    a.alt = 27500;
    EXPECT_NEAR(EngineFuelFlow(a, 0) + EngineFuelFlow(a, 1), (4150 + 3950) / 2.0, 1e-6);

    // Descending below -300 ft/min: idle, 1100 at FL200.
    LoadFuelPounds(a, 20000);
    a.alt = 20000;
    a.vs = -2500;
    EXPECT_NEAR(EngineFuelFlow(a, 0) + EngineFuelFlow(a, 1), 1100, 1e-6);
    EXPECT_NEAR(EngineN1(a, 0), 30, 1e-9);

    // Half way to the climb threshold: half cruise (4600 at FL100), half climb (6800).
    a.alt = 10000;
    a.vs = 150;
    EXPECT_NEAR(EngineFuelFlow(a, 0) + EngineFuelFlow(a, 1), 5700, 1e-6);
    EXPECT_NEAR(EngineN1(a, 0), 86, 1e-9);

    // A flow factor scales the book; stopped engines burn nothing.
    a.vs = 2000;
    a.flow_factor = 110;
    EXPECT_NEAR(EngineFuelFlow(a, 0), 3740, 1e-6);
    a.n1_set = 0;
    EXPECT_EQ(EngineFuelFlow(a, 0), 0);
    EXPECT_EQ(EngineN1(a, 1), 0);
}

TEST(TwinJetFlight, AnHourOfCruiseBurnsWhatTheLighteningJetNeeds) {
    // FL350 level: flow = 3300 + 0.015 (W - 120000) pounds an hour between
    // 120,000 and 140,000 lb, and dW/dt = -flow. With u = W + 100000,
    // du/dt = -0.015 u, so an hour from 140,000 lb burns
    // 240000 x (1 - e^-0.015) = 3573.1 lb.
    AircraftModel a = Airborne(35000, 260);
    a.mach_hold = 1;
    a.ap_mach = 0.78;
    double before = FuelPounds(a);
    StepAircraft(a, 3600);
    EXPECT_NEAR(before - FuelPounds(a), 240000 * (1 - std::exp(-0.015)), 0.5);
    EXPECT_DOUBLE_EQ(a.alt, 35000);
}

TEST(TwinJetFlight, TakeOffRollLiftsOffAtTheLiftOffSpeed) {
    AircraftModel a = DefaultAircraft();
    a.alt = a.ground = 433;
    a.ias = 0;
    a.spd_hold = 1;
    a.ap_spd = 250;
    a.alt_hold = 1;
    a.ap_alt = 5000;
    a.ap_vs = 2000;
    // On the roll: climb thrust, the climb flow at 433 ft = 7600 - 400 x 433 / 5000.
    EXPECT_TRUE(OnGround(a));
    EXPECT_NEAR(EngineN1(a, 0), 90, 1e-9);
    EXPECT_NEAR(EngineFuelFlow(a, 0) + EngineFuelFlow(a, 1), 7600 - 400 * 433 / 5000.0, 1e-6);
    StepAircraft(a, 10);
    EXPECT_NEAR(a.ias, 40, 1e-6);  // 4 kt/s
    EXPECT_DOUBLE_EQ(a.alt, 433);
    EXPECT_EQ(a.vs, 0);
    // 150 kt at 37.5 s; the climb starts there, 2000 ft/min, and the speed
    // goes on up at the climb's 1.5 kt/s (the spare thrust would give 1.70).
    StepAircraft(a, 30);
    EXPECT_NEAR(a.alt, 433 + 2.5 * 2000 / 60, 2);
    EXPECT_NEAR(a.ias, 150 + 2.5 * 1.5, 0.15);
    EXPECT_FALSE(OnGround(a));

    // Without the autothrottle the jet stays parked at idle: the descent flow at 433 ft.
    a = DefaultAircraft();
    a.alt = a.ground = 433;
    a.ias = 0;
    a.alt_hold = 1;
    a.ap_alt = 5000;
    EXPECT_NEAR(EngineN1(a, 0), 30, 1e-9);
    EXPECT_NEAR(EngineFuelFlow(a, 0) + EngineFuelFlow(a, 1), 1300 - 50 * 433 / 5000.0, 1e-6);
    StepAircraft(a, 60);
    EXPECT_EQ(a.ias, 0);
    EXPECT_DOUBLE_EQ(a.alt, 433);

    // A speed bug below the lift-off speed rolls to it and stays on the ground.
    a.spd_hold = 1;
    a.ap_spd = 140;
    StepAircraft(a, 60);
    EXPECT_DOUBLE_EQ(a.ias, 140);
    EXPECT_DOUBLE_EQ(a.alt, 433);
    EXPECT_NEAR(EngineN1(a, 0), 30, 1e-9);  // at the bug: idle again

    // Setting the speed at once still works, as scripts do: 150 lifts off at the first step.
    a.ias = 150;
    StepAircraft(a, 1);
    EXPECT_GT(a.alt, 433);
}

TEST(TwinJetFlight, GuidanceKeyEventsSetTheBugsAndSwitchTheHolds) {
    AircraftModel a = Airborne(35000, 250);
    // The bugs: altitude, signed vertical speed, speed, Mach x 100.
    EXPECT_TRUE(ApplyKeyEvent(a, 0x1024C, 37000));
    EXPECT_EQ(a.ap_alt, 37000);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x101F4, static_cast<uint32_t>(-1800)));
    EXPECT_EQ(a.ap_vs, -1800);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x101F5, 280));
    EXPECT_EQ(a.ap_spd, 280);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x101F6, 78));
    EXPECT_DOUBLE_EQ(a.ap_mach, 0.78);

    // Speed hold on: the jet flies the speed bug.
    EXPECT_TRUE(ApplyKeyEvent(a, 0x10163, 0));
    EXPECT_EQ(a.spd_hold, 1);
    StepAircraft(a, 600);
    EXPECT_NEAR(a.ias, 280, 1e-6);

    // Leave speed hold, enter Mach hold: it flies the Mach bug instead.
    EXPECT_TRUE(ApplyKeyEvent(a, 0x1022E, 0));
    EXPECT_EQ(a.spd_hold, 0);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x1017B, 0));
    EXPECT_EQ(a.mach_hold, 1);
    StepAircraft(a, 600);
    EXPECT_NEAR(MachNumber(a), 0.78, 1e-6);
    EXPECT_LT(a.ias, 280);

    // Leave Mach hold, enter speed hold: back to the speed bug.
    EXPECT_TRUE(ApplyKeyEvent(a, 0x1023E, 0));
    EXPECT_EQ(a.mach_hold, 0);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x10163, 0));
    StepAircraft(a, 600);
    EXPECT_NEAR(a.ias, 280, 1e-6);

    // Altitude hold takes the altitude bug at the vertical speed bug's size:
    // 1800 ft/min up to FL370.
    a.alt_hold = 1;
    StepAircraft(a, 30);
    EXPECT_NEAR(a.alt, 35900, 1e-6);
    EXPECT_DOUBLE_EQ(a.vs, 1800);
    StepAircraft(a, 60);
    EXPECT_DOUBLE_EQ(a.alt, 37000);
    EXPECT_EQ(a.vs, 0);
}
