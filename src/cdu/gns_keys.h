// gns_keys.h: the keys of the GNS pair (GNSXLS and its _LM twin): name, box
// on the bezel, and what a press does to the field and the latches.
//
// The keys share CduKeyBox with the Boeing-style table, so the tests and the
// simulator stand-in find them by name the same way. The letter, digit, "*"
// and "#" keys stand where the bezel bitmap draws their caps.
#pragma once

#include "cdu/cdu_keys.h"
#include "cdu/gns_key_table.h"

#include <string_view>

// [SECTION] The field editor
// GnsFieldKey (gns_key_table.h): a fresh field (or one at "******" or
// "------") is emptied first; "*1" takes off the last character; the field
// is padded with blanks to its width.
// BACK/CLR, by page (toggles on some lines, else the last character goes).
void GnsClear();
// Opens the field on `text`, fresh, `width` characters wide.
void GnsOpenField(const char* text, int width = 6);
void GnsCloseField();
// The field less its padding.
std::string_view GnsFieldText();
// All line states to 0.
void GnsClearLineStates();
// A page change made by a page: the line states go, the field closes.
void GnsGoToPage(int page);
