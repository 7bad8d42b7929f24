// global_config.cpp: orb.cfg. Reading is still to come; the defaults stand,
// and the steps that follow the reading run as they will then.
#include "frame/global_config.h"

#include "flightlog/flight_log.h"
#include "frame/engine_tick.h"
#include "frame/module_state.h"
#include "frame/sim_generation.h"

GlobalConfig g_config;

void LoadGlobalConfig() {
    g_module.configuration_loaded = true;
    DetectSimGeneration();
    FlightLogFirstPass(3);
    g_tick.slow_refresh = 999;
}
