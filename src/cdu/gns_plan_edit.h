// gns_plan_edit.h: the GNS pages' edits of the plan shown. ENTER changes
// the plan at once: an edit of the active plan runs in ModPlan and is
// committed straight away, with no EXEC; an edit of a stored plan stays in
// ModPlan, which holds the stored plan shown.
#pragma once

#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

// True while page 1 shows the active plan (GnsSubMode 1).
bool GnsOnActivePlan();
// The table page 1 shows and its last row: ActivePlan once a plan is active,
// else ModPlan (an active plan being built, or the stored plan shown).
const PlanTable& GnsShownPlan();
int GnsShownLastRow();
// Before an edit: on the active plan, ModPlan becomes a copy of ActivePlan.
void GnsBeginEdit();
// After an edit: on the active plan the edit is committed at once.
void GnsCommitEdit();
// Inserts `record` before ModPlan row `row` (0-based) with the flyover flag.
// False when the plan is full.
bool GnsInsertRecord(int row, const NavRecord& record, int flyover);
// Deletes ModPlan row `row`; a procedure's rows lose their kind first.
void GnsDeleteRow(int row);
// The plan's origin and destination after a change of its first or last row.
void GnsRefreshEnds();
// Stored plan `entry` into ModPlan (1 done, 0 failed).
int GnsLoadStoredPlan(int entry);
// ModPlan becomes the active plan, flown from its first leg.
void GnsActivateStoredPlan();
// Direct-To the candidate: the "DIRECT" row at the present position, the
// target behind it, the rest of the plan after; the turn option applied.
void GnsDirectTo(const NavRecord& target);
