// aircraft_profile.h: the options of one aircraft, from \orb\Aircraft\<name>.cfg.
#pragma once

#include <array>

struct AircraftProfile {
    double ClimbIas = 280;              // knots
    double DescentIas = 280;            // knots
    double CruiseMach = 0;
    double FPA = 3.0;                   // descent flight path angle, degrees
};

extern AircraftProfile g_profile;

// Reads the profile of that name; a missing file leaves the defaults.
void LoadAircraftProfile(const char* name);
