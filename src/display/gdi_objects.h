// gdi_objects.h: the thin object layer over the GDI+ flat calls that the
// displays and CDU pages draw with: a graphics object made from a device
// context, pens, solid brushes, fonts, string formats and paths, each freed
// when it goes out of scope (so within the frame that made it), and text in
// UTF-8 turned to the UTF-16 that GDI+ takes.
//
// The same code draws with the real GDI+ on Windows and with the platform's
// stand-in elsewhere: only the flat calls are used. A failed call does not
// stop the drawing: its status is kept (an object's own status, and the last
// non-zero status of the graphics object) and the call has no effect.
#pragma once

#include <gdiplus_flat.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace gdi {

// [SECTION] Text conversion
constexpr int kMaxTextUnits = 512;  // UTF-16 units of one drawn string; a screen line is far shorter

// UTF-8 to UTF-16 into `out` (zero-terminated, at most capacity - 1 units).
// Malformed bytes become U+FFFD; text past the room is dropped at a character
// boundary. Returns the units written.
int Utf8ToUtf16(std::string_view utf8, WCHAR* out, int capacity);
// UTF-16 to UTF-8 into `out` (zero-terminated); unpaired surrogates become
// U+FFFD. Returns the bytes written.
size_t Utf16ToUtf8(const WCHAR* text, int units, char* out, size_t capacity);

struct WideText {
    std::array<WCHAR, kMaxTextUnits + 1> units{};  // zero-terminated
    int length = 0;                                 // units before the terminator
};
WideText Widen(std::string_view utf8);

// [SECTION] Drawing objects
class Pen {
public:
    explicit Pen(ARGB colour, float width = 1.0f);
    ~Pen();
    Pen(const Pen&) = delete;
    Pen& operator=(const Pen&) = delete;

    void SetColour(ARGB colour);
    void SetWidth(float width);
    void SetDash(DashStyle style);
    // Dash and gap lengths in pen widths, alternating, starting with a dash.
    void SetDashPattern(const float* lengths, int count);
    void SetCaps(LineCap start, LineCap end);
    // An arrow head at the line's end (or start): height and width in pen widths.
    void SetArrowEnd(float height, float width, bool filled = true);
    void SetArrowStart(float height, float width, bool filled = true);

    GpPen* native() const { return pen_; }
    GpStatus status() const { return status_; }

private:
    void Keep(GpStatus s);
    GpPen* pen_ = nullptr;
    GpStatus status_ = Ok;  // last non-zero status of this pen's calls
};

class SolidBrush {
public:
    explicit SolidBrush(ARGB colour);
    ~SolidBrush();
    SolidBrush(const SolidBrush&) = delete;
    SolidBrush& operator=(const SolidBrush&) = delete;

    void SetColour(ARGB colour);
    GpBrush* native() const { return brush_; }
    GpStatus status() const { return status_; }

private:
    GpSolidFill* brush_ = nullptr;
    GpStatus status_ = Ok;
};

// A font by family name, em size, style bits (FontStyle) and unit. A family
// this machine lacks falls back to "Arial", then to the generic sans serif,
// so that text is always drawn.
class Font {
public:
    Font(std::string_view family, float size, int style = FontStyleRegular, Unit unit = UnitPixel);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    GpFont* native() const { return font_; }
    GpStatus status() const { return status_; }
    bool fell_back() const { return fell_back_; }  // drawn with a substitute family
    float size() const { return size_; }           // em height in the font's unit

private:
    GpFont* font_ = nullptr;
    float size_ = 0;
    GpStatus status_ = Ok;
    bool fell_back_ = false;
};

class StringFormat {
public:
    explicit StringFormat(StringAlignment align = StringAlignmentNear, StringAlignment line_align = StringAlignmentNear,
                          int flags = 0);
    ~StringFormat();
    StringFormat(const StringFormat&) = delete;
    StringFormat& operator=(const StringFormat&) = delete;

    GpStringFormat* native() const { return format_; }
    GpStatus status() const { return status_; }

private:
    GpStringFormat* format_ = nullptr;
    GpStatus status_ = Ok;
};

class Path {
public:
    explicit Path(FillMode fill = FillModeAlternate);
    ~Path();
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;

    void AddLine(int x1, int y1, int x2, int y2);
    void AddLines(const GpPoint* points, int count);
    void AddArc(int x, int y, int width, int height, float start_deg, float sweep_deg);
    void AddBezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    void AddCurve(const GpPoint* points, int count);
    void AddRectangle(int x, int y, int width, int height);
    void AddEllipse(int x, int y, int width, int height);
    void AddPolygon(const GpPoint* points, int count);
    void AddPie(int x, int y, int width, int height, float start_deg, float sweep_deg);
    void StartFigure();
    void CloseFigure();

    GpPath* native() const { return path_; }
    GpStatus status() const { return status_; }

private:
    void Keep(GpStatus s);
    GpPath* path_ = nullptr;
    GpStatus status_ = Ok;
};

// [SECTION] Graphics
enum class TextAlign { Left, Centre, Right };      // about the x given
enum class TextBaseline { Top, Middle, Bottom };   // about the y given: the line box's top, middle, bottom

class Graphics {
public:
    explicit Graphics(HDC hdc);
    ~Graphics();
    Graphics(const Graphics&) = delete;
    Graphics& operator=(const Graphics&) = delete;

    bool ok() const { return graphics_ != nullptr; }
    GpGraphics* native() const { return graphics_; }
    GpStatus last_status() const { return last_status_; }  // last non-zero status, or Ok

    void Clear(ARGB colour);
    void SetSmoothing(SmoothingMode mode);
    void SetPixelOffset(PixelOffsetMode mode);
    void SetTextHint(TextRenderingHint hint);

    // World transform; by default each call acts on points before the ones
    // already set (so: scale, then translate, then rotate in the order of calls
    // gives a picture rotated about the translated origin, then scaled).
    void ResetTransform();
    void Scale(float sx, float sy, MatrixOrder order = MatrixOrderPrepend);
    void Translate(float dx, float dy, MatrixOrder order = MatrixOrderPrepend);
    void Rotate(float degrees_clockwise, MatrixOrder order = MatrixOrderPrepend);
    // Turns what is drawn next about the world point (x, y).
    void RotateAbout(float degrees_clockwise, float x, float y);
    GraphicsState Save();
    void Restore(GraphicsState state);

    void SetClip(const Path& path, CombineMode mode = CombineModeReplace);
    void SetClipRect(int x, int y, int width, int height, CombineMode mode = CombineModeReplace);
    void ResetClip();

    void DrawLine(const Pen& pen, float x1, float y1, float x2, float y2);
    void DrawLines(const Pen& pen, const GpPoint* points, int count);
    void DrawArc(const Pen& pen, int x, int y, int width, int height, float start_deg, float sweep_deg);
    void DrawRectangle(const Pen& pen, int x, int y, int width, int height);
    void DrawEllipse(const Pen& pen, int x, int y, int width, int height);
    void DrawPolygon(const Pen& pen, const GpPoint* points, int count);
    void DrawPath(const Pen& pen, const Path& path);
    void FillRectangle(const SolidBrush& brush, int x, int y, int width, int height);
    void FillEllipse(const SolidBrush& brush, int x, int y, int width, int height);
    void FillPolygon(const SolidBrush& brush, const GpPoint* points, int count, FillMode fill = FillModeAlternate);
    void FillPath(const SolidBrush& brush, const Path& path);

    // Text at a point: (x, y) is the left, centre or right of the text and the
    // top, middle or bottom of its line box, in world units.
    void DrawText(std::string_view utf8, const Font& font, ARGB colour, float x, float y,
                  TextAlign align = TextAlign::Left, TextBaseline baseline = TextBaseline::Top);
    // Text laid out in a box with a format (alignment, wrapping, clipping).
    void DrawTextInBox(std::string_view utf8, const Font& font, ARGB colour, const GpRectF& box,
                       const StringFormat& format);
    // The box a string takes when drawn at (0, 0) with the default format,
    // padding included, in world units; a zero box when measuring fails.
    GpRectF MeasureText(std::string_view utf8, const Font& font);

private:
    void Keep(GpStatus s);
    GpGraphics* graphics_ = nullptr;
    GpStatus last_status_ = Ok;
};

}  // namespace gdi
