// named_variables.h: the variables other gauges and XML panels read and set.
#pragma once

void RegisterAllVariables();
void UnregisterAllVariables();
// SERVER's per-frame pump: requests in, state out.
void NamedVariablePump();
