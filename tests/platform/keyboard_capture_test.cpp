// keyboard_capture_test.cpp: direct entry from the PC keyboard: what the
// poll types, when the hook keeps a key from the simulator, how entry ends,
// and what a failed device leaves.
#include "../../platform/dinput_keyboard.h"
#include "cdu/keypad.h"
#include "frame/input_capture.h"
#include "frame/sim_state.h"
#include "platform/keyboard_host.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <string>

namespace {
using keyboard_test::KeyboardHost;

struct CaptureRig {
    CaptureRig() { ResetModuleState(); }
    ~CaptureRig() {
        StopDirectEntry();
        platform::FailDirectInputStepForTesting(0);
    }
    // One frame's poll, as the MCU's draw runs it while entry is on.
    void Poll() {
        if (g_mcu_page.direct_entry) PollKeyboard();
    }
    // A key down for a frame, then up for a frame.
    void Tap(uint8_t scan) {
        host.Down(scan);
        Poll();
        host.Up(scan);
        Poll();
    }
    std::string Text() const { return std::string(EntryText()); }
    KeyboardHost host;
};

TEST(KeyboardCapture, StartTakesTheKeyboardAndAsksForARepaint) {
    CaptureRig rig;
    g_tick.slow_refresh = 40;
    StartDirectEntry();
    EXPECT_EQ(g_mcu_page.direct_entry, 1);
    EXPECT_TRUE(rig.host.Hooked());
    EXPECT_NE(g_input_capture.keyboard, nullptr);
    EXPECT_EQ(g_mcu_page.repaint, 1);
    EXPECT_EQ(g_tick.slow_refresh, 999);
    // A second start while entry runs changes nothing: no second hook.
    StartDirectEntry();
    EXPECT_EQ(rig.host.HooksSet(), 1);
    StopDirectEntry();
    EXPECT_EQ(g_mcu_page.direct_entry, 0);
    EXPECT_FALSE(rig.host.Hooked());
    EXPECT_EQ(g_input_capture.keyboard, nullptr);
}

TEST(KeyboardCapture, HeldKeysTypeOnceAndKeysOfOnePollGoInTheFixedOrder) {
    CaptureRig rig;
    StartDirectEntry();
    // K held over five polls types one K.
    rig.host.Down(DIK_K);
    for (int i = 0; i < 5; ++i) rig.Poll();
    rig.host.Up(DIK_K);
    rig.Poll();
    EXPECT_EQ(rig.Text(), "K");
    // Z and A go down together: the table's order, not the pilot's.
    rig.host.Down(DIK_Z);
    rig.host.Down(DIK_A);
    rig.Poll();
    rig.host.Up(DIK_Z);
    rig.host.Up(DIK_A);
    rig.Poll();
    EXPECT_EQ(rig.Text(), "KAZ");
    // Digits of the number row.
    rig.Tap(DIK_7);
    rig.Tap(DIK_0);
    EXPECT_EQ(rig.Text(), "KAZ70");
    // With Shift down letters don't type.
    rig.host.Down(DIK_LSHIFT);
    rig.Tap(DIK_B);
    rig.host.Up(DIK_LSHIFT);
    rig.Poll();
    EXPECT_EQ(rig.Text(), "KAZ70");
    // Six characters fill the field; a seventh is refused.
    rig.Tap(DIK_Q);
    rig.Tap(DIK_W);
    EXPECT_EQ(rig.Text(), "KAZ70Q");
}

TEST(KeyboardCapture, BackspaceTakesACharacterEveryPollWhileHeld) {
    CaptureRig rig;
    StartDirectEntry();
    for (uint8_t key : {DIK_E, DIK_P, DIK_H, DIK_S}) rig.Tap(key);
    ASSERT_EQ(rig.Text(), "EPHS");
    g_mcu_page.repaint = 0;
    rig.host.Down(DIK_BACK);
    rig.Poll();
    EXPECT_EQ(rig.Text(), "EPH");
    EXPECT_EQ(g_mcu_page.repaint, 1);
    rig.Poll();
    rig.Poll();
    EXPECT_EQ(rig.Text(), "E");
    rig.Poll();
    rig.Poll();  // nothing left to take
    EXPECT_EQ(rig.Text(), "");
}

TEST(KeyboardCapture, CursorAndPageKeysRequestOncePerPressAndReturnEndsEntry) {
    CaptureRig rig;
    StartDirectEntry();
    rig.host.Down(DIK_DOWN);
    rig.Poll();
    EXPECT_EQ(g_input_capture.cursor_down, 1);
    g_input_capture.cursor_down = 0;  // the page took it
    rig.Poll();
    EXPECT_EQ(g_input_capture.cursor_down, 0) << "held, it asks once";
    rig.host.Up(DIK_DOWN);
    rig.Tap(DIK_UP);
    rig.Tap(DIK_PRIOR);
    rig.Tap(DIK_NEXT);
    EXPECT_EQ(g_input_capture.cursor_up, 1);
    EXPECT_EQ(g_input_capture.page_up, 1);
    EXPECT_EQ(g_input_capture.page_down, 1);
    rig.Tap(DIK_G);
    rig.host.Down(DIK_NUMPADENTER);
    rig.Poll();
    EXPECT_EQ(g_input_capture.end_of_entry, 1);
    EXPECT_EQ(g_mcu_page.direct_entry, 0);
    EXPECT_FALSE(rig.host.Hooked());
    EXPECT_EQ(g_input_capture.keyboard, nullptr);
    EXPECT_EQ(rig.Text(), "G") << "the text stays for the page to take";
}

TEST(KeyboardCapture, TheHookKeepsSGAndZFromTheSimulatorUnlessAModifierIsDown) {
    CaptureRig rig;
    EXPECT_FALSE(rig.host.Stroke('S')) << "no hook before entry";
    StartDirectEntry();
    EXPECT_TRUE(rig.host.Stroke('S'));
    EXPECT_TRUE(rig.host.Stroke('G'));
    EXPECT_TRUE(rig.host.Stroke('Z'));
    EXPECT_FALSE(rig.host.Stroke('K')) << "other letters still reach the simulator";
    // A key seen down at the last poll keeps every stroke from the simulator.
    rig.host.Down(DIK_S);
    rig.Poll();
    EXPECT_TRUE(rig.host.Stroke('K'));
    rig.host.Up(DIK_S);
    rig.Poll();
    EXPECT_FALSE(rig.host.Stroke('K'));
    // Shift S is the pilot's own command.
    rig.host.Down(DIK_LSHIFT);
    EXPECT_FALSE(rig.host.Stroke('S'));
    rig.host.Up(DIK_LSHIFT);
    rig.host.Down(DIK_RMENU);
    EXPECT_FALSE(rig.host.Stroke('G'));
    rig.host.Up(DIK_RMENU);
    // A negative code goes on down the chain untouched.
    EXPECT_EQ(KeyboardHookProc(-1, 'S', 0), 0);
    StopDirectEntry();
    EXPECT_FALSE(rig.host.Stroke('S'));
}

TEST(KeyboardCapture, ABackgroundWindowLosesInputAndThePollAcquiresItAgain) {
    CaptureRig rig;
    StartDirectEntry();
    rig.Tap(DIK_A);
    rig.host.Focus(false);
    rig.host.Down(DIK_B);
    rig.Poll();  // lost: nothing read
    rig.Poll();  // behind: cannot acquire
    EXPECT_EQ(rig.Text(), "A");
    rig.host.Focus(true);
    rig.Poll();  // acquired again, this poll ends there
    EXPECT_EQ(rig.Text(), "A");
    rig.Poll();  // B, still held, is a new press for the device
    EXPECT_EQ(rig.Text(), "AB");
}

TEST(KeyboardCapture, AFailedDeviceLeavesItsTextTheHookAndTheFlag) {
    const char* texts[] = {"DirectInput failed", "CreateDevice failed", "SetDataFormat failed",
                           "SetCooperativeLevel failed"};
    for (int step = 1; step <= 4; ++step) {
        CaptureRig rig;
        platform::FailDirectInputStepForTesting(step);
        StartDirectEntry();
        EXPECT_EQ(rig.Text(), texts[step - 1]) << step;
        EXPECT_EQ(g_mcu_page.direct_entry, 1) << step;
        EXPECT_TRUE(rig.host.Hooked()) << step;
        EXPECT_EQ(g_input_capture.keyboard, nullptr) << step;
        EXPECT_EQ(g_input_capture.direct_input, nullptr) << step;
        // A poll without a device does nothing.
        rig.Tap(DIK_A);
        EXPECT_EQ(rig.Text(), texts[step - 1]) << step;
        StopDirectEntry();
        EXPECT_FALSE(rig.host.Hooked()) << step;
        EXPECT_EQ(g_mcu_page.direct_entry, 0) << step;
    }
}
}  // namespace
