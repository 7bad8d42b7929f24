// cdu_keys.h: the keys of the Boeing-style CDU pair (SMITHS_FMS and its
// _BR twin): name, box on the bezel, mouse flags and what a press does.
//
// One table serves three readers: the gauges' mouse tables, the tests that
// click keys by name, and the simulator stand-in, which clicks the middle of
// a key's box for `key GAUGE NAME` and `type GAUGE TEXT`. The boxes are those
// the bezel bitmaps draw their caps at.
#pragma once

#include "frame/gauge_table.h"

#include <cstdint>

enum class CduKeyAction : uint8_t {
    Character,    // value: the character appended to the scratchpad
    Space,        // SP
    PlusMinus,    // +/-
    Delete,       // DEL
    Clear,        // CLR
    LineSelect,   // value: the LineSelectLatch number 1..12
    InitRef,
    Rte,
    Clb,
    Crz,
    Des,
    DirIntc,
    Legs,
    DepArr,
    Hold,
    Prog,
    Exec,
    Fix,
    PrevPage,
    NextPage,
    ScreenCentre, // toggles the CDU's pop-up window
    // The GNS pair's keys (Character there edits the field, not the scratchpad)
    GnsNav,
    GnsVnav,
    GnsFpl,
    GnsPerf,
    GnsHold,
    GnsDirect,
    GnsPrev,
    GnsNext,
    GnsEnter,
    GnsClear,     // BACK/CLR
    GnsLine,      // value: GnsLineSelect number 1..10
};

struct CduKeyBox {
    const char* name;     // "LSK1L", "EXEC", "A", "+/-", "INIT_REF", ...
    int x, y, w, h;       // bezel pixels
    CduKeyAction action;
    int value;            // character or line-select number
    FLAGS32 flags;        // mouse flags of its row (CLR repeats while held)
};

constexpr int kPopupWindowSmiths = 4012;   // the panel window the screen centre toggles

// The key of that name on the gauge's keypad, or null (unknown name, or a
// gauge whose keys are not in this table). Names compare without regard to
// case, and a blank stands for "_" ("INIT REF" finds "INIT_REF").
const CduKeyBox* FindCduKey(GaugeId id, const char* name);
// The key that types character `c` (letters in either case, digits, ".",
// "/", "-" as +/-, blank as SP), or null.
const CduKeyBox* FindCduKeyForCharacter(GaugeId id, char c);
// The gauge's keys in table order; count 0 for gauges without a table.
int CduKeyCount(GaugeId id);
const CduKeyBox* CduKeyAt(GaugeId id, int index);
// The mouse handler of the key at `index` of the Boeing-style table.
MOUSE_FUNCTION CduKeyHandler(int index);
// What a click on the key does (the handlers call it).
void PressCduKey(const CduKeyBox& key);
