// fsuipc_client.cpp: requests are records in one static buffer, sent in one
// window message to the server, which fills the read records in place.
//
// Index:
//   [SECTION] Client operations
//   [SECTION] Jobs
#include "frame/fsuipc_client.h"

#include "frame/diagnostic_log.h"
#include "frame/sim_access.h"

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

FsuipcState g_fsuipc;

namespace {
constexpr uint32_t kReadRecord = 1;
constexpr uint32_t kWriteRecord = 2;
constexpr uint32_t kMarkerSize = 4;

void PutWord(uint8_t* at, uint32_t value) { std::memcpy(at, &value, 4); }
uint32_t GetWord(const uint8_t* at) {
    uint32_t value;
    std::memcpy(&value, at, 4);
    return value;
}

// The server only checks that the first word is set; an address inside the
// module's code is what it has always been given.
uint32_t MarkerWord() { return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(&FsuipcProcess)); }

int Fail(uint32_t code, uint32_t* result) {
    if (result) *result = code;
    g_fsuipc.last_error = code;
    return 0;
}

int Succeed(uint32_t* result) {
    if (result) *result = FsuipcError::Ok;
    return 1;
}
}  // namespace

// [SECTION] Client operations
int FsuipcOpen(uint32_t wanted_simulator, uint32_t* result, void* buffer, uint32_t size) {
    FsuipcLink& link = g_fsuipc.link;
    // 1. Already open.
    if (link.buffer != nullptr) return Fail(FsuipcError::AlreadyOpen, result);
    // 2. A buffer of at least 32 bytes.
    if (buffer == nullptr || size < 32) return Fail(FsuipcError::NoBuffer, result);
    // 3. The server's window.
    HWND window = FindWindowExA(nullptr, nullptr, "UIPCMAIN", nullptr);
    if (window == nullptr) return Fail(FsuipcError::NoServerWindow, result);
    // 4. Limits and the write position behind the marker.
    link.window = window;
    link.buffer = static_cast<uint8_t*>(buffer);
    link.limit = std::min(size, kFsuipcMaxLimit);
    link.write_position = kMarkerSize;
    link.read_target_count = 0;
    // 5. Version, signature, and our library number.
    uint32_t version = 0;
    uint32_t signature = 0;
    uint16_t library = 0x04B0;
    uint32_t ignored = 0;
    FsuipcRead(0x3304, 4, &version, &ignored);
    FsuipcRead(0x3308, 4, &signature, &ignored);
    FsuipcWrite(0x330A, 2, &library, &ignored);
    if (!FsuipcProcess(&ignored)) {
        FsuipcClose();
        return Fail(ignored, result);
    }
    // 6. and 7. A server of the right version in the right simulator.
    if (version >= 0x19980005u && (signature >> 16) == 0xFADE) {
        uint32_t simulator = signature & 0xFFFF;
        if (wanted_simulator == 0 || wanted_simulator == simulator) return Succeed(result);
        FsuipcClose();
        return Fail(FsuipcError::WrongSimulator, result);
    }
    FsuipcClose();
    return Fail(FsuipcError::WrongVersion, result);
}

void FsuipcClose() { g_fsuipc.link = {}; }

int FsuipcRead(uint32_t offset, uint32_t size, void* target, uint32_t* result) {
    FsuipcLink& link = g_fsuipc.link;
    if (link.buffer == nullptr) return Fail(FsuipcError::NotOpen, result);
    if (static_cast<uint64_t>(link.write_position) + size + 24 > link.limit) return Fail(FsuipcError::TooLarge, result);
    if (link.read_target_count >= static_cast<int>(link.read_targets.size())) return Fail(FsuipcError::TooLarge, result);
    uint8_t* record = link.buffer + link.write_position;
    link.read_targets[link.read_target_count] = target;
    PutWord(record, kReadRecord);
    PutWord(record + 4, offset);
    PutWord(record + 8, size);
    PutWord(record + 12, static_cast<uint32_t>(link.read_target_count++));
    std::memset(record + 16, 0, size);
    link.write_position += 16 + size;
    return Succeed(result);
}

int FsuipcWrite(uint32_t offset, uint32_t size, const void* data, uint32_t* result) {
    FsuipcLink& link = g_fsuipc.link;
    if (link.buffer == nullptr) return Fail(FsuipcError::NotOpen, result);
    if (static_cast<uint64_t>(link.write_position) + size + 20 > link.limit) return Fail(FsuipcError::TooLarge, result);
    uint8_t* record = link.buffer + link.write_position;
    PutWord(record, kWriteRecord);
    PutWord(record + 4, offset);
    PutWord(record + 8, size);
    if (data != nullptr) std::memcpy(record + 12, data, size);
    else std::memset(record + 12, 0, size);
    link.write_position += 12 + size;
    return Succeed(result);
}

int FsuipcProcess(uint32_t* result) {
    FsuipcLink& link = g_fsuipc.link;
    // 1. A link with at least one record.
    if (link.buffer == nullptr) return Fail(FsuipcError::NotOpen, result);
    if (link.write_position <= kMarkerSize) return Fail(FsuipcError::NoRequest, result);
    // 2. End word and marker.
    PutWord(link.buffer + link.write_position, 0);
    PutWord(link.buffer, MarkerWord());
    // 3. Send; anything but 1 is a failure and no answers are copied.
    LRESULT reply = SendMessageA(static_cast<HWND>(link.window), kFsuipcMessage,
                                 static_cast<WPARAM>(link.write_position - kMarkerSize),
                                 reinterpret_cast<LPARAM>(link.buffer));
    if (reply != 1) {
        link.write_position = kMarkerSize;
        link.read_target_count = 0;
        return Fail(FsuipcError::SendFailed, result);
    }
    // 4. Walk the records and hand out what was read.
    uint32_t at = kMarkerSize;
    while (at + 4 <= link.limit) {
        uint32_t type = GetWord(link.buffer + at);
        if (type == kReadRecord) {
            uint32_t size = GetWord(link.buffer + at + 8);
            uint32_t slot = GetWord(link.buffer + at + 12);
            if (at + 16 + static_cast<uint64_t>(size) > link.limit) break;
            if (slot < link.read_targets.size() && link.read_targets[slot] != nullptr)
                std::memcpy(link.read_targets[slot], link.buffer + at + 16, size);
            at += 16 + size;
        } else if (type == kWriteRecord) {
            at += 12 + GetWord(link.buffer + at + 8);
        } else {
            break;
        }
    }
    // 5. Ready for the next request.
    link.write_position = kMarkerSize;
    link.read_target_count = 0;
    return Succeed(result);
}

// [SECTION] Jobs
namespace {
bool OpenForJob() {
    uint32_t result = 0;
    if (FsuipcOpen(0, &result, g_fsuipc.buffer.data(), kFsuipcBufferSize)) return true;
    g_fsuipc.last_error = result;
    return false;
}
}  // namespace

void ReadInitialLoad(double& zero_fuel_weight, double& payload) {
    if (!OpenForJob()) return;
    uint32_t result = 0;
    int32_t zero_fuel_raw = 0;
    int32_t stations = 0;
    FsuipcRead(0x3BFC, 4, &zero_fuel_raw, &result);
    FsuipcRead(0x13FC, 4, &stations, &result);
    if (FsuipcProcess(&result)) {
        zero_fuel_weight = zero_fuel_raw / 256.0;
        int count = std::clamp(stations, 0, 61);
        if (count > 0) {
            std::array<double, 61> weights{};
            // The buffer takes a limited number of 8-byte records a request.
            for (int first = 0; first < count; first += 20) {
                int last = std::min(count, first + 20);
                for (int k = first; k < last; ++k)
                    FsuipcRead(0x1400 + 48 * static_cast<uint32_t>(k), 8, &weights[k], &result);
                FsuipcProcess(&result);
            }
            double sum = 0;
            for (int k = 0; k < count; ++k)
                if (std::isfinite(weights[k])) sum += weights[k];
            payload = sum;
        }
    }
    FsuipcClose();
}

void LoadFuel(double pounds) {
    if (!OpenForJob()) return;
    double per_gallon = ReadToken(Token::FUEL_POUNDS_PER_GALLON);
    struct TankGroup {
        int capacity_tokens[2];
        uint32_t offsets[2];
        int tanks;
    };
    // Mains first, then centre, aux and tips.
    const TankGroup groups[] = {
        {{Token::FUEL_CAP_LEFT_MAIN, Token::FUEL_CAP_RIGHT_MAIN}, {0x0B7C, 0x0B94}, 2},
        {{Token::FUEL_CAP_CENTER, 0}, {0x0B74, 0}, 1},
        {{Token::FUEL_CAP_LEFT_AUX, Token::FUEL_CAP_RIGHT_AUX}, {0x0B84, 0x0B9C}, 2},
        {{Token::FUEL_CAP_LEFT_TIP, Token::FUEL_CAP_RIGHT_TIP}, {0x0B8C, 0x0BA4}, 2},
    };
    double rest = std::max(0.0, pounds);
    uint32_t result = 0;
    for (const TankGroup& group : groups) {
        double capacity_gallons = 0;
        for (int t = 0; t < group.tanks; ++t) capacity_gallons += ReadToken(group.capacity_tokens[t]);
        double capacity = capacity_gallons * per_gallon;
        uint32_t level = 0;
        if (rest > 0 && capacity > 0) {
            if (rest >= capacity) {
                level = 0x800000;
                rest -= capacity;
            } else {
                level = static_cast<uint32_t>(rest / capacity * 8388608.0);
                rest = 0;
            }
        }
        for (int t = 0; t < group.tanks; ++t) FsuipcWrite(group.offsets[t], 4, &level, &result);
    }
    FsuipcProcess(&result);
    FsuipcClose();
    LogEvent("FUEL '%6.0f' loaded", pounds);
}

void SetTowerViewAt(double latitude, double longitude, double altitude_feet, const char* ident) {
    if (!OpenForJob()) return;
    auto to_int64 = [](double value) {
        if (!std::isfinite(value)) return int64_t{0};
        if (value >= 9.2233720368547748e18) return INT64_MAX;
        if (value <= -9.2233720368547758e18) return INT64_MIN;
        return static_cast<int64_t>(value);
    };
    int64_t lat = to_int64(latitude * 477302101697422.25);
    int64_t lon = to_int64(longitude * 51240955760304310.0);
    uint32_t altitude[2] = {0, static_cast<uint32_t>(static_cast<int32_t>(altitude_feet * 0.31))};
    uint32_t result = 0;
    FsuipcWrite(0x0D50, 8, &lat, &result);
    FsuipcWrite(0x0D58, 8, &lon, &result);
    FsuipcWrite(0x0D60, 8, altitude, &result);
    FsuipcProcess(&result);
    FsuipcClose();
    char bracketed[32];  // the ident as the airport's section names it: [IDENT]
    std::snprintf(bracketed, sizeof bracketed, "[%s]", ident ? ident : "");
    LogEvent("TWR Pos '%s' set", bracketed);
}

void ReadActiveRunways(const char* airport_ident) {
    if (!OpenForJob()) return;
    char ident[4] = {0, 0, 0, 0};
    for (int i = 0; airport_ident && i < 4 && airport_ident[i]; ++i) ident[i] = airport_ident[i];
    uint32_t request = 0x4BD9;
    uint32_t status = 0;
    uint32_t runways[2] = {0, 0};
    char ident_back[4] = {};
    uint32_t result = 0;
    g_fsuipc.runway_query_status = 1;
    // 1. Ask.
    FsuipcWrite(0xD004, 4, ident, &result);
    FsuipcWrite(0xD000, 4, &request, &result);
    FsuipcRead(0xD008, 4, &status, &result);
    FsuipcProcess(&result);
    // 2. Up to 30 rounds until an answer stands in 0xD00C.
    for (int round = 0; round < 30; ++round) {
        FsuipcWrite(0xD004, 4, ident, &result);
        FsuipcWrite(0xD000, 4, &request, &result);
        FsuipcRead(0xD004, 4, ident_back, &result);
        FsuipcRead(0xD008, 4, &status, &result);
        FsuipcRead(0xD00C, 4, &runways[0], &result);
        FsuipcRead(0xD010, 4, &runways[1], &result);
        if (!FsuipcProcess(&result)) break;
        if ((runways[0] & 0xFF) != 0) {
            g_fsuipc.runway_query_status = 2;
            break;
        }
    }
    // 3. Two runways a word: number and designator bytes.
    static constexpr const char* kDesignators[] = {"", "L", "R", "C", "W"};
    int line = 0;
    for (uint32_t word : runways) {
        for (int half = 0; half < 2; ++half) {
            int number = static_cast<int>((word >> (16 * half)) & 0xFF);
            int designator = static_cast<int>((word >> (16 * half + 8)) & 0xFF);
            if (number == 0) break;
            const char* letter = designator >= 1 && designator <= 4 ? kDesignators[designator] : "";
            std::snprintf(g_fsuipc.runway_lines[line].data(), g_fsuipc.runway_lines[line].size(), "%02d%s\n",
                          number, letter);
            ++line;
        }
    }
    // 4. Clear the request and close.
    uint32_t zero = 0;
    FsuipcWrite(0xD000, 4, &zero, &result);
    FsuipcProcess(&result);
    FsuipcClose();
}
