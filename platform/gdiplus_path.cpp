// gdiplus_path.cpp: path objects and the point lists that every shape is built
// into, with GDI+'s rules for joining figures.
//
// [SECTION] Point list building
// [SECTION] Arcs and curves
// [SECTION] Flat path calls
//
// A figure stays open until it is closed or a new one is started: a line,
// arc or bezier added to an open figure is joined to its last point by a
// straight segment, as GDI+ joins them. Rectangles, ellipses, polygons and
// pies are figures of their own, closed. Arcs become beziers of at most a
// quarter turn each, with GDI+'s angles: degrees clockwise from the +x axis,
// measured on the ellipse itself rather than on its unit circle.
#include "gdiplus_internal.h"

#include <cmath>
#include <new>

namespace gdip {

// [SECTION] Point list building

namespace {

bool Finite(const double* v, int n) {
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(v[i])) return false;
    }
    return true;
}

bool Room(const GpPath& path, int more) {
    return static_cast<long long>(path.points.size()) + more <= kMaxPathPoints;
}

void Push(GpPath& path, double x, double y, uint8_t type) { path.points.push_back(PathPoint{x, y, type}); }

// The first point of a piece: starts a figure, or joins the open one.
void StartOrJoin(GpPath& path, double x, double y) {
    if (path.new_figure || path.points.empty()) {
        Push(path, x, y, kPointStart);
        path.new_figure = false;
        return;
    }
    const PathPoint& last = path.points.back();
    if (last.x != x || last.y != y) Push(path, x, y, kPointLine);
}

// Parametric angle (radians) of the point at `degrees` on an ellipse with
// half-axes a, b.
double ParametricAngle(double degrees, double a, double b) {
    double r = degrees * M_PI / 180.0;
    if (a == b) return r;
    double t = std::atan2(a * std::sin(r), b * std::cos(r));
    // Keep the turn count of the geometric angle so sweeps stay monotonic.
    double turns = std::floor(r / (2 * M_PI));
    t += turns * 2 * M_PI;
    while (t < r - M_PI) t += 2 * M_PI;
    while (t > r + M_PI) t -= 2 * M_PI;
    return t;
}

}  // namespace

void PathReset(GpPath& path, FillMode mode) {
    path.points.clear();
    path.fill_mode = mode;
    path.new_figure = true;
}

void PathClose(GpPath& path) {
    if (!path.points.empty() && !path.new_figure) path.points.back().type |= kPointClose;
    path.new_figure = true;
}

GpStatus PathAddLine(GpPath& path, double x1, double y1, double x2, double y2) {
    double v[4] = {x1, y1, x2, y2};
    if (!Finite(v, 4)) return InvalidParameter;
    if (!Room(path, 2)) return OutOfMemory;
    StartOrJoin(path, x1, y1);
    Push(path, x2, y2, kPointLine);
    return Ok;
}

GpStatus PathAddLines(GpPath& path, const double* xy, int count) {
    if (xy == nullptr || count < 1 || count > kMaxCallPoints || !Finite(xy, count * 2)) return InvalidParameter;
    if (!Room(path, count)) return OutOfMemory;
    StartOrJoin(path, xy[0], xy[1]);
    for (int i = 1; i < count; ++i) Push(path, xy[2 * i], xy[2 * i + 1], kPointLine);
    return Ok;
}

GpStatus PathAddBezier(GpPath& path, const double* xy8) {
    if (!Finite(xy8, 8)) return InvalidParameter;
    if (!Room(path, 4)) return OutOfMemory;
    StartOrJoin(path, xy8[0], xy8[1]);
    for (int i = 1; i < 4; ++i) Push(path, xy8[2 * i], xy8[2 * i + 1], kPointBezier);
    return Ok;
}

// [SECTION] Arcs and curves

GpStatus PathAddArc(GpPath& path, double x, double y, double w, double h, double start, double sweep) {
    double v[6] = {x, y, w, h, start, sweep};
    if (!Finite(v, 6) || w <= 0 || h <= 0) return InvalidParameter;
    if (!Room(path, 1 + 3 * 5)) return OutOfMemory;
    if (sweep > 360) sweep = 360;
    if (sweep < -360) sweep = -360;
    start = std::fmod(start, 360.0);  // only its place on the ellipse counts; a huge one would never settle
    double a = w / 2, b = h / 2;
    double cx = x + a, cy = y + b;
    double t0 = ParametricAngle(start, a, b);
    double t1;
    if (std::fabs(sweep) >= 360) {
        t1 = t0 + (sweep > 0 ? 2 * M_PI : -2 * M_PI);
    } else {
        t1 = ParametricAngle(start + sweep, a, b);
        double d = t1 - t0;
        if (sweep > 0) {
            while (d < 0) d += 2 * M_PI;
            while (d > 2 * M_PI) d -= 2 * M_PI;
        } else if (sweep < 0) {
            while (d > 0) d -= 2 * M_PI;
            while (d < -2 * M_PI) d += 2 * M_PI;
        } else {
            d = 0;
        }
        t1 = t0 + d;
    }
    StartOrJoin(path, cx + a * std::cos(t0), cy + b * std::sin(t0));
    double total = t1 - t0;
    int pieces = static_cast<int>(std::ceil(std::fabs(total) / (M_PI / 2) - 1e-9));
    if (pieces < 1) pieces = 1;
    double step = total / pieces;
    double k = 4.0 / 3.0 * std::tan(step / 4);
    for (int i = 0; i < pieces; ++i) {
        double s0 = t0 + step * i, s1 = s0 + step;
        double c0 = std::cos(s0), n0 = std::sin(s0), c1 = std::cos(s1), n1 = std::sin(s1);
        Push(path, cx + a * (c0 - k * n0), cy + b * (n0 + k * c0), kPointBezier);
        Push(path, cx + a * (c1 + k * n1), cy + b * (n1 - k * c1), kPointBezier);
        Push(path, cx + a * c1, cy + b * n1, kPointBezier);
    }
    return Ok;
}

GpStatus PathAddCurve(GpPath& path, const double* xy, int count, double tension) {
    // A cardinal spline through the points, as beziers.
    if (xy == nullptr || count < 2 || count > kMaxCallPoints || !Finite(xy, count * 2)) return InvalidParameter;
    if (!Room(path, 1 + 3 * count)) return OutOfMemory;
    StartOrJoin(path, xy[0], xy[1]);
    double t = tension / 3.0;
    for (int i = 0; i + 1 < count; ++i) {
        int prev = i > 0 ? i - 1 : 0;
        int next2 = i + 2 < count ? i + 2 : count - 1;
        double x0 = xy[2 * i], y0 = xy[2 * i + 1], x1 = xy[2 * i + 2], y1 = xy[2 * i + 3];
        Push(path, x0 + t * (x1 - xy[2 * prev]), y0 + t * (y1 - xy[2 * prev + 1]), kPointBezier);
        Push(path, x1 - t * (xy[2 * next2] - x0), y1 - t * (xy[2 * next2 + 1] - y0), kPointBezier);
        Push(path, x1, y1, kPointBezier);
    }
    return Ok;
}

GpStatus PathAddRectangle(GpPath& path, double x, double y, double w, double h) {
    double v[4] = {x, y, w, h};
    if (!Finite(v, 4)) return InvalidParameter;
    if (w == 0 || h == 0) return Ok;  // an empty rectangle adds nothing
    if (!Room(path, 4)) return OutOfMemory;
    path.new_figure = true;
    StartOrJoin(path, x, y);
    Push(path, x + w, y, kPointLine);
    Push(path, x + w, y + h, kPointLine);
    Push(path, x, y + h, kPointLine);
    PathClose(path);
    return Ok;
}

GpStatus PathAddEllipse(GpPath& path, double x, double y, double w, double h) {
    double v[4] = {x, y, w, h};
    if (!Finite(v, 4)) return InvalidParameter;
    if (w <= 0 || h <= 0) return Ok;
    path.new_figure = true;
    GpStatus status = PathAddArc(path, x, y, w, h, 0, 360);
    if (status == Ok) PathClose(path);
    return status;
}

GpStatus PathAddPolygon(GpPath& path, const double* xy, int count) {
    if (xy == nullptr || count < 3 || count > kMaxCallPoints || !Finite(xy, count * 2)) return InvalidParameter;
    if (!Room(path, count)) return OutOfMemory;
    path.new_figure = true;
    StartOrJoin(path, xy[0], xy[1]);
    for (int i = 1; i < count; ++i) Push(path, xy[2 * i], xy[2 * i + 1], kPointLine);
    PathClose(path);
    return Ok;
}

GpStatus PathAddPie(GpPath& path, double x, double y, double w, double h, double start, double sweep) {
    double v[6] = {x, y, w, h, start, sweep};
    if (!Finite(v, 6) || w <= 0 || h <= 0) return InvalidParameter;
    if (!Room(path, 2)) return OutOfMemory;
    path.new_figure = true;
    StartOrJoin(path, x + w / 2, y + h / 2);
    GpStatus status = PathAddArc(path, x, y, w, h, start, sweep);
    PathClose(path);
    return status;
}

void AppendToCairo(cairo_t* cr, const GpPath& path) {
    const auto& pts = path.points;
    size_t n = pts.size();
    for (size_t i = 0; i < n; ++i) {
        const PathPoint& p = pts[i];
        uint8_t type = p.type & kPointTypeMask;
        if (type == kPointStart) {
            cairo_move_to(cr, p.x, p.y);
        } else if (type == kPointBezier && i + 2 < n) {
            cairo_curve_to(cr, p.x, p.y, pts[i + 1].x, pts[i + 1].y, pts[i + 2].x, pts[i + 2].y);
            i += 2;
        } else {
            cairo_line_to(cr, p.x, p.y);
        }
        if (pts[i].type & kPointClose) cairo_close_path(cr);
    }
}

}  // namespace gdip

using namespace gdip;

namespace {

// Integer point arrays of the flat calls, as doubles for the builders.
bool Widen(const GpPoint* points, int count, std::vector<double>& xy) {
    if (points == nullptr || count <= 0 || count > kMaxCallPoints) return false;
    xy.resize(static_cast<size_t>(count) * 2);
    for (int i = 0; i < count; ++i) {
        xy[2 * i] = points[i].X;
        xy[2 * i + 1] = points[i].Y;
    }
    return true;
}

}  // namespace

extern "C" {

// [SECTION] Flat path calls

GpStatus WINGDIPAPI GdipCreatePath(GpFillMode brushMode, GpPath** path) {
    if (path == nullptr) return InvalidParameter;
    *path = nullptr;
    if (brushMode != FillModeAlternate && brushMode != FillModeWinding) return InvalidParameter;
    *path = new (std::nothrow) GpPath;
    if (*path == nullptr) return OutOfMemory;
    (*path)->fill_mode = brushMode;
    return Ok;
}

GpStatus WINGDIPAPI GdipDeletePath(GpPath* path) {
    if (!IsPath(path)) return InvalidParameter;
    path->tag = Tag::Dead;
    delete path;
    return Ok;
}

GpStatus WINGDIPAPI GdipResetPath(GpPath* path) {
    if (!IsPath(path)) return InvalidParameter;
    PathReset(*path, FillModeAlternate);
    return Ok;
}

GpStatus WINGDIPAPI GdipGetPointCount(GpPath* path, INT* count) {
    if (!IsPath(path) || count == nullptr) return InvalidParameter;
    *count = static_cast<INT>(path->points.size());
    return Ok;
}

GpStatus WINGDIPAPI GdipStartPathFigure(GpPath* path) {
    if (!IsPath(path)) return InvalidParameter;
    path->new_figure = true;
    return Ok;
}

GpStatus WINGDIPAPI GdipClosePathFigure(GpPath* path) {
    if (!IsPath(path)) return InvalidParameter;
    PathClose(*path);
    return Ok;
}

GpStatus WINGDIPAPI GdipAddPathLine(GpPath* path, REAL x1, REAL y1, REAL x2, REAL y2) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddLine(*path, x1, y1, x2, y2);
}

GpStatus WINGDIPAPI GdipAddPathLineI(GpPath* path, INT x1, INT y1, INT x2, INT y2) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddLine(*path, x1, y1, x2, y2);
}

GpStatus WINGDIPAPI GdipAddPathLine2I(GpPath* path, GDIPCONST GpPoint* points, INT count) {
    std::vector<double> xy;
    if (!IsPath(path) || !Widen(points, count, xy)) return InvalidParameter;
    return PathAddLines(*path, xy.data(), count);
}

GpStatus WINGDIPAPI GdipAddPathArc(GpPath* path, REAL x, REAL y, REAL width, REAL height, REAL startAngle, REAL sweepAngle) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddArc(*path, x, y, width, height, startAngle, sweepAngle);
}

GpStatus WINGDIPAPI GdipAddPathArcI(GpPath* path, INT x, INT y, INT width, INT height, REAL startAngle, REAL sweepAngle) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddArc(*path, x, y, width, height, startAngle, sweepAngle);
}

GpStatus WINGDIPAPI GdipAddPathBezierI(GpPath* path, INT x1, INT y1, INT x2, INT y2, INT x3, INT y3, INT x4, INT y4) {
    if (!IsPath(path)) return InvalidParameter;
    double xy[8] = {double(x1), double(y1), double(x2), double(y2), double(x3), double(y3), double(x4), double(y4)};
    return PathAddBezier(*path, xy);
}

GpStatus WINGDIPAPI GdipAddPathCurveI(GpPath* path, GDIPCONST GpPoint* points, INT count) {
    std::vector<double> xy;
    if (!IsPath(path) || !Widen(points, count, xy)) return InvalidParameter;
    return PathAddCurve(*path, xy.data(), count, 0.5);
}

GpStatus WINGDIPAPI GdipAddPathRectangle(GpPath* path, REAL x, REAL y, REAL width, REAL height) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddRectangle(*path, x, y, width, height);
}

GpStatus WINGDIPAPI GdipAddPathRectangleI(GpPath* path, INT x, INT y, INT width, INT height) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddRectangle(*path, x, y, width, height);
}

GpStatus WINGDIPAPI GdipAddPathEllipse(GpPath* path, REAL x, REAL y, REAL width, REAL height) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddEllipse(*path, x, y, width, height);
}

GpStatus WINGDIPAPI GdipAddPathEllipseI(GpPath* path, INT x, INT y, INT width, INT height) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddEllipse(*path, x, y, width, height);
}

GpStatus WINGDIPAPI GdipAddPathPolygonI(GpPath* path, GDIPCONST GpPoint* points, INT count) {
    std::vector<double> xy;
    if (!IsPath(path) || !Widen(points, count, xy)) return InvalidParameter;
    return PathAddPolygon(*path, xy.data(), count);
}

GpStatus WINGDIPAPI GdipAddPathPieI(GpPath* path, INT x, INT y, INT width, INT height, REAL startAngle, REAL sweepAngle) {
    if (!IsPath(path)) return InvalidParameter;
    return PathAddPie(*path, x, y, width, height, startAngle, sweepAngle);
}

}  // extern "C"
