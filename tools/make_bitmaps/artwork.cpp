// artwork.cpp: the looks of the bezels, keys, knobs and lamps.
//
// A bezel is a matte dark-grey anti-glare frame with a fine grain and a
// raised bevel, a recessed screen opening, screw heads in the corners, and
// the controls of resources/panel_layouts.h drawn where their click areas
// are. Icon layers draw one control again, lit or turned. To restyle the set,
// change the constants of the first section and run `./orb bitmaps`.
//
// Index:
//   [SECTION] Style
//   [SECTION] Small helpers
//   [SECTION] Frame, screen opening, screws
//   [SECTION] Keys and buttons
//   [SECTION] Lamps
//   [SECTION] Knobs
//   [SECTION] Layers
#include "artwork.h"

#include "resources/panel_layouts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace {

// [SECTION] Style
struct Rgb {
    double r, g, b;  // 0..1
};

struct Palette {
    Rgb frame_top;      // frame gradient, top
    Rgb frame_bottom;   // frame gradient, bottom
};

constexpr Palette kGreyPanel{{0.243, 0.255, 0.271}, {0.176, 0.184, 0.196}};
constexpr Palette kBrownPanel{{0.345, 0.290, 0.243}, {0.255, 0.208, 0.169}};  // the _BR bezels

constexpr Rgb kLegendWhite{0.93, 0.93, 0.88};     // key legends
constexpr Rgb kEngraving{0.80, 0.80, 0.75};       // placards and knob legends
constexpr Rgb kKeyTop{0.345, 0.357, 0.373};       // key cap gradient
constexpr Rgb kKeyBottom{0.196, 0.204, 0.216};
constexpr Rgb kWell{0.055, 0.058, 0.062};         // the hole a button sits in
constexpr Rgb kStripDark{0.105, 0.125, 0.115};    // annunciator strip, off
constexpr Rgb kStripLit{0.50, 1.00, 0.58};        // annunciator strip, on
constexpr Rgb kLampFaceDark{0.085, 0.080, 0.066}; // lamp face, off
constexpr Rgb kLampLegendDark{0.34, 0.30, 0.21};
constexpr Rgb kLampAmber{1.00, 0.72, 0.22};       // lamp legend, on
constexpr Rgb kLampGreen{0.42, 1.00, 0.52};
constexpr Rgb kExecOff{0.30, 0.32, 0.30};
constexpr Rgb kExecOn{0.86, 0.98, 0.90};
constexpr Rgb kFlagRed{0.95, 0.12, 0.10};

constexpr const char* kFont = "Liberation Sans";
constexpr const char* kNarrowFont = "Liberation Sans Narrow";
constexpr int kGrain = 3;           // +- grey levels of the anti-glare grain
constexpr double kScrewRadius = 4.5;

// [SECTION] Small helpers
struct Box {
    double x, y, w, h;
    double cx() const { return x + w / 2; }
    double cy() const { return y + h / 2; }
};

Box BoxOf(const CapSpec& c) { return {double(c.x), double(c.y), double(c.w), double(c.h)}; }
Box BoxOf(const KnobSpec& k) { return {double(k.x), double(k.y), double(k.w), double(k.h)}; }
Box BoxOf(const LayerSpec& l) { return {double(l.x), double(l.y), double(l.width), double(l.height)}; }

bool Overlaps(const Box& a, const Box& b) {
    return a.x < b.x + b.w && b.x < a.x + a.w && a.y < b.y + b.h && b.y < a.y + a.h;
}
bool Contains(const Box& outer, const Box& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w &&
           inner.y + inner.h <= outer.y + outer.h;
}

void SetRgb(cairo_t* cr, Rgb c, double alpha = 1.0) { cairo_set_source_rgba(cr, c.r, c.g, c.b, alpha); }

Rgb Mix(Rgb a, Rgb b, double t) { return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t}; }

void RoundedRect(cairo_t* cr, Box b, double r) {
    r = std::min({r, b.w / 2, b.h / 2});
    cairo_new_sub_path(cr);
    cairo_arc(cr, b.x + b.w - r, b.y + r, r, -M_PI / 2, 0);
    cairo_arc(cr, b.x + b.w - r, b.y + b.h - r, r, 0, M_PI / 2);
    cairo_arc(cr, b.x + r, b.y + b.h - r, r, M_PI / 2, M_PI);
    cairo_arc(cr, b.x + r, b.y + r, r, M_PI, 3 * M_PI / 2);
    cairo_close_path(cr);
}

void VerticalGradient(cairo_t* cr, Box b, Rgb top, Rgb bottom) {
    cairo_pattern_t* p = cairo_pattern_create_linear(0, b.y, 0, b.y + b.h);
    cairo_pattern_add_color_stop_rgb(p, 0, top.r, top.g, top.b);
    cairo_pattern_add_color_stop_rgb(p, 1, bottom.r, bottom.g, bottom.b);
    cairo_set_source(cr, p);
    cairo_pattern_destroy(p);
}

void SelectFont(cairo_t* cr, const char* text, double size) {
    bool narrow = text != nullptr && std::char_traits<char>::length(text) >= 3;
    cairo_select_font_face(cr, narrow ? kNarrowFont : kFont, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cr, size);
}

// The size, at most `size`, at which `text` fits `width`.
double FitSize(cairo_t* cr, const char* text, double size, double width) {
    constexpr double kSmallest = 5.0;  // below this a legend is a smudge
    for (; size > kSmallest; size -= 0.5) {
        SelectFont(cr, text, size);
        cairo_text_extents_t e;
        cairo_text_extents(cr, text, &e);
        if (e.x_advance <= width) break;
    }
    SelectFont(cr, text, size);
    return size;
}

// Centred text; `glow` paints a soft halo first, as a lit legend shows.
void CentredText(cairo_t* cr, const char* text, double cx, double cy, double size, double width, Rgb colour,
                 bool glow = false) {
    if (text == nullptr || *text == 0) return;
    FitSize(cr, text, size, width);
    cairo_text_extents_t e;
    cairo_text_extents(cr, text, &e);
    double x = cx - e.x_advance / 2;
    double y = cy + e.height / 2 - (e.height + e.y_bearing);
    if (glow) {
        for (double d : {1.6, 1.0}) {
            SetRgb(cr, colour, 0.22);
            for (int k = 0; k < 8; ++k) {
                cairo_move_to(cr, x + d * std::cos(k * M_PI / 4), y + d * std::sin(k * M_PI / 4));
                cairo_show_text(cr, text);
            }
        }
    }
    SetRgb(cr, colour);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, text);
}

// An engraved legend: light text with a dark lower edge.
void EngravedText(cairo_t* cr, const char* text, double cx, double cy, double size, double width) {
    CentredText(cr, text, cx, cy + 0.8, size, width, {0.02, 0.02, 0.02});
    CentredText(cr, text, cx, cy, size, width, kEngraving);
}

void DrawGlyph(cairo_t* cr, Glyph glyph, double cx, double cy, double s, Rgb colour) {
    cairo_new_path(cr);  // text leaves a current point behind
    SetRgb(cr, colour);
    switch (glyph) {
    case Glyph::None: return;
    case Glyph::Up:
        cairo_move_to(cr, cx, cy - s / 2);
        cairo_line_to(cr, cx + s / 2, cy + s / 2);
        cairo_line_to(cr, cx - s / 2, cy + s / 2);
        break;
    case Glyph::Down:
        cairo_move_to(cr, cx, cy + s / 2);
        cairo_line_to(cr, cx + s / 2, cy - s / 2);
        cairo_line_to(cr, cx - s / 2, cy - s / 2);
        break;
    case Glyph::Left:
        cairo_move_to(cr, cx - s / 2, cy);
        cairo_line_to(cr, cx + s / 2, cy - s / 2);
        cairo_line_to(cr, cx + s / 2, cy + s / 2);
        break;
    case Glyph::Right:
        cairo_move_to(cr, cx + s / 2, cy);
        cairo_line_to(cr, cx - s / 2, cy - s / 2);
        cairo_line_to(cr, cx - s / 2, cy + s / 2);
        break;
    case Glyph::Circle:
        cairo_set_line_width(cr, std::max(1.0, s / 6));
        cairo_arc(cr, cx, cy, s / 2, 0, 2 * M_PI);
        cairo_stroke(cr);
        return;
    case Glyph::Diamond:
        cairo_set_line_width(cr, std::max(1.0, s / 6));
        cairo_move_to(cr, cx, cy - s / 2);
        cairo_line_to(cr, cx + s / 2, cy);
        cairo_line_to(cr, cx, cy + s / 2);
        cairo_line_to(cr, cx - s / 2, cy);
        cairo_close_path(cr);
        cairo_stroke(cr);
        return;
    }
    cairo_close_path(cr);
    cairo_fill(cr);
}

// Label lines and glyph stacked and centred in a box.
void Legend(cairo_t* cr, const CapSpec& cap, Box area, double size, Rgb colour, bool glow = false) {
    int lines = (cap.label ? 1 : 0) + (cap.label2 ? 1 : 0);
    bool glyph = cap.glyph != Glyph::None;
    double glyph_size = std::min(size * 0.8, area.h * 0.4);
    double line_h = size * 1.05;
    double total = lines * line_h + (glyph ? glyph_size + (lines ? 2 : 0) : 0);
    if (total > area.h) {  // shrink the lot to fit
        double k = area.h / total;
        size *= k;
        line_h *= k;
        glyph_size *= k;
        total = area.h;
    }
    double y = area.cy() - total / 2;
    for (const char* text : {cap.label, cap.label2}) {
        if (text == nullptr) continue;
        CentredText(cr, text, area.cx(), y + line_h / 2, size, area.w - 4, colour, glow);
        y += line_h;
    }
    if (glyph) DrawGlyph(cr, cap.glyph, area.cx(), y + (lines ? 2 : 0) + glyph_size / 2, glyph_size, colour);
}

// [SECTION] Frame, screen opening, screws
void AddGrain(cairo_t* cr, int width, int height, uint32_t seed) {
    cairo_surface_t* s = cairo_get_target(cr);
    cairo_surface_flush(s);
    unsigned char* data = cairo_image_surface_get_data(s);
    int stride = cairo_image_surface_get_stride(s);
    uint32_t state = seed | 1;
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y) * stride);
        for (int x = 0; x < width; ++x) {
            state ^= state << 13;
            state ^= state >> 17;
            state ^= state << 5;
            if ((row[x] >> 24) != 0xFF) continue;  // only the solid frame
            int d = static_cast<int>(state % (2 * kGrain + 1)) - kGrain;
            uint32_t p = row[x];
            auto ch = [&](int shift) {
                return static_cast<uint32_t>(std::clamp(static_cast<int>((p >> shift) & 0xFF) + d, 0, 255)) << shift;
            };
            row[x] = 0xFF000000u | ch(16) | ch(8) | ch(0);
        }
    }
    cairo_surface_mark_dirty(s);
}

void DrawFrame(cairo_t* cr, int width, int height, const Palette& palette, uint32_t seed) {
    Box whole{0, 0, double(width), double(height)};
    double radius = std::min(width, height) < 100 ? 5 : 9;
    RoundedRect(cr, whole, radius);
    VerticalGradient(cr, whole, palette.frame_top, palette.frame_bottom);
    cairo_fill(cr);
    AddGrain(cr, width, height, seed);
    // Raised bevel: light on the upper and left edges, dark on the others.
    cairo_set_line_width(cr, 1.5);
    RoundedRect(cr, {1.25, 1.25, width - 2.5, height - 2.5}, radius - 1);
    cairo_pattern_t* p = cairo_pattern_create_linear(0, 0, width * 0.35, height);
    cairo_pattern_add_color_stop_rgba(p, 0, 1, 1, 1, 0.22);
    cairo_pattern_add_color_stop_rgba(p, 0.5, 1, 1, 1, 0.04);
    cairo_pattern_add_color_stop_rgba(p, 1, 0, 0, 0, 0.45);
    cairo_set_source(cr, p);
    cairo_stroke(cr);
    cairo_pattern_destroy(p);
    cairo_set_line_width(cr, 1.0);
    RoundedRect(cr, {0.5, 0.5, width - 1.0, height - 1.0}, radius);
    cairo_set_source_rgba(cr, 0, 0, 0, 0.8);
    cairo_stroke(cr);
}

constexpr double kRecessLip = 5;  // width of the sunken ring around a screen

Box RecessOf(const LayerSpec& surface) {
    return {surface.x - kRecessLip, surface.y - kRecessLip, surface.width + 2 * kRecessLip,
            surface.height + 2 * kRecessLip};
}

void DrawScreenOpening(cairo_t* cr, const LayerSpec& surface) {
    Box outer = RecessOf(surface);
    // Sunken lip: shadow on the upper and left edges, light on the lower and right.
    RoundedRect(cr, outer, 4);
    cairo_pattern_t* p = cairo_pattern_create_linear(outer.x, outer.y, outer.x + outer.w * 0.3, outer.y + outer.h);
    cairo_pattern_add_color_stop_rgb(p, 0, 0.06, 0.06, 0.065);
    cairo_pattern_add_color_stop_rgb(p, 1, 0.17, 0.175, 0.185);
    cairo_set_source(cr, p);
    cairo_fill(cr);
    cairo_pattern_destroy(p);
    RoundedRect(cr, {outer.x + 2, outer.y + 2, outer.w - 4, outer.h - 4}, 3);
    cairo_set_source_rgb(cr, 0.035, 0.037, 0.04);
    cairo_fill(cr);
    // The glass itself is the surface layer's: leave it transparent.
    cairo_save(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
    cairo_rectangle(cr, surface.x, surface.y, surface.width, surface.height);
    cairo_fill(cr);
    cairo_restore(cr);
}

void DrawScrew(cairo_t* cr, double cx, double cy, double r, double slot_angle) {
    cairo_arc(cr, cx + 0.6, cy + 0.9, r + 1.2, 0, 2 * M_PI);  // countersink shadow
    cairo_set_source_rgba(cr, 0, 0, 0, 0.55);
    cairo_fill(cr);
    cairo_pattern_t* p = cairo_pattern_create_radial(cx - r * 0.4, cy - r * 0.4, r * 0.1, cx, cy, r);
    cairo_pattern_add_color_stop_rgb(p, 0, 0.72, 0.73, 0.74);
    cairo_pattern_add_color_stop_rgb(p, 1, 0.30, 0.31, 0.32);
    cairo_arc(cr, cx, cy, r, 0, 2 * M_PI);
    cairo_set_source(cr, p);
    cairo_fill(cr);
    cairo_pattern_destroy(p);
    cairo_arc(cr, cx, cy, r, 0, 2 * M_PI);
    cairo_set_line_width(cr, 0.7);
    cairo_set_source_rgba(cr, 0, 0, 0, 0.7);
    cairo_stroke(cr);
    double dx = std::cos(slot_angle) * r * 0.8, dy = std::sin(slot_angle) * r * 0.8;
    cairo_set_line_width(cr, std::max(1.0, r * 0.28));
    cairo_move_to(cr, cx - dx, cy - dy);
    cairo_line_to(cr, cx + dx, cy + dy);
    cairo_set_source_rgb(cr, 0.10, 0.10, 0.11);
    cairo_stroke(cr);
}

// [SECTION] Keys and buttons
// A rubber key cap: shadow, sculpted body, light upper edge.
void DrawCapBody(cairo_t* cr, Box b, double radius) {
    RoundedRect(cr, {b.x, b.y + 1.5, b.w, b.h}, radius);
    cairo_set_source_rgba(cr, 0, 0, 0, 0.6);
    cairo_fill(cr);
    RoundedRect(cr, b, radius);
    VerticalGradient(cr, b, kKeyTop, kKeyBottom);
    cairo_fill(cr);
    Box face{b.x + 1.5, b.y + 1.2, b.w - 3, b.h - 3.5};
    RoundedRect(cr, face, std::max(1.0, radius - 1));
    VerticalGradient(cr, face, Mix(kKeyTop, {1, 1, 1}, 0.06), Mix(kKeyBottom, kKeyTop, 0.45));
    cairo_fill(cr);
    cairo_set_line_width(cr, 1.0);
    cairo_move_to(cr, b.x + radius, b.y + 0.5);
    cairo_line_to(cr, b.x + b.w - radius, b.y + 0.5);
    cairo_set_source_rgba(cr, 1, 1, 1, 0.28);
    cairo_stroke(cr);
}

// A line-select or soft key: a small blank cap inside its click box, kept
// within the bezel when the box runs past its edge.
Box SmallCapBox(const CapSpec& cap, int bezel_width) {
    double w = std::min(cap.w - 8.0, cap.kind == CapKind::SoftKey ? 30.0 : 28.0);
    double h = std::min(cap.h - 8.0, 20.0);
    if (cap.kind == CapKind::SoftKey) w = cap.w - 4, h = cap.h - 4;
    double x = cap.x + (cap.w - w) / 2;
    x = std::min(x, bezel_width - 4 - w);
    return {x, cap.y + (cap.h - h) / 2, w, h};
}

void DrawKey(cairo_t* cr, const CapSpec& cap, int bezel_width, double legend_shift) {
    if (cap.kind == CapKind::LineKey || cap.kind == CapKind::SoftKey) {
        Box b = SmallCapBox(cap, bezel_width);
        DrawCapBody(cr, b, 2.5);
        if (cap.kind == CapKind::LineKey) {
            cairo_set_line_width(cr, 1.6);
            cairo_move_to(cr, b.cx() - b.w * 0.28, b.cy());
            cairo_line_to(cr, b.cx() + b.w * 0.28, b.cy());
            SetRgb(cr, kLegendWhite, 0.9);
            cairo_stroke(cr);
        }
        return;
    }
    Box b{cap.x + 2.0, cap.y + 2.0, cap.w - 4.0, cap.h - 4.5};
    DrawCapBody(cr, b, std::min(4.0, b.h / 4));
    // One character (letters, digits): large. Words: as large as the cap allows.
    bool single = cap.label != nullptr && cap.label2 == nullptr && std::char_traits<char>::length(cap.label) == 1;
    double size = single ? std::min(16.0, b.h * 0.5) : cap.label2 ? std::min(10.0, b.h * 0.36) : std::min(11.0, b.h * 0.42);
    Box area{b.x, b.y + legend_shift, b.w, b.h - 2 - legend_shift};
    Legend(cr, cap, area, size, kLegendWhite);
}

Box ButtonCapBox(const CapSpec& cap) { return {cap.x + 2.5, cap.y + 2.5, cap.w - 5.0, cap.h - 5.5}; }

Box StripBox(const CapSpec& cap) {
    Box c = ButtonCapBox(cap);
    double h = std::clamp(c.h * 0.16, 3.0, 6.0);
    return {c.x + 3, c.y + 3, c.w - 6, h};
}

// A push button in its well: cap, annunciator strip, legend below the strip.
void DrawPushButton(cairo_t* cr, const CapSpec& cap, bool lit) {
    Box well{double(cap.x), double(cap.y), double(cap.w), double(cap.h)};
    RoundedRect(cr, well, 3.5);
    SetRgb(cr, kWell);
    cairo_fill(cr);
    Box c = ButtonCapBox(cap);
    DrawCapBody(cr, c, 2.5);
    Box strip = StripBox(cap);
    if (lit) {
        for (double g : {3.0, 2.0, 1.0}) {
            RoundedRect(cr, {strip.x - g, strip.y - g, strip.w + 2 * g, strip.h + 2 * g}, 1.5 + g);
            SetRgb(cr, kStripLit, 0.13);
            cairo_fill(cr);
        }
        RoundedRect(cr, strip, 1.2);
        cairo_pattern_t* p = cairo_pattern_create_linear(0, strip.y, 0, strip.y + strip.h);
        cairo_pattern_add_color_stop_rgb(p, 0, 0.85, 1.0, 0.88);
        cairo_pattern_add_color_stop_rgb(p, 1, kStripLit.r, kStripLit.g, kStripLit.b);
        cairo_set_source(cr, p);
        cairo_fill(cr);
        cairo_pattern_destroy(p);
    } else {
        RoundedRect(cr, strip, 1.2);
        SetRgb(cr, kStripDark);
        cairo_fill_preserve(cr);
        cairo_set_line_width(cr, 0.6);
        cairo_set_source_rgba(cr, 0, 0, 0, 0.8);
        cairo_stroke(cr);
    }
    Box area{c.x, strip.y + strip.h + 1, c.w, c.y + c.h - (strip.y + strip.h + 1) - 1};
    double size = std::min(11.0, area.h * 0.55);
    if (cap.label2) size = std::min(size, area.h * 0.42);
    Legend(cr, cap, area, size, kLegendWhite);
}

// A push button whose face is a black two-line annunciator; `lit_half` 0 lights
// the top legend, 1 the bottom one, -1 none.
void DrawSplitButton(cairo_t* cr, const CapSpec& cap, int lit_half) {
    Box well{double(cap.x), double(cap.y), double(cap.w), double(cap.h)};
    RoundedRect(cr, well, 3.5);
    SetRgb(cr, kWell);
    cairo_fill(cr);
    Box c = ButtonCapBox(cap);
    DrawCapBody(cr, c, 2.5);
    Box face{c.x + 3, c.y + 3, c.w - 6, c.h - 7};
    RoundedRect(cr, face, 1.5);
    cairo_set_source_rgb(cr, 0.05, 0.055, 0.05);
    cairo_fill(cr);
    cairo_set_line_width(cr, 1);
    cairo_move_to(cr, face.x + 2, face.cy());
    cairo_line_to(cr, face.x + face.w - 2, face.cy());
    cairo_set_source_rgb(cr, 0.16, 0.17, 0.16);
    cairo_stroke(cr);
    const char* texts[2] = {cap.label, cap.label2};
    for (int half = 0; half < 2; ++half) {
        double cy = face.y + face.h * (half == 0 ? 0.27 : 0.73);
        bool lit = half == lit_half;
        CentredText(cr, texts[half], face.cx(), cy, std::min(11.0, face.h * 0.3), face.w - 4,
                    lit ? kLampGreen : kLampLegendDark, lit);
    }
}

void DrawPlacard(cairo_t* cr, const CapSpec& cap) {
    double size = std::min(10.0, cap.h * 0.85);
    if (cap.label2 == nullptr) {
        EngravedText(cr, cap.label, cap.x + cap.w / 2.0, cap.y + cap.h / 2.0, size, cap.w);
        return;
    }
    EngravedText(cr, cap.label, cap.x + cap.w / 2.0, cap.y + cap.h * 0.2, size, cap.w);
    EngravedText(cr, cap.label2, cap.x + cap.w / 2.0, cap.y + cap.h * 1.1, size, cap.w);
}

// A sunken round plate that a group of keys sits on (the MCU's rocker).
void DrawRoundPlate(cairo_t* cr, const CapSpec& cap) {
    Box b = BoxOf(cap);
    double r = std::min(b.w, b.h) / 2;
    cairo_pattern_t* p = cairo_pattern_create_linear(b.x, b.y, b.x + b.w * 0.3, b.y + b.h);
    cairo_pattern_add_color_stop_rgb(p, 0, 0.07, 0.07, 0.075);
    cairo_pattern_add_color_stop_rgb(p, 1, 0.20, 0.205, 0.215);
    cairo_arc(cr, b.cx(), b.cy(), r, 0, 2 * M_PI);
    cairo_set_source(cr, p);
    cairo_fill(cr);
    cairo_pattern_destroy(p);
    cairo_arc(cr, b.cx(), b.cy(), r - 2, 0, 2 * M_PI);
    cairo_set_source_rgb(cr, 0.11, 0.115, 0.12);
    cairo_fill(cr);
}

// [SECTION] Lamps
Rgb LampColour(const char* label) {
    std::string_view l = label ? label : "";
    return (l == "LNAV" || l == "MAP") ? kLampGreen : kLampAmber;
}

void DrawLamp(cairo_t* cr, Box b, const char* label, bool lit) {
    RoundedRect(cr, {b.x - 1, b.y - 1, b.w + 2, b.h + 2}, 2.5);
    SetRgb(cr, kWell);
    cairo_fill(cr);
    RoundedRect(cr, b, 2);
    Rgb colour = LampColour(label);
    SetRgb(cr, lit ? Mix(kLampFaceDark, colour, 0.16) : kLampFaceDark);
    cairo_fill(cr);
    CentredText(cr, label, b.cx(), b.cy(), std::min(10.0, b.h * 0.72), b.w - 4, lit ? colour : kLampLegendDark, lit);
}

void DrawExecBar(cairo_t* cr, Box b, bool lit) {
    if (lit) {
        for (double g : {2.5, 1.5}) {
            RoundedRect(cr, {b.x - g, b.y - g, b.w + 2 * g, b.h + 2 * g}, 1 + g);
            SetRgb(cr, kExecOn, 0.18);
            cairo_fill(cr);
        }
    }
    RoundedRect(cr, b, 1.5);
    SetRgb(cr, lit ? kExecOn : kExecOff);
    cairo_fill_preserve(cr);
    cairo_set_line_width(cr, 0.6);
    cairo_set_source_rgba(cr, 0, 0, 0, lit ? 0.3 : 0.8);
    cairo_stroke(cr);
}

void DrawFailFlag(cairo_t* cr, Box screen, const char* label) {
    Box flag{screen.x + 10, screen.y + 10, 38, 16};
    RoundedRect(cr, flag, 1);
    cairo_set_source_rgb(cr, 0.10, 0.02, 0.02);
    cairo_fill(cr);
    RoundedRect(cr, flag, 1);
    cairo_set_line_width(cr, 1.5);
    SetRgb(cr, kFlagRed);
    cairo_stroke(cr);
    CentredText(cr, label, flag.cx(), flag.cy(), 11, flag.w - 4, kFlagRed);
}

// [SECTION] Knobs
// Large knobs leave room in their click box for the legends and title.
double KnobRadius(const KnobSpec& k) {
    double half = std::min(k.w, k.h) / 2.0;
    return half >= 30 ? half * 0.8 : half - 2;
}

// Pointer angle of a position, radians clockwise from straight up; positions
// sit 45 degrees apart, centred on the top.
double PositionAngle(const KnobSpec& k, int position) {
    if (k.legend_count <= 1) return 0;
    double step = std::min(45.0, 270.0 / (k.legend_count - 1));
    return (position - (k.legend_count - 1) / 2.0) * step * M_PI / 180;
}

void DrawKnobLegends(cairo_t* cr, const KnobSpec& k, int bezel_height) {
    Box b = BoxOf(k);
    double r = KnobRadius(k);
    double font = r > 30 ? 9.5 : 7.5;
    for (int i = 0; i < k.legend_count; ++i) {
        double a = PositionAngle(k, i);
        double sx = std::sin(a), sy = -std::cos(a);
        cairo_arc(cr, b.cx() + sx * (r + 4), b.cy() + sy * (r + 4), 1.1, 0, 2 * M_PI);
        SetRgb(cr, kEngraving);
        cairo_fill(cr);
        // Text centres sit further out on the sides, where words are wide.
        double out = r + 9 + std::abs(sx) * (r > 30 ? 9 : 7);
        EngravedText(cr, k.legends[i], b.cx() + sx * out, b.cy() + sy * (r + 10), font, 40);
    }
    if (k.legend_count == 0 && k.title != nullptr) {
        EngravedText(cr, "-", b.cx() - r - 6, b.cy(), 10, 10);
        EngravedText(cr, "+", b.cx() + r + 6, b.cy(), 10, 10);
    }
    if (k.title != nullptr) {
        // Under the knob, and under the lowest legend.
        double below = r + 9;
        for (int i = 0; i < k.legend_count; ++i) below = std::max(below, -std::cos(PositionAngle(k, i)) * (r + 10) + 11);
        double y = b.cy() + below;
        if (y + 6 > bezel_height) y = b.cy() - r - 8;  // no room below: over the knob
        EngravedText(cr, k.title, b.cx(), y, r > 25 ? 9 : 8, 90);
    }
}

// The knob itself: shadow, knurled skirt, domed cap, white pointer.
void DrawKnob(cairo_t* cr, const KnobSpec& k, int position) {
    Box b = BoxOf(k);
    double r = KnobRadius(k), cx = b.cx(), cy = b.cy();
    cairo_arc(cr, cx + 1, cy + 2, r + 1, 0, 2 * M_PI);
    cairo_set_source_rgba(cr, 0, 0, 0, 0.55);
    cairo_fill(cr);
    cairo_arc(cr, cx, cy, r, 0, 2 * M_PI);
    cairo_set_source_rgb(cr, 0.10, 0.105, 0.11);
    cairo_fill(cr);
    int ridges = static_cast<int>(r * 2.2);
    cairo_set_line_width(cr, 1.0);
    for (int i = 0; i < ridges; ++i) {
        double a = 2 * M_PI * i / ridges;
        double light = 0.22 + 0.12 * std::cos(a + M_PI / 4);  // lit from the upper left
        cairo_move_to(cr, cx + std::cos(a) * r * 0.80, cy + std::sin(a) * r * 0.80);
        cairo_line_to(cr, cx + std::cos(a) * (r - 0.6), cy + std::sin(a) * (r - 0.6));
        cairo_set_source_rgb(cr, light, light, light * 1.03);
        cairo_stroke(cr);
    }
    double cap = r * 0.74;
    cairo_pattern_t* p = cairo_pattern_create_linear(cx - cap, cy - cap, cx + cap, cy + cap);
    cairo_pattern_add_color_stop_rgb(p, 0, 0.40, 0.41, 0.43);
    cairo_pattern_add_color_stop_rgb(p, 1, 0.13, 0.135, 0.14);
    cairo_arc(cr, cx, cy, cap, 0, 2 * M_PI);
    cairo_set_source(cr, p);
    cairo_fill(cr);
    cairo_pattern_destroy(p);
    p = cairo_pattern_create_radial(cx - cap * 0.3, cy - cap * 0.35, 0, cx, cy, cap);
    cairo_pattern_add_color_stop_rgba(p, 0, 1, 1, 1, 0.16);
    cairo_pattern_add_color_stop_rgba(p, 1, 1, 1, 1, 0);
    cairo_arc(cr, cx, cy, cap, 0, 2 * M_PI);
    cairo_set_source(cr, p);
    cairo_fill(cr);
    cairo_pattern_destroy(p);
    double a = PositionAngle(k, position);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cr, std::max(1.6, r * 0.09));
    cairo_move_to(cr, cx + std::sin(a) * r * 0.25, cy - std::cos(a) * r * 0.25);
    cairo_line_to(cr, cx + std::sin(a) * r * 0.93, cy - std::cos(a) * r * 0.93);
    SetRgb(cr, kLegendWhite);
    cairo_stroke(cr);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
}

// [SECTION] Layers
const Palette& PaletteOf(GaugeId id) {
    switch (id) {
    case GaugeId::SMITHS_FMS_BR:
    case GaugeId::HW_B737_ND_BR:
    case GaugeId::HW_B737_EFIS_CNTR_BR: return kBrownPanel;
    default: return kGreyPanel;
    }
}

template <typename F>
void ForEachCap(GaugeId id, F&& f) {
    GaugeId base = LayoutGauge(id);
    for (const CapSpec& c : kCapSpecs)
        if (c.gauge == base) f(c);
}
template <typename F>
void ForEachKnob(GaugeId id, F&& f) {
    GaugeId base = LayoutGauge(id);
    for (const KnobSpec& k : kKnobSpecs)
        if (k.gauge == base) f(k);
}

// Icon layers of a gauge that sit over a key: the key's legend moves down
// to clear the lamp.
double LegendShiftFor(GaugeId id, const CapSpec& cap) {
    Box key = BoxOf(cap);
    for (int layer = 0; layer < LayerCount(id); ++layer) {
        const IconSpec* icon = IconSpecOf(id, layer);
        if (icon != nullptr && icon->role == IconRole::ExecBar && Overlaps(key, BoxOf(LayerOf(id, layer))))
            return 5;
    }
    return 0;
}

void DrawCap(cairo_t* cr, GaugeId id, const CapSpec& cap, bool lit, int lit_half) {
    const GaugeSpec& shape = SpecOf(id);
    switch (cap.kind) {
    case CapKind::Key:
    case CapKind::LineKey:
    case CapKind::SoftKey: DrawKey(cr, cap, shape.bezel_width, LegendShiftFor(id, cap)); break;
    case CapKind::PushButton: DrawPushButton(cr, cap, lit); break;
    case CapKind::SplitButton: DrawSplitButton(cr, cap, lit_half); break;
    case CapKind::Placard: DrawPlacard(cr, cap); break;
    case CapKind::RoundPlate: DrawRoundPlate(cr, cap); break;
    case CapKind::DimLamp: DrawLamp(cr, BoxOf(cap), cap.label, false); break;
    }
}

void DrawScrews(cairo_t* cr, GaugeId id) {
    const GaugeSpec& shape = SpecOf(id);
    if (std::min(shape.bezel_width, shape.bezel_height) < 60) return;  // mode buttons: no room
    std::vector<Box> keep_clear;
    ForEachCap(id, [&](const CapSpec& c) { keep_clear.push_back(BoxOf(c)); });
    ForEachKnob(id, [&](const KnobSpec& k) { keep_clear.push_back(BoxOf(k)); });
    if (shape.surface_width > 0) keep_clear.push_back(RecessOf(LayerOf(id, 1)));
    for (int corner = 0; corner < 4; ++corner) {
        for (auto [inset, r] : {std::pair{10.0, kScrewRadius}, std::pair{7.0, kScrewRadius - 1}}) {
            double cx = corner % 2 == 0 ? inset : shape.bezel_width - inset;
            double cy = corner < 2 ? inset : shape.bezel_height - inset;
            Box screw{cx - r - 1.5, cy - r - 1.5, 2 * r + 3, 2 * r + 3};
            if (std::any_of(keep_clear.begin(), keep_clear.end(), [&](const Box& b) { return Overlaps(b, screw); }))
                continue;
            DrawScrew(cr, cx, cy, r, 0.5 + corner * 1.1);  // slots at random-looking angles
            break;
        }
    }
}

void DrawBezel(cairo_t* cr, GaugeId id) {
    const GaugeSpec& shape = SpecOf(id);
    DrawFrame(cr, shape.bezel_width, shape.bezel_height, PaletteOf(id), 0x9E3779B9u * (Index(LayoutGauge(id)) + 1));
    if (shape.surface_width > 0) DrawScreenOpening(cr, LayerOf(id, 1));
    ForEachKnob(id, [&](const KnobSpec& k) {
        DrawKnobLegends(cr, k, shape.bezel_height);
        DrawKnob(cr, k, k.rest_position);
    });
    ForEachCap(id, [&](const CapSpec& c) { DrawCap(cr, id, c, false, -1); });
    for (int layer = 1; layer < LayerCount(id); ++layer) {
        const IconSpec* icon = IconSpecOf(id, layer);
        if (icon == nullptr) continue;
        Box box = BoxOf(LayerOf(id, layer));
        if (icon->role == IconRole::Lamp) DrawLamp(cr, box, icon->label, false);
        if (icon->role == IconRole::ExecBar) DrawExecBar(cr, box, false);
    }
    DrawScrews(cr, id);
}

bool DrawIcon(cairo_t* cr, GaugeId id, int layer, std::string& error) {
    const IconSpec* icon = IconSpecOf(id, layer);
    if (icon == nullptr) {
        error = "no icon record";
        return false;
    }
    LayerSpec shape = LayerOf(id, layer);
    Box box = BoxOf(shape);
    cairo_translate(cr, -shape.x, -shape.y);  // draw in bezel pixels
    bool drawn = false;
    switch (icon->role) {
    case IconRole::LitButton:
        ForEachCap(id, [&](const CapSpec& c) {
            if (!drawn && BoxOf(c).x == box.x && BoxOf(c).y == box.y && c.w == shape.width && c.h == shape.height) {
                DrawCap(cr, id, c, true, -1);
                drawn = true;
            }
        });
        break;
    case IconRole::KnobPosition:
        ForEachKnob(id, [&](const KnobSpec& k) {
            if (drawn || k.x != shape.x || k.y != shape.y || k.w != shape.width || k.h != shape.height) return;
            if (icon->position < 0 || icon->position >= k.legend_count) return;
            DrawKnob(cr, k, icon->position);
            // Keys that sit in the knob's middle turn with nothing but stay on top.
            ForEachCap(id, [&](const CapSpec& c) {
                if (Contains(BoxOf(k), BoxOf(c))) DrawCap(cr, id, c, false, -1);
            });
            drawn = true;
        });
        break;
    case IconRole::LitHalf:
        ForEachCap(id, [&](const CapSpec& c) {
            if (!drawn && c.kind == CapKind::SplitButton && Contains(BoxOf(c), box)) {
                DrawSplitButton(cr, c, icon->position);
                drawn = true;
            }
        });
        break;
    case IconRole::Lamp:
        DrawLamp(cr, box, icon->label, true);
        drawn = true;
        break;
    case IconRole::ExecBar:
        DrawExecBar(cr, box, true);
        drawn = true;
        break;
    case IconRole::FailFlag:
        DrawFailFlag(cr, box, icon->label);
        drawn = true;
        break;
    }
    if (!drawn) error = "no control of the layout under the icon's box";
    return drawn;
}

}  // namespace

bool IsBlackLayer(GaugeId id, int layer) {
    LayerSpec shape = LayerOf(id, layer);
    return shape.surface || (layer == 0 && !shape.icon && SpecOf(id).bezel_width == 0);
}

bool DrawLayer(cairo_t* cr, GaugeId id, int layer, std::string& error) {
    if (layer < 0 || layer >= LayerCount(id)) {
        error = "no such layer";
        return false;
    }
    if (IsBlackLayer(id, layer)) return true;  // the encoder writes the black
    if (LayerOf(id, layer).icon) return DrawIcon(cr, id, layer, error);
    DrawBezel(cr, id);
    return true;
}
