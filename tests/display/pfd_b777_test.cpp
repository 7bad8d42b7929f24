// pfd_b777_test.cpp: the B777_PFD_NB page drawn from known aircraft states:
// the texts and their colours at limits, the order of the warnings, the
// flight director's travel over frames, and the ball's and tapes' geometry
// read back from pixels and from where the strings landed.
#include "display/pfd_b777.h"

#include "attitude_rig.h"

#include <cmath>

namespace {

using nd_test::Frame;
using attitude_rig::ColourOf;
using attitude_rig::MiddleY;

constexpr int kW = 247;  // the gauge's surface
constexpr int kH = 294;
constexpr ARGB kSky = 0xFF2875C5;     // the profile's default sky, 40 117 197
constexpr ARGB kGround = 0xFF78661C;  // and ground, 120 102 28

// Design units about the ball's centre to surface pixels.
int Px(double x) { return static_cast<int>(std::lround((110 + x) * kW / 260.0)); }
int Py(double y) { return static_cast<int>(std::lround((130 + y) * kH / 260.0)); }

class B777PfdTest : public ::testing::Test {
protected:
    void SetUp() override {
        nd_test::FreshAircraft();
        in.ias = 250;
        in.altitude = 10050;
        in.heading = 100;
        in.heading_bug = 100;
        in.radio_altitude = 9000;
        in.baro_mb = 1013.2;
    }

    Frame Draw() { return attitude_rig::DrawPage(DrawB777PfdFrom, in, kW, kH, 260, 260); }


    AttitudeInputs in;
};

TEST_F(B777PfdTest, RadioAltitudeShowsJustUnderItsLimitOnly) {
    in.radio_altitude = 2499;
    Frame under = Draw();
    EXPECT_EQ(ColourOf(under, "2499"), palette::kWhite);

    in.radio_altitude = 2500;
    Frame at = Draw();
    EXPECT_FALSE(at.Has("2500"));
}

TEST_F(B777PfdTest, ModesTakeTheirRowsByPriorityAndColour) {
    // LNAV engaged outranks the heading hold, which then shows nothing.
    in.lnav_on = true;
    in.heading_hold = true;
    in.plan_loaded = true;
    Frame lnav = Draw();
    EXPECT_EQ(ColourOf(lnav, "LNAV"), palette::kGreen);
    EXPECT_EQ(lnav.CountText("LNAV"), 1);
    EXPECT_FALSE(lnav.Has("HDG SEL"));

    // Heading hold alone with a route: HDG SEL active, LNAV armed in white below it.
    in.lnav_on = false;
    Frame hdg = Draw();
    EXPECT_EQ(ColourOf(hdg, "HDG SEL"), palette::kGreen);
    EXPECT_EQ(ColourOf(hdg, "LNAV"), palette::kWhite);
    EXPECT_GT(MiddleY(hdg, "LNAV"), MiddleY(hdg, "HDG SEL"));

    // VNAV by its path flag; the approach with the glideslope outranks it.
    in.vnav_on = true;
    in.vnav_path = true;
    in.altitude_hold = true;
    Frame pth = Draw();
    EXPECT_EQ(ColourOf(pth, "VNAV PTH"), palette::kGreen);
    EXPECT_FALSE(pth.Has("ALT"));
    EXPECT_FALSE(pth.Has("VNAV"));
    in.vnav_path = false;
    EXPECT_TRUE(Draw().Has("VNAV SPD"));
    in.approach_hold = true;
    in.gs_captured = true;
    Frame app = Draw();
    EXPECT_EQ(ColourOf(app, "APP"), palette::kGreen);
    EXPECT_FALSE(app.Has("VNAV SPD"));
    in.approach_hold = false;
    in.vnav_on = false;
    Frame alt = Draw();
    EXPECT_EQ(ColourOf(alt, "ALT"), palette::kGreen);
    EXPECT_EQ(ColourOf(alt, "VNAV"), palette::kWhite);

    // Speed modes and the autopilot row.
    in.ias_hold = true;
    in.selected_ias = 245;
    in.fd_switch = true;
    Frame spd = Draw();
    EXPECT_EQ(ColourOf(spd, "SPD"), palette::kGreen);
    EXPECT_EQ(ColourOf(spd, "245"), palette::kMagenta);
    EXPECT_TRUE(spd.Has("FLT DIR"));
    EXPECT_FALSE(spd.Has("A/P"));
    in.mach_hold = true;
    in.selected_mach = 0.78;
    in.ap_master = true;
    Frame mach = Draw();
    EXPECT_TRUE(mach.Has("MACH"));
    EXPECT_FALSE(mach.Has("SPD"));
    EXPECT_EQ(ColourOf(mach, "0.78"), palette::kMagenta);
    EXPECT_TRUE(mach.Has("A/P"));
    EXPECT_FALSE(mach.Has("FLT DIR"));
}

TEST_F(B777PfdTest, WarningsFollowTheirPriorityAndBands) {
    float x = 0;
    // Each sink band just over and just under its limits.
    in.radio_altitude = 1999;
    in.vertical_speed = -4001;
    EXPECT_STREQ(AttitudeWarning(in, &x), "TERRAIN");
    in.radio_altitude = 2000;
    EXPECT_EQ(AttitudeWarning(in, &x), nullptr);
    in.vertical_speed = -8001;
    EXPECT_STREQ(AttitudeWarning(in, &x), "TERRAIN");
    in.radio_altitude = 3999;
    in.vertical_speed = -16001;
    EXPECT_STREQ(AttitudeWarning(in, &x), "TERRAIN");
    in.radio_altitude = 4000;
    EXPECT_EQ(AttitudeWarning(in, &x), nullptr);
    // Low down, the position token below its limit alone warns.
    in.radio_altitude = 499;
    in.vertical_speed = -500;
    in.position_332 = 15999;
    EXPECT_STREQ(AttitudeWarning(in, &x), "TERRAIN");
    in.position_332 = 16000;
    EXPECT_EQ(AttitudeWarning(in, &x), nullptr);

    // Terrain before stall before overspeed, each at its own place.
    in.stall = true;
    in.overspeed = true;
    in.position_332 = 100;
    Frame both = Draw();
    EXPECT_EQ(ColourOf(both, "TERRAIN"), palette::kRed);
    EXPECT_FALSE(both.Has("STALL"));
    in.position_332 = 16383;
    EXPECT_STREQ(AttitudeWarning(in, &x), "STALL");
    EXPECT_EQ(x, -30);
    in.stall = false;
    EXPECT_STREQ(AttitudeWarning(in, &x), "OVERSPEED");
    EXPECT_EQ(x, -60);

    // Minimums: within 10 feet and sinking faster than 100 fpm.
    in.overspeed = false;
    in.decision_height = 200;
    in.radio_altitude = 210;
    in.vertical_speed = -101;
    EXPECT_STREQ(AttitudeWarning(in, &x), "DH");
    in.vertical_speed = -100;
    EXPECT_EQ(AttitudeWarning(in, &x), nullptr);
    in.vertical_speed = -101;
    in.radio_altitude = 211;
    EXPECT_EQ(AttitudeWarning(in, &x), nullptr);
}

TEST_F(B777PfdTest, FlightDirectorBarsTravelAtTheirRateAndStopOnTarget) {
    // A 5 degree bank command takes 16 frames at 0.33 a frame.
    in.fd_bank = 5;
    for (int frame = 0; frame < 15; ++frame) StepFlightDirector(in);
    EXPECT_NEAR(g_display.fd_bank_bar, 15 * 0.33, 1e-9);
    StepFlightDirector(in);
    EXPECT_EQ(g_display.fd_bank_bar, 5);
    // Pitch at 0.11 a frame, and a bank command beyond 25 held at 25.
    in.fd_pitch = -1;
    in.fd_bank = 40;
    for (int frame = 0; frame < 5; ++frame) StepFlightDirector(in);
    EXPECT_NEAR(g_display.fd_pitch_bar, -0.55, 1e-9);
    for (int frame = 0; frame < 200; ++frame) StepFlightDirector(in);
    EXPECT_EQ(g_display.fd_bank_bar, 25);
    EXPECT_EQ(g_display.fd_pitch_bar, -1);

    // Drawn: the vertical bar at bar x 2.28 units, in magenta. The frame
    // itself moves the bar once more, onto its target.
    g_display.fd_bank_bar = 10;
    g_display.fd_pitch_bar = 0;
    in.fd_bank = 10;
    in.fd_pitch = 0;
    in.fd_switch = true;
    Frame f = Draw();
    int bar_x = Px(22.8), y = Py(30);
    EXPECT_GT(f.Near(palette::kMagenta, 40, bar_x - 1, y - 3, bar_x + 2, y + 3), 0);
    EXPECT_EQ(f.Near(palette::kMagenta, 40, Px(-22.8) - 1, y - 3, Px(-22.8) + 2, y + 3), 0);
}

TEST_F(B777PfdTest, HorizonMovesWithPitchAndTurnsWithBank) {
    // Ten degrees nose up: the horizon 45 units below the centre.
    in.pitch = 10;
    Frame up = Draw();
    EXPECT_EQ(up.canvas.At(Px(0), Py(40)), kSky);
    EXPECT_EQ(up.canvas.At(Px(0), Py(50)), kGround);

    // Twenty degrees right: at 55 units right the horizon stands 20 units
    // above the centre line, and as far below it on the left.
    in.pitch = 0;
    in.bank = 20;
    double rise = 55 * std::tan(20 * 3.14159265358979 / 180);
    Frame right = Draw();
    EXPECT_EQ(right.canvas.At(Px(55), Py(-rise + 6)), kGround);
    EXPECT_EQ(right.canvas.At(Px(55), Py(-rise - 6)), kSky);
    EXPECT_EQ(right.canvas.At(Px(-55), Py(rise - 6)), kSky);
    EXPECT_EQ(right.canvas.At(Px(-55), Py(rise + 6)), kGround);
}

TEST_F(B777PfdTest, TapesScaleTheirLabelsAndBugsPin) {
    Frame f = Draw();
    // Speed: 1.75 units a knot, labels every 20 knots.
    double px_per_unit = kH / 260.0;
    EXPECT_NEAR(MiddleY(f, "240") - MiddleY(f, "260"), 20 * 1.75 * px_per_unit, 1.5);
    EXPECT_NEAR(MiddleY(f, "260"), Py(-10 * 1.75), 1.5);
    EXPECT_FALSE(f.Has("190"));  // beyond 50 knots and not a label anyway
    EXPECT_FALSE(f.Has("180"));
    // Altitude: 0.065 units a foot, labels on the 200s.
    EXPECT_NEAR(MiddleY(f, "10000") - MiddleY(f, "10200"), 200 * 0.065 * px_per_unit, 1.5);
    EXPECT_FALSE(f.Has("10100"));
    EXPECT_TRUE(f.Has("11200"));
    EXPECT_FALSE(f.Has("11400"));  // 1350 feet above: off the tape

    // A heading bug 30 degrees off is pinned at 55 units with its value;
    // one 10 degrees off is not printed.
    in.heading_bug = 130;
    Frame pinned = Draw();
    const test_canvas::Seen* bug = pinned.Find("130");
    ASSERT_NE(bug, nullptr);
    EXPECT_EQ(bug->box.argb, palette::kMagenta);
    EXPECT_NEAR(bug->box.text_x + bug->box.text_width / 2, Px(55), 1.5);
    in.heading_bug = 70;
    const test_canvas::Seen* left = Draw().Find("070");
    ASSERT_NE(left, nullptr);
    EXPECT_NEAR(left->box.text_x + left->box.text_width / 2, Px(-55), 1.5);
    in.heading_bug = 110;
    EXPECT_FALSE(Draw().Has("110"));
}

TEST_F(B777PfdTest, BaroMachAndVerticalSpeedTexts) {
    // Standard from 1013 up to but not 1013.4 hectopascals.
    in.baro_mb = 1013.0;
    EXPECT_TRUE(Draw().Has("STD"));
    in.baro_mb = 1013.4;
    in.baro_inches = 29.93;
    Frame qnh = Draw();
    EXPECT_FALSE(qnh.Has("STD"));
    EXPECT_TRUE(qnh.Has("29.93 IN"));
    EXPECT_TRUE(qnh.Has("1013 HPA"));

    // Mach over 0.4 only.
    in.mach = 0.4;
    EXPECT_FALSE(Draw().Has(".400"));
    in.mach = 0.82;
    EXPECT_TRUE(Draw().Has(".820"));

    // Vertical speed in hundreds beyond 100 fpm, above or below the scale.
    in.vertical_speed = 1549;
    Frame climb = Draw();
    EXPECT_NEAR(MiddleY(climb, "1500"), Py(-83) + 5, 6);
    in.vertical_speed = -160;
    Frame sink = Draw();
    EXPECT_TRUE(sink.Has(" 200"));
    EXPECT_GT(MiddleY(sink, " 200"), Py(60));
    in.vertical_speed = 100;
    EXPECT_FALSE(Draw().Has(" 100"));
}

}  // namespace
