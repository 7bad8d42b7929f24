// nd_hold_figure.cpp: the racetrack sketch of each hold on the map, at the
// hold's fix and turned by its inbound course.
//
// The sketch is not the pattern that is flown (that is a box of corners, see
// holds.cpp): it is the familiar racetrack, one leg long, drawn for every
// hold that a row of the active plan carries, whether or not it is the one
// being flown. Holds that only a pending modification carries are left to
// the modification's own drawing.
#include "display/nd_map.h"

#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"

#include <array>
#include <cmath>

namespace {
constexpr int kArcSegments = 12;                     // straight pieces of each half ellipse
constexpr int kFigurePoints = 4 + 2 * (kArcSegments + 1);
constexpr float kHoldPenWidth = 1.5f;
constexpr double kHoldCullLegs = 2;                  // a figure reaches at most this many legs from its fix
constexpr double kMaxFigurePx = 20000;               // a leg longer on the map than this is not drawn at all

struct FigurePoint {
    double x = 0;                       // design pixels, right of the fix before turning
    double y = 0;                       // design pixels, down from the fix (the inbound runs up)
};
}  // namespace

void DrawHoldFigureLayer(gdi::Graphics& g, const MapView& view) {
    const HoldState& h = g_holds;
    const PlanContext& pc = g_plan.context;
    if (h.HoldCount < 1 || pc.ActiveLastRow < 0) return;
    BeginMapLayer(g, view);
    gdi::Pen pen(palette::kMagenta, kHoldPenWidth);
    for (int k = 1; k <= h.HoldCount && k <= kHoldLimit; ++k) {
        const HoldRecord& r = h.HoldTable[static_cast<size_t>(k)];
        // 1. Only holds that a row of the active plan carries.
        if (r.ActiveRow < 0 || r.ActiveRow > pc.ActiveLastRow || r.ActiveRow >= kPlanRows) continue;
        const PlanWaypoint& fix = g_plan.ActivePlan[static_cast<size_t>(r.ActiveRow)];
        if (fix.HoldIndex != k || IsMapGap(fix.Ident.data())) continue;
        // 2. Size: one leg, D pixels; nothing for a figure off the map.
        double leg_nm = HoldLegDistanceNow(r);
        double d = leg_nm * view.PixelsPerNm;
        if (!(d > 0) || !(d < kMaxFigurePx)) continue;
        double fx = 0, fy = 0;
        double distance = ProjectToMap(view, fix.Latitude, fix.Longitude, fx, fy);
        if (distance > 2 * view.range + kHoldCullLegs * leg_nm) continue;
        // 3. The outline, inbound up through the fix, outbound on the turn side.
        double side = r.TurnRight == 1 ? 1.0 : -1.0;
        std::array<FigurePoint, kFigurePoints> p{};
        int n = 0;
        p[n++] = {0, 0.8 * d};
        p[n++] = {0, 0};
        p[n++] = {0, -0.2 * d};
        // The far end: half an ellipse 0.5 D wide and 0.25 D high over to the outbound side.
        double a = 0.25 * d, b = 0.125 * d;
        for (int i = 0; i <= kArcSegments; ++i) {
            double t = kPi * i / kArcSegments;
            p[n++] = {side * (a - a * std::cos(t)), -0.2 * d - b * std::sin(t)};
        }
        p[n++] = {side * 0.5 * d, 0.8 * d};
        // The near end back to the inbound line.
        for (int i = 1; i <= kArcSegments; ++i) {
            double t = kPi * i / kArcSegments;
            p[n++] = {side * (a + a * std::cos(t)), 0.8 * d + b * std::sin(t)};
        }
        // 4. Turned from the screen's up to the inbound course, true.
        double turn = (r.InboundCourse + g_sim.magnetic_variation - view.MapHeading) * kDegToRad;
        double cs = std::cos(turn), sn = std::sin(turn);
        auto screen_x = [&](const FigurePoint& q) { return static_cast<float>(fx + q.x * cs - q.y * sn); };
        auto screen_y = [&](const FigurePoint& q) { return static_cast<float>(fy + q.x * sn + q.y * cs); };
        for (int i = 1; i < n; ++i)
            g.DrawLine(pen, screen_x(p[i - 1]), screen_y(p[i - 1]), screen_x(p[i]), screen_y(p[i]));
    }
    EndMapLayer(g, view);
}
