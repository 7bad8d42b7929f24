// nd_p1000.h: the P1000_MFD (and _NB): a multi-function page with a small
// heading-up map, or a larger north-up PLAN, over an optional traffic window,
// with the soft keys' labels along its bottom edge.
//
// The page's own figures are placed in eighths of a design pixel: the world
// transform is scaled by an eighth and every coordinate is multiplied by 8,
// so that the integer drawing calls place them to an eighth of a pixel.
#pragma once

#include "display/display_surface.h"
#include "display/nd_map.h"

// Design canvas.
constexpr int kP1000Width = 272;
constexpr int kP1000Height = 314;
constexpr int kP1000SubPixels = 8;      // units of the page's frame per design pixel
constexpr int kVerticalMarksStyleP1000 = 2;
// Range gates of the object layers, nm.
constexpr double kP1000NavaidMaxRange = 160;
constexpr double kP1000AirportMaxRange = 80;
constexpr double kP1000FixMaxRange = 40;
// The traffic window: its own range is the map's up to this, else the fallback.
constexpr double kP1000TrafficMaxRange = 40;
constexpr double kP1000TrafficFallbackRange = 5;
constexpr int kP1000TrafficCentreX = 131;   // design pixels of the window's own aircraft
constexpr int kP1000TrafficCentreY = 238;
constexpr int kP1000TrafficRadius = 61;     // pixels of DrawTraffic's range
// Where the texts stand, design pixels.
constexpr float kP1000RangeTextX = 8;
constexpr float kP1000RangeTextY = 40;

// The page, drawn into a frame that is already scaled and filled.
void DrawP1000Mfd(const DisplaySurface& surface);
// The map view: heading-up round the aircraft, or PLAN north-up round the
// plan's centre row; its place on the canvas by the PLAN flag.
MapView P1000MapView(const DisplaySurface& surface);
// The traffic window's range for a map range.
double P1000TrafficRange(double map_range);
