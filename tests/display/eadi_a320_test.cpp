// eadi_a320_test.cpp: the A320_EADI_NB page drawn from known aircraft
// states: the annunciator's texts by priority with their colours and
// columns, the vertical speed mode's threshold, the limits of "STD" and of
// the radio altitude, the warnings' order, and the ball's and tapes'
// geometry read back from pixels and from where the strings landed.
#include "display/eadi_a320.h"

#include "attitude_rig.h"

#include <cmath>

namespace {

using nd_test::Frame;
using attitude_rig::ColourOf;
using attitude_rig::MiddleY;

constexpr int kW = 318;  // the gauge's surface
constexpr int kH = 311;
constexpr ARGB kSky = 0xFF29A5C9;     // the profile's default sky, 41 165 201
constexpr ARGB kGround = 0xFF9B6735;  // and ground, 155 103 53
constexpr double kPi = 3.14159265358979;

// Design units about the ball's centre to surface pixels.
double PxF(double x) { return (155 + x) * kW / 318.0; }
double PyF(double y) { return (160 + y) * kH / 310.0; }
int Px(double x) { return static_cast<int>(std::lround(PxF(x))); }
int Py(double y) { return static_cast<int>(std::lround(PyF(y))); }

// The page drawn from `in` on a surface of the given size.
Frame DrawPage(const AttitudeInputs& in, int width, int height, bool picture = false) {
    return attitude_rig::DrawPage(DrawA320EadiFrom, in, width, height, 318, 310, picture);
}

class A320EadiTest : public ::testing::Test {
protected:
    void SetUp() override {
        nd_test::FreshAircraft();
        in.ias = 250;
        in.altitude = 10050;
        in.heading = 100;
        in.heading_bug = 100;
        in.selected_ias = 250;
        in.selected_altitude = 10000;
        in.radio_altitude = 9000;
        in.baro_mb = 1013.2;
    }

    Frame Draw() { return DrawPage(in, kW, kH); }

    // The string drawn in a colour, null when none was.
    static const test_canvas::Seen* FindIn(const Frame& f, const char* text, ARGB colour) {
        for (const auto& s : f.seen)
            if (s.text == text && s.box.argb == colour) return &s;
        return nullptr;
    }
    static double CentreX(const Frame& f, const char* text) {
        const test_canvas::Seen* s = f.Find(text);
        return s ? s->box.text_x + s->box.text_width / 2 : -1e9;
    }
    // Where a string drawn at a point starts: its box less the sixth of an
    // em that text layout leaves before the first character.
    static double LeftX(const Frame& f, const char* text, double em) {
        const test_canvas::Seen* s = f.Find(text);
        return s ? s->box.text_x - em / 6 * kW / 318.0 : -1e9;
    }
    static double TopY(const Frame& f, const char* text) {
        const test_canvas::Seen* s = f.Find(text);
        return s ? s->box.text_y : -1e9;
    }

    AttitudeInputs in;
};

TEST_F(A320EadiTest, ModesStandInTheirColumnsByPriority) {
    // Nothing engaged: no mode text at all, the four column lines still drawn.
    Frame quiet = Draw();
    for (const char* mode : {"SPEED", "MACH", "HDG", "NAV", "ALT", "CLB", "DES", "AP1", "1FD", "A/THR"})
        EXPECT_FALSE(quiet.Has(mode)) << mode;
    for (int x : {-85, -5, 65, 120}) {
        EXPECT_GT(quiet.Near(palette::kWhite, 40, Px(x) - 1, Py(-150), Px(x) + 2, Py(-122)), 20) << x;
        EXPECT_EQ(quiet.Near(palette::kWhite, 40, Px(x) - 1, Py(-115) + 1, Px(x) + 2, Py(-100)), 0) << x;
    }

    // LNAV outranks the heading hold it steers through: managed "NAV" alone.
    in.lnav_on = true;
    in.heading_hold = true;
    in.plan_loaded = true;
    Frame lnav = Draw();
    EXPECT_EQ(ColourOf(lnav, "NAV"), palette::kGreen);
    EXPECT_EQ(lnav.CountText("NAV"), 1);
    EXPECT_FALSE(lnav.Has("HDG"));
    EXPECT_NEAR(CentreX(lnav, "NAV"), PxF(30), 2);  // the roll column, -5 .. 65
    EXPECT_NEAR(TopY(lnav, "NAV"), PyF(-155), 1.5);

    // Heading alone with a route: HDG active, NAV armed in cyan a row below.
    in.lnav_on = false;
    Frame hdg = Draw();
    EXPECT_EQ(ColourOf(hdg, "HDG"), palette::kGreen);
    EXPECT_EQ(ColourOf(hdg, "NAV"), palette::kCyan);
    EXPECT_NEAR(TopY(hdg, "NAV") - TopY(hdg, "HDG"), 14 * kH / 310.0, 1.5);

    // The autopilot's NAV hold by its source, under the heading.
    in.nav_hold = true;
    in.gps_drives_nav = true;
    Frame gps = Draw();
    EXPECT_EQ(ColourOf(gps, "GPS NAV"), palette::kGreen);
    EXPECT_FALSE(gps.Has("HDG"));
    EXPECT_FALSE(gps.Has("NAV"));
    in.gps_drives_nav = false;
    Frame radio = Draw();
    EXPECT_EQ(ColourOf(radio, "NAV"), palette::kGreen);
    EXPECT_FALSE(radio.Has("GPS NAV"));

    // The approach: armed in cyan before the capture, active after it.
    in.approach_hold = true;
    Frame armed = Draw();
    EXPECT_EQ(ColourOf(armed, "APP"), palette::kCyan);
    EXPECT_EQ(ColourOf(armed, "NAV"), palette::kGreen);
    in.loc_captured = true;
    Frame captured = Draw();
    EXPECT_EQ(ColourOf(captured, "APP"), palette::kGreen);
    EXPECT_EQ(captured.CountText("APP"), 1);
    EXPECT_FALSE(captured.Has("NAV"));

    // Speed column: Mach before speed, both in their own blue.
    in.ias_hold = true;
    Frame speed = Draw();
    EXPECT_EQ(ColourOf(speed, "SPEED"), kA320SpeedModeColour);
    EXPECT_NEAR(CentreX(speed, "SPEED"), PxF(-120), 2);
    in.mach_hold = true;
    Frame mach = Draw();
    EXPECT_EQ(ColourOf(mach, "MACH"), kA320SpeedModeColour);
    EXPECT_FALSE(mach.Has("SPEED"));

    // Engagement, each on its own row at x 125.
    in.ap_master = true;
    in.fd_switch = true;
    in.autothrottle = true;
    Frame engaged = Draw();
    struct Row {
        const char* text;
        double y;
    };
    for (Row row : {Row{"AP1", -155}, Row{"1FD", -141}, Row{"A/THR", -127}}) {
        EXPECT_EQ(ColourOf(engaged, row.text), palette::kWhite) << row.text;
        EXPECT_NEAR(LeftX(engaged, row.text, 10), PxF(125), 1.5) << row.text;
        EXPECT_NEAR(TopY(engaged, row.text), PyF(row.y), 1.5) << row.text;
    }
    in.ap_master = false;
    in.autothrottle = false;
    Frame fd_only = Draw();
    EXPECT_FALSE(fd_only.Has("AP1"));
    EXPECT_FALSE(fd_only.Has("A/THR"));
    EXPECT_TRUE(fd_only.Has("1FD"));
}

TEST_F(A320EadiTest, PitchModeShowsTheRateFrom200FpmEitherWay) {
    // Climbing on the altitude hold towards the selected altitude: the rate,
    // signed, with the altitude armed below.
    in.altitude_hold = true;
    in.selected_vs = 1500;
    Frame climb = Draw();
    EXPECT_EQ(ColourOf(climb, "V/S +1500"), palette::kGreen);
    EXPECT_EQ(ColourOf(climb, "ALT"), palette::kCyan);
    EXPECT_NEAR(CentreX(climb, "V/S +1500"), PxF(-45), 2);  // the pitch column, -85 .. -5

    in.selected_vs = -800;
    Frame descent = Draw();
    EXPECT_TRUE(descent.Has("V/S -800"));
    EXPECT_FALSE(descent.Has("V/S +-800"));

    // The threshold: 200 shows, 199 either way is level flight.
    in.selected_vs = 200;
    EXPECT_TRUE(Draw().Has("V/S + 200"));
    in.selected_vs = -200;
    EXPECT_TRUE(Draw().Has("V/S -200"));
    in.selected_vs = 199;
    Frame level = Draw();
    EXPECT_FALSE(level.Has("V/S + 199"));
    EXPECT_EQ(ColourOf(level, "ALT"), palette::kGreen);
    in.selected_vs = -199;
    EXPECT_EQ(ColourOf(Draw(), "ALT"), palette::kGreen);

    // The vertical speed hold alone shows its rate without the altitude armed.
    in.altitude_hold = false;
    in.vs_hold = true;
    in.selected_vs = -1200;
    Frame vs = Draw();
    EXPECT_TRUE(vs.Has("V/S -1200"));
    EXPECT_FALSE(vs.Has("ALT"));

    // VNAV outranks them: DES in a descent, CLB otherwise.
    in.vnav_on = true;
    in.vnav_descent = true;
    Frame des = Draw();
    EXPECT_EQ(ColourOf(des, "DES"), palette::kGreen);
    EXPECT_FALSE(des.Has("V/S -1200"));
    in.vnav_descent = false;
    in.vertical_speed = 2000;
    EXPECT_TRUE(Draw().Has("CLB"));
    // Level on the hold VNAV keeps: ALT, and no CLB.
    in.altitude_hold = true;
    in.vertical_speed = 150;
    Frame held = Draw();
    EXPECT_EQ(ColourOf(held, "ALT"), palette::kGreen);
    EXPECT_FALSE(held.Has("CLB"));
}

TEST_F(A320EadiTest, BaroShowsStdOnlyFromItsLowerLimitUpToButNotItsUpper) {
    for (double mb : {1013.0, 1013.2, 1013.39}) {
        in.baro_mb = mb;
        Frame f = Draw();
        EXPECT_EQ(ColourOf(f, "STD"), palette::kCyan) << mb;
        EXPECT_FALSE(f.Has("QNH")) << mb;
        // Boxed: the box's top edge stands above the text, in yellow.
        EXPECT_GT(f.Near(palette::kYellow, 40, Px(95), Py(101) - 1, Px(118), Py(101) + 2), 10) << mb;
    }
    for (double mb : {1012.99, 1013.4}) {
        in.baro_mb = mb;
        in.baro_inches = 29.92;
        Frame f = Draw();
        EXPECT_FALSE(f.Has("STD")) << mb;
        EXPECT_EQ(ColourOf(f, "QNH"), palette::kWhite) << mb;
        EXPECT_EQ(ColourOf(f, "1013"), palette::kCyan) << mb;
        EXPECT_TRUE(f.Has("29.92 IN")) << mb;
        EXPECT_EQ(f.Near(palette::kYellow, 40, Px(95), Py(101) - 1, Px(118), Py(101) + 2), 0) << mb;
    }
    in.baro_mb = 998.4;
    in.baro_inches = 29.48;
    Frame low = Draw();
    EXPECT_TRUE(low.Has(" 998"));
    EXPECT_TRUE(low.Has("29.48 IN"));
}

TEST_F(A320EadiTest, RadioAltitudeAndWarnings) {
    // Radio altitude just under its limit, at 81, -114 with its label.
    in.radio_altitude = 2499;
    Frame under = Draw();
    EXPECT_EQ(ColourOf(under, " 2499"), palette::kGreen);
    EXPECT_NEAR(LeftX(under, " 2499", 10), PxF(81), 1.5);
    EXPECT_NEAR(TopY(under, " 2499"), PyF(-114), 1.5);
    EXPECT_TRUE(under.Has("RA"));
    in.radio_altitude = 2500;
    Frame at = Draw();
    EXPECT_FALSE(at.Has(" 2500"));
    EXPECT_FALSE(at.Has("RA"));

    // Terrain over stall, in red over the ball.
    in.radio_altitude = 400;
    in.vertical_speed = -2500;
    in.stall = true;
    Frame both = Draw();
    EXPECT_EQ(ColourOf(both, "TERRAIN"), palette::kRed);
    EXPECT_FALSE(both.Has("STALL"));
    in.vertical_speed = -500;
    Frame stall = Draw();
    EXPECT_EQ(ColourOf(stall, "STALL"), palette::kRed);
    EXPECT_NEAR(LeftX(stall, "STALL", 17), PxF(-30), 1.5);
    EXPECT_FALSE(stall.Has("TERRAIN"));
}

TEST_F(A320EadiTest, HorizonStandsAtPitchAndTurnsWithBank) {
    // For a point of the ball, its height above the horizon in the turned
    // frame: x sin(bank) + y cos(bank) against pitch x 4.5 (y down).
    auto expect_side = [&](const Frame& f, double bank, double pitch, double x) {
        double b = bank * kPi / 180, horizon = pitch * 4.5;
        double y_on = (horizon - x * std::sin(b)) / std::cos(b);
        EXPECT_EQ(f.canvas.At(Px(x), Py(y_on - 5)), kSky) << bank << " " << pitch << " " << x;
        EXPECT_EQ(f.canvas.At(Px(x), Py(y_on + 5)), kGround) << bank << " " << pitch << " " << x;
    };
    in.pitch = 5;
    in.bank = 15;
    Frame right = Draw();
    for (double x : {-55.0, -25.0, 25.0, 55.0}) expect_side(right, 15, 5, x);
    // The horizon's slope, measured: the first ground pixel down two columns
    // 100 units apart.
    auto first_ground = [&](const Frame& f, double x) {
        for (int y = Py(-75); y < Py(75); ++y)
            if (f.canvas.At(Px(x), y) == kGround) return y;
        return -1;
    };
    double rise = first_ground(right, -50) - first_ground(right, 50);
    double slope_deg = std::atan2(rise * 310.0 / kH, 100.0) * 180 / kPi;
    EXPECT_NEAR(slope_deg, 15, 1.0);

    in.pitch = -8;
    in.bank = -25;
    Frame left = Draw();
    for (double x : {-30.0, -10.0, 20.0, 50.0}) expect_side(left, -25, -8, x);
}

TEST_F(A320EadiTest, TapesStripsAndReadouts) {
    Frame f = Draw();
    double px_per_unit = kH / 310.0;
    // Speed: 1.75 units a knot, labels every 20, the pointer level with the speed.
    EXPECT_NEAR(MiddleY(f, "240") - MiddleY(f, "260"), 20 * 1.75 * px_per_unit, 1.5);
    EXPECT_NEAR(MiddleY(f, "260"), PyF(-10 * 1.75), 1.5);
    EXPECT_FALSE(f.Has("190"));
    // Altitude: 0.065 units a foot, labels on the 200s within 1199 feet.
    EXPECT_NEAR(MiddleY(f, "10000") - MiddleY(f, "10200"), 200 * 0.065 * px_per_unit, 1.5);
    EXPECT_FALSE(f.Has("10100"));
    EXPECT_TRUE(f.Has("11200"));
    EXPECT_FALSE(f.Has("11400"));

    // Selected values within reach show only as bugs; beyond it they stand
    // in the strip's end, in cyan: speed above at the top, altitude below at
    // the bottom.
    EXPECT_EQ(FindIn(f, "250", palette::kCyan), nullptr);
    EXPECT_EQ(FindIn(f, "10000", palette::kCyan), nullptr);
    in.selected_ias = 300;  // 50 knots up: past the bug's 67 units
    in.selected_altitude = 8000;
    Frame pinned = Draw();
    const test_canvas::Seen* speed = FindIn(pinned, "300", palette::kCyan);
    ASSERT_NE(speed, nullptr);
    EXPECT_LT(speed->box.text_y + speed->box.text_height / 2, PyF(-70));
    EXPECT_NEAR(speed->box.text_x + speed->box.text_width / 2, PxF((-125 - 88) / 2.0), 2);
    const test_canvas::Seen* altitude = FindIn(pinned, " 8000", palette::kCyan);
    ASSERT_NE(altitude, nullptr);
    EXPECT_GT(altitude->box.text_y, PyF(60));
    in.selected_ias = 280;  // 30 knots: 50 units, on the scale
    in.selected_altitude = 9200;  // 850 feet: 55 units
    Frame reach = Draw();
    EXPECT_EQ(FindIn(reach, "280", palette::kCyan), nullptr);
    EXPECT_EQ(FindIn(reach, " 9200", palette::kCyan), nullptr);

    // Mach under the speed tape from above 0.5, two digits.
    in.mach = 0.5;
    EXPECT_FALSE(Draw().Has(".50"));
    in.mach = 0.78;
    Frame m = Draw();
    EXPECT_NEAR(LeftX(m, ".78", 10), PxF(-150), 1.5);
    EXPECT_NEAR(TopY(m, ".78"), PyF(120), 1.5);
    in.mach = 1.04;
    EXPECT_TRUE(Draw().Has("1.04"));

    // Vertical speed in hundreds past 100 fpm, above the scale in a climb.
    in.vertical_speed = 1549;
    Frame climb = Draw();
    EXPECT_LT(MiddleY(climb, "15"), PyF(-80));
    in.vertical_speed = -640;
    Frame sink = Draw();
    EXPECT_GT(MiddleY(sink, "06"), PyF(75));
    in.vertical_speed = 90;
    EXPECT_FALSE(Draw().Has("01"));
}

TEST_F(A320EadiTest, StationDataAndMarkers) {
    // Without a signal no station data and no ILS pointers.
    std::snprintf(in.nav_ident.data(), in.nav_ident.size(), "IMLU");
    in.nav_frequency = 109.5;
    in.dme = 12.34;
    in.loc_needle = 127;
    Frame none = Draw();
    EXPECT_FALSE(none.Has("IMLU"));
    EXPECT_EQ(none.Near(palette::kMagenta, 30), 0);

    in.nav_signal = true;
    Frame f = Draw();
    EXPECT_EQ(ColourOf(f, "IMLU"), palette::kMagenta);
    EXPECT_TRUE(f.Has("109.50"));
    EXPECT_TRUE(f.Has("12.3 NM"));
    EXPECT_GT(TopY(f, "109.50"), TopY(f, "IMLU"));
    EXPECT_GT(TopY(f, "12.3 NM"), TopY(f, "109.50"));
    // Full localizer deflection: the pointer 50 units right on the bottom scale.
    EXPECT_GT(f.Near(palette::kMagenta, 30, Px(46), Py(68), Px(54), Py(76)), 5);
    in.dme = 0;
    EXPECT_FALSE(Draw().Has("0.0 NM"));

    // Marker letters by the beacon, at 80, 88.
    struct Beacon {
        int state;
        const char* letter;
    };
    for (Beacon b : {Beacon{1, "O"}, Beacon{2, "M"}, Beacon{3, "I"}}) {
        in.marker = b.state;
        Frame mf = Draw();
        ASSERT_TRUE(mf.Has(b.letter)) << b.letter;
        EXPECT_NEAR(CentreX(mf, b.letter), PxF(86), 1.5);
        EXPECT_NEAR(MiddleY(mf, b.letter), PyF(94), 1.5);
    }
    in.marker = 0;
    Frame off = Draw();
    EXPECT_FALSE(off.Has("O"));
    EXPECT_FALSE(off.Has("M"));
    EXPECT_FALSE(off.Has("I"));
}

TEST(A320EadiShots, FlightStatesAsPictures) {
    // Pictures for a person to look at (build/linux/nd-shots/), at twice
    // the gauge's size; each is checked for the ball's two colours and the
    // state's own text.
    nd_test::FreshAircraft();
    struct Shot {
        const char* name;
        AttitudeInputs in;
        const char* text;
    };
    AttitudeInputs takeoff;
    takeoff.ias = 120, takeoff.altitude = 430, takeoff.radio_altitude = 0, takeoff.heading = 163;
    takeoff.heading_bug = 163, takeoff.selected_ias = 150, takeoff.selected_altitude = 5000;
    takeoff.autothrottle = true, takeoff.fd_switch = true, takeoff.ias_hold = true;
    AttitudeInputs climb = takeoff;
    climb.pitch = 12, climb.bank = -18, climb.ias = 250, climb.altitude = 8350, climb.radio_altitude = 8000;
    climb.vertical_speed = 2100, climb.selected_vs = 2000, climb.altitude_hold = true, climb.heading_bug = 140;
    climb.ap_master = true, climb.heading_hold = true, climb.selected_altitude = 11000, climb.selected_ias = 250;
    climb.fd_bank = -15, climb.fd_pitch = 10;
    AttitudeInputs approach = climb;
    approach.pitch = 2.5, approach.bank = 3, approach.ias = 142, approach.altitude = 1870;
    approach.radio_altitude = 1420, approach.vertical_speed = -720, approach.selected_vs = 0;
    approach.nav_signal = true, approach.approach_hold = true, approach.loc_captured = true;
    approach.nav_frequency = 110.9, approach.dme = 4.6, approach.loc_needle = -20, approach.gs_needle = 30;
    approach.marker = 1, approach.baro_mb = 1021, approach.baro_inches = 30.15, approach.heading = 25;
    approach.course = 25, approach.heading_bug = 25, approach.selected_ias = 140;
    std::snprintf(approach.nav_ident.data(), approach.nav_ident.size(), "ISEA");
    for (const Shot& shot : {Shot{"a320_takeoff.png", takeoff, "SPEED"}, Shot{"a320_climb.png", climb, "V/S +2000"},
                             Shot{"a320_approach.png", approach, "APP"}}) {
        g_display.fd_bank_bar = shot.in.fd_bank;  // the bars settled on their commands
        g_display.fd_pitch_bar = shot.in.fd_pitch;
        Frame frame = DrawPage(shot.in, 2 * kW, 2 * kH, true);
        EXPECT_GT(frame.canvas.CountColour(kSky), 500) << shot.name;
        EXPECT_GT(frame.canvas.CountColour(kGround), 500) << shot.name;
        EXPECT_TRUE(frame.Has(shot.text)) << shot.name;
        frame.WritePng(shot.name);
    }
}

}  // namespace
