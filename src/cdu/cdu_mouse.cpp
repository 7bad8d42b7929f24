// cdu_mouse.cpp: the CDU keys as mouse areas. The Boeing-style pair gets one
// area a key of its key table; the GNS and MCU keys come with their pages, so
// their tables are inert buttons of the full shape until then.
#include "cdu/cdu_mouse.h"

#include "cdu/cdu_keys.h"
#include "cdu/mcu_keys.h"

void CduMouseAreas(GaugeId id, MouseAreaList& areas) {
    if (id == GaugeId::MCU || id == GaugeId::MCU_LM) {
        McuMouseAreas(id, areas);
        return;
    }
    for (int i = 0; i < CduKeyCount(id); ++i) {
        const CduKeyBox* key = CduKeyAt(id, i);
        areas.Button(key->x, key->y, key->w, key->h, CduKeyHandler(i), key->flags);
    }
    // The table's row count is fixed; the spare rows stay inert.
    PadMouseAreas(areas, SpecOf(id).mouse_rows);
}
