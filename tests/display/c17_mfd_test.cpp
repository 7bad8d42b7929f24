// The C-17 display's screens: the outer panel's request variables, read by
// the instance of each screen at update, row by row of the routine's table;
// the screen a parameter names; the parameter words that preset pages.
#include "display/c17_mfd.h"
#include "display/display_state.h"
#include "frame/gauge_callback.h"
#include "frame/module_state.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/module_reset.h"
#include "frame/sim_state.h"
#include "../platform/canvas.h"

#include <gtest/gtest.h>

#include <string>

namespace {
// The outer panel's four variables exist before the gauges connect, as a
// panel's XML gauges make them; ids chosen apart from 0 so a wrong lookup shows.
class C17Screens : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        for (int i = 0; i < 4; ++i) {
            sim().named_ids[kPanelNames[i]] = 40 + i;
            sim().named_values[40 + i] = kC17NoRequest;
        }
    }
    FakeSimulator& sim() { return scope_.sim; }
    double& Request(int screen) { return sim().named_values[40 + screen - 1]; }
    int Page(int screen) const { return g_display.c17_screens[static_cast<size_t>(screen - 1)].page; }
    // An instance of one screen, connected (which looks the variables up).
    std::unique_ptr<GaugeInstance> Screen(const char* parameter) {
        auto gauge = std::make_unique<GaugeInstance>(GaugeId::C17_MFD, parameter);
        gauge->Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
        return gauge;
    }
    // The names as the outer panel spells them: only the first has a capital X.
    static constexpr const char* kPanelNames[4] = {"MFDX1 mode", "MFDx2 mode", "MFDx3 mode", "MFDx4 mode"};

private:
    FakeSimulatorScope scope_;
};
}  // namespace

TEST_F(C17Screens, StartPagesAndNoRequest) {
    auto first = Screen("1");
    EXPECT_EQ(Page(1), 1);
    EXPECT_EQ(Page(2), 3);
    EXPECT_EQ(Page(3), 9);
    EXPECT_EQ(Page(4), 10);
    first->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(1), 1);
    EXPECT_FALSE(first->Hidden(0));
    EXPECT_EQ(Request(1), kC17NoRequest);
}

TEST_F(C17Screens, MapRequestHidesTheSurfaceOnceAndStaysStanding) {
    auto first = Screen("1");
    Request(1) = 2;
    first->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(1), 3);
    EXPECT_TRUE(first->Hidden(0));
    EXPECT_EQ(Request(1), 2);                         // not answered
    EXPECT_EQ(g_display.c17_first_screen_request, 2);  // the first screen's store keeps it
    // Still standing at the next update: already on the map page, nothing changes.
    first->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(1), 3);
    EXPECT_TRUE(first->Hidden(0));
    // Another request leaves the map page and shows the surface again.
    Request(1) = 0;
    first->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(1), 1);
    EXPECT_FALSE(first->Hidden(0));
    EXPECT_EQ(Request(1), kC17NoRequest);
}

TEST_F(C17Screens, MapKeyValueStepsTheMapFormOrReturnsToIt) {
    auto second = Screen("2");
    // Screen 2 starts on the map page with no map form chosen yet.
    const int expected[] = {3, 6, 0, 3, 6};
    for (int page : expected) {
        Request(2) = 1;
        second->Service(PANEL_SERVICE_PRE_UPDATE);
        EXPECT_EQ(Page(2), page);
        EXPECT_EQ(Request(2), kC17NoRequest);
    }
    // From a page outside the map form the value returns to the last map
    // form without stepping it.
    Request(2) = 3;
    second->Service(PANEL_SERVICE_PRE_UPDATE);
    ASSERT_EQ(Page(2), 9);
    Request(2) = 1;
    second->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(2), 6);
    // Leaving page 3 by a request shows the surface the map request hid;
    // page 3 is on the map form, so the form steps on from the last one.
    Request(2) = 2;
    second->Service(PANEL_SERVICE_PRE_UPDATE);
    ASSERT_TRUE(second->Hidden(0));
    Request(2) = 1;
    second->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_FALSE(second->Hidden(0));
    EXPECT_EQ(Page(2), 0);
}

TEST_F(C17Screens, EnginePagesInTurnAndConfigurationForAnyOtherValue) {
    auto third = Screen("3");
    Request(3) = 0;
    third->Service(PANEL_SERVICE_PRE_UPDATE);
    ASSERT_EQ(Page(3), 1);
    for (int page : {9, 10, 11, 9}) {
        Request(3) = 3;
        third->Service(PANEL_SERVICE_PRE_UPDATE);
        EXPECT_EQ(Page(3), page);
    }
    for (double other : {5.0, -1.0, 12.0, 1e9}) {
        Request(3) = 0;
        third->Service(PANEL_SERVICE_PRE_UPDATE);
        Request(3) = other;
        third->Service(PANEL_SERVICE_PRE_UPDATE);
        EXPECT_EQ(Page(3), 12) << other;
        EXPECT_EQ(Request(3), kC17NoRequest) << other;
    }
}

TEST_F(C17Screens, EachInstanceAnswersOnlyItsOwnScreensVariable) {
    auto fourth = Screen("4VC");
    auto unnamed = Screen("");                       // no digit: screen 1
    auto beyond = Screen("7");                       // no such screen
    Request(1) = 3;
    Request(2) = 3;
    Request(4) = 3;
    fourth->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(4), 11);                          // from the secondary engine page, the next
    EXPECT_EQ(Page(1), 1);
    EXPECT_EQ(Request(1), 3);
    beyond->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(1), 1);
    EXPECT_EQ(Page(2), 3);
    EXPECT_EQ(Request(2), 3);
    unnamed->Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(Page(1), 9);
    EXPECT_EQ(Page(2), 3);                           // screen 2's variable still waits
    EXPECT_EQ(Request(2), 3);
    EXPECT_EQ(C17ScreenNumber("3VC"), 3);
    EXPECT_EQ(C17ScreenNumber("PFD"), 0);
    EXPECT_EQ(C17ScreenNumber(nullptr), 0);
}

TEST_F(C17Screens, ParameterWordsPresetPagesAtEveryDraw) {
    auto pfd = Screen("PFD_WN");
    auto mfd = Screen("MFD");
    auto eng = Screen("ENG_VC");
    auto cfg = Screen("CFG");
    auto near_miss = Screen("PFDX");
    for (C17Screen& screen : g_display.c17_screens) screen.page = 0;
    g_display.c17_screens[1].page = 4;
    pfd->Service(PANEL_SERVICE_PRE_DRAW);
    mfd->Service(PANEL_SERVICE_PRE_DRAW);
    eng->Service(PANEL_SERVICE_PRE_DRAW);
    cfg->Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_EQ(Page(1), 1);
    EXPECT_EQ(Page(2), 4);                           // a map page already: kept
    EXPECT_EQ(Page(3), 9);
    EXPECT_EQ(Page(4), 12);
    g_display.c17_screens[1].page = 9;
    g_display.c17_screens[0].page = 0;
    mfd->Service(PANEL_SERVICE_PRE_DRAW);
    near_miss->Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_EQ(Page(2), 3);
    EXPECT_EQ(Page(1), 0);                           // "PFDX" is no word
}

TEST_F(C17Screens, DrawInstanceIsTheScreenOrACleared0) {
    EXPECT_EQ(C17DrawInstance("2"), 2);
    EXPECT_EQ(C17DrawInstance("PFD"), 0);             // no leading digit
    EXPECT_EQ(C17DrawInstance("7"), 0);               // no such screen
    sim().window_visible[0] = true;                   // the main panel shows
    EXPECT_EQ(C17DrawInstance("2_VC"), 0);
    EXPECT_EQ(C17DrawInstance("2"), 2);
    sim().window_visible[0] = false;
    sim().window_visible[4025] = true;                // screen 1's pop-up is open
    EXPECT_EQ(C17DrawInstance("1"), 0);
    EXPECT_EQ(C17DrawInstance("1_WN"), 1);
    EXPECT_EQ(C17DrawInstance("2"), 2);
}

TEST_F(C17Screens, EachScreenDrawsItsOwnPageThroughTheWorkingRecord) {
    g_sim.avionics_power = 1;
    auto strings_of = [&](GaugeInstance& gauge) {
        test_canvas::TextHost host;
        gauge.Service(PANEL_SERVICE_PRE_DRAW);
        std::string all;
        for (const test_canvas::Seen& seen : host.seen()) all += seen.text + "|";
        return all;
    };
    auto first = Screen("1");
    auto third = Screen("3");
    auto fourth = Screen("4");
    EXPECT_NE(strings_of(*first).find("ATT|"), std::string::npos);
    EXPECT_NE(strings_of(*third).find("RATING  1.22 MCT"), std::string::npos);
    g_display.c17_screens[3].page = kC17PageOilAndFuel;
    std::string oil = strings_of(*fourth);
    EXPECT_NE(oil.find("ENGINE OIL"), std::string::npos);
    EXPECT_EQ(oil.find("ATT|"), std::string::npos);
    EXPECT_EQ(g_display.c17_working_screen, 4);
    EXPECT_EQ(g_display.c17_working.page, kC17PageOilAndFuel);
    // Pages without a picture of their own draw only the background.
    g_display.c17_screens[0].page = 7;
    EXPECT_EQ(strings_of(*first), "");
    // Power off: a dark screen, and the working record stays where it was.
    g_sim.avionics_power = 0;
    EXPECT_EQ(strings_of(*third), "");
    EXPECT_EQ(g_display.c17_working_screen, 1);
}
