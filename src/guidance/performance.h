// performance.h: distances along the plan, predictions, and the values the
// performance pages hold for them.
#pragma once

// The cruise temperature pair of the performance page. Entering one works
// out the other for the cruise altitude in whole thousands of feet k:
// CruiseOat = IsaDeviation + 15 - k x 1.98. The Mach conversions take CruiseOat.
constexpr double kCruiseOatStart = -30;       // degrees Celsius until entered
constexpr double kIsaDeviationStart = 30;     // degrees Celsius until entered
constexpr double kCruiseOatNotSet = -999;     // shows as not set

struct PerformanceState {
    double CruiseOat = kCruiseOatStart;       // degrees Celsius at the cruise altitude
    double IsaDeviation = kIsaDeviationStart; // degrees Celsius above standard there
    double kept_direct_to_destination = 0;    // nm, refreshed from cruise on
    double fuel_kept = -1;                    // pounds, the lowest fuel on board seen; -1 read afresh
};

extern PerformanceState g_performance;

// The pilot's entries of the pair, worked out against PlanContext's cruise altitude.
void EnterCruiseOat(double cruise_oat);
void EnterIsaDeviation(double isa_deviation);

// Cruise altitude, T/C and T/D, each waypoint's predicted altitude and
// speed. cruise_altitude 0: choose one; per_waypoint other than 1 stops
// before the per-waypoint passes.
void PredictProfile(int cruise_altitude, int per_waypoint);
// The per-tick distance pass (along-route sums, predictions).
void PlanDistances();
// nm along the plan from the aircraft to the destination, given the distance
// to the active waypoint (LNAV's); negative without a plan.
double RouteDistanceToDestination(double distance_to_active);
// nm direct from the aircraft to the last row; negative without a plan.
double DirectDistanceToDestination();
// The direct distance to the destination as the predictions keep it: refreshed
// from cruise on, 0 until then.
double KeptDirectDistanceToDestination();
// Fuel on board as kept (the lowest value so far; plan loads raise it), pounds.
double FuelOnBoardKept();
// A new route on the ground: the fuel the predictions start from is the
// aircraft's ramp fuel again, read afresh from its tanks.
void ReapplyRampFuel();
// The climb, cruise and descent speeds go back to the aircraft's defaults:
// the speeds its profile gave when it was read.
void LoadDefaultSpeeds();
