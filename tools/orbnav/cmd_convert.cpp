// cmd_convert.cpp: `orbnav convert IN OUT`, a plan from one tool's file
// format to another's, chosen by the files' extensions. Waypoints whose
// kind the input can't tell (and navaids without a frequency) are looked up
// in the navigation database when one is named. The output is written to a
// temporary file beside it and renamed, so that a failed run leaves nothing
// half-written.
#include "cmd_nav_common.h"
#include "command.h"

#include "guidance/geodesy.h"
#include "navdata/nav_database.h"
#include "plan/route_formats.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <sys/stat.h>

namespace {
constexpr double kSamePointNm = 5;           // a database row this near is the file's waypoint

const char kHelp[] =
    "usage: orbnav convert IN OUT [--pln-form xml|fs2004] [--fms-version 3|11] [--root DIR]\n"
    "\n"
    "Converts a flight plan between file formats, each chosen by its extension:\n"
    "  .rte   the module's route file\n"
    "  .pln   the simulator planner's plan: read in either form (an XML file is\n"
    "         told by its first \"<\"); written in the XML form unless\n"
    "         --pln-form fs2004 asks for the older text form\n"
    "  .fms   another simulator's plan: read in version 3 or 11 (its second line\n"
    "         says which); written as version 11 unless --fms-version 3\n"
    "  .fgfp  an open-source simulator's route (XML property list)\n"
    "Airways go along where both formats have them (.rte, .pln, .fms 11).\n"
    "With --root DIR (or --navdata DIR, the same folder) the simulator folder's\n"
    "database gives the kind and frequency of waypoints the input can't tell.\n";

bool EndsWith(const std::string& s, const char* suffix) {
    size_t n = std::strlen(suffix);
    if (s.size() < n) return false;
    for (size_t i = 0; i < n; ++i) {
        char c = s[s.size() - n + i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
        if (c != suffix[i]) return false;
    }
    return true;
}

enum class Family { Rte, Pln, Fms, FlightGear, Unknown };

Family FamilyOf(const std::string& path) {
    if (EndsWith(path, ".rte")) return Family::Rte;
    if (EndsWith(path, ".pln")) return Family::Pln;
    if (EndsWith(path, ".fms")) return Family::Fms;
    if (EndsWith(path, ".fgfp")) return Family::FlightGear;
    return Family::Unknown;
}

bool ReadWholeFile(const std::string& path, std::string& text, std::string& error) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        error = path + ": cannot be read";
        return false;
    }
    char buffer[1 << 14];
    size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        text.append(buffer, n);
        if (text.size() > kMaxRouteText) break;
    }
    std::fclose(file);
    return true;
}

// The format of an input, from its extension and, for two of them, its text.
RouteFormat InputFormat(Family family, const std::string& text) {
    size_t first = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    switch (family) {
    case Family::Rte: return RouteFormat::Rte;
    case Family::Pln: return first != std::string::npos && text[first] == '<' ? RouteFormat::PlnXml : RouteFormat::PlnText;
    case Family::Fms: return text.find("1100") != std::string::npos && text.find("1100") < 16 ? RouteFormat::Fms11 : RouteFormat::Fms3;
    default: return RouteFormat::FlightGear;
    }
}

double Distance(double lat1, double lon1, double lat2, double lon2) {
    double distance = 0, bearing = 0;
    GreatCircle(lat1, lon1, lat2, lon2, distance, bearing);
    return distance;
}

// Kind and frequency from the database, by ident within 5 nm.
void Resolve(RoutePoint& p) {
    bool need_kind = !p.kind_known;
    bool need_frequency = (p.kind == PointKind::Vor || p.kind == PointKind::Ndb || need_kind) && p.frequency.empty();
    if (!need_kind && !need_frequency) return;
    for (NavTableId id : {NavTableId::Airports, NavTableId::Navaids, NavTableId::Intersections}) {
        const BulkTable& t = TableOf(id);
        for (int r = 1; r <= t.count; ++r) {
            if (IdentOf(t, r) != p.ident) continue;
            const BulkRow& row = t.rows[static_cast<size_t>(r)];
            if (Distance(p.lat, p.lon, row.Latitude, row.Longitude) > kSamePointNm) continue;
            if (id == NavTableId::Navaids && !need_kind && (p.kind == PointKind::Vor) != (row.kind == 'V')) continue;
            if (need_kind) {
                p.kind = id == NavTableId::Airports ? PointKind::Airport
                       : id == NavTableId::Intersections ? PointKind::Fix
                       : row.kind == 'V' ? PointKind::Vor : PointKind::Ndb;
                p.kind_known = true;
            }
            if (id == NavTableId::Navaids) {
                NavRecord record;
                CopyRecord(t, r, record);
                p.frequency = record.Frequency.data();
            }
            return;
        }
    }
    // Not in the database: a named point the format couldn't type is a fix.
    if (need_kind) p.kind = PointKind::Fix;
}

int Convert(int argc, char** argv) {
    std::string in, out, root, pln_form = "xml", fms_version = "11";
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= argc) return false;
            into = argv[++i];
            return true;
        };
        if (a == "--help" || a == "-h") {
            std::fputs(kHelp, stdout);
            return 0;
        } else if (a == "--pln-form") {
            if (!value(pln_form) || (pln_form != "xml" && pln_form != "fsx" && pln_form != "fs2004"))
                return Fail("convert: --pln-form takes xml (or fsx) or fs2004");
        } else if (a == "--fms-version") {
            if (!value(fms_version) || (fms_version != "3" && fms_version != "11"))
                return Fail("convert: --fms-version takes 3 or 11");
        } else if (a == "--root" || a == "--navdata") {
            if (!value(root)) return Fail("convert: %s needs a folder", a.c_str());
        } else if (!a.empty() && a[0] == '-') {
            return Fail("convert: unknown option %s (orbnav convert --help)", a.c_str());
        } else if (in.empty()) {
            in = a;
        } else if (out.empty()) {
            out = a;
        } else {
            return Fail("convert: one input and one output (orbnav convert --help)");
        }
    }
    if (in.empty() || out.empty()) return Fail("convert: usage: orbnav convert IN OUT (orbnav convert --help)");
    Family from = FamilyOf(in), to = FamilyOf(out);
    if (from == Family::Unknown) return Fail("%s: unknown extension (.rte, .pln, .fms or .fgfp)", in.c_str());
    if (to == Family::Unknown) return Fail("%s: unknown extension (.rte, .pln, .fms or .fgfp)", out.c_str());

    // 1. Read and parse; a bad line ends the run naming file and line.
    std::string text, error;
    if (!ReadWholeFile(in, text, error)) return Fail("%s", error.c_str());
    RouteFormat in_format = InputFormat(from, text);
    RoutePlan plan;
    RouteError bad;
    if (!ReadRouteText(in_format, text, plan, bad)) {
        if (bad.line > 0) return Fail("%s:%d: %s", in.c_str(), bad.line, bad.message.c_str());
        return Fail("%s: %s", in.c_str(), bad.message.c_str());
    }
    if (plan.points.empty()) return Fail("%s: no waypoints", in.c_str());

    // 2. Kinds and frequencies from the database.
    if (!root.empty()) {
        if (!UseSimulatorFolder(root.c_str(), error)) return Fail("%s", error.c_str());
        std::string missing;
        if (!HasNavigationData(missing, error)) return Fail("%s", error.c_str());
        LoadDatabaseOf();
        for (RoutePoint& p : plan.points) Resolve(p);
    } else {
        for (RoutePoint& p : plan.points)
            if (!p.kind_known) p.kind = PointKind::Fix;
    }

    // 3. Written whole to a temporary file, then renamed over the output.
    RouteFormat out_format = to == Family::Rte ? RouteFormat::Rte
                           : to == Family::Pln ? (pln_form == "fs2004" ? RouteFormat::PlnText : RouteFormat::PlnXml)
                           : to == Family::Fms ? (fms_version == "3" ? RouteFormat::Fms3 : RouteFormat::Fms11)
                                               : RouteFormat::FlightGear;
    std::string result = WriteRouteText(out_format, plan);
    std::string temporary = out + ".orbnav-tmp";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (file == nullptr) return Fail("%s: cannot be written", out.c_str());
    bool written = std::fwrite(result.data(), 1, result.size(), file) == result.size();
    written = std::fclose(file) == 0 && written;
    if (!written || std::rename(temporary.c_str(), out.c_str()) != 0) {
        std::remove(temporary.c_str());
        return Fail("%s: cannot be written", out.c_str());
    }
    int airways = 0;
    for (const RoutePoint& p : plan.points) airways += !p.via.empty();
    std::printf("%s (%s) -> %s (%s): %zu waypoints", in.c_str(), FormatName(in_format), out.c_str(), FormatName(out_format),
                plan.points.size());
    if (airways > 0) std::printf(", %d on airways%s", airways, FormatHasAirways(out_format) ? "" : " (not kept: the format has none)");
    std::printf("\n");
    return 0;
}

const OrbnavCommand kConvert("convert", "converts a flight plan between .rte, .pln, .fms and .fgfp", &Convert);
}  // namespace
