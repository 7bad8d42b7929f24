// dep_arr_pages_test.cpp: DEP/ARR INDEX, DEPARTURES and ARRIVALS on a
// scratch copy of the demonstration folder with a few procedures of its own:
// lists that follow the runway, a list that collapses to the chosen SID and
// its transitions, "<SEL>" before EXEC and "<ACT>" after it, the runway
// column, and the approach that ends the route.
#include "cdu_rig.h"

#include "navdata/procedures.h"
#include "plan/plan_execute.h"

#include <filesystem>
#include <fstream>

using namespace cdu_test;

namespace {
namespace fs = std::filesystem;

// SUMMA2 serves the 16s and has two transitions; HAROB6 the 34s only.
constexpr const char* kSids =
    "[KSEA]\n"
    "T SUMMA2 X 16L,16C,16R\n"
    "SUMMA2 SUMMA 5000 --- 46.617859 -121.988322\n"
    "SUMMA2.YKM YKM --- --- 46.570000 -120.444000\n"
    "SUMMA2.EPH EPH --- --- 47.377919 -119.424004\n"
    "T HAROB6 X 34L,34C,34R\n"
    "HAROB6 HAROB 6000 --- 47.600000 -122.600000\n";
constexpr const char* kStars =
    "[KGEG]\n"
    "T GEG1 X 03,21\n"
    "GEG1.EPH EPH --- --- 47.377919 -119.424004\n"
    "GEG1 WIPES --- --- 47.412930 -119.108172\n"
    "GEG1 GEG --- --- 47.564944 -117.626886\n";
constexpr const char* kApproaches =
    "[KGEG]\n"
    "21 ILS21 GEG IAF 4000 47.564944 -117.626886 --- 0 0\n"
    "21 ILS21 CF21 FAF 3500 47.700000 -117.440000 --- 0 0\n"
    "21 ILS21 RW21 MAP 2400 47.631217 -117.518267 --- 0 0\n"
    "03 RNV03 JURSY IAF 5000 47.682671 -117.046170 --- 0 0\n";

// The demonstration folder's orb files (database, stored routes) with these
// procedure files in place of its own.
void UseProcedureFolder() {
    // One folder a test: ctest runs the tests side by side.
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    fs::path root = fs::path(ORB_BINARY_DIR) / "test-sim" / (std::string("cdu-procedures.") + test->name());
    fs::remove_all(root);
    fs::create_directories(root);
    fs::copy(fs::path(ORB_SOURCE_DIR) / "data" / "sim" / "orb", root / "orb", fs::copy_options::recursive);
    std::ofstream(root / "orb" / "navdata" / "sids.txt") << kSids;
    std::ofstream(root / "orb" / "navdata" / "stars.txt") << kStars;
    std::ofstream(root / "orb" / "navdata" / "apps.txt") << kApproaches;
    CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), root.string());
}

void Enter(CduRig& cdu, const char* text, const char* key) {
    cdu.Type(text);
    cdu.PressAndFrame(key);
}

bool PlanHasKind(const char* ident, const char* kind) {
    for (int i = 0; i <= g_plan.context.ModLastRow; ++i)
        if (Ident(g_plan.ModPlan, i) == ident && std::string(g_plan.ModPlan[i].SegmentKind.data()) == kind) return true;
    return false;
}
}  // namespace

TEST(DepArrPages, DeparturesFollowTheRunwayCollapseToTheChoiceAndMarkIt) {
    CduRig cdu;
    UseProcedureFolder();
    cdu.PressAndFrame("RTE");
    Enter(cdu, "KSEAKGEG", "LSK2L");
    Enter(cdu, "16L", "LSK3L");
    ASSERT_EQ(Message(), "");
    ASSERT_EQ(g_plan.context.PlanState, 1);

    // The index: each side with its airport.
    cdu.PressAndFrame("DEP_ARR");
    EXPECT_EQ(g_smiths.CduPage, 24);
    EXPECT_TRUE(cdu.ScreenHas("< DEP"));
    EXPECT_TRUE(cdu.ScreenHas("ARR >"));
    EXPECT_TRUE(cdu.ScreenHas("KSEA"));
    EXPECT_TRUE(cdu.ScreenHas("KGEG"));
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(g_smiths.CduPage, 10);
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("KSEA DEPARTURES"));
    // 16L chosen: only the SID of the 16s, and the runway with its mark.
    EXPECT_NE(RowWith(cdu, "SUMMA2"), "") << cdu.Screen();
    EXPECT_FALSE(cdu.ScreenHas("HAROB6")) << cdu.Screen();
    EXPECT_NE(RowWith(cdu, "16L").find("<SEL>"), std::string::npos) << cdu.Screen();

    // The SID chosen: the list collapses to it and its transitions, sorted.
    cdu.PressAndFrame("LSK1L");
    EXPECT_STREQ(g_plan.context.Selections.SidName.data(), "SUMMA2");
    EXPECT_EQ(g_smiths.SidChosen, 1);
    EXPECT_NE(RowWith(cdu, "SUMMA2").find("<SEL>"), std::string::npos) << cdu.Screen();
    EXPECT_TRUE(cdu.ScreenHas("T R A N S"));
    std::string screen = cdu.Screen();
    size_t eph = screen.find("EPH");
    size_t ykm = screen.find("YKM");
    ASSERT_NE(eph, std::string::npos) << screen;
    ASSERT_NE(ykm, std::string::npos) << screen;
    EXPECT_LT(eph, ykm) << "transitions in name order";
    EXPECT_TRUE(PlanHasKind("SUMMA", "SID")) << Idents(g_plan.ModPlan, g_plan.context.ModLastRow);
    EXPECT_EQ(g_plan.context.PlanState, 1);

    // YKM on line 3: only it stays, marked, and the route goes through it.
    cdu.PressAndFrame("LSK3L");
    EXPECT_STREQ(g_plan.context.Selections.SidTransition.data(), "YKM");
    EXPECT_EQ(g_smiths.SidTransitionChosen, 1);
    EXPECT_NE(RowWith(cdu, "YKM").find("<SEL>"), std::string::npos) << cdu.Screen();
    EXPECT_FALSE(cdu.ScreenHas("EPH"));
    EXPECT_TRUE(PlanHasKind("YKM", "SID")) << Idents(g_plan.ModPlan, g_plan.context.ModLastRow);

    // ROUTE> and back; activated and executed the marks read <ACT>.
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 22);
    cdu.PressAndFrame("LSK6R");  // ACTIVATE
    cdu.PressAndFrame("EXEC");
    ASSERT_EQ(g_plan.context.PlanState, 3);
    cdu.PressAndFrame("DEP_ARR");
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(g_smiths.SidChosen, 2) << "kept from before";
    EXPECT_EQ(g_smiths.SidTransitionChosen, 0) << "the transition to choose again";
    cdu.Frame();
    EXPECT_NE(RowWith(cdu, "SUMMA2").find("<ACT>"), std::string::npos) << cdu.Screen();
    EXPECT_NE(RowWith(cdu, "YKM").find("<ACT>"), std::string::npos) << cdu.Screen();

    // The SID's line opens the list again; <INDEX returns.
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(g_smiths.SidChosen, 0);
    EXPECT_FALSE(cdu.ScreenHas("T R A N S"));
    EXPECT_NE(RowWith(cdu, "SUMMA2").find("<ACT>"), std::string::npos) << cdu.Screen();
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.CduPage, 24);
}

TEST(DepArrPages, ArrivalsStarAndApproachEndTheRoute) {
    CduRig cdu;
    UseProcedureFolder();
    cdu.PressAndFrame("RTE");
    Enter(cdu, "KSEA", "LSK1L");

    // Without a destination ARR does nothing; with one, ARRIVALS.
    cdu.PressAndFrame("DEP_ARR");
    cdu.PressAndFrame("LSK1R");
    EXPECT_EQ(g_smiths.CduPage, 24);
    cdu.PressAndFrame("RTE");
    Enter(cdu, "KGEG", "LSK1R");
    cdu.PressAndFrame("DEP_ARR");
    cdu.PressAndFrame("LSK1R");
    EXPECT_EQ(g_smiths.CduPage, 11);
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("KGEG ARRIVALS"));
    EXPECT_TRUE(cdu.ScreenHas("S T A R S"));
    EXPECT_TRUE(cdu.ScreenHas("A P P R O A C H E S"));
    EXPECT_NE(RowWith(cdu, "GEG1"), "") << cdu.Screen();
    // Approaches as type and runway.
    EXPECT_TRUE(cdu.ScreenHas(" ILS  21")) << cdu.Screen();
    EXPECT_TRUE(cdu.ScreenHas(" RNV  03")) << cdu.Screen();

    // The STAR: collapsed, marked, its rows before the destination.
    cdu.PressAndFrame("LSK1L");
    EXPECT_STREQ(g_plan.context.Selections.StarName.data(), "GEG1");
    EXPECT_NE(RowWith(cdu, "GEG1").find("<SEL>"), std::string::npos) << cdu.Screen();
    EXPECT_TRUE(PlanHasKind("WIPES", "STAR")) << Idents(g_plan.ModPlan, g_plan.context.ModLastRow);
    EXPECT_EQ(Ident(g_plan.ModPlan, g_plan.context.ModLastRow), "KGEG");

    // The ILS on its line of the right column: approach rows up to the
    // missed approach point, and the airport last.
    std::string screen = cdu.Screen();
    int ils_line = 0;
    for (int n = 1; n <= 5 && ils_line == 0; ++n) {
        int y = 33 + 33 * (n - 1);
        char head[8];
        std::snprintf(head, sizeof head, "%3d|", y);
        size_t at = screen.find(head);
        if (at != std::string::npos && screen.substr(at, screen.find('\n', at) - at).find("ILS") != std::string::npos)
            ils_line = n;
    }
    ASSERT_GT(ils_line, 0) << screen;
    cdu.PressAndFrame(("LSK" + std::to_string(ils_line) + "R").c_str());
    EXPECT_STREQ(g_plan.context.Selections.ApproachName.data(), "ILS21");
    EXPECT_EQ(g_smiths.ApproachChosen, 1);
    EXPECT_NE(RowWith(cdu, "ILS").find("<SEL>"), std::string::npos) << cdu.Screen();
    EXPECT_FALSE(cdu.ScreenHas(" RNV  03")) << "the list collapsed to the choice";
    EXPECT_TRUE(PlanHasKind("CF21", "APPR")) << Idents(g_plan.ModPlan, g_plan.context.ModLastRow);
    EXPECT_FALSE(PlanHasKind("RW21", "APPR")) << "the missed approach isn't flown";
    EXPECT_EQ(Ident(g_plan.ModPlan, g_plan.context.ModLastRow), "KGEG");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 22);
}
