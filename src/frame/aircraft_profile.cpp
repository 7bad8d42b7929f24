// aircraft_profile.cpp: the aircraft profile. Loading is still to come; the
// defaults stand.
#include "frame/aircraft_profile.h"

AircraftProfile g_profile;

void LoadAircraftProfile(const char*) {}
