// holds.cpp: the hold table's records: adding a hold at a plan row, removing
// it, and keeping each record on its row while the plans' rows move. The
// flying of the pattern (HoldStep) and its passing (DeleteHoldsBehind) come
// with the hold pages.
//
// Index:
//   [SECTION] Helpers
//   [SECTION] AddHold and DeleteHold
//   [SECTION] Whole-table operations
//   [SECTION] Row keeping
//   [SECTION] Flight seams
#include "guidance/holds.h"

#include "cdu/keypad.h"
#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "plan/plan_tables.h"

#include <utility>

HoldState g_holds;

// [SECTION] Helpers
namespace {
constexpr const char* kCornerNames[] = {"Fix", "Xwind", "Dwind", "Base", "Final"};

bool RowInPlan(int row, int last_row) { return row >= 0 && row <= last_row && row < kPlanRows; }

// Record `k` leaves the table: the later records move down and every row of
// both plans that named a record by number is renumbered with them.
void RemoveRecord(int k) {
    HoldState& h = g_holds;
    if (k < 1 || k > h.HoldCount) return;
    for (int i = k; i < h.HoldCount; ++i) h.HoldTable[i] = h.HoldTable[i + 1];
    h.HoldTable[h.HoldCount] = HoldRecord{};
    --h.HoldCount;
    for (PlanTable* plan : {&g_plan.ActivePlan, &g_plan.ModPlan})
        for (PlanWaypoint& row : *plan) {
            if (row.HoldIndex == k) row.HoldIndex = 0;
            else if (row.HoldIndex > k) --row.HoldIndex;
        }
    // The record flown was the first: its pattern ends with it.
    if (k == 1) {
        if (h.HoldFlying == 1 && h.HoldCorner > 0) h.HoldExitState = 4;
        h.HoldCorner = 0;
    }
    if (h.HoldCount == 0) h.HoldFlying = 0;
}
}  // namespace

// [SECTION] AddHold and DeleteHold
void AddHold(int row, int from_page) {
    HoldState& h = g_holds;
    const PlanContext& pc = g_plan.context;
    if (h.HoldCount >= kHoldLimit || !RowInPlan(row, pc.ModLastRow)) return;
    const PlanTable& plan = g_plan.ModPlan;
    // 1. A new record at the row, in both plans' terms.
    int k = ++h.HoldCount;
    HoldRecord& r = h.HoldTable[k];
    r = HoldRecord{};
    r.ActiveRow = row;
    r.ModRow = row;
    // 2. The fix.
    r.Ident = {};
    SetText(r.Ident, TextOf(plan[row].Ident));
    r.Corners[0].Latitude = plan[row].Latitude;
    r.Corners[0].Longitude = plan[row].Longitude;
    for (int c = 0; c < 5; ++c) SetText(r.Corners[c].Name, kCornerNames[c]);
    // 3. Inbound on the leg into the row: from the last real waypoint before
    // it, or from the aircraft when the row starts the plan.
    double from_lat = g_sim.latitude, from_lon = g_sim.longitude;
    for (int i = row - 1; i >= 0; --i) {
        std::string_view ident = TextOf(plan[i].Ident);
        if (ident == "DISCO" || ident == "THEN") continue;
        from_lat = plan[i].Latitude;
        from_lon = plan[i].Longitude;
        break;
    }
    double distance = 0, bearing = 0;
    GreatCircle(from_lat, from_lon, r.Corners[0].Latitude, r.Corners[0].Longitude, distance, bearing);
    r.InboundCourse = NormaliseMagnetic(bearing - g_sim.magnetic_variation);
    g_plan.ModPlan[row].HoldIndex = k;
    // 4. The standard pattern: right turns, one-minute legs (the GNS pages'
    // legs are the profile's).
    r.TurnRight = 1;
    r.LegMode = 1;
    r.LegMinutes = from_page == kHoldFromGnsPage ? g_profile.HoldLegMins : 1.0;
    h.HoldFlying = 1;
    // 5. One pass of neighbour exchanges keeps the table in row order; the
    // rows' numbers follow their records.
    for (int i = 1; i < h.HoldCount; ++i) {
        if (h.HoldTable[i].ModRow <= h.HoldTable[i + 1].ModRow) continue;
        std::swap(h.HoldTable[i], h.HoldTable[i + 1]);
        for (PlanTable* table : {&g_plan.ActivePlan, &g_plan.ModPlan})
            for (PlanWaypoint& w : *table) {
                if (w.HoldIndex == i) w.HoldIndex = i + 1;
                else if (w.HoldIndex == i + 1) w.HoldIndex = i;
            }
    }
}

void DeleteHold(int row, int mode) {
    HoldState& h = g_holds;
    PlanContext& pc = g_plan.context;
    // The record at that row of the active plan goes; the ModPlan row of the
    // record loses its mark in any mode.
    int mod_row = row;
    if (mode < 2) {
        for (int k = 1; k <= h.HoldCount; ++k) {
            if (h.HoldTable[k].ActiveRow != row) continue;
            mod_row = h.HoldTable[k].ModRow;
            RemoveRecord(k);
            break;
        }
    }
    if (RowInPlan(mod_row, pc.ModLastRow)) g_plan.ModPlan[mod_row].HoldIndex = 0;
    // A deletion the pilot made waits for EXEC like any change of the plan.
    if (mode > 0 && pc.PlanState == 3) pc.PlanState = 4;
    if (h.HoldCount == 0 && g_smiths.CduPage == cdu_page::kRteHold) g_smiths.CduPage = cdu_page::kRteLegs;
}

// [SECTION] Whole-table operations
void RemoveAllHolds() {
    g_holds.HoldCount = 0;
    g_holds.HoldFlying = 0;
    g_holds.HoldCorner = 0;
    g_holds.HoldTable = {};
    for (PlanTable* plan : {&g_plan.ActivePlan, &g_plan.ModPlan})
        for (PlanWaypoint& row : *plan) row.HoldIndex = 0;
}

void DropUntiedHolds() {
    // A record is tied when the active plan's row still names it; the holds
    // an erased modification added are not.
    const PlanContext& pc = g_plan.context;
    for (int k = g_holds.HoldCount; k >= 1; --k) {
        int row = g_holds.HoldTable[k].ActiveRow;
        bool tied = RowInPlan(row, pc.ActiveLastRow) && g_plan.ActivePlan[row].HoldIndex == k;
        if (!tied) RemoveRecord(k);
    }
    // The modification's rows are gone with it: ModPlan is the active plan again.
    TakeActiveHoldRows();
}

// [SECTION] Row keeping
void MoveHoldRows(bool in_active_plan, int from_row, int delta) {
    for (int k = 1; k <= g_holds.HoldCount; ++k) {
        int& row = in_active_plan ? g_holds.HoldTable[k].ActiveRow : g_holds.HoldTable[k].ModRow;
        if (row >= from_row) row += delta;
    }
}

void RemoveHoldAtRow(bool in_active_plan, int row) {
    for (int k = 1; k <= g_holds.HoldCount; ++k) {
        const HoldRecord& r = g_holds.HoldTable[k];
        if ((in_active_plan ? r.ActiveRow : r.ModRow) != row) continue;
        RemoveRecord(k);
        return;
    }
}

void TakeActiveHoldRows() {
    for (int k = 1; k <= g_holds.HoldCount; ++k) g_holds.HoldTable[k].ModRow = g_holds.HoldTable[k].ActiveRow;
}

void CommitHoldRows() {
    for (int k = 1; k <= g_holds.HoldCount; ++k) g_holds.HoldTable[k].ActiveRow = g_holds.HoldTable[k].ModRow;
}

// [SECTION] Flight seams
void HoldStep() {}
void DeleteHoldsBehind(int) {}
bool IsFirstHoldFix(int row) { return g_holds.HoldCount > 0 && g_holds.HoldTable[1].ActiveRow == row; }

void HoldGiveUp() {
    if (g_holds.HoldCount > 0) g_holds.HoldTable[1].ActiveRow = 0;
    g_holds.HoldFlying = 0;
    g_holds.HoldExitState = 1;
}
