// c17_engine_pages.h: the four engine and configuration pages of the C-17
// multi-function display: ENGINE (dials of N1, N2 and EGT, with EPR and fuel
// flow), ENGINE 2 (N1 as vertical bars on a scale that follows the ambient
// value), ENGINE OIL (oil pressure, temperature and quantity, fuel used) and
// FLIGHT CONTROLS (trims, spoilers, flaps, slats and gear).
//
// Each page reads the simulator and the tick's counters through one inputs
// struct, so that a test or a benchmark can draw any aircraft state; the
// plain entry points read the live state and draw.
#pragma once

#include "display/display_surface.h"

#include <array>

// [SECTION] Geometry
constexpr int kC17Width = 246;          // design canvas of a C-17 screen
constexpr int kC17Height = 241;
constexpr int kC17CentreX = 123;        // the screen's centre x: the labels' column
constexpr int kC17Engines = 4;
constexpr double kC17DialSweep = 180;   // degrees of a half-circle dial's arc
constexpr double kC17N1FullScale = 110; // per cent at the end of an N1 or N2 dial
constexpr double kC17EgtFullScale = 760;  // degrees Celsius at the end of the EGT dial
constexpr double kC17BarFull = 100;     // design units of a full ENGINE 2 bar

// [SECTION] Inputs of one frame
struct C17EngineInputs {
    std::array<double, kC17Engines> n1{};              // per cent
    std::array<double, kC17Engines> n2{};              // per cent
    std::array<double, kC17Engines> egt{};             // degrees Celsius
    std::array<double, kC17Engines> fuel_flow{};       // pounds an hour
    std::array<double, kC17Engines> oil_pressure{};    // psi
    std::array<double, kC17Engines> oil_temperature{}; // degrees Celsius
    std::array<double, kC17Engines> oil_quantity{};    // quarts
    std::array<bool, kC17Engines> reverser{};          // reverser in use
    std::array<double, kC17Engines> epr_source{};      // raw pressure source of the EPR rule
    double epr_ambient = 0;                            // raw ambient value of the EPR rule
    std::array<double, kC17Engines> fuel_used{};       // pounds since the module started
    double max_thrust_seconds = 0;                     // seconds any N1 has been above 99
    double max_egt_seconds = 0;                        // seconds any EGT has been above 645
    double flaps_raw = 0;                              // 0 up .. 16383 full
    double slats_degrees = 0;                          // leading-edge flap angle
    std::array<double, 3> gear{};                      // nose, left, right: 0 up .. 16383 down
    std::array<double, 2> spoiler{};                   // left, right: raw 0..16383
    double elevator_trim = 0;                          // -1 nose down .. 1 nose up
    double aileron_trim = 0;                           // -1 left wing down .. 1 right wing down
    double rudder_trim = 0;                            // -1 left .. 1 right
};

// The inputs of this frame from the simulator and the tick's counters.
C17EngineInputs ReadC17EngineInputs();

// [SECTION] Readings the pages share with their tests
// A dial needle's turn from the start of its arc, degrees, 0 to 180.
double C17NeedleDegrees(double value, double full_scale);
// The height of an ENGINE 2 bar, 0 to 100 design units, for an N1 and the
// ambient value that moves the scale.
double C17BarHeight(double n1, double ambient);
// The gear text: "DOWN" with every leg down, "UP" with every leg up, else "TRANSIT".
const char* C17GearText(const std::array<double, 3>& gear);

// [SECTION] Pages (the surface comes scaled to the design canvas and filled)
void DrawC17Engines(const DisplaySurface& surface);            // ENGINE
// ENGINE 2; over temperature it first lifts the tick's counter to 300 seconds.
void DrawC17EnginesSecondary(const DisplaySurface& surface);
void DrawC17OilAndFuel(const DisplaySurface& surface);         // ENGINE OIL
void DrawC17Configuration(const DisplaySurface& surface);      // FLIGHT CONTROLS

void DrawC17EnginesFrom(const DisplaySurface& surface, const C17EngineInputs& in);
void DrawC17EnginesSecondaryFrom(const DisplaySurface& surface, const C17EngineInputs& in);
void DrawC17OilAndFuelFrom(const DisplaySurface& surface, const C17EngineInputs& in);
void DrawC17ConfigurationFrom(const DisplaySurface& surface, const C17EngineInputs& in);
