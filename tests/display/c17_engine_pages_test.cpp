// c17_engine_pages_test.cpp: the C-17 engine and configuration pages drawn
// from known states: each reading's text and colour at its limits, the limit
// time texts, the reverser, the needles and bars found by their pixels, the
// flap, spoiler and gear texts, and the live pages read from the simulator.
#include "display/c17_engine_pages.h"

#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "nd_fixture.h"
#include "support/fake_panels.h"

#include <cmath>
#include <string>

namespace {

using nd_test::Frame;

constexpr double kPi = 3.14159265358979323846;
constexpr ARGB kGreen = 0xFF00FA00;
constexpr ARGB kYellow = 0xFFFFFF00;
constexpr ARGB kRed = 0xFFFF0000;
constexpr ARGB kCyan = 0xFF18C2E7;
constexpr ARGB kWhite = 0xFFDEE6E9;

enum class Page { Engines, Secondary, Oil, Configuration };

// Draws a page at its design size, so that design units are pixels.
Frame Draw(Page page, const C17EngineInputs* in, const char* png = nullptr) {
    Frame frame(kC17Width, kC17Height);
    test_canvas::TextHost host;
    {
        gdi::Graphics graphics(frame.canvas.hdc());
        graphics.Clear(palette::kBlack);    // as the display frame fills it
        DisplaySurface surface;
        surface.graphics = &graphics;
        surface.width = kC17Width;
        surface.height = kC17Height;
        ResetToDesign(surface);
        switch (page) {
        case Page::Engines: in ? DrawC17EnginesFrom(surface, *in) : DrawC17Engines(surface); break;
        case Page::Secondary: in ? DrawC17EnginesSecondaryFrom(surface, *in) : DrawC17EnginesSecondary(surface); break;
        case Page::Oil: in ? DrawC17OilAndFuelFrom(surface, *in) : DrawC17OilAndFuel(surface); break;
        case Page::Configuration: in ? DrawC17ConfigurationFrom(surface, *in) : DrawC17Configuration(surface); break;
        }
    }
    frame.seen = host.seen();
    if (png != nullptr) frame.WritePng(png);
    return frame;
}

ARGB ColourOf(const Frame& f, const std::string& text) {
    const test_canvas::Seen* s = f.Find(text);
    return s ? s->box.argb : 0;
}

// A running engine at a normal state, the same on all four.
C17EngineInputs Cruise() {
    C17EngineInputs in;
    in.n1.fill(85.0);
    in.n2.fill(92.0);
    in.egt.fill(500.0);
    in.fuel_flow.fill(3000.0);
    in.oil_pressure.fill(80.0);
    in.oil_temperature.fill(100.0);
    in.oil_quantity.fill(12.0);
    in.epr_ambient = 16213;
    in.gear.fill(0);
    return in;
}

// Pixels of a colour in a square of half-size `half` about a point.
int Around(const Frame& f, double x, double y, ARGB colour, int half = 2) {
    int ix = static_cast<int>(std::lround(x)), iy = static_cast<int>(std::lround(y));
    return f.Near(colour, 40, ix - half, iy - half, ix + half + 1, iy + half + 1);
}

// A point at `radius` along `degrees` clockwise from the right of a centre.
double AtX(double cx, double degrees, double radius) { return cx + radius * std::cos(degrees * kPi / 180); }
double AtY(double cy, double degrees, double radius) { return cy + radius * std::sin(degrees * kPi / 180); }

}  // namespace

TEST(C17EnginePages, EngineReadingsTakeTheirColoursAtTheirLimits) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    in.n1 = {100.5, 100.6, 14.9, 15.0};
    in.n2 = {40.0, 101.0, 10.0, 100.5};
    in.egt = {625.0, 655.0, 656.0, 200.0};
    in.fuel_flow = {2437.0, 95.0, 10000.0, 0.0};
    Frame f = Draw(Page::Engines, &in, "c17_engine_limits.png");

    // N1 and N2 share the limits: 100.5 green, over it red, below 15 yellow.
    EXPECT_EQ(ColourOf(f, "100.5"), kGreen);   // N1 of engine 1 (N2 of engine 4 too)
    EXPECT_EQ(ColourOf(f, "100.6"), kRed);
    EXPECT_EQ(ColourOf(f, "14.9"), kYellow);
    EXPECT_EQ(ColourOf(f, "15.0"), kGreen);
    EXPECT_EQ(ColourOf(f, "101.0"), kRed);
    EXPECT_EQ(ColourOf(f, "10.0"), kYellow);
    EXPECT_EQ(ColourOf(f, "40.0"), kGreen);
    // EGT: 625 green, 655 yellow, 656 red.
    EXPECT_EQ(ColourOf(f, "625"), kGreen);
    EXPECT_EQ(ColourOf(f, "655"), kYellow);
    EXPECT_EQ(ColourOf(f, "656"), kRed);
    // Fuel flow down to a multiple of ten, four wide.
    EXPECT_EQ(ColourOf(f, "2430"), kGreen);
    EXPECT_TRUE(f.Has("  90"));
    EXPECT_TRUE(f.Has("10000"));
    EXPECT_TRUE(f.Has("   0"));

    // Where the readings stand: column text x, the dial's row.
    const auto* n1 = f.Find("100.6");      // engine 2's N1 at x 77, y 105
    ASSERT_NE(n1, nullptr);
    EXPECT_NEAR(n1->box.layout_x, 77, 1);
    EXPECT_NEAR(n1->box.layout_y, 105, 1);
    const auto* egt = f.Find("656");       // engine 3's EGT at x 153, y 215
    ASSERT_NE(egt, nullptr);
    EXPECT_NEAR(egt->box.layout_x, 153, 1);
    EXPECT_NEAR(egt->box.layout_y, 215, 1);
    const auto* flow = f.Find("2430");     // engine 1's fuel flow at y 226
    ASSERT_NE(flow, nullptr);
    EXPECT_NEAR(flow->box.layout_x, 22, 1);
    EXPECT_NEAR(flow->box.layout_y, 226, 1);

    // The labels stand centred on the screen's centre, white, Arial bold.
    for (const char* label : {"EPR", "N1", "N2", "EGT", "RPM", "FF", "PPH"}) {
        const auto* s = f.Find(label);
        ASSERT_NE(s, nullptr) << label;
        EXPECT_EQ(s->box.argb, kWhite) << label;
        EXPECT_EQ(s->family, "Arial") << label;
        EXPECT_EQ(s->box.font_style & 1, 1) << label;
        EXPECT_NEAR(s->box.text_x + s->box.text_width / 2, 123, 1.5) << label;
    }
    EXPECT_NEAR(f.Find("EGT")->box.layout_y, 180, 1);
    EXPECT_TRUE(f.Has("RATING  1.22 MCT"));
    EXPECT_FALSE(f.Has("REV"));                  // no reverser in use
}

TEST(C17EnginePages, EprFollowsEachEnginesFactorAndTheAmbientValue) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    // 1 + 20000 x k / 16000: 1.400 (engines 1 and 2), 1.39375, 1.39625.
    in.epr_source = {20000, 20000, 20000, 20000};
    in.epr_ambient = 16000;
    Frame f = Draw(Page::Engines, &in);
    EXPECT_EQ(f.CountText("1.40"), 3);
    EXPECT_EQ(f.CountText("1.39"), 1);
    const auto* third = f.Find("1.39");
    ASSERT_NE(third, nullptr);
    EXPECT_NEAR(third->box.layout_x, 153, 1);
    EXPECT_NEAR(third->box.layout_y, 55, 1);
    EXPECT_EQ(third->box.argb, kGreen);
    // No ambient value: the rule reads 1.
    in.epr_ambient = 0;
    EXPECT_EQ(Draw(Page::Engines, &in).CountText("1.00"), 4);
}

TEST(C17EnginePages, ThrustTimeCountsUpToFifteenMinutesThenCountsDown) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    in.max_thrust_seconds = 900;
    Frame at = Draw(Page::Engines, &in);
    const auto* over = at.Find("MAX THR TIME OVER 15:00");
    ASSERT_NE(over, nullptr);
    EXPECT_EQ(over->box.argb, kCyan);
    EXPECT_NEAR(over->box.layout_y, 0, 1);
    in.max_thrust_seconds = 901;
    EXPECT_EQ(ColourOf(Draw(Page::Engines, &in), "MAX THR TIME REM 04:59"), kCyan);
    in.max_thrust_seconds = 1500;
    EXPECT_TRUE(Draw(Page::Engines, &in).Has("MAX THR TIME REM 00:00"));
    // At rest nothing of the kind shows.
    in.max_thrust_seconds = 0;
    for (const auto& s : Draw(Page::Engines, &in).seen) EXPECT_EQ(s.text.find("MAX THR"), std::string::npos);
}

TEST(C17EnginePages, ReverserInUseDrawsItsDoorsAndText) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    in.reverser[2] = true;
    Frame f = Draw(Page::Engines, &in, "c17_engine_reverser.png");
    EXPECT_EQ(f.CountText("REV"), 1);
    const auto* rev = f.Find("REV");
    ASSERT_NE(rev, nullptr);
    EXPECT_EQ(rev->box.argb, kCyan);
    EXPECT_NEAR(rev->box.text_x + rev->box.text_width / 2, 138 + 25, 1.5);   // engine 3's column
    // The doors: cyan on the circle of 20 about (163, 35) at the top (270
    // degrees) and the bottom (90), none at the sides (0, 180), none on engine 1.
    EXPECT_GE(Around(f, 163, 15, kCyan), 2);
    EXPECT_GE(Around(f, 163, 55, kCyan), 2);
    EXPECT_EQ(Around(f, 143, 35, kCyan), 0);
    EXPECT_EQ(Around(f, 183, 35, kCyan), 0);
    EXPECT_EQ(Around(f, 32, 15, kCyan), 0);
}

TEST(C17EnginePages, DialNeedlesTurnWithTheReadingAndStopAtHalfACircle) {
    nd_test::FreshAircraft();
    // The turn from the arc's start: 55 of 110 is half, 380 of 760 half.
    EXPECT_DOUBLE_EQ(C17NeedleDegrees(55, 110), 90);
    EXPECT_DOUBLE_EQ(C17NeedleDegrees(380, 760), 90);
    EXPECT_DOUBLE_EQ(C17NeedleDegrees(150, 110), 180);
    EXPECT_DOUBLE_EQ(C17NeedleDegrees(-5, 110), 0);

    C17EngineInputs in = Cruise();
    in.n1[0] = 55;      // 90 degrees from the start at 135: points to 225
    in.n1[1] = 150;     // held at 180 degrees: 315, not 380
    in.egt[0] = 190;    // a quarter of 760: 45 degrees, 180
    Frame f = Draw(Page::Engines, &in, "c17_engine_needles.png");
    // Engine 1's N1 dial is centred at (32, 95), engine 2's at (87, 95).
    // (Sampled 10 units out, clear of the readings under the centres.)
    EXPECT_GE(Around(f, AtX(32, 225, 10), AtY(95, 225, 10), kGreen), 3);
    EXPECT_EQ(Around(f, AtX(32, 135, 10), AtY(95, 135, 10), kGreen), 0);
    EXPECT_EQ(Around(f, AtX(32, 315, 10), AtY(95, 315, 10), kGreen), 0);
    EXPECT_GE(Around(f, AtX(87, 315, 10), AtY(95, 315, 10), kRed), 3);
    EXPECT_EQ(Around(f, AtX(87, 380, 10), AtY(95, 380, 10), kRed), 0);
    // Engine 1's EGT dial centred at (32, 205).
    EXPECT_GE(Around(f, AtX(32, 180, 10), AtY(205, 180, 10), kGreen), 3);
    // The N1 limit marks stand 25 and 164 degrees into the arc, from 25 to 30 out.
    EXPECT_GE(Around(f, AtX(32, 160, 27.5), AtY(95, 160, 27.5), kYellow), 2);
    EXPECT_GE(Around(f, AtX(32, 299, 27.5), AtY(95, 299, 27.5), kRed), 2);
}

TEST(C17EnginePages, SecondaryShowsTheHottestEnginesLimitAndTheTimeLeft) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    in.egt = {400, 625, 500, 500};           // at the limit is not over it
    Frame none = Draw(Page::Secondary, &in);
    for (const auto& s : none.seen) EXPECT_EQ(s.text.find("MAX EGT"), std::string::npos) << s.text;
    in.egt[2] = 626;
    EXPECT_EQ(ColourOf(Draw(Page::Secondary, &in), "MAX EGT 625"), kYellow);
    in.egt[0] = 656;
    Frame red = Draw(Page::Secondary, &in);
    EXPECT_EQ(ColourOf(red, "MAX EGT 655"), kRed);
    EXPECT_FALSE(red.Has("MAX EGT 625"));
    EXPECT_NEAR(red.Find("MAX EGT 655")->box.layout_y, 33, 1);

    // The time left: held at 05:00 (at y 43) for five minutes, then counting down at y 40.
    in.max_egt_seconds = 120;
    const auto* held = Draw(Page::Secondary, &in).Find("TIME REM 05:00");
    ASSERT_NE(held, nullptr);
    EXPECT_NEAR(held->box.layout_y, 43, 1);
    in.max_egt_seconds = 420;
    Frame counting = Draw(Page::Secondary, &in);
    const auto* left = counting.Find("TIME REM 03:00");
    ASSERT_NE(left, nullptr);
    EXPECT_NEAR(left->box.layout_y, 40, 1);
    in.max_egt_seconds = 700;
    EXPECT_TRUE(Draw(Page::Secondary, &in).Has("TIME REM 00:00"));
}

TEST(C17EnginePages, SecondaryRaisesTheTemperatureCounterToFiveMinutes) {
    nd_test::FreshAircraft();
    FakeSimulatorScope scope;
    // 12 seconds over: the live page lifts the counter to 300, so that the
    // next second already reads 04:59.
    g_tick.over_temperature_seconds = 12;
    Frame first = Draw(Page::Secondary, nullptr);
    EXPECT_TRUE(first.Has("TIME REM 05:00"));
    EXPECT_EQ(g_tick.over_temperature_seconds, 300);
    g_tick.over_temperature_seconds += 1;
    EXPECT_TRUE(Draw(Page::Secondary, nullptr).Has("TIME REM 04:59"));
    EXPECT_EQ(g_tick.over_temperature_seconds, 301);
    // At rest the counter stays at 0 and no time shows.
    g_tick.over_temperature_seconds = 0;
    Frame rest = Draw(Page::Secondary, nullptr);
    EXPECT_EQ(g_tick.over_temperature_seconds, 0);
    for (const auto& s : rest.seen) EXPECT_EQ(s.text.find("TIME REM"), std::string::npos);
}

TEST(C17EnginePages, SecondaryBarsFollowTheScaleTheAmbientValueSets) {
    nd_test::FreshAircraft();
    // Ambient 16213: a = 1, the scale runs from 24 to 100.5; N1 62.25 is half.
    EXPECT_NEAR(C17BarHeight(62.25, 16213), 50, 1e-9);
    EXPECT_NEAR(C17BarHeight(100.5, 16213), 100, 1e-9);
    // Ambient 300: a = 0, from 40 to 104; 72 is half.
    EXPECT_NEAR(C17BarHeight(72, 300), 50, 1e-9);
    // Held within the bar.
    EXPECT_EQ(C17BarHeight(120, 16213), 100);
    EXPECT_EQ(C17BarHeight(5, 16213), 0);

    C17EngineInputs in = Cruise();
    in.n1 = {62.25, 100.5, 10.0, 62.25};
    in.epr_ambient = 16213;
    Frame f = Draw(Page::Secondary, &in, "c17_engine_secondary.png");
    // Engine 1's bar from x 25 to 39: green up to y 130, nothing green above.
    EXPECT_EQ(f.Near(kGreen, 40, 27, 133, 37, 178), 10 * 45);
    EXPECT_EQ(f.Near(kGreen, 40, 27, 82, 37, 127), 0);
    // Engine 2's is full; engine 3's (N1 10, yellow) empty.
    EXPECT_EQ(f.Near(kGreen, 40, 82, 83, 92, 178), 10 * 95);
    EXPECT_EQ(f.Near(kYellow, 40, 158, 83, 168, 178), 0);
    // Readings under the bars.
    EXPECT_EQ(ColourOf(f, "10.0"), kYellow);
    EXPECT_NEAR(f.Find("10.0")->box.layout_y, 211, 1);
    EXPECT_TRUE(f.Has(" 3000"));
    EXPECT_TRUE(f.Has("1.8"));
    EXPECT_TRUE(f.Has("FF PPH"));
}

TEST(C17EnginePages, OilReadingsAndFuelUsedTakeTheirColours) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    in.oil_pressure = {69, 70, 150, 45};
    in.oil_temperature = {38, 120, 170, 178};
    in.oil_quantity = {3.9, 4, 20, 12};
    in.fuel_used = {1234.4, 0, 98765.2, 12};
    Frame f = Draw(Page::Oil, &in, "c17_engine_oil.png");
    EXPECT_EQ(ColourOf(f, " 69"), kRed);
    EXPECT_EQ(ColourOf(f, " 70"), kGreen);
    EXPECT_EQ(ColourOf(f, " 45"), kRed);
    EXPECT_EQ(ColourOf(f, "38"), kYellow);
    EXPECT_EQ(ColourOf(f, "120"), kGreen);
    EXPECT_EQ(ColourOf(f, "170"), kYellow);
    EXPECT_EQ(ColourOf(f, "178"), kRed);
    // 3.9 quarts prints as 4 but is below the limit: yellow; 4 itself green.
    ASSERT_EQ(f.CountText("  4"), 2);
    int yellow = 0, green = 0;
    for (const auto& s : f.seen) {
        if (s.text != "  4") continue;
        yellow += s.box.argb == kYellow;
        green += s.box.argb == kGreen;
    }
    EXPECT_EQ(yellow, 1);
    EXPECT_EQ(green, 1);
    // Fuel used, five wide, cyan, at y 216.
    const auto* used = f.Find(" 1234");
    ASSERT_NE(used, nullptr);
    EXPECT_EQ(used->box.argb, kCyan);
    EXPECT_NEAR(used->box.layout_y, 216, 1);
    EXPECT_TRUE(f.Has("98765"));
    for (const char* label : {"ENGINE OIL", "PRESS", "PSI", "TEMP", "QTY", "QTS", "FUEL", "USED"})
        EXPECT_TRUE(f.Has(label)) << label;
}

TEST(C17EnginePages, OilNeedleTurnsYellowAtWholeDegreesBeforeTheReading) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    in.oil_temperature = {163.2, 100, 100, 100};
    Frame f = Draw(Page::Oil, &in);
    EXPECT_EQ(ColourOf(f, "163"), kGreen);   // the reading turns above 163.5
    // The needle (0 to 200 over 180 degrees, from 135) of engine 1, centred
    // at (32, 93), is already yellow; engine 2's at 100 degrees is green.
    double turn = 135 + 163.2 / 200 * 180;
    EXPECT_GE(Around(f, AtX(32, turn, 14), AtY(93, turn, 14), kYellow), 3);
    EXPECT_EQ(Around(f, AtX(32, turn, 14), AtY(93, turn, 14), kGreen), 0);
    double normal = 135 + 100.0 / 200 * 180;
    EXPECT_GE(Around(f, AtX(87, normal, 14), AtY(93, normal, 14), kGreen), 3);
}

TEST(C17EnginePages, ConfigurationTextsStepWithFlapsSpoilersAndGear) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    struct Step {
        double raw;
        const char* text;
    };
    const Step flaps[] = {{0, "FLAPS UP"},      {4680, "FLAPS UP"},   {4681, "FLAPS 1/2"},
                          {9361, "FLAPS 1/2"},  {9362, "FLAPS 3/4"},  {14042, "FLAPS 3/4"},
                          {14043, "FLAPS FULL"}, {16383, "FLAPS FULL"}};
    for (const Step& step : flaps) {
        in.flaps_raw = step.raw;
        EXPECT_EQ(ColourOf(Draw(Page::Configuration, &in), step.text), kGreen) << step.raw;
    }
    // Spoilers: none shown up to 800; up to 9362 direct lift control, above it speed brakes.
    auto spoiler_text = [&](double left, double right) {
        in.spoiler = {left, right};
        Frame f = Draw(Page::Configuration, &in);
        return std::string(f.Has("SPD BR") ? "SPD BR" : "") + (f.Has("DLC") ? "DLC" : "");
    };
    EXPECT_EQ(spoiler_text(800, 0), "");
    EXPECT_EQ(spoiler_text(801, 0), "DLC");
    EXPECT_EQ(spoiler_text(0, 9362), "DLC");
    EXPECT_EQ(spoiler_text(9363, 2000), "SPD BR");
    // Gear.
    in.spoiler = {0, 0};
    in.gear = {16383, 16383, 16383};
    EXPECT_EQ(ColourOf(Draw(Page::Configuration, &in), "GEAR DOWN"), kGreen);
    in.gear = {16383, 8000, 16383};
    EXPECT_TRUE(Draw(Page::Configuration, &in).Has("GEAR TRANSIT"));
    in.gear = {0, 0, 0};
    EXPECT_TRUE(Draw(Page::Configuration, &in).Has("GEAR UP"));
}

TEST(C17EnginePages, ConfigurationShowsItsLabelsAndMovesItsSurfaces) {
    nd_test::FreshAircraft();
    C17EngineInputs in = Cruise();
    in.spoiler = {16383, 0};
    in.flaps_raw = 16383;
    in.slats_degrees = 20;
    in.rudder_trim = 1;
    Frame f = Draw(Page::Configuration, &in, "c17_flight_controls.png");
    for (const char* label : {"RUD TRIM", "10     0     10", "STAB", "TRIM", "AIL", "RWD", "LWD", "GND", "INDEX 100",
                              "SLATS", "DOWN"})
        EXPECT_TRUE(f.Has(label)) << label;
    const auto* stab = f.Find("STAB");
    ASSERT_NE(stab, nullptr);
    EXPECT_NEAR(stab->box.text_x + stab->box.text_width / 2, 123 + 68, 1.5);
    // The left spoiler stands raised its full 24 units, the right one not at all.
    EXPECT_GE(f.Near(kGreen, 40, 80, 108, 90, 128), 10 * 18);
    EXPECT_EQ(f.Near(kGreen, 40, 156, 108, 166, 128), 0);
    // The rudder pointer at full right trim: 40 units right of the centre.
    EXPECT_GE(Around(f, 163, 33, kGreen), 3);
    EXPECT_EQ(Around(f, 123, 33, kGreen), 0);
    // Slats in: no "DOWN".
    in.slats_degrees = 0;
    EXPECT_FALSE(Draw(Page::Configuration, &in).Has("DOWN"));
}

TEST(C17EnginePages, LivePagesReadTheSimulatorAndTheTick) {
    nd_test::FreshAircraft();
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[626] = 88.8;                              // engine 1's N1
    t[682] = 77.7;                              // engine 4's N2
    t[587] = 491.69 + 640 * 1.8;                // engine 3's EGT, 640 C in Rankine
    t[633] = 30000;                             // engine 1's EPR source
    t[342] = 16000;                             // 1 + 30000 x 0.32 / 16000 = 1.60
    t[198] = -1;                                // engine 3's reverser
    t[0xFE] = 3;                                // engine 4's oil quantity
    t[0x146] = 10000;                           // flaps
    g_tick.over_n1_seconds = 61;
    g_tick.fuel_used[1] = 4321;
    Frame engines = Draw(Page::Engines, nullptr);
    EXPECT_EQ(ColourOf(engines, "88.8"), kGreen);
    EXPECT_EQ(ColourOf(engines, "77.7"), kGreen);
    EXPECT_EQ(ColourOf(engines, "640"), kYellow);
    EXPECT_TRUE(engines.Has("1.60"));
    EXPECT_TRUE(engines.Has("REV"));
    EXPECT_TRUE(engines.Has("MAX THR TIME OVER 01:01"));
    Frame oil = Draw(Page::Oil, nullptr);
    EXPECT_EQ(ColourOf(oil, "  3"), kYellow);
    EXPECT_EQ(ColourOf(oil, " 4321"), kCyan);
    EXPECT_TRUE(Draw(Page::Configuration, nullptr).Has("FLAPS 3/4"));
}
