// mcu_keys.cpp: the MCU's key table and what each key does.
//
// Every key asks for a repaint at once (McuRedraw and the slow-refresh
// counter at 999); beyond that a key sets the page, a field or a latch, and
// the page of the next drawn frame does the rest. LNAV and HOLD act at once,
// as the LNAV buttons of the other gauges do. A page change from these keys
// gives the PC keyboard back first.
#include "cdu/mcu_keys.h"

#include "cdu/key_table_support.h"
#include "cdu/mcu_pages.h"
#include "frame/entry_guard.h"
#include "frame/input_capture.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <iterator>
#include <utility>

namespace {
using A = McuKeyAction;
constexpr FLAGS32 kClick = MOUSE_LEFTSINGLE;
constexpr FLAGS32 kRepeat = MOUSE_LEFTSINGLE | MOUSE_DOWN_REPEAT;
constexpr double kThousand = 1000;

// clang-format off
constexpr McuKeyBox kMcuKeys[] = {
    {"TO", 40, 224, 70, 25, A::To, 0, kClick},
    {"FPLN", 127, 224, 70, 25, A::Fpln, 0, kClick},
    {"LNAV", 213, 222, 70, 25, A::Lnav, 0, kClick},
    {"DIRTO", 40, 258, 70, 25, A::Dirto, 0, kClick},
    {"HOLD", 127, 258, 70, 25, A::Hold, 0, kClick},
    {"LEGS_EDIT", 213, 258, 70, 25, A::LegsEdit, 0, kClick},
    {"LEGS", 40, 292, 70, 25, A::Legs, 0, kClick},
    {"PREV", 127, 292, 70, 25, A::Prev, 0, kRepeat},
    {"ALT/FL", 213, 292, 70, 25, A::AltFl, 0, kClick},
    {"APT", 40, 324, 70, 25, A::Apt, 0, kClick},
    {"NEXT", 127, 324, 70, 25, A::Next, 0, kRepeat},
    {"KBD", 213, 324, 70, 25, A::Keyboard, 0, kClick},
    {"ENTER", 350, 324, 70, 25, A::Enter, 0, kClick},
    {"UP", 371, 224, 32, 32, A::Rocker, kRockerUp, kRepeat},
    {"DOWN", 371, 290, 32, 32, A::Rocker, kRockerDown, kRepeat},
    {"LEFT", 338, 256, 32, 32, A::Rocker, kRockerLeft, kClick},
    {"RIGHT", 404, 256, 32, 32, A::Rocker, kRockerRight, kClick},
    {"SCREEN", 132, 47, 200, 120, A::ScreenCentre, 0, kClick},
};
// clang-format on
constexpr int kMcuKeyCount = static_cast<int>(std::size(kMcuKeys));

// The twins' handlers are the same code: one a key of the table.
constexpr auto kHandlers = KeyHandlersOf<kMcuKeys, PressMcuKey>();

// A page change from the keys: the PC keyboard goes back to the simulator.
void GoToPage(int page) {
    if (g_mcu_page.direct_entry) StopDirectEntry();
    g_mcu_state.McuPage = page;
}

bool EditPage(int page) { return page == mcu_page::kApt || page == mcu_page::kLegs || page == mcu_page::kDirto; }
}  // namespace

const McuKeyBox* FindMcuKey(const char* name) {
    if (name == nullptr) return nullptr;
    for (const McuKeyBox& key : kMcuKeys)
        if (SameKeyName(key.name, name)) return &key;
    return nullptr;
}

int McuKeyCount() { return kMcuKeyCount; }

const McuKeyBox* McuKeyAt(int index) { return index >= 0 && index < kMcuKeyCount ? &kMcuKeys[index] : nullptr; }

void PressMcuKey(const McuKeyBox& key) {
    McuState& m = g_mcu_state;
    // Every key repaints the screen.
    g_mcu_page.repaint = 1;
    g_tick.slow_refresh = 999;
    switch (key.action) {
    case A::To:
        GoToPage(mcu_page::kTo);
        m.McuEditing = 0;
        return;
    case A::Fpln:
        GoToPage(mcu_page::kFpln);
        m.McuEditing = 0;
        m.ListReloadLatch = 1;
        return;
    case A::Lnav: LnavToggle(); return;
    case A::Dirto:
        GoToPage(mcu_page::kDirto);
        m.McuEditing = 0;
        m.McuField = {};
        m.LookedUp = {};
        m.candidate_count = 0;
        m.candidate = 0;
        return;
    case A::Hold: ToggleHold(); return;
    case A::LegsEdit:
        GoToPage(mcu_page::kLegs);
        m.McuEditing = kMcuEditValue;
        m.McuLegsEdit = 1;
        m.LegsEditValue = 0;
        return;
    case A::Legs: {
        GoToPage(mcu_page::kLegs);
        m.McuEditing = 0;
        m.McuLegsEdit = 0;
        int leg = g_plan.context.ActiveLeg;
        m.LegsFirst = leg == kNoActiveLeg ? 1 : leg;
        m.LegsSelected = m.LegsFirst;
        return;
    }
    case A::Prev: m.McuPrev = 1; return;
    case A::AltFl:
        GoToPage(mcu_page::kAltFl);
        m.McuEditing = kMcuEditValue;
        m.McuAltitudeEntry = static_cast<int>(std::floor(g_sim.autopilot_altitude.now / kThousand) * kThousand);
        if (m.McuAltitudeEntry < 0) m.McuAltitudeEntry = 0;
        if (m.McuAltitudeEntry > kMcuAltitudeTop) m.McuAltitudeEntry = kMcuAltitudeTop;
        return;
    case A::Apt:
        if (m.McuPage == mcu_page::kApt) {
            m.apt.page = m.apt.page >= m.apt.count ? 1 : m.apt.page + 1;
        } else {
            GoToPage(mcu_page::kApt);
            m.McuEditing = 0;
            m.AirportLoadLatch = 1;
        }
        return;
    case A::Next: m.McuNext = 1; return;
    case A::Keyboard:
        if (!EditPage(m.McuPage)) return;
        if (g_mcu_page.direct_entry) {
            StopDirectEntry();
        } else {
            // A fresh field for the typed name.
            m.McuField = {};
            m.McuCursor = 1;
            StartDirectEntry();
        }
        return;
    case A::Enter: m.McuEnter = 1; return;
    case A::Rocker:
        m.McuRocker = key.value;
        m.RockerLatch = key.value;
        return;
    case A::ScreenCentre: PanelWindowToggle(kMcuPopupWindow); return;
    }
}

void McuMouseAreas(GaugeId id, MouseAreaList& areas) {
    for (int i = 0; i < kMcuKeyCount; ++i) {
        const McuKeyBox& key = kMcuKeys[i];
        areas.Button(key.x, key.y, key.w, key.h, kHandlers[static_cast<size_t>(i)], key.flags);
    }
    PadMouseAreas(areas, SpecOf(id).mouse_rows);
}
