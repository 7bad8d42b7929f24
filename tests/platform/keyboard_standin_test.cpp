// keyboard_standin_test.cpp: the platform's DirectInput keyboard and thread
// hook behave as the Windows ones do for a foreground, non-exclusive reader.
#include "../../platform/dinput_keyboard.h"
#include "platform/keyboard_host.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {
using keyboard_test::KeyboardHost;

LPDIRECTINPUTDEVICE8A OpenKeyboard(LPDIRECTINPUT8A& di) {
    void* out = nullptr;
    HMODULE module = GetModuleHandleA("C:\\FS\\GAUGES\\orb1.gau");
    if (FAILED(DirectInput8Create(static_cast<HINSTANCE>(module), 0x0800, IID_IDirectInput8A, &out, nullptr)))
        return nullptr;
    di = static_cast<LPDIRECTINPUT8A>(out);
    LPDIRECTINPUTDEVICE8A device = nullptr;
    if (FAILED(di->CreateDevice(GUID_SysKeyboard, &device, nullptr))) return nullptr;
    return device;
}

TEST(KeyboardStandIn, TheDeviceReadsTheHostsKeysOnlyWhenAcquiredAndInFront) {
    KeyboardHost host;
    LPDIRECTINPUT8A di = nullptr;
    LPDIRECTINPUTDEVICE8A device = OpenKeyboard(di);
    ASSERT_NE(device, nullptr);
    uint8_t state[256] = {};
    // Before a data format nothing can be acquired; before Acquire nothing read.
    EXPECT_EQ(device->Acquire(), DIERR_INVALIDPARAM);
    ASSERT_EQ(device->SetDataFormat(&c_dfDIKeyboard), DI_OK);
    EXPECT_EQ(device->SetCooperativeLevel(nullptr, DISCL_FOREGROUND | DISCL_NONEXCLUSIVE), DIERR_INVALIDPARAM)
        << "a foreground level follows a window";
    ASSERT_EQ(device->SetCooperativeLevel(FindWindowA("FS98MAIN", nullptr), DISCL_FOREGROUND | DISCL_NONEXCLUSIVE),
              DI_OK);
    EXPECT_EQ(device->GetDeviceState(256, state), DIERR_NOTACQUIRED);
    ASSERT_EQ(device->Acquire(), DI_OK);
    host.Down(DIK_K);
    ASSERT_EQ(device->GetDeviceState(256, state), DI_OK);
    EXPECT_EQ(state[DIK_K], 0x80);
    EXPECT_EQ(state[DIK_A], 0);
    EXPECT_EQ(device->GetDeviceState(128, state), DIERR_INVALIDPARAM) << "the keyboard's state is 256 bytes";

    // The window goes behind another: input lost, and no acquiring until it is back.
    host.Focus(false);
    EXPECT_EQ(device->GetDeviceState(256, state), DIERR_INPUTLOST);
    EXPECT_EQ(device->GetDeviceState(256, state), DIERR_NOTACQUIRED);
    EXPECT_EQ(device->Acquire(), DIERR_OTHERAPPHASPRIO);
    host.Focus(true);
    EXPECT_EQ(device->Acquire(), DI_OK);
    host.Up(DIK_K);
    ASSERT_EQ(device->GetDeviceState(256, state), DI_OK);
    EXPECT_EQ(state[DIK_K], 0);
    device->Release();
    di->Release();
}

TEST(KeyboardStandIn, CreationRefusesWhatWindowsRefuses) {
    KeyboardHost host;
    void* out = reinterpret_cast<void*>(1);
    HMODULE module = GetModuleHandleA("C:\\FS\\GAUGES\\orb1.gau");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(DirectInput8Create(nullptr, 0x0800, IID_IDirectInput8A, &out, nullptr), DIERR_INVALIDPARAM);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(DirectInput8Create(static_cast<HINSTANCE>(module), 0x0700, IID_IDirectInput8A, &out, nullptr),
              DIERR_INVALIDPARAM) << "version 8 only";
    // Each step can be made to fail, as on a machine without the device.
    platform::FailDirectInputStepForTesting(1);
    EXPECT_EQ(DirectInput8Create(static_cast<HINSTANCE>(module), 0x0800, IID_IDirectInput8A, &out, nullptr),
              DIERR_INVALIDPARAM);
    platform::FailDirectInputStepForTesting(2);
    ASSERT_EQ(DirectInput8Create(static_cast<HINSTANCE>(module), 0x0800, IID_IDirectInput8A, &out, nullptr), DI_OK);
    auto* di = static_cast<LPDIRECTINPUT8A>(out);
    LPDIRECTINPUTDEVICE8A device = reinterpret_cast<LPDIRECTINPUTDEVICE8A>(1);
    EXPECT_EQ(di->CreateDevice(GUID_SysKeyboard, &device, nullptr), DIERR_INVALIDPARAM);
    EXPECT_EQ(device, nullptr);
    platform::FailDirectInputStepForTesting(0);
    di->Release();
}

TEST(KeyboardStandIn, OneThreadHookReachesTheHostAndLeavesIt) {
    KeyboardHost host;
    auto proc = [](int, WPARAM, LPARAM) -> LRESULT { return 1; };
    EXPECT_EQ(SetWindowsHookExA(13, proc, nullptr, GetCurrentThreadId()), nullptr) << "only the keyboard hook type 2";
    HHOOK hook = SetWindowsHookExA(WH_KEYBOARD, proc, nullptr, GetCurrentThreadId());
    ASSERT_NE(hook, nullptr);
    EXPECT_TRUE(host.Hooked());
    EXPECT_TRUE(host.Stroke('S'));
    EXPECT_EQ(SetWindowsHookExA(WH_KEYBOARD, proc, nullptr, GetCurrentThreadId()), nullptr) << "one hook at a time";
    EXPECT_EQ(host.HooksSet(), 1);
    EXPECT_TRUE(UnhookWindowsHookEx(hook));
    EXPECT_FALSE(host.Hooked());
    EXPECT_FALSE(UnhookWindowsHookEx(hook)) << "a hook goes once";
    EXPECT_FALSE(host.Stroke('S'));
}

TEST(KeyboardStandIn, KeyStateSeesEitherModifier) {
    KeyboardHost host;
    EXPECT_GE(GetKeyState(VK_SHIFT), 0);
    host.Down(DIK_RSHIFT);
    EXPECT_LT(GetKeyState(VK_SHIFT), 0);
    EXPECT_GE(GetKeyState(VK_CONTROL), 0);
    host.Down(DIK_RCONTROL);
    EXPECT_LT(GetKeyState(VK_CONTROL), 0);
    host.Down(DIK_LMENU);
    EXPECT_LT(GetKeyState(VK_MENU), 0);
    host.Down(DIK_G);
    EXPECT_LT(GetKeyState('G'), 0);
    EXPECT_GE(GetKeyState('H'), 0);
    EXPECT_EQ(platform::ScanCodeOfVirtualKey('Z'), DIK_Z);
    EXPECT_EQ(platform::ScanCodeOfVirtualKey('0'), DIK_0);
    EXPECT_EQ(platform::ScanCodeOfVirtualKey('1'), DIK_1);
}
}  // namespace
