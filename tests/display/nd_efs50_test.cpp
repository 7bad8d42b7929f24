// The EFS50_EHSI drawn in-process: the frame, the two switches and where the
// map runs, the layers' range gates, the route where the projection puts it
// on the rose and on the arc, the corner texts of both nav modes, the descent
// marks with their option, the 8 nm rule and the card's clip, the altitude
// range arc by its option, the heading pointer option, the bearing pointers,
// the traffic picture of mode 8, and pictures of every mode.
#include "display/nd_efs50.h"
#include "display/traffic.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
// The surface is the design canvas itself, so design pixels are surface pixels.
constexpr int kWidth = 266;
constexpr int kHeight = 230;

Frame DrawEfs50(int instance = 1, GaugeId id = GaugeId::EFS50_EHSI) {
    return DrawNd(instance, id, kWidth, kHeight);
}

MapSwitches& Efs50Switches() { return g_display.switches[static_cast<size_t>(MapFamily::EFS50)]; }

}  // namespace

TEST(Efs50Frame, DarkWithoutPowerLitWithTheProfilesBackgroundOnBothGauges) {
    FreshAircraft();
    g_profile.EFS50EHSIBkgrd = {20, 40, 0};
    for (GaugeId id : {GaugeId::EFS50_EHSI, GaugeId::EFS50_EHSI_NB}) {
        Frame lit = DrawEfs50(1, id);
        EXPECT_EQ(lit.canvas.At(kWidth - 2, kHeight - 2), 0xFF142800u);
        EXPECT_TRUE(lit.Has("HSI"));                     // the default HSI mode, 1
        EXPECT_TRUE(lit.Has("VOR1") || lit.Has("LOC1")); // nav mode 1, the radio
    }
    g_sim.avionics_power = 0;
    Frame dark = DrawEfs50();
    EXPECT_EQ(dark.canvas.InkedAll(), 0);
    EXPECT_TRUE(dark.seen.empty());
}

TEST(Efs50Modes, MapOnlyWithTheFlightPlanInModesTwoThreeFiveSix) {
    FreshAircraft();
    Efs50Switches() = {1, 1, 1, 0};
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    double north_lat = 0, north_lon = 0;
    Offset(0, 6, north_lat, north_lon);
    PlacePlan({{"START", g_sim.latitude - 0.1, g_sim.longitude}, {"NORTH", north_lat, north_lon}}, 1);
    const char* names[] = {"", "HSI", "ROSE", "ROSE MAP", "ARC HSI", "ARC", "ARC MAP", "ARC BRG"};
    for (int nav : {1, 2}) {
        for (int mode = 1; mode <= 7; ++mode) {
            g_display.efs50_nav_mode = nav;
            g_display.efs50_hsi_mode = mode;
            bool map = nav == 2 && (mode == 2 || mode == 3 || mode == 5 || mode == 6);
            Frame f = DrawEfs50();
            const test_canvas::Seen* name = f.Find(names[mode]);
            ASSERT_NE(name, nullptr) << mode;
            EXPECT_NEAR(name->box.layout_x, 4, 1);
            EXPECT_NEAR(name->box.layout_y, 214, 1);
            EXPECT_EQ(f.Has("SEA"), map) << nav << "/" << mode;
            EXPECT_EQ(SeenBelowCorner(f, "NORTH") != nullptr, map) << nav << "/" << mode;   // no route at nav mode 1
            EXPECT_EQ(f.Has("12.5 NM"), map) << nav << "/" << mode;               // the range over a map
            EXPECT_EQ(f.Has("FMS"), nav == 2);
        }
    }
    // A corrupt mode shows the HSI, not a blank; a corrupt nav mode the radio.
    g_display.efs50_hsi_mode = 12;
    g_display.efs50_nav_mode = 0;
    Frame odd = DrawEfs50();
    EXPECT_TRUE(odd.Has("HSI"));
    EXPECT_FALSE(odd.Has("FMS"));
    EXPECT_FALSE(odd.Has("SEA"));
}

TEST(Efs50Layers, RangeGatesSwitchesAndInstanceThree) {
    FreshAircraft();
    Efs50Switches() = {1, 1, 1, 0};
    g_display.efs50_nav_mode = kEfs50NavFms;
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.47, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.46, -122.30);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.465, -122.32);
    struct Case {
        double range;
        bool navaids, airports, fixes;
    };
    for (int mode : {2, 3, 5, 6}) {
        for (Case c : {Case{1, true, true, true}, Case{40, true, true, true}, Case{80, true, true, false},
                       Case{160, true, true, false}}) {
            g_display.efs50_hsi_mode = mode;
            g_display.efs50_range = c.range;
            Frame f = DrawEfs50();
            EXPECT_EQ(f.Has("SEA"), c.navaids) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("KBFI"), c.airports) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("ALDER"), c.fixes) << mode << " @ " << c.range;
        }
    }
    // Instance 3 drops the intersections only; the EFS 50's own switches gate.
    g_display.efs50_hsi_mode = kEfs50ModeArcMap;
    g_display.efs50_range = 25;
    Frame vc = DrawEfs50(3);
    EXPECT_FALSE(vc.Has("ALDER"));
    EXPECT_TRUE(vc.Has("SEA"));
    Efs50Switches() = {};
    g_display.switches[static_cast<size_t>(MapFamily::B737)] = {1, 1, 1, 1};
    Frame off = DrawEfs50();
    EXPECT_FALSE(off.Has("SEA"));
    EXPECT_FALSE(off.Has("KBFI"));
    EXPECT_FALSE(off.Has("ALDER"));
    Efs50Switches().navaids = 1;
    Frame navaids = DrawEfs50();
    EXPECT_TRUE(navaids.Has("SEA"));
    EXPECT_FALSE(navaids.Has("KBFI"));
}

TEST(Efs50Route, IdentsWhereTheProjectionPutsThemOnRoseAndArc) {
    FreshAircraft();
    g_display.efs50_nav_mode = kEfs50NavFms;
    double north_lat = 0, north_lon = 0;
    Offset(0, 12, north_lat, north_lon);
    PlacePlan({{"START", g_sim.latitude - 0.1, g_sim.longitude}, {"NORTH", north_lat, north_lon}}, 1);
    g_display.efs50_range = 25;

    // The rose: centre (129, 114), 50 pixels for 25 nm: 12 nm up is 24
    // pixels; the ident stands 7 right of and 7 above its symbol.
    g_display.efs50_hsi_mode = kEfs50ModeRoseMap;
    Frame rose = DrawEfs50();
    const test_canvas::Seen* north = SeenBelowCorner(rose, "NORTH");
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 129 + 7, 1.5);
    EXPECT_NEAR(north->box.layout_y, 114 - 12.0 * 50 / 25 - 7, 2);
    EXPECT_EQ(rose.CountText("NORTH"), 2);              // on the map and in the corner
    EXPECT_FALSE(rose.Has("START"));

    // The arc: centre (129, 190), 95 pixels for 25 nm; heading west puts
    // NORTH 12 nm to the right on the centre's row.
    g_display.efs50_hsi_mode = kEfs50ModeArcNav;
    g_sim.heading_true = 270;
    Frame arc = DrawEfs50();
    north = SeenBelowCorner(arc, "NORTH");
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 129 + 12.0 * 95 / 25 + 7, 2);
    EXPECT_NEAR(north->box.layout_y, 190 - 7, 2);
}

TEST(Efs50Texts, CornersOfTheRadioAndTheFlightPlan) {
    FreshAircraft();
    g_sim.ground_speed = 287;
    g_sim.nav1_is_vor = 1;
    g_sim.nav1_obs = 44.6;
    g_sim.dme1_distance = 12.34;
    Frame radio = DrawEfs50();
    auto at = [](const Frame& f, const char* text, double x, double y) {
        const test_canvas::Seen* s = f.Find(text);
        ASSERT_NE(s, nullptr) << text;
        EXPECT_NEAR(s->box.layout_x, x, 1) << text;
        EXPECT_NEAR(s->box.layout_y, y, 1) << text;
    };
    at(radio, "VOR1", 4, 2);
    at(radio, "CRS 045", 4, 16);
    at(radio, "GS 287", 4, 30);
    EXPECT_TRUE(radio.Has("12.3 NM"));                  // the DME, one decimal
    EXPECT_EQ(radio.Find("VOR1")->box.argb, 0xFF00FA00u);
    g_sim.nav1_is_vor = 0;
    g_sim.dme1_distance = 0;
    Frame localiser = DrawEfs50();
    EXPECT_TRUE(localiser.Has("LOC1"));
    EXPECT_TRUE(localiser.Has("--- NM"));               // no DME

    // The flight plan: its source in magenta, the leg's course, the active
    // waypoint and the distance to it right-aligned at the top right.
    g_display.efs50_nav_mode = kEfs50NavFms;
    Frame empty = DrawEfs50();
    EXPECT_TRUE(empty.Has("CRS ---"));                  // no plan, no course
    EXPECT_TRUE(empty.Has("--- NM"));
    double lat = 0, lon = 0;
    Offset(0, 30, lat, lon);
    PlacePlan({{"START", g_sim.latitude, g_sim.longitude}, {"OLM", lat, lon}}, 1);
    g_lnav.LegCourse = 123.4;
    g_lnav.DistToActive = 29.96;
    Frame fms = DrawEfs50();
    at(fms, "FMS", 4, 2);
    EXPECT_EQ(fms.Find("FMS")->box.argb, 0xFFFF13D5u);
    at(fms, "CRS 123", 4, 16);
    ASSERT_TRUE(fms.Has("OLM"));
    EXPECT_EQ(fms.Find("OLM")->box.argb, 0xFFFF13D5u);
    ASSERT_TRUE(fms.Has("30.0 NM"));
    // Right-aligned: the text ends at x 262.
    const test_canvas::Seen* distance = fms.Find("30.0 NM");
    EXPECT_NEAR(distance->box.text_x + distance->box.text_width, 262, 2);
    EXPECT_FALSE(fms.Has("VOR1"));
}

TEST(Efs50Marks, OptionEightMileRuleAndTheCardsClip) {
    FreshAircraft();
    g_display.efs50_nav_mode = kEfs50NavFms;
    g_display.efs50_hsi_mode = kEfs50ModeRoseMap;
    g_display.efs50_range = 50;
    double wpt_lat = 0, wpt_lon = 0, td_lat = 0, td_lon = 0;
    Offset(180, 40, wpt_lat, wpt_lon);                  // the active waypoint behind, clear of the T/D
    // The T/D 55 nm out at 60 degrees right: at 50 nm a ring of 50 pixels
    // puts it 55 pixels from the centre, inside the card's 100.
    Offset(60, 55, td_lat, td_lon);
    PlacePlan({{"START", g_sim.latitude, g_sim.longitude}, {"AWAY", wpt_lat, wpt_lon}}, 1);
    g_plan.context.CruiseAltitude = 35000;
    g_vnav.VnavOn = 1;
    g_vnav.TopOfDescentLatitude = td_lat;
    g_vnav.TopOfDescentLongitude = td_lon;
    g_lnav.DistToActive = 40;
    const double a = 60 * 3.14159265358979 / 180;
    auto green_at = [&](const Frame& f, double pixels) {
        int x = static_cast<int>(129 + pixels * std::sin(a)), y = static_cast<int>(114 - pixels * std::cos(a));
        return f.Near(0xFF00FA00, 40, x - 4, y - 4, x + 5, y + 5);
    };
    Frame shown = DrawEfs50();
    EXPECT_TRUE(shown.Has("[TOD]"));
    EXPECT_GT(green_at(shown, 55), 10);
    // 8 nm to go is not more than 8: no marks.
    g_lnav.DistToActive = 8.0;
    EXPECT_FALSE(DrawEfs50().Has("[TOD]"));
    g_lnav.DistToActive = 8.5;
    EXPECT_TRUE(DrawEfs50().Has("[TOD]"));
    // The option off: none.
    g_config.ShowTodBodIndicators = 0;
    EXPECT_FALSE(DrawEfs50().Has("[TOD]"));
    g_config.ShowTodBodIndicators = 1;
    // At 25 nm the T/D lies 110 pixels out, beyond the card: cut off by the clip.
    g_display.efs50_range = 25;
    Frame clipped = DrawEfs50();
    EXPECT_EQ(green_at(clipped, 110), 0);
    // Without the map (the radio) no marks at all.
    g_display.efs50_nav_mode = kEfs50NavRadio;
    g_display.efs50_range = 50;
    EXPECT_FALSE(DrawEfs50().Has("[TOD]"));
}

TEST(Efs50Marks, AltitudeRangeArcOnlyWithItsOption) {
    FreshAircraft();
    g_display.efs50_nav_mode = kEfs50NavFms;
    g_display.efs50_hsi_mode = kEfs50ModeRoseMap;
    g_display.efs50_range = 25;
    g_sim.autopilot_master = 1;
    g_sim.altitude_hold = 1;
    g_sim.indicated_altitude.now = 10000;
    g_sim.autopilot_altitude.now = 5000;
    g_sim.vertical_speed.now = -1000;
    g_sim.ground_speed = 300;
    // 5000 ft at 1000 ft/min is 5 minutes, 25 nm at 300 kt: 50 pixels ahead,
    // the top of the arc at (129, 64).
    auto green_top = [](const Frame& f) { return f.Near(0xFF00FA00, 90, 110, 61, 150, 68); };
    g_config.DrawBodArcOnEFS50EHSI = 0;
    Frame without = DrawEfs50();
    EXPECT_EQ(green_top(without), 0);
    g_config.DrawBodArcOnEFS50EHSI = 1;
    Frame with = DrawEfs50();
    with.WritePng("efs50_ehsi_altitude_arc.png");
    EXPECT_GT(green_top(with), 20);
    // Climbing, nothing.
    g_sim.vertical_speed.now = 500;
    EXPECT_EQ(green_top(DrawEfs50()), 0);
}

TEST(Efs50Furniture, HeadingPointerOptionAndBearingPointers) {
    FreshAircraft();
    g_sim.heading_magnetic.now = 100;
    g_sim.track = 130;                                  // 30 degrees of drift to the right
    // Just outside the card's ring, at the top and 30 degrees right of it.
    const double a = 30 * 3.14159265358979 / 180;
    int tx = static_cast<int>(129 + 106 * std::sin(a)), ty = static_cast<int>(114 - 106 * std::cos(a));
    auto top = [](const Frame& f) { return f.Near(0xFFDEE6E9, 30, 126, 6, 133, 12); };
    auto drifted = [&](const Frame& f) { return f.Near(0xFFDEE6E9, 30, tx - 3, ty - 3, tx + 4, ty + 4); };
    g_config.EhsiStaticHdgPointer = 1;
    Frame fixed = DrawEfs50();
    EXPECT_GT(top(fixed), 10);
    EXPECT_EQ(drifted(fixed), 0);
    g_config.EhsiStaticHdgPointer = 0;
    Frame moving = DrawEfs50();
    EXPECT_EQ(top(moving), 0);
    EXPECT_GT(drifted(moving), 10);
    g_config.EhsiStaticHdgPointer = 1;

    // Bearing pointer 1 on VOR 1, abeam right: cyan along the centre's row.
    g_sim.nav1_relative_bearing = 90;
    g_sim.adf_needle = 270;
    auto right_cyan = [](const Frame& f) { return f.Near(0xFF00E6E9, 30, 155, 108, 225, 121); };
    auto left_cyan = [](const Frame& f) { return f.Near(0xFF00E6E9, 30, 33, 108, 103, 121); };
    Frame none = DrawEfs50();
    EXPECT_EQ(right_cyan(none), 0);
    g_display.efs50_bearing = {kEfs50BearingVor1, kEfs50BearingOff};
    Frame vor = DrawEfs50();
    EXPECT_GT(right_cyan(vor), 30);
    EXPECT_LT(left_cyan(vor), 15);                      // only the short tail on the far side
    EXPECT_TRUE(vor.Has("VOR1"));
    // The ADF source: nothing without a signal, to the left with one.
    g_display.efs50_bearing = {kEfs50BearingAdf, kEfs50BearingOff};
    g_sim.adf_signal = 0.5;
    Frame quiet = DrawEfs50();
    EXPECT_EQ(right_cyan(quiet) + left_cyan(quiet), 0);
    EXPECT_FALSE(quiet.Has("ADF"));
    g_sim.adf_signal = 5;
    Frame adf = DrawEfs50();
    EXPECT_GT(left_cyan(adf), 30);
    ASSERT_TRUE(adf.Has("ADF"));
    EXPECT_NEAR(adf.Find("ADF")->box.layout_x, 4, 1);
    // The second pointer's legend stands at the right, named by its source.
    g_display.efs50_bearing = {kEfs50BearingOff, kEfs50BearingVor2};
    Frame second = DrawEfs50();
    ASSERT_TRUE(second.Has("VOR2"));
    EXPECT_NEAR(second.Find("VOR2")->box.text_x + second.Find("VOR2")->box.text_width, 262, 2);
}

TEST(Efs50Traffic, OnlyInModeEightAtTheTrafficRange) {
    FreshAircraft();
    g_config.TcasVertRange = 140;
    // A traffic advisory 5 nm abeam right, 300 ft above.
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = {90, 5, 3, '-', 'T'};
    g_display.efs50_nav_mode = kEfs50NavFms;
    g_display.efs50_hsi_mode = kEfs50ModeArcMap;
    Efs50Switches().traffic = 1;
    g_display.efs50_range = 12.5;
    EXPECT_FALSE(DrawEfs50().Has("+3"));                // not over the map
    g_display.efs50_hsi_mode = kEfs50ModeTraffic;
    g_display.efs50_traffic_range = 10;
    Frame tfc = DrawEfs50();
    tfc.WritePng("efs50_ehsi_traffic.png");
    EXPECT_TRUE(tfc.Has("TFC"));
    EXPECT_TRUE(tfc.Has("10 NM"));
    const test_canvas::Seen* target = tfc.Find("+3");
    ASSERT_NE(target, nullptr);
    // Centre (129, 118), 92 pixels for 10 nm: 5 nm right is 46 pixels; the
    // text 13 left of and 12 below the symbol, yellow for an advisory.
    EXPECT_NEAR(target->box.layout_x, 129 + 46 - 13, 1.5);
    EXPECT_NEAR(target->box.layout_y, 118 + 12, 1.5);
    EXPECT_EQ(target->box.argb, 0xFFFFFF00u);
    // At 20 nm the same target stands half as far out: 23 pixels.
    g_display.efs50_traffic_range = 20;
    Frame wide = DrawEfs50();
    EXPECT_TRUE(wide.Has("20 NM"));
    ASSERT_TRUE(wide.Has("+3"));
    EXPECT_NEAR(wide.Find("+3")->box.layout_x, 129 + 23 - 13, 1.5);
    // The switch off: "OFF" and no targets.
    g_display.efs50_traffic_range = 10;
    Efs50Switches().traffic = 0;
    Frame off = DrawEfs50();
    EXPECT_TRUE(off.Has("OFF"));
    EXPECT_FALSE(off.Has("+3"));
    EXPECT_FALSE(off.Has("10 NM"));

    // The TCAS key at HSI mode 4, twice: the traffic picture, then ARC HSI again.
    g_display.efs50_hsi_mode = kEfs50ModeArcHsi;
    ToggleTraffic();
    Frame first = DrawEfs50();
    EXPECT_TRUE(first.Has("TFC"));
    EXPECT_TRUE(first.Has("+3"));
    ToggleTraffic();
    Frame second = DrawEfs50();
    EXPECT_TRUE(second.Has("ARC HSI"));
    EXPECT_FALSE(second.Has("TFC"));
    EXPECT_FALSE(second.Has("+3"));
}

TEST(Efs50Shots, EveryModeAsAPicture) {
    // Pictures for a person to look at; each checked for its needle and map.
    FreshAircraft();
    Efs50Switches() = {1, 1, 1, 1};
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    double a_lat = 0, a_lon = 0, b_lat = 0, b_lon = 0;
    Offset(20, 8, a_lat, a_lon);
    Offset(60, 17, b_lat, b_lon);
    PlacePlan({{"START", g_sim.latitude, g_sim.longitude}, {"ALPHA", a_lat, a_lon}, {"BRAVO", b_lat, b_lon}}, 1);
    g_sim.heading_true = 20;
    g_sim.heading_magnetic.now = 3;
    g_sim.heading_bug.now = 15;
    g_sim.nav1_obs = 30;
    g_sim.nav1_needle = 40;
    g_sim.nav1_relative_bearing = 300;
    g_sim.adf_signal = 5;
    g_sim.adf_needle = 40;
    g_display.efs50_bearing = {kEfs50BearingVor1, kEfs50BearingAdf};
    g_lnav.LegCourse = 25;
    g_lnav.XtkDistance = 0.5;
    g_lnav.DistToActive = 8.2;
    g_display.efs50_range = 12.5;
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = {60, 4, -5, '^', 'R'};
    for (int nav : {1, 2}) {
        for (int mode = 1; mode <= 8; ++mode) {
            g_display.efs50_nav_mode = nav;
            g_display.efs50_hsi_mode = mode;
            Frame frame = DrawEfs50();
            char name[40];
            std::snprintf(name, sizeof name, "efs50_ehsi_nav%d_mode%d.png", nav, mode);
            frame.WritePng(name);
            EXPECT_GT(frame.canvas.InkedAll(), 1500) << name;
            // The radio's needle is green; the flight plan's and the route magenta.
            int green = frame.Near(0xFF00FA00, 40, 40, 40, 220, 200);
            int magenta = frame.Near(0xFFFF13D5, 40, 40, 40, 220, 200);
            bool needle = mode != 7 && mode != 8 && !(nav == 2 && (mode == 3 || mode == 6));
            if (mode == 8) {
                EXPECT_TRUE(frame.Has("-5")) << name;      // the target's text
            } else if (nav == 1) {
                EXPECT_EQ(green > 20, needle) << name;
                EXPECT_LT(magenta, 10) << name;
            } else {
                bool map = mode == 2 || mode == 3 || mode == 5 || mode == 6;
                EXPECT_EQ(magenta > 20, needle || map) << name;
                EXPECT_EQ(frame.Has("SEA"), map) << name;
            }
        }
    }
}
