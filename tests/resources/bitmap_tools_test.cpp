// The bitmap tools as the build and ./orb run them. The packer: a good
// script gives a source that holds the section, a bad one stops with the
// script's name and line and leaves no output behind. make_bitmaps: the whole
// set or nothing.
#include "support/run_command.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace {

const std::string kPacker = std::string(ORB_BINARY_DIR) + "/pack_resources";

CommandRun RunTool(const std::string& command) { return RunCommand(command + " 2>&1"); }

void WriteText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

bool Exists(const std::string& path) { return std::ifstream(path).good(); }

// A folder with a resource script and two small bitmaps.
std::string MakeFolder() {
    char dir_template[] = "/tmp/orb_pack_XXXXXX";
    std::string dir = mkdtemp(dir_template);
    std::string bmp(54 + 4, '\0');  // 1 x 1, 24 bits, one padded row
    bmp[0] = 'B';
    bmp[1] = 'M';
    bmp[2] = static_cast<char>(bmp.size());
    bmp[10] = 54;
    bmp[14] = 40;
    bmp[18] = 1;
    bmp[22] = 1;
    bmp[26] = 1;
    bmp[28] = 24;
    bmp[54] = 0x33;
    WriteText(dir + "/a.bmp", bmp);
    WriteText(dir + "/b.bmp", bmp);
    return dir;
}

}  // namespace

TEST(PackResources, WritesTheSectionSourceForAGoodScript) {
    std::string dir = MakeFolder();
    WriteText(dir + "/r.rc", "// test\n4097 BITMAP \"b.bmp\"\n4096 BITMAP \"a.bmp\"\n");
    CommandRun run = RunTool(kPacker + " --rc " + dir + "/r.rc --out " + dir + "/out.cpp");
    ASSERT_EQ(run.code, 0) << run.output;
    // Two entries, one shared file: 12 + 2 x 12 + 58 bytes, and the NUL.
    EXPECT_NE(run.output.find("2 bitmaps (1 distinct)"), std::string::npos) << run.output;
    std::stringstream source;
    source << std::ifstream(dir + "/out.cpp").rdbuf();
    EXPECT_NE(source.str().find("section(\".orb_rsrc\"), used"), std::string::npos);
    EXPECT_NE(source.str().find("[95]"), std::string::npos) << source.str().substr(0, 300);
    EXPECT_NE(source.str().find("\"ORBRSRC1\\002"), std::string::npos) << "magic, then the count";
    EXPECT_FALSE(Exists(dir + "/out.cpp.tmp"));
    std::system(("rm -rf " + dir).c_str());
}

TEST(PackResources, StopsAtABadScriptOrBitmapAndWritesNothing) {
    std::string dir = MakeFolder();
    struct Case {
        const char* script;
        const char* expect;  // in the one-line error
    } cases[] = {
        {"4096 BITMAP \"a.bmp\"\n4096 BITMAP \"b.bmp\"\n", "r.rc:2: resource id listed twice"},
        {"// only a comment\n", "lists no bitmap"},
        {"4096 BITMAP \"missing.bmp\"\n", "r.rc:1: cannot read"},
        {"\n4096 BITMAP \"r.rc\"\n", "r.rc:2:"},  // not a bitmap
    };
    for (const Case& c : cases) {
        WriteText(dir + "/r.rc", c.script);
        CommandRun run = RunTool(kPacker + " --rc " + dir + "/r.rc --out " + dir + "/out.cpp");
        EXPECT_NE(run.code, 0) << c.script;
        EXPECT_NE(run.output.find(c.expect), std::string::npos) << run.output;
        EXPECT_FALSE(Exists(dir + "/out.cpp")) << c.script;
    }
    CommandRun help = RunTool(kPacker + " --help");
    EXPECT_EQ(help.code, 0);
    EXPECT_NE(help.output.find("usage: pack_resources"), std::string::npos);
    EXPECT_NE(RunTool(kPacker + " --bogus").code, 0);
    std::system(("rm -rf " + dir).c_str());
}

TEST(MakeBitmaps, DrawsTheWholeSetOrNothing) {
    // The font library keeps caches until exit, which a leak checker would report.
    const std::string tool = "ASAN_OPTIONS=detect_leaks=0 " + std::string(ORB_BINARY_DIR) + "/make_bitmaps";
    CommandRun missing = RunTool(tool + " --resources /nonexistent/resources");
    EXPECT_NE(missing.code, 0);
    EXPECT_NE(missing.output.find("/nonexistent/resources"), std::string::npos) << missing.output;

    // A fresh run lists the committed set, file for file and size for size
    // (pixels may differ with the fonts of the machine).
    char dir_template[] = "/tmp/orb_bitmaps_XXXXXX";
    std::string dir = mkdtemp(dir_template);
    CommandRun run = RunTool(tool + " --resources " + dir);
    ASSERT_EQ(run.code, 0) << run.output;
    std::stringstream fresh, committed;
    fresh << std::ifstream(dir + "/resources.rc").rdbuf();
    committed << std::ifstream(std::string(ORB_SOURCE_DIR) + "/src/resources/resources.rc").rdbuf();
    EXPECT_EQ(fresh.str(), committed.str()) << "resources.rc is stale: run ./orb bitmaps";
    std::string line;
    std::istringstream lines(committed.str());
    int files = 0;
    while (std::getline(lines, line)) {
        size_t quote = line.find('"');
        if (line.empty() || line[0] == '/' || quote == std::string::npos) continue;
        std::string path = line.substr(quote + 1, line.rfind('"') - quote - 1);
        std::ifstream a(dir + "/" + path, std::ios::binary | std::ios::ate);
        std::ifstream b(std::string(ORB_SOURCE_DIR) + "/src/resources/" + path, std::ios::binary | std::ios::ate);
        ASSERT_TRUE(a.good() && b.good()) << path;
        EXPECT_EQ(a.tellg(), b.tellg()) << path;
        ++files;
    }
    EXPECT_GT(files, 100);
    // A second run replaces the set whole: no working folders stay behind.
    ASSERT_EQ(RunTool(tool + " --resources " + dir).code, 0);
    EXPECT_FALSE(Exists(dir + "/bitmaps.new/lnav_0.bmp"));
    EXPECT_FALSE(Exists(dir + "/bitmaps.old/lnav_0.bmp"));
    EXPECT_FALSE(Exists(dir + "/resources.rc.new"));
    std::system(("rm -rf " + dir).c_str());
}
