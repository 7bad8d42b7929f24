// nd_b737.h: the HW_B737_ND navigation display (with its _BR and _NB twins):
// full rose pages, the expanded arc, the map around the aircraft, the
// centred map and the north-up plan, with their furniture and texts.
#pragma once

#include "display/display_surface.h"
#include "display/nd_map.h"

// Design canvas and the map geometry of each mode.
constexpr int kB737Width = 244;
constexpr int kB737Height = 302;
constexpr int kB737ArcCentreX = 122;    // modes 3 to 5
constexpr int kB737ArcCentreY = 249;
constexpr int kB737ArcRadius = 215;
constexpr int kB737CtrCentreY = 171;    // modes 6 and 7
constexpr int kB737CtrRadius = 110;
constexpr int kB737RoseCentreY = 160;   // modes 1 and 2, the rose page
constexpr int kB737RoseRadius = 95;
constexpr int kVerticalMarksStyleB737 = 8;
constexpr int kWindArrowX = 72;         // centre of the wind arrow, right of the wind text
constexpr int kWindArrowY = 262;
// Range gates of the object layers, nm.
constexpr double kB737NavaidMaxRange = 160;
constexpr double kB737AirportMaxRange = 160;
constexpr double kB737FixMaxRange = 40;

// The page, drawn into a frame that is already scaled and filled.
void DrawB737Nd(const DisplaySurface& surface);
// The map view of the present mode (centre, scale, heading, PLAN centre).
MapView B737MapView(const DisplaySurface& surface);
