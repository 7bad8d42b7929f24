// flight_log_rig.h: a test bench for the flight log. Each test gets its own
// simulator folder (build/test-sim/<suite.test>/) with an orb\FlightLog
// folder, a fake panel table for the tokens, orbsim's FSUIPC server in the
// same process for the weights, a three-row active plan and a profile name.
#pragma once

#include "flightlog/flight_log.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "plan/plan_tables.h"
#include "support/fake_panels.h"
#include "support/module_reset.h"

#include "../../platform/host_link.h"
#include "orbsim/host_interface.h"
#include "orbsim/host_state.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace flightlog_test {

constexpr int kGearOrEngineToken = 0x143;
constexpr double kTestZeroFuelWeight = 70000;   // pounds, as the FSUIPC server reports it
constexpr double kTestPayload = 3500;            // pounds, stations of 1000 and 2500

class FlightLogRig : public ::testing::Test {
protected:
    void SetUp() override {
        ResetModuleState();
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        root_ = std::filesystem::path(ORB_BINARY_DIR) / "test-sim" /
                (std::string(info->test_suite_name()) + "." + info->name());
        std::filesystem::remove_all(root_);
        std::filesystem::create_directories(root_ / "orb" / "FlightLog");
        std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root_.c_str());
        std::snprintf(g_module.AircraftProfileName.data(), g_module.AircraftProfileName.size(), "TestJet");
        // The weights come from orbsim's server, through the platform's window calls.
        orbsim::g_host = {};
        orbsim::g_host.aircraft.zfw = kTestZeroFuelWeight;
        orbsim::g_host.aircraft.payload = {1000, 2500};
        platform::SetHostForTesting(orbsim::HostInterface());
        sim.tokens[kGearOrEngineToken] = 1;
        // KAAA - FIX1 - KBBB, the destination 85 miles north-east of the origin.
        PlanRow(0, "KAAA", 0.0, 0.0);
        PlanRow(1, "FIX1", 0.5, 0.5);
        PlanRow(2, "KBBB", 1.0, 1.0);
        g_plan.context.ActiveLastRow = 2;
        g_plan.context.ActiveLeg = kNoActiveLeg;  // no guidance: the log alone is under test
    }
    void TearDown() override {
        platform::SetHostForTesting(nullptr);
        orbsim::g_host = {};
    }
    static void PlanRow(int row, const char* ident, double latitude, double longitude) {
        PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(row)];
        w = PlanWaypoint{};
        std::snprintf(w.Ident.data(), w.Ident.size(), "%s", ident);
        w.Latitude = latitude;
        w.Longitude = longitude;
    }
    std::vector<std::string> Lines(const std::string& relative) const {
        std::vector<std::string> lines;
        std::ifstream in(root_ / relative, std::ios::binary);
        std::string line;
        while (std::getline(in, line)) lines.push_back(line + "\n");
        return lines;
    }
    std::string Read(const std::string& relative) const {
        std::ifstream in(root_ / relative, std::ios::binary);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    bool Exists(const std::string& relative) const { return std::filesystem::exists(root_ / relative); }
    const std::filesystem::path& root() const { return root_; }

    FakeSimulatorScope scope;
    FakeSimulator& sim = scope.sim;

private:
    std::filesystem::path root_;
};

// One entry line of fpl.log, from its published format.
inline std::string EntryLine(int clock, const char* segment, const char* waypoint, double gs, double tas, double vs,
                             double alt, double ff, double fob, double zfw, double pld, double ias) {
    char text[512];
    std::snprintf(text, sizeof text,
                  "%02d:%02d:%02d %-10s %6s %5.0f  %5.0f   %5.0f  %6.0f  %5.0f %7.0f  %7.0f %7.0f %-3.0f\n",
                  clock / 3600, clock % 3600 / 60, clock % 60, segment, waypoint, gs, tas, vs, alt, ff, fob, zfw, pld,
                  ias);
    return text;
}

}  // namespace flightlog_test
