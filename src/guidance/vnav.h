// vnav.h: vertical guidance.
#pragma once

struct VnavState {
    int on = 0;                         // 1: VNAV engaged
    int descent_active = 0;             // descent phase on
    int tod_passed = 0;                 // top of descent passed
};

extern VnavState g_vnav;

// The VNAV button and orb_vnav_clicked.
void VnavToggle();

// The climb's next target row from ActiveLeg + offset (predictions come
// later: until then the active leg).
int FindClimbTarget(int offset);
// Puts the top of descent anew; 1 when called at a restricted row.
void RecomputeTopOfDescent(int from_restriction);
