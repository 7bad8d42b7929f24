// airways.cpp: FetchAirway and FindInCandidates.
#include "navdata/airways.h"

#include "frame/module_state.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"
#include "plan/plan_tables.h"

#include <cstdio>

AirwayFetchState g_airway;

bool FetchAirwayLine(std::string_view line, std::string_view name, std::string_view reference_fix, bool& found) {
    std::array<std::string_view, 5> c{};
    SplitColumns(line, c.data(), 5);
    if (c[0] != name) {
        // 4. Another airway after the reference fix ends the reading.
        return !found;
    }
    // The list has room for 250; the airway's further fixes are left out.
    if (g_candidates.count >= kCandidateLimit) return true;
    int row = ++g_candidates.count;
    NavRecord& r = g_candidates.rows[row];
    r = NavRecord{};
    SetText(r.Ident, c[2]);
    SetText(r.Name, c[2]);
    r.Latitude = ReadNumber(c[3]);
    r.Longitude = ReadNumber(c[4]);
    SetText(r.Kind, "I");
    SetText(r.Spare1, name);
    if (!found && !reference_fix.empty() && c[2] == reference_fix) {
        found = true;
        g_airway.AirwayEntryRow = row;
        g_airway.AirwayListCursor = row;
    }
    return true;
}

void FetchAirway(std::string_view name, bool from_active_plan) {
    // 1. Empty list, no entry or exit.
    g_candidates.count = 0;
    g_candidates.selected = 0;
    g_airway.AirwayEntryRow = 0;
    g_airway.AirwayExitRow = 0;
    g_airway.AirwayPageCount = 0;
    if (!name.empty() && name[0] == '#') name.remove_prefix(1);
    // 2. The reference fix.
    const PlanContext& pc = g_plan.context;
    const PlanTable& plan = from_active_plan ? g_plan.ActivePlan : g_plan.ModPlan;
    std::string_view reference_fix;
    if (pc.ModActiveLeg >= 0 && pc.ModActiveLeg < kPlanRows) reference_fix = TextOf(plan[pc.ModActiveLeg].Ident);
    // 3-4. Walk the file.
    char path[MAX_PATH];
    DataPath("\\orb\\navdata\\awys.txt", path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return;  // no file: an empty list, no message
    std::array<char, kAirwayLineSize> line{};
    size_t length = 0;
    bool found = false;
    while (reader.Next(line.data(), line.size(), length))
        if (!FetchAirwayLine(std::string_view(line.data(), length), name, reference_fix, found)) break;
    reader.file.Close();
    if (found) {
        g_airway.AirwayPageCount = (g_candidates.count + kAirwayFixesPerPage - 1) / kAirwayFixesPerPage;
        return;
    }
    // 5. The airway doesn't pass the fix.
    char text[48];
    std::snprintf(text, sizeof text, "%.*s (N/A)", static_cast<int>(name.size() > 30 ? 30 : name.size()), name.data());
    SetText(g_airway.RouteLineText, text);
}

int FindInCandidates(std::string_view ident) {
    for (int row = 1; row <= g_candidates.count && row <= kCandidateLimit; ++row)
        if (TextOf(g_candidates.rows[row].Ident) == ident) return row;
    return 0;
}
