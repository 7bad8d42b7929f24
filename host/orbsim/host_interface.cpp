// host_interface.cpp: what the platform layer's window, SimConnect and
// drawing calls end in.
#include "host_interface.h"

#include "host_state.h"

#include <sys/stat.h>

#include <cstring>

namespace orbsim {

namespace {
constexpr long kSOk = 0;
constexpr long kEFail = static_cast<long>(0x80004005u);
constexpr size_t kMaxDrawnTextBytes = 1024;   // one string of a display line is far shorter

// The windows orbsim has: the FSUIPC server's and the simulator's main window.
char g_fsuipc_window;
char g_simulator_window;
// What SimConnect handles point at.
char g_simconnect_handle;

void* FindWindow(const char* class_name, const char*) {
    if (class_name != nullptr && std::strcmp(class_name, "FS98MAIN") == 0) return &g_simulator_window;
    if (class_name == nullptr || std::strcmp(class_name, "UIPCMAIN") != 0) return nullptr;
    // Counted with the server off too: a job that looked and found nobody
    // is told apart from no job at all.
    ++g_host.fsuipc.lookups;
    return g_host.fsuipc.enabled ? &g_fsuipc_window : nullptr;
}

intptr_t SendMessage(void* window, unsigned message, uintptr_t wparam, intptr_t lparam) {
    if (window != &g_fsuipc_window || message != kFsuipcMessageId || !g_host.fsuipc.enabled) return 0;
    return HandleFsuipcMessage(g_host.fsuipc, g_host.aircraft, wparam, lparam);
}

long SimConnectOpen(void** handle, const char* name) {
    SimConnectState& sc = g_host.simconnect;
    if (handle == nullptr) return kEFail;
    *handle = nullptr;
    if (!sc.enabled) return kEFail;
    ++sc.opens;
    sc.open = true;
    sc.client_name = name ? std::string(name, strnlen(name, 256)) : std::string();
    *handle = &g_simconnect_handle;
    return kSOk;
}

long SimConnectClose(void* handle) {
    SimConnectState& sc = g_host.simconnect;
    if (handle != &g_simconnect_handle || !sc.open) return kEFail;
    ++sc.closes;
    sc.open = false;
    return kSOk;
}

long SimConnectFlightPlanLoad(void* handle, const char* path) {
    SimConnectState& sc = g_host.simconnect;
    if (handle != &g_simconnect_handle || !sc.open || path == nullptr) return kEFail;
    std::string p(path, strnlen(path, 1024));
    // The module names the file in its own form; the platform layer resolves it.
    std::string local = p;
    for (char& c : local)
        if (c == '\\') c = '/';
    struct stat st{};
    sc.plans.push_back(p);
    sc.plan_existed.push_back(stat(local.c_str(), &st) == 0);
    if (static_cast<int>(sc.plan_texts.size()) >= kMaxHandedPlans) sc.plan_texts.erase(sc.plan_texts.begin());
    sc.plan_texts.push_back(ReadModuleFile(p));
    return kSOk;
}

void TextDrawn(void* hdc, const char* utf8, double x, double y, double width, double height, uint32_t argb,
               const char* font_family, double font_size_px, int font_style) {
    GaugeInstance* inst = InstanceOfContext(g_host.gauges, hdc);
    if (inst == nullptr || utf8 == nullptr || inst->text_now.size() >= kMaxTextsPerFrame) return;
    DrawnText text;
    text.x = x;
    text.y = y;
    text.width = width;
    text.height = height;
    text.argb = argb;
    text.text.assign(utf8, strnlen(utf8, kMaxDrawnTextBytes));
    text.font = font_family ? std::string(font_family, strnlen(font_family, 64)) : std::string();
    text.font_size = font_size_px;
    text.style = font_style;
    inst->text_now.push_back(std::move(text));
}

// The keys held; 0 while the simulator's window is in the background.
int KeyboardState(uint8_t state[256]) {
    const PcKeyboard& k = g_host.keyboard;
    for (size_t i = 0; i < k.down.size(); ++i) state[i] = k.down[i];
    return k.foreground ? 1 : 0;
}

void KeyboardHook(intptr_t (*proc)(int, uintptr_t, intptr_t)) {
    g_host.keyboard.hook = proc;
    if (proc != nullptr) ++g_host.keyboard.hooks_set;
}

const OrbHostInterface kInterface = {
    3, &FindWindow, &SendMessage, &SimConnectOpen, &SimConnectClose, &SimConnectFlightPlanLoad, &TextDrawn,
    nullptr, &KeyboardState, &KeyboardHook,
};
}  // namespace

const OrbHostInterface* HostInterface() { return &kInterface; }

}  // namespace orbsim
