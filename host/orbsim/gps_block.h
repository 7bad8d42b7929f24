// gps_block.h: the simulator's GPS data block as orbsim plays it, and the
// plans the module hands to the simulator's planner, kept as they were at
// the moment of handing over (the module rewrites the same file each time).
//
// A script sets the GPS route with `gps clear` and `gps add IDENT LAT LON`;
// the module finds the block by its name through initialize_var_by_name.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orbsim {

constexpr int kMaxGpsWaypoints = 400;        // more than a plan holds, to test the module's limit
constexpr size_t kGpsBlockBytes = 256;       // the block: its header words and the array's address
constexpr size_t kMaxHandedPlanText = 1 << 16;  // bytes of a handed plan that are kept
constexpr int kMaxHandedPlans = 64;          // handed plans whose text is kept

struct GpsFix {
    std::string ident;                       // up to 8 characters reach the record
    double lat = 0;                          // degrees, north positive
    double lon = 0;                          // degrees, east positive
};

struct GpsDataBlock {
    std::array<unsigned char, kGpsBlockBytes> bytes{};  // where the module's pointer points; never moves
    std::vector<unsigned char> records;      // 64-byte waypoint records, rebuilt at each change
    std::vector<GpsFix> fixes;               // the route as the script gave it
};

// Rebuilds the records and the block's header from `fixes`.
void RebuildGpsBlock(GpsDataBlock& block);
// The record's latitude and longitude fields for a position (the block's units).
int32_t GpsLatitudeField(double lat);
int64_t GpsLongitudeField(double lon);

// Script command `gps clear|add IDENT LAT LON`: checked before the run, then run.
bool CheckGpsCommand(const std::vector<std::string>& words, std::string& error);
bool RunGpsCommand(GpsDataBlock& block, const std::vector<std::string>& words, std::string& error);

// The text of a file the module named in its own form ("C:\\..\\Orb\\Navdata\\x.pln"
// or a POSIX root with "\\" parts), matched without case; empty when missing.
std::string ReadModuleFile(const std::string& windows_path);

}  // namespace orbsim
