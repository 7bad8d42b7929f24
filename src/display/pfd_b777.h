// pfd_b777.h: the B777_PFD_NB primary flight display: attitude ball, speed
// and altitude tapes, flight director, warnings and mode annunciations on a
// 260 x 260 canvas.
//
// The page reads the tick's samples and a few values only the simulator has
// (signal flags, warnings, decision height) through one inputs struct, so
// that a frame can be drawn from any aircraft state.
#pragma once

#include "display/display_surface.h"

#include <array>

constexpr int kB777PfdWidth = 260;      // design canvas
constexpr int kB777PfdHeight = 260;
constexpr int kB777BallX = 110;         // design point of the ball's centre
constexpr int kB777BallY = 130;
constexpr double kUnitsPerDegree = 4.5;  // pitch scale of the ball
constexpr double kFdBankStep = 0.33;    // flight director bar travel a frame, degrees
constexpr double kFdPitchStep = 0.11;
constexpr double kFdBankLimit = 25;     // degrees of bank command shown
constexpr double kRadioAltitudeShownBelow = 2500;  // feet

// Everything one frame of an attitude display shows.
struct AttitudeInputs {
    double pitch = 0;                   // degrees, nose up positive
    double bank = 0;                    // degrees, right wing down positive
    double ias = 0;                     // knots
    double mach = 0;                    // Mach number
    double altitude = 0;                // feet, indicated
    double vertical_speed = 0;          // feet a minute
    double ground_speed = 0;            // knots
    double heading = 0;                 // degrees magnetic
    double radio_altitude = 0;          // feet
    double decision_height = 0;         // feet
    double g_load = 1;                  // G
    double drift = 0;                   // degrees
    double baro_mb = 1013.25;           // hectopascals
    double baro_inches = 29.92;         // inches of mercury
    double selected_ias = 0;            // knots
    double selected_mach = 0;           // Mach number
    double selected_altitude = 0;       // feet
    double selected_vs = 0;             // feet a minute
    double heading_bug = 0;             // degrees magnetic
    double course = 0;                  // NAV 1 course, degrees
    bool ap_master = false;             // autopilot engaged
    bool ias_hold = false;              // autothrottle holds IAS
    bool mach_hold = false;             // autothrottle holds Mach
    bool altitude_hold = false;         // altitude hold on
    bool heading_hold = false;          // heading hold on
    bool approach_hold = false;         // approach mode on
    bool loc_captured = false;          // localizer captured
    bool gs_captured = false;           // glideslope captured
    bool fd_switch = false;             // flight director switched on
    double fd_pitch = 0;                // flight director pitch command, degrees
    double fd_bank = 0;                 // flight director bank command, degrees
    bool lnav_on = false;               // LNAV engaged
    bool vnav_on = false;               // VNAV engaged
    bool vnav_path = false;             // VNAV flies a path (else speed)
    bool plan_loaded = false;           // a route exists: LNAV and VNAV can arm
    bool nav_signal = false;            // NAV 1 receives a station
    std::array<char, 8> nav_ident{};    // NAV 1 station ident, zero-terminated
    double loc_needle = 0;              // -127 .. 127
    double gs_needle = 0;               // -119 .. 119
    double dme = 0;                     // nm
    int marker = 0;                     // 0 none, 1 outer, 2 middle, 3 inner
    bool stall = false;                 // stall warning on
    bool overspeed = false;             // overspeed warning on
    double position_332 = 16383;        // token 332, full scale 16383
};

// The inputs of this frame from the tick's samples and the simulator.
AttitudeInputs ReadAttitudeInputs();

// The warning over the ball by priority, or null when none stands; `x` gets
// its left design offset from the ball's centre.
const char* AttitudeWarning(const AttitudeInputs& in, float* x);

// One frame's move of the flight director bars towards the commands.
void StepFlightDirector(const AttitudeInputs& in);

// The page, drawn into a frame that is already scaled and filled.
void DrawB777Pfd(const DisplaySurface& surface);
// The same from given inputs.
void DrawB777PfdFrom(const DisplaySurface& surface, const AttitudeInputs& in);
