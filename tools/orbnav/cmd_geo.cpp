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

// Reads the value of an option (`--year 2006`) within [low, high].
bool ReadOption(int argc, char** argv, int& i, double low, double high, const char* unit, double& value,
                int& exit_code) {
    const char* option = argv[i];
    if (i + 1 >= argc) {
        exit_code = Fail("magvar: %s needs a value (orbnav magvar --help)", option);
        return false;
    }
    const char* text = argv[++i];
    if (!ParseNumber(text, value)) {
        exit_code = Fail("magvar: %s '%s' is not a number", option, text);
        return false;
    }
    if (value < low || value > high) {
        exit_code = Fail("magvar: %s '%s' is outside the model's %g..%g%s", option, text, low, high, unit);
        return false;
    }
    return true;
}

int RunMagvar(int argc, char** argv) {
    if (WantsHelp(argc, argv)) {
        std::printf(
            "usage: orbnav magvar LAT LON [--year Y] [--altitude KM]\n"
            "\n"
            "Prints two lines for a position in decimal degrees, north and east positive:\n"
            "\n"
            "  variation    the whole-degree magnetic variation, east positive, that the\n"
            "               module stores with procedure files: like the module, the\n"
            "               fraction of the position is cut off first (47.9 is asked at\n"
            "               47, -122.9 at -122), the year is 2005.0 and the altitude 1 km,\n"
            "               whatever --year and --altitude say\n"
            "  declination  the built-in WMM-2005 model's declination with two decimals at\n"
            "               the position as given, for the year and altitude asked\n"
            "\n"
            "  --year Y       decimal year, %g..%g (default %g)\n"
            "  --altitude KM  km above the WGS-84 ellipsoid, %g..%g (default 1)\n",
            kMagneticFirstYear, kMagneticLastYear, kMagneticFirstYear, kMagneticLowestKm, kMagneticHighestKm);
        return 0;
    }
    int exit_code = 2;
    double year = kMagneticFirstYear, altitude = 1.0;
    const char* position[2] = {nullptr, nullptr};
    int positions = 0;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--year") == 0) {
            if (!ReadOption(argc, argv, i, kMagneticFirstYear, kMagneticLastYear, "", year, exit_code)) return exit_code;
        } else if (std::strcmp(argv[i], "--altitude") == 0) {
            if (!ReadOption(argc, argv, i, kMagneticLowestKm, kMagneticHighestKm, " km", altitude, exit_code))
                return exit_code;
        } else if (std::strncmp(argv[i], "--", 2) == 0) {
            return Fail("magvar: unknown option '%s' (orbnav magvar --help)", argv[i]);
        } else if (positions < 2) {
            position[positions++] = argv[i];  // a negative number is a position, not an option
        } else {
            return Fail("magvar takes LAT LON (orbnav magvar --help)");
        }
    }
    if (positions != 2) return Fail("magvar takes LAT LON (orbnav magvar --help)");
    double lat = 0, lon = 0;
    if (!ReadCoordinate(position[0], "latitude", 90.0, lat, exit_code)) return exit_code;
    if (!ReadCoordinate(position[1], "longitude", 180.0, lon, exit_code)) return exit_code;
    StoreMagneticCoefficients();
    int whole_lat = static_cast<int>(lat), whole_lon = static_cast<int>(lon);
    std::printf("variation    %7d  at %d %d, year %g, altitude 1 km (whole degrees, as the module stores it)\n",
                MagneticVariation(whole_lat, whole_lon), whole_lat, whole_lon, kMagneticFirstYear);
    float declination = MagneticDeclination(static_cast<float>(lat), static_cast<float>(lon), static_cast<float>(altitude),
                                            static_cast<float>(year));
    std::printf("declination  %7.2f  at %g %g, year %g, altitude %g km\n", static_cast<double>(declination), lat, lon,
                year, altitude);
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

const OrbnavCommand kMagvarCommand("magvar", "magnetic variation (whole degrees) and declination at LAT LON", RunMagvar);
const OrbnavCommand kGreatCircleCommand("gc", "great-circle distance (nm) and initial true bearing", RunGreatCircle);

}  // namespace
