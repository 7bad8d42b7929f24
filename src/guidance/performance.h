// performance.h: the plan's vertical shape and numbers: the cruise altitude,
// T/C and T/D, each waypoint's predicted altitude and speed, and the
// distances to go. The predictions come later; the plan's execution already
// calls them in their order.
#pragma once

// cruise_altitude 0: choose one. per_waypoint other than 1 stops before the
// per-waypoint passes.
void PredictProfile(int cruise_altitude, int per_waypoint);
// Distances along the plan from the present position.
void PlanDistances();
