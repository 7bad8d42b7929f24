// artwork.h: draws the picture of one layer of one gauge.
//
// Every layer is drawn on a transparent ARGB canvas of exactly its LayerOf
// size; what stays transparent becomes the simulator's transparent black in
// the BMP (bmp_file.h). The looks live in artwork.cpp: the style constants at
// its top are where to restyle the whole set.
#pragma once

#include "frame/gauge_linkage.h"

#include <cairo.h>

#include <string>

// Draws layer `layer` of gauge `id` on a canvas of the layer's size, whose
// origin is the layer's top-left corner. False with a reason if the layer's
// picture can't be made (an icon layer whose cap or knob is missing).
bool DrawLayer(cairo_t* cr, GaugeId id, int layer, std::string& error);

// Whether the layer is a plain black rectangle (surfaces and backings) that
// must stay pure black rather than the opaque near-black of drawn art.
bool IsBlackLayer(GaugeId id, int layer);
