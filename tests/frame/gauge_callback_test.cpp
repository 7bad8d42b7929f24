// What the gauges do at the panel services: start-up and its guards, the
// parameter-string rules, instance logic, the draw step, lamps, clicks.
#include "frame/gauge_linkage.h"
#include "cdu/keypad.h"
#include "frame/sim_state.h"
#include "frame/gauge_callback.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "guidance/lnav.h"
#include "plan/plan_tables.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {
std::string ProfileName() { return g_module.AircraftProfileName.data(); }
}  // namespace

TEST(StartupOnce, FirstGaugeWithAProfileNameDecidesIt) {
    ResetModuleState();
    FakeSimulatorScope scope;
    GaugeInstance vc(GaugeId::HW_B737_ND, "VC");
    GaugeInstance named(GaugeId::SMITHS_FMS, "TwinJet");
    GaugeInstance later(GaugeId::GNSXLS, "Other");
    vc.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_EQ(ProfileName(), "");           // "VC" is an instance word, not a name
    EXPECT_TRUE(g_module.configuration_loaded);
    named.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_EQ(ProfileName(), "TwinJet");
    later.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_EQ(ProfileName(), "TwinJet");    // the first one holds for the module
}

TEST(StartupOnce, SomeGaugesTestOnlyVcAndWn) {
    for (GaugeId id : {GaugeId::EFS50_EHSI_CNTR, GaugeId::LNAV, GaugeId::VNAV}) {
        ResetModuleState();
        StartupOnce(id, "VC2");
        EXPECT_EQ(ProfileName(), "VC2") << GaugeName(id);  // taken for a profile name
        ResetModuleState();
        StartupOnce(id, "WN");
        EXPECT_EQ(ProfileName(), "") << GaugeName(id);
    }
    for (const char* word : {"VC", "VC2", "WN"}) {
        ResetModuleState();
        StartupOnce(GaugeId::HW_B737_ND, word);
        EXPECT_EQ(ProfileName(), "") << word;
    }
    // A word that only looks alike is a name.
    ResetModuleState();
    StartupOnce(GaugeId::HW_B737_ND, "vc");
    EXPECT_EQ(ProfileName(), "vc");
}

TEST(StartupOnce, GpsSynchOnlyOnTheCdusThatAcceptIt) {
    for (GaugeId id : {GaugeId::SMITHS_FMS, GaugeId::GNSXLS, GaugeId::GNSXLS_LM}) {
        ResetModuleState();
        StartupOnce(id, "GPSSynch");
        EXPECT_EQ(g_config.synchfplanwithfsgps, 1) << GaugeName(id);
        EXPECT_EQ(ProfileName(), "");
    }
    for (GaugeId id : {GaugeId::SMITHS_FMS_BR, GaugeId::HW_B737_ND}) {
        ResetModuleState();
        StartupOnce(id, "GPSSynch");
        EXPECT_EQ(g_config.synchfplanwithfsgps, 0) << GaugeName(id);
        EXPECT_EQ(ProfileName(), "GPSSynch");
    }
}

TEST(StartupOnce, ReloadFindsEverythingLoadedAndSkipsIt) {
    ResetModuleState();
    StartupOnce(GaugeId::SMITHS_FMS, "TwinJet");
    ASSERT_TRUE(g_module.configuration_loaded);
    EXPECT_EQ(g_tick.slow_refresh, 999);     // asked by the configuration's last step
    // A reload runs the initialise service again: nothing is read twice.
    g_tick.slow_refresh = 5;
    g_config.WptChgDist = 7;                 // as a CDU option page may have set it
    GaugeInstance again(GaugeId::SMITHS_FMS, "Another");
    again.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_EQ(g_tick.slow_refresh, 5);
    EXPECT_EQ(g_config.WptChgDist, 7);
    EXPECT_EQ(ProfileName(), "TwinJet");
    // The root folder, once found, stays.
    std::string root = g_module.RootFolder.data();
    FindRootFolder();
    EXPECT_EQ(std::string(g_module.RootFolder.data()), root);
}

TEST(StartupOnce, GaugesThatLeaveStartUpOut) {
    ResetModuleState();
    GaugeInstance aux(GaugeId::PROLINE4_AUX_CTRL, "TwinJet");
    aux.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_FALSE(g_module.configuration_loaded);
    GaugeInstance c17(GaugeId::C17_MFD, "TwinJet");
    c17.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_TRUE(g_module.configuration_loaded);
    EXPECT_EQ(ProfileName(), "");            // C17_MFD leaves the profile step out
    EXPECT_EQ(std::string(g_module.c17_parameter.data()), "TwinJet");
    if (g_module.diagnostic_log) {
        std::fclose(g_module.diagnostic_log);
        g_module.diagnostic_log = nullptr;
    }
}

TEST(StartupOnce, McuAndP1000ForceTheirCounters) {
    ResetModuleState();
    GaugeInstance mcu(GaugeId::MCU, "");
    mcu.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_EQ(g_tick.phase, 999);
    EXPECT_EQ(g_tick.slow_refresh, 999);
    EXPECT_EQ(g_mcu_page.repaint, 1);
    ResetModuleState();
    GaugeInstance mfd(GaugeId::P1000_MFD, "");
    mfd.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_EQ(g_tick.warm_up, 999);
    EXPECT_EQ(g_tick.slow_refresh, 999);
}

TEST(InstanceLogic, DrawInstanceFromWindowsAndParameter) {
    ResetModuleState();
    FakeSimulatorScope scope;
    auto& visible = scope.sim.window_visible;
    const unsigned nd_window = 4011;
    struct Row {
        bool main_panel, own_window;
        const char* parameter;
        int expected;
    };
    const Row rows[] = {
        {true, false, "", 1},   {true, false, "VC", 0},  {false, false, "VC", 1}, {true, true, "", 2},
        {true, true, "WN", 1},  {false, false, "WN", 1}, {true, true, "VC2", 3},  {false, false, "VC2", 1},
        {true, true, "VC", 2},  {false, true, "TwinJet", 2},
    };
    for (const Row& row : rows) {
        visible[0] = row.main_panel;
        visible[nd_window] = row.own_window;
        EXPECT_EQ(WorkOutDrawInstance(GaugeId::HW_B737_ND, row.parameter), row.expected)
            << row.main_panel << row.own_window << " '" << row.parameter << "'";
    }
    // The EADI and TCAS displays have no third instance; the P1000 has it always.
    visible[0] = true;
    visible[4005] = true;
    EXPECT_EQ(WorkOutDrawInstance(GaugeId::EFS50_EADI, "VC2"), 2);
    visible[4002] = false;
    EXPECT_EQ(WorkOutDrawInstance(GaugeId::P1000_MFD, "VC2"), 3);
}

TEST(GaugeCallback, DrawStepClearsTheOnScreenBitUnlessNotDrawn) {
    ResetModuleState();
    FakeSimulatorScope scope;
    GaugeInstance panel(GaugeId::HW_B737_ND, "");
    GaugeInstance vc(GaugeId::HW_B737_ND, "VC");
    scope.sim.window_visible[0] = true;
    panel.MarkOnScreen(1);
    vc.MarkOnScreen(1);
    panel.Service(PANEL_SERVICE_PRE_DRAW);
    vc.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_FALSE(panel.Flags(1) & IMAGE_ON_SCREEN);
    EXPECT_TRUE(vc.Flags(1) & IMAGE_ON_SCREEN);  // instance 0: not drawn at all
    // The CDU always draws.
    GaugeInstance cdu(GaugeId::SMITHS_FMS, "VC");
    cdu.MarkOnScreen(1);
    cdu.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_FALSE(cdu.Flags(1) & IMAGE_ON_SCREEN);
}

TEST(GaugeCallback, GdiplusStartsOnceAndStopsAtDisconnect) {
    ResetModuleState();
    GaugeInstance a(GaugeId::HW_B737_ND, "");
    GaugeInstance b(GaugeId::SMITHS_FMS, "");
    GaugeInstance panel(GaugeId::HW_B737_EFIS_CNTR, "");
    panel.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    EXPECT_EQ(g_module.gdiplus_token, 0u);   // control panels draw nothing
    a.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    ULONG_PTR token = g_module.gdiplus_token;
    EXPECT_NE(token, 0u);
    b.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    EXPECT_EQ(g_module.gdiplus_token, token);
    a.Service(PANEL_SERVICE_DISCONNECT);
    EXPECT_EQ(g_module.gdiplus_token, 0u);
    b.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    EXPECT_NE(g_module.gdiplus_token, 0u);
    b.Service(PANEL_SERVICE_DISCONNECT);
}

TEST(GaugeCallback, LampsFollowTheSharedState) {
    ResetModuleState();
    GaugeInstance cdu(GaugeId::SMITHS_FMS, "");
    GaugeInstance lnav(GaugeId::LNAV, "");
    cdu.Service(PANEL_SERVICE_PRE_INSTALL);
    EXPECT_EQ(g_smiths.CduPage, 25);
    g_smiths.CduPage = 3;
    cdu.Service(PANEL_SERVICE_PRE_INSTALL);
    EXPECT_EQ(g_smiths.CduPage, 3);          // only a page still at 0 is set

    cdu.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_TRUE(cdu.Hidden(2));
    EXPECT_TRUE(cdu.Hidden(3));
    for (int state : {1, 2, 3, 4}) {
        g_plan.context.PlanState = state;
        cdu.Service(PANEL_SERVICE_PRE_UPDATE);
        EXPECT_EQ(cdu.Hidden(2), !(state == 2 || state == 4)) << state;
    }
    g_smiths.CduMessage[0] = 'X';
    cdu.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_FALSE(cdu.Hidden(3));

    // The LNAV button: its click toggles LNAV (with a plan to fly), its update shows the lamp.
    g_plan.context.ActiveLastRow = 1;
    g_plan.context.ActiveLeg = 1;
    lnav.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_TRUE(lnav.Hidden(1));
    const MOUSERECT* rows = MouseTableOf(GaugeId::LNAV);
    PIXPOINT point{10, 10};
    rows[2].mouse_function(&point, MOUSE_LEFTSINGLE);
    EXPECT_EQ(g_lnav.LnavOn, 1);
    lnav.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_FALSE(lnav.Hidden(1));
}

TEST(GaugeCallback, DisplayAndOpenerClicksToggleTheirWindows) {
    ResetModuleState();
    FakeSimulatorScope scope;
    PIXPOINT point{5, 5};
    MouseRowCount(GaugeId::FMS_OPEN);
    MouseTableOf(GaugeId::FMS_OPEN)[2].mouse_function(&point, MOUSE_LEFTSINGLE);
    MouseTableOf(GaugeId::HW_B737_ND)[2].mouse_function(&point, MOUSE_LEFTSINGLE);
    ASSERT_EQ(scope.sim.window_toggles.size(), 2u);
    EXPECT_EQ(scope.sim.window_toggles[0], 4004u);
    EXPECT_EQ(scope.sim.window_toggles[1], 4011u);
}

TEST(GaugeCallback, ServerReadsTheTitleAndC17LooksUpItsModesOnce) {
    ResetModuleState();
    FakeSimulatorScope scope;
    scope.sim.calculator_text["(A:TITLE,string)"] = "Twin Jet 800 livery";
    GaugeInstance server(GaugeId::SERVER, "");
    server.Service(PANEL_SERVICE_POST_INITIALIZE);
    EXPECT_EQ(std::string(g_module.aircraft_title.data()), "TWIN JET 800 LIVERY");

    scope.sim.named_ids["MFDX3 mode"] = 16;   // not the panel's spelling of the third
    scope.sim.named_ids["MFDx3 mode"] = 17;
    GaugeInstance c17(GaugeId::C17_MFD, "");
    c17.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    EXPECT_EQ(g_module.c17_mode_variable[2], 17);
    EXPECT_EQ(g_module.c17_mode_variable[0], -1);
    scope.sim.named_ids["MFDX1 mode"] = 3;
    c17.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    EXPECT_EQ(g_module.c17_mode_variable[0], -1);  // looked up once only
    c17.Service(PANEL_SERVICE_DISCONNECT);
    EXPECT_EQ(scope.sim.unregistered,
              (std::vector<std::string>{"MFDX1 mode", "MFDx2 mode", "MFDx3 mode", "MFDx4 mode"}));
}
