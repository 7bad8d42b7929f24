// holds.h: holding patterns of the active plan.
#pragma once

struct HoldState {
    int flying = 0;                     // 1: a hold is being flown
    int count = 0;                      // records in the hold table
};

extern HoldState g_holds;
