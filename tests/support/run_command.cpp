// run_command.cpp: see run_command.h.
#include "support/run_command.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>

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

std::string MakeScratchSim(const std::string& name, std::string& error) {
    std::string root = std::string(ORB_BINARY_DIR) + "/test-scratch";
    mkdir(root.c_str(), 0755);
    std::string pattern = root + "/" + name + "_XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        error = "mkdtemp " + pattern;
        return {};
    }
    std::string command = std::string("sh ") + ORB_SOURCE_DIR + "/tests/e2e/scratch_sim.sh " + ORB_SOURCE_DIR +
                          "/data/sim '" + pattern + "' " + ORB_MODULE_PATH + " -";
    if (std::system(command.c_str()) != 0) {
        error = command;
        return {};
    }
    return pattern;
}
