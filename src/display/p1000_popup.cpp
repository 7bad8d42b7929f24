// p1000_popup.cpp: the P1000 MFD comes with its display family.
#include "display/p1000_popup.h"

void P1000PopupClosed() {}
