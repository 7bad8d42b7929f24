// sim_plans.h: plans across the boundary with the simulator's own planner.
// Its .PLN files (the older INI-like form and the XML form) are converted
// into the temporary route file that the route readers then load; the route
// active in its GPS is read from the GPS data block; and the newer simulator
// is handed the active plan as an XML plan file, so that its GPS and ATC
// follow the same route.
#pragma once

constexpr int kConvertFailed = -99;          // the conversion's failure result

// What the module keeps of the simulator's GPS block: its address, fetched once.
struct SimPlanExchange {
    const void* gps_block = nullptr;         // the "FS2002 GPS DATA" block; null when the simulator has none
    bool gps_fetched = false;                // the block was asked for
};

extern SimPlanExchange g_sim_plans;

// Converts `name` of the flight plan folder into "temp.rte" there; -99 when
// it can't be read ("Unable to load FP" goes to the entry line).
int ConvertPlanFile(const char* name);
// The simulator GPS's route into ModPlan, executed; show_page 7 shows no
// message.
void ImportSimulatorGpsRoute(int show_page);
// Types for rows that came with an ident and a position only.
void ClassifyImportedRows();
// Writes ActivePlan, from the leg being flown on, as the XML plan
// "\Orb\Navdata\tmpfplan.pln" (PlanState above 2 only). 1 when written.
int WriteSimulatorPlan();
// Hands ActivePlan to the simulator's planner through SimConnect, when
// every commit of the plan is to reach the simulator's GPS.
void SendPlanToSimulator();
