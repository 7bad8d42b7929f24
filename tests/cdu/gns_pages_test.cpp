// gns_pages_test.cpp: the GNS unit driven by its keys: the field editor,
// plans built from the "******" slot, pilot and offset waypoints, deletion,
// stored plans, saving, Direct-To and the holding pattern page.
#include "cdu/gns_rig.h"

#include "frame/aircraft_profile.h"
#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "plan/plan_execute.h"

#include <cstdio>
#include <filesystem>

using namespace gns_test;

namespace {
constexpr double kPi = 3.14159265358979323846;

// A flat-earth look at a short offset: fine to a few hundredths of a mile.
void Offset(double lat, double lon, double true_bearing, double nm, double& out_lat, double& out_lon) {
    double b = true_bearing * kPi / 180;
    out_lat = lat + nm * std::cos(b) / 60;
    out_lon = lon + nm * std::sin(b) / 60 / std::cos(lat * kPi / 180);
}
}  // namespace

TEST(GnsFieldEditor, FreshFieldIsReplacedAndHeldToItsWidth) {
    GnsRig gns;
    OpenEmptyPlan(gns);
    ASSERT_EQ(g_gns_page.GnsStoredIndex, g_stored_plans.count) << "NEXT FPL is the table's last entry";
    ASSERT_EQ(g_plan.context.ModLastRow, -1);
    // The slot marked: the field opens on "******" and the first letter erases it.
    gns.Key("LSK1L");
    EXPECT_EQ(Field(), "******");
    EXPECT_EQ(g_gns_page.GnsInsertIndex, 1);
    gns.Type("K");
    EXPECT_EQ(Field(), "K");
    EXPECT_EQ(std::string(g_gns_page.GnsField.data()), "K     ") << "padded to six";
    // Six characters and no seventh.
    gns.Type("SEAXYZ");
    EXPECT_EQ(Field(), "KSEAXY");
    // CLR takes the last character off an edited field.
    gns.Key("CLR");
    gns.Key("CLR");
    EXPECT_EQ(Field(), "KSEA");
    // Keys typed while no field is open change nothing: the second press
    // finds no second entry and closes the line.
    gns.Key("LSK1L");
    EXPECT_EQ(g_gns_page.GnsEditing, 0);
    gns.Type("Q");
    EXPECT_EQ(Field(), "KSEA");
}

TEST(GnsFlightPlan, RouteBuiltFromTheSlotAndActivated) {
    GnsRig gns;
    OpenEmptyPlan(gns);
    gns.Key("LSK1L");
    // An airport: DATABASE WPT shows it, ENTER puts it into the plan.
    gns.Type("KSEA");
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kDatabaseWpt);
    EXPECT_TRUE(gns.Has("DATABASE WPT 1/"));
    EXPECT_NE(gns.RowWith("WAYPOINT").find("KSEA"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kFlightPlan);
    EXPECT_EQ(ModIdents(), "KSEA");
    // The slot has moved one row down and the cursor stands on it.
    EXPECT_EQ(g_gns_page.GnsInsertIndex, 2);
    EXPECT_EQ(Field(), "******");
    EXPECT_NE(gns.RowWith("[******]").find("[******]"), std::string::npos) << gns.Screen();
    AddWaypoint(gns, "SEA");
    AddWaypoint(gns, "NORMY");
    AddWaypoint(gns, "KGEG");
    EXPECT_EQ(ModIdents(), "KSEA SEA NORMY KGEG");
    EXPECT_EQ(std::string(g_plan.context.Selections.OriginName.data()), "KSEA");
    EXPECT_EQ(std::string(g_plan.context.Selections.DestinationName.data()), "KGEG");
    // SEA is the navaid: its frequency came along.
    EXPECT_STRNE(g_plan.ModPlan[1].Frequency.data(), "");
    // "SELECT?" and ENTER: the stored plan becomes the active plan.
    gns.Key("LSK5R");
    EXPECT_TRUE(gns.Has("SELECT?"));
    gns.Key("ENTER");
    EXPECT_EQ(g_plan.context.PlanState, 3);
    EXPECT_EQ(ActiveIdents(), "KSEA SEA NORMY KGEG");
    EXPECT_EQ(g_plan.context.ActiveLeg, 1);
    EXPECT_EQ(g_gns_page.GnsSubMode, 1);
    EXPECT_TRUE(gns.Has("ACTIVE FPL"));
    EXPECT_NE(gns.RowWith(" SEA ").find("TO"), std::string::npos) << gns.Screen();
}

TEST(GnsFlightPlan, ActivePlanChangesAtOnceOnEnter) {
    GnsRig gns;
    ActivatePlan(gns, {"KSEA", "KGEG"});
    ASSERT_EQ(ActiveIdents(), "KSEA KGEG");
    // A fix put in before KGEG on the active plan: no EXEC, the plan flies it.
    gns.Key("LSK1R");  // nothing: key 6 has no entry role
    gns.Key("LSK1L");
    gns.Key("LSK1L");  // second press: the second entry, KGEG
    ASSERT_EQ(Field(), "KGEG");
    AddWaypoint(gns, "NORMY");
    EXPECT_EQ(ActiveIdents(), "KSEA NORMY KGEG");
    EXPECT_EQ(g_plan.context.PlanState, 3);
    EXPECT_EQ(g_plan.context.ActiveLeg, 1);
    EXPECT_EQ(std::string(g_plan.ActivePlan[g_plan.context.ActiveLeg].Ident.data()), "NORMY");
}

TEST(GnsFlightPlan, UnknownNameOpensPilotWaypoint) {
    GnsRig gns;
    BuildPlan(gns, {"KSEA"});
    gns.Type("ZZQQ1");
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kPilotWpt);
    EXPECT_TRUE(gns.Has("PILOT ENTERED WPT"));
    EXPECT_NE(gns.RowWith("WAYPOINT").find("ZZQQ1"), std::string::npos);
    // N 47 30, W 121 15: the cursor goes on from the latitude to the longitude.
    gns.Type("N4730");
    EXPECT_NE(gns.Screen().find("[N 47 30.--]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    EXPECT_EQ(g_gns_page.GnsLineState[8], 1);
    gns.Type("W12115");
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kFlightPlan);
    ASSERT_EQ(ModIdents(), "KSEA ZZQQ1");
    EXPECT_NEAR(g_plan.ModPlan[1].Latitude, 47.5, 1e-9);
    EXPECT_NEAR(g_plan.ModPlan[1].Longitude, -121.25, 1e-9);
    EXPECT_STREQ(g_plan.ModPlan[1].WaypointType.data(), "WPT");
    EXPECT_EQ(g_plan.ModPlan[1].Altitude, kNoAltitude);
}

TEST(GnsFlightPlan, StarNameOpensOffsetWaypoint) {
    GnsRig gns;
    BuildPlan(gns, {"KSEA"});
    // A base that isn't found: nothing happens and no page opens.
    gns.Type("QQQQ*");
    gns.Key("ENTER");
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kFlightPlan);
    gns.Key("LSK1L");  // third press: closed
    gns.Key("LSK1L");
    gns.Key("LSK1L");  // the slot again
    gns.Type("SEA*");
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kOffsetWpt);
    EXPECT_TRUE(gns.Has("OFFSET WPT"));
    EXPECT_NE(gns.RowWith("WAYPOINT").find("SEA*"), std::string::npos);
    EXPECT_NE(gns.RowWith("RAD").find("[   ]"), std::string::npos) << gns.Screen();
    // Radial 090 (variation 0 here), 12 nm.
    g_sim.magnetic_variation = 0;
    gns.Type("090");
    gns.Key("ENTER");
    gns.Type("12");
    gns.Key("ENTER");
    EXPECT_TRUE(gns.Has("OK? ENTER"));
    double sea_lat = g_candidates.rows[1].Latitude;
    double sea_lon = g_candidates.rows[1].Longitude;
    gns.Key("ENTER");
    ASSERT_EQ(ModIdents(), "KSEA SEA*");
    double lat = 0;
    double lon = 0;
    Offset(sea_lat, sea_lon, 90, 12, lat, lon);
    EXPECT_NEAR(g_plan.ModPlan[1].Latitude, lat, 0.002);
    EXPECT_NEAR(g_plan.ModPlan[1].Longitude, lon, 0.002);
    EXPECT_STREQ(g_plan.ModPlan[1].WaypointType.data(), "INT");
}

TEST(GnsFlightPlan, ClrOnAFreshEntryAsksDeleteAndEnterDeletes) {
    GnsRig gns;
    BuildPlan(gns, {"KSEA", "SEA", "NORMY", "KGEG"});
    // SEA and NORMY made a SID whose end is also a STAR's start, so that
    // deleting SEA breaks it.
    SetText(g_plan.ModPlan[1].SegmentKind, "SID");
    SetText(g_plan.ModPlan[2].SegmentKind, "SIDSTAR");
    gns.Key("LSK1L");
    gns.Key("LSK1L");  // entry 2, SEA
    ASSERT_EQ(Field(), "SEA");
    gns.Key("CLR");
    EXPECT_EQ(Field(), "SEA") << "a fresh field is not erased";
    EXPECT_TRUE(gns.Has("DELETE?"));
    gns.Key("ENTER");
    EXPECT_EQ(ModIdents(), "KSEA NORMY KGEG");
    EXPECT_STREQ(g_plan.ModPlan[1].SegmentKind.data(), "STAR") << "the SID's part gone, the STAR's kept";
    // An edited field takes CLR as a backspace, with no "DELETE?".
    gns.Key("LSK1L");  // the key stood at its second press: closed
    gns.Key("LSK1L");  // entry 1, KSEA
    gns.Type("AB");
    gns.Key("CLR");
    EXPECT_EQ(Field(), "A");
    EXPECT_FALSE(gns.Has("DELETE?"));
}

TEST(GnsFlightPlan, StoredPlanLoadedAndActivated) {
    GnsRig gns;
    gns.Frame();
    // The list: "NEXT FPL" first (yellow), then the files.
    EXPECT_TRUE(gns.Has("FLIGHT PLAN LIST 1/1")) << gns.Screen();
    gns.Key("LSK1L");
    gns.Key("LSK1L");  // second row: the first file
    EXPECT_NE(gns.Screen().find("[KPDXKSEA.RTE]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    ASSERT_GT(g_gns_page.GnsStoredIndex, 0);
    EXPECT_EQ(ModIdents(), "KPDX BTG ALDER SEA KSEA");
    EXPECT_TRUE(gns.Has("FLIGHT PLAN"));
    gns.Key("LSK5R");
    gns.Key("ENTER");
    EXPECT_EQ(g_plan.context.PlanState, 3);
    EXPECT_EQ(ActiveIdents(), "KPDX BTG ALDER SEA KSEA");
    EXPECT_EQ(g_plan.context.ActiveLeg, 1);
    EXPECT_EQ(g_plan.context.CruiseAltitude, 21000);
}

TEST(GnsFlightPlan, SavedPlanReadsBackThroughTheRouteReader) {
    GnsRig gns;
    namespace fs = std::filesystem;
    fs::path scratch = fs::temp_directory_path() / "orb_gns_save";
    fs::remove_all(scratch);
    fs::create_directories(scratch / "orb" / "flightplans");
    ActivatePlan(gns, {"KSEA", "SEA", "KGEG"});
    ASSERT_EQ(g_plan.context.PlanState, 3);
    CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), scratch.string());
    gns.Key("LSK4R");
    EXPECT_TRUE(gns.Has("SAVE FPL?"));
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kSave);
    EXPECT_EQ(Field(), "KSEAKGEG");
    EXPECT_NE(gns.Screen().find("[KSEAKGEG  ]"), std::string::npos) << gns.Screen();
    gns.Type("X");  // the name replaced by the pilot's
    gns.Key("ENTER");  // the name taken, the field closed
    gns.Key("ENTER");  // saved
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kFlightPlan);
    ASSERT_TRUE(fs::exists(scratch / "orb" / "flightplans" / "X.RTE"));
    LoadRoutePreview("X.RTE");
    EXPECT_EQ(cdu_test::Idents(g_plan.PreviewPlan, g_plan.context.PreviewLastRow), "KSEA SEA KGEG");
    EXPECT_NEAR(g_plan.PreviewPlan[1].Latitude, g_plan.ActivePlan[1].Latitude, 1e-4);
    fs::remove_all(scratch);
}

TEST(GnsDirect, DirectToAFixTurnsAtOnce) {
    GnsRig gns;
    ActivatePlan(gns, {"KSEA", "SEA", "NORMY", "KGEG"});
    ASSERT_EQ(g_plan.context.PlanState, 3);
    g_sim.latitude = 47.2;
    g_sim.longitude = -122.0;
    gns.Key("DIRECT");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kDirect);
    EXPECT_TRUE(gns.Has("DIRECT 1/"));
    EXPECT_NE(gns.Screen().find("[******]"), std::string::npos);
    gns.Type("NORMY");
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kDatabaseWpt);
    EXPECT_TRUE(gns.Has("DIRECTION:"));
    gns.Key("ENTER");
    EXPECT_EQ(ActiveIdents(), "KSEA SEA DIRECT NORMY KGEG");
    EXPECT_EQ(g_plan.context.ActiveLeg, 3);
    EXPECT_NEAR(g_plan.ActivePlan[2].Latitude, 47.2, 1e-9);
    EXPECT_NEAR(g_plan.ActivePlan[2].Longitude, -122.0, 1e-9);
    EXPECT_STREQ(g_plan.ActivePlan[2].SegmentKind.data(), "DCT");
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kFlightPlan);
}

TEST(GnsDirect, ForcedTurnOnlyAgainstTheShortWay) {
    GnsRig gns;
    ActivatePlan(gns, {"KSEA", "NORMY", "KGEG"});
    // NORMY lies east; heading north the short way is right.
    g_sim.latitude = 47.43;
    g_sim.longitude = -122.3;
    g_sim.magnetic_variation = 0;
    g_sim.heading_magnetic.now = 0;
    gns.Key("DIRECT");
    gns.Type("NORMY");
    gns.Key("ENTER");
    gns.Key("LSK5R");
    gns.Key("LSK5R");  // the direction line
    gns.Key("CLR");    // DEFAULT -> LEFT
    EXPECT_NE(gns.Screen().find("[LEFT]"), std::string::npos) << gns.Screen();
    gns.sim().key_events.clear();
    gns.Key("ENTER");  // the direction taken
    gns.Key("ENTER");  // the Direct-To
    EXPECT_EQ(g_lnav.ForcedTurnSide, 1);
    // The bug went out to the left of the heading.
    bool bug_left = false;
    for (auto& e : gns.sim().key_events)
        if (e.first == 0x101FA && e.second > 180 && e.second < 360) bug_left = true;
    EXPECT_TRUE(bug_left);
    // "RIGHT" along the short way forces nothing.
    gns.Key("DIRECT");
    gns.Type("KGEG");
    gns.Key("ENTER");
    gns.Key("LSK5R");
    gns.Key("LSK5R");
    gns.Key("CLR");  // LEFT, where the last Direct-To left it, -> RIGHT
    EXPECT_NE(gns.Screen().find("[RIGHT]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    gns.Key("ENTER");
    EXPECT_EQ(g_lnav.ForcedTurnSide, 0);
}

TEST(GnsHolding, HoldKeyOnAMarkedEntryAndTheAutoExit) {
    GnsRig gns;
    ActivatePlan(gns, {"KSEA", "SEA", "NORMY"});
    g_sim.magnetic_variation = 0;
    gns.Key("LSK2L");  // entry 3, NORMY
    ASSERT_EQ(Field(), "NORMY");
    gns.Key("HOLD");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kHolding);
    ASSERT_EQ(g_holds.HoldCount, 1);
    const HoldRecord& hold = g_holds.HoldTable[1];
    EXPECT_STREQ(hold.Ident.data(), "NORMY");
    EXPECT_EQ(g_plan.ActivePlan[2].HoldIndex, 1);
    // Inbound course: SEA to NORMY, worked out here on a flat earth.
    const PlanWaypoint& a = g_plan.ActivePlan[1];
    const PlanWaypoint& b = g_plan.ActivePlan[2];
    double dx = (b.Longitude - a.Longitude) * std::cos(a.Latitude * kPi / 180);
    double dy = b.Latitude - a.Latitude;
    double course = std::fmod(std::atan2(dx, dy) * 180 / kPi + 360, 360);
    EXPECT_NEAR(hold.InboundCourse, course, 1.0);
    EXPECT_DOUBLE_EQ(hold.LegMinutes, g_profile.HoldLegMins);
    EXPECT_TRUE(gns.Has("AT NORMY"));
    EXPECT_NE(gns.RowWith("EXIT MODE").find("MANUAL"), std::string::npos);
    // EXIT MODE to "AUTO" by key 10 and CLR.
    gns.Key("LSK5R");
    gns.Key("CLR");
    EXPECT_EQ(g_holds.HoldExitState, 2);
    EXPECT_NE(gns.Screen().find("[AUTO]"), std::string::npos) << gns.Screen();
    // Leg time typed into its mask: 1.5 minutes.
    gns.Key("LSK3R");
    gns.Type("15");
    EXPECT_NE(gns.Screen().find("[1.5]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    EXPECT_DOUBLE_EQ(hold.LegMinutes, 1.5);
    EXPECT_EQ(hold.LegMode, 1);
    // Leg distance, the second state of key 8: the hold turns distance-based.
    gns.Key("LSK3R");
    gns.Key("LSK3R");
    gns.Type("105");
    gns.Key("ENTER");
    EXPECT_DOUBLE_EQ(hold.LegDistance, 10.5);
    EXPECT_EQ(hold.LegMode, 2);
    EXPECT_NE(gns.RowWith("LEG TIME").find("(1.5)"), std::string::npos) << gns.Screen();
}
