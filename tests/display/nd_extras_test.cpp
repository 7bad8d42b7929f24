// nd_extras_test.cpp: the ATC boundaries and the airport diagram on the
// moving maps: where their lines land, the name of an area, and their gates
// (the boundaries switch, PLAN, DrawInstance 3, the diagram's short ranges).
#include "frame/data_text.h"
#include "navdata/airport_extras.h"
#include "navdata/atc_boundaries.h"
#include "nd_fixture.h"

#include <fstream>

using namespace nd_test;

namespace {
constexpr double kCentreX = 122;        // the centred map's own-ship, design pixels
constexpr double kCentreY = 171;
constexpr double kCentredRadius = 110;  // design pixels of the centred map's range
constexpr uint32_t kOlive = 0xFF979700;
constexpr uint32_t kAmber = 0xFFE9B73E;
constexpr uint32_t kGrey = 0xFFC0C0C0;

// Pixels of a colour in a box of design pixels.
int NearIn(const Frame& f, uint32_t colour, double x0, double y0, double x1, double y1, int tolerance = 40) {
    return f.Near(colour, tolerance, static_cast<int>(SurfaceX(x0)), static_cast<int>(SurfaceY(y0)),
                  static_cast<int>(SurfaceX(x1)) + 1, static_cast<int>(SurfaceY(y1)) + 1);
}

Frame DrawTwice(int instance = 1, GaugeId id = GaugeId::HW_B737_ND) {
    DrawNd(instance, id);  // the first frame sets the radius the second uses
    return DrawNd(instance, id);
}

// One boundary in the table, read: a line from `west` to `east` of the
// aircraft, `north_nm` north of it, with a name.
void PlaceBoundary(const char* id, const char* name, double north_nm, double half_width_nm) {
    AtcBoundaryTable& t = g_atc_boundaries;
    t.AtcBoundariesLoaded = 1;
    AtcBoundary& row = t.rows[static_cast<size_t>(++t.count)];
    row = AtcBoundary{};
    SetText(row.Id, id);
    SetText(row.Name, name);
    double lat = 0, lon = 0;
    Offset(0, north_nm, lat, lon);
    double lat1 = 0, lon1 = 0, lat2 = 0, lon2 = 0;
    ProjectPoint(lat, lon, 270, half_width_nm, lat1, lon1);
    ProjectPoint(lat, lon, 90, half_width_nm, lat2, lon2);
    row.PointCount = 2;
    row.Points[1] = {lat1, lon1};
    row.Points[2] = {lat2, lon2};
    // The name 4 nm beyond the line, clear of it.
    Offset(0, north_nm + 4, row.Centre.Latitude, row.Centre.Longitude);
}

void Fresh() {
    FreshAircraft();
    g_atc_boundaries = AtcBoundaryTable{};
    g_airport_extras = AirportExtrasState{};
    g_airports = AirportSlots{};
    g_display.b737_mode = 6;            // centred, heading up = north
    g_display.b737_range = 10;
}
}  // namespace

TEST(NdExtras, BoundaryLineLandsWhereTheProjectionPutsItWithItsName) {
    Fresh();
    g_display.AtcBoundariesShown = 1;
    PlaceBoundary("KZSE", "SEATTLE", 5, 3);
    double ppn = kCentredRadius / 10;
    double line_y = kCentreY - 5 * ppn;   // 55 pixels above own-ship
    Frame f = DrawTwice();
    f.WritePng("nd_boundary.png");
    // A horizontal line 3 nm (33 pixels) either side of the centre column.
    EXPECT_GT(NearIn(f, kOlive, kCentreX - 25, line_y - 1, kCentreX + 25, line_y + 1), 30);
    EXPECT_EQ(NearIn(f, kOlive, kCentreX - 25, line_y + 12, kCentreX + 25, line_y + 40), 0);
    EXPECT_EQ(NearIn(f, kOlive, kCentreX + 40, line_y - 1, kCentreX + 60, line_y + 1), 0)
        << "the line runs past its last point";
    EXPECT_TRUE(f.Has("SEATTLE"));

    // The switch off, PLAN and the cheaper picture each leave it out.
    g_display.AtcBoundariesShown = 0;
    Frame off = DrawTwice();
    EXPECT_EQ(NearIn(off, kOlive, kCentreX - 25, line_y - 1, kCentreX + 25, line_y + 1), 0);
    EXPECT_FALSE(off.Has("SEATTLE"));
    g_display.AtcBoundariesShown = 1;
    Frame cheap = DrawTwice(3);
    EXPECT_EQ(NearIn(cheap, kOlive, kCentreX - 25, line_y - 1, kCentreX + 25, line_y + 1), 0);
    EXPECT_FALSE(cheap.Has("SEATTLE"));
    g_display.b737_mode = 7;
    EXPECT_FALSE(DrawTwice().Has("SEATTLE"));

    // The other families draw it too, and leave it out at instance 3.
    g_display.md11_mode = 3;
    g_display.md11_range = 10;
    EXPECT_TRUE(DrawTwice(1, GaugeId::HW_MD11_ND).Has("SEATTLE"));
    EXPECT_FALSE(DrawTwice(3, GaugeId::HW_MD11_ND).Has("SEATTLE"));
}

TEST(NdExtras, BoundariesFarAwayAreLeftOutButTheWideAreasReachFarther) {
    Fresh();
    g_display.AtcBoundariesShown = 1;
    PlaceBoundary("NEAR1", "NEAR", 900, 10);
    PlaceBoundary("FAR1", "FAR", 1100, 10);
    PlaceBoundary("YM00142", "WIDE", 4000, 10);
    PlaceBoundary("YB00001", "TOOWIDE", 6000, 10);
    Frame f = DrawTwice();
    EXPECT_TRUE(f.Has("NEAR"));
    EXPECT_FALSE(f.Has("FAR"));
    EXPECT_TRUE(f.Has("WIDE"));
    EXPECT_FALSE(f.Has("TOOWIDE"));
}

TEST(NdExtras, BoundariesAreReadFromTheFileAtTheFirstFrameThatShowsThem) {
    Fresh();
    std::filesystem::path root = std::filesystem::path(ORB_BINARY_DIR) / "test-sim" / "NdExtras.boundary_file";
    std::filesystem::create_directories(root / "orb" / "navdata");
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root.c_str());
    {
        std::ofstream(root / "orb" / "navdata" / "atc_bdry.txt")
            << "KZSE SEATTLE 47.5 -122.6\nKZSE SEATTLE 47.5 -122.0\n";
    }
    DrawTwice();
    EXPECT_EQ(g_atc_boundaries.AtcBoundariesLoaded, 0) << "read with the switch off";
    g_display.AtcBoundariesShown = 1;
    Frame f = DrawTwice();
    EXPECT_EQ(g_atc_boundaries.AtcBoundariesLoaded, 1);
    EXPECT_EQ(g_atc_boundaries.count, 1);
    EXPECT_TRUE(f.Has("SEATTLE"));
}

TEST(NdExtras, AirportDiagramAtShortRangeWithTheParkingMark) {
    Fresh();
    g_sim.magnetic_variation = 0;
    // A runway north from 0.5 nm south of the aircraft, 6076 ft (1 nm) long.
    AirportDetail& dest = g_airports.DestinationAirport;
    SetText(dest.Ident, "KSEA");
    dest.RunwayCount = 1;
    RunwayRecord& r = dest.Runways[1];
    SetText(r.Ident, "36");
    Offset(180, 0.5, r.Latitude, r.Longitude);
    r.Heading = 360;
    r.LengthFt = 6076;

    g_display.b737_range = 5;
    EXPECT_FALSE(DrawTwice().Has("36")) << "the diagram shows from 2.5 nm down";

    g_display.b737_range = 2.5;
    double ppn = kCentredRadius / 2.5;
    Frame f = DrawTwice();
    f.WritePng("nd_airport_diagram.png");
    // The strip runs from 0.5 nm south to 0.5 nm north along the centre column.
    double south = kCentreY + 0.5 * ppn, north = kCentreY - 0.5 * ppn;
    EXPECT_GT(NearIn(f, kGrey, kCentreX - 1, north + 3, kCentreX + 1, north + 12, 20), 5);
    EXPECT_GT(NearIn(f, kGrey, kCentreX - 1, south - 12, kCentreX + 1, south - 3, 20), 5);
    EXPECT_EQ(NearIn(f, kGrey, kCentreX - 1, north - 30, kCentreX + 1, north - 15, 20), 0);
    EXPECT_TRUE(f.Has("36"));
    // No parking mark above 0.5 nm.
    g_airport_extras.ParkingPosition = {0, 0, 0};
    Offset(90, 0.2, g_airport_extras.ParkingPosition.Latitude, g_airport_extras.ParkingPosition.Longitude);
    g_airport_extras.ParkingPosition.Heading = 90;
    double px = kCentreX + 0.2 * ppn;
    EXPECT_EQ(NearIn(DrawTwice(), kAmber, px - 15, kCentreY - 15, px + 15, kCentreY + 15, 30), 0);

    // At 0.5 nm: the mark 0.2 nm east, turned by its heading of 90: its long
    // stroke runs 12 pixels to the west of the place, not down the screen.
    g_display.b737_range = 0.5;
    ppn = kCentredRadius / 0.5;
    px = kCentreX + 0.2 * ppn;
    Frame parked = DrawTwice();
    parked.WritePng("nd_parking.png");
    EXPECT_GT(NearIn(parked, kAmber, px - 12, kCentreY - 1, px - 3, kCentreY + 1, 30), 3);
    EXPECT_EQ(NearIn(parked, kAmber, px - 1, kCentreY + 5, px + 1, kCentreY + 14, 30), 0)
        << "an unturned mark would point down the screen";

    // PLAN leaves the whole diagram out.
    g_display.b737_mode = 7;
    EXPECT_FALSE(DrawTwice().Has("36"));
}
