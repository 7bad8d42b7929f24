// fsuipc_client.h: a small FSUIPC client for what the panel table cannot
// reach (tank levels, payload, the tower view, active runways), and the four
// jobs built on it. Each job opens the link, works and closes it at once.
#pragma once

#include <array>
#include <cstdint>

// Error results of the client.
namespace FsuipcError {
constexpr uint32_t Ok = 0;
constexpr uint32_t AlreadyOpen = 1;
constexpr uint32_t NoServerWindow = 2;
constexpr uint32_t NoBuffer = 6;
constexpr uint32_t WrongVersion = 7;
constexpr uint32_t WrongSimulator = 8;
constexpr uint32_t NotOpen = 9;
constexpr uint32_t NoRequest = 10;
constexpr uint32_t SendFailed = 13;
constexpr uint32_t TooLarge = 15;
}  // namespace FsuipcError

constexpr unsigned kFsuipcMessage = 1154;        // the server's window message
constexpr int kFsuipcBufferSize = 1024;          // the module's one request buffer
constexpr uint32_t kFsuipcMaxLimit = 32512;      // the server's largest request

struct FsuipcLink {
    void* window = nullptr;                      // the "UIPCMAIN" window
    uint8_t* buffer = nullptr;                   // null: the link is closed
    uint32_t write_position = 0;                 // bytes used, marker included
    uint32_t limit = 0;
    // Read records carry a 32-bit slot number; the targets stand here.
    std::array<void*, kFsuipcBufferSize / 16> read_targets{};
    int read_target_count = 0;
};

struct FsuipcState {
    FsuipcLink link;
    std::array<uint8_t, kFsuipcBufferSize> buffer{};
    uint32_t last_error = 0;                     // kept, read by nothing
    std::array<std::array<char, 8>, 4> runway_lines{};  // MCU's active runways, "%02d%s\n"
    int runway_query_status = 0;                 // 1 asking, 2 answered
};

extern FsuipcState g_fsuipc;

// Client operations: 1 on success, 0 on failure with the code in *result.
int FsuipcOpen(uint32_t wanted_simulator, uint32_t* result, void* buffer, uint32_t size);
void FsuipcClose();
int FsuipcRead(uint32_t offset, uint32_t size, void* target, uint32_t* result);
int FsuipcWrite(uint32_t offset, uint32_t size, const void* data, uint32_t* result);
int FsuipcProcess(uint32_t* result);

// Jobs.
// The aircraft's zero fuel weight and payload, pounds, into the caller's
// fields (the flight log's); each is written only when it was read, the
// payload only when the aircraft has load stations.
void ReadInitialLoad(double& zero_fuel_weight, double& payload);
void LoadFuel(double pounds);
void SetTowerViewAt(double latitude, double longitude, double altitude_feet, const char* ident);
void ReadActiveRunways(const char* airport_ident);
