// keypad.cpp: the keypad families' shared state.
#include "cdu/keypad.h"

KeypadState g_smiths;
KeypadState g_gns;
KeypadState g_mcu;
McuPageState g_mcu_page;
GnsPageState g_gns_page;

void ResetGnsPageState() { g_gns_page = {}; }
