// gdiplus_flat.h: our declarations of the GDI+ flat interface that the module
// calls: the opaque object types, the value structs, the enumerations with
// their GDI+ numeric values, and the flat calls. On Windows these bind to
// gdiplus.dll (stdcall, the import library's decorated names); elsewhere the
// platform layer implements them on cairo.
//
// Conventions the drawing code relies on, as in GDI+: angles are degrees,
// clockwise on the screen (y points down); colours are 32-bit ARGB, not
// premultiplied; a world transform call prepends (acts on points before the
// existing transform) unless MatrixOrderAppend is given.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#define WINGDIPAPI WINAPI
#define GDIPCONST const

extern "C" {

typedef float REAL;
typedef DWORD ARGB;            // 0xAARRGGBB, not premultiplied
typedef UINT GraphicsState;    // token of GdipSaveGraphics

// [SECTION] Status
enum GpStatus : int {
    Ok = 0,
    GenericError = 1,
    InvalidParameter = 2,
    OutOfMemory = 3,
    ObjectBusy = 4,
    InsufficientBuffer = 5,
    NotImplemented = 6,
    Win32Error = 7,
    WrongState = 8,
    Aborted = 9,
    FileNotFound = 10,
    ValueOverflow = 11,
    AccessDenied = 12,
    UnknownImageFormat = 13,
    FontFamilyNotFound = 14,
    FontStyleNotFound = 15,
    NotTrueTypeFont = 16,
    UnsupportedGdiplusVersion = 17,
    GdiplusNotInitialized = 18,
    PropertyNotFound = 19,
    PropertyNotSupported = 20,
};

// [SECTION] Start and stop
struct GdiplusStartupInput {
    UINT GdiplusVersion;                 // 1
    void* DebugEventCallback;
    BOOL SuppressBackgroundThread;
    BOOL SuppressExternalCodecs;
};

struct GdiplusStartupOutput {
    void* NotificationHook;
    void* NotificationUnhook;
};

// [SECTION] Opaque objects
// A solid fill is a brush and an arrow cap is a custom cap: the flat interface
// passes the derived object where the base is asked, so each pair is one type.
struct GpGraphics;
struct GpPen;
struct GpBrush;
typedef GpBrush GpSolidFill;
struct GpFont;
struct GpFontFamily;
struct GpFontCollection;
struct GpStringFormat;
struct GpPath;
struct GpMatrix;
struct GpCustomLineCap;
typedef GpCustomLineCap GpAdjustableArrowCap;

// [SECTION] Value structs
struct GpPoint {
    INT X;                               // pixels or world units
    INT Y;
};
struct GpPointF {
    REAL X;
    REAL Y;
};
struct GpRect {
    INT X;
    INT Y;
    INT Width;
    INT Height;
};
struct GpRectF {
    REAL X;
    REAL Y;
    REAL Width;                          // 0 with Height 0: a point, text unbounded
    REAL Height;
};

// [SECTION] Enumerations, GDI+ values
enum Unit : int {
    UnitWorld = 0,
    UnitDisplay = 1,
    UnitPixel = 2,
    UnitPoint = 3,                       // 1/72 inch
    UnitInch = 4,
    UnitDocument = 5,                    // 1/300 inch
    UnitMillimeter = 6,
};
typedef Unit GpUnit;

enum FontStyle : int {
    FontStyleRegular = 0,
    FontStyleBold = 1,
    FontStyleItalic = 2,
    FontStyleBoldItalic = 3,
    FontStyleUnderline = 4,
    FontStyleStrikeout = 8,
};

enum DashStyle : int {
    DashStyleSolid = 0,
    DashStyleDash = 1,                   // 3 on, 1 off, in pen widths
    DashStyleDot = 2,                    // 1 on, 1 off
    DashStyleDashDot = 3,
    DashStyleDashDotDot = 4,
    DashStyleCustom = 5,                 // set by GdipSetPenDashArray
};
typedef DashStyle GpDashStyle;

enum LineCap : int {
    LineCapFlat = 0,
    LineCapSquare = 1,
    LineCapRound = 2,
    LineCapTriangle = 3,
    LineCapNoAnchor = 0x10,
    LineCapSquareAnchor = 0x11,
    LineCapRoundAnchor = 0x12,
    LineCapDiamondAnchor = 0x13,
    LineCapArrowAnchor = 0x14,
    LineCapCustom = 0xff,
};
typedef LineCap GpLineCap;

enum LineJoin : int {
    LineJoinMiter = 0,
    LineJoinBevel = 1,
    LineJoinRound = 2,
    LineJoinMiterClipped = 3,
};
typedef LineJoin GpLineJoin;

enum SmoothingMode : int {
    SmoothingModeInvalid = -1,
    SmoothingModeDefault = 0,
    SmoothingModeHighSpeed = 1,
    SmoothingModeHighQuality = 2,
    SmoothingModeNone = 3,
    SmoothingModeAntiAlias = 4,
};

enum PixelOffsetMode : int {
    PixelOffsetModeInvalid = -1,
    PixelOffsetModeDefault = 0,
    PixelOffsetModeHighSpeed = 1,
    PixelOffsetModeHighQuality = 2,
    PixelOffsetModeNone = 3,
    PixelOffsetModeHalf = 4,
};

enum TextRenderingHint : int {
    TextRenderingHintSystemDefault = 0,
    TextRenderingHintSingleBitPerPixelGridFit = 1,
    TextRenderingHintSingleBitPerPixel = 2,
    TextRenderingHintAntiAliasGridFit = 3,
    TextRenderingHintAntiAlias = 4,
    TextRenderingHintClearTypeGridFit = 5,
};

enum StringAlignment : int {
    StringAlignmentNear = 0,             // left, or top for the line alignment
    StringAlignmentCenter = 1,
    StringAlignmentFar = 2,              // right, or bottom
};

enum StringFormatFlags : int {
    StringFormatFlagsDirectionRightToLeft = 0x0001,
    StringFormatFlagsDirectionVertical = 0x0002,
    StringFormatFlagsNoFitBlackBox = 0x0004,
    StringFormatFlagsDisplayFormatControl = 0x0020,
    StringFormatFlagsNoFontFallback = 0x0400,
    StringFormatFlagsMeasureTrailingSpaces = 0x0800,
    StringFormatFlagsNoWrap = 0x1000,
    StringFormatFlagsLineLimit = 0x2000,
    StringFormatFlagsNoClip = 0x4000,
};

enum FillMode : int {
    FillModeAlternate = 0,               // even-odd
    FillModeWinding = 1,
};
typedef FillMode GpFillMode;

enum MatrixOrder : int {
    MatrixOrderPrepend = 0,              // the new operation acts first on points
    MatrixOrderAppend = 1,               // the new operation acts last
};
typedef MatrixOrder GpMatrixOrder;

enum CombineMode : int {
    CombineModeReplace = 0,
    CombineModeIntersect = 1,
    CombineModeUnion = 2,
    CombineModeXor = 3,
    CombineModeExclude = 4,
    CombineModeComplement = 5,
};

enum FlushIntention : int {
    FlushIntentionFlush = 0,             // queue the pending drawing
    FlushIntentionSync = 1,              // and wait until it is on the surface
};
typedef FlushIntention GpFlushIntention;

// [SECTION] Flat calls
GpStatus WINGDIPAPI GdiplusStartup(ULONG_PTR* token, const GdiplusStartupInput* input, GdiplusStartupOutput* output);
void WINGDIPAPI GdiplusShutdown(ULONG_PTR token);

void* WINGDIPAPI GdipAlloc(size_t size);
void WINGDIPAPI GdipFree(void* ptr);

// Graphics object
GpStatus WINGDIPAPI GdipCreateFromHDC(HDC hdc, GpGraphics** graphics);
GpStatus WINGDIPAPI GdipDeleteGraphics(GpGraphics* graphics);
GpStatus WINGDIPAPI GdipGraphicsClear(GpGraphics* graphics, ARGB color);
GpStatus WINGDIPAPI GdipSetSmoothingMode(GpGraphics* graphics, SmoothingMode smoothingMode);
GpStatus WINGDIPAPI GdipGetSmoothingMode(GpGraphics* graphics, SmoothingMode* smoothingMode);
GpStatus WINGDIPAPI GdipSetPixelOffsetMode(GpGraphics* graphics, PixelOffsetMode pixelOffsetMode);
GpStatus WINGDIPAPI GdipSetTextRenderingHint(GpGraphics* graphics, TextRenderingHint mode);
GpStatus WINGDIPAPI GdipSaveGraphics(GpGraphics* graphics, GraphicsState* state);
GpStatus WINGDIPAPI GdipRestoreGraphics(GpGraphics* graphics, GraphicsState state);
GpStatus WINGDIPAPI GdipFlush(GpGraphics* graphics, GpFlushIntention intention);

// World transform and matrices
GpStatus WINGDIPAPI GdipResetWorldTransform(GpGraphics* graphics);
GpStatus WINGDIPAPI GdipScaleWorldTransform(GpGraphics* graphics, REAL sx, REAL sy, GpMatrixOrder order);
GpStatus WINGDIPAPI GdipTranslateWorldTransform(GpGraphics* graphics, REAL dx, REAL dy, GpMatrixOrder order);
GpStatus WINGDIPAPI GdipRotateWorldTransform(GpGraphics* graphics, REAL angle, GpMatrixOrder order);
GpStatus WINGDIPAPI GdipSetWorldTransform(GpGraphics* graphics, GpMatrix* matrix);
GpStatus WINGDIPAPI GdipGetWorldTransform(GpGraphics* graphics, GpMatrix* matrix);
GpStatus WINGDIPAPI GdipMultiplyWorldTransform(GpGraphics* graphics, GDIPCONST GpMatrix* matrix, GpMatrixOrder order);
GpStatus WINGDIPAPI GdipCreateMatrix(GpMatrix** matrix);
GpStatus WINGDIPAPI GdipCreateMatrix2(REAL m11, REAL m12, REAL m21, REAL m22, REAL dx, REAL dy, GpMatrix** matrix);
GpStatus WINGDIPAPI GdipDeleteMatrix(GpMatrix* matrix);
GpStatus WINGDIPAPI GdipGetMatrixElements(GDIPCONST GpMatrix* matrix, REAL* matrixOut);  // 6 values
GpStatus WINGDIPAPI GdipTransformMatrixPoints(GpMatrix* matrix, GpPointF* pts, INT count);

// Clip
GpStatus WINGDIPAPI GdipSetClipPath(GpGraphics* graphics, GpPath* path, CombineMode combineMode);
GpStatus WINGDIPAPI GdipSetClipRect(GpGraphics* graphics, REAL x, REAL y, REAL width, REAL height, CombineMode combineMode);
GpStatus WINGDIPAPI GdipSetClipRectI(GpGraphics* graphics, INT x, INT y, INT width, INT height, CombineMode combineMode);
GpStatus WINGDIPAPI GdipResetClip(GpGraphics* graphics);

// Paths
GpStatus WINGDIPAPI GdipCreatePath(GpFillMode brushMode, GpPath** path);
GpStatus WINGDIPAPI GdipDeletePath(GpPath* path);
GpStatus WINGDIPAPI GdipResetPath(GpPath* path);
GpStatus WINGDIPAPI GdipGetPointCount(GpPath* path, INT* count);
GpStatus WINGDIPAPI GdipStartPathFigure(GpPath* path);
GpStatus WINGDIPAPI GdipClosePathFigure(GpPath* path);
GpStatus WINGDIPAPI GdipAddPathLine(GpPath* path, REAL x1, REAL y1, REAL x2, REAL y2);
GpStatus WINGDIPAPI GdipAddPathLineI(GpPath* path, INT x1, INT y1, INT x2, INT y2);
GpStatus WINGDIPAPI GdipAddPathLine2I(GpPath* path, GDIPCONST GpPoint* points, INT count);
GpStatus WINGDIPAPI GdipAddPathArc(GpPath* path, REAL x, REAL y, REAL width, REAL height, REAL startAngle, REAL sweepAngle);
GpStatus WINGDIPAPI GdipAddPathArcI(GpPath* path, INT x, INT y, INT width, INT height, REAL startAngle, REAL sweepAngle);
GpStatus WINGDIPAPI GdipAddPathBezierI(GpPath* path, INT x1, INT y1, INT x2, INT y2, INT x3, INT y3, INT x4, INT y4);
GpStatus WINGDIPAPI GdipAddPathCurveI(GpPath* path, GDIPCONST GpPoint* points, INT count);
GpStatus WINGDIPAPI GdipAddPathRectangle(GpPath* path, REAL x, REAL y, REAL width, REAL height);
GpStatus WINGDIPAPI GdipAddPathRectangleI(GpPath* path, INT x, INT y, INT width, INT height);
GpStatus WINGDIPAPI GdipAddPathEllipse(GpPath* path, REAL x, REAL y, REAL width, REAL height);
GpStatus WINGDIPAPI GdipAddPathEllipseI(GpPath* path, INT x, INT y, INT width, INT height);
GpStatus WINGDIPAPI GdipAddPathPolygonI(GpPath* path, GDIPCONST GpPoint* points, INT count);
GpStatus WINGDIPAPI GdipAddPathPieI(GpPath* path, INT x, INT y, INT width, INT height, REAL startAngle, REAL sweepAngle);

// Pens and line caps
GpStatus WINGDIPAPI GdipCreatePen1(ARGB color, REAL width, GpUnit unit, GpPen** pen);
GpStatus WINGDIPAPI GdipDeletePen(GpPen* pen);
GpStatus WINGDIPAPI GdipSetPenColor(GpPen* pen, ARGB argb);
GpStatus WINGDIPAPI GdipSetPenWidth(GpPen* pen, REAL width);
GpStatus WINGDIPAPI GdipSetPenDashStyle(GpPen* pen, GpDashStyle dashstyle);
GpStatus WINGDIPAPI GdipSetPenDashArray(GpPen* pen, GDIPCONST REAL* dash, INT count);
GpStatus WINGDIPAPI GdipSetPenLineJoin(GpPen* pen, GpLineJoin lineJoin);
GpStatus WINGDIPAPI GdipSetPenStartCap(GpPen* pen, GpLineCap startCap);
GpStatus WINGDIPAPI GdipSetPenEndCap(GpPen* pen, GpLineCap endCap);
GpStatus WINGDIPAPI GdipSetPenCustomStartCap(GpPen* pen, GpCustomLineCap* customCap);
GpStatus WINGDIPAPI GdipSetPenCustomEndCap(GpPen* pen, GpCustomLineCap* customCap);
GpStatus WINGDIPAPI GdipCreateAdjustableArrowCap(REAL height, REAL width, BOOL isFilled, GpAdjustableArrowCap** cap);
GpStatus WINGDIPAPI GdipDeleteCustomLineCap(GpCustomLineCap* customCap);

// Brushes
GpStatus WINGDIPAPI GdipCreateSolidFill(ARGB color, GpSolidFill** brush);
GpStatus WINGDIPAPI GdipSetSolidFillColor(GpSolidFill* brush, ARGB color);
GpStatus WINGDIPAPI GdipCloneBrush(GpBrush* brush, GpBrush** cloneBrush);
GpStatus WINGDIPAPI GdipDeleteBrush(GpBrush* brush);

// Shapes
GpStatus WINGDIPAPI GdipDrawLine(GpGraphics* graphics, GpPen* pen, REAL x1, REAL y1, REAL x2, REAL y2);
GpStatus WINGDIPAPI GdipDrawLineI(GpGraphics* graphics, GpPen* pen, INT x1, INT y1, INT x2, INT y2);
GpStatus WINGDIPAPI GdipDrawLines(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPointF* points, INT count);
GpStatus WINGDIPAPI GdipDrawLinesI(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPoint* points, INT count);
GpStatus WINGDIPAPI GdipDrawArc(GpGraphics* graphics, GpPen* pen, REAL x, REAL y, REAL width, REAL height, REAL startAngle, REAL sweepAngle);
GpStatus WINGDIPAPI GdipDrawArcI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height, REAL startAngle, REAL sweepAngle);
GpStatus WINGDIPAPI GdipDrawBezierI(GpGraphics* graphics, GpPen* pen, INT x1, INT y1, INT x2, INT y2, INT x3, INT y3, INT x4, INT y4);
GpStatus WINGDIPAPI GdipDrawCurveI(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPoint* points, INT count);
GpStatus WINGDIPAPI GdipDrawRectangle(GpGraphics* graphics, GpPen* pen, REAL x, REAL y, REAL width, REAL height);
GpStatus WINGDIPAPI GdipDrawRectangleI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height);
GpStatus WINGDIPAPI GdipDrawEllipse(GpGraphics* graphics, GpPen* pen, REAL x, REAL y, REAL width, REAL height);
GpStatus WINGDIPAPI GdipDrawEllipseI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height);
GpStatus WINGDIPAPI GdipDrawPieI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height, REAL startAngle, REAL sweepAngle);
GpStatus WINGDIPAPI GdipDrawPolygon(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPointF* points, INT count);
GpStatus WINGDIPAPI GdipDrawPolygonI(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPoint* points, INT count);
GpStatus WINGDIPAPI GdipDrawPath(GpGraphics* graphics, GpPen* pen, GpPath* path);
GpStatus WINGDIPAPI GdipFillRectangle(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height);
GpStatus WINGDIPAPI GdipFillRectangleI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width, INT height);
GpStatus WINGDIPAPI GdipFillEllipse(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height);
GpStatus WINGDIPAPI GdipFillEllipseI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width, INT height);
GpStatus WINGDIPAPI GdipFillPieI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width, INT height, REAL startAngle, REAL sweepAngle);
GpStatus WINGDIPAPI GdipFillPolygon(GpGraphics* graphics, GpBrush* brush, GDIPCONST GpPointF* points, INT count, GpFillMode fillMode);
GpStatus WINGDIPAPI GdipFillPolygonI(GpGraphics* graphics, GpBrush* brush, GDIPCONST GpPoint* points, INT count, GpFillMode fillMode);
GpStatus WINGDIPAPI GdipFillPath(GpGraphics* graphics, GpBrush* brush, GpPath* path);

// Text
GpStatus WINGDIPAPI GdipCreateFontFamilyFromName(GDIPCONST WCHAR* name, GpFontCollection* fontCollection, GpFontFamily** fontFamily);
GpStatus WINGDIPAPI GdipGetGenericFontFamilySansSerif(GpFontFamily** nativeFamily);
GpStatus WINGDIPAPI GdipGetGenericFontFamilyMonospace(GpFontFamily** nativeFamily);
GpStatus WINGDIPAPI GdipDeleteFontFamily(GpFontFamily* fontFamily);
GpStatus WINGDIPAPI GdipCreateFont(GDIPCONST GpFontFamily* fontFamily, REAL emSize, INT style, Unit unit, GpFont** font);
GpStatus WINGDIPAPI GdipDeleteFont(GpFont* font);
GpStatus WINGDIPAPI GdipGetFontSize(GpFont* font, REAL* size);
GpStatus WINGDIPAPI GdipGetFontHeight(GDIPCONST GpFont* font, GDIPCONST GpGraphics* graphics, REAL* height);
GpStatus WINGDIPAPI GdipCreateStringFormat(INT formatAttributes, LANGID language, GpStringFormat** format);
GpStatus WINGDIPAPI GdipStringFormatGetGenericTypographic(GpStringFormat** format);
GpStatus WINGDIPAPI GdipDeleteStringFormat(GpStringFormat* format);
GpStatus WINGDIPAPI GdipSetStringFormatFlags(GpStringFormat* format, INT flags);
GpStatus WINGDIPAPI GdipSetStringFormatAlign(GpStringFormat* format, StringAlignment align);
GpStatus WINGDIPAPI GdipSetStringFormatLineAlign(GpStringFormat* format, StringAlignment align);
GpStatus WINGDIPAPI GdipDrawString(GpGraphics* graphics, GDIPCONST WCHAR* string, INT length, GDIPCONST GpFont* font,
                                   GDIPCONST GpRectF* layoutRect, GDIPCONST GpStringFormat* stringFormat,
                                   GDIPCONST GpBrush* brush);
GpStatus WINGDIPAPI GdipMeasureString(GpGraphics* graphics, GDIPCONST WCHAR* string, INT length, GDIPCONST GpFont* font,
                                      GDIPCONST GpRectF* layoutRect, GDIPCONST GpStringFormat* stringFormat,
                                      GpRectF* boundingBox, INT* codepointsFitted, INT* linesFilled);

}  // extern "C"
