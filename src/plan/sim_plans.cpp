// sim_plans.cpp: .PLN conversion and the plan handed to the simulator are
// still to come; every conversion fails and nothing is sent.
#include "plan/sim_plans.h"

int ConvertPlanFile(const char*) { return kConvertFailed; }
void SendPlanToSimulator() {}
