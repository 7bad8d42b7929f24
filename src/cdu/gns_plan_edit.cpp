// gns_plan_edit.cpp: the GNS pages' plan edits. An edit of the active plan
// is made in ModPlan, copied from ActivePlan just before, and committed at
// once through the plan's execution step (which keeps guidance as it flies);
// an edit of the stored plan shown stays in ModPlan.
#include "cdu/gns_plan_edit.h"

#include "cdu/keypad.h"
#include "frame/data_text.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/lnav_state.h"
#include "plan/plan_edit.h"
#include "plan/plan_execute.h"
#include "plan/plan_rows.h"
#include "plan/route_files.h"

#include <cmath>

namespace {
constexpr char kNewPlanFile[] = "NEW FPL";   // the list's entry of an empty plan
constexpr char kEmptyPlanName[] = "NEXT FPL";  // what the loader takes for it
constexpr double kForcedTurnOffset = 60;     // degrees the bug leads the heading in a forced turn

std::string_view TypeOfRecord(std::string_view kind) {
    if (kind == "V") return "VOR";
    if (kind == "N") return "NDB";
    if (kind == "APT") return "APT";
    if (kind == "O") return "WPT";
    if (kind == "WPT" || kind == "INT") return kind;
    return "INT";
}

bool IsProcedureKind(std::string_view kind) {
    return kind == "SID" || kind == "STAR" || kind == "SIDSTAR" || kind == "APPR";
}
}  // namespace

bool GnsOnActivePlan() { return g_gns_page.GnsSubMode == 1; }

const PlanTable& GnsShownPlan() {
    if (GnsOnActivePlan() && g_plan.context.PlanState >= 3) return g_plan.ActivePlan;
    return g_plan.ModPlan;
}

int GnsShownLastRow() {
    const PlanContext& pc = g_plan.context;
    if (GnsOnActivePlan() && pc.PlanState >= 3) return pc.ActiveLastRow;
    return pc.ModLastRow;
}

void GnsBeginEdit() {
    if (GnsOnActivePlan() && g_plan.context.PlanState >= 3) BeginModification();
}

void GnsCommitEdit() {
    PlanContext& pc = g_plan.context;
    WriteEndMarker();
    if (!GnsOnActivePlan()) return;
    // The active plan: committed at once, a change of a flown plan or a new
    // plan once it has a leg.
    if (pc.PlanState >= 3) {
        pc.PlanState = 4;
        PlanExecute();
    } else if (pc.ModLastRow >= 1) {
        if (pc.ModActiveLeg == kNoActiveLeg || pc.ModActiveLeg < 1) pc.ModActiveLeg = 1;
        PlanExecute();
    } else if (pc.PlanState == 0 && pc.ModLastRow >= 0) {
        pc.PlanState = 1;
    }
}

bool GnsInsertRecord(int row, const NavRecord& record, int flyover) {
    PlanContext& pc = g_plan.context;
    if (row < 0) row = 0;
    if (row > pc.ModLastRow + 1) row = pc.ModLastRow + 1;
    if (pc.ModActiveLeg == kNoActiveLeg && pc.ModLastRow >= 0) pc.ModActiveLeg = 1;
    if (!MakeRoomAt(ModRows(), row)) return false;
    PlanWaypoint& w = g_plan.ModPlan[static_cast<size_t>(row)];
    NewPlanRow(w);
    SetText(w.Ident, TextOf(record.Ident));
    w.Latitude = record.Latitude;
    w.Longitude = record.Longitude;
    SetText(w.WaypointType, TypeOfRecord(TextOf(record.Kind)));
    SetText(w.Frequency, TextOf(record.Frequency));
    w.Flyover = flyover;
    w.Altitude = kNoAltitude;
    return true;
}

void GnsDeleteRow(int row) {
    PlanContext& pc = g_plan.context;
    if (row < 0 || row > pc.ModLastRow) return;
    // A broken procedure is not kept as one: every row of its kind loses it.
    std::string_view kind = TextOf(g_plan.ModPlan[static_cast<size_t>(row)].SegmentKind);
    if (IsProcedureKind(kind)) {
        std::array<char, 8> gone{};
        SetText(gone, kind);
        for (int i = 0; i <= pc.ModLastRow; ++i) {
            PlanWaypoint& w = g_plan.ModPlan[static_cast<size_t>(i)];
            std::string_view k = TextOf(w.SegmentKind);
            if (k == "SIDSTAR" && TextOf(gone) != "SIDSTAR")
                SetText(w.SegmentKind, TextOf(gone) == "SID" ? "STAR" : "SID");
            else if (k == TextOf(gone))
                w.SegmentKind = {};
        }
    }
    CloseUpAt(ModRows(), row);
    if (pc.ModLastRow < 0) pc.ModActiveLeg = kNoActiveLeg;
}

void GnsRefreshEnds() {
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    if (pc.ModLastRow < 0) return;
    const PlanWaypoint& first = g_plan.ModPlan[0];
    if (TextOf(first.WaypointType) == "APT" && TextOf(first.Ident) != TextOf(sel.OriginName)) {
        SetText(sel.OriginName, TextOf(first.Ident));
        LoadAirportDetail(TextOf(first.Ident), 1);
        SetText(sel.SidName, kNoSelection);
        SetText(sel.SidTransition, kNoSelection);
        SetText(sel.DepartureRunway, kNoSelection);
    }
    const PlanWaypoint& last = g_plan.ModPlan[static_cast<size_t>(pc.ModLastRow)];
    if (pc.ModLastRow >= 1 && TextOf(last.WaypointType) == "APT" && TextOf(last.Ident) != TextOf(sel.DestinationName)) {
        SetText(sel.DestinationName, TextOf(last.Ident));
        LoadAirportDetail(TextOf(last.Ident), 2);
        SetText(sel.StarName, kNoSelection);
        SetText(sel.StarTransition, kNoSelection);
        SetText(sel.ArrivalRunway, kNoSelection);
        SetText(sel.ApproachName, kNoSelection);
        SetText(sel.ApproachTransition, kNoSelection);
    }
}

int GnsLoadStoredPlan(int entry) {
    PlanContext& pc = g_plan.context;
    if (entry < 1 || entry > g_stored_plans.count || entry > kStoredPlanLimit + 1) return 0;
    std::array<char, kFileNameSize> file = g_stored_plans.entries[static_cast<size_t>(entry)].FileName;
    // The load steps no plan state of a plan that flies: that waits for activation.
    int state_before = pc.PlanState;
    int leg_before = pc.ActiveLeg;
    if (TextOf(file) == kNewPlanFile) {
        LoadRouteToMod(kEmptyPlanName, 0);
        pc.ModLastRow = -1;
        pc.ModActiveLeg = kNoActiveLeg;
    } else {
        LoadRouteToMod(file.data(), 0);
        if (pc.ModLastRow < 0) return 0;
        pc.ModActiveLeg = 1;
    }
    if (state_before >= 3) {
        pc.PlanState = state_before;
        pc.ActiveLeg = leg_before;
    }
    return 1;
}

void GnsActivateStoredPlan() {
    PlanContext& pc = g_plan.context;
    if (pc.ModLastRow < 1) return;
    // Altitudes and actual times start afresh; the plan is new from its first leg.
    for (int i = 0; i <= pc.ModLastRow; ++i) {
        PlanWaypoint& w = g_plan.ModPlan[static_cast<size_t>(i)];
        w.ActualTime = {};
        if (w.Restricted == 0) w.Altitude = kNoAltitude;
    }
    pc.ModActiveLeg = 1;
    pc.PlanState = 1;
    PlanExecute();
    pc.ActiveLeg = 1;
    pc.ActiveWaypointLatitude = g_plan.ActivePlan[1].Latitude;
    pc.ActiveWaypointLongitude = g_plan.ActivePlan[1].Longitude;
}

void GnsDirectTo(const NavRecord& target) {
    PlanContext& pc = g_plan.context;
    if (pc.ActiveLastRow < 0) return;
    // 1. ModPlan from ActivePlan; the target is found in the plan ahead, or
    // put in at the active leg.
    BeginModification();
    int first = pc.ActiveLeg == kNoActiveLeg ? 1 : pc.ActiveLeg;
    int row = -1;
    for (int i = first; i <= pc.ModLastRow; ++i)
        if (TextOf(g_plan.ModPlan[static_cast<size_t>(i)].Ident) == TextOf(target.Ident)) {
            row = i;
            break;
        }
    if (row < 0) {
        row = first > pc.ModLastRow ? pc.ModLastRow + 1 : first;
        if (!GnsInsertRecord(row, target, 0)) return;
    }
    if (row < 1) return;
    // 2. The "DIRECT" row at the present position in front of it, in ActivePlan.
    double altitude = g_plan.ModPlan[static_cast<size_t>(row)].Altitude;
    int last_before = pc.ActiveLastRow;
    DirectToFromPresentPosition(row);
    if (pc.ActiveLastRow == last_before || pc.ActiveLeg < 1 || pc.ActiveLeg >= kPlanRows) return;  // a full plan
    g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLeg)].Altitude = altitude;
    BeginModification();
    LnavDirectExecuted();
    // 3. The turn: a forced side only against the short way.
    double distance = 0;
    double bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, target.Latitude, target.Longitude, distance, bearing);
    double heading = g_sim.heading_magnetic.now;
    int short_side = TurnSideTo(NormaliseMagnetic(bearing - g_sim.magnetic_variation), heading);
    std::string_view option = TextOf(g_lnav.DirectToTurnOption);
    g_lnav.ForcedTurnSide = 0;
    if (option == "RIGHT" && short_side == 1) g_lnav.ForcedTurnSide = 2;
    if (option == "LEFT" && short_side == 2) g_lnav.ForcedTurnSide = 1;
    if (g_lnav.ForcedTurnSide != 0) {
        double bug = heading + (g_lnav.ForcedTurnSide == 2 ? kForcedTurnOffset : -kForcedTurnOffset);
        TriggerKeyEvent(0x101FA, static_cast<UINT32>(NormaliseMagnetic(bug)));
    } else {
        SetText(g_lnav.DirectToTurnOption, "DEFAULT");
    }
}
