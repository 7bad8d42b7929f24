// cdu_draw.h: drawing a CDU screen: the page dispatchers of the keypad
// families, called at each drawn frame of a CDU gauge.
#pragma once

#include "frame/gauge_table.h"

#include <windows.h>

// The family's page dispatcher on the gauge's surface (width x height pixels).
void DrawCdu(GaugeId id, HDC hdc, int width, int height);
// The Boeing-style family's frame: clear to black, run the page function of
// CduPage (which reads the latches, acts and draws), draw the entry line,
// clear the frame's latches.
void SmithsPageDispatcher(HDC hdc, int width, int height);
// The title a page of the Boeing-style family shows; null for an empty number.
const char* SmithsPageTitle(int page);
