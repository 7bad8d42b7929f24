// flight_log.cpp: the start of a flight. The stage machine and the log files
// are still to come; their steps do nothing yet.
#include "flightlog/flight_log.h"

#include "frame/sim_state.h"
#include "frame/module_state.h"

FlightLogState g_flight_log;

namespace {
constexpr double kOnGroundSpeed = 5;        // knots: below it the aircraft stands
}  // namespace

void FlightLogFirstPass(int) { g_module.initial_load_done = true; }
void FlightLogStep(int) {}

void StartNewFlight() {
    if (!(g_sim.ground_speed < kOnGroundSpeed)) return;
    g_flight_log.flight_stage = kFlightStageStarting;
    g_flight_log.first_pass_done = 0;
    g_tick.flight_seconds = 0;
    g_tick.stored_second = -99;
    FlightLogStep(0);
}
