// nd_fix_circles_test.cpp: the FIX INFO fixes on the HW_B737_ND: a dashed
// green circle at each entered distance around the fix and a line out
// along each entered radial, placed where the map's scale puts them.
#include "display/display_surface.h"
#include "guidance/fix_info.h"
#include "nd_fixture.h"

using namespace nd_test;

namespace {
constexpr double kCentreX = 122;       // the centred map's own-ship, design pixels
constexpr double kCentreY = 171;
constexpr double kCentredRadius = 110; // design pixels of the centred map's range
constexpr double kLabelReach = 36;     // the fix's name stands within this of the fix

// A pixel the fix overlays' green shows in: green clearly above red and
// blue (an anti-aliased dash over black is a darker green, still green).
bool IsOverlayGreen(uint32_t p) {
    int r = static_cast<int>((p >> 16) & 0xFF), g = static_cast<int>((p >> 8) & 0xFF), b = static_cast<int>(p & 0xFF);
    return g >= 90 && g > r + 60 && g > b + 60;
}

int GreenIn(const Frame& f, int x0, int y0, int x1, int y1) {
    int n = 0;
    for (int y = std::max(0, y0); y < y1 && y < kSurfaceHeight; ++y)
        for (int x = std::max(0, x0); x < x1 && x < kSurfaceWidth; ++x) n += IsOverlayGreen(f.canvas.At(x, y));
    return n;
}

// Overlay-green pixels within a design-pixel ring around the map centre,
// leaving out the band of the radial east of the centre.
int GreenInRing(const Frame& f, double inner, double outer) {
    int n = 0;
    for (int y = 0; y < kSurfaceHeight; ++y)
        for (int x = 0; x < kSurfaceWidth; ++x) {
            double dx = (x + 0.5) * 244.0 / kSurfaceWidth - kCentreX;
            double dy = (y + 0.5) * 302.0 / kSurfaceHeight - kCentreY;
            double r = std::sqrt(dx * dx + dy * dy);
            if (r < inner || r > outer) continue;
            // Away from the radial line east of the centre.
            if (dx > 0 && std::abs(dy) < 4) continue;
            n += IsOverlayGreen(f.canvas.At(x, y));
        }
    return n;
}

// Green pixels on the short band east of the centre, along the radial.
int GreenAlongEast(const Frame& f, double from, double to) {
    int x0 = static_cast<int>(SurfaceX(kCentreX + from)), x1 = static_cast<int>(SurfaceX(kCentreX + to));
    int y0 = static_cast<int>(SurfaceY(kCentreY - 3)), y1 = static_cast<int>(SurfaceY(kCentreY + 3)) + 1;
    return GreenIn(f, x0, y0, x1, y1);
}

void PlaceFixAtAircraft(double radial, double distance) {
    g_fix_info = FixInfoState{};
    FixInfoRecord& r = g_fix_info.Records[0];
    std::snprintf(r.Name.data(), r.Name.size(), "SEA");
    r.Latitude = g_sim.latitude;
    r.Longitude = g_sim.longitude;
    r.Rows[0].Radial = radial;
    r.Rows[0].Distance = distance;
}
}  // namespace

TEST(NdFixCircles, CircleAtTheDistanceAndRadialOutFromTheFix) {
    FreshAircraft();
    g_sim.magnetic_variation = 0;     // radial 090 points east on the north-up picture
    g_display.b737_mode = 6;          // centred map, heading up: heading 0 true
    g_display.b737_range = 10;
    g_fix_info = FixInfoState{};
    DrawNd();
    Frame bare = DrawNd();

    PlaceFixAtAircraft(90, 5);
    DrawNd();
    Frame f = DrawNd();
    // 5 nm of a 10 nm range on a radius of 110: the circle stands 55 pixels out.
    double ring = kCentredRadius * 5 / 10;
    int on_ring = GreenInRing(f, ring - 3, ring + 3);
    EXPECT_GT(on_ring, 60) << "a dashed circle of 55 pixels shows a good part of its 345 pixel length";
    EXPECT_EQ(GreenInRing(bare, ring - 3, ring + 3), 0);
    // Nothing green between the fix's label and the ring, nor just outside it.
    EXPECT_EQ(GreenInRing(f, kLabelReach, ring - 8), 0);
    EXPECT_EQ(GreenInRing(f, ring + 8, ring + 30), 0);
    // The radial runs east from the fix to the circle, and no farther.
    EXPECT_GT(GreenAlongEast(f, 5, ring - 5), 10);
    EXPECT_EQ(GreenAlongEast(f, ring + 6, ring + 30), 0);
    EXPECT_EQ(GreenAlongEast(bare, 5, ring - 5), 0);
    EXPECT_TRUE(f.Has("SEA"));

    // At twice the range the same circle is half as far out.
    g_display.b737_range = 20;
    DrawNd();
    Frame wide = DrawNd();
    double half = kCentredRadius * 5 / 20;
    EXPECT_GT(GreenInRing(wide, half - 3, half + 3), 30);
    EXPECT_EQ(GreenInRing(wide, ring - 3, ring + 3), 0);
}

TEST(NdFixCircles, NothingWithoutAFixAndNoCircleWithoutADistance) {
    FreshAircraft();
    g_sim.magnetic_variation = 0;
    g_display.b737_mode = 6;
    g_display.b737_range = 10;
    // Rows entered on an empty record draw nothing: there is no fix to hang them on.
    g_fix_info = FixInfoState{};
    g_fix_info.Records[1].Rows[0] = {90, 5};
    DrawNd();
    Frame f = DrawNd();
    EXPECT_EQ(GreenInRing(f, 0, 120), 0);
    EXPECT_EQ(GreenAlongEast(f, 5, 100), 0);

    // A radial alone: the line, no circle.
    PlaceFixAtAircraft(90, 0);
    DrawNd();
    Frame radial = DrawNd();
    EXPECT_GT(GreenAlongEast(radial, 5, 100), 20);
    EXPECT_EQ(GreenInRing(radial, kLabelReach, 120), 0);
}
