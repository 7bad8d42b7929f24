// resources.cpp: ELF section, resource table and BMP decoding, each bounded
// against the bytes it was given, and the grey stand-in.
//
// Index:
//   [SECTION] Little-endian reads
//   [SECTION] BMP
//   [SECTION] ELF64 sections
//   [SECTION] The module file
//   [SECTION] The resource table
//   [SECTION] Layer bitmaps
#include "resources.h"

// The layout the module's build writes; orbsim reads the same.
#include "../../src/resources/resource_blob.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace orbsim {

// [SECTION] Little-endian reads
namespace {
uint16_t U16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }
uint32_t U32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
           (static_cast<uint32_t>(p[3]) << 24);
}
uint64_t U64(const uint8_t* p) { return static_cast<uint64_t>(U32(p)) | (static_cast<uint64_t>(U32(p + 4)) << 32); }
int32_t I32(const uint8_t* p) { return static_cast<int32_t>(U32(p)); }

bool Fail(std::string& error, const char* why) {
    error = why;
    return false;
}
}  // namespace

// [SECTION] BMP
bool DecodeBmp(const uint8_t* data, size_t size, Bitmap& out, std::string& error) {
    constexpr size_t kFileHeader = 14;
    constexpr size_t kInfoHeader = 40;
    constexpr uint32_t kBiRgb = 0, kBiBitfields = 3;
    out = {};
    if (data == nullptr || size < kFileHeader + kInfoHeader) return Fail(error, "BMP too short");
    if (data[0] != 'B' || data[1] != 'M') return Fail(error, "not a BMP file");
    uint32_t pixel_offset = U32(data + 10);
    uint32_t info_size = U32(data + 14);
    if (info_size < kInfoHeader || info_size > size - kFileHeader) return Fail(error, "BMP header unsupported");
    int32_t width = I32(data + 18);
    int32_t height = I32(data + 22);
    uint16_t planes = U16(data + 26);
    uint16_t bits = U16(data + 28);
    uint32_t compression = U32(data + 30);
    if (planes != 1) return Fail(error, "BMP planes not 1");
    if (bits != 24 && bits != 32) return Fail(error, "BMP not 24 or 32 bits a pixel");
    if (width <= 0 || height == 0 || height == INT32_MIN) return Fail(error, "BMP size invalid");
    bool top_down = height < 0;
    int64_t rows = top_down ? -static_cast<int64_t>(height) : height;
    if (width > kMaxBitmapSide || rows > kMaxBitmapSide) return Fail(error, "BMP larger than a gauge layer can be");
    if (compression == kBiBitfields && bits == 32) {
        // Only the plain layout is taken: red, green, blue masks in BGRA order.
        size_t masks = kFileHeader + kInfoHeader;
        if (size < masks + 12) return Fail(error, "BMP masks missing");
        if (U32(data + masks) != 0x00FF0000u || U32(data + masks + 4) != 0x0000FF00u ||
            U32(data + masks + 8) != 0x000000FFu)
            return Fail(error, "BMP colour masks unsupported");
    } else if (compression != kBiRgb) {
        return Fail(error, "BMP compressed");
    }
    uint64_t stride = ((static_cast<uint64_t>(width) * bits + 31) / 32) * 4;
    if (pixel_offset > size || stride * static_cast<uint64_t>(rows) > size - pixel_offset)
        return Fail(error, "BMP pixel data truncated");

    out.width = width;
    out.height = static_cast<int>(rows);
    out.pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(rows), 0);
    bool any_alpha = false;
    if (bits == 32) {
        for (int64_t y = 0; y < rows && !any_alpha; ++y) {
            const uint8_t* row = data + pixel_offset + stride * y;
            for (int32_t x = 0; x < width; ++x)
                if (row[x * 4 + 3] != 0) {
                    any_alpha = true;
                    break;
                }
        }
    }
    for (int64_t y = 0; y < rows; ++y) {
        const uint8_t* row = data + pixel_offset + stride * y;
        int64_t out_y = top_down ? y : rows - 1 - y;
        uint32_t* dst = out.pixels.data() + out_y * width;
        for (int32_t x = 0; x < width; ++x) {
            const uint8_t* p = row + static_cast<size_t>(x) * (bits / 8);
            uint32_t b = p[0], g = p[1], r = p[2];
            uint32_t a = (bits == 32 && any_alpha) ? p[3] : 255;
            // Premultiplied, as the drawing contexts hold their pixels.
            r = r * a / 255;
            g = g * a / 255;
            b = b * a / 255;
            dst[x] = (a << 24) | (r << 16) | (g << 8) | b;
        }
    }
    return true;
}

// [SECTION] ELF64 sections
bool FindElfSection(const uint8_t* file, size_t file_size, const char* name, size_t& offset, size_t& size,
                    std::string& error) {
    constexpr size_t kElfHeader = 64;
    constexpr size_t kSectionHeader = 64;
    constexpr uint32_t kShtNobits = 8;
    offset = size = 0;
    if (file == nullptr || file_size < kElfHeader) return Fail(error, "not an ELF file");
    if (std::memcmp(file, "\x7F" "ELF", 4) != 0) return Fail(error, "not an ELF file");
    if (file[4] != 2 || file[5] != 1) return Fail(error, "not a little-endian 64-bit ELF file");
    uint64_t section_table = U64(file + 0x28);
    uint16_t entry_size = U16(file + 0x3A);
    uint16_t count = U16(file + 0x3C);
    uint16_t names_index = U16(file + 0x3E);
    if (entry_size < kSectionHeader || count == 0 || names_index >= count) return Fail(error, "ELF section table missing");
    if (section_table > file_size || static_cast<uint64_t>(entry_size) * count > file_size - section_table)
        return Fail(error, "ELF section table truncated");
    auto header = [&](uint32_t i) { return file + section_table + static_cast<uint64_t>(entry_size) * i; };
    const uint8_t* names = header(names_index);
    uint64_t names_offset = U64(names + 24), names_size = U64(names + 32);
    if (names_offset > file_size || names_size > file_size - names_offset) return Fail(error, "ELF section names truncated");
    size_t wanted = std::strlen(name);
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* h = header(i);
        uint32_t name_at = U32(h);
        if (name_at >= names_size || names_size - name_at < wanted + 1) continue;
        const char* section_name = reinterpret_cast<const char*>(file + names_offset + name_at);
        if (std::memcmp(section_name, name, wanted) != 0 || section_name[wanted] != 0) continue;
        if (U32(h + 4) == kShtNobits) return Fail(error, "section has no bytes in the file");
        uint64_t at = U64(h + 24), bytes = U64(h + 32);
        if (at > file_size || bytes > file_size - at) return Fail(error, "section lies outside the file");
        offset = static_cast<size_t>(at);
        size = static_cast<size_t>(bytes);
        return true;
    }
    return Fail(error, "no such section");
}

// [SECTION] The module file
bool CheckModuleImage(const uint8_t* file, size_t file_size, uint16_t machine, std::string& error) {
    constexpr size_t kElfHeader = 64;
    constexpr size_t kProgramHeader = 56;
    constexpr uint16_t kEtDyn = 3;
    constexpr uint32_t kPtLoad = 1;
    auto fail = [&](const std::string& why) {
        error = why;
        return false;
    };
    if (file == nullptr || file_size == 0) return fail("empty file; not a module");
    if (file_size >= 2 && file[0] == 'M' && file[1] == 'Z')
        return fail("a Windows DLL; orbsim loads the Linux build of the module (build/linux/orb1.gau)");
    if (file_size < 4 || std::memcmp(file, "\x7F" "ELF", 4) != 0) return fail("not an ELF shared object; not a module");
    if (file_size < kElfHeader) return fail("truncated: " + std::to_string(file_size) + " bytes, not even an ELF header");
    if (file[4] != 2 || file[5] != 1) return fail("not a little-endian 64-bit ELF file");
    if (U16(file + 0x10) != kEtDyn) return fail("an ELF file but no shared object");
    uint16_t file_machine = U16(file + 0x12);
    if (machine != 0 && file_machine != machine)
        return fail("built for ELF machine " + std::to_string(file_machine) + ", this machine is " + std::to_string(machine));
    auto beyond = [&](uint64_t at, uint64_t bytes) { return at > file_size || bytes > file_size - at; };
    auto truncated = [&](const char* what, uint64_t end) {
        return fail(std::string("truncated: ") + what + " ends at byte " + std::to_string(end) + ", the file has " +
                    std::to_string(file_size));
    };
    uint64_t table = U64(file + 0x20);
    uint16_t entry_size = U16(file + 0x36);
    uint16_t count = U16(file + 0x38);
    if (count == 0 || entry_size < kProgramHeader) return fail("ELF file without program headers; not a module");
    uint64_t table_bytes = static_cast<uint64_t>(entry_size) * count;
    if (beyond(table, table_bytes)) return truncated("the program header table", table + table_bytes);
    for (uint16_t i = 0; i < count; ++i) {
        const uint8_t* h = file + table + static_cast<uint64_t>(entry_size) * i;
        if (U32(h) != kPtLoad) continue;
        uint64_t at = U64(h + 8), bytes = U64(h + 32);
        if (beyond(at, bytes)) return truncated("a loaded segment", at + bytes);
    }
    uint64_t sections = U64(file + 0x28);
    uint64_t section_bytes = static_cast<uint64_t>(U16(file + 0x3A)) * U16(file + 0x3C);
    if (sections != 0 && beyond(sections, section_bytes)) return truncated("the section table", sections + section_bytes);
    return true;
}

uint16_t OwnElfMachine() {
    uint8_t header[20] = {};
    std::ifstream self("/proc/self/exe", std::ios::binary);
    if (!self.read(reinterpret_cast<char*>(header), sizeof header)) return 0;
    if (std::memcmp(header, "\x7F" "ELF", 4) != 0) return 0;
    return U16(header + 0x12);
}

// [SECTION] The resource table
bool ParseResourceBlob(const uint8_t* data, size_t size, std::vector<ResourceEntry>& entries, std::string& error) {
    constexpr size_t kHead = sizeof kResourceMagic + 4, kEntry = sizeof(ResourceBlobEntry);
    static_assert(kEntry == 12, "entries are three little-endian words");
    entries.clear();
    if (data == nullptr || size < kHead || std::memcmp(data, kResourceMagic, sizeof kResourceMagic) != 0)
        return Fail(error, "resource table magic wrong");
    uint32_t count = U32(data + 8);
    if (count > (size - kHead) / kEntry) return Fail(error, "resource table truncated");
    entries.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* e = data + kHead + kEntry * i;
        ResourceEntry entry{U32(e), U32(e + 4), U32(e + 8)};
        if (entry.offset > size || entry.size > size - entry.offset) {
            entries.clear();
            return Fail(error, "resource entry lies outside the section");
        }
        entries.push_back(entry);
    }
    return true;
}

void LoadResources(const std::string& module_path, ResourceSet& set) {
    set = {};
    std::ifstream in(module_path, std::ios::binary);
    if (!in) {
        set.absent_reason = "cannot read " + module_path;
        return;
    }
    std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LoadResourcesFromImage(file, set);
}

void LoadResourcesFromImage(const std::vector<uint8_t>& file, ResourceSet& set) {
    set = {};
    size_t offset = 0, size = 0;
    std::string error;
    if (!FindElfSection(file.data(), file.size(), kResourceSectionName, offset, size, error)) {
        set.absent_reason = std::string("section ") + kResourceSectionName + ": " + error;
        return;
    }
    set.section.assign(file.begin() + static_cast<std::ptrdiff_t>(offset),
                       file.begin() + static_cast<std::ptrdiff_t>(offset + size));
    if (!ParseResourceBlob(set.section.data(), set.section.size(), set.entries, error)) {
        set.absent_reason = std::string("section ") + kResourceSectionName + ": " + error;
        set.section.clear();
        return;
    }
    set.present = true;
}

// [SECTION] Layer bitmaps
Bitmap LayerBitmap(ResourceSet& set, uint32_t resource_id, const char* gauge_name) {
    std::string problem;
    if (set.present) {
        const ResourceEntry* found = nullptr;
        for (const ResourceEntry& e : set.entries)
            if (e.resource_id == resource_id) {
                found = &e;
                break;
            }
        if (found != nullptr) {
            Bitmap bitmap;
            if (DecodeBmp(set.section.data() + found->offset, found->size, bitmap, problem)) return bitmap;
        } else {
            problem = "no bitmap in the module";
        }
        if (set.warned_ids.insert(resource_id).second)
            std::fprintf(stderr, "orbsim: warning: %s resource 0x%X: %s; a grey layer stands in\n",
                         gauge_name ? gauge_name : "?", resource_id, problem.c_str());
    } else if (!set.warned_absent) {
        set.warned_absent = true;
        std::fprintf(stderr, "orbsim: warning: the module has no layer bitmaps (%s); grey layers stand in\n",
                     set.absent_reason.c_str());
    }
    Bitmap grey;
    grey.fallback = true;
    if (!FallbackLayerSize(resource_id, grey.width, grey.height)) grey.width = grey.height = kFallbackSide;
    grey.pixels.assign(static_cast<size_t>(grey.width) * static_cast<size_t>(grey.height), kFallbackGrey);
    return grey;
}

}  // namespace orbsim
