// display_frame.cpp: the display families are still to come; nothing is drawn yet.
#include "display/display_frame.h"

void DrawDisplay(GaugeId, HDC, int, int, int) {}
void DisplayUpdate(GaugeId) {}
