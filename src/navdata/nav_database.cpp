// nav_database.cpp: loading the bulk tables, the navaid index and lookup,
// the name search, the proximity subsets, position texts and the database
// cycle.
//
// Index
// [SECTION] State and row access
// [SECTION] Bulk load
// [SECTION] Navaid index and FindNavaid
// [SECTION] ResolveName
// [SECTION] Proximity subsets
// [SECTION] FormatLatLon and the database cycle
#include "navdata/nav_database.h"

#include "navdata/magnetic_model.h"
#include "plan/plan_tables.h"

#include "frame/diagnostic_log.h"
#include "frame/sim_state.h"
#include "frame/module_state.h"
#include "guidance/geodesy.h"
#include "frame/data_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

NavDatabase g_navdb;
CandidateList g_candidates;
PilotWaypointState g_pilot_waypoint;
ProximitySubsets g_nearby;

// [SECTION] State and row access
BulkTable& TableOf(NavTableId id) {
    switch (id) {
        case NavTableId::Airports: return g_navdb.AirportTable;
        case NavTableId::Navaids: return g_navdb.NavaidTable;
        case NavTableId::Intersections: return g_navdb.IntersectionTable;
        case NavTableId::AirwayFixes: break;
    }
    return g_navdb.AirwayFixTable;
}

static int LimitOf(NavTableId id) {
    switch (id) {
        case NavTableId::Airports: return kAirportLimit;
        case NavTableId::Navaids: return kNavaidLimit;
        case NavTableId::Intersections: return kIntersectionLimit;
        case NavTableId::AirwayFixes: break;
    }
    return kAirwayFixLimit;
}

std::string_view PoolText(uint32_t offset) {
    if (offset == 0 || offset >= g_navdb.pool.size()) return {};
    return std::string_view(g_navdb.pool.data() + offset);
}

std::string_view IdentOf(const BulkTable& table, int row) {
    if (row < 1 || row > table.count) return {};
    const BulkRow& r = table.rows[row];
    return std::string_view(g_navdb.pool.data() + r.ident, r.ident_length);
}

std::string_view NameOf(const BulkTable& table, int row) {
    if (row < 1 || row > table.count) return {};
    return PoolText(table.rows[row].name);
}

static const char* KindText(char kind) {
    switch (kind) {
        case 'A': return "APT";
        case 'V': return "V";
        case 'N': return "N";
        case 'I': return "I";
        default: return "";
    }
}

void CopyRecord(const BulkTable& table, int row, NavRecord& out) {
    out = NavRecord{};
    if (row < 1 || row > table.count) return;
    const BulkRow& r = table.rows[row];
    SetText(out.Ident, IdentOf(table, row));
    SetText(out.Name, PoolText(r.name));
    out.Latitude = r.Latitude;
    out.Longitude = r.Longitude;
    SetText(out.Kind, KindText(r.kind));
    if (r.kind == 'A')
        SetText(out.Elevation, PoolText(r.text));
    else
        SetText(out.Frequency, PoolText(r.text));
}

// [SECTION] Bulk load
void ResetBulkTables(size_t pool_bytes_hint) {
    for (NavTableId id : {NavTableId::Airports, NavTableId::Navaids, NavTableId::Intersections, NavTableId::AirwayFixes}) {
        BulkTable& table = TableOf(id);
        table.count = 0;
        // Sized once: the limit's rows, row 0 and the spare row behind them.
        if (table.rows.size() != static_cast<size_t>(LimitOf(id) + 2)) {
            table.rows.clear();
            table.rows.shrink_to_fit();
            table.rows.resize(static_cast<size_t>(LimitOf(id) + 2));
        }
    }
    g_navdb.pool.clear();
    g_navdb.pool.reserve(std::min(pool_bytes_hint, kPoolLimit - 1) + 1);
    g_navdb.pool.push_back(0);  // offset 0: the empty text
    g_navdb.airport_warning_written = false;
    g_navdb.navaid_warning_written = false;
    g_navdb.navaid_index_count = 0;
}

static uint32_t AddPoolText(std::string_view text) {
    if (text.empty()) return 0;
    std::vector<char>& pool = g_navdb.pool;
    // A pool that would pass its limit keeps the text empty.
    size_t needed = pool.size() + text.size() + 1;
    if (needed > kPoolLimit) return 0;
    // Grown here rather than by insert, so that doubling never takes it past the limit.
    if (needed > pool.capacity()) pool.reserve(std::min(kPoolLimit, std::max(needed, pool.capacity() * 2)));
    if (pool.empty()) pool.push_back(0);
    size_t offset = pool.size();
    // Appended without the zero fill a resize would do first.
    pool.insert(pool.end(), text.begin(), text.end());
    pool.push_back(0);
    return static_cast<uint32_t>(offset);
}

namespace {
// Appends a row while the table has room; returns the row or 0 when dropped.
int AppendRow(NavTableId id, std::string_view ident, std::string_view name, double latitude, double longitude, char kind,
              std::string_view text) {
    BulkTable& table = TableOf(id);
    if (table.rows.size() != static_cast<size_t>(LimitOf(id) + 2)) table.rows.resize(static_cast<size_t>(LimitOf(id) + 2));
    if (table.count >= LimitOf(id)) return 0;  // a full table drops further rows in silence
    int row = table.count + 1;
    BulkRow& r = table.rows[row];
    r = BulkRow{};
    // Idents longer than the row's length field are cut; no file has them.
    if (ident.size() > 0xFFFF) ident = ident.substr(0, 0xFFFF);
    r.ident = AddPoolText(ident);
    r.ident_length = static_cast<uint16_t>(r.ident == 0 ? 0 : ident.size());
    r.name = name == ident ? r.ident : AddPoolText(name);
    r.text = AddPoolText(text);
    r.Latitude = latitude;
    r.Longitude = longitude;
    r.kind = kind;
    table.count = row;
    return row;
}
}  // namespace

void BulkColumns::Detach(const char* begin, const char* end) {
    for (BulkColumn& column : c) {
        const char* at = column.value.data();
        if (at == nullptr || at < begin || at >= end) continue;
        size_t length = std::min(column.value.size(), column.text.size() - 1);
        std::memmove(column.text.data(), at, length);
        column.value = std::string_view(column.text.data(), length);
    }
}

void LoadBulkLine(std::string_view line, NavTableId id, BulkColumns& kept, bool line_stays) {
    struct DetachAtEnd {
        BulkColumns& kept;
        std::string_view line;
        bool stays;
        ~DetachAtEnd() {
            if (!stays) kept.Detach(line.data(), line.data() + line.size());
        }
    } detach{kept, line, line_stays};
    // A ';' as the very first character makes a comment; a blank before it doesn't.
    if (line.empty() || line[0] == ';') return;
    std::string_view columns[6];  // filled up to n by the split
    int n = SplitColumns(line, columns, BulkColumnsWanted(id));
    LoadBulkColumns(columns, n, id, kept, false);
}

void LoadBulkColumns(const std::string_view* columns, int n, NavTableId id, BulkColumns& kept, bool read_ahead) {
    if (n == 0) return;  // a blank line holds no row
    // Columns the format clears before each line; the others keep the line before's value.
    if (id == NavTableId::AirwayFixes) kept.c[2].value = {};
    if (id == NavTableId::Navaids) kept.c[5].value = {};
    for (int i = 0; i < n; ++i) kept.c[static_cast<size_t>(i)].value = columns[i];
    auto text = [&](int i) { return kept.c[static_cast<size_t>(i)].value; };
    auto number = [&](int i) { return read_ahead ? ReadNumberReadAhead(text(i)) : ReadNumber(text(i)); };

    switch (id) {
        case NavTableId::Intersections:
            AppendRow(id, text(0), text(1), number(2), number(3), 'I', {});
            break;
        case NavTableId::AirwayFixes: {
            // Three-letter navaids of an airway stay out: only names of four or more.
            std::string_view ident = text(2);
            if (ident.size() < 4) return;
            AppendRow(id, ident, ident, number(3), number(4), 'I', {});
            break;
        }
        case NavTableId::Airports: {
            int row = AppendRow(id, text(0), text(1), number(3), number(4), 'A', text(2));
            int count = g_navdb.AirportTable.count;
            if (row != 0 && count >= kStructLimitWarning && !g_navdb.airport_warning_written) {
                g_navdb.airport_warning_written = true;
                LogEvent("Apts '%d' approaching struct_limit", count);
            }
            break;
        }
        case NavTableId::Navaids: {
            char kind = text(4) == "VOR" ? 'V' : 'N';
            int row = AppendRow(id, text(0), text(1), number(2), number(3), kind, text(5));
            int count = g_navdb.NavaidTable.count;
            if (row != 0 && count >= kStructLimitWarning && !g_navdb.navaid_warning_written) {
                g_navdb.navaid_warning_written = true;
                LogEvent("Navs '%d' approaching struct_limit", count);
            }
            break;
        }
    }
}

static bool LoadBulkFileWith(const char* path, NavTableId id, BulkColumns& kept) {
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return false;  // a missing file is skipped in silence
    // Lines are read where they stand in the reader's chunk; the columns kept
    // for the next line are copied out before the chunk moves.
    const char* chunk_begin = reader.chunk.data();
    const char* chunk_end = chunk_begin + reader.chunk.size();
    std::string_view line;
    const int wanted = BulkColumnsWanted(id);
    std::string_view columns[6];  // made once: clearing it at every line cost more than the split
    for (;;) {
        // Short lines, the most of every file, are found and split in one pass.
        int n = reader.NextShortLine(line, columns, wanted);
        if (n >= 0) {
            if (!line.empty() && line[0] != ';') LoadBulkColumns(columns, n, id, kept, true);
            continue;
        }
        LineReader::Step step = reader.NextView(line, kBulkLineSize);
        if (step == LineReader::Step::End) break;
        if (step == LineReader::Step::Refill) {
            kept.Detach(chunk_begin, chunk_end);
            reader.Refill();
            continue;
        }
        LoadBulkLine(line, id, kept, true);
    }
    kept.Detach(chunk_begin, chunk_end);
    reader.file.Close();
    return true;
}

bool LoadBulkFile(const char* path, NavTableId id) {
    static BulkColumns kept;  // 10 KB: kept off the stack
    kept = BulkColumns{};
    return LoadBulkFileWith(path, id, kept);
}

static size_t FileBytes(const char* relative) {
    char path[MAX_PATH];
    DataPath(relative, path, sizeof path);
    uint64_t bytes = DataFileBytes(path);
    return bytes < kPoolLimit ? static_cast<size_t>(bytes) : kPoolLimit;
}

void NavaidIndexBuild();

void LoadNavDatabase() {
    // The magnetic model's text is put in place before anything asks for a variation.
    StoreMagneticCoefficients();
    struct Pair {
        NavTableId table;
        const char* main;
        const char* user;
    };
    // The order of reading: intersections, airway fixes, airports, navaids.
    static constexpr Pair kPairs[] = {
        {NavTableId::Intersections, "\\orb\\navdata\\ints.txt", "\\orb\\navdata\\ints_user.txt"},
        {NavTableId::AirwayFixes, "\\orb\\navdata\\awys.txt", "\\orb\\navdata\\awys_user.txt"},
        {NavTableId::Airports, "\\orb\\navdata\\apts.txt", "\\orb\\navdata\\apts_user.txt"},
        {NavTableId::Navaids, "\\orb\\navdata\\navs.txt", "\\orb\\navdata\\navs_user.txt"},
    };
    // The magnetic model keeps its own coefficient text; nothing to store here.
    // The pool is reserved once from the files' sizes (the texts kept are a
    // part of them), and trimmed to what was used at the end.
    size_t bytes = 0;
    for (const Pair& p : kPairs) bytes += FileBytes(p.main) + FileBytes(p.user);
    ResetBulkTables(bytes / 2);

    static BulkColumns kept;  // 10 KB: kept off the stack
    for (const Pair& p : kPairs) {
        kept = BulkColumns{};  // the main file and its overlay share the columns kept
        char path[MAX_PATH];
        DataPath(p.main, path, sizeof path);
        LoadBulkFileWith(path, p.table, kept);
        DataPath(p.user, path, sizeof path);
        LoadBulkFileWith(path, p.table, kept);
    }
    g_navdb.pool.shrink_to_fit();
    NavaidIndexBuild();
    // Procedures are read per airport; their files are only indexed here.
    BuildProcedureSectionIndexes();
}

// [SECTION] Navaid index and FindNavaid
void NavaidIndexBuild() {
    const BulkTable& table = g_navdb.NavaidTable;
    g_navdb.navaid_index_count = 0;
    if (table.count < 1) return;
    auto first_letter = [&](int row) {
        std::string_view ident = IdentOf(table, row);
        return ident.empty() ? '\0' : ident[0];
    };
    g_navdb.NavaidFirstLetterIndex[0] = {first_letter(1), 1};
    g_navdb.navaid_index_count = 1;
    for (int row = 2; row <= table.count; ++row) {
        char letter = first_letter(row);
        if (letter == g_navdb.NavaidFirstLetterIndex[g_navdb.navaid_index_count - 1].letter) continue;
        if (g_navdb.navaid_index_count >= kNavaidIndexLimit) break;
        g_navdb.NavaidFirstLetterIndex[g_navdb.navaid_index_count++] = {letter, row};
    }
}

static int WholeDegrees(double value) {
    if (!std::isfinite(value) || std::fabs(value) > 1e9) return 0;
    return static_cast<int>(value);  // cut toward zero
}

int FindNavaid(std::string_view ident, std::string_view kind, double latitude) {
    const BulkTable& table = g_navdb.NavaidTable;
    if (ident.empty()) return 0;
    // 1. The run of the ident's first letter.
    int start = 0;
    for (int i = 0; i < g_navdb.navaid_index_count; ++i) {
        if (g_navdb.NavaidFirstLetterIndex[i].letter == ident[0]) {
            start = g_navdb.NavaidFirstLetterIndex[i].row;
            break;
        }
    }
    if (start == 0) return 0;
    bool any_kind = kind.empty() || kind == "INT";
    int degrees = WholeDegrees(latitude);
    // 2. Walk while the first letter holds.
    for (int row = start; row <= table.count; ++row) {
        std::string_view row_ident = IdentOf(table, row);
        if (row_ident.empty() || row_ident[0] != ident[0]) return 0;
        if (row_ident != ident) continue;
        // 3. Kind and whole degree of latitude.
        const BulkRow& r = table.rows[row];
        bool kind_ok = any_kind ? r.kind == 'V' : r.kind == kind[0];
        if (kind_ok && WholeDegrees(r.Latitude) == degrees) return row;
    }
    return 0;
}

// [SECTION] ResolveName
// The short oceanic forms of five characters: ddddN, ddNdd and their kin.
static bool ParseOceanic(std::string_view entry, double& latitude, double& longitude) {
    if (entry.size() != 5) return false;
    auto digit = [&](size_t i) { return entry[i] >= '0' && entry[i] <= '9'; };
    auto value = [&](size_t i) { return (entry[i] - '0') * 10 + (entry[i + 1] - '0'); };
    char letter = 0;
    double lat = 0, lon = 0;
    if (digit(0) && digit(1) && digit(2) && digit(3) && !digit(4)) {
        letter = entry[4];
        lat = value(0);
        lon = value(2);
    } else if (digit(0) && digit(1) && !digit(2) && digit(3) && digit(4)) {
        letter = entry[2];
        lat = value(0);
        lon = value(3) + 100;
    } else {
        return false;
    }
    switch (letter) {
        case 'N': latitude = lat, longitude = -lon; break;
        case 'E': latitude = lat, longitude = lon; break;
        case 'S': latitude = -lat, longitude = lon; break;
        case 'W': latitude = -lat, longitude = -lon; break;
        default: return false;
    }
    return true;
}

int NextWaypointNumber(std::string_view prefix) {
    const PlanContext& pc = g_plan.context;
    int highest = 0;
    for (int i = 0; i <= pc.ModLastRow && i < kPlanRows; ++i) {
        std::string_view ident = TextOf(g_plan.ModPlan[i].Ident);
        if (ident.size() != prefix.size() + 2 || ident.substr(0, prefix.size()) != prefix) continue;
        char d1 = ident[prefix.size()], d2 = ident[prefix.size() + 1];
        if (d1 < '0' || d1 > '9' || d2 < '0' || d2 > '9') continue;
        int number = (d1 - '0') * 10 + (d2 - '0');
        if (number > highest) highest = number;
    }
    return highest + 1;
}

// The pilot waypoint forms. A position (N4730.5W12218.2) is a waypoint of
// its own, named WPTnn after the plan's highest; a place with a bearing and a
// distance (SEA090/25) is the place, moved and named when it is inserted; a
// place and bearing crossing another (SEA090/OLM180) is worked out here.
namespace {
constexpr size_t kPilotFormShortest = 8;     // entries shorter or longer are no pilot forms
constexpr size_t kPilotFormLongest = 29;
constexpr size_t kPositionLength = 15;       // N4730.5W12218.2
constexpr size_t kBearingDigits = 3;         // PLACEbbb: three digits before the "/"
constexpr size_t kTwoPlaceShortest = 13;     // PLACEbbb/PLACEbbb is longer than 12
constexpr int kGoodCrossing = 7;             // degrees: a crossing this close to the first bearing is right
constexpr int kExactCrossing = 2;            // degrees: below it no other crossing is tried
constexpr double kCrossingReach = 3;         // a crossing farther than this many times the places' distance is wrong

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool AllDigits(std::string_view text) {
    if (text.empty()) return false;
    for (char c : text)
        if (!IsDigit(c)) return false;
    return true;
}

// Form 1: hemisphere letters, degrees, minutes and tenths at fixed places.
bool ParsePositionEntry(std::string_view entry, NavRecord& out) {
    if (entry.size() < kPositionLength) return false;
    char ns = entry[0], ew = entry[7];
    if ((ns != 'N' && ns != 'S') || (ew != 'E' && ew != 'W') || entry[5] != '.' || entry[13] != '.') return false;
    auto number = [&](size_t at, size_t length) { return static_cast<double>(ReadInteger(entry.substr(at, length))); };
    double latitude = number(1, 2) + number(3, 2) / 60 + number(6, 1) * 6 / 3600;
    double longitude = number(8, 3) + number(11, 2) / 60 + number(14, 1) * 6 / 3600;
    out = NavRecord{};
    char name[16];
    std::snprintf(name, sizeof name, "WPT%02d", NextWaypointNumber("WPT"));
    SetText(out.Ident, name);
    SetText(out.Kind, "I");
    out.Latitude = ns == 'S' ? -latitude : latitude;
    out.Longitude = ew == 'W' ? -longitude : longitude;
    return true;
}

// Form 2: PLACEbbb/ddd or PLACEbbb/PLACEbbb. Sets the pilot waypoint state
// and gives the place (and the second place) to search for.
enum class PlaceForm { None, BearingDistance, TwoBearings };

PlaceForm ParsePlaceEntry(std::string_view entry, std::string_view& place, std::string_view& second_place) {
    PilotWaypointState& pw = g_pilot_waypoint;
    size_t slash = entry.find('/');
    if (slash == std::string_view::npos || slash <= kBearingDigits) return PlaceForm::None;
    std::string_view bearing = entry.substr(slash - kBearingDigits, kBearingDigits);
    std::string_view rest = entry.substr(slash + 1);
    if (!AllDigits(bearing)) return PlaceForm::None;
    place = entry.substr(0, slash - kBearingDigits);
    // A distance behind the "/".
    if (AllDigits(rest) && ReadInteger(rest) > 0) {
        pw.PbdBearing = ReadInteger(bearing);
        pw.PbdDistance = ReadInteger(rest);
        return PlaceForm::BearingDistance;
    }
    // A second place with its bearing.
    if (entry.size() < kTwoPlaceShortest || rest.size() <= kBearingDigits) return PlaceForm::None;
    std::string_view second_bearing = rest.substr(rest.size() - kBearingDigits);
    if (!AllDigits(second_bearing)) return PlaceForm::None;
    pw.PbdBearing = ReadInteger(bearing);
    pw.PbdSecondBearing = ReadInteger(second_bearing);
    second_place = rest.substr(0, rest.size() - kBearingDigits);
    return PlaceForm::TwoBearings;
}

// How far the crossing's bearing from the place (magnetic) is off the one typed, 0..180, whole degrees.
int CrossingError(const NavRecord& place, double magnetic_variation, double typed_bearing, double lat, double lon) {
    double distance = 0, bearing = 0;
    GreatCircle(place.Latitude, place.Longitude, lat, lon, distance, bearing);
    double off = AngleBetween(bearing - magnetic_variation, typed_bearing);
    return std::isfinite(off) ? static_cast<int>(off) : 180;
}

// The crossing of the radial from `a` with the radial from `b`, checked
// against `a`'s bearing; the formula's other solutions are tried when it is
// off. False when there is none.
bool CrossRadials(const NavRecord& a, double bearing_a, const NavRecord& b, double bearing_b, double& lat, double& lon) {
    int var_a = MagneticVariation(static_cast<int>(a.Latitude), static_cast<int>(a.Longitude));
    int var_b = MagneticVariation(static_cast<int>(b.Latitude), static_cast<int>(b.Longitude));
    double x_lat = 0, x_lon = 0;
    if (RadialIntersection(a.Latitude, a.Longitude, bearing_a + var_a, b.Latitude, b.Longitude, bearing_b + var_b,
                           x_lat, x_lon) == kNoIntersection)
        return false;
    int error = CrossingError(a, var_a, bearing_a, x_lat, x_lon);
    if (error < kExactCrossing) {
        lat = x_lat, lon = x_lon;
        return true;
    }
    // The other antipode, then the sign-flipped forms, each only near the places.
    double places_apart = 0, unused = 0;
    GreatCircle(a.Latitude, a.Longitude, b.Latitude, b.Longitude, places_apart, unused);
    double antipode_lon = x_lon > 0 ? x_lon - 180 : x_lon + 180;
    const double tries[][2] = {{-x_lat, antipode_lon}, {-x_lat, x_lon}, {x_lat, -x_lon}};
    for (const auto& t : tries) {
        double reach = 0;
        GreatCircle(a.Latitude, a.Longitude, t[0], t[1], reach, unused);
        if (CrossingError(a, var_a, bearing_a, t[0], t[1]) < kGoodCrossing && reach <= kCrossingReach * places_apart) {
            lat = t[0], lon = t[1];
            return true;
        }
    }
    if (error < kGoodCrossing) {
        lat = x_lat, lon = x_lon;
        return true;
    }
    return false;
}
}  // namespace

// Steps 3 to 5 of the search: the tables by exact ident, the oceanic forms,
// nearest first.
static int SearchTables(int kind_filter, std::string_view entry) {
    CandidateList& list = g_candidates;
    list.count = 0;
    list.selected = 0;
    // 3. Navaids, intersections, airports, in this order; exact idents.
    auto walk = [&](const BulkTable& table, char what) {
        const char* pool = g_navdb.pool.data();
        for (int row = 1; row <= table.count; ++row) {
            const BulkRow& r = table.rows[row];
            if (r.ident_length != entry.size() || std::memcmp(pool + r.ident, entry.data(), entry.size()) != 0) continue;
            if (list.count >= kCandidateLimit) return;
            NavRecord& out = list.rows[++list.count];
            out = NavRecord{};
            SetText(out.Ident, entry);
            out.Latitude = r.Latitude;
            out.Longitude = r.Longitude;
            SetText(out.Kind, KindText(r.kind));
            if (what == 'N') SetText(out.Frequency, PoolText(r.text));
            if (what == 'A') SetText(out.Elevation, PoolText(r.text));
        }
    };
    if (!entry.empty()) {
        if (kind_filter == 0 || kind_filter == 1) walk(g_navdb.NavaidTable, 'N');
        if (kind_filter == 0 || kind_filter == 2) walk(g_navdb.IntersectionTable, 'I');
        if (kind_filter == 0 || kind_filter == 3) walk(g_navdb.AirportTable, 'A');
    }
    // 4. The short oceanic forms.
    double latitude = 0, longitude = 0;
    if (list.count == 0 && ParseOceanic(entry, latitude, longitude)) {
        NavRecord& out = list.rows[1];
        out = NavRecord{};
        SetText(out.Ident, entry);
        SetText(out.Kind, "O");
        out.Latitude = latitude;
        out.Longitude = longitude;
        list.count = 1;
    }
    // 5. Nearest first from the aircraft; equal distances keep their order.
    if (list.count > 1) {
        std::array<double, kCandidateLimit + 1> distance{};
        std::array<int, kCandidateLimit + 1> order{};
        for (int i = 1; i <= list.count; ++i) {
            double bearing = 0;
            GreatCircle(g_sim.latitude, g_sim.longitude, list.rows[i].Latitude, list.rows[i].Longitude, distance[i], bearing);
            if (!std::isfinite(distance[i])) distance[i] = 1e9;
            order[i] = i;
        }
        std::stable_sort(order.begin() + 1, order.begin() + list.count + 1,
                         [&](int a, int b) { return distance[a] < distance[b]; });
        static std::array<NavRecord, kCandidateLimit + 1> sorted;  // 40 KB: kept off the stack
        for (int i = 1; i <= list.count; ++i) sorted[i] = list.rows[order[i]];
        for (int i = 1; i <= list.count; ++i) list.rows[i] = sorted[i];
    }
    return list.count;
}

int ResolveName(int kind_filter, std::string_view entry) {
    CandidateList& list = g_candidates;
    PilotWaypointState& pw = g_pilot_waypoint;
    // 1. Empty the list; no pilot waypoint is pending from an entry before.
    list.count = 0;
    list.selected = 0;
    pw.PbdBearing = -1;
    pw.PbdDistance = 0;
    pw.PbdSecondBearing = -1;
    // 2. Position and place-bearing entries.
    PlaceForm form = PlaceForm::None;
    std::string_view second_place;
    if (entry.size() >= kPilotFormShortest && entry.size() <= kPilotFormLongest) {
        NavRecord record;
        if (ParsePositionEntry(entry, record)) {
            list.rows[1] = record;
            list.count = 1;
            return 1;
        }
        std::string_view place;
        form = ParsePlaceEntry(entry, place, second_place);
        if (form != PlaceForm::None) entry = place;
    }
    // 3.-5. The search by name; a place-bearing-distance entry is done here,
    // its point is made when it is inserted.
    int found = SearchTables(kind_filter, entry);
    if (form != PlaceForm::TwoBearings) return found;
    // Two places: the first's nearest hit, then the second's.
    if (found == 0) return 0;
    pw.FirstPlace = list.rows[1];
    std::array<char, kIdentSize> second_name{};
    SetText(second_name, second_place);
    if (SearchTables(kind_filter, TextOf(second_name)) == 0) return 0;
    // The crossing, from the first place; failing that, from the second.
    const NavRecord first = pw.FirstPlace;
    const NavRecord second = list.rows[1];
    double lat = 0, lon = 0;
    bool crossed = CrossRadials(first, pw.PbdBearing, second, pw.PbdSecondBearing, lat, lon) ||
                   CrossRadials(second, pw.PbdSecondBearing, first, pw.PbdBearing, lat, lon);
    if (!crossed) {
        list.count = 0;
        return 0;
    }
    list.rows[1].Latitude = lat;
    list.rows[1].Longitude = lon;
    list.count = 1;
    return 1;
}

// [SECTION] Proximity subsets
namespace {
// Scans rows [first, last] of a bulk table into the subset, in table order,
// so that a scan split over several calls gives the same subset as one.
template <int N>
void ScanBulkRows(ProximitySubset<N>& subset, const BulkTable& table, int first, int last, double radius,
                  bool kind_and_frequency, double latitude, double longitude) {
    for (int row = first; row <= last && subset.count < N; ++row) {
        const BulkRow& r = table.rows[row];
        // A mile is a minute of arc: no point is nearer than its latitude difference.
        if (std::fabs(r.Latitude - latitude) * 60.0 > radius) continue;
        double distance = 0, bearing = 0;
        GreatCircle(latitude, longitude, r.Latitude, r.Longitude, distance, bearing);
        if (!(distance <= radius)) continue;
        NearbyRecord& out = subset.rows[++subset.count];
        out = NearbyRecord{};
        SetText(out.Ident, IdentOf(table, row));
        out.Latitude = r.Latitude;
        out.Longitude = r.Longitude;
        if (kind_and_frequency) {
            SetText(out.Kind, KindText(r.kind));
            if (r.kind != 'A') SetText(out.Frequency, PoolText(r.text));
        }
    }
}

template <int N>
void FillFromBulk(ProximitySubset<N>& subset, const BulkTable& table, double radius, bool kind_and_frequency, double latitude,
                  double longitude) {
    subset.count = 0;
    ScanBulkRows(subset, table, 1, table.count, radius, kind_and_frequency, latitude, longitude);
    subset.centre_latitude = latitude;
    subset.centre_longitude = longitude;
}

// An outer subset built ahead, a slice of the bulk table a frame, so that the
// rebuild at the move limit costs no single frame the whole table.
constexpr int kOuterSubsetRows = 3000;
struct SubsetPrefetch {
    ProximitySubset<kOuterSubsetRows> staged;
    int next_row = 0;                        // 0 idle; else the next row to scan
    bool ready = false;                      // staged holds a whole subset
};

struct PrefetchState {
    SubsetPrefetch airports, navaids, fixes;
};
PrefetchState g_prefetch;

constexpr int kPrefetchRowsPerStep = 2000;  // a slice costs about what a map frame does

// One step of a prefetch: starts it, scans a slice, or finishes it.
void PrefetchStep(SubsetPrefetch& p, const BulkTable& table, double radius, bool kind_and_frequency, double latitude,
                  double longitude) {
    if (p.ready) return;
    if (p.next_row == 0) {
        p.staged.count = 0;
        p.staged.centre_latitude = latitude;
        p.staged.centre_longitude = longitude;
        p.next_row = 1;
    }
    int last = std::min(table.count, p.next_row + kPrefetchRowsPerStep - 1);
    ScanBulkRows(p.staged, table, p.next_row, last, radius, kind_and_frequency, p.staged.centre_latitude,
                 p.staged.centre_longitude);
    p.next_row = last + 1;
    if (p.next_row > table.count || p.staged.count >= kOuterSubsetRows) {
        p.ready = true;
        p.next_row = 0;
    }
}

// The airway fix table holds a fix once for each airway through it: the map
// would draw a busy fix four times over. A fix already taken (same ident, same
// position) is left out of the inner subset; an open-addressed table of row
// numbers, sized for the outer subset, finds it without allocating.
class SeenFixes {
public:
    void Clear() { slots_.fill(0); }
    // True when `r` was already added; else notes it (row `row` of `rows`).
    template <size_t R>
    bool SeenOrAdd(const std::array<NearbyRecord, R>& rows, int row) {
        const NearbyRecord& r = rows[row];
        uint32_t h = 2166136261u;
        for (char c : r.Ident) {
            if (c == 0) break;
            h = (h ^ static_cast<uint8_t>(c)) * 16777619u;
        }
        h ^= static_cast<uint32_t>(std::llround(r.Latitude * 1e6)) * 2654435761u;
        h ^= static_cast<uint32_t>(std::llround(r.Longitude * 1e6)) * 40503u;
        for (uint32_t i = 0; i < kSlots; ++i) {
            int& slot = slots_[(h + i) & (kSlots - 1)];
            if (slot == 0) {
                slot = row;
                return false;
            }
            const NearbyRecord& seen = rows[slot];
            if (seen.Latitude == r.Latitude && seen.Longitude == r.Longitude && seen.Ident == r.Ident) return true;
        }
        return false;  // full: keep the row rather than lose a fix
    }

private:
    static constexpr uint32_t kSlots = 16384;  // a power of two above twice the inner subset's rows
    std::array<int, kSlots> slots_{};          // row numbers of the subset being filled; 0 empty
};

template <int N, int M>
void FillFromSubset(ProximitySubset<N>& subset, const ProximitySubset<M>& source, double radius, double measure_latitude,
                    double measure_longitude, double latitude, double longitude, SeenFixes* seen = nullptr) {
    // This runs inside a map frame: the latitude test skips most of the outer
    // subset before any trigonometry. The margin keeps it from ever refusing
    // a row that GreatCircle, rounding, would still put on the radius.
    constexpr double kLatitudeTestMarginNm = 1e-6;
    subset.count = 0;
    if (seen != nullptr) seen->Clear();
    for (int row = 1; row <= source.count && subset.count < N; ++row) {
        const NearbyRecord& r = source.rows[row];
        if (std::fabs(r.Latitude - measure_latitude) * 60.0 > radius + kLatitudeTestMarginNm) continue;
        double distance = 0, bearing = 0;
        GreatCircle(measure_latitude, measure_longitude, r.Latitude, r.Longitude, distance, bearing);
        if (!(distance <= radius)) continue;
        subset.rows[subset.count + 1] = r;
        if (seen != nullptr && seen->SeenOrAdd(subset.rows, subset.count + 1)) continue;
        ++subset.count;
    }
    subset.centre_latitude = latitude;
    subset.centre_longitude = longitude;
}
}  // namespace

void BuildProximitySubset(SubsetId subset, double latitude, double longitude) {
    ProximitySubsets& s = g_nearby;
    switch (subset) {
        case SubsetId::AirportsNear600:
            FillFromBulk(s.AirportsNear600, g_navdb.AirportTable, 600, false, latitude, longitude);
            break;
        case SubsetId::AirportsNear180:
            FillFromSubset(s.AirportsNear180, s.AirportsNear600, 180, latitude, longitude, latitude, longitude);
            break;
        case SubsetId::NavaidsNear600:
            FillFromBulk(s.NavaidsNear600, g_navdb.NavaidTable, 600, true, latitude, longitude);
            break;
        case SubsetId::NavaidsNear320:
            FillFromSubset(s.NavaidsNear320, s.NavaidsNear600, 320, latitude, longitude, latitude, longitude);
            break;
        case SubsetId::FixesNear600:
            FillFromBulk(s.FixesNear600, g_navdb.AirwayFixTable, 600, true, latitude, longitude);
            break;
        case SubsetId::FixesNear200: {
            // Measured from the aircraft, whatever centre the map draws around.
            static SeenFixes seen;
            FillFromSubset(s.FixesNear200, s.FixesNear600, 200, g_sim.latitude, g_sim.longitude, latitude, longitude,
                           &seen);
            break;
        }
    }
}

void UpdateProximitySubsets(double latitude, double longitude) {
    constexpr double kOuterMove = 200;     // nm the centre may move before a 600 nm subset is rebuilt
    constexpr double kPrefetchMove = 150;  // nm: the next one is built ahead from here on
    constexpr double kInnerMove = 50;      // nm for the inner subsets
    constexpr double kPrefetchTolerance = 100;  // nm a subset built ahead may lie from the aircraft
    auto moved = [&](double centre_latitude, double centre_longitude) {
        double distance = 0, bearing = 0;
        GreatCircle(centre_latitude, centre_longitude, latitude, longitude, distance, bearing);
        return std::isfinite(distance) ? distance : 1e9;
    };
    ProximitySubsets& s = g_nearby;
    // Outer subsets: past the limit the subset built ahead takes over (its
    // centre lies at most 50 nm back, well inside 600 nm); without one, as
    // after a jump of position, the subset is built at once.
    auto outer = [&](ProximitySubset<kOuterSubsetRows>& subset, SubsetPrefetch& prefetch, const BulkTable& table,
                     bool kind, SubsetId id) {
        double distance = moved(subset.centre_latitude, subset.centre_longitude);
        if (distance > kOuterMove) {
            if (prefetch.ready && moved(prefetch.staged.centre_latitude, prefetch.staged.centre_longitude) <= kPrefetchTolerance)
                subset = prefetch.staged;
            else
                BuildProximitySubset(id, latitude, longitude);
            prefetch.ready = false;
            prefetch.next_row = 0;
        } else if (distance > kPrefetchMove) {
            PrefetchStep(prefetch, table, 600, kind, latitude, longitude);
        }
    };
    outer(s.AirportsNear600, g_prefetch.airports, g_navdb.AirportTable, false, SubsetId::AirportsNear600);
    if (moved(s.AirportsNear180.centre_latitude, s.AirportsNear180.centre_longitude) > kInnerMove)
        BuildProximitySubset(SubsetId::AirportsNear180, latitude, longitude);
    outer(s.NavaidsNear600, g_prefetch.navaids, g_navdb.NavaidTable, true, SubsetId::NavaidsNear600);
    if (moved(s.NavaidsNear320.centre_latitude, s.NavaidsNear320.centre_longitude) > kInnerMove)
        BuildProximitySubset(SubsetId::NavaidsNear320, latitude, longitude);
    outer(s.FixesNear600, g_prefetch.fixes, g_navdb.AirwayFixTable, true, SubsetId::FixesNear600);
    if (moved(s.FixesNear200.centre_latitude, s.FixesNear200.centre_longitude) > kInnerMove)
        BuildProximitySubset(SubsetId::FixesNear200, latitude, longitude);
}

// [SECTION] FormatLatLon and the database cycle
static void FormatOne(double value, char positive, char negative, char* out, size_t size) {
    if (out == nullptr || size == 0) return;
    if (!std::isfinite(value) || std::fabs(value) > 1e6) value = 0;
    char hemisphere = value >= 0 ? positive : negative;
    double a = std::fabs(value);
    int degrees = static_cast<int>(a);
    double minutes_full = (a - degrees) * 60.0;
    int minutes = static_cast<int>(minutes_full);
    int seconds = static_cast<int>((minutes_full - minutes) * 60.0);
    std::snprintf(out, size, "%c%s%d:%s%d:%s%d", hemisphere, degrees < 10 ? "0" : "", degrees, minutes < 10 ? "0" : "",
                  minutes, seconds < 10 ? "0" : "", seconds);
}

void FormatLatLon(double latitude, double longitude_west_positive, char* lat_text, size_t lat_size, char* lon_text,
                  size_t lon_size, int unit_is_degrees) {
    if (unit_is_degrees != 1) {
        latitude *= kRadToDeg;
        longitude_west_positive *= kRadToDeg;
    }
    FormatOne(latitude, 'N', 'S', lat_text, lat_size);
    FormatOne(longitude_west_positive, 'W', 'E', lon_text, lon_size);
}

void ReadDatabaseCycle() {
    constexpr size_t kCycleLineSize = 200;  // the cycle is looked for in short lines only
    char path[MAX_PATH];
    DataPath("\\orb\\navdata\\navs.txt", path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return;
    std::array<char, kCycleLineSize> line{};
    size_t length = 0;
    while (reader.Next(line.data(), line.size(), length)) {
        std::array<std::string_view, 7> c{};
        int n = SplitColumns(std::string_view(line.data(), length), c.data(), 7);
        if (n < 1 || c[0] != ";AIRAC") continue;
        auto part = [](std::string_view text, size_t offset, size_t count) {
            return offset < text.size() ? text.substr(offset, count) : std::string_view{};
        };
        char cycle[32];
        std::snprintf(cycle, sizeof cycle, "AIRAC %.*s", static_cast<int>(std::min<size_t>(c[3].size(), 24)), c[3].data());
        SetText(g_navdb.DatabaseCycleText, cycle);
        std::string_view from_day = part(c[4], 1, 2), from_month = part(c[4], 4, 3);
        std::string_view to_day = part(c[6], 0, 2), to_month = part(c[6], 3, 3), year = part(c[6], 9, 2);
        char dates[32];
        std::snprintf(dates, sizeof dates, "%.*s%.*s%.*s%.*s/%.*s", static_cast<int>(from_month.size()), from_month.data(),
                      static_cast<int>(from_day.size()), from_day.data(), static_cast<int>(to_month.size()),
                      to_month.data(), static_cast<int>(to_day.size()), to_day.data(), static_cast<int>(year.size()),
                      year.data());
        SetText(g_navdb.DatabaseDatesText, dates);
        break;
    }
    reader.file.Close();
}

// [SECTION] Procedure section index
namespace {
constexpr const char* kProcedureFilePaths[kProcedureFileCount] = {
    "\\orb\\navdata\\sids.txt", "\\orb\\navdata\\sids_user.txt", "\\orb\\navdata\\stars.txt",
    "\\orb\\navdata\\stars_user.txt", "\\orb\\navdata\\apps.txt"};

}  // namespace

const char* ProcedureFilePath(ProcedureFileId id) { return kProcedureFilePaths[static_cast<int>(id)]; }

std::string_view ProcedureSectionWord(std::string_view line, char* buffer, size_t capacity) {
    size_t n = std::min(line.size(), capacity - 1);
    for (size_t i = 0; i < n; ++i) buffer[i] = (line[i] == '[' || line[i] == ']') ? ' ' : line[i];
    buffer[n] = 0;
    std::string_view column;
    SplitColumns(std::string_view(buffer, n), &column, 1);
    return column;
}

void BuildProcedureSectionIndex(ProcedureFileId id) {
    ProcedureSectionIndex& index = g_navdb.ProcedureSections[static_cast<int>(id)];
    index = ProcedureSectionIndex{};
    char path[MAX_PATH];
    DataPath(kProcedureFilePaths[static_cast<int>(id)], path, sizeof path);
    static DataFile file;
    if (!file.Open(path)) return;
    index.file_size = file.size;
    // 1. Walk the bytes once, from "[" to "[": sections are few and their
    // brackets rare, so the scan runs at the speed of memchr, not per line.
    // A "[" counts when it starts a line.
    static std::array<char, kSectionScanChunk> chunk;
    std::array<char, kSectionHeadScan> head{};
    size_t head_length = 0;
    bool in_head = false;
    char previous = '\n';  // the byte before the chunk: the file starts a line
    uint64_t offset = 0, head_offset = 0;
    auto finish_head = [&]() {
        char word_buffer[kSectionHeadScan + 1];
        std::string_view word = ProcedureSectionWord(std::string_view(head.data(), head_length), word_buffer, sizeof word_buffer);
        if (!word.empty() && word.size() < kSectionIdentSize && index.entries.size() < kSectionIndexLimit) {
            ProcedureSectionEntry e;
            SetText(e.ident, word);
            e.offset = head_offset;
            index.entries.push_back(e);
        }
        in_head = false;
    };
    for (;;) {
        size_t got = file.Read(chunk.data(), chunk.size());
        if (got == 0) break;
        const char* base = chunk.data();
        const char* p = base;
        const char* end = base + got;
        while (p < end) {
            if (in_head) {
                // Gather the head line's first bytes, up to its end.
                const char* nl = static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
                const char* stop = nl ? nl : end;
                size_t take = std::min(static_cast<size_t>(stop - p), head.size() - head_length);
                std::memcpy(head.data() + head_length, p, take);
                head_length += take;
                if (!nl) break;
                finish_head();
                p = nl + 1;
                continue;
            }
            const char* bracket = static_cast<const char*>(std::memchr(p, '[', static_cast<size_t>(end - p)));
            if (bracket == nullptr) break;
            char before = bracket == base ? previous : bracket[-1];
            p = bracket + 1;
            if (before != '\n') continue;
            in_head = true;
            head_length = 0;
            head_offset = offset + static_cast<uint64_t>(bracket - base);
            p = bracket;
        }
        previous = end[-1];
        offset += got;
    }
    if (in_head) finish_head();
    file.Close();
    // 2. Sorted by ident; of two sections with one ident the first counts, as
    // a reader from the top would find it.
    std::stable_sort(index.entries.begin(), index.entries.end(), [](const ProcedureSectionEntry& a, const ProcedureSectionEntry& b) {
        return std::strcmp(a.ident.data(), b.ident.data()) < 0;
    });
    auto last = std::unique(index.entries.begin(), index.entries.end(),
                            [](const ProcedureSectionEntry& a, const ProcedureSectionEntry& b) { return a.ident == b.ident; });
    index.entries.erase(last, index.entries.end());
    index.entries.shrink_to_fit();
    index.built = true;
}

void BuildProcedureSectionIndexes() {
    for (int i = 0; i < kProcedureFileCount; ++i) BuildProcedureSectionIndex(static_cast<ProcedureFileId>(i));
}

int LookUpSection(ProcedureFileId id, std::string_view ident, uint64_t file_size, uint64_t& offset) {
    const ProcedureSectionIndex& index = g_navdb.ProcedureSections[static_cast<int>(id)];
    if (!index.built || index.file_size != file_size || ident.empty() || ident.size() >= kSectionIdentSize) return -1;
    std::array<char, kSectionIdentSize> key{};
    SetText(key, ident);
    auto it = std::lower_bound(index.entries.begin(), index.entries.end(), key,
                               [](const ProcedureSectionEntry& e, const std::array<char, kSectionIdentSize>& k) {
                                   return std::strcmp(e.ident.data(), k.data()) < 0;
                               });
    if (it == index.entries.end() || it->ident != key) return 0;
    offset = it->offset;
    return 1;
}

