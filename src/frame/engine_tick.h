// engine_tick.h: the 18 Hz heart of the module.
//
// Any gauge may call EngineTick any number of times a frame; the first call
// after the simulator's TICK18 changed does the work, the others take four
// samples and return. What it samples and counts is in sim_state.h.
#pragma once

#include "frame/sim_state.h"

void EngineTick();
