// gdiplus_internal.h: what the GDI+ stand-in's objects hold, shared by the
// platform/gdiplus_*.cpp files that implement the flat calls on cairo.
//
// Every object starts with a tag naming its kind, so that a call given the
// wrong kind of object (or one already deleted) returns InvalidParameter
// instead of drawing through garbage. Paths keep GDI+'s own point list (start,
// line and bezier points, a close flag) so that figures connect and close as
// they do there; shapes are built into such a list and stroked or filled by
// one routine.
#pragma once

#include <gdiplus_flat.h>

#include <cairo.h>

#include <array>
#include <cstdint>
#include <vector>

namespace gdip {

// [SECTION] Object tags
enum class Tag : uint32_t {
    Dead = 0,
    Graphics = 0x47524150,
    Pen = 0x50454E21,
    Brush = 0x42525348,
    Font = 0x464F4E54,
    Family = 0x46414D49,
    Format = 0x46524D54,
    Path = 0x50415448,
    Matrix = 0x4D545258,
    Cap = 0x43415021,
};

// [SECTION] Matrices
// GDI+'s row-vector affine form: x' = x*m11 + y*m21 + dx, y' = x*m12 + y*m22 + dy.
struct Affine {
    double m11 = 1, m12 = 0;
    double m21 = 0, m22 = 1;
    double dx = 0, dy = 0;
};
// The transform that applies `first`, then `second`.
Affine Then(const Affine& first, const Affine& second);
Affine ScaleMatrix(double sx, double sy);
Affine TranslateMatrix(double dx, double dy);
Affine RotateMatrix(double degrees_clockwise);
void Apply(const Affine& m, double& x, double& y);
// Length scale of the transform: the square root of its determinant's size.
double LinearScale(const Affine& m);
bool IsFinite(const Affine& m);

// [SECTION] Limits
constexpr int kMaxPathPoints = 1 << 20;     // a path beyond a million points is a fault, not a picture
constexpr int kMaxCallPoints = 1 << 16;     // points one shape call may pass
constexpr int kMaxDashCount = 32;           // dash array entries; GDI+ patterns are a few
constexpr int kMaxSavedStates = 64;         // nested GdipSaveGraphics
constexpr int kMaxStringUnits = 8192;       // UTF-16 units one string call draws; the rest is dropped
constexpr int kMaxFamilyName = 64;          // bytes of a family name, UTF-8, with its end

// [SECTION] Paths
// Point types as GDI+ numbers them: 0 starts a figure, 1 a line, 3 a bezier
// point (three in a row), 0x80 closes the figure at that point.
constexpr uint8_t kPointStart = 0;
constexpr uint8_t kPointLine = 1;
constexpr uint8_t kPointBezier = 3;
constexpr uint8_t kPointTypeMask = 0x07;
constexpr uint8_t kPointClose = 0x80;

struct PathPoint {
    double x;       // world units
    double y;
    uint8_t type;   // kPoint* with kPointClose
};

}  // namespace gdip

struct GpPath {
    gdip::Tag tag = gdip::Tag::Path;
    FillMode fill_mode = FillModeAlternate;
    std::vector<gdip::PathPoint> points;
    bool new_figure = true;  // the next point starts a figure instead of joining the last
};

namespace gdip {
// Path building, shared by the path calls and the shape calls. Each returns
// Ok, InvalidParameter for bad numbers, or OutOfMemory past kMaxPathPoints.
GpStatus PathAddLine(GpPath& path, double x1, double y1, double x2, double y2);
GpStatus PathAddLines(GpPath& path, const double* xy, int count);
GpStatus PathAddArc(GpPath& path, double x, double y, double w, double h, double start, double sweep);
GpStatus PathAddBezier(GpPath& path, const double* xy8);
GpStatus PathAddCurve(GpPath& path, const double* xy, int count, double tension);
GpStatus PathAddRectangle(GpPath& path, double x, double y, double w, double h);
GpStatus PathAddEllipse(GpPath& path, double x, double y, double w, double h);
GpStatus PathAddPolygon(GpPath& path, const double* xy, int count);
GpStatus PathAddPie(GpPath& path, double x, double y, double w, double h, double start, double sweep);
void PathClose(GpPath& path);
void PathReset(GpPath& path, FillMode mode);
}  // namespace gdip

// [SECTION] Drawing objects
struct GpMatrix {
    gdip::Tag tag = gdip::Tag::Matrix;
    gdip::Affine m;
};

struct GpCustomLineCap {
    gdip::Tag tag = gdip::Tag::Cap;
    double height = 0;   // arrow length, in pen widths
    double width = 0;    // arrow base, in pen widths
    bool filled = true;
};

struct GpPen {
    gdip::Tag tag = gdip::Tag::Pen;
    ARGB color = 0;
    double width = 1;                     // world units
    DashStyle dash_style = DashStyleSolid;
    std::array<double, gdip::kMaxDashCount> dashes{};  // custom pattern, in pen widths
    int dash_count = 0;
    LineJoin join = LineJoinMiter;
    LineCap start_cap = LineCapFlat;
    LineCap end_cap = LineCapFlat;
    GpCustomLineCap start_custom{};       // copied in, as GDI+ clones the cap
    GpCustomLineCap end_custom{};
};

struct GpBrush {
    gdip::Tag tag = gdip::Tag::Brush;
    ARGB color = 0;
};

struct GpFontFamily {
    gdip::Tag tag = gdip::Tag::Family;
    std::array<char, gdip::kMaxFamilyName> name{};  // as asked, UTF-8
    const char* face = "";                          // the installed family that draws it
};

struct GpFont {
    gdip::Tag tag = gdip::Tag::Font;
    std::array<char, gdip::kMaxFamilyName> family{};
    const char* face = "";
    double size = 0;                 // em size in `unit`
    Unit unit = UnitPixel;
    int style = FontStyleRegular;
    cairo_font_face_t* cairo_face = nullptr;
    double ascent = 0;               // per em: baseline below the line's top
    double descent = 0;              // per em
    double line_spacing = 0;         // per em: distance between baselines
};

struct GpStringFormat {
    gdip::Tag tag = gdip::Tag::Format;
    int flags = 0;                                  // StringFormatFlags bits
    StringAlignment align = StringAlignmentNear;
    StringAlignment line_align = StringAlignmentNear;
    bool typographic = false;                       // no 1/6 em padding at the line ends
};

struct GpGraphics {
    gdip::Tag tag = gdip::Tag::Graphics;
    HDC hdc = nullptr;
    cairo_surface_t* surface = nullptr;
    cairo_t* cr = nullptr;
    int width = 0;                                  // device pixels
    int height = 0;
    gdip::Affine world;
    SmoothingMode smoothing = SmoothingModeDefault;
    PixelOffsetMode pixel_offset = PixelOffsetModeDefault;
    TextRenderingHint text_hint = TextRenderingHintSystemDefault;
    struct Saved {
        gdip::Affine world;
        SmoothingMode smoothing;
        PixelOffsetMode pixel_offset;
        TextRenderingHint text_hint;
        unsigned clip_serial;                       // the clip's serial at the save
    };

    std::array<Saved, gdip::kMaxSavedStates> saved{};
    int saved_count = 0;
    // The clip layer. While the clip is not whole-pixel rectangles, shapes and
    // text go to this scratch surface, clipped only to the clip's bounding
    // box, and reach the pixels through the clip once, when the clip changes
    // or the graphics ends. Otherwise cairo intersects every shape's outline
    // with the clip's polygon, most of a map frame's time. Compositing costs
    // about as much as a few dozen shapes drawn straight, so the first ones
    // under a clip are, and the layer takes the rest. Drawing is over
    // the layer's transparent start, so the picture is the same but for the
    // shading of the clip's edge pixels.
    cairo_surface_t* layer = nullptr;               // same size as the surface; from a pool
    cairo_t* layer_cr = nullptr;
    bool clip_complex = false;                      // the clip is not whole-pixel rectangles
    bool layer_dirty = false;                       // the layer holds drawing not yet composited
    int dirty_x1 = 0, dirty_y1 = 0;                 // the box it lies in, device pixels
    int dirty_x2 = 0, dirty_y2 = 0;
    int direct_draws = 0;                           // shapes and strings drawn straight through this clip
    unsigned clip_serial = 0;                       // counts clip changes; a restore to the same serial keeps the clip
    int clip_rectangles = 0;                        // whole-pixel rectangles of a clip that is not complex
    double clip_x1 = 0, clip_y1 = 0;                // the clip's extents, device pixels
    double clip_x2 = 0, clip_y2 = 0;
};

namespace gdip {
// [SECTION] Shared helpers
// Whether a box in device pixels lies wholly outside the graphics' clip (the
// surface when nothing clips): such a shape or string is rejected by its
// bounds, as GDI+ does, before any rasterising.
bool OutsideClip(GpGraphics& g, double x1, double y1, double x2, double y2);
bool IsGraphics(const GpGraphics* g);
bool IsPen(const GpPen* p);
bool IsBrush(const GpBrush* b);
bool IsFont(const GpFont* f);
bool IsFormat(const GpStringFormat* f);
bool IsPath(const GpPath* p);
bool IsFinite(double v);

// The cairo matrix for drawing in world units: world transform, then GDI+'s
// pixel-centre convention; on the graphics' own context or the one drawn on.
void UseWorldMatrix(GpGraphics& g);
void UseWorldMatrix(GpGraphics& g, cairo_t* cr);
// The context a shape or string is drawn on: the graphics' own, or the clip
// layer's while the clip is complex (see GpGraphics).
cairo_t* DrawTarget(GpGraphics& g);
// Where a shape may be written straight into the pixels: the surface drawn
// on (the graphics' own or the clip layer) and one clip rectangle on it, in
// device pixels, [x1, x2) x [y1, y2). False when the clip is not one
// rectangle there (several rectangles), or the layer cannot be made. Under a
// complex clip the target is the clip layer, and later shapes go there too.
struct PixelTarget {
    cairo_surface_t* surface = nullptr;
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};
bool DirectPixels(GpGraphics& g, PixelTarget& out);
// After drawing straight into a target: the box of pixels touched, device
// pixels [x1, x2) x [y1, y2), which the layer's composite will cover.
void NoteDrawn(GpGraphics& g, const PixelTarget& where, int x1, int y1, int x2, int y2);
// Blends a coverage mask (bytes, 255 full) in one colour into a target got
// from DirectPixels, its top left at (left, top) in device pixels, within
// the target's clip. The caller tells cairo and NoteDrawn the box, once for
// all the masks of a call.
void BlendMask(const PixelTarget& where, int left, int top, const uint8_t* mask, int width, int height,
               int mask_stride, ARGB color);
// Fills the point list straight into the pixels, as FastStroke strokes.
bool FastFill(GpGraphics& g, ARGB color, const GpPath& path, FillMode mode);
// Strokes the point list straight into the pixels when the pen, transform
// and clip allow (see gdiplus_raster.cpp); false, with nothing drawn, when
// cairo must.
bool FastStroke(GpGraphics& g, const GpPen& pen, const GpPath& path, double world_width);
// Composites the clip layer's drawing through the clip; every call that
// changes the clip, clears or ends the graphics calls it first.
void FlushClipLayer(GpGraphics& g);
// Notes the clip in force after it changed: its extents and whether drawing
// goes through the layer.
void ClipChanged(GpGraphics& g);
void UseColor(cairo_t* cr, ARGB color);
// World units per unit of a font or pen size (pixel-based page, 96 dpi).
double UnitToWorld(Unit unit);

// Stroke or fill a built point list with the graphics' transform and clip.
GpStatus StrokePoints(GpGraphics& g, const GpPen& pen, const GpPath& path);
GpStatus FillPoints(GpGraphics& g, ARGB color, const GpPath& path, FillMode mode);
// The pen's dash pattern, its entries times `width`: their number, 0 for a
// solid pen, -1 for a pattern the pen can't hold.
int PenDashes(const GpPen& pen, double width, std::array<double, kMaxDashCount>& out);
// Append a point list to cairo's current path (in the current matrix).
void AppendToCairo(cairo_t* cr, const GpPath& path);

// The free face that stands in for a family name, or null when unknown.
const char* FaceForFamily(const char* utf8_name);
}  // namespace gdip
