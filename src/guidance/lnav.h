// lnav.h: lateral guidance. LNAV follows ActivePlan by setting the
// simulator's heading bug; the autopilot's heading hold does the turning.
#pragma once

#include "guidance/lnav_state.h"

// The active waypoint's position: the plan context's copy, taken at
// sequencing, at Direct-To and at each change of plan.
LatLon ActivePos();

// A new plan became active (loaded, or executed from PlanState below 3): the
// once-per-plan steps rearm and steering starts afresh. A modification of
// the plan being flown doesn't come here.
void LnavPlanActivated();
// EXEC of a direct or intercept: the reference leg starts at the present
// position and runs to the (new) active waypoint.
void LnavDirectExecuted();
// Engage or disengage: every LNAV switch ends here.
void LnavToggle();
// The tick's lateral steps; nothing without an active leg.
void LnavSequence();
// Radio tuning: 2 from the plan, 1 the runway chosen on the MCU.
void CheckTuneRoute(int kind);
// The sequencing threshold for the active waypoint (for tests and pages).
double WaypointChangeDistance();
