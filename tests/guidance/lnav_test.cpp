// LNAV: the sequencing thresholds, engaging, the heading sent, radio tuning,
// and whole flights against a small heading-hold aircraft.
#include "frame/sim_state.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "plan/plan_tables.h"
#include "guidance/heading_hold_aircraft.h"
#include "support/fake_panels.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

using namespace guidance_test;

namespace {
struct Fix {
    const char* ident;
    double lat, lon;
    const char* type = "INT";
    const char* segment = "";
    int flyover = 0;
    const char* frequency = "";
};

void PlaceActivePlan(const std::vector<Fix>& fixes) {
    for (size_t i = 0; i < fixes.size(); ++i) {
        PlanWaypoint& row = g_plan.ActivePlan[i];
        NewPlanRow(row);
        std::snprintf(row.Ident.data(), row.Ident.size(), "%s", fixes[i].ident);
        row.Latitude = fixes[i].lat;
        row.Longitude = fixes[i].lon;
        std::snprintf(row.WaypointType.data(), row.WaypointType.size(), "%s", fixes[i].type);
        std::snprintf(row.SegmentKind.data(), row.SegmentKind.size(), "%s", fixes[i].segment);
        std::snprintf(row.Frequency.data(), row.Frequency.size(), "%s", fixes[i].frequency);
        row.Flyover = fixes[i].flyover;
    }
    g_plan.context.ActiveLastRow = static_cast<int>(fixes.size()) - 1;
    g_plan.context.ActiveLeg = 1;
    g_plan.context.ActiveWaypointLatitude = fixes[1].lat;
    g_plan.context.ActiveWaypointLongitude = fixes[1].lon;
    LnavPlanActivated();
}

// LNAV flying the heading-hold aircraft.
class LnavFlight : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        g_module.SimGeneration = 10;
    }
    void Place(double lat, double lon, double heading_true) { ac.Place(lat, lon, heading_true); }
    void Step() { ac.Tick(); }
    FakeSimulatorScope scope;
    FakeSimulator& sim = scope.sim;
    HeadingHoldAircraft ac{sim};
    const double variation = ac.variation;
};
}  // namespace

TEST(LnavThreshold, DistanceByTimeProcedureFlyoverAndTurnAnticipation) {
    ResetModuleState();
    PlaceActivePlan({{"A", 47, -122}, {"B", 47.5, -122}, {"C", 48, -121.5}});
    // By time: 20 s at 360 kt is 2 nm, and the configured distance is gone.
    g_config.WptChgSecs = 20;
    g_sim.ground_speed = 360;
    EXPECT_DOUBLE_EQ(WaypointChangeDistance(), 2.0);
    EXPECT_DOUBLE_EQ(g_config.WptChgDist, 2.0);
    g_config.WptChgSecs = 0;
    g_config.WptChgDist = 3;
    // A fly-over fix of a SID sequences at the procedure distance.
    g_plan.ActivePlan[1].Flyover = 1;
    std::snprintf(g_plan.ActivePlan[1].SegmentKind.data(), 8, "SID");
    g_config.WptProcChgDist = 2.5;
    EXPECT_DOUBLE_EQ(WaypointChangeDistance(), 2.5);
    g_plan.ActivePlan[1].SegmentKind[0] = 0;
    EXPECT_DOUBLE_EQ(WaypointChangeDistance(), 1.5);  // fly-over en route
    // Anticipation: 0.028 nm a whole degree, never for a fly-over fix.
    g_config.AdjustTurnDistforAngle = 1;
    g_lnav.DistToActive = 12;
    g_lnav.LegCourse = 10;
    g_lnav.NextLegCourse = 55.7;
    EXPECT_DOUBLE_EQ(WaypointChangeDistance(), 1.5);
    g_plan.ActivePlan[1].Flyover = 0;
    EXPECT_NEAR(WaypointChangeDistance(), 3 + 45 * 0.028, 1e-12);
    g_lnav.DistToActive = 16;  // outside 15 nm: none
    EXPECT_DOUBLE_EQ(WaypointChangeDistance(), 3.0);
}

TEST(LnavToggle, EngagesOnlyWithAPlanAndSendsTheOptionEvents) {
    ResetModuleState();
    FakeSimulatorScope scope;
    g_config.LnavOnNavLock = 1;
    g_config.HdgHoldOnLnavOn = 1;
    LnavToggle();  // no plan
    EXPECT_EQ(g_lnav.LnavOn, 0);
    EXPECT_EQ(scope.sim.CountEvents(0x1011B), 1);
    EXPECT_EQ(scope.sim.CountEvents(0x1010F), 0);
    EXPECT_EQ(g_tick.slow_refresh, 999);

    PlaceActivePlan({{"A", 47, -122}, {"B", 48, -122}});
    g_sim.latitude = 47.5;
    g_sim.longitude = -123;
    g_sim.magnetic_variation = 16;
    LnavToggle();
    EXPECT_EQ(g_lnav.LnavOn, 1);
    EXPECT_EQ(g_lnav.InterceptActive, 1);
    EXPECT_EQ(scope.sim.CountEvents(0x1010F), 1);
    double distance = 0, bearing = 0;
    GreatCircle(47.5, -123, 48, -122, distance, bearing);
    EXPECT_NEAR(g_lnav.InterceptCourse, bearing - 16, 1e-9);
    LnavToggle();
    EXPECT_EQ(g_lnav.LnavOn, 0);
    EXPECT_EQ(g_lnav.InterceptActive, 0);
    EXPECT_EQ(scope.sim.CountEvents(0x1011B), 3);
}

TEST(LnavTuning, NavaidAheadTunedWithItsCourse) {
    ResetModuleState();
    FakeSimulatorScope scope;
    PlaceActivePlan({{"A", 47, -122}, {"B", 47.3, -122}, {"SEA", 47.6, -122, "VOR", "", 0, "116.80"},
                     {"NDBX", 48, -122, "NDB", "", 0, "350"}, {"DEST", 48.3, -122, "APT"}});
    g_sim.latitude = 47.1;
    g_sim.longitude = -122;
    g_sim.magnetic_variation = 16;
    CheckTuneRoute(2);
    ASSERT_EQ(scope.sim.key_events.size(), 2u);
    EXPECT_EQ(scope.sim.key_events[0], std::make_pair(0x100B4u, 344u));  // 360 - 16, due north leg
    EXPECT_EQ(scope.sim.key_events[1], std::make_pair(0x100ACu, 0x11680u));
    // Past the VOR the NDB is next: its frequency digits as they stand.
    scope.sim.key_events.clear();
    g_plan.context.ActiveLeg = 3;
    CheckTuneRoute(2);
    ASSERT_EQ(scope.sim.key_events.size(), 2u);
    EXPECT_EQ(scope.sim.key_events[1], std::make_pair(0x100B2u, 0x350u));
    // On the last leg only the OBS is set, when the fix behind is a navaid.
    scope.sim.key_events.clear();
    g_plan.context.ActiveLeg = 4;
    CheckTuneRoute(2);
    ASSERT_EQ(scope.sim.key_events.size(), 1u);
    EXPECT_EQ(scope.sim.key_events[0].first, 0x100B4u);
    g_plan.context.ActiveLeg = 3;
    // The navaid ahead out of range (over 230 nm): no frequency; the fix
    // behind is a navaid, so the OBS alone is set.
    scope.sim.key_events.clear();
    g_sim.latitude = 40;
    CheckTuneRoute(2);
    ASSERT_EQ(scope.sim.key_events.size(), 1u);
    EXPECT_EQ(scope.sim.key_events[0].first, 0x100B4u);
}

TEST_F(LnavFlight, FliesARouteSequencingEveryWaypointInOrder) {
    // A dog-leg route with a turn of more than 90 degrees at C.
    PlaceActivePlan({{"ORIG", 47.00, -122.00, "APT"}, {"B", 47.40, -122.00}, {"C", 47.80, -121.60},
                     {"D", 47.50, -121.20}, {"DEST", 47.20, -121.30, "APT"}});
    g_config.AdjustTurnDistforAngle = 1;
    g_config.LnavOffAtLastWpt = 0;
    Place(47.02, -122.01, 0);
    LnavToggle();
    ASSERT_EQ(g_lnav.LnavOn, 1);

    std::vector<int> legs = {1};
    double worst_settled_xtk = 0;
    int last_events = 0;
    bool whole_degree_only = true;
    int last_sent = -1;
    double distance_when_c_sequenced = 0;
    for (int tick = 0; tick < 18 * 60 * 40 && g_lnav.LnavOn; ++tick) {
        double distance_before = g_lnav.DistToActive;
        Step();
        if (legs.back() == 2 && g_plan.context.ActiveLeg == 3) distance_when_c_sequenced = distance_before;
        if (g_plan.context.ActiveLeg != legs.back()) legs.push_back(g_plan.context.ActiveLeg);
        // Straight-leg tracking: once settled on a leg (well after the turn and
        // before the next), the cross track stays small.
        if (g_lnav.LegTracking && g_lnav.DistToActive > 8 && g_lnav.LegLength - g_lnav.DistToActive > 12)
            worst_settled_xtk = std::max(worst_settled_xtk, g_lnav.XtkDistance);
        int events = HeadingEvents(sim);
        if (events != last_events) {
            int sent = static_cast<int>(sim.key_events.back().second);
            if (sent == last_sent) whole_degree_only = false;
            last_sent = sent;
            last_events = events;
        }
    }
    EXPECT_EQ(legs, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(g_lnav.LnavOn, 0);  // dropped at the last waypoint's threshold
    EXPECT_LT(worst_settled_xtk, 0.3);
    EXPECT_TRUE(whole_degree_only);
    EXPECT_GT(last_events, 10);
    EXPECT_STREQ(g_lnav.LastPassed.ident.data(), "D");
    // The turn of about 100 degrees at C is anticipated: 3 + 0.028 per degree.
    EXPECT_GT(distance_when_c_sequenced, 5.0);
    EXPECT_LT(distance_when_c_sequenced, 6.2);
}

TEST_F(LnavFlight, CrosswindDoesNotBreakTracking) {
    PlaceActivePlan({{"ORIG", 47.00, -122.00, "APT"}, {"B", 47.30, -122.00}, {"C", 48.00, -122.00},
                     {"DEST", 48.30, -122.00, "APT"}});
    ac.wind_from = 270;
    ac.wind_speed = 60;
    Place(47.01, -122.0, 0);
    LnavToggle();
    double worst = 0;
    for (int tick = 0; tick < 18 * 60 * 20 && g_plan.context.ActiveLeg < 3; ++tick) {
        Step();
        if (g_plan.context.ActiveLeg == 2 && g_lnav.LegLength - g_lnav.DistToActive > 15 && g_lnav.DistToActive > 5)
            worst = std::max(worst, g_lnav.XtkDistance);
    }
    EXPECT_EQ(g_plan.context.ActiveLeg, 3);
    // Steering at a point 3 nm ahead leaves the offset at which the bearing to
    // it equals the crab angle: 3 x tan(asin(60 / 300)) = 0.61 nm.
    EXPECT_LT(worst, 0.75);
    EXPECT_GT(worst, 0.45);
    // The drift shows: heading held into the wind, west of the track.
    EXPECT_LT(std::remainder(ac.heading - 0.0, 360.0), -3.0);
}

TEST_F(LnavFlight, LnavOffAtLastWaypointDropsOneLegEarly) {
    PlaceActivePlan({{"ORIG", 47.0, -122.0, "APT"}, {"B", 47.2, -122.0}, {"DEST", 47.5, -122.0, "APT"}});
    g_config.LnavOffAtLastWpt = 1;
    Place(47.01, -122.0, 0);
    LnavToggle();
    for (int tick = 0; tick < 18 * 60 * 10 && g_lnav.LnavOn; ++tick) Step();
    EXPECT_EQ(g_plan.context.ActiveLeg, 2);
    EXPECT_EQ(g_lnav.LnavOn, 0);
    EXPECT_GT(g_lnav.DistToActive, 10);  // it dropped as B was passed, far from DEST
}

TEST_F(LnavFlight, NoHeadingWithoutHeadingHoldAndTheAbeamRule) {
    PlaceActivePlan({{"ORIG", 47.0, -122.0, "APT"}, {"B", 47.5, -122.0}, {"C", 48.0, -122.0},
                     {"D", 48.5, -122.0}, {"DEST", 49.0, -122.0, "APT"}});
    sim.tokens[Token::AP_HEADING_HOLD] = 0;
    // Flying east, 6 nm south of B: passes it abeam without ever coming close.
    Place(47.4, -122.3, 90);
    LnavToggle();
    for (int tick = 0; tick < 18 * 60 * 4; ++tick) Step();
    EXPECT_EQ(HeadingEvents(sim), 0);
    EXPECT_EQ(g_lnav.LastHeadingSent, 999);
    EXPECT_EQ(g_plan.context.ActiveLeg, 1);  // the abeam rule needs heading hold
    // With heading hold on (the aircraft keeps its course: bug not followed), B
    // falls behind and is taken as passed.
    sim.tokens[Token::AP_HEADING_HOLD] = 1;
    Place(47.49, -122.3, 90);
    for (int tick = 0; tick < 18 * 60 * 4 && g_plan.context.ActiveLeg == 1; ++tick) {
        Step();
        ac.bug_magnetic = NormaliseMagnetic(90 - variation);
    }
    EXPECT_EQ(g_plan.context.ActiveLeg, 2);
}

TEST_F(LnavFlight, MagneticBearingsGoOutAsWholeDegrees) {
    // Engaged straight at a waypoint, with the variation chosen so that the
    // magnetic bearing to it is 0.4, 0.6 and 359.7: the bug goes to 360, 0, 359.
    const struct {
        double magnetic;
        int sent;
    } cases[] = {{0.4, 360}, {0.6, 0}, {359.7, 359}};
    for (const auto& c : cases) {
        ResetModuleState();
        g_module.SimGeneration = 10;
        PlaceActivePlan({{"A", 46.0, -122.3}, {"B", 47.0, -121.5}, {"C", 47.5, -121.0}});
        double distance = 0, bearing = 0;
        GreatCircle(46.5, -122.0, 47.0, -121.5, distance, bearing);
        ac.variation = bearing - c.magnetic;
        Place(46.5, -122.0, bearing);
        int before = HeadingEvents(sim);
        LnavToggle();
        Step();
        ASSERT_EQ(HeadingEvents(sim), before + 1) << c.magnetic;
        EXPECT_EQ(LastHeadingSent(sim), c.sent) << c.magnetic;
        // Steered on at the waypoint itself, the same whole degree: nothing more goes out.
        ac.follow_bug = false;
        Step();
        EXPECT_EQ(HeadingEvents(sim), before + 1) << c.magnetic;
        ac.follow_bug = true;
    }
}

TEST_F(LnavFlight, RabbitLiesOnTheLegAheadOfTheAbeamPoint) {
    // A due-north leg; the aircraft 2 nm east of it, tracking the leg.
    PlaceActivePlan({{"A", 47.0, -122.0}, {"B", 48.0, -122.0}, {"C", 48.5, -122.0}});
    Place(47.4, -122.0 + 2.0 / (60.0 * std::cos(47.4 * kDegToRad)), 0);
    LnavToggle();
    Step();
    g_lnav.InterceptActive = 0;
    g_lnav.LegTracking = 1;
    Step();
    // Within 3.5 nm of the leg the rabbit is 3 nm ahead of the abeam point, on the leg.
    EXPECT_NEAR(g_lnav.XtkDistance, 2.0, 0.05);
    EXPECT_NEAR(g_lnav.RabbitPoint.lon, -122.0, 1e-6);
    double along = g_lnav.LegLength - g_lnav.DistToActive + 3.0;
    EXPECT_NEAR(g_lnav.RabbitPoint.lat, 47.0 + along / 60.0, 0.01);
    // The command points at it: west of north, toward the leg.
    double to_rabbit = 0, bearing = 0;
    GreatCircle(ac.lat, ac.lon, g_lnav.RabbitPoint.lat, g_lnav.RabbitPoint.lon, to_rabbit, bearing);
    EXPECT_NEAR(g_lnav.HeadingCommand, NormaliseMagnetic(bearing - variation), 0.05);
    EXPECT_GT(std::remainder(bearing - 360.0, 360.0), -40.0);
    EXPECT_LT(std::remainder(bearing - 360.0, 360.0), -30.0);  // atan(2/3) = 33.7 degrees
    // Far off the leg (10 nm or more) LNAV flies straight at the waypoint instead.
    Place(47.4, -122.0 + 12.0 / (60.0 * std::cos(47.4 * kDegToRad)), 0);
    Step();
    EXPECT_EQ(g_lnav.LegTracking, 0);
    EXPECT_NEAR(g_lnav.HeadingCommand, g_lnav.BearingToActive, 1e-9);
}
