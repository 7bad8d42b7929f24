// vnav.cpp: VNAV comes later; the toggle only flips the mode.
#include "guidance/vnav.h"

VnavState g_vnav;

void VnavToggle() { g_vnav.on = g_vnav.on ? 0 : 1; }

#include "plan/plan_tables.h"

int FindClimbTarget(int offset) { return g_plan.context.ActiveLeg + offset; }

void RecomputeTopOfDescent(int) {}
