// perf_init_pages.cpp: PERF INIT (weights, fuel, cost index, cruise
// altitude, cruise wind and temperature, transition altitude) and PERF
// LIMITS (the speed and Mach ranges of climb, cruise and descent), and the
// entry rules the performance pages share.
//
// Weights are typed in thousands of the display unit and kept in pounds.
// Cruise altitude and cost index are plan data: they have undo slots and an
// active plan becomes modified. Fuel, wind, temperatures and the transition
// altitude change at once.
//
// Index:
//   [SECTION] Shared entry rules
//   [SECTION] Shared lines
//   [SECTION] PERF INIT entries
//   [SECTION] PERF LIMITS entries
//   [SECTION] PERF INIT and PERF LIMITS page
#include "cdu/perf_pages.h"

#include "cdu/route_pages.h"
#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/performance.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {
constexpr int kHundredsBelow = 1000;           // an altitude below this is in hundreds of feet
constexpr double kWeightEntryLimit = 1000;     // thousands: 1000 or more is refused
constexpr double kWeightLimitPounds = 2000000; // pounds: more is refused
constexpr double kKilogramsToPounds = 2.20462262;
constexpr int kCostIndexMin = -1;
constexpr int kCostIndexMax = 200;
constexpr size_t kWindSlashAt = 3;             // "270/35": the "/" is the fourth character
constexpr size_t kWindMinLength = 5;
constexpr double kTargetSpeedMin = 50;         // knots, target speed entries
constexpr double kTargetSpeedMax = 500;
constexpr double kTargetMachMax = 4;
constexpr double kRestrictionSpeedMin = 50;    // knots, SPD/REST
constexpr double kRestrictionAltitudeMin = 1000;  // feet, SPD/REST
constexpr size_t kRestrictionSlashFrom = 3;    // the "/" is not before the fourth character
constexpr size_t kLimitShortLength = 6;        // "250/.8": filled up with "00"
constexpr size_t kLimitMidLength = 7;          // "250/.78": filled up with "0"
constexpr size_t kLimitLongLength = 8;         // "250/.780"
constexpr double kMachThousandths = 1000;
}  // namespace

// [SECTION] Shared entry rules
int ReadCruiseAltitudeEntry(std::string_view text, int ceiling) {
    // A leading "FL" goes; what stands behind the number is ignored.
    if (text.size() >= 2 && text[0] == 'F' && text[1] == 'L') text.remove_prefix(2);
    int feet = ReadInteger(text);
    if (feet <= 0) return 0;
    if (ceiling > 0 && feet >= ceiling) return 0;
    if (feet < kHundredsBelow) feet *= 100;
    return feet;
}

int PerfLineKey() {
    int key = g_smiths.LineSelectLatch;
    return DeleteArmed() && key >= 1 && key <= 10 ? 0 : key;
}

bool ZeroWrittenOut(std::string_view text, double value) { return value != 0 || text == "0"; }

void PerfPlanDataChanged() {
    BeginPlanEdit();
    if (g_plan.context.PlanState == 3) PlanStateStep();
}

void TakeCruiseAltitude(int feet) {
    PlanContext& pc = g_plan.context;
    // The committed value is what ERASE brings back: a second change before
    // EXEC keeps the slot of the first.
    if (pc.Undo.CruiseAltitude <= 0 && pc.CruiseAltitude > 0 && pc.CruiseAltitude != feet)
        pc.Undo.CruiseAltitude = pc.CruiseAltitude;
    pc.CruiseAltitude = feet;
    PerfPlanDataChanged();
    PredictProfile(feet, 1);
    ClearScratchpad();
}

bool EnterTargetSpeed(std::string_view text, int& ias, double& mach, int& ias_undo, double& mach_undo) {
    if (text.empty()) return true;
    size_t slash = text.find('/');
    bool has_speed = slash != 0;
    bool has_mach = slash != std::string_view::npos;
    // Each part read as atof/atoi reads it, each within its range.
    int speed = has_speed ? ReadInteger(text.substr(0, has_mach ? slash : text.size())) : 0;
    double new_mach = has_mach ? ReadNumber(text.substr(slash + 1)) : 0;
    bool speed_good = !has_speed || (speed >= kTargetSpeedMin && speed <= kTargetSpeedMax);
    bool mach_good = !has_mach || (new_mach >= 0 && new_mach <= kTargetMachMax);
    if (!speed_good || !mach_good) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return false;
    }
    // The committed values go to the undo slots, once per modification.
    if (has_speed) {
        if (ias_undo <= 0) ias_undo = ias;
        ias = speed;
    }
    if (has_mach) {
        if (mach_undo <= 0) mach_undo = mach;
        mach = new_mach;
    }
    PerfPlanDataChanged();
    ClearScratchpad();
    return true;
}

bool EnterSpeedRestriction(std::string_view text, double& speed, double& altitude) {
    size_t slash = text.find('/');
    bool good = slash != std::string_view::npos && slash >= kRestrictionSlashFrom;
    double new_speed = good ? ReadNumber(text.substr(0, slash)) : 0;
    double new_altitude = good ? ReadNumber(text.substr(slash + 1)) : 0;
    if (!good || new_speed < kRestrictionSpeedMin || new_altitude < kRestrictionAltitudeMin) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return false;
    }
    speed = new_speed;
    altitude = new_altitude;
    ClearScratchpad();
    return true;
}

// [SECTION] Shared lines
void FormatCruiseAltitude(int feet, char* out, size_t size) {
    if (feet <= 0) {
        if (size > 0) out[0] = 0;
        return;
    }
    if (feet > g_config.TransAlt)
        std::snprintf(out, size, "FL%03d", feet / 100);
    else
        std::snprintf(out, size, "%5d", feet);
}

bool FormatTimeAndDistance(double distance_nm, double ground_speed, double min_ground_speed, bool tc_form, char* out,
                           size_t size) {
    if (size > 0) out[0] = 0;
    if (ground_speed <= min_ground_speed || distance_nm < 0) return false;
    // Time ahead, whole hours and the remainder in minutes.
    double ahead = distance_nm / ground_speed * 60;
    if (!std::isfinite(ahead)) return false;
    double hours_ahead = std::floor(ahead / 60);
    double minutes_ahead = ahead - hours_ahead * 60;
    // From the simulator's clock; the tenth is a real tenth of a minute of the
    // arrival, the clock's seconds counted.
    bool local = g_config.DispETALocalTime == 1;
    const SimState& s = g_sim;
    double arrival = (local ? s.local_minute : s.zulu_minute) + s.local_second / 60 + minutes_ahead;
    double minutes = std::floor(arrival);
    double tenth = std::floor((arrival - minutes) * 10);
    double hours = (local ? s.local_hour : s.zulu_hour) + hours_ahead;
    if (minutes >= 60) {  // the clock's minute and the remainder are each below 60
        minutes -= 60;
        hours += 1;
    }
    hours = std::fmod(hours, 24);
    const char* zone = local ? "L" : "Z";
    if (tc_form)
        std::snprintf(out, size, "%02.0f%02.0f.%1.0f%s / %.1f", hours, minutes, tenth, zone, distance_nm);
    else
        std::snprintf(out, size, "%02.0f%02.0f.%1.0f%s/%.0f NM", hours, minutes, tenth, zone, distance_nm);
    return true;
}

bool TakeoffFlapsListed(int flaps) {
    char item[16];
    std::snprintf(item, sizeof item, ",%d,", flaps);
    std::string_view list = TextOf(g_profile.TOFLAPSRANGE);
    // The list may come without its leading comma.
    if (list.find(item) != std::string_view::npos) return true;
    return list.substr(0, list.find(',') + 1) == std::string_view(item + 1);
}

// [SECTION] PERF INIT entries
namespace {
// A weight typed in thousands of the display unit, in pounds; 0 when
// refused. `capped`: 1000 thousands or more is refused before conversion (ZFW).
double ReadWeightEntry(std::string_view text, bool capped) {
    double thousands = ReadNumber(text);
    if (thousands <= 0 || (capped && thousands >= kWeightEntryLimit)) return 0;
    double weight = thousands * 1000;
    if (TextOf(g_config.WeightUnit) == "KGS") weight *= kKilogramsToPounds;
    if (weight > kWeightLimitPounds) return 0;
    return weight;
}

void EnterZeroFuelWeight(std::string_view text) {
    double pounds = ReadWeightEntry(text, true);
    if (pounds <= 0) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    PerformanceState& p = g_performance;
    p.ZeroFuelWeight = pounds;
    p.GrossWeight = pounds + FuelOnBoardPounds();
    ClearScratchpad();
}

void EnterReserves(std::string_view text) {
    double pounds = ReadWeightEntry(text, false);
    if (pounds <= 0) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    g_performance.FuelReserve = pounds;
    ClearScratchpad();
}

void EnterCostIndex(std::string_view text) {
    int value = ReadInteger(text);
    if (value < kCostIndexMin || value > kCostIndexMax || !ZeroWrittenOut(text, value)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    AircraftProfile& profile = g_profile;
    PlanUndoSlots& undo = g_plan.context.Undo;
    if (undo.CostIndex < 0) undo.CostIndex = profile.CostIndex;
    profile.CostIndex = value;
    ApplyCostIndex();
    PerfPlanDataChanged();
    ClearScratchpad();
}

void EnterCruiseWind(std::string_view text) {
    if (text.size() < kWindMinLength || text[kWindSlashAt] != '/') {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    PerformanceState& p = g_performance;
    p.CruiseWindDirection = ReadInteger(text.substr(0, kWindSlashAt));
    p.CruiseWindSpeed = ReadInteger(text.substr(kWindSlashAt + 1));
    ClearScratchpad();
}

// One side of the temperature pair; the other follows.
void EnterTemperature(std::string_view text, bool isa_side) {
    double value = ReadNumber(text);
    if (!ZeroWrittenOut(text, value)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    if (isa_side)
        EnterIsaDeviation(value);
    else
        EnterCruiseOat(value);
    ClearScratchpad();
}

void EnterTransitionAltitude(std::string_view text) {
    int feet = ReadInteger(text);
    if (feet <= 0) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    g_config.TransAlt = feet;
    ClearScratchpad();
}

void PerfInitKey(int key, std::string_view text) {
    if (key == kLeftRow6Key || key == kRightRow6Key || text.empty()) return;
    switch (key) {
    case 3: EnterZeroFuelWeight(text); return;
    case 4: EnterReserves(text); return;
    case 5: EnterCostIndex(text); return;
    case 6: {
        int feet = ReadCruiseAltitudeEntry(text, 0);
        if (feet <= 0)
            SetCduMessage(cdu_message::kInvalidEntry);
        else
            TakeCruiseAltitude(feet);
        return;
    }
    case 7: EnterCruiseWind(text); return;
    case 8: EnterTemperature(text, true); return;
    case 9: EnterTemperature(text, false); return;
    case 10: EnterTransitionAltitude(text); return;
    default: return;  // lines 1 and 2 show values only
    }
}
}  // namespace

// [SECTION] PERF LIMITS entries
namespace {
struct SpeedLimit {
    double* speed;                             // knots
    double* mach;                              // fraction
};

SpeedLimit LimitOfKey(int key) {
    AircraftProfile& p = g_profile;
    switch (key) {
    case 2: return {&p.ClimbIasMin, &p.ClimbMachMin};
    case 3: return {&p.CruiseIasMin, &p.CruiseMachMin};
    case 4: return {&p.DescentIasMin, &p.DescentMachMin};
    case 7: return {&p.ClimbIasMax, &p.ClimbMachMax};
    case 8: return {&p.CruiseIasMax, &p.CruiseMachMax};
    case 9: return {&p.DescentIasMax, &p.DescentMachMax};
    default: return {nullptr, nullptr};
    }
}

// "250/.780": three digits of speed, "/.", three digits of Mach in
// thousandths; shorter Mach digits are filled up with zeros.
void EnterSpeedLimit(const SpeedLimit& limit, std::string_view text) {
    char filled[kLimitLongLength + 8] = {};
    std::string_view entry = text;
    if (text.size() == kLimitShortLength || text.size() == kLimitMidLength) {
        std::snprintf(filled, sizeof filled, "%.*s%s", static_cast<int>(text.size()), text.data(),
                      text.size() == kLimitShortLength ? "00" : "0");
        entry = filled;
    }
    bool good = entry.size() >= kLimitShortLength && entry.size() <= kLimitLongLength && entry[3] == '/' &&
                entry[4] == '.';
    double speed = good ? ReadInteger(entry.substr(0, 3)) : 0;
    double thousandths = good ? ReadInteger(entry.substr(5)) : 0;
    if (!good || speed == 0 || thousandths == 0) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    *limit.speed = speed;
    *limit.mach = thousandths / kMachThousandths;
    ClearScratchpad();
}

void PerfLimitsKey(int key, std::string_view text) {
    SpeedLimit limit = LimitOfKey(key);
    if (limit.speed == nullptr || text.empty()) return;
    EnterSpeedLimit(limit, text);
}

void DrawLimitLine(CduScreen& screen, double min_speed, double min_mach, double max_speed, double max_mach, float y) {
    char value[96];
    std::snprintf(value, sizeof value, "%3.0f /.%3.0f                     %3.0f / .%3.0f", min_speed,
                  min_mach * kMachThousandths, max_speed, max_mach * kMachThousandths);
    screen.Value(value, 0, y);
}
}  // namespace

// [SECTION] PERF INIT and PERF LIMITS page
namespace {
void DrawRowSix(CduScreen& screen, const char* right) {
    screen.Rule();
    screen.Value(g_plan.context.PlanState == 4 ? "< ERASE" : "< INDEX", 0, kPerfRow6Y);
    screen.Value(right, kCduRightEdge, kPerfRow6Y, gdi::TextAlign::Right);
}

void DrawPerfInit(CduScreen& screen) {
    const PerformanceState& p = g_performance;
    const PlanContext& pc = g_plan.context;
    char value[64];
    screen.Title("PERF  INIT");
    screen.Count("%d / %d", 1, kPerfPageCount);
    // Left: weights, fuel, cost index.
    screen.Label("G W  /  C R Z  C G", kCduLeftLabelX, CduLabelY(1));
    std::snprintf(value, sizeof value, "%3.1f", WeightInDisplayUnit(p.GrossWeight) / 1000);
    screen.Value(value, 0, CduValueY(1));
    screen.Label("F U E L", kCduLeftLabelX, CduLabelY(2));
    double fuel = FuelOnBoardPounds();
    if (fuel > 0) {
        std::snprintf(value, sizeof value, "%2.1f", WeightInDisplayUnit(fuel) / 1000);
        screen.Value(value, 0, CduValueY(2));
    } else {
        screen.BoxPrompt(0, CduValueY(2), 3);
    }
    screen.Label("ZFW", kCduLeftLabelX, CduLabelY(3));
    if (p.ZeroFuelWeight > 0) {
        std::snprintf(value, sizeof value, "%3.1f", WeightInDisplayUnit(p.ZeroFuelWeight) / 1000);
        screen.Value(value, 0, CduValueY(3));
    } else {
        screen.BoxPrompt(0, CduValueY(3), 4);
    }
    screen.Label("R E S E R V E S", kCduLeftLabelX, CduLabelY(4));
    if (p.FuelReserve > 0) {
        std::snprintf(value, sizeof value, "%2.1f", WeightInDisplayUnit(p.FuelReserve) / 1000);
        screen.Value(value, 0, CduValueY(4));
    } else {
        screen.BoxPrompt(0, CduValueY(4), 3);
    }
    screen.Label("C O S T   I N D E X", kCduLeftLabelX, CduLabelY(5));
    bool modified = pc.PlanState == 4;
    if (g_profile.CostIndex >= 0) {
        std::snprintf(value, sizeof value, "%3d", g_profile.CostIndex);
        if (modified && pc.Undo.CostIndex >= 0)
            screen.Reverse(value, 0, CduValueY(5));
        else
            screen.Value(value, 0, CduValueY(5));
    } else {
        screen.BoxPrompt(0, CduValueY(5), 3);
    }
    // Right: cruise altitude, wind, the temperature pair, transition altitude.
    screen.Label("C R Z   A L T", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
    if (pc.CruiseAltitude > 0) {
        FormatCruiseAltitude(pc.CruiseAltitude, value, sizeof value);
        if (modified && pc.Undo.CruiseAltitude > 0)
            screen.Reverse(value, kCduRightEdge - kReverseCharWidth * static_cast<float>(std::strlen(value)),
                           CduValueY(1));
        else
            screen.Value(value, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
    } else {
        screen.BoxPrompt(kCduRightEdge - 50, CduValueY(1), 5);
    }
    screen.Label("C R Z   W I N D", 190, 55);
    if (p.CruiseWindSpeed > 0)
        std::snprintf(value, sizeof value, "%03d\u00B0/%3d", p.CruiseWindDirection, p.CruiseWindSpeed);
    else
        std::snprintf(value, sizeof value, "- - - \u00B0 / - - -");
    screen.Value(value, kCduRightEdge, CduValueY(2), gdi::TextAlign::Right);
    if (pc.CruiseAltitude > 0) {
        screen.Label("I S A    D E V", 200, 88);
        if (p.IsaDeviation == kIsaDeviationStart)
            std::snprintf(value, sizeof value, "- - - ");
        else
            std::snprintf(value, sizeof value, "%-3.0f\u00B0F / %-3.0f\u00B0C", p.IsaDeviation * 1.8 + 32,
                          p.IsaDeviation);
        screen.Value(value, kCduRightEdge, CduValueY(3), gdi::TextAlign::Right);
        screen.Label("T / C    O A T", kCduRightLabelEdge, CduLabelY(4), gdi::TextAlign::Right);
        std::snprintf(value, sizeof value, "%-3.0f\u00B0F / %-3.0f\u00B0C", p.CruiseOat * 1.8 + 32, p.CruiseOat);
        screen.Value(value, kCduRightEdge, CduValueY(4), gdi::TextAlign::Right);
    }
    screen.Label("T R A N S   A L T", kCduRightLabelEdge, CduLabelY(5), gdi::TextAlign::Right);
    if (g_config.TransAlt > 0) {
        std::snprintf(value, sizeof value, "%5d", g_config.TransAlt);
        screen.Value(value, kCduRightEdge, CduValueY(5), gdi::TextAlign::Right);
    } else {
        screen.BoxPrompt(kCduRightEdge - 50, CduValueY(5), 5);
    }
    DrawRowSix(screen, "TAKEOFF >");
}

void DrawPerfLimits(CduScreen& screen) {
    const AircraftProfile& p = g_profile;
    screen.Title("PERF  LIMITS");
    screen.Count("%d / %d", 2, kPerfPageCount);
    screen.Label("  T I M E    E R R O R    T O L E R A N C E", 0, CduLabelY(1));
    screen.Label("   1 5    S E C    A T    R T A    W P T", 0, CduValueY(1));
    screen.Label("  M I N    S P D     - - C L B - -       M A X    S P D", 0, CduLabelY(2));
    DrawLimitLine(screen, p.ClimbIasMin, p.ClimbMachMin, p.ClimbIasMax, p.ClimbMachMax, CduValueY(2));
    screen.Label("                            - -  C R Z - -", 0, CduLabelY(3));
    DrawLimitLine(screen, p.CruiseIasMin, p.CruiseMachMin, p.CruiseIasMax, p.CruiseMachMax, CduValueY(3));
    screen.Label("                            - -  D E S - -", 0, CduLabelY(4));
    DrawLimitLine(screen, p.DescentIasMin, p.DescentMachMin, p.DescentIasMax, p.DescentMachMax, CduValueY(4));
    DrawRowSix(screen, "RTA >");
}
}  // namespace

void PerfInitPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    StepPages(s.perf, kPerfPageCount);

    // The key of this frame, on the page of the counter.
    int key = PerfLineKey();
    std::string_view text = ScratchpadText();
    bool limits = s.perf.page == 2;
    if (limits)
        PerfLimitsKey(key, text);
    else
        PerfInitKey(key, text);
    if (key == kLeftRow6Key) {
        if (g_plan.context.PlanState == 4)
            PlanErase();
        else
            s.CduPage = cdu_page::kInitRefIndex;
    }
    if (key == kRightRow6Key) {
        if (limits) {
            s.CduPage = cdu_page::kProgress;
            s.progress.page = 2;
        } else {
            s.CduPage = cdu_page::kTakeoffRef;
        }
    }
    if (s.CduPage != cdu_page::kPerfInit) return;

    // Draw.
    if (limits)
        DrawPerfLimits(screen);
    else
        DrawPerfInit(screen);
}
