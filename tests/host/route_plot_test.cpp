// The plot's route reader: the module's route file rows, and clear errors.
#include "orbsim/route_plot.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {
std::string WriteTemp(const std::string& text) {
    char name[] = "/tmp/orb-route-XXXXXX";
    int fd = mkstemp(name);
    close(fd);
    std::ofstream(name) << text;
    return name;
}
}  // namespace

TEST(RoutePlot, ReadsTheRowsOfARouteFileAndNamesBadLines) {
    std::vector<orbsim::RouteFix> fixes;
    std::string error;
    std::string good = WriteTemp("CruiseAlt=33000\r\n[FlightPlan]\r\nKSEA 47.45 -122.31 APT ---\r\n; a note\r\n"
                                 "SEA 47.43 -122.30 VOR 116.80\r\n\r\nKGEG 47.61 -117.53 APT ---\r\n");
    ASSERT_TRUE(orbsim::ReadRouteFile(good, fixes, error)) << error;
    ASSERT_EQ(fixes.size(), 3u);
    EXPECT_EQ(fixes[1].ident, "SEA");
    EXPECT_DOUBLE_EQ(fixes[2].lon, -117.53);

    std::string bad = WriteTemp("[FlightPlan]\nKSEA 47.45 -122.31\nXX 95.0 10\n");
    EXPECT_FALSE(orbsim::ReadRouteFile(bad, fixes, error));
    EXPECT_NE(error.find(bad + ":3: bad latitude"), std::string::npos) << error;

    std::string empty = WriteTemp("CruiseAlt=1000\n");
    EXPECT_FALSE(orbsim::ReadRouteFile(empty, fixes, error));
    EXPECT_NE(error.find("no waypoint rows"), std::string::npos);
    EXPECT_FALSE(orbsim::ReadRouteFile("/nonexistent/route.rte", fixes, error));

    // A plot is written and is a PNG; a window around a point too, even with
    // everything else outside it.
    std::string png = good + ".png";
    ASSERT_TRUE(orbsim::WriteRoutePlot(png, fixes, {{47.45, -122.3}, {47.5, -121.0}}, "t", error)) << error;
    orbsim::PlotWindow window{true, 47.45, -122.31, 5};
    ASSERT_TRUE(orbsim::WriteRoutePlot(png, fixes, {{47.45, -122.3}, {47.5, -121.0}}, "t", error, window)) << error;
    std::ifstream in(png, std::ios::binary);
    char magic[4] = {};
    in.read(magic, 4);
    EXPECT_EQ(std::string(magic + 1, 3), "PNG");
    for (const std::string& f : {good, bad, empty, png}) std::remove(f.c_str());
}

TEST(RoutePlot, ReadsTheSimulatorsXmlPlanAndNamesABadPosition) {
    std::vector<orbsim::RouteFix> fixes;
    std::string error;
    // The module's own form (the degree sign as the Windows-1252 byte) and the
    // simulator's (UTF-8, fractions of seconds, an altitude behind).
    std::string plan = WriteTemp(
        "<FlightPlan.FlightPlan>\n<DepartureID>KSEA</DepartureID>\n"
        "<ATCWaypoint id=\"SEA\">\n<ATCWaypointType>VOR</ATCWaypointType>\n"
        "<WorldPosition>N47\xB0 26' 07\",W122\xB0 18' 34\",</WorldPosition>\n</ATCWaypoint>\n"
        "<ATCWaypoint id=\"TR161\">\n<WorldPosition>S33\xC2\xB0 30' 36.00\",E151\xC2\xB0 6' 0.00\",+000400.00"
        "</WorldPosition>\n</ATCWaypoint>\n");
    std::string pln = plan + ".pln";
    std::rename(plan.c_str(), pln.c_str());
    ASSERT_TRUE(orbsim::ReadRouteFile(pln, fixes, error)) << error;
    ASSERT_EQ(fixes.size(), 2u);
    EXPECT_EQ(fixes[0].ident, "SEA");
    EXPECT_NEAR(fixes[0].lat, 47 + 26 / 60.0 + 7 / 3600.0, 1e-9);
    EXPECT_NEAR(fixes[0].lon, -(122 + 18 / 60.0 + 34 / 3600.0), 1e-9);
    EXPECT_EQ(fixes[1].ident, "TR161");
    EXPECT_NEAR(fixes[1].lat, -33.51, 1e-9);
    EXPECT_NEAR(fixes[1].lon, 151.1, 1e-9);

    std::ofstream(pln) << "<ATCWaypoint id=\"X\">\n<WorldPosition>N47\xB0 75' 0\",W1\xB0 0' 0\",</WorldPosition>\n";
    EXPECT_FALSE(orbsim::ReadRouteFile(pln, fixes, error));
    EXPECT_NE(error.find(pln + ":2: bad <WorldPosition>"), std::string::npos) << error;
    std::ofstream(pln) << "<FlightPlan.FlightPlan>\n";
    EXPECT_FALSE(orbsim::ReadRouteFile(pln, fixes, error));
    EXPECT_NE(error.find("no <ATCWaypoint>"), std::string::npos) << error;
    std::remove(pln.c_str());
}
