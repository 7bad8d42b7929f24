// gns_waypoint_pages.cpp: the GNS pages a name typed on page 1 leads to, and
// the pages of the DIRECT, HOLD and SAVE keys: DATABASE WPT, PILOT ENTERED
// WPT, OFFSET WPT, DIRECT, AIRWAY, SAVE ACTIVE FPL and HOLDING PATTERN.
//
// Index:
//   [SECTION] Shared
//   [SECTION] DATABASE WPT
//   [SECTION] PILOT ENTERED WPT
//   [SECTION] OFFSET WPT
//   [SECTION] DIRECT
//   [SECTION] AIRWAY
//   [SECTION] SAVE ACTIVE FPL
//   [SECTION] HOLDING PATTERN
#include "cdu/gns_keys.h"
#include "cdu/gns_plan_edit.h"
#include "cdu/gns_screen.h"
#include "cdu/plan_data_texts.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "navdata/airways.h"
#include "plan/plan_edit.h"
#include "plan/plan_execute.h"
#include "plan/plan_rows.h"
#include "plan/route_files.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <cstdlib>
#include <cstring>

namespace {
constexpr int kClosestAirports = 20;          // DIRECT's closest airports, at most
constexpr int kClosestPerPage = 9;            // keys 1..5 and 7..10
constexpr int kDirectListRows = 5;            // plan waypoints on DIRECT's first page
constexpr int kSaveFieldWidth = 10;

GnsPageState& S() { return g_gns_page; }

// [SECTION] Shared
void LatLonTexts(double lat, double lon, char* lat_text, size_t lat_size, char* lon_text, size_t lon_size) {
    FormatLatLon(lat, -lon, lat_text, lat_size, lon_text, lon_size, 1);
}

// The position line: as text, with decimal degrees behind when the pilot asks for them.
void DrawPosition(GnsScreen& screen, double lat, double lon, float y) {
    char a[24];
    char b[24];
    LatLonTexts(lat, lon, a, sizeof a, b, sizeof b);
    char text[64];
    std::snprintf(text, sizeof text, "%s %s", a, b);
    screen.Text(text, 30, y, kGnsGreen);
    if (g_config.DecLatLonDisp == 1) {
        std::snprintf(text, sizeof text, "(%.6f %.6f)", lat, lon);
        screen.Text(text, 30, y + kGnsRowPitch, kGnsGreen);
    }
}

const NavRecord* Candidate() {
    int c = S().GnsCandidate;
    if (c < 1 || c > g_candidates.count || c > kCandidateLimit) return nullptr;
    return &g_candidates.rows[static_cast<size_t>(c)];
}

// A new waypoint into the plan shown at GnsInsertIndex, then back to page 1
// with the cursor on the entry behind it.
void InsertAndReturn(const NavRecord& record, int flyover) {
    GnsPageState& s = S();
    int row = s.GnsInsertIndex - 1;
    GnsBeginEdit();
    if (!GnsInsertRecord(row, record, flyover)) return;
    GnsRefreshEnds();
    GnsCommitEdit();
    GnsReturnToPlan(s.GnsInsertIndex + 1);
}

NavRecord MakeRecord(std::string_view ident, double lat, double lon, const char* kind) {
    NavRecord r;
    SetText(r.Ident, ident);
    r.Latitude = lat;
    r.Longitude = lon;
    SetText(r.Kind, kind);
    return r;
}

void DrawFlag(GnsScreen& screen, float y, bool at_cursor) {
    screen.Text("FLYOVER:", 30, y, kGnsGreen);
    if (at_cursor)
        screen.Cursor(TextOf(S().GnsFlyover), 300, y);
    else
        screen.Text(TextOf(S().GnsFlyover), 300, y, kGnsCyan);
}
}  // namespace

// [SECTION] DATABASE WPT
void GnsDatabaseWptPage(GnsScreen& screen) {
    GnsPageState& s = S();
    int count = std::min(g_candidates.count, kCandidateLimit);
    GnsStepPages(s.GnsCandidate, count);
    bool direct = s.GnsReturnPage == gns_page::kDirect;
    if (s.GnsLineSelect == 10) GnsPressLine(10, direct ? 2 : 1);
    const NavRecord* c = Candidate();
    if (s.GnsEnterLatch && c != nullptr) {
        if (s.GnsLineState[10] != 0) {
            GnsClearLineStates();  // the flag or the direction as CLR left it
        } else if (direct) {
            GnsDirectTo(*c);
            s.GnsSubMode = 1;
            s.GnsPageScroll = 1;
            GnsGoToPage(gns_page::kFlightPlan);
            return;
        } else if (s.GnsReturnPage >= gns_page::kDeparture && s.GnsReturnPage <= gns_page::kApproach) {
            // The airport of a procedure page.
            GnsProcedureAirportChosen(TextOf(c->Ident));
            return;
        } else {
            InsertAndReturn(*c, TextOf(s.GnsFlyover) == "YES" ? 1 : 0);
            return;
        }
    }
    // Draw.
    char text[64];
    std::snprintf(text, sizeof text, "DATABASE WPT %d/%d", s.GnsCandidate, std::max(count, 1));
    screen.Title(text);
    if (c == nullptr) return;
    screen.Text("WAYPOINT", 30, GnsRowY(1));
    screen.Text(TextOf(c->Ident), 300, GnsRowY(1), kGnsCyan);
    std::string_view kind = TextOf(c->Kind);
    const char* type = kind == "APT" ? "APT" : kind == "V" ? "VOR" : kind == "N" ? "NDB" : "INT";
    screen.Text(type, 30, GnsRowY(2));
    screen.Text(TextOf(c->Name).substr(0, 12), 120, GnsRowY(2));
    screen.Text("POS", 30, GnsRowY(3));
    DrawPosition(screen, c->Latitude, c->Longitude, GnsRowY(4));
    screen.Text("FREQ", 30, GnsRowY(6));
    screen.Text(c->Frequency[0] ? TextOf(c->Frequency) : std::string_view("------"), 300, GnsRowY(6));
    DrawFlag(screen, GnsRowY(7), s.GnsLineState[10] == 1);
    if (direct) {
        screen.Text("DIRECTION:", 30, GnsRowY(8));
        if (s.GnsLineState[10] == 2)
            screen.Cursor(TextOf(g_lnav.DirectToTurnOption), 300, GnsRowY(8));
        else
            screen.Text(TextOf(g_lnav.DirectToTurnOption), 300, GnsRowY(8), kGnsCyan);
    }
}

// [SECTION] PILOT ENTERED WPT
namespace {
// A position field as typed: hemisphere, degrees (2 or 3 digits), minutes,
// their fraction (read, but not used). Complete once the minutes stand.
bool ReadPositionField(std::string_view raw, int degree_digits, double& value) {
    size_t minutes_end = 1 + static_cast<size_t>(degree_digits) + 2;
    if (raw.size() < minutes_end) return false;
    char hemisphere = raw[0];
    int degrees = std::atoi(std::string(raw.substr(1, static_cast<size_t>(degree_digits))).c_str());
    int minutes = std::atoi(std::string(raw.substr(1 + static_cast<size_t>(degree_digits), 2)).c_str());
    value = degrees + minutes / 60.0;
    if (hemisphere == 'S' || hemisphere == 'W') value = -value;
    return true;
}

// The raw characters laid into the mask "N 47 30.00" or "W122 20.00".
void MaskedPosition(std::string_view raw, int degree_digits, char* out, size_t size) {
    char mask[12];
    if (degree_digits == 2)
        std::snprintf(mask, sizeof mask, "%s", "_ __ __.__");
    else
        std::snprintf(mask, sizeof mask, "%s", "____ __.__");
    size_t r = 0;
    for (size_t i = 0; mask[i] != 0 && i + 1 < size; ++i) {
        if (mask[i] == '_')
            out[i] = r < raw.size() ? raw[r++] : '-';
        else
            out[i] = mask[i];
        out[i + 1] = 0;
    }
}

// The field of the lines 7 (latitude) and 8 (longitude).
void OpenPositionField(int key) {
    GnsPageState& s = S();
    GnsClearLineStates();
    s.GnsLineState[static_cast<size_t>(key)] = 1;
    GnsOpenField("", key == 7 ? 7 : 8);
}
}  // namespace

void GnsPilotWptPage(GnsScreen& screen) {
    GnsPageState& s = S();
    if (s.GnsLineSelect == 7 || s.GnsLineSelect == 8) OpenPositionField(s.GnsLineSelect);
    if (s.GnsLineSelect == 10) {
        GnsPressLine(10, 1);
        GnsCloseField();
    }
    if (s.GnsEnterLatch) {
        double value = 0;
        if (s.GnsLineState[7] == 1 && ReadPositionField(GnsFieldText(), 2, value)) {
            s.GnsNewLatitude = value;
            SetText(s.GnsLatText, GnsFieldText());
            if (s.GnsNewLongitude == 0) OpenPositionField(8);
        } else if (s.GnsLineState[8] == 1 && ReadPositionField(GnsFieldText(), 3, value)) {
            s.GnsNewLongitude = value;
            SetText(s.GnsLonText, GnsFieldText());
            if (s.GnsNewLatitude == 0) OpenPositionField(7);
        } else if (s.GnsLineState[10] == 1) {
            GnsClearLineStates();
        }
        if (s.GnsNewLatitude != 0 && s.GnsNewLongitude != 0) {
            NavRecord r = MakeRecord(TextOf(s.GnsNewName), s.GnsNewLatitude, s.GnsNewLongitude, "WPT");
            InsertAndReturn(r, TextOf(s.GnsFlyover) == "YES" ? 1 : 0);
            return;
        }
    }
    // Draw.
    screen.Title("PILOT ENTERED WPT");
    screen.Text("WAYPOINT", 30, GnsRowY(1));
    screen.Text(TextOf(s.GnsNewName), 300, GnsRowY(1), kGnsCyan);
    screen.Text("POS", 30, GnsRowY(2));
    char text[16];
    for (int key = 7; key <= 8; ++key) {
        bool open = s.GnsEditing && s.GnsLineState[static_cast<size_t>(key)] == 1;
        std::string_view raw = open ? GnsFieldText() : TextOf(key == 7 ? s.GnsLatText : s.GnsLonText);
        if (raw.find('-') != std::string_view::npos) raw = {};
        MaskedPosition(raw, key == 7 ? 2 : 3, text, sizeof text);
        float y = GnsRowY(key - 4);
        if (open)
            screen.Cursor(text, 180, y);
        else
            screen.Text(text, 180, y, kGnsCyan);
    }
    DrawFlag(screen, GnsRowY(6), s.GnsLineState[10] == 1);
}

// [SECTION] OFFSET WPT
void GnsOffsetWptPage(GnsScreen& screen) {
    GnsPageState& s = S();
    int count = std::min(g_candidates.count, kCandidateLimit);
    GnsStepPages(s.GnsCandidate, count);
    if (s.GnsLineSelect == 7) {
        int st = GnsPressLine(7, 2);
        if (st > 0) GnsOpenField("", st == 1 ? 3 : 5);
        else GnsCloseField();
    }
    if (s.GnsLineSelect == 10) {
        GnsPressLine(10, 1);
        GnsCloseField();
    }
    const NavRecord* base = Candidate();
    bool rad_set = TextOf(s.GnsRadText) != "-----";
    bool dis_set = TextOf(s.GnsDisText) != "------";
    if (s.GnsEnterLatch && base != nullptr) {
        if (s.GnsLineState[7] == 1) {
            // RAD taken; the cursor goes on to DIS.
            char rad[8];
            std::snprintf(rad, sizeof rad, "%03d", std::atoi(std::string(GnsFieldText()).c_str()) % 360);
            SetText(s.GnsRadText, rad);
            s.GnsLineState[7] = 2;
            GnsOpenField("", 5);
        } else if (s.GnsLineState[7] == 2) {
            char dis[8];
            std::snprintf(dis, sizeof dis, "%.0f", std::atof(std::string(GnsFieldText()).c_str()));
            SetText(s.GnsDisText, dis);
            GnsClearLineStates();
            GnsCloseField();
        } else if (s.GnsLineState[10] == 1) {
            GnsClearLineStates();  // the flag as CLR left it
        } else if (rad_set && dis_set) {
            // The point on the radial (magnetic) at the distance from the base.
            double lat = 0;
            double lon = 0;
            double radial_true = std::atof(s.GnsRadText.data()) + g_sim.magnetic_variation;
            ProjectPoint(base->Latitude, base->Longitude, radial_true, std::atof(s.GnsDisText.data()), lat, lon);
            char name[40];
            std::snprintf(name, sizeof name, "%s*", base->Ident.data());
            InsertAndReturn(MakeRecord(name, lat, lon, "INT"), TextOf(s.GnsFlyover) == "YES" ? 1 : 0);
            return;
        }
        rad_set = TextOf(s.GnsRadText) != "-----";
        dis_set = TextOf(s.GnsDisText) != "------";
    }
    // Draw.
    char text[64];
    std::snprintf(text, sizeof text, "OFFSET WPT    %d/%d", s.GnsCandidate, std::max(count, 1));
    screen.Title(text);
    if (base == nullptr) return;
    screen.Text("WAYPOINT", 30, GnsRowY(1));
    std::snprintf(text, sizeof text, "%s*", base->Ident.data());
    screen.Text(text, 300, GnsRowY(1), kGnsCyan);
    double distance = 0;
    double bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, base->Latitude, base->Longitude, distance, bearing);
    std::snprintf(text, sizeof text, "(BRG %03.0f/DIS %-5.0f)", NormaliseMagnetic(bearing - g_sim.magnetic_variation),
                  distance);
    screen.Text(text, 30, GnsRowY(2));
    screen.Text("RAD", 30, GnsRowY(3));
    screen.Text("DIS", 30, GnsRowY(4));
    if (s.GnsEditing && s.GnsLineState[7] == 1)
        screen.Field(300, GnsRowY(3));
    else
        screen.Text(TextOf(s.GnsRadText), 300, GnsRowY(3), kGnsCyan);
    if (s.GnsEditing && s.GnsLineState[7] == 2)
        screen.Field(300, GnsRowY(4));
    else
        screen.Text(TextOf(s.GnsDisText), 300, GnsRowY(4), kGnsCyan);
    screen.Text("POS", 30, GnsRowY(5));
    if (rad_set && dis_set) {
        double lat = 0;
        double lon = 0;
        ProjectPoint(base->Latitude, base->Longitude, std::atof(s.GnsRadText.data()) + g_sim.magnetic_variation,
                     std::atof(s.GnsDisText.data()), lat, lon);
        DrawPosition(screen, lat, lon, GnsRowY(6));
    } else {
        screen.Text("----------", 300, GnsRowY(5), kGnsCyan);
    }
    DrawFlag(screen, GnsRowY(8), s.GnsLineState[10] == 1);
    if (rad_set && dis_set) screen.Text("OK? ENTER", 30, GnsRowY(9), kGnsYellow);
}

// [SECTION] DIRECT
namespace {
struct ClosestAirport {
    const NearbyRecord* record = nullptr;     // the subset's row
    double distance = 0;                      // nm from the aircraft
    double bearing = 0;                       // magnetic
};

int ClosestAirports(std::array<ClosestAirport, kClosestAirports>& out) {
    const auto& subset = g_nearby.AirportsNear180;
    int n = 0;
    for (int i = 1; i <= subset.count && i <= subset.kLimit; ++i) {
        const NearbyRecord& r = subset.rows[static_cast<size_t>(i)];
        ClosestAirport c{&r, 0, 0};
        GreatCircle(g_sim.latitude, g_sim.longitude, r.Latitude, r.Longitude, c.distance, c.bearing);
        c.bearing = NormaliseMagnetic(c.bearing - g_sim.magnetic_variation);
        // Kept sorted, the nearest first; the farthest falls off the end.
        int at = n < kClosestAirports ? n++ : kClosestAirports - 1;
        if (at == kClosestAirports - 1 && n == kClosestAirports && out[static_cast<size_t>(at)].record != nullptr &&
            out[static_cast<size_t>(at)].distance <= c.distance)
            continue;
        out[static_cast<size_t>(at)] = c;
        while (at > 0 && out[static_cast<size_t>(at - 1)].distance > out[static_cast<size_t>(at)].distance) {
            std::swap(out[static_cast<size_t>(at - 1)], out[static_cast<size_t>(at)]);
            --at;
        }
    }
    return n;
}

// The plan becomes the direct leg to the airport, which is its destination.
void DirectToAirport(const NearbyRecord& airport) {
    PlanContext& pc = g_plan.context;
    PlanWaypoint& d = g_plan.ModPlan[0];
    MakeMarkerRow(d, "DIRECT");
    d.Latitude = g_sim.latitude;
    d.Longitude = g_sim.longitude;
    SetText(d.WaypointType, "WPT");
    SetText(d.SegmentKind, "DCT");
    PlanWaypoint& a = g_plan.ModPlan[1];
    NewPlanRow(a);
    SetText(a.Ident, TextOf(airport.Ident));
    a.Latitude = airport.Latitude;
    a.Longitude = airport.Longitude;
    SetText(a.WaypointType, "APT");
    pc.ModLastRow = 1;
    pc.ModActiveLeg = 1;
    pc.ModNextRestrictionRow = 1;
    RemoveAllHolds();
    int cruise = pc.CruiseAltitude;
    pc.PlanState = 4;
    PlanExecute();
    pc.CruiseAltitude = cruise;
    pc.ActiveLeg = 1;
}
}  // namespace

void GnsDirectPage(GnsScreen& screen) {
    GnsPageState& s = S();
    const PlanContext& pc = g_plan.context;
    std::array<ClosestAirport, kClosestAirports> closest{};
    int airports = 0;
    if (s.GnsSubPage > 1) {
        UpdateProximitySubsets(g_sim.latitude, g_sim.longitude);
        airports = ClosestAirports(closest);
    }
    int pages = 1 + (airports > 0 ? (airports + kClosestPerPage - 1) / kClosestPerPage : 1);
    GnsStepPages(s.GnsSubPage, pages);
    if (s.GnsSubPage > pages) s.GnsSubPage = 1;
    int first_leg = pc.ActiveLeg == kNoActiveLeg ? 1 : pc.ActiveLeg;
    // Keys: on page 1, keys 2..5 put a plan waypoint into the field; on the
    // others, keys 1..5 and 7..10 choose an airport.
    int key = s.GnsLineSelect;
    if (key != 0 && s.GnsSubPage == 1 && key >= 2 && key <= 5) {
        int row = first_leg + key - 2;
        if (row <= pc.ActiveLastRow) {
            GnsOpenField(g_plan.ActivePlan[static_cast<size_t>(row)].Ident.data());
            s.GnsEditFresh = 0;
        }
    }
    if (key != 0 && s.GnsSubPage > 1 && key != 6) {
        int place = key <= 5 ? key : key - 1;
        int index = (s.GnsSubPage - 2) * kClosestPerPage + place;
        s.GnsDirectSelected = index <= airports && s.GnsDirectSelected != index ? index : 0;
    }
    if (s.GnsEnterLatch) {
        if (s.GnsSubPage > 1 && s.GnsDirectSelected > 0 && s.GnsDirectSelected <= airports) {
            DirectToAirport(*closest[static_cast<size_t>(s.GnsDirectSelected - 1)].record);
            s.GnsSubMode = 1;
            s.GnsPageScroll = 1;
            GnsGoToPage(gns_page::kFlightPlan);
            return;
        }
        std::array<char, kGnsFieldCapacity> name{};
        SetText(name, GnsFieldText());
        if (s.GnsSubPage == 1 && name[0] != 0 && TextOf(name) != "******") {
            if (ResolveName(0, TextOf(name)) > 0) {
                s.GnsReturnPage = gns_page::kDirect;
                s.GnsCandidate = 1;
                SetText(s.GnsFlyover, "NO");
                GnsGoToPage(gns_page::kDatabaseWpt);
                return;
            }
            // A waypoint of the plan that the database doesn't know.
            for (int i = first_leg; i <= pc.ActiveLastRow; ++i) {
                const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(i)];
                if (TextOf(w.Ident) != TextOf(name)) continue;
                GnsDirectTo(MakeRecord(TextOf(w.Ident), w.Latitude, w.Longitude, "WPT"));
                s.GnsSubMode = 1;
                s.GnsPageScroll = 1;
                GnsGoToPage(gns_page::kFlightPlan);
                return;
            }
        }
    }
    // Draw.
    char text[64];
    if (s.GnsSubPage == 1) {
        std::snprintf(text, sizeof text, "DIRECT %d/%d", s.GnsSubPage, pages);
        screen.Title(text);
        screen.Text("TO ", 30, GnsRowY(1), kGnsMagenta);
        screen.Field(90, GnsRowY(1));
        // Bearing and distance to the waypoint named in the field, where the plan has it.
        std::string_view name = GnsFieldText();
        std::snprintf(text, sizeof text, "---/----");
        for (int i = 0; i <= pc.ActiveLastRow; ++i) {
            const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(i)];
            if (TextOf(w.Ident) != name) continue;
            double distance = 0;
            double bearing = 0;
            GreatCircle(g_sim.latitude, g_sim.longitude, w.Latitude, w.Longitude, distance, bearing);
            std::snprintf(text, sizeof text, "%03.0f/%4.0f", NormaliseMagnetic(bearing - g_sim.magnetic_variation),
                          distance);
            break;
        }
        screen.Text(text, 90, GnsRowY(2), kGnsGreen);
        for (int n = 0; n < kDirectListRows; ++n) {
            int row = first_leg + n;
            if (row > pc.ActiveLastRow) break;
            screen.Text(TextOf(g_plan.ActivePlan[static_cast<size_t>(row)].Ident), 90, GnsRowY(n + 4));
        }
        return;
    }
    std::snprintf(text, sizeof text, "DIR CLOSEST ARP %d/%d", s.GnsSubPage, pages);
    screen.Title(text);
    for (int place = 1; place <= kClosestPerPage; ++place) {
        int index = (s.GnsSubPage - 2) * kClosestPerPage + place;
        if (index > airports) break;
        const ClosestAirport& c = closest[static_cast<size_t>(index - 1)];
        std::snprintf(text, sizeof text, "%-8s %03.0f/%4.0f", c.record->Ident.data(), c.bearing, c.distance);
        if (index == s.GnsDirectSelected)
            screen.Cursor(text, 30, GnsRowY(place));
        else
            screen.Text(text, 30, GnsRowY(place));
    }
}

// [SECTION] AIRWAY
void GnsAirwayPage(GnsScreen& screen) {
    GnsPageState& s = S();
    AirwayFetchState& a = g_airway;
    int count = std::min(g_candidates.count, kCandidateLimit);
    int pages = std::max(1, (count + kAirwayFixesPerPage - 1) / kAirwayFixesPerPage);
    GnsStepPages(s.GnsSubPage, pages);
    if (s.GnsPrevLatch || s.GnsNextLatch) s.GnsAirwayPlace = 0;
    // The key's places: two for most keys, one for keys 1, 5, 6 and 10.
    static constexpr int kFirst[kGnsLineKeys + 1] = {0, 1, 2, 4, 6, 8, 9, 10, 12, 14, 16};
    static constexpr int kLast[kGnsLineKeys + 1] = {0, 1, 3, 5, 7, 8, 9, 11, 13, 15, 16};
    int key = s.GnsLineSelect;
    if (key >= 1 && key <= kGnsLineKeys) {
        int p = s.GnsAirwayPlace;
        if (p >= kFirst[key] && p < kLast[key])
            s.GnsAirwayPlace = p + 1;
        else if (p >= kFirst[key] && p <= kLast[key])
            s.GnsAirwayPlace = 0;
        else
            s.GnsAirwayPlace = kFirst[key];
        int row = (s.GnsSubPage - 1) * kAirwayFixesPerPage + s.GnsAirwayPlace;
        a.AirwayExitRow = s.GnsAirwayPlace > 0 && row <= count ? row : 0;
    }
    if (s.GnsEnterLatch && a.AirwayExitRow > 0) {
        PlanContext& pc = g_plan.context;
        int kept = pc.ModActiveLeg;
        pc.ModActiveLeg = s.GnsInsertIndex - 2;
        int before = pc.ModLastRow;
        InsertAirway();
        int added = pc.ModLastRow - before;
        pc.ModActiveLeg = kept == kNoActiveLeg || kept < s.GnsInsertIndex - 1 ? kept : kept + added;
        GnsCommitEdit();
        a.AirwayEntryRow = 0;
        a.AirwayExitRow = 0;
        GnsReturnToPlan(s.GnsInsertIndex + added);
        return;
    }
    // Draw.
    screen.Text("AIRWAY", 32, 0, kGnsWhite);
    screen.Text(TextOf(s.GnsAirwayName), 200, 0, kGnsGreen);
    char text[32];
    std::snprintf(text, sizeof text, "%d/%d", s.GnsSubPage, pages);
    screen.Text(text, 340, 0, kGnsWhite);
    for (int place = 1; place <= kAirwayFixesPerPage; ++place) {
        int row = (s.GnsSubPage - 1) * kAirwayFixesPerPage + place;
        if (row > count) break;
        bool right = place > 8;
        float y = GnsRowY(right ? place - 8 : place);
        float x = right ? 300 : 75;
        std::string_view ident = TextOf(g_candidates.rows[static_cast<size_t>(row)].Ident);
        if (row == a.AirwayEntryRow) screen.Text("FR", right ? 240 : 20, y, kGnsYellow);
        if (place == s.GnsAirwayPlace) {
            screen.Text("TO", right ? 240 : 20, y, kGnsYellow);
            std::snprintf(text, sizeof text, "%.*s?", static_cast<int>(ident.size()), ident.data());
            screen.Cursor(text, x, y);
        } else {
            screen.Text(ident, x, y);
        }
    }
    screen.Text("SELECT ENDING WPT", 40, 360, kGnsCyan);
}

// [SECTION] SAVE ACTIVE FPL
void GnsSavePage(GnsScreen& screen) {
    GnsPageState& s = S();
    if (s.GnsLineSelect != 0) GnsOpenField(std::string(GnsFieldText()).c_str(), kSaveFieldWidth);
    if (s.GnsEnterLatch) {
        if (s.GnsEditing) {
            GnsCloseField();
        } else if (!GnsFieldText().empty()) {
            char file[kGnsFieldCapacity + 8];
            std::snprintf(file, sizeof file, "%.*s.RTE", static_cast<int>(GnsFieldText().size()), GnsFieldText().data());
            if (SaveRouteFile(file) == 1) BuildStoredPlanTable();
            GnsGoToPage(gns_page::kFlightPlan);
            return;
        }
    }
    screen.Title("SAVE ACTIVE FPL ");
    screen.Text("Filename:", 30, GnsRowY(2));
    screen.Field(30, GnsRowY(3));
    screen.Text(".RTE", 30 + kGnsCursorCharWidth * kSaveFieldWidth, GnsRowY(3));
}

// [SECTION] HOLDING PATTERN
namespace {
// Digits laid into a mask: "_._" for the leg time, "__._" for the distance.
void Masked(std::string_view raw, const char* mask, char* out, size_t size) {
    size_t r = 0;
    size_t i = 0;
    for (; mask[i] != 0 && i + 1 < size; ++i) out[i] = mask[i] == '_' ? (r < raw.size() ? raw[r++] : ' ') : mask[i];
    out[i] = 0;
}

double DigitsValue(std::string_view raw, int whole_digits) {
    double value = 0;
    for (size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] < '0' || raw[i] > '9') break;
        int d = raw[i] - '0';
        if (static_cast<int>(i) < whole_digits)
            value = value * 10 + d;
        else
            value += d / 10.0;
    }
    return value;
}
}  // namespace

void GnsHoldingPage(GnsScreen& screen) {
    GnsPageState& s = S();
    HoldState& h = g_holds;
    bool has_hold = h.HoldCount >= 1;
    HoldRecord& hold = h.HoldTable[1];
    const auto& st = s.GnsLineState;
    // Keys: 6 turn direction, 7 inbound course, 8 leg time then distance, 10 exit mode.
    int key = s.GnsLineSelect;
    if (has_hold && (key == 6 || key == 10)) {
        GnsPressLine(key, 1);
        GnsCloseField();
    }
    if (has_hold && key == 7) {
        if (GnsPressLine(7, 1) == 1)
            GnsOpenField("", 3);
        else
            GnsCloseField();
    }
    if (has_hold && key == 8) {
        int state = GnsPressLine(8, 2);
        if (state > 0)
            GnsOpenField("", state == 1 ? 2 : 3);
        else
            GnsCloseField();
    }
    if (s.GnsClearLatch) {
        if (has_hold && st[6] == 1)
            hold.TurnRight = hold.TurnRight == 1 ? 0 : 1;
        else if (has_hold && st[10] == 1)
            h.HoldExitState = h.HoldExitState == 2 ? (h.HoldFlying ? 0 : 1) : 2;
        else
            GnsFieldKey("*1");
    }
    if (s.GnsEnterLatch && has_hold) {
        std::string raw(GnsFieldText());
        if (st[7] == 1 && !raw.empty()) {
            int course = std::atoi(raw.c_str());
            hold.InboundCourse = course == 360 ? 0 : course % 360;
        } else if (st[8] == 1 && !raw.empty()) {
            hold.LegMinutes = DigitsValue(raw, 1);
            hold.LegMode = 1;
        } else if (st[8] == 2 && !raw.empty()) {
            hold.LegDistance = DigitsValue(raw, 2);
            hold.LegMode = 2;
        }
        GnsClearLineStates();
        GnsCloseField();
    }
    // Draw.
    screen.Title("HOLDING PATTERN 1/1");
    char text[32];
    std::snprintf(text, sizeof text, "AT %s", has_hold ? hold.Ident.data() : "------");
    screen.Text(text, 30, GnsRowY(1));
    if (!has_hold) return;
    screen.Text("DIRECT ENTRY", 30, GnsRowY(2));
    screen.Text("INBOUND CRS", 30, GnsRowY(3));
    if (s.GnsEditing && st[7] == 1) {
        Masked(GnsFieldText(), "___", text, sizeof text);
        screen.Cursor(text, 360, GnsRowY(3));
    } else {
        std::snprintf(text, sizeof text, "%03.0f", hold.InboundCourse);
        screen.Text(text, 360, GnsRowY(3), kGnsCyan);
    }
    screen.Text("TURN DIR", 30, GnsRowY(4));
    const char* turn = hold.TurnRight == 1 ? "RIGHT" : "LEFT";
    if (st[6] == 1)
        screen.Cursor(turn, 360, GnsRowY(4));
    else
        screen.Text(turn, 360, GnsRowY(4), kGnsCyan);
    screen.Text("LEG TIME", 30, GnsRowY(5));
    screen.Text("LEG DIST", 30, GnsRowY(6));
    if (s.GnsEditing && st[8] == 1) {
        Masked(GnsFieldText(), "_._", text, sizeof text);
        screen.Cursor(text, 360, GnsRowY(5));
    } else {
        std::snprintf(text, sizeof text, hold.LegMode == 1 ? "%-1.1f" : "(%-1.1f)", hold.LegMinutes);
        screen.Text(text, 360, GnsRowY(5), kGnsCyan);
    }
    if (s.GnsEditing && st[8] == 2) {
        Masked(GnsFieldText(), "__._", text, sizeof text);
        screen.Cursor(text, 360, GnsRowY(6));
    } else {
        double leg = hold.LegMode == 2 ? hold.LegDistance : HoldLegDistanceNow(hold);
        std::snprintf(text, sizeof text, hold.LegMode == 2 ? "%-2.1f" : "(%-2.1f)", leg);
        screen.Text(text, 360, GnsRowY(6), kGnsCyan);
    }
    screen.Text("EXIT MODE", 30, GnsRowY(8));
    const char* exit_mode = h.HoldExitState == 2 ? "AUTO" : "MANUAL";
    if (st[10] == 1)
        screen.Cursor(exit_mode, 340, GnsRowY(8));
    else
        screen.Text(exit_mode, 340, GnsRowY(8), kGnsCyan);
}
