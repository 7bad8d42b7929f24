// The EFIS control panels clicked through their mouse tables, the lamps that
// follow, the range ladders and mode steps of every family, the common map
// switches, and the map core's projection and symbol library.
#include "frame/gauge_linkage.h"
#include "display/control_panels.h"
#include "display/map_symbols.h"
#include "display/nd_map.h"
#include "display/traffic.h"
#include "frame/aircraft_profile.h"
#include "frame/gauge_callback.h"
#include "guidance/geodesy.h"
#include "nd_fixture.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/panel_click.h"

using namespace nd_test;

namespace {
using test_support::Click;
}  // namespace

TEST(EfisPanel, ModeKnobStepsTheNdAndItsLampFollows) {
    ResetModuleState();
    GaugeInstance panel(GaugeId::HW_B737_EFIS_CNTR, "");
    ASSERT_EQ(MouseRowCount(GaugeId::HW_B737_EFIS_CNTR), 31);
    ASSERT_EQ(MouseRowCount(GaugeId::HW_B737_EFIS_CNTR_BR), 31);
    EXPECT_EQ(g_display.b737_mode, 1);
    Click(GaugeId::HW_B737_EFIS_CNTR, 150, 50);   // left half: down, already at the end
    EXPECT_EQ(g_display.b737_mode, 1);
    for (int expected = 2; expected <= 7; ++expected) {
        ASSERT_TRUE(Click(GaugeId::HW_B737_EFIS_CNTR, 190, 50));
        EXPECT_EQ(g_display.b737_mode, expected);
        panel.Service(PANEL_SERVICE_PRE_UPDATE);
        for (int layer = 1; layer <= 6; ++layer)
            EXPECT_EQ(panel.Hidden(layer), layer != expected) << "mode " << expected << " layer " << layer;
    }
    Click(GaugeId::HW_B737_EFIS_CNTR_BR, 190, 50);
    EXPECT_EQ(g_display.b737_mode, 7);             // stops at PLAN
    Click(GaugeId::HW_B737_EFIS_CNTR_BR, 150, 50);
    EXPECT_EQ(g_display.b737_mode, 6);
}

TEST(EfisPanel, RangeKnobStopsAtMinMapRangeAndAtTheTop) {
    ResetModuleState();
    GaugeInstance panel(GaugeId::HW_B737_EFIS_CNTR, "");
    EXPECT_DOUBLE_EQ(g_display.b737_range, 10);
    Click(GaugeId::HW_B737_EFIS_CNTR, 240, 50);    // down, MinMapRange 10 holds it
    EXPECT_DOUBLE_EQ(g_display.b737_range, 10);
    panel.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_FALSE(panel.Hidden(7));
    const double expected[] = {20, 40, 80, 160, 320, 320};
    for (double range : expected) {
        Click(GaugeId::HW_B737_EFIS_CNTR, 285, 50);
        EXPECT_DOUBLE_EQ(g_display.b737_range, range);
        panel.Service(PANEL_SERVICE_PRE_UPDATE);
        const double lamps[] = {10, 40, 80, 160, 320};
        for (int k = 0; k < 5; ++k) EXPECT_EQ(panel.Hidden(7 + k), lamps[k] != range) << range;
    }
    g_config.MinMapRange = 1;
    g_display.b737_range = 10;
    for (double range : {5.0, 2.5, 1.0, 1.0}) {
        Click(GaugeId::HW_B737_EFIS_CNTR, 240, 50);
        EXPECT_DOUBLE_EQ(g_display.b737_range, range);
    }
    g_config.MinMapRange = 0.1;
    Click(GaugeId::HW_B737_EFIS_CNTR, 240, 50);
    EXPECT_DOUBLE_EQ(g_display.b737_range, 0.5);
    Click(GaugeId::HW_B737_EFIS_CNTR, 240, 50);
    EXPECT_DOUBLE_EQ(g_display.b737_range, 0.5);   // the bottom of the ladder
}

TEST(EfisPanel, ButtonsFlipTheCommonSwitchesInEveryFamily) {
    ResetModuleState();
    struct Button {
        int x, y;
        int MapSwitches::*field;
    };
    for (Button b : {Button{260, 180, &MapSwitches::intersections}, Button{195, 180, &MapSwitches::airports},
                     Button{160, 180, &MapSwitches::navaids}, Button{258, 50, &MapSwitches::traffic}}) {
        ASSERT_TRUE(Click(GaugeId::HW_B737_EFIS_CNTR, b.x, b.y));
        for (const MapSwitches& s : g_display.switches) EXPECT_EQ(s.*b.field, 1) << b.x << "," << b.y;
        Click(GaugeId::HW_B737_EFIS_CNTR, b.x, b.y);
        for (const MapSwitches& s : g_display.switches) EXPECT_EQ(s.*b.field, 0);
    }
    Click(GaugeId::HW_B737_EFIS_CNTR, 230, 180);
    EXPECT_EQ(g_display.AtcBoundariesShown, 1);
    EXPECT_EQ(g_display.md80_boundaries_lamp, 1);
    Click(GaugeId::HW_B737_EFIS_CNTR, 130, 180);
    EXPECT_EQ(g_display.b737_adf_pointer, 1);
    Click(GaugeId::HW_B737_EFIS_CNTR, 260, 120);
    EXPECT_EQ(g_display.b737_data, 1);
    EXPECT_FALSE(Click(GaugeId::HW_B737_EFIS_CNTR, 5, 5));  // nothing there
    // The traffic switch also sends the EFS 50 to its traffic mode and back.
    g_display.efs50_hsi_mode = 4;
    ToggleTraffic();
    EXPECT_EQ(g_display.efs50_hsi_mode, 8);
    ToggleTraffic();
    EXPECT_EQ(g_display.efs50_hsi_mode, 4);
}

TEST(EfisPanel, OtherPanelsKeepTheirRowsAndLightTheirSwitches) {
    ResetModuleState();
    for (GaugeId id : {GaugeId::A300_EFIS_CTRL, GaugeId::MD80_EHSI_CTRL, GaugeId::PROLINE4_AUX_CTRL,
                       GaugeId::MD11_EFIS_CTRL, GaugeId::EFS50_EHSI_CNTR, GaugeId::P1000_MFD_CNTR})
        EXPECT_EQ(MouseRowCount(id), SpecOf(id).mouse_rows) << GaugeName(id);
    GaugeInstance a300(GaugeId::A300_EFIS_CTRL, "");
    Click(GaugeId::A300_EFIS_CTRL, 300, 240);          // airports
    Click(GaugeId::A300_EFIS_CTRL, 60, 180);           // mode down from 0: stays
    Click(GaugeId::A300_EFIS_CTRL, 120, 180);          // mode up: 1
    a300.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_FALSE(a300.Hidden(11));
    EXPECT_TRUE(a300.Hidden(8));
    EXPECT_FALSE(a300.Hidden(6));
    EXPECT_TRUE(a300.Hidden(5));
    GaugeInstance md80(GaugeId::MD80_EHSI_CTRL, "");
    Click(GaugeId::MD80_EHSI_CTRL, 170, 60);           // the ADF half of the pointer switch
    md80.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_FALSE(md80.Hidden(2));                      // airports flipped by the A300 too
    EXPECT_FALSE(md80.Hidden(6));
    EXPECT_TRUE(md80.Hidden(7));
}

TEST(DisplayState, RangeLaddersOfEveryFamilyStepTogether) {
    ResetModuleState();
    g_config.MinMapRange = 0;
    for (int i = 0; i < 12; ++i) RangeUp();
    EXPECT_DOUBLE_EQ(g_display.b737_range, 320);
    EXPECT_DOUBLE_EQ(g_display.md11_range, 640);
    EXPECT_DOUBLE_EQ(g_display.du1000_range, 240);
    EXPECT_DOUBLE_EQ(g_display.md80_range, 320);
    EXPECT_DOUBLE_EQ(g_display.c17_range, 320);
    // The wrapping ladders have gone round: 12.5 is rung 5 of 9, 40 rung 4 of 7.
    EXPECT_DOUBLE_EQ(g_display.efs50_range, 80);
    EXPECT_DOUBLE_EQ(g_display.p1000_range, 80);
    EXPECT_DOUBLE_EQ(g_display.proline4_range, 10);
    ResetModuleState();
    g_display.efs50_range = 160;
    g_display.proline4_range = 320;
    RangeUp();
    EXPECT_DOUBLE_EQ(g_display.efs50_range, 0.5);
    EXPECT_DOUBLE_EQ(g_display.proline4_range, 5);
    // The DU 1000 is held from 15 down; the EFS 50 ignores MinMapRange.
    ResetModuleState();
    g_display.du1000_range = 15;
    g_display.efs50_range = 5;
    RangeDown();
    EXPECT_DOUBLE_EQ(g_display.du1000_range, 10);
    RangeDown();
    EXPECT_DOUBLE_EQ(g_display.du1000_range, 10);  // 5 is below MinMapRange
    EXPECT_DOUBLE_EQ(g_display.efs50_range, 1);
    // A range set off the ladder steps from its rung.
    SetB737Range(30);
    EXPECT_DOUBLE_EQ(g_display.b737_range, 40);
    SetB737Range(-3);
    EXPECT_DOUBLE_EQ(g_display.b737_range, 40);
}

TEST(DisplayState, ModeStepsOfEachFamilyAndStartModesFromTheProfile) {
    ResetModuleState();
    g_display.du1000_mode = 0;
    g_display.proline4_mode = 3;
    g_display.md80_mode = 0;
    const int du_up[] = {1, 3, 2, 2};
    for (int m : du_up) {
        StepMode(1, kStepDu1000);
        EXPECT_EQ(g_display.du1000_mode, m);
    }
    // PROLINE 4: up 0, 3, 1, 2, 0; down the other way. Modes 0 and 1 keep
    // the radius; entering 2 sets 70.
    StepMode(1, kStepProline4);
    EXPECT_EQ(g_display.proline4_mode, 1);
    StepMode(-1, kStepProline4);
    StepMode(-1, kStepProline4);
    EXPECT_EQ(g_display.proline4_mode, 0);
    EXPECT_EQ(g_display.proline4_radius, 140);
    StepMode(-1, kStepProline4);
    EXPECT_EQ(g_display.proline4_mode, 2);
    EXPECT_EQ(g_display.proline4_radius, 70);
    // EFS 50: down turns nav mode 2 to 1 first; up runs the HSI mode to 7, then nav 2.
    g_display.efs50_hsi_mode = 6;
    g_display.efs50_nav_mode = 2;
    StepMode(-1, kStepEfs50);
    EXPECT_EQ(g_display.efs50_nav_mode, 1);
    EXPECT_EQ(g_display.efs50_hsi_mode, 6);
    StepMode(1, kStepEfs50);
    StepMode(1, kStepEfs50);
    EXPECT_EQ(g_display.efs50_hsi_mode, 7);
    EXPECT_EQ(g_display.efs50_nav_mode, 2);
    // Display 0 steps them all; one family's number steps only that one.
    int b737 = g_display.b737_mode;
    StepMode(1, kStepMd80);
    EXPECT_EQ(g_display.b737_mode, b737);
    StepMode(1, kStepAllDisplays);
    EXPECT_EQ(g_display.b737_mode, b737 + 1);

    g_profile.HWB737NDMode = 5;
    g_profile.PROLINE4MFDMode = 0;
    ApplyDisplayStartModes();
    EXPECT_EQ(g_display.b737_mode, 5);
    EXPECT_EQ(g_display.proline4_mode, 0);
    EXPECT_TRUE(AnyNdInPlanMode() == false);
    g_display.b737_mode = kB737ModePlan;
    EXPECT_TRUE(AnyNdInPlanMode());
}

TEST(MapProjection, PolarToScreenTurnsWithTheHeading) {
    int x = 0, y = 0;
    PolarToScreen(30, 30, 100, 100, 50, x, y);     // straight ahead
    EXPECT_EQ(x, 100);
    EXPECT_EQ(y, 50);
    PolarToScreen(30, 120, 100, 100, 50, x, y);    // 90 right: on the centre's row
    EXPECT_EQ(y, 100);
    EXPECT_EQ(x, 150);
    PolarToScreen(30, 300, 100, 100, 50, x, y);    // 90 left
    EXPECT_EQ(y, 100);
    EXPECT_EQ(x, 50);
    PolarToScreen(350, 170, 100, 100, 50, x, y);   // behind, across north
    EXPECT_EQ(x, 100);
    EXPECT_EQ(y, 150);
    double fx = 0, fy = 0;
    PolarToScreen(0, 45, 0.0, 0.0, 10.0, fx, fy);  // 45 right: up and right
    EXPECT_NEAR(fx, 7.0711, 1e-3);
    EXPECT_NEAR(fy, -7.0711, 1e-3);
    PolarToScreen(0, 225, 0.0, 0.0, 10.0, fx, fy);
    EXPECT_NEAR(fx, -7.0711, 1e-3);
    EXPECT_NEAR(fy, 7.0711, 1e-3);
    PolarToScreen(0, 100, 0.0, 0.0, 10.0, fx, fy); // just past abeam: below the row
    EXPECT_GT(fy, 0);
    EXPECT_GT(fx, 9.8);
    // The integer form truncates.
    PolarToScreen(0, 45, 0, 0, 10, x, y);
    EXPECT_EQ(x, 7);
    EXPECT_EQ(y, -7);
    // Rubbish in: no crash, a point far off.
    PolarToScreen(0, std::nan(""), 0, 0, 10, x, y);
}

TEST(MapSymbols, EachKindDrawsInItsColourAndUnknownKindsNothing) {
    FreshAircraft();
    auto draw = [](int kind, int colour) {
        test_canvas::Canvas canvas(40, 40);
        gdi::Graphics g(canvas.hdc());
        DrawMapSymbol(g, 20, 15, kind, kNoLabel, 1, 1, colour, 10);
        return canvas;
    };
    for (int kind : {1, 2, 3, 4, 5, 11, 12, 20, 21, 30, 31, 40, 50, 60, 61, 62, 63, 70, 71, 72, 73, 74, 75, 76})
        EXPECT_GT(draw(kind, kMapWhite).InkedAll(), 3) << kind;
    for (int kind : {0, 6, 99, -5}) EXPECT_EQ(draw(kind, kMapWhite).InkedAll(), 0) << kind;
    // Colour rules of the triangle: magenta for 4, blue for 1, grey otherwise.
    auto dominant = [](const test_canvas::Canvas& c) {
        uint32_t best = 0;
        int best_alpha = -1;
        for (uint32_t p : c.pixels)
            if (static_cast<int>(p >> 24) > best_alpha) {
                best_alpha = static_cast<int>(p >> 24);
                best = p;
            }
        return best;
    };
    auto hue = [](uint32_t p) { return p & 0x00F0F0F0u; };
    EXPECT_EQ(hue(dominant(draw(3, kMapMagenta))), hue(0xFFFF13D5));
    EXPECT_EQ(hue(dominant(draw(3, kMapBlue))), hue(0xFF02A7EB));
    EXPECT_EQ(hue(dominant(draw(3, kMapGreen))), hue(0xFFC0C0C0));
    EXPECT_EQ(hue(dominant(draw(1, kMapGreen))), hue(0xFF00FA00));
    EXPECT_EQ(hue(dominant(draw(20, kMapYellow))), hue(0xFFFFFF00));
    // The star of a waypoint hangs from its anchor: nothing above it.
    test_canvas::Canvas star = draw(20, kMapWhite);
    EXPECT_EQ(star.Inked(0, 0, 40, 14), 0);
    EXPECT_GT(star.Inked(0, 15, 40, 27), 5);
    // A label is drawn beside the figure.
    test_canvas::TextHost host;
    test_canvas::Canvas canvas(60, 40);
    gdi::Graphics g(canvas.hdc());
    DrawMapSymbol(g, 20, 15, 74, 250, 1, 1, kMapGreen, 10);
    ASSERT_EQ(host.seen().size(), 1u);
    EXPECT_EQ(host.seen()[0].text, "250");
    EXPECT_EQ(host.seen()[0].box.argb, 0xFF00FA00u);
}

TEST(C17Keys, BezelKeysActOnTheScreenLastDrawnAndThePanelsMapKeysOnAll) {
    FreshAircraft();
    FakeSimulatorScope scope;
    g_sim.avionics_power = 1;
    ASSERT_EQ(MouseRowCount(GaugeId::C17_MFD), 20);
    // Screen 3 drawn last: the working record is its state (page 9).
    GaugeInstance third(GaugeId::C17_MFD, "3");
    third.Service(PANEL_SERVICE_PRE_DRAW);
    ASSERT_EQ(g_display.c17_working_screen, 3);
    ASSERT_TRUE(Click(GaugeId::C17_MFD, 170, 280));      // engine key: 9 -> 10 -> 11 -> 9
    EXPECT_EQ(g_display.c17_screens[2].page, 10);
    Click(GaugeId::C17_MFD, 170, 280);
    Click(GaugeId::C17_MFD, 170, 280);
    EXPECT_EQ(g_display.c17_screens[2].page, 9);
    Click(GaugeId::C17_MFD, 210, 280);                    // configuration
    EXPECT_EQ(g_display.c17_screens[2].page, 12);
    Click(GaugeId::C17_MFD, 170, 280);                    // from another page: the last engine page
    EXPECT_EQ(g_display.c17_screens[2].page, 11);
    Click(GaugeId::C17_MFD, 100, 280);                    // map key off the map form: the last map form (0 at start)
    EXPECT_EQ(g_display.c17_screens[2].page, 0);
    Click(GaugeId::C17_MFD, 100, 280);                    // on the form: 0 -> 3 -> 6
    EXPECT_EQ(g_display.c17_screens[2].page, 3);
    Click(GaugeId::C17_MFD, 100, 280);
    EXPECT_EQ(g_display.c17_screens[2].page, 6);
    Click(GaugeId::C17_MFD, 70, 280);                     // primary flight; the map key leaves it alone
    Click(GaugeId::C17_MFD, 100, 280);
    EXPECT_EQ(g_display.c17_screens[2].page, 1);
    Click(GaugeId::C17_MFD, 130, 280);                    // the middle key does nothing
    EXPECT_EQ(g_display.c17_screens[2].page, 1);
    EXPECT_EQ(g_display.c17_screens[0].page, 1);          // the other screens untouched
    EXPECT_EQ(g_display.c17_screens[3].page, 10);
    Click(GaugeId::C17_MFD, 100, 100);                    // the screen opens its pop-up
    ASSERT_EQ(scope.sim.window_toggles.size(), 1u);
    EXPECT_EQ(scope.sim.window_toggles[0], 4025u);

    // The panel's map keys step every screen on pages 3 to 5, the working record too.
    g_display.c17_screens[0].page = 3;
    g_display.c17_screens[1].page = 4;
    g_display.c17_screens[2].page = 5;
    g_display.c17_working.page = 4;
    ASSERT_TRUE(Click(GaugeId::C17_MFCP, 370, 340));      // forward
    EXPECT_EQ(g_display.c17_screens[0].page, 4);
    EXPECT_EQ(g_display.c17_screens[1].page, 5);
    EXPECT_EQ(g_display.c17_screens[2].page, 5);          // at the end
    EXPECT_EQ(g_display.c17_screens[3].page, 10);         // not a map page
    EXPECT_EQ(g_display.c17_working.page, 5);
    Click(GaugeId::C17_MFCP, 100, 300);                   // back
    Click(GaugeId::C17_MFCP, 100, 300);
    EXPECT_EQ(g_display.c17_screens[0].page, 3);
    EXPECT_EQ(g_display.c17_screens[2].page, 3);

    // Its switches: navaids and airports common to every family, the two
    // symbol flags its own, and the range knob on every ladder.
    int navaids = g_display.switches[0].navaids;
    Click(GaugeId::C17_MFCP, 110, 210);
    EXPECT_NE(g_display.switches[0].navaids, navaids);
    Click(GaugeId::C17_MFCP, 50, 150);
    EXPECT_EQ(g_display.c17_symbols_left, 1);
    EXPECT_EQ(g_display.c17_symbols_right, 0);
    double range = g_display.c17_range;
    Click(GaugeId::C17_MFCP, 140, 460);                   // right half: up
    EXPECT_GT(g_display.c17_range, range);
}

TEST(Md11Panel, ButtonsSetModeRadiusRangeSwitchesAndBearingPointers) {
    ResetModuleState();
    const GaugeId panel = GaugeId::MD11_EFIS_CTRL;
    // Mode buttons: MAP and PLAN set the map radius too, VOR and APPR keep it.
    ASSERT_TRUE(Click(panel, 160, 65));               // PLAN
    EXPECT_EQ(g_display.md11_mode, 2);
    EXPECT_EQ(g_display.md11_radius, 94);
    ASSERT_TRUE(Click(panel, 215, 25));               // VOR
    EXPECT_EQ(g_display.md11_mode, 4);
    EXPECT_EQ(g_display.md11_radius, 94);
    ASSERT_TRUE(Click(panel, 160, 25));               // MAP
    EXPECT_EQ(g_display.md11_mode, 3);
    EXPECT_EQ(g_display.md11_radius, 150);
    ASSERT_TRUE(Click(panel, 243, 82));               // APPR, at the button's far corner
    EXPECT_EQ(g_display.md11_mode, 5);
    EXPECT_EQ(g_display.md11_radius, 150);
    EXPECT_FALSE(Click(panel, 155 + 34, 22));         // one pixel right of MAP: nothing
    EXPECT_EQ(g_display.md11_mode, 5);

    // Range buttons step every family, the MD-11 from its start of 80.
    ASSERT_TRUE(Click(panel, 200, 110));              // up
    EXPECT_DOUBLE_EQ(g_display.md11_range, 160);
    EXPECT_DOUBLE_EQ(g_display.b737_range, 20);
    ASSERT_TRUE(Click(panel, 200, 145));              // down
    ASSERT_TRUE(Click(panel, 200, 145));
    EXPECT_DOUBLE_EQ(g_display.md11_range, 40);

    // The left column and the traffic button flip the common switches everywhere.
    struct Button {
        int x, y;
        int MapSwitches::*field;
    };
    for (Button b : {Button{100, 75, &MapSwitches::intersections}, Button{100, 110, &MapSwitches::navaids},
                     Button{100, 140, &MapSwitches::airports}, Button{270, 30, &MapSwitches::traffic}}) {
        ASSERT_TRUE(Click(panel, b.x, b.y));
        for (const MapSwitches& s : g_display.switches) EXPECT_EQ(s.*b.field, 1) << b.x << "," << b.y;
    }
    ASSERT_TRUE(Click(panel, 100, 10));               // ATC boundaries
    EXPECT_EQ(g_display.AtcBoundariesShown, 1);
    EXPECT_EQ(g_display.md80_boundaries_lamp, 1);
    DisplayState before = g_display;
    ASSERT_TRUE(Click(panel, 100, 45));               // the button without an action
    EXPECT_EQ(g_display.md11_mode, before.md11_mode);
    EXPECT_EQ(g_display.AtcBoundariesShown, 1);
    for (size_t i = 0; i < g_display.switches.size(); ++i)
        EXPECT_EQ(g_display.switches[i].intersections, before.switches[i].intersections);

    // The first bearing pointer: VOR on, ADF takes over, ADF again turns it off.
    EXPECT_EQ(g_display.md11_bearing1, 0);
    ASSERT_TRUE(Click(panel, 160, 110));
    EXPECT_EQ(g_display.md11_bearing1, 1);
    ASSERT_TRUE(Click(panel, 160, 145));
    EXPECT_EQ(g_display.md11_bearing1, 2);
    ASSERT_TRUE(Click(panel, 160, 145));
    EXPECT_EQ(g_display.md11_bearing1, 0);
    ASSERT_TRUE(Click(panel, 160, 110));
    ASSERT_TRUE(Click(panel, 160, 110));
    EXPECT_EQ(g_display.md11_bearing1, 0);
    // The second pointer on and off.
    ASSERT_TRUE(Click(panel, 240, 110));
    EXPECT_EQ(g_display.md11_bearing2, 1);
    ASSERT_TRUE(Click(panel, 240, 110));
    EXPECT_EQ(g_display.md11_bearing2, 0);

    // A profile starting in PLAN starts with the PLAN radius.
    g_profile.HWMD11NDMode = 2;
    ApplyDisplayStartModes();
    EXPECT_EQ(g_display.md11_radius, 94);
    g_profile.HWMD11NDMode = 4;
    ApplyDisplayStartModes();
    EXPECT_EQ(g_display.md11_radius, 150);
}

TEST(ControlPanels, Md80ModeKnobStepsZeroOneThreeTwoAndItsLampDarkensOnTheHsi) {
    ResetModuleState();
    g_display.md80_mode = 0;
    // The knob's right half steps up, stopping at the last of 0, 1, 3, 2.
    for (int expected : {1, 3, 2, 2}) {
        ASSERT_TRUE(Click(GaugeId::MD80_EHSI_CTRL, 90, 70));
        EXPECT_EQ(g_display.md80_mode, expected);
        EXPECT_EQ(ControlPanelLayerShown(GaugeId::MD80_EHSI_CTRL, 8), expected != 2) << expected;
    }
    // The left half steps back down, stopping at 0.
    for (int expected : {3, 1, 0, 0}) {
        ASSERT_TRUE(Click(GaugeId::MD80_EHSI_CTRL, 50, 70));
        EXPECT_EQ(g_display.md80_mode, expected);
    }
    // The pointer switch flips the ADF pointer each click, its lamps in turn.
    ASSERT_TRUE(Click(GaugeId::MD80_EHSI_CTRL, 188, 75));
    EXPECT_EQ(g_display.md80_adf_pointer, 1);
    EXPECT_TRUE(ControlPanelLayerShown(GaugeId::MD80_EHSI_CTRL, 6));
    EXPECT_FALSE(ControlPanelLayerShown(GaugeId::MD80_EHSI_CTRL, 7));
    ASSERT_TRUE(Click(GaugeId::MD80_EHSI_CTRL, 188, 75));
    EXPECT_EQ(g_display.md80_adf_pointer, 0);
    EXPECT_TRUE(ControlPanelLayerShown(GaugeId::MD80_EHSI_CTRL, 7));
}

TEST(MoreEfisPanels, ProLineEfs50AndP1000PanelsDriveTheirDisplaysState) {
    FreshAircraft();
    FakeSimulatorScope scope;
    // Pro Line 4: the range knob lies over the mode knob's middle and wins
    // there; the mode knob's outer halves step the mode; the bearing keys
    // step their sources 0, 1, 2, 3, 0.
    int mode = g_display.proline4_mode;
    double range = g_display.proline4_range;
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 165, 30));     // right half of the range knob: up
    EXPECT_GT(g_display.proline4_range, range);
    EXPECT_EQ(g_display.proline4_mode, mode);
    Click(GaugeId::PROLINE4_MFD_CTRL, 125, 30);                  // the mode knob's left edge: down
    EXPECT_NE(g_display.proline4_mode, mode);
    for (int expected : {1, 2, 3, 0}) {
        Click(GaugeId::PROLINE4_MFD_CTRL, 50, 60);
        EXPECT_EQ(g_display.proline4_bearing[1], expected);
    }
    EXPECT_EQ(g_display.proline4_bearing[0], 0);

    // EFS 50: FULL steps 1, 2, 3, 1 and enters at 1 from the ARC group; ARC
    // steps 4 .. 7 and enters at 4; NAV flips the nav mode.
    g_display.efs50_hsi_mode = 5;
    Click(GaugeId::EFS50_EHSI_CNTR, 150, 60);
    EXPECT_EQ(g_display.efs50_hsi_mode, 1);
    Click(GaugeId::EFS50_EHSI_CNTR, 150, 60);
    Click(GaugeId::EFS50_EHSI_CNTR, 150, 60);
    Click(GaugeId::EFS50_EHSI_CNTR, 150, 60);
    EXPECT_EQ(g_display.efs50_hsi_mode, 1);
    Click(GaugeId::EFS50_EHSI_CNTR, 210, 60);
    EXPECT_EQ(g_display.efs50_hsi_mode, 4);
    for (int i = 0; i < 4; ++i) Click(GaugeId::EFS50_EHSI_CNTR_LM, 210, 60);
    EXPECT_EQ(g_display.efs50_hsi_mode, 4);
    int nav = g_display.efs50_nav_mode;
    Click(GaugeId::EFS50_EHSI_CNTR, 280, 60);
    EXPECT_NE(g_display.efs50_nav_mode, nav);
    // Range keys: the map ladder, and in traffic mode (8) the traffic ranges
    // 2, 5, 10, 20, 40 round; a value off the list goes to an end.
    double map_range = g_display.efs50_range;
    Click(GaugeId::EFS50_EHSI_CNTR, 340, 60);
    EXPECT_GT(g_display.efs50_range, map_range);
    g_display.efs50_hsi_mode = 8;
    g_display.efs50_traffic_range = 20;
    double efs50_map = g_display.efs50_range;
    Click(GaugeId::EFS50_EHSI_CNTR, 340, 60);
    EXPECT_EQ(g_display.efs50_traffic_range, 40);
    Click(GaugeId::EFS50_EHSI_CNTR, 340, 60);
    EXPECT_EQ(g_display.efs50_traffic_range, 2);
    Click(GaugeId::EFS50_EHSI_CNTR, 340, 95);                    // down from 2: round to 40
    EXPECT_EQ(g_display.efs50_traffic_range, 40);
    g_display.efs50_traffic_range = 7;
    Click(GaugeId::EFS50_EHSI_CNTR, 340, 95);
    EXPECT_EQ(g_display.efs50_traffic_range, 40);
    EXPECT_EQ(g_display.efs50_range, efs50_map);                 // the map's range untouched
    // The decision height knob sends its key events only inside 0 .. 990.
    scope.sim.calculator["(A:DECISION HEIGHT,FEET)"] = 990;
    Click(GaugeId::EFS50_EHSI_CNTR, 65, 30);                     // left half: up, at 990 refused
    Click(GaugeId::EFS50_EHSI_CNTR, 90, 30);                     // right half: down
    EXPECT_EQ(scope.sim.CountEvents(0x10311), 0);
    EXPECT_EQ(scope.sim.CountEvents(0x10312), 1);
    scope.sim.calculator["(A:DECISION HEIGHT,FEET)"] = 0;
    Click(GaugeId::EFS50_EHSI_CNTR, 90, 30);
    Click(GaugeId::EFS50_EHSI_CNTR, 65, 30);
    EXPECT_EQ(scope.sim.CountEvents(0x10312), 1);
    EXPECT_EQ(scope.sim.CountEvents(0x10311), 1);

    // P1000: PLAN off puts the map back to its heading-up place; the upper
    // half of the range knob steps up, the lower down; both PLAN and traffic
    // ask for a repaint.
    g_display.p1000_map_x = 10;
    g_tick.slow_refresh = 0;
    Click(GaugeId::P1000_MFD_CNTR, 90, 50);
    EXPECT_EQ(g_display.p1000_plan, 1);
    EXPECT_EQ(g_tick.slow_refresh, 999);
    EXPECT_EQ(g_display.p1000_map_x, 10);
    Click(GaugeId::P1000_MFD_CNTR, 90, 50);
    EXPECT_EQ(g_display.p1000_plan, 0);
    EXPECT_EQ(g_display.p1000_map_x, 134);
    EXPECT_EQ(g_display.p1000_map_y, 148);
    EXPECT_EQ(g_display.p1000_map_radius, 53);
    double p1000 = g_display.p1000_range;
    Click(GaugeId::P1000_MFD_CNTR, 90, 140);
    EXPECT_GT(g_display.p1000_range, p1000);
    Click(GaugeId::P1000_MFD_CNTR, 90, 180);
    EXPECT_EQ(g_display.p1000_range, p1000);
    Click(GaugeId::P1000_MFD_CNTR, 170, 185);
    Click(GaugeId::P1000_MFD_CNTR, 230, 130);
    EXPECT_EQ(g_display.p1000_airports, 1);
    EXPECT_EQ(g_display.p1000_navaids, 1);
    EXPECT_EQ(g_display.switches[0].airports, 0);                // its own flags, not the common switch
}

TEST(A300Panel, EveryKnobAndKeyActsAndTheTwelveLampsFollowAtUpdateAndDraw) {
    FreshAircraft();
    FakeSimulatorScope scope;
    GaugeInstance panel(GaugeId::A300_EFIS_CTRL, "");
    const GaugeId id = GaugeId::A300_EFIS_CTRL;
    ASSERT_EQ(SpecOf(id).icon_layers, 12);
    // The lamps that should be lit, from the state as this test tracks it.
    int mode = 0, switches[4] = {0, 0, 0, 0}, traffic = 0;
    double range = 60;
    auto lamps_follow = [&](const char* after) {
        bool lit[13] = {};
        lit[1] = range <= 15;
        lit[2] = range == 30;
        lit[3] = range == 120;
        lit[4] = range == 240;
        for (int m = 0; m < 3; ++m) lit[5 + m] = mode == m;
        for (int k = 0; k < 4; ++k) lit[8 + k] = switches[k] == 1;
        lit[12] = traffic == 1;
        for (int service : {PANEL_SERVICE_PRE_UPDATE, PANEL_SERVICE_PRE_DRAW}) {
            panel.Service(service);
            for (int layer = 1; layer <= 12; ++layer)
                EXPECT_EQ(panel.Hidden(layer), !lit[layer]) << after << ", service " << service << ", lamp " << layer;
        }
    };
    lamps_follow("start");
    // The mode knob: right half up 0, 1, 3, 2 and stops; left half back down.
    for (int expected : {1, 3, 2, 2}) {
        ASSERT_TRUE(Click(id, 120, 180));
        mode = expected;
        EXPECT_EQ(g_display.du1000_mode, expected);
        lamps_follow("mode up");
    }
    for (int expected : {3, 1, 0, 0}) {
        ASSERT_TRUE(Click(id, 60, 180));
        mode = expected;
        EXPECT_EQ(g_display.du1000_mode, expected);
        lamps_follow("mode down");
    }
    // The range knob: right half up to 240 and held, left half down to the
    // MinMapRange of 10; every other family steps along.
    for (double expected : {120.0, 240.0, 240.0}) {
        ASSERT_TRUE(Click(id, 300, 180));
        range = expected;
        EXPECT_DOUBLE_EQ(g_display.du1000_range, expected);
        lamps_follow("range up");
    }
    EXPECT_DOUBLE_EQ(g_display.b737_range, 80);     // 10 stepped up three times
    for (double expected : {120.0, 60.0, 30.0, 15.0, 10.0, 10.0}) {
        ASSERT_TRUE(Click(id, 250, 180));
        range = expected;
        EXPECT_DOUBLE_EQ(g_display.du1000_range, expected);
        lamps_follow("range down");
    }
    // The four map keys, each twice: intersections, navaids, NDB, airports.
    const int key_x[] = {120, 185, 248, 310};
    const MapSwitches& du = g_display.switches[static_cast<size_t>(MapFamily::DU1000)];
    for (int k = 0; k < 4; ++k) {
        for (int press = 1; press <= 2; ++press) {
            ASSERT_TRUE(Click(id, key_x[k], 250));
            switches[k] = press % 2;
            EXPECT_EQ(du.intersections, switches[0]);
            EXPECT_EQ(du.navaids, switches[1]);
            EXPECT_EQ(g_display.du1000_ndb, switches[2]);
            EXPECT_EQ(du.airports, switches[3]);
            lamps_follow("map key");
        }
    }
    // The NDB key is the display's own: no other family's switch moves with it.
    ASSERT_TRUE(Click(id, 248, 250));
    switches[2] = 1;
    EXPECT_EQ(g_display.proline4_ndb, 0);
    EXPECT_EQ(g_display.switches[static_cast<size_t>(MapFamily::B737)].navaids, 0);
    lamps_follow("NDB");
    // The common keys do move every family: airports and traffic.
    ASSERT_TRUE(Click(id, 310, 250));
    switches[3] = 1;
    EXPECT_EQ(g_display.switches[static_cast<size_t>(MapFamily::MD80)].airports, 1);
    ASSERT_TRUE(Click(id, 48, 110));
    traffic = 1;
    EXPECT_EQ(g_display.switches[static_cast<size_t>(MapFamily::B737)].traffic, 1);
    EXPECT_EQ(g_display.efs50_hsi_mode, 8);          // the common switch's EFS 50 work
    lamps_follow("traffic");
    // The heading knob sends its key events, left half 0x1007E, right 0x1007F,
    // and repeats while held; the other knobs don't.
    ASSERT_TRUE(Click(id, 290, 75));
    ASSERT_TRUE(Click(id, 290, 75));
    ASSERT_TRUE(Click(id, 330, 75));
    EXPECT_EQ(scope.sim.CountEvents(0x1007E), 2);
    EXPECT_EQ(scope.sim.CountEvents(0x1007F), 1);
    const MOUSERECT* rows = MouseTableOf(id);
    int repeating = 0, children = 0;
    for (int i = 1; rows[i].rect_type != MOUSE_RECT_EOL; ++i) {
        if (rows[i].rect_type != MOUSE_RECT_CHILD) continue;
        ++children;
        if ((rows[i].mouse_flags & MOUSE_DOWN_REPEAT) != 0) ++repeating;
    }
    EXPECT_EQ(children, 2 + 2 + 4 + 1 + 2);          // three knobs of two halves, five keys
    EXPECT_EQ(repeating, 2);
    // Outside every area nothing happens.
    EXPECT_FALSE(Click(id, 5, 5));
}

TEST(Efs50Panel, ModeRangeNavAndTrafficKeysChangeTheEhsiPicture) {
    FreshAircraft();
    FakeSimulatorScope scope;
    auto draw = [] { return DrawNd(1, GaugeId::EFS50_EHSI, 266, 230); };
    auto click = [](int x, int y) { ASSERT_TRUE(Click(GaugeId::EFS50_EHSI_CNTR, x, y)); };
    // At start: HSI mode 1 on the radio, no map and so no range.
    Frame start = draw();
    EXPECT_TRUE(start.Has("HSI"));
    EXPECT_FALSE(start.Has("FMS"));
    EXPECT_FALSE(start.Has("12.5 NM"));
    // The nav key brings the flight plan.
    click(280, 60);
    EXPECT_TRUE(draw().Has("FMS"));
    // The full-rose key: ROSE and ROSE MAP with their range, then HSI again.
    for (const char* name : {"ROSE", "ROSE MAP", "HSI"}) {
        click(150, 60);
        Frame f = draw();
        EXPECT_TRUE(f.Has(name)) << name;
        EXPECT_EQ(f.Has("12.5 NM"), std::string(name) != "HSI") << name;
    }
    // The arc key: from the rose into ARC HSI, then round its group.
    for (const char* name : {"ARC HSI", "ARC", "ARC MAP", "ARC BRG", "ARC HSI", "ARC"}) {
        click(210, 60);
        EXPECT_TRUE(draw().Has(name)) << name;
    }
    // The range keys over the ARC map: up a rung, down two.
    click(340, 60);
    EXPECT_TRUE(draw().Has("25 NM"));
    click(340, 95);
    click(340, 95);
    EXPECT_TRUE(draw().Has("5 NM"));
    // The nav key back to the radio: the map and its range go.
    click(280, 60);
    Frame radio = draw();
    EXPECT_FALSE(radio.Has("FMS"));
    EXPECT_FALSE(radio.Has("5 NM"));
    click(280, 60);
    // The traffic key: the traffic picture at its range, which the range
    // keys now step; pressed again, back to ARC with the map's range.
    click(280, 95);
    Frame traffic = draw();
    EXPECT_TRUE(traffic.Has("TFC"));
    EXPECT_TRUE(traffic.Has("10 NM"));
    click(340, 60);
    EXPECT_TRUE(draw().Has("20 NM"));
    click(340, 95);
    EXPECT_TRUE(draw().Has("10 NM"));
    click(280, 95);
    Frame back = draw();
    EXPECT_TRUE(back.Has("ARC"));
    EXPECT_FALSE(back.Has("TFC"));
    EXPECT_TRUE(back.Has("5 NM"));                 // the map's range, untouched by the traffic steps
    EXPECT_FALSE(back.Has("10 NM"));
}

TEST(Proline4Panels, KnobsKeysAndSwitchesChangeTheMfdPicture) {
    FreshAircraft();
    FakeSimulatorScope scope;
    double lat = 0, lon = 0;
    auto add = [&](auto& subset, const char* ident, const char* kind, double bearing) {
        ProjectPoint(g_sim.latitude, g_sim.longitude, bearing, 3, lat, lon);
        AddNearby(subset, ident, kind, lat, lon);
    };
    add(g_nearby.NavaidsNear320, "SEA", "V", 0);
    add(g_nearby.NavaidsNear320, "NOLLA", "N", 60);
    add(g_nearby.AirportsNear180, "KBFI", "", 300);
    add(g_nearby.FixesNear200, "ALDER", "I", 20);
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = TrafficTarget{0, 4, 9, '-', 'O'};
    auto picture = [] { return DrawNd(1, GaugeId::PROLINE4_MFD, 247, 285); };
    ASSERT_EQ(g_display.proline4_mode, 3);
    Frame start = picture();
    for (const char* text : {"SEA", "NOLLA", "KBFI", "ALDER", "+9", "TFC", "VOR1", "VOR2"})
        EXPECT_FALSE(start.Has(text)) << text;
    ASSERT_TRUE(start.Has("40 NM"));

    // The range knob, over the middle of the mode knob: right half up, left half down.
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 160, 30));
    EXPECT_TRUE(picture().Has("80 NM"));
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 145, 30));
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 145, 30));
    EXPECT_TRUE(picture().Has("20 NM"));

    // The AUX panel's switches, one at a time: each brings its own objects.
    struct Switch {
        int x;              // the button's left edge
        const char* shows;  // what it brings on the map
        int lamp;           // its lamp's layer
    };
    for (Switch s : {Switch{73, "ALDER", 2}, Switch{116, "SEA", 3}, Switch{161, "NOLLA", 4}, Switch{205, "KBFI", 5},
                     Switch{28, "+9", 1}}) {
        EXPECT_FALSE(picture().Has(s.shows)) << s.shows;
        EXPECT_FALSE(ControlPanelLayerShown(GaugeId::PROLINE4_AUX_CTRL, s.lamp)) << s.shows;
        ASSERT_TRUE(Click(GaugeId::PROLINE4_AUX_CTRL, s.x + 18, 46));
        EXPECT_TRUE(picture().Has(s.shows)) << s.shows;
        EXPECT_TRUE(ControlPanelLayerShown(GaugeId::PROLINE4_AUX_CTRL, s.lamp)) << s.shows;
    }
    // The NDB switch is the display's own: off again, NOLLA goes and SEA stays.
    ASSERT_TRUE(Click(GaugeId::PROLINE4_AUX_CTRL, 161 + 18, 46));
    Frame no_ndb = picture();
    EXPECT_FALSE(no_ndb.Has("NOLLA"));
    EXPECT_TRUE(no_ndb.Has("SEA"));
    // ATC boundaries: the flag and its lamp (no boundary layer is drawn yet).
    ASSERT_TRUE(Click(GaugeId::PROLINE4_AUX_CTRL, 250 + 18, 46));
    EXPECT_EQ(g_display.AtcBoundariesShown, 1);
    EXPECT_TRUE(ControlPanelLayerShown(GaugeId::PROLINE4_AUX_CTRL, 6));

    // The MFD panel's traffic button flips the same switch: the target goes.
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 190, 68));
    EXPECT_FALSE(picture().Has("+9"));

    // The bearing keys: the first pointer's source steps VOR1, ADF, FMS, off.
    for (const char* name : {"VOR1", "ADF", "FMS"}) {
        ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 55, 27));
        EXPECT_TRUE(picture().Has(name)) << name;
    }
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 55, 27));
    EXPECT_FALSE(picture().Has("FMS"));
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 55, 66));
    EXPECT_TRUE(picture().Has("VOR2"));

    // The mode knob's outer right edge steps up 3 to 1: the map goes, the
    // receiver comes; its left edge steps down back to 3.
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 180, 30));
    Frame hsi = picture();
    EXPECT_EQ(g_display.proline4_mode, 1);
    EXPECT_FALSE(hsi.Has("SEA"));
    EXPECT_TRUE(hsi.Has("LOC1"));
    ASSERT_TRUE(Click(GaugeId::PROLINE4_MFD_CTRL, 125, 30));
    EXPECT_EQ(g_display.proline4_mode, 3);
    EXPECT_TRUE(picture().Has("SEA"));
}

TEST(C17Keys, PanelsMapKeysRangeKnobAndSymbolFlagsChangeTheMapPicture) {
    FreshAircraft();
    FakeSimulatorScope scope;
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.51, -122.32);
    g_display.c17_screens[1].page = 3;
    auto draw = [] { return DrawNd(2, GaugeId::C17_MFD, 246, 241); };
    Frame arc = draw();
    EXPECT_TRUE(arc.Has("MAP ARC"));
    EXPECT_FALSE(arc.Has("ALDER"));
    // Forward: the arc gives way to the centred map, then to PLAN, where it stops.
    ASSERT_TRUE(Click(GaugeId::C17_MFCP, 100, 345));
    EXPECT_TRUE(draw().Has("MAP CTR"));
    Click(GaugeId::C17_MFCP, 370, 345);
    EXPECT_TRUE(draw().Has("MAP PLAN"));
    Click(GaugeId::C17_MFCP, 370, 345);
    EXPECT_TRUE(draw().Has("MAP PLAN"));
    // Back, once: the centred map again.
    Click(GaugeId::C17_MFCP, 370, 300);
    Frame centred = draw();
    EXPECT_TRUE(centred.Has("MAP CTR"));
    EXPECT_FALSE(centred.Has("MAP PLAN"));
    // The left symbol flag puts the intersections on; a second press takes them off.
    ASSERT_TRUE(Click(GaugeId::C17_MFCP, 50, 150));
    EXPECT_TRUE(draw().Has("ALDER"));
    Click(GaugeId::C17_MFCP, 50, 150);
    EXPECT_FALSE(draw().Has("ALDER"));
    // The range knob: the page with range text follows it, 80 -> 160 -> 80 -> 40.
    g_display.c17_screens[1].page = 6;
    EXPECT_TRUE(draw().Has("RNG 80 NM"));
    Click(GaugeId::C17_MFCP, 140, 460);                   // right half: up
    EXPECT_TRUE(draw().Has("RNG 160 NM"));
    Click(GaugeId::C17_MFCP, 80, 460);                    // left half: down
    Click(GaugeId::C17_MFCP, 80, 460);
    Frame closer = draw();
    EXPECT_TRUE(closer.Has("RNG 40 NM"));
    EXPECT_FALSE(closer.Has("RNG 80 NM"));
}
