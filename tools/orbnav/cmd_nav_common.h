// cmd_nav_common.h: what the inspection commands share: the --root option,
// loading the database of a simulator folder as the module does.
#pragma once

#include <string>

// Sets the module's RootFolder to `root` (made absolute). False with a
// message when the folder doesn't exist or is too long.
bool UseSimulatorFolder(const char* root, std::string& error);
// "LAT,LON" into two numbers.
bool ParseLatLon(const char* text, double& latitude, double& longitude);
// The module's navigation database of the folder, timed; returns seconds.
double LoadDatabaseOf();
