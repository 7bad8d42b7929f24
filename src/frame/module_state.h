// module_state.h: the host frame's process-wide state (what the gauges share
// about the module's life: where the simulator is, what has been loaded).
#pragma once

#include <windows.h>

#include <array>
#include <cstdio>

constexpr int kRootFolderSize = 260;     // GetCurrentDirectoryA's MAX_PATH
constexpr int kProfileNameSize = 128;

struct ModuleState {
    std::array<char, kRootFolderSize> RootFolder{};       // simulator folder; empty until found
    bool configuration_loaded = false;                     // set at the end of reading orb.cfg
    std::array<char, kProfileNameSize> AircraftProfileName{};  // empty: no profile yet
    bool initial_load_done = false;                        // flight log's first pass ran
    ULONG_PTR gdiplus_token = 0;                           // 0: GDI+ not started
    int SimGeneration = 9;                                 // 9 FS2004, 10 FSX
    FILE* diagnostic_log = nullptr;                        // open only when C17_MFD opened it
    long diagnostic_log_bytes = 0;                         // written so far; the log stops at its cap
    void* traffic_link = nullptr;                          // outside traffic gauge's export
    std::array<char, 64> c17_parameter{};                  // C17_MFD keeps its own parameter
    bool c17_named_checked = false;                        // "MFDX1 mode".. looked up once
    std::array<int, 4> c17_mode_variable{{-1, -1, -1, -1}};
    std::array<char, 128> aircraft_title{};                // "(A:TITLE,string)", upper case
};

extern ModuleState g_module;

// Fills RootFolder from the working directory if it is still empty.
void FindRootFolder();
// RootFolder + relative (a `\`-separated path), bounded to MAX_PATH.
void DataPath(const char* relative, char* out, size_t out_size);
