// named_variables.cpp: the local variables the module writes for XML panels.
// The registering, the pump and the exports live with the SERVER gauge
// (server_gauge.cpp), which alone sees the whole engine.
#include "frame/named_variables.h"

#include "frame/sim_access.h"

NamedVariableState g_named;

void WriteLocalVariable(const char* name, double value) {
    if (g_named.server.registered == 0 || name == nullptr) return;
    ID id = RegisterNamedVariable(name);
    if (id >= 0) SetNamedVariableValue(id, value);
}

void SetLnavVariable(int lnav_on) { WriteLocalVariable("orb_lnav", lnav_on != 0 ? 1 : 0); }
void SetVnavVariable(int vnav_on) { WriteLocalVariable("orb_vnav", vnav_on != 0 ? 1 : 0); }
void SetNdVariable(const char* name, double value) { WriteLocalVariable(name, value); }
