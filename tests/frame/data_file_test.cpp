// data_file_test.cpp: the one reader of data files against what users and
// other programs put where a data file should be: folders, devices, pipes,
// files we may not read, files that grow or shrink while read. And the
// fgets-like pieces the configuration files are read in, against fgets.
#include "frame/data_file.h"
#include "frame/data_text.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <share.h>
#include <string>
#include <vector>

namespace {
// A folder of the test's own under the build tree.
std::filesystem::path TestFolder() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    auto folder = std::filesystem::path(ORB_BINARY_DIR) / "test-sim" /
                  (std::string(info->test_suite_name()) + "." + info->name());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// Everything the file hands out, read in pieces of `step` bytes.
std::string ReadAll(DataFile& file, size_t step) {
    std::string all;
    std::vector<char> buffer(step);
    while (size_t got = file.Read(buffer.data(), buffer.size())) all.append(buffer.data(), got);
    return all;
}
}  // namespace

TEST(DataFile, ReadsRegularFilesAndRefusesEverythingElse) {
    auto folder = TestFolder();
    // A plain file: every byte, NULs included, in reads of any size, then 0 for ever.
    std::string bytes(200000, '\0');
    std::mt19937 random(3);
    for (char& c : bytes) c = static_cast<char>(random());
    WriteBytes(folder / "plain.txt", bytes);
    DataFile file;
    ASSERT_TRUE(file.Open((folder / "plain.txt").c_str()));
    EXPECT_EQ(file.size, bytes.size());
    EXPECT_EQ(ReadAll(file, 65536), bytes);
    char byte;
    EXPECT_EQ(file.Read(&byte, 1), 0u);
    ASSERT_TRUE(file.Open((folder / "plain.txt").c_str()));  // a second open starts again
    EXPECT_EQ(ReadAll(file, 7), bytes);
    WriteBytes(folder / "empty.txt", "");
    ASSERT_TRUE(file.Open((folder / "empty.txt").c_str()));
    EXPECT_EQ(ReadAll(file, 10), "");
    // Case is no matter, as on Windows.
    EXPECT_TRUE(file.Open((folder / "PLAIN.TXT").c_str()));

    // None of these opens; a pipe without a writer and the endless devices
    // must not keep the open or a read waiting.
    std::filesystem::create_directories(folder / "folder.txt");
    std::filesystem::create_symlink("/dev/zero", folder / "zero.txt");
    std::filesystem::create_symlink("/dev/urandom", folder / "random.txt");
    std::filesystem::create_symlink("/dev/null", folder / "null.txt");
    std::filesystem::create_symlink(folder / "nowhere", folder / "dangling.txt");
    ASSERT_EQ(mkfifo((folder / "pipe.txt").c_str(), 0644), 0);
    for (const char* name : {"missing.txt", "folder.txt", "zero.txt", "random.txt", "null.txt", "dangling.txt", "pipe.txt"}) {
        std::string path = (folder / name).string();
        EXPECT_FALSE(file.Open(path.c_str())) << name;
        EXPECT_FALSE(file.IsOpen()) << name;
        EXPECT_EQ(file.Read(&byte, 1), 0u) << name;
        EXPECT_EQ(DataFileBytes(path.c_str()), 0u) << name;
    }
    EXPECT_FALSE(file.Open(nullptr));
    EXPECT_FALSE(file.Open(""));
    EXPECT_EQ(DataFileBytes((folder / "plain.txt").c_str()), bytes.size());

    // Files written by the module: a pipe nobody reads makes the open fail
    // at once instead of waiting, and a folder opens for neither side.
    EXPECT_EQ(_fsopen((folder / "pipe.txt").c_str(), "w", _SH_DENYNO), nullptr);
    EXPECT_EQ(_fsopen((folder / "folder.txt").c_str(), "r", _SH_DENYNO), nullptr);
    EXPECT_EQ(_fsopen((folder / "folder.txt").c_str(), "w", _SH_DENYNO), nullptr);
    FILE* written = _fsopen((folder / "new.txt").c_str(), "w", _SH_DENYNO);
    ASSERT_NE(written, nullptr);
    std::fputs("line\n", written);
    std::fclose(written);
    ASSERT_TRUE(file.Open((folder / "new.txt").c_str()));
    EXPECT_EQ(ReadAll(file, 100), "line\n");
}

TEST(DataFile, ReadsAFileAsItWasAtTheOpen) {
    auto folder = TestFolder();
    std::string first(100000, 'a');
    for (size_t i = 99; i < first.size(); i += 100) first[i] = '\n';
    auto path = folder / "changing.txt";

    // Grows after the open: what was there is read, what came later isn't.
    WriteBytes(path, first);
    DataFile file;
    ASSERT_TRUE(file.Open(path.c_str()));
    std::ofstream(path, std::ios::binary | std::ios::app) << std::string(500000, 'b');
    EXPECT_EQ(ReadAll(file, 4096), first);

    // Grows between reads of the line reader: the lines of the file as opened.
    WriteBytes(path, first);
    auto reader = std::make_unique<LineReader>();
    ASSERT_TRUE(reader->Open(path.c_str()));
    char line[200];
    size_t length = 0;
    ASSERT_TRUE(reader->Next(line, sizeof line, length));
    std::ofstream(path, std::ios::binary | std::ios::app) << std::string(300000, 'c') + "\n";
    int lines = 1;
    while (reader->Next(line, sizeof line, length)) {
        ASSERT_EQ(std::string(line, length), std::string(99, 'a'));
        ++lines;
    }
    EXPECT_EQ(lines, 1000);

    // Shrinks after the open: the read ends where the file now ends, and
    // hands out no bytes that were never there.
    WriteBytes(path, first);
    ASSERT_TRUE(file.Open(path.c_str()));
    std::filesystem::resize_file(path, 250);
    EXPECT_EQ(ReadAll(file, 4096), first.substr(0, 250));

    // Shrinks to nothing between the line reader's chunks.
    std::string big(300000, 'd');
    for (size_t i = 49; i < big.size(); i += 50) big[i] = '\n';
    WriteBytes(path, big);
    ASSERT_TRUE(reader->Open(path.c_str()));
    lines = 0;
    std::string last;
    while (reader->Next(line, sizeof line, length)) {
        if (lines == 10) std::filesystem::resize_file(path, 0);
        ASSERT_TRUE(last.empty() || last == std::string(49, 'd')) << "a cut line before line " << lines;
        last.assign(line, length);
        ++lines;
    }
    // What was read ahead before the cut comes out, the line cut at the
    // chunk's end last; then the file ends.
    EXPECT_EQ(static_cast<size_t>(lines), kLineReaderChunk / 50 + 1);
    EXPECT_EQ(last, std::string(kLineReaderChunk % 50, 'd'));
}

TEST(DataFile, RefusesAFileItMayNotRead) {
    if (geteuid() == 0) GTEST_SKIP() << "running as root, where no file can be made unreadable";
    auto folder = TestFolder();
    WriteBytes(folder / "locked.txt", "KSEA SEATTLE 433 47.45 -122.31\n");
    ASSERT_EQ(chmod((folder / "locked.txt").c_str(), 0), 0);
    DataFile file;
    EXPECT_FALSE(file.Open((folder / "locked.txt").c_str()));
    EXPECT_EQ(DataFileBytes((folder / "locked.txt").c_str()), 0u);
    chmod((folder / "locked.txt").c_str(), 0644);
}

// The configuration files are read in pieces as fgets cuts them: the same
// pieces, line ends and NULs included, for any bytes and buffer size.
TEST(DataFile, PiecesMatchFgets) {
    auto folder = TestFolder();
    auto path = folder / "pieces.cfg";
    std::mt19937 random(11);
    const std::string alphabet = std::string("Key=Value ;[]\r\n\n\0\t", 18);
    for (int round = 0; round < 30; ++round) {
        std::string bytes;
        size_t total = round == 0 ? 0 : (round % 5 == 0 ? kLineReaderChunk * 2 + 77 : random() % 5000);
        while (bytes.size() < total) {
            size_t length = random() % (round % 3 == 0 ? 900 : 60);
            for (size_t k = 0; k < length; ++k) bytes += alphabet[random() % alphabet.size()];
            bytes += '\n';
        }
        if (round % 4 == 1 && !bytes.empty()) bytes.pop_back();
        WriteBytes(path, bytes);
        const size_t capacity = round % 2 == 0 ? 299 : 2 + random() % 40;

        std::vector<std::string> expected;
        FILE* f = std::fopen(path.c_str(), "rb");
        ASSERT_NE(f, nullptr);
        std::vector<char> buffer(capacity);
        long before = 0;
        while (std::fgets(buffer.data(), static_cast<int>(capacity), f) != nullptr) {
            long after = std::ftell(f);
            expected.emplace_back(buffer.data(), static_cast<size_t>(after - before));
            before = after;
        }
        std::fclose(f);

        auto reader = std::make_unique<LineReader>();
        ASSERT_TRUE(reader->Open(path.c_str()));
        std::vector<std::string> got;
        size_t length = 0;
        while (reader->NextPiece(buffer.data(), capacity, length)) {
            ASSERT_EQ(buffer[length], '\0');
            got.emplace_back(buffer.data(), length);
        }
        ASSERT_EQ(got, expected) << "round " << round << ", capacity " << capacity;
    }
}
