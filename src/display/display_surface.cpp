// display_surface.cpp: see display_surface.h.
#include "display/display_surface.h"

#include "frame/sim_state.h"

void ResetToDesign(const DisplaySurface& surface) {
    surface.graphics->ResetTransform();
    surface.graphics->Scale(surface.scale_x, surface.scale_y);
}

bool SlowRefreshDue() { return g_tick.slow_refresh < 2; }
