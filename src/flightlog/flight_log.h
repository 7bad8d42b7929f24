// flight_log.h: flight stages and the flight log.
//
// The flight stage is 999 (no flight) from the module's load until a plan is
// loaded or activated on the ground; then -1, and the stage machine runs
// forward from there. The flight clock (TickState::flight_seconds) counts only
// while the stage is below 11 (End_Flight), so it stands still until a flight
// starts.
#pragma once

constexpr int kFlightStageNone = 999;       // no flight yet: nothing is logged, the clock stands
constexpr int kFlightStageStarting = -1;    // a flight was started; the next step enters stage 0
constexpr int kFlightStageEnd = 11;         // End_Flight: clock and log stop for good

// The first pass (mode 3 at start-up) and the per-tick step (mode 0; mode 1
// when a waypoint is passed).
void FlightLogFirstPass(int mode);
void FlightLogStep(int mode);
// A plan loaded or activated: on the ground (below 5 knots) a new flight
// starts, with stage -1, the flight clock at 0 and the weights read afresh.
// In the air nothing changes.
void StartNewFlight();

struct FlightLogState {
    int flight_stage = kFlightStageNone;
    int first_pass_done = 0;            // 1: weights read for this flight
    double zero_fuel_weight = 0;        // pounds, from the initial load
    double payload = 0;                 // pounds
};

extern FlightLogState g_flight_log;
