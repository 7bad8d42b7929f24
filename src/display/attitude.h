// attitude.h: what every attitude display shares: the frame's inputs, the
// warnings and their priority, the flight director's filtered bars, and the
// drawing pieces whose scale arithmetic is common to all of them (the ball
// with its ladder, the aircraft symbol and bank scale, the rolling readouts,
// the heading strip, the ILS scales).
//
// Each display is one long page function that composes these pieces around
// its own ball centre and adds its own mode rows and readouts.
#pragma once

#include "display/display_surface.h"

#include <array>

constexpr double kUnitsPerDegree = 4.5;     // pitch scale of the ball
constexpr double kFdBankStep = 0.33;        // flight director bar travel a frame, degrees
constexpr double kFdPitchStep = 0.11;
constexpr double kFdBankLimit = 25;         // degrees of bank command shown
constexpr double kRadioAltitudeShownBelow = 2500;  // feet
constexpr double kLocNeedleScale = 2.54;    // needle units a design unit
constexpr double kGsNeedleScale = 3.3421052631578947;
constexpr double kKnotUnits = 1.75;         // speed tape, units a knot
constexpr double kFootUnits = 0.065;        // altitude tape, units a foot
constexpr double kSpeedBugUnits = 1.68;     // speed bug, units a knot
constexpr double kSlipBallScale = 15.875;   // ball units a design unit
constexpr int kBallRadius = 80;             // outline: arcs
constexpr int kBallHalfWidth = 69;          // outline: vertical sides
constexpr int kDrumSpacing = 20;            // design units between two drum numbers

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
    double slip_ball = 0;               // turn coordinator ball, -127 .. 127
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
    bool vs_hold = false;               // vertical speed hold on
    bool nav_hold = false;              // autopilot NAV (or GPS) hold on
    bool approach_hold = false;         // approach mode on
    bool loc_captured = false;          // localizer captured
    bool gs_captured = false;           // glideslope captured
    bool autothrottle = false;          // autothrottle armed
    bool fd_switch = false;             // flight director switched on
    double fd_pitch = 0;                // flight director pitch command, degrees
    double fd_bank = 0;                 // flight director bank command, degrees
    bool lnav_on = false;               // LNAV engaged
    bool vnav_on = false;               // VNAV engaged
    bool vnav_path = false;             // VNAV flies a path (else speed)
    bool vnav_descent = false;          // VNAV in its descent phase
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
    int phase = 0;                      // the tick's 18-phase counter, for flicker
    bool gps_drives_nav = false;        // the NAV hold follows the GPS, not the radio
    double nav_frequency = 0;           // NAV 1 frequency, MHz
    bool nav_is_localizer = false;      // NAV 1 is tuned to a localizer, not a VOR
};

// Where a display's ball stands and how it is painted.
struct BallFrame {
    float centre_x = 0;                 // design units of the ball's centre
    float centre_y = 0;
    ARGB sky = 0;                       // opaque colours of the two fields
    ARGB ground = 0;
};

// A tape's strip about the ball's centre; a fill of 0 leaves it unpainted.
struct TapeStrip {
    float left = 0;                     // design x of the strip's edges
    float right = 0;
    float half_height = 0;              // design units above and below the centre
    ARGB fill = 0;                      // the strip's colour, 0 for none
};

// [SECTION] Inputs, warnings, flight director
// The inputs of this frame from the tick's samples and the simulator.
AttitudeInputs ReadAttitudeInputs();

// The warning over the ball by priority, or null when none stands; `x` gets
// its left design offset from the ball's centre.
const char* AttitudeWarning(const AttitudeInputs& in, float* x);

// The inputs with every value finite and within what the pages can print: a
// broken sample (not a number, infinite, absurd) reads 0 or its limit.
AttitudeInputs PlausibleAttitudeInputs(const AttitudeInputs& in);

// One frame's move of the flight director bars towards the commands.
void StepFlightDirector(const AttitudeInputs& in);

// Degrees from the heading to a value, -180 .. 180.
double HeadingOffset(double value, double heading);

// [SECTION] Drawing pieces; each leaves the world at the ball's centre
// The whole world moved to the ball's centre.
void MoveToBall(const DisplaySurface& surface, const BallFrame& ball);
// Sky, ground, horizon and ladder clipped to the outline and turned by the
// bank; then the flight director and the flickering flight path vector.
void DrawAttitudeBall(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in);
// The single-cue flight director: command bars in the shape of a V, up or
// down by the pitch bar and rolled by the bank bar less the bank, which the
// aircraft symbol is flown into. Drawn instead of the ball's cross bars.
void DrawSingleCueDirector(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in);
// The own-aircraft symbol, the bank scale, the bank pointer and the slip bar.
void DrawAircraftSymbol(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in);
// The warning of the frame in red over the ball.
void DrawAttitudeWarning(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in);
// The speed tape: 1.75 units a knot, ticks every 10 knots within 50 of the
// speed, "%3d" labels every 20 (none below 0), the cyan speed bug at x = -82
// and -85 pinned at 67 units, the pointer box at the strip's right edge with
// a rolling readout, and (when `trend_knots` isn't 0) the trend arrow of the
// speed ten seconds on.
void DrawSpeedTape(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in,
                   const TapeStrip& strip, const gdi::Font& label_font, const gdi::Font& readout_font,
                   double trend_knots);
// The altitude tape: 0.065 units a foot, 1199 feet each way, ticks every 100
// feet, "%5d" labels on multiples of 200, the altitude bug at x = 80 and 83
// (green while the hold is on, else cyan) pinned at 65 units, and the
// pointer box at the strip's left edge with a rolling readout.
void DrawAltitudeTape(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in,
                      const TapeStrip& strip, const gdi::Font& label_font, const gdi::Font& readout_font);
// A speed readout whose last digit rolls: the leading digits end at
// `right - digit_width`, the drum digit stands right of them and moves
// continuously, clipped to the box `clip_top` .. `clip_bottom` (design y
// about the ball). Drum numbers stand kDrumSpacing apart.
void DrawSpeedDrum(const DisplaySurface& surface, const gdi::Font& font, ARGB colour, float right,
                   float digit_width, float clip_top, float clip_bottom, double knots);
// An altitude readout whose last two digits roll in steps of 20 feet ("%d0"),
// the pairs a text line apart.
void DrawAltitudeDrum(const DisplaySurface& surface, const gdi::Font& font, ARGB colour, float right,
                      float pair_width, float clip_top, float clip_bottom, double feet);
// Heading strip with its top at `top`, 2 units a degree, half width
// `half_width`, heading bug and (with a signal) the course mark, pinned with
// their values printed.
void DrawHeadingStrip(const DisplaySurface& surface, const gdi::Font& font, const AttitudeInputs& in, float top,
                      float half_width, ARGB bug_colour);
// The localizer scale along y = `loc_y` and the glideslope scale at x =
// `gs_x`, with their magenta pointers; nothing without a NAV signal.
void DrawIlsScales(const DisplaySurface& surface, const AttitudeInputs& in, float loc_y, float gs_x);
