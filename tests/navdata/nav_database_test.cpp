// nav_database_test.cpp: the bulk load, the navaid index, the name search,
// the proximity subsets, position texts, the cycle and the airport details.
#include "navdata/sim_folder.h"
#include "frame/diagnostic_log.h"

#include "guidance/geodesy.h"
#include "guidance/vnav.h"
#include "frame/data_text.h"

#include <string>

namespace {
std::string Ident(NavTableId table, int row) { return std::string(IdentOf(TableOf(table), row)); }
std::string Cand(int row) { return g_candidates.rows[row].Ident.data(); }
std::string CandKind(int row) { return g_candidates.rows[row].Kind.data(); }

const char* kSeattleApts =
    "KSEA SEATTLE_TACOMA_INTL 433 47.450188 -122.312320 "
    "16L_11893_47.463797_-122.307752_161.3_110.30_ISNQ_161.3 34R_11893_47.431175_-122.308041_341.3\n"
    "KPDX PORTLAND_INTL 30 45.588839 -122.597259 10R_10970_45.595150_-122.621472_99.1_110.50_IPDX_99.1\n";
}  // namespace

TEST(NavDatabase, LoadsEveryFileInOrderWithItsOverlay) {
    SimFolder sim;
    sim.Write("orb/navdata/apts.txt", kSeattleApts);
    sim.Write("orb/navdata/apts_user.txt", "KSEA MY_SEATTLE 440 47.5 -122.3\n");
    sim.Write("orb/navdata/navs.txt",
              ";AIRAC cycle is 1310 (19-SEP-2013 to 17-OCT-2013)\n"
              "BTG BATTLEGROUND 45.747806 -122.591528 VOR 116.60\n"
              "OLM OLYMPIA 46.971639 -122.901833 VOR 113.40\n"
              "SEA SEATTLE 47.435361 -122.309611 VOR 116.80\n"
              "SEA SEA_NDB 47.4 -122.3 NDB 350\n");
    sim.Write("orb/navdata/navs_user.txt", "ZZZ MINE\t10.5\t20.5\tTACAN\t108.00\n");
    sim.Write("orb/navdata/ints.txt",
              "ALDER ALDER 46.821560 -122.414220\r\n"
              "; a comment in the middle\n"
              " ;NOTE NOTE 1 2\n"
              "\n"
              "NORMY NORMY_NAME 47.429553 -121.721225\n");
    sim.Write("orb/navdata/awys.txt",
              "J1 1 BTG 45.747811 -122.591536\n"
              "J1 2 ALDER 46.821560 -122.414220\n"
              "J1 3 SEA 47.435378 -122.309622\n");
    sim.Write("orb/navdata/awys_user.txt", "Q1 1 MYFIX 1.5 2.5\n");
    LoadNavDatabase();

    // Airports: the main file's rows first, the overlay's behind them.
    ASSERT_EQ(g_navdb.AirportTable.count, 3);
    EXPECT_EQ(Ident(NavTableId::Airports, 1), "KSEA");
    EXPECT_EQ(Ident(NavTableId::Airports, 3), "KSEA");
    NavRecord r;
    CopyRecord(g_navdb.AirportTable, 2, r);
    EXPECT_STREQ(r.Name.data(), "PORTLAND_INTL");
    EXPECT_STREQ(r.Kind.data(), "APT");
    EXPECT_STREQ(r.Elevation.data(), "30");
    EXPECT_STREQ(r.Frequency.data(), "");
    EXPECT_DOUBLE_EQ(r.Latitude, 45.588839);
    EXPECT_DOUBLE_EQ(r.Longitude, -122.597259);

    // Navaids: VOR is "V", any other type "N"; the frequency as written.
    ASSERT_EQ(g_navdb.NavaidTable.count, 5);
    CopyRecord(g_navdb.NavaidTable, 3, r);
    EXPECT_STREQ(r.Ident.data(), "SEA");
    EXPECT_STREQ(r.Kind.data(), "V");
    EXPECT_STREQ(r.Frequency.data(), "116.80");
    CopyRecord(g_navdb.NavaidTable, 4, r);
    EXPECT_STREQ(r.Kind.data(), "N");
    EXPECT_STREQ(r.Frequency.data(), "350");
    CopyRecord(g_navdb.NavaidTable, 5, r);
    EXPECT_STREQ(r.Ident.data(), "ZZZ");
    EXPECT_STREQ(r.Kind.data(), "N");
    EXPECT_DOUBLE_EQ(r.Longitude, 20.5);

    // Intersections: a comment is skipped, a blank before ';' makes a row, an empty line none.
    ASSERT_EQ(g_navdb.IntersectionTable.count, 3);
    EXPECT_EQ(Ident(NavTableId::Intersections, 1), "ALDER");
    EXPECT_EQ(Ident(NavTableId::Intersections, 2), ";NOTE");
    CopyRecord(g_navdb.IntersectionTable, 3, r);
    EXPECT_STREQ(r.Name.data(), "NORMY_NAME");
    EXPECT_STREQ(r.Kind.data(), "I");
    EXPECT_DOUBLE_EQ(r.Longitude, -121.721225);

    // Airway fixes: three-letter navaids stay out; Name is the ident.
    ASSERT_EQ(g_navdb.AirwayFixTable.count, 2);
    EXPECT_EQ(Ident(NavTableId::AirwayFixes, 1), "ALDER");
    EXPECT_EQ(Ident(NavTableId::AirwayFixes, 2), "MYFIX");
    EXPECT_EQ(std::string(NameOf(g_navdb.AirwayFixTable, 2)), "MYFIX");

    // The index starts a run at each new first letter.
    ASSERT_EQ(g_navdb.navaid_index_count, 4);
    EXPECT_EQ(g_navdb.NavaidFirstLetterIndex[2].letter, 'S');
    EXPECT_EQ(g_navdb.NavaidFirstLetterIndex[2].row, 3);

    // The cycle texts come from navs.txt.
    ReadDatabaseCycle();
    EXPECT_STREQ(g_navdb.DatabaseCycleText.data(), "AIRAC 1310");
    EXPECT_STREQ(g_navdb.DatabaseDatesText.data(), "SEP19OCT17/13");
}

TEST(NavDatabase, ShortLinesKeepTheLineBeforesColumnsExceptClearedOnes) {
    SimFolder sim;
    sim.Write("orb/navdata/ints.txt", "AAAAA NAMEA 10.5 20.5\nBBBBB\nCCCCC CNAME north 7\n");
    sim.Write("orb/navdata/navs.txt", "AAA A 1 2 VOR 112.00\nBBB B 3 4 VOR\nCCC\n");
    sim.Write("orb/navdata/awys.txt", "V1 1 LONGER 1 2\nV1 2\nV1 3 THIRD\n");
    LoadNavDatabase();
    NavRecord r;
    // A missing name and position are the line before's.
    CopyRecord(g_navdb.IntersectionTable, 2, r);
    EXPECT_STREQ(r.Name.data(), "NAMEA");
    EXPECT_DOUBLE_EQ(r.Latitude, 10.5);
    // A coordinate that isn't a number reads 0.
    CopyRecord(g_navdb.IntersectionTable, 3, r);
    EXPECT_DOUBLE_EQ(r.Latitude, 0);
    EXPECT_DOUBLE_EQ(r.Longitude, 7);
    // The frequency is cleared before each navaid line; the type is kept.
    CopyRecord(g_navdb.NavaidTable, 2, r);
    EXPECT_STREQ(r.Frequency.data(), "");
    EXPECT_STREQ(r.Kind.data(), "V");
    CopyRecord(g_navdb.NavaidTable, 3, r);
    EXPECT_STREQ(r.Name.data(), "B");
    EXPECT_DOUBLE_EQ(r.Latitude, 3);
    // An airway line without its third column is skipped; a later one keeps position columns.
    ASSERT_EQ(g_navdb.AirwayFixTable.count, 2);
    CopyRecord(g_navdb.AirwayFixTable, 2, r);
    EXPECT_STREQ(r.Ident.data(), "THIRD");
    EXPECT_DOUBLE_EQ(r.Latitude, 1);
}

TEST(NavDatabase, HostileLinesLoadWithoutHarm) {
    SimFolder sim;
    std::string hostile = std::string(5000, 'X') + " NAME 1 2\n";       // longer than the line buffer
    hostile += std::string("NUL\0BYTE NAME 3 4\n", 18);                 // a NUL inside a line
    hostile += "\xff\xfe\x80 \x01\x02 1e999 -1e999\n";                  // bytes and out-of-range numbers
    hostile += "CR1 N 5 6\rCR2 N 7 8\r\n";                               // a lone CR stays inside the line
    hostile += "LAST LAST 9 10";                                          // no line end at the end
    sim.Write("orb/navdata/ints.txt", hostile);
    LoadNavDatabase();
    ASSERT_EQ(g_navdb.IntersectionTable.count, 5);
    EXPECT_EQ(IdentOf(g_navdb.IntersectionTable, 1).size(), kBulkLineSize - 1);
    EXPECT_EQ(IdentOf(g_navdb.IntersectionTable, 2), std::string_view("NUL\0BYTE", 8));
    NavRecord r;
    CopyRecord(g_navdb.IntersectionTable, 3, r);
    EXPECT_DOUBLE_EQ(r.Latitude, 0);
    EXPECT_DOUBLE_EQ(r.Longitude, 0);
    CopyRecord(g_navdb.IntersectionTable, 4, r);
    EXPECT_STREQ(r.Ident.data(), "CR1");
    EXPECT_EQ(Ident(NavTableId::Intersections, 5), "LAST");
    // A long line's rest is dropped: it does not become a row of its own.
    EXPECT_EQ(ResolveName(2, "NAME"), 0);
}

TEST(NavDatabase, FullTablesDropFurtherRowsAndWarnOnce) {
    SimFolder sim;
    std::string apts, navs;
    for (int i = 1; i <= kAirportLimit + 5; ++i) apts += "A" + std::to_string(i) + " N 0 1 2\n";
    for (int i = 1; i <= kNavaidLimit + 5; ++i) navs += "N" + std::to_string(i) + " N 1 2 VOR 110.00\n";
    sim.Write("orb/navdata/apts.txt", apts);
    sim.Write("orb/navdata/apts_user.txt", "USER N 0 1 2\n");
    sim.Write("orb/navdata/navs.txt", navs);
    g_events.count = 0;
    LoadNavDatabase();
    EXPECT_EQ(g_navdb.AirportTable.count, kAirportLimit);
    EXPECT_EQ(Ident(NavTableId::Airports, kAirportLimit), "A" + std::to_string(kAirportLimit));
    EXPECT_EQ(ResolveName(3, "USER"), 0);  // the overlay found the table full
    EXPECT_EQ(g_navdb.NavaidTable.count, kNavaidLimit);
    // One warning a table, at the count that raised it, however many rows followed.
    ASSERT_EQ(g_events.count, 2);
    EXPECT_STREQ(g_events.texts[0].data(), ("Apts '" + std::to_string(kStructLimitWarning) + "' approaching struct_limit").c_str());
    EXPECT_STREQ(g_events.texts[1].data(), ("Navs '" + std::to_string(kStructLimitWarning) + "' approaching struct_limit").c_str());

    // Intersections, line by line, to the limit and past it.
    ResetBulkTables(0);
    BulkColumns columns;
    for (int i = 0; i < kIntersectionLimit + 3; ++i) LoadBulkLine("FIX FIX 1 2", NavTableId::Intersections, columns);
    EXPECT_EQ(g_navdb.IntersectionTable.count, kIntersectionLimit);
    for (int i = 0; i < kAirwayFixLimit + 3; ++i) LoadBulkLine("J1 1 WXYZ 1 2", NavTableId::AirwayFixes, columns);
    EXPECT_EQ(g_navdb.AirwayFixTable.count, kAirwayFixLimit);
}

TEST(NavDatabase, WarningWaitsForTheCountNearTheLimit) {
    SimFolder sim;
    g_events.count = 0;
    ResetBulkTables(0);
    BulkColumns columns;
    for (int i = 0; i < kStructLimitWarning - 1; ++i) LoadBulkLine("APT N 1 2 3", NavTableId::Airports, columns);
    EXPECT_EQ(g_events.count, 0);
    LoadBulkLine("APT N 1 2 3", NavTableId::Airports, columns);
    ASSERT_EQ(g_events.count, 1);
    EXPECT_STREQ(g_events.texts[0].data(), ("Apts '" + std::to_string(kStructLimitWarning) + "' approaching struct_limit").c_str());

    // A fresh load with the event list full: the warning finds no room.
    SimFolder::ResetState();
    ResetBulkTables(0);
    for (int i = g_events.count; i < kEventListLimit; ++i) LogEvent("earlier %d", i);
    for (int i = 0; i < kStructLimitWarning; ++i) LoadBulkLine("APT N 1 2 3", NavTableId::Airports, columns);
    EXPECT_EQ(g_events.count, kEventListLimit);
    EXPECT_STREQ(g_events.texts[kEventListLimit - 1].data(), ("earlier " + std::to_string(kEventListLimit - 1)).c_str());
}

TEST(NavDatabase, FindNavaidWalksOnlyTheFirstRunOfItsLetter) {
    SimFolder sim;
    sim.Write("orb/navdata/navs.txt",
              "ABC A 47.9 1 VOR 112.00\n"
              "SEA S 47.4 -122.3 VOR 116.80\n"
              "SEA S -0.4 -122.3 VOR 116.90\n"
              "SEA S 48.1 -122.3 NDB 350\n"
              "SEB S 10 10 VOR 117.00\n"
              "TTT T 1 1 VOR 118.00\n");
    sim.Write("orb/navdata/navs_user.txt", "SUU USER 5 5 VOR 115.00\nUUU USER 6 6 NDB 300\n");
    LoadNavDatabase();
    EXPECT_EQ(FindNavaid("SEA", "VOR", 47.9), 2);
    EXPECT_EQ(FindNavaid("SEA", "INT", 47.1), 2);   // INT finds a VOR of that name
    EXPECT_EQ(FindNavaid("SEA", "", 47.1), 2);
    EXPECT_EQ(FindNavaid("SEA", "NDB", 48.9), 4);
    EXPECT_EQ(FindNavaid("SEA", "INT", 48.5), 0);   // an NDB isn't found for INT
    EXPECT_EQ(FindNavaid("SEA", "VOR", 46.9), 0);   // another parallel
    EXPECT_EQ(FindNavaid("SEA", "VOR", 0.3), 3);    // -0.4 and 0.3 share the whole degree 0
    EXPECT_EQ(FindNavaid("SEA", "WPT", 47.4), 0);
    EXPECT_EQ(FindNavaid("SUU", "VOR", 5), 0);      // the user row stands past the S run
    EXPECT_EQ(FindNavaid("UUU", "NDB", 6), 8);      // a new letter of the overlay starts a run
    EXPECT_EQ(FindNavaid("QQQ", "VOR", 1), 0);
    EXPECT_EQ(FindNavaid("", "VOR", 1), 0);
    EXPECT_EQ(ResolveName(1, "SUU"), 1);            // the search finds what the index misses
}

TEST(NavDatabase, NavaidIndexStopsAt74Letters) {
    SimFolder sim;
    std::string navs;
    for (int i = 0; i < 80; ++i) navs += std::string(1, static_cast<char>('A' + i)) + "X N 1 2 VOR 110.00\n";
    sim.Write("orb/navdata/navs.txt", navs);
    LoadNavDatabase();
    EXPECT_EQ(g_navdb.navaid_index_count, kNavaidIndexLimit);
    std::string last_indexed(1, static_cast<char>('A' + 73)), first_missing(1, static_cast<char>('A' + 74));
    EXPECT_EQ(FindNavaid(last_indexed + "X", "VOR", 1), 74);
    EXPECT_EQ(FindNavaid(first_missing + "X", "VOR", 1), 0);
}

TEST(NavDatabase, ResolveNameListsAllTablesNearestFirst) {
    SimFolder sim;
    sim.Write("orb/navdata/navs.txt", "DUP VORFAR 10 10 VOR 112.00\nDUP NDBNEAR 1 1 NDB 300\n");
    sim.Write("orb/navdata/ints.txt", "DUP DUP 0.5 0.5\nDUP DUP 5 5\n");
    sim.Write("orb/navdata/apts.txt", "DUP AIRPORT 100 1 1\n");
    LoadNavDatabase();
    g_sim.latitude = 0;
    g_sim.longitude = 0;
    ASSERT_EQ(ResolveName(0, "DUP"), 5);
    EXPECT_DOUBLE_EQ(g_candidates.rows[1].Latitude, 0.5);
    // Equal distances keep the table order: the navaid before the airport.
    EXPECT_EQ(CandKind(2), "N");
    EXPECT_STREQ(g_candidates.rows[2].Frequency.data(), "300");
    EXPECT_EQ(CandKind(3), "APT");
    EXPECT_STREQ(g_candidates.rows[3].Elevation.data(), "100");
    EXPECT_EQ(CandKind(4), "I");
    EXPECT_EQ(CandKind(5), "V");
    // Filters.
    EXPECT_EQ(ResolveName(1, "DUP"), 2);
    EXPECT_EQ(ResolveName(2, "DUP"), 2);
    EXPECT_EQ(ResolveName(3, "DUP"), 1);
    // Exact equality only.
    EXPECT_EQ(ResolveName(0, "DU"), 0);
    EXPECT_EQ(ResolveName(0, "dup"), 0);
    // Seen from elsewhere the order changes.
    g_sim.latitude = 10;
    g_sim.longitude = 10;
    ResolveName(0, "DUP");
    EXPECT_EQ(CandKind(1), "V");
}

TEST(NavDatabase, ResolveNameStopsAt250) {
    SimFolder sim;
    std::string ints;
    for (int i = 0; i < 300; ++i) ints += "MANY MANY " + std::to_string(i % 80) + " 0\n";
    sim.Write("orb/navdata/ints.txt", ints);
    LoadNavDatabase();
    EXPECT_EQ(ResolveName(0, "MANY"), kCandidateLimit);
    // The 251st hit (latitude 10 of the fourth round) is not listed; the sort still orders the rest.
    for (int i = 2; i <= kCandidateLimit; ++i) ASSERT_LE(g_candidates.rows[i - 1].Latitude, g_candidates.rows[i].Latitude);
    EXPECT_DOUBLE_EQ(g_candidates.rows[kCandidateLimit].Latitude, 79);
    int at_nine = 0, at_ten = 0;
    for (int i = 1; i <= kCandidateLimit; ++i) {
        at_nine += g_candidates.rows[i].Latitude == 9;
        at_ten += g_candidates.rows[i].Latitude == 10;
    }
    EXPECT_EQ(at_nine, 4);
    EXPECT_EQ(at_ten, 3);
}

TEST(NavDatabase, ShortOceanicForms) {
    SimFolder sim;
    sim.Write("orb/navdata/ints.txt", "5040N REAL 1 2\n");
    LoadNavDatabase();
    struct Case {
        const char* entry;
        double lat, lon;
    } cases[] = {{"5030N", 50, -30}, {"5030E", 50, 30},  {"5030S", -50, 30},  {"5030W", -50, -30},
                 {"50N30", 50, -130}, {"50E30", 50, 130}, {"50S30", -50, 130}, {"50W30", -50, -130}};
    for (const Case& c : cases) {
        ASSERT_EQ(ResolveName(0, c.entry), 1) << c.entry;
        EXPECT_EQ(CandKind(1), "O") << c.entry;
        EXPECT_EQ(Cand(1), c.entry);
        EXPECT_DOUBLE_EQ(g_candidates.rows[1].Latitude, c.lat) << c.entry;
        EXPECT_DOUBLE_EQ(g_candidates.rows[1].Longitude, c.lon) << c.entry;
    }
    // A name in the tables wins; other five-character texts are no position.
    ASSERT_EQ(ResolveName(0, "5040N"), 1);
    EXPECT_EQ(CandKind(1), "I");
    EXPECT_EQ(ResolveName(0, "5030X"), 0);
    EXPECT_EQ(ResolveName(0, "50300"), 0);
    EXPECT_EQ(ResolveName(0, "5A30N"), 0);
    EXPECT_EQ(ResolveName(0, "5030NN"), 0);
}

TEST(NavDatabase, ProximitySubsetsByRadiusLimitAndCentre) {
    SimFolder sim;
    std::string apts, awys;
    // One airport every 0.5 degree of latitude along the meridian: 30 nm apart.
    for (int i = 0; i < 60; ++i) apts += "A" + std::to_string(i) + " N 0 " + std::to_string(i * 0.5 + 0.01) + " 0\n";
    for (int i = 0; i < 3500; ++i) awys += "J1 1 F" + std::to_string(i) + " 0.001 0\n";
    sim.Write("orb/navdata/apts.txt", apts);
    sim.Write("orb/navdata/awys.txt", awys);
    LoadNavDatabase();
    BuildProximitySubset(SubsetId::AirportsNear600, 0, 0);
    EXPECT_EQ(g_nearby.AirportsNear600.count, 20);  // within 600 nm
    BuildProximitySubset(SubsetId::AirportsNear180, 0, 0);
    EXPECT_EQ(g_nearby.AirportsNear180.count, 6);   // within 180 nm
    EXPECT_STREQ(g_nearby.AirportsNear180.rows[6].Ident.data(), "A5");
    BuildProximitySubset(SubsetId::FixesNear600, 0, 0);
    EXPECT_EQ(g_nearby.FixesNear600.count, 3000);   // the subset's limit
    EXPECT_STREQ(g_nearby.FixesNear600.rows[1].Kind.data(), "I");
    // The 200 nm fixes measure from the aircraft, not from the centre given.
    g_sim.latitude = 20;
    BuildProximitySubset(SubsetId::FixesNear200, 0, 0);
    EXPECT_EQ(g_nearby.FixesNear200.count, 0);
    EXPECT_DOUBLE_EQ(g_nearby.FixesNear200.centre_latitude, 0);
    // Rebuild rules: 100 nm moved rebuilds the inner subsets only.
    g_sim.latitude = 0;
    UpdateProximitySubsets(0, 0);
    int outer_before = g_nearby.AirportsNear600.count;
    UpdateProximitySubsets(100.0 / 60.0, 0);
    EXPECT_DOUBLE_EQ(g_nearby.AirportsNear600.centre_latitude, 0);
    EXPECT_EQ(g_nearby.AirportsNear600.count, outer_before);
    EXPECT_DOUBLE_EQ(g_nearby.AirportsNear180.centre_latitude, 100.0 / 60.0);
    UpdateProximitySubsets(5, 0);  // 300 nm from the first centre: a jump, built at once
    EXPECT_DOUBLE_EQ(g_nearby.AirportsNear600.centre_latitude, 5);
    EXPECT_EQ(g_nearby.AirportsNear600.count, 30);
    // Flying on, the next subset is built ahead in slices from 150 nm on and
    // takes over past 200 nm with exactly what a build at its centre gives.
    for (double lat = 5.1; lat < 5 + 160.0 / 60.0; lat += 0.1) UpdateProximitySubsets(lat, 0);
    EXPECT_DOUBLE_EQ(g_nearby.AirportsNear600.centre_latitude, 5);
    double ahead = 5 + 160.0 / 60.0;
    for (int frame = 0; frame < 3; ++frame) UpdateProximitySubsets(ahead, 0);
    UpdateProximitySubsets(5 + 201.0 / 60.0, 0);
    EXPECT_NEAR(g_nearby.AirportsNear600.centre_latitude, 5 + 151.0 / 60.0, 0.11);
    auto taken_over = g_nearby.AirportsNear600;
    BuildProximitySubset(SubsetId::AirportsNear600, taken_over.centre_latitude, 0);
    ASSERT_EQ(g_nearby.AirportsNear600.count, taken_over.count);
    for (int row = 1; row <= taken_over.count; ++row)
        EXPECT_STREQ(g_nearby.AirportsNear600.rows[row].Ident.data(), taken_over.rows[row].Ident.data());
}

// The inner subsets skip rows by their latitude before measuring: that must
// never drop a row the distance keeps, least of all on the meridian, where
// the latitude difference is the whole distance, and the 200 nm fixes must
// test the aircraft's latitude, not the centre's.
TEST(NavDatabase, InnerSubsetsKeepEveryRowWithinTheirRadius) {
    SimFolder sim;
    constexpr double kLat = 40, kLon = 10;            // outer centre
    constexpr double kAircraftLat = 41;               // 60 nm north of it
    std::string apts, awys;
    char line[128];
    int n = 0;
    auto add = [&](std::string& text, bool airway, double lat, double lon) {
        if (airway)
            std::snprintf(line, sizeof line, "J1 %d FIX%d %.12f %.12f\n", n + 1, n, lat, lon);
        else
            std::snprintf(line, sizeof line, "A%d N 0 %.12f %.12f\n", n, lat, lon);
        text += line;
        ++n;
    };
    // Rings just inside, on and just outside the inner radius, every 15 degrees.
    for (double offset : {-1e-3, 0.0, 1e-3})
        for (int bearing = 0; bearing < 360; bearing += 15) {
            double lat = 0, lon = 0;
            ProjectPoint(kLat, kLon, bearing, 180 + offset, lat, lon);
            add(apts, false, lat, lon);
            ProjectPoint(kAircraftLat, kLon, bearing, 200 + offset, lat, lon);
            add(awys, true, lat, lon);
        }
    sim.Write("orb/navdata/apts.txt", apts);
    sim.Write("orb/navdata/awys.txt", awys);
    LoadNavDatabase();
    g_sim.latitude = kAircraftLat;
    g_sim.longitude = kLon;
    BuildProximitySubset(SubsetId::AirportsNear600, kLat, kLon);
    BuildProximitySubset(SubsetId::AirportsNear180, kLat, kLon);
    BuildProximitySubset(SubsetId::FixesNear600, kLat, kLon);
    BuildProximitySubset(SubsetId::FixesNear200, kLat, kLon);
    ASSERT_EQ(g_nearby.AirportsNear600.count, 72);
    ASSERT_EQ(g_nearby.FixesNear600.count, 72);

    // What measuring every row of the outer subset gives, in its order.
    auto expect_same = [](const auto& inner, const auto& outer, double from_lat, double from_lon, double radius) {
        int kept = 0;
        for (int row = 1; row <= outer.count; ++row) {
            double distance = 0, bearing = 0;
            GreatCircle(from_lat, from_lon, outer.rows[row].Latitude, outer.rows[row].Longitude, distance, bearing);
            if (!(distance <= radius)) continue;
            ++kept;
            ASSERT_LE(kept, inner.count);
            EXPECT_STREQ(inner.rows[kept].Ident.data(), outer.rows[row].Ident.data());
        }
        EXPECT_EQ(inner.count, kept);
        EXPECT_GE(kept, 24);  // at least the inside ring
    };
    expect_same(g_nearby.AirportsNear180, g_nearby.AirportsNear600, kLat, kLon, 180);
    expect_same(g_nearby.FixesNear200, g_nearby.FixesNear600, kAircraftLat, kLon, 200);
    // Due north and south, just inside: on the map; just outside: not.
    auto has = [](const auto& subset, const char* ident) {
        for (int row = 1; row <= subset.count; ++row)
            if (std::strcmp(subset.rows[row].Ident.data(), ident) == 0) return true;
        return false;
    };
    EXPECT_TRUE(has(g_nearby.AirportsNear180, "A0"));    // 179.999 nm at 0 degrees
    EXPECT_TRUE(has(g_nearby.AirportsNear180, "A24"));   // 179.999 nm at 180 degrees
    EXPECT_FALSE(has(g_nearby.AirportsNear180, "A96"));  // 180.001 nm at 0 degrees
    EXPECT_TRUE(has(g_nearby.FixesNear200, "FIX1"));
    EXPECT_TRUE(has(g_nearby.FixesNear200, "FIX25"));
    EXPECT_FALSE(has(g_nearby.FixesNear200, "FIX97"));
}

TEST(NavDatabase, FormatLatLonTruncatesEachPart) {
    char lat[16], lon[16];
    FormatLatLon(47.5083, 122.31232, lat, sizeof lat, lon, sizeof lon, 1);
    EXPECT_STREQ(lat, "N47:30:29");
    EXPECT_STREQ(lon, "W122:18:44");
    FormatLatLon(-5.25, -8.5, lat, sizeof lat, lon, sizeof lon, 1);
    EXPECT_STREQ(lat, "S05:15:00");
    EXPECT_STREQ(lon, "E08:30:00");
    FormatLatLon(0, 0, lat, sizeof lat, lon, sizeof lon, 1);
    EXPECT_STREQ(lat, "N00:00:00");
    EXPECT_STREQ(lon, "W00:00:00");
    FormatLatLon(1.0, 0, lat, sizeof lat, lon, sizeof lon, 0);  // radians
    EXPECT_STREQ(lat, "N57:17:44");
    char tiny[4];
    FormatLatLon(47.5, 122.3, tiny, sizeof tiny, lon, sizeof lon, 1);
    EXPECT_STREQ(tiny, "N47");
}

TEST(NavDatabase, CycleFromTheAiracLineOnly) {
    SimFolder sim;
    sim.Write("orb/navdata/navs.txt", "AAA A 1 2 VOR 110.00\n;AIRACX a b 9999 (01-JAN-2000 to 02-FEB-2000)\n"
                                      ";AIRAC cycle is 0613 (21-DEC-2006 to 18-JAN-2007)\n");
    ReadDatabaseCycle();
    EXPECT_STREQ(g_navdb.DatabaseCycleText.data(), "AIRAC 0613");
    EXPECT_STREQ(g_navdb.DatabaseDatesText.data(), "DEC21JAN18/07");
    // Short date columns give short texts, never a read past them.
    sim.Write("orb/navdata/navs.txt", ";AIRAC x y 1 (2\n");
    ReadDatabaseCycle();
    EXPECT_STREQ(g_navdb.DatabaseCycleText.data(), "AIRAC 1");
    EXPECT_STREQ(g_navdb.DatabaseDatesText.data(), "2/");
}

TEST(NavDatabase, NoFilesLeaveEmptyTables) {
    SimFolder sim;
    LoadNavDatabase();
    EXPECT_EQ(g_navdb.AirportTable.count, 0);
    EXPECT_EQ(g_navdb.NavaidTable.count, 0);
    EXPECT_EQ(g_navdb.navaid_index_count, 0);
    EXPECT_EQ(ResolveName(0, "KSEA"), 0);
    ReadDatabaseCycle();
    EXPECT_STREQ(g_navdb.DatabaseCycleText.data(), "");
}

TEST(AirportDetail, LoadsTheMainFilesLineWithItsRunways) {
    SimFolder sim;
    std::string many = "kmany many 10 1 2";
    for (int i = 1; i <= 21; ++i) many += " R" + std::to_string(i) + "_1000_1_2_90";
    sim.Write("orb/navdata/apts.txt", std::string(kSeattleApts) + many + "\nSHORT S 5\n");
    sim.Write("orb/navdata/apts_user.txt", "KSEA USER 999 1 1\nKUSR USER_ONLY 12.7 3 4 09_3000_3_4_87.5\n");
    LoadAirportDetail("KSEA", 1);
    const AirportDetail& o = g_airports.OriginAirport;
    EXPECT_STREQ(o.Ident.data(), "KSEA");
    EXPECT_STREQ(o.Name.data(), "SEATTLE_TACOMA_INTL");
    EXPECT_EQ(o.ElevationFt, 433);
    EXPECT_STREQ(o.LatitudeText.data(), "N47:27:00");
    ASSERT_EQ(o.RunwayCount, 2);
    const RunwayRecord& r1 = o.Runways[1];
    EXPECT_STREQ(r1.Ident.data(), "16L");
    EXPECT_EQ(r1.LengthFt, 11893);
    EXPECT_DOUBLE_EQ(r1.Latitude, 47.463797);
    EXPECT_DOUBLE_EQ(r1.Heading, 161.3);
    EXPECT_DOUBLE_EQ(r1.ReciprocalHeading, 341.3);
    EXPECT_STREQ(r1.IlsFrequency.data(), "110.30");
    EXPECT_STREQ(r1.IlsIdent.data(), "ISNQ");
    EXPECT_DOUBLE_EQ(r1.IlsCourse, 161.3);
    // Five fields: no localizer, course 0 in the detail slot.
    EXPECT_STREQ(o.Runways[2].IlsIdent.data(), "");
    EXPECT_DOUBLE_EQ(o.Runways[2].IlsCourse, 0);
    EXPECT_NEAR(o.Runways[2].ReciprocalHeading, 161.3, 1e-9);
    // The origin's elevation goes to row 0; the airport is candidate 1, selected.
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[0].Altitude, 433);
    EXPECT_STREQ(g_candidates.rows[1].Ident.data(), "KSEA");
    EXPECT_STREQ(g_candidates.rows[1].Kind.data(), "APT");
    EXPECT_EQ(g_candidates.selected, 1);

    // A lower-case line is capitalised before it is compared; 20 runway columns at most.
    LoadAirportDetail("KMANY", 2);
    EXPECT_EQ(g_airports.DestinationAirport.RunwayCount, 20);
    EXPECT_STREQ(g_airports.DestinationAirport.Runways[20].Ident.data(), "R20");
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[0].Altitude, 433);  // only the origin sets row 0
    // The user file serves an airport the main file lacks; elevation is cut to a whole number.
    LoadAirportDetail("KUSR", 2);
    EXPECT_EQ(g_airports.DestinationAirport.ElevationFt, 12);
    EXPECT_EQ(g_airports.DestinationAirport.RunwayCount, 1);
    // An unknown or empty ident keeps the old data but no runways.
    LoadAirportDetail("NONE", 2);
    EXPECT_STREQ(g_airports.DestinationAirport.Ident.data(), "KUSR");
    EXPECT_EQ(g_airports.DestinationAirport.RunwayCount, 0);
    LoadAirportDetail("", 1);
    EXPECT_EQ(g_airports.OriginAirport.RunwayCount, 0);
    // A line shorter than its position: zeros, no harm.
    LoadAirportDetail("SHORT", 1);
    EXPECT_EQ(g_airports.OriginAirport.ElevationFt, 5);
    EXPECT_DOUBLE_EQ(g_airports.OriginAirport.Latitude, 0);
}

TEST(AirportDetail, SetAirportModes) {
    SimFolder sim;
    sim.Write("orb/navdata/apts.txt", std::string(kSeattleApts) + "KSHO SHORT 12\n");
    PlanContext& pc = g_plan.context;
    // Mode 0: the info airport, a zero localizer course becomes the heading.
    SetAirport("KSEA", 0);
    const InfoAirportState& info = g_airports.InfoAirport;
    ASSERT_EQ(info.RunwayCount, 2);
    EXPECT_STREQ(info.Ident.data(), "KSEA");
    EXPECT_STREQ(info.ElevationText.data(), "433");
    EXPECT_DOUBLE_EQ(info.Runways[2].IlsCourse, 341.3);
    EXPECT_EQ(info.runway_page_redraw, 1);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[0].Altitude, 433);

    // Mode 1: destination texts and the last row, when it is this airport.
    pc.ActiveLastRow = 2;
    SetText(g_plan.ActivePlan[2].Ident, "KPDX");
    SetText(g_plan.ActivePlan[2].WaypointType, "APT");
    g_plan.ActivePlan[2].Speed = 250;
    g_plan.ActivePlan[2].Restricted = 1;
    SetAirport("KPDX", 1);
    EXPECT_STREQ(pc.DestinationIdent.data(), "KPDX");
    EXPECT_STREQ(pc.DestinationElevation.data(), "30");
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[2].Altitude, 30);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[2].Speed, -999);
    EXPECT_EQ(g_plan.ActivePlan[2].Restricted, 0);
    EXPECT_STREQ(info.Ident.data(), "KPDX");

    // Mode 2: no runways are read, the descent target takes the elevation.
    SetAirport("KSEA", 2);
    EXPECT_STREQ(info.Ident.data(), "KPDX");
    EXPECT_DOUBLE_EQ(g_vnav.TargetAltitude, 433);
    EXPECT_STREQ(pc.DestinationIdent.data(), "KSEA");

    // Mode 3 and 5: row 0 of the active or modified plan.
    SetAirport("KSEA", 3);
    EXPECT_STREQ(g_plan.ActivePlan[0].Ident.data(), "KSEA");
    EXPECT_STREQ(g_plan.ActivePlan[0].WaypointType.data(), "APT");
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[0].Latitude, 47.450188);
    SetAirport("KPDX", 5);
    EXPECT_STREQ(g_plan.ModPlan[0].Ident.data(), "KPDX");

    // Mode 4 and 6: a row appended.
    SetAirport("KPDX", 4);
    ASSERT_EQ(pc.ActiveLastRow, 3);
    EXPECT_STREQ(g_plan.ActivePlan[3].Ident.data(), "KPDX");
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[3].Altitude, 30);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[3].InboundCourse, -1);
    EXPECT_EQ(pc.NextRestrictionRow, 3);
    EXPECT_DOUBLE_EQ(g_vnav.TargetLatitude, 45.588839);
    pc.ModLastRow = 0;
    SetAirport("KSEA", 6);
    ASSERT_EQ(pc.ModLastRow, 1);
    EXPECT_STREQ(g_plan.ModPlan[1].WaypointType.data(), "APT");

    // A short line is taken as mode 0: nothing appended.
    SetAirport("KSHO", 4);
    EXPECT_EQ(pc.ActiveLastRow, 3);
    EXPECT_STREQ(info.Ident.data(), "KSHO");
    EXPECT_EQ(info.RunwayCount, 0);
    // Unknown airports change nothing.
    SetAirport("NONE", 3);
    EXPECT_STREQ(g_plan.ActivePlan[0].Ident.data(), "KSEA");
}

// A fix on several airways is a row of the airway fix table for each; the
// map's subset takes it once. A fix of the same ident elsewhere is another fix.
TEST(NavDatabase, InnerFixSubsetTakesAFixOnManyAirwaysOnce) {
    SimFolder sim;
    sim.Write("orb/navdata/awys.txt",
              "J1 1 ALDER 46.821560 -122.414220\n"
              "J1 2 NORMY 47.429553 -121.721225\n"
              "J189 1 ALDER 46.821560 -122.414220\n"
              "V204 5 ALDER 46.821560 -122.414220\n"
              "V495 3 ALDER 46.821561 -122.414220\n"   // a rounding apart: not the same place
              "V120 7 NORMY 47.429553 -121.721225\n"
              "V9 1 ALDER 10.000000 10.000000\n");     // the far namesake, out of range
    LoadNavDatabase();
    g_sim.latitude = 47.0;
    g_sim.longitude = -122.0;
    BuildProximitySubset(SubsetId::FixesNear600, 47.0, -122.0);
    ASSERT_EQ(g_nearby.FixesNear600.count, 6);
    BuildProximitySubset(SubsetId::FixesNear200, 47.0, -122.0);
    ASSERT_EQ(g_nearby.FixesNear200.count, 3);
    EXPECT_STREQ(g_nearby.FixesNear200.rows[1].Ident.data(), "ALDER");
    EXPECT_STREQ(g_nearby.FixesNear200.rows[2].Ident.data(), "NORMY");
    EXPECT_STREQ(g_nearby.FixesNear200.rows[3].Ident.data(), "ALDER");
    EXPECT_DOUBLE_EQ(g_nearby.FixesNear200.rows[3].Latitude, 46.821561);
    // A rebuild starts from nothing: the same fixes come back, no fewer.
    BuildProximitySubset(SubsetId::FixesNear200, 47.0, -122.0);
    EXPECT_EQ(g_nearby.FixesNear200.count, 3);
}
