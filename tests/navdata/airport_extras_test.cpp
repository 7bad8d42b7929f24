// airport_extras_test.cpp: right-hand circuits read from their airport's
// section (and from no other), the parking position, runway lengths from
// orb_apts.txt, and the boundary table's reading rules.
#include "navdata/sim_folder.h"

#include "frame/data_text.h"
#include "navdata/airport_extras.h"
#include "navdata/atc_boundaries.h"

#include <string>

namespace {
// KSEA with runways 16R, 09L, 9R and 34L; BFI beside it; a three-letter ident.
const char* kApts =
    "KSEA Seattle 433 47.449 -122.309 16R_11901_47.46_-122.31_163.0 09L_8000_47.45_-122.32_90.0 "
    "9R_8000_47.44_-122.32_90.0 34L_11901_47.43_-122.31_343.0\n"
    "KBFI Boeing_Field 21 47.53 -122.30 14R_10000_47.54_-122.31_134.0 32L_10000_47.52_-122.29_314.0\n"
    "S50 Auburn 63 47.33 -122.22 16_3400_47.33_-122.22_163.0\n";

int RightPatternOf(const char* runway) {
    const InfoAirportState& info = g_airports.InfoAirport;
    for (int i = 1; i <= info.RunwayCount; ++i)
        if (std::string(info.Runways[i].Ident.data()) == runway) return info.Runways[i].RightPattern;
    ADD_FAILURE() << "runway " << runway << " not loaded";
    return -1;
}

void ResetExtras() {
    g_airport_extras = AirportExtrasState{};
    g_atc_boundaries = AtcBoundaryTable{};
}
}  // namespace

TEST(AirportExtras, RightPatternsComeFromTheAirportsOwnSectionOnly) {
    SimFolder sim;
    ResetExtras();
    sim.Write("orb/navdata/apts.txt", kApts);
    // Lower case in the file still matches (the reader upper-cases); 9L serves
    // 09L; the KBFI section's 34L must not reach KSEA, nor what follows "]".
    sim.Write("orb/navdata/apt_additional_info.txt",
              "[KBFI]\nRWY34L=RIGHTPATTERN\n\n"
              "[ksea] tower data\nrwy16r=rightpattern\nRWY9L=RIGHTPATTERN\nRWY9R=LEFTPATTERN\n"
              "]\nRWY34L=RIGHTPATTERN\n");
    SetAirport("KSEA", 0);
    ASSERT_EQ(g_airports.InfoAirport.RunwayCount, 4);
    EXPECT_EQ(RightPatternOf("16R"), 1);
    EXPECT_EQ(RightPatternOf("09L"), 1);
    EXPECT_EQ(RightPatternOf("9R"), 0) << "only RIGHTPATTERN marks a runway";
    EXPECT_EQ(RightPatternOf("34L"), 0) << "a line after the section's end was read";

    // The next header ends a section as well as an empty line does.
    sim.Write("orb/navdata/apt_additional_info.txt",
              "[KSEA]\nRWY16R=RIGHTPATTERN\n[KBFI]\nRWY34L=RIGHTPATTERN\n");
    SetAirport("KSEA", 0);
    EXPECT_EQ(RightPatternOf("16R"), 1);
    EXPECT_EQ(RightPatternOf("34L"), 0) << "the next airport's header was read as part of the section";
    // A second SetAirport starts every runway from 0 again.
    sim.Write("orb/navdata/apt_additional_info.txt", "[KSEA]\nRWY34L=RIGHTPATTERN\n");
    SetAirport("KSEA", 0);
    EXPECT_EQ(RightPatternOf("16R"), 0);
    EXPECT_EQ(RightPatternOf("34L"), 1);

    // A three-letter ident can't fill a six-character header.
    sim.Write("orb/navdata/apt_additional_info.txt", "[S50]\nRWY16=RIGHTPATTERN\n");
    SetAirport("S50", 0);
    EXPECT_EQ(RightPatternOf("16"), 0);
}

TEST(AirportExtras, ParkingPositionIsTheFirstLineOfTheIdent) {
    SimFolder sim;
    ResetExtras();
    sim.Write("orb/navdata/apts.txt", kApts);
    sim.Write("orb/Aircraft/gates.txt",
              "KBFI 47.5 -122.3 10\nKSEA 47.4431 -122.3013 360\nKSEA 1 2 3\n");
    const ParkingPositionRecord& p = g_airport_extras.ParkingPosition;

    // No parking file named: nothing known.
    SetAirport("KSEA", 0);
    EXPECT_EQ(p.Latitude, 0);

    SetText(g_config.ParkingFile, "gates.txt");
    SetAirport("KSEA", 0);
    EXPECT_DOUBLE_EQ(p.Latitude, 47.4431);
    EXPECT_DOUBLE_EQ(p.Longitude, -122.3013);
    EXPECT_EQ(p.Heading, 0) << "a heading of 360 is kept as 0";

    // Mode 2 doesn't look; another airport replaces; an airport without a line clears.
    SetAirport("KBFI", 2);
    EXPECT_DOUBLE_EQ(p.Latitude, 47.4431);
    SetAirport("KBFI", 0);
    EXPECT_DOUBLE_EQ(p.Heading, 10);
    SetAirport("S50", 0);
    EXPECT_EQ(p.Latitude, 0);
    EXPECT_EQ(p.Longitude, 0);

    // Numbers that aren't numbers read 0; a short line leaves the rest at 0.
    sim.Write("orb/Aircraft/gates.txt", "KSEA north -122.5\n");
    SetAirport("KSEA", 0);
    EXPECT_EQ(p.Latitude, 0);
    EXPECT_DOUBLE_EQ(p.Longitude, -122.5);
    EXPECT_EQ(p.Heading, 0);
}

TEST(AirportExtras, RunwayLengthsFromEveryLineOfTheAirport) {
    SimFolder sim;
    ResetExtras();
    // No file: nothing to say.
    EXPECT_EQ(FindRunwayLength("KSEA", "16L").outcome, RunwayLengthOutcome::NoFile);

    sim.Write("orb/navdata/orb_apts.txt",
              "KBFI a b c d 16L_999\n"
              "KSEA 1 2 3 4 16L_11901_extra 16C_9426\n"
              "KSEAX 1 2 3 4 34R_1\n"
              "KSEA 1 2 3 4 34R_8500 _5_120_x\n"
              "KSEA 16L_77\n");  // runways before the sixth column aren't runways
    RunwayLengthResult r = FindRunwayLength("KSEA", "16L");
    EXPECT_EQ(r.outcome, RunwayLengthOutcome::Found);
    EXPECT_STREQ(r.RunwayNameText.data(), "16L");
    EXPECT_STREQ(r.RunwayLengthText.data(), "11901") << "what follows a second '_' is ignored";
    r = FindRunwayLength("KSEA", "34R");
    EXPECT_EQ(r.outcome, RunwayLengthOutcome::Found) << "a later line of the airport is looked at too";
    EXPECT_STREQ(r.RunwayLengthText.data(), "8500");
    r = FindRunwayLength("KSEA", "_5");
    EXPECT_EQ(r.outcome, RunwayLengthOutcome::Found) << "a leading '_' belongs to the name";
    EXPECT_STREQ(r.RunwayLengthText.data(), "120");
    EXPECT_EQ(FindRunwayLength("KSEA", "16").outcome, RunwayLengthOutcome::NotFound);
    EXPECT_EQ(FindRunwayLength("KSE", "16L").outcome, RunwayLengthOutcome::NotFound);

    // An empty file is a file without the runway.
    sim.Write("orb/navdata/orb_apts.txt", "");
    EXPECT_EQ(FindRunwayLength("KSEA", "16L").outcome, RunwayLengthOutcome::NotFound);
}

TEST(AirportExtras, SectionEnds) {
    EXPECT_TRUE(EndsAirportSection(""));
    EXPECT_TRUE(EndsAirportSection("   \t"));
    EXPECT_TRUE(EndsAirportSection("]"));
    EXPECT_TRUE(EndsAirportSection("[KBFI]"));
    EXPECT_TRUE(EndsAirportSection("  [KBFI]"));
    EXPECT_FALSE(EndsAirportSection("TowerViewLat=47.5"));
    EXPECT_FALSE(EndsAirportSection("RWY16R=RIGHTPATTERN [note]"));
}

TEST(AtcBoundaries, CommentsSplitABoundaryAndNamesStandInTheMiddle) {
    SimFolder sim;
    ResetExtras();
    // A missing file leaves an empty table, read.
    LoadAtcBoundaries();
    EXPECT_EQ(g_atc_boundaries.AtcBoundariesLoaded, 1);
    EXPECT_EQ(g_atc_boundaries.count, 0);

    sim.Write("orb/navdata/atc_bdry.txt",
              "; sample\n"
              "KZSE SEATTLE 46 -124\n"
              "KZSE IGNORED 48 -120\n"
              "KZSE X 47 -122\n"
              "; split here\n"
              "KZSE SEATTLE2 49 -121\n"
              "KZSE SEATTLE2 50 -119\n"
              "NZ01 PACIFIC -40 179\n"
              "NZ01 PACIFIC -42 -179\n"
              "SOLO ONE 10 20\n"
              "\n"
              "SOLO TWO 11 21\n");
    g_atc_boundaries = AtcBoundaryTable{};
    LoadAtcBoundaries();
    const AtcBoundaryTable& t = g_atc_boundaries;
    ASSERT_EQ(t.count, 4);
    EXPECT_STREQ(t.rows[1].Id.data(), "KZSE");
    EXPECT_STREQ(t.rows[1].Name.data(), "SEATTLE") << "the first line's name is kept";
    EXPECT_EQ(t.rows[1].PointCount, 3);
    EXPECT_DOUBLE_EQ(t.rows[1].Centre.Latitude, 47);   // 48 - (48 - 46) / 2
    EXPECT_DOUBLE_EQ(t.rows[1].Centre.Longitude, -122);  // -120 - (-120 + 124) / 2
    EXPECT_DOUBLE_EQ(t.rows[1].Points[3].Longitude, -122);
    // The comment ended the first row; the same Id opens a second.
    EXPECT_STREQ(t.rows[2].Id.data(), "KZSE");
    EXPECT_STREQ(t.rows[2].Name.data(), "SEATTLE2");
    EXPECT_EQ(t.rows[2].PointCount, 2);
    EXPECT_DOUBLE_EQ(t.rows[2].Centre.Latitude, 49.5);
    // Points on both sides of 180: the name goes to -179.9.
    EXPECT_EQ(t.rows[3].Centre.Longitude, -179.9);
    EXPECT_DOUBLE_EQ(t.rows[3].Centre.Latitude, -41);
    // A blank line carries no Id: it doesn't split a boundary.
    EXPECT_EQ(t.rows[4].PointCount, 2);
    EXPECT_DOUBLE_EQ(t.rows[4].Centre.Latitude, 10.5);
    EXPECT_DOUBLE_EQ(t.rows[4].Centre.Longitude, 20.5);
}

TEST(AtcBoundaries, TheTableSizeIsTheLimit) {
    SimFolder sim;
    ResetExtras();
    std::string text;
    for (int p = 0; p < kAtcBoundaryPoints + 5; ++p) text += "LONG L 1 " + std::to_string(p * 0.01) + "\n";
    for (int r = 0; r < kAtcBoundaryRows + 10; ++r) text += "R" + std::to_string(r) + " N 2 3\n";
    sim.Write("orb/navdata/atc_bdry.txt", text);
    LoadAtcBoundaries();
    const AtcBoundaryTable& t = g_atc_boundaries;
    EXPECT_EQ(t.count, kAtcBoundaryRows);
    EXPECT_EQ(t.rows[1].PointCount, kAtcBoundaryPoints);
    // The centre comes from the points kept: 0 .. 7.99 degrees.
    EXPECT_NEAR(t.rows[1].Centre.Longitude, (kAtcBoundaryPoints - 1) * 0.01 / 2, 1e-9);
    EXPECT_STREQ(t.rows[kAtcBoundaryRows].Id.data(), ("R" + std::to_string(kAtcBoundaryRows - 2)).c_str());
}

TEST(AtcBoundaries, ReachByTheFirstPointWithThreeWideAreas) {
    AtcBoundary row;
    SetText(row.Id, "KZSE");
    EXPECT_TRUE(AtcBoundaryInReach(row, 1000));
    EXPECT_FALSE(AtcBoundaryInReach(row, 1000.5));
    for (const char* wide : {"YM00142", "YB00001", "NZ00084"}) {
        SetText(row.Id, wide);
        EXPECT_TRUE(AtcBoundaryInReach(row, 4000)) << wide;
        EXPECT_TRUE(AtcBoundaryInReach(row, 4999.9)) << wide;
        EXPECT_FALSE(AtcBoundaryInReach(row, 5000)) << wide;
        EXPECT_FALSE(AtcBoundaryInReach(row, 6000)) << wide;
    }
}
