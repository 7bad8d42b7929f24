// The HW_MD11_ND drawn in-process: the frame and its twin, the four named
// modes and the mode line's LNAV and VNAV, the range and switch labels, the
// route where the projection puts it on the arc and on PLAN, and the object
// layers' range gates of MAP and PLAN.
#include "display/nd_md11.h"
#include "guidance/geodesy.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
constexpr int kWidth = 246;             // the HW_MD11_ND's surface
constexpr int kHeight = 241;

double Sx(double design_x) { return design_x * kWidth / 240.0; }
double Sy(double design_y) { return design_y * kHeight / 258.0; }

Frame DrawMd11(int instance = 1, GaugeId id = GaugeId::HW_MD11_ND) { return DrawNd(instance, id, kWidth, kHeight); }

// A point at a true bearing and distance from the aircraft.
MapSwitches& Md11Switches() { return g_display.switches[static_cast<size_t>(MapFamily::MD11)]; }
}  // namespace

TEST(Md11Frame, DarkWithoutPowerLitWithTheProfilesBackgroundOnBothTwins) {
    FreshAircraft();
    g_profile.HWMD11NDBkgrd = {30, 0, 90};
    for (GaugeId id : {GaugeId::HW_MD11_ND, GaugeId::HW_MD11_ND_NB}) {
        Frame lit = DrawMd11(1, id);
        EXPECT_EQ(lit.canvas.At(kWidth - 2, kHeight - 2), 0xFF1E005Au) << GaugeName(id);
        EXPECT_TRUE(lit.Has("MAP")) << GaugeName(id);
    }
    EXPECT_EQ(DrawMd11(2).canvas.InkedAll(), 0);
    g_sim.avionics_power = 0;
    Frame dark = DrawMd11();
    EXPECT_EQ(dark.canvas.InkedAll(), 0);
    EXPECT_TRUE(dark.seen.empty());
}

TEST(Md11Texts, ModeNamesAtTheirPlaceWithLnavAndVnavByTheOptions) {
    FreshAircraft();
    struct Case {
        int mode;
        const char* name;
        const char* receiver;   // the radio pages' receiver label
    };
    const char* names[] = {"PLAN", "MAP", "VOR", "APPR"};
    for (Case c : {Case{2, "PLAN", nullptr}, Case{3, "MAP", nullptr}, Case{4, "VOR", "VOR1"},
                   Case{5, "APPR", "LOC1"}}) {
        g_display.md11_mode = c.mode;
        Frame f = DrawMd11();
        const test_canvas::Seen* name = f.Find(c.name);
        ASSERT_NE(name, nullptr) << c.mode;
        EXPECT_NEAR(name->box.layout_x, Sx(205), 1.5) << c.mode;
        EXPECT_NEAR(name->box.layout_y, Sy(215), 1.5) << c.mode;
        for (const char* other : names)
            EXPECT_EQ(f.Has(other), std::string(other) == c.name) << c.mode << " " << other;
        EXPECT_EQ(f.Has("VOR1"), c.receiver != nullptr && std::string(c.receiver) == "VOR1") << c.mode;
        EXPECT_EQ(f.Has("LOC1"), c.receiver != nullptr && std::string(c.receiver) == "LOC1") << c.mode;
    }

    // LNAV and VNAV join the mode line only with their option and while engaged.
    g_display.md11_mode = kMd11ModeMap;
    g_lnav.LnavOn = 1;
    g_vnav.VnavOn = 1;
    Frame off = DrawMd11();
    EXPECT_FALSE(off.Has("LNAV"));
    EXPECT_FALSE(off.Has("VNAV"));
    g_config.DisplayLnavStatusOnMD11ND = 1;
    Frame lnav = DrawMd11();
    ASSERT_TRUE(lnav.Has("LNAV"));
    EXPECT_FALSE(lnav.Has("VNAV"));
    EXPECT_NEAR(lnav.Find("LNAV")->box.layout_x, Sx(205), 1.5);
    EXPECT_GT(lnav.Find("LNAV")->box.layout_y, lnav.Find("MAP")->box.layout_y + 5);
    g_config.DisplayVnavStatusOnMD11ND = 1;
    Frame both = DrawMd11();
    ASSERT_TRUE(both.Has("VNAV"));
    EXPECT_GT(both.Find("VNAV")->box.layout_y, both.Find("LNAV")->box.layout_y + 5);
    g_lnav.LnavOn = 0;
    Frame vnav_only = DrawMd11();
    EXPECT_FALSE(vnav_only.Has("LNAV"));
    ASSERT_TRUE(vnav_only.Has("VNAV"));
    EXPECT_NEAR(vnav_only.Find("VNAV")->box.layout_y, lnav.Find("LNAV")->box.layout_y, 1);

    // A mode outside 2 to 5 (the profile's "off") names none.
    g_display.md11_mode = 1;
    Frame none = DrawMd11();
    for (const char* name : names) EXPECT_FALSE(none.Has(name)) << name;
    EXPECT_TRUE(none.Has("VNAV"));
}

TEST(Md11Texts, RangeAndTheMapSwitchesThatAreOn) {
    FreshAircraft();
    g_display.md11_mode = kMd11ModeMap;
    EXPECT_TRUE(DrawMd11().Has("RNG 80"));
    g_display.md11_range = 5;
    EXPECT_TRUE(DrawMd11().Has("RNG  5"));      // two places, space-filled
    g_display.md11_range = 640;
    EXPECT_TRUE(DrawMd11().Has("RNG 640"));

    for (const char* label : {"WPT", "ARPT", "NAV", "TRFC"}) EXPECT_FALSE(DrawMd11().Has(label)) << label;
    struct Switch {
        int MapSwitches::*field;
        const char* label;
    };
    for (Switch s : {Switch{&MapSwitches::intersections, "WPT"}, Switch{&MapSwitches::airports, "ARPT"},
                     Switch{&MapSwitches::navaids, "NAV"}, Switch{&MapSwitches::traffic, "TRFC"}}) {
        Md11Switches() = {};
        Md11Switches().*s.field = 1;
        Frame f = DrawMd11();
        for (const char* label : {"WPT", "ARPT", "NAV", "TRFC"})
            EXPECT_EQ(f.Has(label), std::string(label) == s.label) << s.label << " on, " << label;
    }
    // The labels follow the MD-11's own switches, not another family's.
    Md11Switches() = {};
    g_display.switches[static_cast<size_t>(MapFamily::B737)] = {1, 1, 1, 1};
    EXPECT_FALSE(DrawMd11().Has("ARPT"));
    // Traffic isn't drawn on PLAN, so its label goes; the radio pages show none.
    Md11Switches() = {1, 1, 1, 1};
    g_display.md11_mode = kMd11ModePlan;
    Frame plan = DrawMd11();
    EXPECT_TRUE(plan.Has("WPT"));
    EXPECT_FALSE(plan.Has("TRFC"));
    g_display.md11_mode = kMd11ModeVor;
    EXPECT_FALSE(DrawMd11().Has("ARPT"));
}

TEST(Md11Route, IdentsWhereTheProjectionPutsThemOnTheArcAndOnPlan) {
    FreshAircraft();
    double north_lat = 0, north_lon = 0, east_lat = 0, east_lon = 0;
    Offset(0, 12, north_lat, north_lon);
    // 20 nm east of the first waypoint.
    ProjectPoint(north_lat, north_lon, 90, 20, east_lat, east_lon);
    PlacePlan({{"START", g_sim.latitude - 0.1, g_sim.longitude}, {"NORTH", north_lat, north_lon},
               {"EASTW", east_lat, east_lon}},
              1);
    g_display.md11_mode = kMd11ModeMap;
    g_display.md11_range = 40;

    // Heading north: NORTH is 12 nm straight up the arc, at 150 pixels for 40 nm.
    Frame map = DrawMd11();
    const test_canvas::Seen* north = map.Find("NORTH");
    ASSERT_NE(north, nullptr);
    EXPECT_EQ(north->box.argb, 0xFFFF13D5u);            // the active waypoint in magenta
    EXPECT_NEAR(north->box.layout_x, Sx(120 + 7), 1.5);
    EXPECT_NEAR(north->box.layout_y, Sy(178 - 12.0 * 150 / 40 - 7), 2);
    ASSERT_NE(map.Find("EASTW"), nullptr);
    EXPECT_EQ(map.Find("EASTW")->box.argb, 0xFFDEE6E9u);
    EXPECT_FALSE(map.Has("START"));                      // behind the active waypoint

    // Heading east: NORTH is 12 nm to the left, on the centre's row.
    g_sim.heading_true = 90;
    Frame east_up = DrawMd11();
    ASSERT_NE(east_up.Find("NORTH"), nullptr);
    EXPECT_NEAR(east_up.Find("NORTH")->box.layout_x, Sx(120 - 12.0 * 150 / 40 + 7), 2);
    EXPECT_NEAR(east_up.Find("NORTH")->box.layout_y, Sy(178 - 7), 2);

    // PLAN with the PLAN button's radius: north up around the active
    // waypoint at (120, 129), the whole plan shown.
    g_display.md11_mode = kMd11ModePlan;
    g_display.md11_radius = kMd11PlanRadius;
    Frame plan = DrawMd11();
    ASSERT_NE(plan.Find("NORTH"), nullptr);
    EXPECT_NEAR(plan.Find("NORTH")->box.layout_x, Sx(120 + 7), 1.5);
    EXPECT_NEAR(plan.Find("NORTH")->box.layout_y, Sy(129 - 7), 1.5);
    ASSERT_NE(plan.Find("EASTW"), nullptr);
    EXPECT_NEAR(plan.Find("EASTW")->box.layout_x, Sx(120 + 20.0 * 94 / 40 + 7), 2);
    EXPECT_NEAR(plan.Find("EASTW")->box.layout_y, Sy(129 - 7), 2);
    EXPECT_TRUE(plan.Has("START"));                      // PLAN starts at row 0
    EXPECT_TRUE(plan.Has("N"));

    // The radio pages draw no route: the active waypoint's ident stands only
    // in the top right corner's text.
    for (int mode : {kMd11ModeVor, kMd11ModeAppr}) {
        g_display.md11_mode = mode;
        Frame radio = DrawMd11();
        EXPECT_FALSE(radio.Has("EASTW")) << mode;
        EXPECT_EQ(radio.CountText("NORTH"), 1) << mode;
        ASSERT_NE(radio.Find("NORTH"), nullptr);
        EXPECT_LT(radio.Find("NORTH")->box.layout_y, Sy(20)) << mode;
    }
}

TEST(Md11Layers, RangeGatesOfMapAndPlan) {
    FreshAircraft();
    Md11Switches() = {1, 1, 1, 0};
    AddNearby(g_nearby.NavaidsNear320, "SEA", "V", 47.50, -122.31);
    AddNearby(g_nearby.AirportsNear180, "KBFI", "", 47.53, -122.30);
    AddNearby(g_nearby.FixesNear200, "ALDER", "I", 47.51, -122.32);
    struct Case {
        int mode;
        double range;
        bool navaids, airports, fixes;
    };
    for (Case c : {Case{3, 40, true, true, true}, Case{3, 80, true, true, true}, Case{3, 160, true, true, false},
                   Case{3, 320, true, false, false}, Case{3, 640, false, false, false},
                   Case{2, 80, true, true, true}, Case{2, 160, true, true, false}, Case{2, 320, false, false, false},
                   Case{4, 10, false, false, false}, Case{5, 10, false, false, false}}) {
        g_display.md11_mode = c.mode;
        g_display.md11_range = c.range;
        g_display.md11_radius = c.mode == kMd11ModePlan ? kMd11PlanRadius : kMd11MapRadius;
        Frame f = DrawMd11();
        EXPECT_EQ(f.Has("SEA"), c.navaids) << c.mode << " @ " << c.range;
        EXPECT_EQ(f.Has("KBFI"), c.airports) << c.mode << " @ " << c.range;
        EXPECT_EQ(f.Has("ALDER"), c.fixes) << c.mode << " @ " << c.range;
    }
    // Navaids in blue; instance 3 drops the intersections only.
    g_display.md11_mode = kMd11ModeMap;
    g_display.md11_range = 40;
    Frame f = DrawMd11();
    ASSERT_NE(f.Find("SEA"), nullptr);
    EXPECT_EQ(f.Find("SEA")->box.argb, 0xFF02A7EBu);
    Frame vc = DrawMd11(3);
    EXPECT_FALSE(vc.Has("ALDER"));
    EXPECT_TRUE(vc.Has("SEA"));
    // The MD-11's own switches gate its layers.
    Md11Switches().navaids = 0;
    EXPECT_FALSE(DrawMd11().Has("SEA"));
}

TEST(Md11Shots, EachModeAsAPicture) {
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
    g_sim.heading_bug.now = 75;
    g_sim.nav1_obs = 90;
    g_sim.nav1_needle = 40;
    PlacePlan({{"KSEA", 47.45019, -122.31232},
               {"SEA", 47.43536, -122.30961},
               {"NORMY", 47.42955, -121.72123},
               {"BLUIT", 47.40593, -120.41820},
               {"EPH", 47.37792, -119.42400},
               {"GEG", 47.56494, -117.62689}},
              2);
    g_config.DisplayLnavStatusOnMD11ND = 1;
    g_lnav.LnavOn = 1;
    for (MapSwitches& s : g_display.switches) s = {0, 1, 1, 0};
    struct Shot {
        int mode, radius;
        double range;
        const char* file;
    };
    for (Shot shot : {Shot{3, 150, 40, "md11_map_40.png"}, Shot{3, 150, 160, "md11_map_160.png"},
                      Shot{2, 94, 160, "md11_plan_160.png"}, Shot{4, 150, 40, "md11_vor.png"},
                      Shot{5, 150, 40, "md11_appr.png"}}) {
        g_display.md11_mode = shot.mode;
        g_display.md11_radius = shot.radius;
        g_display.md11_range = shot.range;
        Frame frame = DrawMd11();
        frame.WritePng(shot.file);
        // BLUIT lies east of the aircraft and of NORMY: right of the centre
        // whichever of north or the heading is up; no route on the radio pages.
        const test_canvas::Seen* bluit = frame.Find("BLUIT");
        if (shot.mode <= kMd11ModeMap) {
            ASSERT_NE(bluit, nullptr) << shot.file;
            EXPECT_GT(bluit->box.layout_x, Sx(120)) << shot.file;
        } else {
            EXPECT_EQ(bluit, nullptr) << shot.file;
        }
        EXPECT_EQ(frame.Has("N"), shot.mode == kMd11ModePlan) << shot.file;
        // The course arrow of the radio pages: white for the VOR, magenta for the localiser.
        int magenta = frame.Near(0xFFFF13D5, 40, static_cast<int>(Sx(40)), static_cast<int>(Sy(60)),
                                 static_cast<int>(Sx(200)), static_cast<int>(Sy(170)));
        if (shot.mode == kMd11ModeAppr) {
            EXPECT_GT(magenta, 40) << shot.file;
        } else if (shot.mode == kMd11ModeVor) {
            EXPECT_LT(magenta, 10) << shot.file;
        }
    }
}

TEST(Md11Furniture, BearingPointersBySourceAndSignal) {
    FreshAircraft();
    g_display.md11_mode = kMd11ModeMap;
    g_sim.nav1_relative_bearing = 90;          // the VOR abeam on the right
    g_sim.adf_needle = 90;                     // the NDB too
    g_sim.nav2_relative_bearing = 270;         // VOR 2 abeam on the left
    // The bands either side of the aircraft along its row, clear of texts.
    const int row0 = static_cast<int>(Sy(172)), row1 = static_cast<int>(Sy(185));
    const int right0 = static_cast<int>(Sx(160)), right1 = static_cast<int>(Sx(230));
    const int left0 = static_cast<int>(Sx(30)), left1 = static_cast<int>(Sx(85));
    auto green_right = [&](const Frame& f) { return f.Near(0xFF00FA00, 40, right0, row0, right1, row1); };
    auto cyan_right = [&](const Frame& f) { return f.Near(0xFF00E6E9, 30, right0, row0, right1, row1); };
    auto white_left = [&](const Frame& f) { return f.Near(0xFFDEE6E9, 40, left0, row0, left1, row1); };

    Frame none = DrawMd11();
    EXPECT_EQ(green_right(none), 0);
    EXPECT_EQ(cyan_right(none), 0);
    EXPECT_EQ(white_left(none), 0);
    // First pointer from VOR 1: a green needle to the right.
    g_display.md11_bearing1 = 1;
    Frame vor = DrawMd11();
    EXPECT_GT(green_right(vor), 40);
    EXPECT_EQ(cyan_right(vor), 0);
    // From the ADF: cyan, and only with a signal.
    g_display.md11_bearing1 = 2;
    g_sim.adf_signal = 0.5;
    EXPECT_EQ(cyan_right(DrawMd11()), 0);
    g_sim.adf_signal = 5;
    Frame adf = DrawMd11();
    EXPECT_GT(cyan_right(adf), 40);
    EXPECT_EQ(green_right(adf), 0);
    // The second pointer: white, to the left; not on PLAN.
    g_display.md11_bearing2 = 1;
    EXPECT_GT(white_left(DrawMd11()), 40);
    g_display.md11_mode = kMd11ModeVor;
    EXPECT_GT(white_left(DrawMd11()), 40);
    g_display.md11_mode = kMd11ModePlan;
    g_display.md11_radius = kMd11PlanRadius;
    Frame plan = DrawMd11();
    EXPECT_EQ(cyan_right(plan), 0);
}

TEST(Md11Marks, TopOfClimbAsABlueChevronOnTheMapPages) {
    FreshAircraft();
    g_display.md11_mode = kMd11ModeMap;
    g_display.md11_range = 40;
    // T/C 20 nm ahead: 75 pixels above the aircraft at 150 pixels for 40 nm.
    Offset(0, 20, g_vnav.TopOfClimbLatitude, g_vnav.TopOfClimbLongitude);
    const double mark_y = 178 - 20.0 * 150 / 40;
    auto blue_at_mark = [&](const Frame& f) {
        return f.Near(0xFF02A7EB, 40, static_cast<int>(Sx(95)), static_cast<int>(Sy(mark_y - 8)),
                      static_cast<int>(Sx(130)), static_cast<int>(Sy(mark_y + 12)));
    };
    EXPECT_EQ(blue_at_mark(DrawMd11()), 0);          // no cruise altitude, no marks
    g_plan.context.CruiseAltitude = 35000;
    Frame climbing = DrawMd11();
    EXPECT_GT(blue_at_mark(climbing), 15);
    EXPECT_FALSE(climbing.Has("T/C"));                 // the arrow style has no names
    // Past cruise the T/C chevron goes; the radio pages have none.
    g_vnav.CruiseReached = 1;
    EXPECT_EQ(blue_at_mark(DrawMd11()), 0);
    g_vnav.CruiseReached = 0;
    g_display.md11_mode = kMd11ModeVor;
    EXPECT_EQ(blue_at_mark(DrawMd11()), 0);
}
