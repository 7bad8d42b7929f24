// rte_hold_test.cpp: holds made from the HOLD key on the Seattle - Spokane
// route: placed at a copied entry, shaped on RTE HOLD (course and turn,
// leg by time or distance), their line on LEGS that shifts the keys below
// it, EXIT HOLD at the next EXEC, and the limit of five a plan.
#include "cdu_rig.h"

#include "frame/sim_state.h"
#include "guidance/holds.h"
#include "plan/plan_execute.h"

using namespace cdu_test;

namespace {
void Enter(CduRig& cdu, const char* text, const char* key) {
    cdu.Type(text);
    cdu.PressAndFrame(key);
}
}  // namespace

TEST(RteHold, PlacedShapedShownOnLegsAndExited) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    const PlanContext& pc = g_plan.context;
    // No hold yet: LEGS in hold mode.
    cdu.PressAndFrame("HOLD");
    EXPECT_EQ(g_smiths.CduPage, 6);
    EXPECT_EQ(g_smiths.LegsMode, 2);
    EXPECT_TRUE(cdu.ScreenHas("H O L D  A T"));
    EXPECT_TRUE(cdu.ScreenHas("PPOS >"));

    // BLUIT copied, then sent to HOLD AT: the hold page of the new hold.
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(Scratchpad(), "BLUIT");
    EXPECT_EQ(g_smiths.HoldSourceRow, 3);
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.CduPage, 39);
    ASSERT_EQ(g_holds.HoldCount, 1);
    HoldRecord& hold = g_holds.HoldTable[1];
    EXPECT_EQ(hold.ModRow, 3);
    EXPECT_EQ(pc.PlanState, 4);
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("RTE        HOLD"));
    EXPECT_NE(RowWith(cdu, "BLUIT"), "") << cdu.Screen();
    EXPECT_TRUE(cdu.ScreenHas("1 / 1"));

    // Inbound course and turn: course 0 up to but not 361, L or R.
    Enter(cdu, "090/R", "LSK3L");
    EXPECT_EQ(Message(), "");
    EXPECT_DOUBLE_EQ(hold.InboundCourse, 90);
    EXPECT_EQ(hold.TurnRight, 1);
    EXPECT_TRUE(cdu.ScreenHas("090 /  R  T U R N"));
    for (const char* bad : {"361/L", "270/X", "/R", "090"}) {
        Enter(cdu, bad, "LSK3L");
        EXPECT_EQ(Message(), "INVALID ENTRY") << bad;
        EXPECT_DOUBLE_EQ(hold.InboundCourse, 90) << bad;
        EXPECT_EQ(hold.TurnRight, 1) << bad;
        ClearEntry(cdu);
    }
    Enter(cdu, "360/L", "LSK3L");
    EXPECT_DOUBLE_EQ(hold.InboundCourse, 360);
    EXPECT_NE(hold.TurnRight, 1);
    EXPECT_TRUE(cdu.ScreenHas("360 /  L  T U R N"));

    // The leg by time, then by distance: the last entry decides.
    Enter(cdu, "2.5", "LSK4L");
    EXPECT_DOUBLE_EQ(hold.LegMinutes, 2.5);
    EXPECT_EQ(hold.LegMode, 1);
    EXPECT_TRUE(cdu.ScreenHas("2.5   M I N"));
    EXPECT_TRUE(cdu.ScreenHas("--.-  - N M"));
    Enter(cdu, "7", "LSK5L");
    EXPECT_DOUBLE_EQ(hold.LegDistance, 7);
    EXPECT_EQ(hold.LegMode, 2);
    EXPECT_TRUE(cdu.ScreenHas("7.0 - N M"));
    EXPECT_TRUE(cdu.ScreenHas("-.-   M I N"));
    Enter(cdu, "1.5", "LSK4L");
    EXPECT_EQ(hold.LegMode, 1);
    EXPECT_DOUBLE_EQ(hold.LegMinutes, 1.5);
    EXPECT_DOUBLE_EQ(hold.LegDistance, 7) << "kept, not deciding";
    Enter(cdu, "0", "LSK5L");
    EXPECT_EQ(Message(), "INVALID ENTRY");
    EXPECT_EQ(hold.LegMode, 1);
    ClearEntry(cdu);

    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(g_holds.HoldCount, 1);
    EXPECT_GT(g_plan.ActivePlan[3].HoldIndex, 0);

    // LEGS: the hold line stands before BLUIT and the keys below it shift.
    cdu.PressAndFrame("LEGS");
    EXPECT_TRUE(cdu.ScreenHas("H O L D   A T"));
    Enter(cdu, "FL200", "LSK4R");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Altitude, 20000) << "LSK 4 is BLUIT's line";
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[4].Altitude, g_plan.ActivePlan[4].Altitude) << "EPH untouched";
    cdu.PressAndFrame("LSK6L");  // ERASE
    ASSERT_EQ(pc.PlanState, 3);

    // EXIT HOLD: the hold goes at EXEC.
    cdu.PressAndFrame("HOLD");
    EXPECT_EQ(g_smiths.CduPage, 39);
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("EXIT HOLD >"));
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 6);
    EXPECT_EQ(g_smiths.LegsMode, 0);
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_EQ(g_holds.HoldCount, 1) << "until EXEC";
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(g_holds.HoldCount, 0);
    EXPECT_EQ(g_plan.ActivePlan[3].HoldIndex, 0);
}

TEST(RteHold, NextHoldGoesAtTheFifth) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    for (int row = 2; row <= 5; ++row) AddHold(row, 1);
    ASSERT_EQ(g_holds.HoldCount, 4);
    cdu.PressAndFrame("HOLD");
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("1 / 4"));
    EXPECT_TRUE(cdu.ScreenHas("< NEXT HOLD"));
    EXPECT_NE(RowWith(cdu, "NORMY"), "");
    // The pages go through the holds, one each.
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_TRUE(cdu.ScreenHas("2 / 4"));
    EXPECT_NE(RowWith(cdu, "BLUIT"), "");
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.CduPage, 6);
    EXPECT_EQ(g_smiths.LegsMode, 2);

    AddHold(6, 1);
    ASSERT_EQ(g_holds.HoldCount, 5);
    cdu.PressAndFrame("LEGS");
    cdu.PressAndFrame("HOLD");
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("1 / 5"));
    EXPECT_FALSE(cdu.ScreenHas("NEXT HOLD"));
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.CduPage, 39) << "no sixth hold";
    EXPECT_EQ(g_smiths.LegsMode, 0);
}

TEST(RteHold, HoldAtANamedFixAtThePresentPositionAndRemovedFromLegs) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    g_sim.latitude = 47.44;
    g_sim.longitude = -122.0;
    const PlanContext& pc = g_plan.context;

    // A fix by name waits as "HOLD AT" on the entry line until a line places it.
    cdu.PressAndFrame("HOLD");
    Enter(cdu, "ELMAA", "LSK6L");
    EXPECT_EQ(Scratchpad(), "HOLD AT ELMAA");
    EXPECT_EQ(g_smiths.HoldAtPending, 1);
    EXPECT_EQ(g_holds.HoldCount, 0);
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(g_smiths.CduPage, 39);
    EXPECT_EQ(Idents(g_plan.ModPlan, pc.ModLastRow), "KSEA SEA NORMY ELMAA DISCO BLUIT EPH WIPES GEG KGEG");
    ASSERT_EQ(g_holds.HoldCount, 1);
    EXPECT_EQ(g_holds.HoldTable[1].ModRow, 3);
    EXPECT_STREQ(g_holds.HoldTable[1].Ident.data(), "ELMAA");
    EXPECT_EQ(Scratchpad(), "");
    cdu.PressAndFrame("LSK6L");  // ERASE: the hold the modification made goes with it
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(Idents(g_plan.ModPlan, pc.ModLastRow), "KSEA SEA NORMY BLUIT EPH WIPES GEG KGEG");
    EXPECT_EQ(g_holds.HoldCount, 0);

    // HOLD PPOS: a waypoint where the aircraft is, flown to from EXEC, with the hold.
    cdu.PressAndFrame("HOLD");
    ASSERT_EQ(g_smiths.LegsMode, 2);
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 39);
    ASSERT_EQ(g_holds.HoldCount, 1);
    int row = g_holds.HoldTable[1].ModRow;
    EXPECT_EQ(row, pc.ModActiveLeg);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[row].Latitude, 47.44);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[row].Longitude, -122.0);
    EXPECT_EQ(pc.PlanState, 4);
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.ActiveLeg, row);
    EXPECT_EQ(g_holds.HoldCount, 1);

    // DELETE on the hold line of LEGS: gone at EXEC, the fix stays.
    cdu.PressAndFrame("LEGS");
    ASSERT_TRUE(cdu.ScreenHas("H O L D   A T"));
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_FALSE(cdu.ScreenHas("H O L D   A T"));
    EXPECT_EQ(g_holds.HoldCount, 1) << "until EXEC";
    int last = pc.ModLastRow;
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(g_holds.HoldCount, 0);
    EXPECT_EQ(pc.ActiveLastRow, last);
}
