// traffic_source.h: orbsim playing the outside traffic gauge. Scripts place
// targets (`traffic add ID LAT LON ALT [HDG KT VS]`) that move with the
// simulated time; orbsim exports, as that gauge does, one module variable of
// type TYPE_PVOID named kTrafficSourceExport: a function that answers the
// link key with the traffic block, which orbsim refreshes as the targets and
// the aircraft move.
//
// The block's layout is the one the module reads (see docs/orbsim.md): the
// receipt word at 0, the change counter at 14, the pointer count at 44, and
// pointer slot i at 44 + 4 i on 32-bit builds or 40 + 8 i on 64-bit ones;
// each pointer leads to a 20-byte target record.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orbsim {

struct HostState;

// The export's name (48 characters) and the key it answers to (44).
constexpr const char* kTrafficSourceExport = "ext_traffic_advisory_gauge_target_block_link_v01";
constexpr const char* kTrafficSourceKey = "b3JiMSBvdXRzaWRlIHRyYWZmaWMgbGluayBrZXkgMDE=";

constexpr int kMaxTrafficTargets = 64;                // targets a script may place
constexpr double kTrafficPublishSeconds = 1.0;        // simulated seconds between refreshes
constexpr size_t kTrafficPointerWidth = sizeof(void*);
constexpr size_t TrafficSlotOffset(int i) {
    return kTrafficPointerWidth == 4 ? 44 + 4 * static_cast<size_t>(i) : 40 + 8 * static_cast<size_t>(i);
}
constexpr size_t kTrafficBlockSize = TrafficSlotOffset(kMaxTrafficTargets) + kTrafficPointerWidth;
constexpr size_t kTrafficRecordSize = 20;
// Advisory classes by closeness: resolution, traffic, proximate (else other).
constexpr double kResolutionNm = 2, kResolutionFeet = 600;
constexpr double kAdvisoryNm = 4, kAdvisoryFeet = 1200;
constexpr double kProximateNm = 6, kProximateFeet = 1200;
constexpr double kTrendFpm = 500;                     // vertical speed that counts as climbing or descending

// One placed target, as the script gave it.
struct TrafficPlacement {
    std::string id;
    double lat = 0;                     // degrees at placed_at
    double lon = 0;
    double alt = 0;                     // feet above sea level at placed_at
    double hdg = 0;                     // true track, degrees
    double kt = 0;                      // ground speed, knots
    double vs = 0;                      // feet a minute
    double placed_at = 0;               // simulated seconds when placed
};

struct TrafficSource {
    bool installed = false;             // the export is registered
    std::vector<TrafficPlacement> targets;   // at most kMaxTrafficTargets
    alignas(8) std::array<unsigned char, kTrafficBlockSize> block{};     // what the module reads
    alignas(8) std::array<std::array<unsigned char, kTrafficRecordSize>, kMaxTrafficTargets> records{};
    uint16_t sequence = 0;              // the block's change counter
    bool dirty = false;                 // targets changed since the last refresh
    double published_at = -1e9;         // simulated seconds of the last refresh
    int answers = 0;                    // link calls answered with the block
    int refusals = 0;                   // link calls with a wrong key
    int receipts = 0;                   // refreshes the module acknowledged (receipt word 0)
};

// Where a target stands at simulated time t.
void TrafficPosition(const TrafficPlacement& target, double t, double& lat, double& lon, double& alt);

// Script command `traffic ...`: checked before the run, then run.
bool CheckTrafficCommand(const std::vector<std::string>& words, std::string& error);
bool RunTrafficCommand(HostState& host, const std::vector<std::string>& words, std::string& error);
// `traffic.FIELD` of print and expect.
bool TrafficValue(const HostState& host, const std::string& field, double& value, std::string& error);
// Each frame: a new block once a simulated second, or at once after a change.
void PublishTraffic(HostState& host);

}  // namespace orbsim
