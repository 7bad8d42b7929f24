// cdu_mouse.cpp: the CDU keys as mouse areas. The Boeing-style and GNS pairs
// get one area a key of their key tables; the MCU pair has its own areas.
#include "cdu/cdu_mouse.h"

#include "cdu/cdu_keys.h"
#include "cdu/gns_key_table.h"
#include "cdu/mcu_keys.h"

void CduMouseAreas(GaugeId id, MouseAreaList& areas) {
    if (id == GaugeId::MCU || id == GaugeId::MCU_LM) {
        McuMouseAreas(id, areas);
        return;
    }
    bool gns = IsGnsGauge(id);
    for (int i = 0; i < CduKeyCount(id); ++i) {
        const CduKeyBox* key = CduKeyAt(id, i);
        areas.Button(key->x, key->y, key->w, key->h, gns ? GnsKeyHandler(i) : CduKeyHandler(i), key->flags);
    }
    // The table's row count is fixed; the spare rows stay inert.
    PadMouseAreas(areas, SpecOf(id).mouse_rows);
}
