// mcu_runway_tuning.h: tuning the runway chosen on the MCU's airport page.
#pragma once

// The ILS frequency and course of the MCU's selected runway, to NAV1 and the OBS.
void TuneMcuRunway();
