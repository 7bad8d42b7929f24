// cdu_draw.h: drawing a CDU screen.
#pragma once

#include "frame/gauge_table.h"

#include <windows.h>

void DrawCdu(GaugeId id, HDC hdc, int width, int height);
