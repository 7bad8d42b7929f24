// eadi_a320.h: the A320_EADI_NB primary flight display: the attitude ball
// between a speed and an altitude tape, the four-column mode annunciator
// across the top with the autopilot's engagement on its right, a vertical
// speed scale, the heading strip, barometric setting, radio altitude, station
// data and marker letters, on a 318 x 310 canvas.
//
// The page reads the shared attitude inputs (attitude.h), so that a frame
// can be drawn from any aircraft state.
#pragma once

#include "display/attitude.h"

constexpr int kA320EadiWidth = 318;     // design canvas
constexpr int kA320EadiHeight = 310;
constexpr float kA320BallX = 155;       // design point of the ball's centre
constexpr float kA320BallY = 160;
constexpr ARGB kA320SpeedModeColour = 0xFF26C2FF;  // "SPEED" and "MACH"

// The page, drawn into a frame that is already scaled and filled.
void DrawA320Eadi(const DisplaySurface& surface);
// The same from given inputs.
void DrawA320EadiFrom(const DisplaySurface& surface, const AttitudeInputs& in);
