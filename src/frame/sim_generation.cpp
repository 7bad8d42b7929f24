// sim_generation.cpp: FSX has "fsx.exe", "ace.exe", "SimObjects" and
// "Missions" in its folder; FS2004 has at most one of them.
#include "frame/sim_generation.h"

#include "frame/module_state.h"

#include <windows.h>

#include <cstdio>
#include <cstring>

namespace {
bool SameNoCase(const char* a, const char* b) {
    for (; *a && *b; ++a, ++b) {
        char ca = (*a >= 'A' && *a <= 'Z') ? static_cast<char>(*a + 32) : *a;
        char cb = (*b >= 'A' && *b <= 'Z') ? static_cast<char>(*b + 32) : *b;
        if (ca != cb) return false;
    }
    return *a == *b;
}
}  // namespace

void DetectSimGeneration() {
    char pattern[MAX_PATH + 8];
    std::snprintf(pattern, sizeof pattern, "%s\\*.*", g_module.RootFolder.data());
    WIN32_FIND_DATAA entry;
    HANDLE find = FindFirstFileA(pattern, &entry);
    if (find == INVALID_HANDLE_VALUE) return;
    int signs = 0;
    do {
        for (const char* sign : {"fsx.exe", "ace.exe", "simobjects", "Missions"})
            if (SameNoCase(entry.cFileName, sign)) ++signs;
    } while (signs < 4 && FindNextFileA(find, &entry));
    FindClose(find);
    if (signs >= 3) g_module.SimGeneration = 10;
}
