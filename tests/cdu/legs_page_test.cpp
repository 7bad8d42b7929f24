// legs_page_test.cpp: a pilot on RTE LEGS with the Seattle - Spokane company
// route: restrictions and their copy back, insertions that leave a gap,
// entries joined and deleted, the direct-to and its intercept course, picks
// from SELECT WAYPOINT, and STEP with the PLAN map's centre.
//
// The route's rows: 0 KSEA, 1 SEA, 2 NORMY, 3 BLUIT, 4 EPH, 5 WIPES, 6 GEG,
// 7 KGEG; page 1 of LEGS shows SEA to WIPES on LSK 1 to 5.
#include "cdu_rig.h"

#include "display/display_state.h"
#include "display/display_surface.h"
#include "display/nd_b737.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "plan/plan_execute.h"

using namespace cdu_test;

namespace {
constexpr const char* kSeattleSpokane = "KSEA SEA NORMY BLUIT EPH WIPES GEG KGEG";

std::string ModIdents() { return Idents(g_plan.ModPlan, g_plan.context.ModLastRow); }
std::string ActiveIdents() { return Idents(g_plan.ActivePlan, g_plan.context.ActiveLastRow); }

// The magnetic course from one plan row to another, as a pilot's chart has it.
double ChartCourse(const PlanWaypoint& from, const PlanWaypoint& to) {
    double distance = 0, bearing = 0;
    GreatCircle(from.Latitude, from.Longitude, to.Latitude, to.Longitude, distance, bearing);
    double course = bearing - g_sim.magnetic_variation;
    return course < 0.5 ? course + 360 : course;
}

MapView PlanMapView() {
    DisplaySurface surface;
    surface.scale_x = surface.scale_y = 1;
    return B737MapView(surface);
}
}  // namespace

TEST(LegsPage, RestrictionsInTheirFormsAndTheCopyBack) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    // The page's own forms: the predicted figures EXEC wrote are taken off
    // the en-route rows, so that each entry stands alone.
    for (PlanTable* plan : {&g_plan.ActivePlan, &g_plan.ModPlan})
        for (int i = 1; i < g_plan.context.ActiveLastRow; ++i) (*plan)[i].Altitude = (*plan)[i].Speed = -999;
    cdu.PressAndFrame("LEGS");
    ASSERT_EQ(g_plan.context.PlanState, 3);
    EXPECT_TRUE(cdu.ScreenHas("RTE    LEGS"));
    EXPECT_NE(cdu.Screen().find("[SEA  ]"), std::string::npos) << "the active leg in reverse\n" << cdu.Screen();
    EXPECT_EQ(g_smiths.legs.count, 2) << "seven entries and the end line, five a line";

    // speed/altitude, FL, hundreds and a lone altitude behind "/".
    struct Case {
        const char* text;
        const char* key;
        int row;
        double speed;
        double altitude;
    };
    for (const Case& c : {Case{"250/10000", "LSK2R", 2, 250, 10000}, Case{"FL350", "LSK3R", 3, -999, 35000},
                          Case{"/FL240", "LSK4R", 4, -999, 24000}, Case{"80", "LSK5R", 5, -999, 8000}}) {
        cdu.Type(c.text);
        cdu.PressAndFrame(c.key);
        EXPECT_EQ(Message(), "") << c.text;
        EXPECT_EQ(Scratchpad(), "") << c.text;
        EXPECT_DOUBLE_EQ(g_plan.ModPlan[c.row].Speed, c.speed) << c.text;
        EXPECT_DOUBLE_EQ(g_plan.ModPlan[c.row].Altitude, c.altitude) << c.text;
        EXPECT_EQ(g_plan.ModPlan[c.row].Restricted, 1) << c.text;
    }
    EXPECT_EQ(g_plan.context.PlanState, 4);
    EXPECT_TRUE(cdu.ExecLit());
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[2].Altitude, -999) << "active until EXEC";
    // Speed at the left of "/", the altitude as FL above the transition altitude.
    std::string normy = RowWith(cdu, "NORMY");
    std::string below = g_config.TransAlt >= 10000 ? "10000A" : "FL100A";
    EXPECT_NE(normy.find("250"), std::string::npos) << normy;
    EXPECT_NE(normy.find(below), std::string::npos) << normy;
    std::string bluit = RowWith(cdu, "BLUIT");
    EXPECT_NE(bluit.find("FL350A"), std::string::npos) << bluit;
    EXPECT_NE(bluit.find("- - - -"), std::string::npos) << "no speed: " << bluit;

    // Altitudes out of range stay on the entry line for correction.
    for (const char* bad : {"0", "100000", "250/0"}) {
        cdu.Type(bad);
        cdu.PressAndFrame("LSK2R");
        EXPECT_EQ(Message(), "INVALID ENTRY") << bad;
        EXPECT_EQ(Scratchpad(), bad);
        EXPECT_DOUBLE_EQ(g_plan.ModPlan[2].Altitude, 10000) << bad;
        ClearEntry(cdu);
    }

    // An empty entry line copies altitude and speed back, altitude first.
    cdu.PressAndFrame("LSK2R");
    EXPECT_EQ(Scratchpad(), "10000/250");
    ClearEntry(cdu);
    cdu.Type("180/5000");
    cdu.PressAndFrame("LSK5R");
    cdu.PressAndFrame("LSK5R");
    EXPECT_EQ(Scratchpad(), "5000 /180") << "each number in its field";
    ClearEntry(cdu);
    cdu.PressAndFrame("LSK3R");
    EXPECT_EQ(Scratchpad(), "") << "an altitude without a speed is not copied";
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK2R");
    EXPECT_EQ(Message(), "INVALID DELETE");
    cdu.Press("CLR");

    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(g_plan.context.PlanState, 3);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[2].Speed, 250);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[3].Altitude, 35000);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[5].Speed, 180);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[5].Altitude, 5000);
}

TEST(LegsPage, InsertionLeavesAGapThatAJoinClosesAndDeletions) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    cdu.PressAndFrame("LEGS");

    // A new fix goes in before the entry of the key, with a gap behind it.
    cdu.Type("ELMAA");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA NORMY ELMAA DISCO BLUIT EPH WIPES GEG KGEG");
    EXPECT_EQ(ActiveIdents(), kSeattleSpokane);
    EXPECT_EQ(g_plan.context.PlanState, 4);
    std::string screen = cdu.Screen();
    EXPECT_NE(screen.find("T H E N"), std::string::npos) << screen;
    EXPECT_NE(screen.find("R O U T E  D I S C O N T I N U I T Y"), std::string::npos) << screen;
    EXPECT_NE(screen.find("[MOD]"), std::string::npos);
    EXPECT_EQ(screen.find("[SEA  ]"), std::string::npos) << "no reverse active leg while modified";
    EXPECT_TRUE(cdu.ScreenHas("< ERASE"));

    // A name further down joins: what lies between goes, gap and all.
    cdu.Type("EPH");
    cdu.PressAndFrame("LSK2L");
    EXPECT_EQ(Scratchpad(), "");
    EXPECT_EQ(ModIdents(), "KSEA SEA EPH WIPES GEG KGEG");

    // DELETE on an entry takes it out; on the last one it is refused.
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(ModIdents().find("WIPES"), std::string::npos) << ModIdents();
    int last = g_plan.context.ModLastRow;
    ASSERT_EQ(last, 5) << ModIdents();  // KGEG on line 5
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK5L");
    EXPECT_EQ(Message(), "INVALID DELETE");
    EXPECT_EQ(Ident(g_plan.ModPlan, g_plan.context.ModLastRow), "KGEG");
    EXPECT_EQ(g_plan.context.ModLastRow, last);
    cdu.Press("CLR");

    // A name that isn't in the database stays for correction.
    cdu.Type("QQQQQ");
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(Message(), "NOT IN DATABASE");
    EXPECT_EQ(Scratchpad(), "QQQQQ");
    ClearEntry(cdu);

    // ERASE: back to the active route.
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_plan.context.PlanState, 3);
    EXPECT_EQ(ModIdents(), kSeattleSpokane);
    EXPECT_FALSE(cdu.ExecLit());
}

TEST(LegsPage, DirectToWaitsForExecThenLnavFliesItFromHere) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    g_sim.latitude = 47.44;
    g_sim.longitude = -122.0;
    const PlanContext& pc = g_plan.context;
    cdu.PressAndFrame("DIR_INTC");
    EXPECT_EQ(g_smiths.LegsMode, 1);
    EXPECT_TRUE(cdu.ScreenHas("D I R E C T    T O"));

    // The entry copied, then sent to the DIRECT TO line.
    cdu.PressAndFrame("LSK4L");
    EXPECT_EQ(Scratchpad(), "EPH");
    EXPECT_EQ(g_smiths.DirectSourceRow, 4);
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.DirectPending, 1);
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_TRUE(cdu.ExecLit());
    EXPECT_EQ(pc.ModActiveLeg, 4);
    EXPECT_EQ(pc.ActiveLeg, 1) << "guidance flies on until EXEC";
    double course = ChartCourse(g_plan.ModPlan[3], g_plan.ModPlan[4]);
    EXPECT_NEAR(g_plan.ModPlan[4].InboundCourse, course, 1e-6);
    EXPECT_TRUE(cdu.ScreenHas("I N T C    C R S"));
    char shown[8];
    std::snprintf(shown, sizeof shown, "%03.0f", course);
    EXPECT_NE(RowWith(cdu, shown), "") << shown << "\n" << cdu.Screen();

    // INTC CRS: a course of the pilot's.
    cdu.Type("400");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(Message(), "INVALID ENTRY");
    ClearEntry(cdu);
    cdu.Type("095");
    cdu.PressAndFrame("LSK6R");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[4].InboundCourse, 95);
    EXPECT_NE(RowWith(cdu, "095"), "");

    // EXEC: EPH is the active waypoint, flown from here.
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(pc.ActiveLeg, 4);
    EXPECT_EQ(g_smiths.LegsMode, 0);
    EXPECT_EQ(g_smiths.DirectPending, 0);
    EXPECT_DOUBLE_EQ(pc.ActiveWaypointLatitude, g_plan.ActivePlan[4].Latitude);
    EXPECT_EQ(g_lnav.InterceptActive, 1);
    EXPECT_DOUBLE_EQ(g_lnav.InterceptStart.lat, 47.44);
    EXPECT_DOUBLE_EQ(g_lnav.InterceptStart.lon, -122.0);
    EXPECT_EQ(ActiveIdents(), kSeattleSpokane) << "no row moves for a direct";

    // A direct to a fix that isn't in the route: it goes in as the active leg.
    cdu.PressAndFrame("DIR_INTC");
    cdu.Type("ELMAA");
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(Ident(g_plan.ModPlan, pc.ModActiveLeg), "ELMAA");
    EXPECT_EQ(g_smiths.DirectPending, 1);
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(Ident(g_plan.ActivePlan, pc.ActiveLeg), "ELMAA");
    EXPECT_EQ(Ident(g_plan.ActivePlan, pc.ActiveLeg + 1), "DISCO");
}

TEST(SelectWaypoint, ThePickGoesInFromLegsAndFromRte) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    cdu.PressAndFrame("LEGS");

    // Two places of one name: the list, and nothing inserted yet.
    cdu.Type("BATKY");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(g_smiths.CduPage, 9);
    EXPECT_EQ(Scratchpad(), "");
    ASSERT_EQ(g_candidates.count, 2);
    EXPECT_EQ(ModIdents(), kSeattleSpokane);
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("SELECT WAYPOINT"));
    std::string screen = cdu.Screen();
    size_t first = screen.find("BATKY");
    ASSERT_NE(first, std::string::npos) << screen;
    EXPECT_NE(screen.find("BATKY", first + 1), std::string::npos) << "both places listed\n" << screen;
    EXPECT_NE(RowWith(cdu, "BATKY").find("INT"), std::string::npos);
    NavRecord second = g_candidates.rows[2];
    NavRecord other = g_candidates.rows[1];
    ASSERT_NE(second.Latitude, other.Latitude);

    // A key of a row without a candidate does nothing.
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(g_smiths.CduPage, 9);
    EXPECT_EQ(ModIdents(), kSeattleSpokane);

    // The right key of row 2 picks the second place, into LEGS line 3.
    cdu.PressAndFrame("LSK2R");
    EXPECT_EQ(g_smiths.CduPage, 6);
    EXPECT_EQ(ModIdents(), "KSEA SEA NORMY BATKY DISCO BLUIT EPH WIPES GEG KGEG");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Latitude, second.Latitude);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Longitude, second.Longitude);
    EXPECT_EQ(g_candidates.count, 1) << "one candidate left";
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("RTE    LEGS"));
    cdu.PressAndFrame("LSK6L");  // ERASE
    ASSERT_EQ(ModIdents(), kSeattleSpokane);

    // From RTE: the pick goes in behind the line's fix.
    cdu.PressAndFrame("RTE");
    cdu.PressAndFrame("NEXT_PAGE");
    cdu.Type("BATKY");
    cdu.PressAndFrame("LSK1R");
    EXPECT_EQ(g_smiths.CduPage, 9);
    ASSERT_EQ(g_candidates.count, 2);
    other = g_candidates.rows[1];
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(g_smiths.CduPage, 22);
    EXPECT_EQ(Ident(g_plan.ModPlan, 2), "BATKY");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[2].Latitude, other.Latitude);
    EXPECT_EQ(Scratchpad(), "");
    EXPECT_EQ(g_plan.context.PlanState, 4);
}

TEST(LegsPage, StepMovesTheCentreEntryAndThePlanMapFollows) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    g_display.b737_mode = kB737ModeMap;
    cdu.PressAndFrame("LEGS");
    EXPECT_TRUE(cdu.ScreenHas("RTE DATA >"));
    EXPECT_FALSE(cdu.ScreenHas("STEP >"));
    EXPECT_FALSE(cdu.ScreenHas("<CTR>"));

    // A PLAN map: STEP stands in row 6, each press one entry on.
    g_display.b737_mode = kB737ModePlan;
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("STEP >"));
    EXPECT_FALSE(cdu.ScreenHas("RTE DATA >"));
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_display.PlanCentreIndex, 1);
    EXPECT_NE(RowWith(cdu, "<CTR>").find("SEA"), std::string::npos) << cdu.Screen();
    MapView view = PlanMapView();
    EXPECT_DOUBLE_EQ(view.MapCentreLatitude, g_plan.ActivePlan[1].Latitude);
    EXPECT_DOUBLE_EQ(view.MapCentreLongitude, g_plan.ActivePlan[1].Longitude);
    for (int i = 0; i < 4; ++i) cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_display.PlanCentreIndex, 5);
    EXPECT_EQ(g_smiths.legs.page, 1);
    EXPECT_NE(RowWith(cdu, "<CTR>").find("WIPES"), std::string::npos);
    // The sixth entry is on page 2: the page follows.
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_display.PlanCentreIndex, 6);
    EXPECT_EQ(g_smiths.legs.page, 2);
    EXPECT_NE(RowWith(cdu, "<CTR>").find("GEG"), std::string::npos) << cdu.Screen();
    view = PlanMapView();
    EXPECT_DOUBLE_EQ(view.MapCentreLatitude, g_plan.ActivePlan[6].Latitude);
    // After the last entry back to the first, on page 1.
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_display.PlanCentreIndex, 7);
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_display.PlanCentreIndex, 1);
    EXPECT_EQ(g_smiths.legs.page, 1);

    // A modification: the centre is a row of the plan under edit.
    cdu.Type("ELMAA");
    cdu.PressAndFrame("LSK2L");
    ASSERT_EQ(Ident(g_plan.ModPlan, 2), "ELMAA");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_display.PlanCentreIndex, 2);
    EXPECT_NE(RowWith(cdu, "<CTR>").find("ELMAA"), std::string::npos);
    view = PlanMapView();
    EXPECT_DOUBLE_EQ(view.MapCentreLatitude, g_plan.ModPlan[2].Latitude);
    cdu.PressAndFrame("LSK6L");  // ERASE

    // Out of PLAN: the centre goes, and the key leads to RTE again.
    g_display.b737_mode = kB737ModeMap;
    cdu.Frame();
    EXPECT_EQ(g_display.PlanCentreIndex, 0);
    EXPECT_FALSE(cdu.ScreenHas("<CTR>"));
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 22);
}

TEST(LegsPage, TheTwinGaugeBuildsActivatesAndEditsTheSameRoute) {
    CduRig cdu(GaugeId::SMITHS_FMS_BR);
    cdu.PressAndFrame("RTE");
    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    ASSERT_EQ(g_plan.context.PlanState, 1);
    // A route being built: LEGS shows it and ACTIVATE there too.
    cdu.PressAndFrame("LEGS");
    EXPECT_TRUE(cdu.ScreenHas("ACTIVATE >"));
    cdu.Type("FL350");
    cdu.PressAndFrame("LSK3R");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Altitude, 35000);
    EXPECT_EQ(g_plan.context.PlanState, 1) << "a route being built stays so";
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_plan.context.PlanState, 2);
    EXPECT_TRUE(cdu.ExecLit());
    EXPECT_TRUE(cdu.ScreenHas("RTE DATA >"));
    cdu.PressAndFrame("EXEC");
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[3].Altitude, 35000);
    cdu.PressAndFrame("LSK6R");  // RTE DATA
    EXPECT_EQ(g_smiths.CduPage, 22);
}
