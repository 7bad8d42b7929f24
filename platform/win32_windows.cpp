// win32_windows.cpp: window, module and timer calls of the module, on POSIX.
//
// Windows are the host's: FindWindowExA and SendMessageA are routed to it, so
// a host can play the FSUIPC server. LoadLibraryA knows one library, the
// simulator's SimConnect, whose calls are routed to the host as well.
#include "host_link.h"
#include "path_resolve.h"
#include "simconnect_stub.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <ctime>

namespace {
char g_module_anchor;            // GetModuleHandleA(nullptr) points here
char g_simconnect_module;        // the handle LoadLibraryA gives for SimConnect.dll

}  // namespace

extern "C" {

HWND FindWindowExA(HWND, HWND, LPCSTR lpszClass, LPCSTR lpszWindow) {
    const OrbHostInterface* host = platform::Host();
    if (host == nullptr || host->find_window == nullptr || lpszClass == nullptr) return nullptr;
    return host->find_window(lpszClass, lpszWindow);
}

HWND FindWindowA(LPCSTR lpClassName, LPCSTR lpWindowName) {
    return FindWindowExA(nullptr, nullptr, lpClassName, lpWindowName);
}

LRESULT SendMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam) {
    const OrbHostInterface* host = platform::Host();
    if (host == nullptr || host->send_message == nullptr || hWnd == nullptr) return 0;
    return host->send_message(hWnd, Msg, wParam, lParam);
}

HMODULE GetModuleHandleA(LPCSTR lpModuleName) {
    if (lpModuleName == nullptr) return &g_module_anchor;
    // The module itself, named by its path below the simulator's folder.
    size_t length = std::strlen(lpModuleName);
    if (length >= 8 && platform::EqualNoCase(lpModuleName + length - 8, "orb1.gau")) return &g_module_anchor;
    if (platform::EqualNoCase(lpModuleName, "SimConnect.dll") || platform::EqualNoCase(lpModuleName, "SimConnect")) {
        const OrbHostInterface* host = platform::Host();
        return (host != nullptr && host->simconnect_open != nullptr) ? &g_simconnect_module : nullptr;
    }
    return nullptr;
}

HMODULE LoadLibraryA(LPCSTR lpLibFileName) {
    if (lpLibFileName == nullptr) return nullptr;
    return GetModuleHandleA(lpLibFileName);
}

FARPROC GetProcAddress(HMODULE hModule, LPCSTR lpProcName) {
    if (hModule != &g_simconnect_module || lpProcName == nullptr) return nullptr;
    if (std::strcmp(lpProcName, "SimConnect_Open") == 0)
        return reinterpret_cast<FARPROC>(&platform::SimConnectOpen);
    if (std::strcmp(lpProcName, "SimConnect_Close") == 0)
        return reinterpret_cast<FARPROC>(&platform::SimConnectClose);
    if (std::strcmp(lpProcName, "SimConnect_FlightPlanLoad") == 0)
        return reinterpret_cast<FARPROC>(&platform::SimConnectFlightPlanLoad);
    return nullptr;
}

BOOL FreeLibrary(HMODULE) { return TRUE; }

DWORD GetTickCount(void) {
    timespec ts = {};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<DWORD>(ts.tv_sec * 1000 + ts.tv_nsec / 1000000);
}

void OutputDebugStringA(LPCSTR lpOutputString) {
    if (lpOutputString != nullptr) std::fputs(lpOutputString, stderr);
}

}  // extern "C"
