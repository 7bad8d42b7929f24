// canvas.h: an in-memory device context for drawing tests, and a host that
// keeps the strings the drawing hands to it.
#pragma once

#include "../../platform/host_link.h"

#include <gdiplus_flat.h>
#include <orbhost.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace test_canvas {

// A host pixel buffer handed to the module as an HDC.
struct Canvas {
    std::vector<uint32_t> pixels;
    OrbDeviceContext dc{};

    Canvas(int width, int height, uint32_t fill = 0) : pixels(static_cast<size_t>(width) * height, fill) {
        dc = OrbDeviceContext{kOrbDeviceContextMagic, pixels.data(), width, height, width * 4};
    }
    HDC hdc() { return &dc; }
    uint32_t At(int x, int y) const {
        if (x < 0 || y < 0 || x >= dc.width || y >= dc.height) return 0;
        return pixels[static_cast<size_t>(y) * dc.width + x];
    }
    uint32_t Alpha(int x, int y) const { return At(x, y) >> 24; }
    // Pixels in [x0, x1) x [y0, y1) whose alpha is non-zero.
    int Inked(int x0, int y0, int x1, int y1) const {
        int n = 0;
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x) n += Alpha(x, y) != 0;
        return n;
    }
    int InkedAll() const { return Inked(0, 0, dc.width, dc.height); }
    // Pixels exactly of one colour (premultiplied ARGB; opaque colours are as given).
    int CountColour(uint32_t argb) const {
        int n = 0;
        for (uint32_t p : pixels) n += p == argb;
        return n;
    }
};

// A pen or a solid brush for the flat calls, deleted at the end of its scope.
struct PenOf {
    GpPen* p = nullptr;
    PenOf(ARGB colour, float width) { EXPECT_EQ(GdipCreatePen1(colour, width, UnitWorld, &p), Ok); }
    ~PenOf() { GdipDeletePen(p); }
};

struct BrushOf {
    GpSolidFill* b = nullptr;
    explicit BrushOf(ARGB colour) { EXPECT_EQ(GdipCreateSolidFill(colour, &b), Ok); }
    ~BrushOf() { GdipDeleteBrush(b); }
};

// One string as the host saw it.
struct Seen {
    std::string text;
    OrbDrawnText box{};       // pointers inside are not kept
    std::string family;
    std::string face;
    double plain_x = 0, plain_y = 0, plain_w = 0, plain_h = 0;  // from the first callback
};

// Installs a version-2 host that keeps every drawn string; restores the
// previous host when it goes.
class TextHost {
public:
    TextHost() {
        previous_ = platform::Host();
        host_.version = 2;
        host_.text_drawn = &Plain;
        host_.text_drawn_box = &Boxed;
        Seen_().clear();
        platform::SetHostForTesting(&host_);
    }
    ~TextHost() { platform::SetHostForTesting(previous_); }
    std::vector<Seen>& seen() { return Seen_(); }

private:
    static std::vector<Seen>& Seen_() {
        static std::vector<Seen> seen;
        return seen;
    }
    static void Plain(void*, const char* utf8, double x, double y, double w, double h, uint32_t, const char*, double,
                      int) {
        Seen s;
        s.text = utf8;
        s.plain_x = x;
        s.plain_y = y;
        s.plain_w = w;
        s.plain_h = h;
        Seen_().push_back(s);
    }
    static void Boxed(const OrbDrawnText* t) {
        // The plain callback came first for this string: complete its entry.
        Seen& s = Seen_().back();
        s.box = *t;
        s.family = t->font_family;
        s.face = t->font_face;
        s.box.utf8 = nullptr;
        s.box.font_family = nullptr;
        s.box.font_face = nullptr;
    }
    OrbHostInterface host_{};
    const OrbHostInterface* previous_ = nullptr;
};

}  // namespace test_canvas
