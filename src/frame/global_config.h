// global_config.h: the options of orb.cfg that hold for all aircraft, and the
// line reader that orb.cfg and the aircraft profiles share.
//
// Read once at start-up; the aircraft profile, read later, may set many of the
// same options again and so wins. The CDU's option pages change a few of them
// in memory; nothing is written back.
//
// Index
//   [SECTION] Options
//   [SECTION] The shared line reader
//   [SECTION] The option tables
//   [SECTION] Notes for orbnav
#pragma once

#include "frame/data_text.h"

#include <array>
#include <cstddef>
#include <span>

// [SECTION] Options

constexpr int kConfigTextSize = 260;    // a text option: a folder path of MAX_PATH at most

using OptionText = std::array<char, kConfigTextSize>;

// A text option's initial value, for default member initialisers.
constexpr OptionText MakeOptionText(const char* text) {
    OptionText out{};
    for (int i = 0; text[i] != 0 && i < kConfigTextSize - 1; ++i) out[i] = text[i];
    return out;
}

struct GlobalConfig {
    int AdjustTurnDistforAngle = 0;     // 1: change distance grows 0.028 nm a degree of turn
    int ArmPauseAtDistFromDest = 0;     // distance pause shown armed
    int ArmPauseAtTod = 0;              // pause at top of descent shown armed
    int AutoSetLOCFreq = 0;             // 1: tune the localizer at top of descent
    double ClimbMach = 0;               // climb Mach for predictions; 0 none (a profile may set it)
    double CruiseMach = 0;              // cruise Mach for predictions and the Mach write
    int DecLatLonDisp = 0;              // 1: GNS pages show decimal degrees
    double DescentMach = 0;             // descent Mach for predictions
    int DispAppPtrnAlts = 0;            // 1: approach pattern altitudes shown
    int DispC17SpdTrend = 0;            // 1: speed trend on the C-17 PFD
    int DispETALocalTime = 0;           // 1: ETAs in local time
    int DisplayLnavStatusOnMD11ND = 0;  // 1: LNAV status on the MD-11 ND
    int DisplayVnavStatusOnMD11ND = 0;  // 1: VNAV status on the MD-11 ND
    int DisplayMagVarOnGnsxlsNavPage = 0;  // 1: variation on the GNS navigation page
    int DispPrevWpt = 0;                // 1: last passed waypoint stays on the map
    int DrawBodArcOnEFS50EHSI = 0;      // 1: bottom-of-descent arc on the EFS 50 EHSI
    int DrawBodArcOnP1000MFD = 0;       // 1: bottom-of-descent arc on the P1000 MFD
    int DrawTcasWindowOnP1000MFD = 1;   // 1: traffic window on the P1000 MFD
    int EadiDualCue = 0;                // 1: dual-cue flight director on the EADIs
    int EADIHdgTape = 0;                // 1: heading tape on the EADI
    int EhsiStaticHdgPointer = 1;       // 1: the EHSI heading pointer stands still
    int ExpandEADI = 0;                 // 1: expanded EADI picture
    int ExpandEADILnav = 0;             // 1: expanded EADI picture with LNAV on
    OptionText FlightPlansFolder{};     // empty: \orb\flightplans\ below RootFolder
    double FlyoverWptChgDist = 1.5;     // nm; taken only when its integer part is above 0
    int HdgHoldOnLnavOn = 0;            // 1: LNAV engage also engages heading hold
    int Lnav1xAtTod = 0;                // 1: simulation rate back to 1 at top of descent
    int LnavOffAtLastWpt = 0;           // 1: LNAV off at the last waypoint
    int LnavOnNavLock = 0;              // 1: LNAV switching also sends the nav hold event
    int LnavSetEnRouteFreqs = 0;        // 1: en-route radio tuning
    int LoadFuelonFlightPlanLoad = 0;   // 1: plan load fills the tanks
    int McuShowActiveRwys = 0;          // 1: active runways on the MCU
    int MFDTextAntiAlias = 1;           // accepted; text is always anti-aliased
    double MinMapRange = 10;            // nm, lowest ND range of the range knob
    OptionText ParkingFile{};           // file of parking positions; empty none
    int PauseAtDistFromDest = 20;       // nm; the pause is on only when set in a file
    int PauseAtDistFromDestOn = 0;      // 1: the distance pause is on (and armed)
    int PauseAtTod = 0;                 // 1: pause at top of descent
    int SaveFPLCruiseAlt = 0;           // 1: cruise altitude saved with a plan
    int SequenceFPlanWpts = 0;          // 1: waypoints sequence with LNAV off too
    int SetDestLoadTowerViewDist = 0;   // above 0: tower view near the destination
    int SetMCPSpdOnFlightPlanLoad = 0;  // 1: plan load writes the autopilot speed
    int SetSpdOffwhenAPMasterSetOff = 0;  // 1: speed hold off with the autopilot master
    int SetUTCTimeOnFPLoad = 0;         // 1: plan load sets the zulu time
    int SetWptBaro = 0;                 // 1: altimeter set at waypoints and plan load
    int ShowTodBodIndicators = 1;       // 1: top and bottom of descent markers
    int synchfplanwithfsgps = 0;        // 1: each active plan goes to the simulator's GPS
    int TcasVertRange = 140;            // hundreds of feet (the file gives feet)
    int TransAlt = 18000;               // feet
    int VnavOffAtLastWpt = 0;           // 1: VNAV off at the last waypoint in cruise
    int VnavOffOnManAltChg = 0;         // 1: a pilot's altitude change ends VNAV
    int VnavSetAlts = 1;                // 1: VNAV writes autopilot altitudes
    int VnavSetSpd = 1;                 // 1: VNAV writes autopilot speeds
    int VnavSetSpdOffOnManSpdChg = 0;   // 1: a pilot's speed change stops the speed writes
    OptionText WeightUnit = MakeOptionText("LBS");  // upper case; "KGS" shows kilograms
    double WptChgDist = 3;              // nm, waypoint change distance
    double WptChgSecs = 0;              // above 0: change distance by time, seconds
    double WptProcChgDist = 3;          // nm, the same for procedure waypoints
    double WptProcChgSecs = 0;          // seconds, the same by time for procedure waypoints
    int WriteVnavProfile = 0;           // 1: EXEC writes \orb\vnav_profile.txt, the predicted profile
};

extern GlobalConfig g_config;

// Reads RootFolder\orb\orb.cfg, then marks the configuration loaded, detects
// the simulator generation and asks for a repaint. A missing file leaves the
// defaults. The start-up follows it with the pages' preset texts and the
// flight log's first pass.
void LoadGlobalConfig();

// [SECTION] The shared line reader
//
// Both files are read a line at a time into 299 bytes, so a line holds 298
// characters; the rest of a longer line comes as the next line. A line is
// split by turning every blank into "*", the first "=" into a blank, and
// taking the first two words: key and value. "*" in the value reads as a
// blank again, so a blank before "=" stays in the key and spoils it.

constexpr int kConfigLineSize = 299;    // read size: 298 characters and the terminator

struct ConfigLine {
    std::array<char, kConfigLineSize> key{};    // as read; keys compare without case
    std::array<char, kConfigLineSize> value{};  // empty when the line has none
};

// Splits one line; false for a comment (first character ";").
bool SplitConfigLine(const char* line, ConfigLine& out);

// Reads lines as fgets does with kConfigLineSize, counting the file's own
// line numbers (a split long line keeps its number).
struct ConfigFileReader {
    LineReader lines;                   // the file
    int line_number = 0;                // of the text last read, from 1
    bool at_line_start = true;          // the last read ended a line
    std::array<char, kConfigLineSize> text{};
    // Opens the file and starts at its first line; false when it doesn't open.
    bool Open(const char* path);
    bool Next();
};

// Number readers as the module reads every option: an integer takes the
// leading digits, a float its leading decimal number; anything else, and a
// number out of range, reads 0.
int ReadIntegerValue(const char* text);
double ReadFloatValue(const char* text);
// Cuts towards zero; out of the int range reads 0.
int TruncateToInt(double value);
// Case-blind comparison of two keys (ASCII).
bool SameKey(const char* a, const char* b);
// Bounded copy; the result is always terminated.
void CopyText(char* out, size_t out_size, const char* text);

// [SECTION] The option tables
//
// Each key of a file is one row: its kind, the rule that decides whether a
// value is taken, and the option it sets. The profile's table points at the
// same global options where it sets them again.

enum class OptionKind {
    Integer,         // leading digits
    Float,           // leading decimal number
    FloatAsInteger,  // read as a float, kept cut to an integer
    Text,            // as it stands
};

enum class OptionRule {
    AsRead,                // taken whatever it is
    AboveZero,             // taken only above 0
    IntegerPartAboveZero,  // taken only when its integer part is above 0
    TcasFeet,              // feet: 1000 or more stored in hundreds, less ignored
    PauseAtTod,            // 1 also arms the pause
    PauseAtDistFromDest,   // above 0 also turns the pause on and arms it
    UpperCase,             // text kept in upper case
    HoldLegMins,           // 0 reads 1
    EngThrust,             // above 1000 stored in thousands
    AppendComma,           // text kept with a "," behind it
    Colour,                // 0 to 255, held to that range
    IasFromTas,            // a TAS that also sets its IAS (held in `derived`)
};

struct OptionEntry {
    const char* key;                    // as spelled in the files
    OptionKind kind;
    OptionRule rule;
    int* integer;                       // the option, by kind; the others are null
    double* real;
    OptionText* text;
    int* derived;                       // IasFromTas: the IAS the TAS sets
    const char* option;                 // name of the option set, when not the key itself
};

// Applies a value to its option by the entry's kind and rule; false when the
// rule refused it and the option kept its value.
bool ApplyOption(const OptionEntry& entry, const char* value);
// The option's present value as text ("%d", "%.6g" or the text).
void FormatOptionValue(const OptionEntry& entry, char* out, size_t out_size);
// The option an entry sets: `option` or else the key.
const char* OptionName(const OptionEntry& entry);
// The row of a table whose key equals `key` without regard to case; null if none.
const OptionEntry* FindOption(std::span<const OptionEntry> table, const char* key);

std::span<const OptionEntry> GlobalOptionTable();

// Reads orb.cfg's lines from an open file (the steps between open and close);
// `label` names the file in notes.
void ReadGlobalConfigFile(ConfigFileReader& reader, const char* label);

// [SECTION] Notes for orbnav
//
// The module never listens; `orbnav config` does, to tell a user why a line
// did not take.

enum class ConfigNote {
    FileRead,       // the file opened (line 0)
    FileMissing,    // the file did not open (line 0); defaults stand
    Taken,          // a known key, its value taken
    Refused,        // a known key, its value refused by the key's rule
    UnknownKey,     // no option has this key
    LvarRow,        // a row of the [Lvars] block
    LvarDropped,    // a row past the [Lvars] table's size
};

struct ConfigNoteInfo {
    const char* file;                   // label of the file
    int line;                           // line number in the file, from 1; 0 for file notes
    ConfigNote note;
    const char* key;                    // as read
    const char* value;                  // as read
    const OptionEntry* entry;           // Taken, Refused: the row
};

using ConfigObserver = void (*)(const ConfigNoteInfo& info);
extern ConfigObserver g_config_observer;  // null in the module

// Sends a note to the observer if one listens.
void NoteConfigLine(const ConfigNoteInfo& info);
