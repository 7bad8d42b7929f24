// legs_page.cpp: RTE LEGS, the route one entry a line from the active leg on:
// waypoints inserted, deleted and joined, speed/altitude restrictions, the
// direct-to and intercept of DIR/INTC, holds from the HOLD key, and the
// centre entry of a PLAN map with its STEP key.
//
// Index:
//   [SECTION] The lines of the page
//   [SECTION] Left keys
//   [SECTION] Right keys
//   [SECTION] Row 6 keys
//   [SECTION] Drawing
//   [SECTION] RTE LEGS page
#include "cdu/route_pages.h"

#include "display/display_state.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "navdata/nav_database.h"
#include "plan/plan_edit.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <array>
#include <cstdio>

// [SECTION] The lines of the page
namespace {
constexpr const char* kHoldAtPrefix = "HOLD AT ";
constexpr int kLegsItemLimit = kPlanRows + kHoldLimit + 1;  // entries, hold lines and the end line
constexpr float kRow6Y = 198;                 // row 6 prompts
constexpr float kRteDataX = 160;
constexpr float kCourseX = 20;                // small course and distance above a name
constexpr float kDistanceX = 100;
constexpr float kCentreMarkX = 80;            // "<CTR>"
constexpr float kSpeedX = 150;
constexpr float kSlashX = 200;
constexpr float kHoldDashesX = 130;

enum class LineKind { Entry, Hold, End };

// One line of the page: an entry (a plan row), the hold line before an
// entry that carries a hold, or the empty line after the last entry.
struct LegsLine {
    LineKind kind = LineKind::End;
    int row = 0;                              // plan row of the entry (End: last + 1)
};

// The plan as the page shows it this frame.
struct LegsView {
    const PlanTable* plan = nullptr;          // ModPlan, or ActivePlan while it is active and unchanged
    int last = -1;                            // its last row
    int active = 1;                           // the entry of page 1, line 1
    std::array<LegsLine, kLegsItemLimit> lines{};
    int line_count = 0;                       // lines in use, the end line included
};

LegsView ReadLegsView() {
    LegsView v;
    const PlanContext& pc = g_plan.context;
    // An active, unchanged plan shows as flown; everything else as edited.
    bool active_plan = pc.PlanState == 3;
    v.plan = active_plan ? &g_plan.ActivePlan : &g_plan.ModPlan;
    v.last = std::min(active_plan ? pc.ActiveLastRow : pc.ModLastRow, kPlanLastRowLimit);
    int leg = pc.ActiveLeg;
    if (pc.PlanState == 4 || pc.PlanState < 3) {
        if (pc.ModActiveLeg > 0 && pc.ModActiveLeg != kNoActiveLeg) leg = pc.ModActiveLeg;
    }
    if (leg == kNoActiveLeg || leg < 1) leg = 1;
    v.active = leg;
    // Each entry from the active leg on, a hold line before an entry with a hold.
    for (int i = leg; i <= v.last && v.line_count + 2 < kLegsItemLimit; ++i) {
        if ((*v.plan)[i].HoldIndex > 0) v.lines[v.line_count++] = {LineKind::Hold, i};
        v.lines[v.line_count++] = {LineKind::Entry, i};
    }
    v.lines[v.line_count++] = {LineKind::End, std::max(v.last + 1, 1)};
    return v;
}

int LegsPageCount(const LegsView& v) { return std::max(1, (v.line_count + kLegsLinesPerPage - 1) / kLegsLinesPerPage); }

// The line a key of row 1..5 of the page is bound to; null for no line.
const LegsLine* LineOfKey(const LegsView& v, int page, int key_row) {
    int index = (page - 1) * kLegsLinesPerPage + key_row - 1;
    if (index < 0 || index >= v.line_count) return nullptr;
    return &v.lines[static_cast<size_t>(index)];
}

bool StartsWith(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && text.substr(0, start.size()) == start;
}

void GoSelectWaypoint(int target_row, int purpose) {
    SmithsCduState& s = g_smiths;
    s.ReturnPage = cdu_page::kRteLegs;
    s.SelectTargetLine = target_row;
    s.SelectPurpose = purpose;
    s.select.page = 1;
    s.CduPage = cdu_page::kSelectWaypoint;
}

// A fix named for a hold: "HOLD AT " and its name wait in the entry line
// until a line's key places it.
void StartHoldAt(const NavRecord& fix) {
    SmithsCduState& s = g_smiths;
    s.HoldAtPending = 1;
    s.HoldAtCandidate = fix;
    char text[kScratchpadCapacity];
    std::snprintf(text, sizeof text, "%s%s", kHoldAtPrefix, fix.Ident.data());
    SetScratchpad(text);
}

// The hold page of the hold standing at ModPlan row `row`.
void ShowHoldOf(int row) {
    SmithsCduState& s = g_smiths;
    s.hold.page = 1;
    for (int h = 1; h <= g_holds.HoldCount && h <= kHoldLimit; ++h)
        if (g_holds.HoldTable[static_cast<size_t>(h)].ModRow == row) s.hold.page = h;
    s.CduPage = cdu_page::kRteHold;
}

// A hold at a plan row made from the LEGS page; the plan waits for EXEC.
void PlaceHold(int row) {
    BeginPlanEdit();
    AddHold(row, 1);
    StepAfterPlanChange();
    g_smiths.HoldSourceRow = 0;
    ShowHoldOf(row);
}
}  // namespace

// [SECTION] Left keys
namespace {
void LegsHoldLineLeftKey(const LegsLine& line) {
    if (!DeleteArmed()) return;
    // The hold goes at EXEC; until then the plan is modified.
    SmithsCduState& s = g_smiths;
    BeginPlanEdit();
    int hold = g_plan.ModPlan[line.row].HoldIndex;
    s.HoldDeletePending = 1;
    s.HoldDeleteRow = hold >= 1 && hold <= g_holds.HoldCount && hold <= kHoldLimit
                          ? g_holds.HoldTable[static_cast<size_t>(hold)].ActiveRow
                          : line.row;
    g_plan.ModPlan[line.row].HoldIndex = 0;
    if (g_plan.context.PlanState == 3) PlanStateStep();
    ClearCduMessage();
}

void LegsEntryLeftKey(const LegsView& v, const LegsLine& line) {
    SmithsCduState& s = g_smiths;
    std::string_view text = ScratchpadText();
    int i = line.row;
    bool end_line = line.kind == LineKind::End;
    bool disco = !end_line && IsDiscontinuity((*v.plan)[i]);
    // 1. The armed delete: any entry but the last.
    if (DeleteArmed()) {
        if (end_line || i >= v.last) {
            SetCduMessage(cdu_message::kInvalidDelete);
            return;
        }
        BeginPlanEdit();
        DeleteRow(i, disco ? 1 : 0);
        BuildRouteRows();
        ClearCduMessage();
        return;
    }
    // 2. A request: the name to the entry line, the source of a direct or a hold.
    if (text.empty()) {
        if (end_line || disco) return;
        SetScratchpad(TextOf((*v.plan)[i].Ident));
        if (s.LegsMode == 1) s.DirectSourceRow = i;
        if (s.LegsMode == 2) s.HoldSourceRow = i;
        return;
    }
    BeginPlanEdit();
    // 3. A hold at a named fix, placed before this entry.
    if (s.LegsMode == 2 && s.HoldAtPending && StartsWith(text, kHoldAtPrefix)) {
        g_candidates.rows[1] = s.HoldAtCandidate;
        g_candidates.count = 1;
        InsertCandidate(i, 1);
        s.HoldAtPending = 0;
        ClearScratchpad();
        BuildRouteRows();
        PlaceHold(i);
        return;
    }
    // 4. An entry further down: what lies between goes.
    int later = end_line ? 0 : FindPlanRowFrom(text, i);
    if (later > 0) {
        if (later > i) CloseRowsTo(i, later);
        BuildRouteRows();
        ClearScratchpad();
        return;
    }
    // 5. A waypoint by name.
    int found = ResolveName(0, text);
    if (found == 0) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    ClearScratchpad();
    if (found > 1) {
        GoSelectWaypoint(i, kSelectForInsert);
        return;
    }
    InsertCandidate(i, 1);
    BuildRouteRows();
}
}  // namespace

// [SECTION] Right keys
namespace {
void LegsRightKey(const LegsView& v, const LegsLine& line) {
    if (line.kind != LineKind::Entry) {
        if (DeleteArmed()) SetCduMessage(cdu_message::kInvalidDelete);
        return;
    }
    if (DeleteArmed()) {
        SetCduMessage(cdu_message::kInvalidDelete);
        return;
    }
    const PlanWaypoint& entry = (*v.plan)[line.row];
    std::string_view text = ScratchpadText();
    if (text.empty()) {
        // Altitude first, as "%-5.0f/%-3.0f"; the entry rule reads speed first.
        if (entry.Altitude > 0 && entry.Speed > 0) {
            char copy[32];
            std::snprintf(copy, sizeof copy, "%-5.0f/%-3.0f", entry.Altitude, entry.Speed);
            SetScratchpad(copy);
        }
        return;
    }
    if (IsDiscontinuity(entry)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    BeginPlanEdit();
    EnterRestriction(line.row);
}
}  // namespace

// [SECTION] Row 6 keys
namespace {
// STEP: the PLAN map's centre to the next entry; after the last back to the first.
void StepPlanCentre(const LegsView& v) {
    SmithsCduState& s = g_smiths;
    int centre = g_display.PlanCentreIndex;
    int next = centre < v.active ? v.active : centre + 1;
    if (next > v.last) next = v.active;
    g_display.PlanCentreIndex = next;
    // The page that shows the centre entry.
    for (int n = 0; n < v.line_count; ++n)
        if (v.lines[static_cast<size_t>(n)].kind == LineKind::Entry && v.lines[static_cast<size_t>(n)].row == next)
            s.legs.page = n / kLegsLinesPerPage + 1;
}

// Key 11 with a name in LegsMode 1: a direct to a plan row or to a new fix.
void DirectKey(const LegsView& v, std::string_view text) {
    SmithsCduState& s = g_smiths;
    if (s.DirectSourceRow > 0) {
        ChooseDirectTarget(s.DirectSourceRow);
        ClearScratchpad();
        return;
    }
    int found = ResolveName(0, text);
    if (found == 0) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    ClearScratchpad();
    if (found > 1) {
        GoSelectWaypoint(v.active, kSelectForDirect);
        return;
    }
    BeginPlanEdit();
    InsertCandidate(v.active, 1);
    ChooseDirectTarget(v.active);
    BuildRouteRows();
}

// Key 11 with a name in LegsMode 2: a hold at a copied entry, or a fix
// named for a hold that a line's key then places.
void HoldKey(std::string_view text) {
    SmithsCduState& s = g_smiths;
    if (s.HoldSourceRow > 0) {
        int row = s.HoldSourceRow;
        ClearScratchpad();
        PlaceHold(row);
        return;
    }
    int found = ResolveName(0, text);
    if (found == 0) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    if (found > 1) {
        ClearScratchpad();
        GoSelectWaypoint(0, kSelectForHoldAt);
        return;
    }
    StartHoldAt(g_candidates.rows[1]);
}

// HOLD PPOS: a waypoint at the present position, with a hold at it.
void HoldAtPresentPosition(const LegsView& v) {
    PlanContext& pc = g_plan.context;
    NavRecord here;
    SetText(here.Ident, "HOLD PPOS");
    SetText(here.Kind, "I");
    here.Latitude = g_sim.latitude;
    here.Longitude = g_sim.longitude;
    g_candidates.rows[1] = here;
    g_candidates.count = 1;
    BeginPlanEdit();
    if (pc.PlanState == 3) PlanStateStep();
    int row = v.active;
    InsertCandidate(row, 1);
    // The aircraft is at the new row: it is the leg flown from EXEC on.
    pc.ModActiveLeg = row;
    BuildRouteRows();
    PlaceHold(row);
}

void LegsRow6Key(const LegsView& v, int key) {
    SmithsCduState& s = g_smiths;
    int state = g_plan.context.PlanState;
    std::string_view text = ScratchpadText();
    bool direct_chosen = s.LegsMode == 1 && s.DirectPending;
    // Before a direct is chosen, the right key is the left one.
    if (key == kRightRow6Key && s.LegsMode == 1 && !direct_chosen) key = kLeftRow6Key;
    if (key == kLeftRow6Key) {
        // "< ERASE" stands there while a modification waits.
        if (state == 4) {
            PlanErase();
            return;
        }
        if (text.empty()) return;
        if (s.LegsMode == 1) DirectKey(v, text);
        if (s.LegsMode == 2) HoldKey(text);
        return;
    }
    // Key 12.
    if (direct_chosen) {
        if (text.empty()) return;
        double course = ReadNumber(text);
        int target = g_plan.context.ModActiveLeg;
        if (course < 0 || course > 360 || target < 1 || target > g_plan.context.ModLastRow) {
            SetCduMessage(cdu_message::kInvalidEntry);
            return;
        }
        g_plan.ModPlan[target].InboundCourse = course;
        ClearScratchpad();
        return;
    }
    if (s.LegsMode == 2) {
        HoldAtPresentPosition(v);
        return;
    }
    if (AnyNdInPlanMode()) {
        StepPlanCentre(v);
        return;
    }
    if (state == 1)
        PlanStateStep();
    else
        s.CduPage = cdu_page::kRte;
}
}  // namespace

// [SECTION] Drawing
namespace {
void DrawRestriction(CduScreen& screen, const PlanWaypoint& entry, float y) {
    bool disco = TextOf(entry.Ident) == "DISCO";
    bool has_speed = entry.Speed != kNoAltitude && !disco;
    bool has_altitude = entry.Altitude != kNoAltitude && !disco;
    const char* mark = entry.Restricted == 1 ? "A" : "";
    char speed[16] = "- - - -";
    char altitude[24] = "- - - - - -";
    if (has_speed) std::snprintf(speed, sizeof speed, "%5.0f", entry.Speed);
    if (has_altitude) {
        if (entry.Altitude > g_config.TransAlt)
            std::snprintf(altitude, sizeof altitude, "FL%03.0f%s", entry.Altitude / 100.0, mark);
        else
            std::snprintf(altitude, sizeof altitude, "%5.0f%s", entry.Altitude, mark);
    }
    screen.Value(speed, kSpeedX, y);
    screen.Value("/", kSlashX, y);
    screen.Value(altitude, kCduRightEdge, y, gdi::TextAlign::Right);
}

void DrawEntry(CduScreen& screen, const LegsView& v, int i, float y) {
    const PlanTable& plan = *v.plan;
    const PlanWaypoint& entry = plan[i];
    int state = g_plan.context.PlanState;
    char text[40];
    if (TextOf(entry.Ident) == "DISCO") {
        screen.Label("T H E N", 5, y - 14);
        screen.BoxPrompt(1, y);
        DrawRestriction(screen, entry, y);
        return;
    }
    // Course and distance of the leg into the entry.
    if (i >= 1 && TextOf(plan[i - 1].Ident) == "DISCO") {
        screen.Label(".  .  R O U T E  D I S C O N T I N U I T Y  .", 7, y - 11);
    } else if (i >= 1) {
        bool from_aircraft = i == v.active && g_plan.context.ActiveLeg != kNoActiveLeg;
        double from_lat = from_aircraft ? g_sim.latitude : plan[i - 1].Latitude;
        double from_lon = from_aircraft ? g_sim.longitude : plan[i - 1].Longitude;
        double distance = 0, bearing = 0;
        GreatCircle(from_lat, from_lon, entry.Latitude, entry.Longitude, distance, bearing);
        double course = entry.InboundCourse > kNoCourse
                            ? entry.InboundCourse
                            : MagneticLegCourse(from_lat, from_lon, entry.Latitude, entry.Longitude);
        std::snprintf(text, sizeof text, "%03.0f", course);
        screen.Label(text, kCourseX, y - 11);
        std::snprintf(text, sizeof text, "%5.0f NM", distance);
        screen.Label(text, kDistanceX, y - 11);
    }
    std::snprintf(text, sizeof text, "%-5s", entry.Ident.data());
    if (i == v.active && state != 4)
        screen.Reverse(text, 0, y);
    else
        screen.Value(text, 0, y);
    if (AnyNdInPlanMode() && g_display.PlanCentreIndex == i) screen.Value("<CTR>", kCentreMarkX, y);
    DrawRestriction(screen, entry, y);
}

void DrawHoldLine(CduScreen& screen, const LegsView& v, int i, float y) {
    char name[32];
    std::snprintf(name, sizeof name, "%-5s", (*v.plan)[i].Ident.data());
    screen.Label("H O L D   A T", kCourseX, y - 11);
    screen.Value(name, 0, y);
    screen.Value("- - - - / - - - - - -", kHoldDashesX, y);
}

void DrawLegsRow6(CduScreen& screen) {
    const SmithsCduState& s = g_smiths;
    int state = g_plan.context.PlanState;
    bool plan_mode = AnyNdInPlanMode();
    char text[16];
    if (s.LegsMode == 0) {
        if (state == 4) {
            screen.Label(plan_mode ? ". . . . . . . . . . . . . . . . . ." : ". . . . . . . . . . . . . . . . . . . . . . . .",
                         0, 174);
            if (plan_mode) screen.Label("M A P  C T R", kCduRightLabelEdge, 174 + 11, gdi::TextAlign::Right);
        } else {
            screen.Label("R N P / A C T U A L", 10, 184);
            screen.Label(". . . . . . . . . . . . .", 0, 174);
            screen.Label("1 . 0 0 / 0 . 0 0 N M", 10, kRow6Y);
        }
        if (plan_mode && state >= 1)
            screen.Value("STEP >", kCduRightEdge, kRow6Y, gdi::TextAlign::Right);
        else if (state == 1)
            screen.Value("ACTIVATE >", kCduRightEdge, kRow6Y, gdi::TextAlign::Right);
        else if (state >= 2)
            screen.Value("RTE DATA >", kRteDataX, kRow6Y);
    } else if (s.LegsMode == 1 && !s.DirectPending) {
        screen.Label("D I R E C T    T O                    I N T C    L E G", 0, 174);
        screen.Value("- - - - - -", 100, 179);
        screen.BoxPrompt(1, kRow6Y);
        screen.BoxPrompt(200, kRow6Y);
        screen.Label("T O", 165, kRow6Y);
    } else if (s.LegsMode == 1) {
        screen.Label(". . . . . . . . . . . . . . . . . . . . . . . I N T C    C R S", 0, 174);
        int target = g_plan.context.ModActiveLeg;
        double course = target >= 1 && target < kPlanRows ? g_plan.ModPlan[target].InboundCourse : kNoCourse;
        if (course > kNoCourse)
            std::snprintf(text, sizeof text, "%03.0f", course);
        else
            std::snprintf(text, sizeof text, "- - -");
        screen.Value(text, kCduRightEdge, kRow6Y, gdi::TextAlign::Right);
    } else {
        screen.Label("- - - - - - -                  - - - - - - - - - -", 0, 176);
        screen.Label("H O L D  A T", 80, 181);
        if (s.HoldSourceRow == 0 && !s.HoldAtPending) screen.BoxPrompt(5, kRow6Y);
        screen.Value("PPOS >", kCduRightEdge, kRow6Y, gdi::TextAlign::Right);
    }
    if (state == 4) screen.Value("< ERASE", 0, kRow6Y);
}
}  // namespace

// [SECTION] RTE LEGS page
void RteLegsPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    int state = g_plan.context.PlanState;
    // The LEGS and HOLD keys open the edit on an active plan, or on none.
    if ((s.LegsEntryLatch || s.HoldEntryLatch) && (state == 0 || state == 3)) BeginModification();
    LegsView v = ReadLegsView();
    StepPages(s.legs, LegsPageCount(v));

    // The key of this frame acts on the line it is bound to.
    int key = s.LineSelectLatch;
    if (key >= 1 && key <= 10) {
        const LegsLine* line = LineOfKey(v, s.legs.page, (key - 1) % kLegsLinesPerPage + 1);
        if (line != nullptr) {
            if (key > kLegsLinesPerPage)
                LegsRightKey(v, *line);
            else if (line->kind == LineKind::Hold)
                LegsHoldLineLeftKey(*line);
            else
                LegsEntryLeftKey(v, *line);
        }
    } else if (key == kLeftRow6Key || key == kRightRow6Key) {
        LegsRow6Key(v, key);
    }
    if (s.CduPage != cdu_page::kRteLegs) return;  // the next frame is the other page's

    // Draw what the keys left.
    v = ReadLegsView();
    s.legs.count = LegsPageCount(v);
    if (s.legs.page > s.legs.count) s.legs.page = s.legs.count;
    screen.Title("RTE    LEGS");
    screen.Count("%2d / %2d", s.legs.page, s.legs.count);
    int first = (s.legs.page - 1) * kLegsLinesPerPage;
    for (int n = 0; n < kLegsLinesPerPage && first + n < v.line_count; ++n) {
        const LegsLine& line = v.lines[static_cast<size_t>(first + n)];
        float y = CduValueY(1 + n);
        if (line.kind == LineKind::Entry)
            DrawEntry(screen, v, line.row, y);
        else if (line.kind == LineKind::Hold)
            DrawHoldLine(screen, v, line.row, y);
        else
            screen.Value("- - - - - -", 0, y);
    }
    DrawLegsRow6(screen);
}
