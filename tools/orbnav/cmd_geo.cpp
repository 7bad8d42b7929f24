// cmd_geo.cpp: orbnav's geodesy commands, `magvar` (the module's built-in
// magnetic variation at a position) and `gc` (great-circle distance and
// initial true bearing between two positions), computed by the module's own
// functions so that what a user sees here is what the module uses.
#include "command.h"

#include "guidance/geodesy.h"
#include "navdata/magnetic_model.h"

#include <cstring>

namespace {

bool WantsHelp(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) return true;
    return false;
}

// Reads a latitude or longitude argument; on failure prints the one-line
// error and leaves `exit_code` at 2.
bool ReadCoordinate(const char* text, const char* what, double limit, double& value, int& exit_code) {
    if (!ParseNumber(text, value)) {
        exit_code = Fail("%s '%s' is not a number", what, text);
        return false;
    }
    if (value < -limit || value > limit) {
        exit_code = Fail("%s '%s' is outside -%g..%g degrees", what, text, limit, limit);
        return false;
    }
    return true;
}

int RunMagvar(int argc, char** argv) {
    if (WantsHelp(argc, argv)) {
        std::printf(
            "usage: orbnav magvar LAT LON\n"
            "\n"
            "Prints the magnetic variation of the module's built-in WMM-2005 model, in\n"
            "whole degrees, east positive, as the navigation data loaders use it. The\n"
            "position is in decimal degrees, north and east positive; like the module,\n"
            "the fraction is cut off first (47.9 is asked at 47, -122.9 at -122).\n");
        return 0;
    }
    if (argc != 3) return Fail("magvar takes LAT LON (orbnav magvar --help)");
    int exit_code = 2;
    double lat = 0, lon = 0;
    if (!ReadCoordinate(argv[1], "latitude", 90.0, lat, exit_code)) return exit_code;
    if (!ReadCoordinate(argv[2], "longitude", 180.0, lon, exit_code)) return exit_code;
    StoreMagneticCoefficients();
    std::printf("%d\n", MagneticVariation(static_cast<int>(lat), static_cast<int>(lon)));
    return 0;
}

int RunGreatCircle(int argc, char** argv) {
    if (WantsHelp(argc, argv)) {
        std::printf(
            "usage: orbnav gc LAT1 LON1 LAT2 LON2\n"
            "\n"
            "Prints the great-circle distance in nautical miles and the initial true\n"
            "bearing from the first position to the second, on the module's spherical\n"
            "Earth (one minute of arc a mile). Positions in decimal degrees, north and\n"
            "east positive. Bearings run from 1 to 360; north reads 360.\n"
            "Output: DISTANCE nm BEARING true\n");
        return 0;
    }
    if (argc != 5) return Fail("gc takes LAT1 LON1 LAT2 LON2 (orbnav gc --help)");
    int exit_code = 2;
    double lat1 = 0, lon1 = 0, lat2 = 0, lon2 = 0;
    if (!ReadCoordinate(argv[1], "latitude", 90.0, lat1, exit_code)) return exit_code;
    if (!ReadCoordinate(argv[2], "longitude", 180.0, lon1, exit_code)) return exit_code;
    if (!ReadCoordinate(argv[3], "latitude", 90.0, lat2, exit_code)) return exit_code;
    if (!ReadCoordinate(argv[4], "longitude", 180.0, lon2, exit_code)) return exit_code;
    double distance = 0, bearing = 0;
    GreatCircle(lat1, lon1, lat2, lon2, distance, bearing);
    std::printf("%.2f nm %.2f true\n", distance, bearing);
    return 0;
}

const OrbnavCommand kMagvarCommand("magvar", "magnetic variation (whole degrees, east +) at LAT LON", RunMagvar);
const OrbnavCommand kGreatCircleCommand("gc", "great-circle distance (nm) and initial true bearing", RunGreatCircle);

}  // namespace
