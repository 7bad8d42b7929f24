// performance.h: distances along the plan and predictions.
#pragma once

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
