// sim_folder.h: a scratch simulator folder for the navigation and plan tests:
// files written under build/test-sim/<test>/, RootFolder pointed at it, and
// the state of the database and the plans reset.
#pragma once

#include "cdu/keypad.h"
#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "navdata/airways.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class SimFolder {
public:
    SimFolder() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        root_ = std::filesystem::path(ORB_BINARY_DIR) / "test-sim" /
                (std::string(info->test_suite_name()) + "." + info->name());
        std::filesystem::remove_all(root_);
        std::filesystem::create_directories(root_ / "orb" / "navdata");
        std::filesystem::create_directories(root_ / "orb" / "flightplans");
        std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root_.c_str());
        ResetState();
    }
    static void ResetState() {
        g_navdb = NavDatabase{};
        g_candidates = CandidateList{};
        g_airports = AirportSlots{};
        g_airway = AirwayFetchState{};
        g_plan = PlanTables{};
        g_stored_plans = StoredPlanTable{};
        g_config = GlobalConfig{};
        g_profile = AircraftProfile{};
        g_sim = SimState{};
        g_tick = TickState{};
        g_holds = HoldState{};
        // Loading a route executes it: guidance, the CDU's modes and the flight log take part.
        g_lnav = LnavState{};
        g_vnav = VnavState{};
        g_smiths = SmithsCduState{};
        g_flight_log = FlightLogState{};
    }
    // Writes `content` to the relative path (forward slashes).
    void Write(const std::string& relative, const std::string& content) const {
        std::filesystem::path p = root_ / relative;
        std::filesystem::create_directories(p.parent_path());
        std::ofstream(p, std::ios::binary) << content;
    }
    std::string Read(const std::string& relative) const {
        std::ifstream in(root_ / relative, std::ios::binary);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    bool Exists(const std::string& relative) const { return std::filesystem::exists(root_ / relative); }
    const std::filesystem::path& root() const { return root_; }

private:
    std::filesystem::path root_;
};
