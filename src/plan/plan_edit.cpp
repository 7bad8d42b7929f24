// plan_edit.cpp: the edits of ModPlan's rows that the route and legs pages
// make: waypoints from the candidate list (with the naming of pilot
// waypoints), "DISCO" and "THEN" rows, deletions, restrictions, Direct-To,
// airways, and the route page's lines. The procedures' insertions are in
// plan_procedures.cpp; the row moves under all of them in plan_rows.cpp.
//
// Index:
//   [SECTION] Helpers
//   [SECTION] Pilot waypoint names
//   [SECTION] Rows from the candidate list
//   [SECTION] "THEN" rows and deletions
//   [SECTION] Restrictions
//   [SECTION] Direct-To
//   [SECTION] Airways
//   [SECTION] The route page's lines
#include "plan/plan_edit.h"

#include "cdu/keypad.h"
#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "navdata/airways.h"
#include "navdata/nav_database.h"
#include "plan/plan_execute.h"
#include "plan/plan_rows.h"
#include "plan/plan_tables.h"

#include <cstdio>

// [SECTION] Helpers
namespace {
constexpr double kHighestAltitude = 99000;   // feet: a higher restriction is a typing error
constexpr double kFlightLevelBelow = 1000;   // an altitude under it is hundreds of feet (350 = FL350)
constexpr double kLowestSpeed = 100;         // knots: the speeds a restriction may take
constexpr double kHighestSpeed = 400;
constexpr int kNameBufferSize = 16;          // "SEA01", "WPT12" and room to spare

// The plan's type text of a candidate's kind.
std::string_view TypeOfKind(std::string_view kind) {
    if (kind == "V") return "VOR";
    if (kind == "N") return "NDB";
    if (kind == "APT") return "APT";
    if (kind == "O") return "WPT";  // an oceanic position is a pilot waypoint
    return "INT";
}

// The row before `row` that is a place to fly from (not "DISCO" or "THEN"); -1 none.
int PreviousWaypointRow(int row) {
    for (int i = row - 1; i >= 0; --i)
        if (!IsPlaceHolderRow(g_plan.ModPlan[i])) return i;
    return -1;
}

void FinishModEdit() { WriteEndMarker(); }

// Two numbers from the entry as sscanf's "%lf %lf" would read them: how many were read.
int ReadTwoNumbers(std::string_view text, double& first, double& second) {
    auto skip_blanks = [&](size_t at) {
        while (at < text.size() && IsColumnBlank(text[at])) ++at;
        return at;
    };
    auto number_ends = [&](size_t at) {
        size_t i = at;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
        size_t digits = 0;
        while (i < text.size() && ((text[i] >= '0' && text[i] <= '9') || text[i] == '.')) ++i, ++digits;
        return digits == 0 ? at : i;
    };
    size_t at = skip_blanks(0);
    size_t end = number_ends(at);
    if (end == at) return 0;
    first = ReadNumber(text.substr(at));
    at = skip_blanks(end);
    size_t end2 = number_ends(at);
    if (end2 == at) return 1;
    second = ReadNumber(text.substr(at));
    return 2;
}
}  // namespace

// [SECTION] Pilot waypoint names
// The candidate of a place-bearing entry becomes the pilot waypoint it
// names, and a hold at the present position gets its WPT name. Returns 1
// when the row is the fix of a hold at the present position.
static int NamePilotWaypoint(NavRecord& candidate) {
    PilotWaypointState& pw = g_pilot_waypoint;
    std::string_view ident = TextOf(candidate.Ident);
    char name[kNameBufferSize];
    // 1. Place-bearing-distance: the point out along the bearing.
    if (pw.PbdDistance > 0) {
        double lat = 0, lon = 0;
        ProjectPoint(candidate.Latitude, candidate.Longitude, pw.PbdBearing + g_sim.magnetic_variation, pw.PbdDistance,
                     lat, lon);
        candidate.Latitude = lat;
        candidate.Longitude = lon;
    }
    // 2.-4. A place-bearing form is named after its place: SEA01, BF01.
    if (pw.PbdDistance > 0 || pw.PbdSecondBearing >= 0) {
        std::string_view prefix = ident.substr(0, ident.size() == 2 ? 2 : 3);
        std::snprintf(name, sizeof name, "%.*s%02d", static_cast<int>(prefix.size()), prefix.data(),
                      NextWaypointNumber(prefix));
        SetText(candidate.Ident, name);
        SetText(candidate.Kind, "O");  // typed "WPT" in the plan
        pw.PbdDistance = 0;
        pw.PbdBearing = -1;
        pw.PbdSecondBearing = -1;
        return 0;
    }
    // 5. A hold at the present position is a WPT of its own.
    if (ident == "HOLD PPOS") {
        std::snprintf(name, sizeof name, "WPT%02d", NextWaypointNumber("WPT"));
        SetText(candidate.Ident, name);
        SetText(candidate.Kind, "O");
        return 1;
    }
    return 0;
}

// [SECTION] Rows from the candidate list
// InsertCandidate and InsertPlain: the same but for the "DISCO" behind.
static void InsertFromCandidates(int row, int candidate_row, bool discontinuity_behind) {
    PlanContext& pc = g_plan.context;
    if (candidate_row < 1 || candidate_row > g_candidates.count || candidate_row > kCandidateLimit) return;
    if (row < 0) return;
    if (row > pc.ModLastRow + 1) row = pc.ModLastRow + 1;
    // 1. The first insertion gives the plan its first leg.
    if (pc.ModActiveLeg == kNoActiveLeg) pc.ModActiveLeg = 1;
    // 2. Room for the row.
    if (!MakeRoomAt(ModRows(), row)) return;
    // 3. Named (a pilot waypoint) and filled.
    NavRecord candidate = g_candidates.rows[candidate_row];
    int hold_here = NamePilotWaypoint(candidate);
    PlanWaypoint& w = g_plan.ModPlan[row];
    w = PlanWaypoint{};
    SetText(w.Ident, TextOf(candidate.Ident));
    w.Latitude = candidate.Latitude;
    w.Longitude = candidate.Longitude;
    SetText(w.WaypointType, TypeOfKind(TextOf(candidate.Kind)));
    SetText(w.Frequency, TextOf(candidate.Frequency));
    if (hold_here) w.HoldIndex = 1;
    // 4. A row put in before the end is not joined to what follows: a
    // "DISCO" stands behind it unless one is there already.
    if (discontinuity_behind && row < pc.ModLastRow && TextOf(g_plan.ModPlan[row + 1].Ident) != "DISCO") {
        if (MakeRoomAt(ModRows(), row + 1)) MakeMarkerRow(g_plan.ModPlan[row + 1], "DISCO");
    }
    // 5. The plan is being built or modified.
    FinishModEdit();
    StepAfterPlanChange();
}

void InsertCandidate(int row, int candidate_row) { InsertFromCandidates(row, candidate_row, true); }

void InsertPlain(int row, int candidate_row) {
    if (row <= 0 || row >= g_plan.context.ModLastRow) return;
    InsertFromCandidates(row, candidate_row, false);
}

void InsertFirstCandidate(int row) { InsertCandidate(row == 0 ? 1 : row, 1); }

// [SECTION] "THEN" rows and deletions
void InsertThen(int row) {
    if (!MakeRoomAt(ModRows(), row)) return;
    // The airway being entered is the one just fetched into the list.
    PlanWaypoint& w = g_plan.ModPlan[row];
    MakeMarkerRow(w, "THEN");
    SetText(w.WaypointType, "OAWY");
    if (g_candidates.count > 0) SetText(w.Via, TextOf(g_candidates.rows[1].Spare1));
    FinishModEdit();
}

void RemoveThenRows() {
    // From the end, so that each close-up leaves the rows still to look at in place.
    for (int i = g_plan.context.ModLastRow; i >= 0; --i)
        if (TextOf(g_plan.ModPlan[i].Ident) == "THEN") CloseUpAt(ModRows(), i);
    FinishModEdit();
}

void DeleteRow(int row, int close_up) {
    PlanContext& pc = g_plan.context;
    // 1. A plan of an origin and one row keeps them.
    if (pc.ModLastRow <= 1 || row < 0 || row > pc.ModLastRow) return;
    // 2. A hold at the row goes.
    RemoveHoldAtRow(false, row);
    // 3. The ends and an asked close-up close up; 4. an interior row leaves a gap.
    if (row < 2 || row >= pc.ModLastRow - 1 || close_up != 0) {
        CloseUpAt(ModRows(), row);
    } else {
        MakeMarkerRow(g_plan.ModPlan[row], "DISCO");
    }
    // 5. End marker, the modification's step, the route page's lines.
    FinishModEdit();
    if (pc.PlanState == 3) PlanStateStep();
    BuildRouteRows();
}

void CloseRowsTo(int target, int source) {
    PlanContext& pc = g_plan.context;
    if (target < 0 || target > pc.ModLastRow || source <= target) return;
    // Past the end: the plan simply ends at the target.
    if (source > pc.ModLastRow) {
        while (pc.ModLastRow > target) CloseUpAt(ModRows(), pc.ModLastRow);
        FinishModEdit();
        return;
    }
    // Rows target .. source - 1 go; the holds on them go too.
    for (int n = source - target; n > 0; --n) CloseUpAt(ModRows(), target);
    FinishModEdit();
    StepAfterPlanChange();
}

// [SECTION] Restrictions
void EnterRestriction(int row) {
    PlanContext& pc = g_plan.context;
    // 1. "/", "F" and "L" are blanks: "250/FL100" reads 250 and 100.
    std::array<char, kScratchpadCapacity> entry{};
    SetText(entry, ScratchpadText());
    for (char& c : entry)
        if (c == '/' || c == 'F' || c == 'L') c = ' ';
    double first = 0, second = 0;
    int read = ReadTwoNumbers(TextOf(entry), first, second);
    double speed = read == 2 ? first : 0;
    double altitude = read == 2 ? second : first;
    // 2., 5. Refused before anything changes.
    bool speed_good = speed == 0 || (speed >= kLowestSpeed && speed <= kHighestSpeed);
    bool row_good = row >= 0 && row <= pc.ModLastRow && row < kPlanRows && !IsPlaceHolderRow(g_plan.ModPlan[row]);
    if (altitude <= 0 || altitude > kHighestAltitude || !speed_good || !row_good) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    // 3. An active plan is modified from here on.
    if (pc.PlanState == 3) BeginModification();
    // 4. The altitude, in hundreds below 1000.
    PlanWaypoint& w = g_plan.ModPlan[row];
    if (altitude < kFlightLevelBelow) altitude *= 100;
    w.Altitude = altitude;
    w.Restricted = 1;
    // 5. The speed, when one was given.
    if (speed != 0) w.Speed = speed;
    // 6. The step; the entry is used.
    StepAfterPlanChange();
    ClearScratchpad();
}

// [SECTION] Direct-To
void DirectToRow(int row) {
    PlanContext& pc = g_plan.context;
    if (row < 1 || row > pc.ModLastRow || IsPlaceHolderRow(g_plan.ModPlan[row])) return;
    // The row becomes the leg at EXEC; nothing moves.
    pc.ModActiveLeg = row;
    // The course into the row from the one before it, magnetic, unless it has one.
    PlanWaypoint& w = g_plan.ModPlan[row];
    int from = PreviousWaypointRow(row);
    if (w.InboundCourse <= kNoCourse && from >= 0) {
        double distance = 0, bearing = 0;
        const PlanWaypoint& f = g_plan.ModPlan[from];
        GreatCircle(f.Latitude, f.Longitude, w.Latitude, w.Longitude, distance, bearing);
        w.InboundCourse = NormaliseMagnetic(bearing - g_sim.magnetic_variation);
    }
}

void DirectToFromPresentPosition(int target) {
    PlanContext& pc = g_plan.context;
    if (target < 1 || target > pc.ModLastRow || pc.ModLastRow >= kPlanLastRowLimit) return;
    // The rows before the target as they are, the "DIRECT" row, then the
    // target and all behind it one place down.
    for (int i = 0; i < target; ++i) g_plan.ActivePlan[i] = g_plan.ModPlan[i];
    PlanWaypoint& d = g_plan.ActivePlan[target];
    MakeMarkerRow(d, "DIRECT");
    d.Latitude = g_sim.latitude;
    d.Longitude = g_sim.longitude;
    SetText(d.WaypointType, "WPT");
    SetText(d.SegmentKind, "DCT");
    for (int i = target; i <= pc.ModLastRow; ++i) g_plan.ActivePlan[i + 1] = g_plan.ModPlan[i];
    pc.ActiveLastRow = pc.ModLastRow + 1;
    // The pointers of the active plan from those of the edit, past the new row.
    pc.NextRestrictionRow = pc.ModNextRestrictionRow + (pc.ModNextRestrictionRow >= target ? 1 : 0);
    CommitHoldRows();
    MoveHoldRows(true, target, +1);
    pc.ActiveLeg = target + 1;
    pc.ModActiveLeg = target;
    pc.ActiveWaypointLatitude = g_plan.ActivePlan[pc.ActiveLeg].Latitude;
    pc.ActiveWaypointLongitude = g_plan.ActivePlan[pc.ActiveLeg].Longitude;
}

// [SECTION] Airways
void InsertAirway() {
    const PlanContext& pc = g_plan.context;
    const AirwayFetchState& a = g_airway;
    int count = g_candidates.count < kCandidateLimit ? g_candidates.count : kCandidateLimit;
    // The stretch must run between two different fixes of the list.
    if (a.AirwayEntryRow < 1 || a.AirwayEntryRow > count || a.AirwayExitRow < 1 || a.AirwayExitRow > count ||
        a.AirwayEntryRow == a.AirwayExitRow)
        return;
    int anchor = pc.ModActiveLeg;
    if (anchor < 0 || anchor > pc.ModLastRow) return;
    // 1. From the entry to the exit, either way; the entry fix is in the plan already.
    int step = a.AirwayExitRow > a.AirwayEntryRow ? 1 : -1;
    int at = anchor + 1;
    for (int i = a.AirwayEntryRow + step;; i += step) {
        // 2. Each fix a new row behind the last one put in.
        if (!MakeRoomAt(ModRows(), at)) break;
        const NavRecord& fix = g_candidates.rows[i];
        PlanWaypoint& w = g_plan.ModPlan[at];
        SetText(w.Ident, TextOf(fix.Ident));
        w.Latitude = fix.Latitude;
        w.Longitude = fix.Longitude;
        SetText(w.WaypointType, TypeOfKind(TextOf(fix.Kind)));
        SetText(w.Via, TextOf(fix.Spare1));
        SetText(w.SegmentKind, TextOf(fix.Spare2));
        // 3. A navaid on the airway shows its frequency.
        LookUpRowNavaid(w);
        ++at;
        if (i == a.AirwayExitRow) break;
    }
    FinishModEdit();
}

// [SECTION] The route page's lines
int RowOfRouteLine(int route_row, int first) {
    int last = g_plan.context.ModLastRow;
    if (route_row < 1 || route_row > g_route_rows.count || route_row > kRouteRowLimit) return last;
    std::string_view name = TextOf(g_route_rows.rows[route_row].ToWaypoint);
    for (int i = first < 0 ? 0 : first; i <= last && i < kPlanRows; ++i)
        if (TextOf(g_plan.ModPlan[i].Ident) == name) return i == 0 ? last : i;
    return last;
}
