// cmd_nav_airport.cpp: `orbnav airport ICAO`: an airport and its runways as
// the detail loader reads them.
#include "cmd_nav_common.h"
#include "command.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"

#include <cstring>

namespace {
int Run(int argc, char** argv) {
    OrbnavOptions options;
    const char* ident = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::printf("usage: orbnav airport ICAO [--root DIR]\n\nReads the airport's line of apts.txt (or "
                        "apts_user.txt) as the module loads\nan origin and lists its runways. ICAO is taken in "
                        "capitals.\n\n%s",
                        kRootHelp);
            return 0;
        } else if (std::strcmp(argv[i], "--root") == 0 && i + 1 < argc) {
            options.root = argv[++i];
        } else if (argv[i][0] != '-' && ident == nullptr) {
            ident = argv[i];
        } else {
            return Fail("airport: unexpected argument '%s' (--help)", argv[i]);
        }
    }
    if (ident == nullptr) return Fail("airport: ICAO missing (--help)");
    std::string error, missing;
    if (!UseSimulatorFolder(options.root, error) || !HasNavigationData(missing, error))
        return Fail("airport: %s", error.c_str());
    std::string icao = UpperCase(ident);
    g_airports = AirportSlots{};
    LoadAirportDetail(icao.c_str(), 1);
    const AirportDetail& a = g_airports.OriginAirport;
    if (TextOf(a.Ident) != icao) {
        std::printf("%s: NOT IN DATABASE\n", icao.c_str());
        return 1;
    }
    std::printf("%s %s  elevation %d ft  %s %s\n", a.Ident.data(), a.Name.data(), a.ElevationFt, a.LatitudeText.data(),
                a.LongitudeText.data());
    std::printf("rwy   length ft  threshold                 heading  recip   ils\n");
    for (int i = 1; i <= a.RunwayCount; ++i) {
        const RunwayRecord& r = a.Runways[i];
        std::printf("%-5s %9d  %10.6f %11.6f  %6.1f  %6.1f", r.Ident.data(), r.LengthFt, r.Latitude, r.Longitude,
                    r.Heading, r.ReciprocalHeading);
        if (r.IlsIdent[0] || r.IlsFrequency[0])
            std::printf("   %.3s %.6s %.1f", r.IlsIdent.data(), r.IlsFrequency.data(), r.IlsCourse);
        std::printf("\n");
    }
    return 0;
}

OrbnavCommand command("airport", "an airport's runways as the module reads them", Run);
}  // namespace
