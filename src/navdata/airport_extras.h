// airport_extras.h: what apt_additional_info.txt, the parking file and
// orb_apts.txt add to an airport: right-hand circuits, the parking position,
// the destination's tower view and runway lengths. Each file is read when it
// is needed, never at start-up, and a missing file is a normal state.
//
// Sections of apt_additional_info.txt open with "[IDENT]" and end at an empty
// line, at a line that begins with "]" or at the next "[" header (both
// readers below agree on that, so no section reads its neighbour's keys).
#pragma once

#include <array>
#include <string_view>

constexpr size_t kRightPatternLineSize = 1500;   // SetAirport's line buffer, 1,499 characters
constexpr size_t kTowerViewLineSize = 200;       // SetTowerView's line buffer, 199 characters
constexpr size_t kParkingLineSize = 301;         // the parking file's line buffer, 300 characters
constexpr size_t kRunwayLengthLineSize = 1700;   // orb_apts.txt's line buffer, 1,699 characters
constexpr int kNoRunwaySelected = -999;          // the runway page's selection when none is chosen
constexpr double kTowerFallbackAboveFt = 100;    // the airport's own view stands this far above its elevation
constexpr double kTowerRunwayOffsetDeg = 15;     // a runway's view: this far right of the runway heading
constexpr double kTowerRunwayOffsetNm = 0.21;    // and this far from the threshold

struct ParkingPositionRecord {
    double Latitude = 0;                         // degrees north; 0: none
    double Longitude = 0;                        // degrees east
    double Heading = 0;                          // true degrees, 0..360 (360 stored as 0)
};

struct AirportExtrasState {
    ParkingPositionRecord ParkingPosition;       // of the airport last set, every mode but 2
    int runway_page_selection = kNoRunwaySelected;  // row of InfoAirport chosen on the runway page; -999 none
    // What the last SetTowerView wrote (the FSUIPC job gets these values).
    double tower_latitude = 0;                   // degrees
    double tower_longitude = 0;                  // degrees
    double tower_altitude = 0;                   // feet
    int tower_source = 0;                        // 0 none yet, 1 the file's section, 2 the airport, 3 the runway
};

extern AirportExtrasState g_airport_extras;

// The parking position of the airport (every SetAirport mode but 2).
void LoadParkingPosition(std::string_view ident);
// RightPattern of InfoAirport's runways from apt_additional_info.txt.
void ReadRightPatterns(std::string_view ident);
// The destination's tower view (position from apt_additional_info.txt, else
// the airport's own or the selected runway's), set through FSUIPC.
void SetTowerView();

// FindRunwayLength's outcome: the file's absence changes nothing on the page.
enum class RunwayLengthOutcome { NoFile, Found, NotFound };
struct RunwayLengthResult {
    RunwayLengthOutcome outcome = RunwayLengthOutcome::NoFile;
    std::array<char, 16> RunwayNameText{};       // the runway as the file names it
    std::array<char, 16> RunwayLengthText{};     // its length in feet, as written
};
// The runway's length from orb_apts.txt; every line of the airport is looked at.
RunwayLengthResult FindRunwayLength(std::string_view airport_ident, std::string_view runway);

// Whether a line of apt_additional_info.txt ends the section it stands in.
bool EndsAirportSection(std::string_view line);
