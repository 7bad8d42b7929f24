// pfd_b777.cpp: the B777_PFD_NB page. One immediate-mode pass over the
// canvas, in this order: text rows, the ball (sky, ground, ladder) clipped to
// its outline and turned by the bank, flight director, flight path vector,
// warnings, aircraft symbol and bank scale, the two tapes and their bugs,
// ILS deviation, marker, heading strip, vertical speed.
//
// Every position below is in design units about the ball's centre. The
// ball, aircraft symbol, warnings, rolling readouts, heading strip and ILS
// scales are the attitude displays' shared pieces (attitude.h).
//
// Index:
//   [SECTION] Vertical speed
//   [SECTION] The page
#include "display/pfd_b777.h"

#include "frame/aircraft_profile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {
constexpr int kHeadingStripY = 98;                    // top of the heading strip
constexpr int kHeadingHalfWidth = 55;
constexpr int kSpeedTapeLeft = -108;                  // speed strip, x
constexpr int kSpeedTapeRight = -78;
constexpr int kAltTapeLeft = 78;
constexpr int kAltTapeRight = 122;
constexpr int kTapeHalfHeight = 80;
constexpr int kVsScaleLeft = 130;
constexpr int kVsScaleRight = 145;
constexpr ARGB kMarkerOuter = 0xFF18C2E7;
constexpr ARGB kMarkerMiddle = 0xFFE9B73E;
constexpr ARGB kMarkerInner = 0xFFDEE6E9;

float F(double v) { return static_cast<float>(v); }

ARGB Opaque(const ProfileColour& c) {
    auto byte = [](int v) { return static_cast<ARGB>(std::clamp(v, 0, 255)); };
    return 0xFF000000u | byte(c.red) << 16 | byte(c.green) << 8 | byte(c.blue);
}

struct Fonts {
    gdi::Font small{kArialFont, 9, FontStyleBold};
    gdi::Font mode{kArialFont, 11, FontStyleBold};
    gdi::Font tape{kArialFont, 10, FontStyleBold};
    gdi::Font big{kArialFont, 13, FontStyleBold};
};

template <typename... Args>
void Text(gdi::Graphics& g, const gdi::Font& font, ARGB colour, double x, double y, const char* format, Args... args) {
    char text[48];
    std::snprintf(text, sizeof text, format, args...);
    g.DrawText(text, font, colour, F(x), F(y));
}

BallFrame B777Ball() {
    return {kB777BallX, kB777BallY, Opaque(g_profile.B777PFDSky), Opaque(g_profile.B777PFDGrnd)};
}

// The whole world moved to the ball's centre.
void ToBall(const DisplaySurface& surface) { MoveToBall(surface, B777Ball()); }
}  // namespace

// [SECTION] Vertical speed
namespace {
// Design units above (negative) the scale's centre for a vertical speed.
double VsOffset(double fpm) {
    double a = std::min(std::fabs(fpm), 6000.0);
    double units = a <= 1000 ? a / 1000 * 40 : a <= 2000 ? 40 + (a - 1000) / 1000 * 20 : 60 + (a - 2000) / 4000 * 20;
    return fpm >= 0 ? -units : units;
}

void DrawVerticalSpeed(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in, const Fonts& fonts) {
    ToBall(surface);
    // 1. Scale with its marks at 1000, 2000 and 6000 feet a minute.
    gdi::Pen white(palette::kWhite, 1.0f);
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
    // 2. Pointer from the right edge to the value.
    gdi::Pen pointer(palette::kWhite, 2.0f);
    g.DrawLine(pointer, kVsScaleRight, 0, kVsScaleLeft, F(VsOffset(in.vertical_speed)));
    // 3. The value in hundreds beyond 100 feet a minute.
    if (std::fabs(in.vertical_speed) > 100) {
        int rounded = static_cast<int>(std::lround(in.vertical_speed / 100)) * 100;
        rounded = std::clamp(rounded, -9900, 9900);
        Text(g, fonts.small, palette::kWhite, 123, in.vertical_speed > 0 ? -83 : 73, "%4d", std::abs(rounded));
    }
}
}  // namespace

// [SECTION] The page
void DrawB777PfdFrom(const DisplaySurface& surface, const AttitudeInputs& raw) {
    // A broken sample reads 0 or its limit, never a runaway text.
    const AttitudeInputs in = PlausibleAttitudeInputs(raw);
    gdi::Graphics& g = *surface.graphics;
    Fonts fonts;

    const BallFrame ball = B777Ball();

    // 1. Flight director bars move once a frame.
    StepFlightDirector(in);

    // 2. Ball, director, path vector; the warning over it.
    DrawAttitudeBall(surface, ball, in);
    DrawAttitudeWarning(surface, ball, in);

    // 3. Aircraft symbol and bank scale; tapes, bugs; ILS; heading; V/S.
    DrawAircraftSymbol(surface, ball, in);
    const ARGB tape = Opaque(g_profile.B777PFDTape);
    DrawSpeedTape(surface, ball, in, {kSpeedTapeLeft, kSpeedTapeRight, kTapeHalfHeight, tape}, fonts.tape, fonts.big, 0);
    DrawAltitudeTape(surface, ball, in, {kAltTapeLeft, kAltTapeRight, kTapeHalfHeight, tape}, fonts.small, fonts.tape);
    ToBall(surface);
    DrawIlsScales(surface, in, 72, 75);
    DrawHeadingStrip(surface, fonts.small, in, kHeadingStripY, kHeadingHalfWidth, palette::kMagenta);
    DrawVerticalSpeed(g, surface, in, fonts);
    ToBall(surface);

    // 5. Speed mode, then roll, then pitch, on the top row; armed modes
    // in white below.
    if (in.mach_hold) g.DrawText("MACH", fonts.small, palette::kGreen, -70, -130);
    else if (in.ias_hold) g.DrawText("SPD", fonts.small, palette::kGreen, -70, -130);
    if (in.lnav_on) g.DrawText("LNAV", fonts.small, palette::kGreen, -18, -130);
    else if (in.heading_hold) g.DrawText("HDG SEL", fonts.small, palette::kGreen, -18, -130);
    if (!in.lnav_on && in.heading_hold && in.plan_loaded)
        g.DrawText("LNAV", fonts.small, palette::kWhite, -18, -118);
    bool vnav_shown = false;
    if (in.approach_hold && in.gs_captured) g.DrawText("APP", fonts.small, palette::kGreen, 27, -130);
    else if (in.vnav_on) {
        g.DrawText(in.vnav_path ? "VNAV PTH" : "VNAV SPD", fonts.small, palette::kGreen, 27, -130);
        vnav_shown = true;
    } else if (in.altitude_hold) g.DrawText("ALT", fonts.small, palette::kGreen, 27, -130);
    if (!vnav_shown && in.plan_loaded && !(in.approach_hold && in.gs_captured))
        g.DrawText("VNAV", fonts.small, palette::kWhite, 27, -118);

    // 6. Autopilot row.
    if (in.ap_master) g.DrawText("A/P", fonts.mode, palette::kGreen, -14, -90);
    else if (in.fd_switch) g.DrawText("FLT DIR", fonts.mode, palette::kGreen, -29, -90);

    // 7. Selected speed and altitude above the tapes.
    if (in.mach_hold) Text(g, fonts.tape, palette::kMagenta, -110, -118, "%.2f", in.selected_mach);
    else Text(g, fonts.tape, palette::kMagenta, -110, -118, "%3.0f", in.selected_ias);
    Text(g, fonts.tape, palette::kMagenta, 80, -118, "%5.0f", in.selected_altitude);

    // 8. Mach under the speed tape above Mach 0.4.
    if (in.mach > 0.4) {
        if (in.mach < 1) Text(g, fonts.tape, palette::kWhite, -110, 100, ".%3.0f", in.mach * 1000);
        else Text(g, fonts.tape, palette::kWhite, -110, 100, "%.3f", in.mach);
    }

    // 9. Barometric setting, and the minimums reference.
    if (in.baro_mb >= 1013 && in.baro_mb < 1013.4) {
        g.DrawText("STD", fonts.tape, palette::kGreen, 85, 100);
    } else {
        Text(g, fonts.small, palette::kGreen, 85, 100, "%2.2f IN", in.baro_inches);
        Text(g, fonts.small, palette::kGreen, 85, 110, "%4.0f HPA", in.baro_mb);
    }
    if (in.decision_height > 0) {
        g.DrawText("BARO", fonts.small, palette::kGreen, 45, 80);
        Text(g, fonts.small, palette::kGreen, 45, 89, "%4.0f", in.decision_height);
    }

    // 10. Radio altitude below its limit.
    if (in.radio_altitude < kRadioAltitudeShownBelow)
        Text(g, fonts.tape, palette::kWhite, 40, -100, "%4.0f", in.radio_altitude);

    // 11. Station data with a signal.
    if (in.nav_signal) {
        Text(g, fonts.small, palette::kWhite, -70, -100, "%s/%3.0f", in.nav_ident.data(), in.course);
        Text(g, fonts.small, palette::kWhite, -108, -90, "DME %3.1f", in.dme);
    }

    // 12. Marker beacon box.
    if (in.marker >= 1 && in.marker <= 3) {
        static constexpr const char* kLetters[] = {"OM", "MM", "IM"};
        static constexpr ARGB kColours[] = {kMarkerOuter, kMarkerMiddle, kMarkerInner};
        gdi::Pen pen(kColours[in.marker - 1], 1.5f);
        g.DrawRectangle(pen, 50, -80, 22, 12);
        g.DrawText(kLetters[in.marker - 1], fonts.small, kColours[in.marker - 1], 61, -80, gdi::TextAlign::Centre);
    }
    ResetToDesign(surface);
}

void DrawB777Pfd(const DisplaySurface& surface) { DrawB777PfdFrom(surface, ReadAttitudeInputs()); }
