// airport_extras.cpp: the small airport files read on demand: right-hand
// circuits and tower views from apt_additional_info.txt, the parking
// position from the profile's parking file, runway lengths from orb_apts.txt.
// Every reader takes its lines through a bounded buffer and reads what isn't
// a number as 0, so any bytes in these user files are safe.
//
// Index:
//   [SECTION] Sections of apt_additional_info.txt
//   [SECTION] Parking position
//   [SECTION] Right-hand circuits
//   [SECTION] Tower view
//   [SECTION] Runway lengths
#include "navdata/airport_extras.h"

#include "frame/data_text.h"
#include "frame/fsuipc_client.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <cstring>

AirportExtrasState g_airport_extras;

namespace {
constexpr const char* kAdditionalInfoFile = "\\orb\\Navdata\\apt_additional_info.txt";
constexpr const char* kAircraftFolder = "\\orb\\Aircraft\\";
constexpr const char* kRunwayLengthFile = "\\orb\\navdata\\orb_apts.txt";
constexpr size_t kSectionHeaderSize = 32;    // "[" + ident + "]" and the terminator
constexpr int kParkingColumns = 4;           // ident, latitude, longitude, heading
constexpr int kRunwayLengthColumns = 25;     // ident, four passed over, twenty runways
constexpr int kFirstRunwayColumn = 5;        // the sixth column, counted from 0
constexpr size_t kTowerKeySize = 200;        // a key of up to 199 characters

// The first word of a line (up to a blank or tab), after leading blanks.
std::string_view FirstWord(std::string_view line) {
    std::string_view word;
    SplitColumns(line, &word, 1);
    return word;
}

// "[IDENT]" into a caller's buffer; empty when the ident doesn't fit.
std::string_view Bracketed(std::string_view ident, std::array<char, kSectionHeaderSize>& buffer) {
    if (ident.size() + 3 > buffer.size()) return {};
    buffer[0] = '[';
    std::memcpy(buffer.data() + 1, ident.data(), ident.size());
    buffer[ident.size() + 1] = ']';
    buffer[ident.size() + 2] = 0;
    return {buffer.data(), ident.size() + 2};
}
}  // namespace

// [SECTION] Sections of apt_additional_info.txt
bool EndsAirportSection(std::string_view line) {
    // An empty line, a closing "]" or the next airport's header.
    size_t i = 0;
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i == line.size()) return true;
    return line[0] == ']' || line[i] == '[';
}

// [SECTION] Parking position
void LoadParkingPosition(std::string_view ident) {
    // 1. Nothing known until the file says otherwise.
    ParkingPositionRecord& parking = g_airport_extras.ParkingPosition;
    parking = ParkingPositionRecord{};
    if (ident.empty() || g_config.ParkingFile[0] == 0) return;
    char relative[MAX_PATH];
    char path[MAX_PATH];
    CopyText(relative, sizeof relative, kAircraftFolder);
    size_t used = std::strlen(relative);
    CopyText(relative + used, sizeof relative - used, TextOf(g_config.ParkingFile));
    DataPath(relative, path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return;

    // 2. The first line of the ident gives latitude, longitude and heading.
    char line[kParkingLineSize];
    size_t length = 0;
    while (reader.Next(line, sizeof line, length)) {
        std::array<std::string_view, kParkingColumns> c{};
        if (SplitColumns(std::string_view(line, length), c.data(), kParkingColumns) < 1) continue;
        if (c[0] != ident) continue;
        parking.Latitude = ReadNumber(c[1]);
        parking.Longitude = ReadNumber(c[2]);
        parking.Heading = ReadNumber(c[3]);
        if (parking.Heading == 360) parking.Heading = 0;
        break;
    }
    reader.file.Close();
}

// [SECTION] Right-hand circuits
void ReadRightPatterns(std::string_view ident) {
    InfoAirportState& info = g_airports.InfoAirport;
    // Only a four-letter ident fills the six characters of a header.
    std::array<char, kSectionHeaderSize> header_buffer{};
    std::string_view header = Bracketed(ident, header_buffer);
    if (header.size() != 6) return;
    char path[MAX_PATH];
    DataPath(kAdditionalInfoFile, path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return;

    static char line[kRightPatternLineSize];  // 1.5 KB: kept off the stack
    size_t length = 0;
    bool inside = false;
    while (reader.Next(line, sizeof line, length)) {
        UpperCase(line, length);
        std::string_view text(line, length);
        // 1. Before the section: its header in the first six characters.
        if (!inside) {
            inside = text.substr(0, 6) == header;
            continue;
        }
        if (EndsAirportSection(text)) break;
        // 2. Inside: RWYdesignator=RIGHTPATTERN marks the runway and its "0" form.
        std::string_view word = FirstWord(text);
        if (word.substr(0, 3) != "RWY") continue;
        size_t equals = word.find('=');
        if (equals == std::string_view::npos) continue;
        std::string_view designator = word.substr(3, equals - 3);
        std::string_view value = word.substr(equals + 1);
        if (value != "RIGHTPATTERN") continue;
        int count = info.RunwayCount < 0 ? 0 : (info.RunwayCount > kRunwayLimit ? kRunwayLimit : info.RunwayCount);
        for (int i = 1; i <= count; ++i) {
            RunwayRecord& runway = info.Runways[static_cast<size_t>(i)];
            std::string_view name = TextOf(runway.Ident);
            bool padded = name.size() == designator.size() + 1 && name[0] == '0' && name.substr(1) == designator;
            if (name == designator || padded) runway.RightPattern = 1;
        }
    }
    reader.file.Close();
}

// [SECTION] Tower view
namespace {
// The airport's elevation from apts.txt, then apts_user.txt; 0 in neither.
double AirportElevation(std::string_view ident) {
    for (const char* relative : {"\\orb\\Navdata\\apts.txt", "\\orb\\Navdata\\apts_user.txt"}) {
        char path[MAX_PATH];
        DataPath(relative, path, sizeof path);
        static LineReader reader;  // 64 KB: kept off the stack
        if (!reader.Open(path)) continue;
        char line[kTowerViewLineSize];
        size_t length = 0;
        while (reader.Next(line, sizeof line, length)) {
            std::array<std::string_view, 3> c{};  // ident, name, elevation
            if (SplitColumns(std::string_view(line, length), c.data(), 3) < 1 || c[0] != ident) continue;
            reader.file.Close();
            return ReadNumber(c[2]);
        }
        reader.file.Close();
    }
    return 0;
}
}  // namespace

void SetTowerView() {
    AirportExtrasState& extras = g_airport_extras;
    int last = g_plan.context.ActiveLastRow;
    if (last < 0 || last >= kPlanRows) return;
    const PlanWaypoint& destination = g_plan.ActivePlan[static_cast<size_t>(last)];
    std::string_view ident = TextOf(destination.Ident);
    std::array<char, kSectionHeaderSize> header_buffer{};
    std::string_view header = Bracketed(ident, header_buffer);

    // 1. The destination's section: TowerViewLat, TowerViewLon, TowerViewAlt as written.
    double latitude = 0, longitude = 0, altitude = 0;
    char path[MAX_PATH];
    DataPath(kAdditionalInfoFile, path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    bool opened = reader.Open(path);
    if (opened && !header.empty()) {
        char line[kTowerViewLineSize];
        size_t length = 0;
        bool inside = false;
        while (reader.Next(line, sizeof line, length)) {
            std::string_view text(line, length);
            if (text.empty() == false && text[0] == ';') continue;
            if (!inside) {
                inside = FirstWord(text) == header;
                continue;
            }
            if (EndsAirportSection(text)) break;
            size_t equals = text.find('=');
            if (equals == std::string_view::npos) continue;
            std::string_view key = text.substr(0, equals < kTowerKeySize - 1 ? equals : kTowerKeySize - 1);
            std::string_view value = text.substr(equals + 1);
            if (key == "TowerViewLat") latitude = ReadNumber(value);
            if (key == "TowerViewLon") longitude = ReadNumber(value);
            if (key == "TowerViewAlt") altitude = ReadNumber(value);
        }
    }
    reader.file.Close();
    extras.tower_source = 1;

    // 2. No position in the file: the airport's own, or beside the selected runway.
    if (!opened || (latitude == 0 && longitude == 0)) {
        const InfoAirportState& info = g_airports.InfoAirport;
        int row = extras.runway_page_selection;
        if (row >= 1 && row <= info.RunwayCount && row <= kRunwayLimit) {
            const RunwayRecord& runway = info.Runways[static_cast<size_t>(row)];
            double bearing = runway.Heading + kTowerRunwayOffsetDeg + g_sim.magnetic_variation;
            if (bearing > 360) bearing -= 360;
            ProjectPoint(runway.Latitude, runway.Longitude, bearing, kTowerRunwayOffsetNm, latitude, longitude);
            altitude = 0;
            extras.tower_source = 3;
        } else {
            latitude = destination.Latitude;
            longitude = destination.Longitude;
            altitude = AirportElevation(ident) + kTowerFallbackAboveFt;
            extras.tower_source = 2;
        }
    }

    // 3-4. Written through FSUIPC, logged under the bracketed ident.
    extras.tower_latitude = latitude;
    extras.tower_longitude = longitude;
    extras.tower_altitude = altitude;
    char ident_text[kSectionHeaderSize];
    CopyText(ident_text, sizeof ident_text, ident);
    SetTowerViewAt(latitude, longitude, altitude, ident_text);
}

// [SECTION] Runway lengths
RunwayLengthResult FindRunwayLength(std::string_view airport_ident, std::string_view runway) {
    RunwayLengthResult result;
    char path[MAX_PATH];
    DataPath(kRunwayLengthFile, path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return result;
    result.outcome = RunwayLengthOutcome::NotFound;

    static char line[kRunwayLengthLineSize];  // 1.7 KB: kept off the stack
    size_t length = 0;
    while (reader.Next(line, sizeof line, length)) {
        // 1. Only the airport's lines; each of them is looked at.
        std::array<std::string_view, kRunwayLengthColumns> c{};
        int n = SplitColumns(std::string_view(line, length), c.data(), kRunwayLengthColumns);
        if (n < 1 || c[0] != airport_ident) continue;
        // 2-3. Runway columns: designator_length, a third part ignored; the
        // search for "_" starts at the second character.
        for (int i = kFirstRunwayColumn; i < n; ++i) {
            char column[kRunwayLengthLineSize];
            CopyText(column, sizeof column, c[static_cast<size_t>(i)]);
            int changed = 0;
            for (size_t k = 1; column[k] != 0 && changed < 2; ++k)
                if (column[k] == '_') {
                    column[k] = ' ';
                    ++changed;
                }
            std::array<std::string_view, 2> words{};
            SplitColumns(std::string_view(column, std::strlen(column)), words.data(), 2);
            if (words[0] != runway) continue;
            SetText(result.RunwayNameText, words[0]);
            SetText(result.RunwayLengthText, words[1]);
            result.outcome = RunwayLengthOutcome::Found;
            break;
        }
    }
    reader.file.Close();
    return result;
}
