// gns_screen.h: the GNS pair's screen: its design grid, colours and text
// helpers, and the page functions the dispatcher calls.
//
// Pages are laid out on a 495 x 400 design grid in Courier New 33 bold; the
// dispatcher scales it to the surface. Colours carry meaning: cyan for what
// the pilot can set, magenta for the active leg, yellow for the cursor.
#pragma once

#include "cdu/keypad.h"
#include "display/gdi_objects.h"

#include <string_view>

constexpr float kGnsDesignWidth = 495;        // design units across the screen
constexpr float kGnsDesignHeight = 400;
constexpr float kGnsFontSize = 33;            // Courier New bold, pixel unit
constexpr float kGnsRowPitch = 40;            // one text row
constexpr float kGnsCursorCharWidth = 21;     // cursor width per character
constexpr float kGnsCursorHeight = 35;
constexpr ARGB kGnsWhite = 0xFFDEE6E9;        // titles
constexpr ARGB kGnsGreen = 0xFF00FA00;        // values
constexpr ARGB kGnsCyan = 0xFF02A7EB;         // data the pilot can set
constexpr ARGB kGnsMagenta = 0xFFFF13D5;      // the active leg
constexpr ARGB kGnsYellow = 0xFFFFFF00;       // the cursor, a last entry
constexpr ARGB kGnsBlack = 0xFF000000;

// One frame's drawing on the GNS screen.
class GnsScreen {
public:
    explicit GnsScreen(gdi::Graphics& graphics);
    void Text(std::string_view text, float x, float y, ARGB colour = kGnsGreen);
    // Black text on a yellow field 21 units a character and 35 high.
    void Cursor(std::string_view text, float x, float y);
    // The open field where it stands: a cursor while it is open, else cyan.
    void Field(float x, float y);
    void Title(std::string_view text, float x = 30) { Text(text, x, 0, kGnsWhite); }

private:
    gdi::Graphics& g_;
    gdi::Font font_;
    gdi::SolidBrush yellow_;
};

// Row n (1..9) of the grid.
constexpr float GnsRowY(int n) { return kGnsRowPitch * static_cast<float>(n); }

// [SECTION] Line keys
// The press of line key `key` this frame: its state steps 0, 1 .. `states`
// and back to 0, and every other key's state goes to 0. Returns the new state.
int GnsPressLine(int key, int states);
// Page stepping of one frame with wrap-around by the PREV and NEXT latches.
void GnsStepPages(int& page, int count);

// [SECTION] Shared by the pages
// The stored plan list as page 1 shows it: "NEXT FPL" first, then the files.
int GnsListEntryCount();
// The StoredPlanTable entry of list place `shown` (1-based); 0 none.
int GnsListEntry(int shown);
// A procedure page entered from page 1: the first of airport, the two
// procedure rows and the runway that still stands at "------" opens.
void GnsOpenProcedurePage();
// DATABASE WPT chose the airport of the procedure page it came from.
void GnsProcedureAirportChosen(std::string_view ident);
// Back to page 1 of the plan shown with the cursor on `entry`.
void GnsReturnToPlan(int entry);

// VNAV's page count: 2 without an active leg, else the list's pages and one.
int GnsVnavPageCount();

// [SECTION] The pages
void GnsFlightPlanPage(GnsScreen& screen);     // 1: the list, a stored plan, the active plan
void GnsDirectPage(GnsScreen& screen);         // 7
void GnsDatabaseWptPage(GnsScreen& screen);    // 8
void GnsNavigationPage(GnsScreen& screen);     // 9
void GnsProcedurePage(GnsScreen& screen);      // 10, 11, 12
void GnsAirwayPage(GnsScreen& screen);         // 13
void GnsSavePage(GnsScreen& screen);           // 14
void GnsVnavPage(GnsScreen& screen);           // 15
void GnsVnavDataPage(GnsScreen& screen);       // 16
void GnsHoldingPage(GnsScreen& screen);        // 18
void GnsPlanDataPage(GnsScreen& screen);       // 19
void GnsPilotWptPage(GnsScreen& screen);       // 20
void GnsOffsetWptPage(GnsScreen& screen);      // 21

// [SECTION] The dispatcher
// The GNS pair's frame: the page keys that need the plan, the page of
// GnsPage (which reads the latches, acts and draws), the latches cleared.
void GnsPageDispatcher(HDC hdc, int width, int height);
