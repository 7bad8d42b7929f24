// global_config.cpp: orb.cfg, and the line reader and option rules that the
// aircraft profile shares with it.
//
// Index
//   [SECTION] Byte classes and number readers
//   [SECTION] Splitting a line
//   [SECTION] The option table of orb.cfg
//   [SECTION] Applying and showing an option
//   [SECTION] Reading orb.cfg
#include "frame/global_config.h"

#include "frame/sim_state.h"
#include "frame/module_state.h"
#include "frame/sim_generation.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>

GlobalConfig g_config;
ConfigObserver g_config_observer = nullptr;

// [SECTION] Byte classes and number readers

namespace {
// The bytes that end a word when a line is scanned: those of the C locale's
// isspace, whatever locale the simulator runs in.
constexpr std::array<bool, 256> kSpaceByte = [] {
    std::array<bool, 256> table{};
    for (unsigned char c : {' ', '\t', '\n', '\v', '\f', '\r'}) table[c] = true;
    return table;
}();

constexpr bool IsSpace(char c) { return kSpaceByte[static_cast<unsigned char>(c)]; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }
constexpr char UpperAscii(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }

// Copies the next word of `*cursor` into out (bounded) and moves the cursor past it.
void ScanWord(const char*& cursor, char* out, size_t out_size) {
    while (*cursor != 0 && IsSpace(*cursor)) ++cursor;
    size_t n = 0;
    while (*cursor != 0 && !IsSpace(*cursor)) {
        if (n + 1 < out_size) out[n++] = *cursor;
        ++cursor;
    }
    if (out_size > 0) out[n] = 0;
}
}  // namespace

int ReadIntegerValue(const char* text) {
    if (text == nullptr) return 0;
    while (IsSpace(*text)) ++text;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    const char* end = text;
    while (IsDigit(*end)) ++end;
    long long value = 0;
    auto [stop, error] = std::from_chars(text, end, value);
    if (error != std::errc{} || stop == text) return 0;
    if (negative) value = -value;
    if (value < INT_MIN || value > INT_MAX) return 0;
    return static_cast<int>(value);
}

double ReadFloatValue(const char* text) {
    if (text == nullptr) return 0;
    while (IsSpace(*text)) ++text;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    // Only a decimal number: no "inf", "nan" or hexadecimal, which a
    // configuration value never means and which would poison the sums.
    bool decimal = IsDigit(text[0]) || (text[0] == '.' && IsDigit(text[1]));
    if (!decimal) return 0;
    double value = 0;
    auto [stop, error] = std::from_chars(text, text + std::strlen(text), value, std::chars_format::general);
    if (error != std::errc{} || stop == text || !std::isfinite(value)) return 0;
    return negative ? -value : value;
}

int TruncateToInt(double value) {
    if (!(value > static_cast<double>(INT_MIN) - 1.0 && value < static_cast<double>(INT_MAX) + 1.0)) return 0;
    return static_cast<int>(value);
}

bool SameKey(const char* a, const char* b) {
    if (a == nullptr || b == nullptr) return false;
    for (; *a != 0 && *b != 0; ++a, ++b)
        if (LowerAscii(*a) != LowerAscii(*b)) return false;
    return *a == *b;
}

void CopyText(char* out, size_t out_size, const char* text) {
    if (out == nullptr || out_size == 0) return;
    size_t n = 0;
    if (text != nullptr)
        for (; text[n] != 0 && n + 1 < out_size; ++n) out[n] = text[n];
    out[n] = 0;
}

// [SECTION] Splitting a line

bool SplitConfigLine(const char* line, ConfigLine& out) {
    out.key[0] = 0;
    out.value[0] = 0;
    if (line == nullptr || line[0] == ';') return false;

    // 1. Every blank becomes "*", so that a value keeps its blanks as one word.
    std::array<char, kConfigLineSize> work{};
    CopyText(work.data(), work.size(), line);
    for (char& c : work)
        if (c == ' ') c = '*';
    // 2. The first "=" becomes the one blank that parts key from value.
    if (char* equals = std::strchr(work.data(), '=')) *equals = ' ';
    // 3. First word the key, second the value; the rest of the line is dropped.
    const char* cursor = work.data();
    ScanWord(cursor, out.key.data(), out.key.size());
    ScanWord(cursor, out.value.data(), out.value.size());
    // 4. "*" in the value reads as a blank again (a literal "*" too).
    for (char& c : out.value)
        if (c == '*') c = ' ';
    return true;
}

bool ConfigFileReader::Open(const char* path) {
    line_number = 0;
    at_line_start = true;
    text[0] = 0;
    return lines.Open(path);
}

bool ConfigFileReader::Next() {
    size_t length = 0;
    if (!lines.NextPiece(text.data(), text.size(), length)) return false;
    if (at_line_start) ++line_number;
    at_line_start = text[length - 1] == '\n';
    return true;
}

void NoteConfigLine(const ConfigNoteInfo& info) {
    if (g_config_observer != nullptr) g_config_observer(info);
}

// [SECTION] The option table of orb.cfg
//
// In the file's fixed order; the first row whose key matches takes the line.

namespace {
using K = OptionKind;
using R = OptionRule;

constexpr OptionEntry Int(const char* key, int* field, R rule = R::AsRead) {
    return {key, K::Integer, rule, field, nullptr, nullptr, nullptr, nullptr};
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

constexpr OptionEntry kGlobalOptions[] = {
    Int("AdjustTurnDistforAngle", &g_config.AdjustTurnDistforAngle),
    Int("ArmPauseAtDistFromDest", &g_config.ArmPauseAtDistFromDest),
    Int("ArmPauseAtTod", &g_config.ArmPauseAtTod),
    Int("AutoSetLOCFreq", &g_config.AutoSetLOCFreq),
    Real("ClimbMach", &g_config.ClimbMach),
    Real("CruiseMach", &g_config.CruiseMach),
    RealAsInt("DecLatLonDisp", &g_config.DecLatLonDisp),
    Real("DescentMach", &g_config.DescentMach),
    Int("DispAppPtrnAlts", &g_config.DispAppPtrnAlts),
    Int("DispC17SpdTrend", &g_config.DispC17SpdTrend),
    Int("DispETALocalTime", &g_config.DispETALocalTime),
    Int("DisplayLnavStatusOnMD11ND", &g_config.DisplayLnavStatusOnMD11ND),
    Int("DisplayVnavStatusOnMD11ND", &g_config.DisplayVnavStatusOnMD11ND),
    Int("DisplayMagVarOnGnsxlsNavPage", &g_config.DisplayMagVarOnGnsxlsNavPage),
    Int("DispPrevWpt", &g_config.DispPrevWpt),
    Int("DrawBodArcOnEFS50EHSI", &g_config.DrawBodArcOnEFS50EHSI),
    Int("DrawBodArcOnP1000MFD", &g_config.DrawBodArcOnP1000MFD),
    Int("DrawTcasWindowOnP1000MFD", &g_config.DrawTcasWindowOnP1000MFD),
    Int("EadiDualCue", &g_config.EadiDualCue),
    Int("EADIHdgTape", &g_config.EADIHdgTape),
    Int("EhsiStaticHdgPointer", &g_config.EhsiStaticHdgPointer),
    Int("ExpandEADI", &g_config.ExpandEADI),
    Int("ExpandEADILnav", &g_config.ExpandEADILnav),
    Text("FlightPlansFolder", &g_config.FlightPlansFolder),
    Real("FlyoverWptChgDist", &g_config.FlyoverWptChgDist, R::IntegerPartAboveZero),
    Int("HdgHoldOnLnavOn", &g_config.HdgHoldOnLnavOn),
    Int("Lnav1xAtTod", &g_config.Lnav1xAtTod),
    Int("LnavOffAtLastWpt", &g_config.LnavOffAtLastWpt),
    Int("LnavOnNavLock", &g_config.LnavOnNavLock),
    Int("LnavSetEnRouteFreqs", &g_config.LnavSetEnRouteFreqs),
    Int("LoadFuelonFlightPlanLoad", &g_config.LoadFuelonFlightPlanLoad),
    Int("McuShowActiveRwys", &g_config.McuShowActiveRwys),
    Int("MFDTextAntiAlias", &g_config.MFDTextAntiAlias),
    Real("MinMapRange", &g_config.MinMapRange),
    Text("ParkingFile", &g_config.ParkingFile),
    Int("PauseAtDistFromDest", &g_config.PauseAtDistFromDest, R::PauseAtDistFromDest),
    Int("PauseAtTod", &g_config.PauseAtTod, R::PauseAtTod),
    Int("SaveFPLCruiseAlt", &g_config.SaveFPLCruiseAlt),
    Int("SequenceFPlanWpts", &g_config.SequenceFPlanWpts),
    Int("SetDestLoadTowerViewDist", &g_config.SetDestLoadTowerViewDist),
    Int("SetMCPSpdOnFlightPlanLoad", &g_config.SetMCPSpdOnFlightPlanLoad),
    Int("SetSpdOffwhenAPMasterSetOff", &g_config.SetSpdOffwhenAPMasterSetOff),
    Int("SetUTCTimeOnFPLoad", &g_config.SetUTCTimeOnFPLoad),
    Int("SetWptBaro", &g_config.SetWptBaro),
    Int("ShowTodBodIndicators", &g_config.ShowTodBodIndicators),
    Int("synchfplanwithfsgps", &g_config.synchfplanwithfsgps),
    Int("TcasVertRange", &g_config.TcasVertRange, R::TcasFeet),
    Int("TransAlt", &g_config.TransAlt),
    Int("VnavOffAtLastWpt", &g_config.VnavOffAtLastWpt),
    Int("VnavOffOnManAltChg", &g_config.VnavOffOnManAltChg),
    Int("VnavSetAlts", &g_config.VnavSetAlts),
    Int("VnavSetSpd", &g_config.VnavSetSpd),
    Int("VnavSetSpdOffOnManSpdChg", &g_config.VnavSetSpdOffOnManSpdChg),
    Text("WeightUnit", &g_config.WeightUnit, R::UpperCase),
    Real("WptChgDist", &g_config.WptChgDist, R::AboveZero),
    Real("WptChgSecs", &g_config.WptChgSecs, R::AboveZero),
    Real("WptProcChgDist", &g_config.WptProcChgDist, R::AboveZero),
    Real("WptProcChgSecs", &g_config.WptProcChgSecs, R::AboveZero),
    Int("WriteVnavProfile", &g_config.WriteVnavProfile),
};
}  // namespace

std::span<const OptionEntry> GlobalOptionTable() { return kGlobalOptions; }

const OptionEntry* FindOption(std::span<const OptionEntry> table, const char* key) {
    if (key == nullptr || key[0] == 0) return nullptr;
    for (const OptionEntry& entry : table)
        if (SameKey(entry.key, key)) return &entry;
    return nullptr;
}

const char* OptionName(const OptionEntry& entry) { return entry.option != nullptr ? entry.option : entry.key; }

// [SECTION] Applying and showing an option

namespace {
// The profile's speeds are set at 15000 feet: TAS = IAS x (1 + 0.019 x 15).
constexpr double kIasPerTasAt15000 = 100.0 / (15 * 1.9 + 100);
}  // namespace

bool ApplyOption(const OptionEntry& entry, const char* value) {
    if (value == nullptr) value = "";

    // Texts: as they stand, or with the rule's change.
    if (entry.kind == OptionKind::Text) {
        if (entry.text == nullptr) return false;
        OptionText& text = *entry.text;
        CopyText(text.data(), text.size(), value);
        if (entry.rule == OptionRule::UpperCase)
            for (char& ch : text) ch = UpperAscii(ch);
        if (entry.rule == OptionRule::AppendComma) {
            size_t length = std::strlen(text.data());
            if (length + 1 < text.size()) {
                text[length] = ',';
                text[length + 1] = 0;
            }
        }
        return true;
    }

    // Numbers: read by kind, then the rule decides.
    double real = entry.kind == OptionKind::Integer ? ReadIntegerValue(value) : ReadFloatValue(value);
    int integer = entry.kind == OptionKind::Integer ? ReadIntegerValue(value) : TruncateToInt(real);
    switch (entry.rule) {
        case OptionRule::AboveZero:
            if (!(real > 0)) return false;
            break;
        case OptionRule::IntegerPartAboveZero:
            if (TruncateToInt(real) <= 0) return false;
            break;
        case OptionRule::TcasFeet:
            if (integer < 1000) return false;
            integer /= 100;
            real = integer;
            break;
        case OptionRule::PauseAtTod:
            if (integer == 1) g_config.ArmPauseAtTod = 1;
            break;
        case OptionRule::PauseAtDistFromDest:
            if (integer > 0) {
                g_config.PauseAtDistFromDestOn = 1;
                g_config.ArmPauseAtDistFromDest = 1;
            }
            break;
        case OptionRule::HoldLegMins:
            if (real <= 0) real = 1;
            break;
        case OptionRule::EngThrust:
            if (integer > 1000) integer /= 1000;
            break;
        case OptionRule::Colour:
            integer = integer < 0 ? 0 : (integer > 255 ? 255 : integer);
            break;
        case OptionRule::IasFromTas:
            if (entry.derived != nullptr) *entry.derived = TruncateToInt(real * kIasPerTasAt15000);
            break;
        default:
            break;
    }
    if (entry.integer != nullptr) *entry.integer = integer;
    if (entry.real != nullptr) *entry.real = real;
    return true;
}

void FormatOptionValue(const OptionEntry& entry, char* out, size_t out_size) {
    if (out == nullptr || out_size == 0) return;
    if (entry.text != nullptr)
        CopyText(out, out_size, entry.text->data());
    else if (entry.real != nullptr)
        std::snprintf(out, out_size, "%.6g", *entry.real);
    else if (entry.integer != nullptr)
        std::snprintf(out, out_size, "%d", *entry.integer);
    else
        out[0] = 0;
}

// [SECTION] Reading orb.cfg

void ReadGlobalConfigFile(ConfigFileReader& reader, const char* label) {
    ConfigLine line;
    while (reader.Next()) {
        if (!SplitConfigLine(reader.text.data(), line) || line.key[0] == 0) continue;
        ConfigNoteInfo info{label, reader.line_number, ConfigNote::UnknownKey, line.key.data(), line.value.data(), nullptr};
        info.entry = FindOption(kGlobalOptions, line.key.data());
        if (info.entry != nullptr) info.note = ApplyOption(*info.entry, line.value.data()) ? ConfigNote::Taken : ConfigNote::Refused;
        NoteConfigLine(info);
    }
}

void LoadGlobalConfig() {
    // 1. The default climb and descent TAS follow the default speeds: the
    // profile's initial values are worked out so (TasAt15000).

    // 2-8. The file, if there is one.
    char path[MAX_PATH];
    DataPath("\\orb\\orb.cfg", path, sizeof path);
    static ConfigFileReader reader;  // 64 KB: kept off the stack
    if (reader.Open(path)) {
        NoteConfigLine({"orb.cfg", 0, ConfigNote::FileRead, "", "", nullptr});
        ReadGlobalConfigFile(reader, "orb.cfg");
        // 9. Close.
        reader.lines.file.Close();
    } else {
        NoteConfigLine({"orb.cfg", 0, ConfigNote::FileMissing, "", "", nullptr});
    }
    // 9-13. Loaded, with or without a file. The start-up that called this
    // presets the pages' texts and runs the flight log's first pass next
    // (StartupOnce): both stand above the configuration.
    g_module.configuration_loaded = true;
    DetectSimGeneration();
    g_tick.slow_refresh = 999;
}
