// gdiplus_shapes_fuzz_body.h: one run of the shape calls over arbitrary bytes,
// shared by the fuzz target and the unit test that feeds it hostile inputs.
// The bytes are read as a program: each step picks a call (line, lines,
// ellipse, arc, polygon, fill, transform, clip, pen style, smoothing) and its
// numbers, raw floats included, so NaN, infinities and huge values reach
// the stand-in's own scan as well as cairo. Every call must return, and the
// pixels around the surface (guard rows) must stay untouched.
#pragma once

#include <gdiplus_flat.h>
#include <orbhost.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace shapes_fuzz {

struct Reader {
    const uint8_t* data;
    size_t size;
    size_t at = 0;
    bool done() const { return at >= size; }
    uint8_t byte() { return at < size ? data[at++] : 0; }
    float number() {
        // Mostly small coordinates; a raw float one time in eight.
        uint8_t kind = byte();
        if ((kind & 7) == 0) {
            float f = 0;
            uint8_t raw[4] = {byte(), byte(), byte(), byte()};
            std::memcpy(&f, raw, sizeof f);
            return f;
        }
        return static_cast<float>(static_cast<int8_t>(byte())) * 1.7f + (kind >> 3) * 0.03f;
    }
};

}  // namespace shapes_fuzz

inline int GdiplusShapesFuzzOne(const uint8_t* data, size_t size) {
    constexpr int kWidth = 48, kHeight = 40, kGuard = 2;  // guard rows above and below
    constexpr uint32_t kGuardValue = 0xA5A5A5A5u;
    static std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * (kHeight + 2 * kGuard));
    std::fill(pixels.begin(), pixels.end(), kGuardValue);
    std::fill(pixels.begin() + kGuard * kWidth, pixels.end() - kGuard * kWidth, 0u);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data() + kGuard * kWidth, kWidth, kHeight, kWidth * 4};
    GpGraphics* g = nullptr;
    if (GdipCreateFromHDC(&dc, &g) != Ok) std::abort();
    GpPen* pen = nullptr;
    GpSolidFill* brush = nullptr;
    GpPath* path = nullptr;
    GdipCreatePen1(0xC0FF8040u, 1.5f, UnitWorld, &pen);
    GdipCreateSolidFill(0x80FFFFFFu, &brush);
    GdipCreatePath(FillModeAlternate, &path);
    GdipSetSmoothingMode(g, SmoothingModeAntiAlias);
    shapes_fuzz::Reader in{data, size};
    std::array<GpPointF, 12> points{};
    for (int step = 0; step < 64 && !in.done(); ++step) {
        uint8_t op = in.byte();
        switch (op % 16) {
            case 0: GdipDrawLine(g, pen, in.number(), in.number(), in.number(), in.number()); break;
            case 1:
            case 2: {
                int count = 2 + in.byte() % 10;
                for (int i = 0; i < count; ++i) points[i] = {in.number(), in.number()};
                if (op % 16 == 1) GdipDrawLines(g, pen, points.data(), count);
                else GdipDrawPolygon(g, pen, points.data(), count);
                break;
            }
            case 3: GdipDrawEllipse(g, pen, in.number(), in.number(), in.number(), in.number()); break;
            case 4:
                GdipDrawArc(g, pen, in.number(), in.number(), in.number(), in.number(), in.number() * 7, in.number() * 7);
                break;
            case 5: {
                int count = 3 + in.byte() % 9;
                for (int i = 0; i < count; ++i) points[i] = {in.number(), in.number()};
                GdipFillPolygon(g, brush, points.data(), count, (op & 16) ? FillModeWinding : FillModeAlternate);
                break;
            }
            case 6: GdipFillRectangle(g, brush, in.number(), in.number(), in.number(), in.number()); break;
            case 7: GdipSetPenWidth(pen, in.number() / 4); break;
            case 8: GdipSetPenDashStyle(pen, static_cast<DashStyle>(in.byte() % 5)); break;
            case 9: {
                LineCap cap = static_cast<LineCap>(in.byte() % 4);
                GdipSetPenStartCap(pen, cap);
                GdipSetPenEndCap(pen, (op & 16) ? cap : LineCapRound);
                GdipSetPenLineJoin(pen, static_cast<LineJoin>(in.byte() % 3));
                break;
            }
            case 10: GdipRotateWorldTransform(g, in.number() * 3, MatrixOrderPrepend); break;
            case 11: GdipScaleWorldTransform(g, in.number() / 8, in.number() / 8, MatrixOrderPrepend); break;
            case 12: GdipTranslateWorldTransform(g, in.number(), in.number(), MatrixOrderPrepend); break;
            case 13:
                GdipResetPath(path);
                GdipAddPathEllipse(path, in.number(), in.number(), in.number(), in.number());
                GdipSetClipPath(g, path, (op & 16) ? CombineModeIntersect : CombineModeReplace);
                break;
            case 14: GdipSetClipRect(g, in.number(), in.number(), in.number(), in.number(), CombineModeReplace); break;
            default:
                GdipResetClip(g);
                GdipResetWorldTransform(g);
                GdipSetSmoothingMode(g, (op & 16) ? SmoothingModeNone : SmoothingModeAntiAlias);
                GdipSetPixelOffsetMode(g, (op & 32) ? PixelOffsetModeHalf : PixelOffsetModeDefault);
                break;
        }
    }
    GdipDeletePath(path);
    GdipDeleteBrush(brush);
    GdipDeletePen(pen);
    GdipDeleteGraphics(g);
    for (int i = 0; i < kGuard * kWidth; ++i) {
        if (pixels[i] != kGuardValue || pixels[pixels.size() - 1 - i] != kGuardValue) std::abort();
    }
    return 0;
}
