// control_panels.cpp: the control gauges' switches come with their displays;
// until then their areas are inert and their lamps dark.
#include "display/control_panels.h"

#include "cdu/cdu_mouse.h"

void ControlPanelMouseAreas(GaugeId id, MouseAreaList& areas) { PadMouseAreas(areas, SpecOf(id).mouse_rows); }
const LayerSpec* ControlPanelIconLayer(GaugeId, int) { return nullptr; }
bool ControlPanelLayerShown(GaugeId, int) { return false; }
void ToggleAtcBoundaries() {}
