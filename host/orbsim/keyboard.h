// keyboard.h: the PC keyboard orbsim plays: keys held down, by DirectInput
// scan code, which the module's keyboard device reads; the thread hook the
// module may set, through which each key stroke meant for the simulator
// passes first; and what reached the simulator's own key bindings.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace orbsim {

struct HostState;

using KeyboardHookProc = intptr_t (*)(int code, uintptr_t wparam, intptr_t lparam);

struct PcKeyboard {
    std::array<uint8_t, 256> down{};      // bit 0x80: the key with that scan code is held
    bool foreground = true;               // the simulator's window has the keyboard
    KeyboardHookProc hook = nullptr;      // the module's thread hook, or none
    std::string reached;                  // keys that reached the simulator's bindings, blank-separated
    uint64_t strokes = 0;                 // key-down strokes, repeats included
    uint64_t swallowed = 0;               // strokes the hook kept from the simulator
    uint64_t hooks_set = 0;               // times the module set its hook
};

// A key by name: a letter, a digit, or ENTER, NUMPADENTER, BACKSPACE, UP,
// DOWN, PGUP, PGDN, SHIFT, CTRL, ALT, SPACE, ESC (case-blind). False for others.
bool KeyByName(const std::string& name, uint8_t& scan, int& virtual_key, std::string& canonical);
// A key goes down (again, if held: an auto-repeat stroke) or up. Each stroke
// passes the hook, if one is set, before the simulator's bindings see it.
void KeyDown(HostState& host, uint8_t scan, int virtual_key, const std::string& name);
void KeyUp(HostState& host, uint8_t scan, int virtual_key);
// Splits TEXT into keys: characters, and {NAME} for named keys. False with
// the offending part in `error`.
bool SplitKeyboardText(const std::string& text, std::string& error,
                       std::array<std::string, 128>& names, int& count);

}  // namespace orbsim
