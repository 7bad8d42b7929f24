// cdu_mouse.h: the keys of the CDU gauges, as mouse areas.
#pragma once

#include "frame/gauge_table.h"

// The gauge's key areas, padded to the row count of the gauge table.
void CduMouseAreas(GaugeId id, MouseAreaList& areas);
