// engine_limits.h: the engine rules every engine page shares: the colour of a
// reading against its limits, the limit-time texts of the tick's counters,
// the EPR rule and the flap text. Pure functions, so that each page and its
// tests see the same thresholds.
#pragma once

#include "display/gdi_objects.h"

#include <cstddef>

// [SECTION] Limits
namespace engine_limits {
constexpr double kN1Low = 15.0;              // per cent; below: yellow (a stopped engine)
constexpr double kN1Red = 100.5;             // per cent; above: red
constexpr double kEgtYellow = 625.0;         // degrees Celsius; above: yellow
constexpr double kEgtRed = 655.0;            // degrees Celsius; above: red
constexpr double kOilPressureLow = 70.0;     // psi; below: red
constexpr double kOilTemperatureLow = 39.0;  // degrees; below: yellow
constexpr double kOilTemperatureHigh = 163.5;  // degrees; above: yellow
constexpr double kOilTemperatureRed = 177.5;   // degrees; above: red
constexpr double kOilNeedleYellow = 163.0;   // degrees; the oil temperature needle above: yellow
constexpr double kOilNeedleRed = 177.0;      // degrees; the needle above: red
constexpr double kOilQuantityLow = 4.0;      // quarts; below: yellow
constexpr double kThrustCountUp = 900.0;     // seconds the thrust text counts up
constexpr double kThrustAllowed = 1200.0;    // seconds at maximum thrust in all
constexpr double kEgtHeld = 300.0;           // seconds the temperature text holds at 05:00
constexpr double kEgtAllowed = 600.0;        // seconds over temperature in all
constexpr int kFlapQuarter = 4681;           // raw flap value 0 to 16383: "UP" below
constexpr int kFlapHalf = 9362;              // "1/2" below
constexpr int kFlapThreeQuarters = 14043;    // "3/4" below, "FULL" from here
constexpr std::size_t kLimitTextSize = 32;   // room for the longest time text
}  // namespace engine_limits

// The colours of a reading against its limits.
enum class LimitLevel { Normal, Caution, Warning };  // green, yellow, red

// [SECTION] Colours of readings
LimitLevel N1Level(double n1_percent);        // also N2: the same limits
LimitLevel EgtLevel(double egt_celsius);
LimitLevel OilPressureLevel(double psi);
LimitLevel OilTemperatureLevel(double degrees);
// The oil temperature needle's colour: the reading's low limit, whole-degree high limits.
LimitLevel OilNeedleLevel(double degrees);
LimitLevel OilQuantityLevel(double quarts);
ARGB LimitColour(LimitLevel level);           // green 0xFF00FA00, yellow, red 0xFFFF0000

// [SECTION] Limit-time texts
// The thrust counter's text, or an empty text while the counter is 0:
// "MAX THR TIME OVER mm:ss" up to 900 seconds, then the time remaining of 1200.
void ThrustTimeText(double seconds, char* out, std::size_t size);
// The temperature counter's "TIME REM mm:ss", or empty while it is 0; the
// design y it stands at comes back in `y` (43 while held at 05:00, else 40).
void EgtTimeText(double seconds, char* out, std::size_t size, int* y);

// [SECTION] Other readings
// EPR of one engine (0..3) from its pressure source and the ambient value;
// an ambient value of 0 reads 1.
double EngineEpr(int engine, double raw, double ambient);
const char* FlapText(double raw);             // "UP", "1/2", "3/4", "FULL"
