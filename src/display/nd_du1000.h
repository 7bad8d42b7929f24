// nd_du1000.h: the DU_1000_EHSI (and _NB) navigation display: a full rose,
// the EHSI arc with its course needle, and a map page, over the shared map
// layers, with separate VOR and NDB switches on its map.
#pragma once

#include "display/display_surface.h"
#include "display/nd_map.h"

// Design canvas and the two compass geometries.
constexpr int kDu1000Width = 318;
constexpr int kDu1000Height = 310;
constexpr int kDu1000CentreX = 159;
constexpr int kDu1000ArcCentreY = 272;   // modes 1, 2, 3: the arc and the map
constexpr int kDu1000ArcRadius = 234;    // the map radius
constexpr int kDu1000RoseCentreY = 160;  // mode 0: the full rose
constexpr int kDu1000RoseRadius = 116;
constexpr int kVerticalMarksStyleDu1000 = 10;
// The modes, in the order the panel's knob steps them up: 0, 1, 3, 2.
constexpr int kDu1000ModeRose = 0;       // full rose, course needle, no map
constexpr int kDu1000ModeEhsi = 1;       // the EHSI arc with the course needle, no map
constexpr int kDu1000ModeMap = 2;        // the map page: arc, range rings, the map
constexpr int kDu1000ModeEhsiMap = 3;    // the EHSI arc with the course needle over the map
// Where the mode name and the range stand.
constexpr int kDu1000ModeTextX = 6;
constexpr int kDu1000ModeTextY = 292;
constexpr int kDu1000RangeTextX = 312;   // right edge
constexpr int kDu1000RangeTextY = 292;
// Range gates of the object layers, nm.
constexpr double kDu1000NavaidMaxRange = 160;
constexpr double kDu1000AirportMaxRange = 160;
constexpr double kDu1000FixMaxRange = 40;

// The page, drawn into a frame that is already scaled and filled.
void DrawDu1000Ehsi(const DisplaySurface& surface);
// The map view of the arc (every map mode shares it).
MapView Du1000MapView(const DisplaySurface& surface);
// Whether the map layers run this frame: a map mode, and something to show
// (an active leg, a map switch, the traffic switch or the ATC boundaries).
bool Du1000MapLayersRun(int mode);
// The navaids of the map: VORs by the navaids switch (kind 76, green), NDBs
// by the display's own NDB switch (kind 3, magenta).
void DrawDu1000NavaidsLayer(gdi::Graphics& g, const MapView& view, bool vors, bool ndbs);
