// The packer as the build runs it: a good script gives a source that holds
// the section; a bad one stops with the script's name and line and leaves no
// output behind.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace {

const std::string kPacker = std::string(ORB_BINARY_DIR) + "/pack_resources";

struct CommandResult {
    int status;
    std::string output;
};

CommandResult RunCommand(const std::string& command) {
    CommandResult run{-1, {}};
    FILE* p = popen((command + " 2>&1").c_str(), "r");
    if (p == nullptr) return run;
    char buffer[512];
    while (std::fgets(buffer, sizeof(buffer), p)) run.output += buffer;
    run.status = pclose(p);
    return run;
}

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
    CommandResult run = RunCommand(kPacker + " --rc " + dir + "/r.rc --out " + dir + "/out.cpp");
    ASSERT_EQ(run.status, 0) << run.output;
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
        CommandResult run = RunCommand(kPacker + " --rc " + dir + "/r.rc --out " + dir + "/out.cpp");
        EXPECT_NE(run.status, 0) << c.script;
        EXPECT_NE(run.output.find(c.expect), std::string::npos) << run.output;
        EXPECT_FALSE(Exists(dir + "/out.cpp")) << c.script;
    }
    CommandResult help = RunCommand(kPacker + " --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("usage: pack_resources"), std::string::npos);
    EXPECT_NE(RunCommand(kPacker + " --bogus").status, 0);
    std::system(("rm -rf " + dir).c_str());
}
