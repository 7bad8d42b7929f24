// server_gauge_test.cpp: the SERVER gauge as an outside gauge sees it: the
// exported variables read through the pointers it registered, the click
// requests and key events that switch LNAV, VNAV and the ND controls, the
// NAV key's echo that must not toggle LNAV back, the [Lvars] bridge rows and
// the heading written out three times a second.
#include "display/display_state.h"
#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/named_variables.h"
#include "frame/server_gauge.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"
#include "support/fake_panels.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

namespace {
// What the fake simulator keeps of the module's exports and handlers.
struct Exports {
    std::map<std::string, std::pair<void*, VAR_TYPE>> vars;
    KEY_EVENT_HANDLER handler = nullptr;
    bool echo_nav_key = false;          // the simulator answers the nav lock event with its NAV key
} g_exports;

void FSAPI RegisterVar(PVOID var, VAR_TYPE type, PSTRINGZ name) { g_exports.vars[name] = {var, type}; }
void FSAPI UnregisterVar(PSTRINGZ name) {
    g_exports.vars.erase(name);
    CurrentFakeSimulator().unregistered.emplace_back(name);
}
void FSAPI RegisterHandler(KEY_EVENT_HANDLER h, PVOID) { g_exports.handler = h; }
void FSAPI UnregisterHandler(KEY_EVENT_HANDLER, PVOID) { g_exports.handler = nullptr; }
// Key events reach every handler, the module's own included, as in the simulator.
ERR FSAPI Trigger(ID32 event, UINT32 value) {
    CurrentFakeSimulator().key_events.emplace_back(event, value);
    if (g_exports.handler != nullptr) {
        g_exports.handler(event, value, nullptr);
        if (event == 0x1011B && g_exports.echo_nav_key) g_exports.handler(0x100C1, 0, nullptr);
    }
    return 0;
}

template <typename Fn>
void Put(FakeSimulator& sim, PanelSlot slot, Fn fn) {
    sim.table.slots[static_cast<int>(slot)] = reinterpret_cast<void*>(fn);
}

class Server : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        g_exports = Exports{};
        Put(sim(), PanelSlot::register_var_by_name, &RegisterVar);
        Put(sim(), PanelSlot::unregister_var_by_name, &UnregisterVar);
        Put(sim(), PanelSlot::register_key_event_handler, &RegisterHandler);
        Put(sim(), PanelSlot::unregister_key_event_handler, &UnregisterHandler);
        Put(sim(), PanelSlot::trigger_key_event, &Trigger);
        // A three-row plan flown to row 1, north along the meridian.
        PlanContext& pc = g_plan.context;
        const char* idents[] = {"ORIG", "MID", "DEST"};
        for (int i = 0; i < 3; ++i) {
            PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(i)];
            std::snprintf(w.Ident.data(), w.Ident.size(), "%s", idents[i]);
            w.Latitude = 47.0 + i;
            w.Longitude = -122.0;
        }
        pc.ActiveLastRow = 2;
        pc.ActiveLeg = 1;
        pc.PlanState = 3;
        g_sim.latitude = 47.2;
        g_sim.longitude = -122.0;
        RegisterAllVariables();
    }
    FakeSimulator& sim() { return scope_.sim; }
    double Local(const char* name) {
        ID id = CheckNamedVariable(name);
        return id < 0 ? -1 : GetNamedVariableValue(id);
    }
    void SetLocal(const char* name, double value) { SetNamedVariableValue(RegisterNamedVariable(name), value); }
    template <typename T>
    T Read(const char* name) {
        auto it = g_exports.vars.find(name);
        EXPECT_NE(it, g_exports.vars.end()) << name << " is not exported";
        return it == g_exports.vars.end() ? T{} : *static_cast<const T*>(it->second.first);
    }
    void Key(uint32_t event) { g_exports.handler(event, 0, nullptr); }

    FakeSimulatorScope scope_;
};
}  // namespace

TEST_F(Server, ExportsCarryTheGuidanceValuesWithTheirTypes) {
    EXPECT_EQ(g_exports.vars.size(), 14u);
    EXPECT_EQ(g_exports.vars["orb_act_wpt_dist"].second, TYPE_PFLOAT64);
    EXPECT_EQ(g_exports.vars["orb_fpln_wpt_cnt"].second, TYPE_PUINT32);
    EXPECT_EQ(g_exports.vars["Orb_FlightPlan"].second, TYPE_PVOID);
    EXPECT_EQ(Local("orb_server_active"), 1);
    // Nothing published yet: orb_active is still 0 until the first copy.
    EXPECT_EQ(Read<uint32_t>("orb_active"), 0u);

    g_lnav.DistToActive = 48.5;
    g_lnav.XtkDistance = 1.25;
    g_lnav.XtkSide = 2;
    g_lnav.LegCourse = 357.0;
    g_lnav.BearingToActive = 3.5;
    g_vnav.VnavOn = 1;
    PublishGuidance();
    EXPECT_EQ(Read<uint32_t>("orb_act_wpt_pos"), 1u);
    EXPECT_DOUBLE_EQ(Read<double>("orb_act_wpt_dist"), 48.5);
    EXPECT_EQ(Read<uint32_t>("orb_fpln_wpt_cnt"), 2u);
    EXPECT_EQ(Read<uint32_t>("orb_xtk_err_dir"), 2u);
    EXPECT_DOUBLE_EQ(Read<double>("orb_xtk_err_dist"), 1.25);
    EXPECT_DOUBLE_EQ(Read<double>("orb_act_wpt_trk"), 357.0);
    EXPECT_DOUBLE_EQ(Read<double>("orb_act_wpt_brg"), 3.5);
    EXPECT_EQ(Read<uint32_t>("orb_lnav_mode"), 0u);
    EXPECT_EQ(Read<uint32_t>("orb_vnav_mode"), 1u);
    EXPECT_EQ(Read<uint32_t>("orb_active"), 1u);
    EXPECT_EQ(Read<uint32_t>("qw_ap_lat_mode"), 0u);
    EXPECT_STREQ(static_cast<const char*>(g_exports.vars["orb_act_wpt_id"].first), "INIT");
    // The plan table itself: an outside gauge reads row 2's ident through it.
    const auto* plan = static_cast<const PlanWaypoint*>(g_exports.vars["Orb_FlightPlan"].first);
    EXPECT_STREQ(plan[2].Ident.data(), "DEST");

    // No active leg: the index reads 0, not 999.
    g_plan.context.ActiveLeg = kNoActiveLeg;
    PublishGuidance();
    EXPECT_EQ(Read<uint32_t>("orb_act_wpt_pos"), 0u);

    // Disconnect: the flag down, every name given back, no handler left.
    UnregisterAllVariables();
    EXPECT_EQ(Local("orb_server_active"), 0);
    EXPECT_TRUE(g_exports.vars.empty());
    EXPECT_EQ(g_exports.handler, nullptr);
    UnregisterAllVariables();  // a second disconnect is harmless
    RegisterAllVariables();    // and a reconnect registers again
    EXPECT_EQ(g_exports.vars.size(), 14u);
}

TEST_F(Server, ClickRequestsActInTableOrderAndGoBackToZero) {
    SetLocal("orb_lnav_clicked", 1);
    SetLocal("orb_vnav_clicked", 1);
    SetLocal("orb_nd_mode_clicked", 0);
    SetLocal("orb_nd_apt_clicked", 1);
    int mode_before = g_display.b737_mode;
    NamedVariablePump();
    EXPECT_EQ(g_lnav.LnavOn, 1);
    EXPECT_EQ(g_vnav.VnavOn, 1);
    EXPECT_EQ(Local("orb_lnav"), 1);
    EXPECT_EQ(Local("orb_vnav"), 1);
    EXPECT_EQ(Local("orb_nd_apt"), 1);
    for (const MapSwitches& s : g_display.switches) EXPECT_EQ(s.airports, 1);
    EXPECT_EQ(Local("orb_lnav_clicked"), 0);
    EXPECT_EQ(Local("orb_vnav_clicked"), 0);
    EXPECT_EQ(Local("orb_nd_apt_clicked"), 0);
    EXPECT_EQ(Local("orb_nd_mode_clicked"), 0);
    EXPECT_EQ(g_display.b737_mode, mode_before);

    // Mode and range by value, echoed to their own variables.
    SetLocal("orb_nd_mode_clicked", 7);
    SetLocal("orb_nd_range_clicked", 40);
    NamedVariablePump();
    EXPECT_EQ(g_display.b737_mode, 7);
    EXPECT_EQ(Local("orb_nd_mode"), 7);
    EXPECT_DOUBLE_EQ(g_display.b737_range, 40);
    EXPECT_EQ(Local("orb_nd_range"), 40);
    // Step requests: one rung each way, every family at once.
    SetLocal("orb_nd_range_decr_clicked", 1);
    NamedVariablePump();
    EXPECT_DOUBLE_EQ(g_display.b737_range, 20);
    SetLocal("orb_nd_mode_decr_clicked", 1);
    NamedVariablePump();
    EXPECT_EQ(g_display.b737_mode, 6);
    SetLocal("orb_nd_vor_adf_clicked", 1);
    NamedVariablePump();
    EXPECT_EQ(g_display.b737_adf_pointer, 1);

    // A second LNAV click turns it off again.
    SetLocal("orb_lnav_clicked", 1);
    NamedVariablePump();
    EXPECT_EQ(g_lnav.LnavOn, 0);
    EXPECT_EQ(Local("orb_lnav"), 0);
}

TEST_F(Server, KeyEventsToggleAndTheNavKeyEchoDoesNotLoop) {
    ASSERT_NE(g_exports.handler, nullptr);
    Key(0x10337);
    EXPECT_EQ(g_lnav.LnavOn, 1);
    Key(0x10338);
    EXPECT_EQ(g_vnav.VnavOn, 1);
    Key(0x10339);
    EXPECT_EQ(g_display.switches[0].traffic, 1);
    EXPECT_EQ(Local("orb_nd_tcas"), 1);
    // Without the option the NAV key is the autopilot's alone.
    Key(0x100C1);
    EXPECT_EQ(g_lnav.LnavOn, 1);

    // With it, the NAV key toggles LNAV; LNAV's switching sends the nav lock
    // event, which this simulator answers with its NAV key again.
    g_config.LnavOnNavLock = 1;
    g_exports.echo_nav_key = true;
    g_sim.tick_value = 100;
    Key(0x100C1);
    EXPECT_EQ(g_lnav.LnavOn, 0) << "the echo of our own event toggled LNAV back";
    EXPECT_EQ(sim().CountEvents(0x1011B), 1);
    // A LNAV switch from elsewhere (the LNAV button) and its echo, in a later tick.
    g_sim.tick_value = 101;
    ServerLnavToggle();
    EXPECT_EQ(g_lnav.LnavOn, 1);
    EXPECT_EQ(sim().CountEvents(0x1011B), 2);
    // The pilot's next press, a tick later, still works.
    g_sim.tick_value = 102;
    Key(0x100C1);
    EXPECT_EQ(g_lnav.LnavOn, 0);

    // Disconnected, the handler does nothing even if still called.
    KEY_EVENT_HANDLER handler = g_exports.handler;
    UnregisterAllVariables();
    handler(0x10337, 0, nullptr);
    EXPECT_EQ(g_lnav.LnavOn, 0);
}

TEST_F(Server, LvarRowsDriveTheDisplaysAndLnavWithTheHoldOff) {
    ASSERT_TRUE(ReadLvarLine("Panel ND Range=3,MapRange=40"));
    ASSERT_TRUE(ReadLvarLine("ND_MODE=2,NDPlanMode=0"));
    ASSERT_TRUE(ReadLvarLine("ND_MODE=3,NDMapMode=0"));
    ASSERT_TRUE(ReadLvarLine("APT_SW=1,DisplayApts=0"));
    ASSERT_TRUE(ReadLvarLine("TCAS_SW=1,TcasOn=0"));
    ASSERT_TRUE(ReadLvarLine("LNAV_SW=1,LnavOn=0"));
    ReadLvarLine("NOCOMMA");
    const int md80_before = g_display.md80_mode;

    SetLocal("Panel ND Range", 3);
    SetLocal("ND_MODE", 2);
    SetLocal("APT_SW", 1);
    NamedVariablePump();
    EXPECT_DOUBLE_EQ(g_display.b737_range, 40);
    // Plan mode in every family that has one.
    EXPECT_EQ(g_display.b737_mode, 7);
    EXPECT_EQ(g_display.efs50_hsi_mode, 7);
    EXPECT_EQ(g_display.du1000_mode, 2);
    EXPECT_EQ(g_display.md11_mode, 2);
    EXPECT_EQ(g_display.md80_mode, 2);
    EXPECT_NE(md80_before, 2);
    for (const MapSwitches& s : g_display.switches) EXPECT_EQ(s.airports, 1);
    EXPECT_EQ(Local("orb_nd_apt"), 1);
    // Traffic on by the panel's switch: every family, the EFS 50 in its traffic mode.
    SetLocal("TCAS_SW", 1);
    NamedVariablePump();
    EXPECT_EQ(g_display.switches[0].traffic, 1);
    EXPECT_EQ(g_display.efs50_hsi_mode, 8);
    // LNAV_SW is 0 and LNAV off: nothing to do.
    EXPECT_EQ(g_lnav.LnavOn, 0);

    // The knob turns the range down; the row's variable still says 3: undone.
    RangeDown();
    EXPECT_DOUBLE_EQ(g_display.b737_range, 20);
    // The bridge mode stays; a knob change of mode is not undone while it holds.
    g_display.b737_mode = 5;
    NamedVariablePump();
    EXPECT_DOUBLE_EQ(g_display.b737_range, 40);
    EXPECT_EQ(g_display.b737_mode, 5);
    SetLocal("ND_MODE", 3);
    NamedVariablePump();
    EXPECT_EQ(g_display.md11_mode, 3);

    // Traffic toggled by its key in this frame: the bridge sees it on and leaves it.
    Key(0x10339);
    SetLocal("TCAS_SW", 0);
    NamedVariablePump();
    EXPECT_EQ(g_display.switches[0].traffic, 0);

    // LNAV clicked on while the panel's LNAV_SW still reads 0: three updates
    // pass before the bridge acts, and then it follows the panel's switch.
    SetLocal("orb_lnav_clicked", 1);
    NamedVariablePump();  // the click; hold-off set
    EXPECT_EQ(g_lnav.LnavOn, 1);
    for (int update = 0; update < 3; ++update) {
        NamedVariablePump();
        EXPECT_EQ(g_lnav.LnavOn, 1) << "update " << update;
    }
    NamedVariablePump();
    EXPECT_EQ(g_lnav.LnavOn, 0);
    // The panel's own switch on: the bridge engages LNAV once its own
    // switching's rest of three updates is over.
    SetLocal("LNAV_SW", 1);
    for (int update = 0; update < 3; ++update) NamedVariablePump();
    EXPECT_EQ(g_lnav.LnavOn, 0);
    NamedVariablePump();
    EXPECT_EQ(g_lnav.LnavOn, 1);
}

TEST_F(Server, HeadingGoesOutThreeTimesASecondAndTheBugIsPutBack) {
    Key(0x10337);
    ASSERT_EQ(g_lnav.LnavOn, 1);
    g_lnav.HeadingCommand = 123.7;
    g_tick.phase = 3;
    NamedVariablePump();
    EXPECT_EQ(Local("orb_lnav_hdg_set"), -1) << "written outside phases 0, 7, 14";
    for (int phase : {0, 7, 14}) {
        SetLocal("orb_lnav_hdg_set", 0);
        g_tick.phase = phase;
        NamedVariablePump();
        EXPECT_EQ(Local("orb_lnav_hdg_set"), 123) << "phase " << phase;
    }
    // Heading hold on and the option set: a bug at 100 goes back to 123.
    sim().key_events.clear();
    g_sim.heading_hold = 1;
    g_profile.ResetApHdg = 1;
    sim().tokens[Token::AP_HEADING_BUG] = 100;
    g_tick.phase = 7;
    NamedVariablePump();
    ASSERT_EQ(sim().CountEvents(0x101FA), 1);
    EXPECT_EQ(sim().key_events.back().second, 123u);
    // Without the option the bug is the pilot's.
    g_profile.ResetApHdg = 0;
    NamedVariablePump();
    EXPECT_EQ(sim().CountEvents(0x101FA), 1);
}
