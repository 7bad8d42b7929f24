// resources_test.cpp: layer bitmaps out of the module file: BMP decoding,
// the ELF section table, the resource table, and the grey stand-in.
#include "frame/gauge_linkage.h"
#include "orbsim/resources.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {
void Put16(std::vector<uint8_t>& v, size_t at, uint16_t x) {
    v[at] = x & 0xFF;
    v[at + 1] = x >> 8;
}
void Put32(std::vector<uint8_t>& v, size_t at, uint32_t x) {
    for (int i = 0; i < 4; ++i) v[at + i] = static_cast<uint8_t>(x >> (8 * i));
}
void Put64(std::vector<uint8_t>& v, size_t at, uint64_t x) {
    Put32(v, at, static_cast<uint32_t>(x));
    Put32(v, at + 4, static_cast<uint32_t>(x >> 32));
}

// A BMP file of width x height pixels given top row first as 0xAARRGGBB.
std::vector<uint8_t> MakeBmp(int width, int height, int bits, bool top_down, const std::vector<uint32_t>& pixels) {
    int stride = ((width * bits + 31) / 32) * 4;
    std::vector<uint8_t> file(54 + static_cast<size_t>(stride) * height, 0);
    file[0] = 'B';
    file[1] = 'M';
    Put32(file, 2, static_cast<uint32_t>(file.size()));
    Put32(file, 10, 54);
    Put32(file, 14, 40);
    Put32(file, 18, static_cast<uint32_t>(width));
    Put32(file, 22, static_cast<uint32_t>(top_down ? -height : height));
    Put16(file, 26, 1);
    Put16(file, 28, static_cast<uint16_t>(bits));
    for (int y = 0; y < height; ++y) {
        int file_row = top_down ? y : height - 1 - y;
        for (int x = 0; x < width; ++x) {
            uint32_t p = pixels[static_cast<size_t>(y * width + x)];
            size_t at = 54 + static_cast<size_t>(file_row) * stride + static_cast<size_t>(x) * (bits / 8);
            file[at] = p & 0xFF;
            file[at + 1] = (p >> 8) & 0xFF;
            file[at + 2] = (p >> 16) & 0xFF;
            if (bits == 32) file[at + 3] = p >> 24;
        }
    }
    return file;
}

// A small ELF64 image: section 0 null, 1 the names, 2 a data section named `name`.
std::vector<uint8_t> MakeElf(const std::string& name, const std::vector<uint8_t>& data, uint32_t type = 1) {
    std::string names = std::string("\0.shstrtab\0", 11) + name + std::string("\0", 1);
    size_t names_at = 64, data_at = names_at + names.size(), table_at = data_at + data.size();
    std::vector<uint8_t> elf(table_at + 3 * 64, 0);
    std::memcpy(elf.data(), "\x7F" "ELF", 4);
    elf[4] = 2;  // 64-bit
    elf[5] = 1;  // little-endian
    Put64(elf, 0x28, table_at);
    Put16(elf, 0x3A, 64);
    Put16(elf, 0x3C, 3);
    Put16(elf, 0x3E, 1);
    std::memcpy(elf.data() + names_at, names.data(), names.size());
    std::memcpy(elf.data() + data_at, data.data(), data.size());
    size_t h1 = table_at + 64, h2 = table_at + 128;
    Put32(elf, h1, 1);
    Put32(elf, h1 + 4, 3);
    Put64(elf, h1 + 24, names_at);
    Put64(elf, h1 + 32, names.size());
    Put32(elf, h2, 11);
    Put32(elf, h2 + 4, type);
    Put64(elf, h2 + 24, data_at);
    Put64(elf, h2 + 32, data.size());
    return elf;
}
}  // namespace

TEST(Resources, DecodesTwentyFourAndThirtyTwoBitBitmapsTopRowFirst) {
    // 3 pixels a row makes a padded 24-bit row (9 bytes to 12).
    std::vector<uint32_t> pixels = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFF123456, 0xFFFFFFFF, 0xFF000000};
    std::vector<uint8_t> file = MakeBmp(3, 2, 24, false, pixels);
    orbsim::Bitmap bitmap;
    std::string error;
    ASSERT_TRUE(orbsim::DecodeBmp(file.data(), file.size(), bitmap, error)) << error;
    EXPECT_EQ(bitmap.width, 3);
    EXPECT_EQ(bitmap.height, 2);
    EXPECT_EQ(bitmap.pixels, pixels);

    // 32 bits top-down with alpha: kept, premultiplied.
    file = MakeBmp(2, 1, 32, true, {0x80FF0000, 0x00FFFFFF});
    ASSERT_TRUE(orbsim::DecodeBmp(file.data(), file.size(), bitmap, error)) << error;
    EXPECT_EQ(bitmap.pixels[0], 0x80800000u);
    EXPECT_EQ(bitmap.pixels[1], 0x00000000u);

    // 32 bits whose alpha bytes are all zero are opaque, as most such files mean.
    file = MakeBmp(2, 1, 32, false, {0x00336699, 0x00000000});
    ASSERT_TRUE(orbsim::DecodeBmp(file.data(), file.size(), bitmap, error)) << error;
    EXPECT_EQ(bitmap.pixels[0], 0xFF336699u);
}

TEST(Resources, RefusesBitmapsItCannotTakeWithAReason) {
    std::vector<uint8_t> good = MakeBmp(4, 4, 24, false, std::vector<uint32_t>(16, 0xFF808080));
    orbsim::Bitmap bitmap;
    std::string error;
    auto refused = [&](std::vector<uint8_t> file, const char* why) {
        EXPECT_FALSE(orbsim::DecodeBmp(file.data(), file.size(), bitmap, error)) << why;
        EXPECT_EQ(error, why);
    };
    std::vector<uint8_t> f = good;
    f.resize(good.size() - 1);
    refused(f, "BMP pixel data truncated");
    f = good;
    f[0] = 'X';
    refused(f, "not a BMP file");
    f = good;
    Put32(f, 30, 1);  // run-length compressed
    refused(f, "BMP compressed");
    f = good;
    Put16(f, 28, 8);
    refused(f, "BMP not 24 or 32 bits a pixel");
    f = good;
    Put32(f, 18, 100000);
    refused(f, "BMP larger than a gauge layer can be");
    f = good;
    Put32(f, 22, 0x80000000u);
    refused(f, "BMP size invalid");
    f = good;
    Put32(f, 10, 0xFFFFFFF0u);  // pixels said to lie far past the end
    refused(f, "BMP pixel data truncated");
    refused(std::vector<uint8_t>(good.begin(), good.begin() + 30), "BMP too short");
}

TEST(Resources, FindsTheSectionAndItsEntriesInTheModuleFile) {
    std::vector<uint8_t> bmp = MakeBmp(2, 2, 24, false, {0xFF010203, 0xFF040506, 0xFF070809, 0xFF0A0B0C});
    std::vector<uint8_t> blob(12 + 12, 0);
    std::memcpy(blob.data(), "ORBRSRC1", 8);
    Put32(blob, 8, 1);
    Put32(blob, 12, 0x14E0);
    Put32(blob, 16, 24);
    Put32(blob, 20, static_cast<uint32_t>(bmp.size()));
    blob.insert(blob.end(), bmp.begin(), bmp.end());
    std::vector<uint8_t> elf = MakeElf(".orb_rsrc", blob);

    size_t offset = 0, size = 0;
    std::string error;
    ASSERT_TRUE(orbsim::FindElfSection(elf.data(), elf.size(), ".orb_rsrc", offset, size, error)) << error;
    EXPECT_EQ(size, blob.size());
    EXPECT_EQ(std::memcmp(elf.data() + offset, blob.data(), size), 0);
    EXPECT_FALSE(orbsim::FindElfSection(elf.data(), elf.size(), ".orb_rsr", offset, size, error));
    EXPECT_EQ(error, "no such section");

    std::vector<orbsim::ResourceEntry> entries;
    ASSERT_TRUE(orbsim::ParseResourceBlob(blob.data(), blob.size(), entries, error)) << error;
    ASSERT_EQ(entries.size(), 1u);
    orbsim::ResourceSet set;
    set.section = blob;
    set.entries = entries;
    set.present = true;
    orbsim::Bitmap layer = orbsim::LayerBitmap(set, 0x14E0, "LNAV");
    EXPECT_FALSE(layer.fallback);
    EXPECT_EQ(layer.width, 2);
    EXPECT_EQ(layer.pixels[0], 0xFF010203u);

    // Damaged files: an entry past the section's end, a section without bytes, a 32-bit file.
    std::vector<uint8_t> bad_blob = blob;
    Put32(bad_blob, 20, 1000);
    EXPECT_FALSE(orbsim::ParseResourceBlob(bad_blob.data(), bad_blob.size(), entries, error));
    EXPECT_EQ(error, "resource entry lies outside the section");
    std::vector<uint8_t> nobits = MakeElf(".orb_rsrc", blob, 8);
    EXPECT_FALSE(orbsim::FindElfSection(nobits.data(), nobits.size(), ".orb_rsrc", offset, size, error));
    std::vector<uint8_t> elf32 = elf;
    elf32[4] = 1;
    EXPECT_FALSE(orbsim::FindElfSection(elf32.data(), elf32.size(), ".orb_rsrc", offset, size, error));
    std::vector<uint8_t> cut(elf.begin(), elf.end() - 10);  // the section table runs off the end
    EXPECT_FALSE(orbsim::FindElfSection(cut.data(), cut.size(), ".orb_rsrc", offset, size, error));
    EXPECT_EQ(error, "ELF section table truncated");
}

TEST(Resources, GreyStandInsHaveTheGaugeTablesLayerSizes) {
    // The table orbsim carries is generated from the gauge table: every layer of every gauge.
    for (int i = 0; i < kGaugeCount; ++i) {
        auto id = static_cast<GaugeId>(i);
        for (int layer = 0; layer < LayerCount(id); ++layer) {
            LayerSpec shape = LayerOf(id, layer);
            int w = 0, h = 0;
            uint32_t resource = static_cast<uint32_t>(ResourceIdOf(id, layer));
            ASSERT_TRUE(orbsim::FallbackLayerSize(resource, w, h)) << GaugeName(id) << " " << layer;
            EXPECT_EQ(w, shape.width) << GaugeName(id) << " " << layer;
            EXPECT_EQ(h, shape.height) << GaugeName(id) << " " << layer;
        }
    }
    // A missing section: grey of the layer's size; an unknown resource: the small square.
    orbsim::ResourceSet absent;
    absent.absent_reason = "test";
    orbsim::Bitmap grey = orbsim::LayerBitmap(absent, static_cast<uint32_t>(ResourceIdOf(GaugeId::SMITHS_FMS, 1)), "SMITHS_FMS");
    EXPECT_TRUE(grey.fallback);
    EXPECT_EQ(grey.width, 284);
    EXPECT_EQ(grey.height, 233);
    EXPECT_EQ(grey.pixels.front(), orbsim::kFallbackGrey);
    EXPECT_TRUE(absent.warned_absent);
    grey = orbsim::LayerBitmap(absent, 0x7FFF, "?");
    EXPECT_EQ(grey.width, orbsim::kFallbackSide);
}
