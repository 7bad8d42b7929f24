// The line reader that orb.cfg and the profiles share, on the lines users
// actually write: blanks in the wrong place, stars, long lines, garbage.
#include "config_fixture.h"
#include "frame/gauge_callback.h"
#include "guidance/lnav.h"

#include <climits>
#include <cmath>

namespace {
struct Split {
    bool ok;
    std::string key, value;
};
Split SplitOf(const char* line) {
    ConfigLine out;
    bool ok = SplitConfigLine(line, out);
    return {ok, out.key.data(), out.value.data()};
}
}  // namespace

TEST(ConfigReader, SplitsLinesByTheBlankAndStarRules) {
    auto plain = SplitOf("WptChgDist=5\n");
    EXPECT_TRUE(plain.ok);
    EXPECT_EQ(plain.key, "WptChgDist");
    EXPECT_EQ(plain.value, "5");
    // A blank before "=" stays in the key as "*": the key matches nothing.
    EXPECT_EQ(SplitOf("WptChgDist =5\n").key, "WptChgDist*");
    // A leading blank spoils the key the same way.
    EXPECT_EQ(SplitOf("  TransAlt=5000\n").key, "**TransAlt");
    // Blanks inside a value are kept, and so are blanks behind it.
    EXPECT_EQ(SplitOf("FlightPlansFolder=C:\\My Plans\\Jet\n").value, "C:\\My Plans\\Jet");
    EXPECT_EQ(SplitOf("ModelId=B 7 \r\n").value, "B 7 ");
    // A blank behind "=" leads the value.
    EXPECT_EQ(SplitOf("ModelId= X\n").value, " X");
    // "*" in a value reads as a blank.
    EXPECT_EQ(SplitOf("ModelId=A*B\n").value, "A B");
    // Only the first "=" parts key and value.
    auto equals = SplitOf("ModelId=a=b\n");
    EXPECT_EQ(equals.key, "ModelId");
    EXPECT_EQ(equals.value, "a=b");
    // A tab ends the value.
    EXPECT_EQ(SplitOf("TransAlt=6000\tfeet\n").value, "6000");
    // No "=" and no value: the key alone.
    auto bare = SplitOf("TransAlt\n");
    EXPECT_EQ(bare.key, "TransAlt");
    EXPECT_EQ(bare.value, "");
    // A comment only when ";" is the very first character.
    EXPECT_FALSE(SplitOf(";TransAlt=1\n").ok);
    EXPECT_TRUE(SplitOf(" ;TransAlt=1\n").ok);
    EXPECT_EQ(SplitOf("\n").key, "");
}

TEST(ConfigReader, NumbersReadAsTheModuleReadsThem) {
    EXPECT_EQ(ReadIntegerValue("12abc"), 12);
    EXPECT_EQ(ReadIntegerValue("  -5"), -5);
    EXPECT_EQ(ReadIntegerValue("+7"), 7);
    EXPECT_EQ(ReadIntegerValue("2.9"), 2);
    EXPECT_EQ(ReadIntegerValue("abc"), 0);
    EXPECT_EQ(ReadIntegerValue(""), 0);
    EXPECT_EQ(ReadIntegerValue("99999999999999999999"), 0);
    EXPECT_EQ(ReadIntegerValue("2147483648"), 0);
    EXPECT_DOUBLE_EQ(ReadFloatValue("1.5nm"), 1.5);
    EXPECT_DOUBLE_EQ(ReadFloatValue(".5"), 0.5);
    EXPECT_DOUBLE_EQ(ReadFloatValue("-2.5e1"), -25);
    EXPECT_DOUBLE_EQ(ReadFloatValue(" 3"), 3);
    for (const char* bad : {"inf", "nan", "-inf", "1e999", "0x10p0", ".", "-", "e5", ""})
        EXPECT_EQ(ReadFloatValue(bad), 0.0) << bad;
    EXPECT_EQ(ReadFloatValue("0x10"), 0);  // the "0" before the x, nothing more
    EXPECT_EQ(TruncateToInt(-3.9), -3);
    EXPECT_EQ(TruncateToInt(1e20), 0);
    EXPECT_EQ(TruncateToInt(std::nan("")), 0);
    EXPECT_TRUE(SameKey("wptchgdist", "WptChgDist"));
    EXPECT_FALSE(SameKey("WptChgDist", "WptChgDis"));
}

using ConfigFile = ConfigFolderTest;

TEST_F(ConfigFile, LaterLineWinsKeysIgnoreCaseAndUnknownKeysChangeNothing) {
    WriteOrbCfg("TransAlt=10000\n"
                "NoSuchKey=42\n"
                "transalt=12000\n"
                "MINMAPRANGE=5\n"
                "WptChgDist =0.5\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.TransAlt, 12000);
    EXPECT_DOUBLE_EQ(g_config.MinMapRange, 5);
    EXPECT_DOUBLE_EQ(g_config.WptChgDist, 3);  // the blank spoilt the key
}

TEST_F(ConfigFile, AKnownKeyWithoutValueSetsZeroOrEmpties) {
    WriteOrbCfg("FlightPlansFolder=D:\\plans\n"
                "DrawTcasWindowOnP1000MFD\n"
                "TransAlt=\n"
                "FlightPlansFolder\n"
                "WptChgDist\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.DrawTcasWindowOnP1000MFD, 0);
    EXPECT_EQ(g_config.TransAlt, 0);
    EXPECT_EQ(Text(g_config.FlightPlansFolder), "");
    EXPECT_DOUBLE_EQ(g_config.WptChgDist, 3);  // 0 isn't above 0
}

TEST_F(ConfigFile, ALineLongerThanTheLimitGoesOnAsTheNextLine) {
    // 298 characters make one read; what follows them is a line of its own.
    std::string long_line = std::string(298, 'x') + "TransAlt=9000\n";
    std::string long_value = "FlightPlansFolder=" + std::string(400, 'A') + "\n";
    std::vector<std::pair<int, std::string>> notes;
    static std::vector<std::pair<int, std::string>>* sink;
    sink = &notes;
    g_config_observer = [](const ConfigNoteInfo& info) {
        if (info.line > 0) sink->push_back({info.line, info.key});
    };
    WriteOrbCfg(long_line + long_value + "MinMapRange=20\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.TransAlt, 9000);
    // The value is cut at its text size; the line after it reads normally.
    EXPECT_EQ(Text(g_config.FlightPlansFolder), std::string(kConfigTextSize - 1, 'A'));
    EXPECT_DOUBLE_EQ(g_config.MinMapRange, 20);
    // The file's own line numbers: a continued line keeps its number.
    ASSERT_EQ(notes.size(), 5u);
    EXPECT_EQ(notes[1], (std::pair<int, std::string>{1, "TransAlt"}));
    EXPECT_EQ(notes[4], (std::pair<int, std::string>{3, "MinMapRange"}));
}

TEST_F(ConfigFile, GarbageBytesDoNotDerailTheLinesAfterThem) {
    std::string garbage;
    unsigned seed = 12345;
    for (int i = 0; i < 5000; ++i) {
        seed = seed * 1103515245u + 12345u;
        garbage.push_back(static_cast<char>(seed >> 16));
    }
    WriteOrbCfg(garbage + "\nTransAlt=12000\nWeightUnit=kgs\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.TransAlt, 12000);
    EXPECT_EQ(Text(g_config.WeightUnit), "KGS");
    WriteProfile("Garbage", garbage + "\n[Lvars]\n" + garbage + "\n[EndLvars]\nTransAlt=7000\n");
    LoadAircraftProfile("Garbage");
    EXPECT_EQ(g_config.TransAlt, 7000);
    EXPECT_LE(g_lvars.count, kLvarRowLimit);
}

TEST_F(ConfigFile, AMissingFileLeavesDefaultsAndStillFinishesStartUp) {
    // Three signs of the newer simulator in the folder.
    Write("fsx.exe", "");
    Write("ace.exe", "");
    std::filesystem::create_directories(folder_ + "/SimObjects");
    StartupOnce(GaugeId::LNAV, "");  // the start-up's configuration step (LNAV loads no database)
    GlobalConfig defaults;
    EXPECT_DOUBLE_EQ(g_config.WptChgDist, defaults.WptChgDist);
    EXPECT_EQ(g_config.TcasVertRange, 140);
    EXPECT_EQ(Text(g_config.WeightUnit), "LBS");
    EXPECT_TRUE(g_module.configuration_loaded);
    EXPECT_EQ(g_module.SimGeneration, 10);
    EXPECT_TRUE(g_module.initial_load_done);
    EXPECT_EQ(g_tick.slow_refresh, 999);
    EXPECT_EQ(std::string(g_plan_texts.GnsApproach.transition.data()), "------");
    EXPECT_EQ(std::string(g_lnav.DirectToTurnOption.data()), "DEFAULT");
}
