// plan_execute.cpp: PlanState's steps, the execution of ModPlan and the
// erasing of a modification.
//
// The procedure names, the modified origin and destination and the route
// pages' modes live with the CDU (they are what its pages show and edit);
// the execution commits them together with the rows, so it reads them here.
#include "plan/plan_execute.h"

#include "cdu/keypad.h"
#include "cdu/plan_data_texts.h"
#include "frame/engine_tick.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "navdata/nav_text.h"
#include "plan/plan_tables.h"

namespace {
bool IsSet(const PlanText& text) {
    std::string_view value = TextOf(text);
    return !value.empty() && value != kNoSelection;
}

void SetNone(PlanText& text) { SetText(text, kNoSelection); }

// The six procedure fields and their saved twins, with which ERASE works.
struct SavedPair {
    PlanText PlanDataTexts::*current;
    PlanText PlanDataTexts::*saved;
};
constexpr SavedPair kSavedPairs[] = {
    {&PlanDataTexts::SidName, &PlanDataTexts::SavedSidName},
    {&PlanDataTexts::SidTransition, &PlanDataTexts::SavedSidTransition},
    {&PlanDataTexts::DepartureRunway, &PlanDataTexts::SavedDepartureRunway},
    {&PlanDataTexts::StarName, &PlanDataTexts::SavedStarName},
    {&PlanDataTexts::StarTransition, &PlanDataTexts::SavedStarTransition},
    {&PlanDataTexts::ArrivalRunway, &PlanDataTexts::SavedArrivalRunway},
};
}  // namespace

void PlanStateStep() {
    int& state = g_plan.context.PlanState;
    switch (state) {
    case 0: state = 1; break;
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

void PlanExecute() {
    SmithsCduState& s = g_smiths;
    PlanContext& pc = g_plan.context;
    PlanDataTexts& t = g_plan_texts;
    int state_before = pc.PlanState;

    // 1. A hold removal that waited for EXEC (the hold table comes with its page).
    s.HoldDeletePending = 0;

    // 3. A direct or intercept under way starts from the present position;
    // LNAV takes the leg's course from there to the active waypoint.
    if (s.LegsMode != 0) {
        int leg = pc.ModActiveLeg;
        if (leg >= 0 && leg <= pc.ModLastRow && leg < kPlanRows) {
            pc.OriginLatitude = g_sim.latitude;
            pc.OriginLongitude = g_sim.longitude;
            pc.intercept_state = 1;
        }
        s.LegsMode = 0;
    }
    s.DirectPending = 0;

    // 4. A waiting departure runway; the procedure fields become the saved state.
    if (IsSet(t.PendingDepartureRunway)) {
        t.DepartureRunway = t.PendingDepartureRunway;
        SetNone(t.PendingDepartureRunway);
    }
    for (const SavedPair& pair : kSavedPairs) t.*pair.saved = t.*pair.current;

    // 6. The rows, and the airports at both ends.
    if (pc.ModLastRow >= 1) {
        CopyModPlanToActive();
        if (pc.ActiveLeg < 1) pc.ActiveLeg = 1;
        if (state_before < 3) LnavPlanActivated();  // a new plan, not a change of the flown one
        if (pc.ActiveLeg <= pc.ActiveLastRow) {
            pc.ActiveWaypointLatitude = g_plan.ActivePlan[pc.ActiveLeg].Latitude;
            pc.ActiveWaypointLongitude = g_plan.ActivePlan[pc.ActiveLeg].Longitude;
        }
        const PlanWaypoint& last = g_plan.ActivePlan[pc.ActiveLastRow];
        if (TextOf(last.WaypointType) == "APT") {
            std::array<char, 24> ident = last.Ident;
            if (state_before < 3) SetAirport(TextOf(ident), 2);
            if (TextOf(ident) != TextOf(t.DestinationName) || !TextOf(t.ModifiedDestination).empty()) {
                SetText(t.DestinationName, TextOf(ident));
                SetText(pc.DestinationText, TextOf(ident));
                LoadAirportDetail(TextOf(ident), 2);
                for (PlanText* arrival : {&t.StarName, &t.StarTransition, &t.ArrivalRunway, &t.ApproachName,
                                          &t.ApproachTransition})
                    SetNone(*arrival);
            }
        }
        const PlanWaypoint& first = g_plan.ActivePlan[0];
        if (TextOf(first.WaypointType) == "APT") {
            std::array<char, 24> ident = first.Ident;
            if (state_before < 3) SetAirport(TextOf(ident), 0);
            if (TextOf(ident) != TextOf(t.OriginName) || !TextOf(t.ModifiedOrigin).empty()) {
                SetText(t.OriginName, TextOf(ident));
                SetText(pc.OriginText, TextOf(ident));
                LoadAirportDetail(TextOf(ident), 1);
                for (PlanText* departure : {&t.SidName, &t.SidTransition, &t.DepartureRunway}) SetNone(*departure);
                g_holds.HoldCount = 0;
                g_holds.HoldFlying = 0;
            }
        }
        t.ModifiedOrigin = {};
        t.ModifiedDestination = {};
    }

    // 8. Active; the vertical profile and the distances follow the new plan.
    pc.PlanState = 3;
    PredictProfile(pc.CruiseAltitude, 1);
    FindClimbTarget(0);
    RecomputeTopOfDescent(0);
    PlanDistances();
    LnavPlanActivated();
}

void PlanErase() {
    SmithsCduState& s = g_smiths;
    PlanDataTexts& t = g_plan_texts;
    // 1. The modified airports go.
    t.ModifiedOrigin = {};
    t.ModifiedDestination = {};
    // 2. The procedures as at the last EXEC; a runway waiting for EXEC goes too.
    for (const SavedPair& pair : kSavedPairs) t.*pair.current = t.*pair.saved;
    SetNone(t.PendingDepartureRunway);
    if (s.CduPage == cdu_page::kDepartures) s.departures.page = 1;
    if (s.CduPage == cdu_page::kArrivals) s.arrivals.page = 1;
    // 3. Selection flags and modes.
    s.SidChosen = s.SidTransitionChosen = s.DepartureRunwayChosen = 0;
    s.StarChosen = s.StarTransitionChosen = s.ApproachChosen = s.ApproachTransitionChosen = 0;
    s.ArrivalRunwayChosen = 0;
    s.LegsMode = 0;
    s.DirectPending = 0;
    s.HoldDeletePending = 0;
    // 5. Back to the active plan.
    if (g_plan.context.PlanState == 4) g_plan.context.PlanState = 3;
    // 7. ModPlan is the active plan again.
    BeginModification();
    BuildRouteRows();
}
