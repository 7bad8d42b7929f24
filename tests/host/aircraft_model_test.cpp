// aircraft_model_test.cpp: the stand-in aircraft flies as the scripts and
// the guidance tests rely on: turns, climbs, speed holds, wind, fuel, keys.
#include "orbsim/aircraft_fields.h"
#include "orbsim/aircraft_model.h"
#include "orbsim/host_state.h"
#include "orbsim/sim_values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

using namespace orbsim;

namespace {
// A slow aircraft at sea level: true airspeed equals indicated, and a
// standard-rate turn needs less than the bank limit.
AircraftModel SlowFlight() {
    AircraftModel a = DefaultAircraft();
    a.alt = 0;
    a.ias = 120;
    a.hdg = 0;
    a.ap_master = 1;
    return a;
}

// Steps in tenths of a second until the heading reaches the target; the time it took.
double SecondsToHeading(AircraftModel& a, double target, double limit) {
    double t = 0;
    while (t < limit && std::abs(WrapSigned(a.hdg - target)) > 1e-9) {
        StepAircraft(a, 0.1);
        t += 0.1;
    }
    return t;
}
}  // namespace

TEST(AircraftModel, StandardRateTurnOfNinetyDegreesTakesThirtySeconds) {
    AircraftModel a = SlowFlight();
    a.hdg_hold = 1;
    a.hdg_bug = 90;
    StepAircraft(a, 15);
    EXPECT_NEAR(a.hdg, 45, 0.2);  // half way at half time: a steady rate
    double bank_expected = std::atan(120 * kKnotsToFps * (3 * M_PI / 180) / kGravityFps2) * 180 / M_PI;
    EXPECT_NEAR(a.bank, bank_expected, 0.01);
    EXPECT_LT(a.bank, kBankLimitDeg);
    a = SlowFlight();
    a.hdg_hold = 1;
    a.hdg_bug = 90;
    EXPECT_NEAR(SecondsToHeading(a, 90, 100), 30, 0.11);
    StepAircraft(a, 10);
    EXPECT_DOUBLE_EQ(a.hdg, 90);  // rolled out and holding
    EXPECT_EQ(a.bank, 0);

    // The short way round: a bug of 270 turns left.
    a = SlowFlight();
    a.hdg_hold = 1;
    a.hdg_bug = 270;
    StepAircraft(a, 1);
    EXPECT_NEAR(a.hdg, 357, 0.01);
    EXPECT_LT(a.bank, 0);

    // Magnetic bug: with 10 degrees east variation a bug of 80 is a true 90.
    a = SlowFlight();
    a.var = 10;
    a.hdg_hold = 1;
    a.hdg_bug = 80;
    EXPECT_NEAR(SecondsToHeading(a, 90, 100), 30, 0.11);
}

TEST(AircraftModel, FastTurnsAreHeldToTheBankLimit) {
    AircraftModel a = SlowFlight();
    a.ias = 400;
    a.hdg_hold = 1;
    a.hdg_bug = 90;
    StepAircraft(a, 10);
    EXPECT_NEAR(a.bank, kBankLimitDeg, 1e-9);
    double rate = kGravityFps2 * std::tan(kBankLimitDeg * M_PI / 180) / (400 * kKnotsToFps) * 180 / M_PI;
    EXPECT_NEAR(a.hdg, rate * 10, 0.01);
    EXPECT_LT(rate, kStandardRateDegPerSec);
}

TEST(AircraftModel, HoldsNeedTheMasterAndNavHoldFliesTheCourse) {
    AircraftModel a = SlowFlight();
    a.ap_master = 0;
    a.hdg_hold = 1;
    a.hdg_bug = 90;
    StepAircraft(a, 10);
    EXPECT_EQ(a.hdg, 0);
    a.ap_master = 1;
    a.nav_hold = 1;
    a.obs = 300;  // nav hold wins over the heading bug
    StepAircraft(a, 10);
    EXPECT_NEAR(a.hdg, 330, 0.01);
}

TEST(AircraftModel, ClimbAtTheSetVerticalSpeedReachesTheTargetAndHolds) {
    AircraftModel a = SlowFlight();
    a.alt = 5000;
    a.alt_hold = 1;
    a.ap_alt = 8000;
    a.ap_vs = 1500;
    StepAircraft(a, 60);
    EXPECT_NEAR(a.alt, 6500, 1e-6);
    EXPECT_DOUBLE_EQ(a.vs, 1500);
    EXPECT_GT(a.pitch, 0);
    StepAircraft(a, 60);
    EXPECT_DOUBLE_EQ(a.alt, 8000);
    StepAircraft(a, 120);
    EXPECT_DOUBLE_EQ(a.alt, 8000);
    EXPECT_EQ(a.vs, 0);

    // A target below descends at the set rate whatever its sign.
    a.ap_alt = 7000;
    StepAircraft(a, 20);
    EXPECT_NEAR(a.alt, 7500, 1e-6);
    EXPECT_DOUBLE_EQ(a.vs, -1500);

    // Vertical speed hold flies the set rate without a target; the ground stops it.
    a.alt_hold = 0;
    a.vs_hold = 1;
    a.ap_vs = -3000;
    StepAircraft(a, 200);
    EXPECT_EQ(a.alt, a.ground);
    EXPECT_EQ(a.vs, 0);
}

TEST(AircraftModel, SpeedAndMachHoldsChangeSpeedAtAFixedRate) {
    AircraftModel a = SlowFlight();
    a.ias = 200;
    a.spd_hold = 1;
    a.ap_spd = 250;
    StepAircraft(a, 10);
    EXPECT_NEAR(a.ias, 200 + 10 * kSpeedChangeKtPerSec, 1e-6);
    StepAircraft(a, 60);
    EXPECT_DOUBLE_EQ(a.ias, 250);

    // Mach hold at altitude settles on the Mach asked for, and wins over speed hold.
    a.alt = 35000;
    a.ias = 250;
    a.mach_hold = 1;
    a.ap_mach = 0.78;
    StepAircraft(a, 120);
    EXPECT_NEAR(MachNumber(a), 0.78, 1e-9);
    EXPECT_LT(a.ias, 300);  // thin air: the indicated speed is far below the true
    EXPECT_NEAR(OutsideTemperature(a), -54.3, 0.01);
}

TEST(AircraftModel, WindDriftsTheAircraftOffItsHeading) {
    AircraftModel a = SlowFlight();
    a.wind_dir = 270;  // from the west
    a.wind_speed = 30;
    double gs = 0, track = 0;
    GroundVector(a, gs, track);
    EXPECT_NEAR(track, std::atan2(30, 120) * 180 / M_PI, 1e-9);
    EXPECT_NEAR(gs, std::hypot(120, 30), 1e-9);
    StepAircraft(a, 3600);
    EXPECT_DOUBLE_EQ(a.hdg, 0);
    EXPECT_NEAR(a.lat, 2.0, 0.001);               // 120 nm north is two degrees
    EXPECT_NEAR(a.lon, 0.5, 0.001);               // 30 nm east at the equator is half a degree
    EXPECT_NEAR(DistanceNm(0, 0, a.lat, a.lon), gs, 0.01);

    // A head wind slows the ground speed; SetGroundSpeed finds the airspeed for one.
    a = SlowFlight();
    a.wind_dir = 0;
    a.wind_speed = 40;
    GroundVector(a, gs, track);
    EXPECT_NEAR(gs, 80, 1e-9);
    a.wind_dir = 300;
    SetGroundSpeed(a, 200);
    GroundVector(a, gs, track);
    EXPECT_NEAR(gs, 200, 1e-9);
}

TEST(AircraftModel, PositionWrapsAroundTheDateLine) {
    double lat = 0, lon = 179.9;
    MovePoint(lat, lon, 90, 12);  // 0.2 degrees east
    EXPECT_NEAR(lon, -179.9, 1e-9);
    EXPECT_NEAR(DistanceNm(0, 179.9, lat, lon), 12, 1e-9);
}

TEST(AircraftModel, FuelLoadsMainsFirstAndBurnsTheCentreFirst) {
    AircraftModel a = DefaultAircraft();
    double mains = 2 * 1300 * a.lbs_per_gal;
    LoadFuelPounds(a, mains / 2);
    EXPECT_NEAR(a.tank[static_cast<int>(Tank::LeftMain)], 650, 1e-9);
    EXPECT_NEAR(a.tank[static_cast<int>(Tank::RightMain)], 650, 1e-9);
    EXPECT_EQ(a.tank[static_cast<int>(Tank::Center)], 0);
    LoadFuelPounds(a, mains + 1000 * a.lbs_per_gal);
    EXPECT_NEAR(a.tank[static_cast<int>(Tank::Center)], 1000, 1e-9);
    LoadFuelPounds(a, 1e9);  // more than fits: all full, the rest dropped
    EXPECT_NEAR(FuelGallons(a), 4300 + 2600, 1e-9);

    // Two engines share the flow; the burn comes from the centre first.
    a.vs = 0;
    EXPECT_GT(EngineFuelFlow(a, 0), 0);
    EXPECT_DOUBLE_EQ(EngineFuelFlow(a, 0), EngineFuelFlow(a, 1));
    EXPECT_EQ(EngineFuelFlow(a, 2), 0);  // no third engine
    double before = FuelPounds(a);
    StepAircraft(a, 600);
    EXPECT_GT(before - FuelPounds(a), 0);
    EXPECT_NEAR(a.tank[static_cast<int>(Tank::LeftMain)], 1300, 1e-9);
    EXPECT_LT(a.tank[static_cast<int>(Tank::Center)], 4300);

    // Dry tanks stop the engines.
    LoadFuelPounds(a, 0);
    EXPECT_EQ(EngineN1(a, 0), 0);
    EXPECT_EQ(EngineFuelFlow(a, 1), 0);
}

TEST(AircraftModel, KeyEventsOfTheTableActAndOthersDoNot) {
    AircraftModel a = SlowFlight();
    EXPECT_TRUE(ApplyKeyEvent(a, 0x101FA, 275));
    EXPECT_EQ(a.hdg_bug, 275);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x101F4, static_cast<uint32_t>(-1200)));  // negative values arrive as UINT32
    EXPECT_EQ(a.ap_vs, -1200);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x1024C, 12000));
    EXPECT_EQ(a.ap_alt, 12000);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x101F6, 78));
    EXPECT_DOUBLE_EQ(a.ap_mach, 0.78);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x10163, 0));
    EXPECT_EQ(a.spd_hold, 1);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x1022E, 0));
    EXPECT_EQ(a.spd_hold, 0);
    EXPECT_TRUE(ApplyKeyEvent(a, 0x100AC, 0x1370));
    EXPECT_EQ(a.nav1_bcd, 0x1370u);

    // Simulation rate steps double and halve within the simulator's range.
    for (int i = 0; i < 10; ++i) ApplyKeyEvent(a, 0x100FD, 0);
    EXPECT_EQ(a.rate, kSimRateMax);
    for (int i = 0; i < 12; ++i) ApplyKeyEvent(a, 0x100FE, 0);
    EXPECT_EQ(a.rate, kSimRateMin);

    // Zulu hours and minutes keep the rest of the clock.
    a.zulu = 10 * 3600 + 20 * 60 + 30;
    ApplyKeyEvent(a, 0x1021B, 7);
    ApplyKeyEvent(a, 0x1021C, 45);
    EXPECT_DOUBLE_EQ(a.zulu, 7 * 3600 + 45 * 60 + 30);

    // Decision height steps of ten, never below zero.
    a.dh = 10;
    ApplyKeyEvent(a, 0x10312, 0);
    ApplyKeyEvent(a, 0x10312, 0);
    EXPECT_EQ(a.dh, 0);
    ApplyKeyEvent(a, 0x10311, 0);
    EXPECT_EQ(a.dh, 10);

    // A knob event of the control panels is not the aircraft's: nothing moves.
    AircraftModel before = a;
    EXPECT_FALSE(ApplyKeyEvent(a, 0x1007E, 0));
    EXPECT_FALSE(ApplyKeyEvent(a, 0x10157, 0));
    EXPECT_EQ(a.hdg_bug, before.hdg_bug);
    EXPECT_EQ(a.obs, before.obs);
}

TEST(AircraftModel, PauseStopsEverythingAndTheClockRollsOverADay) {
    AircraftModel a = SlowFlight();
    ApplyKeyEvent(a, 0x10019, 0);
    ASSERT_EQ(a.paused, 1);
    StepAircraft(a, 60);
    EXPECT_EQ(a.lat, 0);
    EXPECT_EQ(a.sim_time, 0);
    ApplyKeyEvent(a, 0x10019, 0);
    a.zulu = 86400 - 1;
    a.zulu_day = 365;
    StepAircraft(a, 2);
    EXPECT_NEAR(a.zulu, 1, 1e-9);
    EXPECT_EQ(a.zulu_day, 1);
    EXPECT_EQ(a.zulu_year, 2008);
    EXPECT_NEAR(a.sim_time, 2, 1e-12);
}

TEST(AircraftModel, EngineReadingsAScriptCanPushOverTheLimits) {
    auto host = std::make_unique<HostState>();
    AircraftModel& a = host->aircraft;
    std::string error;
    double n1 = EngineN1(a, 1);
    ASSERT_GT(n1, 0);
    // N2 follows N1 on its own token, next to N1 in each engine's block.
    EXPECT_NEAR(TokenValue(*host, 0x286), 60 + 0.4 * n1, 1e-9);
    // The turbine temperature gains what the script adds (Rankine on the token).
    double egt = EngineTurbineTemperature(a, 0);
    ASSERT_TRUE(SetAircraftField(a, "egt_add", "300", error)) << error;
    EXPECT_NEAR(EngineTurbineTemperature(a, 0), egt + 300, 1e-9);
    EXPECT_NEAR(TokenValue(*host, 0x237), (egt + 300) * 9.0 / 5.0 + 491.69, 1e-6);
    // Oil of a running engine: Celsius to Rankine, psi to pounds a square foot.
    ASSERT_TRUE(SetAircraftField(a, "oil_temp", "180", error)) << error;
    ASSERT_TRUE(SetAircraftField(a, "oil_press", "65", error)) << error;
    EXPECT_NEAR(TokenValue(*host, 0x23B), 180 * 9.0 / 5.0 + 491.69, 1e-6);
    EXPECT_NEAR(TokenValue(*host, 0x23C), 65 * 144.0, 1e-9);
    // A stopped engine has no N2 and no oil pressure.
    ASSERT_TRUE(SetAircraftField(a, "n1", "0", error)) << error;
    EXPECT_EQ(TokenValue(*host, 0x273), 0);
    EXPECT_EQ(TokenValue(*host, 0x232), 0);
}

TEST(AircraftModel, FourEngineAndSurfaceTokensFollowTheirKeys) {
    auto host = std::make_unique<HostState>();
    AircraftModel& a = host->aircraft;
    std::string error;
    auto epr = [&](int engine) {
        // The module's rule with engine 1's factor: 1 + source x 0.32 / ambient.
        return 1 + TokenValue(*host, 0x279 + 0x13 * engine) * 0.32 / TokenValue(*host, 342);
    };
    // Parked at sea level on a standard day: idle, EPR 1, ambient 1013.25 x 16.
    EXPECT_NEAR(TokenValue(*host, 342), 1013.25 * 16, 1e-6);
    EXPECT_NEAR(epr(0), 1.0, 1e-9);
    // The take-off roll runs climb thrust (N1 90): EPR 1.6 on both engines.
    a.ap_master = 1;
    a.spd_hold = 1;
    a.ap_spd = 250;
    a.ias = 100;
    ASSERT_NEAR(EngineN1(a, 0), 90, 1e-9);
    EXPECT_NEAR(epr(0), 1.6, 1e-9);
    EXPECT_NEAR(epr(1), 1.6, 1e-9);
    EXPECT_EQ(TokenValue(*host, 0x279 + 0x13 * 2), 0);   // a twin has no third engine
    // High up the air is thin: 238 millibars at 35,000 ft in the standard atmosphere.
    a.alt = 35000;
    EXPECT_NEAR(TokenValue(*host, 342) / 16, 238.4, 0.5);
    a.alt = 0;
    // The core N2 of the four-engine pages reads the same as the twin strip's.
    EXPECT_NEAR(TokenValue(*host, 0x271), TokenValue(*host, 0x273), 1e-9);
    // Oil quantity and reversers on every engine the aircraft has.
    ASSERT_TRUE(SetAircraftField(a, "oil_qty", "3.5", error)) << error;
    ASSERT_TRUE(SetAircraftField(a, "reversers", "1", error)) << error;
    EXPECT_EQ(TokenValue(*host, 149), 3.5);
    EXPECT_EQ(TokenValue(*host, 184), 3.5);
    EXPECT_EQ(TokenValue(*host, 219), 0);
    EXPECT_LT(TokenValue(*host, 128), 0);
    EXPECT_LT(TokenValue(*host, 163), 0);
    EXPECT_EQ(TokenValue(*host, 198), 0);
    ASSERT_TRUE(SetAircraftField(a, "reversers", "0", error)) << error;
    EXPECT_EQ(TokenValue(*host, 128), 0);
    // Surfaces: raw flaps and spoilers, the gear and trims as fractions of 16383.
    ASSERT_TRUE(SetAircraftField(a, "flap_handle", "9362", error)) << error;
    ASSERT_TRUE(SetAircraftField(a, "spoilers", "20000", error)) << error;   // held at the stop
    ASSERT_TRUE(SetAircraftField(a, "gear", "0", error)) << error;
    ASSERT_TRUE(SetAircraftField(a, "rudder_trim", "-0.5", error)) << error;
    ASSERT_TRUE(SetAircraftField(a, "elevator_trim", "0.25", error)) << error;
    ASSERT_TRUE(SetAircraftField(a, "aileron_trim", "1", error)) << error;
    EXPECT_EQ(TokenValue(*host, 0x146), 9362);
    EXPECT_EQ(TokenValue(*host, 0x38B), 16383);
    EXPECT_EQ(TokenValue(*host, 0x38C), 16383);
    EXPECT_EQ(TokenValue(*host, 0x14C), 0);
    EXPECT_NEAR(TokenValue(*host, 0x310), -16383 / 2.0, 1e-9);
    EXPECT_NEAR(TokenValue(*host, 0x30E), 16383 / 4.0, 1e-9);
    EXPECT_NEAR(TokenValue(*host, 0x30F), 16383, 1e-9);
    ASSERT_TRUE(SetAircraftField(a, "gear", "1", error)) << error;
    EXPECT_EQ(TokenValue(*host, 0x14E), 16383);
}
