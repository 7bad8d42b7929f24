// geodesy.cpp: great circles on a sphere of one minute of arc a mile, the
// folding of angles, the cross-track solution, the rough speed conversions
// and the wind triangle of the tick.
//
// GreatCircle is the hottest function of the module (every plan recompute,
// every map object): a plain call on doubles, no allocation, no caching.
#include "guidance/geodesy.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {
constexpr double kTwoPi = 2.0 * std::numbers::pi;
}  // namespace

double ModuloPositive(double x, double m) { return x - m * std::floor(x / m); }

void GreatCircle(double lat1, double lon1, double lat2, double lon2, double& distance, double& bearing) {
    double phi1 = lat1 * kDegToRad;
    double phi2 = lat2 * kDegToRad;
    double dlambda = (lon2 - lon1) * kDegToRad;
    double sin1 = std::sin(phi1), cos1 = std::cos(phi1);
    double sin2 = std::sin(phi2), cos2 = std::cos(phi2);
    double cos_dl = std::cos(dlambda);
    // Law of cosines; near-identical points round a hair above 1.
    double c = std::clamp(sin2 * sin1 + cos2 * cos1 * cos_dl, -1.0, 1.0);
    distance = std::acos(c) * kEarthRadiusNm;
    double theta = std::atan2(std::sin(dlambda) * cos2, sin2 * cos1 - sin1 * cos2 * cos_dl);
    bearing = ModuloPositive(theta, kTwoPi) * kRadToDeg;
    // North is 360, never 0: every bearing below 1 degree reads 360.
    if (static_cast<int>(bearing) == 0) bearing = 360.0;
}

void ProjectPoint(double lat, double lon, double bearing, double distance, double& lat2, double& lon2) {
    if (bearing == 360.0) bearing = 0.0;
    double delta = distance * kPi / 10800.0;
    double theta = bearing * kDegToRad;
    double phi1 = lat * kDegToRad;
    double lambda1 = lon * kDegToRad;
    double phi2 = std::asin(std::clamp(std::sin(phi1) * std::cos(delta) + std::cos(phi1) * std::sin(delta) * std::cos(theta), -1.0, 1.0));
    double lambda2 = ModuloPositive(lambda1 + std::atan2(std::sin(theta) * std::sin(delta) * std::cos(phi1),
                                                         std::cos(delta) - std::sin(phi1) * std::sin(phi2)) + kPi,
                                    kTwoPi) - kPi;
    lat2 = phi2 * kRadToDeg;
    lon2 = lambda2 * kRadToDeg;
}

double AngleBetween(double a, double b) {
    double d;
    if (a <= b) {
        d = b - a;
        if (d > 180) d = (360 - b) + a;
    } else {
        d = a - b;
        if (d > 180) d = (360 - a) + b;
    }
    return d;
}

int TurnSideTo(double target, double current) {
    if (target < current) return current - target > 180 ? 2 : 1;
    return target - current > 180 ? 1 : 2;
}

double NormaliseMagnetic(double direction) {
    if (direction < 0.5) return direction + 360.0;
    if (direction >= 360.0) return direction - 360.0;
    return direction;
}

void CrossTrackSolve(const CrossTrackInput& in, CrossTrackResult& out) {
    // 1. No active waypoint: the sentinel alone.
    if (!in.has_active_waypoint) {
        out.xtk_distance = kNoCrossTrack;
        return;
    }

    // 2. Bearing from the aircraft to the active waypoint.
    double distance_unused = 0, beta = 0;
    GreatCircle(in.aircraft_lat, in.aircraft_lon, in.waypoint_lat, in.waypoint_lon, distance_unused, beta);

    // 3. True course of the reference leg and its magnetic form. Only 360 is
    //    added below 0.5; nothing comes off at 360 or above, so a north leg
    //    with west variation reads 365 here, against a heading of 5.
    double leg_length_unused = 0, c = 0;
    GreatCircle(in.start_lat, in.start_lon, in.waypoint_lat, in.waypoint_lon, leg_length_unused, c);
    double c_m = c - in.magnetic_variation;
    if (c_m < 0.5) c_m += 360.0;

    // 4. The point abeam the aircraft on the leg.
    double along = in.leg_length - in.distance_to_go;
    double abeam_lat = 0, abeam_lon = 0;
    ProjectPoint(in.start_lat, in.start_lon, in.leg_course_magnetic + in.magnetic_variation, along, abeam_lat, abeam_lon);

    // 5. Cross track, unsigned, and the bearing from the abeam point to the aircraft.
    double xtk = 0, b = 0;
    GreatCircle(abeam_lat, abeam_lon, in.aircraft_lat, in.aircraft_lon, xtk, b);

    // 6. Limit.
    if (xtk > kCrossTrackLimit) xtk = kCrossTrackLimit;
    out.xtk_distance = xtk;

    // 7. Heading against the magnetic course; the difference is not folded.
    double h = in.heading_magnetic;
    if (h > c_m) {
        out.heading_side = (h - c_m > 180.0) ? 2 : 1;
        out.heading_diff = h - c_m;
    } else {
        out.heading_side = (c_m - h > 180.0) ? 1 : 2;
        out.heading_diff = c_m - h;
    }

    // 8. Bearing to the waypoint against the true course.
    if (beta > c) {
        out.bearing_side = (beta - c > 180.0) ? 2 : 1;
        out.bearing_diff = beta - c;
    } else {
        out.bearing_side = (c - beta > 180.0) ? 1 : 2;
        out.bearing_diff = c - beta;
    }

    // 9. Side of the course line: 1 is right of it.
    if (b > c)
        out.xtk_side = (b - c > 180.0) ? 2 : 1;
    else
        out.xtk_side = (c - b > 180.0) ? 1 : 2;
}

double IasToTas(double ias, double altitude) { return ias * 0.019 * (altitude / 1000.0) + ias; }

double TasToIas(double tas, double altitude) { return tas / ((altitude / 1000.0) * 1.9 + 100.0) * 100.0; }

namespace {
// Knots of true airspeed per Mach at the given temperature: 38.967854 times
// the root of the absolute temperature. 0 at or below absolute zero, where
// the cruise temperature is not a temperature (an unset -999).
double SpeedOfSound(double oat_celsius) {
    double kelvin = oat_celsius + 273.15;
    if (!(kelvin > 0.0)) return 0.0;
    return std::sqrt(kelvin) * 38.967854;
}
}  // namespace

double IasToMach(double ias, double altitude, double cruise_oat) {
    double sound = SpeedOfSound(cruise_oat);
    if (sound == 0.0) return 0.0;
    return (ias * 0.019 * altitude / 1000.0 + ias) / sound;
}

double MachToIas(double mach, double cruise_oat) {
    // The altitude is fixed at 38000 ft, whatever the aircraft's.
    double tas = SpeedOfSound(cruise_oat) * mach;
    return TasToIas(tas, 38000.0);
}

unsigned ToBcd(unsigned value, unsigned base, unsigned radix) {
    // A base below 2 has no digits to move; leave the value alone.
    if (base < 2) return value;
    if (value < base) return value;
    return ToBcd(value / base, base, radix) * radix + value % base;
}

WindTriangle SolveWind(double heading_true, double wind_direction_true, double wind_speed, double ground_speed) {
    WindTriangle w;
    double theta_h = heading_true * kDegToRad;
    double theta_w = wind_direction_true * kDegToRad;
    w.head_wind = std::cos(theta_w - theta_h) * wind_speed;
    w.cross_wind = std::sin(theta_w - theta_h) * wind_speed;
    w.true_airspeed = (ground_speed <= kMinGroundSpeedForWind) ? 0.0 : w.head_wind + ground_speed;
    // One in sixty, no trigonometry. The track ignores the drift while the
    // estimate is 0, so the division by it is skipped.
    w.drift_angle = (w.true_airspeed != 0.0) ? w.cross_wind / (w.true_airspeed / 60.0) : 0.0;
    return w;
}

double EstimatedTrack(double heading_magnetic, const WindTriangle& wind) {
    double track = heading_magnetic;
    if (wind.true_airspeed > 0.0) {
        track = heading_magnetic - wind.drift_angle;
        if (track < 0.0) track += 360.0;
    }
    return track;
}

// [SECTION] Crossing of two radials
// The classic spherical triangle over the great circle through both points,
// worked with longitudes west positive as the formula sets write it.
int RadialIntersection(double lat1, double lon1, double course1, double lat2, double lon2, double course2,
                       double& lat, double& lon) {
    // 1. Radians, west positive; a course of 360 is north.
    if (course1 == 360.0) course1 = 0.0;
    if (course2 == 360.0) course2 = 0.0;
    double phi1 = lat1 * kDegToRad, lam1 = -lon1 * kDegToRad;
    double phi2 = lat2 * kDegToRad, lam2 = -lon2 * kDegToRad;
    double crs13 = course1 * kDegToRad, crs23 = course2 * kDegToRad;
    if (!std::isfinite(phi1 + lam1 + phi2 + lam2 + crs13 + crs23)) return kNoIntersection;

    // 2. Distance between the points and the courses from each to the other.
    double s1 = std::sin((phi1 - phi2) / 2), s2 = std::sin((lam1 - lam2) / 2);
    double dst12 = 2 * std::asin(std::clamp(std::sqrt(s1 * s1 + std::cos(phi1) * std::cos(phi2) * s2 * s2), 0.0, 1.0));
    double sin_d = std::sin(dst12);
    // Coincident or antipodal points span no triangle.
    if (std::fabs(sin_d) < 1e-12 || std::fabs(std::cos(phi1)) < 1e-12 || std::fabs(std::cos(phi2)) < 1e-12)
        return kNoIntersection;
    double a12 = std::acos(std::clamp((std::sin(phi2) - std::sin(phi1) * std::cos(dst12)) / (sin_d * std::cos(phi1)), -1.0, 1.0));
    double a21 = std::acos(std::clamp((std::sin(phi1) - std::sin(phi2) * std::cos(dst12)) / (sin_d * std::cos(phi2)), -1.0, 1.0));
    double crs12, crs21;
    if (std::sin(lam2 - lam1) < 0) {
        crs12 = a12;
        crs21 = kTwoPi - a21;
    } else {
        crs12 = kTwoPi - a12;
        crs21 = a21;
    }

    // 3. The triangle's angles at the two points; both on one side, or none.
    double ang1 = ModuloPositive(crs13 - crs12 + kPi, kTwoPi) - kPi;
    double ang2 = ModuloPositive(crs21 - crs23 + kPi, kTwoPi) - kPi;
    if (!(std::sin(ang1) * std::sin(ang2) > 1e-15)) return kNoIntersection;
    ang1 = std::fabs(ang1);
    ang2 = std::fabs(ang2);

    // 4. The third angle, the distance to the crossing and its position.
    double ang3 = std::acos(std::clamp(-std::cos(ang1) * std::cos(ang2) + std::sin(ang1) * std::sin(ang2) * std::cos(dst12), -1.0, 1.0));
    double dst13 = std::atan2(sin_d * std::sin(ang1) * std::sin(ang2), std::cos(ang2) + std::cos(ang1) * std::cos(ang3));
    double phi3 = std::asin(std::clamp(std::sin(phi1) * std::cos(dst13) + std::cos(phi1) * std::sin(dst13) * std::cos(crs13), -1.0, 1.0));
    double dlam = std::atan2(std::sin(crs13) * std::sin(dst13) * std::cos(phi1), std::cos(dst13) - std::sin(phi1) * std::sin(phi3));
    double lam3 = ModuloPositive(lam1 - dlam + kPi, kTwoPi) - kPi;
    lat = phi3 * kRadToDeg;
    lon = -lam3 * kRadToDeg;
    return 0;
}
