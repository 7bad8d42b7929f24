// keypad.h: the state each keypad family shares between its gauge twins, and
// the rules of the Boeing-style entry line.
//
// A panel that shows both twins of a family shows one and the same CDU: all
// of a family's state is one global set. A click only edits the scratchpad
// or sets a latch; the page function of the next drawn frame acts on the
// latches, and the dispatcher clears them after that frame.
//
// Index:
//   [SECTION] Limits and messages
//   [SECTION] SMITHS_FMS family state
//   [SECTION] GNS and MCU families
//   [SECTION] Scratchpad and message line
#pragma once

#include "navdata/nav_database.h"

#include <array>
#include <cstddef>
#include <string_view>

// [SECTION] Limits and messages
constexpr int kScratchpadKeyLimit = 24;      // characters the character keys put on the entry line
constexpr size_t kScratchpadCapacity = 64;   // room for SP beyond the key limit and for copied-in values
constexpr size_t kCduMessageCapacity = 80;   // a file name with " Unable to Save" behind it is cut here

// The message line's texts; "DELETE" is at the same time the armed delete.
namespace cdu_message {
constexpr const char* kDelete = "DELETE";
constexpr const char* kInvalidEntry = "INVALID ENTRY";
constexpr const char* kNotInDatabase = "NOT IN DATABASE";
constexpr const char* kInvalidDelete = "INVALID DELETE";
constexpr const char* kNoActiveRoute = "NO ACTIVE ROUTE";
constexpr const char* kNoActiveFlightPlan = "NO ACTIVE FLIGHT PLAN";
constexpr const char* kNotFoundInDatabase = "NOT FOUND IN DATABASE";
constexpr const char* kActiveFsPlannerRteLoaded = "ACTIVE FSPLANNER RTE LOADED";
constexpr const char* kNoActiveGpsRte = "NO ACTIVE GPS RTE";
constexpr const char* kSavedSuffix = " Saved";
constexpr const char* kUnableToSaveSuffix = " Unable to Save";
}  // namespace cdu_message

// [SECTION] SMITHS_FMS family state
// Page numbers of the family; every other number up to 39 is an empty page.
namespace cdu_page {
constexpr int kStoredFlightPlans = 1;
constexpr int kPerfInit = 3;
constexpr int kRteLegs = 6;
constexpr int kSelectWaypoint = 9;
constexpr int kDepartures = 10;
constexpr int kArrivals = 11;
constexpr int kApproachRef = 12;
constexpr int kRte = 22;
constexpr int kInitRefIndex = 23;
constexpr int kDepArrIndex = 24;
constexpr int kIdent = 25;
constexpr int kPos = 26;
constexpr int kTakeoffRef = 27;
constexpr int kRefNavData = 28;
constexpr int kTempNavSummary = 29;
constexpr int kNavStatus = 31;
constexpr int kProgress = 33;
constexpr int kEconClb = 34;
constexpr int kEconCrz = 35;
constexpr int kEconPathDes = 36;
constexpr int kFixInfo = 37;
constexpr int kDesForecasts = 38;
constexpr int kRteHold = 39;
constexpr int kHighest = 39;                  // page numbers run 0..39
}  // namespace cdu_page

// A page family's page-of-pages counter, 1-based, with the count beside it.
struct PageCounter {
    int page = 1;                             // page shown
    int count = 1;                            // pages the data fills, as last drawn
};

// LineSelectLatch values: 1..5 left keys of rows 1..5, 6..10 right keys of
// rows 1..5, 11 the left and 12 the right key of row 6.
constexpr int kLeftRow6Key = 11;
constexpr int kRightRow6Key = 12;

// What SELECT WAYPOINT does with the pick: insert it at SelectTargetLine, or
// (from the LEGS page's row-6 key) make it a direct target or a hold fix.
constexpr int kSelectForInsert = 0;
constexpr int kSelectForDirect = 1;
constexpr int kSelectForHoldAt = 2;

struct SmithsCduState {
    int CduPage = 0;                          // page shown; 0 until the first install sets 25
    std::array<char, kScratchpadCapacity> Scratchpad{};   // the entry line
    std::array<char, kCduMessageCapacity> CduMessage{};   // shown instead of the scratchpad while not empty
    // Latches of one frame, cleared by the dispatcher after the page ran.
    int LineSelectLatch = 0;                  // 0 none, else the key (see kLeftRow6Key)
    int PrevPageLatch = 0;                    // 0 or 1
    int NextPageLatch = 0;                    // 0 or 1
    int ExecLatch = 0;                        // 1: EXEC pressed, run at the frame
    int RteEntryLatch = 0;                    // 1: the RTE key opened the page
    int LegsEntryLatch = 0;                   // 1: the LEGS key opened the page
    int HoldEntryLatch = 0;                   // 1: the HOLD key was pressed
    // Page-of-pages counters of the families.
    PageCounter rte;
    PageCounter legs;
    PageCounter perf;
    PageCounter hold;
    PageCounter progress;
    PageCounter fix;
    PageCounter select;
    PageCounter departures;
    PageCounter arrivals;
    PageCounter pos;                          // POS INIT, POS REF, POS SHIFT
    PageCounter nav_status;                   // NAV STATUS, NAV OPTIONS
    PageCounter stored_plans;                 // STORED FLIGHT PLANS, six a page
    int ReturnPage = 0;                       // where SELECT WAYPOINT goes back to
    int SelectTargetLine = 0;                 // plan index the chosen waypoint goes to
    // Route pages
    int LegsMode = 0;                         // 0 normal, 1 direct and intercept, 2 hold
    int DirectPending = 0;                    // 1: a DIRECT TO line waits for EXEC
    int DirectSourceRow = 0;                  // ModPlan index copied in LegsMode 1; 0 none
    int HoldSourceRow = 0;                    // ModPlan index copied in LegsMode 2; 0 none
    int HoldAtPending = 0;                    // 1: the scratchpad holds "HOLD AT " and a fix
    NavRecord HoldAtCandidate;                // the fix of that "HOLD AT " text
    int SelectPurpose = 0;                    // what a SELECT WAYPOINT pick is for (kSelectFor...)
    int HoldDeletePending = 0;                // 1: a hold waits for EXEC to be removed
    int HoldDeleteRow = 0;                    // ActivePlan row of that hold
    // Selection flags of the procedure pages: 0 none, 1 chosen, 2 kept from before
    int SidChosen = 0;
    int SidTransitionChosen = 0;
    int DepartureRunwayChosen = 0;
    int StarChosen = 0;
    int StarTransitionChosen = 0;
    int ApproachChosen = 0;
    int ApproachTransitionChosen = 0;
    int ArrivalRunwayChosen = 0;
    int ApproachIndex = 0;                    // chosen approach's row; 0 none
    int ApproachTransitionIndex = 0;
    int SavedApproachIndex = 0;               // the two as EXEC matched them; ERASE puts them back
    int SavedApproachTransitionIndex = 0;
    // REF NAV DATA
    int RefNavMode = 1;                       // 1 the index, 2 a waypoint, 3 a navaid, 4 an airport
    NavRecord RefNavFix;                      // the looked-up fix of modes 2 to 4
    std::array<char, 8> RefNavRunway{};       // runway entered in mode 4; empty none
    int RefNavRunwayFt = 0;                   // its length, feet, as the airport's data had it
};

extern SmithsCduState g_smiths;               // SMITHS_FMS, SMITHS_FMS_BR

// [SECTION] GNS and MCU families
// The GNS pair's state is GnsPageState (its pages in gns_*.cpp); the MCU's
// page state is McuPageState.
struct KeypadState {
    int CduPage = 0;                          // page shown
    std::array<char, kScratchpadCapacity> Scratchpad{};
    std::array<char, kCduMessageCapacity> CduMessage{};
};

struct McuPageState {
    int repaint = 0;                          // 1: repaint the MCU page at the next draw
    int direct_entry = 0;                     // 1: keyboard entry mode is on
};

// GNS page numbers; 2 to 6 and 17 are empty.
namespace gns_page {
constexpr int kFlightPlan = 1;                // the list, a stored plan or the active plan
constexpr int kDirect = 7;
constexpr int kDatabaseWpt = 8;
constexpr int kNavigation = 9;
constexpr int kDeparture = 10;
constexpr int kArrival = 11;
constexpr int kApproach = 12;
constexpr int kAirway = 13;
constexpr int kSave = 14;
constexpr int kVnav = 15;
constexpr int kVnavData = 16;
constexpr int kVnavBlank = 17;                // VNAV from an open field: nothing drawn
constexpr int kHolding = 18;
constexpr int kPlan = 19;
constexpr int kPilotWpt = 20;
constexpr int kOffsetWpt = 21;
constexpr int kHighest = 21;
}  // namespace gns_page

constexpr int kGnsLineKeys = 10;              // 1..5 left keys, 6..10 right keys
constexpr int kGnsFieldCapacity = 16;         // the widest field (10 on SAVE) and its terminator
constexpr int kGnsProcedurePages = 3;         // DEPARTURE, ARRIVAL, APCH
constexpr int kGnsListLimit = 60;             // names of a procedure page's open list

// The GNS pair's state: one field editor over the plan shown.
struct GnsPageState {
    int GnsPage = 1;                          // page shown (gns_page)
    int GnsSubMode = 2;                       // on page 1: 1 the active plan, 2 the list and stored plans
    std::array<char, kGnsFieldCapacity> GnsField{};  // the field under the cursor, padded with blanks
    int GnsFieldWidth = 6;                    // characters the field takes
    int GnsEditing = 0;                       // 1: the field is open
    int GnsEditFresh = 0;                     // 1: the next key replaces the content
    int GnsLineSelect = 0;                    // key of this frame: 1..5 left, 6..10 right; 0 none
    std::array<int, kGnsLineKeys + 1> GnsLineState{};  // 1..10: selection state of each line key
    int GnsEnterLatch = 0;                    // frame latches, cleared after each frame
    int GnsPrevLatch = 0;
    int GnsNextLatch = 0;
    int GnsClearLatch = 0;
    int GnsFplLatch = 0;
    int GnsVnavLatch = 0;                     // the page keys that need the plan act at the frame
    int GnsHoldLatch = 0;
    int GnsDirectLatch = 0;
    int GnsInsertIndex = 0;                   // plan index the field stands for (1-based)
    int GnsPageScroll = 1;                    // page of the active plan
    int GnsListPage = 1;                      // page of the stored plan list
    int GnsStoredPage = 1;                    // page of a stored plan
    int GnsStoredIndex = 0;                   // stored plan shown; 0 none
    int GnsDeletePending = 0;                 // 1: "DELETE?" stands beside the entry
    int GnsReturnPage = 1;                    // where ENTER or a finished sub-page goes back to
    int GnsCandidate = 1;                     // 1-based row of CandidateList shown
    int GnsColumn = 1;                        // active plan's right column: 1 ALT, 2 DIS, 3 ETA, 4 ETE
    int GnsColumnChoice = 1;                  // the column the chooser stands at
    std::array<char, 4> GnsFlyover{'N', 'O'}; // "NO" or "YES"
    int GnsSubPage = 1;                       // page counter of NAV, VNAV, PERF, DIRECT, AIRWAY
    int GnsDirectSelected = 0;                // DIRECT: closest airport line chosen; 0 none
    double GnsFlightPathAngle = 0;            // degrees, VNAV DATA's default flight path angle
    int GnsNavAltMode = 0;                    // NAVIGATION key 7: 0 "ALT?", 1 "ETA?"
    // Procedure pages (index 0 DEPARTURE, 1 ARRIVAL, 2 APCH)
    int GnsListCursor = 0;                    // 0..12: place in the open list
    std::array<int, kGnsProcedurePages> GnsProcedurePage{1, 1, 1};  // page counters
    std::array<int, kGnsProcedurePages> GnsLegsShown{};  // 1: the chosen legs are on the page
    int GnsAirportNotFound = 0;               // 1: "AIRPORT NOT FOUND" after a failed ENTER
    std::array<std::array<char, 16>, kGnsListLimit + 1> GnsListNames{};  // the open list, rows 1..count
    int GnsListCount = 0;                     // names in the open list
    // PILOT ENTERED WPT and OFFSET WPT
    std::array<char, 24> GnsNewName{};        // the waypoint's name
    std::array<char, kGnsFieldCapacity> GnsLatText{};  // "----------" until entered
    std::array<char, kGnsFieldCapacity> GnsLonText{};
    double GnsNewLatitude = 0;                // degrees; 0 not yet set
    double GnsNewLongitude = 0;
    std::array<char, 8> GnsRadText{};         // OFFSET: "-----" until entered
    std::array<char, 8> GnsDisText{};         // OFFSET: "------" until entered
    int GnsOffsetCount = 0;                   // candidates of the base name
    // AIRWAY
    int GnsAirwayPlace = 0;                   // 1..16: the ending fix under the cursor; 0 none
    std::array<char, 16> GnsAirwayName{};     // airway fetched
    int GnsPreviousPage = 1;                  // page of the last frame, to clear the line states on a change
};

extern KeypadState g_gns;                     // GNSXLS, GNSXLS_LM
extern KeypadState g_mcu;                     // MCU, MCU_LM
extern McuPageState g_mcu_page;
extern GnsPageState g_gns_page;

// The GNS page state at install: the list of stored plans, its page 1.
void ResetGnsPageState();

// [SECTION] Scratchpad and message line
std::string_view ScratchpadText();
std::string_view CduMessageText();
// A character key: appended while the line holds fewer than 24 characters.
void ScratchpadCharacter(char c);
// SP: after "DELETE" clears both lines, else appends a blank with no limit
// test (only the buffer's end stops it).
void ScratchpadSpace();
// +/-: "-" on an empty line, flips a trailing sign, else appends "-".
void ScratchpadPlusMinus();
// DEL: arms the delete over whatever message stood.
void ScratchpadDelete();
// CLR: takes a standing message away, else the last character.
void ScratchpadClear();
// A page copies a value in; it is not cut to 24 (only to the buffer).
void SetScratchpad(std::string_view text);
void ClearScratchpad();
// A pilot error or notice; replaces any message.
void SetCduMessage(std::string_view text);
void ClearCduMessage();
// True while the message line holds the armed delete.
bool DeleteArmed();
