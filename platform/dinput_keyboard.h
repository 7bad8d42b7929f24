// dinput_keyboard.h: what tests may do to the platform's keyboard beyond the
// Windows calls: make one step of opening the DirectInput keyboard fail, as
// a machine without the device would, and map virtual keys to scan codes.
#pragma once

#include <cstdint>

namespace platform {

// Which step of opening the keyboard fails from now on: 0 none,
// 1 DirectInput8Create, 2 CreateDevice, 3 SetDataFormat, 4 SetCooperativeLevel.
void FailDirectInputStepForTesting(int step);
// The DirectInput scan code of a virtual key (letters, digits, the
// modifiers' left keys, Return, Backspace, cursor and page keys); 0 for others.
uint8_t ScanCodeOfVirtualKey(int virtual_key);

}  // namespace platform
