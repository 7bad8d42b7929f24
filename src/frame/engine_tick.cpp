// engine_tick.cpp: the 18 Hz tick.
//
// Every call takes four samples; the first call after TICK18 changed runs the
// tick: counters, samples spread over the 18 phases of a second (each token
// read is a call into the simulator), deferred autopilot writes, rate and
// pause, then guidance while an active leg exists, then the end-of-tick requests.
//
// Index:
//   [SECTION] Counters
//   [SECTION] Sample groups
//   [SECTION] Deferred writes, rate and pause, window watch
//   [SECTION] Time to go
//   [SECTION] EngineTick
#include "frame/engine_tick.h"

#include "cdu/keypad.h"
#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/fsuipc_client.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "display/p1000_popup.h"
#include "guidance/performance.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr int kPhasesPerSecond = 18;
constexpr int kSlowRefreshPeriod = 0x5B;      // 0..91, about 5.1 s
constexpr int kWarmUpTicks = 10;
constexpr int kWarmUpHoldsRefresh = 6;        // slow refresh held at 0 below this
constexpr int kHeadingBugDisplayTicks = 0x37; // 55 ticks of the bug's digits on the ND
constexpr double kBankDeadband = 0.035;       // degrees read as level

bool PhaseIn(int phase, std::initializer_list<int> phases) {
    for (int p : phases)
        if (p == phase) return true;
    return false;
}

// [SECTION] Counters
void AdvanceCounters() {
    SimState& s = g_sim;
    TickState& t = g_tick;
    t.phase = t.phase + 1 > kPhasesPerSecond - 1 ? 0 : t.phase + 1;
    if (t.warm_up < kWarmUpTicks) ++t.warm_up;
    t.slow_refresh = t.slow_refresh + 1 > kSlowRefreshPeriod ? 0 : t.slow_refresh + 1;
    // The bug samples are still those of the tick before.
    if (s.heading_bug.now != s.heading_bug.prev) t.slow_refresh = 0;
    if (t.warm_up < kWarmUpHoldsRefresh) t.slow_refresh = 0;
}

// [SECTION] Sample groups
void SampleEveryTick() {
    SimState& s = g_sim;
    TickState& t = g_tick;
    s.heading_magnetic.Set(HeadingMagnetic());
    s.heading_true = HeadingTrue();
    s.pitch.Set(ReadToken(Token::PITCH));
    double bank = BankDegrees();
    s.bank.Set(bank > -kBankDeadband && bank < kBankDeadband ? 0.0 : bank);
    s.fd_pitch.Set(ReadToken(Token::FD_PITCH));
    s.fd_bank.Set(ReadToken(Token::FD_BANK));
    s.latitude = LatitudeDegrees();
    s.longitude = LongitudeDegrees();
    s.heading_bug.Set(HeadingBug());
    if (s.heading_bug.now != s.heading_bug.prev) t.heading_bug_display = kHeadingBugDisplayTicks;
    if (t.heading_bug_display > 0) --t.heading_bug_display;
}

void SampleClockSecond() {
    SimState& s = g_sim;
    TickState& t = g_tick;
    s.nav_hold = ReadTokenFlag(Token::AP_NAV_HOLD);
    s.clock_second = ReadToken(Token::CLOCK_SECOND);
    if (s.clock_second == t.stored_second) return;
    if (g_flight_log.flight_stage < kFlightStageEnd) t.flight_seconds += 1;
    t.second_elapsed = 1;
    t.stored_second = s.clock_second;

    static constexpr int kN1[4] = {Token::N1_1, Token::N1_2, Token::N1_3, Token::N1_4};
    static constexpr int kTurbineTemp[4] = {Token::TURBINE_TEMP_1, Token::TURBINE_TEMP_2, Token::TURBINE_TEMP_3,
                                            Token::TURBINE_TEMP_4};
    bool over_n1 = false;
    bool over_temperature = false;
    for (int engine = 0; engine < 4; ++engine) {
        if (ReadToken(kN1[engine]) > 99.0) over_n1 = true;
        if (TokenCelsius(kTurbineTemp[engine]) > 645.0) over_temperature = true;
    }
    if (over_n1) ++t.over_n1_seconds;
    else if (t.over_n1_seconds > 0) t.over_n1_seconds = 0;
    if (over_temperature) ++t.over_temperature_seconds;
    else if (t.over_temperature_seconds > 0) t.over_temperature_seconds = 0;
}

void AccumulateFuelUsed() {
    for (int engine = 0; engine < 4; ++engine)
        g_tick.fuel_used[engine] += EngineFuelFlowPph(engine) / 60.0 / 60.0 / kPhasesPerSecond;
}

void SamplePhaseZero() {
    SimState& s = g_sim;
    s.local_hour = ReadToken(Token::CLOCK_HOUR);
    s.local_minute = ReadToken(Token::CLOCK_MINUTE);
    s.local_second = ReadToken(Token::CLOCK_SECOND);
    s.zulu_hour = ReadToken(Token::ZULU_HOUR);
    s.zulu_minute = ReadToken(Token::ZULU_MINUTE);
    s.avionics_power = ReadTokenFlag(Token::AVIONICS_POWER);
    s.outside_temperature = ReadToken(Token::OUTSIDE_TEMPERATURE);
    s.altitude_hold = ReadTokenFlag(Token::AP_ALTITUDE_HOLD);
    s.heading_hold = ReadTokenFlag(Token::AP_HEADING_HOLD);
    s.yaw_damper = ReadTokenFlag(Token::AP_YAW_DAMPER);
    s.autothrottle_armed = ReadTokenFlag(Token::AUTOTHROTTLE_ARMED);
    s.magnetic_variation = MagneticVariationDegrees();
    s.barometer_mb.Set(BarometerMillibars());
    s.barometer_inches = s.barometer_mb.now / 1013.25 * 29.92;
    s.nav1_is_vor = (ReadTokenFlag(Token::NAV1_FLAGS) >> 3) & 1;
    s.backcourse_hold = ReadTokenFlag(Token::AP_BACKCOURSE_HOLD);
    s.approach_hold = ReadTokenFlag(Token::AP_APPROACH_HOLD);
    s.mach_hold = ReadTokenFlag(Token::AP_MACH_HOLD);
}

void SampleRadios() {
    SimState& s = g_sim;
    s.nav1_gs_needle.Set(ReadToken(Token::NAV1_GS_NEEDLE));
    s.adf_signal = ReadToken(Token::ADF_SIGNAL);
    s.adf_needle = ReadToken(Token::ADF_NEEDLE);
    s.nav1_relative_bearing = ReadToken(Token::NAV1_RELATIVE_BEARING);
    s.nav2_relative_bearing = ReadToken(Token::NAV2_RELATIVE_BEARING);
    s.nav1_radial = NavRadialDegrees(Token::NAV1_RADIAL);
    s.nav2_radial = NavRadialDegrees(Token::NAV2_RADIAL);
    s.adf_needle_pointers = ReadToken(Token::ADF_NEEDLE_POINTERS);
    s.dme1_distance = ReadToken(Token::DME1_DISTANCE);
    s.dme1_speed = ReadToken(Token::DME1_SPEED);
    s.dme2_distance = ReadToken(Token::DME2_DISTANCE);
    s.marker_beacon = ReadTokenFlag(Token::MARKER_BEACON);
}

void SampleVerticalAndWind() {
    SimState& s = g_sim;
    s.vertical_speed.Set(VerticalSpeedFpm());
    s.autopilot_altitude.Set(AutopilotAltitudeFeet());
    s.speed_hold = ReadTokenFlag(Token::AP_SPEED_HOLD);
    s.mach.Set(MachNumber());
    s.wind_speed = ReadToken(Token::WIND_SPEED);
    s.wind_direction_true = ReadToken(Token::WIND_DIRECTION);
    // Wind terms: head and cross wind against the true heading, the true
    // airspeed estimate, the one-in-sixty drift, the wind made magnetic.
    WindTriangle wind = SolveWind(s.heading_true, s.wind_direction_true, s.wind_speed, s.ground_speed);
    s.head_wind = wind.head_wind;
    s.cross_wind = wind.cross_wind;
    s.true_airspeed.Set(wind.true_airspeed);
    s.drift_angle = wind.drift_angle;
    s.wind_direction_display = NormaliseMagnetic(s.wind_direction_true - s.magnetic_variation);
    s.autopilot_vertical_speed.Set(ReadToken(Token::AP_VERTICAL_SPEED));
    s.autopilot_airspeed.Set(ReadToken(Token::AP_SPEED));
    s.autopilot_mach.Set(ReadToken(Token::AP_MACH));
}

void SampleOddPhases() {
    SimState& s = g_sim;
    s.radio_altitude = RadioAltitudeFeet();
    s.nav1_obs = ReadToken(Token::NAV1_OBS);
    s.nav1_needle = ReadToken(Token::NAV1_NEEDLE);
}

// [SECTION] Deferred writes, rate and pause, window watch
// VNAV's writes that wait a tick, and the read-back of its own writes: once
// the autopilot's values have been sampled after a write, they are what the
// bugs should read (the simulator may round what it was sent), so that VNAV
// can tell the pilot's changes from its own.
void DeferredAutopilotWrites(bool autopilot_sampled) {
    SimState& s = g_sim;
    TickState& t = g_tick;
    VnavState& v = g_vnav;
    if (t.altitude_marker != -999 && autopilot_sampled && t.altitude_marker != s.tick_value) {
        v.LastAltSeen = static_cast<int>(s.autopilot_altitude.now);
        v.AltSetStamp = kVnavUnknown;
        t.altitude_marker = -999;
    }
    if (t.speed_marker != -999 && autopilot_sampled && t.speed_marker != s.tick_value) {
        t.speed_marker = -999;
        v.LastMachSent = static_cast<int>(std::lround(s.autopilot_mach.now * 100.0));
        v.LastIasSent = static_cast<int>(s.autopilot_airspeed.now);
        v.SpdSetStamp = kVnavUnknown;
    }
    if (t.mach_write_pending > 0) {
        auto mach = static_cast<int>(g_config.CruiseMach * 100.0);
        TriggerKeyEvent(0x101F6, static_cast<UINT32>(mach));
        v.LastMachSent = mach;
        t.speed_marker = s.tick_value;
        --t.mach_write_pending;
    }
    if (t.speed_write_pending == 1) {
        TriggerKeyEvent(0x101F5, static_cast<UINT32>(g_profile.DescentIas));
        v.LastIasSent = g_profile.DescentIas;
        t.speed_marker = s.tick_value;
        t.speed_write_pending = 0;
    }
}

void RateAndPause() {
    SimState& s = g_sim;
    TickState& t = g_tick;
    s.simulation_rate = SimulationRate();
    if (g_vnav.DescentActive) {
        if (g_config.Lnav1xAtTod == 1 && !t.rate_action_done) {
            if (s.simulation_rate == 1.0) t.rate_action_done = 1;
            else TriggerKeyEvent(s.simulation_rate < 1.0 ? 0x100FD : 0x100FE, 0);
        }
        if (g_config.PauseAtTod == 1 && !t.pause_done) {
            TriggerKeyEvent(0x10019, 0);
            g_config.PauseAtTod = 0;
            t.pause_done = 1;
        }
    }
    if (g_vnav.tod_passed && g_config.PauseAtDistFromDestOn && !t.distance_pause_done) {
        double distance = g_lnav.LnavOn ? RouteDistanceToDestination(g_lnav.DistToActive) : DirectDistanceToDestination();
        if (distance >= 0 && distance < g_config.PauseAtDistFromDest) {
            TriggerKeyEvent(0x10019, 0);
            g_config.PauseAtDistFromDestOn = 0;
            g_config.ArmPauseAtDistFromDest = 0;
            t.distance_pause_done = 1;
        }
    }
}

void WindowAliveWatch() {
    TickState& t = g_tick;
    if (!t.p1000_window_open) return;
    if (t.p1000_draw_count == t.p1000_stored_count) {
        if (++t.p1000_miss_count > 10) {
            t.p1000_window_open = 0;
            t.p1000_miss_count = 0;
            P1000PopupClosed();
            t.slow_refresh = 999;
        }
    } else {
        t.p1000_stored_count = t.p1000_draw_count;
        t.p1000_miss_count = 0;
    }
}

// [SECTION] Time to go
// Minutes split into hours and minutes; negative time and a rounded 60.0 read 0.
HoursMinutes SplitMinutes(double minutes, bool keep_tenths) {
    HoursMinutes out;
    if (!(minutes > 0) || !std::isfinite(minutes)) return out;
    out.hours = std::floor(minutes / 60.0);
    out.minutes = minutes - out.hours * 60.0;
    if (!keep_tenths) out.minutes = std::floor(out.minutes);
    if (out.minutes >= 60.0) out.minutes = 0;
    return out;
}

void TimeToGo() {
    SimState& s = g_sim;
    TickState& t = g_tick;
    double rate = s.simulation_rate > 0 ? s.simulation_rate : 1.0;
    t.to_destination_prev = t.to_destination;
    if (s.ground_speed <= 25.0) {
        t.to_active = t.to_active_real = t.to_destination = t.to_destination_real = {};
        return;
    }
    double to_active = std::max(0.0, g_lnav.DistToActive) / s.ground_speed * 60.0;
    double to_destination = RouteDistanceToDestination(g_lnav.DistToActive) / s.ground_speed * 60.0;
    t.to_active = SplitMinutes(to_active, true);
    t.to_active_real = SplitMinutes(to_active / rate, true);
    t.to_destination = SplitMinutes(to_destination, false);
    t.to_destination_real = SplitMinutes(to_destination / rate, false);
}

}  // namespace

// [SECTION] EngineTick
void EngineTick() {
    SimState& s = g_sim;
    TickState& t = g_tick;

    // Gate: four samples at every call; the rest only on a new TICK18.
    s.ground_speed = GroundSpeedKnots();
    double raw_ias = IndicatedAirspeedKnots();
    s.ias_smoothed = 0.7 * s.ias_smoothed + 0.3 * raw_ias;
    s.indicated_altitude.Set(IndicatedAltitudeFeet());
    s.tick_value = ReadToken(Token::TICK18);
    if (s.tick_value == t.last_tick_value) return;

    // 1. Speed trend over the last 16 smoothed samples, newest first.
    s.ias_smoothed = 0.7 * s.ias_smoothed + 0.3 * raw_ias;
    t.speed_trend = (t.speed_history[0] - t.speed_history[15]) / 14.0;
    for (int i = 15; i > 0; --i) t.speed_history[i] = t.speed_history[i - 1];
    t.speed_history[0] = s.ias_smoothed;
    t.last_tick_value = s.tick_value;
    ++t.ticks;

    // 2. Counters.
    AdvanceCounters();
    // 3. and 4. Every-tick samples, the bug's display counter, the clock second.
    SampleEveryTick();
    SampleClockSecond();
    // 5. Fuel used.
    AccumulateFuelUsed();
    // 6. to 11. The sample groups by phase.
    if (t.phase == 0) SamplePhaseZero();
    if (PhaseIn(t.phase, {0, 9})) WindowAliveWatch();
    if (PhaseIn(t.phase, {0, 6, 12}) && g_mcu_page.direct_entry) g_mcu_page.repaint = 1;
    if (PhaseIn(t.phase, {3, 4, 8, 12})) SampleRadios();
    bool autopilot_sampled = PhaseIn(t.phase, {2, 3, 6, 9, 12, 15});
    if (autopilot_sampled) SampleVerticalAndWind();
    if (PhaseIn(t.phase, {1, 3, 5, 7, 9, 11, 15})) SampleOddPhases();
    // 12. Ground speed kept for change tests.
    s.ground_speed_prev = s.ground_speed;
    // 13. Deferred autopilot writes.
    DeferredAutopilotWrites(autopilot_sampled);
    // 14. Simulator rate and pause.
    RateAndPause();
    // 15. Track.
    WindTriangle wind;
    wind.true_airspeed = s.true_airspeed.now;
    wind.drift_angle = s.drift_angle;
    s.track = EstimatedTrack(s.heading_magnetic.now, wind);
    // 16. Guidance while an active leg exists; times to go once a second.
    if (g_plan.context.ActiveLeg != kNoActiveLeg) {
        LnavSequence();
        if (t.phase == 0) TimeToGo();
    }
    // 17. Tuning requests (the MCU's runway).
    if (t.tuning_requests > 0) CheckTuneRoute(t.tuning_requests);
    // 18. A deferred plan load.
    if (t.deferred_plan_load == 1 || t.deferred_plan_load == 3) {
        int request = t.deferred_plan_load;
        t.deferred_plan_load = 0;
        LoadRouteToActive(request);
    }
    // 19. One-tick flags.
    t.tuning_requests = 0;
    t.hold_vnav_speed_write = 0;
    // 20. Flight log.
    if (g_flight_log.flight_stage < kFlightStageEnd) FlightLogStep(0);
    // 21. Speed hold off when the autopilot master goes off.
    int master = ReadTokenFlag(Token::AP_MASTER);
    if (g_config.SetSpdOffwhenAPMasterSetOff == 1 && s.autopilot_master == 1 && master == 0 && s.speed_hold)
        TriggerKeyEvent(0x10143, 0);
    // 22. The master, for the next tick.
    s.autopilot_master = master;
}
