// aircraft_profile.cpp: reading \orb\Aircraft\<name>.cfg and working out what
// follows from it.
//
// Index
//   [SECTION] The option table of a profile
//   [SECTION] The AIRAC line
//   [SECTION] The [Lvars] block
//   [SECTION] Reading a profile
//   [SECTION] After the file
#include "frame/aircraft_profile.h"

#include "frame/module_state.h"

#include <cmath>
#include <cstdio>
#include <cstring>

AircraftProfile g_profile;
LvarTable g_lvars;
AiracTexts g_airac;

// Marks BestHoldIas as not given while the file is read.
constexpr int kBestHoldIasAbsent = -999;

// [SECTION] The option table of a profile
//
// Every key of the profile, by family. Options that orb.cfg knows too point at
// g_config: there the profile takes a value as it stands, except the fly-over
// distance and the traffic range, which keep their tests.

namespace {
using K = OptionKind;
using R = OptionRule;

constexpr OptionEntry Int(const char* key, int* field, R rule = R::AsRead, const char* option = nullptr) {
    return {key, K::Integer, rule, field, nullptr, nullptr, nullptr, option};
}
constexpr OptionEntry Real(const char* key, double* field, R rule = R::AsRead) {
    return {key, K::Float, rule, nullptr, field, nullptr, nullptr, nullptr};
}
constexpr OptionEntry RealAsInt(const char* key, int* field) {
    return {key, K::FloatAsInteger, R::AsRead, field, nullptr, nullptr, nullptr, nullptr};
}
constexpr OptionEntry Text(const char* key, OptionText* field, R rule = R::AsRead) {
    return {key, K::Text, rule, nullptr, nullptr, field, nullptr, nullptr};
}
constexpr OptionEntry TasOf(const char* key, double* tas, int* ias) {
    return {key, K::Float, R::IasFromTas, nullptr, tas, nullptr, ias, nullptr};
}
constexpr OptionEntry Colour(const char* key, int* component) {
    return {key, K::Integer, R::Colour, component, nullptr, nullptr, nullptr, nullptr};
}

constexpr OptionEntry kProfileOptions[] = {
    // Speed schedule
    RealAsInt("ClimbIas", &g_profile.ClimbIas),
    TasOf("ClimbTas", &g_profile.ClimbTas, &g_profile.ClimbIas),
    RealAsInt("CruiseIas", &g_profile.CruiseIas),
    TasOf("CruiseTas", &g_profile.CruiseTas, &g_profile.CruiseIas),
    RealAsInt("DescentIas", &g_profile.DescentIas),
    TasOf("DescentTas", &g_profile.DescentTas, &g_profile.DescentIas),
    RealAsInt("BestHoldIas", &g_profile.BestHoldIas),
    Real("ClimbIasMin", &g_profile.ClimbIasMin),
    Real("ClimbIasMax", &g_profile.ClimbIasMax),
    Real("CruiseIasMin", &g_profile.CruiseIasMin),
    Real("CruiseIasMax", &g_profile.CruiseIasMax),
    Real("DescentIasMin", &g_profile.DescentIasMin),
    Real("DescentIasMax", &g_profile.DescentIasMax),
    Int("CostIndex", &g_profile.CostIndex),
    Real("ClimbMach", &g_config.ClimbMach),
    Real("CruiseMach", &g_config.CruiseMach),
    Real("DescentMach", &g_config.DescentMach),
    Real("ClbSpdRest", &g_profile.ClbSpdRest),
    Real("ClbAltRest", &g_profile.ClbAltRest),
    Real("DescSpdRest", &g_profile.DescSpdRest),
    Real("DescAltRest", &g_profile.DescAltRest),
    RealAsInt("ClimbRate", &g_profile.ClimbRate),
    Real("DescentRate", &g_profile.DescentRate),
    Real("FPA", &g_profile.FPA),
    RealAsInt("MaxCruise", &g_profile.MaxCruise),
    Real("HoldLegMins", &g_profile.HoldLegMins, R::HoldLegMins),
    Int("EngThrust", &g_profile.EngThrust, R::EngThrust),
    // VNAV limits
    Real("MaxVnavClimbRate", &g_profile.MaxVnavClimbRate),
    Real("MinVnavClimbRate", &g_profile.MinVnavClimbRate),
    Real("MaxVnavDescRate", &g_profile.MaxVnavDescRate),
    Real("MinVnavDescRate", &g_profile.MinVnavDescRate),
    Real("MinVnavClimbIas", &g_profile.MinVnavClimbIas),
    Real("MinVnavIas", &g_profile.MinVnavIas),
    Real("MinVnavRadioAlt", &g_profile.MinVnavRadioAlt),
    Real("VnavSetSpdRestDist", &g_profile.VnavSetSpdRestDist),
    Int("VnavSetMachCruiseSpd", &g_profile.VnavSetMachCruiseSpd),
    // Take-off, landing and reference values
    Int("TOFLAPS", &g_profile.TOFLAPS),
    Int("LDGFLAPS", &g_profile.LDGFLAPS),
    Text("TOFLAPSRANGE", &g_profile.TOFLAPSRANGE, R::AppendComma),
    Text("APPRFLAPSMIN", &g_profile.APPRFLAPSMIN),
    Text("APPRFLAPSMID", &g_profile.APPRFLAPSMID),
    Text("APPRFLAPSMAX", &g_profile.APPRFLAPSMAX),
    Int("VREF", &g_profile.VREF),
    Int("VREFMIN", &g_profile.VREFMIN),
    Int("VREFMID", &g_profile.VREFMID),
    Int("VREFMAX", &g_profile.VREFMAX),
    Int("V1", &g_profile.V1),
    Int("VR", &g_profile.VR),
    Int("V2", &g_profile.V2),
    // Identity and files
    Text("ModelId", &g_profile.ModelId),
    Text("EngId", &g_profile.EngId),
    Text("DU1000Style", &g_profile.DU1000Style),
    Text("PerformanceData", &g_profile.PerformanceData),
    Text("ParkingFile", &g_config.ParkingFile),
    Text("FlightPlansFolder", &g_profile.FlightPlansFolder),
    Text("WeightUnit", &g_config.WeightUnit, R::UpperCase),
    // Display start-up modes (corrected after the file)
    Int("EFS50HsiMode", &g_profile.EFS50HsiMode),
    Int("EFS50NavMode", &g_profile.EFS50NavMode),
    Int("DU1000EHSIMode", &g_profile.DU1000EHSIMode),
    Int("HWB737NDMode", &g_profile.HWB737NDMode),
    Int("HWMD11NDMode", &g_profile.HWMD11NDMode),
    Int("MD80EHSIMode", &g_profile.MD80EHSIMode),
    Int("PROLINE4MFDMode", &g_profile.PROLINE4MFDMode),
    // Colours
    Colour("A320EADIBkgrdColorRed", &g_profile.A320EADIBkgrd.red),
    Colour("A320EADIBkgrdColorGreen", &g_profile.A320EADIBkgrd.green),
    Colour("A320EADIBkgrdColorBlue", &g_profile.A320EADIBkgrd.blue),
    Colour("A320EADITapeColorRed", &g_profile.A320EADITape.red),
    Colour("A320EADITapeColorGreen", &g_profile.A320EADITape.green),
    Colour("A320EADITapeColorBlue", &g_profile.A320EADITape.blue),
    Colour("A320EADISkyColorRed", &g_profile.A320EADISky.red),
    Colour("A320EADISkyColorGreen", &g_profile.A320EADISky.green),
    Colour("A320EADISkyColorBlue", &g_profile.A320EADISky.blue),
    Colour("A320EADIGrndColorRed", &g_profile.A320EADIGrnd.red),
    Colour("A320EADIGrndColorGreen", &g_profile.A320EADIGrnd.green),
    Colour("A320EADIGrndColorBlue", &g_profile.A320EADIGrnd.blue),
    Colour("B777PFDBkgrdColorRed", &g_profile.B777PFDBkgrd.red),
    Colour("B777PFDBkgrdColorGreen", &g_profile.B777PFDBkgrd.green),
    Colour("B777PFDBkgrdColorBlue", &g_profile.B777PFDBkgrd.blue),
    Colour("B777PFDTapeColorRed", &g_profile.B777PFDTape.red),
    Colour("B777PFDTapeColorGreen", &g_profile.B777PFDTape.green),
    Colour("B777PFDTapeColorBlue", &g_profile.B777PFDTape.blue),
    Colour("B777PFDSkyColorRed", &g_profile.B777PFDSky.red),
    Colour("B777PFDSkyColorGreen", &g_profile.B777PFDSky.green),
    Colour("B777PFDSkyColorBlue", &g_profile.B777PFDSky.blue),
    Colour("B777PFDGrndColorRed", &g_profile.B777PFDGrnd.red),
    Colour("B777PFDGrndColorGreen", &g_profile.B777PFDGrnd.green),
    Colour("B777PFDGrndColorBlue", &g_profile.B777PFDGrnd.blue),
    Colour("C17MfdBkgrdColorRed", &g_profile.C17MfdBkgrd.red),
    Colour("C17MfdBkgrdColorGreen", &g_profile.C17MfdBkgrd.green),
    Colour("C17MfdBkgrdColorBlue", &g_profile.C17MfdBkgrd.blue),
    Colour("C17MfdSkyColorRed", &g_profile.C17MfdSky.red),
    Colour("C17MfdSkyColorGreen", &g_profile.C17MfdSky.green),
    Colour("C17MfdSkyColorBlue", &g_profile.C17MfdSky.blue),
    Colour("C17MfdGrndColorRed", &g_profile.C17MfdGrnd.red),
    Colour("C17MfdGrndColorGreen", &g_profile.C17MfdGrnd.green),
    Colour("C17MfdGrndColorBlue", &g_profile.C17MfdGrnd.blue),
    Colour("HWB737NDBkgrdColorRed", &g_profile.HWB737NDBkgrd.red),
    Colour("HWB737NDBkgrdColorGreen", &g_profile.HWB737NDBkgrd.green),
    Colour("HWB737NDBkgrdColorBlue", &g_profile.HWB737NDBkgrd.blue),
    Colour("HWMD11NDBkgrdColorRed", &g_profile.HWMD11NDBkgrd.red),
    Colour("HWMD11NDBkgrdColorGreen", &g_profile.HWMD11NDBkgrd.green),
    Colour("HWMD11NDBkgrdColorBlue", &g_profile.HWMD11NDBkgrd.blue),
    Colour("P1000MFDBkgrdColorRed", &g_profile.P1000MFDBkgrd.red),
    Colour("P1000MFDBkgrdColorGreen", &g_profile.P1000MFDBkgrd.green),
    Colour("P1000MFDBkgrdColorBlue", &g_profile.P1000MFDBkgrd.blue),
    Colour("EFS50EHSIBkgrdColorRed", &g_profile.EFS50EHSIBkgrd.red),
    Colour("EFS50EHSIBkgrdColorGreen", &g_profile.EFS50EHSIBkgrd.green),
    Colour("EFS50EHSIBkgrdColorBlue", &g_profile.EFS50EHSIBkgrd.blue),
    Colour("DU1000EHSIBkgrdColorRed", &g_profile.DU1000EHSIBkgrd.red),
    Colour("DU1000EHSIBkgrdColorGreen", &g_profile.DU1000EHSIBkgrd.green),
    Colour("DU1000EHSIBkgrdColorBlue", &g_profile.DU1000EHSIBkgrd.blue),
    Colour("PROLINE4MFDBkgrdColorRed", &g_profile.PROLINE4MFDBkgrd.red),
    Colour("PROLINE4MFDBkgrdColorGreen", &g_profile.PROLINE4MFDBkgrd.green),
    Colour("PROLINE4MFDBkgrdColorBlue", &g_profile.PROLINE4MFDBkgrd.blue),
    Colour("MD80EHSIBkgrdColorRed", &g_profile.MD80EHSIBkgrd.red),
    Colour("MD80EHSIBkgrdColorGreen", &g_profile.MD80EHSIBkgrd.green),
    Colour("MD80EHSIBkgrdColorBlue", &g_profile.MD80EHSIBkgrd.blue),
    // Options of orb.cfg set again: taken as they stand
    Int("AdjustTurnDistforAngle", &g_config.AdjustTurnDistforAngle),
    Int("DispAppPtrnAlts", &g_config.DispAppPtrnAlts),
    Int("DisplayLnavStatusOnMD11ND", &g_config.DisplayLnavStatusOnMD11ND),
    Int("DisplayVnavStatusOnMD11ND", &g_config.DisplayVnavStatusOnMD11ND),
    Int("DispPrevWpt", &g_config.DispPrevWpt),
    Int("DrawBodArcOnEFS50EHSI", &g_config.DrawBodArcOnEFS50EHSI),
    Int("DrawBodArcOnP1000MFD", &g_config.DrawBodArcOnP1000MFD),
    Int("DrawTcasWindowOnP1000MFD", &g_config.DrawTcasWindowOnP1000MFD),
    Int("EadiDualCue", &g_config.EadiDualCue),
    Int("EADIHdgTape", &g_config.EADIHdgTape),
    Int("EhsiStaticHdgPointer", &g_config.EhsiStaticHdgPointer),
    Int("ExpandEADI", &g_config.ExpandEADI),
    Int("ExpandEADILnav", &g_config.ExpandEADILnav),
    Real("FlyoverWptChgDist", &g_config.FlyoverWptChgDist, R::IntegerPartAboveZero),
    Int("HdgHoldOnLnavOn", &g_config.HdgHoldOnLnavOn),
    Int("LnavOffAtLastWpt", &g_config.LnavOffAtLastWpt),
    Int("LnavOnNavLock", &g_config.LnavOnNavLock),
    Int("LnavSetEnRouteFreqs", &g_config.LnavSetEnRouteFreqs),
    Int("MFDTextAntiAlias", &g_config.MFDTextAntiAlias),
    Real("MinMapRange", &g_config.MinMapRange),
    Int("SequenceFPlanWpts", &g_config.SequenceFPlanWpts),
    Int("SetSpdOffwhenAPMasterSetOff", &g_config.SetSpdOffwhenAPMasterSetOff),
    Int("SetWptBaro", &g_config.SetWptBaro),
    Int("ShowTodBodIndicators", &g_config.ShowTodBodIndicators),
    Int("TcasVertRange", &g_config.TcasVertRange, R::TcasFeet),
    Int("TransAlt", &g_config.TransAlt),
    Int("VnavOffAtLastWpt", &g_config.VnavOffAtLastWpt),
    Int("VnavOffOnManAltChg", &g_config.VnavOffOnManAltChg),
    Int("VnavSetAlts", &g_config.VnavSetAlts),
    Int("VnavSetSpd", &g_config.VnavSetSpd),
    Int("VnavSetSpdOffOnManSpdChg", &g_config.VnavSetSpdOffOnManSpdChg),
    Real("WptChgDist", &g_config.WptChgDist),
    Real("WptChgSecs", &g_config.WptChgSecs),
    Real("WptProcChgDist", &g_config.WptProcChgDist),
    Real("WptProcChgSecs", &g_config.WptProcChgSecs),
    // Options of the profile alone
    Int("DispFPV", &g_profile.DispFPV),
    Int("ResetApHdg", &g_profile.ResetApHdg),
    Int("SetMCPCrzAltOnFlightPlanLoad", &g_profile.SetMCPCrzAltOnFlightPlanLoad),
    Int("ShowFloatingTodBodIndicators", &g_profile.ShowFloatingTodBodIndicators),
    Int("GPSSynch", &g_config.synchfplanwithfsgps, R::AsRead, "synchfplanwithfsgps"),
    Int("synchfplanwithfsgps", &g_config.synchfplanwithfsgps),
};

// Case-blind comparison of a line, less its surrounding blanks and line end, with a marker.
bool IsMarkerLine(const char* line, const char* marker) {
    while (*line == ' ' || *line == '\t') ++line;
    size_t length = std::strlen(line);
    while (length > 0 && (line[length - 1] == ' ' || line[length - 1] == '\t' || line[length - 1] == '\r' ||
                          line[length - 1] == '\n'))
        --length;
    if (length != std::strlen(marker)) return false;
    std::array<char, kConfigLineSize> trimmed{};
    std::memcpy(trimmed.data(), line, length);
    return SameKey(trimmed.data(), marker);
}

// Copies `count` characters of `text` from `first`, those that exist.
void AppendPart(char* out, size_t out_size, const char* text, size_t first, size_t count) {
    size_t length = std::strlen(out);
    size_t text_length = std::strlen(text);
    for (size_t i = first; i < first + count && i < text_length && length + 1 < out_size; ++i) out[length++] = text[i];
    out[length] = 0;
}
}  // namespace

std::span<const OptionEntry> ProfileOptionTable() { return kProfileOptions; }

// [SECTION] The AIRAC line
//
// A line of navs.txt such as ";AIRAC Cycle : 0601 (19-JAN-2006 - 16-FEB-2006)":
// the fourth word is the cycle, the fifth the first day behind its bracket,
// the seventh the last day.

void ReadAiracLine() {
    constexpr int kWordSize = 64;       // a word of the AIRAC line; longer ones are cut
    constexpr int kLineSize = 512;      // navs.txt rows are short; a longer one continues
    char path[MAX_PATH];
    DataPath("\\orb\\Navdata\\navs.txt", path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return;
    std::array<char, kLineSize> line{};
    size_t length = 0;
    while (reader.NextPiece(line.data(), line.size(), length)) {
        std::array<std::array<char, kWordSize>, 7> w{};
        const char* cursor = line.data();
        for (auto& word : w) {
            while (*cursor == ' ' || *cursor == '\t' || *cursor == '\r' || *cursor == '\n') ++cursor;
            size_t n = 0;
            while (*cursor != 0 && *cursor != ' ' && *cursor != '\t' && *cursor != '\r' && *cursor != '\n') {
                if (n + 1 < word.size()) word[n++] = *cursor;
                ++cursor;
            }
        }
        if (!SameKey(w[0].data(), ";AIRAC")) continue;
        const char* first = w[4].data();  // "(19-JAN-2006"
        const char* last = w[6].data();   // "16-FEB-2006)"
        g_airac.cycle[0] = 0;
        AppendPart(g_airac.cycle.data(), kAiracTextSize, "AIRAC ", 0, 6);
        AppendPart(g_airac.cycle.data(), kAiracTextSize, w[3].data(), 0, kWordSize);
        char* validity = g_airac.validity.data();
        validity[0] = 0;
        AppendPart(validity, kAiracTextSize, first, 4, 3);
        AppendPart(validity, kAiracTextSize, first, 1, 2);
        AppendPart(validity, kAiracTextSize, last, 3, 3);
        AppendPart(validity, kAiracTextSize, last, 0, 2);
        AppendPart(validity, kAiracTextSize, "/", 0, 1);
        AppendPart(validity, kAiracTextSize, last, 9, 2);
        char* dates = g_airac.dates.data();
        dates[0] = 0;
        AppendPart(dates, kAiracTextSize, first, 1, 2);
        AppendPart(dates, kAiracTextSize, first, 4, 3);
        AppendPart(dates, kAiracTextSize, " - ", 0, 3);
        AppendPart(dates, kAiracTextSize, last, 0, 2);
        AppendPart(dates, kAiracTextSize, last, 3, 3);
        break;
    }
    reader.file.Close();
}

// [SECTION] The [Lvars] block
//
// "<variable name>=<value>,<action>=<parameter>[,reset=<n>][,off=<n>]".
// Each piece is read with blanks kept: blanks to "#", the first "=" to a
// blank, two words, "#" back to blanks. The outer blanks of name and action
// are dropped, so "L:Switch = 1" names the variable "L:Switch".

namespace {
constexpr const char* kLvarActionWords[] = {
    "MapRange",  "TcasOn",    "DisplayInts", "DisplayNavs",  "DisplayApts", "NDCompassMode", "NDArcMode", "NDPlanMode",
    "NDMapMode", "NDVorMode", "NDAppMode",   "NDCtrMapMode", "Vor1BrgPtr",  "Vor2BrgPtr",    "LnavOn",
};

// Splits one piece into its two words.
void ReadLvarPiece(const char* begin, const char* end, char* first, size_t first_size, char* second, size_t second_size) {
    std::array<char, kConfigLineSize> work{};
    size_t length = static_cast<size_t>(end - begin);
    if (length >= work.size()) length = work.size() - 1;
    std::memcpy(work.data(), begin, length);
    for (size_t i = 0; i < length; ++i)
        if (work[i] == ' ') work[i] = '#';
    if (char* equals = std::strchr(work.data(), '=')) *equals = ' ';
    std::array<char, kConfigLineSize> a{}, b{};
    const char* cursor = work.data();
    for (auto* word : {&a, &b}) {
        while (*cursor == ' ' || *cursor == '\t' || *cursor == '\r' || *cursor == '\n') ++cursor;
        size_t n = 0;
        while (*cursor != 0 && *cursor != ' ' && *cursor != '\t' && *cursor != '\r' && *cursor != '\n') {
            if (n + 1 < word->size()) (*word)[n++] = *cursor;
            ++cursor;
        }
    }
    // "#" back to blanks, then the outer blanks dropped.
    for (auto* word : {&a, &b}) {
        for (char& ch : *word)
            if (ch == '#') ch = ' ';
    }
    auto trim_into = [](const std::array<char, kConfigLineSize>& word, char* out, size_t out_size) {
        const char* start = word.data();
        while (*start == ' ') ++start;
        size_t n = std::strlen(start);
        while (n > 0 && start[n - 1] == ' ') --n;
        if (out_size == 0) return;
        if (n >= out_size) n = out_size - 1;
        std::memcpy(out, start, n);
        out[n] = 0;
    };
    trim_into(a, first, first_size);
    trim_into(b, second, second_size);
}
}  // namespace

bool ReadLvarLine(const char* line) {
    if (line == nullptr) return false;
    // The first piece: variable name and value.
    const char* comma = std::strchr(line, ',');
    const char* first_end = comma != nullptr ? comma : line + std::strlen(line);
    std::array<char, kLvarNameSize> name{};
    std::array<char, kConfigLineSize> value{};
    ReadLvarPiece(line, first_end, name.data(), name.size(), value.data(), value.size());
    if (name[0] == 0) return false;  // a blank line in the block
    if (g_lvars.count >= kLvarRowLimit) return false;
    LvarRow& row = g_lvars.rows[g_lvars.count++];
    row = LvarRow{};
    row.name = name;
    row.value = ReadIntegerValue(value.data());
    // The second piece: action and parameter. Further pieces (reset, off) are dropped.
    if (comma == nullptr) return true;
    const char* second = comma + 1;
    const char* second_end = std::strchr(second, ',');
    if (second_end == nullptr) second_end = second + std::strlen(second);
    std::array<char, kConfigLineSize> parameter{};
    ReadLvarPiece(second, second_end, row.action_text.data(), row.action_text.size(), parameter.data(), parameter.size());
    row.parameter = ReadIntegerValue(parameter.data());
    for (size_t i = 0; i < std::size(kLvarActionWords); ++i)
        if (SameKey(row.action_text.data(), kLvarActionWords[i])) row.action = static_cast<LvarAction>(i);
    return true;
}

// [SECTION] Reading a profile

void ReadAircraftProfileFile(ConfigFileReader& reader, const char* label) {
    ConfigLine line;
    bool in_lvars = false;
    while (reader.Next()) {
        const char* text = reader.text.data();
        if (text[0] == ';') continue;
        // The block's lines are taken as they stand.
        if (in_lvars) {
            if (IsMarkerLine(text, "[EndLvars]")) {
                in_lvars = false;
                continue;
            }
            if (IsMarkerLine(text, "[Lvars]")) continue;  // a repeated opening line makes no row
            bool full = g_lvars.count >= kLvarRowLimit;
            if (ReadLvarLine(text)) {
                const LvarRow& row = g_lvars.rows[g_lvars.count - 1];
                NoteConfigLine({label, reader.line_number, ConfigNote::LvarRow, row.name.data(), row.action_text.data(), nullptr});
            } else if (full) {
                NoteConfigLine({label, reader.line_number, ConfigNote::LvarDropped, text, "", nullptr});
            }
            continue;
        }
        if (IsMarkerLine(text, "[Lvars]")) {
            in_lvars = true;
            continue;
        }
        if (IsMarkerLine(text, "[EndLvars]")) continue;
        if (!SplitConfigLine(text, line) || line.key[0] == 0) continue;
        ConfigNoteInfo info{label, reader.line_number, ConfigNote::UnknownKey, line.key.data(), line.value.data(), nullptr};
        info.entry = FindOption(kProfileOptions, line.key.data());
        if (info.entry != nullptr) info.note = ApplyOption(*info.entry, line.value.data()) ? ConfigNote::Taken : ConfigNote::Refused;
        NoteConfigLine(info);
    }
}

void LoadAircraftProfile(const char* name) {
    // The AIRAC texts come with the profile, whatever the profile holds.
    ReadAiracLine();

    // 1-4. The file, if the name makes a path that fits and it opens.
    char path[MAX_PATH];
    char relative[MAX_PATH];
    int relative_length = std::snprintf(relative, sizeof relative, "\\orb\\Aircraft\\%s.cfg", name ? name : "");
    DataPath(relative, path, sizeof path);
    bool fits = relative_length > 0 && relative_length < static_cast<int>(sizeof relative) &&
                std::strlen(g_module.RootFolder.data()) + static_cast<size_t>(relative_length) < sizeof path;
    const char* label = relative + std::strlen("\\orb\\Aircraft\\");  // "<name>.cfg" in notes
    static ConfigFileReader reader;  // 64 KB: kept off the stack
    bool opened = fits && reader.Open(path);
    // Absent until the file says otherwise: then the hold speed follows the descent speed.
    g_profile.BestHoldIas = kBestHoldIasAbsent;
    if (opened) {
        NoteConfigLine({label, 0, ConfigNote::FileRead, "", "", nullptr});
        ReadAircraftProfileFile(reader, label);
        reader.lines.file.Close();
    } else {
        NoteConfigLine({label, 0, ConfigNote::FileMissing, "", "", nullptr});
    }

    // 5-10. With or without a file.
    FinishAircraftProfile();
}

// [SECTION] After the file

namespace {
// Outside air temperature that the predictions assume until the pilot enters
// one, degrees Celsius; the limit Mach numbers are worked out with it.
constexpr double kCruiseOatUntilEntered = -30;

double MachAt15000(double ias) { return TasAt15000(ias) / (std::sqrt(kCruiseOatUntilEntered + 273.15) * 38.967854); }

int Correct(int mode, int lowest, int highest, int fallback) { return (mode < lowest || mode > highest) ? fallback : mode; }

int CostIndexSpeed(double lowest, double highest, int cost_index) {
    return TruncateToInt((highest - lowest) / 200.0 * cost_index + lowest);
}
}  // namespace

void ApplyCostIndex() {
    AircraftProfile& profile = g_profile;
    if (profile.CostIndex < 0) return;
    if (profile.ClimbIas == profile.ClimbIasBase)
        profile.ClimbIas = CostIndexSpeed(profile.ClimbIasMin, profile.ClimbIasMax, profile.CostIndex);
    if (profile.CruiseIas == profile.CruiseIasBase)
        profile.CruiseIas = CostIndexSpeed(profile.CruiseIasMin, profile.CruiseIasMax, profile.CostIndex);
    if (profile.DescentIas == profile.DescentIasBase)
        profile.DescentIas = CostIndexSpeed(profile.DescentIasMin, profile.DescentIasMax, profile.CostIndex);
}

void DeriveDefaultTas() {
    g_profile.ClimbTas = TasAt15000(g_profile.ClimbIas);
    g_profile.DescentTas = TasAt15000(g_profile.DescentIas);
}

void FinishAircraftProfile() {
    AircraftProfile& profile = g_profile;

    // 5. Display modes out of range fall back.
    profile.EFS50HsiMode = Correct(profile.EFS50HsiMode, 1, 7, 1);
    profile.EFS50NavMode = Correct(profile.EFS50NavMode, 1, 2, 1);
    profile.DU1000EHSIMode = Correct(profile.DU1000EHSIMode, 0, 3, 0);
    profile.HWB737NDMode = Correct(profile.HWB737NDMode, 1, 7, 1);
    profile.HWMD11NDMode = Correct(profile.HWMD11NDMode, 2, 5, 1);
    profile.MD80EHSIMode = Correct(profile.MD80EHSIMode, 0, 3, 0);
    profile.PROLINE4MFDMode = Correct(profile.PROLINE4MFDMode, 0, 3, 0);

    // 6. The cost index ranges as Mach numbers at 15000 feet.
    profile.ClimbMachMin = MachAt15000(profile.ClimbIasMin);
    profile.CruiseMachMin = MachAt15000(profile.CruiseIasMin);
    profile.DescentMachMin = MachAt15000(profile.DescentIasMin);
    profile.ClimbMachMax = MachAt15000(profile.ClimbIasMax);
    profile.CruiseMachMax = MachAt15000(profile.CruiseIasMax);
    profile.DescentMachMax = MachAt15000(profile.DescentIasMax);

    // 7. The performance table the profile names: the start-up loads it right
    // after the profile (LoadPerformanceTable), since the predictions that
    // read it stand above the frame.

    // 8. The cost index.
    ApplyCostIndex();

    // 9. A file can't preset the cruise and descent Mach; the climb Mach stays.
    g_config.CruiseMach = 0;
    g_config.DescentMach = 0;

    // 10. TAS from the final speeds; the cost index's base speeds become them.
    profile.ClimbTas = TasAt15000(profile.ClimbIas);
    profile.DescentTas = TasAt15000(profile.DescentIas);
    if (profile.BestHoldIas == kBestHoldIasAbsent) profile.BestHoldIas = profile.DescentIas;
    profile.ClimbIasBase = profile.ClimbIas;
    profile.CruiseIasBase = profile.CruiseIas;
    profile.DescentIasBase = profile.DescentIas;
}
