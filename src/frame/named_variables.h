// named_variables.h: the variables other gauges and XML panels read and set.
#pragma once

void RegisterAllVariables();
void UnregisterAllVariables();
// SERVER's per-frame pump: requests in, state out.
void NamedVariablePump();
// Writes a local variable of the ND controls (orb_nd_apt, orb_nd_nav,
// orb_nd_int, orb_nd_tcas) at each change of its switch.
void SetNdVariable(const char* name, double value);
