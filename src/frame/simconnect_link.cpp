// simconnect_link.cpp: SimConnect through LoadLibraryA and GetProcAddress.
#include "frame/simconnect_link.h"

#include <simconnect_api.h>

SimConnectLink g_simconnect;

void SimConnectOpenAtModuleInit() {
    SimConnectLink& link = g_simconnect;
    if (link.library == nullptr) {
        link.library = LoadLibraryA("SimConnect.dll");
        if (link.library == nullptr) return;
        link.open = reinterpret_cast<void*>(GetProcAddress(link.library, "SimConnect_Open"));
        link.close = reinterpret_cast<void*>(GetProcAddress(link.library, "SimConnect_Close"));
        link.flight_plan_load = reinterpret_cast<void*>(GetProcAddress(link.library, "SimConnect_FlightPlanLoad"));
    }
    if (link.open == nullptr || link.handle != nullptr) return;
    // The result isn't tested: a failed open leaves the handle null.
    HANDLE handle = nullptr;
    reinterpret_cast<PFN_SimConnect_Open>(link.open)(&handle, "System Event", nullptr, 0, nullptr, 0);
    link.handle = handle;
}

void SimConnectCloseAtModuleDeinit() {
    SimConnectLink& link = g_simconnect;
    if (link.close != nullptr && link.handle != nullptr)
        reinterpret_cast<PFN_SimConnect_Close>(link.close)(link.handle);
    link.handle = nullptr;
}

void SimConnectLoadPlan(const char* path) {
    SimConnectLink& link = g_simconnect;
    if (link.flight_plan_load == nullptr || link.handle == nullptr || path == nullptr) return;
    reinterpret_cast<PFN_SimConnect_FlightPlanLoad>(link.flight_plan_load)(link.handle, path);
}
