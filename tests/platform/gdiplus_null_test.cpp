// Every flat call given null or bad arguments returns a status and draws
// nothing, as GDI+ does; none may crash.
#include "platform/canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using test_canvas::Canvas;

TEST(GdiplusArguments, NullObjectsGiveInvalidParameter) {
    GpPoint pts[3] = {{0, 0}, {5, 0}, {0, 5}};
    GpPointF ptf[3] = {{0, 0}, {5, 0}, {0, 5}};
    GpRectF rect{0, 0, 10, 10};
    GpRectF out{};
    REAL dash[2] = {1, 1};
    REAL elements[6];
    const WCHAR text[] = {'A', 0};
    GpGraphics* g = nullptr;
    GpPen* pen = nullptr;
    GpBrush* brush = nullptr;
    GpPath* path = nullptr;
    GpFont* font = nullptr;
    GpFontFamily* family = nullptr;
    GpStringFormat* format = nullptr;
    GpMatrix* matrix = nullptr;
    GpCustomLineCap* cap = nullptr;
    GraphicsState state = 0;
    SmoothingMode mode{};
    INT count = 0;

    const GpStatus statuses[] = {
        GdiplusStartup(nullptr, nullptr, nullptr),
        GdipCreateFromHDC(nullptr, &g),
        GdipCreateFromHDC(nullptr, nullptr),
        GdipDeleteGraphics(nullptr),
        GdipGraphicsClear(nullptr, 0),
        GdipSetSmoothingMode(nullptr, SmoothingModeAntiAlias),
        GdipGetSmoothingMode(nullptr, &mode),
        GdipSetPixelOffsetMode(nullptr, PixelOffsetModeHalf),
        GdipSetTextRenderingHint(nullptr, TextRenderingHintAntiAlias),
        GdipSaveGraphics(nullptr, &state),
        GdipRestoreGraphics(nullptr, 1),
        GdipResetWorldTransform(nullptr),
        GdipScaleWorldTransform(nullptr, 2, 2, MatrixOrderPrepend),
        GdipTranslateWorldTransform(nullptr, 1, 1, MatrixOrderPrepend),
        GdipRotateWorldTransform(nullptr, 10, MatrixOrderPrepend),
        GdipSetWorldTransform(nullptr, nullptr),
        GdipGetWorldTransform(nullptr, nullptr),
        GdipMultiplyWorldTransform(nullptr, nullptr, MatrixOrderPrepend),
        GdipCreateMatrix(nullptr),
        GdipCreateMatrix2(1, 0, 0, 1, 0, 0, nullptr),
        GdipDeleteMatrix(nullptr),
        GdipGetMatrixElements(nullptr, elements),
        GdipTransformMatrixPoints(nullptr, ptf, 1),
        GdipSetClipPath(nullptr, nullptr, CombineModeReplace),
        GdipSetClipRect(nullptr, 0, 0, 1, 1, CombineModeReplace),
        GdipSetClipRectI(nullptr, 0, 0, 1, 1, CombineModeReplace),
        GdipResetClip(nullptr),
        GdipCreatePath(FillModeAlternate, nullptr),
        GdipDeletePath(nullptr),
        GdipResetPath(nullptr),
        GdipGetPointCount(nullptr, &count),
        GdipStartPathFigure(nullptr),
        GdipClosePathFigure(nullptr),
        GdipAddPathLine(nullptr, 0, 0, 1, 1),
        GdipAddPathLineI(nullptr, 0, 0, 1, 1),
        GdipAddPathLine2I(nullptr, pts, 3),
        GdipAddPathArc(nullptr, 0, 0, 10, 10, 0, 90),
        GdipAddPathArcI(nullptr, 0, 0, 10, 10, 0, 90),
        GdipAddPathBezierI(nullptr, 0, 0, 1, 1, 2, 2, 3, 3),
        GdipAddPathCurveI(nullptr, pts, 3),
        GdipAddPathRectangle(nullptr, 0, 0, 1, 1),
        GdipAddPathRectangleI(nullptr, 0, 0, 1, 1),
        GdipAddPathEllipse(nullptr, 0, 0, 1, 1),
        GdipAddPathEllipseI(nullptr, 0, 0, 1, 1),
        GdipAddPathPolygonI(nullptr, pts, 3),
        GdipAddPathPieI(nullptr, 0, 0, 10, 10, 0, 90),
        GdipCreatePen1(0, 1, UnitWorld, nullptr),
        GdipDeletePen(nullptr),
        GdipSetPenColor(nullptr, 0),
        GdipSetPenWidth(nullptr, 1),
        GdipSetPenDashStyle(nullptr, DashStyleDash),
        GdipSetPenDashArray(nullptr, dash, 2),
        GdipSetPenLineJoin(nullptr, LineJoinRound),
        GdipSetPenStartCap(nullptr, LineCapRound),
        GdipSetPenEndCap(nullptr, LineCapRound),
        GdipSetPenCustomStartCap(nullptr, nullptr),
        GdipSetPenCustomEndCap(nullptr, nullptr),
        GdipCreateAdjustableArrowCap(3, 3, TRUE, nullptr),
        GdipDeleteCustomLineCap(nullptr),
        GdipCreateSolidFill(0, nullptr),
        GdipSetSolidFillColor(nullptr, 0),
        GdipCloneBrush(nullptr, &brush),
        GdipCloneBrush(nullptr, nullptr),
        GdipDeleteBrush(nullptr),
        GdipDrawLine(nullptr, nullptr, 0, 0, 1, 1),
        GdipDrawLineI(nullptr, nullptr, 0, 0, 1, 1),
        GdipDrawLines(nullptr, nullptr, ptf, 3),
        GdipDrawLinesI(nullptr, nullptr, pts, 3),
        GdipDrawArc(nullptr, nullptr, 0, 0, 10, 10, 0, 90),
        GdipDrawArcI(nullptr, nullptr, 0, 0, 10, 10, 0, 90),
        GdipDrawBezierI(nullptr, nullptr, 0, 0, 1, 1, 2, 2, 3, 3),
        GdipDrawCurveI(nullptr, nullptr, pts, 3),
        GdipDrawRectangle(nullptr, nullptr, 0, 0, 1, 1),
        GdipDrawRectangleI(nullptr, nullptr, 0, 0, 1, 1),
        GdipDrawEllipse(nullptr, nullptr, 0, 0, 1, 1),
        GdipDrawEllipseI(nullptr, nullptr, 0, 0, 1, 1),
        GdipDrawPieI(nullptr, nullptr, 0, 0, 10, 10, 0, 90),
        GdipDrawPolygon(nullptr, nullptr, ptf, 3),
        GdipDrawPolygonI(nullptr, nullptr, pts, 3),
        GdipDrawPath(nullptr, nullptr, nullptr),
        GdipFillRectangle(nullptr, nullptr, 0, 0, 1, 1),
        GdipFillRectangleI(nullptr, nullptr, 0, 0, 1, 1),
        GdipFillEllipse(nullptr, nullptr, 0, 0, 1, 1),
        GdipFillEllipseI(nullptr, nullptr, 0, 0, 1, 1),
        GdipFillPieI(nullptr, nullptr, 0, 0, 10, 10, 0, 90),
        GdipFillPolygon(nullptr, nullptr, ptf, 3, FillModeAlternate),
        GdipFillPolygonI(nullptr, nullptr, pts, 3, FillModeAlternate),
        GdipFillPath(nullptr, nullptr, nullptr),
        GdipCreateFontFamilyFromName(nullptr, nullptr, &family),
        GdipCreateFontFamilyFromName(text, nullptr, nullptr),
        GdipGetGenericFontFamilySansSerif(nullptr),
        GdipGetGenericFontFamilyMonospace(nullptr),
        GdipDeleteFontFamily(nullptr),
        GdipCreateFont(nullptr, 10, 0, UnitPixel, &font),
        GdipCreateFont(nullptr, 10, 0, UnitPixel, nullptr),
        GdipDeleteFont(nullptr),
        GdipGetFontSize(nullptr, elements),
        GdipGetFontHeight(nullptr, nullptr, elements),
        GdipCreateStringFormat(0, 0, nullptr),
        GdipStringFormatGetGenericTypographic(nullptr),
        GdipDeleteStringFormat(nullptr),
        GdipSetStringFormatFlags(nullptr, 0),
        GdipSetStringFormatAlign(nullptr, StringAlignmentCenter),
        GdipSetStringFormatLineAlign(nullptr, StringAlignmentCenter),
        GdipDrawString(nullptr, text, -1, nullptr, &rect, nullptr, nullptr),
        GdipDrawString(nullptr, nullptr, -1, nullptr, nullptr, nullptr, nullptr),
        GdipMeasureString(nullptr, text, -1, nullptr, &rect, nullptr, &out, nullptr, nullptr),
        GdipMeasureString(nullptr, nullptr, -1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
    };
    for (size_t i = 0; i < std::size(statuses); ++i) EXPECT_EQ(statuses[i], InvalidParameter) << "call " << i;
    // Outputs are cleared, never left pointing at garbage.
    EXPECT_EQ(g, nullptr);
    EXPECT_EQ(family, nullptr);
    EXPECT_EQ(font, nullptr);
    EXPECT_EQ(brush, nullptr);
    (void)pen, (void)path, (void)format, (void)matrix, (void)cap;
}

TEST(GdiplusArguments, LiveObjectsWithBadPartsGiveInvalidParameterAndDrawNothing) {
    Canvas c(50, 50);
    GpGraphics* g = nullptr;
    ASSERT_EQ(GdipCreateFromHDC(c.hdc(), &g), Ok);
    GpPen* pen = nullptr;
    GpSolidFill* brush = nullptr;
    GpPath* path = nullptr;
    ASSERT_EQ(GdipCreatePen1(0xFFFFFFFF, 1, UnitWorld, &pen), Ok);
    ASSERT_EQ(GdipCreateSolidFill(0xFFFFFFFF, &brush), Ok);
    ASSERT_EQ(GdipCreatePath(FillModeAlternate, &path), Ok);
    GpPoint pts[2] = {{0, 0}, {5, 5}};
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    REAL bad_dash[2] = {1, -1};
    GpPen* refused_pen = pen;     // failed creates must clear these
    GpPath* refused_path = path;

    const GpStatus statuses[] = {
        // A graphics call given the wrong kind of object.
        GdipDrawLineI(g, reinterpret_cast<GpPen*>(brush), 0, 0, 10, 10),
        GdipFillRectangleI(g, reinterpret_cast<GpBrush*>(pen), 0, 0, 10, 10),
        GdipDrawPath(g, pen, reinterpret_cast<GpPath*>(brush)),
        // Null or short point arrays.
        GdipDrawLinesI(g, pen, nullptr, 3),
        GdipDrawLinesI(g, pen, pts, 1),
        GdipDrawLinesI(g, pen, pts, -5),
        GdipDrawPolygonI(g, pen, pts, 0),
        GdipFillPolygonI(g, brush, nullptr, 3, FillModeAlternate),
        GdipFillPolygonI(g, brush, pts, 2, static_cast<FillMode>(7)),
        GdipAddPathPolygonI(path, pts, 2),
        GdipAddPathCurveI(path, pts, 1),
        // Numbers that are not numbers.
        GdipDrawLine(g, pen, nan, 0, 10, 10),
        GdipFillRectangle(g, brush, 0, inf, 10, 10),
        GdipDrawArc(g, pen, 0, 0, 10, 10, nan, 90),
        GdipDrawArcI(g, pen, 0, 0, 0, 10, 0, 90),
        GdipScaleWorldTransform(g, nan, 1, MatrixOrderPrepend),
        GdipRotateWorldTransform(g, inf, MatrixOrderAppend),
        GdipTranslateWorldTransform(g, 1, 1, static_cast<MatrixOrder>(9)),
        GdipCreatePen1(0, nan, UnitWorld, &refused_pen),
        GdipSetPenWidth(pen, -2),
        GdipSetPenDashArray(pen, bad_dash, 2),
        GdipSetPenDashArray(pen, bad_dash, 0),
        // Enumerations out of range.
        GdipSetSmoothingMode(g, static_cast<SmoothingMode>(42)),
        GdipSetPixelOffsetMode(g, static_cast<PixelOffsetMode>(-7)),
        GdipSetTextRenderingHint(g, static_cast<TextRenderingHint>(99)),
        GdipSetPenDashStyle(pen, static_cast<DashStyle>(6)),
        GdipSetPenEndCap(pen, static_cast<LineCap>(0x15)),
        GdipSetClipPath(g, path, static_cast<CombineMode>(11)),
        GdipCreatePath(static_cast<FillMode>(3), &refused_path),
    };
    for (size_t i = 0; i < std::size(statuses); ++i) EXPECT_EQ(statuses[i], InvalidParameter) << "call " << i;
    EXPECT_EQ(c.InkedAll(), 0);
    EXPECT_EQ(refused_pen, nullptr);
    EXPECT_EQ(refused_path, nullptr);
    GdipDeletePath(path);
    GdipDeleteBrush(brush);
    GdipDeletePen(pen);
    GdipDeleteGraphics(g);
}

TEST(GdiplusArguments, DeviceContextsAreCheckedBeforeUse) {
    Canvas c(20, 20);
    GpGraphics* g = reinterpret_cast<GpGraphics*>(&c);  // must be overwritten
    OrbDeviceContext bad = c.dc;
    bad.magic = 0x12345678;
    EXPECT_EQ(GdipCreateFromHDC(&bad, &g), InvalidParameter);
    EXPECT_EQ(g, nullptr);
    bad = c.dc;
    bad.pixels = nullptr;
    EXPECT_EQ(GdipCreateFromHDC(&bad, &g), InvalidParameter);
    bad = c.dc;
    bad.width = 0;
    EXPECT_EQ(GdipCreateFromHDC(&bad, &g), InvalidParameter);
    bad = c.dc;
    bad.stride_bytes = 4 * 20 - 4;  // rows overlapping
    EXPECT_EQ(GdipCreateFromHDC(&bad, &g), InvalidParameter);
    bad = c.dc;
    bad.height = -3;
    EXPECT_EQ(GdipCreateFromHDC(&bad, &g), InvalidParameter);
    // A good one works.
    ASSERT_EQ(GdipCreateFromHDC(c.hdc(), &g), Ok);
    EXPECT_EQ(GdipGraphicsClear(g, 0xFF102030), Ok);
    EXPECT_EQ(c.At(19, 19), 0xFF102030u);
    EXPECT_EQ(GdipDeleteGraphics(g), Ok);
    // Restoring a state never saved changes nothing.
    ASSERT_EQ(GdipCreateFromHDC(c.hdc(), &g), Ok);
    EXPECT_EQ(GdipRestoreGraphics(g, 7), Ok);
    // Nested saves beyond the limit are refused, not overflowed.
    GraphicsState st = 0;
    GpStatus last = Ok;
    for (int i = 0; i < 100 && last == Ok; ++i) last = GdipSaveGraphics(g, &st);
    EXPECT_EQ(last, OutOfMemory);
    EXPECT_EQ(GdipRestoreGraphics(g, 1), Ok);
    EXPECT_EQ(GdipDeleteGraphics(g), Ok);
}
