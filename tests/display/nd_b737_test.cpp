// The HW_B737_ND drawn in-process: the frame (dark screen, power, scale),
// each mode's furniture and texts, the route with its labels and colours,
// the object layers with their range gates and culling, and the plan mode.
#include "display/map_symbols.h"
#include "display/nd_b737.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
// How much a pixel counts as white furniture: grey to white pixels (the
// anti-aliased edges of thin white lines included) by their brightness;
// coloured pixels not at all.
double WhiteWeight(uint32_t p) {
    int r = static_cast<int>((p >> 16) & 0xFF), g = static_cast<int>((p >> 8) & 0xFF), b = static_cast<int>(p & 0xFF);
    if (std::abs(r - g) > 40 || std::abs(g - b) > 40) return 0;
    return g > 50 ? g - 50 : 0;
}

// Surface pixels back to the design canvas.
double DesignX(double surface_x) { return surface_x * 244.0 / kSurfaceWidth; }
double DesignY(double surface_y) { return surface_y * 302.0 / kSurfaceHeight; }

// The angle, in degrees clockwise from straight up, of a thin white line
// that leaves (cx, cy) upwards: the white pixels' centre on each row at the
// distances of the bands (design pixels above the centre), within 20
// degrees of the vertical, fitted through the centre. NaN when too few rows
// hold white.
double LineAngleUpFrom(const Frame& f, double cx, double cy, std::initializer_list<std::pair<int, int>> bands) {
    double sum_dd = 0, sum_dx = 0;
    int rows = 0;
    for (auto [from, to] : bands) {
        for (int d = from; d <= to; ++d) {
            int y = static_cast<int>(std::lround(SurfaceY(cy - d)));
            double reach = d * std::tan(20 * kDegToRad) + 3;
            int x0 = static_cast<int>(SurfaceX(cx - reach)), x1 = static_cast<int>(SurfaceX(cx + reach)) + 1;
            double weight = 0, moment = 0;
            for (int x = x0; x <= x1; ++x) {
                double w = WhiteWeight(f.canvas.At(x, y));
                weight += w;
                moment += w * DesignX(x + 0.5);
            }
            if (weight <= 0) continue;
            double dy = cy - DesignY(y + 0.5);
            double dx = moment / weight - cx;
            sum_dd += dy * dy;
            sum_dx += dy * dx;
            ++rows;
        }
    }
    if (rows < 10) return std::nan("");
    return std::atan(sum_dx / sum_dd) / kDegToRad;
}

// Where an arrow centred at (cx, cy) points, in degrees clockwise from
// straight up: its shaft is the long axis of its white pixels, and its head,
// which holds more ink than its tail, tells which way along that axis. NaN
// without white pixels.
double ArrowBearingAt(const Frame& f, double cx, double cy, double half_size) {
    double weight = 0, mx = 0, my = 0, sxx = 0, syy = 0, sxy = 0;
    for (int y = static_cast<int>(SurfaceY(cy - half_size)); y <= static_cast<int>(SurfaceY(cy + half_size)); ++y)
        for (int x = static_cast<int>(SurfaceX(cx - half_size)); x <= static_cast<int>(SurfaceX(cx + half_size)); ++x) {
            double w = WhiteWeight(f.canvas.At(x, y));
            double dx = DesignX(x + 0.5) - cx, dy = DesignY(y + 0.5) - cy;
            weight += w;
            mx += w * dx;
            my += w * dy;
            sxx += w * dx * dx;
            syy += w * dy * dy;
            sxy += w * dx * dy;
        }
    if (weight <= 0) return std::nan("");
    double axis = 0.5 * std::atan2(2 * sxy, sxx - syy);  // from +x, y down
    double ux = std::cos(axis), uy = std::sin(axis);
    if (ux * mx + uy * my < 0) {
        ux = -ux;
        uy = -uy;
    }
    return std::atan2(ux, -uy) / kDegToRad;
}

// White ink inside a design rectangle.
double WhiteIn(const Frame& f, double x0, double y0, double x1, double y1) {
    double sum = 0;
    for (int y = static_cast<int>(SurfaceY(y0)); y < static_cast<int>(SurfaceY(y1)); ++y)
        for (int x = static_cast<int>(SurfaceX(x0)); x < static_cast<int>(SurfaceX(x1)); ++x)
            sum += WhiteWeight(f.canvas.At(x, y));
    return sum;
}

double AngleOff(double a, double b) { return std::remainder(a - b, 360.0); }

// Heading 090 true and magnetic, 400 kt over the ground, in a wind the
// engine's own wind solution turns into the drift, the track and the
// displayed direction.
void FlyEastInWind(double wind_from_true, double wind_speed) {
    g_sim.magnetic_variation = 0;
    g_sim.heading_true = 90;
    g_sim.heading_magnetic.now = 90;
    g_sim.ground_speed = 400;
    g_sim.wind_direction_true = wind_from_true;
    g_sim.wind_speed = wind_speed;
    WindTriangle wind = SolveWind(g_sim.heading_true, wind_from_true, wind_speed, g_sim.ground_speed);
    g_sim.true_airspeed.now = wind.true_airspeed;
    g_sim.drift_angle = wind.drift_angle;
    g_sim.track = EstimatedTrack(g_sim.heading_magnetic.now, wind);
    g_sim.wind_direction_display = NormaliseMagnetic(wind_from_true - g_sim.magnetic_variation);
}

// Seattle to the east: SEA behind, then ahead, to the north-east.
void SeattlePlan(int active = 1) {
    PlacePlan({{"KSEA", 47.45019, -122.31232},
               {"NORMY", 47.60, -122.31},
               {"BLUIT", 47.80, -122.10},
               {"EPH", 48.10, -121.80}},
              active);
}
}  // namespace

TEST(NdFrame, DarkWithPowerOffOrAtInstanceTwoAndLitOtherwise) {
    FreshAircraft();
    SeattlePlan();
    g_display.b737_mode = kB737ModeMap;
    Frame lit = DrawNd(1);
    // The whole surface is covered by the opaque background and the picture.
    EXPECT_EQ(lit.canvas.Inked(0, 0, kSurfaceWidth, kSurfaceHeight), kSurfaceWidth * kSurfaceHeight);
    EXPECT_TRUE(lit.Has("NORMY"));

    Frame pop_up = DrawNd(2);
    EXPECT_EQ(pop_up.canvas.InkedAll(), 0);
    EXPECT_TRUE(pop_up.seen.empty());

    g_sim.avionics_power = 0;
    for (int instance : {1, 2, 3}) {
        Frame dark = DrawNd(instance);
        EXPECT_EQ(dark.canvas.InkedAll(), 0) << instance;
        EXPECT_TRUE(dark.seen.empty()) << instance;
    }
    // A dark frame clears what an earlier frame left on the surface.
    g_sim.avionics_power = 0;
    test_canvas::Canvas reused(kSurfaceWidth, kSurfaceHeight, 0xFFFFFFFF);
    DrawDisplay(GaugeId::HW_B737_ND_BR, reused.hdc(), kSurfaceWidth, kSurfaceHeight, 1);
    EXPECT_EQ(reused.InkedAll(), 0);
    // No context, no crash.
    DrawDisplay(GaugeId::HW_B737_ND, nullptr, kSurfaceWidth, kSurfaceHeight, 1);
}

TEST(NdFrame, BackgroundFromTheProfileAndScaleFromTheDesignSize) {
    FreshAircraft();
    g_profile.HWB737NDBkgrd = {10, 20, 200};
    Frame normal = DrawNd(1);
    EXPECT_EQ(normal.canvas.At(2, kSurfaceHeight / 2), 0xFF0A14C8u);
    const test_canvas::Seen* hdg = normal.Find("HDG");
    ASSERT_NE(hdg, nullptr);

    Frame twice = DrawNd(1, GaugeId::HW_B737_ND_NB, 2 * 244, 2 * 302);
    const test_canvas::Seen* hdg2 = twice.Find("HDG");
    ASSERT_NE(hdg2, nullptr);
    // Twice the design size: text twice as big, at twice the place.
    EXPECT_NEAR(hdg2->box.font_size_px, 2 * 10, 0.01);
    EXPECT_NEAR(hdg2->box.text_x, 2 * hdg->box.text_x * 244.0 / kSurfaceWidth, 1.5);
}

TEST(NdTexts, HeadingSpeedsDistanceWindAndModeNames) {
    FreshAircraft();
    SeattlePlan();
    g_display.b737_mode = kB737ModeMap;
    g_sim.ground_speed = 287.4;
    g_sim.wind_speed = 25;
    g_sim.wind_direction_display = 270;
    g_sim.zulu_hour = 13;
    g_sim.zulu_minute = 55;
    g_tick.to_active = {0, 7.5};
    g_lnav.DistToActive = 12.34;
    Frame map = DrawNd();
    EXPECT_TRUE(map.Has("343"));
    EXPECT_TRUE(map.Has("287"));
    EXPECT_TRUE(map.Has("12.3"));
    EXPECT_TRUE(map.Has("NM"));
    EXPECT_TRUE(map.Has("320"));          // TAS above 100 kt
    EXPECT_TRUE(map.Has("1402.5"));       // ETA 13:55 + 7.5 min
    EXPECT_TRUE(map.Has("Z"));
    EXPECT_TRUE(map.Has("270\u00B0/25"));
    EXPECT_TRUE(map.Has("5"));            // half of the 10 nm range
    EXPECT_FALSE(map.Has("NAV"));         // no mode name on the map modes
    EXPECT_FALSE(map.Has("DME"));
    EXPECT_TRUE(map.Has("TCAS") && map.Has("OFF"));
    const test_canvas::Seen* hdg = map.Find("343");
    EXPECT_EQ(hdg->box.argb, 0xFF00FA00u);  // heading in green
    EXPECT_NEAR(hdg->box.layout_x, SurfaceX(107), 1);

    // Slow, calm, no active leg: dashes and no distance or ETA.
    g_sim.true_airspeed.now = 95;
    g_sim.wind_speed = 0.5;
    g_plan.context.ActiveLeg = kNoActiveLeg;
    g_display.switches[0].traffic = 1;
    Frame quiet = DrawNd();
    EXPECT_FALSE(quiet.Has("NM"));
    EXPECT_FALSE(quiet.Has("TAS"));
    EXPECT_FALSE(quiet.Has("Z"));
    EXPECT_TRUE(quiet.Has("---\u00B0/---"));
    EXPECT_TRUE(quiet.Has("TFC"));
    EXPECT_FALSE(quiet.Has("OFF"));

    // The radio pages name the receiver and show the DME.
    g_display.b737_mode = kB737ModeVor;
    g_sim.nav1_is_vor = 1;
    g_sim.dme1_distance = 23.45;
    Frame vor = DrawNd();
    EXPECT_TRUE(vor.Has("VOR 1"));
    EXPECT_TRUE(vor.Has("DME"));
    EXPECT_TRUE(vor.Has("23.4") || vor.Has("23.5"));
    EXPECT_FALSE(vor.Has("TFC"));          // no traffic side text on the rose
    g_display.b737_mode = kB737ModeExpVor;
    g_sim.nav1_is_vor = 0;
    EXPECT_TRUE(DrawNd().Has("ILS 1"));
    g_display.b737_mode = kB737ModeNav;
    Frame nav = DrawNd();
    EXPECT_TRUE(nav.Has("NAV"));
    EXPECT_FALSE(nav.Has("DME"));
    g_display.b737_mode = kB737ModePlan;
    EXPECT_FALSE(DrawNd().Has("---\u00B0/---"));  // no wind on PLAN
}

TEST(NdTexts, HeadingBugDigitsWhileTheBugHasJustMoved) {
    FreshAircraft();
    g_sim.heading_bug.now = 127;
    g_tick.heading_bug_display = 0;
    EXPECT_FALSE(DrawNd().Has("127"));
    g_tick.heading_bug_display = 55;
    Frame moved = DrawNd();
    const test_canvas::Seen* bug = moved.Find("127");
    ASSERT_NE(bug, nullptr);
    EXPECT_EQ(bug->box.argb, 0xFFFF13D5u);
}

TEST(NdFurniture, TrackLineLeansToTheSideTheWindPushes) {
    FreshAircraft();
    // Wind from 300 at 40 kt on heading 090: from behind on the left, it
    // pushes the aircraft right, to a ground track of about 093.
    FlyEastInWind(300, 40);
    ASSERT_GT(g_sim.track, 92.5);
    ASSERT_LT(g_sim.track, 94.5);
    struct Page {
        int mode;
        double centre_y;
        std::initializer_list<std::pair<int, int>> bands;  // clear of rings and card digits
    };
    const Page pages[] = {{kB737ModeMap, kB737ArcCentreY, {{30, 90}, {125, 180}}},
                          {kB737ModeExpNav, kB737ArcCentreY, {{30, 45}, {125, 180}}},
                          {kB737ModeNav, kB737RoseCentreY, {{26, 66}}},
                          {kB737ModeCtrMap, kB737CtrCentreY, {{26, 45}, {64, 95}}}};
    for (const Page& page : pages) {
        g_display.b737_mode = page.mode;
        double angle = LineAngleUpFrom(DrawNd(), kB737ArcCentreX, page.centre_y, page.bands);
        EXPECT_NEAR(angle, g_sim.track - 90, 0.7) << "mode " << page.mode;
        EXPECT_GT(angle, 2) << "right of the heading, mode " << page.mode;
    }

    // Wind from the right (240): the track and the line fall left.
    FlyEastInWind(240, 40);
    ASSERT_LT(g_sim.track, 88);
    for (const Page& page : pages) {
        g_display.b737_mode = page.mode;
        double angle = LineAngleUpFrom(DrawNd(), kB737ArcCentreX, page.centre_y, page.bands);
        EXPECT_NEAR(angle, g_sim.track - 90, 0.7) << "mode " << page.mode;
        EXPECT_LT(angle, -2) << "left of the heading, mode " << page.mode;
    }

    // No wind: the line stands on the heading.
    FlyEastInWind(0, 0);
    g_display.b737_mode = kB737ModeMap;
    EXPECT_NEAR(LineAngleUpFrom(DrawNd(), kB737ArcCentreX, kB737ArcCentreY, {{30, 90}, {125, 180}}), 0, 0.5);
}

TEST(NdFurniture, WindArrowPointsWhereTheWindBlows) {
    FreshAircraft();
    g_display.b737_mode = kB737ModeMap;
    struct Case {
        double from;        // true, where the wind comes from
        double arrow;       // clockwise from the top of the screen, heading 090 up
    };
    // From 300 it blows to 120, 30 degrees right of the nose; from 240 to
    // 060, 30 left; from 045 to 225, behind on the right; from 090, at the
    // nose, straight down the screen.
    for (Case c : {Case{300, 30}, Case{240, -30}, Case{45, 135}, Case{90, 180}}) {
        FlyEastInWind(c.from, 40);
        Frame f = DrawNd();
        char text[16];
        std::snprintf(text, sizeof text, "%03.0f\u00B0/40", c.from);
        EXPECT_TRUE(f.Has(text)) << text;
        double bearing = ArrowBearingAt(f, kWindArrowX, kWindArrowY, 12);
        EXPECT_NEAR(AngleOff(bearing, c.arrow), 0, 10) << "wind from " << c.from << ", arrow at " << bearing;
    }
    // The map's up is the heading: turned to 000, the wind from 300 blows
    // to 120, behind on the right.
    FlyEastInWind(300, 40);
    g_sim.heading_true = 0;
    g_sim.heading_magnetic.now = 0;
    EXPECT_NEAR(AngleOff(ArrowBearingAt(DrawNd(), kWindArrowX, kWindArrowY, 12), 120), 0, 10);
    // Below a knot there is no arrow.
    FlyEastInWind(300, 0.5);
    EXPECT_TRUE(std::isnan(ArrowBearingAt(DrawNd(), kWindArrowX, kWindArrowY, 12)));
}

TEST(NdRoute, WaypointEastLandsRightOfTheAircraft) {
    FreshAircraft();
    double east_lat = 0, east_lon = 0, south_lat = 0, south_lon = 0;
    ProjectPoint(g_sim.latitude, g_sim.longitude, 90, 30, east_lat, east_lon);
    ProjectPoint(g_sim.latitude, g_sim.longitude, 180, 30, south_lat, south_lon);
    PlacePlan({{"SOUTH", south_lat, south_lon}, {"EASTP", east_lat, east_lon}}, 1);
    g_display.b737_range = 40;

    // North-up PLAN around the active waypoint: the aircraft stands 30 nm
    // west of the centre, so its symbol is left of the waypoint.
    g_display.b737_mode = kB737ModePlan;
    DrawNd();                              // the mode's radius settles
    Frame plan = DrawNd();
    const test_canvas::Seen* east = plan.Find("EASTP");
    ASSERT_NE(east, nullptr);
    EXPECT_NEAR(east->box.layout_x, SurfaceX(kB737ArcCentreX + 7), 2);
    double ship_x = kB737ArcCentreX - 30.0 * kB737CtrRadius / 40;   // 30 nm at 110 px for 40 nm
    double ship_y = kB737CtrCentreY;
    EXPECT_GT(WhiteIn(plan, ship_x - 13, ship_y - 16, ship_x + 13, ship_y + 15), 500) << "own-ship west of centre";
    double mirror_x = 2 * kB737ArcCentreX - ship_x;
    EXPECT_LT(WhiteIn(plan, mirror_x - 13, ship_y - 16, mirror_x + 13, ship_y + 15), 50) << "nothing east of centre";
    EXPECT_GT(east->box.layout_x, SurfaceX(ship_x + 13));

    // Heading north on the map: east is right of the own-ship at the arc's centre.
    g_sim.heading_true = 0;
    g_display.b737_mode = kB737ModeMap;
    DrawNd();
    Frame north = DrawNd();
    ASSERT_NE(north.Find("EASTP"), nullptr);
    EXPECT_GT(north.Find("EASTP")->box.layout_x, SurfaceX(kB737ArcCentreX + 40));
    EXPECT_NEAR(north.Find("EASTP")->box.layout_y, SurfaceY(kB737ArcCentreY - 7), 3);
    // Heading east, it is straight ahead.
    g_sim.heading_true = 90;
    Frame east_up = DrawNd();
    EXPECT_NEAR(east_up.Find("EASTP")->box.layout_x, SurfaceX(kB737ArcCentreX + 7), 2);
    EXPECT_LT(east_up.Find("EASTP")->box.layout_y, SurfaceY(kB737ArcCentreY - 100));
}

TEST(NdRoute, ActiveWaypointMagentaOthersWhiteAheadOfTheAircraft) {
    FreshAircraft();
    SeattlePlan(1);
    g_display.b737_mode = kB737ModeMap;
    g_display.b737_range = 40;
    Frame frame = DrawNd();
    const test_canvas::Seen* active = frame.Find("NORMY");
    const test_canvas::Seen* next = frame.Find("BLUIT");
    ASSERT_NE(active, nullptr);
    ASSERT_NE(next, nullptr);
    EXPECT_EQ(active->box.argb, 0xFFFF13D5u);
    EXPECT_EQ(next->box.argb, 0xFFDEE6E9u);
    EXPECT_FALSE(frame.Has("KSEA"));        // behind the active waypoint
    // NORMY lies 9 nm due north: 9 x 215 / 40 pixels above the aircraft,
    // the label 7 right and 7 up of the point.
    double expected_y = SurfaceY(249 - 9.0 * 215 / 40 - 7);
    EXPECT_NEAR(active->box.layout_y, expected_y, 3);
    EXPECT_NEAR(active->box.layout_x, SurfaceX(122 + 7), 2);
    // The magenta leg runs up from the aircraft.
    EXPECT_GT(frame.Near(0xFFFF13D5, 40, static_cast<int>(SurfaceX(118)), static_cast<int>(SurfaceY(215)),
                         static_cast<int>(SurfaceX(126)), static_cast<int>(SurfaceY(240))),
              5);

    // Turned 90 degrees right, the waypoint ahead moves to the left.
    g_sim.heading_true = 90;
    Frame turned = DrawNd();
    const test_canvas::Seen* left = turned.Find("NORMY");
    ASSERT_NE(left, nullptr);
    EXPECT_LT(left->box.layout_x, SurfaceX(122) - 20);
    EXPECT_NEAR(left->box.layout_y, SurfaceY(249 - 7), 3);

    // An empty plan draws the frame and no route.
    g_plan = PlanTables{};
    Frame empty = DrawNd();
    EXPECT_FALSE(empty.Has("NORMY"));
    EXPECT_TRUE(empty.Has("HDG"));
}

TEST(NdRoute, PreviousWaypointAndDirectToIntercept) {
    FreshAircraft();
    SeattlePlan(2);
    g_display.b737_mode = kB737ModeCtrMap;
    g_display.b737_range = 40;
    EXPECT_FALSE(DrawNd().Has("NORMY"));   // passed, and DispPrevWpt off
    g_config.DispPrevWpt = 1;
    EXPECT_EQ(DrawNd().Find("NORMY")->box.argb, 0xFFDEE6E9u);
    g_display.b737_range = 2.5;             // below 5 nm it stays off
    EXPECT_FALSE(DrawNd().Has("NORMY"));
    g_display.b737_range = 40;
    g_lnav.InterceptActive = 1;
    g_lnav.InterceptStart.lat = 47.45;
    g_lnav.InterceptStart.lon = -122.40;
    Frame direct = DrawNd();
    EXPECT_TRUE(direct.Has("DCT"));
    EXPECT_FALSE(direct.Has("NORMY"));
}

TEST(NdRoute, PlanModeShowsTheWholePlanNorthUpWithoutNavaidsAt320) {
    FreshAircraft();
    SeattlePlan(2);
    g_display.b737_mode = kB737ModePlan;
    g_display.b737_range = 320;
    g_display.switches[0].navaids = 1;
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.43536, -122.30961);
    Frame frame = DrawNd();
    for (const char* ident : {"KSEA", "NORMY", "BLUIT", "EPH"}) EXPECT_TRUE(frame.Has(ident)) << ident;
    EXPECT_FALSE(frame.Has("SEA"));          // navaids end at 160
    EXPECT_TRUE(frame.Has("N"));
    // Centred on the active waypoint (BLUIT), north up: EPH lies up and right.
    const test_canvas::Seen* centre = frame.Find("BLUIT");
    const test_canvas::Seen* eph = frame.Find("EPH");
    EXPECT_NEAR(centre->box.layout_x, SurfaceX(122 + 7), 2);
    EXPECT_NEAR(centre->box.layout_y, SurfaceY(171 - 7), 2);
    EXPECT_GT(eph->box.layout_x, centre->box.layout_x);
    EXPECT_LT(eph->box.layout_y, centre->box.layout_y);

    // The LEGS page's centre entry moves the map.
    g_display.PlanCentreIndex = 3;
    Frame stepped = DrawNd();
    EXPECT_NEAR(stepped.Find("EPH")->box.layout_y, SurfaceY(171 - 7), 2);

    // With no active waypoint the map centres on the aircraft (and draws no route).
    g_display.PlanCentreIndex = 0;
    g_plan.context.ActiveLeg = kNoActiveLeg;
    DisplaySurface surface;
    surface.scale_x = surface.scale_y = 1;
    MapView view = B737MapView(surface);
    EXPECT_DOUBLE_EQ(view.MapCentreLatitude, g_sim.latitude);
    EXPECT_DOUBLE_EQ(view.MapHeading, 0);
    EXPECT_TRUE(view.plan_mode);
}

TEST(NdLayers, RangeGatesOfNavaidsAirportsAndIntersections) {
    FreshAircraft();
    g_display.b737_mode = kB737ModeMap;
    for (MapSwitches& s : g_display.switches) s = {1, 1, 1, 0};
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.NavaidsNear320, "BF", "N", 47.52, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.51, -122.32);
    struct Case {
        double range;
        bool navaids, airports, fixes;
    };
    for (Case c : {Case{10, true, true, true}, Case{40, true, true, true}, Case{80, true, true, false},
                   Case{160, true, true, false}, Case{320, false, false, false}}) {
        g_display.b737_range = c.range;
        Frame f = DrawNd();
        EXPECT_EQ(f.Has("SEA") && f.Has("BF"), c.navaids) << c.range;
        EXPECT_EQ(f.Has("KBFI"), c.airports) << c.range;
        EXPECT_EQ(f.Has("ALDER"), c.fixes) << c.range;
    }
    // Instance 3 leaves the intersections off; a switch turned off hides its layer.
    g_display.b737_range = 10;
    Frame vc2 = DrawNd(3);
    EXPECT_FALSE(vc2.Has("ALDER"));
    EXPECT_TRUE(vc2.Has("SEA"));
    g_display.switches[0].navaids = 0;
    EXPECT_FALSE(DrawNd().Has("SEA"));
    // Colours: navaids green, intersections blue, airports cyan.
    g_display.switches[0].navaids = 1;
    Frame f = DrawNd();
    EXPECT_EQ(f.Find("SEA")->box.argb, 0xFF00FA00u);
    EXPECT_EQ(f.Find("ALDER")->box.argb, 0xFF02A7EBu);
    EXPECT_EQ(f.Find("KBFI")->box.argb, 0xFF00E6E9u);
    // The symbols' pixels: green near SEA (3 nm north at 43 px a mile... 10 nm range).
    EXPECT_GT(f.Near(0xFF00FA00, 60), 10);
    g_display.switches[0].navaids = 0;
    EXPECT_EQ(DrawNd().Near(0xFF00FA00, 60, 0, static_cast<int>(SurfaceY(60)), kSurfaceWidth,
                            static_cast<int>(SurfaceY(240))),
              0);
    // No map layers on the rose and expanded pages.
    g_display.switches[0].navaids = 1;
    for (int mode : {1, 2, 3, 4}) {
        g_display.b737_mode = mode;
        EXPECT_FALSE(DrawNd().Has("SEA")) << mode;
    }
}

TEST(NdLayers, CullingAtTwiceTheRangePlusFiftyMiles) {
    FreshAircraft();
    g_display.b737_mode = kB737ModeCtrMap;
    g_display.b737_range = 10;
    g_display.switches[0].navaids = 1;
    g_display.switches[0].airports = 1;
    // Behind the aircraft, out of sight but inside the cull: still drawn (clipped).
    double lat = 0, lon = 0;
    ProjectPoint(g_sim.latitude, g_sim.longitude, 180, 70 - 1e-6, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "INSIDE", "N", lat, lon);
    ProjectPoint(g_sim.latitude, g_sim.longitude, 180, 70 + 1.0 / 1852, lat, lon);
    AddNearby(g_nearby.NavaidsNear320, "BEYOND", "N", lat, lon);
    ProjectPoint(g_sim.latitude, g_sim.longitude, 90, 29.99, lat, lon);
    AddNearby(g_nearby.AirportsNear180, "KNEAR", "", lat, lon);
    ProjectPoint(g_sim.latitude, g_sim.longitude, 90, 30.01, lat, lon);
    AddNearby(g_nearby.AirportsNear180, "KFAR", "", lat, lon);
    Frame f = DrawNd();
    EXPECT_TRUE(f.Has("INSIDE"));
    EXPECT_FALSE(f.Has("BEYOND"));
    EXPECT_TRUE(f.Has("KNEAR"));
    EXPECT_FALSE(f.Has("KFAR"));
}

TEST(NdLayers, SubsetsAreRebuiltWhenTheAircraftHasMovedFar) {
    FreshAircraft();
    g_display.b737_mode = kB737ModeMap;
    g_display.switches[0].navaids = 1;
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    EXPECT_TRUE(DrawNd().Has("SEA"));
    // 60 nm on, the inner subset is rebuilt from the (empty) outer one.
    g_sim.latitude += 1.0;
    EXPECT_FALSE(DrawNd().Has("SEA"));
    EXPECT_EQ(g_nearby.NavaidsNear320.count, 0);
    EXPECT_NEAR(g_nearby.NavaidsNear320.centre_latitude, g_sim.latitude, 1e-9);
}

TEST(NdMarks, TopOfClimbAndDescentAndTheVerticalDeviationScale) {
    FreshAircraft();
    SeattlePlan(1);
    g_display.b737_mode = kB737ModeMap;
    g_display.b737_range = 40;
    g_vnav.TopOfClimbLatitude = 47.60;
    g_vnav.TopOfClimbLongitude = -122.20;
    g_vnav.TopOfDescentLatitude = 47.70;
    g_vnav.TopOfDescentLongitude = -122.10;
    EXPECT_FALSE(DrawNd().Has("T/C"));      // no cruise altitude
    g_plan.context.CruiseAltitude = 33000;
    Frame climbing = DrawNd();
    EXPECT_TRUE(climbing.Has("T/C"));
    EXPECT_TRUE(climbing.Has("T/D"));
    EXPECT_EQ(climbing.Find("T/C")->box.argb, 0xFF00FA00u);
    g_vnav.CruiseReached = 1;
    Frame cruising = DrawNd();
    EXPECT_FALSE(cruising.Has("T/C"));
    EXPECT_TRUE(cruising.Has("T/D"));
    // Over every page with an arc or a map; not on the full rose pages.
    for (int mode : {kB737ModeExpNav, kB737ModeExpVor, kB737ModeCtrMap, kB737ModePlan}) {
        g_display.b737_mode = mode;
        EXPECT_TRUE(DrawNd().Has("T/D")) << mode;
    }
    for (int mode : {kB737ModeNav, kB737ModeVor}) {
        g_display.b737_mode = mode;
        EXPECT_FALSE(DrawNd().Has("T/D")) << mode;
    }

    // Descending 600 ft above the path: the pointer at its stop and the number.
    g_display.b737_mode = kB737ModeMap;
    g_vnav.DescentSpeedPhase = 1;
    g_vnav.PathDeviationValid = 1;
    g_vnav.PathAltitude = 10000;
    g_sim.indicated_altitude.now = 10600;
    Frame above = DrawNd();
    const test_canvas::Seen* number = above.Find(" 600");
    ASSERT_NE(number, nullptr);
    EXPECT_GT(number->box.layout_y, SurfaceY(265));
    g_sim.indicated_altitude.now = 9200;
    Frame below = DrawNd();
    ASSERT_NE(below.Find(" 800"), nullptr);
    EXPECT_LT(below.Find(" 800")->box.layout_y, SurfaceY(185));
    g_sim.indicated_altitude.now = 10100;
    EXPECT_FALSE(DrawNd().Has(" 100"));     // within 400 ft only the pointer moves
    g_display.b737_mode = kB737ModeVor;
    g_sim.indicated_altitude.now = 10600;
    EXPECT_FALSE(DrawNd().Has(" 600"));     // not on the radio pages
}

TEST(NdShots, EachModeAsAPicture) {
    // Pictures for a person to look at, over the demonstration database;
    // each is checked for what sets its page apart.
    FreshAircraft();
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s/data/sim", ORB_SOURCE_DIR);
    LoadNavDatabase();
    ASSERT_GT(g_navdb.NavaidTable.count, 0);
    g_nearby = ProximitySubsets{};
    g_sim.latitude = 47.52;
    g_sim.longitude = -121.95;
    g_sim.heading_true = 80;
    g_sim.heading_magnetic.now = 63;
    g_sim.magnetic_variation = 17;
    g_sim.heading_bug.now = 75;
    g_sim.bank.now = 10;
    g_sim.wind_speed = 35;
    g_sim.wind_direction_true = 310;
    g_sim.wind_direction_display = NormaliseMagnetic(310 - 17);
    WindTriangle wind = SolveWind(80, 310, 35, g_sim.ground_speed);
    g_sim.true_airspeed.now = wind.true_airspeed;
    g_sim.drift_angle = wind.drift_angle;
    g_sim.track = EstimatedTrack(63, wind);
    PlacePlan({{"KSEA", 47.45019, -122.31232},
               {"SEA", 47.43536, -122.30961},
               {"NORMY", 47.42955, -121.72123},
               {"BLUIT", 47.40593, -120.41820},
               {"EPH", 47.37792, -119.42400},
               {"WIPES", 47.41293, -119.10817},
               {"GEG", 47.56494, -117.62689},
               {"KGEG", 47.61972, -117.53396}},
              2);
    g_plan.context.CruiseAltitude = 33000;
    g_vnav.TopOfClimbLatitude = 47.42;
    g_vnav.TopOfClimbLongitude = -121.2;
    for (MapSwitches& s : g_display.switches) s = {1, 1, 1, 0};
    struct Shot {
        int mode;
        double range;
        const char* file;
        double centre_y, radius;  // the compass card's centre and radius on this page
        bool closed;              // a full ring (rose, centred, plan) or the arc alone
    };
    const double rose_y = kB737RoseCentreY, rose_r = kB737RoseRadius, ctr_y = kB737CtrCentreY, ctr_r = kB737CtrRadius,
                 arc_y = kB737ArcCentreY, arc_r = kB737ArcRadius;
    for (Shot shot : {Shot{5, 40, "nd_map_40.png", arc_y, arc_r, false}, Shot{5, 160, "nd_map_160.png", arc_y, arc_r, false},
                      Shot{6, 40, "nd_ctr_40.png", ctr_y, ctr_r, true}, Shot{7, 160, "nd_plan_160.png", ctr_y, ctr_r, true},
                      Shot{1, 40, "nd_nav_rose.png", rose_y, rose_r, true}, Shot{4, 40, "nd_exp_vor.png", arc_y, arc_r, false}}) {
        g_display.b737_mode = shot.mode;
        g_display.b737_range = shot.range;
        // Airports everywhere hide the plan at long range.
        for (MapSwitches& s : g_display.switches) s.airports = shot.range <= 40 ? 1 : 0;
        DrawNd();                            // the radius of the mode settles
        Frame frame = DrawNd();
        frame.WritePng(shot.file);
        // The card's top stands over the centre at the page's radius; only
        // the rose, centred and plan pages close it under the centre, and the
        // arc pages leave the place where the centred ring would close empty.
        auto ink_at = [&](double y) { return WhiteIn(frame, kB737ArcCentreX - 4, y - 3, kB737ArcCentreX + 4, y + 3); };
        EXPECT_GT(ink_at(shot.centre_y - shot.radius), 300) << shot.file;
        if (shot.closed)
            EXPECT_GT(ink_at(shot.centre_y + shot.radius), 300) << shot.file;
        else
            EXPECT_LT(ink_at(ctr_y + ctr_r), 30) << shot.file;
        // The route only on the map pages; BLUIT lies east of the aircraft
        // and of NORMY, so right of the centre line whichever way is up.
        const test_canvas::Seen* bluit = frame.Find("BLUIT");
        if (shot.mode >= kB737ModeMap) {
            ASSERT_NE(bluit, nullptr) << shot.file;
            EXPECT_GT(bluit->box.layout_x, SurfaceX(kB737ArcCentreX + 7)) << shot.file;
        } else {
            EXPECT_EQ(bluit, nullptr) << shot.file;
        }
        EXPECT_EQ(frame.Has("N"), shot.mode == kB737ModePlan) << shot.file;
    }
}
