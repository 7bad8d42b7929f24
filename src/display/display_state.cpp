// display_state.cpp: the displays' modes, range ladders and map switches, and
// the operations every control shares to change them.
//
// Index:
//   [SECTION] Range ladders
//   [SECTION] Mode stepping
//   [SECTION] Common switches
//   [SECTION] Start-up modes and queries
#include "display/display_state.h"

#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/named_variables.h"

#include <cmath>
#include <span>

DisplayState g_display;

// [SECTION] Range ladders
namespace {
constexpr double kLadderB737[] = {0.5, 1, 2.5, 5, 10, 20, 40, 80, 160, 320};
constexpr double kLadderMd11[] = {0.5, 1, 2.5, 5, 10, 20, 40, 80, 160, 320, 640};
constexpr double kLadderDu1000[] = {0.05, 0.125, 0.25, 0.5, 1, 2.5, 5, 10, 15, 30, 60, 120, 240};
constexpr double kLadderEfs50[] = {0.5, 1, 2.5, 5, 12.5, 25, 40, 80, 160};  // wraps to 0.5
constexpr double kLadderProline4[] = {5, 10, 20, 40, 80, 160, 320};        // wraps to 5

// How one family's range steps: its ladder, whether the top wraps to the
// bottom, and the range at or below which MinMapRange limits a step down
// (0: the family ignores that option).
struct Ladder {
    std::span<const double> rungs;
    bool wraps;
    double min_range_gate;  // nm
};

// The rung a range stands on: the first at or above it; ranges off the
// ladder (set through a variable) step from their nearest rung.
int RungOf(std::span<const double> rungs, double range) {
    for (int i = 0; i < static_cast<int>(rungs.size()); ++i)
        if (rungs[static_cast<size_t>(i)] >= range - 1e-9) return i;
    return static_cast<int>(rungs.size()) - 1;
}

double StepUp(const Ladder& ladder, double range) {
    int i = RungOf(ladder.rungs, range);
    int top = static_cast<int>(ladder.rungs.size()) - 1;
    if (i >= top) return ladder.wraps ? ladder.rungs[0] : ladder.rungs[static_cast<size_t>(top)];
    return ladder.rungs[static_cast<size_t>(i + 1)];
}

double StepDown(const Ladder& ladder, double range) {
    int i = RungOf(ladder.rungs, range);
    if (i <= 0) return ladder.rungs[0];
    double next = ladder.rungs[static_cast<size_t>(i - 1)];
    // Below the gate the option has its say: the step goes ahead only if
    // MinMapRange allows the new range.
    if (ladder.min_range_gate > 0 && range <= ladder.min_range_gate + 1e-9 && g_config.MinMapRange > next + 1e-9)
        return range;
    return next;
}

struct RangeSlot {
    double* range;
    Ladder ladder;
};

std::array<RangeSlot, 7> RangeSlots() {
    DisplayState& d = g_display;
    return {{
        {&d.b737_range, {kLadderB737, false, 10}},
        {&d.md11_range, {kLadderMd11, false, 10}},
        {&d.du1000_range, {kLadderDu1000, false, 15}},
        {&d.efs50_range, {kLadderEfs50, true, 0}},
        {&d.p1000_range, {kLadderEfs50, true, 0}},
        {&d.md80_range, {kLadderB737, false, 10}},
        {&d.proline4_range, {kLadderProline4, true, 0}},
    }};
}
}  // namespace

// Every display steps together, each on its own ladder, whether or not it
// is on the panel.
void RangeUp() {
    for (RangeSlot& slot : RangeSlots()) *slot.range = StepUp(slot.ladder, *slot.range);
    g_display.c17_range = StepUp({kLadderB737, false, 10}, g_display.c17_range);
}

void RangeDown() {
    for (RangeSlot& slot : RangeSlots()) *slot.range = StepDown(slot.ladder, *slot.range);
    g_display.c17_range = StepDown({kLadderB737, false, 10}, g_display.c17_range);
}

void SetB737Range(double range) {
    if (!std::isfinite(range) || range <= 0) return;
    g_display.b737_range = kLadderB737[static_cast<size_t>(RungOf(kLadderB737, range))];
}

// [SECTION] Mode stepping
namespace {
// Steps along a fixed order of modes; `wraps` joins its ends.
int StepInOrder(std::span<const int> order, int mode, int direction, bool wraps) {
    int n = static_cast<int>(order.size());
    int at = 0;
    for (int i = 0; i < n; ++i)
        if (order[static_cast<size_t>(i)] == mode) at = i;
    int next = at + (direction > 0 ? 1 : -1);
    if (next >= n) next = wraps ? 0 : n - 1;
    if (next < 0) next = wraps ? n - 1 : 0;
    return order[static_cast<size_t>(next)];
}
}  // namespace

void StepMode(int direction, int display) {
    DisplayState& d = g_display;
    bool all = display == kStepAllDisplays;
    if (all || display == kStepB737) {
        d.b737_mode += direction > 0 ? 1 : -1;
        if (d.b737_mode < kB737ModeNav) d.b737_mode = kB737ModeNav;
        if (d.b737_mode > kB737ModePlan) d.b737_mode = kB737ModePlan;
    }
    if (all || display == kStepEfs50) {
        if (direction < 0) {
            if (d.efs50_nav_mode == 2) d.efs50_nav_mode = 1;
            else if (d.efs50_hsi_mode > 1) --d.efs50_hsi_mode;
        } else {
            if (d.efs50_hsi_mode < 7) ++d.efs50_hsi_mode;
            else if (d.efs50_nav_mode == 1) d.efs50_nav_mode = 2;
        }
    }
    if (all || display == kStepDu1000) {
        static constexpr int kOrder[] = {0, 1, 3, 2};
        d.du1000_mode = StepInOrder(kOrder, d.du1000_mode, direction, false);
    }
    if (all || display == kStepProline4) {
        static constexpr int kUp[] = {0, 3, 1, 2};
        d.proline4_mode = StepInOrder(kUp, d.proline4_mode, direction, true);
        // Modes 0 and 1 keep the radius of the last map mode.
        if (d.proline4_mode == 2) d.proline4_radius = 70;
        if (d.proline4_mode == 3) d.proline4_radius = 140;
    }
    if (all || display == kStepMd80) {
        static constexpr int kOrder[] = {0, 1, 3, 2};
        d.md80_mode = StepInOrder(kOrder, d.md80_mode, direction, false);
    }
}

// [SECTION] Common switches
namespace {
// Each family's flag flips; the variable takes the B737's new value.
template <typename Field>
int FlipEverywhere(Field field) {
    for (MapSwitches& s : g_display.switches) s.*field = (s.*field) != 0 ? 0 : 1;
    return g_display.switches[0].*field;
}
}  // namespace

// The P1000 MFD keeps its copies apart (its own panel flips them alone); the
// common switches flip them with the others.
void ToggleMapAirports() {
    g_display.p1000_airports = g_display.p1000_airports != 0 ? 0 : 1;
    SetNdVariable("orb_nd_apt", FlipEverywhere(&MapSwitches::airports));
}
void ToggleMapNavaids() {
    g_display.p1000_navaids = g_display.p1000_navaids != 0 ? 0 : 1;
    SetNdVariable("orb_nd_nav", FlipEverywhere(&MapSwitches::navaids));
}
void ToggleMapIntersections() {
    g_display.p1000_intersections = g_display.p1000_intersections != 0 ? 0 : 1;
    SetNdVariable("orb_nd_int", FlipEverywhere(&MapSwitches::intersections));
}

void ToggleTraffic() {
    SetNdVariable("orb_nd_tcas", FlipEverywhere(&MapSwitches::traffic));
    DisplayState& d = g_display;
    d.p1000_traffic = d.p1000_traffic != 0 ? 0 : 1;
    if (d.efs50_hsi_mode == 8) {
        d.efs50_hsi_mode = d.efs50_stored_hsi_mode;
    } else {
        d.efs50_stored_hsi_mode = d.efs50_hsi_mode;
        d.efs50_hsi_mode = 8;
    }
}

void ToggleAtcBoundaries() {
    g_display.AtcBoundariesShown = g_display.AtcBoundariesShown != 0 ? 0 : 1;
    g_display.md80_boundaries_lamp = g_display.AtcBoundariesShown;
}

// [SECTION] Start-up modes and queries
void ApplyDisplayStartModes() {
    DisplayState& d = g_display;
    const AircraftProfile& p = g_profile;
    d.b737_mode = p.HWB737NDMode;
    d.md11_mode = p.HWMD11NDMode;
    // A profile that starts in PLAN starts with the PLAN button's radius.
    d.md11_radius = d.md11_mode == kMd11ModePlan ? kMd11PlanRadius : kMd11MapRadius;
    d.du1000_mode = p.DU1000EHSIMode;
    d.efs50_hsi_mode = p.EFS50HsiMode;
    d.efs50_stored_hsi_mode = p.EFS50HsiMode;
    d.efs50_nav_mode = p.EFS50NavMode;
    d.md80_mode = p.MD80EHSIMode;
    d.proline4_mode = p.PROLINE4MFDMode;
}

bool AnyNdInPlanMode() {
    const DisplayState& d = g_display;
    return d.b737_mode == kB737ModePlan || d.md11_mode == kMd11ModePlan || d.p1000_plan == 1;
}

void Efs50RangeKey(int direction) {
    DisplayState& d = g_display;
    if (d.efs50_hsi_mode != 8) {
        if (direction > 0) RangeUp();
        else RangeDown();
        return;
    }
    // Traffic: up 2, 5, 10, 20, 40, 2; down the other way; a value off the
    // list goes to 2 (up) or 40 (down).
    const auto& r = kEfs50TrafficRanges;
    int n = static_cast<int>(r.size());
    int at = -1;
    for (int i = 0; i < n; ++i)
        if (d.efs50_traffic_range == r[static_cast<size_t>(i)]) at = i;
    if (at < 0) d.efs50_traffic_range = direction > 0 ? r.front() : r.back();
    else d.efs50_traffic_range = r[static_cast<size_t>((at + (direction > 0 ? 1 : n - 1)) % n)];
}
