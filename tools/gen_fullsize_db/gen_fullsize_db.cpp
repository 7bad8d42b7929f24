// gen_fullsize_db.cpp: writes a navigation database with every bulk table at
// its limit (25,000 airports, 30,000 navaids, 300,000 intersections, 150,000
// airway fixes), in the module's file formats, for the benchmarks. The data
// is made up but shaped like real data: world-wide positions, real-looking
// idents and line lengths, airports with runways and localizers. The first
// 10,000 airports also have procedure sections (SIDs, STARs, approaches with
// coded legs and transitions); the bench airport BNCH has the largest, last
// in every file, where a reader from the top would find it last.
//
// usage: gen_fullsize_db DIR   (writes DIR/orb/navdata/*.txt)
#include "navdata/nav_database.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {
std::mt19937 g_random(20131010);  // fixed seed: the same files every time

double Uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(g_random); }
int Below(int n) { return static_cast<int>(g_random() % static_cast<unsigned>(n)); }

constexpr int kProcedureAirports = 10000;   // airports with procedure sections
constexpr int kBenchProcedures = 60;        // SIDs (and STARs, approaches) of the bench airport

// An airport as its procedures need it.
struct ProcedureAirport {
    std::string ident;
    double lat = 0, lon = 0;
    std::vector<std::string> runways;
};

std::string Letters(int count) {
    std::string s;
    for (int i = 0; i < count; ++i) s += static_cast<char>('A' + Below(26));
    return s;
}

bool Close(FILE* f, const std::string& path) {
    bool ok = std::ferror(f) == 0;
    if (std::fclose(f) != 0) ok = false;
    if (!ok) std::fprintf(stderr, "gen_fullsize_db: %s: write failed\n", path.c_str());
    return ok;
}
}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || std::string(argv[1]) == "--help") {
        std::fprintf(argc == 2 ? stdout : stderr, "usage: gen_fullsize_db DIR\nwrites DIR/orb/navdata/{apts,navs,ints,awys}.txt "
                                                  "with every table at its limit, and {sids,stars,apps}.txt\n");
        return argc == 2 ? 0 : 2;
    }
    std::filesystem::path folder = std::filesystem::path(argv[1]) / "orb" / "navdata";
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    if (ec) {
        std::fprintf(stderr, "gen_fullsize_db: %s: %s\n", folder.c_str(), ec.message().c_str());
        return 1;
    }
    auto open = [&](const char* name, std::string& path) {
        path = (folder / name).string();
        FILE* f = std::fopen(path.c_str(), "w");
        if (f == nullptr) std::fprintf(stderr, "gen_fullsize_db: %s: cannot write\n", path.c_str());
        return f;
    };
    std::string path;

    // Airports: four-letter idents, names of two or three words, two to four runways.
    FILE* apts = open("apts.txt", path);
    if (!apts) return 1;
    std::vector<ProcedureAirport> with_procedures;
    for (int i = 0; i < kAirportLimit; ++i) {
        double lat = Uniform(-60, 70), lon = Uniform(-180, 180);
        std::string ident = i == 0 ? std::string("BNCH") : Letters(4);
        std::fprintf(apts, "%s %s_%s_INTL %d %.6f %.6f", ident.c_str(), Letters(7).c_str(), Letters(5).c_str(), Below(9000), lat, lon);
        if (i < kProcedureAirports) with_procedures.push_back({ident, lat, lon, {}});
        int runways = 1 + Below(2);
        for (int r = 0; r < runways; ++r) {
            int heading = 10 + Below(170);
            for (int end = 0; end < 2; ++end) {
                int h = heading + end * 180;
                char name[8];
                std::snprintf(name, sizeof name, "%02d", h / 10);
                if (i < kProcedureAirports) with_procedures.back().runways.push_back(name);
                std::fprintf(apts, " %02d_%d_%.6f_%.6f_%d", h / 10, 4000 + Below(9000), lat + Uniform(-0.02, 0.02),
                             lon + Uniform(-0.02, 0.02), h);
                if (Below(3) == 0) std::fprintf(apts, "_%d.%02d_I%s_%d", 108 + Below(4), 5 * Below(20), Letters(3).c_str(), h);
            }
        }
        std::fprintf(apts, "\n");
    }
    if (!Close(apts, path)) return 1;

    // Navaids: sorted by ident, VORs and NDBs, the cycle first.
    struct Navaid {
        std::string ident, line;
    };
    std::vector<Navaid> navaids;
    for (int i = 0; i < kNavaidLimit; ++i) {
        std::string ident = i < 3 ? "BNC" : Letters(2 + Below(2));
        bool vor = Below(2) == 0;
        char line[160];
        std::snprintf(line, sizeof line, "%s %s %.6f %.6f %s %s\n", ident.c_str(), Letters(8).c_str(), Uniform(-60, 70),
                      Uniform(-180, 180), vor ? "VOR" : "NDB",
                      vor ? (std::to_string(108 + Below(10)) + "." + std::to_string(10 + Below(90))).c_str()
                          : std::to_string(190 + Below(500)).c_str());
        navaids.push_back({ident, line});
    }
    std::stable_sort(navaids.begin(), navaids.end(), [](const Navaid& a, const Navaid& b) { return a.ident < b.ident; });
    FILE* navs = open("navs.txt", path);
    if (!navs) return 1;
    std::fprintf(navs, ";AIRAC cycle is 1310 (19-SEP-2013 to 17-OCT-2013)\n");
    for (const Navaid& n : navaids) std::fputs(n.line.c_str(), navs);
    if (!Close(navs, path)) return 1;

    // Intersections: five-letter names, a few shared by many.
    FILE* ints = open("ints.txt", path);
    if (!ints) return 1;
    for (int i = 0; i < kIntersectionLimit; ++i) {
        std::string ident = i % 1500 == 0 ? "BENCH" : Letters(5);
        std::fprintf(ints, "%s %s %.6f %.6f\n", ident.c_str(), ident.c_str(), Uniform(-60, 70), Uniform(-180, 180));
    }
    if (!Close(ints, path)) return 1;

    // Airways: runs of 5 to 40 fixes, one three-letter navaid in ten.
    FILE* awys = open("awys.txt", path);
    if (!awys) return 1;
    int long_fixes = 0, airway = 0;
    while (long_fixes < kAirwayFixLimit) {
        ++airway;
        std::string name = std::string(1, "JVQTAGBR"[Below(8)]) + std::to_string(airway);
        int length = 5 + Below(36);
        double lat = Uniform(-60, 70), lon = Uniform(-180, 180);
        for (int k = 1; k <= length && long_fixes < kAirwayFixLimit; ++k) {
            bool navaid = Below(10) == 0;
            std::fprintf(awys, "%s %d %s %.6f %.6f\n", name.c_str(), k * 10, (navaid ? Letters(3) : Letters(5)).c_str(), lat,
                         lon);
            if (!navaid) ++long_fixes;
            lat = std::clamp(lat + Uniform(-1, 1), -89.0, 89.0);
            lon = std::clamp(lon + Uniform(-1, 1), -179.0, 179.0);
        }
    }
    if (!Close(awys, path)) return 1;
    // Procedures: SIDs, STARs and approaches of the first airports, the bench
    // airport's (the largest) written last.
    std::rotate(with_procedures.begin(), with_procedures.begin() + 1, with_procedures.end());
    auto near = [](double base, double spread) { return base + Uniform(-spread, spread); };
    auto runway_list = [](const ProcedureAirport& a) {
        std::string list;
        for (const std::string& r : a.runways) list += (list.empty() ? "" : ",") + r;
        return list;
    };
    auto write_routes = [&](FILE* f, const ProcedureAirport& a, bool sid, int count) {
        std::fprintf(f, "[%s]\n", a.ident.c_str());
        for (int p = 0; p < count; ++p) {
            std::string name = Letters(5) + std::to_string(1 + Below(9));
            std::fprintf(f, "T %s %s %s\n", name.c_str(), name.c_str(), runway_list(a).c_str());
            for (const std::string& r : a.runways) {
                int h = std::atoi(r.c_str()) * 10;
                if (sid) {
                    std::fprintf(f, "%s /T%03d/UA %d %s 0 0\n", name.c_str(), h, 1500 + 500 * Below(4), r.c_str());
                    std::fprintf(f, "%s /RT/H%03d/UD%d --- %s %.6f %.6f\n", name.c_str(), (h + 90) % 360, 8 + Below(10),
                                 r.c_str(), near(a.lat, 0.1), near(a.lon, 0.1));
                } else {
                    std::fprintf(f, "%s %s %dA %s %.6f %.6f\n", name.c_str(), Letters(5).c_str(), 3000 + 1000 * Below(5),
                                 r.c_str(), near(a.lat, 0.3), near(a.lon, 0.3));
                }
            }
            for (int k = 0; k < 3 + Below(4); ++k)
                std::fprintf(f, "%s %s %s --- %.6f %.6f\n", name.c_str(), Letters(5).c_str(), Below(2) ? "FL120B" : "---",
                             near(a.lat, 0.5), near(a.lon, 0.5));
            for (int t = 0; t < 2 + Below(3); ++t) {
                std::string transition = Letters(5);
                for (int k = 0; k < 2 + Below(3); ++k)
                    std::fprintf(f, "%s.%s %s --- --- %.6f %.6f\n", name.c_str(), transition.c_str(),
                                 k == 0 ? transition.c_str() : Letters(5).c_str(), near(a.lat, 1.0), near(a.lon, 1.0));
            }
            std::fprintf(f, "*\n");
        }
    };
    auto write_approaches = [&](FILE* f, const ProcedureAirport& a, int count) {
        std::fprintf(f, "[%s]\n", a.ident.c_str());
        for (int p = 0; p < count; ++p) {
            const std::string& r = a.runways[static_cast<size_t>(Below(static_cast<int>(a.runways.size())))];
            std::string name = std::string(1, "ILRV"[Below(4)]) + r + (p >= static_cast<int>(a.runways.size()) ? Letters(1) : "");
            std::string iaf = Letters(5);
            std::fprintf(f, "%s %s %s %s --- %.6f %.6f %s 6000 0\n", r.c_str(), name.c_str(), iaf.c_str(), iaf.c_str(),
                         near(a.lat, 0.4), near(a.lon, 0.4), iaf.c_str());
            std::fprintf(f, "%s %s /LT/T%03d --- 5000 %.6f %.6f --- 5000 0\n", r.c_str(), name.c_str(), Below(360),
                         near(a.lat, 0.2), near(a.lon, 0.2));
            for (const char* marker : {"---", "FAF", "---", "MAP"})
                std::fprintf(f, "%s %s %s %s %dA %.6f %.6f --- %d 0\n", r.c_str(), name.c_str(), Letters(5).c_str(), marker,
                             2000 + 500 * Below(6), near(a.lat, 0.1), near(a.lon, 0.1), 2000 + 500 * Below(6));
            std::fprintf(f, "%s %s /T%03d/UA --- 4000 0 0 --- 4000 0\n", r.c_str(), name.c_str(), Below(360));
            std::fprintf(f, "%s %s %s --- 5000A %.6f %.6f --- 5000 0\n", r.c_str(), name.c_str(), Letters(5).c_str(),
                         near(a.lat, 0.2), near(a.lon, 0.2));
        }
    };
    const char* header = "; made-up procedures for the benchmarks: not charts\n";
    for (int file = 0; file < 3; ++file) {
        FILE* f = open(file == 0 ? "sids.txt" : file == 1 ? "stars.txt" : "apps.txt", path);
        if (!f) return 1;
        std::fputs(header, f);
        for (size_t i = 0; i < with_procedures.size(); ++i) {
            const ProcedureAirport& a = with_procedures[i];
            bool bench = i + 1 == with_procedures.size();
            int count = bench ? kBenchProcedures : 2 + Below(7);
            if (file == 2)
                write_approaches(f, a, bench ? 20 : count);
            else
                write_routes(f, a, file == 0, count);
        }
        if (!Close(f, path)) return 1;
    }
    std::printf("gen_fullsize_db: %s: %d airports, %d navaids, %d intersections, %d airway fixes; procedures of %d airports\n",
                folder.c_str(), kAirportLimit, kNavaidLimit, kIntersectionLimit, kAirwayFixLimit, kProcedureAirports);
    return 0;
}
