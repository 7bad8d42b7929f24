// gdiplus_startup.cpp: GDI+ start and shut-down. Drawing is on cairo, which
// needs no start; the token only has to be non-zero while started, as on Windows.
#include <gdiplus_flat.h>

namespace {
struct GdiplusLife {
    ULONG_PTR next_token = 1;
    int started = 0;
};
GdiplusLife g_gdiplus;
}  // namespace

extern "C" {

GpStatus WINAPI GdiplusStartup(ULONG_PTR* token, const GdiplusStartupInput* input, GdiplusStartupOutput*) {
    if (token == nullptr || input == nullptr) return InvalidParameter;
    if (input->GdiplusVersion != 1) return UnsupportedGdiplusVersion;
    *token = g_gdiplus.next_token++;
    ++g_gdiplus.started;
    return Ok;
}

void WINAPI GdiplusShutdown(ULONG_PTR token) {
    if (token != 0 && g_gdiplus.started > 0) --g_gdiplus.started;
}

}  // extern "C"
