// c17_attitude.cpp: the C-17 ATT page. One immediate-mode pass: corner
// data, the ball clipped to its outline and turned by the bank, ladder,
// flight director and flight path vector, the warning, aircraft symbol and
// bank scale, the two tapes with their bugs, ILS scales, marker, heading
// strip, and the mode boxes last so that nothing covers them.
//
// Corner data, title and mode boxes stand in canvas coordinates; the rest in
// design units about the attitude centre (kC17AttCentreX, kC17AttCentreY).
#include "display/c17_attitude.h"

#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/sim_state.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
constexpr float kSpeedStripLeft = -123;     // the left strip, about the centre
constexpr float kSpeedStripRight = -88;
constexpr float kAltStripLeft = 86;         // the right strip
constexpr float kAltStripRight = 123;
constexpr float kStripHalfHeight = 75;
constexpr float kHeadingStripTop = 120;     // ticks from here, numbers under them at 229 on the canvas
constexpr float kHeadingHalfWidth = 55;
constexpr float kLocalizerY = 70;           // the localizer scale along the ball's foot
constexpr float kGlideslopeX = 75;
constexpr int kModeBoxWidth = 43;
constexpr int kModeBoxHeight = 11;
constexpr double kTrendSeconds = 10;        // the trend arrow's look-ahead

float F(double v) { return static_cast<float>(v); }

ARGB Opaque(const ProfileColour& c) {
    auto byte = [](int v) { return static_cast<ARGB>(std::clamp(v, 0, 255)); };
    return 0xFF000000u | byte(c.red) << 16 | byte(c.green) << 8 | byte(c.blue);
}

template <typename... Args>
void Text(gdi::Graphics& g, const gdi::Font& font, ARGB colour, double x, double y, const char* format, Args... args) {
    char text[48];
    std::snprintf(text, sizeof text, format, args...);
    g.DrawText(text, font, colour, F(x), F(y));
}

// One mode box on the canvas: black, white outline, its text centred.
void ModeBox(gdi::Graphics& g, const gdi::Font& font, int x, int y, const char* text, ARGB colour) {
    gdi::SolidBrush black(palette::kBlack);
    gdi::Pen outline(palette::kWhite, 1.0f);
    g.FillRectangle(black, x, y, kModeBoxWidth, kModeBoxHeight);
    g.DrawRectangle(outline, x, y, kModeBoxWidth, kModeBoxHeight);
    g.DrawText(text, font, colour, F(x + kModeBoxWidth / 2.0), F(y + kModeBoxHeight / 2.0), gdi::TextAlign::Centre,
               gdi::TextBaseline::Middle);
}

double Wrap360(double degrees) {
    double d = std::fmod(degrees, 360.0);
    return d < 0 ? d + 360 : d;
}
}  // namespace

void DrawC17AttitudeFrom(const DisplaySurface& surface, const AttitudeInputs& raw) {
    // A broken sample reads 0 or its limit, never a runaway text.
    const AttitudeInputs in = PlausibleAttitudeInputs(raw);
    gdi::Graphics& g = *surface.graphics;
    gdi::Font corner(kArialFont, 9, FontStyleBold);
    gdi::Font small(kArialFont, 8, FontStyleBold);
    gdi::Font tape_label(kArialFont, 8, FontStyleBold);
    gdi::Font readout(kArialFont, 11, FontStyleBold);
    const BallFrame ball{kC17AttCentreX, kC17AttCentreY, Opaque(g_profile.C17MfdSky), Opaque(g_profile.C17MfdGrnd)};
    const ARGB white = palette::kWhite, green = palette::kGreen, cyan = palette::kSkyBlue;

    // 1. Flight director bars move once a frame.
    StepFlightDirector(in);

    // 2. Ball, ladder, director and path vector; the warning over them.
    DrawAttitudeBall(surface, ball, in);
    DrawAttitudeWarning(surface, ball, in);

    // 3. Aircraft symbol, bank scale and pointer, slip bar.
    DrawAircraftSymbol(surface, ball, in);

    // 4. Tapes with their bugs and rolling readouts; the trend on option.
    double trend = g_config.DispC17SpdTrend != 0 ? g_tick.speed_trend * 18 * kTrendSeconds : 0;
    DrawSpeedTape(surface, ball, in, {kSpeedStripLeft, kSpeedStripRight, kStripHalfHeight, 0}, tape_label, readout,
                  trend);
    DrawAltitudeTape(surface, ball, in, {kAltStripLeft, kAltStripRight, kStripHalfHeight, 0}, tape_label, small);

    // 5. ILS scales with a NAV signal.
    MoveToBall(surface, ball);
    DrawIlsScales(surface, in, kLocalizerY, kGlideslopeX);

    // 6. Heading strip, its bug in cyan; the marker over its top.
    DrawHeadingStrip(surface, corner, in, kHeadingStripTop, kHeadingHalfWidth, cyan);
    if (in.marker >= 1 && in.marker <= 3) {
        static constexpr const char* kLetters[] = {"O", "M", "I"};
        static constexpr ARGB kBrushes[] = {palette::kRed, palette::kSkyBlue, palette::kWhite};
        gdi::SolidBrush brush(kBrushes[in.marker - 1]);
        float top = kHeadingStripTop - 19;
        g.FillEllipse(brush, -7, static_cast<int>(top), 14, 12);
        g.DrawText(kLetters[in.marker - 1], corner, palette::kBlack, 0, top + 6, gdi::TextAlign::Centre,
                   gdi::TextBaseline::Middle);
    }

    // 7. Title and corner data on the canvas.
    ResetToDesign(surface);
    g.DrawText("ATT", small, cyan, 180, 10);
    Text(g, corner, white, 0, 188, "GS %3.0f", std::clamp(in.ground_speed, 0.0, 999.0));
    Text(g, corner, white, 0, 198, "M  .%02.0f", std::clamp(in.mach * 100, 0.0, 99.0));
    if (in.nav_signal) {
        Text(g, corner, white, 40, 178, "%03.0f", Wrap360(in.course));
        g.DrawText("V1", corner, white, 40, 188);
        Text(g, corner, white, 40, 198, "D%.1f", std::clamp(in.dme, 0.0, 999.0));
        g.DrawText(in.nav_ident.data(), corner, white, 40, 208);
    }
    Text(g, corner, white, 200, 190, "VV %02.0f", std::clamp(in.vertical_speed / 100, -99.0, 99.0));
    if (in.radio_altitude < kRadioAltitudeShownBelow) Text(g, corner, white, 200, 200, "RA %4.0f", in.radio_altitude);
    if (in.radio_altitude < 2000) Text(g, corner, white, 200, 210, "DH %4.0f", in.decision_height);
    Text(g, corner, white, 200, 220, "%1.1f G", std::clamp(in.g_load, -9.9, 9.9));

    // 8. Mode boxes: speed, pitch with the armed altitude under it, roll
    // with the armed mode under it. The first that holds takes a box.
    char text[24];
    if (in.ias_hold) {
        std::snprintf(text, sizeof text, "IAS %3.0f", in.selected_ias);
        ModeBox(g, corner, 10, 4, text, green);
    } else if (in.mach_hold) {
        std::snprintf(text, sizeof text, "MACH %.2f", in.selected_mach);
        ModeBox(g, corner, 10, 4, text, green);
    }
    std::snprintf(text, sizeof text, "ALT %03.0f", std::clamp(in.selected_altitude / 100, 0.0, 999.0));
    bool glideslope = in.approach_hold && in.gs_captured;
    if (glideslope || in.vnav_on) {
        ModeBox(g, corner, 200, 4, glideslope ? "G/S1 CAP" : "VNAV", green);
        if (in.altitude_hold) ModeBox(g, corner, 200, 15, text, white);
    } else if (in.altitude_hold) {
        ModeBox(g, corner, 200, 4, text, green);
    }
    std::snprintf(text, sizeof text, "HDG %03.0f", Wrap360(in.heading_bug));
    if (in.loc_captured || in.lnav_on) {
        ModeBox(g, corner, 10, 219, in.loc_captured ? "LOC1 CAP" : "LNAV", green);
        if (in.approach_hold) ModeBox(g, corner, 10, 230, "APPR", white);
        else if (!in.loc_captured && in.heading_hold) ModeBox(g, corner, 10, 230, text, white);
    } else if (in.heading_hold) {
        ModeBox(g, corner, 10, 219, text, green);
    }
    ResetToDesign(surface);
}

void DrawC17Attitude(const DisplaySurface& surface) { DrawC17AttitudeFrom(surface, ReadAttitudeInputs()); }
