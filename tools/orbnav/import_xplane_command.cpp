// import_xplane_command.cpp: `orbnav import-xplane SRC DST [--region ...]`.
#include "command.h"
#include "import_xplane.h"

#include <cstring>
#include <string>
#include <vector>

#include "navdata/nav_database.h"

namespace {
void Help(FILE* out) {
    std::fprintf(out,
                 "usage: orbnav import-xplane SRC DST [--region LAT1,LON1,LAT2,LON2] [--quiet]\n\n"
                 "Converts nav.dat (810), fix.dat (600), awy.dat (640) and apt.dat (1000) in SRC,\n"
                 "plain or .gz, into DST/orb/navdata/apts.txt, navs.txt, ints.txt and awys.txt.\n"
                 "Nothing is written unless the whole import succeeds.\n\n"
                 "  --region LAT1,LON1,LAT2,LON2   only what lies in this box (degrees)\n"
                 "  --quiet                        no progress bar\n");
}

int Run(int argc, char** argv) {
    ImportOptions options;
    std::string error;
    std::vector<const char*> positional;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            Help(stdout);
            return 0;
        } else if (std::strcmp(argv[i], "--region") == 0) {
            if (i + 1 >= argc) return Fail("import-xplane: --region needs LAT1,LON1,LAT2,LON2");
            if (!ParseRegion(argv[++i], options.region, error)) return Fail("import-xplane: %s", error.c_str());
        } else if (std::strcmp(argv[i], "--quiet") == 0) {
            options.progress = false;
        } else if (argv[i][0] == '-' && argv[i][1] == '-') {
            return Fail("import-xplane: unknown option '%s' (--help lists them)", argv[i]);
        } else {
            positional.push_back(argv[i]);
        }
    }
    if (positional.size() != 2) {
        Help(stderr);
        return 2;
    }
    options.source = positional[0];
    options.destination = positional[1];
    ImportSummary s;
    bool imported = ImportXplane(options, s, error);
    if (s.interrupted_import_undone)
        std::fprintf(stderr, "orbnav: an earlier import into %s was cut off while replacing the files; its old files are back\n",
                     options.destination.c_str());
    if (!imported) return Fail("%s", error.c_str());
    std::printf("airports  %6d written, %d beyond the limit of %d dropped\n", s.airports, s.airports_dropped, kAirportLimit);
    std::printf("runways   %6d ends written (%d localizers matched), %d ends beyond 20 a line dropped\n", s.runway_ends,
                s.localizers_matched, s.runway_ends_dropped);
    std::printf("navaids   %6d written, %d beyond the limit dropped, %d DME/TACAN skipped\n", s.navaids, s.navaids_dropped,
                s.dme_skipped);
    std::printf("fixes     %6d written, %d beyond the limit dropped\n", s.fixes, s.fixes_dropped);
    std::printf("airways   %6d airways in %d runs, %d rows", s.airways, s.airway_runs, s.airway_rows);
    if (s.airway_fix_rows_beyond_limit > 0)
        std::printf(" (%d fix rows beyond the fix table's limit will not show on maps)", s.airway_fix_rows_beyond_limit);
    std::printf("\nextras    %6d runway length lines, %d tower views, %d right-hand circuits, %d parking positions\n",
                s.runway_length_lines, s.tower_views, s.right_circuits, s.parking_positions);
    std::printf("cycle     %s\n", s.cycle.empty() ? "(not named by the data)" : s.cycle.c_str());
    return 0;
}

OrbnavCommand command("import-xplane", "convert X-Plane nav/fix/awy/apt data into orb/navdata", Run);
}  // namespace
