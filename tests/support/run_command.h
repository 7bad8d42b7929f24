// run_command.h: runs one of the project's programs as a user would, from a
// shell, and keeps what it printed.
#pragma once

#include <string>

struct CommandRun {
    int code = -1;                      // exit status; -1 when it did not exit on its own
    std::string output;                 // what it printed; the command decides whether stderr joins
};

CommandRun RunCommand(const std::string& command);

// A scratch copy of data/sim (with this build's module) in a new folder
// under the build tree named after `name`: the folder, or empty with
// `error` set when it could not be made.
std::string MakeScratchSim(const std::string& name, std::string& error);
