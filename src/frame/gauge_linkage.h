// gauge_linkage.h: the gauges as the simulator sees them: headers, layer
// chains and mouse tables, built once from the gauge table and the families'
// callbacks and handlers.
#pragma once

#include "frame/gauge_table.h"

// The header the module lists for a gauge (the simulator copies it per instance).
GAUGEHDR& HeaderOf(GaugeId id);
// Mouse table of a gauge, and its row count without the end-of-table row.
const MOUSERECT* MouseTableOf(GaugeId id);
int MouseRowCount(GaugeId id);
// The layers of a gauge, for tests and for the resource builder.
int LayerCount(GaugeId id);
LayerSpec LayerOf(GaugeId id, int layer);
