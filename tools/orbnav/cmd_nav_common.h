// cmd_nav_common.h: what the inspection commands share: the --root option,
// loading the database of a simulator folder as the module does.
#pragma once

#include <string>

// Sets the module's RootFolder to `root` (made absolute). False with a
// message when the folder doesn't exist or is too long.
bool UseSimulatorFolder(const char* root, std::string& error);
// False with a message naming the folder when RootFolder's orb/navdata holds
// none of the bulk files (apts, navs, ints, awys and their _user overlays),
// as the module would find them. `missing` lists the main files not there.
bool HasNavigationData(std::string& missing, std::string& error);
// "LAT,LON" into two numbers.
bool ParseLatLon(const char* text, double& latitude, double& longitude);
// The module's navigation database of the folder, timed; returns seconds.
double LoadDatabaseOf();
// An ident as the cockpit's keypads type it: capitals.
std::string UpperCase(const char* text);
