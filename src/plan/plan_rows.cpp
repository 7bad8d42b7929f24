// plan_rows.cpp: the row moves of both plans and the small row tools the
// editing operations share.
//
// Pointer rules of a move, as the edit keeps them:
//   - the next restriction row is data of its row: it follows the row it
//     stands on (a row moved down takes it along; a row removed leaves it on
//     the row that closes up into its place);
//   - the holds follow their rows the same way; a hold on a removed row goes;
//   - the active leg is a place in the sequence, not a row's data: rows put
//     in at the active leg come before the old active waypoint and become the
//     one flown to (the legs page inserts at its first line so), rows put in
//     or taken out before it move it with the rest.
#include "plan/plan_rows.h"

#include "frame/data_text.h"
#include "guidance/holds.h"
#include "navdata/nav_database.h"

// [SECTION] Views
PlanRows ModRows() {
    PlanContext& pc = g_plan.context;
    return {g_plan.ModPlan, pc.ModLastRow, pc.ModActiveLeg, pc.ModNextRestrictionRow, PlanSide::Mod};
}

PlanRows ActiveRows() {
    PlanContext& pc = g_plan.context;
    return {g_plan.ActivePlan, pc.ActiveLastRow, pc.ActiveLeg, pc.NextRestrictionRow, PlanSide::Active};
}

// [SECTION] Moves
bool MakeRoomAt(PlanRows plan, int row) {
    // The table holds rows 0..200; ModPlan's end marker has its own row behind.
    if (plan.last_row >= kPlanLastRowLimit) return false;
    if (row < 0 || row > plan.last_row + 1) return false;
    // Every row from the last down to `row` one place down, all its fields.
    for (int i = plan.last_row; i >= row; --i) plan.rows[i + 1] = plan.rows[i];
    plan.rows[row] = PlanWaypoint{};
    // The pointers of the moved rows follow them.
    if (plan.next_restriction_row >= row && plan.next_restriction_row <= plan.last_row) ++plan.next_restriction_row;
    if (plan.active_leg != kNoActiveLeg && plan.active_leg > row && plan.active_leg <= plan.last_row + 1)
        ++plan.active_leg;
    MoveHoldRows(plan.side == PlanSide::Active, row, +1);
    ++plan.last_row;
    return true;
}

void CloseUpAt(PlanRows plan, int row) {
    if (row < 0 || row > plan.last_row) return;
    // A hold standing at the row goes with it.
    RemoveHoldAtRow(plan.side == PlanSide::Active, row);
    // The rows behind it one place up.
    for (int i = row; i < plan.last_row; ++i) plan.rows[i] = plan.rows[i + 1];
    plan.rows[plan.last_row] = PlanWaypoint{};
    // Pointers of the rows that moved come up with them.
    if (plan.next_restriction_row > row) --plan.next_restriction_row;
    if (plan.active_leg != kNoActiveLeg && plan.active_leg > row) --plan.active_leg;
    MoveHoldRows(plan.side == PlanSide::Active, row + 1, -1);
    --plan.last_row;
    // A pointer left behind the end stands on the new last row.
    if (plan.next_restriction_row > plan.last_row) plan.next_restriction_row = plan.last_row < 0 ? 0 : plan.last_row;
    if (plan.active_leg != kNoActiveLeg && plan.active_leg > plan.last_row)
        plan.active_leg = plan.last_row < 1 ? kNoActiveLeg : plan.last_row;
}

void WriteEndMarker() {
    int last = g_plan.context.ModLastRow;
    if (last + 1 < 0 || last + 1 >= kPlanRows) return;
    MakeMarkerRow(g_plan.ModPlan[last + 1], "******");
}

// [SECTION] Row tools
bool IsPlaceHolderRow(const PlanWaypoint& row) {
    std::string_view ident = TextOf(row.Ident);
    return ident == "DISCO" || ident == "THEN" || ident == "******";
}

void LookUpRowNavaid(PlanWaypoint& row) {
    std::string_view type = TextOf(row.WaypointType);
    if (row.Frequency[0] != 0 || type == "APT" || IsPlaceHolderRow(row)) return;
    int hit = FindNavaid(TextOf(row.Ident), type, row.Latitude);
    if (hit == 0) return;
    SetText(row.Frequency, PoolText(g_navdb.NavaidTable.rows[hit].text));
    if (type == "INT" || type.empty()) SetText(row.WaypointType, g_navdb.NavaidTable.rows[hit].kind == 'V' ? "VOR" : "NDB");
}

void MakeMarkerRow(PlanWaypoint& row, std::string_view ident) {
    row = PlanWaypoint{};
    SetText(row.Ident, ident);
}
