// import_xplane.h: converts navigation data in the X-Plane text formats
// (nav.dat 810, fix.dat 600, awy.dat 640, apt.dat 1000; plain or gzip) into
// the module's apts.txt, navs.txt, ints.txt and awys.txt, and the airport
// extras: orb_apts.txt (runway lengths), apt_additional_info.txt (tower
// views, right-hand circuits) and orb/Aircraft/orb_parking.txt.
//
// The mapping choices (true or magnetic, which navaids are kept, how names
// with blanks are joined) are told in docs/navdata.md.
#pragma once

#include <string>

struct ImportRegion {
    bool active = false;                     // false: the whole world
    double south = -90, west = -180;         // degrees
    double north = 90, east = 180;
};

struct ImportOptions {
    std::string source;                      // folder holding the four X-Plane files
    std::string destination;                 // simulator folder: files go to DST/orb/navdata/
    ImportRegion region;
    bool progress = true;                    // progress on stderr for work over a second
};

struct ImportSummary {
    int airports = 0, airports_dropped = 0;  // dropped: beyond the table's limit
    int runway_ends = 0, runway_ends_dropped = 0;  // beyond 20 columns of a line
    int localizers_matched = 0;
    int navaids = 0, navaids_dropped = 0;
    int dme_skipped = 0;                     // DMEs and TACANs, not navaids of the module
    int fixes = 0, fixes_dropped = 0;
    int airways = 0, airway_runs = 0, airway_rows = 0;
    int airway_fix_rows_beyond_limit = 0;    // long-named fixes past the fix table's limit
    int runway_length_lines = 0;             // lines of orb_apts.txt
    int tower_views = 0;                     // airports with a tower view in apt_additional_info.txt
    int right_circuits = 0;                  // RWYnn=RIGHTPATTERN lines
    int parking_positions = 0;               // lines of orb/Aircraft/orb_parking.txt
    std::string cycle;                       // "1310", or empty when the data names none
    bool interrupted_import_undone = false;  // an earlier import killed in its commit was rolled back
};

// Parses "LAT1,LON1,LAT2,LON2"; false with a message on a bad value.
bool ParseRegion(const std::string& text, ImportRegion& region, std::string& error);
// Runs the import. On failure returns false with a one-line message naming
// the file and line; the four files of the destination are then all as they
// were, and no temporary file is left behind.
bool ImportXplane(const ImportOptions& options, ImportSummary& summary, std::string& error);
// The effective and next effective date of an AIRAC cycle as "19-SEP-2013".
bool AiracDates(int year, int cycle, std::string& from, std::string& to);
