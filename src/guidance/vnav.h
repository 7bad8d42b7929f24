// vnav.h: vertical guidance. What LNAV's steps ask of it, and what the tick reads.
#pragma once

struct VnavState {
    int VnavOn = 0;                     // 1: VNAV engaged
    int descent_active = 0;             // descent phase on
    int tod_passed = 0;                 // top of descent passed
    int AltSetDone = 0;                 // the altitude for this segment has been written
    int SpdSetDone = 0;                 // the speed for this segment has been written
    int RestrictionSeen = 0;            // the restricted waypoint's speed was asked for on this leg
    int TdCheck = 0;                    // a waypoint passed abeam in cruise: look closer for T/D
    // What the maps read (written by VNAV and the predictions)
    int CruiseReached = 0;              // 1: at cruise or beyond
    int DescentSpeedPhase = 0;          // 1: the speed logic works with descent speeds
    int PathDeviationValid = 0;         // 1: the vertical deviation test is in force
    double TargetAltitude = 0;          // feet, where VNAV is going
    double TargetLatitude = 0;          // degrees: where TargetAltitude is reached
    double TargetLongitude = 0;
    double TopOfClimbLatitude = 0;      // degrees: T/C; both 0 = none
    double TopOfClimbLongitude = 0;
    double TopOfDescentLatitude = 0;    // degrees: T/D; both 0 = none
    double TopOfDescentLongitude = 0;
    double PathAltitude = 0;            // feet, on the path abeam the aircraft
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
// At a plan's execution: the row of the next climb target, and T/D again.
int FindClimbTarget(int offset);
void RecomputeTopOfDescent(int from_restriction);
