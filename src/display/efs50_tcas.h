// efs50_tcas.h: the EFS 50's traffic-only screen (EFS50_TCAS): own aircraft
// at the centre of two range rings and the targets of the traffic layer, at
// the EFS 50's traffic range. The same picture is the EFS 50 EHSI's traffic
// mode, so it is drawn by one function both call.
#pragma once

#include "display/display_surface.h"

// Centre and radius of the traffic picture, surface pixels (no design scale).
constexpr double kEfs50TcasCentreX = 140;
constexpr double kEfs50TcasCentreY = 146;
constexpr double kEfs50TcasRadius = 100;   // pixels of the full traffic range

void DrawEfs50Tcas(const DisplaySurface& surface);
// The traffic picture round (cx, cy) in the current transform's pixels: the
// full-range ring, the dotted half-range ring, own aircraft, the range
// figure by the ring and the targets at g_display.efs50_traffic_range.
// The caller tests the traffic switch and sets the transform.
void DrawEfs50TrafficPicture(const DisplaySurface& surface, double cx, double cy, double radius);
