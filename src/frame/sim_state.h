// sim_state.h: the simulator samples the tick leaves for everyone, and the
// tick's own counters and requests.
//
// Guidance, plans, maps and pages read the samples here and raise requests
// (a repaint, a plan load, tuning) for the tick to serve; none of them needs
// the tick itself, which sits above them all and fills these structs.
#pragma once

#include <array>

// A value with the sample before it, for change tests.
struct Sampled {
    double now = 0;
    double prev = 0;
    void Set(double value) {
        prev = now;
        now = value;
    }
};

struct HoursMinutes {
    double hours = 0;
    double minutes = 0;
};

struct SimState {
    // Every call
    double ground_speed = 0;            // knots
    double ground_speed_prev = 0;       // kept once a tick
    double ias_smoothed = 0;            // knots, 0.7 old + 0.3 raw at each call
    Sampled indicated_altitude;         // feet
    double tick_value = 0;              // TICK18
    // Every tick
    Sampled heading_magnetic;           // degrees
    double heading_true = 0;
    Sampled pitch;
    Sampled bank;                       // |bank| <= 0.035 reads 0
    Sampled fd_pitch;
    Sampled fd_bank;
    double latitude = 0;                // degrees, north positive
    double longitude = 0;               // degrees, east positive
    Sampled heading_bug;
    int nav_hold = 0;
    double clock_second = 0;
    // Phase 0
    double local_hour = 0, local_minute = 0, local_second = 0;
    double zulu_hour = 0, zulu_minute = 0;
    int avionics_power = 0;             // 0 blanks the displays
    double outside_temperature = 0;
    int altitude_hold = 0;
    int heading_hold = 0;               // LNAV commands the bug only when 1
    int yaw_damper = 0;
    int autothrottle_armed = 0;
    double magnetic_variation = 0;      // degrees; true less this is magnetic
    Sampled barometer_mb;
    double barometer_inches = 0;
    int nav1_is_vor = 0;
    int backcourse_hold = 0;
    int approach_hold = 0;
    int mach_hold = 0;
    // Phases 3, 4, 8, 12
    Sampled nav1_gs_needle;
    double adf_signal = 0;
    double adf_needle = 0;
    double nav1_relative_bearing = 0, nav2_relative_bearing = 0;
    double nav1_radial = 0, nav2_radial = 0;
    double adf_needle_pointers = 0;
    double dme1_distance = 0, dme1_speed = 0, dme2_distance = 0;
    int marker_beacon = 0;
    // Phases 2, 3, 6, 9, 12, 15
    Sampled vertical_speed;             // feet a minute
    Sampled autopilot_altitude;         // feet
    int speed_hold = 0;
    Sampled mach;
    double wind_speed = 0;              // knots
    double wind_direction_true = 0;     // degrees
    double head_wind = 0;
    double cross_wind = 0;
    Sampled true_airspeed;              // the estimate guidance and displays use
    double drift_angle = 0;             // degrees
    double wind_direction_display = 0;  // magnetic, 0.5 .. 360.4
    Sampled autopilot_vertical_speed;
    Sampled autopilot_airspeed;
    Sampled autopilot_mach;             // Mach, a fraction
    // Phases 1, 3, 5, 7, 9, 11, 15
    double radio_altitude = 0;          // feet
    double nav1_obs = 0;
    double nav1_needle = 0;
    // Derived each tick
    double simulation_rate = 1;
    double track = 0;                   // magnetic track, degrees
    int autopilot_master = 0;           // sampled for the next tick
};

struct TickState {
    double last_tick_value = -999;
    int phase = 0;                      // 0..17, one turn a second; 999 forces phase 0 next
    int slow_refresh = 0;               // 0..91; 999 asks for a repaint at the next tick
    int warm_up = 0;                    // 0..10; below 6 holds slow refresh at 0
    int heading_bug_display = 0;        // 55 when the bug moved, then down to 0
    double flight_seconds = -99;
    int second_elapsed = 0;
    double stored_second = -99;
    std::array<double, 4> fuel_used{};  // pounds per engine
    int over_n1_seconds = 0;
    int over_temperature_seconds = 0;
    std::array<double, 16> speed_history{};  // newest first
    double speed_trend = 0;             // knots a tick
    // Deferred autopilot writes
    int mach_write_pending = 0;         // ticks left to send the cruise Mach
    int speed_write_pending = 0;        // 1: send the descent speed
    // Read-back of VNAV's own writes into what its bugs should read: a
    // marker holds the tick of the write until the autopilot's values have
    // been sampled after it; -999 idle.
    double altitude_marker = -999;
    double speed_marker = -999;
    int hold_vnav_speed_write = 0;      // one-tick flag for VNAV's speed write
    // Simulator rate and pause
    int rate_action_done = 0;
    int pause_done = 0;
    int distance_pause_done = 0;
    // Window-alive watch of the P1000 control pop-up
    int p1000_window_open = 0;
    int p1000_draw_count = 0;
    int p1000_stored_count = 0;
    int p1000_miss_count = 0;
    // Requests handled at the end of the tick
    int tuning_requests = 0;
    int deferred_plan_load = 0;         // 1 or 3: a plan load waits
    // Time to go (phase 0 of the guidance stage)
    HoursMinutes to_active;             // simulated time to the active waypoint (tenths kept)
    HoursMinutes to_active_real;        // the same in real time (divided by the rate)
    HoursMinutes to_destination;
    HoursMinutes to_destination_real;
    HoursMinutes to_destination_prev;
    int tower_view_done = 0;
    int destination_loaded = 0;
    int ticks = 0;                      // ticks run since load, for tests and tools
};

extern SimState g_sim;
extern TickState g_tick;
