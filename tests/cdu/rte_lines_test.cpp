// rte_lines_test.cpp: a pilot building Seattle - Spokane on RTE page 2 by
// its VIA and TO lines: direct fixes, airways by their exit fix, the THEN
// line that waits for it, a gap closed by the fix behind it, a later fix
// that takes out what lies between, and what DELETE may and may not do.
#include "cdu_rig.h"

#include "plan/plan_execute.h"

using namespace cdu_test;

namespace {
constexpr const char* kSeattleSpokane = "KSEA SEA NORMY BLUIT EPH WIPES GEG KGEG";

std::string ModIdents() { return Idents(g_plan.ModPlan, g_plan.context.ModLastRow); }

// Line r of the route as "AIRWAY TO".
std::string RouteLine(int r) {
    if (r < 1 || r > g_route_rows.count) return "";
    return std::string(g_route_rows.rows[r].Airway.data()) + " " + g_route_rows.rows[r].ToWaypoint.data();
}

void Enter(CduRig& cdu, const char* text, const char* key) {
    cdu.Type(text);
    cdu.PressAndFrame(key);
}
}  // namespace

TEST(RteLines, AirwaysDirectFixesAndTheThenLine) {
    CduRig cdu;
    cdu.PressAndFrame("RTE");
    Enter(cdu, "KSEA", "LSK1L");
    Enter(cdu, "KGEG", "LSK1R");
    ASSERT_EQ(ModIdents(), "KSEA KGEG");
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_EQ(g_smiths.rte.page, 2);
    EXPECT_TRUE(cdu.ScreenHas("V I A"));

    // An airway on the first line has no fix to start from.
    Enter(cdu, "J70", "LSK1L");
    EXPECT_EQ(Message(), "INVALID ENTRY");
    EXPECT_EQ(Scratchpad(), "J70");
    EXPECT_EQ(ModIdents(), "KSEA KGEG");
    ClearEntry(cdu);

    // A direct fix on the empty line: a gap stands between it and the
    // destination, and the next fix goes into the gap's line.
    Enter(cdu, "SEA", "LSK1R");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA DISCO KGEG");
    EXPECT_EQ(g_plan.context.PlanState, 1);
    EXPECT_EQ(RouteLine(2), "DIRECT DISCO");
    Enter(cdu, "EPH", "LSK2R");
    EXPECT_EQ(ModIdents(), "KSEA SEA EPH DISCO KGEG");
    EXPECT_EQ(RouteLine(2), "DIRECT EPH");

    // An airway to the line's own fix: the line becomes the airway's stretch.
    Enter(cdu, "J70", "LSK2L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA NORMY BLUIT EPH DISCO KGEG");
    EXPECT_EQ(RouteLine(2), "J70 EPH");
    EXPECT_STREQ(g_plan.ModPlan[3].Via.data(), "J70");

    // An airway on the gap's line: a THEN line with boxes waits for the exit fix.
    Enter(cdu, "V120", "LSK3L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA NORMY BLUIT EPH THEN DISCO KGEG");
    EXPECT_EQ(RouteLine(3), "V120 THEN");
    EXPECT_TRUE(cdu.ScreenHas("THEN"));
    EXPECT_NE(RowWith(cdu, "V120"), "") << cdu.Screen();
    EXPECT_EQ(RowWith(cdu, "V120").find("THEN"), std::string::npos) << "boxes, not the place-holder's name";
    // A fix off the airway is refused and the line is emptied.
    Enter(cdu, "ELMAA", "LSK3R");
    EXPECT_EQ(Message(), "INVALID ENTRY");
    EXPECT_EQ(Scratchpad(), "");
    cdu.Press("CLR");
    Enter(cdu, "GEG", "LSK3R");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA NORMY BLUIT EPH WIPES GEG DISCO KGEG");
    EXPECT_EQ(RouteLine(3), "V120 GEG");
    EXPECT_FALSE(cdu.ScreenHas("THEN"));
    // The destination entered into the gap's line closes it.
    EXPECT_EQ(RouteLine(4), "DIRECT DISCO");
    Enter(cdu, "KGEG", "LSK4R");
    EXPECT_EQ(ModIdents(), kSeattleSpokane);
    EXPECT_FALSE(cdu.ScreenHas("D I S C O N T I N U I T Y"));

    // An airway that doesn't pass the line's fix.
    Enter(cdu, "J5", "LSK4L");
    EXPECT_EQ(Message(), "INVALID ENTRY");
    ClearEntry(cdu);

    // DELETE: never on a TO, on a VIA the line's rows, on the empty line refused.
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK2R");
    EXPECT_EQ(Message(), "INVALID DELETE");
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK2L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA WIPES GEG KGEG");
    EXPECT_EQ(RouteLine(2), "V120 GEG");
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(Message(), "INVALID DELETE");
    EXPECT_EQ(ModIdents(), "KSEA SEA WIPES GEG KGEG");
    cdu.Press("CLR");

    // A fix further down: the rows between go.
    Enter(cdu, "GEG", "LSK1R");
    EXPECT_EQ(ModIdents(), "KSEA GEG KGEG");
    EXPECT_EQ(Scratchpad(), "");
}

TEST(RteLines, AGapShowsItsLineAndTheNextFixClosesIt) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    // NORMY deleted on LEGS leaves a gap in its place.
    cdu.PressAndFrame("LEGS");
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK2L");
    ASSERT_EQ(ModIdents(), "KSEA SEA DISCO BLUIT EPH WIPES GEG KGEG");
    ASSERT_EQ(g_plan.context.PlanState, 4);

    cdu.PressAndFrame("RTE");
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_EQ(RouteLine(2), "DIRECT DISCO");
    EXPECT_TRUE(cdu.ScreenHas("R O U T E    D I S C O N T I N U I T Y"));
    // The fix behind the gap, entered into the gap's line, closes it.
    Enter(cdu, "BLUIT", "LSK2R");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA BLUIT EPH WIPES GEG KGEG");
    EXPECT_FALSE(cdu.ScreenHas("D I S C O N T I N U I T Y"));
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(Idents(g_plan.ActivePlan, g_plan.context.ActiveLastRow), "KSEA SEA BLUIT EPH WIPES GEG KGEG");
}
