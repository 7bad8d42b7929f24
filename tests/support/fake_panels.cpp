// fake_panels.cpp: the fake simulator's panel functions.
#include "support/fake_panels.h"

#include "frame/sim_access.h"

#include <cstring>

namespace {
FakeSimulator* g_fake = nullptr;

void FSAPI FakeLookupVar(MODULE_VAR* var) {
    if (var == nullptr || g_fake == nullptr) return;
    ++g_fake->token_reads[var->id];
    auto it = g_fake->tokens.find(var->id);
    var->var_value.n = it == g_fake->tokens.end() ? 0.0 : it->second;
}

BOOL_SDK FSAPI FakeExecuteCalculator(PCSTRINGZ code, FLOAT64* f, SINT32* i, PCSTRINGZ* s) {
    if (g_fake == nullptr || code == nullptr) return 0;
    if (s != nullptr) {
        auto it = g_fake->calculator_text.find(code);
        if (it == g_fake->calculator_text.end()) return 0;
        *s = it->second.c_str();
        return 1;
    }
    auto it = g_fake->calculator.find(code);
    double value = it == g_fake->calculator.end() ? 0.0 : it->second;
    if (f != nullptr) *f = value;
    if (i != nullptr) *i = static_cast<SINT32>(value);
    return 1;
}

ERR FSAPI FakeTriggerKeyEvent(ID32 event, UINT32 value) {
    if (g_fake) g_fake->key_events.emplace_back(event, value);
    return 0;
}

BOOL_SDK FSAPI FakeWindowVisible(UINT32 ident) {
    if (g_fake == nullptr) return 0;
    auto it = g_fake->window_visible.find(ident);
    return it != g_fake->window_visible.end() && it->second;
}

BOOL_SDK FSAPI FakeWindowToggle(UINT32 ident) {
    if (g_fake == nullptr) return 0;
    g_fake->window_toggles.push_back(ident);
    g_fake->window_visible[ident] = !g_fake->window_visible[ident];
    return 1;
}

ID FSAPI FakeCheckNamed(PCSTRINGZ name) {
    if (g_fake == nullptr || name == nullptr) return -1;
    auto it = g_fake->named_ids.find(name);
    return it == g_fake->named_ids.end() ? -1 : it->second;
}

ID FSAPI FakeRegisterNamed(PCSTRINGZ name) {
    if (g_fake == nullptr || name == nullptr) return -1;
    auto it = g_fake->named_ids.find(name);
    if (it != g_fake->named_ids.end()) return it->second;
    int id = static_cast<int>(g_fake->named_ids.size());
    g_fake->named_ids[name] = id;
    return id;
}

FLOAT64 FSAPI FakeGetNamed(ID id) { return g_fake ? g_fake->named_values[id] : 0; }
void FSAPI FakeSetNamed(ID id, FLOAT64 value) {
    if (g_fake) g_fake->named_values[id] = value;
}
void FSAPI FakeUnregisterVar(PSTRINGZ name) {
    if (g_fake && name) g_fake->unregistered.emplace_back(name);
}

template <typename Fn>
void Put(PANELS& table, PanelSlot slot, Fn fn) {
    table.slots[static_cast<int>(slot)] = reinterpret_cast<void*>(fn);
}
}  // namespace

FakeSimulator& CurrentFakeSimulator() { return *g_fake; }

FakeSimulatorScope::FakeSimulatorScope() : sim(*new FakeSimulator) {
    g_fake = &sim;
    PANELS& t = sim.table;
    t.header[5] = 0x0A00;
    Put(t, PanelSlot::lookup_var, &FakeLookupVar);
    Put(t, PanelSlot::execute_calculator_code, &FakeExecuteCalculator);
    Put(t, PanelSlot::trigger_key_event, &FakeTriggerKeyEvent);
    Put(t, PanelSlot::is_panel_window_visible_ident, &FakeWindowVisible);
    Put(t, PanelSlot::panel_window_toggle, &FakeWindowToggle);
    Put(t, PanelSlot::check_named_variable, &FakeCheckNamed);
    Put(t, PanelSlot::register_named_variable, &FakeRegisterNamed);
    Put(t, PanelSlot::get_named_variable_value, &FakeGetNamed);
    Put(t, PanelSlot::set_named_variable_value, &FakeSetNamed);
    Put(t, PanelSlot::unregister_var_by_name, &FakeUnregisterVar);
    ImportTable.PANELSentry.fnptr = &sim.table;
}

FakeSimulatorScope::~FakeSimulatorScope() {
    ImportTable.PANELSentry.fnptr = nullptr;
    g_fake = nullptr;
    delete &sim;
}
