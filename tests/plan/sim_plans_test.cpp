// sim_plans_test.cpp: the active plan as the simulator's XML plan: the rows
// from the leg being flown on, the positions in degrees, minutes and seconds
// with the Windows-1252 degree sign, and nothing written before EXEC.
#include "navdata/sim_folder.h"

#include "frame/data_text.h"
#include "plan/sim_plans.h"

#include <filesystem>
#include <string>
#include <vector>

namespace {
void SetRow(int row, const char* ident, double lat, double lon, const char* type) {
    PlanWaypoint& w = g_plan.ActivePlan[row];
    w = PlanWaypoint{};
    SetText(w.Ident, ident);
    w.Latitude = lat;
    w.Longitude = lon;
    SetText(w.WaypointType, type);
}

std::vector<std::string> Between(const std::string& text, const std::string& open, const std::string& close) {
    std::vector<std::string> out;
    for (size_t a = text.find(open); a != std::string::npos; a = text.find(open, a + 1)) {
        size_t b = text.find(close, a + open.size());
        if (b == std::string::npos) break;
        out.push_back(text.substr(a + open.size(), b - a - open.size()));
    }
    return out;
}
}  // namespace

TEST(SimulatorPlan, WritesTheRowsFromTheLegFlownWithTheirPositionsAndTypes) {
    SimFolder sim;
    PlanContext& pc = g_plan.context;
    SetRow(0, "KSEA", 47.45019, -122.31232, "APT");
    SetRow(1, "SEA", 47.435361, -122.309611, "VOR");
    SetRow(2, "TR161", 47.30, -122.25, "");
    SetRow(3, "ELN", 47.024, -120.457, "NDB");
    SetRow(4, "KGEG", 47.61972, -117.53396, "APT");
    pc.ActiveLastRow = 4;
    pc.CruiseAltitude = 33000;

    // Before the first EXEC there is nothing to hand over.
    pc.PlanState = 2;
    pc.ActiveLeg = 1;
    EXPECT_EQ(WriteSimulatorPlan(), 0);
    EXPECT_FALSE(sim.Exists("orb/navdata/tmpfplan.pln"));

    pc.PlanState = 3;
    pc.ActiveLeg = 2;
    ASSERT_EQ(WriteSimulatorPlan(), 1);
    std::string text = sim.Read("orb/navdata/tmpfplan.pln");
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"Windows-1252\"?>\n\n<SimBase.Document", 0), 0u);
    EXPECT_EQ(Between(text, "<Title>", "</Title>"), std::vector<std::string>{"KSEA to KGEG"});
    EXPECT_EQ(Between(text, "<CruisingAlt>", "<"), std::vector<std::string>{"33000"});
    // The leg flown is SEA -> TR161: the rows begin at SEA.
    EXPECT_EQ(Between(text, "<ATCWaypoint id=\"", "\""), (std::vector<std::string>{"SEA", "TR161", "ELN", "KGEG"}));
    EXPECT_EQ(Between(text, "<ATCWaypointType>", "<"),
              (std::vector<std::string>{"VOR", "Intersection", "NDB", "Airport"}));
    // 47.435361 N = 47 deg 26.1217' = 26' 07.3"; 122.309611 W = 122 deg 18.5767' = 18' 34.6".
    std::vector<std::string> positions = Between(text, "<WorldPosition>", "</WorldPosition>");
    ASSERT_EQ(positions.size(), 4u);
    EXPECT_EQ(positions[0], "N47\xB0 26' 07\",W122\xB0 18' 34\",");
    EXPECT_EQ(positions[2], "N47\xB0 01' 26\",W120\xB0 27' 25\",");
    EXPECT_EQ(text.find(':'), std::string::npos) << "the colon form must not leak into the file";
}
