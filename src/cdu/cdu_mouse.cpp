// cdu_mouse.cpp: the CDU keys. The key rows come with their pages; until then
// every key is an inert button so that the tables have their full shape.
#include "cdu/cdu_mouse.h"

namespace {
BOOL_SDK FSAPI InertKey(PIXPOINT*, FLAGS32) { return 0; }
}  // namespace

void PadMouseAreas(MouseAreaList& areas, int wanted_rows) {
    // Rows: outer parent and closing row, then 3 a button and 4 a knob.
    int rows = 2;
    for (int i = 0; i < areas.count; ++i) rows += areas.areas[i].second ? 4 : 3;
    int missing = wanted_rows - rows;
    while (missing > 0 && missing % 3 != 0 && missing >= 4) {
        areas.Knob(0, 0, 0, 0, InertKey, InertKey);
        missing -= 4;
    }
    while (missing >= 3) {
        areas.Button(0, 0, 0, 0, InertKey);
        missing -= 3;
    }
}

void CduMouseAreas(GaugeId id, MouseAreaList& areas) { PadMouseAreas(areas, SpecOf(id).mouse_rows); }
