// The P1000 MFD's soft keys and left knob clicked through the gauges' mouse
// tables: the map switches with the pop-up closed, the two pages with it
// open, the values the knob sets and the vertical speed worked out from
// them, the labels of each state, and the pop-up taken for closed by the
// tick's watch.
#include "display/display_state.h"
#include "display/p1000_popup.h"
#include "display/p1000_soft_keys.h"
#include "frame/aircraft_profile.h"
#include "frame/engine_tick.h"
#include "frame/gauge_linkage.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/panel_click.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {
using test_support::Click;

// Key n (1 to 5) of the bezel's row, at the middle of its 30 x 24 box.
constexpr int kKeyX[] = {70, 107, 144, 182, 220};
bool Key(int n) { return Click(GaugeId::P1000_MFD, kKeyX[n - 1] + 15, 382 + 12); }
// The left knob (19, 387, 36, 36): left half down, right half up.
bool KnobDown() { return Click(GaugeId::P1000_MFD, 19 + 9, 387 + 18); }
bool KnobUp() { return Click(GaugeId::P1000_MFD, 19 + 27, 387 + 18); }

const P1000Label* LabelAt(const P1000Labels& labels, float x, float y) {
    for (int i = 0; i < labels.count; ++i) {
        const P1000Label& l = labels.rows[static_cast<size_t>(i)];
        if (std::fabs(l.x - x) < 0.5f && std::fabs(l.y - y) < 0.5f) return &l;
    }
    return nullptr;
}
std::string TextAt(float x, float y) {
    P1000Labels labels = P1000SoftKeyLabels();
    const P1000Label* l = LabelAt(labels, x, y);
    return l ? std::string(l->text.data()) : std::string("<none>");
}

// The descent speed with its allowance, knots, and its nm a minute.
double NmPerMinute(int ias) { return (ias + ias * 0.019 * 15) / 60.0; }

class P1000Keys : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        g_profile.DescentIas = 240;
        g_profile.FPA = 3.0;
        g_sim.indicated_altitude.now = 15000;
    }
    void OpenPopup() { g_tick.p1000_window_open = 1; }
    FakeSimulatorScope scope;
};
}  // namespace

TEST_F(P1000Keys, MouseTablesOfTheBezelAndTheBezellessRow) {
    // Five keys (3 rows each), two knobs (4 each), the screen area on the
    // bezel (3), the outer parent and closing rows.
    EXPECT_EQ(MouseRowCount(GaugeId::P1000_MFD), 28);
    EXPECT_EQ(MouseRowCount(GaugeId::P1000_MFD_NB_CNTR), 25);
    // The right knob is the range on both; the NB row's knobs stand at y 23.
    double range = g_display.p1000_range;
    ASSERT_TRUE(Click(GaugeId::P1000_MFD, 274 + 27, 387 + 18));
    EXPECT_DOUBLE_EQ(g_display.p1000_range, 25);
    ASSERT_TRUE(Click(GaugeId::P1000_MFD_NB_CNTR, 274 + 9, 23 + 18));
    EXPECT_DOUBLE_EQ(g_display.p1000_range, range);
    // The NB row's keys at y 18 act as the bezel's.
    ASSERT_TRUE(Click(GaugeId::P1000_MFD_NB_CNTR, 70 + 15, 18 + 12));
    EXPECT_EQ(g_display.p1000_airports, 1);
    // Just above the key row there is nothing to click.
    EXPECT_FALSE(Click(GaugeId::P1000_MFD, 85, 380));
    // The screen's area opens the MFD's pop-up, 4002.
    ASSERT_TRUE(Click(GaugeId::P1000_MFD, 150, 200));
    EXPECT_TRUE(scope.sim.window_visible[4002]);
}

TEST_F(P1000Keys, ClosedPopupKeysAreTheMapSwitchesWithTheirLabels) {
    struct Case {
        int key;
        int DisplayState::*flag;
    };
    for (Case c : {Case{1, &DisplayState::p1000_airports}, Case{2, &DisplayState::p1000_navaids},
                   Case{3, &DisplayState::p1000_intersections}, Case{4, &DisplayState::p1000_traffic},
                   Case{5, &DisplayState::AtcBoundariesShown}}) {
        g_tick.slow_refresh = 3;
        ASSERT_TRUE(Key(c.key));
        EXPECT_EQ(g_display.*c.flag, 1) << c.key;
        EXPECT_EQ(g_tick.slow_refresh, 999) << c.key;
        Key(c.key);
        EXPECT_EQ(g_display.*c.flag, 0) << c.key;
    }
    // Key 3 is the P1000's own flag: the other families' intersections stay.
    Key(3);
    EXPECT_EQ(g_display.switches[static_cast<size_t>(MapFamily::B737)].intersections, 0);
    // The common switch from another panel flips the P1000's copies too.
    ToggleMapAirports();
    EXPECT_EQ(g_display.p1000_airports, 1);
    EXPECT_EQ(g_display.p1000_keys.page, 1);
    EXPECT_EQ(TextAt(48, 275), "APT");
    EXPECT_EQ(TextAt(80, 275), "NAV");
    EXPECT_EQ(TextAt(121, 275), "---");
    EXPECT_EQ(TextAt(153, 275), "TCAS");
    EXPECT_EQ(TextAt(190, 275), "ATC");
    EXPECT_EQ(TextAt(187, 290), "BDRY");
    EXPECT_EQ(P1000SoftKeyLabels().count, 6);
}

TEST_F(P1000Keys, PageOneOnlyKeyTwoGoesOnAndWorksOutTheSpeed) {
    OpenPopup();
    EXPECT_EQ(TextAt(76, 275), "VNAV");
    EXPECT_EQ(TextAt(121, 275), "T/O");
    EXPECT_EQ(TextAt(114, 290), "SPEEDS");
    EXPECT_EQ(TextAt(157, 275), "LNDG");
    EXPECT_EQ(TextAt(152, 290), "SPEEDS");
    for (int key : {1, 3, 4, 5}) {
        g_tick.slow_refresh = 3;
        Key(key);
        EXPECT_EQ(g_display.p1000_keys.page, 1) << key;
        EXPECT_EQ(g_tick.slow_refresh, 999) << key;   // every key repaints, even one that does nothing
    }
    // The open pop-up's keys leave the map switches alone.
    EXPECT_EQ(g_display.p1000_airports, 0);
    EXPECT_EQ(g_display.AtcBoundariesShown, 0);
    Key(2);
    EXPECT_EQ(g_display.p1000_keys.page, 2);
    // No distance or altitude: FPA x 100 x nm a minute; 240 kt gives 308.4 kt.
    double expected = 3.0 * 100 * NmPerMinute(240);
    EXPECT_NEAR(expected, 1542, 1e-9);
    EXPECT_NEAR(g_display.p1000_keys.vertical_speed, expected, 1e-9);
    EXPECT_EQ(TextAt(190, 290), "1542");
    EXPECT_EQ(TextAt(10, 275), "SET");
    EXPECT_EQ(TextAt(45, 275), "RTN");
    EXPECT_EQ(TextAt(115, 275), "ST EL");
    EXPECT_EQ(TextAt(153, 275), "VANG");
    EXPECT_EQ(TextAt(195, 275), "VS");
    EXPECT_EQ(TextAt(157, 290), "3.0");
    EXPECT_EQ(TextAt(87, 290), "---");       // no distance
    EXPECT_EQ(TextAt(120, 290), "---");      // no altitude
}

TEST_F(P1000Keys, KeyTwoAgainAndAgainAlternatesToAndFromKeepingTheDistance) {
    OpenPopup();
    Key(2);
    ASSERT_EQ(g_display.p1000_keys.page, 2);
    g_display.p1000_keys.altitude_select = 1;
    g_display.p1000_keys.angle_select = 1;
    const char* expected[] = {"TO", "FM", "TO", "FM", "TO"};
    int selections[] = {1, 2, 1, 2, 1};
    for (int i = 0; i < 5; ++i) {
        Key(2);
        EXPECT_EQ(g_display.p1000_keys.distance_select, selections[i]) << i;
        EXPECT_EQ(g_display.p1000_keys.altitude_select, 0) << i;
        EXPECT_EQ(g_display.p1000_keys.angle_select, 0) << i;
        EXPECT_EQ(TextAt(87, 275), expected[i]) << i;
        // The selected value stands in brackets, a bracket's width to the left.
        EXPECT_EQ(TextAt(83, 290), "[---]") << i;
    }
    // From "FM" the altitude takes the knob; the distance's label goes back to "TO".
    Key(2);
    Key(3);
    EXPECT_EQ(g_display.p1000_keys.distance_select, 0);
    EXPECT_EQ(g_display.p1000_keys.altitude_select, 1);
    EXPECT_EQ(TextAt(87, 275), "TO");
    EXPECT_EQ(TextAt(87, 290), "---");
    EXPECT_EQ(TextAt(116, 290), "[---]");
    // Key 1 goes back, distance and altitude off; key 5 does nothing.
    Key(5);
    EXPECT_EQ(g_display.p1000_keys.altitude_select, 1);
    Key(1);
    EXPECT_EQ(g_display.p1000_keys.page, 1);
    EXPECT_EQ(g_display.p1000_keys.altitude_select, 0);
}

TEST_F(P1000Keys, KnobSetsDistanceAltitudeAndAngleWithinTheirLimits) {
    OpenPopup();
    // On page 1 the knob does nothing.
    KnobUp();
    g_display.p1000_keys.distance_select = 1;
    KnobUp();
    EXPECT_EQ(g_display.p1000_keys.distance, 0);
    Key(2);                                     // page 2, the distance still "TO"
    Key(2);                                     // "FM"
    ASSERT_EQ(g_display.p1000_keys.distance_select, 2);
    for (int i = 0; i < 30; ++i) KnobUp();
    EXPECT_DOUBLE_EQ(g_display.p1000_keys.distance, 30);
    EXPECT_EQ(TextAt(83, 290), "[30]");
    // Only the distance set: the speed still comes from the angle.
    EXPECT_NEAR(g_display.p1000_keys.vertical_speed, 3.0 * 100 * NmPerMinute(240), 1e-9);
    Key(3);
    for (int i = 0; i < 50; ++i) KnobUp();
    EXPECT_DOUBLE_EQ(g_display.p1000_keys.altitude, 5000);
    // Both set: from 15000 ft to 5000 over 30 nm at 308.4 kt.
    double minutes = 30 / NmPerMinute(240);
    double expected = (5000 - 15000) / minutes;
    EXPECT_NEAR(expected, -1713.33, 0.01);
    EXPECT_NEAR(g_display.p1000_keys.vertical_speed, expected, 1e-9);
    EXPECT_EQ(TextAt(190, 290), "-1713");
    EXPECT_EQ(TextAt(116, 290), "[5000]");
    EXPECT_EQ(TextAt(87, 290), "30");
    // Both above 0: the angle shows dashes in its place.
    EXPECT_EQ(TextAt(157, 290), "---");
    // The altitude goes down to 0 and no further; then the angle decides again.
    for (int i = 0; i < 52; ++i) KnobDown();
    EXPECT_DOUBLE_EQ(g_display.p1000_keys.altitude, 0);
    EXPECT_NEAR(g_display.p1000_keys.vertical_speed, 3.0 * 100 * NmPerMinute(240), 1e-9);
    EXPECT_EQ(TextAt(157, 290), "3.0");
    // The angle: FPA by tenths within 0 and 6.0, the distance and altitude cleared.
    Key(4);
    EXPECT_EQ(g_display.p1000_keys.distance, 0);
    EXPECT_EQ(TextAt(153, 290), "[3.0]");
    for (int i = 0; i < 35; ++i) KnobUp();
    EXPECT_DOUBLE_EQ(g_profile.FPA, 6.0);
    EXPECT_EQ(TextAt(153, 290), "[6.0]");
    for (int i = 0; i < 58; ++i) KnobDown();
    EXPECT_NEAR(g_profile.FPA, 0.2, 1e-12);
    KnobDown();
    KnobDown();
    KnobDown();
    EXPECT_EQ(g_profile.FPA, 0);
    // FPA 0 and no distance: no speed, shown as dashes.
    EXPECT_EQ(g_display.p1000_keys.vertical_speed, 0);
    EXPECT_EQ(TextAt(190, 290), "---");
}

TEST_F(P1000Keys, PopupClosedOnPageTwoGivesTheSwitchesAndKeepsThePage) {
    OpenPopup();
    Key(2);
    Key(2);
    ASSERT_EQ(g_display.p1000_keys.page, 2);
    g_tick.p1000_window_open = 0;
    EXPECT_EQ(TextAt(48, 275), "APT");
    Key(2);
    EXPECT_EQ(g_display.p1000_navaids, 1);
    EXPECT_EQ(g_display.p1000_keys.distance_select, 1);   // the page's selection untouched
    Key(1);
    EXPECT_EQ(g_display.p1000_airports, 1);
    EXPECT_EQ(g_display.p1000_keys.page, 2);
    OpenPopup();
    EXPECT_EQ(TextAt(45, 275), "RTN");
}

TEST_F(P1000Keys, WatchTakesThePopupForClosedAfterElevenMissedSamples) {
    // The pop-up draws once: its flag goes up, with a repaint.
    GaugeInstance popup(GaugeId::P1000_MFD_CNTR, "");
    popup.Service(PANEL_SERVICE_PRE_DRAW);
    ASSERT_EQ(g_tick.p1000_window_open, 1);
    // PLAN from the pop-up's key, then page 2 of the soft keys.
    ASSERT_TRUE(Click(GaugeId::P1000_MFD_CNTR, 90, 50));
    ASSERT_EQ(g_display.p1000_plan, 1);
    g_display.p1000_map_y = 116;
    g_display.p1000_map_radius = 75;
    Key(2);
    // The tick runs at 18 Hz; its phase counter samples at phases 0 and 9,
    // every 9th tick from the first. The first sample stores the count 1;
    // with no more draws, samples 2 to 12 are the 11 misses.
    auto tick = [&] {
        scope.sim.tokens[Token::TICK18] += 1;
        EngineTick();
    };
    int ticks_to_close = 9 * 12;
    for (int i = 1; i < ticks_to_close; ++i) tick();
    EXPECT_EQ(g_tick.p1000_window_open, 1);
    EXPECT_EQ(g_display.p1000_plan, 1);
    g_tick.slow_refresh = 5;
    tick();
    EXPECT_EQ(g_tick.p1000_window_open, 0);
    EXPECT_EQ(g_tick.slow_refresh, 999);
    EXPECT_EQ(g_display.p1000_plan, 0);
    EXPECT_EQ(g_display.p1000_map_x, 134);
    EXPECT_EQ(g_display.p1000_map_y, 148);
    EXPECT_EQ(g_display.p1000_map_radius, 53);
    EXPECT_EQ(g_display.p1000_keys.page, 2);
    // Closed with PLAN already off: the map's place is left alone.
    g_display.p1000_map_y = 140;
    P1000PopupClosed();
    EXPECT_EQ(g_display.p1000_map_y, 140);
}
