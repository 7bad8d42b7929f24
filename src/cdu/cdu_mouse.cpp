// cdu_mouse.cpp: the CDU keys as mouse areas. The Boeing-style pair gets one
// area a key of its key table; the GNS and MCU keys come with their pages, so
// their tables are inert buttons of the full shape until then.
#include "cdu/cdu_mouse.h"

#include "cdu/cdu_keys.h"

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

void CduMouseAreas(GaugeId id, MouseAreaList& areas) {
    for (int i = 0; i < CduKeyCount(id); ++i) {
        const CduKeyBox* key = CduKeyAt(id, i);
        areas.Button(key->x, key->y, key->w, key->h, CduKeyHandler(i), key->flags);
    }
    // The table's row count is fixed; the spare rows stay inert.
    PadMouseAreas(areas, SpecOf(id).mouse_rows);
}
