// runway_tuning.h: the runway tuning of CheckTuneRoute(1): the ILS of the
// runway the pilot selected on the MCU's airport page, to NAV1 and its course.
#pragma once

// Sends the selected runway's ILS course and frequency; nothing while no
// runway is selected.
void TuneSelectedRunway();
