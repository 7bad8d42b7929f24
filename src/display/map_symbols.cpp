// map_symbols.cpp: the figures of the map symbol library.
//
// Every figure is a short list of points in units of the two scale factors
// from its anchor; a call builds its pen (and brush) and lets them go
// before it returns, so nothing outlives the frame.
#include "display/map_symbols.h"

#include "display/display_surface.h"
#include "guidance/geodesy.h"

#include <cmath>
#include <cstdio>
#include <span>

namespace {
struct Fig {
    float x, y;                         // figure units
};

// The anchor plus figure units, rounded to the device-independent pixel.
GpPoint At(int x, int y, float s, float h, Fig u) {
    return {x + static_cast<INT>(std::lround(u.x * s)), y + static_cast<INT>(std::lround(u.y * h))};
}

template <size_t N>
void Lines(gdi::Graphics& g, const gdi::Pen& pen, int x, int y, float s, float h, const Fig (&units)[N]) {
    std::array<GpPoint, N> points{};
    for (size_t i = 0; i < N; ++i) points[i] = At(x, y, s, h, units[i]);
    g.DrawLines(pen, points.data(), static_cast<int>(N));
}

template <size_t N>
void Fill(gdi::Graphics& g, const gdi::SolidBrush& brush, int x, int y, float s, float h, const Fig (&units)[N]) {
    std::array<GpPoint, N> points{};
    for (size_t i = 0; i < N; ++i) points[i] = At(x, y, s, h, units[i]);
    g.FillPolygon(brush, points.data(), static_cast<int>(N));
}

int Px(float units, float scale) { return static_cast<int>(std::lround(units * scale)); }

// Colour rules of the figures.
ARGB NavaidColour(int colour) {
    if (colour == kMapBlue) return palette::kBlue;
    if (colour == kMapWhite) return palette::kWhite;
    return palette::kGreen;
}
ARGB FixColour(int colour) {
    if (colour == kMapMagenta) return palette::kMagenta;
    if (colour == kMapBlue) return palette::kBlue;
    return palette::kGrey;
}

constexpr Fig kVorFigure[] = {{0, 0}, {4, 0}, {6, 4},  {8, 2}, {6, -2}, {4, 0},  {6, 4},
                               {4, 8}, {0, 8}, {0, 10}, {4, 10}, {4, 8},  {0, 8},  {-2, 4},
                               {0, 0}, {-2, -2}, {-4, 2}, {-2, 4}, {0, 0}};
constexpr Fig kHexagon[] = {{0, 0}, {4, 0}, {6, 4}, {4, 8}, {0, 8}, {-2, 4}, {0, 0}};
constexpr Fig kTriangle[] = {{0, 0}, {3, 5}, {-3, 5}, {0, 0}};
constexpr Fig kStar[] = {{0, 0}, {1, 5}, {5, 6}, {1, 7}, {0, 11}, {-1, 7}, {-5, 6}, {-1, 5}, {0, 0}};
constexpr Fig kDiamond[] = {{0, 0}, {4, 4}, {0, 8}, {-4, 4}, {0, 0}};
// Own-ship: nose at the anchor, wings, tail.
constexpr Fig kAircraft[] = {{0, 0},   {1, 2},  {1, 6},  {8, 10}, {8, 12}, {1, 10}, {1, 16}, {3, 18}, {3, 19},
                              {-3, 19}, {-3, 18}, {-1, 16}, {-1, 10}, {-8, 12}, {-8, 10}, {-1, 6}, {-1, 2}, {0, 0}};
constexpr Fig kOwnShipMark[] = {{0, 0}, {5, 12}, {0, 9}, {-5, 12}, {0, 0}};
}  // namespace

ARGB MapColourArgb(int colour) {
    switch (colour) {
    case kMapBlue: return palette::kBlue;
    case kMapGreen: return palette::kGreen;
    case kMapMagenta: return palette::kMagenta;
    case kMapYellow: return palette::kYellow;
    default: return palette::kWhite;
    }
}

void DrawMapSymbol(gdi::Graphics& g, int x, int y, int kind, int label, float s, float h, int colour, double range) {
    (void)range;  // the figures keep their size at every range
    if (!std::isfinite(s) || !std::isfinite(h)) return;
    ARGB argb = MapColourArgb(colour);
    switch (kind) {
    case kSymbolVor: {
        gdi::Pen pen(NavaidColour(colour));
        Lines(g, pen, x, y, s, h, kVorFigure);
        argb = NavaidColour(colour);
        break;
    }
    case kSymbolNavaid: {
        gdi::Pen pen(NavaidColour(colour));
        Lines(g, pen, x, y, s, h, kHexagon);
        argb = NavaidColour(colour);
        break;
    }
    case kSymbolFix: {
        gdi::Pen pen(FixColour(colour));
        Lines(g, pen, x, y, s, h, kTriangle);
        argb = FixColour(colour);
        break;
    }
    case kSymbolNdb: {
        // A ring of dots round a centre dot.
        gdi::SolidBrush brush(NavaidColour(colour));
        for (int i = 0; i < 8; ++i) {
            double a = i * (kPi / 4);
            g.FillEllipse(brush, x + Px(static_cast<float>(5 * std::cos(a)), s) - 1,
                          y + Px(static_cast<float>(5 * std::sin(a)), h) - 1, 2, 2);
        }
        g.FillEllipse(brush, x - 1, y - 1, 3, 3);
        argb = NavaidColour(colour);
        break;
    }
    case kSymbolVorDme: {
        gdi::Pen pen(NavaidColour(colour));
        g.DrawRectangle(pen, x - Px(5, s), y - Px(4, h), Px(10, s), Px(8, h));
        g.DrawEllipse(pen, x - 1, y - 1, 2, 2);
        argb = NavaidColour(colour);
        break;
    }
    case kSymbolOwnShipFilled: {
        gdi::SolidBrush brush(palette::kWhite);
        Fill(g, brush, x, y, s, h, kAircraft);
        argb = palette::kWhite;
        break;
    }
    case kSymbolOwnShipOutline: {
        gdi::Pen pen(argb);
        Lines(g, pen, x, y, s, h, kAircraft);
        break;
    }
    case kSymbolWaypoint: {
        gdi::Pen pen(argb);
        Lines(g, pen, x, y, s, h, kStar);
        break;
    }
    case kSymbolDiamond: {
        gdi::Pen pen(argb);
        Lines(g, pen, x, y, s, h, kDiamond);
        break;
    }
    case kSymbolTickShort:
    case kSymbolTickLong: {
        // The P1000's compass marks: from the card's edge inwards. The pen
        // follows the scale, since that page draws in eighths of a pixel.
        gdi::Pen pen(palette::kWhite, 1.5f * s);
        g.DrawLine(pen, static_cast<float>(x), static_cast<float>(y), static_cast<float>(x),
                   static_cast<float>(y + Px(kind == kSymbolTickLong ? 7.0f : 4.0f, h)));
        argb = palette::kWhite;
        break;
    }
    case kSymbolOwnShipMark: {
        // The P1000's own-ship: a narrow arrowhead, nose at the anchor, with
        // a short tail; filled dark so the map's lines don't run through it.
        gdi::Pen pen(palette::kWhite, 1.5f * s);
        gdi::SolidBrush inside(palette::kBlack);
        Fill(g, inside, x, y, s, h, kOwnShipMark);
        Lines(g, pen, x, y, s, h, kOwnShipMark);
        g.DrawLine(pen, static_cast<float>(x), static_cast<float>(y + Px(9, h)), static_cast<float>(x),
                   static_cast<float>(y + Px(14, h)));
        argb = palette::kWhite;
        break;
    }
    case kSymbolRing: {
        // The P1000's centre ring, in the colour of the index.
        gdi::Pen pen(argb, 1.0f * s);
        g.DrawEllipse(pen, x - Px(3, s), y - Px(3, h), Px(6, s), Px(6, h));
        break;
    }
    case 60: case 61: case 62: case 63: {
        gdi::Pen pen(argb);
        gdi::SolidBrush brush(argb);
        int r = Px(3, s);
        if (kind == 60) g.DrawEllipse(pen, x - r, y - r, 2 * r, 2 * r);
        if (kind == 61) {
            g.DrawLine(pen, static_cast<float>(x - r), static_cast<float>(y - r), static_cast<float>(x + r),
                       static_cast<float>(y + r));
            g.DrawLine(pen, static_cast<float>(x - r), static_cast<float>(y + r), static_cast<float>(x + r),
                       static_cast<float>(y - r));
        }
        if (kind == 62) g.DrawRectangle(pen, x - r, y - r, 2 * r, 2 * r);
        if (kind == 63) g.FillEllipse(brush, x - r, y - r, 2 * r, 2 * r);
        break;
    }
    case kSymbolTrafficOther:
    case kSymbolTrafficProximate: {
        // Other traffic: an open diamond; proximate: filled.
        constexpr Fig kTrafficDiamond[] = {{0, -5}, {5, 0}, {0, 5}, {-5, 0}, {0, -5}};
        argb = kind == kSymbolTrafficOther && colour == kMapWhite ? palette::kCyan : argb;
        if (kind == kSymbolTrafficOther) {
            gdi::Pen pen(argb);
            Lines(g, pen, x, y, s, h, kTrafficDiamond);
        } else {
            gdi::SolidBrush brush(argb);
            Fill(g, brush, x, y, s, h, kTrafficDiamond);
        }
        break;
    }
    case kSymbolTrafficAdvisory: {
        gdi::SolidBrush brush(palette::kAmber);
        g.FillEllipse(brush, x - Px(5, s), y - Px(5, h), Px(10, s), Px(10, h));
        argb = palette::kAmber;
        break;
    }
    case kSymbolTrafficResolution: {
        gdi::SolidBrush brush(palette::kRed);
        g.FillRectangle(brush, x - Px(5, s), y - Px(5, h), Px(10, s), Px(10, h));
        argb = palette::kRed;
        break;
    }
    case kSymbolTuned:
    case kSymbolTunedBars:
    case kSymbolTunedVor: {
        argb = colour == kMapGreen ? palette::kGreen : palette::kWhite;
        gdi::Pen pen(argb);
        g.DrawEllipse(pen, x - Px(4, s), y + Px(2, h), Px(8, s), Px(8, h));
        if (kind >= kSymbolTunedBars) {
            for (int side : {-1, 1})
                g.DrawLine(pen, static_cast<float>(x + side * Px(4, s)), static_cast<float>(y + Px(6, h)),
                           static_cast<float>(x + side * Px(8, s)), static_cast<float>(y + Px(6, h)));
        }
        if (kind == kSymbolTunedVor) {
            g.DrawLine(pen, static_cast<float>(x), static_cast<float>(y + Px(8, h)), static_cast<float>(x),
                       static_cast<float>(y + Px(12, h)));
            g.DrawLine(pen, static_cast<float>(x), static_cast<float>(y), static_cast<float>(x),
                       static_cast<float>(y - Px(2, h)));
        }
        break;
    }
    default:
        return;
    }
    if (label != kNoLabel) {
        char text[16];
        std::snprintf(text, sizeof text, "%d", label);
        gdi::Font font(kHwFont, 8);
        g.DrawText(text, font, argb, static_cast<float>(x + Px(8, s)), static_cast<float>(y));
    }
}
