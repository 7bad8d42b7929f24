// gps_block.cpp: the GPS data block orbsim hands the module, laid out as the
// module reads the simulator's: the block's length in word 0, the count of
// waypoints in word 42, the records' address in word 43 (pointer-wide here),
// and 64-byte records with latitude, longitude and ident.
#include "gps_block.h"
#include "module_paths.h"

#include "text_util.h"

#include <gps_data_block.h>


#include <cmath>
#include <cstdio>
#include <cstring>

namespace orbsim {

int32_t GpsLatitudeField(double lat) { return static_cast<int32_t>(std::llround(lat / 360.0 * kGpsLatitudeUnits)); }

int64_t GpsLongitudeField(double lon) {
    // A turn is 2^64: a longitude's share of it, as a signed whole number.
    if (lon >= 180) lon -= 360;  // half a turn east is half a turn west: the field has no room for +2^63
    long double turns = static_cast<long double>(lon) / 360.0L;
    return static_cast<int64_t>(std::llroundl(turns * 18446744073709551616.0L));
}

void RebuildGpsBlock(GpsDataBlock& block) {
    block.records.assign(block.fixes.size() * kGpsWaypointSize, 0);
    for (size_t i = 0; i < block.fixes.size(); ++i) {
        unsigned char* record = block.records.data() + i * kGpsWaypointSize;
        int32_t lat = GpsLatitudeField(block.fixes[i].lat);
        int64_t lon = GpsLongitudeField(block.fixes[i].lon);
        std::memcpy(record + kGpsLatitudeOffset, &lat, sizeof lat);
        std::memcpy(record + kGpsLongitudeOffset, &lon, sizeof lon);
        std::memcpy(record + kGpsIdentOffset, block.fixes[i].ident.data(),
                    std::min(block.fixes[i].ident.size(), kGpsWaypointSize - kGpsIdentOffset - 1));
    }
    block.bytes.fill(0);
    uint32_t length = static_cast<uint32_t>(kGpsBlockBytes);
    uint32_t count = static_cast<uint32_t>(block.fixes.size());
    const unsigned char* array = block.records.empty() ? nullptr : block.records.data();
    std::memcpy(block.bytes.data(), &length, sizeof length);
    std::memcpy(block.bytes.data() + kGpsCountOffset, &count, sizeof count);
    std::memcpy(block.bytes.data() + kGpsArrayOffset, &array, sizeof array);
}

bool CheckGpsCommand(const std::vector<std::string>& w, std::string& error) {
    if (w.size() == 2 && w[1] == "clear") return true;
    double lat = 0, lon = 0;
    if (w.size() == 5 && w[1] == "add" && !w[2].empty() && w[2].size() <= 7 && ParseNumber(w[3], lat) &&
        ParseNumber(w[4], lon) && std::fabs(lat) <= 90 && std::fabs(lon) <= 180)
        return true;
    error = "usage: gps clear | gps add IDENT LAT LON (an ident of 1 to 7 characters, degrees)";
    return false;
}

bool RunGpsCommand(GpsDataBlock& block, const std::vector<std::string>& w, std::string& error) {
    if (!CheckGpsCommand(w, error)) return false;
    if (w[1] == "clear") {
        block.fixes.clear();
    } else {
        if (static_cast<int>(block.fixes.size()) >= kMaxGpsWaypoints) {
            error = "gps add: the GPS route is full (" + std::to_string(kMaxGpsWaypoints) + " waypoints)";
            return false;
        }
        GpsFix fix;
        fix.ident = w[2];
        ParseNumber(w[3], fix.lat);
        ParseNumber(w[4], fix.lon);
        block.fixes.push_back(fix);
    }
    RebuildGpsBlock(block);
    return true;
}

std::string ReadModuleFile(const std::string& windows_path) {
    std::string resolved = PathIgnoringCase(windows_path);
    if (resolved.empty()) return {};
    std::FILE* file = std::fopen(resolved.c_str(), "rb");
    if (file == nullptr) return {};
    std::string text;
    char buffer[4096];
    size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0 && text.size() < kMaxHandedPlanText)
        text.append(buffer, std::min(n, kMaxHandedPlanText - text.size()));
    std::fclose(file);
    return text;
}

}  // namespace orbsim
