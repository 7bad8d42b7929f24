// fix_info.cpp: the FIX INFO records and their arithmetic on the sphere.
#include "guidance/fix_info.h"

#include "guidance/geodesy.h"

#include <cmath>
#include <cstdlib>

FixInfoState g_fix_info;

namespace {
constexpr int kRadialDigits = 3;               // a radial is typed with exactly three digits
constexpr double kHighestRadial = 360;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
}  // namespace

bool FixInfoHasFix(const FixInfoRecord& record) { return record.Name[0] != 0; }

void FixRadialOfAircraft(const FixInfoRecord& record, double aircraft_latitude, double aircraft_longitude,
                         double magnetic_variation, double& radial, double& distance) {
    // 1. Bearing and distance from the aircraft to the fix.
    double bearing = 0;
    GreatCircle(aircraft_latitude, aircraft_longitude, record.Latitude, record.Longitude, distance, bearing);
    // 2. Turned round, folded below 360, made magnetic.
    double from_fix = ModuloPositive(bearing + 180, 360);
    radial = NormaliseMagnetic(from_fix - magnetic_variation);
}

void FixRadialPoint(const FixInfoRecord& record, double radial, double distance, double magnetic_variation,
                    double& latitude, double& longitude) {
    ProjectPoint(record.Latitude, record.Longitude, ModuloPositive(radial + magnetic_variation, 360), distance,
                 latitude, longitude);
}

bool ParseFixRowEntry(std::string_view text, FixRowEntry& out) {
    out = FixRowEntry{};
    // 1. Length and the parting slash.
    if (text.empty() || text.size() > kFixInfoEntryLimit) return false;
    size_t slash = text.find('/');
    std::string_view radial = slash == std::string_view::npos ? text : text.substr(0, slash);
    std::string_view distance = slash == std::string_view::npos ? std::string_view() : text.substr(slash + 1);
    if (slash != std::string_view::npos && distance.empty()) return false;
    if (radial.empty() && distance.empty()) return false;
    // 2. The radial: exactly three digits, 000 to 360.
    if (!radial.empty()) {
        if (radial.size() != kRadialDigits) return false;
        for (char c : radial)
            if (!IsDigit(c)) return false;
        int value = (radial[0] - '0') * 100 + (radial[1] - '0') * 10 + (radial[2] - '0');
        if (value > kHighestRadial) return false;
        out.has_radial = true;
        out.radial = value == 0 ? kHighestRadial : value;
    }
    // 3. The distance, read as a number: above 0 and below 999.
    if (!distance.empty()) {
        char buffer[kFixInfoEntryLimit + 1] = {};
        for (size_t i = 0; i < distance.size() && i < kFixInfoEntryLimit; ++i) buffer[i] = distance[i];
        double value = std::atof(buffer);
        if (!(value > 0 && value < kFixInfoMaxDistance)) return false;
        out.has_distance = true;
        out.distance = value;
    }
    return true;
}

bool FixRowEtaAndDistance(const FixInfoRecord& record, const FixInfoRow& row, double aircraft_latitude,
                          double aircraft_longitude, double magnetic_variation, double ground_speed,
                          double zulu_hour, double zulu_minute, double& eta_hour, double& eta_minute,
                          double& distance_to_go) {
    if (!FixInfoHasFix(record) || row.Radial <= 0 || row.Distance <= 0) return false;
    if (!(ground_speed > kFixInfoMinGroundSpeed)) return false;
    // 1. The point on the radial, and the way there.
    double latitude = 0, longitude = 0, bearing = 0;
    FixRadialPoint(record, row.Radial, row.Distance, magnetic_variation, latitude, longitude);
    GreatCircle(aircraft_latitude, aircraft_longitude, latitude, longitude, distance_to_go, bearing);
    // 2. The clock time of arrival, minutes and hours carried round.
    double minutes_ahead = distance_to_go / ground_speed * 60;
    double hours = std::floor(minutes_ahead / 60);
    double minutes = std::floor(zulu_minute + (minutes_ahead - hours * 60));
    if (!std::isfinite(minutes) || !std::isfinite(hours + zulu_hour)) return false;
    hours += zulu_hour + std::floor(minutes / 60);
    eta_minute = ModuloPositive(minutes, 60);
    eta_hour = ModuloPositive(hours, 24);
    return true;
}
