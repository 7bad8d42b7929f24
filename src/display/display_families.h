// display_families.h: which page draws each display gauge.
//
// The one place that knows every family: the frame looks the page up here,
// and a new family adds its rows here and nowhere in the frame.
#pragma once

#include "display/display_surface.h"
#include "frame/gauge_table.h"

using DisplayPage = void (*)(const DisplaySurface& surface);

// The page of a display gauge, or null for a family that draws only its
// frame and background so far.
DisplayPage DisplayPageOf(GaugeId id);
