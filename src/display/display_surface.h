// display_surface.h: what a display's page is given to draw on, and the one
// palette and fonts of the pictures.
//
// The pages of every family include this and nothing of the frame that calls
// them: the frame dispatches to the families through their table
// (display_families.h).
#pragma once

#include "display/gdi_objects.h"

// [SECTION] Palette (ARGB, opaque)
namespace palette {
constexpr ARGB kGreen = 0xFF00FA00;
constexpr ARGB kWhite = 0xFFDEE6E9;
constexpr ARGB kMagenta = 0xFFFF13D5;
constexpr ARGB kBlue = 0xFF02A7EB;
constexpr ARGB kAmber = 0xFFE9B73E;
constexpr ARGB kYellow = 0xFFFFFF00;
constexpr ARGB kBlack = 0xFF000000;
constexpr ARGB kLightGreen = 0xFF5BE5A7;
constexpr ARGB kCyan = 0xFF00E6E9;
constexpr ARGB kSkyBlue = 0xFF18C2E7;
constexpr ARGB kBrightGreen = 0xFF25C817;
constexpr ARGB kPurple = 0xFF800080;      // the frame's working brush and pen
constexpr ARGB kRed = 0xFFFF0000;
constexpr ARGB kPlum = 0xFFCA196A;
constexpr ARGB kDarkGreen = 0xFF004000;
constexpr ARGB kDarkRed = 0xFFC90101;
constexpr ARGB kGroundBrown = 0xFF946239;
constexpr ARGB kGrey = 0xFFC0C0C0;        // the map's grey
}  // namespace palette

// Font families of the pictures.
constexpr const char* kHwFont = "HW Arial";
constexpr const char* kArialFont = "Arial";

// [SECTION] The surface of one frame
struct DisplaySurface {
    gdi::Graphics* graphics = nullptr;  // made at the frame's start, deleted at its end
    int width = 0;                      // surface pixels, as the simulator gives them
    int height = 0;
    float scale_x = 1;                  // surface width / design width
    float scale_y = 1;
    int instance = 1;                   // DrawInstance: 1 full, 3 without boundaries and intersections
};

// Resets the world transform to the design canvas's scale.
void ResetToDesign(const DisplaySurface& surface);

// Whether a slow-changing picture repaints its background this frame.
bool SlowRefreshDue();
