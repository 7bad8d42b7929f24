// simconnect_link.h: SimConnect, used for one thing: handing the simulator a
// plan file. FS2004 has no SimConnect, so it is found at run time, and a
// missing library or a failed open leaves a null handle that makes the calls
// do nothing.
#pragma once

#include <windows.h>

struct SimConnectLink {
    HMODULE library = nullptr;
    HANDLE handle = nullptr;
    void* open = nullptr;
    void* close = nullptr;
    void* flight_plan_load = nullptr;
};

extern SimConnectLink g_simconnect;

void SimConnectOpenAtModuleInit();
void SimConnectCloseAtModuleDeinit();
// Asks the simulator to load RootFolder\Orb\Navdata\tmpfplan.pln.
void SimConnectLoadPlan(const char* path);
