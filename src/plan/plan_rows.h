// plan_rows.h: the row moves under every plan edit, shared by the editing
// files of plan/. A plan is a flat table: inserting moves every later row
// down one place and deleting moves them up, and each move carries what
// points at rows: the next restriction row, the active leg and the holds.
// The same moves serve ModPlan (the edit) and ActivePlan (the procedure
// activations that bypass the edit), so a view names the table and its
// pointers.
#pragma once

#include "plan/plan_tables.h"

#include <string_view>

// Which plan a view works on; the holds keep one row for each.
enum class PlanSide { Mod, Active };

// A plan table with the pointers that move with its rows.
struct PlanRows {
    PlanTable& rows;                         // the table
    int& last_row;                           // its last row; -1 = empty
    int& active_leg;                         // row flown to; 999 = none
    int& next_restriction_row;               // row of the next altitude target
    PlanSide side;                           // which hold row moves with it
};

PlanRows ModRows();
PlanRows ActiveRows();

// Room at `row`: rows row..last move one down, with their pointers. False
// (and nothing moved) when the table is full or `row` lies outside 0..last+1.
bool MakeRoomAt(PlanRows plan, int row);
// Row `row` goes (with any hold standing at it) and the rows behind close up.
void CloseUpAt(PlanRows plan, int row);
// Rewrites the end marker of ModPlan in the row behind the last.
void WriteEndMarker();

// True for "DISCO", "THEN" and the end marker: rows that are no waypoint.
bool IsPlaceHolderRow(const PlanWaypoint& row);
// A row without a frequency that isn't an airport takes its navaid's
// frequency (and a VOR or NDB type in place of "INT" or none).
void LookUpRowNavaid(PlanWaypoint& row);
// A row of the given name at (0, 0) with every other field at its default.
void MakeMarkerRow(PlanWaypoint& row, std::string_view ident);
