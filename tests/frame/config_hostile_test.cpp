// The fuzz entry of the configuration reader over hostile inputs, so that
// every build runs what the fuzzer runs.
#define ORB_NO_FUZZ_MAIN
#include "fuzz/config_reader.cpp"

#include "frame/config_fixture.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {
int Feed(const std::string& bytes) {
    return config_fuzz::ReadConfigBytes(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}
}  // namespace

TEST(ConfigHostileInput, ReaderSurvivesAndKeepsItsBounds) {
    const std::string nul_inside("TransAlt=5\0000000\nMinMapRange=3\n", 30);
    std::string inputs[] = {
        "",
        std::string(100000, '='),
        std::string(5000, '\n'),
        std::string(3000, '*') + "=" + std::string(3000, ' '),
        "[Lvars]\n" + std::string(2000, ',') + "\n" + std::string(600, '=') + ",=,=\n",
        "[Lvars]\n[Lvars]\n=\n,\n[EndLvars]\n[EndLvars]\n",
        "TcasVertRange=2147483647\nEngThrust=-2147483648\nCostIndex=2147483647\nClimbIasMax=1e308\n",
        "CostIndex=200\nClimbIasMin=-1e300\nClimbIasMax=1e300\n",
        nul_inside,
    };
    for (const std::string& input : inputs) EXPECT_EQ(Feed(input), 0);
    // The last input: a NUL ends what the reader sees of its line; the next line still counts.
    EXPECT_EQ(g_config.TransAlt, 5);
    EXPECT_DOUBLE_EQ(g_config.MinMapRange, 3);
    std::string lvars = "[Lvars]\n";
    for (int i = 0; i < 1000; ++i) lvars += "L:" + std::string(300, 'n') + "=1,MapRange=2\n";
    Feed(lvars);
    EXPECT_EQ(g_lvars.count, kLvarRowLimit);
    EXPECT_EQ(std::string(g_lvars.rows[0].name.data()).size(), static_cast<size_t>(kLvarNameSize - 1));
}

// What stands where orb.cfg and the profile should be may be no file at all:
// start-up reads nothing from it and every option keeps the value it has
// without a file.
namespace {
std::vector<std::string> EveryOptionShown() {
    std::vector<std::string> shown;
    for (auto table : {GlobalOptionTable(), ProfileOptionTable()})
        for (const OptionEntry& entry : table) {
            char text[kConfigTextSize];
            FormatOptionValue(entry, text, sizeof text);
            shown.push_back(std::string(entry.key) + "=" + text);
        }
    return shown;
}

std::vector<ConfigNote>* g_file_notes = nullptr;
}  // namespace

class ConfigNoFile : public ConfigFolderTest {
protected:
    // orb.cfg and Test.cfg as made by `make`, then start-up's two reads.
    std::vector<ConfigNote> LoadWith(const std::function<void(const std::string&)>& make) {
        for (const char* name : {"orb/orb.cfg", "orb/Aircraft/Test.cfg"}) {
            std::filesystem::remove_all(folder_ + "/" + name);
            if (make) make(folder_ + "/" + name);
        }
        g_config = {};
        g_profile = {};
        g_lvars = {};
        std::vector<ConfigNote> notes;
        g_file_notes = &notes;
        g_config_observer = [](const ConfigNoteInfo& info) {
            if (info.line == 0) g_file_notes->push_back(info.note);
        };
        LoadGlobalConfig();
        LoadAircraftProfile("Test");
        g_config_observer = nullptr;
        return notes;
    }
};

TEST_F(ConfigNoFile, FoldersDevicesAndPipesLeaveTheDefaults) {
    LoadWith(nullptr);
    const std::vector<std::string> defaults = EveryOptionShown();
    // A sample file changes them, so that a read of it would show.
    LoadWith([](const std::string& path) { std::ofstream(path) << "TransAlt=4321\nClimbIas=277\nWeightUnit=kgs\n"; });
    ASSERT_NE(EveryOptionShown(), defaults);

    const std::vector<std::pair<const char*, std::function<void(const std::string&)>>> cases = {
        {"a folder", [](const std::string& p) { std::filesystem::create_directories(p + "/TransAlt=4321"); }},
        {"the zero device", [](const std::string& p) { std::filesystem::create_symlink("/dev/zero", p); }},
        {"the random device", [](const std::string& p) { std::filesystem::create_symlink("/dev/urandom", p); }},
        {"a pipe without a writer", [](const std::string& p) { ASSERT_EQ(mkfifo(p.c_str(), 0644), 0); }},
        {"a link to nowhere", [](const std::string& p) { std::filesystem::create_symlink(p + ".gone", p); }},
    };
    for (const auto& [what, make] : cases) {
        std::vector<ConfigNote> notes = LoadWith(make);
        EXPECT_EQ(EveryOptionShown(), defaults) << what;
        EXPECT_EQ(notes, (std::vector<ConfigNote>{ConfigNote::FileMissing, ConfigNote::FileMissing})) << what;
        EXPECT_TRUE(g_module.configuration_loaded) << what;
    }
}

TEST_F(ConfigNoFile, AnUnreadableFileLeavesTheDefaults) {
    if (geteuid() == 0) GTEST_SKIP() << "running as root, where no file can be made unreadable";
    LoadWith(nullptr);
    const std::vector<std::string> defaults = EveryOptionShown();
    std::vector<ConfigNote> notes = LoadWith([](const std::string& p) {
        std::ofstream(p) << "TransAlt=4321\n";
        chmod(p.c_str(), 0);
    });
    EXPECT_EQ(EveryOptionShown(), defaults);
    EXPECT_EQ(notes, (std::vector<ConfigNote>{ConfigNote::FileMissing, ConfigNote::FileMissing}));
}
