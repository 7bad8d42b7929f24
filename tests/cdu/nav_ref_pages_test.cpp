// nav_ref_pages_test.cpp: a pilot on the reference pages of the Boeing-style
// CDU (INIT/REF INDEX, IDENT, POS, NAV STATUS, REF NAV DATA, FIX INFO,
// STORED FLIGHT PLANS) on the demonstration database: look-ups and their
// refusals, the fix rows' entry rules, saving and loading plans, and whole
// screens against the grids in tests/cdu/reference/.
#include "cdu_rig.h"

#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/fix_info.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace cdu_test;

namespace {
constexpr double kTestPi = 3.14159265358979323846;

void Enter(CduRig& cdu, const char* text, const char* key) {
    ClearEntry(cdu);
    cdu.Type(text);
    cdu.PressAndFrame(key);
}

void ExpectRefused(CduRig& cdu, const char* text, const char* key, const char* message) {
    Enter(cdu, text, key);
    EXPECT_EQ(Message(), message) << text << " on " << key;
    EXPECT_EQ(Scratchpad(), text) << "a refused text stays";
}

void ExpectTaken(CduRig& cdu, const char* text, const char* key) {
    Enter(cdu, text, key);
    EXPECT_EQ(Message(), "") << text << " on " << key;
    EXPECT_EQ(Scratchpad(), "") << text << " on " << key;
}

// The first drawn frame runs the tick, which samples the simulator's
// position and clock; a test's own values go in after it.
void SettleTick(CduRig& cdu) { cdu.Frame(); }

void Show(CduRig& cdu, int page) {
    g_smiths.CduPage = page;
    cdu.Frame();
}


// Great-circle distance by the haversine form (the module uses the law of
// cosines: the two must agree).
double HaversineNm(double lat1, double lon1, double lat2, double lon2) {
    double r = kTestPi / 180;
    double a = std::pow(std::sin((lat2 - lat1) * r / 2), 2) +
               std::cos(lat1 * r) * std::cos(lat2 * r) * std::pow(std::sin((lon2 - lon1) * r / 2), 2);
    return 2 * std::asin(std::sqrt(a)) * 10800 / kTestPi;
}

// A folder of its own under the build tree, for files a test writes.
std::string ScratchFolder(const char* name) {
    std::filesystem::path dir = std::filesystem::path(ORB_BINARY_DIR) / "nav-ref-test" / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir.string() + "/";
}

// The idents of a route file's rows, read here line by line.
std::string RouteFileIdents(const std::string& path) {
    std::ifstream in(path);
    std::string line, out;
    bool rows = false;
    while (std::getline(in, line)) {
        if (line.rfind("[FlightPlan]", 0) == 0) {
            rows = true;
            continue;
        }
        if (!rows || line.empty()) continue;
        std::string ident = line.substr(0, line.find(' '));
        out += (out.empty() ? "" : " ") + ident;
    }
    return out;
}
}  // namespace

TEST(NavRefPages, IdentIsTheStartPageAndShowsTheDatabaseCycle) {
    CduRig cdu;
    cdu.Frame();
    EXPECT_EQ(g_smiths.CduPage, 25);
    // The demonstration navs.txt opens ";AIRAC cycle is 1310 (19-SEP-2013 to
    // 17-OCT-2013)": cycle 1310, valid from SEP19 to OCT17 of 13.
    EXPECT_NE(RowWith(cdu, "AIRAC 1310"), "");
    EXPECT_NE(RowWith(cdu, "SEP19OCT17/13"), "");
    EXPECT_NE(RowWith(cdu, "296485 - 04 - 19      (V01.8.9.1)"), "");
    ExpectScreen(cdu, "ident");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 26);
    EXPECT_EQ(g_smiths.pos.page, 1);
    Show(cdu, 25);
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.CduPage, 23);
    cdu.Frame();
    ExpectScreen(cdu, "init_ref_index");
}

TEST(NavRefPages, IndexKeysLeadToTheirPages) {
    CduRig cdu;
    struct Case {
        const char* key;
        int page;
    };
    for (Case c : {Case{"LSK1L", 25}, Case{"LSK2L", 26}, Case{"LSK3L", 3}, Case{"LSK4L", 27}, Case{"LSK5L", 12},
                   Case{"LSK1R", 28}, Case{"LSK2R", 1}}) {
        Show(cdu, 23);
        cdu.PressAndFrame(c.key);
        EXPECT_EQ(g_smiths.CduPage, c.page) << c.key;
    }
    // The simulator's plan comes from its GPS data, which this build has none of.
    Show(cdu, 23);
    cdu.PressAndFrame("LSK3R");
    EXPECT_EQ(g_smiths.CduPage, 23);
    EXPECT_EQ(Message(), "NO ACTIVE GPS RTE");
    // INIT REF without a plan under way opens POS at its first page.
    g_smiths.pos.page = 3;
    cdu.PressAndFrame("INIT_REF");
    EXPECT_EQ(g_smiths.CduPage, 26);
    EXPECT_NE(RowWith(cdu, "POS   INIT"), "");
}

TEST(NavRefPages, SaveFplNamesTheFileAndTheRouteReaderReadsItBack) {
    CduRig cdu;
    // Nothing active: nothing to save.
    Show(cdu, 23);
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(Message(), "NO ACTIVE FLIGHT PLAN");
    ClearEntry(cdu);

    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    ASSERT_EQ(g_plan.context.PlanState, 3);
    std::string folder = ScratchFolder("save");
    SetText(g_config.FlightPlansFolder, folder);
    const PlanTable& active = g_plan.ActivePlan;
    int last = g_plan.context.ActiveLastRow;
    ASSERT_GE(last, 1);

    // An empty entry line: the first and last idents, ".RTE".
    std::string expected_name = Ident(active, 0) + Ident(active, last) + ".RTE";
    Show(cdu, 23);
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(Message(), expected_name + " Saved");
    EXPECT_EQ(Scratchpad(), "");
    ASSERT_TRUE(std::filesystem::exists(folder + expected_name));
    EXPECT_EQ(RouteFileIdents(folder + expected_name), Idents(active, last));
    // Read back by the route reader: the same rows, in the same places.
    LoadRoutePreview(expected_name.c_str());
    ASSERT_EQ(g_plan.context.PreviewLastRow, last);
    for (int i = 0; i <= last; ++i) {
        EXPECT_EQ(Ident(g_plan.PreviewPlan, i), Ident(active, i)) << i;
        EXPECT_NEAR(g_plan.PreviewPlan[i].Latitude, active[i].Latitude, 1e-5) << i;
        EXPECT_NEAR(g_plan.PreviewPlan[i].Longitude, active[i].Longitude, 1e-5) << i;
    }

    // A typed name without a dot gets ".RTE"; one with a dot is kept as typed.
    ClearEntry(cdu);
    cdu.Type("MYPLAN");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(Message(), "MYPLAN.RTE Saved");
    EXPECT_TRUE(std::filesystem::exists(folder + "MYPLAN.RTE"));
    ClearEntry(cdu);
    cdu.Type("TRIP.TXT");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(Message(), "TRIP.TXT Saved");
    EXPECT_TRUE(std::filesystem::exists(folder + "TRIP.TXT"));
    EXPECT_FALSE(std::filesystem::exists(folder + "TRIP.TXT.RTE"));

    // A folder that isn't there: the file can't be written.
    SetText(g_config.FlightPlansFolder, folder + "missing/");
    ClearEntry(cdu);
    cdu.Type("LOST");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(Message(), "LOST.RTE Unable to Save");
    EXPECT_EQ(Scratchpad(), "");
}

TEST(NavRefPages, StoredPlanLoadedFromTheList) {
    CduRig cdu;
    Show(cdu, 23);
    cdu.PressAndFrame("LSK2R");
    ASSERT_EQ(g_smiths.CduPage, 1);
    cdu.Frame();
    // The demonstration folder's three routes and the new-plan entry: one page.
    EXPECT_NE(RowWith(cdu, " 1 /  1"), "");
    std::string row = RowWith(cdu, "KSEAKOLM.RTE");
    ASSERT_NE(row, "");
    int y = std::atoi(row.c_str());
    int line = (y - 33) / 33 + 1;
    ASSERT_GE(line, 1);
    ASSERT_LE(line, 5);
    ExpectScreen(cdu, "stored_flight_plans");

    char key[16];
    std::snprintf(key, sizeof key, "LSK%dL", line);
    cdu.PressAndFrame(key);
    EXPECT_EQ(g_smiths.CduPage, 22);
    EXPECT_EQ(g_smiths.rte.page, 1);
    EXPECT_EQ(g_plan.context.PlanState, 1);
    std::string file = std::string(ORB_SOURCE_DIR) + "/data/sim/orb/flightplans/KSEAKOLM.RTE";
    EXPECT_EQ(Idents(g_plan.ModPlan, g_plan.context.ModLastRow), RouteFileIdents(file));
    EXPECT_EQ(g_smiths.CduPage, 22);
    cdu.Frame();
    EXPECT_TRUE(cdu.ScreenHas("KOLM"));
}

TEST(NavRefPages, PosPagesShowPositionTimeAndStepRound) {
    CduRig cdu;
    SettleTick(cdu);
    g_sim.latitude = 47.45;     // 27.0 minutes north
    g_sim.longitude = -122.31;  // 18.6 minutes west
    g_sim.zulu_hour = 14;
    g_sim.zulu_minute = 5;
    g_sim.clock_second = 33;    // the fifth tenth of the minute
    cdu.sim().tokens[Token::ZULU_DAY] = 60;
    cdu.sim().tokens[Token::ZULU_YEAR] = 2024;  // a leap year: day 60 is 29 February
    Show(cdu, 26);
    g_smiths.pos.page = 1;
    cdu.Frame();
    EXPECT_NE(RowWith(cdu, "N4727.0 W12218.6"), "");
    EXPECT_NE(RowWith(cdu, "1405.5 z  02/29"), "");
    EXPECT_NE(cdu.Screen().find(" 66|- - - -\n"), std::string::npos) << "no reference airport without a leg";
    EXPECT_NE(RowWith(cdu, "1 / 3"), "");
    ExpectScreen(cdu, "pos_init");
    cdu.sim().tokens[Token::ZULU_YEAR] = 2023;
    cdu.Frame();
    EXPECT_NE(RowWith(cdu, "1405.5 z  03/01"), "");

    // NEXT past the last page comes round to 1; PREV below 1 to the last.
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_NE(RowWith(cdu, "POS  REF"), "");
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_NE(RowWith(cdu, "POS  SHIFT"), "");
    EXPECT_NE(RowWith(cdu, "1 . 0 0 / 0 . 0 0 N M"), "");
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_NE(RowWith(cdu, "POS   INIT"), "");
    cdu.PressAndFrame("PREV_PAGE");
    EXPECT_NE(RowWith(cdu, "POS  SHIFT"), "");

    // With the route active, the reference airport is its first entry.
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    Show(cdu, 26);
    g_smiths.pos.page = 1;
    cdu.Frame();
    EXPECT_NE(cdu.Screen().find(" 66|KSEA\n"), std::string::npos) << cdu.Screen();
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 22);
}

TEST(NavRefPages, NavStatusListsTheTunedAndTheNearestStations) {
    CduRig cdu;
    SettleTick(cdu);
    g_sim.latitude = 47.44;
    g_sim.longitude = -122.31;
    cdu.sim().tokens[Token::NAV1_FREQUENCY] = 0x1680;  // 116.80, SEA
    cdu.sim().tokens[Token::NAV1_SIGNAL] = 1;
    cdu.sim().tokens[Token::NAV2_FREQUENCY] = 0x1340;  // 113.40, OLM, but no signal
    Show(cdu, 31);
    EXPECT_NE(RowWith(cdu, "SEA   116.80             113.40"), "") << cdu.Screen();

    // The nearest VORs and NDBs, worked out here from navs.txt.
    struct Station {
        std::string ident, frequency;
        double distance;
    };
    std::vector<Station> vors, ndbs;
    std::ifstream in(std::string(ORB_SOURCE_DIR) + "/data/sim/orb/navdata/navs.txt");
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == ';') continue;
        std::istringstream columns(line);
        std::string ident, name, type, frequency;
        double lat = 0, lon = 0;
        columns >> ident >> name >> lat >> lon >> type >> frequency;
        double d = HaversineNm(g_sim.latitude, g_sim.longitude, lat, lon);
        if (d > 320) continue;
        (type == "VOR" ? vors : ndbs).push_back({ident, frequency, d});
    }
    auto by_distance = [](const Station& a, const Station& b) { return a.distance < b.distance; };
    std::stable_sort(vors.begin(), vors.end(), by_distance);
    std::stable_sort(ndbs.begin(), ndbs.end(), by_distance);
    ASSERT_GE(vors.size(), 4u);
    ASSERT_GE(ndbs.size(), 4u);
    for (int k = 0; k < 4; ++k) {
        char want[80];
        std::snprintf(want, sizeof want, "%-5s %6s       %-5s %6s", vors[k].ident.c_str(), vors[k].frequency.c_str(),
                      ndbs[k].ident.c_str(), ndbs[k].frequency.c_str());
        EXPECT_NE(RowWith(cdu, want), "") << want;
    }

    // Page 2: NAV OPTIONS, whose prompts do nothing; POS SHIFT only from page 1.
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_NE(RowWith(cdu, "NAV  OPTIONS"), "");
    ExpectScreen(cdu, "nav_options");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(g_smiths.CduPage, 31);
    cdu.PressAndFrame("PREV_PAGE");
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, 26);
    EXPECT_EQ(g_smiths.pos.page, 3);
}

TEST(NavRefPages, RefNavDataLooksUpEachKindAndRefusesTheWrongOne) {
    CduRig cdu;
    SettleTick(cdu);
    g_sim.magnetic_variation = 17;
    Show(cdu, 28);
    ExpectScreen(cdu, "ref_nav_data_index");

    // Unknown, and a single candidate of another kind: not found.
    ExpectRefused(cdu, "ZZZZZ", "LSK1L", "NOT IN DATABASE");
    ExpectRefused(cdu, "KSEA", "LSK1L", "NOT IN DATABASE");
    ExpectRefused(cdu, "ALKIA", "LSK2L", "NOT IN DATABASE");
    ExpectRefused(cdu, "KSEA", "LSK3L", "NOT IN DATABASE");
    EXPECT_EQ(g_smiths.RefNavMode, 1);

    // A waypoint: its radial and distance from the aircraft, 30 nm due north of it.
    g_sim.latitude = 47.621025 + 0.5;
    g_sim.longitude = -122.474217;
    ExpectTaken(cdu, "ALKIA", "LSK1L");
    cdu.Frame();
    EXPECT_NE(RowWith(cdu, "W P T    I D E N T"), "");
    // Aircraft to fix: 180 true, 163 magnetic; 0.5 degree of latitude is 30 nm.
    EXPECT_NE(RowWith(cdu, "163/30.0"), "") << cdu.Screen();
    EXPECT_NE(RowWith(cdu, "N4737.3"), "");
    EXPECT_NE(RowWith(cdu, "W12228.5"), "");
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.RefNavMode, 1);
    EXPECT_EQ(g_smiths.CduPage, 28);

    // A navaid with its frequency.
    ExpectTaken(cdu, "PAE", "LSK3L");
    cdu.Frame();
    EXPECT_NE(RowWith(cdu, "N A V A I D    I D E N T"), "");
    EXPECT_NE(RowWith(cdu, "110.60"), "");
    cdu.PressAndFrame("LSK6L");

    // An airport, its elevation and a runway's length in feet and whole metres.
    ExpectTaken(cdu, "KSEA", "LSK2L");
    cdu.Frame();
    EXPECT_NE(RowWith(cdu, "433 FT"), "");
    // The runway length list (orb_apts.txt) answers for the airport's runways.
    ExpectRefused(cdu, "99X", "LSK2L", "NOT FOUND IN DATABASE");
    ExpectTaken(cdu, "16L", "LSK2L");
    cdu.Frame();
    // 11893 ft x 0.3048 = 3624.99 m: 3624 whole metres.
    EXPECT_NE(RowWith(cdu, "11893FT 3624 M"), "") << cdu.Screen();
    ExpectScreen(cdu, "ref_nav_data_airport");
    EXPECT_NEAR(g_plan.ActivePlan[0].Altitude, -999, 1e-9) << "a look-up leaves the plan alone";

    // The index's own keys.
    cdu.PressAndFrame("LSK6L");
    cdu.PressAndFrame("LSK5L");
    EXPECT_EQ(g_smiths.CduPage, 31);
    EXPECT_EQ(g_smiths.nav_status.page, 2);
    Show(cdu, 28);
    cdu.PressAndFrame("LSK4L");
    EXPECT_EQ(g_smiths.CduPage, 23);
}

TEST(NavRefPages, RefNavDataPickFromSelectWaypointComesBack) {
    CduRig cdu;
    SettleTick(cdu);
    g_sim.latitude = 47.45;
    g_sim.longitude = -122.31;
    Show(cdu, 28);
    // Two BATKYs: the list, nearest first (the one off the coast, about 130 nm).
    Enter(cdu, "BATKY", "LSK1L");
    EXPECT_EQ(g_smiths.CduPage, 9);
    EXPECT_EQ(g_smiths.ReturnPage, 28);
    cdu.Frame();
    cdu.PressAndFrame("LSK2L");
    EXPECT_EQ(g_smiths.CduPage, 28);
    EXPECT_EQ(g_smiths.RefNavMode, 2);
    cdu.Frame();
    EXPECT_NE(RowWith(cdu, "BATKY"), "");
    // The second of the list is the far one, east of Spokane: 47.748475 N.
    EXPECT_NE(RowWith(cdu, "N4744.9"), "") << cdu.Screen();
    char want[32];
    std::snprintf(want, sizeof want, "/%.1f", HaversineNm(47.45, -122.31, 47.748475, -117.343047));
    EXPECT_NE(RowWith(cdu, want), "") << cdu.Screen();
}

TEST(NavRefPages, FixInfoEntriesAndRefusals) {
    CduRig cdu;
    SettleTick(cdu);
    g_sim.magnetic_variation = 17;
    g_sim.latitude = 47.435361 + 0.5;  // 30 nm due north of SEA
    g_sim.longitude = -122.309611;
    cdu.PressAndFrame("FIX");
    ASSERT_EQ(g_smiths.CduPage, 37);
    EXPECT_NE(RowWith(cdu, "1 / 2"), "");

    ExpectRefused(cdu, "XQXQX", "LSK1L", "NOT IN DATABASE");
    ExpectTaken(cdu, "SEA", "LSK1L");
    cdu.Frame();
    // From SEA the aircraft stands on the 360 true radial: 343 magnetic, 30 nm.
    EXPECT_NE(RowWith(cdu, "343/ 30.0"), "") << cdu.Screen();

    // The radial is exactly three digits, 000 to 360; the distance inside (0, 999).
    ExpectRefused(cdu, "90", "LSK2L", "INVALID ENTRY");
    ExpectRefused(cdu, "90/10", "LSK2L", "INVALID ENTRY");
    ExpectRefused(cdu, "361", "LSK2L", "INVALID ENTRY");
    ExpectRefused(cdu, "0900/10", "LSK2L", "INVALID ENTRY");
    ExpectRefused(cdu, "/999", "LSK2L", "INVALID ENTRY");
    ExpectRefused(cdu, "/0", "LSK2L", "INVALID ENTRY");
    ExpectRefused(cdu, "090/", "LSK2L", "INVALID ENTRY");
    ExpectRefused(cdu, "090/10.000000", "LSK2L", "INVALID ENTRY");  // 13 characters
    ExpectTaken(cdu, "090", "LSK2L");
    EXPECT_NE(RowWith(cdu, "090/---"), "");
    ExpectTaken(cdu, "/998.5", "LSK2L");
    EXPECT_NE(RowWith(cdu, "090/998.5"), "") << "a distance alone keeps the radial";
    ExpectTaken(cdu, "360/12.5", "LSK3L");
    EXPECT_NE(RowWith(cdu, "360/12.5"), "");
    ExpectTaken(cdu, "090/10.00000", "LSK4L");  // 12 characters
    EXPECT_NE(RowWith(cdu, "090/10.0"), "");

    // DELETE on a row takes its radial; on key 1 the whole record.
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(Message(), "");
    EXPECT_NE(RowWith(cdu, "---/12.5"), "");
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK1L");
    EXPECT_FALSE(FixInfoHasFix(g_fix_info.Records[0]));
    EXPECT_FALSE(cdu.ScreenHas("SEA"));
    EXPECT_NE(RowWith(cdu, "---/---"), "");
}

TEST(NavRefPages, FixInfoTakesTheFirstOfSeveralAndKeepsTwoRecords) {
    CduRig cdu;
    SettleTick(cdu);
    g_sim.latitude = 47.45;
    g_sim.longitude = -122.31;
    cdu.PressAndFrame("FIX");
    ExpectTaken(cdu, "BATKY", "LSK1L");
    EXPECT_EQ(g_smiths.CduPage, 37) << "no SELECT WAYPOINT on this page";
    // The nearer BATKY, off the coast.
    EXPECT_NEAR(g_fix_info.Records[0].Latitude, 45.576506, 1e-6);
    cdu.Frame();
    char want[16];
    std::snprintf(want, sizeof want, "/%5.1f", HaversineNm(47.45, -122.31, 45.576506, -123.929233));
    EXPECT_NE(RowWith(cdu, want), "") << cdu.Screen();

    // PREV raises the counter: the second record is empty and its own.
    cdu.PressAndFrame("PREV_PAGE");
    EXPECT_NE(RowWith(cdu, "2 / 2"), "");
    EXPECT_FALSE(cdu.ScreenHas("BATKY"));
    ExpectTaken(cdu, "PAE", "LSK1L");
    cdu.PressAndFrame("PREV_PAGE");
    EXPECT_NE(RowWith(cdu, "1 / 2"), "");
    EXPECT_TRUE(cdu.ScreenHas("BATKY"));
    EXPECT_STREQ(g_fix_info.Records[1].Name.data(), "PAE");
}

TEST(NavRefPages, FixInfoTimeAndDistanceToTheRadialPoint) {
    CduRig cdu;
    SettleTick(cdu);
    g_sim.magnetic_variation = 0;
    g_sim.latitude = 47.435361;  // over SEA
    g_sim.longitude = -122.309611;
    g_sim.zulu_hour = 23;
    g_sim.zulu_minute = 58;
    // Ground speed is sampled at every frame: the simulator's own, in feet a second.
    cdu.sim().tokens[Token::GROUND_VELOCITY] = 300 * 1.68781;
    cdu.PressAndFrame("FIX");
    ExpectTaken(cdu, "SEA", "LSK1L");
    ExpectTaken(cdu, "090/22", "LSK2L");
    ExpectTaken(cdu, "180", "LSK3L");
    cdu.Frame();
    // 22 nm at 300 kt is 4.4 minutes: 2358 + 4 carries round midnight.
    std::string row = RowWith(cdu, "090/22.0");
    EXPECT_NE(row.find("0002Z"), std::string::npos) << row;
    EXPECT_NE(row.find("22.0", row.find("0002Z")), std::string::npos) << row;
    // A radial without a distance has no point to go to.
    ASSERT_NE(RowWith(cdu, "180/---"), "");
    EXPECT_EQ(RowWith(cdu, "180/---").find('Z'), std::string::npos);
    ExpectScreen(cdu, "fix_info");
    // At 75 kt and below: no time, no distance.
    cdu.sim().tokens[Token::GROUND_VELOCITY] = 75 * 1.68781;
    cdu.Frame();
    ASSERT_NE(RowWith(cdu, "090/22.0"), "");
    EXPECT_EQ(RowWith(cdu, "090/22.0").find("Z"), std::string::npos);
}

TEST(NavRefPages, TempNavSummaryHasOnlyItsWayBack) {
    CduRig cdu;
    Show(cdu, 29);
    EXPECT_NE(RowWith(cdu, "1 / 1"), "");
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.CduPage, 23);
}
