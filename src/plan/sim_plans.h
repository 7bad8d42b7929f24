// sim_plans.h: plans of the simulator's own planner (.PLN). Their reading is
// still to come: until then every conversion fails, and a load of a .PLN
// leaves the plan alone.
#pragma once

constexpr int kConvertFailed = -99;          // the conversion's failure result

// Converts `name` of the flight plan folder into "temp.rte" there; -99 when
// it can't be read.
int ConvertPlanFile(const char* name);
// Hands ActivePlan to the simulator's planner through SimConnect, when
// every commit of the plan is to reach the simulator's GPS.
void SendPlanToSimulator();
