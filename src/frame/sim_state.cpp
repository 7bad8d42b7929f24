// sim_state.cpp: the one instance of the samples and of the tick's counters.
#include "frame/sim_state.h"

SimState g_sim;
TickState g_tick;
