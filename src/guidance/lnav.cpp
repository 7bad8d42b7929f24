// lnav.cpp: LNAV comes later; the toggle only flips the mode.
#include "guidance/lnav.h"

LnavState g_lnav;

void LnavToggle() { g_lnav.on = g_lnav.on ? 0 : 1; }

void LnavPlanActivated() {}
