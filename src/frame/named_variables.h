// named_variables.h: the variables other gauges and XML panels read and set,
// and the state of the SERVER gauge that publishes them.
//
// Three kinds of names: exported module variables (pointers into the values
// below, read by compiled gauges), local variables (read and written by any
// XML gauge), and the outside local variables the profile's [Lvars] rows name.
// Without a SERVER gauge on the panel nothing is registered and every write
// here does nothing.
#pragma once

#include <array>
#include <cstdint>

// [SECTION] Exported values
// The copies the exported module variables point at. Refreshed each tick
// while an active leg exists; without one they keep their last values.
struct ExportedVariables {
    uint32_t act_wpt_pos = 0;           // index of the active waypoint; 0 for none (999)
    double act_wpt_dist = 0;            // nm to the active waypoint
    uint32_t fpln_wpt_cnt = 0;          // last index of the active plan
    uint32_t xtk_err_dir = 0;           // cross-track side
    double xtk_err_dist = 0;            // nm of cross-track error
    double act_wpt_trk = 0;             // degrees magnetic, the leg's course
    double act_wpt_brg = 0;             // degrees magnetic, bearing to the active waypoint
    uint32_t lnav_mode = 0;             // 1: LNAV on
    uint32_t vnav_mode = 0;             // 1: VNAV on
    uint32_t active = 0;                // 1 from the first export on
    std::array<char, 8> act_wpt_id{'I', 'N', 'I', 'T'};  // never updated: outside gauges only see "INIT"
    uint32_t qw_ap_vert_mode = 0;       // for an outside autopilot panel; always 0
    uint32_t qw_ap_lat_mode = 0;        // for an outside autopilot panel; always 0
};

// [SECTION] SERVER state
constexpr int kBridgeSwitchCount = 3;   // DisplayInts, DisplayNavs, DisplayApts
constexpr int kBridgePointerCount = 2;  // Vor1BrgPtr, Vor2BrgPtr
constexpr int kBridgeNoMode = -1;       // the bridge has set no ND mode yet

struct ServerState {
    int registered = 0;                 // 1 between connect and disconnect: the once-only flag
    int bridge_mode = kBridgeNoMode;    // last bridge mode set, 0..6
    std::array<int, kBridgeSwitchCount> bridge_switch{};    // stored values: intersections, navaids, airports
    std::array<int, kBridgePointerCount> bridge_pointer{};  // stored values of the two bearing pointers
    int handler_depth = 0;              // key events being handled now (a handler's own events nest)
    double nav_lock_echo_tick = -1;     // TICK18 at which the module last sent its nav lock event
};

struct NamedVariableState {
    ExportedVariables exports;          // what the exported variables point at
    ServerState server;
};

extern NamedVariableState g_named;

// [SECTION] Operations
// At connect (once) and disconnect of the SERVER gauge.
void RegisterAllVariables();
void UnregisterAllVariables();
// SERVER's per-frame pump: requests in, the [Lvars] bridge, the heading out.
void NamedVariablePump();
// Each tick while an active leg exists: guidance values out to the variables.
void PublishGuidance();
// orb_lnav follows LNAV at each toggle.
void SetLnavVariable(int lnav_on);
// orb_vnav follows VNAV at each toggle.
void SetVnavVariable(int vnav_on);
// Writes a local variable of the ND controls (orb_nd_apt, orb_nd_nav,
// orb_nd_int, orb_nd_tcas) at each change of its switch.
void SetNdVariable(const char* name, double value);
// A local variable written while SERVER is connected (registered at need so
// that a gauge loaded later still finds it).
void WriteLocalVariable(const char* name, double value);
