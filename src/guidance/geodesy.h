// geodesy.h: the numeric core of guidance and the maps. A spherical Earth,
// nautical miles, degrees; bearings out of GreatCircle run 1 to 360 inclusive.
#pragma once

constexpr double kEarthRadiusNm = 3437.7467707849396;  // 10800 / pi: one minute of arc a mile
constexpr double kDegToRad = 0.017453292519943295;
constexpr double kRadToDeg = 57.29577951308232;
constexpr double kPi = 3.14159265358979323846;  // M_PI is not standard C++

// Distance (nm) and initial true bearing (1..360) from the first point to the second.
void GreatCircle(double lat1, double lon1, double lat2, double lon2, double& distance, double& bearing);
// The point `distance` nm along the true `bearing` from the start; longitude in -180..180.
void ProjectPoint(double lat, double lon, double bearing, double distance, double& lat2, double& lon2);
// x - m * floor(x / m).
double ModuloPositive(double x, double m);
// Unsigned difference of two directions, 0..180.
double AngleBetween(double a, double b);
// 1 left, 2 right: the short way from current to target.
int TurnSideTo(double target, double current);
// The crossing of two radials, each a point and a true course (360 reads 0),
// on the sphere: 0 with the crossing in lat, lon, or -99 when the radials
// don't cross (parallel or coincident). The crossing may be either of the two
// antipodes; the callers choose.
constexpr int kNoIntersection = -99;
int RadialIntersection(double lat1, double lon1, double course1, double lat2, double lon2, double course2,
                       double& lat, double& lon);
// A magnetic direction (true less the variation) brought into the system's
// range: below 0.5 add 360, 360 or above subtract 360. So 0.4 reads 360.4
// and 360 reads 0.
double NormaliseMagnetic(double direction);

// The cross-track solution against a reference leg, from its start point to
// the active waypoint. Pure: the caller supplies the plan and the samples.
struct CrossTrackInput {
    bool has_active_waypoint = false;
    double start_lat = 0, start_lon = 0;             // degrees: previous waypoint or the intercept point
    double waypoint_lat = 0, waypoint_lon = 0;       // degrees: the active waypoint
    double aircraft_lat = 0, aircraft_lon = 0;       // degrees
    double leg_length = 0;                           // nm, as the tick keeps it
    double distance_to_go = 0;                       // nm, aircraft to the active waypoint
    double leg_course_magnetic = 0;                  // degrees, as the tick keeps it
    double heading_magnetic = 0;                     // degrees, sampled
    double magnetic_variation = 0;                   // degrees, sampled, east positive
};

struct CrossTrackResult {
    int bearing_side = 0;                            // TurnSide of the bearing to the waypoint against the true course
    double bearing_diff = 0;                         // degrees, unfolded
    int xtk_side = 0;                                // 1: aircraft right of the course line (shown "L")
    double xtk_distance = -99.0;                     // nm, unsigned, at most 125; -99 without an active waypoint
    int heading_side = 0;                            // TurnSide of the heading against the magnetic course
    double heading_diff = 0;                         // degrees, unfolded
};

constexpr double kNoCrossTrack = -99.0;              // xtk_distance without an active waypoint
constexpr double kCrossTrackLimit = 125.0;           // nm; farther reads as this

// Without an active waypoint only xtk_distance is written (-99).
void CrossTrackSolve(const CrossTrackInput& in, CrossTrackResult& out);

// Rough speed conversions of the predictions: 1.9 % more true airspeed for
// each 1000 ft. The Mach ones take the cruise outside air temperature
// (degrees Celsius); at or below absolute zero they give 0.
double IasToTas(double ias, double altitude);
double TasToIas(double tas, double altitude);
double IasToMach(double ias, double altitude, double cruise_oat);
double MachToIas(double mach, double cruise_oat);

// Writes a number digit by digit from one radix into another: with the
// defaults, decimal digits into hexadecimal positions, 11370 -> 0x11370.
unsigned ToBcd(unsigned value, unsigned base = 10, unsigned radix = 16);

// The wind triangle of the tick (true heading and true wind direction in).
constexpr double kMinGroundSpeedForWind = 25.0;     // knots; at or below it the airspeed estimate is 0

struct WindTriangle {
    double head_wind = 0;                            // knots
    double cross_wind = 0;                           // knots
    double true_airspeed = 0;                        // estimate; 0 at 25 kt ground speed or less
    double drift_angle = 0;                          // degrees, one-in-sixty; 0 while the estimate is 0
};
WindTriangle SolveWind(double heading_true, double wind_direction_true, double wind_speed, double ground_speed);
// Track from the magnetic heading and the drift, as the tick keeps it.
double EstimatedTrack(double heading_magnetic, const WindTriangle& wind);
