// gns_data_pages.cpp: the GNS pages that show what guidance and the
// predictions work out: VNAV (the next vertical target and the plan's
// altitudes with T/C and T/D), VNAV DATA, NAVIGATION and PLAN (fuel, trip,
// flows, times and weights).
//
// Index:
//   [SECTION] Shared
//   [SECTION] VNAV
//   [SECTION] VNAV DATA
//   [SECTION] NAVIGATION
//   [SECTION] PLAN
#include "cdu/gns_keys.h"
#include "cdu/gns_screen.h"
#include "flightlog/flight_log.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <cstdlib>

namespace {
constexpr double kTimedGroundSpeed = 50;      // kt: times and rates only above this
constexpr int kVnavRowsPerPage = 7;
constexpr int kNavPages = 4;
constexpr int kPlanPages = 6;
constexpr double kMaxPathAngle = 6;           // degrees, the highest default flight path angle

GnsPageState& S() { return g_gns_page; }

// [SECTION] Shared
// "hh:mm" of a distance at the ground speed, or "------" when too slow.
void TimeOf(double distance, char* out, size_t size) {
    double gs = g_sim.ground_speed;
    if (gs <= kTimedGroundSpeed) {
        std::snprintf(out, size, "------");
        return;
    }
    double minutes = distance / gs * 60;
    double h = std::floor(minutes / 60);
    std::snprintf(out, size, "%02.0f:%02.0f", h, std::floor(minutes - h * 60));
}

double DistanceFromAircraft(double lat, double lon) {
    double distance = 0;
    double bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, lat, lon, distance, bearing);
    return distance;
}

// The Zulu date: day and month from the simulator's day of the year.
void ZuluDate(char* out, size_t size) {
    static constexpr int kDaysInMonth[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    static constexpr const char* kMonths[12] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    double day_value = ReadToken(Token::ZULU_DAY);
    double year_value = ReadToken(Token::ZULU_YEAR);
    int day = std::isfinite(day_value) ? std::clamp(static_cast<int>(day_value), 1, 366) : 1;
    int year = std::isfinite(year_value) ? std::clamp(static_cast<int>(year_value), 2000, 2099) : 2000;
    bool leap = year % 4 == 0;
    int month = 0;
    for (; month < 11; ++month) {
        int days = kDaysInMonth[month] + (month == 1 && leap ? 1 : 0);
        if (day <= days) break;
        day -= days;
    }
    std::snprintf(out, size, "%02d %s %02.0f", day, kMonths[month], static_cast<double>(year - 2000));
}

bool HasActiveLeg() {
    const PlanContext& pc = g_plan.context;
    return pc.ActiveLeg != kNoActiveLeg && pc.ActiveLastRow >= 1 && pc.ActiveLeg <= pc.ActiveLastRow;
}
}  // namespace

// [SECTION] VNAV
int GnsVnavPageCount() {
    const PlanContext& pc = g_plan.context;
    if (!HasActiveLeg()) return 2;
    int lines = pc.ActiveLastRow - pc.ActiveLeg + 1 + (g_vnav.CruiseReached == 0 ? 1 : 0) +
                (g_vnav.DescentActive == 0 ? 1 : 0);
    return std::max(1, (lines + kVnavRowsPerPage - 1) / kVnavRowsPerPage) + 1;
}

namespace {
bool TocAhead() {
    const PlanContext& pc = g_plan.context;
    const VnavState& v = g_vnav;
    if (v.CruiseReached != 0 || pc.CruiseAltitude <= 0) return false;
    if (v.TopOfClimbLatitude == 0 && v.TopOfClimbLongitude == 0) return false;
    double toc = DistanceFromAircraft(v.TopOfClimbLatitude, v.TopOfClimbLongitude);
    int r = pc.NextRestrictionRow;
    if (r < 0 || r > pc.ActiveLastRow) return true;
    const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(r)];
    return DistanceFromAircraft(w.Latitude, w.Longitude) > toc;
}

void VnavFirstPage(GnsScreen& screen) {
    const PlanContext& pc = g_plan.context;
    const VnavState& v = g_vnav;
    char text[48];
    char time[16];
    bool active = HasActiveLeg();
    bool toc = active && TocAhead();
    bool tod = active && !toc && v.CruiseReached == 1 && v.DescentActive == 0 && pc.CruiseAltitude > 0;
    double range = 0;
    float y80 = GnsRowY(2);
    // The target line.
    if (!active) {
        screen.Text("TO ------", 30, y80, kGnsMagenta);
        screen.Text("-----", 380, y80, kGnsCyan);
    } else if (toc || tod) {
        screen.Text(toc ? "TO #TOC" : "TO #TOD", 30, y80, kGnsMagenta);
        std::snprintf(text, sizeof text, "%5d", pc.CruiseAltitude);
        screen.Text(text, 380, y80, kGnsCyan);
        range = toc ? DistanceFromAircraft(v.TopOfClimbLatitude, v.TopOfClimbLongitude)
                    : std::max(0.0, g_plan_distances.DistToTd);
    } else {
        int r = std::clamp(pc.NextRestrictionRow, 0, std::max(pc.ActiveLastRow, 0));
        std::snprintf(text, sizeof text, "TO %s", g_plan.ActivePlan[static_cast<size_t>(r)].Ident.data());
        screen.Text(text, 30, y80, kGnsMagenta);
        if (v.TargetAltitude <= kNoAltitude)
            std::snprintf(text, sizeof text, "-----");
        else
            std::snprintf(text, sizeof text, "%5.0f", v.TargetAltitude);
        screen.Text(text, 380, y80, kGnsCyan);
    }
    double gs = g_sim.ground_speed;
    double vs = g_sim.vertical_speed.now;
    if (toc || tod) {
        screen.Text("RANGE (NM)", 30, GnsRowY(3));
        std::snprintf(text, sizeof text, "%5.1f", range);
        screen.Text(text, 370, GnsRowY(3));
        screen.Text("ETE", 30, GnsRowY(4), kGnsCyan);
        TimeOf(range, time, sizeof time);
        screen.Text(time, 380, GnsRowY(4), kGnsCyan);
    } else {
        screen.Text("EST CROSSING", 30, GnsRowY(3), kGnsCyan);
        if (gs > 0)
            std::snprintf(text, sizeof text, "%5.0f", g_sim.indicated_altitude.now + vs * v.TargetDistance / (gs / 60));
        else
            std::snprintf(text, sizeof text, "-----");
        screen.Text(text, 380, GnsRowY(3), kGnsCyan);
    }
    if (active && tod) {
        screen.Text("@ #TOD   FM DN", 30, GnsRowY(5));
        std::snprintf(text, sizeof text, "%4.0f", 2000.0);
        screen.Text(text, 400, GnsRowY(5));
    } else if (active && !toc) {
        screen.Text("REQUIRED FPM    ", 30, GnsRowY(5));
        if (gs > kTimedGroundSpeed)
            std::snprintf(text, sizeof text, "%4.0f", v.RequiredVs);
        else
            std::snprintf(text, sizeof text, "----");
        screen.Text(text, 400, GnsRowY(5));
    }
    std::snprintf(text, sizeof text, "ACTUAL   FPM %s", vs < 0 ? "DN" : vs > 0 ? "UP" : "");
    screen.Text(text, 30, GnsRowY(6));
    std::snprintf(text, sizeof text, "%4.0f", std::fabs(vs));
    screen.Text(text, 400, GnsRowY(6));
    if (!active) return;
    if (v.CruiseReached == 0) {
        screen.Text("CLIMB GRAD", 30, GnsRowY(8));
        std::snprintf(text, sizeof text, "%4.0f/NM", gs > kTimedGroundSpeed ? vs / (gs / 60) : 0.0);
        screen.Text(text, 340, GnsRowY(8));
    } else if (v.DescentActive == 1) {
        if (v.PathDeviationValid) {
            double deviation = g_sim.indicated_altitude.now - v.PathAltitude;
            std::snprintf(text, sizeof text, "%5.0f", std::fabs(deviation));
            screen.Text(deviation >= 0 ? "VERT DEV HIGH" : "VERT DEV LOW", 30, GnsRowY(8));
        } else {
            std::snprintf(text, sizeof text, "-----");
            screen.Text("VERT DEV", 30, GnsRowY(8));
        }
        screen.Text(text, 340, GnsRowY(8));
    }
}

void VnavListPage(GnsScreen& screen, int page) {
    const PlanContext& pc = g_plan.context;
    const VnavState& v = g_vnav;
    if (!HasActiveLeg()) return;
    double toc = (v.TopOfClimbLatitude == 0 && v.TopOfClimbLongitude == 0)
                     ? -1
                     : DistanceFromAircraft(v.TopOfClimbLatitude, v.TopOfClimbLongitude);
    bool toc_shown = v.CruiseReached != 0 || toc < 0;
    bool tod_shown = v.DescentActive != 0;
    int first = kVnavRowsPerPage * page - 13;
    if (page >= 3 && pc.ActiveLastRow > 5 && v.CruiseReached == 0) first -= 2;
    first = std::max(first, 1);
    // Rows before the page's first: the two marks already passed by the same tests.
    for (int r = 1; r < first && r <= pc.ActiveLastRow; ++r) {
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(r)];
        double d = DistanceFromAircraft(w.Latitude, w.Longitude);
        if (!toc_shown && d > toc) toc_shown = true;
        if (!tod_shown && d > g_plan_distances.TdFromDest) tod_shown = true;
    }
    char text[32];
    int line = 0;
    for (int r = first; r <= pc.ActiveLastRow && line < kVnavRowsPerPage; ++r) {
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(r)];
        double d = DistanceFromAircraft(w.Latitude, w.Longitude);
        std::snprintf(text, sizeof text, "%5d", pc.CruiseAltitude);
        if (!toc_shown && d > toc) {
            toc_shown = true;
            float y = GnsRowY(2 + line++);
            screen.Text("#TOC", 30, y, kGnsMagenta);
            screen.Text(text, 320, y, kGnsMagenta);
            if (line >= kVnavRowsPerPage) break;
        }
        if (!tod_shown && d > g_plan_distances.TdFromDest) {
            tod_shown = true;
            ARGB colour = v.CruiseReached ? kGnsMagenta : kGnsCyan;
            float y = GnsRowY(2 + line++);
            screen.Text("#TOD", 30, y, colour);
            screen.Text(text, 320, y, colour);
            if (line >= kVnavRowsPerPage) break;
        }
        float y = GnsRowY(2 + line++);
        screen.Text(TextOf(w.Ident), 30, y);
        if (w.Altitude <= kNoAltitude)
            std::snprintf(text, sizeof text, "------");
        else
            std::snprintf(text, sizeof text, "%5.0f", w.Altitude);
        screen.Text(text, 320, y, kGnsCyan);
    }
}
}  // namespace

void GnsVnavPage(GnsScreen& screen) {
    GnsPageState& s = S();
    const PlanContext& pc = g_plan.context;
    int count = GnsVnavPageCount();
    if (s.GnsSubPage > count) s.GnsSubPage = 1;
    GnsStepPages(s.GnsSubPage, count);
    if (s.GnsLineSelect == 5) GnsPressLine(5, 1);
    if (s.GnsEnterLatch && s.GnsLineState[5] == 1) {
        GnsGoToPage(gns_page::kVnavData);
        return;
    }
    char text[32];
    std::snprintf(text, sizeof text, "VNAV   %d/%d", s.GnsSubPage, count);
    screen.Title(text, 90);
    // The phase word and the present altitude on every page.
    const VnavState& v = g_vnav;
    if (!HasActiveLeg() || pc.CruiseAltitude <= 0)
        screen.Text("INVALID", 30, GnsRowY(1), kGnsYellow);
    else
        screen.Text(v.CruiseReached == 0 ? "CLIMB" : v.DescentActive == 0 ? "CRUISE" : "DESCENT", 30, GnsRowY(1));
    std::snprintf(text, sizeof text, "%5.0f", g_sim.indicated_altitude.now);
    screen.Text(text, s.GnsSubPage == 1 ? 380 : 340, GnsRowY(1), kGnsCyan);
    if (s.GnsSubPage == 1)
        VnavFirstPage(screen);
    else
        VnavListPage(screen, s.GnsSubPage);
    screen.Text("<", 0, 330);
    if (s.GnsLineState[5] == 1)
        screen.Cursor("DATA?", 30, 360);
    else
        screen.Text("DATA", 30, 360);
}

// [SECTION] VNAV DATA
void GnsVnavDataPage(GnsScreen& screen) {
    GnsPageState& s = S();
    PlanContext& pc = g_plan.context;
    int key = s.GnsLineSelect;
    if (key == 7 || key == 8) {
        int st = GnsPressLine(key, key == 7 ? 2 : 1);
        if (st == 0)
            GnsCloseField();
        else
            GnsOpenField("", key == 8 ? 2 : 6);
    }
    if (s.GnsEnterLatch && s.GnsEditing) {
        std::string raw(GnsFieldText());
        if (s.GnsLineState[7] == 1 && !raw.empty()) {
            pc.CruiseAltitude = std::atoi(raw.c_str());
            PredictProfile(pc.CruiseAltitude, 1);
            if (pc.PlanState >= 3) VnavRestartTargets();
        } else if (s.GnsLineState[7] == 2 && !raw.empty()) {
            g_config.TransAlt = std::atoi(raw.c_str());
        } else if (s.GnsLineState[8] == 1 && raw.size() >= 1) {
            // Two digits "d" "." "d".
            double angle = (raw[0] - '0') + (raw.size() > 1 ? (raw[1] - '0') / 10.0 : 0);
            angle = std::min(std::max(angle, 0.0), kMaxPathAngle);
            s.GnsFlightPathAngle = angle;
            if (angle > 0)
                g_plan_distances.DescentRateInUse = std::round(angle * 100 * g_sim.ground_speed / 60 / 100) * 100;
        }
        GnsClearLineStates();
        GnsCloseField();
    }
    screen.Title("VNAV  DATA 1/1");
    char text[32];
    auto field_or = [&](int key_no, int state, const char* value, float y) {
        if (s.GnsEditing && s.GnsLineState[static_cast<size_t>(key_no)] == state)
            screen.Field(300, y);
        else
            screen.Text(value, 300, y, kGnsCyan);
    };
    screen.Text("CRUISE ALT", 30, GnsRowY(1));
    std::snprintf(text, sizeof text, "%6d", pc.CruiseAltitude);
    field_or(7, 1, text, GnsRowY(1));
    screen.Text("TRANS LEVEL", 30, GnsRowY(2));
    std::snprintf(text, sizeof text, "%6d", g_config.TransAlt);
    field_or(7, 2, text, GnsRowY(2));
    screen.Text("DEFAULT FPA", 30, GnsRowY(3));
    std::snprintf(text, sizeof text, "%2.1f", s.GnsFlightPathAngle);
    field_or(8, 1, text, GnsRowY(3));
    screen.Text("PRESEL ALT", 30, GnsRowY(4));
    std::snprintf(text, sizeof text, "%4.0f", g_sim.autopilot_altitude.now);
    screen.Text(text, 300, GnsRowY(4));
    double range = g_vnav.CruiseReached == 0 ? g_plan_distances.DistToTc : std::max(0.0, g_plan_distances.DistToTd);
    screen.Text("RANGE (NM)", 30, GnsRowY(5));
    std::snprintf(text, sizeof text, "%4.1f", range);
    screen.Text(text, 300, GnsRowY(5));
    screen.Text("ETE", 30, GnsRowY(6));
    TimeOf(range, text, sizeof text);
    screen.Text(text, 300, GnsRowY(6));
}

// [SECTION] NAVIGATION
namespace {
void NavHead(GnsScreen& screen) {
    const PlanContext& pc = g_plan.context;
    char text[48];
    bool holding = g_holds.HoldFlying == 1 && g_holds.HoldCount >= 1;
    const HoldRecord& hold = g_holds.HoldTable[1];
    if (holding) {
        screen.Text(hold.TurnRight == 1 ? "HOLD RIGHT" : "HOLD LEFT", 30, GnsRowY(1));
        screen.Text("AT", 30, GnsRowY(2), kGnsMagenta);
        screen.Text(TextOf(hold.Ident), 90, GnsRowY(2));
        screen.Text(g_holds.HoldExitState == 3 ? "EXIT HOLD" : "HOLDING", 30, 100, kGnsCyan);
        return;
    }
    screen.Text("FR", 30, GnsRowY(1));
    screen.Text(TextOf(g_lnav.LastPassed.ident), 90, GnsRowY(1), kGnsYellow);
    screen.Text(TextOf(g_lnav.LastPassed.time), 360, GnsRowY(1), kGnsCyan);
    if (!HasActiveLeg()) return;
    const PlanWaypoint& to = g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLeg)];
    screen.Text("TO", 30, GnsRowY(2), kGnsMagenta);
    screen.Text(TextOf(to.Ident), 90, GnsRowY(2));
    double minutes = g_sim.ground_speed > 1 ? g_lnav.DistToActive / g_sim.ground_speed * 60 : -1;
    if (pc.ActiveLeg == pc.NextRestrictionRow && to.Altitude > kNoAltitude) {
        std::snprintf(text, sizeof text, "%5.0fA", to.Altitude);
    } else if (minutes >= 0) {
        double clock = g_sim.zulu_hour * 60 + g_sim.zulu_minute + minutes;
        std::snprintf(text, sizeof text, "%02.0f:%02.0f", std::fmod(std::floor(clock / 60), 24),
                      std::floor(std::fmod(clock, 60)));
    } else {
        std::snprintf(text, sizeof text, "--:--");
    }
    screen.Text(text, 360, GnsRowY(2), kGnsCyan);
    if (minutes > 1 && g_sim.ground_speed > 60 && pc.ActiveLeg < pc.ActiveLastRow) {
        const PlanWaypoint& next = g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLeg + 1)];
        screen.Text("NX", 30, GnsRowY(3), kGnsYellow);
        screen.Text(TextOf(next.Ident), 90, GnsRowY(3));
        double d = 0;
        double b = 0;
        GreatCircle(to.Latitude, to.Longitude, next.Latitude, next.Longitude, d, b);
        TimeOf(g_lnav.DistToActive + d, text, sizeof text);
        screen.Text(text, 360, GnsRowY(3), kGnsCyan);
    }
}
}  // namespace

void GnsNavigationPage(GnsScreen& screen) {
    GnsPageState& s = S();
    GnsStepPages(s.GnsSubPage, kNavPages);
    if (s.GnsLineSelect == 7) {
        if (GnsPressLine(7, 1) == 1)
            GnsOpenField("");
        else
            GnsCloseField();
    }
    if (s.GnsLineSelect == 10) GnsPressLine(10, 1);
    char text[64];
    std::snprintf(text, sizeof text, "NAVIGATION   %d/%d", s.GnsSubPage, kNavPages);
    screen.Title(text);
    const LnavState& l = g_lnav;
    if (s.GnsSubPage <= 3) NavHead(screen);
    if (s.GnsSubPage == 1) {
        double next = l.NextLegLength;
        std::snprintf(text, sizeof text, "DIS %7.1f (%.0f)", std::max(l.DistToActive, 0.0), next);
        screen.Text(text, 30, GnsRowY(4));
        double minutes = g_sim.ground_speed > 1 ? std::max(l.DistToActive, 0.0) / g_sim.ground_speed * 60 : 0;
        double whole = std::floor(minutes);
        std::snprintf(text, sizeof text, "ETE %02.0f:%s%2.1f", std::floor(whole / 60), whole < 10 ? "0" : "",
                      std::fmod(minutes, 60.0));
        screen.Text(text, 30, GnsRowY(5));
        if (g_holds.HoldFlying == 1 && g_holds.HoldCount >= 1)
            std::snprintf(text, sizeof text, "INBOUND CRS %3.0f", g_holds.HoldTable[1].InboundCourse);
        else
            std::snprintf(text, sizeof text, "DTK %03.0f", l.LegCourse);
        screen.Text(text, 30, GnsRowY(6));
        if (g_sim.wind_speed > 0)
            std::snprintf(text, sizeof text, "WIND %03.0f/%-3.0f", g_sim.wind_direction_display, g_sim.wind_speed);
        else
            std::snprintf(text, sizeof text, "WIND ---/---");
        screen.Text(text, 30, GnsRowY(8));
        const char* mode = s.GnsLineState[10] == 1 ? "MAN?" : "-AUTO-";
        screen.Text(mode, 360, GnsRowY(8), kGnsCyan);
        if (s.GnsEditing && s.GnsLineState[7] == 1) screen.Cursor(s.GnsNavAltMode ? "ETA?" : "ALT?", 360, GnsRowY(2));
    } else if (s.GnsSubPage == 2) {
        // The wind as on page 1; the time of arrival at the plan's last entry
        // along the route at the present ground speed; the fuel on board.
        if (g_sim.wind_speed > 0)
            std::snprintf(text, sizeof text, "WIND %03.0f/%-3.0f", g_sim.wind_direction_display, g_sim.wind_speed);
        else
            std::snprintf(text, sizeof text, "WIND ---/---");
        screen.Text(text, 30, GnsRowY(4));
        if (HasActiveLeg() && g_sim.ground_speed > 1) {
            double clock = g_sim.zulu_hour * 60 + g_sim.zulu_minute +
                           std::max(g_plan_distances.DistToGo, 0.0) / g_sim.ground_speed * 60;
            char arrival[8];
            std::snprintf(arrival, sizeof arrival, "%02.0f:%02.0f", std::fmod(std::floor(clock / 60), 24),
                          std::floor(std::fmod(clock, 60)));
            std::snprintf(text, sizeof text, "ETA-%s", arrival);
        } else {
            std::snprintf(text, sizeof text, "ETA-%s", "--:--");
        }
        screen.Text(text, 30, GnsRowY(5));
        std::snprintf(text, sizeof text, "FUEL-%.3s %5.0f", g_config.WeightUnit.data(), FuelOnBoardPounds());
        screen.Text(text, 30, GnsRowY(6));
        std::snprintf(text, sizeof text, "TKE %s %03.0f", l.TrackAngleSide == 1 ? "L" : "R", l.TrackAngleError);
        screen.Text(text, 30, GnsRowY(7));
        std::snprintf(text, sizeof text, "XTK   TRMNL %s %2.2f", l.XtkSide == 1 ? "L" : "R",
                      std::max(l.XtkDistance, 0.0));
        screen.Text(text, 30, GnsRowY(8));
    } else if (s.GnsSubPage == 3) {
        std::snprintf(text, sizeof text, "DRIFT %3.0f", g_sim.drift_angle);
        screen.Text(text, 30, GnsRowY(4));
        std::snprintf(text, sizeof text, "VAR %s %3d", g_sim.magnetic_variation < 0 ? "W" : "E",
                      static_cast<int>(std::fabs(g_sim.magnetic_variation)));
        screen.Text(text, 30, GnsRowY(5));
        std::snprintf(text, sizeof text, "TAS %3.0f", g_sim.true_airspeed.now);
        screen.Text(text, 30, GnsRowY(6));
        std::snprintf(text, sizeof text, "HDG %03.0f", g_sim.heading_magnetic.now);
        screen.Text(text, 30, GnsRowY(7));
        std::snprintf(text, sizeof text, "BRG %03.0f", l.BearingToActive);
        screen.Text(text, 30, GnsRowY(8));
    } else {
        screen.Text("IDENT    ------", 30, GnsRowY(1));
        char lat[24];
        char lon[24];
        FormatLatLon(g_sim.latitude, -g_sim.longitude, lat, sizeof lat, lon, sizeof lon, 1);
        std::snprintf(text, sizeof text, "POS %s %s", lat, lon);
        screen.Text(text, 30, GnsRowY(2));
        if (g_config.DecLatLonDisp == 1) {
            std::snprintf(text, sizeof text, "(%.6f %.6f)", g_sim.latitude, g_sim.longitude);
            screen.Text(text, 30, GnsRowY(3));
        }
        screen.Text("VPU", 30, GnsRowY(4));
        screen.Text("GPS", 30, GnsRowY(5));
        screen.Text("----", 300, GnsRowY(5));
        if (g_config.DisplayMagVarOnGnsxlsNavPage == 1) {
            std::snprintf(text, sizeof text, "MV(%3.1f)", g_sim.magnetic_variation);
            screen.Text(text, 30, GnsRowY(6));
        }
        // The pause options: key 4 the distance pause, key 5 the pause at T/D.
        GlobalConfig& c = g_config;
        if (s.GnsLineSelect == 4) {
            c.PauseAtDistFromDestOn = c.PauseAtDistFromDestOn ? 0 : 1;
            c.ArmPauseAtDistFromDest = c.PauseAtDistFromDestOn;
        }
        if (s.GnsLineSelect == 5) {
            c.PauseAtTod = c.PauseAtTod ? 0 : 1;
            c.ArmPauseAtTod = c.PauseAtTod;
        }
        const PlanContext& pc = g_plan.context;
        const char* destination = pc.ActiveLastRow >= 0
                                      ? g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLastRow)].Ident.data()
                                      : "----";
        std::snprintf(text, sizeof text, "PAUSE %d FROM (%.6s)(%s)", c.PauseAtDistFromDest, destination,
                      c.PauseAtDistFromDestOn ? "ON" : "OFF");
        screen.Text(text, 30, GnsRowY(7), kGnsCyan);
        screen.Text(c.PauseAtTod ? "PAUSE AT TOD (ON)" : "PAUSE AT TOD (OFF)", 30, GnsRowY(8), kGnsCyan);
    }
}

// [SECTION] PLAN
void GnsPlanDataPage(GnsScreen& screen) {
    GnsPageState& s = S();
    const PlanContext& pc = g_plan.context;
    GnsStepPages(s.GnsSubPage, kPlanPages);
    bool kgs = TextOf(g_config.WeightUnit) == "KGS";
    double unit = kgs ? kPoundsToKilograms : 1;
    if (s.GnsLineSelect == 7) {
        if (GnsPressLine(7, 1) == 1) {
            char value[16];
            std::snprintf(value, sizeof value, "%6.0f", g_performance.FuelReserve * unit);
            GnsOpenField(value);
        } else {
            GnsCloseField();
        }
    }
    if (s.GnsEnterLatch && s.GnsSubPage == 1 && s.GnsLineState[7] == 1) {
        g_performance.FuelReserve = std::atof(std::string(GnsFieldText()).c_str()) / unit;
        GnsClearLineStates();
        GnsCloseField();
    }
    double f = FuelOnBoardPounds();
    double q = TotalFuelFlowPph();
    double gs = g_sim.ground_speed;
    bool slow = gs <= kTimedGroundSpeed;
    char text[64];
    std::snprintf(text, sizeof text, "PLAN %d/%d", s.GnsSubPage, kPlanPages);
    screen.Title(text, 150);
    auto value = [&](const char* format, double v, float y, float x = 340) {
        if (slow && format[0] != '!') {
            screen.Text("-----", x, y);
            return;
        }
        std::snprintf(text, sizeof text, format[0] == '!' ? format + 1 : format, v);
        screen.Text(text, x, y);
    };
    const char* active_name = HasActiveLeg() ? g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLeg)].Ident.data() : nullptr;
    switch (s.GnsSubPage) {
    case 1:
        screen.Text("FUEL STATUS", 90, 40);
        screen.Text(kgs ? "KG" : "LB", 380, 40);
        screen.Text("REMAINING", 30, 80);
        value("!%6.0f", f * unit, 80);
        screen.Text("RESERVE", 30, 120);
        if (s.GnsEditing && s.GnsLineState[7] == 1)
            screen.Field(300, 120);
        else
            value("!%6.0f", g_performance.FuelReserve * unit, 120);
        screen.Text("FLOW", 30, 160);
        value("!%6.0f", q * unit, 160);
        if (q > 0) {
            double hours = f / q;
            int h = static_cast<int>(hours);
            std::snprintf(text, sizeof text, "HOURS %02d:%02d", h, static_cast<int>((hours - h) * 60));
            screen.Text(text, 90, 280);
            screen.Text("RANGE", 90, 320);
            value("%5.0f", hours * gs, 320);
            screen.Text("NM/LB", 90, 360);
            value("%4.0f", gs > 0 ? q / gs : 0, 360);
        }
        return;
    case 2:
    case 3: {
        screen.Text(s.GnsSubPage == 2 ? "TRIP PLAN" : "FUEL PLAN", 90, 40);
        screen.Text("DIRECT", 30, 80, kGnsYellow);
        std::snprintf(text, sizeof text, "%6s", active_name ? g_plan.ActivePlan[0].Ident.data() : "------");
        screen.Text(text, 300, 80);
        std::snprintf(text, sizeof text, "TO %6s", active_name ? active_name : "------");
        screen.Text(text, 30, 120, kGnsMagenta);
        screen.Text("GS", 30, 160);
        if (gs > 20)
            std::snprintf(text, sizeof text, "%3.0f", gs);
        else
            std::snprintf(text, sizeof text, "---");
        screen.Text(text, 340, 160);
        double leg = std::max(g_lnav.DistToActive, 0.0);
        if (s.GnsSubPage == 2) {
            screen.Text("DIS/DTK", 30, 200);
            if (leg > 0)
                std::snprintf(text, sizeof text, "%4.1f/%03.0f", leg, g_lnav.LegCourse);
            else
                std::snprintf(text, sizeof text, "------/---");
            screen.Text(text, 280, 200);
            screen.Text("ETE", 30, 240);
            TimeOf(leg, text, sizeof text);
            screen.Text(text, 340, 240);
            screen.Text("FPL", 30, 280);
            if (gs > 20)
                std::snprintf(text, sizeof text, "%5.0f/", g_plan_distances.DistToGo);
            else
                std::snprintf(text, sizeof text, "-----/");
            screen.Text(text, 240, 280);
            TimeOf(g_plan_distances.DistToGo, text, sizeof text);
            screen.Text(text, 360, 280);
            std::snprintf(text, sizeof text, "ETA @ %s",
                          pc.ActiveLastRow >= 0 ? g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLastRow)].Ident.data() : "----");
            screen.Text(text, 30, 320);
            if (slow) {
                screen.Text("------", 340, 320);
            } else {
                double clock = g_sim.zulu_hour * 60 + g_sim.zulu_minute + g_plan_distances.DistToGo / gs * 60;
                std::snprintf(text, sizeof text, "%02.0f:%02.0f", std::fmod(std::floor(clock / 60), 24),
                              std::floor(std::fmod(clock, 60)));
                screen.Text(text, 340, 320);
            }
        } else {
            screen.Text("FLOW", 30, 200);
            value("!%4.0f", q, 200, 380);
            screen.Text("LEG FUEL", 30, 240);
            value("%5.0f", gs > 0 ? q * leg / gs : 0, 240);
            screen.Text("FPL FUEL", 30, 280);
            value("%5.0f", gs > 0 ? q * g_plan_distances.DistToGo / gs : 0, 280);
        }
        return;
    }
    case 4: {
        screen.Text("FUEL FLOW", 30, 40);
        float y = 160;
        for (int e = 0; e < 4; ++e) {
            double flow = EngineFuelFlowPph(e);
            if (flow <= 0) continue;
            std::snprintf(text, sizeof text, "ENGINE   %d", e + 1);
            screen.Text(text, 30, y);
            std::snprintf(text, sizeof text, "%4.0f", flow);
            screen.Text(text, 380, y);
            y += kGnsRowPitch;
        }
        screen.Text("TOTAL", 30, 360);
        std::snprintf(text, sizeof text, "%4.0f", q);
        screen.Text(text, 380, 360);
        return;
    }
    case 5: {
        screen.Text("DATE", 30, 80);
        ZuluDate(text, sizeof text);
        screen.Text(text, 280, 80);
        screen.Text("GMT", 30, 120);
        std::snprintf(text, sizeof text, "%02.0f:%02.0f", g_sim.zulu_hour, g_sim.zulu_minute);
        screen.Text(text, 280, 120);
        const FlightLogState& log = g_flight_log;
        screen.Text("TAKEOFF", 30, 200);
        screen.Text(log.takeoff_time[0] ? TextOf(log.takeoff_time) : std::string_view("-----"), 380, 200);
        screen.Text("LAND", 30, 240);
        screen.Text(log.landing_time[0] ? TextOf(log.landing_time) : std::string_view("-----"), 380, 240);
        screen.Text("FLIGHT TIME", 30, 320);
        if (log.takeoff_time[0]) {
            double minutes = g_sim.zulu_hour * 60 + g_sim.zulu_minute - (log.takeoff_hours * 60 + log.takeoff_minutes);
            if (minutes < 0) minutes += 1440;
            std::snprintf(text, sizeof text, "%02.0f:%02.0f", std::floor(minutes / 60), std::fmod(minutes, 60.0));
        } else {
            std::snprintf(text, sizeof text, "-----");
        }
        screen.Text(text, 340, 320);
        return;
    }
    default: {
        screen.Text("AIRCRAFT WEIGHT", 120, 80);
        double zfw = g_performance.ZeroFuelWeight;
        screen.Text("BASIC OP WT", 30, 160);
        value("!%6.0f", zfw, 160);
        screen.Text("PAYLOAD", 30, 200);
        value("!%6.0f", g_flight_log.payload, 200);
        screen.Text("FUEL ON BOARD", 30, 240);
        value("!%6.0f", f, 240);
        screen.Text("FUEL USED", 30, 320);
        double start = g_performance.fuel_kept;
        if (start >= f)
            value("!%5.0f", start - f, 320, 360);
        else
            screen.Text("-----", 360, 320);
        screen.Text("GROSS WEIGHT", 30, 360);
        value("!%6.0f", f + zfw, 360);
        return;
    }
    }
}
