// nd_hold_figure.cpp: the racetrack sketch of a hold on the map, at the
// hold's fix and turned by its inbound course.
#include "display/nd_map.h"

void DrawHoldFigureLayer(gdi::Graphics&, const MapView&) {}
