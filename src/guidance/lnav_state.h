// lnav_state.h: LNAV's state, which the pages, the maps and VNAV read. Apart
// from LNAV's operations (lnav.h) so that VNAV, which LNAV calls, can read
// the leg and the distance to the active waypoint without an include circle.
#pragma once

#include <array>

struct LatLon {
    double lat = 0;                     // degrees, north positive
    double lon = 0;                     // degrees, east positive
};

struct LastPassedWaypoint {
    std::array<char, 24> ident{};
    std::array<char, 8> time{};         // "%02.0f%02.0fZ"
    double altitude = 0;                // feet
    double fuel = 0;                    // pounds, or kilograms with WeightUnit "KGS"
};

struct LnavState {
    int LnavOn = 0;                     // 1 while engaged
    double DistToActive = 0;            // nm to ActivePos; -1 after the behind-the-aircraft rule
    double BearingToActive = 0;         // magnetic
    double LegCourse = 0;               // magnetic course of the active leg
    double LegCoursePrevious = 0;
    double LegLength = 0;               // nm
    double DistToActivePrevious = 0;
    double NextLegCourse = 0;           // refreshed within 10 nm while a next leg exists
    double NextLegLength = 0;
    double ChangeDistance = 0;          // sequencing threshold in force, nm
    double HeadingCommand = 0;          // magnetic heading wanted
    int LastHeadingSent = 999;          // last whole degree sent; 999 nothing
    int LegTracking = 0;                // 1: converge on the leg by the rabbit
    int InterceptActive = 0;            // 1: reference leg from InterceptStart
    LatLon InterceptStart;
    double InterceptCourse = 0;         // magnetic, from InterceptStart to the waypoint
    LatLon RabbitPoint;
    int ForcedTurnSide = 0;             // 0 none, else 1 left / 2 right from a Direct-To
    std::array<char, 8> DirectToTurnOption{'D', 'E', 'F', 'A', 'U', 'L', 'T'};  // "DEFAULT", "LEFT" or "RIGHT"
    double XtkDistance = -99;           // nm
    int XtkSide = 0;
    double TrackAngleError = 0;
    int TrackAngleSide = 0;
    double HeadingError = 0;
    int HeadingErrorSide = 0;
    int DepartedFlag = 1;               // 1 waiting to leave the origin, 2 done
    int ArrivalDone = 0;                // the arrival step ran for this plan
    int PublishHoldFrames = 0;          // frames the named-variable copy waits
    LastPassedWaypoint LastPassed;
};

extern LnavState g_lnav;
