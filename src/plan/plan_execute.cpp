// plan_execute.cpp: PlanState's steps, the execution of ModPlan and the
// erasing of a modification.
//
// The route's selections and the undo slots live with the plan
// (PlanContext); the route pages' modes, selection flags and approach
// indices live with the CDU (they are what its pages show and edit). The
// execution commits them together with the rows, and ERASE drops them.
//
// Index:
//   [SECTION] Helpers
//   [SECTION] PlanStateStep
//   [SECTION] PlanExecute
//   [SECTION] PlanErase
#include "plan/plan_execute.h"

#include "cdu/keypad.h"
#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"
#include "navdata/procedures.h"
#include "plan/plan_tables.h"
#include "plan/sim_plans.h"

#include <algorithm>

// [SECTION] Helpers
namespace {
constexpr double kOnGroundSpeed = 5;         // knots: below it a new route starts a new flight
constexpr int kSimGenerationWithSimConnect = 10;

bool IsSet(const PlanText& text) {
    std::string_view value = TextOf(text);
    return !value.empty() && value != kNoSelection;
}

void SetNone(PlanText& text) { SetText(text, kNoSelection); }

// The six procedure fields and their saved twins, with which ERASE works.
struct SavedPair {
    PlanText PlanSelections::*current;
    PlanText PlanSelections::*saved;
};
constexpr SavedPair kSavedPairs[] = {
    {&PlanSelections::SidName, &PlanSelections::SavedSidName},
    {&PlanSelections::SidTransition, &PlanSelections::SavedSidTransition},
    {&PlanSelections::DepartureRunway, &PlanSelections::SavedDepartureRunway},
    {&PlanSelections::StarName, &PlanSelections::SavedStarName},
    {&PlanSelections::StarTransition, &PlanSelections::SavedStarTransition},
    {&PlanSelections::ArrivalRunway, &PlanSelections::SavedArrivalRunway},
};

// A new origin or destination: its procedures, in both versions, are none.
void ClearDepartureSelections(PlanSelections& sel) {
    for (PlanText* text : {&sel.SidName, &sel.SidTransition, &sel.DepartureRunway, &sel.SavedSidName,
                           &sel.SavedSidTransition, &sel.SavedDepartureRunway})
        SetNone(*text);
}

void ClearArrivalSelections(PlanSelections& sel) {
    for (PlanText* text : {&sel.StarName, &sel.StarTransition, &sel.ArrivalRunway, &sel.ApproachName,
                           &sel.ApproachTransition, &sel.SavedStarName, &sel.SavedStarTransition,
                           &sel.SavedArrivalRunway})
        SetNone(*text);
}

// A route file's "ApproachInfo" ("ILS16R_16R"), kept since its loading: the
// approach and the saved arrival runway, read as two words.
void TakePendingApproachInfo(PlanContext& pc) {
    if (pc.PendingApproachInfo[0] == 0) return;
    std::array<char, sizeof pc.PendingApproachInfo> text = pc.PendingApproachInfo;
    std::replace(text.begin(), text.end(), '_', ' ');
    std::string_view words[2];
    int n = SplitColumns(TextOf(text), words, 2);
    if (n >= 1) SetText(pc.Selections.ApproachName, words[0]);
    if (n >= 2) SetText(pc.Selections.SavedArrivalRunway, words[1]);
    pc.PendingApproachInfo = {};
}
}  // namespace

// [SECTION] PlanStateStep
void PlanStateStep() {
    int& state = g_plan.context.PlanState;
    switch (state) {
    case 0:
        state = 1;
        // A route begun on the ground is a new flight, on the fuel it has now.
        if (g_sim.ground_speed < kOnGroundSpeed) {
            StartNewFlight();
            ReapplyRampFuel();
        }
        break;
    case 1: state = 2; break;
    case 2: state = 3; break;
    case 3: state = 4; break;
    case 4: state = 3; break;
    default: state = 0; break;  // never a value outside 0..4
    }
}

void StepAfterPlanChange() {
    int state = g_plan.context.PlanState;
    if (state == 3 || state == 0) PlanStateStep();
}

bool ExecutePending() {
    int state = g_plan.context.PlanState;
    return state == 2 || state == 4;
}

// [SECTION] PlanExecute
void PlanExecute() {
    SmithsCduState& s = g_smiths;
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    // A plan from nothing, not a change of the one being flown.
    bool new_plan = pc.PlanState < 3;
    bool modification = pc.PlanState == 4;

    // 1. A hold removal that waited for EXEC.
    if (s.HoldDeletePending) DeleteHold(s.HoldDeleteRow, 0);
    s.HoldDeletePending = 0;
    s.HoldDeleteRow = 0;

    // 2. What stands is committed: nothing to undo any more.
    pc.Undo = PlanUndoSlots{};

    // 3. A direct, an intercept or a hold at the present position under way:
    // LNAV's leg starts here, once the rows below are in.
    bool intercept = s.LegsMode != 0;
    s.LegsMode = 0;
    s.DirectPending = 0;

    // 4. A waiting departure runway; the procedure fields become the saved state.
    if (IsSet(sel.PendingDepartureRunway)) {
        sel.DepartureRunway = sel.PendingDepartureRunway;
        SetNone(sel.PendingDepartureRunway);
    }
    for (const SavedPair& pair : kSavedPairs) sel.*pair.saved = sel.*pair.current;

    // 5. A new plan: guidance starts afresh and its once-per-plan steps rearm.
    if (new_plan) LnavPlanActivated();

    // 6. The rows, and the airports at both ends.
    if (pc.ModLastRow >= 1) {
        CopyModPlanToActive();
        CommitHoldRows();  // the holds stand where the edit moved their rows
        if (pc.ActiveLeg < 1) pc.ActiveLeg = 1;
        if (pc.ActiveLeg <= pc.ActiveLastRow) {
            pc.ActiveWaypointLatitude = g_plan.ActivePlan[pc.ActiveLeg].Latitude;
            pc.ActiveWaypointLongitude = g_plan.ActivePlan[pc.ActiveLeg].Longitude;
        }
        const PlanWaypoint& last = g_plan.ActivePlan[pc.ActiveLastRow];
        if (TextOf(last.WaypointType) == "APT") {
            std::array<char, 24> ident = last.Ident;
            if (new_plan) SetAirport(TextOf(ident), 2);
            if (TextOf(ident) != TextOf(sel.DestinationName) || !TextOf(sel.ModifiedDestination).empty()) {
                SetText(sel.DestinationName, TextOf(ident));
                LoadAirportDetail(TextOf(ident), 2);
                ClearArrivalSelections(sel);
            }
        }
        const PlanWaypoint& first = g_plan.ActivePlan[0];
        if (TextOf(first.WaypointType) == "APT") {
            std::array<char, 24> ident = first.Ident;
            if (new_plan) {
                SetAirport(TextOf(ident), 0);
                StartNewFlight();
            }
            // The origin page names its airport as both the origin and a waiting
            // one; what the pilot chose for it since (runway, SID) must survive
            // the first EXEC, so only a different airport starts the side afresh.
            std::string_view waiting = TextOf(sel.ModifiedOrigin);
            if (TextOf(ident) != TextOf(sel.OriginName) || (!waiting.empty() && waiting != TextOf(sel.OriginName))) {
                SetText(sel.OriginName, TextOf(ident));
                LoadAirportDetail(TextOf(ident), 1);
                ClearDepartureSelections(sel);
                LoadDefaultSpeeds();
                RemoveAllHolds();
            }
        }
        sel.ModifiedOrigin = {};
        sel.ModifiedDestination = {};
    }
    if (intercept && pc.ActiveLeg != kNoActiveLeg) LnavDirectExecuted();

    // 7. The approach of a loaded route, then the approach names matched to
    // the destination's tables; ERASE comes back to these indices.
    TakePendingApproachInfo(pc);
    s.ApproachIndex = IsSet(sel.ApproachName) ? ApproachRowOf(TextOf(sel.ApproachName)) : 0;
    s.ApproachTransitionIndex = s.ApproachIndex != 0 && IsSet(sel.ApproachTransition)
                                    ? ApproachTransitionRowOf(TextOf(sel.ApproachName), TextOf(sel.ApproachTransition))
                                    : 0;
    s.SavedApproachIndex = s.ApproachIndex;
    s.SavedApproachTransitionIndex = s.ApproachTransitionIndex;

    // 8. Active; the vertical profile and the distances follow the new plan.
    pc.PlanState = 3;
    VnavAfterExecute(modification ? 1 : 0);

    // 9. Every commit also reaches the simulator's GPS when the panel asks for it.
    if (g_config.synchfplanwithfsgps == 1 && g_module.SimGeneration == kSimGenerationWithSimConnect)
        SendPlanToSimulator();
}

// [SECTION] PlanErase
void PlanErase() {
    SmithsCduState& s = g_smiths;
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    // 1. The modified airports go.
    sel.ModifiedOrigin = {};
    sel.ModifiedDestination = {};
    // 2. The procedures as at the last EXEC; a runway waiting for EXEC goes too.
    for (const SavedPair& pair : kSavedPairs) sel.*pair.current = sel.*pair.saved;
    SetNone(sel.PendingDepartureRunway);
    if (s.CduPage == cdu_page::kDepartures) s.departures.page = 1;
    if (s.CduPage == cdu_page::kArrivals) s.arrivals.page = 1;
    // 3. Approach indices as EXEC matched them; selection flags and modes.
    s.ApproachIndex = s.SavedApproachIndex;
    s.ApproachTransitionIndex = s.SavedApproachTransitionIndex;
    s.SidChosen = s.SidTransitionChosen = s.DepartureRunwayChosen = 0;
    s.StarChosen = s.StarTransitionChosen = s.ApproachChosen = s.ApproachTransitionChosen = 0;
    s.ArrivalRunwayChosen = 0;
    s.LegsMode = 0;
    s.DirectPending = 0;
    s.HoldDeletePending = 0;
    s.HoldDeleteRow = 0;
    // 4. The values the modification changed, where it changed them.
    const PlanUndoSlots& undo = pc.Undo;
    AircraftProfile& p = g_profile;
    bool cruise_altitude_back = undo.CruiseAltitude > 0 && undo.CruiseAltitude != pc.CruiseAltitude;
    if (undo.CruiseAltitude > 0) pc.CruiseAltitude = undo.CruiseAltitude;
    if (undo.CostIndex >= 0) p.CostIndex = undo.CostIndex;
    if (undo.ClimbIas > 0) p.ClimbIas = undo.ClimbIas;
    if (undo.CruiseIas > 0) p.CruiseIas = undo.CruiseIas;
    if (undo.DescentIas > 0) p.DescentIas = undo.DescentIas;
    if (undo.ClimbMach > 0) g_config.ClimbMach = undo.ClimbMach;
    if (undo.CruiseMach > 0) g_config.CruiseMach = undo.CruiseMach;
    if (undo.DescentMach > 0) g_config.DescentMach = undo.DescentMach;
    pc.Undo = PlanUndoSlots{};  // used: a later ERASE must not put them back again
    // 5. Back to the active plan.
    if (pc.PlanState == 4) pc.PlanState = 3;
    // The profile the entered cruise altitude gave goes with it.
    if (cruise_altitude_back && pc.ActiveLastRow >= 1) {
        PredictProfile(pc.CruiseAltitude, 1);
        VnavRestartTargets();
    }
    // 6. Holds the modification added and no row carries any more.
    DropUntiedHolds();
    // 7. ModPlan is the active plan again.
    BeginModification();
    BuildRouteRows();
}
