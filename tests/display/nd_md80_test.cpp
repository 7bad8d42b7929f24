// The MD80_EHSI_NB drawn in-process: the frame, the four modes and what each
// shows, the map layers' range gates, the route where the projection puts it
// on the arc and on the rose, the ADF pointer switch, the corner texts, and
// pictures of each mode.
#include "display/nd_md80.h"
#include "guidance/geodesy.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
// The surface is the design canvas itself, so design pixels are surface pixels.
constexpr int kWidth = 266;
constexpr int kHeight = 232;

Frame DrawMd80(int instance = 1) { return DrawNd(instance, GaugeId::MD80_EHSI_NB, kWidth, kHeight); }

MapSwitches& Md80Switches() { return g_display.switches[static_cast<size_t>(MapFamily::MD80)]; }
}  // namespace

TEST(Md80Frame, DarkWithoutPowerLitWithTheProfilesBackground) {
    FreshAircraft();
    g_profile.MD80EHSIBkgrd = {30, 0, 90};
    Frame lit = DrawMd80();
    EXPECT_EQ(lit.canvas.At(kWidth - 2, kHeight - 2), 0xFF1E005Au);
    EXPECT_TRUE(lit.Has("MAP"));                         // the default mode, 3
    g_sim.avionics_power = 0;
    Frame dark = DrawMd80();
    EXPECT_EQ(dark.canvas.InkedAll(), 0);
    EXPECT_TRUE(dark.seen.empty());
}

TEST(Md80Modes, NamesAndTheMapOnlyOutsideTheHsi) {
    FreshAircraft();
    Md80Switches() = {1, 1, 1, 0};
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    g_sim.nav1_is_vor = 1;
    struct Case {
        int mode;
        const char* name;
        bool map;
    };
    const char* names[] = {"ROSE", "ARC", "MAP", "VOR", "ILS"};
    for (Case c : {Case{0, "ROSE", true}, Case{1, "ARC", true}, Case{2, "VOR", false}, Case{3, "MAP", true}}) {
        g_display.md80_mode = c.mode;
        Frame f = DrawMd80();
        for (const char* other : names)
            EXPECT_EQ(f.Has(other), std::string(other) == c.name) << c.mode << " " << other;
        const test_canvas::Seen* name = f.Find(c.name);
        ASSERT_NE(name, nullptr);
        EXPECT_NEAR(name->box.layout_x, 4, 1);
        EXPECT_NEAR(name->box.layout_y, 216, 1);
        EXPECT_EQ(f.Has("SEA"), c.map) << c.mode;
        EXPECT_EQ(f.Has("20 NM"), c.map) << c.mode;      // the range only over a map
        EXPECT_EQ(f.Has("DME ---"), !c.map) << c.mode;   // the receiver's DME only on the HSI
    }
    // The HSI is named by its receiver: a localiser makes it ILS.
    g_display.md80_mode = kMd80ModeHsi;
    g_sim.nav1_is_vor = 0;
    Frame ils = DrawMd80();
    EXPECT_TRUE(ils.Has("ILS"));
    EXPECT_FALSE(ils.Has("VOR"));
    // Out of range values (a corrupt variable) show the MAP page, not a blank.
    g_display.md80_mode = 7;
    EXPECT_TRUE(DrawMd80().Has("MAP"));
}

TEST(Md80Layers, RangeGatesOfTheMapModes) {
    FreshAircraft();
    Md80Switches() = {1, 1, 1, 0};
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.51, -122.32);
    struct Case {
        double range;
        bool navaids, airports, fixes;
    };
    for (int mode : {0, 1, 3}) {
        for (Case c : {Case{10, true, true, true}, Case{80, true, true, true}, Case{160, true, true, false},
                       Case{320, false, false, false}}) {
            g_display.md80_mode = mode;
            g_display.md80_range = c.range;
            Frame f = DrawMd80();
            EXPECT_EQ(f.Has("SEA"), c.navaids) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("KBFI"), c.airports) << mode << " @ " << c.range;
            EXPECT_EQ(f.Has("ALDER"), c.fixes) << mode << " @ " << c.range;
        }
    }
    // Instance 3 drops the intersections only; the MD-80's own switches gate.
    g_display.md80_mode = kMd80ModeMap;
    g_display.md80_range = 20;
    Frame vc = DrawMd80(3);
    EXPECT_FALSE(vc.Has("ALDER"));
    EXPECT_TRUE(vc.Has("SEA"));
    Md80Switches() = {};
    g_display.switches[static_cast<size_t>(MapFamily::MD11)] = {1, 1, 1, 1};
    Frame off = DrawMd80();
    EXPECT_FALSE(off.Has("SEA"));
    EXPECT_FALSE(off.Has("KBFI"));
    EXPECT_FALSE(off.Has("ALDER"));
    Md80Switches().airports = 1;
    Frame airports = DrawMd80();
    EXPECT_TRUE(airports.Has("KBFI"));
    EXPECT_FALSE(airports.Has("SEA"));
}

TEST(Md80Route, IdentsWhereTheProjectionPutsThemOnArcAndRose) {
    FreshAircraft();
    double north_lat = 0, north_lon = 0;
    Offset(0, 12, north_lat, north_lon);
    PlacePlan({{"START", g_sim.latitude - 0.1, g_sim.longitude}, {"NORTH", north_lat, north_lon}}, 1);
    g_display.md80_range = 40;

    // The arc: centre (133, 196), 160 pixels for 40 nm; 12 nm straight up.
    // A waypoint's ident stands 7 pixels right of and above its symbol.
    g_display.md80_mode = kMd80ModeMap;
    Frame arc = DrawMd80();
    const test_canvas::Seen* north = nullptr;
    for (const auto& s : arc.seen)
        if (s.text == "NORTH" && s.box.layout_y > 40) north = &s;   // not the corner's copy
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 133 + 7, 1.5);
    EXPECT_NEAR(north->box.layout_y, 196 - 12.0 * 160 / 40 - 7, 2);
    EXPECT_EQ(arc.CountText("NORTH"), 2);               // on the map and in the corner
    EXPECT_FALSE(arc.Has("START"));

    // The rose: centre (133, 122), 88 pixels for 40 nm; heading east puts
    // NORTH 12 nm to the left on the centre's row.
    g_display.md80_mode = kMd80ModeRose;
    g_sim.heading_true = 90;
    Frame rose = DrawMd80();
    north = nullptr;
    for (const auto& s : rose.seen)
        if (s.text == "NORTH" && s.box.layout_y > 40) north = &s;
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 133 - 12.0 * 88 / 40 + 7, 2);
    EXPECT_NEAR(north->box.layout_y, 122 - 7, 2);

    // The HSI draws no route and no waypoint corner.
    g_display.md80_mode = kMd80ModeHsi;
    EXPECT_FALSE(DrawMd80().Has("NORTH"));
}

TEST(Md80Texts, CornersForAKnownState) {
    FreshAircraft();
    g_display.md80_mode = kMd80ModeMap;
    g_sim.heading_magnetic.now = 7.4;
    g_sim.ground_speed = 287;
    g_sim.true_airspeed.now = 301;
    g_display.md80_range = 2.5;
    Frame f = DrawMd80();
    EXPECT_TRUE(f.Has("007"));                          // heading, three places
    EXPECT_TRUE(f.Has("287"));
    EXPECT_TRUE(f.Has("301"));
    EXPECT_TRUE(f.Has("2.5 NM"));
    EXPECT_TRUE(f.Has("VOR 1"));                        // the bearing pointer's source
    ASSERT_NE(f.Find("007"), nullptr);
    EXPECT_NEAR(f.Find("007")->box.layout_x, 133, 1);   // centred over the lubber line
    g_sim.true_airspeed.now = 95;
    g_display.md80_range = 160;
    g_sim.heading_magnetic.now = 359.6;                 // rounds to 360, shown as 000
    Frame slow = DrawMd80();
    EXPECT_TRUE(slow.Has("- - -"));
    EXPECT_TRUE(slow.Has("160 NM"));
    EXPECT_TRUE(slow.Has("000"));
    // The HSI: the DME with one decimal.
    g_display.md80_mode = kMd80ModeHsi;
    g_sim.dme1_distance = 12.34;
    EXPECT_TRUE(DrawMd80().Has("DME 12.3"));
}

TEST(Md80Furniture, AdfSwitchChoosesTheBearingPointer) {
    FreshAircraft();
    g_display.md80_mode = kMd80ModeMap;
    g_sim.nav1_relative_bearing = 90;          // the VOR abeam on the right
    g_sim.adf_needle = 90;                     // the NDB too
    // A band along the aircraft's row on the right, clear of texts and the arc.
    auto green = [](const Frame& f) { return f.Near(0xFF00FA00, 40, 165, 190, 260, 203); };
    auto cyan = [](const Frame& f) { return f.Near(0xFF00E6E9, 30, 165, 190, 260, 203); };
    Frame vor = DrawMd80();
    EXPECT_GT(green(vor), 40);
    EXPECT_EQ(cyan(vor), 0);
    EXPECT_TRUE(vor.Has("VOR 1"));
    // The switch to ADF: nothing without a signal, cyan with one.
    g_display.md80_adf_pointer = 1;
    g_sim.adf_signal = 0.5;
    Frame quiet = DrawMd80();
    EXPECT_EQ(green(quiet), 0);
    EXPECT_EQ(cyan(quiet), 0);
    EXPECT_FALSE(quiet.Has("ADF"));
    g_sim.adf_signal = 5;
    Frame adf = DrawMd80();
    EXPECT_GT(cyan(adf), 40);
    EXPECT_EQ(green(adf), 0);
    EXPECT_TRUE(adf.Has("ADF"));
    EXPECT_FALSE(adf.Has("VOR 1"));
    // On the rose it turns round the rose's centre: the band moves up to row 122.
    g_display.md80_mode = kMd80ModeRose;
    Frame rose = DrawMd80();
    EXPECT_GT(rose.Near(0xFF00E6E9, 30, 160, 116, 215, 129), 40);
    EXPECT_EQ(cyan(rose), 0);
}

TEST(Md80Shots, EachModeAsAPicture) {
    // Pictures for a person to look at; each checked for its course needle.
    FreshAircraft();
    Md80Switches() = {1, 1, 1, 0};
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
    g_sim.nav1_is_vor = 0;
    g_sim.nav1_gs_needle.now = -30;
    g_sim.nav1_relative_bearing = 300;
    g_display.md80_range = 20;
    for (int mode : {0, 1, 2, 3}) {
        g_display.md80_mode = mode;
        Frame frame = DrawMd80();
        char name[32];
        std::snprintf(name, sizeof name, "md80_mode%d.png", mode);
        frame.WritePng(name);
        // The localiser's needle is magenta; the MAP page has none (the
        // route and the active ident, also magenta, stay out of this box).
        int magenta = frame.Near(0xFFFF13D5, 40, 60, 60, 128, 200);
        if (mode == kMd80ModeMap)
            EXPECT_LT(magenta, 10) << mode;
        else
            EXPECT_GT(magenta, 20) << mode;
    }
}
