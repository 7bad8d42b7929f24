// route_pages.h: the Boeing-style CDU pages on which a route is built and
// changed: RTE (origin, destination, company route, runway, ACTIVATE, the
// route's VIA/TO lines), RTE LEGS (insertions, deletions, direct-to,
// restrictions, holds, the PLAN map's centre), SELECT WAYPOINT for names with
// several places, DEP/ARR INDEX, DEPARTURES, ARRIVALS and RTE HOLD.
//
// Each page function runs once per drawn frame: it reads the latches, acts
// on the plan through the plan-editing operations, then draws. The pages
// live in route_pages.cpp (RTE), legs_page.cpp, select_waypoint_page.cpp,
// dep_arr_pages.cpp and rte_hold_page.cpp; this header is their one list.
//
// Index:
//   [SECTION] Pages
//   [SECTION] Shared by the route pages
#pragma once

#include "cdu/cdu_screen.h"

#include <string_view>

constexpr int kRouteLinesPerPage = 5;          // route lines on RTE pages 2 and up
constexpr int kLegsLinesPerPage = 5;           // entries (and hold lines) on a LEGS page
constexpr int kSelectCandidatesPerPage = 6;    // candidates on a SELECT WAYPOINT page
constexpr int kProcedureLinesPerPage = 5;      // list lines on DEPARTURES and ARRIVALS

// [SECTION] Pages
void RtePage(CduScreen& screen);               // CduPage 22
void RteLegsPage(CduScreen& screen);           // CduPage 6
void SelectWaypointPage(CduScreen& screen);    // CduPage 9
void DeparturesPage(CduScreen& screen);        // CduPage 10
void ArrivalsPage(CduScreen& screen);          // CduPage 11
void DepArrIndexPage(CduScreen& screen);       // CduPage 24
void RteHoldPage(CduScreen& screen);           // CduPage 39

// The number of RTE pages for the present route lines: page 1 and the lines
// five a page (one line more for a new entry), at least 2.
int RtePageCount();

// [SECTION] Shared by the route pages
// The rows of route line r (1-based) of ModPlan: first..last, the rows
// behind the line's entry fix up to its ToWaypoint. False for a line the
// route doesn't have.
bool RouteLineRows(int line, int& first, int& last);
// Takes route line r out of ModPlan (the SID or STAR name goes with its last
// rows) and rebuilds the lines; 0 when the line has no rows.
int DeleteRouteLine(int line);
// A change of plan data begins: on an active plan the edit starts from it.
void BeginPlanEdit();
// The first ModPlan row at or after `from` whose ident is `name`; 0 none.
int FindPlanRowFrom(std::string_view name, int from);
// A pick of SELECT WAYPOINT as the list's only candidate (row 1).
void KeepOnlyCandidate(int row);
// The LEGS page's direct-to: the row becomes the target, waiting for EXEC;
// a row without a course takes the one from the row before it (magnetic).
void ChooseDirectTarget(int row);
// The magnetic course of the great circle from one place to another (the
// simulator's present variation), as the LEGS lines and a direct use it.
double MagneticLegCourse(double from_latitude, double from_longitude, double to_latitude, double to_longitude);
// The lists DEPARTURES and ARRIVALS show, from the present choices.
void ReloadDepartureLists();
void ReloadArrivalLists();
