// nav_fuzz_entries.h: the entries that feed any bytes to the text parsers of
// the navigation database and the route files. The libFuzzer targets call
// them, and a unit test runs them over a few hostile inputs.
#pragma once

#include "frame/module_state.h"
#include "frame/data_text.h"
#include "navdata/airways.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace nav_fuzz {

// Calls `line` for each line of the bytes, as the loaders cut them.
template <typename F>
void ForEachLine(const uint8_t* data, size_t size, F line) {
    std::string_view all(reinterpret_cast<const char*>(data), size);
    size_t start = 0;
    while (start <= all.size()) {
        size_t end = all.find('\n', start);
        if (end == std::string_view::npos) end = all.size();
        line(all.substr(start, end - start));
        if (end == all.size()) break;
        start = end + 1;
    }
}

// Bulk lines into every table, then the searches over what was loaded.
inline void BulkLines(const uint8_t* data, size_t size) {
    ResetBulkTables(size);
    BulkColumns columns;
    for (NavTableId table : {NavTableId::Intersections, NavTableId::AirwayFixes, NavTableId::Airports, NavTableId::Navaids}) {
        columns = BulkColumns{};
        ForEachLine(data, size, [&](std::string_view line) {
            if (line.size() >= kBulkLineSize) line = line.substr(0, kBulkLineSize - 1);
            LoadBulkLine(line, table, columns);
        });
    }
    std::string_view first(reinterpret_cast<const char*>(data), size < 12 ? size : 12);
    ResolveName(0, first);
    FindNavaid(first, first.substr(0, first.size() < 3 ? first.size() : 3), size ? data[0] - 128.0 : 0);
    BuildProximitySubset(SubsetId::NavaidsNear600, 10, 10);
}

// The same bytes as each file of a scratch folder, read by the file readers.
inline void Files(const uint8_t* data, size_t size, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder / "orb" / "navdata");
    std::filesystem::create_directories(folder / "orb" / "flightplans");
    for (const char* name : {"orb/navdata/apts.txt", "orb/navdata/navs.txt", "orb/navdata/ints.txt", "orb/navdata/awys.txt",
                             "orb/flightplans/F.RTE"}) {
        FILE* f = std::fopen((folder / name).c_str(), "wb");
        if (f == nullptr) return;
        std::fwrite(data, 1, size, f);
        std::fclose(f);
    }
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", folder.c_str());
    LoadNavDatabase();
    ReadDatabaseCycle();
    std::string ident(reinterpret_cast<const char*>(data), size < 8 ? size : 8);
    size_t blank = ident.find_first_of(" \t\r\n");
    if (blank != std::string::npos) ident.resize(blank);
    LoadAirportDetail(ident, 1);
    for (int mode = 0; mode <= 6; ++mode) SetAirport(ident, mode);
    g_plan.context.ModActiveLeg = 1;
    FetchAirway(ident);
    SetText(g_plan.context.PlanLoadFile, "F.RTE");
    LoadRouteToActive(3);
    LoadRouteToMod("F.RTE", 0);
    BuildStoredPlanTable();
}

// Route lines into each reader.
inline void RouteLines(const uint8_t* data, size_t size) {
    static RouteReadState state;
    for (RouteTarget target : {RouteTarget::Active, RouteTarget::Mod, RouteTarget::Preview}) {
        BeginRouteRead(state, target, true);
        ForEachLine(data, size, [&](std::string_view line) { ReadRouteLine(line, state); });
    }
    g_plan.context.ModLastRow = g_plan.context.ModLastRow > kPlanLastRowLimit ? kPlanLastRowLimit : g_plan.context.ModLastRow;
    BuildRouteRows();
}

}  // namespace nav_fuzz
