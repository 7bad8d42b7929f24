// The DU_1000_EHSI drawn in-process: both gauge names, the four modes in the
// knob's order and the range ladder's limits, the rule that runs the map
// layers, the layers' range gates and the display's own VOR and NDB
// switches and symbols, idents where the projection puts them, traffic only
// on the map modes, the texts of a known state, and pictures of each mode.
#include "display/display_state.h"
#include "display/nd_du1000.h"
#include "display/traffic.h"
#include "frame/gauge_table.h"
#include "frame/global_config.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
// The surface is the design canvas itself, so design pixels are surface pixels.
constexpr int kWidth = 318;
constexpr int kHeight = 310;
// The arc's centre and radius, as the display is laid out.
constexpr double kCx = 159;
constexpr double kCy = 272;
constexpr double kRadius = 234;

Frame DrawDu(int instance = 1, GaugeId id = GaugeId::DU_1000_EHSI) {
    return DrawNd(instance, id, kWidth, kHeight);
}

MapSwitches& DuSwitches() { return g_display.switches[static_cast<size_t>(MapFamily::DU1000)]; }

// A modification waiting in ModPlan: its idents show whenever the map layers run.
void PendingModification() {
    double lat = 0, lon = 0;
    Offset(10, 8, lat, lon);
    for (int i = 0; i < 2; ++i) NewPlanRow(g_plan.ModPlan[static_cast<size_t>(i)]);
    std::snprintf(g_plan.ModPlan[0].Ident.data(), g_plan.ModPlan[0].Ident.size(), "MODA");
    std::snprintf(g_plan.ModPlan[1].Ident.data(), g_plan.ModPlan[1].Ident.size(), "MODB");
    g_plan.ModPlan[0].Latitude = g_sim.latitude;
    g_plan.ModPlan[0].Longitude = g_sim.longitude;
    g_plan.ModPlan[1].Latitude = lat;
    g_plan.ModPlan[1].Longitude = lon;
    g_plan.context.ModLastRow = 1;
    g_plan.context.PlanState = 1;
}
}  // namespace

TEST(Du1000Frame, BothGaugesDrawThePageDarkWithoutPower) {
    FreshAircraft();
    g_profile.DU1000EHSIBkgrd = {0, 40, 70};
    for (GaugeId id : {GaugeId::DU_1000_EHSI, GaugeId::DU_1000_EHSI_NB}) {
        Frame lit = DrawDu(1, id);
        EXPECT_EQ(lit.canvas.At(kWidth - 2, kHeight - 2), 0xFF002846u) << GaugeName(id);
        EXPECT_TRUE(lit.Has("ROSE")) << GaugeName(id);   // the default mode, 0
    }
    g_sim.avionics_power = 0;
    Frame dark = DrawDu();
    EXPECT_EQ(dark.canvas.InkedAll(), 0);
    EXPECT_TRUE(dark.seen.empty());
    g_sim.avionics_power = 1;
    Frame screen_off = DrawDu(2);
    EXPECT_EQ(screen_off.canvas.InkedAll(), 0);
}

TEST(Du1000Modes, KnobOrderNamesAndTheRangeLimits) {
    FreshAircraft();
    EXPECT_EQ(g_display.du1000_mode, 0);
    EXPECT_DOUBLE_EQ(g_display.du1000_range, 60);
    g_sim.nav1_is_vor = 1;
    // Up 0, 1, 3, 2 and stop; each mode's name bottom left; the range only on the maps.
    struct Step {
        int mode;
        const char* name;
        bool map;
    };
    const Step up[] = {{1, "ARC", false}, {3, "ARC", true}, {2, "MAP", true}, {2, "MAP", true}};
    for (Step s : up) {
        StepMode(1, kStepDu1000);
        ASSERT_EQ(g_display.du1000_mode, s.mode);
        Frame f = DrawDu();
        const test_canvas::Seen* name = f.Find(s.name);
        ASSERT_NE(name, nullptr) << s.mode;
        EXPECT_NEAR(name->box.layout_x, 6, 1);
        EXPECT_NEAR(name->box.layout_y, 292, 1);
        EXPECT_FALSE(f.Has("ROSE"));
        EXPECT_EQ(f.Has("60 NM"), s.map) << s.mode;
        EXPECT_EQ(f.Has("VOR 1"), s.mode != 2) << s.mode;   // the course needle's receiver
    }
    // Down 2, 3, 1, 0 and stop; stepping every display steps this one too.
    for (int expected : {3, 1, 0, 0}) {
        StepMode(-1, kStepDu1000);
        EXPECT_EQ(g_display.du1000_mode, expected);
    }
    StepMode(1, kStepAllDisplays);
    EXPECT_EQ(g_display.du1000_mode, 1);
    StepMode(1, kStepB737);
    EXPECT_EQ(g_display.du1000_mode, 1);
    // A corrupt mode shows the rose rather than nothing.
    g_display.du1000_mode = 9;
    EXPECT_TRUE(DrawDu().Has("ROSE"));

    // The ladder's top holds at 240.
    g_display.du1000_mode = kDu1000ModeMap;
    for (double expected : {120.0, 240.0, 240.0}) {
        RangeUp();
        EXPECT_DOUBLE_EQ(g_display.du1000_range, expected);
    }
    EXPECT_TRUE(DrawDu().Has("240 NM"));
    // Down: from 15 on, MinMapRange decides. At 20 the step from 30 to 15 is
    // free (above the gate), from 15 to 10 refused.
    g_config.MinMapRange = 20;
    g_display.du1000_range = 30;
    RangeDown();
    EXPECT_DOUBLE_EQ(g_display.du1000_range, 15);
    RangeDown();
    EXPECT_DOUBLE_EQ(g_display.du1000_range, 15);
    // With the option at the bottom rung the whole ladder opens, and stops there.
    g_config.MinMapRange = 0.05;
    const double down[] = {10, 5, 2.5, 1, 0.5, 0.25, 0.125, 0.05, 0.05};
    for (double expected : down) {
        RangeDown();
        EXPECT_DOUBLE_EQ(g_display.du1000_range, expected);
    }
    EXPECT_TRUE(DrawDu().Has("0.05 NM"));
}

TEST(Du1000Layers, MapLayersRunOnlyOnMapModesWithSomethingToShow) {
    FreshAircraft();
    g_display.du1000_range = 30;
    PendingModification();
    // Nothing to show: the modification's idents stay off even on the map modes.
    for (int mode : {0, 1, 2, 3}) {
        g_display.du1000_mode = mode;
        EXPECT_FALSE(Du1000MapLayersRun(mode)) << mode;
        EXPECT_FALSE(DrawDu().Has("MODB")) << mode;
    }
    // Each reason alone runs them on modes 2 and 3, never on 0 and 1.
    auto each_reason = [](int which, bool on) {
        MapSwitches& s = DuSwitches();
        switch (which) {
        case 0: s.airports = on; break;
        case 1: s.navaids = on; break;
        case 2: s.intersections = on; break;
        case 3: g_display.du1000_ndb = on; break;
        case 4: s.traffic = on; break;
        case 5: g_display.AtcBoundariesShown = on; break;
        case 6:
            if (on) PlacePlan({{"HERE", g_sim.latitude, g_sim.longitude}, {"THERE", 47.6, -122.31}}, 1);
            else g_plan.context.ActiveLeg = kNoActiveLeg;
            break;
        }
    };
    for (int which = 0; which <= 6; ++which) {
        each_reason(which, true);
        for (int mode : {0, 1, 2, 3}) {
            g_display.du1000_mode = mode;
            bool map = mode == 2 || mode == 3;
            EXPECT_EQ(Du1000MapLayersRun(mode), map) << which << " mode " << mode;
            EXPECT_EQ(DrawDu().Has("MODB"), map) << which << " mode " << mode;
        }
        each_reason(which, false);
    }
    // Another family's switches don't count.
    g_display.switches[static_cast<size_t>(MapFamily::MD80)] = {1, 1, 1, 1};
    g_display.proline4_ndb = 1;
    EXPECT_FALSE(Du1000MapLayersRun(kDu1000ModeMap));
}

TEST(Du1000Layers, RangeGatesAndTheSeparateVorAndNdbSwitches) {
    FreshAircraft();
    double lat = 0, lon = 0;
    Offset(330, 10, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", lat, lon);
    Offset(30, 10, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "BF", "N", lat, lon);
    Offset(0, 14, lat, lon);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", lat, lon);
    Offset(345, 20, lat, lon);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", lat, lon);
    DuSwitches() = {1, 1, 1, 0};
    g_display.du1000_ndb = 1;
    struct Case {
        double range;
        bool navaids, airports, fixes;
    };
    // At 0.5 the airport, 14 nm out, lies beyond its cull of 2 x 0.5 + 10 nm;
    // the navaids' and intersections' cull is 50 nm wider.
    const Case cases[] = {{0.5, true, false, true},    {15, true, true, true},      {40, true, true, true},
                          {60, true, true, false},     {160, true, true, false},    {240, false, false, false}};
    for (int mode : {2, 3}) {
        for (Case c : cases) {
            g_display.du1000_mode = mode;
            g_display.du1000_range = c.range;
            Frame f = DrawDu();
            EXPECT_EQ(f.Has("SEA"), c.navaids) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("BF"), c.navaids) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("KBFI"), c.airports) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("ALDER"), c.fixes) << mode << " @ " << c.range;
        }
    }
    // Colours: VORs green, NDBs and intersections magenta, airports cyan.
    g_display.du1000_mode = kDu1000ModeMap;
    g_display.du1000_range = 30;
    Frame all = DrawDu();
    ASSERT_TRUE(all.Has("SEA") && all.Has("BF") && all.Has("ALDER") && all.Has("KBFI"));
    EXPECT_EQ(all.Find("SEA")->box.argb, 0xFF00FA00u);
    EXPECT_EQ(all.Find("BF")->box.argb, 0xFFFF13D5u);
    EXPECT_EQ(all.Find("ALDER")->box.argb, 0xFFFF13D5u);
    EXPECT_EQ(all.Find("KBFI")->box.argb, 0xFF00E6E9u);
    // The intersection's diamond, magenta, where its ident says the fix is
    // (the ident stands 7 right of and 10 above the symbol's anchor).
    double fx = all.Find("ALDER")->box.layout_x - 7, fy = all.Find("ALDER")->box.layout_y + 10;
    EXPECT_GT(all.Near(0xFFFF13D5, 40, static_cast<int>(fx) - 5, static_cast<int>(fy) - 1, static_cast<int>(fx) + 6,
                       static_cast<int>(fy) + 10),
              6);
    // The VOR's ring, green, round its anchor's row + 6.
    double vx = all.Find("SEA")->box.layout_x - 7, vy = all.Find("SEA")->box.layout_y + 10;
    EXPECT_GT(all.Near(0xFF00FA00, 40, static_cast<int>(vx) - 6, static_cast<int>(vy) + 1, static_cast<int>(vx) + 7,
                       static_cast<int>(vy) + 12),
              6);

    // The navaids switch shows the VORs only, the NDB switch the NDBs only.
    g_display.du1000_ndb = 0;
    Frame vors = DrawDu();
    EXPECT_TRUE(vors.Has("SEA"));
    EXPECT_FALSE(vors.Has("BF"));
    DuSwitches().navaids = 0;
    g_display.du1000_ndb = 1;
    Frame ndbs = DrawDu();
    EXPECT_FALSE(ndbs.Has("SEA"));
    EXPECT_TRUE(ndbs.Has("BF"));
    // Instance 3 drops the intersections only.
    Frame vc = DrawDu(3);
    EXPECT_FALSE(vc.Has("ALDER"));
    EXPECT_TRUE(vc.Has("KBFI"));
    // The rose and the map-less arc draw none of it.
    for (int mode : {0, 1}) {
        g_display.du1000_mode = mode;
        Frame f = DrawDu();
        EXPECT_FALSE(f.Has("BF") || f.Has("KBFI") || f.Has("ALDER")) << mode;
    }
}

TEST(Du1000Route, IdentsWhereTheProjectionPutsThem) {
    FreshAircraft();
    double north_lat = 0, north_lon = 0;
    Offset(0, 12, north_lat, north_lon);
    PlacePlan({{"START", g_sim.latitude - 0.1, g_sim.longitude}, {"NORTH", north_lat, north_lon}}, 1);
    g_display.du1000_range = 30;
    const double px_per_nm = kRadius / 30;
    // A waypoint's ident stands 7 pixels right of and above its symbol.
    for (int mode : {2, 3}) {
        g_display.du1000_mode = mode;
        g_sim.heading_true = 0;
        Frame up = DrawDu();
        const test_canvas::Seen* north = SeenBelowCorner(up, "NORTH");
        ASSERT_NE(north, nullptr) << mode;
        EXPECT_NEAR(north->box.layout_x, kCx + 7, 1.5);
        EXPECT_NEAR(north->box.layout_y, kCy - 12 * px_per_nm - 7, 2);
        EXPECT_EQ(up.CountText("NORTH"), 2);             // on the map and in the corner
        EXPECT_FALSE(up.Has("START"));
        // Heading east: the waypoint stands on the centre's row, to the left.
        g_sim.heading_true = 90;
        Frame east = DrawDu();
        north = SeenBelowCorner(east, "NORTH");
        ASSERT_NE(north, nullptr) << mode;
        EXPECT_NEAR(north->box.layout_x, kCx - 12 * px_per_nm + 7, 2);
        EXPECT_NEAR(north->box.layout_y, kCy - 7, 2);
    }
    // An NDB abeam on the left, 15 nm: 10 pixels above its anchor.
    g_sim.heading_true = 0;
    double lat = 0, lon = 0;
    Offset(270, 15, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "LFT", "N", lat, lon);
    g_display.du1000_ndb = 1;
    g_display.du1000_mode = kDu1000ModeMap;
    Frame f = DrawDu();
    ASSERT_TRUE(f.Has("LFT"));
    EXPECT_NEAR(f.Find("LFT")->box.layout_x, kCx - 15 * px_per_nm + 7, 2);
    EXPECT_NEAR(f.Find("LFT")->box.layout_y, kCy - 10, 2);
    // The map-less pages draw the corner's copy only.
    g_display.du1000_mode = kDu1000ModeEhsi;
    Frame arc = DrawDu();
    EXPECT_EQ(arc.CountText("NORTH"), 1);
    EXPECT_EQ(SeenBelowCorner(arc, "NORTH"), nullptr);
}

TEST(Du1000Traffic, OnlyOnTheMapModesWithItsSwitch) {
    FreshAircraft();
    g_config.TcasVertRange = 140;
    g_display.du1000_range = 10;
    // A target 5 nm to the right, 300 ft above: half the radius out on the centre's row.
    auto place_target = [] {
        g_traffic.TargetCount = 1;
        g_traffic.targets[1] = TrafficTarget{90, 5, 3, '-', 'O'};
    };
    for (int mode : {0, 1, 2, 3}) {
        g_display.du1000_mode = mode;
        DuSwitches().traffic = 0;
        place_target();
        Frame off = DrawDu();
        EXPECT_FALSE(off.Has("+3")) << mode;
        EXPECT_FALSE(off.Has("TFC")) << mode;
        DuSwitches().traffic = 1;
        place_target();
        Frame on = DrawDu();
        bool map = mode == 2 || mode == 3;
        EXPECT_EQ(on.Has("+3"), map) << mode;
        EXPECT_EQ(on.Has("TFC"), map) << mode;
        if (map) {
            // Kind 0: the text at x - 13, y + 12, white for a plain target.
            const test_canvas::Seen* text = on.Find("+3");
            EXPECT_NEAR(text->box.layout_x, kCx + kRadius / 2 - 13, 2);
            EXPECT_NEAR(text->box.layout_y, kCy + 12, 2);
            EXPECT_EQ(text->box.argb, 0xFFDEE6E9u);
        }
    }
    // Another family's traffic switch doesn't draw it here.
    g_display.du1000_mode = kDu1000ModeMap;
    DuSwitches().traffic = 0;
    g_display.switches[static_cast<size_t>(MapFamily::B737)].traffic = 1;
    place_target();
    EXPECT_FALSE(DrawDu().Has("+3"));
}

TEST(Du1000Texts, CornersForAKnownState) {
    FreshAircraft();
    g_display.du1000_mode = kDu1000ModeEhsi;
    g_sim.heading_magnetic.now = 7.4;
    g_sim.ground_speed = 287;
    g_sim.true_airspeed.now = 301;
    g_sim.wind_speed = 25;
    g_sim.wind_direction_display = 270;
    g_sim.nav1_is_vor = 1;
    g_sim.nav1_obs = 29.6;
    g_sim.dme1_distance = 12.34;
    PlacePlan({{"HERE", g_sim.latitude, g_sim.longitude}, {"OLM", 47.0, -122.9}}, 1);
    g_lnav.DistToActive = 42.26;
    g_sim.zulu_hour = 13;
    g_sim.zulu_minute = 50;
    g_tick.to_active = {0, 25};
    Frame f = DrawDu();
    EXPECT_TRUE(f.Has("287"));
    EXPECT_TRUE(f.Has("301"));
    EXPECT_TRUE(f.Has("270\u00B0/25"));
    EXPECT_TRUE(f.Has("CRS 030"));
    EXPECT_TRUE(f.Has("DME 12.3"));
    EXPECT_TRUE(f.Has("42.3 NM"));
    EXPECT_TRUE(f.Has("1415Z"));                        // 13:50 and 25 minutes to go
    ASSERT_TRUE(f.Has("OLM"));
    EXPECT_EQ(f.Find("OLM")->box.argb, 0xFFFF13D5u);    // the active waypoint, magenta
    ASSERT_TRUE(f.Has("007"));                          // heading, three places
    EXPECT_NEAR(f.Find("007")->box.layout_x, kCx, 1);   // centred over the lubber line
    ASSERT_TRUE(f.Has("GS"));
    EXPECT_NEAR(f.Find("GS")->box.layout_x, 6, 1);
    const test_canvas::Seen* wind = f.Find("270\u00B0/25");
    EXPECT_NEAR(wind->box.layout_x, 6, 1);
    EXPECT_NEAR(wind->box.layout_y, 276, 1);
    EXPECT_FALSE(f.Has("ADF"));                         // no signal, no pointer
    // A localiser names the receiver ILS; slow, calm, no DME, past midnight, no plan.
    g_sim.nav1_is_vor = 0;
    g_sim.true_airspeed.now = 95;
    g_sim.wind_speed = 0.5;
    g_sim.dme1_distance = 0;
    g_sim.heading_magnetic.now = 359.6;                 // rounds to 360, shown as 000
    g_sim.zulu_hour = 23;
    g_sim.adf_signal = 4;
    g_plan.context.ActiveLeg = kNoActiveLeg;
    Frame g2 = DrawDu();
    EXPECT_TRUE(g2.Has("ILS 1"));
    EXPECT_FALSE(g2.Has("VOR 1"));
    EXPECT_TRUE(g2.Has("- - -"));
    EXPECT_TRUE(g2.Has("---\u00B0/---"));
    EXPECT_TRUE(g2.Has("DME ---"));
    EXPECT_TRUE(g2.Has("000"));
    EXPECT_TRUE(g2.Has("ADF"));
    EXPECT_FALSE(g2.Has("OLM"));
    EXPECT_FALSE(g2.Has("42.3 NM"));
    // The map page: the range with its rings, no receiver.
    g_display.du1000_mode = kDu1000ModeMap;
    g_display.du1000_range = 0.125;
    Frame map = DrawDu();
    EXPECT_TRUE(map.Has("0.125 NM"));
    EXPECT_TRUE(map.Has("0.0625"));                     // the half-range ring's label
    EXPECT_FALSE(map.Has("ILS 1"));
    EXPECT_FALSE(map.Has("DME ---"));
}

TEST(Du1000Shots, EachModeAsAPicture) {
    // Pictures for a person to look at; each checked for its course needle.
    FreshAircraft();
    DuSwitches() = {1, 1, 1, 1};
    g_display.du1000_ndb = 1;
    double lat = 0, lon = 0;
    Offset(330, 9, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", lat, lon);
    Offset(70, 12, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "BF", "N", lat, lon);
    Offset(10, 16, lat, lon);
    AddNearby(g_nearby.AirportsNear180, "KPAE", "", lat, lon);
    Offset(345, 6, lat, lon);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", lat, lon);
    double a_lat = 0, a_lon = 0, b_lat = 0, b_lon = 0;
    Offset(20, 8, a_lat, a_lon);
    Offset(60, 17, b_lat, b_lon);
    PlacePlan({{"START", g_sim.latitude, g_sim.longitude}, {"ALPHA", a_lat, a_lon}, {"BRAVO", b_lat, b_lon}}, 1);
    g_sim.heading_true = 20;
    g_sim.heading_magnetic.now = 3;
    g_sim.heading_bug.now = 15;
    g_sim.nav1_obs = 30;
    g_sim.nav1_needle = 40;
    g_sim.nav1_is_vor = 0;
    g_sim.adf_signal = 5;
    g_sim.adf_needle = 300;
    g_display.du1000_range = 30;
    for (int mode : {0, 1, 2, 3}) {
        g_display.du1000_mode = mode;
        Frame frame = DrawDu();
        char name[32];
        std::snprintf(name, sizeof name, "du1000_mode%d.png", mode);
        frame.WritePng(name);
        // The localiser's needle is magenta, round the row it turns about;
        // the map page has none (the route stands to the right of this box).
        int row = mode == 0 ? 160 : 150;
        int magenta = frame.Near(0xFFFF13D5, 40, 100, row - 60, 150, row + 60);
        if (mode == kDu1000ModeMap)
            EXPECT_LT(magenta, 10) << mode;
        else
            EXPECT_GT(magenta, 20) << mode;
        // The yellow aircraft at the compass centre.
        int cy = mode == 0 ? 160 : 272;
        EXPECT_GT(frame.Near(0xFFFFFF00, 30, 145, cy - 12, 174, cy + 16), 20) << mode;
    }
}
