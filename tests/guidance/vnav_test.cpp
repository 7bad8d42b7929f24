// VNAV: the climb in steps and the level-off, T/D met and passed abeam, the
// descent rate rule and its limits, the low-speed guard, restrictions as
// targets and as level segments, the pilot's own bug settings, the speed
// writes and the deferred Mach writes. The aircraft is scripted: its
// autopilot follows the altitude, vertical speed, speed and Mach events the
// module sends, and the module sees it only through the fake simulator.
//
// Where the distance pass would fill distances along the route, the tests
// set them by hand from the geometry they built.
#include "cdu/keypad.h"
#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"
#include "guidance/heading_hold_aircraft.h"
#include "support/fake_panels.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

using namespace guidance_test;

namespace {
constexpr unsigned kAltitudeEvent = 0x1024C;
constexpr unsigned kVsEvent = 0x101F4;
constexpr unsigned kSpeedEvent = 0x101F5;
constexpr unsigned kMachEvent = 0x101F6;
constexpr double kRouteLongitude = -120.0;   // the test routes run due north along this meridian
constexpr double kNmPerDegree = 60.0;        // of latitude, on the module's sphere

struct Fix {
    const char* ident;
    double lat;
    double altitude = kNoAltitude;
    double speed = kNoAltitude;
    int restricted = 0;
    const char* type = "WPT";
};

void PlaceActivePlan(const std::vector<Fix>& fixes, int cruise_altitude) {
    for (size_t i = 0; i < fixes.size(); ++i) {
        PlanWaypoint& row = g_plan.ActivePlan[i];
        NewPlanRow(row);
        std::snprintf(row.Ident.data(), row.Ident.size(), "%s", fixes[i].ident);
        std::snprintf(row.WaypointType.data(), row.WaypointType.size(), "%s", fixes[i].type);
        row.Latitude = fixes[i].lat;
        row.Longitude = kRouteLongitude;
        row.Altitude = fixes[i].altitude;
        row.Speed = fixes[i].speed;
        row.Restricted = fixes[i].restricted;
    }
    PlanContext& pc = g_plan.context;
    pc.ActiveLastRow = static_cast<int>(fixes.size()) - 1;
    pc.ActiveLeg = 1;
    pc.ActiveWaypointLatitude = fixes[1].lat;
    pc.ActiveWaypointLongitude = kRouteLongitude;
    pc.NextRestrictionRow = pc.ActiveLastRow;
    pc.CruiseAltitude = cruise_altitude;
    pc.PlanState = 3;
    LnavPlanActivated();
}

// The autopilot's vertical side and speed, as the simulator's would follow
// the module's events: the altitude bug caps the climb or descent flown at
// the vertical speed bug, and the airspeed moves toward the speed bug at 1 kt
// a second unless the test holds it.
struct VerticalAircraft {
    explicit VerticalAircraft(FakeSimulator& simulator) : sim(simulator), lateral(simulator) {
        lateral.variation = 0;
        lateral.true_airspeed = lateral.ground_speed = 420;
        events_seen = sim.key_events.size();
    }

    void Publish() {
        sim.calculator["(A:INDICATED ALTITUDE, feet)"] = altitude;
        sim.calculator["(A:AUTOPILOT ALTITUDE LOCK VAR, feet)"] = ap_altitude;
        sim.tokens[Token::VERTICAL_SPEED] = vertical_speed * 1.30048;
        sim.tokens[Token::AIRSPEED] = ias;
        sim.tokens[Token::AP_SPEED] = ap_speed;
        sim.tokens[Token::AP_MACH] = ap_mach;
        sim.tokens[Token::AP_MACH_HOLD] = mach_hold;
        sim.tokens[Token::AP_SPEED_HOLD] = speed_hold;
        sim.tokens[Token::AP_VERTICAL_SPEED] = ap_vs;
    }

    void Place(double lat, double heading_true) {
        Publish();
        lateral.Place(lat, kRouteLongitude, heading_true);
        TakeEvents();
    }

    void TakeEvents() {
        for (size_t i = events_seen; i < sim.key_events.size(); ++i) {
            auto [event, value] = sim.key_events[i];
            auto signed_value = static_cast<double>(static_cast<int32_t>(value));
            if (event == kAltitudeEvent) ap_altitude = signed_value;
            if (event == kVsEvent) ap_vs = signed_value;
            if (event == kSpeedEvent) ap_speed = value;
            if (event == kMachEvent) ap_mach = value / 100.0;
            if (event == 0x1017B) mach_hold = 1;
            if (event == 0x1023E) mach_hold = 0;
            if (event == 0x10163) speed_hold = 1;
            if (event == 0x1022E) speed_hold = 0;
        }
        events_seen = sim.key_events.size();
    }

    void Tick() {
        Publish();
        lateral.Tick();
        TakeEvents();
        const double dt = 1.0 / 18.0;
        vertical_speed = 0;
        if (ap_altitude > altitude && ap_vs > 0) vertical_speed = ap_vs;
        if (ap_altitude < altitude && ap_vs < 0) vertical_speed = ap_vs;
        double next = altitude + vertical_speed / 60.0 * dt;
        if ((vertical_speed > 0 && next > ap_altitude) || (vertical_speed < 0 && next < ap_altitude)) next = ap_altitude;
        altitude = next;
        if (!hold_ias) ias += std::clamp(ap_speed - ias, -dt, dt);
    }

    void Fly(double seconds) {
        for (int i = 0; i < static_cast<int>(seconds * 18.0); ++i) Tick();
    }

    FakeSimulator& sim;
    HeadingHoldAircraft lateral;
    double altitude = 0, vertical_speed = 0, ias = 250;   // feet, ft/min, knots
    double ap_altitude = 0, ap_vs = 0, ap_speed = 250, ap_mach = 0;
    int mach_hold = 0, speed_hold = 1;
    bool hold_ias = false;                                 // the test sets the airspeed itself
    size_t events_seen = 0;
};

// Events of one kind since index `from`, in order.
std::vector<int> EventValues(const FakeSimulator& sim, unsigned event, size_t from = 0) {
    std::vector<int> out;
    for (size_t i = from; i < sim.key_events.size(); ++i)
        if (sim.key_events[i].first == event) out.push_back(static_cast<int32_t>(sim.key_events[i].second));
    return out;
}

class VnavFlight : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        g_module.SimGeneration = 10;
        g_sim.magnetic_variation = 0;
        // What the distance pass and the airport slots keep between flights.
        g_plan_distances = PlanDistanceState{};
        g_airports.DestinationAirport = AirportDetail{};
    }
    FakeSimulatorScope scope;
    FakeSimulator& sim = scope.sim;
    VerticalAircraft ac{sim};
};

// A northbound route of 30 nm legs: origin, five fixes, destination at 433 ft.
std::vector<Fix> NorthRoute() {
    return {{"KORG", 40.0, 400, kNoAltitude, 0, "APT"},
            {"FIX1", 40.5, 20000, 280},
            {"FIX2", 41.0, 35000, 280},
            {"FIX3", 41.5, 35000, 280},
            {"FIX4", 42.0, 35000, 280},
            {"FIX5", 42.5, 20000, 280},
            {"KDST", 43.0, 433, kNoAltitude, 0, "APT"}};
}
}  // namespace

// [SECTION] Engaging
TEST_F(VnavFlight, EngagesOnlyWithAnActiveLegAndClearsTheWritesAndAManualSpeedStop) {
    VnavToggle();
    EXPECT_EQ(g_vnav.VnavOn, 0);  // no plan
    PlaceActivePlan(NorthRoute(), 35000);
    g_vnav.AltSetDone = g_vnav.SpdSetDone = 1;
    g_vnav.LastIasSent = 250;
    g_config.VnavSetSpd = 2;  // a manual change had stopped the speed writes
    VnavToggle();
    EXPECT_EQ(g_vnav.VnavOn, 1);
    EXPECT_EQ(g_vnav.AltSetDone, 0);
    EXPECT_EQ(g_vnav.SpdSetDone, 0);
    EXPECT_EQ(g_vnav.LastIasSent, kVnavUnknown);
    EXPECT_EQ(g_tick.hold_vnav_speed_write, 1);
    EXPECT_EQ(g_config.VnavSetSpd, 1);
    EXPECT_EQ(g_tick.slow_refresh, 999);
    VnavToggle();
    EXPECT_EQ(g_vnav.VnavOn, 0);
    EXPECT_EQ(g_config.VnavSetSpd, 1);
}

// [SECTION] Climb
TEST_F(VnavFlight, ClimbStepsTheVerticalSpeedOnceASecondAndLevelsAtCruise) {
    PlaceActivePlan(NorthRoute(), 35000);
    ac.altitude = 31000;
    ac.ap_altitude = 31000;
    ac.Place(40.1, 0);
    VnavRestartTargets();
    g_smiths.CduPage = cdu_page::kEconClb;
    size_t from = sim.key_events.size();
    VnavToggle();
    // The first tick writes the cruise altitude (no restriction below it ahead).
    ac.Tick();
    std::vector<int> altitudes = EventValues(sim, kAltitudeEvent, from);
    ASSERT_EQ(altitudes.size(), 1u);
    EXPECT_EQ(altitudes[0], 35000);
    // Climb: the command starts at the lowest rate and grows 100 ft/min for
    // each second, up to the highest.
    int last_tick_sent = -100;
    std::vector<int> rates = EventValues(sim, kVsEvent, from);
    for (int i = 0; i < 18 * 14; ++i) {
        size_t before = sim.key_events.size();
        ac.Tick();
        std::vector<int> now = EventValues(sim, kVsEvent, before);
        if (now.empty()) continue;
        ASSERT_EQ(now.size(), 1u);
        EXPECT_GE(i - last_tick_sent, 18) << "a climb rate more often than once a second";
        EXPECT_EQ(g_tick.phase, 0);
        last_tick_sent = i;
        rates.push_back(now[0]);
    }
    ASSERT_GE(rates.size(), 11u);
    EXPECT_EQ(rates[0], 1500);
    for (size_t i = 1; i < rates.size(); ++i) {
        EXPECT_GE(rates[i], 1500);
        EXPECT_LE(rates[i], 2500);
        if (rates[i - 1] < 2500) {
            EXPECT_EQ(rates[i], rates[i - 1] + 100);
        }
    }
    EXPECT_EQ(rates.back(), 2500);
    // 160 ft below cruise is still climb; 140 ft below is cruise.
    ac.altitude = 34840;
    ac.ap_vs = 0;
    ac.Fly(1);
    EXPECT_EQ(g_vnav.CruiseReached, 0);
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kEconClb);
    from = sim.key_events.size();
    ac.altitude = 34860;
    ac.Tick();
    EXPECT_EQ(g_vnav.CruiseReached, 1);
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kEconCrz);
    // The cruise speed goes out at the level-off, as IAS.
    EXPECT_EQ(EventValues(sim, kSpeedEvent, from), std::vector<int>{g_profile.CruiseIas});
    EXPECT_EQ(g_vnav.LastIasSent, g_profile.CruiseIas);
    EXPECT_EQ(g_vnav.DescentStartAltitude, 35000);
}

TEST_F(VnavFlight, CruiseMachGoesOutOnTwoTicksAfterTheHoldChange) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_profile.VnavSetMachCruiseSpd = 1;
    g_config.CruiseMach = 0.785;
    ac.altitude = ac.ap_altitude = 34000;
    ac.Place(40.1, 0);
    VnavRestartTargets();
    VnavToggle();
    ac.Fly(1);
    size_t from = sim.key_events.size();
    ac.altitude = 34900;
    ac.Tick();
    ASSERT_EQ(g_vnav.CruiseReached, 1);
    // Speed hold off, Mach hold on in the tick of the level-off ...
    ASSERT_GE(sim.key_events.size(), from + 2);
    EXPECT_EQ(sim.key_events[from].first, 0x1022Eu);
    EXPECT_EQ(sim.key_events[from + 1].first, 0x1017Bu);
    EXPECT_TRUE(EventValues(sim, kMachEvent, from).empty());
    // ... and the Mach on each of the next two ticks, then no more.
    ac.Tick();
    EXPECT_EQ(EventValues(sim, kMachEvent, from), std::vector<int>{78});
    ac.Tick();
    EXPECT_EQ(EventValues(sim, kMachEvent, from), (std::vector<int>{78, 78}));
    ac.Fly(2);
    EXPECT_EQ(EventValues(sim, kMachEvent, from).size(), 2u);
    EXPECT_EQ(ac.mach_hold, 1);
    EXPECT_EQ(g_vnav.LastMachSent, 78);
    EXPECT_EQ(EventValues(sim, kSpeedEvent, from).size(), 0u);
}

TEST_F(VnavFlight, LowSpeedGuardHoldsTheClimbLevelUntilTheSpeedIsBack) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_vnav.VnavOn = 1;
    g_vnav.AltSetDone = 1;
    g_vnav.TargetAltitude = 35000;
    g_vnav.TargetDistance = 100;
    g_sim.indicated_altitude.now = 20000;
    g_sim.ground_speed = 300;
    g_sim.vertical_speed.now = 2000;
    g_tick.phase = 0;
    g_tick.speed_trend = 0.01;
    // Healthy speed: 15000 ft in 20 minutes is 750 ft/min, held up to 1500.
    g_sim.ias_smoothed = 170;
    VnavCommand();
    EXPECT_NEAR(g_vnav.RequiredVs, 750, 1e-9);
    EXPECT_EQ(g_vnav.LastVsSent, 1500);
    // Below 155 the climb stops, and stays stopped up to 165 kt.
    std::vector<std::pair<double, int>> steps = {{154, 0}, {158, 0}, {165, 0}, {165.5, 1500}, {160, 1500}};
    for (auto [ias, expected] : steps) {
        g_sim.ias_smoothed = ias;
        VnavCommand();
        EXPECT_EQ(g_vnav.CommandedVs, expected) << "at " << ias << " kt";
        EXPECT_EQ(g_vnav.LastVsSent, expected) << "at " << ias << " kt";
    }
    EXPECT_EQ(g_vnav.LowSpeedGuard, 0);
    // Short of speed with a falling trend: the present rate less 100.
    g_sim.ias_smoothed = 182;
    g_sim.autopilot_airspeed.now = 250;
    g_tick.speed_trend = -0.02;
    g_sim.vertical_speed.now = 2260;
    VnavCommand();
    EXPECT_NEAR(g_vnav.RequiredVs, 2160, 1e-9);
    EXPECT_EQ(g_vnav.CommandedVs, 2100);
    // Outside phase 0 nothing is sent, though the command changes.
    g_tick.phase = 5;
    g_sim.vertical_speed.now = 1800;
    VnavCommand();
    EXPECT_EQ(g_vnav.CommandedVs, 1700);
    EXPECT_EQ(g_vnav.LastVsSent, 2100);
}

// [SECTION] Descent
TEST_F(VnavFlight, DescentRateIsHeightOverTimeToGoWithinTheLimits) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_vnav.VnavOn = 1;
    g_vnav.AltSetDone = 1;
    g_vnav.CruiseReached = 1;
    g_vnav.DescentActive = 1;
    g_vnav.TargetAltitude = 10000;
    g_sim.ground_speed = 300;  // 5 nm a minute
    g_sim.ias_smoothed = 250;
    size_t from = sim.key_events.size();
    // 12300 ft over 50 nm is 10 minutes: 1230 ft/min, raised to the least rate.
    g_sim.indicated_altitude.now = 22300;
    g_vnav.TargetDistance = 50;
    VnavCommand();
    EXPECT_NEAR(g_vnav.RequiredVs, 1230, 1e-9);
    EXPECT_EQ(g_vnav.CommandedVs, 1500);
    // 17750 ft over 25 nm is 5 minutes: 3550 ft/min, held to the most.
    g_sim.indicated_altitude.now = 27750;
    g_vnav.TargetDistance = 25;
    VnavCommand();
    EXPECT_NEAR(g_vnav.RequiredVs, 3550, 1e-9);
    // 2580 ft/min steps down to 2500.
    g_sim.indicated_altitude.now = 22900;
    VnavCommand();
    // Too slow: level.
    g_sim.ias_smoothed = 154;
    VnavCommand();
    // The same command again sends nothing: any tick may send, but only a change.
    VnavCommand();
    EXPECT_EQ(EventValues(sim, kVsEvent, from), (std::vector<int>{-1500, -3000, -2500, 0}));
    // No ground speed: the limits still hold.
    g_sim.ias_smoothed = 250;
    g_sim.ground_speed = 0;
    VnavCommand();
    EXPECT_EQ(g_vnav.LastVsSent, -3000);
    // Below the target, no descent command; VNAV off keeps the rate for the pages.
    g_sim.ground_speed = 300;
    g_sim.indicated_altitude.now = 9000;
    size_t count = sim.key_events.size();
    VnavCommand();
    EXPECT_EQ(sim.key_events.size(), count);
    g_vnav.VnavOn = 0;
    g_sim.indicated_altitude.now = 16000;
    g_vnav.TargetDistance = 30;
    VnavCommand();
    EXPECT_NEAR(g_vnav.RequiredVs, 1000, 1e-9);
    EXPECT_EQ(sim.key_events.size(), count);
}

TEST_F(VnavFlight, TopOfDescentLiesTheDescentDistanceBackFromTheEndOfTheDescent) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_profile.DescentTas = 360;  // 6 nm a minute
    g_plan_distances.DescentRateInUse = 2000;
    g_vnav.CruiseReached = 1;
    g_sim.indicated_altitude.now = 35000;
    g_sim.latitude = 40.2;
    g_sim.longitude = kRouteLongitude;
    // No restriction: to the destination at 433 ft, (35000 - 433) / 2000 x 6 nm.
    RecomputeTopOfDescent(0);
    double descent = (35000.0 - 433.0) / 2000.0 * 6.0;
    EXPECT_NEAR(g_vnav.TopOfDescentLatitude, 43.0 - descent / kNmPerDegree, 1e-6);
    EXPECT_NEAR(g_vnav.TopOfDescentLongitude, kRouteLongitude, 1e-9);
    EXPECT_EQ(g_vnav.DescentStartAltitude, 35000);
    // A restriction at FIX4 (12000 ft) below the level ends the descent there.
    g_plan.ActivePlan[4].Altitude = 12000;
    g_plan.ActivePlan[4].Restricted = 1;
    g_plan.ActivePlan[3].Altitude = kNoAltitude;
    g_plan.ActivePlan[2].Altitude = kNoAltitude;
    RecomputeTopOfDescent(0);
    descent = (35000.0 - 12000.0) / 2000.0 * 6.0;
    EXPECT_NEAR(g_vnav.TopOfDescentLatitude, 42.0 - descent / kNmPerDegree, 1e-6);
    // Longer than the route ahead: on back past the active row, toward the aircraft.
    g_sim.indicated_altitude.now = 60000;
    RecomputeTopOfDescent(0);
    descent = (60000.0 - 12000.0) / 2000.0 * 6.0;  // 144 nm, 90 of them from FIX1 to FIX4
    EXPECT_NEAR(g_vnav.TopOfDescentLatitude, 42.0 - descent / kNmPerDegree, 1e-6);
}

TEST_F(VnavFlight, AtTopOfDescentTheBugsGoToTheTargetAndTheDescentSpeed) {
    std::vector<Fix> route = NorthRoute();
    route[5] = {"FIX5", 42.5, 12000, 250, 1};
    PlaceActivePlan(route, 35000);
    g_profile.DescentTas = 360;
    g_profile.DescentIas = 270;
    g_config.AutoSetLOCFreq = 1;
    SetText(g_plan.context.Selections.ArrivalRunway, "21");
    AirportDetail& destination = g_airports.DestinationAirport;
    destination.RunwayCount = 2;
    SetText(destination.Runways[1].Ident, "03");
    SetText(destination.Runways[1].IlsFrequency, "111.10");
    SetText(destination.Runways[2].Ident, "21");
    SetText(destination.Runways[2].IlsFrequency, "109.50");
    g_plan.context.ActiveLeg = 4;
    g_plan.context.ActiveWaypointLatitude = 42.0;
    g_plan.context.NextRestrictionRow = 5;
    ac.altitude = ac.ap_altitude = 35000;
    ac.ias = ac.ap_speed = 280;
    ac.Place(40.9, 0);
    g_vnav.CruiseReached = 1;
    g_smiths.CduPage = cdu_page::kEconCrz;
    RecomputeTopOfDescent(0);
    // T/D (35000 - 12000) / 1800 x 6 nm before FIX5, at the default rate.
    double descent = (35000.0 - 12000.0) / 1800.0 * 6.0;
    ASSERT_NEAR(g_vnav.TopOfDescentLatitude, 42.5 - descent / kNmPerDegree, 1e-6);
    VnavToggle();
    g_lnav.LnavOn = 1;
    ac.Fly(1);
    ASSERT_EQ(g_vnav.DescentActive, 0);
    // Fly to it: 420 kt is 7 nm a minute.
    size_t from = sim.key_events.size();
    double to_go = (g_vnav.TopOfDescentLatitude - ac.lateral.lat) * kNmPerDegree;
    int ticks = 0;
    while (g_vnav.DescentActive == 0 && ticks < 18 * 600) {
        ac.Tick();
        ++ticks;
    }
    ASSERT_EQ(g_vnav.DescentActive, 1);
    // Within 1.5 nm of it, not before.
    double left = (g_vnav.TopOfDescentLatitude - ac.lateral.lat) * kNmPerDegree;
    EXPECT_LE(left, 1.5 + 420.0 / 3600 / 18 * 2);
    EXPECT_GT(left, 1.0);
    EXPECT_NEAR(ticks / 18.0 / 60.0 * 7.0, to_go - 1.5, 0.05);
    EXPECT_EQ(g_vnav.DescentSpeedPhase, 1);
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kEconPathDes);
    EXPECT_EQ(g_vnav.TargetAltitude, 12000);
    EXPECT_NEAR(g_vnav.PathToTarget, descent, 0.01);
    EXPECT_EQ(EventValues(sim, kAltitudeEvent, from), std::vector<int>{12000});
    // 25 nm or more to FIX4: the descent speed goes out at once.
    EXPECT_EQ(EventValues(sim, kSpeedEvent, from), std::vector<int>{270});
    // The ILS of the arrival runway, its decimals kept.
    EXPECT_EQ(EventValues(sim, 0x100AC, from), std::vector<int>{0x10950});
    EXPECT_EQ(g_vnav.tod_passed, 1);
    // The autopilot now descends by the rule, each change sent.
    ac.Fly(2);
    ASSERT_FALSE(EventValues(sim, kVsEvent, from).empty());
    EXPECT_LT(ac.vertical_speed, 0);
    EXPECT_LT(ac.altitude, 35000);
}

TEST_F(VnavFlight, PassingTopOfDescentAbeamStartsTheDescentByTheRouteLeftToFly) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_plan.context.ActiveLeg = 5;
    g_plan.context.ActiveWaypointLatitude = 42.5;
    // T/D at 42.0 N on the route, 60 nm from KDST; the aircraft passes 3 nm east of it.
    g_vnav.TopOfDescentLatitude = 42.0;
    g_vnav.TopOfDescentLongitude = kRouteLongitude;
    g_vnav.CruiseReached = 1;
    VnavToggle();
    g_lnav.LnavOn = 1;
    g_plan_distances.TdFromDest = 60;
    double east = kRouteLongitude + 3.0 / (kNmPerDegree * std::cos(42.0 * kDegToRad));
    ac.altitude = ac.ap_altitude = 35000;
    ac.lateral.follow_bug = false;
    // Before T/D: more route to go than T/D has, nothing happens.
    g_plan_distances.DistToGo = 61;
    ac.Publish();
    ac.lateral.Place(41.98, east, 0);
    ac.Fly(0.5);
    EXPECT_EQ(g_vnav.DescentActive, 0);
    // Abeam and a little past: less route is left to fly than T/D had.
    ac.lateral.Place(42.01, east, 0);
    g_plan_distances.DistToGo = 59.4;
    ac.Tick();
    EXPECT_EQ(g_vnav.DescentActive, 1);
    EXPECT_EQ(g_vnav.TargetAltitude, 433);
    EXPECT_EQ(g_vnav.tod_passed, 1);
}

TEST_F(VnavFlight, PassedTopOfDescentWritesOnlyWithTheDestinationAheadAlongTheLeg) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_profile.DescentIas = 270;
    g_plan.context.ActiveLeg = 5;
    g_plan.context.ActiveWaypointLatitude = 42.5;
    g_vnav.TopOfDescentLatitude = 42.0;
    g_vnav.TopOfDescentLongitude = kRouteLongitude;
    g_vnav.CruiseReached = 1;
    g_vnav.VnavOn = 1;
    g_vnav.AltSetDone = g_vnav.SpdSetDone = 1;
    g_lnav.LegCourse = 360;
    g_sim.indicated_altitude.now = 35000;
    g_sim.ias_smoothed = 280;
    auto place = [](double lat, double west_nm) {
        g_sim.latitude = lat;
        g_sim.longitude = kRouteLongitude - west_nm / (kNmPerDegree * std::cos(lat * kDegToRad));
        double bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, 42.5, kRouteLongitude, g_lnav.DistToActive, bearing);
        g_plan_distances.DistToGo = g_lnav.DistToActive + 30;
        g_plan_distances.TdFromDest = 60;
    };
    // 40 nm west of the route, a little past T/D: the destination lies 34
    // degrees off the leg. No T/D writes (the distance pass alone may still
    // call it a descent).
    place(42.05, 40);
    VnavVerticalSteps();
    EXPECT_TRUE(EventValues(sim, kAltitudeEvent).empty());
    EXPECT_TRUE(EventValues(sim, kSpeedEvent).empty());
    // 5 nm west, the destination 5 degrees off: the descent starts, with its writes.
    g_vnav.DescentActive = 0;
    place(42.05, 5);
    VnavVerticalSteps();
    EXPECT_EQ(g_vnav.DescentActive, 1);
    EXPECT_EQ(g_vnav.DescentSpeedPhase, 1);
    EXPECT_EQ(EventValues(sim, kAltitudeEvent), std::vector<int>{433});
    EXPECT_EQ(EventValues(sim, kSpeedEvent), std::vector<int>{270});
}

TEST_F(VnavFlight, AWaypointPassedAbeamNearTopOfDescentStartsTheDescentAtOnce) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_vnav.TopOfDescentLatitude = 42.1;
    g_vnav.TopOfDescentLongitude = kRouteLongitude;
    g_vnav.CruiseReached = 1;
    g_plan.context.ActiveLeg = 4;
    g_sim.latitude = 42.0;  // 6 nm before T/D
    g_sim.longitude = kRouteLongitude + 0.05;
    VnavVerticalSteps();
    EXPECT_EQ(g_vnav.DescentActive, 0);
    VnavWaypointPassedAbeam();
    EXPECT_EQ(g_vnav.TdCheck, 1);
    VnavVerticalSteps();
    EXPECT_EQ(g_vnav.DescentActive, 1);
    EXPECT_EQ(g_vnav.TdCheck, 0);
    // In climb no T/D check is raised.
    g_vnav = VnavState{};
    VnavWaypointPassedAbeam();
    EXPECT_EQ(g_vnav.TdCheck, 0);
}

// [SECTION] Restrictions
TEST_F(VnavFlight, ARestrictionInTheClimbIsTheTargetAndTheDestinationIsCrossed200FtAbove) {
    std::vector<Fix> route = NorthRoute();
    route[2] = {"FIX2", 41.0, 10000, 250, 1};
    PlaceActivePlan(route, 35000);
    g_sim.latitude = 40.45;
    g_sim.longitude = kRouteLongitude;
    g_sim.indicated_altitude.now = 8000;
    g_vnav.VnavOn = 1;
    g_plan_distances.TcDistFromOrigin = 90;
    SelectVerticalTarget();
    EXPECT_EQ(g_plan.context.NextRestrictionRow, 2);
    EXPECT_EQ(g_vnav.TargetAltitude, 10000);
    EXPECT_DOUBLE_EQ(g_vnav.TargetLatitude, 41.0);
    // FIX2 lies 60 nm from the origin, before T/C at 90 nm: T/C moves onto it.
    EXPECT_DOUBLE_EQ(g_vnav.TopOfClimbLatitude, 41.0);
    EXPECT_EQ(g_vnav.AltSetDone, 0);
    EXPECT_EQ(g_vnav.SpdSetDone, 0);
    VnavCommand();
    EXPECT_EQ(EventValues(sim, kAltitudeEvent), std::vector<int>{10000});
    // Descending to the destination: its elevation and 200 ft.
    g_vnav.CruiseReached = 1;
    g_vnav.DescentActive = 1;
    g_plan.context.ActiveLeg = 5;
    SelectVerticalTarget();
    EXPECT_EQ(g_plan.context.NextRestrictionRow, 6);
    EXPECT_EQ(g_vnav.TargetAltitude, 633);
    EXPECT_EQ(g_vnav.AltSetDone, 0);
    // With VNAV off, the elevation alone.
    g_vnav.VnavOn = 0;
    SelectVerticalTarget();
    EXPECT_EQ(g_vnav.TargetAltitude, 433);
    // In cruise the target is T/D at cruise altitude, and the altitude is not written again.
    g_vnav.DescentActive = 0;
    g_vnav.VnavOn = 1;
    g_vnav.TopOfDescentLatitude = 42.2;
    SelectVerticalTarget();
    EXPECT_EQ(g_vnav.TargetAltitude, 35000);
    EXPECT_DOUBLE_EQ(g_vnav.TargetLatitude, 42.2);
    EXPECT_EQ(g_vnav.AltSetDone, 1);
}

TEST_F(VnavFlight, ClimbWithoutRestrictionsPutsTopOfClimbWhereTheClimbEnds) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_profile.ClimbRate = 2000;
    g_profile.ClimbTas = 300;  // 5 nm a minute
    g_sim.latitude = 40.1;
    g_sim.longitude = kRouteLongitude;
    g_sim.indicated_altitude.now = 5000;
    // 30000 ft at 2000 ft/min: 15 minutes, 75 nm along the route from the aircraft.
    int row = FindClimbTarget(0);
    EXPECT_NEAR(g_vnav.TopOfClimbLatitude, 40.1 + 75.0 / kNmPerDegree, 1e-6);
    EXPECT_EQ(row, 3);  // on the leg from FIX2 (41.0) to FIX3 (41.5)
    EXPECT_DOUBLE_EQ(g_vnav.TargetLatitude, g_vnav.TopOfClimbLatitude);
}

TEST_F(VnavFlight, ARestrictedRowReachedInDescentIsALevelSegment) {
    std::vector<Fix> route = NorthRoute();
    route[4] = {"FIX4", 42.0, 12000, 250, 1};
    route[5] = {"FIX5", 42.5, kNoAltitude, kNoAltitude};
    PlaceActivePlan(route, 35000);
    g_profile.DescentTas = 300;
    g_plan_distances.DescentRateInUse = 1500;
    g_plan.context.ActiveLeg = 4;
    g_plan.context.ActiveWaypointLatitude = 42.0;
    g_plan.context.NextRestrictionRow = 4;
    g_vnav.CruiseReached = 1;
    g_vnav.DescentActive = 1;
    g_vnav.DescentSpeedPhase = 1;
    g_vnav.TopOfDescentLatitude = 41.0;
    g_vnav.TopOfDescentLongitude = kRouteLongitude;
    g_smiths.CduPage = cdu_page::kEconPathDes;
    ac.altitude = ac.ap_altitude = 12000;
    ac.Place(41.9, 0);
    g_lnav.LnavOn = 1;
    VnavToggle();
    // Fly through FIX4 with LNAV on: it sequences, and the row's altitude is the new level.
    int ticks = 0;
    while (g_plan.context.ActiveLeg == 4 && ticks < 18 * 120) {
        ac.Tick();
        ++ticks;
    }
    ASSERT_EQ(g_plan.context.ActiveLeg, 5);
    EXPECT_EQ(g_plan.context.CruiseAltitude, 12000);
    EXPECT_EQ(g_vnav.DescentActive, 0);
    EXPECT_EQ(g_vnav.DescentStartAltitude, 12000);
    // The page stays the descent page: the descent speeds are in force.
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kEconPathDes);
    // The next T/D: (12000 - 433) / 1500 x 5 = 38.6 nm before KDST, past FIX4.
    double descent = (12000.0 - 433.0) / 1500.0 * 5.0;
    EXPECT_NEAR(g_vnav.TopOfDescentLatitude, 43.0 - descent / kNmPerDegree, 1e-6);
    EXPECT_GT(g_vnav.TopOfDescentLatitude, 42.0);
    // Without descent speeds, the page goes back to cruise.
    g_vnav.DescentActive = 1;
    g_vnav.DescentSpeedPhase = 0;
    g_plan.context.ActiveLeg = 4;
    RecomputeTopOfDescent(1);
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kEconCrz);
}

// [SECTION] The pilot's own settings
TEST_F(VnavFlight, APilotsAltitudeIsNotFoughtAndDropsVnavWhenTheOptionSaysSo) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_config.VnavOffOnManAltChg = 1;
    ac.altitude = ac.ap_altitude = 31000;
    ac.Place(40.1, 0);
    VnavRestartTargets();
    VnavToggle();
    // VNAV's own write and the seconds after it are no pilot's change,
    // whichever phase of the second it fell in.
    for (int shift = 0; shift < 18; ++shift) {
        g_vnav.TargetAltitude = shift % 2 == 0 ? 34000 : 35000;
        g_vnav.AltSetDone = 0;
        ac.Fly(3);
        ASSERT_EQ(ac.ap_altitude, g_vnav.TargetAltitude);
        ASSERT_EQ(g_vnav.VnavOn, 1) << "dropped after its own write, shift " << shift;
        ac.Tick();
    }
    EXPECT_EQ(g_vnav.LastAltSeen, 35000);
    // The pilot sets 33000: VNAV drops within a second or so.
    ac.ap_altitude = 33000;
    ac.Fly(1);
    EXPECT_EQ(g_vnav.VnavOn, 0);
}

TEST_F(VnavFlight, APilotsAltitudeStandsUntilTheNextSegmentWithoutTheOption) {
    PlaceActivePlan(NorthRoute(), 35000);
    ac.altitude = ac.ap_altitude = 31000;
    ac.Place(40.1, 0);
    VnavRestartTargets();
    VnavToggle();
    ac.Fly(2);
    size_t from = sim.key_events.size();
    ac.ap_altitude = 33000;
    ac.Fly(5);
    EXPECT_EQ(g_vnav.VnavOn, 1);
    EXPECT_TRUE(EventValues(sim, kAltitudeEvent, from).empty());
    EXPECT_EQ(g_vnav.LastAltSeen, 33000);  // recognised
    EXPECT_EQ(ac.ap_altitude, 33000);
    // The next segment writes the target again.
    g_lnav.LnavOn = 1;
    SelectVerticalTarget();
    ac.Tick();
    EXPECT_EQ(EventValues(sim, kAltitudeEvent, from), std::vector<int>{35000});
    // The same segment asked for again, the bug reading it: nothing more is sent.
    ac.Fly(1);
    SelectVerticalTarget();
    ac.Fly(1);
    EXPECT_EQ(EventValues(sim, kAltitudeEvent, from), std::vector<int>{35000});
    EXPECT_EQ(g_vnav.AltSetDone, 1);
}

TEST_F(VnavFlight, APilotsSpeedStopsTheSpeedWritesUntilVnavIsEngagedAgain) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_config.VnavSetSpdOffOnManSpdChg = 1;
    g_profile.ClimbIas = 290;
    ac.altitude = ac.ap_altitude = 20000;
    ac.Place(40.4, 0);  // 6 nm from FIX1
    VnavRestartTargets();
    VnavToggle();
    ac.Fly(2);
    EXPECT_EQ(EventValues(sim, kSpeedEvent), std::vector<int>{290});
    EXPECT_EQ(g_config.VnavSetSpd, 1);
    // The pilot's 300 kt: the writes stop, and a new segment doesn't write.
    ac.ap_speed = 300;
    ac.Fly(1);
    EXPECT_EQ(g_config.VnavSetSpd, 2);
    g_vnav.SpdSetDone = 0;
    ac.Fly(1);
    EXPECT_EQ(EventValues(sim, kSpeedEvent), std::vector<int>{290});
    // Off and on again: speed writes come back.
    VnavToggle();
    VnavToggle();
    EXPECT_EQ(g_config.VnavSetSpd, 1);
    ac.Fly(1);
    EXPECT_EQ(EventValues(sim, kSpeedEvent), (std::vector<int>{290, 290}));
}

// [SECTION] Speeds
TEST_F(VnavFlight, SpeedSetterByPhaseAndRestriction) {
    PlaceActivePlan(NorthRoute(), 35000);
    AircraftProfile& p = g_profile;
    p.ClimbIas = 290;
    p.ClbSpdRest = 250;
    p.ClbAltRest = 10000;
    p.DescentIas = 280;
    p.DescSpdRest = 240;
    p.DescAltRest = 10000;
    p.CruiseIas = 300;
    g_vnav.VnavOn = 1;
    g_lnav.DistToActive = 10;
    auto speed_at = [&](double altitude) {
        g_vnav.SpdSetDone = 0;
        g_sim.indicated_altitude.now = altitude;
        size_t from = sim.key_events.size();
        VnavSetSpeed();
        std::vector<int> sent = EventValues(sim, kSpeedEvent, from);
        return sent.empty() ? -1 : sent.back();
    };
    // Climb: the restriction below its altitude, with the lift pending.
    EXPECT_EQ(speed_at(8000), 250);
    EXPECT_EQ(g_vnav.ClimbRestPending, 1.0);
    EXPECT_EQ(speed_at(12000), 290);
    // A restricted row's own speed, unless the climb restriction is lower.
    g_plan.ActivePlan[1].Restricted = 1;
    g_plan.ActivePlan[1].Speed = 230;
    EXPECT_EQ(speed_at(8000), 230);
    g_plan.ActivePlan[1].Speed = 270;
    EXPECT_EQ(speed_at(8000), 250);
    EXPECT_EQ(speed_at(12000), 270);
    // Cruise: the restriction close ahead, else the cruise speed.
    g_vnav.CruiseReached = 1;
    g_plan.context.NextRestrictionRow = 1;
    EXPECT_EQ(speed_at(35000), 270);
    g_plan.ActivePlan[1].Restricted = 0;
    EXPECT_EQ(speed_at(35000), 300);
    // Descent: the descent speed, the restriction below its altitude; a
    // restricted row's slower speed becomes the descent and cruise speed.
    g_vnav.DescentSpeedPhase = 1;
    EXPECT_EQ(speed_at(20000), 280);
    EXPECT_EQ(speed_at(9000), 240);
    g_plan.ActivePlan[1].Restricted = 1;
    g_plan.ActivePlan[1].Speed = 260;
    EXPECT_EQ(speed_at(20000), 260);
    EXPECT_EQ(p.DescentIas, 260);
    EXPECT_EQ(p.CruiseIas, 260);
    // Far from the waypoint, or a row without predictions: nothing.
    g_lnav.DistToActive = 30;
    EXPECT_EQ(speed_at(20000), -1);
    g_lnav.DistToActive = 10;
    g_plan.ActivePlan[1].Speed = kNoAltitude;
    EXPECT_EQ(speed_at(20000), -1);
    EXPECT_EQ(g_vnav.SpdSetDone, 0);
}

TEST_F(VnavFlight, SpeedRestrictionsOfClimbAndDescentEndAndBeginByAltitude) {
    PlaceActivePlan(NorthRoute(), 35000);
    AircraftProfile& p = g_profile;
    p.ClimbIas = 290;
    p.ClbAltRest = 10000;
    p.DescSpdRest = 240;
    p.DescAltRest = 10000;
    g_vnav.VnavOn = 1;
    g_vnav.AltSetDone = g_vnav.SpdSetDone = 1;
    g_lnav.DistToActive = 50;
    g_vnav.ClimbRestPending = 1.0;
    g_sim.indicated_altitude.now = 9990;
    VnavVerticalSteps();
    EXPECT_TRUE(EventValues(sim, kSpeedEvent).empty());
    g_sim.indicated_altitude.now = 10010;
    VnavVerticalSteps();
    EXPECT_EQ(EventValues(sim, kSpeedEvent), std::vector<int>{290});
    EXPECT_EQ(g_vnav.ClimbRestPending, 0);
    // Descending through 10000 ft with the bug above 240: once.
    g_vnav.CruiseReached = 1;
    g_vnav.DescentActive = 1;
    g_vnav.DescentSpeedPhase = 1;
    g_sim.autopilot_airspeed.now = 280;
    g_sim.indicated_altitude.now = 9900;
    g_vnav.TargetAltitude = 3000;
    VnavVerticalSteps();
    VnavVerticalSteps();
    EXPECT_EQ(EventValues(sim, kSpeedEvent), (std::vector<int>{290, 240}));
}

// [SECTION] End of the plan and plan changes
TEST_F(VnavFlight, VnavGoesOffAtTheLastWaypointInCruiseWithTheOption) {
    PlaceActivePlan(NorthRoute(), 35000);
    g_vnav.VnavOn = 1;
    VnavAtLastWaypoint();
    EXPECT_EQ(g_vnav.VnavOn, 1);  // option off
    g_config.VnavOffAtLastWpt = 1;
    VnavAtLastWaypoint();
    EXPECT_EQ(g_vnav.VnavOn, 1);  // still climbing
    g_vnav.CruiseReached = 1;
    VnavAtLastWaypoint();
    EXPECT_EQ(g_vnav.VnavOn, 0);
}

TEST_F(VnavFlight, ExecutingAModificationRestartsTheTargetsAndTheWrites) {
    std::vector<Fix> route = NorthRoute();
    route[1] = {"FIX1", 40.5, 15000, 250, 1};
    PlaceActivePlan(route, 25000);
    g_sim.latitude = 40.1;
    g_sim.longitude = kRouteLongitude;
    g_sim.indicated_altitude.now = 9000;
    g_vnav.VnavOn = 1;
    g_vnav.AltSetDone = g_vnav.SpdSetDone = 1;
    g_vnav.LastAltSeen = 12000;
    g_config.VnavSetSpd = 2;
    BeginModification();
    g_plan.context.PlanState = 4;
    PlanExecute();
    EXPECT_EQ(g_plan.context.PlanState, 3);
    // The restriction at FIX1, the active row, comes before the end of the
    // climb that is looked for from the row after: it is the target.
    EXPECT_EQ(g_plan.context.NextRestrictionRow, 1);
    EXPECT_EQ(g_vnav.TargetAltitude, 15000);
    EXPECT_DOUBLE_EQ(g_vnav.TargetLatitude, 40.5);
    EXPECT_EQ(g_vnav.AltSetDone, 0);
    EXPECT_EQ(g_vnav.SpdSetDone, 0);
    EXPECT_EQ(g_vnav.LastAltSeen, kVnavUnknown);
    EXPECT_EQ(g_config.VnavSetSpd, 1);
    // T/D was put on the plan, from cruise altitude, past T/C.
    EXPECT_EQ(g_vnav.DescentStartAltitude, 25000);
    double td_high = g_vnav.TopOfDescentLatitude;
    EXPECT_GT(td_high, g_vnav.TopOfClimbLatitude);
    EXPECT_GT(td_high, 41.0);
    EXPECT_LT(td_high, 43.0);
    // ERASE of a new cruise altitude puts T/D back where the old one had it:
    // 4000 ft less to lose is that much less descent.
    g_plan.context.Undo.CruiseAltitude = 21000;
    g_plan.context.PlanState = 4;
    PlanErase();
    EXPECT_EQ(g_plan.context.CruiseAltitude, 21000);
    EXPECT_EQ(g_vnav.DescentStartAltitude, 21000);
    double shorter = 4000.0 / g_plan_distances.DescentRateInUse * (g_profile.DescentTas / 60.0);
    EXPECT_NEAR(g_vnav.TopOfDescentLatitude, td_high + shorter / kNmPerDegree, 1e-6);
    // A new plan: everything but the switch starts over.
    g_vnav.DescentActive = 1;
    g_vnav.DescentSpeedPhase = 1;
    g_tick.mach_write_pending = 2;
    ResetVnavForNewPlan();
    EXPECT_EQ(g_vnav.VnavOn, 1);
    EXPECT_EQ(g_vnav.DescentActive, 0);
    EXPECT_EQ(g_vnav.DescentSpeedPhase, 0);
    EXPECT_EQ(g_tick.mach_write_pending, 0);
}
