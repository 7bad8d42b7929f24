// gdiplus_fuzz_body.h: one run of the text paths over arbitrary bytes, shared
// by the fuzz target and the unit test that feeds it hostile inputs. The bytes
// go through the UTF-8 and UTF-16 converters and, as UTF-16, through string
// layout, drawing and measuring with a format taken from the first bytes.
#pragma once

#include "display/gdi_objects.h"

#include <orbhost.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

inline int GdiplusFuzzOne(const uint8_t* data, size_t size) {
    // [1] UTF-8 in: converting, back and forth again gives the same units.
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    gdi::WideText wide = gdi::Widen(bytes);
    char utf8[gdi::kMaxTextUnits * 3 + 1];
    size_t n = gdi::Utf16ToUtf8(wide.units.data(), wide.length, utf8, sizeof utf8);
    gdi::WideText again = gdi::Widen(std::string_view(utf8, n));
    if (again.length != wide.length) std::abort();
    for (int i = 0; i < wide.length; ++i) {
        if (again.units[i] != wide.units[i]) std::abort();
    }

    // [2] The bytes as UTF-16, laid out, drawn and measured.
    static std::vector<uint32_t> pixels(64 * 32);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), 64, 32, 64 * 4};
    GpGraphics* g = nullptr;
    if (GdipCreateFromHDC(&dc, &g) != Ok) std::abort();
    int flags = size > 0 ? data[0] << 8 : 0;
    StringAlignment align = static_cast<StringAlignment>(size > 1 ? data[1] % 3 : 0);
    StringAlignment line = static_cast<StringAlignment>(size > 2 ? data[2] % 3 : 0);
    float width = size > 3 ? static_cast<float>(data[3] % 80) : 0.0f;
    float height = size > 4 ? static_cast<float>(data[4] % 40) : 0.0f;
    std::vector<WCHAR> units(size / 2 + 1, 0);  // never empty: a null string is a different error
    for (size_t i = 0; i + 1 < units.size(); ++i) {
        units[i] = static_cast<WCHAR>(data[2 * i] | (data[2 * i + 1] << 8));
    }
    gdi::Font font(size > 5 && (data[5] & 1) ? "Courier New" : "Arial", 9.0f + (size > 6 ? data[6] % 12 : 0));
    GpStringFormat* format = nullptr;
    GdipCreateStringFormat(flags, 0, &format);
    GdipSetStringFormatAlign(format, align);
    GdipSetStringFormatLineAlign(format, line);
    GpSolidFill* brush = nullptr;
    GdipCreateSolidFill(0xFFFFFFFF, &brush);
    GpRectF rect{2, 2, width, height};
    GpRectF box{};
    INT fitted = 0, lines = 0;
    INT length = static_cast<INT>(units.size() - 1);
    if (GdipDrawString(g, units.data(), length, font.native(), &rect, format, brush) != Ok) std::abort();
    if (GdipMeasureString(g, units.data(), length, font.native(), &rect, format, &box, &fitted, &lines) != Ok) {
        std::abort();
    }
    if (fitted < 0 || fitted > length || lines < 0 || box.Width < 0 || box.Height < 0) std::abort();
    GdipDeleteBrush(brush);
    GdipDeleteStringFormat(format);
    GdipDeleteGraphics(g);
    return 0;
}
