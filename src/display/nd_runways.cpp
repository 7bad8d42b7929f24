// nd_runways.cpp: the runway figures of the origin and the destination and
// the ILS course line, layers every moving map draws.
#include "display/nd_map.h"

void DrawRunwaysLayer(gdi::Graphics&, const MapView&) {}
void DrawIlsCourseLine(gdi::Graphics&, const MapView&) {}
