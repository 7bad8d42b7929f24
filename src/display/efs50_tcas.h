// efs50_tcas.h: the EFS 50's traffic-only screen (EFS50_TCAS): own aircraft
// at the centre of two range rings and the targets of the traffic layer, at
// the EFS 50's traffic range.
#pragma once

#include "display/display_surface.h"

// Centre and radius of the traffic picture, surface pixels (no design scale).
constexpr double kEfs50TcasCentreX = 140;
constexpr double kEfs50TcasCentreY = 146;
constexpr double kEfs50TcasRadius = 100;   // pixels of the full traffic range

void DrawEfs50Tcas(const DisplaySurface& surface);
