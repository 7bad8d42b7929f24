// atc_boundaries.h: the outlines of the air traffic control areas from
// atc_bdry.txt, read once at the first drawing after the maps were asked to
// show them, and the rules a map needs to draw them (which rows are near
// enough, where a name stands).
#pragma once

#include <array>
#include <string_view>

constexpr int kAtcBoundaryRows = 400;            // rows of the table, numbered from 1
constexpr int kAtcBoundaryPoints = 800;          // points a row, numbered from 1
constexpr size_t kAtcBoundaryLineSize = 150;     // the file's line buffer, 149 characters
constexpr double kAtcBoundaryReachNm = 1000;     // a row whose first point lies farther isn't drawn
constexpr double kAtcBoundaryWideReachNm = 5000; // the reach of the few very wide areas
constexpr double kAtcNameAcrossDateLine = -179.9; // a name's longitude when the points span 0 or 180

struct AtcBoundaryPoint {
    double Latitude = 0;                         // degrees north
    double Longitude = 0;                        // degrees east
};

struct AtcBoundary {
    std::array<char, 16> Id{};                   // identifier of the area, as in the file
    std::array<char, 32> Name{};                 // name shown on the map, one word
    int PointCount = 0;                          // points 1..PointCount
    AtcBoundaryPoint Centre;                     // where the name is drawn
    std::array<AtcBoundaryPoint, kAtcBoundaryPoints + 1> Points{};  // rows 1..PointCount
};

struct AtcBoundaryTable {
    std::array<AtcBoundary, kAtcBoundaryRows + 1> rows{};  // rows 1..count
    int count = 0;                               // rows in use
    int AtcBoundariesLoaded = 0;                 // 1 once the file was read (or found missing)
};

extern AtcBoundaryTable g_atc_boundaries;

// Reads "\orb\navdata\atc_bdry.txt" into the table; sets AtcBoundariesLoaded
// whether or not the file was there.
void LoadAtcBoundaries();
// Whether a row is drawn when its first point is distance_nm from the aircraft.
bool AtcBoundaryInReach(const AtcBoundary& row, double distance_nm);
