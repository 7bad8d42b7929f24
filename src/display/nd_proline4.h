// nd_proline4.h: the PROLINE4_MFD navigation display (with its _NB twin): a
// full-rose HSI and an arc HSI for radio flying, the small centred map and
// the expanded arc map, two bearing pointers with four sources each, and its
// own NDB switch beside the common map switches.
#pragma once

#include "display/display_surface.h"
#include "display/nd_map.h"

// Design canvas; all the display's own texts are in one typewriter face.
constexpr int kProline4Width = 247;
constexpr int kProline4Height = 285;
constexpr const char* kProline4Font = "Courier New";
constexpr int kProline4CentreX = 123;
// The modes, in the order the panel's knob steps them up: 0, 3, 1, 2.
constexpr int kProline4ModeRose = 0;    // full-rose HSI, no map
constexpr int kProline4ModeArcHsi = 1;  // arc HSI, no map
constexpr int kProline4ModeCentred = 2; // small centred map
constexpr int kProline4ModeArcMap = 3;  // expanded arc map
// Compass geometry of each page, design pixels.
constexpr int kProline4RoseCentreY = 150;   // mode 0: the rose
constexpr int kProline4RoseRadius = 92;
constexpr int kProline4CentredY = 150;      // mode 2: the centred map
constexpr int kProline4CentredRadius = 70;
constexpr int kProline4ArcCentreY = 212;    // modes 1 and 3: the arc
constexpr int kProline4ArcRadius = 140;
constexpr int kVerticalMarksStyleProline4 = 10;
// Range gates of the object layers and of traffic, nm.
constexpr double kProline4NavaidMaxRange = 160;   // VORs and, by their own switch, NDBs
constexpr double kProline4AirportMaxRange = 80;
constexpr double kProline4FixMaxRange = 40;
constexpr double kProline4TrafficMaxRange = 160;
// Bearing pointer sources, as the panel's two keys step them.
constexpr int kProline4PointerOff = 0;
constexpr int kProline4PointerVor = 1;      // VOR 1 for the first pointer, VOR 2 for the second
constexpr int kProline4PointerAdf = 2;
constexpr int kProline4PointerFms = 3;      // the active waypoint
// Where the bottom lines stand: the pointers' sources, then range and traffic.
constexpr int kProline4PointerTextY = 268;
constexpr int kProline4StatusTextY = 252;

// The page, drawn into a frame that is already scaled and filled.
void DrawProline4Mfd(const DisplaySurface& surface);
// The map view of the present mode (centre, scale, heading); modes 0 and 1
// keep the radius of the last map mode.
MapView Proline4MapView(const DisplaySurface& surface);
// Whether a mode draws the map layers (2 and 3).
bool Proline4ModeHasMap(int mode);
// A bearing pointer's relative bearing (degrees off the nose) for a pointer
// (0 first, 1 second) and source; false when the source has nothing to show.
bool Proline4PointerBearing(int pointer, int source, double& relative_bearing);
