// pln_reader.h: the simulator planner's .PLN files, read line by line into
// rows of ident, position and type. Two forms exist: the older INI-like one
// ("departure_id=", "waypoint.N=" lines with positions like N47* 26.90') and
// the XML one (<ATCWaypoint> elements with <WorldPosition> like
// N47° 26' 54.00"). The reader takes what each form's lines say and nothing
// else; it keeps no more than one row and survives any bytes.
#pragma once

#include <array>
#include <string_view>

constexpr size_t kPlnLineSize = 999;         // characters of a line that are read
constexpr size_t kPlnIdentSize = 24;         // an ident, as a plan row holds it

struct PlnRow {
    std::array<char, kPlnIdentSize> ident{};  // as written in the file
    double latitude = 0;                     // degrees, north positive
    double longitude = 0;                    // degrees, east positive
    std::array<char, 4> type{};              // "APT", "INT", "VOR" or "NDB"
};

struct PlnReader {
    bool departure_seen = false;             // lines before the departure line are skipped
    std::array<char, kPlnIdentSize> departure{};  // the older form's departure ident, blanks out
    int ident_field = 0;                     // older form: 0 ident first, 1 a region field first
    bool in_waypoint = false;                // XML: between <ATCWaypoint> and its end
    PlnRow pending;                          // XML: the row being gathered
    std::array<char, 4> last_type{'I', 'N', 'T'};  // XML: an unknown type word keeps the row before's
};

// True when the line completed a row, which is then in `row`.
bool ReadPlnLine(PlnReader& reader, std::string_view line, PlnRow& row);

// "N47* 26.90'" (older form) in degrees; false when it is no position.
bool ParseOlderPlnPosition(std::string_view text, double& degrees);
// "N47° 26' 54.00\"" (XML form, any degree sign bytes) in degrees, whole
// seconds kept; false when it is no position.
bool ParseXmlPlnPosition(std::string_view text, double& degrees);
