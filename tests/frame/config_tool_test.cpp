// `orbnav config` as a user runs it, and the sample files shipped in data/sim.
#include "config_fixture.h"
#include "support/run_command.h"


#include <cstdio>
#include <algorithm>
#include <set>

namespace {
struct ToolRun {
    int status;
    std::string out;
};
ToolRun Orbnav(const std::string& args) {
    CommandRun run = RunCommand(std::string(ORB_BINARY_DIR) + "/orbnav " + args + " 2>&1");
    return {run.code, run.output};
}
bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
}  // namespace

using ConfigTool = ConfigFolderTest;

TEST_F(ConfigTool, ShowsWhereEachValueCameFromAndWhatDidNotTake) {
    WriteOrbCfg("WptChgDist =2\nTransAlt=10000\nTcasVertRange=999\nCruiseMach=0.8\n");
    WriteProfile("Jet", "TransAlt=6000\nHWMD11NDMode=9\n[Lvars]\nL:Knob A=2,MapRange=40\nL:Lone=1\n[EndLvars]\n");
    ToolRun run = Orbnav("config --root " + folder_ + " --profile Jet");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(Has(run.out, "TransAlt = 6000")) << run.out;
    EXPECT_TRUE(Has(run.out, "set by profile Jet.cfg:1"));
    EXPECT_TRUE(Has(run.out, "CruiseMach = 0")) << run.out;
    EXPECT_TRUE(Has(run.out, "orb.cfg:4, changed by the profile's load (was 0.8)"));
    EXPECT_TRUE(Has(run.out, "orb.cfg:1: \"WptChgDist*\" is no key"));
    EXPECT_TRUE(Has(run.out, "orb.cfg:3: TcasVertRange = 999 not taken"));
    EXPECT_TRUE(Has(run.out, "HWMD11NDMode = 1"));
    EXPECT_TRUE(Has(run.out, "Jet.cfg:2, then worked out"));
    EXPECT_TRUE(Has(run.out, "L:Knob A=2,MapRange=40\n"));
    EXPECT_TRUE(Has(run.out, "L:Lone=1 ; no action"));
    // orb.cfg's options come first, then the profile's.
    EXPECT_LT(run.out.find("# orb.cfg"), run.out.find("# profile"));
}

TEST_F(ConfigTool, BadArgumentsAreOneLineErrorsWithExitTwo) {
    ToolRun unknown = Orbnav("config --root " + folder_ + " --verbose");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.out, "orbnav: config: unknown option '--verbose' (orbnav config --help)\n");
    ToolRun missing = Orbnav("config --root " + folder_ + "/nowhere");
    EXPECT_EQ(missing.status, 2);
    EXPECT_TRUE(Has(missing.out, "nowhere")) << missing.out;
    EXPECT_EQ(std::count(missing.out.begin(), missing.out.end(), '\n'), 1);
    EXPECT_EQ(Orbnav("config --root").status, 2);
    ToolRun help = Orbnav("config --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(Has(help.out, "--profile NAME"));
    // A named profile that isn't there: the listing, then an error.
    ToolRun no_profile = Orbnav("config --root " + folder_ + " --profile Ghost");
    EXPECT_EQ(no_profile.status, 1);
    EXPECT_TRUE(Has(no_profile.out, "Ghost.cfg not found: defaults"));
}

// The shipped orb.cfg and TwinJet.cfg hold every key of their tables, spelt
// right, so users start from a complete file.
TEST_F(ConfigTool, SampleFilesHoldEveryKeyAndNothingUnknown) {
    static std::set<std::string>* seen;
    static std::vector<std::string>* unknown;
    std::set<std::string> seen_keys;
    std::vector<std::string> unknown_keys;
    seen = &seen_keys;
    unknown = &unknown_keys;
    g_config_observer = [](const ConfigNoteInfo& info) {
        if (info.note == ConfigNote::Taken || info.note == ConfigNote::Refused)
            seen->insert(std::string(info.file) + ":" + info.entry->key);
        if (info.note == ConfigNote::UnknownKey) unknown->push_back(std::string(info.file) + ":" + info.key);
    };
    CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), ORB_SOURCE_DIR "/data/sim");
    LoadGlobalConfig();
    LoadAircraftProfile("TwinJet");
    EXPECT_TRUE(unknown_keys.empty()) << unknown_keys.front();
    for (const OptionEntry& e : GlobalOptionTable()) EXPECT_TRUE(seen_keys.count(std::string("orb.cfg:") + e.key)) << e.key;
    for (const OptionEntry& e : ProfileOptionTable())
        EXPECT_TRUE(seen_keys.count(std::string("TwinJet.cfg:") + e.key)) << e.key;
    EXPECT_EQ(g_config.TcasVertRange, 140);
    EXPECT_EQ(g_config.PauseAtDistFromDestOn, 0);  // the sample must not pause the demo
    EXPECT_GT(g_lvars.count, 0);
    EXPECT_EQ(g_profile.ClimbIas, 280);  // the IAS line after the TAS line wins
}
