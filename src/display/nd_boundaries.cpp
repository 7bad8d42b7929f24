// nd_boundaries.cpp: the ATC boundaries layer of the moving maps. The table
// is read from its file at the first frame that asks for it; after that the
// layer only projects. A row is judged by its first point alone, so an area
// far away costs one great circle a frame.
#include "display/nd_map.h"

#include "display/display_state.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "frame/data_text.h"
#include "navdata/atc_boundaries.h"

#include <array>
#include <cmath>

namespace {
constexpr ARGB kBoundaryColour = 0xFF979700;   // olive: lines and names
constexpr float kBoundaryPenPx = 1.0f;
constexpr float kBoundaryFontPx = 14;          // "HW Arial" bold
constexpr double kNameLeftPx = 15;             // the name starts this far left of its centre
}  // namespace

void DrawAtcBoundariesLayer(gdi::Graphics& g, const MapView& view) {
    // Gates: the switch, maps below PLAN, and not the cheaper picture.
    if (g_display.AtcBoundariesShown != 1 || view.plan_mode || view.instance == 3) return;
    if (g_atc_boundaries.AtcBoundariesLoaded == 0) LoadAtcBoundaries();
    const AtcBoundaryTable& table = g_atc_boundaries;
    if (table.count <= 0) return;

    BeginMapLayer(g, view);
    gdi::Pen pen(kBoundaryColour, kBoundaryPenPx);
    gdi::Font font(kHwFont, kBoundaryFontPx, FontStyleBold);
    int rows = table.count > kAtcBoundaryRows ? kAtcBoundaryRows : table.count;
    for (int r = 1; r <= rows; ++r) {
        const AtcBoundary& row = table.rows[static_cast<size_t>(r)];
        if (row.PointCount < 1) continue;
        // 1. Near enough by the first point (the wide areas reach farther).
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, row.Points[1].Latitude, row.Points[1].Longitude, distance,
                    bearing);
        if (!std::isfinite(distance) || !AtcBoundaryInReach(row, distance)) continue;
        // 2. Each point joined to the one before, in one polyline; a closed
        //    area repeats its first point.
        int count = row.PointCount > kAtcBoundaryPoints ? kAtcBoundaryPoints : row.PointCount;
        static std::array<GpPoint, kAtcBoundaryPoints> points;  // 6.4 KB: kept off the stack
        for (int p = 1; p <= count; ++p) {
            double x = 0, y = 0;
            ProjectToMap(view, row.Points[static_cast<size_t>(p)].Latitude,
                         row.Points[static_cast<size_t>(p)].Longitude, x, y);
            points[static_cast<size_t>(p - 1)] = {static_cast<INT>(std::lround(x)), static_cast<INT>(std::lround(y))};
        }
        if (count > 1) g.DrawLines(pen, points.data(), count);
        // 3. The name, its left edge 15 pixels left of the centre.
        double cx = 0, cy = 0;
        ProjectToMap(view, row.Centre.Latitude, row.Centre.Longitude, cx, cy);
        g.DrawText(TextOf(row.Name), font, kBoundaryColour, static_cast<float>(cx - kNameLeftPx), static_cast<float>(cy));
    }
    EndMapLayer(g, view);
}
