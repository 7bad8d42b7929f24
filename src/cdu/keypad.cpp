// keypad.cpp: the keypad families' shared state and the entry line's rules.
#include "cdu/keypad.h"

#include "frame/data_text.h"

#include <cstring>

SmithsCduState g_smiths;
KeypadState g_gns;
KeypadState g_mcu;
McuPageState g_mcu_page;
GnsPageState g_gns_page;

void ResetGnsPageState() {
    // Only these three: a panel reload keeps the rest of the unit as it stood.
    g_gns_page.GnsPage = 1;
    g_gns_page.GnsSubMode = 2;
    g_gns_page.GnsListPage = 1;
}

namespace {
size_t ScratchpadLength() { return ScratchpadText().size(); }

// Appends one character while the buffer has room for it and its terminator.
void Append(char c) {
    size_t n = ScratchpadLength();
    if (n + 1 >= g_smiths.Scratchpad.size()) return;
    g_smiths.Scratchpad[n] = c;
    g_smiths.Scratchpad[n + 1] = 0;
}
}  // namespace

std::string_view ScratchpadText() { return TextOf(g_smiths.Scratchpad); }
std::string_view CduMessageText() { return TextOf(g_smiths.CduMessage); }

void ScratchpadCharacter(char c) {
    if (ScratchpadLength() >= static_cast<size_t>(kScratchpadKeyLimit)) return;
    Append(c);
}

void ScratchpadSpace() {
    if (DeleteArmed()) {
        ClearScratchpad();
        ClearCduMessage();
        return;
    }
    Append(' ');
}

void ScratchpadPlusMinus() {
    size_t n = ScratchpadLength();
    if (n >= static_cast<size_t>(kScratchpadKeyLimit)) return;
    if (n == 0) {
        Append('-');
        return;
    }
    char& last = g_smiths.Scratchpad[n - 1];
    if (last == '-')
        last = '+';
    else if (last == '+')
        last = '-';
    else
        Append('-');
}

void ScratchpadDelete() { SetCduMessage(cdu_message::kDelete); }

void ScratchpadClear() {
    if (!CduMessageText().empty()) {
        ClearCduMessage();
        return;
    }
    size_t n = ScratchpadLength();
    if (n > 0) g_smiths.Scratchpad[n - 1] = 0;
}

void SetScratchpad(std::string_view text) { SetText(g_smiths.Scratchpad, text); }
void ClearScratchpad() { g_smiths.Scratchpad = {}; }
void SetCduMessage(std::string_view text) { SetText(g_smiths.CduMessage, text); }
void ClearCduMessage() { g_smiths.CduMessage = {}; }
bool DeleteArmed() { return CduMessageText() == cdu_message::kDelete; }
