// nd_md80.h: the MD80_EHSI_NB navigation display: a full rose and an
// expanded arc, each with or without the course needle, over the shared map
// layers, and a map-less full-rose HSI for radio flying.
#pragma once

#include "display/display_surface.h"
#include "display/nd_map.h"

// Design canvas and the two compass geometries.
constexpr int kMd80Width = 266;
constexpr int kMd80Height = 232;
constexpr int kMd80CentreX = 133;
constexpr int kMd80RoseCentreY = 122;   // modes 0 and 2: the full rose
constexpr int kMd80RoseRadius = 88;
constexpr int kMd80ArcCentreY = 196;    // modes 1 and 3: the expanded arc
constexpr int kMd80ArcRadius = 160;
constexpr int kVerticalMarksStyleMd80 = 8;
// The modes, in the order the panel's knob steps them up: 0, 1, 3, 2.
constexpr int kMd80ModeRose = 0;        // full rose, map, course needle
constexpr int kMd80ModeArc = 1;         // expanded arc, map, course needle
constexpr int kMd80ModeHsi = 2;         // full-rose HSI, no map
constexpr int kMd80ModeMap = 3;         // expanded arc, map, no course needle
// Where the mode name and the range stand, bottom corners.
constexpr int kMd80ModeTextX = 4;
constexpr int kMd80ModeTextY = 216;
constexpr int kMd80RangeTextX = 262;    // right edge
constexpr int kMd80RangeTextY = 216;
// Range gates of the object layers, nm.
constexpr double kMd80NavaidMaxRange = 160;
constexpr double kMd80AirportMaxRange = 160;
constexpr double kMd80FixMaxRange = 80;

// The page, drawn into a frame that is already scaled and filled.
void DrawMd80Ehsi(const DisplaySurface& surface);
// The map view of the present mode (centre, scale, heading).
MapView Md80MapView(const DisplaySurface& surface);
// Whether a mode draws the map layers (every mode but the HSI).
bool Md80ModeHasMap(int mode);
