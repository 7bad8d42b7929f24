// hostile_input_test.cpp: the fuzz entries of the navigation and route
// parsers over a few hostile inputs, so that a normal build runs them too.
#include "navdata/sim_folder.h"

#include "fuzz/nav_fuzz_entries.h"

#include <random>
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
