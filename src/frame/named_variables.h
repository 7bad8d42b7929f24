// named_variables.h: the variables other gauges and XML panels read and set.
#pragma once

void RegisterAllVariables();
void UnregisterAllVariables();
// SERVER's per-frame pump: requests in, state out.
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
