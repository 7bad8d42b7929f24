// import_xplane.cpp: the X-Plane text formats into the module's text files.
//
// Index
// [SECTION] Reading input files (plain or gzip), strict numbers
// [SECTION] nav.dat: VORs, NDBs, localizers
// [SECTION] fix.dat
// [SECTION] awy.dat: segments chained into runs
// [SECTION] apt.dat: airports and runways
// [SECTION] Writing: all four files replaced, or none
#include "import_xplane.h"

#include "decimal_number.h"

#include "guidance/geodesy.h"
#include "navdata/nav_database.h"

#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
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
    // The next line without its line end; false at the end of the file and
    // on a fault, which Failure() then tells. Lines are cut at '\n' by this
    // reader itself, so that a NUL byte cannot hide a line end.
    bool Next(std::string& line) {
        line.clear();
        if (done_) return false;
        bool any = false, complete = false;
        while (!complete) {
            if (position_ == filled_) {
                int n = gzread(file_, chunk_.data(), static_cast<unsigned>(chunk_.size()));
                if (n <= 0) {
                    // A gzip file cut short ends without an error from gzread,
                    // but gzerror tells; its last, cut line is not taken.
                    int code = Z_OK;
                    const char* message = gzerror(file_, &code);
                    if (n < 0 || code != Z_OK) {
                        std::string what = message && *message ? message : "read error";
                        if (what.rfind(path_ + ": ", 0) == 0) what.erase(0, path_.size() + 2);  // zlib names the file too
                        ++line_number_;
                        return Fault("cannot read (" + what + ")");
                    }
                    break;
                }
                filled_ = static_cast<size_t>(n);
                position_ = 0;
            }
            any = true;
            const char* begin = chunk_.data() + position_;
            size_t available = filled_ - position_;
            const void* newline = std::memchr(begin, '\n', available);
            size_t take = newline ? static_cast<size_t>(static_cast<const char*>(newline) - begin) : available;
            line.append(begin, take);
            position_ += take;
            if (newline) {
                ++position_;
                complete = true;
            }
        }
        if (!any) {
            done_ = true;
            FinishProgress();
            return false;
        }
        ++line_number_;
        if (line.find('\0') != std::string::npos) return Fault("NUL byte inside the line");
        while (!line.empty() && line.back() == '\r') line.pop_back();
        if ((line_number_ & 0x3FFF) == 0) Progress();
        return true;
    }
    // The message of a read fault or a NUL byte, or empty.
    const std::string& Failure() const { return failure_; }
    std::string Where() const { return path_ + ":" + std::to_string(line_number_); }
    const std::string& path() const { return path_; }
    long line_number() const { return line_number_; }

private:
    bool Fault(const std::string& message) {
        failure_ = Where() + ": " + message;
        done_ = true;
        FinishProgress();
        return false;
    }
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
    std::vector<char> chunk_ = std::vector<char>(64 * 1024);  // decompressed bytes not yet cut into lines
    size_t position_ = 0, filled_ = 0;
    bool done_ = false;
    std::string failure_;
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

// A number column of an input file: its name in messages and what it may hold.
struct NumberColumn {
    const char* name;
    double low, high;                        // inclusive range
    bool whole;                              // no fraction
    const char* form;                        // told in the message of a bad value
};

constexpr NumberColumn kRowCode{"row code", 0, 999, true, "a whole number"};
constexpr NumberColumn kLatitude{"latitude", -90, 90, false, "decimal degrees within -90..90"};
constexpr NumberColumn kLongitude{"longitude", -180, 180, false, "decimal degrees within -180..180"};
// nav.dat: NDBs in kHz; VORs and localizers in 10 kHz, 108.00 to 118.00 MHz.
constexpr NumberColumn kNdbFrequency{"NDB frequency", 100, 1999, true, "whole kHz within 100..1999"};
constexpr NumberColumn kVhfFrequency{"frequency", 10800, 11800, true, "whole 10 kHz within 10800..11800"};
// A VOR's variation or a localizer's true course; folded into 0..360 later.
constexpr NumberColumn kDirection{"variation or course", -720, 720, false, "degrees within -720..720"};
constexpr NumberColumn kElevation{"elevation", -2000, 30000, false, "feet within -2000..30000"};
constexpr NumberColumn kDisplacedThreshold{"displaced threshold", -10000, 10000, false, "metres within -10000..10000"};
constexpr NumberColumn kTowerHeight{"tower height", 0, 5000, false, "feet within 0..5000"};
constexpr NumberColumn kHeading{"heading", -360, 720, false, "degrees within -360..720"};

// A column's text for a message: printable, and short enough for one line.
std::string Shown(std::string_view text) {
    std::string shown;
    for (char c : text.substr(0, 40)) shown += (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) ? '?' : c;
    if (text.size() > 40) shown += "...";
    return shown;
}

// Reads words[index] as the column says. A bad value is an error naming the
// file, the line, the column and the text.
bool ReadNumber(const InputFile& in, const std::vector<std::string_view>& words, size_t index,
                const NumberColumn& column, double& value, std::string& error) {
    std::string_view text = index < words.size() ? words[index] : std::string_view();
    double read = 0;
    if (!ParseDecimal(text, read) || read < column.low || read > column.high ||
        (column.whole && read != std::floor(read))) {
        error = in.Where() + ": bad " + column.name + " '" + Shown(text) + "' (" + column.form + ")";
        return false;
    }
    value = read;
    return true;
}

// What a text column may not hold once written into the module's files.
enum class TextUse {
    Name,                                    // a name column: no control characters
    Ident,                                   // also never a leading ';', which makes a comment line
    RunwayField,                             // a field of a runway column: also no '_', the fields' glue
};

bool CheckText(const InputFile& in, std::string_view text, const char* what, TextUse use, std::string& error) {
    const char* fault = nullptr;
    for (char c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) fault = "a control character";
    if (!fault && use != TextUse::Name && !text.empty() && text[0] == ';') fault = "a leading ';'";
    if (!fault && use == TextUse::RunwayField && text.find('_') != std::string_view::npos) fault = "a '_'";
    if (!fault) return true;
    error = in.Where() + ": " + what + " '" + Shown(text) + "' holds " + fault;
    return false;
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
        error = in.Failure().empty() ? in.path() + ":1: empty file" : in.Failure();
        return false;
    }
    // The byte-order line; some published files leave it empty.
    if (line != "I" && line != "A" && !Words(line).empty()) {
        error = in.Where() + ": not an X-Plane data file (first line must be I, A or empty)";
        return false;
    }
    if (!in.Next(line)) {
        error = in.Failure().empty() ? in.Where() + ": file ends before its version line" : in.Failure();
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
        if (!ReadNumber(in, w, 0, kRowCode, type, error)) return false;
        int code = static_cast<int>(type);
        // Glide slopes, markers and codes the format may add later are not read.
        if (code != 2 && code != 3 && code != 4 && code != 5 && code != 12 && code != 13) continue;
        if (w.size() < 9) {
            error = in.Where() + ": navaid row has " + std::to_string(w.size()) + " columns, at least 9 expected";
            return false;
        }
        double lat = 0, lon = 0, freq = 0, var = 0;
        if (!ReadNumber(in, w, 1, kLatitude, lat, error) || !ReadNumber(in, w, 2, kLongitude, lon, error)) return false;
        if (code == 12 || code == 13) {
            if (InRegion(options.region, lat, lon)) ++data.dme_skipped;
            continue;
        }
        if (!ReadNumber(in, w, 4, code == 2 ? kNdbFrequency : kVhfFrequency, freq, error) ||
            !ReadNumber(in, w, 6, kDirection, var, error))
            return false;
        std::string ident(w[7]);
        if (code == 3) data.variations.push_back({lat, lon, var});  // every VOR, inside the region or not
        if (code == 4 || code == 5) {
            if (w.size() < 10) {
                error = in.Where() + ": localizer row without airport and runway";
                return false;
            }
            // The ident goes into a runway column of apts.txt.
            if (!CheckText(in, w[7], "localizer ident", TextUse::RunwayField, error)) return false;
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
        if (!CheckText(in, w[7], "ident", TextUse::Ident, error)) return false;
        for (size_t i = 8; i < name_end; ++i)
            if (!CheckText(in, w[i], "name", TextUse::Name, error)) return false;
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
    if (!in.Failure().empty()) {
        error = in.Failure();
        return false;
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
        if (!ReadNumber(in, w, 0, kLatitude, lat, error) || !ReadNumber(in, w, 1, kLongitude, lon, error)) return false;
        if (!InRegion(options.region, lat, lon)) continue;
        if (!CheckText(in, w[2], "ident", TextUse::Ident, error)) return false;
        fixes.push_back({std::string(w[2]), lat, lon});
    }
    if (!in.Failure().empty()) {
        error = in.Failure();
        return false;
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
        if (!ReadNumber(in, w, 1, kLatitude, lat1, error) || !ReadNumber(in, w, 2, kLongitude, lon1, error) ||
            !ReadNumber(in, w, 4, kLatitude, lat2, error) || !ReadNumber(in, w, 5, kLongitude, lon2, error))
            return false;
        // A stretch belongs to the region when both its ends do.
        if (!InRegion(options.region, lat1, lon1) || !InRegion(options.region, lat2, lon2)) continue;
        if (!CheckText(in, w[0], "ident", TextUse::Ident, error) || !CheckText(in, w[3], "ident", TextUse::Ident, error) ||
            !CheckText(in, w[9], "airway name", TextUse::Ident, error))
            return false;
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
    if (!in.Failure().empty()) {
        error = in.Failure();
        return false;
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

// A place to stand at an airport: a start location (row 1300) or an older
// ramp start (row 15).
struct StartPlace {
    double lat = 0, lon = 0;                 // degrees
    double heading = 0;                      // true degrees
    bool gate = false;                       // a 1300 row of type "gate"
    bool newer = false;                      // a 1300 row (else 15)
};

struct Airport {
    std::string ident, name;
    int elevation = 0;
    std::vector<RunwayEnd> ends;
    bool has_tower = false;                  // a row 14 was seen
    double tower_lat = 0, tower_lon = 0;     // degrees
    double tower_height_ft = 0;              // above the airport's elevation
    std::vector<StartPlace> starts;          // rows 1300 and 15, in file order
    std::vector<std::string> right_circuits; // runways whose row 1101 says "right"
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
            if (!ReadNumber(in, w, 1, kElevation, elevation, error)) return false;
            if (!CheckText(in, w[4], "ident", TextUse::Ident, error)) return false;
            for (size_t i = 5; i < w.size(); ++i)
                if (!CheckText(in, w[i], "name", TextUse::Name, error)) return false;
            current.elevation = static_cast<int>(std::lround(elevation));
            current.ident = std::string(w[4]);
            current.name = Join(w, 5, w.size(), '_');
            if (current.name.empty()) current.name = current.ident;
            continue;
        }
        if (!in_land_airport) continue;
        // Row 14: the tower viewpoint, its height in feet above the airport.
        if (w[0] == "14") {
            if (w.size() < 4) {
                error = in.Where() + ": tower row has " + std::to_string(w.size()) + " columns, at least 4 expected";
                return false;
            }
            double lat = 0, lon = 0, height = 0;
            if (!ReadNumber(in, w, 1, kLatitude, lat, error) || !ReadNumber(in, w, 2, kLongitude, lon, error) ||
                !ReadNumber(in, w, 3, kTowerHeight, height, error))
                return false;
            if (!current.has_tower) {
                current.has_tower = true;
                current.tower_lat = lat, current.tower_lon = lon, current.tower_height_ft = height;
            }
            continue;
        }
        // Rows 15 and 1300: places to start from.
        if (w[0] == "15" || w[0] == "1300") {
            bool newer = w[0] == "1300";
            if (w.size() < 4 || (newer && w.size() < 5)) {
                error = in.Where() + ": start row has " + std::to_string(w.size()) + " columns, at least " +
                        (newer ? "5" : "4") + " expected";
                return false;
            }
            StartPlace place;
            if (!ReadNumber(in, w, 1, kLatitude, place.lat, error) || !ReadNumber(in, w, 2, kLongitude, place.lon, error) ||
                !ReadNumber(in, w, 3, kHeading, place.heading, error))
                return false;
            place.heading = FoldDegrees(place.heading);
            place.newer = newer;
            place.gate = newer && w[4] == "gate";
            current.starts.push_back(place);
            continue;
        }
        // Row 1101: a runway's traffic pattern, "left" or "right".
        if (w[0] == "1101") {
            if (w.size() < 3) {
                error = in.Where() + ": traffic pattern row has " + std::to_string(w.size()) + " columns, 3 expected";
                return false;
            }
            if (!CheckText(in, w[1], "runway designator", TextUse::RunwayField, error)) return false;
            if (w[2] != "left" && w[2] != "right") {
                error = in.Where() + ": traffic pattern '" + Shown(w[2]) + "' is neither left nor right";
                return false;
            }
            std::string runway(w[1]);
            if (w[2] == "right" &&
                std::find(current.right_circuits.begin(), current.right_circuits.end(), runway) == current.right_circuits.end())
                current.right_circuits.push_back(runway);
            continue;
        }
        if (w[0] != "100") continue;
        if (w.size() < 26) {
            error = in.Where() + ": runway row has " + std::to_string(w.size()) + " columns, 26 expected";
            return false;
        }
        double lat[2], lon[2], displaced[2];
        for (int side = 0; side < 2; ++side) {
            size_t base = 8 + static_cast<size_t>(side) * 9;
            if (!CheckText(in, w[base], "runway designator", TextUse::RunwayField, error) ||
                !ReadNumber(in, w, base + 1, kLatitude, lat[side], error) ||
                !ReadNumber(in, w, base + 2, kLongitude, lon[side], error) ||
                !ReadNumber(in, w, base + 3, kDisplacedThreshold, displaced[side], error))
                return false;
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
    if (!in.Failure().empty()) {
        error = in.Failure();
        return false;
    }
    if (!ended) {
        error = in.Where() + ": file ends without its closing 99 line";
        return false;
    }
    finish();
    return true;
}

// [SECTION] Writing: all four files replaced, or none
//
// Each file is written under a temporary name beside its final one. The
// commit then keeps the old files as backups (hard links, or copies where
// the file system has none), notes in a journal what it is about to do,
// renames the four temporaries in, and on a failed rename puts the backups
// back. A process killed between two renames leaves the journal; the next
// import into the folder reads it first and puts the old files back, so a
// database is never left half old and half new for longer than that.
constexpr char kNewSuffix[] = ".orbnav-new";     // a file being written
constexpr char kOldSuffix[] = ".orbnav-old";     // the file it replaces, until the commit ends
constexpr char kJournalName[] = "orbnav-import.journal";
constexpr char kParkingFileName[] = "orb_parking.txt";   // in orb/Aircraft/, named by ParkingFile
constexpr const char* kOutputNames[] = {"apts.txt", "navs.txt", "ints.txt", "awys.txt", "orb_apts.txt",
                                        "apt_additional_info.txt", kParkingFileName};
// Tests set this to a number of renames after which the commit stops dead,
// as a killed process would.
constexpr char kCrashAfterRenamesVariable[] = "ORBNAV_TEST_CRASH_AFTER_RENAMES";

std::string SystemError() { return std::strerror(errno); }

bool Exists(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

// Flushes a folder's entries (the renames) to the disk; a file system that
// cannot is passed over.
void SyncFolder(const std::string& folder) {
    int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

bool CopyFile(const std::string& from, const std::string& to) {
    FILE* in = std::fopen(from.c_str(), "rb");
    if (!in) return false;
    FILE* out = std::fopen(to.c_str(), "wb");
    bool ok = out != nullptr;
    std::vector<char> buffer(64 * 1024);
    while (ok) {
        size_t n = std::fread(buffer.data(), 1, buffer.size(), in);
        if (n > 0 && std::fwrite(buffer.data(), 1, n, out) != n) ok = false;
        if (n < buffer.size()) {
            if (std::ferror(in)) ok = false;
            break;
        }
    }
    std::fclose(in);
    if (out) {
        if (std::fflush(out) != 0 || fsync(fileno(out)) != 0) ok = false;
        if (std::fclose(out) != 0) ok = false;
    }
    if (!ok) std::remove(to.c_str());
    return ok;
}

// Puts a folder back as it stood before an interrupted commit, from the
// journal that commit left. Leftovers of a commit that ended (backups) or of
// an import killed while writing (temporaries) are removed. Returns false
// with a message when the old files could not be put back.
bool RecoverInterruptedCommit(const std::string& folder, bool& recovered, std::string& error) {
    recovered = false;
    std::string journal = folder + "/" + kJournalName;
    FILE* file = std::fopen(journal.c_str(), "rb");
    if (file) {
        // "begin", then "replace NAME" (a backup stands beside it) or "create
        // NAME" (there was none), then "end". Without "end" the journal was
        // cut short while being written: nothing had been renamed yet.
        std::vector<std::pair<std::string, std::string>> steps;
        bool begun = false, complete = false;
        char line[256];
        while (std::fgets(line, sizeof line, file)) {
            std::string_view text(line);
            while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
            if (text == "begin") begun = true;
            else if (text == "end") complete = begun;
            else if (size_t blank = text.find(' '); blank != std::string_view::npos) {
                std::string action(text.substr(0, blank)), name(text.substr(blank + 1));
                bool known = false;
                for (const char* n : kOutputNames) known = known || name == n;
                if (known && (action == "replace" || action == "create")) steps.emplace_back(action, name);
            }
        }
        std::fclose(file);
        if (complete) {
            for (const auto& [action, name] : steps) {
                std::string final_path = folder + "/" + name, backup = final_path + kOldSuffix;
                if (action == "replace" && Exists(backup) && std::rename(backup.c_str(), final_path.c_str()) != 0) {
                    error = final_path + ": cannot put the old file back from " + backup + " (" + SystemError() + ")";
                    return false;
                }
                if (action == "create") std::remove(final_path.c_str());
            }
            recovered = true;
        }
        SyncFolder(folder);
        std::remove(journal.c_str());
    }
    for (const char* name : kOutputNames) {
        std::remove((folder + "/" + name + kOldSuffix).c_str());
        std::remove((folder + "/" + name + kNewSuffix).c_str());
    }
    return true;
}

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
        e.name = name;
        e.final_path = folder_ + "/" + name;
        e.temporary = e.final_path + kNewSuffix;
        e.backup = e.final_path + kOldSuffix;
        e.file = std::fopen(e.temporary.c_str(), "wb");
        if (!e.file) {
            error = e.temporary + ": cannot write (" + SystemError() + ")";
            return nullptr;
        }
        files_.push_back(e);
        return files_.back().file;
    }
    bool Commit(std::string& error) {
        // 1. Every temporary complete and on the disk.
        for (auto& f : files_) {
            bool bad = std::ferror(f.file) != 0 || std::fflush(f.file) != 0 || fsync(fileno(f.file)) != 0;
            if (std::fclose(f.file) != 0) bad = true;
            f.file = nullptr;
            if (bad) {
                error = f.temporary + ": write failed (" + SystemError() + ")";
                return false;
            }
        }
        // 2. A backup of each old file. A folder in a file's place needs
        //    none: no rename can replace it, so it stays as it is.
        for (auto& f : files_) {
            struct stat st {};
            if (lstat(f.final_path.c_str(), &st) != 0) continue;
            if (S_ISDIR(st.st_mode)) {
                f.untouchable = true;
                continue;
            }
            std::remove(f.backup.c_str());
            if (link(f.final_path.c_str(), f.backup.c_str()) != 0 && !CopyFile(f.final_path, f.backup)) {
                error = f.final_path + ": cannot keep a copy of the old file (" + SystemError() + "); nothing was changed";
                RemoveBackups();
                return false;
            }
            f.had_old = true;
        }
        // 3. The journal, on the disk before the first rename.
        std::string journal = folder_ + "/" + kJournalName;
        if (!WriteJournal(journal)) {
            error = journal + ": cannot write (" + SystemError() + "); nothing was changed";
            std::remove(journal.c_str());
            RemoveBackups();
            return false;
        }
        SyncFolder(folder_);
        // 4. The renames; a failed one puts back those done before it.
        const char* crash = std::getenv(kCrashAfterRenamesVariable);
        int crash_after = crash ? std::atoi(crash) : -1;
        int renamed = 0;
        for (auto& f : files_) {
            if (std::rename(f.temporary.c_str(), f.final_path.c_str()) != 0) {
                error = f.final_path + ": cannot replace (" + SystemError() + ")";
                if (RollBack()) {
                    std::remove(journal.c_str());
                    RemoveBackups();
                    error += "; the old files are back";
                } else {
                    error += "; putting the old files back failed too, the next import into this folder will";
                }
                return false;
            }
            f.renamed = true;
            if (++renamed == crash_after) std::_Exit(3);
        }
        // 5. Done: the journal goes first, then the backups.
        SyncFolder(folder_);
        std::remove(journal.c_str());
        SyncFolder(folder_);
        RemoveBackups();
        return true;
    }

private:
    struct Entry {
        std::string name, final_path, temporary, backup;
        FILE* file = nullptr;
        bool renamed = false;                // the temporary is now the final file
        bool had_old = false;                // an old file was there, its backup is kept
        bool untouchable = false;            // a folder stands at the final name
    };
    bool WriteJournal(const std::string& path) {
        FILE* file = std::fopen(path.c_str(), "wb");
        if (!file) return false;
        std::fprintf(file, "begin\n");
        for (const auto& f : files_)
            if (!f.untouchable) std::fprintf(file, "%s %s\n", f.had_old ? "replace" : "create", f.name.c_str());
        std::fprintf(file, "end\n");
        bool ok = std::ferror(file) == 0 && std::fflush(file) == 0 && fsync(fileno(file)) == 0;
        return std::fclose(file) == 0 && ok;
    }
    bool RollBack() {
        bool ok = true;
        for (auto& f : files_) {
            if (!f.renamed) continue;
            if (f.had_old ? std::rename(f.backup.c_str(), f.final_path.c_str()) != 0
                          : std::remove(f.final_path.c_str()) != 0)
                ok = false;
            else
                f.renamed = false;  // so the destructor does not look for its temporary
        }
        SyncFolder(folder_);
        return ok;
    }
    void RemoveBackups() {
        for (auto& f : files_)
            if (f.had_old) std::remove(f.backup.c_str());
    }
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
        if (!ParseDecimal(part, v[i])) {
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
    // An import killed in its commit is undone first, whatever this one does.
    std::string folder = options.destination + "/orb/navdata";
    std::string aircraft_folder = options.destination + "/orb/Aircraft";
    if (!RecoverInterruptedCommit(folder, summary.interrupted_import_undone, error)) return false;
    bool aircraft_undone = false;
    if (!RecoverInterruptedCommit(aircraft_folder, aircraft_undone, error)) return false;
    summary.interrupted_import_undone = summary.interrupted_import_undone || aircraft_undone;
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
    // orb_apts.txt: each runway end's length, twenty ends a line; an airport
    // with more goes on in further lines of its own (every line is read).
    FILE* lengths = out.Open("orb_apts.txt", error);
    if (!lengths) return false;
    for (const Airport& a : airports) {
        for (size_t first = 0; first < a.ends.size(); first += kMaxRunwayColumns) {
            std::fprintf(lengths, "%s %s %d %.6f %.6f", a.ident.c_str(), a.name.c_str(), a.elevation,
                         a.ends[first].end_lat, a.ends[first].end_lon);
            for (size_t i = first; i < a.ends.size() && i < first + kMaxRunwayColumns; ++i)
                std::fprintf(lengths, " %s_%d", a.ends[i].designator.c_str(), a.ends[i].length_ft);
            std::fprintf(lengths, "\n");
            ++summary.runway_length_lines;
        }
    }

    // apt_additional_info.txt: a section for each airport with a tower
    // viewpoint or a right-hand circuit, ended by an empty line.
    FILE* info = out.Open("apt_additional_info.txt", error);
    if (!info) return false;
    std::fprintf(info, "; Airport extras made by orbnav from apt.dat: right-hand circuits (row 1101)\n"
                       "; and tower views (row 14, altitude = airport elevation + tower height, feet).\n\n");
    for (const Airport& a : airports) {
        if (!a.has_tower && a.right_circuits.empty()) continue;
        std::fprintf(info, "[%s]\n", a.ident.c_str());
        for (const std::string& runway : a.right_circuits) {
            std::fprintf(info, "RWY%s=RIGHTPATTERN\n", runway.c_str());
            ++summary.right_circuits;
        }
        if (a.has_tower) {
            std::fprintf(info, "TowerViewLat=%.8f\nTowerViewLon=%.8f\nTowerViewAlt=%.0f\n", a.tower_lat, a.tower_lon,
                         a.elevation + a.tower_height_ft);
            ++summary.tower_views;
        }
        std::fprintf(info, "\n");
    }
    if (!out.Commit(error)) return false;

    // orb/Aircraft/orb_parking.txt: one place an airport, the first gate of
    // the start locations, else the first start location, else the first
    // ramp start. Written after the database: a failure here leaves the
    // new database with the old parking file.
    if (!MakeFolders(aircraft_folder, error)) return false;
    OutputSet aircraft_out(aircraft_folder);
    FILE* parking = aircraft_out.Open(kParkingFileName, error);
    if (!parking) return false;
    for (const Airport& a : airports) {
        const StartPlace* chosen = nullptr;
        for (const StartPlace& p : a.starts)
            if (p.gate) {
                chosen = &p;
                break;
            }
        for (const StartPlace& p : a.starts)
            if (!chosen && p.newer) chosen = &p;
        if (!chosen && !a.starts.empty()) chosen = &a.starts.front();
        if (!chosen) continue;
        std::fprintf(parking, "%s %.8f %.8f %.2f\n", a.ident.c_str(), chosen->lat, chosen->lon, chosen->heading);
        ++summary.parking_positions;
    }
    return aircraft_out.Commit(error);
}
