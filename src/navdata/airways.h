// airways.h: an airway brought into CandidateList on demand. Airways aren't
// held in memory as a network: awys.txt is read again from the top when the
// pilot enters one, and only its fixes are kept.
#pragma once

#include <array>
#include <string_view>

constexpr size_t kAirwayLineSize = 200;      // the fetch reads short lines
constexpr int kAirwayFixesPerPage = 16;      // fixes a page of the airway list

struct AirwayFetchState {
    int AirwayEntryRow = 0;                  // row of CandidateList holding the plan's fix; 0 = not found
    int AirwayExitRow = 0;                   // row chosen by the pilot; 0 = none
    int AirwayPageCount = 0;                 // pages of 16 fixes, rounded up
    int AirwayListCursor = 0;                // row shown first
    std::array<char, 48> RouteLineText{};    // "J5 (N/A)" when the airway misses the fix
};

extern AirwayFetchState g_airway;

// Fills CandidateList with the airway's fixes and finds the reference fix:
// the ident of row ModActiveLeg of ModPlan (or of ActivePlan when the route
// page shows the active plan).
void FetchAirway(std::string_view name, bool from_active_plan = false);
// Row of CandidateList with this ident, or 0.
int FindInCandidates(std::string_view ident);
// The fetch's reading of one line (for tests and the fuzz target): returns
// false when the reading ends at this line.
bool FetchAirwayLine(std::string_view line, std::string_view name, std::string_view reference_fix, bool& found);
