// run_command.cpp: see run_command.h.
#include "support/run_command.h"

#include <sys/wait.h>

#include <cstdio>

CommandRun RunCommand(const std::string& command) {
    CommandRun run;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) run.output.append(buffer, n);
    int status = pclose(pipe);
    run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}
