// gdi_objects.cpp: the drawing objects over the GDI+ flat calls, and the
// UTF-8 and UTF-16 conversions of the text that goes through them.
//
// [SECTION] Text conversion
// [SECTION] Pen, brush, font, format, path
// [SECTION] Graphics
#include "display/gdi_objects.h"

namespace gdi {

// [SECTION] Text conversion

namespace {

constexpr WCHAR kReplacement = static_cast<WCHAR>(0xFFFD);

// Decodes one character at s[i]; returns its code point and advances i past
// it. A malformed sequence gives U+FFFD and advances one byte.
uint32_t DecodeUtf8(std::string_view s, size_t& i) {
    unsigned char lead = static_cast<unsigned char>(s[i]);
    if (lead < 0x80) {
        ++i;
        return lead;
    }
    int more;
    uint32_t c;
    uint32_t min;
    if ((lead & 0xE0) == 0xC0) {
        more = 1;
        c = lead & 0x1F;
        min = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        more = 2;
        c = lead & 0x0F;
        min = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        more = 3;
        c = lead & 0x07;
        min = 0x10000;
    } else {
        ++i;
        return 0xFFFD;
    }
    if (i + static_cast<size_t>(more) >= s.size()) {  // cut short by the end
        ++i;
        return 0xFFFD;
    }
    for (int k = 1; k <= more; ++k) {
        unsigned char b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) {
            ++i;
            return 0xFFFD;
        }
        c = (c << 6) | (b & 0x3F);
    }
    if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        ++i;
        return 0xFFFD;
    }
    i += static_cast<size_t>(more) + 1;
    return c;
}

}  // namespace

int Utf8ToUtf16(std::string_view utf8, WCHAR* out, int capacity) {
    if (out == nullptr || capacity <= 0) return 0;
    int used = 0;
    size_t i = 0;
    while (i < utf8.size()) {
        uint32_t c = DecodeUtf8(utf8, i);
        int need = c >= 0x10000 ? 2 : 1;
        if (used + need > capacity - 1) break;
        if (c >= 0x10000) {
            c -= 0x10000;
            out[used++] = static_cast<WCHAR>(0xD800 + (c >> 10));
            out[used++] = static_cast<WCHAR>(0xDC00 + (c & 0x3FF));
        } else {
            out[used++] = c == 0xFFFD ? kReplacement : static_cast<WCHAR>(c);
        }
    }
    out[used] = 0;
    return used;
}

size_t Utf16ToUtf8(const WCHAR* text, int units, char* out, size_t capacity) {
    if (out == nullptr || capacity == 0) return 0;
    size_t used = 0;
    for (int i = 0; text != nullptr && i < units; ++i) {
        uint32_t c = static_cast<uint16_t>(text[i]);
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < units) {
            uint32_t low = static_cast<uint16_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            } else {
                c = 0xFFFD;
            }
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            c = 0xFFFD;
        }
        char buf[4];
        size_t n;
        if (c < 0x80) {
            buf[0] = static_cast<char>(c);
            n = 1;
        } else if (c < 0x800) {
            buf[0] = static_cast<char>(0xC0 | (c >> 6));
            buf[1] = static_cast<char>(0x80 | (c & 0x3F));
            n = 2;
        } else if (c < 0x10000) {
            buf[0] = static_cast<char>(0xE0 | (c >> 12));
            buf[1] = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            buf[2] = static_cast<char>(0x80 | (c & 0x3F));
            n = 3;
        } else {
            buf[0] = static_cast<char>(0xF0 | (c >> 18));
            buf[1] = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            buf[2] = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            buf[3] = static_cast<char>(0x80 | (c & 0x3F));
            n = 4;
        }
        if (used + n + 1 > capacity) break;
        for (size_t k = 0; k < n; ++k) out[used + k] = buf[k];
        used += n;
    }
    out[used] = 0;
    return used;
}

WideText Widen(std::string_view utf8) {
    WideText w;
    w.length = Utf8ToUtf16(utf8, w.units.data(), static_cast<int>(w.units.size()));
    return w;
}

// [SECTION] Pen, brush, font, format, path

Pen::Pen(ARGB colour, float width) { status_ = GdipCreatePen1(colour, width, UnitWorld, &pen_); }

Pen::~Pen() {
    if (pen_ != nullptr) GdipDeletePen(pen_);
}

void Pen::Keep(GpStatus s) {
    if (s != Ok) status_ = s;
}

void Pen::SetColour(ARGB colour) { Keep(GdipSetPenColor(pen_, colour)); }
void Pen::SetWidth(float width) { Keep(GdipSetPenWidth(pen_, width)); }
void Pen::SetDash(DashStyle style) { Keep(GdipSetPenDashStyle(pen_, style)); }

void Pen::SetDashPattern(const float* lengths, int count) { Keep(GdipSetPenDashArray(pen_, lengths, count)); }

void Pen::SetCaps(LineCap start, LineCap end) {
    Keep(GdipSetPenStartCap(pen_, start));
    Keep(GdipSetPenEndCap(pen_, end));
}

void Pen::SetArrowEnd(float height, float width, bool filled) {
    // The pen keeps its own copy of the cap, so ours goes at once.
    GpAdjustableArrowCap* cap = nullptr;
    GpStatus s = GdipCreateAdjustableArrowCap(height, width, filled ? TRUE : FALSE, &cap);
    Keep(s);
    if (s != Ok) return;
    Keep(GdipSetPenCustomEndCap(pen_, cap));
    GdipDeleteCustomLineCap(cap);
}

void Pen::SetArrowStart(float height, float width, bool filled) {
    GpAdjustableArrowCap* cap = nullptr;
    GpStatus s = GdipCreateAdjustableArrowCap(height, width, filled ? TRUE : FALSE, &cap);
    Keep(s);
    if (s != Ok) return;
    Keep(GdipSetPenCustomStartCap(pen_, cap));
    GdipDeleteCustomLineCap(cap);
}

SolidBrush::SolidBrush(ARGB colour) { status_ = GdipCreateSolidFill(colour, &brush_); }

SolidBrush::~SolidBrush() {
    if (brush_ != nullptr) GdipDeleteBrush(brush_);
}

void SolidBrush::SetColour(ARGB colour) {
    GpStatus s = GdipSetSolidFillColor(brush_, colour);
    if (s != Ok) status_ = s;
}

Font::Font(std::string_view family, float size, int style, Unit unit) : size_(size) {
    // The asked family, else "Arial", else the generic sans serif.
    WideText name = Widen(family);
    GpFontFamily* native_family = nullptr;
    GpStatus s = GdipCreateFontFamilyFromName(name.units.data(), nullptr, &native_family);
    if (s != Ok) {
        fell_back_ = true;
        WideText arial = Widen("Arial");
        s = GdipCreateFontFamilyFromName(arial.units.data(), nullptr, &native_family);
    }
    if (s != Ok) s = GdipGetGenericFontFamilySansSerif(&native_family);
    if (s != Ok) {
        status_ = s;
        return;
    }
    status_ = GdipCreateFont(native_family, size, style, unit, &font_);
    GdipDeleteFontFamily(native_family);  // the font holds what it needs
}

Font::~Font() {
    if (font_ != nullptr) GdipDeleteFont(font_);
}

StringFormat::StringFormat(StringAlignment align, StringAlignment line_align, int flags) {
    status_ = GdipCreateStringFormat(flags, 0, &format_);
    if (status_ != Ok) return;
    GpStatus s = GdipSetStringFormatAlign(format_, align);
    if (s == Ok) s = GdipSetStringFormatLineAlign(format_, line_align);
    if (s != Ok) status_ = s;
}

StringFormat::~StringFormat() {
    if (format_ != nullptr) GdipDeleteStringFormat(format_);
}

Path::Path(FillMode fill) { status_ = GdipCreatePath(fill, &path_); }

Path::~Path() {
    if (path_ != nullptr) GdipDeletePath(path_);
}

void Path::Keep(GpStatus s) {
    if (s != Ok) status_ = s;
}

void Path::AddLine(int x1, int y1, int x2, int y2) { Keep(GdipAddPathLineI(path_, x1, y1, x2, y2)); }
void Path::AddLines(const GpPoint* points, int count) { Keep(GdipAddPathLine2I(path_, points, count)); }
void Path::AddArc(int x, int y, int width, int height, float start_deg, float sweep_deg) {
    Keep(GdipAddPathArcI(path_, x, y, width, height, start_deg, sweep_deg));
}
void Path::AddBezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Keep(GdipAddPathBezierI(path_, x1, y1, x2, y2, x3, y3, x4, y4));
}
void Path::AddCurve(const GpPoint* points, int count) { Keep(GdipAddPathCurveI(path_, points, count)); }
void Path::AddRectangle(int x, int y, int width, int height) { Keep(GdipAddPathRectangleI(path_, x, y, width, height)); }
void Path::AddEllipse(int x, int y, int width, int height) { Keep(GdipAddPathEllipseI(path_, x, y, width, height)); }
void Path::AddPolygon(const GpPoint* points, int count) { Keep(GdipAddPathPolygonI(path_, points, count)); }
void Path::AddPie(int x, int y, int width, int height, float start_deg, float sweep_deg) {
    Keep(GdipAddPathPieI(path_, x, y, width, height, start_deg, sweep_deg));
}
void Path::StartFigure() { Keep(GdipStartPathFigure(path_)); }
void Path::CloseFigure() { Keep(GdipClosePathFigure(path_)); }

// [SECTION] Graphics

Graphics::Graphics(HDC hdc) {
    last_status_ = hdc != nullptr ? GdipCreateFromHDC(hdc, &graphics_) : InvalidParameter;
    if (last_status_ != Ok) graphics_ = nullptr;
}

Graphics::~Graphics() {
    if (graphics_ != nullptr) GdipDeleteGraphics(graphics_);
}

void Graphics::Keep(GpStatus s) {
    if (s != Ok) last_status_ = s;
}

void Graphics::Clear(ARGB colour) { Keep(GdipGraphicsClear(graphics_, colour)); }
void Graphics::SetSmoothing(SmoothingMode mode) { Keep(GdipSetSmoothingMode(graphics_, mode)); }
void Graphics::SetPixelOffset(PixelOffsetMode mode) { Keep(GdipSetPixelOffsetMode(graphics_, mode)); }
void Graphics::SetTextHint(TextRenderingHint hint) { Keep(GdipSetTextRenderingHint(graphics_, hint)); }

void Graphics::ResetTransform() { Keep(GdipResetWorldTransform(graphics_)); }
void Graphics::Scale(float sx, float sy, MatrixOrder order) { Keep(GdipScaleWorldTransform(graphics_, sx, sy, order)); }
void Graphics::Translate(float dx, float dy, MatrixOrder order) {
    Keep(GdipTranslateWorldTransform(graphics_, dx, dy, order));
}
void Graphics::Rotate(float degrees, MatrixOrder order) { Keep(GdipRotateWorldTransform(graphics_, degrees, order)); }

void Graphics::RotateAbout(float degrees, float x, float y) {
    // Prepended, so read from the last: move (x, y) to the origin, turn, move back.
    Keep(GdipTranslateWorldTransform(graphics_, x, y, MatrixOrderPrepend));
    Keep(GdipRotateWorldTransform(graphics_, degrees, MatrixOrderPrepend));
    Keep(GdipTranslateWorldTransform(graphics_, -x, -y, MatrixOrderPrepend));
}

GraphicsState Graphics::Save() {
    GraphicsState state = 0;
    Keep(GdipSaveGraphics(graphics_, &state));
    return state;
}

void Graphics::Restore(GraphicsState state) { Keep(GdipRestoreGraphics(graphics_, state)); }

void Graphics::SetClip(const Path& path, CombineMode mode) { Keep(GdipSetClipPath(graphics_, path.native(), mode)); }
void Graphics::SetClipRect(int x, int y, int width, int height, CombineMode mode) {
    Keep(GdipSetClipRectI(graphics_, x, y, width, height, mode));
}
void Graphics::ResetClip() { Keep(GdipResetClip(graphics_)); }

void Graphics::DrawLine(const Pen& pen, float x1, float y1, float x2, float y2) {
    Keep(GdipDrawLine(graphics_, pen.native(), x1, y1, x2, y2));
}
void Graphics::DrawLines(const Pen& pen, const GpPoint* points, int count) {
    Keep(GdipDrawLinesI(graphics_, pen.native(), points, count));
}
void Graphics::DrawArc(const Pen& pen, int x, int y, int width, int height, float start_deg, float sweep_deg) {
    Keep(GdipDrawArcI(graphics_, pen.native(), x, y, width, height, start_deg, sweep_deg));
}
void Graphics::DrawRectangle(const Pen& pen, int x, int y, int width, int height) {
    Keep(GdipDrawRectangleI(graphics_, pen.native(), x, y, width, height));
}
void Graphics::DrawEllipse(const Pen& pen, int x, int y, int width, int height) {
    Keep(GdipDrawEllipseI(graphics_, pen.native(), x, y, width, height));
}
void Graphics::DrawPolygon(const Pen& pen, const GpPoint* points, int count) {
    Keep(GdipDrawPolygonI(graphics_, pen.native(), points, count));
}
void Graphics::DrawPath(const Pen& pen, const Path& path) { Keep(GdipDrawPath(graphics_, pen.native(), path.native())); }
void Graphics::FillRectangle(const SolidBrush& brush, int x, int y, int width, int height) {
    Keep(GdipFillRectangleI(graphics_, brush.native(), x, y, width, height));
}
void Graphics::FillEllipse(const SolidBrush& brush, int x, int y, int width, int height) {
    Keep(GdipFillEllipseI(graphics_, brush.native(), x, y, width, height));
}
void Graphics::FillPolygon(const SolidBrush& brush, const GpPoint* points, int count, FillMode fill) {
    Keep(GdipFillPolygonI(graphics_, brush.native(), points, count, fill));
}
void Graphics::FillPath(const SolidBrush& brush, const Path& path) {
    Keep(GdipFillPath(graphics_, brush.native(), path.native()));
}

void Graphics::DrawText(std::string_view utf8, const Font& font, ARGB colour, float x, float y, TextAlign align,
                        TextBaseline baseline) {
    if (utf8.empty()) return;
    // A zero-size layout rectangle is a point: GDI+ aligns the text about it.
    StringAlignment h = align == TextAlign::Centre  ? StringAlignmentCenter
                        : align == TextAlign::Right ? StringAlignmentFar
                                                    : StringAlignmentNear;
    StringAlignment v = baseline == TextBaseline::Middle   ? StringAlignmentCenter
                        : baseline == TextBaseline::Bottom ? StringAlignmentFar
                                                           : StringAlignmentNear;
    StringFormat format(h, v);
    DrawTextInBox(utf8, font, colour, GpRectF{x, y, 0, 0}, format);
}

void Graphics::DrawTextInBox(std::string_view utf8, const Font& font, ARGB colour, const GpRectF& box,
                             const StringFormat& format) {
    if (utf8.empty()) return;
    WideText text = Widen(utf8);
    SolidBrush brush(colour);
    Keep(brush.status());
    Keep(GdipDrawString(graphics_, text.units.data(), text.length, font.native(), &box, format.native(),
                        brush.native()));
}

GpRectF Graphics::MeasureText(std::string_view utf8, const Font& font) {
    GpRectF result{0, 0, 0, 0};
    if (utf8.empty()) return result;
    WideText text = Widen(utf8);
    GpRectF origin{0, 0, 0, 0};
    GpRectF box{0, 0, 0, 0};
    GpStatus s = GdipMeasureString(graphics_, text.units.data(), text.length, font.native(), &origin, nullptr, &box,
                                   nullptr, nullptr);
    Keep(s);
    if (s == Ok) result = box;
    return result;
}

}  // namespace gdi
