// screen_reference_test.cpp: whole RTE screens, read back as text grids,
// against the grids stored in tests/cdu/reference/. A grid row is a drawn
// y in design units; a string stands at its x / 7; reverse video is in
// brackets. ORB_UPDATE_REFERENCE=1 writes the grids anew (then review the diff).
#include "cdu_rig.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace cdu_test;

TEST(CduScreenReference, RtePagesOfALoadedRoute) {
    CduRig cdu;
    cdu.PressAndFrame("RTE");
    ExpectScreen(cdu, "rte_empty");
    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    cdu.Type("16L");
    cdu.PressAndFrame("LSK3L");
    ExpectScreen(cdu, "rte_loaded");
    cdu.PressAndFrame("NEXT_PAGE");
    ExpectScreen(cdu, "rte_lines");
}

TEST(CduScreenReference, RtePageOfAModifiedRoute) {
    CduRig cdu;
    cdu.PressAndFrame("RTE");
    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("LSK6R");
    cdu.PressAndFrame("EXEC");
    cdu.Type("KOLM");
    cdu.PressAndFrame("LSK1R");
    cdu.Type("XYZ");
    cdu.PressAndFrame("LSK1L");
    ExpectScreen(cdu, "rte_modified");
}

TEST(CduScreenReference, LegsPagesOfAnActiveRoute) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    cdu.PressAndFrame("LEGS");
    ExpectScreen(cdu, "legs_active");
    cdu.PressAndFrame("NEXT_PAGE");
    ExpectScreen(cdu, "legs_active_page2");
    cdu.PressAndFrame("PREV_PAGE");
    cdu.PressAndFrame("DIR_INTC");
    ExpectScreen(cdu, "legs_direct");
    cdu.PressAndFrame("LSK4L");
    cdu.PressAndFrame("LSK6L");
    ExpectScreen(cdu, "legs_direct_pending");
    cdu.PressAndFrame("HOLD");
    ExpectScreen(cdu, "legs_hold");
}

TEST(CduScreenReference, SelectWaypointAndTheIndex) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    cdu.PressAndFrame("LEGS");
    cdu.Type("BATKY");
    cdu.PressAndFrame("LSK3L");
    cdu.Frame();
    ExpectScreen(cdu, "select_waypoint");
    cdu.PressAndFrame("DEP_ARR");
    ExpectScreen(cdu, "dep_arr_index");
}

TEST(CduScreenReference, DeparturesAndArrivalsOfTheDemonstrationRoute) {
    CduRig cdu;
    cdu.PressAndFrame("RTE");
    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("DEP_ARR");
    cdu.PressAndFrame("LSK1L");
    cdu.Frame();
    ExpectScreen(cdu, "departures");
    cdu.PressAndFrame("LSK1L");
    ExpectScreen(cdu, "departures_chosen");
    cdu.PressAndFrame("DEP_ARR");
    cdu.PressAndFrame("LSK1R");
    cdu.Frame();
    ExpectScreen(cdu, "arrivals");
}
