// script.cpp: reading, checking and running orbsim scripts.
//
// Index:
//   [SECTION] Words of a line
//   [SECTION] The command list and the check before running
//   [SECTION] Values of print and expect
//   [SECTION] Prints
//   [SECTION] Running
#include "script.h"
#include "module_paths.h"

#include "cdu_keys.h"
#include "keyboard.h"
#include "route_plot.h"

#include "aircraft_fields.h"
#include "mouse.h"
#include "panel_table.h"
#include "png_out.h"
#include "sim_values.h"
#include "simulator.h"
#include "text_util.h"

#include <sys/stat.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

namespace orbsim {

// [SECTION] Words of a line
bool SplitScriptLine(const std::string& line, ScriptLine& out, std::string& error) {
    out.words.clear();
    out.quoted.clear();
    size_t i = 0;
    while (i < line.size()) {
        char c = line[i];
        if (c == ' ' || c == '\t' || c == '\r') {
            ++i;
            continue;
        }
        if (c == '#') break;  // a word starting with # is a comment; NAME#2 is not
        std::string word;
        bool quoted = false;
        if (c == '"') {
            quoted = true;
            ++i;
            bool closed = false;
            while (i < line.size()) {
                char q = line[i++];
                if (q == '\\' && i < line.size() && (line[i] == '"' || line[i] == '\\')) {
                    word += line[i++];
                } else if (q == '"') {
                    closed = true;
                    break;
                } else {
                    word += q;
                }
            }
            if (!closed) {
                error = "quote not closed";
                return false;
            }
        } else {
            while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r') word += line[i++];
        }
        out.words.push_back(word);
        out.quoted.push_back(quoted);
    }
    return true;
}

// [SECTION] The command list and the check before running
namespace {
struct CommandSpec {
    const char* name;
    int min_args;
    int max_args;                       // -1: any number
    const char* usage;
};

constexpr CommandSpec kCommands[] = {
    {"panel", 1, 1, "panel FILE"},
    {"run", 1, 1, "run SECONDS"},
    {"frames", 1, 1, "frames N"},
    {"measure", 1, 1, "measure SECONDS"},
    {"click", 3, 4, "click GAUGE X Y [left|right|middle]"},
    {"set", 2, -1, "set NAME VALUE"},
    {"aircraft", 1, -1, "aircraft KEY=VALUE ..."},
    {"window", 2, 2, "window IDENT open|close|toggle"},
    {"event", 1, 2, "event NUMBER [VALUE]"},
    {"print", 1, -1, "print WHAT"},
    {"shot", 2, 2, "shot GAUGE FILE"},
    {"reload", 0, 0, "reload"},
    {"track", 0, 1, "track [FILE]"},
    {"expect", 3, -1, "expect WHAT OP VALUE | expect file PATH exists|missing|contains|!contains [TEXT]"},
    {"fsuipc", 1, -1, "fsuipc on|off|runways ICAO RWY...|answer_after N|version NUMBER"},
    {"simconnect", 1, 1, "simconnect on|off"},
    {"clear", 1, 1, "clear tokenreads|keyevents|all"},
    {"echo", 0, -1, "echo TEXT"},
    {"fps", 1, 1, "fps N"},
    {"plot", 2, 5, "plot FILE ROUTE|gps [LAT LON NM]"},
    {"profile", 1, 2, "profile FILE [PREDICTIONS]"},
    {"key", 2, -1, "key GAUGE NAME"},
    {"type", 2, -1, "type GAUGE TEXT"},
    {"keyboard", 1, -1, "keyboard TEXT (letters, digits, {ENTER} and other named keys)"},
    {"keyboard-key", 1, 2, "keyboard-key NAME [press|down|up]"},
    {"keyboard-focus", 1, 1, "keyboard-focus on|off"},
    {"traffic", 1, 8, "traffic on|off|clear|add ID LAT LON ALT [HDG KT VS]|remove ID"},
    {"gps", 1, 4, "gps clear|add IDENT LAT LON"},
};

constexpr const char* kOperators[] = {"==", "!=", "<=", ">=", "<", ">", "contains", "!contains"};


const CommandSpec* FindCommand(const std::string& name) {
    for (const CommandSpec& c : kCommands)
        if (name == c.name) return &c;
    return nullptr;
}

bool IsOperator(const std::string& word) {
    for (const char* op : kOperators)
        if (word == op) return true;
    return false;
}

std::string Join(const std::vector<std::string>& words, size_t first, size_t end) {
    std::string out;
    for (size_t i = first; i < end && i < words.size(); ++i) {
        if (!out.empty()) out += ' ';
        out += words[i];
    }
    return out;
}

// True when a relative path stays inside the folder it is taken from: no
// leading "/", and no ".." that climbs above the start.
bool StaysInside(const std::string& path) {
    if (path.empty() || path[0] == '/') return false;
    int depth = 0;
    size_t start = 0;
    while (start <= path.size()) {
        size_t slash = path.find('/', start);
        if (slash == std::string::npos) slash = path.size();
        std::string part = path.substr(start, slash - start);
        if (part == "..") {
            if (--depth < 0) return false;
        } else if (!part.empty() && part != ".") {
            ++depth;
        }
        start = slash + 1;
    }
    return depth > 0;
}

// The checks that need nothing but the line itself.
bool CheckLine(const ScriptLine& line, std::string& error) {
    const std::string& name = line.words[0];
    const CommandSpec* shape = FindCommand(name);
    if (shape == nullptr) {
        error = "unknown command '" + name + "' (orbsim --help lists them)";
        return false;
    }
    int args = static_cast<int>(line.words.size()) - 1;
    if (args < shape->min_args || (shape->max_args >= 0 && args > shape->max_args)) {
        error = "usage: " + std::string(shape->usage);
        return false;
    }
    double number = 0;
    const auto& w = line.words;
    if (name == "run" && (!ParseNumber(w[1], number) || number < 0 || number > kMaxRunSeconds)) {
        error = "run SECONDS needs a number of seconds from 0 to 86400, got '" + w[1] + "'";
        return false;
    }
    if (name == "measure" && (!ParseNumber(w[1], number) || number <= 0 || number > kMaxRunSeconds)) {
        error = "measure SECONDS needs a number of seconds above 0, at most 86400, got '" + w[1] + "'";
        return false;
    }
    if (name == "frames" && (!ParseNumber(w[1], number) || number < 0 || number > kMaxFrames || number != std::floor(number))) {
        error = "frames N needs a whole number, got '" + w[1] + "'";
        return false;
    }
    if (name == "fps" && (!ParseNumber(w[1], number) || number < 1 || number > 1000 || number != std::floor(number))) {
        error = "fps N needs a whole number from 1 to 1000, got '" + w[1] + "'";
        return false;
    }
    if (name == "click") {
        for (int k = 2; k <= 3; ++k)
            if (!ParseNumber(w[static_cast<size_t>(k)], number) || number != std::floor(number) || std::fabs(number) > 100000) {
                error = "click needs whole pixel numbers, got '" + w[static_cast<size_t>(k)] + "'";
                return false;
            }
        if (w.size() == 5 && w[4] != "left" && w[4] != "right" && w[4] != "middle") {
            error = "click button must be left, right or middle";
            return false;
        }
    }
    if (name == "event") {
        if (!ParseNumber(w[1], number) || number < 1 || number > 0xFFFFFFFF || number != std::floor(number)) {
            error = "event NUMBER must be a key event number such as 0x10019, got '" + w[1] + "'";
            return false;
        }
        if (w.size() == 3 && (!ParseNumber(w[2], number) || number < INT32_MIN || number > UINT32_MAX)) {
            error = "event VALUE must be a number, got '" + w[2] + "'";
            return false;
        }
    }
    if (name == "aircraft") {
        // Tried on a scratch aircraft, so that a bad key stops the script before it runs.
        AircraftModel scratch = DefaultAircraft();
        for (size_t k = 1; k < w.size(); ++k) {
            size_t eq = w[k].find('=');
            if (eq == std::string::npos || eq == 0) {
                error = "aircraft takes KEY=VALUE words, got '" + w[k] + "'";
                return false;
            }
            if (!SetAircraftField(scratch, w[k].substr(0, eq), w[k].substr(eq + 1), error)) return false;
        }
    }
    if (name == "window") {
        if (w[2] != "open" && w[2] != "close" && w[2] != "toggle") {
            error = "window IDENT open|close|toggle";
            return false;
        }
        if (Lower(w[1]) != "main" && Lower(w[1]) != "main_panel" && (!ParseNumber(w[1], number) || number < 0)) {
            error = "window IDENT must be a number or main, got '" + w[1] + "'";
            return false;
        }
    }
    // What orbsim writes stays under --out, as the script's reader expects.
    if ((name == "shot" || name == "plot" || name == "track" || name == "profile") && w.size() >= 2) {
        const std::string& file = name == "shot" ? w[2] : w[1];
        if (!StaysInside(file)) {
            error = name + " writes under the output folder (--out); '" + file + "' leads out of it";
            return false;
        }
    }
    if (name == "plot" && w.size() != 3 && w.size() != 6) {
        error = "plot FILE ROUTE|gps [LAT LON NM]: a window needs its centre and its miles";
        return false;
    }
    if (name == "set" && !ParseNumber(w.back(), number)) {
        error = "set NAME VALUE needs a number as VALUE, got '" + w.back() + "'";
        return false;
    }
    if (name == "expect") {
        if (w[1] == "file") {
            bool presence = w.size() == 4 && (w[3] == "exists" || w[3] == "missing");
            bool content = w.size() >= 5 && (w[3] == "contains" || w[3] == "!contains");
            if (!presence && !content) {
                error = "usage: expect file PATH exists|missing, or expect file PATH contains|!contains TEXT";
                return false;
            }
        } else {
            size_t op = 0;
            for (size_t k = 2; k < w.size(); ++k)
                if (!line.quoted[k] && IsOperator(w[k])) {
                    op = k;
                    break;
                }
            if (op == 0 || op + 1 >= w.size()) {
                error = "expect WHAT OP VALUE, with OP one of == != < <= > >= contains !contains";
                return false;
            }
        }
    }
    if (name == "clear" && w[1] != "tokenreads" && w[1] != "keyevents" && w[1] != "all") {
        error = "clear tokenreads|keyevents|all";
        return false;
    }
    if (name == "traffic" && !CheckTrafficCommand(w, error)) return false;
    if (name == "gps" && !CheckGpsCommand(w, error)) return false;
    if (name == "keyboard") {
        std::array<std::string, 128> keys;
        int count = 0;
        if (!SplitKeyboardText(Join(w, 1, w.size()), error, keys, count)) return false;
    }
    if (name == "keyboard-key") {
        uint8_t scan = 0;
        int vk = 0;
        std::string canonical;
        if (!KeyByName(w[1], scan, vk, canonical)) {
            error = "no key '" + w[1] + "' (a letter, a digit, ENTER, NUMPADENTER, BACKSPACE, UP, DOWN, PGUP, PGDN, "
                    "SHIFT, CTRL, ALT, SPACE or ESC)";
            return false;
        }
        if (w.size() == 3 && w[2] != "press" && w[2] != "down" && w[2] != "up") {
            error = "usage: keyboard-key NAME [press|down|up]";
            return false;
        }
    }
    if (name == "keyboard-focus" && w[1] != "on" && w[1] != "off") {
        error = "usage: keyboard-focus on|off";
        return false;
    }
    if (name == "simconnect" && w[1] != "on" && w[1] != "off") {
        error = "simconnect on|off";
        return false;
    }
    if (name == "fsuipc") {
        const std::string& sub = w[1];
        if (sub == "runways") {
            if (w.size() < 4 || w[2].size() > 4 || w.size() > 7) {
                error = "fsuipc runways ICAO RWY [RWY...] (up to four runways)";
                return false;
            }
            for (size_t k = 3; k < w.size(); ++k) {
                uint8_t n = 0, d = 0;
                if (!ParseRunway(w[k].c_str(), n, d)) {
                    error = "runway '" + w[k] + "' is not like 27L, 09, 36C";
                    return false;
                }
            }
        } else if (sub == "answer_after" || sub == "version") {
            if (w.size() != 3 || !ParseNumber(w[2], number) || number < 0 || number > UINT32_MAX) {
                error = "fsuipc " + sub + " NUMBER";
                return false;
            }
        } else if (sub != "on" && sub != "off") {
            error = "fsuipc on|off|runways ICAO RWY...|answer_after N|version NUMBER";
            return false;
        }
    }
    return true;
}
}  // namespace

std::vector<std::string> ScriptCommandNames() {
    std::vector<std::string> names;
    for (const CommandSpec& c : kCommands) names.emplace_back(c.name);
    return names;
}

bool ParseScript(const std::string& path, const std::string& text, std::vector<ScriptLine>& lines, std::string& error) {
    lines.clear();
    int number = 0;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        start = end + 1;
        ++number;
        auto fail = [&](const std::string& message) {
            error = path + ":" + std::to_string(number) + ": " + message;
            return false;
        };
        if (number > kMaxScriptLines) return fail("script longer than 100000 lines");
        if (line.size() > kMaxScriptLineLength) return fail("line longer than 4096 characters");
        for (char c : line)
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r') return fail("line holds a control byte");
        ScriptLine parsed;
        parsed.number = number;
        std::string why;
        if (!SplitScriptLine(line, parsed, why)) return fail(why);
        if (parsed.words.empty()) continue;
        if (!CheckLine(parsed, why)) return fail(why);
        lines.push_back(std::move(parsed));
    }
    return true;
}

// [SECTION] Values of print and expect
namespace {
bool Fail(std::string& error, const std::string& message) {
    error = message;
    return false;
}

ScriptValue Number(double v) {
    ScriptValue value;
    value.number = v;
    return value;
}

ScriptValue Text(std::string t) {
    ScriptValue value;
    value.is_text = true;
    value.text = std::move(t);
    return value;
}

std::vector<std::string> SplitDots(const std::string& s) {
    std::vector<std::string> parts;
    size_t start = 0;
    while (true) {
        size_t dot = s.find('.', start);
        parts.push_back(s.substr(start, dot == std::string::npos ? std::string::npos : dot - start));
        if (dot == std::string::npos) break;
        start = dot + 1;
    }
    return parts;
}

// Text of a gauge's last frame: strings top to bottom, left to right.
std::vector<const DrawnText*> SortedScreen(const GaugeInstance& inst) {
    std::vector<const DrawnText*> texts;
    for (const DrawnText& t : inst.text_last) texts.push_back(&t);
    std::stable_sort(texts.begin(), texts.end(), [](const DrawnText* a, const DrawnText* b) {
        if (std::fabs(a->y - b->y) > 0.5) return a->y < b->y;
        return a->x < b->x;
    });
    return texts;
}

std::string ScreenText(const GaugeInstance& inst) {
    std::string out;
    for (const DrawnText* t : SortedScreen(inst)) {
        if (!out.empty()) out += '\n';
        out += t->text;
    }
    return out;
}

bool WindowIdent(const std::string& word, int& ident) {
    std::string w = Lower(word);
    if (w == "main" || w == "main_panel") {
        ident = 0;
        return true;
    }
    double n = 0;
    if (!ParseNumber(word, n) || n < 0 || n != std::floor(n)) return false;
    ident = static_cast<int>(n);
    return true;
}
}  // namespace

bool EvaluateWhat(HostState& host, const ScriptRun& run, const std::string& what_in, ScriptValue& value, std::string& error) {
    std::string what(TrimView(what_in));
    // Variables with blanks in their names come first.
    if (what.size() > 2 && (what[0] == 'A' || what[0] == 'a') && what[1] == ':') {
        CalculatorAnswer answer = EvaluateCalculator(host, "(" + what + ")");
        if (!answer.ok) return Fail(error, "'" + what + "' is not an A: variable orbsim knows (with a unit it takes)");
        value = answer.is_text ? Text(answer.text) : Number(answer.number);
        return true;
    }
    if (what.size() > 2 && (what[0] == 'L' || what[0] == 'l') && what[1] == ':') {
        std::string name(TrimView(std::string_view(what).substr(2)));
        size_t comma = name.find(',');
        if (comma != std::string::npos) name = std::string(TrimView(std::string_view(name).substr(0, comma)));
        int id = FindNamedVariable(host, name);
        value = Number(id >= 0 ? host.named[static_cast<size_t>(id)].value : 0);
        return true;
    }
    if (what.rfind("screen ", 0) == 0 || what.rfind("screen.", 0) == 0) {
        GaugeInstance* inst = FindInstance(host.gauges, std::string(TrimView(std::string_view(what).substr(7))));
        if (inst == nullptr) return Fail(error, "no gauge '" + what.substr(7) + "' on the panel");
        value = Text(ScreenText(*inst));
        return true;
    }
    std::vector<std::string> p = SplitDots(what);
    const std::string& head = p[0];
    if (p.size() == 1) {
        if (head == "time") return value = Number(host.aircraft.sim_time), true;
        if (head == "panel_time") return value = Number(host.panel_time), true;
        if (head == "frames") return value = Number(static_cast<double>(host.gauges.frames)), true;
        if (head == "ticks") return value = Number(Tick18(host)), true;
    }
    if (head == "aircraft" && p.size() == 2) {
        if (p[1] == "title") return value = Text(host.aircraft.title), true;
        double v = 0;
        if (!GetAircraftField(host.aircraft, p[1], v, error)) return false;
        value = Number(v);
        return true;
    }
    if (head == "token" && (p.size() == 2 || (p.size() == 3 && p[2] == "reads"))) {
        int token = 0;
        if (!TokenByName(p[1], token)) return Fail(error, "'" + p[1] + "' is no token number or name");
        if (p.size() == 2) return value = Number(TokenValue(host, token)), true;
        value = Number(token < kTokenTableSize ? static_cast<double>(host.token_reads[static_cast<size_t>(token)]) : 0);
        return true;
    }
    if (head == "keyevents") {
        const KeyEventLog& log = host.key_events;
        const KeyEventRecord* last = log.module_total > 0 ? &log.module_last : nullptr;
        uint64_t count = log.module_total;
        std::string field = p.size() > 1 ? what.substr(10) : "";
        if (field == "count") return value = Number(static_cast<double>(count)), true;
        if (field == "last") return value = Number(last ? last->event : 0), true;
        if (field == "last.value") return value = Number(last ? static_cast<int32_t>(last->value) : 0), true;
        if (field == "last.time") return value = Number(last ? last->time : -1), true;
        return Fail(error, "keyevents has count, last, last.value, last.time");
    }
    if (head == "event" && p.size() == 3) {
        double n = 0;
        if (!ParseNumber(p[1], n) || n < 0 || n > UINT32_MAX) return Fail(error, "'" + p[1] + "' is no event number");
        const KeyEventRecord* last = nullptr;
        uint64_t count = host.key_events.ModuleCount(static_cast<uint32_t>(n), &last);
        if (p[2] == "count") return value = Number(static_cast<double>(count)), true;
        if (p[2] == "last" || p[2] == "value") return value = Number(last ? static_cast<int32_t>(last->value) : 0), true;
        if (p[2] == "time") return value = Number(last ? last->time : -1), true;
        return Fail(error, "event.N has count, last (its value) and time");
    }
    if (head == "var" && p.size() >= 2) {
        std::string name = what.substr(4);
        for (const ModuleVariable& v : host.module_vars) {
            if (v.name != name) continue;
            if (v.pointer == nullptr) return value = Number(0), true;
            switch (v.type) {
            case TYPE_PFLOAT64: return value = Number(*static_cast<const double*>(v.pointer)), true;
            case TYPE_PUINT32: return value = Number(*static_cast<const uint32_t*>(v.pointer)), true;
            case TYPE_PSINT32: return value = Number(*static_cast<const int32_t*>(v.pointer)), true;
            default: return value = Number(static_cast<double>(reinterpret_cast<uintptr_t>(v.pointer))), true;
            }
        }
        return Fail(error, "no module variable '" + name + "' is registered");
    }
    if (head == "window" && p.size() == 2) {
        int ident = 0;
        if (!WindowIdent(p[1], ident)) return Fail(error, "'" + p[1] + "' is no window ident");
        bool found = false;
        for (const PanelWindow& w : host.gauges.windows) found |= !w.virtual_cockpit && w.ident == ident;
        if (!found) return Fail(error, "the panel has no window " + p[1]);
        value = Number(WindowVisible(host.gauges, ident) ? 1 : 0);
        return true;
    }
    if (head == "layer" && p.size() == 4) {
        GaugeInstance* inst = FindInstance(host.gauges, p[1]);
        if (inst == nullptr) return Fail(error, "no gauge '" + p[1] + "' on the panel");
        double k = 0;
        if (!ParseNumber(p[2], k) || k < 0 || k >= static_cast<double>(inst->layers.size()) || k != std::floor(k))
            return Fail(error, "gauge " + p[1] + " has no layer " + p[2]);
        auto flags = static_cast<FLAGS32>(inst->layers[static_cast<size_t>(k)].element->image_flags);
        if (p[3] == "hidden") return value = Number((flags & IMAGE_HIDDEN) ? 1 : 0), true;
        if (p[3] == "onscreen") return value = Number((flags & IMAGE_ON_SCREEN) ? 1 : 0), true;
        if (p[3] == "flags") return value = Number(flags), true;
        if (p[3] == "width") return value = Number(inst->layers[static_cast<size_t>(k)].bitmap.width), true;
        if (p[3] == "height") return value = Number(inst->layers[static_cast<size_t>(k)].bitmap.height), true;
        return Fail(error, "a layer has hidden, onscreen, flags, width and height");
    }
    if (head == "gauge" && p.size() >= 3) {
        GaugeInstance* inst = FindInstance(host.gauges, p[1]);
        if (inst == nullptr) return Fail(error, "no gauge '" + p[1] + "' on the panel");
        if (p.size() == 3 && p[2] == "draws") return value = Number(static_cast<double>(inst->draws)), true;
        if (p.size() == 3 && p[2] == "redraws") return value = Number(static_cast<double>(inst->redraws)), true;
        if (p.size() == 3 && p[2] == "texts") return value = Number(static_cast<double>(inst->text_last.size())), true;
        double s = 0;
        if (p.size() == 4 && p[2] == "service" && ParseNumber(p[3], s) && s >= 0 && s < kServiceCount)
            return value = Number(static_cast<double>(inst->services[static_cast<size_t>(s)])), true;
        return Fail(error, "a gauge has draws, redraws, texts and service.N");
    }
    if (head == "fsuipc" && p.size() >= 2) {
        const FsuipcServer& f = host.fsuipc;
        std::string field = what.substr(7);
        if (field == "requests") return value = Number(static_cast<double>(f.requests)), true;
        if (field == "lookups") return value = Number(static_cast<double>(f.lookups)), true;
        if (field == "rejected") return value = Number(static_cast<double>(f.rejected)), true;
        if (field == "library") return value = Number(f.client_library), true;
        if (field == "tower.writes") return value = Number(f.tower_writes), true;
        if (field == "tower.lat") return value = Number(f.tower_lat), true;
        if (field == "tower.lon") return value = Number(f.tower_lon), true;
        if (field == "tower.alt") return value = Number(f.tower_alt), true;
        double offset = 0, size = 4;
        if (ParseNumber(p[1], offset) && offset >= 0 && offset < kFsuipcOffsetSpace &&
            (p.size() == 2 || (p.size() == 3 && ParseNumber(p[2], size) && size >= 1 && size <= 8))) {
            value = Number(static_cast<double>(FsuipcPeek(f, static_cast<uint32_t>(offset), static_cast<uint32_t>(size))));
            return true;
        }
        return Fail(error, "fsuipc has requests, lookups, rejected, library, tower.*, and 0xOFFSET[.SIZE]");
    }
    if (head == "gps" && p.size() == 2 && p[1] == "count") return value = Number(static_cast<double>(host.gps.fixes.size())), true;
    if (head == "traffic" && p.size() == 2) {
        double n = 0;
        if (!TrafficValue(host, p[1], n, error)) return false;
        return value = Number(n), true;
    }
    if (head == "simconnect" && p.size() == 2) {
        const SimConnectState& s = host.simconnect;
        if (p[1] == "opens") return value = Number(s.opens), true;
        if (p[1] == "closes") return value = Number(s.closes), true;
        if (p[1] == "open") return value = Number(s.open ? 1 : 0), true;
        if (p[1] == "plans") return value = Number(static_cast<double>(s.plans.size())), true;
        if (p[1] == "last_plan") return value = Text(s.plans.empty() ? "" : s.plans.back()), true;
        if (p[1] == "last_plan_existed") return value = Number(!s.plan_existed.empty() && s.plan_existed.back()), true;
        if (p[1] == "last_plan_text") return value = Text(s.plan_texts.empty() ? "" : s.plan_texts.back()), true;
        return Fail(error, "simconnect has opens, closes, open, plans, last_plan, last_plan_existed");
    }
    if (head == "profile" && p.size() == 2) {
        if (!run.profile_drawn) return Fail(error, "no profile yet: the profile command sets profile.*");
        const ProfileFigures& f = run.profile;
        if (p[1] == "rows") return value = Number(f.rows), true;
        if (p[1] == "restricted") return value = Number(f.restricted), true;
        if (p[1] == "passed") return value = Number(f.passed), true;
        if (p[1] == "worst_miss") return value = Number(f.worst_miss), true;
        if (p[1] == "worst_approach_miss") return value = Number(f.worst_approach_miss), true;
        if (p[1] == "max_altitude") return value = Number(f.max_altitude), true;
        return Fail(error, "profile has rows, restricted, passed, worst_miss, worst_approach_miss and max_altitude");
    }
    if (head == "keyboard" && p.size() == 2) {
        const PcKeyboard& k = host.keyboard;
        if (p[1] == "hook") return value = Number(k.hook != nullptr ? 1 : 0), true;
        if (p[1] == "hooks_set") return value = Number(static_cast<double>(k.hooks_set)), true;
        if (p[1] == "strokes") return value = Number(static_cast<double>(k.strokes)), true;
        if (p[1] == "swallowed") return value = Number(static_cast<double>(k.swallowed)), true;
        if (p[1] == "reached") return value = Text(k.reached), true;
        if (p[1] == "focus") return value = Number(k.foreground ? 1 : 0), true;
        return Fail(error, "keyboard has hook, hooks_set, strokes, swallowed, reached and focus");
    }
    if (what == "slots.missing") return value = Number(static_cast<double>(host.missing_slot_calls)), true;
    if (what == "calculator.calls") return value = Number(static_cast<double>(host.calculator_calls)), true;
    return Fail(error, "unknown value '" + what + "'");
}

// [SECTION] Prints
namespace {
std::string FormatValue(const ScriptValue& v) {
    if (v.is_text) return "\"" + v.text + "\"";
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.10g", v.number);
    return buf;
}

bool PrintSpecial(HostState& host, ScriptRun& run, const std::vector<std::string>& w, std::string& error, bool& done) {
    done = true;
    std::FILE* out = run.out;
    const std::string& what = w[1];
    if (what == "keyevents" && w.size() == 2) {
        const KeyEventLog& log = host.key_events;
        std::fprintf(out, "keyevents (%llu):\n", static_cast<unsigned long long>(log.total));
        if (log.total > log.Kept())
            std::fprintf(out, "  (the first %llu not kept; the latest %zu follow)\n",
                         static_cast<unsigned long long>(log.total - log.Kept()), log.Kept());
        for (size_t i = 0; i < log.Kept(); ++i) {
            const KeyEventRecord& r = log.KeptAt(i);
            std::fprintf(out, "  %10.3f  0x%05X  %d  %s\n", r.time, r.event, static_cast<int32_t>(r.value),
                         r.from_module ? "module" : "script");
        }
        return true;
    }
    if (what == "aircraft" && w.size() == 2) {
        std::fprintf(out, "aircraft:\n");
        for (const std::string& line : DescribeAircraft(host.aircraft)) std::fprintf(out, "  %s\n", line.c_str());
        return true;
    }
    if (what == "tokenreads" && w.size() == 2) {
        std::fprintf(out, "tokenreads:\n");
        for (int t = 0; t < kTokenTableSize; ++t) {
            uint64_t n = host.token_reads[static_cast<size_t>(t)];
            if (n == 0) continue;
            const char* name = TokenName(t);
            std::fprintf(out, "  0x%03X  %-28s %" PRIu64 "\n", t, name ? name : "-", n);
        }
        return true;
    }
    if (what == "windows" && w.size() == 2) {
        std::fprintf(out, "windows:\n");
        for (const PanelWindow& win : host.gauges.windows)
            std::fprintf(out, "  [%s] ident=%d visible=%d%s\n", win.section.c_str(), win.ident, win.visible ? 1 : 0,
                         win.virtual_cockpit ? " (virtual cockpit)" : "");
        return true;
    }
    if (what == "gauges" && w.size() == 2) {
        std::fprintf(out, "gauges:\n");
        for (const auto& inst : host.gauges.instances)
            std::fprintf(out, "  %s#%d [%s] at %d,%d param=\"%s\" layers=%zu draws=%" PRIu64 " redraws=%" PRIu64 "\n",
                         inst->name.c_str(), inst->ordinal,
                         host.gauges.windows[static_cast<size_t>(inst->window)].section.c_str(), inst->x, inst->y,
                         inst->parameters.c_str(), inst->layers.size(), inst->draws, inst->redraws);
        return true;
    }
    if ((what == "screen" || what == "layers") && w.size() == 3) {
        GaugeInstance* inst = FindInstance(host.gauges, w[2]);
        if (inst == nullptr) return Fail(error, "no gauge '" + w[2] + "' on the panel");
        if (what == "screen") {
            std::fprintf(out, "screen %s:\n", w[2].c_str());
            for (const DrawnText* t : SortedScreen(*inst))
                std::fprintf(out, "  %5.1f %5.1f #%08X %s\n", t->y, t->x, t->argb, t->text.c_str());
        } else {
            std::fprintf(out, "layers %s:\n", w[2].c_str());
            for (size_t k = 0; k < inst->layers.size(); ++k) {
                const Layer& l = inst->layers[k];
                auto flags = static_cast<FLAGS32>(l.element->image_flags);
                std::fprintf(out, "  %zu type=%d resource=0x%X at %d,%d %dx%d flags=0x%08X hidden=%d%s%s\n", k,
                             l.element->element_type, l.element->resource_id, l.element->position.x,
                             l.element->position.y, l.bitmap.width, l.bitmap.height, flags,
                             (flags & IMAGE_HIDDEN) ? 1 : 0, l.dc ? " dc" : "", l.bitmap.fallback ? " grey" : "");
            }
        }
        return true;
    }
    done = false;
    return true;
}
}  // namespace

// [SECTION] Running
namespace {
std::string Resolve(const std::string& base, const std::string& path) {
    if (!path.empty() && path[0] == '/') return path;
    return base + "/" + path;
}

// A file `expect file` reads whole; the module's logs and routes are small.
constexpr off_t kMaxExpectFileBytes = 64 << 20;

bool ReadSmallFile(const std::string& path, std::string& text, std::string& error) {
    struct stat st{};
    if (stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return Fail(error, path + ": not a file orbsim can read");
    if (st.st_size > kMaxExpectFileBytes) return Fail(error, path + ": larger than 64 MiB; too large to search");
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return Fail(error, path + ": cannot read the file");
    text.clear();
    char buffer[65536];
    size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0 && text.size() < static_cast<size_t>(kMaxExpectFileBytes))
        text.append(buffer, n);
    bool failed = std::ferror(file) != 0;
    std::fclose(file);
    if (failed) return Fail(error, path + ": cannot read the file");
    return true;
}

void TrackRow(HostState& host, ScriptRun& run) {
    const AircraftModel& a = host.aircraft;
    double gs = 0, track = 0;
    GroundVector(a, gs, track);
    std::fprintf(run.track, "%.3f,%.6f,%.6f,%.1f,%.2f,%.1f,%.1f,%.0f\n", a.sim_time, a.lat, a.lon, a.alt, a.hdg, a.ias, gs,
                 a.vs);
}

void AfterFrame(HostState& host, ScriptRun& run) {
    if (host.aircraft.sim_time + 1e-9 >= run.flown_next) {
        if (run.flown.capacity() < kFlownLimit) run.flown.reserve(kFlownLimit);
        if (run.flown.size() == kFlownLimit) {
            for (size_t i = 1; i < kFlownLimit / 2; ++i) run.flown[i] = run.flown[2 * i];
            run.flown.resize(kFlownLimit / 2);
            run.flown_spacing *= 2;
        }
        run.flown.emplace_back(host.aircraft.lat, host.aircraft.lon);
        run.flown_next = std::floor(host.aircraft.sim_time + 1e-9) + run.flown_spacing;
    }
    if (run.track == nullptr || host.aircraft.sim_time + 1e-9 < run.track_next) return;
    TrackRow(host, run);
    run.track_next = std::floor(host.aircraft.sim_time + 1e-9) + 1;
}

bool Compare(const ScriptValue& seen, const std::string& op, const ScriptValue& wanted) {
    if (op == "contains" || op == "!contains") {
        bool found = seen.text.find(wanted.is_text ? wanted.text : FormatValue(wanted)) != std::string::npos;
        return found == (op == "contains");
    }
    if (seen.is_text || wanted.is_text) {
        std::string a = seen.is_text ? seen.text : FormatValue(seen);
        std::string b = wanted.is_text ? wanted.text : FormatValue(wanted);
        if (op == "==") return a == b;
        if (op == "!=") return a != b;
        return false;
    }
    double a = seen.number, b = wanted.number;
    if (op == "==") return a == b;
    if (op == "!=") return a != b;
    if (op == "<") return a < b;
    if (op == "<=") return a <= b;
    if (op == ">") return a > b;
    return a >= b;
}
}  // namespace

ExitCode RunScript(HostState& host, ScriptRun& run, const std::vector<ScriptLine>& lines, std::string& error) {
    for (const ScriptLine& line : lines) {
        const std::vector<std::string>& w = line.words;
        const std::string& cmd = w[0];
        std::string where = run.script_path + ":" + std::to_string(line.number) + ": ";
        std::string why;
        auto bad = [&](const std::string& message) {
            error = where + message;
            return ExitCode::BadInput;
        };
        auto need_panel = [&]() { return host.gauges.loaded; };
        double number = 0;

        if (cmd == "panel") {
            std::string path = Resolve(run.sim_dir, w[1]);
            if (!StartModule(host, run.sim_dir, why)) {
                error = "orbsim: " + why;  // the module's file, not the script line, is at fault
                return ExitCode::BadInput;
            }
            if (!LoadPanel(host, path, why)) {
                error = why + " (from " + where.substr(0, where.size() - 2) + ")";
                return ExitCode::BadInput;
            }
        } else if (cmd == "run") {
            ParseNumber(w[1], number);
            long long frames = std::llround(number * host.fps);
            if (number > 0 && frames == 0) frames = 1;
            for (long long f = 0; f < frames; ++f) {
                RunFrame(host, true);
                AfterFrame(host, run);
            }
        } else if (cmd == "measure") {
            // As `run`, timing the module's work of each frame (every
            // gauge's update and draw services), and printing the figures.
            if (!need_panel()) return bad("measure needs a panel: no panel is loaded");
            ParseNumber(w[1], number);
            long long frames = std::max(1LL, std::llround(number * host.fps));
            const size_t count = host.gauges.instances.size();
            std::vector<double> times;
            std::vector<std::vector<double>> per_gauge(count);
            times.reserve(static_cast<size_t>(frames));
            for (long long f = 0; f < frames; ++f) {
                RunFrame(host, true);
                times.push_back(host.gauges.last_frame_module_us);
                for (size_t i = 0; i < count; ++i) {
                    const GaugeInstance& inst = *host.gauges.instances[i];
                    const PanelWindow& window = host.gauges.windows[static_cast<size_t>(inst.window)];
                    if (window.virtual_cockpit || window.visible) per_gauge[i].push_back(inst.last_module_us);
                }
                AfterFrame(host, run);
            }
            auto median = [](std::vector<double>& v) {
                std::sort(v.begin(), v.end());
                return v.empty() ? 0.0 : v[v.size() / 2];
            };
            std::sort(times.begin(), times.end());
            auto at = [&](double q) { return times[static_cast<size_t>(q * static_cast<double>(times.size() - 1))]; };
            int drawn = 0;
            for (const auto& v : per_gauge) drawn += !v.empty();
            std::printf("measure: %lld frames, %d gauges drawn a frame: median %.0f us, 90%% %.0f us, worst %.0f us\n",
                        frames, drawn, at(0.5), at(0.9), times.back());
            // Each drawn gauge's median, the dearest first.
            std::vector<std::pair<double, size_t>> order;
            for (size_t i = 0; i < count; ++i)
                if (!per_gauge[i].empty()) order.emplace_back(median(per_gauge[i]), i);
            std::sort(order.rbegin(), order.rend());
            for (const auto& [us, i] : order) {
                const GaugeInstance& inst = *host.gauges.instances[i];
                std::printf("measure:   %-20s #%d  median %.0f us\n", inst.name.c_str(), inst.ordinal, us);
            }
            std::fflush(stdout);
        } else if (cmd == "frames") {
            ParseNumber(w[1], number);
            for (long long f = 0; f < static_cast<long long>(number); ++f) RunFrame(host, false);
        } else if (cmd == "click") {
            if (!need_panel()) return bad("click needs a panel: no panel is loaded");
            GaugeInstance* inst = FindInstance(host.gauges, w[1]);
            bool xml_hit = false;
            if (inst == nullptr && ClickXmlGauge(host, w[1], static_cast<int>(std::atof(w[2].c_str())),
                                                 static_cast<int>(std::atof(w[3].c_str())), xml_hit)) {
                if (!xml_hit) std::fprintf(stderr, "orbsim: %sclick at %s,%s of %s hit no area\n", where.c_str(), w[2].c_str(), w[3].c_str(), w[1].c_str());
                continue;
            }
            if (inst == nullptr) return bad("no gauge '" + w[1] + "' on the panel");
            const PanelWindow& window = host.gauges.windows[static_cast<size_t>(inst->window)];
            if (!window.virtual_cockpit && !window.visible)
                return bad("gauge " + w[1] + " is in [" + window.section + "], which is closed: no one can click it");
            double x = 0, y = 0;
            ParseNumber(w[2], x);
            ParseNumber(w[3], y);
            FLAGS32 flags = MOUSE_LEFTSINGLE;
            if (w.size() == 5 && w[4] == "right") flags = MOUSE_RIGHTSINGLE;
            if (w.size() == 5 && w[4] == "middle") flags = MOUSE_MIDDLESINGLE;
            ClickResult result = DeliverClick(*inst, static_cast<int>(x), static_cast<int>(y), flags);
            if (!result.delivered)
                std::fprintf(stderr, "orbsim: %sclick at %s,%s of %s hit no mouse area\n", where.c_str(), w[2].c_str(),
                             w[3].c_str(), w[1].c_str());
        } else if (cmd == "key" || cmd == "type") {
            // A pilot's presses: the middle of each key's box, then a drawn
            // frame, since a page acts on only the last press of a frame.
            if (!need_panel()) return bad(cmd + " needs a panel: no panel is loaded");
            GaugeInstance* inst = FindInstance(host.gauges, w[1]);
            if (inst == nullptr) return bad("no gauge '" + w[1] + "' on the panel");
            const PanelWindow& window = host.gauges.windows[static_cast<size_t>(inst->window)];
            if (!window.virtual_cockpit && !window.visible)
                return bad("gauge " + w[1] + " is in [" + window.section + "], which is closed: no one can press its keys");
            std::vector<const CduKey*> presses;
            if (cmd == "key") {
                std::string name = Join(w, 2, w.size());
                const CduKey* key = FindKeyByName(inst->name, name);
                if (key == nullptr) return bad("gauge " + inst->name + " has no key '" + name + "'");
                presses.push_back(key);
            } else {
                std::string text = Join(w, 2, w.size());
                for (char c : text) {
                    const CduKey* key = FindKeyForCharacter(inst->name, c);
                    if (key == nullptr) return bad("gauge " + inst->name + " has no key that types '" + std::string(1, c) + "'");
                    presses.push_back(key);
                }
            }
            for (const CduKey* key : presses) {
                ClickResult result = DeliverClick(*inst, key->x + key->w / 2, key->y + key->h / 2, MOUSE_LEFTSINGLE);
                if (!result.delivered) return bad("key " + std::string(key->name) + " of " + inst->name + " took no click");
                RunFrame(host, false);
            }
        } else if (cmd == "keyboard" || cmd == "keyboard-key") {
            // A pilot at the PC keyboard: each key down for a drawn frame, then
            // up for one, so that the MCU's poll sees every press.
            if (!need_panel()) return bad(cmd + " needs a panel: no panel is loaded");
            std::array<std::string, 128> keys;
            int count = 0;
            std::string mode = "press";
            if (cmd == "keyboard") {
                if (!SplitKeyboardText(Join(w, 1, w.size()), why, keys, count)) return bad(why);
            } else {
                keys[0] = w[1];
                count = 1;
                if (w.size() == 3) mode = w[2];
            }
            for (int i = 0; i < count; ++i) {
                uint8_t scan = 0;
                int vk = 0;
                std::string canonical;
                KeyByName(keys[static_cast<size_t>(i)], scan, vk, canonical);
                if (mode != "up") {
                    KeyDown(host, scan, vk, canonical);
                    RunFrame(host, false);
                }
                if (mode != "down") {
                    KeyUp(host, scan, vk);
                    RunFrame(host, false);
                }
            }
        } else if (cmd == "keyboard-focus") {
            host.keyboard.foreground = w[1] == "on";
        } else if (cmd == "set") {
            std::string name = Join(w, 1, w.size() - 1);
            ParseNumber(w.back(), number);
            if (name.size() > 2 && (name[0] == 'A' || name[0] == 'a') && name[1] == ':') {
                if (!SetAircraftVariable(host, std::string_view(name).substr(2), number, why)) return bad(why);
            } else if (name.size() > 2 && (name[0] == 'L' || name[0] == 'l') && name[1] == ':') {
                std::string local(TrimView(std::string_view(name).substr(2)));
                size_t comma = local.find(',');
                if (comma != std::string::npos) local = std::string(TrimView(std::string_view(local).substr(0, comma)));
                int id = RegisterNamedVariable(host, local);
                if (id < 0) return bad("no room for local variable '" + local + "'");
                host.named[static_cast<size_t>(id)].value = number;
            } else {
                int token = 0;
                if (!TokenByName(name, token)) return bad("'" + name + "' is no token, A: or L: variable");
                if (!SetToken(host, token, number, why)) return bad(why);
            }
        } else if (cmd == "aircraft") {
            for (size_t k = 1; k < w.size(); ++k) {
                size_t eq = w[k].find('=');
                if (!SetAircraftField(host.aircraft, w[k].substr(0, eq), w[k].substr(eq + 1), why)) return bad(why);
            }
        } else if (cmd == "window") {
            if (!need_panel()) return bad("window needs a panel: no panel is loaded");
            int ident = 0;
            WindowIdent(w[1], ident);
            bool ok = w[2] == "toggle" ? ToggleWindow(host.gauges, ident) : SetWindowVisible(host.gauges, ident, w[2] == "open");
            if (!ok) return bad("the panel has no window " + w[1]);
        } else if (cmd == "event") {
            double event = 0, value = 0;
            ParseNumber(w[1], event);
            if (w.size() == 3) ParseNumber(w[2], value);
            uint32_t raw = value < 0 ? static_cast<uint32_t>(static_cast<int32_t>(value)) : static_cast<uint32_t>(value);
            DeliverKeyEvent(host, static_cast<uint32_t>(event), raw, false);
        } else if (cmd == "print") {
            bool done = false;
            if (!PrintSpecial(host, run, w, why, done)) return bad(why);
            if (!done) {
                std::string what = Join(w, 1, w.size());
                ScriptValue value;
                if (!EvaluateWhat(host, run, what, value, why)) return bad(why);
                std::fprintf(run.out, "%s = %s\n", what.c_str(), FormatValue(value).c_str());
            }
            std::fflush(run.out);
        } else if (cmd == "shot") {
            if (!need_panel()) return bad("shot needs a panel: no panel is loaded");
            GaugeInstance* inst = FindInstance(host.gauges, w[1]);
            if (inst == nullptr) return bad("no gauge '" + w[1] + "' on the panel");
            if (!WritePng(Resolve(run.out_dir, w[2]), ComposeInstance(*inst), why)) return bad(why);
        } else if (cmd == "plot") {
            // The route comes from its file: orbsim sees the module's plan only as the simulator would,
            // and "gps" is the plan the module last handed to the simulator's planner.
            std::string route_path;
            if (w[2] == "gps") {
                if (host.simconnect.plans.empty()) return bad("plot gps: the module has handed no plan to the simulator");
                route_path = PathIgnoringCase(host.simconnect.plans.back());
            } else {
                route_path = Resolve(run.sim_dir, w[2]);
                struct stat route_stat{};
                if (stat(route_path.c_str(), &route_stat) != 0)
                    route_path = Resolve(run.sim_dir, "orb/flightplans/" + w[2]);
            }
            std::vector<RouteFix> route;
            if (!ReadRouteFile(route_path, route, why)) return bad(why);
            std::vector<TrackPoint> flown;
            for (const auto& p : run.flown) flown.push_back({p.first, p.second});
            std::string out_path = Resolve(run.out_dir, w[1]);
            size_t slash = out_path.rfind('/');
            if (!MakeFolders(out_path.substr(0, slash), why)) return bad(why);
            PlotWindow window;
            if (w.size() == 6) {
                window.set = true;
                if (!ParseNumber(w[3], window.lat) || !ParseNumber(w[4], window.lon) ||
                    !ParseNumber(w[5], window.half_nm) || std::fabs(window.lat) > 90 || std::fabs(window.lon) > 180 ||
                    window.half_nm <= 0)
                    return bad("plot FILE ROUTE LAT LON NM: a latitude, a longitude and miles above 0");
            }
            std::string title = (w[2] == "gps" ? std::string("the plan in the simulator's GPS") : w[2]) + "  (" + std::to_string(static_cast<int>(host.aircraft.sim_time)) + " s flown)";
            if (!WriteRoutePlot(out_path, route, flown, title, why, window)) return bad(why);
        } else if (cmd == "profile") {
            // The module's predictions from the file it writes at each EXEC (or one the
            // script names), the flight from the track the script is writing.
            std::string profile_path = w.size() == 3 ? Resolve(run.sim_dir, w[2])
                                                     : PathIgnoringCase(run.sim_dir + "/orb/vnav_profile.txt");
            struct stat profile_stat{};
            if (stat(profile_path.c_str(), &profile_stat) != 0)
                return bad("profile: " + profile_path + " is missing (the module writes it at each EXEC)");
            if (run.track_path.empty()) return bad("profile needs the flown track: start one with 'track FILE' first");
            if (run.track != nullptr) std::fflush(run.track);
            auto bad_file = [&](const std::string& message) {
                error = message + " (from " + where.substr(0, where.size() - 2) + ")";
                return ExitCode::BadInput;
            };
            VerticalProfile profile;
            if (!ReadVerticalProfile(profile_path, profile, why)) return bad_file(why);
            std::vector<FlownPoint> flown;
            if (!ReadTrackFile(run.track_path, flown, why)) return bad_file(why);
            std::vector<double> along = AlongRouteDistances(profile, flown);
            ProfileFigures figures = CompareProfile(profile, flown, along);
            std::string out_path = Resolve(run.out_dir, w[1]);
            if (!MakeFolders(out_path.substr(0, out_path.rfind('/')), why)) return bad(why);
            std::string title = "vertical profile  (" + std::to_string(static_cast<int>(host.aircraft.sim_time)) + " s flown)";
            if (!WriteProfilePlot(out_path, profile, flown, along, figures, title, why)) return bad(why);
            std::fprintf(run.out,
                         "profile: %d rows, %d restricted, %d altitude restrictions passed, worst miss %.0f ft "
                         "(VNAV's), %.0f ft (approach altitudes)\n",
                         figures.rows, figures.restricted, figures.passed, figures.worst_miss,
                         figures.worst_approach_miss);
            for (const RestrictionCheck& check : figures.checks) std::fprintf(run.out, "  %s\n", DescribeCheck(check).c_str());
            std::fflush(run.out);
            run.profile = std::move(figures);
            run.profile_drawn = true;
        } else if (cmd == "reload") {
            if (!ReloadPanel(host, why)) return bad(why);
        } else if (cmd == "track") {
            if (run.track != nullptr) std::fclose(run.track);
            run.track = nullptr;
            if (w.size() == 2) {
                std::string path = Resolve(run.out_dir, w[1]);
                size_t slash = path.rfind('/');
                if (!MakeFolders(path.substr(0, slash), why)) return bad(why);
                run.track = std::fopen(path.c_str(), "w");
                if (run.track == nullptr) return bad(path + ": cannot write the track");
                run.track_path = path;
                std::fprintf(run.track, "time,lat,lon,altitude,heading,ias,gs,vs\n");
                TrackRow(host, run);
                run.track_next = std::floor(host.aircraft.sim_time + 1e-9) + 1;
            }
        } else if (cmd == "expect") {
            if (w[1] == "file") {
                std::string path = w[2].rfind("out:", 0) == 0 ? Resolve(run.out_dir, w[2].substr(4)) : Resolve(run.sim_dir, w[2]);
                struct stat st{};
                bool exists = stat(path.c_str(), &st) == 0;
                if (w[3] == "exists" || w[3] == "missing") {
                    if (exists != (w[3] == "exists")) {
                        error = where + "expected file " + w[2] + " " + w[3] + ", but it " + (exists ? "exists" : "is missing");
                        return ExitCode::ExpectFailed;
                    }
                    continue;
                }
                std::string wanted = Join(w, 4, w.size());
                std::string expectation = "expected file " + w[2] + " " + w[3] + " " + FormatValue(Text(wanted));
                if (!exists) {
                    error = where + expectation + ", but it is missing";
                    return ExitCode::ExpectFailed;
                }
                std::string text;
                if (!ReadSmallFile(path, text, why)) return bad(why);
                if ((text.find(wanted) != std::string::npos) != (w[3] == "contains")) {
                    error = where + expectation + ", but it " + (w[3] == "contains" ? "does not" : "does");
                    return ExitCode::ExpectFailed;
                }
                continue;
            }
            size_t op = 0;
            for (size_t k = 2; k < w.size(); ++k)
                if (!line.quoted[k] && IsOperator(w[k])) {
                    op = k;
                    break;
                }
            std::string what = Join(w, 1, op);
            ScriptValue seen, wanted;
            if (!EvaluateWhat(host, run, what, seen, why)) return bad(why);
            std::string wanted_text = Join(w, op + 1, w.size());
            bool single_quoted = op + 2 == w.size() && line.quoted[op + 1];
            if (!single_quoted && ParseNumber(wanted_text, number)) wanted = Number(number);
            else wanted = Text(wanted_text);
            if ((w[op] == "contains" || w[op] == "!contains") && !seen.is_text)
                return bad(w[op] + " needs a text, such as screen GAUGE");
            if (!Compare(seen, w[op], wanted)) {
                error = where + "expected " + what + " " + w[op] + " " + FormatValue(wanted) + ", saw " + FormatValue(seen);
                return ExitCode::ExpectFailed;
            }
        } else if (cmd == "fsuipc") {
            FsuipcServer& f = host.fsuipc;
            if (w[1] == "on" || w[1] == "off") {
                f.enabled = w[1] == "on";
            } else if (w[1] == "answer_after") {
                ParseNumber(w[2], number);
                f.answer_after = static_cast<int>(number);
            } else if (w[1] == "version") {
                ParseNumber(w[2], number);
                f.version = static_cast<uint32_t>(number);
            } else {
                RunwayAnswer answer;
                std::snprintf(answer.airport, sizeof answer.airport, "%s", Upper(w[2]).c_str());
                for (size_t k = 3; k < w.size(); ++k) {
                    uint8_t n = 0, d = 0;
                    ParseRunway(w[k].c_str(), n, d);
                    int slot = static_cast<int>(k - 3);
                    answer.words[slot / 2] |= (static_cast<uint32_t>(n) | (static_cast<uint32_t>(d) << 8)) << (16 * (slot % 2));
                }
                auto& list = f.runways;
                list.erase(std::remove_if(list.begin(), list.end(),
                                          [&](const RunwayAnswer& r) { return std::strcmp(r.airport, answer.airport) == 0; }),
                           list.end());
                if (static_cast<int>(list.size()) >= kMaxRunwayAirports) return bad("more than 16 airports with runways");
                list.push_back(answer);
            }
        } else if (cmd == "gps") {
            if (!RunGpsCommand(host.gps, w, why)) return bad(why);
        } else if (cmd == "traffic") {
            std::string why;
            if (!RunTrafficCommand(host, w, why)) return bad(why);
        } else if (cmd == "simconnect") {
            if (host.module != nullptr) return bad("simconnect on|off must come before the first panel (the module is loaded then)");
            host.simconnect.enabled = w[1] == "on";
        } else if (cmd == "clear") {
            if (w[1] == "tokenreads" || w[1] == "all") {
                host.token_reads = {};
                host.token_reads_other = 0;
            }
            if (w[1] == "keyevents" || w[1] == "all") host.key_events.Clear();
        } else if (cmd == "fps") {
            ParseNumber(w[1], number);
            host.fps = static_cast<int>(number);
        } else if (cmd == "echo") {
            std::fprintf(run.out, "%s\n", Join(w, 1, w.size()).c_str());
            std::fflush(run.out);
        }
    }
    return ExitCode::Ok;
}

void FinishRun(ScriptRun& run) {
    if (run.track != nullptr) std::fclose(run.track);
    run.track = nullptr;
}

}  // namespace orbsim
