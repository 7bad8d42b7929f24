// cmd_nav_common.cpp: the simulator folder and database loading of the
// inspection commands.
#include "cmd_nav_common.h"

#include "command.h"
#include "frame/module_state.h"
#include "navdata/nav_database.h"

#include <share.h>

#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

bool UseSimulatorFolder(const char* root, std::string& error) {
    struct stat st {};
    if (root == nullptr || stat(root, &st) != 0 || !S_ISDIR(st.st_mode)) {
        error = NoSimulatorFolder(root ? root : "");
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

bool HasNavigationData(std::string& missing, std::string& error) {
    static const char* const kFiles[] = {"apts.txt", "navs.txt", "ints.txt", "awys.txt"};
    missing.clear();
    int found = 0;
    for (const char* name : kFiles) {
        for (bool user : {false, true}) {
            std::string relative = std::string("\\orb\\navdata\\") + name;
            if (user) relative.insert(relative.size() - 4, "_user");
            char path[MAX_PATH];
            DataPath(relative.c_str(), path, sizeof path);
            // The module's own open, which finds the folder in any case of letters.
            FILE* file = _fsopen(path, "rb", _SH_DENYNO);
            if (file != nullptr) {
                std::fclose(file);
                ++found;
            } else if (!user) {
                missing += missing.empty() ? name : std::string(" ") + name;
            }
        }
    }
    if (found > 0) return true;
    error = std::string(g_module.RootFolder.data()) +
            "/orb/navdata: no navigation data (apts.txt, navs.txt, ints.txt, awys.txt); "
            "orbnav import-xplane makes them";
    return false;
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

std::string UpperCase(const char* text) {
    std::string upper(text ? text : "");
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}
