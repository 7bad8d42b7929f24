// lnav.cpp: engaging LNAV, and the lateral steps of each tick.
//
// There is no control law here: one magnetic heading, in whole degrees, goes
// to the autopilot's heading bug when it changes. Turns are anticipated by a
// distance rule only.
//
// Index:
//   [SECTION] Helpers over the active plan
//   [SECTION] LnavToggle
//   [SECTION] Radio tuning
//   [SECTION] LnavSequence
#include "guidance/lnav.h"

#include "flightlog/flight_log.h"
#include "frame/data_text.h"
#include "frame/fsuipc_client.h"
#include "frame/global_config.h"
#include "frame/named_variables.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/performance.h"
#include "guidance/runway_tuning.h"
#include "guidance/vnav.h"
#include "navdata/airport_extras.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

LnavState g_lnav;

// [SECTION] Helpers over the active plan
namespace {
constexpr double kRabbitLead = 5.0;           // nm ahead on the leg
constexpr double kRabbitLeadNear = 3.0;       // nm, once within 3.5 nm of the leg
constexpr double kNearLegXtk = 3.5;
constexpr double kLegTrackingLimit = 10.0;    // nm off the leg: fly direct instead
constexpr double kAbeamWindow = 10.0;         // nm; the abeam rule works only this close
constexpr double kAnticipationWindow = 15.0;  // nm
constexpr double kTurnDistancePerDegree = 0.028;
constexpr double kTuneRange = 230.0;          // nm
constexpr double kArrivalDistance = 25.0;     // nm
constexpr double kDepartedDistance = 8.0;     // nm from the first waypoint

PlanWaypoint& Row(int i) { return g_plan.ActivePlan[static_cast<size_t>(i)]; }
int LastIndex() { return g_plan.context.ActiveLastRow; }
int& ActiveLeg() { return g_plan.context.ActiveLeg; }

bool IsProcedureSegment(const PlanWaypoint& row) {
    const char* kind = row.SegmentKind.data();
    return std::strcmp(kind, "SID") == 0 || std::strcmp(kind, "STAR") == 0 || std::strcmp(kind, "SIDSTAR") == 0 ||
           std::strcmp(kind, "APPR") == 0;
}

// Magnetic from true with the simulator's variation, 0.5 .. 360.4.
double Magnetic(double true_direction) { return NormaliseMagnetic(true_direction - g_sim.magnetic_variation); }

void CourseBetween(const PlanWaypoint& from, const PlanWaypoint& to, double& course_magnetic, double& length) {
    double bearing = 0;
    GreatCircle(from.Latitude, from.Longitude, to.Latitude, to.Longitude, length, bearing);
    course_magnetic = Magnetic(bearing);
}

// The magnetic bearing from one point to another, by the rule of LNAV's
// commands: the variation off, plus 360 below 0.5 (no fold above 360).
double CommandBearing(double from_lat, double from_lon, double to_lat, double to_lon) {
    double distance = 0, bearing = 0;
    GreatCircle(from_lat, from_lon, to_lat, to_lon, distance, bearing);
    double magnetic = bearing - g_sim.magnetic_variation;
    return magnetic < 0.5 ? magnetic + 360.0 : magnetic;
}

bool HoldPastEntryCorner() { return g_holds.HoldFlying == 1 && g_holds.HoldCorner > 0; }

// The reference leg runs from the present position to the active waypoint.
void InterceptFromHere() {
    LnavState& l = g_lnav;
    l.InterceptStart = {g_sim.latitude, g_sim.longitude};
    l.InterceptActive = 1;
    l.InterceptCourse = CommandBearing(l.InterceptStart.lat, l.InterceptStart.lon, ActivePos().lat, ActivePos().lon);
}
}  // namespace

LatLon ActivePos() { return {g_plan.context.ActiveWaypointLatitude, g_plan.context.ActiveWaypointLongitude}; }

void LnavPlanActivated() {
    LnavState& l = g_lnav;
    l.DepartedFlag = 1;
    l.ArrivalDone = 0;
    l.LegTracking = 0;
    l.InterceptActive = 0;
    l.LastHeadingSent = 999;
    l.DistToActive = 999;
    l.ChangeDistance = 0;
}

void LnavDirectExecuted() {
    InterceptFromHere();
    // Straight at the waypoint until the next sequencing, as after engaging:
    // the leg tracked before the direct is not flown back to.
    g_lnav.LegTracking = 0;
}

// [SECTION] LnavToggle
void LnavToggle() {
    LnavState& l = g_lnav;
    if (l.LnavOn == 0) {
        // 1.-6. Engage, with an intercept leg from where we are.
        if (ActiveLeg() != kNoActiveLeg) {
            l.LnavOn = 1;
            if (g_config.HdgHoldOnLnavOn == 1) TriggerKeyEvent(0x1010F, 0);
            if (g_config.LnavSetEnRouteFreqs == 1) CheckTuneRoute(2);
            InterceptFromHere();
        }
    } else {
        l.LnavOn = 0;
        l.LegTracking = 0;
        l.InterceptActive = 0;
        HoldGiveUp();
    }
    // 7.-10. Redraw, publish, the NAV lock event, a pause of the copying.
    g_tick.slow_refresh = 999;
    SetLnavVariable(l.LnavOn);
    if (g_config.LnavOnNavLock == 1) TriggerKeyEvent(0x1011B, 0);
    l.PublishHoldFrames = 3;
}

// [SECTION] Radio tuning
namespace {
// "113.70" -> 11370 -> 0x11370; an NDB's "350" -> 0x350.
void TuneNavaid(const PlanWaypoint& row) {
    const char* text = row.Frequency.data();
    if (std::strcmp(row.WaypointType.data(), "NDB") == 0) {
        unsigned frequency = static_cast<unsigned>(std::atoi(text));
        if (frequency != 0) TriggerKeyEvent(0x100B2, ToBcd(frequency));
        return;
    }
    char digits[16] = {};
    size_t n = 0;
    for (size_t i = 0; text[i] && n + 1 < sizeof digits; ++i)
        if (i != 3) digits[n++] = text[i];  // the decimal point of "113.70"
    unsigned frequency = static_cast<unsigned>(std::atoi(digits));
    if (frequency != 0) TriggerKeyEvent(0x100AC, ToBcd(frequency));
}

void SetObs(double course_magnetic) {
    int degrees = static_cast<int>(course_magnetic);
    if (degrees != 0) TriggerKeyEvent(0x100B4, static_cast<UINT32>(degrees));
}
}  // namespace

void CheckTuneRoute(int kind) {
    if (kind == 1) {
        TuneSelectedRunway();
        return;
    }
    int active = ActiveLeg();
    int last = LastIndex();
    if (active == kNoActiveLeg || active < 0 || last < 0) return;
    // 1.-2. The first navaid ahead on the plan, within range.
    if (active < last) {
        for (int i = active; i <= last - 1; ++i) {
            if (Row(i).Frequency[0] == 0) continue;
            double distance = 0, bearing = 0;
            GreatCircle(g_sim.latitude, g_sim.longitude, Row(i).Latitude, Row(i).Longitude, distance, bearing);
            if (distance > kTuneRange || i == 0) break;
            double course = 0, length = 0;
            CourseBetween(Row(i - 1), Row(i), course, length);
            SetObs(course);
            TuneNavaid(Row(i));
            return;
        }
    }
    // 3. Else only the OBS, on the active leg, when the waypoint behind is a navaid.
    if (active >= 1 && Row(active - 1).Frequency[0] != 0) {
        double course = 0, length = 0;
        CourseBetween(Row(active - 1), Row(active), course, length);
        SetObs(course);
    }
}

// [SECTION] LnavSequence
double WaypointChangeDistance() {
    LnavState& l = g_lnav;
    GlobalConfig& c = g_config;
    // 1. Thresholds by time replace the configured distances.
    if (c.WptChgSecs > 0) c.WptChgDist = g_sim.ground_speed / 3600.0 * c.WptChgSecs;
    if (c.WptProcChgSecs > 0) c.WptProcChgDist = g_sim.ground_speed / 3600.0 * c.WptProcChgSecs;
    const PlanWaypoint& row = Row(ActiveLeg());
    double threshold;
    // 2.-3. Procedure, en-route, or fly-over.
    if (IsProcedureSegment(row)) threshold = c.WptProcChgDist;
    else threshold = row.Flyover == 1 ? c.FlyoverWptChgDist : c.WptChgDist;
    // 4. Turn anticipation: a linear distance for the angle of the next turn.
    if (c.AdjustTurnDistforAngle == 1 && l.DistToActive < kAnticipationWindow && row.Flyover != 1)
        threshold += static_cast<int>(AngleBetween(l.NextLegCourse, l.LegCourse)) * kTurnDistancePerDegree;
    return threshold;
}

void LnavSequence() {
    LnavState& l = g_lnav;
    SimState& s = g_sim;
    if (ActiveLeg() == kNoActiveLeg || LastIndex() < 0) return;
    int last = LastIndex();

    // 1. Behind the aircraft: a waypoint abeam counts as passed.
    if (l.LnavOn == 1 && s.heading_hold == 1 && l.DistToActive < kAbeamWindow && ActiveLeg() < last - 1 &&
        !IsFirstHoldFix(ActiveLeg())) {
        int d = static_cast<int>(AngleBetween(l.BearingToActive, l.LegCourse));
        if (d > 90) {
            l.DistToActive = -1.0;
            VnavWaypointPassedAbeam();
        }
    }
    // 2. VNAV's next target inside the threshold.
    if (l.DistToActive < l.ChangeDistance && l.LnavOn == 1 && ActiveLeg() < last) VnavChooseNextTarget();
    // 3. Actual time over, LNAV on or off.
    PlanWaypoint& active_row = Row(ActiveLeg());
    if (l.DistToActive < l.ChangeDistance && active_row.ActualTime[0] == 0 && s.ground_speed > 65.0)
        std::snprintf(active_row.ActualTime.data(), active_row.ActualTime.size(), "%02.0f:%02.0f", s.zulu_hour,
                      s.zulu_minute);
    // 4. Holds, and the holds left behind.
    if (g_holds.HoldCount > 0) {
        HoldStep();
        DeleteHoldsBehind(ActiveLeg());
    }
    // 5. Sequencing.
    bool hold_allows = g_holds.HoldFlying == 0 || g_holds.HoldCorner == 0 || g_holds.HoldExitState == 4;
    if (l.DistToActive < l.ChangeDistance && (l.LnavOn == 1 || g_config.SequenceFPlanWpts == 1) && hold_allows) {
        VnavRestrictionPassed();
        if (g_holds.HoldExitState == 4) g_holds.HoldExitState = 0;
        if (ActiveLeg() == last) {
            l.LnavOn = 0;  // the last waypoint: LNAV drops whatever the options say
            SetLnavVariable(0);
        } else {
            if (g_flight_log.flight_stage < kFlightStageEnd) FlightLogStep(1);
            const PlanWaypoint& passed = Row(ActiveLeg());
            std::snprintf(l.LastPassed.ident.data(), l.LastPassed.ident.size(), "%s", passed.Ident.data());
            std::snprintf(l.LastPassed.time.data(), l.LastPassed.time.size(), "%02.0f%02.0fZ", s.zulu_hour,
                          s.zulu_minute);
            l.LastPassed.altitude = s.indicated_altitude.now;
            double fuel = FuelOnBoardKept();
            l.LastPassed.fuel = std::strcmp(g_config.WeightUnit.data(), "KGS") == 0 ? fuel * 0.45359237 : fuel;
            ActiveLeg() += 1;
            PlanDistances();
            VnavSpeedAfterSequencing();
            if (ActiveLeg() == last) {
                VnavAtLastWaypoint();
                if (g_config.LnavOffAtLastWpt == 1) {
                    l.LnavOn = 0;
                    SetLnavVariable(0);
                }
            }
            if (g_config.LnavSetEnRouteFreqs == 1 && (l.LnavOn == 1 || g_config.SequenceFPlanWpts == 1))
                CheckTuneRoute(2);
            l.LegTracking = 1;
            l.InterceptActive = 0;
            g_plan.context.ActiveWaypointLatitude = Row(ActiveLeg()).Latitude;
            g_plan.context.ActiveWaypointLongitude = Row(ActiveLeg()).Longitude;
            if (g_config.SetWptBaro == 1) TriggerKeyEvent(0x10030, 0);
        }
    }
    // 6. The threshold for the next test.
    l.ChangeDistance = WaypointChangeDistance();
    // 7. Leg geometry.
    l.LegCoursePrevious = l.LegCourse;
    l.DistToActivePrevious = l.DistToActive;
    double bearing = 0;
    if (l.InterceptActive == 1) {
        GreatCircle(l.InterceptStart.lat, l.InterceptStart.lon, Row(ActiveLeg()).Latitude, Row(ActiveLeg()).Longitude,
                    l.LegLength, bearing);
    } else {
        const PlanWaypoint& from = Row(ActiveLeg() > 0 ? ActiveLeg() - 1 : 0);
        GreatCircle(from.Latitude, from.Longitude, Row(ActiveLeg()).Latitude, Row(ActiveLeg()).Longitude, l.LegLength,
                    bearing);
    }
    l.LegCourse = Magnetic(bearing);
    GreatCircle(s.latitude, s.longitude, ActivePos().lat, ActivePos().lon, l.DistToActive, bearing);
    l.BearingToActive = Magnetic(bearing);
    if (ActiveLeg() < last && l.DistToActive < kAbeamWindow)
        CourseBetween(Row(ActiveLeg()), Row(ActiveLeg() + 1), l.NextLegCourse, l.NextLegLength);
    // 8. Export and distances.
    PublishGuidance();
    PlanDistances();
    // 9. Arrival, once per active plan.
    double to_destination = KeptDirectDistanceToDestination();
    if (!l.ArrivalDone && to_destination <= kArrivalDistance) {
        l.ArrivalDone = 1;
        if (g_config.SetDestLoadTowerViewDist > 0) SetTowerView();
        if (g_config.SetWptBaro == 1) TriggerKeyEvent(0x10030, 0);
    }
    // 10. Vertical steps.
    VnavVerticalSteps();
    // 11. Departure: the destination's data, once well away from the origin.
    if (l.DepartedFlag == 1 && std::strcmp(Row(last).WaypointType.data(), "APT") == 0) {
        double distance = 0;
        GreatCircle(s.latitude, s.longitude, Row(0).Latitude, Row(0).Longitude, distance, bearing);
        if (distance > kDepartedDistance) {
            SetAirport(Row(last).Ident.data(), 1);
            l.DepartedFlag = 2;
            if (g_config.McuShowActiveRwys == 1) ReadActiveRunways(Row(last).Ident.data());
            g_runway_tuning.selected = kNoRunwaySelected;  // the origin's runway is no longer wanted
        }
    }
    // 12. Cross track against the reference leg.
    CrossTrackInput in;
    in.has_active_waypoint = true;
    const PlanWaypoint& previous = Row(ActiveLeg() > 0 ? ActiveLeg() - 1 : 0);
    in.start_lat = l.InterceptActive ? l.InterceptStart.lat : previous.Latitude;
    in.start_lon = l.InterceptActive ? l.InterceptStart.lon : previous.Longitude;
    in.waypoint_lat = ActivePos().lat;
    in.waypoint_lon = ActivePos().lon;
    in.aircraft_lat = s.latitude;
    in.aircraft_lon = s.longitude;
    in.leg_length = l.LegLength;
    in.distance_to_go = l.DistToActive;
    in.leg_course_magnetic = l.LegCourse;
    in.heading_magnetic = s.heading_magnetic.now;
    in.magnetic_variation = s.magnetic_variation;
    CrossTrackResult out;
    CrossTrackSolve(in, out);
    l.XtkDistance = out.xtk_distance;
    l.XtkSide = out.xtk_side;
    l.TrackAngleError = out.bearing_diff;
    l.TrackAngleSide = out.bearing_side;
    l.HeadingError = out.heading_diff;
    l.HeadingErrorSide = out.heading_side;
    // 13. Steering: at the waypoint, or at a rabbit ahead on the leg.
    double lead = (l.XtkDistance > 0 && l.XtkDistance <= kNearLegXtk) ? kRabbitLeadNear : kRabbitLead;
    double along = l.LegLength - l.DistToActive + lead;
    if (l.InterceptActive == 1) {
        ProjectPoint(l.InterceptStart.lat, l.InterceptStart.lon, l.InterceptCourse + s.magnetic_variation, along,
                     l.RabbitPoint.lat, l.RabbitPoint.lon);
        l.HeadingCommand = CommandBearing(s.latitude, s.longitude, l.RabbitPoint.lat, l.RabbitPoint.lon);
        if (l.XtkDistance <= l.ChangeDistance) l.InterceptActive = 0;
    } else {
        l.HeadingCommand = l.BearingToActive;
        ProjectPoint(previous.Latitude, previous.Longitude, l.LegCourse + s.magnetic_variation, along,
                     l.RabbitPoint.lat, l.RabbitPoint.lon);
        if (l.XtkDistance >= kLegTrackingLimit) l.LegTracking = 0;
        if (l.LegTracking == 1 && l.XtkDistance < kLegTrackingLimit) {
            l.HeadingCommand = CommandBearing(s.latitude, s.longitude, l.RabbitPoint.lat, l.RabbitPoint.lon);
        }
    }
    // 14. Sending: only a new whole degree goes out.
    if (l.LnavOn == 1 && s.heading_hold == 1 && !HoldPastEntryCorner()) {
        if (l.ForcedTurnSide == 0) {
            int whole = static_cast<int>(l.HeadingCommand);
            if (whole != l.LastHeadingSent) {
                TriggerKeyEvent(0x101FA, static_cast<UINT32>(whole));
                l.LastHeadingSent = whole;
            }
        } else if (TurnSideTo(l.BearingToActive, s.heading_magnetic.now) == l.ForcedTurnSide) {
            l.ForcedTurnSide = 0;
            SetText(l.DirectToTurnOption, "DEFAULT");
        }
    } else {
        l.LastHeadingSent = 999;
    }
}
