// input_capture.cpp: direct entry on the MCU from the PC keyboard.
//
// Entry takes the keyboard in two ways at once. A DirectInput keyboard,
// foreground and non-exclusive, is read once a frame; a key counts when its
// bit goes down between two polls, so a held key types once. And a hook on
// the simulator's own thread swallows the letters whose simulator bindings
// would otherwise fire while the pilot types a name (S, G and Z: views, gear,
// autopilot). Nothing is kept between entries: each start opens the device
// anew, each stop releases it.
//
// Index:
//   [SECTION] Keys
//   [SECTION] Start and stop
//   [SECTION] Hook
//   [SECTION] Poll
#include "frame/input_capture.h"

#include "cdu/keypad.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"

#include <cstdio>
#include <cstring>

InputCaptureState g_input_capture;

// [SECTION] Keys
namespace {
constexpr uint8_t kDown = 0x80;
constexpr DWORD kForegroundNonExclusive = DISCL_FOREGROUND | DISCL_NONEXCLUSIVE;

struct TypedKey {
    uint8_t scan;   // DirectInput scan code
    char text;      // what it types
};
// The fixed order in which keys that went down in one poll are appended.
constexpr TypedKey kTypedKeys[] = {
    {DIK_A, 'A'}, {DIK_B, 'B'}, {DIK_C, 'C'}, {DIK_D, 'D'}, {DIK_E, 'E'}, {DIK_F, 'F'}, {DIK_G, 'G'},
    {DIK_H, 'H'}, {DIK_I, 'I'}, {DIK_J, 'J'}, {DIK_K, 'K'}, {DIK_L, 'L'}, {DIK_M, 'M'}, {DIK_N, 'N'},
    {DIK_O, 'O'}, {DIK_P, 'P'}, {DIK_Q, 'Q'}, {DIK_R, 'R'}, {DIK_S, 'S'}, {DIK_T, 'T'}, {DIK_U, 'U'},
    {DIK_V, 'V'}, {DIK_W, 'W'}, {DIK_X, 'X'}, {DIK_Y, 'Y'}, {DIK_Z, 'Z'}, {DIK_0, '0'}, {DIK_1, '1'},
    {DIK_2, '2'}, {DIK_3, '3'}, {DIK_4, '4'}, {DIK_5, '5'}, {DIK_6, '6'}, {DIK_7, '7'}, {DIK_8, '8'},
    {DIK_9, '9'},
};
constexpr uint8_t kModifierKeys[] = {DIK_LSHIFT, DIK_RSHIFT, DIK_LCONTROL, DIK_RCONTROL, DIK_LMENU, DIK_RMENU};

void SetEntryText(const char* text) {
    std::snprintf(g_input_capture.entry_text.data(), g_input_capture.entry_text.size(), "%s", text);
}

void ReleaseDevice() {
    InputCaptureState& c = g_input_capture;
    if (c.keyboard != nullptr) {
        c.keyboard->Unacquire();
        c.keyboard->Release();
        c.keyboard = nullptr;
    }
    if (c.direct_input != nullptr) {
        c.direct_input->Release();
        c.direct_input = nullptr;
    }
}

// Each failure ends the attempt, releases what exists and leaves its text
// on the entry line; the hook stays and entry stays on.
void OpenDevice() {
    InputCaptureState& c = g_input_capture;
    c.simulator_window = FindWindowA("FS98MAIN", nullptr);
    void* created = nullptr;
    if (FAILED(DirectInput8Create(static_cast<HINSTANCE>(c.module_handle), DIRECTINPUT_VERSION, IID_IDirectInput8A,
                                  &created, nullptr)) ||
        created == nullptr) {
        SetEntryText("DirectInput failed");
        ReleaseDevice();
        return;
    }
    c.direct_input = static_cast<LPDIRECTINPUT8A>(created);
    if (FAILED(c.direct_input->CreateDevice(GUID_SysKeyboard, &c.keyboard, nullptr)) || c.keyboard == nullptr) {
        c.keyboard = nullptr;
        SetEntryText("CreateDevice failed");
        ReleaseDevice();
        return;
    }
    if (FAILED(c.keyboard->SetDataFormat(&c_dfDIKeyboard))) {
        SetEntryText("SetDataFormat failed");
        ReleaseDevice();
        return;
    }
    if (FAILED(c.keyboard->SetCooperativeLevel(c.simulator_window, kForegroundNonExclusive))) {
        SetEntryText("SetCooperativeLevel failed");
        ReleaseDevice();
        return;
    }
    c.keyboard->Acquire();  // a window in the background is acquired by a later poll
}

bool AnyModifierDown(const std::array<uint8_t, kKeyboardStateSize>& state) {
    for (uint8_t key : kModifierKeys)
        if (state[key] & kDown) return true;
    return false;
}
}  // namespace

std::string_view EntryText() { return g_input_capture.entry_text.data(); }

// [SECTION] Start and stop
void StartDirectEntry() {
    InputCaptureState& c = g_input_capture;
    if (g_mcu_page.direct_entry) return;
    // 1. The flag, a fresh entry and no requests left from before.
    g_mcu_page.direct_entry = 1;
    c.entry_text = {};
    c.key_state = {};
    c.cursor_up = c.cursor_down = c.page_up = c.page_down = 0;
    c.end_of_entry = 0;
    // 2. The hook on the simulator's own thread only.
    char module_path[kRootFolderSize + 32];  // the folder and "\\GAUGES\\orb1.gau"
    std::snprintf(module_path, sizeof module_path, "%s\\GAUGES\\orb1.gau", g_module.RootFolder.data());
    c.module_handle = GetModuleHandleA(module_path);
    c.hook = SetWindowsHookExA(WH_KEYBOARD, &KeyboardHookProc, static_cast<HINSTANCE>(c.module_handle),
                               GetCurrentThreadId());
    c.hook_set = c.hook != nullptr ? 1 : 0;
    // 3. The device.
    OpenDevice();
    // 4. The page shows the open field at once.
    g_mcu_page.repaint = 1;
    g_tick.slow_refresh = 999;
}

void StopDirectEntry() {
    InputCaptureState& c = g_input_capture;
    g_mcu_page.direct_entry = 0;
    if (c.hook_set) UnhookWindowsHookEx(c.hook);
    c.hook = nullptr;
    c.hook_set = 0;
    ReleaseDevice();
}

// [SECTION] Hook
LRESULT CALLBACK KeyboardHookProc(int code, WPARAM wparam, LPARAM lparam) {
    const InputCaptureState& c = g_input_capture;
    if (code < 0) return CallNextHookEx(c.hook, code, wparam, lparam);
    // A letter with a modifier is a simulator command the pilot meant.
    if (GetKeyState(VK_SHIFT) < 0 || GetKeyState(VK_CONTROL) < 0 || GetKeyState(VK_MENU) < 0)
        return CallNextHookEx(c.hook, code, wparam, lparam);
    // The stroke's own key, or the key as the last poll saw it: the message
    // may come before the frame whose poll sees the key go down.
    bool letter = wparam == 'S' || wparam == 'G' || wparam == 'Z';
    bool held = c.key_state[DIK_S] != 0 || c.key_state[DIK_G] != 0 || c.key_state[DIK_Z] != 0;
    if (letter || held) return 1;
    return CallNextHookEx(c.hook, code, wparam, lparam);
}

// [SECTION] Poll
void PollKeyboard() {
    InputCaptureState& c = g_input_capture;
    if (c.keyboard == nullptr) return;  // a failed device leaves nothing to read

    // 1. Read; a lost device is acquired again, and this poll ends.
    std::array<uint8_t, kKeyboardStateSize> now{};
    if (FAILED(c.keyboard->GetDeviceState(static_cast<DWORD>(now.size()), now.data()))) {
        HRESULT result = c.keyboard->Acquire();
        for (int attempt = 1; result == DIERR_INPUTLOST && attempt < kAcquireAttempts; ++attempt)
            result = c.keyboard->Acquire();
        return;
    }
    auto pressed = [&](uint8_t key) { return (now[key] & kDown) != 0 && (c.key_state[key] & kDown) == 0; };
    size_t length = std::strlen(c.entry_text.data());

    // 2. The page copies the entry text into its field (it reads EntryText).
    // 3. New presses type, in the table's order, unless a modifier is down.
    if (!AnyModifierDown(now)) {
        for (const TypedKey& key : kTypedKeys) {
            if (!pressed(key.scan) || length >= static_cast<size_t>(kEntryTypedLimit)) continue;
            c.entry_text[length++] = key.text;
            c.entry_text[length] = 0;
            g_mcu_page.repaint = 1;
        }
    }
    // 4. Backspace takes a character at every poll while it is held.
    if ((now[DIK_BACK] & kDown) != 0 && length > 0) {
        c.entry_text[--length] = 0;
        g_mcu_page.repaint = 1;
    }
    // 5. Cursor and page keys move the page's selection.
    if (pressed(DIK_UP)) c.cursor_up = 1;
    if (pressed(DIK_DOWN)) c.cursor_down = 1;
    if (pressed(DIK_PRIOR)) c.page_up = 1;
    if (pressed(DIK_NEXT)) c.page_down = 1;
    // 6. Return or the keypad's Enter ends the entry.
    bool ended = pressed(DIK_RETURN) || pressed(DIK_NUMPADENTER);
    // 7. This poll is the next one's last state.
    c.key_state = now;
    if (ended) {
        c.end_of_entry = 1;
        g_mcu_page.repaint = 1;
        StopDirectEntry();
    }
}
