// extras_hostile_input_test.cpp: the fuzz entries of the airport extras'
// readers over a few hostile inputs, so that a normal build runs them too.
#include "navdata/sim_folder.h"

#include "fuzz/airport_extras_entries.h"

#include <string>
#include <vector>

namespace {
std::vector<std::string> ExtrasHostileInputs() {
    std::string long_line(5000, 'X');
    std::string many_points;
    for (int i = 0; i < 1200; ++i) many_points += "A N 1e400 -nan\n";
    std::string many_rows;
    for (int i = 0; i < 900; ++i) many_rows += std::to_string(i) + " N 1 2\n;\n";
    return {
        "",
        "\n\n\n",
        std::string("KSEA\0[KSEA]\0RWY=\n", 18),
        "[KSEA]\n" + long_line + "=RIGHTPATTERN\nRWY" + long_line + "\nTowerViewLat=" + long_line + "\n",
        "[KSEA]\nRWY=RIGHTPATTERN\nRWY16R=\n=\nTowerViewLat=nan\nTowerViewLon=1e999\nTowerViewAlt=-1e999\n",
        "KSEA 1 2 3 4 " + long_line + "_" + long_line + " _ __ ___ 16L_\n",
        "[KSEA] " + long_line + "\n]\n[",
        many_points,
        many_rows,
        ";\n;\n; ; ; ;\n" + long_line,
    };
}
}  // namespace

TEST(ExtrasHostileInput, ReadersSurviveAnyBytesWithinTheirTables) {
    SimFolder sim;
    for (const std::string& input : ExtrasHostileInputs()) {
        const auto* data = reinterpret_cast<const uint8_t*>(input.data());
        g_airport_extras = AirportExtrasState{};
        extras_fuzz::AirportInfo(data, input.size(), sim.root());
        extras_fuzz::RunwayLengths(data, input.size(), sim.root());
        extras_fuzz::Boundaries(data, input.size(), sim.root());
        ASSERT_EQ(g_atc_boundaries.AtcBoundariesLoaded, 1);
        ASSERT_GE(g_atc_boundaries.count, 0);
        ASSERT_LE(g_atc_boundaries.count, kAtcBoundaryRows);
        for (int r = 1; r <= g_atc_boundaries.count; ++r) {
            ASSERT_GE(g_atc_boundaries.rows[r].PointCount, 1);
            ASSERT_LE(g_atc_boundaries.rows[r].PointCount, kAtcBoundaryPoints);
        }
        for (int i = 1; i <= g_airports.InfoAirport.RunwayCount; ++i)
            ASSERT_TRUE(g_airports.InfoAirport.Runways[i].RightPattern == 0 ||
                        g_airports.InfoAirport.Runways[i].RightPattern == 1);
    }
    // The many-rows input: one row each line, the table full at 400.
    const std::string many_rows = ExtrasHostileInputs()[8];
    extras_fuzz::Boundaries(reinterpret_cast<const uint8_t*>(many_rows.data()), many_rows.size(), sim.root());
    EXPECT_EQ(g_atc_boundaries.count, kAtcBoundaryRows);
    const std::string many_points = ExtrasHostileInputs()[7];
    extras_fuzz::Boundaries(reinterpret_cast<const uint8_t*>(many_points.data()), many_points.size(), sim.root());
    EXPECT_EQ(g_atc_boundaries.count, 1);
    EXPECT_EQ(g_atc_boundaries.rows[1].PointCount, kAtcBoundaryPoints);
}
