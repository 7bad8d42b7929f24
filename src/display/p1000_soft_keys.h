// p1000_soft_keys.h: the P1000 MFD's row of five soft keys and its left
// knob. With the control pop-up closed the keys are the map switches; with
// it open they set up a descent (page 2: distance, altitude or angle, and
// the vertical speed that flies it). The screen labels the keys; the labels
// are worked out here, the page draws them.
#pragma once

#include <array>

constexpr int kP1000SoftKeyCount = 5;
constexpr int kP1000LabelRows = 12;     // the most labels a state shows
constexpr float kP1000LabelY = 275;     // design pixels of the first label line
constexpr float kP1000ValueY = 290;     // and of the second
constexpr double kP1000KnobDistanceStep = 1;    // nm a knob click
constexpr double kP1000KnobAltitudeStep = 100;  // feet a knob click
constexpr double kP1000KnobAngleStep = 0.1;     // degrees of FPA a knob click
constexpr double kP1000MaxAngle = 6.0;          // FPA stays within 0 and this

// Soft key 1 to 5 pressed (others: nothing).
void P1000SoftKey(int key);
// The left knob: direction -1 down, +1 up.
void P1000LeftKnob(int direction);
// The vertical speed of the present set-up, ft/min: to the altitude over the
// distance, or at FPA when either is 0.
double P1000VerticalSpeed();

// One label of the key row.
struct P1000Label {
    std::array<char, 16> text{};        // as drawn, brackets included
    float x = 0;                        // design pixels of its left edge
    float y = 0;                        // design pixels of its top
    bool value = false;                 // a number (drawn in the value colour), not a key's name
};
struct P1000Labels {
    std::array<P1000Label, kP1000LabelRows> rows{};
    int count = 0;                      // rows in use
};
// The labels of the present state: pop-up closed, page 1 or page 2.
P1000Labels P1000SoftKeyLabels();
