// server_gauge.cpp: the SERVER gauge, the module's public face towards other
// gauges and XML panels. It registers the exported variables and the key
// event handler at connect, runs the pump at each update (click requests, the
// profile's [Lvars] bridge, the commanded heading out), and publishes the
// guidance values each tick. It sits at the top of the layers because it
// drives LNAV, VNAV and every display's controls.
//
// Index:
//   [SECTION] Names
//   [SECTION] Shared actions (clicks, key events and the bridge lead here)
//   [SECTION] Key events in
//   [SECTION] Registering and unregistering
//   [SECTION] The [Lvars] bridge
//   [SECTION] The pump
//   [SECTION] Publishing guidance
#include "frame/server_gauge.h"

#include "display/display_state.h"
#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/named_variables.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/lnav.h"
#include "guidance/lnav_state.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

// [SECTION] Names
namespace {
constexpr int kHoldOffUpdates = 3;      // updates the bridge rests after an LNAV toggle

// The local variables, in the order they are checked in.
constexpr std::array<const char*, 10> kLocalNames = {
    "orb_lnav", "orb_vnav", "orb_nd_apt", "orb_nd_nav", "orb_nd_int",
    "orb_nd_tcas", "orb_nd_mode", "orb_nd_range", "orb_lnav_hdg_set", "orb_server_active"};

enum class Request : int {
    Lnav, Vnav, Airports, Navaids, Intersections, Traffic, Mode, Range,
    ModeUp, ModeDown, RangeUp, RangeDown, VorAdf,
};

struct RequestRow {
    const char* name;                   // the local variable an XML gauge sets
    Request action;
    uint32_t key_event;                 // the simulator key event that does the same; 0 none
};

// Table order is the order of acting within one update.
constexpr std::array<RequestRow, 13> kRequests = {{
    {"orb_lnav_clicked", Request::Lnav, ServerKey::kLnavToggle},
    {"orb_vnav_clicked", Request::Vnav, ServerKey::kVnavToggle},
    {"orb_nd_apt_clicked", Request::Airports, 0x10295},
    {"orb_nd_nav_clicked", Request::Navaids, 0x10296},
    {"orb_nd_int_clicked", Request::Intersections, 0x10298},
    {"orb_nd_tcas_clicked", Request::Traffic, 0x10339},
    {"orb_nd_mode_clicked", Request::Mode, 0},
    {"orb_nd_range_clicked", Request::Range, 0},
    {"orb_nd_mode_incr_clicked", Request::ModeUp, 0x1029B},
    {"orb_nd_mode_decr_clicked", Request::ModeDown, 0x102AF},
    {"orb_nd_range_incr_clicked", Request::RangeUp, 0x10299},
    {"orb_nd_range_decr_clicked", Request::RangeDown, 0x102DE},
    {"orb_nd_vor_adf_clicked", Request::VorAdf, 0},
}};

// The exported module variables, in the order they are registered.
struct ExportRow {
    const char* name;
    VAR_TYPE type;
};
constexpr std::array<ExportRow, 15> kExports = {{
    {"orb_act_wpt_pos", TYPE_PUINT32}, {"orb_act_wpt_dist", TYPE_PFLOAT64}, {"orb_fpln_wpt_cnt", TYPE_PUINT32},
    {"orb_xtk_err_dir", TYPE_PUINT32}, {"orb_xtk_err_dist", TYPE_PFLOAT64}, {"orb_act_wpt_trk", TYPE_PFLOAT64},
    {"orb_act_wpt_brg", TYPE_PFLOAT64}, {"orb_lnav_mode", TYPE_PUINT32}, {"orb_vnav_mode", TYPE_PUINT32},
    {"orb_active", TYPE_PUINT32}, {"orb_act_wpt_id", TYPE_PVOID}, {"Orb_FlightPlan", TYPE_PVOID},
    {"qw_ap_vert_mode", TYPE_PUINT32}, {"qw_ap_lat_mode", TYPE_PUINT32},
    {nullptr, VAR_TYPE_NONE},  // end mark
}};

void* ExportPointer(size_t index) {
    ExportedVariables& e = g_named.exports;
    switch (index) {
    case 0: return &e.act_wpt_pos;
    case 1: return &e.act_wpt_dist;
    case 2: return &e.fpln_wpt_cnt;
    case 3: return &e.xtk_err_dir;
    case 4: return &e.xtk_err_dist;
    case 5: return &e.act_wpt_trk;
    case 6: return &e.act_wpt_brg;
    case 7: return &e.lnav_mode;
    case 8: return &e.vnav_mode;
    case 9: return &e.active;
    case 10: return e.act_wpt_id.data();
    case 11: return g_plan.ActivePlan.data();  // outside readers take the table as it is
    case 12: return &e.qw_ap_vert_mode;
    case 13: return &e.qw_ap_lat_mode;
    default: return nullptr;
    }
}

int ToSwitch(double value) { return value != 0 ? 1 : 0; }
}  // namespace

// [SECTION] Shared actions
void ServerLnavToggle() {
    LnavToggle();
    // The bridge's own LnavOn row would flip it back before the outside
    // panel's variable has caught up.
    g_lnav.PublishHoldFrames = kHoldOffUpdates;
}

namespace {
void SetAllSwitches(int MapSwitches::*field, int* p1000_copy, const char* variable, int value) {
    for (MapSwitches& s : g_display.switches) s.*field = value;
    *p1000_copy = value;
    WriteLocalVariable(variable, value);
}

// The bridge modes, each family's mode for it; -1 leaves that family alone.
struct BridgeModeRow {
    int b737, efs50, du1000, proline4, md80, md11;
};
constexpr std::array<BridgeModeRow, 7> kBridgeModes = {{
    {1, 1, 0, 0, 0, -1},   // compass
    {3, 4, 1, 1, 1, -1},   // arc
    {7, 7, 2, 2, 2, 2},    // plan
    {5, 5, 3, 3, 3, 3},    // map
    {2, 2, -1, -1, -1, 4}, // VOR
    {4, -1, -1, -1, -1, 5},// approach
    {6, -1, -1, -1, -1, -1},  // centred map
}};

void SetBridgeMode(int mode) {
    DisplayState& d = g_display;
    const BridgeModeRow& m = kBridgeModes[static_cast<size_t>(mode)];
    g_named.server.bridge_mode = mode;
    if (m.b737 >= 0) d.b737_mode = m.b737;
    if (m.efs50 >= 0) d.efs50_hsi_mode = m.efs50;
    if (m.du1000 >= 0) d.du1000_mode = m.du1000;
    if (m.proline4 >= 0) d.proline4_mode = m.proline4;
    if (m.md80 >= 0) d.md80_mode = m.md80;
    if (m.md11 >= 0) d.md11_mode = m.md11;
}

void SetBearingPointer(int pointer, int value) {
    DisplayState& d = g_display;
    size_t i = static_cast<size_t>(pointer);
    d.efs50_bearing[i] = value;
    d.proline4_bearing[i] = value;
    if (pointer == 0) d.md11_bearing1 = value;
    else d.md11_bearing2 = value != 0 ? 1 : 0;
}

void Act(Request action, double value) {
    switch (action) {
    case Request::Lnav: ServerLnavToggle(); break;
    case Request::Vnav: VnavToggle(); break;
    case Request::Airports: ToggleMapAirports(); break;
    case Request::Navaids: ToggleMapNavaids(); break;
    case Request::Intersections: ToggleMapIntersections(); break;
    case Request::Traffic: ToggleTraffic(); break;
    case Request::Mode:
        // Only the B737 family takes a mode by number; 1 to 7.
        if (value > 0) {
            int mode = static_cast<int>(std::clamp(value, static_cast<double>(kB737ModeNav), static_cast<double>(kB737ModePlan)));
            g_display.b737_mode = mode;
            WriteLocalVariable("orb_nd_mode", mode);
        }
        break;
    case Request::Range:
        if (value > 0) {
            SetB737Range(value);
            WriteLocalVariable("orb_nd_range", static_cast<int>(value));
        }
        break;
    case Request::ModeUp: StepMode(1, kStepAllDisplays); break;
    case Request::ModeDown: StepMode(-1, kStepAllDisplays); break;
    case Request::RangeUp: RangeUp(); break;
    case Request::RangeDown: RangeDown(); break;
    case Request::VorAdf: g_display.b737_adf_pointer = g_display.b737_adf_pointer != 0 ? 0 : 1; break;
    }
}
}  // namespace

// [SECTION] Key events in
void ServerKeyEvent(ID32 event, UINT32, PVOID) {
    ServerState& s = g_named.server;
    if (s.registered == 0) return;
    // The module's own nav lock event marks the tick: a NAV key arriving in
    // the same tick is the echo of our toggle, not the pilot's.
    if (event == ServerKey::kNavLockSent) {
        s.nav_lock_echo_tick = g_sim.tick_value;
        return;
    }
    bool nav_key = event == ServerKey::kApNavKey && g_config.LnavOnNavLock == 1;
    if (nav_key) {
        // Nested: an event sent while we act on one is ours coming back.
        if (s.handler_depth > 0) return;
        if (s.nav_lock_echo_tick >= 0 && s.nav_lock_echo_tick == g_sim.tick_value) return;
    }
    ++s.handler_depth;
    if (nav_key) {
        ServerLnavToggle();
    } else {
        for (const RequestRow& row : kRequests)
            if (row.key_event != 0 && row.key_event == event) {
                Act(row.action, 1);
                break;
            }
    }
    --s.handler_depth;
}

// [SECTION] Registering and unregistering
void RegisterAllVariables() {
    ServerState& s = g_named.server;
    if (s.registered != 0) return;
    // The key events first, then the exports, then the local variables.
    RegisterKeyEventHandler(&ServerKeyEvent, nullptr);
    for (size_t i = 0; kExports[i].name != nullptr; ++i)
        RegisterVarByName(ExportPointer(i), kExports[i].type, kExports[i].name);
    for (const char* name : kLocalNames) CheckNamedVariable(name);
    s.registered = 1;
    WriteLocalVariable("orb_server_active", 1);
}

void UnregisterAllVariables() {
    ServerState& s = g_named.server;
    if (s.registered == 0) return;
    WriteLocalVariable("orb_server_active", 0);
    for (size_t i = 0; kExports[i].name != nullptr; ++i) UnregisterVarByName(kExports[i].name);
    for (const char* name : kLocalNames) UnregisterVarByName(name);
    for (const RequestRow& row : kRequests) UnregisterVarByName(row.name);
    s.registered = 0;
    UnregisterKeyEventHandler(&ServerKeyEvent, nullptr);
}

// [SECTION] The [Lvars] bridge
void RunLvarBridge() {
    ServerState& s = g_named.server;
    for (int r = 0; r < g_lvars.count && r < kLvarRowLimit; ++r) {
        const LvarRow& row = g_lvars.rows[static_cast<size_t>(r)];
        if (row.action == LvarAction::None) continue;
        ID id = RegisterNamedVariable(row.name.data());
        double raw = GetNamedVariableValue(id);
        int value = std::fabs(raw) < 2e9 ? static_cast<int>(raw) : 0;
        switch (row.action) {
        case LvarAction::MapRange:
            if (value == row.value) SetB737Range(row.parameter);
            break;
        case LvarAction::TcasOn:
            if (value != g_display.switches[0].traffic) ToggleTraffic();
            break;
        case LvarAction::DisplayInts:
        case LvarAction::DisplayNavs:
        case LvarAction::DisplayApts: {
            int k = static_cast<int>(row.action) - static_cast<int>(LvarAction::DisplayInts);
            if (value == s.bridge_switch[static_cast<size_t>(k)]) break;
            s.bridge_switch[static_cast<size_t>(k)] = value;
            int v = ToSwitch(value);
            if (k == 0) SetAllSwitches(&MapSwitches::intersections, &g_display.p1000_intersections, "orb_nd_int", v);
            if (k == 1) SetAllSwitches(&MapSwitches::navaids, &g_display.p1000_navaids, "orb_nd_nav", v);
            if (k == 2) SetAllSwitches(&MapSwitches::airports, &g_display.p1000_airports, "orb_nd_apt", v);
            break;
        }
        case LvarAction::NDCompassMode:
        case LvarAction::NDArcMode:
        case LvarAction::NDPlanMode:
        case LvarAction::NDMapMode:
        case LvarAction::NDVorMode:
        case LvarAction::NDAppMode:
        case LvarAction::NDCtrMapMode: {
            int mode = static_cast<int>(row.action) - static_cast<int>(LvarAction::NDCompassMode);
            if (value == row.value && s.bridge_mode != mode) SetBridgeMode(mode);
            break;
        }
        case LvarAction::Vor1BrgPtr:
        case LvarAction::Vor2BrgPtr: {
            int k = row.action == LvarAction::Vor1BrgPtr ? 0 : 1;
            if (value == s.bridge_pointer[static_cast<size_t>(k)]) break;
            s.bridge_pointer[static_cast<size_t>(k)] = value;
            SetBearingPointer(k, value);
            break;
        }
        case LvarAction::LnavOn:
            if (ToSwitch(value) != g_lnav.LnavOn) ServerLnavToggle();
            break;
        case LvarAction::None: break;
        }
    }
}

// [SECTION] The pump
void NamedVariablePump() {
    ServerState& s = g_named.server;
    if (s.registered == 0) return;
    // 1. The bridge, unless an LNAV toggle holds it off.
    if (g_lnav.PublishHoldFrames < 1) RunLvarBridge();
    else --g_lnav.PublishHoldFrames;

    // 2. Requests, in table order; each goes back to 0.
    for (const RequestRow& row : kRequests) {
        ID id = RegisterNamedVariable(row.name);
        if (id < 0) continue;
        double value = GetNamedVariableValue(id);
        if (value == 0) continue;
        Act(row.action, value);
        SetNamedVariableValue(id, 0);
    }

    // 3. Three times a second, the commanded heading while LNAV is on.
    int phase = g_tick.phase;
    int command = static_cast<int>(g_lnav.HeadingCommand);
    if (phase == 0 || phase == 7 || phase == 14) {
        if (g_lnav.LnavOn == 0) return;
        WriteLocalVariable("orb_lnav_hdg_set", command);
    }

    // 4. A bug moved away from the command under heading hold goes back.
    if (g_lnav.LnavOn == 1 && g_sim.heading_hold == 1 && g_profile.ResetApHdg == 1) {
        double bug = HeadingBug();
        if (static_cast<int>(bug) != command) TriggerKeyEvent(ServerKey::kSetHeadingBug, static_cast<UINT32>(command));
    }
}

// [SECTION] Publishing guidance
void PublishGuidance() {
    ExportedVariables& e = g_named.exports;
    const PlanContext& pc = g_plan.context;
    const LnavState& l = g_lnav;
    e.act_wpt_pos = pc.ActiveLeg == kNoActiveLeg || pc.ActiveLeg < 0 ? 0 : static_cast<uint32_t>(pc.ActiveLeg);
    e.act_wpt_dist = l.DistToActive;
    e.fpln_wpt_cnt = pc.ActiveLastRow < 0 ? 0 : static_cast<uint32_t>(pc.ActiveLastRow);
    e.xtk_err_dir = l.XtkSide < 0 ? 0 : static_cast<uint32_t>(l.XtkSide);
    e.xtk_err_dist = l.XtkDistance;
    e.act_wpt_trk = l.LegCourse;
    e.act_wpt_brg = l.BearingToActive;
    e.lnav_mode = l.LnavOn != 0 ? 1 : 0;
    e.vnav_mode = g_vnav.VnavOn != 0 ? 1 : 0;
    e.active = 1;
}
