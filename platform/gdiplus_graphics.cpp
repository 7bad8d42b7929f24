// gdiplus_graphics.cpp: the graphics object on a host pixel buffer, its world
// transform, clip and saved states, and the matrix calls.
//
// [SECTION] Matrix arithmetic
// [SECTION] Clip layer
// [SECTION] Graphics object
// [SECTION] World transform
// [SECTION] Clip
// [SECTION] Matrix objects
// [SECTION] Memory
//
// An HDC here is a host's OrbDeviceContext: its pixels become a cairo image
// surface for the life of the graphics object. The world transform is kept in
// GDI+'s row-vector form and handed to cairo before each drawing call, so the
// order rules (prepend acts first on points, append last) are GDI+'s exactly.
// The clip lives in cairo's context in device space, as GDI+ keeps it: a later
// transform does not move it.
#include "gdiplus_internal.h"

#include <orbhost.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>

namespace gdip {

// [SECTION] Matrix arithmetic

Affine Then(const Affine& a, const Affine& b) {
    Affine r;
    r.m11 = a.m11 * b.m11 + a.m12 * b.m21;
    r.m12 = a.m11 * b.m12 + a.m12 * b.m22;
    r.m21 = a.m21 * b.m11 + a.m22 * b.m21;
    r.m22 = a.m21 * b.m12 + a.m22 * b.m22;
    r.dx = a.dx * b.m11 + a.dy * b.m21 + b.dx;
    r.dy = a.dx * b.m12 + a.dy * b.m22 + b.dy;
    return r;
}

Affine ScaleMatrix(double sx, double sy) {
    Affine m;
    m.m11 = sx;
    m.m22 = sy;
    return m;
}

Affine TranslateMatrix(double dx, double dy) {
    Affine m;
    m.dx = dx;
    m.dy = dy;
    return m;
}

Affine RotateMatrix(double degrees) {
    // Clockwise on a y-down screen: +x turns towards +y.
    double r = degrees * M_PI / 180.0;
    double c = std::cos(r), s = std::sin(r);
    // Exact quarter turns keep axis-aligned pictures on whole pixels.
    if (std::fabs(c) < 1e-12) c = 0;
    if (std::fabs(s) < 1e-12) s = 0;
    Affine m;
    m.m11 = c;
    m.m12 = s;
    m.m21 = -s;
    m.m22 = c;
    return m;
}

bool OutsideClip(GpGraphics& g, double x1, double y1, double x2, double y2) {
    return x2 < g.clip_x1 || x1 > g.clip_x2 || y2 < g.clip_y1 || y1 > g.clip_y2;
}

void Apply(const Affine& m, double& x, double& y) {
    double nx = x * m.m11 + y * m.m21 + m.dx;
    double ny = x * m.m12 + y * m.m22 + m.dy;
    x = nx;
    y = ny;
}

double LinearScale(const Affine& m) { return std::sqrt(std::fabs(m.m11 * m.m22 - m.m12 * m.m21)); }

bool IsFinite(double v) { return std::isfinite(v); }

bool IsFinite(const Affine& m) {
    return IsFinite(m.m11) && IsFinite(m.m12) && IsFinite(m.m21) && IsFinite(m.m22) && IsFinite(m.dx) && IsFinite(m.dy);
}

bool IsGraphics(const GpGraphics* g) { return g != nullptr && g->tag == Tag::Graphics && g->cr != nullptr; }
bool IsPen(const GpPen* p) { return p != nullptr && p->tag == Tag::Pen; }
bool IsBrush(const GpBrush* b) { return b != nullptr && b->tag == Tag::Brush; }
bool IsFont(const GpFont* f) { return f != nullptr && f->tag == Tag::Font; }
bool IsFormat(const GpStringFormat* f) { return f != nullptr && f->tag == Tag::Format; }
bool IsPath(const GpPath* p) { return p != nullptr && p->tag == Tag::Path; }

void UseWorldMatrix(GpGraphics& g) { UseWorldMatrix(g, g.cr); }

void UseWorldMatrix(GpGraphics& g, cairo_t* cr) {
    // GDI+ puts pixel centres on whole coordinates unless the offset mode is
    // half (or high quality); cairo puts them on halves.
    bool half = g.pixel_offset == PixelOffsetModeHalf || g.pixel_offset == PixelOffsetModeHighQuality;
    double shift = half ? 0.0 : 0.5;
    cairo_matrix_t m;
    cairo_matrix_init(&m, g.world.m11, g.world.m12, g.world.m21, g.world.m22, g.world.dx + shift, g.world.dy + shift);
    cairo_set_matrix(cr, &m);
}

// [SECTION] Clip layer

namespace {
// Drawing straight through the clip costs a few microseconds a shape more;
// a composite through it, a hundred for a map's circle.
constexpr int kDirectDrawsUnderClip = 24;

// Layers kept between graphics objects: a gauge makes one a frame, and a
// fresh surface would cost its clearing each time. They go back cleared.
constexpr int kPooledLayers = 8;
std::array<cairo_surface_t*, kPooledLayers> g_layer_pool{};

cairo_surface_t* TakeLayer(int width, int height) {
    for (cairo_surface_t*& s : g_layer_pool) {
        if (s != nullptr && cairo_image_surface_get_width(s) == width && cairo_image_surface_get_height(s) == height) {
            cairo_surface_t* found = s;
            s = nullptr;
            return found;
        }
    }
    return cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
}

void GiveBackLayer(cairo_surface_t* layer) {
    for (cairo_surface_t*& s : g_layer_pool) {
        if (s == nullptr) {
            s = layer;
            return;
        }
    }
    cairo_surface_destroy(g_layer_pool[0]);  // the oldest size goes
    g_layer_pool[0] = layer;
}

// The clip's bounding box on whole pixels, as the layer's own clip.
void ClipLayerToExtents(GpGraphics& g) {
    cairo_t* cr = g.layer_cr;
    cairo_reset_clip(cr);
    cairo_identity_matrix(cr);
    cairo_new_path(cr);
    double x1 = std::floor(g.clip_x1), y1 = std::floor(g.clip_y1);
    cairo_rectangle(cr, x1, y1, std::ceil(g.clip_x2) - x1, std::ceil(g.clip_y2) - y1);
    cairo_clip(cr);
}

// The clip layer, made on first need; false when it cannot be, and then
// the clip is treated as simple: drawing the slow way rather than not at all.
bool EnsureLayer(GpGraphics& g) {
    if (g.layer_cr != nullptr) return true;
    cairo_surface_t* layer = TakeLayer(g.width, g.height);
    cairo_t* cr = cairo_create(layer);
    if (cairo_surface_status(layer) != CAIRO_STATUS_SUCCESS || cairo_status(cr) != CAIRO_STATUS_SUCCESS) {
        cairo_destroy(cr);
        cairo_surface_destroy(layer);
        g.clip_complex = false;
        return false;
    }
    g.layer = layer;
    g.layer_cr = cr;
    cairo_set_miter_limit(cr, 10.0);
    ClipLayerToExtents(g);
    return true;
}

// The clip's extents on whole pixels, within the surface.
void ClipBox(const GpGraphics& g, PixelTarget& out) {
    out.x1 = std::clamp(static_cast<int>(std::floor(g.clip_x1)), 0, g.width);
    out.x2 = std::clamp(static_cast<int>(std::ceil(g.clip_x2)), out.x1, g.width);
    out.y1 = std::clamp(static_cast<int>(std::floor(g.clip_y1)), 0, g.height);
    out.y2 = std::clamp(static_cast<int>(std::ceil(g.clip_y2)), out.y1, g.height);
}
}  // namespace

cairo_t* DrawTarget(GpGraphics& g) {
    if (!g.clip_complex) return g.cr;
    if (!g.layer_dirty && g.direct_draws < kDirectDrawsUnderClip) {
        ++g.direct_draws;
        return g.cr;
    }
    if (!EnsureLayer(g)) return g.cr;
    cairo_set_antialias(g.layer_cr, cairo_get_antialias(g.cr));
    PixelTarget box;
    box.surface = g.layer;
    ClipBox(g, box);
    NoteDrawn(g, box, box.x1, box.y1, box.x2, box.y2);
    return g.layer_cr;
}

void NoteDrawn(GpGraphics& g, const PixelTarget& where, int x1, int y1, int x2, int y2) {
    if (where.surface != g.layer || g.layer == nullptr || x1 >= x2 || y1 >= y2) return;
    if (!g.layer_dirty) {
        g.layer_dirty = true;
        g.dirty_x1 = x1, g.dirty_y1 = y1, g.dirty_x2 = x2, g.dirty_y2 = y2;
        return;
    }
    g.dirty_x1 = std::min(g.dirty_x1, x1);
    g.dirty_y1 = std::min(g.dirty_y1, y1);
    g.dirty_x2 = std::max(g.dirty_x2, x2);
    g.dirty_y2 = std::max(g.dirty_y2, y2);
}

bool DirectPixels(GpGraphics& g, PixelTarget& out) {
    if (!g.clip_complex) {
        if (g.clip_rectangles > 1) return false;
        out.surface = g.surface;
        if (g.clip_rectangles == 0) {
            out.x1 = out.y1 = out.x2 = out.y2 = 0;
            return true;
        }
        ClipBox(g, out);
        return true;
    }
    // Into the layer at once: a shape drawn straight there is cheaper than
    // cairo's through the clip, even with its share of the composite. Later
    // shapes follow it there, so the order holds.
    if (!EnsureLayer(g)) return false;
    g.direct_draws = kDirectDrawsUnderClip;
    out.surface = g.layer;
    ClipBox(g, out);
    return true;
}

void FlushClipLayer(GpGraphics& g) {
    if (!g.layer_dirty) return;
    g.layer_dirty = false;
    // Only the box drawn in goes through the clip, and only it is cleared.
    double x = g.dirty_x1, y = g.dirty_y1, w = g.dirty_x2 - g.dirty_x1, h = g.dirty_y2 - g.dirty_y1;
    cairo_surface_flush(g.layer);
    cairo_save(g.cr);
    cairo_identity_matrix(g.cr);
    cairo_set_source_surface(g.cr, g.layer, 0, 0);
    cairo_new_path(g.cr);
    cairo_rectangle(g.cr, x, y, w, h);
    cairo_fill(g.cr);
    cairo_restore(g.cr);
    cairo_surface_flush(g.surface);
    cairo_save(g.layer_cr);
    cairo_identity_matrix(g.layer_cr);
    cairo_set_operator(g.layer_cr, CAIRO_OPERATOR_CLEAR);
    cairo_new_path(g.layer_cr);
    cairo_rectangle(g.layer_cr, x, y, w, h);
    cairo_fill(g.layer_cr);
    cairo_restore(g.layer_cr);
}

void ClipChanged(GpGraphics& g) {
    ++g.clip_serial;
    g.direct_draws = 0;
    cairo_save(g.cr);
    cairo_identity_matrix(g.cr);
    cairo_clip_extents(g.cr, &g.clip_x1, &g.clip_y1, &g.clip_x2, &g.clip_y2);
    cairo_rectangle_list_t* rects = cairo_copy_clip_rectangle_list(g.cr);
    g.clip_complex = rects->status == CAIRO_STATUS_CLIP_NOT_REPRESENTABLE;
    g.clip_rectangles = rects->status == CAIRO_STATUS_SUCCESS ? rects->num_rectangles : 0;
    cairo_rectangle_list_destroy(rects);
    cairo_restore(g.cr);
    if (g.clip_complex && g.layer_cr != nullptr) ClipLayerToExtents(g);
}

void UseColor(cairo_t* cr, ARGB color) {
    cairo_set_source_rgba(cr, ((color >> 16) & 0xFF) / 255.0, ((color >> 8) & 0xFF) / 255.0, (color & 0xFF) / 255.0,
                          ((color >> 24) & 0xFF) / 255.0);
}

double UnitToWorld(Unit unit) {
    constexpr double kDpi = 96.0;  // a screen's device context
    switch (unit) {
        case UnitWorld:
        case UnitPixel:
        case UnitDisplay: return 1.0;
        case UnitPoint: return kDpi / 72.0;
        case UnitInch: return kDpi;
        case UnitDocument: return kDpi / 300.0;
        case UnitMillimeter: return kDpi / 25.4;
    }
    return 1.0;
}

}  // namespace gdip

using namespace gdip;

namespace {

bool ValidOrder(MatrixOrder order) { return order == MatrixOrderPrepend || order == MatrixOrderAppend; }

GpStatus Combine(GpGraphics* g, const Affine& op, MatrixOrder order) {
    if (!IsGraphics(g) || !ValidOrder(order) || !IsFinite(op)) return InvalidParameter;
    g->world = order == MatrixOrderPrepend ? Then(op, g->world) : Then(g->world, op);
    return Ok;
}

// Clip to the path in device space. Replace and intersect are cairo's own;
// exclude intersects with the path's outside (the surface's rectangle around
// it, even-odd). Union, xor and complement would need a region engine.
GpStatus ClipTo(GpGraphics* g, const GpPath& path, FillMode fill, CombineMode mode) {
    if (mode < CombineModeReplace || mode > CombineModeComplement) return InvalidParameter;
    if (mode == CombineModeUnion || mode == CombineModeXor || mode == CombineModeComplement) return NotImplemented;
    FlushClipLayer(*g);
    cairo_t* cr = g->cr;
    if (mode == CombineModeReplace) cairo_reset_clip(cr);
    // The clip's edge takes the smoothing in force: cairo then folds the clip
    // into each shape's own outline instead of masking through a whole-surface
    // mask, a third of a map frame's time. (GDI+ regions are aliased; the
    // difference is the shading of one pixel at the clip's edge.)
    cairo_new_path(cr);
    UseWorldMatrix(*g);
    AppendToCairo(cr, path);
    if (mode == CombineModeExclude) {
        cairo_identity_matrix(cr);
        cairo_rectangle(cr, -1, -1, g->width + 2.0, g->height + 2.0);
        cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    } else {
        cairo_set_fill_rule(cr, fill == FillModeWinding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
    }
    cairo_clip(cr);
    ClipChanged(*g);
    return Ok;
}

}  // namespace

extern "C" {

// [SECTION] Graphics object

GpStatus WINGDIPAPI GdipCreateFromHDC(HDC hdc, GpGraphics** graphics) {
    if (graphics == nullptr) return InvalidParameter;
    *graphics = nullptr;
    if (hdc == nullptr) return InvalidParameter;
    auto* dc = static_cast<OrbDeviceContext*>(hdc);
    if (dc->magic != kOrbDeviceContextMagic || dc->pixels == nullptr || dc->width <= 0 || dc->height <= 0) {
        return InvalidParameter;
    }
    if (dc->stride_bytes < cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, dc->width) || dc->stride_bytes % 4 != 0) {
        return InvalidParameter;
    }
    cairo_surface_t* surface = cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(dc->pixels),
                                                                   CAIRO_FORMAT_ARGB32, dc->width, dc->height,
                                                                   dc->stride_bytes);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return OutOfMemory;
    }
    cairo_t* cr = cairo_create(surface);
    if (cairo_status(cr) != CAIRO_STATUS_SUCCESS) {
        cairo_destroy(cr);
        cairo_surface_destroy(surface);
        return OutOfMemory;
    }
    auto* g = new (std::nothrow) GpGraphics;
    if (g == nullptr) {
        cairo_destroy(cr);
        cairo_surface_destroy(surface);
        return OutOfMemory;
    }
    g->hdc = hdc;
    g->surface = surface;
    g->cr = cr;
    g->width = dc->width;
    g->height = dc->height;
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);  // SmoothingModeDefault draws aliased
    cairo_set_miter_limit(cr, 10.0);
    ClipChanged(*g);
    *graphics = g;
    return Ok;
}

GpStatus WINGDIPAPI GdipDeleteGraphics(GpGraphics* graphics) {
    if (!IsGraphics(graphics)) return InvalidParameter;
    FlushClipLayer(*graphics);
    if (graphics->layer_cr != nullptr) {
        cairo_destroy(graphics->layer_cr);
        GiveBackLayer(graphics->layer);
    }
    cairo_surface_flush(graphics->surface);
    cairo_destroy(graphics->cr);
    cairo_surface_destroy(graphics->surface);
    graphics->tag = Tag::Dead;
    graphics->cr = nullptr;
    delete graphics;
    return Ok;
}

// Drawing under a complex clip waits in the clip layer; a flush puts it on
// the pixels (deleting the graphics does too).
GpStatus WINGDIPAPI GdipFlush(GpGraphics* graphics, GpFlushIntention intention) {
    if (!IsGraphics(graphics) || (intention != FlushIntentionFlush && intention != FlushIntentionSync))
        return InvalidParameter;
    FlushClipLayer(*graphics);
    return Ok;
}

GpStatus WINGDIPAPI GdipGraphicsClear(GpGraphics* graphics, ARGB color) {
    if (!IsGraphics(graphics)) return InvalidParameter;
    FlushClipLayer(*graphics);
    cairo_t* cr = graphics->cr;
    cairo_save(cr);
    cairo_identity_matrix(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    UseColor(cr, color);
    cairo_paint(cr);  // within the clip, as GDI+ clears
    cairo_restore(cr);
    cairo_surface_flush(graphics->surface);
    return Ok;
}

GpStatus WINGDIPAPI GdipSetSmoothingMode(GpGraphics* graphics, SmoothingMode mode) {
    if (!IsGraphics(graphics) || mode < SmoothingModeDefault || mode > SmoothingModeAntiAlias + 1) {
        return InvalidParameter;
    }
    graphics->smoothing = mode;
    bool smooth = mode == SmoothingModeHighQuality || mode >= SmoothingModeAntiAlias;
    cairo_set_antialias(graphics->cr, smooth ? CAIRO_ANTIALIAS_GRAY : CAIRO_ANTIALIAS_NONE);
    return Ok;
}

GpStatus WINGDIPAPI GdipGetSmoothingMode(GpGraphics* graphics, SmoothingMode* mode) {
    if (!IsGraphics(graphics) || mode == nullptr) return InvalidParameter;
    *mode = graphics->smoothing;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetPixelOffsetMode(GpGraphics* graphics, PixelOffsetMode mode) {
    if (!IsGraphics(graphics) || mode < PixelOffsetModeDefault || mode > PixelOffsetModeHalf) return InvalidParameter;
    graphics->pixel_offset = mode;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetTextRenderingHint(GpGraphics* graphics, TextRenderingHint mode) {
    if (!IsGraphics(graphics) || mode < TextRenderingHintSystemDefault || mode > TextRenderingHintClearTypeGridFit) {
        return InvalidParameter;
    }
    graphics->text_hint = mode;
    return Ok;
}

GpStatus WINGDIPAPI GdipSaveGraphics(GpGraphics* graphics, GraphicsState* state) {
    if (!IsGraphics(graphics) || state == nullptr) return InvalidParameter;
    if (graphics->saved_count >= kMaxSavedStates) return OutOfMemory;
    GpGraphics::Saved& s = graphics->saved[graphics->saved_count++];
    s.world = graphics->world;
    s.smoothing = graphics->smoothing;
    s.pixel_offset = graphics->pixel_offset;
    s.text_hint = graphics->text_hint;
    s.clip_serial = graphics->clip_serial;
    cairo_save(graphics->cr);  // keeps the clip
    *state = static_cast<GraphicsState>(graphics->saved_count);
    return Ok;
}

GpStatus WINGDIPAPI GdipRestoreGraphics(GpGraphics* graphics, GraphicsState state) {
    if (!IsGraphics(graphics)) return InvalidParameter;
    // A state already restored, or never saved, changes nothing.
    if (state == 0 || static_cast<int>(state) > graphics->saved_count) return Ok;
    // Most saves only guard a transform: the layer goes on when the clip
    // comes back unchanged.
    bool same_clip = graphics->saved[state - 1].clip_serial == graphics->clip_serial;
    if (!same_clip) FlushClipLayer(*graphics);
    unsigned serial = graphics->saved[state - 1].clip_serial;
    while (graphics->saved_count >= static_cast<int>(state)) {
        const GpGraphics::Saved& s = graphics->saved[--graphics->saved_count];
        cairo_restore(graphics->cr);
        graphics->world = s.world;
        graphics->pixel_offset = s.pixel_offset;
        graphics->text_hint = s.text_hint;
        graphics->smoothing = s.smoothing;
    }
    if (!same_clip) {
        ClipChanged(*graphics);
        graphics->clip_serial = serial;
    }
    return Ok;
}

// [SECTION] World transform

GpStatus WINGDIPAPI GdipResetWorldTransform(GpGraphics* graphics) {
    if (!IsGraphics(graphics)) return InvalidParameter;
    graphics->world = Affine{};
    return Ok;
}

GpStatus WINGDIPAPI GdipScaleWorldTransform(GpGraphics* graphics, REAL sx, REAL sy, GpMatrixOrder order) {
    return Combine(graphics, ScaleMatrix(sx, sy), order);
}

GpStatus WINGDIPAPI GdipTranslateWorldTransform(GpGraphics* graphics, REAL dx, REAL dy, GpMatrixOrder order) {
    return Combine(graphics, TranslateMatrix(dx, dy), order);
}

GpStatus WINGDIPAPI GdipRotateWorldTransform(GpGraphics* graphics, REAL angle, GpMatrixOrder order) {
    return Combine(graphics, RotateMatrix(angle), order);
}

GpStatus WINGDIPAPI GdipSetWorldTransform(GpGraphics* graphics, GpMatrix* matrix) {
    if (!IsGraphics(graphics) || matrix == nullptr || matrix->tag != Tag::Matrix) return InvalidParameter;
    graphics->world = matrix->m;
    return Ok;
}

GpStatus WINGDIPAPI GdipGetWorldTransform(GpGraphics* graphics, GpMatrix* matrix) {
    if (!IsGraphics(graphics) || matrix == nullptr || matrix->tag != Tag::Matrix) return InvalidParameter;
    matrix->m = graphics->world;
    return Ok;
}

GpStatus WINGDIPAPI GdipMultiplyWorldTransform(GpGraphics* graphics, GDIPCONST GpMatrix* matrix, GpMatrixOrder order) {
    if (matrix == nullptr || matrix->tag != Tag::Matrix) return InvalidParameter;
    return Combine(graphics, matrix->m, order);
}

// [SECTION] Clip

GpStatus WINGDIPAPI GdipSetClipPath(GpGraphics* graphics, GpPath* path, CombineMode combineMode) {
    if (!IsGraphics(graphics) || !IsPath(path)) return InvalidParameter;
    return ClipTo(graphics, *path, path->fill_mode, combineMode);
}

GpStatus WINGDIPAPI GdipSetClipRect(GpGraphics* graphics, REAL x, REAL y, REAL width, REAL height, CombineMode combineMode) {
    if (!IsGraphics(graphics)) return InvalidParameter;
    GpPath rect;
    GpStatus status = PathAddRectangle(rect, x, y, width, height);
    if (status != Ok) return status;
    return ClipTo(graphics, rect, FillModeAlternate, combineMode);
}

GpStatus WINGDIPAPI GdipSetClipRectI(GpGraphics* graphics, INT x, INT y, INT width, INT height, CombineMode combineMode) {
    return GdipSetClipRect(graphics, static_cast<REAL>(x), static_cast<REAL>(y), static_cast<REAL>(width),
                           static_cast<REAL>(height), combineMode);
}

GpStatus WINGDIPAPI GdipResetClip(GpGraphics* graphics) {
    if (!IsGraphics(graphics)) return InvalidParameter;
    FlushClipLayer(*graphics);
    cairo_reset_clip(graphics->cr);
    ClipChanged(*graphics);
    return Ok;
}

// [SECTION] Matrix objects

GpStatus WINGDIPAPI GdipCreateMatrix(GpMatrix** matrix) {
    if (matrix == nullptr) return InvalidParameter;
    *matrix = new (std::nothrow) GpMatrix;
    return *matrix != nullptr ? Ok : OutOfMemory;
}

GpStatus WINGDIPAPI GdipCreateMatrix2(REAL m11, REAL m12, REAL m21, REAL m22, REAL dx, REAL dy, GpMatrix** matrix) {
    if (matrix == nullptr) return InvalidParameter;
    *matrix = nullptr;
    Affine m{m11, m12, m21, m22, dx, dy};
    if (!IsFinite(m)) return InvalidParameter;
    *matrix = new (std::nothrow) GpMatrix;
    if (*matrix == nullptr) return OutOfMemory;
    (*matrix)->m = m;
    return Ok;
}

GpStatus WINGDIPAPI GdipDeleteMatrix(GpMatrix* matrix) {
    if (matrix == nullptr || matrix->tag != Tag::Matrix) return InvalidParameter;
    matrix->tag = Tag::Dead;
    delete matrix;
    return Ok;
}

GpStatus WINGDIPAPI GdipGetMatrixElements(GDIPCONST GpMatrix* matrix, REAL* out) {
    if (matrix == nullptr || matrix->tag != Tag::Matrix || out == nullptr) return InvalidParameter;
    const Affine& m = matrix->m;
    out[0] = static_cast<REAL>(m.m11);
    out[1] = static_cast<REAL>(m.m12);
    out[2] = static_cast<REAL>(m.m21);
    out[3] = static_cast<REAL>(m.m22);
    out[4] = static_cast<REAL>(m.dx);
    out[5] = static_cast<REAL>(m.dy);
    return Ok;
}

GpStatus WINGDIPAPI GdipTransformMatrixPoints(GpMatrix* matrix, GpPointF* pts, INT count) {
    if (matrix == nullptr || matrix->tag != Tag::Matrix || pts == nullptr || count <= 0) return InvalidParameter;
    for (INT i = 0; i < count; ++i) {
        double x = pts[i].X, y = pts[i].Y;
        Apply(matrix->m, x, y);
        pts[i].X = static_cast<REAL>(x);
        pts[i].Y = static_cast<REAL>(y);
    }
    return Ok;
}

// [SECTION] Memory

void* WINGDIPAPI GdipAlloc(size_t size) { return std::malloc(size == 0 ? 1 : size); }

void WINGDIPAPI GdipFree(void* ptr) { std::free(ptr); }

}  // extern "C"
