// gdiplus_shapes.cpp: pens, brushes, line caps, and the outline and fill
// calls, stroked and filled on cairo.
//
// [SECTION] Stroke and fill
// [SECTION] Pens and caps
// [SECTION] Brushes
// [SECTION] Outlines
// [SECTION] Fills
//
// Every shape is first built into a point list (the same one a path object
// holds), then stroked or filled by one routine. Pen widths and dash patterns
// are in world units and turn with the world transform, as in GDI+; a pen
// thinner than one device pixel draws one pixel wide. Dash lengths are in pen
// widths. Caps other than flat, square and round are drawn as figures at the
// open ends of each figure, turned along the end's direction.
#include "gdiplus_internal.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace gdip {

int PenDashes(const GpPen& pen, double width, std::array<double, kMaxDashCount>& out) {
    static constexpr double kDash[] = {3, 1};
    static constexpr double kDot[] = {1, 1};
    static constexpr double kDashDot[] = {3, 1, 1, 1};
    static constexpr double kDashDotDot[] = {3, 1, 1, 1, 1, 1};
    const double* pattern = nullptr;
    int count = 0;
    switch (pen.dash_style) {
        case DashStyleDash: pattern = kDash; count = 2; break;
        case DashStyleDot: pattern = kDot; count = 2; break;
        case DashStyleDashDot: pattern = kDashDot; count = 4; break;
        case DashStyleDashDotDot: pattern = kDashDotDot; count = 6; break;
        case DashStyleCustom: pattern = pen.dashes.data(); count = pen.dash_count; break;
        default: return 0;
    }
    if (count <= 0 || count > kMaxDashCount) return count == 0 ? 0 : -1;
    for (int i = 0; i < count; ++i) out[i] = pattern[i] * width;
    return count;
}

namespace {

// One scratch list for the shape calls: no allocation per call once warm.
GpPath g_scratch;

GpPath& Scratch() {
    PathReset(g_scratch, FillModeAlternate);
    return g_scratch;
}

// Pen width in world units that draws at least one device pixel.
double EffectiveWidth(const GpGraphics& g, const GpPen& pen) {
    double scale = LinearScale(g.world);
    double w = pen.width;
    if (scale > 0 && w * scale < 1.0) w = 1.0 / scale;
    return w;
}

void SetDashes(cairo_t* cr, const GpPen& pen, double width) {
    std::array<double, kMaxDashCount> scaled{};
    int count = PenDashes(pen, width, scaled);
    cairo_set_dash(cr, count > 0 ? scaled.data() : nullptr, std::max(count, 0), 0);
}

// The open ends of a point list: position and outward unit direction.
struct OpenEnd {
    double x, y;    // the end point
    double ux, uy;  // unit direction pointing out of the line
};

// Direction from point (px, py) to (x, y), or false if they coincide.
bool Direction(double px, double py, double x, double y, double& ux, double& uy) {
    double dx = x - px, dy = y - py;
    double len = std::hypot(dx, dy);
    if (!(len > 1e-9)) return false;
    ux = dx / len;
    uy = dy / len;
    return true;
}

// Draws one cap figure at an open end, in world units.
void DrawCap(cairo_t* cr, LineCap cap, const GpCustomLineCap& custom, const OpenEnd& end, double width) {
    double ux = end.ux, uy = end.uy;
    double nx = -uy, ny = ux;  // normal
    auto at = [&](double along, double across, bool first) {
        double px = end.x + ux * along + nx * across;
        double py = end.y + uy * along + ny * across;
        if (first) cairo_move_to(cr, px, py);
        else cairo_line_to(cr, px, py);
    };
    cairo_new_path(cr);
    switch (cap) {
        case LineCapCustom: {
            double h = custom.height * width, half = custom.width * width / 2;
            if (h <= 0 || half <= 0) return;
            at(0, 0, true);
            at(-h, half, false);
            at(-h, -half, false);
            cairo_close_path(cr);
            if (custom.filled) {
                cairo_fill(cr);
            } else {
                cairo_set_dash(cr, nullptr, 0, 0);
                cairo_stroke(cr);
            }
            return;
        }
        case LineCapTriangle:
            at(0, width / 2, true);
            at(width / 2, 0, false);
            at(0, -width / 2, false);
            cairo_close_path(cr);
            cairo_fill(cr);
            return;
        case LineCapArrowAnchor:
            at(width * 2, 0, true);
            at(-width * 2, width * 2, false);
            at(-width * 2, -width * 2, false);
            cairo_close_path(cr);
            cairo_fill(cr);
            return;
        case LineCapSquareAnchor:
            at(width, width, true);
            at(width, -width, false);
            at(-width, -width, false);
            at(-width, width, false);
            cairo_close_path(cr);
            cairo_fill(cr);
            return;
        case LineCapDiamondAnchor:
            at(width * 1.5, 0, true);
            at(0, width * 1.5, false);
            at(-width * 1.5, 0, false);
            at(0, -width * 1.5, false);
            cairo_close_path(cr);
            cairo_fill(cr);
            return;
        case LineCapRoundAnchor:
            cairo_arc(cr, end.x, end.y, width, 0, 2 * M_PI);
            cairo_fill(cr);
            return;
        default: return;  // flat, square and round are cairo's own
    }
}

// Walks the open figures of a point list and draws the pen's caps at their ends.
void DrawCaps(cairo_t* cr, const GpPen& pen, const GpPath& path, double width) {
    const auto& pts = path.points;
    size_t n = pts.size();
    size_t first = 0;
    while (first < n) {
        size_t last = first;
        while (last + 1 < n && (pts[last + 1].type & kPointTypeMask) != kPointStart) ++last;
        bool closed = false;
        for (size_t i = first; i <= last; ++i) closed = closed || (pts[i].type & kPointClose) != 0;
        if (!closed && last > first) {
            OpenEnd start{pts[first].x, pts[first].y, 0, 0};
            for (size_t i = first + 1; i <= last; ++i) {
                if (Direction(pts[i].x, pts[i].y, start.x, start.y, start.ux, start.uy)) break;
            }
            OpenEnd end{pts[last].x, pts[last].y, 0, 0};
            for (size_t i = last; i-- > first;) {
                if (Direction(pts[i].x, pts[i].y, end.x, end.y, end.ux, end.uy)) break;
            }
            if (start.ux != 0 || start.uy != 0) DrawCap(cr, pen.start_cap, pen.start_custom, start, width);
            if (end.ux != 0 || end.uy != 0) DrawCap(cr, pen.end_cap, pen.end_custom, end, width);
        }
        first = last + 1;
    }
}

bool HasFigureCaps(LineCap cap) { return cap == LineCapTriangle || cap >= LineCapSquareAnchor; }

}  // namespace

// [SECTION] Stroke and fill

namespace {
// The path's points in device pixels, grown by `margin` device pixels each
// way, lie wholly outside the clip. Bezier control points bound their curves.
bool PathOutsideClip(GpGraphics& g, const GpPath& path, double margin) {
    double x1 = 1e300, y1 = 1e300, x2 = -1e300, y2 = -1e300;
    for (const PathPoint& p : path.points) {
        double x = p.x, y = p.y;
        Apply(g.world, x, y);
        x1 = std::min(x1, x);
        y1 = std::min(y1, y);
        x2 = std::max(x2, x);
        y2 = std::max(y2, y);
    }
    if (!(x1 <= x2) || !(y1 <= y2)) return false;  // not finite: let cairo decide
    return OutsideClip(g, x1 - margin, y1 - margin, x2 + margin, y2 + margin);
}
}  // namespace

GpStatus StrokePoints(GpGraphics& g, const GpPen& pen, const GpPath& path) {
    if (path.points.empty()) return Ok;
    // A transform that squeezes one way a million times more than the other
    // draws no outline: cairo's stroker does not come back from such a pen.
    const Affine& m = g.world;
    double squares = m.m11 * m.m11 + m.m12 * m.m12 + m.m21 * m.m21 + m.m22 * m.m22;
    if (!(squares < 1e6 * std::fabs(m.m11 * m.m22 - m.m12 * m.m21))) return Ok;
    // Miter joins, caps and arrow heads reach some pen widths past the points.
    double cap_widths = std::max({pen.start_custom.height, pen.start_custom.width, pen.end_custom.height,
                                  pen.end_custom.width, 0.0});
    double reach = EffectiveWidth(g, pen) * LinearScale(g.world) * (10 + cap_widths) + 2;
    if (PathOutsideClip(g, path, reach)) return Ok;
    double width = EffectiveWidth(g, pen);
    if (!HasFigureCaps(pen.start_cap) && !HasFigureCaps(pen.end_cap) && FastStroke(g, pen, path, width)) return Ok;
    cairo_t* cr = DrawTarget(g);
    cairo_save(cr);
    UseWorldMatrix(g, cr);
    UseColor(cr, pen.color);
    cairo_set_line_width(cr, width);
    cairo_line_cap_t cap = CAIRO_LINE_CAP_BUTT;
    if (pen.start_cap == pen.end_cap && pen.start_cap == LineCapRound) cap = CAIRO_LINE_CAP_ROUND;
    if (pen.start_cap == pen.end_cap && pen.start_cap == LineCapSquare) cap = CAIRO_LINE_CAP_SQUARE;
    cairo_set_line_cap(cr, cap);
    switch (pen.join) {
        case LineJoinBevel: cairo_set_line_join(cr, CAIRO_LINE_JOIN_BEVEL); break;
        case LineJoinRound: cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND); break;
        default: cairo_set_line_join(cr, CAIRO_LINE_JOIN_MITER); break;
    }
    SetDashes(cr, pen, width);
    cairo_new_path(cr);
    AppendToCairo(cr, path);
    cairo_stroke(cr);
    if (HasFigureCaps(pen.start_cap) || HasFigureCaps(pen.end_cap)) DrawCaps(cr, pen, path, width);
    cairo_restore(cr);
    cairo_surface_flush(g.surface);
    return Ok;
}

GpStatus FillPoints(GpGraphics& g, ARGB color, const GpPath& path, FillMode mode) {
    if (path.points.empty()) return Ok;
    if (PathOutsideClip(g, path, 2)) return Ok;
    if (FastFill(g, color, path, mode)) return Ok;
    cairo_t* cr = DrawTarget(g);
    cairo_save(cr);
    UseWorldMatrix(g, cr);
    UseColor(cr, color);
    cairo_set_fill_rule(cr, mode == FillModeWinding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
    cairo_new_path(cr);
    AppendToCairo(cr, path);
    cairo_fill(cr);
    cairo_restore(cr);
    cairo_surface_flush(g.surface);
    return Ok;
}

}  // namespace gdip

using namespace gdip;

namespace {

bool ValidCap(LineCap cap) {
    return (cap >= LineCapFlat && cap <= LineCapTriangle) || (cap >= LineCapNoAnchor && cap <= LineCapArrowAnchor) ||
           cap == LineCapCustom;
}

bool IsCap(const GpCustomLineCap* cap) { return cap != nullptr && cap->tag == Tag::Cap; }

// Integer or float point arrays into the scratch list as one open run.
template <typename P>
GpStatus BuildLines(GpPath& path, const P* points, INT count) {
    if (points == nullptr || count < 2 || count > kMaxCallPoints) return InvalidParameter;
    for (INT i = 0; i < count; ++i) {
        double x = points[i].X, y = points[i].Y;
        if (!std::isfinite(x) || !std::isfinite(y)) return InvalidParameter;
        if (i == 0) path.points.push_back(PathPoint{x, y, kPointStart});
        else path.points.push_back(PathPoint{x, y, kPointLine});
    }
    path.new_figure = false;
    return Ok;
}

template <typename P>
GpStatus BuildPolygon(GpPath& path, const P* points, INT count) {
    if (points == nullptr || count < 2 || count > kMaxCallPoints) return InvalidParameter;
    GpStatus status = BuildLines(path, points, count);
    if (status == Ok) PathClose(path);
    return status;
}

GpStatus Stroke(GpGraphics* graphics, GpPen* pen, GpStatus built, const GpPath& path) {
    if (built != Ok) return built;
    return StrokePoints(*graphics, *pen, path);
}

GpStatus Fill(GpGraphics* graphics, GpBrush* brush, GpStatus built, const GpPath& path, FillMode mode) {
    if (built != Ok) return built;
    return FillPoints(*graphics, brush->color, path, mode);
}

bool Usable(GpGraphics* graphics, GpPen* pen) { return IsGraphics(graphics) && IsPen(pen); }
bool Usable(GpGraphics* graphics, GpBrush* brush) { return IsGraphics(graphics) && IsBrush(brush); }

}  // namespace

extern "C" {

// [SECTION] Pens and caps

GpStatus WINGDIPAPI GdipCreatePen1(ARGB color, REAL width, GpUnit unit, GpPen** pen) {
    if (pen == nullptr) return InvalidParameter;
    *pen = nullptr;
    if (!std::isfinite(width) || width < 0 || unit < UnitWorld || unit > UnitMillimeter || unit == UnitDisplay) {
        return InvalidParameter;
    }
    *pen = new (std::nothrow) GpPen;
    if (*pen == nullptr) return OutOfMemory;
    (*pen)->color = color;
    (*pen)->width = width * UnitToWorld(unit);
    return Ok;
}

GpStatus WINGDIPAPI GdipDeletePen(GpPen* pen) {
    if (!IsPen(pen)) return InvalidParameter;
    pen->tag = Tag::Dead;
    delete pen;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenColor(GpPen* pen, ARGB argb) {
    if (!IsPen(pen)) return InvalidParameter;
    pen->color = argb;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenWidth(GpPen* pen, REAL width) {
    if (!IsPen(pen) || !std::isfinite(width) || width < 0) return InvalidParameter;
    pen->width = width;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenDashStyle(GpPen* pen, GpDashStyle dashstyle) {
    if (!IsPen(pen) || dashstyle < DashStyleSolid || dashstyle > DashStyleCustom) return InvalidParameter;
    if (dashstyle == DashStyleCustom && pen->dash_count == 0) {
        pen->dashes[0] = 1;  // custom without an array: GDI+ keeps a one-on one-off pattern
        pen->dashes[1] = 1;
        pen->dash_count = 2;
    }
    pen->dash_style = dashstyle;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenDashArray(GpPen* pen, GDIPCONST REAL* dash, INT count) {
    if (!IsPen(pen) || dash == nullptr || count <= 0 || count > kMaxDashCount) return InvalidParameter;
    for (INT i = 0; i < count; ++i) {
        if (!std::isfinite(dash[i]) || dash[i] <= 0) return InvalidParameter;
    }
    for (INT i = 0; i < count; ++i) pen->dashes[i] = dash[i];
    pen->dash_count = count;
    pen->dash_style = DashStyleCustom;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenLineJoin(GpPen* pen, GpLineJoin lineJoin) {
    if (!IsPen(pen) || lineJoin < LineJoinMiter || lineJoin > LineJoinMiterClipped) return InvalidParameter;
    pen->join = lineJoin;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenStartCap(GpPen* pen, GpLineCap startCap) {
    if (!IsPen(pen) || !ValidCap(startCap) || startCap == LineCapCustom) return InvalidParameter;
    pen->start_cap = startCap;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenEndCap(GpPen* pen, GpLineCap endCap) {
    if (!IsPen(pen) || !ValidCap(endCap) || endCap == LineCapCustom) return InvalidParameter;
    pen->end_cap = endCap;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenCustomStartCap(GpPen* pen, GpCustomLineCap* customCap) {
    if (!IsPen(pen) || !IsCap(customCap)) return InvalidParameter;
    pen->start_custom = *customCap;
    pen->start_cap = LineCapCustom;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPenCustomEndCap(GpPen* pen, GpCustomLineCap* customCap) {
    if (!IsPen(pen) || !IsCap(customCap)) return InvalidParameter;
    pen->end_custom = *customCap;
    pen->end_cap = LineCapCustom;
    return Ok;
}

GpStatus WINGDIPAPI GdipCreateAdjustableArrowCap(REAL height, REAL width, BOOL isFilled, GpAdjustableArrowCap** cap) {
    if (cap == nullptr) return InvalidParameter;
    *cap = nullptr;
    if (!std::isfinite(height) || !std::isfinite(width)) return InvalidParameter;
    *cap = new (std::nothrow) GpCustomLineCap;
    if (*cap == nullptr) return OutOfMemory;
    (*cap)->height = height;
    (*cap)->width = width;
    (*cap)->filled = isFilled != FALSE;
    return Ok;
}

GpStatus WINGDIPAPI GdipDeleteCustomLineCap(GpCustomLineCap* customCap) {
    if (!IsCap(customCap)) return InvalidParameter;
    customCap->tag = Tag::Dead;
    delete customCap;
    return Ok;
}

// [SECTION] Brushes

GpStatus WINGDIPAPI GdipCreateSolidFill(ARGB color, GpSolidFill** brush) {
    if (brush == nullptr) return InvalidParameter;
    *brush = new (std::nothrow) GpBrush;
    if (*brush == nullptr) return OutOfMemory;
    (*brush)->color = color;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetSolidFillColor(GpSolidFill* brush, ARGB color) {
    if (!IsBrush(brush)) return InvalidParameter;
    brush->color = color;
    return Ok;
}

GpStatus WINGDIPAPI GdipCloneBrush(GpBrush* brush, GpBrush** cloneBrush) {
    if (cloneBrush == nullptr) return InvalidParameter;
    *cloneBrush = nullptr;
    if (!IsBrush(brush)) return InvalidParameter;
    *cloneBrush = new (std::nothrow) GpBrush(*brush);
    return *cloneBrush != nullptr ? Ok : OutOfMemory;
}

GpStatus WINGDIPAPI GdipDeleteBrush(GpBrush* brush) {
    if (!IsBrush(brush)) return InvalidParameter;
    brush->tag = Tag::Dead;
    delete brush;
    return Ok;
}

// [SECTION] Outlines

GpStatus WINGDIPAPI GdipDrawLine(GpGraphics* graphics, GpPen* pen, REAL x1, REAL y1, REAL x2, REAL y2) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, PathAddLine(path, x1, y1, x2, y2), path);
}

GpStatus WINGDIPAPI GdipDrawLineI(GpGraphics* graphics, GpPen* pen, INT x1, INT y1, INT x2, INT y2) {
    return GdipDrawLine(graphics, pen, static_cast<REAL>(x1), static_cast<REAL>(y1), static_cast<REAL>(x2),
                        static_cast<REAL>(y2));
}

GpStatus WINGDIPAPI GdipDrawLines(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPointF* points, INT count) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, BuildLines(path, points, count), path);
}

GpStatus WINGDIPAPI GdipDrawLinesI(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPoint* points, INT count) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, BuildLines(path, points, count), path);
}

GpStatus WINGDIPAPI GdipDrawArc(GpGraphics* graphics, GpPen* pen, REAL x, REAL y, REAL width, REAL height,
                                REAL startAngle, REAL sweepAngle) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, PathAddArc(path, x, y, width, height, startAngle, sweepAngle), path);
}

GpStatus WINGDIPAPI GdipDrawArcI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height,
                                 REAL startAngle, REAL sweepAngle) {
    return GdipDrawArc(graphics, pen, static_cast<REAL>(x), static_cast<REAL>(y), static_cast<REAL>(width),
                       static_cast<REAL>(height), startAngle, sweepAngle);
}

GpStatus WINGDIPAPI GdipDrawBezierI(GpGraphics* graphics, GpPen* pen, INT x1, INT y1, INT x2, INT y2, INT x3, INT y3,
                                    INT x4, INT y4) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    double xy[8] = {double(x1), double(y1), double(x2), double(y2), double(x3), double(y3), double(x4), double(y4)};
    return Stroke(graphics, pen, PathAddBezier(path, xy), path);
}

GpStatus WINGDIPAPI GdipDrawCurveI(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPoint* points, INT count) {
    if (!Usable(graphics, pen) || points == nullptr || count < 2 || count > kMaxCallPoints) return InvalidParameter;
    GpPath& path = Scratch();
    std::vector<double> xy(static_cast<size_t>(count) * 2);
    for (INT i = 0; i < count; ++i) {
        xy[2 * i] = points[i].X;
        xy[2 * i + 1] = points[i].Y;
    }
    return Stroke(graphics, pen, PathAddCurve(path, xy.data(), count, 0.5), path);
}

GpStatus WINGDIPAPI GdipDrawRectangle(GpGraphics* graphics, GpPen* pen, REAL x, REAL y, REAL width, REAL height) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, PathAddRectangle(path, x, y, width, height), path);
}

GpStatus WINGDIPAPI GdipDrawRectangleI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height) {
    return GdipDrawRectangle(graphics, pen, static_cast<REAL>(x), static_cast<REAL>(y), static_cast<REAL>(width),
                             static_cast<REAL>(height));
}

GpStatus WINGDIPAPI GdipDrawEllipse(GpGraphics* graphics, GpPen* pen, REAL x, REAL y, REAL width, REAL height) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, PathAddEllipse(path, x, y, width, height), path);
}

GpStatus WINGDIPAPI GdipDrawEllipseI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height) {
    return GdipDrawEllipse(graphics, pen, static_cast<REAL>(x), static_cast<REAL>(y), static_cast<REAL>(width),
                           static_cast<REAL>(height));
}

GpStatus WINGDIPAPI GdipDrawPieI(GpGraphics* graphics, GpPen* pen, INT x, INT y, INT width, INT height,
                                 REAL startAngle, REAL sweepAngle) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, PathAddPie(path, x, y, width, height, startAngle, sweepAngle), path);
}

GpStatus WINGDIPAPI GdipDrawPolygon(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPointF* points, INT count) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, BuildPolygon(path, points, count), path);
}

GpStatus WINGDIPAPI GdipDrawPolygonI(GpGraphics* graphics, GpPen* pen, GDIPCONST GpPoint* points, INT count) {
    if (!Usable(graphics, pen)) return InvalidParameter;
    GpPath& path = Scratch();
    return Stroke(graphics, pen, BuildPolygon(path, points, count), path);
}

GpStatus WINGDIPAPI GdipDrawPath(GpGraphics* graphics, GpPen* pen, GpPath* path) {
    if (!Usable(graphics, pen) || !IsPath(path)) return InvalidParameter;
    return StrokePoints(*graphics, *pen, *path);
}

// [SECTION] Fills

GpStatus WINGDIPAPI GdipFillRectangle(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height) {
    if (!Usable(graphics, brush)) return InvalidParameter;
    GpPath& path = Scratch();
    return Fill(graphics, brush, PathAddRectangle(path, x, y, width, height), path, FillModeAlternate);
}

GpStatus WINGDIPAPI GdipFillRectangleI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width, INT height) {
    return GdipFillRectangle(graphics, brush, static_cast<REAL>(x), static_cast<REAL>(y), static_cast<REAL>(width),
                             static_cast<REAL>(height));
}

GpStatus WINGDIPAPI GdipFillEllipse(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height) {
    if (!Usable(graphics, brush)) return InvalidParameter;
    GpPath& path = Scratch();
    return Fill(graphics, brush, PathAddEllipse(path, x, y, width, height), path, FillModeAlternate);
}

GpStatus WINGDIPAPI GdipFillEllipseI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width, INT height) {
    return GdipFillEllipse(graphics, brush, static_cast<REAL>(x), static_cast<REAL>(y), static_cast<REAL>(width),
                           static_cast<REAL>(height));
}

GpStatus WINGDIPAPI GdipFillPieI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width, INT height,
                                 REAL startAngle, REAL sweepAngle) {
    if (!Usable(graphics, brush)) return InvalidParameter;
    GpPath& path = Scratch();
    return Fill(graphics, brush, PathAddPie(path, x, y, width, height, startAngle, sweepAngle), path,
                FillModeAlternate);
}

GpStatus WINGDIPAPI GdipFillPolygon(GpGraphics* graphics, GpBrush* brush, GDIPCONST GpPointF* points, INT count,
                                    GpFillMode fillMode) {
    if (!Usable(graphics, brush) || (fillMode != FillModeAlternate && fillMode != FillModeWinding)) {
        return InvalidParameter;
    }
    GpPath& path = Scratch();
    return Fill(graphics, brush, BuildPolygon(path, points, count), path, fillMode);
}

GpStatus WINGDIPAPI GdipFillPolygonI(GpGraphics* graphics, GpBrush* brush, GDIPCONST GpPoint* points, INT count,
                                     GpFillMode fillMode) {
    if (!Usable(graphics, brush) || (fillMode != FillModeAlternate && fillMode != FillModeWinding)) {
        return InvalidParameter;
    }
    GpPath& path = Scratch();
    return Fill(graphics, brush, BuildPolygon(path, points, count), path, fillMode);
}

GpStatus WINGDIPAPI GdipFillPath(GpGraphics* graphics, GpBrush* brush, GpPath* path) {
    if (!Usable(graphics, brush) || !IsPath(path)) return InvalidParameter;
    return FillPoints(*graphics, brush->color, *path, path->fill_mode);
}

}  // extern "C"
