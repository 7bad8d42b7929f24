// holds.cpp: the hold table's records: adding a hold at a plan row, removing
// it, keeping each record on its row while the plans' rows move, and flying
// the first record's pattern.
//
// There are no entry types: the aircraft flies to the fix, whatever its way
// in, and from there around a four-corner box built on one and a half legs,
// steering the heading bug at the corner ahead. A corner counts as reached
// within a quarter of that length, or when it lies behind or far away, so
// that the pattern never traps an aircraft that the wind has blown out of it.
//
// Index:
//   [SECTION] Helpers
//   [SECTION] AddHold and DeleteHold
//   [SECTION] Whole-table operations
//   [SECTION] Row keeping
//   [SECTION] Pattern geometry
//   [SECTION] HoldStep
//   [SECTION] Leaving holds: passed, given up, toggled
#include "guidance/holds.h"

#include "cdu/keypad.h"
#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "guidance/lnav_state.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
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

// [SECTION] Pattern geometry
double HoldLegDistanceNow(const HoldRecord& hold) {
    if (hold.LegMode != 1) return hold.LegDistance;
    // The floor is part of the rule: a slow aircraft still gets a 150 kt leg.
    double speed = std::isfinite(g_sim.ground_speed) ? std::max(g_sim.ground_speed, kHoldMinLegSpeed) : kHoldMinLegSpeed;
    return speed / 60.0 * hold.LegMinutes;
}

void BuildHoldCorners(double fix_lat, double fix_lon, double inbound_true, int turn_right, double leg_nm,
                      std::array<HoldCornerPoint, 5>& corners) {
    double pattern = kHoldPatternLegs * leg_nm;
    double turn = turn_right == 1 ? 90.0 : -90.0;
    // The fix, then past it along the inbound course to the first turn.
    corners[0].Latitude = fix_lat;
    corners[0].Longitude = fix_lon;
    ProjectPoint(fix_lat, fix_lon, inbound_true, 0.2 * pattern, corners[1].Latitude, corners[1].Longitude);
    // Across, back along the outbound side, and across again to the inbound line.
    double b = ModuloPositive(inbound_true + turn, 360.0);
    ProjectPoint(corners[1].Latitude, corners[1].Longitude, b, 0.5 * pattern, corners[2].Latitude,
                 corners[2].Longitude);
    b = ModuloPositive(b + turn, 360.0);
    ProjectPoint(corners[2].Latitude, corners[2].Longitude, b, 0.75 * pattern, corners[3].Latitude,
                 corners[3].Longitude);
    b = ModuloPositive(b + turn, 360.0);
    ProjectPoint(corners[3].Latitude, corners[3].Longitude, b, 0.5 * pattern, corners[4].Latitude,
                 corners[4].Longitude);
    for (int c = 0; c <= kHoldCorners; ++c) SetText(corners[c].Name, kCornerNames[c]);
}

namespace {
// Distance and bearing to the corner steered at, and the corner-to-corner
// leg that leads to it. Returns the distance that decides whether the corner
// is reached: 0 when the aircraft is out of the pattern or past the corner.
double MeasureCorner(HoldState& h, const HoldRecord& r) {
    const HoldCornerPoint& corner = r.Corners[static_cast<size_t>(h.HoldCorner)];
    GreatCircle(g_sim.latitude, g_sim.longitude, corner.Latitude, corner.Longitude, h.DistToCorner, h.BearingToCorner);
    double d = h.DistToCorner;
    if (h.HoldCorner < 1) return d;
    const HoldCornerPoint& previous = r.Corners[static_cast<size_t>(h.HoldPrevCorner)];
    GreatCircle(previous.Latitude, previous.Longitude, corner.Latitude, corner.Longitude, h.CornerLeg, h.CornerCourse);
    if (d > kHoldOutOfPatternLegs * h.CornerLeg) return 0;  // blown out of the pattern
    if (AngleBetween(h.BearingToCorner, h.CornerCourse) > 90) return 0;  // the corner lies behind
    return d;
}
}  // namespace

// [SECTION] HoldStep
void HoldStep() {
    HoldState& h = g_holds;
    const SimState& s = g_sim;
    const PlanContext& pc = g_plan.context;
    if (h.HoldCount < 1 || h.HoldTable[1].ActiveRow <= 0) return;
    HoldRecord& r = h.HoldTable[1];
    // A hold that only a modification awaiting EXEC carries isn't flown yet.
    if (r.ActiveRow > pc.ActiveLastRow || r.ActiveRow >= kPlanRows ||
        g_plan.ActivePlan[static_cast<size_t>(r.ActiveRow)].HoldIndex != 1)
        return;
    // A row out of step with its record is left alone rather than read.
    if (h.HoldCorner < 0 || h.HoldCorner > kHoldCorners) h.HoldCorner = 0;

    // 1. The inbound course, true.
    double course = ModuloPositive(r.InboundCourse + s.magnetic_variation, 360.0);
    // 2. A timed leg follows the ground speed.
    if (r.LegMode == 1) r.LegDistance = HoldLegDistanceNow(r);
    // 3. The pattern is built on one and a half legs.
    double pattern = kHoldPatternLegs * r.LegDistance;
    if (!(pattern > 0) || !std::isfinite(pattern) || !std::isfinite(course)) return;
    // 4. The corners around the fix; the fix is the plan's row.
    const PlanWaypoint& fix = g_plan.ActivePlan[static_cast<size_t>(r.ActiveRow)];
    double fix_lat = fix.Latitude, fix_lon = fix.Longitude;
    std::array<HoldCornerPoint, 5> corners{};
    BuildHoldCorners(fix_lat, fix_lon, course, r.TurnRight, r.LegDistance, corners);
    // 5. The rest only with LNAV on: nothing stored, nothing flown.
    if (g_lnav.LnavOn != 1) return;
    // 6., 7. The corners kept; where the corner steered at lies.
    r.Corners = corners;
    if (h.HoldCorner > 0 && (h.HoldPrevCorner < 1 || h.HoldPrevCorner > kHoldCorners))
        h.HoldPrevCorner = h.HoldCorner == 1 ? kHoldCorners : h.HoldCorner - 1;
    double d = MeasureCorner(h, r);
    // 8., 9. A corner reached, or the fix within the sequencing distance.
    bool reached = d <= kHoldReachFraction * pattern;
    bool near_fix = h.HoldCorner == 0 && h.DistToCorner <= g_lnav.ChangeDistance;
    if (reached || near_fix) {
        // "AUTO" leaves at corner 1, once past the fix; leaving (3) at any corner.
        if (h.HoldExitState == 2 && h.HoldCorner == 1) h.HoldExitState = 3;
        if (h.HoldExitState == 3) {
            h.HoldFlying = 0;
            DeleteHold(r.ActiveRow, 0);
            // No advance: a hold behind this one starts at its own fix, as a
            // new hold does ("MANUAL" until its entry).
            h.HoldCorner = 0;
            h.HoldExitState = 1;
            return;
        }
        // 10. Entry: the pattern is flown from here on.
        if (h.HoldCorner == 0) {
            h.HoldFlying = 1;
            h.HoldExitState = 0;
            h.LastHoldHeading = kHoldNothingSent;
        }
        // 11. On to the next corner, 4 back to 1.
        h.HoldCorner = h.HoldCorner % kHoldCorners + 1;
        h.HoldPrevCorner = h.HoldCorner == 1 ? kHoldCorners : h.HoldCorner - 1;
        MeasureCorner(h, r);
    }
    // 12. The magnetic heading to the corner.
    h.HoldHeading = h.BearingToCorner - s.magnetic_variation;
    if (h.HoldHeading < 0.5) h.HoldHeading += 360.0;
    // 13. The bug moves only when the whole degree changes.
    if (h.HoldFlying != 1 || h.HoldCorner < 1 || !std::isfinite(h.HoldHeading)) return;
    int whole = static_cast<int>(h.HoldHeading);
    if (whole != static_cast<int>(h.LastHoldHeading)) {
        TriggerKeyEvent(0x101FA, static_cast<UINT32>(whole));
        h.LastHoldHeading = h.HoldHeading;
    }
}

// [SECTION] Leaving holds: passed, given up, toggled
void DeleteHoldsBehind(int active_leg) {
    if (active_leg == kNoActiveLeg) return;
    // Each deletion moves the later records down: look again from the first.
    int k = 1;
    while (k <= g_holds.HoldCount) {
        int row = g_holds.HoldTable[static_cast<size_t>(k)].ActiveRow;
        if (row < active_leg) {
            DeleteHold(row, 0);
            k = 1;
        } else {
            ++k;
        }
    }
}

bool IsFirstHoldFix(int row) { return g_holds.HoldCount > 0 && g_holds.HoldTable[1].ActiveRow == row; }

void HoldGiveUp() {
    if (g_holds.HoldCount > 0) g_holds.HoldTable[1].ActiveRow = 0;
    g_holds.HoldFlying = 0;
    g_holds.HoldExitState = 1;
}

void ToggleHold() {
    HoldState& h = g_holds;
    PlanContext& pc = g_plan.context;
    if (g_lnav.LnavOn != 1) return;
    if (h.HoldFlying == 0) {
        // A hold at the active waypoint when there is none; it is the plan
        // being flown, so the active row carries it at once.
        if (h.HoldCount == 0) {
            int row = pc.ActiveLeg;
            if (row == kNoActiveLeg || row < 0 || row > pc.ActiveLastRow || row > pc.ModLastRow) return;
            AddHold(row, kHoldFromGnsPage);
            if (h.HoldCount == 0) return;
            g_plan.ActivePlan[static_cast<size_t>(row)].HoldIndex = 1;
        }
        h.HoldFlying = 1;
    } else {
        // LNAV flies the plan again at once; the record goes at the next corner.
        h.HoldExitState = 3;
        h.HoldFlying = 0;
    }
}
