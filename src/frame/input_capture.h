// input_capture.h: keyboard entry on the MCU. While direct entry runs the
// module takes the PC keyboard from the simulator: a thread hook keeps the
// simulator's own bindings of three letters from firing, and a DirectInput
// keyboard, read once a frame, types into the MCU's entry field.
//
// The MCU pages start and stop entry and read what the poll leaves here:
// the text typed so far and the requests of the cursor and page keys.
#pragma once

#ifndef DIRECTINPUT_VERSION
#define DIRECTINPUT_VERSION 0x0800
#endif
#include <windows.h>
#include <dinput.h>

#include <array>
#include <cstdint>
#include <string_view>

constexpr size_t kKeyboardStateSize = 256;   // bytes of a DirectInput keyboard state, one a scan code
constexpr size_t kEntryTextCapacity = 32;    // room for the longest failure text
constexpr int kEntryTypedLimit = 6;          // characters typing puts in: the MCU field's length
constexpr int kAcquireAttempts = 8;          // re-acquires a poll tries while input stays lost

struct InputCaptureState {
    LPDIRECTINPUT8A direct_input = nullptr;            // the DirectInput object while entry runs
    LPDIRECTINPUTDEVICE8A keyboard = nullptr;          // keyboard device, null when not in use
    HHOOK hook = nullptr;                              // the thread hook's handle
    int hook_set = 0;                                  // 1 while the hook is in place
    std::array<uint8_t, kKeyboardStateSize> key_state{};  // last poll, bit 0x80 down: edges are the change
    std::array<char, kEntryTextCapacity> entry_text{};    // text typed so far, or a failure text
    HWND simulator_window = nullptr;                   // class "FS98MAIN"
    HMODULE module_handle = nullptr;                   // the module's own, for hook and device
    // Requests the MCU page reads and clears: 1 on a new press.
    int cursor_up = 0;
    int cursor_down = 0;
    int page_up = 0;
    int page_down = 0;
    int end_of_entry = 0;                              // 1: Return ended the entry
};

extern InputCaptureState g_input_capture;

// On the MCU's keyboard key: takes the keyboard (hook and device), clears
// the entry text, asks for a repaint. Nothing while entry is already on.
void StartDirectEntry();
// Gives the keyboard back: flag off, hook removed, device released.
void StopDirectEntry();
// Once a frame from MCU and MCU_LM while entry is on: reads the device and
// turns its new key presses into text and requests.
void PollKeyboard();
// The text typed so far.
std::string_view EntryText();
// The hook procedure: swallows S, G and Z unless a modifier is down.
LRESULT CALLBACK KeyboardHookProc(int code, WPARAM wparam, LPARAM lparam);
