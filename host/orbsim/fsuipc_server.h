// fsuipc_server.h: the FSUIPC server that orbsim plays on window "UIPCMAIN".
//
// A request is one window message (1154) whose lParam points at the client's
// buffer: a marker word, then read records (type 1, offset, size, a word of
// the client's, size bytes to fill) and write records (type 2, offset, size,
// size bytes), then a 0 word. The server keeps a 64 KiB offset space: the
// offsets it knows are refreshed from the aircraft before each request, and
// writes to the offsets it knows act on the aircraft.
#pragma once

#include "aircraft_model.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orbsim {

constexpr unsigned kFsuipcMessageId = 1154;
constexpr uint32_t kFsuipcRequestLimit = 32512;     // the largest request the server takes
constexpr uint32_t kFsuipcOffsetSpace = 0x10000;    // offsets run 0..0xFFFF
constexpr uint32_t kFsuipcSignature = 0xFADE;
constexpr uint32_t kFsuipcRunwayRequest = 0x4BD9;   // the request word of the active-runway query
constexpr int kMaxRunwayAirports = 16;

// The active runways the server reports for one airport.
struct RunwayAnswer {
    char airport[5] = {};                            // ident, up to 4 characters
    uint32_t words[2] = {};                          // two runways a word: number, designator, number, designator
};

struct FsuipcServer {
    bool enabled = true;                             // false: no "UIPCMAIN" window
    uint64_t lookups = 0;                            // searches for the "UIPCMAIN" window, found or not
    uint32_t version = 0x35000000;                   // reported at 0x3304; 0x19980005 or later passes
    uint32_t simulator = 8;                          // reported with the signature: 7 FS2004, 8 FSX
    std::vector<uint8_t> memory = std::vector<uint8_t>(kFsuipcOffsetSpace, 0);
    uint64_t requests = 0;                           // messages answered with 1
    uint64_t rejected = 0;                           // messages refused (answered 0)
    uint64_t reads = 0, writes = 0;                  // records handled
    uint32_t client_library = 0;                     // what the client wrote at 0x330A
    // Tower view, as last written at 0x0D50..0x0D67
    int tower_writes = 0;
    double tower_lat = 0, tower_lon = 0, tower_alt = 0;  // degrees, degrees, feet
    // Active-runway query
    std::vector<RunwayAnswer> runways;               // what the server knows, at most kMaxRunwayAirports
    int answer_after = 2;                            // the query is answered from this request word on
    int query_rounds = 0;                            // request words seen since the last clear
};

// Handles one message of the client. Returns 1 when the request was taken,
// 0 when it was malformed (no answers are written then).
intptr_t HandleFsuipcMessage(FsuipcServer& server, AircraftModel& aircraft, uintptr_t wparam, intptr_t lparam);

// Parses a runway like "27L" or "9" into its number and designator byte
// (1 L, 2 R, 3 C, 4 W). False for anything else.
bool ParseRunway(const char* text, uint8_t& number, uint8_t& designator);

// Value of an offset of the server's space, little-endian, size 1..8 bytes.
uint64_t FsuipcPeek(const FsuipcServer& server, uint32_t offset, uint32_t size);

}  // namespace orbsim
