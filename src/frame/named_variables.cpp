// named_variables.cpp: the published variables come later; nothing is registered yet.
#include "frame/named_variables.h"

void RegisterAllVariables() {}
void UnregisterAllVariables() {}
void NamedVariablePump() {}
void PublishGuidance() {}
void SetLnavVariable(int) {}
void SetVnavVariable(int) {}
void SetNdVariable(const char*, double) {}
