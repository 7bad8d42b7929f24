// pfd_b777.h: the B777_PFD_NB primary flight display: attitude ball, speed
// and altitude tapes, flight director, warnings and mode annunciations on a
// 260 x 260 canvas.
//
// The page reads the shared attitude inputs (attitude.h), so that a frame
// can be drawn from any aircraft state.
#pragma once

#include "display/attitude.h"

constexpr int kB777PfdWidth = 260;      // design canvas
constexpr int kB777PfdHeight = 260;
constexpr float kB777BallX = 110;       // design point of the ball's centre
constexpr float kB777BallY = 130;

// The page, drawn into a frame that is already scaled and filled.
void DrawB777Pfd(const DisplaySurface& surface);
// The same from given inputs.
void DrawB777PfdFrom(const DisplaySurface& surface, const AttitudeInputs& in);
