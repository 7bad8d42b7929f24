// keypad.h: the state each keypad family shares between its gauge twins.
#pragma once

#include <array>

constexpr int kScratchpadSize = 64;

struct KeypadState {
    int CduPage = 0;                    // page shown; 0 before the first start-up
    int PlanState = 0;                  // 2 or 4: a modification is pending (EXEC lit)
    std::array<char, kScratchpadSize> Scratchpad{};
    std::array<char, kScratchpadSize> CduMessage{};
};

struct McuPageState {
    int repaint = 0;                    // 1: repaint the MCU page at the next draw
    int direct_entry = 0;               // 1: keyboard entry mode is on
};

struct GnsPageState {
    int page_state = 0;                 // set at install
};

extern KeypadState g_smiths;            // SMITHS_FMS, SMITHS_FMS_BR
extern KeypadState g_gns;               // GNSXLS, GNSXLS_LM
extern KeypadState g_mcu;               // MCU, MCU_LM
extern McuPageState g_mcu_page;
extern GnsPageState g_gns_page;

// The GNS page state at install.
void ResetGnsPageState();
