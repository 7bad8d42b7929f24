// vnav.cpp: vertical guidance. The phases of the flight (climb, cruise,
// descent), the targets along the plan, top of climb and top of descent, and
// the three bugs VNAV owns on the autopilot's panel: altitude, vertical speed
// and speed (or Mach), written by key events only on a change or once for
// each segment.
//
// The phases advance whether VNAV is engaged or not; VnavOn only decides
// whether bugs are written. Own writes stamp the tick and ask the tick for a
// read-back of the bug, so that the pilot's own changes can be told apart.
//
// Index:
//   [SECTION] Helpers over the active plan
//   [SECTION] Writes to the autopilot
//   [SECTION] VnavToggle and LNAV's hand-offs
//   [SECTION] Targets: SelectVerticalTarget, FindClimbTarget
//   [SECTION] RecomputeTopOfDescent
//   [SECTION] Phase changes: VnavVerticalSteps
//   [SECTION] VnavCommand
//   [SECTION] VnavSetSpeed
//   [SECTION] Plan changes: EXEC, a new plan
#include "guidance/vnav.h"

#include "cdu/keypad.h"
#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/named_variables.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/lnav_state.h"
#include "guidance/performance.h"
#include "guidance/runway_tuning.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

VnavState g_vnav;

// [SECTION] Helpers over the active plan
namespace {
constexpr double kCruiseCaptureBand = 150;   // ft below cruise that count as there
constexpr double kAtTopOfDescent = 1.5;      // nm: the aircraft is at T/D
constexpr double kTdCheckRange = 10.0;       // nm: a waypoint passed abeam this near T/D starts the descent
constexpr int kPassedTdAngle = 20;           // degrees: the destination lies ahead along the leg
constexpr double kDestinationTargetRaise = 200;  // ft above a destination airport's elevation
constexpr double kVsStep = 100;              // ft/min: the vertical speed goes in these steps
constexpr double kClimbCatchUp = 200;        // ft/min short of the required rate before stepping up
constexpr double kClimbSpeedMargin = 5;      // kt above MinVnavClimbIas: climb speed is healthy
constexpr double kGuardRelease = 10;         // kt above MinVnavIas that end the low-speed guard
constexpr double kRisingTrend = 0.005;       // kt a tick: the speed is building
constexpr double kUnboundedRate = 99999;     // ft/min standing for a rate with no time to fly it

// Key events of the autopilot's panel.
constexpr unsigned kSetAltitude = 0x1024C;
constexpr unsigned kSetVerticalSpeed = 0x101F4;
constexpr unsigned kSetSpeed = 0x101F5;
constexpr unsigned kSetMach = 0x101F6;
constexpr unsigned kSpeedHoldOff = 0x1022E;
constexpr unsigned kMachHoldOn = 0x1017B;
constexpr unsigned kMachHoldOff = 0x1023E;
constexpr unsigned kSpeedHoldOn = 0x10163;

PlanWaypoint& Row(int i) { return g_plan.ActivePlan[static_cast<size_t>(i)]; }
int LastRow() { return g_plan.context.ActiveLastRow; }
int ActiveRow() { return g_plan.context.ActiveLeg; }
bool HasActiveLeg() {
    const PlanContext& pc = g_plan.context;
    return pc.ActiveLeg != kNoActiveLeg && pc.ActiveLastRow >= 1 && pc.ActiveLeg >= 0 && pc.ActiveLeg <= pc.ActiveLastRow;
}
bool PlanActive() { return g_plan.context.PlanState >= 3; }
double Altitude() { return g_sim.indicated_altitude.now; }
int TickStamp() { return static_cast<int>(g_sim.tick_value); }
int CruiseAltitude() { return g_plan.context.CruiseAltitude; }
bool InClimb() { return g_vnav.CruiseReached == 0; }
bool InCruise() { return g_vnav.CruiseReached == 1 && g_vnav.DescentActive == 0; }
bool InDescent() { return g_vnav.DescentActive == 1; }
bool IsRestricted(int row) { return row >= 0 && row <= LastRow() && Row(row).Restricted == 1; }
bool HasPoint(double lat, double lon) { return lat != 0 || lon != 0; }
// An altitude that is not set counts as sea level where a height is needed.
double KnownAltitude(double altitude) { return altitude == kNoAltitude ? 0.0 : altitude; }

// The length of the leg that ends at `row`: from the last row before it that
// is a waypoint of its own. A discontinuity row is no leg.
double LegLengthTo(int row) {
    if (row <= 0 || row > LastRow() || IsDiscontinuity(Row(row))) return 0;
    int from = row - 1;
    while (from > 0 && IsDiscontinuity(Row(from))) --from;
    double distance = 0, bearing = 0;
    GreatCircle(Row(from).Latitude, Row(from).Longitude, Row(row).Latitude, Row(row).Longitude, distance, bearing);
    return distance;
}

// nm along the route from the aircraft to `row` (the active row or later).
double AlongRouteTo(int row) {
    double total = std::max(0.0, g_lnav.DistToActive);
    for (int i = ActiveRow() + 1; i <= row && i <= LastRow(); ++i) total += LegLengthTo(i);
    return total;
}

// The first row after `from` (or at it, with `inclusive`) with a restriction, or the last row.
int NextRestrictionFrom(int from, bool inclusive) {
    for (int i = inclusive ? from : from + 1; i <= LastRow(); ++i)
        if (IsRestricted(i)) return i;
    return LastRow();
}

void TargetRow(int row) {
    if (row < 0 || row > LastRow()) return;
    g_vnav.TargetAltitude = Row(row).Altitude;
    g_vnav.TargetLatitude = Row(row).Latitude;
    g_vnav.TargetLongitude = Row(row).Longitude;
}

void TargetTopOfClimb() {
    g_vnav.TargetAltitude = CruiseAltitude();
    g_vnav.TargetLatitude = g_vnav.TopOfClimbLatitude;
    g_vnav.TargetLongitude = g_vnav.TopOfClimbLongitude;
}

// Height over the time to fly a distance at the present ground speed, in
// ft/min; with no distance or no speed, a rate the limits will bring back.
double RateFor(double height, double distance) {
    double ground_speed = g_sim.ground_speed;
    if (distance > 0 && ground_speed > 0) {
        double rate = height / (distance / (ground_speed / 60.0));
        if (std::isfinite(rate)) return std::clamp(rate, -kUnboundedRate, kUnboundedRate);
    }
    if (height > 0) return kUnboundedRate;
    if (height < 0) return -kUnboundedRate;
    return 0;
}

// Rounded down to a step of 100 ft/min, then held between the two limits.
int StepAndLimit(double rate, double lowest, double highest) {
    double stepped = std::floor(rate / kVsStep) * kVsStep;
    if (stepped > highest) stepped = highest;
    if (stepped < lowest) stepped = lowest;
    return static_cast<int>(stepped);
}

// Before cruise, a row at T/C or behind it belongs to the climb: its
// restriction is none of the descent's.
bool AtOrBeforeTopOfClimb(int row) {
    const VnavState& v = g_vnav;
    if (v.CruiseReached != 0 || !HasPoint(v.TopOfClimbLatitude, v.TopOfClimbLongitude)) return false;
    if (row <= g_plan_distances.TcRow) return true;
    return Row(row).Latitude == v.TopOfClimbLatitude && Row(row).Longitude == v.TopOfClimbLongitude;
}

// The CDU's active page follows the phase, as the pages are numbered.
void CduPageOnCruise() {
    if (g_smiths.CduPage == cdu_page::kEconClb) g_smiths.CduPage = cdu_page::kEconCrz;
}
void CduPageOnDescent() {
    if (g_smiths.CduPage == cdu_page::kEconClb || g_smiths.CduPage == cdu_page::kEconCrz)
        g_smiths.CduPage = cdu_page::kEconPathDes;
}

// The runway chosen for the arrival, in the destination's loaded detail.
const RunwayRecord* DestinationRunway() {
    std::string_view chosen = TextOf(g_plan.context.Selections.ArrivalRunway);
    if (chosen.empty() || chosen == kNoSelection) return nullptr;
    const AirportDetail& airport = g_airports.DestinationAirport;
    int count = std::min(airport.RunwayCount, kRunwayLimit);
    for (int i = 1; i <= count; ++i)
        if (TextOf(airport.Runways[i].Ident) == chosen) return &airport.Runways[i];
    return nullptr;
}

// [SECTION] Writes to the autopilot
// A segment asked for again (a hold's fix passed on each circuit) finds the
// bug already reading the value: nothing more is sent.
bool SpeedBugReads(int knots) {
    return g_tick.speed_marker == -999 && g_sim.mach_hold == 0 && g_vnav.LastIasSent == knots &&
           static_cast<int>(g_sim.autopilot_airspeed.now) == knots;
}

bool AltitudeBugReads(int feet) {
    return g_tick.altitude_marker == -999 && g_vnav.LastAltSeen == feet &&
           static_cast<int>(g_sim.autopilot_altitude.now) == feet;
}

void SendSpeed(double knots) {
    int value = static_cast<int>(knots);
    if (value <= 0 || SpeedBugReads(value)) return;
    TriggerKeyEvent(kSetSpeed, static_cast<UINT32>(value));
    g_vnav.LastIasSent = value;
    g_tick.speed_marker = TickStamp();
}

void SendAltitude(double feet) {
    int value = static_cast<int>(feet);
    if (AltitudeBugReads(value)) return;
    TriggerKeyEvent(kSetAltitude, static_cast<UINT32>(static_cast<int32_t>(value)));
    g_vnav.AltSetStamp = TickStamp();
    g_vnav.LastAltSeen = value;
    g_tick.altitude_marker = TickStamp();
}

void SendVerticalSpeed(int feet_per_minute) {
    TriggerKeyEvent(kSetVerticalSpeed, static_cast<UINT32>(static_cast<int32_t>(feet_per_minute)));
    g_vnav.LastVsSent = feet_per_minute;
}

// Out of Mach hold into speed hold; the descent speed follows on the next
// tick, once the simulator has changed holds.
void SpeedHoldWithDeferredDescentSpeed() {
    TriggerKeyEvent(kMachHoldOff, 0);
    TriggerKeyEvent(kSpeedHoldOn, 0);
    g_tick.speed_write_pending = 1;
    g_tick.speed_marker = TickStamp();
}

void VnavOff() {
    g_vnav.VnavOn = 0;
    g_tick.slow_refresh = 999;
    SetVnavVariable(0);
}

// A bug the pilot turned: it stands still since the sample before, no own
// write waits for its read-back, and it reads other than what was written.
bool AltitudeBugTurnedByPilot() {
    const Sampled& bug = g_sim.autopilot_altitude;
    if (g_tick.altitude_marker != -999 || g_vnav.AltSetStamp == TickStamp()) return false;
    if (g_vnav.LastAltSeen == kVnavUnknown || bug.now != bug.prev) return false;
    return static_cast<int>(bug.now) != g_vnav.LastAltSeen;
}

// The speed bug in the units of the hold in force: Mach hundredths under
// Mach hold, against the Mach last written; knots otherwise.
bool SpeedBugTurnedByPilot() {
    if (g_tick.speed_marker != -999 || g_tick.mach_write_pending > 0 || g_tick.speed_write_pending != 0) return false;
    if (g_vnav.SpdSetStamp == TickStamp()) return false;
    if (g_sim.mach_hold == 1) {
        const Sampled& mach = g_sim.autopilot_mach;
        if (g_vnav.LastMachSent == kVnavUnknown || mach.now != mach.prev) return false;
        return static_cast<int>(std::lround(mach.now * 100.0)) != g_vnav.LastMachSent;
    }
    const Sampled& ias = g_sim.autopilot_airspeed;
    if (g_vnav.LastIasSent == kVnavUnknown || ias.now != ias.prev) return false;
    return static_cast<int>(ias.now) != g_vnav.LastIasSent;
}

// The write flags start over as at engagement.
void ClearWriteFlags() {
    VnavState& v = g_vnav;
    v.SpdSetDone = 0;
    v.AltSetDone = 0;
    g_tick.hold_vnav_speed_write = 1;
    v.LastAltSeen = kVnavUnknown;
    v.LastIasSent = kVnavUnknown;
    v.LastMachSent = kVnavUnknown;
    if (g_config.VnavSetSpd == 2) g_config.VnavSetSpd = 1;
}
}  // namespace

// [SECTION] VnavToggle and LNAV's hand-offs
void VnavToggle() {
    VnavState& v = g_vnav;
    if (v.VnavOn == 0) {
        if (HasActiveLeg()) {
            v.VnavOn = 1;
            ClearWriteFlags();
        }
    } else {
        v.VnavOn = 0;
    }
    g_tick.slow_refresh = 999;
    SetVnavVariable(v.VnavOn);
}

void VnavWaypointPassedAbeam() {
    g_vnav.AltSetDone = 0;
    g_vnav.SpdSetDone = 0;
    if (InCruise()) g_vnav.TdCheck = 1;
}

void VnavChooseNextTarget() { SelectVerticalTarget(); }

void VnavRestrictionPassed() { g_vnav.RestrictionSeen = 0; }

void VnavSpeedAfterSequencing() {
    g_vnav.SpdSetDone = 0;
    VnavSetSpeed();
}

void VnavAtLastWaypoint() {
    if (g_config.VnavOffAtLastWpt == 1 && g_vnav.CruiseReached == 1 && g_vnav.VnavOn == 1) VnavOff();
}

// [SECTION] Targets: SelectVerticalTarget, FindClimbTarget
void SelectVerticalTarget() {
    VnavState& v = g_vnav;
    PlanContext& pc = g_plan.context;
    if (!HasActiveLeg()) return;
    int active = ActiveRow();
    // 1. The next restriction ahead.
    pc.NextRestrictionRow = NextRestrictionFrom(active, false);
    // 2. Preset: cruise altitude at T/C.
    TargetTopOfClimb();
    // 3.-5. By the phase the aircraft is in now.
    if (InClimb()) {
        int r = FindClimbTarget(1);
        TargetTopOfClimb();
        if (pc.NextRestrictionRow <= r) TargetRow(pc.NextRestrictionRow);
    } else if (InDescent()) {
        if (IsRestricted(active)) RecomputeTopOfDescent(1);
        TargetRow(pc.NextRestrictionRow);
    } else {
        if (IsRestricted(active)) RecomputeTopOfDescent(1);
        v.TargetLatitude = v.TopOfDescentLatitude;
        v.TargetLongitude = v.TopOfDescentLongitude;
        v.TargetAltitude = CruiseAltitude();
    }
    // 6. A destination airport is crossed 200 ft above its elevation.
    int next = pc.NextRestrictionRow;
    if (v.CruiseReached == 1 && next == LastRow() && TextOf(Row(next).WaypointType) == "APT" &&
        v.TargetAltitude != CruiseAltitude() && v.VnavOn == 1)
        v.TargetAltitude += kDestinationTargetRaise;
    // 7. A new segment: climb and descent write again, cruise holds its altitude.
    if (InCruise()) {
        v.AltSetDone = 1;
    } else {
        v.AltSetDone = 0;
        v.SpdSetDone = 0;
    }
}

int FindClimbTarget(int offset) {
    VnavState& v = g_vnav;
    int last = LastRow();
    if (!HasActiveLeg()) return std::max(last, 0);
    int row0 = std::clamp(ActiveRow() + offset, 0, last);
    double cruise = CruiseAltitude();
    // 1. Distance of row0 from the first row, in whole nm at each step.
    double total = 0;
    for (int i = 1; i <= row0; ++i) total = std::trunc(total + LegLengthTo(i));
    // 2. The last restriction below cruise altitude is the target; T/C moves
    // onto it while it lies before T/C.
    int result = -1;
    for (int i = row0; i <= last; ++i) {
        if (i > row0) total = std::trunc(total + LegLengthTo(i));
        if (Row(i).Altitude >= cruise) break;
        if (Row(i).Restricted != 1) continue;
        TargetRow(i);
        result = i;
        if (total < g_plan_distances.TcDistFromOrigin) {
            v.TopOfClimbLatitude = Row(i).Latitude;
            v.TopOfClimbLongitude = Row(i).Longitude;
            g_plan_distances.TcRow = std::max(0, i - 1);  // the distance pass measures T/C from its leg
        }
    }
    if (result >= 0) return result;
    // 3. No restriction: T/C where the climb from here reaches cruise altitude.
    double rate = std::max(1, g_profile.ClimbRate);
    double to_climb = std::max(0.0, (cruise - Altitude()) / rate * (g_profile.ClimbTas / 60.0));
    double from_lat = g_sim.latitude, from_lon = g_sim.longitude;
    int from_row = std::max(0, ActiveRow() - 1);
    double sum = 0;
    for (int i = ActiveRow(); i <= last; ++i) {
        const PlanWaypoint& to = Row(i);
        if (IsDiscontinuity(to)) continue;
        double length = 0, bearing = 0;
        GreatCircle(from_lat, from_lon, to.Latitude, to.Longitude, length, bearing);
        if (sum + length >= to_climb) {
            ProjectPoint(from_lat, from_lon, bearing, to_climb - sum, v.TopOfClimbLatitude, v.TopOfClimbLongitude);
            v.TargetLatitude = v.TopOfClimbLatitude;
            v.TargetLongitude = v.TopOfClimbLongitude;
            g_plan_distances.TcRow = from_row;
            return i;
        }
        sum += length;
        from_lat = to.Latitude;
        from_lon = to.Longitude;
        from_row = i;
    }
    // The climb outlasts the plan: T/C at its end.
    v.TopOfClimbLatitude = Row(last).Latitude;
    v.TopOfClimbLongitude = Row(last).Longitude;
    g_plan_distances.TcRow = std::max(0, last - 1);
    v.TargetLatitude = v.TopOfClimbLatitude;
    v.TargetLongitude = v.TopOfClimbLongitude;
    return last;
}

// [SECTION] RecomputeTopOfDescent
void RecomputeTopOfDescent(int from_restriction) {
    VnavState& v = g_vnav;
    if (!HasActiveLeg()) return;
    int last = LastRow();
    int active = ActiveRow();
    int start = active;
    double level;
    if (from_restriction == 1) {
        // 1. The restricted row is a level segment: cruise again at its altitude.
        level = KnownAltitude(Row(active).Altitude);
        v.DescentActive = 0;
        g_plan.context.CruiseAltitude = static_cast<int>(level);
        if (g_smiths.CduPage == cdu_page::kEconClb ||
            (g_smiths.CduPage == cdu_page::kEconPathDes && v.DescentSpeedPhase == 0))
            g_smiths.CduPage = cdu_page::kEconCrz;
        start = std::min(active + 1, last);
        // The T/D behind is no T/D of this level: the pass must not take the
        // route left to fly for a descent past it.
        v.TopOfDescentLatitude = 0;
        v.TopOfDescentLongitude = 0;
        PlanDistances();
    } else {
        // 2. The cruise level, or where the aircraft is once in cruise.
        level = v.CruiseReached == 1 ? Altitude() : CruiseAltitude();
    }
    // 3. The end of the descent: the restriction below the level nearest the start.
    int end = last;
    for (int i = last - 1; i >= start && i >= 0; --i) {
        if (Row(i).Altitude >= level || AtOrBeforeTopOfClimb(i)) break;
        if (Row(i).Restricted == 1) end = i;
    }
    // 4. The distance the descent takes.
    double rate = g_plan_distances.DescentRateInUse > 0 ? g_plan_distances.DescentRateInUse : g_profile.DescentRate;
    if (!(rate > 0)) rate = 1800;
    double needed = std::max(0.0, (level - KnownAltitude(Row(end).Altitude)) / rate * (g_profile.DescentTas / 60.0));
    // 5. Back from the end row, leg by leg.
    double sum = 0;
    double td_lat = Row(end).Latitude, td_lon = Row(end).Longitude;
    bool placed = needed <= 0;
    int later = end;
    for (int i = end - 1; i >= active && !placed; --i) {
        if (IsDiscontinuity(Row(i))) continue;
        double length = 0, bearing = 0;
        GreatCircle(Row(later).Latitude, Row(later).Longitude, Row(i).Latitude, Row(i).Longitude, length, bearing);
        if (sum + length >= needed) {
            ProjectPoint(Row(later).Latitude, Row(later).Longitude, bearing, needed - sum, td_lat, td_lon);
            placed = true;
        } else {
            sum += length;
            later = i;
        }
    }
    // 6. Past the active row: on back toward the aircraft and beyond. The
    // bearing to the active row is taken afresh: at an EXEC the tick's own
    // may still be that of the plan before, or none.
    if (!placed) {
        double to_active = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, Row(active).Latitude, Row(active).Longitude, to_active, bearing);
        double back = ModuloPositive(bearing + 180.0, 360.0);
        ProjectPoint(Row(later).Latitude, Row(later).Longitude, back, needed - sum, td_lat, td_lon);
    }
    // 7. T/D, and the distances to it.
    v.TopOfDescentLatitude = td_lat;
    v.TopOfDescentLongitude = td_lon;
    v.DescentStartAltitude = level;
    PlanDistances();
}

// [SECTION] Phase changes: VnavVerticalSteps
namespace {
// Within 150 ft below cruise altitude: the level-off is made.
void CruiseStep() {
    VnavState& v = g_vnav;
    PlanContext& pc = g_plan.context;
    if (v.CruiseReached != 0 || CruiseAltitude() - Altitude() >= kCruiseCaptureBand) return;
    // 1. Cruise, and the CDU's page with it.
    v.CruiseReached = 1;
    CduPageOnCruise();
    // 2. The rate and pause actions of descent are armed for this cruise.
    g_tick.rate_action_done = 0;
    g_tick.pause_done = 0;
    // 3. The cruise speed, as Mach or as IAS.
    if (v.VnavOn == 1 && PlanActive() && g_config.VnavSetSpd == 1) {
        v.DescentStartAltitude = CruiseAltitude();
        if (g_profile.VnavSetMachCruiseSpd == 1) {
            if (g_sim.speed_hold == 1) TriggerKeyEvent(kSpeedHoldOff, 0);
            TriggerKeyEvent(kMachHoldOn, 0);
            g_tick.mach_write_pending = 2;
        } else {
            SendSpeed(g_profile.CruiseIas);
        }
        v.ClimbRestPending = 0;
    }
    // 4. The descent starts from here; its target is the next restriction.
    v.DescentStartAltitude = CruiseAltitude();
    TargetRow(pc.NextRestrictionRow);
    v.DescentRestDone = 0;
}

// The first descent writes: the altitude bug to the target, the descent speed.
void TopOfDescentWrites() {
    VnavState& v = g_vnav;
    if (v.VnavOn != 1) return;
    if (g_config.VnavSetAlts == 1) {
        SendAltitude(v.TargetAltitude);
        v.AltSetDone = 1;
    }
    if (g_config.VnavSetSpd != 1) return;
    if (g_lnav.DistToActive >= g_profile.VnavSetSpdRestDist) {
        if (g_sim.mach_hold == 1) SpeedHoldWithDeferredDescentSpeed();
        else SendSpeed(g_profile.DescentIas);
    } else {
        v.SpdSetDone = 0;
        if (g_sim.mach_hold == 1) SpeedHoldWithDeferredDescentSpeed();
    }
}

// From the first descent step on: the phase, the page, the target and its path, the writes.
void BeginDescent() {
    VnavState& v = g_vnav;
    PlanContext& pc = g_plan.context;
    // 3. The path starts at cruise altitude.
    v.DescentStartAltitude = CruiseAltitude();
    if (v.CruiseReached == 0) v.CruiseReached = 1;
    // 4. The CDU's page.
    CduPageOnDescent();
    // 5. The target, and the path from T/D to it, its first leg from T/D.
    TargetRow(pc.NextRestrictionRow);
    double first = 0, bearing = 0;
    int active = ActiveRow();
    GreatCircle(v.TopOfDescentLatitude, v.TopOfDescentLongitude, Row(active).Latitude, Row(active).Longitude, first,
                bearing);
    double path = first;
    for (int i = active + 1; i <= pc.NextRestrictionRow && i <= LastRow(); ++i) path += LegLengthTo(i);
    v.PathToTarget = path;
    // 6. The bugs.
    TopOfDescentWrites();
}

// The magnetic bearing from the aircraft to the last row.
double BearingToDestinationMagnetic() {
    const PlanWaypoint& last = Row(LastRow());
    double distance = 0, bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, last.Latitude, last.Longitude, distance, bearing);
    return NormaliseMagnetic(bearing - g_sim.magnetic_variation);
}

// At T/D, or past it without touching it.
void DescentStep() {
    VnavState& v = g_vnav;
    if (v.DescentActive != 0 || !HasPoint(v.TopOfDescentLatitude, v.TopOfDescentLongitude)) return;
    double d = 0, bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, v.TopOfDescentLatitude, v.TopOfDescentLongitude, d, bearing);
    // 1. A waypoint passed abeam near T/D starts the descent at once.
    if (v.TdCheck == 1) {
        if (d < kTdCheckRange) d = -1;
        v.TdCheck = 0;
    }
    // 2. Passed T/D without touching it: less route to go than T/D had, and
    // the destination ahead along the leg flown (LNAV's course as reference).
    if (d > kAtTopOfDescent) {
        bool behind = g_plan_distances.DistToGo < g_plan_distances.TdFromDest;
        bool ahead = static_cast<int>(AngleBetween(BearingToDestinationMagnetic(), g_lnav.LegCourse)) < kPassedTdAngle;
        if (behind && ahead) {
            v.DescentActive = 1;
            if (v.DescentSpeedPhase == 0) v.DescentSpeedPhase = 1;
            v.SpdSetDone = 0;
            VnavSetSpeed();
            BeginDescent();
        }
        return;
    }
    // 3. At T/D.
    v.DescentActive = 1;
    if (v.DescentSpeedPhase == 0) v.DescentSpeedPhase = 1;
    if (g_config.AutoSetLOCFreq == 1)
        if (const RunwayRecord* runway = DestinationRunway()) TuneIlsFrequency(runway->IlsFrequency.data());
    BeginDescent();
}
}  // namespace

void VnavVerticalSteps() {
    VnavState& v = g_vnav;
    if (!HasActiveLeg()) return;
    // 1.-2. The phase changes, for a plan with a cruise altitude.
    if (CruiseAltitude() > 0) {
        CruiseStep();
        DescentStep();
    }
    // 3. The distance pass, then the commands.
    PlanDistances();
    if (v.DescentActive == 1) v.tod_passed = 1;
    VnavCommand();
    const PlanWaypoint& active = Row(ActiveRow());
    double altitude = Altitude();
    bool may_write_speed = v.VnavOn == 1 && PlanActive() && g_config.VnavSetSpd == 1;
    // 4. The descent speed restriction, once below its altitude.
    const AircraftProfile& p = g_profile;
    if (may_write_speed && v.DescentSpeedPhase == 1 && altitude < p.DescAltRest && p.DescAltRest > 0 &&
        p.DescSpdRest > 0 && p.DescSpdRest < g_sim.autopilot_airspeed.now && v.DescentRestDone == 0) {
        SendSpeed(p.DescSpdRest);
        v.DescentRestDone = 1.0;
    }
    // 5. The climb speed restriction ends above its altitude.
    if (may_write_speed && InClimb() && v.ClimbRestPending == 1.0 && altitude > p.ClbAltRest) {
        SendSpeed(active.Restricted == 1 && active.Speed > 0 ? active.Speed : p.ClimbIas);
        v.ClimbRestPending = 0;
    }
    // 6. A restricted waypoint near: its speed is asked for once on the leg.
    if (g_lnav.DistToActive < p.VnavSetSpdRestDist && v.VnavOn == 1 && v.DescentSpeedPhase == 1 &&
        v.RestrictionSeen == 0 && active.Restricted == 1) {
        v.SpdSetDone = 0;
        v.RestrictionSeen = 1;
    }
    // 7. The speed setter.
    VnavSetSpeed();
}

// [SECTION] VnavCommand
void VnavCommand() {
    VnavState& v = g_vnav;
    const AircraftProfile& p = g_profile;
    double altitude = Altitude();
    bool descending = v.CruiseReached == 1 && v.DescentActive == 1 && altitude >= v.TargetAltitude;
    if (v.VnavOn != 1) {
        // Off: the required rate alone, for the pages.
        if (descending) v.RequiredVs = RateFor(altitude - v.TargetAltitude, v.TargetDistance);
        return;
    }
    // 1. Altitude: the pilot's own bug setting, or the segment's write.
    if (v.AltSetDone == 1) {
        if (AltitudeBugTurnedByPilot()) {
            // Recognised either way; the next write comes only with the next segment.
            v.LastAltSeen = static_cast<int>(g_sim.autopilot_altitude.now);
            if (g_config.VnavOffOnManAltChg == 1) {
                VnavOff();
                if (descending) v.RequiredVs = RateFor(altitude - v.TargetAltitude, v.TargetDistance);
                return;
            }
        }
    } else {
        if (g_config.VnavSetAlts == 1) SendAltitude(InCruise() ? CruiseAltitude() : v.TargetAltitude);
        v.AltSetDone = 1;
        v.LastVsSent = kVnavUnknown;
    }
    // 2. Cruise: nothing more.
    if (InCruise()) return;
    // 3. Descent: the ratio of height to lose over distance to go, every tick.
    if (v.DescentActive == 1) {
        if (!descending) return;
        v.RequiredVs = RateFor(altitude - v.TargetAltitude, v.TargetDistance);
        v.CommandedVs = StepAndLimit(v.RequiredVs, p.MinVnavDescRate, p.MaxVnavDescRate);
        if (g_sim.ias_smoothed < p.MinVnavIas) v.CommandedVs = 0;
        int command = -v.CommandedVs;
        if (command != v.LastVsSent) SendVerticalSpeed(command);
        return;
    }
    // 4. Climb, stepped up by 100 ft/min a second while the speed allows.
    double ias = g_sim.ias_smoothed;
    double trend = g_tick.speed_trend;
    double actual = g_sim.vertical_speed.now;
    if (v.LowSpeedGuard == 1 || trend >= kRisingTrend || ias >= p.MinVnavClimbIas + kClimbSpeedMargin ||
        g_sim.autopilot_airspeed.now <= p.MinVnavClimbIas) {
        v.RequiredVs = RateFor(v.TargetAltitude - altitude, v.TargetDistance);
        if (actual < v.RequiredVs - kClimbCatchUp) v.RequiredVs = actual + kVsStep;
    } else {
        v.RequiredVs = actual - (trend < 0 ? kVsStep : 0);
    }
    v.CommandedVs = StepAndLimit(v.RequiredVs, p.MinVnavClimbRate, p.MaxVnavClimbRate);
    if (v.LowSpeedGuard == 1) {
        if (ias <= p.MinVnavIas + kGuardRelease) v.CommandedVs = 0;
        else v.LowSpeedGuard = 0;
    } else if (ias < p.MinVnavIas) {
        v.LowSpeedGuard = 1;
        v.CommandedVs = 0;
    }
    if (g_tick.phase == 0 && v.CommandedVs != v.LastVsSent) SendVerticalSpeed(v.CommandedVs);
}

// [SECTION] VnavSetSpeed
void VnavSetSpeed() {
    VnavState& v = g_vnav;
    GlobalConfig& c = g_config;
    AircraftProfile& p = g_profile;
    // 1. A speed the pilot set stops the speed writes, when the option says so.
    if (c.VnavSetSpd == 1 && v.SpdSetDone == 1 && c.VnavSetSpdOffOnManSpdChg == 1 && SpeedBugTurnedByPilot())
        c.VnavSetSpd = 2;
    // 2. Only near the active waypoint (or when held for it), once a segment.
    bool in_range = g_lnav.DistToActive < p.VnavSetSpdRestDist || g_tick.hold_vnav_speed_write == 1;
    if (!in_range || !HasActiveLeg() || v.SpdSetDone != 0 || v.VnavOn != 1 || !PlanActive() || c.VnavSetSpd != 1) return;
    // 3. A row without predictions gives nothing to write.
    PlanWaypoint& row = Row(ActiveRow());
    if (row.Altitude == kNoAltitude || row.Speed == kNoAltitude) return;
    double altitude = Altitude();
    bool restricted = row.Restricted == 1;
    if (v.DescentSpeedPhase == 1) {
        // 4. Descent speeds.
        if (restricted && g_lnav.DistToActive > 0) {
            if (altitude >= p.DescAltRest || row.Speed <= p.DescSpdRest) {
                SendSpeed(row.Speed);
                if (row.Speed < p.DescentIas) {
                    p.DescentIas = static_cast<int>(row.Speed);
                    p.CruiseIas = static_cast<int>(row.Speed);
                }
            } else {
                SendSpeed(p.DescSpdRest);
            }
        } else if (altitude >= p.DescAltRest || p.DescentIas <= p.DescSpdRest) {
            SendSpeed(p.DescentIas);
        } else {
            SendSpeed(p.DescSpdRest);
        }
    } else if (v.CruiseReached == 0) {
        // 5. Climb speeds, under the climb restriction below its altitude.
        if (restricted && g_lnav.DistToActive >= 0) {
            if (altitude >= p.ClbAltRest || row.Speed <= p.ClbSpdRest) {
                SendSpeed(row.Speed);
            } else {
                SendSpeed(p.ClbSpdRest);
                v.ClimbRestPending = 1.0;
            }
        } else if (altitude >= p.ClbAltRest || p.ClimbIas <= p.ClbSpdRest) {
            SendSpeed(p.ClimbIas);
        } else {
            SendSpeed(p.ClbSpdRest);
            v.ClimbRestPending = 1.0;
        }
    } else {
        // 6. Cruise: a restriction close ahead, else the cruise speed or Mach.
        int next = g_plan.context.NextRestrictionRow;
        if (restricted && AlongRouteTo(next) < p.VnavSetSpdRestDist) {
            SendSpeed(row.Speed);
        } else if (p.VnavSetMachCruiseSpd == 1) {
            int mach = static_cast<int>(c.CruiseMach * 100.0);
            TriggerKeyEvent(kSetMach, static_cast<UINT32>(mach));
            v.LastMachSent = mach;
            g_tick.speed_marker = TickStamp();
        } else {
            SendSpeed(p.CruiseIas);
        }
    }
    // 7. Done for this segment.
    v.SpdSetDone = 1;
    v.SpdSetStamp = TickStamp();
}

// [SECTION] Plan changes: EXEC, a new plan
void VnavRestartTargets() {
    PlanContext& pc = g_plan.context;
    if (!HasActiveLeg()) {
        PlanDistances();
        return;
    }
    // T/C and T/D on the plan as it stands, and the distances to them.
    if (InClimb()) FindClimbTarget(0);
    RecomputeTopOfDescent(0);
    PlanDistances();
    // The target is T/C, unless a restriction comes first in the climb: the
    // climb's own restriction ahead, or a nearer one.
    TargetTopOfClimb();
    pc.NextRestrictionRow = NextRestrictionFrom(ActiveRow(), true);
    if (InClimb()) {
        int r = FindClimbTarget(1);
        if (pc.NextRestrictionRow < r) TargetRow(pc.NextRestrictionRow);
    }
}

void VnavAfterExecute(int modification_executed) {
    PlanContext& pc = g_plan.context;
    // A cruise altitude that came with a route read into the modification
    // replaces the plan's, once. (One entered on the pages already stands in
    // the plan's context, its undo slot keeping the old one for ERASE.)
    if (pc.ModCruiseAltitude > 0) {
        pc.CruiseAltitude = pc.ModCruiseAltitude;
        pc.ModCruiseAltitude = 0;
    }
    PredictProfile(pc.CruiseAltitude, 1);
    VnavRestartTargets();
    if (g_vnav.VnavOn == 1 && modification_executed == 1) ClearWriteFlags();
    WriteVerticalProfileFile();
}

void ResetVnavForNewPlan() {
    int on = g_vnav.VnavOn;
    g_vnav = VnavState{};
    g_vnav.VnavOn = on;
    g_tick.mach_write_pending = 0;
    g_tick.speed_write_pending = 0;
    g_tick.altitude_marker = -999;
    g_tick.speed_marker = -999;
}
