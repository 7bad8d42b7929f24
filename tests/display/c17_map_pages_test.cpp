// The C-17 screens' navigation page and map pages drawn in-process: each
// page's title and furniture, the range ladder with its lower stop, the
// layers' range gates, the panel's two symbol flags, the working values,
// the route where each page's projection puts it, traffic only where the
// family draws it, the receiver's name and texts on the navigation page,
// and a picture of every page.
#include "display/c17_map_pages.h"
#include "display/c17_mfd.h"
#include "display/map_symbols.h"
#include "display/traffic.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "guidance/lnav_state.h"
#include "nd_fixture.h"
#include "support/fake_panels.h"

using namespace nd_test;

namespace {
// The surface is the design canvas itself: design pixels are surface pixels.
constexpr int kWidth = 246;
constexpr int kHeight = 241;
constexpr int kScreen = 2;              // the screen the tests draw

class C17Pages : public ::testing::Test {
protected:
    FakeSimulatorScope scope;
    void SetUp() override {
        FreshAircraft();
        g_config.TcasVertRange = 140;
    }
    // Screen 2 on a page, drawn through the gauge's own dispatch.
    Frame DrawPage(int page) {
        g_display.c17_screens[kScreen - 1].page = page;
        return DrawNd(kScreen, GaugeId::C17_MFD, kWidth, kHeight);
    }
    MapSwitches& Switches() { return g_display.switches[static_cast<size_t>(MapFamily::C17)]; }
};

// The one copy of a text below the corner strip (a map label, not a corner's copy).
const test_canvas::Seen* OnMap(const Frame& f, const std::string& text) {
    for (const auto& s : f.seen)
        if (s.text == text && s.box.layout_y > 32 && s.box.layout_y < 212) return &s;
    return nullptr;
}
double RightEdge(const test_canvas::Seen* s) { return s->box.text_x + s->box.text_width; }
}  // namespace

TEST_F(C17Pages, EachPageHasItsTitleAndOnlyPageSixWritesTheRange) {
    struct Case {
        int page;
        const char* title;
    };
    const char* titles[] = {"NAV", "MAP ARC", "MAP CTR", "MAP PLAN", "MAP"};
    for (Case c : {Case{0, "NAV"}, Case{3, "MAP ARC"}, Case{4, "MAP CTR"}, Case{5, "MAP PLAN"}, Case{6, "MAP"}}) {
        Frame f = DrawPage(c.page);
        for (const char* other : titles) EXPECT_EQ(f.Has(other), std::string(other) == c.title) << c.page << other;
        const test_canvas::Seen* title = f.Find(c.title);
        ASSERT_NE(title, nullptr) << c.page;
        EXPECT_NEAR(title->box.layout_x, 4, 1);
        EXPECT_NEAR(title->box.layout_y, 228, 1);
        EXPECT_EQ(title->box.argb, palette::kSkyBlue);
        EXPECT_EQ(f.Has("RNG 80 NM"), c.page == 6) << c.page;
    }
    // Page 6 labels its rings with their distances, at 45 degrees up the left
    // of each ring: the outer ring (130 pixels round 123, 172) at 80 nm.
    Frame f = DrawPage(6);
    const test_canvas::Seen* outer = f.Find("80");
    const test_canvas::Seen* half = f.Find("40");
    ASSERT_NE(outer, nullptr);
    ASSERT_NE(half, nullptr);
    EXPECT_NEAR(RightEdge(outer), 123 - 130 / std::sqrt(2.0) - 2, 3);
    EXPECT_NEAR(RightEdge(half), 123 - 65 / std::sqrt(2.0) - 2, 3);
    EXPECT_LT(half->box.layout_y, 172 - 65 / std::sqrt(2.0));
    EXPECT_GT(half->box.layout_y, 172 - 65 / std::sqrt(2.0) - 16);
    // Pages 2, 7 and 8 stay blank: no title, no map.
    for (int page : {2, 7, 8}) {
        Frame blank = DrawPage(page);
        for (const char* title : titles) EXPECT_FALSE(blank.Has(title)) << page;
    }
}

TEST_F(C17Pages, RangeLadderStopsAtMinMapRangeAndTheTopAndThePageFollows) {
    // From 80: down 40, 20, 10, then MinMapRange 10 holds it.
    EXPECT_DOUBLE_EQ(g_display.c17_range, 80);
    for (double expected : {40.0, 20.0, 10.0, 10.0}) {
        RangeDown();
        EXPECT_DOUBLE_EQ(g_display.c17_range, expected);
    }
    // A lower option lets it on to the bottom of the ladder.
    g_config.MinMapRange = 0.5;
    for (double expected : {5.0, 2.5, 1.0, 0.5, 0.5}) {
        RangeDown();
        EXPECT_DOUBLE_EQ(g_display.c17_range, expected);
    }
    EXPECT_TRUE(DrawPage(6).Has("RNG 0.5 NM"));
    // Up the whole ladder; the top stays.
    for (double expected : {1.0, 2.5, 5.0, 10.0, 20.0, 40.0, 80.0, 160.0, 320.0, 320.0}) {
        RangeUp();
        EXPECT_DOUBLE_EQ(g_display.c17_range, expected);
    }
    Frame top = DrawPage(6);
    EXPECT_TRUE(top.Has("RNG 320 NM"));
    EXPECT_TRUE(top.Has("160"));                        // the half ring
}

TEST_F(C17Pages, ObjectLayersTo160ByTheirSwitchesAndTheLeftSymbolFlag) {
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.51, -122.32);
    Switches() = {1, 1, 1, 0};
    struct Case {
        double range;
        bool shown;
    };
    for (int page : {3, 4, 5, 6})
        for (Case c : {Case{10, true}, Case{160, true}, Case{320, false}}) {
            g_display.c17_range = c.range;
            Frame f = DrawPage(page);
            EXPECT_EQ(f.Has("SEA"), c.shown) << page << " @ " << c.range;
            EXPECT_EQ(f.Has("KBFI"), c.shown) << page << " @ " << c.range;
            EXPECT_EQ(f.Has("ALDER"), c.shown) << page << " @ " << c.range;
        }
    // Screen 3 is a screen number here, not a picture without intersections.
    g_display.c17_range = 40;
    g_display.c17_screens[2].page = 4;
    EXPECT_TRUE(DrawNd(3, GaugeId::C17_MFD, kWidth, kHeight).Has("ALDER"));
    // The C-17's own switches gate, not another family's.
    Switches() = {};
    g_display.switches[static_cast<size_t>(MapFamily::MD80)] = {1, 1, 1, 1};
    Frame off = DrawPage(4);
    EXPECT_FALSE(off.Has("SEA"));
    EXPECT_FALSE(off.Has("KBFI"));
    EXPECT_FALSE(off.Has("ALDER"));
    // The panel's left flag brings the intersections alone.
    g_display.c17_symbols_left = 1;
    Frame fixes = DrawPage(4);
    EXPECT_TRUE(fixes.Has("ALDER"));
    EXPECT_FALSE(fixes.Has("SEA"));
    EXPECT_FALSE(fixes.Has("KBFI"));
    // The navigation page has no map at all.
    Switches() = {1, 1, 1, 1};
    Frame nav = DrawPage(0);
    EXPECT_FALSE(nav.Has("SEA"));
    EXPECT_FALSE(nav.Has("ALDER"));
}

TEST_F(C17Pages, TrafficOnTheHeadingUpMapsByItsSwitchOrTheRightFlagInTheWorkingKind) {
    // One target 10 nm ahead, 500 ft above: "+5".
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = TrafficTarget{0, 10, 5, '-', 'O'};
    g_display.c17_range = 40;
    for (int page : {0, 3, 4, 5, 6}) EXPECT_FALSE(DrawPage(page).Has("+5")) << page;
    g_display.c17_symbols_right = 1;
    for (int page : {0, 3, 4, 5, 6}) {
        Frame f = DrawPage(page);
        bool drawn = page != 0 && page != 5;           // not on the navigation page, not on PLAN
        EXPECT_EQ(f.Has("+5"), drawn) << page;
        EXPECT_EQ(f.Has("TFC"), drawn) << page;
    }
    // Kind 9 at start: plain 11-pixel Arial, at x - 13, y + 12 of the target.
    // On page 4 the target stands 10 nm straight up from (123, 126), 86 px for 40 nm.
    Frame centred = DrawPage(4);
    const test_canvas::Seen* text = centred.Find("+5");
    ASSERT_NE(text, nullptr);
    EXPECT_NEAR(text->box.font_size_px, 11, 0.5);
    EXPECT_EQ(text->box.font_style & 1, 0);
    EXPECT_NEAR(text->box.layout_x, 123 - 13, 2);
    EXPECT_NEAR(text->box.layout_y, 126 - 10.0 * 86 / 40 + 12, 2);
    // The working value b chooses the kind: 0 is the 13-pixel bold text;
    // a value outside the kinds falls back to 9.
    g_display.c17_screens[kScreen - 1].map_value_b = kTrafficKindB737;
    text = DrawPage(4).Find("+5");
    ASSERT_NE(text, nullptr);
    EXPECT_NEAR(text->box.font_size_px, 13, 0.5);
    EXPECT_EQ(text->box.font_style & 1, 1);
    g_display.c17_screens[kScreen - 1].map_value_b = 77;
    text = DrawPage(4).Find("+5");
    ASSERT_NE(text, nullptr);
    EXPECT_NEAR(text->box.font_size_px, 11, 0.5);
    // The family's common switch does it as well.
    g_display.c17_symbols_right = 0;
    Switches().traffic = 1;
    EXPECT_TRUE(DrawPage(6).Has("+5"));
}

TEST_F(C17Pages, NavaidColourComesFromTheFirstWorkingValue) {
    // A VOR 20 nm ahead on page 4: 43 pixels above the centre (123, 126).
    double lat = 0, lon = 0;
    Offset(0, 20, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "VVV", "V", lat, lon);
    Switches().navaids = 1;
    g_display.c17_range = 40;
    auto around = [](const Frame& f, uint32_t argb) { return f.Near(argb, 30, 110, 70, 140, 95); };
    Frame green = DrawPage(4);
    EXPECT_GT(around(green, palette::kGreen), 5);
    EXPECT_EQ(around(green, palette::kBlue), 0);
    ASSERT_NE(green.Find("VVV"), nullptr);
    EXPECT_EQ(green.Find("VVV")->box.argb, palette::kGreen);
    g_display.c17_screens[kScreen - 1].map_value_a = kMapBlue;
    Frame blue = DrawPage(4);
    EXPECT_GT(around(blue, palette::kBlue), 5);
    EXPECT_EQ(around(blue, palette::kGreen), 0);
    // A value that is no colour index draws green, not nothing.
    g_display.c17_screens[kScreen - 1].map_value_a = 42;
    EXPECT_GT(around(DrawPage(4), palette::kGreen), 5);
}

TEST_F(C17Pages, MapLayersStayInsideEachPagesClip) {
    // Page 4 clips to its disc (86 pixels round 123, 126): at range 40 a VOR
    // due west 45 nm out (97 pixels) is cut away, one 38 nm out (82) shows.
    Switches().navaids = 1;
    g_display.c17_range = 40;
    g_sim.heading_true = 0;
    double lat = 0, lon = 0;
    Offset(270, 45, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "OUT", "V", lat, lon);
    auto green_left = [](const Frame& f) { return f.Near(palette::kGreen, 40, 14, 118, 36, 140); };
    EXPECT_EQ(green_left(DrawPage(4)), 0);
    g_nearby.NavaidsNear320.count = 0;
    Offset(270, 38, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "IN", "V", lat, lon);
    EXPECT_GT(DrawPage(4).Near(palette::kGreen, 40, 36, 118, 56, 140), 5);
    // Page 6 ends its map at row 212: 130 pixels for 20 nm round (123, 172),
    // a VOR 8 nm behind (row 224) is cut, 4 nm behind (row 198) shows.
    g_display.c17_range = 20;
    g_nearby.NavaidsNear320.count = 0;
    Offset(180, 8, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "AFT", "V", lat, lon);
    EXPECT_EQ(DrawPage(6).Near(palette::kGreen, 40, 110, 213, 140, 241), 0);
    g_nearby.NavaidsNear320.count = 0;
    Offset(180, 4, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "NEAR", "V", lat, lon);
    EXPECT_GT(DrawPage(6).Near(palette::kGreen, 40, 110, 190, 140, 212), 5);
}

TEST_F(C17Pages, RouteIdentsWhereEachPagesProjectionPutsThem) {
    double north_lat = 0, north_lon = 0, east_lat = 0, east_lon = 0;
    Offset(0, 12, north_lat, north_lon);
    Offset(90, 20, east_lat, east_lon);
    PlacePlan({{"START", g_sim.latitude - 0.1, g_sim.longitude},
               {"NORTH", north_lat, north_lon},
               {"EAST", east_lat, east_lon}},
              1);
    g_display.c17_range = 40;
    // An ident stands 7 pixels right of and above its waypoint.
    // Page 3: the arc round (123, 205), 165 pixels for 40 nm.
    Frame arc = DrawPage(3);
    const test_canvas::Seen* north = OnMap(arc, "NORTH");
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 123 + 7, 1.5);
    EXPECT_NEAR(north->box.layout_y, 205 - 12.0 * 165 / 40 - 7, 2);
    EXPECT_FALSE(arc.Has("START"));                     // behind the active waypoint
    // The active waypoint in the corner, magenta.
    const test_canvas::Seen* corner = nullptr;
    for (const auto& s : arc.seen)
        if (s.text == "NORTH" && s.box.layout_y < 10) corner = &s;
    ASSERT_NE(corner, nullptr);
    EXPECT_EQ(corner->box.argb, palette::kMagenta);
    // Page 4, heading east: NORTH 12 nm left of (123, 126) on its row, 86 px for 40 nm.
    g_sim.heading_true = 90;
    Frame centred = DrawPage(4);
    north = OnMap(centred, "NORTH");
    ASSERT_NE(north, nullptr);
    EXPECT_NEAR(north->box.layout_x, 123 - 12.0 * 86 / 40 + 7, 2);
    EXPECT_NEAR(north->box.layout_y, 126 - 7, 2);
    // Page 5 is north-up round the active waypoint: NORTH at the centre,
    // EAST 20 nm to its east and 12 nm south, whatever the heading.
    Frame plan = DrawPage(5);
    north = OnMap(plan, "NORTH");
    const test_canvas::Seen* east = OnMap(plan, "EAST");
    ASSERT_NE(north, nullptr);
    ASSERT_NE(east, nullptr);
    EXPECT_NEAR(north->box.layout_x, 123 + 7, 1.5);
    EXPECT_NEAR(north->box.layout_y, 126 - 7, 1.5);
    double distance = 0, bearing = 0;
    GreatCircle(north_lat, north_lon, east_lat, east_lon, distance, bearing);
    double ppn = 86.0 / 40;
    EXPECT_NEAR(east->box.layout_x, 123 + std::sin(bearing * kDegToRad) * distance * ppn + 7, 2);
    EXPECT_NEAR(east->box.layout_y, 126 - std::cos(bearing * kDegToRad) * distance * ppn - 7, 2);
    EXPECT_TRUE(plan.Has("START"));                     // PLAN shows the whole plan
}

TEST_F(C17Pages, NavigationPageNamesTheReceiverAndGivesCourseAndDistance) {
    using namespace Token;
    scope.sim.tokens[NAV1_SIGNAL] = 1;
    g_sim.nav1_obs = 44.6;
    g_sim.dme1_distance = 12.34;
    g_sim.nav1_is_vor = 1;
    Frame vor = DrawPage(0);
    ASSERT_NE(vor.Find("VOR-1"), nullptr);
    EXPECT_EQ(vor.Find("VOR-1")->box.argb, palette::kGreen);
    EXPECT_TRUE(vor.Has("CRS 045"));
    EXPECT_TRUE(vor.Has("DME 12.3"));
    EXPECT_FALSE(vor.Has("LOC-1"));
    EXPECT_FALSE(vor.Has("ILS-1"));
    // A localiser without a glideslope, then with one; magenta both.
    g_sim.nav1_is_vor = 0;
    Frame loc = DrawPage(0);
    ASSERT_NE(loc.Find("LOC-1"), nullptr);
    EXPECT_EQ(loc.Find("LOC-1")->box.argb, palette::kMagenta);
    EXPECT_FALSE(loc.Has("ILS-1"));
    scope.sim.tokens[NAV1_FLAGS] = 0x40;
    g_sim.nav1_gs_needle.now = 0;
    Frame ils = DrawPage(0);
    EXPECT_TRUE(ils.Has("ILS-1"));
    EXPECT_FALSE(ils.Has("LOC-1"));
    // The glideslope's diamond stands on the scale's column only on an ILS.
    EXPECT_GT(ils.Near(palette::kMagenta, 30, 218, 114, 231, 135), 10);
    EXPECT_EQ(loc.Near(palette::kMagenta, 30, 218, 114, 231, 135), 0);
    // No signal: the distance dashes.
    scope.sim.tokens[NAV1_SIGNAL] = 0;
    EXPECT_TRUE(DrawPage(0).Has("DME ---"));
    // The active waypoint due east: true 090, variation 17 east: course 073.
    double lat = 0, lon = 0;
    Offset(90, 25, lat, lon);
    PlacePlan({{"START", g_sim.latitude, g_sim.longitude}, {"EAST1", lat, lon}}, 1);
    g_sim.magnetic_variation = 17;
    g_lnav.DistToActive = 24.96;                        // as guidance measured it
    Frame fms = DrawPage(0);
    EXPECT_TRUE(fms.Has("EAST1"));
    EXPECT_TRUE(fms.Has("CRS 073"));
    EXPECT_TRUE(fms.Has("25.0 NM"));
    // Variation 95 east puts the course below 0.5: 360 is added, written 355.
    g_sim.magnetic_variation = 95;
    EXPECT_TRUE(DrawPage(0).Has("CRS 355"));
}

TEST_F(C17Pages, CornerTextsForAKnownState) {
    g_sim.heading_magnetic.now = 7.4;
    g_sim.ground_speed = 287;
    g_sim.true_airspeed.now = 301;
    g_sim.wind_speed = 23.4;
    g_sim.wind_direction_display = 271.6;
    for (int page : {0, 3, 4, 5, 6}) {
        Frame f = DrawPage(page);
        const test_canvas::Seen* heading = f.Find("007");
        ASSERT_NE(heading, nullptr) << page;
        EXPECT_NEAR(heading->box.text_x + heading->box.text_width / 2, 123, 2) << page;
        EXPECT_TRUE(f.Has("GS 287")) << page;
        EXPECT_TRUE(f.Has("TAS 301")) << page;
        EXPECT_TRUE(f.Has("272\xC2\xB0/23")) << page;
    }
    g_sim.true_airspeed.now = 100;
    g_sim.wind_speed = 0.5;
    Frame slow = DrawPage(3);
    EXPECT_TRUE(slow.Has("TAS - - -"));
    EXPECT_TRUE(slow.Has("---\xC2\xB0/---"));
}

TEST_F(C17Pages, EveryPageAsAPicture) {
    // Pictures for a person to look at; each checked for lit map or rose.
    Switches() = {1, 1, 1, 0};
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.60, -122.45);
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
    g_sim.wind_speed = 20;
    g_sim.wind_direction_display = 250;
    scope.sim.tokens[Token::NAV1_SIGNAL] = 1;
    scope.sim.tokens[Token::NAV1_FLAGS] = 0x40;
    g_traffic.TargetCount = 1;
    g_traffic.targets[1] = TrafficTarget{330, 6, -4, 'v', 'T'};
    g_display.c17_symbols_right = 1;
    g_display.c17_range = 20;
    for (int page : {0, 3, 4, 5, 6}) {
        Frame frame = DrawPage(page);
        char name[32];
        std::snprintf(name, sizeof name, "c17_page%d.png", page);
        frame.WritePng(name);
        // The magenta of the route (or the localiser's needle) shows on every page.
        EXPECT_GT(frame.Near(palette::kMagenta, 40, 20, 35, 226, 212), 20) << page;
        EXPECT_GT(frame.Near(palette::kWhite, 40), 300) << page;
    }
}
