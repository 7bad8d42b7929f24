// resources.h: the bitmaps of the gauges' layers, read from the module file.
//
// The simulator takes a layer's bitmap (and so its size) from the module's
// resources. The Linux module carries them as BMP files in one ELF section;
// orbsim reads that section from GAUGES/orb1.gau, decodes the bitmaps, and
// stands in a plain grey layer (with one warning line) only where the section
// or the entry is missing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace orbsim {

constexpr int kMaxBitmapSide = 4096;            // no gauge layer is larger; bounds hostile headers
constexpr uint32_t kFallbackGrey = 0xFF808080;  // the stand-in layer's colour
constexpr int kFallbackSide = 64;               // a layer that not even the size table knows

// 32-bit premultiplied ARGB, top row first, `width` pixels a row.
struct Bitmap {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;
    bool fallback = false;                      // the grey stand-in, not the module's picture
};

// Decodes an uncompressed 24- or 32-bit BMP file. On failure returns false
// and says why in `error`.
bool DecodeBmp(const uint8_t* data, size_t size, Bitmap& out, std::string& error);

// Finds a named section in a little-endian ELF64 file image.
bool FindElfSection(const uint8_t* file, size_t file_size, const char* name, size_t& offset, size_t& size,
                    std::string& error);

// Checks a module file before dlopen maps it: an ELF shared object of the
// machine `machine` (0: any) whose program headers, loaded segments and
// section table all lie inside the file. The loader maps a truncated file's
// segments past its end, and the first touch of the missing pages kills the
// process with SIGBUS; this turns that into a message. A Windows DLL is named
// as such.
bool CheckModuleImage(const uint8_t* file, size_t file_size, uint16_t machine, std::string& error);

// The ELF machine number of the running program (0 when it cannot be read).
uint16_t OwnElfMachine();

struct ResourceEntry {
    uint32_t resource_id = 0;
    uint32_t offset = 0;                        // from the start of the section
    uint32_t size = 0;
};

// Reads the section's table of entries (magic, count, entries), checking that
// every entry lies inside the section.
bool ParseResourceBlob(const uint8_t* data, size_t size, std::vector<ResourceEntry>& entries, std::string& error);

struct ResourceSet {
    std::vector<uint8_t> section;               // a copy of the section's bytes
    std::vector<ResourceEntry> entries;
    bool present = false;                       // the section was found and is well formed
    std::string absent_reason;                  // why not, for the one warning line
    bool warned_absent = false;
    std::set<uint32_t> warned_ids;              // entries already reported missing or bad
};

// Loads the module file's resource section. Never fails: a missing or bad
// section leaves `present` false.
void LoadResources(const std::string& module_path, ResourceSet& set);
void LoadResourcesFromImage(const std::vector<uint8_t>& file, ResourceSet& set);

// The bitmap of a resource: decoded from the section, else the grey stand-in
// of the layer's size (a warning line on stderr, once for a missing section,
// once an entry otherwise).
Bitmap LayerBitmap(ResourceSet& set, uint32_t resource_id, const char* gauge_name);

// The layer size the module's gauge table gives, for the stand-in; false when unknown.
bool FallbackLayerSize(uint32_t resource_id, int& width, int& height);

}  // namespace orbsim
