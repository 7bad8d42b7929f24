// rte_hold_page.cpp: RTE HOLD, one page for each hold of the plan: its fix,
// the inbound course and turn direction, the leg by time or by distance, the
// best holding speed; NEXT HOLD to place another, EXIT HOLD to take this
// one out at the next EXEC.
//
// Index:
//   [SECTION] Entries
//   [SECTION] RTE HOLD page
#include "cdu/route_pages.h"

#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

// [SECTION] Entries
namespace {
constexpr double kCourseLimit = 361;          // inbound courses run 0 up to but not 361
constexpr double kNoEtaSpeed = 60;            // knots; at or below, no time is given
constexpr float kRow6Y = 198;

HoldRecord* HoldOfPage(int page) {
    if (page < 1 || page > g_holds.HoldCount || page > kHoldLimit) return nullptr;
    return &g_holds.HoldTable[static_cast<size_t>(page)];
}

// A hold's data is the plan's: an active plan becomes modified.
void HoldChanged() {
    BeginPlanEdit();
    StepAfterPlanChange();
    ClearScratchpad();
}

// "090/R": the inbound course, "/", and the turn's side.
void EnterCourseAndDirection(HoldRecord& hold, std::string_view text) {
    size_t slash = text.find('/');
    bool good = slash != std::string_view::npos && slash > 0 && slash + 1 < text.size();
    double course = good ? ReadNumber(text.substr(0, slash)) : -1;
    char side = good ? text[slash + 1] : 0;
    if (!good || course < 0 || course >= kCourseLimit || (side != 'L' && side != 'R')) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    hold.InboundCourse = course;
    hold.TurnRight = side == 'R' ? 1 : 0;
    HoldChanged();
}

// The leg by time (mode 1) or by distance (mode 2): the last entry decides.
void EnterLeg(HoldRecord& hold, std::string_view text, int mode) {
    double value = ReadNumber(text);
    if (value <= 0) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    if (mode == 1)
        hold.LegMinutes = value;
    else
        hold.LegDistance = value;
    hold.LegMode = mode;
    HoldChanged();
}

// The hold of this page goes at the next EXEC.
void ExitHold(const HoldRecord& hold) {
    SmithsCduState& s = g_smiths;
    BeginPlanEdit();
    s.HoldDeletePending = 1;
    s.HoldDeleteRow = hold.ActiveRow;
    if (hold.ModRow >= 0 && hold.ModRow < kPlanRows) g_plan.ModPlan[hold.ModRow].HoldIndex = 0;
    if (g_plan.context.PlanState == 3) PlanStateStep();
    s.LegsMode = 0;
    s.CduPage = cdu_page::kRteLegs;
}

// The fix's ETA: "%02.0f%02.0fZ" (or "L"), no time at a crawl.
void FixEta(const HoldRecord& hold, char* out, size_t size) {
    // The fix in the plan the hold hangs on.
    double distance = 0, bearing = 0;
    const PlanContext& pc = g_plan.context;
    if (hold.ModRow >= 0 && hold.ModRow < kPlanRows && pc.PlanState == 4) {
        const PlanWaypoint& fix = g_plan.ModPlan[hold.ModRow];
        GreatCircle(g_sim.latitude, g_sim.longitude, fix.Latitude, fix.Longitude, distance, bearing);
    } else if (hold.ActiveRow >= 0 && hold.ActiveRow < kPlanRows) {
        const PlanWaypoint& fix = g_plan.ActivePlan[hold.ActiveRow];
        GreatCircle(g_sim.latitude, g_sim.longitude, fix.Latitude, fix.Longitude, distance, bearing);
    }
    if (g_sim.ground_speed <= kNoEtaSpeed) {
        std::snprintf(out, size, "- - - -");
        return;
    }
    bool local = g_config.DispETALocalTime == 1;
    double ahead = distance / g_sim.ground_speed * 60;
    double hours = std::floor(ahead / 60);
    double minutes = std::floor((local ? g_sim.local_minute : g_sim.zulu_minute) + ahead - hours * 60);
    hours += local ? g_sim.local_hour : g_sim.zulu_hour;
    if (minutes >= 60) {
        minutes -= 60;
        hours += 1;
    }
    if (hours >= 24) hours -= 24;
    std::snprintf(out, size, "%02.0f%02.0f%s", hours, minutes, local ? "L" : "Z");
}
}  // namespace

// [SECTION] RTE HOLD page
void RteHoldPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    int state = g_plan.context.PlanState;
    int holds = std::clamp(g_holds.HoldCount, 0, kHoldsPerPlan);
    StepPages(s.hold, std::max(1, holds));

    // The key of this frame, on the hold of the page.
    HoldRecord* hold = HoldOfPage(s.hold.page);
    int key = s.LineSelectLatch;
    std::string_view text = ScratchpadText();
    if (key >= 1 && key <= 10 && DeleteArmed()) {
        SetCduMessage(cdu_message::kInvalidDelete);
    } else if (hold != nullptr && !text.empty()) {
        if (key == 3) EnterCourseAndDirection(*hold, text);
        if (key == 4) EnterLeg(*hold, text, 1);
        if (key == 5) EnterLeg(*hold, text, 2);
    }
    if (key == kLeftRow6Key) {
        if (state == 4) {
            PlanErase();
        } else if (holds < kHoldsPerPlan) {
            // NEXT HOLD: the LEGS page in hold mode places it.
            s.LegsMode = 2;
            s.CduPage = cdu_page::kRteLegs;
        }
    }
    if (key == kRightRow6Key && hold != nullptr && holds >= 1 && holds < kHoldsPerPlan) ExitHold(*hold);
    if (s.CduPage != cdu_page::kRteHold) return;

    // Draw.
    state = g_plan.context.PlanState;
    holds = std::clamp(g_holds.HoldCount, 0, kHoldsPerPlan);
    s.hold.count = std::max(1, holds);
    if (s.hold.page > s.hold.count) s.hold.page = s.hold.count;
    hold = HoldOfPage(s.hold.page);
    screen.Title("RTE        HOLD");
    screen.Count("%d / %d", s.hold.page, s.hold.count);
    char value[48];
    screen.Label("F I X", kCduLeftLabelX, CduLabelY(1));
    screen.Value(hold != nullptr && !TextOf(hold->Ident).empty() ? TextOf(hold->Ident) : "- - -", 0, CduValueY(1));
    screen.Label("Q U A D / R A D I A L", kCduLeftLabelX, CduLabelY(2));
    screen.Value(". . / . . .", 0, CduValueY(2));
    screen.Label("F I X    E T A", kCduRightLabelEdge, CduLabelY(2), gdi::TextAlign::Right);
    if (hold != nullptr) {
        FixEta(*hold, value, sizeof value);
        screen.Value(value, kCduRightEdge, CduValueY(2), gdi::TextAlign::Right);
    }
    screen.Label("I N B D    C R S / D I R", kCduLeftLabelX, CduLabelY(3));
    if (hold != nullptr) {
        std::snprintf(value, sizeof value, hold->TurnRight == 1 ? "%03.0f /  R  T U R N" : "%03.0f /  L  T U R N",
                      hold->InboundCourse);
        screen.Value(value, 0, CduValueY(3));
    }
    screen.Label("L E G  T I M E", kCduLeftLabelX, CduLabelY(4));
    if (hold != nullptr && hold->LegMode == 1)
        std::snprintf(value, sizeof value, "%1.1f   M I N", hold->LegMinutes);
    else
        std::snprintf(value, sizeof value, "-.-   M I N");
    screen.Value(value, 0, CduValueY(4));
    screen.Label("L E G    D I S T", kCduLeftLabelX, CduLabelY(5));
    if (hold != nullptr && hold->LegMode == 2)
        std::snprintf(value, sizeof value, "%2.1f - N M", hold->LegDistance);
    else
        std::snprintf(value, sizeof value, "--.-  - N M");
    screen.Value(value, 0, CduValueY(5));
    screen.Label("E F C    T I M E", kCduRightLabelEdge, CduLabelY(3), gdi::TextAlign::Right);
    screen.Value("- - - -", kCduRightEdge, CduValueY(3), gdi::TextAlign::Right);
    screen.Label("H O L D    A V A I L", kCduRightLabelEdge, CduLabelY(4), gdi::TextAlign::Right);
    screen.Label("B E S T    S P E E D", kCduRightLabelEdge, CduLabelY(5), gdi::TextAlign::Right);
    std::snprintf(value, sizeof value, "%3d", g_profile.BestHoldIas);
    screen.Value(value, kCduRightEdge - 30, CduValueY(5), gdi::TextAlign::Right);
    screen.Label("K T", kCduRightLabelEdge, CduValueY(5) + 4, gdi::TextAlign::Right);
    screen.Rule();
    if (state == 4)
        screen.Value("< ERASE", 0, kRow6Y);
    else if (holds < kHoldsPerPlan)
        screen.Value("< NEXT HOLD", 0, kRow6Y);
    screen.Value("EXIT HOLD >", kCduRightEdge, kRow6Y, gdi::TextAlign::Right);
}
