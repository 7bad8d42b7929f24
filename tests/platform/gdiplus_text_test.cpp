// Fonts, string layout and the record of drawn strings of the GDI+ stand-in:
// widths against the published advance widths of the mapped faces, alignment
// about a point and in a box, wrapping, and what the host is told.
#include "display/gdi_objects.h"
#include "platform/canvas.h"

#include <gtest/gtest.h>

#include <cmath>

using test_canvas::Canvas;
using test_canvas::TextHost;

// The font library keeps its configuration for the life of the process, and
// the leak checker of the sanitizer build would count that at exit.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }

namespace {

constexpr ARGB kWhite = 0xFFDEE6E9;
constexpr ARGB kMagenta = 0xFFFF13D5;

// Arial's (and its metric twin's) advance widths, in thousandths of an em.
constexpr double kArialH = 722, kArialE = 667, kArialL = 556, kArialO = 778, kArialW = 944;
constexpr double kArialLineSpacing = 1.149;  // (ascent + descent + gap) per em
constexpr double kCourierAdvance = 600;      // every character of the mono face

struct Text {
    Canvas canvas{300, 200};
    GpGraphics* g = nullptr;
    GpFontFamily* family = nullptr;
    GpFont* font = nullptr;
    GpSolidFill* brush = nullptr;
    GpStringFormat* format = nullptr;

    Text(const char16_t* family_name, float size, int style = FontStyleRegular, Unit unit = UnitPixel) {
        EXPECT_EQ(GdipCreateFromHDC(canvas.hdc(), &g), Ok);
        EXPECT_EQ(GdipSetTextRenderingHint(g, TextRenderingHintAntiAlias), Ok);
        EXPECT_EQ(GdipCreateFontFamilyFromName(reinterpret_cast<const WCHAR*>(family_name), nullptr, &family), Ok);
        EXPECT_EQ(GdipCreateFont(family, size, style, unit, &font), Ok);
        EXPECT_EQ(GdipCreateSolidFill(kWhite, &brush), Ok);
        EXPECT_EQ(GdipCreateStringFormat(0, 0, &format), Ok);
    }
    ~Text() {
        GdipDeleteStringFormat(format);
        GdipDeleteBrush(brush);
        GdipDeleteFont(font);
        GdipDeleteFontFamily(family);
        GdipDeleteGraphics(g);
    }
    GpStatus Draw(const char16_t* s, GpRectF rect) {
        return GdipDrawString(g, reinterpret_cast<const WCHAR*>(s), -1, font, &rect, format, brush);
    }
    GpRectF Measure(const char16_t* s, GpRectF rect = {0, 0, 0, 0}, INT* fitted = nullptr, INT* lines = nullptr) {
        GpRectF box{};
        EXPECT_EQ(GdipMeasureString(g, reinterpret_cast<const WCHAR*>(s), -1, font, &rect, format, &box, fitted, lines), Ok);
        return box;
    }
};

}  // namespace

TEST(GdiplusText, MeasuredWidthsMatchTheMappedFacesMetrics) {
    // "HELLO" in 20-pixel Arial: the advances plus 1/6 em of padding each side.
    Text arial(u"Arial", 20);
    double hello = (kArialH + kArialE + 2 * kArialL + kArialO) / 1000 * 20;
    GpRectF box = arial.Measure(u"HELLO");
    EXPECT_NEAR(box.Width, hello + 2 * 20.0 / 6, 0.5);
    EXPECT_NEAR(box.Height, kArialLineSpacing * 20, 0.3);
    EXPECT_FLOAT_EQ(box.X, 0);
    // Trailing spaces do not count unless the format measures them.
    EXPECT_NEAR(arial.Measure(u"HELLO   ").Width, box.Width, 0.01);
    ASSERT_EQ(GdipSetStringFormatFlags(arial.format, StringFormatFlagsMeasureTrailingSpaces), Ok);
    EXPECT_GT(arial.Measure(u"HELLO   ").Width, box.Width + 10);
    ASSERT_EQ(GdipSetStringFormatFlags(arial.format, 0), Ok);
    // Two lines are twice as high.
    INT lines = 0;
    EXPECT_NEAR(arial.Measure(u"HELLO\nWW", {0, 0, 0, 0}, nullptr, &lines).Height, 2 * kArialLineSpacing * 20, 0.5);
    EXPECT_EQ(lines, 2);

    // "HW Arial" draws with the same face; Courier New is 0.6 em a character.
    Text hw(u"HW Arial", 20);
    EXPECT_NEAR(hw.Measure(u"HELLO").Width, box.Width, 0.01);
    Text courier(u"Courier New", 10);
    EXPECT_NEAR(courier.Measure(u"ABCDEFGHIJ").Width, 10 * kCourierAdvance / 1000 * 10 + 2 * 10.0 / 6, 0.3);
    EXPECT_NEAR(courier.Measure(u"..........").Width, courier.Measure(u"MMMMMMMMMM").Width, 0.01);

    // Bold is wider than regular; 15 points are 20 pixels.
    Text bold(u"Arial", 20, FontStyleBold);
    EXPECT_GT(bold.Measure(u"HELLO").Width, box.Width + 2);
    Text points(u"Arial", 15, FontStyleRegular, UnitPoint);
    EXPECT_NEAR(points.Measure(u"HELLO").Width, box.Width, 0.05);

    // The typographic format has no padding.
    GpStringFormat* typo = nullptr;
    ASSERT_EQ(GdipStringFormatGetGenericTypographic(&typo), Ok);
    GpRectF origin{0, 0, 0, 0}, tight{};
    ASSERT_EQ(GdipMeasureString(arial.g, reinterpret_cast<const WCHAR*>(u"HELLO"), -1, arial.font, &origin, typo, &tight,
                                nullptr, nullptr), Ok);
    EXPECT_NEAR(tight.Width, hello, 0.5);
    GdipDeleteStringFormat(typo);

    // A family this machine does not know is refused by name, as GDI+ does.
    GpFontFamily* none = nullptr;
    EXPECT_EQ(GdipCreateFontFamilyFromName(reinterpret_cast<const WCHAR*>(u"No Such Face"), nullptr, &none),
              FontFamilyNotFound);
    EXPECT_EQ(none, nullptr);
}

TEST(GdiplusText, DrawnStringsReachTheHostWithBoxColourAndFont) {
    TextHost host;
    Text arial(u"Arial", 20, FontStyleBold);
    ASSERT_EQ(GdipSetSolidFillColor(arial.brush, kMagenta), Ok);
    ASSERT_EQ(arial.Draw(u"HELLO", {40, 30, 0, 0}), Ok);
    ASSERT_EQ(host.seen().size(), 1u);
    const auto& s = host.seen()[0];
    EXPECT_EQ(s.text, "HELLO");
    EXPECT_EQ(s.family, "Arial");
    EXPECT_EQ(s.face, "Liberation Sans");
    EXPECT_EQ(s.box.argb, kMagenta);
    EXPECT_EQ(s.box.font_style, FontStyleBold);
    EXPECT_NEAR(s.box.font_size_px, 20, 1e-6);
    EXPECT_EQ(s.box.line_count, 1);
    // The layout box of a point is the point; the text starts 1/6 em in.
    EXPECT_NEAR(s.plain_x, 40, 1e-6);
    EXPECT_NEAR(s.plain_y, 30, 1e-6);
    EXPECT_EQ(s.plain_w, 0);
    EXPECT_NEAR(s.box.text_x, 40 + 20.0 / 6, 0.01);
    EXPECT_NEAR(s.box.text_y, 30, 0.01);
    EXPECT_NEAR(s.box.text_height, kArialLineSpacing * 20, 0.3);
    EXPECT_NEAR(s.box.baseline_y, 30 + 0.905 * 20, 0.3);
    EXPECT_NEAR(s.box.angle_deg, 0, 1e-9);

    // The ink lies within the text box, and there is ink.
    const Canvas& c = arial.canvas;
    int x0 = static_cast<int>(std::floor(s.box.text_x)), y0 = static_cast<int>(std::floor(s.box.text_y));
    int x1 = static_cast<int>(std::ceil(s.box.text_x + s.box.text_width)) + 1;
    int y1 = static_cast<int>(std::ceil(s.box.text_y + s.box.text_height)) + 1;
    int inside = c.Inked(x0, y0, x1, y1);
    EXPECT_GT(inside, 100);
    EXPECT_EQ(c.InkedAll(), inside);
    // Text is anti-aliased: partly covered pixels at the glyph edges.
    int partial = 0;
    for (uint32_t p : c.pixels) partial += (p >> 24) != 0 && (p >> 24) != 0xFF;
    EXPECT_GT(partial, 10);

    // An empty string draws and tells nothing.
    ASSERT_EQ(arial.Draw(u"", {0, 0, 0, 0}), Ok);
    EXPECT_EQ(host.seen().size(), 1u);
}

TEST(GdiplusText, AlignmentAboutAPointAndInABox) {
    TextHost host;
    Text arial(u"Arial", 20);
    double width = arial.Measure(u"HELLO").Width - 2 * 20.0 / 6;  // the run itself
    double line = kArialLineSpacing * 20;

    // Near, centre and far about x = 150; top, middle, bottom about y = 100.
    struct Case {
        StringAlignment h, v;
        double left, top;
    } cases[] = {
        {StringAlignmentNear, StringAlignmentNear, 150 + 20.0 / 6, 100},
        {StringAlignmentCenter, StringAlignmentCenter, 150 - width / 2, 100 - line / 2},
        {StringAlignmentFar, StringAlignmentFar, 150 - 20.0 / 6 - width, 100 - line},
    };
    for (const Case& k : cases) {
        ASSERT_EQ(GdipSetStringFormatAlign(arial.format, k.h), Ok);
        ASSERT_EQ(GdipSetStringFormatLineAlign(arial.format, k.v), Ok);
        ASSERT_EQ(arial.Draw(u"HELLO", {150, 100, 0, 0}), Ok);
        const auto& s = host.seen().back();
        EXPECT_NEAR(s.box.text_x, k.left, 0.3) << k.h;
        EXPECT_NEAR(s.box.text_y, k.top, 0.3) << k.v;
        EXPECT_NEAR(s.box.text_width, width, 0.3);
        // MeasureString agrees on the place, padding included.
        GpRectF m = arial.Measure(u"HELLO", {150, 100, 0, 0});
        EXPECT_NEAR(m.X, k.left - 20.0 / 6, 0.3);
        EXPECT_NEAR(m.Y, k.top, 0.3);
    }

    // In a box: centred both ways, right and bottom against the far edges.
    GpRectF box{20, 40, 200, 60};
    ASSERT_EQ(GdipSetStringFormatAlign(arial.format, StringAlignmentCenter), Ok);
    ASSERT_EQ(GdipSetStringFormatLineAlign(arial.format, StringAlignmentCenter), Ok);
    ASSERT_EQ(arial.Draw(u"HELLO", box), Ok);
    const auto& centred = host.seen().back();
    EXPECT_NEAR(centred.box.text_x + centred.box.text_width / 2, 120, 0.3);
    EXPECT_NEAR(centred.box.text_y + centred.box.text_height / 2, 70, 0.3);
    EXPECT_NEAR(centred.plain_x, 20, 1e-6);
    EXPECT_NEAR(centred.plain_w, 200, 1e-6);
    EXPECT_NEAR(centred.plain_h, 60, 1e-6);
    ASSERT_EQ(GdipSetStringFormatAlign(arial.format, StringAlignmentFar), Ok);
    ASSERT_EQ(GdipSetStringFormatLineAlign(arial.format, StringAlignmentFar), Ok);
    ASSERT_EQ(arial.Draw(u"HELLO", box), Ok);
    const auto& far = host.seen().back();
    EXPECT_NEAR(far.box.text_x + far.box.text_width, 220 - 20.0 / 6, 0.3);
    EXPECT_NEAR(far.box.text_y + far.box.text_height, 100, 0.3);
}

TEST(GdiplusText, BoxesWrapAndClip) {
    TextHost host;
    Text arial(u"Arial", 20);
    // A box too narrow for three words: one word a line.
    GpRectF narrow{10, 10, 80, 0};
    INT fitted = 0, lines = 0;
    GpRectF m = arial.Measure(u"ONE TWO SIX", narrow, &fitted, &lines);
    EXPECT_EQ(lines, 3);
    EXPECT_EQ(fitted, 11);
    EXPECT_LE(m.Width, 80);
    EXPECT_NEAR(m.Height, 3 * kArialLineSpacing * 20, 0.5);
    ASSERT_EQ(arial.Draw(u"ONE TWO SIX", narrow), Ok);
    EXPECT_EQ(host.seen().back().box.line_count, 3);
    EXPECT_EQ(host.seen().back().text, "ONE TWO SIX");
    // Without wrapping: one line, wider than the box.
    ASSERT_EQ(GdipSetStringFormatFlags(arial.format, StringFormatFlagsNoWrap), Ok);
    EXPECT_GT(arial.Measure(u"ONE TWO SIX", narrow, nullptr, &lines).Width, 80);
    EXPECT_EQ(lines, 1);
    // A word longer than the line breaks between characters.
    ASSERT_EQ(GdipSetStringFormatFlags(arial.format, 0), Ok);
    arial.Measure(u"WWWWWWWWWW", {0, 0, 60, 0}, &fitted, &lines);
    EXPECT_GE(lines, 4);
    EXPECT_EQ(fitted, 10);
    // Line limit: only whole lines that fit the height.
    ASSERT_EQ(GdipSetStringFormatFlags(arial.format, StringFormatFlagsLineLimit), Ok);
    arial.Measure(u"ONE TWO SIX", {10, 10, 80, 50}, &fitted, &lines);
    EXPECT_EQ(lines, 2);
    EXPECT_EQ(fitted, 8);

    // The glyphs are clipped to the box: a box of half a line's height shows
    // only the upper part of the text.
    Text clip(u"Arial", 40);
    ASSERT_EQ(clip.Draw(u"HH", {0, 0, 200, 20}), Ok);
    EXPECT_GT(clip.canvas.Inked(0, 0, 200, 20), 20);
    EXPECT_EQ(clip.canvas.Inked(0, 20, 300, 200), 0);
    ASSERT_EQ(GdipSetStringFormatFlags(clip.format, StringFormatFlagsNoClip), Ok);
    ASSERT_EQ(clip.Draw(u"HH", {0, 0, 200, 20}), Ok);
    EXPECT_GT(clip.canvas.Inked(0, 20, 300, 200), 20);
}

TEST(GdiplusText, TransformedTextIsRecordedInDevicePixels) {
    TextHost host;
    Text arial(u"Arial", 10);
    double width = arial.Measure(u"HELLO").Width - 2 * 10.0 / 6;
    // A surface twice the design size: the text is twice as big.
    ASSERT_EQ(GdipScaleWorldTransform(arial.g, 2, 2, MatrixOrderPrepend), Ok);
    ASSERT_EQ(arial.Draw(u"HELLO", {10, 10, 0, 0}), Ok);
    const auto& scaled = host.seen().back();
    EXPECT_NEAR(scaled.box.font_size_px, 20, 1e-6);
    EXPECT_NEAR(scaled.box.text_x, 2 * (10 + 10.0 / 6), 0.01);
    EXPECT_NEAR(scaled.box.text_width, 2 * width, 0.3);
    EXPECT_NEAR(scaled.plain_x, 20, 1e-6);
    EXPECT_NEAR(scaled.plain_y, 20, 1e-6);

    // Turned a quarter clockwise about (100, 50): the text runs downwards
    // from there, its box tall and narrow, left of the turning point.
    ASSERT_EQ(GdipResetWorldTransform(arial.g), Ok);
    ASSERT_EQ(GdipTranslateWorldTransform(arial.g, 100, 50, MatrixOrderPrepend), Ok);
    ASSERT_EQ(GdipRotateWorldTransform(arial.g, 90, MatrixOrderPrepend), Ok);
    ASSERT_EQ(arial.Draw(u"HELLO", {0, 0, 0, 0}), Ok);
    const auto& turned = host.seen().back();
    EXPECT_NEAR(turned.box.angle_deg, 90, 1e-6);
    EXPECT_NEAR(turned.box.text_width, kArialLineSpacing * 10, 0.3);
    EXPECT_NEAR(turned.box.text_height, width, 0.3);
    EXPECT_NEAR(turned.box.text_x, 100 - kArialLineSpacing * 10, 0.3);
    EXPECT_NEAR(turned.box.text_y, 50 + 10.0 / 6, 0.3);
    // And the ink is there, not to the right of the point.
    const Canvas& c = arial.canvas;
    EXPECT_GT(c.Inked(88, 50, 100, 50 + static_cast<int>(width) + 3), 30);
    EXPECT_EQ(c.Inked(101, 40, 300, 200), 0);
}

TEST(GdiplusText, StringsOutsideTheClipAreToldButNotInked) {
    TextHost host;
    Text arial(u"Arial", 20);
    ASSERT_EQ(GdipSetClipRect(arial.g, 100, 50, 100, 100, CombineModeReplace), Ok);
    // Far outside (as a map's idents beyond its frame): told, no ink.
    ASSERT_EQ(arial.Draw(u"FARAWAY", {-2000, 60, 0, 0}), Ok);
    ASSERT_EQ(arial.Draw(u"BELOW", {120, 900, 0, 0}), Ok);
    EXPECT_EQ(arial.canvas.InkedAll(), 0);
    ASSERT_EQ(host.seen().size(), 2u);
    EXPECT_EQ(host.seen()[0].text, "FARAWAY");
    EXPECT_NEAR(host.seen()[0].plain_x, -2000, 1e-6);
    // Starting left of the clip but long enough to run into it: its ink
    // inside the clip shows, none outside it.
    ASSERT_EQ(arial.Draw(u"WWWWWWWW", {30, 80, 0, 0}), Ok);
    const Canvas& c = arial.canvas;
    EXPECT_GT(c.Inked(100, 50, 200, 150), 20);
    EXPECT_EQ(c.InkedAll(), c.Inked(100, 50, 200, 150));
    // Just above the clip with its descenders reaching in: "g" and "y" ink it.
    Text low(u"Arial", 20);
    ASSERT_EQ(GdipSetClipRect(low.g, 0, 40, 300, 100, CombineModeReplace), Ok);
    ASSERT_EQ(low.Draw(u"gggyyy", {20, 40 - 20 * 1.05f, 0, 0}), Ok);
    EXPECT_GT(low.canvas.Inked(0, 40, 300, 60), 0);
}
