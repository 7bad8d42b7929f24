// data_text_test.cpp: the shared text tools against plain, obviously right
// versions written here: the line reader on files whose lines straddle its
// chunk, the word-at-a-time column split, and the number reader against the
// C library's strtod.
#include "frame/data_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {
// The lines a reader with a buffer of `capacity` bytes must hand out: split at
// '\n', each cut to capacity - 1 bytes, then one '\r' dropped from its end.
std::vector<std::string> ReferenceLines(const std::string& bytes, size_t capacity) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < bytes.size()) {
        size_t newline = bytes.find('\n', start);
        size_t end = newline == std::string::npos ? bytes.size() : newline;
        std::string line = bytes.substr(start, std::min(end - start, capacity - 1));
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
        start = newline == std::string::npos ? bytes.size() : newline + 1;
    }
    return lines;
}

// The bytes as a file of the test's own, opened by a reader.
std::unique_ptr<LineReader> ReaderOver(const std::string& bytes) {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string path = std::string(ORB_BINARY_DIR) + "/test-sim/" + info->test_suite_name() + "." + info->name() + ".txt";
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    auto reader = std::make_unique<LineReader>();
    EXPECT_TRUE(reader->Open(path.c_str()));
    return reader;
}

std::vector<std::string> ReaderLines(const std::string& bytes, size_t capacity) {
    auto reader = ReaderOver(bytes);
    std::vector<std::string> lines;
    std::vector<char> buffer(capacity);
    size_t length = 0;
    while (reader->Next(buffer.data(), capacity, length)) {
        EXPECT_EQ(buffer[length], '\0');
        lines.emplace_back(buffer.data(), length);
    }
    return lines;
}

std::vector<std::string> ReferenceColumns(const std::string& line, int max_columns) {
    std::vector<std::string> columns;
    size_t i = 0;
    while (static_cast<int>(columns.size()) < max_columns) {
        while (i < line.size() && IsColumnBlank(line[i])) ++i;
        if (i >= line.size()) break;
        size_t start = i;
        while (i < line.size() && !IsColumnBlank(line[i])) ++i;
        columns.push_back(line.substr(start, i - start));
    }
    return columns;
}
}  // namespace

TEST(NavText, LineReaderMatchesPlainSplitAcrossChunkEdges) {
    std::mt19937 random(7);
    const std::string alphabet = "AB9 .\r\r\n\n\n\t";
    for (int round = 0; round < 40; ++round) {
        std::string bytes;
        // Lines of every length, some far longer than the buffer, some whose
        // end falls right on the chunk's edge.
        size_t total = kLineReaderChunk * (1 + round % 3) + random() % 300;
        while (bytes.size() < total) {
            size_t length = round % 4 == 0 ? random() % 5000 : random() % 90;
            for (size_t k = 0; k < length; ++k) bytes += alphabet[random() % (alphabet.size() - 3)];
            bytes += alphabet[alphabet.size() - 1 - random() % 3 / 2];  // mostly '\n', some '\r'
        }
        if (round % 5 == 1) bytes.pop_back();  // no line end at the end of the file
        if (round % 7 == 2) bytes.insert(kLineReaderChunk - 3, "\r\n\r\n");
        size_t capacity = round % 2 == 0 ? 100 : 1699;
        ASSERT_EQ(ReaderLines(bytes, capacity), ReferenceLines(bytes, capacity)) << "round " << round;
    }
    // A line longer than the whole chunk, and a buffer wider than it.
    std::string huge = std::string(kLineReaderChunk * 2 + 5, 'X') + "\nTAIL\n";
    EXPECT_EQ(ReaderLines(huge, 100), ReferenceLines(huge, 100));
    // A buffer wider than the chunk still gets lines no longer than the chunk.
    EXPECT_EQ(ReaderLines(huge, kLineReaderChunk * 3), ReferenceLines(huge, kLineReaderChunk + 1));
    EXPECT_TRUE(ReaderLines("", 10).empty());
    EXPECT_EQ(ReaderLines("\n", 10), std::vector<std::string>{""});
}

// Lines and their first columns as the bulk loader takes them: the one-pass
// short-line scan where it applies, the long way elsewhere.
TEST(NavText, ShortLineScanMatchesPlainSplit) {
    std::mt19937 random(5);
    const std::string alphabet = std::string("    \tAZ09.-;\r\x01\0\xff", 17);
    for (int round = 0; round < 12; ++round) {
        std::string bytes;
        size_t total = kLineReaderChunk * (1 + round % 2) + random() % 500;
        while (bytes.size() < total) {
            // Mostly short lines, some right at the 64-byte edge, a few long ones.
            size_t length = round % 3 == 0 ? random() % 130 : 55 + random() % 15;
            if (random() % 50 == 0) length = 2000;
            for (size_t k = 0; k < length; ++k) bytes += alphabet[random() % alphabet.size()];
            bytes += "\n";
        }
        if (round % 4 == 1) bytes.pop_back();
        const int max_columns = 1 + round % 6;
        std::vector<std::string> reference_lines = ReferenceLines(bytes, 1699);

        auto reader = ReaderOver(bytes);
        size_t index = 0;
        int short_lines = 0;
        for (;;) {
            std::string_view line;
            std::string_view columns[6];
            int n = reader->NextShortLine(line, columns, max_columns);
            if (n < 0) {
                LineReader::Step step = reader->NextView(line, 1699);
                if (step == LineReader::Step::End) break;
                if (step == LineReader::Step::Refill) {
                    reader->Refill();
                    continue;
                }
                n = SplitColumns(line, columns, max_columns);
            } else {
                ++short_lines;
            }
            ASSERT_LT(index, reference_lines.size());
            ASSERT_EQ(std::string(line), reference_lines[index]) << "round " << round << " line " << index;
            std::vector<std::string> got(columns, columns + n);
            ASSERT_EQ(got, ReferenceColumns(reference_lines[index], max_columns)) << "round " << round << " line " << index;
            ++index;
        }
        EXPECT_EQ(index, reference_lines.size());
        EXPECT_GT(short_lines, 100);
    }
}

TEST(NavText, ColumnSplitMatchesPlainSplit) {
    std::mt19937 random(11);
    const std::string alphabet = std::string("  \t\r\nAZ09.-_", 12) + std::string("\0\x01\x1f\x21\x7f\x80\xa0\xff", 8);
    std::string storage(400, ' ');
    for (int round = 0; round < 20000; ++round) {
        size_t length = random() % (round % 10 == 0 ? 300 : 70);
        // The line sits at a random place in a bigger buffer, as in the reader's chunk.
        size_t offset = random() % 64;
        for (size_t k = 0; k < length; ++k) storage[offset + k] = alphabet[random() % alphabet.size()];
        std::string line = storage.substr(offset, length);
        int max_columns = static_cast<int>(random() % 9);
        std::string_view columns[8];
        int n = SplitColumns(std::string_view(storage.data() + offset, length), columns, max_columns);
        std::vector<std::string> got;
        for (int k = 0; k < n; ++k) {
            // Each column is a view into the line itself.
            ASSERT_GE(columns[k].data(), storage.data() + offset);
            got.emplace_back(columns[k]);
        }
        ASSERT_EQ(got, ReferenceColumns(line, max_columns)) << "round " << round << " max " << max_columns;
    }
}

TEST(NavText, NumbersReadAsStrtodReadsThem) {
    std::mt19937 random(3);
    const std::string alphabet = "0123456789012345678901234567890123456789..-+ eEx";
    int checked = 0;
    for (int round = 0; round < 50000; ++round) {
        std::string text;
        size_t length = 1 + random() % 24;
        for (size_t k = 0; k < length; ++k) text += alphabet[random() % alphabet.size()];
        double expected = std::strtod(text.c_str(), nullptr);
        // Hex and infinities are strtod's extras; out of range reads 0 here.
        if (text.find_first_of("xX") != std::string::npos) continue;
        if (!std::isfinite(expected)) expected = 0;
        ASSERT_EQ(ReadNumber(text), expected) << "'" << text << "'";
        ++checked;
    }
    EXPECT_GT(checked, 30000);
    // Well-formed decimals of every length and point position, the common
    // case, by both readers; the block reader's text sits in front of bytes
    // it must not take for digits.
    for (int round = 0; round < 50000; ++round) {
        size_t digits = 1 + random() % 17;
        std::string text = round % 3 == 0 ? "-" : round % 7 == 0 ? "+" : "";
        for (size_t k = 0; k < digits; ++k) text += static_cast<char>('0' + random() % 10);
        if (round % 4 != 0) text.insert(text.size() - random() % (digits + 1), ".");
        double expected = std::strtod(text.c_str(), nullptr);
        ASSERT_EQ(ReadNumber(text), expected) << "'" << text << "'";
        std::string padded = text + (round % 2 == 0 ? "1234567890123456789" : ".5 7.25e3 ---------");
        ASSERT_EQ(ReadNumberReadAhead(std::string_view(padded.data(), text.size())), expected) << "'" << text << "'";
    }
    // And anything else through the block reader, as the general one reads it.
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        size_t length = random() % 20;
        for (size_t k = 0; k < length; ++k) text += alphabet[random() % alphabet.size()];
        std::string padded = text + std::string(kReadAhead, '7');
        ASSERT_EQ(ReadNumberReadAhead(std::string_view(padded.data(), text.size())), ReadNumber(text)) << "'" << text << "'";
    }
    // The coordinates of the data files, exactly as the C library rounds them.
    for (const char* text : {"47.392927", "-122.309444", "0.000001", "-0.5", "179.999999", "9007199254740993.5",
                             "123456789012345678", "1234567890123456789", "00000000000000000000000001.5"})
        EXPECT_EQ(ReadNumber(text), std::strtod(text, nullptr)) << text;
    EXPECT_EQ(ReadNumber("1e400"), 0);
    EXPECT_EQ(ReadNumber("--5"), 0);
    EXPECT_EQ(ReadNumber("1.2.3"), 1.2);
}
