// p1000_soft_keys.cpp: what the P1000 MFD's soft keys and left knob do, and
// the labels the screen shows above them.
//
// The keys read the control pop-up's window-open flag (kept by the tick's
// window-alive watch): closed, they are the map switches; open, they run two
// pages. The page survives a closing, so the next opening finds it again.
// Every key asks for a repaint at the next tick.
//
// Index:
//   [SECTION] Vertical speed
//   [SECTION] Keys and knob
//   [SECTION] Labels
#include "display/p1000_soft_keys.h"

#include "display/display_state.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"

#include <cmath>
#include <cstdio>
#include <string_view>

// [SECTION] Vertical speed
double P1000VerticalSpeed() {
    const P1000SoftKeys& k = g_display.p1000_keys;
    // The descent speed with its allowance, knots; S / 60 is nm a minute.
    double ias = g_profile.DescentIas;
    double speed = ias + ias * 0.019 * 15;
    double per_minute = speed / 60;
    if (k.altitude > 0 && k.distance > 0) {
        double altitude = g_sim.indicated_altitude.now;
        if (!std::isfinite(altitude)) altitude = 0;
        return (k.altitude - altitude) / (k.distance / per_minute);
    }
    return g_profile.FPA * 100 * per_minute;
}

// [SECTION] Keys and knob
namespace {
int Flip(int value) { return value != 0 ? 0 : 1; }

// Pop-up closed: the P1000's own map switches, and the common boundaries.
void MapSwitchKey(int key) {
    DisplayState& d = g_display;
    switch (key) {
    case 1: d.p1000_airports = Flip(d.p1000_airports); break;
    case 2: d.p1000_navaids = Flip(d.p1000_navaids); break;
    case 3: d.p1000_intersections = Flip(d.p1000_intersections); break;
    case 4: d.p1000_traffic = Flip(d.p1000_traffic); break;
    case 5: ToggleAtcBoundaries(); break;
    default: break;
    }
}

void PageOneKey(int key) {
    P1000SoftKeys& k = g_display.p1000_keys;
    if (key != 2) return;
    k.page = 2;
    k.vertical_speed = P1000VerticalSpeed();
}

void PageTwoKey(int key) {
    P1000SoftKeys& k = g_display.p1000_keys;
    switch (key) {
    case 1:
        // Back; the angle keeps its selection for the next visit.
        k.page = 1;
        k.distance_select = 0;
        k.altitude_select = 0;
        break;
    case 2:
        // Distance: "TO" from off or "FM", "FM" from "TO".
        k.distance_select = k.distance_select == 1 ? 2 : 1;
        k.altitude_select = 0;
        k.angle_select = 0;
        break;
    case 3:
        k.altitude_select = 1;
        k.distance_select = 0;
        k.angle_select = 0;
        break;
    case 4:
        // The angle alone decides: the distance and altitude are cleared.
        k.angle_select = 1;
        k.distance_select = 0;
        k.altitude_select = 0;
        k.distance = 0;
        k.altitude = 0;
        break;
    default: break;
    }
}
}  // namespace

void P1000SoftKey(int key) {
    if (key < 1 || key > kP1000SoftKeyCount) return;
    // 1. Closed pop-up: map switches; open: the page's keys.
    if (g_tick.p1000_window_open == 0) MapSwitchKey(key);
    else if (g_display.p1000_keys.page == 2) PageTwoKey(key);
    else PageOneKey(key);
    // 2. The screen repaints at the next tick.
    g_tick.slow_refresh = 999;
}

void P1000LeftKnob(int direction) {
    P1000SoftKeys& k = g_display.p1000_keys;
    if (k.page != 2 || direction == 0) return;
    double sign = direction > 0 ? 1 : -1;
    // 1. The selected value steps, held at its limits.
    if (k.distance_select != 0) {
        k.distance = std::fmax(0, k.distance + sign * kP1000KnobDistanceStep);
    } else if (k.altitude_select != 0) {
        k.altitude = std::fmax(0, k.altitude + sign * kP1000KnobAltitudeStep);
    } else if (k.angle_select != 0) {
        // Tenths are counted whole so that steps don't drift off the tenth.
        double tenths = std::round(g_profile.FPA * 10) + sign;
        g_profile.FPA = std::fmin(kP1000MaxAngle, std::fmax(0, tenths / 10));
        k.distance = 0;
        k.altitude = 0;
    }
    // 2. The vertical speed follows every step.
    k.vertical_speed = P1000VerticalSpeed();
    g_tick.slow_refresh = 999;
}

// [SECTION] Labels
namespace {
void Add(P1000Labels& labels, std::string_view text, float x, float y, bool value = false) {
    if (labels.count >= kP1000LabelRows) return;
    P1000Label& row = labels.rows[static_cast<size_t>(labels.count++)];
    std::snprintf(row.text.data(), row.text.size(), "%.*s", static_cast<int>(text.size()), text.data());
    row.x = x;
    row.y = y;
    row.value = value;
}

// A value of page 2 in its format, or "---" (for 0 where zero_dashes, or
// when dashes); in brackets while selected, the bracket left of the value's
// place so that the number keeps it.
void AddValue(P1000Labels& labels, const char* format, double value, bool zero_dashes, bool dashes, bool selected,
              float x) {
    char number[12];
    if (dashes || (zero_dashes && value == 0) || !std::isfinite(value))
        std::snprintf(number, sizeof number, "---");
    else
        std::snprintf(number, sizeof number, format, value);
    char text[16];
    std::snprintf(text, sizeof text, selected ? "[%s]" : "%s", number);
    Add(labels, text, selected ? x - 4 : x, kP1000ValueY, true);
}
}  // namespace

P1000Labels P1000SoftKeyLabels() {
    P1000Labels labels;
    const P1000SoftKeys& k = g_display.p1000_keys;
    if (g_tick.p1000_window_open == 0) {
        // The map switches.
        Add(labels, "APT", 48, kP1000LabelY);
        Add(labels, "NAV", 80, kP1000LabelY);
        Add(labels, "---", 121, kP1000LabelY);
        Add(labels, "TCAS", 153, kP1000LabelY);
        Add(labels, "ATC", 190, kP1000LabelY);
        Add(labels, "BDRY", 187, kP1000ValueY);
    } else if (k.page != 2) {
        Add(labels, "VNAV", 76, kP1000LabelY);
        Add(labels, "T/O", 121, kP1000LabelY);
        Add(labels, "SPEEDS", 114, kP1000ValueY);
        Add(labels, "LNDG", 157, kP1000LabelY);
        Add(labels, "SPEEDS", 152, kP1000ValueY);
    } else {
        Add(labels, "SET", 10, kP1000LabelY);
        Add(labels, "RTN", 45, kP1000LabelY);
        Add(labels, k.distance_select == 2 ? "FM" : "TO", 87, kP1000LabelY);
        AddValue(labels, "%2.0f", k.distance, true, false, k.distance_select != 0, 87);
        Add(labels, "ST EL", 115, kP1000LabelY);
        AddValue(labels, "%2.0f", k.altitude, true, false, k.altitude_select != 0, 120);
        Add(labels, "VANG", 153, kP1000LabelY);
        // The angle means nothing while the distance and altitude decide.
        bool both = k.distance > 0 && k.altitude > 0;
        AddValue(labels, "%2.1f", g_profile.FPA, false, both, k.angle_select != 0, 157);
        Add(labels, "VS", 195, kP1000LabelY);
        AddValue(labels, "%4.0f", k.vertical_speed, true, false, false, 190);
    }
    return labels;
}
