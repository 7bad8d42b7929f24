// route_formats.cpp: readers and writers of the plan file formats of other
// tools. Each reader walks the text by lines (or, for the XML forms, by
// elements with their line numbers), checks every number it takes, and stops
// at the first wrong line with a message naming it.
//
// Index:
//   [SECTION] Text helpers
//   [SECTION] .RTE
//   [SECTION] .PLN, XML form
//   [SECTION] .PLN, older text form
//   [SECTION] .fms, versions 3 and 11
//   [SECTION] .fgfp
//   [SECTION] Dispatch
#include "plan/route_formats.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// [SECTION] Text helpers
namespace {
constexpr char kUtf8Degree[] = "\xC2\xB0";   // the XML form is written in UTF-8

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Trim(std::string_view s) {
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}

std::vector<std::string_view> Lines(std::string_view text) {
    std::vector<std::string_view> lines;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

std::vector<std::string_view> Words(std::string_view line) {
    std::vector<std::string_view> words;
    size_t at = 0;
    while (at < line.size()) {
        while (at < line.size() && IsBlank(line[at])) ++at;
        size_t start = at;
        while (at < line.size() && !IsBlank(line[at])) ++at;
        if (at > start) words.push_back(line.substr(start, at - start));
    }
    return words;
}

std::vector<std::string_view> Fields(std::string_view line, char separator) {
    std::vector<std::string_view> fields;
    size_t start = 0;
    while (true) {
        size_t end = line.find(separator, start);
        fields.push_back(Trim(line.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start)));
        if (end == std::string_view::npos) break;
        start = end + 1;
    }
    return fields;
}

// The whole text is a decimal number.
bool Number(std::string_view text, double& value) {
    text = Trim(text);
    if (text.empty() || text.size() > 40) return false;
    char buffer[48];
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = 0;
    char* end = nullptr;
    value = std::strtod(buffer, &end);
    return end == buffer + text.size() && std::isfinite(value);
}

constexpr size_t kMaxRouteWord = 32;         // characters of an ident or an airway kept

bool IsWordCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || IsDigit(c) || c == '_' || c == '-' || c == '+' || c == '.' ||
           c == '/';
}

bool LatLonInRange(double lat, double lon) { return std::fabs(lat) <= 90 && std::fabs(lon) <= 180; }

bool Fail(RouteError& error, int line, const std::string& message) {
    error.line = line;
    error.message = message;
    return false;
}

bool AddPoint(RoutePlan& plan, RoutePoint point, RouteError& error, int line) {
    if (plan.points.size() >= kMaxRoutePoints) return Fail(error, line, "more than 1000 waypoints");
    if (point.ident.empty()) return Fail(error, line, "a waypoint without an ident");
    if (!LatLonInRange(point.lat, point.lon)) return Fail(error, line, "a position outside the globe");
    // Idents and airways are one plain word in every format: anything that
    // parts fields in one of them (blanks, commas, "*", quotes, markup) becomes "_".
    for (std::string* word : {&point.ident, &point.via}) {
        if (word->size() > kMaxRouteWord) word->resize(kMaxRouteWord);
        for (char& c : *word)
            if (!IsWordCharacter(c)) c = '_';
    }
    plan.points.push_back(std::move(point));
    return true;
}

// Line numbers of offsets met in increasing order, counted once over the text.
struct LineCounter {
    std::string_view text;
    size_t pos = 0;
    int line = 1;
    int At(size_t offset) {
        if (offset < pos) pos = 0, line = 1;
        for (; pos < offset && pos < text.size(); ++pos) line += text[pos] == '\n';
        return line;
    }
};

// XML: the text of <name ...>text</name> after `from`, bounded by `limit`.
bool Element(std::string_view text, std::string_view name, size_t from, size_t limit, std::string_view& value,
             size_t* at = nullptr) {
    std::string open = "<" + std::string(name);
    size_t a = from;
    while (true) {
        a = text.find(open, a);
        if (a == std::string_view::npos || a >= limit) return false;
        char next = a + open.size() < text.size() ? text[a + open.size()] : 0;
        if (next == '>' || next == ' ' || next == '/') break;
        a += open.size();
    }
    size_t gt = text.find('>', a);
    if (gt == std::string_view::npos || gt >= limit) return false;
    if (at) *at = a;
    if (text[gt - 1] == '/') {
        value = {};
        return true;
    }
    std::string close = "</" + std::string(name) + ">";
    size_t b = text.find(close, gt + 1);
    if (b == std::string_view::npos || b > limit) return false;
    value = Trim(text.substr(gt + 1, b - gt - 1));
    return true;
}

std::string XmlEscape(std::string_view s) {
    std::string out;
    for (char c : s) {
        if (c == '&') out += "&amp;";
        else if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else if (c == '"') out += "&quot;";
        else out += c;
    }
    return out;
}

std::string XmlUnescape(std::string_view s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '&') {
            static const std::pair<const char*, char> kEntities[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
            bool done = false;
            for (auto [entity, c] : kEntities)
                if (s.substr(i, std::strlen(entity)) == entity) {
                    out += c;
                    i += std::strlen(entity) - 1;
                    done = true;
                    break;
                }
            if (done) continue;
        }
        out += s[i];
    }
    return out;
}

std::string Printf(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Printf(const char* format, ...) {
    char buffer[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    return buffer;
}

// Degrees, minutes and seconds of a value's size.
void Split(double value, int& degrees, int& minutes, double& seconds, int second_decimals) {
    double scale = std::pow(10.0, second_decimals);
    double total = std::round(std::fabs(value) * 3600 * scale) / scale;
    degrees = static_cast<int>(total / 3600);
    total -= degrees * 3600.0;
    minutes = static_cast<int>(total / 60);
    seconds = total - minutes * 60.0;
    if (seconds < 0) seconds = 0;
}
}  // namespace

// [SECTION] .RTE
namespace {
bool ReadRte(std::string_view text, RoutePlan& plan, RouteError& error) {
    std::vector<std::string_view> lines = Lines(text);
    bool in_rows = false;
    for (size_t n = 0; n < lines.size(); ++n) {
        int line = static_cast<int>(n + 1);
        std::vector<std::string_view> w = Words(lines[n]);
        if (w.empty() || w[0][0] == ';') continue;
        if (!in_rows) {
            if (w[0] == "[FlightPlan]") {
                in_rows = true;
            } else if (w[0].substr(0, 10) == "CruiseAlt=") {
                double feet = 0;
                if (!Number(w[0].substr(10), feet) || feet < 0 || feet > 100000)
                    return Fail(error, line, "CruiseAlt is no altitude");
                plan.cruise_altitude = static_cast<int>(feet);
            }
            continue;
        }
        if (w.size() < 4) return Fail(error, line, "a row needs ident, latitude, longitude and type");
        RoutePoint p;
        p.ident = std::string(w[0]);
        if (!Number(w[1], p.lat) || !Number(w[2], p.lon)) return Fail(error, line, "latitude or longitude is no number");
        if (w[3] == "APT") p.kind = PointKind::Airport;
        else if (w[3] == "VOR") p.kind = PointKind::Vor;
        else if (w[3] == "NDB") p.kind = PointKind::Ndb;
        else if (w[3] == "WPT") p.kind = PointKind::LatLon;
        else p.kind = PointKind::Fix;
        if (w.size() > 4 && w[4] != "---") p.frequency = std::string(w[4]);
        if (w.size() > 5) p.via = std::string(w[5]);
        if (!AddPoint(plan, std::move(p), error, line)) return false;
    }
    if (!in_rows) return Fail(error, 0, "no [FlightPlan] line");
    return true;
}

std::string WriteRte(const RoutePlan& plan) {
    std::string out;
    if (plan.cruise_altitude > 0) out += Printf("CruiseAlt=%d\n", plan.cruise_altitude);
    out += "[FlightPlan]\n";
    for (const RoutePoint& p : plan.points) {
        const char* type = p.kind == PointKind::Airport ? "APT" : p.kind == PointKind::Vor ? "VOR"
                         : p.kind == PointKind::Ndb     ? "NDB" : p.kind == PointKind::Fix ? "INT" : "WPT";
        std::string frequency = p.frequency.empty() ? "---" : p.frequency;
        // The module's own row: the segment kind is left out with the airway.
        out += Printf("%-16s %-2.5f  %-3.5f  %-3s %-6s %-7s", p.ident.c_str(), p.lat, p.lon, type, frequency.c_str(),
                      p.via.c_str());
        while (!out.empty() && out.back() == ' ' && p.via.empty()) out.pop_back();
        out += "\n";
    }
    return out;
}
}  // namespace

// [SECTION] .PLN, XML form
namespace {
// "N47° 26' 54.97\"" with any degree sign bytes; seconds keep their fraction.
bool XmlPosition(std::string_view text, double& degrees) {
    text = Trim(text);
    if (text.empty()) return false;
    char h = text[0];
    int sign = (h == 'N' || h == 'E') ? 1 : (h == 'S' || h == 'W') ? -1 : 0;
    if (sign == 0) return false;
    size_t at = 1;
    double parts[3] = {0, 0, 0};
    for (double& part : parts) {
        size_t skipped = 0;
        while (at < text.size() && !IsDigit(text[at]) && skipped < 4) ++at, ++skipped;
        size_t start = at;
        while (at < text.size() && (IsDigit(text[at]) || text[at] == '.') && at - start < 12) ++at;
        if (at == start || !Number(text.substr(start, at - start), part)) return false;
    }
    if (parts[1] >= 60 || parts[2] >= 60) return false;
    degrees = sign * (parts[0] + parts[1] / 60 + parts[2] / 3600);
    return true;
}

std::string XmlPositionText(double value, bool latitude) {
    int d = 0, m = 0;
    double s = 0;
    Split(value, d, m, s, 2);
    char hemisphere = latitude ? (value < 0 ? 'S' : 'N') : (value < 0 ? 'W' : 'E');
    return Printf("%c%d%s %d' %.2f\"", hemisphere, d, kUtf8Degree, m, s);
}

bool ReadPlnXml(std::string_view text, RoutePlan& plan, RouteError& error) {
    size_t doc = text.find("<FlightPlan.FlightPlan");
    if (doc == std::string_view::npos) return Fail(error, 0, "no <FlightPlan.FlightPlan> element: not an XML plan");
    std::string_view alt;
    double feet = 0;
    if (Element(text, "CruisingAlt", 0, text.size(), alt) && Number(alt, feet) && feet >= 0 && feet < 100000)
        plan.cruise_altitude = static_cast<int>(feet);
    size_t at = doc;
    LineCounter lines{text};
    while (true) {
        size_t open = text.find("<ATCWaypoint", at);
        // <ATCWaypointType> and the like are not waypoints.
        while (open != std::string_view::npos && open + 12 < text.size() && text[open + 12] != ' ' && text[open + 12] != '>')
            open = text.find("<ATCWaypoint", open + 12);
        if (open == std::string_view::npos) break;
        int line = lines.At(open);
        size_t close = text.find("</ATCWaypoint>", open);
        if (close == std::string_view::npos) return Fail(error, line, "<ATCWaypoint> without its end");
        size_t id = text.find("id=\"", open);
        size_t gt = text.find('>', open);
        if (id == std::string_view::npos || id > gt) return Fail(error, line, "<ATCWaypoint> without an id");
        size_t quote = text.find('"', id + 4);
        if (quote == std::string_view::npos || quote > gt) return Fail(error, line, "<ATCWaypoint> id without its end");
        RoutePoint p;
        p.ident = XmlUnescape(text.substr(id + 4, quote - id - 4));
        std::string_view type, position, airway;
        Element(text, "ATCWaypointType", open, close, type);
        if (type == "Airport") p.kind = PointKind::Airport;
        else if (type == "VOR") p.kind = PointKind::Vor;
        else if (type == "NDB") p.kind = PointKind::Ndb;
        else if (type == "Intersection") p.kind = PointKind::Fix;
        else p.kind = PointKind::LatLon;
        if (!Element(text, "WorldPosition", open, close, position)) return Fail(error, line, "a waypoint without <WorldPosition>");
        std::vector<std::string_view> f = Fields(position, ',');
        if (f.size() < 2 || !XmlPosition(f[0], p.lat) || !XmlPosition(f[1], p.lon))
            return Fail(error, lines.At(text.find("<WorldPosition", open)), "<WorldPosition> is no position");
        if (f.size() > 2 && !f[2].empty()) Number(f[2], p.altitude);
        if (Element(text, "ATCAirway", open, close, airway)) p.via = XmlUnescape(airway);
        if (!AddPoint(plan, std::move(p), error, line)) return false;
        at = close + 1;
    }
    return true;
}

std::string WritePlnXml(const RoutePlan& plan) {
    std::string out;
    std::string first = plan.points.empty() ? "" : XmlEscape(plan.points.front().ident);
    std::string last = plan.points.empty() ? "" : XmlEscape(plan.points.back().ident);
    auto lla = [](const RoutePoint& p) {
        return XmlPositionText(p.lat, true) + "," + XmlPositionText(p.lon, false) + Printf(",%+010.2f", p.altitude);
    };
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n\n";
    out += "<SimBase.Document Type=\"AceXML\" version=\"1,0\">\n";
    out += "    <Descr>AceXML Document</Descr>\n";
    out += "    <FlightPlan.FlightPlan>\n";
    out += "        <Title>" + first + " to " + last + "</Title>\n";
    out += "        <FPType>IFR</FPType>\n";
    out += "        <RouteType>HighAlt</RouteType>\n";
    out += Printf("        <CruisingAlt>%d</CruisingAlt>\n", plan.cruise_altitude);
    if (!plan.points.empty()) {
        out += "        <DepartureID>" + first + "</DepartureID>\n";
        out += "        <DepartureLLA>" + lla(plan.points.front()) + "</DepartureLLA>\n";
        out += "        <DestinationID>" + last + "</DestinationID>\n";
        out += "        <DestinationLLA>" + lla(plan.points.back()) + "</DestinationLLA>\n";
    }
    out += "        <Descr>" + first + ", " + last + "</Descr>\n";
    for (const RoutePoint& p : plan.points) {
        const char* type = p.kind == PointKind::Airport ? "Airport" : p.kind == PointKind::Vor ? "VOR"
                         : p.kind == PointKind::Ndb     ? "NDB"     : p.kind == PointKind::Fix ? "Intersection" : "User";
        out += "        <ATCWaypoint id=\"" + XmlEscape(p.ident) + "\">\n";
        out += std::string("            <ATCWaypointType>") + type + "</ATCWaypointType>\n";
        out += "            <WorldPosition>" + lla(p) + "</WorldPosition>\n";
        if (!p.via.empty()) out += "            <ATCAirway>" + XmlEscape(p.via) + "</ATCAirway>\n";
        if (p.kind != PointKind::LatLon)
            out += "            <ICAO>\n                <ICAOIdent>" + XmlEscape(p.ident) + "</ICAOIdent>\n            </ICAO>\n";
        out += "        </ATCWaypoint>\n";
    }
    out += "    </FlightPlan.FlightPlan>\n</SimBase.Document>\n";
    return out;
}
}  // namespace

// [SECTION] .PLN, older text form
namespace {
// "N47* 26.90'": minutes with their fraction.
bool TextPosition(std::string_view text, double& degrees) {
    text = Trim(text);
    size_t star = text.find('*');
    if (text.size() < 3 || star == std::string_view::npos) return false;
    char h = text[0];
    int sign = (h == 'N' || h == 'E') ? 1 : (h == 'S' || h == 'W') ? -1 : 0;
    double d = 0, m = 0;
    std::string_view minutes = Trim(text.substr(star + 1));
    if (!minutes.empty() && minutes.back() == '\'') minutes.remove_suffix(1);
    if (sign == 0 || !Number(text.substr(1, star - 1), d) || !Number(minutes, m) || d < 0 || m < 0 || m >= 60) return false;
    degrees = sign * (d + m / 60);
    return true;
}

std::string TextPositionText(double value, bool latitude) {
    double total_minutes = std::round(std::fabs(value) * 60 * 100) / 100;
    int d = static_cast<int>(total_minutes / 60);
    double m = total_minutes - d * 60.0;
    char hemisphere = latitude ? (value < 0 ? 'S' : 'N') : (value < 0 ? 'W' : 'E');
    return Printf("%c%d* %.2f'", hemisphere, d, m);
}

bool ReadPlnText(std::string_view text, RoutePlan& plan, RouteError& error) {
    std::vector<std::string_view> lines = Lines(text);
    bool section = false;
    for (size_t n = 0; n < lines.size(); ++n) {
        int line = static_cast<int>(n + 1);
        std::string_view l = Trim(lines[n]);
        if (l == "[flightplan]") section = true;
        if (l.substr(0, 18) == "cruising_altitude=") {
            double feet = 0;
            if (Number(l.substr(18), feet) && feet >= 0 && feet < 100000) plan.cruise_altitude = static_cast<int>(feet);
        }
        if (l.substr(0, 9) != "waypoint.") continue;
        size_t eq = l.find('=');
        if (eq == std::string_view::npos) return Fail(error, line, "a waypoint line without \"=\"");
        // The latitude is the first field with "*"; type and ident stand before it.
        std::vector<std::string_view> f = Fields(l.substr(eq + 1), ',');
        size_t p = 0;
        while (p < f.size() && f[p].find('*') == std::string_view::npos) ++p;
        if (p < 2 || p + 1 >= f.size()) return Fail(error, line, "a waypoint without ident, type and position");
        RoutePoint pt;
        pt.ident = std::string(f[p - 2]);
        std::string_view type = f[p - 1];
        pt.kind = type == "A" ? PointKind::Airport : type == "V" ? PointKind::Vor : type == "N" ? PointKind::Ndb
                : type == "U" ? PointKind::LatLon : PointKind::Fix;
        if (!TextPosition(f[p], pt.lat) || !TextPosition(f[p + 1], pt.lon)) return Fail(error, line, "latitude or longitude is no position");
        if (p + 2 < f.size() && !f[p + 2].empty() && !Number(f[p + 2], pt.altitude)) return Fail(error, line, "altitude is no number");
        if (p + 3 < f.size()) pt.via = std::string(f[p + 3]);
        if (!AddPoint(plan, std::move(pt), error, line)) return false;
    }
    if (!section) return Fail(error, 0, "no [flightplan] section: not a plan of the older form");
    return true;
}

std::string WritePlnText(const RoutePlan& plan) {
    std::string out = "[flightplan]\n";
    std::string first = plan.points.empty() ? "" : plan.points.front().ident;
    std::string last = plan.points.empty() ? "" : plan.points.back().ident;
    auto position = [](const RoutePoint& p) {
        return TextPositionText(p.lat, true) + ", " + TextPositionText(p.lon, false) + Printf(", %+010.2f", p.altitude);
    };
    out += "title=" + first + " to " + last + "\n";
    out += "description=" + first + ", " + last + "\n";
    out += "type=IFR\nroutetype=3\n";
    out += Printf("cruising_altitude=%d\n", plan.cruise_altitude);
    if (!plan.points.empty()) {
        out += "departure_id=" + first + ", " + position(plan.points.front()) + "\n";
        out += "destination_id=" + last + ", " + position(plan.points.back()) + "\n";
    }
    for (size_t i = 0; i < plan.points.size(); ++i) {
        const RoutePoint& p = plan.points[i];
        const char* type = p.kind == PointKind::Airport ? "A" : p.kind == PointKind::Vor ? "V"
                         : p.kind == PointKind::Ndb     ? "N" : p.kind == PointKind::Fix ? "I" : "U";
        out += Printf("waypoint.%zu=, %s, , %s, %s, ", i, p.ident.c_str(), p.ident.c_str(), type) + position(p) + ", " +
               p.via + ",\n";
    }
    return out;
}
}  // namespace

// [SECTION] .fms, versions 3 and 11
namespace {
int FmsType(PointKind kind) {
    switch (kind) {
    case PointKind::Airport: return 1;
    case PointKind::Ndb: return 2;
    case PointKind::Vor: return 3;
    case PointKind::Fix: return 11;
    case PointKind::LatLon: return 28;
    }
    return 28;
}

bool FmsKind(double type, PointKind& kind) {
    if (type == 1) kind = PointKind::Airport;
    else if (type == 2) kind = PointKind::Ndb;
    else if (type == 3) kind = PointKind::Vor;
    else if (type == 11) kind = PointKind::Fix;
    else if (type == 28 || type == 0) kind = PointKind::LatLon;
    else return false;
    return true;
}

bool ReadFms(std::string_view text, RoutePlan& plan, RouteError& error) {
    std::vector<std::string_view> lines = Lines(text);
    if (lines.size() < 2 || (Trim(lines[0]) != "I" && Trim(lines[0]) != "A"))
        return Fail(error, 1, "the first line is \"I\" or \"A\" in an .fms file");
    std::vector<std::string_view> head = Words(lines[1]);
    bool v11 = !head.empty() && head[0] == "1100";
    if (head.empty() || (head[0] != "3" && !v11)) return Fail(error, 2, "version 3 or 1100 expected");
    size_t n = 2;
    if (!v11) n = 4;  // the two counts of version 3
    double declared = -1;
    for (; n < lines.size(); ++n) {
        int line = static_cast<int>(n + 1);
        std::vector<std::string_view> w = Words(lines[n]);
        if (w.empty()) continue;
        double type = 0;
        if (!Number(w[0], type)) {
            // Version 11's keyed lines: ADEP, DEPRWY, NUMENR, ...
            if (v11 && w[0] == "NUMENR" && (w.size() < 2 || !Number(w[1], declared))) return Fail(error, line, "NUMENR is no count");
            if (v11) continue;
            return Fail(error, line, "a waypoint line starts with its type number");
        }
        size_t columns = v11 ? 6 : 5;
        if (w.size() < columns) return Fail(error, line, v11 ? "a waypoint needs type, ident, via, altitude, latitude, longitude"
                                                             : "a waypoint needs type, ident, altitude, latitude, longitude");
        RoutePoint p;
        if (!FmsKind(type, p.kind)) return Fail(error, line, "waypoint type is none of 1, 2, 3, 11, 28");
        p.ident = std::string(w[1]);
        size_t k = v11 ? 3 : 2;
        if (!Number(w[k], p.altitude) || !Number(w[k + 1], p.lat) || !Number(w[k + 2], p.lon))
            return Fail(error, line, "altitude, latitude or longitude is no number");
        if (v11 && w[2] != "ADEP" && w[2] != "ADES" && w[2] != "DRCT" && w[2] != "DEP" && w[2] != "DES") p.via = std::string(w[2]);
        if (!AddPoint(plan, std::move(p), error, line)) return false;
    }
    if (v11 && declared >= 0 && static_cast<size_t>(declared) != plan.points.size())
        return Fail(error, 0, Printf("NUMENR says %.0f waypoints, the file has %zu", declared, plan.points.size()));
    return true;
}

std::string WriteFms(const RoutePlan& plan, bool v11) {
    std::string out = "I\n";
    size_t count = plan.points.size();
    if (!v11) {
        out += Printf("3 version\n1\n%zu\n", count > 0 ? count - 1 : 0);
        for (const RoutePoint& p : plan.points)
            out += Printf("%d %s %.6f %.6f %.6f\n", FmsType(p.kind), p.ident.c_str(), p.altitude, p.lat, p.lon);
        return out;
    }
    out += "1100 Version\nCYCLE 1801\n";
    if (count > 0) {
        const RoutePoint& a = plan.points.front();
        const RoutePoint& b = plan.points.back();
        out += (a.kind == PointKind::Airport ? "ADEP " : "DEP ") + a.ident + "\n";
        out += (b.kind == PointKind::Airport ? "ADES " : "DES ") + b.ident + "\n";
    }
    out += Printf("NUMENR %zu\n", count);
    for (size_t i = 0; i < count; ++i) {
        const RoutePoint& p = plan.points[i];
        std::string via = !p.via.empty() ? p.via : "DRCT";
        if (i == 0 && p.kind == PointKind::Airport) via = "ADEP";
        if (i + 1 == count && p.kind == PointKind::Airport && p.via.empty()) via = "ADES";
        out += Printf("%d %s %s %.6f %.6f %.6f\n", FmsType(p.kind), p.ident.c_str(), via.c_str(), p.altitude, p.lat, p.lon);
    }
    return out;
}
}  // namespace

// [SECTION] .fgfp
namespace {
bool ReadFlightGear(std::string_view text, RoutePlan& plan, RouteError& error) {
    std::string_view route;
    size_t route_at = 0;
    if (text.find("<PropertyList") == std::string_view::npos) return Fail(error, 0, "no <PropertyList>: not a route file");
    if (!Element(text, "route", 0, text.size(), route, &route_at)) return Fail(error, 0, "no <route> element");
    std::string_view departure, destination, airport;
    std::string dep_ident, dest_ident;
    if (Element(text, "departure", 0, text.size(), departure) && Element(departure, "airport", 0, departure.size(), airport))
        dep_ident = XmlUnescape(airport);
    if (Element(text, "destination", 0, text.size(), destination) && Element(destination, "airport", 0, destination.size(), airport))
        dest_ident = XmlUnescape(airport);
    size_t end = text.find("</route>", route_at);
    size_t at = route_at;
    LineCounter lines{text};
    while (true) {
        size_t open = 0;
        std::string_view wp;
        if (!Element(text, "wp", at, end, wp, &open)) break;
        int line = lines.At(open);
        std::string_view ident, lat, lon, type, alt, airway;
        RoutePoint p;
        if (!Element(wp, "ident", 0, wp.size(), ident)) return Fail(error, line, "a <wp> without <ident>");
        if (!Element(wp, "lat", 0, wp.size(), lat) || !Element(wp, "lon", 0, wp.size(), lon) || !Number(lat, p.lat) ||
            !Number(lon, p.lon))
            return Fail(error, line, "a <wp> without a <lat> and <lon> number");
        p.ident = XmlUnescape(ident);
        if (Element(wp, "altitude-ft", 0, wp.size(), alt)) Number(alt, p.altitude);
        if (Element(wp, "airway", 0, wp.size(), airway)) p.via = XmlUnescape(airway);
        Element(wp, "type", 0, wp.size(), type);
        // The format tells named points from plain positions only.
        bool endpoint = (plan.points.empty() && p.ident == dep_ident) || p.ident == dest_ident;
        if (endpoint && !p.ident.empty()) p.kind = PointKind::Airport;
        else if (type == "basic") p.kind = PointKind::LatLon;
        else p.kind_known = false;
        if (!AddPoint(plan, std::move(p), error, line)) return false;
        at = open + 1;
        size_t close = text.find("</wp>", open);
        if (close != std::string_view::npos) at = close;
    }
    return true;
}

std::string WriteFlightGear(const RoutePlan& plan) {
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PropertyList>\n  <version type=\"int\">2</version>\n";
    if (!plan.points.empty() && plan.points.front().kind == PointKind::Airport)
        out += "  <departure>\n    <airport type=\"string\">" + XmlEscape(plan.points.front().ident) + "</airport>\n  </departure>\n";
    if (plan.points.size() > 1 && plan.points.back().kind == PointKind::Airport)
        out += "  <destination>\n    <airport type=\"string\">" + XmlEscape(plan.points.back().ident) + "</airport>\n  </destination>\n";
    out += "  <route>\n";
    for (size_t i = 0; i < plan.points.size(); ++i) {
        const RoutePoint& p = plan.points[i];
        out += Printf("    <wp n=\"%zu\">\n", i);
        out += std::string("      <type type=\"string\">") + (p.kind == PointKind::LatLon ? "basic" : "navaid") + "</type>\n";
        out += "      <ident type=\"string\">" + XmlEscape(p.ident) + "</ident>\n";
        if (p.altitude != 0) out += Printf("      <altitude-ft type=\"double\">%.0f</altitude-ft>\n", p.altitude);
        out += Printf("      <lon type=\"double\">%.8f</lon>\n      <lat type=\"double\">%.8f</lat>\n", p.lon, p.lat);
        out += "    </wp>\n";
    }
    out += "  </route>\n</PropertyList>\n";
    return out;
}
}  // namespace

// [SECTION] Dispatch
bool ReadRouteText(RouteFormat format, std::string_view text, RoutePlan& plan, RouteError& error) {
    plan = RoutePlan{};
    error = RouteError{};
    if (text.size() > kMaxRouteText) return Fail(error, 0, "larger than 16 MB: not a plan");
    switch (format) {
    case RouteFormat::Rte: return ReadRte(text, plan, error);
    case RouteFormat::PlnXml: return ReadPlnXml(text, plan, error);
    case RouteFormat::PlnText: return ReadPlnText(text, plan, error);
    case RouteFormat::Fms3:
    case RouteFormat::Fms11: return ReadFms(text, plan, error);
    case RouteFormat::FlightGear: return ReadFlightGear(text, plan, error);
    }
    return Fail(error, 0, "unknown format");
}

std::string WriteRouteText(RouteFormat format, const RoutePlan& plan) {
    switch (format) {
    case RouteFormat::Rte: return WriteRte(plan);
    case RouteFormat::PlnXml: return WritePlnXml(plan);
    case RouteFormat::PlnText: return WritePlnText(plan);
    case RouteFormat::Fms3: return WriteFms(plan, false);
    case RouteFormat::Fms11: return WriteFms(plan, true);
    case RouteFormat::FlightGear: return WriteFlightGear(plan);
    }
    return {};
}

bool FormatHasAirways(RouteFormat format) {
    return format == RouteFormat::Rte || format == RouteFormat::PlnXml || format == RouteFormat::PlnText ||
           format == RouteFormat::Fms11;
}

const char* FormatName(RouteFormat format) {
    switch (format) {
    case RouteFormat::Rte: return "RTE";
    case RouteFormat::PlnXml: return "PLN (XML)";
    case RouteFormat::PlnText: return "PLN (older text form)";
    case RouteFormat::Fms3: return "fms version 3";
    case RouteFormat::Fms11: return "fms version 11";
    case RouteFormat::FlightGear: return "fgfp";
    }
    return "?";
}
