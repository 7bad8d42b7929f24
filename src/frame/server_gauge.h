// server_gauge.h: the SERVER gauge's key event handler and the actions that
// clicks, key events and the [Lvars] bridge share. The registering, the
// pump and the exports are declared with the variables (named_variables.h).
#pragma once

#include <panel_sdk.h>

#include <cstdint>

namespace ServerKey {
constexpr uint32_t kLnavToggle = 0x10337;      // LNAV on or off
constexpr uint32_t kVnavToggle = 0x10338;      // VNAV on or off
constexpr uint32_t kApNavKey = 0x100C1;        // the autopilot's NAV key; toggles LNAV with LnavOnNavLock
constexpr uint32_t kNavLockSent = 0x1011B;     // what LNAV switching sends with LnavOnNavLock
constexpr uint32_t kSetHeadingBug = 0x101FA;   // heading bug to a value
}  // namespace ServerKey

// The handler registered at connect; acts only while SERVER is connected.
void ServerKeyEvent(ID32 event, UINT32 value, PVOID userdata);
// LNAV on or off for a click, a key event or the bridge: the bridge then
// rests for three updates.
void ServerLnavToggle();
// One walk of the profile's [Lvars] rows.
void RunLvarBridge();
