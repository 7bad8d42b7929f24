// display_frame.h: drawing a display's picture.
#pragma once

#include "frame/gauge_table.h"

#include <windows.h>

// instance: 1 full picture, 2 dark screen, 3 without boundaries and intersections.
void DrawDisplay(GaugeId id, HDC hdc, int width, int height, int instance);
// Update-time work of some displays (C17_MFD's mode logic, HW_B737_ND's mode variable).
void DisplayUpdate(GaugeId id);
