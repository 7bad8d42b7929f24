// cdu_keys.cpp: the Boeing-style keypad's key table and what each key does.
//
// A press edits the entry line or sets a field or latch, nothing more: the
// page function of the next drawn frame carries the entry out. The function
// keys set the page and its counter at once, as the page keys of a real unit
// switch the screen on the next refresh.
#include "cdu/cdu_keys.h"

#include "cdu/gns_key_table.h"
#include "cdu/key_table_support.h"
#include "cdu/keypad.h"
#include "display/display_state.h"
#include "frame/entry_guard.h"
#include "frame/sim_access.h"
#include "guidance/holds.h"
#include "plan/plan_tables.h"

#include <iterator>
#include <utility>

namespace {
using A = CduKeyAction;
constexpr FLAGS32 kClick = MOUSE_LEFTSINGLE;
constexpr FLAGS32 kRepeat = MOUSE_LEFTSINGLE | MOUSE_DOWN_REPEAT;

// Line-select keys: 46 x 34, left column x 7, right column x 379.
constexpr int kLineKeyRows[6] = {68, 100, 132, 165, 197, 230};

// clang-format off
constexpr CduKeyBox kSmithsKeys[] = {
    {"LSK1L", 7, kLineKeyRows[0], 46, 34, A::LineSelect, 1, kClick},
    {"LSK2L", 7, kLineKeyRows[1], 46, 34, A::LineSelect, 2, kClick},
    {"LSK3L", 7, kLineKeyRows[2], 46, 34, A::LineSelect, 3, kClick},
    {"LSK4L", 7, kLineKeyRows[3], 46, 34, A::LineSelect, 4, kClick},
    {"LSK5L", 7, kLineKeyRows[4], 46, 34, A::LineSelect, 5, kClick},
    {"LSK6L", 7, kLineKeyRows[5], 46, 34, A::LineSelect, kLeftRow6Key, kClick},
    {"LSK1R", 379, kLineKeyRows[0], 46, 34, A::LineSelect, 6, kClick},
    {"LSK2R", 379, kLineKeyRows[1], 46, 34, A::LineSelect, 7, kClick},
    {"LSK3R", 379, kLineKeyRows[2], 46, 34, A::LineSelect, 8, kClick},
    {"LSK4R", 379, kLineKeyRows[3], 46, 34, A::LineSelect, 9, kClick},
    {"LSK5R", 379, kLineKeyRows[4], 46, 34, A::LineSelect, 10, kClick},
    {"LSK6R", 379, kLineKeyRows[5], 46, 34, A::LineSelect, kRightRow6Key, kClick},
    {"INIT_REF", 51, 298, 44, 30, A::InitRef, 0, kClick},
    {"RTE", 104, 298, 44, 30, A::Rte, 0, kClick},
    {"CLB", 153, 298, 44, 30, A::Clb, 0, kClick},
    {"CRZ", 206, 298, 44, 30, A::Crz, 0, kClick},
    {"DES", 258, 298, 44, 30, A::Des, 0, kClick},
    {"DIR_INTC", 51, 338, 44, 30, A::DirIntc, 0, kClick},
    {"LEGS", 104, 338, 44, 30, A::Legs, 0, kClick},
    {"DEP_ARR", 153, 338, 44, 30, A::DepArr, 0, kClick},
    {"HOLD", 206, 338, 44, 30, A::Hold, 0, kClick},
    {"PROG", 258, 338, 44, 30, A::Prog, 0, kClick},
    {"EXEC", 318, 338, 44, 30, A::Exec, 0, kClick},
    {"FIX", 104, 377, 44, 30, A::Fix, 0, kClick},
    {"PREV_PAGE", 51, 418, 46, 34, A::PrevPage, 0, kClick},
    {"NEXT_PAGE", 104, 418, 46, 34, A::NextPage, 0, kClick},
    {"SCREEN", 160, 100, 92, 92, A::ScreenCentre, 0, kClick},
    // Letters: five a row in 36 x 36 boxes, Z alone on the last row.
    {"A", 172, 381, 36, 36, A::Character, 'A', kClick},
    {"B", 212, 381, 36, 36, A::Character, 'B', kClick},
    {"C", 252, 381, 36, 36, A::Character, 'C', kClick},
    {"D", 293, 381, 36, 36, A::Character, 'D', kClick},
    {"E", 332, 381, 36, 36, A::Character, 'E', kClick},
    {"F", 172, 422, 36, 36, A::Character, 'F', kClick},
    {"G", 212, 422, 36, 36, A::Character, 'G', kClick},
    {"H", 252, 422, 36, 36, A::Character, 'H', kClick},
    {"I", 293, 422, 36, 36, A::Character, 'I', kClick},
    {"J", 332, 422, 36, 36, A::Character, 'J', kClick},
    {"K", 172, 461, 36, 36, A::Character, 'K', kClick},
    {"L", 212, 461, 36, 36, A::Character, 'L', kClick},
    {"M", 252, 461, 36, 36, A::Character, 'M', kClick},
    {"N", 293, 461, 36, 36, A::Character, 'N', kClick},
    {"O", 332, 461, 36, 36, A::Character, 'O', kClick},
    {"P", 172, 502, 36, 36, A::Character, 'P', kClick},
    {"Q", 212, 502, 36, 36, A::Character, 'Q', kClick},
    {"R", 252, 502, 36, 36, A::Character, 'R', kClick},
    {"S", 293, 502, 36, 36, A::Character, 'S', kClick},
    {"T", 332, 502, 36, 36, A::Character, 'T', kClick},
    {"U", 172, 542, 36, 36, A::Character, 'U', kClick},
    {"V", 212, 542, 36, 36, A::Character, 'V', kClick},
    {"W", 252, 542, 36, 36, A::Character, 'W', kClick},
    {"X", 293, 542, 36, 36, A::Character, 'X', kClick},
    {"Y", 332, 542, 36, 36, A::Character, 'Y', kClick},
    {"Z", 172, 582, 36, 36, A::Character, 'Z', kClick},
    // Digits 1..9 in 34 x 34 boxes, then the bottom row.
    {"1", 51, 461, 34, 34, A::Character, '1', kClick},
    {"2", 90, 461, 34, 34, A::Character, '2', kClick},
    {"3", 130, 461, 34, 34, A::Character, '3', kClick},
    {"4", 51, 502, 34, 34, A::Character, '4', kClick},
    {"5", 90, 502, 34, 34, A::Character, '5', kClick},
    {"6", 130, 502, 34, 34, A::Character, '6', kClick},
    {"7", 51, 542, 34, 34, A::Character, '7', kClick},
    {"8", 90, 542, 34, 34, A::Character, '8', kClick},
    {"9", 130, 542, 34, 34, A::Character, '9', kClick},
    {".", 51, 582, 34, 34, A::Character, '.', kClick},
    {"0", 90, 582, 34, 34, A::Character, '0', kClick},
    {"+/-", 130, 582, 34, 34, A::PlusMinus, 0, kClick},
    {"SP", 212, 582, 36, 36, A::Space, 0, kClick},
    {"DEL", 252, 582, 36, 36, A::Delete, 0, kClick},
    {"/", 293, 582, 36, 36, A::Character, '/', kClick},
    {"CLR", 332, 582, 36, 36, A::Clear, 0, kRepeat},
};
// clang-format on
constexpr int kSmithsKeyCount = static_cast<int>(std::size(kSmithsKeys));

bool HasKeyTable(GaugeId id) { return id == GaugeId::SMITHS_FMS || id == GaugeId::SMITHS_FMS_BR; }

// The twins' handlers are the same code: one a key of the table.
constexpr auto kHandlers = KeyHandlersOf<kSmithsKeys, PressCduKey>();

bool PlanHasHold() {
    const PlanContext& pc = g_plan.context;
    for (int i = 0; i <= pc.ModLastRow && i < kPlanRows; ++i)
        if (g_plan.ModPlan[i].HoldIndex > 0) return true;
    return g_holds.HoldCount > 0;
}
}  // namespace

const CduKeyBox* FindCduKey(GaugeId id, const char* name) {
    if (IsGnsGauge(id)) return FindGnsKey(id, name);
    if (!HasKeyTable(id) || name == nullptr) return nullptr;
    for (const CduKeyBox& key : kSmithsKeys)
        if (SameKeyName(key.name, name)) return &key;
    return nullptr;
}

const CduKeyBox* FindCduKeyForCharacter(GaugeId id, char c) {
    if (IsGnsGauge(id)) return FindGnsKeyForCharacter(id, c);
    if (!HasKeyTable(id)) return nullptr;
    if (c == ' ') return FindCduKey(id, "SP");
    if (c == '-') return FindCduKey(id, "+/-");
    char wanted = KeyNameChar(c);
    for (const CduKeyBox& key : kSmithsKeys)
        if (key.action == CduKeyAction::Character && key.value == wanted) return &key;
    return nullptr;
}

int CduKeyCount(GaugeId id) {
    if (IsGnsGauge(id)) return GnsKeyCount(id);
    return HasKeyTable(id) ? kSmithsKeyCount : 0;
}

const CduKeyBox* CduKeyAt(GaugeId id, int index) {
    if (IsGnsGauge(id)) return GnsKeyAt(id, index);
    if (index < 0 || index >= CduKeyCount(id)) return nullptr;
    return &kSmithsKeys[index];
}

MOUSE_FUNCTION CduKeyHandler(int index) {
    if (index < 0 || index >= kSmithsKeyCount) return nullptr;
    return kHandlers[static_cast<size_t>(index)];
}

void PressCduKey(const CduKeyBox& key) {
    SmithsCduState& s = g_smiths;
    int plan_state = g_plan.context.PlanState;
    switch (key.action) {
    case A::Character:
        ScratchpadCharacter(static_cast<char>(key.value));
        // G to Z also reach an open GNS field, as if typed on its keypad.
        if (key.value >= 'G' && key.value <= 'Z') {
            const char text[2] = {static_cast<char>(key.value), 0};
            GnsFieldKey(text);
        }
        return;
    case A::Space: ScratchpadSpace(); return;
    case A::PlusMinus: ScratchpadPlusMinus(); return;
    case A::Delete: ScratchpadDelete(); return;
    case A::Clear: ScratchpadClear(); return;
    case A::LineSelect: s.LineSelectLatch = key.value; return;  // a later key of the frame wins
    case A::InitRef:
        s.CduPage = g_plan.context.ActiveLeg == kNoActiveLeg ? cdu_page::kPos : cdu_page::kPerfInit;
        s.perf.page = 1;
        s.pos.page = 1;  // the key opens the POS family at its first page
        return;
    case A::Rte:
        s.CduPage = cdu_page::kRte;
        s.rte.page = 1;
        s.RteEntryLatch = 1;
        return;
    case A::Clb: s.CduPage = cdu_page::kEconClb; return;
    case A::Crz: s.CduPage = cdu_page::kEconCrz; return;
    case A::Des: s.CduPage = cdu_page::kEconPathDes; return;
    case A::DirIntc:
        if (plan_state >= 2) {
            s.CduPage = cdu_page::kRteLegs;
            s.LegsMode = 1;
        } else {
            SetCduMessage(cdu_message::kNoActiveRoute);
        }
        return;
    case A::Legs:
        s.CduPage = cdu_page::kRteLegs;
        s.LegsMode = 0;
        s.legs.page = 1;
        s.LegsEntryLatch = 1;
        s.DirectPending = 0;
        s.DirectSourceRow = 0;
        s.HoldSourceRow = 0;
        s.HoldAtPending = 0;
        return;
    case A::DepArr: s.CduPage = cdu_page::kDepArrIndex; return;
    case A::Hold:
        s.HoldEntryLatch = 1;
        s.hold.page = 1;
        if (PlanHasHold()) {
            s.CduPage = cdu_page::kRteHold;
        } else {
            s.CduPage = cdu_page::kRteLegs;
            s.LegsMode = 2;
            g_display.PlanCentreIndex = 0;
        }
        return;
    case A::Prog:
        s.CduPage = cdu_page::kProgress;
        s.progress.page = 1;
        return;
    case A::Exec:
        if (plan_state == 2 || plan_state == 4) s.ExecLatch = 1;
        return;
    case A::Fix:
        s.CduPage = cdu_page::kFixInfo;
        s.fix.page = 1;
        return;
    case A::PrevPage: s.PrevPageLatch = 1; return;
    case A::NextPage: s.NextPageLatch = 1; return;
    case A::ScreenCentre: PanelWindowToggle(kPopupWindowSmiths); return;
    default: PressGnsKey(key); return;  // a GNS key given by its box
    }
}
