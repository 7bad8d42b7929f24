// page_times.cpp: times and fuel the pages show for a point ahead: the
// arrival time on the simulator's clock, the fuel left there, the mean-speed
// estimate for the destination, and weights in the display unit.
//
// Still air: the ground speed the caller passes is the only wind there is.
#include "guidance/performance.h"

#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {
constexpr double kMinutesPerHour = 60;
constexpr double kHoursPerDay = 24;
constexpr double kDestinationSlowStretch = 100;   // nm before the destination flown slower
constexpr double kDestinationSlowFactor = 0.85;   // of DescentIas over that stretch
constexpr double kDestinationMinGroundSpeed = 30; // knots; at or below, no destination estimate
}  // namespace

// [SECTION] Times and fuel for the pages

bool FormatArrivalTime(double distance_nm, double ground_speed, double min_ground_speed, char* out, size_t size) {
    if (out == nullptr || size == 0) return false;
    out[0] = 0;
    if (!(ground_speed > min_ground_speed) || !(ground_speed > 0) || !std::isfinite(distance_nm)) return false;
    // Step 1: time ahead, split into whole hours and the minutes left.
    double ahead = std::max(0.0, distance_nm) / ground_speed * kMinutesPerHour;
    double hours_ahead = std::floor(ahead / kMinutesPerHour);
    double minutes_ahead = ahead - hours_ahead * kMinutesPerHour;
    // Step 2: onto the clock the pilot asked for; whole minutes, so that a
    // rounded 60 never shows.
    const bool local = g_config.DispETALocalTime == 1;
    double hour = std::floor(local ? g_sim.local_hour : g_sim.zulu_hour) + hours_ahead;
    double minute = std::floor((local ? g_sim.local_minute : g_sim.zulu_minute) + minutes_ahead + 0.5);
    // Step 3: carry the minutes at 60 and the hours at 24.
    while (minute >= kMinutesPerHour) {
        minute -= kMinutesPerHour;
        hour += 1;
    }
    hour = std::fmod(hour, kHoursPerDay);
    if (hour < 0) hour += kHoursPerDay;
    std::snprintf(out, size, local ? "%02.0f%02.0fL" : "%02.0f%02.0fZ", hour, minute);
    return true;
}

double FuelAtDistance(double distance_nm, double ground_speed) {
    double fuel = FuelOnBoardKept();
    if (!(ground_speed > 0) || !(distance_nm > 0)) return fuel;
    double hours = distance_nm / ground_speed;
    return fuel - TotalFuelFlowPph() * hours;
}

bool DestinationTimeAndFuel(double d, double ground_speed, double& minutes, double& fuel_left) {
    minutes = 0;
    fuel_left = FuelOnBoardKept();
    if (!(ground_speed > kDestinationMinGroundSpeed) || !std::isfinite(d)) return false;
    if (d <= 0) return true;
    // Step 1: the mean speed; beyond 100 nm the last 100 go at 85 % of DescentIas.
    double speed = ground_speed;
    if (d > kDestinationSlowStretch) {
        double slow = g_profile.DescentIas * kDestinationSlowFactor;
        speed = (slow * kDestinationSlowStretch + (d - kDestinationSlowStretch) * ground_speed) / d;
    }
    if (!(speed > 0)) return false;
    // Step 2: time and burn; a mean slower than the ground speed scales the burn down.
    double hours = d / speed;
    minutes = hours * kMinutesPerHour;
    double burn = TotalFuelFlowPph() * hours;
    if (speed < ground_speed) burn *= speed / ground_speed;
    fuel_left -= burn;
    return true;
}

double WeightInDisplayUnit(double pounds) {
    if (std::strcmp(g_config.WeightUnit.data(), "KGS") == 0) return pounds * kPoundsToKilograms;
    return pounds;
}
