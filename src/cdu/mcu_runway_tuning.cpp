// mcu_runway_tuning.cpp: the MCU pages come later; no runway is selected yet.
#include "cdu/mcu_runway_tuning.h"

void TuneMcuRunway() {}
