// The FSUIPC client against a fake server: every error code, the buffer
// limits, answers copied back, and the four jobs built on the client.
#include "flightlog/flight_log.h"
#include "frame/diagnostic_log.h"
#include "frame/fsuipc_client.h"
#include "frame/sim_access.h"
#include "support/fake_panels.h"

#include "../../platform/host_link.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {
// The server: a byte-addressed offset space. Writes land in it; reads are
// answered from it, as the real server does in the simulator's process.
struct FakeServer {
    bool present = true;
    intptr_t reply = 1;
    std::map<uint32_t, uint8_t> memory;
    int messages = 0;
    std::vector<uint32_t> written_offsets;
    // Called after each write record, so a test can play a server that
    // answers a request word later.
    int rounds_until_runways = 0;
    uint32_t signature = 0xFADE0008u;           // FSX is simulator 8

    void Put(uint32_t offset, const void* data, uint32_t size) {
        for (uint32_t i = 0; i < size; ++i) memory[offset + i] = static_cast<const uint8_t*>(data)[i];
    }
    template <typename T>
    void PutValue(uint32_t offset, T value) { Put(offset, &value, sizeof value); }
    template <typename T>
    T Get(uint32_t offset) {
        T value;
        auto* bytes = reinterpret_cast<uint8_t*>(&value);
        for (uint32_t i = 0; i < sizeof value; ++i) bytes[i] = memory[offset + i];
        return value;
    }
};
FakeServer* g_server = nullptr;
char g_window;

void* FindWindow(const char* class_name, const char*) {
    return g_server && g_server->present && std::strcmp(class_name, "UIPCMAIN") == 0 ? &g_window : nullptr;
}

intptr_t SendMessage(void* window, unsigned message, uintptr_t wparam, intptr_t lparam) {
    if (window != &g_window || message != kFsuipcMessage || g_server == nullptr) return 0;
    ++g_server->messages;
    auto* buffer = reinterpret_cast<uint8_t*>(lparam);
    uint32_t end = static_cast<uint32_t>(wparam) + 4;
    uint32_t at = 4;
    while (at + 4 <= end) {
        uint32_t type, offset, size;
        std::memcpy(&type, buffer + at, 4);
        if (type == 0) break;
        std::memcpy(&offset, buffer + at + 4, 4);
        std::memcpy(&size, buffer + at + 8, 4);
        if (type == 1) {
            if (offset == 0xD00C && g_server->rounds_until_runways > 0) --g_server->rounds_until_runways;
            bool hold_back = offset == 0xD00C && g_server->rounds_until_runways > 0;
            for (uint32_t i = 0; i < size; ++i) buffer[at + 16 + i] = hold_back ? 0 : g_server->memory[offset + i];
            // The signature word is read-only: the client's library number
            // written at 0x330A lands elsewhere in the real server.
            if (offset == 0x3308 && size == 4) std::memcpy(buffer + at + 16, &g_server->signature, 4);
            at += 16 + size;
        } else if (type == 2) {
            g_server->Put(offset, buffer + at + 12, size);
            g_server->written_offsets.push_back(offset);
            at += 12 + size;
        } else {
            break;
        }
    }
    return g_server->reply;
}

const OrbHostInterface kHost = {1, FindWindow, SendMessage, nullptr, nullptr, nullptr, nullptr};

class FsuipcTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_fsuipc = {};
        server.PutValue<uint32_t>(0x3304, 0x19980005u);
        g_server = &server;
        platform::SetHostForTesting(&kHost);
    }
    void TearDown() override {
        FsuipcClose();
        g_server = nullptr;
        platform::SetHostForTesting(nullptr);
    }
    FakeServer server;
    std::vector<uint8_t> buffer = std::vector<uint8_t>(1024);
};
}  // namespace

TEST_F(FsuipcTest, OpenChecksBufferWindowVersionAndSimulator) {
    uint32_t result = 99;
    EXPECT_EQ(FsuipcOpen(0, &result, nullptr, 1024), 0);
    EXPECT_EQ(result, FsuipcError::NoBuffer);
    EXPECT_EQ(FsuipcOpen(0, &result, buffer.data(), 31), 0);
    EXPECT_EQ(result, FsuipcError::NoBuffer);

    server.present = false;
    EXPECT_EQ(FsuipcOpen(0, &result, buffer.data(), 1024), 0);
    EXPECT_EQ(result, FsuipcError::NoServerWindow);
    server.present = true;

    ASSERT_EQ(FsuipcOpen(8, &result, buffer.data(), 1024), 1);
    EXPECT_EQ(result, FsuipcError::Ok);
    EXPECT_EQ(server.Get<uint16_t>(0x330A), 0x04B0);  // our library number went out
    EXPECT_EQ(FsuipcOpen(0, &result, buffer.data(), 1024), 0);
    EXPECT_EQ(result, FsuipcError::AlreadyOpen);
    FsuipcClose();

    EXPECT_EQ(FsuipcOpen(7, &result, buffer.data(), 1024), 0);
    EXPECT_EQ(result, FsuipcError::WrongSimulator);
    EXPECT_EQ(g_fsuipc.link.buffer, nullptr);  // closed again

    server.PutValue<uint32_t>(0x3304, 0x19980004u);
    EXPECT_EQ(FsuipcOpen(0, &result, buffer.data(), 1024), 0);
    EXPECT_EQ(result, FsuipcError::WrongVersion);
    server.PutValue<uint32_t>(0x3304, 0x19980005u);
    server.signature = 0xBEEF0008u;
    EXPECT_EQ(FsuipcOpen(0, &result, buffer.data(), 1024), 0);
    EXPECT_EQ(result, FsuipcError::WrongVersion);
}

TEST_F(FsuipcTest, ProcessNeedsALinkARequestAndTheServersYes) {
    uint32_t result = 0;
    uint32_t value = 0;
    EXPECT_EQ(FsuipcRead(0x3BFC, 4, &value, &result), 0);
    EXPECT_EQ(result, FsuipcError::NotOpen);
    EXPECT_EQ(FsuipcProcess(&result), 0);
    EXPECT_EQ(result, FsuipcError::NotOpen);

    ASSERT_EQ(FsuipcOpen(0, &result, buffer.data(), 1024), 1);
    EXPECT_EQ(FsuipcProcess(&result), 0);
    EXPECT_EQ(result, FsuipcError::NoRequest);

    // A refusal copies no answers and resets the request.
    server.PutValue<uint32_t>(0x3BFC, 12345);
    server.reply = 0;
    value = 7;
    FsuipcRead(0x3BFC, 4, &value, &result);
    EXPECT_EQ(FsuipcProcess(&result), 0);
    EXPECT_EQ(result, FsuipcError::SendFailed);
    EXPECT_EQ(value, 7u);
    EXPECT_EQ(g_fsuipc.link.write_position, 4u);

    // Accepted: reads of several sizes come back to their targets in order.
    server.reply = 1;
    uint16_t small = 0;
    double weight = 0;
    server.PutValue<uint16_t>(0x0200, 0xBEEF);
    server.PutValue<double>(0x1400, 175.5);
    FsuipcRead(0x3BFC, 4, &value, &result);
    uint32_t level = 0x400000;
    FsuipcWrite(0x0B74, 4, &level, &result);
    FsuipcRead(0x0200, 2, &small, &result);
    FsuipcRead(0x1400, 8, &weight, &result);
    ASSERT_EQ(FsuipcProcess(&result), 1);
    EXPECT_EQ(value, 12345u);
    EXPECT_EQ(small, 0xBEEF);
    EXPECT_EQ(weight, 175.5);
    EXPECT_EQ(server.Get<uint32_t>(0x0B74), 0x400000u);
    // A read with a null target is skipped quietly.
    FsuipcRead(0x3BFC, 4, nullptr, &result);
    EXPECT_EQ(FsuipcProcess(&result), 1);
}

TEST_F(FsuipcTest, RecordsThatCrossTheLimitFailAndKeepTheEarlierOnes) {
    uint32_t result = 0;
    std::vector<uint8_t> small_buffer(64);
    ASSERT_EQ(FsuipcOpen(0, &result, small_buffer.data(), 64), 1);
    // Used 4; a write needs used + size + 20 within 64: 40 bytes fit exactly.
    std::vector<uint8_t> data(41, 0xAB);
    EXPECT_EQ(FsuipcWrite(0x5000, 41, data.data(), &result), 0);
    EXPECT_EQ(result, FsuipcError::TooLarge);
    EXPECT_EQ(FsuipcWrite(0x5000, 40, data.data(), &result), 1);
    EXPECT_EQ(FsuipcWrite(0x6000, 1, data.data(), &result), 0);
    EXPECT_EQ(result, FsuipcError::TooLarge);
    ASSERT_EQ(FsuipcProcess(&result), 1);
    EXPECT_EQ(server.Get<uint8_t>(0x5000 + 39), 0xAB);
    EXPECT_EQ(server.memory.count(0x6000), 0u);
    // A read needs used + size + 24.
    uint8_t target[40];
    EXPECT_EQ(FsuipcRead(0x5000, 37, target, &result), 0);
    EXPECT_EQ(FsuipcRead(0x5000, 36, target, &result), 1);
}

TEST_F(FsuipcTest, JobsEndAtOnceWithoutAServer) {
    FakeSimulatorScope scope;
    server.present = false;
    g_flight_log = {};
    ReadInitialLoad(g_flight_log.zero_fuel_weight, g_flight_log.payload);
    g_events.count = 0;
    LoadFuel(10000);
    ReadActiveRunways("KSEA");
    EXPECT_EQ(server.messages, 0);
    EXPECT_EQ(g_events.count, 0);  // nothing loaded, nothing to tell
    EXPECT_EQ(g_fsuipc.last_error, FsuipcError::NoServerWindow);
    EXPECT_EQ(g_flight_log.zero_fuel_weight, 0);
    EXPECT_EQ(g_fsuipc.link.buffer, nullptr);
}

TEST_F(FsuipcTest, InitialLoadReadsZeroFuelWeightAndEveryStation) {
    g_flight_log = {};
    g_flight_log.payload = 42;
    server.PutValue<int32_t>(0x3BFC, 90000 * 256);
    server.PutValue<int32_t>(0x13FC, 0);
    ReadInitialLoad(g_flight_log.zero_fuel_weight, g_flight_log.payload);
    EXPECT_EQ(g_flight_log.zero_fuel_weight, 90000);
    EXPECT_EQ(g_flight_log.payload, 42);  // no stations: payload left as it was

    server.PutValue<int32_t>(0x13FC, 45);
    for (int k = 0; k < 45; ++k) server.PutValue<double>(0x1400 + 48 * k, 100.0 + k);
    ReadInitialLoad(g_flight_log.zero_fuel_weight, g_flight_log.payload);
    EXPECT_DOUBLE_EQ(g_flight_log.payload, 45 * 100.0 + 44 * 45 / 2.0);
    EXPECT_EQ(g_fsuipc.link.buffer, nullptr);
}

TEST_F(FsuipcTest, FuelFillsMainsThenCentreThenAuxThenTips) {
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[Token::FUEL_POUNDS_PER_GALLON] = 6.0;
    t[Token::FUEL_CAP_LEFT_MAIN] = 1000;
    t[Token::FUEL_CAP_RIGHT_MAIN] = 1000;      // mains: 12000 lb
    t[Token::FUEL_CAP_CENTER] = 2000;          // centre: 12000 lb
    t[Token::FUEL_CAP_LEFT_AUX] = 0;
    t[Token::FUEL_CAP_RIGHT_AUX] = 0;
    t[Token::FUEL_CAP_LEFT_TIP] = 100;
    t[Token::FUEL_CAP_RIGHT_TIP] = 100;        // tips: 1200 lb
    g_events.count = 0;
    LoadFuel(18000);
    ASSERT_EQ(g_events.count, 1);
    EXPECT_STREQ(g_events.texts[0].data(), "FUEL ' 18000' loaded");
    EXPECT_EQ(server.Get<uint32_t>(0x0B7C), 0x800000u);
    EXPECT_EQ(server.Get<uint32_t>(0x0B94), 0x800000u);
    EXPECT_EQ(server.Get<uint32_t>(0x0B74), static_cast<uint32_t>(6000.0 / 12000.0 * 8388608.0));
    EXPECT_EQ(server.Get<uint32_t>(0x0B84), 0u);
    EXPECT_EQ(server.Get<uint32_t>(0x0B8C), 0u);
    EXPECT_EQ(server.Get<uint32_t>(0x0BA4), 0u);

    LoadFuel(1e9);  // more than every tank holds: all full, the rest dropped
    for (uint32_t offset : {0x0B7Cu, 0x0B94u, 0x0B74u, 0x0B8Cu, 0x0BA4u})
        EXPECT_EQ(server.Get<uint32_t>(offset), 0x800000u) << std::hex << offset;

    LoadFuel(0);
    for (uint32_t offset : {0x0B74u, 0x0B7Cu, 0x0B84u, 0x0B8Cu, 0x0B94u, 0x0B9Cu, 0x0BA4u})
        EXPECT_EQ(server.Get<uint32_t>(offset), 0u) << std::hex << offset;
}

TEST_F(FsuipcTest, TowerViewWritesScaledPosition) {
    g_events.count = 0;
    SetTowerViewAt(47.449, -122.309, 433, "KSEA");
    ASSERT_EQ(g_events.count, 1);
    EXPECT_STREQ(g_events.texts[0].data(), "TWR Pos '[KSEA]' set");
    EXPECT_EQ(server.Get<int64_t>(0x0D50), static_cast<int64_t>(47.449 * 477302101697422.25));
    EXPECT_EQ(server.Get<int64_t>(0x0D58), static_cast<int64_t>(-122.309 * 51240955760304310.0));
    EXPECT_EQ(server.Get<uint32_t>(0x0D60), 0u);
    EXPECT_EQ(server.Get<uint32_t>(0x0D64), static_cast<uint32_t>(433 * 0.31));
}

TEST_F(FsuipcTest, ActiveRunwaysArePolledUntilAnswered) {
    server.rounds_until_runways = 3;
    // 16L and 34R in the first word, 16C alone in the second.
    server.PutValue<uint32_t>(0xD00C, 16u | (1u << 8) | (34u << 16) | (2u << 24));
    server.PutValue<uint32_t>(0xD010, 16u | (3u << 8));
    ReadActiveRunways("KSEA");
    EXPECT_EQ(std::string(g_fsuipc.runway_lines[0].data()), "16L\n");
    EXPECT_EQ(std::string(g_fsuipc.runway_lines[1].data()), "34R\n");
    EXPECT_EQ(std::string(g_fsuipc.runway_lines[2].data()), "16C\n");
    EXPECT_EQ(g_fsuipc.runway_lines[3][0], 0);
    EXPECT_EQ(g_fsuipc.runway_query_status, 2);
    EXPECT_EQ(server.Get<uint32_t>(0xD000), 0u);  // request word cleared at the end
    EXPECT_EQ(server.Get<char>(0xD004), 'K');
    // The open exchange, the first ask, three rounds, the clearing.
    EXPECT_EQ(server.messages, 1 + 1 + 3 + 1);
}

TEST_F(FsuipcTest, ActiveRunwayQueryGivesUpAfterThirtyRounds) {
    server.rounds_until_runways = 1000;
    ReadActiveRunways("EGLL");
    EXPECT_EQ(server.messages, 1 + 1 + 30 + 1);
    EXPECT_EQ(g_fsuipc.runway_lines[0][0], 0);
    EXPECT_EQ(g_fsuipc.runway_query_status, 1);
}
