// nd_hold_figure_test.cpp: the hold's racetrack on the B737 ND: drawn at the
// fix in magenta, its outbound side on the turn's side and one leg long,
// turned with the map, and absent for a hold that the active plan doesn't
// carry.
#include "display/nd_fixture.h"

#include "display/nd_b737.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"

#include <algorithm>
#include <cmath>

using namespace nd_test;

namespace {
// Magenta pixels, antialiased ones too (red and blue well above green), in a
// box of design pixels.
int MagentaIn(const Frame& f, double x0, double y0, double x1, double y1) {
    int n = 0;
    for (int y = static_cast<int>(SurfaceY(y0)); y <= static_cast<int>(SurfaceY(y1)); ++y)
        for (int x = static_cast<int>(SurfaceX(x0)); x <= static_cast<int>(SurfaceX(x1)); ++x) {
            if (x < 0 || y < 0 || x >= kSurfaceWidth || y >= kSurfaceHeight) continue;
            uint32_t p = f.canvas.At(x, y);
            int r = static_cast<int>((p >> 16) & 0xFF), g = static_cast<int>((p >> 8) & 0xFF),
                b = static_cast<int>(p & 0xFF);
            n += r > 90 && b > 80 && 2 * g < std::min(r, b);
        }
    return n;
}

// Seattle, heading north at 300 kt: a plan to a waypoint 9 nm north, then a
// fix 10 nm east of the aircraft with a hold on it, inbound 360 true.
void HoldTenMilesEast(int turn_right) {
    FreshAircraft();
    double north_lat = 0, north_lon = 0, east_lat = 0, east_lon = 0;
    ProjectPoint(g_sim.latitude, g_sim.longitude, 0, 9, north_lat, north_lon);
    ProjectPoint(g_sim.latitude, g_sim.longitude, 90, 10, east_lat, east_lon);
    PlacePlan({{"ORIG", g_sim.latitude - 0.5, g_sim.longitude}, {"NRTH", north_lat, north_lon}, {"HFIX", east_lat, east_lon}},
              1);
    g_plan.ModPlan = g_plan.ActivePlan;
    g_plan.context.ModLastRow = g_plan.context.ActiveLastRow;
    AddHold(2, 1);
    g_plan.ActivePlan[2].HoldIndex = 1;
    HoldRecord& hold = g_holds.HoldTable[1];
    hold.InboundCourse = 360 - g_sim.magnetic_variation;  // 343 magnetic is north
    hold.TurnRight = turn_right;
    g_display.b737_mode = kB737ModeMap;
    g_display.b737_range = 40;
}
}  // namespace

TEST(NdHoldFigure, RacetrackAtTheFixOnTheTurnSideTurnedWithTheMap) {
    // 1 minute at 300 kt: D = 5 nm = 5 x 215 / 40 = 26.9 px. The fix stands
    // 10 nm right of the aircraft: x = 122 + 53.75, y = 249.
    const double d = 5.0 * 215 / 40, fix_x = 122 + 10.0 * 215 / 40, fix_y = 249;
    for (int turn_right : {1, 0}) {
        HoldTenMilesEast(turn_right);
        DrawNd();  // the mode's radius settles
        Frame f = DrawNd();
        if (turn_right == 1) f.WritePng("hold_figure_right.png");
        double outbound_x = fix_x + (turn_right == 1 ? 0.5 : -0.5) * d;
        double mirror_x = fix_x - (turn_right == 1 ? 0.5 : -0.5) * d;
        // The inbound line through the fix and the outbound side, both upright;
        // nothing on the mirror side.
        EXPECT_GT(MagentaIn(f, fix_x - 2, fix_y + 3, fix_x + 2, fix_y + 0.7 * d), 10) << turn_right;
        EXPECT_GT(MagentaIn(f, outbound_x - 2, fix_y, outbound_x + 2, fix_y + 0.7 * d), 10) << turn_right;
        EXPECT_EQ(MagentaIn(f, mirror_x - 3, fix_y - 0.2 * d, mirror_x + 3, fix_y + 0.8 * d), 0) << turn_right;
        // The ends: above the fix by 0.2 D plus the half ellipse, below by 0.8 D and it.
        EXPECT_GT(MagentaIn(f, fix_x - d, fix_y - 0.2 * d - 0.125 * d - 2, fix_x + d, fix_y - 0.2 * d - 1), 0);
        EXPECT_EQ(MagentaIn(f, fix_x - d, fix_y - d, fix_x + d, fix_y - 0.45 * d), 0) << "a leg long, not more";
        EXPECT_GT(MagentaIn(f, fix_x - d, fix_y + 0.8 * d + 1, fix_x + d, fix_y + 0.8 * d + 0.125 * d + 2), 0);
    }

    // Heading east the fix is straight ahead, 53.75 px up; the inbound (north)
    // runs to the left and the right turn's outbound side lies above it.
    HoldTenMilesEast(1);
    g_sim.heading_true = 90;
    DrawNd();
    Frame east = DrawNd();
    double ahead_y = 249 - 10.0 * 215 / 40;
    EXPECT_GT(MagentaIn(east, 122 + 3, ahead_y - 0.5 * d - 2, 122 + 0.7 * d, ahead_y - 0.5 * d + 2), 10);
    EXPECT_EQ(MagentaIn(east, 122 + 3, ahead_y + 0.5 * d - 3, 122 + 0.7 * d, ahead_y + 0.5 * d + 3), 0);
}

TEST(NdHoldFigure, OnlyHoldsOfTheActivePlanAndByTheirLegDistance) {
    const double fix_x = 122 + 10.0 * 215 / 40, fix_y = 249;
    // A hold that only a pending modification carries: no figure.
    HoldTenMilesEast(1);
    g_plan.ActivePlan[2].HoldIndex = 0;
    DrawNd();
    Frame none = DrawNd();
    EXPECT_EQ(MagentaIn(none, fix_x - 30, fix_y - 30, fix_x + 30, fix_y + 40), 0);

    // A distance hold of 2 nm: D = 10.75 px; the outbound side 5.4 px right.
    HoldTenMilesEast(1);
    g_holds.HoldTable[1].LegMode = 2;
    g_holds.HoldTable[1].LegDistance = 2.0;
    DrawNd();
    Frame small = DrawNd();
    const double d = 2.0 * 215 / 40;
    EXPECT_GT(MagentaIn(small, fix_x + 0.5 * d - 1.5, fix_y, fix_x + 0.5 * d + 1.5, fix_y + 0.7 * d), 3);
    EXPECT_EQ(MagentaIn(small, fix_x - 30, fix_y + 1.2 * d, fix_x + 30, fix_y + 40), 0) << "nothing a 5 nm leg would reach";

    // Legs no map can hold: nothing drawn, and the frame still comes.
    for (double bad : {1e12, -3.0, std::nan("")}) {
        HoldTenMilesEast(1);
        g_holds.HoldTable[1].LegMode = 2;
        g_holds.HoldTable[1].LegDistance = bad;
        Frame f = DrawNd();
        EXPECT_TRUE(f.Has("HDG")) << bad;
        EXPECT_EQ(MagentaIn(f, fix_x - 30, fix_y - 30, fix_x + 30, fix_y + 40), 0) << bad;
    }
}
