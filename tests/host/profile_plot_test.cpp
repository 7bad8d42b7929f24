// profile_plot_test.cpp: the vertical profile: the module's predictions file
// is read or refused with its line, flown points are placed along the route
// going forward only, and restricted rows are measured against the flight,
// down to the script command and its values.
#include "orbsim/host_state.h"
#include "orbsim/profile_plot.h"
#include "orbsim/script.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using namespace orbsim;

namespace {
std::string WriteTemp(const std::string& text) {
    char name[] = "/tmp/orb-profile-XXXXXX";
    int fd = mkstemp(name);
    close(fd);
    std::ofstream(name) << text;
    return name;
}

// Along the equator a degree is 60 nm each way, so the miles below are exact
// in the flat view a leg is measured in.
const char kPlan[] =
    "; predictions of a test plan\r\n"
    "CRZ 25000\n"
    "TC 0 0.8 48\n"
    "TD 0.2 1.0 72\n"
    "ROW 0 ORIG 0 0 0 0 -999 0\n"
    "ROW 1 AAA 0 0.5 30 10000 250 1\n"
    "ROW 2 BBB 0 1.0 65 20000 280 3\n"       // 65 by the file: a leg longer than its chord
    "ROW 3 CCC 0.5 1.0 95 -999 -999 0\n"
    "ROW 4 DDD 1.0 1.0 125 5000 220 1\n"
    "ROW 5 DEST 1.0 1.5 155 -999 180 2\n";
}  // namespace

TEST(ProfilePlot, ReadsThePredictionsAndNamesABadLine) {
    std::string path = WriteTemp(kPlan);
    VerticalProfile profile;
    std::string error;
    ASSERT_TRUE(ReadVerticalProfile(path, profile, error)) << error;
    EXPECT_EQ(profile.cruise_ft, 25000);
    ASSERT_TRUE(profile.top_of_climb.set);
    EXPECT_EQ(profile.top_of_climb.along_nm, 48);
    EXPECT_EQ(profile.top_of_descent.lat, 0.2);
    ASSERT_EQ(profile.rows.size(), 6u);
    EXPECT_EQ(profile.rows[2].ident, "BBB");
    EXPECT_EQ(profile.rows[2].restricted, 3);
    EXPECT_EQ(profile.rows[3].altitude, kProfileNoValue);
    EXPECT_TRUE(HasAltitudeRestriction(profile.rows[1]));
    EXPECT_FALSE(HasAltitudeRestriction(profile.rows[5]));  // speed only
    EXPECT_FALSE(HasAltitudeRestriction(profile.rows[3]));

    struct Case {
        const char* text;
        std::string error;  // after the path
    };
    const Case cases[] = {
        {"CRZ 25000\nROW 0 A 0 x 0 0 0 0\n", ":2: longitude 'x' is not a number from -180 to 180"},
        {"ROW 0 A 95 0 0 0 0 0\n", ":1: latitude '95' is not a number from -90 to 90"},
        {"; c\nALT 3000\n", ":2: 'ALT' is not CRZ, TC, TD or ROW"},
        {"ROW 0 A 0 0 0 0 0\n", ":1: ROW takes INDEX IDENT LAT LON NM ALTITUDE SPEED RESTRICTED"},
        {"ROW 0 A 0 0 0 0 0 4\n", ":1: restriction kind '4' is not a number from 0 to 3"},
        {"ROW 0 A 0 0 0 0 0 1.5\n", ":1: row index and restriction kind are whole numbers"},
        {"TC 0 0\n", ":1: TC takes LAT LON NM"},
        {"CRZ high\n", ":1: cruise altitude 'high' is not a number from 0 to 100000"},
        {"ROW 0 A 0 0 40 0 0 0\nROW 1 B 0 1 30 0 0 0\n", ":2: row B lies nearer the origin than the row before it"},
        {"CRZ 25000\n; no rows\n", ": no ROW lines"},
    };
    for (const Case& c : cases) {
        std::ofstream(path) << c.text;
        EXPECT_FALSE(ReadVerticalProfile(path, profile, error)) << c.text;
        EXPECT_EQ(error, path + c.error);
    }
    EXPECT_FALSE(ReadVerticalProfile("/nonexistent/vnav_profile.txt", profile, error));
    EXPECT_EQ(error, "/nonexistent/vnav_profile.txt: cannot read the profile file");
    std::remove(path.c_str());
}

TEST(ProfilePlot, TrackPointsGoAlongTheLegsAndNeverBack) {
    std::string path = WriteTemp(kPlan);
    VerticalProfile profile;
    std::string error;
    ASSERT_TRUE(ReadVerticalProfile(path, profile, error)) << error;
    std::vector<FlownPoint> track = {
        {0, 0.0, -0.05, 0},          // before the origin: at 0
        {1, 2 / 60.0, 0.25, 3000},   // 2 nm north of the first leg, half way: 15
        {2, 0.0, 0.75, 9000},        // half way along the long leg: 30 + 35 / 2
        {3, 0.0, 0.30, 9500},        // back near the start: stays at 47.5
        {4, 0.3, 1.02, 15000},       // cut across onto the northbound leg: 65 + 0.6 x 30
        {5, 1.0, 1.25, 6000},        // half way along the last leg: 125 + 15
        {6, 1.0, 1.60, 4000},        // past the end: 155
    };
    std::vector<double> along = AlongRouteDistances(profile, track);
    ASSERT_EQ(along.size(), track.size());
    const double expected[] = {0, 15, 47.5, 47.5, 83, 140, 155};
    for (size_t i = 0; i < track.size(); ++i) EXPECT_NEAR(along[i], expected[i], 1e-3) << "point " << i;

    // Abeam a distance the altitude is between the points either side of it.
    double altitude = 0;
    ASSERT_TRUE(FlownAltitudeAt(track, along, 30, altitude));
    EXPECT_NEAR(altitude, 3000 + (30 - 15) / (47.5 - 15) * 6000, 1e-6);
    ASSERT_TRUE(FlownAltitudeAt(track, along, 0, altitude));
    EXPECT_EQ(altitude, 0);
    EXPECT_FALSE(FlownAltitudeAt(track, along, 160, altitude));

    // An out-and-back route: the way back lies 3 nm from the way out. Out,
    // the first leg is the nearer; back, the last; and once on the way back a
    // point nearer the way out still reads as further along.
    std::ofstream(path) << "ROW 0 A 0 0 0 0 0 0\nROW 1 B 0 1 60 0 0 0\nROW 2 C 0.05 1 63 0 0 0\nROW 3 D 0.05 0 123 0 0 0\n";
    ASSERT_TRUE(ReadVerticalProfile(path, profile, error)) << error;
    track = {{0, 0.0, 0.5, 0}, {1, 0.01, 0.9, 0}, {2, 0.05, 0.5, 0}, {3, 0.0, 0.4, 0}};
    along = AlongRouteDistances(profile, track);
    EXPECT_NEAR(along[0], 30, 1e-6);
    EXPECT_NEAR(along[1], 54, 1e-6);
    EXPECT_NEAR(along[2], 93, 1e-6);
    EXPECT_NEAR(along[3], 99, 1e-6);

    // A single row has no legs: every point stands at it.
    std::ofstream(path) << "ROW 0 A 0 0 12 0 0 0\n";
    ASSERT_TRUE(ReadVerticalProfile(path, profile, error)) << error;
    along = AlongRouteDistances(profile, track);
    EXPECT_EQ(along, std::vector<double>(track.size(), 12));
    std::remove(path.c_str());
}

TEST(ProfilePlot, RestrictedRowsAreMeasuredWhereTheFlightPassedThem) {
    std::string path = WriteTemp(kPlan);
    VerticalProfile profile;
    std::string error;
    ASSERT_TRUE(ReadVerticalProfile(path, profile, error)) << error;
    // A climb of 200 ft a mile along the first two legs, a little past BBB.
    std::vector<FlownPoint> track;
    for (int k = 0; k <= 21; ++k) {
        double lon = k * 0.05;  // 3 nm a point along the equator, past BBB at lon 1.0
        track.push_back({static_cast<double>(k), 0, lon, 0});
    }
    std::vector<double> along = AlongRouteDistances(profile, track);
    for (size_t i = 0; i < track.size(); ++i) track[i].altitude = 200 * along[i];
    ProfileFigures f = CompareProfile(profile, track, along);
    EXPECT_EQ(f.rows, 6);
    EXPECT_EQ(f.restricted, 4);  // AAA, BBB, DDD, and DEST's speed
    EXPECT_EQ(f.passed, 2);      // AAA at 30 nm, BBB at 65 nm
    ASSERT_EQ(f.checks.size(), 4u);
    EXPECT_EQ(f.checks[0].ident, "AAA");
    EXPECT_NEAR(f.checks[0].flown_ft, 6000, 1e-6);
    EXPECT_NEAR(f.checks[0].miss_ft, -4000, 1e-6);
    EXPECT_NEAR(f.checks[1].flown_ft, 13000, 1e-6);
    EXPECT_NEAR(f.checks[1].miss_ft, -7000, 1e-6);
    EXPECT_FALSE(f.checks[2].passed);
    EXPECT_FALSE(f.checks[3].has_altitude);
    EXPECT_TRUE(f.checks[0].vnav_target);
    EXPECT_FALSE(f.checks[1].vnav_target);      // the approach's kind 3
    EXPECT_DOUBLE_EQ(f.worst_miss, 4000);       // VNAV's own: AAA
    EXPECT_DOUBLE_EQ(f.worst_approach_miss, 7000);
    EXPECT_DOUBLE_EQ(f.max_altitude, 13000);
    EXPECT_EQ(f.checks[0].restriction, "10000 ft / 250 kt");
    EXPECT_EQ(f.checks[1].restriction, "FL200 / 280 kt");
    EXPECT_EQ(f.checks[3].restriction, "180 kt");
    EXPECT_NE(DescribeCheck(f.checks[1]).find("flown  13000 ft   -7000 ft  (approach"), std::string::npos) << DescribeCheck(f.checks[1]);
    EXPECT_EQ(DescribeCheck(f.checks[0]).find("approach"), std::string::npos);
    EXPECT_NE(DescribeCheck(f.checks[2]).find("not reached"), std::string::npos);

    // The picture is written and is a PNG.
    std::string png = path + ".png";
    ASSERT_TRUE(WriteProfilePlot(png, profile, track, along, f, "t", error)) << error;
    std::ifstream in(png, std::ios::binary);
    char magic[4] = {};
    in.read(magic, 4);
    EXPECT_EQ(std::string(magic + 1, 3), "PNG");
    EXPECT_FALSE(WriteProfilePlot("/nonexistent/p.png", profile, track, along, f, "t", error));
    std::remove(png.c_str());
    std::remove(path.c_str());
}

TEST(ProfilePlot, TheScriptCommandReadsTheTrackAndSetsItsValues) {
    char pattern[] = "/tmp/orbsim_profile_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    std::string dir = pattern;
    ASSERT_EQ(std::system(("mkdir -p " + dir + "/sim/orb " + dir + "/out").c_str()), 0);
    // Level at 8000 ft along the equator: 1000 below AAA's 9000, 500 above
    // BBB's 7500; CCC lies beyond the flight.
    std::ofstream(dir + "/sim/orb/vnav_profile.txt")
        << "CRZ 8000\nROW 0 ORIG 0 0 0 8000 -999 0\nROW 1 AAA 0 0.25 15 9000 -999 1\n"
           "ROW 2 BBB 0 0.5 30 7500 250 3\nROW 3 CCC 0 2 120 5000 -999 1\n";
    auto run_lines = [&](ScriptRun& run, const std::string& text, std::string& error) {
        std::vector<ScriptLine> lines;
        EXPECT_TRUE(ParseScript("p.orbsim", text, lines, error)) << error;
        return RunScript(g_host, run, lines, error);
    };
    g_host = {};
    g_host.fps = 5;
    ScriptRun run;
    run.script_path = "p.orbsim";
    run.sim_dir = dir + "/sim";
    run.out_dir = dir + "/out";
    run.out = std::tmpfile();
    std::string error;

    // Before any track: the one-line error with the script's line.
    EXPECT_EQ(run_lines(run, "aircraft lat=0 lon=0 alt=8000 ias=300 hdg=90 var=0\nprofile p.png\n", error),
              ExitCode::BadInput);
    EXPECT_EQ(error, "p.orbsim:2: profile needs the flown track: start one with 'track FILE' first");

    EXPECT_EQ(run_lines(run,
                        "track flight.csv\nrun 400\nprofile pics/p.png\nexpect profile.rows == 4\n"
                        "expect profile.restricted == 3\nexpect profile.passed == 2\n"
                        "expect profile.worst_miss == 1000\nexpect profile.worst_approach_miss == 500\n"
                        "expect profile.max_altitude == 8000\n",
                        error),
              ExitCode::Ok)
        << error;
    struct stat st{};
    EXPECT_EQ(stat((dir + "/out/pics/p.png").c_str(), &st), 0);

    // A missing predictions file, and a broken one named with its own line.
    EXPECT_EQ(run_lines(run, "profile p.png orb/none.txt\n", error), ExitCode::BadInput);
    EXPECT_EQ(error, "p.orbsim:1: profile: " + dir + "/sim/orb/none.txt is missing (the module writes it at each EXEC)");
    std::ofstream(dir + "/sim/orb/bad.txt") << "CRZ 8000\nROW 0 ORIG 0 0\n";
    EXPECT_EQ(run_lines(run, "echo x\nprofile p.png orb/bad.txt\n", error), ExitCode::BadInput);
    EXPECT_EQ(error, dir + "/sim/orb/bad.txt:2: ROW takes INDEX IDENT LAT LON NM ALTITUDE SPEED RESTRICTED (from p.orbsim:2)");
    // Where it writes stays below --out, checked before the script runs.
    std::vector<ScriptLine> lines;
    EXPECT_FALSE(ParseScript("p.orbsim", "profile ../p.png\n", lines, error));
    EXPECT_EQ(error, "p.orbsim:1: profile writes under the output folder (--out); '../p.png' leads out of it");

    FinishRun(run);
    std::fclose(run.out);
    g_host = {};
    std::system(("rm -rf " + dir).c_str());
}

TEST(ProfilePlot, HostileBytesAreRefusedWithoutHarm) {
    struct Case {
        std::string text;
        std::string error;
    };
    const Case cases[] = {
        {"ROW 0 A 0 0 nan 0 0 0\n", "h:1: distance 'nan' is not a number from 0 to 50000"},
        {"ROW 0 A 0 0 1e308 0 0 0\n", "h:1: distance '1e308' is not a number from 0 to 50000"},
        {"ROW 0 A 0 0 0 inf 0 0\n", "h:1: altitude 'inf' is not a number from -2000 to 100000"},
        {std::string("ROW 0 A\0 0 0 0 0 0 0\n", 21), "h:1: line holds a control byte"},
        {"ROW 0 A 0 0 0 0 0 0 " + std::string(2000, 'x') + "\n", "h:1: line longer than 1024 characters"},
    };
    for (const Case& c : cases) {
        std::istringstream in(c.text);
        VerticalProfile profile;
        std::string error;
        EXPECT_FALSE(ParseVerticalProfile("h", in, profile, error)) << c.text;
        EXPECT_EQ(error, c.error);
    }
    // More rows than a plan has.
    std::string many;
    for (int i = 0; i <= kMaxProfileRows; ++i) many += "ROW " + std::to_string(i % 100) + " A 0 0 0 0 0 0\n";
    std::istringstream in(many);
    VerticalProfile profile;
    std::string error;
    EXPECT_FALSE(ParseVerticalProfile("h", in, profile, error));
    EXPECT_EQ(error, "h:1001: more than 1000 rows");

    // Track rows: a short row, a position off the earth, text where numbers go.
    const Case tracks[] = {
        {"time,lat,lon,altitude\n1,2,3\n", "t:2: not a track row (time,lat,lon,altitude,...)"},
        {"1,95,3,4,5\n", "t:1: position out of range"},
        {"1,x,3,4\n", "t:1: not a track row (time,lat,lon,altitude,...)"},
        {"time,lat,lon,altitude\n", "t: the track has no rows yet"},
    };
    for (const Case& c : tracks) {
        std::istringstream track_in(c.text);
        std::vector<FlownPoint> track;
        EXPECT_FALSE(ParseTrack("t", track_in, track, error)) << c.text;
        EXPECT_EQ(error, c.error);
    }
    std::istringstream good("time,lat,lon,altitude,heading\r\n0.5,1.5,-2.5,1200,90\r\n");
    std::vector<FlownPoint> track;
    ASSERT_TRUE(ParseTrack("t", good, track, error)) << error;
    ASSERT_EQ(track.size(), 1u);
    EXPECT_EQ(track[0].lon, -2.5);
    EXPECT_EQ(track[0].altitude, 1200);
}
