// p1000_popup.h: the P1000 MFD's control pop-up, which has no close notice.
#pragma once

// The tick took the pop-up for closed: PLAN mode off, the map back to its place.
void P1000PopupClosed();
