// host_state.h: everything the simulator stand-in holds while it runs.
//
// The module calls the host through plain function pointers that carry no
// context, so the host's state is one process-wide struct, as the simulator's
// own is. Tests reset it by assigning a fresh value.
#pragma once

#include "aircraft_model.h"
#include "fsuipc_server.h"
#include "gps_block.h"
#include "gauge_store.h"
#include "key_event_log.h"
#include "keyboard.h"
#include "traffic_source.h"
#include "xml_gauge.h"

#include <panel_sdk.h>

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace orbsim {

constexpr int kTokenTableSize = 0x400;        // token numbers in use are below this
constexpr int kMaxNamedVariables = 4096;      // local variables of one flight
constexpr int kMaxModuleVariables = 512;      // exported module variables
constexpr int kMaxKeyHandlers = 64;
constexpr int kMaxKeyEventDepth = 8;          // handlers that send events: nesting limit
constexpr uint32_t kGenerationFsx = 0x0A00;   // header word 5 of the FSX-generation table
constexpr uint32_t kGenerationFs2004 = 0x0900;

struct NamedVariable {
    std::string name;
    double value = 0;
};

struct ModuleVariable {
    std::string name;
    void* pointer = nullptr;                  // what the exporter registered
    VAR_TYPE type = VAR_TYPE_NONE;
};

struct KeyHandler {
    KEY_EVENT_HANDLER handler = nullptr;
    void* userdata = nullptr;
};

struct SimConnectState {
    bool enabled = true;                      // false: the open fails, as without the simulator's library
    int opens = 0, closes = 0;
    bool open = false;
    std::string client_name;
    std::vector<std::string> plans;           // paths handed to the plan load, in order
    std::vector<bool> plan_existed;           // whether each file was there when handed over
    std::vector<std::string> plan_texts;      // each handed file's text at the moment (the last kMaxHandedPlans)
};

struct HostState {
    AircraftModel aircraft = DefaultAircraft();
    int generation = 10;                      // 10 FSX, 9 FS2004: table version, rate scale
    FsuipcServer fsuipc;
    SimConnectState simconnect;
    GaugeStore gauges;
    TrafficSource traffic;                    // the outside traffic gauge orbsim plays
    GpsDataBlock gps;                         // the simulator GPS's route, as its data block
    std::vector<XmlGauge> xml_gauges;         // the panel's XML gauges, played beside the module's
    PcKeyboard keyboard;                      // the PC keyboard and the module's hook on it
    // Module
    void* module = nullptr;                   // dlopen handle
    MODULE_LINKAGE* linkage = nullptr;
    IMPORT_TABLE* import_table = nullptr;
    std::string module_path;
    bool module_initialised = false;
    PANELS panels{};                          // the function table handed to the module
    // What the module read and sent
    std::array<uint64_t, kTokenTableSize> token_reads{};
    uint64_t token_reads_other = 0;           // tokens above the table
    std::map<int, double> token_overrides;    // raw values the script set for tokens the model lacks
    KeyEventLog key_events;                   // module and script: the latest in order, counts of all
    int key_event_depth = 0;
    std::vector<NamedVariable> named;         // id = index
    std::vector<ModuleVariable> module_vars;
    std::vector<KeyHandler> key_handlers;
    std::map<std::string, uint32_t> gauge_flags;
    std::array<bool, kPanelSlotCount> slot_warned{};
    uint64_t missing_slot_calls = 0;          // calls of slots orbsim does not implement
    std::set<std::string> unknown_calculator; // strings already warned about
    uint64_t calculator_calls = 0;
    // Frames and time
    int fps = 30;
    double panel_time = 0;                    // seconds of the pilot's time (frames at fps)
};

extern HostState g_host;

// TICK18 at the present simulated time: 18 a second.
double Tick18(const HostState& host);

}  // namespace orbsim
