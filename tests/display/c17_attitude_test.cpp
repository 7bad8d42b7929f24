// c17_attitude_test.cpp: the C-17 ATT page drawn from known aircraft
// states: mode boxes by priority and colour, the corner data's limits, the
// heading bug pinned with its value, the rolling readouts' drum digits, the
// slip bar and the marker, read back from the strings and pixels drawn.
#include "display/c17_attitude.h"

#include "display/display_state.h"
#include "frame/aircraft_profile.h"
#include "attitude_rig.h"

#include <cmath>

namespace {

using nd_test::Frame;
using attitude_rig::ColourOf;
using attitude_rig::MiddleY;

constexpr int kW = 246;  // drawn at the design size: a unit is a pixel
constexpr int kH = 241;

int Px(double x) { return static_cast<int>(std::lround(kC17AttCentreX + x)); }
int Py(double y) { return static_cast<int>(std::lround(kC17AttCentreY + y)); }

class C17AttitudeTest : public ::testing::Test {
protected:
    void SetUp() override {
        nd_test::FreshAircraft();
        in.ias = 250;
        in.altitude = 10050;
        in.heading = 100;
        in.heading_bug = 100;
        in.radio_altitude = 9000;
        in.ground_speed = 300;
        in.mach = 0.52;
        in.g_load = 1.0;
    }

    Frame Draw() { return attitude_rig::DrawPage(DrawC17AttitudeFrom, in, kW, kH, kW, kH); }
    // Where a string's box starts, in canvas pixels.
    static double LeftOf(const Frame& f, const char* text) {
        const test_canvas::Seen* s = f.Find(text);
        return s ? s->box.layout_x : -1e9;
    }
    // The same for a string drawn right of a canvas x (the ladder repeats numbers).
    static double MiddleYRightOf(const Frame& f, const char* text, double x) {
        for (const test_canvas::Seen& s : f.seen)
            if (s.text == text && s.box.text_x > x) return s.box.text_y + s.box.text_height / 2;
        return -1e9;
    }

    AttitudeInputs in;
};
}  // namespace

TEST_F(C17AttitudeTest, ModeBoxesTakeTheFirstModeThatHoldsAndShowArmedModesInWhite) {
    // Speed box: IAS before Mach; the selected values in their formats.
    in.ias_hold = true;
    in.mach_hold = true;
    in.selected_ias = 245;
    in.selected_mach = 0.78;
    Frame both = Draw();
    EXPECT_EQ(ColourOf(both, "IAS 245"), palette::kGreen);
    EXPECT_FALSE(both.Has("MACH 0.78"));
    in.ias_hold = false;
    EXPECT_EQ(ColourOf(Draw(), "MACH 0.78"), palette::kGreen);

    // Pitch box: VNAV with the altitude armed below it in white; alone the
    // altitude hold takes the top box in green; the glideslope beats VNAV.
    in.vnav_on = true;
    in.altitude_hold = true;
    in.selected_altitude = 12000;
    Frame vnav = Draw();
    EXPECT_EQ(ColourOf(vnav, "VNAV"), palette::kGreen);
    EXPECT_EQ(ColourOf(vnav, "ALT 120"), palette::kWhite);
    EXPECT_GT(MiddleY(vnav, "ALT 120"), MiddleY(vnav, "VNAV"));
    in.vnav_on = false;
    EXPECT_EQ(ColourOf(Draw(), "ALT 120"), palette::kGreen);
    in.approach_hold = true;
    in.gs_captured = true;
    in.vnav_on = true;
    Frame gs = Draw();
    EXPECT_TRUE(gs.Has("G/S1 CAP"));
    EXPECT_FALSE(gs.Has("VNAV"));

    // Roll box: LNAV with the heading hold gives LNAV first and the heading
    // second in white; with the approach armed "APPR" takes the second box.
    in = {};
    in.lnav_on = true;
    in.heading_hold = true;
    in.heading_bug = 275;
    Frame lnav = Draw();
    EXPECT_EQ(ColourOf(lnav, "LNAV"), palette::kGreen);
    EXPECT_EQ(ColourOf(lnav, "HDG 275"), palette::kWhite);
    EXPECT_GT(MiddleY(lnav, "HDG 275"), MiddleY(lnav, "LNAV"));
    in.approach_hold = true;
    Frame appr = Draw();
    EXPECT_EQ(ColourOf(appr, "APPR"), palette::kWhite);
    EXPECT_FALSE(appr.Has("HDG 275"));
    in.loc_captured = true;
    Frame loc = Draw();
    EXPECT_TRUE(loc.Has("LOC1 CAP"));
    EXPECT_FALSE(loc.Has("LNAV"));
    in = {};
    in.heading_hold = true;
    in.heading_bug = 5;
    EXPECT_EQ(ColourOf(Draw(), "HDG 005"), palette::kGreen);
}

TEST_F(C17AttitudeTest, CornerDataFollowsItsLimitsAndTheNavSignal) {
    in.radio_altitude = 2499;
    in.decision_height = 200;
    in.vertical_speed = -1500;
    in.g_load = 1.26;
    Frame low = Draw();
    EXPECT_TRUE(low.Has("RA 2499"));
    EXPECT_FALSE(low.Has("DH  200"));  // the minimums show only below 2000 feet
    EXPECT_TRUE(low.Has("VV -15"));
    EXPECT_TRUE(low.Has("1.3 G"));
    EXPECT_TRUE(low.Has("GS 300"));
    EXPECT_TRUE(low.Has("M  .52"));
    in.radio_altitude = 1999;
    EXPECT_TRUE(Draw().Has("DH  200"));
    in.radio_altitude = 2500;
    EXPECT_FALSE(Draw().Has("RA 2500"));

    // The station block only with a signal.
    in.course = 47;
    in.dme = 12.34;
    in.nav_ident = {'I', 'S', 'E', 'A', 0};
    EXPECT_FALSE(Draw().Has("D12.3"));
    in.nav_signal = true;
    Frame nav = Draw();
    EXPECT_TRUE(nav.Has("047"));
    EXPECT_TRUE(nav.Has("V1"));
    EXPECT_TRUE(nav.Has("D12.3"));
    EXPECT_TRUE(nav.Has("ISEA"));
}

TEST_F(C17AttitudeTest, HeadingBugPinsAtTheStripEndWithItsValueAndWarningsKeepTheirOrder) {
    // 30 degrees right is 60 units: pinned at 55 with its value printed, in cyan.
    in.heading_bug = 130;
    Frame pinned = Draw();
    const test_canvas::Seen* bug = pinned.Find("130");
    ASSERT_NE(bug, nullptr);
    EXPECT_EQ(bug->box.argb, palette::kSkyBlue);
    EXPECT_NEAR(bug->box.text_x + bug->box.text_width / 2, Px(55), 1.5);
    in.heading_bug = 90;  // 20 units left: on the strip, no value
    EXPECT_FALSE(Draw().Has("090"));

    // TERRAIN and STALL both true: only TERRAIN; STALL alone stands at -30.
    in.radio_altitude = 400;
    in.vertical_speed = -2500;
    in.stall = true;
    Frame both = Draw();
    EXPECT_EQ(ColourOf(both, "TERRAIN"), palette::kRed);
    EXPECT_FALSE(both.Has("STALL"));
    in.vertical_speed = 0;
    Frame stall = Draw();
    EXPECT_NEAR(LeftOf(stall, "STALL"), Px(-30), 1.5);
}

TEST_F(C17AttitudeTest, ReadoutsRollTheirLastDigits) {
    // 254.5 knots: "25" stands still, the drum shows 4 and 5 half way, the
    // 5 a half drum step (10 units) above the 4.
    in.ias = 254.5;
    in.altitude = 10030;  // 30 feet: the drum between 20 and 40
    Frame f = Draw();
    EXPECT_TRUE(f.Has("25"));
    ASSERT_TRUE(f.Has("4"));
    ASSERT_TRUE(f.Has("5"));
    EXPECT_NEAR(MiddleY(f, "4") - MiddleY(f, "5"), 20, 1.5);
    EXPECT_NEAR((MiddleY(f, "4") + MiddleY(f, "5")) / 2, Py(0), 1.5);
    EXPECT_TRUE(f.Has("100"));  // the altitude's hundreds
    double drum_20 = MiddleYRightOf(f, "20", Px(100)), drum_40 = MiddleYRightOf(f, "40", Px(100));
    EXPECT_NEAR(drum_20 - drum_40, 8 * 1.2, 1.5);  // a line of the 8-unit readout font apart
    EXPECT_NEAR((drum_20 + drum_40) / 2, Py(0), 1.5);

    // A tape label every 20 knots within 50, none below 0.
    in.ias = 30;
    in.altitude = 5000;
    Frame slow = Draw();
    EXPECT_TRUE(slow.Has(" 60"));
    EXPECT_FALSE(slow.Has(" -20"));
    EXPECT_FALSE(slow.Has("100"));
}

TEST_F(C17AttitudeTest, SlipBarAndMarkerShowWhereTheyShould) {
    // A full ball right puts the 10 x 3 bar 8 units right, at y = -72.
    in.slip_ball = 127;
    Frame slip = Draw();
    EXPECT_EQ(slip.canvas.At(Px(8 + 3), Py(-71)), palette::kWhite);
    EXPECT_NE(slip.canvas.At(Px(-4), Py(-71)), palette::kWhite);
    in.slip_ball = 0;
    Frame centred = Draw();
    EXPECT_EQ(centred.canvas.At(Px(-4), Py(-71)), palette::kWhite);

    // Middle marker: an "M" on the heading strip's top; none without a marker.
    in.marker = 2;
    EXPECT_TRUE(Draw().Has("M"));
    in.marker = 0;
    EXPECT_FALSE(Draw().Has("M"));
}
