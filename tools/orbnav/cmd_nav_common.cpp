// cmd_nav_common.cpp: the simulator folder and database loading of the
// inspection commands.
#include "cmd_nav_common.h"

#include "command.h"
#include "frame/module_state.h"
#include "navdata/nav_database.h"

#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

bool UseSimulatorFolder(const char* root, std::string& error) {
    struct stat st {};
    if (root == nullptr || stat(root, &st) != 0 || !S_ISDIR(st.st_mode)) {
        error = std::string(root ? root : "") + ": no such simulator folder";
        return false;
    }
    char absolute[PATH_MAX];
    if (realpath(root, absolute) == nullptr || std::strlen(absolute) + 1 > g_module.RootFolder.size()) {
        error = std::string(root) + ": path too long for the module";
        return false;
    }
    std::strcpy(g_module.RootFolder.data(), absolute);
    return true;
}

bool ParseLatLon(const char* text, double& latitude, double& longitude) {
    if (text == nullptr) return false;
    const char* comma = std::strchr(text, ',');
    if (comma == nullptr) return false;
    std::string first(text, comma);
    return ParseNumber(first.c_str(), latitude) && ParseNumber(comma + 1, longitude) && latitude >= -90 &&
           latitude <= 90 && longitude >= -180 && longitude <= 180;
}

double LoadDatabaseOf() {
    auto start = std::chrono::steady_clock::now();
    LoadNavDatabase();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}
