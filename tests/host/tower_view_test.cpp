// tower_view_test.cpp: the destination's tower view as orbsim's FSUIPC
// server receives it: the position of the airport's section, the fallbacks
// (the airport's own place 100 ft above its elevation, or beside the chosen
// runway), and the offsets' encodings read back from the server's memory.
#include "navdata/sim_folder.h"

#include "frame/data_text.h"
#include "frame/diagnostic_log.h"
#include "frame/fsuipc_client.h"
#include "frame/sim_access.h"
#include "navdata/airport_extras.h"
#include "../../platform/host_link.h"
#include "orbsim/fsuipc_server.h"
#include "orbsim/host_interface.h"
#include "orbsim/host_state.h"
#include "orbsim/panel_table.h"

#include <cmath>
#include <cstdint>

namespace {
constexpr double kLatUnits = 10001750.0 * 4294967296.0 / 90;    // per degree of latitude
constexpr double kLonUnits = 18446744073709551616.0 / 360;      // per degree of longitude

class TowerView : public ::testing::Test {
protected:
    void SetUp() override {
        orbsim::g_host = {};
        orbsim::BuildPanelTable(orbsim::g_host);
        ImportTable.PANELSentry.fnptr = &orbsim::g_host.panels;
        platform::SetHostForTesting(orbsim::HostInterface());
        g_fsuipc = {};
        g_airport_extras = AirportExtrasState{};
    }
    void TearDown() override {
        ImportTable.PANELSentry.fnptr = nullptr;
        platform::SetHostForTesting(nullptr);
        g_fsuipc = {};
        orbsim::g_host = {};
    }
    orbsim::FsuipcServer& server() { return orbsim::g_host.fsuipc; }
    // A plan to KSEA, whose last row stands at the airport's reference point.
    static void PlanTo(const char* ident, double latitude, double longitude) {
        g_plan.context.ActiveLastRow = 1;
        SetText(g_plan.ActivePlan[0].Ident, "KPDX");
        SetText(g_plan.ActivePlan[1].Ident, ident);
        g_plan.ActivePlan[1].Latitude = latitude;
        g_plan.ActivePlan[1].Longitude = longitude;
    }
    int64_t Peek64(uint32_t offset) { return static_cast<int64_t>(orbsim::FsuipcPeek(server(), offset, 8)); }
};

const char* kApts = "KSEA Seattle 433 47.449 -122.309 16R_11901_47.46_-122.31_163.0\n";
}  // namespace

TEST_F(TowerView, TheSectionsPositionGoesOutInTheSimulatorsUnits) {
    SimFolder sim;
    sim.Write("orb/navdata/apts.txt", kApts);
    // Another airport's values before and after; a comment and a key of the
    // wrong case inside; the file's altitude takes nothing on top.
    sim.Write("orb/navdata/apt_additional_info.txt",
              "[KBFI]\nTowerViewLat=10\nTowerViewLon=20\nTowerViewAlt=30\n\n"
              "[KSEA]\n;TowerViewAlt=9999\ntowerviewalt=8888\nTowerViewLat=47.4437\nTowerViewLon=-122.3096\n"
              "TowerViewAlt=620.5\n[KPAE]\nTowerViewAlt=1\n");
    PlanTo("KSEA", 47.449, -122.309);
    SetTowerView();

    EXPECT_EQ(server().tower_writes, 3);
    EXPECT_EQ(Peek64(0x0D50), static_cast<int64_t>(47.4437 * kLatUnits));
    EXPECT_EQ(Peek64(0x0D58), static_cast<int64_t>(-122.3096 * kLonUnits));
    // Altitude: the low word 0, the high word feet x 0.31 cut to a whole number.
    EXPECT_EQ(orbsim::FsuipcPeek(server(), 0x0D60, 4), 0u);
    EXPECT_EQ(static_cast<int32_t>(orbsim::FsuipcPeek(server(), 0x0D64, 4)), 192);  // 620.5 x 0.31 = 192.355
    EXPECT_NEAR(server().tower_lat, 47.4437, 1e-9);
    EXPECT_NEAR(server().tower_lon, -122.3096, 1e-9);
    EXPECT_EQ(g_airport_extras.tower_source, 1);
    EXPECT_DOUBLE_EQ(g_airport_extras.tower_altitude, 620.5);
}

TEST_F(TowerView, ZeroPositionOrNoFileFallsBackToTheAirport) {
    SimFolder sim;
    sim.Write("orb/navdata/apts.txt", kApts);
    // 0, 0 in the section counts as none: the airport's place, 100 ft above it.
    sim.Write("orb/navdata/apt_additional_info.txt", "[KSEA]\nTowerViewLat=0\nTowerViewLon=0\nTowerViewAlt=700\n");
    PlanTo("KSEA", 47.449, -122.309);
    SetTowerView();
    EXPECT_EQ(g_airport_extras.tower_source, 2);
    EXPECT_NEAR(server().tower_lat, 47.449, 1e-9);
    EXPECT_NEAR(server().tower_lon, -122.309, 1e-9);
    EXPECT_EQ(static_cast<int32_t>(orbsim::FsuipcPeek(server(), 0x0D64, 4)), 165);  // 533 x 0.31 = 165.23

    // No file at all, and an airport in neither airport file: elevation 0.
    std::filesystem::remove(sim.root() / "orb/navdata/apt_additional_info.txt");
    PlanTo("ZZZZ", 10, 20);
    SetTowerView();
    EXPECT_NEAR(server().tower_lat, 10, 1e-9);
    EXPECT_EQ(static_cast<int32_t>(orbsim::FsuipcPeek(server(), 0x0D64, 4)), 31);  // 100 x 0.31
    EXPECT_EQ(server().tower_writes, 6);

    // The user's airport file answers when the main one doesn't know it.
    sim.Write("orb/navdata/apts_user.txt", "ZZZZ Mine 1000 10 20\n");
    SetTowerView();
    EXPECT_EQ(static_cast<int32_t>(orbsim::FsuipcPeek(server(), 0x0D64, 4)), 341);  // 1100 x 0.31
}

TEST_F(TowerView, AChosenRunwayPutsTheViewBesideItsThreshold) {
    SimFolder sim;
    PlanTo("KSEA", 47.449, -122.309);
    InfoAirportState& info = g_airports.InfoAirport;
    info.RunwayCount = 1;
    info.Runways[1].Latitude = 47.46;
    info.Runways[1].Longitude = -122.31;
    info.Runways[1].Heading = 350;
    g_sim.magnetic_variation = 16;  // 350 + 15 + 16 = 381, less 360: 21 degrees true
    g_airport_extras.runway_page_selection = 1;
    SetTowerView();
    EXPECT_EQ(g_airport_extras.tower_source, 3);
    // 0.21 nm on 21 degrees true, worked out flat: the distance is small.
    double bearing = 21 * 3.14159265358979 / 180;
    double dlat = 0.21 / 60 * std::cos(bearing);
    double dlon = 0.21 / 60 * std::sin(bearing) / std::cos(47.46 * 3.14159265358979 / 180);
    EXPECT_NEAR(server().tower_lat, 47.46 + dlat, 2e-5);
    EXPECT_NEAR(server().tower_lon, -122.31 + dlon, 2e-5);
    EXPECT_EQ(orbsim::FsuipcPeek(server(), 0x0D60, 8), 0u) << "a runway's view stands at altitude 0";
}

TEST_F(TowerView, NoLinkNoWrites) {
    SimFolder sim;
    sim.Write("orb/navdata/apt_additional_info.txt", "[KSEA]\nTowerViewLat=47\nTowerViewLon=-122\n");
    PlanTo("KSEA", 47.449, -122.309);
    server().enabled = false;
    SetTowerView();
    EXPECT_EQ(server().tower_writes, 0);
    EXPECT_EQ(Peek64(0x0D50), 0);
}
