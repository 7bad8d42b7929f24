// fsuipc_server.cpp: one request at a time, records walked in order, every
// record checked against the length the client gave.
//
// Index:
//   [SECTION] Offsets the server knows
//   [SECTION] Refresh from the aircraft
//   [SECTION] Writes that act
//   [SECTION] The message
#include "fsuipc_server.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orbsim {

// [SECTION] Offsets the server knows
namespace {
constexpr uint32_t kVersionOffset = 0x3304;
constexpr uint32_t kSignatureOffset = 0x3308;
constexpr uint32_t kLibraryOffset = 0x330A;
constexpr uint32_t kZeroFuelWeight = 0x3BFC;        // 1/256 pounds
constexpr uint32_t kStationCount = 0x13FC;
constexpr uint32_t kStationWeights = 0x1400;        // doubles, 48 bytes a station
constexpr uint32_t kStationStride = 48;
constexpr uint32_t kTowerLat = 0x0D50, kTowerLon = 0x0D58, kTowerAlt = 0x0D60, kTowerEnd = 0x0D68;
constexpr uint32_t kRunwayRequest = 0xD000, kRunwayAirport = 0xD004, kRunwayStatus = 0xD008;
constexpr uint32_t kRunwayWords = 0xD00C;
constexpr double kLatScale = 477302101697422.25;    // degrees to the 64-bit latitude
constexpr double kLonScale = 51240955760304310.0;   // degrees to the 64-bit longitude
constexpr double kAltScale = 0.31;                  // feet to the high word of the altitude

// Level offset of each tank; its capacity in gallons follows 4 bytes on.
constexpr uint32_t kTankOffsets[kTankCount] = {0x0B74, 0x0B7C, 0x0B84, 0x0B8C, 0x0B94, 0x0B9C, 0x0BA4};

void Put(FsuipcServer& s, uint32_t offset, const void* data, uint32_t size) {
    if (offset >= kFsuipcOffsetSpace || size > kFsuipcOffsetSpace - offset) return;
    std::memcpy(s.memory.data() + offset, data, size);
}
void PutU32(FsuipcServer& s, uint32_t offset, uint32_t value) { Put(s, offset, &value, 4); }
void PutF64(FsuipcServer& s, uint32_t offset, double value) { Put(s, offset, &value, 8); }

bool Touches(uint32_t offset, uint32_t size, uint32_t first, uint32_t end) {
    return offset < end && static_cast<uint64_t>(offset) + size > first;
}
}  // namespace

uint64_t FsuipcPeek(const FsuipcServer& server, uint32_t offset, uint32_t size) {
    if (size == 0 || size > 8 || offset >= kFsuipcOffsetSpace || size > kFsuipcOffsetSpace - offset) return 0;
    uint64_t value = 0;
    for (uint32_t i = 0; i < size; ++i) value |= static_cast<uint64_t>(server.memory[offset + i]) << (8 * i);
    return value;
}

bool ParseRunway(const char* text, uint8_t& number, uint8_t& designator) {
    if (text == nullptr || text[0] < '0' || text[0] > '9') return false;
    int n = 0, digits = 0;
    while (text[digits] >= '0' && text[digits] <= '9' && digits < 2) n = n * 10 + (text[digits++] - '0');
    if (n < 1 || n > 36) return false;
    const char* rest = text + digits;
    designator = 0;
    if (*rest != 0) {
        static constexpr char kLetters[] = {'L', 'R', 'C', 'W'};
        char c = *rest >= 'a' && *rest <= 'z' ? static_cast<char>(*rest - 32) : *rest;
        for (int i = 0; i < 4; ++i)
            if (c == kLetters[i]) designator = static_cast<uint8_t>(i + 1);
        if (designator == 0 || rest[1] != 0) return false;
    }
    number = static_cast<uint8_t>(n);
    return true;
}

// [SECTION] Refresh from the aircraft
namespace {
void Refresh(FsuipcServer& s, const AircraftModel& a) {
    PutU32(s, kVersionOffset, s.version);
    // The signature word overlaps the library word at 0x330A; the client
    // reads it before it writes there.
    PutU32(s, kSignatureOffset, (kFsuipcSignature << 16) | (s.simulator & 0xFFFF));
    PutU32(s, kZeroFuelWeight, static_cast<uint32_t>(static_cast<int32_t>(std::lround(a.zfw * 256.0))));
    uint32_t stations = static_cast<uint32_t>(std::min<size_t>(a.payload.size(), kMaxStations));
    PutU32(s, kStationCount, stations);
    for (uint32_t k = 0; k < stations; ++k) PutF64(s, kStationWeights + kStationStride * k, a.payload[k]);
    for (int t = 0; t < kTankCount; ++t) {
        double capacity = a.tank_capacity[t];
        double level = capacity > 0 ? a.tank[t] / capacity * kFullTankLevel : 0;
        PutU32(s, kTankOffsets[t], static_cast<uint32_t>(std::lround(std::clamp(level, 0.0, kFullTankLevel))));
        PutU32(s, kTankOffsets[t] + 4, static_cast<uint32_t>(std::lround(capacity)));
    }
}

// [SECTION] Writes that act
void ActOnWrite(FsuipcServer& s, AircraftModel& a, uint32_t offset, uint32_t size) {
    if (Touches(offset, size, kLibraryOffset, kLibraryOffset + 2))
        s.client_library = static_cast<uint32_t>(FsuipcPeek(s, kLibraryOffset, 2));
    for (int t = 0; t < kTankCount; ++t) {
        if (!Touches(offset, size, kTankOffsets[t], kTankOffsets[t] + 4)) continue;
        double level = static_cast<double>(FsuipcPeek(s, kTankOffsets[t], 4));
        a.tank[t] = a.tank_capacity[t] * std::clamp(level / kFullTankLevel, 0.0, 1.0);
    }
    if (Touches(offset, size, kTowerLat, kTowerEnd)) {
        auto lat = static_cast<int64_t>(FsuipcPeek(s, kTowerLat, 8));
        auto lon = static_cast<int64_t>(FsuipcPeek(s, kTowerLon, 8));
        auto alt_high = static_cast<int32_t>(FsuipcPeek(s, kTowerAlt + 4, 4));
        s.tower_lat = static_cast<double>(lat) / kLatScale;
        s.tower_lon = static_cast<double>(lon) / kLonScale;
        s.tower_alt = alt_high / kAltScale;
        ++s.tower_writes;
    }
    if (Touches(offset, size, kRunwayRequest, kRunwayRequest + 4)) {
        uint32_t request = static_cast<uint32_t>(FsuipcPeek(s, kRunwayRequest, 4));
        uint32_t words[2] = {0, 0};
        uint32_t status = 0;
        if (request == kFsuipcRunwayRequest) {
            ++s.query_rounds;
            char ident[5] = {};
            for (int i = 0; i < 4; ++i) ident[i] = static_cast<char>(s.memory[kRunwayAirport + i]);
            status = 1;  // asking
            if (s.query_rounds >= s.answer_after) {
                for (const RunwayAnswer& answer : s.runways)
                    if (std::strncmp(answer.airport, ident, 4) == 0) {
                        words[0] = answer.words[0];
                        words[1] = answer.words[1];
                        status = 2;  // answered
                    }
            }
        } else {
            s.query_rounds = 0;
        }
        PutU32(s, kRunwayStatus, status);
        PutU32(s, kRunwayWords, words[0]);
        PutU32(s, kRunwayWords + 4, words[1]);
    }
}
}  // namespace

// [SECTION] The message
intptr_t HandleFsuipcMessage(FsuipcServer& s, AircraftModel& a, uintptr_t wparam, intptr_t lparam) {
    constexpr uint32_t kMarker = 4;
    constexpr uint32_t kRead = 1, kWrite = 2;
    auto* buffer = reinterpret_cast<uint8_t*>(lparam);
    // The client's length excludes the marker; the end word follows it.
    if (buffer == nullptr || wparam == 0 || wparam > kFsuipcRequestLimit - 2 * kMarker) {
        ++s.rejected;
        return 0;
    }
    uint32_t used = static_cast<uint32_t>(wparam) + kMarker;
    uint32_t marker;
    std::memcpy(&marker, buffer, 4);
    if (marker == 0) {
        ++s.rejected;
        return 0;
    }
    // A first pass checks the whole request, so a bad record changes nothing.
    auto word = [&](uint32_t at) {
        uint32_t v;
        std::memcpy(&v, buffer + at, 4);
        return v;
    };
    for (uint32_t at = kMarker; at + 4 <= used;) {
        uint32_t type = word(at);
        if (type == 0) break;
        uint32_t header = type == kRead ? 16 : (type == kWrite ? 12 : 0);
        if (header == 0 || at + header > used || word(at + 8) > used - at - header) {
            ++s.rejected;
            return 0;
        }
        at += header + word(at + 8);
    }
    Refresh(s, a);
    for (uint32_t at = kMarker; at + 4 <= used;) {
        uint32_t type = word(at);
        if (type == 0) break;
        uint32_t offset = word(at + 4), size = word(at + 8);
        bool inside = offset < kFsuipcOffsetSpace && size <= kFsuipcOffsetSpace - offset;
        if (type == kRead) {
            uint8_t* target = buffer + at + 16;
            if (inside) std::memcpy(target, s.memory.data() + offset, size);
            else std::memset(target, 0, size);
            ++s.reads;
            at += 16 + size;
        } else {
            if (inside) {
                std::memcpy(s.memory.data() + offset, buffer + at + 12, size);
                ActOnWrite(s, a, offset, size);
            }
            ++s.writes;
            at += 12 + size;
        }
    }
    ++s.requests;
    return 1;
}

}  // namespace orbsim
