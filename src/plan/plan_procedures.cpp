// plan_procedures.cpp: the terminal procedures' legs (SelectedLegs) put into
// a plan: the SID at the start, the STAR and the approach at the end, and the
// DEPARTURES and ARRIVALS keys that choose them. The same insertions serve
// ModPlan (the edit, awaiting EXEC) and ActivePlan (the activations that
// change the flown plan at once).
//
// Index:
//   [SECTION] Helpers
//   [SECTION] SID
//   [SECTION] STAR
//   [SECTION] Approach
//   [SECTION] DEPARTURES and ARRIVALS keys
//   [SECTION] Activations
#include "plan/plan_edit.h"

#include "cdu/keypad.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "navdata/procedures.h"
#include "plan/plan_execute.h"
#include "plan/plan_rows.h"
#include "plan/plan_tables.h"
#include "plan/sim_plans.h"

// [SECTION] Helpers
namespace {
constexpr int kSimGenerationWithSimConnect = 10;
constexpr double kIafSpeed = 190;            // knots at an initial approach fix
constexpr double kFafSpeed = 170;            // knots at the final approach fix
constexpr double kApproachSpeed = 180;       // knots at any other approach row
constexpr int kLowestApproachAltitude = 100; // feet: a smaller restriction is none
constexpr int kSpeedOnly = 2;                // Restricted of an approach row with a speed only
constexpr int kSpeedAndAltitude = 3;         // Restricted of an approach row with both

bool KindIs(const PlanWaypoint& row, std::string_view kind) { return TextOf(row.SegmentKind) == kind; }

// A procedure's leg as a plan row: fix, position, flyover, kind; the rest defaults.
void FillFromLeg(PlanWaypoint& row, const SelectedLeg& leg, std::string_view kind) {
    row = PlanWaypoint{};
    SetText(row.Ident, TextOf(leg.Fix));
    row.Latitude = leg.Latitude;
    row.Longitude = leg.Longitude;
    row.Flyover = leg.Flyover;
    SetText(row.Via, TextOf(leg.Via));
    SetText(row.SegmentKind, kind);
}

// The destination airport as the plan's last row.
void AppendDestination(PlanRows plan) {
    const AirportDetail& dest = g_airports.DestinationAirport;
    if (dest.Ident[0] == 0) return;
    int at = plan.last_row + 1;
    if (!MakeRoomAt(plan, at)) return;
    PlanWaypoint& row = plan.rows[at];
    SetText(row.Ident, TextOf(dest.Ident));
    row.Latitude = dest.Latitude;
    row.Longitude = dest.Longitude;
    SetText(row.WaypointType, "APT");
}

// Two neighbours of one name are one row: the first goes. Where a SID's
// last fix is the STAR's first, the row that stays joins them ("SIDSTAR").
void Compress(PlanRows plan) {
    for (int i = 2; i < plan.last_row; ++i) {
        if (TextOf(plan.rows[i].Ident) != TextOf(plan.rows[i + 1].Ident)) continue;
        bool joins = (KindIs(plan.rows[i], "STAR") && KindIs(plan.rows[i + 1], "SID")) ||
                     (KindIs(plan.rows[i], "SID") && KindIs(plan.rows[i + 1], "STAR"));
        CloseUpAt(plan, i);
        if (joins) SetText(plan.rows[i].SegmentKind, "SIDSTAR");
        --i;  // the row that stayed may match the next one too
    }
}

void FinishPlan(PlanRows plan) {
    if (plan.side == PlanSide::Mod) {
        WriteEndMarker();
        StepAfterPlanChange();
    }
}

// The plan's first leg may have been taken off: the active leg stays on a row.
void KeepActiveLegOnPlan(PlanRows plan) {
    if (plan.active_leg != kNoActiveLeg && plan.active_leg > plan.last_row)
        plan.active_leg = plan.last_row >= 1 ? plan.last_row : kNoActiveLeg;
}
}  // namespace

// [SECTION] SID
static void InsertSidInto(PlanRows plan) {
    PlanContext& pc = g_plan.context;
    const AirportDetail& origin = g_airports.OriginAirport;
    const SelectedLegTable& legs = g_selected_legs.Sid;
    // 1. A plan not yet flown is only its origin; the origin row is the airport.
    if (pc.ActiveLeg == kNoActiveLeg || plan.last_row < 0) {
        while (plan.last_row > 0) CloseUpAt(plan, plan.last_row);
        plan.last_row = 0;
    }
    if (TextOf(plan.rows[0].WaypointType) != "APT")
        SetAirport(TextOf(origin.Ident), plan.side == PlanSide::Mod ? 5 : 3);
    // 2. The old SID's rows go from the start.
    while (plan.last_row >= 1 && KindIs(plan.rows[1], "SID")) CloseUpAt(plan, 1);
    // 3. The first leg is the SID's; LNAV's intercept is over.
    if (plan.last_row >= 1) {
        pc.ActiveWaypointLatitude = plan.rows[1].Latitude;
        pc.ActiveWaypointLongitude = plan.rows[1].Longitude;
    }
    g_lnav.InterceptActive = 0;
    plan.active_leg = 1;
    // 4. Row 0 is the origin airport.
    PlanWaypoint& first = plan.rows[0];
    SetText(first.Ident, TextOf(origin.Ident));
    first.Latitude = origin.Latitude;
    first.Longitude = origin.Longitude;
    SetText(first.WaypointType, "APT");
    first.Flyover = 0;
    first.Frequency = {};
    // 5.-6. The legs from row 1 on, in front of the enroute rows.
    for (int i = 1; i <= legs.count && i <= kSelectedLegLimit; ++i) {
        if (!MakeRoomAt(plan, i)) break;  // a full plan takes no more legs
        FillFromLeg(plan.rows[i], legs.rows[i], "SID");
        LookUpRowNavaid(plan.rows[i]);
    }
    // 7. One row where the SID ends on the enroute's or the STAR's first fix.
    Compress(plan);
    KeepActiveLegOnPlan(plan);
}

void InsertSid() {
    InsertSidInto(ModRows());
    FinishPlan(ModRows());
    // 8. The simulator's GPS follows the plan when the panel asks for it.
    if (g_config.synchfplanwithfsgps == 1 && g_module.SimGeneration == kSimGenerationWithSimConnect)
        SendPlanToSimulator();
}

// [SECTION] STAR
static void InsertStarInto(PlanRows plan) {
    const SelectedLegTable& legs = g_selected_legs.Star;
    // 1. The old arrival: from the end back over STAR and approach rows and
    // airports (with the "DISCO" in front of an approach), never into the
    // legs already flown.
    int floor = plan.active_leg == kNoActiveLeg ? 0 : plan.active_leg - 1;
    if (floor < 0) floor = 0;
    int start = plan.last_row;
    while (start > floor) {
        const PlanWaypoint& row = plan.rows[start];
        bool arrival = KindIs(row, "STAR") || KindIs(row, "APPR") || TextOf(row.WaypointType) == "APT";
        bool approach_gap = TextOf(row.Ident) == "DISCO" && start < plan.last_row && KindIs(plan.rows[start + 1], "APPR");
        if (!arrival && !approach_gap) break;
        --start;
    }
    // A SID that ended where the old STAR began is a SID again.
    if (start >= 1 && KindIs(plan.rows[start], "SIDSTAR")) SetText(plan.rows[start].SegmentKind, "SID");
    // 2. Of the old arrival only an approach stays (with its "DISCO"): the
    // STAR's rows and the airport rows go.
    for (int i = plan.last_row; i > start; --i) {
        const PlanWaypoint& row = plan.rows[i];
        bool approach_gap = TextOf(row.Ident) == "DISCO" && i < plan.last_row && KindIs(plan.rows[i + 1], "APPR");
        if (KindIs(row, "APPR") || approach_gap) continue;
        CloseUpAt(plan, i);
    }
    // 3. The STAR's legs in front of the approach.
    int at = start + 1;
    for (int i = 1; i <= legs.count && i <= kSelectedLegLimit; ++i, ++at) {
        if (!MakeRoomAt(plan, at)) break;
        FillFromLeg(plan.rows[at], legs.rows[i], "STAR");
        LookUpRowNavaid(plan.rows[at]);
    }
    // 4. The destination last; 5. one row where the SID meets the STAR.
    AppendDestination(plan);
    Compress(plan);
    KeepActiveLegOnPlan(plan);
}

void InsertStar() {
    InsertStarInto(ModRows());
    FinishPlan(ModRows());
}

// [SECTION] Approach
static void InsertApproachInto(PlanRows plan, int with_discontinuity) {
    const SelectedLegTable& legs = g_selected_legs.Approach;
    std::string_view destination = TextOf(g_airports.DestinationAirport.Ident);
    // 1. The end of the enroute part: back over the old approach and the
    // destination; a "DISCO" left at the end goes too.
    int end = plan.last_row;
    if (end >= 1 && TextOf(plan.rows[end].WaypointType) == "APT" && !KindIs(plan.rows[end], "APPR")) --end;
    while (end >= 1 && KindIs(plan.rows[end], "APPR")) --end;
    if (end >= 1 && TextOf(plan.rows[end].Ident) == "DISCO") --end;
    while (plan.last_row > end && plan.last_row >= 0) CloseUpAt(plan, plan.last_row);
    // 2. A gap in front of the approach when asked for.
    int gap_row = -1;
    if (with_discontinuity == 1 && plan.last_row >= 1 && TextOf(plan.rows[plan.last_row].Ident) != "DISCO") {
        if (MakeRoomAt(plan, plan.last_row + 1)) {
            gap_row = plan.last_row;
            MakeMarkerRow(plan.rows[gap_row], "DISCO");
        }
    }
    // 3. The legs up to the missed approach point, which is not flown as part of the plan.
    bool first_leg = true;
    for (int i = 1; i <= legs.count && i <= kSelectedLegLimit; ++i) {
        const SelectedLeg& leg = legs.rows[i];
        if (TextOf(leg.Marker) == "MAP") break;
        int at = plan.last_row + 1;
        if (!MakeRoomAt(plan, at)) break;
        PlanWaypoint& row = plan.rows[at];
        FillFromLeg(row, leg, "APPR");
        SetText(row.LegMarker, TextOf(leg.Marker));
        // 4. Speeds by the marker.
        std::string_view marker = TextOf(leg.Marker);
        row.Speed = marker == "IAF" ? kIafSpeed : marker == "FAF" ? kFafSpeed : kApproachSpeed;
        row.Restricted = kSpeedOnly;
        // 5. The altitude; a small number is none.
        int altitude = ReadInteger(TextOf(leg.Restriction));
        if (altitude < kLowestApproachAltitude) {
            row.Altitude = kNoAltitude;
            row.Restricted = 0;
        } else {
            row.Altitude = altitude;
            row.Restricted = kSpeedAndAltitude;
        }
        // 6. The gap takes the first row's place and targets.
        if (first_leg && gap_row >= 0) {
            PlanWaypoint& gap = plan.rows[gap_row];
            gap.Latitude = row.Latitude;
            gap.Longitude = row.Longitude;
            gap.Speed = row.Speed;
            gap.Altitude = row.Altitude;
            gap.Restricted = row.Restricted;
        }
        first_leg = false;
        // 7. Navaids; a row at the airport is the airport.
        if (!destination.empty() && TextOf(row.Ident) == destination) SetText(row.WaypointType, "APT");
        else LookUpRowNavaid(row);
    }
    // 8. The destination last.
    AppendDestination(plan);
    KeepActiveLegOnPlan(plan);
}

void InsertApproach(int with_discontinuity) {
    InsertApproachInto(ModRows(), with_discontinuity);
    FinishPlan(ModRows());
}

// [SECTION] DEPARTURES and ARRIVALS keys
void ChooseSid(int row, int keep_name) {
    PlanSelections& sel = g_plan.context.Selections;
    OriginProcedures& origin = g_procedures.origin;
    // 1. The SID of the line, unless the one chosen is built again.
    if (keep_name != 1) {
        if (row < 1 || row > origin.lists.ProcedureNameList.count) return;
        SetText(sel.SidName, TextOf(origin.lists.ProcedureNameList.rows[row].Name));
    }
    // 2.-4. Its transitions, its table row, its runways.
    ListSidTransitions(TextOf(sel.SidName), TextOf(sel.DepartureRunway), 1);
    for (int i = 1; i <= origin.SidCount && i <= kSidLimit; ++i)
        if (TextOf(origin.SidTable[i].Name) == TextOf(sel.SidName)) {
            origin.SelectedSidRow = i;
            break;
        }
    ListSidRunways(TextOf(sel.SidName));
    // 5. What ERASE comes back to.
    sel.SavedDepartureRunway = sel.DepartureRunway;
    sel.SavedSidTransition = sel.SidTransition;
    // 6.-7. The legs into the plan.
    BuildSidLegs();
    InsertSid();
    BuildRouteRows();
    StepAfterPlanChange();
}

void ChooseStar(int row, int keep_name) {
    PlanSelections& sel = g_plan.context.Selections;
    DestinationProcedures& dest = g_procedures.destination;
    // 1. The STAR of the line, unless the one chosen is built again.
    if (keep_name != 1) {
        if (row < 1 || row > dest.lists.ProcedureNameList.count) return;
        SetText(sel.StarName, TextOf(dest.lists.ProcedureNameList.rows[row].Name));
    }
    // 2.-4. Its transitions, its table row, its runways.
    ListStarTransitions(TextOf(sel.StarName), TextOf(sel.ArrivalRunway), 1);
    for (int i = 1; i <= dest.StarCount && i <= kStarLimit; ++i)
        if (TextOf(dest.StarTable[i].Name) == TextOf(sel.StarName)) {
            dest.SelectedStarRow = i;
            break;
        }
    ListStarRunways(TextOf(sel.StarName));
    // A STAR for one runway only chooses it.
    if (dest.lists.RunwayList.count == 1 && TextOf(sel.ArrivalRunway) == kNoSelection)
        SetText(sel.ArrivalRunway, TextOf(dest.lists.RunwayList.rows[1].Name));
    // 5. What ERASE comes back to.
    sel.SavedArrivalRunway = sel.ArrivalRunway;
    sel.SavedStarTransition = sel.StarTransition;
    // 6.-7. The legs into the plan.
    BuildStarLegs();
    InsertStar();
    BuildRouteRows();
    StepAfterPlanChange();
}

void ChooseDepartureRunway(int row) {
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    const auto& runways = g_procedures.origin.lists.RunwayList;
    if (row < 1 || row > runways.count) return;
    // 1. The runway, chosen; the page lists again from its first page.
    SetText(sel.DepartureRunway, TextOf(runways.rows[row].Name));
    g_smiths.DepartureRunwayChosen = 1;
    sel.SavedDepartureRunway = sel.DepartureRunway;
    g_smiths.departures.page = 1;
    // 2. A SID already chosen is built again for this runway.
    if (TextOf(sel.SidName) != kNoSelection) ChooseSid(g_procedures.origin.SelectedSidRow, 1);
    // 3.-4. The SIDs of the runway; an active plan is modified.
    ListSids(TextOf(sel.DepartureRunway), kNoSelection);
    if (pc.PlanState == 3) PlanStateStep();
}

void ChooseArrivalRunway(int row) {
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    const auto& runways = g_procedures.destination.lists.RunwayList;
    if (row < 1 || row > runways.count) return;
    // 1. The runway, chosen; the page lists again from its first page.
    SetText(sel.ArrivalRunway, TextOf(runways.rows[row].Name));
    g_smiths.ArrivalRunwayChosen = 1;
    sel.SavedArrivalRunway = sel.ArrivalRunway;
    g_smiths.arrivals.page = 1;
    // 2. A STAR already chosen is built again for this runway.
    if (TextOf(sel.StarName) != kNoSelection) ChooseStar(g_procedures.destination.SelectedStarRow, 1);
    // 3.-4. The STARs of the runway; an active plan is modified.
    ListStars(TextOf(sel.ArrivalRunway), kNoSelection);
    if (pc.PlanState == 3) PlanStateStep();
}

// [SECTION] Activations
// The flown plan changed under guidance: the distances and the next
// restriction are worked out anew.
static void RestartVerticalLogic() {
    TakeActiveHoldRows();
    PredictProfile(g_plan.context.CruiseAltitude, 1);
    VnavRestartTargets();
}

void ActivateSid() {
    InsertSidInto(ActiveRows());
    RestartVerticalLogic();
}

void ActivateStar() {
    InsertStarInto(ActiveRows());
    RestartVerticalLogic();
}

void ActivateApproach() {
    InsertApproachInto(ActiveRows(), 0);
    RestartVerticalLogic();
}
