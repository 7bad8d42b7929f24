// eadi_efs50.h: the EFS50_EADI and EFS50_EADI_NB attitude director: the
// attitude ball with flight director, two mode rows across the top, radio
// altitude, the ILS scales with their source, a fast/slow scale against the
// selected speed, marker letters and, as an option, a heading strip, on a
// 266 x 230 canvas. Both gauges draw this one page.
//
// The page reads the shared attitude inputs (attitude.h), so that a frame
// can be drawn from any aircraft state.
#pragma once

#include "display/attitude.h"

constexpr int kEfs50EadiWidth = 266;    // design canvas
constexpr int kEfs50EadiHeight = 230;
constexpr float kEfs50BallX = 133;      // design point of the ball's centre
constexpr float kEfs50BallY = 118;
// The aircraft profile has no colour keys for this display: the sphere's
// two fields are this cockpit's own blue and brown.
constexpr ARGB kEfs50Sky = 0xFF1C8CD8;
constexpr ARGB kEfs50Ground = 0xFF8C5A28;
constexpr double kEfs50SpeedScaleReach = 50;  // knots from the selected speed the scale shows within

// The page, drawn into a frame that is already scaled and filled.
void DrawEfs50Eadi(const DisplaySurface& surface);
// The same from given inputs.
void DrawEfs50EadiFrom(const DisplaySurface& surface, const AttitudeInputs& in);
