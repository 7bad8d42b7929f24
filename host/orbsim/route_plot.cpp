// route_plot.cpp: the plot is an equirectangular view scaled by the cosine of
// the middle latitude, which is true enough over a few hundred miles.
#include "route_plot.h"

#include <cairo.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace orbsim {

namespace {

// One part of a <WorldPosition>: "N47\xB0 26' 03.00\"" (any blanks, the degree
// sign as Windows-1252 or UTF-8) into signed degrees; false when it isn't one.
bool ReadPlanAngle(const std::string& text, double& out) {
    size_t i = 0;
    while (i < text.size() && text[i] == ' ') ++i;
    if (i >= text.size()) return false;
    char hemisphere = text[i++];
    if (hemisphere != 'N' && hemisphere != 'S' && hemisphere != 'E' && hemisphere != 'W') return false;
    double parts[3] = {0, 0, 0};
    int count = 0;
    while (i < text.size() && count < 3) {
        while (i < text.size() && !(std::isdigit(static_cast<unsigned char>(text[i])) || text[i] == '.')) ++i;
        if (i >= text.size()) break;
        char* end = nullptr;
        parts[count++] = std::strtod(text.c_str() + i, &end);
        i = static_cast<size_t>(end - text.c_str());
    }
    if (count == 0 || parts[1] >= 60 || parts[2] >= 60) return false;
    out = parts[0] + parts[1] / 60 + parts[2] / 3600;
    if (hemisphere == 'S' || hemisphere == 'W') out = -out;
    return true;
}

std::string Between(const std::string& line, const std::string& open, const std::string& close) {
    size_t a = line.find(open);
    if (a == std::string::npos) return {};
    a += open.size();
    size_t b = line.find(close, a);
    return b == std::string::npos ? std::string() : line.substr(a, b - a);
}

// The simulator's XML plan: an <ATCWaypoint id="X"> and its <WorldPosition>.
bool ReadXmlPlan(const std::string& path, std::istream& in, std::vector<RouteFix>& fixes, std::string& error) {
    std::string line;
    int number = 0;
    RouteFix fix;
    bool open = false;
    while (std::getline(in, line)) {
        ++number;
        if (line.find("<ATCWaypoint id=\"") != std::string::npos) {
            fix = RouteFix{};
            fix.ident = Between(line, "<ATCWaypoint id=\"", "\"");
            open = true;
        } else if (open && line.find("<WorldPosition>") != std::string::npos) {
            std::string text = Between(line, "<WorldPosition>", "</WorldPosition>");
            size_t comma = text.find(',');
            if (comma == std::string::npos || !ReadPlanAngle(text.substr(0, comma), fix.lat) ||
                !ReadPlanAngle(text.substr(comma + 1), fix.lon) || std::fabs(fix.lat) > 90 || std::fabs(fix.lon) > 180) {
                error = path + ":" + std::to_string(number) + ": bad <WorldPosition> '" + text + "'";
                return false;
            }
            fixes.push_back(fix);
            open = false;
        }
    }
    if (fixes.empty()) {
        error = path + ": no <ATCWaypoint> with a <WorldPosition>";
        return false;
    }
    return true;
}

}  // namespace

bool ReadRouteFile(const std::string& path, std::vector<RouteFix>& fixes, std::string& error) {
    fixes.clear();
    std::ifstream in(path);
    if (!in) {
        error = path + ": cannot read the route file";
        return false;
    }
    if (path.size() > 4) {
        std::string ext = path.substr(path.size() - 4);
        for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (ext == ".pln") return ReadXmlPlan(path, in, fixes, error);
    }
    std::string line;
    bool in_plan = false;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.rfind("[FlightPlan]", 0) == 0) {
            in_plan = true;
            continue;
        }
        if (!in_plan || line.empty() || line[0] == ';') continue;
        std::istringstream words(line);
        RouteFix fix;
        std::string lat, lon;
        if (!(words >> fix.ident >> lat >> lon)) continue;
        char* end = nullptr;
        fix.lat = std::strtod(lat.c_str(), &end);
        if (*end != 0 || std::fabs(fix.lat) > 90) {
            error = path + ":" + std::to_string(number) + ": bad latitude '" + lat + "'";
            return false;
        }
        fix.lon = std::strtod(lon.c_str(), &end);
        if (*end != 0 || std::fabs(fix.lon) > 180) {
            error = path + ":" + std::to_string(number) + ": bad longitude '" + lon + "'";
            return false;
        }
        fixes.push_back(fix);
    }
    if (fixes.empty()) {
        error = path + ": no waypoint rows after [FlightPlan]";
        return false;
    }
    return true;
}

bool WriteRoutePlot(const std::string& path, const std::vector<RouteFix>& route, const std::vector<TrackPoint>& track,
                    const std::string& title, std::string& error, const PlotWindow& window) {
    constexpr int kWidth = 1200, kHeight = 900, kMargin = 70;
    // Bounds of everything drawn.
    double lat_min = 90, lat_max = -90, lon_min = 180, lon_max = -180;
    auto grow = [&](double lat, double lon) {
        lat_min = std::min(lat_min, lat);
        lat_max = std::max(lat_max, lat);
        lon_min = std::min(lon_min, lon);
        lon_max = std::max(lon_max, lon);
    };
    for (const RouteFix& f : route) grow(f.lat, f.lon);
    for (const TrackPoint& p : track) grow(p.lat, p.lon);
    if (lat_min > lat_max) {
        error = "plot: nothing to draw";
        return false;
    }
    if (window.set) {
        // The asked window instead: what lies outside it is cut off at the edges.
        double half_lat = window.half_nm / 60;
        double half_lon = half_lat / std::max(0.05, std::cos(window.lat * M_PI / 180));
        lat_min = window.lat - half_lat;
        lat_max = window.lat + half_lat;
        lon_min = window.lon - half_lon;
        lon_max = window.lon + half_lon;
    }
    double mid_lat = (lat_min + lat_max) / 2;
    double cos_lat = std::max(0.05, std::cos(mid_lat * M_PI / 180));
    double span_x = std::max((lon_max - lon_min) * cos_lat, 0.01);  // degrees of arc
    double span_y = std::max(lat_max - lat_min, 0.01);
    double scale = std::min((kWidth - 2 * kMargin) / span_x, (kHeight - 2 * kMargin) / span_y);  // px a degree
    double cx = (lon_min + lon_max) / 2, cy = mid_lat;
    auto to_x = [&](double lon) { return kWidth / 2.0 + (lon - cx) * cos_lat * scale; };
    auto to_y = [&](double lat) { return kHeight / 2.0 - (lat - cy) * scale; };

    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight);
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 0.06, 0.07, 0.09);
    cairo_paint(cr);
    cairo_select_font_face(cr, "Liberation Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);

    // Graticule every degree (or tenth, on a small plot).
    double span = std::max(span_y, lon_max - lon_min);
    double step = span > 3 ? 1.0 : (span > 0.6 ? 0.5 : 0.1);
    cairo_set_source_rgb(cr, 0.16, 0.18, 0.22);
    cairo_set_line_width(cr, 1);
    for (double lat = std::floor(lat_min / step) * step; lat <= lat_max + step; lat += step) {
        cairo_move_to(cr, 0, to_y(lat));
        cairo_line_to(cr, kWidth, to_y(lat));
    }
    for (double lon = std::floor(lon_min / step) * step; lon <= lon_max + step; lon += step) {
        cairo_move_to(cr, to_x(lon), 0);
        cairo_line_to(cr, to_x(lon), kHeight);
    }
    cairo_stroke(cr);

    // The legs in magenta.
    cairo_set_source_rgb(cr, 0.95, 0.3, 0.95);
    cairo_set_line_width(cr, 2.5);
    for (size_t i = 0; i < route.size(); ++i) {
        if (i == 0) cairo_move_to(cr, to_x(route[i].lon), to_y(route[i].lat));
        else cairo_line_to(cr, to_x(route[i].lon), to_y(route[i].lat));
    }
    cairo_stroke(cr);

    // The flown track in green.
    cairo_set_source_rgb(cr, 0.25, 0.95, 0.35);
    cairo_set_line_width(cr, 1.6);
    for (size_t i = 0; i < track.size(); ++i) {
        if (i == 0) cairo_move_to(cr, to_x(track[i].lon), to_y(track[i].lat));
        else cairo_line_to(cr, to_x(track[i].lon), to_y(track[i].lat));
    }
    cairo_stroke(cr);
    if (!track.empty()) {
        cairo_arc(cr, to_x(track.back().lon), to_y(track.back().lat), 5, 0, 2 * M_PI);
        cairo_fill(cr);
    }

    // Waypoints: a white triangle and the name.
    cairo_set_font_size(cr, 14);
    for (const RouteFix& f : route) {
        double x = to_x(f.lon), y = to_y(f.lat);
        cairo_set_source_rgb(cr, 1, 1, 1);
        cairo_move_to(cr, x, y - 6);
        cairo_line_to(cr, x + 5.5, y + 4);
        cairo_line_to(cr, x - 5.5, y + 4);
        cairo_close_path(cr);
        cairo_stroke(cr);
        cairo_move_to(cr, x + 8, y - 8);
        cairo_show_text(cr, f.ident.c_str());
    }

    // Scale bar: a round number of nautical miles near a fifth of the width.
    double nm_per_px = 60.0 / scale;
    double target = nm_per_px * kWidth / 5;
    double bar_nm = 1;
    for (double candidate : {1.0, 2.0, 5.0, 10.0, 20.0, 25.0, 50.0, 100.0, 200.0, 250.0, 500.0, 1000.0})
        if (candidate <= target) bar_nm = candidate;
    double bar_px = bar_nm / nm_per_px;
    cairo_set_source_rgb(cr, 0.9, 0.9, 0.9);
    cairo_set_line_width(cr, 2);
    double bx = 30, by = kHeight - 30;
    cairo_move_to(cr, bx, by - 6);
    cairo_line_to(cr, bx, by);
    cairo_line_to(cr, bx + bar_px, by);
    cairo_line_to(cr, bx + bar_px, by - 6);
    cairo_stroke(cr);
    char label[32];
    std::snprintf(label, sizeof label, "%g NM", bar_nm);
    cairo_move_to(cr, bx + bar_px + 8, by);
    cairo_show_text(cr, label);

    // North arrow and title.
    cairo_move_to(cr, kWidth - 40, 60);
    cairo_line_to(cr, kWidth - 40, 20);
    cairo_stroke(cr);
    cairo_move_to(cr, kWidth - 46, 30);
    cairo_line_to(cr, kWidth - 40, 18);
    cairo_line_to(cr, kWidth - 34, 30);
    cairo_fill(cr);
    cairo_move_to(cr, kWidth - 45, 78);
    cairo_show_text(cr, "N");
    cairo_set_font_size(cr, 18);
    cairo_move_to(cr, 30, 36);
    cairo_show_text(cr, title.c_str());
    cairo_set_font_size(cr, 13);
    cairo_set_source_rgb(cr, 0.95, 0.3, 0.95);
    cairo_move_to(cr, 30, 58);
    cairo_show_text(cr, "route legs");
    cairo_set_source_rgb(cr, 0.25, 0.95, 0.35);
    cairo_move_to(cr, 120, 58);
    cairo_show_text(cr, "flown track");

    cairo_destroy(cr);
    cairo_surface_flush(surface);
    cairo_status_t status = cairo_surface_write_to_png(surface, path.c_str());
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = path + ": cannot write the plot";
        return false;
    }
    return true;
}

}  // namespace orbsim
