// png_out.cpp: layer composition and the PNG writer.
#include "png_out.h"

#include <png.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace orbsim {

Bitmap ComposeInstance(const GaugeInstance& inst) {
    Bitmap canvas;
    for (const Layer& layer : inst.layers) {
        const PIXPOINT& at = layer.element->position;
        canvas.width = std::max(canvas.width, std::max(0, at.x) + layer.bitmap.width);
        canvas.height = std::max(canvas.height, std::max(0, at.y) + layer.bitmap.height);
    }
    canvas.width = std::min(canvas.width, kMaxBitmapSide);
    canvas.height = std::min(canvas.height, kMaxBitmapSide);
    canvas.pixels.assign(static_cast<size_t>(canvas.width) * static_cast<size_t>(canvas.height), 0);
    for (const Layer& layer : inst.layers) {
        auto flags = static_cast<FLAGS32>(layer.element->image_flags);
        if (flags & (IMAGE_HIDDEN | IMAGE_HIDDEN_TREE)) continue;
        bool black_is_clear = flags & IMAGE_USE_TRANSPARENCY;
        // A drawing context is a device bitmap: its alpha counts only where the layer asks for it.
        bool opaque = layer.dc != nullptr && !(flags & IMAGE_USE_ALPHA);
        const std::vector<uint32_t>& source = layer.dc ? layer.dc_pixels : layer.bitmap.pixels;
        const PIXPOINT& at = layer.element->position;
        for (int y = 0; y < layer.bitmap.height; ++y) {
            int cy = at.y + y;
            if (cy < 0 || cy >= canvas.height) continue;
            for (int x = 0; x < layer.bitmap.width; ++x) {
                int cx = at.x + x;
                if (cx < 0 || cx >= canvas.width) continue;
                uint32_t s = source[static_cast<size_t>(y) * static_cast<size_t>(layer.bitmap.width) + static_cast<size_t>(x)];
                if (black_is_clear && (s & 0x00FFFFFFu) == 0) continue;
                if (opaque) s |= 0xFF000000u;
                uint32_t& d = canvas.pixels[static_cast<size_t>(cy) * static_cast<size_t>(canvas.width) + static_cast<size_t>(cx)];
                uint32_t inverse = 255 - (s >> 24);
                uint32_t out = 0;
                for (int shift = 0; shift < 32; shift += 8) {
                    uint32_t channel = ((s >> shift) & 0xFF) + ((d >> shift) & 0xFF) * inverse / 255;
                    out |= std::min<uint32_t>(channel, 255) << shift;
                }
                d = out;
            }
        }
    }
    return canvas;
}

bool MakeFolders(const std::string& folder, std::string& error) {
    if (folder.empty()) return true;
    for (size_t at = 1; at <= folder.size(); ++at) {
        if (at != folder.size() && folder[at] != '/') continue;
        std::string part = folder.substr(0, at);
        if (mkdir(part.c_str(), 0777) != 0 && errno != EEXIST) {
            error = part + ": " + std::strerror(errno);
            return false;
        }
    }
    return true;
}

namespace {
void AppendToString(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::string*>(png_get_io_ptr(png));
    out->append(reinterpret_cast<const char*>(data), length);
}
void NoFlush(png_structp) {}
}  // namespace

bool EncodePng(const Bitmap& picture, int compression_level, std::string& out) {
    out.clear();
    if (picture.width <= 0 || picture.height <= 0) return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    std::vector<uint8_t> row(static_cast<size_t>(picture.width) * 4);
    volatile bool ok = png != nullptr && info != nullptr;
    if (ok && setjmp(png_jmpbuf(png)) == 0) {
        png_set_write_fn(png, &out, AppendToString, NoFlush);
        png_set_compression_level(png, compression_level);
        png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height), 8,
                     PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                uint32_t p = picture.pixels[static_cast<size_t>(y) * static_cast<size_t>(picture.width) + static_cast<size_t>(x)];
                uint32_t a = p >> 24;
                auto straight = [a](uint32_t c) { return static_cast<uint8_t>(a == 0 ? 0 : std::min<uint32_t>(255, c * 255 / a)); };
                row[static_cast<size_t>(x) * 4 + 0] = straight((p >> 16) & 0xFF);
                row[static_cast<size_t>(x) * 4 + 1] = straight((p >> 8) & 0xFF);
                row[static_cast<size_t>(x) * 4 + 2] = straight(p & 0xFF);
                row[static_cast<size_t>(x) * 4 + 3] = static_cast<uint8_t>(a);
            }
            png_write_row(png, row.data());
        }
        png_write_end(png, nullptr);
    } else {
        ok = false;
    }
    if (png) png_destroy_write_struct(&png, info ? &info : nullptr);
    if (!ok) out.clear();
    return ok;
}

bool WritePng(const std::string& path, const Bitmap& picture, std::string& error) {
    if (picture.width <= 0 || picture.height <= 0) {
        error = "the gauge has no picture";
        return false;
    }
    size_t slash = path.rfind('/');
    if (slash != std::string::npos && !MakeFolders(path.substr(0, slash), error)) return false;
    std::string bytes;
    std::string temporary = path + ".part";
    bool ok = EncodePng(picture, -1, bytes);  // zlib's default level
    std::FILE* file = ok ? std::fopen(temporary.c_str(), "wb") : nullptr;
    if (ok && file == nullptr) {
        error = temporary + ": " + std::strerror(errno);
        return false;
    }
    if (file != nullptr) {
        ok = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
        if (std::fclose(file) != 0) ok = false;
    }
    if (!ok || std::rename(temporary.c_str(), path.c_str()) != 0) {
        std::remove(temporary.c_str());
        error = path + ": the picture could not be written";
        return false;
    }
    return true;
}

}  // namespace orbsim
