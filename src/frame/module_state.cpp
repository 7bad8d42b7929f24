// module_state.cpp: the host frame's shared state and the root folder.
#include "frame/module_state.h"

#include <cstdio>

ModuleState g_module;

void FindRootFolder() {
    if (g_module.RootFolder[0] != 0) return;
    DWORD length = GetCurrentDirectoryA(kRootFolderSize, g_module.RootFolder.data());
    if (length == 0 || length >= static_cast<DWORD>(kRootFolderSize)) g_module.RootFolder[0] = 0;
}

void DataPath(const char* relative, char* out, size_t out_size) {
    if (out == nullptr || out_size == 0) return;
    std::snprintf(out, out_size, "%s%s", g_module.RootFolder.data(), relative ? relative : "");
}
