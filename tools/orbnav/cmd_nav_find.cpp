// cmd_nav_find.cpp: `orbnav find IDENT`: the candidate list of a name search.
#include "cmd_nav_common.h"
#include "command.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "navdata/nav_database.h"

#include <cstring>

namespace {
int Run(int argc, char** argv) {
    OrbnavOptions options;
    const char* ident = nullptr;
    const char* from = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::printf("usage: orbnav find IDENT [--from LAT,LON] [--root DIR]\n\nSearches navaids, intersections and "
                        "airports for IDENT as the CDU does and lists\nthe candidates nearest first from LAT,LON "
                        "(default 0,0), at most 250. IDENT is\nsearched in capitals, as the keypads type it.\n\n%s",
                        kRootHelp);
            return 0;
        } else if (std::strcmp(argv[i], "--root") == 0 && i + 1 < argc) {
            options.root = argv[++i];
        } else if (std::strcmp(argv[i], "--from") == 0 && i + 1 < argc) {
            from = argv[++i];
        } else if (argv[i][0] != '-' && ident == nullptr) {
            ident = argv[i];
        } else {
            return Fail("find: unexpected argument '%s' (--help)", argv[i]);
        }
    }
    if (ident == nullptr) return Fail("find: IDENT missing (--help)");
    g_sim.latitude = 0;
    g_sim.longitude = 0;
    if (from != nullptr && !ParseLatLon(from, g_sim.latitude, g_sim.longitude))
        return Fail("find: --from '%s' is not LAT,LON in degrees", from);
    std::string error, missing;
    if (!UseSimulatorFolder(options.root, error) || !HasNavigationData(missing, error))
        return Fail("find: %s", error.c_str());
    LoadDatabaseOf();
    std::string entry = UpperCase(ident);
    int count = ResolveName(0, entry.c_str());
    if (count == 0) {
        std::printf("%s: NOT IN DATABASE\n", entry.c_str());
        return 1;
    }
    std::printf("  # ident    kind  latitude    longitude    dist nm  brg  freq/elev\n");
    for (int i = 1; i <= count; ++i) {
        const NavRecord& r = g_candidates.rows[i];
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, r.Latitude, r.Longitude, distance, bearing);
        std::printf("%3d %-8s %-4s %10.5f %12.5f %8.1f %4.0f  %s\n", i, r.Ident.data(), r.Kind.data(), r.Latitude,
                    r.Longitude, distance, bearing, r.Frequency[0] ? r.Frequency.data() : r.Elevation.data());
    }
    return 0;
}

OrbnavCommand command("find", "candidates of a name, nearest first", Run);
}  // namespace
