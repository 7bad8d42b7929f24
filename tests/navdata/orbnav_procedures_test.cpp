// orbnav_procedures_test.cpp: `orbnav airport ICAO --procedures [NAME]` on
// the shipped demonstration data, as a data supplier uses it: the compiled
// legs, the errors for a wrong airport or name, and that the sample
// procedures join up into the demonstration route.
#include "support/run_command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

namespace {
struct ToolRun {
    int code = -1;
    std::string out;  // stdout and stderr
};

ToolRun Orbnav(const std::string& args) {
    CommandRun run = RunCommand("cd '" + std::string(ORB_SOURCE_DIR) + "' && " + ORB_BINARY_DIR + "/orbnav " + args + " 2>&1");
    return {run.code, run.output};
}

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
long Lines(const std::string& text) { return static_cast<long>(std::count(text.begin(), text.end(), '\n')); }

// The line of the listing that holds `part`, or "".
std::string LineWith(const std::string& text, const std::string& part) {
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (Has(line, part)) return line;
    return "";
}
}  // namespace

TEST(OrbnavProcedures, ListsCompiledLegsAndRefusesUnknownNames) {
    ToolRun sid = Orbnav("airport ksea --procedures cascd1");
    ASSERT_EQ(sid.code, 0) << sid.out;
    EXPECT_TRUE(Has(sid.out, "SID CASCD1  runways 16L,16C,16R,34L,34C,34R")) << sid.out;
    EXPECT_FALSE(Has(sid.out, "MOUNT1")) << sid.out;  // only the named one
    // The climb from 16L to 2000 ft lands 3.3 nm south of the threshold (47.4638 N).
    std::string tr161 = LineWith(sid.out, "TR161");
    ASSERT_FALSE(tr161.empty()) << sid.out;
    double lat = 0;
    std::istringstream(tr161.substr(tr161.find("2000") + 4)) >> lat;
    EXPECT_NEAR(lat, 47.463797 - 3.31 / 60.0, 0.005) << tr161;
    EXPECT_TRUE(Has(LineWith(sid.out, "10000A"), "NORMY")) << sid.out;

    // The shared end of a transitions-only SID carries its mark.
    ToolRun elmaa = Orbnav("airport KSEA --procedures ELMAA1");
    ASSERT_EQ(elmaa.code, 0) << elmaa.out;
    std::string end = LineWith(elmaa.out, "6000A");
    EXPECT_TRUE(Has(end, "ELMAA") && end.back() == '*') << elmaa.out;

    // The arrival side: STAR and approach with markers and the procedure turn.
    ToolRun arrival = Orbnav("airport KGEG --procedures");
    ASSERT_EQ(arrival.code, 0) << arrival.out;
    EXPECT_TRUE(Has(arrival.out, "STAR ODESS1")) << arrival.out;
    EXPECT_TRUE(Has(arrival.out, "APPROACH I21  runway 21")) << arrival.out;
    EXPECT_TRUE(Has(LineWith(arrival.out, "PT294"), "---")) << arrival.out;
    EXPECT_TRUE(Has(LineWith(arrival.out, "RW21"), "MAP")) << arrival.out;

    // The user file serves an airport the main file lacks.
    ToolRun user = Orbnav("airport KPDX --procedures");
    ASSERT_EQ(user.code, 0) << user.out;
    EXPECT_TRUE(Has(user.out, "SID BGRND1")) << user.out;

    // Wrong names: one line, a non-zero exit.
    for (const char* args : {"airport KSEA --procedures NOSUCH", "airport KXXX --procedures"}) {
        ToolRun bad = Orbnav(args);
        EXPECT_NE(bad.code, 0) << args;
        EXPECT_EQ(Lines(bad.out.substr(bad.out.find("orbnav:"))), 1) << bad.out;
    }
    ToolRun help = Orbnav("airport --help");
    EXPECT_EQ(help.code, 0);
    for (const char* word : {"--procedures [NAME]", "sids.txt", "stars.txt", "apps.txt", "docs/navdata.md"})
        EXPECT_TRUE(Has(help.out, word)) << word;
}

TEST(OrbnavProcedures, DemonstrationProceduresJoinUp) {
    // The SID's transition fix and the STAR transition's first fix on one airway, in that order.
    std::ifstream awys(std::string(ORB_SOURCE_DIR) + "/data/sim/orb/navdata/awys.txt");
    int normy = 0, mwh = 0;
    for (std::string airway, fix, rest; awys >> airway;) {
        int sequence = 0;
        awys >> sequence >> fix;
        std::getline(awys, rest);
        if (airway != "J90") continue;
        if (fix == "NORMY") normy = sequence;
        if (fix == "MWH") mwh = sequence;
    }
    ASSERT_GT(normy, 0);
    ASSERT_GT(mwh, 0);
    EXPECT_NE(normy, mwh);
    ToolRun sid = Orbnav("airport KSEA --procedures CASCD1");
    EXPECT_TRUE(Has(LineWith(sid.out, "  NORMY "), "NORMY       NORMY")) << sid.out;
    ToolRun star = Orbnav("airport KGEG --procedures ODESS1");
    EXPECT_TRUE(Has(LineWith(star.out, "FL200B"), "MWH         MWH")) << star.out;
    // The approach's transition starts where the STAR ends.
    ToolRun app = Orbnav("airport KGEG --procedures I21");
    EXPECT_TRUE(Has(LineWith(app.out, "    1  GEG"), "GEG")) << app.out;
    EXPECT_TRUE(Has(star.out, "GEG      ---          6000A")) << star.out;
}
