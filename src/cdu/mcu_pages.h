// mcu_pages.h: the MCU pair (MCU and its _LM twin): a small control unit with
// a narrow screen, a dozen keys and a rocker, that flies the same plan as the
// large CDUs. Names are spelled with the rocker or typed on the PC keyboard.
//
// Immediate mode as on the other CDUs: a key only sets a field or a latch;
// the page of McuPage reads them once per drawn frame, acts and draws, and
// the latches go after the frame. Unlike the others the screen is kept
// between frames and drawn again only on request (McuRedraw, the slow
// refresh counter at 0), with the moving lines of the TO page once a second.
//
// Index:
//   [SECTION] Pages, limits and colours
//   [SECTION] State
//   [SECTION] Operations
#pragma once

#include "cdu/keypad.h"
#include "navdata/nav_database.h"

#include <windows.h>

#include <array>
#include <cstdint>
#include <string_view>

// [SECTION] Pages, limits and colours
namespace mcu_page {
constexpr int kFpln = 1;
constexpr int kApt = 2;
constexpr int kTo = 5;
constexpr int kLegs = 6;
constexpr int kDirto = 7;
constexpr int kAltFl = 19;
}  // namespace mcu_page

constexpr float kMcuDesignWidth = 239;       // design units across the screen
constexpr float kMcuDesignHeight = 78;
constexpr float kMcuFontSize = 14;           // Arial, pixel unit
constexpr uint32_t kMcuGold = 0xFFE9B73E;    // headings
constexpr uint32_t kMcuGreen = 0xFF5BE5A7;   // values
constexpr uint32_t kMcuMagenta = 0xFFFF13D5; // flyover marks, the second active runway
constexpr uint32_t kMcuBlack = 0xFF000000;
constexpr int kMcuFieldLength = 6;           // characters of the spelled name
constexpr int kMcuLines = 4;                 // lines a list page shows
constexpr int kMcuAltitudeTop = 98000;       // feet, the 1000-foot steps' ceiling
constexpr int kMcuAltitudeTopHalf = 97500;   // feet, the 500-foot steps' ceiling
constexpr int kMcuPopupWindow = 4001;        // the panel window the screen toggles

// McuRocker values.
constexpr int kRockerUp = 1;
constexpr int kRockerDown = 2;
constexpr int kRockerLeft = 3;
constexpr int kRockerRight = 4;

// McuEditing values.
constexpr int kMcuEditName = 1;
constexpr int kMcuEditValue = 2;

// [SECTION] State
// One row of the spelled name's candidates, with its place seen from the aircraft.
struct McuCandidate {
    NavRecord record;                        // as the table holds it
    std::array<char, 4> type{};              // "APT", "VOR", "NDB", "INT" or "WPT"
    double distance = 0;                     // nm from the aircraft
    double bearing = 0;                      // magnetic degrees from the aircraft
};

struct McuState {
    int McuPage = mcu_page::kTo;             // page shown
    int McuRocker = 0;                       // last rocker direction (kRocker...), 0 none yet
    int McuEditing = 0;                      // 0, kMcuEditName or kMcuEditValue
    std::array<char, kMcuFieldLength + 1> McuField{};  // the name being spelled, blank padded
    int McuCursor = 1;                       // 1..6, the field's character the rocker steps
    // Latches of one frame.
    int McuEnter = 0;
    int McuPrev = 0;
    int McuNext = 0;
    int McuPrevPage = 0;                     // from the keyboard's page up
    int McuNextPage = 0;                     // from the keyboard's page down
    int RockerLatch = 0;                     // the rocker direction pressed this frame; 0 none
    int ListReloadLatch = 0;                 // FPLN: the stored plans read anew
    int AirportLoadLatch = 0;                // APT from another page: the plan's airport loaded
    // ALT/FL
    int McuAltitudeEntry = 0;                // feet, 0..98000
    // LEGS
    int McuLegsEdit = 0;                     // 1: ENTER stores the crossing altitude
    int LegsEditValue = 0;                   // feet, 0..98000
    int LegsFirst = 1;                       // ActivePlan row on the first line
    int LegsSelected = 1;                    // ActivePlan row selected
    int LegsRestrictionRow = 0;              // row of the last crossing stored on this page; 0 none
    // FPLN
    int FplnSelected = 1;                    // stored plan highlighted, from 1
    int FplnFirst = 1;                       // stored plan on the first line
    // APT
    PageCounter apt;                         // runway pages, then the active runways' page
    int AptSelected = 0;                     // InfoAirport runway row highlighted; 0 none
    // Candidates of the spelled name
    std::array<char, kMcuFieldLength + 1> LookedUp{};  // the name they were built for
    std::array<McuCandidate, kCandidateLimit + 1> candidates{};  // rows 1..count
    int candidate_count = 0;
    int candidate = 0;                       // row shown and taken by ENTER; 0 none
    // Frames
    uint64_t paints = 0;                     // whole-screen paints, for the tests' count
};

extern McuState g_mcu_state;

// [SECTION] Operations
// The family's frame on the gauge's surface: keyboard results and latches
// acted on by the page of McuPage, the screen drawn when asked for.
void McuPageDispatcher(HDC hdc, int width, int height);
// The name as spelled so far, trailing blanks off.
std::string_view McuFieldText();
// The candidates of `prefix`: airports only, or navaids, intersections and
// airports, nearest first, at most 250.
int BuildMcuCandidates(std::string_view prefix, bool airports_only);
// The state a panel load starts from (McuPage 5, nothing spelled).
void ResetMcuState();
