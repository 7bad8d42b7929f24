// hostile_input_test.cpp: the fuzz entries of the navigation and route
// parsers over a few hostile inputs, so that a normal build runs them too.
#include "navdata/sim_folder.h"

#include "fuzz/nav_fuzz_entries.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {
std::vector<std::string> HostileInputs() {
    std::vector<std::string> inputs = {
        "",
        "\n\n\n",
        ";;;;\n;AIRAC\n;AIRAC a b c d e f g h\n",
        std::string(4000, 'A') + " " + std::string(4000, '9') + "\n",
        std::string("\0\0\0 \0 1 2\n", 11),
        "KSEA X 1 2 3 " + std::string(30, '_') + " _ __ a_b_c_d_e_f_g_h_i_j_k\n",
        "[FlightPlan]\n" + std::string(500, '\n') + "A 1e400 -1e400 VOR --- J1 SID EXTRA EXTRA\n",
        "CruiseAlt=99999999999999999999\nFUEL=nan\nTripFuel=inf\n[FlightPlan]\n=\n==== ====\n",
        "J1 1 ABCD 91 181\nJ1 2 ABCD -91 -181\n#J1 3 ABCD 0 0\n",
        "\r\r\r\n\t\t\t\v\f\n",
    };
    std::string many = "[FlightPlan]\n";
    for (int i = 0; i < 400; ++i) many += "W" + std::to_string(i) + " 1 2 INT\n";
    inputs.push_back(many);
    std::mt19937 random(12345);
    for (int n = 0; n < 8; ++n) {
        std::string bytes(1 + random() % 3000, '\0');
        for (char& c : bytes) c = static_cast<char>(random() % 256);
        inputs.push_back(bytes);
    }
    return inputs;
}
}  // namespace

TEST(HostileInput, ParsersSurviveAnyBytes) {
    SimFolder sim;
    for (const std::string& input : HostileInputs()) {
        const auto* data = reinterpret_cast<const uint8_t*>(input.data());
        nav_fuzz::BulkLines(data, input.size());
        nav_fuzz::RouteLines(data, input.size());
        nav_fuzz::Files(data, input.size(), sim.root());
        // Whatever came in, the counts stay inside the tables.
        ASSERT_LE(g_navdb.AirportTable.count, kAirportLimit);
        ASSERT_LE(g_candidates.count, kCandidateLimit);
        ASSERT_LE(g_plan.context.ActiveLastRow, kPlanLastRowLimit);
        ASSERT_LE(g_plan.context.ModLastRow, kPlanLastRowLimit);
        ASSERT_LE(g_stored_plans.count, kStoredPlanLimit + 1);
    }
    // A 400-row route stops at row 200 in every reader.
    const std::string many = HostileInputs()[10];
    nav_fuzz::RouteLines(reinterpret_cast<const uint8_t*>(many.data()), many.size());
    EXPECT_EQ(g_plan.context.ActiveLastRow, kPlanLastRowLimit);
    EXPECT_EQ(g_plan.context.PreviewLastRow, kPlanLastRowLimit);
}

// Where a data file should be, users and other programs may leave things
// that are no file: the load skips them as missing and reads the rest.
namespace {
using Maker = void (*)(const std::filesystem::path&);
void MakeFolder(const std::filesystem::path& p) { std::filesystem::create_directories(p / "inside"); }
void MakeZeroDevice(const std::filesystem::path& p) { std::filesystem::create_symlink("/dev/zero", p); }
void MakeRandomDevice(const std::filesystem::path& p) { std::filesystem::create_symlink("/dev/urandom", p); }
void MakePipe(const std::filesystem::path& p) { ASSERT_EQ(mkfifo(p.c_str(), 0644), 0); }

const std::pair<const char*, Maker> kNoFiles[] = {
    {"a folder", MakeFolder},
    {"the zero device", MakeZeroDevice},
    {"the random device", MakeRandomDevice},
    {"a pipe without a writer", MakePipe},
};

constexpr const char* kAirports = "KSEA SEATTLE 433 47.45019 -122.31232 16L_11893_47.4637_-122.3077_161.3_110.30_ISNQ_161.3\n";
constexpr const char* kNavaids = ";AIRAC Cycle : 0601 (19-JAN-2006 - 16-FEB-2006)\nSEA SEATTLE 47.435361 -122.309611 VOR 116.80\n";
constexpr const char* kFixes = "ALDER ALDER 46.82156 -122.41422\n";
constexpr const char* kAirways = "J1 1 ALDER 46.82156 -122.41422\nJ1 2 BTGRD 45.74 -122.59\n";
constexpr const char* kRoute = "[FlightPlan]\nKSEA 47.45019 -122.31232 APT ---\nSEA 47.435361 -122.309611 VOR 116.80\n";

// Every reader of the navigation and route files, over what the folder
// holds; what they left, as a pilot would come to see it.
std::vector<long> ReadEverything() {
    LoadNavDatabase();
    ReadDatabaseCycle();
    LoadAirportDetail("KSEA", 1);
    SetAirport("KSEA", 1);
    g_plan.context.ModActiveLeg = 1;
    FetchAirway("J1");
    int airway_fixes = g_candidates.count;
    SetText(g_plan.context.PlanLoadFile, "F.RTE");
    LoadRouteToActive(3);
    LoadRouteToMod("F.RTE", 0);
    BuildStoredPlanTable();
    return {g_navdb.AirportTable.count, g_navdb.NavaidTable.count, g_navdb.IntersectionTable.count,
            g_navdb.AirwayFixTable.count, static_cast<long>(TextOf(g_navdb.DatabaseCycleText).size()),
            g_airports.OriginAirport.RunwayCount, airway_fixes, g_plan.context.ActiveLastRow,
            g_plan.context.ModLastRow, g_stored_plans.count};
}

void WriteDatabase(const SimFolder& sim) {
    sim.Write("orb/navdata/apts.txt", kAirports);
    sim.Write("orb/navdata/navs.txt", kNavaids);
    sim.Write("orb/navdata/ints.txt", kFixes);
    sim.Write("orb/navdata/awys.txt", kAirways);
    sim.Write("orb/flightplans/F.RTE", kRoute);
}
}  // namespace

TEST(HostileInput, FilesThatAreNoFilesAreSkipped) {
    std::vector<long> missing, whole;
    {
        SimFolder sim;
        missing = ReadEverything();
        ASSERT_EQ(g_navdb.pool.capacity(), 1u);
        WriteDatabase(sim);
        whole = ReadEverything();
        // Each of the readers read its file.
        ASSERT_EQ(whole, (std::vector<long>{1, 1, 1, 2, 10, 1, 2, 1, 1, 2}));
    }
    for (const auto& [what, make] : kNoFiles) {
        // Every navigation file, user overlays and the route no file at all:
        // as if none were there, and nothing reserved from a size that isn't one.
        SimFolder sim;
        for (const char* name : {"apts", "navs", "ints", "awys", "apts_user", "navs_user", "ints_user", "awys_user"})
            make(sim.root() / "orb" / "navdata" / (std::string(name) + ".txt"));
        make(sim.root() / "orb" / "flightplans" / "F.RTE");
        EXPECT_EQ(ReadEverything(), missing) << what;
        EXPECT_EQ(g_navdb.pool.capacity(), 1u) << what;

        // The main files as they should be, the overlays and another route no file.
        SimFolder mixed;
        WriteDatabase(mixed);
        for (const char* name : {"apts_user", "navs_user", "ints_user", "awys_user"})
            make(mixed.root() / "orb" / "navdata" / (std::string(name) + ".txt"));
        make(mixed.root() / "orb" / "flightplans" / "G.RTE");
        EXPECT_EQ(ReadEverything(), whole) << what;
    }
}

TEST(HostileInput, UnreadableFilesAreSkipped) {
    if (geteuid() == 0) GTEST_SKIP() << "running as root, where no file can be made unreadable";
    SimFolder sim;
    sim.Write("orb/navdata/apts.txt", kAirports);
    sim.Write("orb/navdata/navs.txt", kNavaids);
    sim.Write("orb/flightplans/F.RTE", kRoute);
    for (const char* name : {"orb/navdata/apts.txt", "orb/flightplans/F.RTE"}) chmod((sim.root() / name).c_str(), 0);
    ReadEverything();
    EXPECT_EQ(g_navdb.AirportTable.count, 0);
    EXPECT_EQ(g_navdb.NavaidTable.count, 1);
    EXPECT_EQ(g_plan.context.ActiveLastRow, 0);  // an empty plan, as without a file
    for (const char* name : {"orb/navdata/apts.txt", "orb/flightplans/F.RTE"}) chmod((sim.root() / name).c_str(), 0644);
}

// A database of absurdly long names: the texts stop at the pool's limit,
// the rows still come, and the pool never grows past it.
TEST(HostileInput, TheStringPoolStopsAtItsLimit) {
    SimFolder sim;
    ResetBulkTables(size_t{1} << 40);  // a size hint nothing could hold
    EXPECT_LE(g_navdb.pool.capacity(), kPoolLimit);
    BulkColumns kept;
    std::string line = "FIX" + std::string(kBulkLineSize - 40, 'N') + " 47.5 -122.5";
    const int rows = static_cast<int>(kPoolLimit / (kBulkLineSize - 40)) + 2000;
    for (int i = 0; i < rows; ++i) {
        std::string id = "F" + std::to_string(i);
        LoadBulkLine(id + " " + line, NavTableId::Intersections, kept);
    }
    EXPECT_EQ(g_navdb.IntersectionTable.count, rows);
    EXPECT_LE(g_navdb.pool.size(), kPoolLimit);
    EXPECT_LE(g_navdb.pool.capacity(), kPoolLimit);
    // The first rows keep their texts, the last have none left.
    EXPECT_EQ(IdentOf(g_navdb.IntersectionTable, 1), "F0");
    EXPECT_EQ(NameOf(g_navdb.IntersectionTable, 1).size(), kBulkLineSize - 37);
    EXPECT_EQ(IdentOf(g_navdb.IntersectionTable, rows), "");
    EXPECT_DOUBLE_EQ(g_navdb.IntersectionTable.rows[rows].Latitude, 47.5);
}
