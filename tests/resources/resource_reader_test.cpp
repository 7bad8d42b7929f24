// The readers a host uses on the module's bitmaps, and the resource script
// parser the packer uses: right answers on good input, refusals with a reason
// on bad input, and no read past the bytes on hostile input.
#include "resource_fuzz_entry.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace {

using resource_reader::Span;

void Put16(std::vector<uint8_t>& b, size_t at, uint32_t v) {
    b[at] = static_cast<uint8_t>(v);
    b[at + 1] = static_cast<uint8_t>(v >> 8);
}
void Put32(std::vector<uint8_t>& b, size_t at, uint32_t v) {
    Put16(b, at, v & 0xFFFF);
    Put16(b, at + 2, v >> 16);
}

// A BMP with pixel (x, y) = 0xRRGGBB of `colour(x, y)`, stored bottom-up
// unless `top_down`.
template <typename F>
std::vector<uint8_t> MakeBmp(int width, int height, int bpp, bool top_down, F colour) {
    const uint32_t stride = (static_cast<uint32_t>(width) * bpp / 8 + 3) & ~3u;
    std::vector<uint8_t> b(54 + stride * height, 0);
    b[0] = 'B';
    b[1] = 'M';
    Put32(b, 2, static_cast<uint32_t>(b.size()));
    Put32(b, 10, 54);
    Put32(b, 14, 40);
    Put32(b, 18, static_cast<uint32_t>(width));
    Put32(b, 22, static_cast<uint32_t>(top_down ? -height : height));
    Put16(b, 26, 1);
    Put16(b, 28, static_cast<uint32_t>(bpp));
    for (int y = 0; y < height; ++y) {
        int stored = top_down ? y : height - 1 - y;
        for (int x = 0; x < width; ++x) {
            uint32_t c = colour(x, y);
            uint8_t* p = &b[54 + stored * stride + x * (bpp / 8)];
            p[0] = static_cast<uint8_t>(c);
            p[1] = static_cast<uint8_t>(c >> 8);
            p[2] = static_cast<uint8_t>(c >> 16);
            if (bpp == 32) p[3] = 0x80;
        }
    }
    return b;
}

uint32_t Pattern(int x, int y) { return static_cast<uint32_t>(0x10000 * (x + 1) + 0x100 * (y + 1) + (x ^ y)); }

// A section of the blob layout holding the given (id, bytes) pairs.
std::vector<uint8_t> MakeBlob(const std::vector<std::pair<uint32_t, std::vector<uint8_t>>>& items) {
    std::vector<uint8_t> b(12 + 12 * items.size());
    std::memcpy(b.data(), kResourceMagic, 8);
    Put32(b, 8, static_cast<uint32_t>(items.size()));
    for (size_t i = 0; i < items.size(); ++i) {
        Put32(b, 12 + 12 * i, items[i].first);
        Put32(b, 16 + 12 * i, static_cast<uint32_t>(b.size()));
        Put32(b, 20 + 12 * i, static_cast<uint32_t>(items[i].second.size()));
        b.insert(b.end(), items[i].second.begin(), items[i].second.end());
    }
    return b;
}

// A minimal 64-bit ELF file: null section, the named section, the name table.
std::vector<uint8_t> MakeElf(const std::vector<uint8_t>& content, const char* name) {
    std::string names = std::string("\0", 1) + name + '\0' + ".shstrtab" + '\0';
    std::vector<uint8_t> f(64, 0);
    std::memcpy(f.data(), "\x7f" "ELF", 4);
    f[4] = 2;  // 64-bit
    f[5] = 1;  // little-endian
    size_t content_at = f.size();
    f.insert(f.end(), content.begin(), content.end());
    size_t names_at = f.size();
    f.insert(f.end(), names.begin(), names.end());
    size_t headers_at = f.size();
    f.resize(headers_at + 3 * 64, 0);
    auto section = [&](int i, uint32_t name_offset, uint32_t type, uint64_t offset, uint64_t size) {
        size_t h = headers_at + i * 64;
        Put32(f, h, name_offset);
        Put32(f, h + 4, type);
        Put32(f, h + 0x18, static_cast<uint32_t>(offset));
        Put32(f, h + 0x20, static_cast<uint32_t>(size));
    };
    section(1, 1, 1, content_at, content.size());
    section(2, static_cast<uint32_t>(std::strlen(name) + 2), 3, names_at, names.size());
    Put32(f, 0x28, static_cast<uint32_t>(headers_at));
    Put16(f, 0x3A, 64);
    Put16(f, 0x3C, 3);
    Put16(f, 0x3E, 2);
    return f;
}

Span SpanOf(const std::vector<uint8_t>& v) { return {v.data(), v.size()}; }

}  // namespace

TEST(ResourceReader, DecodesBottomUpTopDownAndPaddedRows) {
    // Width 3 at 24 bits pads each row from 9 to 12 bytes.
    for (bool top_down : {false, true}) {
        for (int bpp : {24, 32}) {
            auto file = MakeBmp(3, 2, bpp, top_down, Pattern);
            resource_reader::Bitmap bitmap;
            std::string error;
            ASSERT_TRUE(resource_reader::DecodeBmp(SpanOf(file), bitmap, error)) << error;
            EXPECT_EQ(bitmap.width, 3);
            EXPECT_EQ(bitmap.height, 2);
            EXPECT_EQ(bitmap.bits_per_pixel, bpp);
            for (int y = 0; y < 2; ++y)
                for (int x = 0; x < 3; ++x)
                    EXPECT_EQ(bitmap.pixels[y * 3 + x] & 0xFFFFFF, Pattern(x, y))
                        << "x " << x << " y " << y << (top_down ? " top-down " : " bottom-up ") << bpp;
        }
    }
}

TEST(ResourceReader, RefusesBitmapsItCannotShowWithAReason) {
    auto good = MakeBmp(4, 4, 24, false, Pattern);
    struct Case {
        const char* what;
        size_t at;
        uint32_t value;
        int bytes;
    } cases[] = {
        {"8 bits a pixel", 28, 8, 2},     {"RLE compression", 30, 1, 4},  {"zero width", 18, 0, 4},
        {"huge height", 22, 100000, 4},   {"pixels past the end", 10, 60, 4}, {"two planes", 26, 2, 2},
        {"short info header", 14, 12, 4},
    };
    for (const Case& c : cases) {
        auto bad = good;
        if (c.bytes == 2) Put16(bad, c.at, c.value);
        else Put32(bad, c.at, c.value);
        resource_reader::Bitmap bitmap;
        std::string error;
        EXPECT_FALSE(resource_reader::DecodeBmp(SpanOf(bad), bitmap, error)) << c.what;
        EXPECT_FALSE(error.empty()) << c.what;
        EXPECT_TRUE(bitmap.pixels.empty()) << c.what;
    }
    resource_reader::Bitmap bitmap;
    std::string error;
    auto truncated = good;
    truncated.resize(truncated.size() - 1);
    EXPECT_FALSE(resource_reader::DecodeBmp(SpanOf(truncated), bitmap, error));
    EXPECT_FALSE(resource_reader::DecodeBmp(Span{good.data(), 20}, bitmap, error));
}

TEST(ResourceReader, FindsTheSectionAndItsEntriesInAnElfFile) {
    auto a = MakeBmp(2, 2, 24, false, Pattern);
    auto b = MakeBmp(5, 1, 24, true, Pattern);
    auto blob = MakeBlob({{0x1000, a}, {0x1021, b}});
    auto elf = MakeElf(blob, kResourceSectionName);

    Span section;
    std::string error;
    ASSERT_TRUE(resource_reader::FindElfSection(SpanOf(elf), kResourceSectionName, section, error)) << error;
    ASSERT_EQ(section.size, blob.size());
    EXPECT_EQ(std::memcmp(section.data, blob.data(), blob.size()), 0);

    std::vector<ResourceBlobEntry> entries;
    ASSERT_TRUE(resource_reader::ParseResourceBlob(section, entries, error)) << error;
    ASSERT_EQ(entries.size(), 2u);
    Span found = resource_reader::FindResource(section, entries, 0x1021);
    ASSERT_EQ(found.size, b.size());
    EXPECT_EQ(std::memcmp(found.data, b.data(), b.size()), 0);
    EXPECT_EQ(resource_reader::FindResource(section, entries, 0x1022).size, 0u);

    // A section of another name, or a name that only begins like ours, is not it.
    auto other = MakeElf(blob, ".orb_rsrc2");
    EXPECT_FALSE(resource_reader::FindElfSection(SpanOf(other), kResourceSectionName, section, error));
}

TEST(ResourceReader, RefusesSectionsAndElfFilesThatPointOutside) {
    auto bmp = MakeBmp(2, 2, 24, false, Pattern);
    auto blob = MakeBlob({{0x1000, bmp}});
    std::vector<ResourceBlobEntry> entries;
    std::string error;

    auto bad = blob;
    Put32(bad, 20, static_cast<uint32_t>(bmp.size() + 1));  // one byte too long
    EXPECT_FALSE(resource_reader::ParseResourceBlob(SpanOf(bad), entries, error));
    EXPECT_TRUE(entries.empty());
    bad = blob;
    Put32(bad, 16, 0xFFFFFFF0u);  // offset wraps if added carelessly
    EXPECT_FALSE(resource_reader::ParseResourceBlob(SpanOf(bad), entries, error));
    bad = blob;
    Put32(bad, 8, 0x10000000u);  // a count no table could hold
    EXPECT_FALSE(resource_reader::ParseResourceBlob(SpanOf(bad), entries, error));
    bad = blob;
    bad[0] = 'X';
    EXPECT_FALSE(resource_reader::ParseResourceBlob(SpanOf(bad), entries, error));

    auto elf = MakeElf(blob, kResourceSectionName);
    Span section;
    auto broken = elf;
    Put32(broken, 0x28, static_cast<uint32_t>(elf.size() - 10));  // headers past the end
    EXPECT_FALSE(resource_reader::FindElfSection(SpanOf(broken), kResourceSectionName, section, error));
    broken = elf;
    Put16(broken, 0x3E, 7);  // name table index past the headers
    EXPECT_FALSE(resource_reader::FindElfSection(SpanOf(broken), kResourceSectionName, section, error));
    broken = elf;
    size_t headers_at = resource_reader::Le32(elf.data() + 0x28);
    Put32(broken, headers_at + 64 + 0x20, 0x7FFFFFFF);  // section size past the end
    EXPECT_FALSE(resource_reader::FindElfSection(SpanOf(broken), kResourceSectionName, section, error));
    broken = elf;
    broken[5] = 2;  // big-endian
    EXPECT_FALSE(resource_reader::FindElfSection(SpanOf(broken), kResourceSectionName, section, error));
}

TEST(ResourceReader, SurvivesRandomDamageToEveryInput) {
    auto bmp = MakeBmp(7, 3, 24, false, Pattern);
    auto blob = MakeBlob({{0x1000, bmp}, {0x1001, MakeBmp(1, 1, 32, true, Pattern)}});
    auto elf = MakeElf(blob, kResourceSectionName);
    std::string script = "// x\n4096 BITMAP \"bitmaps/a_0.bmp\"\n4097 BITMAP \"bitmaps/a_1.bmp\"\n";
    std::vector<std::vector<uint8_t>> seeds = {elf, blob, bmp, std::vector<uint8_t>(script.begin(), script.end())};
    std::mt19937 random(12345);
    for (size_t kind = 0; kind < seeds.size(); ++kind) {
        for (int round = 0; round < 400; ++round) {
            std::vector<uint8_t> input = seeds[kind];
            int flips = 1 + static_cast<int>(random() % 8);
            for (int i = 0; i < flips; ++i) input[random() % input.size()] = static_cast<uint8_t>(random());
            if (round % 5 == 0) input.resize(random() % input.size());
            input.insert(input.begin(), static_cast<uint8_t>(kind));
            EXPECT_EQ(ResourceFuzzEntry(input.data(), input.size()), 0);
        }
    }
    EXPECT_EQ(ResourceFuzzEntry(nullptr, 0), 0);
}

TEST(ResourceScript, ReadsItsLinesAndNamesTheBadOne) {
    std::vector<resource_script::Entry> entries;
    std::string error;
    ASSERT_TRUE(resource_script::Parse("// header\n\n4096 BITMAP \"bitmaps/a_0.bmp\"\r\n"
                                       "  0x1001\tBITMAP  \"bitmaps/a_1.bmp\" // lamp\n",
                                       entries, error))
        << error;
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].resource_id, 4096u);
    EXPECT_EQ(entries[0].path, "bitmaps/a_0.bmp");
    EXPECT_EQ(entries[0].line, 3);
    EXPECT_EQ(entries[1].resource_id, 0x1001u);
    EXPECT_EQ(entries[1].line, 4);

    const std::pair<const char*, const char*> bad[] = {
        {"4096 BITMAP \"a.bmp\"\n4096 BITMAP \"b.bmp\"\n", "2:"},  // the same id twice
        {"x1 BITMAP \"a.bmp\"\n", "1:"},
        {"0 BITMAP \"a.bmp\"\n", "1:"},
        {"70000 BITMAP \"a.bmp\"\n", "1:"},
        {"\n\n12 ICON \"a.bmp\"\n", "3:"},
        {"12 BITMAP a.bmp\n", "1:"},
        {"12 BITMAP \"a.bmp\n", "1:"},
        {"12 BITMAP \"..\\a.bmp\"\n", "1:"},
        {"12 BITMAP \"/abs/a.bmp\"\n", "1:"},
        {"12 BITMAP \"a.bmp\" extra\n", "1:"},
    };
    for (auto [text, where] : bad) {
        EXPECT_FALSE(resource_script::Parse(text, entries, error)) << text;
        EXPECT_EQ(error.rfind(where, 0), 0u) << text << " gave " << error;
        EXPECT_TRUE(entries.empty());
    }
}

TEST(ResourceScript, WhatItWritesReadsBackTheSame) {
    std::vector<resource_script::Entry> written = {{4096, "bitmaps/x_0.bmp", 0}, {4127, "bitmaps/x_31.bmp", 0}};
    std::string text = resource_script::Write(written, "first line\nsecond line");
    EXPECT_EQ(text.rfind("// first line\n// second line\n", 0), 0u);
    std::vector<resource_script::Entry> read;
    std::string error;
    ASSERT_TRUE(resource_script::Parse(text, read, error)) << error;
    ASSERT_EQ(read.size(), written.size());
    for (size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i].resource_id, written[i].resource_id);
        EXPECT_EQ(read[i].path, written[i].path);
    }
}
