// The P1000_MFD drawn in-process: the frame, the heading-up map and PLAN
// with the route where the projection puts it, the range gates of its own
// switches, the traffic window with its own range, the soft keys' labels on
// the screen, the symbol kinds of its card and own-ship, and pictures.
#include "display/map_symbols.h"
#include "display/nd_p1000.h"
#include "display/p1000_popup.h"
#include "display/traffic.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
// The surface is the design canvas itself, so design pixels are surface pixels.
constexpr int kWidth = 272;
constexpr int kHeight = 314;

Frame DrawP1000(int instance = 1, GaugeId id = GaugeId::P1000_MFD) {
    return DrawNd(instance, id, kWidth, kHeight);
}

// The text drawn nearest a design pixel (left edge, top), or null.
const test_canvas::Seen* TextNear(const Frame& f, const std::string& text, double x, double y, double tolerance = 1.5) {
    for (const auto& s : f.seen)
        if (s.text == text && std::fabs(s.box.layout_x - x) <= tolerance && std::fabs(s.box.layout_y - y) <= tolerance)
            return &s;
    return nullptr;
}

void Fresh() {
    FreshAircraft();
    g_traffic.link_attempts = 20;      // no outside traffic gauge to look for
}
}  // namespace

TEST(P1000Frame, DarkWithoutPowerLitWithTheProfilesBackgroundOnBothTwins) {
    Fresh();
    g_profile.P1000MFDBkgrd = {10, 20, 70};
    for (GaugeId id : {GaugeId::P1000_MFD, GaugeId::P1000_MFD_NB}) {
        Frame lit = DrawP1000(1, id);
        EXPECT_EQ(lit.canvas.At(kWidth - 2, 60), 0xFF0A1446u);
        // The range at its start, 12.5 nm, left of the map.
        EXPECT_NE(TextNear(lit, "12.5 NM", kP1000RangeTextX, kP1000RangeTextY), nullptr);
        // The heading box: 343 degrees magnetic.
        EXPECT_TRUE(lit.Has("343"));
    }
    g_sim.avionics_power = 0;
    Frame dark = DrawP1000();
    EXPECT_EQ(dark.canvas.InkedAll(), 0);
    EXPECT_TRUE(dark.seen.empty());
    g_sim.avionics_power = 1;
    EXPECT_TRUE(DrawP1000(2).seen.empty());    // the pop-up's picture: dark here
}

TEST(P1000Map, RouteWhereTheHeadingUpProjectionPutsIt) {
    Fresh();
    // Half the range (6.25 nm) north of the aircraft: 26.5 pixels above the
    // centre (134, 148) of the 53-pixel map; the ident at (x + 7, y - 7).
    double lat = 0, lon = 0;
    Offset(0, 6.25, lat, lon);
    PlacePlan({{"ALPHA", lat, lon}}, 0);
    g_lnav.DistToActive = 6.4;          // guidance's figure, as LNAV measured it
    Frame north = DrawP1000();
    EXPECT_NE(TextNear(north, "ALPHA", 134 + 7, 148 - 26.5 - 7), nullptr);
    // Heading east: the same point stands to the left of the centre.
    g_sim.heading_true = 90;
    Frame east = DrawP1000();
    EXPECT_NE(TextNear(east, "ALPHA", 134 - 26.5 + 7, 148 - 7), nullptr);
    // The active waypoint's ident, top right, in magenta.
    const test_canvas::Seen* ident = nullptr;
    for (const auto& s : east.seen)
        if (s.text == "ALPHA" && s.box.layout_y < 10) ident = &s;
    ASSERT_NE(ident, nullptr);
    EXPECT_EQ(ident->box.argb, palette::kMagenta);
    EXPECT_TRUE(east.Has("6.4 NM"));
}

TEST(P1000Map, CardTurnsWithTheHeadingItsDigitsUpright) {
    Fresh();
    // Where a digit's middle stands: 53 + 11 - 4.5 pixels out from (134, 148).
    auto middle_of = [](const Frame& f, const char* digit, double& x, double& y) {
        for (const auto& s : f.seen)
            if (s.text == digit && s.box.text_y > 60 && s.box.text_y < 260) {
                x = s.box.text_x + s.box.text_width / 2;
                y = s.box.text_y + s.box.text_height / 2;
                EXPECT_NEAR(s.box.angle_deg, 0, 1e-6) << digit;
                return true;
            }
        return false;
    };
    constexpr double kOut = 53 + 11 - 4.5;
    g_sim.heading_magnetic.now = 0;
    Frame north = DrawP1000();
    double x = 0, y = 0;
    ASSERT_TRUE(middle_of(north, "9", x, y));
    EXPECT_NEAR(x, 134 + kOut, 1.5);
    EXPECT_NEAR(y, 148, 1.5);
    ASSERT_TRUE(middle_of(north, "18", x, y));
    EXPECT_NEAR(x, 134, 1.5);
    EXPECT_NEAR(y, 148 + kOut, 1.5);
    // Heading east: north turns to the left of the aircraft.
    g_sim.heading_magnetic.now = 90;
    Frame east = DrawP1000();
    ASSERT_TRUE(middle_of(east, "0", x, y));
    EXPECT_NEAR(x, 134 - kOut, 1.5);
    EXPECT_NEAR(y, 148, 1.5);
}

TEST(P1000Map, PlanIsNorthUpLargerAndHigherAroundTheActiveWaypoint) {
    Fresh();
    g_sim.heading_true = 90;
    double a_lat = 0, a_lon = 0, b_lat = 0, b_lon = 0;
    Offset(270, 20, a_lat, a_lon);
    ProjectPoint(a_lat, a_lon, 0, 6.25, b_lat, b_lon);
    PlacePlan({{"ALPHA", a_lat, a_lon}, {"BRAVO", b_lat, b_lon}}, 0);
    g_display.p1000_plan = 1;
    Frame plan = DrawP1000();
    EXPECT_EQ(g_display.p1000_map_y, kP1000PlanCentreY);
    EXPECT_EQ(g_display.p1000_map_radius, kP1000PlanRadius);
    // Centre (134, 116) on ALPHA; BRAVO half the range north: 37.5 pixels up.
    EXPECT_NE(TextNear(plan, "ALPHA", 134 + 7, 116 - 7), nullptr);
    EXPECT_NE(TextNear(plan, "BRAVO", 134 + 7, 116 - 37.5 - 7), nullptr);
    EXPECT_TRUE(plan.Has("PLAN"));
    EXPECT_TRUE(plan.Has("N"));
    // The LEGS page's centre entry moves the centre: BRAVO in the middle.
    EXPECT_TRUE(AnyNdInPlanMode());        // so the LEGS page offers its STEP
    g_display.PlanCentreIndex = 1;
    Frame stepped = DrawP1000();
    EXPECT_NE(TextNear(stepped, "BRAVO", 134 + 7, 116 - 7), nullptr);
    EXPECT_NE(TextNear(stepped, "ALPHA", 134 + 7, 116 + 37.5 - 7), nullptr);
    // The pop-up taken for closed: PLAN off, the map back to its place.
    P1000PopupClosed();
    EXPECT_EQ(g_display.p1000_plan, 0);
    EXPECT_FALSE(AnyNdInPlanMode());
    Frame map = DrawP1000();
    EXPECT_EQ(g_display.p1000_map_y, kP1000MapCentreY);
    EXPECT_EQ(g_display.p1000_map_radius, kP1000MapRadius);
    EXPECT_FALSE(map.Has("PLAN"));
    EXPECT_EQ(TextNear(map, "BRAVO", 134 + 7, 116 - 37.5 - 7), nullptr);
}

TEST(P1000Map, OwnSwitchesAndRangeGatesOfTheObjectLayers) {
    Fresh();
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.51, -122.32);
    // The other families' switches don't light the P1000's map.
    for (MapSwitches& s : g_display.switches) s = {1, 1, 1, 0};
    Frame off = DrawP1000();
    EXPECT_FALSE(off.Has("SEA") || off.Has("KBFI") || off.Has("ALDER"));
    g_display.p1000_navaids = g_display.p1000_airports = g_display.p1000_intersections = 1;
    struct Case {
        double range;
        bool navaids, airports, fixes;
    };
    for (Case c : {Case{40, true, true, true}, Case{80, true, true, false}, Case{160, true, false, false},
                   Case{0.5, true, true, true}}) {
        g_display.p1000_range = c.range;
        Frame f = DrawP1000();
        EXPECT_EQ(f.Has("SEA"), c.navaids) << c.range;
        EXPECT_EQ(f.Has("KBFI"), c.airports) << c.range;
        EXPECT_EQ(f.Has("ALDER"), c.fixes) << c.range;
    }
    // Instance 3 leaves the intersections out.
    g_display.p1000_range = 40;
    EXPECT_FALSE(DrawP1000(3).Has("ALDER"));
    EXPECT_TRUE(DrawP1000(3).Has("KBFI"));
}

TEST(P1000Map, AltitudeRangeArcOnlyWithItsOption) {
    Fresh();
    // Level at 8000 ft reached in one minute at 2000 ft/min: 5 nm ahead at
    // 300 kt, 21.2 pixels above the centre at 12.5 nm for 53 pixels.
    g_sim.autopilot_master = 1;
    g_sim.altitude_hold = 1;
    g_sim.indicated_altitude.now = 10000;
    g_sim.autopilot_altitude.now = 8000;
    g_sim.vertical_speed.now = -2000;
    double arc_y = 148 - 5 * 53 / 12.5;
    auto green_at_arc = [&](const Frame& f) {
        return f.Near(palette::kGreen, 60, 124, static_cast<int>(arc_y) - 3, 145, static_cast<int>(arc_y) + 4);
    };
    EXPECT_EQ(green_at_arc(DrawP1000()), 0);     // DrawBodArcOnP1000MFD is 0 by default
    g_config.DrawBodArcOnP1000MFD = 1;
    EXPECT_GT(green_at_arc(DrawP1000()), 10);
    // Not in PLAN, where it would stand 5 nm at 75 pixels for 12.5 nm above (134, 116).
    g_display.p1000_plan = 1;
    Frame plan = DrawP1000();
    EXPECT_EQ(plan.Near(palette::kGreen, 60, 124, 116 - 30 - 3, 145, 116 - 30 + 4), 0);
}

TEST(P1000Traffic, WindowWithItsOwnRangeAndTargetsOnlyWithTheSwitch) {
    EXPECT_EQ(P1000TrafficRange(0.5), 0.5);
    EXPECT_EQ(P1000TrafficRange(40), 40);
    EXPECT_EQ(P1000TrafficRange(80), 5);
    EXPECT_EQ(P1000TrafficRange(160), 5);

    Fresh();
    g_config.TcasVertRange = 27;
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = {0, 2.5, 5, '-', 'T'};
    // The window: its title at its top left.
    Frame quiet = DrawP1000();
    EXPECT_NE(TextNear(quiet, "TCAS", 43, 173), nullptr);
    EXPECT_FALSE(quiet.Has("+5"));
    // Traffic on: 2.5 nm ahead at 61 pixels for 12.5 nm is 12.2 pixels above
    // (131, 238); the altitude at (x - 9, y + 8), yellow for an advisory.
    g_display.p1000_traffic = 1;
    Frame busy = DrawP1000();
    const test_canvas::Seen* target = TextNear(busy, "+5", 131 - 9, 238 - 12.2 + 8);
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->box.argb, palette::kYellow);
    // At 80 nm the window stays at 5: the target 2.5 nm ahead is 30.5 pixels up.
    g_display.p1000_range = 80;
    Frame far = DrawP1000();
    EXPECT_NE(TextNear(far, "+5", 131 - 9, 238 - 30.5 + 8), nullptr);
    EXPECT_NE(TextNear(far, "5", 217, 173, 30), nullptr);
    // Without the window the targets go on the map itself, round (134, 148)
    // at 53 pixels for the map's range.
    g_config.DrawTcasWindowOnP1000MFD = 0;
    g_display.p1000_range = 12.5;
    Frame map = DrawP1000();
    EXPECT_EQ(TextNear(map, "TCAS", 43, 173), nullptr);
    EXPECT_NE(TextNear(map, "+5", 134 - 9, 148 - 10.6 + 8), nullptr);
    // ... but not in PLAN.
    g_display.p1000_plan = 1;
    EXPECT_FALSE(DrawP1000().Has("+5"));
}

TEST(P1000Screen, SoftKeyLabelsStandAlongTheBottom) {
    Fresh();
    Frame closed = DrawP1000();
    EXPECT_NE(TextNear(closed, "APT", 48, 275), nullptr);
    EXPECT_NE(TextNear(closed, "BDRY", 187, 290), nullptr);
    g_tick.p1000_window_open = 1;
    g_display.p1000_keys.page = 2;
    g_display.p1000_keys.distance_select = 2;
    g_display.p1000_keys.distance = 12;
    Frame page2 = DrawP1000();
    EXPECT_NE(TextNear(page2, "FM", 87, 275), nullptr);
    const test_canvas::Seen* value = TextNear(page2, "[12]", 83, 290);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->box.argb, palette::kGreen);
    EXPECT_FALSE(page2.Has("APT"));
}

TEST(P1000Symbols, CardMarksAndOwnShipDrawInTheScaleTheyAreGiven) {
    // The kinds of the card and own-ship drawn at four times: each leaves ink
    // around its anchor, and the tick kinds differ in length.
    struct Case {
        int kind;
        int min_height;                 // pixels of ink downwards at scale 4
    };
    for (Case c : {Case{kSymbolTickShort, 14}, Case{kSymbolTickLong, 26}, Case{kSymbolOwnShipMark, 56},
                   Case{kSymbolRing, 20}}) {
        test_canvas::Canvas canvas(80, 80);
        gdi::Graphics g(canvas.hdc());
        DrawMapSymbol(g, 40, c.kind == kSymbolRing ? 40 : 10, c.kind, kNoLabel, 4, 4, kMapGreen, 10);
        int top = 80, bottom = -1;
        for (int y = 0; y < 80; ++y)
            for (int x = 0; x < 80; ++x)
                if ((canvas.At(x, y) >> 24) != 0) {
                    top = std::min(top, y);
                    bottom = std::max(bottom, y);
                }
        ASSERT_GE(bottom, 0) << c.kind;
        EXPECT_GE(bottom - top + 1, c.min_height) << c.kind;
        EXPECT_LE(bottom - top + 1, c.min_height + 10) << c.kind;
    }
}

TEST(P1000Pictures, HeadingUpPlanAndThePopupPage) {
    Fresh();
    g_display.p1000_airports = g_display.p1000_navaids = 1;
    g_display.p1000_traffic = 1;
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    double a_lat = 0, a_lon = 0, b_lat = 0, b_lon = 0;
    Offset(20, 5, a_lat, a_lon);
    Offset(340, 10, b_lat, b_lon);
    PlacePlan({{"ALPHA", a_lat, a_lon}, {"BRAVO", b_lat, b_lon}}, 0);
    g_traffic.TargetCount = 2;
    g_traffic.targets[1] = {30, 3, 5, '^', 'T'};
    g_traffic.targets[2] = {300, 6, -12, 'v', 'O'};
    g_sim.heading_true = 10;
    g_sim.heading_magnetic.now = 353;
    Frame map = DrawP1000();
    map.WritePng("p1000_map.png");
    EXPECT_GT(map.Near(palette::kMagenta, 40, 100, 95, 170, 200), 0);   // the active leg
    EXPECT_GT(map.Near(palette::kWhite, 40, 39, 171, 41, 272), 50);      // the window's left bar
    g_display.p1000_plan = 1;
    g_tick.p1000_window_open = 1;
    g_display.p1000_keys.page = 2;
    g_display.p1000_keys.altitude_select = 1;
    g_display.p1000_keys.altitude = 3000;
    Frame plan = DrawP1000();
    plan.WritePng("p1000_plan.png");
    EXPECT_TRUE(plan.Has("[3000]"));
}
