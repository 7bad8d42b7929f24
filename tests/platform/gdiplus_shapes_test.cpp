// Outlines, fills, transforms, clip, dashes and caps of the GDI+ stand-in,
// checked on the pixels of an in-memory device context.
#include "platform/canvas.h"

#include <gtest/gtest.h>

#include <cmath>

using test_canvas::BrushOf;
using test_canvas::Canvas;
using test_canvas::PenOf;

namespace {

constexpr ARGB kRed = 0xFFFF0000;
constexpr ARGB kGreen = 0xFF00FA00;
constexpr ARGB kBlue = 0xFF02A7EB;

// A graphics object with aliased drawing, so pixels are all or nothing.
struct Sharp {
    GpGraphics* g = nullptr;
    explicit Sharp(Canvas& c) {
        EXPECT_EQ(GdipCreateFromHDC(c.hdc(), &g), Ok);
        EXPECT_EQ(GdipSetSmoothingMode(g, SmoothingModeNone), Ok);
    }
    ~Sharp() { GdipDeleteGraphics(g); }
};

// Coloured runs along row y from x0 to x1: (inked pixels, number of runs).
std::pair<int, int> RowRuns(const Canvas& c, int y, int x0, int x1) {
    int inked = 0, runs = 0;
    bool in = false;
    for (int x = x0; x < x1; ++x) {
        bool on = c.Alpha(x, y) != 0;
        inked += on;
        if (on && !in) ++runs;
        in = on;
    }
    return {inked, runs};
}

}  // namespace

TEST(GdiplusShapes, FillsAndOutlinesLandOnTheirPixelsOnly) {
    Canvas c(120, 120);
    Sharp s(c);
    BrushOf red(kRed);
    PenOf green(kGreen, 1);

    // A filled rectangle covers exactly width x height pixels from its corner.
    ASSERT_EQ(GdipFillRectangleI(s.g, red.b, 10, 10, 20, 10), Ok);
    EXPECT_EQ(c.CountColour(kRed), 200);
    EXPECT_EQ(c.At(10, 10), kRed);
    EXPECT_EQ(c.At(29, 19), kRed);
    EXPECT_EQ(c.At(30, 10), 0u);
    EXPECT_EQ(c.At(10, 20), 0u);
    EXPECT_EQ(c.At(9, 10), 0u);

    // A one-pixel line lies on its row, ends included up to the last pixel.
    ASSERT_EQ(GdipDrawLineI(s.g, green.p, 40, 50, 90, 50), Ok);
    EXPECT_EQ(c.Inked(40, 50, 90, 51), 50);
    EXPECT_EQ(c.Inked(30, 49, 100, 50), 0);
    EXPECT_EQ(c.Inked(30, 51, 100, 52), 0);

    // An outlined rectangle is one pixel wider than its size; its inside stays empty.
    ASSERT_EQ(GdipDrawRectangleI(s.g, green.p, 60, 60, 20, 20), Ok);
    EXPECT_EQ(c.At(60, 60), kGreen);
    EXPECT_EQ(c.At(80, 80), kGreen);
    EXPECT_EQ(c.At(80, 60), kGreen);
    EXPECT_EQ(c.Inked(62, 62, 79, 79), 0);

    // A filled ellipse: centre in, bounding-box corner out.
    Canvas e(50, 50);
    Sharp se(e);
    ASSERT_EQ(GdipFillEllipseI(se.g, red.b, 5, 5, 40, 40), Ok);
    EXPECT_EQ(e.At(25, 25), kRed);
    EXPECT_EQ(e.At(25, 6), kRed);
    EXPECT_EQ(e.At(7, 7), 0u);
    EXPECT_EQ(e.At(43, 43), 0u);
    // Its area is near pi r^2.
    EXPECT_NEAR(e.CountColour(kRed), M_PI * 400, 40);

    // The outline of an ellipse leaves its centre empty.
    Canvas o(50, 50);
    Sharp so(o);
    ASSERT_EQ(GdipDrawEllipseI(so.g, green.p, 5, 5, 40, 40), Ok);
    EXPECT_EQ(o.At(25, 25), 0u);
    EXPECT_EQ(o.At(25, 5), kGreen);
    EXPECT_EQ(o.At(45, 25), kGreen);
}

TEST(GdiplusShapes, PolygonsFillByTheirRule) {
    Canvas c(100, 100);
    Sharp s(c);
    BrushOf red(kRed);
    GpPoint triangle[] = {{10, 10}, {50, 10}, {10, 50}};
    ASSERT_EQ(GdipFillPolygonI(s.g, red.b, triangle, 3, FillModeAlternate), Ok);
    EXPECT_EQ(c.At(15, 15), kRed);
    EXPECT_EQ(c.At(40, 40), 0u);
    EXPECT_NEAR(c.CountColour(kRed), 820, 45);  // half the 40 x 40 square, edge pixels either way

    // A pentagram: even-odd leaves its centre empty, winding fills it.
    GpPoint star[5];
    for (int i = 0; i < 5; ++i) {
        double a = (-90 + i * 144) * M_PI / 180;
        star[i] = {static_cast<INT>(std::lround(50 + 40 * std::cos(a))), static_cast<INT>(std::lround(50 + 40 * std::sin(a)))};
    }
    Canvas even(100, 100), winding(100, 100);
    Sharp se(even), sw(winding);
    ASSERT_EQ(GdipFillPolygonI(se.g, red.b, star, 5, FillModeAlternate), Ok);
    ASSERT_EQ(GdipFillPolygonI(sw.g, red.b, star, 5, FillModeWinding), Ok);
    EXPECT_EQ(even.At(50, 52), 0u);
    EXPECT_EQ(winding.At(50, 52), kRed);
    EXPECT_EQ(even.At(50, 15), kRed);  // a point of the star is in either way

    // The outline of a polygon closes back to its first point.
    Canvas d(100, 100);
    Sharp sd(d);
    PenOf green(kGreen, 1);
    ASSERT_EQ(GdipDrawPolygonI(sd.g, green.p, triangle, 3), Ok);
    EXPECT_EQ(d.At(10, 30), kGreen);  // on the closing edge (10,50)-(10,10)
    EXPECT_EQ(d.At(15, 15), 0u);
    // An open run of lines does not close.
    Canvas l(100, 100);
    Sharp sl(l);
    ASSERT_EQ(GdipDrawLinesI(sl.g, green.p, triangle, 3), Ok);
    EXPECT_EQ(l.At(10, 30), 0u);
    EXPECT_EQ(l.At(30, 10), kGreen);
}

TEST(GdiplusShapes, ArcsRunClockwiseFromTheXAxisOnTheEllipse) {
    // Circle of radius 40 about (50, 50); 0 to 90 degrees is the lower right quarter.
    Canvas c(100, 100);
    Sharp s(c);
    PenOf pen(kBlue, 3);
    ASSERT_EQ(GdipDrawArcI(s.g, pen.p, 10, 10, 80, 80, 0, 90), Ok);
    int r45 = static_cast<int>(std::lround(40 * std::cos(M_PI / 4)));
    EXPECT_EQ(c.At(50 + r45, 50 + r45), kBlue);
    EXPECT_EQ(c.At(50 + r45, 50 - r45), 0u);  // upper right: not swept
    EXPECT_EQ(c.At(50 - r45, 50 + r45), 0u);  // lower left: not swept
    EXPECT_EQ(c.At(90, 52), kBlue);
    EXPECT_EQ(c.At(52, 90), kBlue);

    // A negative sweep runs anticlockwise: from 0 up to -90 is the upper right.
    Canvas n(100, 100);
    Sharp sn(n);
    ASSERT_EQ(GdipDrawArcI(sn.g, pen.p, 10, 10, 80, 80, 0, -90), Ok);
    EXPECT_EQ(n.At(50 + r45, 50 - r45), kBlue);
    EXPECT_EQ(n.At(50 + r45, 50 + r45), 0u);

    // On a flat ellipse the end angle is the point's true angle from the
    // centre, not the angle on the unit circle: 45 degrees on a 160 x 40
    // ellipse ends at the parameter atan(4), about 76 degrees.
    Canvas f(170, 50);
    Sharp sf(f);
    ASSERT_EQ(GdipDrawArcI(sf.g, pen.p, 0, 0, 160, 40, 0, 45), Ok);
    auto on = [&](double t_deg) {
        double t = t_deg * M_PI / 180;
        return f.Alpha(static_cast<int>(std::lround(80 + 80 * std::cos(t))), static_cast<int>(std::lround(20 + 20 * std::sin(t))));
    };
    EXPECT_NE(on(30), 0u);
    EXPECT_NE(on(65), 0u);
    EXPECT_EQ(on(88), 0u);
    EXPECT_EQ(on(-20), 0u);
}

TEST(GdiplusShapes, WorldTransformOrderIsPrependUnlessAppended) {
    GpGraphics* g = nullptr;
    Canvas c(10, 10);
    ASSERT_EQ(GdipCreateFromHDC(c.hdc(), &g), Ok);
    GpMatrix* m = nullptr;
    ASSERT_EQ(GdipCreateMatrix(&m), Ok);
    auto map = [&](float x, float y) {
        GpPointF p{x, y};
        EXPECT_EQ(GdipGetWorldTransform(g, m), Ok);
        EXPECT_EQ(GdipTransformMatrixPoints(m, &p, 1), Ok);
        return p;
    };
    // Prepend: the later call acts first on points: scale, then translate.
    ASSERT_EQ(GdipTranslateWorldTransform(g, 10, 0, MatrixOrderPrepend), Ok);
    ASSERT_EQ(GdipScaleWorldTransform(g, 2, 1, MatrixOrderPrepend), Ok);
    EXPECT_FLOAT_EQ(map(5, 0).X, 20);
    // Append: the later call acts last: translate, then scale.
    ASSERT_EQ(GdipResetWorldTransform(g), Ok);
    ASSERT_EQ(GdipTranslateWorldTransform(g, 10, 0, MatrixOrderPrepend), Ok);
    ASSERT_EQ(GdipScaleWorldTransform(g, 2, 1, MatrixOrderAppend), Ok);
    EXPECT_FLOAT_EQ(map(5, 0).X, 30);
    // Rotation is clockwise on the screen: +x turns to +y.
    ASSERT_EQ(GdipResetWorldTransform(g), Ok);
    ASSERT_EQ(GdipRotateWorldTransform(g, 90, MatrixOrderPrepend), Ok);
    GpPointF r = map(10, 0);
    EXPECT_NEAR(r.X, 0, 1e-5);
    EXPECT_NEAR(r.Y, 10, 1e-5);
    // The displays' order: scale, translate to the centre, rotate.
    ASSERT_EQ(GdipResetWorldTransform(g), Ok);
    ASSERT_EQ(GdipScaleWorldTransform(g, 2, 3, MatrixOrderPrepend), Ok);
    ASSERT_EQ(GdipTranslateWorldTransform(g, 100, 50, MatrixOrderPrepend), Ok);
    ASSERT_EQ(GdipRotateWorldTransform(g, 90, MatrixOrderPrepend), Ok);
    GpPointF d = map(0, -10);  // ten units above the centre, turned to its right
    EXPECT_NEAR(d.X, (100 + 10) * 2, 1e-4);
    EXPECT_NEAR(d.Y, 50 * 3, 1e-4);
    // Save and restore bring the transform back.
    GraphicsState state = 0;
    ASSERT_EQ(GdipSaveGraphics(g, &state), Ok);
    ASSERT_EQ(GdipRotateWorldTransform(g, 33, MatrixOrderAppend), Ok);
    ASSERT_EQ(GdipRestoreGraphics(g, state), Ok);
    GpPointF again = map(0, -10);
    EXPECT_NEAR(again.X, 220, 1e-4);
    EXPECT_NEAR(again.Y, 150, 1e-4);
    GdipDeleteMatrix(m);
    GdipDeleteGraphics(g);
}

TEST(GdiplusShapes, TransformsMoveThePixels) {
    BrushOf red(kRed);
    // Scaled by two: a 10 x 10 square at (5, 5) covers 20 x 20 pixels at (10, 10).
    Canvas c(100, 100);
    {
        Sharp s(c);
        ASSERT_EQ(GdipScaleWorldTransform(s.g, 2, 2, MatrixOrderPrepend), Ok);
        ASSERT_EQ(GdipFillRectangleI(s.g, red.b, 5, 5, 10, 10), Ok);
    }
    EXPECT_EQ(c.CountColour(kRed), 400);
    EXPECT_EQ(c.At(10, 10), kRed);
    EXPECT_EQ(c.At(29, 29), kRed);
    EXPECT_EQ(c.At(30, 30), 0u);

    // Turned a quarter clockwise about (50, 50): a bar to the right goes below.
    Canvas r(100, 100);
    {
        Sharp s(r);
        ASSERT_EQ(GdipTranslateWorldTransform(s.g, 50, 50, MatrixOrderPrepend), Ok);
        ASSERT_EQ(GdipRotateWorldTransform(s.g, 90, MatrixOrderPrepend), Ok);
        ASSERT_EQ(GdipTranslateWorldTransform(s.g, -50, -50, MatrixOrderPrepend), Ok);
        ASSERT_EQ(GdipFillRectangleI(s.g, red.b, 60, 48, 20, 4), Ok);
    }
    EXPECT_EQ(r.At(50, 70), kRed);
    EXPECT_EQ(r.At(70, 50), 0u);
    EXPECT_EQ(r.CountColour(kRed), 80);

    // A pen thinner than a pixel after the transform still draws one pixel.
    Canvas t(100, 100);
    {
        Sharp s(t);
        PenOf pen(kGreen, 1);
        ASSERT_EQ(GdipScaleWorldTransform(s.g, 0.25f, 0.25f, MatrixOrderPrepend), Ok);
        ASSERT_EQ(GdipDrawLineI(s.g, pen.p, 0, 200, 400, 200), Ok);
    }
    EXPECT_EQ(t.Inked(0, 50, 100, 51), 100);
    EXPECT_EQ(t.InkedAll(), 100);
}

// Under a curved clip the stand-in sends a long run of drawing through a
// layer composited once: the picture must still be what drawing each shape
// through the clip gives, in the order drawn, across saves that only guard a
// transform, a clear and the end of the graphics object, and a pooled layer
// must leave nothing behind for the next graphics object.
TEST(GdiplusShapes, LongRunsUnderACurvedClipKeepOrderAndLeaveNothingBehind) {
    BrushOf red(kRed), green(kGreen), blue(kBlue), none(0);
    GpPath* disc = nullptr;
    ASSERT_EQ(GdipCreatePath(FillModeAlternate, &disc), Ok);
    ASSERT_EQ(GdipAddPathEllipseI(disc, 20, 20, 60, 60), Ok);
    // Invisible shapes, enough to pass any run drawn straight.
    auto many = [&](GpGraphics* g) {
        for (int i = 0; i < 100; ++i) ASSERT_EQ(GdipFillRectangleI(g, none.b, 40 + i % 20, 50, 1, 1), Ok);
    };
    Canvas c(100, 100);
    {
        Sharp s(c);
        ASSERT_EQ(GdipFillRectangleI(s.g, blue.b, 0, 0, 100, 10), Ok);
        ASSERT_EQ(GdipSetClipPath(s.g, disc, CombineModeReplace), Ok);
        many(s.g);
        ASSERT_EQ(GdipFillRectangleI(s.g, red.b, 0, 0, 100, 100), Ok);
        GraphicsState state = 0;
        ASSERT_EQ(GdipSaveGraphics(s.g, &state), Ok);
        ASSERT_EQ(GdipTranslateWorldTransform(s.g, 50, 0, MatrixOrderPrepend), Ok);
        ASSERT_EQ(GdipFillRectangleI(s.g, green.b, 0, 40, 50, 20), Ok);  // the right half of a band
        ASSERT_EQ(GdipRestoreGraphics(s.g, state), Ok);
        ASSERT_EQ(GdipFillRectangleI(s.g, blue.b, 0, 48, 100, 4), Ok);    // over the band, on the left too
        // A new clip puts what was drawn on the pixels first.
        ASSERT_EQ(GdipResetClip(s.g), Ok);
        EXPECT_EQ(c.At(30, 44), kRed);
        EXPECT_EQ(c.At(60, 44), kGreen);
        EXPECT_EQ(c.At(60, 50), kBlue);
        EXPECT_EQ(c.At(30, 50), kBlue);
        EXPECT_EQ(c.At(60, 30), kRed);
        EXPECT_EQ(c.At(95, 50), 0u);        // the band beyond the disc stays out
        EXPECT_EQ(c.At(22, 22), 0u);        // the disc's corner
        EXPECT_EQ(c.At(50, 5), kBlue);      // the clip's outside keeps what was there
        ASSERT_EQ(GdipFillRectangleI(s.g, blue.b, 45, 45, 10, 10), Ok);
        EXPECT_EQ(c.At(50, 50), kBlue);
        // A clear under a curved clip comes after what was drawn before it.
        ASSERT_EQ(GdipSetClipPath(s.g, disc, CombineModeReplace), Ok);
        many(s.g);
        ASSERT_EQ(GdipFillRectangleI(s.g, green.b, 0, 0, 100, 100), Ok);
        ASSERT_EQ(GdipGraphicsClear(s.g, 0), Ok);
        EXPECT_EQ(c.At(50, 50), 0u);
        EXPECT_EQ(c.At(50, 5), kBlue);
        // The end of the graphics object puts the rest on the pixels.
        many(s.g);
        ASSERT_EQ(GdipFillRectangleI(s.g, red.b, 40, 40, 20, 20), Ok);
    }
    EXPECT_EQ(c.At(50, 50), kRed);
    EXPECT_EQ(c.CountColour(kRed), 400);
    // The same size again takes the pooled layer: it must come back clear.
    Canvas again(100, 100);
    {
        Sharp s(again);
        ASSERT_EQ(GdipSetClipPath(s.g, disc, CombineModeReplace), Ok);
        many(s.g);
        ASSERT_EQ(GdipFillRectangleI(s.g, green.b, 48, 48, 4, 4), Ok);
    }
    EXPECT_EQ(again.CountColour(kGreen), 16);
    EXPECT_EQ(again.Inked(0, 0, 100, 100), 16);
    // A restore that brings the old clip back puts the clipped drawing down
    // before what follows it.
    {
        Sharp s(again);
        GraphicsState state = 0;
        ASSERT_EQ(GdipSaveGraphics(s.g, &state), Ok);
        ASSERT_EQ(GdipSetClipPath(s.g, disc, CombineModeReplace), Ok);
        many(s.g);
        ASSERT_EQ(GdipFillRectangleI(s.g, red.b, 0, 0, 100, 100), Ok);
        ASSERT_EQ(GdipRestoreGraphics(s.g, state), Ok);
        ASSERT_EQ(GdipFillRectangleI(s.g, blue.b, 0, 0, 50, 100), Ok);
        EXPECT_EQ(again.At(40, 50), kBlue);
        EXPECT_EQ(again.At(60, 50), kRed);
        EXPECT_EQ(again.At(95, 50), 0u);
    }
    GdipDeletePath(disc);
}

TEST(GdiplusShapes, ClipConfinesDrawingInDeviceSpace) {
    Canvas c(100, 100);
    Sharp s(c);
    BrushOf red(kRed);
    GpPath* disc = nullptr;
    ASSERT_EQ(GdipCreatePath(FillModeAlternate, &disc), Ok);
    ASSERT_EQ(GdipAddPathEllipseI(disc, 20, 20, 60, 60), Ok);
    ASSERT_EQ(GdipSetClipPath(s.g, disc, CombineModeReplace), Ok);
    // The transform changes after the clip: the clip stays where it was.
    ASSERT_EQ(GdipTranslateWorldTransform(s.g, 30, 0, MatrixOrderPrepend), Ok);
    ASSERT_EQ(GdipFillRectangleI(s.g, red.b, -30, 0, 100, 100), Ok);
    ASSERT_EQ(GdipFlush(s.g, FlushIntentionSync), Ok);
    EXPECT_EQ(c.At(50, 50), kRed);
    EXPECT_EQ(c.At(22, 22), 0u);
    EXPECT_EQ(c.At(5, 50), 0u);
    EXPECT_EQ(c.At(95, 50), 0u);
    EXPECT_NEAR(c.CountColour(kRed), M_PI * 900, 60);

    // Intersect with a rectangle: only the disc's left half remains.
    Canvas h(100, 100);
    Sharp sh(h);
    ASSERT_EQ(GdipSetClipPath(sh.g, disc, CombineModeReplace), Ok);
    ASSERT_EQ(GdipSetClipRectI(sh.g, 0, 0, 50, 100, CombineModeIntersect), Ok);
    ASSERT_EQ(GdipFillRectangleI(sh.g, red.b, 0, 0, 100, 100), Ok);
    ASSERT_EQ(GdipFlush(sh.g, FlushIntentionFlush), Ok);
    EXPECT_EQ(h.At(40, 50), kRed);
    EXPECT_EQ(h.At(60, 50), 0u);

    // Exclude: everything but the rectangle.
    Canvas x(100, 100);
    Sharp sx(x);
    ASSERT_EQ(GdipSetClipRectI(sx.g, 10, 10, 30, 30, CombineModeExclude), Ok);
    ASSERT_EQ(GdipFillRectangleI(sx.g, red.b, 0, 0, 100, 100), Ok);
    EXPECT_EQ(x.CountColour(kRed), 10000 - 900);
    EXPECT_EQ(x.At(20, 20), 0u);

    // Reset: the whole surface again. A clear fills the whole surface too.
    ASSERT_EQ(GdipResetClip(sx.g), Ok);
    ASSERT_EQ(GdipFillRectangleI(sx.g, red.b, 0, 0, 100, 100), Ok);
    EXPECT_EQ(x.CountColour(kRed), 10000);
    ASSERT_EQ(GdipSetClipRectI(sx.g, 0, 0, 10, 10, CombineModeReplace), Ok);
    ASSERT_EQ(GdipGraphicsClear(sx.g, kBlue), Ok);
    EXPECT_EQ(x.CountColour(kBlue), 100);  // clear keeps to the clip
    // Region algebra the module does not use is refused, not faked.
    EXPECT_EQ(GdipSetClipPath(sx.g, disc, CombineModeUnion), NotImplemented);
    GdipDeletePath(disc);
}

TEST(GdiplusShapes, DashPatternsAreInPenWidths) {
    auto runs = [](DashStyle style, const REAL* custom, int count) {
        Canvas c(200, 20);
        Sharp s(c);
        PenOf pen(kGreen, 2);
        if (custom != nullptr) EXPECT_EQ(GdipSetPenDashArray(pen.p, custom, count), Ok);
        else EXPECT_EQ(GdipSetPenDashStyle(pen.p, style), Ok);
        EXPECT_EQ(GdipDrawLineI(s.g, pen.p, 0, 10, 160, 10), Ok);
        return RowRuns(c, 10, 0, 200);
    };
    auto solid = runs(DashStyleSolid, nullptr, 0);
    EXPECT_EQ(solid.first, 160);
    EXPECT_EQ(solid.second, 1);
    // Dash: 3 widths on, 1 off; with width 2 that is 6 on, 2 off: 20 dashes.
    auto dash = runs(DashStyleDash, nullptr, 0);
    EXPECT_EQ(dash.second, 20);
    EXPECT_EQ(dash.first, 120);
    // Dot: 1 on, 1 off: 40 dots of 2 pixels.
    auto dot = runs(DashStyleDot, nullptr, 0);
    EXPECT_EQ(dot.second, 40);
    EXPECT_EQ(dot.first, 80);
    // A custom array sets its own pattern: 4 on, 4 off in widths.
    REAL pattern[] = {4, 4};
    auto custom = runs(DashStyleCustom, pattern, 2);
    EXPECT_EQ(custom.second, 10);
    EXPECT_EQ(custom.first, 80);
}

TEST(GdiplusShapes, ArrowCapsSitAtTheLineEnds) {
    Canvas c(100, 100);
    Sharp s(c);
    PenOf pen(kGreen, 1);
    GpAdjustableArrowCap* cap = nullptr;
    ASSERT_EQ(GdipCreateAdjustableArrowCap(8, 8, TRUE, &cap), Ok);
    ASSERT_EQ(GdipSetPenCustomEndCap(pen.p, cap), Ok);
    ASSERT_EQ(GdipDeleteCustomLineCap(cap), Ok);  // the pen keeps its own copy
    ASSERT_EQ(GdipDrawLineI(s.g, pen.p, 10, 50, 90, 50), Ok);
    // The head widens back from the tip: 8 long, 8 wide.
    EXPECT_EQ(c.At(84, 48), kGreen);
    EXPECT_EQ(c.At(84, 52), kGreen);
    EXPECT_EQ(c.At(94, 50), 0u);
    EXPECT_EQ(c.At(14, 48), 0u);  // no head at the start
    EXPECT_EQ(c.Inked(0, 0, 80, 49), 0);

    // Turned with the line: pointing down, the head spreads in x.
    Canvas d(100, 100);
    Sharp sd(d);
    ASSERT_EQ(GdipDrawLineI(sd.g, pen.p, 50, 10, 50, 90), Ok);
    EXPECT_EQ(d.At(48, 84), kGreen);
    EXPECT_EQ(d.At(52, 84), kGreen);
    EXPECT_EQ(d.At(48, 30), 0u);
}

TEST(GdiplusShapes, SmoothingAndPixelOffsetFollowTheirModes) {
    BrushOf red(kRed);
    PenOf pen(kGreen, 1);
    auto partial = [](const Canvas& c) {
        int n = 0;
        for (uint32_t p : c.pixels) n += (p >> 24) != 0 && (p >> 24) != 0xFF;
        return n;
    };
    // Aliased by default: every pixel all or nothing.
    Canvas a(60, 60);
    {
        GpGraphics* g = nullptr;
        ASSERT_EQ(GdipCreateFromHDC(a.hdc(), &g), Ok);
        ASSERT_EQ(GdipDrawLineI(g, pen.p, 0, 0, 50, 37), Ok);
        GdipDeleteGraphics(g);
    }
    EXPECT_GT(a.InkedAll(), 40);
    EXPECT_EQ(partial(a), 0);
    // Anti-aliased: the slanted line has partly covered pixels.
    Canvas b(60, 60);
    {
        GpGraphics* g = nullptr;
        ASSERT_EQ(GdipCreateFromHDC(b.hdc(), &g), Ok);
        ASSERT_EQ(GdipSetSmoothingMode(g, SmoothingModeAntiAlias), Ok);
        ASSERT_EQ(GdipDrawLineI(g, pen.p, 0, 0, 50, 37), Ok);
        GdipDeleteGraphics(g);
    }
    EXPECT_GT(partial(b), 20);
    // Pixel centres lie on whole coordinates by default, on halves with
    // PixelOffsetModeHalf: an anti-aliased square's edge is half covered in
    // the first case, whole in the second.
    Canvas d(40, 40), h(40, 40);
    for (Canvas* cv : {&d, &h}) {
        GpGraphics* g = nullptr;
        ASSERT_EQ(GdipCreateFromHDC(cv->hdc(), &g), Ok);
        ASSERT_EQ(GdipSetSmoothingMode(g, SmoothingModeAntiAlias), Ok);
        if (cv == &h) {
            ASSERT_EQ(GdipSetPixelOffsetMode(g, PixelOffsetModeHalf), Ok);
        }
        ASSERT_EQ(GdipFillRectangleI(g, red.b, 10, 10, 10, 10), Ok);
        GdipDeleteGraphics(g);
    }
    EXPECT_NEAR(static_cast<int>(d.Alpha(10, 15)), 128, 8);
    EXPECT_NEAR(static_cast<int>(d.Alpha(20, 15)), 128, 8);
    EXPECT_EQ(h.Alpha(10, 15), 0xFFu);
    EXPECT_EQ(h.Alpha(20, 15), 0u);
}

TEST(GdiplusShapes, PathsJoinFiguresAndCloseThem) {
    GpPath* p = nullptr;
    ASSERT_EQ(GdipCreatePath(FillModeAlternate, &p), Ok);
    // Two lines in one open figure are joined by a segment: four points.
    ASSERT_EQ(GdipAddPathLineI(p, 0, 0, 10, 0), Ok);
    ASSERT_EQ(GdipAddPathLineI(p, 20, 0, 30, 0), Ok);
    INT count = 0;
    ASSERT_EQ(GdipGetPointCount(p, &count), Ok);
    EXPECT_EQ(count, 4);
    // After a close, a line starts a new figure.
    ASSERT_EQ(GdipClosePathFigure(p), Ok);
    ASSERT_EQ(GdipAddPathLineI(p, 0, 40, 10, 40), Ok);
    ASSERT_EQ(GdipGetPointCount(p, &count), Ok);
    EXPECT_EQ(count, 6);
    // A quarter arc is one bezier: start plus three points.
    ASSERT_EQ(GdipResetPath(p), Ok);
    ASSERT_EQ(GdipAddPathArcI(p, 0, 0, 100, 100, 0, 90), Ok);
    ASSERT_EQ(GdipGetPointCount(p, &count), Ok);
    EXPECT_EQ(count, 4);

    // A closed figure of a line, an arc and a line fills a pie slice; the
    // arc joins to the line's end by itself.
    Canvas c(100, 100);
    Sharp s(c);
    BrushOf red(kRed);
    ASSERT_EQ(GdipResetPath(p), Ok);
    ASSERT_EQ(GdipAddPathLineI(p, 50, 50, 90, 50), Ok);
    ASSERT_EQ(GdipAddPathArcI(p, 10, 10, 80, 80, 0, 90), Ok);
    ASSERT_EQ(GdipClosePathFigure(p), Ok);
    ASSERT_EQ(GdipFillPath(s.g, red.b, p), Ok);
    EXPECT_EQ(c.At(65, 65), kRed);
    EXPECT_EQ(c.At(35, 65), 0u);
    EXPECT_EQ(c.At(65, 35), 0u);
    EXPECT_NEAR(c.CountColour(kRed), M_PI * 1600 / 4, 40);

    // A cardinal curve passes through its points.
    Canvas k(100, 100);
    Sharp sk(k);
    PenOf pen(kGreen, 3);
    GpPoint through[] = {{10, 80}, {50, 20}, {90, 80}};
    ASSERT_EQ(GdipDrawCurveI(sk.g, pen.p, through, 3), Ok);
    EXPECT_EQ(k.At(50, 20), kGreen);
    EXPECT_EQ(k.At(10, 80), kGreen);
    EXPECT_EQ(k.At(50, 60), 0u);
    GdipDeletePath(p);
}

TEST(GdiplusShapes, ShapesOutsideTheClipAreSkippedButWidePensStillReachIn) {
    Canvas c(120, 120);
    Sharp s(c);
    ASSERT_EQ(GdipSetClipRectI(s.g, 40, 40, 40, 40, CombineModeReplace), Ok);
    // A thin line and a fill far outside: nothing.
    PenOf thin(kRed, 1);
    BrushOf blue(kBlue);
    ASSERT_EQ(GdipDrawLine(s.g, thin.p, -500, 10, -400, 10), Ok);
    ASSERT_EQ(GdipFillRectangle(s.g, blue.b, 500, 500, 20, 20), Ok);
    EXPECT_EQ(c.InkedAll(), 0);
    // A 20-pixel pen whose centre line runs 6 pixels left of the clip: its
    // right half paints inside.
    PenOf wide(kGreen, 20);
    ASSERT_EQ(GdipDrawLine(s.g, wide.p, 34, 0, 34, 120), Ok);
    EXPECT_EQ(RowRuns(c, 60, 40, 80).first, 4);
    // An arrow head wider than its line: the line (4 pixels, y 32 to 36)
    // stays above the clip, the head's base (4 widths, y 26 to 42) reaches in.
    Canvas c2(120, 120);
    Sharp s2(c2);
    ASSERT_EQ(GdipSetClipRectI(s2.g, 0, 40, 120, 80, CombineModeReplace), Ok);
    PenOf arrow(kRed, 4);
    GpAdjustableArrowCap* cap = nullptr;
    ASSERT_EQ(GdipCreateAdjustableArrowCap(6, 4, TRUE, &cap), Ok);
    ASSERT_EQ(GdipSetPenCustomEndCap(arrow.p, cap), Ok);
    ASSERT_EQ(GdipDrawLine(s2.g, arrow.p, 0, 34, 60, 34), Ok);
    GdipDeleteCustomLineCap(cap);
    EXPECT_GT(c2.Inked(0, 40, 120, 44), 0);
}
