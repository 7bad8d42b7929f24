// gdiplus_flat.h: our declarations of the GDI+ flat interface that the module
// calls. On Windows these bind to gdiplus.dll; elsewhere the platform layer
// provides them.
#pragma once

#include <windows.h>

#include <cstdint>

extern "C" {

enum GpStatus : int {
    Ok = 0,
    GenericError = 1,
    InvalidParameter = 2,
    OutOfMemory = 3,
    ObjectBusy = 4,
    InsufficientBuffer = 5,
    NotImplemented = 6,
    Win32Error = 7,
    WrongState = 8,
    Aborted = 9,
    FileNotFound = 10,
    ValueOverflow = 11,
    AccessDenied = 12,
    UnknownImageFormat = 13,
    FontFamilyNotFound = 14,
    FontStyleNotFound = 15,
    NotTrueTypeFont = 16,
    UnsupportedGdiplusVersion = 17,
    GdiplusNotInitialized = 18,
    PropertyNotFound = 19,
    PropertyNotSupported = 20,
};

struct GdiplusStartupInput {
    UINT GdiplusVersion;                 // 1
    void* DebugEventCallback;
    BOOL SuppressBackgroundThread;
    BOOL SuppressExternalCodecs;
};

struct GdiplusStartupOutput {
    void* NotificationHook;
    void* NotificationUnhook;
};

GpStatus WINAPI GdiplusStartup(ULONG_PTR* token, const GdiplusStartupInput* input, GdiplusStartupOutput* output);
void WINAPI GdiplusShutdown(ULONG_PTR token);

}  // extern "C"
