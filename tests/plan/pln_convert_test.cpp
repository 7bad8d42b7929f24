// pln_convert_test.cpp: the simulator planner's .PLN files of both forms
// converted into the temporary route file, and the GPS route taken from the
// GPS data block and typed from the database.
#include "navdata/sim_folder.h"

#include "cdu/keypad.h"
#include "frame/data_text.h"
#include "plan/pln_reader.h"
#include "plan/sim_plans.h"
#include "support/fake_panels.h"

#include <gps_data_block.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {
std::vector<std::string> RowsOf(const std::string& text) {
    std::vector<std::string> rows;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        rows.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return rows;
}
}  // namespace

TEST(PlnPositions, BothFormsInDegreesWithWholeSeconds) {
    double d = 0;
    // 26.90' = 26' 54"; 47 + 26/60 + 54/3600.
    ASSERT_TRUE(ParseOlderPlnPosition("N47* 26.90'", d));
    EXPECT_NEAR(d, 47 + 26 / 60.0 + 54 / 3600.0, 1e-9);
    // 18.55' = 18' 33" west.
    ASSERT_TRUE(ParseOlderPlnPosition(" W122* 18.55'", d));
    EXPECT_NEAR(d, -(122 + 18 / 60.0 + 33 / 3600.0), 1e-9);
    // One digit short of degrees and minutes: 5* 7.50' = 5' 07' 30".
    ASSERT_TRUE(ParseOlderPlnPosition("S5* 7.50'", d));
    EXPECT_NEAR(d, -(5 + 7 / 60.0 + 30 / 3600.0), 1e-9);
    // XML form: the fraction of a second dropped; 0xB0 and UTF-8 degree signs alike.
    ASSERT_TRUE(ParseXmlPlnPosition("N47\xB0 26' 54.97\"", d));
    EXPECT_NEAR(d, 47 + 26 / 60.0 + 54 / 3600.0, 1e-9);
    ASSERT_TRUE(ParseXmlPlnPosition("W122\xC2\xB0 18' 3.2\"", d));
    EXPECT_NEAR(d, -(122 + 18 / 60.0 + 3 / 3600.0), 1e-9);
    // Not positions.
    for (const char* bad : {"", "X47* 26.90'", "N* 26.90'", "N47 26.90'", "N47*", "N47* x'"})
        EXPECT_FALSE(ParseOlderPlnPosition(bad, d)) << bad;
    for (const char* bad : {"", "47\xB0 26' 54\"", "N\xB0", "N47\xB0"}) EXPECT_FALSE(ParseXmlPlnPosition(bad, d)) << bad;
}

TEST(ConvertPlanFile, OlderFormWithAndWithoutRegionFields) {
    SimFolder sim;
    // Region fields first (the ident is the second field); a header line and a
    // waypoint line before the departure line are not read.
    sim.Write("orb/flightplans/REGION.PLN",
              "[flightplan]\r\n"
              "waypoint.9=, XXX, , XXX, V, N10* 0.00', W10* 0.00', +0,\r\n"
              "departure_id=KSEA, N47* 27.01', W122* 18.74', +000433.00\r\n"
              "destination_id=KGEG, N47* 37.18', W117* 32.02', +002376.00\r\n"
              "waypoint.0=, KSEA, , KSEA, A, N47* 27.01', W122* 18.74', +000433.00,\r\n"
              "waypoint.1=K1, ELN, , ELN, V, N47* 1.46', W120* 27.51', +000000.00,\r\n"
              "waypoint.2=K1, BLUE, , BLUE, I, N47* 20.00', W118* 5.00', +000000.00,\r\n"
              "waypoint.3=, GEG, , GEG, N, N47* 33.00', W117* 37.30', +000000.00,\r\n"
              "waypoint.4=, KGEG, , KGEG, A, N47* 37.18', W117* 32.02', +002376.00,\r\n");
    ASSERT_EQ(ConvertPlanFile("REGION.PLN"), 0);
    std::vector<std::string> rows = RowsOf(sim.Read("orb/flightplans/temp.rte"));
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[0], "[FlightPlan]");
    // 27.01' -> 27' 01" (0.6 s rounds to 01); 18.74' -> 18' 44" (44.4).
    EXPECT_EQ(rows[1], "KSEA     47.45028 -122.31222  APT");
    // 1.46' -> 01' 28" (27.6); 27.51' -> 27' 31" (30.6); 37.30' -> 37' 18"; 32.02' -> 32' 01" (1.2).
    EXPECT_EQ(rows[2], "ELN      47.02444 -120.45861  VOR");
    EXPECT_EQ(rows[3], "BLUE     47.33333 -118.08333  INT");
    EXPECT_EQ(rows[4], "GEG      47.55000 -117.62167  NDB");
    EXPECT_EQ(rows[5], "KGEG     47.61972 -117.53361  APT");

    // The ident first: "waypoint.0" begins with the departure ident.
    sim.Write("orb/flightplans/PLAIN.PLN",
              "departure_id=KSEA,N47* 27.01',W122* 18.74'\n"
              "waypoint.0=KSEA, A, N47* 27.01', W122* 18.74', +000433.00,\n"
              "waypoint.1=OLM, V, N46* 58.30', W122* 54.11', +000000.00,\n");
    ASSERT_EQ(ConvertPlanFile("PLAIN.PLN"), 0);
    rows = RowsOf(sim.Read("orb/flightplans/temp.rte"));
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2], "OLM      46.97167 -122.90194  VOR");
}

TEST(ConvertPlanFile, XmlFormKeepsTypesAndLeavesTheDepartureElementOut) {
    SimFolder sim;
    sim.Write("orb/flightplans/XML.PLN",
              "<?xml version=\"1.0\" encoding=\"Windows-1252\"?>\n"
              "<ATCWaypoint id=\"EARLY\">\n"  // before the departure: not read
              "</ATCWaypoint>\n"
              "<DepartureID>KSEA</DepartureID>\n"
              "<DepartureLLA>N47\xB0 27' 0.68\",W122\xB0 18' 44.35\",+000433.00</DepartureLLA>\n"
              "<ATCWaypoint id=\"KSEA\">\n"
              "    <ATCWaypointType>Airport</ATCWaypointType>\n"
              "    <WorldPosition>N47\xB0 27' 0.68\",W122\xB0 18' 44.35\",+000433.00</WorldPosition>\n"
              "</ATCWaypoint>\n"
              "<ATCWaypoint id=\"SEA\">\n"
              "    <ATCWaypointType>VOR</ATCWaypointType>\n"
              "    <WorldPosition>N47\xB0 26' 7.30\",W122\xB0 18' 34.60\",+000000.00</WorldPosition>\n"
              "</ATCWaypoint>\n"
              "<ATCWaypoint id=\"USR01\">\n"
              "    <ATCWaypointType>User</ATCWaypointType>\n"
              "    <WorldPosition>S33\xC2\xB0 56' 46.00\",E151\xC2\xB0 10' 38.00\",+000000.00</WorldPosition>\n"
              "</ATCWaypoint>\n"
              "<ATCWaypoint id=\"BTG\">\n"
              "    <ATCWaypointType>NDB</ATCWaypointType>\n"
              "    <WorldPosition>N45\xB0 44' 52\",W122\xB0 35' 29\",</WorldPosition>\n"
              "</ATCWaypoint>\n"
              "<ATCWaypoint id=\"FIX\">\n"
              "    <ATCWaypointType>Intersection</ATCWaypointType>\n"
              "    <WorldPosition>N45\xB0 0' 0\",W122\xB0 0' 0\",</WorldPosition>\n"
              "</ATCWaypoint>\n");
    ASSERT_EQ(ConvertPlanFile("XML.PLN"), 0);
    std::vector<std::string> rows = RowsOf(sim.Read("orb/flightplans/temp.rte"));
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[1], "KSEA     47.45000 -122.31222  APT");
    EXPECT_EQ(rows[2], "SEA      47.43528 -122.30944  VOR");
    // "User" is none of the four words: the row keeps the type of the row before.
    EXPECT_EQ(rows[3], "USR01    -33.94611 151.17722  VOR");
    EXPECT_EQ(rows[4], "BTG      45.74778 -122.59139  NDB");
    EXPECT_EQ(rows[5], "FIX      45.00000 -122.00000  INT");
}

TEST(ConvertPlanFile, MissingFileFailsWithTheMessageAndNoWaypointsGiveAHeaderAlone) {
    SimFolder sim;
    g_smiths = SmithsCduState{};
    EXPECT_EQ(ConvertPlanFile("NOPE.PLN"), kConvertFailed);
    EXPECT_EQ(TextOf(g_smiths.CduMessage), "Unable to load FP");
    EXPECT_FALSE(sim.Exists("orb/flightplans/temp.rte"));

    sim.Write("orb/flightplans/EMPTY.PLN", "[flightplan]\ndeparture_id=KSEA\ntitle=nothing\n");
    ASSERT_EQ(ConvertPlanFile("EMPTY.PLN"), 0);
    EXPECT_EQ(sim.Read("orb/flightplans/temp.rte"), "[FlightPlan]\n");

    // A .PLN that can't be read leaves the active plan alone.
    g_plan.context.ActiveLastRow = 3;
    SetText(g_plan.context.PlanLoadFile, "NOPE.PLN");
    LoadRouteToActive(1);
    EXPECT_EQ(g_plan.context.ActiveLastRow, 3);
}

namespace {
// A GPS block as the simulator lays it out: the block, then its records.
struct GpsBlock {
    std::vector<unsigned char> block = std::vector<unsigned char>(kGpsBlockMinimum + 16, 0);
    std::vector<unsigned char> records;
    void Add(const char* ident, double lat, double lon) {
        size_t at = records.size();
        records.resize(at + kGpsWaypointSize, 0);
        int32_t raw_lat = static_cast<int32_t>(std::llround(lat / 360.0 * 40007000.0));
        // longitude x 2^64 / 360, worked here with long double
        int64_t raw_lon = static_cast<int64_t>(std::llroundl(static_cast<long double>(lon) / 360.0L * 18446744073709551616.0L));
        std::memcpy(&records[at + 12], &raw_lat, 4);
        std::memcpy(&records[at + 16], &raw_lon, 8);
        std::memcpy(&records[at + 56], ident, std::strlen(ident));
    }
    void Publish(uint32_t length) {
        uint32_t count = static_cast<uint32_t>(records.size() / kGpsWaypointSize);
        const unsigned char* array = records.empty() ? nullptr : records.data();
        std::memcpy(&block[0], &length, 4);
        std::memcpy(&block[42 * 4], &count, 4);
        std::memcpy(&block[43 * 4], &array, sizeof array);
    }
} g_block;

void FSAPI InitVarByName(MODULE_VAR* var, PSTRINGZ name) {
    var->var_ptr = std::strcmp(name, "FS2002 GPS DATA") == 0 ? g_block.block.data() : nullptr;
}
}  // namespace

TEST(GpsRoute, ImportedTypedAndExecutedOrRefused) {
    SimFolder sim;
    FakeSimulatorScope scope;
    scope.sim.table.slots[static_cast<int>(PanelSlot::initialize_var_by_name)] = reinterpret_cast<void*>(&InitVarByName);
    g_smiths = SmithsCduState{};
    g_sim_plans = SimPlanExchange{};
    sim.Write("orb/navdata/apts.txt", "KSEA Seattle 433 47.450188 -122.312320\nKGEG Spokane 2376 47.619718 -117.533965\n");
    sim.Write("orb/navdata/navs.txt",
              "ELN ELLENSBURG 47.024361 -120.458417 VOR 117.90\n"
              "MWH MOSES_NDB 47.20 -119.32 NDB 400\n"
              "MWH MOSES_LAKE 47.21 -119.32 VOR 115.00\n"
              "FAR FAR_AWAY 40.0 -100.0 VOR 110.00\n");
    sim.Write("orb/navdata/ints.txt", "WINTHROP WINTHROP 47.30 -119.90\nELNXX ELNXX 47.02 -120.46\n");
    LoadNavDatabase();
    g_block = GpsBlock{};

    // A block too short, and then a route of one waypoint: refused, plan untouched.
    g_block.Add("KSEA", 47.450188, -122.312320);
    g_block.Publish(static_cast<uint32_t>(kGpsBlockMinimum - 1));
    g_plan.context.ActiveLastRow = -1;
    ImportSimulatorGpsRoute(0);
    EXPECT_EQ(TextOf(g_smiths.CduMessage), "NO ACTIVE GPS RTE");
    g_block.Publish(static_cast<uint32_t>(kGpsBlockMinimum));
    g_smiths.CduMessage = {};
    ImportSimulatorGpsRoute(0);
    EXPECT_EQ(TextOf(g_smiths.CduMessage), "NO ACTIVE GPS RTE");
    EXPECT_EQ(g_plan.context.ActiveLastRow, -1);

    // The route: a VOR, an NDB with a VOR of its name beside it, a long-named
    // fix, a VOR name far from the GPS's fix, a five-letter fix (never looked
    // up as a fix), and the destination.
    g_block.Add("ELN", 47.024361, -120.458417);
    g_block.Add("MWH", 47.205, -119.32);
    g_block.Add("WINTHROP", 47.30, -119.90);
    g_block.Add("FAR", 47.40, -119.00);
    g_block.Add("ELNXX", 47.02, -120.46);
    g_block.Add("KGEG", 47.619718, -117.533965);
    g_block.Publish(static_cast<uint32_t>(kGpsBlockMinimum));
    g_smiths.CduMessage = {};
    ImportSimulatorGpsRoute(0);
    EXPECT_EQ(TextOf(g_smiths.CduMessage), "ACTIVE FSPLANNER RTE LOADED");
    const PlanContext& pc = g_plan.context;
    ASSERT_EQ(pc.ActiveLastRow, 6);
    EXPECT_EQ(pc.PlanState, 3);
    struct Want {
        const char* ident;
        const char* type;
        const char* frequency;
    } want[] = {{"KSEA", "APT", ""},      {"ELN", "VOR", "117.90"}, {"MWH", "VOR", "115.00"}, {"WINTHROP", "INT", ""},
                {"FAR", "WPT", ""},       {"ELNXX", "WPT", ""},     {"KGEG", "APT", ""}};
    for (int i = 0; i <= 6; ++i) {
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(i)];
        EXPECT_EQ(TextOf(w.Ident), want[i].ident) << i;
        EXPECT_EQ(TextOf(w.WaypointType), want[i].type) << i;
        EXPECT_EQ(TextOf(w.Frequency), want[i].frequency) << i;
    }
    // Positions through the block's units: latitude to 1 m, longitude far finer.
    EXPECT_NEAR(g_plan.ActivePlan[1].Latitude, 47.024361, 1e-5);
    EXPECT_NEAR(g_plan.ActivePlan[1].Longitude, -120.458417, 1e-9);
    EXPECT_EQ(TextOf(pc.Selections.OriginName), "KSEA");
    EXPECT_EQ(TextOf(pc.Selections.DestinationName), "KGEG");

    // From the page that asks for silence, no message.
    g_smiths.CduMessage = {};
    ImportSimulatorGpsRoute(7);
    EXPECT_EQ(TextOf(g_smiths.CduMessage), "");
}
