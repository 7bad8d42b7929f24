// eadi_efs50.cpp: the EFS50_EADI page (the _NB gauge draws the same). One
// immediate-mode pass in the attitude displays' order: the ball (sky,
// ground, ladder) clipped to its outline and turned by the bank, flight
// director (single-cue V bars, or the cross bars with `EadiDualCue`),
// flight path vector, warnings, aircraft symbol and bank scale, the
// fast/slow scale, ILS deviation with its source, marker, the optional
// heading strip; then the mode rows and the radio altitude.
//
// This cockpit's director has no tapes and no vertical speed: speed is read
// against the selected speed on the fast/slow scale, altitude on the
// neighbouring instruments.
//
// Every position below is in design units about the ball's centre.
//
// Index:
//   [SECTION] Fast/slow scale
//   [SECTION] Mode rows
//   [SECTION] The page
#include "display/eadi_efs50.h"

#include "frame/global_config.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
constexpr float kActiveRowY = -114;                  // mode rows: active, then armed
constexpr float kArmedRowY = -104;
constexpr float kRollColumnX = -118;                 // lateral modes on the left
constexpr float kPitchColumnX = -58;                 // vertical modes beside them
constexpr double kRadioAltitudeShownFrom = -20;      // feet; up to kRadioAltitudeShownBelow
constexpr int kHeadingStripY = 84;                   // top of the optional heading strip
constexpr int kHeadingHalfWidth = 55;
// The fast/slow scale left of the ball: 2 units a knot, full scale at 20
// knots either way, fast upwards.
constexpr int kSpeedScaleX = -90;
constexpr double kSpeedScaleUnitsPerKnot = 2;
constexpr double kSpeedScaleHalf = 40;
// Marker letters under the radio altitude, on the colour a crew knows them
// by: outer blue, middle amber, inner white.
constexpr int kMarkerX = 85;
constexpr int kMarkerY = -100;
constexpr int kMarkerSize = 12;
constexpr std::array<ARGB, 3> kMarkerColours = {palette::kSkyBlue, palette::kAmber, palette::kWhite};

float F(double v) { return static_cast<float>(v); }
double Sane(double v) { return std::isfinite(v) ? v : 0.0; }

struct Fonts {
    gdi::Font small{kArialFont, 9, FontStyleBold};
    gdi::Font mode{kArialFont, 10, FontStyleBold};
};

BallFrame Efs50Ball() { return {kEfs50BallX, kEfs50BallY, kEfs50Sky, kEfs50Ground}; }
void ToBall(const DisplaySurface& surface) { MoveToBall(surface, Efs50Ball()); }
}  // namespace

// [SECTION] Fast/slow scale
namespace {
void DrawSpeedDeviation(gdi::Graphics& g, const AttitudeInputs& in, const Fonts& fonts) {
    // 1. Only near the selected speed: far from it the scale would only
    // show a pointer stuck at its end.
    double deviation = Sane(in.ias) - Sane(in.selected_ias);
    if (std::fabs(deviation) > kEfs50SpeedScaleReach) return;

    // 2. Scale: centre mark, ticks at 10 and 20 knots, "F" above, "S" below.
    gdi::Pen white(palette::kWhite, 1.5f);
    g.DrawLine(white, kSpeedScaleX - 5, 0, kSpeedScaleX + 5, 0);
    for (int knots : {-20, -10, 10, 20}) {
        float y = F(knots * kSpeedScaleUnitsPerKnot);
        g.DrawLine(white, kSpeedScaleX - 2, y, kSpeedScaleX + 2, y);
    }
    g.DrawLine(white, kSpeedScaleX, F(-kSpeedScaleHalf), kSpeedScaleX, F(kSpeedScaleHalf));
    g.DrawText("F", fonts.small, palette::kWhite, kSpeedScaleX, F(-kSpeedScaleHalf - 2), gdi::TextAlign::Centre,
               gdi::TextBaseline::Bottom);
    g.DrawText("S", fonts.small, palette::kWhite, kSpeedScaleX, F(kSpeedScaleHalf + 2), gdi::TextAlign::Centre);

    // 3. Pointer: up when fast, pinned at full scale.
    int y = static_cast<int>(
        std::lround(std::clamp(-deviation * kSpeedScaleUnitsPerKnot, -kSpeedScaleHalf, kSpeedScaleHalf)));
    gdi::SolidBrush magenta(palette::kMagenta);
    const GpPoint pointer[] = {{kSpeedScaleX - 1, y}, {kSpeedScaleX - 8, y - 4}, {kSpeedScaleX - 8, y + 4}};
    g.FillPolygon(magenta, pointer, 3);
}
}  // namespace

// [SECTION] Mode rows
namespace {
void DrawModes(gdi::Graphics& g, const AttitudeInputs& in, const Fonts& fonts) {
    // 1. Lateral: the approach once the localizer is captured, then LNAV,
    // then the autopilot's NAV hold, then heading. Armed below in white:
    // the approach before its capture, else the heading hold that LNAV
    // steers through.
    const char* roll = nullptr;
    if (in.approach_hold && in.loc_captured) roll = "APR";
    else if (in.lnav_on) roll = "LNAV";
    else if (in.nav_hold) roll = "NAV";
    else if (in.heading_hold) roll = "HDG";
    if (roll != nullptr) g.DrawText(roll, fonts.mode, palette::kGreen, kRollColumnX, kActiveRowY);
    if (in.approach_hold && !in.loc_captured) g.DrawText("APR", fonts.mode, palette::kWhite, kRollColumnX, kArmedRowY);
    else if (in.lnav_on && in.heading_hold) g.DrawText("HDG", fonts.mode, palette::kWhite, kRollColumnX, kArmedRowY);

    // 2. Vertical: VNAV, then the altitude hold; under VNAV the altitude
    // hold it levels with stands armed below.
    if (in.vnav_on) {
        g.DrawText("VNAV", fonts.mode, palette::kGreen, kPitchColumnX, kActiveRowY);
        if (in.altitude_hold) g.DrawText("ALT", fonts.mode, palette::kWhite, kPitchColumnX, kArmedRowY);
    } else if (in.altitude_hold) {
        g.DrawText("ALT", fonts.mode, palette::kGreen, kPitchColumnX, kActiveRowY);
    }
}
}  // namespace

// [SECTION] The page
void DrawEfs50EadiFrom(const DisplaySurface& surface, const AttitudeInputs& raw) {
    // A broken sample reads 0 or its limit, never a runaway text.
    const AttitudeInputs in = PlausibleAttitudeInputs(raw);
    gdi::Graphics& g = *surface.graphics;
    Fonts fonts;
    const BallFrame ball = Efs50Ball();

    // 1. Flight director bars move once a frame.
    StepFlightDirector(in);

    // 2. Ball, director, path vector; the warning over it. The director is
    // single-cue unless the configuration asks for the cross bars.
    if (g_config.EadiDualCue != 0) {
        DrawAttitudeBall(surface, ball, in);
    } else {
        AttitudeInputs without_bars = in;
        without_bars.fd_switch = false;
        DrawAttitudeBall(surface, ball, without_bars);
        DrawSingleCueDirector(surface, ball, in);
    }
    DrawAttitudeWarning(surface, ball, in);

    // 3. Aircraft symbol and bank scale; fast/slow; ILS with its source.
    DrawAircraftSymbol(surface, ball, in);
    DrawSpeedDeviation(g, in, fonts);
    DrawIlsScales(surface, in, 72, 75);
    if (in.nav_signal && in.nav_is_localizer) g.DrawText("LOC", fonts.small, palette::kGreen, 71, 61);

    // 4. Marker letter on its colour.
    if (in.marker >= 1 && in.marker <= 3) {
        static constexpr const char* kLetters[] = {"O", "M", "I"};
        size_t which = static_cast<size_t>(in.marker - 1);
        gdi::SolidBrush fill(kMarkerColours[which]);
        g.FillRectangle(fill, kMarkerX, kMarkerY, kMarkerSize, kMarkerSize);
        g.DrawText(kLetters[which], fonts.small, palette::kBlack, kMarkerX + kMarkerSize / 2.0f,
                   kMarkerY + kMarkerSize / 2.0f, gdi::TextAlign::Centre, gdi::TextBaseline::Middle);
    }

    // 5. Heading strip under the ball when the configuration asks for it.
    if (g_config.EADIHdgTape != 0) {
        DrawHeadingStrip(surface, fonts.small, in, kHeadingStripY, kHeadingHalfWidth, palette::kSkyBlue);
        ToBall(surface);
    }

    // 6. Mode rows, then the radio altitude on the active row's right.
    DrawModes(g, in, fonts);
    double ra = Sane(in.radio_altitude);
    if (ra >= kRadioAltitudeShownFrom && ra < kRadioAltitudeShownBelow) {
        char text[16];
        std::snprintf(text, sizeof text, "%5.0f", ra);
        g.DrawText(text, fonts.mode, palette::kWhite, 81, -114);
    }
    ResetToDesign(surface);
}

void DrawEfs50Eadi(const DisplaySurface& surface) { DrawEfs50EadiFrom(surface, ReadAttitudeInputs()); }
