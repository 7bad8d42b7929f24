// efs50_tcas.cpp: the EFS 50's traffic screen. Heading up, own aircraft at
// the centre; nothing at all while the EFS 50's traffic switch is off. The
// picture itself is shared with the EHSI's traffic mode.
#include "display/efs50_tcas.h"

#include "display/display_state.h"
#include "display/traffic.h"

#include <cmath>
#include <cstdio>

namespace {
constexpr int kHalfRangeDots = 12;         // dots of the inner ring
constexpr double kDegToRadian = 3.14159265358979323846 / 180;
constexpr float kRangeLabelAt = 0.72f;     // the range figure sits by the ring at 45 degrees
}  // namespace

void DrawEfs50TrafficPicture(const DisplaySurface& surface, double centre_x, double centre_y, double radius) {
    gdi::Graphics& g = *surface.graphics;
    const float cx = static_cast<float>(centre_x), cy = static_cast<float>(centre_y);
    const float r = static_cast<float>(radius);

    // Outer ring at the full range, dotted inner ring at half of it.
    gdi::Pen ring(palette::kWhite, 1.0f);
    g.DrawEllipse(ring, static_cast<int>(cx - r), static_cast<int>(cy - r), static_cast<int>(2 * r),
                  static_cast<int>(2 * r));
    gdi::SolidBrush dot(palette::kWhite);
    for (int i = 0; i < kHalfRangeDots; ++i) {
        double a = i * 360.0 / kHalfRangeDots * kDegToRadian;
        int x = static_cast<int>(std::lround(cx + std::sin(a) * r / 2));
        int y = static_cast<int>(std::lround(cy - std::cos(a) * r / 2));
        g.FillEllipse(dot, x - 1, y - 1, 3, 3);
    }

    // Own aircraft: a chevron pointing up at the centre.
    gdi::Pen own(palette::kCyan, 2.0f);
    g.DrawLine(own, cx, cy - 8, cx - 6, cy + 6);
    g.DrawLine(own, cx, cy - 8, cx + 6, cy + 6);
    g.DrawLine(own, cx - 6, cy + 6, cx, cy + 2);
    g.DrawLine(own, cx + 6, cy + 6, cx, cy + 2);

    // The range by the ring.
    gdi::Font font(kArialFont, 13, FontStyleBold);
    char text[16];
    std::snprintf(text, sizeof text, "%.0f", g_display.efs50_traffic_range);
    g.DrawText(text, font, palette::kWhite, cx + r * kRangeLabelAt, cy - r * kRangeLabelAt - 14);

    // The targets, with the picture's own scale.
    DrawTraffic(surface, radius, g_display.efs50_traffic_range, centre_x, centre_y, kTrafficKindEfs50);
}

void DrawEfs50Tcas(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    // The EFS 50's own traffic switch: off, the screen stays dark.
    if (g_display.switches[static_cast<size_t>(MapFamily::EFS50)].traffic != 1) return;
    g.ResetTransform();
    gdi::Font font(kArialFont, 13, FontStyleBold);
    g.DrawText("TCAS", font, palette::kCyan, 8, 6);
    DrawEfs50TrafficPicture(surface, kEfs50TcasCentreX, kEfs50TcasCentreY, kEfs50TcasRadius);
}
