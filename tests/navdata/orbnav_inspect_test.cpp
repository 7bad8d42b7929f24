// orbnav's inspection commands (stats, find, airport, airway) as a new user
// meets them: where the simulator folder is looked for, a folder without
// data, idents typed in lower case. Read-only on the shipped data/sim.
#include "support/run_command.h"

#include <gtest/gtest.h>


#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {
struct ToolRun {
    int code = -1;
    std::string out;  // stdout and stderr
};

// Runs orbnav with `args` in the folder `cwd`.
ToolRun Orbnav(const std::string& args, const fs::path& cwd = ORB_SOURCE_DIR) {
    CommandRun run = RunCommand("cd '" + cwd.string() + "' && " + ORB_BINARY_DIR + "/orbnav " + args + " 2>&1");
    return {run.code, run.output};
}

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
long Lines(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

const std::string kShipped = std::string(ORB_SOURCE_DIR) + "/data/sim";

class OrbnavInspect : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        scratch_ = fs::path(ORB_BINARY_DIR) / "test-orbnav" / info->name();
        fs::remove_all(scratch_);
        fs::create_directories(scratch_);
    }
    fs::path scratch_;
};
}  // namespace

TEST_F(OrbnavInspect, TheDefaultRootIsTakenFromTheCurrentFolder) {
    // From the project's folder the default finds the shipped data.
    ToolRun here = Orbnav("stats");
    ASSERT_EQ(here.code, 0) << here.out;
    EXPECT_TRUE(Has(here.out, "airports           553 of")) << here.out;
    // From anywhere else it names the folder it looked in and the way out.
    ToolRun elsewhere = Orbnav("stats", scratch_);
    EXPECT_EQ(elsewhere.code, 2);
    EXPECT_EQ(elsewhere.out, "orbnav: stats: data/sim: no such simulator folder in the current folder " +
                                 fs::canonical(scratch_).string() + " (give --root DIR)\n");
    for (const char* command : {"find SEA", "airport KSEA", "airway J70 --from SEA", "config"}) {
        ToolRun r = Orbnav(command, scratch_);
        EXPECT_EQ(r.code, 2) << command;
        EXPECT_TRUE(Has(r.out, "in the current folder")) << command << ": " << r.out;
        EXPECT_EQ(Lines(r.out), 1) << r.out;
    }
    // And every command's help says so.
    for (const char* command : {"stats", "find", "airport", "airway", "config"}) {
        ToolRun help = Orbnav(std::string(command) + " --help");
        EXPECT_EQ(help.code, 0) << command;
        EXPECT_TRUE(Has(help.out, "relative to the current folder")) << command << ": " << help.out;
    }
    EXPECT_TRUE(Has(Orbnav("--help").out, "relative to the current folder"));
}

TEST_F(OrbnavInspect, AFolderWithoutDataIsAnError) {
    fs::create_directories(scratch_ / "sim" / "orb");
    std::string root = (scratch_ / "sim").string();
    for (const char* command : {"stats", "find SEA", "airport KSEA", "airway J70 --from SEA"}) {
        ToolRun r = Orbnav(std::string(command) + " --root " + root);
        EXPECT_EQ(r.code, 2) << command;
        EXPECT_TRUE(Has(r.out, root + "/orb/navdata: no navigation data")) << command << ": " << r.out;
        EXPECT_EQ(Lines(r.out), 1) << r.out;
    }
    // One file is data: the others are listed as missing. The module finds
    // the folder whatever the case of its letters, and so does orbnav.
    fs::create_directories(scratch_ / "sim" / "Orb" / "NavData");
    fs::remove_all(scratch_ / "sim" / "orb");
    fs::copy_file(kShipped + "/orb/navdata/navs.txt", scratch_ / "sim" / "Orb" / "NavData" / "navs.txt");
    ToolRun some = Orbnav("stats --root " + root);
    EXPECT_EQ(some.code, 0) << some.out;
    EXPECT_TRUE(Has(some.out, "navaids             73 of")) << some.out;
    EXPECT_TRUE(Has(some.out, "missing        apts.txt ints.txt awys.txt\n")) << some.out;
    ToolRun full = Orbnav("stats --root " + kShipped);
    EXPECT_FALSE(Has(full.out, "missing")) << full.out;
}

TEST_F(OrbnavInspect, IdentsAreTakenInCapitalsAsTheKeypadsTypeThem) {
    struct Pair {
        std::string lower, upper;
    } pairs[] = {
        {"find sea --from 47,-122", "find SEA --from 47,-122"},
        {"airport ksea", "airport KSEA"},
        {"airway j70 --from sea", "airway J70 --from SEA"},
        {"airway J70 --from Normy", "airway J70 --from NORMY"},
    };
    for (const Pair& p : pairs) {
        ToolRun lower = Orbnav(p.lower + " --root " + kShipped);
        ToolRun upper = Orbnav(p.upper + " --root " + kShipped);
        EXPECT_EQ(upper.code, 0) << p.upper << ": " << upper.out;
        EXPECT_EQ(lower.code, 0) << p.lower << ": " << lower.out;
        EXPECT_EQ(lower.out, upper.out) << p.lower;
    }
    ToolRun sea = Orbnav("find sea --root " + kShipped);
    EXPECT_TRUE(Has(sea.out, "  1 SEA      V")) << sea.out;
    ToolRun absent = Orbnav("find nosuch --root " + kShipped);
    EXPECT_EQ(absent.code, 1);
    EXPECT_EQ(absent.out, "NOSUCH: NOT IN DATABASE\n");
}
