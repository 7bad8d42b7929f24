// nd_fix_circles.cpp: the FIX INFO page's fixes on the map: a circle at each
// entered distance and a line along each entered radial, out from the fix.
//
// Drawn green and dashed, thin, as the instrument shows its fix overlays:
// they are references, not a route, so they stay quieter than the route's
// solid magenta and white. The circle is a ring of projected points, so it
// keeps its true shape on the map's projection at any range.
#include "display/nd_map.h"

#include "frame/sim_state.h"
#include "guidance/fix_info.h"
#include "guidance/geodesy.h"

#include <array>

namespace {
constexpr int kCirclePoints = 72;              // points around a fix circle (5 degrees apart)
constexpr double kRadialOnlyRangeFactor = 2;   // a radial without a distance runs out twice the range
constexpr double kFixCullMarginNm = 50;        // a fix farther than its circles plus this is skipped
constexpr float kFixPenWidth = 1.2f;
constexpr float kFixFontPx = 10;

float F(double v) { return static_cast<float>(v); }
}  // namespace

void DrawFixCirclesLayer(gdi::Graphics& g, const MapView& view) {
    // 1. Nothing without an entered fix.
    bool any = false;
    for (const FixInfoRecord& record : g_fix_info.Records) any |= FixInfoHasFix(record);
    if (!any) return;

    BeginMapLayer(g, view);
    gdi::Pen pen(palette::kGreen, kFixPenWidth);
    pen.SetDash(DashStyleDash);
    gdi::Font font(kArialFont, kFixFontPx, FontStyleBold);
    double variation = g_sim.magnetic_variation;
    for (const FixInfoRecord& record : g_fix_info.Records) {
        if (!FixInfoHasFix(record)) continue;
        // 2. Culling: the fix, with its largest circle, must reach the map.
        double farthest = view.range * kRadialOnlyRangeFactor;
        for (const FixInfoRow& row : record.Rows)
            if (row.Distance > farthest) farthest = row.Distance;
        double fx = 0, fy = 0;
        double from_centre = ProjectToMap(view, record.Latitude, record.Longitude, fx, fy);
        if (from_centre > 2 * view.range + farthest + kFixCullMarginNm) continue;
        g.DrawText(record.Name.data(), font, palette::kGreen, F(fx + 6), F(fy - 12));

        for (const FixInfoRow& row : record.Rows) {
            // 3. The circle at the row's distance.
            if (row.Distance > 0) {
                std::array<GpPoint, kCirclePoints + 1> ring{};
                for (int k = 0; k <= kCirclePoints; ++k) {
                    double lat = 0, lon = 0, x = 0, y = 0;
                    ProjectPoint(record.Latitude, record.Longitude, 360.0 * (k % kCirclePoints) / kCirclePoints,
                                 row.Distance, lat, lon);
                    ProjectToMap(view, lat, lon, x, y);
                    ring[static_cast<size_t>(k)] = {static_cast<INT>(x), static_cast<INT>(y)};
                }
                g.DrawLines(pen, ring.data(), kCirclePoints + 1);
            }
            // 4. The radial, from the fix out to the circle (or well past the map's edge).
            if (row.Radial > 0) {
                double length = row.Distance > 0 ? row.Distance : view.range * kRadialOnlyRangeFactor;
                double lat = 0, lon = 0, x = 0, y = 0;
                FixRadialPoint(record, row.Radial, length, variation, lat, lon);
                ProjectToMap(view, lat, lon, x, y);
                g.DrawLine(pen, F(fx), F(fy), F(x), F(y));
            }
        }
    }
    EndMapLayer(g, view);
}
