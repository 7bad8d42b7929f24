// map_symbols.h: the symbol library every moving map draws with: navaids,
// intersections, waypoints, own-ship, traffic and the small marks, each a
// figure of a few segments anchored at a pixel, in a colour picked by the
// map's colour index.
#pragma once

#include "display/gdi_objects.h"

// MapColour: the index the library turns into a pen and a brush.
constexpr int kMapWhite = 0;            // inactive waypoints, the default
constexpr int kMapBlue = 1;             // airports and navaids in blue
constexpr int kMapGreen = 3;
constexpr int kMapMagenta = 4;          // the active waypoint and leg
constexpr int kMapYellow = 5;
constexpr int kNoLabel = -99;           // DrawMapSymbol's label when no number is drawn

// Symbol kinds the maps ask for.
constexpr int kSymbolVor = 1;           // navaid of kind "V"
constexpr int kSymbolNavaid = 2;        // other navaids
constexpr int kSymbolFix = 3;           // intersections
constexpr int kSymbolNdb = 4;
constexpr int kSymbolVorDme = 5;
constexpr int kSymbolOwnShipFilled = 11;
constexpr int kSymbolOwnShipOutline = 12;
constexpr int kSymbolWaypoint = 20;     // plan waypoints
constexpr int kSymbolDiamond = 21;
constexpr int kSymbolTickShort = 30;
constexpr int kSymbolTickLong = 31;
constexpr int kSymbolOwnShipMark = 40;
constexpr int kSymbolRing = 50;
constexpr int kSymbolTrafficOther = 70;
constexpr int kSymbolTrafficProximate = 71;
constexpr int kSymbolTrafficAdvisory = 72;
constexpr int kSymbolTrafficResolution = 73;
constexpr int kSymbolTuned = 74;
constexpr int kSymbolTunedBars = 75;
constexpr int kSymbolTunedVor = 76;

// The ARGB of a MapColour index (unknown indexes: near white).
ARGB MapColourArgb(int colour);

// Draws one symbol at (x, y) in the graphics object's current transform.
// scale_x, scale_y multiply the figure's units; label is a number drawn at
// the symbol's right, or kNoLabel. Pens, brushes and fonts are made and
// deleted within the call. An unknown kind draws nothing.
void DrawMapSymbol(gdi::Graphics& g, int x, int y, int kind, int label, float scale_x, float scale_y, int colour,
                   double range);
