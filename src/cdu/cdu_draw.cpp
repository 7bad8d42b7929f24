// cdu_draw.cpp: the CDU pages are still to come; nothing is drawn yet.
#include "cdu/cdu_draw.h"

void DrawCdu(GaugeId, HDC, int, int) {}
