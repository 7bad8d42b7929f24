// display_frame.h: what every display's picture has in common: the frame
// (graphics object, scale from the design size, background, dark screen
// with the avionics power off or at instance 2), the one palette, and the
// update-time work of the displays.
#pragma once

#include "display/gdi_objects.h"
#include "frame/gauge_table.h"

#include <windows.h>

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

// The design size and background of each display; zero width: not a display.
struct DisplayFrameSpec {
    int design_width;
    int design_height;
    SmoothingMode smoothing;
    ARGB clear_colour;
    bool has_background;                // fill the design rectangle with the profile's colour
    bool needs_power = true;            // dark while the avionics power is off (DEBUG: always lit)
};
DisplayFrameSpec FrameSpecOf(GaugeId id);

// instance: 1 full picture, 2 dark screen, 3 without boundaries and intersections.
void DrawDisplay(GaugeId id, HDC hdc, int width, int height, int instance);
// Update-time work of the displays that have some (HW_B737_ND's mode variable).
void DisplayUpdate(GaugeId id);
// Whether a slow-changing picture repaints its background this frame.
bool SlowRefreshDue();
