// nav_fuzz_entries.h: the entries that feed any bytes to the text parsers of
// the navigation database and the route files. The libFuzzer targets call
// them, and a unit test runs them over a few hostile inputs.
#pragma once

#include "frame/module_state.h"
#include "frame/data_text.h"
#include "navdata/airways.h"
#include "navdata/nav_database.h"
#include "navdata/procedures.h"
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

// The same bytes as every procedure file, read for the airport that the
// first "[...]" names, indexed and not; then the lists and the chosen legs
// of the first procedures read.
inline void Procedures(const uint8_t* data, size_t size, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder / "orb" / "navdata");
    for (const char* name : {"orb/navdata/sids.txt", "orb/navdata/sids_user.txt", "orb/navdata/stars.txt",
                             "orb/navdata/stars_user.txt", "orb/navdata/apps.txt"}) {
        FILE* f = std::fopen((folder / name).c_str(), "wb");
        if (f == nullptr) return;
        std::fwrite(data, 1, size, f);
        std::fclose(f);
    }
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", folder.c_str());
    // The airport: the first section's word, with runways the files may name.
    std::string_view all(reinterpret_cast<const char*>(data), size);
    std::string ident = "KTST";
    size_t open = all.find('[');
    if (open != std::string_view::npos) {
        char buffer[kSectionHeadScan + 1];
        std::string_view word = ProcedureSectionWord(all.substr(open, kSectionHeadScan), buffer, sizeof buffer);
        if (!word.empty()) ident = std::string(word);
    }
    for (AirportDetail* a : {&g_airports.OriginAirport, &g_airports.DestinationAirport}) {
        *a = AirportDetail{};
        a->Latitude = size ? data[0] - 128.0 : 47.0;
        a->Longitude = size > 1 ? data[1] * 1.4 - 180.0 : -122.0;
        a->ElevationFt = 400;
        const char* names[] = {"16L", "34R", "16R", "34L", "03", "21"};
        for (int i = 0; i < 6; ++i) {
            RunwayRecord& r = a->Runways[++a->RunwayCount];
            r = RunwayRecord{};
            SetText(r.Ident, names[i]);
            r.Latitude = a->Latitude + i * 0.01;
            r.Longitude = a->Longitude;
            r.Heading = i * 60.0;
        }
    }
    for (int indexed = 0; indexed < 2; ++indexed) {
        if (indexed == 1) BuildProcedureSectionIndexes();
        LoadSids(ident);
        LoadStars(ident);
        LoadApproaches(ident);
    }
    OriginProcedures& o = g_procedures.origin;
    DestinationProcedures& d = g_procedures.destination;
    PlanSelections& sel = g_plan.context.Selections;
    std::string_view sid = o.SidCount > 0 ? TextOf(o.SidTable[1].Name) : std::string_view("------");
    std::string_view star = d.StarCount > 0 ? TextOf(d.StarTable[1].Name) : std::string_view("------");
    std::string_view approach = d.ApproachCount > 0 ? TextOf(d.ApproachTable[1].ApproachIdent) : std::string_view("------");
    ListSidRunways(sid);
    ListSids("16L", "------");
    ListSidTransitions(sid, "------", 1);
    ListStarRunways(star);
    ListStars("------", "------");
    ListStarTransitions(star, "16L", 0);
    ListApproaches("------");
    ListApproachTransitions(approach);
    SetText(sel.SidName, sid);
    SetText(sel.SidTransition, o.lists.TransitionList.count > 0 ? TextOf(o.lists.TransitionList.rows[1].Name) : "------");
    SetText(sel.DepartureRunway, "16L");
    SetText(sel.StarName, star);
    SetText(sel.StarTransition, d.lists.TransitionList.count > 0 ? TextOf(d.lists.TransitionList.rows[1].Name) : "------");
    SetText(sel.ArrivalRunway, "21");
    SetText(sel.ApproachName, approach);
    SetText(sel.ApproachTransition,
            d.lists.ApproachTransitionList.count > 0 ? TextOf(d.lists.ApproachTransitionList.rows[1].Name) : "------");
    BuildSidLegs();
    BuildStarLegs();
    BuildApproachLegs();
    ApproachTransitionRowOf(approach, TextOf(sel.ApproachTransition));
}

}  // namespace nav_fuzz
