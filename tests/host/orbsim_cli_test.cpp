// orbsim_cli_test.cpp: the orbsim program as a user meets it: options,
// one-line errors with file and line, exit codes, and the files it writes.
// Each test runs on its own scratch copy of data/sim under the build tree,
// with this build's module in it (the sanitized one in a sanitizer build).
#include "orbsim/script.h"
#include "support/run_command.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {
struct Outcome {
    int code = -1;
    std::string output;  // stdout and stderr
};

class OrbsimCli : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        dir_ = MakeScratchSim("orbsim_cli", error);
        ASSERT_FALSE(dir_.empty()) << error;
    }
    void TearDown() override { std::system(("rm -rf '" + dir_ + "'").c_str()); }

    std::string Sim() const { return dir_ + "/sim"; }

    std::string Write(const std::string& name, const std::string& text) {
        std::string path = dir_ + "/" + name;
        std::ofstream(path) << text;
        return path;
    }

    Outcome Run(const std::string& args) {
        std::string command =
            std::string(ORB_BINARY_DIR) + "/orbsim --sim '" + Sim() + "' --out '" + dir_ + "/out' " + args + " 2>&1";
        CommandRun run = RunCommand(command);
        return {run.code, run.output};
    }

    std::string dir_;
};

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}
}  // namespace

TEST_F(OrbsimCli, HelpAndBadOptions) {
    Outcome o = Run("--help");
    EXPECT_EQ(o.code, 0);
    EXPECT_NE(o.output.find("usage: orbsim [OPTIONS] SCRIPT"), std::string::npos);
    EXPECT_NE(o.output.find("expect WHAT OP VALUE"), std::string::npos);
    o = Run("--fps 0 x.orbsim");
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, "orbsim: --fps needs a whole number from 1 to 1000 (orbsim --help tells the options)\n");
    o = Run("--frobnicate");
    EXPECT_EQ(o.code, 2);
    o = Run("");
    EXPECT_EQ(o.code, 2);
    EXPECT_NE(o.output.find("no script given"), std::string::npos);
    o = Run(dir_ + "/missing.orbsim");
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, dir_ + "/missing.orbsim: cannot read the script\n");
}

// Every command a script may use is told by --help and in docs/orbsim.md.
TEST_F(OrbsimCli, HelpAndDocumentationListEveryCommand) {
    Outcome help = Run("--help");
    std::string docs = ReadFile(std::string(ORB_SOURCE_DIR) + "/docs/orbsim.md");
    ASSERT_FALSE(docs.empty());
    std::vector<std::string> names = orbsim::ScriptCommandNames();
    ASSERT_GT(names.size(), 10u);
    for (const std::string& name : names) {
        EXPECT_NE(help.output.find("\n  " + name + " "), std::string::npos) << name << " is missing from --help";
        EXPECT_NE(docs.find("\n| `" + name), std::string::npos) << name << " is missing from docs/orbsim.md";
    }
}

TEST_F(OrbsimCli, BadLinesAndFailedExpectationsNameFileAndLine) {
    std::string script = Write("bad.orbsim", "aircraft alt=100\nrun 1\nfly high\n");
    Outcome o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, script + ":3: unknown command 'fly' (orbsim --help lists them)\n");

    script = Write("fails.orbsim", "aircraft alt=0\nexpect aircraft.alt == 1\nexpect aircraft.alt == 0\n");
    o = Run(script);
    EXPECT_EQ(o.code, 1);
    EXPECT_EQ(o.output, script + ":2: expected aircraft.alt == 1, saw 0\n");

    script = Write("nopanel.orbsim", "panel " + dir_ + "/none.cfg\n");
    o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, dir_ + "/none.cfg: cannot open the panel file (from " + script + ":1)\n");

    std::string panel = Write("p.cfg", "[Window00]\nident=0\ngauge00=orb1!LNAV,0,0\ngauge01=orb1!NOPE,0,0\n");
    script = Write("unknown.orbsim", "panel " + panel + "\n");
    o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_NE(o.output.find(panel + ":4: the module has no gauge 'NOPE' (from " + script + ":1)\n"), std::string::npos)
        << o.output;

    // A gauge in a closed window is out of the pilot's reach.
    panel = Write("popup.cfg", "[Window00]\nident=0\n[Window01]\nident=4004\ngauge00=orb1!LNAV,0,0\n");
    script = Write("closed.orbsim", "panel " + panel + "\nclick LNAV 5 5\n");
    o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_NE(o.output.find(script + ":2: gauge LNAV is in [Window01], which is closed: no one can click it\n"),
              std::string::npos)
        << o.output;
}

TEST_F(OrbsimCli, WritesShotsAndTracksUnderTheOutputFolder) {
    std::string panel = Write("p.cfg", "[Window00]\nident=MAIN_PANEL\ngauge00=orb1!LNAV,0,0\ngauge01=orb1!SERVER,0,0\n");
    std::string script = Write("shot.orbsim",
                               "aircraft lat=10 lon=20 ias=300 hdg=90\n"
                               "panel " + panel + "\n"
                               "track flight/path.csv\n"
                               "run 5\n"
                               "track\n"
                               "shot LNAV pictures/lnav.png\n"
                               "expect file out:pictures/lnav.png exists\n"
                               "expect file out:pictures/none.png missing\n");
    Outcome o = Run(script);
    ASSERT_EQ(o.code, 0) << o.output;

    std::string png = ReadFile(dir_ + "/out/pictures/lnav.png");
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    auto be32 = [&](size_t at) {
        return (static_cast<uint8_t>(png[at]) << 24) | (static_cast<uint8_t>(png[at + 1]) << 16) |
               (static_cast<uint8_t>(png[at + 2]) << 8) | static_cast<uint8_t>(png[at + 3]);
    };
    EXPECT_EQ(be32(16), 50);  // the LNAV button's bezel size
    EXPECT_EQ(be32(20), 49);

    std::string csv = ReadFile(dir_ + "/out/flight/path.csv");
    EXPECT_EQ(csv.rfind("time,lat,lon,altitude,heading,ias,gs,vs\n0.000,10.000000,20.000000,", 0), 0u) << csv;
    int rows = 0;
    for (char c : csv) rows += c == '\n';
    EXPECT_EQ(rows, 1 + 6);  // the header, then seconds 0 to 5
    EXPECT_NE(csv.find("\n5.0"), std::string::npos);
}

TEST_F(OrbsimCli, ShotsAndTracksCannotLeaveTheOutputFolder) {
    std::string panel = Write("p.cfg", "[Window00]\nident=MAIN_PANEL\ngauge00=orb1!LNAV,0,0\n");
    // The check comes before anything runs: no panel is loaded, nothing written.
    std::string script = Write("escape.orbsim", "panel " + panel + "\nrun 1\nshot LNAV ../../x.png\n");
    Outcome o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, script + ":3: shot writes under the output folder (--out); '../../x.png' leads out of it\n");
    struct stat st {};
    EXPECT_NE(stat((dir_ + "/../x.png").c_str(), &st), 0);
    script = Write("absolute.orbsim", "track " + dir_ + "/t.csv\n");
    o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, script + ":1: track writes under the output folder (--out); '" + dir_ + "/t.csv' leads out of it\n");
    EXPECT_NE(stat((dir_ + "/t.csv").c_str(), &st), 0);
}

TEST_F(OrbsimCli, ABadModuleOrScriptFileGetsOneLineNamingIt) {
    std::string module = Sim() + "/GAUGES/orb1.gau";
    std::string whole = ReadFile(ORB_MODULE_PATH);
    ASSERT_GT(whole.size(), 100000u);
    std::string script = Write("load.orbsim", "panel panels/twinjet.cfg\nrun 1\n");
    auto put_module = [&](const std::string& bytes) {
        unlink(module.c_str());
        std::ofstream(module, std::ios::binary) << bytes;
    };

    // Cut anywhere, the module is refused before the loader maps it (which
    // would end orbsim by SIGBUS); the message names the file.
    for (size_t size : {whole.size() / 2, whole.size() - 1, size_t{200}}) {
        put_module(whole.substr(0, size));
        Outcome o = Run(script);
        EXPECT_EQ(o.code, 2) << size;
        EXPECT_EQ(o.output.rfind("orbsim: " + module + ": truncated: ", 0), 0u) << o.output;
        EXPECT_EQ(o.output.find('\n'), o.output.size() - 1) << o.output;
        EXPECT_NE(o.output.find(", the file has " + std::to_string(size) + "\n"), std::string::npos) << o.output;
    }
    put_module("MZ\x90");
    Outcome o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, "orbsim: " + module +
                            ": a Windows DLL; orbsim loads the Linux build of the module (build/linux/orb1.gau)\n");
    put_module("");
    o = Run(script);
    EXPECT_EQ(o.output, "orbsim: " + module + ": empty file; not a module\n");
    unlink(module.c_str());
    o = Run(script);
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, "orbsim: " + module + ": cannot read the module\n");
    // The whole module loads again.
    put_module(whole);
    o = Run(script);
    EXPECT_EQ(o.code, 0) << o.output;

    // A script that is a folder.
    o = Run(dir_);
    EXPECT_EQ(o.code, 2);
    EXPECT_EQ(o.output, "orbsim: " + dir_ + ": is a directory\n");
}
