// flight_log.cpp: the flight log is still to come; its steps do nothing yet.
#include "flightlog/flight_log.h"

#include "frame/module_state.h"

FlightLogState g_flight_log;

void FlightLogFirstPass(int) { g_module.initial_load_done = true; }
void FlightLogStep(int) {}
