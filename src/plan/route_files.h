// route_files.h: routes saved and exchanged as small .RTE text files in the
// flight plan folder; the list of stored plans the plan pages show without
// touching the disk; the loads into the active, modified and preview plans.
//
// A route file: optional header lines (Key=Value), "[FlightPlan]", then one
// line a row: Ident Latitude Longitude Type Frequency [Via [SegmentKind]].
#pragma once

#include "plan/plan_tables.h"

#include <array>
#include <string_view>
#include <vector>

constexpr int kStoredPlanLimit = 300;        // plans listed from the folder
constexpr size_t kRouteLineSize = 149;       // a route file line is read into this many characters
constexpr int kStoredPlansPerPage = 8;       // plans a list page shows
constexpr double kNearOriginNm = 7;          // within this of row 0 the departure side is active
constexpr int kFileNameSize = 260;

// A row as a stored plan keeps it: what a route file carries.
struct StoredPlanRow {
    std::array<char, 24> Ident{};
    double Latitude = 0;                     // degrees
    double Longitude = 0;
    std::array<char, 8> WaypointType{};
    std::array<char, 12> Frequency{};
    std::array<char, 16> Via{};
    std::array<char, 8> SegmentKind{};
};

struct StoredPlanEntry {
    std::array<char, kFileNameSize> FileName{};
    std::array<char, 24> Origin{};           // ident of row 0 ("NEXT FPL" for the new-plan entry)
    std::array<char, 24> Destination{};      // ident of the last row
    int LastRow = -1;
    int first_row = 0;                       // index of row 0 in StoredPlanTable::rows
};

struct StoredPlanTable {
    std::array<StoredPlanEntry, kStoredPlanLimit + 2> entries{};  // rows 1..count, the last "NEW FPL"
    int count = 0;                           // entries, "NEW FPL" included; 0 until built
    std::vector<StoredPlanRow> rows;         // every stored plan's rows, one after the other
    int page_count = 0;                      // list pages of 8
    int page_index = 0;                      // page shown, from 1
};

extern StoredPlanTable g_stored_plans;

// Fills `out` with the flight plan folder, ending in "\".
void FlightPlanFolder(char* out, size_t size);
// Writes ActivePlan to `name` in the flight plan folder. 1 written, 0 not.
int SaveRouteFile(const char* name);
// The engine tick loads the file at the end of its next run (mode 1 or 3).
void RequestRouteLoad(const char* file_name, int mode);
// The tick's loader: PlanLoadFile into ActivePlan and ModPlan, then executed.
void LoadRouteToActive(int mode);
// Into ModPlan only; keep_header 1 reads the rows alone.
void LoadRouteToMod(const char* file_name, int keep_header);
// Into PreviewPlan only.
void LoadRoutePreview(const char* file_name);
// Reads the folder into StoredPlanTable.
void BuildStoredPlanTable();
// Row `row` (0..LastRow) of stored plan `entry`.
const StoredPlanRow* StoredRow(int entry, int row);

// [SECTION] The line reader, for tests and the fuzz target
enum class RouteTarget { Active, Mod, Preview };

struct RouteReadState {
    RouteTarget target = RouteTarget::Preview;
    bool take_header = true;                 // header lines are applied
    bool in_rows = false;                    // "[FlightPlan]" was met
    bool stop = false;                       // the row limit was reached
    // Columns 1 to 4 keep the line before's value when a line is short.
    std::array<char, kRouteLineSize + 1> c1{}, c2{}, c3{}, c4{};
};

// Prepares the target's table for a read (last row -1).
void BeginRouteRead(RouteReadState& state, RouteTarget target, bool take_header);
// Reads one line of a route file into the target.
void ReadRouteLine(std::string_view line, RouteReadState& state);
