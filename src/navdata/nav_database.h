// nav_database.h: the navigation database in memory: the four bulk tables
// (airports, navaids, intersections, airway fixes) read once from the text
// files of \orb\navdata\, the candidate list of the last name search, the
// proximity subsets the maps draw from, and the loaded airports' details.
//
// The bulk tables are compact: a row holds its position, a one-letter kind
// and offsets into one string pool, so that 505,000 rows stay far below the
// address space of a 32-bit simulator. Rows are numbered from 1; row 0 is
// never filled. Whole records (NavRecord) are handed out by copy.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

// [SECTION] Limits
constexpr int kAirportLimit = 25000;         // rows of AirportTable that are filled
constexpr int kNavaidLimit = 30000;          // rows of NavaidTable
constexpr int kIntersectionLimit = 300000;   // rows of IntersectionTable
constexpr int kAirwayFixLimit = 150000;      // rows of AirwayFixTable
constexpr int kStructLimitWarning = 24998;   // airport and navaid count that writes the warning
constexpr int kCandidateLimit = 250;         // rows of CandidateList
constexpr int kNavaidIndexLimit = 74;        // entries of NavaidFirstLetterIndex
constexpr size_t kBulkLineSize = 1699;       // the bulk load's line buffer
// Bytes the string pool may take: a world database's texts take about 5 MB;
// past this a text is kept empty rather than grow the pool without end.
constexpr size_t kPoolLimit = size_t{64} << 20;
constexpr int kRunwayLimit = 22;             // runway rows of an airport
constexpr int kRunwayColumns = 20;           // runway columns read from an apts.txt line

// [SECTION] Records
// Text sizes of a whole record: longer texts are cut when copied out.
constexpr size_t kIdentSize = 32;
constexpr size_t kNameSize = 64;

// A whole record, as the candidate list and the callers see it.
struct NavRecord {
    std::array<char, kIdentSize> Ident{};
    std::array<char, kNameSize> Name{};      // airports: words joined by '_'
    double Latitude = 0;                     // degrees, north positive
    double Longitude = 0;                    // degrees, east positive
    std::array<char, 8> Kind{};              // "APT", "V", "N", "I", "O" (oceanic)
    std::array<char, 16> Frequency{};        // navaids: as in the file
    std::array<char, 24> Spare1{};           // an airway fetch keeps the airway's name here
    std::array<char, 24> Spare2{};
    std::array<char, 16> Elevation{};        // airports: feet, as in the file
};

// One bulk row. Texts are offsets into NavDatabase::pool (0 is the empty text).
struct BulkRow {
    double Latitude = 0;                     // degrees, north positive
    double Longitude = 0;                    // degrees, east positive
    uint32_t ident = 0;                      // pool offset of Ident
    uint32_t name = 0;                       // pool offset of Name
    uint32_t text = 0;                       // pool offset of Frequency (navaids) or Elevation (airports)
    uint16_t ident_length = 0;               // bytes of Ident, to reject most rows without touching the pool
    char kind = 0;                           // 'A' airport, 'V' VOR, 'N' other navaid, 'I' fix
};

enum class NavTableId { Airports, Navaids, Intersections, AirwayFixes };

struct BulkTable {
    std::vector<BulkRow> rows;               // sized limit + 2 once at load (row 0, spare row)
    int count = 0;                           // rows 1..count are filled; 0 = empty
};

struct NavaidIndexEntry {
    char letter = 0;                         // first letter of the run
    int row = 0;                             // row of NavaidTable where the run starts
};

// [SECTION] Procedure section index
// Where each airport's section of a procedure file starts, so that choosing
// an airport reads its few lines and not a world file. Built at the load;
// the reader falls back to the top of the file when the file's size changed.
enum class ProcedureFileId { Sids, SidsUser, Stars, StarsUser, Apps };
constexpr int kProcedureFileCount = 5;
constexpr size_t kSectionIdentSize = 16;     // longer idents aren't indexed (the reader scans for them)
constexpr size_t kSectionHeadScan = 64;      // bytes of a "[...]" line looked at
constexpr size_t kSectionIndexLimit = 200000;  // sections a file may index
constexpr size_t kSectionScanChunk = 1 << 20;  // bytes a read while indexing: fewer calls over tens of MB

struct ProcedureSectionEntry {
    std::array<char, kSectionIdentSize> ident{};  // the word inside the brackets
    uint64_t offset = 0;                     // byte where its "[" line starts
};

struct ProcedureSectionIndex {
    std::vector<ProcedureSectionEntry> entries;  // sorted by ident, first section of each
    uint64_t file_size = 0;                  // bytes of the file indexed
    bool built = false;                      // false: the file wasn't there at the load
};

// [SECTION] The database
struct NavDatabase {
    BulkTable AirportTable;
    BulkTable NavaidTable;
    BulkTable IntersectionTable;
    BulkTable AirwayFixTable;
    std::vector<char> pool;                  // every text of the bulk rows, NUL-terminated
    std::array<NavaidIndexEntry, kNavaidIndexLimit> NavaidFirstLetterIndex{};
    int navaid_index_count = 0;
    bool airport_warning_written = false;    // the struct-limit warnings are written once
    bool navaid_warning_written = false;
    std::array<char, 32> DatabaseCycleText{};   // "AIRAC 0613"
    std::array<char, 32> DatabaseDatesText{};   // "DEC21JAN18/07"
    std::array<ProcedureSectionIndex, kProcedureFileCount> ProcedureSections{};  // by ProcedureFileId
};

extern NavDatabase g_navdb;

// The candidate list: the result of the last name search or airway fetch.
struct CandidateList {
    std::array<NavRecord, kCandidateLimit + 1> rows{};  // rows 1..count
    int count = 0;
    int selected = 0;                        // row chosen; 0 = none
};

extern CandidateList g_candidates;

// A pilot waypoint entry between its reading (ResolveName) and its insertion
// (the plan editing names and places it).
struct PilotWaypointState {
    double PbdBearing = -1;                  // magnetic bearing of PLACEbbb/ddd; -1 none
    double PbdDistance = 0;                  // its distance, nm; 0 none
    double PbdSecondBearing = -1;            // second bearing of PLACEbbb/PLACEbbb; -1 none
    NavRecord FirstPlace;                    // that form's first place, from the first pass
};

extern PilotWaypointState g_pilot_waypoint;

// One above the highest number of ModPlan's rows named `prefix` and two
// digits (WPT01, SEA03): the number of the next pilot waypoint so named.
int NextWaypointNumber(std::string_view prefix);

// [SECTION] Airport details
struct RunwayRecord {
    std::array<char, 8> Ident{};             // designator, "04L"
    double Latitude = 0;                     // threshold, degrees
    double Longitude = 0;
    int LengthFt = 0;                        // feet
    std::array<char, 8> IlsIdent{};          // localizer ident
    std::array<char, 12> IlsFrequency{};     // "109.50"
    double Heading = 0;                      // degrees
    double IlsCourse = 0;                    // degrees; 0 = none in the file
    double ReciprocalHeading = 0;            // Heading + 180, folded below 360
    int RightPattern = 0;                    // 1: right-hand circuit
};

struct AirportDetail {
    double Latitude = 0;                     // degrees
    double Longitude = 0;
    std::array<char, 16> LatitudeText{};     // as FormatLatLon writes it
    std::array<char, 16> LongitudeText{};
    int RunwayCount = 0;
    std::array<char, kIdentSize> Ident{};
    std::array<char, kNameSize> Name{};
    std::array<RunwayRecord, kRunwayLimit + 1> Runways{};  // rows 1..RunwayCount
    int ElevationFt = 0;                     // feet, the file's elevation cut to a whole number
};

// The airport last named to SetAirport, for the runway lists.
struct InfoAirportState {
    std::array<char, 16> ElevationText{};
    std::array<char, kIdentSize> Ident{};
    std::array<RunwayRecord, kRunwayLimit + 1> Runways{};  // rows 1..RunwayCount
    int RunwayCount = 0;
    int runway_page_first_row = 1;           // runway page starts here
    int runway_page_redraw = 0;              // 1: the runway page redraws
};

struct AirportSlots {
    AirportDetail OriginAirport;
    AirportDetail DestinationAirport;
    InfoAirportState InfoAirport;
    std::array<char, 16> last_elevation_text{};  // elevation of the last airport loaded
};

extern AirportSlots g_airports;

// [SECTION] Proximity subsets
struct NearbyRecord {
    double Latitude = 0;                     // degrees
    double Longitude = 0;
    std::array<char, 12> Ident{};
    std::array<char, 4> Kind{};              // "V", "N", "I", "APT" (airports leave it empty)
    std::array<char, 12> Frequency{};
};

template <int N>
struct ProximitySubset {
    std::array<NearbyRecord, N + 1> rows{};  // rows 1..count
    int count = 0;
    double centre_latitude = 0;              // where it was last built
    double centre_longitude = 0;
    static constexpr int kLimit = N;
};

enum class SubsetId { AirportsNear600, AirportsNear180, NavaidsNear600, NavaidsNear320, FixesNear600, FixesNear200 };

struct ProximitySubsets {
    ProximitySubset<3000> AirportsNear600;
    ProximitySubset<1000> AirportsNear180;
    ProximitySubset<3000> NavaidsNear600;
    ProximitySubset<1000> NavaidsNear320;
    ProximitySubset<3000> FixesNear600;
    ProximitySubset<5000> FixesNear200;
};

extern ProximitySubsets g_nearby;

// [SECTION] Operations
// Reads the bulk tables and builds NavaidFirstLetterIndex.
void LoadNavDatabase();
// Row of the navaid of that ident and kind at the latitude's whole degree, or 0.
int FindNavaid(std::string_view ident, std::string_view kind, double latitude);
// Fills CandidateList from the tables (0 all, 1 navaids, 2 intersections,
// 3 airports), nearest first from the aircraft. Returns the count.
int ResolveName(int kind_filter, std::string_view entry);
// Slot 1 OriginAirport, 2 DestinationAirport.
void LoadAirportDetail(std::string_view ident, int slot);
// Applies the airport's line by mode 0..6.
void SetAirport(std::string_view ident, int mode);
// Rebuilds one subset around the centre.
void BuildProximitySubset(SubsetId subset, double latitude, double longitude);
// The displays' rule: outer subsets rebuilt after 200 nm, inner after 50 nm.
void UpdateProximitySubsets(double latitude, double longitude);
// "N47:26:03" / "W122:18:34"; the longitude is passed west positive.
void FormatLatLon(double latitude, double longitude_west_positive, char* lat_text, size_t lat_size,
                  char* lon_text, size_t lon_size, int unit_is_degrees);
// DatabaseCycleText and DatabaseDatesText from the ";AIRAC" line of navs.txt.
void ReadDatabaseCycle();

// [SECTION] Row access
BulkTable& TableOf(NavTableId id);
std::string_view PoolText(uint32_t offset);
std::string_view IdentOf(const BulkTable& table, int row);
std::string_view NameOf(const BulkTable& table, int row);
// The row as a whole record (Kind as text: "APT", "V", "N", "I").
void CopyRecord(const BulkTable& table, int row, NavRecord& out);

// [SECTION] Line readers, shared by the loaders, the tools and the fuzz targets.
// The columns a bulk line leaves behind; missing columns keep the line
// before's values, as the loaders do.
// A column points into the line it came from while that line's buffer
// lives; it is copied into its own storage only before the buffer is reused,
// so that complete lines cost no copy.
struct BulkColumn {
    std::array<char, kBulkLineSize> text{};
    std::string_view value;                  // the column's text, wherever it stands
};
struct BulkColumns {
    std::array<BulkColumn, 6> c{};
    // Copies every column that points into [begin, end) into its own storage.
    void Detach(const char* begin, const char* end);
};
// Reads one table's file into the table (kind decides the columns); returns
// false when the file could not be opened.
bool LoadBulkFile(const char* path, NavTableId table);
// Adds one line as the loader would. Unless line_stays, the columns kept
// are copied out of the line before it returns.
void LoadBulkLine(std::string_view line, NavTableId table, BulkColumns& columns, bool line_stays = false);
// The same for a line already split into its first columns; read_ahead when
// every column has kReadAhead readable bytes from its start.
void LoadBulkColumns(const std::string_view* columns, int count, NavTableId table, BulkColumns& kept, bool read_ahead);
// How many leading columns a table's lines use.
constexpr int BulkColumnsWanted(NavTableId table) {
    return table == NavTableId::Intersections ? 4 : table == NavTableId::Navaids ? 6 : 5;
}
// Prepares the tables for a load: counts 0, rows and pool reserved.
void ResetBulkTables(size_t pool_bytes_hint);

// [SECTION] Procedure files and their section index
// "\orb\navdata\sids.txt" and the others, by id.
const char* ProcedureFilePath(ProcedureFileId id);
// The word of a "[ICAO]" line: brackets read as blanks, its first column,
// copied into the caller's buffer.
std::string_view ProcedureSectionWord(std::string_view line, char* buffer, size_t capacity);
// The section index of one file, or of all five (the database load does this).
void BuildProcedureSectionIndex(ProcedureFileId id);
void BuildProcedureSectionIndexes();
// 1 with the offset of the airport's section, 0 when the file has none, -1
// when the index can't tell (not built, the file changed, a long ident).
int LookUpSection(ProcedureFileId id, std::string_view ident, uint64_t file_size, uint64_t& offset);
