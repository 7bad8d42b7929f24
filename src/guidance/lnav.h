// lnav.h: lateral guidance along the active plan.
#pragma once

struct LnavState {
    int on = 0;                         // 1: LNAV engaged
};

extern LnavState g_lnav;

// The LNAV button and orb_lnav_clicked.
void LnavToggle();

// A plan was executed: LNAV takes the new active leg and its position.
void LnavPlanActivated();
