// include_layers_test.cpp: the include structure of src/ stays layered.
//
// The tick, the gauge callbacks and the module entry sit on top and may use
// everything; below them the subsystems use only what lies under them, down
// to the simulator samples and the shared tools of frame/. The few calls the
// system itself makes upward (a route load runs guidance, setting an airport
// writes the plan's rows) are listed below with their reasons, so that a new
// upward include is a decision someone wrote down, not an accident.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {
namespace fs = std::filesystem;

// A file's includes of the project's own headers, as written ("plan/plan_tables.h").
struct SourceFile {
    std::string path;                   // relative to src/, e.g. "plan/route_files.cpp"
    std::vector<std::string> includes;
};

std::vector<SourceFile> ReadSources() {
    std::vector<SourceFile> files;
    fs::path root = fs::path(ORB_SOURCE_DIR) / "src";
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        std::string ext = entry.path().extension().string();
        if (!entry.is_regular_file() || (ext != ".cpp" && ext != ".h")) continue;
        SourceFile file{fs::relative(entry.path(), root).generic_string(), {}};
        std::ifstream in(entry.path());
        std::string line;
        while (std::getline(in, line)) {
            const std::string mark = "#include \"";
            if (line.rfind(mark, 0) != 0) continue;
            size_t end = line.find('"', mark.size());
            if (end != std::string::npos) file.includes.push_back(line.substr(mark.size(), end - mark.size()));
        }
        files.push_back(file);
    }
    std::sort(files.begin(), files.end(), [](const SourceFile& a, const SourceFile& b) { return a.path < b.path; });
    return files;
}

std::string Stem(const std::string& path) { return path.substr(0, path.rfind('.')); }
std::string Folder(const std::string& path) { return path.substr(0, path.find('/')); }

// The files that drive everything: only they may include each other's headers.
const std::set<std::string> kTop = {"frame/engine_tick", "frame/gauge_callback", "frame/module_entry",
                                    "frame/gauge_linkage", "frame/orb1_gau",
                                    // SERVER drives LNAV, VNAV and every display's controls
                                    "frame/server_gauge"};
// Headers of the top that nothing below it may include. (The gauge table's
// data, gauge_table.h, is named by every layer; the linkage built from it and
// the families' handlers is the top's.)
const std::set<std::string> kTopHeaders = {"frame/engine_tick.h", "frame/gauge_callback.h", "frame/module_entry.h",
                                           "frame/gauge_linkage.h"};

// Layers from the bottom: frame/'s samples, state and tools; the database;
// the plans; guidance; the flight log; the displays; the CDUs; the top.
int RankOf(const std::string& path, bool as_includer) {
    std::string stem = Stem(path);
    if (as_includer && kTop.count(stem)) return 7;
    if (kTopHeaders.count(path)) return 7;
    if (stem == "guidance/geodesy") return 0;  // the shared great-circle maths: includes nothing of ours
    static const std::map<std::string, int> kFolderRank = {
        {"frame", 0}, {"resources", 0}, {"navdata", 1}, {"plan", 2},
        {"guidance", 3}, {"flightlog", 4}, {"display", 5}, {"cdu", 6}};
    auto it = kFolderRank.find(Folder(path));
    return it != kFolderRank.end() ? it->second : -1;
}

// The upward includes the system's own calls make, and why.
struct UpwardInclude {
    const char* from;
    const char* header;
    const char* reason;
};
constexpr UpwardInclude kAllowedUpward[] = {
    {"navdata/airport_detail.cpp", "plan/plan_tables.h", "setting an airport writes the plan's airport rows"},
    {"navdata/airport_detail.cpp", "guidance/vnav.h", "setting the destination moves VNAV's target position"},
    {"navdata/airways.cpp", "plan/plan_tables.h", "an airway is fetched from the plan's reference fix"},
    {"navdata/procedure_lists.cpp", "plan/plan_tables.h", "a procedure's legs are chosen by the plan's selections"},
    {"plan/plan_execute.cpp", "cdu/keypad.h", "EXEC and ERASE close the CDU's pending entries and modes"},
    {"plan/plan_execute.cpp", "guidance/holds.h", "EXEC drops the holds a new plan no longer has"},
    {"plan/plan_execute.cpp", "guidance/lnav.h", "a newly executed plan rearms LNAV's once-per-plan steps"},
    {"plan/plan_execute.cpp", "guidance/performance.h", "EXEC runs the predictions on the new plan"},
    {"plan/plan_execute.cpp", "guidance/vnav.h", "EXEC finds VNAV's next targets on the new plan"},
    {"plan/plan_execute.cpp", "flightlog/flight_log.h", "a plan begun on the ground starts a new flight"},
    {"plan/route_files.cpp", "guidance/holds.h", "loading the active plan removes every hold"},
    {"plan/route_files.cpp", "guidance/lnav.h", "loading the active plan resets LNAV's origin and tunes en route"},
    {"plan/route_files.cpp", "guidance/performance.h", "loading on the ground restores the default speeds"},
    {"plan/route_files.cpp", "guidance/vnav.h", "loading the active plan sets VNAV's target to the destination"},
    {"plan/route_files.cpp", "flightlog/flight_log.h", "loading on the ground starts the flight log over"},
    {"guidance/lnav.cpp", "flightlog/flight_log.h", "sequencing the last waypoint steps the flight's stage"},
    {"navdata/nav_database.cpp", "plan/plan_tables.h", "pilot waypoints are numbered after the plan's own (WPT01, SEA02)"},
    {"plan/plan_rows.cpp", "guidance/holds.h", "the holds' rows move with the plan's rows"},
    {"plan/pln_convert.cpp", "cdu/keypad.h", "a simulator plan that can't be read is refused on the message line"},
    {"plan/sim_gps_route.cpp", "cdu/keypad.h", "the GPS route's load is told on the message line"},
    {"plan/sim_gps_route.cpp", "guidance/holds.h", "a route taken from the GPS removes every hold"},
    {"plan/sim_gps_route.cpp", "guidance/lnav_state.h", "a route taken from the GPS restarts the distance to the waypoint"},
    {"plan/plan_edit.cpp", "guidance/holds.h", "a deleted row takes its hold; a direct re-points the holds"},
    {"plan/plan_edit.cpp", "cdu/keypad.h", "a restriction is read from the entry line and refused on the message line"},
    {"plan/plan_procedures.cpp", "guidance/holds.h", "a procedure activated in flight leaves the holds on their rows"},
    {"plan/plan_procedures.cpp", "cdu/keypad.h", "choosing a runway marks it chosen on the procedure pages"},
    {"plan/plan_procedures.cpp", "guidance/lnav.h", "a new SID ends LNAV's intercept"},
    {"plan/plan_procedures.cpp", "guidance/performance.h", "an activated procedure recomputes the distances"},
    {"plan/plan_procedures.cpp", "guidance/vnav.h", "an activated procedure restarts the restriction logic"},
    {"guidance/holds.cpp", "cdu/keypad.h", "the last hold deleted takes the CDU from the hold page to the legs"},
    {"guidance/vnav.cpp", "cdu/keypad.h", "reaching cruise or T/D turns the CDU's climb and cruise pages to the next phase's"},
    {"frame/input_capture.cpp", "cdu/keypad.h", "typing on the PC keyboard sets the MCU page's entry and repaint flags"},
};

std::string Describe(const std::vector<std::string>& lines) {
    std::ostringstream out;
    for (const std::string& line : lines) out << "\n  " << line;
    return out.str();
}
}  // namespace

TEST(IncludeLayers, OnlyTheTopIncludesTheTick) {
    std::vector<std::string> wrong;
    for (const SourceFile& file : ReadSources())
        for (const std::string& header : file.includes)
            if (kTopHeaders.count(header) && !kTop.count(Stem(file.path))) wrong.push_back(file.path + " -> " + header);
    EXPECT_TRUE(wrong.empty()) << "files below the top that include the tick, the callbacks or the module entry:"
                               << Describe(wrong);
}

TEST(IncludeLayers, NoFilesIncludeEachOtherInACircle) {
    // A file and its header are one node, as a reader sees them.
    std::map<std::string, std::set<std::string>> edges;
    for (const SourceFile& file : ReadSources())
        for (const std::string& header : file.includes)
            if (Stem(header) != Stem(file.path)) edges[Stem(file.path)].insert(Stem(header));

    enum class Mark { None, Open, Done };
    std::map<std::string, Mark> marks;
    std::vector<std::string> stack;
    std::vector<std::string> circle;
    auto visit = [&](auto&& self, const std::string& node) -> void {
        if (!circle.empty()) return;
        marks[node] = Mark::Open;
        stack.push_back(node);
        for (const std::string& next : edges[node]) {
            if (!circle.empty()) break;
            if (marks[next] == Mark::Open) {
                auto start = std::find(stack.begin(), stack.end(), next);
                circle.assign(start, stack.end());
                circle.push_back(next);
            } else if (marks[next] == Mark::None) {
                self(self, next);
            }
        }
        stack.pop_back();
        marks[node] = Mark::Done;
    };
    for (const auto& [node, targets] : edges)
        if (marks[node] == Mark::None) visit(visit, node);
    EXPECT_TRUE(circle.empty()) << "an include circle:" << Describe(circle);
}

TEST(IncludeLayers, SubsystemsIncludeOnlyDownwardButForTheListedCalls) {
    std::set<std::pair<std::string, std::string>> allowed;
    for (const UpwardInclude& up : kAllowedUpward) allowed.insert({up.from, up.header});

    std::vector<std::string> unlisted;
    std::set<std::pair<std::string, std::string>> seen;
    for (const SourceFile& file : ReadSources()) {
        int from = RankOf(file.path, true);
        ASSERT_GE(from, 0) << file.path << " is in a folder the layers do not know";
        for (const std::string& header : file.includes) {
            int to = RankOf(header, false);
            if (to < 0 || to <= from) continue;
            if (allowed.count({file.path, header})) seen.insert({file.path, header});
            else unlisted.push_back(file.path + " -> " + header);
        }
    }
    EXPECT_TRUE(unlisted.empty()) << "upward includes that are not listed with a reason:" << Describe(unlisted);

    // A listed call that no longer exists is taken off the list.
    std::vector<std::string> stale;
    for (const UpwardInclude& up : kAllowedUpward)
        if (!seen.count({up.from, up.header})) stale.push_back(std::string(up.from) + " -> " + up.header);
    EXPECT_TRUE(stale.empty()) << "listed upward includes that are gone:" << Describe(stale);
}
