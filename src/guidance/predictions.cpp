// predictions.cpp: the plan's vertical shape. PredictProfile fixes the cruise
// altitude, T/C and T/D and fills each row's predicted altitude and speed;
// PlanDistances turns the present position into the distances to go that the
// pages and VNAV read, and moves the phases on; WriteVerticalProfileFile puts
// the result in a text table for the pilot and orbsim.
//
// Still air throughout. Nothing here allocates: PlanDistances runs several
// times a tick.
#include "guidance/performance.h"

#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"

#include <windows.h>
#include <share.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr double kShortHalfRoute = 35;        // nm: above it the half route loses...
constexpr double kHalfRouteMargin = 15;       // ...this margin
constexpr int kClimbMinuteLimit = 199;        // minutes of the climb walk without tables
constexpr double kFallbackRate = 1800;        // ft/min when a rate reads 0 or less
constexpr double kTruncateAbove = 1000;       // feet: predicted altitudes above it go to whole hundreds
constexpr double kProperCruise = 1000;        // feet: a cruise altitude at or below it is no cruise
constexpr double kFarAway = 1e6;              // nm: a T/C or T/D distance that can't be told stands here

// Along-route distance of each row from row 0; "DISCO" rows carry the one before.
using RowDistances = std::array<double, kPlanRows>;

PlanTable& Plan() { return g_plan.ActivePlan; }

int LastRow() { return std::min(g_plan.context.ActiveLastRow, kPlanRows - 1); }

double Distance(double lat1, double lon1, double lat2, double lon2) {
    double distance = 0, bearing = 0;
    GreatCircle(lat1, lon1, lat2, lon2, distance, bearing);
    return distance;
}

double RowDistance(int from, int to) {
    const PlanWaypoint& a = Plan()[from];
    const PlanWaypoint& b = Plan()[to];
    return Distance(a.Latitude, a.Longitude, b.Latitude, b.Longitude);
}

void FillRowDistances(RowDistances& along) {
    int last = LastRow();
    int from = -1;
    double total = 0;
    for (int row = 0; row <= last; ++row) {
        if (!IsDiscontinuity(Plan()[row])) {
            if (from >= 0) total += RowDistance(from, row);
            from = row;
        }
        along[row] = total;
    }
}

// The rate a flight path angle asks for at a TAS, in whole hundreds of ft/min.
double RateFromFpa(double tas, double fpa) { return std::trunc(((tas / 60.0) * fpa * 100.0 + 50.0) / 100.0) * 100.0; }

// The point `distance` along the route from row 0 and the row that starts its leg.
void PointAlongRoute(double distance, double& lat, double& lon, int& leg_start) {
    int last = LastRow();
    int from = -1;
    double sum = 0;
    for (int row = 0; row <= last; ++row) {
        const PlanWaypoint& to = Plan()[row];
        if (IsDiscontinuity(to)) continue;
        if (from >= 0) {
            const PlanWaypoint& start = Plan()[from];
            double length = 0, bearing = 0;
            GreatCircle(start.Latitude, start.Longitude, to.Latitude, to.Longitude, length, bearing);
            if (sum + length >= distance) {
                ProjectPoint(start.Latitude, start.Longitude, bearing, std::max(0.0, distance - sum), lat, lon);
                leg_start = from;
                return;
            }
            sum += length;
        }
        from = row;
    }
    // Longer than the route: the last row.
    lat = Plan()[last].Latitude;
    lon = Plan()[last].Longitude;
    leg_start = std::max(0, from);
}

// The point `distance` back along the route from the last row.
void PointBackFromEnd(double distance, double& lat, double& lon) {
    int last = LastRow();
    int to = -1;
    double sum = 0;
    for (int row = last; row >= 0; --row) {
        const PlanWaypoint& from = Plan()[row];
        if (IsDiscontinuity(from)) continue;
        if (to >= 0) {
            const PlanWaypoint& end = Plan()[to];
            double length = 0, bearing = 0;
            GreatCircle(end.Latitude, end.Longitude, from.Latitude, from.Longitude, length, bearing);
            if (sum + length >= distance) {
                ProjectPoint(end.Latitude, end.Longitude, bearing, std::max(0.0, distance - sum), lat, lon);
                return;
            }
            sum += length;
        }
        to = row;
    }
    lat = Plan()[0].Latitude;
    lon = Plan()[0].Longitude;
}

double KnownAltitude(double altitude) { return altitude > kNoAltitude ? altitude : 0.0; }

double HundredsAbove1000(double altitude) {
    return altitude > kTruncateAbove ? std::trunc(altitude / 100.0) * 100.0 : altitude;
}

}  // namespace

// [SECTION] PredictProfile

void PredictProfile(int cruise_altitude, int per_waypoint) {
    PlanContext& pc = g_plan.context;
    AircraftProfile& p = g_profile;
    VnavState& v = g_vnav;
    PlanDistanceState& d = g_plan_distances;
    const int last = LastRow();
    if (last < 0) return;
    const double altitude_now = g_sim.indicated_altitude.now;
    RowDistances along;  // 1.6 kB on the stack: no allocation
    FillRowDistances(along);
    const double route = along[last];

    // Step 1: the half route, less a margin on longer routes.
    double half = route * 0.5;
    if (half > kShortHalfRoute) half -= kHalfRouteMargin;

    // Step 2: the climb rate, from the flight path angle when one is set.
    double rate = p.ClimbRate;
    if (p.FPA > 0) rate = RateFromFpa(p.ClimbTas, p.FPA);

    // Step 3: the cruise altitude: as given, from the tables, or by a minute-by-minute climb.
    int cruise = cruise_altitude;
    if (cruise == 0) {
        int optimised = OptimizeProfile();
        if (optimised != 0) {
            cruise = optimised;
            rate = p.ClimbRate;
            p.FPA = 0;
        } else {
            // The level climbs from the present altitude at the rate; it stops at
            // MaxCruise, or in whole thousands where the climb has used the half route.
            double step_rate = rate > 0 ? rate : kFallbackRate;
            double distance = 0, level = altitude_now;
            double chosen = -1;
            for (int minute = 1; minute <= kClimbMinuteLimit; ++minute) {
                distance += p.ClimbTas / 60.0;
                level += step_rate;
                if (level >= p.MaxCruise) {
                    chosen = p.MaxCruise;
                    break;
                }
                if (distance >= half) {
                    chosen = std::floor(level / 1000.0) * 1000.0;
                    break;
                }
            }
            if (chosen < 0) chosen = std::min<double>(p.MaxCruise, std::floor(level / 1000.0) * 1000.0);
            chosen = std::clamp(chosen, 0.0, static_cast<double>(std::max(p.MaxCruise, 0)));
            cruise = SemicircularAltitude(static_cast<int>(chosen), PlanInitialBearing());
        }
    }
    if (!(rate > 0)) rate = kFallbackRate;

    // Step 4: the climb distance from the present altitude.
    double climb_distance = std::max(0.0, cruise - altitude_now) / rate * (p.ClimbTas / 60.0);
    if (!(climb_distance >= 0) || climb_distance > kFarAway) climb_distance = kFarAway;

    // Step 5: T/C, before cruise.
    if (v.CruiseReached == 0) {
        d.TcDistFromOrigin = static_cast<int>(std::trunc(climb_distance));
        int leg_start = 0;
        PointAlongRoute(climb_distance, v.TopOfClimbLatitude, v.TopOfClimbLongitude, leg_start);
        d.TcRow = leg_start;
    }

    // Step 6: the descent rate, from the flight path angle when one is set.
    d.DescentRateInUse = p.DescentRate;
    if (p.FPA > 0) d.DescentRateInUse = RateFromFpa(p.DescentTas, p.FPA);
    const double descent_rate = d.DescentRateInUse > 0 ? d.DescentRateInUse : kFallbackRate;

    // Step 7: T/D, back from the last row by the descent to the next restriction.
    const int restriction_row = std::clamp(pc.NextRestrictionRow, 0, last);
    const double target = KnownAltitude(Plan()[restriction_row].Altitude);
    double descent_distance = std::max(0.0, cruise - target) / descent_rate * (p.DescentTas / 60.0);
    if (!(descent_distance >= 0) || descent_distance > kFarAway) descent_distance = kFarAway;
    PointBackFromEnd(descent_distance, v.TopOfDescentLatitude, v.TopOfDescentLongitude);
    d.TdDistFromOrigin = std::max(0.0, route - descent_distance);

    // Step 8: the plan takes the cruise altitude if it has none.
    if (pc.CruiseAltitude == 0) pc.CruiseAltitude = cruise;
    if (per_waypoint != 1) {
        v.CruiseReached = 0;
        v.DescentActive = 0;
        v.DescentSpeedPhase = 1;
        return;
    }
    const double plan_cruise = pc.CruiseAltitude;

    // Step 9: the forward pass, the climb.
    double level = KnownAltitude(Plan()[0].Altitude);
    bool tc_passed = false;
    int tc_row = 0;
    int climb_restriction = -1;
    int previous = 0;
    for (int i = 1; i < last; ++i) {
        PlanWaypoint& row = Plan()[i];
        if (IsDiscontinuity(row)) continue;
        // 9.1: the next restriction below cruise, before any row at cruise
        // and, beyond the plan's first pass, before T/C.
        int next_restriction = -1;
        for (int j = i; j <= last; ++j) {
            const PlanWaypoint& ahead = Plan()[j];
            if (IsDiscontinuity(ahead)) continue;
            if (along[j] > climb_distance && j > i) break;
            if (ahead.Restricted != 0 && ahead.Altitude > kNoAltitude && ahead.Altitude < plan_cruise) {
                next_restriction = j;
                break;
            }
            if (ahead.Altitude >= plan_cruise) break;
        }
        if (next_restriction >= 0 && !tc_passed) climb_restriction = next_restriction;
        // 9.2: the altitude the climb reaches over the leg.
        double leg = along[i] - along[previous];
        double predicted = level + (leg / p.ClimbTas) * 60.0 * rate;
        if (row.Restricted != 0) {
            // 9.3: a restriction keeps its figures and, in the climb, sets the level;
            // the rows before it fly no faster than it.
            if (!tc_passed && row.Altitude > kNoAltitude) {
                level = row.Altitude;
                for (int k = i - 1; k >= 1 && row.Speed > 0; --k) {
                    PlanWaypoint& before = Plan()[k];
                    if (IsDiscontinuity(before)) continue;
                    if (before.Restricted != 0) break;
                    if (before.Speed > row.Speed) before.Speed = row.Speed;
                }
            } else {
                level = predicted;
            }
        } else {
            // 9.4: whole hundreds, capped by the restriction ahead; the climb speed.
            double value = HundredsAbove1000(predicted);
            if (next_restriction >= 0) value = std::min(value, Plan()[next_restriction].Altitude);
            row.Altitude = value;
            level = value;
            double speed = p.ClimbIas;
            if (p.ClbSpdRest > 0 && p.ClbSpdRest < speed && value < p.ClbAltRest) speed = p.ClbSpdRest;
            row.Speed = speed;
        }
        // 9.5: T/C by distance, or by reaching cruise.
        if (!tc_passed && along[i] > climb_distance) {
            tc_passed = true;
            tc_row = i;
        }
        if (row.Altitude >= plan_cruise) {
            if (row.Restricted == 0) {
                row.Altitude = plan_cruise;
                row.Speed = p.CruiseIas;
                level = plan_cruise;
            }
            if (!tc_passed) {
                tc_passed = true;
                tc_row = i;
            }
        }
        previous = i;
    }

    // Step 10: a climb that ends at a restriction has its T/C there.
    if (climb_restriction >= 0 && v.CruiseReached == 0) {
        v.TopOfClimbLatitude = Plan()[climb_restriction].Latitude;
        v.TopOfClimbLongitude = Plan()[climb_restriction].Longitude;
    }

    // Step 11: the backward pass, the descent, until it meets the cruise or the climb.
    level = KnownAltitude(Plan()[last].Altitude);
    int next = last;
    for (int i = last - 1; i >= 1; --i) {
        PlanWaypoint& row = Plan()[i];
        if (IsDiscontinuity(row)) continue;
        double leg = along[next] - along[i];
        double predicted = level + (leg / p.DescentTas) * 60.0 * descent_rate;
        next = i;
        if (row.Restricted != 0) {
            // 11.2: a restriction stands; it gets the descent speed if it has none.
            if (row.Speed == kNoAltitude) row.Speed = p.DescentIas;
            level = row.Altitude > kNoAltitude ? row.Altitude : predicted;
            if (level >= plan_cruise) break;
            continue;
        }
        // 11.3: below a restriction earlier in the descent (after T/C's leg),
        // no higher and no faster than it.
        int earlier = -1;
        for (int k = i - 1; k > std::max(0, d.TcRow); --k) {
            if (Plan()[k].Restricted != 0 && !IsDiscontinuity(Plan()[k])) {
                earlier = k;
                break;
            }
        }
        double speed = p.DescentIas;
        if (earlier >= 0) {
            const PlanWaypoint& restriction = Plan()[earlier];
            level = restriction.Altitude > kNoAltitude ? std::min(predicted, restriction.Altitude) : predicted;
            if (restriction.Speed > 0 && restriction.Speed < speed) speed = restriction.Speed;
        } else {
            level = predicted;
        }
        // 11.4: whole hundreds.
        level = HundredsAbove1000(level);
        // 11.6 first: where the descent reaches cruise, or the climb's altitude
        // for this row, the cruise or climb figures stand and the pass ends.
        if (level >= plan_cruise) {
            row.Altitude = plan_cruise;
            row.Speed = p.CruiseIas;
            break;
        }
        if (row.Altitude > kNoAltitude && level >= row.Altitude && i <= tc_row) break;
        row.Altitude = level;
        // 11.5: the descent speed restriction below its altitude.
        if (p.DescSpdRest > 0 && p.DescSpdRest < speed && level <= p.DescAltRest) speed = p.DescSpdRest;
        row.Speed = speed;
    }
}

// [SECTION] PlanDistances

namespace {

// Along-route nm from `point` back towards row 0 until `target` lies nearer
// than the next row behind: the distance from `target` forward to the row
// `end`. `end_lat/lon` is where the walk starts (a row, or the aircraft), and
// `row` the first row behind it.
double DistanceBackTo(double target_lat, double target_lon, double end_lat, double end_lon, int row) {
    double sum = 0;
    double lat = end_lat, lon = end_lon;
    for (; row >= 0; --row) {
        const PlanWaypoint& behind = Plan()[row];
        if (IsDiscontinuity(behind)) continue;
        double to_behind = Distance(lat, lon, behind.Latitude, behind.Longitude);
        double to_target = Distance(lat, lon, target_lat, target_lon);
        if (to_target < to_behind) return sum + to_target;
        sum += to_behind;
        lat = behind.Latitude;
        lon = behind.Longitude;
    }
    return sum;
}

}  // namespace

void PlanDistances() {
    const PlanContext& pc = g_plan.context;
    VnavState& v = g_vnav;
    PlanDistanceState& d = g_plan_distances;
    const int last = LastRow();
    if (last < 0 || pc.ActiveLeg == kNoActiveLeg || pc.ActiveLeg < 0 || pc.ActiveLeg > last) return;
    const int restriction_row = std::clamp(pc.NextRestrictionRow, 0, last);
    const bool proper_cruise = pc.CruiseAltitude > kProperCruise;
    const bool before_cruise = v.CruiseReached == 0;
    const bool in_descent = v.CruiseReached == 1 && v.DescentActive == 1;
    const bool has_tc = v.TopOfClimbLatitude != 0 || v.TopOfClimbLongitude != 0;
    const bool has_td = v.TopOfDescentLatitude != 0 || v.TopOfDescentLongitude != 0;

    // Step 1: the phase sums start afresh with a proper cruise altitude.
    double to_go = 0;
    double tc_from_dest = 0;  // nm from T/C to the last row: a distance to go below it is past T/C
    double to_tc = 0;         // nm from the aircraft to T/C
    bool tc_reached = false;
    double target_distance = 0;
    if (proper_cruise && before_cruise) v.TargetDistance = 0;

    // Step 2: the walk from the aircraft to the last row.
    double lat = g_sim.latitude, lon = g_sim.longitude;
    int leg_start = pc.ActiveLeg - 1;  // the row behind the aircraft
    while (leg_start >= 0 && IsDiscontinuity(Plan()[leg_start])) --leg_start;
    for (int row = pc.ActiveLeg; row <= last; ++row) {
        const PlanWaypoint& to = Plan()[row];
        if (IsDiscontinuity(to)) continue;
        double leg = Distance(lat, lon, to.Latitude, to.Longitude);
        to_go += leg;
        if (before_cruise && has_tc) {
            // T/C lies on the leg that starts at TcRow: the legs after it count
            // whole towards T/C's distance from the end, that leg from T/C on.
            if (leg_start > d.TcRow || (leg_start == d.TcRow && tc_reached)) {
                tc_from_dest += leg;
            } else if (leg_start == d.TcRow) {
                tc_from_dest += Distance(v.TopOfClimbLatitude, v.TopOfClimbLongitude, to.Latitude, to.Longitude);
            }
            if (!tc_reached) {
                if (leg_start >= d.TcRow) {
                    to_tc += Distance(lat, lon, v.TopOfClimbLatitude, v.TopOfClimbLongitude);
                    tc_reached = true;
                } else {
                    to_tc += leg;
                }
            }
            if (row == restriction_row) target_distance = tc_reached ? 0 : to_tc;
        }
        lat = to.Latitude;
        lon = to.Longitude;
        leg_start = row;
    }

    // Step 3: from cruise on, T/D from the destination, the path and the direct line.
    const PlanWaypoint& destination = Plan()[last];
    if (!before_cruise) {
        if (has_td) {
            d.TdFromDest = DistanceBackTo(v.TopOfDescentLatitude, v.TopOfDescentLongitude, destination.Latitude,
                                          destination.Longitude, last - 1);
            const PlanWaypoint& target_row = Plan()[restriction_row];
            v.PathToTarget = DistanceBackTo(v.TopOfDescentLatitude, v.TopOfDescentLongitude, target_row.Latitude,
                                            target_row.Longitude, restriction_row - 1);
        }
        d.DistToTd = std::max(0.0, to_go - d.TdFromDest);
        double bearing = 0, direct = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, destination.Latitude, destination.Longitude, direct, bearing);
        d.DirectDistToDest = direct;
        d.BearingToDest = bearing;
        g_performance.kept_direct_to_destination = direct;
    }

    // Step 4: in descent, the target row, and T/D behind the aircraft.
    if (in_descent) {
        double to_target = 0;
        double tlat = g_sim.latitude, tlon = g_sim.longitude;
        for (int row = pc.ActiveLeg; row <= restriction_row; ++row) {
            const PlanWaypoint& to = Plan()[row];
            if (IsDiscontinuity(to)) continue;
            to_target += Distance(tlat, tlon, to.Latitude, to.Longitude);
            tlat = to.Latitude;
            tlon = to.Longitude;
        }
        v.DistToTargetRow = to_target;
        if (has_td)
            d.DistSinceTd = DistanceBackTo(v.TopOfDescentLatitude, v.TopOfDescentLongitude, g_sim.latitude,
                                           g_sim.longitude, pc.ActiveLeg - 1);
    }

    // Step 5: the distance to go.
    d.DistToGo = to_go;
    if (before_cruise && has_tc) d.DistToTc = to_tc;

    // Step 6: the phase tests, with a proper cruise altitude only.
    if (!proper_cruise) return;
    if (before_cruise) {
        if (has_tc && to_go < tc_from_dest) v.CruiseReached = 1;
        v.TargetDistance = target_distance != 0 ? target_distance : to_tc;
    } else if (v.DescentActive == 0) {
        v.TargetDistance = d.DistToTd;
        if (has_td && to_go <= d.TdFromDest) {
            v.DescentActive = 1;
            v.TargetAltitude = Plan()[restriction_row].Altitude;
        }
    } else {
        v.TargetDistance = v.DistToTargetRow;
        if (v.PathToTarget > 0) {
            v.PathAltitude = v.DescentStartAltitude -
                             (v.DescentStartAltitude - v.TargetAltitude) / v.PathToTarget * d.DistSinceTd;
            v.PathDeviationValid = 1;
        }
    }
}

// [SECTION] The vertical profile file

namespace {
constexpr char kProfileFile[] = "\\orb\\vnav_profile.txt";
constexpr char kProfileTemp[] = "\\orb\\vnav_profile.tmp";
constexpr int kProfileIdentSize = 24;         // a plan ident and its terminator

// nm along the plan from row 0 to a point on it: the leg the point lies on is
// the one it bends least (start-point-end longest over the leg's length).
// VNAV moves T/D after the prediction (to the end of the first descent
// segment), so its position is what counts. T/C keeps the predicted
// distance: VNAV moves its point onto a climb restriction as a target.
double AlongRouteOfPoint(double latitude, double longitude) {
    const int last = LastRow();
    double along = 0, best_along = -999, best_excess = 1e9;
    int from = -1;
    for (int row = 0; row <= last; ++row) {
        const PlanWaypoint& w = Plan()[row];
        if (IsDiscontinuity(w)) continue;
        if (from >= 0) {
            const PlanWaypoint& start = Plan()[from];
            double leg = RowDistance(from, row);
            double to_start = 0, to_end = 0, bearing = 0;
            GreatCircle(start.Latitude, start.Longitude, latitude, longitude, to_start, bearing);
            GreatCircle(latitude, longitude, w.Latitude, w.Longitude, to_end, bearing);
            double excess = to_start + to_end - leg;
            if (excess < best_excess) {
                best_excess = excess;
                best_along = along + std::min(to_start, leg);
            }
            along += leg;
        }
        from = row;
    }
    return best_along;
}
}  // namespace

void WriteVerticalProfileFile() {
    if (g_config.WriteVnavProfile != 1) return;
    const int last = LastRow();
    if (g_module.RootFolder[0] == 0) return;

    // Step 1: the paths; a root too long for them writes nothing.
    char final_path[kRootFolderSize + sizeof kProfileFile];
    char temp_path[kRootFolderSize + sizeof kProfileTemp];
    int final_length = std::snprintf(final_path, sizeof final_path, "%s%s", g_module.RootFolder.data(), kProfileFile);
    int temp_length = std::snprintf(temp_path, sizeof temp_path, "%s%s", g_module.RootFolder.data(), kProfileTemp);
    if (final_length <= 0 || temp_length <= 0 || static_cast<size_t>(final_length) >= sizeof final_path ||
        static_cast<size_t>(temp_length) >= sizeof temp_path)
        return;

    // Step 2: the table into the temporary file.
    FILE* file = _fsopen(temp_path, "w", _SH_DENYNO);
    if (file == nullptr) return;
    const VnavState& v = g_vnav;
    std::fprintf(file, "; orb1 vertical profile: the active plan as predicted at the last EXEC\n");
    std::fprintf(file, "; CRZ feet | TC/TD lat lon nm-from-origin | ROW index ident lat lon nm-from-origin altitude speed restricted\n");
    std::fprintf(file, "CRZ %d\n", g_plan.context.CruiseAltitude);
    if (v.TopOfClimbLatitude != 0 || v.TopOfClimbLongitude != 0)
        std::fprintf(file, "TC %.6f %.6f %.1f\n", v.TopOfClimbLatitude, v.TopOfClimbLongitude,
                     static_cast<double>(g_plan_distances.TcDistFromOrigin));
    else
        std::fprintf(file, "TC -999 -999 -999\n");
    if (v.TopOfDescentLatitude != 0 || v.TopOfDescentLongitude != 0)
        std::fprintf(file, "TD %.6f %.6f %.1f\n", v.TopOfDescentLatitude, v.TopOfDescentLongitude,
                     AlongRouteOfPoint(v.TopOfDescentLatitude, v.TopOfDescentLongitude));
    else
        std::fprintf(file, "TD -999 -999 -999\n");
    double along = 0;
    int from = -1;
    for (int row = 0; row <= last; ++row) {
        const PlanWaypoint& w = Plan()[row];
        if (!IsDiscontinuity(w)) {
            if (from >= 0) along += RowDistance(from, row);
            from = row;
        }
        char ident[kProfileIdentSize];
        int n = 0;
        for (; n < kProfileIdentSize - 1 && w.Ident[n] != 0; ++n) {
            char c = w.Ident[n];
            ident[n] = (c == ' ' || c == '\t' || c == '\r' || c == '\n') ? '_' : c;
        }
        ident[n] = 0;
        if (n == 0) {
            ident[0] = '-';
            ident[1] = 0;
        }
        double altitude = w.Altitude > kNoAltitude ? w.Altitude : kNoAltitude;
        double speed = w.Speed > kNoAltitude ? w.Speed : kNoAltitude;
        std::fprintf(file, "ROW %d %s %.6f %.6f %.1f %.0f %.0f %d\n", row, ident, w.Latitude, w.Longitude, along,
                     altitude, speed, std::clamp(w.Restricted, 0, 3));
    }
    bool written = std::ferror(file) == 0;
    if (std::fclose(file) != 0) written = false;

    // Step 3: in place of the old file in one move; a failed write leaves the old one.
    if (!written || !MoveFileExA(temp_path, final_path, MOVEFILE_REPLACE_EXISTING)) DeleteFileA(temp_path);
}
