// magnetic_model.h: the built-in world magnetic model (WMM-2005), evaluated by
// its published spherical-harmonic synthesis in 32-bit floats.
//
// The navigation data holds magnetic courses and the plan works on true ones;
// the loaders convert with MagneticVariation(), which needs no file: the
// coefficients travel inside the module as text. Guidance never uses it (in
// flight the simulator's own variation is read instead).
#pragma once

#include <array>

constexpr int kMagneticTextLines = 92;          // header, 90 coefficient lines, end mark
constexpr int kMagneticLineLength = 70;         // longest line the text table holds
constexpr int kMagneticMaxDegree = 12;          // degree and order of WMM-2005
constexpr int kMagneticSize = kMagneticMaxDegree + 1;  // rows and columns of the matrices (0..12)
// What the published model is made for: decimal years, km above the ellipsoid.
constexpr double kMagneticFirstYear = 2005.0, kMagneticLastYear = 2010.0;
constexpr double kMagneticLowestKm = -1.0, kMagneticHighestKm = 850.0;

// The coefficient text, one NUL-terminated line a row.
using MagneticCoefficientText = std::array<std::array<char, kMagneticLineLength + 1>, kMagneticTextLines>;

// The published table as generated text (wmm2005_coefficients.cpp).
extern const std::array<const char*, kMagneticTextLines> kWmm2005CoefficientLines;

// The state of the synthesis, all in 32-bit floats as the published method
// keeps it. Prepared by InitMagneticModel, carried between evaluations so that
// a call at the same latitude, altitude or year skips the terms it shares.
struct MagneticModel {
    float epoch = 0;                        // decimal year of the coefficients
    int max_degree = 0;                     // degree the synthesis runs to, 12 once initialised
    // Axes of the ellipsoid and the reference radius, km, with their powers
    float a = 0, b = 0, re = 0;             // semi-major, semi-minor, mean radius
    float a2 = 0, b2 = 0, c2 = 0;           // squares; c2 = a2 - b2
    float a4 = 0, b4 = 0, c4 = 0;           // fourth powers; c4 = a4 - b4
    // Coefficients, nT and nT a year, folded with the Schmidt factors:
    // g at [m][n], h at [n][m - 1]
    float c[kMagneticSize][kMagneticSize] = {};   // main field
    float cd[kMagneticSize][kMagneticSize] = {};  // secular variation
    float tc[kMagneticSize][kMagneticSize] = {};  // main field moved to the evaluated year
    // Factor tables of the recursion
    float snorm[kMagneticSize * kMagneticSize] = {};  // Schmidt factors, [n + m * 13]
    float k[kMagneticSize][kMagneticSize] = {};       // Legendre recursion factors, [m][n]
    float fn[kMagneticSize] = {};           // n + 1
    float fm[kMagneticSize] = {};           // n
    // Legendre values and their derivatives in colatitude, unnormalised
    float p[kMagneticSize * kMagneticSize] = {};  // [n + m * 13]
    float dp[kMagneticSize][kMagneticSize] = {};  // [m][n]
    float pp[kMagneticSize] = {};           // order-1 values, used at the geographic poles only
    // sin and cos of m times the longitude
    float sp[kMagneticSize] = {};
    float cp[kMagneticSize] = {};
    // Spherical position kept from the last evaluation
    float ct = 0, st = 0;                   // cos and sin of the geocentric colatitude
    float r = 0;                            // geocentric radius, km
    float ca = 0, sa = 0;                   // rotation from the geocentric to the geodetic frame
    // What the last evaluation was for; -1000 makes the next one work out every term
    float old_time = -1000, old_alt = -1000, old_lat = -1000, old_lon = -1000;
};

// Everything the magnetic model keeps: one shared set of fields, not
// reentrant, used on the gauges' thread only.
struct MagneticModelState {
    MagneticCoefficientText coefficient_text{};  // filled by StoreMagneticCoefficients
    MagneticModel model{};                  // prepared by InitMagneticModel
};

extern MagneticModelState g_magnetic;

// Fills the coefficient text from the built-in table. First step of the
// navigation database load.
void StoreMagneticCoefficients();
// Parses the coefficient text and prepares the synthesis up to `maxDegree`
// (1..12; anything else means 12).
void InitMagneticModel(int maxDegree);
// The published evaluation. Degrees in and out, east and north positive;
// altitude in km above the ellipsoid; year as a decimal year. The grid
// variation is -999 outside the polar caps (|latitude| below 55).
void EvaluateMagneticModel(float altitudeKm, float latitude, float longitude, float year, float& declination,
                           float& dip, float& totalIntensity, float& gridVariation);
// The whole-degree rule of the variation: cut toward zero, then one more
// when the declination is above 0.54 (12.1 gives 13, -12.9 gives -12).
int WholeDegreeVariation(float declination);
// The model's declination, degrees east positive, at a geodetic position
// (degrees), an altitude in km above the WGS-84 ellipsoid and a decimal year.
// Initialises the model on every call, so nothing of an earlier evaluation
// is kept. The model is made for 2005.0 to 2010.0 and -1 to 850 km.
float MagneticDeclination(float latitude, float longitude, float altitudeKm, float year);
// Whole-degree variation, east positive, at a whole-degree position: the
// declination for the year 2005.0 and 1 km altitude, by the whole-degree rule.
int MagneticVariation(int latitude, int longitude);
