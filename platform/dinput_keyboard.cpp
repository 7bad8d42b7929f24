// dinput_keyboard.cpp: the DirectInput 8 keyboard and the thread keyboard
// hook on the host's keyboard, for builds off Windows.
//
// The device behaves as a foreground, non-exclusive Windows keyboard does:
// it reads only once acquired, loses its input when the simulator's window
// goes to the background, and cannot be acquired again until the window is
// back in front. The hook is handed to the host, which passes every key
// stroke meant for the simulator through it. Without a host no key is ever
// down and the window is always in front.
//
// Index:
//   [SECTION] Host access and scan codes
//   [SECTION] The keyboard device
//   [SECTION] DirectInput8Create
//   [SECTION] Thread hook and key state
#include "dinput_keyboard.h"

#include "host_link.h"

#include <dinput.h>
#include <windows.h>

#include <array>
#include <cstring>

// [SECTION] Host access and scan codes
namespace {
constexpr DWORD kKeyboardStateBytes = 256;    // one byte a scan code
constexpr DWORD kDirectInputVersion = 0x0800;
constexpr uint8_t kKeyDown = 0x80;

struct KeyboardStandIn {
    int failing_step = 0;                     // FailDirectInputStepForTesting
    HOOKPROC hook = nullptr;                  // the one thread hook set, or null
};
KeyboardStandIn g_keyboard;
char g_hook_handle;                           // what SetWindowsHookExA hands out

// The host's key state; false while the simulator's window is in the back.
bool ReadHostKeys(std::array<uint8_t, kKeyboardStateBytes>& state) {
    state.fill(0);
    const OrbHostInterface* host = platform::Host();
    if (host == nullptr || host->version < 3 || host->keyboard_state == nullptr) return true;
    return host->keyboard_state(state.data()) != 0;
}

bool Failing(int step) { return g_keyboard.failing_step == step; }
}  // namespace

namespace platform {
void FailDirectInputStepForTesting(int step) { g_keyboard.failing_step = step; }

uint8_t ScanCodeOfVirtualKey(int vk) {
    static constexpr uint8_t kLetters[26] = {DIK_A, DIK_B, DIK_C, DIK_D, DIK_E, DIK_F, DIK_G, DIK_H, DIK_I,
                                             DIK_J, DIK_K, DIK_L, DIK_M, DIK_N, DIK_O, DIK_P, DIK_Q, DIK_R,
                                             DIK_S, DIK_T, DIK_U, DIK_V, DIK_W, DIK_X, DIK_Y, DIK_Z};
    if (vk >= 'A' && vk <= 'Z') return kLetters[vk - 'A'];
    if (vk >= '1' && vk <= '9') return static_cast<uint8_t>(DIK_1 + (vk - '1'));
    if (vk == '0') return DIK_0;
    switch (vk) {
    case VK_SHIFT: return DIK_LSHIFT;
    case VK_CONTROL: return DIK_LCONTROL;
    case VK_MENU: return DIK_LMENU;
    case VK_RETURN: return DIK_RETURN;
    case VK_BACK: return DIK_BACK;
    case 0x26: return DIK_UP;      // VK_UP
    case 0x28: return DIK_DOWN;    // VK_DOWN
    case 0x21: return DIK_PRIOR;   // VK_PRIOR
    case 0x22: return DIK_NEXT;    // VK_NEXT
    case 0x20: return DIK_SPACE;   // VK_SPACE
    default: return 0;
    }
}
}  // namespace platform

// [SECTION] The keyboard device
namespace {
class KeyboardDevice final : public IDirectInputDevice8A {
public:
    ULONG Release() override {
        delete this;
        return 0;
    }
    HRESULT SetDataFormat(LPCDIDATAFORMAT format) override {
        if (Failing(3) || format == nullptr || format->dwDataSize != kKeyboardStateBytes) return DIERR_INVALIDPARAM;
        format_set_ = true;
        return DI_OK;
    }
    HRESULT SetCooperativeLevel(HWND window, DWORD flags) override {
        // A foreground level needs the window it follows.
        if (Failing(4) || window == nullptr || (flags & (DISCL_FOREGROUND | DISCL_BACKGROUND)) == 0)
            return DIERR_INVALIDPARAM;
        return DI_OK;
    }
    HRESULT Acquire() override {
        if (!format_set_) return DIERR_INVALIDPARAM;
        std::array<uint8_t, kKeyboardStateBytes> state{};
        if (!ReadHostKeys(state)) return DIERR_OTHERAPPHASPRIO;
        acquired_ = true;
        return DI_OK;
    }
    HRESULT Unacquire() override {
        acquired_ = false;
        return DI_OK;
    }
    HRESULT GetDeviceState(DWORD size, LPVOID data) override {
        if (data == nullptr || size != kKeyboardStateBytes) return DIERR_INVALIDPARAM;
        if (!acquired_) return DIERR_NOTACQUIRED;
        std::array<uint8_t, kKeyboardStateBytes> state{};
        if (!ReadHostKeys(state)) {
            acquired_ = false;
            return DIERR_INPUTLOST;
        }
        std::memcpy(data, state.data(), kKeyboardStateBytes);
        return DI_OK;
    }

private:
    ~KeyboardDevice() = default;
    bool format_set_ = false;   // SetDataFormat succeeded
    bool acquired_ = false;     // reads are allowed
};

class DirectInput final : public IDirectInput8A {
public:
    ULONG Release() override {
        delete this;
        return 0;
    }
    HRESULT CreateDevice(REFGUID device, LPDIRECTINPUTDEVICE8A* out, LPUNKNOWN) override {
        if (out == nullptr) return DIERR_INVALIDPARAM;
        *out = nullptr;
        if (Failing(2) || std::memcmp(&device, &GUID_SysKeyboard, sizeof(GUID)) != 0) return DIERR_INVALIDPARAM;
        *out = new KeyboardDevice();
        return DI_OK;
    }

private:
    ~DirectInput() = default;
};
}  // namespace

// [SECTION] DirectInput8Create
extern "C" {
const GUID GUID_SysKeyboard = {0x6F1D2B61, 0xD5A0, 0x11CF, {0xBF, 0xC7, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};
const IID IID_IDirectInput8A = {0xBF798030, 0x483A, 0x4DA2, {0xAA, 0x99, 0x5D, 0x64, 0xED, 0x36, 0x97, 0x00}};
const DIDATAFORMAT c_dfDIKeyboard = {sizeof(DIDATAFORMAT), 16, 2, kKeyboardStateBytes, 256, nullptr};

HRESULT WINAPI DirectInput8Create(HINSTANCE instance, DWORD version, REFIID interface_id, LPVOID* out, LPUNKNOWN) {
    if (out == nullptr) return DIERR_INVALIDPARAM;
    *out = nullptr;
    if (Failing(1) || instance == nullptr || version != kDirectInputVersion ||
        std::memcmp(&interface_id, &IID_IDirectInput8A, sizeof(IID)) != 0)
        return DIERR_INVALIDPARAM;
    *out = static_cast<IDirectInput8A*>(new DirectInput());
    return DI_OK;
}

// [SECTION] Thread hook and key state
HHOOK SetWindowsHookExA(int idHook, HOOKPROC lpfn, HINSTANCE, DWORD) {
    // The module sets one keyboard hook on its own thread; nothing else is offered.
    if (idHook != WH_KEYBOARD || lpfn == nullptr || g_keyboard.hook != nullptr) return nullptr;
    g_keyboard.hook = lpfn;
    const OrbHostInterface* host = platform::Host();
    if (host != nullptr && host->version >= 3 && host->keyboard_hook != nullptr) host->keyboard_hook(lpfn);
    return &g_hook_handle;
}

BOOL UnhookWindowsHookEx(HHOOK hhk) {
    if (hhk != &g_hook_handle || g_keyboard.hook == nullptr) return FALSE;
    g_keyboard.hook = nullptr;
    const OrbHostInterface* host = platform::Host();
    if (host != nullptr && host->version >= 3 && host->keyboard_hook != nullptr) host->keyboard_hook(nullptr);
    return TRUE;
}

// No hook stands behind the module's: the stroke goes on to the simulator.
LRESULT CallNextHookEx(HHOOK, int, WPARAM, LPARAM) { return 0; }

DWORD GetCurrentThreadId(void) { return 1; }  // the simulator's one panel thread

SHORT GetKeyState(int nVirtKey) {
    std::array<uint8_t, kKeyboardStateBytes> state{};
    ReadHostKeys(state);
    uint8_t code = platform::ScanCodeOfVirtualKey(nVirtKey);
    bool down = code != 0 && (state[code] & kKeyDown) != 0;
    // The modifiers count from either side of the keyboard.
    if (nVirtKey == VK_SHIFT) down = down || (state[DIK_RSHIFT] & kKeyDown) != 0;
    if (nVirtKey == VK_CONTROL) down = down || (state[DIK_RCONTROL] & kKeyDown) != 0;
    if (nVirtKey == VK_MENU) down = down || (state[DIK_RMENU] & kKeyDown) != 0;
    return down ? static_cast<SHORT>(0x8000) : static_cast<SHORT>(0);
}
}
