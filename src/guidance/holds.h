// holds.h: holding patterns of the active plan. Only the first record of the
// hold table is flown.
#pragma once

struct HoldState {
    int HoldCount = 0;                  // records in the hold table
    int HoldFlying = 0;                 // 1: sequencing and LNAV's heading held off once a corner is active
    int HoldCorner = 0;                 // 0 entry, then the pattern's corners
    int HoldExitState = 1;              // 1 "MANUAL", 2 "AUTO", 0 in the pattern, 3 leaving, 4 just deleted
    int FirstActiveRow = 0;             // plan row of the first record's fix
};

extern HoldState g_holds;

// The hold step of the tick, while the table isn't empty.
void HoldStep();
// Deletes every hold whose fix lies behind the active leg.
void DeleteHoldsBehind(int active_leg);
// Whether the row is the fix of the first hold.
bool IsFirstHoldFix(int row);
// LNAV disengaged: the first record gives up its fix.
void HoldGiveUp();
// The hold standing at ActivePlan row `row` is removed; with `mode` above 0
// the plan counts as changed, awaiting EXEC.
void DeleteHold(int row, int mode);
// Every hold is removed: a new plan or a new origin.
void RemoveAllHolds();
// ERASE: the holds that no row of the plan carries any more are dropped.
void DropUntiedHolds();
