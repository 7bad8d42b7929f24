// performance.h: the plan's vertical shape and its numbers. The optional
// performance file and the tables read from it; PredictProfile, which fixes
// the cruise altitude, T/C and T/D and fills each waypoint's predicted
// altitude and speed; PlanDistances, which on every tick turns the present
// position into distances to go; times and fuel for the pages; and the
// values the performance pages hold for them.
//
// Predictions use still air: no wind enters them. Wind reaches the pages
// only through the ground speed used for times.
//
// Index:
//   [SECTION] Performance tables
//   [SECTION] Distances along the plan
//   [SECTION] Values of the performance pages
//   [SECTION] Interfaces
//   [SECTION] Times and fuel for the pages
#pragma once

#include <array>
#include <cstddef>

// [SECTION] Performance tables
constexpr int kPerformanceRowLimit = 49;      // rows 1..49 of each table; the storage holds 50
constexpr int kPerformanceRowStorage = kPerformanceRowLimit + 1;
constexpr int kClimbFlowColumns = 8;          // fuel flows of a climb row
constexpr int kCruiseFlowColumns = 26;        // fuel flows of a cruise row
constexpr int kCruiseWeightLimit = 8;         // weights of the GRWT line
constexpr int kPerformanceLineLimit = 1500;   // characters of a line of the file
constexpr int kPerformanceTokenLimit = 28;    // tokens of a line

struct ClimbPerformanceRow {
    double Altitude = 0;                      // feet
    double Tas = 0;                           // knots
    double Rate = 0;                          // ft/min
    std::array<double, kClimbFlowColumns> FuelFlow{};  // pounds an hour, by weight column
};

struct CruisePerformanceRow {
    double Altitude = 0;                      // feet
    double Tas = 0;                           // knots
    std::array<double, kCruiseFlowColumns> FuelFlow{};  // pounds an hour, by weight column
    int FuelFlowCount = 0;                    // flows the row has
};

struct DescentPerformanceRow {
    double Altitude = 0;                      // feet
    double Tas = 0;                           // knots
    double Rate = 0;                          // ft/min
    double FuelFlow = 0;                      // pounds an hour
};

struct AltitudeLimitRow {
    double Altitude = 0;                      // feet
    double Second = 0;                        // read and kept; nothing uses it
};

struct PerformanceTable {
    std::array<ClimbPerformanceRow, kPerformanceRowStorage> Climb{};      // rows 1..ClimbCount
    std::array<CruisePerformanceRow, kPerformanceRowStorage> Cruise{};    // rows 1..CruiseCount
    std::array<DescentPerformanceRow, kPerformanceRowStorage> Descent{};  // rows 1..DescentCount
    std::array<AltitudeLimitRow, kPerformanceRowStorage> AltitudeLimit{}; // rows 1..AltitudeLimitCount
    int ClimbCount = 0;
    int CruiseCount = 0;
    int DescentCount = 0;
    int AltitudeLimitCount = 0;
    std::array<double, kCruiseWeightLimit> CruiseWeights{};  // pounds, the GRWT line's columns
    int CruiseWeightCount = 0;
};

extern PerformanceTable g_performance_table;

// [SECTION] Distances along the plan
// What PlanDistances and PredictProfile leave for the pages and VNAV. The
// target distances VNAV flies by (TargetDistance, PathToTarget,
// DistToTargetRow) live in VnavState.
struct PlanDistanceState {
    double DistToGo = 0;                      // nm along the route from the aircraft to the last row
    double DirectDistToDest = 0;              // nm straight to the last row; kept from cruise on
    double BearingToDest = 0;                 // degrees true, straight to the last row
    double TdFromDest = 0;                    // nm along the route from T/D to the last row
    double DistSinceTd = 0;                   // nm along the route from T/D to the aircraft
    double DistToTc = 0;                      // nm along the route from the aircraft to T/C (before cruise)
    double DistToTd = 0;                      // nm along the route from the aircraft to T/D (from cruise on)
    int TcDistFromOrigin = 0;                 // whole nm of T/C from the first row
    int TcRow = 0;                            // the row before T/C
    double TdDistFromOrigin = 0;              // nm of T/D from the first row, as predicted
    double DescentRateInUse = 1800;           // ft/min: DescentRate, or the rate from FPA
};

extern PlanDistanceState g_plan_distances;

// [SECTION] Values of the performance pages
// The cruise temperature pair of the performance page. Entering one works
// out the other for the cruise altitude in whole thousands of feet k:
// CruiseOat = IsaDeviation + 15 - k x 1.98. The Mach conversions take CruiseOat.
constexpr double kCruiseOatStart = -30;       // degrees Celsius until entered
constexpr double kIsaDeviationStart = 30;     // degrees Celsius until entered
constexpr double kCruiseOatNotSet = -999;     // shows as not set
constexpr double kPoundsToKilograms = 0.45359237;

struct PerformanceState {
    double CruiseOat = kCruiseOatStart;       // degrees Celsius at the cruise altitude
    double IsaDeviation = kIsaDeviationStart; // degrees Celsius above standard there
    double ZeroFuelWeight = 0;                // pounds; 0 not entered
    double FuelReserve = 0;                   // pounds; 0 not entered
    double GrossWeight = 0;                   // pounds: zero fuel weight and fuel on board
    int CruiseWindDirection = 0;              // degrees
    int CruiseWindSpeed = 0;                  // knots; 0 or less: no wind entered
    int FlapSpeedFlaps = 0;                   // APPROACH REF's FLAP/SPD pair; 0 none
    int FlapSpeedVref = 0;                    // knots
    double kept_direct_to_destination = 0;    // nm, refreshed from cruise on
    double fuel_kept = -1;                    // pounds, the lowest fuel on board seen; -1 read afresh
};

extern PerformanceState g_performance;

// The pilot's entries of the pair, worked out against PlanContext's cruise altitude.
void EnterCruiseOat(double cruise_oat);
void EnterIsaDeviation(double isa_deviation);

// [SECTION] Interfaces
// From the profile's PerformanceData name: as it stands, then below
// <root>\orb\aircraft\. A missing or bad file leaves every count at 0.
void LoadPerformanceTable();
// Reads a performance file's text into a table (the loader's parser; any bytes).
void ReadPerformanceText(const char* text, size_t length, PerformanceTable& table);
// A cruise altitude from the tables, or 0 when the climb, cruise or descent table is empty.
int OptimizeProfile();
// Cruise altitude, T/C and T/D, each waypoint's predicted altitude and
// speed. cruise_altitude 0: choose one; per_waypoint other than 1 stops
// before the per-waypoint passes (and starts the phases afresh).
void PredictProfile(int cruise_altitude, int per_waypoint);
// The per-tick distance pass (along-route sums, phase tests).
void PlanDistances();
// The semicircular rule on a cruise altitude for an initial true bearing.
int SemicircularAltitude(int altitude, double bearing);
// nm along ActivePlan from row 0 to the last row, "DISCO" rows skipped.
double PlanRouteLength();
// Initial true bearing from ActivePlan's first row to its last; 0 without two rows.
double PlanInitialBearing();
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
// After an EXEC: the active plan's predictions written as a text table for
// the pilot (and orbsim's profile plot), when the option asks for it.
void WriteVerticalProfileFile();

// [SECTION] Times and fuel for the pages
// An arrival time distance_nm ahead at ground_speed, from the simulator's
// clock (local with DispETALocalTime = 1, else Zulu): "%02.0f%02.0fZ" or
// "...L" into out. False (out empty) at or below min_ground_speed.
bool FormatArrivalTime(double distance_nm, double ground_speed, double min_ground_speed, char* out, size_t size);
// Fuel on board expected distance_nm ahead at ground_speed, pounds.
double FuelAtDistance(double distance_nm, double ground_speed);
// Time (minutes) and fuel (pounds left) at the destination d nm ahead: beyond
// 100 nm the last 100 count at 85 % of DescentIas. False at a ground speed
// too low to tell.
bool DestinationTimeAndFuel(double d, double ground_speed, double& minutes, double& fuel_left);
// A weight in pounds in the display unit (WeightUnit "KGS": kilograms).
double WeightInDisplayUnit(double pounds);
