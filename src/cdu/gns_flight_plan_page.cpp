// gns_flight_plan_page.cpp: page 1 of the GNS pair in its three forms: the
// list of stored plans, a stored plan (edited in ModPlan), and the active
// plan (edited and committed at once). The entry behind the last one, the
// "******" slot, is where a new waypoint is typed.
//
// Index:
//   [SECTION] Entries and the cursor
//   [SECTION] Line keys
//   [SECTION] ENTER
//   [SECTION] Drawing
//   [SECTION] The page
#include "cdu/gns_keys.h"
#include "cdu/gns_plan_edit.h"
#include "cdu/gns_screen.h"
#include "cdu/plan_data_texts.h"
#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav_state.h"
#include "navdata/airways.h"
#include "plan/plan_edit.h"
#include "plan/plan_execute.h"
#include "plan/route_files.h"
#include "plan/sim_plans.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace {
constexpr int kEntriesPerPage = 6;            // plan entries a page
constexpr int kListRowsPerPage = 8;           // stored plans a list page
constexpr int kEntryKeys = 3;                 // left keys 1..3 mark two entries each
constexpr char kEndMarker[] = "******";
constexpr char kNewPlanFile[] = "NEW FPL";
constexpr double kMarkPassedNm = 10;          // the entry before the active leg is marked this near
constexpr double kTimedGroundSpeed = 50;      // kt: times only above this
constexpr int kSaveFieldWidth = 10;

GnsPageState& S() { return g_gns_page; }
bool ListShown() { return S().GnsSubMode == 2 && S().GnsStoredIndex == 0; }
int& PageNumber() { return S().GnsSubMode == 1 ? S().GnsPageScroll : S().GnsStoredPage; }

// Entries of the plan shown, the slot included.
int EntryCount() { return GnsShownLastRow() + 2; }
int PageCount() { return std::max(1, (EntryCount() + kEntriesPerPage - 1) / kEntriesPerPage); }

std::string_view EntryName(int entry) {
    int row = entry - 1;
    if (row > GnsShownLastRow()) return kEndMarker;
    const PlanWaypoint& w = GnsShownPlan()[static_cast<size_t>(row)];
    // An approach leg shows its marker.
    if (TextOf(w.SegmentKind) == "APPR" && w.LegMarker[0] != 0) return TextOf(w.LegMarker);
    return TextOf(w.Ident);
}

// [SECTION] Entries and the cursor
// The cursor on `entry`: its page shown, its key's state, the field open on its name.
void MarkEntry(int entry) {
    GnsPageState& s = S();
    if (entry < 1) return;
    PageNumber() = (entry - 1) / kEntriesPerPage + 1;
    int place = (entry - 1) % kEntriesPerPage;
    GnsClearLineStates();
    s.GnsLineState[static_cast<size_t>(place / 2 + 1)] = place % 2 + 1;
    s.GnsInsertIndex = entry;
    s.GnsDeletePending = 0;
    std::array<char, 24> name{};
    SetText(name, EntryName(entry));
    GnsOpenField(name.data());
}

// [SECTION] Line keys
void ListKey(int key) {
    // Keys 1..4 and 6..9 mark two rows each; 5 and 10 the last two.
    int st = GnsPressLine(key, 2);
    (void)st;
}

void PlanKey(int key) {
    GnsPageState& s = S();
    s.GnsDeletePending = 0;
    if (key >= 1 && key <= kEntryKeys) {
        int st = GnsPressLine(key, 2);
        int entry = (PageNumber() - 1) * kEntriesPerPage + 2 * (key - 1) + st;
        if (st == 0 || entry > EntryCount()) {
            GnsClearLineStates();
            GnsCloseField();
            return;
        }
        MarkEntry(entry);
        return;
    }
    GnsCloseField();
    if (key == 4) GnsPressLine(4, 1);                   // "DEPART?"
    if (key == 5) GnsPressLine(5, 2);                   // "ARRIVE?", "APPROACH?"
    if (key == 9 && s.GnsSubMode == 1) GnsPressLine(9, 1);  // "SAVE FPL?"
    if (key == 10) {
        int st = GnsPressLine(10, 2);
        if (st == 1 && s.GnsSubMode == 1) s.GnsColumnChoice = s.GnsColumn;
        if (st == 1 && s.GnsSubMode == 2) s.GnsLineState[10] = 1;  // "SELECT?"
    }
}

// [SECTION] ENTER
// A procedure page opened from page 1: its temporaries from the plan's
// selections, then the first thing still open.
void OpenProcedurePage(int page) {
    GnsPageState& s = S();
    const PlanSelections& sel = g_plan.context.Selections;
    PlanDataTexts& t = g_plan_texts;
    int index = page - gns_page::kDeparture;
    GnsProcedureTemporaries& tmp = index == 0 ? t.GnsDeparture : index == 1 ? t.GnsArrival : t.GnsApproach;
    if (index == 0) {
        tmp.airport = sel.OriginName;
        tmp.runway = sel.DepartureRunway;
        tmp.procedure = sel.SidName;
        tmp.transition = sel.SidTransition;
    } else if (index == 1) {
        tmp.airport = sel.DestinationName;
        tmp.runway = sel.ArrivalRunway;
        tmp.procedure = sel.StarName;
        tmp.transition = sel.StarTransition;
    } else {
        tmp.airport = sel.DestinationName;
        tmp.runway = sel.ArrivalRunway;
        tmp.procedure = sel.ApproachName;
        tmp.transition = sel.ApproachTransition;
    }
    s.GnsReturnPage = gns_page::kFlightPlan;
    GnsGoToPage(page);
    s.GnsProcedurePage[static_cast<size_t>(index)] = 1;
    s.GnsLegsShown[static_cast<size_t>(index)] = 0;
    s.GnsAirportNotFound = 0;
    GnsOpenProcedurePage();
}

// The name in the field: an airway, an offset waypoint, a database or a pilot waypoint.
void EnterName(std::string_view name) {
    GnsPageState& s = S();
    s.GnsReturnPage = gns_page::kFlightPlan;
    if (!name.empty() && name.front() == '#') {
        // The airway from the entry before the cursor.
        PlanContext& pc = g_plan.context;
        GnsBeginEdit();
        int from = s.GnsInsertIndex - 2;
        if (from < 0 || from > pc.ModLastRow) return;
        int kept = pc.ModActiveLeg;
        pc.ModActiveLeg = from;
        FetchAirway(name.substr(1));
        pc.ModActiveLeg = kept;
        if (g_airway.AirwayEntryRow < 1) return;
        SetText(s.GnsAirwayName, name.substr(1));
        s.GnsAirwayPlace = 0;
        g_airway.AirwayExitRow = 0;
        GnsGoToPage(gns_page::kAirway);
        s.GnsSubPage = (g_airway.AirwayEntryRow - 1) / kAirwayFixesPerPage + 1;
        return;
    }
    if (!name.empty() && name.back() == '*') {
        std::string_view base = name.substr(0, name.size() - 1);
        if (base.empty()) base = "TMPXX";
        if (ResolveName(0, base) <= 0) return;  // stays, without a message
        s.GnsOffsetCount = g_candidates.count;
        s.GnsCandidate = 1;
        SetText(s.GnsRadText, "-----");
        SetText(s.GnsDisText, "------");
        SetText(s.GnsLatText, "----------");
        SetText(s.GnsFlyover, "NO");
        GnsGoToPage(gns_page::kOffsetWpt);
        s.GnsLineState[7] = 1;
        GnsOpenField("", 3);
        return;
    }
    if (ResolveName(0, name) > 0) {
        GnsGoToPage(gns_page::kDatabaseWpt);
        s.GnsCandidate = 1;
        SetText(s.GnsFlyover, "NO");
        return;
    }
    // Not in the database: a pilot waypoint of this name.
    SetText(s.GnsNewName, name.empty() ? std::string_view("TMP00") : name);
    SetText(s.GnsLatText, "----------");
    SetText(s.GnsLonText, "----------");
    s.GnsNewLatitude = 0;
    s.GnsNewLongitude = 0;
    SetText(s.GnsFlyover, "NO");
    GnsGoToPage(gns_page::kPilotWpt);
    s.GnsLineState[7] = 1;
    GnsOpenField("----------", 10);
}

bool AirportToAirport() {
    int last = GnsShownLastRow();
    const PlanTable& plan = GnsShownPlan();
    return last >= 2 && TextOf(plan[0].WaypointType) == "APT" &&
           TextOf(plan[static_cast<size_t>(last)].WaypointType) == "APT";
}

void PlanEnter() {
    GnsPageState& s = S();
    const auto& st = s.GnsLineState;
    bool active = s.GnsSubMode == 1;
    // 1. The column chooser.
    if (active && !s.GnsEditing && st[10] == 1) {
        s.GnsColumn = s.GnsColumnChoice;
        GnsClearLineStates();
        return;
    }
    // 2. SAVE: the name of the first and last entry.
    if (active && st[9] == 1) {
        if (!AirportToAirport()) return;
        const PlanTable& plan = GnsShownPlan();
        char name[kGnsFieldCapacity];
        std::snprintf(name, sizeof name, "%.4s%.4s", plan[0].Ident.data(),
                      plan[static_cast<size_t>(GnsShownLastRow())].Ident.data());
        GnsGoToPage(gns_page::kSave);
        GnsOpenField(name, kSaveFieldWidth);
        return;
    }
    // 3. The simulator's plan from its GPS data, executed at once; the GNS
    // shows the plan itself, so the Boeing-style entry line gets no message.
    if (active && st[10] == 2) {
        constexpr int kNoEntryLineMessage = 7;
        ImportSimulatorGpsRoute(kNoEntryLineMessage);
        GnsClearLineStates();
        return;
    }
    // 4. The procedure pages.
    if (st[4] >= 1) {
        OpenProcedurePage(gns_page::kDeparture);
        return;
    }
    if (st[5] == 1 || st[5] == 2) {
        OpenProcedurePage(st[5] == 1 ? gns_page::kArrival : gns_page::kApproach);
        return;
    }
    // 5. A stored plan activated.
    if (!active && st[10] == 1) {
        GnsActivateStoredPlan();
        s.GnsSubMode = 1;
        s.GnsPageScroll = 1;
        s.GnsStoredIndex = 0;
        GnsGoToPage(gns_page::kFlightPlan);
        return;
    }
    if (!s.GnsEditing || s.GnsInsertIndex < 1) return;
    // 6. "DELETE?" answered.
    if (s.GnsDeletePending) {
        s.GnsDeletePending = 0;
        int row = s.GnsInsertIndex - 1;
        if (row > GnsShownLastRow()) return;
        GnsBeginEdit();
        GnsDeleteRow(row);
        GnsRefreshEnds();
        GnsCommitEdit();
        MarkEntry(std::min(s.GnsInsertIndex, EntryCount()));
        return;
    }
    // 7. A name.
    std::array<char, kGnsFieldCapacity> name{};
    SetText(name, GnsFieldText());
    std::string_view text = TextOf(name);
    if (text == kEndMarker || text.empty()) return;
    if (text == EntryName(s.GnsInsertIndex)) return;  // nothing changed
    EnterName(text);
}

void ListEnter() {
    GnsPageState& s = S();
    int row = 0;
    for (int k = 1; k <= kGnsLineKeys; ++k) {
        int st = s.GnsLineState[static_cast<size_t>(k)];
        if (st == 0) continue;
        int base = k <= 5 ? 2 * (k - 1) : 2 * (k - 6);
        row = base + st;
    }
    if (row < 1 || row > kListRowsPerPage) return;
    int shown = (s.GnsListPage - 1) * kListRowsPerPage + row;
    int entry = GnsListEntry(shown);
    if (entry < 1 || !GnsLoadStoredPlan(entry)) {
        GnsClearLineStates();
        return;
    }
    s.GnsStoredIndex = entry;
    s.GnsStoredPage = 1;
    GnsClearLineStates();
    GnsCloseField();
}

// [SECTION] Drawing
void FormatTime(double minutes, char* out, size_t size) {
    double h = std::floor(minutes / 60);
    double m = std::floor(minutes - h * 60);
    std::snprintf(out, size, "%02.0f:%02.0f", std::fmod(h, 24), m);
}

// The right column of an entry: altitude, leg distance, ETA or ETE.
void RightColumn(GnsScreen& screen, int row, float y) {
    const PlanTable& plan = GnsShownPlan();
    int last = GnsShownLastRow();
    const PlanWaypoint& w = plan[static_cast<size_t>(row)];
    char text[24];
    ARGB colour = row == last ? kGnsYellow : kGnsCyan;
    int column = S().GnsColumn;
    if (column == 1) {
        if (w.Altitude <= kNoAltitude)
            std::snprintf(text, sizeof text, "-----");
        else
            std::snprintf(text, sizeof text, "%5.0f", w.Altitude);
        screen.Text(text, 380, y, colour);
        return;
    }
    double leg = 0;
    if (row >= 1) {
        double bearing = 0;
        const PlanWaypoint& p = plan[static_cast<size_t>(row - 1)];
        GreatCircle(p.Latitude, p.Longitude, w.Latitude, w.Longitude, leg, bearing);
    }
    if (column == 2) {
        std::snprintf(text, sizeof text, "%4.0f", leg);
        screen.Text(text, 380, y, kGnsGreen);
        return;
    }
    // ETA and ETE: along the route from the aircraft, at the ground speed.
    const PlanContext& pc = g_plan.context;
    double gs = g_sim.ground_speed;
    if (gs <= kTimedGroundSpeed || pc.ActiveLeg == kNoActiveLeg || row < pc.ActiveLeg || !GnsOnActivePlan()) {
        screen.Text("------", 360, y, kGnsGreen);
        return;
    }
    double along = 0;
    double bearing = 0;
    const PlanWaypoint& a = plan[static_cast<size_t>(pc.ActiveLeg)];
    GreatCircle(g_sim.latitude, g_sim.longitude, a.Latitude, a.Longitude, along, bearing);
    for (int i = pc.ActiveLeg + 1; i <= row; ++i) {
        double d = 0;
        GreatCircle(plan[static_cast<size_t>(i - 1)].Latitude, plan[static_cast<size_t>(i - 1)].Longitude,
                    plan[static_cast<size_t>(i)].Latitude, plan[static_cast<size_t>(i)].Longitude, d, bearing);
        along += d;
    }
    double minutes = along / gs * 60;
    if (column == 3) minutes += g_sim.zulu_hour * 60 + g_sim.zulu_minute;
    FormatTime(minutes, text, sizeof text);
    screen.Text(text, 360, y, kGnsGreen);
}

void DrawEntries(GnsScreen& screen) {
    const GnsPageState& s = S();
    const PlanContext& pc = g_plan.context;
    int first = (PageNumber() - 1) * kEntriesPerPage + 1;
    bool active = s.GnsSubMode == 1 && pc.PlanState >= 3;
    for (int n = 0; n < kEntriesPerPage; ++n) {
        int entry = first + n;
        if (entry > EntryCount()) break;
        int row = entry - 1;
        float y = GnsRowY(n + 1);
        std::string_view name = EntryName(entry);
        bool at_cursor = s.GnsEditing && entry == s.GnsInsertIndex;
        if (at_cursor) {
            screen.Field(90, y);
            if (s.GnsDeletePending) screen.Text("DELETE?", 260, y, kGnsYellow);
            continue;
        }
        ARGB colour = kGnsGreen;
        if (active && row == pc.ActiveLeg) {
            colour = kGnsMagenta;
            screen.Text("TO ", 30, y, kGnsMagenta);
        } else if (active && row == pc.ActiveLeg - 1 && g_lnav.DistToActive >= 0 &&
                   g_lnav.DistToActive <= kMarkPassedNm) {
            screen.Text("FR ", 30, y, kGnsGreen);
        }
        screen.Text(name, 90, y, colour);
        if (row > GnsShownLastRow()) continue;
        if (GnsShownPlan()[static_cast<size_t>(row)].Flyover == 1) screen.Text("*", 240, y, kGnsMagenta);
        RightColumn(screen, row, y);
    }
}

void DrawPrompt(GnsScreen& screen, const char* text, bool asked, float x, float y) {
    if (!asked) {
        screen.Text(text, x, y, kGnsGreen);
        return;
    }
    char with_mark[32];
    std::snprintf(with_mark, sizeof with_mark, "%s?", text);
    screen.Cursor(with_mark, x, y);
}

void DrawList(GnsScreen& screen) {
    GnsPageState& s = S();
    int count = GnsListEntryCount();
    int pages = std::max(1, (count + kListRowsPerPage - 1) / kListRowsPerPage);
    char title[48];
    std::snprintf(title, sizeof title, "FLIGHT PLAN LIST %d/%d", s.GnsListPage, pages);
    screen.Title(title);
    int marked = 0;
    for (int k = 1; k <= kGnsLineKeys; ++k) {
        int st = s.GnsLineState[static_cast<size_t>(k)];
        if (st > 0) marked = (k <= 5 ? 2 * (k - 1) : 2 * (k - 6)) + st;
    }
    for (int n = 1; n <= kListRowsPerPage; ++n) {
        int shown = (s.GnsListPage - 1) * kListRowsPerPage + n;
        int entry = GnsListEntry(shown);
        if (entry < 1) break;
        const StoredPlanEntry& e = g_stored_plans.entries[static_cast<size_t>(entry)];
        bool next_plan = TextOf(e.FileName) == kNewPlanFile;
        std::string_view name = next_plan ? TextOf(e.Origin) : TextOf(e.FileName);
        float y = GnsRowY(n);
        char number[16];
        std::snprintf(number, sizeof number, "%d", shown);
        screen.Text(number, 30, y, kGnsGreen);
        if (n == marked)
            screen.Cursor(name, 90, y);
        else
            screen.Text(name, 90, y, next_plan ? kGnsYellow : kGnsGreen);
    }
}

void DrawPlan(GnsScreen& screen) {
    GnsPageState& s = S();
    const auto& st = s.GnsLineState;
    char title[48];
    if (s.GnsSubMode == 1) {
        std::snprintf(title, sizeof title, "ACTIVE FPL   %d/%d", s.GnsPageScroll, PageCount());
        screen.Title(title, 90);
    } else {
        std::snprintf(title, sizeof title, "FLIGHT PLAN %d  %d/%d", s.GnsStoredIndex, s.GnsStoredPage, PageCount());
        screen.Title(title);
    }
    DrawEntries(screen);
    DrawPrompt(screen, "DEPART", st[4] >= 1, 32, GnsRowY(7));
    DrawPrompt(screen, "ARRIVE", st[5] == 1, 32, GnsRowY(8));
    DrawPrompt(screen, "APPROACH", st[5] == 2, 32, GnsRowY(9));
    if (s.GnsSubMode == 1) {
        DrawPrompt(screen, "SAVE FPL", st[9] == 1, 280, GnsRowY(7));
        static constexpr const char* kColumns[] = {"ALT", "DIS", "ETA", "ETE"};
        int column = st[10] == 1 ? s.GnsColumnChoice : s.GnsColumn;
        DrawPrompt(screen, kColumns[std::clamp(column, 1, 4) - 1], st[10] == 1, 380, GnsRowY(8));
        DrawPrompt(screen, "LOAD ATC RTE", st[10] == 2, 200, GnsRowY(9));
    } else {
        DrawPrompt(screen, "SELECT", st[10] == 1, 320, GnsRowY(8));
        screen.Text("ERASE", 340, GnsRowY(9), kGnsGreen);
    }
}
}  // namespace

// The list shows "NEXT FPL" (the table's last entry) first, then the files.
int GnsListEntryCount() { return std::clamp(g_stored_plans.count, 0, kStoredPlanLimit + 1); }

int GnsListEntry(int shown) {
    int count = GnsListEntryCount();
    if (shown < 1 || shown > count) return 0;
    const StoredPlanEntry& last = g_stored_plans.entries[static_cast<size_t>(count)];
    bool has_next = TextOf(last.FileName) == kNewPlanFile;
    if (!has_next) return shown;
    return shown == 1 ? count : shown - 1;
}

void GnsReturnToPlan(int entry) {
    GnsGoToPage(gns_page::kFlightPlan);
    S().GnsReturnPage = gns_page::kFlightPlan;
    MarkEntry(std::clamp(entry, 1, EntryCount()));
}

// [SECTION] The page
void GnsFlightPlanPage(GnsScreen& screen) {
    GnsPageState& s = S();
    // 1. Page stepping (PREV and NEXT also close the field).
    if (s.GnsPrevLatch || s.GnsNextLatch) {
        if (ListShown()) {
            GnsStepPages(s.GnsListPage, (GnsListEntryCount() + kListRowsPerPage - 1) / kListRowsPerPage);
        } else {
            GnsStepPages(PageNumber(), PageCount());
            GnsCloseField();
        }
        GnsClearLineStates();
    }
    PageNumber() = std::clamp(PageNumber(), 1, PageCount());
    // 2. The line key of this frame, then ENTER.
    if (s.GnsLineSelect != 0) {
        if (ListShown())
            ListKey(s.GnsLineSelect);
        else
            PlanKey(s.GnsLineSelect);
    }
    if (s.GnsEnterLatch) {
        if (ListShown())
            ListEnter();
        else
            PlanEnter();
    }
    if (s.GnsPage != gns_page::kFlightPlan) return;  // ENTER opened another page
    // 3. Draw.
    if (ListShown())
        DrawList(screen);
    else
        DrawPlan(screen);
}
