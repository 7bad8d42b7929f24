// simconnect_stub.h: the SimConnect calls, routed to the host.
#pragma once

#include <windows.h>

namespace platform {
HRESULT SimConnectOpen(HANDLE* phSimConnect, LPCSTR szName, HWND hWnd, DWORD UserEventWin32,
                       HANDLE hEventHandle, DWORD ConfigIndex);
HRESULT SimConnectClose(HANDLE hSimConnect);
HRESULT SimConnectFlightPlanLoad(HANDLE hSimConnect, const char* szFileName);
}  // namespace platform
