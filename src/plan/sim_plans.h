// sim_plans.h: plans across the boundary with the simulator's own planner.
// The newer simulator is handed the active plan as an XML plan file, so that
// its GPS and ATC follow the same route. Reading its .PLN files is still to
// come: until then every conversion fails, and a load of a .PLN leaves the
// plan alone.
#pragma once

constexpr int kConvertFailed = -99;          // the conversion's failure result

// Converts `name` of the flight plan folder into "temp.rte" there; -99 when
// it can't be read.
int ConvertPlanFile(const char* name);
// Writes ActivePlan, from the leg being flown on, as the XML plan
// "\Orb\Navdata\tmpfplan.pln" (PlanState above 2 only). 1 when written.
int WriteSimulatorPlan();
// Hands ActivePlan to the simulator's planner through SimConnect, when
// every commit of the plan is to reach the simulator's GPS.
void SendPlanToSimulator();
