// lnav.h: lateral guidance along the active plan.
#pragma once

struct LnavState {
    int on = 0;                         // 1: LNAV engaged
    // What the maps read (written by the guidance stage)
    double DistToActive = -1;           // nm to the active waypoint; -1 behind the aircraft
    int InterceptActive = 0;            // 1: the leg runs from InterceptStart
    double InterceptStartLatitude = 0;  // degrees: where LNAV was engaged or the direct began
    double InterceptStartLongitude = 0;
};

extern LnavState g_lnav;

// The LNAV button and orb_lnav_clicked.
void LnavToggle();
