// profile_plot.cpp: reading the module's predicted profile and the flown
// track, placing the track along the route, and drawing both.
//
// Index:
//   [SECTION] Reading the predictions
//   [SECTION] Reading the track
//   [SECTION] Along the route
//   [SECTION] Restrictions against the flight
//   [SECTION] Drawing
#include "profile_plot.h"

#include "text_util.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>

namespace orbsim {

namespace {
constexpr double kDegToRad = 0.017453292519943295;
constexpr double kAlongSlackNm = 0.5;  // rows may round their distances; going back further is a broken file

std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t' || line[i] == '\r')) ++i;
        size_t start = i;
        while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r') ++i;
        if (i > start) words.push_back(line.substr(start, i - start));
    }
    return words;
}

// "12000" below the transition, "FL240" above it.
std::string AltitudeText(double feet) {
    char buf[32];
    if (feet > 18000) std::snprintf(buf, sizeof buf, "FL%03.0f", std::round(feet / 100));
    else std::snprintf(buf, sizeof buf, "%.0f", std::round(feet));
    return buf;
}
}  // namespace

bool HasAltitudeRestriction(const ProfileRow& row) {
    return (row.restricted == 1 || row.restricted == 3) && row.altitude != kProfileNoValue;
}

// [SECTION] Reading the predictions
bool ReadVerticalProfile(const std::string& path, VerticalProfile& profile, std::string& error) {
    profile = VerticalProfile{};
    std::ifstream in(path);
    if (!in) {
        error = path + ": cannot read the profile file";
        return false;
    }
    return ParseVerticalProfile(path, in, profile, error);
}

bool ParseVerticalProfile(const std::string& path, std::istream& in, VerticalProfile& profile, std::string& error) {
    profile = VerticalProfile{};
    std::string line;
    int number = 0;
    auto fail = [&](const std::string& message) {
        error = path + ":" + std::to_string(number) + ": " + message;
        return false;
    };
    // A number in its range, or the reason it is not.
    auto number_in = [&](const std::string& word, const char* what, double lo, double hi, double& out) {
        if (ParseNumber(word, out) && out >= lo && out <= hi) return true;
        error = path + ":" + std::to_string(number) + ": " + what + " '" + word + "' is not a number from " +
                std::to_string(static_cast<long long>(lo)) + " to " + std::to_string(static_cast<long long>(hi));
        return false;
    };
    while (std::getline(in, line)) {
        ++number;
        // 1. Blank lines and comments.
        if (line.size() > kMaxProfileLineLength) return fail("line longer than 1024 characters");
        for (char c : line)
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r') return fail("line holds a control byte");
        std::vector<std::string> w = Words(line);
        if (w.empty() || w[0][0] == ';') continue;
        const std::string& kind = w[0];

        // 2. The cruise level.
        if (kind == "CRZ") {
            if (w.size() != 2) return fail("CRZ takes the cruise altitude in feet");
            if (!number_in(w[1], "cruise altitude", 0, 100000, profile.cruise_ft)) return false;
            continue;
        }

        // 3. T/C and T/D.
        if (kind == "TC" || kind == "TD") {
            if (w.size() != 4) return fail(kind + " takes LAT LON NM");
            ProfileMark& mark = kind == "TC" ? profile.top_of_climb : profile.top_of_descent;
            if (!number_in(w[1], "latitude", -90, 90, mark.lat) || !number_in(w[2], "longitude", -180, 180, mark.lon) ||
                !number_in(w[3], "distance", 0, 50000, mark.along_nm))
                return false;
            mark.set = true;
            continue;
        }

        // 4. A row of the plan.
        if (kind == "ROW") {
            if (w.size() != 9) return fail("ROW takes INDEX IDENT LAT LON NM ALTITUDE SPEED RESTRICTED");
            if (static_cast<int>(profile.rows.size()) >= kMaxProfileRows) return fail("more than 1000 rows");
            ProfileRow row;
            double index = 0, restricted = 0;
            if (!number_in(w[1], "row index", 0, kMaxProfileRows, index) ||
                !number_in(w[3], "latitude", -90, 90, row.lat) || !number_in(w[4], "longitude", -180, 180, row.lon) ||
                !number_in(w[5], "distance", 0, 50000, row.along_nm) ||
                !number_in(w[6], "altitude", -2000, 100000, row.altitude) ||
                !number_in(w[7], "speed", -999, 1000, row.speed) ||
                !number_in(w[8], "restriction kind", 0, 3, restricted))
                return false;
            if (index != std::floor(index) || restricted != std::floor(restricted))
                return fail("row index and restriction kind are whole numbers");
            if (!profile.rows.empty() && row.along_nm + kAlongSlackNm < profile.rows.back().along_nm)
                return fail("row " + w[2] + " lies nearer the origin than the row before it");
            row.index = static_cast<int>(index);
            row.ident = w[2].substr(0, 32);
            row.restricted = static_cast<int>(restricted);
            profile.rows.push_back(row);
            continue;
        }
        return fail("'" + kind + "' is not CRZ, TC, TD or ROW");
    }
    if (profile.rows.empty()) {
        error = path + ": no ROW lines";
        return false;
    }
    return true;
}

// [SECTION] Reading the track
bool ReadTrackFile(const std::string& path, std::vector<FlownPoint>& track, std::string& error) {
    track.clear();
    std::ifstream in(path);
    if (!in) {
        error = path + ": cannot read the track";
        return false;
    }
    return ParseTrack(path, in, track, error);
}

bool ParseTrack(const std::string& path, std::istream& in, std::vector<FlownPoint>& track, std::string& error) {
    track.clear();
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || (number == 1 && line.rfind("time,", 0) == 0)) continue;
        // time,lat,lon,altitude, then fields the profile does not need.
        double fields[4] = {};
        size_t start = 0;
        for (int k = 0; k < 4; ++k) {
            size_t comma = line.find(',', start);
            bool last = comma == std::string::npos;
            if ((last && k < 3) || !ParseNumber(line.substr(start, last ? std::string::npos : comma - start), fields[k])) {
                error = path + ":" + std::to_string(number) + ": not a track row (time,lat,lon,altitude,...)";
                return false;
            }
            start = last ? line.size() : comma + 1;
        }
        if (std::fabs(fields[1]) > 90 || std::fabs(fields[2]) > 180) {
            error = path + ":" + std::to_string(number) + ": position out of range";
            return false;
        }
        if (track.size() >= kMaxTrackRows) {
            error = path + ":" + std::to_string(number) + ": more than 1000000 track rows";
            return false;
        }
        track.push_back({fields[0], fields[1], fields[2], fields[3]});
    }
    if (track.empty()) {
        error = path + ": the track has no rows yet";
        return false;
    }
    return true;
}

// [SECTION] Along the route
namespace {
// A point's place on the leg from row a to row b: the fraction along it and
// the distance off it, in a flat view around a (true enough over a leg).
struct LegFit {
    double fraction = 0;                // 0 at a, 1 at b
    double off_nm = 0;                  // distance from the leg
};

LegFit FitOnLeg(const ProfileRow& a, const ProfileRow& b, double lat, double lon) {
    double cos_lat = std::cos((a.lat + b.lat) / 2 * kDegToRad);
    auto east = [&](double lo, double from) {
        double d = lo - from;
        if (d > 180) d -= 360;
        if (d < -180) d += 360;
        return d * 60 * cos_lat;
    };
    double bx = east(b.lon, a.lon), by = (b.lat - a.lat) * 60;
    double px = east(lon, a.lon), py = (lat - a.lat) * 60;
    double length2 = bx * bx + by * by;
    LegFit fit;
    fit.fraction = length2 > 1e-12 ? std::clamp((px * bx + py * by) / length2, 0.0, 1.0) : 0.0;
    fit.off_nm = std::hypot(px - fit.fraction * bx, py - fit.fraction * by);
    return fit;
}
}  // namespace

std::vector<double> AlongRouteDistances(const VerticalProfile& profile, const std::vector<FlownPoint>& track) {
    std::vector<double> along;
    along.reserve(track.size());
    const auto& rows = profile.rows;
    if (rows.empty()) return along;
    size_t legs = rows.size() - 1;
    size_t leg = 0;
    double last = rows.front().along_nm;
    for (const FlownPoint& p : track) {
        // 1. With a single row there are no legs: every point stands at it.
        if (legs == 0) {
            along.push_back(rows.front().along_nm);
            continue;
        }
        // 2. The nearest leg from the present one on, a few legs ahead at most.
        size_t best = leg;
        LegFit best_fit = FitOnLeg(rows[leg], rows[leg + 1], p.lat, p.lon);
        for (size_t k = leg + 1; k < legs && k <= leg + kProjectionLookAheadLegs; ++k) {
            LegFit fit = FitOnLeg(rows[k], rows[k + 1], p.lat, p.lon);
            if (fit.off_nm < best_fit.off_nm - 1e-9) {
                best = k;
                best_fit = fit;
            }
        }
        leg = best;
        // 3. The distance on that leg by the file's miles, never going back.
        double d = rows[leg].along_nm + best_fit.fraction * (rows[leg + 1].along_nm - rows[leg].along_nm);
        last = std::max(last, d);
        along.push_back(last);
    }
    return along;
}

bool FlownAltitudeAt(const std::vector<FlownPoint>& track, const std::vector<double>& along, double along_nm,
                     double& altitude) {
    size_t n = std::min(track.size(), along.size());
    for (size_t i = 0; i < n; ++i) {
        if (along[i] < along_nm) continue;
        if (i == 0 || along[i] - along[i - 1] < 1e-9) {
            altitude = track[i].altitude;
        } else {
            double f = (along_nm - along[i - 1]) / (along[i] - along[i - 1]);
            altitude = track[i - 1].altitude + f * (track[i].altitude - track[i - 1].altitude);
        }
        return true;
    }
    return false;
}

// [SECTION] Restrictions against the flight
ProfileFigures CompareProfile(const VerticalProfile& profile, const std::vector<FlownPoint>& track,
                              const std::vector<double>& along) {
    ProfileFigures figures;
    figures.rows = static_cast<int>(profile.rows.size());
    for (const FlownPoint& p : track) figures.max_altitude = std::max(figures.max_altitude, p.altitude);
    for (const ProfileRow& row : profile.rows) {
        if (row.restricted == 0) continue;
        ++figures.restricted;
        RestrictionCheck check;
        check.index = row.index;
        check.ident = row.ident;
        check.has_altitude = HasAltitudeRestriction(row);
        check.vnav_target = row.restricted == 1;
        check.altitude = row.altitude;
        bool has_speed = row.restricted != 0 && row.speed > 0;
        if (check.has_altitude) check.restriction = AltitudeText(row.altitude) + (row.altitude <= 18000 ? " ft" : "");
        if (has_speed) check.restriction += (check.restriction.empty() ? "" : " / ") + std::to_string(static_cast<int>(row.speed)) + " kt";
        if (check.restriction.empty()) check.restriction = "-";
        check.passed = FlownAltitudeAt(track, along, row.along_nm, check.flown_ft);
        if (check.passed && check.has_altitude) {
            check.miss_ft = check.flown_ft - row.altitude;
            ++figures.passed;
            // VNAV aims only at kind 1; an approach's altitudes are the pilot's
            // (or the approach mode's) to fly, so they are measured apart.
            double& worst = check.vnav_target ? figures.worst_miss : figures.worst_approach_miss;
            worst = std::max(worst, std::fabs(check.miss_ft));
        }
        figures.checks.push_back(check);
    }
    return figures;
}

std::string DescribeCheck(const RestrictionCheck& check) {
    char buf[200];
    if (!check.passed) {
        std::snprintf(buf, sizeof buf, "%-8s %-18s not reached", check.ident.c_str(), check.restriction.c_str());
    } else if (!check.has_altitude) {
        std::snprintf(buf, sizeof buf, "%-8s %-18s flown %6.0f ft", check.ident.c_str(), check.restriction.c_str(),
                      check.flown_ft);
    } else {
        std::snprintf(buf, sizeof buf, "%-8s %-18s flown %6.0f ft  %+6.0f ft%s", check.ident.c_str(),
                      check.restriction.c_str(), check.flown_ft, check.miss_ft,
                      check.vnav_target ? "" : "  (approach, not a VNAV target)");
    }
    return buf;
}

// [SECTION] Drawing
namespace {
// A round step that gives at most `most` steps over the span.
double RoundStep(double span, int most, std::initializer_list<double> steps) {
    double chosen = *(steps.end() - 1);
    for (double s : steps)
        if (span / s <= most) return s;
    return chosen;
}
}  // namespace

bool WriteProfilePlot(const std::string& path, const VerticalProfile& profile, const std::vector<FlownPoint>& track,
                      const std::vector<double>& along, const ProfileFigures& figures, const std::string& title,
                      std::string& error) {
    constexpr int kWidth = 1400, kHeight = 760;
    constexpr double kLeft = 90, kRight = 40, kTop = 70, kBottom = 130;

    // 1. The extent of everything drawn.
    double max_nm = 1, max_ft = 1000;
    for (const ProfileRow& r : profile.rows) {
        max_nm = std::max(max_nm, r.along_nm);
        if (r.altitude != kProfileNoValue) max_ft = std::max(max_ft, r.altitude);
    }
    for (const ProfileMark* m : {&profile.top_of_climb, &profile.top_of_descent})
        if (m->set) max_nm = std::max(max_nm, m->along_nm);
    if (!along.empty()) max_nm = std::max(max_nm, along.back());
    max_ft = std::max({max_ft, profile.cruise_ft, figures.max_altitude});
    double ft_step = RoundStep(max_ft * 1.1, 10, {1000, 2000, 5000, 10000, 20000});
    double top_ft = std::ceil(max_ft * 1.08 / ft_step) * ft_step;
    double nm_step = RoundStep(max_nm, 14, {1, 2, 5, 10, 20, 25, 50, 100, 200, 250, 500, 1000, 2000});
    double right_nm = max_nm * 1.02;
    double plot_w = kWidth - kLeft - kRight, plot_h = kHeight - kTop - kBottom;
    auto to_x = [&](double nm) { return kLeft + nm / right_nm * plot_w; };
    auto to_y = [&](double ft) { return kTop + plot_h - std::max(0.0, ft) / top_ft * plot_h; };

    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight);
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 0.06, 0.07, 0.09);
    cairo_paint(cr);
    cairo_select_font_face(cr, "Liberation Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, 12);

    // 2. Grid and axes with their labels.
    char label[64];
    cairo_set_line_width(cr, 1);
    for (double ft = 0; ft <= top_ft + 1; ft += ft_step) {
        cairo_set_source_rgb(cr, 0.16, 0.18, 0.22);
        cairo_move_to(cr, kLeft, to_y(ft));
        cairo_line_to(cr, kWidth - kRight, to_y(ft));
        cairo_stroke(cr);
        cairo_set_source_rgb(cr, 0.85, 0.85, 0.85);
        std::string text = AltitudeText(ft);
        cairo_text_extents_t ext;
        cairo_text_extents(cr, text.c_str(), &ext);
        cairo_move_to(cr, kLeft - 8 - ext.width, to_y(ft) + 4);
        cairo_show_text(cr, text.c_str());
    }
    for (double nm = 0; nm <= right_nm; nm += nm_step) {
        cairo_set_source_rgb(cr, 0.16, 0.18, 0.22);
        cairo_move_to(cr, to_x(nm), kTop);
        cairo_line_to(cr, to_x(nm), kTop + plot_h);
        cairo_stroke(cr);
        cairo_set_source_rgb(cr, 0.85, 0.85, 0.85);
        std::snprintf(label, sizeof label, "%g", nm);
        cairo_move_to(cr, to_x(nm) - 8, kTop + plot_h + 16);
        cairo_show_text(cr, label);
    }
    cairo_set_source_rgb(cr, 0.85, 0.85, 0.85);
    cairo_move_to(cr, kLeft, kTop);
    cairo_line_to(cr, kLeft, kTop + plot_h);
    cairo_line_to(cr, kWidth - kRight, kTop + plot_h);
    cairo_stroke(cr);
    cairo_move_to(cr, kWidth / 2.0 - 60, kHeight - 12);
    cairo_show_text(cr, "distance along the route (NM)");
    cairo_save(cr);
    cairo_move_to(cr, 22, kTop + plot_h / 2 + 60);
    cairo_rotate(cr, -M_PI / 2);
    cairo_show_text(cr, "altitude (ft, FL above 18000)");
    cairo_restore(cr);

    // 3. Each row's name at its distance, written upwards under the axis.
    for (const ProfileRow& r : profile.rows) {
        double x = to_x(r.along_nm);
        cairo_set_source_rgb(cr, 0.35, 0.38, 0.45);
        cairo_move_to(cr, x, kTop + plot_h);
        cairo_line_to(cr, x, kTop + plot_h + 5);
        cairo_stroke(cr);
        cairo_set_source_rgb(cr, 1, 1, 1);
        cairo_save(cr);
        cairo_move_to(cr, x + 4, kTop + plot_h + 90);
        cairo_rotate(cr, -M_PI / 2);
        cairo_show_text(cr, r.ident.c_str());
        cairo_restore(cr);
    }

    // 4. Cruise level: a dotted line across.
    if (profile.cruise_ft != kProfileNoValue) {
        double dots[] = {2, 5};
        cairo_set_dash(cr, dots, 2, 0);
        cairo_set_source_rgb(cr, 0.4, 0.75, 0.95);
        cairo_move_to(cr, kLeft, to_y(profile.cruise_ft));
        cairo_line_to(cr, kWidth - kRight, to_y(profile.cruise_ft));
        cairo_stroke(cr);
        cairo_set_dash(cr, nullptr, 0, 0);
        std::snprintf(label, sizeof label, "CRZ %s", AltitudeText(profile.cruise_ft).c_str());
        cairo_move_to(cr, kWidth - kRight - 90, to_y(profile.cruise_ft) - 6);
        cairo_show_text(cr, label);
    }

    // 5. The predicted profile, dashed: rows with an altitude, T/C and T/D at cruise.
    std::vector<std::pair<double, double>> predicted;
    for (const ProfileRow& r : profile.rows)
        if (r.altitude != kProfileNoValue) predicted.emplace_back(r.along_nm, r.altitude);
    if (profile.cruise_ft != kProfileNoValue)
        for (const ProfileMark* m : {&profile.top_of_climb, &profile.top_of_descent})
            if (m->set) predicted.emplace_back(m->along_nm, profile.cruise_ft);
    std::stable_sort(predicted.begin(), predicted.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    double dashes[] = {9, 6};
    cairo_set_dash(cr, dashes, 2, 0);
    cairo_set_source_rgb(cr, 0.95, 0.3, 0.95);
    cairo_set_line_width(cr, 2);
    for (size_t i = 0; i < predicted.size(); ++i) {
        if (i == 0) cairo_move_to(cr, to_x(predicted[i].first), to_y(predicted[i].second));
        else cairo_line_to(cr, to_x(predicted[i].first), to_y(predicted[i].second));
    }
    cairo_stroke(cr);
    cairo_set_dash(cr, nullptr, 0, 0);

    // 6. T/C and T/D: a ring on the cruise level with its name.
    if (profile.cruise_ft != kProfileNoValue) {
        const std::pair<const ProfileMark*, const char*> marks[] = {{&profile.top_of_climb, "T/C"},
                                                                    {&profile.top_of_descent, "T/D"}};
        for (const auto& [mark, name] : marks) {
            if (!mark->set) continue;
            double x = to_x(mark->along_nm), y = to_y(profile.cruise_ft);
            cairo_set_source_rgb(cr, 0.3, 0.95, 0.95);
            cairo_new_path(cr);
            cairo_arc(cr, x, y, 5, 0, 2 * M_PI);
            cairo_stroke(cr);
            cairo_move_to(cr, x - 10, y - 12);
            cairo_show_text(cr, name);
        }
    }

    // 7. Restrictions: bars above and below the altitude, and its figure.
    cairo_set_line_width(cr, 2);
    for (const ProfileRow& r : profile.rows) {
        if (!HasAltitudeRestriction(r)) continue;
        double x = to_x(r.along_nm), y = to_y(r.altitude);
        // VNAV's restrictions amber; the approach's published altitudes grey-blue.
        if (r.restricted == 1) cairo_set_source_rgb(cr, 1.0, 0.75, 0.2);
        else cairo_set_source_rgb(cr, 0.55, 0.65, 0.85);
        cairo_move_to(cr, x - 7, y - 5);
        cairo_line_to(cr, x + 7, y - 5);
        cairo_move_to(cr, x - 7, y + 5);
        cairo_line_to(cr, x + 7, y + 5);
        cairo_stroke(cr);
        cairo_move_to(cr, x + 9, y + 16);
        cairo_show_text(cr, AltitudeText(r.altitude).c_str());
    }

    // 8. The flown profile, solid, with the present point.
    cairo_set_source_rgb(cr, 0.25, 0.95, 0.35);
    cairo_set_line_width(cr, 1.8);
    size_t n = std::min(track.size(), along.size());
    for (size_t i = 0; i < n; ++i) {
        if (i == 0) cairo_move_to(cr, to_x(along[i]), to_y(track[i].altitude));
        else cairo_line_to(cr, to_x(along[i]), to_y(track[i].altitude));
    }
    cairo_stroke(cr);
    if (n > 0) {
        cairo_arc(cr, to_x(along[n - 1]), to_y(track[n - 1].altitude), 4, 0, 2 * M_PI);
        cairo_fill(cr);
    }

    // 9. Title and key.
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_set_font_size(cr, 18);
    cairo_move_to(cr, kLeft, 30);
    cairo_show_text(cr, title.c_str());
    cairo_set_font_size(cr, 13);
    cairo_set_source_rgb(cr, 0.95, 0.3, 0.95);
    cairo_move_to(cr, kLeft, 54);
    cairo_show_text(cr, "predicted - - -");
    cairo_set_source_rgb(cr, 0.25, 0.95, 0.35);
    cairo_move_to(cr, kLeft + 130, 54);
    cairo_show_text(cr, "flown");
    cairo_set_source_rgb(cr, 1.0, 0.75, 0.2);
    cairo_move_to(cr, kLeft + 200, 54);
    std::snprintf(label, sizeof label, "VNAV restrictions (worst miss %.0f ft)", figures.worst_miss);
    cairo_show_text(cr, label);
    cairo_set_source_rgb(cr, 0.55, 0.65, 0.85);
    cairo_move_to(cr, kLeft + 480, 54);
    std::snprintf(label, sizeof label, "approach altitudes, not VNAV targets (worst miss %.0f ft)",
                  figures.worst_approach_miss);
    cairo_show_text(cr, label);

    cairo_destroy(cr);
    cairo_surface_flush(surface);
    cairo_status_t status = cairo_surface_write_to_png(surface, path.c_str());
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = path + ": cannot write the profile plot";
        return false;
    }
    return true;
}

}  // namespace orbsim
