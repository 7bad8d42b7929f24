// keyboard_host.h: a host for the keyboard tests: the PC keyboard as a
// 256-byte key state the tests press keys on, the window's focus, the
// module's thread hook as the host keeps it, and the simulator's main window.
#pragma once

#include "../../platform/host_link.h"

#include <dinput.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace keyboard_test {

struct KeyboardWorld {
    std::array<uint8_t, 256> down{};         // bit 0x80 held
    bool foreground = true;
    intptr_t (*hook)(int, uintptr_t, intptr_t) = nullptr;
    int hooks_set = 0;
};

inline KeyboardWorld& World() {
    static KeyboardWorld world;
    return world;
}

// Installs the host for one test and takes it away after.
class KeyboardHost {
public:
    KeyboardHost() {
        World() = KeyboardWorld{};
        previous_ = platform::Host();
        host_.version = 3;
        host_.find_window = &FindWindow;
        host_.keyboard_state = &State;
        host_.keyboard_hook = &Hook;
        platform::SetHostForTesting(&host_);
    }
    ~KeyboardHost() { platform::SetHostForTesting(previous_); }

    void Down(uint8_t scan) { World().down[scan] = 0x80; }
    void Up(uint8_t scan) { World().down[scan] = 0; }
    void Focus(bool front) { World().foreground = front; }
    // A key stroke as the simulator's message loop gives it to the hook:
    // true when the hook kept it from the simulator.
    bool Stroke(int virtual_key) {
        auto hook = World().hook;
        return hook != nullptr && hook(0, static_cast<uintptr_t>(virtual_key), 1) != 0;
    }
    bool Hooked() const { return World().hook != nullptr; }
    int HooksSet() const { return World().hooks_set; }

private:
    static void* FindWindow(const char* class_name, const char*) {
        static char simulator_window;
        return class_name != nullptr && std::strcmp(class_name, "FS98MAIN") == 0 ? &simulator_window : nullptr;
    }
    static int State(uint8_t state[256]) {
        std::memcpy(state, World().down.data(), 256);
        return World().foreground ? 1 : 0;
    }
    static void Hook(intptr_t (*proc)(int, uintptr_t, intptr_t)) {
        World().hook = proc;
        if (proc != nullptr) ++World().hooks_set;
    }
    OrbHostInterface host_{};
    const OrbHostInterface* previous_ = nullptr;
};

}  // namespace keyboard_test
