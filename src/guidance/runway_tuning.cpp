// runway_tuning.cpp: the MCU's airport page, which selects the runway, comes
// with the MCU pages; until then no runway is ever selected, so nothing is
// tuned.
#include "guidance/runway_tuning.h"

void TuneSelectedRunway() {}
