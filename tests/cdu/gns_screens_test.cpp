// gns_screens_test.cpp: each GNS page's screen text for a known state, held
// against its reference in tests/cdu/reference/gns_*.txt. The state is set
// through the keys where a pilot sets it, and by the simulator samples
// (position, speeds, clock) where the aircraft does.
#include "cdu/gns_rig.h"

#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"

using namespace gns_test;

namespace {
// The aircraft: west of SEA at 10,000 ft, 300 kt over the ground, 12:34 Z.
void KnownAircraft(GnsRig& gns) {
    g_sim.latitude = 47.435;
    g_sim.longitude = -122.40;
    gns.SetGroundSpeed(300);
    gns.SetAltitude(10000);
    g_sim.vertical_speed.now = 0;
    g_sim.magnetic_variation = 0;
    g_sim.heading_magnetic.now = 90;
    g_sim.zulu_hour = 12;
    g_sim.zulu_minute = 34;
}

// KSEA SEA NORMY KGEG built on the slot and activated.
void ActiveRoute(GnsRig& gns) {
    KnownAircraft(gns);
    ActivatePlan(gns, {"KSEA", "SEA", "NORMY", "KGEG"});
    KnownAircraft(gns);
    gns.Frame();
}
}  // namespace

TEST(GnsScreens, PlanPages) {
    GnsRig gns;
    KnownAircraft(gns);
    gns.Frame();
    gns.ExpectScreen("gns_list");
    ActiveRoute(gns);
    gns.ExpectScreen("gns_active_fpl");
    // The column chooser: key 10, CLR to DIS, ENTER.
    gns.Key("LSK5R");
    gns.Key("CLR");
    gns.ExpectScreen("gns_active_fpl_chooser");
    gns.Key("ENTER");
    gns.ExpectScreen("gns_active_fpl_dis");
    // The column back to ETE, then the field on NORMY and "DELETE?".
    gns.Key("LSK5R");
    gns.Key("CLR");
    gns.Key("CLR");
    gns.Key("ENTER");
    gns.Key("LSK2L");
    gns.Key("CLR");
    gns.ExpectScreen("gns_active_fpl_delete");
}

TEST(GnsScreens, WaypointPages) {
    GnsRig gns;
    ActiveRoute(gns);
    gns.Key("LSK2L");
    gns.Key("LSK2L");  // the slot
    gns.Type("EPH");
    gns.Key("ENTER");
    gns.ExpectScreen("gns_database_wpt");
    gns.Key("FPL");
    gns.Key("LSK2L");
    gns.Key("LSK2L");
    gns.Type("ZZQQ1");
    gns.Key("ENTER");
    gns.Type("N4730");
    gns.ExpectScreen("gns_pilot_wpt");
    gns.Key("FPL");
    gns.Key("LSK2L");
    gns.Key("LSK2L");
    gns.Type("SEA*");
    gns.Key("ENTER");
    gns.Type("090");
    gns.Key("ENTER");
    gns.Type("12");
    gns.Key("ENTER");
    gns.ExpectScreen("gns_offset_wpt");
    gns.Key("FPL");
    gns.Key("LSK2L");  // NORMY, entry 3
    gns.Type("#J70");
    gns.Key("ENTER");
    ASSERT_EQ(g_gns_page.GnsPage, gns_page::kAirway) << gns.Screen();
    gns.Key("LSK2L");
    gns.ExpectScreen("gns_airway");
}

TEST(GnsScreens, DirectHoldAndSavePages) {
    GnsRig gns;
    ActiveRoute(gns);
    gns.Key("DIRECT");
    gns.Key("LSK3L");  // the second waypoint ahead into the field
    gns.ExpectScreen("gns_direct");
    gns.Key("FPL");
    gns.Key("LSK2L");
    gns.Key("HOLD");
    gns.ExpectScreen("gns_holding");
    gns.Key("FPL");
    gns.Key("LSK4R");
    gns.Key("ENTER");
    gns.ExpectScreen("gns_save");
}

TEST(GnsScreens, ProcedureAndDataPages) {
    GnsRig gns;
    ActiveRoute(gns);
    gns.Key("LSK4L");
    gns.Key("ENTER");
    gns.ExpectScreen("gns_departure");
    // In climb; T/C 20 nm east of the aircraft, T/D 100 nm before the end:
    // #TOC stands before NORMY (28 nm away), #TOD before KGEG.
    g_vnav.CruiseReached = 0;
    g_vnav.DescentActive = 0;
    g_vnav.TopOfClimbLatitude = 47.435;
    g_vnav.TopOfClimbLongitude = -122.40 + 20.0 / 60 / std::cos(47.435 * 3.14159265358979 / 180);
    g_plan_distances.TdFromDest = 100;
    g_plan.context.NextRestrictionRow = 2;
    g_vnav.TargetAltitude = 8000;
    g_vnav.TargetDistance = 24;
    gns.Key("VNAV");
    gns.ExpectScreen("gns_vnav");
    gns.Key("VNAV");
    gns.ExpectScreen("gns_vnav_list");
    gns.Key("LSK5L");
    gns.Key("ENTER");
    gns.ExpectScreen("gns_vnav_data");
    gns.Key("NAV");
    gns.ExpectScreen("gns_nav_1");
    // The time at the plan's end: 240 nm along the route at the ground speed.
    g_plan_distances.DistToGo = 240;
    gns.Key("NAV");
    gns.ExpectScreen("gns_nav_2");
    double arrival = g_sim.zulu_hour * 60 + g_sim.zulu_minute + 240 / g_sim.ground_speed * 60;
    char eta[16];
    std::snprintf(eta, sizeof eta, "ETA-%02d:%02d", static_cast<int>(arrival / 60) % 24,
                  static_cast<int>(arrival) % 60);
    EXPECT_NE(gns.Screen().find(eta), std::string::npos) << eta << "\n" << gns.Screen();
    gns.Key("NAV");
    gns.ExpectScreen("gns_nav_3");
    gns.Key("NAV");
    gns.ExpectScreen("gns_nav_4");
    // PERF opens PLAN at page 1; each further press steps it.
    for (int page = 1; page <= 6; ++page) {
        gns.Key("PERF");
        std::string name = "gns_plan_" + std::to_string(page);
        gns.ExpectScreen(name.c_str());
    }
}
