// pln_reader.cpp: the two forms of the simulator planner's .PLN files, line
// by line. Positions are read by hand, digit by digit, so that no byte of a
// hostile file can push a scan past its field; the degree sign is whatever
// bytes stand between the numbers (0xB0 in Windows-1252, 0xC2 0xB0 in UTF-8).
#include "plan/pln_reader.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
constexpr size_t kMaxDegreeDigits = 3;       // longitude degrees: 2 or 3 digits
constexpr size_t kMaxNumberText = 24;        // a minutes or seconds field

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view Trim(std::string_view s) {
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}

template <size_t N>
void Copy(std::array<char, N>& out, std::string_view text) {
    size_t n = text.size() < N - 1 ? text.size() : N - 1;
    if (n > 0) std::memcpy(out.data(), text.data(), n);
    out[n] = 0;
}

// The hemisphere's sign, or 0 when the letter is none.
int HemisphereSign(char c) {
    switch (c) {
    case 'N': case 'n': case 'E': case 'e': return 1;
    case 'S': case 's': case 'W': case 'w': return -1;
    default: return 0;
    }
}

// Whole digits at `at`, at most `max` of them; false when there is none.
bool ReadDigits(std::string_view s, size_t& at, size_t max, int& value) {
    size_t start = at;
    value = 0;
    while (at < s.size() && IsDigit(s[at]) && at - start < max) value = value * 10 + (s[at++] - '0');
    return at > start;
}

// Text between `open` and the next `close` after it, within the line.
bool Between(std::string_view line, std::string_view open, std::string_view close, std::string_view& out) {
    size_t a = line.find(open);
    if (a == std::string_view::npos) return false;
    a += open.size();
    size_t b = line.find(close, a);
    out = line.substr(a, b == std::string_view::npos ? line.size() - a : b - a);
    return true;
}

void SetType(std::array<char, 4>& type, const char* text) { Copy(type, text); }
}  // namespace

// [SECTION] Positions
bool ParseOlderPlnPosition(std::string_view text, double& degrees) {
    text = Trim(text);
    if (text.empty()) return false;
    int sign = HemisphereSign(text[0]);
    if (sign == 0) return false;
    size_t at = 1;
    int whole = 0;
    if (!ReadDigits(text, at, kMaxDegreeDigits, whole)) return false;
    if (at >= text.size() || text[at] != '*') return false;
    ++at;
    while (at < text.size() && IsBlank(text[at])) ++at;
    // Minutes with their fraction; the fraction becomes whole seconds as
    // "%02.0f" writes them.
    char number[kMaxNumberText + 1] = {};
    size_t n = 0;
    while (at < text.size() && n < kMaxNumberText && (IsDigit(text[at]) || text[at] == '.')) number[n++] = text[at++];
    if (n == 0 || !IsDigit(number[0])) return false;
    double minutes_all = std::atof(number);
    double minutes = std::floor(minutes_all);
    char seconds_text[32];
    std::snprintf(seconds_text, sizeof seconds_text, "%02.0f", (minutes_all - minutes) * 60);
    double seconds = std::atof(seconds_text);
    degrees = sign * (whole + minutes / 60 + seconds / 3600);
    return std::isfinite(degrees);
}

bool ParseXmlPlnPosition(std::string_view text, double& degrees) {
    text = Trim(text);
    if (text.empty()) return false;
    int sign = HemisphereSign(text[0]);
    if (sign == 0) return false;
    size_t at = 1;
    int whole = 0, minutes = 0, seconds = 0;
    if (!ReadDigits(text, at, kMaxDegreeDigits, whole)) return false;
    // The marks between the numbers: the degree sign's bytes and a blank.
    auto skip_marks = [&] {
        size_t skipped = 0;
        while (at < text.size() && !IsDigit(text[at]) && skipped < 4) ++at, ++skipped;
    };
    skip_marks();
    if (!ReadDigits(text, at, 2, minutes)) return false;
    skip_marks();
    if (!ReadDigits(text, at, 2, seconds)) return false;  // the fraction of a second is dropped
    degrees = sign * (whole + minutes / 60.0 + seconds / 3600.0);
    return true;
}

// [SECTION] Lines
bool ReadPlnLine(PlnReader& r, std::string_view line, PlnRow& row) {
    if (line.size() > kPlnLineSize) line = line.substr(0, kPlnLineSize);
    // 1. Nothing counts before the departure line of either form.
    std::string_view text;
    if (line.find("departure_id=") != std::string_view::npos) {
        r.departure_seen = true;
        std::string_view value = line.substr(line.find("departure_id=") + 13);
        value = value.substr(0, value.find(','));
        std::array<char, kPlnIdentSize> compact{};
        size_t n = 0;
        for (char c : value)
            if (!IsBlank(c) && n + 1 < compact.size()) compact[n++] = c;
        r.departure = compact;
        return false;
    }
    if (line.find("<DepartureID>") != std::string_view::npos) {
        r.departure_seen = true;
        return false;
    }
    if (!r.departure_seen) return false;

    // 2. XML form: a row opens, gathers its type and position, and closes.
    if (Between(line, "<ATCWaypoint id=\"", "\"", text)) {
        r.in_waypoint = true;
        r.pending = PlnRow{};
        Copy(r.pending.ident, text);
        r.pending.type = r.last_type;
        return false;
    }
    if (r.in_waypoint && Between(line, "<ATCWaypointType>", "<", text)) {
        text = Trim(text);
        if (text == "Airport") SetType(r.last_type, "APT");
        else if (text == "Intersection") SetType(r.last_type, "INT");
        else if (text == "VOR") SetType(r.last_type, "VOR");
        else if (text == "NDB") SetType(r.last_type, "NDB");
        r.pending.type = r.last_type;  // any other word keeps the row before's type
        return false;
    }
    if (r.in_waypoint && Between(line, "<WorldPosition>", "<", text)) {
        size_t comma = text.find(',');
        double lat = 0, lon = 0;
        if (comma != std::string_view::npos && ParseXmlPlnPosition(text.substr(0, comma), lat)) {
            std::string_view rest = text.substr(comma + 1);
            if (ParseXmlPlnPosition(rest.substr(0, rest.find(',')), lon)) {
                r.pending.latitude = lat;
                r.pending.longitude = lon;
            }
        }
        return false;
    }
    if (r.in_waypoint && line.find("</ATCWaypoint>") != std::string_view::npos) {
        r.in_waypoint = false;
        row = r.pending;
        return true;
    }

    // 3. Older form: "waypoint.N=" then fields parted by ",".
    size_t key = line.find("waypoint.");
    size_t equals = line.find('=');
    if (key == std::string_view::npos || equals == std::string_view::npos || equals < key) return false;
    std::string_view value = line.substr(equals + 1);
    if (line.find("waypoint.0") != std::string_view::npos) {
        // Does the line start with the departure ident, or with a region field?
        std::array<char, kPlnLineSize + 1> compact{};
        size_t n = 0;
        for (char c : value)
            if (!IsBlank(c) && n + 1 < compact.size()) compact[n++] = c;
        size_t dep = std::strlen(r.departure.data());
        r.ident_field = std::strncmp(compact.data(), r.departure.data(), dep) == 0 ? 0 : 1;
    }
    // The ident field, then the rest word by word.
    std::string_view rest = value;
    std::string_view ident;
    for (int field = 0; field <= r.ident_field; ++field) {
        size_t comma = rest.find(',');
        ident = rest.substr(0, comma);
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
    }
    PlnRow out;
    Copy(out.ident, Trim(ident));
    SetType(out.type, "INT");
    bool found = false;
    size_t at = 0;
    while (at < rest.size()) {
        while (at < rest.size() && IsBlank(rest[at])) ++at;
        size_t start = at;
        while (at < rest.size() && !IsBlank(rest[at])) ++at;
        std::string_view word = rest.substr(start, at - start);
        if (word.empty()) break;
        if (word == "A,") SetType(out.type, "APT");
        else if (word == "V,") SetType(out.type, "VOR");
        else if (word == "N,") SetType(out.type, "NDB");
        if (word.back() == '*') {
            // The latitude opens here; latitude and longitude are the next two fields.
            std::string_view position = rest.substr(start);
            size_t comma = position.find(',');
            if (comma == std::string_view::npos) return false;
            std::string_view after = position.substr(comma + 1);
            if (!ParseOlderPlnPosition(position.substr(0, comma), out.latitude)) return false;
            if (!ParseOlderPlnPosition(after.substr(0, after.find(',')), out.longitude)) return false;
            found = true;
            break;
        }
    }
    if (!found) return false;
    row = out;
    return true;
}
