// orb.cfg's keys and their rules.
#include "config_fixture.h"

#include <set>

using GlobalConfigFile = ConfigFolderTest;

TEST_F(GlobalConfigFile, ChangeDistancesAreTakenOnlyAboveZero) {
    WriteOrbCfg("WptChgDist=0\n"
                "WptChgSecs=20\n"
                "WptChgSecs=0\n"
                "WptProcChgDist=-2\n"
                "WptProcChgSecs=12.5\n");
    LoadGlobalConfig();
    EXPECT_DOUBLE_EQ(g_config.WptChgDist, 3);
    EXPECT_DOUBLE_EQ(g_config.WptChgSecs, 20);  // the later 0 is refused, the earlier value stays
    EXPECT_DOUBLE_EQ(g_config.WptProcChgDist, 3);
    EXPECT_DOUBLE_EQ(g_config.WptProcChgSecs, 12.5);
    g_config = {};
    WriteOrbCfg("WptChgDist=0.4\nWptProcChgDist=2.5\n");
    LoadGlobalConfig();
    EXPECT_DOUBLE_EQ(g_config.WptChgDist, 0.4);
    EXPECT_DOUBLE_EQ(g_config.WptProcChgDist, 2.5);
}

TEST_F(GlobalConfigFile, FlyoverDistanceNeedsAnIntegerPartAboveZero) {
    WriteOrbCfg("FlyoverWptChgDist=0.8\n");
    LoadGlobalConfig();
    EXPECT_DOUBLE_EQ(g_config.FlyoverWptChgDist, 1.5);
    g_config = {};
    WriteOrbCfg("FlyoverWptChgDist=1\n");
    LoadGlobalConfig();
    EXPECT_DOUBLE_EQ(g_config.FlyoverWptChgDist, 1);
    g_config = {};
    WriteOrbCfg("FlyoverWptChgDist=2.75\nFlyoverWptChgDist=-3\n");
    LoadGlobalConfig();
    EXPECT_DOUBLE_EQ(g_config.FlyoverWptChgDist, 2.75);
}

TEST_F(GlobalConfigFile, TrafficRangeIsGivenInFeetAndStoredInHundreds) {
    WriteOrbCfg("TcasVertRange=999\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.TcasVertRange, 140);
    g_config = {};
    WriteOrbCfg("TcasVertRange=2700\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.TcasVertRange, 27);
    g_config = {};
    WriteOrbCfg("TcasVertRange=1050\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.TcasVertRange, 10);
}

TEST_F(GlobalConfigFile, PausesAreArmedByTheirKeys) {
    LoadGlobalConfig();
    EXPECT_EQ(g_config.PauseAtDistFromDest, 20);
    EXPECT_EQ(g_config.PauseAtDistFromDestOn, 0);
    EXPECT_EQ(g_config.ArmPauseAtDistFromDest, 0);
    EXPECT_EQ(g_config.ArmPauseAtTod, 0);

    g_config = {};
    WriteOrbCfg("PauseAtTod=1\nPauseAtDistFromDest=35\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.PauseAtTod, 1);
    EXPECT_EQ(g_config.ArmPauseAtTod, 1);
    EXPECT_EQ(g_config.PauseAtDistFromDest, 35);
    EXPECT_EQ(g_config.PauseAtDistFromDestOn, 1);
    EXPECT_EQ(g_config.ArmPauseAtDistFromDest, 1);

    g_config = {};
    WriteOrbCfg("PauseAtTod=2\nPauseAtDistFromDest=0\n");
    LoadGlobalConfig();
    EXPECT_EQ(g_config.PauseAtTod, 2);
    EXPECT_EQ(g_config.ArmPauseAtTod, 0);
    EXPECT_EQ(g_config.PauseAtDistFromDest, 0);
    EXPECT_EQ(g_config.PauseAtDistFromDestOn, 0);
}

TEST_F(GlobalConfigFile, TextsKeepBlanksAndTheWeightUnitIsUpperCase) {
    WriteOrbCfg("FlightPlansFolder=C:\\Flight Plans\\My Routes\n"
                "ParkingFile=gates*list.txt\n"
                "WeightUnit=kgs\n"
                "DecLatLonDisp=1.9\n"
                "CruiseMach=0.78\n");
    LoadGlobalConfig();
    EXPECT_EQ(Text(g_config.FlightPlansFolder), "C:\\Flight Plans\\My Routes");
    EXPECT_EQ(Text(g_config.ParkingFile), "gates list.txt");
    EXPECT_EQ(Text(g_config.WeightUnit), "KGS");
    EXPECT_EQ(g_config.DecLatLonDisp, 1);
    EXPECT_DOUBLE_EQ(g_config.CruiseMach, 0.78);
}

// Every key of the table sets an option of its own: a file that gives each
// key a different value reads each value back through its row.
TEST_F(GlobalConfigFile, EveryKeySetsItsOwnOption) {
    auto table = GlobalOptionTable();
    std::set<const void*> fields;
    std::set<std::string> keys;
    std::string file;
    for (size_t i = 0; i < table.size(); ++i) {
        const OptionEntry& e = table[i];
        fields.insert(e.integer ? static_cast<const void*>(e.integer)
                                : e.real ? static_cast<const void*>(e.real) : static_cast<const void*>(e.text));
        std::string lower = e.key;
        for (char& ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        keys.insert(lower);
        int value = e.rule == OptionRule::TcasFeet ? static_cast<int>(1000 + 100 * i) : static_cast<int>(i + 2);
        file += std::string(e.key) + "=" + (e.kind == OptionKind::Text ? "T" : "") + std::to_string(value) + "\n";
    }
    EXPECT_EQ(fields.size(), table.size());
    EXPECT_EQ(keys.size(), table.size());
    EXPECT_EQ(table.size(), 59u);
    WriteOrbCfg(file);
    LoadGlobalConfig();
    for (size_t i = 0; i < table.size(); ++i) {
        const OptionEntry& e = table[i];
        char shown[kConfigTextSize];
        FormatOptionValue(e, shown, sizeof shown);
        std::string expected = e.kind == OptionKind::Text ? "T" + std::to_string(i + 2) : std::to_string(i + 2);
        if (e.rule == OptionRule::TcasFeet) expected = std::to_string((1000 + 100 * i) / 100);
        // PauseAtDistFromDest, later in the file, arms the distance pause.
        if (std::string(e.key) == "ArmPauseAtDistFromDest") expected = "1";
        EXPECT_EQ(shown, expected) << e.key;
    }
}
