// route_pages.h: the Boeing-style CDU pages on which a route is built: RTE
// (origin, destination, company route, runway, ACTIVATE, the route's lines),
// and the pages the route keys lead to (RTE LEGS, SELECT WAYPOINT,
// DEPARTURES, ARRIVALS, DEP/ARR INDEX, RTE HOLD), of which only the title
// stands yet.
//
// Each page function runs once per drawn frame: it reads the latches, acts
// on the plan, then draws.
#pragma once

#include "cdu/cdu_screen.h"

constexpr int kRouteLinesPerPage = 5;          // route lines on RTE pages 2 and up

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
