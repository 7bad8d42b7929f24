// orbnav_convert_test.cpp: `orbnav convert` as a user runs it: a plan of
// another tool made into the module's route file with the database's kinds
// and frequencies, the .PLN form chosen on writing, and a broken input
// refused with its file and line, leaving no output behind.
#include "support/run_command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {
namespace fs = std::filesystem;

class OrbnavConvert : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        dir_ = fs::path(ORB_BINARY_DIR) / "test-orbnav-convert" / info->name();
        fs::remove_all(dir_);
        fs::create_directories(dir_);
    }
    CommandRun Run(const std::string& args) {
        return RunCommand("cd '" + dir_.string() + "' && " + ORB_BINARY_DIR + "/orbnav convert " + args + " 2>&1");
    }
    std::string Read(const std::string& name) {
        std::ifstream in(dir_ / name, std::ios::binary);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    void Write(const std::string& name, const std::string& text) { std::ofstream(dir_ / name, std::ios::binary) << text; }
    std::string Plans() { return std::string(ORB_SOURCE_DIR) + "/tests/plan/plans/"; }
    std::string Sim() { return std::string(ORB_SOURCE_DIR) + "/data/sim"; }
    fs::path dir_;
};
}  // namespace

TEST_F(OrbnavConvert, RouteFileFromAnotherToolWithTheDatabasesKinds) {
    // The .fgfp can't tell a VOR from a fix: the database can (SEA 116.80 in navs.txt).
    CommandRun run = Run("'" + Plans() + "KSEAKGEG.fgfp' out.rte --root '" + Sim() + "'");
    ASSERT_EQ(run.code, 0) << run.output;
    EXPECT_NE(run.output.find("4 waypoints"), std::string::npos) << run.output;
    std::string rte = Read("out.rte");
    EXPECT_NE(rte.find("SEA              47.43536  -122.30961  VOR 116.80\n"), std::string::npos) << rte;
    EXPECT_NE(rte.find("USER1            47.30000  -119.80000  WPT ---\n"), std::string::npos) << rte;
    // Without the database, a named point the format couldn't type is a fix.
    run = Run("'" + Plans() + "KSEAKGEG.fgfp' bare.rte");
    ASSERT_EQ(run.code, 0) << run.output;
    EXPECT_NE(Read("bare.rte").find("SEA              47.43536  -122.30961  INT ---\n"), std::string::npos);

    // .fms 11 with an airway to .PLN in either form; the airway goes along.
    ASSERT_EQ(Run("'" + Plans() + "KSEAKGEG.fms' xml.pln").code, 0);
    std::string xml = Read("xml.pln");
    EXPECT_EQ(xml.rfind("<?xml", 0), 0u);
    EXPECT_NE(xml.find("<ATCAirway>J70</ATCAirway>"), std::string::npos);
    ASSERT_EQ(Run("'" + Plans() + "KSEAKGEG.fms' old.pln --pln-form fs2004").code, 0);
    std::string old = Read("old.pln");
    EXPECT_EQ(old.rfind("[flightplan]\n", 0), 0u);
    EXPECT_NE(old.find(", BLUIT, , BLUIT, I, N47* 24.36', W120* 25.09', +000000.00, J70,"), std::string::npos) << old;
    // Back from the older form to .fms 3, which has no airways: said, not hidden.
    run = Run("old.pln back.fms --fms-version 3");
    ASSERT_EQ(run.code, 0) << run.output;
    EXPECT_NE(run.output.find("not kept"), std::string::npos) << run.output;
    EXPECT_EQ(Read("back.fms").rfind("I\n3 version\n1\n4\n1 KSEA ", 0), 0u) << Read("back.fms");
}

TEST_F(OrbnavConvert, BrokenInputNamesFileAndLineAndWritesNothing) {
    Write("bad.fms", "I\n1100 Version\nCYCLE 1801\nNUMENR 2\n1 KSEA ADEP 0 47.45 -122.31\n3 SEA DRCT 0 47.x -122.3\n");
    Write("keep.rte", "[FlightPlan]\nOLD 1 1 WPT\n");
    CommandRun run = Run("bad.fms keep.rte");
    EXPECT_NE(run.code, 0);
    EXPECT_NE(run.output.find("bad.fms:6: "), std::string::npos) << run.output;
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1) << "one line: " << run.output;
    // The output that was there stays as it was, and no temporary is left.
    EXPECT_EQ(Read("keep.rte"), "[FlightPlan]\nOLD 1 1 WPT\n");
    for (const auto& entry : fs::directory_iterator(dir_))
        EXPECT_EQ(entry.path().filename().string().find("tmp"), std::string::npos) << entry.path();

    EXPECT_NE(Run("missing.fms x.rte").code, 0);
    EXPECT_FALSE(fs::exists(dir_ / "x.rte"));
    run = Run("bad.txt x.rte");
    EXPECT_NE(run.code, 0);
    EXPECT_NE(run.output.find("unknown extension"), std::string::npos);
    EXPECT_NE(Run("bad.fms x.rte --pln-form fs2005").code, 0);
}
