// c17_attitude.h: page 1 of a C-17 screen, the primary flight display (ATT):
// the ball with its ladder and flight director, speed and altitude tapes
// with rolling readouts and bugs, heading strip, ILS scales, marker, the
// corner data and the mode boxes, on the 246 x 241 design canvas.
#pragma once

#include "display/attitude.h"

constexpr float kC17AttCentreX = 123;   // the attitude centre of the ATT page on its 246 x 241 canvas
constexpr float kC17AttCentreY = 100;

// The page from the tick's samples.
void DrawC17Attitude(const DisplaySurface& surface);
// The same from given inputs.
void DrawC17AttitudeFrom(const DisplaySurface& surface, const AttitudeInputs& in);
