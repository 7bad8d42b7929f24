// server_pump_bench.cpp: the cost of the SERVER gauge's update, which runs
// every frame: the thirteen click requests looked up and read, and the
// profile's [Lvars] rows walked, each a name lookup and a read, here with 0,
// 40 and the table's full 400 rows. The simulator's named variables are
// played by a small table that looks names up as the simulator would, by
// comparing them.
#include "frame/aircraft_profile.h"
#include "frame/named_variables.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {
struct Named {
    std::string name;                   // the local variable's name
    double value = 0;                   // its value
};
std::vector<Named> g_named_table;  // the simulator's side, for this benchmark only

ID FSAPI Register(PCSTRINGZ name) {
    for (size_t i = 0; i < g_named_table.size(); ++i)
        if (g_named_table[i].name == name) return static_cast<ID>(i);
    g_named_table.push_back({name, 0});
    return static_cast<ID>(g_named_table.size() - 1);
}
ID FSAPI Check(PCSTRINGZ name) {
    for (size_t i = 0; i < g_named_table.size(); ++i)
        if (g_named_table[i].name == name) return static_cast<ID>(i);
    return -1;
}
FLOAT64 FSAPI Get(ID id) { return g_named_table[static_cast<size_t>(id)].value; }
void FSAPI Set(ID id, FLOAT64 value) { g_named_table[static_cast<size_t>(id)].value = value; }
void FSAPI RegisterVar(PVOID, VAR_TYPE, PSTRINGZ) {}
void FSAPI KeyHandler(KEY_EVENT_HANDLER, PVOID) {}

PANELS g_table{};

void Install(int rows) {
    auto put = [](PanelSlot slot, auto fn) { g_table.slots[static_cast<int>(slot)] = reinterpret_cast<void*>(fn); };
    put(PanelSlot::register_named_variable, &Register);
    put(PanelSlot::check_named_variable, &Check);
    put(PanelSlot::get_named_variable_value, &Get);
    put(PanelSlot::set_named_variable_value, &Set);
    put(PanelSlot::register_var_by_name, &RegisterVar);
    put(PanelSlot::register_key_event_handler, &KeyHandler);
    g_table.header[5] = 0x0A00;
    ImportTable.PANELSentry.fnptr = &g_table;
    g_named_table.clear();
    g_named = NamedVariableState{};
    g_lvars = LvarTable{};
    // Rows that never match their values, as most of a real panel's rows at a time.
    for (int r = 0; r < rows; ++r) {
        char line[96];
        std::snprintf(line, sizeof line, "Aircraft Panel Switch %03d=%d,MapRange=40", r, 1 + r % 6);
        ReadLvarLine(line);
    }
    RegisterAllVariables();
}

void BM_ServerPump(benchmark::State& state) {
    Install(static_cast<int>(state.range(0)));
    g_tick.phase = 3;
    for (auto _ : state) NamedVariablePump();
    state.counters["lvar_rows"] = static_cast<double>(g_lvars.count);
    UnregisterAllVariables();
    ImportTable.PANELSentry.fnptr = nullptr;
}
BENCHMARK(BM_ServerPump)->Arg(0)->Arg(40)->Arg(400)->Unit(benchmark::kMicrosecond);
}  // namespace
