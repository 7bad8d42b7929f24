// nd_fix_circles.cpp: the FIX INFO page's fixes on the map: a circle at each
// entered distance and a line along each entered radial.
#include "display/nd_map.h"

void DrawFixCirclesLayer(gdi::Graphics&, const MapView&) {}
