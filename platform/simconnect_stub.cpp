// simconnect_stub.cpp: SimConnect as the host plays it. Without a host there
// is no SimConnect library at all (LoadLibraryA fails), as under FS2004.
#include "simconnect_stub.h"

#include "host_link.h"

namespace platform {

HRESULT SimConnectOpen(HANDLE* phSimConnect, LPCSTR szName, HWND, DWORD, HANDLE, DWORD) {
    if (phSimConnect == nullptr) return E_FAIL;
    *phSimConnect = nullptr;
    const OrbHostInterface* host = Host();
    if (host == nullptr || host->simconnect_open == nullptr) return E_FAIL;
    return static_cast<HRESULT>(host->simconnect_open(phSimConnect, szName));
}

HRESULT SimConnectClose(HANDLE hSimConnect) {
    const OrbHostInterface* host = Host();
    if (host == nullptr || host->simconnect_close == nullptr) return E_FAIL;
    return static_cast<HRESULT>(host->simconnect_close(hSimConnect));
}

HRESULT SimConnectFlightPlanLoad(HANDLE hSimConnect, const char* szFileName) {
    const OrbHostInterface* host = Host();
    if (host == nullptr || host->simconnect_flight_plan_load == nullptr) return E_FAIL;
    return static_cast<HRESULT>(host->simconnect_flight_plan_load(hSimConnect, szFileName));
}

}  // namespace platform
