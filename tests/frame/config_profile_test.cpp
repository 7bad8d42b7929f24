// The aircraft profile: its own keys and rules, what it works out after the
// file, the [Lvars] block, the AIRAC line, and how it wins over orb.cfg.
#include "config_fixture.h"

#include "frame/gauge_callback.h"
#include "plan/route_files.h"

using Profile = ConfigFolderTest;

TEST_F(Profile, OverridesOrbCfgAndTakesChangeDistancesAsTheyStand) {
    LoadBoth("TransAlt=10000\nWptChgDist=2\nWptChgSecs=30\nWptProcChgDist=2\nWptProcChgSecs=15\n"
             "FlightPlansFolder=C:\\global\nWeightUnit=LBS\nMinMapRange=5\n",
             "TransAlt=6000\nWptChgDist=0\nWptChgSecs=0\nWptProcChgDist=-1\nWptProcChgSecs=0\n"
             "FlightPlansFolder=D:\\jet plans\nweightunit=kgs\nGPSSynch=1\n");
    EXPECT_EQ(g_config.TransAlt, 6000);
    EXPECT_DOUBLE_EQ(g_config.WptChgDist, 0);  // orb.cfg would refuse 0; the profile doesn't
    EXPECT_DOUBLE_EQ(g_config.WptChgSecs, 0);
    EXPECT_DOUBLE_EQ(g_config.WptProcChgDist, -1);
    EXPECT_DOUBLE_EQ(g_config.WptProcChgSecs, 0);
    EXPECT_DOUBLE_EQ(g_config.MinMapRange, 5);  // not in the profile: orb.cfg's stays
    // The profile's plan folder is a text of its own.
    EXPECT_EQ(Text(g_config.FlightPlansFolder), "C:\\global");
    EXPECT_EQ(Text(g_profile.FlightPlansFolder), "D:\\jet plans");
    EXPECT_EQ(Text(g_config.WeightUnit), "KGS");
    EXPECT_EQ(g_config.synchfplanwithfsgps, 1);
}

TEST_F(Profile, ThePlanListAndSavedRoutesUseTheProfilesPlanFolder) {
    std::filesystem::create_directories(folder_ + "/global plans");
    std::filesystem::create_directories(folder_ + "/jet plans");
    const char* route = "[FlightPlan]\nKSEA 47.45 -122.31 APT ---\nKPDX 45.59 -122.60 APT ---\n";
    Write("global plans/GLOBAL.RTE", route);
    Write("jet plans/JET.RTE", route);
    LoadBoth("FlightPlansFolder=" + folder_ + "/global plans\n", "FlightPlansFolder=" + folder_ + "/jet plans\n");
    BuildStoredPlanTable();
    ASSERT_EQ(g_stored_plans.count, 2);  // the profile's one plan, and "NEW FPL"
    EXPECT_STREQ(g_stored_plans.entries[1].FileName.data(), "JET.RTE");
    EXPECT_STREQ(g_stored_plans.entries[1].Destination.data(), "KPDX");
    ASSERT_EQ(SaveRouteFile("SAVED.RTE"), 1);
    EXPECT_TRUE(std::filesystem::exists(folder_ + "/jet plans/SAVED.RTE"));
    EXPECT_FALSE(std::filesystem::exists(folder_ + "/global plans/SAVED.RTE"));
    // A profile without one: orb.cfg's folder.
    g_profile = {};
    LoadBoth("FlightPlansFolder=" + folder_ + "/global plans\n", "TransAlt=6000\n");
    BuildStoredPlanTable();
    ASSERT_EQ(g_stored_plans.count, 2);
    EXPECT_STREQ(g_stored_plans.entries[1].FileName.data(), "GLOBAL.RTE");
}

TEST_F(Profile, FlyoverAndTrafficRangeKeepTheirTestsInTheProfile) {
    LoadBoth("FlyoverWptChgDist=2.5\nTcasVertRange=3000\n", "FlyoverWptChgDist=0.8\nTcasVertRange=999\n");
    EXPECT_DOUBLE_EQ(g_config.FlyoverWptChgDist, 2.5);
    EXPECT_EQ(g_config.TcasVertRange, 30);
    g_config = {};
    LoadBoth("FlyoverWptChgDist=2.5\nTcasVertRange=3000\n", "FlyoverWptChgDist=1.2\nTcasVertRange=4500\n");
    EXPECT_DOUBLE_EQ(g_config.FlyoverWptChgDist, 1.2);
    EXPECT_EQ(g_config.TcasVertRange, 45);
}

TEST_F(Profile, KeysOfOrbCfgAloneAreIgnoredInTheProfile) {
    LoadBoth("PauseAtTod=1\nAutoSetLOCFreq=1\n", "PauseAtTod=0\nAutoSetLOCFreq=0\n");
    EXPECT_EQ(g_config.PauseAtTod, 1);
    EXPECT_EQ(g_config.AutoSetLOCFreq, 1);
}

TEST_F(Profile, MachNumbersCruiseAndDescentAlwaysEndAtZero) {
    LoadBoth("ClimbMach=0.74\nCruiseMach=0.78\nDescentMach=0.76\n", "CruiseMach=0.8\nDescentMach=0.79\n");
    EXPECT_DOUBLE_EQ(g_config.DescentMach, 0);
    EXPECT_DOUBLE_EQ(g_config.CruiseMach, 0);
    EXPECT_DOUBLE_EQ(g_config.ClimbMach, 0.74);  // orb.cfg's climb Mach survives a profile without one
    g_config = {};
    g_profile = {};
    LoadBoth("ClimbMach=0.74\n", "ClimbMach=0.7\n");
    EXPECT_DOUBLE_EQ(g_config.ClimbMach, 0.7);
}

TEST_F(Profile, KeyRulesOfTheProfile) {
    LoadBoth("", "HoldLegMins=0\nEngThrust=26000\nTOFLAPSRANGE=1,5,15\nA320EADISkyColorRed=300\n"
                 "B777PFDGrndColorBlue=-4\nModelId=TWIN 300\nClimbRate=2100.7\nV1=135\n");
    EXPECT_DOUBLE_EQ(g_profile.HoldLegMins, 1);
    EXPECT_EQ(g_profile.EngThrust, 26);
    EXPECT_EQ(Text(g_profile.TOFLAPSRANGE), "1,5,15,");
    EXPECT_EQ(g_profile.A320EADISky.red, 255);
    EXPECT_EQ(g_profile.A320EADISky.green, 165);  // untouched components keep their defaults
    EXPECT_EQ(g_profile.B777PFDGrnd.blue, 0);
    EXPECT_EQ(Text(g_profile.ModelId), "TWIN 300");
    EXPECT_EQ(g_profile.ClimbRate, 2100);
    EXPECT_EQ(g_profile.V1, 135);
    g_profile = {};
    LoadBoth("", "HoldLegMins=1.5\nEngThrust=26\n");
    EXPECT_DOUBLE_EQ(g_profile.HoldLegMins, 1.5);
    EXPECT_EQ(g_profile.EngThrust, 26);
}

TEST_F(Profile, DisplayModesOutOfRangeFallBack) {
    struct Case {
        const char* key;
        int value;
        int expected;
        int AircraftProfile::*field;
    };
    const Case cases[] = {
        {"HWMD11NDMode", 6, 1, &AircraftProfile::HWMD11NDMode},   {"HWMD11NDMode", 1, 1, &AircraftProfile::HWMD11NDMode},
        {"HWMD11NDMode", 5, 5, &AircraftProfile::HWMD11NDMode},   {"EFS50HsiMode", 8, 1, &AircraftProfile::EFS50HsiMode},
        {"EFS50HsiMode", 7, 7, &AircraftProfile::EFS50HsiMode},   {"EFS50NavMode", 3, 1, &AircraftProfile::EFS50NavMode},
        {"DU1000EHSIMode", -1, 0, &AircraftProfile::DU1000EHSIMode}, {"HWB737NDMode", 0, 1, &AircraftProfile::HWB737NDMode},
        {"MD80EHSIMode", 4, 0, &AircraftProfile::MD80EHSIMode},   {"PROLINE4MFDMode", 2, 2, &AircraftProfile::PROLINE4MFDMode},
    };
    for (const Case& c : cases) {
        g_profile = {};
        LoadBoth("", std::string(c.key) + "=" + std::to_string(c.value) + "\n");
        EXPECT_EQ(g_profile.*c.field, c.expected) << c.key << "=" << c.value;
    }
}

TEST_F(Profile, CostIndexMovesOnlySpeedsStillAtTheirBase) {
    LoadBoth("", "CostIndex=200\n");
    EXPECT_EQ(g_profile.ClimbIas, 250);
    EXPECT_EQ(g_profile.CruiseIas, 280);
    EXPECT_EQ(g_profile.DescentIas, 250);
    EXPECT_EQ(g_profile.BestHoldIas, 250);  // the hold speed follows the final descent speed
    EXPECT_EQ(g_profile.CruiseIasBase, 280);
    g_profile = {};
    LoadBoth("", "CostIndex=100\nClimbIas=300\nDescentIasMin=200\nDescentIasMax=241\nBestHoldIas=210\n");
    EXPECT_EQ(g_profile.ClimbIas, 300);     // set by the file: the cost index leaves it
    EXPECT_EQ(g_profile.CruiseIas, 255);
    EXPECT_EQ(g_profile.DescentIas, 220);   // 20.5 + 200, cut
    EXPECT_EQ(g_profile.BestHoldIas, 210);
    g_profile = {};
    LoadBoth("", "CostIndex=0\n");
    EXPECT_EQ(g_profile.ClimbIas, 180);
    EXPECT_EQ(g_profile.CruiseIas, 230);
    g_profile = {};
    LoadBoth("", "CostIndex=-1\n");
    EXPECT_EQ(g_profile.CruiseIas, 250);
}

TEST_F(Profile, TrueAirspeedsAndLimitMachNumbersFollowTheFinalSpeeds) {
    LoadBoth("", "ClimbIas=250\nDescentTas=300\n");
    EXPECT_DOUBLE_EQ(g_profile.ClimbTas, 321.25);
    EXPECT_EQ(g_profile.DescentIas, 233);   // 300 / 128.5 x 100, cut
    EXPECT_NEAR(g_profile.DescentTas, 299.405, 1e-9);
    // 180 kt at 15000 ft and -30 C: 231.3 / (sqrt(243.15) x 38.967854).
    EXPECT_NEAR(g_profile.ClimbMachMin, 0.38066, 1e-4);
    EXPECT_NEAR(g_profile.CruiseMachMax, 0.59215, 1e-4);
}

TEST_F(Profile, AMissingProfileLeavesDefaultsKeepsTheNameAndStillWorksOutTheRest) {
    WriteOrbCfg("CruiseMach=0.8\nTransAlt=5000\n");
    StartupOnce(GaugeId::SMITHS_FMS, "NoSuchAircraft");
    EXPECT_STREQ(g_module.AircraftProfileName.data(), "NoSuchAircraft");
    EXPECT_EQ(g_config.TransAlt, 5000);
    EXPECT_EQ(g_profile.ClimbIas, 220);
    EXPECT_DOUBLE_EQ(g_config.CruiseMach, 0);
    EXPECT_GT(g_profile.ClimbMachMin, 0.3);
    EXPECT_EQ(g_profile.BestHoldIas, 220);
    // A later gauge doesn't try again.
    WriteProfile("Other", "ClimbIas=290\n");
    StartupOnce(GaugeId::GNSXLS, "Other");
    EXPECT_EQ(g_profile.ClimbIas, 220);
}

TEST_F(Profile, LvarsBlockInAllItsForms) {
    LoadBoth("", "TransAlt=9000\n"
                 "[Lvars]\n"
                 "[LVARS]\n"
                 "L:Range Knob=2,MapRange=40\n"
                 "L:Tcas Switch=1,TcasOn=1,reset=0,off=1\n"
                 "L:NoAction=1\n"
                 "  L:Padded = 3 , NDArcMode = 1\r\n"
                 "\n"
                 "; a comment inside the block\n"
                 "L:Unknown=1,Bogus=5\n"
                 "TransAlt=1234\n"
                 "l:lnav=1,lnavon\n"
                 "[endlvars]\n"
                 "MinMapRange=2\n");
    ASSERT_EQ(g_lvars.count, 7);
    const LvarRow* r = g_lvars.rows.data();
    EXPECT_STREQ(r[0].name.data(), "L:Range Knob");
    EXPECT_EQ(r[0].value, 2);
    EXPECT_EQ(r[0].action, LvarAction::MapRange);
    EXPECT_EQ(r[0].parameter, 40);
    EXPECT_EQ(r[1].action, LvarAction::TcasOn);
    EXPECT_EQ(r[1].parameter, 1);  // reset and off are read and dropped
    EXPECT_EQ(r[2].action, LvarAction::None);
    EXPECT_EQ(r[2].parameter, -1);
    EXPECT_STREQ(r[3].name.data(), "L:Padded");
    EXPECT_EQ(r[3].value, 3);
    EXPECT_EQ(r[3].action, LvarAction::NDArcMode);
    EXPECT_EQ(r[3].parameter, 1);
    EXPECT_EQ(r[4].action, LvarAction::None);
    EXPECT_STREQ(r[4].action_text.data(), "Bogus");
    // An option's line inside the block is a row, not an option.
    EXPECT_STREQ(r[5].name.data(), "TransAlt");
    EXPECT_EQ(r[5].value, 1234);
    EXPECT_EQ(r[6].action, LvarAction::LnavOn);
    EXPECT_EQ(r[6].parameter, 0);
    EXPECT_EQ(g_config.TransAlt, 9000);
    EXPECT_DOUBLE_EQ(g_config.MinMapRange, 2);  // options again after the block
}

TEST_F(Profile, LvarsBlockStopsAtItsTableSize) {
    std::string block = "[Lvars]\n";
    for (int i = 0; i < kLvarRowLimit + 50; ++i) block += "L:V" + std::to_string(i) + "=1,MapRange=10\n";
    LoadBoth("", block);  // no end line: the block runs to the end of the file
    EXPECT_EQ(g_lvars.count, kLvarRowLimit);
    EXPECT_STREQ(g_lvars.rows[kLvarRowLimit - 1].name.data(), ("L:V" + std::to_string(kLvarRowLimit - 1)).c_str());
}

TEST_F(Profile, AiracLineGivesTheCycleTexts) {
    Write("orb/navdata/navs.txt", "; navaids\n"
                                  "ABC  ALPHA  115.00 1 1 1 1\n"
                                  ";AIRAC Cycle : 0601 (19-JAN-2006 - 16-FEB-2006)\n"
                                  ";AIRAC Cycle : 0702 (01-MAR-2007 - 28-MAR-2007)\n");
    LoadBoth("", "");
    EXPECT_STREQ(g_airac.cycle.data(), "AIRAC 0601");
    EXPECT_STREQ(g_airac.validity.data(), "JAN19FEB16/06");
    EXPECT_STREQ(g_airac.dates.data(), "19JAN - 16FEB");
    // Short words give what they hold and nothing beyond.
    g_airac = {};
    Write("orb/navdata/navs.txt", ";AIRAC x : 0603 (1\n");
    LoadAircraftProfile("Test");
    EXPECT_STREQ(g_airac.cycle.data(), "AIRAC 0603");
    EXPECT_STREQ(g_airac.validity.data(), "1/");  // the one day digit, then the "/"
    // No navs.txt: the texts stay empty.
    g_airac = {};
    std::filesystem::remove(folder_ + "/orb/navdata/navs.txt");
    LoadAircraftProfile("Test");
    EXPECT_STREQ(g_airac.cycle.data(), "");
}
