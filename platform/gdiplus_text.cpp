// gdiplus_text.cpp: font families, fonts, string formats, and GdipDrawString
// and GdipMeasureString, on cairo with the free faces that stand in for the
// Windows families.
//
// [SECTION] Family names and faces
// [SECTION] Font metrics
// [SECTION] Glyph cache
// [SECTION] Layout
// [SECTION] Flat text calls
//
// Layout follows GDI+: a layout rectangle of zero width (or height) leaves that
// direction unbounded and the alignment is about the rectangle's x (or y);
// with a width, lines wrap at spaces, a word too long for the line breaks
// between characters, and the text is clipped to the rectangle unless the
// format says NoClip. Each line has 1/6 em of padding at both ends (none with
// the typographic format), trailing spaces do not count unless the format
// measures them, lines are one line spacing apart and the baseline is one
// ascent below the line's top. Every drawn string is handed to the host with
// its boxes in device pixels.
#include "display/gdi_objects.h"
#include "draw_record.h"
#include "gdiplus_internal.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <string>

namespace gdip {

// [SECTION] Family names and faces

namespace {

struct FamilyFace {
    const char* family;  // the Windows family name
    const char* face;    // the metric-compatible (or closest) free face
};

// Families the module's pictures name, and their usual neighbours.
constexpr FamilyFace kFamilyFaces[] = {
    {"Arial", "Liberation Sans"},
    {"HW Arial", "Liberation Sans"},
    {"Helvetica", "Liberation Sans"},
    {"Microsoft Sans Serif", "Liberation Sans"},
    {"MS Sans Serif", "Liberation Sans"},
    {"Arial Narrow", "Liberation Sans Narrow"},
    {"Courier New", "Liberation Mono"},
    {"Courier", "Liberation Mono"},
    {"Lucida Console", "Liberation Mono"},
    {"Times New Roman", "Liberation Serif"},
    {"Times", "Liberation Serif"},
    {"Tahoma", "DejaVu Sans"},
    {"Verdana", "DejaVu Sans"},
    {"Liberation Sans", "Liberation Sans"},
    {"Liberation Mono", "Liberation Mono"},
    {"Liberation Serif", "Liberation Serif"},
    {"DejaVu Sans", "DejaVu Sans"},
    {"DejaVu Sans Mono", "DejaVu Sans Mono"},
};

bool SameName(const char* a, const char* b) {
    // Family names compare without regard to ASCII case, as on Windows.
    for (;; ++a, ++b) {
        char ca = *a, cb = *b;
        if (ca >= 'a' && ca <= 'z') ca = static_cast<char>(ca - 'a' + 'A');
        if (cb >= 'a' && cb <= 'z') cb = static_cast<char>(cb - 'a' + 'A');
        if (ca != cb) return false;
        if (ca == 0) return true;
    }
}

}  // namespace

const char* FaceForFamily(const char* utf8_name) {
    if (utf8_name == nullptr) return nullptr;
    for (const FamilyFace& f : kFamilyFaces) {
        if (SameName(f.family, utf8_name)) return f.face;
    }
    return nullptr;
}

// [SECTION] Font metrics

namespace {

// A 1x1 context for measuring: identity matrix, unhinted metrics, so that a
// string's width is the same whatever the world transform of the drawing.
cairo_t* MeasureContext() {
    static cairo_surface_t* surface = nullptr;
    static cairo_t* cr = nullptr;
    if (cr == nullptr) {
        surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
        cr = cairo_create(surface);
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
        cairo_set_font_options(cr, options);
        cairo_font_options_destroy(options);
    }
    return cr;
}

void UseFont(cairo_t* cr, const GpFont& font, double em) {
    cairo_set_font_face(cr, font.cairo_face);
    cairo_set_font_size(cr, em);
}

double EmInWorld(const GpFont& font) { return font.size * UnitToWorld(font.unit); }

// Advances of the printable ASCII characters at one em, by face and style:
// nearly all the displays measure. Each is measured once at a large size,
// where the face's own units round least, and scaled: unhinted advances grow
// linearly with the size, and a run's advance is the sum of its glyphs'.
struct AdvanceTable {
    const char* face;
    int style;
    std::array<double, 95> per_em;  // ' ' to '~'
};
constexpr int kAdvanceTables = 16;  // faces times styles a panel uses; past that, cairo measures
std::array<AdvanceTable, kAdvanceTables> g_advance_tables;
int g_advance_table_count = 0;

const AdvanceTable* AdvancesFor(const GpFont& font) {
    int style = font.style & (FontStyleBold | FontStyleItalic);
    for (int i = 0; i < g_advance_table_count; ++i) {
        const AdvanceTable& t = g_advance_tables[i];
        if (t.face == font.face && t.style == style) return &t;
    }
    if (g_advance_table_count >= kAdvanceTables) return nullptr;
    constexpr double kReferenceEm = 1024;
    AdvanceTable& t = g_advance_tables[g_advance_table_count];
    cairo_t* cr = MeasureContext();
    UseFont(cr, font, kReferenceEm);
    for (int c = ' '; c <= '~'; ++c) {
        char one[2] = {static_cast<char>(c), 0};
        cairo_text_extents_t ext;
        cairo_text_extents(cr, one, &ext);
        t.per_em[c - ' '] = ext.x_advance / kReferenceEm;
    }
    t.face = font.face;
    t.style = style;
    ++g_advance_table_count;
    return &t;
}

// Advance width of a UTF-8 run, in world units.
double Advance(const GpFont& font, double em, const char* begin, size_t bytes) {
    if (bytes == 0) return 0;
    if (const AdvanceTable* table = AdvancesFor(font)) {
        double sum = 0;
        size_t i = 0;
        for (; i < bytes; ++i) {
            unsigned char c = static_cast<unsigned char>(begin[i]);
            if (c < ' ' || c > '~') break;
            sum += table->per_em[c - ' '];
        }
        if (i == bytes) return sum * em;
    }
    std::string run(begin, bytes);
    cairo_t* cr = MeasureContext();
    UseFont(cr, font, em);
    cairo_text_extents_t ext;
    cairo_text_extents(cr, run.c_str(), &ext);
    return ext.x_advance;
}

// [SECTION] Glyph cache
// Glyph images as cairo draws them, kept by face, style, smoothing and the
// glyph's size and turn in device pixels, so that a string costs its glyphs'
// blends rather than cairo's set-up for each call. cairo's image surfaces
// place a glyph's image at its origin rounded to the pixel, so a run drawn
// from here has the same pixels as cairo's, but for the glyph's shape: its
// size is kept to 1/16 pixel and its turn to half a degree (a compass
// card's figures turn with the heading, and a finer step would make new
// images at every frame of a turn). The glyphs' places are exact.
constexpr int kGlyphSets = 128;
constexpr int kGlyphWays = 4;        // faces a set holds; the least recently used goes
constexpr int kGlyphCount = '~' - ' ' + 1;
constexpr int kMaxGlyphEm = 64;      // device pixels; larger text stays with cairo
constexpr double kMatrixSteps = 16;  // glyph sizes kept to 1/16 pixel
constexpr double kTurnSteps = 2;     // glyph turns kept to half a degree

struct GlyphImage {
    bool ready;         // drawn into the cache (or found too big)
    bool drawable;      // fits the scratch image
    int16_t dx, dy;     // its top left from the glyph origin, device pixels
    int16_t width, height;
    uint32_t offset;    // into the face's pixels
};

struct GlyphFace {
    bool used = false;
    const char* face = nullptr;
    int style = 0;
    bool sharp = false;
    std::array<int32_t, 4> matrix{};  // the glyph's turn in half degrees, then its sizes (see GlyphMatrix)
    uint64_t last_use = 0;
    std::array<GlyphImage, kGlyphCount> glyphs{};
    std::vector<uint8_t> pixels;      // the images, each row after row
};

std::array<GlyphFace, kGlyphSets * kGlyphWays>& GlyphFaces() {
    static auto* faces = new std::array<GlyphFace, kGlyphSets * kGlyphWays>();  // lives as long as the process
    return *faces;
}
uint64_t g_glyph_clock = 0;

GlyphFace& GlyphFaceFor(const GpFont& font, bool sharp, const std::array<int32_t, 4>& matrix) {
    int style = font.style & (FontStyleBold | FontStyleItalic);
    uint64_t h = reinterpret_cast<uintptr_t>(font.face) * 0x9E3779B97F4A7C15ull ^ static_cast<uint64_t>(style) << 1 ^
                 (sharp ? 1u : 0u);
    for (int32_t v : matrix) h = (h ^ static_cast<uint32_t>(v)) * 0x100000001B3ull;
    size_t set = static_cast<size_t>(h ^ (h >> 29)) % kGlyphSets;
    GlyphFace* ways = GlyphFaces().data() + set * kGlyphWays;
    GlyphFace* oldest = ways;
    for (int i = 0; i < kGlyphWays; ++i) {
        GlyphFace& f = ways[i];
        if (f.used && f.face == font.face && f.style == style && f.sharp == sharp && f.matrix == matrix) {
            f.last_use = ++g_glyph_clock;
            return f;
        }
        if (!f.used || (oldest->used && f.last_use < oldest->last_use)) oldest = &f;
    }
    GlyphFace& f = *oldest;
    f.used = true;
    f.face = font.face;
    f.style = style;
    f.sharp = sharp;
    f.matrix = matrix;
    f.last_use = ++g_glyph_clock;
    for (GlyphImage& image : f.glyphs) image.ready = false;
    f.pixels.clear();  // keeps its storage for the new face
    return f;
}

cairo_font_options_t* TextOptions(bool sharp) {
    static cairo_font_options_t* smooth = nullptr;
    static cairo_font_options_t* single_bit = nullptr;
    if (smooth == nullptr) {
        smooth = cairo_font_options_create();
        cairo_font_options_set_antialias(smooth, CAIRO_ANTIALIAS_GRAY);
        cairo_font_options_set_hint_style(smooth, CAIRO_HINT_STYLE_NONE);
        cairo_font_options_set_hint_metrics(smooth, CAIRO_HINT_METRICS_OFF);
        single_bit = cairo_font_options_copy(smooth);
        cairo_font_options_set_antialias(single_bit, CAIRO_ANTIALIAS_NONE);
    }
    return sharp ? single_bit : smooth;
}

// Draws one glyph into the face's images: cairo draws it at a whole-pixel
// origin in the middle of a scratch mask three ems wide, and its inked box
// is kept.
void RenderGlyph(GlyphFace& f, const GpFont& font, int index) {
    constexpr int kScratch = 3 * kMaxGlyphEm + 8;
    static cairo_surface_t* scratch = nullptr;
    static cairo_t* cr = nullptr;
    GlyphImage& image = f.glyphs[index];
    image = GlyphImage{true, false, 0, 0, 0, 0, 0};
    if (cr == nullptr) {
        scratch = cairo_image_surface_create(CAIRO_FORMAT_A8, kScratch, kScratch);
        cr = cairo_create(scratch);
    }
    if (cairo_status(cr) != CAIRO_STATUS_SUCCESS) return;
    double em = std::max({std::fabs(f.matrix[1]), std::fabs(f.matrix[2]), std::fabs(f.matrix[3])}) / kMatrixSteps;
    int kSide = std::min(kScratch, static_cast<int>(std::ceil(3 * em)) + 8);
    int kGlyphScratch = kSide / 2;
    cairo_save(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_set_source_rgba(cr, 0, 0, 0, 0);
    cairo_rectangle(cr, 0, 0, kSide, kSide);
    cairo_fill(cr);
    cairo_restore(cr);
    cairo_set_font_face(cr, font.cairo_face);
    // The turn, then the glyph's own axes: x along the baseline (a), y
    // sheared along it (c) and across it (d).
    double turn = f.matrix[0] / kTurnSteps * M_PI / 180;
    double a = f.matrix[1] / kMatrixSteps, c = f.matrix[2] / kMatrixSteps, d = f.matrix[3] / kMatrixSteps;
    double cs = std::cos(turn), sn = std::sin(turn);
    cairo_matrix_t m;
    cairo_matrix_init(&m, a * cs, a * sn, c * cs - d * sn, c * sn + d * cs, 0, 0);
    cairo_set_font_matrix(cr, &m);
    cairo_set_font_options(cr, TextOptions(f.sharp));
    cairo_set_source_rgba(cr, 0, 0, 0, 1);
    cairo_new_path(cr);
    cairo_move_to(cr, kGlyphScratch, kGlyphScratch);
    char one[2] = {static_cast<char>(' ' + index), 0};
    cairo_show_text(cr, one);
    cairo_surface_flush(scratch);
    const uint8_t* data = cairo_image_surface_get_data(scratch);
    int stride = cairo_image_surface_get_stride(scratch);
    if (data == nullptr) return;
    int x1 = kSide, y1 = kSide, x2 = -1, y2 = -1;
    for (int y = 0; y < kSide; ++y) {
        const uint8_t* row = data + static_cast<ptrdiff_t>(y) * stride;
        for (int x = 0; x < kSide; ++x) {
            if (row[x] == 0) continue;
            x1 = std::min(x1, x);
            x2 = std::max(x2, x);
            y1 = std::min(y1, y);
            y2 = std::max(y2, y);
        }
    }
    if (x2 < 0) {  // no ink: a space
        image.drawable = true;
        return;
    }
    if (x1 == 0 || y1 == 0 || x2 == kSide - 1 || y2 == kSide - 1) return;  // may reach past the scratch
    image.drawable = true;
    image.dx = static_cast<int16_t>(x1 - kGlyphScratch);
    image.dy = static_cast<int16_t>(y1 - kGlyphScratch);
    image.width = static_cast<int16_t>(x2 - x1 + 1);
    image.height = static_cast<int16_t>(y2 - y1 + 1);
    image.offset = static_cast<uint32_t>(f.pixels.size());
    for (int y = y1; y <= y2; ++y) {
        const uint8_t* row = data + static_cast<ptrdiff_t>(y) * stride;
        f.pixels.insert(f.pixels.end(), row + x1, row + x2 + 1);
    }
}

// [SECTION] Layout

constexpr int kMaxLines = 256;  // lines one call lays out; the rest is dropped

struct Line {
    size_t begin;    // byte offset in the UTF-8 text
    size_t end;      // byte offset past the drawn run
    double advance;  // world units, trailing spaces per the format
    double x;        // world x of the run's start
};

struct Layout {
    std::string text;                 // the whole string, UTF-8
    std::array<Line, kMaxLines> lines{};
    int line_count = 0;
    double em = 0;                    // world units
    double pad = 0;                   // at each line end
    double line_height = 0;
    double top = 0;                   // world y of the first line's top
    double text_left = 0, text_right = 0;  // world x extent of the runs
    int units_fitted = 0;
};

// Keeps the text's storage for the next call.
void ResetLayout(Layout& lay) {
    lay.text.clear();
    lay.line_count = 0;
    lay.units_fitted = 0;
}

bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

// End of a run with its trailing spaces dropped.
size_t TrimEnd(const std::string& s, size_t begin, size_t end) {
    while (end > begin && s[end - 1] == ' ') --end;
    return end;
}

void AddLine(Layout& lay, const GpFont& font, bool measure_spaces, size_t begin, size_t end) {
    if (lay.line_count >= kMaxLines) return;
    size_t measured_end = measure_spaces ? end : TrimEnd(lay.text, begin, end);
    Line& line = lay.lines[lay.line_count++];
    line.begin = begin;
    line.end = end;
    line.advance = Advance(font, lay.em, lay.text.data() + begin, measured_end - begin);
}

// Breaks one paragraph into lines no wider than `room` (world units; 0 or
// less: no wrapping).
void WrapParagraph(Layout& lay, const GpFont& font, bool measure_spaces, size_t begin, size_t end, double room) {
    const std::string& s = lay.text;
    if (room <= 0 || begin == end) {
        AddLine(lay, font, measure_spaces, begin, end);
        return;
    }
    size_t pos = begin;
    while (pos < end && lay.line_count < kMaxLines) {
        // The longest run from pos that ends at a word break and fits.
        size_t fit = pos;
        size_t k = pos;
        while (k < end) {
            size_t word_end = k;
            while (word_end < end && s[word_end] == ' ') ++word_end;
            while (word_end < end && s[word_end] != ' ') ++word_end;
            size_t spaces_end = word_end;
            while (spaces_end < end && s[spaces_end] == ' ') ++spaces_end;
            double width = Advance(font, lay.em, s.data() + pos, TrimEnd(s, pos, word_end) - pos);
            if (width > room) break;
            fit = spaces_end;
            k = spaces_end;
        }
        if (fit == pos) {
            // A word longer than the line: as many characters as fit, at least one.
            size_t c = pos + 1;
            while (c < end && IsContinuation(static_cast<unsigned char>(s[c]))) ++c;
            fit = c;
            while (c < end) {
                size_t next = c + 1;
                while (next < end && IsContinuation(static_cast<unsigned char>(s[next]))) ++next;
                if (Advance(font, lay.em, s.data() + pos, next - pos) > room) break;
                fit = next;
                c = next;
            }
        }
        AddLine(lay, font, measure_spaces, pos, fit);
        pos = fit;
    }
}

// Lays a string out in a rectangle, in world units.
void LayOut(Layout& lay, const GpFont& font, const GpRectF& rect, const GpStringFormat* format) {
    int flags = format != nullptr ? format->flags : 0;
    StringAlignment align = format != nullptr ? format->align : StringAlignmentNear;
    StringAlignment line_align = format != nullptr ? format->line_align : StringAlignmentNear;
    bool typographic = format != nullptr && format->typographic;
    bool measure_spaces = (flags & StringFormatFlagsMeasureTrailingSpaces) != 0;
    if (flags & StringFormatFlagsDirectionRightToLeft) {
        if (align == StringAlignmentNear) align = StringAlignmentFar;
        else if (align == StringAlignmentFar) align = StringAlignmentNear;
    }

    lay.em = EmInWorld(font);
    lay.pad = typographic ? 0.0 : lay.em / 6.0;
    lay.line_height = font.line_spacing * lay.em;

    // Paragraphs at line feeds (a CR before one is dropped), each wrapped.
    bool wrap = rect.Width > 0 && (flags & StringFormatFlagsNoWrap) == 0;
    double room = wrap ? rect.Width - 2 * lay.pad : 0;
    if (wrap && room <= 0) room = 1e-6;  // narrower than the padding: one character a line
    const std::string& s = lay.text;
    size_t begin = 0;
    for (size_t i = 0; i <= s.size() && lay.line_count < kMaxLines; ++i) {
        if (i == s.size() || s[i] == '\n') {
            size_t end = i;
            if (end > begin && s[end - 1] == '\r') --end;
            WrapParagraph(lay, font, measure_spaces, begin, end, room);
            begin = i + 1;
        }
    }

    // Whole lines only, when the format limits lines to the rectangle.
    if ((flags & StringFormatFlagsLineLimit) && rect.Height > 0 && lay.line_height > 0) {
        int fit = static_cast<int>(std::floor(rect.Height / lay.line_height + 1e-9));
        if (lay.line_count > fit) lay.line_count = fit;
    }

    double total = lay.line_count * lay.line_height;
    if (line_align == StringAlignmentCenter) lay.top = rect.Height > 0 ? rect.Y + (rect.Height - total) / 2 : rect.Y - total / 2;
    else if (line_align == StringAlignmentFar) lay.top = rect.Height > 0 ? rect.Y + rect.Height - total : rect.Y - total;
    else lay.top = rect.Y;

    lay.text_left = 0;
    lay.text_right = 0;
    for (int i = 0; i < lay.line_count; ++i) {
        Line& line = lay.lines[i];
        if (align == StringAlignmentCenter) {
            line.x = rect.Width > 0 ? rect.X + (rect.Width - line.advance) / 2 : rect.X - line.advance / 2;
        } else if (align == StringAlignmentFar) {
            line.x = rect.Width > 0 ? rect.X + rect.Width - lay.pad - line.advance : rect.X - lay.pad - line.advance;
        } else {
            line.x = rect.X + lay.pad;
        }
        if (i == 0 || line.x < lay.text_left) lay.text_left = line.x;
        if (i == 0 || line.x + line.advance > lay.text_right) lay.text_right = line.x + line.advance;
    }

    // UTF-16 units of the lines kept: all of them unless lines were dropped.
    size_t last_byte = lay.line_count > 0 ? lay.lines[lay.line_count - 1].end : 0;
    int units = 0;
    for (size_t i = 0; i < last_byte && i < s.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(s[i]);
        if (IsContinuation(c)) continue;
        units += c >= 0xF0 ? 2 : 1;
    }
    lay.units_fitted = units;
}

// The string of a call as UTF-8, bounded.
bool ReadString(const WCHAR* string, INT length, std::string& out) {
    if (string == nullptr || length < -1) return false;
    size_t units = 0;
    if (length == -1) {
        while (units < static_cast<size_t>(kMaxStringUnits) && string[units] != 0) ++units;
    } else {
        units = static_cast<size_t>(length) < static_cast<size_t>(kMaxStringUnits) ? static_cast<size_t>(length)
                                                                                    : static_cast<size_t>(kMaxStringUnits);
    }
    out.resize(units * 3 + 1);
    size_t bytes = gdi::Utf16ToUtf8(string, static_cast<int>(units), out.data(), out.size());
    out.resize(bytes);
    return true;
}

// Device-space box of a world rectangle: the bounds of its four corners.
void DeviceBox(const Affine& m, double x, double y, double w, double h, double& bx, double& by, double& bw,
               double& bh) {
    double xs[4] = {x, x + w, x + w, x};
    double ys[4] = {y, y, y + h, y + h};
    double minx = 0, miny = 0, maxx = 0, maxy = 0;
    for (int i = 0; i < 4; ++i) {
        Apply(m, xs[i], ys[i]);
        if (i == 0 || xs[i] < minx) minx = xs[i];
        if (i == 0 || xs[i] > maxx) maxx = xs[i];
        if (i == 0 || ys[i] < miny) miny = ys[i];
        if (i == 0 || ys[i] > maxy) maxy = ys[i];
    }
    bx = minx;
    by = miny;
    bw = maxx - minx;
    bh = maxy - miny;
}

bool ValidRect(const GpRectF* r) {
    return r != nullptr && std::isfinite(r->X) && std::isfinite(r->Y) && std::isfinite(r->Width) &&
           std::isfinite(r->Height) && r->Width >= 0 && r->Height >= 0;
}

// Draws the laid-out lines from the glyph cache, straight into the pixels,
// each glyph at its origin rounded to the pixel as cairo places it. False,
// with nothing drawn, for a character outside printable ASCII, a glyph too
// big for the cache, or a target the pixels can't be written to directly.
bool DrawCachedGlyphs(GpGraphics& g, const GpFont& font, const Layout& lay, ARGB color, bool sharp) {
    const AdvanceTable* advances = AdvancesFor(font);
    if (advances == nullptr || font.cairo_face == nullptr) return false;
    // 1. The glyph matrix in device pixels, as a turn of the baseline and
    // the glyph's axes along and across it; then every glyph ready.
    const Affine& w = g.world;
    double xx = lay.em * w.m11, yx = lay.em * w.m12, xy = lay.em * w.m21, yy = lay.em * w.m22;
    double turn = std::atan2(yx, xx);
    double cs = std::cos(turn), sn = std::sin(turn);
    double a = std::sqrt(xx * xx + yx * yx), c = xy * cs + yy * sn, d = -xy * sn + yy * cs;
    if (!(a <= kMaxGlyphEm) || !(std::fabs(c) <= kMaxGlyphEm) || !(std::fabs(d) <= kMaxGlyphEm)) return false;
    long half_degrees = std::lround(turn * 180 / M_PI * kTurnSteps);
    std::array<int32_t, 4> matrix{static_cast<int32_t>(half_degrees % static_cast<long>(360 * kTurnSteps)),
                                  static_cast<int32_t>(std::lround(a * kMatrixSteps)),
                                  static_cast<int32_t>(std::lround(c * kMatrixSteps)),
                                  static_cast<int32_t>(std::lround(d * kMatrixSteps))};
    GlyphFace& face = GlyphFaceFor(font, sharp, matrix);
    for (int i = 0; i < lay.line_count; ++i) {
        for (size_t k = lay.lines[i].begin; k < lay.lines[i].end; ++k) {
            unsigned char c = static_cast<unsigned char>(lay.text[k]);
            if (c < ' ' || c > '~') return false;
            GlyphImage& image = face.glyphs[c - ' '];
            if (!image.ready) RenderGlyph(face, font, c - ' ');
            if (!image.drawable) return false;
        }
    }
    PixelTarget where;
    if (!DirectPixels(g, where)) return false;
    // 2. Each glyph at its origin: the run's start plus the advances before it.
    bool half = g.pixel_offset == PixelOffsetModeHalf || g.pixel_offset == PixelOffsetModeHighQuality;
    double shift = half ? 0.0 : 0.5;
    cairo_surface_flush(where.surface);
    int drawn_x1 = where.x2, drawn_y1 = where.y2, drawn_x2 = where.x1, drawn_y2 = where.y1;  // empty
    for (int i = 0; i < lay.line_count; ++i) {
        const Line& line = lay.lines[i];
        double baseline = lay.top + i * lay.line_height + font.ascent * lay.em;
        double x = line.x;
        for (size_t k = line.begin; k < line.end; ++k) {
            int index = static_cast<unsigned char>(lay.text[k]) - ' ';
            const GlyphImage& image = face.glyphs[index];
            if (image.width > 0) {
                double px = x, py = baseline;
                Apply(w, px, py);
                if (!(std::fabs(px) < 1e6) || !(std::fabs(py) < 1e6)) {  // far off any surface
                    x += advances->per_em[index] * lay.em;
                    continue;
                }
                int ox = static_cast<int>(std::floor(px + shift + 0.5));
                int oy = static_cast<int>(std::floor(py + shift + 0.5));
                BlendMask(where, ox + image.dx, oy + image.dy, face.pixels.data() + image.offset, image.width,
                          image.height, image.width, color);
                drawn_x1 = std::min(drawn_x1, ox + image.dx);
                drawn_y1 = std::min(drawn_y1, oy + image.dy);
                drawn_x2 = std::max(drawn_x2, ox + image.dx + image.width);
                drawn_y2 = std::max(drawn_y2, oy + image.dy + image.height);
            }
            x += advances->per_em[index] * lay.em;
        }
    }
    // 3. The pixels touched, told once for the whole string.
    drawn_x1 = std::max(drawn_x1, where.x1);
    drawn_y1 = std::max(drawn_y1, where.y1);
    drawn_x2 = std::min(drawn_x2, where.x2);
    drawn_y2 = std::min(drawn_y2, where.y2);
    if (drawn_x1 < drawn_x2 && drawn_y1 < drawn_y2) {
        cairo_surface_mark_dirty_rectangle(where.surface, drawn_x1, drawn_y1, drawn_x2 - drawn_x1, drawn_y2 - drawn_y1);
        NoteDrawn(g, where, drawn_x1, drawn_y1, drawn_x2, drawn_y2);
    }
    return true;
}

}  // namespace
}  // namespace gdip

using namespace gdip;

extern "C" {

// [SECTION] Flat text calls

GpStatus WINGDIPAPI GdipCreateFontFamilyFromName(GDIPCONST WCHAR* name, GpFontCollection* fontCollection,
                                                 GpFontFamily** fontFamily) {
    if (fontFamily == nullptr) return InvalidParameter;
    *fontFamily = nullptr;
    if (name == nullptr || fontCollection != nullptr) return InvalidParameter;
    size_t units = 0;
    while (units < static_cast<size_t>(kMaxFamilyName) && name[units] != 0) ++units;
    std::array<char, kMaxFamilyName> utf8{};
    gdi::Utf16ToUtf8(name, static_cast<int>(units), utf8.data(), utf8.size());
    const char* face = FaceForFamily(utf8.data());
    if (face == nullptr) return FontFamilyNotFound;
    auto* family = new (std::nothrow) GpFontFamily;
    if (family == nullptr) return OutOfMemory;
    family->name = utf8;
    family->face = face;
    *fontFamily = family;
    return Ok;
}

namespace {
GpStatus GenericFamily(const char* name, GpFontFamily** out) {
    if (out == nullptr) return InvalidParameter;
    *out = new (std::nothrow) GpFontFamily;
    if (*out == nullptr) return OutOfMemory;
    std::strncpy((*out)->name.data(), name, kMaxFamilyName - 1);
    (*out)->face = FaceForFamily(name);
    return Ok;
}
}  // namespace

GpStatus WINGDIPAPI GdipGetGenericFontFamilySansSerif(GpFontFamily** nativeFamily) {
    return GenericFamily("Microsoft Sans Serif", nativeFamily);
}

GpStatus WINGDIPAPI GdipGetGenericFontFamilyMonospace(GpFontFamily** nativeFamily) {
    return GenericFamily("Courier New", nativeFamily);
}

GpStatus WINGDIPAPI GdipDeleteFontFamily(GpFontFamily* fontFamily) {
    if (fontFamily == nullptr || fontFamily->tag != Tag::Family) return InvalidParameter;
    fontFamily->tag = Tag::Dead;
    delete fontFamily;
    return Ok;
}

GpStatus WINGDIPAPI GdipCreateFont(GDIPCONST GpFontFamily* fontFamily, REAL emSize, INT style, Unit unit,
                                   GpFont** font) {
    if (font == nullptr) return InvalidParameter;
    *font = nullptr;
    if (fontFamily == nullptr || fontFamily->tag != Tag::Family) return InvalidParameter;
    if (!std::isfinite(emSize) || emSize <= 0 || unit < UnitWorld || unit > UnitMillimeter || unit == UnitDisplay) {
        return InvalidParameter;
    }
    auto* f = new (std::nothrow) GpFont;
    if (f == nullptr) return OutOfMemory;
    f->family = fontFamily->name;
    f->face = fontFamily->face;
    f->size = emSize;
    f->unit = unit;
    f->style = style & (FontStyleBoldItalic | FontStyleUnderline | FontStyleStrikeout);
    f->cairo_face = cairo_toy_font_face_create(f->face, (style & FontStyleItalic) ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                                               (style & FontStyleBold) ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    // Metrics per em, measured large for precision.
    constexpr double kMeasureEm = 1000.0;
    cairo_t* cr = MeasureContext();
    UseFont(cr, *f, kMeasureEm);
    cairo_font_extents_t ext;
    cairo_font_extents(cr, &ext);
    f->ascent = ext.ascent / kMeasureEm;
    f->descent = ext.descent / kMeasureEm;
    f->line_spacing = ext.height / kMeasureEm;
    if (!(f->line_spacing > 0)) {
        f->ascent = 0.9;  // no face at all: plausible numbers keep layout sane
        f->descent = 0.2;
        f->line_spacing = 1.15;
    }
    *font = f;
    return Ok;
}

GpStatus WINGDIPAPI GdipDeleteFont(GpFont* font) {
    if (!IsFont(font)) return InvalidParameter;
    cairo_font_face_destroy(font->cairo_face);
    font->tag = Tag::Dead;
    delete font;
    return Ok;
}

GpStatus WINGDIPAPI GdipGetFontSize(GpFont* font, REAL* size) {
    if (!IsFont(font) || size == nullptr) return InvalidParameter;
    *size = static_cast<REAL>(font->size);
    return Ok;
}

GpStatus WINGDIPAPI GdipGetFontHeight(GDIPCONST GpFont* font, GDIPCONST GpGraphics*, REAL* height) {
    if (!IsFont(font) || height == nullptr) return InvalidParameter;
    *height = static_cast<REAL>(font->line_spacing * EmInWorld(*font));
    return Ok;
}

GpStatus WINGDIPAPI GdipCreateStringFormat(INT formatAttributes, LANGID, GpStringFormat** format) {
    if (format == nullptr) return InvalidParameter;
    *format = new (std::nothrow) GpStringFormat;
    if (*format == nullptr) return OutOfMemory;
    (*format)->flags = formatAttributes;
    return Ok;
}

GpStatus WINGDIPAPI GdipStringFormatGetGenericTypographic(GpStringFormat** format) {
    GpStatus status = GdipCreateStringFormat(
        StringFormatFlagsLineLimit | StringFormatFlagsNoClip | StringFormatFlagsNoFitBlackBox, 0, format);
    if (status == Ok) (*format)->typographic = true;
    return status;
}

GpStatus WINGDIPAPI GdipDeleteStringFormat(GpStringFormat* format) {
    if (!IsFormat(format)) return InvalidParameter;
    format->tag = Tag::Dead;
    delete format;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetStringFormatFlags(GpStringFormat* format, INT flags) {
    if (!IsFormat(format)) return InvalidParameter;
    format->flags = flags;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetStringFormatAlign(GpStringFormat* format, StringAlignment align) {
    if (!IsFormat(format) || align < StringAlignmentNear || align > StringAlignmentFar) return InvalidParameter;
    format->align = align;
    return Ok;
}

GpStatus WINGDIPAPI GdipSetStringFormatLineAlign(GpStringFormat* format, StringAlignment align) {
    if (!IsFormat(format) || align < StringAlignmentNear || align > StringAlignmentFar) return InvalidParameter;
    format->line_align = align;
    return Ok;
}

GpStatus WINGDIPAPI GdipMeasureString(GpGraphics* graphics, GDIPCONST WCHAR* string, INT length, GDIPCONST GpFont* font,
                                      GDIPCONST GpRectF* layoutRect, GDIPCONST GpStringFormat* stringFormat,
                                      GpRectF* boundingBox, INT* codepointsFitted, INT* linesFilled) {
    if (!IsGraphics(graphics) || !IsFont(font) || !ValidRect(layoutRect) || boundingBox == nullptr) {
        return InvalidParameter;
    }
    if (stringFormat != nullptr && !IsFormat(stringFormat)) return InvalidParameter;
    static Layout lay;  // large; one call at a time on the panel thread
    ResetLayout(lay);
    if (!ReadString(string, length, lay.text)) return InvalidParameter;
    GpRectF box{layoutRect->X, layoutRect->Y, 0, 0};
    if (!lay.text.empty()) {
        LayOut(lay, *font, *layoutRect, stringFormat);
        if (lay.line_count > 0) {
            box.X = static_cast<REAL>(lay.text_left - lay.pad);
            box.Y = static_cast<REAL>(lay.top);
            box.Width = static_cast<REAL>(lay.text_right - lay.text_left + 2 * lay.pad);
            box.Height = static_cast<REAL>(lay.line_count * lay.line_height);
        }
    }
    *boundingBox = box;
    if (codepointsFitted != nullptr) *codepointsFitted = lay.units_fitted;
    if (linesFilled != nullptr) *linesFilled = lay.line_count;
    return Ok;
}

GpStatus WINGDIPAPI GdipDrawString(GpGraphics* graphics, GDIPCONST WCHAR* string, INT length, GDIPCONST GpFont* font,
                                   GDIPCONST GpRectF* layoutRect, GDIPCONST GpStringFormat* stringFormat,
                                   GDIPCONST GpBrush* brush) {
    if (!IsGraphics(graphics) || !IsFont(font) || !ValidRect(layoutRect) || !IsBrush(brush)) return InvalidParameter;
    if (stringFormat != nullptr && !IsFormat(stringFormat)) return InvalidParameter;
    static Layout lay;
    ResetLayout(lay);
    if (!ReadString(string, length, lay.text)) return InvalidParameter;
    if (lay.text.empty()) return Ok;
    GpGraphics& g = *graphics;
    // [0] A string that can't reach the clip however it is laid out (a map's
    // idents far beyond its frame) is rejected before its layout, the dear
    // part, and only recorded, with its layout point for both boxes.
    {
        const GpRectF& r = *layoutRect;
        double em = EmInWorld(*font);
        double chars = static_cast<double>(lay.text.size());
        double reach_x = chars * 1.2 * em + 2 * em;   // no glyph advances more than 1.2 em
        double reach_y = chars * 1.5 * em + 2 * em;   // a line a character at the worst wrap
        double xs[2] = {r.X - reach_x, r.X + r.Width + reach_x};
        double ys[2] = {r.Y - reach_y, r.Y + r.Height + reach_y};
        double x1 = 1e300, y1 = 1e300, x2 = -1e300, y2 = -1e300;
        for (double wx : xs)
            for (double wy : ys) {
                double dx = wx, dy = wy;
                Apply(g.world, dx, dy);
                x1 = std::min(x1, dx);
                y1 = std::min(y1, dy);
                x2 = std::max(x2, dx);
                y2 = std::max(y2, dy);
            }
        if (x1 <= x2 && y1 <= y2 && OutsideClip(g, x1, y1, x2, y2)) {
            OrbDrawnText rec{};
            rec.hdc = g.hdc;
            rec.utf8 = lay.text.c_str();
            DeviceBox(g.world, r.X, r.Y, r.Width, r.Height, rec.layout_x, rec.layout_y, rec.layout_width,
                      rec.layout_height);
            DeviceBox(g.world, r.X, r.Y, 0, 0, rec.text_x, rec.text_y, rec.text_width, rec.text_height);
            rec.baseline_x = r.X;
            rec.baseline_y = r.Y + font->ascent * em;
            Apply(g.world, rec.baseline_x, rec.baseline_y);
            rec.angle_deg = std::atan2(g.world.m12, g.world.m11) * 180.0 / M_PI;
            rec.argb = brush->color;
            rec.font_family = font->family.data();
            rec.font_face = font->face;
            rec.font_size_px = em * LinearScale(g.world);
            rec.font_style = font->style;
            rec.line_count = 1;
            platform::RecordDrawnText(rec);
            return Ok;
        }
    }
    LayOut(lay, *font, *layoutRect, stringFormat);
    int flags = stringFormat != nullptr ? stringFormat->flags : 0;

    // [1] Glyphs, in the world transform, within the layout rectangle. A
    // string wholly outside the clip (a map's idents beyond its frame) is
    // only recorded: GDI+ rejects it by its bounds before any glyph work.
    const GpRectF& r = *layoutRect;
    double bx = 0, by = 0, bw = 0, bh = 0;
    DeviceBox(g.world, lay.text_left, lay.top, lay.text_right - lay.text_left, lay.line_count * lay.line_height, bx, by,
              bw, bh);
    constexpr double kGlyphOverhang = 4;  // device pixels a glyph may reach past its advance box
    bool single_bit = g.text_hint == TextRenderingHintSingleBitPerPixelGridFit ||
                      g.text_hint == TextRenderingHintSingleBitPerPixel;
    // The layout rectangle clips only what may reach past it: glyphs well
    // inside it need no clip.
    double slack = kGlyphOverhang / std::max(LinearScale(g.world), 1e-9);
    bool inside_x = !(r.Width > 0) || (lay.text_left - slack >= r.X && lay.text_right + slack <= r.X + r.Width);
    double text_bottom = lay.top + lay.line_count * lay.line_height;
    bool inside_y = !(r.Height > 0) || (lay.top - slack >= r.Y && text_bottom + slack <= r.Y + r.Height);
    bool clip_to_layout = (flags & StringFormatFlagsNoClip) == 0 && (r.Width > 0 || r.Height > 0) &&
                          !(inside_x && inside_y);
    bool visible =
        !OutsideClip(g, bx - kGlyphOverhang, by - kGlyphOverhang, bx + bw + kGlyphOverhang, by + bh + kGlyphOverhang);
    bool plain = (font->style & (FontStyleUnderline | FontStyleStrikeout)) == 0;
    if (visible && !(plain && !clip_to_layout && DrawCachedGlyphs(g, *font, lay, brush->color, single_bit))) {
        cairo_t* cr = DrawTarget(g);
        cairo_save(cr);
        UseWorldMatrix(g, cr);
        if (clip_to_layout) {
            constexpr double kUnbounded = 1e6;  // world units: beyond any surface
            double cx = r.Width > 0 ? r.X : -kUnbounded, cw = r.Width > 0 ? r.Width : 2 * kUnbounded;
            double cy = r.Height > 0 ? r.Y : -kUnbounded, ch = r.Height > 0 ? r.Height : 2 * kUnbounded;
            cairo_new_path(cr);
            cairo_rectangle(cr, cx, cy, cw, ch);
            cairo_clip(cr);
        }
        cairo_set_font_options(cr, TextOptions(single_bit));
        UseFont(cr, *font, lay.em);
        UseColor(cr, brush->color);
        std::string run;
        for (int i = 0; i < lay.line_count; ++i) {
            const Line& line = lay.lines[i];
            double baseline = lay.top + i * lay.line_height + font->ascent * lay.em;
            run.assign(lay.text, line.begin, line.end - line.begin);
            cairo_new_path(cr);
            cairo_move_to(cr, line.x, baseline);
            cairo_show_text(cr, run.c_str());
            // Underline and strikeout as bars the width of the run.
            if (font->style & FontStyleUnderline) {
                cairo_new_path(cr);
                cairo_rectangle(cr, line.x, baseline + 0.106 * lay.em, line.advance, 0.073 * lay.em);
                cairo_fill(cr);
            }
            if (font->style & FontStyleStrikeout) {
                cairo_new_path(cr);
                cairo_rectangle(cr, line.x, baseline - 0.259 * lay.em, line.advance, 0.05 * lay.em);
                cairo_fill(cr);
            }
        }
        cairo_restore(cr);
        cairo_surface_flush(g.surface);
    }

    // [2] The record for the host, in device pixels.
    OrbDrawnText rec{};
    rec.hdc = g.hdc;
    rec.utf8 = lay.text.c_str();
    DeviceBox(g.world, r.X, r.Y, r.Width, r.Height, rec.layout_x, rec.layout_y, rec.layout_width, rec.layout_height);
    DeviceBox(g.world, lay.text_left, lay.top, lay.text_right - lay.text_left, lay.line_count * lay.line_height,
              rec.text_x, rec.text_y, rec.text_width, rec.text_height);
    rec.baseline_x = lay.line_count > 0 ? lay.lines[0].x : r.X;
    rec.baseline_y = lay.top + font->ascent * lay.em;
    Apply(g.world, rec.baseline_x, rec.baseline_y);
    rec.angle_deg = std::atan2(g.world.m12, g.world.m11) * 180.0 / M_PI;
    rec.argb = brush->color;
    rec.font_family = font->family.data();
    rec.font_face = font->face;
    rec.font_size_px = lay.em * LinearScale(g.world);
    rec.font_style = font->style;
    rec.line_count = lay.line_count;
    platform::RecordDrawnText(rec);
    return Ok;
}

}  // extern "C"
