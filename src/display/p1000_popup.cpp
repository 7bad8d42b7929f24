// p1000_popup.cpp: what the P1000 MFD does when its control pop-up is taken
// for closed. The keys' page is left as it is: the next opening finds it.
#include "display/p1000_popup.h"

#include "display/display_state.h"

void P1000PopupClosed() {
    DisplayState& d = g_display;
    if (d.p1000_plan == 0) return;
    d.p1000_plan = 0;
    d.p1000_map_x = kP1000MapCentreX;
    d.p1000_map_y = kP1000MapCentreY;
    d.p1000_map_radius = kP1000MapRadius;
}
