// sim_plans.cpp: .PLN conversion is still to come; every conversion fails.
#include "plan/sim_plans.h"

int ConvertPlanFile(const char*) { return kConvertFailed; }
