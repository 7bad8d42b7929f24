// orbnav: the data tool. Inspects a navigation database folder and imports
// public data into the module's text formats. `orbnav --help` lists commands.
#include "command.h"
#include "decimal_number.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

namespace {
std::vector<const OrbnavCommand*>& Registry() {
    static std::vector<const OrbnavCommand*> commands;
    return commands;
}

void Usage(FILE* out) {
    std::fprintf(out, "usage: orbnav COMMAND [ARGS]   (each command takes --help)\n\ncommands:\n");
    for (const OrbnavCommand* c : Registry()) std::fprintf(out, "  %-16s %s\n", c->name, c->summary);
    std::fprintf(out, "\nstats, find, airway, airport and config read the simulator folder named by\n"
                      "--root DIR (default data/sim, relative to the current folder).\n");
}
}  // namespace

OrbnavCommand::OrbnavCommand(const char* n, const char* s, int (*r)(int, char**)) : name(n), summary(s), run(r) {
    Registry().push_back(this);
}

bool ParseNumber(const char* text, double& value) { return text != nullptr && ParseDecimal(text, value); }

std::string NoSimulatorFolder(const char* root) {
    std::string message = std::string(root) + ": no such simulator folder";
    if (root[0] != '/') {
        char here[4096];
        if (getcwd(here, sizeof here) != nullptr)
            message += std::string(" in the current folder ") + here + " (give --root DIR)";
    }
    return message;
}

int Fail(const char* format, ...) {
    std::fprintf(stderr, "orbnav: ");
    va_list args;
    va_start(args, format);
    std::vfprintf(stderr, format, args);
    va_end(args);
    std::fprintf(stderr, "\n");
    return 2;
}

int main(int argc, char** argv) {
    if (argc < 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0 ||
        std::strcmp(argv[1], "help") == 0) {
        Usage(argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    for (const OrbnavCommand* c : Registry())
        if (std::strcmp(c->name, argv[1]) == 0) return c->run(argc - 1, argv + 1);
    Fail("unknown command '%s' (orbnav --help lists them)", argv[1]);
    return 2;
}
