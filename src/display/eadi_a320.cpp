// eadi_a320.cpp: the A320_EADI_NB page. One immediate-mode pass over the
// canvas, in the attitude displays' order: the ball (sky, ground, ladder)
// clipped to its outline and turned by the bank, flight director, flight
// path vector, warnings, aircraft symbol and bank scale, the two tapes with
// their bugs and selected values, ILS deviation, marker, heading strip,
// vertical speed; then the mode annunciator and the readouts around the ball.
//
// Every position below is in design units about the ball's centre. The
// ball, aircraft symbol, warnings, rolling readouts, heading strip and ILS
// scales are the attitude displays' shared pieces (attitude.h).
//
// Index:
//   [SECTION] Tapes
//   [SECTION] Vertical speed
//   [SECTION] Mode annunciator
//   [SECTION] The page
#include "display/eadi_a320.h"

#include "frame/aircraft_profile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
constexpr const char* kTahomaFont = "Tahoma";
constexpr int kHeadingStripY = 94;                    // top of the heading strip
constexpr int kHeadingHalfWidth = 55;
constexpr int kSpeedTapeLeft = -125;                  // speed strip, x
constexpr int kSpeedTapeRight = -88;
constexpr int kAltTapeLeft = 84;                      // altitude strip, x
constexpr int kAltTapeRight = 126;
constexpr int kTapeHalfHeight = 80;
constexpr double kSpeedBugLimit = 67;                 // where the shared tapes pin their bugs, design units
constexpr double kAltitudeBugLimit = 65;
constexpr int kVsScaleLeft = 130;                     // vertical speed scale, x
constexpr int kVsScaleRight = 148;
constexpr double kMachShownAbove = 0.5;               // Mach under the speed tape
constexpr double kStdLow = 1013.0;                    // "STD" from here up to but not kStdHigh
constexpr double kStdHigh = 1013.4;
constexpr double kVsModeThreshold = 200;              // fpm either way for the V/S mode
// The annunciator: four columns parted by lines from the top row down.
constexpr int kModeTop = -155;
constexpr int kModeBottom = -117;
constexpr int kModeRowStep = 14;
constexpr std::array<int, 4> kModeDividers = {-85, -5, 65, 120};
constexpr float kSpeedColumnX = (-155 + -85) / 2.0f;  // centres of the columns
constexpr float kPitchColumnX = (-85 + -5) / 2.0f;
constexpr float kRollColumnX = (-5 + 65) / 2.0f;
constexpr float kEngagementX = 125;                   // AP1, 1FD, A/THR
// Marker letters on the colour a crew knows them by: outer blue, middle
// amber, inner white.
constexpr float kMarkerX = 80;
constexpr float kMarkerY = 88;
constexpr int kMarkerSize = 12;
constexpr std::array<ARGB, 3> kMarkerColours = {palette::kSkyBlue, palette::kAmber, palette::kWhite};

float F(double v) { return static_cast<float>(v); }

ARGB Opaque(const ProfileColour& c) {
    auto byte = [](int v) { return static_cast<ARGB>(std::clamp(v, 0, 255)); };
    return 0xFF000000u | byte(c.red) << 16 | byte(c.green) << 8 | byte(c.blue);
}

struct Fonts {
    gdi::Font small{kTahomaFont, 9, FontStyleBold};
    gdi::Font mode{kTahomaFont, 10, FontStyleBold};
    gdi::Font tape{kTahomaFont, 10, FontStyleBold};
    gdi::Font big{kTahomaFont, 12, FontStyleBold};
};

template <typename... Args>
void Text(gdi::Graphics& g, const gdi::Font& font, ARGB colour, double x, double y, gdi::TextAlign align,
          const char* format, Args... args) {
    char text[48];
    std::snprintf(text, sizeof text, format, args...);
    g.DrawText(text, font, colour, F(x), F(y), align);
}

BallFrame A320Ball() {
    return {kA320BallX, kA320BallY, Opaque(g_profile.A320EADISky), Opaque(g_profile.A320EADIGrnd)};
}

void ToBall(const DisplaySurface& surface) { MoveToBall(surface, A320Ball()); }

// Finite or 0: a wild sample draws as nothing rather than as noise.
double Sane(double v) { return std::isfinite(v) ? v : 0.0; }
}  // namespace

// [SECTION] Tapes
namespace {
constexpr int kPinnedCellHeight = 13;                 // the strip's end cell of a pinned value

// A selected value beyond the tape's reach, in cyan on black in the cell
// at the strip's top or bottom end, over the labels that scroll under it.
void PinnedValue(gdi::Graphics& g, const gdi::Font& font, const char* text, int left, int right, bool top) {
    int y = top ? -kTapeHalfHeight : kTapeHalfHeight - kPinnedCellHeight;
    gdi::SolidBrush black(palette::kBlack);
    g.FillRectangle(black, left, y, right - left, kPinnedCellHeight);
    g.DrawText(text, font, palette::kCyan, (left + right) / 2.0f, y + kPinnedCellHeight / 2.0f, gdi::TextAlign::Centre,
               gdi::TextBaseline::Middle);
}

// The shared tapes on this display's strips; a selected value whose bug is
// pinned at a strip's end is printed in that end instead of off the scale.
void DrawTapes(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in, const Fonts& fonts) {
    // 1. The two tapes with their bugs and rolling readouts.
    const BallFrame ball = A320Ball();
    ARGB fill = Opaque(g_profile.A320EADITape);
    DrawSpeedTape(surface, ball, in, {kSpeedTapeLeft, kSpeedTapeRight, kTapeHalfHeight, fill}, fonts.tape,
                  fonts.big, 0);
    DrawAltitudeTape(surface, ball, in, {kAltTapeLeft, kAltTapeRight, kTapeHalfHeight, fill}, fonts.small, fonts.tape);
    ToBall(surface);

    // 2. Selected speed (or Mach under the Mach hold) beyond the bug's reach.
    char text[16];
    double speed = std::clamp(Sane(in.ias), 0.0, 999.0);
    double speed_y = -(Sane(in.selected_ias) - speed) * kSpeedBugUnits;
    if (std::fabs(speed_y) > kSpeedBugLimit) {
        if (in.mach_hold) std::snprintf(text, sizeof text, "%.2f", std::clamp(Sane(in.selected_mach), 0.0, 9.99));
        else std::snprintf(text, sizeof text, "%3.0f", std::clamp(Sane(in.selected_ias), 0.0, 999.0));
        PinnedValue(g, fonts.tape, text, kSpeedTapeLeft, kSpeedTapeRight, speed_y < 0);
    }

    // 3. Selected altitude beyond the bug's reach.
    double altitude = std::clamp(Sane(in.altitude), -9999.0, 99999.0);
    double altitude_y = (altitude - Sane(in.selected_altitude)) * kFootUnits;
    if (std::fabs(altitude_y) > kAltitudeBugLimit) {
        std::snprintf(text, sizeof text, "%5.0f", std::clamp(Sane(in.selected_altitude), -9999.0, 99999.0));
        PinnedValue(g, fonts.tape, text, kAltTapeLeft, kAltTapeRight, altitude_y < 0);
    }
}
}  // namespace

// [SECTION] Vertical speed
namespace {
// Design units above (negative) the scale's centre: 40 for the first 1000
// fpm, 20 for the next, 20 for the 4000 up to 6000, nothing beyond.
double VsOffset(double fpm) {
    double a = std::min(std::fabs(fpm), 6000.0);
    double units = a <= 1000 ? a / 1000 * 40 : a <= 2000 ? 40 + (a - 1000) / 1000 * 20 : 60 + (a - 2000) / 4000 * 20;
    return fpm >= 0 ? -units : units;
}

void DrawVerticalSpeed(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in, const Fonts& fonts) {
    ToBall(surface);
    double vs = std::clamp(Sane(in.vertical_speed), -99999.0, 99999.0);
    // 1. Scale with its marks at 1000, 2000 and 6000 fpm.
    gdi::Pen white(palette::kWhite, 1.0f);
    g.DrawLine(white, kVsScaleLeft, 0, kVsScaleLeft + 5, 0);
    for (int fpm : {1000, 2000, 6000}) {
        char text[16];
        std::snprintf(text, sizeof text, "%d", fpm / 1000);
        for (int sign : {1, -1}) {
            float y = F(VsOffset(sign * fpm));
            g.DrawLine(white, kVsScaleLeft, y, kVsScaleLeft + 3, y);
            g.DrawText(text, fonts.small, palette::kWhite, kVsScaleLeft + 4, y, gdi::TextAlign::Left,
                       gdi::TextBaseline::Middle);
        }
    }
    // 2. Needle from the right edge to the value, green.
    gdi::Pen needle(palette::kGreen, 2.0f);
    g.DrawLine(needle, kVsScaleRight, 0, kVsScaleLeft, F(VsOffset(vs)));
    // 3. Beyond 100 fpm the value in hundreds, above the scale in a climb,
    // below it in a descent, as this cockpit's crews read it.
    if (std::fabs(vs) > 100) {
        int hundreds = std::clamp(static_cast<int>(std::lround(std::fabs(vs) / 100)), 0, 99);
        Text(g, fonts.small, palette::kGreen, kVsScaleLeft, vs > 0 ? -92 : 82, gdi::TextAlign::Left, "%02d", hundreds);
    }
}
}  // namespace

// [SECTION] Mode annunciator
namespace {
void DrawModes(gdi::Graphics& g, const AttitudeInputs& in, const Fonts& fonts) {
    // 1. The column lines.
    gdi::Pen divider(palette::kWhite, 1.0f);
    for (int x : kModeDividers) g.DrawLine(divider, F(x), kModeTop, F(x), kModeBottom);
    const float row1 = kModeTop, row2 = kModeTop + kModeRowStep;

    // 2. Speed column: Mach hold before IAS hold.
    if (in.mach_hold) g.DrawText("MACH", fonts.mode, kA320SpeedModeColour, kSpeedColumnX, row1, gdi::TextAlign::Centre);
    else if (in.ias_hold)
        g.DrawText("SPEED", fonts.mode, kA320SpeedModeColour, kSpeedColumnX, row1, gdi::TextAlign::Centre);

    // 3. Pitch column. VNAV first: "DES" while it descends, "ALT" while it
    // holds a level, else "CLB". Without VNAV the simulator's altitude hold
    // flies the selected rate to the selected altitude: shown as "V/S" with
    // the rate while that is 200 fpm or more either way (the altitude armed
    // below it), "ALT" once level.
    double selected_vs = Sane(in.selected_vs);
    bool vs_mode = (in.altitude_hold || in.vs_hold) && std::fabs(selected_vs) >= kVsModeThreshold;
    if (in.vnav_on) {
        bool level = in.altitude_hold && std::fabs(Sane(in.vertical_speed)) < kVsModeThreshold;
        const char* text = in.vnav_descent ? "DES" : level ? "ALT" : "CLB";
        g.DrawText(text, fonts.mode, palette::kGreen, kPitchColumnX, row1, gdi::TextAlign::Centre);
    } else if (vs_mode) {
        Text(g, fonts.mode, palette::kGreen, kPitchColumnX, row1, gdi::TextAlign::Centre,
             selected_vs > 0 ? "V/S +%4.0f" : "V/S %4.0f", std::clamp(selected_vs, -9999.0, 9999.0));
        if (in.altitude_hold)
            g.DrawText("ALT", fonts.mode, palette::kCyan, kPitchColumnX, row2, gdi::TextAlign::Centre);
    } else if (in.altitude_hold) {
        g.DrawText("ALT", fonts.mode, palette::kGreen, kPitchColumnX, row1, gdi::TextAlign::Centre);
    }

    // 4. Roll column: the approach once the localizer is captured, then
    // LNAV (this cockpit's managed "NAV"), then the autopilot's own NAV
    // hold by its source, then heading. Armed below: the approach before
    // capture, or LNAV waiting on a route while the heading is held.
    const char* roll = nullptr;
    if (in.approach_hold && in.loc_captured) roll = "APP";
    else if (in.lnav_on) roll = "NAV";
    else if (in.nav_hold) roll = in.gps_drives_nav ? "GPS NAV" : "NAV";
    else if (in.heading_hold) roll = "HDG";
    if (roll != nullptr) g.DrawText(roll, fonts.mode, palette::kGreen, kRollColumnX, row1, gdi::TextAlign::Centre);
    if (in.approach_hold && !in.loc_captured)
        g.DrawText("APP", fonts.mode, palette::kCyan, kRollColumnX, row2, gdi::TextAlign::Centre);
    else if (!in.lnav_on && !in.nav_hold && in.heading_hold && in.plan_loaded)
        g.DrawText("NAV", fonts.mode, palette::kCyan, kRollColumnX, row2, gdi::TextAlign::Centre);

    // 5. Engagement: autopilot, flight director, autothrust, each on its row.
    if (in.ap_master) g.DrawText("AP1", fonts.mode, palette::kWhite, kEngagementX, row1);
    if (in.fd_switch) g.DrawText("1FD", fonts.mode, palette::kWhite, kEngagementX, row2);
    if (in.autothrottle) g.DrawText("A/THR", fonts.mode, palette::kWhite, kEngagementX, row2 + kModeRowStep);
}
}  // namespace

// [SECTION] The page
void DrawA320EadiFrom(const DisplaySurface& surface, const AttitudeInputs& raw) {
    // A broken sample reads 0 or its limit, never a runaway text.
    const AttitudeInputs in = PlausibleAttitudeInputs(raw);
    gdi::Graphics& g = *surface.graphics;
    Fonts fonts;
    const BallFrame ball = A320Ball();

    // 1. Flight director bars move once a frame.
    StepFlightDirector(in);

    // 2. Ball, director, path vector; the warning over it. This cockpit's
    // director is always the cross bars, whatever `EadiDualCue` says.
    DrawAttitudeBall(surface, ball, in);
    DrawAttitudeWarning(surface, ball, in);

    // 3. Aircraft symbol and bank scale; tapes, bugs; ILS; heading; V/S.
    DrawAircraftSymbol(surface, ball, in);
    DrawTapes(g, surface, in, fonts);
    ToBall(surface);
    DrawIlsScales(surface, in, 72, 75);
    DrawHeadingStrip(surface, fonts.small, in, kHeadingStripY, kHeadingHalfWidth, palette::kSkyBlue);
    DrawVerticalSpeed(g, surface, in, fonts);
    ToBall(surface);

    // 4. Mode annunciator across the top.
    DrawModes(g, in, fonts);

    // 5. Mach under the speed tape: from Mach 0.5 up, where this cockpit
    // starts showing it.
    double mach = Sane(in.mach);
    if (mach > kMachShownAbove) {
        if (mach < 1) Text(g, fonts.tape, palette::kGreen, -150, 120, gdi::TextAlign::Left, ".%2.0f", mach * 100);
        else Text(g, fonts.tape, palette::kGreen, -150, 120, gdi::TextAlign::Left, "%.2f", std::min(mach, 9.99));
    }

    // 6. Barometric setting under the altitude tape: "STD" boxed, else the
    // QNH in hectopascals and inches.
    double baro = Sane(in.baro_mb);
    if (baro >= kStdLow && baro < kStdHigh) {
        gdi::Pen box(palette::kYellow, 1.0f);
        g.DrawRectangle(box, 92, 101, 28, 13);
        g.DrawText("STD", fonts.tape, palette::kCyan, 106, 102, gdi::TextAlign::Centre);
    } else {
        g.DrawText("QNH", fonts.small, palette::kWhite, 92, 102);
        Text(g, fonts.tape, palette::kCyan, 118, 102, gdi::TextAlign::Left, "%4.0f", std::clamp(baro, 0.0, 9999.0));
        Text(g, fonts.small, palette::kCyan, 92, 114, gdi::TextAlign::Left, "%2.2f IN",
             std::clamp(Sane(in.baro_inches), 0.0, 99.0));
    }

    // 7. Radio altitude below its limit, over the altitude tape.
    double ra = Sane(in.radio_altitude);
    if (ra < kRadioAltitudeShownBelow) {
        g.DrawText("RA", fonts.small, palette::kGreen, 62, -113);
        Text(g, fonts.tape, palette::kGreen, 81, -114, gdi::TextAlign::Left, "%5.0f", std::max(ra, -9999.0));
    }

    // 8. Station data with a signal: ident, frequency, DME distance.
    if (in.nav_signal) {
        g.DrawText(in.nav_ident.data(), fonts.tape, palette::kMagenta, -150, 84);
        Text(g, fonts.small, palette::kMagenta, -150, 95, gdi::TextAlign::Left, "%3.2f",
             std::clamp(Sane(in.nav_frequency), 0.0, 999.0));
        if (in.dme > 0)
            Text(g, fonts.small, palette::kMagenta, -150, 105, gdi::TextAlign::Left, "%2.1f NM",
                 std::min(Sane(in.dme), 9999.0));
    }

    // 9. Marker letter on its colour.
    if (in.marker >= 1 && in.marker <= 3) {
        static constexpr const char* kLetters[] = {"O", "M", "I"};
        size_t which = static_cast<size_t>(in.marker - 1);
        gdi::SolidBrush fill(kMarkerColours[which]);
        g.FillRectangle(fill, static_cast<int>(kMarkerX), static_cast<int>(kMarkerY), kMarkerSize, kMarkerSize);
        g.DrawText(kLetters[which], fonts.small, palette::kBlack, kMarkerX + kMarkerSize / 2.0f,
                   kMarkerY + kMarkerSize / 2.0f, gdi::TextAlign::Centre, gdi::TextBaseline::Middle);
    }
    ResetToDesign(surface);
}

void DrawA320Eadi(const DisplaySurface& surface) { DrawA320EadiFrom(surface, ReadAttitudeInputs()); }
