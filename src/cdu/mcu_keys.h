// mcu_keys.h: the keys of the MCU pair: name, box on the bezel, mouse flags
// and what a press does. The same table gives the gauges' mouse areas, the
// tests' presses by name and orbsim's `key MCU NAME`.
#pragma once

#include "frame/gauge_table.h"

#include <cstdint>

enum class McuKeyAction : uint8_t {
    To,
    Fpln,
    Lnav,
    Dirto,
    Hold,
    LegsEdit,
    Legs,
    Prev,
    AltFl,
    Apt,
    Next,
    Keyboard,
    Enter,
    Rocker,       // value: kRockerUp, kRockerDown, kRockerLeft or kRockerRight
    ScreenCentre, // toggles the MCU's pop-up window
};

struct McuKeyBox {
    const char* name;     // "TO", "LEGS_EDIT", "UP", ...
    int x, y, w, h;       // bezel pixels
    McuKeyAction action;
    int value;            // the rocker's direction
    FLAGS32 flags;        // PREV, NEXT and the rocker's up and down repeat while held
};

// The key of that name (case-blind, a blank for "_"), or null.
const McuKeyBox* FindMcuKey(const char* name);
int McuKeyCount();
const McuKeyBox* McuKeyAt(int index);
// What a press does (the mouse handlers call it).
void PressMcuKey(const McuKeyBox& key);
// The gauge's mouse areas, one a key, padded to the gauge table's rows.
void McuMouseAreas(GaugeId id, MouseAreaList& areas);
