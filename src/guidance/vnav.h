// vnav.h: vertical guidance. What LNAV's steps ask of it, and what the tick reads.
#pragma once

struct VnavState {
    int VnavOn = 0;                     // 1: VNAV engaged
    int descent_active = 0;             // descent phase on
    int tod_passed = 0;                 // top of descent passed
    int cruise_reached = 0;             // 1: in cruise or later
    int AltSetDone = 0;                 // the altitude for this segment has been written
    int SpdSetDone = 0;                 // the speed for this segment has been written
    int RestrictionSeen = 0;            // the restricted waypoint's speed was asked for on this leg
    int TdCheck = 0;                    // a waypoint passed abeam in cruise: look closer for T/D
};

extern VnavState g_vnav;

// The VNAV button and orb_vnav_clicked.
void VnavToggle();
// LNAV's calls, in the order of its steps.
void VnavWaypointPassedAbeam();         // clears the writes, raises TdCheck in cruise
void VnavChooseNextTarget();            // inside the change threshold
void VnavRestrictionPassed();           // at sequencing
void VnavSpeedAfterSequencing();        // SpdSetDone cleared, VnavSetSpeed once
void VnavAtLastWaypoint();              // VnavOffAtLastWpt in cruise
void VnavVerticalSteps();               // transitions, VNAV pass, restriction writes, commands
