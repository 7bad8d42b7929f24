// cdu_mouse.h: the keys of the CDU gauges, as mouse areas.
#pragma once

#include "frame/gauge_table.h"

// The gauge's key areas, padded to the row count of the gauge table.
void CduMouseAreas(GaugeId id, MouseAreaList& areas);

// Pads a list with inert buttons (and knobs, where the count needs them) to
// the row count of the gauge table, for keys whose pages are still to come.
void PadMouseAreas(MouseAreaList& areas, int wanted_rows);
