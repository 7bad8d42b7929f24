// pfd_b777.cpp: the B777_PFD_NB page. One immediate-mode pass over the
// canvas, in this order: text rows, the ball (sky, ground, ladder) clipped to
// its outline and turned by the bank, flight director, flight path vector,
// warnings, aircraft symbol and bank scale, the two tapes and their bugs,
// ILS deviation, marker, heading strip, vertical speed.
//
// Every position below is in design units about the ball's centre.
//
// Index:
//   [SECTION] Inputs
//   [SECTION] Warnings and flight director
//   [SECTION] Text helpers
//   [SECTION] The ball
//   [SECTION] Tapes
//   [SECTION] Heading, ILS, vertical speed
//   [SECTION] The page
#include "display/pfd_b777.h"

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
#include <cstring>

namespace {
constexpr int kStallToken = 67;
constexpr int kOverspeedToken = 68;
constexpr int kPositionToken = 332;
constexpr double kLocNeedleScale = 2.54;              // needle units a design unit
constexpr double kGsNeedleScale = 3.3421052631578947;
constexpr double kKnotUnits = 1.75;                   // speed tape, units a knot
constexpr double kFootUnits = 0.065;                  // altitude tape, units a foot
constexpr double kSpeedBugUnits = 1.68;
constexpr int kBallHalfWidth = 69;                    // outline: vertical sides
constexpr int kBallRadius = 80;                       // outline: arcs
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
int I(double v) { return static_cast<int>(std::lround(v)); }

ARGB Opaque(const ProfileColour& c) {
    auto byte = [](int v) { return static_cast<ARGB>(std::clamp(v, 0, 255)); };
    return 0xFF000000u | byte(c.red) << 16 | byte(c.green) << 8 | byte(c.blue);
}

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
    in.approach_hold = g_sim.approach_hold != 0;
    in.fd_pitch = g_sim.fd_pitch.now;
    in.fd_bank = g_sim.fd_bank.now;
    in.loc_needle = g_sim.nav1_needle;
    in.gs_needle = g_sim.nav1_gs_needle.now;
    in.dme = g_sim.dme1_distance;
    in.marker = g_sim.marker_beacon;
    // Guidance
    in.lnav_on = g_lnav.LnavOn != 0;
    in.vnav_on = g_vnav.VnavOn != 0;
    in.vnav_path = g_vnav.PathDeviationValid != 0;
    in.plan_loaded = g_plan.context.ActiveLastRow > 0;
    // What only the simulator knows, read at draw time
    in.fd_switch = ReadTokenFlag(Token::FD_SWITCH) != 0;
    in.nav_signal = ReadToken(Token::NAV1_SIGNAL) > 0;
    int flags = ReadTokenFlag(Token::NAV1_FLAGS);
    in.gs_captured = (flags & 0x40) != 0 && in.approach_hold;
    in.loc_captured = ExecuteCalculatorInt("(A:AP_LOC_HOLD_ON,Enum)") != 0 && (flags & 0x80) != 0;
    in.stall = ReadTokenFlag(kStallToken) != 0;
    in.overspeed = ReadTokenFlag(kOverspeedToken) != 0;
    in.position_332 = ReadToken(kPositionToken);
    in.decision_height = ExecuteCalculatorDouble("(A:DECISION HEIGHT,FEET)");
    in.g_load = ExecuteCalculatorDouble("(A:G FORCE,GForce)");
    if (!ExecuteCalculatorText("(A:NAV IDENT:1,string)", in.nav_ident.data(), static_cast<int>(in.nav_ident.size())))
        in.nav_ident[0] = '\0';
    in.nav_ident.back() = '\0';
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

// [SECTION] Text helpers
namespace {
struct Fonts {
    gdi::Font small{kArialFont, 9, FontStyleBold};
    gdi::Font mode{kArialFont, 11, FontStyleBold};
    gdi::Font tape{kArialFont, 10, FontStyleBold};
    gdi::Font big{kArialFont, 13, FontStyleBold};
    gdi::Font warning{kArialFont, 17, FontStyleBold};
};

template <typename... Args>
void Text(gdi::Graphics& g, const gdi::Font& font, ARGB colour, double x, double y, const char* format, Args... args) {
    char text[48];
    std::snprintf(text, sizeof text, format, args...);
    g.DrawText(text, font, colour, F(x), F(y));
}

// The whole world moved to the ball's centre.
void ToBall(const DisplaySurface& surface) {
    ResetToDesign(surface);
    surface.graphics->Translate(kB777BallX, kB777BallY);
}
}  // namespace

// [SECTION] The ball
namespace {
void DrawBall(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in) {
    // 1. Clip to the outline: two arcs joined by the vertical sides.
    ToBall(surface);
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
    gdi::SolidBrush sky(Opaque(g_profile.B777PFDSky));
    gdi::SolidBrush ground(Opaque(g_profile.B777PFDGrnd));
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
    ToBall(surface);
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
        if (!inside || g_tick.phase < 8) {
            gdi::Pen fpv(palette::kWhite, 1.5f);
            g.DrawEllipse(fpv, I(x - 6), I(y - 6), 12, 12);
            g.DrawLine(fpv, F(x - 12), F(y), F(x - 6), F(y));
            g.DrawLine(fpv, F(x + 6), F(y), F(x + 12), F(y));
            g.DrawLine(fpv, F(x), F(y - 6), F(x), F(y - 12));
        }
    }
    g.ResetClip();
}

void DrawAircraftSymbol(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in) {
    ToBall(surface);
    // 1. The wings and the centre dot.
    gdi::Pen white(palette::kWhite, 2.0f);
    const GpPoint right[] = {{0, 1}, {5, 7}, {10, 0}, {15, 0}};
    const GpPoint left[] = {{0, 1}, {-5, 7}, {-10, 0}, {-15, 0}};
    g.DrawLines(white, right, 4);
    g.DrawLines(white, left, 4);
    g.DrawEllipse(white, -2, -2, 4, 4);

    // 2. Bank scale: fixed ticks, and the pointer turned by the bank.
    gdi::Pen scale(palette::kWhite, 1.5f);
    for (int angle : {-60, -30, -20, -10, 0, 10, 20, 30, 60}) {
        double r = angle * 3.14159265358979 / 180;
        double length = std::abs(angle) == 30 || std::abs(angle) == 60 ? 10 : 5;
        double sx = std::sin(r), sy = -std::cos(r);
        g.DrawLine(scale, F(sx * kBallRadius), F(sy * kBallRadius), F(sx * (kBallRadius + length)),
                   F(sy * (kBallRadius + length)));
    }
    g.Rotate(F(-in.bank));
    const GpPoint pointer[] = {{0, -kBallRadius}, {-5, -kBallRadius + 8}, {5, -kBallRadius + 8}};
    gdi::SolidBrush white_brush(palette::kWhite);
    g.FillPolygon(white_brush, pointer, 3);
    ToBall(surface);
}
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
    char text[16];
    std::snprintf(text, sizeof text, "%3.0f", speed);
    g.DrawText(text, fonts.big, palette::kWhite, -86, 0, gdi::TextAlign::Right, gdi::TextBaseline::Middle);
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
    char text[16];
    std::snprintf(text, sizeof text, "%5.0f", altitude);
    g.DrawText(text, fonts.tape, palette::kWhite, 120, 0, gdi::TextAlign::Right, gdi::TextBaseline::Middle);
}
}  // namespace

// [SECTION] Heading, ILS, vertical speed
namespace {
// Degrees from the heading to a value, -180 .. 180.
double Off(double value, double heading) {
    double d = std::fmod(value - heading + 540.0, 360.0);
    if (d < 0) d += 360;
    return d - 180;
}

void DrawHeadingStrip(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in, const Fonts& fonts) {
    ToBall(surface);
    int top = kHeadingStripY;
    // 1. Ticks every 5 degrees, numbers every 10, 2 units a degree.
    g.SetClipRect(-kHeadingHalfWidth, top, 2 * kHeadingHalfWidth, 24);
    gdi::Pen tick(palette::kWhite, 1.5f);
    int first = static_cast<int>(std::floor((in.heading - 30) / 5)) * 5;
    for (int deg = first; deg <= in.heading + 30; deg += 5) {
        float x = F((deg - in.heading) * 2);
        bool major = ((deg % 360) + 360) % 10 == 0;
        g.DrawLine(tick, x, F(top), x, F(top + (major ? 6 : 3)));
        if (major) {
            char text[8];
            std::snprintf(text, sizeof text, "%02d", (((deg % 360) + 360) % 360) / 10);
            g.DrawText(text, fonts.small, palette::kWhite, x, F(top + 7), gdi::TextAlign::Centre);
        }
    }
    g.ResetClip();
    // 2. The pointer at the centre top.
    gdi::SolidBrush white(palette::kWhite);
    const GpPoint pointer[] = {{0, top}, {-4, top - 5}, {4, top - 5}};
    g.FillPolygon(white, pointer, 3);

    // 3. Heading bug and course mark, pinned with their values printed.
    auto mark = [&](double value, ARGB colour, float y_text) {
        double x = Off(value, in.heading) * 2;
        bool pinned = std::fabs(x) > kHeadingHalfWidth;
        x = std::clamp(x, -double(kHeadingHalfWidth), double(kHeadingHalfWidth));
        gdi::Pen pen(colour, 2.0f);
        g.DrawRectangle(pen, I(x) - 3, top, 6, 4);
        if (pinned) {
            char text[8];
            std::snprintf(text, sizeof text, "%03.0f", std::fmod(std::fmod(value, 360) + 360, 360));
            g.DrawText(text, fonts.small, colour, F(x), y_text, gdi::TextAlign::Centre, gdi::TextBaseline::Bottom);
        }
    };
    mark(in.heading_bug, palette::kMagenta, F(top - 1));
    if (in.nav_signal) mark(in.course, palette::kWhite, F(top - 11));
}

void DrawIls(gdi::Graphics& g, const DisplaySurface& surface, const AttitudeInputs& in) {
    if (!in.nav_signal) return;
    ToBall(surface);
    // 1. Localizer: dots along the bottom, the pointer at needle / 2.54.
    gdi::Pen white(palette::kWhite, 1.0f);
    int base = 72;
    for (int dot : {-50, -25, 25, 50}) g.DrawEllipse(white, dot - 2, base - 2, 4, 4);
    g.DrawRectangle(white, -4, base - 2, 8, 4);
    gdi::SolidBrush magenta(palette::kMagenta);
    double loc_x = std::clamp(in.loc_needle, -127.0, 127.0) / kLocNeedleScale;
    const GpPoint loc[] = {{I(loc_x), base - 5}, {I(loc_x) + 4, base}, {I(loc_x), base + 5}, {I(loc_x) - 4, base}};
    g.FillPolygon(magenta, loc, 4);
    // 2. Glideslope: dots at x = 75, the pointer at needle / 3.34.
    for (int dot : {-38, -19, 19, 38}) g.DrawEllipse(white, 73, dot - 2, 4, 4);
    double gs_y = std::clamp(in.gs_needle, -119.0, 119.0) / kGsNeedleScale;
    const GpPoint gs[] = {{75, I(gs_y) - 4}, {79, I(gs_y)}, {75, I(gs_y) + 4}, {71, I(gs_y)}};
    g.FillPolygon(magenta, gs, 4);
}

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

    // 1. Flight director bars move once a frame.
    StepFlightDirector(in);

    // 2. Ball, director, path vector.
    DrawBall(g, surface, in);

    // 3. Warning over the ball, the first that holds.
    ToBall(surface);
    float warning_x = 0;
    if (const char* warning = AttitudeWarning(in, &warning_x))
        g.DrawText(warning, fonts.warning, palette::kRed, warning_x, -45);

    // 4. Aircraft symbol and bank scale; tapes, bugs; ILS; heading; V/S.
    DrawAircraftSymbol(g, surface, in);
    DrawSpeedTape(g, surface, in, fonts);
    DrawAltitudeTape(g, surface, in, fonts);
    DrawIls(g, surface, in);
    DrawHeadingStrip(g, surface, in, fonts);
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
