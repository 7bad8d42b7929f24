// command.h: orbnav's sub-commands register themselves here, one file each.
#pragma once

#include <cstdio>
#include <string>

struct OrbnavCommand {
    const char* name;                   // "magvar", "import-xplane", ...
    const char* summary;                // one line for `orbnav --help`
    int (*run)(int argc, char** argv);  // argv[0] is the command's name; returns the exit code
    OrbnavCommand(const char* name, const char* summary, int (*run)(int, char**));
};

// Options every command shares.
struct OrbnavOptions {
    const char* root = "data/sim";      // the simulator folder (--root DIR), relative to the current folder
};

// The --root line of the commands' help.
constexpr char kRootHelp[] =
    "  --root DIR  the simulator folder, the one that holds orb/ (default data/sim,\n"
    "              relative to the current folder)\n";

// "ROOT: no such simulator folder", telling where a relative one was looked for.
std::string NoSimulatorFolder(const char* root);

// Parses a number strictly: the whole text must be a plain decimal number
// (decimal_number.h).
bool ParseNumber(const char* text, double& value);
// Prints "orbnav: <message>" to stderr; returns 2 for `return Fail(...)`.
int Fail(const char* format, ...);
