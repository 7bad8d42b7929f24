// xml_gauge.cpp: the XML gauge player. The file is scanned for the few
// elements orbsim plays (<Update>, <Area> with its <Click>); the scripts are
// compiled once into tokens with their file lines, braces matched, so that
// a bad gauge is refused at load with the line to look at, and a frame only
// walks a token list with a bounded stack.
//
// Index:
//   [SECTION] Scripts: compiling
//   [SECTION] Scripts: running
//   [SECTION] Gauge files
//   [SECTION] The panel's XML gauges
#include "xml_gauge.h"

#include "host_state.h"
#include "panel_cfg.h"
#include "panel_table.h"
#include "sim_values.h"
#include "text_util.h"

#include <dirent.h>
#include <strings.h>

#include <cmath>
#include <cstdio>
#include <cstring>

namespace orbsim {

// [SECTION] Scripts: compiling
namespace {
// Key events a gauge may name; any other is written as its number (K:0x10337).
struct KeyName {
    const char* name;
    double number;
};
constexpr KeyName kKeyNames[] = {
    {"AP_NAV1_HOLD", 0x100C1}, {"AP_MASTER", 0x10044}, {"AP_HDG_HOLD_ON", 0x1010F},
    {"HEADING_BUG_SET", 0x101FA}, {"AP_ALT_VAR_SET_ENGLISH", 0x1024C}, {"AP_SPD_VAR_SET", 0x101F5},
};

struct Word {
    std::string_view text;
    int line;
};

// Words parted by blanks; a "(...)" is one word whatever it holds.
bool SplitWords(std::string_view text, int first_line, std::vector<Word>& words, int& bad_line) {
    int line = first_line;
    size_t at = 0;
    while (at < text.size()) {
        char c = text[at];
        if (c == '\n') ++line;
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            ++at;
            continue;
        }
        size_t start = at;
        if (c == '(') {
            size_t close = text.find(')', at);
            size_t newline = text.find('\n', at);
            if (close == std::string_view::npos || (newline != std::string_view::npos && newline < close)) {
                bad_line = line;
                return false;
            }
            at = close + 1;
        } else {
            while (at < text.size() && !std::strchr(" \t\r\n(", text[at])) ++at;
        }
        words.push_back({text.substr(start, at - start), line});
    }
    return true;
}

std::string Decode(std::string_view s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s.substr(i, 4) == "&lt;") out += '<', i += 3;
        else if (s.substr(i, 4) == "&gt;") out += '>', i += 3;
        else if (s.substr(i, 5) == "&amp;") out += '&', i += 4;
        else out += s[i];
    }
    return out;
}

// "(L:name, unit)" -> "name"
std::string VariableName(std::string_view inside) {
    size_t comma = inside.find(',');
    return std::string(TrimView(inside.substr(0, comma)));
}
}  // namespace

bool CompileXmlScript(std::string_view raw, const std::string& file, int first_line, XmlScript& script,
                      std::string& error) {
    script.tokens.clear();
    std::string text = Decode(raw);
    std::vector<Word> words;
    int bad_line = first_line;
    auto fail = [&](int line, const std::string& message) {
        error = file + ":" + std::to_string(line) + ": " + message;
        return false;
    };
    if (!SplitWords(text, first_line, words, bad_line)) return fail(bad_line, "a \"(\" without its \")\" on the line");
    std::vector<int> open;  // indices of If and Else waiting for their "}"
    static const std::pair<const char*, XmlOp> kOperators[] = {
        {"+", XmlOp::Add}, {"-", XmlOp::Sub}, {"*", XmlOp::Mul}, {"/", XmlOp::Div}, {"%", XmlOp::Mod},
        {"==", XmlOp::Eq}, {"!=", XmlOp::Ne}, {"<", XmlOp::Lt}, {">", XmlOp::Gt}, {"<=", XmlOp::Le},
        {">=", XmlOp::Ge}, {"eq", XmlOp::Eq}, {"ne", XmlOp::Ne}, {"lt", XmlOp::Lt}, {"gt", XmlOp::Gt},
        {"le", XmlOp::Le}, {"ge", XmlOp::Ge}, {"and", XmlOp::And}, {"&&", XmlOp::And}, {"or", XmlOp::Or},
        {"||", XmlOp::Or}, {"!", XmlOp::Not}, {"not", XmlOp::Not}, {"d", XmlOp::Dup}, {"p", XmlOp::Pop},
    };
    for (const Word& w : words) {
        if (static_cast<int>(script.tokens.size()) >= kMaxScriptTokens) return fail(w.line, "script longer than 4096 words");
        XmlToken t;
        t.line = w.line;
        std::string_view s = w.text;
        double number = 0;
        bool known = false;
        if (s.front() == '(') {
            std::string_view inside = TrimView(s.substr(1, s.size() - 2));
            if (inside.substr(0, 2) == "L:") t.op = XmlOp::ReadL, t.name = VariableName(inside.substr(2)), known = !t.name.empty();
            else if (inside.substr(0, 3) == ">L:") t.op = XmlOp::WriteL, t.name = VariableName(inside.substr(3)), known = !t.name.empty();
            else if (inside.substr(0, 2) == "A:") t.op = XmlOp::ReadA, t.name = "(" + std::string(inside) + ")", known = true;
            else if (inside.substr(0, 3) == ">K:") {
                std::string_view event = TrimView(inside.substr(3));
                t.op = XmlOp::SendK;
                for (const KeyName& k : kKeyNames)
                    if (event == k.name) t.number = k.number, known = true;
                if (!known && ParseNumber(event, number) && number > 0 && number < 4294967296.0) t.number = number, known = true;
                if (!known) return fail(w.line, "key event '" + std::string(event) + "' is not one orbsim knows (give its number)");
            }
            if (!known) return fail(w.line, "'" + std::string(s) + "' is no variable orbsim plays (L:, A:, >L:, >K:)");
        } else if (s == "if{") {
            t.op = XmlOp::If;
            open.push_back(static_cast<int>(script.tokens.size()));
            known = true;
        } else if (s == "els{") {
            // Only straight after the "}" of an if{.
            if (script.tokens.empty() || script.tokens.back().op != XmlOp::End || script.tokens.back().jump != 1)
                return fail(w.line, "els{ without an if{ } before it");
            t.op = XmlOp::Else;
            open.push_back(static_cast<int>(script.tokens.size()));
            known = true;
        } else if (s == "}") {
            if (open.empty()) return fail(w.line, "a \"}\" without its if{ or els{");
            int start = open.back();
            open.pop_back();
            script.tokens[static_cast<size_t>(start)].jump = static_cast<int>(script.tokens.size()) + 1;
            t.op = XmlOp::End;
            t.jump = script.tokens[static_cast<size_t>(start)].op == XmlOp::If ? 1 : 0;  // marks the end of an if
            known = true;
        } else if (ParseNumber(s, number)) {
            t.op = XmlOp::Number;
            t.number = number;
            known = true;
        } else {
            for (const auto& [word, op] : kOperators)
                if (s == word) t.op = op, known = true;
        }
        if (!known) return fail(w.line, "'" + std::string(s) + "' is no word of the scripts orbsim plays");
        script.tokens.push_back(t);
    }
    if (!open.empty()) return fail(script.tokens[static_cast<size_t>(open.back())].line, "if{ or els{ without its \"}\"");
    return true;
}

// [SECTION] Scripts: running
void RunXmlScript(HostState& host, const XmlScript& script) {
    double stack[kMaxScriptStack];
    int depth = 0;
    auto pop = [&]() { return depth > 0 ? stack[--depth] : 0.0; };
    auto push = [&](double v) {
        if (depth < kMaxScriptStack) stack[depth++] = std::isfinite(v) ? v : 0;
    };
    const auto& t = script.tokens;
    size_t i = 0;
    while (i < t.size()) {
        const XmlToken& k = t[i];
        size_t next = i + 1;
        switch (k.op) {
        case XmlOp::Number: push(k.number); break;
        case XmlOp::ReadL: {
            int id = FindNamedVariable(host, k.name);
            push(id >= 0 ? host.named[static_cast<size_t>(id)].value : 0);
            break;
        }
        case XmlOp::ReadA: {
            CalculatorAnswer answer = EvaluateCalculator(host, k.name);
            push(answer.ok && !answer.is_text ? answer.number : 0);
            break;
        }
        case XmlOp::WriteL: {
            int id = RegisterNamedVariable(host, k.name);
            double v = pop();
            if (id >= 0) host.named[static_cast<size_t>(id)].value = v;
            break;
        }
        case XmlOp::SendK: {
            double v = pop();
            uint32_t value = v < 0 ? static_cast<uint32_t>(static_cast<int32_t>(v)) : static_cast<uint32_t>(v);
            DeliverKeyEvent(host, static_cast<uint32_t>(k.number), value, false);
            break;
        }
        case XmlOp::Add: { double b = pop(), a = pop(); push(a + b); break; }
        case XmlOp::Sub: { double b = pop(), a = pop(); push(a - b); break; }
        case XmlOp::Mul: { double b = pop(), a = pop(); push(a * b); break; }
        case XmlOp::Div: { double b = pop(), a = pop(); push(b != 0 ? a / b : 0); break; }
        case XmlOp::Mod: { double b = pop(), a = pop(); push(b != 0 ? std::fmod(a, b) : 0); break; }
        case XmlOp::Eq: { double b = pop(), a = pop(); push(a == b); break; }
        case XmlOp::Ne: { double b = pop(), a = pop(); push(a != b); break; }
        case XmlOp::Lt: { double b = pop(), a = pop(); push(a < b); break; }
        case XmlOp::Gt: { double b = pop(), a = pop(); push(a > b); break; }
        case XmlOp::Le: { double b = pop(), a = pop(); push(a <= b); break; }
        case XmlOp::Ge: { double b = pop(), a = pop(); push(a >= b); break; }
        case XmlOp::And: { double b = pop(), a = pop(); push(a != 0 && b != 0); break; }
        case XmlOp::Or: { double b = pop(), a = pop(); push(a != 0 || b != 0); break; }
        case XmlOp::Not: push(pop() == 0); break;
        case XmlOp::Dup: { double a = pop(); push(a); push(a); break; }
        case XmlOp::Pop: pop(); break;
        case XmlOp::If:
            // False: past the "}", and into the els{ block if one follows.
            if (pop() == 0) {
                next = static_cast<size_t>(k.jump);
                if (next < t.size() && t[next].op == XmlOp::Else) next += 1;
            }
            break;
        case XmlOp::Else: next = static_cast<size_t>(k.jump); break;  // not reached: both ways step over it
        case XmlOp::End:
            // The end of an if's body with an els{ after it: over the els{ block.
            if (k.jump == 1 && i + 1 < t.size() && t[i + 1].op == XmlOp::Else) next = static_cast<size_t>(t[i + 1].jump);
            break;
        }
        i = next;  // jumps go forward only: a script always ends
    }
}

// [SECTION] Gauge files
namespace {
int LineOf(std::string_view text, size_t offset) {
    int line = 1;
    for (size_t i = 0; i < offset && i < text.size(); ++i) line += text[i] == '\n';
    return line;
}

// An attribute's whole number: Left="10".
bool Attribute(std::string_view tag, std::string_view name, int& value) {
    std::string key = " " + std::string(name) + "=\"";
    size_t at = tag.find(key);
    if (at == std::string_view::npos) return false;
    size_t end = tag.find('"', at + key.size());
    if (end == std::string_view::npos) return false;
    double number = 0;
    if (!ParseNumber(tag.substr(at + key.size(), end - at - key.size()), number) || number < 0 || number > 10000) return false;
    value = static_cast<int>(number);
    return true;
}
}  // namespace

bool ParseXmlGauge(std::string_view text, const std::string& file, XmlGauge& gauge, std::string& error) {
    auto fail = [&](size_t offset, const std::string& message) {
        error = file + ":" + std::to_string(LineOf(text, offset)) + ": " + message;
        return false;
    };
    if (text.size() > kMaxXmlGaugeBytes) return fail(0, "larger than 1 MB: not a gauge");
    size_t root = text.find("<Gauge");
    if (root == std::string_view::npos) return fail(0, "no <Gauge> element: not an XML gauge");
    if (text.find("</Gauge>", root) == std::string_view::npos) return fail(root, "<Gauge> without its </Gauge>");
    // <Update>: one script a frame.
    size_t update = text.find("<Update", root);
    if (update != std::string_view::npos) {
        size_t gt = text.find('>', update);
        size_t end = text.find("</Update>", update);
        if (gt == std::string_view::npos || end == std::string_view::npos) return fail(update, "<Update> without its </Update>");
        if (!CompileXmlScript(text.substr(gt + 1, end - gt - 1), file, LineOf(text, gt + 1), gauge.update, error)) return false;
    }
    // <Area Left Top Width Height> with a <Click> script.
    size_t at = root;
    while ((at = text.find("<Area", at)) != std::string_view::npos) {
        size_t gt = text.find('>', at);
        size_t end = text.find("</Area>", at);
        if (gt == std::string_view::npos || end == std::string_view::npos) return fail(at, "<Area> without its </Area>");
        if (static_cast<int>(gauge.areas.size()) >= kMaxXmlAreas) return fail(at, "more than 64 areas");
        XmlArea area;
        std::string_view tag = text.substr(at, gt - at);
        if (!Attribute(tag, "Left", area.left) || !Attribute(tag, "Top", area.top) || !Attribute(tag, "Width", area.width) ||
            !Attribute(tag, "Height", area.height))
            return fail(at, "<Area> needs Left, Top, Width and Height in whole pixels");
        size_t click = text.find("<Click", gt);
        if (click != std::string_view::npos && click < end) {
            size_t cgt = text.find('>', click);
            size_t cend = text.find("</Click>", click);
            if (cgt == std::string_view::npos || cend == std::string_view::npos || cend > end)
                return fail(click, "<Click> without its </Click>");
            if (!CompileXmlScript(text.substr(cgt + 1, cend - cgt - 1), file, LineOf(text, cgt + 1), area.click, error))
                return false;
        }
        gauge.areas.push_back(std::move(area));
        at = end;
    }
    return true;
}

// [SECTION] The panel's XML gauges
namespace {
// A file below `folder` whose parts match without case.
std::string FindIgnoringCase(const std::string& folder, const std::vector<std::string>& parts) {
    std::string path = folder;
    for (const std::string& part : parts) {
        std::string found;
        if (DIR* dir = opendir(path.c_str())) {
            while (dirent* entry = readdir(dir))
                if (strcasecmp(entry->d_name, part.c_str()) == 0) {
                    found = entry->d_name;
                    break;
                }
            closedir(dir);
        }
        if (found.empty()) return {};
        path += "/" + found;
    }
    return path;
}
}  // namespace

bool LoadXmlGauges(HostState& host, const std::string& panel_path, std::string& error) {
    host.xml_gauges.clear();
    PanelDesc panel;
    if (!ReadPanelFile(panel_path, panel, error)) return false;
    std::string gauges_folder = host.module_path.substr(0, host.module_path.rfind('/'));
    for (size_t w = 0; w < panel.windows.size(); ++w) {
        for (const PanelGaugeLine& g : panel.windows[w].gauges) {
            if (strcasecmp(g.module.c_str(), "orb1") == 0) continue;
            std::string file = FindIgnoringCase(gauges_folder, {g.module, g.gauge + ".xml"});
            if (file.empty()) {
                std::fprintf(stderr, "orbsim: %s:%d: gauge %s!%s skipped: no GAUGES/%s/%s.xml\n", panel_path.c_str(), g.line,
                             g.module.c_str(), g.gauge.c_str(), g.module.c_str(), g.gauge.c_str());
                continue;
            }
            if (static_cast<int>(host.xml_gauges.size()) >= kMaxXmlGauges) {
                error = panel_path + ":" + std::to_string(g.line) + ": more than 64 XML gauges";
                return false;
            }
            std::string text;
            if (std::FILE* f = std::fopen(file.c_str(), "rb")) {
                char buffer[4096];
                size_t n = 0;
                while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0 && text.size() <= kMaxXmlGaugeBytes) text.append(buffer, n);
                std::fclose(f);
            }
            XmlGauge gauge;
            gauge.name = g.gauge;
            gauge.file = file;
            gauge.window = static_cast<int>(w);
            if (!ParseXmlGauge(text, file, gauge, error)) return false;
            host.xml_gauges.push_back(std::move(gauge));
        }
    }
    return true;
}

void RunXmlGauges(HostState& host) {
    for (XmlGauge& g : host.xml_gauges) {
        RunXmlScript(host, g.update);
        ++g.runs;
    }
}

bool ClickXmlGauge(HostState& host, const std::string& name, int x, int y, bool& hit) {
    hit = false;
    for (XmlGauge& g : host.xml_gauges) {
        if (strcasecmp(g.name.c_str(), name.c_str()) != 0) continue;
        for (const XmlArea& a : g.areas)
            if (x >= a.left && x < a.left + a.width && y >= a.top && y < a.top + a.height) {
                hit = true;
                ++g.clicks;
                RunXmlScript(host, a.click);
                break;
            }
        return true;
    }
    return false;
}

}  // namespace orbsim
