// command.h: orbnav's sub-commands register themselves here, one file each.
#pragma once

#include <cstdio>

struct OrbnavCommand {
    const char* name;                   // "magvar", "import-xplane", ...
    const char* summary;                // one line for `orbnav --help`
    int (*run)(int argc, char** argv);  // argv[0] is the command's name; returns the exit code
    OrbnavCommand(const char* name, const char* summary, int (*run)(int, char**));
};

// Options every command shares.
struct OrbnavOptions {
    const char* root = "data/sim";      // the simulator folder (--root DIR)
};

// Parses a number strictly: the whole text must be a finite number.
bool ParseNumber(const char* text, double& value);
// Prints "orbnav: <message>" to stderr; returns 2 for `return Fail(...)`.
int Fail(const char* format, ...);
