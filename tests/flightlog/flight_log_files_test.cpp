// flight_log_files_test.cpp: a whole flight flown through the engine tick,
// second by second from a schedule of samples, and the two files it leaves
// compared line by line with lines made from the files' formats by hand.
//
// The tick samples by phase; the flight is aligned so that the first tick of
// every second is phase 3, which takes every sample group but the once-a-
// second one (the zulu clock). So a change set at the start of a second is
// seen whole in that second's first tick, and each line's clock is that
// second. The zulu clock is set a few seconds before it matters.
#include "flightlog/flight_log_rig.h"

#include "frame/engine_tick.h"

#include <ctime>

namespace flightlog_test {
namespace {

constexpr double kIas = 180;                // knots, held for the whole flight: the smoothed value settles on it
constexpr int kAlignTicks = 2 + 3 * 18;     // the first tick of each second after this is phase 3
constexpr int kEndSecond = 446;             // stopped at 325, 121 s later End_Flight

// What the aircraft shows in one second of the flight.
struct Sample {
    double gs = 0, vs = 0, alt = 400, radio = 0, ff = 1200, fob = 20000, lat = 0, lon = 0;
    double zulu_hour = 9, zulu_minute = 5;
};

// The flight, second by second. With `near_early` the aircraft is within 20
// miles of the destination from the start of the descent on.
Sample Schedule(int t, bool near_early) {
    Sample s;
    if (t >= 1) s.gs = 3;
    if (t >= 4) s.gs = 15, s.fob = 19900;
    if (t >= 11) s.gs = 70;                 // the roll, wheels on the ground
    if (t >= 16) s.gs = 150;
    if (t >= 21) s.radio = 100, s.vs = 300, s.alt = 450, s.fob = 19500;
    if (t >= 22) s.gs = 200, s.vs = 3000, s.alt = 1000 + 500.0 * (t - 22), s.radio = 1000, s.ff = 6000;
    if (t >= 30) s.gs = 260, s.vs = 2400, s.ff = 5000, s.fob = 18900;
    if (t >= 46) s.gs = 300, s.vs = 0, s.alt = 12000, s.radio = 5000, s.ff = 3000, s.fob = 18500;
    if (t >= 110) s.vs = 1000, s.alt = 12500;  // a step climb in cruise
    if (t >= 120) s.vs = 0, s.alt = 16000;
    if (t >= 170) s.gs = 280, s.vs = -1500, s.alt = 16000 - 25.0 * (t - 169), s.ff = 1200, s.fob = 17800;
    if (t >= 170 && near_early) s.lat = 0.9, s.lon = 1.0;
    if (t >= 255) s.gs = 250, s.vs = -2000, s.alt = 9000 - 25.0 * (t - 255);
    if (t >= 262) s.vs = -2001;
    if (t >= 270) s.gs = 180, s.vs = -800, s.alt = 3000, s.lat = 0.9, s.lon = 1.0, s.fob = 17600;
    if (t >= 285) s.gs = 160, s.vs = 1500, s.alt = 3500;  // a go-around
    if (t >= 293) s.gs = 150, s.vs = -700, s.alt = 2000, s.zulu_minute = 12;
    if (t >= 300) s.gs = 55, s.vs = 0, s.alt = 400, s.radio = 0, s.fob = 17500;
    if (t >= 305) s.gs = 30;
    if (t >= 310) s.gs = 0;
    if (t >= 320) s.gs = 12;                // taxiing on
    if (t >= 325) s.gs = 3;
    if (t >= 330) s.gs = 7;
    return s;
}

class FlightLogFiles : public FlightLogRig {
protected:
    void Apply(const Sample& s) {
        sim.tokens[Token::GROUND_VELOCITY] = s.gs * 1.68781;
        sim.tokens[Token::VERTICAL_SPEED] = s.vs * 1.30048;
        sim.tokens[Token::RADIO_HEIGHT] = s.radio / 3.2808399;
        sim.tokens[Token::AIRSPEED] = kIas;
        sim.tokens[Token::LATITUDE] = s.lat * 111130.555557;
        sim.tokens[Token::LONGITUDE] = s.lon * 781874935307.4;
        sim.tokens[Token::FUEL_FLOW_1] = s.ff / 2;
        sim.tokens[Token::FUEL_FLOW_2] = s.ff / 2;
        sim.tokens[Token::TURBINE_FUEL_FLOW_1] = 9999;  // the other family: never chosen while engine 1 reads
        sim.tokens[Token::FUEL_POUNDS_PER_GALLON] = 5;
        sim.tokens[Token::FUEL_TOTAL_GALLONS] = s.fob / 5;
        sim.tokens[Token::ZULU_HOUR] = s.zulu_hour;
        sim.tokens[Token::ZULU_MINUTE] = s.zulu_minute;
        sim.calculator["(A:INDICATED ALTITUDE, feet)"] = s.alt;
    }
    void Tick() {
        sim.tokens[Token::TICK18] += 1;
        EngineTick();
    }
    // Parked, then the plan on the ground, then the flight to the end and a minute more.
    void Fly(bool near_early, bool waypoint_at_30 = true) {
        Apply(Schedule(0, near_early));
        sim.tokens[Token::CLOCK_SECOND] = 0;
        for (int i = 0; i < kAlignTicks; ++i) Tick();
        ASSERT_EQ(g_tick.phase, 2);
        StartNewFlight();
        for (int t = 1; t <= kEndSecond + 60; ++t) {
            Apply(Schedule(t, near_early));
            sim.tokens[Token::CLOCK_SECOND] = t % 60;
            for (int i = 0; i < 18; ++i) Tick();
            if (t == 30 && waypoint_at_30) {
                // LNAV passes FIX1 (its step is called as the sequencing calls it).
                g_plan.context.ActiveLeg = 1;
                FlightLogStep(kFlightLogWaypoint);
                g_plan.context.ActiveLeg = kNoActiveLeg;
            }
        }
    }
    static std::string Line(int clock, const char* segment, const char* waypoint, double gs, double tas, double vs,
                            double alt, double ff, double fob) {
        return EntryLine(clock, segment, waypoint, gs, tas, vs, alt, ff, fob, kTestZeroFuelWeight, kTestPayload, kIas);
    }
    static std::string Dashes() {
        std::string columns =
            "; TIME   Segment  Waypoint   GSP   TAS       V/S    ALT    FF     FOB       ZFW     PLD  IAS\n";
        return ";" + std::string(columns.size() - 2, '-') + "\n";
    }
    static std::string DateLine() {
        std::time_t now = std::time(nullptr);
        std::tm local = *std::localtime(&now);
        char text[64];
        std::snprintf(text, sizeof text, "Date=%d/%02d/%02d\n", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
        return text;
    }
};

TEST_F(FlightLogFiles, AWholeFlightWritesEveryLineAndItsRecord) {
    Fly(false);
    std::vector<std::string> expected = {
        "FlightPlan=KAAA-KBBB\n",
        "Aircraft=TestJet\n",
        Dashes(),
        "; TIME   Segment  Waypoint   GSP   TAS       V/S    ALT    FF     FOB       ZFW     PLD  IAS\n",
        Dashes(),
        // On the ground the estimated true airspeed is 0 (25 knots or less).
        Line(0, "InitLoad", "---", 0, 0, 0, 400, 1200, 20000),
        Line(1, "PushBack", "---", 3, 0, 0, 400, 1200, 20000),
        Line(4, "Taxi", "---", 15, 0, 0, 400, 1200, 19900),
        // The roll at 70 and 150 knots stays Taxi; 100 ft of radio altitude is Takeoff.
        Line(21, "Takeoff", "---", 150, 150, 300, 450, 1200, 19500),
        // Climb lines every 6 s (more than 5); the waypoint's line restarts the count.
        Line(22, "Climb", "---", 200, 200, 3000, 1000, 6000, 19500),
        Line(28, "Climb", "---", 200, 200, 3000, 4000, 6000, 19500),
        Line(30, "Climb", "FIX1", 260, 260, 2400, 5000, 5000, 18900),
        Line(36, "Climb", "---", 260, 260, 2400, 8000, 5000, 18900),
        Line(42, "Climb", "---", 260, 260, 2400, 11000, 5000, 18900),
        // Level at 46; then every 61 s, through the step climb at 110 to 119.
        Line(46, "Cruise", "---", 300, 300, 0, 12000, 3000, 18500),
        Line(107, "Cruise", "---", 300, 300, 0, 12000, 3000, 18500),
        Line(168, "Cruise", "---", 300, 300, 0, 16000, 3000, 18500),
        // Descending since 170: the line at 229 sees it, 21 s later it is Descent.
        Line(229, "Cruise", "---", 280, 280, -1500, 14500, 1200, 17800),
        Line(250, "Descent", "---", 280, 280, -1500, 13975, 1200, 17800),
        Line(256, "Descent", "---", 250, 250, -2000, 8975, 1200, 17800),
        Line(262, "Descent", "---", 250, 250, -2001, 8825, 1200, 17800),
        Line(268, "Descent", "---", 250, 250, -2001, 8675, 1200, 17800),
        // Within 20 miles at 270; the go-around at 285 keeps Approach.
        Line(270, "Approach", "---", 180, 180, -800, 3000, 1200, 17600),
        Line(276, "Approach", "---", 180, 180, -800, 3000, 1200, 17600),
        Line(282, "Approach", "---", 180, 180, -800, 3000, 1200, 17600),
        Line(288, "Approach", "---", 160, 160, 1500, 3500, 1200, 17600),
        Line(294, "Approach", "---", 150, 150, -700, 2000, 1200, 17600),
        Line(300, "Landing", "---", 55, 55, 0, 400, 1200, 17500),
        Line(305, "Arr_Taxi", "---", 30, 30, 0, 400, 1200, 17500),
        Line(310, "", "---", 0, 0, 0, 400, 1200, 17500),
        Line(320, "Arr_Taxi", "---", 12, 0, 0, 400, 1200, 17500),
        Line(325, "", "---", 3, 0, 0, 400, 1200, 17500),
        // At 7 knots, 121 s after the last stop.
        Line(446, "End_Flight", "---", 7, 0, 0, 400, 1200, 17500),
    };
    std::vector<std::string> written = Lines("orb/FlightLog/fpl.log");
    ASSERT_EQ(written.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(written[i], expected[i]) << "line " << i + 1;
    EXPECT_EQ(g_flight_log.flight_stage, kFlightStageEnd);
    EXPECT_EQ(g_tick.flight_seconds, kEndSecond);  // the clock stopped with the flight
    EXPECT_STREQ(g_flight_log.takeoff_time.data(), "09:05");
    EXPECT_STREQ(g_flight_log.landing_time.data(), "09:12");

    // The record. Altitude bins are the nearest 5000 ft (at least 5000);
    // gross weight is FOB + 73500, binned by 5000 lb below 95500.
    // Climb, 5000 ft: lines at 22, 28 (93000 lb -> 95000) and 30 (92400 -> 90000):
    //   mean TAS (200+200+260)/3 = 220, V/S (3000+3000+2400)/3 = 2800; flows 6000 and 5000.
    // Climb, 10000 ft: 36 and 42, 260 kt, 2400 ft/min, 90000 lb, 5000 lb/h.
    // Cruise, 10000 ft: 46 and 107 (92000 -> 90000), 300 kt, 3000 lb/h.
    // Cruise, 15000 ft: 168 (16000 ft) and 229 (14500 ft, 91300 -> 90000):
    //   TAS (300+280)/2 = 290, flow (3000+1200)/2 = 2100.
    // Descent, 15000 ft: 250 alone. 10000 ft: 256, 262, 268: V/S -6002/3 = -2000.67, whole: -2000.
    std::vector<std::string> record = {
        "[KAAA-KBBB]\n",
        DateLine(),
        "FlightTime=00:07\n",
        "Aircraft=TestJet\n",
        "FuelUsed=2500\n",
        "Climb=5000_220_2800_95000_6000 5000_220_2800_90000_5000 10000_260_2400_90000_5000 \n",
        "Cruise=10000_300_90000_3000 15000_290_90000_2100 \n",
        "Descent=15000_280_-1500_1200 10000_250_-2000_1200 \n",
        "\n",
    };
    EXPECT_EQ(Lines("orb/FlightLog/Flight.log"), record);

    // A second flight appends its record behind the first.
    PlanRow(2, "KCCC", 1.0, 1.0);  // the same place by another name
    g_tick = {};
    Fly(false, false);
    std::vector<std::string> both = Lines("orb/FlightLog/Flight.log");
    ASSERT_EQ(both.size(), 2 * record.size());
    EXPECT_EQ(both[9], "[KAAA-KCCC]\n");
    EXPECT_EQ(std::vector<std::string>(both.begin(), both.begin() + 9), record);
}

TEST_F(FlightLogFiles, NoProfileWritesTheLogButNoRecord) {
    g_module.AircraftProfileName = {};
    Fly(false);
    std::vector<std::string> written = Lines("orb/FlightLog/fpl.log");
    ASSERT_EQ(written.size(), 33u);
    EXPECT_EQ(written[1], "Aircraft=\n");
    EXPECT_EQ(written.back(), Line(446, "End_Flight", "---", 7, 0, 0, 400, 1200, 17500));
    EXPECT_FALSE(Exists("orb/FlightLog/Flight.log"));
}

TEST_F(FlightLogFiles, ADescentBegunNearTheDestinationHasNoDescentRows) {
    // Within 20 miles when the descent is confirmed: Descent and Approach in
    // one step, so no line says Descent.
    Fly(true);
    std::vector<std::string> written = Lines("orb/FlightLog/fpl.log");
    ASSERT_GT(written.size(), 20u);
    EXPECT_EQ(written[17], Line(229, "Cruise", "---", 280, 280, -1500, 14500, 1200, 17800));
    EXPECT_EQ(written[18], Line(250, "Approach", "---", 280, 280, -1500, 13975, 1200, 17800));
    for (const std::string& line : written) EXPECT_EQ(line.find("Descent"), std::string::npos) << line;
    std::vector<std::string> record = Lines("orb/FlightLog/Flight.log");
    ASSERT_EQ(record.size(), 9u);
    EXPECT_EQ(record[7], "Descent=\n");
    EXPECT_EQ(record[6], "Cruise=10000_300_90000_3000 15000_290_90000_2100 \n");
}

}  // namespace
}  // namespace flightlog_test
