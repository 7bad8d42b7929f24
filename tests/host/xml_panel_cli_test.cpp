// xml_panel_cli_test.cpp: a panel with an XML gauge, as a user runs it in
// orbsim: a bad gauge file stops the load with one line naming the gauge
// file and its line; a panel line whose XML file is missing is skipped with a
// warning and the rest of the panel runs.
#include "support/run_command.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {
class XmlPanelCli : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        dir_ = MakeScratchSim("xml_panel", error);
        ASSERT_FALSE(dir_.empty()) << error;
    }
    void TearDown() override { std::system(("rm -rf '" + dir_ + "'").c_str()); }
    void Write(const std::string& relative, const std::string& text) { std::ofstream(dir_ + "/sim/" + relative) << text; }
    CommandRun Run(const std::string& script) {
        Write("test.orbsim", script);
        return RunCommand(std::string(ORB_BINARY_DIR) + "/orbsim --sim '" + dir_ + "/sim' --out '" + dir_ + "/out' '" + dir_ +
                          "/sim/test.orbsim' 2>&1");
    }
    std::string dir_;
};
}  // namespace

TEST_F(XmlPanelCli, BadGaugeNamesItsLineAndAMissingOneIsSkipped) {
    Write("panels/p.cfg", "[Window00]\nident=0\nvisible=1\ngauge00=orb1!SERVER, 0, 0\ngauge01=orb_xml!Autoflight, 0, 0, 180, 60\n"
                          "gauge02=orb_xml!Nowhere, 0, 0\n");
    // The shipped gauge loads, and its lamp follows the module's variable.
    CommandRun run = Run("panel panels/p.cfg\nrun 1\nexpect L:AfsLnavLamp == 0\nset L:orb_lnav 1\nframes 1\nexpect L:AfsLnavLamp == 1\n");
    EXPECT_EQ(run.code, 0) << run.output;
    EXPECT_NE(run.output.find("p.cfg:6: gauge orb_xml!Nowhere skipped: no GAUGES/orb_xml/Nowhere.xml"), std::string::npos)
        << run.output;

    // A word the player doesn't know, on line 4 of the gauge.
    Write("GAUGES/orb_xml/Autoflight.xml", "<Gauge Name=\"A\">\n<Update>\n  1 (>L:x)\n  2 (>L:y) frobnicate\n</Update>\n</Gauge>\n");
    run = Run("panel panels/p.cfg\nrun 1\n");
    EXPECT_EQ(run.code, 2) << run.output;
    EXPECT_NE(run.output.find("orb_xml/Autoflight.xml:4: 'frobnicate' is no word of the scripts orbsim plays"), std::string::npos)
        << run.output;
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1) << run.output;
}
