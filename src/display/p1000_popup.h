// p1000_popup.h: the P1000 MFD's control pop-up, which has no close notice.
//
// The tick's window-alive watch counts the pop-up's draws; when they stop it
// takes the window for closed and calls this, so that a map left in PLAN by
// the pop-up's key goes back to the heading-up map the panel shows.
#pragma once

// The heading-up map's place on the canvas, design pixels.
constexpr double kP1000MapCentreX = 134;
constexpr double kP1000MapCentreY = 148;
constexpr double kP1000MapRadius = 53;
// PLAN's place: higher and larger, over the traffic window.
constexpr double kP1000PlanCentreY = 116;
constexpr double kP1000PlanRadius = 75;

// The tick took the pop-up for closed: PLAN mode off, the map back to its place.
void P1000PopupClosed();
