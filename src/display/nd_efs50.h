// nd_efs50.h: the EFS50_EHSI and EFS50_EHSI_NB electronic HSI: two
// independent switches, the HSI mode (a full rose or an expanded arc, with
// or without the map; 8 the traffic picture) and the nav mode (1 the radio,
// 2 the flight plan, which alone brings the map), on a 266 x 230 canvas.
#pragma once

#include "display/display_surface.h"
#include "display/nd_map.h"

// Design canvas and the two compass geometries. The map's scale is the
// range ring's: the selected range lies at kEfs50*MapRadius pixels, and the
// card stands farther out, so that the map shows beyond the range ring.
constexpr int kEfs50EhsiWidth = 266;
constexpr int kEfs50EhsiHeight = 230;
constexpr int kEfs50CentreX = 129;
constexpr int kEfs50RoseCentreY = 114;      // HSI modes 1 to 3
constexpr int kEfs50RoseMapRadius = 50;
constexpr int kEfs50RoseCardRadius = 100;   // the card's circle: box (29, 14), 200 across
constexpr int kEfs50ArcCentreY = 190;       // HSI modes 4 to 7
constexpr int kEfs50ArcMapRadius = 95;
constexpr int kEfs50ArcCardRadius = 170;
constexpr int kVerticalMarksStyleEfs50 = 5;
// The HSI modes.
constexpr int kEfs50ModeHsi = 1;            // rose, course needle, no map
constexpr int kEfs50ModeRoseNav = 2;        // rose, course needle, map
constexpr int kEfs50ModeRoseMap = 3;        // rose, map (the needle only without the map)
constexpr int kEfs50ModeArcHsi = 4;         // arc, course needle, no map
constexpr int kEfs50ModeArcNav = 5;         // arc, course needle, map
constexpr int kEfs50ModeArcMap = 6;         // arc, map (the needle only without the map)
constexpr int kEfs50ModeArcBearing = 7;     // arc, the bearing pointers alone
constexpr int kEfs50ModeTraffic = 8;        // the traffic picture
// The nav modes.
constexpr int kEfs50NavRadio = 1;           // VOR or localiser on NAV 1
constexpr int kEfs50NavFms = 2;             // the flight plan's leg; the map
// The traffic picture of mode 8.
constexpr int kEfs50TrafficCentreY = 118;
constexpr int kEfs50TrafficRadius = 92;
// Where the corner texts stand.
constexpr int kEfs50LeftX = 4;
constexpr int kEfs50RightX = 262;           // right edge
constexpr int kEfs50TopY = 2;
constexpr int kEfs50SecondY = 16;
constexpr int kEfs50ThirdY = 30;
constexpr int kEfs50LegendY = 198;          // bearing pointer sources
constexpr int kEfs50BottomY = 214;          // mode name, range
// Marks and the altitude range arc need this much to go to the active waypoint.
constexpr double kEfs50MarksMinToGoNm = 8.0;
// Range gates of the object layers, nm.
constexpr double kEfs50NavaidMaxRange = 160;
constexpr double kEfs50AirportMaxRange = 160;
constexpr double kEfs50FixMaxRange = 40;
// Bearing pointer sources (the panel steps each 0, 1, 2, 3, 0).
constexpr int kEfs50BearingOff = 0;
constexpr int kEfs50BearingVor1 = 1;
constexpr int kEfs50BearingVor2 = 2;
constexpr int kEfs50BearingAdf = 3;

// The page, drawn into a frame that is already scaled and filled.
void DrawEfs50Ehsi(const DisplaySurface& surface);
// The map view of the present HSI mode (centre, scale, heading).
MapView Efs50MapView(const DisplaySurface& surface);
// Whether the map layers run: nav mode 2 and HSI mode 2, 3, 5 or 6.
bool Efs50MapShown(int hsi_mode, int nav_mode);
// The mode's name as the page shows it.
const char* Efs50ModeName(int hsi_mode);
