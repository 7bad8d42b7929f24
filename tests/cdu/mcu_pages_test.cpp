// mcu_pages_test.cpp: the MCU's pages as a pilot uses them: a stored plan
// loaded and flown to, the active leg stepped, the autopilot altitude set,
// direct-to a fix spelled on the rocker and typed on the PC keyboard, the
// airport page's runways and their tuning, the lamps, and the screen that
// is painted only when asked for.
#include "cdu/mcu_rig.h"

#include "frame/input_capture.h"
#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "guidance/runway_tuning.h"
#include "plan/route_files.h"

#include <cmath>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>

namespace {
using mcu_test::McuRig;

constexpr double kPi = 3.14159265358979323846;
constexpr double kEarthNm = 3440.065;   // mean earth radius in nautical miles

// Great-circle distance and initial true course, worked out here.
void Haversine(double lat1, double lon1, double lat2, double lon2, double& nm, double& course) {
    double p1 = lat1 * kPi / 180, p2 = lat2 * kPi / 180;
    double dp = p2 - p1, dl = (lon2 - lon1) * kPi / 180;
    double a = std::sin(dp / 2) * std::sin(dp / 2) + std::cos(p1) * std::cos(p2) * std::sin(dl / 2) * std::sin(dl / 2);
    nm = 2 * kEarthNm * std::asin(std::sqrt(a));
    double y = std::sin(dl) * std::cos(p2);
    double x = std::cos(p1) * std::sin(p2) - std::sin(p1) * std::cos(p2) * std::cos(dl);
    course = std::fmod(std::atan2(y, x) * 180 / kPi + 360, 360);
}

int StoredPlanIndex(const char* file) {
    for (int i = 1; i <= g_stored_plans.count; ++i)
        if (TextOf(g_stored_plans.entries[static_cast<size_t>(i)].FileName) == file) return i;
    return 0;
}

// FPLN, the plan highlighted by NEXT, ENTER, and the tick that loads it.
void LoadStoredPlan(McuRig& mcu, const char* file) {
    mcu.PressAndFrame("FPLN");
    int index = StoredPlanIndex(file);
    ASSERT_GT(index, 0) << file;
    mcu.PressTimes("NEXT", index - 1);
    mcu.PressAndFrame("ENTER");
    mcu.Ticks(3);
}

TEST(McuPages, FplnEnterFliesThePlanAndToShowsDistanceBearingAndTime) {
    McuRig mcu;
    // In the air south of Seattle, at 240 knots over the ground.
    mcu.Place(47.30, -122.40, 240);
    mcu.Ticks(2);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    ASSERT_EQ(g_mcu_state.McuPage, mcu_page::kTo);
    const PlanContext& pc = g_plan.context;
    ASSERT_EQ(pc.ActiveLeg, 1);
    const PlanWaypoint& to = g_plan.ActivePlan[1];
    std::string heading = mcu.Row(0);
    EXPECT_EQ(heading.rfind("TO:", 0), 0u) << mcu.Screen();
    EXPECT_NE(heading.find(to.Ident.data()), std::string::npos) << heading;
    EXPECT_NE(heading.find("1/" + std::to_string(pc.ActiveLastRow)), std::string::npos) << heading;

    double nm = 0, course = 0;
    Haversine(47.30, -122.40, to.Latitude, to.Longitude, nm, course);
    char line[64];
    std::snprintf(line, sizeof line, "DIST: %-4.1f NM", nm);
    EXPECT_EQ(mcu.Row(13), std::string(line) + "|LNAV(OFF)") << mcu.Screen();
    std::snprintf(line, sizeof line, "BRG:  %03.0f", course);  // variation 0 here
    EXPECT_EQ(mcu.Row(25).substr(0, 9), line) << mcu.Screen();
    int minutes = static_cast<int>(nm / 240 * 60);
    std::snprintf(line, sizeof line, "ETE:  %02d:%02d (", minutes / 60, minutes % 60);
    EXPECT_EQ(mcu.Row(37).substr(0, 13), line) << mcu.Screen();
    // The destination's line: KGEG with its direct distance.
    const PlanWaypoint& last = g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLastRow)];
    double dest_nm = 0, dest_course = 0;
    Haversine(47.30, -122.40, last.Latitude, last.Longitude, dest_nm, dest_course);
    std::snprintf(line, sizeof line, "KGEG:%4.0f/%03.0f", dest_nm, dest_course);
    EXPECT_EQ(mcu.Row(49).substr(0, std::string(line).size()), line) << mcu.Screen();
}

TEST(McuPages, PrevAndNextStepTheActiveLegRoundThePlan) {
    McuRig mcu;
    // Without a plan the keys do nothing.
    mcu.PressAndFrame("PREV");
    mcu.PressAndFrame("NEXT");
    EXPECT_EQ(g_plan.context.ActiveLeg, kNoActiveLeg);
    EXPECT_EQ(mcu.Row(0), "TO:");

    mcu.Place(47.45, -122.31, 0);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    int last = g_plan.context.ActiveLastRow;
    ASSERT_GE(last, 3);
    mcu.PressAndFrame("PREV");  // from 1 round to the last
    EXPECT_EQ(g_plan.context.ActiveLeg, last);
    EXPECT_NE(mcu.Row(0).find(std::to_string(last) + "/" + std::to_string(last)), std::string::npos) << mcu.Screen();
    EXPECT_DOUBLE_EQ(g_plan.context.ActiveWaypointLatitude, g_plan.ActivePlan[static_cast<size_t>(last)].Latitude);
    mcu.PressAndFrame("NEXT");  // from the last round to 1
    EXPECT_EQ(g_plan.context.ActiveLeg, 1);
    mcu.PressAndFrame("NEXT");
    EXPECT_EQ(g_plan.context.ActiveLeg, 2);
    EXPECT_NE(mcu.Row(0).find(g_plan.ActivePlan[2].Ident.data()), std::string::npos) << mcu.Screen();
}

TEST(McuPages, AltFlSetWithTheRockerSendsTheAutopilotAltitude) {
    McuRig mcu;
    mcu.sim().calculator["(A:AUTOPILOT ALTITUDE LOCK VAR, feet)"] = 12345;
    mcu.Ticks(18);
    mcu.PressAndFrame("ALT/FL");
    EXPECT_EQ(mcu.Row(0), "ALT/FL:");
    EXPECT_EQ(mcu.Row(13), "AP ALT:   12345");
    EXPECT_EQ(mcu.Row(25), "NEW ALT:  12000") << "the selected altitude in whole thousands";
    mcu.PressTimes("UP", 2);     // 14000
    mcu.PressAndFrame("RIGHT");  // 14500
    mcu.PressAndFrame("DOWN");   // 13500
    EXPECT_EQ(mcu.Row(25), "NEW ALT:  13500");
    mcu.sim().key_events.clear();
    mcu.PressAndFrame("ENTER");
    ASSERT_EQ(mcu.sim().key_events.size(), 1u);
    EXPECT_EQ(mcu.sim().key_events[0].first, 0x1024Cu);
    EXPECT_EQ(mcu.sim().key_events[0].second, 13500u);
    EXPECT_EQ(g_mcu_state.McuPage, mcu_page::kTo);

    // The steps stop at the top and at 0.
    mcu.PressAndFrame("ALT/FL");
    g_mcu_state.McuAltitudeEntry = 97000;
    mcu.PressTimes("RIGHT", 3);
    EXPECT_EQ(g_mcu_state.McuAltitudeEntry, 97500);
    mcu.PressTimes("UP", 2);
    EXPECT_EQ(g_mcu_state.McuAltitudeEntry, 97500) << "98500 is beyond the top";
    g_mcu_state.McuAltitudeEntry = 97000;
    mcu.PressTimes("UP", 2);
    EXPECT_EQ(g_mcu_state.McuAltitudeEntry, 98000);
    g_mcu_state.McuAltitudeEntry = 500;
    mcu.PressAndFrame("DOWN");
    EXPECT_EQ(g_mcu_state.McuAltitudeEntry, 500);
    mcu.PressTimes("LEFT", 2);
    EXPECT_EQ(g_mcu_state.McuAltitudeEntry, 0);
}

TEST(McuPages, DirtoToAFixSpelledOnTheRockerKeepsTheDestination) {
    McuRig mcu;
    mcu.Place(47.45, -122.31, 0);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    mcu.Place(47.40, -121.00, 250);
    mcu.Ticks(2);
    mcu.PressAndFrame("DIRTO");
    EXPECT_EQ(mcu.Row(0), "DIRTO:");
    // E is 15 up from the blank, P 26, H 18; the first press opens the field.
    mcu.PressAndFrame("UP");
    mcu.PressTimes("UP", 15);
    mcu.PressAndFrame("RIGHT");
    mcu.PressTimes("UP", 26);
    mcu.PressAndFrame("RIGHT");
    mcu.PressTimes("UP", 18);
    EXPECT_EQ(std::string(McuFieldText()), "EPH");
    ASSERT_GE(g_mcu_state.candidate_count, 1);
    // EPH the VOR, nearest first: its line leads the list.
    double nm = 0, course = 0;
    Haversine(47.40, -121.00, 47.377917, -119.424000, nm, course);
    char line[64];
    std::snprintf(line, sizeof line, "%-5s %3s %03.0f", "EPH", "VOR", course);
    EXPECT_TRUE(mcu.Shows(line)) << line << "\n" << mcu.Screen();
    mcu.PressAndFrame("ENTER");
    const PlanContext& pc = g_plan.context;
    ASSERT_EQ(pc.ActiveLastRow, 2);
    EXPECT_EQ(TextOf(g_plan.ActivePlan[0].Ident), "DIRECT");
    EXPECT_EQ(TextOf(g_plan.ActivePlan[0].WaypointType), "WPT");
    EXPECT_EQ(g_plan.ActivePlan[0].Altitude, -999);
    EXPECT_NEAR(g_plan.ActivePlan[0].Latitude, 47.40, 1e-6);
    EXPECT_EQ(TextOf(g_plan.ActivePlan[1].Ident), "EPH");
    EXPECT_EQ(TextOf(g_plan.ActivePlan[2].Ident), "KGEG");
    EXPECT_EQ(pc.ActiveLeg, 1);
    EXPECT_EQ(g_mcu_state.McuPage, mcu_page::kTo);
    EXPECT_NE(mcu.Row(0).find("EPH"), std::string::npos) << mcu.Screen();
}

TEST(McuPages, DirtoTypedOnTheKeyboardToAnAirportEndsThere) {
    McuRig mcu;
    mcu.Place(47.45, -122.31, 0);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    mcu.PressAndFrame("DIRTO");
    mcu.PressAndFrame("KBD");
    ASSERT_EQ(g_mcu_page.direct_entry, 1);
    EXPECT_TRUE(mcu.keyboard().Hooked());
    for (uint8_t key : {DIK_K, DIK_G, DIK_E, DIK_G}) mcu.Tap(key);
    EXPECT_EQ(std::string(McuFieldText()), "KGEG");
    // G typed into the field never reached the simulator's gear binding.
    EXPECT_TRUE(mcu.keyboard().Stroke('G'));
    mcu.Tap(DIK_RETURN);
    EXPECT_EQ(g_mcu_page.direct_entry, 0);
    EXPECT_FALSE(mcu.keyboard().Hooked());
    ASSERT_GE(g_mcu_state.candidate_count, 1);
    EXPECT_EQ(TextOf(g_mcu_state.candidates[1].record.Ident), "KGEG");
    mcu.PressAndFrame("ENTER");
    const PlanContext& pc = g_plan.context;
    ASSERT_EQ(pc.ActiveLastRow, 1) << "one entry after DIRECT";
    EXPECT_EQ(TextOf(g_plan.ActivePlan[1].Ident), "KGEG");
    EXPECT_EQ(TextOf(g_plan.ActivePlan[1].WaypointType), "APT");
    EXPECT_EQ(pc.ActiveLeg, 1);
}

TEST(McuPages, AptShowsTheRunwaysAndIlsOfThePlansAirportAndTunesTheChosenOne) {
    McuRig mcu;
    mcu.Place(47.45, -122.31, 0);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    mcu.PressAndFrame("APT");
    // KSEA as apts.txt has it: six runways, four a page.
    EXPECT_EQ(mcu.Row(0), "APT: KSEA - Elev:433    1/2") << mcu.Screen();
    char line[64];
    std::snprintf(line, sizeof line, "%-3s %3s %-6s %03d %6d", "16L", "ISNQ", "110.30", 161, 11893);
    EXPECT_EQ(mcu.Row(13), line);
    std::snprintf(line, sizeof line, "%-3s %3s %-6s %03d %6d", "16C", "ISZI", "111.70", 161, 9420);
    EXPECT_EQ(mcu.Row(37), line);
    mcu.PressAndFrame("APT");  // the next page
    std::snprintf(line, sizeof line, "%-3s %3s %-6s %03d %6d", "16R", "ICJL", "110.75", 161, 8495);
    EXPECT_EQ(mcu.Row(13), line) << mcu.Screen();
    EXPECT_EQ(mcu.Row(0), "APT: KSEA - Elev:433    2/2");
    mcu.PressAndFrame("APT");
    EXPECT_EQ(mcu.Row(0), "APT: KSEA - Elev:433    1/2") << "round to the first";

    // 34R chosen with NEXT and ENTER: its course, then 110.30 as BCD.
    mcu.PressTimes("NEXT", 2);
    mcu.sim().key_events.clear();
    mcu.PressAndFrame("ENTER");
    mcu.Ticks(1);
    ASSERT_EQ(mcu.sim().key_events.size(), 2u);
    EXPECT_EQ(mcu.sim().key_events[0].first, 0x100B4u);
    EXPECT_EQ(mcu.sim().key_events[0].second, 341u);
    EXPECT_EQ(mcu.sim().key_events[1].first, 0x100ACu);
    EXPECT_EQ(mcu.sim().key_events[1].second, 0x11030u);
    mcu.Ticks(1);
    EXPECT_EQ(mcu.sim().key_events.size(), 2u) << "one request, one tuning";
    EXPECT_EQ(TextOf(g_runway_tuning.runway), "34R");

    // Well away from the origin the departure's runway is forgotten.
    mcu.Place(47.62, -122.31, 250);  // about ten miles north of KSEA
    mcu.Ticks(18);
    EXPECT_EQ(g_runway_tuning.selected, kNoRunwaySelected);
    mcu.sim().key_events.clear();
    g_tick.tuning_requests = 1;
    mcu.Ticks(1);
    for (const auto& event : mcu.sim().key_events) EXPECT_NE(event.first, 0x100B4u) << "nothing left to tune";
}

TEST(McuPages, TheLampsFollowLnavAndTheHold) {
    McuRig mcu;
    mcu.Frame();
    EXPECT_FALSE(mcu.LnavLamp());
    mcu.PressAndFrame("LNAV");  // no plan: LNAV stays off
    EXPECT_FALSE(mcu.LnavLamp());
    mcu.PressAndFrame("HOLD");  // and HOLD needs LNAV
    EXPECT_FALSE(mcu.HoldLamp());

    mcu.Place(47.45, -122.31, 0);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    mcu.PressAndFrame("LNAV");
    EXPECT_TRUE(mcu.LnavLamp());
    EXPECT_FALSE(mcu.HoldLamp());
    mcu.PressAndFrame("HOLD");
    EXPECT_TRUE(mcu.HoldLamp());
    EXPECT_EQ(g_holds.HoldCount, 1);
    EXPECT_EQ(g_holds.HoldTable[1].ActiveRow, g_plan.context.ActiveLeg) << "the hold is at the active waypoint";
    mcu.PressAndFrame("HOLD");  // leave it
    EXPECT_FALSE(mcu.HoldLamp());
    EXPECT_EQ(g_holds.HoldExitState, 3);
    mcu.PressAndFrame("HOLD");
    EXPECT_TRUE(mcu.HoldLamp());
    mcu.PressAndFrame("LNAV");  // LNAV off ends the hold too
    EXPECT_FALSE(mcu.LnavLamp());
    EXPECT_FALSE(mcu.HoldLamp());
}

TEST(McuPages, TheScreenIsPaintedOnlyWhenAskedFor) {
    McuRig mcu;
    mcu.Place(47.30, -122.40, 240);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    mcu.Ticks(100);  // past the slow refresh's first turn
    uint64_t paints = g_mcu_state.paints;
    mcu.Frame();
    mcu.Frame();
    EXPECT_EQ(g_mcu_state.paints, paints) << "frames without a tick keep the screen";
    mcu.PressAndFrame("TO");
    EXPECT_EQ(g_mcu_state.paints, paints + 1) << "a key paints at once";
    // A new clock second redraws the moving lines alone.
    paints = g_mcu_state.paints;
    std::string before = mcu.Row(13);
    mcu.Place(47.40, -122.40, 240);
    mcu.Second();
    EXPECT_NE(mcu.Row(13), before) << "the distance moved";
    EXPECT_NE(mcu.Row(0), "") << "the heading stands";
    // The whole screen comes again when the slow refresh turns round.
    uint64_t whole_before = g_mcu_state.paints;
    mcu.Ticks(92);
    EXPECT_GE(g_mcu_state.paints, whole_before + 1);
    EXPECT_LE(g_mcu_state.paints, whole_before + 2);
    // No avionics power: cleared, and no page drawn.
    mcu.sim().tokens[Token::AVIONICS_POWER] = 0;
    mcu.Second();
    paints = g_mcu_state.paints;
    mcu.PressAndFrame("FPLN");
    EXPECT_EQ(g_mcu_state.paints, paints);
}

TEST(McuPages, LegsEditStoresACrossingAltitudeAtOnce) {
    McuRig mcu;
    mcu.Place(47.45, -122.31, 0);
    LoadStoredPlan(mcu, "KSEAKGEG.RTE");
    mcu.PressAndFrame("LEGS");
    EXPECT_EQ(mcu.Row(0), "LEGS:");
    const PlanWaypoint& first = g_plan.ActivePlan[1];
    EXPECT_EQ(mcu.Row(13).substr(0, 5), (std::string(first.Ident.data()) + "     ").substr(0, 5)) << mcu.Screen();
    mcu.PressAndFrame("LEGS_EDIT");
    mcu.PressAndFrame("NEXT");  // the second leg
    mcu.PressTimes("UP", 9);
    mcu.PressAndFrame("RIGHT");
    std::string cross = "> Cross " + std::string(g_plan.ActivePlan[2].Ident.data()) + " At 09500";
    EXPECT_EQ(mcu.Row(61), cross) << mcu.Screen();
    mcu.PressAndFrame("ENTER");
    const PlanContext& pc = g_plan.context;
    EXPECT_EQ(pc.PlanState, 3) << "committed, no MOD state";
    EXPECT_EQ(pc.NextRestrictionRow, 2);
    EXPECT_EQ(g_plan.ActivePlan[2].Altitude, 9500);
    EXPECT_EQ(g_plan.ActivePlan[2].Restricted, 1);
    EXPECT_EQ(g_plan.ModPlan[2].Altitude, 9500);
    EXPECT_FALSE(mcu.Shows("> Cross"));
    EXPECT_TRUE(mcu.Shows(" 9500")) << mcu.Screen();
}
}  // namespace

namespace {
TEST(McuPages, RandomKeysAndTypingKeepEveryValueInItsRange) {
    McuRig mcu;
    mcu.Place(47.45, -122.31, 200);
    std::mt19937 random(20261125);
    const uint8_t kTyped[] = {DIK_A, DIK_E, DIK_K, DIK_S, DIK_G, DIK_Z, DIK_1, DIK_BACK, DIK_UP, DIK_DOWN,
                              DIK_PRIOR, DIK_NEXT, DIK_RETURN};
    for (int step = 0; step < 3000; ++step) {
        int roll = static_cast<int>(random() % 100);
        if (roll < 75) {
            mcu.PressAndFrame(McuKeyAt(static_cast<int>(random() % McuKeyCount()))->name);
        } else if (roll < 90) {
            mcu.Tap(kTyped[random() % std::size(kTyped)]);
        } else {
            mcu.Ticks(1 + static_cast<int>(random() % 20));
        }
        const McuState& m = g_mcu_state;
        const PlanContext& pc = g_plan.context;
        ASSERT_LE(McuFieldText().size(), static_cast<size_t>(kMcuFieldLength)) << step;
        ASSERT_GE(m.McuCursor, 1) << step;
        ASSERT_LE(m.McuCursor, kMcuFieldLength) << step;
        ASSERT_GE(m.McuAltitudeEntry, 0) << step;
        ASSERT_LE(m.McuAltitudeEntry, kMcuAltitudeTop) << step;
        ASSERT_GE(m.LegsEditValue, 0) << step;
        ASSERT_LE(m.LegsEditValue, kMcuAltitudeTop) << step;
        ASSERT_LE(m.candidate, m.candidate_count) << step;
        ASSERT_LT(pc.ActiveLastRow, kPlanRows) << step;
        ASSERT_TRUE(pc.ActiveLeg == kNoActiveLeg || (pc.ActiveLeg >= 0 && pc.ActiveLeg <= pc.ActiveLastRow)) << step;
        ASSERT_TRUE(m.McuPage == mcu_page::kTo || m.McuPage == mcu_page::kFpln || m.McuPage == mcu_page::kApt ||
                    m.McuPage == mcu_page::kLegs || m.McuPage == mcu_page::kDirto || m.McuPage == mcu_page::kAltFl)
            << step;
        // The keyboard is taken exactly while entry runs.
        ASSERT_EQ(mcu.keyboard().Hooked(), g_mcu_page.direct_entry == 1) << step;
    }
}
}  // namespace

namespace {
TEST(McuPages, TheTwinIsTheSameUnitAndTheCockpitCopyRestsWhileThe2DPanelShows) {
    McuRig mcu;
    // MCU_LM, placed in the virtual cockpit beside the 2D MCU.
    GaugeInstance twin(GaugeId::MCU_LM, "VC");
    twin.Service(PANEL_SERVICE_PRE_INSTALL);
    twin.Service(PANEL_SERVICE_PRE_INITIALIZE);
    twin.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    mcu.PressOn(GaugeId::MCU_LM, "DIRTO");
    mcu.Frame();
    EXPECT_EQ(g_mcu_state.McuPage, mcu_page::kDirto);
    EXPECT_EQ(mcu.Row(0), "DIRTO:") << "the 2D MCU shows what the twin's key chose";
    mcu.PressOn(GaugeId::MCU_LM, "UP");  // the same field, whichever unit spells it
    mcu.Frame();
    mcu.Press("UP");
    mcu.Frame();
    EXPECT_EQ(std::string(McuFieldText()), "0");

    // With the 2D panel shown the cockpit copy draws nothing, however asked.
    mcu.sim().window_visible[0] = true;
    uint64_t paints = g_mcu_state.paints;
    mcu.PressOn(GaugeId::MCU_LM, "TO");
    twin.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_EQ(g_mcu_state.paints, paints);
    // The 2D panel closed: it draws.
    mcu.sim().window_visible[0] = false;
    twin.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_EQ(g_mcu_state.paints, paints + 1);
    EXPECT_EQ(g_mcu_state.McuPage, mcu_page::kTo);
    twin.Service(PANEL_SERVICE_DISCONNECT);
}
}  // namespace
