// plan_edit.h: every change to a plan's rows: waypoints inserted from the
// candidate list, "DISCO" and "THEN" rows, deletions, restrictions, airways
// and the procedures' legs. The CDU pages call these; they work on ModPlan
// unless they say otherwise, and EXEC (PlanExecute) commits the result.
//
// The rows have no links: inserting moves every later row down a place, and
// each move carries along what points at rows: the next restriction row, the
// active leg of the modification and the holds' rows.
#pragma once

#include <string_view>

// [SECTION] Rows from the candidate list
// Inserts row `candidate_row` of CandidateList before ModPlan row `row`, with
// a "DISCO" behind it unless one stands there or the row is appended.
void InsertCandidate(int row, int candidate_row);
// The same without the "DISCO" (rows above 0 and below ModLastRow only).
void InsertPlain(int row, int candidate_row);
// InsertCandidate of the list's row 1; `row` 0 means 1.
void InsertFirstCandidate(int row);

// [SECTION] "THEN" rows and deletions
// A "THEN" row at `row`, its Via the airway being entered.
void InsertThen(int row);
// Takes every "THEN" row out of ModPlan.
void RemoveThenRows();
// Removes a row; an interior row stays as a "DISCO" unless `close_up`.
void DeleteRow(int row, int close_up);
// Removes rows target .. source - 1 at once (an entry naming a row further down).
void CloseRowsTo(int target, int source);

// [SECTION] Restrictions
// Applies the entry line's "speed/altitude" (FL350, 350, /FL350, 250/10000)
// to ModPlan row `row`; "INVALID ENTRY" on the message line when it isn't one.
void EnterRestriction(int row);

// [SECTION] Direct-To
// The legs pages' form: no row moves; ModPlan row `row` becomes the leg
// flown to at EXEC, and without an inbound course of its own it takes the
// magnetic course from the row before. EXEC then starts LNAV's intercept
// from the present position.
void DirectToRow(int row);
// The GNS pages' form: ActivePlan is built anew from ModPlan with a "DIRECT"
// row at the aircraft's position in front of ModPlan row `target`.
void DirectToFromPresentPosition(int target);

// [SECTION] Airways and procedures
// Expands the airway in CandidateList from its entry row to its exit row
// behind ModActiveLeg.
void InsertAirway();
// SelectedLegs into ModPlan.
void InsertSid();
void InsertStar();
void InsertApproach(int with_discontinuity);
// The DEPARTURES and ARRIVALS keys: the lists, the legs and the insertion in one chain.
void ChooseSid(int row, int keep_name);
void ChooseStar(int row, int keep_name);
void ChooseDepartureRunway(int row);
void ChooseArrivalRunway(int row);
// The same straight into ActivePlan.
void ActivateSid();
void ActivateStar();
void ActivateApproach();

// [SECTION] The route page's lines
// The ModPlan row of a line of the route page (the row whose Ident is the
// line's ToWaypoint); the last row when there is none, or when the match is
// row 0.
int RowOfRouteLine(int route_row, int first);
