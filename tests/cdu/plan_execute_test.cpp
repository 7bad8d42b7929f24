// plan_execute_test.cpp: PlanState's steps, the execution of ModPlan with
// the names that go with it, and the erasing of a modification.
#include "cdu_rig.h"

#include "frame/engine_tick.h"
#include "plan/plan_execute.h"

using namespace cdu_test;

namespace {
void Row(PlanTable& plan, int row, const char* ident, double lat, double lon, const char* type) {
    plan[row] = PlanWaypoint{};
    SetText(plan[row].Ident, ident);
    plan[row].Latitude = lat;
    plan[row].Longitude = lon;
    SetText(plan[row].WaypointType, type);
}
}  // namespace

TEST(PlanExecute, PlanStateStepsAndTheExecLamp) {
    ResetModuleState();
    int& state = g_plan.context.PlanState;
    const int expected[] = {1, 2, 3, 4, 3, 4};
    for (int next : expected) {
        PlanStateStep();
        EXPECT_EQ(state, next);
        EXPECT_EQ(ExecutePending(), next == 2 || next == 4);
    }
    // A change of plan data steps only from 0 and 3.
    for (auto [from, to] : {std::pair{0, 1}, std::pair{1, 1}, std::pair{2, 2}, std::pair{3, 4}, std::pair{4, 4}}) {
        state = from;
        StepAfterPlanChange();
        EXPECT_EQ(state, to) << from;
    }
    state = 77;  // a value no step makes: back to no route
    PlanStateStep();
    EXPECT_EQ(state, 0);
}

TEST(PlanExecute, CommitsRowsNamesAndModes) {
    ResetModuleState();
    PresetPlanDataTexts();
    PlanContext& pc = g_plan.context;
    Row(g_plan.ModPlan, 0, "KAAA", 47.0, -122.0, "APT");
    Row(g_plan.ModPlan, 1, "FIX1", 47.2, -121.5, "INT");
    Row(g_plan.ModPlan, 2, "KBBB", 47.5, -120.0, "APT");
    SetText(g_plan.ModPlan[1].ActualTime, "12:30");
    pc.ModLastRow = 2;
    pc.ModActiveLeg = kNoActiveLeg;
    pc.PlanState = 2;
    SetText(g_plan_texts.OriginName, "KAAA");  // the same origin: its departure names stay
    SetText(g_plan_texts.SidName, "RNDY1");
    SetText(g_plan_texts.PendingDepartureRunway, "16L");
    SetText(g_plan_texts.ModifiedDestination, "KBBB");

    PlanExecute();
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(pc.ActiveLastRow, 2);
    EXPECT_EQ(pc.ActiveLeg, 1) << "999 becomes 1";
    EXPECT_EQ(Idents(g_plan.ActivePlan, 2), "KAAA FIX1 KBBB");
    EXPECT_STREQ(g_plan.ActivePlan[1].ActualTime.data(), "12:30") << "the copy takes the times as they stand";
    EXPECT_DOUBLE_EQ(pc.ActiveWaypointLatitude, 47.2);
    EXPECT_STREQ(g_plan_texts.DepartureRunway.data(), "16L");
    EXPECT_STREQ(g_plan_texts.PendingDepartureRunway.data(), "------");
    EXPECT_STREQ(g_plan_texts.SavedSidName.data(), "RNDY1");
    EXPECT_STREQ(g_plan_texts.SavedDepartureRunway.data(), "16L");
    EXPECT_STREQ(g_plan_texts.OriginName.data(), "KAAA");
    EXPECT_STREQ(g_plan_texts.DestinationName.data(), "KBBB");
    EXPECT_STREQ(g_plan_texts.ModifiedDestination.data(), "");
    EXPECT_EQ(pc.intercept_state, 0);

    // A direct under way starts from the present position.
    BeginModification();
    pc.ModActiveLeg = 2;
    pc.PlanState = 4;
    g_smiths.LegsMode = 1;
    g_smiths.DirectPending = 1;
    g_sim.latitude = 46.5;
    g_sim.longitude = -122.5;
    PlanExecute();
    EXPECT_EQ(g_smiths.LegsMode, 0);
    EXPECT_EQ(g_smiths.DirectPending, 0);
    EXPECT_EQ(pc.intercept_state, 1);
    EXPECT_DOUBLE_EQ(pc.OriginLatitude, 46.5);
    EXPECT_DOUBLE_EQ(pc.OriginLongitude, -122.5);
    EXPECT_EQ(pc.ActiveLeg, 2);

    // A plan without a leg leaves ActivePlan alone, but the state is active.
    pc.ModLastRow = 0;
    pc.PlanState = 4;
    PlanExecute();
    EXPECT_EQ(pc.ActiveLastRow, 2);
    EXPECT_EQ(pc.PlanState, 3);
}

TEST(PlanExecute, EraseRestoresTheActivePlanAndTheSavedNames) {
    ResetModuleState();
    PresetPlanDataTexts();
    PlanContext& pc = g_plan.context;
    Row(g_plan.ActivePlan, 0, "KAAA", 47.0, -122.0, "APT");
    Row(g_plan.ActivePlan, 1, "KBBB", 47.5, -120.0, "APT");
    pc.ActiveLastRow = 1;
    pc.ActiveLeg = 1;
    SetText(g_plan_texts.StarName, "OLD1");
    pc.PlanState = 3;
    BeginModification();
    PlanExecute();  // the names as at this EXEC are the saved ones
    // A modification: another STAR, another destination, a direct under way.
    Row(g_plan.ModPlan, 1, "KCCC", 48.0, -119.0, "APT");
    SetText(g_plan_texts.StarName, "NEW2");
    SetText(g_plan_texts.ModifiedDestination, "KCCC");
    SetText(g_plan_texts.PendingDepartureRunway, "34R");
    g_smiths.LegsMode = 1;
    g_smiths.StarChosen = 1;
    g_smiths.CduPage = 11;
    g_smiths.arrivals.page = 3;
    pc.PlanState = 4;

    PlanErase();
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(Ident(g_plan.ModPlan, 1), "KBBB");
    EXPECT_EQ(pc.ModLastRow, 1);
    EXPECT_STREQ(g_plan_texts.StarName.data(), "OLD1");
    EXPECT_STREQ(g_plan_texts.ModifiedDestination.data(), "");
    EXPECT_STREQ(g_plan_texts.PendingDepartureRunway.data(), "------");
    EXPECT_EQ(g_smiths.LegsMode, 0);
    EXPECT_EQ(g_smiths.StarChosen, 0);
    EXPECT_EQ(g_smiths.arrivals.page, 1) << "ARRIVALS shown: back to its first page";
    EXPECT_EQ(Ident(g_plan.ActivePlan, 1), "KBBB");
}
