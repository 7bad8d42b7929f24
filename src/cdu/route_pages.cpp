// route_pages.cpp: the RTE page: origin, destination, company route and
// runway on page 1, the route's VIA/TO lines on pages 2 and up, and the
// small edit helpers the other route pages share.
//
// Index:
//   [SECTION] Helpers
//   [SECTION] RTE page 1 entries
//   [SECTION] RTE pages 2 and up
//   [SECTION] RTE page
//   [SECTION] Shared edit helpers
#include "cdu/route_pages.h"

#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/vnav.h"
#include "navdata/airways.h"
#include "navdata/nav_database.h"
#include "plan/plan_edit.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"

#include <algorithm>
#include <cstdio>

// [SECTION] Helpers
namespace {
constexpr const char* kNoValue5 = "- - - - -";       // a value not entered, five places
constexpr const char* kNoValue6 = "- - - - - -";
constexpr float kRow6ValueY = 198;                   // row 6 prompts
constexpr float kRunwayValueY = 104;
constexpr float kDestinationLabelX = 220;
constexpr float kDestinationValueX = 210;
constexpr float kRouteToLabelX = 240;
constexpr float kThenX = 100;
constexpr float kNewLineRightX = 210;
constexpr size_t kCompanyRouteKeyLength = 8;         // "KSEAKGEG": origin and destination idents
constexpr size_t kAirportIdentLength = 4;

bool IsSet(const PlanText& text) {
    std::string_view value = TextOf(text);
    return !value.empty() && value != kNoSelection;
}

void SetNone(PlanText& text) { SetText(text, kNoSelection); }

bool StartsWithNoCase(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && EqualNoCase(text.substr(0, start.size()), start);
}

// The first airport among the candidates of a name search, or null.
const NavRecord* FindAirport(std::string_view name) {
    int count = ResolveName(3, name);
    for (int i = 1; i <= count && i <= kCandidateLimit; ++i)
        if (TextOf(g_candidates.rows[i].Kind) == "APT") return &g_candidates.rows[i];
    return nullptr;
}

// A plan row for an airport: type "APT", its elevation as altitude, no frequency.
PlanWaypoint AirportRow(const NavRecord& airport) {
    PlanWaypoint row;
    SetText(row.Ident, TextOf(airport.Ident));
    row.Latitude = airport.Latitude;
    row.Longitude = airport.Longitude;
    SetText(row.WaypointType, "APT");
    row.Altitude = ReadNumber(TextOf(airport.Elevation));
    return row;
}

void ClearArrivalChoices() {
    SmithsCduState& s = g_smiths;
    s.StarChosen = s.StarTransitionChosen = s.ApproachChosen = s.ApproachTransitionChosen = 0;
    s.ArrivalRunwayChosen = 0;
    s.ApproachIndex = 0;
    s.ApproachTransitionIndex = 0;
}

void ClearAllChoices() {
    SmithsCduState& s = g_smiths;
    s.SidChosen = s.SidTransitionChosen = s.DepartureRunwayChosen = 0;
    ClearArrivalChoices();
}

// ModPlan's end marker behind its last row.
void MarkModPlanEnd() {
    int behind = g_plan.context.ModLastRow + 1;
    if (behind < 1 || behind >= kPlanRows) return;
    g_plan.ModPlan[behind] = PlanWaypoint{};
    SetText(g_plan.ModPlan[behind].Ident, "******");
}
}  // namespace

int RtePageCount() {
    int lines = g_route_rows.count + 1;
    return std::max(2, (lines + kRouteLinesPerPage - 1) / kRouteLinesPerPage + 1);
}

// [SECTION] RTE page 1 entries
namespace {
// ORIGIN: a new origin wipes the whole route and starts a new one.
void EnterOrigin(std::string_view text) {
    const NavRecord* airport = FindAirport(text);
    if (airport == nullptr) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    PlanWaypoint origin = AirportRow(*airport);
    LoadAirportDetail(text, 1);
    PlanContext& pc = g_plan.context;
    for (PlanWaypoint& row : g_plan.ActivePlan) row = PlanWaypoint{};
    for (PlanWaypoint& row : g_plan.ModPlan) row = PlanWaypoint{};
    g_plan.ActivePlan[0] = origin;
    // The plan holds the origin alone until a destination or a route comes.
    pc.ActiveLastRow = 0;
    pc.ActiveLeg = kNoActiveLeg;
    pc.NextRestrictionRow = 0;
    BeginModification();
    BuildRouteRows();
    ResetVnavForNewPlan();
    // Every name starts over but the origin's.
    PlanSelections& t = pc.Selections;
    t = PlanSelections{};
    SetText(t.OriginName, text);
    SetText(t.ModifiedOrigin, text);
    ClearAllChoices();
    pc.PlanState = 0;
    ClearScratchpad();
}

// CO ROUTE: a stored plan by the start of its file name, or by an origin
// and destination written together ("KSEAKGEG").
void EnterCompanyRoute(std::string_view text) {
    const StoredPlanTable& plans = g_stored_plans;
    int found = 0;
    for (int e = 1; e <= plans.count && e <= kStoredPlanLimit + 1 && found == 0; ++e) {
        std::string_view file = TextOf(plans.entries[e].FileName);
        if (file == "NEW FPL") continue;  // the empty-plan entry of the plan list, not a route
        if (StartsWithNoCase(file, text)) found = e;
    }
    if (found == 0 && text.size() >= kCompanyRouteKeyLength) {
        std::string_view origin = text.substr(0, kAirportIdentLength);
        std::string_view destination = text.substr(kAirportIdentLength, kAirportIdentLength);
        for (int e = 1; e <= plans.count && e <= kStoredPlanLimit + 1 && found == 0; ++e) {
            const StoredPlanEntry& entry = plans.entries[e];
            if (TextOf(entry.FileName) == "NEW FPL") continue;
            if (EqualNoCase(TextOf(entry.Origin), origin) && EqualNoCase(TextOf(entry.Destination), destination))
                found = e;
        }
    }
    if (found == 0) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    PlanContext& pc = g_plan.context;
    int state_before = pc.PlanState;
    std::array<char, kFileNameSize> file = plans.entries[found].FileName;
    LoadRouteToMod(file.data(), 0);
    SetText(pc.PlanLoadFile, TextOf(file));
    // A plan of one leg has no route line; building from it empties a list left from before.
    BuildRouteRows();
    // The load has made the airports at the ends the route's origin and
    // destination: at once while nothing is active, else as modifications.
    pc.PlanState = state_before > 2 ? 4 : 1;
    ClearScratchpad();
}

// RUNWAY: one of the origin's runways.
void EnterDepartureRunway(std::string_view text) {
    const AirportDetail& origin = g_airports.OriginAirport;
    bool known = false;
    for (int i = 1; i <= origin.RunwayCount && i <= kRunwayLimit; ++i)
        known |= TextOf(origin.Runways[i].Ident) == text;
    if (!known) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    PlanSelections& t = g_plan.context.Selections;
    if (!IsSet(t.DepartureRunway)) {
        SetText(t.DepartureRunway, text);
        g_smiths.DepartureRunwayChosen = 1;
        SetNone(t.PendingDepartureRunway);
    } else if (g_plan.context.PlanState == 3) {
        SetText(t.PendingDepartureRunway, text);
        PlanStateStep();
    } else {
        SetText(t.DepartureRunway, text);
    }
    ClearScratchpad();
}

// DEST: the airport ends the route; on an active route it is a modification.
void EnterDestination(std::string_view text) {
    const NavRecord* found = FindAirport(text);
    if (found == nullptr) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    PlanWaypoint airport = AirportRow(*found);
    LoadAirportDetail(text, 2);
    PlanContext& pc = g_plan.context;
    PlanSelections& t = pc.Selections;
    int state = pc.PlanState;
    if (state < 3) {
        // With no route yet the airport goes into the active plan, copied to
        // the edit; a route being built lives in ModPlan and is kept.
        bool on_active = state == 0;
        PlanTable& plan = on_active ? g_plan.ActivePlan : g_plan.ModPlan;
        int& last = on_active ? pc.ActiveLastRow : pc.ModLastRow;
        if (last >= 0 && !TextOf(plan[0].Ident).empty()) {
            // An airport at the end is the old destination, and gives way.
            bool replace = last >= 1 && TextOf(plan[last].WaypointType) == "APT";
            int row = replace ? last : std::min(last + 1, kPlanLastRowLimit);
            plan[row] = airport;
            last = row;
            if (pc.ActiveLeg == kNoActiveLeg) pc.ActiveLeg = 1;
            if (on_active) {
                pc.NextRestrictionRow = row;
                BeginModification();
            } else if (pc.ModActiveLeg == kNoActiveLeg || pc.ModActiveLeg < 1) {
                pc.ModActiveLeg = 1;
            }
            MarkModPlanEnd();
            pc.ActiveWaypointLatitude = plan[1].Latitude;
            pc.ActiveWaypointLongitude = plan[1].Longitude;
        }
        SetText(t.DestinationName, text);
        for (PlanText* arrival : {&t.StarName, &t.StarTransition, &t.ArrivalRunway, &t.ApproachName,
                                  &t.ApproachTransition})
            SetNone(*arrival);
    } else {
        if (state == 3) BeginModification();
        int last = pc.ModLastRow;
        if (last < 1) {
            last = std::max(1, last + 1);  // a plan without a last leg gets one
        } else if (state == 3) {
            // The old destination's arrival goes with it.
            int keep = last;
            while (keep - 1 >= 1 && TextOf(g_plan.ModPlan[keep - 1].SegmentKind) == "STAR") --keep;
            last = keep;
        }
        g_plan.ModPlan[last] = airport;
        pc.ModLastRow = last;
        if (pc.ModNextRestrictionRow > last) pc.ModNextRestrictionRow = last;
        MarkModPlanEnd();
        SetText(t.ModifiedDestination, text);
        if (state == 3) PlanStateStep();
    }
    ClearArrivalChoices();
    BuildRouteRows();
    ClearScratchpad();
}

void RtePageOneKey(int key) {
    PlanContext& pc = g_plan.context;
    std::string_view text = ScratchpadText();
    bool data_line = key == 1 || key == 2 || key == 6 || (key == 3 && IsSet(g_plan.context.Selections.OriginName));
    if (data_line && DeleteArmed()) {
        SetCduMessage(cdu_message::kInvalidDelete);  // nothing on this page can be deleted
        return;
    }
    switch (key) {
    case 1:
        if (!text.empty()) EnterOrigin(text);
        return;
    case 2:
        if (!text.empty()) EnterCompanyRoute(text);
        return;
    case 3:
        if (!text.empty() && IsSet(g_plan.context.Selections.OriginName)) EnterDepartureRunway(text);
        return;
    case 6:
        if (!text.empty()) EnterDestination(text);
        return;
    case kLeftRow6Key:
        if (pc.PlanState == 4) PlanErase();
        return;
    case kRightRow6Key:
        if (pc.PlanState == 1)
            PlanStateStep();
        else if (pc.PlanState >= 2)
            g_smiths.CduPage = cdu_page::kPerfInit;
        return;
    default: return;  // no line on this key
    }
}

void DrawRtePageOne(CduScreen& screen) {
    const PlanSelections& t = g_plan.context.Selections;
    int state = g_plan.context.PlanState;
    char value[40];
    // ORIGIN
    screen.Label("O R I G I N", kCduLeftLabelX, CduLabelY(1));
    if (state == 4 && !TextOf(t.ModifiedOrigin).empty()) {
        screen.Reverse(TextOf(t.ModifiedOrigin), 0, CduValueY(1));
    } else if (IsSet(t.OriginName)) {
        std::snprintf(value, sizeof value, "%5s", t.OriginName.data());
        screen.Value(value, 0, CduValueY(1));
    } else {
        screen.Value(kNoValue5, 0, CduValueY(1));
    }
    // CO ROUTE is an entry line only.
    screen.Label("C O   R O U T E", kCduLeftLabelX, CduLabelY(2));
    screen.Value(kNoValue6, 0, CduValueY(2));
    // RUNWAY, once there is an origin
    if (IsSet(t.OriginName)) {
        screen.Label("R U N W A Y", kCduLeftLabelX, CduLabelY(3));
        if (state == 4 && IsSet(t.PendingDepartureRunway))
            screen.Reverse(TextOf(t.PendingDepartureRunway), 0, kRunwayValueY);
        else if (IsSet(t.DepartureRunway))
            screen.Value(TextOf(t.DepartureRunway), 0, kRunwayValueY);
        else
            screen.Value(kNoValue5, 0, kRunwayValueY);
    }
    // DEST
    screen.Label("D E S T", kDestinationLabelX, CduLabelY(1));
    if (state == 4 && !TextOf(t.ModifiedDestination).empty()) {
        screen.Reverse(TextOf(t.ModifiedDestination), kDestinationValueX, CduValueY(1));
    } else if (IsSet(t.DestinationName)) {
        std::snprintf(value, sizeof value, "%5s", t.DestinationName.data());
        screen.Value(value, kDestinationValueX, CduValueY(1));
    } else {
        screen.BoxPrompt(kDestinationLabelX, CduValueY(1));
    }
    // Row 6
    screen.Rule();
    if (state == 4) screen.Value("< ERASE", 0, kRow6ValueY);
    if (state == 1) screen.Value("ACTIVATE >", kCduRightEdge, kRow6ValueY, gdi::TextAlign::Right);
    if (state >= 2) screen.Value("PERF INIT >", kCduRightEdge, kRow6ValueY, gdi::TextAlign::Right);
}
}  // namespace

// [SECTION] RTE pages 2 and up
bool RouteLineRows(int line, int& first, int& last) {
    // The lines as BuildRouteRows makes them: a row opens a new line when it
    // has no Via, another Via than the line, or is a "THEN" row.
    const PlanContext& pc = g_plan.context;
    int count = 0;
    std::string_view line_via;
    first = last = 0;
    for (int i = 1; i <= pc.ModLastRow - 1 && i < kPlanRows; ++i) {
        const PlanWaypoint& row = g_plan.ModPlan[i];
        std::string_view via = TextOf(row.Via);
        bool opens = via.empty() || count == 0 || via != line_via || TextOf(row.Ident) == "THEN";
        if (opens) {
            if (count == line) return true;  // the line ended at the row before
            ++count;
            line_via = via.empty() ? std::string_view("DIRECT") : via;
            if (count == line) first = i;
        }
        if (count == line) last = i;
    }
    return count == line && first > 0;
}

int DeleteRouteLine(int line) {
    int first = 0, last = 0;
    if (!RouteLineRows(line, first, last)) return 0;
    PlanContext& pc = g_plan.context;
    // The rows close up over the line; the step from an active plan comes
    // with the removal.
    BeginPlanEdit();
    int state = pc.PlanState;
    CloseRowsTo(first, last + 1);
    if (state == 3 && pc.PlanState == 3) PlanStateStep();
    // A SID or STAR whose rows are all gone is no longer chosen.
    bool sid = false, star = false;
    for (int i = 0; i <= pc.ModLastRow && i < kPlanRows; ++i) {
        std::string_view kind = TextOf(g_plan.ModPlan[i].SegmentKind);
        sid |= kind == "SID" || kind == "SIDSTAR";
        star |= kind == "STAR" || kind == "SIDSTAR";
    }
    PlanSelections& t = pc.Selections;
    if (!sid) {
        SetNone(t.SidName);
        SetNone(t.SidTransition);
    }
    if (!star) {
        SetNone(t.StarName);
        SetNone(t.StarTransition);
    }
    BuildRouteRows();
    return 1;
}

namespace {
bool IsGap(std::string_view name) { return name == "DISCO" || name == "THEN"; }

int FirstRouteLine(int page) { return kRouteLinesPerPage * (page - 2) + 1; }

// The plan row of route line r's fix, or for the empty line after the last
// one the row before the destination.
int RowAfterLine(int line) {
    int first = 0, last = 0;
    if (RouteLineRows(line, first, last)) return last;
    const PlanContext& pc = g_plan.context;
    bool destination = pc.ModLastRow >= 1 && TextOf(g_plan.ModPlan[pc.ModLastRow].WaypointType) == "APT";
    return destination ? pc.ModLastRow - 1 : std::max(0, pc.ModLastRow);
}

// Where a new fix entered on route line r goes: behind the line's fix, or in
// place of a gap (which then stands behind the new fix).
int InsertionRowOfLine(int line) {
    int row = RowAfterLine(line);
    if (row >= 1 && row < kPlanRows && IsDiscontinuity(g_plan.ModPlan[row])) return row;
    return row + 1;
}

// FetchAirway finds its entry fix at ModActiveLeg, and InsertAirway expands
// behind it: the active leg lends itself as the cursor and is put back,
// moved by the rows that came in before it.
struct AirwayCursor {
    int saved_leg = 0;                        // ModActiveLeg before the entry
    int saved_last = 0;                       // ModLastRow before the entry
    int row = 0;                              // the entry fix's row
    explicit AirwayCursor(int entry_row) {
        PlanContext& pc = g_plan.context;
        saved_leg = pc.ModActiveLeg;
        saved_last = pc.ModLastRow;
        row = entry_row;
        pc.ModActiveLeg = entry_row;
    }
    void Restore() const {
        PlanContext& pc = g_plan.context;
        int moved = pc.ModLastRow - saved_last;
        int leg = saved_leg;
        if (leg == kNoActiveLeg) leg = 1;
        else if (leg > row) leg += moved;
        pc.ModActiveLeg = std::max(1, leg);
    }
};

// The airway `name` fetched with its entry at `entry_row`; false when it
// doesn't pass that fix.
bool FetchAirwayAt(std::string_view name, int entry_row) {
    AirwayCursor cursor(entry_row);
    char wanted[40];
    std::snprintf(wanted, sizeof wanted, "#%.*s", static_cast<int>(name.size()), name.data());
    FetchAirway(wanted);
    cursor.Restore();
    return g_candidates.count > 0 && g_airway.AirwayEntryRow > 0;
}

// The fetched airway from its entry row to `exit_row`, behind `entry_row`.
void ExpandAirway(int entry_row, int exit_row) {
    AirwayCursor cursor(entry_row);
    g_airway.AirwayExitRow = exit_row;
    InsertAirway();
    RemoveThenRows();
    cursor.Restore();
}

void FinishRouteEntry() {
    BuildRouteRows();
    StepAfterPlanChange();
    ClearScratchpad();
}

// VIA on line r: an airway from the previous line's fix.
void EnterVia(int line, std::string_view text) {
    if (line == 1) {
        SetCduMessage(cdu_message::kInvalidEntry);  // an airway needs a fix to start from
        return;
    }
    int entry_first = 0, entry_row = 0;
    if (!RouteLineRows(line - 1, entry_first, entry_row)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    BeginPlanEdit();
    if (!FetchAirwayAt(text, entry_row)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    // The line's own fix on the airway: the line becomes the airway to it.
    int first = 0, last = 0;
    bool has_line = RouteLineRows(line, first, last);
    int exit_row = has_line ? FindInCandidates(TextOf(g_plan.ModPlan[last].Ident)) : 0;
    if (exit_row > 0 && exit_row != g_airway.AirwayEntryRow) {
        // The rows behind the entry fix go; the fetched airway takes their place.
        DeleteRouteLine(line);
        ExpandAirway(entry_row, exit_row);
    } else {
        AirwayCursor cursor(entry_row);
        InsertThen(entry_row + 1);
        cursor.Restore();
    }
    FinishRouteEntry();
}

// TO on line r.
void EnterTo(int line, std::string_view text) {
    const RouteRowList& rows = g_route_rows;
    bool has_line = line <= rows.count && line <= kRouteRowLimit;
    std::string_view own = has_line ? TextOf(rows.rows[line].ToWaypoint) : std::string_view{};
    if (has_line && text == own) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    int row = RowAfterLine(line);
    // The exit fix of an airway being entered: the stretch comes in, and a
    // later row of the same fix, now a repeat, goes.
    if (has_line && own == "THEN") {
        std::array<char, 16> airway = g_plan.ModPlan[row].Via;
        int exit_row = FetchAirwayAt(TextOf(airway), row - 1) ? FindInCandidates(text) : 0;
        if (exit_row == 0 || exit_row == g_airway.AirwayEntryRow) {
            SetCduMessage(cdu_message::kInvalidEntry);
            ClearScratchpad();
            return;
        }
        BeginPlanEdit();
        ExpandAirway(row - 1, exit_row);
        int expanded = FindPlanRowFrom(text, row);
        int repeat = expanded > 0 ? FindPlanRowFrom(text, expanded + 1) : 0;
        if (repeat > 0) CloseRowsTo(expanded + 1, repeat + 1);
        FinishRouteEntry();
        return;
    }
    // A fix further down: what lies between goes.
    int later = FindPlanRowFrom(text, has_line ? row : row + 1);
    if (later > 0) {
        BeginPlanEdit();
        CloseRowsTo(has_line ? row : row + 1, later);
        FinishRouteEntry();
        return;
    }
    // A waypoint by name, after the line's fix.
    int found = ResolveName(0, text);
    if (found == 0) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    int insert_at = InsertionRowOfLine(line);
    if (found > 1) {
        g_smiths.ReturnPage = cdu_page::kRte;
        g_smiths.SelectTargetLine = insert_at;
        g_smiths.SelectPurpose = kSelectForInsert;
        g_smiths.select.page = 1;
        g_smiths.CduPage = cdu_page::kSelectWaypoint;
        return;
    }
    BeginPlanEdit();
    InsertFirstCandidate(insert_at);
    FinishRouteEntry();
}

void RouteLinesKey(int key, int page) {
    std::string_view text = ScratchpadText();
    if (key == kRightRow6Key) {
        if (DeleteArmed()) SetCduMessage(cdu_message::kInvalidDelete);
        return;
    }
    if (key < 1 || key > 10) return;
    bool to_column = key > kRouteLinesPerPage;
    int line = FirstRouteLine(page) + (key - 1) % kRouteLinesPerPage;
    bool has_line = line <= g_route_rows.count && line <= kRouteRowLimit;
    // No line on this key, and not the empty line that takes a new one.
    if (line > g_route_rows.count + 1 || line > kRouteRowLimit) return;
    if (to_column) {
        if (DeleteArmed()) {
            SetCduMessage(cdu_message::kInvalidDelete);
            return;
        }
        if (text.empty()) {
            if (has_line) SetScratchpad(TextOf(g_route_rows.rows[line].ToWaypoint));
            return;
        }
        EnterTo(line, text);
        return;
    }
    if (DeleteArmed()) {
        if (DeleteRouteLine(line) == 0)
            SetCduMessage(cdu_message::kInvalidDelete);
        else
            ClearCduMessage();
        return;
    }
    if (text.empty()) return;
    EnterVia(line, text);
}

void DrawRouteLines(CduScreen& screen, int page) {
    screen.Label("V I A", kCduLeftLabelX, CduLabelY(1));
    screen.Label("T O", kRouteToLabelX, CduLabelY(1));
    int first = FirstRouteLine(page);
    const RouteRowList& rows = g_route_rows;
    for (int i = 0; i < kRouteLinesPerPage; ++i) {
        int line = first + i;
        float y = CduValueY(1 + i);
        if (line > rows.count || line > kRouteRowLimit) {
            // One empty line for the next entry, unless the page is full.
            screen.Value(kNoValue6, 0, y);
            screen.Value(kNoValue5, kNewLineRightX, y);
            break;
        }
        const RouteRow& row = rows.rows[line];
        std::string_view to = TextOf(row.ToWaypoint);
        std::string_view airway = TextOf(row.Airway);
        if (to == "THEN") {
            // An airway waiting for its exit fix.
            screen.Value(airway == "DISCO" ? kNoValue6 : airway, 0, y);
            screen.Label("THEN", kThenX, y - 11);
            screen.BoxPrompt(kDestinationLabelX, y);
        } else if (IsGap(to)) {
            // A gap: the next fix closes it.
            screen.Label("- -   R O U T E    D I S C O N T I N U I T Y  -", 0, y - 11);
            screen.Value(kNoValue6, 0, y);
            screen.BoxPrompt(kDestinationLabelX, y);
        } else {
            screen.Value(airway, 0, y);
            screen.Value(to, kCduRightEdge, y, gdi::TextAlign::Right);
        }
    }
}
}  // namespace

// [SECTION] RTE page
void RtePage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    PlanContext& pc = g_plan.context;
    // The RTE key opened the page: an active plan becomes the edit's start.
    if (s.RteEntryLatch) {
        if (pc.PlanState == 3) BeginModification();
        BuildRouteRows();
    }
    StepPages(s.rte, RtePageCount());
    int key = s.LineSelectLatch;
    if (key != 0) {
        if (s.rte.page == 1)
            RtePageOneKey(key);
        else
            RouteLinesKey(key, s.rte.page);
    }
    // An entry may have changed the route's lines. A key that led to another
    // page leaves this frame's picture to this page; the next frame is that page's.
    s.rte.count = RtePageCount();
    if (s.rte.page > s.rte.count) s.rte.page = s.rte.count;
    screen.Title("RTE");
    screen.Count("%2d/%2d", s.rte.page, s.rte.count);
    if (s.rte.page == 1)
        DrawRtePageOne(screen);
    else
        DrawRouteLines(screen, s.rte.page);
}

// [SECTION] Shared edit helpers
void BeginPlanEdit() {
    if (g_plan.context.PlanState == 3) BeginModification();
}

int FindPlanRowFrom(std::string_view name, int from) {
    const PlanContext& pc = g_plan.context;
    if (name.empty()) return 0;
    for (int i = std::max(0, from); i <= pc.ModLastRow && i < kPlanRows; ++i)
        if (TextOf(g_plan.ModPlan[i].Ident) == name) return i;
    return 0;
}

void KeepOnlyCandidate(int row) {
    CandidateList& c = g_candidates;
    if (row < 1 || row > c.count || row > kCandidateLimit) return;
    c.rows[1] = c.rows[row];
    c.count = 1;
    c.selected = 1;
}

double MagneticLegCourse(double from_latitude, double from_longitude, double to_latitude, double to_longitude) {
    double distance = 0, bearing = 0;
    GreatCircle(from_latitude, from_longitude, to_latitude, to_longitude, distance, bearing);
    double course = bearing - g_sim.magnetic_variation;
    if (course < 0.5) course += 360;
    if (course >= 360.5) course -= 360;
    return course;
}

void ChooseDirectTarget(int row) {
    PlanContext& pc = g_plan.context;
    if (row < 1 || row > pc.ModLastRow || row >= kPlanRows) return;
    // The target waits for EXEC as the modification's active leg.
    BeginPlanEdit();
    if (pc.PlanState == 3) PlanStateStep();
    pc.ModActiveLeg = row;
    PlanWaypoint& target = g_plan.ModPlan[row];
    if (target.InboundCourse <= kNoCourse) {
        // The course into the row, from the row before it; the intercept may change it.
        int before = row - 1;
        while (before > 0 && IsDiscontinuity(g_plan.ModPlan[before])) --before;
        const PlanWaypoint& from = g_plan.ModPlan[before];
        target.InboundCourse = MagneticLegCourse(from.Latitude, from.Longitude, target.Latitude, target.Longitude);
    }
    g_smiths.DirectPending = 1;
    g_smiths.DirectSourceRow = 0;
}
