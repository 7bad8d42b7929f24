// eicas_proline.h: the PROLINE_EICAS twin-engine strip: two N1 dials and
// the N2, fuel flow and oil readings beside them.
#pragma once

#include "display/display_surface.h"

// Design canvas of the strip.
constexpr int kEicasWidth = 486;
constexpr int kEicasHeight = 110;

// The page, drawn into a frame that is already scaled and filled.
void DrawProlineEicas(const DisplaySurface& surface);
