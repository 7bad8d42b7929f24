// display_frame.h: what every display's picture has in common: the frame
// (graphics object, scale from the design size, background, dark screen
// with the avionics power off or at instance 2) and the update-time work of
// the displays. The palette and the surface are in display_surface.h.
#pragma once

#include "display/display_surface.h"
#include "frame/gauge_table.h"

#include <windows.h>

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
