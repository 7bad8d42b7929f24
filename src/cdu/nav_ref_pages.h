// nav_ref_pages.h: the Boeing-style CDU pages of reference data and
// look-ups: INIT/REF INDEX (with SAVE FPL and LOAD ATC RTE), IDENT, POS
// (three pages), NAV STATUS and NAV OPTIONS, TEMP NAV SUMMARY, REF NAV DATA,
// FIX INFO and STORED FLIGHT PLANS.
//
// Immediate-mode like the route and performance pages: each function reads
// the latches, acts, then draws. Only STORED FLIGHT PLANS and the index's
// commands change the route. The pages live in nav_ref_pages.cpp,
// ref_nav_data_page.cpp, fix_info_page.cpp and stored_plans_page.cpp.
//
// Index:
//   [SECTION] Pages
//   [SECTION] Shared by these pages
#pragma once

#include "cdu/cdu_screen.h"
#include "navdata/nav_database.h"

#include <cstddef>
#include <string_view>

constexpr int kPosPageCount = 3;               // POS INIT, POS REF, POS SHIFT
constexpr int kNavStatusPageCount = 2;         // NAV STATUS, NAV OPTIONS
constexpr int kStoredPlanNamesPerPage = 6;         // names a STORED FLIGHT PLANS page shows
constexpr int kNearestStations = 4;            // rows of nearest VORs and NDBs on NAV STATUS
constexpr float kNavRefRow6Y = 198;            // row 6 prompts, below the rule

// REF NAV DATA's modes.
constexpr int kRefNavIndex = 1;
constexpr int kRefNavWaypoint = 2;
constexpr int kRefNavNavaid = 3;
constexpr int kRefNavAirport = 4;

// [SECTION] Pages
void InitRefIndexPage(CduScreen& screen);      // CduPage 23
void IdentPage(CduScreen& screen);             // CduPage 25, the start page
void PosPage(CduScreen& screen);               // CduPage 26, pages 1 to 3
void NavStatusPage(CduScreen& screen);         // CduPage 31, pages 1 (NAV STATUS) and 2 (NAV OPTIONS)
void TempNavSummaryPage(CduScreen& screen);    // CduPage 29
void RefNavDataPage(CduScreen& screen);        // CduPage 28
void FixInfoPage(CduScreen& screen);           // CduPage 37
void StoredFlightPlansPage(CduScreen& screen); // CduPage 1

// [SECTION] Shared by these pages
// The pick of SELECT WAYPOINT asked for by REF NAV DATA becomes its fix,
// in the mode its kind gives.
void TakeRefNavPick(const NavRecord& pick);
// A position as degrees and minutes with the tenth, the form a pilot types
// a position in: "N4727.0", "W12218.6".
void FormatDegreesMinutes(double latitude, double longitude, char* lat_text, size_t lat_size, char* lon_text,
                          size_t lon_size);
// "SAVE FPL>": the active plan saved under the entry line's name, or the
// first and last idents; the message tells how it went.
void SaveFlightPlanCommand();
