// airways_test.cpp: fetching an airway's stretches from awys.txt around the
// plan's current fix.
#include "navdata/sim_folder.h"

#include "frame/data_text.h"

namespace {
// J5 in two runs with another airway between them and one behind.
const char* kAwys =
    "J5 10 AAAAA 1 1\n"
    "J5 20 BBBBB 2 2\n"
    "J9 10 NINER 9 9\n"
    "J5 10 CCCCC 3 3\n"
    "J5 20 SEA 4 4\n"
    "J5 30 DDDDD 5 5\n"
    "V1 10 VVVVV 6 6\n"
    "J5 10 LATER 7 7\n";

void PlanFix(const char* ident) {
    g_plan.context.ModActiveLeg = 1;
    SetText(g_plan.ModPlan[1].Ident, ident);
}
std::string Row(int row) { return g_candidates.rows[row].Ident.data(); }
}  // namespace

TEST(Airways, FetchReadsRunsUpToTheOneWithTheFix) {
    SimFolder sim;
    sim.Write("orb/navdata/awys.txt", kAwys);
    PlanFix("SEA");
    FetchAirway("J5");
    // The first run stays ahead; reading ends at the first other airway after the fix.
    ASSERT_EQ(g_candidates.count, 5);
    EXPECT_EQ(Row(1), "AAAAA");
    EXPECT_EQ(Row(3), "CCCCC");
    EXPECT_EQ(Row(5), "DDDDD");
    EXPECT_EQ(g_airway.AirwayEntryRow, 4);
    EXPECT_EQ(g_airway.AirwayListCursor, 4);
    EXPECT_EQ(g_airway.AirwayPageCount, 1);
    EXPECT_STREQ(g_candidates.rows[4].Spare1.data(), "J5");
    EXPECT_STREQ(g_candidates.rows[4].Frequency.data(), "");
    EXPECT_DOUBLE_EQ(g_candidates.rows[5].Latitude, 5);
    // The pilot's exit: forward or backward from the entry.
    EXPECT_EQ(FindInCandidates("DDDDD"), 5);
    EXPECT_EQ(FindInCandidates("BBBBB"), 2);
    EXPECT_EQ(FindInCandidates("NINER"), 0);
    // A three-letter navaid of the airway is in the fetch but not in the fix table.
    LoadNavDatabase();
    for (int i = 1; i <= g_navdb.AirwayFixTable.count; ++i) EXPECT_NE(IdentOf(g_navdb.AirwayFixTable, i), "SEA");
    EXPECT_EQ(g_navdb.AirwayFixTable.count, 7);
}

TEST(Airways, AirwayThatMissesTheFixSaysNA) {
    SimFolder sim;
    sim.Write("orb/navdata/awys.txt", kAwys);
    PlanFix("NOWHERE");
    FetchAirway("#J5");  // '#' in front is dropped
    EXPECT_EQ(g_candidates.count, 6);  // every run was read
    EXPECT_EQ(g_airway.AirwayEntryRow, 0);
    EXPECT_STREQ(g_airway.RouteLineText.data(), "J5 (N/A)");
    // The fix from the active plan when the route page shows it.
    SetText(g_plan.ActivePlan[1].Ident, "BBBBB");
    FetchAirway("J5", true);
    EXPECT_EQ(g_airway.AirwayEntryRow, 2);
    EXPECT_EQ(g_candidates.count, 2);
    // An unknown airway, or no file: an empty list.
    FetchAirway("Q99");
    EXPECT_EQ(g_candidates.count, 0);
    std::filesystem::remove(sim.root() / "orb/navdata/awys.txt");
    FetchAirway("J5", true);
    EXPECT_EQ(g_candidates.count, 0);
    EXPECT_EQ(g_airway.AirwayEntryRow, 0);
}

TEST(Airways, PagesAndTheListLimit) {
    SimFolder sim;
    std::string awys;
    for (int i = 1; i <= 33; ++i) awys += "UL1 " + std::to_string(i) + " FX" + std::to_string(i) + " 1 2\n";
    for (int i = 1; i <= 300; ++i) awys += "LONG " + std::to_string(i) + " LG" + std::to_string(i) + " 1 2\n";
    sim.Write("orb/navdata/awys.txt", awys);
    PlanFix("FX1");
    FetchAirway("UL1");
    EXPECT_EQ(g_candidates.count, 33);
    EXPECT_EQ(g_airway.AirwayPageCount, 3);
    PlanFix("LG2");
    FetchAirway("LONG");
    EXPECT_EQ(g_candidates.count, kCandidateLimit);
    EXPECT_EQ(Row(kCandidateLimit), "LG250");
    // Past the list's room the fix can't be found.
    PlanFix("LG260");
    FetchAirway("LONG");
    EXPECT_EQ(g_airway.AirwayEntryRow, 0);
}
