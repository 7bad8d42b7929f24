// performance.h: distances along the plan and predictions.
#pragma once

// Cruise altitude, T/C and T/D, each waypoint's predicted altitude and
// speed. cruise_altitude 0: choose one; per_waypoint other than 1 stops
// before the per-waypoint passes.
void PredictProfile(int cruise_altitude, int per_waypoint);
// The per-tick distance pass (along-route sums, predictions).
void PlanDistances();
// nm along the plan from the aircraft to the destination; negative without a plan.
double RouteDistanceToDestination();
// nm direct from the aircraft to the last row; negative without a plan.
double DirectDistanceToDestination();
// The direct distance to the destination as the predictions keep it: refreshed
// from cruise on, 0 until then.
double KeptDirectDistanceToDestination();
// Fuel on board as kept (the lowest value so far; plan loads raise it), pounds.
double FuelOnBoardKept();
