// eadi_efs50_test.cpp: the EFS50_EADI page drawn from known aircraft
// states: the two mode rows by priority, the radio altitude's band, the
// localizer source, the fast/slow scale's reach and travel, the optional
// heading strip, the warnings' order, and the ball's geometry read back from
// pixels.
#include "display/eadi_efs50.h"

#include "frame/global_config.h"
#include "attitude_rig.h"

#include <cmath>

namespace {

using nd_test::Frame;
using attitude_rig::ColourOf;
using attitude_rig::MiddleY;

constexpr int kW = 280;  // the gauge's surface: not the design's proportions
constexpr int kH = 262;
constexpr double kPi = 3.14159265358979;

double PxF(double x) { return (133 + x) * kW / 266.0; }
double PyF(double y) { return (118 + y) * kH / 230.0; }
int Px(double x) { return static_cast<int>(std::lround(PxF(x))); }
int Py(double y) { return static_cast<int>(std::lround(PyF(y))); }

// The page drawn from `in` on a surface of the given size.
Frame DrawPage(const AttitudeInputs& in, int width, int height, bool picture = false) {
    return attitude_rig::DrawPage(DrawEfs50EadiFrom, in, width, height, 266, 230, picture);
}

class Efs50EadiTest : public ::testing::Test {
protected:
    void SetUp() override {
        nd_test::FreshAircraft();
        in.ias = 180;
        in.selected_ias = 250;  // far from the speed: no fast/slow scale
        in.altitude = 6000;
        in.heading = 100;
        in.heading_bug = 100;
        in.radio_altitude = 5000;
    }

    Frame Draw() { return DrawPage(in, kW, kH); }

    // Where a string drawn at a point starts: its box less the sixth of an
    // em that text layout leaves before the first character.
    static double LeftX(const Frame& f, const char* text, double em) {
        const test_canvas::Seen* s = f.Find(text);
        return s ? s->box.text_x - em / 6 * kW / 266.0 : -1e9;
    }
    static double TopY(const Frame& f, const char* text) {
        const test_canvas::Seen* s = f.Find(text);
        return s ? s->box.text_y : -1e9;
    }
    // Magenta pixels of the fast/slow pointer around a design height.
    static int PointerAt(const Frame& f, double y) {
        return f.Near(palette::kMagenta, 40, Px(-99), Py(y - 4), Px(-90), Py(y + 4) + 1);
    }

    AttitudeInputs in;
};

TEST_F(Efs50EadiTest, ModeRowsByPriority) {
    // LNAV with the heading hold it steers through: LNAV active, HDG below in white.
    in.lnav_on = true;
    in.heading_hold = true;
    Frame lnav = Draw();
    EXPECT_EQ(ColourOf(lnav, "LNAV"), palette::kGreen);
    EXPECT_EQ(ColourOf(lnav, "HDG"), palette::kWhite);
    EXPECT_NEAR(TopY(lnav, "LNAV"), PyF(-114), 1.5);
    EXPECT_NEAR(TopY(lnav, "HDG"), PyF(-104), 1.5);
    EXPECT_NEAR(LeftX(lnav, "HDG", 10), LeftX(lnav, "LNAV", 10), 0.5);

    // Heading alone is active; the NAV hold outranks it.
    in.lnav_on = false;
    Frame hdg = Draw();
    EXPECT_EQ(ColourOf(hdg, "HDG"), palette::kGreen);
    EXPECT_EQ(hdg.CountText("HDG"), 1);
    EXPECT_FALSE(hdg.Has("LNAV"));
    in.nav_hold = true;
    Frame nav = Draw();
    EXPECT_EQ(ColourOf(nav, "NAV"), palette::kGreen);
    EXPECT_FALSE(nav.Has("HDG"));

    // The approach: armed in white before the capture, then active over all.
    in.approach_hold = true;
    Frame armed = Draw();
    EXPECT_EQ(ColourOf(armed, "APR"), palette::kWhite);
    EXPECT_EQ(ColourOf(armed, "NAV"), palette::kGreen);
    in.loc_captured = true;
    in.lnav_on = true;
    Frame apr = Draw();
    EXPECT_EQ(ColourOf(apr, "APR"), palette::kGreen);
    EXPECT_EQ(apr.CountText("APR"), 1);
    EXPECT_FALSE(apr.Has("LNAV"));

    // Vertical: VNAV over the altitude hold, which then stands armed below.
    in.altitude_hold = true;
    Frame alt = Draw();
    EXPECT_EQ(ColourOf(alt, "ALT"), palette::kGreen);
    EXPECT_NEAR(TopY(alt, "ALT"), PyF(-114), 1.5);
    in.vnav_on = true;
    Frame vnav = Draw();
    EXPECT_EQ(ColourOf(vnav, "VNAV"), palette::kGreen);
    EXPECT_EQ(ColourOf(vnav, "ALT"), palette::kWhite);
    EXPECT_NEAR(TopY(vnav, "ALT"), PyF(-104), 1.5);

    // No vertical speed in any form on this display.
    in.vnav_on = false;
    in.vertical_speed = 1500;
    in.selected_vs = 1500;
    Frame climb = Draw();
    for (const auto& s : climb.seen) {
        EXPECT_EQ(s.text.find("V/S"), std::string::npos) << s.text;
        EXPECT_EQ(s.text.find("15"), std::string::npos) << s.text;
    }
}

TEST_F(Efs50EadiTest, RadioAltitudeShowsFromMinus20UpToButNot2500) {
    struct Case {
        double feet;
        const char* text;
        bool shown;
    };
    for (Case c : {Case{2499, " 2499", true}, Case{2500, " 2500", false}, Case{-20, "  -20", true},
                   Case{-21, "  -21", false}, Case{0, "    0", true}}) {
        in.radio_altitude = c.feet;
        Frame f = Draw();
        EXPECT_EQ(f.Has(c.text), c.shown) << c.feet;
        if (c.shown) {
            EXPECT_EQ(ColourOf(f, c.text), palette::kWhite);
            EXPECT_NEAR(LeftX(f, c.text, 10), PxF(81), 1.5);
            EXPECT_NEAR(TopY(f, c.text), PyF(-114), 1.5);
        }
    }
}

TEST_F(Efs50EadiTest, LocalizerSourceAndScales) {
    in.nav_is_localizer = true;
    in.gs_needle = -119;  // full scale: 35.6 units up
    Frame quiet = Draw();
    EXPECT_FALSE(quiet.Has("LOC"));
    EXPECT_EQ(quiet.Near(palette::kMagenta, 40), 0);

    in.nav_signal = true;
    Frame loc = Draw();
    EXPECT_EQ(ColourOf(loc, "LOC"), palette::kGreen);
    EXPECT_NEAR(LeftX(loc, "LOC", 9), PxF(71), 1.5);
    EXPECT_NEAR(TopY(loc, "LOC"), PyF(61), 1.5);
    double gs_y = -119 / 3.3421052631578947;
    EXPECT_GT(loc.Near(palette::kMagenta, 40, Px(71), Py(gs_y - 3), Px(80), Py(gs_y + 3)), 5);

    in.nav_is_localizer = false;  // a VOR: no source text
    EXPECT_FALSE(Draw().Has("LOC"));
}

TEST_F(Efs50EadiTest, FastSlowScaleWithin50KnotsOfTheSelectedSpeed) {
    // 70 knots slow: no scale at all.
    Frame far = Draw();
    EXPECT_FALSE(far.Has("F"));
    EXPECT_FALSE(far.Has("S"));
    EXPECT_EQ(far.Near(palette::kMagenta, 40), 0);

    // 10 knots fast: pointer 20 units up, none at the centre or below.
    in.ias = 260;
    Frame fast = Draw();
    EXPECT_TRUE(fast.Has("F"));
    EXPECT_TRUE(fast.Has("S"));
    EXPECT_LT(TopY(fast, "F"), TopY(fast, "S"));
    EXPECT_GT(PointerAt(fast, -20), 5);
    EXPECT_EQ(PointerAt(fast, 0), 0);
    EXPECT_EQ(PointerAt(fast, 20), 0);

    // 5 knots slow: 10 units down.
    in.ias = 245;
    Frame slow = Draw();
    EXPECT_GT(PointerAt(slow, 10), 5);
    EXPECT_EQ(PointerAt(slow, -10), 0);

    // At the reach's edge the pointer is pinned at full scale; just past it
    // the scale is gone.
    in.ias = 200;
    Frame edge = Draw();
    EXPECT_GT(PointerAt(edge, 40), 5);
    EXPECT_TRUE(edge.Has("F"));
    in.ias = 199.5;
    Frame beyond = Draw();
    EXPECT_FALSE(beyond.Has("F"));
    EXPECT_EQ(beyond.Near(palette::kMagenta, 40), 0);
    in.ias = 300;
    EXPECT_GT(PointerAt(Draw(), -40), 5);
    in.ias = 300.5;
    EXPECT_FALSE(Draw().Has("S"));
}

TEST_F(Efs50EadiTest, HorizonStandsAtPitchAndTurnsWithBank) {
    auto expect_side = [&](const Frame& f, double bank, double pitch, double x) {
        double b = bank * kPi / 180, horizon = pitch * 4.5;
        double y_on = (horizon - x * std::sin(b)) / std::cos(b);
        EXPECT_EQ(f.canvas.At(Px(x), Py(y_on - 5)), kEfs50Sky) << bank << " " << pitch << " " << x;
        EXPECT_EQ(f.canvas.At(Px(x), Py(y_on + 5)), kEfs50Ground) << bank << " " << pitch << " " << x;
    };
    in.pitch = -4;
    in.bank = 30;
    Frame right = Draw();
    for (double x : {-50.0, -22.0, 22.0, 50.0}) expect_side(right, 30, -4, x);
    in.pitch = 10;
    in.bank = -10;
    Frame left = Draw();
    for (double x : {-50.0, -22.0, 22.0, 50.0}) expect_side(left, -10, 10, x);
    // Level: the horizon through the centre, sky everywhere above it.
    in.pitch = 0;
    in.bank = 0;
    Frame level = Draw();
    EXPECT_EQ(level.canvas.At(Px(-40), Py(-3)), kEfs50Sky);
    EXPECT_EQ(level.canvas.At(Px(-40), Py(3)), kEfs50Ground);
}

TEST_F(Efs50EadiTest, WarningsAndTheOptionalHeadingStrip) {
    in.radio_altitude = 1500;
    in.vertical_speed = -4500;
    in.stall = true;
    Frame both = Draw();
    EXPECT_EQ(ColourOf(both, "TERRAIN"), palette::kRed);
    EXPECT_FALSE(both.Has("STALL"));
    in.vertical_speed = -3000;
    EXPECT_EQ(ColourOf(Draw(), "STALL"), palette::kRed);

    // The heading strip only when the configuration asks for it: its
    // numbers 2 units a degree about the heading.
    in.stall = false;
    g_config.EADIHdgTape = 0;
    EXPECT_FALSE(Draw().Has("09"));
    g_config.EADIHdgTape = 1;
    Frame strip = Draw();
    for (int tens : {8, 9, 11, 12}) {
        char text[4];
        std::snprintf(text, sizeof text, "%02d", tens);
        const test_canvas::Seen* s = strip.Find(text);
        ASSERT_NE(s, nullptr) << text;
        EXPECT_NEAR(s->box.text_x + s->box.text_width / 2, PxF((tens * 10 - 100) * 2), 1.5) << text;
        EXPECT_GT(s->box.text_y, PyF(84));
    }
    g_config.EADIHdgTape = 0;
}

TEST_F(Efs50EadiTest, DirectorIsSingleCueUnlessTheCrossBarsAreAsked) {
    // The bars stand on their targets: 20 degrees right, level pitch.
    g_display.fd_bank_bar = 20;
    g_display.fd_pitch_bar = 0;
    in.fd_bank = 20;
    in.fd_switch = true;
    // Centre of the magenta pixels of one half of the ball, in surface pixels.
    auto centroid = [](const Frame& f, bool right, double& x, double& y) {
        double sx = 0, sy = 0;
        int n = 0;
        for (int py = Py(-60); py < Py(60); ++py)
            for (int px = right ? Px(3) : Px(-60); px < (right ? Px(60) : Px(-3)); ++px)
                if (f.Near(palette::kMagenta, 30, px, py, px + 1, py + 1) == 1) sx += px, sy += py, ++n;
        x = n ? sx / n : 0;
        y = n ? sy / n : 0;
        return n;
    };

    // Single cue: the V rolled 20 degrees clockwise, no vertical bar above.
    g_config.EadiDualCue = 0;
    Frame single = Draw();
    double lx = 0, ly = 0, rx = 0, ry = 0;
    ASSERT_GT(centroid(single, false, lx, ly), 50);
    ASSERT_GT(centroid(single, true, rx, ry), 50);
    double roll = std::atan2((ry - ly) * 230.0 / kH, (rx - lx) * 266.0 / kW) * 180 / kPi;
    EXPECT_NEAR(roll, 20, 1.5);
    EXPECT_EQ(single.Near(palette::kMagenta, 30, Px(44), Py(-45), Px(48), Py(-30)), 0);
    // Flown into the command: the V level.
    in.bank = 20;
    Frame flown = Draw();
    centroid(flown, false, lx, ly);
    centroid(flown, true, rx, ry);
    EXPECT_NEAR(ry, ly, 1.0);

    // Cross bars: the vertical bar at 20 x 2.28 units, through the top half.
    g_config.EadiDualCue = 1;
    Frame cross = Draw();
    EXPECT_GT(cross.Near(palette::kMagenta, 30, Px(44), Py(-45), Px(48), Py(-30)), 5);
    g_config.EadiDualCue = 0;
}

TEST(Efs50EadiShots, FlightStatesAsPictures) {
    // Pictures for a person to look at (build/linux/nd-shots/), at twice
    // the gauge's size; each is checked for the ball's two colours and the
    // state's own text.
    nd_test::FreshAircraft();
    struct Shot {
        const char* name;
        AttitudeInputs in;
        const char* text;
    };
    AttitudeInputs climb;
    climb.pitch = 9, climb.bank = 20, climb.ias = 185, climb.selected_ias = 180, climb.altitude = 4200;
    climb.radio_altitude = 2200, climb.heading = 250, climb.heading_bug = 275, climb.fd_switch = true;
    climb.fd_bank = 20, climb.fd_pitch = 9, climb.lnav_on = true, climb.heading_hold = true, climb.vnav_on = true;
    AttitudeInputs approach = climb;
    approach.pitch = 1, approach.bank = -4, approach.ias = 128, approach.selected_ias = 125;
    approach.radio_altitude = 640, approach.vertical_speed = -650, approach.nav_signal = true;
    approach.nav_is_localizer = true, approach.approach_hold = true, approach.loc_captured = true;
    approach.loc_needle = 30, approach.gs_needle = -15, approach.marker = 2, approach.vnav_on = false;
    approach.lnav_on = false, approach.altitude_hold = false, approach.heading = 70, approach.heading_bug = 70;
    for (const Shot& shot : {Shot{"efs50_climb.png", climb, "LNAV"}, Shot{"efs50_approach.png", approach, "APR"}}) {
        g_display.fd_bank_bar = shot.in.fd_bank;  // the bars settled on their commands
        g_display.fd_pitch_bar = shot.in.fd_pitch;
        Frame frame = DrawPage(shot.in, 2 * kW, 2 * kH, true);
        EXPECT_GT(frame.canvas.CountColour(kEfs50Sky), 500) << shot.name;
        EXPECT_GT(frame.canvas.CountColour(kEfs50Ground), 500) << shot.name;
        EXPECT_TRUE(frame.Has(shot.text)) << shot.name;
        frame.WritePng(shot.name);
    }
}

}  // namespace
