// attitude.cpp: the pieces every attitude display draws the same way. All
// positions are design units about the ball's centre of the display that
// calls them; every piece sets its own transform, so the order of the calls
// is the page's drawing order and nothing else.
//
// Index:
//   [SECTION] Inputs
//   [SECTION] Warnings and flight director
//   [SECTION] The ball
//   [SECTION] Aircraft symbol and warning
//   [SECTION] Rolling readouts
//   [SECTION] Tapes
//   [SECTION] Heading strip and ILS scales
#include "display/attitude.h"

#include "display/display_state.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/lnav_state.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
constexpr int kStallToken = 67;
constexpr int kOverspeedToken = 68;
constexpr int kPositionToken = 332;

float F(double v) { return static_cast<float>(v); }
// The advance of one digit: Arial's (and its stand-ins') figures are 0.556 em wide.
float DigitWidth(const gdi::Font& font) { return std::ceil(font.size() * 0.556f); }
// What a text cell leaves on each side of its glyphs: a sixth of the em.
float TextPadding(const gdi::Font& font) { return font.size() / 6.0f; }
// A drum's window: black, outlined, a little taller than the pointer box.
void DrumWindow(gdi::Graphics& g, float left, float width, float half_height) {
    gdi::SolidBrush black(palette::kBlack);
    gdi::Pen outline(palette::kWhite, 1.0f);
    g.FillRectangle(black, static_cast<int>(std::lround(left)), static_cast<int>(std::lround(-half_height)),
                    static_cast<int>(std::lround(width)), static_cast<int>(std::lround(2 * half_height)));
    g.DrawRectangle(outline, static_cast<int>(std::lround(left)), static_cast<int>(std::lround(-half_height)),
                    static_cast<int>(std::lround(width)), static_cast<int>(std::lround(2 * half_height)));
}
constexpr float kDrumWindowHalfHeight = 13;  // design units above and below the box's centre
int I(double v) { return static_cast<int>(std::lround(v)); }

// The value's move towards a target by at most `step`; the target itself
// when nearer than that.
double StepToward(double value, double target, double step) {
    if (!std::isfinite(target)) return value;
    if (!std::isfinite(value)) return target;
    if (std::fabs(target - value) <= step) return target;
    return value + (target > value ? step : -step);
}
}  // namespace

// [SECTION] Inputs
AttitudeInputs ReadAttitudeInputs() {
    AttitudeInputs in;
    // Tick samples
    in.pitch = g_sim.pitch.now;
    in.bank = g_sim.bank.now;
    in.ias = g_sim.ias_smoothed;
    in.mach = g_sim.mach.now;
    in.altitude = g_sim.indicated_altitude.now;
    in.vertical_speed = g_sim.vertical_speed.now;
    in.ground_speed = g_sim.ground_speed;
    in.heading = g_sim.heading_magnetic.now;
    in.radio_altitude = g_sim.radio_altitude;
    in.drift = g_sim.drift_angle;
    in.baro_mb = g_sim.barometer_mb.now;
    in.baro_inches = g_sim.barometer_inches;
    in.selected_ias = g_sim.autopilot_airspeed.now;
    in.selected_mach = g_sim.autopilot_mach.now;
    in.selected_altitude = g_sim.autopilot_altitude.now;
    in.selected_vs = g_sim.autopilot_vertical_speed.now;
    in.heading_bug = g_sim.heading_bug.now;
    in.course = g_sim.nav1_obs;
    in.ap_master = g_sim.autopilot_master != 0;
    in.ias_hold = g_sim.speed_hold != 0;
    in.mach_hold = g_sim.mach_hold != 0;
    in.altitude_hold = g_sim.altitude_hold != 0;
    in.heading_hold = g_sim.heading_hold != 0;
    in.nav_hold = g_sim.nav_hold != 0;
    in.approach_hold = g_sim.approach_hold != 0;
    in.autothrottle = g_sim.autothrottle_armed != 0;
    in.fd_pitch = g_sim.fd_pitch.now;
    in.fd_bank = g_sim.fd_bank.now;
    in.loc_needle = g_sim.nav1_needle;
    in.gs_needle = g_sim.nav1_gs_needle.now;
    in.dme = g_sim.dme1_distance;
    in.marker = g_sim.marker_beacon;
    in.phase = g_tick.phase;
    // Guidance
    in.lnav_on = g_lnav.LnavOn != 0;
    in.vnav_on = g_vnav.VnavOn != 0;
    in.vnav_path = g_vnav.PathDeviationValid != 0;
    in.vnav_descent = g_vnav.VnavOn != 0 && g_sim.vertical_speed.now < -200;
    in.plan_loaded = g_plan.context.ActiveLastRow > 0;
    // What only the simulator knows, read at draw time
    in.fd_switch = ReadTokenFlag(Token::FD_SWITCH) != 0;
    in.nav_signal = ReadToken(Token::NAV1_SIGNAL) > 0;
    int flags = ReadTokenFlag(Token::NAV1_FLAGS);
    in.gs_captured = (flags & 0x40) != 0 && in.approach_hold;
    in.loc_captured = ExecuteCalculatorInt("(A:AP_LOC_HOLD_ON,Enum)") != 0 && (flags & 0x80) != 0;
    in.vs_hold = ExecuteCalculatorInt("(A:AUTOPILOT VERTICAL HOLD,Bool)") != 0;
    in.stall = ReadTokenFlag(kStallToken) != 0;
    in.overspeed = ReadTokenFlag(kOverspeedToken) != 0;
    in.position_332 = ReadToken(kPositionToken);
    in.decision_height = ExecuteCalculatorDouble("(A:DECISION HEIGHT,FEET)");
    in.g_load = ExecuteCalculatorDouble("(A:G FORCE,GForce)");
    in.slip_ball = ExecuteCalculatorDouble("(A:TURN COORDINATOR BALL,Position 128)");
    if (!ExecuteCalculatorText("(A:NAV IDENT:1,string)", in.nav_ident.data(), static_cast<int>(in.nav_ident.size())))
        in.nav_ident[0] = '\0';
    in.nav_ident.back() = '\0';
    in.gps_drives_nav = ExecuteCalculatorInt("(A:GPS DRIVES NAV1,Bool)") != 0;
    in.nav_frequency = BcdNavFrequencyMhz(Token::NAV1_FREQUENCY);
    in.nav_is_localizer = g_sim.nav1_is_vor == 0;
    return in;
}

AttitudeInputs PlausibleAttitudeInputs(const AttitudeInputs& raw) {
    AttitudeInputs in = raw;
    auto limit = [](double& v, double low, double high) { v = std::isfinite(v) ? std::clamp(v, low, high) : 0.0; };
    limit(in.pitch, -180, 180);
    limit(in.bank, -180, 180);
    limit(in.ias, 0, 999);
    limit(in.mach, 0, 9.99);
    limit(in.altitude, -9999, 99999);
    limit(in.vertical_speed, -99999, 99999);
    limit(in.ground_speed, 0, 9999);
    limit(in.heading, -1e6, 1e6);
    limit(in.radio_altitude, -9999, 99999);
    limit(in.decision_height, 0, 99999);
    limit(in.g_load, -99, 99);
    limit(in.drift, -180, 180);
    limit(in.slip_ball, -127, 127);
    limit(in.baro_mb, 0, 9999);
    limit(in.baro_inches, 0, 99.99);
    limit(in.selected_ias, 0, 999);
    limit(in.selected_mach, 0, 9.99);
    limit(in.selected_altitude, -9999, 99999);
    limit(in.selected_vs, -99999, 99999);
    limit(in.heading_bug, -1e6, 1e6);
    limit(in.course, -1e6, 1e6);
    limit(in.fd_pitch, -90, 90);
    limit(in.fd_bank, -180, 180);
    limit(in.nav_frequency, 0, 999.99);
    limit(in.loc_needle, -127, 127);
    limit(in.gs_needle, -119, 119);
    limit(in.dme, 0, 999.9);
    limit(in.position_332, -1e6, 1e6);
    return in;
}

// [SECTION] Warnings and flight director
const char* AttitudeWarning(const AttitudeInputs& in, float* x) {
    // 1. Sink rate against height: the first band that holds.
    double ra = in.radio_altitude, vs = in.vertical_speed;
    bool terrain = (ra < 4000 && vs < -16000) || (ra < 3000 && vs < -8000) || (ra < 2000 && vs < -4000) ||
                   (ra < 500 && (vs < -1950 || in.position_332 < 16000));
    if (terrain) {
        *x = -40;
        return "TERRAIN";
    }
    // 2. Stall before overspeed.
    if (in.stall) {
        *x = -30;
        return "STALL";
    }
    if (in.overspeed) {
        *x = -60;
        return "OVERSPEED";
    }
    // 3. Minimums while descending, with no warning standing.
    if (std::fabs(ra - in.decision_height) <= 10 && vs < -100) {
        *x = -40;
        return "DH";
    }
    return nullptr;
}

void StepFlightDirector(const AttitudeInputs& in) {
    double bank_target = std::clamp(in.fd_bank, -kFdBankLimit, kFdBankLimit);
    g_display.fd_bank_bar = StepToward(g_display.fd_bank_bar, bank_target, kFdBankStep);
    g_display.fd_pitch_bar = StepToward(g_display.fd_pitch_bar, in.fd_pitch, kFdPitchStep);
}

double HeadingOffset(double value, double heading) {
    double d = std::fmod(value - heading + 540.0, 360.0);
    if (d < 0) d += 360;
    return d - 180;
}

// [SECTION] The ball
void MoveToBall(const DisplaySurface& surface, const BallFrame& ball) {
    ResetToDesign(surface);
    surface.graphics->Translate(ball.centre_x, ball.centre_y);
}

void DrawAttitudeBall(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in) {
    gdi::Graphics& g = *surface.graphics;
    // 1. Clip to the outline: two arcs joined by the vertical sides.
    MoveToBall(surface, ball);
    gdi::Path outline;
    outline.AddArc(-kBallRadius, -kBallRadius, 2 * kBallRadius, 2 * kBallRadius, 210, 120);
    outline.AddLine(kBallHalfWidth, -40, kBallHalfWidth, 40);
    outline.AddArc(-kBallRadius, -kBallRadius, 2 * kBallRadius, 2 * kBallRadius, 30, 120);
    outline.AddLine(-kBallHalfWidth, 40, -kBallHalfWidth, -40);
    outline.CloseFigure();
    g.SetClip(outline);

    // 2. Turn by the bank: the horizon banks against the aircraft.
    g.Rotate(F(-in.bank));
    int horizon = I(in.pitch * kUnitsPerDegree);
    gdi::SolidBrush sky(ball.sky);
    gdi::SolidBrush ground(ball.ground);
    g.FillRectangle(sky, -400, horizon - 400, 800, 400);
    g.FillRectangle(ground, -400, horizon, 800, 400);
    gdi::Pen white(palette::kWhite, 1.5f);
    g.DrawLine(white, -400, F(horizon), 400, F(horizon));

    // 3. Pitch ladder every 5 degrees, dashed below the horizon; fine lines
    // at sixteen times the scale keep their places exact.
    gdi::Pen ladder(palette::kWhite, 16.0f);
    gdi::Pen dashed(palette::kWhite, 16.0f);
    dashed.SetDash(DashStyleDash);
    gdi::Font digits(kArialFont, 8, FontStyleBold);
    for (int step = 5; step <= 90; step += 5) {
        for (int side : {-1, 1}) {
            double y = in.pitch * kUnitsPerDegree - side * step * kUnitsPerDegree;
            if (std::fabs(y) > 120) continue;
            const gdi::Pen& pen = side > 0 ? ladder : dashed;
            int inner = step % 10 == 0 ? (step < 30 ? 20 : 30) : 30;
            int outer = step % 10 == 0 ? 48 : 40;
            g.Scale(1.0f / 16, 1.0f / 16);
            int y16 = I(y * 16);
            g.DrawLine(pen, F(inner * 16), F(y16), F(outer * 16), F(y16));
            g.DrawLine(pen, F(-inner * 16), F(y16), F(-outer * 16), F(y16));
            if (step % 10 == 0) {
                int tick = side * 15 * 16;  // towards the horizon
                g.DrawLine(pen, F(outer * 16), F(y16), F(outer * 16), F(y16 + tick));
                g.DrawLine(pen, F(-outer * 16), F(y16), F(-outer * 16), F(y16 + tick));
            }
            g.Scale(16, 16);
            if (step % 10 == 0) {
                char text[8];
                std::snprintf(text, sizeof text, "%d", step);
                g.DrawText(text, digits, palette::kWhite, 50, F(y), gdi::TextAlign::Left, gdi::TextBaseline::Middle);
                g.DrawText(text, digits, palette::kWhite, -65, F(y), gdi::TextAlign::Left, gdi::TextBaseline::Middle);
            }
        }
    }

    // 4. Flight director in the aircraft's frame.
    MoveToBall(surface, ball);
    if (in.fd_switch) {
        gdi::Pen fd(palette::kMagenta, 3.0f);
        float x = F(g_display.fd_bank_bar * 2.28);
        float y = F(std::clamp(-(g_display.fd_pitch_bar - in.pitch) * kUnitsPerDegree, -50.0, 50.0));
        g.DrawLine(fd, x, -50, x, 50);
        g.DrawLine(fd, -50, y, 50, y);
    }

    // 5. Flight path vector, flickering inside its window.
    if (g_profile.DispFPV != 0 && in.ground_speed > 60) {
        double y = -(in.vertical_speed * 60 / in.ground_speed) / 100 * kUnitsPerDegree;
        double x = in.drift * kUnitsPerDegree;
        bool inside = std::fabs(x) < 50 && std::fabs(y) < 55;
        if (!inside || in.phase < 8) {
            gdi::Pen fpv(palette::kWhite, 1.5f);
            g.DrawEllipse(fpv, I(x - 6), I(y - 6), 12, 12);
            g.DrawLine(fpv, F(x - 12), F(y), F(x - 6), F(y));
            g.DrawLine(fpv, F(x + 6), F(y), F(x + 12), F(y));
            g.DrawLine(fpv, F(x), F(y - 6), F(x), F(y - 12));
        }
    }
    g.ResetClip();
}

void DrawSingleCueDirector(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in) {
    if (!in.fd_switch) return;
    gdi::Graphics& g = *surface.graphics;
    // 1. Up or down by the pitch bar, as the cross bars; rolled by how far
    // the bank is from the commanded one.
    MoveToBall(surface, ball);
    float y = F(std::clamp(-(g_display.fd_pitch_bar - in.pitch) * kUnitsPerDegree, -50.0, 50.0));
    g.Translate(0, y);
    g.Rotate(F(g_display.fd_bank_bar - in.bank));
    // 2. The two wedges, apex at the centre, opening downwards over the wings.
    gdi::SolidBrush magenta(palette::kMagenta);
    const GpPoint right[] = {{1, 0}, {46, 15}, {46, 21}, {1, 6}};
    const GpPoint left[] = {{-1, 0}, {-46, 15}, {-46, 21}, {-1, 6}};
    g.FillPolygon(magenta, right, 4);
    g.FillPolygon(magenta, left, 4);
    MoveToBall(surface, ball);
}

// [SECTION] Aircraft symbol and warning
void DrawAircraftSymbol(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in) {
    gdi::Graphics& g = *surface.graphics;
    MoveToBall(surface, ball);
    // 1. The wings and the centre dot.
    gdi::Pen white(palette::kWhite, 2.0f);
    const GpPoint right[] = {{0, 1}, {5, 7}, {10, 0}, {15, 0}};
    const GpPoint left[] = {{0, 1}, {-5, 7}, {-10, 0}, {-15, 0}};
    g.DrawLines(white, right, 4);
    g.DrawLines(white, left, 4);
    g.DrawEllipse(white, -2, -2, 4, 4);

    // 2. Bank scale: fixed ticks, 30 and 60 long.
    gdi::Pen scale(palette::kWhite, 1.5f);
    for (int angle : {-60, -30, -20, -10, 0, 10, 20, 30, 60}) {
        double r = angle * 3.14159265358979 / 180;
        double length = std::abs(angle) == 30 || std::abs(angle) == 60 ? 10 : 5;
        double sx = std::sin(r), sy = -std::cos(r);
        g.DrawLine(scale, F(sx * kBallRadius), F(sy * kBallRadius), F(sx * (kBallRadius + length)),
                   F(sy * (kBallRadius + length)));
    }

    // 3. The pointer turned by the bank, the slip bar under it.
    g.Rotate(F(-in.bank));
    const GpPoint pointer[] = {{0, -kBallRadius}, {-5, -kBallRadius + 8}, {5, -kBallRadius + 8}};
    gdi::SolidBrush white_brush(palette::kWhite);
    g.FillPolygon(white_brush, pointer, 3);
    double slip_x = std::clamp(in.slip_ball, -127.0, 127.0) / kSlipBallScale;
    g.FillRectangle(white_brush, I(slip_x) - 5, -72, 10, 3);
    MoveToBall(surface, ball);
}

void DrawAttitudeWarning(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in) {
    float x = 0;
    const char* warning = AttitudeWarning(in, &x);
    if (warning == nullptr) return;
    MoveToBall(surface, ball);
    gdi::Font font(kArialFont, 17, FontStyleBold);
    surface.graphics->DrawText(warning, font, palette::kRed, x, -45);
}

// [SECTION] Rolling readouts
void DrawSpeedDrum(const DisplaySurface& surface, const gdi::Font& font, ARGB colour, float right,
                   float digit_width, float clip_top, float clip_bottom, double knots) {
    gdi::Graphics& g = *surface.graphics;
    double speed = std::clamp(std::isfinite(knots) ? knots : 0.0, 0.0, 999.0);
    // 1. The leading digits stand still; blank below 10 knots.
    char text[16];
    int tens = static_cast<int>(speed / 10);
    if (tens > 0) {
        std::snprintf(text, sizeof text, "%d", tens);
        g.DrawText(text, font, colour, right - digit_width, (clip_top + clip_bottom) / 2, gdi::TextAlign::Right,
                   gdi::TextBaseline::Middle);
    }
    // 2. The last digit rolls: the digits around it stand a drum step apart.
    double units = speed - tens * 10.0;
    float middle = (clip_top + clip_bottom) / 2;
    // Right-aligned text ends a cell's padding short of its x: the window
    // takes the glyph where it really stands.
    float pad = TextPadding(font);
    g.SetClipRect(I(right - digit_width - pad), I(clip_top), I(digit_width + pad + 1), I(clip_bottom - clip_top));
    int whole = static_cast<int>(units);
    for (int digit = whole - 1; digit <= whole + 1; ++digit) {
        float y = F(middle - (digit - units) * kDrumSpacing);
        std::snprintf(text, sizeof text, "%d", ((digit % 10) + 10) % 10);
        g.DrawText(text, font, colour, right, y, gdi::TextAlign::Right, gdi::TextBaseline::Middle);
    }
    g.ResetClip();
}

void DrawAltitudeDrum(const DisplaySurface& surface, const gdi::Font& font, ARGB colour, float right,
                      float pair_width, float clip_top, float clip_bottom, double feet) {
    gdi::Graphics& g = *surface.graphics;
    double altitude = std::clamp(std::isfinite(feet) ? feet : 0.0, -9999.0, 99999.0);
    double magnitude = std::fabs(altitude);
    // 1. Hundreds and up stand still.
    char text[12];
    long hundreds = static_cast<long>(magnitude / 100);
    float middle = (clip_top + clip_bottom) / 2;
    if (hundreds > 0 || altitude < 0) {
        std::snprintf(text, sizeof text, altitude < 0 ? "-%ld" : "%ld", hundreds);
        g.DrawText(text, font, colour, right - pair_width, middle, gdi::TextAlign::Right, gdi::TextBaseline::Middle);
    }
    // 2. The last two digits roll in twenties: 00, 20, 40, 60, 80.
    // The pairs stand a line apart, so that half way between two steps both
    // show in the window.
    double steps = (magnitude - hundreds * 100.0) / 20.0;
    int whole = static_cast<int>(steps);
    float pad = TextPadding(font);
    float line = font.size() * 1.2f;
    g.SetClipRect(I(right - pair_width - pad), I(clip_top), I(pair_width + pad + 1), I(clip_bottom - clip_top));
    for (int step = whole - 1; step <= whole + 1; ++step) {
        float y = F(middle - (step - steps) * line);
        std::snprintf(text, sizeof text, "%d0", ((step * 2) % 10 + 10) % 10);
        g.DrawText(text, font, colour, right, y, gdi::TextAlign::Right, gdi::TextBaseline::Middle);
    }
    g.ResetClip();
}

// [SECTION] Tapes
void DrawSpeedTape(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in,
                   const TapeStrip& strip, const gdi::Font& label_font, const gdi::Font& readout_font,
                   double trend_knots) {
    gdi::Graphics& g = *surface.graphics;
    MoveToBall(surface, ball);
    const float left = strip.left, right = strip.right, half = strip.half_height;
    // 1. Strip and clip.
    if (strip.fill != 0) {
        gdi::SolidBrush tape(strip.fill);
        g.FillRectangle(tape, I(left), I(-half), I(right - left), I(2 * half));
    }
    g.SetClipRect(I(left), I(-half), I(right - left), I(2 * half));

    // 2. Ticks every 10 knots within 50 of the speed, numbers every 20.
    gdi::Pen tick(palette::kWhite, 1.5f);
    double speed = std::clamp(std::isfinite(in.ias) ? in.ias : 0.0, 0.0, 999.0);
    int first = static_cast<int>(std::floor((speed - 50) / 10)) * 10;
    for (int knots = std::max(0, first); knots <= speed + 50; knots += 10) {
        float y = F(-(knots - speed) * kKnotUnits);
        g.DrawLine(tick, right - 6, y, right, y);
        if (knots % 20 == 0) {
            char text[16];
            std::snprintf(text, sizeof text, "%3d", knots);
            g.DrawText(text, label_font, palette::kWhite, right - 8, y, gdi::TextAlign::Right,
                       gdi::TextBaseline::Middle);
        }
    }
    // 3. Trend: where the speed will be in ten seconds.
    if (trend_knots != 0 && std::isfinite(trend_knots)) {
        gdi::Pen trend(palette::kGreen, 1.5f);
        float tip = F(std::clamp(-trend_knots * kKnotUnits, -double(half), double(half)));
        g.DrawLine(trend, right - 2, 0, right - 2, tip);
        g.DrawLine(trend, right - 5, tip + (tip < 0 ? 3 : -3), right - 2, tip);
        g.DrawLine(trend, right + 1, tip + (tip < 0 ? 3 : -3), right - 2, tip);
    }
    g.ResetClip();

    // 4. Speed bug, pinned at the strip's ends.
    gdi::Pen bug(palette::kSkyBlue, 2.0f);
    double bug_y = std::clamp(-(in.selected_ias - speed) * kSpeedBugUnits, -67.0, 67.0);
    g.DrawLine(bug, -82, F(bug_y - 4), -85, F(bug_y));
    g.DrawLine(bug, -85, F(bug_y), -82, F(bug_y + 4));

    // 5. Pointer box with the rolling speed: eleven points, the tip at the strip's edge.
    int l = I(left), r = I(right);
    const GpPoint box[] = {{l, -9}, {r - 6, -9}, {r - 6, -4}, {r, 0}, {r - 6, 4}, {r - 6, 9},
                           {l, 9},  {l, -9},     {l, -9},     {l, -9}, {l, -9}};
    gdi::SolidBrush black(palette::kBlack);
    gdi::Pen outline(palette::kWhite, 1.0f);
    g.FillPolygon(black, box, 11);
    g.DrawPolygon(outline, box, 11);
    float digit = DigitWidth(readout_font), pad = TextPadding(readout_font);
    DrumWindow(g, right - 8 - digit - pad - 1, digit + pad + 2, kDrumWindowHalfHeight);
    DrawSpeedDrum(surface, readout_font, palette::kWhite, right - 8, digit, -kDrumWindowHalfHeight,
                  kDrumWindowHalfHeight, speed);
}

void DrawAltitudeTape(const DisplaySurface& surface, const BallFrame& ball, const AttitudeInputs& in,
                      const TapeStrip& strip, const gdi::Font& label_font, const gdi::Font& readout_font) {
    gdi::Graphics& g = *surface.graphics;
    MoveToBall(surface, ball);
    const float left = strip.left, right = strip.right, half = strip.half_height;
    // 1. Strip and clip.
    if (strip.fill != 0) {
        gdi::SolidBrush tape(strip.fill);
        g.FillRectangle(tape, I(left), I(-half), I(right - left), I(2 * half));
    }
    g.SetClipRect(I(left), I(-half), I(right - left), I(2 * half));

    // 2. Ticks every 100 feet from 1199 below to 1199 above, labels at 200s.
    gdi::Pen tick(palette::kWhite, 1.5f);
    double altitude = std::clamp(std::isfinite(in.altitude) ? in.altitude : 0.0, -9999.0, 99999.0);
    long first = static_cast<long>(std::ceil((altitude - 1199) / 100));
    long last = static_cast<long>(std::floor((altitude + 1199) / 100));
    for (long hundreds = first; hundreds <= last; ++hundreds) {
        long feet = hundreds * 100;
        float y = F(-(feet - altitude) * kFootUnits);
        g.DrawLine(tick, left, y, left + 5, y);
        if (feet % 200 == 0) {
            char text[16];
            std::snprintf(text, sizeof text, "%5ld", feet);
            g.DrawText(text, label_font, palette::kWhite, left + 7, y, gdi::TextAlign::Left,
                       gdi::TextBaseline::Middle);
        }
    }
    g.ResetClip();

    // 3. Altitude bug: green while the hold is on.
    gdi::Pen bug(in.altitude_hold ? palette::kGreen : palette::kSkyBlue, 2.0f);
    double bug_y = std::clamp((altitude - in.selected_altitude) * kFootUnits, -65.0, 65.0);
    g.DrawLine(bug, 83, F(bug_y - 4), 80, F(bug_y));
    g.DrawLine(bug, 80, F(bug_y), 83, F(bug_y + 4));

    // 4. Pointer box with the rolling altitude: nine points, the tip at the strip's edge.
    int l = I(left), r = I(right);
    const GpPoint box[] = {{l, 0}, {l + 6, -5}, {l + 6, -9}, {r, -9}, {r, 9}, {l + 6, 9}, {l + 6, 5}, {l, 0}, {l, 0}};
    gdi::SolidBrush black(palette::kBlack);
    gdi::Pen outline(palette::kWhite, 1.0f);
    g.FillPolygon(black, box, 9);
    g.DrawPolygon(outline, box, 9);
    float pair = 2 * DigitWidth(readout_font), pad = TextPadding(readout_font);
    DrumWindow(g, right - 2 - pair - pad - 1, pair + pad + 2, kDrumWindowHalfHeight);
    DrawAltitudeDrum(surface, readout_font, palette::kWhite, right - 2, pair, -kDrumWindowHalfHeight,
                     kDrumWindowHalfHeight, altitude);
}

// [SECTION] Heading strip and ILS scales
void DrawHeadingStrip(const DisplaySurface& surface, const gdi::Font& font, const AttitudeInputs& in, float top,
                      float half_width, ARGB bug_colour) {
    gdi::Graphics& g = *surface.graphics;
    // 1. Ticks every 5 degrees, numbers every 10, 2 units a degree.
    g.SetClipRect(I(-half_width), I(top), I(2 * half_width), 24);
    gdi::Pen tick(palette::kWhite, 1.5f);
    int first = static_cast<int>(std::floor((in.heading - 30) / 5)) * 5;
    for (int deg = first; deg <= in.heading + 30; deg += 5) {
        float x = F((deg - in.heading) * 2);
        bool major = ((deg % 360) + 360) % 10 == 0;
        g.DrawLine(tick, x, top, x, top + (major ? 6 : 3));
        if (major) {
            char text[8];
            std::snprintf(text, sizeof text, "%02d", (((deg % 360) + 360) % 360) / 10);
            g.DrawText(text, font, palette::kWhite, x, top + 7, gdi::TextAlign::Centre);
        }
    }
    g.ResetClip();
    // 2. The pointer at the centre top.
    gdi::SolidBrush white(palette::kWhite);
    const GpPoint pointer[] = {{0, I(top)}, {-4, I(top) - 5}, {4, I(top) - 5}};
    g.FillPolygon(white, pointer, 3);

    // 3. Heading bug and course mark, pinned with their values printed.
    auto mark = [&](double value, ARGB colour, float y_text) {
        double x = HeadingOffset(value, in.heading) * 2;
        bool pinned = std::fabs(x) > half_width;
        x = std::clamp(x, -double(half_width), double(half_width));
        gdi::Pen pen(colour, 2.0f);
        g.DrawRectangle(pen, I(x) - 3, I(top), 6, 4);
        if (pinned) {
            char text[8];
            std::snprintf(text, sizeof text, "%03.0f", std::fmod(std::fmod(value, 360) + 360, 360));
            g.DrawText(text, font, colour, F(x), y_text, gdi::TextAlign::Centre, gdi::TextBaseline::Bottom);
        }
    };
    mark(in.heading_bug, bug_colour, top - 1);
    if (in.nav_signal) mark(in.course, palette::kWhite, top - 11);
}

void DrawIlsScales(const DisplaySurface& surface, const AttitudeInputs& in, float loc_y, float gs_x) {
    if (!in.nav_signal) return;
    gdi::Graphics& g = *surface.graphics;
    // 1. Localizer: dots along the bottom, the pointer at needle / 2.54.
    gdi::Pen white(palette::kWhite, 1.0f);
    int base = I(loc_y);
    for (int dot : {-50, -25, 25, 50}) g.DrawEllipse(white, dot - 2, base - 2, 4, 4);
    g.DrawRectangle(white, -4, base - 2, 8, 4);
    gdi::SolidBrush magenta(palette::kMagenta);
    int loc_x = I(std::clamp(in.loc_needle, -127.0, 127.0) / kLocNeedleScale);
    const GpPoint loc[] = {{loc_x, base - 5}, {loc_x + 4, base}, {loc_x, base + 5}, {loc_x - 4, base}};
    g.FillPolygon(magenta, loc, 4);
    // 2. Glideslope: dots at plus and minus 19 and 38, the pointer at needle / 3.34.
    int column = I(gs_x);
    for (int dot : {-38, -19, 19, 38}) g.DrawEllipse(white, column - 2, dot - 2, 4, 4);
    int gs_y = I(std::clamp(in.gs_needle, -119.0, 119.0) / kGsNeedleScale);
    const GpPoint gs[] = {{column, gs_y - 4}, {column + 4, gs_y}, {column, gs_y + 4}, {column - 4, gs_y}};
    g.FillPolygon(magenta, gs, 4);
}
