// panel_table.cpp: the host side of every panel call the module makes.
//
// Index:
//   [SECTION] Slot names and the missing-slot stand-ins
//   [SECTION] Windows and element lists
//   [SECTION] Tokens, module variables and calculator strings
//   [SECTION] Named variables and gauge flags
//   [SECTION] Key events
//   [SECTION] The table
#include "panel_table.h"

#include "sim_values.h"

#include <gps_data_block.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

namespace orbsim {

// [SECTION] Slot names and the missing-slot stand-ins
namespace {
constexpr const char* kSlotNames[kPanelSlotCount] = {
    "reserved 0", "reserved 1", "reserved 2", "reserved 3", "reserved 4",
    "is_panel_window_visible_ident", "tooltip_units_getset",
    "reserved 7", "reserved 8", "reserved 9", "reserved 10", "reserved 11", "reserved 12", "reserved 13",
    "reserved 14", "reserved 15", "reserved 16", "reserved 17",
    "element_list_query", "element_list_install", "element_list_initialize", "element_list_update",
    "element_list_generate", "element_list_plot", "element_list_erase", "element_list_kill",
    "mouse_list_install", "mouse_list_register", "mouse_list_unregister", "panel_window_toggle",
    "trigger_key_event", "register_var_by_name", "initialize_var", "initialize_var_by_name", "lookup_var",
    "unregister_var_by_name", "unregister_all_named_vars", "reserved 37", "reserved 38",
    "panel_window_close_ident", "panel_window_open_ident", "panel_window_toggle_hud_color",
    "panel_window_toggle_hud_units", "radio_stack_popup", "radio_stack_autoclose", "check_named_variable",
    "register_named_variable", "get_named_variable_value", "get_named_variable_typed_value",
    "set_named_variable_value", "set_named_variable_typed_value", "reserved 51", "reserved 52",
    "get_name_of_named_variable", "reserved 54", "panel_resource_string_get", "panel_window_toggle_menu_id",
    "reserved 57", "reserved 58", "element_use_color", "set_gauge_flags", "get_gauge_flags",
    "gauge_calculator_code_precompile", "execute_calculator_code", "format_calculator_string", "reserved 65",
    "reserved 66", "get_units_enum", "get_aircraft_var_enum", "aircraft_varget", "register_c_callback",
    "get_gauge_c_callback", "unregister_c_callback", "send_key_event", "register_key_event_handler",
    "unregister_key_event_handler", "reserved 76", "reserved 77", "process_shared_event_out", "is_master",
};

void SlotMissing(int slot) {
    HostState& host = g_host;
    ++host.missing_slot_calls;
    if (slot < 0 || slot >= kPanelSlotCount || host.slot_warned[slot]) return;
    host.slot_warned[slot] = true;
    std::fprintf(stderr, "orbsim: the module called panel slot %d (%s), which orbsim does not implement; it answers 0\n",
                 slot, kSlotNames[slot]);
}

// Integer-returning stand-in; the arguments the module passes are ignored.
template <int Slot>
intptr_t FSAPI MissingSlot() {
    SlotMissing(Slot);
    return 0;
}

template <int... S>
constexpr std::array<void*, kPanelSlotCount> MakeMissing(std::integer_sequence<int, S...>) {
    return {reinterpret_cast<void*>(&MissingSlot<S>)...};
}
const std::array<void*, kPanelSlotCount> kMissing = MakeMissing(std::make_integer_sequence<int, kPanelSlotCount>{});

std::string SafeName(PCSTRINGZ name) {
    if (name == nullptr) return {};
    return std::string(name, strnlen(name, 256));
}

// [SECTION] Windows and element lists
BOOL_SDK FSAPI IsPanelWindowVisibleIdent(UINT32 ident) {
    return WindowVisible(g_host.gauges, static_cast<int>(ident)) ? 1 : 0;
}
BOOL_SDK FSAPI PanelWindowToggle(UINT32 ident) { return ToggleWindow(g_host.gauges, static_cast<int>(ident)) ? 1 : 0; }
BOOL_SDK FSAPI PanelWindowCloseIdent(UINT32 ident) {
    return SetWindowVisible(g_host.gauges, static_cast<int>(ident), false) ? 1 : 0;
}
BOOL_SDK FSAPI PanelWindowOpenIdent(UINT32 ident) {
    return SetWindowVisible(g_host.gauges, static_cast<int>(ident), true) ? 1 : 0;
}

// The module's routines hand the simulator the element list of the first gauge
// of its linkage; the simulator itself installs, plots and kills the instances'
// copies around the services, so these calls only have to be safe.
void FSAPI ElementListQuery(ELEMENT_HEADER*) {}
void FSAPI ElementListInstall(ELEMENT_HEADER*, PVOID) {}
void FSAPI ElementListInitialize(ELEMENT_HEADER*) {}
void FSAPI ElementListUpdate(ELEMENT_HEADER*) {}
void FSAPI ElementListGenerate(ELEMENT_HEADER*, GENERATE_PHASE) {}
void FSAPI ElementListPlot(ELEMENT_HEADER*) {}
void FSAPI ElementListErase(ELEMENT_HEADER*) {}
void FSAPI ElementListKill(ELEMENT_HEADER*) {}

// [SECTION] Tokens, module variables and calculator strings
void FSAPI LookupVar(MODULE_VAR* var) {
    if (var == nullptr) return;
    HostState& host = g_host;
    int token = var->id;
    if (token >= 0 && token < kTokenTableSize) ++host.token_reads[static_cast<size_t>(token)];
    else ++host.token_reads_other;
    var->var_old = var->var_value;
    var->var_type = TYPE_FLOAT64;
    var->var_value.n = TokenValue(host, token);
}

void FSAPI RegisterVarByName(PVOID pointer, VAR_TYPE type, PSTRINGZ name) {
    HostState& host = g_host;
    std::string n = SafeName(name);
    if (n.empty()) return;
    for (ModuleVariable& v : host.module_vars)
        if (v.name == n) {
            v.pointer = pointer;
            v.type = type;
            return;
        }
    if (static_cast<int>(host.module_vars.size()) < kMaxModuleVariables) host.module_vars.push_back({n, pointer, type});
}

void FSAPI InitializeVarByName(MODULE_VAR* var, PSTRINGZ name) {
    if (var == nullptr) return;
    std::string n = SafeName(name);
    var->var_ptr = nullptr;
    var->var_type = VAR_TYPE_NONE;
    if (n == kGpsDataBlockName) {  // the simulator's GPS block, always there
        var->var_ptr = g_host.gps.bytes.data();
        var->var_value.p = var->var_ptr;
        return;
    }
    for (const ModuleVariable& v : g_host.module_vars)
        if (v.name == n) {
            var->var_ptr = v.pointer;
            var->var_type = v.type;
            var->var_value.p = v.pointer;
            return;
        }
}

void FSAPI UnregisterVarByName(PSTRINGZ name) {
    std::string n = SafeName(name);
    auto& vars = g_host.module_vars;
    for (size_t i = 0; i < vars.size(); ++i)
        if (vars[i].name == n) {
            vars.erase(vars.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
}

void FSAPI UnregisterAllNamedVars() { g_host.module_vars.clear(); }

BOOL_SDK FSAPI ExecuteCalculatorCode(PCSTRINGZ code, FLOAT64* f, SINT32* i, PCSTRINGZ* s) {
    HostState& host = g_host;
    ++host.calculator_calls;
    std::string text = SafeName(code);
    CalculatorAnswer answer = EvaluateCalculator(host, text);
    if (!answer.ok) {
        if (host.unknown_calculator.size() < 256 && host.unknown_calculator.insert(text).second)
            std::fprintf(stderr, "orbsim: calculator string \"%s\" is not one orbsim knows; it answers 0\n", text.c_str());
        if (f) *f = 0;
        if (i) *i = 0;
        if (s) *s = nullptr;
        return 0;
    }
    // The text answer lives until the next call, as the simulator's does.
    static std::string text_answer;
    text_answer = answer.is_text ? answer.text : std::string();
    if (f) *f = answer.number;
    if (i) *i = std::isfinite(answer.number) ? static_cast<SINT32>(answer.number) : 0;
    if (s) *s = answer.is_text ? text_answer.c_str() : nullptr;
    return 1;
}

FLOAT64 FSAPI AircraftVarget(ENUM, ENUM, SINT32) {
    SlotMissing(static_cast<int>(PanelSlot::aircraft_varget));
    return 0;
}

// [SECTION] Named variables and gauge flags
ID FSAPI CheckNamedVariable(PCSTRINGZ name) { return FindNamedVariable(g_host, SafeName(name)); }
ID FSAPI RegisterNamedVariableSlot(PCSTRINGZ name) { return RegisterNamedVariable(g_host, SafeName(name)); }

FLOAT64 FSAPI GetNamedVariableValue(ID id) {
    const auto& named = g_host.named;
    return id >= 0 && static_cast<size_t>(id) < named.size() ? named[static_cast<size_t>(id)].value : 0;
}
FLOAT64 FSAPI GetNamedVariableTypedValue(ID id, ENUM) { return GetNamedVariableValue(id); }

void FSAPI SetNamedVariableValue(ID id, FLOAT64 value) {
    auto& named = g_host.named;
    if (id >= 0 && static_cast<size_t>(id) < named.size()) named[static_cast<size_t>(id)].value = value;
}
void FSAPI SetNamedVariableTypedValue(ID id, FLOAT64 value, ENUM) { SetNamedVariableValue(id, value); }

PCSTRINGZ FSAPI GetNameOfNamedVariable(ID id) {
    const auto& named = g_host.named;
    return id >= 0 && static_cast<size_t>(id) < named.size() ? named[static_cast<size_t>(id)].name.c_str() : nullptr;
}

void FSAPI SetGaugeFlags(PCSTRINGZ name, FLAGS32 flags) {
    std::string n = SafeName(name);
    if (!n.empty() && g_host.gauge_flags.size() < 1024) g_host.gauge_flags[n] = flags;
}
FLAGS32 FSAPI GetGaugeFlags(PCSTRINGZ name) {
    auto found = g_host.gauge_flags.find(SafeName(name));
    return found == g_host.gauge_flags.end() ? 0 : found->second;
}

// [SECTION] Key events
ERR FSAPI TriggerKeyEvent(ID32 event, UINT32 value) {
    DeliverKeyEvent(g_host, event, value, true);
    return 0;
}
void FSAPI SendKeyEvent(ID32 event, UINT32 value) { DeliverKeyEvent(g_host, event, value, true); }

void FSAPI RegisterKeyEventHandler(KEY_EVENT_HANDLER handler, PVOID userdata) {
    auto& handlers = g_host.key_handlers;
    if (handler == nullptr) return;
    for (const KeyHandler& h : handlers)
        if (h.handler == handler && h.userdata == userdata) return;
    if (static_cast<int>(handlers.size()) < kMaxKeyHandlers) handlers.push_back({handler, userdata});
}

void FSAPI UnregisterKeyEventHandler(KEY_EVENT_HANDLER handler, PVOID userdata) {
    auto& handlers = g_host.key_handlers;
    for (size_t i = 0; i < handlers.size(); ++i)
        if (handlers[i].handler == handler && handlers[i].userdata == userdata) {
            handlers.erase(handlers.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
}
}  // namespace

const char* PanelSlotName(int slot) { return slot >= 0 && slot < kPanelSlotCount ? kSlotNames[slot] : "?"; }

void DeliverKeyEvent(HostState& host, uint32_t event, uint32_t value, bool from_module) {
    host.key_events.Add({host.aircraft.sim_time, event, value, from_module});
    ApplyKeyEvent(host.aircraft, event, value);
    // Handlers may send events of their own; a loop of them stops here.
    if (host.key_event_depth >= kMaxKeyEventDepth) return;
    ++host.key_event_depth;
    std::vector<KeyHandler> handlers = host.key_handlers;  // a handler may unregister itself
    for (const KeyHandler& h : handlers) h.handler(event, value, h.userdata);
    --host.key_event_depth;
}

// [SECTION] The table
void BuildPanelTable(HostState& host) {
    PANELS& p = host.panels;
    p = {};
    p.header[5] = host.generation == 10 ? kGenerationFsx : kGenerationFs2004;
    for (int slot = 0; slot < kPanelSlotCount; ++slot) p.slots[slot] = kMissing[static_cast<size_t>(slot)];
    auto put = [&](PanelSlot slot, auto fn) { p.slots[static_cast<int>(slot)] = reinterpret_cast<void*>(fn); };
    put(PanelSlot::is_panel_window_visible_ident, &IsPanelWindowVisibleIdent);
    put(PanelSlot::element_list_query, &ElementListQuery);
    put(PanelSlot::element_list_install, &ElementListInstall);
    put(PanelSlot::element_list_initialize, &ElementListInitialize);
    put(PanelSlot::element_list_update, &ElementListUpdate);
    put(PanelSlot::element_list_generate, &ElementListGenerate);
    put(PanelSlot::element_list_plot, &ElementListPlot);
    put(PanelSlot::element_list_erase, &ElementListErase);
    put(PanelSlot::element_list_kill, &ElementListKill);
    put(PanelSlot::panel_window_toggle, &PanelWindowToggle);
    put(PanelSlot::trigger_key_event, &TriggerKeyEvent);
    put(PanelSlot::register_var_by_name, &RegisterVarByName);
    put(PanelSlot::initialize_var, &LookupVar);  // a first read, as the simulator does
    put(PanelSlot::initialize_var_by_name, &InitializeVarByName);
    put(PanelSlot::lookup_var, &LookupVar);
    put(PanelSlot::unregister_var_by_name, &UnregisterVarByName);
    put(PanelSlot::unregister_all_named_vars, &UnregisterAllNamedVars);
    put(PanelSlot::panel_window_close_ident, &PanelWindowCloseIdent);
    put(PanelSlot::panel_window_open_ident, &PanelWindowOpenIdent);
    put(PanelSlot::check_named_variable, &CheckNamedVariable);
    put(PanelSlot::register_named_variable, &RegisterNamedVariableSlot);
    put(PanelSlot::get_named_variable_value, &GetNamedVariableValue);
    put(PanelSlot::get_named_variable_typed_value, &GetNamedVariableTypedValue);
    put(PanelSlot::set_named_variable_value, &SetNamedVariableValue);
    put(PanelSlot::set_named_variable_typed_value, &SetNamedVariableTypedValue);
    put(PanelSlot::get_name_of_named_variable, &GetNameOfNamedVariable);
    put(PanelSlot::set_gauge_flags, &SetGaugeFlags);
    put(PanelSlot::get_gauge_flags, &GetGaugeFlags);
    put(PanelSlot::execute_calculator_code, &ExecuteCalculatorCode);
    put(PanelSlot::aircraft_varget, &AircraftVarget);
    put(PanelSlot::send_key_event, &SendKeyEvent);
    put(PanelSlot::register_key_event_handler, &RegisterKeyEventHandler);
    put(PanelSlot::unregister_key_event_handler, &UnregisterKeyEventHandler);
    // The older generation's table ends before the newer slots.
    if (host.generation != 10)
        for (int slot = kFirstNewerGenerationSlot; slot < kPanelSlotCount; ++slot) p.slots[slot] = nullptr;
}

}  // namespace orbsim
