// nd_runways_test.cpp: the selected runways of the origin and the
// destination on the map, and the ILS course line, drawn on the HW_B737_ND
// where the projection puts them and gated by range and selection.
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "navdata/procedures.h"
#include "nd_fixture.h"
#include "support/fake_panels.h"

using namespace nd_test;

namespace {
constexpr double kCentreX = 122;        // the centred map's own-ship, design pixels
constexpr double kCentreY = 171;
constexpr double kCentredRadius = 110;  // design pixels of the centred map's range

// Pixels of a hue in a box of design pixels. Thin lines are anti-aliased
// over black, so a pixel counts by its hue, not by the pen's exact colour.
enum class Hue { Cyan, Magenta, White };
bool IsHue(uint32_t p, Hue hue) {
    int r = static_cast<int>((p >> 16) & 0xFF), g = static_cast<int>((p >> 8) & 0xFF), b = static_cast<int>(p & 0xFF);
    switch (hue) {
    case Hue::Cyan: return g >= 80 && b >= 80 && r * 2 < g;
    case Hue::Magenta: return r >= 80 && b >= 60 && g * 2 < r;
    case Hue::White: return r >= 90 && g >= 90 && b >= 90 && std::abs(r - b) < 40;
    }
    return false;
}
int NearIn(const Frame& f, Hue hue, double x0, double y0, double x1, double y1) {
    int n = 0;
    for (int y = std::max(0, static_cast<int>(SurfaceY(y0))); y <= static_cast<int>(SurfaceY(y1)) && y < kSurfaceHeight; ++y)
        for (int x = std::max(0, static_cast<int>(SurfaceX(x0))); x <= static_cast<int>(SurfaceX(x1)) && x < kSurfaceWidth; ++x)
            n += IsHue(f.canvas.At(x, y), hue);
    return n;
}

// A runway "36" whose threshold lies `south_nm` south of the aircraft,
// heading north, 10560 ft (2 units of length) long.
void PlaceRunway(AirportDetail& airport, double south_nm) {
    airport = AirportDetail{};
    airport.RunwayCount = 1;
    RunwayRecord& r = airport.Runways[1];
    std::snprintf(r.Ident.data(), r.Ident.size(), "36");
    ProjectPoint(g_sim.latitude, g_sim.longitude, 180, south_nm, r.Latitude, r.Longitude);
    r.LengthFt = 10560;
    r.Heading = 360;
    std::snprintf(r.IlsFrequency.data(), r.IlsFrequency.size(), "110.30");
    r.IlsCourse = 360;
}

void Select(PlanText& slot, const char* name) { std::snprintf(slot.data(), slot.size(), "%s", name); }

Frame DrawTwice() {
    DrawNd();                           // the first frame sets the radius the second uses
    return DrawNd();
}
}  // namespace

TEST(NdRunways, SelectedRunwayStandsWhereTheProjectionPutsItBelowRange80) {
    FreshAircraft();
    g_sim.magnetic_variation = 0;
    g_display.b737_mode = 6;            // centred, heading up = north
    g_display.b737_range = 10;          // 11 pixels a nm
    PlaceRunway(g_airports.OriginAirport, 6);
    double ppn = kCentredRadius / 10;
    double threshold_y = kCentreY + 6 * ppn;

    // Nothing selected: no runway, whatever the airport holds.
    Frame none = DrawTwice();
    int cyan_below_none = NearIn(none, Hue::Cyan, kCentreX - 1, threshold_y + 10, kCentreX + 1, threshold_y + 40);
    EXPECT_EQ(cyan_below_none, 0);

    Select(g_plan.context.Selections.DepartureRunway, "36");
    Frame f = DrawTwice();
    f.WritePng("runway_origin.png");
    // The approach side: a cyan line down the centre column, from 0.2 of the
    // length (0.4 nm) behind the threshold for 18 nm.
    EXPECT_GT(NearIn(f, Hue::Cyan, kCentreX - 1, threshold_y + 8, kCentreX + 1, threshold_y + 40), 20);
    EXPECT_EQ(NearIn(f, Hue::Cyan, kCentreX - 1, kCentreY + 20, kCentreX + 1, threshold_y - 2), 0)
        << "the approach extension starts behind the threshold, not ahead of it";
    // The two sides half a nm either side of the threshold, 2 nm long.
    for (double side : {-1.0, 1.0}) {
        double x = kCentreX + side * 0.5 * ppn;
        EXPECT_GT(NearIn(f, Hue::White, x - 1, threshold_y - 2 * ppn + 2, x + 1, threshold_y - 2), 10)
            << "side " << side;
        EXPECT_EQ(NearIn(f, Hue::White, x - 1, threshold_y - 2 * ppn - 12, x + 1, threshold_y - 2 * ppn - 4), 0)
            << "the side line ends at the runway's length, side " << side;
    }

    // The destination's selection draws the same figure from its airport.
    g_plan.context.Selections.DepartureRunway = MakePlanText(kNoSelection);
    g_airports.DestinationAirport = g_airports.OriginAirport;
    g_airports.OriginAirport = AirportDetail{};
    Select(g_plan.context.Selections.ArrivalRunway, "36");
    Frame dest = DrawTwice();
    EXPECT_GT(NearIn(dest, Hue::Cyan, kCentreX - 1, threshold_y + 8, kCentreX + 1, threshold_y + 40), 20);

    // No runway chosen on the arrivals page, but the approach to it: its runway.
    g_plan.context.Selections.ArrivalRunway = MakePlanText(kNoSelection);
    EXPECT_EQ(NearIn(DrawTwice(), Hue::Cyan, kCentreX - 1, threshold_y + 8, kCentreX + 1, threshold_y + 40), 0);
    g_procedures.destination.ApproachNameCount = 1;
    std::snprintf(g_procedures.destination.ApproachNameTable[1].Name.data(), 16, "I36");
    g_procedures.destination.ApproachNameTable[1].Row = 2;
    std::snprintf(g_procedures.destination.ApproachTable[2].Runways.data(), 40, "36");
    Select(g_plan.context.Selections.ApproachName, "I36");
    EXPECT_GT(NearIn(DrawTwice(), Hue::Cyan, kCentreX - 1, threshold_y + 8, kCentreX + 1, threshold_y + 40), 20);
    g_procedures.destination.ApproachNameCount = 0;    // the tables are process-wide: leave them as found
    g_procedures.destination.ApproachNameTable[1] = ProcedureListEntry{};
    g_procedures.destination.ApproachTable[2].Runways = {};

    // At 80 nm the layer is off.
    g_display.b737_range = 80;
    Frame far = DrawTwice();
    EXPECT_EQ(NearIn(far, Hue::Cyan, kCentreX - 1, kCentreY + 20, kCentreX + 1, kCentreY + 120), 0);
}

TEST(NdRunways, IlsCourseLineOnlyWithALocaliserTunedReceivedAndACourse) {
    FreshAircraft();
    g_sim.magnetic_variation = 0;
    g_display.b737_mode = 5;            // expanded map: below PLAN
    g_display.b737_range = 10;
    // The runway ahead this time: threshold 3 nm north, the aircraft on its approach.
    PlaceRunway(g_airports.DestinationAirport, -3);
    double ppn = 215.0 / 10;
    double antenna_y = 249 - (3 + 2) * ppn;  // the far end of the 2 nm runway
    auto magenta_on_course = [&](const Frame& f) {
        return NearIn(f, Hue::Magenta, 121, antenna_y + 4, 123, 240);
    };
    Frame before = DrawTwice();
    EXPECT_EQ(magenta_on_course(before), 0);

    // Tuned to the runway's ILS, with signal and course: the dashed line
    // from the antenna back along the approach.
    g_sim.nav1_is_vor = 0;
    g_sim.nav1_obs = 360;
    FakeSimulatorScope scope;
    auto& tokens = scope.sim.tokens;
    tokens[Token::NAV1_FREQUENCY] = 0x1030;       // 110.30 in BCD
    tokens[Token::NAV1_SIGNAL] = 1;
    Frame tuned = DrawTwice();
    tuned.WritePng("ils_course_line.png");
    EXPECT_GT(magenta_on_course(tuned), 30);
    EXPECT_EQ(NearIn(tuned, Hue::Magenta, 121, 40, 123, antenna_y - 6), 0)
        << "nothing beyond the antenna";

    // The other end of the runway on the same frequency (listed first): the
    // end whose course is the tuned one draws, so the line stays the same.
    AirportDetail& dest = g_airports.DestinationAirport;
    dest.Runways[2] = dest.Runways[1];
    RunwayRecord& other = dest.Runways[1];
    std::snprintf(other.Ident.data(), other.Ident.size(), "18");
    ProjectPoint(dest.Runways[2].Latitude, dest.Runways[2].Longitude, 0, 2, other.Latitude, other.Longitude);
    other.Heading = 180;
    other.IlsCourse = 180;
    dest.RunwayCount = 2;
    Frame both = DrawTwice();
    // Along the runway itself, between the antenna and the threshold: the
    // far end's antenna would stand at the threshold and leave this empty.
    EXPECT_GT(NearIn(both, Hue::Magenta, 121, antenna_y + 4, 123, 249 - 3 * ppn - 4), 10);
    EXPECT_EQ(NearIn(both, Hue::Magenta, 121, 40, 123, antenna_y - 6), 0);

    // No signal, a VOR, no course, or another frequency: no line.
    tokens[Token::NAV1_SIGNAL] = 0;
    EXPECT_EQ(magenta_on_course(DrawTwice()), 0);
    tokens[Token::NAV1_SIGNAL] = 1;
    g_sim.nav1_is_vor = 1;
    EXPECT_EQ(magenta_on_course(DrawTwice()), 0);
    g_sim.nav1_is_vor = 0;
    g_sim.nav1_obs = 0;
    EXPECT_EQ(magenta_on_course(DrawTwice()), 0);
    g_sim.nav1_obs = 360;
    tokens[Token::NAV1_FREQUENCY] = 0x1090;       // 110.90
    EXPECT_EQ(magenta_on_course(DrawTwice()), 0);
    // And not on PLAN.
    tokens[Token::NAV1_FREQUENCY] = 0x1030;
    g_display.b737_mode = 7;
    EXPECT_LT(NearIn(DrawTwice(), Hue::Magenta, 121, 60, 123, 240), 10);
}
