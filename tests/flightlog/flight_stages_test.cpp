// flight_stages_test.cpp: the stage machine step by step, with the samples
// set by hand and the flight clock moved by the test: which stage each test
// reaches, which steps write a line and what the line says.
#include "flightlog/flight_log_rig.h"

#include "frame/diagnostic_log.h"

#include <string>

namespace flightlog_test {
namespace {

class FlightStages : public FlightLogRig {
protected:
    static void Set(double gs, double vs = 0, double radio = 0, double alt = 0) {
        g_sim.ground_speed = gs;
        g_sim.vertical_speed.now = vs;
        g_sim.radio_altitude = radio;
        g_sim.indicated_altitude.now = alt;
    }
    static void At(double clock, int mode = kFlightLogTick) {
        g_tick.flight_seconds = clock;
        FlightLogStep(mode);
    }
    static int Stage() { return g_flight_log.flight_stage; }
    // Entry lines of fpl.log (the five head lines left out).
    std::vector<std::string> Entries() const {
        std::vector<std::string> lines = Lines("orb/FlightLog/fpl.log");
        if (lines.size() <= 5) return {};
        return std::vector<std::string>(lines.begin() + 5, lines.end());
    }
    static std::string SegmentOf(const std::string& line) { return line.size() > 20 ? line.substr(9, 10) : ""; }
    static std::string WaypointOf(const std::string& line) { return line.size() > 27 ? line.substr(20, 6) : ""; }
    // Taxiing out of a flight started on the ground.
    void ToTaxi() {
        Set(0);
        StartNewFlight();
        Set(15);
        At(1);
        ASSERT_EQ(Stage(), kFlightStageTaxi);
    }
    // Airborne and level: Takeoff, Climb, then Cruise at the clock given.
    void ToCruise(double level_at) {
        ToTaxi();
        Set(150, 300, 60, 500);
        At(10);
        Set(200, 2500, 500, 1500);
        At(11);
        Set(300, 0, 2500, 10000);
        At(level_at);
        ASSERT_EQ(Stage(), kFlightStageCruise);
    }
};

TEST_F(FlightStages, TakeOffRollStaysTaxiUntilTheWheelsAreUpAndARejectedTakeOffStaysTaxi) {
    g_sim.zulu_hour = 9;
    g_sim.zulu_minute = 5;
    Set(0);
    StartNewFlight();
    EXPECT_EQ(Stage(), kFlightStageInitLoad);
    EXPECT_EQ(g_tick.flight_seconds, 0);
    Set(3);
    At(1);
    EXPECT_EQ(Stage(), kFlightStagePushBack);
    Set(15);
    At(2);
    EXPECT_EQ(Stage(), kFlightStageTaxi);
    ASSERT_EQ(Entries().size(), 3u);

    // A roll at 70 knots, then 140, on the runway: still a taxi, no line.
    for (int t = 3; t < 20; ++t) {
        Set(t < 10 ? 70 : 140, 0, 0);
        At(t);
    }
    EXPECT_EQ(Stage(), kFlightStageTaxi);
    // Rejected: back to a stop; nothing goes back, nothing is logged.
    Set(0);
    At(21);
    Set(3);
    At(22);
    EXPECT_EQ(Stage(), kFlightStageTaxi);
    EXPECT_EQ(Entries().size(), 3u);
    EXPECT_STREQ(g_flight_log.takeoff_time.data(), "");

    // The second roll lifts off: the wheels at 50 feet are not yet up, past it they are.
    Set(150, 0, 50);
    At(40);
    EXPECT_EQ(Stage(), kFlightStageTaxi);
    Set(150, 0, 51);
    At(41);
    EXPECT_EQ(Stage(), kFlightStageTakeoff);
    std::vector<std::string> entries = Entries();
    ASSERT_EQ(entries.size(), 4u);
    EXPECT_EQ(SegmentOf(entries[3]), "Takeoff   ");
    EXPECT_EQ(entries[3].substr(0, 8), "00:00:41");
    EXPECT_STREQ(g_flight_log.takeoff_time.data(), "09:05");
    EXPECT_EQ(g_flight_log.takeoff_hours, 9);
    EXPECT_EQ(g_flight_log.takeoff_minutes, 5);
}

TEST_F(FlightStages, ChainedStepsPassSeveralStagesWithOneLine) {
    // Moving at 4 knots when the plan is loaded: the first step enters
    // InitLoad and PushBack at once, and the file still starts with its head.
    Set(4);
    StartNewFlight();
    EXPECT_EQ(Stage(), kFlightStagePushBack);
    std::vector<std::string> lines = Lines("orb/FlightLog/fpl.log");
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[0], "FlightPlan=KAAA-KBBB\n");
    EXPECT_EQ(lines[1], "Aircraft=TestJet\n");
    EXPECT_EQ(SegmentOf(lines[5]), "PushBack  ");
    EXPECT_EQ(lines[5].substr(0, 8), "00:00:00");

    // Taxi, take-off and climb in one step: one line, the stage reached.
    g_sim.zulu_hour = 17;
    g_sim.zulu_minute = 0;
    Set(150, 2000, 300, 800);
    At(5);
    EXPECT_EQ(Stage(), kFlightStageClimb);
    std::vector<std::string> entries = Entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(SegmentOf(entries[1]), "Climb     ");
    EXPECT_STREQ(g_flight_log.takeoff_time.data(), "17:00");

    // Level, then a descent seen by a cruise line and held past 20 s, begun
    // within 20 miles of the destination: Descent and Approach at once.
    Set(300, 0, 3000, 12000);
    At(60);
    EXPECT_EQ(Stage(), kFlightStageCruise);
    Set(300, -1000, 3000, 11000);
    At(121);  // the cruise line (more than 60 s), with the descent in it
    ASSERT_EQ(Entries().size(), 4u);
    EXPECT_EQ(Stage(), kFlightStageCruise);
    g_sim.latitude = 0.9;
    g_sim.longitude = 1.0;  // 6 miles from KBBB
    At(141);                // 20 s: not yet
    EXPECT_EQ(Stage(), kFlightStageCruise);
    At(142);
    EXPECT_EQ(Stage(), kFlightStageApproach);
    entries = Entries();
    ASSERT_EQ(entries.size(), 5u);
    EXPECT_EQ(SegmentOf(entries[4]), "Approach  ");

    // Down and stopped on the runway in one step: Landing, Arr_Taxi and the
    // stop, one line with no segment name.
    g_sim.zulu_minute = 42;
    Set(0, 0, 0, 400);
    At(400);
    EXPECT_EQ(Stage(), kFlightStageStopped);
    entries = Entries();
    ASSERT_EQ(entries.size(), 6u);
    EXPECT_EQ(SegmentOf(entries[5]), std::string(10, ' '));
    EXPECT_STREQ(g_flight_log.landing_time.data(), "17:42");
}

TEST_F(FlightStages, LevelOffThenClimbStaysCruiseAndOnlyAHeldDescentMovesOn) {
    ToCruise(100);
    size_t lines = Entries().size();
    // A step climb after the level-off: no stage change, no line inside 60 s.
    for (int t = 101; t <= 160; ++t) {
        Set(300, 1500, 4000, 10000 + 25.0 * (t - 100));
        At(t);
    }
    EXPECT_EQ(Stage(), kFlightStageCruise);
    EXPECT_EQ(Entries().size(), lines);
    // 61 s after the last line a cruise line is due, climb or not.
    At(161);
    EXPECT_EQ(Stage(), kFlightStageCruise);
    ASSERT_EQ(Entries().size(), lines + 1);
    EXPECT_EQ(SegmentOf(Entries().back()), "Cruise    ");

    // A descent the last line did not see doesn't count, however long.
    Set(300, -1000, 4000, 11000);
    for (int t = 162; t <= 221; ++t) At(t);
    EXPECT_EQ(Stage(), kFlightStageCruise);
    At(222);  // the next cruise line sees it
    EXPECT_EQ(Entries().size(), lines + 2);
    // A pause in the descent resets nothing, but the sink must be there when tested.
    Set(300, -300);
    At(230);
    EXPECT_EQ(Stage(), kFlightStageCruise);
    Set(300, -1000);
    At(242);
    EXPECT_EQ(Stage(), kFlightStageCruise);  // 20 s since the line: not more
    At(243);
    EXPECT_EQ(Stage(), kFlightStageDescent);
    // Descent lines come every 5 s while sinking faster than 400 ft/min.
    size_t at_descent = Entries().size();
    At(248);
    EXPECT_EQ(Entries().size(), at_descent);
    At(249);
    EXPECT_EQ(Entries().size(), at_descent + 1);
    Set(300, -300);
    At(260);
    EXPECT_EQ(Entries().size(), at_descent + 1);
}

TEST_F(FlightStages, GoAroundAndTouchAndGoKeepTheStage) {
    ToCruise(100);
    Set(300, -1000);
    At(161);
    At(182);
    ASSERT_EQ(Stage(), kFlightStageDescent);
    g_sim.latitude = 0.9;
    g_sim.longitude = 1.0;
    Set(180, -800, 1500, 2000);
    At(190);
    ASSERT_EQ(Stage(), kFlightStageApproach);
    // Go-around in Approach: climbing away keeps the stage, the 5 s lines go on.
    size_t lines = Entries().size();
    Set(170, 2000, 500, 2500);
    At(196);
    EXPECT_EQ(Stage(), kFlightStageApproach);
    EXPECT_EQ(Entries().size(), lines + 1);
    EXPECT_EQ(SegmentOf(Entries().back()), "Approach  ");
    At(201);
    EXPECT_EQ(Entries().size(), lines + 1);

    // Touch-and-go: slowing below 60 on the runway is Landing...
    Set(55, 0, 0, 400);
    At(300);
    ASSERT_EQ(Stage(), kFlightStageLanding);
    lines = Entries().size();
    // ...and the go from it stays Landing, without lines.
    for (int t = 301; t < 400; ++t) {
        Set(55 + (t - 300), t < 320 ? 0 : 1500, t < 320 ? 0 : 800, 400 + 20.0 * (t - 300));
        At(t);
    }
    EXPECT_EQ(Stage(), kFlightStageLanding);
    EXPECT_EQ(Entries().size(), lines);
    // The final landing rolls out below 40: Arr_Taxi.
    Set(35, 0, 0, 400);
    At(500);
    EXPECT_EQ(Stage(), kFlightStageArrTaxi);
}

TEST_F(FlightStages, StoppedGoesBackToArrTaxiAndEndsBy120SecondsOrTheToken) {
    ToTaxi();
    g_flight_log.flight_stage = kFlightStageArrTaxi;  // the flight itself is other tests' business
    Set(3);
    At(1000);
    ASSERT_EQ(Stage(), kFlightStageStopped);
    // Moving slowly (7 knots) stays stopped; taxiing on (above 10) goes back.
    Set(7);
    At(1100);
    EXPECT_EQ(Stage(), kFlightStageStopped);
    Set(10);
    At(1101);
    EXPECT_EQ(Stage(), kFlightStageStopped);
    Set(12);
    At(1110);
    EXPECT_EQ(Stage(), kFlightStageArrTaxi);
    EXPECT_EQ(SegmentOf(Entries().back()), "Arr_Taxi  ");
    // Stopped again: the 120 s count from this stop.
    Set(3);
    At(1115);
    ASSERT_EQ(Stage(), kFlightStageStopped);
    Set(7);
    At(1235);  // 120 s: not more
    EXPECT_EQ(Stage(), kFlightStageStopped);
    At(1236);
    EXPECT_EQ(Stage(), kFlightStageEnd);
    std::vector<std::string> entries = Entries();
    EXPECT_EQ(SegmentOf(entries.back()), "End_Flight");
    EXPECT_EQ(entries.back().substr(0, 8), "00:20:36");
    EXPECT_TRUE(Exists("orb/FlightLog/Flight.log"));
    // Over: the step does nothing more, whatever the samples.
    size_t lines = entries.size();
    Set(100);
    At(1300, kFlightLogWaypoint);
    EXPECT_EQ(Stage(), kFlightStageEnd);
    EXPECT_EQ(Entries().size(), lines);
}

TEST_F(FlightStages, TokenZeroEndsAStoppedFlightAtOnce) {
    ToTaxi();
    g_flight_log.flight_stage = kFlightStageArrTaxi;
    sim.tokens[kGearOrEngineToken] = 0;
    Set(7);
    At(50);
    EXPECT_EQ(Stage(), kFlightStageArrTaxi);  // the token ends only a stopped flight
    Set(12);
    At(51);
    Set(3);
    At(60);
    EXPECT_EQ(Stage(), kFlightStageEnd);  // stopped, and the token is 0: the chain ends it
    EXPECT_EQ(SegmentOf(Entries().back()), "End_Flight");

    // Taxiing on above 10 knots goes back to Arr_Taxi before the token is asked.
    Set(0);
    StartNewFlight();
    g_flight_log.flight_stage = kFlightStageStopped;
    g_flight_log.stopped_since_seconds = 0;
    Set(12);
    At(5);
    EXPECT_EQ(Stage(), kFlightStageArrTaxi);
}

TEST_F(FlightStages, WaypointPassageWritesItsLineAtOnceWithTheIdent) {
    ToTaxi();
    Set(150, 300, 60, 500);
    At(10);
    Set(200, 2500, 500, 1500);
    At(11);
    ASSERT_EQ(Stage(), kFlightStageClimb);
    size_t lines = Entries().size();
    At(13);  // 2 s after the Climb line: no timed line yet
    EXPECT_EQ(Entries().size(), lines);
    g_plan.context.ActiveLeg = 1;
    At(13, kFlightLogWaypoint);
    g_plan.context.ActiveLeg = kNoActiveLeg;
    std::vector<std::string> entries = Entries();
    ASSERT_EQ(entries.size(), lines + 1);
    EXPECT_EQ(WaypointOf(entries.back()), "  FIX1");
    EXPECT_EQ(SegmentOf(entries.back()), "Climb     ");
    // The line goes to the event list too, as written.
    ASSERT_GT(g_events.count, 0);
    std::string event = g_events.texts[static_cast<size_t>(g_events.count - 1)].data();
    EXPECT_EQ(event + "\n", entries.back());
    // The climb's 5 s count from the waypoint's line.
    At(18);
    EXPECT_EQ(Entries().size(), lines + 1);
    At(19);
    EXPECT_EQ(Entries().size(), lines + 2);
    EXPECT_EQ(WaypointOf(Entries().back()), "   ---");
}

TEST_F(FlightStages, FirstPassReadsTheWeightsOnceAFlight) {
    // Start-up: the weights are read and the module's flag set, no flight.
    FlightLogStep(kFlightLogStartup);
    EXPECT_TRUE(g_module.initial_load_done);
    EXPECT_EQ(g_flight_log.zero_fuel_weight, kTestZeroFuelWeight);
    EXPECT_EQ(g_flight_log.payload, kTestPayload);
    EXPECT_EQ(g_flight_log.first_pass_done, 0);
    EXPECT_EQ(Stage(), kFlightStageNone);
    // No flight: the tick's step does nothing, and no file is written.
    FlightLogStep(kFlightLogTick);
    EXPECT_FALSE(Exists("orb/FlightLog/fpl.log"));

    // A new flight reads again: the aircraft was loaded since.
    orbsim::g_host.aircraft.zfw = 75000;
    orbsim::g_host.aircraft.payload = {500, 500, 500};
    Set(0);
    StartNewFlight();
    EXPECT_EQ(g_flight_log.first_pass_done, 1);
    std::vector<std::string> entries = Entries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_NE(entries[0].find("    75000    1500 "), std::string::npos) << entries[0];
    // Within the flight the weights stand.
    orbsim::g_host.aircraft.zfw = 60000;
    Set(3);
    At(1);
    EXPECT_EQ(g_flight_log.zero_fuel_weight, 75000);

    // In the air a plan load is no new flight.
    Set(250);
    StartNewFlight();
    EXPECT_EQ(Stage(), kFlightStagePushBack);
    EXPECT_EQ(g_tick.flight_seconds, 1);

    // Without a server the weights stay at 0 and the lines show 0.
    g_flight_log = {};
    orbsim::g_host.fsuipc.enabled = false;
    Set(0);
    StartNewFlight();
    entries = Entries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].substr(entries[0].size() - 22), "        0       0 0  \n");
}

TEST_F(FlightStages, MissingFolderWritesNothingAndTheFlightGoesOn) {
    std::filesystem::remove_all(root() / "orb" / "FlightLog");
    int events = g_events.count;
    ToTaxi();
    g_flight_log.flight_stage = kFlightStageStopped;
    g_flight_log.stopped_since_seconds = 0;
    Set(3);
    At(200);
    EXPECT_EQ(Stage(), kFlightStageEnd);
    EXPECT_FALSE(Exists("orb/FlightLog"));
    EXPECT_EQ(g_flight_log.lines_written, 0);
    EXPECT_EQ(g_events.count, events);  // no line, so nothing for the event list either
}

TEST_F(FlightStages, ANewPlanOnTheGroundStartsANewFlightAfterTheEnd) {
    ToTaxi();
    g_flight_log.flight_stage = kFlightStageStopped;
    sim.tokens[kGearOrEngineToken] = 0;
    Set(3);
    At(300);
    ASSERT_EQ(Stage(), kFlightStageEnd);
    ASSERT_GT(Entries().size(), 2u);
    // The next flight rewrites fpl.log from its head, with the clock from 0.
    PlanRow(2, "KCCC", 2.0, 2.0);
    Set(0);
    StartNewFlight();
    EXPECT_EQ(Stage(), kFlightStageInitLoad);
    std::vector<std::string> lines = Lines("orb/FlightLog/fpl.log");
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[0], "FlightPlan=KAAA-KCCC\n");
    EXPECT_EQ(lines[5].substr(0, 17), "00:00:00 InitLoad");
    EXPECT_STREQ(g_flight_log.takeoff_time.data(), "");
}

}  // namespace
}  // namespace flightlog_test
