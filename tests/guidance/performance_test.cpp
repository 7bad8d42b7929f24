// performance_test.cpp: the cruise temperature pair of the performance page.
#include "guidance/performance.h"
#include "plan/plan_tables.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

TEST(CruiseTemperature, EnteringOneWorksOutTheOtherAtTheCruiseAltitude) {
    ResetModuleState();
    EXPECT_DOUBLE_EQ(g_performance.CruiseOat, -30);
    EXPECT_DOUBLE_EQ(g_performance.IsaDeviation, 30);
    // 35999 ft counts as 35 whole thousands: standard is 15 - 35 x 1.98 = -54.3.
    g_plan.context.CruiseAltitude = 35999;
    EnterIsaDeviation(10);
    EXPECT_DOUBLE_EQ(g_performance.IsaDeviation, 10);
    EXPECT_NEAR(g_performance.CruiseOat, -44.3, 1e-9);
    EnterCruiseOat(-50);
    EXPECT_DOUBLE_EQ(g_performance.CruiseOat, -50);
    EXPECT_NEAR(g_performance.IsaDeviation, 4.3, 1e-9);
    // Without a cruise altitude the standard is 15.
    g_plan.context.CruiseAltitude = 0;
    EnterIsaDeviation(-5);
    EXPECT_NEAR(g_performance.CruiseOat, 10, 1e-9);
    g_plan.context.CruiseAltitude = 999;  // still no whole thousand
    EnterCruiseOat(20);
    EXPECT_NEAR(g_performance.IsaDeviation, 5, 1e-9);
}

// [SECTION] Times and fuel for the pages

#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "support/fake_panels.h"

#include <string>

namespace {
std::string ArrivalText(double distance, double ground_speed, double min_speed) {
    char text[16] = "junk";
    bool shown = FormatArrivalTime(distance, ground_speed, min_speed, text, sizeof text);
    EXPECT_EQ(shown, text[0] != 0) << "a time is shown exactly when the call says so";
    return text;
}
}  // namespace

TEST(PageTimes, ArrivalTimeCarriesMinutesAndHoursOnTheChosenClock) {
    ResetModuleState();
    g_sim.zulu_hour = 23;
    g_sim.zulu_minute = 50;
    g_sim.local_hour = 8;
    g_sim.local_minute = 5;
    // 300 nm at 400 kt is 45 min: 23:50 + 0:45 = 00:35 next day.
    EXPECT_EQ(ArrivalText(300, 400, 75), "0035Z");
    // 1000 nm at 400 kt is 2 h 30: 23:50 -> 02:20.
    EXPECT_EQ(ArrivalText(1000, 400, 75), "0220Z");
    // Ten minutes exactly reaches the next hour, not "2360".
    EXPECT_EQ(ArrivalText(50, 300, 75), "0000Z");
    g_config.DispETALocalTime = 1;
    // 20 nm at 240 kt: 5 minutes on the local clock.
    EXPECT_EQ(ArrivalText(20, 240, 75), "0810L");
    // The speed floor is exclusive: 75 kt on a 75 kt page shows nothing.
    EXPECT_EQ(ArrivalText(20, 75, 75), "");
    EXPECT_EQ(ArrivalText(20, 31, 30), "0844L");  // 20 / 31 x 60 = 38.7 min -> 39
    EXPECT_EQ(ArrivalText(20, 0, -1), "");        // no speed, no time, whatever the floor
    // A tiny buffer stays terminated.
    char tiny[3] = {'x', 'x', 'x'};
    FormatArrivalTime(20, 240, 75, tiny, sizeof tiny);
    EXPECT_EQ(std::string(tiny), "08");
}

TEST(PageTimes, FuelAheadAndAtTheDestination) {
    ResetModuleState();
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[Token::FUEL_POUNDS_PER_GALLON] = 6.7;
    t[Token::FUEL_TOTAL_GALLONS] = 3000;   // 20100 lb aboard
    t[Token::FUEL_FLOW_1] = 2400;
    t[Token::FUEL_FLOW_2] = 2400;          // 4800 lb an hour
    // 200 nm at 400 kt: half an hour, 2400 lb.
    EXPECT_NEAR(FuelAtDistance(200, 400), 20100 - 2400, 1e-6);
    EXPECT_NEAR(FuelAtDistance(0, 400), 20100, 1e-9);
    EXPECT_NEAR(FuelAtDistance(200, 0), 20100, 1e-9) << "no speed: nothing burnt";

    // Within 100 nm the ground speed stands: 60 nm at 240 kt, 15 min, 1200 lb.
    g_profile.DescentIas = 280;
    double minutes = 0, fuel = 0;
    ASSERT_TRUE(DestinationTimeAndFuel(60, 240, minutes, fuel));
    EXPECT_NEAR(minutes, 15, 1e-9);
    EXPECT_NEAR(fuel, 20100 - 1200, 1e-6);
    // 500 nm at 450 kt: the last 100 at 0.85 x 280 = 238 kt. Mean speed
    // (23800 + 400 x 450) / 500 = 407.6 kt; 500 / 407.6 h; the burn
    // 4800 x that, scaled by 407.6 / 450, is 4800 x 500 / 450.
    ASSERT_TRUE(DestinationTimeAndFuel(500, 450, minutes, fuel));
    EXPECT_NEAR(minutes, 500 / 407.6 * 60, 1e-9);
    EXPECT_NEAR(fuel, 20100 - 4800 * 500.0 / 450, 1e-6);
    // A ground speed slower than the descent stretch: the mean is faster and the
    // burn isn't scaled. 300 nm at 200 kt: (23800 + 200 x 200) / 300 = 212.667.
    ASSERT_TRUE(DestinationTimeAndFuel(300, 200, minutes, fuel));
    double mean = (23800 + 200 * 200) / 300.0;
    EXPECT_NEAR(minutes, 300 / mean * 60, 1e-9);
    EXPECT_NEAR(fuel, 20100 - 4800 * 300 / mean, 1e-6);
    EXPECT_FALSE(DestinationTimeAndFuel(300, 30, minutes, fuel)) << "30 kt is too slow to tell";

    // The display unit.
    EXPECT_DOUBLE_EQ(WeightInDisplayUnit(1000), 1000);
    g_config.WeightUnit = MakeOptionText("KGS");
    EXPECT_NEAR(WeightInDisplayUnit(1000), 453.59237, 1e-9);
}

// [SECTION] The performance file

#include "frame/module_state.h"

#include <cstdio>
#include <fstream>

namespace {
void Read(const std::string& text, PerformanceTable& table) { ReadPerformanceText(text.data(), text.size(), table); }
}  // namespace

TEST(PerformanceFile, SectionsRowsAndTheirColumns) {
    static PerformanceTable table;
    Read("; a comment line\r\n"
         "[UNITS]\r\n"
         "FUEL=KGS\r\n"
         "WEIGHT=KGS\r\n"
         "[CLIMB]\r\n"
         "0 250 3400 7600 7700\r\n"
         "5000\t270   3100\r\n"           // tabs, runs of blanks, missing flows
         " ; not a comment: the first character isn't ';'\r\n"
         "[GRWT 120 140.5 160]\r\n"       // opens the cruise rows
         "30000 450 3500 3800 4100\r\n"
         "[DESCENT]\n"
         "10000 320 2500 1200 99 99\n"    // further tokens ignored
         "[Descent]\n"                    // names compare in case too: no section
         "20000 1 1 1\n"
         "[Altitude]\n"
         "41000 7\n",
         table);
    // The blank-led line is a row: only a first character ";" makes a comment.
    ASSERT_EQ(table.ClimbCount, 3);
    EXPECT_DOUBLE_EQ(table.Climb[3].Tas, 0);
    EXPECT_DOUBLE_EQ(table.Climb[1].Altitude, 0);
    EXPECT_DOUBLE_EQ(table.Climb[1].Tas, 250);
    EXPECT_DOUBLE_EQ(table.Climb[1].Rate, 3400);
    EXPECT_DOUBLE_EQ(table.Climb[1].FuelFlow[0], 7600);
    EXPECT_DOUBLE_EQ(table.Climb[1].FuelFlow[1], 7700);
    EXPECT_DOUBLE_EQ(table.Climb[2].Rate, 3100);
    EXPECT_DOUBLE_EQ(table.Climb[2].FuelFlow[0], 0) << "a missing token reads 0";
    // The GRWT line: weights in thousands, then the cruise rows. UNITS
    // changed nothing: kilograms are read as pounds.
    ASSERT_EQ(table.CruiseWeightCount, 3);
    EXPECT_DOUBLE_EQ(table.CruiseWeights[0], 120000);
    EXPECT_DOUBLE_EQ(table.CruiseWeights[1], 140500);
    EXPECT_DOUBLE_EQ(table.CruiseWeights[2], 160000);
    ASSERT_EQ(table.CruiseCount, 1);
    EXPECT_DOUBLE_EQ(table.Cruise[1].Altitude, 30000);
    EXPECT_DOUBLE_EQ(table.Cruise[1].Tas, 450);
    EXPECT_EQ(table.Cruise[1].FuelFlowCount, 3);
    EXPECT_DOUBLE_EQ(table.Cruise[1].FuelFlow[2], 4100);
    ASSERT_EQ(table.DescentCount, 1) << "[Descent] isn't [DESCENT]";
    EXPECT_DOUBLE_EQ(table.Descent[1].FuelFlow, 1200);
    ASSERT_EQ(table.AltitudeLimitCount, 1);
    EXPECT_DOUBLE_EQ(table.AltitudeLimit[1].Altitude, 41000);
    EXPECT_DOUBLE_EQ(table.AltitudeLimit[1].Second, 7);
}

TEST(PerformanceFile, LimitsOfRowsTokensAndLines) {
    static PerformanceTable table;
    // 60 climb rows: the table stops at 49; the rows after it are dropped.
    std::string text = "[CLIMB]\n";
    for (int i = 1; i <= 60; ++i) text += std::to_string(i * 100) + " 300 2000\n";
    // A cruise row of 40 tokens: altitude, TAS and 26 flows (28 tokens in all).
    text += "[CRUISE]\n1000 300";
    for (int f = 1; f <= 38; ++f) text += " " + std::to_string(f);
    text += "\n";
    // A 3000-character line: cut at 1500, so its far number is never read.
    text += "[DESCENT]\n5000 250 1800" + std::string(1600, ' ') + "777\n";
    // A GRWT line of ten weights keeps eight.
    text += "[GRWT 1 2 3 4 5 6 7 8 9 10]\n";
    Read(text, table);
    EXPECT_EQ(table.ClimbCount, 49);
    EXPECT_DOUBLE_EQ(table.Climb[49].Altitude, 4900);
    EXPECT_DOUBLE_EQ(table.Climb[50].Altitude, 0) << "the spare row stays empty";
    ASSERT_EQ(table.CruiseCount, 1);
    EXPECT_EQ(table.Cruise[1].FuelFlowCount, 26);
    EXPECT_DOUBLE_EQ(table.Cruise[1].FuelFlow[25], 26);
    ASSERT_EQ(table.DescentCount, 1);
    EXPECT_DOUBLE_EQ(table.Descent[1].Rate, 1800);
    EXPECT_DOUBLE_EQ(table.Descent[1].FuelFlow, 0);
    EXPECT_EQ(table.CruiseWeightCount, 8);
    EXPECT_DOUBLE_EQ(table.CruiseWeights[7], 8000);

    // A second read starts afresh; bytes that are no file leave it empty.
    const char junk[] = "\0\xff[\x01]]] \n[[\n[]\n;\n\r\r\n";
    Read(std::string(junk, sizeof junk - 1), table);
    EXPECT_EQ(table.ClimbCount + table.CruiseCount + table.DescentCount + table.AltitudeLimitCount, 0);
    ReadPerformanceText(nullptr, 10, table);
    EXPECT_EQ(table.ClimbCount, 0);
}

TEST(PerformanceFile, LoadedByNameOrBelowTheAircraftFolder) {
    std::string root = ResetModuleState();
    // The folder as the sample data spells it; the module asks for "aircraft".
    std::string folder = root + "/orb/Aircraft";
    ASSERT_EQ(std::system(("mkdir -p " + folder).c_str()), 0);
    {
        std::ofstream out(folder + "/perf.txt");
        out << "[CLIMB]\n0 250 3000 7000\n[CRUISE]\n30000 450 3000\n[DESCENT]\n0 250 1500 1000\n";
    }
    g_profile.PerformanceData = MakeOptionText("perf.txt");
    LoadPerformanceTable();
    EXPECT_EQ(g_performance_table.ClimbCount, 1);
    EXPECT_EQ(g_performance_table.CruiseCount, 1);
    EXPECT_EQ(g_performance_table.DescentCount, 1);
    // A full path stands as it is.
    std::snprintf(g_profile.PerformanceData.data(), kConfigTextSize, "%s/perf.txt", folder.c_str());
    g_performance_table.ClimbCount = 0;
    LoadPerformanceTable();
    EXPECT_EQ(g_performance_table.ClimbCount, 1);
    // A name that opens nowhere, or none: every count 0.
    g_profile.PerformanceData = MakeOptionText("missing.txt");
    LoadPerformanceTable();
    EXPECT_EQ(g_performance_table.ClimbCount + g_performance_table.CruiseCount + g_performance_table.DescentCount, 0);

    // The twin jet's own file reads whole: ten rows a table and three weights.
    std::snprintf(g_profile.PerformanceData.data(), kConfigTextSize, "%s/data/sim/orb/Aircraft/TwinJet_perf.txt",
                  ORB_SOURCE_DIR);
    LoadPerformanceTable();
    EXPECT_EQ(g_performance_table.ClimbCount, 10);
    EXPECT_EQ(g_performance_table.CruiseCount, 10);
    EXPECT_EQ(g_performance_table.DescentCount, 10);
    EXPECT_EQ(g_performance_table.AltitudeLimitCount, 1);
    EXPECT_EQ(g_performance_table.CruiseWeightCount, 3);
    EXPECT_DOUBLE_EQ(g_performance_table.Cruise[8].FuelFlow[1], 3600) << "35000 ft at 140000 lb";
}

// [SECTION] Hostile performance files

#define ORB_NO_FUZZ_MAIN
#include "fuzz/performance_file.cpp"

TEST(PerformanceFile, HostileBytesNeitherCrashNorStall) {
    ResetModuleState();
    // Huge and endless figures: an altitude limit far out of range once made
    // the step-down loop endless (1e308 - 1000 is 1e308).
    const std::string inputs[] = {
        "[CLIMB]\n0 1e308 1e308 1e308\n[CRUISE]\n0 1e308\n[DESCENT]\n0 1e308 1e308\n[Altitude]\n1e308\n",
        "[CLIMB]\n0 0 0\n[CRUISE]\n0 0\n[DESCENT]\n0 0 0\n",
        "[CLIMB]\n0 -300 -2000\n[CRUISE]\n-5 -1 -1\n[DESCENT]\n99999999999 1 1\n[Altitude]\n-1e308\n",
        "[CLIMB]\n0 0.0000001 99999\n[GRWT 1e308 -1e308]\n0 400 1 2\n[DESCENT]\n0 0.0000001 1\n",
        std::string("[CLIMB]\n\0\0\0 250\n[CRUISE", 22),
    };
    for (const std::string& text : inputs) {
        performance_fuzz::ReadPerformanceBytes(reinterpret_cast<const uint8_t*>(text.data()), text.size());
        int cruise = OptimizeProfile();
        EXPECT_GE(cruise, 0) << text;
        EXPECT_LE(cruise, 100000) << text;
    }
    // Tables without speed never climb: the altitude comes down to the floor
    // of the step-down, 3000, and the east rule keeps it.
    performance_fuzz::ReadPerformanceBytes(reinterpret_cast<const uint8_t*>(inputs[1].data()), inputs[1].size());
    EXPECT_EQ(OptimizeProfile(), 3000);
    EXPECT_EQ(g_performance_table.ClimbCount, 1);
}
