// main.cpp: make_bitmaps, which draws the bitmap of every layer of every
// gauge from the gauge table and writes the resource script that lists them.
//
// Sizes come from LayerOf, so a bitmap always has its layer's size; the
// pictures come from artwork.cpp. The output replaces the folder's bitmaps
// and script whole, or leaves them as they were.
#include "artwork.h"
#include "bmp_file.h"
#include "resource_script.h"

#include "frame/gauge_linkage.h"

#include <cairo.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kUsage =
    "usage: make_bitmaps --resources DIR [--png DIR]\n"
    "\n"
    "Draws the bitmap of every layer of every gauge and writes them as\n"
    "DIR/bitmaps/<gauge>_<layer>.bmp with the resource script DIR/resources.rc\n"
    "that lists them by resource id. Both are replaced whole, or not at all.\n"
    "--png DIR also writes each picture as PNG there, and for each gauge a\n"
    "<gauge>_preview.png with every lamp lit, to look at.\n";

constexpr const char* kScriptHeader =
    "resources.rc: the bitmaps of the gauges' layers, by resource id.\n"
    "Written by make_bitmaps (./orb bitmaps); do not edit. Windows builds\n"
    "compile it into the DLL; the Linux build packs the same files into the\n"
    "module's .orb_rsrc section.";

std::string FileNameOf(GaugeId id, int layer) {
    std::string name = GaugeName(id);
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name + "_" + std::to_string(layer) + ".bmp";
}

bool WriteFile(const fs::path& path, const void* data, size_t size) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (f == nullptr) return false;
    bool ok = std::fwrite(data, 1, size, f) == size;
    return std::fclose(f) == 0 && ok;
}

// The gauge as a panel shows it with every icon on, over a grey panel, the
// surfaces as dark glass; small gauges are doubled. For looking, not for use.
void WritePreview(GaugeId id, const std::vector<cairo_surface_t*>& layers, const fs::path& folder) {
    LayerSpec base = LayerOf(id, 0);
    double scale = std::max(base.width, base.height) < 200 ? 2 : 1;
    cairo_surface_t* sheet = cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>((base.width + 20) * scale),
                                                        static_cast<int>((base.height + 20) * scale));
    cairo_t* cr = cairo_create(sheet);
    cairo_set_source_rgb(cr, 0.42, 0.44, 0.46);
    cairo_paint(cr);
    cairo_scale(cr, scale, scale);
    cairo_translate(cr, 10, 10);
    for (size_t k = 0; k < layers.size(); ++k) {
        LayerSpec shape = LayerOf(id, static_cast<int>(k));
        if (IsBlackLayer(id, static_cast<int>(k))) {
            cairo_rectangle(cr, shape.x, shape.y, shape.width, shape.height);
            cairo_set_source_rgb(cr, 0.02, 0.06, 0.04);
            cairo_fill(cr);
            continue;
        }
        cairo_set_source_surface(cr, layers[k], shape.x, shape.y);
        cairo_paint(cr);
    }
    cairo_destroy(cr);
    std::string name = GaugeName(id);
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    cairo_surface_write_to_png(sheet, (folder / (name + "_preview.png")).c_str());
    cairo_surface_destroy(sheet);
}

}  // namespace

int main(int argc, char** argv) {
    fs::path resources, png;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if ((arg == "--resources" || arg == "--png") && i + 1 < argc) {
            (arg == "--png" ? png : resources) = argv[++i];
            continue;
        }
        std::fprintf(stderr, "make_bitmaps: unknown argument '%s'\n", arg.c_str());
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (resources.empty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    std::error_code ec;
    if (!fs::is_directory(resources, ec)) {
        std::fprintf(stderr, "make_bitmaps: %s: not a folder\n", resources.c_str());
        return 1;
    }
    const fs::path final_dir = resources / "bitmaps";
    const fs::path new_dir = resources / "bitmaps.new";
    const fs::path old_dir = resources / "bitmaps.old";
    const fs::path script_path = resources / "resources.rc";
    fs::remove_all(new_dir, ec);
    fs::remove_all(old_dir, ec);
    if (!fs::create_directories(new_dir, ec) || (!png.empty() && !fs::create_directories(png, ec) && ec)) {
        std::fprintf(stderr, "make_bitmaps: %s: cannot create\n", new_dir.c_str());
        return 1;
    }
    auto fail = [&](const std::string& what) {
        std::fprintf(stderr, "make_bitmaps: %s\n", what.c_str());
        fs::remove_all(new_dir, ec);
        return 1;
    };

    // 1. Every layer of every gauge, in the order of the gauge list.
    std::vector<resource_script::Entry> entries;
    size_t total_bytes = 0;
    for (int g = 0; g < kGaugeCount; ++g) {
        auto id = static_cast<GaugeId>(g);
        std::vector<cairo_surface_t*> layers;  // kept for the preview
        for (int layer = 0; layer < LayerCount(id); ++layer) {
            LayerSpec shape = LayerOf(id, layer);
            if (shape.width <= 0 || shape.height <= 0)
                return fail(std::string(GaugeName(id)) + " layer " + std::to_string(layer) + ": empty size");
            cairo_surface_t* canvas = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, shape.width, shape.height);
            cairo_t* cr = cairo_create(canvas);
            std::string error;
            bool drawn = DrawLayer(cr, id, layer, error);
            cairo_destroy(cr);
            if (!drawn) {
                cairo_surface_destroy(canvas);
                return fail(std::string(GaugeName(id)) + " layer " + std::to_string(layer) + ": " + error);
            }
            std::vector<uint8_t> bmp = EncodeBmp(canvas, IsBlackLayer(id, layer));
            std::string name = FileNameOf(id, layer);
            if (!png.empty()) cairo_surface_write_to_png(canvas, (png / (name.substr(0, name.size() - 4) + ".png")).c_str());
            layers.push_back(canvas);
            if (!WriteFile(new_dir / name, bmp.data(), bmp.size())) return fail((new_dir / name).string() + ": cannot write");
            total_bytes += bmp.size();
            entries.push_back({static_cast<uint32_t>(ResourceIdOf(id, layer)), "bitmaps/" + name, 0});
        }
        if (!png.empty() && !layers.empty()) WritePreview(id, layers, png);
        for (cairo_surface_t* canvas : layers) cairo_surface_destroy(canvas);
    }

    // 2. The script, then the swap of the folder.
    std::string script = resource_script::Write(entries, kScriptHeader);
    fs::path new_script = resources / "resources.rc.new";
    if (!WriteFile(new_script, script.data(), script.size())) return fail(new_script.string() + ": cannot write");
    if (fs::exists(final_dir)) fs::rename(final_dir, old_dir, ec);
    if (ec) return fail(final_dir.string() + ": cannot replace");
    fs::rename(new_dir, final_dir, ec);
    if (ec) {
        fs::rename(old_dir, final_dir, ec);
        fs::remove(new_script, ec);
        return fail(final_dir.string() + ": cannot replace");
    }
    fs::rename(new_script, script_path, ec);
    if (ec) return fail(script_path.string() + ": cannot replace");
    fs::remove_all(old_dir, ec);
    std::printf("make_bitmaps: %zu bitmaps, %zu bytes, in %s\n", entries.size(), total_bytes, final_dir.c_str());
    return 0;
}
