// The PROLINE4_MFD drawn in-process: the frame and its typewriter face, the
// four modes and the radius each keeps, the map layers' range gates with the
// NDBs on their own switch, the route where the projection puts it on the
// arc and on the centred map, the texts of a known state, traffic only on
// the arc map up to 160 nm, the two bearing pointers and their sources, and
// pictures of each mode.
#include "display/nd_proline4.h"
#include "display/traffic.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
// The gauge's surface is its design canvas, so design pixels are surface pixels.
constexpr int kWidth = 247;
constexpr int kHeight = 285;

Frame DrawProline4(int instance = 1, GaugeId id = GaugeId::PROLINE4_MFD) {
    return DrawNd(instance, id, kWidth, kHeight);
}

MapSwitches& Proline4Switches() { return g_display.switches[static_cast<size_t>(MapFamily::PROLINE4)]; }

// The nearby objects of the layer tests, each 2 nm from the aircraft.
void PlaceObjects() {
    double lat = 0, lon = 0;
    Offset(0, 2, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", lat, lon);
    Offset(90, 2, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "NOLLA", "N", lat, lon);
    Offset(270, 2, lat, lon);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", lat, lon);
    Offset(330, 2, lat, lon);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", lat, lon);
}
}  // namespace

TEST(Proline4Frame, DarkWithoutPowerLitWithItsBackgroundInTheTypewriterFace) {
    FreshAircraft();
    g_profile.PROLINE4MFDBkgrd = {10, 20, 70};
    for (GaugeId id : {GaugeId::PROLINE4_MFD, GaugeId::PROLINE4_MFD_NB}) {
        Frame lit = DrawProline4(1, id);
        EXPECT_EQ(lit.canvas.At(kWidth - 2, kHeight - 2), 0xFF0A1446u);
        ASSERT_TRUE(lit.Has("GS"));
        // Every text of the page's own is in the typewriter face; the
        // card's digits too.
        EXPECT_EQ(lit.Find("GS")->family, "Courier New");
        EXPECT_EQ(lit.Find("40 NM")->family, "Courier New");
        ASSERT_NE(lit.Find("3"), nullptr);
        EXPECT_EQ(lit.Find("3")->family, "Courier New");
    }
    g_sim.avionics_power = 0;
    Frame dark = DrawProline4();
    EXPECT_EQ(dark.canvas.InkedAll(), 0);
    EXPECT_TRUE(dark.seen.empty());
}

TEST(Proline4Modes, MapOnlyInTwoAndThreeAndTheRadiusKeptByTheHsiModes) {
    FreshAircraft();
    Proline4Switches() = {1, 1, 1, 0};
    double lat = 0, lon = 0;
    Offset(0, 10, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", lat, lon);
    DisplaySurface surface;     // the design size: scale 1

    // The start: mode 3, the arc of 140 round (123, 212); SEA 10 nm ahead
    // at 40 nm stands 35 pixels above own-ship, its ident 7 right and 10 up.
    ASSERT_EQ(g_display.proline4_mode, 3);
    Frame arc = DrawProline4();
    const test_canvas::Seen* sea = SeenBelowCorner(arc, "SEA");
    ASSERT_NE(sea, nullptr);
    EXPECT_NEAR(sea->box.layout_x, 123 + 7, 1.5);
    EXPECT_NEAR(sea->box.layout_y, 212 - 10.0 * 140 / 40 - 10, 1.5);
    EXPECT_TRUE(arc.Has("40 NM"));
    EXPECT_FALSE(arc.Has("VOR1"));

    // Up: 1, the arc HSI: no map, the receiver named, the kept radius 140.
    StepMode(1, kStepProline4);
    ASSERT_EQ(g_display.proline4_mode, 1);
    EXPECT_EQ(Proline4MapView(surface).MapRadiusPx, 140);
    Frame hsi = DrawProline4();
    EXPECT_FALSE(hsi.Has("SEA"));
    EXPECT_FALSE(hsi.Has("40 NM"));
    EXPECT_TRUE(hsi.Has("LOC1"));               // NAV 1 tuned to a localiser
    EXPECT_TRUE(hsi.Has("--- NM"));             // no DME

    // Up: 2, the centred map of 70 round (123, 150): SEA 17.5 pixels up.
    StepMode(1, kStepProline4);
    ASSERT_EQ(g_display.proline4_mode, 2);
    EXPECT_EQ(Proline4MapView(surface).MapRadiusPx, 70);
    Frame centred = DrawProline4();
    sea = SeenBelowCorner(centred, "SEA");
    ASSERT_NE(sea, nullptr);
    EXPECT_NEAR(sea->box.layout_y, 150 - 10.0 * 70 / 40 - 10, 1.5);

    // Up: 0, the rose HSI: no map, and the radius of mode 2 kept.
    StepMode(1, kStepProline4);
    ASSERT_EQ(g_display.proline4_mode, 0);
    EXPECT_EQ(Proline4MapView(surface).MapRadiusPx, 70);
    EXPECT_EQ(Proline4MapView(surface).CentreY, 150);
    g_sim.nav1_is_vor = 1;
    Frame rose = DrawProline4();
    EXPECT_FALSE(rose.Has("SEA"));
    EXPECT_TRUE(rose.Has("VOR1"));

    // Mode 3 to 1 to 0 (the last by a variable): 140 until 2 is entered.
    g_display.proline4_mode = 3;
    DrawProline4();
    g_display.proline4_mode = 1;
    DrawProline4();
    g_display.proline4_mode = 0;
    DrawProline4();
    EXPECT_EQ(g_display.proline4_radius, 140);
    EXPECT_EQ(Proline4MapView(surface).MapRadiusPx, 140);
    // A map mode set without the knob (the profile's start mode) takes its radius.
    g_display.proline4_mode = 2;
    g_display.proline4_radius = 140;
    sea = SeenBelowCorner(DrawProline4(), "SEA");
    ASSERT_NE(sea, nullptr);
    EXPECT_NEAR(sea->box.layout_y, 150 - 10.0 * 70 / 40 - 10, 1.5);
    EXPECT_EQ(g_display.proline4_radius, 70);
    // A corrupt mode shows the arc map, not a blank page.
    g_display.proline4_mode = 9;
    EXPECT_NE(SeenBelowCorner(DrawProline4(), "SEA"), nullptr);
}

TEST(Proline4Layers, RangeGatesAndTheNdbSwitchOnBothMapModes) {
    FreshAircraft();
    PlaceObjects();
    Proline4Switches() = {1, 1, 1, 0};
    g_display.proline4_ndb = 1;
    struct Case {
        double range;
        bool navaids, airports, fixes;
    };
    for (int mode : {2, 3}) {
        for (Case c : {Case{5, true, true, true}, Case{40, true, true, true}, Case{80, true, true, false},
                       Case{160, true, false, false}, Case{320, false, false, false}}) {
            g_display.proline4_mode = mode;
            g_display.proline4_range = c.range;
            Frame f = DrawProline4();
            EXPECT_EQ(f.Has("SEA"), c.navaids) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("NOLLA"), c.navaids) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("KBFI"), c.airports) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("ALDER"), c.fixes) << mode << " @ " << c.range;
        }
    }
    // The HSI modes draw no layer at all.
    g_display.proline4_range = 10;
    for (int mode : {0, 1}) {
        g_display.proline4_mode = mode;
        Frame f = DrawProline4();
        for (const char* ident : {"SEA", "NOLLA", "KBFI", "ALDER"}) EXPECT_FALSE(f.Has(ident)) << mode << ident;
    }
    // The NDBs follow their own switch, the VORs the navaids switch.
    g_display.proline4_mode = 3;
    g_display.proline4_ndb = 0;
    Frame vors = DrawProline4();
    EXPECT_TRUE(vors.Has("SEA"));
    EXPECT_FALSE(vors.Has("NOLLA"));
    Proline4Switches().navaids = 0;
    g_display.proline4_ndb = 1;
    Frame ndbs = DrawProline4();
    EXPECT_FALSE(ndbs.Has("SEA"));
    EXPECT_TRUE(ndbs.Has("NOLLA"));
    // NOLLA 2 nm abeam on the right at 10 nm: 28 pixels right of own-ship,
    // its ident 7 further right and 10 up; blue, as the family's navaids.
    const test_canvas::Seen* ndb = ndbs.Find("NOLLA");
    EXPECT_NEAR(ndb->box.layout_x, 123 + 2.0 * 140 / 10 + 7, 1.5);
    EXPECT_NEAR(ndb->box.layout_y, 212 - 10, 1.5);
    EXPECT_EQ(ndb->box.argb, 0xFF02A7EBu);
    // Instance 3 drops the intersections only; another family's switches don't count.
    Proline4Switches() = {1, 1, 1, 0};
    Frame vc = DrawProline4(3);
    EXPECT_FALSE(vc.Has("ALDER"));
    EXPECT_TRUE(vc.Has("KBFI"));
    Proline4Switches() = {};
    g_display.proline4_ndb = 0;
    g_display.switches[static_cast<size_t>(MapFamily::MD80)] = {1, 1, 1, 1};
    g_display.du1000_ndb = 1;
    Frame off = DrawProline4();
    for (const char* ident : {"SEA", "NOLLA", "KBFI", "ALDER"}) EXPECT_FALSE(off.Has(ident)) << ident;
}

TEST(Proline4Route, IdentsWhereTheProjectionPutsThemOnArcAndCentredMap) {
    FreshAircraft();
    double north_lat = 0, north_lon = 0;
    Offset(0, 12, north_lat, north_lon);
    PlacePlan({{"START", g_sim.latitude - 0.1, g_sim.longitude}, {"NORTH", north_lat, north_lon}}, 1);
    g_display.proline4_range = 40;
    g_lnav.DistToActive = 12.3;

    // The arc: 140 pixels for 40 nm; 12 nm straight up from (123, 212). A
    // waypoint's ident stands 7 pixels right of and above its point.
    g_display.proline4_mode = kProline4ModeArcMap;
    Frame arc = DrawProline4();
    const test_canvas::Seen* north = SeenBelowCorner(arc, "NORTH");
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 123 + 7, 1.5);
    EXPECT_NEAR(north->box.layout_y, 212 - 12.0 * 140 / 40 - 7, 2);
    EXPECT_EQ(arc.CountText("NORTH"), 2);       // on the map and in the corner
    EXPECT_FALSE(arc.Has("START"));
    // The corner: the active waypoint in magenta, its distance below.
    const test_canvas::Seen* corner = nullptr;
    for (const auto& s : arc.seen)
        if (s.text == "NORTH" && s.box.layout_y < 10) corner = &s;
    ASSERT_NE(corner, nullptr);
    EXPECT_GT(corner->box.layout_x, 200);
    EXPECT_EQ(corner->box.argb, 0xFFFF13D5u);
    EXPECT_TRUE(arc.Has("12.3 NM"));            // the distance guidance measured

    // The centred map: 70 pixels for 40 nm round (123, 150); heading east
    // puts NORTH 12 nm to the left on the centre's row.
    g_display.proline4_mode = kProline4ModeCentred;
    g_sim.heading_true = 90;
    Frame centred = DrawProline4();
    north = SeenBelowCorner(centred, "NORTH");
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 123 - 12.0 * 70 / 40 + 7, 2);
    EXPECT_NEAR(north->box.layout_y, 150 - 7, 2);

    // The HSI pages draw no route and no waypoint corner.
    g_display.proline4_mode = kProline4ModeRose;
    EXPECT_FALSE(DrawProline4().Has("NORTH"));
}

TEST(Proline4Texts, TopAndBottomLinesForAKnownState) {
    FreshAircraft();
    g_display.proline4_mode = kProline4ModeArcMap;
    g_sim.heading_magnetic.now = 7.4;
    g_sim.heading_bug.now = 14.6;
    g_sim.ground_speed = 287;
    g_sim.true_airspeed.now = 301;
    g_display.proline4_range = 80;
    Frame f = DrawProline4();
    // The heading boxed over the arc's lubber: centred, 30 above the card's top.
    const test_canvas::Seen* heading = f.Find("007");
    ASSERT_NE(heading, nullptr);
    EXPECT_NEAR(heading->box.layout_x, 123, 1);
    EXPECT_NEAR(heading->box.layout_y, 212 - 140 - 30 + 1, 1);
    EXPECT_TRUE(f.Has("287"));
    EXPECT_TRUE(f.Has("301"));
    ASSERT_TRUE(f.Has("80 NM"));
    EXPECT_NEAR(f.Find("80 NM")->box.layout_y, kProline4StatusTextY, 1);
    ASSERT_TRUE(f.Has("HDG 015"));
    EXPECT_EQ(f.Find("HDG 015")->box.argb, 0xFF00E6E9u);
    EXPECT_TRUE(f.Has("40"));                   // the half-range ring's figure
    // Slow, a heading that rounds to 360, the smallest range.
    g_sim.true_airspeed.now = 95;
    g_sim.heading_magnetic.now = 359.6;
    g_display.proline4_range = 5;
    Frame slow = DrawProline4();
    EXPECT_TRUE(slow.Has("---"));
    EXPECT_TRUE(slow.Has("000"));
    EXPECT_TRUE(slow.Has("5 NM"));
    EXPECT_TRUE(slow.Has("2.5"));
    // The rose HSI: its heading box sits over the rose, the DME and course shown.
    g_display.proline4_mode = kProline4ModeRose;
    g_sim.dme1_distance = 12.34;
    g_sim.nav1_obs = 35.2;
    Frame rose = DrawProline4();
    EXPECT_TRUE(rose.Has("12.3 NM"));
    EXPECT_TRUE(rose.Has("CRS 035"));
    ASSERT_NE(rose.Find("000"), nullptr);
    EXPECT_NEAR(rose.Find("000")->box.layout_y, 150 - 92 - 30 + 1, 1);
    EXPECT_FALSE(rose.Has("5 NM"));
}

TEST(Proline4Traffic, OnlyOnTheArcMapUpTo160WithTheSwitchOn) {
    FreshAircraft();
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = TrafficTarget{0, 5, 7, '-', 'O'};
    auto drawn = [](int mode, double range, int toggle) {
        g_display.proline4_mode = mode;
        g_display.proline4_range = range;
        Proline4Switches().traffic = toggle;
        return DrawProline4();
    };
    // Arc map, 40 nm: 5 nm ahead is 17.5 pixels above own-ship; the text
    // 13 left of and 12 below the symbol, white as other traffic.
    Frame on = drawn(3, 40, 1);
    ASSERT_TRUE(on.Has("+7"));
    EXPECT_NEAR(on.Find("+7")->box.layout_x, 123 - 13, 1.5);
    EXPECT_NEAR(on.Find("+7")->box.layout_y, 212 - 5.0 * 140 / 40 + 12, 1.5);
    EXPECT_EQ(on.Find("+7")->box.argb, 0xFFDEE6E9u);
    EXPECT_TRUE(on.Has("TFC"));
    EXPECT_TRUE(drawn(3, 160, 1).Has("+7"));
    // Beyond 160, on the other modes, or with the switch off: none.
    Frame far = drawn(3, 320, 1);
    EXPECT_FALSE(far.Has("+7"));
    EXPECT_TRUE(far.Has("TFC RNG"));
    for (int mode : {0, 1, 2}) EXPECT_FALSE(drawn(mode, 40, 1).Has("+7")) << mode;
    Frame off = drawn(3, 40, 0);
    EXPECT_FALSE(off.Has("+7"));
    EXPECT_FALSE(off.Has("TFC"));
}

TEST(Proline4Marks, ArrowChevronAtTopOfClimbOnTheArcMapOnly) {
    FreshAircraft();
    g_plan.context.CruiseAltitude = 30000;
    g_vnav.CruiseReached = 0;
    double lat = 0, lon = 0;
    Offset(0, 10, lat, lon);
    g_vnav.TopOfClimbLatitude = lat;
    g_vnav.TopOfClimbLongitude = lon;
    g_display.proline4_range = 40;
    // The arc map: T/C 10 nm ahead is 35 pixels above own-ship; the arrow
    // style draws a blue chevron there and no "T/C" name.
    g_display.proline4_mode = kProline4ModeArcMap;
    Frame arc = DrawProline4();
    double y = 212 - 10.0 * 140 / 40;
    EXPECT_GT(arc.Near(0xFF02A7EB, 30, 123 - 22, static_cast<int>(y) - 6, 123 + 8, static_cast<int>(y) + 10), 15);
    EXPECT_FALSE(arc.Has("T/C"));
    EXPECT_FALSE(arc.Has("[TOC]"));
    // The centred map has no vertical marks: no blue where T/C would stand.
    g_display.proline4_mode = kProline4ModeCentred;
    Frame centred = DrawProline4();
    double yc = 150 - 10.0 * 70 / 40;
    EXPECT_EQ(centred.Near(0xFF02A7EB, 30, 123 - 22, static_cast<int>(yc) - 6, 123 + 8, static_cast<int>(yc) + 10),
              0);
}

TEST(Proline4Pointers, FourSourcesEachAndWhereTheNeedlesPoint) {
    FreshAircraft();
    g_display.proline4_mode = kProline4ModeArcMap;
    g_sim.heading_true = 30;
    // The active waypoint 20 nm due east: 60 degrees right of a nose on 030.
    double east_lat = 0, east_lon = 0;
    Offset(90, 20, east_lat, east_lon);
    PlacePlan({{"START", g_sim.latitude, g_sim.longitude}, {"EAST", east_lat, east_lon}}, 1);
    g_sim.nav1_relative_bearing = 90;
    g_sim.nav2_relative_bearing = 270;
    g_sim.adf_needle = 200;
    g_sim.adf_signal = 0.5;
    double b = 0;
    EXPECT_FALSE(Proline4PointerBearing(0, kProline4PointerOff, b));
    ASSERT_TRUE(Proline4PointerBearing(0, kProline4PointerVor, b));
    EXPECT_DOUBLE_EQ(b, 90);
    ASSERT_TRUE(Proline4PointerBearing(1, kProline4PointerVor, b));
    EXPECT_DOUBLE_EQ(b, 270);
    EXPECT_FALSE(Proline4PointerBearing(0, kProline4PointerAdf, b));     // no signal
    ASSERT_TRUE(Proline4PointerBearing(1, kProline4PointerFms, b));
    double distance = 0, bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, east_lat, east_lon, distance, bearing);
    EXPECT_NEAR(b, bearing - 30, 1e-9);
    EXPECT_NEAR(b, 60, 0.5);
    g_sim.heading_true = 100;                   // the station behind the left wing: wraps below 0
    ASSERT_TRUE(Proline4PointerBearing(0, kProline4PointerFms, b));
    EXPECT_NEAR(b, bearing - 100 + 360, 1e-9);
    g_sim.heading_true = 0;
    g_sim.adf_signal = 5;
    ASSERT_TRUE(Proline4PointerBearing(0, kProline4PointerAdf, b));
    EXPECT_DOUBLE_EQ(b, 200);

    // On the picture: a band along own-ship's row, right of it, clear of the texts.
    g_sim.adf_signal = 0.5;
    auto cyan = [](const Frame& f) { return f.Near(0xFF00E6E9, 30, 150, 206, 215, 219); };
    auto white_left = [](const Frame& f) { return f.Near(0xFFDEE6E9, 30, 30, 206, 96, 219); };
    Frame none = DrawProline4();
    EXPECT_EQ(cyan(none), 0);
    EXPECT_FALSE(none.Has("VOR1"));
    // First pointer on VOR 1 (abeam right): cyan there, named bottom left.
    g_display.proline4_bearing = {kProline4PointerVor, kProline4PointerOff};
    Frame vor = DrawProline4();
    EXPECT_GT(cyan(vor), 30);
    ASSERT_TRUE(vor.Has("VOR1"));
    EXPECT_LT(vor.Find("VOR1")->box.layout_x, 40);
    EXPECT_NEAR(vor.Find("VOR1")->box.layout_y, kProline4PointerTextY, 1);
    // ADF without a signal: named, no needle.
    g_display.proline4_bearing = {kProline4PointerAdf, kProline4PointerOff};
    Frame adf = DrawProline4();
    EXPECT_TRUE(adf.Has("ADF"));
    EXPECT_EQ(cyan(adf), 0);
    // Second pointer on VOR 2 (abeam left): white, double, named bottom right.
    int white_before = white_left(adf);
    g_display.proline4_bearing = {kProline4PointerOff, kProline4PointerVor};
    Frame vor2 = DrawProline4();
    EXPECT_GT(white_left(vor2), white_before + 40);
    ASSERT_TRUE(vor2.Has("VOR2"));
    EXPECT_GT(vor2.Find("VOR2")->box.layout_x, 200);
    // FMS on both: named "FMS" twice.
    g_display.proline4_bearing = {kProline4PointerFms, kProline4PointerFms};
    EXPECT_EQ(DrawProline4().CountText("FMS"), 2);
}

TEST(Proline4Shots, EachModeAsAPicture) {
    // Pictures for a person to look at; each checked for its NAV 1 needle.
    FreshAircraft();
    Proline4Switches() = {1, 1, 1, 1};
    g_display.proline4_ndb = 1;
    PlaceObjects();
    double a_lat = 0, a_lon = 0, b_lat = 0, b_lon = 0;
    Offset(20, 8, a_lat, a_lon);
    Offset(60, 17, b_lat, b_lon);
    PlacePlan({{"START", g_sim.latitude, g_sim.longitude}, {"ALPHA", a_lat, a_lon}, {"BRAVO", b_lat, b_lon}}, 1);
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = TrafficTarget{60, 6, -12, 'v', 'T'};
    g_sim.heading_true = 20;
    g_sim.heading_magnetic.now = 3;
    g_sim.heading_bug.now = 15;
    g_sim.nav1_obs = 30;
    g_sim.nav1_needle = 40;
    g_sim.nav1_is_vor = 1;
    g_sim.nav1_relative_bearing = 300;
    g_sim.adf_signal = 5;
    g_sim.adf_needle = 40;
    g_display.proline4_bearing = {kProline4PointerVor, kProline4PointerAdf};
    g_display.proline4_range = 20;
    for (int mode : {0, 1, 2, 3}) {
        g_display.proline4_mode = mode;
        Frame frame = DrawProline4();
        char name[32];
        std::snprintf(name, sizeof name, "proline4_mode%d.png", mode);
        frame.WritePng(name);
        // The VOR course needle is green, on the HSI pages only; the map
        // pages' green is their ground speed alone, up in the corner.
        int green = frame.Near(0xFF00FA00, 40, 60, 50, 190, 240);
        if (Proline4ModeHasMap(mode))
            EXPECT_LT(green, 10) << mode;
        else
            EXPECT_GT(green, 40) << mode;
    }
}
