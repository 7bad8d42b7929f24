// nd_md11.h: the HW_MD11_ND navigation display (with its _NB twin): the
// heading-up MAP on its arc, the north-up PLAN, and the VOR and APPR arcs
// with the tuned receiver's course, their furniture and texts.
#pragma once

#include "display/display_surface.h"
#include "display/nd_map.h"

// Design canvas and the map geometry of each mode.
constexpr int kMd11Width = 240;
constexpr int kMd11Height = 258;
constexpr int kMd11CentreX = 120;
constexpr int kMd11ArcCentreY = 178;    // MAP, VOR, APPR
constexpr int kMd11PlanCentreY = 129;   // PLAN
constexpr int kMd11ArcRadius = 150;     // the compass arc of MAP, VOR and APPR
constexpr int kVerticalMarksStyleMd11 = 9;
// Where the mode line stands (the mode name, then LNAV and VNAV under it).
constexpr int kMd11ModeTextX = 205;
constexpr int kMd11ModeTextY = 215;
constexpr int kMd11StatusLineStep = 12; // pixels between the mode line's rows
// Range gates of the object layers, nm.
constexpr double kMd11MapNavaidMaxRange = 320;
constexpr double kMd11PlanNavaidMaxRange = 160;
constexpr double kMd11AirportMaxRange = 160;
constexpr double kMd11FixMaxRange = 80;
constexpr double kMd11AirportDiagramMaxRange = 2.5;

// The page, drawn into a frame that is already scaled and filled.
void DrawMd11Nd(const DisplaySurface& surface);
// The map view of the present mode (centre, scale, heading, PLAN centre).
MapView Md11MapView(const DisplaySurface& surface);
