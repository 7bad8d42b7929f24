// geodesy.cpp: great circles on a sphere of one minute of arc a mile.
//
// GreatCircle is the hottest function of the module (every plan recompute,
// every map object): a plain call on doubles, no allocation, no caching.
#include "guidance/geodesy.h"

#include <algorithm>
#include <cmath>

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
    bearing = ModuloPositive(theta, 2.0 * kPi) * kRadToDeg;
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
                                    2.0 * kPi) - kPi;
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
