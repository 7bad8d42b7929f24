// panel_cfg.cpp: the panel.cfg reader. Lines are checked one at a time; the
// first line orbsim cannot take ends the reading with its line number.
#include "panel_cfg.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

namespace orbsim {

namespace {
std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

std::string Lower(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return out;
}

bool StartsWithNoCase(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && Lower(s.substr(0, prefix.size())) == prefix;
}

bool AllDigits(std::string_view s) {
    if (s.empty()) return false;
    for (char c : s)
        if (c < '0' || c > '9') return false;
    return true;
}

// A whole decimal integer with an optional sign, within +-1,000,000.
bool ParseInt(std::string_view s, int& out) {
    s = Trim(s);
    bool negative = false;
    if (!s.empty() && (s.front() == '-' || s.front() == '+')) {
        negative = s.front() == '-';
        s.remove_prefix(1);
    }
    if (!AllDigits(s) || s.size() > 7) return false;
    int value = 0;
    for (char c : s) value = value * 10 + (c - '0');
    out = negative ? -value : value;
    return true;
}

bool Error(std::string& error, int line, const std::string& message) {
    error = std::to_string(line) + ": " + message;
    return false;
}

bool ParseGaugeValue(std::string_view value, int line, PanelGaugeLine& gauge, std::string& error) {
    // Fields: MODULE!NAME, X, Y [, W, H [, PARAMETERS]]; parameters are the rest of the line.
    std::vector<std::string_view> fields;
    std::string_view rest = value;
    while (fields.size() < 5) {
        size_t comma = rest.find(',');
        if (comma == std::string_view::npos) break;
        fields.push_back(Trim(rest.substr(0, comma)));
        rest = rest.substr(comma + 1);
    }
    fields.push_back(Trim(rest));
    std::string_view name = fields[0];
    size_t bang = name.find('!');
    if (bang == std::string_view::npos || bang == 0 || bang + 1 == name.size())
        return Error(error, line, "gauge line needs MODULE!GAUGE first, got '" + std::string(name) + "'");
    gauge.module = std::string(Trim(name.substr(0, bang)));
    gauge.gauge = std::string(Trim(name.substr(bang + 1)));
    for (char c : gauge.gauge)
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == ' ' ||
              c == '-' || c == '.'))
            return Error(error, line, "gauge name '" + gauge.gauge + "' holds a character no gauge name has");
    if (fields.size() < 3) return Error(error, line, "gauge line needs MODULE!GAUGE, X, Y");
    if (!ParseInt(fields[1], gauge.x)) return Error(error, line, "gauge X '" + std::string(fields[1]) + "' is not a whole number");
    if (!ParseInt(fields[2], gauge.y)) return Error(error, line, "gauge Y '" + std::string(fields[2]) + "' is not a whole number");
    if (fields.size() >= 4 && !fields[3].empty() && !ParseInt(fields[3], gauge.w))
        return Error(error, line, "gauge width '" + std::string(fields[3]) + "' is not a whole number");
    if (fields.size() >= 5 && !fields[4].empty() && !ParseInt(fields[4], gauge.h))
        return Error(error, line, "gauge height '" + std::string(fields[4]) + "' is not a whole number");
    if (gauge.w < 0 || gauge.h < 0) return Error(error, line, "gauge size is negative");
    if (fields.size() == 4) return Error(error, line, "gauge line gives a width without a height");
    if (fields.size() == 6) gauge.parameters = std::string(fields[5]);
    if (gauge.parameters.size() > kMaxGaugeParameterLength)
        return Error(error, line, "gauge parameter string longer than 255 characters");
    gauge.line = line;
    return true;
}
}  // namespace

bool ParsePanelText(std::string_view text, PanelDesc& out, std::string& error) {
    out = {};
    PanelWindowDesc* window = nullptr;          // the window section being read, if any
    std::vector<std::string> keys_seen;         // of that section, to refuse duplicates
    std::vector<bool> ident_given;
    int total_gauges = 0;
    std::vector<std::string_view> lines;
    for (size_t start = 0; start <= text.size();) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    for (size_t index = 0; index < lines.size(); ++index) {
        int line_number = static_cast<int>(index) + 1;
        std::string_view line = lines[index];
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        // 1. Text only, of a sane length.
        if (line.size() > kMaxPanelLineLength) return Error(error, line_number, "line longer than 1024 characters");
        for (char c : line)
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t')
                return Error(error, line_number, "line holds a control byte; not a text file");
        line = Trim(line);
        // 2. Blank lines and comments.
        if (line.empty() || line.front() == ';' || line.substr(0, 2) == "//") continue;
        // 3. Section headers.
        if (line.front() == '[') {
            if (line.back() != ']') return Error(error, line_number, "section header without ']'");
            std::string_view name = Trim(line.substr(1, line.size() - 2));
            window = nullptr;
            bool is_window = StartsWithNoCase(name, "window") && AllDigits(name.substr(6));
            bool is_cockpit = StartsWithNoCase(name, "vcockpit") && AllDigits(name.substr(8));
            if (is_window || is_cockpit) {
                for (const PanelWindowDesc& w : out.windows)
                    if (Lower(w.section) == Lower(name))
                        return Error(error, line_number, "section [" + std::string(name) + "] appears twice");
                if (static_cast<int>(out.windows.size()) >= kMaxPanelWindows)
                    return Error(error, line_number, "more than 64 windows");
                out.windows.emplace_back();
                ident_given.push_back(false);
                window = &out.windows.back();
                window->section = std::string(name);
                window->virtual_cockpit = is_cockpit;
                window->ident = is_cockpit ? kVirtualCockpitIdent : 0;
                window->visible = is_cockpit;
                window->line = line_number;
                keys_seen.clear();
            }
            continue;
        }
        // 4. Keys of other sections are the simulator's.
        if (window == nullptr) continue;
        size_t equals = line.find('=');
        if (equals == std::string_view::npos) return Error(error, line_number, "expected KEY=VALUE");
        std::string key = Lower(Trim(line.substr(0, equals)));
        std::string_view value = Trim(line.substr(equals + 1));
        size_t comment = value.find("//");
        if (comment != std::string_view::npos) value = Trim(value.substr(0, comment));
        if (key.empty()) return Error(error, line_number, "expected KEY=VALUE");
        for (const std::string& seen : keys_seen)
            if (seen == key) return Error(error, line_number, "key '" + key + "' given twice in [" + window->section + "]");
        keys_seen.push_back(key);
        // 5. The keys orbsim uses.
        if (key == "ident") {
            if (window->virtual_cockpit) {
                // a cockpit has no window ident to toggle
            } else if (Lower(value) == "main_panel") {
                window->ident = 0;
            } else if (int ident = 0; ParseInt(value, ident) && ident >= 0) {
                window->ident = ident;
            } else {
                return Error(error, line_number, "ident '" + std::string(value) + "' is not MAIN_PANEL or a number");
            }
            ident_given.back() = true;
        } else if (key == "visible") {
            if (value != "0" && value != "1") return Error(error, line_number, "visible must be 0 or 1");
            if (!window->virtual_cockpit) window->visible = value == "1";
        } else if (key == "size_mm") {
            size_t comma = value.find(',');
            if (comma == std::string_view::npos || !ParseInt(value.substr(0, comma), window->size_w) ||
                !ParseInt(value.substr(comma + 1), window->size_h) || window->size_w < 0 || window->size_h < 0)
                return Error(error, line_number, "size_mm must be WIDTH,HEIGHT");
        } else if (key == "position") {
            if (!ParseInt(value, window->position) || window->position < 0 || window->position > 8)
                return Error(error, line_number, "position must be 0 to 8");
        } else if (key.size() > 5 && key.compare(0, 5, "gauge") == 0 && AllDigits(std::string_view(key).substr(5))) {
            if (total_gauges >= kMaxPanelGauges) return Error(error, line_number, "more than 256 gauges");
            PanelGaugeLine gauge;
            if (!ParseGaugeValue(value, line_number, gauge, error)) return false;
            window->gauges.push_back(gauge);
            ++total_gauges;
        }
    }
    // 6. Every window needs its ident, and no two the same.
    for (size_t i = 0; i < out.windows.size(); ++i) {
        PanelWindowDesc& w = out.windows[i];
        if (w.virtual_cockpit) continue;
        if (!ident_given[i]) return Error(error, w.line, "[" + w.section + "] has no ident=");
        for (size_t j = 0; j < i; ++j)
            if (!out.windows[j].virtual_cockpit && out.windows[j].ident == w.ident)
                return Error(error, w.line, "[" + w.section + "] has the ident of [" + out.windows[j].section + "]");
    }
    return true;
}

bool ReadPanelFile(const std::string& path, PanelDesc& out, std::string& error) {
    constexpr std::streamoff kMaxPanelFileBytes = 4 << 20;  // a panel.cfg is a few kilobytes
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = path + ": cannot open the panel file";
        return false;
    }
    in.seekg(0, std::ios::end);
    std::streamoff size = in.tellg();
    in.seekg(0, std::ios::beg);
    if (size > kMaxPanelFileBytes) {
        error = path + ": larger than 4 MiB; not a panel file";
        return false;
    }
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::string line_error;
    if (!ParsePanelText(text, out, line_error)) {
        error = path + ":" + line_error;
        return false;
    }
    return true;
}

}  // namespace orbsim
