// keyboard.cpp: the PC keyboard of orbsim (see keyboard.h).
//
// Windows hands a thread hook each key message with the virtual key in
// wParam and, in lParam, the repeat count (bits 0-15), the scan code (16-23),
// the previous key state (30) and the transition state (31, 1 on release);
// the stand-in does the same, so that the module's hook sees what it would
// see in the simulator.
#include "keyboard.h"

#include "host_state.h"

#include <cctype>

namespace orbsim {
namespace {
constexpr uint8_t kDown = 0x80;

struct NamedKey {
    const char* name;
    uint8_t scan;      // DirectInput scan code
    int virtual_key;   // Windows virtual key
};
constexpr NamedKey kNamedKeys[] = {
    {"ENTER", 0x1C, 0x0D},  {"RETURN", 0x1C, 0x0D}, {"NUMPADENTER", 0x9C, 0x0D}, {"BACKSPACE", 0x0E, 0x08},
    {"UP", 0xC8, 0x26},     {"DOWN", 0xD0, 0x28},    {"PGUP", 0xC9, 0x21},        {"PGDN", 0xD1, 0x22},
    {"SHIFT", 0x2A, 0x10},  {"CTRL", 0x1D, 0x11},    {"ALT", 0x38, 0x12},         {"SPACE", 0x39, 0x20},
    {"ESC", 0x01, 0x1B},
};
// Scan codes of A..Z and of 1..9, 0 on the number row.
constexpr uint8_t kLetterScan[26] = {0x1E, 0x30, 0x2E, 0x20, 0x12, 0x21, 0x22, 0x23, 0x17, 0x24, 0x25, 0x26, 0x32,
                                     0x31, 0x18, 0x19, 0x10, 0x13, 0x1F, 0x14, 0x16, 0x2F, 0x11, 0x2D, 0x15, 0x2C};

intptr_t StrokeParam(uint8_t scan, bool was_down, bool release) {
    uintptr_t bits = 1u | (static_cast<uintptr_t>(scan) << 16);
    if (was_down) bits |= uintptr_t{1} << 30;
    if (release) bits |= uintptr_t{1} << 31;
    return static_cast<intptr_t>(bits);
}
}  // namespace

bool KeyByName(const std::string& name, uint8_t& scan, int& virtual_key, std::string& canonical) {
    std::string upper;
    for (char c : name) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (upper.size() == 1) {
        char c = upper[0];
        if (c >= 'A' && c <= 'Z') {
            scan = kLetterScan[c - 'A'];
            virtual_key = c;
            canonical = upper;
            return true;
        }
        if (c >= '0' && c <= '9') {
            scan = c == '0' ? 0x0B : static_cast<uint8_t>(0x02 + (c - '1'));
            virtual_key = c;
            canonical = upper;
            return true;
        }
        if (c == ' ') upper = "SPACE";
    }
    for (const NamedKey& key : kNamedKeys)
        if (upper == key.name) {
            scan = key.scan;
            virtual_key = key.virtual_key;
            canonical = upper;
            return true;
        }
    return false;
}

void KeyDown(HostState& host, uint8_t scan, int virtual_key, const std::string& name) {
    PcKeyboard& k = host.keyboard;
    bool was_down = (k.down[scan] & kDown) != 0;
    k.down[scan] |= kDown;
    ++k.strokes;
    // Behind another window the stroke is that window's.
    if (!k.foreground) return;
    // The hook sees the stroke first; what it keeps never reaches the bindings.
    if (k.hook != nullptr &&
        k.hook(0, static_cast<uintptr_t>(virtual_key), StrokeParam(scan, was_down, false)) != 0) {
        ++k.swallowed;
        return;
    }
    if (!k.reached.empty()) k.reached += ' ';
    k.reached += name;
}

void KeyUp(HostState& host, uint8_t scan, int virtual_key) {
    PcKeyboard& k = host.keyboard;
    bool was_down = (k.down[scan] & kDown) != 0;
    k.down[scan] = 0;
    if (k.foreground && k.hook != nullptr) k.hook(0, static_cast<uintptr_t>(virtual_key), StrokeParam(scan, was_down, true));
}

bool SplitKeyboardText(const std::string& text, std::string& error, std::array<std::string, 128>& names, int& count) {
    count = 0;
    size_t i = 0;
    while (i < text.size()) {
        std::string name;
        if (text[i] == '{') {
            size_t end = text.find('}', i);
            if (end == std::string::npos) {
                error = "'{' without '}' in '" + text + "'";
                return false;
            }
            name = text.substr(i + 1, end - i - 1);
            i = end + 1;
        } else {
            name = std::string(1, text[i]);
            ++i;
        }
        uint8_t scan = 0;
        int vk = 0;
        std::string canonical;
        if (!KeyByName(name, scan, vk, canonical)) {
            error = "no key '" + name + "' (letters, digits, {ENTER} {NUMPADENTER} {BACKSPACE} {UP} {DOWN} {PGUP} "
                    "{PGDN} {SHIFT} {CTRL} {ALT} {SPACE} {ESC})";
            return false;
        }
        if (count >= static_cast<int>(names.size())) {
            error = "more than 128 keys on one line";
            return false;
        }
        names[static_cast<size_t>(count++)] = canonical;
    }
    return true;
}

}  // namespace orbsim
