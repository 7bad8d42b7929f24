// global_config.h: the options of orb.cfg that hold for all aircraft.
//
// Read once at start-up; the aircraft profile, read later, may set many of the
// same options again and so wins. The CDU's option pages change a few of them
// in memory; nothing is written back.
#pragma once

#include <array>

constexpr int kConfigTextSize = 260;

struct GlobalConfig {
    int AdjustTurnDistforAngle = 0;     // 1: change distance grows 0.028 nm a degree of turn
    int ArmPauseAtDistFromDest = 0;     // distance pause shown armed
    int ArmPauseAtTod = 0;              // pause at top of descent shown armed
    int AutoSetLOCFreq = 0;             // 1: tune the localizer at top of descent
    double ClimbMach = 0;               // climb Mach for predictions; 0 none
    double CruiseMach = 0;              // cruise Mach for predictions and the Mach write
    int DecLatLonDisp = 0;              // 1: GNS pages show decimal degrees
    double DescentMach = 0;             // descent Mach for predictions
    int DispAppPtrnAlts = 0;            // 1: approach pattern altitudes shown
    int DispC17SpdTrend = 0;            // 1: speed trend on the C-17 PFD
    int DispETALocalTime = 0;           // 1: ETAs in local time
    int DisplayLnavStatusOnMD11ND = 0;
    int DisplayVnavStatusOnMD11ND = 0;
    int DisplayMagVarOnGnsxlsNavPage = 0;
    int DispPrevWpt = 0;                // 1: last passed waypoint stays on the map
    int DrawBodArcOnEFS50EHSI = 0;
    int DrawBodArcOnP1000MFD = 0;
    int DrawTcasWindowOnP1000MFD = 1;
    int EadiDualCue = 0;
    int EADIHdgTape = 0;
    int EhsiStaticHdgPointer = 1;
    int ExpandEADI = 0;
    int ExpandEADILnav = 0;
    std::array<char, kConfigTextSize> FlightPlansFolder{};  // empty: \orb\flightplans\ below RootFolder
    double FlyoverWptChgDist = 1.5;     // nm; taken only when its integer part is above 0
    int HdgHoldOnLnavOn = 0;
    int Lnav1xAtTod = 0;
    int LnavOffAtLastWpt = 0;
    int LnavOnNavLock = 0;
    int LnavSetEnRouteFreqs = 0;
    int LoadFuelonFlightPlanLoad = 0;
    int McuShowActiveRwys = 0;
    int MFDTextAntiAlias = 1;           // accepted; text is always anti-aliased
    double MinMapRange = 10;            // nm
    std::array<char, kConfigTextSize> ParkingFile{};
    int PauseAtDistFromDest = 20;       // nm; the pause is on only when set in a file
    int PauseAtDistFromDestOn = 0;      // 1: the distance pause is on (and armed)
    int PauseAtTod = 0;
    int SaveFPLCruiseAlt = 0;
    int SequenceFPlanWpts = 0;
    int SetDestLoadTowerViewDist = 0;
    int SetMCPSpdOnFlightPlanLoad = 0;
    int SetSpdOffwhenAPMasterSetOff = 0;
    int SetUTCTimeOnFPLoad = 0;
    int SetWptBaro = 0;
    int ShowTodBodIndicators = 1;
    int synchfplanwithfsgps = 0;
    int TcasVertRange = 140;            // hundreds of feet
    int TransAlt = 18000;               // feet
    int VnavOffAtLastWpt = 0;
    int VnavOffOnManAltChg = 0;
    int VnavSetAlts = 1;
    int VnavSetSpd = 1;
    int VnavSetSpdOffOnManSpdChg = 0;
    std::array<char, 8> WeightUnit{{'L', 'B', 'S', 0}};
    double WptChgDist = 3;              // nm
    double WptChgSecs = 0;
    double WptProcChgDist = 3;
    double WptProcChgSecs = 0;
};

extern GlobalConfig g_config;

// Reads RootFolder\orb\orb.cfg, then detects the simulator generation, runs the
// flight log's first pass and asks for a repaint.
void LoadGlobalConfig();
