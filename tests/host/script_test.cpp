// script_test.cpp: script lines are split, checked before anything runs,
// and values of print and expect read the host's state.
#include "orbsim/host_state.h"
#include "orbsim/panel_table.h"
#include "orbsim/script.h"
#include "orbsim/sim_values.h"
#include "orbsim/simulator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

TEST(Script, LinesSplitIntoWordsWithQuotesAndComments) {
    orbsim::ScriptLine line;
    std::string error;
    ASSERT_TRUE(orbsim::SplitScriptLine("click  HW_B737_ND#2 10\t20   # the second display", line, error));
    EXPECT_EQ(line.words, (std::vector<std::string>{"click", "HW_B737_ND#2", "10", "20"}));
    ASSERT_TRUE(orbsim::SplitScriptLine(R"(expect screen SMITHS_FMS contains "RTE 1 \"A\" \\ ok")", line, error));
    ASSERT_EQ(line.words.size(), 5u);
    EXPECT_EQ(line.words[4], R"(RTE 1 "A" \ ok)");
    EXPECT_TRUE(line.quoted[4]);
    EXPECT_FALSE(line.quoted[3]);
    ASSERT_TRUE(orbsim::SplitScriptLine("   # only a comment", line, error));
    EXPECT_TRUE(line.words.empty());
    EXPECT_FALSE(orbsim::SplitScriptLine("echo \"open", line, error));
    EXPECT_EQ(error, "quote not closed");
}

TEST(Script, BadLinesStopTheScriptBeforeItRunsWithFileAndLine) {
    struct Case {
        const char* text;
        const char* error;
    };
    const Case cases[] = {
        {"run 1\nfly 3\n", "s.orbsim:2: unknown command 'fly' (orbsim --help lists them)"},
        {"\n\nrun\n", "s.orbsim:3: usage: run SECONDS"},
        {"run -1\n", "s.orbsim:1: run SECONDS needs a number of seconds from 0 to 86400, got '-1'"},
        {"frames 2.5\n", "s.orbsim:1: frames N needs a whole number, got '2.5'"},
        {"aircraft lat=51 hdgg=90\n", "s.orbsim:1: unknown aircraft key 'hdgg'"},
        {"aircraft wind=270\n", "s.orbsim:1: wind must be DIRECTION/SPEED, e.g. wind=270/30"},
        {"aircraft zulu=25:00\n", "s.orbsim:1: zulu must be HH:MM or HH:MM:SS"},
        {"aircraft track=5\n", "s.orbsim:1: aircraft key 'track' is read only"},
        {"expect aircraft.alt is 5000\n",
         "s.orbsim:1: expect WHAT OP VALUE, with OP one of == != < <= > >= contains !contains"},
        {"expect file x there\n",
         "s.orbsim:1: usage: expect file PATH exists|missing, or expect file PATH contains|!contains TEXT"},
        {"expect file x contains\n",
         "s.orbsim:1: usage: expect file PATH exists|missing, or expect file PATH contains|!contains TEXT"},
        {"expect file x exists too\n",
         "s.orbsim:1: usage: expect file PATH exists|missing, or expect file PATH contains|!contains TEXT"},
        // What orbsim writes stays under --out.
        {"shot LNAV ../../x.png\n", "s.orbsim:1: shot writes under the output folder (--out); '../../x.png' leads out of it"},
        {"shot LNAV a/../../x.png\n",
         "s.orbsim:1: shot writes under the output folder (--out); 'a/../../x.png' leads out of it"},
        {"shot LNAV /tmp/x.png\n", "s.orbsim:1: shot writes under the output folder (--out); '/tmp/x.png' leads out of it"},
        {"shot LNAV ./\n", "s.orbsim:1: shot writes under the output folder (--out); './' leads out of it"},
        {"track ../t.csv\n", "s.orbsim:1: track writes under the output folder (--out); '../t.csv' leads out of it"},
        {"plot /p.png KSEAKOLM.RTE\n", "s.orbsim:1: plot writes under the output folder (--out); '/p.png' leads out of it"},
        {"plot p.png gps 47.6 -117.5\n", "s.orbsim:1: plot FILE ROUTE|gps [LAT LON NM]: a window needs its centre and its miles"},
        {"click LNAV 1 two\n", "s.orbsim:1: click needs whole pixel numbers, got 'two'"},
        {"window 4011 shut\n", "s.orbsim:1: window IDENT open|close|toggle"},
        {"event 0 1\n", "s.orbsim:1: event NUMBER must be a key event number such as 0x10019, got '0'"},
        {"set L:x ten\n", "s.orbsim:1: set NAME VALUE needs a number as VALUE, got 'ten'"},
        {"fsuipc runways EGLL 27X\n", "s.orbsim:1: runway '27X' is not like 27L, 09, 36C"},
        {"echo \"a\nrun 1\n", "s.orbsim:1: quote not closed"},
        {"run 1\n\x02\n", "s.orbsim:2: line holds a control byte"},
    };
    for (const Case& c : cases) {
        std::vector<orbsim::ScriptLine> lines;
        std::string error;
        EXPECT_FALSE(orbsim::ParseScript("s.orbsim", c.text, lines, error)) << c.text;
        EXPECT_EQ(error, c.error);
    }
    std::vector<orbsim::ScriptLine> lines;
    std::string error;
    ASSERT_TRUE(orbsim::ParseScript("s.orbsim", "# a flight\naircraft lat=1 wind=90/10\n\nrun 2\n", lines, error)) << error;
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].number, 4);
    // Paths that stay below --out, however they are written.
    ASSERT_TRUE(orbsim::ParseScript("s.orbsim",
                                    "shot LNAV a/../b/./x.png\ntrack flight/../f.csv\nplot p.png R.RTE\n"
                                    "expect file out:a.png contains \"two words\"\nexpect file orb/x !contains y\n",
                                    lines, error))
        << error;
    EXPECT_EQ(lines.size(), 5u);
}

TEST(Script, RunsWithoutAPanelAndChecksValuesWithExpect) {
    orbsim::g_host = {};
    orbsim::g_host.fps = 10;
    orbsim::ScriptRun run;
    run.script_path = "t.orbsim";
    run.out = std::tmpfile();
    std::vector<orbsim::ScriptLine> lines;
    std::string error;
    const char* text =
        "aircraft lat=0 lon=0 alt=0 ias=120 hdg=0 ap_hdg_hold=1\n"
        "event 0x101FA 90\n"
        "run 30\n"
        "expect aircraft.hdg == 90\n"
        "expect time > 29.999\n"
        "expect time < 30.001\n"
        "expect ticks == 540\n"
        "expect keyevents.count == 0\n"
        "set L:my_var 3\n"
        "expect L:my_var == 3\n"
        "set \"A:AUTOPILOT ALTITUDE LOCK VAR, feet\" 9000\n"
        "expect A:AUTOPILOT ALTITUDE LOCK VAR, feet == 9000\n"
        "set PLANE_LATITUDE 111130.555557\n"
        "expect aircraft.lat > 0.9999\n"
        "expect aircraft.title == \"orbsim TwinJet\"\n"
        "expect aircraft.lat < 0.5\n";
    ASSERT_TRUE(orbsim::ParseScript("t.orbsim", text, lines, error)) << error;
    EXPECT_EQ(orbsim::RunScript(orbsim::g_host, run, lines, error), orbsim::ExitCode::ExpectFailed);
    EXPECT_EQ(error, "t.orbsim:16: expected aircraft.lat < 0.5, saw 1");
    EXPECT_EQ(orbsim::g_host.key_events.total, 1u);  // the script's event is kept apart from the module's

    // Module events count; print writes values.
    orbsim::DeliverKeyEvent(orbsim::g_host, 0x1024C, 11000, true);
    orbsim::DeliverKeyEvent(orbsim::g_host, 0x1024C, 12000, true);
    orbsim::ScriptValue value;
    ASSERT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "event.0x1024C.count", value, error));
    EXPECT_EQ(value.number, 2);
    ASSERT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "event.0x1024C.last", value, error));
    EXPECT_EQ(value.number, 12000);
    ASSERT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "keyevents.last", value, error));
    EXPECT_EQ(value.number, 0x1024C);
    ASSERT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "token.0x6B", value, error));
    EXPECT_EQ(value.number, 90);
    EXPECT_FALSE(orbsim::EvaluateWhat(orbsim::g_host, run, "window.4011", value, error));
    EXPECT_EQ(error, "the panel has no window 4011");
    EXPECT_FALSE(orbsim::EvaluateWhat(orbsim::g_host, run, "aircraft.nope", value, error));
    EXPECT_FALSE(orbsim::EvaluateWhat(orbsim::g_host, run, "screen LNAV", value, error));
    EXPECT_EQ(error, "no gauge 'LNAV' on the panel");

    // A command that needs a panel says so with its line.
    ASSERT_TRUE(orbsim::ParseScript("t.orbsim", "\nclick LNAV 1 1\n", lines, error));
    EXPECT_EQ(orbsim::RunScript(orbsim::g_host, run, lines, error), orbsim::ExitCode::BadInput);
    EXPECT_EQ(error, "t.orbsim:2: click needs a panel: no panel is loaded");
    std::fclose(run.out);
    orbsim::g_host = {};
}

TEST(Script, TickAdvancesAtEighteenHertzOfSimulatedTime) {
    // What the engine can see: the frames in which TICK18 has changed.
    auto frames_with_a_new_tick = [](int fps, double rate, double seconds, bool paused = false) {
        orbsim::g_host = {};
        orbsim::g_host.fps = fps;
        orbsim::g_host.aircraft.rate = rate;
        orbsim::g_host.aircraft.paused = paused;
        double last = orbsim::Tick18(orbsim::g_host);
        int changes = 0;
        long frames = std::lround(seconds * fps);
        for (long f = 0; f < frames; ++f) {
            orbsim::RunFrame(orbsim::g_host, true);
            double now = orbsim::Tick18(orbsim::g_host);
            changes += now != last;
            last = now;
        }
        return changes;
    };
    EXPECT_EQ(frames_with_a_new_tick(20, 1, 10), 180);
    EXPECT_EQ(frames_with_a_new_tick(30, 1, 10), 180);
    EXPECT_EQ(orbsim::Tick18(orbsim::g_host), 180);
    EXPECT_EQ(frames_with_a_new_tick(60, 1, 10), 180);
    EXPECT_EQ(frames_with_a_new_tick(10, 1, 10), 100);  // fewer frames than ticks: one change a frame
    EXPECT_EQ(frames_with_a_new_tick(30, 4, 10), 300);
    EXPECT_EQ(orbsim::Tick18(orbsim::g_host), 720);     // four times as many ticks went by
    // Paused, the tick stands still; frames without time don't move it either.
    EXPECT_EQ(frames_with_a_new_tick(30, 1, 5, true), 0);
    orbsim::g_host = {};
    for (int f = 0; f < 100; ++f) orbsim::RunFrame(orbsim::g_host, false);
    EXPECT_EQ(orbsim::Tick18(orbsim::g_host), 0);
    EXPECT_EQ(orbsim::g_host.aircraft.sim_time, 0);
    orbsim::g_host = {};
}

TEST(Script, ExpectFileReadsWhatTheModuleAndOrbsimWrote) {
    char pattern[] = "/tmp/orbsim_expect_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    std::string dir = pattern;
    ASSERT_EQ(std::system(("mkdir -p " + dir + "/sim/orb " + dir + "/out/pics").c_str()), 0);
    {
        std::FILE* f = std::fopen((dir + "/sim/orb/orb1.log").c_str(), "w");
        ASSERT_NE(f, nullptr);
        std::fputs("Apts '12' loaded\nTWR Pos 'KSEA' set\n", f);
        std::fclose(f);
        f = std::fopen((dir + "/out/pics/note.txt").c_str(), "w");
        ASSERT_NE(f, nullptr);
        std::fputs("written by orbsim", f);
        std::fclose(f);
    }
    orbsim::g_host = {};
    orbsim::ScriptRun run;
    run.script_path = "f.orbsim";
    run.sim_dir = dir + "/sim";
    run.out_dir = dir + "/out";
    run.out = std::tmpfile();
    struct Case {
        const char* line;
        orbsim::ExitCode code;
        std::string error;
    };
    const Case cases[] = {
        {"expect file orb/orb1.log contains TWR Pos 'KSEA' set", orbsim::ExitCode::Ok, ""},
        {"expect file orb/orb1.log contains \"Apts '12'\"", orbsim::ExitCode::Ok, ""},
        {"expect file orb/orb1.log !contains FUEL", orbsim::ExitCode::Ok, ""},
        {"expect file out:pics/note.txt contains by orbsim", orbsim::ExitCode::Ok, ""},
        {"expect file orb/orb1.log contains FUEL", orbsim::ExitCode::ExpectFailed,
         "f.orbsim:1: expected file orb/orb1.log contains \"FUEL\", but it does not"},
        {"expect file orb/orb1.log !contains KSEA", orbsim::ExitCode::ExpectFailed,
         "f.orbsim:1: expected file orb/orb1.log !contains \"KSEA\", but it does"},
        {"expect file orb/Flight.log !contains KSEA", orbsim::ExitCode::ExpectFailed,
         "f.orbsim:1: expected file orb/Flight.log !contains \"KSEA\", but it is missing"},
        {"expect file orb contains x", orbsim::ExitCode::BadInput,
         "f.orbsim:1: " + dir + "/sim/orb: not a file orbsim can read"},
        // !contains works on every text, as contains does.
        {"expect aircraft.title !contains Cessna", orbsim::ExitCode::Ok, ""},
        {"expect aircraft.title !contains TwinJet", orbsim::ExitCode::ExpectFailed,
         "f.orbsim:1: expected aircraft.title !contains \"TwinJet\", saw \"orbsim TwinJet\""},
        {"expect aircraft.alt !contains 1", orbsim::ExitCode::BadInput,
         "f.orbsim:1: !contains needs a text, such as screen GAUGE"},
    };
    for (const Case& c : cases) {
        std::vector<orbsim::ScriptLine> lines;
        std::string error;
        ASSERT_TRUE(orbsim::ParseScript("f.orbsim", c.line, lines, error)) << c.line << ": " << error;
        EXPECT_EQ(orbsim::RunScript(orbsim::g_host, run, lines, error), c.code) << c.line;
        if (c.code != orbsim::ExitCode::Ok) {
            EXPECT_EQ(error, c.error);
        }
    }
    std::fclose(run.out);
    orbsim::g_host = {};
    std::system(("rm -rf " + dir).c_str());
}
