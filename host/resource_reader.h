// resource_reader.h: reads the bitmaps a Linux build of the module carries.
//
// The simulator takes a layer's picture from the module's BITMAP resource that
// the element's resource_id names. A shared object has no resources, so the
// Linux module holds the same BMP files in its ELF section ".orb_rsrc" (layout
// in src/resources/resource_blob.h). A host reads the module file, finds that
// section, lists its entries and decodes the BMP of an id with this header.
//
// Header-only and free of the module's code, so that orbsim, the packer and
// the tests include it without linking anything. Every function takes
// untrusted bytes: offsets and sizes are checked before any read, and a bad
// input gives false and a one-line reason, never a crash.
//
// Index:
//   [SECTION] Limits and records
//   [SECTION] Little-endian reads
//   [SECTION] ELF section look-up
//   [SECTION] Resource blob
//   [SECTION] BMP decoding
//   [SECTION] Module file
#pragma once

#include "../src/resources/resource_blob.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace resource_reader {

// [SECTION] Limits and records
constexpr uint32_t kMaxEntries = 4096;          // 54 gauges x at most 14 layers, with room to spare
constexpr int32_t kMaxBitmapSide = 4096;        // larger than any gauge; bounds the decode buffer
constexpr size_t kMaxModuleFileBytes = 256u << 20;  // a module file past this is not ours

struct Span {
    const uint8_t* data = nullptr;  // first byte
    size_t size = 0;                // bytes
};

// One decoded bitmap, top row first.
struct Bitmap {
    int width = 0;                  // pixels
    int height = 0;                 // pixels
    int bits_per_pixel = 0;         // 24 or 32 as stored
    std::vector<uint32_t> pixels;   // 0x00RRGGBB (24-bit) or 0xAARRGGBB (32-bit), width x height
};

// [SECTION] Little-endian reads
inline uint16_t Le16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }
inline uint32_t Le32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
           (static_cast<uint32_t>(p[3]) << 24);
}
inline uint64_t Le64(const uint8_t* p) { return Le32(p) | (static_cast<uint64_t>(Le32(p + 4)) << 32); }

// True when [offset, offset + length) lies within size, without overflow.
inline bool Fits(uint64_t offset, uint64_t length, uint64_t size) { return offset <= size && length <= size - offset; }

// [SECTION] ELF section look-up
// Finds a section by name in a little-endian ELF file of 32 or 64 bits.
inline bool FindElfSection(Span file, const char* name, Span& section, std::string& error) {
    const uint8_t* f = file.data;
    if (file.size < 52 || std::memcmp(f, "\x7f" "ELF", 4) != 0) return error = "not an ELF file", false;
    const bool is64 = f[4] == 2;
    if (!(f[4] == 1 || f[4] == 2)) return error = "unknown ELF class", false;
    if (f[5] != 1) return error = "not a little-endian ELF file", false;
    if (is64 && file.size < 64) return error = "truncated ELF header", false;
    uint64_t shoff = is64 ? Le64(f + 0x28) : Le32(f + 0x20);
    uint16_t shentsize = Le16(f + (is64 ? 0x3A : 0x2E));
    uint16_t shnum = Le16(f + (is64 ? 0x3C : 0x30));
    uint16_t shstrndx = Le16(f + (is64 ? 0x3E : 0x32));
    const uint16_t want_entsize = is64 ? 64 : 40;
    if (shentsize != want_entsize) return error = "unexpected section header size", false;
    if (shnum == 0 || !Fits(shoff, static_cast<uint64_t>(shnum) * shentsize, file.size))
        return error = "section headers outside the file", false;
    if (shstrndx >= shnum) return error = "bad section name table index", false;

    struct Header {
        uint32_t name;
        uint32_t type;
        uint64_t offset;
        uint64_t size;
    };
    auto header = [&](uint16_t i) {
        const uint8_t* h = f + shoff + static_cast<uint64_t>(i) * shentsize;
        if (is64) return Header{Le32(h), Le32(h + 4), Le64(h + 0x18), Le64(h + 0x20)};
        return Header{Le32(h), Le32(h + 4), Le32(h + 0x10), Le32(h + 0x14)};
    };
    constexpr uint32_t kNoBits = 8;  // SHT_NOBITS: no bytes in the file
    Header names = header(shstrndx);
    if (names.type == kNoBits || !Fits(names.offset, names.size, file.size))
        return error = "section name table outside the file", false;
    const size_t want_length = std::strlen(name);
    for (uint16_t i = 0; i < shnum; ++i) {
        Header h = header(i);
        if (h.name >= names.size || names.size - h.name < want_length + 1) continue;
        const uint8_t* n = f + names.offset + h.name;
        if (std::memcmp(n, name, want_length) != 0 || n[want_length] != 0) continue;
        if (h.type == kNoBits || !Fits(h.offset, h.size, file.size))
            return error = std::string("section ") + name + " outside the file", false;
        section = Span{f + h.offset, static_cast<size_t>(h.size)};
        return true;
    }
    return error = std::string("no section ") + name, false;
}

// [SECTION] Resource blob
// Lists the entries of a resource section; each entry's bytes lie within it.
inline bool ParseResourceBlob(Span blob, std::vector<ResourceBlobEntry>& entries, std::string& error) {
    entries.clear();
    constexpr size_t kHeader = sizeof(kResourceMagic) + 4;
    constexpr size_t kEntry = 12;
    if (blob.size < kHeader || std::memcmp(blob.data, kResourceMagic, sizeof(kResourceMagic)) != 0)
        return error = "resource section lacks its magic", false;
    uint32_t count = Le32(blob.data + sizeof(kResourceMagic));
    if (count > kMaxEntries) return error = "resource section claims too many entries", false;
    if (!Fits(kHeader, static_cast<uint64_t>(count) * kEntry, blob.size))
        return error = "resource entry table outside the section", false;
    entries.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* e = blob.data + kHeader + i * kEntry;
        ResourceBlobEntry entry{Le32(e), Le32(e + 4), Le32(e + 8)};
        if (!Fits(entry.offset, entry.size, blob.size)) {
            entries.clear();
            return error = "resource " + std::to_string(entry.resource_id) + " outside the section", false;
        }
        entries.push_back(entry);
    }
    return true;
}

// The bytes of one resource id, or an empty span.
inline Span FindResource(Span blob, const std::vector<ResourceBlobEntry>& entries, uint32_t resource_id) {
    for (const ResourceBlobEntry& e : entries)
        if (e.resource_id == resource_id) return Span{blob.data + e.offset, e.size};
    return {};
}

// [SECTION] BMP decoding
// Uncompressed 24- and 32-bit Windows bitmaps, bottom-up or top-down: what
// the module carries. Anything else is refused with a reason.
inline bool DecodeBmp(Span file, Bitmap& out, std::string& error) {
    out = {};
    const uint8_t* b = file.data;
    if (file.size < 54 || b[0] != 'B' || b[1] != 'M') return error = "not a BMP file", false;
    uint32_t pixel_offset = Le32(b + 10);
    uint32_t info_size = Le32(b + 14);
    if (info_size < 40 || !Fits(14, info_size, file.size)) return error = "BMP info header truncated", false;
    int32_t width = static_cast<int32_t>(Le32(b + 18));
    int32_t height = static_cast<int32_t>(Le32(b + 22));
    uint16_t planes = Le16(b + 26);
    uint16_t bpp = Le16(b + 28);
    uint32_t compression = Le32(b + 30);
    const bool top_down = height < 0;
    if (height == INT32_MIN) return error = "BMP height out of range", false;
    if (top_down) height = -height;
    if (width <= 0 || height <= 0 || width > kMaxBitmapSide || height > kMaxBitmapSide)
        return error = "BMP size out of range", false;
    if (planes != 1) return error = "BMP plane count is not 1", false;
    constexpr uint32_t kRgb = 0, kBitfields = 3;
    if (bpp != 24 && bpp != 32) return error = "BMP is not 24 or 32 bits a pixel", false;
    if (!(compression == kRgb || (bpp == 32 && compression == kBitfields)))
        return error = "BMP is compressed", false;
    const uint64_t stride = (static_cast<uint64_t>(width) * bpp / 8 + 3) & ~uint64_t{3};
    if (!Fits(pixel_offset, stride * static_cast<uint64_t>(height), file.size))
        return error = "BMP pixel data truncated", false;
    out.width = width;
    out.height = height;
    out.bits_per_pixel = bpp;
    out.pixels.resize(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (int32_t row = 0; row < height; ++row) {
        int32_t stored = top_down ? row : height - 1 - row;
        const uint8_t* src = b + pixel_offset + stride * static_cast<uint64_t>(stored);
        uint32_t* dst = out.pixels.data() + static_cast<size_t>(row) * static_cast<size_t>(width);
        for (int32_t x = 0; x < width; ++x) {
            const uint8_t* p = src + static_cast<size_t>(x) * (bpp / 8);
            uint32_t alpha = bpp == 32 ? static_cast<uint32_t>(p[3]) << 24 : 0;
            dst[x] = alpha | (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[1]) << 8) | p[0];
        }
    }
    return true;
}

// [SECTION] Module file
// A module file read whole, with its resource section listed.
struct ModuleResources {
    std::vector<uint8_t> file;                 // the module's bytes
    Span section;                              // the resource section within file
    std::vector<ResourceBlobEntry> entries;    // as listed by the section
};

inline bool ReadModuleResources(const char* path, ModuleResources& out, std::string& error) {
    out = {};
    std::FILE* f = std::fopen(path, "rb");
    if (f == nullptr) return error = std::string(path) + ": cannot open", false;
    uint8_t chunk[65536];
    size_t got;
    while ((got = std::fread(chunk, 1, sizeof(chunk), f)) > 0) {
        if (out.file.size() + got > kMaxModuleFileBytes) {
            std::fclose(f);
            return error = std::string(path) + ": larger than any module", false;
        }
        out.file.insert(out.file.end(), chunk, chunk + got);
    }
    std::fclose(f);
    if (!FindElfSection(Span{out.file.data(), out.file.size()}, kResourceSectionName, out.section, error) ||
        !ParseResourceBlob(out.section, out.entries, error)) {
        error = std::string(path) + ": " + error;
        return false;
    }
    return true;
}

}  // namespace resource_reader
