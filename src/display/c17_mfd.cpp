// c17_mfd.cpp: the C-17 screens' pages: the request variables of the outer
// panel, the map form's order and the parameter words, the gauge's keys, and
// the draw routine that sends each screen to its page's picture.
//
// A request variable, read at each update of the instance of its screen:
//
//   value   page before       page after             layer 0    variable after
//   10      any               unchanged              unchanged  10
//   2       not 3             3                      hidden     2 (kept)
//   2       3                 3                      unchanged  2
//   0       any               1                      shown*     10
//   1       0, 3, 4, 5, 6     next map form          shown*     10
//   1       other             the last map form      shown*     10
//   3       9, 10, 11         10, 11, 9              shown*     10
//   3       other             9                      shown*     10
//   other   any               12                     shown*     10
//
//   * shown again only when the page was 3; otherwise left as it is.
#include "display/c17_mfd.h"

#include "display/c17_attitude.h"
#include "display/c17_engine_pages.h"
#include "display/c17_map_pages.h"
#include "frame/diagnostic_log.h"
#include "frame/gauge_layers.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"

#include <algorithm>
#include <cstring>

int C17ScreenNumber(const char* parameters) {
    if (parameters == nullptr || parameters[0] < '0' || parameters[0] > '9') return 0;
    return parameters[0] - '0';
}

void AdvanceC17MapForm(C17Screen& screen) {
    int p = screen.page;
    bool on_map_form = p == kC17PageNavigation || (p >= kC17PageMap && p <= kC17PageMapRange);
    if (on_map_form) {
        // 0 -> 3 -> 6 -> 0: navigation, map, map with range.
        int s = screen.sub_page;
        if (s == kC17PageNavigation) screen.sub_page = kC17PageMap;
        else if (s >= kC17PageMap && s < kC17PageMapRange) screen.sub_page = kC17PageMapRange;
        else if (s == kC17PageMapRange) screen.sub_page = kC17PageNavigation;
        else screen.sub_page = kC17PageMap;
    }
    screen.page = screen.sub_page;
}

void ProcessC17ModeRequest(int screen_number, GAUGEHDR* gauge) {
    if (screen_number < 1 || screen_number > kC17ScreenCount) return;
    size_t index = static_cast<size_t>(screen_number - 1);
    C17Screen& screen = g_display.c17_screens[index];
    int variable = g_module.c17_mode_variable[index];
    // Whole values as the panel writes them; a wild one is still "any other value".
    double raw = std::clamp(GetNamedVariableValue(variable), -1e6, 1e6);
    int value = static_cast<int>(raw);
    bool traced = screen_number == 2;
    if (traced) WriteLogFormat("ProcessMFDX2()-1: as_mfdx2_mode=%d\n", value);

    // 1. Nothing asked.
    if (value == kC17NoRequest) return;
    if (traced) WriteLogFormat("ProcessMFDX2()-2: as_mfdx2_mode=%d\n", value);

    // 2. The map page; the request stays standing, so it is acted on once.
    if (value == 2) {
        if (screen.page != kC17PageMap) {
            ShowLayer(gauge, 0, false);
            screen.page = kC17PageMap;
        }
        if (screen_number == 1) g_display.c17_first_screen_request = value;
        return;
    }

    // 3. Any other request leaves the map page's hidden surface behind.
    if (screen.page == kC17PageMap) ShowLayer(gauge, 0, true);
    switch (value) {
    case 0: screen.page = kC17PagePrimaryFlight; break;
    case 1: AdvanceC17MapForm(screen); break;
    case 3:
        if (screen.page == kC17PageEngines) screen.page = kC17PageEnginesSecondary;
        else if (screen.page == kC17PageEnginesSecondary) screen.page = kC17PageOilAndFuel;
        else screen.page = kC17PageEngines;
        break;
    default: screen.page = kC17PageConfiguration; break;
    }

    // 4. Answered.
    SetNamedVariableValue(variable, kC17NoRequest);
}

void C17MfdUpdate(GAUGEHDR* gauge, const char* parameters) {
    const char* text = parameters != nullptr ? parameters : "";
    WriteLogFormat("PANEL_SERVICE_PRE_UPDATE-2: Param=%s\n", text);
    int screen = C17ScreenNumber(text);
    WriteLogFormat("PANEL_SERVICE_PRE_UPDATE-3: iparam=%d\n", screen);
    if (screen == 0) screen = 1;
    WriteLogFormat("PANEL_SERVICE_PRE_UPDATE-4: iparam=%d\n", screen);
    ProcessC17ModeRequest(screen, gauge);
}

void ApplyC17PresetWord(const char* parameters) {
    if (parameters == nullptr) return;
    auto is_word = [&](const char* word) {
        size_t n = std::strlen(word);
        return std::strncmp(parameters, word, n) == 0 &&
               (parameters[n] == 0 || std::strcmp(parameters + n, "_VC") == 0 || std::strcmp(parameters + n, "_WN") == 0);
    };
    auto& screens = g_display.c17_screens;
    if (is_word("PFD")) {
        screens[0].page = kC17PagePrimaryFlight;
    } else if (is_word("MFD")) {
        int& page = screens[1].page;
        if (page < kC17PageMap || page > kC17PageMapLast) page = kC17PageMap;
    } else if (is_word("ENG")) {
        screens[2].page = kC17PageEngines;
    } else if (is_word("CFG")) {
        screens[3].page = kC17PageConfiguration;
    }
}

// [SECTION] Drawing
namespace {
constexpr UINT32 kC17Window = 4025;     // the pop-up of screen 1

bool Contains(const char* text, const char* word) { return text != nullptr && std::strstr(text, word) != nullptr; }

// The working record back into the screen it came from.
void StoreWorking() {
    int screen = std::clamp(g_display.c17_working_screen, 1, kC17ScreenCount);
    g_display.c17_screens[static_cast<size_t>(screen - 1)] = g_display.c17_working;
}
}  // namespace

int C17DrawInstance(const char* parameters) {
    int instance = C17ScreenNumber(parameters);
    if (instance > kC17ScreenCount) instance = 0;
    if (Contains(parameters, "VC") && IsPanelWindowVisible(0)) instance = 0;
    if (instance == 1 && IsPanelWindowVisible(kC17Window) && !Contains(parameters, "WN")) instance = 0;
    return instance;
}

void DrawC17Mfd(const DisplaySurface& surface) {
    int screen = surface.instance;
    if (screen < 1 || screen > kC17ScreenCount) return;
    // 1. Load the screen's state into the working record.
    g_display.c17_working = g_display.c17_screens[static_cast<size_t>(screen - 1)];
    g_display.c17_working_screen = screen;

    // 2. The page's picture; pages 2, 7 and 8 have none.
    switch (g_display.c17_working.page) {
    case kC17PageNavigation: DrawC17Navigation(surface); break;
    case kC17PagePrimaryFlight: DrawC17Attitude(surface); break;
    case kC17PageMap:
    case kC17PageMap + 1:
    case kC17PageMapLast:
    case kC17PageMapRange: DrawC17Map(surface, g_display.c17_working.page); break;
    case kC17PageEngines: DrawC17Engines(surface); break;
    case kC17PageEnginesSecondary: DrawC17EnginesSecondary(surface); break;
    case kC17PageOilAndFuel: DrawC17OilAndFuel(surface); break;
    case kC17PageConfiguration: DrawC17Configuration(surface); break;
    default: break;
    }

    // 3. Store it back.
    StoreWorking();
}

// [SECTION] The gauge's keys
void C17KeyPrimaryFlight() {
    g_display.c17_working.page = kC17PagePrimaryFlight;
    StoreWorking();
}

void C17KeyMap() {
    C17Screen& working = g_display.c17_working;
    if (working.page == kC17PagePrimaryFlight || working.page == 2) return;
    AdvanceC17MapForm(working);
    StoreWorking();
}

void C17KeyEngines() {
    int& page = g_display.c17_working.page;
    if (page == kC17PageEngines) page = kC17PageEnginesSecondary;
    else if (page == kC17PageEnginesSecondary) page = kC17PageOilAndFuel;
    else if (page == kC17PageOilAndFuel) page = kC17PageEngines;
    else page = kC17PageOilAndFuel;
    StoreWorking();
}

void C17KeyConfiguration() {
    g_display.c17_working.page = kC17PageConfiguration;
    StoreWorking();
}

void C17MapPageStep(int direction) {
    auto step = [direction](C17Screen& screen) {
        if (direction < 0 && screen.page > kC17PageMap && screen.page <= kC17PageMapLast) --screen.page;
        if (direction > 0 && screen.page >= kC17PageMap && screen.page < kC17PageMapLast) ++screen.page;
    };
    for (C17Screen& screen : g_display.c17_screens) step(screen);
    step(g_display.c17_working);
}
