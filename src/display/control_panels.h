// control_panels.h: the click areas and lamps of the control gauges.
#pragma once

#include "frame/gauge_table.h"

void ControlPanelMouseAreas(GaugeId id, MouseAreaList& areas);
// Where an icon layer of a control panel sits; null for the default strip.
const LayerSpec* ControlPanelIconLayer(GaugeId id, int icon_index);
// Whether layer k of a control panel is shown now; false when it has no rule.
bool ControlPanelLayerShown(GaugeId id, int layer);
// BDRY's click and the common ATC boundaries switch (display_state.h).
void ToggleAtcBoundaries();
