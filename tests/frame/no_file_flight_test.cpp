// no_file_flight_test.cpp: the built module in orbsim, on a simulator folder
// whose data files have been replaced by things that are no files (folders,
// devices, pipes). The panel loads, the CDU answers, the aircraft flies on,
// and orbsim ends normally instead of with the module's crash.
#include "support/run_command.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace {
namespace fs = std::filesystem;

struct Outcome {
    int code = -1;       // exit code; -1 when orbsim did not exit normally
    std::string output;  // stdout and stderr
};

class NoFileFlight : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        root_ = fs::path(ORB_BINARY_DIR) / "test-sim" / (std::string(info->test_suite_name()) + "." + info->name());
        fs::remove_all(root_);
        fs::create_directories(root_);
        // A scratch copy of the demonstration folder, with this build's module.
        fs::copy(fs::path(ORB_SOURCE_DIR) / "data" / "sim", sim(), fs::copy_options::recursive);
        fs::copy_file(ORB_MODULE_PATH, sim() / "GAUGES" / "orb1.gau", fs::copy_options::overwrite_existing);
    }
    void TearDown() override { fs::remove_all(root_); }

    fs::path sim() const { return root_ / "sim"; }

    // Puts what `make` makes where the file was.
    void Replace(const std::string& relative, const std::function<void(const fs::path&)>& make) {
        fs::path p = sim() / relative;
        fs::remove_all(p);
        make(p);
    }

    Outcome Fly(const std::string& script) {
        std::ofstream(root_ / "flight.orbsim") << script;
        // A stalled load would hang the test; the limit turns it into a failure.
        std::string command = "timeout 300 " + std::string(ORB_BINARY_DIR) + "/orbsim --sim '" + sim().string() + "' --out '" +
                              (root_ / "out").string() + "' '" + (root_ / "flight.orbsim").string() + "' 2>&1";
        CommandRun run = RunCommand(command);
        return {run.code, run.output};
    }

    fs::path root_;
};

// A pilot's first minutes: the panel loads, the CDU takes keys and answers,
// the aircraft flies on its heading.
const char* const kFlight =
    "aircraft lat=47.40 lon=-122.30 alt=6000 hdg=180 ias=250 ap_hdg_hold=1 hdg_bug=180\n"
    "panel panels/twinjet.cfg\n"
    "fps 10\n"
    "run 2\n"
    "click FMS_OPEN 25 25\n"
    "key SMITHS_FMS RTE\n"
    "type SMITHS_FMS XXXXYYYY\n"
    "key SMITHS_FMS LSK2L\n"
    "expect screen SMITHS_FMS contains NOT IN DATABASE\n"
    "key SMITHS_FMS CLR\n"
    "run 60\n"
    "expect aircraft.lat < 47.35\n"
    "expect gauge.HW_B737_ND.draws > 500\n"
    "echo flew on\n";

void MakeFolder(const fs::path& p) { fs::create_directories(p / "inside"); }
}  // namespace

TEST_F(NoFileFlight, FoldersInPlaceOfTheNavigationFiles) {
    for (const char* name : {"apts.txt", "navs.txt", "ints.txt", "awys.txt"}) Replace(std::string("orb/navdata/") + name, MakeFolder);
    Outcome o = Fly(kFlight);
    EXPECT_EQ(o.code, 0) << o.output;
    EXPECT_NE(o.output.find("flew on"), std::string::npos) << o.output;
}

TEST_F(NoFileFlight, DevicesAndPipesInPlaceOfEveryDataFile) {
    auto zero = [](const fs::path& p) { fs::create_symlink("/dev/zero", p); };
    auto random = [](const fs::path& p) { fs::create_symlink("/dev/urandom", p); };
    auto pipe = [](const fs::path& p) { ASSERT_EQ(mkfifo(p.c_str(), 0644), 0); };
    Replace("orb/navdata/apts.txt", zero);
    Replace("orb/navdata/navs.txt", random);
    Replace("orb/navdata/ints.txt", pipe);
    Replace("orb/navdata/awys.txt", zero);
    Replace("orb/orb.cfg", pipe);
    Replace("orb/Aircraft/TwinJet.cfg", random);
    Replace("orb/flightplans/KSEAKGEG.RTE", MakeFolder);
    Replace("orb/flightplans/KSEAKOLM.RTE", pipe);
    Replace("orb/flightplans/KPDXKSEA.RTE", zero);
    Outcome o = Fly(kFlight);
    EXPECT_EQ(o.code, 0) << o.output;
    EXPECT_NE(o.output.find("flew on"), std::string::npos) << o.output;
}
