// The tick: its gate, counters, phase groups, wind terms, deferred writes,
// rate and pause, and the per-second counters.
#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/engine_tick.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "guidance/vnav.h"
#include "support/fake_panels.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <cmath>

constexpr double kDegToRadForTest = 3.14159265358979323846 / 180.0;

namespace {
class TickTest : public ::testing::Test {
protected:
    void SetUp() override { ResetModuleState(); }
    // One new TICK18 value, then the tick.
    void Tick(int calls = 1) {
        sim.tokens[Token::TICK18] += 1;
        for (int i = 0; i < calls; ++i) EngineTick();
    }
    void Ticks(int n) {
        for (int i = 0; i < n; ++i) Tick();
    }
    FakeSimulatorScope scope;
    FakeSimulator& sim = scope.sim;
};
}  // namespace

TEST_F(TickTest, GateLetsOneCallATickDoTheWork) {
    Tick(3);  // three gauges draw in the same tick
    EXPECT_EQ(g_tick.ticks, 1);
    EXPECT_EQ(sim.Reads(Token::LATITUDE), 1);
    EXPECT_EQ(sim.Reads(Token::GROUND_VELOCITY), 3);  // the gate's samples at every call
    EXPECT_EQ(sim.Reads(Token::TICK18), 3);
    // The later calls change nothing but the smoothed airspeed.
    sim.tokens[Token::AIRSPEED] = 100;
    double before = g_sim.ias_smoothed;
    EngineTick();
    EXPECT_NEAR(g_sim.ias_smoothed, 0.7 * before + 0.3 * 100, 1e-12);
    EXPECT_EQ(g_tick.ticks, 1);
    // A paused simulator does not advance the token: nothing more runs.
    for (int i = 0; i < 50; ++i) EngineTick();
    EXPECT_EQ(g_tick.ticks, 1);
    EXPECT_EQ(sim.Reads(Token::LATITUDE), 1);
}

TEST_F(TickTest, PhaseCounterTurnsOnceASecondAndPhaseZeroSamples) {
    Ticks(18);
    EXPECT_EQ(g_tick.phase, 0);  // 1..17, then 0
    EXPECT_EQ(sim.Reads(Token::AVIONICS_POWER), 1);
    EXPECT_EQ(sim.Reads(Token::WIND_SPEED), 6);      // phases 2, 3, 6, 9, 12, 15
    EXPECT_EQ(sim.Reads(Token::RADIO_HEIGHT), 7);    // phases 1, 3, 5, 7, 9, 11, 15
    EXPECT_EQ(sim.Reads(Token::DME1_DISTANCE), 4);   // phases 3, 4, 8, 12
    EXPECT_EQ(sim.Reads(Token::HEADING_MAGNETIC), 18);
    // Forced to 999, the next tick is phase 0 and its group runs.
    g_tick.phase = 999;
    Tick();
    EXPECT_EQ(g_tick.phase, 0);
    EXPECT_EQ(sim.Reads(Token::AVIONICS_POWER), 2);
}

TEST_F(TickTest, SlowRefreshHeldInWarmUpThenCountsAndWrapsAt92) {
    Ticks(5);
    EXPECT_EQ(g_tick.slow_refresh, 0);  // warm-up below 6
    Tick();
    EXPECT_EQ(g_tick.warm_up, 6);
    EXPECT_EQ(g_tick.slow_refresh, 1);
    g_tick.slow_refresh = 91;
    Tick();
    EXPECT_EQ(g_tick.slow_refresh, 0);
    g_tick.slow_refresh = 999;  // a repaint request
    Tick();
    EXPECT_EQ(g_tick.slow_refresh, 0);
    Tick();
    EXPECT_EQ(g_tick.slow_refresh, 1);
    // Warm-up forced over by the P1000 ends it at once.
    ResetModuleState();
    g_tick.warm_up = 999;
    Tick();
    EXPECT_EQ(g_tick.slow_refresh, 1);
}

TEST_F(TickTest, MovedHeadingBugShowsItsDigitsAndRepaints) {
    Ticks(10);
    sim.tokens[Token::AP_HEADING_BUG] = 120;
    Tick();
    EXPECT_EQ(g_tick.heading_bug_display, 54);  // 55, less one in the tick of the change
    // The tick of the move still counts on from warm-up (1 at tick 6, so 6
    // at tick 11): the move is compared only at the next tick, which repaints.
    EXPECT_EQ(g_tick.slow_refresh, 6);
    Tick();
    EXPECT_EQ(g_tick.slow_refresh, 0);
    Ticks(52);
    EXPECT_EQ(g_tick.heading_bug_display, 1);
    Tick();
    EXPECT_EQ(g_tick.heading_bug_display, 0);
    Ticks(3);
    EXPECT_EQ(g_tick.heading_bug_display, 0);
}

TEST_F(TickTest, WindTermsAndTrackAgainstWorkedNumbers) {
    sim.tokens[Token::HEADING_TRUE] = 90;
    sim.tokens[Token::HEADING_MAGNETIC] = 75;
    sim.tokens[Token::MAGNETIC_VARIATION] = 15;
    sim.tokens[Token::WIND_DIRECTION] = 120;
    sim.tokens[Token::WIND_SPEED] = 20;
    sim.tokens[Token::GROUND_VELOCITY] = 300 * 1.68781;
    Ticks(21);  // through phase 0 (the variation), then wind phase 3
    EXPECT_NEAR(g_sim.head_wind, 20 * std::cos(30 * kDegToRadForTest), 1e-9);
    EXPECT_NEAR(g_sim.cross_wind, 10.0, 1e-9);
    EXPECT_NEAR(g_sim.true_airspeed.now, 300 + 17.320508, 1e-5);
    double drift = 10.0 / ((300 + 17.320508075688775) / 60.0);
    EXPECT_NEAR(g_sim.drift_angle, drift, 1e-6);
    EXPECT_NEAR(g_sim.track, 75 - drift, 1e-6);
    EXPECT_NEAR(g_sim.wind_direction_display, 105, 1e-9);

    // Wind from the variation's own direction reads 360, not 0.
    sim.tokens[Token::WIND_DIRECTION] = 15;
    Ticks(18);
    EXPECT_EQ(g_sim.wind_direction_display, 360);

    // At 25 knots or less there is no airspeed estimate and no drift.
    sim.tokens[Token::GROUND_VELOCITY] = 25 * 1.68781;
    Ticks(18);
    EXPECT_EQ(g_sim.true_airspeed.now, 0);
    EXPECT_EQ(g_sim.track, 75);
}

TEST_F(TickTest, RateBackToOneAtTopOfDescentOneStepATick) {
    g_module.SimGeneration = 9;
    g_config.Lnav1xAtTod = 1;
    g_vnav.DescentActive = 1;
    sim.tokens[Token::SIM_RATE] = 4;
    Tick();
    ASSERT_EQ(sim.CountEvents(0x100FE), 1);
    sim.tokens[Token::SIM_RATE] = 2;  // the simulator halves its rate
    Tick();
    EXPECT_EQ(sim.CountEvents(0x100FE), 2);
    sim.tokens[Token::SIM_RATE] = 1;
    EXPECT_EQ(g_tick.rate_action_done, 0);
    Tick();
    EXPECT_EQ(g_tick.rate_action_done, 1);
    EXPECT_EQ(sim.CountEvents(0x100FE), 2);
    // Below 1 it steps up; FSX scales the token by 256.
    ResetModuleState();
    g_module.SimGeneration = 10;
    g_config.Lnav1xAtTod = 1;
    g_vnav.DescentActive = 1;
    sim.tokens[Token::SIM_RATE] = 128;
    Tick();
    EXPECT_EQ(sim.CountEvents(0x100FD), 1);
    EXPECT_EQ(g_sim.simulation_rate, 0.5);
}

TEST_F(TickTest, PauseAtTopOfDescentOnce) {
    g_config.PauseAtTod = 1;
    Tick();
    EXPECT_EQ(sim.CountEvents(0x10019), 0);  // not in descent yet
    g_vnav.DescentActive = 1;
    Ticks(3);
    EXPECT_EQ(sim.CountEvents(0x10019), 1);
    EXPECT_EQ(g_config.PauseAtTod, 0);
}

TEST_F(TickTest, DeferredAutopilotWritesGoOutAndAreRemembered) {
    g_config.CruiseMach = 0.785;
    g_profile.DescentIas = 290;
    g_tick.mach_write_pending = 2;
    g_tick.speed_write_pending = 1;
    Tick();
    EXPECT_EQ(sim.CountEvents(0x101F6), 1);
    EXPECT_EQ(sim.CountEvents(0x101F5), 1);
    EXPECT_EQ(sim.key_events.front(), std::make_pair(0x101F6u, 78u));
    EXPECT_EQ(g_vnav.LastIasSent, 290);
    EXPECT_EQ(g_vnav.LastMachSent, 78);
    Ticks(3);
    EXPECT_EQ(sim.CountEvents(0x101F6), 2);  // two ticks, then no more
    EXPECT_EQ(sim.CountEvents(0x101F5), 1);
    // The markers copy the autopilot's own values, once they have been
    // sampled after the write (the vertical group runs 6 times a second).
    sim.calculator["(A:AUTOPILOT ALTITUDE LOCK VAR, feet)"] = 35000;
    sim.tokens[Token::AP_SPEED] = 250;
    sim.tokens[Token::AP_MACH] = 0.8;
    Ticks(18);
    sim.calculator["(A:AUTOPILOT ALTITUDE LOCK VAR, feet)"] = 34900;
    g_tick.altitude_marker = g_sim.tick_value;
    g_tick.speed_marker = g_sim.tick_value;
    int waited = 0;
    while (g_tick.altitude_marker != -999 && waited < 18) {
        EXPECT_EQ(g_vnav.LastAltSeen, kVnavUnknown);  // no read-back from a stale sample
        Tick();
        ++waited;
    }
    EXPECT_LE(waited, 5);  // the longest gap of the sampling phases: 15 to 2
    EXPECT_EQ(g_vnav.LastAltSeen, 34900);
    EXPECT_EQ(g_vnav.LastIasSent, 250);
    EXPECT_EQ(g_vnav.LastMachSent, 80);
    EXPECT_EQ(g_tick.speed_marker, -999);
}

TEST_F(TickTest, LimitCountersStartOnlyAboveTheirLimitsAndRestartFromNothing) {
    // Exactly at the limits: neither counter starts.
    sim.tokens[Token::N1_3] = 99.0;
    sim.tokens[Token::TURBINE_TEMP_4] = 491.69 + 645.0 * 9.0 / 5.0;
    for (int second = 0; second < 2; ++second) {
        sim.tokens[Token::CLOCK_SECOND] = second;
        Ticks(18);
    }
    EXPECT_EQ(g_tick.over_n1_seconds, 0);
    EXPECT_EQ(g_tick.over_temperature_seconds, 0);
    // Just over: both count once a second, not once a tick.
    sim.tokens[Token::N1_3] = 99.1;
    sim.tokens[Token::TURBINE_TEMP_4] = 491.69 + 645.5 * 9.0 / 5.0;
    for (int second = 2; second < 6; ++second) {
        sim.tokens[Token::CLOCK_SECOND] = second;
        Ticks(18);
    }
    EXPECT_EQ(g_tick.over_n1_seconds, 4);
    EXPECT_EQ(g_tick.over_temperature_seconds, 4);
    // One second back under the temperature limit: that counter starts again from 0.
    sim.tokens[Token::TURBINE_TEMP_4] = 491.69 + 600.0 * 9.0 / 5.0;
    sim.tokens[Token::CLOCK_SECOND] = 6;
    Tick();
    sim.tokens[Token::TURBINE_TEMP_4] = 491.69 + 650.0 * 9.0 / 5.0;
    sim.tokens[Token::CLOCK_SECOND] = 7;
    Tick();
    EXPECT_EQ(g_tick.over_n1_seconds, 6);
    EXPECT_EQ(g_tick.over_temperature_seconds, 1);
}

TEST_F(TickTest, PerSecondCountersAndFuelUsed) {
    sim.tokens[Token::FUEL_FLOW_1] = 3600;
    sim.tokens[Token::N1_2] = 99.5;
    sim.tokens[Token::TURBINE_TEMP_1] = 491.69 + 650 * 9.0 / 5.0;
    for (int second = 0; second < 3; ++second) {
        sim.tokens[Token::CLOCK_SECOND] = second;
        Ticks(18);
    }
    EXPECT_NEAR(g_tick.fuel_used[0], 3 * 1.0, 1e-9);  // 3600 lb an hour for 3 seconds
    EXPECT_EQ(g_tick.over_n1_seconds, 3);
    EXPECT_EQ(g_tick.over_temperature_seconds, 3);
    // No flight since the module loaded: the flight clock stands.
    EXPECT_EQ(g_tick.flight_seconds, -99);
    sim.tokens[Token::N1_2] = 90;
    sim.tokens[Token::CLOCK_SECOND] = 3;
    Tick();
    EXPECT_EQ(g_tick.over_n1_seconds, 0);
    EXPECT_EQ(g_tick.second_elapsed, 1);
    // A flight started on the ground: the clock counts the clock's seconds from 0.
    StartNewFlight();
    for (int second = 4; second < 6; ++second) {
        sim.tokens[Token::CLOCK_SECOND] = second;
        Ticks(18);
    }
    EXPECT_EQ(g_tick.flight_seconds, 2);
    // End_Flight stops it for good.
    g_flight_log.flight_stage = kFlightStageEnd;
    sim.tokens[Token::CLOCK_SECOND] = 6;
    Ticks(18);
    EXPECT_EQ(g_tick.flight_seconds, 2);
}

TEST_F(TickTest, SpeedHoldOffWhenTheMasterGoesOff) {
    g_config.SetSpdOffwhenAPMasterSetOff = 1;
    sim.tokens[Token::AP_MASTER] = 1;
    sim.tokens[Token::AP_SPEED_HOLD] = 1;
    Ticks(4);
    sim.tokens[Token::AP_MASTER] = 0;
    Tick();
    EXPECT_EQ(sim.CountEvents(0x10143), 1);
    Tick();
    EXPECT_EQ(sim.CountEvents(0x10143), 1);
}

TEST_F(TickTest, BankDeadbandAndPopupWatch) {
    sim.tokens[Token::BANK_FS9] = 0.03;
    g_module.SimGeneration = 9;
    Tick();
    EXPECT_EQ(g_sim.bank.now, 0);
    sim.tokens[Token::BANK_FS9] = -0.04;
    Tick();
    EXPECT_EQ(g_sim.bank.now, -0.04);
    // The P1000 pop-up stops drawing. Samples at phases 0 and 9: the first
    // (tick 9) stores the count, the 11th miss after it closes the window.
    ResetModuleState();
    g_tick.p1000_window_open = 1;
    g_tick.p1000_draw_count = 5;
    Ticks(107);
    EXPECT_EQ(g_tick.p1000_window_open, 1);
    Tick();
    EXPECT_EQ(g_tick.p1000_window_open, 0);
    EXPECT_EQ(g_tick.slow_refresh, 999);
    // Drawing keeps it open.
    g_tick.p1000_window_open = 1;
    for (int i = 0; i < 200; ++i) {
        ++g_tick.p1000_draw_count;
        Tick();
    }
    EXPECT_EQ(g_tick.p1000_window_open, 1);
}
