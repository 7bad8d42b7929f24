// vnav.h: vertical guidance. VNAV flies the vertical side of the active plan
// through the simulator's own autopilot: it owns the altitude bug, the
// vertical speed bug and the speed (or Mach) bug and writes them by key
// events; the climb, the level-off and the descent are the autopilot's own
// altitude and vertical speed holds following those bugs.
//
// The phases (climb, cruise, descent) advance from the tick whether VNAV is
// engaged or not, since the displays and predictions read them; VnavOn only
// decides whether bugs are written.
//
// The plan's cruise altitude lives in PlanContext (g_plan.context.CruiseAltitude),
// next to the plan it belongs to; NextRestrictionRow too.
#pragma once

constexpr int kVnavUnknown = -999;       // a remembered bug value that is not known

struct VnavState {
    int VnavOn = 0;                      // 1 while VNAV is engaged
    // Phases
    int CruiseReached = 0;               // 1: within 150 ft below cruise, or the distance pass said so
    int DescentActive = 0;               // 1: T/D reached or passed
    int DescentSpeedPhase = 0;           // 1: the speed logic works with descent speeds
    int tod_passed = 0;                  // 1: T/D passed in this flight (arms the distance pause)
    // Target and profile points
    double TargetAltitude = 0;           // feet, where VNAV is going
    double TargetLatitude = 0;           // degrees: where TargetAltitude is reached
    double TargetLongitude = 0;
    double TargetDistance = 0;           // nm along the route to the target
    double TopOfClimbLatitude = 0;       // degrees: T/C; both 0 = none
    double TopOfClimbLongitude = 0;
    double TopOfDescentLatitude = 0;     // degrees: T/D; both 0 = none
    double TopOfDescentLongitude = 0;
    double DescentStartAltitude = 0;     // feet: where the path to the target starts
    double PathAltitude = 0;             // feet: on the path abeam the aircraft, kept in descent
    int PathDeviationValid = 0;          // 1: PathAltitude is in force (descent, distance pass ran)
    double PathToTarget = 0;             // nm along the route from T/D to the target row
    double DistToTargetRow = 0;          // nm along the route from the aircraft to the target row
    // Vertical speed
    double RequiredVs = 0;               // ft/min, signed: what the path asks for
    int CommandedVs = 0;                 // ft/min, the last command worked out (positive in descent too)
    int LastVsSent = kVnavUnknown;       // ft/min, signed, as last written; -999 none
    int LowSpeedGuard = 0;               // 1 while the climb is held level for speed
    // Writes of the present segment
    int AltSetDone = 0;                  // 1: the altitude for this segment has been written
    int SpdSetDone = 0;                  // 1: the speed for this segment has been written
    int AltSetStamp = kVnavUnknown;      // tick value of the last own altitude write; -999 consumed
    int SpdSetStamp = kVnavUnknown;      // tick value of the last own speed write; -999 consumed
    int LastAltSeen = kVnavUnknown;      // feet the altitude bug should read; -999 unknown
    int LastIasSent = kVnavUnknown;      // knots the speed bug should read; -999 unknown
    int LastMachSent = kVnavUnknown;     // Mach x 100 the Mach bug should read; -999 unknown
    double ClimbRestPending = 0;         // 1.0: the climb speed restriction is in force, lift it above its altitude
    double DescentRestDone = 0;          // 1.0: the descent speed restriction has been written
    int RestrictionSeen = 0;             // 1: the restricted waypoint's speed was asked for on this leg
    int TdCheck = 0;                     // 1: a waypoint passed abeam in cruise, look closer for T/D
    // SpeedWriteHold and the deferred Mach and descent-speed writes live in
    // the tick's state (g_tick.hold_vnav_speed_write, mach_write_pending,
    // speed_write_pending), which clears and sends them.
};

extern VnavState g_vnav;

// [SECTION] Interfaces
// The VNAV button, orb_vnav_clicked and key event 0x10338: engage (needs an
// active leg) or disengage.
void VnavToggle();
// LNAV's calls, in the order of its steps.
void VnavWaypointPassedAbeam();          // clears the writes, raises TdCheck in cruise
void VnavChooseNextTarget();             // inside the change threshold: SelectVerticalTarget
void VnavRestrictionPassed();            // at sequencing
void VnavSpeedAfterSequencing();         // SpdSetDone cleared, VnavSetSpeed once
void VnavAtLastWaypoint();               // VnavOffAtLastWpt in cruise
void VnavVerticalSteps();                // phase changes, distance pass, commands, restriction writes
// The target within the sequencing distance.
void SelectVerticalTarget();
// The next target of a climb from row ActiveLeg + offset; returns its row.
int FindClimbTarget(int offset);
// T/D anew; from_restriction 1: the active row's altitude is the new level.
void RecomputeTopOfDescent(int from_restriction);
// Each tick: altitude and vertical speed commands.
void VnavCommand();
// The speed setter.
void VnavSetSpeed();
// EXEC's vertical steps, after the plan was copied to ActivePlan: predictions,
// T/C and T/D, the distance pass, the target. modification_executed: a MOD
// was executed (VNAV's write flags are cleared as at engagement).
void VnavAfterExecute(int modification_executed);
// The flown plan changed under guidance (a procedure activated, or EXEC after
// its predictions): T/C, T/D, the distances, the next restriction and the
// target start over on it.
void VnavRestartTargets();
// A new plan: every phase flag, target and remembered value back to the start.
void ResetVnavForNewPlan();
