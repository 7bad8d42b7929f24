// fsuipc_server_test.cpp: orbsim's FSUIPC server against the module's own
// client, in one process: the client's requests go through the platform
// layer's window calls to the host interface, as in orbsim.
#include "flightlog/flight_log.h"
#include "frame/fsuipc_client.h"
#include "frame/sim_access.h"
#include "frame/module_state.h"
#include "../../platform/host_link.h"
#include "orbsim/host_interface.h"
#include "orbsim/host_state.h"
#include "orbsim/panel_table.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {
class FsuipcServerTest : public ::testing::Test {
protected:
    void SetUp() override {
        orbsim::g_host = {};
        orbsim::BuildPanelTable(orbsim::g_host);
        ImportTable.PANELSentry.fnptr = &orbsim::g_host.panels;
        platform::SetHostForTesting(orbsim::HostInterface());
        g_fsuipc = {};
        g_flight_log = {};
    }
    void TearDown() override {
        ImportTable.PANELSentry.fnptr = nullptr;
        platform::SetHostForTesting(nullptr);
        g_fsuipc = {};
        g_flight_log = {};
        orbsim::g_host = {};
    }
    orbsim::FsuipcServer& server() { return orbsim::g_host.fsuipc; }
    orbsim::AircraftModel& aircraft() { return orbsim::g_host.aircraft; }
};
}  // namespace

TEST_F(FsuipcServerTest, OpenChecksVersionSignatureAndSimulator) {
    uint8_t buffer[kFsuipcBufferSize];
    uint32_t result = 99;
    ASSERT_EQ(FsuipcOpen(0, &result, buffer, sizeof buffer), 1);
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(server().client_library, 0x04B0u);
    EXPECT_EQ(server().requests, 1u);
    FsuipcClose();

    // The simulator asked for must be the one the server runs in.
    ASSERT_EQ(FsuipcOpen(8, &result, buffer, sizeof buffer), 1);
    FsuipcClose();
    EXPECT_EQ(FsuipcOpen(7, &result, buffer, sizeof buffer), 0);
    EXPECT_EQ(result, FsuipcError::WrongSimulator);

    // Too old a server.
    server().version = 0x19980004;
    EXPECT_EQ(FsuipcOpen(0, &result, buffer, sizeof buffer), 0);
    EXPECT_EQ(result, FsuipcError::WrongVersion);
    server().version = 0x19980005;
    EXPECT_EQ(FsuipcOpen(0, &result, buffer, sizeof buffer), 1);
    FsuipcClose();

    // No server window at all.
    server().enabled = false;
    EXPECT_EQ(FsuipcOpen(0, &result, buffer, sizeof buffer), 0);
    EXPECT_EQ(result, FsuipcError::NoServerWindow);
}

TEST_F(FsuipcServerTest, FuelLoadFillsTheModelsTanksInTheClientsOrder) {
    orbsim::AircraftModel& a = aircraft();
    double mains_pounds = (a.tank_capacity[1] + a.tank_capacity[4]) * a.lbs_per_gal;
    LoadFuel(mains_pounds * 0.5);
    // Levels travel as fractions of 0x800000, so a gallon's rounding is the tolerance.
    EXPECT_NEAR(a.tank[static_cast<int>(orbsim::Tank::LeftMain)], a.tank_capacity[1] * 0.5, 0.01);
    EXPECT_NEAR(a.tank[static_cast<int>(orbsim::Tank::RightMain)], a.tank_capacity[4] * 0.5, 0.01);
    EXPECT_EQ(a.tank[static_cast<int>(orbsim::Tank::Center)], 0);

    LoadFuel(mains_pounds + 1000 * a.lbs_per_gal);
    EXPECT_NEAR(a.tank[static_cast<int>(orbsim::Tank::LeftMain)], a.tank_capacity[1], 1e-9);
    EXPECT_NEAR(a.tank[static_cast<int>(orbsim::Tank::Center)], 1000, 0.01);

    LoadFuel(1e7);
    EXPECT_NEAR(orbsim::FuelGallons(a), a.tank_capacity[0] + a.tank_capacity[1] + a.tank_capacity[4], 1e-6);
    LoadFuel(0);
    EXPECT_EQ(orbsim::FuelGallons(a), 0);
    // What the client read of the capacities came through lookup_var.
    EXPECT_GT(orbsim::g_host.token_reads[0x124], 0u);
    EXPECT_GT(orbsim::g_host.token_reads[0x132], 0u);
}

TEST_F(FsuipcServerTest, InitialLoadReadsZeroFuelWeightAndPayloadStations) {
    aircraft().zfw = 91234.5;
    aircraft().payload = {1000, 2500.25, 0, 4000};
    ReadInitialLoad(g_flight_log.zero_fuel_weight, g_flight_log.payload);
    EXPECT_NEAR(g_flight_log.zero_fuel_weight, 91234.5, 1.0 / 256);
    EXPECT_DOUBLE_EQ(g_flight_log.payload, 7500.25);

    // A full table of stations takes several requests of the small buffer.
    aircraft().payload.assign(61, 100);
    ReadInitialLoad(g_flight_log.zero_fuel_weight, g_flight_log.payload);
    EXPECT_DOUBLE_EQ(g_flight_log.payload, 6100);

    // No stations: the payload stays as it was.
    aircraft().payload.clear();
    aircraft().zfw = 80000;
    ReadInitialLoad(g_flight_log.zero_fuel_weight, g_flight_log.payload);
    EXPECT_DOUBLE_EQ(g_flight_log.zero_fuel_weight, 80000);
    EXPECT_DOUBLE_EQ(g_flight_log.payload, 6100);
}

TEST_F(FsuipcServerTest, TowerViewArrivesInDegreesAndFeet) {
    SetTowerViewAt(51.4775, -0.461389, 83, "EGLL");
    EXPECT_EQ(server().tower_writes, 3);  // three write records, each seen
    EXPECT_NEAR(server().tower_lat, 51.4775, 1e-9);
    EXPECT_NEAR(server().tower_lon, -0.461389, 1e-9);
    EXPECT_NEAR(server().tower_alt, 83, 1 / 0.31);
}

TEST_F(FsuipcServerTest, ActiveRunwayQueryGetsItsAnswerOrGivesUpAfterThirtyRounds) {
    orbsim::RunwayAnswer egll;
    std::strcpy(egll.airport, "EGLL");
    uint8_t n = 0, d = 0;
    ASSERT_TRUE(orbsim::ParseRunway("27L", n, d));
    egll.words[0] = n | (d << 8);
    ASSERT_TRUE(orbsim::ParseRunway("27R", n, d));
    egll.words[0] |= (n | (d << 8)) << 16;
    ASSERT_TRUE(orbsim::ParseRunway("9", n, d));
    egll.words[1] = n | (d << 8);
    server().runways.push_back(egll);

    ReadActiveRunways("EGLL");
    EXPECT_STREQ(g_fsuipc.runway_lines[0].data(), "27L\n");
    EXPECT_STREQ(g_fsuipc.runway_lines[1].data(), "27R\n");
    EXPECT_STREQ(g_fsuipc.runway_lines[2].data(), "09\n");
    EXPECT_EQ(g_fsuipc.runway_query_status, 2);
    EXPECT_EQ(server().query_rounds, 0);  // the client cleared the request word

    // An airport the server doesn't know: the client asks 30 more times and stops.
    g_fsuipc = {};
    uint64_t before = server().requests;
    ReadActiveRunways("KJFK");
    EXPECT_EQ(server().requests - before, 1u + 1u + 30u + 1u);  // open, ask, 30 rounds, clear
    EXPECT_EQ(g_fsuipc.runway_lines[0][0], 0);
    EXPECT_EQ(g_fsuipc.runway_query_status, 1);
}

TEST(FsuipcServer, MalformedRequestsAreRefusedWholeAndRunwaysParse) {
    orbsim::FsuipcServer s;
    orbsim::AircraftModel a = orbsim::DefaultAircraft();
    // marker, a write of 4 bytes to 0x0B7C, then a read whose size runs past the request.
    uint32_t request[16] = {0x1234, 2, 0x0B7C, 4, 0x400000, 1, 0x3304, 64, 0, 0, 0, 0, 0, 0, 0, 0};
    double left_main = a.tank[1];
    EXPECT_EQ(orbsim::HandleFsuipcMessage(s, a, 8 * 4, reinterpret_cast<intptr_t>(request)), 0);
    EXPECT_EQ(a.tank[1], left_main);  // the good write before the bad record didn't act either
    EXPECT_EQ(s.rejected, 1u);
    request[0] = 0;  // no marker
    request[7] = 4;
    EXPECT_EQ(orbsim::HandleFsuipcMessage(s, a, 12 * 4, reinterpret_cast<intptr_t>(request)), 0);
    request[0] = 0x1234;
    EXPECT_EQ(orbsim::HandleFsuipcMessage(s, a, 12 * 4, reinterpret_cast<intptr_t>(request)), 1);
    EXPECT_NEAR(a.tank[1], a.tank_capacity[1] / 2, 1e-9);
    uint32_t version = 0;
    std::memcpy(&version, reinterpret_cast<uint8_t*>(request) + 9 * 4, 4);
    EXPECT_EQ(version, s.version);
    // Offsets past the space read as zeros and writes there go nowhere.
    uint32_t far[8] = {1, 1, 0xFFFE, 4, 0, 0xAAAAAAAA, 0, 0};
    EXPECT_EQ(orbsim::HandleFsuipcMessage(s, a, 5 * 4, reinterpret_cast<intptr_t>(far)), 1);
    EXPECT_EQ(far[5], 0u);

    uint8_t n = 0, d = 0;
    EXPECT_TRUE(orbsim::ParseRunway("36C", n, d));
    EXPECT_EQ(n, 36);
    EXPECT_EQ(d, 3);
    EXPECT_TRUE(orbsim::ParseRunway("04w", n, d));
    EXPECT_EQ(d, 4);
    for (const char* bad : {"", "0", "37", "27X", "27LL", "L27", "270"}) EXPECT_FALSE(orbsim::ParseRunway(bad, n, d)) << bad;
}
