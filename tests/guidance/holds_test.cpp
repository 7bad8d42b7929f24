// holds_test.cpp: the hold pattern as LNAV flies it: the leg by time and the
// 150 kt floor, the four corners and their mirror, entry, the corners in
// turn with the heading bug, the ways out ("AUTO" at corner 1, leaving at any
// corner, LNAV off, passed behind), the GNS toggle, and whole holds flown by
// the heading-hold aircraft, and by orbsim's aircraft from the CDU, inside
// their protected area.
//
// Expected corners are worked out here on a flat earth around the fix (good
// to well under 0.01 nm over a few miles), not with the module's own
// projection.
#include "frame/engine_tick.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "plan/plan_tables.h"
#include "guidance/heading_hold_aircraft.h"
#include "support/fake_panels.h"
#include "support/module_reset.h"
#include "support/run_command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using namespace guidance_test;

namespace {
constexpr double kFixLat = 47.0;
constexpr double kFixLon = -122.0;
constexpr double kPiHere = 3.14159265358979323846;

struct Fix {
    const char* ident;
    double lat, lon;
};

// The same rows in both plans, as after an EXEC, flying to row `active`.
void PlacePlan(const std::vector<Fix>& fixes, int active) {
    for (PlanTable* plan : {&g_plan.ActivePlan, &g_plan.ModPlan})
        for (size_t i = 0; i < fixes.size(); ++i) {
            PlanWaypoint& row = (*plan)[i];
            NewPlanRow(row);
            std::snprintf(row.Ident.data(), row.Ident.size(), "%s", fixes[i].ident);
            row.Latitude = fixes[i].lat;
            row.Longitude = fixes[i].lon;
        }
    PlanContext& pc = g_plan.context;
    pc.ActiveLastRow = pc.ModLastRow = static_cast<int>(fixes.size()) - 1;
    pc.ActiveLeg = pc.ModActiveLeg = active;
    pc.ActiveWaypointLatitude = fixes[static_cast<size_t>(active)].lat;
    pc.ActiveWaypointLongitude = fixes[static_cast<size_t>(active)].lon;
}

// A point `along` nm on a true course from the fix and `right` nm to its right.
void FlatPoint(double course_true, double along, double right, double& lat, double& lon) {
    double c = course_true * kPiHere / 180.0;
    double north = along * std::cos(c) - right * std::sin(c);
    double east = along * std::sin(c) + right * std::cos(c);
    lat = kFixLat + north / 60.0;
    lon = kFixLon + east / (60.0 * std::cos(kFixLat * kPiHere / 180.0));
}

double Distance(double lat1, double lon1, double lat2, double lon2) {
    double d = 0, b = 0;
    GreatCircle(lat1, lon1, lat2, lon2, d, b);
    return d;
}

// Direct unit tests of the step: a plan with the hold's fix at row 1, LNAV on,
// variation 10 east, so that an inbound of 080 magnetic is 090 true (east).
class HoldStepTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        g_sim.magnetic_variation = 10;
        g_sim.ground_speed = 240;
        PlacePlan({{"ORIG", 46.8, -122.6}, {"HFIX", kFixLat, kFixLon}, {"NEXT", 47.0, -121.5}}, 1);
        AddHold(1, 1);
        g_plan.ActivePlan[1].HoldIndex = 1;
        Hold().InboundCourse = 80;
        g_lnav.LnavOn = 1;
        g_lnav.ChangeDistance = 0;  // entry by the pattern's own reach only
    }
    HoldRecord& Hold() { return g_holds.HoldTable[1]; }
    void AircraftAt(double along, double right) { FlatPoint(90, along, right, g_sim.latitude, g_sim.longitude); }
    std::vector<unsigned> BugEvents() const {
        std::vector<unsigned> out;
        for (auto& e : sim.key_events)
            if (e.first == kHeadingBugEvent) out.push_back(e.second);
        return out;
    }
    FakeSimulatorScope scope;
    FakeSimulator& sim = scope.sim;
};
}  // namespace

TEST_F(HoldStepTest, LegByTimeWithItsFloorAndTheCornersOfADistanceHold) {
    AircraftAt(-20, 0);  // far from the fix: nothing but the pattern's figures
    // One minute at 120 kt is worked out at the 150 kt floor: 2.5 nm; at 300 kt 5.0.
    for (auto [speed, expected] : {std::pair{120.0, 2.5}, {150.0, 2.5}, {300.0, 5.0}, {210.0, 3.5}}) {
        g_sim.ground_speed = speed;
        HoldStep();
        EXPECT_NEAR(Hold().LegDistance, expected, 1e-9) << speed << " kt";
    }
    Hold().LegMinutes = 1.5;
    g_sim.ground_speed = 300;
    HoldStep();
    EXPECT_NEAR(Hold().LegDistance, 7.5, 1e-9);

    // Distance mode, 3.0 nm: L = 4.5, corner 1 0.9 nm past the fix, the box
    // 2.25 nm wide and 3.375 nm long, whatever the speed.
    Hold().LegMode = 2;
    Hold().LegDistance = 3.0;
    HoldStep();
    EXPECT_DOUBLE_EQ(Hold().LegDistance, 3.0);
    const double expected[5][2] = {{0, 0}, {0.9, 0}, {0.9, 2.25}, {0.9 - 3.375, 2.25}, {0.9 - 3.375, 0}};
    const char* names[5] = {"Fix", "Xwind", "Dwind", "Base", "Final"};
    for (int turn_right : {1, 0}) {
        Hold().TurnRight = turn_right;
        HoldStep();
        for (int k = 0; k < 5; ++k) {
            double lat = 0, lon = 0;
            FlatPoint(90, expected[k][0], turn_right == 1 ? expected[k][1] : -expected[k][1], lat, lon);
            const HoldCornerPoint& c = Hold().Corners[static_cast<size_t>(k)];
            EXPECT_LT(Distance(c.Latitude, c.Longitude, lat, lon), 0.01) << "corner " << k << " right " << turn_right;
            EXPECT_STREQ(c.Name.data(), names[k]);
        }
    }
    // Left turns put the outbound side north of an eastbound inbound.
    EXPECT_GT(Hold().Corners[2].Latitude, kFixLat + 2.0 / 60.0);
    EXPECT_EQ(g_holds.HoldCorner, 0) << "the aircraft is 20 nm away: no entry";
    EXPECT_TRUE(BugEvents().empty());
}

TEST_F(HoldStepTest, RowZeroAndLnavOffFlyNothing) {
    // With LNAV off the aircraft sits on the fix and nothing is kept or flown.
    g_lnav.LnavOn = 0;
    AircraftAt(0, 0);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 0);
    EXPECT_DOUBLE_EQ(Hold().Corners[1].Latitude, 0) << "corners not stored";
    EXPECT_TRUE(BugEvents().empty());
    // A hold that only a modification carries (no EXEC yet) isn't flown.
    g_lnav.LnavOn = 1;
    g_plan.ActivePlan[1].HoldIndex = 0;
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 0);
    EXPECT_TRUE(BugEvents().empty());
    // Executed, with LNAV on: the same position enters.
    g_plan.ActivePlan[1].HoldIndex = 1;
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 1);
    EXPECT_NE(Hold().Corners[1].Latitude, 0);

    // A hold at row 0 isn't flown even with LNAV on.
    ResetModuleState();
    sim.key_events.clear();
    g_sim.magnetic_variation = 10;
    PlacePlan({{"HFIX", kFixLat, kFixLon}, {"NEXT", 47.0, -121.5}}, 1);
    AddHold(0, 1);
    g_lnav.LnavOn = 1;
    AircraftAt(0, 0);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 0);
    EXPECT_EQ(g_holds.HoldExitState, 1);
    EXPECT_TRUE(BugEvents().empty());
}

TEST_F(HoldStepTest, EntryCornersInTurnAndTheBugOnlyOnWholeDegrees) {
    Hold().LegMode = 2;
    Hold().LegDistance = 3.0;  // L 4.5: a corner is reached within 1.125 nm
    // 1.0 nm south of the fix: within reach of it, not of corner 1.
    AircraftAt(0, 1.0);
    HoldStep();
    EXPECT_EQ(g_holds.HoldFlying, 1);
    EXPECT_EQ(g_holds.HoldExitState, 0);
    EXPECT_EQ(g_holds.HoldCorner, 1);
    EXPECT_EQ(g_holds.HoldPrevCorner, 4);

    // Sliding east, the bearing to corner 1 swings; one event per new whole
    // degree, each the truncated magnetic bearing worked out here.
    double c1_lat = 0, c1_lon = 0;
    FlatPoint(90, 0.9, 0, c1_lat, c1_lon);
    std::vector<unsigned> expected;
    for (int i = 0; i <= 30; ++i) {
        AircraftAt(0.01 * i, 1.0);
        if (i > 0) HoldStep();
        double d = 0, b = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, c1_lat, c1_lon, d, b);
        double magnetic = b - 10;
        if (magnetic < 0.5) magnetic += 360;
        unsigned whole = static_cast<unsigned>(magnetic);
        if (expected.empty() || expected.back() != whole) expected.push_back(whole);
    }
    EXPECT_EQ(BugEvents(), expected);
    EXPECT_GE(expected.size(), 5u) << "the slide must cross several degrees";
    HoldStep();
    EXPECT_EQ(BugEvents().size(), expected.size()) << "no event while the degree stays";

    // At each corner the next: south (170 magnetic), west (260), north (350), east (080).
    const double corners[4][2] = {{0.9, 0}, {0.9, 2.25}, {-2.475, 2.25}, {-2.475, 0}};
    const int next_heading[4] = {170, 260, 350, 80};
    for (int lap = 0; lap < 2; ++lap)
        for (int k = 0; k < 4; ++k) {
            // Just short of the corner, on the leg into it.
            AircraftAt(corners[k][0] - (k == 0 ? 0.05 : k == 2 ? -0.05 : 0), corners[k][1] - (k == 1 ? 0.05 : 0));
            HoldStep();
            int now = k + 2 > 4 ? 1 : k + 2;
            ASSERT_EQ(g_holds.HoldCorner, now) << "lap " << lap << " corner " << k + 1;
            EXPECT_EQ(g_holds.HoldPrevCorner, k + 1);
            EXPECT_NEAR(static_cast<double>(BugEvents().back()), next_heading[k], 3.0) << "toward corner " << now;
        }
    EXPECT_EQ(g_holds.HoldFlying, 1);
    EXPECT_EQ(g_holds.HoldCount, 1);

    // Blown 20 nm away, far beyond 2.5 corner legs: corner 1 counts as reached.
    AircraftAt(-10, 20);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 2);
    // A corner behind the aircraft counts as reached too: past corner 2,
    // 1.5 nm further south (out of reach, but behind).
    AircraftAt(0.9, 2.25 + 1.5);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 3);
    // Far on the way to corner 3 nothing moves.
    AircraftAt(0.5, 2.25);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 3);
}

TEST_F(HoldStepTest, AutoLeavesAtTheNextCornerOneAndTheSecondHoldMovesUp) {
    PlacePlan({{"ORIG", 46.8, -122.6}, {"HFIX", kFixLat, kFixLon}, {"MID", 47.0, -121.7}, {"SECOND", 47.0, -121.4}}, 1);
    g_plan.ActivePlan[1].HoldIndex = 1;
    AddHold(3, 1);
    g_plan.ActivePlan[3].HoldIndex = 2;
    ASSERT_EQ(g_holds.HoldCount, 2);
    Hold().LegMode = 2;
    Hold().LegDistance = 3.0;
    AircraftAt(-0.5, 0);
    HoldStep();
    ASSERT_EQ(g_holds.HoldCorner, 1);
    // Corner 1 reached: on to 2. "AUTO" chosen on the way to corner 2.
    AircraftAt(0.85, 0);
    HoldStep();
    ASSERT_EQ(g_holds.HoldCorner, 2);
    g_holds.HoldExitState = 2;
    const double corners[3][2] = {{0.9, 2.2}, {-2.4, 2.25}, {-2.475, 0.05}};
    for (int k = 0; k < 3; ++k) {
        AircraftAt(corners[k][0], corners[k][1]);
        HoldStep();
        EXPECT_EQ(g_holds.HoldCount, 2) << "still holding after corner " << k + 2;
        EXPECT_EQ(g_holds.HoldFlying, 1);
    }
    EXPECT_EQ(g_holds.HoldCorner, 1);
    EXPECT_EQ(g_holds.HoldExitState, 2);
    // At corner 1 the hold ends; the second becomes record 1, waiting at its fix.
    size_t events = BugEvents().size();
    AircraftAt(0.85, 0);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCount, 1);
    EXPECT_EQ(g_holds.HoldFlying, 0);
    EXPECT_EQ(g_holds.HoldCorner, 0);
    EXPECT_STREQ(Hold().Ident.data(), "SECOND");
    EXPECT_EQ(Hold().ActiveRow, 3);
    EXPECT_EQ(g_plan.ActivePlan[1].HoldIndex, 0);
    EXPECT_EQ(g_plan.ActivePlan[3].HoldIndex, 1);
    EXPECT_EQ(BugEvents().size(), events) << "no heading once the hold is left";
    // Still on the first fix: the second hold doesn't start here.
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 0);
    // It starts at its own fix, with a fresh exit state.
    g_sim.latitude = 47.0;
    g_sim.longitude = -121.4 - 0.01;
    HoldStep();
    EXPECT_EQ(g_holds.HoldCorner, 1);
    EXPECT_EQ(g_holds.HoldFlying, 1);
    EXPECT_EQ(g_holds.HoldExitState, 0);
}

TEST_F(HoldStepTest, LnavOffGivesUpAndHoldsBehindGo) {
    AircraftAt(-0.5, 0);
    HoldStep();
    ASSERT_EQ(g_holds.HoldCorner, 1);
    // LNAV switched off in the pattern: "MANUAL", the record loses its row ...
    LnavToggle();
    EXPECT_EQ(g_lnav.LnavOn, 0);
    EXPECT_EQ(g_holds.HoldFlying, 0);
    EXPECT_EQ(g_holds.HoldExitState, 1);
    EXPECT_EQ(Hold().ActiveRow, 0);
    size_t events = BugEvents().size();
    HoldStep();
    EXPECT_EQ(BugEvents().size(), events);
    // ... and goes as a hold behind the active leg.
    DeleteHoldsBehind(g_plan.context.ActiveLeg);
    EXPECT_EQ(g_holds.HoldCount, 0);
    EXPECT_EQ(g_plan.ActivePlan[1].HoldIndex, 0);

    // Holds at rows 1, 2 and 4 with the active leg at 3: the first two go,
    // the one ahead becomes record 1 and its row says so.
    PlacePlan({{"A", 46.8, -122.6}, {"B", 47.0, -122.0}, {"C", 47.1, -121.8}, {"D", 47.2, -121.6}, {"E", 47.3, -121.4}},
              3);
    for (int row : {1, 2, 4}) AddHold(row, 1);
    for (int k = 1; k <= 3; ++k) g_plan.ActivePlan[static_cast<size_t>(g_holds.HoldTable[k].ActiveRow)].HoldIndex = k;
    DeleteHoldsBehind(3);
    ASSERT_EQ(g_holds.HoldCount, 1);
    EXPECT_STREQ(Hold().Ident.data(), "E");
    EXPECT_EQ(g_plan.ActivePlan[4].HoldIndex, 1);
    EXPECT_EQ(g_plan.ActivePlan[1].HoldIndex + g_plan.ActivePlan[2].HoldIndex, 0);
    DeleteHoldsBehind(kNoActiveLeg);
    EXPECT_EQ(g_holds.HoldCount, 1) << "no active leg: nothing is behind";
}

TEST_F(HoldStepTest, ToggleHoldsAtTheActiveWaypointAndLeavesAtTheNextCorner) {
    RemoveAllHolds();
    g_lnav.LnavOn = 0;
    ToggleHold();
    EXPECT_EQ(g_holds.HoldCount, 0) << "LNAV off: nothing";
    g_lnav.LnavOn = 1;
    ToggleHold();
    ASSERT_EQ(g_holds.HoldCount, 1);
    EXPECT_EQ(Hold().ActiveRow, 1);
    EXPECT_EQ(g_plan.ActivePlan[1].HoldIndex, 1);
    EXPECT_EQ(g_holds.HoldFlying, 1);
    // Inbound on the leg from ORIG, magnetic.
    double d = 0, b = 0;
    GreatCircle(46.8, -122.6, kFixLat, kFixLon, d, b);
    EXPECT_NEAR(Hold().InboundCourse, b - 10, 1e-6);
    Hold().InboundCourse = 80;
    Hold().LegMode = 2;
    Hold().LegDistance = 3.0;
    AircraftAt(-0.5, 0);
    HoldStep();
    ASSERT_EQ(g_holds.HoldCorner, 1);
    // EXIT HOLD: LNAV's own heading at once; the record goes at the next corner.
    ToggleHold();
    EXPECT_EQ(g_holds.HoldFlying, 0);
    EXPECT_EQ(g_holds.HoldExitState, 3);
    AircraftAt(-0.3, 0);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCount, 1) << "corner 1 not reached yet";
    AircraftAt(0.85, 0);
    HoldStep();
    EXPECT_EQ(g_holds.HoldCount, 0);
    EXPECT_EQ(g_holds.HoldCorner, 0);
}

TEST_F(HoldStepTest, HostileFiguresNeitherSteerNorStall) {
    // Legs of no length or of no number; then a position of no number.
    AircraftAt(0, 0);
    Hold().LegMode = 2;
    for (double leg : {0.0, -2.0, std::nan("")}) {
        Hold().LegDistance = leg;
        HoldStep();
        EXPECT_EQ(g_holds.HoldCorner, 0) << leg;
    }
    Hold().LegMode = 1;
    Hold().LegMinutes = 1;
    g_sim.ground_speed = std::nan("");
    HoldStep();
    EXPECT_DOUBLE_EQ(Hold().LegDistance, 2.5) << "an unknown speed counts as the floor";
    ASSERT_EQ(g_holds.HoldCorner, 1);
    size_t events = BugEvents().size();
    g_sim.latitude = std::nan("");
    for (int i = 0; i < 50; ++i) HoldStep();
    EXPECT_EQ(BugEvents().size(), events) << "no heading out of a position that isn't one";
}

// [SECTION] Whole holds flown by the heading-hold aircraft
namespace {
class HoldFlight : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        g_module.SimGeneration = 10;
    }
    // Along-track and right-of-track nm of the aircraft from the fix, for an
    // inbound course `course_true`.
    void Local(double course_true, double& along, double& right) const {
        double north = (ac.lat - kFixLat) * 60.0;
        double east = (ac.lon - kFixLon) * 60.0 * std::cos(kFixLat * kPiHere / 180.0);
        double c = course_true * kPiHere / 180.0;
        along = north * std::cos(c) + east * std::sin(c);
        right = -north * std::sin(c) + east * std::cos(c);
    }
    FakeSimulatorScope scope;
    FakeSimulator& sim = scope.sim;
    HeadingHoldAircraft ac{sim};
};
}  // namespace

TEST_F(HoldFlight, FlownInsideItsAreaBothWaysAndLeftByAutoAtTheFix) {
    for (int turn_right : {1, 0}) {
        SetUp();
        // Westbound on the 270 true leg from the east to the hold fix, then on west.
        ac.variation = 16;
        ac.true_airspeed = 200;
        PlacePlan({{"EAST", kFixLat, kFixLon + 0.6}, {"HFIX", kFixLat, kFixLon}, {"WEST", kFixLat, kFixLon - 0.6}}, 1);
        LnavPlanActivated();
        AddHold(1, 1);
        g_plan.ActivePlan[1].HoldIndex = 1;
        g_holds.HoldTable[1].TurnRight = turn_right;
        ac.Place(kFixLat, kFixLon + 0.3, 270);
        LnavToggle();
        ASSERT_EQ(g_lnav.LnavOn, 1);
        // 1.5 min at 200 kt: the leg 3.33 nm, L 5.0; the box reaches 1 nm past
        // the fix, 2.5 nm to the turn side and 2.75 nm back.
        g_holds.HoldTable[1].LegMinutes = 1.5;
        const double leg = 200.0 / 60.0 * 1.5, pattern = 1.5 * leg;
        // Room for the turns at 3 degrees a second: a radius of 200 / (60 pi) nm.
        const double margin = 2 * 200.0 / (60.0 * kPiHere) + 0.3;
        const double course = 270.0;
        int entered_at = -1, corner_changes = 0, last_corner = 0;
        double deepest = 0, widest = 0;
        for (int t = 0; t < 18 * 60 * 12; ++t) {
            ac.Tick();
            if (g_holds.HoldCorner != last_corner) {
                ++corner_changes;
                // Always on to the next corner, 4 back to 1.
                if (last_corner > 0) {
                    EXPECT_EQ(g_holds.HoldCorner, last_corner % 4 + 1);
                }
                last_corner = g_holds.HoldCorner;
            }
            if (entered_at < 0 && g_holds.HoldCorner > 0) entered_at = t;
            if (entered_at < 0) continue;
            double along = 0, right = 0;
            Local(course, along, right);
            double side = turn_right == 1 ? right : -right;
            // The protected area: the box, widened by the turns.
            ASSERT_LT(along, 0.2 * pattern + margin) << "t " << t;
            ASSERT_GT(along, -0.55 * pattern - margin) << "t " << t;
            ASSERT_LT(side, 0.5 * pattern + margin) << "t " << t;
            ASSERT_GT(side, -margin) << "t " << t << ": on the wrong side";
            deepest = std::min(deepest, along);
            widest = std::max(widest, side);
        }
        ASSERT_GE(entered_at, 0) << "never entered";
        // 12 nm to the fix, then 8.4 minutes (28 nm) round a box of at most
        // 12.5 nm: the entry and two laps at least.
        EXPECT_GE(corner_changes, 9);
        // The pattern is really flown to its far corners, not cut short at the fix.
        EXPECT_LT(deepest, -0.3 * pattern);
        EXPECT_GT(widest, 0.3 * pattern);
        EXPECT_EQ(g_plan.context.ActiveLeg, 1) << "the plan waits while the hold is flown";

        // "AUTO": out at corner 1, past the fix, and on to WEST.
        g_holds.HoldExitState = 2;
        int left_at = -1;
        for (int t = 0; t < 18 * 60 * 6 && left_at < 0; ++t) {
            ac.Tick();
            if (g_holds.HoldCount == 0) left_at = t;
        }
        ASSERT_GE(left_at, 0) << "the hold never ended";
        double along = 0, right = 0;
        Local(course, along, right);
        EXPECT_NEAR(along, 0.2 * pattern, 0.25 * pattern + 0.1) << "left near corner 1";
        ac.Fly(10);
        EXPECT_EQ(g_plan.context.ActiveLeg, 2) << "sequenced past the fix";
        ac.Fly(120);
        EXPECT_NEAR(DirectionDifference(ac.heading, 270), 0, 10) << "on the way west";
    }
}

// [SECTION] The hold of the end-to-end script, checked from its track
namespace {
struct TrackRow {
    double time = 0, lat = 0, lon = 0, gs = 0;
};

// orbsim's track file: time,lat,lon,altitude,heading,ias,gs,vs.
std::vector<TrackRow> ReadTrack(const std::filesystem::path& path) {
    std::vector<TrackRow> rows;
    std::ifstream in(path);
    std::string line;
    std::getline(in, line);  // the header
    while (std::getline(in, line)) {
        std::vector<double> v;
        std::stringstream cells(line);
        std::string cell;
        while (std::getline(cells, cell, ',')) v.push_back(std::atof(cell.c_str()));
        if (v.size() >= 8) rows.push_back({v[0], v[1], v[2], v[6]});
    }
    return rows;
}
}  // namespace

TEST(HoldEndToEnd, FlownFromTheCduInsideItsProtectedArea) {
    namespace fs = std::filesystem;
    fs::path root = fs::path(ORB_BINARY_DIR) / "test-sim" / "HoldEndToEnd";
    fs::remove_all(root);
    fs::create_directories(root);
    fs::copy(fs::path(ORB_SOURCE_DIR) / "data" / "sim", root / "sim", fs::copy_options::recursive);
    fs::copy_file(ORB_MODULE_PATH, root / "sim" / "GAUGES" / "orb1.gau", fs::copy_options::overwrite_existing);
    std::string command = "timeout 300 " + std::string(ORB_BINARY_DIR) + "/orbsim --sim '" + (root / "sim").string() +
                          "' --out '" + (root / "out").string() + "' '" + ORB_SOURCE_DIR +
                          "/tests/e2e/hold_flown_at_fix_ahead.orbsim' 2>&1";
    CommandRun run = RunCommand(command);
    ASSERT_EQ(run.code, 0) << run.output;
    std::vector<TrackRow> track = ReadTrack(root / "out" / "hold_track.csv");
    ASSERT_GT(track.size(), 600u);

    // NORMY, and the leg into it from SEA (the data's positions): inbound 091.
    const double fix_lat = 47.429553, fix_lon = -121.721225, sea_lat = 47.435361, sea_lon = -122.309611;
    const double coslat = std::cos(fix_lat * kPiHere / 180.0);
    const double course = std::atan2((fix_lon - sea_lon) * coslat, fix_lat - sea_lat);
    auto local = [&](const TrackRow& r, double& along, double& right) {
        double north = (r.lat - fix_lat) * 60.0, east = (r.lon - fix_lon) * 60.0 * coslat;
        along = north * std::cos(course) + east * std::sin(course);
        right = -north * std::sin(course) + east * std::cos(course);
    };
    // From the entry, 3 nm before the fix (the sequencing distance), to the
    // end of the track, which stops before the hold is left.
    size_t entry = 0;
    while (entry < track.size()) {
        double along = 0, right = 0;
        local(track[entry], along, right);
        if (std::hypot(along, right) <= 3.0) break;
        ++entry;
    }
    ASSERT_LT(entry + 300, track.size()) << "five minutes in the hold at least";
    // The leg by the rule: one minute at the ground speed (150 kt at least),
    // L one and a half legs; room for a turn of 3 degrees a second.
    double gs = 0;
    for (size_t i = entry; i < track.size(); ++i) gs = std::max(gs, track[i].gs);
    const double leg = std::max(gs, 150.0) / 60.0, pattern = 1.5 * leg;
    const double radius = gs / 3600.0 / (3.0 * kPiHere / 180.0);
    const double margin = radius + 0.5;
    double deepest = 0, widest = 0;
    for (size_t i = entry; i < track.size(); ++i) {
        double along = 0, right = 0;
        local(track[i], along, right);
        ASSERT_LT(along, 0.2 * pattern + margin) << "t " << track[i].time;
        ASSERT_GT(along, -0.55 * pattern - margin) << "t " << track[i].time;
        ASSERT_LT(right, 0.5 * pattern + margin) << "t " << track[i].time;
        ASSERT_GT(right, -margin) << "t " << track[i].time << ": the turns go right";
        deepest = std::min(deepest, along);
        widest = std::max(widest, right);
    }
    // The corners are really reached: the far corners within a quarter of L.
    EXPECT_LT(deepest, -0.55 * pattern + 0.25 * pattern);
    EXPECT_GT(widest, 0.5 * pattern - 0.25 * pattern);
    fs::remove_all(root);
}
