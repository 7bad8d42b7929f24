// route_page_test.cpp: a pilot building, loading, activating and changing a
// route on the RTE page, with the demonstration database and stored routes.
#include "cdu_rig.h"

#include "cdu/cdu_draw.h"
#include "plan/plan_execute.h"

#include <filesystem>
#include <fstream>

using namespace cdu_test;

namespace {
constexpr const char* kSeattleSpokane = "KSEA SEA NORMY BLUIT EPH WIPES GEG KGEG";

// RTE, the company route typed and entered on LSK 2L, activated and executed.
void LoadAndExecute(CduRig& cdu, const char* route) {
    cdu.PressAndFrame("RTE");
    cdu.Type(route);
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("LSK6R");
    cdu.PressAndFrame("EXEC");
}
}  // namespace

TEST(RtePage, PilotLoadsACompanyRouteActivatesAndExecutes) {
    CduRig cdu;
    EXPECT_EQ(g_smiths.CduPage, 25) << "IDENT after the first install";
    cdu.PressAndFrame("RTE");
    EXPECT_EQ(g_smiths.CduPage, 22);
    EXPECT_TRUE(cdu.ScreenHas("O R I G I N"));
    EXPECT_FALSE(cdu.ScreenHas("ACTIVATE"));

    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Scratchpad(), "") << "a good entry clears the line";
    const PlanContext& pc = g_plan.context;
    EXPECT_EQ(pc.PlanState, 1);
    EXPECT_EQ(Idents(g_plan.ModPlan, pc.ModLastRow), kSeattleSpokane);
    EXPECT_EQ(pc.ActiveLastRow, -1) << "nothing active before EXEC";
    EXPECT_EQ(g_plan.context.Selections.OriginName.data(), std::string("KSEA"));
    EXPECT_EQ(g_plan.context.Selections.DestinationName.data(), std::string("KGEG"));
    EXPECT_TRUE(cdu.ScreenHas("ACTIVATE >"));
    EXPECT_TRUE(cdu.ScreenHas(" KSEA"));
    EXPECT_TRUE(cdu.ScreenHas(" KGEG"));
    std::string title_row = cdu.Screen().substr(0, cdu.Screen().find('\n'));
    EXPECT_EQ(title_row.find("ACT"), std::string::npos) << "no ACT title before EXEC: " << title_row;
    EXPECT_FALSE(cdu.ExecLit());
    EXPECT_EQ(g_smiths.rte.count, 2);

    // The route's lines on page 2: airway and the fix it goes to.
    cdu.PressAndFrame("NEXT_PAGE");
    std::string screen = cdu.Screen();
    EXPECT_NE(screen.find("DIRECT"), std::string::npos) << screen;
    EXPECT_NE(screen.find("J70"), std::string::npos) << screen;
    EXPECT_NE(screen.find("V120"), std::string::npos) << screen;
    EXPECT_TRUE(cdu.ScreenHas("EPH"));
    EXPECT_TRUE(cdu.ScreenHas("GEG"));
    EXPECT_FALSE(cdu.ScreenHas("NORMY")) << "an airway's inner fixes are not lines";
    cdu.PressAndFrame("PREV_PAGE");
    EXPECT_EQ(g_smiths.rte.page, 1);

    // EXEC before ACTIVATE does nothing at all.
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.PlanState, 1);
    EXPECT_EQ(pc.ActiveLastRow, -1);

    cdu.PressAndFrame("LSK6R");  // ACTIVATE >
    EXPECT_EQ(pc.PlanState, 2);
    EXPECT_TRUE(cdu.ExecLit());
    EXPECT_TRUE(cdu.ScreenHas("PERF INIT >"));
    EXPECT_FALSE(cdu.ScreenHas("ACTIVATE >"));

    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_FALSE(cdu.ExecLit());
    EXPECT_EQ(pc.ActiveLastRow, 7);
    EXPECT_EQ(Idents(g_plan.ActivePlan, pc.ActiveLastRow), kSeattleSpokane);
    EXPECT_EQ(pc.ActiveLeg, 1);
    EXPECT_DOUBLE_EQ(pc.ActiveWaypointLatitude, g_plan.ActivePlan[1].Latitude);
    EXPECT_STREQ(g_plan.ActivePlan[3].Via.data(), "J70");
    EXPECT_STREQ(g_plan.ActivePlan[2].Frequency.data(), "");
    EXPECT_STREQ(g_plan.ActivePlan[1].Frequency.data(), "116.80");
    std::string title = cdu.Screen().substr(0, cdu.Screen().find('\n'));
    EXPECT_NE(title.find("ACT"), std::string::npos) << title;

    // With the plan active, PERF INIT > leads on.
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 3);
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("PERF  INIT"));
}

TEST(RtePage, CompanyRouteByFileNameStartOrByOriginAndDestination) {
    std::filesystem::path folder = std::filesystem::path(ORB_BINARY_DIR) / "test-sim" / "cdu-company-routes";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "MYTRIP.RTE") << "[FlightPlan]\n"
                                            "KSEA             47.45019  -122.31232  APT ---            \n"
                                            "OLM              46.97170  -122.90199  VOR 113.40         \n"
                                            "KOLM             46.96931  -122.90248  APT ---            \n";
    std::ofstream(folder / "EMPTY.RTE") << "CruiseAlt=1000\n";
    CduRig cdu;
    SetText(g_config.FlightPlansFolder, folder.string() + "/");
    BuildStoredPlanTable();
    ASSERT_EQ(g_stored_plans.count, 2) << "MYTRIP and the NEW FPL entry";
    cdu.PressAndFrame("RTE");

    // Unknown in either form, and the empty-plan entry is no route.
    for (const char* wrong : {"KSEAKPDX", "ZZZ", "NEW", "KSEAKOL"}) {
        cdu.Type(wrong);
        cdu.PressAndFrame("LSK2L");
        EXPECT_EQ(Message(), "NOT IN DATABASE") << wrong;
        EXPECT_EQ(Scratchpad(), wrong) << "a bad entry stays for correction";
        EXPECT_EQ(g_plan.context.ModLastRow, -1) << wrong;
        EXPECT_EQ(g_plan.context.PlanState, 0);
        cdu.Press("DEL");
        cdu.Press("SP");
    }
    // Origin and destination written together find a plan of another name.
    cdu.Type("KSEAKOLM");
    cdu.PressAndFrame("LSK2L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Idents(g_plan.ModPlan, g_plan.context.ModLastRow), "KSEA OLM KOLM");
    EXPECT_STREQ(g_plan.context.PlanLoadFile.data(), "MYTRIP.RTE");
    // The start of the file name, in any case the keys give.
    g_plan.context.ModLastRow = -1;
    cdu.Type("MYT");
    cdu.PressAndFrame("LSK2L");
    EXPECT_EQ(g_plan.context.ModLastRow, 2);
    EXPECT_EQ(g_plan.context.PlanState, 1);
}

TEST(RtePage, BadEntriesLeaveTheActivePlanUntouched) {
    CduRig cdu;
    LoadAndExecute(cdu, "KSEAKGEG");
    const PlanContext& pc = g_plan.context;
    ASSERT_EQ(pc.PlanState, 3);
    PlanTable active_before = g_plan.ActivePlan;
    auto unchanged = [&](const char* what) {
        EXPECT_EQ(pc.PlanState, 3) << what;
        EXPECT_EQ(pc.ActiveLastRow, 7) << what;
        EXPECT_EQ(pc.ActiveLeg, 1) << what;
        EXPECT_EQ(Idents(g_plan.ActivePlan, 7), Idents(active_before, 7)) << what;
        EXPECT_FALSE(cdu.ExecLit()) << what;
    };
    cdu.PressAndFrame("RTE");

    struct Case {
        const char* text;
        const char* key;
        const char* message;
    };
    for (const Case& c : {Case{"XXXX", "LSK1L", "NOT IN DATABASE"}, Case{"SEA", "LSK1L", "NOT IN DATABASE"},
                          Case{"NOPE", "LSK2L", "NOT IN DATABASE"}, Case{"QQQQ", "LSK1R", "NOT IN DATABASE"},
                          Case{"EPH", "LSK1R", "NOT IN DATABASE"}, Case{"99X", "LSK3L", "NOT IN DATABASE"}}) {
        cdu.Type(c.text);
        cdu.PressAndFrame(c.key);
        EXPECT_EQ(Message(), c.message) << c.text << " on " << c.key;
        EXPECT_EQ(Scratchpad(), c.text);
        EXPECT_TRUE(cdu.MessageLit());
        EXPECT_TRUE(cdu.ScreenHas(c.message));
        unchanged(c.text);
        cdu.Press("DEL");
        cdu.Press("SP");
    }
    // Nothing on page 1 can be deleted.
    for (const char* key : {"LSK1L", "LSK2L", "LSK3L", "LSK1R"}) {
        cdu.Press("DEL");
        cdu.PressAndFrame(key);
        EXPECT_EQ(Message(), "INVALID DELETE") << key;
        unchanged(key);
    }
    cdu.Press("CLR");

    // Page 2: an airway needs a fix to start from; a line's own fix is no change.
    cdu.PressAndFrame("NEXT_PAGE");
    cdu.Type("J70");
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(Message(), "INVALID ENTRY");
    EXPECT_EQ(Scratchpad(), "J70");
    cdu.Press("CLR");
    cdu.Press("DEL");
    cdu.Press("SP");
    cdu.PressAndFrame("LSK2R");  // an empty line requests its fix
    EXPECT_EQ(Scratchpad(), "EPH");
    cdu.PressAndFrame("LSK2R");
    EXPECT_EQ(Message(), "INVALID ENTRY");
    cdu.Press("CLR");
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK3R");
    EXPECT_EQ(Message(), "INVALID DELETE");
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(Message(), "INVALID DELETE");
    cdu.Press("CLR");
    cdu.Press("DEL");
    cdu.Press("SP");
    cdu.Type("NOWHERE");
    cdu.PressAndFrame("LSK4R");
    EXPECT_EQ(Message(), "NOT IN DATABASE");
    unchanged("page 2");
}

TEST(RtePage, OriginAndDestinationStartARouteAndANewOriginWipesIt) {
    CduRig cdu;
    const PlanContext& pc = g_plan.context;
    cdu.PressAndFrame("RTE");
    EXPECT_FALSE(cdu.ScreenHas("R U N W A Y")) << "no runway line without an origin";
    cdu.Type("KSEA");
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(pc.PlanState, 0);
    EXPECT_EQ(pc.ActiveLastRow, 0);
    EXPECT_EQ(pc.ActiveLeg, 999);
    EXPECT_EQ(Ident(g_plan.ActivePlan, 0), "KSEA");
    EXPECT_STREQ(g_plan.ActivePlan[0].WaypointType.data(), "APT");
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[0].Altitude, 433);
    EXPECT_EQ(Ident(g_plan.ModPlan, 0), "KSEA");
    EXPECT_TRUE(cdu.ScreenHas("R U N W A Y"));
    EXPECT_FALSE(cdu.ScreenHas("ACTIVATE")) << "an origin alone is no route";

    // The origin's runways, and no other.
    cdu.Type("16X");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(Message(), "NOT IN DATABASE");
    cdu.Press("DEL");
    cdu.Press("SP");
    cdu.Type("16L");
    cdu.PressAndFrame("LSK3L");
    EXPECT_STREQ(g_plan.context.Selections.DepartureRunway.data(), "16L");
    EXPECT_EQ(g_smiths.DepartureRunwayChosen, 1);
    EXPECT_TRUE(cdu.ScreenHas("16L"));

    cdu.Type("KOLM");
    cdu.PressAndFrame("LSK1R");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(pc.ModLastRow, 1);
    EXPECT_EQ(Idents(g_plan.ModPlan, 1), "KSEA KOLM");
    EXPECT_STREQ(g_plan.ModPlan[2].Ident.data(), "******");
    EXPECT_EQ(pc.ActiveLeg, 1);
    EXPECT_STREQ(g_plan.context.Selections.DestinationName.data(), "KOLM");
    EXPECT_TRUE(cdu.ScreenHas(" KOLM"));
    // Another destination replaces the first.
    cdu.Type("KGEG");
    cdu.PressAndFrame("LSK1R");
    EXPECT_EQ(Idents(g_plan.ModPlan, pc.ModLastRow), "KSEA KGEG");

    // A route on top, executed; then a new origin discards it all.
    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("LSK6R");
    cdu.PressAndFrame("EXEC");
    ASSERT_EQ(pc.PlanState, 3);
    cdu.Type("KPDX");
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(pc.PlanState, 0);
    EXPECT_EQ(pc.ActiveLastRow, 0);
    EXPECT_EQ(pc.ActiveLeg, 999);
    EXPECT_EQ(Ident(g_plan.ActivePlan, 0), "KPDX");
    EXPECT_EQ(Ident(g_plan.ActivePlan, 1), "") << "the old rows are gone";
    EXPECT_STREQ(g_plan.context.Selections.OriginName.data(), "KPDX");
    EXPECT_STREQ(g_plan.context.Selections.DestinationName.data(), "------");
    EXPECT_STREQ(g_plan.context.Selections.DepartureRunway.data(), "------");
    EXPECT_EQ(g_route_rows.count, 0);
    EXPECT_FALSE(cdu.ScreenHas("ACT"));
}

TEST(RtePage, DestinationOnAnActiveRouteWaitsForExecOrErase) {
    CduRig cdu;
    LoadAndExecute(cdu, "KSEAKGEG");
    const PlanContext& pc = g_plan.context;
    cdu.PressAndFrame("RTE");
    cdu.Type("KOLM");
    cdu.PressAndFrame("LSK1R");
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_TRUE(cdu.ExecLit());
    EXPECT_EQ(Ident(g_plan.ModPlan, pc.ModLastRow), "KOLM");
    EXPECT_EQ(Ident(g_plan.ActivePlan, pc.ActiveLastRow), "KGEG") << "active until EXEC";
    EXPECT_STREQ(g_plan.context.Selections.ModifiedDestination.data(), "KOLM");
    EXPECT_TRUE(cdu.ScreenHas("< ERASE"));
    std::string screen = cdu.Screen();
    EXPECT_NE(screen.find("[MOD]"), std::string::npos) << screen;
    EXPECT_NE(screen.find("[KOLM]"), std::string::npos) << screen;

    // ERASE: back to the active route.
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_FALSE(cdu.ExecLit());
    EXPECT_EQ(Idents(g_plan.ModPlan, pc.ModLastRow), kSeattleSpokane);
    EXPECT_STREQ(g_plan.context.Selections.ModifiedDestination.data(), "");
    EXPECT_FALSE(cdu.ScreenHas("[KOLM]"));

    // Again, and EXEC: the new destination is flown.
    cdu.Type("KOLM");
    cdu.PressAndFrame("LSK1R");
    cdu.Type("KPDX");
    cdu.PressAndFrame("LSK1R");  // in state 4 the modification is replaced
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_STREQ(g_plan.context.Selections.ModifiedDestination.data(), "KPDX");
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(Idents(g_plan.ActivePlan, pc.ActiveLastRow), "KSEA SEA NORMY BLUIT EPH WIPES GEG KPDX");
    EXPECT_STREQ(g_plan.context.Selections.DestinationName.data(), "KPDX");
    EXPECT_STREQ(g_plan.context.Selections.ModifiedDestination.data(), "");
    EXPECT_STREQ(g_airports.DestinationAirport.Ident.data(), "KPDX");
}

TEST(RtePage, CompanyRouteAndRunwayOnAnActiveRouteAreModifications) {
    CduRig cdu;
    LoadAndExecute(cdu, "KSEAKGEG");
    const PlanContext& pc = g_plan.context;
    cdu.PressAndFrame("RTE");
    cdu.Type("16L");
    cdu.PressAndFrame("LSK3L");
    EXPECT_STREQ(g_plan.context.Selections.DepartureRunway.data(), "16L") << "the first runway is set at once";
    EXPECT_EQ(pc.PlanState, 3);
    cdu.Type("34R");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_STREQ(g_plan.context.Selections.PendingDepartureRunway.data(), "34R");
    EXPECT_NE(cdu.Screen().find("[34R]"), std::string::npos) << cdu.Screen();
    cdu.PressAndFrame("EXEC");
    EXPECT_STREQ(g_plan.context.Selections.DepartureRunway.data(), "34R");
    EXPECT_STREQ(g_plan.context.Selections.SavedDepartureRunway.data(), "34R");

    cdu.Type("KSEAKOLM");
    cdu.PressAndFrame("LSK2L");
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_STREQ(g_plan.context.Selections.ModifiedDestination.data(), "KOLM");
    EXPECT_EQ(Ident(g_plan.ActivePlan, pc.ActiveLastRow), "KGEG");
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(Ident(g_plan.ActivePlan, pc.ActiveLastRow), "KOLM");
    EXPECT_STREQ(g_plan.context.Selections.DestinationName.data(), "KOLM");
}

TEST(RtePage, FunctionKeysLeadToTheirPages) {
    CduRig cdu;
    const PlanContext& pc = g_plan.context;
    cdu.PressAndFrame("INIT_REF");
    EXPECT_EQ(g_smiths.CduPage, 26) << "no plan under way";
    cdu.PressAndFrame("DIR_INTC");
    EXPECT_EQ(Message(), "NO ACTIVE ROUTE");
    EXPECT_EQ(g_smiths.CduPage, 26);
    cdu.Press("CLR");
    for (auto [key, page] : {std::pair{"CLB", 34}, std::pair{"CRZ", 35}, std::pair{"DES", 36},
                             std::pair{"DEP_ARR", 24}, std::pair{"PROG", 33}, std::pair{"FIX", 37}}) {
        cdu.PressAndFrame(key);
        EXPECT_EQ(g_smiths.CduPage, page) << key;
        EXPECT_TRUE(cdu.ScreenHas(SmithsPageTitle(page))) << key;
    }
    cdu.PressAndFrame("HOLD");
    EXPECT_EQ(g_smiths.CduPage, 6);
    EXPECT_EQ(g_smiths.LegsMode, 2) << "no hold in the plan: LEGS in hold mode";
    cdu.PressAndFrame("LEGS");
    EXPECT_EQ(g_smiths.LegsMode, 0);
    EXPECT_TRUE(cdu.ScreenHas("RTE    LEGS"));

    cdu.Press("SCREEN");
    ASSERT_EQ(cdu.sim().window_toggles.size(), 1u);
    EXPECT_EQ(cdu.sim().window_toggles[0], 4012u);

    LoadAndExecute(cdu, "KSEAKGEG");
    ASSERT_EQ(pc.PlanState, 3);
    cdu.PressAndFrame("INIT_REF");
    EXPECT_EQ(g_smiths.CduPage, 3) << "a plan under way";
    cdu.PressAndFrame("DIR_INTC");
    EXPECT_EQ(g_smiths.CduPage, 6);
    EXPECT_EQ(g_smiths.LegsMode, 1);
    EXPECT_EQ(Message(), "");

    // RTE pages wrap both ways.
    cdu.PressAndFrame("RTE");
    EXPECT_EQ(g_smiths.rte.page, 1);
    cdu.PressAndFrame("PREV_PAGE");
    EXPECT_EQ(g_smiths.rte.page, 2);
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_EQ(g_smiths.rte.page, 1);
}

TEST(RtePage, TwinGaugeShowsTheSameCdu) {
    CduRig cdu(GaugeId::SMITHS_FMS_BR);
    cdu.PressAndFrame("RTE");
    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("LSK6R");
    EXPECT_TRUE(cdu.ExecLit());
    // The other twin's lamp reads the same state.
    GaugeInstance other(GaugeId::SMITHS_FMS, "");
    other.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_FALSE(other.Hidden(2));
    cdu.PressAndFrame("EXEC");
    other.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_TRUE(other.Hidden(2));
    EXPECT_EQ(g_plan.context.ActiveLeg, 1);
}
