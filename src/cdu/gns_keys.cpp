// gns_keys.cpp: the GNS keypad's key table, the field editor the letter keys
// type into, and what the function keys do at the press.
//
// A press edits the field or sets a latch, nothing more; the page function of
// the next drawn frame carries ENTER and the line keys out. The page keys set
// the page at once, as the Boeing-style function keys do.
#include "cdu/gns_keys.h"

#include "cdu/key_table_support.h"
#include "cdu/keypad.h"
#include "frame/data_text.h"
#include "frame/entry_guard.h"
#include "frame/sim_access.h"
#include "guidance/lnav_state.h"
#include "resources/panel_layouts.h"

#include <cstring>
#include <iterator>
#include <utility>

namespace {
using A = CduKeyAction;
namespace pl = panel_layouts_detail;
constexpr FLAGS32 kClick = MOUSE_LEFTSINGLE;
constexpr int kLetterRow1 = 310;            // rows of the letter and digit keys
constexpr int kLetterRow2 = 350;
constexpr int kLetterRow3 = 392;
constexpr int kCap = pl::kGnsKey;           // square caps
constexpr int Column(int i) { return 22 + i * pl::kGnsPitch; }
constexpr int kLineRows[5] = {70, 115, 160, 204, 247};

// clang-format off
constexpr CduKeyBox kGnsKeys[] = {
    {"NAV", 55, 11, 36, 28, A::GnsNav, 0, kClick},
    {"VNAV", 99, 11, 36, 28, A::GnsVnav, 0, kClick},
    {"FPL", 188, 11, 36, 28, A::GnsFpl, 0, kClick},
    {"PERF", 363, 11, 36, 28, A::GnsPerf, 0, kClick},
    {"HOLD", 428, 48, 36, 28, A::GnsHold, 0, kClick},
    {"LSK1L", 60, kLineRows[0], 24, 17, A::GnsLine, 1, kClick},
    {"LSK2L", 60, kLineRows[1], 24, 17, A::GnsLine, 2, kClick},
    {"LSK3L", 60, kLineRows[2], 24, 17, A::GnsLine, 3, kClick},
    {"LSK4L", 60, kLineRows[3], 24, 17, A::GnsLine, 4, kClick},
    {"LSK5L", 57, kLineRows[4], 24, 17, A::GnsLine, 5, kClick},
    {"LSK1R", 390, kLineRows[0], 24, 17, A::GnsLine, 6, kClick},
    {"LSK2R", 390, kLineRows[1], 24, 17, A::GnsLine, 7, kClick},
    {"LSK3R", 390, kLineRows[2], 24, 17, A::GnsLine, 8, kClick},
    {"LSK4R", 390, kLineRows[3], 24, 17, A::GnsLine, 9, kClick},
    {"LSK5R", 390, kLineRows[4], 24, 17, A::GnsLine, 10, kClick},
    {"PREV", 18, 140, 30, 38, A::GnsPrev, 0, kClick},
    {"NEXT", 18, 185, 30, 38, A::GnsNext, 0, kClick},
    {"DIRECT", 18, 228, 30, 38, A::GnsDirect, 0, kClick},
    {"ENTER", 242, 310, 62, 30, A::GnsEnter, 0, kClick},
    {"CLR", 430, 262, 34, 26, A::GnsClear, 0, kClick},
    {"A", pl::kGnsRow1Left[0], kLetterRow1, kCap, kCap, A::Character, 'A', kClick},
    {"B", pl::kGnsRow1Left[1], kLetterRow1, kCap, kCap, A::Character, 'B', kClick},
    {"C", pl::kGnsRow1Left[2], kLetterRow1, kCap, kCap, A::Character, 'C', kClick},
    {"D", pl::kGnsRow1Left[3], kLetterRow1, kCap, kCap, A::Character, 'D', kClick},
    {"E", pl::kGnsRow1Left[4], kLetterRow1, kCap, kCap, A::Character, 'E', kClick},
    {"F", pl::kGnsRow1Left[5], kLetterRow1, kCap, kCap, A::Character, 'F', kClick},
    {"G", pl::kGnsRow1Right[0], kLetterRow1, kCap, kCap, A::Character, 'G', kClick},
    {"H", pl::kGnsRow1Right[1], kLetterRow1, kCap, kCap, A::Character, 'H', kClick},
    {"I", pl::kGnsRow1Right[2], kLetterRow1, kCap, kCap, A::Character, 'I', kClick},
    {"J", pl::kGnsRow1Right[3], kLetterRow1, kCap, kCap, A::Character, 'J', kClick},
    {"K", pl::kGnsRow1Right[4], kLetterRow1, kCap, kCap, A::Character, 'K', kClick},
    {"L", pl::kGnsRow1Right[5], kLetterRow1, kCap, kCap, A::Character, 'L', kClick},
    {"M", Column(0), kLetterRow2, kCap, kCap, A::Character, 'M', kClick},
    {"N", Column(1), kLetterRow2, kCap, kCap, A::Character, 'N', kClick},
    {"O", Column(2), kLetterRow2, kCap, kCap, A::Character, 'O', kClick},
    {"P", Column(3), kLetterRow2, kCap, kCap, A::Character, 'P', kClick},
    {"Q", Column(4), kLetterRow2, kCap, kCap, A::Character, 'Q', kClick},
    {"R", Column(5), kLetterRow2, kCap, kCap, A::Character, 'R', kClick},
    {"S", Column(6), kLetterRow2, kCap, kCap, A::Character, 'S', kClick},
    {"T", Column(7), kLetterRow2, kCap, kCap, A::Character, 'T', kClick},
    {"U", Column(8), kLetterRow2, kCap, kCap, A::Character, 'U', kClick},
    {"V", Column(9), kLetterRow2, kCap, kCap, A::Character, 'V', kClick},
    {"W", Column(10), kLetterRow2, kCap, kCap, A::Character, 'W', kClick},
    {"X", Column(11), kLetterRow2, kCap, kCap, A::Character, 'X', kClick},
    {"Y", Column(12), kLetterRow2, kCap, kCap, A::Character, 'Y', kClick},
    {"Z", Column(0), kLetterRow3, kCap, kCap, A::Character, 'Z', kClick},
    {"1", Column(1), kLetterRow3, kCap, kCap, A::Character, '1', kClick},
    {"2", Column(2), kLetterRow3, kCap, kCap, A::Character, '2', kClick},
    {"3", Column(3), kLetterRow3, kCap, kCap, A::Character, '3', kClick},
    {"4", Column(4), kLetterRow3, kCap, kCap, A::Character, '4', kClick},
    {"5", Column(5), kLetterRow3, kCap, kCap, A::Character, '5', kClick},
    {"6", Column(6), kLetterRow3, kCap, kCap, A::Character, '6', kClick},
    {"7", Column(7), kLetterRow3, kCap, kCap, A::Character, '7', kClick},
    {"8", Column(8), kLetterRow3, kCap, kCap, A::Character, '8', kClick},
    {"9", Column(9), kLetterRow3, kCap, kCap, A::Character, '9', kClick},
    {"0", Column(10), kLetterRow3, kCap, kCap, A::Character, '0', kClick},
    {"*", Column(11), kLetterRow3, kCap, kCap, A::Character, '*', kClick},
    {"HASH", Column(12), kLetterRow3, kCap, kCap, A::Character, '#', kClick},  // "#" starts a comment in scripts
    // Last, so that the _LM twin, which lacks it, takes the table less one row.
    {"SCREEN", 190, 101, 80, 80, A::ScreenCentre, 0, kClick},
};
// clang-format on
constexpr int kGnsKeyCount = static_cast<int>(std::size(kGnsKeys));

// The twins' handlers are the same code: one a key of the table.
constexpr auto kHandlers = KeyHandlersOf<kGnsKeys, PressGnsKey>();

GnsPageState& S() { return g_gns_page; }

bool IsPlaceholderText(std::string_view text) { return text == "******" || text == "------"; }

// The field's text without trailing blanks.
size_t TrimmedLength() {
    const auto& f = S().GnsField;
    size_t n = std::strlen(f.data());
    while (n > 0 && f[n - 1] == ' ') --n;
    return n;
}

void PadField() {
    GnsPageState& s = S();
    size_t width = static_cast<size_t>(s.GnsFieldWidth);
    if (width >= s.GnsField.size()) width = s.GnsField.size() - 1;
    size_t n = std::strlen(s.GnsField.data());
    while (n < width) s.GnsField[n++] = ' ';
    s.GnsField[n] = 0;
}
}  // namespace

bool IsGnsGauge(GaugeId id) { return id == GaugeId::GNSXLS || id == GaugeId::GNSXLS_LM; }

int GnsKeyCount(GaugeId id) {
    if (id == GaugeId::GNSXLS) return kGnsKeyCount;
    if (id == GaugeId::GNSXLS_LM) return kGnsKeyCount - 1;
    return 0;
}

const CduKeyBox* GnsKeyAt(GaugeId id, int index) {
    if (index < 0 || index >= GnsKeyCount(id)) return nullptr;
    return &kGnsKeys[index];
}

const CduKeyBox* FindGnsKey(GaugeId id, const char* name) {
    if (name == nullptr) return nullptr;
    for (int i = 0; i < GnsKeyCount(id); ++i)
        if (SameKeyName(kGnsKeys[i].name, name)) return &kGnsKeys[i];
    return nullptr;
}

const CduKeyBox* FindGnsKeyForCharacter(GaugeId id, char c) {
    char wanted = KeyNameChar(c);
    for (int i = 0; i < GnsKeyCount(id); ++i)
        if (kGnsKeys[i].action == A::Character && kGnsKeys[i].value == wanted) return &kGnsKeys[i];
    return nullptr;
}

MOUSE_FUNCTION GnsKeyHandler(int index) {
    if (index < 0 || index >= kGnsKeyCount) return nullptr;
    return kHandlers[static_cast<size_t>(index)];
}

// [SECTION] The field editor
std::string_view GnsFieldText() { return std::string_view(S().GnsField.data(), TrimmedLength()); }

void GnsOpenField(const char* text, int width) {
    GnsPageState& s = S();
    s.GnsFieldWidth = width < 1 ? 1 : (width >= kGnsFieldCapacity ? kGnsFieldCapacity - 1 : width);
    SetText(s.GnsField, text);
    if (std::strlen(s.GnsField.data()) > static_cast<size_t>(s.GnsFieldWidth)) s.GnsField[s.GnsFieldWidth] = 0;
    s.GnsEditing = 1;
    s.GnsEditFresh = 1;
    PadField();
}

void GnsCloseField() {
    S().GnsEditing = 0;
    S().GnsEditFresh = 0;
}

void GnsFieldKey(const char* key) {
    GnsPageState& s = S();
    if (!s.GnsEditing || key == nullptr) return;
    // 1. A fresh field, or one holding a placeholder, starts empty.
    if (s.GnsEditFresh || IsPlaceholderText(GnsFieldText())) s.GnsField = {};
    s.GnsEditFresh = 0;
    s.GnsField[TrimmedLength()] = 0;
    // 2. "*1" takes off the last character; any other key appends within the width.
    size_t n = std::strlen(s.GnsField.data());
    if (std::strcmp(key, "*1") == 0) {
        if (n > 0) s.GnsField[n - 1] = 0;
    } else if (n < static_cast<size_t>(s.GnsFieldWidth) && n + 1 < s.GnsField.size()) {
        s.GnsField[n] = key[0];
        s.GnsField[n + 1] = 0;
    }
    // 3. Padded back to the width.
    PadField();
}

void GnsClearLineStates() { S().GnsLineState = {}; }

void GnsGoToPage(int page) {
    GnsPageState& s = S();
    s.GnsPage = page;
    s.GnsPreviousPage = page;  // the dispatcher must not clear what the caller sets next
    GnsClearLineStates();
    GnsCloseField();
}

void GnsClear() {
    GnsPageState& s = S();
    const auto& st = s.GnsLineState;
    auto toggle = [](std::array<char, 4>& flag) { SetText(flag, TextOf(flag) == "YES" ? "NO" : "YES"); };
    switch (s.GnsPage) {
    case gns_page::kDatabaseWpt:
        if (st[10] == 2) {
            // The Direct-To turn: "DEFAULT", "LEFT", "RIGHT" and round.
            std::string_view d = TextOf(g_lnav.DirectToTurnOption);
            SetText(g_lnav.DirectToTurnOption, d == "DEFAULT" ? "LEFT" : d == "LEFT" ? "RIGHT" : "DEFAULT");
            return;
        }
        if (st[10] == 1) {
            toggle(s.GnsFlyover);
            return;
        }
        break;
    case gns_page::kPilotWpt:
    case gns_page::kOffsetWpt:
        if (st[10] == 1 || !s.GnsEditing) {
            toggle(s.GnsFlyover);
            return;
        }
        break;
    case gns_page::kHolding: s.GnsClearLatch = 1; return;  // the page toggles the line under the cursor
    case gns_page::kApproach:
        if (!s.GnsEditing && s.GnsReturnPage == gns_page::kFlightPlan) {
            GnsGoToPage(gns_page::kFlightPlan);
            return;
        }
        break;
    case gns_page::kAirway:
        GnsGoToPage(s.GnsReturnPage);
        return;
    case gns_page::kFlightPlan:
        if (s.GnsSubMode == 1 && st[10] == 1) {
            s.GnsColumnChoice = s.GnsColumnChoice % 4 + 1;
            return;
        }
        if (s.GnsEditing && s.GnsEditFresh && st[1] + st[2] + st[3] + st[4] > 0) {
            // A fresh field is not erased: the entry is offered for deletion.
            s.GnsDeletePending = 1;
            return;
        }
        break;
    case gns_page::kNavigation:
        if (st[7] == 1) {
            s.GnsNavAltMode = 1 - s.GnsNavAltMode;
            return;
        }
        break;
    default: break;
    }
    GnsFieldKey("*1");
}

void PressGnsKey(const CduKeyBox& key) {
    GnsPageState& s = S();
    switch (key.action) {
    case A::Character: {
        const char text[2] = {static_cast<char>(key.value), 0};
        GnsFieldKey(text);
        return;
    }
    case A::GnsLine: s.GnsLineSelect = key.value; return;  // a later key of the frame wins
    case A::GnsEnter: s.GnsEnterLatch = 1; return;
    case A::GnsClear: GnsClear(); return;
    case A::GnsPrev: s.GnsPrevLatch = 1; return;
    case A::GnsNext: s.GnsNextLatch = 1; return;
    case A::GnsNav:
        if (s.GnsPage == gns_page::kNavigation) {
            s.GnsSubPage = s.GnsSubPage % 4 + 1;
        } else {
            GnsGoToPage(gns_page::kNavigation);
            s.GnsSubPage = 1;
        }
        return;
    case A::GnsVnav: s.GnsVnavLatch = 1; return;
    case A::GnsPerf:
        if (s.GnsPage == gns_page::kPlan) {
            s.GnsSubPage = s.GnsSubPage % 6 + 1;
        } else {
            GnsGoToPage(gns_page::kPlan);
            s.GnsSubPage = 1;
        }
        return;
    case A::GnsFpl: s.GnsFplLatch = 1; return;
    case A::GnsHold: s.GnsHoldLatch = 1; return;
    case A::GnsDirect: s.GnsDirectLatch = 1; return;
    case A::ScreenCentre: PanelWindowToggle(kPopupWindowGns); return;
    default: return;
    }
}
