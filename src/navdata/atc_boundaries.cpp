// atc_boundaries.cpp: reading atc_bdry.txt, lines "Id Name Latitude
// Longitude", into the boundary table. The points of one area stand on
// consecutive lines of one Id; any other line between them (a comment
// included) ends the area, and the same Id after it opens a new row. The
// table's size is the limit: rows past 400 and points past 800 are dropped.
#include "navdata/atc_boundaries.h"

#include "frame/data_text.h"
#include "frame/module_state.h"

#include <algorithm>

AtcBoundaryTable g_atc_boundaries;

namespace {
constexpr const char* kAtcBoundaryFile = "\\orb\\navdata\\atc_bdry.txt";
constexpr int kAtcColumns = 4;                   // Id, Name, Latitude, Longitude
// The areas so wide that their first point may lie far from where they are seen.
constexpr std::string_view kWideAreas[] = {"YM00142", "YB00001", "NZ00084"};

// The bounds of the row being read; the name goes to their middle.
struct Bounds {
    double min_longitude = 200;                  // degrees
    double max_longitude = -190;
    double min_latitude = 100;
    double max_latitude = -100;
};

void CloseRow(AtcBoundary& row, const Bounds& b) {
    row.Centre.Latitude = b.max_latitude - (b.max_latitude - b.min_latitude) * 0.5;
    row.Centre.Longitude = b.max_longitude - (b.max_longitude - b.min_longitude) * 0.5;
    if (b.max_longitude > 0 && b.min_longitude < 0) row.Centre.Longitude = kAtcNameAcrossDateLine;
}
}  // namespace

bool AtcBoundaryInReach(const AtcBoundary& row, double distance_nm) {
    std::string_view id = TextOf(row.Id);
    bool wide = std::find(std::begin(kWideAreas), std::end(kWideAreas), id) != std::end(kWideAreas);
    return wide ? distance_nm < kAtcBoundaryWideReachNm : distance_nm <= kAtcBoundaryReachNm;
}

void LoadAtcBoundaries() {
    // 1. An empty table, no previous Id yet.
    AtcBoundaryTable& table = g_atc_boundaries;
    table.count = 0;
    table.AtcBoundariesLoaded = 1;
    char path[MAX_PATH];
    DataPath(kAtcBoundaryFile, path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return;

    std::array<char, 16> previous{};
    SetText(previous, "INIT");
    Bounds bounds;
    AtcBoundary* row = nullptr;  // the row being filled; null when the table is full
    char line[kAtcBoundaryLineSize];
    size_t length = 0;
    while (reader.Next(line, sizeof line, length)) {
        std::string_view text(line, length);
        std::array<std::string_view, kAtcColumns> c{};
        if (SplitColumns(text, c.data(), kAtcColumns) < 1) continue;  // a blank line carries no Id
        bool comment = text[0] == ';';
        // 2-3. A new Id (not a comment) closes the row and opens the next.
        if (!comment && TextOf(previous) != c[0].substr(0, previous.size() - 1)) {
            if (row != nullptr) CloseRow(*row, bounds);
            row = nullptr;
            if (table.count < kAtcBoundaryRows) {
                row = &table.rows[static_cast<size_t>(++table.count)];
                *row = AtcBoundary{};
                SetText(row->Id, c[0]);
                SetText(row->Name, c[1]);
            }
            bounds = Bounds{};
        }
        // 4. The point, within the row's limit, widening the bounds.
        if (!comment && row != nullptr && row->PointCount < kAtcBoundaryPoints) {
            AtcBoundaryPoint& p = row->Points[static_cast<size_t>(++row->PointCount)];
            p.Latitude = ReadNumber(c[2]);
            p.Longitude = ReadNumber(c[3]);
            bounds.min_latitude = std::min(bounds.min_latitude, p.Latitude);
            bounds.max_latitude = std::max(bounds.max_latitude, p.Latitude);
            bounds.min_longitude = std::min(bounds.min_longitude, p.Longitude);
            bounds.max_longitude = std::max(bounds.max_longitude, p.Longitude);
        }
        // Every line's first word, a comment's too, is the previous Id.
        SetText(previous, c[0]);
    }
    // 5. The last row.
    if (row != nullptr) CloseRow(*row, bounds);
    reader.file.Close();
}
