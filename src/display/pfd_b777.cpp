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
//   [SECTION] Tapes
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

// [SECTION] Tapes
namespace {
void DrawSpeedTape(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in, const Fonts& fonts) {
    ToBall(surface);
    // 1. Strip and clip.
    gdi::SolidBrush tape(Opaque(g_profile.B777PFDTape));
    g.FillRectangle(tape, kSpeedTapeLeft, -kTapeHalfHeight, kSpeedTapeRight - kSpeedTapeLeft, 2 * kTapeHalfHeight);
    g.SetClipRect(kSpeedTapeLeft, -kTapeHalfHeight, kSpeedTapeRight - kSpeedTapeLeft, 2 * kTapeHalfHeight);

    // 2. Ticks every 10 knots within 50 of the speed, numbers every 20.
    gdi::Pen tick(palette::kWhite, 1.5f);
    double speed = std::max(0.0, in.ias);
    int first = static_cast<int>(std::floor((speed - 50) / 10)) * 10;
    for (int knots = std::max(0, first); knots <= speed + 50; knots += 10) {
        float y = F(-(knots - speed) * kKnotUnits);
        g.DrawLine(tick, kSpeedTapeRight - 6, y, kSpeedTapeRight, y);
        if (knots % 20 == 0) {
            char text[16];
            std::snprintf(text, sizeof text, "%3d", knots);
            g.DrawText(text, fonts.tape, palette::kWhite, kSpeedTapeRight - 8, y, gdi::TextAlign::Right,
                       gdi::TextBaseline::Middle);
        }
    }
    g.ResetClip();

    // 3. Speed bug, pinned at the strip's ends.
    gdi::Pen bug(palette::kSkyBlue, 2.0f);
    double bug_y = std::clamp(-(in.selected_ias - speed) * kSpeedBugUnits, -67.0, 67.0);
    g.DrawLine(bug, -82, F(bug_y - 4), -85, F(bug_y));
    g.DrawLine(bug, -85, F(bug_y), -82, F(bug_y + 4));

    // 4. Pointer box with the speed.
    const GpPoint box[] = {{-108, -9}, {-84, -9}, {-84, -4}, {-78, 0}, {-84, 4},  {-84, 9},
                           {-108, 9},  {-108, -9}, {-108, -9}, {-108, -9}, {-108, -9}};
    gdi::SolidBrush black(palette::kBlack);
    gdi::Pen outline(palette::kWhite, 1.0f);
    g.FillPolygon(black, box, 11);
    g.DrawPolygon(outline, box, 11);
    DrawSpeedDrum(surface, fonts.big, palette::kWhite, -86, 9, -9, 9, speed);
}

void DrawAltitudeTape(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in, const Fonts& fonts) {
    ToBall(surface);
    // 1. Strip and clip.
    gdi::SolidBrush tape(Opaque(g_profile.B777PFDTape));
    g.FillRectangle(tape, kAltTapeLeft, -kTapeHalfHeight, kAltTapeRight - kAltTapeLeft, 2 * kTapeHalfHeight);
    g.SetClipRect(kAltTapeLeft, -kTapeHalfHeight, kAltTapeRight - kAltTapeLeft, 2 * kTapeHalfHeight);

    // 2. Ticks every 100 feet from 1199 below to 1199 above, labels at 200s.
    gdi::Pen tick(palette::kWhite, 1.5f);
    double altitude = in.altitude;
    long first = static_cast<long>(std::ceil((altitude - 1199) / 100));
    long last = static_cast<long>(std::floor((altitude + 1199) / 100));
    for (long hundreds = first; hundreds <= last; ++hundreds) {
        long feet = hundreds * 100;
        float y = F(-(feet - altitude) * kFootUnits);
        g.DrawLine(tick, kAltTapeLeft, y, kAltTapeLeft + 5, y);
        if (feet % 200 == 0) {
            char text[16];
            std::snprintf(text, sizeof text, "%5ld", feet);
            g.DrawText(text, fonts.small, palette::kWhite, kAltTapeLeft + 7, y, gdi::TextAlign::Left,
                       gdi::TextBaseline::Middle);
        }
    }
    g.ResetClip();

    // 3. Altitude bug: green while the hold is on.
    gdi::Pen bug(in.altitude_hold ? palette::kGreen : palette::kSkyBlue, 2.0f);
    double bug_y = std::clamp((altitude - in.selected_altitude) * kFootUnits, -65.0, 65.0);
    g.DrawLine(bug, 83, F(bug_y - 4), 80, F(bug_y));
    g.DrawLine(bug, 80, F(bug_y), 83, F(bug_y + 4));

    // 4. Pointer box with the altitude.
    const GpPoint box[] = {{78, 0}, {84, -5}, {84, -9}, {122, -9}, {122, 9}, {84, 9}, {84, 5}, {78, 0}, {78, 0}};
    gdi::SolidBrush black(palette::kBlack);
    gdi::Pen outline(palette::kWhite, 1.0f);
    g.FillPolygon(black, box, 9);
    g.DrawPolygon(outline, box, 9);
    DrawAltitudeDrum(surface, fonts.tape, palette::kWhite, 120, 14, -9, 9, altitude);
}
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
void DrawB777PfdFrom(const DisplaySurface& surface, const AttitudeInputs& in) {
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
    DrawSpeedTape(g, surface, in, fonts);
    DrawAltitudeTape(g, surface, in, fonts);
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
