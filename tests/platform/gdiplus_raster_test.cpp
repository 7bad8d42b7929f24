// The stand-in's own scan of smoothed strokes, fills and cached glyphs,
// checked against cairo drawing the same shapes and strings, and against
// what the ink must be (rings are rings, clips hold, stretched pens widen).
#include "platform/canvas.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>

using test_canvas::BrushOf;
using test_canvas::Canvas;
using test_canvas::PenOf;

namespace {

constexpr ARGB kWhite = 0xFFFFFFFF;
constexpr int kSide = 120;

struct Smooth {
    GpGraphics* g = nullptr;
    explicit Smooth(Canvas& c) {
        EXPECT_EQ(GdipCreateFromHDC(c.hdc(), &g), Ok);
        EXPECT_EQ(GdipSetSmoothingMode(g, SmoothingModeAntiAlias), Ok);
    }
    ~Smooth() { GdipDeleteGraphics(g); }
};

// cairo on a canvas's pixels, with GDI+'s pixel centres (half a pixel
// shifted), smoothed, the miter limit GDI+ has.
struct Reference {
    cairo_surface_t* surface;
    cairo_t* cr;
    explicit Reference(Canvas& c) {
        surface = cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(c.pixels.data()),
                                                      CAIRO_FORMAT_ARGB32, c.dc.width, c.dc.height, c.dc.stride_bytes);
        cr = cairo_create(surface);
        cairo_set_source_rgba(cr, 1, 1, 1, 1);
        cairo_set_miter_limit(cr, 10);
        cairo_translate(cr, 0.5, 0.5);
    }
    ~Reference() {
        cairo_destroy(cr);
        cairo_surface_flush(surface);
        cairo_surface_destroy(surface);
    }
};

// How two canvases' ink compares: the total (alpha summed) of each, and the
// largest difference at any pixel.
struct InkCompared {
    double ours = 0, theirs = 0;
    int worst = 0;
    int far_pixels = 0;  // pixels whose alpha differs by more than a third
};

InkCompared Compare(const Canvas& ours, const Canvas& theirs) {
    InkCompared r;
    for (int y = 0; y < ours.dc.height; ++y)
        for (int x = 0; x < ours.dc.width; ++x) {
            int a = static_cast<int>(ours.Alpha(x, y)), b = static_cast<int>(theirs.Alpha(x, y));
            r.ours += a / 255.0;
            r.theirs += b / 255.0;
            r.worst = std::max(r.worst, std::abs(a - b));
            r.far_pixels += std::abs(a - b) > 85;
        }
    return r;
}

// One shape drawn by the stand-in and by cairo: the ink must agree to a
// percent or two overall and nearly everywhere pixel by pixel (cairo samples
// coverage on a grid; the stand-in computes it exactly, so edge pixels
// differ by a few levels, not by a third).
void ExpectSameInk(const std::string& what, const std::function<void(GpGraphics*)>& ours,
                   const std::function<void(cairo_t*)>& theirs, int far_allowed = 2) {
    Canvas a(kSide, kSide), b(kSide, kSide);
    {
        Smooth s(a);
        ours(s.g);
    }
    {
        Reference r(b);
        theirs(r.cr);
    }
    InkCompared c = Compare(a, b);
    SCOPED_TRACE(what);
    EXPECT_GT(c.theirs, 10.0);
    EXPECT_NEAR(c.ours, c.theirs, 0.02 * c.theirs + 1.0);
    EXPECT_LE(c.far_pixels, far_allowed) << "largest difference " << c.worst;
}

void CairoPen(cairo_t* cr, double width, cairo_line_cap_t cap, cairo_line_join_t join) {
    cairo_set_line_width(cr, width);
    cairo_set_line_cap(cr, cap);
    cairo_set_line_join(cr, join);
}

}  // namespace

TEST(GdiplusRaster, StrokesMatchCairoAcrossAnglesWidthsCapsAndJoins) {
    for (double angle : {0.0, 17.0, 45.0, 90.0, 133.0}) {
        for (float width : {1.0f, 1.5f, 3.0f}) {
            double r = angle * M_PI / 180;
            float x1 = 60 - 40 * std::cos(r), y1 = 60 - 40 * std::sin(r);
            float x2 = 60 + 40 * std::cos(r), y2 = 60 + 40 * std::sin(r);
            ExpectSameInk(
                "line at " + std::to_string(angle) + " width " + std::to_string(width),
                [&](GpGraphics* g) {
                    PenOf pen(kWhite, width);
                    GdipDrawLine(g, pen.p, x1, y1, x2, y2);
                },
                [&](cairo_t* cr) {
                    CairoPen(cr, width, CAIRO_LINE_CAP_BUTT, CAIRO_LINE_JOIN_MITER);
                    cairo_move_to(cr, x1, y1);
                    cairo_line_to(cr, x2, y2);
                    cairo_stroke(cr);
                });
        }
    }
    // A zigzag with each join and cap, wide enough that they show.
    const GpPointF zig[] = {{10, 90}, {35, 20}, {60, 95}, {85, 25}, {110, 80}};
    struct Style {
        LineJoin join;
        LineCap cap;
        cairo_line_join_t cairo_join;
        cairo_line_cap_t cairo_cap;
    };
    for (Style st : {Style{LineJoinMiter, LineCapFlat, CAIRO_LINE_JOIN_MITER, CAIRO_LINE_CAP_BUTT},
                     Style{LineJoinBevel, LineCapSquare, CAIRO_LINE_JOIN_BEVEL, CAIRO_LINE_CAP_SQUARE},
                     Style{LineJoinRound, LineCapRound, CAIRO_LINE_JOIN_ROUND, CAIRO_LINE_CAP_ROUND}}) {
        ExpectSameInk(
            "zigzag join " + std::to_string(st.join) + " cap " + std::to_string(st.cap),
            [&](GpGraphics* g) {
                PenOf pen(kWhite, 7);
                GdipSetPenLineJoin(pen.p, st.join);
                GdipSetPenStartCap(pen.p, st.cap);
                GdipSetPenEndCap(pen.p, st.cap);
                GdipDrawLines(g, pen.p, zig, 5);
            },
            [&](cairo_t* cr) {
                CairoPen(cr, 7, st.cairo_cap, st.cairo_join);
                cairo_move_to(cr, zig[0].X, zig[0].Y);
                for (int i = 1; i < 5; ++i) cairo_line_to(cr, zig[i].X, zig[i].Y);
                cairo_stroke(cr);
            });
    }
    // Closed figures: a triangle's corners and a circle's ring.
    ExpectSameInk(
        "triangle",
        [](GpGraphics* g) {
            PenOf pen(kWhite, 4);
            const GpPointF tri[] = {{20, 100}, {60, 15}, {100, 100}};
            GdipDrawPolygon(g, pen.p, tri, 3);
        },
        [](cairo_t* cr) {
            CairoPen(cr, 4, CAIRO_LINE_CAP_BUTT, CAIRO_LINE_JOIN_MITER);
            cairo_move_to(cr, 20, 100);
            cairo_line_to(cr, 60, 15);
            cairo_line_to(cr, 100, 100);
            cairo_close_path(cr);
            cairo_stroke(cr);
        });
    for (float width : {1.5f, 6.0f}) {
        ExpectSameInk(
            "circle width " + std::to_string(width),
            [&](GpGraphics* g) {
                PenOf pen(kWhite, width);
                GdipDrawEllipse(g, pen.p, 20, 20, 80, 80);
            },
            [&](cairo_t* cr) {
                CairoPen(cr, width, CAIRO_LINE_CAP_BUTT, CAIRO_LINE_JOIN_MITER);
                cairo_arc(cr, 60, 60, 40, 0, 2 * M_PI);
                cairo_stroke(cr);
            });
    }
}

TEST(GdiplusRaster, DashesStretchedPensAndFillRulesMatchCairo) {
    // Dashes are in pen widths and start afresh on each figure.
    ExpectSameInk(
        "dashed line",
        [](GpGraphics* g) {
            PenOf pen(kWhite, 2);
            GdipSetPenDashStyle(pen.p, DashStyleDash);
            GdipDrawLine(g, pen.p, 10, 30, 110, 90);
        },
        [](cairo_t* cr) {
            const double dash[] = {6, 2};
            CairoPen(cr, 2, CAIRO_LINE_CAP_BUTT, CAIRO_LINE_JOIN_MITER);
            cairo_set_dash(cr, dash, 2, 0);
            cairo_move_to(cr, 10, 30);
            cairo_line_to(cr, 110, 90);
            cairo_stroke(cr);
        });
    // A dotted arc: dots start just before the flattened curve's corners.
    ExpectSameInk(
        "dotted arc",
        [](GpGraphics* g) {
            PenOf pen(kWhite, 1.5f);
            GdipSetPenDashStyle(pen.p, DashStyleDot);
            GdipDrawArc(g, pen.p, 15, 15, 90, 90, 200, 140);
        },
        [](cairo_t* cr) {
            const double dot[] = {1.5, 1.5};
            CairoPen(cr, 1.5, CAIRO_LINE_CAP_BUTT, CAIRO_LINE_JOIN_MITER);
            cairo_set_dash(cr, dot, 2, 0);
            cairo_arc(cr, 60, 60, 45, 200 * M_PI / 180, 340 * M_PI / 180);
            cairo_stroke(cr);
        });
    // A pen under a stretched and turned transform is stretched with it.
    ExpectSameInk(
        "stretched",
        [](GpGraphics* g) {
            GdipTranslateWorldTransform(g, 60, 60, MatrixOrderPrepend);
            GdipRotateWorldTransform(g, 30, MatrixOrderPrepend);
            GdipScaleWorldTransform(g, 1, 3, MatrixOrderPrepend);
            PenOf pen(kWhite, 2);
            const GpPointF run[] = {{-40, -10}, {0, 8}, {40, -10}};
            GdipDrawLines(g, pen.p, run, 3);
        },
        [](cairo_t* cr) {
            cairo_translate(cr, 60, 60);
            cairo_rotate(cr, 30 * M_PI / 180);
            cairo_scale(cr, 1, 3);
            CairoPen(cr, 2, CAIRO_LINE_CAP_BUTT, CAIRO_LINE_JOIN_MITER);
            cairo_move_to(cr, -40, -10);
            cairo_line_to(cr, 0, 8);
            cairo_line_to(cr, 40, -10);
            cairo_stroke(cr);
        });
    // A star whose middle is crossed twice: empty by alternate, full by winding.
    GpPointF star[5];
    for (int i = 0; i < 5; ++i) {
        double a = (-90 + i * 144) * M_PI / 180;
        star[i] = {static_cast<float>(60 + 50 * std::cos(a)), static_cast<float>(60 + 50 * std::sin(a))};
    }
    for (FillMode mode : {FillModeAlternate, FillModeWinding}) {
        Canvas c(kSide, kSide);
        ExpectSameInk(
            mode == FillModeAlternate ? "star, alternate" : "star, winding",
            [&](GpGraphics* g) {
                BrushOf white(kWhite);
                GdipFillPolygon(g, white.b, star, 5, mode);
            },
            [&](cairo_t* cr) {
                cairo_set_fill_rule(cr, mode == FillModeAlternate ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
                cairo_move_to(cr, star[0].X, star[0].Y);
                for (int i = 1; i < 5; ++i) cairo_line_to(cr, star[i].X, star[i].Y);
                cairo_close_path(cr);
                cairo_fill(cr);
            },
            // Where two edges cross inside a pixel, area coverage can't tell
            // the twice-covered part: the star's five crossings may differ.
            5);
        {
            Smooth s(c);
            BrushOf white(kWhite);
            GdipFillPolygon(s.g, white.b, star, 5, mode);
        }
        EXPECT_EQ(c.Alpha(60, 62), mode == FillModeAlternate ? 0u : 255u);
    }
}

TEST(GdiplusRaster, ClipsHoldAndPartlyCoveredPixelsBlend) {
    Canvas c(kSide, kSide);
    {
        Smooth s(c);
        GdipSetPixelOffsetMode(s.g, PixelOffsetModeHalf);  // whole coordinates on pixel edges: the clip is exact
        BrushOf white(kWhite), half_red(0x80FF0000);
        // A fill far wider than a rectangular clip covers the clip exactly.
        GdipSetClipRectI(s.g, 30, 30, 40, 20, CombineModeReplace);
        GdipFillRectangleI(s.g, white.b, -1000, 35, 5000, 10);
        // Under a curved clip: a wide fill covers the disc and nothing else,
        // and a long line across it is cut at its edge.
        GpPath* disc = nullptr;
        GdipCreatePath(FillModeAlternate, &disc);
        GdipAddPathEllipseI(disc, 20, 70, 40, 40);
        GdipSetClipPath(s.g, disc, CombineModeReplace);
        GdipFillRectangleI(s.g, half_red.b, -500, -500, 2000, 2000);
        PenOf pen(kWhite, 2);
        GdipDrawLine(s.g, pen.p, -100, 90, 300, 90);
        GdipResetClip(s.g);
        GdipDeletePath(disc);
    }
    EXPECT_EQ(c.At(30, 40), 0xFFFFFFFFu);     // the clip's first column
    EXPECT_EQ(c.At(69, 40), 0xFFFFFFFFu);     // and its last
    EXPECT_EQ(c.At(70, 40), 0u);              // one past it
    EXPECT_EQ(c.At(29, 40), 0u);
    EXPECT_EQ(c.Inked(0, 0, kSide, 60), 40 * 10);
    // Half-transparent red premultiplied: alpha 128, red 128.
    uint32_t inside = c.At(40, 80);
    EXPECT_EQ(inside >> 24, 0x80u);
    EXPECT_NEAR(static_cast<int>((inside >> 16) & 0xFF), 0x80, 1);
    EXPECT_EQ(inside & 0xFFFF, 0u);
    EXPECT_EQ(c.At(40, 90), 0xFFFFFFFFu);     // the line over the red, inside the disc
    EXPECT_EQ(c.At(70, 90), 0u);              // beyond the disc
    EXPECT_EQ(c.At(21, 71), 0u);              // the disc's box corner
    // Faulty numbers draw nothing and leave the rest alone.
    Canvas d(kSide, kSide);
    {
        Smooth s(d);
        PenOf pen(kWhite, 1);
        EXPECT_EQ(GdipDrawLine(s.g, pen.p, 10, 10, 1e30f, 20), Ok);
        GdipDrawLine(s.g, pen.p, NAN, 10, 50, 50);
        GdipDrawLine(s.g, pen.p, 10, 100, 100, 100);
    }
    EXPECT_EQ(d.At(50, 100), 0xFFFFFFFFu);
}

namespace {

// A string drawn at (x, y) in a layout box `width` wide (0: unbounded).
void DrawWord(GpGraphics* g, const char* text, float size, float x, float y, float width) {
    GpFontFamily* family = nullptr;
    GpFont* font = nullptr;
    ASSERT_EQ(GdipCreateFontFamilyFromName(u"Arial", nullptr, &family), Ok);
    ASSERT_EQ(GdipCreateFont(family, size, FontStyleBold, UnitPixel, &font), Ok);
    std::u16string wide(text, text + std::char_traits<char>::length(text));
    GpRectF box{x, y, width, 0};
    BrushOf white(kWhite);
    GdipDrawString(g, wide.c_str(), -1, font, &box, nullptr, white.b);
    GdipDeleteFont(font);
    GdipDeleteFontFamily(family);
}

float WordWidth(const char* text, float size) {
    Canvas c(4, 4);
    Smooth s(c);
    GpFontFamily* family = nullptr;
    GpFont* font = nullptr;
    GdipCreateFontFamilyFromName(u"Arial", nullptr, &family);
    GdipCreateFont(family, size, FontStyleBold, UnitPixel, &font);
    std::u16string wide(text, text + std::char_traits<char>::length(text));
    GpRectF layout{0, 0, 0, 0}, box{};
    GdipMeasureString(s.g, wide.c_str(), -1, font, &layout, nullptr, &box, nullptr, nullptr);
    GdipDeleteFont(font);
    GdipDeleteFontFamily(family);
    return box.Width;
}

}  // namespace

TEST(GdiplusRaster, CachedGlyphsHaveCairosPixels) {
    // A layout box just wider than the text makes cairo draw it (under a
    // clip that cuts nothing); an unbounded one takes the glyph cache. The
    // pixels must be the same, at whole and fractional positions.
    for (float size : {9.0f, 12.5f, 20.0f}) {
        for (float x : {10.0f, 10.3f, 10.75f}) {
            const char* word = "KSEA 270/15 Wj";
            float width = WordWidth(word, size);
            Canvas cached(kSide * 2, 40), direct(kSide * 2, 40);
            {
                Smooth s(cached);
                DrawWord(s.g, word, size, x, 5.4f, 0);
            }
            {
                Smooth s(direct);
                DrawWord(s.g, word, size, x, 5.4f, width + 0.5f);
            }
            SCOPED_TRACE("size " + std::to_string(size) + " at " + std::to_string(x));
            EXPECT_GT(direct.InkedAll(), 50);
            // cairo composites under its clip through a mask, so a pixel
            // where two glyphs meet may round a few levels apart; a glyph
            // placed a pixel off would differ by far more.
            InkCompared cmp = Compare(cached, direct);
            EXPECT_EQ(cmp.far_pixels, 0);
            EXPECT_LE(cmp.worst, 16);
            EXPECT_NEAR(cmp.ours, cmp.theirs, 0.005 * cmp.theirs);
        }
    }
    // After enough other sizes to push it out of the cache, a string comes
    // back with the same pixels.
    Canvas first(kSide * 2, 40), again(kSide * 2, 40);
    {
        Smooth s(first);
        DrawWord(s.g, "N123AB", 11, 5, 5, 0);
    }
    {
        Canvas scratch(kSide * 2, 80);
        Smooth s(scratch);
        for (int i = 0; i < 700; ++i) DrawWord(s.g, "N", 6 + i * 0.05f, 5, 5, 0);
    }
    {
        Smooth s(again);
        DrawWord(s.g, "N123AB", 11, 5, 5, 0);
    }
    EXPECT_GT(first.InkedAll(), 30);
    EXPECT_EQ(first.pixels, again.pixels);
}

TEST(GdiplusRaster, TurnedStringsStayWhereCairoPutsThem) {
    // Turned text's glyphs are kept to half a degree of turn: the ink may
    // differ at its edges but its amount and middle hold.
    for (float turn : {17.3f, 90.0f, 211.9f}) {
        Canvas cached(kSide, kSide), direct(kSide, kSide);
        const char* word = "WAT 330";
        float width = WordWidth(word, 12);
        for (Canvas* c : {&cached, &direct}) {
            Smooth s(*c);
            GdipTranslateWorldTransform(s.g, 60, 60, MatrixOrderPrepend);
            GdipRotateWorldTransform(s.g, turn, MatrixOrderPrepend);
            DrawWord(s.g, word, 12, -width / 2, -7, c == &direct ? width + 0.5f : 0);
        }
        double ink[2] = {0, 0}, mx[2] = {0, 0}, my[2] = {0, 0};
        for (int k = 0; k < 2; ++k) {
            const Canvas& c = k == 0 ? cached : direct;
            for (int y = 0; y < kSide; ++y)
                for (int x = 0; x < kSide; ++x) {
                    double a = c.Alpha(x, y) / 255.0;
                    ink[k] += a;
                    mx[k] += a * x;
                    my[k] += a * y;
                }
            mx[k] /= ink[k];
            my[k] /= ink[k];
        }
        SCOPED_TRACE("turn " + std::to_string(turn));
        EXPECT_GT(ink[1], 40);
        EXPECT_NEAR(ink[0], ink[1], 0.03 * ink[1]);
        EXPECT_NEAR(mx[0], mx[1], 0.3);
        EXPECT_NEAR(my[0], my[1], 0.3);
    }
}

#include "platform/gdiplus_shapes_fuzz_body.h"

#include <random>

TEST(GdiplusRaster, HostileShapeProgramsReturnAndStayInTheirPixels) {
    // Random programs (seeded: the same each run), then raw floats on every
    // number: NaN, infinities, denormals, values past any surface.
    std::mt19937 random(20261125);
    std::vector<uint8_t> program(600);
    for (int run = 0; run < 300; ++run) {
        for (uint8_t& b : program) b = static_cast<uint8_t>(random());
        ASSERT_EQ(GdiplusShapesFuzzOne(program.data(), program.size()), 0);
    }
    for (uint32_t raw : {0x7FC00000u, 0x7F800000u, 0xFF800000u, 0x00000001u, 0x7F7FFFFFu, 0x4E6E6B28u}) {
        std::vector<uint8_t> p;
        for (int op : {7, 0, 3, 5, 6, 4, 11, 0, 1, 13, 2, 14, 0}) {
            p.push_back(static_cast<uint8_t>(op));
            for (int k = 0; k < 24; ++k) {
                p.push_back(0);  // a raw float follows
                for (int b = 0; b < 4; ++b) p.push_back(static_cast<uint8_t>(raw >> (8 * b)));
            }
        }
        ASSERT_EQ(GdiplusShapesFuzzOne(p.data(), p.size()), 0);
    }
}
