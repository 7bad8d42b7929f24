// The drawing object layer: text conversion, the fallbacks and kept statuses
// of its objects, and text placed by the helpers as the host reads it.
#include "display/gdi_objects.h"
#include "platform/canvas.h"
#include "platform/gdiplus_fuzz_body.h"

#include <gtest/gtest.h>

#include <string>

using test_canvas::Canvas;
using test_canvas::TextHost;

namespace {

std::u16string Units(std::string_view utf8) {
    gdi::WideText w = gdi::Widen(utf8);
    return std::u16string(reinterpret_cast<const char16_t*>(w.units.data()), w.length);
}

}  // namespace

TEST(GdiObjects, Utf8ToUtf16DecodesAndReplacesMalformedBytes) {
    EXPECT_EQ(Units("N123AB"), u"N123AB");
    EXPECT_EQ(Units("35\xC2\xB0"), u"35\u00B0");               // degree sign
    EXPECT_EQ(Units("\xE2\x86\x90"), u"\u2190");                // left arrow
    EXPECT_EQ(Units("\xF0\x9F\x98\x80"), u"\U0001F600");        // a pair of surrogates
    EXPECT_EQ(Units("\xC0\x80"), u"\uFFFD\uFFFD");              // overlong
    EXPECT_EQ(Units("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");    // an encoded surrogate
    EXPECT_EQ(Units("\xF4\x90\x80\x80"), std::u16string(4, u'\uFFFD'));  // past U+10FFFF
    EXPECT_EQ(Units("A\xE2\x86"), u"A\uFFFD\uFFFD");            // cut short
    EXPECT_EQ(Units("\x80Z\xFF"), u"\uFFFDZ\uFFFD");
    EXPECT_EQ(Units(std::string_view("A\0B", 3)), std::u16string(u"A\0B", 3));

    // Too long: dropped at a character boundary, never half a pair.
    std::string many;
    for (int i = 0; i < 400; ++i) many += "\xF0\x9F\x98\x80";
    gdi::WideText w = gdi::Widen(many);
    EXPECT_EQ(w.length, gdi::kMaxTextUnits);
    EXPECT_EQ(w.units[w.length], 0);
    EXPECT_TRUE(w.units[w.length - 1] >= 0xDC00 && w.units[w.length - 1] <= 0xDFFF);
    // A buffer of one unit holds only the terminator.
    WCHAR one[1] = {'x'};
    EXPECT_EQ(gdi::Utf8ToUtf16("abc", one, 1), 0);
    EXPECT_EQ(one[0], 0);

    // UTF-16 back to UTF-8: pairs joined, lone halves replaced, room respected.
    const WCHAR units[] = {'A', 0xD83D, 0xDE00, 0xDC00, 0xD800};
    char out[32];
    size_t n = gdi::Utf16ToUtf8(units, 5, out, sizeof out);
    EXPECT_EQ(std::string(out, n), "A\xF0\x9F\x98\x80\xEF\xBF\xBD\xEF\xBF\xBD");
    char small[4];
    n = gdi::Utf16ToUtf8(units, 5, small, sizeof small);
    EXPECT_EQ(std::string(small, n), "A");  // the pair needs four more bytes
}

TEST(GdiObjects, HostileTextGoesThroughEveryPathUnharmed) {
    const std::string inputs[] = {
        std::string(),
        std::string("\xFF\xFE\xFD\xFC", 4),
        std::string("\x00\xD8\x00\xD8\x00\xDC", 6),        // lone and paired surrogates as UTF-16
        std::string(6, '\n'),
        std::string("\xFF\x02\x01\x00\x00\x01", 6) + std::string(3000, ' '),  // all flags, zero box
        std::string("\x00\x01\x02\x4F\x27\x00", 6) + std::string(20000, 'W'),  // far past the limits
        std::string("\x40\x00\x0D\x00\x0A\x00\x20\x00\x20\x00", 10),
    };
    for (const std::string& in : inputs) {
        EXPECT_EQ(GdiplusFuzzOne(reinterpret_cast<const uint8_t*>(in.data()), in.size()), 0);
    }
}

TEST(GdiObjects, FontsFallBackAndFailedObjectsDrawNothing) {
    TextHost host;
    Canvas c(200, 100);
    gdi::Graphics g(c.hdc());
    ASSERT_TRUE(g.ok());

    gdi::Font hw("HW Arial", 12, FontStyleBold);
    EXPECT_EQ(hw.status(), Ok);
    EXPECT_FALSE(hw.fell_back());
    gdi::Font missing("No Such Face", 12);
    EXPECT_EQ(missing.status(), Ok);
    EXPECT_TRUE(missing.fell_back());
    g.DrawText("ABC", missing, 0xFF00FA00, 10, 10);
    ASSERT_EQ(host.seen().size(), 1u);
    EXPECT_EQ(host.seen()[0].family, "Arial");
    EXPECT_EQ(g.last_status(), Ok);

    gdi::Font tahoma("Tahoma", 12);
    g.DrawText("ABC", tahoma, 0xFF00FA00, 10, 40);
    EXPECT_EQ(host.seen().back().face, "DejaVu Sans");

    // A pen that could not be made: its drawing does nothing and the status is kept.
    gdi::Pen broken(0xFFFFFFFF, -1.0f);
    EXPECT_EQ(broken.status(), InvalidParameter);
    EXPECT_EQ(broken.native(), nullptr);
    int before = c.InkedAll();
    g.DrawLine(broken, 0, 90, 199, 90);
    EXPECT_EQ(g.last_status(), InvalidParameter);
    EXPECT_EQ(c.InkedAll(), before);
    // A zero-size font is refused the same way.
    gdi::Font zero("Arial", 0);
    EXPECT_EQ(zero.status(), InvalidParameter);
    size_t seen = host.seen().size();
    g.DrawText("X", zero, 0xFFFFFFFF, 5, 5);
    EXPECT_EQ(host.seen().size(), seen);

    // A graphics object on no context: every call returns quietly.
    gdi::Graphics none(nullptr);
    EXPECT_FALSE(none.ok());
    gdi::Pen pen(0xFFFFFFFF, 1);
    gdi::SolidBrush brush(0xFFFFFFFF);
    gdi::Path path;
    path.AddEllipse(0, 0, 10, 10);
    none.Clear(0);
    none.Scale(2, 2);
    none.RotateAbout(30, 5, 5);
    none.SetClip(path);
    none.DrawPath(pen, path);
    none.FillPath(brush, path);
    none.DrawText("X", hw, 0xFFFFFFFF, 1, 1);
    GpRectF m = none.MeasureText("X", hw);
    EXPECT_EQ(m.Width, 0);
    EXPECT_EQ(none.last_status(), InvalidParameter);
    EXPECT_EQ(host.seen().size(), seen);
}

TEST(GdiObjects, TextHelpersPlaceTextAboutThePoint) {
    TextHost host;
    Canvas c(300, 120);
    gdi::Graphics g(c.hdc());
    gdi::Font courier("Courier New", 10);
    const double run = 5 * 0.6 * 10;  // five characters of the mono face

    GpRectF m = g.MeasureText("ABCDE", courier);
    EXPECT_NEAR(m.Width, run + 2 * 10.0 / 6, 0.3);

    g.DrawText("ABCDE", courier, 0xFFFFFF00, 150, 60, gdi::TextAlign::Left);
    g.DrawText("ABCDE", courier, 0xFFFFFF00, 150, 60, gdi::TextAlign::Centre, gdi::TextBaseline::Middle);
    g.DrawText("ABCDE", courier, 0xFFFFFF00, 150, 60, gdi::TextAlign::Right, gdi::TextBaseline::Bottom);
    ASSERT_EQ(host.seen().size(), 3u);
    const auto& left = host.seen()[0].box;
    const auto& centre = host.seen()[1].box;
    const auto& right = host.seen()[2].box;
    EXPECT_NEAR(left.text_x, 150 + 10.0 / 6, 0.3);
    EXPECT_NEAR(left.text_y, 60, 0.3);
    EXPECT_NEAR(centre.text_x + centre.text_width / 2, 150, 0.3);
    EXPECT_NEAR(centre.text_y + centre.text_height / 2, 60, 0.3);
    EXPECT_NEAR(right.text_x + right.text_width, 150 - 10.0 / 6, 0.3);
    EXPECT_NEAR(right.text_y + right.text_height, 60, 0.3);
    EXPECT_EQ(right.argb, 0xFFFFFF00u);

    // UTF-8 comes back to the host as it went in.
    g.DrawText("FL350\xC2\xB0", courier, 0xFFFFFF00, 10, 10);
    EXPECT_EQ(host.seen().back().text, "FL350\xC2\xB0");

    // In a box, with a format of the caller's.
    gdi::StringFormat format(StringAlignmentFar, StringAlignmentCenter);
    g.DrawTextInBox("ABCDE", courier, 0xFFFFFF00, GpRectF{0, 0, 100, 40}, format);
    const auto& boxed = host.seen().back().box;
    EXPECT_NEAR(boxed.text_x + boxed.text_width, 100 - 10.0 / 6, 0.3);
    EXPECT_NEAR(boxed.text_y + boxed.text_height / 2, 20, 0.3);
}

TEST(GdiObjects, WrappersDrawThroughTheirTransformsAndClip) {
    Canvas c(100, 100);
    {
        gdi::Graphics g(c.hdc());
        g.SetSmoothing(SmoothingModeNone);
        gdi::SolidBrush red(0xFFFF0000);
        // Turned a quarter about (50, 50) inside a saved state.
        GraphicsState state = g.Save();
        g.RotateAbout(90, 50, 50);
        g.FillRectangle(red, 60, 48, 20, 4);
        g.Restore(state);
        // Back untransformed, clipped to the left half by a path.
        gdi::Path half;
        half.AddRectangle(0, 0, 50, 100);
        g.SetClip(half);
        g.FillRectangle(red, 0, 0, 100, 10);
        g.ResetClip();
        // A dashed, arrowed pen.
        gdi::Pen pen(0xFF00FA00, 1);
        pen.SetDash(DashStyleDash);
        pen.SetArrowEnd(6, 6);
        EXPECT_EQ(pen.status(), Ok);
        g.DrawLine(pen, 10, 95, 90, 95);
        EXPECT_EQ(g.last_status(), Ok);
    }
    EXPECT_EQ(c.At(50, 70), 0xFFFF0000u);
    EXPECT_EQ(c.At(70, 50), 0u);
    EXPECT_EQ(c.At(40, 5), 0xFFFF0000u);
    EXPECT_EQ(c.At(60, 5), 0u);
    // The dashes leave gaps; the arrow head stands above and below the line.
    int gaps = 0;
    for (int x = 10; x < 84; ++x) gaps += c.Alpha(x, 95) == 0;
    EXPECT_GT(gaps, 10);
    EXPECT_NE(c.Alpha(85, 93), 0u);
    EXPECT_NE(c.Alpha(85, 97), 0u);
    EXPECT_EQ(c.Alpha(85, 91), 0u);
}
