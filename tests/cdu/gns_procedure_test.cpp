// gns_procedure_test.cpp: the GNS procedure pages walked as a pilot walks
// them, and the VNAV pages in climb.
#include "cdu/gns_rig.h"

#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/procedures.h"

using namespace gns_test;

namespace {
constexpr double kPi = 3.14159265358979323846;

// The KPDX to KSEA company route from the list, activated.
void ActivateKpdxKsea(GnsRig& gns) {
    gns.Key("LSK1L");
    gns.Key("LSK1L");
    gns.Key("ENTER");
    gns.Key("LSK5R");
    gns.Key("ENTER");
    ASSERT_EQ(ActiveIdents(), "KPDX BTG ALDER SEA KSEA");
}

double FlatDistanceNm(double lat1, double lon1, double lat2, double lon2) {
    double dy = (lat2 - lat1) * 60;
    double dx = (lon2 - lon1) * 60 * std::cos((lat1 + lat2) / 2 * kPi / 180);
    return std::sqrt(dx * dx + dy * dy);
}
}  // namespace

TEST(GnsDeparture, SidWithOneTransitionTakesItByItself) {
    GnsRig gns;
    ActivateKpdxKsea(gns);
    gns.Key("LSK4L");
    EXPECT_NE(gns.Screen().find("[DEPART?]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kDeparture);
    // The airport is known: the SID list opens at once, its first name under the cursor.
    EXPECT_TRUE(gns.Has("DEPARTURE"));
    EXPECT_NE(gns.RowWith("DEPARTURE").find("KPDX"), std::string::npos);
    EXPECT_EQ(g_gns_page.GnsLineState[7], 1);
    EXPECT_NE(gns.Screen().find("[BGRND1?]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    // BGRND1 has the one transition UBG: taken without a list; the runways open.
    const GnsProcedureTemporaries& t = g_plan_texts.GnsDeparture;
    EXPECT_STREQ(t.procedure.data(), "BGRND1");
    EXPECT_STREQ(t.transition.data(), "UBG");
    EXPECT_EQ(g_gns_page.GnsLineState[6], 2) << gns.Screen();
    EXPECT_TRUE(gns.Has("RW10L?")) << gns.Screen();
    // The cursor moved to the fourth runway, 28R, and taken.
    gns.Key("LSK4L");
    gns.Key("LSK4L");
    EXPECT_EQ(Field(), "28R");
    gns.Key("ENTER");
    EXPECT_STREQ(t.runway.data(), "28R");
    EXPECT_EQ(g_gns_page.GnsLegsShown[0], 1);
    EXPECT_TRUE(gns.Has("WAYPOINTS OF SID:"));
    EXPECT_TRUE(gns.Has("SELECT?"));
    EXPECT_TRUE(gns.Has("UBG"));
    // Nothing in the plan yet: only the last ENTER changes it.
    EXPECT_EQ(ActiveIdents(), "KPDX BTG ALDER SEA KSEA");
    gns.Key("ENTER");
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kFlightPlan);
    std::string idents = ActiveIdents();
    EXPECT_NE(idents.find("UBG"), std::string::npos) << idents;
    EXPECT_EQ(idents.substr(0, 5), "KPDX ");
    EXPECT_STREQ(g_plan.context.Selections.SidName.data(), "BGRND1");
    EXPECT_STREQ(g_plan.context.Selections.DepartureRunway.data(), "28R");
    EXPECT_EQ(g_plan.context.ActiveLeg, 1);
}

TEST(GnsDeparture, UnknownAirportSaysSoAndKeepsTheText) {
    GnsRig gns;
    ActivateKpdxKsea(gns);
    gns.Key("LSK4L");
    gns.Key("ENTER");
    gns.Key("LSK1R");  // key 6: the airport field
    ASSERT_EQ(g_gns_page.GnsEditing, 1);
    gns.Type("QQQQ");
    gns.Key("ENTER");
    EXPECT_TRUE(gns.Has("AIRPORT NOT FOUND"));
    EXPECT_EQ(Field(), "QQQQ");
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kDeparture);
}

TEST(GnsDeparture, EnteringWithEverythingChosenShowsTheLegsAndBuildsNothing) {
    GnsRig gns;
    ActivateKpdxKsea(gns);
    PlanSelections& sel = g_plan.context.Selections;
    SetText(sel.SidName, "BGRND1");
    SetText(sel.SidTransition, "UBG");
    SetText(sel.DepartureRunway, "10L");
    gns.Key("LSK4L");
    gns.Key("ENTER");
    EXPECT_EQ(g_gns_page.GnsLegsShown[0], 1);
    EXPECT_TRUE(gns.Has("WAYPOINTS OF SID:"));
    EXPECT_EQ(ActiveIdents(), "KPDX BTG ALDER SEA KSEA");
}

TEST(GnsVnav, ClimbShowsThePredictedTopOfClimb) {
    GnsRig gns;
    ActivateKpdxKsea(gns);
    ASSERT_GT(g_plan.context.CruiseAltitude, 0);
    const VnavState& v = g_vnav;
    // Airborne near KPDX, climbing, VNAV's next target the destination (no
    // restriction before it), which lies beyond T/C.
    g_sim.latitude = 45.62;
    g_sim.longitude = -122.59;
    gns.SetGroundSpeed(240);
    gns.SetAltitude(6000);
    g_sim.vertical_speed.now = 2000;
    g_plan.context.NextRestrictionRow = g_plan.context.ActiveLastRow;
    // The predictions from here, as the tick refreshes them.
    PredictProfile(g_plan.context.CruiseAltitude, 1);
    ASSERT_FALSE(v.TopOfClimbLatitude == 0 && v.TopOfClimbLongitude == 0) << "no T/C was predicted";
    // T/C lies on the route, between KPDX and SEA.
    EXPECT_GT(v.TopOfClimbLatitude, 45.5);
    EXPECT_LT(v.TopOfClimbLatitude, 47.5);
    g_vnav.CruiseReached = 0;
    g_vnav.DescentActive = 0;
    gns.Key("VNAV");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kVnav);
    EXPECT_NE(gns.RowWith("CLIMB").find("CLIMB"), std::string::npos) << gns.Screen();
    std::string target = gns.RowWith("TO #TOC");
    ASSERT_NE(target, "") << gns.Screen();
    EXPECT_NE(target.find(std::to_string(g_plan.context.CruiseAltitude)), std::string::npos) << target;
    // The range: straight from the aircraft to T/C.
    double range = FlatDistanceNm(g_sim.latitude, g_sim.longitude, v.TopOfClimbLatitude, v.TopOfClimbLongitude);
    std::string line = gns.RowWith("RANGE (NM)");
    double shown = std::atof(line.substr(line.find(')') + 1).c_str());
    EXPECT_NEAR(shown, range, 0.2) << line;
    // The time of that range at 240 knots.
    int minutes = static_cast<int>(range / 240 * 60);
    char ete[8];
    std::snprintf(ete, sizeof ete, "00:%02d", minutes);
    EXPECT_NE(gns.RowWith("ETE").find(ete), std::string::npos) << gns.Screen();
    // Climb gradient: 2000 ft/min at 4 nm a minute.
    EXPECT_NE(gns.RowWith("CLIMB GRAD").find(" 500/NM"), std::string::npos) << gns.Screen();
    // The list page carries #TOC with the cruise altitude, and no plan row is lost.
    gns.Key("VNAV");
    EXPECT_TRUE(gns.Has("#TOC")) << gns.Screen();
    EXPECT_TRUE(gns.Has("BTG"));
    EXPECT_TRUE(gns.Has("ALDER"));
    // VNAV DATA from "DATA?".
    gns.Key("LSK5L");
    EXPECT_NE(gns.Screen().find("[DATA?]"), std::string::npos);
    gns.Key("ENTER");
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kVnavData);
    EXPECT_NE(gns.RowWith("CRUISE ALT").find(std::to_string(g_plan.context.CruiseAltitude)), std::string::npos);
    // A new cruise altitude from the page.
    gns.Key("LSK2R");
    gns.Type("25000");
    gns.Key("ENTER");
    EXPECT_EQ(g_plan.context.CruiseAltitude, 25000);
}

TEST(GnsArrival, TransitionFirstThenTheOnlyStarAndTheRunway) {
    GnsRig gns;
    gns.Key("LSK2L");  // KSEAKGEG, the list's third row
    gns.Key("ENTER");
    gns.Key("LSK5R");
    gns.Key("ENTER");
    ASSERT_EQ(ActiveIdents(), "KSEA SEA NORMY BLUIT EPH WIPES GEG KGEG");
    gns.Key("LSK5L");
    EXPECT_NE(gns.Screen().find("[ARRIVE?]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kArrival);
    EXPECT_NE(gns.RowWith("ARRIVAL").find("KGEG"), std::string::npos) << gns.Screen();
    // The rows the other way round: TRANSITION at 80 (its list open), STAR at 120.
    EXPECT_NE(gns.RowWith("TRANSITION").find("TRANSITION"), std::string::npos);
    EXPECT_LT(gns.Screen().find("TRANSITION"), gns.Screen().find("STAR"));
    EXPECT_EQ(g_gns_page.GnsLineState[7], 1);
    EXPECT_TRUE(gns.Has("EPH")) << gns.Screen();
    EXPECT_TRUE(gns.Has("MWH")) << gns.Screen();
    // MWH chosen: ODESS1, the only STAR from it, follows by itself.
    for (int i = 0; i < 3 && Field() != "MWH"; ++i) gns.Key("LSK3L");
    ASSERT_EQ(Field(), "MWH") << gns.Screen();
    gns.Key("ENTER");
    const GnsProcedureTemporaries& t = g_plan_texts.GnsArrival;
    EXPECT_STREQ(t.transition.data(), "MWH");
    EXPECT_STREQ(t.procedure.data(), "ODESS1");
    ASSERT_EQ(g_gns_page.GnsLineState[6], 2) << "the runway list";
    // Runway 21 from the list, wherever it stands in it.
    const char* keys[] = {"LSK3L", "LSK3L", "LSK4L", "LSK4L"};
    for (const char* k : keys) {
        if (Field() == "21") break;
        gns.Key(k);
    }
    ASSERT_EQ(Field(), "21") << gns.Screen();
    gns.Key("ENTER");
    EXPECT_TRUE(gns.Has("WAYPOINTS OF STAR:")) << gns.Screen();
    EXPECT_TRUE(gns.Has("ODESS"));
    gns.Key("ENTER");
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kFlightPlan);
    std::string idents = ActiveIdents();
    EXPECT_NE(idents.find("MWH"), std::string::npos) << idents;
    EXPECT_NE(idents.find("ODESS"), std::string::npos) << idents;
    EXPECT_STREQ(g_plan.context.Selections.StarName.data(), "ODESS1");
    EXPECT_STREQ(g_plan.context.Selections.ArrivalRunway.data(), "21");
}

TEST(GnsApproach, TypeThenRunwayThenTransition) {
    GnsRig gns;
    gns.Key("LSK2L");  // KSEAKGEG
    gns.Key("ENTER");
    gns.Key("LSK5R");
    gns.Key("ENTER");
    gns.Key("LSK5L");
    gns.Key("LSK5L");
    EXPECT_NE(gns.Screen().find("[APPROACH?]"), std::string::npos) << gns.Screen();
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kApproach);
    EXPECT_TRUE(gns.Has("APCH"));
    // The type list: the one approach of KGEG.
    ASSERT_EQ(g_gns_page.GnsLineState[7], 1) << gns.Screen();
    ASSERT_EQ(Field(), "I21") << gns.Screen();
    gns.Key("ENTER");
    // Two transitions (GEG, DPY): no single one to take, so the runways open.
    const GnsProcedureTemporaries& t = g_plan_texts.GnsApproach;
    EXPECT_STREQ(t.procedure.data(), "I21");
    EXPECT_STREQ(t.transition.data(), kNoSelection);
    ASSERT_EQ(g_gns_page.GnsLineState[6], 2) << gns.Screen();
    ASSERT_EQ(Field(), "21") << gns.Screen();
    gns.Key("ENTER");
    // The runway taken, the transitions' list opens.
    EXPECT_STREQ(t.runway.data(), "21");
    ASSERT_EQ(g_gns_page.GnsLineState[7], 2) << gns.Screen();
    for (int i = 0; i < 3 && Field() != "DPY"; ++i) gns.Key("LSK3L");
    ASSERT_EQ(Field(), "DPY") << gns.Screen();
    gns.Key("ENTER");
    EXPECT_TRUE(gns.Has("WPTS OF APPROACH:")) << gns.Screen();
    EXPECT_TRUE(gns.Has("BATKY"));
    gns.Key("ENTER");
    std::string idents = ActiveIdents();
    EXPECT_NE(idents.find("BATKY"), std::string::npos) << idents;
    EXPECT_NE(idents.find("DPY"), std::string::npos) << idents;
    EXPECT_STREQ(g_plan.context.Selections.ApproachName.data(), "I21");
}
