// c17_mfd.h: which page each of the C-17 multi-function display's four
// screens shows. One gauge, C17_MFD, serves all four; the first character of
// an instance's parameter string names its screen. The outer panel asks for
// pages through one local variable a screen; the gauge's keys and its
// parameter words preset pages too.
//
// Pages: 0 navigation, 1 primary flight, 3 to 6 the map pages, 9 to 11 the
// engine pages, 12 configuration; 2, 7 and 8 show nothing.
#pragma once

#include "display/display_state.h"
#include "display/display_surface.h"
#include "frame/gauge_table.h"

#include <array>

// The outer panel's request variables, screens 1 to 4, spelled as panels spell them.
inline constexpr std::array<const char*, kC17ScreenCount> kC17ModeVariableNames = {
    "MFDX1 mode", "MFDx2 mode", "MFDx3 mode", "MFDx4 mode"};
constexpr int kC17NoRequest = 10;       // a request variable's value when nothing is asked

constexpr int kC17PageNavigation = 0;
constexpr int kC17PagePrimaryFlight = 1;
constexpr int kC17PageMap = 3;          // the first map page; the surface layer is hidden on it
constexpr int kC17PageMapLast = 5;      // pages 3 to 5: the map pages the panel's keys step through
constexpr int kC17PageMapRange = 6;
constexpr int kC17PageEngines = 9;
constexpr int kC17PageEnginesSecondary = 10;
constexpr int kC17PageOilAndFuel = 11;
constexpr int kC17PageConfiguration = 12;

// The screen a parameter string names: the digit of its first character, 0 without one.
int C17ScreenNumber(const char* parameters);
// PANEL_SERVICE_PRE_UPDATE after the tick: the trace lines, then the mode
// routine of the instance's screen (a screen number of 0 counts as 1).
void C17MfdUpdate(GAUGEHDR* gauge, const char* parameters);
// The mode routine of screen 1 to 4: reads its request variable and acts on it.
void ProcessC17ModeRequest(int screen, GAUGEHDR* gauge);
// The map form's next page (request value 1 and the map key).
void AdvanceC17MapForm(C17Screen& screen);
// [SECTION] Drawing
// The picture an instance draws: its screen number 1 to 4, or 0 for a
// cleared surface (no leading digit; a "VC" instance while the main panel
// shows; screen 1 while its pop-up shows, unless the parameter has "WN").
int C17DrawInstance(const char* parameters);
// The page of the screen `surface.instance` names, drawn through the
// working record: loaded before, stored back after.
void DrawC17Mfd(const DisplaySurface& surface);

// [SECTION] The gauge's keys, on the working record and its screen
void C17KeyPrimaryFlight();             // page 1
void C17KeyMap();                       // the map form advances; pages 1 and 2 stay
void C17KeyEngines();                   // 9, 10, 11 in turn; from any other page 11
void C17KeyConfiguration();             // page 12
// C17_MFCP's map keys, on all four screens and the working record alike:
// one map page back (5 to 4, 4 to 3) or forward (3 to 4, 4 to 5).
void C17MapPageStep(int direction);

// PANEL_SERVICE_PRE_DRAW: the parameter words "PFD", "MFD", "ENG", "CFG"
// (with "_VC" or "_WN") preset their screen's page at every draw.
void ApplyC17PresetWord(const char* parameters);
