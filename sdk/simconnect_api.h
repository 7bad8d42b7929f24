// simconnect_api.h: the three SimConnect calls the module makes, as pointer
// types. SimConnect is found at run time (FS2004 has none), so these are
// looked up with GetProcAddress rather than linked.
#pragma once

#include <windows.h>

extern "C" {
using PFN_SimConnect_Open = HRESULT(WINAPI*)(HANDLE* phSimConnect, LPCSTR szName, HWND hWnd,
                                             DWORD UserEventWin32, HANDLE hEventHandle, DWORD ConfigIndex);
using PFN_SimConnect_Close = HRESULT(WINAPI*)(HANDLE hSimConnect);
using PFN_SimConnect_FlightPlanLoad = HRESULT(WINAPI*)(HANDLE hSimConnect, const char* szFileName);
}
