// gdiplus_raster.cpp: the strokes of plain pens, scanned straight into the
// pixels. A display frame is a thousand thin strokes (ticks, rings, symbols,
// legs), and cairo's general stroker costs a few microseconds each in set-up
// alone. Here the pen's outline is built in world units, as cairo and GDI+
// do (a pen under a stretched transform draws wider one way than the other),
// taken to device pixels, scanned into coverage cells with exact area
// coverage, and blended span by span.
//
// [SECTION] Figures
// [SECTION] Outline
// [SECTION] Coverage cells
// [SECTION] Spans
// [SECTION] Entry
//
// Anything this does not cover (aliased drawing, figure caps, a transform
// that flattens the plane, a pen wider than its segments are
// long at a sharp turn, a clip that is not one rectangle, a figure too big
// for the fixed tables) is left to cairo: FastStroke returns false before
// touching a pixel.
#include "gdiplus_internal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace gdip {

namespace {

constexpr double kTolerance = 0.1;          // device pixels a flattened curve may stray, as cairo's default
constexpr double kMiterLimit = 10.0;        // GDI+'s and the cairo contexts' own
constexpr double kMaxCoordinate = 1 << 20;  // device pixels; beyond is a fault, left to cairo
constexpr int kMaxPoints = 4096;            // flattened points of one stroke's figures
constexpr int kMaxOutline = 16384;          // outline points of one stroke
constexpr int kMaxContours = 1024;          // outline contours (a dashed figure has one a dash)
constexpr int kMaxCells = 1 << 16;          // coverage cells of one stroke
constexpr int kMaxRows = 8192;              // clip rows one sweep sorts

struct Point {
    double x, y;
};

// The tables below live in static storage, zeroed at load; their members
// have no initializers, so no image of them is built element by element.

// [SECTION] Figures
// The path flattened in world units: figures of points, each open or closed.
struct Figure {
    int first;  // index into the points
    int count;
    bool closed;
};

struct Figures {
    Point points[kMaxPoints];
    int point_count;
    Figure figures[kMaxContours];
    int figure_count;
};

bool Same(const Point& a, double x, double y) { return std::fabs(a.x - x) < 1e-9 && std::fabs(a.y - y) < 1e-9; }

bool AddPoint(Figures& f, double x, double y) {
    if (!(std::fabs(x) < 1e12) || !(std::fabs(y) < 1e12)) return false;  // not finite, or a fault
    Figure& fig = f.figures[f.figure_count - 1];
    if (fig.count > 0 && Same(f.points[fig.first + fig.count - 1], x, y)) return true;  // no zero-length segments
    if (f.point_count >= kMaxPoints) return false;
    f.points[f.point_count++] = {x, y};
    ++fig.count;
    return true;
}

bool StartFigure(Figures& f) {
    if (f.figure_count >= kMaxContours) return false;
    f.figures[f.figure_count++] = {f.point_count, 0, false};
    return true;
}

// A cubic as straight pieces: enough of them that none strays more than
// `tolerance` (Wang's bound on uniform steps).
bool AddBezier(Figures& f, Point p0, Point p1, Point p2, Point p3, double tolerance) {
    double ax = p0.x - 2 * p1.x + p2.x, ay = p0.y - 2 * p1.y + p2.y;
    double bx = p1.x - 2 * p2.x + p3.x, by = p1.y - 2 * p2.y + p3.y;
    double m = std::max(std::hypot(ax, ay), std::hypot(bx, by));
    int steps = static_cast<int>(std::clamp(std::ceil(std::sqrt(0.75 * m / tolerance)), 1.0, 256.0));
    for (int i = 1; i <= steps; ++i) {
        double t = static_cast<double>(i) / steps, u = 1 - t;
        double b0 = u * u * u, b1 = 3 * u * u * t, b2 = 3 * u * t * t, b3 = t * t * t;
        if (!AddPoint(f, b0 * p0.x + b1 * p1.x + b2 * p2.x + b3 * p3.x, b0 * p0.y + b1 * p1.y + b2 * p2.y + b3 * p3.y))
            return false;
    }
    return true;
}

// The path's figures, curves within `tolerance`; false for a point list
// cairo would read differently (a line after a close with no new start).
bool Flatten(const GpPath& path, double tolerance, Figures& out) {
    out.point_count = 0;
    out.figure_count = 0;
    const auto& pts = path.points;
    size_t n = pts.size();
    auto device = [](const PathPoint& p) { return Point{p.x, p.y}; };
    bool open = false;
    for (size_t i = 0; i < n; ++i) {
        uint8_t type = pts[i].type & kPointTypeMask;
        if (type == kPointStart) {
            if (!StartFigure(out)) return false;
            Point p = device(pts[i]);
            if (!AddPoint(out, p.x, p.y)) return false;
            open = true;
        } else if (!open) {
            return false;
        } else if (type == kPointBezier && i + 2 < n) {
            const Figure& fig = out.figures[out.figure_count - 1];
            Point p0 = out.points[fig.first + fig.count - 1];
            if (!AddBezier(out, p0, device(pts[i]), device(pts[i + 1]), device(pts[i + 2]), tolerance)) return false;
            i += 2;
        } else {
            Point p = device(pts[i]);
            if (!AddPoint(out, p.x, p.y)) return false;
        }
        if (pts[i].type & kPointClose) {
            Figure& fig = out.figures[out.figure_count - 1];
            // A last point on the start adds nothing: the closing segment joins them.
            if (fig.count > 1 && Same(out.points[fig.first], out.points[fig.first + fig.count - 1].x,
                                      out.points[fig.first + fig.count - 1].y)) {
                --fig.count;
                --out.point_count;
            }
            fig.closed = true;
            open = false;
        }
    }
    return true;
}

// [SECTION] Outline
// The pen's outline as closed contours whose winding is one inside the ink
// and zero elsewhere: an open run is one contour (start cap, one side out,
// end cap, the other side back); a closed figure is two, one a side, running
// opposite ways.
struct Outline {
    Point points[kMaxOutline];
    int point_count;
    int contour_start[kMaxContours + 1];  // contour i is [start[i], start[i + 1])
    int contour_count;
    bool overflow;
};

struct PenShape {
    double half;       // half the width, world units
    double tolerance;  // world units a flattened arc may stray
    LineCap cap;  // flat, square or round
    LineJoin join;
};

void Emit(Outline& o, double x, double y) {
    if (o.point_count >= kMaxOutline) {
        o.overflow = true;
        return;
    }
    o.points[o.point_count++] = {x, y};
}

void BeginContour(Outline& o) {
    if (o.contour_count >= kMaxContours) {
        o.overflow = true;
        return;
    }
    o.contour_start[o.contour_count++] = o.point_count;
    o.contour_start[o.contour_count] = o.point_count;
}

void EndContour(Outline& o) {
    if (!o.overflow) o.contour_start[o.contour_count] = o.point_count;
}

// Points of an arc about (cx, cy) of radius r from angle a0 through `sweep`
// radians, both ends left out; as many as keep each chord within tolerance.
void EmitArc(Outline& o, double cx, double cy, double r, double a0, double sweep, double tolerance) {
    double step = r > tolerance ? 2 * std::acos(1 - tolerance / r) : M_PI / 2;
    // In doubles first: a tolerance far below the radius makes the step 0.
    double count = std::ceil(std::fabs(sweep) / step);
    int pieces = count >= 1 ? static_cast<int>(std::min(count, 64.0)) : 1;
    for (int i = 1; i < pieces; ++i) {
        double a = a0 + sweep * i / pieces;
        Emit(o, cx + r * std::cos(a), cy + r * std::sin(a));
    }
}

struct Segment {
    double ux, uy;  // unit direction
    double length;
};

Segment Along(const Point& a, const Point& b) {
    double dx = b.x - a.x, dy = b.y - a.y;
    double len = std::sqrt(dx * dx + dy * dy);  // points stay far below overflow
    return {dx / len, dy / len, len};
}

// The outline's points on one side (+1: the side of the normal (-uy, ux))
// where segment `in` meets segment `out` at p. False when the run turns
// straight back on itself.
bool EmitJoin(Outline& o, const PenShape& pen, const Point& p, const Segment& in, const Segment& out, int side) {
    double h = pen.half;
    double nax = -in.uy * side, nay = in.ux * side;  // the side's offset normals
    double nbx = -out.uy * side, nby = out.ux * side;
    double dot = in.ux * out.ux + in.uy * out.uy;
    double cross = in.ux * out.uy - in.uy * out.ux;
    if (std::fabs(cross) < 1e-9 && dot > 0) {  // straight on
        Emit(o, p.x + h * nax, p.y + h * nay);
        return true;
    }
    if (dot <= -1 + 1e-9) return false;  // turning back on itself
    if (cross * side > 0) {
        // The inner side: where the two offset lines cross, a little way back
        // along each segment.
        // Past the end of a short segment (a dash that starts just before a
        // corner) the outline folds back through the corner instead: the
        // fold's twice-covered sliver is inside the ink either way.
        double back = h * std::fabs(cross) / (1 + dot);
        if (back > in.length || back > out.length) {
            Emit(o, p.x + h * nax, p.y + h * nay);
            Emit(o, p.x, p.y);
            Emit(o, p.x + h * nbx, p.y + h * nby);
            return true;
        }
        double k = h / (1 + dot);
        Emit(o, p.x + k * (nax + nbx), p.y + k * (nay + nby));
        return true;
    }
    switch (pen.join) {
        case LineJoinRound: {
            Emit(o, p.x + h * nax, p.y + h * nay);
            double a0 = std::atan2(nay, nax);
            double sweep = std::atan2(nax * nby - nay * nbx, nax * nbx + nay * nby);
            EmitArc(o, p.x, p.y, h, a0, sweep, pen.tolerance);
            Emit(o, p.x + h * nbx, p.y + h * nby);
            return true;
        }
        case LineJoinBevel:
            Emit(o, p.x + h * nax, p.y + h * nay);
            Emit(o, p.x + h * nbx, p.y + h * nby);
            return true;
        default:
            if (kMiterLimit * kMiterLimit * (1 + dot) >= 2) {
                double k = h / (1 + dot);
                Emit(o, p.x + k * (nax + nbx), p.y + k * (nay + nby));
            } else {
                Emit(o, p.x + h * nax, p.y + h * nay);
                Emit(o, p.x + h * nbx, p.y + h * nby);
            }
            return true;
    }
}

// An end of an open run at p, (ux, uy) pointing out of the run: from the
// +1 side of that outward travel to its -1 side.
void EmitCap(Outline& o, const PenShape& pen, const Point& p, double ux, double uy) {
    double h = pen.half;
    double nx = -uy, ny = ux;
    switch (pen.cap) {
        case LineCapSquare:
            Emit(o, p.x + h * (nx + ux), p.y + h * (ny + uy));
            Emit(o, p.x + h * (-nx + ux), p.y + h * (-ny + uy));
            return;
        case LineCapRound:
            Emit(o, p.x + h * nx, p.y + h * ny);
            EmitArc(o, p.x, p.y, h, std::atan2(ny, nx), -M_PI, pen.tolerance);
            Emit(o, p.x - h * nx, p.y - h * ny);
            return;
        default:
            Emit(o, p.x + h * nx, p.y + h * ny);
            Emit(o, p.x - h * nx, p.y - h * ny);
            return;
    }
}

// One open run of points (at least two, no two alike in a row) as one
// contour: the start cap from the run's -1 side to its +1 side, the +1 side
// out, the end cap, the -1 side back.
bool OutlineOpenRun(Outline& o, const PenShape& pen, const Point* p, int count) {
    BeginContour(o);
    Segment first = Along(p[0], p[1]);
    Segment last = Along(p[count - 2], p[count - 1]);
    EmitCap(o, pen, p[0], -first.ux, -first.uy);
    for (int i = 1; i + 1 < count; ++i) {
        if (!EmitJoin(o, pen, p[i], Along(p[i - 1], p[i]), Along(p[i], p[i + 1]), +1)) return false;
    }
    EmitCap(o, pen, p[count - 1], last.ux, last.uy);
    for (int i = count - 2; i >= 1; --i) {
        int mark = o.point_count;  // walked backwards: each corner's points in reverse
        if (!EmitJoin(o, pen, p[i], Along(p[i - 1], p[i]), Along(p[i], p[i + 1]), -1)) return false;
        std::reverse(o.points + mark, o.points + o.point_count);
    }
    EndContour(o);
    return !o.overflow;
}

// A closed figure (at least three points) as two contours, one a side.
bool OutlineClosed(Outline& o, const PenShape& pen, const Point* p, int count) {
    for (int side : {+1, -1}) {
        BeginContour(o);
        int mark = o.point_count;
        for (int i = 0; i < count; ++i) {
            const Point& prev = p[(i + count - 1) % count];
            const Point& next = p[(i + 1) % count];
            if (!EmitJoin(o, pen, p[i], Along(prev, p[i]), Along(p[i], next), side)) return false;
        }
        if (side < 0) std::reverse(o.points + mark, o.points + o.point_count);
        EndContour(o);
    }
    return !o.overflow;
}

// A box in world units: the part of the plane a stroke can show in.
struct WorldBox {
    double x1, y1, x2, y2;
};

// The part of segment a-b inside the box, as fractions [t0, t1] of it;
// false when none is.
bool InsideBox(const Point& a, const Point& b, const WorldBox& box, double& t0, double& t1) {
    t0 = 0;
    t1 = 1;
    const double d[2] = {b.x - a.x, b.y - a.y};
    const double from[2] = {a.x, a.y};
    const double low[2] = {box.x1, box.y1}, high[2] = {box.x2, box.y2};
    for (int k = 0; k < 2; ++k) {
        if (d[k] == 0) {
            if (from[k] < low[k] || from[k] > high[k]) return false;
            continue;
        }
        double ta = (low[k] - from[k]) / d[k], tb = (high[k] - from[k]) / d[k];
        if (ta > tb) std::swap(ta, tb);
        t0 = std::max(t0, ta);
        t1 = std::min(t1, tb);
    }
    return t0 < t1;
}

// The dashes of one figure as open runs: the pattern in world units,
// starting afresh at each figure, each dash ended as the pen's ends are.
// Only dashes within `visible` are made: beyond it the pattern's place is
// carried by arithmetic, so a leg running far off the display costs no more
// than its part on it.
bool OutlineDashed(Outline& o, const PenShape& pen, const Point* p, int count, bool closed, const double* pattern,
                   int pattern_count, const WorldBox& visible) {
    static Point run[kMaxPoints];
    int run_count = 0;
    auto flush = [&]() {
        bool ok = run_count < 2 || OutlineOpenRun(o, pen, run, run_count);
        run_count = 0;
        return ok;
    };
    auto add = [&](double x, double y) {
        if (run_count > 0 && Same(run[run_count - 1], x, y)) return true;
        if (run_count >= kMaxPoints) return false;
        run[run_count++] = {x, y};
        return true;
    };
    double period = 0;
    for (int k = 0; k < pattern_count; ++k) period += pattern[k];
    int dash = 0;
    double left = pattern[0];  // of the dash or gap under way
    bool on = true;
    // Moves the pattern's place on by `distance` without drawing.
    auto skip = [&](double distance) {
        double into = pattern[dash] - left + distance;  // from the start of the period
        for (int k = 0; k < dash; ++k) into += pattern[k];
        into = std::fmod(into, period);
        dash = 0;
        while (dash + 1 < pattern_count && into >= pattern[dash]) into -= pattern[dash++];
        left = pattern[dash] - into;
        on = dash % 2 == 0;
    };
    // Draws the dashes from `at` to `to` along segment s from a.
    auto walk = [&](const Point& a, const Segment& s, double at, double to) {
        while (to - at > left) {
            at += left;
            double x = a.x + s.ux * at, y = a.y + s.uy * at;
            if (!add(x, y)) return false;
            if (on && !flush()) return false;
            on = !on;
            dash = (dash + 1) % pattern_count;
            left = pattern[dash];
        }
        left -= to - at;
        return true;
    };
    int segments = closed ? count : count - 1;
    for (int i = 0; i < segments; ++i) {
        const Point& a = p[i];
        const Point& b = p[(i + 1) % count];
        Segment s = Along(a, b);
        double t0 = 0, t1 = 0;
        if (!InsideBox(a, b, visible, t0, t1)) t0 = t1 = 1;
        double enter = s.length * t0, leave = s.length * t1;
        if (enter > 0) {  // out of sight up to here
            if (on && !flush()) return false;
            skip(enter);
        }
        if (on && !add(a.x + s.ux * enter, a.y + s.uy * enter)) return false;
        if (!walk(a, s, enter, leave)) return false;
        if (on && !add(a.x + s.ux * leave, a.y + s.uy * leave)) return false;
        if (leave < s.length) {  // out of sight from here
            if (on && !flush()) return false;
            skip(s.length - leave);
        }
    }
    return !on || flush();
}

// [SECTION] Coverage cells
// Each cell is a pixel an edge passes: the edge's vertical travel through it
// (cover) and twice the area to its left (area), in 1/256 pixel. A row's
// coverage at a pixel is the running sum of covers from the left, less the
// pixel's own area; the nonzero rule takes its absolute value.
constexpr int kShift = 8;
constexpr int kScale = 1 << kShift;
constexpr int kMask = kScale - 1;

struct Cell {
    int x, y;
    int cover, area;
};

struct Cells {
    Cell cells[kMaxCells];
    int count;
    bool overflow;
    Cell current;
};

void Store(Cells& c) {
    if (c.current.cover == 0 && c.current.area == 0) return;
    if (c.count >= kMaxCells) {
        c.overflow = true;
        return;
    }
    c.cells[c.count++] = c.current;
}

void SetCell(Cells& c, int x, int y) {
    if (x == c.current.x && y == c.current.y) return;
    Store(c);
    c.current = {x, y, 0, 0};
}

// One edge within row ey, from (x1, y1) to (x2, y2): x in 1/256 pixel, y in
// 1/256 within the row.
void RowEdge(Cells& c, int ey, int x1, int y1, int x2, int y2) {
    int ex1 = x1 >> kShift, ex2 = x2 >> kShift;
    int fx1 = x1 & kMask, fx2 = x2 & kMask;
    if (y1 == y2) {
        SetCell(c, ex2, ey);
        return;
    }
    if (ex1 == ex2) {
        int delta = y2 - y1;
        c.current.cover += delta;
        c.current.area += (fx1 + fx2) * delta;
        return;
    }
    // A run of cells along the row: the first, the whole ones, the last.
    int64_t p = static_cast<int64_t>(kScale - fx1) * (y2 - y1);
    int first = kScale, incr = 1;
    int64_t dx = static_cast<int64_t>(x2) - x1;
    if (dx < 0) {
        p = static_cast<int64_t>(fx1) * (y2 - y1);
        first = 0;
        incr = -1;
        dx = -dx;
    }
    int64_t delta = p / dx, mod = p % dx;
    if (mod < 0) {
        --delta;
        mod += dx;
    }
    c.current.cover += static_cast<int>(delta);
    c.current.area += (fx1 + first) * static_cast<int>(delta);
    ex1 += incr;
    SetCell(c, ex1, ey);
    y1 += static_cast<int>(delta);
    if (ex1 != ex2) {
        p = static_cast<int64_t>(kScale) * (y2 - y1 + delta);
        int64_t lift = p / dx, rem = p % dx;
        if (rem < 0) {
            --lift;
            rem += dx;
        }
        mod -= dx;
        while (ex1 != ex2) {
            delta = lift;
            mod += rem;
            if (mod >= 0) {
                mod -= dx;
                ++delta;
            }
            c.current.cover += static_cast<int>(delta);
            c.current.area += kScale * static_cast<int>(delta);
            y1 += static_cast<int>(delta);
            ex1 += incr;
            SetCell(c, ex1, ey);
        }
    }
    int rest = y2 - y1;
    c.current.cover += rest;
    c.current.area += (fx2 + kScale - first) * rest;
}

// One edge in 1/256 pixel, row by row.
void Edge(Cells& c, int x1, int y1, int x2, int y2) {
    int ex1 = x1 >> kShift;
    int ey1 = y1 >> kShift, ey2 = y2 >> kShift;
    int fy1 = y1 & kMask, fy2 = y2 & kMask;
    SetCell(c, ex1, ey1);
    if (ey1 == ey2) {
        RowEdge(c, ey1, x1, fy1, x2, fy2);
        return;
    }
    int64_t dx = static_cast<int64_t>(x2) - x1, dy = static_cast<int64_t>(y2) - y1;
    int incr = 1;
    if (dx == 0) {  // straight down or up: one cell a row
        int two_fx = (x1 - (ex1 << kShift)) << 1;
        int first = kScale;
        if (dy < 0) {
            first = 0;
            incr = -1;
        }
        int delta = first - fy1;
        c.current.cover += delta;
        c.current.area += two_fx * delta;
        ey1 += incr;
        SetCell(c, ex1, ey1);
        delta = first + first - kScale;
        while (ey1 != ey2) {
            c.current.cover += delta;
            c.current.area += two_fx * delta;
            ey1 += incr;
            SetCell(c, ex1, ey1);
        }
        delta = fy2 - kScale + first;
        c.current.cover += delta;
        c.current.area += two_fx * delta;
        return;
    }
    int64_t p = static_cast<int64_t>(kScale - fy1) * dx;
    int first = kScale;
    if (dy < 0) {
        p = static_cast<int64_t>(fy1) * dx;
        first = 0;
        incr = -1;
        dy = -dy;
    }
    int64_t delta = p / dy, mod = p % dy;
    if (mod < 0) {
        --delta;
        mod += dy;
    }
    int x_from = x1 + static_cast<int>(delta);
    RowEdge(c, ey1, x1, fy1, x_from, first);
    ey1 += incr;
    SetCell(c, x_from >> kShift, ey1);
    if (ey1 != ey2) {
        p = static_cast<int64_t>(kScale) * dx;
        int64_t lift = p / dy, rem = p % dy;
        if (rem < 0) {
            --lift;
            rem += dy;
        }
        mod -= dy;
        while (ey1 != ey2) {
            delta = lift;
            mod += rem;
            if (mod >= 0) {
                mod -= dy;
                ++delta;
            }
            int x_to = x_from + static_cast<int>(delta);
            RowEdge(c, ey1, x_from, kScale - first, x_to, first);
            x_from = x_to;
            ey1 += incr;
            SetCell(c, x_from >> kShift, ey1);
        }
    }
    RowEdge(c, ey1, x_from, kScale - first, x2, fy2);
}

int Fixed(double v) { return static_cast<int>(std::lround(v * kScale)); }

// An edge cut to the clip: rows above and below add nothing; what lies left
// or right of the clip still bounds the cover of the pixels between, so it
// runs down the clip's side instead (the right one a pixel out, never drawn).
void ClippedEdge(Cells& c, double x1, double y1, double x2, double y2, int cx1, int cy1, int cx2, int cy2) {
    if ((y1 <= cy1 && y2 <= cy1) || (y1 >= cy2 && y2 >= cy2) || y1 == y2) return;
    // Rows first: move each end along the edge onto the clip's top or bottom.
    double ax = x1, ay = y1, bx = x2, by = y2;
    auto x_at = [&](double y) { return x1 + (x2 - x1) * (y - y1) / (y2 - y1); };
    if (ay < cy1) ax = x_at(cy1), ay = cy1;
    if (ay > cy2) ax = x_at(cy2), ay = cy2;
    if (by < cy1) bx = x_at(cy1), by = cy1;
    if (by > cy2) bx = x_at(cy2), by = cy2;
    if (ay == by) return;
    double left = cx1, right = cx2 + 1.0;
    auto piece = [&](double px, double py, double qx, double qy) {
        if (py == qy) return;
        Edge(c, Fixed(std::clamp(px, left, right)), Fixed(py), Fixed(std::clamp(qx, left, right)), Fixed(qy));
    };
    // Then the columns: cut where the edge crosses either side, and draw the
    // pieces in order.
    double cut_a = 2, cut_b = 2;  // beyond the edge: no cut
    if (ax != bx) {
        double ta = (left - ax) / (bx - ax), tb = (right - ax) / (bx - ax);
        if (ta > 0 && ta < 1) cut_a = ta;
        if (tb > 0 && tb < 1) cut_b = tb;
        if (cut_b < cut_a) std::swap(cut_a, cut_b);
    }
    double from = 0;
    for (double to : {cut_a, cut_b, 1.0}) {
        if (to > 1 || to <= from) continue;
        piece(ax + (bx - ax) * from, ay + (by - ay) * from, ax + (bx - ax) * to, ay + (by - ay) * to);
        from = to;
    }
}

// [SECTION] Spans
// Premultiplied ARGB arithmetic as pixman does it: byte products rounded to
// the nearest.
inline uint32_t MulByte(uint32_t a, uint32_t b) {
    uint32_t t = a * b + 128;
    return (t + (t >> 8)) >> 8;
}

inline uint32_t MulPixel(uint32_t pixel, uint32_t alpha) {
    return MulByte(pixel >> 24, alpha) << 24 | MulByte((pixel >> 16) & 0xFF, alpha) << 16 |
           MulByte((pixel >> 8) & 0xFF, alpha) << 8 | MulByte(pixel & 0xFF, alpha);
}

struct Target {
    uint32_t* pixels;
    int stride;          // in pixels
    int x1, y1, x2, y2;  // the clip, [x1, x2) x [y1, y2)
};

inline void BlendSpan(const Target& t, int y, int x0, int x1, uint32_t source, uint32_t coverage) {
    x0 = std::max(x0, t.x1);
    x1 = std::min(x1, t.x2);
    if (x0 >= x1 || y < t.y1 || y >= t.y2) return;
    uint32_t* row = t.pixels + static_cast<ptrdiff_t>(y) * t.stride;
    uint32_t s = coverage >= 255 ? source : MulPixel(source, coverage);
    uint32_t keep = 255 - (s >> 24);
    if (keep == 0) {
        std::fill(row + x0, row + x1, s);
        return;
    }
    // Over: the sums stay within a byte, as s is premultiplied and keep is
    // what its alpha leaves.
    for (int x = x0; x < x1; ++x) row[x] = s + MulPixel(row[x], keep);
}

// A pixel's coverage, 0 to 255, from twice its inked area: nonzero takes its
// size; even-odd folds it, so that twice covered is empty again.
inline uint32_t Coverage(int64_t twice_area, bool even_odd) {
    int64_t c = twice_area >> (kShift * 2 + 1 - 8);
    if (c < 0) c = -c;
    if (even_odd) {
        c &= 2 * kScale - 1;
        if (c > kScale) c = 2 * kScale - c;
    }
    return c > 255 ? 255u : static_cast<uint32_t>(c);
}

struct Box {
    int x1, y1, x2, y2;
};

// Sorts the cells by row, then along it, and blends each row's pixels and
// the spans between them. Returns the box of pixels it may have touched.
Box Sweep(const Cells& c, const Target& t, uint32_t source, bool even_odd) {
    static Cell sorted[kMaxCells];
    static int row_start[kMaxRows + 2];
    int n = c.count;
    if (n == 0) return {0, 0, 0, 0};
    int ymin = c.cells[0].y, ymax = c.cells[0].y, xmin = c.cells[0].x, xmax = c.cells[0].x;
    for (int i = 1; i < n; ++i) {
        ymin = std::min(ymin, c.cells[i].y);
        ymax = std::max(ymax, c.cells[i].y);
        xmin = std::min(xmin, c.cells[i].x);
        xmax = std::max(xmax, c.cells[i].x);
    }
    ymin = std::max(ymin, t.y1);
    ymax = std::min(ymax, t.y2 - 1);
    if (ymin > ymax || ymax - ymin + 1 > kMaxRows) return {0, 0, 0, 0};
    int rows = ymax - ymin + 1;
    // Counting sort by row: counts at [row + 2], their running sum, then each
    // cell placed at its row's next slot, which leaves [row] its start.
    std::fill(row_start, row_start + rows + 2, 0);
    for (int i = 0; i < n; ++i) {
        int y = c.cells[i].y;
        if (y >= ymin && y <= ymax) ++row_start[y - ymin + 2];
    }
    for (int r = 0; r < rows; ++r) row_start[r + 2] += row_start[r + 1];
    for (int i = 0; i < n; ++i) {
        int y = c.cells[i].y;
        if (y >= ymin && y <= ymax) sorted[row_start[y - ymin + 1]++] = c.cells[i];
    }
    for (int r = 0; r < rows; ++r) {
        Cell* begin = sorted + row_start[r];
        Cell* end = sorted + row_start[r + 1];
        // Along the row: insertion for the few cells of a thin stroke's row,
        // a full sort for long rows (a shallow line's two sides run opposite
        // ways, the worst case for insertion).
        if (end - begin > 16) {
            std::sort(begin, end, [](const Cell& a, const Cell& b) { return a.x < b.x; });
        } else {
            for (Cell* i = begin + 1; i < end; ++i) {
                Cell v = *i;
                Cell* j = i;
                for (; j > begin && (j - 1)->x > v.x; --j) *j = *(j - 1);
                *j = v;
            }
        }
        int y = ymin + r;
        int cover = 0;
        const Cell* cell = begin;
        while (cell < end) {
            int x = cell->x;
            int area = 0;
            for (; cell < end && cell->x == x; ++cell) {
                area += cell->area;
                cover += cell->cover;
            }
            if (area != 0) {
                uint32_t a = Coverage((static_cast<int64_t>(cover) << (kShift + 1)) - area, even_odd);
                if (a != 0) BlendSpan(t, y, x, x + 1, source, a);
                ++x;
            }
            if (cell < end && cell->x > x) {
                uint32_t a = Coverage(static_cast<int64_t>(cover) << (kShift + 1), even_odd);
                if (a != 0) BlendSpan(t, y, x, cell->x, source, a);
            }
        }
    }
    return {std::max(xmin, t.x1), ymin, std::min(xmax + 1, t.x2), ymax + 1};
}

// [SECTION] Entry

Figures g_figures;
Outline g_outline;
Cells g_cells;

// The pen's dash pattern in world units: its length, 0 for a solid pen,
// -1 for one too fine to walk.
int DevicePattern(const GpPen& pen, double width, std::array<double, kMaxDashCount>& out) {
    int count = PenDashes(pen, width, out);
    double total = 0;
    for (int i = 0; i < count; ++i) {
        if (!(out[i] >= 0)) return -1;
        total += out[i];
    }
    return count <= 0 || total > 0.05 ? count : -1;
}

// The transform's largest stretch (a world unit is at most this many
// pixels), or 0 when it flattens the plane or is not finite.
double Stretch(const Affine& m) {
    double squares = m.m11 * m.m11 + m.m12 * m.m12 + m.m21 * m.m21 + m.m22 * m.m22;
    double det = m.m11 * m.m22 - m.m12 * m.m21;
    double stretch = std::sqrt((squares + std::sqrt(std::max(0.0, squares * squares - 4 * det * det))) / 2);
    if (!(std::fabs(det) > 1e-12) || !std::isfinite(stretch)) return 0;
    return stretch;
}

// The outline, in world units, taken to device pixels and drawn in the
// colour by the rule; false with nothing drawn when it cannot be here.
bool ScanOutline(GpGraphics& g, Outline& o, ARGB color, bool even_odd) {
    // 1. In device pixels, with GDI+'s pixel centres on whole coordinates.
    bool half = g.pixel_offset == PixelOffsetModeHalf || g.pixel_offset == PixelOffsetModeHighQuality;
    double shift = half ? 0.0 : 0.5;
    for (int i = 0; i < o.point_count; ++i) {
        Point& p = o.points[i];
        Apply(g.world, p.x, p.y);
        p.x += shift;
        p.y += shift;
        if (!(std::fabs(p.x) < kMaxCoordinate) || !(std::fabs(p.y) < kMaxCoordinate)) return false;
    }

    // 2. The target and its clip.
    PixelTarget where;
    if (!DirectPixels(g, where) || where.y2 - where.y1 > kMaxRows) return false;

    // 3. Coverage cells of every contour's edges, within the clip.
    Cells& c = g_cells;
    c.count = 0;
    c.overflow = false;
    c.current = {INT32_MIN, INT32_MIN, 0, 0};
    for (int k = 0; k < o.contour_count; ++k) {
        int begin = o.contour_start[k], end = o.contour_start[k + 1];
        for (int i = begin; i < end; ++i) {
            const Point& a = o.points[i];
            const Point& b = o.points[i + 1 < end ? i + 1 : begin];
            ClippedEdge(c, a.x, a.y, b.x, b.y, where.x1, where.y1, where.x2, where.y2);
        }
    }
    Store(c);
    if (c.overflow) return false;

    // 4. The pixels, in the colour premultiplied.
    uint32_t alpha = color >> 24;
    if (alpha == 0) return true;
    uint32_t source = alpha << 24 | MulByte((color >> 16) & 0xFF, alpha) << 16 |
                      MulByte((color >> 8) & 0xFF, alpha) << 8 | MulByte(color & 0xFF, alpha);
    cairo_surface_flush(where.surface);
    Target t{reinterpret_cast<uint32_t*>(cairo_image_surface_get_data(where.surface)),
             cairo_image_surface_get_stride(where.surface) / 4, where.x1, where.y1, where.x2, where.y2};
    if (t.pixels == nullptr) return true;
    Box drawn = Sweep(c, t, source, even_odd);
    if (drawn.x1 < drawn.x2 && drawn.y1 < drawn.y2) {
        cairo_surface_mark_dirty_rectangle(where.surface, drawn.x1, drawn.y1, drawn.x2 - drawn.x1,
                                           drawn.y2 - drawn.y1);
        NoteDrawn(g, where, drawn.x1, drawn.y1, drawn.x2, drawn.y2);
    }
    return true;
}

}  // namespace

bool FastStroke(GpGraphics& g, const GpPen& pen, const GpPath& path, double world_width) {
    // 1. What this covers: smoothed drawing, a plain or dashed pen with flat,
    // square or round ends, a transform that keeps the plane a plane.
    bool smooth = g.smoothing == SmoothingModeHighQuality || g.smoothing >= SmoothingModeAntiAlias;
    if (!smooth || pen.start_cap != pen.end_cap) return false;
    if (pen.start_cap != LineCapFlat && pen.start_cap != LineCapSquare && pen.start_cap != LineCapRound) return false;
    double stretch = Stretch(g.world);
    if (!(stretch > 0) || !(world_width > 0) || !std::isfinite(world_width)) return false;
    double tolerance = kTolerance / stretch;

    // 2. The outline in world units.
    if (!Flatten(path, tolerance, g_figures)) return false;
    PenShape shape{world_width / 2, tolerance, pen.start_cap, pen.join};
    std::array<double, kMaxDashCount> pattern{};
    int pattern_count = DevicePattern(pen, world_width, pattern);
    if (pattern_count < 0) return false;
    // Where dashes can show: the clip's extents, grown by the pen's reach,
    // in world units.
    WorldBox visible{0, 0, 0, 0};
    if (pattern_count > 0) {
        const Affine& m = g.world;
        double det = m.m11 * m.m22 - m.m12 * m.m21;
        double reach = world_width * stretch * 12 + 4;
        const double xs[2] = {g.clip_x1 - reach, g.clip_x2 + reach}, ys[2] = {g.clip_y1 - reach, g.clip_y2 + reach};
        bool first = true;
        for (double dx : xs)
            for (double dy : ys) {
                // The inverse of x' = x m11 + y m21 + dx, y' = x m12 + y m22 + dy.
                double x = dx - m.dx, y = dy - m.dy;
                double wx = (x * m.m22 - y * m.m21) / det, wy = (y * m.m11 - x * m.m12) / det;
                if (first) visible = {wx, wy, wx, wy};
                visible = {std::min(visible.x1, wx), std::min(visible.y1, wy), std::max(visible.x2, wx),
                           std::max(visible.y2, wy)};
                first = false;
            }
    }
    Outline& o = g_outline;
    o.point_count = 0;
    o.contour_count = 0;
    o.overflow = false;
    o.contour_start[0] = 0;
    for (int f = 0; f < g_figures.figure_count; ++f) {
        const Figure& fig = g_figures.figures[f];
        const Point* p = g_figures.points + fig.first;
        if (fig.count < 2) {
            if (fig.count == 1 && pen.start_cap != LineCapFlat) return false;  // a dot: cairo's own rule
            continue;
        }
        bool ok = true;
        if (pattern_count > 0) {
            ok = OutlineDashed(o, shape, p, fig.count, fig.closed, pattern.data(), pattern_count, visible);
        }
        else if (fig.closed && fig.count >= 3) ok = OutlineClosed(o, shape, p, fig.count);
        else if (fig.closed) return false;  // there and back: cairo's own rule
        else ok = OutlineOpenRun(o, shape, p, fig.count);
        if (!ok || o.overflow) return false;
    }
    return ScanOutline(g, o, pen.color, false);
}

void BlendMask(const PixelTarget& where, int left, int top, const uint8_t* mask, int width, int height,
               int mask_stride, ARGB color) {
    uint32_t alpha = color >> 24;
    int x1 = std::max(left, where.x1), x2 = std::min(left + width, where.x2);
    int y1 = std::max(top, where.y1), y2 = std::min(top + height, where.y2);
    if (alpha == 0 || x1 >= x2 || y1 >= y2) return;
    uint32_t* pixels = reinterpret_cast<uint32_t*>(cairo_image_surface_get_data(where.surface));
    if (pixels == nullptr) return;
    int stride = cairo_image_surface_get_stride(where.surface) / 4;
    uint32_t source = alpha << 24 | MulByte((color >> 16) & 0xFF, alpha) << 16 | MulByte((color >> 8) & 0xFF, alpha) << 8 |
                      MulByte(color & 0xFF, alpha);
    for (int y = y1; y < y2; ++y) {
        uint32_t* row = pixels + static_cast<ptrdiff_t>(y) * stride;
        const uint8_t* cover = mask + static_cast<ptrdiff_t>(y - top) * mask_stride - left;
        for (int x = x1; x < x2; ++x) {
            uint32_t c = cover[x];
            if (c == 0) continue;
            uint32_t s = c == 255 ? source : MulPixel(source, c);
            row[x] = s + MulPixel(row[x], 255 - (s >> 24));
        }
    }
}

bool FastFill(GpGraphics& g, ARGB color, const GpPath& path, FillMode mode) {
    // Smoothed fills under a transform that keeps the plane a plane; every
    // figure closes itself.
    bool smooth = g.smoothing == SmoothingModeHighQuality || g.smoothing >= SmoothingModeAntiAlias;
    if (!smooth) return false;
    double stretch = Stretch(g.world);
    if (!(stretch > 0)) return false;
    if (!Flatten(path, kTolerance / stretch, g_figures)) return false;
    Outline& o = g_outline;
    o.point_count = 0;
    o.contour_count = 0;
    o.overflow = false;
    o.contour_start[0] = 0;
    for (int f = 0; f < g_figures.figure_count; ++f) {
        const Figure& fig = g_figures.figures[f];
        if (fig.count < 3) continue;  // no area
        BeginContour(o);
        for (int i = 0; i < fig.count; ++i) Emit(o, g_figures.points[fig.first + i].x, g_figures.points[fig.first + i].y);
        EndContour(o);
        if (o.overflow) return false;
    }
    return ScanOutline(g, o, color, mode == FillModeAlternate);
}

}  // namespace gdip
