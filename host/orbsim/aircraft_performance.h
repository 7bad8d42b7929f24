// aircraft_performance.h: the demonstration twin jet's book figures, which
// orbsim's aircraft flies by.
//
// The sample performance file the module reads holds the same numbers, so
// what the module predicts and what orbsim then flies can be laid side by
// side: a climb that the book says cannot be made is not made here either.
// Flows are totals for both engines; the aircraft splits them over its
// engines.
#pragma once

#include <array>

namespace orbsim {

// One altitude of the book.
struct PerformanceRow {
    double altitude;                    // feet
    double climb_tas;                   // knots true at climb thrust
    double climb_rate;                  // feet a minute the climb thrust sustains
    double climb_flow;                  // pounds an hour, both engines
    double cruise_tas;                  // knots true
    std::array<double, 3> cruise_flow;  // pounds an hour, both engines, at the weights of kCruiseWeights
    double descent_tas;                 // knots true at idle
    double descent_rate;                // feet a minute at idle
    double descent_flow;                // pounds an hour, both engines, at idle
};

// Gross weights of the cruise flow columns, pounds.
constexpr std::array<double, 3> kCruiseWeights = {120000, 140000, 160000};

// The book, every 5000 ft, then the last two rows below the ceiling.
//                         alt    clb TAS rate  flow  crz TAS  120k  140k  160k   des TAS rate  flow
constexpr std::array<PerformanceRow, 10> kTwinJetBook = {{
    {0,     250, 3400, 7600, 250, {4600, 4900, 5200}, 250, 1500, 1300},
    {5000,  270, 3100, 7200, 275, {4400, 4700, 5000}, 270, 2000, 1250},
    {10000, 330, 2900, 6800, 330, {4300, 4600, 4900}, 320, 2500, 1200},
    {15000, 360, 2600, 6300, 360, {4100, 4400, 4700}, 350, 2500, 1150},
    {20000, 390, 2300, 5800, 400, {3900, 4200, 4500}, 380, 2500, 1100},
    {25000, 420, 2000, 5300, 430, {3700, 4000, 4300}, 410, 2500, 1050},
    {30000, 440, 1600, 4800, 450, {3500, 3800, 4100}, 430, 2500, 1000},
    {35000, 450, 1200, 4300, 455, {3300, 3600, 3900}, 440, 2500, 950},
    {39000, 455, 700,  3900, 455, {3200, 3500, 3800}, 445, 2500, 900},
    {41000, 455, 400,  3700, 455, {3200, 3500, 3900}, 445, 2500, 900},
}};

// Fixed figures of the jet, with their reason.
constexpr double kCeilingFt = 41000;            // the book's altitude limit: no climb thrust to spare above
constexpr double kEmptyWeightLb = 102000;       // with the default 18,000 lb payload and 20,000 lb fuel: 140,000 lb
constexpr double kLiftOffKt = 150;              // rotation: the wings carry the jet from here
constexpr double kTakeoffAccelKtPerSec = 4;     // the take-off roll at climb thrust
constexpr double kClimbAccelKtPerSec = 1.5;     // the autothrottle's most in a climb
constexpr double kLevelAccelKtPerSec = 2;       // and in level flight
constexpr double kDecelKtPerSec = 2;            // idle, and speed brakes in a descent
constexpr double kPhaseBlendFpm = 300;          // climb or descent thrust from this vertical speed on
constexpr double kClimbN1 = 90, kCruiseN1 = 82, kIdleN1 = 30;  // percent

// Shares of the three thrust settings; they add up to 1.
struct ThrustMix {
    double climb = 0;                   // share of climb thrust
    double cruise = 1;                  // share of cruise thrust
    double idle = 0;                    // share of idle
};

// The book read at an altitude: straight lines between its rows, the end rows
// beyond them. The climb rate is 0 above the ceiling.
double BookClimbRate(double altitude);                // feet a minute
double BookClimbFlow(double altitude);                // pounds an hour, both engines
double BookDescentFlow(double altitude);              // pounds an hour, both engines
// Cruise flow by altitude and gross weight (straight lines between the
// columns, the end columns beyond them).
double BookCruiseFlow(double altitude, double gross_lb);

// Climb thrust at +300 ft/min and above, idle at -300 and below, cruise
// thrust level, shared in straight lines between.
ThrustMix ThrustForVerticalSpeed(double vs_fpm);
// The flow and N1 of a mix at an altitude and weight.
double BookFlow(const ThrustMix& mix, double altitude, double gross_lb);  // pounds an hour, both engines
double N1ForThrust(const ThrustMix& mix);                                 // percent

}  // namespace orbsim
