// aircraft_profile.h: the options of one aircraft, from \orb\Aircraft\<name>.cfg:
// its speed schedule, VNAV limits, reference speeds, display start-up modes and
// colours, the [Lvars] bridge rows, and the AIRAC texts read with it.
//
// The profile is read after orb.cfg. Where it sets an option of orb.cfg again
// it writes that option in g_config (so the profile wins); only its
// FlightPlansFolder is a text of its own.
//
// The Mach numbers of the speed schedule are such options: they live in
// g_config alone, and after the profile is read CruiseMach and DescentMach go
// back to 0 whatever either file set.
#pragma once

#include "frame/global_config.h"

#include <array>
#include <span>

// The speeds of the schedule are set at 15000 feet, 1.9 % TAS a 1000 feet.
constexpr double TasAt15000(double ias) { return ias + ias * 0.019 * 15; }

struct ProfileColour {
    int red = 0;                        // 0 to 255
    int green = 0;
    int blue = 0;
};

struct AircraftProfile {
    // Speed schedule, knots
    int ClimbIas = 220;                 // climb speed
    double ClimbTas = TasAt15000(220);  // climb TAS at 15000 ft
    int CruiseIas = 250;                // cruise speed
    double CruiseTas = 0;               // as the profile gave it; 0 none
    int DescentIas = 220;               // descent speed
    double DescentTas = TasAt15000(220);  // descent TAS at 15000 ft
    int BestHoldIas = 220;              // hold speed; the descent speed unless the profile says
    double ClimbIasMin = 180;           // cost index range of the climb speed
    double ClimbIasMax = 250;
    double CruiseIasMin = 230;          // cost index range of the cruise speed
    double CruiseIasMax = 280;
    double DescentIasMin = 180;         // cost index range of the descent speed
    double DescentIasMax = 250;
    int CostIndex = -1;                 // 0 to 200; -1 none
    int ClimbIasBase = 220;             // a speed still at its base follows the cost index
    int CruiseIasBase = 250;
    int DescentIasBase = 220;
    double ClimbMachMin = 0;            // the cost index ranges as Mach at 15000 ft
    double ClimbMachMax = 0;
    double CruiseMachMin = 0;
    double CruiseMachMax = 0;
    double DescentMachMin = 0;
    double DescentMachMax = 0;
    double ClbSpdRest = 0;              // knots, climb speed restriction
    double ClbAltRest = 0;              // feet, below which it holds
    double DescSpdRest = 0;             // knots, descent speed restriction
    double DescAltRest = 0;             // feet
    int ClimbRate = 1800;               // feet a minute, planned climb
    double DescentRate = 1800;          // feet a minute, planned descent
    double FPA = 0;                     // degrees, descent flight path angle; 0 off
    int MaxCruise = 35000;              // feet, highest cruise altitude offered
    double HoldLegMins = 1;             // minutes, default hold leg
    int EngThrust = 0;                  // thousands of pounds
    // VNAV limits
    double MaxVnavClimbRate = 2500;     // feet a minute
    double MinVnavClimbRate = 1500;
    double MaxVnavDescRate = 3000;
    double MinVnavDescRate = 1500;
    double MinVnavClimbIas = 180;       // knots
    double MinVnavIas = 155;            // knots
    double MinVnavRadioAlt = 1000;      // feet
    double VnavSetSpdRestDist = 25;     // nm before a restriction at which its speed is set
    int VnavSetMachCruiseSpd = 0;       // 1: Mach hold with CruiseMach at top of climb
    // Take-off, landing and reference values
    int TOFLAPS = 0;                    // take-off flaps
    int LDGFLAPS = 0;                   // landing flaps
    OptionText TOFLAPSRANGE = MakeOptionText(",1,5,10,15,25,");  // kept with a "," behind
    OptionText APPRFLAPSMIN = MakeOptionText("15");  // flap names of the approach rows
    OptionText APPRFLAPSMID = MakeOptionText("30");
    OptionText APPRFLAPSMAX = MakeOptionText("40");
    int VREF = 0;                       // knots
    int VREFMIN = 150;                  // knots, with APPRFLAPSMIN
    int VREFMID = 145;
    int VREFMAX = 135;
    int V1 = 0;                         // knots
    int VR = 0;
    int V2 = 0;
    // Identity and files
    OptionText ModelId{};               // model text of the identification page
    OptionText EngId{};                 // engine text; no page shows it
    OptionText DU1000Style = MakeOptionText("AIRBUS");  // stored; nothing decides by it
    OptionText PerformanceData{};       // performance file name; empty none
    OptionText FlightPlansFolder{};     // the plan list looks here before orb.cfg's
    // Display start-up modes
    int EFS50HsiMode = 1;               // 1 to 7
    int EFS50NavMode = 1;               // 1 to 2
    int DU1000EHSIMode = 0;             // 0 to 3
    int HWB737NDMode = 1;               // 1 to 7
    int HWMD11NDMode = 3;               // 2 to 5, else 1
    int MD80EHSIMode = 3;               // 0 to 3
    int PROLINE4MFDMode = 3;            // 0 to 3
    // Colours of the pictures
    ProfileColour A320EADIBkgrd{0, 0, 0};
    ProfileColour A320EADITape{100, 100, 100};
    ProfileColour A320EADISky{41, 165, 201};
    ProfileColour A320EADIGrnd{155, 103, 53};
    ProfileColour B777PFDBkgrd{0, 0, 0};
    ProfileColour B777PFDTape{100, 100, 100};
    ProfileColour B777PFDSky{40, 117, 197};
    ProfileColour B777PFDGrnd{120, 102, 28};
    ProfileColour C17MfdBkgrd{0, 0, 0};
    ProfileColour C17MfdSky{2, 138, 175};
    ProfileColour C17MfdGrnd{131, 73, 9};
    ProfileColour HWB737NDBkgrd{0, 0, 0};
    ProfileColour HWMD11NDBkgrd{0, 0, 0};
    ProfileColour P1000MFDBkgrd{0, 0, 0};
    ProfileColour EFS50EHSIBkgrd{0, 0, 0};
    ProfileColour DU1000EHSIBkgrd{0, 0, 0};
    ProfileColour PROLINE4MFDBkgrd{0, 0, 0};
    ProfileColour MD80EHSIBkgrd{0, 0, 0};
    // Options of the profile alone
    int DispFPV = 0;                    // 1: flight path vector on the PFDs
    int ResetApHdg = 0;                 // 1: SERVER rewrites the commanded heading
    int SetMCPCrzAltOnFlightPlanLoad = 0;  // 1: plan load writes the cruise altitude
    int ShowFloatingTodBodIndicators = 0;  // 1: floating T/D and B/D markers
};

extern AircraftProfile g_profile;

// [Lvars]: rows that bridge the aircraft's own local variables to the NDs.

constexpr int kLvarRowLimit = 400;      // some hundreds; further rows are dropped
constexpr int kLvarNameSize = 128;      // a local variable's name
constexpr int kLvarActionSize = 32;     // the longest action word is 12 characters

enum class LvarAction : int {
    None = -1,                          // no action, or a word not known: the row never acts
    MapRange,
    TcasOn,
    DisplayInts,
    DisplayNavs,
    DisplayApts,
    NDCompassMode,
    NDArcMode,
    NDPlanMode,
    NDMapMode,
    NDVorMode,
    NDAppMode,
    NDCtrMapMode,
    Vor1BrgPtr,
    Vor2BrgPtr,
    LnavOn,
};

struct LvarRow {
    std::array<char, kLvarNameSize> name{};         // the local variable, blanks inside kept
    int value = 0;                                  // the variable's value at which the action applies
    std::array<char, kLvarActionSize> action_text{};  // the word as written
    LvarAction action = LvarAction::None;
    int parameter = -1;                             // the action's argument; MapRange: the range
};

struct LvarTable {
    std::array<LvarRow, kLvarRowLimit> rows{};      // rows 0 .. count - 1
    int count = 0;
};

extern LvarTable g_lvars;

// The AIRAC line of navs.txt, read with the profile.
constexpr int kAiracTextSize = 32;

struct AiracTexts {
    std::array<char, kAiracTextSize> cycle{};       // "AIRAC 0601"; empty without the line
    std::array<char, kAiracTextSize> validity{};    // "JAN19FEB16/06"
    std::array<char, kAiracTextSize> dates{};       // "19JAN - 16FEB"
};

extern AiracTexts g_airac;

// Reads the AIRAC line, the profile of that name (AircraftProfileName is set
// by the caller), and works out what follows from it. A missing file leaves
// the defaults, and the derived values are worked out all the same.
void LoadAircraftProfile(const char* name);

// The AIRAC line of RootFolder\orb\Navdata\navs.txt into g_airac.
void ReadAiracLine();
// Reads a profile's lines from an open file: options and the [Lvars] block.
void ReadAircraftProfileFile(ConfigFileReader& reader, const char* label);
// One line of the [Lvars] block, as it stands; false when it made no row.
bool ReadLvarLine(const char* line);
// The steps after the file: display modes, limit Mach numbers, performance
// table, cost index, Mach numbers, TAS and base speeds.
void FinishAircraftProfile();
// Speeds still at their base value follow the cost index (the CDU calls it
// too when the pilot enters one).
void ApplyCostIndex();
// The default climb and descent TAS from the present speeds.
void DeriveDefaultTas();

std::span<const OptionEntry> ProfileOptionTable();
