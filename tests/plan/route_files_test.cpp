// route_files_test.cpp: saving routes, the stored-plan list, and loading
// into the active, modified and preview plans with their header and row rules.
#include "navdata/sim_folder.h"

#include "cdu/keypad.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "frame/data_text.h"
#include "plan/plan_execute.h"
#include "support/fake_panels.h"

#include <string>

namespace {
void SetRow(PlanTable& plan, int row, const char* ident, double lat, double lon, const char* type, const char* freq = "",
            const char* via = "", const char* segment = "") {
    PlanWaypoint& w = plan[row];
    w = PlanWaypoint{};
    SetText(w.Ident, ident);
    w.Latitude = lat;
    w.Longitude = lon;
    SetText(w.WaypointType, type);
    SetText(w.Frequency, freq);
    SetText(w.Via, via);
    SetText(w.SegmentKind, segment);
}

void WriteDatabase(const SimFolder& sim) {
    sim.Write("orb/navdata/apts.txt",
              "KSEA SEATTLE 433 47.45019 -122.31232 16L_11893_47.463797_-122.307752_161.3_110.30_ISNQ_161.3\n"
              "KPDX PORTLAND 30 45.58884 -122.59726\n");
    sim.Write("orb/navdata/navs.txt",
              "BTG BATTLEGROUND 45.747806 -122.591528 VOR 116.60\n"
              "SEA SEATTLE 47.435361 -122.309611 VOR 116.80\n"
              "SEN SEA_NDB 47.1 -122.5 NDB 350\n");
    LoadNavDatabase();
}

std::string Ident(const PlanTable& plan, int row) { return plan[row].Ident.data(); }
std::string Type(const PlanTable& plan, int row) { return plan[row].WaypointType.data(); }
}  // namespace

TEST(RouteFiles, SaveListAndLoadRoundTrip) {
    SimFolder sim;
    WriteDatabase(sim);
    PlanContext& pc = g_plan.context;
    SetRow(g_plan.ActivePlan, 0, "KSEA", 47.45019, -122.31232, "APT");
    SetRow(g_plan.ActivePlan, 1, "SEA", 47.435361, -122.309611, "VOR", "116.80");
    SetRow(g_plan.ActivePlan, 2, "ALDER", 46.82156, -122.41422, "INT", "", "J1", "STAR");
    SetRow(g_plan.ActivePlan, 3, "DISCO", 0, 0, "");
    SetRow(g_plan.ActivePlan, 4, "PILOT1", 46.5, -122.5, "OAWY", "", "", "SID");
    SetRow(g_plan.ActivePlan, 5, "KPDX", 45.58884, -122.59726, "APT");
    g_plan.ActivePlan[2].Altitude = 12000;  // restrictions don't go to the file
    g_plan.ActivePlan[2].Flyover = 1;
    pc.ActiveLastRow = 5;
    pc.CruiseAltitude = 33000;
    g_config.SaveFPLCruiseAlt = 1;
    ASSERT_EQ(SaveRouteFile("TEST.RTE"), 1);
    std::string text = sim.Read("orb/flightplans/TEST.RTE");
    EXPECT_EQ(text.substr(0, text.find("KSEA")), "CruiseAlt=33000\n[FlightPlan]\n");
    EXPECT_NE(text.find("KSEA             47.45019  -122.31232  APT ---            \n"), std::string::npos) << text;
    EXPECT_NE(text.find("ALDER            46.82156  -122.41422  INT ---    J1      STAR\n"), std::string::npos) << text;
    EXPECT_NE(text.find("DISCO            0.00000  0.00000  WPT ---            \n"), std::string::npos) << text;
    // An unknown type is written and kept as WPT; SegmentKind without Via is left out.
    EXPECT_NE(text.find("PILOT1           46.50000  -122.50000  WPT ---            \n"), std::string::npos) << text;
    EXPECT_EQ(Type(g_plan.ActivePlan, 4), "WPT");

    // The folder's list: route files, not the conversion's file nor plans without rows.
    sim.Write("orb/flightplans/temp.rte", "[FlightPlan]\nX 1 2 WPT ---\n");
    sim.Write("orb/flightplans/EMPTY.rte", "CruiseAlt=100\n");
    sim.Write("orb/flightplans/SIM.PLN", "[flightplan]\n");
    sim.Write("orb/flightplans/notes.txt", "[FlightPlan]\nX 1 2 WPT ---\n");
    sim.Write("orb/flightplans/a_first.rte", "[FlightPlan]\nKPDX 45.58884 -122.59726 APT ---\nKSEA 47.45019 -122.31232 APT ---\n");
    BuildStoredPlanTable();
    ASSERT_EQ(g_stored_plans.count, 3);
    EXPECT_STREQ(g_stored_plans.entries[1].FileName.data(), "a_first.rte");
    const StoredPlanEntry& e = g_stored_plans.entries[2];
    EXPECT_STREQ(e.FileName.data(), "TEST.RTE");
    EXPECT_STREQ(e.Origin.data(), "KSEA");
    EXPECT_STREQ(e.Destination.data(), "KPDX");
    EXPECT_EQ(e.LastRow, 5);
    ASSERT_NE(StoredRow(2, 2), nullptr);
    EXPECT_STREQ(StoredRow(2, 2)->Via.data(), "J1");
    EXPECT_EQ(StoredRow(2, 6), nullptr);
    EXPECT_STREQ(g_stored_plans.entries[3].FileName.data(), "NEW FPL");
    EXPECT_STREQ(g_stored_plans.entries[3].Origin.data(), "NEXT FPL");
    EXPECT_EQ(g_stored_plans.page_count, 1);
    EXPECT_EQ(g_stored_plans.page_index, 1);

    // Into the modified plan, with the header.
    g_plan = PlanTables{};
    LoadRouteToMod("TEST.RTE", 0);
    ASSERT_EQ(pc.ModLastRow, 5);
    EXPECT_EQ(pc.ModCruiseAltitude, 33000);
    EXPECT_EQ(pc.CruiseAltitude, 0);
    EXPECT_EQ(Ident(g_plan.ModPlan, 3), "DISCO");
    EXPECT_EQ(Type(g_plan.ModPlan, 3), "WPT");
    EXPECT_STREQ(g_plan.ModPlan[2].SegmentKind.data(), "STAR");
    EXPECT_STREQ(g_plan.ModPlan[4].SegmentKind.data(), "");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[2].Altitude, -999);
    EXPECT_EQ(g_plan.ModPlan[2].Flyover, 0);
    EXPECT_STREQ(g_plan.ModPlan[1].Frequency.data(), "116.80");
    EXPECT_EQ(pc.ModActiveLeg, 1);
    EXPECT_EQ(pc.PlanState, 1);
    EXPECT_STREQ(g_airports.OriginAirport.Ident.data(), "KSEA");
    EXPECT_STREQ(g_airports.DestinationAirport.Ident.data(), "KPDX");

    // Through the tick's request into the active plan.
    g_plan = PlanTables{};
    g_sim.latitude = 47.45;
    g_sim.longitude = -122.31;
    RequestRouteLoad("TEST.RTE", 3);
    EXPECT_EQ(g_tick.deferred_plan_load, 3);
    LoadRouteToActive(g_tick.deferred_plan_load);
    ASSERT_EQ(pc.ActiveLastRow, 5);
    EXPECT_EQ(pc.ModLastRow, 5);
    EXPECT_EQ(pc.CruiseAltitude, 33000);
    EXPECT_EQ(Ident(g_plan.ModPlan, 6), "******");
    EXPECT_EQ(pc.ActiveLeg, 1);
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(pc.AirportSide, 1);
    EXPECT_STREQ(pc.MapAirportText.data(), "KSEA");
    EXPECT_STREQ(pc.Selections.DestinationName.data(), "KPDX");
    EXPECT_STREQ(pc.DestinationIdent.data(), "KPDX");
    EXPECT_EQ(pc.NextRestrictionRow, 5);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[0].Altitude, 433);  // origin elevation
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[5].Altitude, 30);   // destination elevation
    EXPECT_STREQ(pc.Selections.StarName.data(), "------");
    EXPECT_EQ(Type(g_plan.ActivePlan, 4), "WPT");

    // Preview: its own table, the others untouched.
    LoadRoutePreview("a_first.rte");
    EXPECT_EQ(pc.PreviewLastRow, 1);
    EXPECT_EQ(Ident(g_plan.PreviewPlan, 1), "KSEA");
    EXPECT_EQ(pc.ActiveLastRow, 5);
    EXPECT_EQ(pc.ModLastRow, 5);
}

TEST(RouteFiles, AnApproachLoadedWithARouteIsSavedWithItOnceExecuted) {
    SimFolder sim;
    WriteDatabase(sim);
    sim.Write("orb/flightplans/APP.RTE",
              "ApproachInfo=ILS16R_16R\n[FlightPlan]\n"
              "KPDX 45.58884 -122.59726 APT ---\nBTG 45.747806 -122.591528 VOR ---\nKSEA 47.45019 -122.31232 APT ---\n");
    PlanContext& pc = g_plan.context;
    // Loaded as a route page loads it, activated and executed.
    LoadRouteToMod("APP.RTE", 0);
    ASSERT_EQ(pc.ModLastRow, 2);
    pc.PlanState = 2;
    PlanExecute();
    ASSERT_EQ(SaveRouteFile("OUT.RTE"), 1);
    std::string text = sim.Read("orb/flightplans/OUT.RTE");
    EXPECT_EQ(text.substr(0, text.find("KPDX")), "ApproachInfo=ILS16R_16R\n[FlightPlan]\n") << text;
    // A new destination drops the approach: the file has none.
    BeginModification();
    SetRow(g_plan.ModPlan, 2, "KPDX", 45.58884, -122.59726, "APT");
    SetText(pc.Selections.ModifiedDestination, "KPDX");
    pc.PlanState = 4;
    PlanExecute();
    ASSERT_EQ(SaveRouteFile("OUT.RTE"), 1);
    EXPECT_EQ(sim.Read("orb/flightplans/OUT.RTE").rfind("[FlightPlan]\n", 0), 0u);
}

TEST(RouteFiles, LoadingTheActivePlanExecutesIt) {
    SimFolder sim;
    WriteDatabase(sim);
    sim.Write("orb/flightplans/R.RTE", "CruiseAlt=33000\n[FlightPlan]\n"
                                       "KSEA 47.45019 -122.31232 APT ---\nKPDX 45.58884 -122.59726 APT ---\n");
    PlanContext& pc = g_plan.context;
    // A modification waits: a cruise altitude with its undo slot, a runway,
    // a direct under way.
    pc.PlanState = 4;
    pc.Undo.CruiseAltitude = 25000;
    SetText(pc.Selections.PendingDepartureRunway, "16L");
    g_smiths.LegsMode = 1;
    g_profile.ClimbIas = 300;  // a target speed of the last flight
    g_profile.SetMCPCrzAltOnFlightPlanLoad = 1;
    g_sim.latitude = 47.0;
    g_sim.longitude = -122.0;
    // The last flight ended in its descent.
    g_vnav.CruiseReached = g_vnav.DescentActive = g_vnav.DescentSpeedPhase = 1;
    SetText(pc.PlanLoadFile, "R.RTE");
    FakeSimulatorScope simulator;
    LoadRouteToActive(3);
    // VNAV starts over: climb, with climb speeds.
    EXPECT_EQ(g_vnav.CruiseReached, 0);
    EXPECT_EQ(g_vnav.DescentActive, 0);
    EXPECT_EQ(g_vnav.DescentSpeedPhase, 0);
    // On the ground: the aircraft's own speeds, the altitude bug at the cruise altitude.
    EXPECT_EQ(g_profile.ClimbIas, g_profile.ClimbIasBase);
    ASSERT_EQ(simulator.sim.CountEvents(0x1024C), 1);
    EXPECT_EQ(simulator.sim.key_events.back(), std::make_pair(0x1024Cu, 33000u));
    // EXEC's path committed it all: the runway, the direct's leg, no undo left.
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(pc.ActiveLeg, 1);
    EXPECT_STREQ(pc.Selections.DepartureRunway.data(), "16L");
    EXPECT_STREQ(pc.Selections.SavedDepartureRunway.data(), "16L");
    EXPECT_EQ(g_smiths.LegsMode, 0);
    EXPECT_EQ(g_lnav.InterceptActive, 1);
    EXPECT_DOUBLE_EQ(g_lnav.InterceptStart.lat, 47.0);
    pc.PlanState = 4;
    PlanErase();
    EXPECT_EQ(pc.CruiseAltitude, 33000);
}

TEST(RouteFiles, SaveWithoutOptionsAndFolders) {
    SimFolder sim;
    SetRow(g_plan.ActivePlan, 0, "KSEA", 47.45, -122.31, "APT");
    g_plan.context.ActiveLastRow = 0;
    ASSERT_EQ(SaveRouteFile("PLAIN.RTE"), 1);
    EXPECT_EQ(sim.Read("orb/flightplans/PLAIN.RTE").rfind("[FlightPlan]\n", 0), 0u);
    // A configured folder is used as given, with "\" added.
    std::filesystem::create_directories(sim.root() / "mine");
    std::string folder = (sim.root() / "mine").string();
    SetText(g_config.FlightPlansFolder, folder);
    ASSERT_EQ(SaveRouteFile("OTHER.RTE"), 1);
    EXPECT_TRUE(sim.Exists("mine/OTHER.RTE"));
    SetText(g_config.FlightPlansFolder, folder + "/missing");
    EXPECT_EQ(SaveRouteFile("NOPE.RTE"), 0);
    // The aircraft profile's folder wins over orb.cfg's.
    std::filesystem::create_directories(sim.root() / "jet");
    SetText(g_profile.FlightPlansFolder, (sim.root() / "jet").string());
    ASSERT_EQ(SaveRouteFile("JET.RTE"), 1);
    EXPECT_TRUE(sim.Exists("jet/JET.RTE"));
}

TEST(RouteFiles, HeaderKeysPerReader) {
    SimFolder sim;
    sim.Write("orb/flightplans/H.RTE",
              "; a comment\n"
              "CruiseAlt=27000\n"
              "TripFuel=1000\n"
              "ResvFuel=500\n"
              "fuel=9000\n"
              "TripFuel=100\n"
              "Fuel=8000\n"
              "ApproachInfo=RNAV34_34\n"
              "[FlightPlan]\n"
              "; rows may be commented out too\n"
              "AAAAA 1 2 WPT ---\n"
              "BBBBB 3 4 WPT ---\n");
    PlanContext& pc = g_plan.context;
    // The active reader: "FUEL" in any case sets the fuel, "Fuel" is one of them.
    SetText(pc.PlanLoadFile, "H.RTE");
    g_sim.latitude = 1;
    g_sim.longitude = 2;
    LoadRouteToActive(1);
    EXPECT_EQ(pc.CruiseAltitude, 27000);
    EXPECT_DOUBLE_EQ(pc.ReserveFuel, 500);
    EXPECT_DOUBLE_EQ(pc.PlanFuel, 8000);
    EXPECT_STREQ(pc.PendingApproachInfo.data(), "");
    EXPECT_EQ(pc.ActiveLastRow, 1);
    EXPECT_STREQ(pc.McuAirportText.data(), "AAAAA");  // mode 1: the MCU's airport text
    // The modified-plan reader takes "Fuel" only, and the approach.
    g_plan = PlanTables{};
    LoadRouteToMod("H.RTE", 0);
    EXPECT_EQ(pc.ModCruiseAltitude, 27000);
    EXPECT_EQ(pc.CruiseAltitude, 0);
    EXPECT_DOUBLE_EQ(pc.PlanFuel, 8000);
    EXPECT_STREQ(pc.PendingApproachInfo.data(), "RNAV34_34");
    // Rows only.
    g_plan = PlanTables{};
    LoadRouteToMod("H.RTE", 1);
    EXPECT_EQ(pc.ModCruiseAltitude, 0);
    EXPECT_DOUBLE_EQ(pc.PlanFuel, 0);
    EXPECT_EQ(pc.ModLastRow, 1);
    // The preview changes the modified cruise altitude and the fuel, nothing else.
    g_plan = PlanTables{};
    LoadRoutePreview("H.RTE");
    EXPECT_EQ(pc.ModCruiseAltitude, 27000);
    EXPECT_DOUBLE_EQ(pc.PlanFuel, 8000);
    EXPECT_DOUBLE_EQ(pc.ReserveFuel, 0);
    EXPECT_STREQ(pc.PendingApproachInfo.data(), "");
    EXPECT_EQ(pc.ModLastRow, -1);
}

TEST(RouteFiles, RowRulesLimitsAndFailures) {
    SimFolder sim;
    PlanContext& pc = g_plan.context;
    // 300 rows: rows 0 to 200 are read; ModPlan still has room for its end marker.
    std::string rows = "[FlightPlan]\n";
    for (int i = 0; i < 300; ++i) rows += "W" + std::to_string(i) + " 1 2 WPT ---\n";
    sim.Write("orb/flightplans/LONG.RTE", rows);
    SetText(pc.PlanLoadFile, "LONG.RTE");
    LoadRouteToActive(3);
    EXPECT_EQ(pc.ActiveLastRow, 200);
    EXPECT_EQ(Ident(g_plan.ActivePlan, 200), "W200");
    EXPECT_EQ(Ident(g_plan.ModPlan, 201), "******");
    LoadRouteToMod("LONG.RTE", 1);
    EXPECT_EQ(pc.ModLastRow, 200);
    LoadRoutePreview("LONG.RTE");
    EXPECT_EQ(pc.PreviewLastRow, 200);

    // No "[FlightPlan]": every line is a header line, no rows.
    sim.Write("orb/flightplans/NOHEAD.RTE", "KSEA 1 2 APT ---\nKPDX 3 4 APT ---\n");
    SetText(pc.PlanLoadFile, "NOHEAD.RTE");
    LoadRouteToActive(3);
    EXPECT_EQ(pc.ActiveLastRow, 0);
    // A missing file: emptied tables, no leg.
    SetText(pc.PlanLoadFile, "MISSING.RTE");
    LoadRouteToActive(3);
    EXPECT_EQ(pc.ActiveLastRow, 0);
    EXPECT_EQ(pc.ModLastRow, -1);

    // A simulator plan can't be converted yet: nothing is touched.
    pc.ActiveLastRow = 7;
    pc.ModLastRow = 6;
    SetText(pc.PlanLoadFile, "ROUTE.PLN");
    LoadRouteToActive(3);
    EXPECT_EQ(pc.ActiveLastRow, 7);
    LoadRouteToMod("route.pln", 0);
    EXPECT_EQ(pc.ModLastRow, 6);

    // "NEXT FPL": an empty modified plan ready for entry.
    SetRow(g_plan.ModPlan, 3, "OLD", 1, 1, "VOR", "112.00", "J1");
    LoadRouteToMod("NEXT FPL", 0);
    EXPECT_EQ(pc.ModLastRow, -1);
    EXPECT_EQ(pc.ModActiveLeg, 0);
    EXPECT_EQ(Ident(g_plan.ModPlan, 0), "******");
    EXPECT_EQ(Ident(g_plan.ModPlan, 1), "");
    EXPECT_EQ(Ident(g_plan.ModPlan, 3), "");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Altitude, -999);

    // Short row lines keep the columns before; the frequency, Via and kind are cleared.
    sim.Write("orb/flightplans/SHORT.RTE", "[FlightPlan]\nAAAAA 10 20 WPT 112.00 J1 SID\nBBBBB\n");
    LoadRouteToMod("SHORT.RTE", 1);
    ASSERT_EQ(pc.ModLastRow, 1);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[1].Latitude, 10);
    EXPECT_EQ(Type(g_plan.ModPlan, 1), "WPT");
    EXPECT_STREQ(g_plan.ModPlan[1].Frequency.data(), "");
    EXPECT_STREQ(g_plan.ModPlan[1].Via.data(), "");
}

TEST(RouteFiles, NavaidLookupOnLoad) {
    SimFolder sim;
    WriteDatabase(sim);
    sim.Write("orb/flightplans/N.RTE",
              "[FlightPlan]\n"
              "KSEA 47.45 -122.31 APT ---\n"
              "SEA 47.9 -122.3 INT ---\n"      // a VOR of that name on the same parallel
              "SEA 46.9 -122.3 INT ---\n"      // another parallel: not that VOR
              "SEN 47.1 -122.5 NDB ---\n"
              "SEA 47.4 -122.3 WPT ---\n"      // a pilot's waypoint is never looked up
              "BTG 45.7 -122.6 VOR 999.99\n"   // a frequency in the file is kept
              "KPDX 45.6 -122.6 APT ---\n");
    LoadRouteToMod("N.RTE", 1);
    ASSERT_EQ(g_plan.context.ModLastRow, 6);
    EXPECT_EQ(Type(g_plan.ModPlan, 1), "VOR");
    EXPECT_STREQ(g_plan.ModPlan[1].Frequency.data(), "116.80");
    EXPECT_EQ(Type(g_plan.ModPlan, 2), "INT");
    EXPECT_STREQ(g_plan.ModPlan[2].Frequency.data(), "");
    EXPECT_STREQ(g_plan.ModPlan[3].Frequency.data(), "350");
    EXPECT_EQ(Type(g_plan.ModPlan, 4), "WPT");
    EXPECT_STREQ(g_plan.ModPlan[4].Frequency.data(), "");
    EXPECT_STREQ(g_plan.ModPlan[5].Frequency.data(), "999.99");
    // The active load looks up both tables alike.
    SetText(g_plan.context.PlanLoadFile, "N.RTE");
    LoadRouteToActive(3);
    EXPECT_EQ(Type(g_plan.ActivePlan, 1), "VOR");
    EXPECT_STREQ(g_plan.ActivePlan[3].Frequency.data(), "350");
}

TEST(RouteFiles, DemonstrationRoutesLoadAgainstTheDemonstrationDatabase) {
    SimFolder::ResetState();
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s/data/sim", ORB_SOURCE_DIR);
    LoadNavDatabase();
    ASSERT_GT(g_navdb.AirportTable.count, 100);
    BuildStoredPlanTable();
    ASSERT_GE(g_stored_plans.count, 4);
    for (int i = 1; i < g_stored_plans.count; ++i) {
        const StoredPlanEntry& e = g_stored_plans.entries[i];
        EXPECT_GE(e.LastRow, 2) << e.FileName.data();
        // Every row is a fix of the database, at its position.
        for (int row = 0; row <= e.LastRow; ++row) {
            const StoredPlanRow* r = StoredRow(i, row);
            ASSERT_NE(r, nullptr);
            ASSERT_GE(ResolveName(0, r->Ident.data()), 1) << e.FileName.data() << " " << r->Ident.data();
            EXPECT_NEAR(g_candidates.rows[1].Latitude, r->Latitude, 0.001);
        }
    }
}
