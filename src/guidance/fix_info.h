// fix_info.h: the two fixes of the FIX INFO page, with their radial and
// distance rows, and the arithmetic the page and the map share: where the
// aircraft stands from a fix, the point at a radial and distance from it,
// and the time and distance to that point.
//
// The records live here, below the pages and the displays, so that the map
// draws the same circles and radials the page shows.
#pragma once

#include <array>
#include <string_view>

constexpr int kFixInfoRecords = 2;             // records, chosen by the page counter
constexpr int kFixInfoRows = 3;                // radial and distance pairs a record holds
constexpr size_t kFixInfoEntryLimit = 12;      // characters of a radial/distance entry
constexpr double kFixInfoMaxDistance = 999;    // nm: a distance must stay below this
constexpr double kFixInfoMinGroundSpeed = 75;  // knots: ETA and DTG only above this

// One radial and distance row; 0 means not set for either.
struct FixInfoRow {
    double Radial = 0;                         // magnetic degrees, 1..360; 0 not set
    double Distance = 0;                       // nm; 0 not set
};

struct FixInfoRecord {
    std::array<char, 32> Name{};               // fix ident; empty = no fix
    double Latitude = 0;                       // degrees, north positive
    double Longitude = 0;                      // degrees, east positive
    std::array<char, 8> Type{};                // the candidate's kind: "I", "V", "N", "APT", "O"
    std::array<FixInfoRow, kFixInfoRows> Rows{};
};

struct FixInfoState {
    std::array<FixInfoRecord, kFixInfoRecords> Records{};  // record n is page n of FIX INFO
};

extern FixInfoState g_fix_info;

// True when a record holds a fix.
bool FixInfoHasFix(const FixInfoRecord& record);

// Where the aircraft stands from the fix: the magnetic radial from the fix
// to the aircraft (the bearing to the fix turned round, less the variation)
// and the distance in nm.
void FixRadialOfAircraft(const FixInfoRecord& record, double aircraft_latitude, double aircraft_longitude,
                         double magnetic_variation, double& radial, double& distance);

// The point at a magnetic radial and a distance from the fix.
void FixRadialPoint(const FixInfoRecord& record, double radial, double distance, double magnetic_variation,
                    double& latitude, double& longitude);

// What a row entry reads as. A radial is exactly three digits, 000 to 360;
// a distance above 0 and below 999; the text is at most 12 characters and
// reads "RRR/DDD", "RRR" or "/DDD". False for anything else.
struct FixRowEntry {
    bool has_radial = false;
    bool has_distance = false;
    double radial = 0;                         // degrees as typed (000 reads 360: north, still set)
    double distance = 0;                       // nm
};
bool ParseFixRowEntry(std::string_view text, FixRowEntry& out);

// Time and distance from the aircraft to the point of a row: false when the
// row lacks a value or the ground speed is 75 knots or less. The time is the
// Zulu clock plus the distance at the ground speed, in hours and minutes
// carried round 60 and 24.
bool FixRowEtaAndDistance(const FixInfoRecord& record, const FixInfoRow& row, double aircraft_latitude,
                          double aircraft_longitude, double magnetic_variation, double ground_speed,
                          double zulu_hour, double zulu_minute, double& eta_hour, double& eta_minute,
                          double& distance_to_go);
