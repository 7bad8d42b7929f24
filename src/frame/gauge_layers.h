// gauge_layers.h: a gauge instance's layer chain, read and switched.
//
// The callbacks switch lamps and icons, and the C-17 screens hide their
// bezel; all of them walk the same chain the simulator built from the gauge's
// element list.
#pragma once

#include <panel_sdk.h>

// Layer k of an instance's chain (0 the first element), or null.
ELEMENT_HEADER* LayerElement(GAUGEHDR* gauge, int layer);
// Shows or hides layer k; a missing layer is skipped.
void ShowLayer(GAUGEHDR* gauge, int layer, bool shown);
