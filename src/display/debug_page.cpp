// debug_page.cpp: the DEBUG gauge's page, six lines top to bottom, bold
// "Arial" on black. It reads the values where they live and keeps nothing.
#include "display/debug_page.h"

#include "display/traffic.h"
#include "frame/sim_state.h"

#include <cstdio>

namespace {
constexpr float kLeft = 12;             // design pixels
constexpr float kFirstLine = 16;
constexpr float kLineStep = 46;         // six lines fill the 310-pixel page
constexpr float kFontSize = 26;
}  // namespace

void DrawDebugPage(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    ResetToDesign(surface);
    gdi::Font font(kArialFont, kFontSize, FontStyleBold);
    char lines[6][48];
    std::snprintf(lines[0], sizeof lines[0], "tcas_check=%d", g_traffic.link_status);
    std::snprintf(lines[1], sizeof lines[1], "tcas_flag=%d", g_traffic.link_attempts);
    std::snprintf(lines[2], sizeof lines[2], "plat=%.6f", g_sim.latitude);
    std::snprintf(lines[3], sizeof lines[3], "plon=%.6f", g_sim.longitude);
    std::snprintf(lines[4], sizeof lines[4], "magvar=%.2f", g_sim.magnetic_variation);
    std::snprintf(lines[5], sizeof lines[5], "tcas_target=%d", g_traffic.TargetCount);
    float y = kFirstLine;
    for (const char* line : lines) {
        g.DrawText(line, font, palette::kWhite, kLeft, y);
        y += kLineStep;
    }
}
