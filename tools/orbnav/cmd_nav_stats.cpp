// cmd_nav_stats.cpp: `orbnav stats`: what the module loads from a folder.
#include "cmd_nav_common.h"
#include "command.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"

#include <cstring>

namespace {
int Run(int argc, char** argv) {
    OrbnavOptions options;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::printf("usage: orbnav stats [--root DIR]\n\nLoads DIR/orb/navdata as the module does and prints the\n"
                        "table counts against their limits, memory held and the database cycle.\n"
                        "A folder without any of the files is an error.\n\n%s",
                        kRootHelp);
            return 0;
        } else if (std::strcmp(argv[i], "--root") == 0 && i + 1 < argc) {
            options.root = argv[++i];
        } else {
            return Fail("stats: unexpected argument '%s' (--help)", argv[i]);
        }
    }
    std::string error;
    std::string missing;
    if (!UseSimulatorFolder(options.root, error) || !HasNavigationData(missing, error))
        return Fail("stats: %s", error.c_str());
    double seconds = LoadDatabaseOf();
    ReadDatabaseCycle();
    struct Line {
        const char* name;
        const BulkTable& table;
        int limit;
    };
    const Line lines[] = {{"airports", g_navdb.AirportTable, kAirportLimit},
                          {"navaids", g_navdb.NavaidTable, kNavaidLimit},
                          {"intersections", g_navdb.IntersectionTable, kIntersectionLimit},
                          {"airway fixes", g_navdb.AirwayFixTable, kAirwayFixLimit}};
    size_t row_bytes = 0;
    for (const Line& l : lines) {
        std::printf("%-14s %7d of %7d%s\n", l.name, l.table.count, l.limit, l.table.count >= l.limit ? "  (full)" : "");
        row_bytes += l.table.rows.capacity() * sizeof(BulkRow);
    }
    if (!missing.empty()) std::printf("missing        %s\n", missing.c_str());
    std::printf("navaid index   %7d letters\n", g_navdb.navaid_index_count);
    std::printf("memory         %7.1f MB rows + %.1f MB texts\n", static_cast<double>(row_bytes) / 1048576.0,
                static_cast<double>(g_navdb.pool.capacity()) / 1048576.0);
    std::printf("load time      %7.3f s\n", seconds);
    std::printf("cycle          %s %s\n", g_navdb.DatabaseCycleText[0] ? g_navdb.DatabaseCycleText.data() : "(none)",
                g_navdb.DatabaseDatesText.data());
    return 0;
}

OrbnavCommand command("stats", "table counts, limits, memory and cycle of a database", Run);
}  // namespace
