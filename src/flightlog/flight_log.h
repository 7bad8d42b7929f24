// flight_log.h: flight stages and the flight log.
#pragma once

// The first pass (mode 3 at start-up) and the per-tick step (mode 0; mode 1
// when a waypoint is passed).
void FlightLogFirstPass(int mode);
void FlightLogStep(int mode);

struct FlightLogState {
    int flight_stage = 0;               // 11: End_Flight
    double zero_fuel_weight = 0;        // pounds, from the initial load
    double payload = 0;                 // pounds
};

extern FlightLogState g_flight_log;
