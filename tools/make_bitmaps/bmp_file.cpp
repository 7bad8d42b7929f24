// bmp_file.cpp: the BMP encoder of make_bitmaps (see bmp_file.h for the
// colour rules).
#include "bmp_file.h"

#include <algorithm>

namespace {
void Put16(std::vector<uint8_t>& out, uint32_t v) {
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}
void Put32(std::vector<uint8_t>& out, uint32_t v) {
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}
}  // namespace

std::vector<uint8_t> EncodeBmp(cairo_surface_t* canvas, bool pure_black) {
    cairo_surface_flush(canvas);
    const int width = cairo_image_surface_get_width(canvas);
    const int height = cairo_image_surface_get_height(canvas);
    const int source_stride = cairo_image_surface_get_stride(canvas);
    const unsigned char* source = cairo_image_surface_get_data(canvas);
    const uint32_t row_bytes = (static_cast<uint32_t>(width) * 3 + 3) & ~3u;  // rows pad to 4 bytes
    const uint32_t pixel_bytes = row_bytes * static_cast<uint32_t>(height);
    constexpr uint32_t kHeaders = 14 + 40;

    std::vector<uint8_t> out;
    out.reserve(kHeaders + pixel_bytes);
    // BITMAPFILEHEADER
    out.push_back('B');
    out.push_back('M');
    Put32(out, kHeaders + pixel_bytes);
    Put32(out, 0);
    Put32(out, kHeaders);
    // BITMAPINFOHEADER: bottom-up, 24 bits, no compression, 72 dpi
    Put32(out, 40);
    Put32(out, static_cast<uint32_t>(width));
    Put32(out, static_cast<uint32_t>(height));
    Put16(out, 1);
    Put16(out, 24);
    Put32(out, 0);
    Put32(out, pixel_bytes);
    Put32(out, 2835);
    Put32(out, 2835);
    Put32(out, 0);
    Put32(out, 0);

    for (int row = height - 1; row >= 0; --row) {
        const uint32_t* pixels = reinterpret_cast<const uint32_t*>(source + static_cast<size_t>(row) * source_stride);
        size_t row_start = out.size();
        for (int x = 0; x < width; ++x) {
            uint32_t p = pixels[x];
            uint32_t a = p >> 24;
            uint8_t r = 0, g = 0, b = 0;
            if (!pure_black && a >= 128) {
                // cairo stores premultiplied colour; undo it.
                r = static_cast<uint8_t>(std::min<uint32_t>(255, ((p >> 16) & 0xFF) * 255 / a));
                g = static_cast<uint8_t>(std::min<uint32_t>(255, ((p >> 8) & 0xFF) * 255 / a));
                b = static_cast<uint8_t>(std::min<uint32_t>(255, (p & 0xFF) * 255 / a));
                if (std::max({r, g, b}) < kOpaqueFloor) r = g = b = kOpaqueFloor;
            }
            out.push_back(b);
            out.push_back(g);
            out.push_back(r);
        }
        while (out.size() - row_start < row_bytes) out.push_back(0);
    }
    return out;
}
