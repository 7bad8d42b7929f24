// vnav.cpp: VNAV comes with the performance work; LNAV's hand-offs keep the
// flags the way they will be kept then.
#include "guidance/vnav.h"

#include "frame/global_config.h"
#include "plan/plan_tables.h"

VnavState g_vnav;

void VnavToggle() { g_vnav.VnavOn = g_vnav.VnavOn ? 0 : 1; }

void VnavWaypointPassedAbeam() {
    g_vnav.AltSetDone = 0;
    g_vnav.SpdSetDone = 0;
    if (g_vnav.CruiseReached && !g_vnav.DescentActive) g_vnav.TdCheck = 1;
}

void VnavChooseNextTarget() {}
void VnavRestrictionPassed() { g_vnav.RestrictionSeen = 0; }
void VnavSpeedAfterSequencing() { g_vnav.SpdSetDone = 0; }

void VnavAtLastWaypoint() {
    if (g_config.VnavOffAtLastWpt == 1 && g_vnav.CruiseReached) g_vnav.VnavOn = 0;
}

void VnavVerticalSteps() {}

int FindClimbTarget(int offset) { return g_plan.context.ActiveLeg + offset; }

void RecomputeTopOfDescent(int) {}

void SelectVerticalTarget() {}
void VnavCommand() {}
void VnavSetSpeed() {}
void VnavAfterExecute(int) {}
void ResetVnavForNewPlan() { g_vnav = VnavState{}; }
