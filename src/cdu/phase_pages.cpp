// phase_pages.cpp: the flight-phase pages ECON CLB, ECON CRZ and ECON PATH
// DES (cruise altitude, target speed, speed restriction, the times to the
// next waypoint, T/C or T/D, the path deviation in descent, the pause
// prompts), and DES FORECASTS, which has no entries.
//
// The engine tick moves among these pages by itself as the phases change,
// so a page never assumes that it stays: after acting on a key it draws only
// while CduPage is still its own.
//
// Index:
//   [SECTION] Helpers
//   [SECTION] ECON CLB
//   [SECTION] ECON CRZ
//   [SECTION] ECON PATH DES
//   [SECTION] DES FORECASTS
#include "cdu/perf_pages.h"

#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>

// [SECTION] Helpers
namespace {
constexpr double kTimeMinGroundSpeed = 60;     // knots; at or below, no times on these pages
constexpr double kFpaMinGroundSpeed = 50;      // knots, the FPA line
constexpr double kFpaMaxVerticalSpeed = 200;   // ft/min: the FPA line wants a sink, or level flight
constexpr double kPathBand = 200;              // feet either side of the path shown as on it
constexpr double kFeetPerNm = 6076.12;
constexpr double kRadToDeg = 57.29577951308232;
constexpr double kRestrictionShownAbove = 1000;  // feet, SPD/REST altitude
constexpr double kRestrictionSpeedShownAbove = 50;
constexpr float kTimeLabelY = 55;              // the T/D line of ECON PATH DES
constexpr float kTimeValueY = 66;
constexpr float kPauseTextY = 137;             // the pause prompt of ECON PATH DES, small font

bool ActiveLegSet() {
    const PlanContext& pc = g_plan.context;
    return pc.ActiveLeg != kNoActiveLeg && pc.ActiveLeg >= 0 && pc.ActiveLeg <= pc.ActiveLastRow &&
           pc.ActiveLeg < kPlanRows;
}

const PlanWaypoint* ActiveRow() { return ActiveLegSet() ? &g_plan.ActivePlan[g_plan.context.ActiveLeg] : nullptr; }

const PlanWaypoint* LastRow() {
    int last = g_plan.context.ActiveLastRow;
    return last >= 0 && last < kPlanRows ? &g_plan.ActivePlan[last] : nullptr;
}

// CRZ ALT of the three pages: the value, or five boxes.
void DrawCruiseAltitude(CduScreen& screen, const char* label) {
    char value[32];
    screen.Label(label, kCduLeftLabelX, CduLabelY(1));
    int feet = g_plan.context.CruiseAltitude;
    if (feet > 0) {
        FormatCruiseAltitude(feet, value, sizeof value);
        // A value the modification changed shows in reverse video.
        if (g_plan.context.PlanState == 4 && g_plan.context.Undo.CruiseAltitude > 0)
            screen.Reverse(value, 0, CduValueY(1));
        else
            screen.Value(value, 0, CduValueY(1));
    } else {
        screen.BoxPrompt(0, CduValueY(1), 5);
    }
}

// `changed`: an undo slot of the pair is set, the value shows in reverse video.
void DrawTargetSpeed(CduScreen& screen, const char* format, int ias, double mach, bool changed) {
    char value[32];
    screen.Label("T G T    S P D", kCduLeftLabelX, CduLabelY(2));
    std::snprintf(value, sizeof value, format, ias, mach);
    if (changed && g_plan.context.PlanState == 4)
        screen.Reverse(value, 0, CduValueY(2));
    else
        screen.Value(value, 0, CduValueY(2));
}

void DrawSpeedRestriction(CduScreen& screen, double speed, double altitude) {
    char value[40];
    screen.Label("S P D / R E S T", kCduLeftLabelX, CduLabelY(3));
    if (altitude > kRestrictionShownAbove && speed > kRestrictionSpeedShownAbove)
        std::snprintf(value, sizeof value, "%3.0f / %-5.0f", speed, altitude);
    else
        std::snprintf(value, sizeof value, "- - - - - - - - - - - - - - - -");
    screen.Value(value, 0, CduValueY(3));
}

void EnterPhaseCruiseAltitude(std::string_view text) {
    int feet = ReadCruiseAltitudeEntry(text, kCruiseAltitudeCeiling);
    if (feet <= 0)
        SetCduMessage(cdu_message::kInvalidEntry);
    else
        TakeCruiseAltitude(feet);
}

// The time line to the next waypoint or to a profile point, right of row 1
// (y as given): "T O  %6s" with the waypoint, else `point_label` with the
// time to the point. `tc_form` is the T/C line's format.
void DrawTimeTo(CduScreen& screen, double point_distance, const char* point_label, bool tc_form, float label_y,
                float value_y) {
    const PlanWaypoint* next = ActiveRow();
    if (next == nullptr) return;
    char label[40];
    char value[48];
    double to_next = g_lnav.DistToActive;
    if (to_next >= 0 && (point_distance < 0 || to_next < point_distance)) {
        std::snprintf(label, sizeof label, "T O  %6s", next->Ident.data());
        if (!FormatTimeAndDistance(to_next, g_sim.ground_speed, kTimeMinGroundSpeed, false, value, sizeof value))
            return;
    } else {
        std::snprintf(label, sizeof label, "%s", point_label);
        if (!FormatTimeAndDistance(point_distance, g_sim.ground_speed, kTimeMinGroundSpeed, tc_form, value,
                                   sizeof value))
            return;
    }
    screen.Label(label, kCduRightLabelEdge, label_y, gdi::TextAlign::Right);
    screen.Value(value, kCduRightEdge, value_y, gdi::TextAlign::Right);
}

void DrawRta(CduScreen& screen) { screen.Value("RTA >", kCduRightEdge, kPerfRow6Y, gdi::TextAlign::Right); }

void GoToRta() {
    g_smiths.CduPage = cdu_page::kProgress;
    g_smiths.progress.page = 2;
}
}  // namespace

// [SECTION] ECON CLB
void EconClbPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    AircraftProfile& profile = g_profile;
    PlanUndoSlots& undo = g_plan.context.Undo;

    // The key of this frame.
    int key = PerfLineKey();
    std::string_view text = ScratchpadText();
    if (!text.empty()) {
        if (key == 1) EnterPhaseCruiseAltitude(text);
        if (key == 2) EnterTargetSpeed(text, profile.ClimbIas, g_config.ClimbMach, undo.ClimbIas, undo.ClimbMach);
        if (key == 3) EnterSpeedRestriction(text, profile.ClbSpdRest, profile.ClbAltRest);
    }
    if (key == 4 && g_plan.context.PlanState == 4) PlanErase();
    if (key == kRightRow6Key) GoToRta();
    if (s.CduPage != cdu_page::kEconClb) return;

    // Draw.
    char label[40];
    char value[48];
    screen.Title("ECON  CLB");
    screen.Count("%d / %d", 1, 1);
    DrawCruiseAltitude(screen, "C R Z    A L T");
    DrawTargetSpeed(screen, "%3d / %.2f", profile.ClimbIas, g_config.ClimbMach,
                    undo.ClimbIas > 0 || undo.ClimbMach > 0);
    DrawSpeedRestriction(screen, profile.ClbSpdRest, profile.ClbAltRest);
    screen.Value(g_plan.context.PlanState == 4 ? "< ERASE" : "< MAX   RATE", 0, CduValueY(4));
    screen.Value("< MAX   ANGLE", 0, CduValueY(5));
    // Right of row 1: the next waypoint before T/C, or T/C itself.
    const PlanWaypoint* next = ActiveRow();
    if (g_vnav.CruiseReached == 0 && g_sim.ground_speed > kTimeMinGroundSpeed && next != nullptr) {
        double to_tc = g_plan_distances.DistToTc;
        double to_next = g_lnav.DistToActive;
        if (to_next >= 0 && to_next < to_tc) {
            std::snprintf(label, sizeof label, "A T  %6s", next->Ident.data());
            screen.Label(label, kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
            std::snprintf(value, sizeof value, "%-5.2f", next->Altitude);
            screen.Value(value, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
            DrawTimeTo(screen, to_tc, "T O   T / C", true, CduLabelY(2), CduValueY(2));
        } else {
            DrawTimeTo(screen, to_tc, "T O   T / C", true, CduLabelY(1), CduValueY(1));
        }
    }
    screen.Rule();
    DrawRta(screen);
}

// [SECTION] ECON CRZ
namespace {
void SwitchTodPause() {
    int on = g_config.PauseAtTod == 1 ? 0 : 1;
    g_config.PauseAtTod = on;
    g_config.ArmPauseAtTod = on;
}
}  // namespace

void EconCrzPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    AircraftProfile& profile = g_profile;
    PlanUndoSlots& undo = g_plan.context.Undo;

    // The key of this frame.
    int key = PerfLineKey();
    std::string_view text = ScratchpadText();
    if (!text.empty()) {
        if (key == 1) EnterPhaseCruiseAltitude(text);
        if (key == 2) EnterTargetSpeed(text, profile.CruiseIas, g_config.CruiseMach, undo.CruiseIas, undo.CruiseMach);
    }
    if (key == 3 && g_plan.context.PlanState == 4) PlanErase();
    if (key == 4) SwitchTodPause();
    if (s.CduPage != cdu_page::kEconCrz) return;

    // Draw.
    char label[40];
    char value[48];
    screen.Title("ECON  CRZ");
    screen.Count("%d / %d", 1, 1);
    DrawCruiseAltitude(screen, "C R Z    A L T    O P T / M A X");
    DrawTargetSpeed(screen, "%3d / %0.2f", profile.CruiseIas, g_config.CruiseMach,
                    undo.CruiseIas > 0 || undo.CruiseMach > 0);
    if (g_vnav.DescentActive == 0 && g_sim.ground_speed > kTimeMinGroundSpeed)
        DrawTimeTo(screen, g_plan_distances.DistToTd, "T O   T / D", false, CduLabelY(1), CduValueY(1));
    // Row 3: the actual wind on the right.
    screen.Label("T U R B    N 1                  A C T U A L    W I N D", kCduLeftLabelX, CduLabelY(3));
    screen.Value(g_plan.context.PlanState == 4 ? "< ERASE" : "< LRC", 0, CduValueY(3));
    if (g_sim.wind_speed > 0)
        std::snprintf(value, sizeof value, "%03.0f\u00B0/%3.0f", g_sim.wind_direction_display, g_sim.wind_speed);
    else
        std::snprintf(value, sizeof value, "---");
    screen.Value(value, kCduRightEdge, CduValueY(3), gdi::TextAlign::Right);
    // Row 4: the pause prompt left, the fuel expected at the destination right.
    screen.Value(g_config.PauseAtTod == 1 ? "Pause at TOD (ON) >" : "Pause at TOD (OFF)  >", 0, CduValueY(4));
    const PlanWaypoint* last = LastRow();
    if (last != nullptr) {
        std::snprintf(label, sizeof label, "F U E L    A T %s", last->Ident.data());
        screen.Label(label, kCduRightLabelEdge, CduLabelY(4), gdi::TextAlign::Right);
        double minutes = 0, fuel_left = 0;
        double d = DirectDistanceToDestination();
        if (d >= 0 && DestinationTimeAndFuel(d, g_sim.ground_speed, minutes, fuel_left)) {
            std::snprintf(value, sizeof value, "%3.1f", WeightInDisplayUnit(fuel_left) / 1000);
            screen.Value(value, kCduRightEdge, CduValueY(4), gdi::TextAlign::Right);
        }
    }
    screen.Rule();
}

// [SECTION] ECON PATH DES
namespace {
void SwitchDistancePause() {
    int on = g_config.PauseAtDistFromDestOn == 1 ? 0 : 1;
    g_config.PauseAtDistFromDestOn = on;
    g_config.ArmPauseAtDistFromDest = on;
}

void DrawPathLines(CduScreen& screen) {
    const PlanContext& pc = g_plan.context;
    const VnavState& v = g_vnav;
    char value[64];
    // WPT/ALT: the row the descent is going to.
    screen.Label("W P T / A L T", kCduRightLabelEdge, CduLabelY(3), gdi::TextAlign::Right);
    int target = pc.NextRestrictionRow;
    if (ActiveLegSet() && target >= 1 && target <= pc.ActiveLastRow && target < kPlanRows &&
        g_plan.ActivePlan[target].Altitude != kNoAltitude)
        std::snprintf(value, sizeof value, "%6s/%5.0f", g_plan.ActivePlan[target].Ident.data(),
                      g_plan.ActivePlan[target].Altitude);
    else
        std::snprintf(value, sizeof value, "- - - - - - / - - - - - -");
    screen.Value(value, kCduRightEdge, CduValueY(3), gdi::TextAlign::Right);
    // VERT DEV: above or below the path by more than the band.
    screen.Label("V E R T  D E V", kCduRightLabelEdge, CduLabelY(4), gdi::TextAlign::Right);
    double deviation = g_sim.indicated_altitude.now - v.PathAltitude;
    if (v.DescentActive == 1 && v.PathDeviationValid == 1 && deviation > kPathBand)
        std::snprintf(value, sizeof value, "%5.0f HI", deviation);
    else if (v.DescentActive == 1 && v.PathDeviationValid == 1 && deviation < -kPathBand)
        std::snprintf(value, sizeof value, "%5.0f LO", -deviation);
    else
        std::snprintf(value, sizeof value, "----  --");
    screen.Value(value, kCduRightEdge, CduValueY(4), gdi::TextAlign::Right);
    // FPA, V/B and V/S: the flown angle, the angle to the target, the rate asked for.
    screen.Label("F P A  V / B        V / S", kCduRightLabelEdge, CduLabelY(5), gdi::TextAlign::Right);
    double vs = g_sim.vertical_speed.now;
    double gs = g_sim.ground_speed;
    if (vs < kFpaMaxVerticalSpeed && v.DescentActive == 1 && gs > kFpaMinGroundSpeed && ActiveLegSet()) {
        double fpa = std::atan2(-vs, gs * kFeetPerNm / 60) * kRadToDeg;
        double to_lose = g_sim.indicated_altitude.now - v.TargetAltitude;
        double vb = v.TargetDistance > 0 ? std::atan2(to_lose, v.TargetDistance * kFeetPerNm) * kRadToDeg : 0;
        std::snprintf(value, sizeof value, "%2.1f   %2.1f     %4.0f", fpa, vb, v.RequiredVs);
        screen.Value(value, kCduRightEdge, CduValueY(5), gdi::TextAlign::Right);
    }
}
}  // namespace

void EconPathDesPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    AircraftProfile& profile = g_profile;
    PlanUndoSlots& undo = g_plan.context.Undo;

    // The key of this frame.
    int key = PerfLineKey();
    std::string_view text = ScratchpadText();
    if (!text.empty()) {
        if (key == 2)
            EnterTargetSpeed(text, profile.DescentIas, g_config.DescentMach, undo.DescentIas, undo.DescentMach);
        if (key == 3) EnterSpeedRestriction(text, profile.DescSpdRest, profile.DescAltRest);
    }
    if (key == 4) SwitchDistancePause();
    if (key == 5 && g_plan.context.PlanState == 4) PlanErase();
    if (key == kRightRow6Key) GoToRta();
    if (s.CduPage != cdu_page::kEconPathDes) return;

    // Draw.
    char label[40];
    char value[64];
    screen.Title("ECON  PATH  DES");
    screen.Count("%d / %d", 1, 1);
    // E/D ALT: the last entry's altitude; right of it the active entry's.
    screen.Label("E / D    A L T", kCduLeftLabelX, CduLabelY(1));
    const PlanWaypoint* last = LastRow();
    if (last != nullptr && last->Altitude != kNoAltitude) {
        std::snprintf(value, sizeof value, "%5.0f", last->Altitude);
        screen.Value(value, 0, CduValueY(1));
    }
    const PlanWaypoint* active = ActiveRow();
    if (active != nullptr) {
        std::snprintf(label, sizeof label, "A T  %6s", active->Ident.data());
        screen.Label(label, kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
        if (active->Altitude != kNoAltitude) {
            std::snprintf(value, sizeof value, "%5.0f", active->Altitude);
            screen.Value(value, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
        }
    }
    if (g_sim.ground_speed > kTimeMinGroundSpeed) {
        double to_td = g_vnav.DescentActive == 1 ? -1 : g_plan_distances.DistToTd;
        DrawTimeTo(screen, to_td, "T O   T / D", false, kTimeLabelY, kTimeValueY);
    }
    DrawTargetSpeed(screen, "%3d / %.2f", profile.DescentIas, g_config.DescentMach,
                    undo.DescentIas > 0 || undo.DescentMach > 0);
    DrawSpeedRestriction(screen, profile.DescSpdRest, profile.DescAltRest);
    DrawPathLines(screen);
    // Key 4: the pause at a distance before the destination.
    std::snprintf(value, sizeof value,
                  g_config.PauseAtDistFromDestOn == 1 ? "PAUSE %d NM From (%s)(ON)" : "PAUSE %d NM From (%s)(OFF)",
                  g_config.PauseAtDistFromDest, last != nullptr ? last->Ident.data() : "");
    screen.Label(value, 0, kPauseTextY);
    if (g_plan.context.PlanState == 4) screen.Value("< ERASE", 0, CduValueY(5));
    screen.Rule();
    DrawRta(screen);
}

// [SECTION] DES FORECASTS
void DesForecastsPage(CduScreen& screen) {
    screen.Title("DES  FORECASTS");
    screen.Count("%d / %d", 1, 1);
    screen.Label("T R A N S    L V L               T A I    O N / O F F", kCduLeftLabelX, CduLabelY(1));
    screen.Value("- - - - -                   - - - / - - -", 0, CduValueY(1));
    screen.Label("C A B I N    R A T E          I S A   D E V / Q N H", kCduLeftLabelX, CduLabelY(2));
    screen.Value("- - - -                      - - - / - - - -", 0, CduValueY(2));
    screen.Label("A L T", kCduLeftLabelX, CduLabelY(3));
    screen.Label("W I N D", kCduRightLabelEdge, CduLabelY(3), gdi::TextAlign::Right);
    screen.Label("D I R / S P D", kCduRightLabelEdge, CduLabelY(3) + 8, gdi::TextAlign::Right);
    for (int row = 3; row <= 5; ++row) {
        screen.Value("- - - - -", 0, CduValueY(row));
        screen.Value("- - - \u00B0/ - - -", kCduRightEdge, CduValueY(row), gdi::TextAlign::Right);
    }
    screen.Rule();
}
