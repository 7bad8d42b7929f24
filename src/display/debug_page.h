// debug_page.h: the DEBUG gauge's screen: a few live values in plain text
// (the traffic link, the aircraft's position, the magnetic variation).
#pragma once

#include "display/display_surface.h"

// Design canvas of the page.
constexpr int kDebugWidth = 330;
constexpr int kDebugHeight = 310;

// The page, drawn into a frame that is already scaled and cleared.
void DrawDebugPage(const DisplaySurface& surface);
