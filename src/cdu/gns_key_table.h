// gns_key_table.h: the GNS pair's key table as the shared key lookups and
// the mouse tables reach it. Apart from gns_keys.h so that the Boeing-style
// key file can hand GNS gauges on without an include circle.
#pragma once

#include "frame/gauge_table.h"

struct CduKeyBox;

constexpr int kPopupWindowGns = 4004;      // the panel window the screen centre toggles

bool IsGnsGauge(GaugeId id);
// The GNS gauge's keys in table order (GNSXLS_LM has no screen centre).
int GnsKeyCount(GaugeId id);
const CduKeyBox* GnsKeyAt(GaugeId id, int index);
// The key of that name (case-blind, a blank for "_"), or null.
const CduKeyBox* FindGnsKey(GaugeId id, const char* name);
// The key that types `c` (letters in either case, digits, "*", "#"), or null.
const CduKeyBox* FindGnsKeyForCharacter(GaugeId id, char c);
// The mouse handler of the key at `index` of GNSXLS's table.
MOUSE_FUNCTION GnsKeyHandler(int index);
// What a click on the key does.
void PressGnsKey(const CduKeyBox& key);
// A character into the open GNS field (the Boeing-style keypad's G to Z
// reach it too); nothing while no field is open.
void GnsFieldKey(const char* key);

