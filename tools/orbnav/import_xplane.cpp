// import_xplane.cpp: the X-Plane text formats into the module's text files.
//
// Index
// [SECTION] Reading input files (plain or gzip), strict numbers
// [SECTION] nav.dat: VORs, NDBs, localizers
// [SECTION] fix.dat
// [SECTION] awy.dat: segments chained into runs
// [SECTION] apt.dat: airports and runways
// [SECTION] Writing: temporary files renamed on success
#include "import_xplane.h"

#include "guidance/geodesy.h"
#include "navdata/nav_database.h"

#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace {
constexpr double kFeetPerNm = 6076.115486;
constexpr double kFeetPerMetre = 3.280839895;
constexpr double kProgressAfterSeconds = 1.0;  // quiet for short work
constexpr int kMaxRunwayColumns = kRunwayColumns;

// [SECTION] Reading input files (plain or gzip), strict numbers
struct Failure {
    std::string message;
};

class InputFile {
public:
    InputFile(std::string path, const ImportOptions& options, const char* what)
        : path_(std::move(path)), options_(options), what_(what) {}
    ~InputFile() {
        if (file_) gzclose(file_);
    }
    bool Open(std::string& error) {
        file_ = gzopen(path_.c_str(), "rb");
        if (!file_) {
            error = path_ + ": cannot open";
            return false;
        }
        gzbuffer(file_, 256 * 1024);
        struct stat st {};
        if (stat(path_.c_str(), &st) == 0) size_ = static_cast<double>(st.st_size);
        start_ = std::chrono::steady_clock::now();
        return true;
    }
    // The next line without its line end; false at the end of the file.
    bool Next(std::string& line) {
        line.clear();
        char buffer[4096];
        bool any = false;
        while (gzgets(file_, buffer, sizeof buffer) != nullptr) {
            any = true;
            size_t n = std::strlen(buffer);
            line.append(buffer, n);
            if (n > 0 && buffer[n - 1] == '\n') break;
        }
        if (!any) {
            FinishProgress();
            return false;
        }
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
        ++line_number_;
        if ((line_number_ & 0x3FFF) == 0) Progress();
        return true;
    }
    std::string Where() const { return path_ + ":" + std::to_string(line_number_); }
    const std::string& path() const { return path_; }
    long line_number() const { return line_number_; }

private:
    void Progress() {
        if (!options_.progress) return;
        double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
        if (elapsed < kProgressAfterSeconds) return;
        double done = size_ > 0 ? static_cast<double>(gzoffset(file_)) / size_ : 0;
        if (done > 1) done = 1;
        int percent = static_cast<int>(done * 100);
        if (percent == last_percent_) return;
        last_percent_ = percent;
        int width = 30, filled = static_cast<int>(done * width);
        std::fprintf(stderr, "\r%-8s [%.*s%*s] %3.0f%%", what_, filled, "##############################",
                     width - filled, "", done * 100);
        shown_ = true;
    }
    void FinishProgress() {
        if (shown_) std::fprintf(stderr, "\r%-8s [##############################] 100%%\n", what_);
        shown_ = false;
    }
    std::string path_;
    const ImportOptions& options_;
    const char* what_;
    gzFile file_ = nullptr;
    double size_ = 0;
    long line_number_ = 0;
    bool shown_ = false;
    int last_percent_ = -1;
    std::chrono::steady_clock::time_point start_;
};

std::vector<std::string_view> Words(std::string_view line) {
    std::vector<std::string_view> words;
    size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
        if (i >= line.size()) break;
        size_t start = i;
        while (i < line.size() && line[i] != ' ' && line[i] != '\t') ++i;
        words.push_back(line.substr(start, i - start));
    }
    return words;
}

bool StrictNumber(std::string_view text, double& value) {
    if (text.empty() || text.size() > 63) return false;
    char buffer[64];
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = 0;
    char* end = nullptr;
    value = std::strtod(buffer, &end);
    return end == buffer + text.size() && std::isfinite(value);
}

std::string Join(const std::vector<std::string_view>& words, size_t from, size_t to, char glue) {
    std::string out;
    for (size_t i = from; i < to && i < words.size(); ++i) {
        if (!out.empty()) out += glue;
        out.append(words[i]);
    }
    return out;
}

// Reads the two header lines ("I"/"A", then the version line) and checks the version.
bool ReadHeader(InputFile& in, const char* expected_version, std::string& version_line, std::string& error) {
    std::string line;
    if (!in.Next(line)) {
        error = in.path() + ":1: empty or unreadable file";
        return false;
    }
    // The byte-order line; some published files leave it empty.
    if (line != "I" && line != "A" && !Words(line).empty()) {
        error = in.Where() + ": not an X-Plane data file (first line must be I, A or empty)";
        return false;
    }
    if (!in.Next(line)) {
        error = in.Where() + ": file ends before its version line";
        return false;
    }
    std::vector<std::string_view> w = Words(line);
    if (w.empty() || w[0] != expected_version) {
        error = in.Where() + ": version " + std::string(w.empty() ? "(none)" : w[0]) + " is not supported (" +
                expected_version + " expected)";
        return false;
    }
    version_line = line;
    return true;
}

bool InRegion(const ImportRegion& r, double lat, double lon) {
    return !r.active || (lat >= r.south && lat <= r.north && lon >= r.west && lon <= r.east);
}

bool ValidPosition(double lat, double lon) { return lat >= -90 && lat <= 90 && lon >= -180 && lon <= 180; }

double FoldDegrees(double value) {
    value = std::fmod(value, 360.0);
    if (value < 0) value += 360;
    return value;
}

// Magnetic form of a true direction: 0 < result <= 360, as headings are shown.
double Magnetic(double true_direction, double variation_east) {
    double m = FoldDegrees(true_direction - variation_east);
    return m < 0.05 ? 360.0 : m;
}

// Initial true bearing 0..360 from the first point to the second. The
// guidance's GreatCircle reports 0..1 as 360; a heading of 0.3 is kept here.
double TrueBearing(double lat1, double lon1, double lat2, double lon2) {
    double p1 = lat1 * kDegToRad, p2 = lat2 * kDegToRad, dl = (lon2 - lon1) * kDegToRad;
    double b = std::atan2(std::sin(dl) * std::cos(p2), std::cos(p1) * std::sin(p2) - std::sin(p1) * std::cos(p2) * std::cos(dl));
    return FoldDegrees(b * kRadToDeg);
}

std::string Fixed(double value, int decimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

// [SECTION] nav.dat: VORs, NDBs, localizers
struct Navaid {
    std::string ident, name, type, frequency;  // type "VOR" or "NDB"
    double lat = 0, lon = 0;
};

struct Localizer {
    std::string ident, frequency;
    double course_true = 0;
};

struct VorVariation {
    double lat = 0, lon = 0, variation = 0;  // slaved variation, degrees east
};

struct NavData {
    std::vector<Navaid> navaids;
    std::map<std::string, Localizer> localizers;  // "KSEA 16L"
    std::vector<VorVariation> variations;
    int dme_skipped = 0;
    std::string cycle_year, cycle_number;        // "2013", "10"
};

// Words of a navaid's name that only say what it is; the kind goes to its own column.
bool IsKindWord(std::string_view w) {
    static const char* const kWords[] = {"VOR", "VORTAC", "VOR-DME", "VOR/DME", "NDB", "NDB-DME", "NDB/DME", "DME", "TACAN", "LOM", "LMM"};
    for (const char* k : kWords)
        if (w == k) return true;
    return false;
}

void FindCycle(const std::string& version_line, NavData& data) {
    size_t at = version_line.find("data cycle ");
    if (at == std::string::npos) return;
    std::string rest = version_line.substr(at + 11);
    size_t dot = rest.find('.');
    if (dot != 4 || rest.size() < 7) return;
    std::string year = rest.substr(0, 4), number = rest.substr(5, 2);
    if (!std::all_of(year.begin(), year.end(), ::isdigit) || !std::all_of(number.begin(), number.end(), ::isdigit)) return;
    data.cycle_year = year;
    data.cycle_number = number;
}

bool ReadNavDat(const std::string& path, const ImportOptions& options, NavData& data, std::string& error) {
    InputFile in(path, options, "nav.dat");
    if (!in.Open(error)) return false;
    std::string line, version;
    if (!ReadHeader(in, "810", version, error)) return false;
    FindCycle(version, data);
    bool ended = false;
    while (in.Next(line)) {
        std::vector<std::string_view> w = Words(line);
        if (w.empty()) continue;
        if (w[0] == "99") {
            ended = true;
            break;
        }
        double type = 0;
        if (!StrictNumber(w[0], type)) {
            error = in.Where() + ": row code '" + std::string(w[0]) + "' is not a number";
            return false;
        }
        int code = static_cast<int>(type);
        if (code < 2 || code > 13) continue;  // codes the format may add later
        if (code == 12 || code == 13) {
            ++data.dme_skipped;
            continue;
        }
        if (code != 2 && code != 3 && code != 4 && code != 5) continue;  // glide slopes and markers
        if (w.size() < 9) {
            error = in.Where() + ": navaid row has " + std::to_string(w.size()) + " columns, at least 9 expected";
            return false;
        }
        double lat = 0, lon = 0, freq = 0, var = 0;
        if (!StrictNumber(w[1], lat) || !StrictNumber(w[2], lon) || !ValidPosition(lat, lon)) {
            error = in.Where() + ": bad latitude or longitude";
            return false;
        }
        if (!StrictNumber(w[4], freq) || !StrictNumber(w[6], var)) {
            error = in.Where() + ": bad frequency or variation column";
            return false;
        }
        std::string ident(w[7]);
        if (code == 3) data.variations.push_back({lat, lon, var});  // every VOR, inside the region or not
        if (code == 4 || code == 5) {
            if (w.size() < 10) {
                error = in.Where() + ": localizer row without airport and runway";
                return false;
            }
            Localizer loc;
            loc.ident = ident;
            loc.frequency = Fixed(freq / 100.0, 2);
            loc.course_true = FoldDegrees(var);
            data.localizers.emplace(std::string(w[8]) + " " + std::string(w[9]), loc);
            continue;
        }
        if (!InRegion(options.region, lat, lon)) continue;
        size_t name_end = w.size();
        while (name_end > 9 && IsKindWord(w[name_end - 1])) --name_end;
        if (name_end == 9 && IsKindWord(w[8])) name_end = 8;
        Navaid n;
        n.ident = ident;
        n.name = Join(w, 8, name_end, '_');
        if (n.name.empty()) n.name = ident;
        n.lat = lat;
        n.lon = lon;
        n.type = code == 3 ? "VOR" : "NDB";
        n.frequency = code == 3 ? Fixed(freq / 100.0, 2) : std::to_string(static_cast<int>(freq));
        data.navaids.push_back(std::move(n));
    }
    if (!ended) {
        error = in.Where() + ": file ends without its closing 99 line";
        return false;
    }
    return true;
}

double VariationAt(const NavData& nav, double lat, double lon) {
    double best = 1e18, variation = 0;
    double cos_lat = std::cos(lat * kDegToRad);
    for (const VorVariation& v : nav.variations) {
        double dlat = v.lat - lat;
        double dlon = std::fabs(v.lon - lon);
        if (dlon > 180) dlon = 360 - dlon;
        dlon *= cos_lat;
        double d = dlat * dlat + dlon * dlon;
        if (d < best) {
            best = d;
            variation = v.variation;
        }
    }
    return variation;
}

// [SECTION] fix.dat
struct Fix {
    std::string ident;
    double lat = 0, lon = 0;
};

bool ReadFixDat(const std::string& path, const ImportOptions& options, std::vector<Fix>& fixes, std::string& error) {
    InputFile in(path, options, "fix.dat");
    if (!in.Open(error)) return false;
    std::string line, version;
    if (!ReadHeader(in, "600", version, error)) return false;
    bool ended = false;
    while (in.Next(line)) {
        std::vector<std::string_view> w = Words(line);
        if (w.empty()) continue;
        if (w[0] == "99") {
            ended = true;
            break;
        }
        double lat = 0, lon = 0;
        if (w.size() < 3) {
            error = in.Where() + ": fix row has " + std::to_string(w.size()) + " columns, 3 expected";
            return false;
        }
        if (!StrictNumber(w[0], lat) || !StrictNumber(w[1], lon) || !ValidPosition(lat, lon)) {
            error = in.Where() + ": bad latitude or longitude";
            return false;
        }
        if (!InRegion(options.region, lat, lon)) continue;
        fixes.push_back({std::string(w[2]), lat, lon});
    }
    if (!ended) {
        error = in.Where() + ": file ends without its closing 99 line";
        return false;
    }
    return true;
}

// [SECTION] awy.dat: segments chained into runs
struct AirwayPoint {
    std::string ident;
    double lat = 0, lon = 0;
};

struct AirwayGraph {
    std::vector<AirwayPoint> points;
    std::map<std::string, int> point_index;      // "IDENT lat lon" -> point
    std::vector<std::pair<int, int>> edges;
    std::map<std::pair<int, int>, int> edge_index;  // unordered pair -> edge, to drop repeats
};

using AirwayRows = std::vector<std::pair<std::string, AirwayPoint>>;  // airway name, point

int PointOf(AirwayGraph& g, std::string_view ident, double lat, double lon) {
    std::string key = std::string(ident) + " " + Fixed(lat, 6) + " " + Fixed(lon, 6);
    auto it = g.point_index.find(key);
    if (it != g.point_index.end()) return it->second;
    int index = static_cast<int>(g.points.size());
    g.points.push_back({std::string(ident), lat, lon});
    g.point_index.emplace(key, index);
    return index;
}

bool ReadAwyDat(const std::string& path, const ImportOptions& options, std::map<std::string, AirwayGraph>& airways,
                std::string& error) {
    InputFile in(path, options, "awy.dat");
    if (!in.Open(error)) return false;
    std::string line, version;
    if (!ReadHeader(in, "640", version, error)) return false;
    bool ended = false;
    while (in.Next(line)) {
        std::vector<std::string_view> w = Words(line);
        if (w.empty()) continue;
        if (w[0] == "99") {
            ended = true;
            break;
        }
        if (w.size() < 10) {
            error = in.Where() + ": airway row has " + std::to_string(w.size()) + " columns, 10 expected";
            return false;
        }
        double lat1 = 0, lon1 = 0, lat2 = 0, lon2 = 0;
        if (!StrictNumber(w[1], lat1) || !StrictNumber(w[2], lon1) || !StrictNumber(w[4], lat2) ||
            !StrictNumber(w[5], lon2) || !ValidPosition(lat1, lon1) || !ValidPosition(lat2, lon2)) {
            error = in.Where() + ": bad latitude or longitude";
            return false;
        }
        // A stretch belongs to the region when both its ends do.
        if (!InRegion(options.region, lat1, lon1) || !InRegion(options.region, lat2, lon2)) continue;
        // Names of airways sharing the segment are joined by '-'.
        std::string_view names = w[9];
        size_t start = 0;
        while (start <= names.size()) {
            size_t dash = names.find('-', start);
            std::string_view name = names.substr(start, dash == std::string_view::npos ? std::string_view::npos : dash - start);
            if (!name.empty()) {
                AirwayGraph& g = airways[std::string(name)];
                int a = PointOf(g, w[0], lat1, lon1), b = PointOf(g, w[3], lat2, lon2);
                if (a != b) {
                    std::pair<int, int> key(std::min(a, b), std::max(a, b));
                    if (g.edge_index.find(key) == g.edge_index.end()) {
                        g.edge_index.emplace(key, static_cast<int>(g.edges.size()));
                        g.edges.emplace_back(a, b);
                    }
                }
            }
            if (dash == std::string_view::npos) break;
            start = dash + 1;
        }
    }
    if (!ended) {
        error = in.Where() + ": file ends without its closing 99 line";
        return false;
    }
    return true;
}

// Runs of one airway: each walk starts at an end (a point with one unused
// segment; among several, the first by ident) and follows unused segments
// until none is left; at a fork the first-read branch is followed and the
// other becomes a run of its own. Closed loops start at their first point.
std::vector<std::vector<int>> ChainRuns(const AirwayGraph& g) {
    size_t n = g.points.size();
    std::vector<std::vector<int>> adjacent(n);  // edge numbers, in the order read
    for (size_t e = 0; e < g.edges.size(); ++e) {
        adjacent[g.edges[e].first].push_back(static_cast<int>(e));
        adjacent[g.edges[e].second].push_back(static_cast<int>(e));
    }
    std::vector<bool> used(g.edges.size(), false);
    std::vector<int> unused_degree(n, 0);
    for (size_t p = 0; p < n; ++p) unused_degree[p] = static_cast<int>(adjacent[p].size());
    std::vector<int> order(n);
    for (size_t p = 0; p < n; ++p) order[p] = static_cast<int>(p);
    std::sort(order.begin(), order.end(), [&](int a, int b) {
        if (g.points[a].ident != g.points[b].ident) return g.points[a].ident < g.points[b].ident;
        return a < b;
    });
    std::vector<std::vector<int>> runs;
    size_t remaining = g.edges.size();
    while (remaining > 0) {
        int start = -1;
        for (int p : order)
            if (unused_degree[p] == 1) {
                start = p;
                break;
            }
        if (start < 0)
            for (size_t p = 0; p < n && start < 0; ++p)
                if (unused_degree[p] > 0) start = static_cast<int>(p);
        std::vector<int> run{start};
        int at = start;
        for (;;) {
            int next_edge = -1;
            for (int e : adjacent[at])
                if (!used[e]) {
                    next_edge = e;
                    break;
                }
            if (next_edge < 0) break;
            used[next_edge] = true;
            --remaining;
            int other = g.edges[next_edge].first == at ? g.edges[next_edge].second : g.edges[next_edge].first;
            --unused_degree[at];
            --unused_degree[other];
            run.push_back(other);
            at = other;
        }
        runs.push_back(std::move(run));
    }
    return runs;
}

// [SECTION] apt.dat: airports and runways
struct RunwayEnd {
    std::string designator;
    double lat = 0, lon = 0;                 // landing threshold
    double end_lat = 0, end_lon = 0;         // the runway's end at this side
    double other_lat = 0, other_lon = 0;     // the opposite end
    int length_ft = 0;
};

struct Airport {
    std::string ident, name;
    int elevation = 0;
    std::vector<RunwayEnd> ends;
    double longest_ft = 0;
    long order = 0;                          // place in apt.dat
};

bool ReadAptDat(const std::string& path, const ImportOptions& options, std::vector<Airport>& airports, std::string& error) {
    InputFile in(path, options, "apt.dat");
    if (!in.Open(error)) return false;
    std::string line, version;
    if (!ReadHeader(in, "1000", version, error)) return false;
    bool ended = false;
    Airport current;
    bool in_land_airport = false;
    auto finish = [&]() {
        if (!in_land_airport || current.ends.empty()) return;
        double lat = 0, lon = 0;
        for (const RunwayEnd& e : current.ends) lat += e.end_lat, lon += e.end_lon;
        lat /= static_cast<double>(current.ends.size());
        lon /= static_cast<double>(current.ends.size());
        if (!InRegion(options.region, lat, lon)) return;
        current.order = static_cast<long>(airports.size());
        airports.push_back(std::move(current));
    };
    while (in.Next(line)) {
        std::vector<std::string_view> w = Words(line);
        if (w.empty()) continue;
        if (w[0] == "99") {
            ended = true;
            break;
        }
        if (w[0] == "1" || w[0] == "16" || w[0] == "17") {
            finish();
            current = Airport{};
            in_land_airport = w[0] == "1";  // seaplane bases and heliports have no runway of the module's kind
            if (w.size() < 5) {
                error = in.Where() + ": airport row has " + std::to_string(w.size()) + " columns, at least 5 expected";
                return false;
            }
            double elevation = 0;
            if (!StrictNumber(w[1], elevation)) {
                error = in.Where() + ": bad elevation '" + std::string(w[1]) + "'";
                return false;
            }
            current.elevation = static_cast<int>(std::lround(elevation));
            current.ident = std::string(w[4]);
            current.name = Join(w, 5, w.size(), '_');
            if (current.name.empty()) current.name = current.ident;
            continue;
        }
        if (w[0] != "100" || !in_land_airport) continue;
        if (w.size() < 26) {
            error = in.Where() + ": runway row has " + std::to_string(w.size()) + " columns, 26 expected";
            return false;
        }
        double lat[2], lon[2], displaced[2];
        for (int side = 0; side < 2; ++side) {
            size_t base = 8 + static_cast<size_t>(side) * 9;
            if (!StrictNumber(w[base + 1], lat[side]) || !StrictNumber(w[base + 2], lon[side]) ||
                !StrictNumber(w[base + 3], displaced[side]) || !ValidPosition(lat[side], lon[side])) {
                error = in.Where() + ": bad runway end position";
                return false;
            }
        }
        double length_nm = 0, bearing = 0;
        GreatCircle(lat[0], lon[0], lat[1], lon[1], length_nm, bearing);
        if (!std::isfinite(length_nm)) length_nm = 0;
        double length_ft = length_nm * kFeetPerNm;
        current.longest_ft = std::max(current.longest_ft, length_ft);
        for (int side = 0; side < 2; ++side) {
            int other = 1 - side;
            RunwayEnd e;
            e.designator = std::string(w[8 + static_cast<size_t>(side) * 9]);
            e.end_lat = lat[side];
            e.end_lon = lon[side];
            e.other_lat = lat[other];
            e.other_lon = lon[other];
            e.length_ft = static_cast<int>(std::lround(length_ft));
            double toward = TrueBearing(lat[side], lon[side], lat[other], lon[other]);
            // The threshold stands behind a displaced part of the runway.
            if (displaced[side] > 0 && std::isfinite(toward))
                ProjectPoint(lat[side], lon[side], toward, displaced[side] * kFeetPerMetre / kFeetPerNm, e.lat, e.lon);
            else
                e.lat = lat[side], e.lon = lon[side];
            current.ends.push_back(e);
        }
    }
    if (!ended) {
        error = in.Where() + ": file ends without its closing 99 line";
        return false;
    }
    finish();
    return true;
}

// [SECTION] Writing: temporary files renamed on success
class OutputSet {
public:
    explicit OutputSet(std::string folder) : folder_(std::move(folder)) {}
    ~OutputSet() {
        for (auto& f : files_) {
            if (f.file) std::fclose(f.file);
            if (!f.renamed) std::remove(f.temporary.c_str());
        }
    }
    FILE* Open(const std::string& name, std::string& error) {
        Entry e;
        e.final_path = folder_ + "/" + name;
        e.temporary = e.final_path + ".part";
        e.file = std::fopen(e.temporary.c_str(), "wb");
        if (!e.file) {
            error = e.temporary + ": cannot write";
            return nullptr;
        }
        files_.push_back(e);
        return files_.back().file;
    }
    bool Commit(std::string& error) {
        for (auto& f : files_) {
            bool bad = std::ferror(f.file) != 0;
            if (std::fclose(f.file) != 0) bad = true;
            f.file = nullptr;
            if (bad) {
                error = f.temporary + ": write failed";
                return false;
            }
        }
        for (auto& f : files_) {
            if (std::rename(f.temporary.c_str(), f.final_path.c_str()) != 0) {
                error = f.final_path + ": cannot replace";
                return false;
            }
            f.renamed = true;
        }
        return true;
    }

private:
    struct Entry {
        std::string final_path, temporary;
        FILE* file = nullptr;
        bool renamed = false;
    };
    std::string folder_;
    std::vector<Entry> files_;
};

bool MakeFolders(const std::string& path, std::string& error) {
    std::string partial;
    for (size_t i = 0; i <= path.size(); ++i) {
        if (i == path.size() || path[i] == '/') {
            if (!partial.empty()) {
                struct stat st {};
                if (stat(partial.c_str(), &st) != 0 && mkdir(partial.c_str(), 0755) != 0) {
                    error = partial + ": cannot create folder";
                    return false;
                }
            }
        }
        if (i < path.size()) partial += path[i];
    }
    return true;
}

std::string FindInput(const std::string& folder, const char* name) {
    std::string plain = folder + "/" + name;
    struct stat st {};
    if (stat(plain.c_str(), &st) == 0) return plain;
    std::string gz = plain + ".gz";
    if (stat(gz.c_str(), &st) == 0) return gz;
    return {};
}

// Days since 1970-01-01 of a civil date, and back.
long DaysFromCivil(int y, int m, int d) {
    y -= m <= 2;
    long era = (y >= 0 ? y : y - 399) / 400;
    long yoe = y - era * 400;
    long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void CivilFromDays(long z, int& y, int& m, int& d) {
    z += 719468;
    long era = (z >= 0 ? z : z - 146096) / 146097;
    long doe = z - era * 146097;
    long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    long mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yoe + era * 400 + (m <= 2));
}

std::string DateText(long days) {
    static const char* const kMonths[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    int y = 0, m = 0, d = 0;
    CivilFromDays(days, y, m, d);
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%02d-%s-%04d", d, kMonths[m - 1], y);
    return buffer;
}
}  // namespace

bool AiracDates(int year, int cycle, std::string& from, std::string& to) {
    if (year < 1990 || year > 2100 || cycle < 1 || cycle > 14) return false;
    const long reference = DaysFromCivil(2014, 1, 9);  // cycle 1401 took effect that day
    long first = reference;
    long year_start = DaysFromCivil(year, 1, 1);
    // The year's first cycle is the first effective date on or after 1 January.
    long steps = (year_start - reference) / 28;
    first = reference + steps * 28;
    while (first < year_start) first += 28;
    while (first - 28 >= year_start) first -= 28;
    long effective = first + static_cast<long>(cycle - 1) * 28;
    if (effective >= DaysFromCivil(year + 1, 1, 1)) return false;
    from = DateText(effective);
    to = DateText(effective + 28);
    return true;
}

bool ParseRegion(const std::string& text, ImportRegion& region, std::string& error) {
    double v[4];
    size_t start = 0;
    for (int i = 0; i < 4; ++i) {
        size_t comma = text.find(',', start);
        if ((i < 3) != (comma != std::string::npos)) {
            error = "--region takes LAT1,LON1,LAT2,LON2";
            return false;
        }
        std::string part = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        if (!StrictNumber(part, v[i])) {
            error = "--region: '" + part + "' is not a number";
            return false;
        }
        start = comma + 1;
    }
    if (!ValidPosition(v[0], v[1]) || !ValidPosition(v[2], v[3])) {
        error = "--region: latitudes must be within -90..90 and longitudes within -180..180";
        return false;
    }
    region.active = true;
    region.south = std::min(v[0], v[2]);
    region.north = std::max(v[0], v[2]);
    region.west = std::min(v[1], v[3]);
    region.east = std::max(v[1], v[3]);
    return true;
}

bool ImportXplane(const ImportOptions& options, ImportSummary& summary, std::string& error) {
    summary = ImportSummary{};
    std::string nav_path = FindInput(options.source, "nav.dat");
    std::string fix_path = FindInput(options.source, "fix.dat");
    std::string awy_path = FindInput(options.source, "awy.dat");
    std::string apt_path = FindInput(options.source, "apt.dat");
    for (auto [path, name] : {std::pair{&nav_path, "nav.dat"}, {&fix_path, "fix.dat"}, {&awy_path, "awy.dat"}, {&apt_path, "apt.dat"}}) {
        if (path->empty()) {
            error = options.source + ": no " + name + " or " + name + ".gz";
            return false;
        }
    }
    // Read everything first: a bad input leaves the destination untouched.
    NavData nav;
    if (!ReadNavDat(nav_path, options, nav, error)) return false;
    std::vector<Fix> fixes;
    if (!ReadFixDat(fix_path, options, fixes, error)) return false;
    std::map<std::string, AirwayGraph> airways;
    if (!ReadAwyDat(awy_path, options, airways, error)) return false;
    std::vector<Airport> airports;
    if (!ReadAptDat(apt_path, options, airports, error)) return false;

    std::string folder = options.destination + "/orb/navdata";
    if (!MakeFolders(folder, error)) return false;
    OutputSet out(folder);

    // apts.txt: beyond the table's limit the airports with the longest runways are kept.
    if (static_cast<int>(airports.size()) > kAirportLimit) {
        summary.airports_dropped = static_cast<int>(airports.size()) - kAirportLimit;
        std::stable_sort(airports.begin(), airports.end(),
                         [](const Airport& a, const Airport& b) { return a.longest_ft > b.longest_ft; });
        airports.resize(kAirportLimit);
        std::sort(airports.begin(), airports.end(), [](const Airport& a, const Airport& b) { return a.order < b.order; });
    }
    FILE* apts = out.Open("apts.txt", error);
    if (!apts) return false;
    for (const Airport& a : airports) {
        double lat = 0, lon = 0;
        for (const RunwayEnd& e : a.ends) lat += e.end_lat, lon += e.end_lon;
        lat /= static_cast<double>(a.ends.size());
        lon /= static_cast<double>(a.ends.size());
        double variation = VariationAt(nav, lat, lon);
        std::fprintf(apts, "%s %s %d %.6f %.6f", a.ident.c_str(), a.name.c_str(), a.elevation, lat, lon);
        int written = 0;
        for (const RunwayEnd& e : a.ends) {
            if (written >= kMaxRunwayColumns) {
                ++summary.runway_ends_dropped;
                continue;
            }
            double heading_true = TrueBearing(e.end_lat, e.end_lon, e.other_lat, e.other_lon);
            std::fprintf(apts, " %s_%d_%.6f_%.6f_%.1f", e.designator.c_str(), e.length_ft, e.lat, e.lon,
                         Magnetic(heading_true, variation));
            auto loc = nav.localizers.find(a.ident + " " + e.designator);
            if (loc != nav.localizers.end()) {
                std::fprintf(apts, "_%s_%s_%.1f", loc->second.frequency.c_str(), loc->second.ident.c_str(),
                             Magnetic(loc->second.course_true, variation));
                ++summary.localizers_matched;
            }
            ++written;
            ++summary.runway_ends;
        }
        std::fprintf(apts, "\n");
        ++summary.airports;
    }

    // navs.txt: sorted by ident for the first-letter index, the cycle first.
    std::stable_sort(nav.navaids.begin(), nav.navaids.end(), [](const Navaid& a, const Navaid& b) { return a.ident < b.ident; });
    FILE* navs = out.Open("navs.txt", error);
    if (!navs) return false;
    std::string from, to;
    if (!nav.cycle_year.empty() && AiracDates(std::atoi(nav.cycle_year.c_str()), std::atoi(nav.cycle_number.c_str()), from, to)) {
        summary.cycle = nav.cycle_year.substr(2) + nav.cycle_number;
        std::fprintf(navs, ";AIRAC cycle is %s (%s to %s)\n", summary.cycle.c_str(), from.c_str(), to.c_str());
    }
    for (const Navaid& n : nav.navaids) {
        if (summary.navaids >= kNavaidLimit) {
            ++summary.navaids_dropped;
            continue;
        }
        std::fprintf(navs, "%s %s %.6f %.6f %s %s\n", n.ident.c_str(), n.name.c_str(), n.lat, n.lon, n.type.c_str(),
                     n.frequency.c_str());
        ++summary.navaids;
    }
    summary.dme_skipped = nav.dme_skipped;

    FILE* ints = out.Open("ints.txt", error);
    if (!ints) return false;
    for (const Fix& f : fixes) {
        if (summary.fixes >= kIntersectionLimit) {
            ++summary.fixes_dropped;
            continue;
        }
        std::fprintf(ints, "%s %s %.6f %.6f\n", f.ident.c_str(), f.ident.c_str(), f.lat, f.lon);
        ++summary.fixes;
    }

    // awys.txt: one airway's runs together, airways by name.
    FILE* awys = out.Open("awys.txt", error);
    if (!awys) return false;
    int long_fix_rows = 0;
    for (const auto& [name, graph] : airways) {
        if (graph.edges.empty()) continue;
        ++summary.airways;
        int sequence = 0;
        for (const std::vector<int>& run : ChainRuns(graph)) {
            ++summary.airway_runs;
            for (int p : run) {
                const AirwayPoint& point = graph.points[static_cast<size_t>(p)];
                std::fprintf(awys, "%s %d %s %.6f %.6f\n", name.c_str(), ++sequence, point.ident.c_str(), point.lat, point.lon);
                ++summary.airway_rows;
                if (point.ident.size() >= 4 && ++long_fix_rows > kAirwayFixLimit) ++summary.airway_fix_rows_beyond_limit;
            }
        }
    }
    return out.Commit(error);
}
