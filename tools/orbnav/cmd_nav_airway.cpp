// cmd_nav_airway.cpp: `orbnav airway NAME --from FIX`: an airway's fixes as
// the route page fetches them.
#include "cmd_nav_common.h"
#include "command.h"
#include "navdata/airways.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"
#include "plan/plan_tables.h"

#include <cstring>

namespace {
int Run(int argc, char** argv) {
    OrbnavOptions options;
    const char* name = nullptr;
    const char* fix = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::printf("usage: orbnav airway NAME --from FIX [--root DIR]\n\nReads awys.txt as the route page does when "
                        "NAME is entered after FIX\nand lists the fixes fetched; '>' marks FIX, the entry. NAME and FIX "
                        "are\ntaken in capitals.\n\n%s",
                        kRootHelp);
            return 0;
        } else if (std::strcmp(argv[i], "--root") == 0 && i + 1 < argc) {
            options.root = argv[++i];
        } else if (std::strcmp(argv[i], "--from") == 0 && i + 1 < argc) {
            fix = argv[++i];
        } else if (argv[i][0] != '-' && name == nullptr) {
            name = argv[i];
        } else {
            return Fail("airway: unexpected argument '%s' (--help)", argv[i]);
        }
    }
    if (name == nullptr || fix == nullptr) return Fail("airway: NAME and --from FIX are needed (--help)");
    std::string error, missing;
    if (!UseSimulatorFolder(options.root, error) || !HasNavigationData(missing, error))
        return Fail("airway: %s", error.c_str());
    std::string airway = UpperCase(name), entry = UpperCase(fix);
    g_plan.context.ModActiveLeg = 1;
    SetText(g_plan.ModPlan[1].Ident, entry.c_str());
    FetchAirway(airway.c_str());
    if (g_candidates.count == 0) {
        std::printf("%s: no such airway\n", airway.c_str());
        return 1;
    }
    for (int i = 1; i <= g_candidates.count; ++i) {
        const NavRecord& r = g_candidates.rows[i];
        std::printf("%c%3d %-8s %10.5f %12.5f\n", i == g_airway.AirwayEntryRow ? '>' : ' ', i, r.Ident.data(), r.Latitude,
                    r.Longitude);
    }
    if (g_airway.AirwayEntryRow == 0) {
        std::printf("%s\n", g_airway.RouteLineText.data());
        return 1;
    }
    std::printf("entry row %d, %d pages\n", g_airway.AirwayEntryRow, g_airway.AirwayPageCount);
    return 0;
}

OrbnavCommand command("airway", "an airway's fixes as fetched from a fix", Run);
}  // namespace
