// perf_pages_test.cpp: a pilot filling in and reading the performance pages
// (PERF INIT, PERF LIMITS, ECON CLB/CRZ/PATH DES, TAKEOFF REF, APPROACH
// REF, PROGRESS) on the demonstration database: entries, their refusals,
// ERASE, and whole screens against the grids in tests/cdu/reference/.
#include "cdu_rig.h"

#include "cdu/perf_pages.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "plan/plan_execute.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace cdu_test;

namespace {
// An entry typed and put on a line; the frame acts on it.
void Enter(CduRig& cdu, const char* text, const char* key) {
    ClearEntry(cdu);
    cdu.Type(text);
    cdu.PressAndFrame(key);
}

// A refused entry: the message, and the text left for correction.
void ExpectRefused(CduRig& cdu, const char* text, const char* key) {
    Enter(cdu, text, key);
    EXPECT_EQ(Message(), "INVALID ENTRY") << text << " on " << key;
    EXPECT_EQ(Scratchpad(), text) << "a refused text stays";
}

void ExpectTaken(CduRig& cdu, const char* text, const char* key) {
    Enter(cdu, text, key);
    EXPECT_EQ(Message(), "") << text << " on " << key;
    EXPECT_EQ(Scratchpad(), "") << text << " on " << key;
}

// The grid row drawn at design y (a value row is 33 + 33 (n - 1)), or "".
std::string RowAt(const CduRig& cdu, int y) {
    char head[8];
    std::snprintf(head, sizeof head, "%3d|", y);
    std::string screen = cdu.Screen();
    size_t at = screen.find(head);
    if (at == std::string::npos || (at != 0 && screen[at - 1] != '\n')) return "";
    return screen.substr(at, screen.find('\n', at) - at);
}

bool RowHas(const CduRig& cdu, int y, const std::string& text) { return RowAt(cdu, y).find(text) != std::string::npos; }

// A page shown by number, drawn once.
void Show(CduRig& cdu, int page) {
    g_smiths.CduPage = page;
    cdu.Frame();
}

}  // namespace

TEST(PerfPages, CruiseAltitudeSpellingsAndRefusals) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    ASSERT_EQ(g_plan.context.PlanState, 3);
    Show(cdu, cdu_page::kPerfInit);
    PlanContext& pc = g_plan.context;

    // Three spellings of one altitude.
    for (const char* text : {"FL350", "350", "35000"}) {
        pc.CruiseAltitude = 12000;
        ExpectTaken(cdu, text, "LSK1R");
        EXPECT_EQ(pc.CruiseAltitude, 35000) << text;
    }
    EXPECT_EQ(pc.PlanState, 4) << "cruise altitude is plan data";
    EXPECT_TRUE(cdu.ExecLit());
    // Above the transition altitude a flight level, at or below it feet.
    EXPECT_TRUE(RowHas(cdu, 33, "FL350")) << cdu.Screen();
    ExpectTaken(cdu, "180", "LSK1R");
    EXPECT_EQ(pc.CruiseAltitude, 18000);
    EXPECT_TRUE(RowHas(cdu, 33, "18000")) << cdu.Screen();
    EXPECT_FALSE(RowHas(cdu, 33, "FL180")) << "at the transition altitude it is feet";

    // Refusals leave the value as it stood.
    for (const char* text : {"0", "FL", "ABC", "FL0"}) {
        ExpectRefused(cdu, text, "LSK1R");
        EXPECT_EQ(pc.CruiseAltitude, 18000) << text;
    }
    // With the delete armed the hidden text is not entered.
    ClearEntry(cdu);
    cdu.Type("250");
    cdu.Press("DEL");
    cdu.PressAndFrame("LSK1R");
    EXPECT_EQ(pc.CruiseAltitude, 18000);
    EXPECT_EQ(Message(), "DELETE");
    // ECON CLB takes only altitudes below 99999.
    Show(cdu, cdu_page::kEconClb);
    ExpectRefused(cdu, "99999", "LSK1L");
    ExpectTaken(cdu, "FL310", "LSK1L");
    EXPECT_EQ(pc.CruiseAltitude, 31000);
}

TEST(PerfPages, WeightsAndTheirLimits) {
    CduRig cdu;
    Show(cdu, cdu_page::kPerfInit);
    PerformanceState& p = g_performance;
    EXPECT_TRUE(cdu.ScreenHas("ZFW"));

    // ZFW in thousands: 1000 thousands is too much, 999.9 is taken.
    ExpectRefused(cdu, "1000", "LSK3L");
    ExpectRefused(cdu, "0", "LSK3L");
    EXPECT_EQ(p.ZeroFuelWeight, 0);
    ExpectTaken(cdu, "999.9", "LSK3L");
    EXPECT_NEAR(p.ZeroFuelWeight, 999900, 1e-6);
    ExpectTaken(cdu, "120.5", "LSK3L");
    EXPECT_NEAR(p.ZeroFuelWeight, 120500, 1e-6);
    EXPECT_TRUE(RowHas(cdu, 99, "120.5")) << cdu.Screen();
    EXPECT_EQ(g_plan.context.PlanState, 0) << "weights are no plan data";

    // Reserves: above 0 and at most 2,000,000 pounds; 1000 thousands is no limit here.
    ExpectRefused(cdu, "0", "LSK4L");
    ExpectTaken(cdu, "12.5", "LSK4L");
    EXPECT_NEAR(p.FuelReserve, 12500, 1e-6);
    ExpectTaken(cdu, "2000", "LSK4L");
    EXPECT_NEAR(p.FuelReserve, 2000000, 1e-6);
    ExpectRefused(cdu, "2000.1", "LSK4L");

    // In kilograms the value is kept in pounds; above 2,000,000 pounds refused.
    g_config.WeightUnit = MakeOptionText("KGS");
    ExpectTaken(cdu, "100", "LSK3L");
    EXPECT_NEAR(p.ZeroFuelWeight, 100000 * 2.20462262, 1e-3);
    ExpectRefused(cdu, "950", "LSK3L");  // 2,094,391 pounds
    EXPECT_NEAR(p.ZeroFuelWeight, 100000 * 2.20462262, 1e-3);
    ExpectTaken(cdu, "900", "LSK4L");  // 1,984,160 pounds is still within
    EXPECT_NEAR(p.FuelReserve, 900000 * 2.20462262, 1e-3);
}

TEST(PerfPages, CostIndexZeroOnlyAsZero) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    Show(cdu, cdu_page::kPerfInit);
    AircraftProfile& profile = g_profile;
    int before = profile.CostIndex;
    ExpectRefused(cdu, "O", "LSK5L");
    ExpectRefused(cdu, "201", "LSK5L");
    ExpectRefused(cdu, "-2", "LSK5L");
    EXPECT_EQ(profile.CostIndex, before);
    EXPECT_EQ(g_plan.context.PlanState, 3) << "a refusal changes nothing";

    // A speed still at its base follows the cost index.
    profile.ClimbIas = profile.ClimbIasBase;
    int expected = static_cast<int>((profile.ClimbIasMax - profile.ClimbIasMin) / 200.0 * 100 + profile.ClimbIasMin);
    ExpectTaken(cdu, "100", "LSK5L");
    EXPECT_EQ(profile.CostIndex, 100);
    EXPECT_EQ(profile.ClimbIas, expected);
    EXPECT_EQ(g_plan.context.PlanState, 4);
    EXPECT_EQ(g_plan.context.Undo.CostIndex, before);
    EXPECT_TRUE(RowHas(cdu, 165, "100")) << cdu.Screen();
    ExpectTaken(cdu, "0", "LSK5L");
    EXPECT_EQ(profile.CostIndex, 0);
    ExpectTaken(cdu, "200", "LSK5L");
    EXPECT_EQ(profile.CostIndex, 200);
}

TEST(PerfPages, TargetSpeedForms) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    AircraftProfile& profile = g_profile;
    profile.ClimbIas = 250;
    g_config.ClimbMach = 0.70;
    Show(cdu, cdu_page::kEconClb);

    // "/.80": the Mach number alone, the speed stays.
    ExpectTaken(cdu, "/.80", "LSK2L");
    EXPECT_EQ(profile.ClimbIas, 250);
    EXPECT_DOUBLE_EQ(g_config.ClimbMach, 0.80);
    EXPECT_TRUE(RowHas(cdu, 66, "250 / 0.80")) << cdu.Screen();
    EXPECT_EQ(g_plan.context.PlanState, 4);
    EXPECT_DOUBLE_EQ(g_plan.context.Undo.ClimbMach, 0.70);
    EXPECT_EQ(g_plan.context.Undo.ClimbIas, 0) << "the speed was not touched";

    // Speeds 50 to 500, Mach 0 to 4.
    for (const char* text : {"49", "501", "/5", "/4.1", "49/.80", "300/5"}) {
        ExpectRefused(cdu, text, "LSK2L");
        EXPECT_EQ(profile.ClimbIas, 250) << text;
        EXPECT_DOUBLE_EQ(g_config.ClimbMach, 0.80) << text;
    }
    ExpectTaken(cdu, "50", "LSK2L");
    EXPECT_EQ(profile.ClimbIas, 50);
    ExpectTaken(cdu, "500", "LSK2L");
    EXPECT_EQ(profile.ClimbIas, 500);
    ExpectTaken(cdu, "290/.78", "LSK2L");
    EXPECT_EQ(profile.ClimbIas, 290);
    EXPECT_DOUBLE_EQ(g_config.ClimbMach, 0.78);
    EXPECT_EQ(g_plan.context.Undo.ClimbIas, 250) << "the committed speed is what ERASE brings back";
    ExpectTaken(cdu, "/4", "LSK2L");  // the Mach bound is 4, not 1
    EXPECT_DOUBLE_EQ(g_config.ClimbMach, 4);
    EXPECT_EQ(profile.ClimbIas, 290);

    // The same entry on the cruise and descent pages, into their own values.
    Show(cdu, cdu_page::kEconCrz);
    ExpectTaken(cdu, "280/.82", "LSK2L");
    EXPECT_EQ(profile.CruiseIas, 280);
    EXPECT_DOUBLE_EQ(g_config.CruiseMach, 0.82);
    EXPECT_TRUE(RowHas(cdu, 66, "280 / 0.82")) << cdu.Screen();
    Show(cdu, cdu_page::kEconPathDes);
    ExpectTaken(cdu, "240", "LSK2L");
    EXPECT_EQ(profile.DescentIas, 240);
    EXPECT_EQ(profile.ClimbIas, 290);
}

TEST(PerfPages, SpeedRestrictionPairs) {
    CduRig cdu;
    Show(cdu, cdu_page::kEconClb);
    AircraftProfile& profile = g_profile;
    profile.ClbSpdRest = 0;
    profile.ClbAltRest = 0;
    cdu.Frame();
    EXPECT_TRUE(RowHas(cdu, 99, "- - - - - - - - - - - - - - - -")) << cdu.Screen();
    // The "/" not before the fourth character, speed from 50, altitude from 1000.
    for (const char* text : {"25/10000", "250", "049/10000", "250/999", "250/"}) ExpectRefused(cdu, text, "LSK3L");
    EXPECT_EQ(profile.ClbSpdRest, 0);
    ExpectTaken(cdu, "250/10000", "LSK3L");
    EXPECT_EQ(profile.ClbSpdRest, 250);
    EXPECT_EQ(profile.ClbAltRest, 10000);
    EXPECT_TRUE(RowHas(cdu, 99, "250 / 10000")) << cdu.Screen();
    Show(cdu, cdu_page::kEconPathDes);
    ExpectTaken(cdu, "240/12000", "LSK3L");
    EXPECT_EQ(profile.DescSpdRest, 240);
    EXPECT_EQ(profile.DescAltRest, 12000);
    EXPECT_EQ(g_plan.context.PlanState, 0);
}

TEST(PerfPages, CruiseWindAndTheTemperaturePair) {
    CduRig cdu;
    Show(cdu, cdu_page::kPerfInit);
    PerformanceState& p = g_performance;

    // The direction has three digits and the "/" is the fourth character.
    for (const char* text : {"90/20", "090/", "09020", "0900/20"}) ExpectRefused(cdu, text, "LSK2R");
    EXPECT_LE(p.CruiseWindSpeed, 0);
    EXPECT_TRUE(RowHas(cdu, 66, "- - - \u00B0 / - - -")) << cdu.Screen();
    ExpectTaken(cdu, "090/20", "LSK2R");
    EXPECT_EQ(p.CruiseWindDirection, 90);
    EXPECT_EQ(p.CruiseWindSpeed, 20);
    EXPECT_TRUE(RowHas(cdu, 66, "090\u00B0/ 20")) << cdu.Screen();

    // No cruise altitude: the pair is not drawn, but its keys still take entries.
    EXPECT_FALSE(cdu.ScreenHas("I S A    D E V"));
    ExpectTaken(cdu, "5", "LSK3R");
    EXPECT_DOUBLE_EQ(p.IsaDeviation, 5);
    EXPECT_DOUBLE_EQ(p.CruiseOat, 20) << "k = 0: OAT = ISA + 15";

    // At FL350, k = 35: the standard temperature there is 15 - 69.3.
    g_plan.context.CruiseAltitude = 35000;
    ExpectTaken(cdu, "10", "LSK3R");
    EXPECT_NEAR(p.CruiseOat, 10 + 15 - 35 * 1.98, 1e-9);
    EXPECT_TRUE(RowHas(cdu, 99, "50 \u00B0F / 10 \u00B0C")) << cdu.Screen();
    ExpectTaken(cdu, "-50", "LSK4R");
    EXPECT_NEAR(p.IsaDeviation, -50 - (15 - 35 * 1.98), 1e-9);
    ExpectRefused(cdu, "X", "LSK3R");
    ExpectTaken(cdu, "0", "LSK3R");
    EXPECT_DOUBLE_EQ(p.IsaDeviation, 0);
    EXPECT_EQ(g_plan.context.PlanState, 0) << "temperatures are no plan data";

    // Transition altitude in feet, as it stands.
    ExpectRefused(cdu, "0", "LSK5R");
    ExpectTaken(cdu, "10000", "LSK5R");
    EXPECT_EQ(g_config.TransAlt, 10000);
}

TEST(PerfPages, SpeedAndMachLimits) {
    CduRig cdu;
    Show(cdu, cdu_page::kPerfInit);
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_TRUE(cdu.ScreenHas("PERF  LIMITS"));
    AircraftProfile& profile = g_profile;

    // Short Mach digits are filled up with zeros.
    ExpectTaken(cdu, "210/.8", "LSK2L");
    EXPECT_EQ(profile.ClimbIasMin, 210);
    EXPECT_NEAR(profile.ClimbMachMin, 0.800, 1e-12);
    ExpectTaken(cdu, "300/.78", "LSK3R");
    EXPECT_EQ(profile.CruiseIasMax, 300);
    EXPECT_NEAR(profile.CruiseMachMax, 0.780, 1e-12);
    ExpectTaken(cdu, "240/.765", "LSK4R");
    EXPECT_EQ(profile.DescentIasMax, 240);
    EXPECT_NEAR(profile.DescentMachMax, 0.765, 1e-12);
    EXPECT_TRUE(RowHas(cdu, 66, "210 /.800")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 132, "240 / .765")) << cdu.Screen();

    for (const char* text : {"210.800", "000/.800", "210/.000", "21/.8", "210/.8000", "210/8"})
        ExpectRefused(cdu, text, "LSK4L");
    EXPECT_EQ(profile.ClimbIasMin, 210);

    // PREV comes back to PERF INIT.
    ClearEntry(cdu);
    cdu.PressAndFrame("PREV_PAGE");
    EXPECT_TRUE(cdu.ScreenHas("PERF  INIT"));
}

TEST(PerfPages, TakeoffFlapsAndVSpeeds) {
    CduRig cdu;
    g_profile.TOFLAPSRANGE = MakeOptionText(",1,5,10,15,25,");
    Show(cdu, cdu_page::kTakeoffRef);
    AircraftProfile& profile = g_profile;
    int flaps = profile.TOFLAPS;
    for (const char* text : {"7", "0", "51", "2", "X"}) ExpectRefused(cdu, text, "LSK1L");
    EXPECT_EQ(profile.TOFLAPS, flaps);
    ExpectTaken(cdu, "15", "LSK1L");
    EXPECT_EQ(profile.TOFLAPS, 15);
    ExpectTaken(cdu, "1", "LSK1L");
    EXPECT_EQ(profile.TOFLAPS, 1);

    ExpectRefused(cdu, "250", "LSK1R");
    ExpectTaken(cdu, "249", "LSK1R");
    EXPECT_EQ(profile.V1, 249);
    ExpectRefused(cdu, "0", "LSK2R");
    ExpectTaken(cdu, "150", "LSK2R");
    EXPECT_EQ(profile.VR, 150);
    ExpectRefused(cdu, "270", "LSK3R");
    ExpectTaken(cdu, "269", "LSK3R");
    EXPECT_EQ(profile.V2, 269);

    // With no route, ZFW or cruise altitude the page leads to them.
    EXPECT_TRUE(cdu.ScreenHas("<PERF  INIT"));
    EXPECT_TRUE(cdu.ScreenHas("ROUTE>"));
    EXPECT_TRUE(cdu.ScreenHas("P R E     F L T   S T A T U S"));
    ClearEntry(cdu);
    cdu.PressAndFrame("LSK5L");
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kPerfInit);
}

TEST(PerfPages, ApproachReferenceCopyUpAndFlapSpeed) {
    CduRig cdu;
    AircraftProfile& profile = g_profile;
    profile.APPRFLAPSMIN = MakeOptionText("15");
    profile.APPRFLAPSMID = MakeOptionText("30");
    profile.APPRFLAPSMAX = MakeOptionText("40");
    profile.VREFMIN = 150;
    profile.VREFMID = 145;
    profile.VREFMAX = 135;
    Show(cdu, cdu_page::kApproachRef);
    EXPECT_TRUE(RowHas(cdu, 66, "145 K T")) << cdu.Screen();

    // An empty line copies the row up as a FLAP/SPD entry; FLAP/SPD takes it.
    ClearEntry(cdu);
    cdu.PressAndFrame("LSK2R");
    EXPECT_EQ(Scratchpad(), "30/145");
    cdu.PressAndFrame("LSK4R");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(g_performance.FlapSpeedFlaps, 30);
    EXPECT_EQ(g_performance.FlapSpeedVref, 145);
    EXPECT_TRUE(RowHas(cdu, 132, "30/145")) << cdu.Screen();

    // The speed must be the row's Vref, the name a row's, the "/" not first.
    for (const char* text : {"30/150", "20/145", "/145", "30145"}) ExpectRefused(cdu, text, "LSK4R");
    EXPECT_EQ(g_performance.FlapSpeedVref, 145);

    // A number replaces the row's Vref; 0 only written out.
    ExpectTaken(cdu, "140", "LSK3R");
    EXPECT_EQ(profile.VREFMAX, 140);
    ExpectRefused(cdu, "X", "LSK3R");
    ExpectTaken(cdu, "0", "LSK3R");
    EXPECT_EQ(profile.VREFMAX, 0);
    ExpectTaken(cdu, "40/0", "LSK4R");
    EXPECT_EQ(g_performance.FlapSpeedFlaps, 40);
}

TEST(PerfPages, EraseRestoresTheCommittedValues) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    PlanContext& pc = g_plan.context;
    AircraftProfile& profile = g_profile;
    pc.CruiseAltitude = 33000;
    profile.CostIndex = 40;
    profile.CruiseIas = 260;
    g_config.CruiseMach = 0.76;
    Show(cdu, cdu_page::kPerfInit);
    EXPECT_TRUE(RowHas(cdu, 198, "< INDEX")) << cdu.Screen();

    ExpectTaken(cdu, "FL370", "LSK1R");
    ExpectTaken(cdu, "FL390", "LSK1R");
    ExpectTaken(cdu, "120", "LSK5L");
    Show(cdu, cdu_page::kEconCrz);
    ExpectTaken(cdu, "290/.84", "LSK2L");
    EXPECT_EQ(pc.PlanState, 4);
    EXPECT_TRUE(RowHas(cdu, 99, "< ERASE")) << cdu.Screen();

    // ERASE on the cruise page (key 3) brings every slot back.
    ClearEntry(cdu);
    cdu.PressAndFrame("LSK3L");
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(pc.CruiseAltitude, 33000);
    EXPECT_EQ(profile.CostIndex, 40);
    EXPECT_EQ(profile.CruiseIas, 260);
    EXPECT_DOUBLE_EQ(g_config.CruiseMach, 0.76);
    EXPECT_FALSE(cdu.ExecLit());

    // After EXEC the change is committed: nothing is left to undo.
    Show(cdu, cdu_page::kPerfInit);
    ExpectTaken(cdu, "FL350", "LSK1R");
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(pc.Undo.CruiseAltitude, 0);
    EXPECT_EQ(pc.CruiseAltitude, 35000);
}

TEST(PerfPages, PauseSwitchesAndPageLinks) {
    CduRig cdu;
    g_config.PauseAtTod = 0;
    Show(cdu, cdu_page::kEconCrz);
    EXPECT_TRUE(cdu.ScreenHas("Pause at TOD (OFF)  >"));
    ClearEntry(cdu);
    cdu.PressAndFrame("LSK4L");
    EXPECT_EQ(g_config.PauseAtTod, 1);
    EXPECT_TRUE(cdu.ScreenHas("Pause at TOD (ON) >"));
    cdu.PressAndFrame("LSK4L");
    EXPECT_EQ(g_config.PauseAtTod, 0);

    g_config.PauseAtDistFromDestOn = 0;
    g_config.PauseAtDistFromDest = 20;
    Show(cdu, cdu_page::kEconPathDes);
    EXPECT_TRUE(cdu.ScreenHas("PAUSE 20 NM From ()(OFF)")) << cdu.Screen();
    cdu.PressAndFrame("LSK4L");
    EXPECT_EQ(g_config.PauseAtDistFromDestOn, 1);
    EXPECT_TRUE(cdu.ScreenHas("(ON)"));

    // RTA > leads to PROGRESS at its page 2; RTA PROGRESS's LIMITS to PERF LIMITS.
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kProgress);
    EXPECT_EQ(g_smiths.progress.page, 2);
    cdu.PressAndFrame("NEXT_PAGE");
    EXPECT_TRUE(cdu.ScreenHas("RTA  PROGRESS"));
    cdu.PressAndFrame("LSK6L");
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kPerfInit);
    EXPECT_EQ(g_smiths.perf.page, 2);
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kProgress);
    Show(cdu, cdu_page::kPerfInit);
    g_smiths.perf.page = 1;
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kTakeoffRef);
}

TEST(PerfPages, TimeFormatWithTheTenthOfAMinute) {
    SimState& s = g_sim;
    g_config.DispETALocalTime = 0;
    s.zulu_hour = 23;
    s.zulu_minute = 50;
    s.local_second = 30;
    char out[48];
    // 30 nm at 120 kt: 15 minutes; 23:50:30 + 15:00 is 00:05 and a half.
    ASSERT_TRUE(FormatTimeAndDistance(30, 120, 60, false, out, sizeof out));
    EXPECT_STREQ(out, "0005.5Z/30 NM");
    ASSERT_TRUE(FormatTimeAndDistance(30, 120, 60, true, out, sizeof out));
    EXPECT_STREQ(out, "0005.5Z / 30.0");
    // 250 nm at 100 kt: 2 h 30 min; the hour carries past midnight.
    ASSERT_TRUE(FormatTimeAndDistance(250, 100, 60, false, out, sizeof out));
    EXPECT_STREQ(out, "0220.5Z/250 NM");
    // At or below the least ground speed, no time at all.
    EXPECT_FALSE(FormatTimeAndDistance(30, 60, 60, false, out, sizeof out));
    EXPECT_STREQ(out, "");
    // Local time from the local clock.
    g_config.DispETALocalTime = 1;
    s.local_hour = 9;
    s.local_minute = 0;
    s.local_second = 0;
    ASSERT_TRUE(FormatTimeAndDistance(10, 200, 60, false, out, sizeof out));
    EXPECT_STREQ(out, "0903.0L/10 NM");
    g_config.DispETALocalTime = 0;
}

TEST(PerfPages, ScreensOfAKnownState) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    AircraftProfile& profile = g_profile;
    g_plan.context.CruiseAltitude = 35000;
    g_config.TransAlt = 18000;
    profile.CostIndex = 80;
    profile.ClimbIas = 250;
    profile.CruiseIas = 280;
    profile.DescentIas = 240;
    g_config.ClimbMach = 0.74;
    g_config.CruiseMach = 0.78;
    g_config.DescentMach = 0.76;
    profile.ClbSpdRest = 250;
    profile.ClbAltRest = 10000;
    profile.ClimbIasMin = 180;
    profile.ClimbMachMin = 0.55;
    profile.ClimbIasMax = 250;
    profile.ClimbMachMax = 0.78;
    profile.TOFLAPS = 5;
    profile.V1 = 140;
    profile.VR = 145;
    profile.V2 = 152;
    profile.EngThrust = 24;
    g_performance.ZeroFuelWeight = 110000;
    g_performance.FuelReserve = 8000;
    g_performance.GrossWeight = 140000;
    g_performance.CruiseWindDirection = 270;
    g_performance.CruiseWindSpeed = 45;
    EnterIsaDeviation(-5);
    g_config.PauseAtTod = 0;

    Show(cdu, cdu_page::kPerfInit);
    ExpectScreen(cdu, "perf_init");
    cdu.PressAndFrame("NEXT_PAGE");
    ExpectScreen(cdu, "perf_limits");
    Show(cdu, cdu_page::kEconClb);
    ExpectScreen(cdu, "econ_clb");
    Show(cdu, cdu_page::kEconCrz);
    ExpectScreen(cdu, "econ_crz");
    Show(cdu, cdu_page::kEconPathDes);
    ExpectScreen(cdu, "econ_path_des");
    Show(cdu, cdu_page::kDesForecasts);
    ExpectScreen(cdu, "des_forecasts");
    Show(cdu, cdu_page::kTakeoffRef);
    ExpectScreen(cdu, "takeoff_ref");
    cdu.PressAndFrame("LSK5R");  // DEPARTURE>: no runway chosen yet
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kDepartures);
    EXPECT_EQ(g_smiths.departures.page, 1);
    Show(cdu, cdu_page::kApproachRef);
    ExpectScreen(cdu, "approach_ref");
    g_smiths.progress.page = 3;
    Show(cdu, cdu_page::kProgress);
    ExpectScreen(cdu, "rta_progress");
}

TEST(PerfPages, PhasePageTimesAndThePath) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    PlanContext& pc = g_plan.context;
    ASSERT_NE(pc.ActiveLeg, kNoActiveLeg);
    PlanWaypoint& next = g_plan.ActivePlan[pc.ActiveLeg];
    SetText(next.Ident, "NORMY");
    next.Altitude = 5000;
    pc.CruiseAltitude = 35000;
    // The tick doesn't run between these frames: the samples stand as set,
    // but for those taken at every call (ground speed, altitude).
    SimState& s = g_sim;
    FakeSimulator& sim = cdu.sim();
    auto ground_speed = [&](double knots) { sim.tokens[Token::GROUND_VELOCITY] = knots * 1.68781; };
    auto altitude = [&](double feet) { sim.calculator["(A:INDICATED ALTITUDE, feet)"] = feet; };
    ground_speed(300);
    s.zulu_hour = 12;
    s.zulu_minute = 0;
    s.local_second = 0;
    g_vnav.CruiseReached = 0;
    g_vnav.DescentActive = 0;
    g_lnav.DistToActive = 10;
    g_plan_distances.DistToTc = 50;

    // Climb: the next waypoint lies before T/C: its altitude, and 10 nm at 300 kt.
    Show(cdu, cdu_page::kEconClb);
    EXPECT_TRUE(RowHas(cdu, 22, "A T   NORMY")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "5000.00")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 55, "T O   NORMY")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 66, "1202.0Z/10 NM")) << cdu.Screen();
    // Beyond T/C, the time to T/C (50 nm, 10 minutes); at 60 kt no time at all.
    g_lnav.DistToActive = 60;
    cdu.Frame();
    EXPECT_TRUE(RowHas(cdu, 22, "T O   T / C")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "1210.0Z / 50.0")) << cdu.Screen();
    ground_speed(60);
    cdu.Frame();
    EXPECT_FALSE(cdu.ScreenHas("T / C"));

    // Cruise: the next waypoint before T/D, 30 nm at 300 kt.
    ground_speed(300);
    g_vnav.CruiseReached = 1;
    g_lnav.DistToActive = 30;
    g_plan_distances.DistToTd = 100;
    Show(cdu, cdu_page::kEconCrz);
    EXPECT_TRUE(RowHas(cdu, 22, "T O   NORMY")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "1206.0Z/30 NM")) << cdu.Screen();
    g_lnav.DistToActive = 130;
    cdu.Frame();
    EXPECT_TRUE(RowHas(cdu, 22, "T O   T / D")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "1220.0Z/100 NM")) << cdu.Screen();

    // Descent: 500 ft above the path, sinking at 1500 ft/min.
    g_vnav.DescentActive = 1;
    g_vnav.PathDeviationValid = 1;
    g_vnav.PathAltitude = 10000;
    g_vnav.TargetAltitude = 3000;
    g_vnav.TargetDistance = 30;
    g_vnav.RequiredVs = 1500;
    altitude(10500);
    s.vertical_speed.now = -1500;
    g_lnav.DistToActive = 30;
    Show(cdu, cdu_page::kEconPathDes);
    EXPECT_TRUE(RowHas(cdu, 55, "T O   NORMY")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 66, "1206.0Z/30 NM")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 132, "  500 HI")) << cdu.Screen();
    // Flown angle atan(1500 / (300 x 6076.12 / 60)) = 2.83 degrees; to the
    // target atan(7500 / (30 x 6076.12)) = 2.36 degrees.
    EXPECT_TRUE(RowHas(cdu, 165, "2.8   2.4     1500")) << cdu.Screen();
    altitude(9000);
    cdu.Frame();
    EXPECT_TRUE(RowHas(cdu, 132, " 1000 LO")) << cdu.Screen();
    altitude(10150);
    s.vertical_speed.now = 300;
    cdu.Frame();
    EXPECT_TRUE(RowHas(cdu, 132, "----  --")) << cdu.Screen();
    EXPECT_FALSE(RowHas(cdu, 165, "1500")) << "climbing: no FPA line";
}

TEST(PerfPages, ProgressWindTemperatureAndTrack) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    SimState& s = g_sim;
    s.head_wind = -20;
    s.cross_wind = 10;
    s.wind_direction_display = 95;
    s.wind_speed = 22;
    s.outside_temperature = -40;
    cdu.sim().calculator["(A:INDICATED ALTITUDE, feet)"] = 30000;
    s.track = 95;
    s.true_airspeed.now = 450;
    g_lnav.XtkDistance = 1.234;
    g_lnav.XtkSide = 1;
    g_vnav.DescentActive = 0;
    g_smiths.progress.page = 2;
    Show(cdu, cdu_page::kProgress);
    EXPECT_TRUE(cdu.ScreenHas("PROGRESS"));
    EXPECT_TRUE(RowHas(cdu, 22, "T A I L W I N D")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "20 KT                             R  10 KT")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 66, "095\u00B0/22")) << cdu.Screen();
    // ISA deviation at 30000 ft: -40 - (15 - 30 x 1.98) = 4.4.
    EXPECT_TRUE(RowHas(cdu, 66, "-40\u00B0C /  4\u00B0C")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 99, "L 1.23 NM")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 132, "450 KT")) << cdu.Screen();
    s.head_wind = 5;
    s.cross_wind = -12;
    cdu.Frame();
    EXPECT_TRUE(RowHas(cdu, 22, "H E A D W I N D")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, " 5 KT                             L  12 KT")) << cdu.Screen();
}

TEST(PerfPages, HostileTextsOnEveryLine) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    const int pages[] = {cdu_page::kPerfInit, cdu_page::kApproachRef, cdu_page::kTakeoffRef, cdu_page::kProgress,
                         cdu_page::kEconClb,  cdu_page::kEconCrz,     cdu_page::kEconPathDes, cdu_page::kDesForecasts};
    const char* texts[] = {"/",      "FL",          "99999999999999999999", "-99999999999",  ".",
                           "/////",  "1/2/3",       "FL-5",                 "-0",            "1e308/1e308",
                           "250/.",  "/.0000000001", "000/.000",            "ZZZZZZZZZZZZZZZZZZZZZZZZ"};
    for (int page : pages) {
        for (const char* text : texts) {
            for (int key = 1; key <= 10; ++key) {
                g_smiths.CduPage = page;
                g_smiths.perf.page = key % 2 + 1;
                SetScratchpad(text);
                ClearCduMessage();
                g_smiths.LineSelectLatch = key;
                cdu.Frame();
                // Either taken (line cleared) or refused with the text kept.
                std::string left = Scratchpad();
                EXPECT_TRUE(left.empty() || left == text || Message() != "INVALID ENTRY")
                    << page << " key " << key << " " << text;
                if (Message() == "INVALID ENTRY") {
                    EXPECT_EQ(left, text) << page << " key " << key;
                }
            }
        }
    }
    // Whatever came in, the values stay within their rules.
    EXPECT_GE(g_plan.context.CruiseAltitude, 0);
    EXPECT_GE(g_profile.CostIndex, -1);
    EXPECT_LE(g_profile.CostIndex, 200);
    EXPECT_GE(g_performance.ZeroFuelWeight, 0);
    EXPECT_LE(g_performance.ZeroFuelWeight, 2000000);
    EXPECT_LE(g_profile.V2, 269);
    EXPECT_TRUE(g_profile.TOFLAPS == 0 || TakeoffFlapsListed(g_profile.TOFLAPS)) << g_profile.TOFLAPS;
    EXPECT_GE(g_profile.ClimbIas, 0);
    EXPECT_LE(g_config.CruiseMach, 4);
}

TEST(PerfPages, ProgressFromAndToGo) {
    CduRig cdu;
    ExecuteCompanyRoute(cdu, "KSEAKGEG");
    PlanContext& pc = g_plan.context;
    ASSERT_NE(pc.ActiveLeg, kNoActiveLeg);
    FakeSimulator& sim = cdu.sim();
    sim.tokens[Token::FUEL_TOTAL_GALLONS] = 3000;
    sim.tokens[Token::FUEL_POUNDS_PER_GALLON] = 6.7;
    LastPassedWaypoint& from = g_lnav.LastPassed;
    SetText(from.ident, "KSEA");
    SetText(from.time, "1155Z");
    from.altitude = 22000;
    from.fuel = 20400;
    g_config.TransAlt = 18000;
    g_lnav.DistToActive = 20.4;
    g_lnav.BearingToActive = 7;
    g_sim.wind_direction_display = 275;
    g_sim.wind_speed = 40;
    g_smiths.progress.page = 1;
    Show(cdu, cdu_page::kProgress);

    // FROM: name, flight level above the transition altitude, time, fuel then.
    EXPECT_TRUE(RowHas(cdu, 33, "KSEA")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "FL220")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "1155Z")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 33, "20.4")) << cdu.Screen();
    // The active entry: bearing with three digits, whole miles.
    std::string active = TextOf(g_plan.ActivePlan[pc.ActiveLeg].Ident).data();
    EXPECT_TRUE(RowHas(cdu, 66, active)) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 66, "007 20")) << cdu.Screen();
    // The next entry and the destination follow on their rows.
    EXPECT_TRUE(RowHas(cdu, 99, TextOf(g_plan.ActivePlan[pc.ActiveLeg + 1].Ident).data())) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 132, "KGEG")) << cdu.Screen();
    // Fuel on board: 3000 gallons of 6.7 pounds; the wind.
    EXPECT_TRUE(RowHas(cdu, 165, "20.1")) << cdu.Screen();
    EXPECT_TRUE(RowHas(cdu, 165, "275\u00B0/ 40")) << cdu.Screen();
    // NAV STATUS > leads on.
    cdu.PressAndFrame("LSK6R");
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kNavStatus);
}
