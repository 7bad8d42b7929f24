// The fuzz entry of the configuration reader over hostile inputs, so that
// every build runs what the fuzzer runs.
#define ORB_NO_FUZZ_MAIN
#include "fuzz/config_reader.cpp"

#include <gtest/gtest.h>

#include <string>

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
