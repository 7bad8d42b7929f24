// key_table_support.h: what the keypad families' key tables share: key names
// that compare without regard to case (a blank standing for "_"), and one
// mouse handler a key, made at compile time from a table and its family's
// press function, so that a family's twins run the same handler code.
#pragma once

#include "frame/entry_guard.h"

#include <panel_sdk.h>

#include <array>
#include <iterator>
#include <utility>

// A key name's character as tables spell it: upper case, "_" for a blank.
constexpr char KeyNameChar(char c) {
    if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
    return c == ' ' ? '_' : c;
}

constexpr bool SameKeyName(const char* a, const char* b) {
    for (; *a != 0 && *b != 0; ++a, ++b)
        if (KeyNameChar(*a) != KeyNameChar(*b)) return false;
    return *a == 0 && *b == 0;
}

// The mouse handler of key K of Table: a press of that key, inside the
// module's entry guard.
template <const auto& Table, auto Press, int K>
BOOL_SDK FSAPI KeyTableTrampoline(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { Press(Table[K]); });
}

template <const auto& Table, auto Press, int... K>
constexpr std::array<MOUSE_FUNCTION, sizeof...(K)> MakeKeyHandlers(std::integer_sequence<int, K...>) {
    return {&KeyTableTrampoline<Table, Press, K>...};
}

// Every key's handler, in table order.
template <const auto& Table, auto Press>
constexpr auto KeyHandlersOf() {
    return MakeKeyHandlers<Table, Press>(std::make_integer_sequence<int, static_cast<int>(std::size(Table))>{});
}
