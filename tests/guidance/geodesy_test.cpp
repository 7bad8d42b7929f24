// Geodesy and flight maths against worked figures: the classic Los Angeles to
// New York great circle, the antimeridian, the 360/0 folding of bearings, the
// magnetic normalising, the cross-track sides, the wind triangle and the
// rough speed conversions.
#include "guidance/geodesy.h"

#include "support/run_command.h"

#include <gtest/gtest.h>


#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace {

constexpr double kMinute = 1.0 / 60.0;
// LAX 33 57'N 118 24'W and JFK 40 38'N 73 47'W.
constexpr double kLaxLat = 33.0 + 57.0 * kMinute, kLaxLon = -(118.0 + 24.0 * kMinute);
constexpr double kJfkLat = 40.0 + 38.0 * kMinute, kJfkLon = -(73.0 + 47.0 * kMinute);

double Radians(double degrees) { return degrees * 3.14159265358979323846 / 180.0; }

}  // namespace

TEST(Geodesy, GreatCircleLosAngelesToNewYork) {
    // The worked example on a sphere: 0.623585 radians of arc, about 2144 nm,
    // initial true course 1.150035 radians (66 degrees).
    double distance = 0, bearing = 0;
    GreatCircle(kLaxLat, kLaxLon, kJfkLat, kJfkLon, distance, bearing);
    EXPECT_NEAR(distance / kEarthRadiusNm, 0.623585, 1e-6);
    EXPECT_NEAR(distance, 2144.0, 0.5);
    EXPECT_NEAR(Radians(bearing), 1.150035, 1e-6);
    EXPECT_EQ(static_cast<int>(std::lround(bearing)), 66);

    // The way back is as long; its initial course points west of north-west.
    double back = 0, back_bearing = 0;
    GreatCircle(kJfkLat, kJfkLon, kLaxLat, kLaxLon, back, back_bearing);
    EXPECT_NEAR(back, distance, 1e-9);
    EXPECT_GT(back_bearing, 270.0);
    EXPECT_LT(back_bearing, 285.0);
}

TEST(Geodesy, ProjectPointAlongTheLosAngelesNewYorkCourse) {
    double distance = 0, course = 0;
    GreatCircle(kLaxLat, kLaxLon, kJfkLat, kJfkLon, distance, course);
    // 100 nm out on the course: 0.604180, 2.034206 radians (34 37'N 116 33'W).
    double lat = 0, lon = 0;
    ProjectPoint(kLaxLat, kLaxLon, course, 100.0, lat, lon);
    EXPECT_NEAR(Radians(lat), 0.604180, 2e-6);
    EXPECT_NEAR(Radians(-lon), 2.034206, 2e-6);
    EXPECT_NEAR(lat, 34.0 + 37.0 * kMinute, 0.5 * kMinute);
    EXPECT_NEAR(-lon, 116.0 + 33.0 * kMinute, 0.5 * kMinute);

    // The point lies on the route: the rest of the way is the rest of the distance.
    double rest = 0, rest_bearing = 0;
    GreatCircle(lat, lon, kJfkLat, kJfkLon, rest, rest_bearing);
    EXPECT_NEAR(rest, distance - 100.0, 1e-6);
    // Going back 100 nm on the reciprocal of the local course returns to LAX.
    double back_lat = 0, back_lon = 0;
    ProjectPoint(lat, lon, ModuloPositive(rest_bearing + 180.0, 360.0), 100.0, back_lat, back_lon);
    EXPECT_NEAR(back_lat, kLaxLat, 1e-9);
    EXPECT_NEAR(back_lon, kLaxLon, 1e-9);
}

TEST(Geodesy, MeridiansEquatorAndIdenticalPoints) {
    double d = 0, b = 0;
    // A minute of arc is a mile: a degree of the equator is 60 nm.
    GreatCircle(0, 10, 0, 11, d, b);
    EXPECT_NEAR(d, 60.0, 1e-9);
    EXPECT_NEAR(b, 90.0, 1e-9);
    GreatCircle(0, 0, 90, 0, d, b);
    EXPECT_NEAR(d, 5400.0, 1e-9);
    EXPECT_EQ(b, 360.0);
    GreatCircle(0, 0, -90, 0, d, b);
    EXPECT_NEAR(d, 5400.0, 1e-9);
    EXPECT_NEAR(b, 180.0, 1e-9);
    GreatCircle(50, 5, 49, 5, d, b);
    EXPECT_NEAR(d, 60.0, 1e-6);
    EXPECT_NEAR(b, 180.0, 1e-9);

    // Identical points: distance 0, or the little that acos of a value next
    // to 1 gives, never NaN from a value a hair above 1; north as 360.
    for (double lat : {0.0, 12.3456789, 47.123456789012, -33.9, 89.9999}) {
        for (double lon : {0.0, -118.4, 179.99999, 7.000000001}) {
            GreatCircle(lat, lon, lat, lon, d, b);
            EXPECT_GE(d, 0.0) << lat << " " << lon;
            EXPECT_LT(d, 1e-4) << lat << " " << lon;
            EXPECT_EQ(b, 360.0) << lat << " " << lon;
        }
    }
}

TEST(Geodesy, BearingsRunFromOneToThreeSixtyWithNorthAsThreeSixty) {
    double d = 0, b = 0;
    // Points 60 nm out at chosen bearings, read back through GreatCircle.
    auto bearing_to = [&](double bearing) {
        double lat = 0, lon = 0;
        ProjectPoint(10.0, 20.0, bearing, 60.0, lat, lon);
        GreatCircle(10.0, 20.0, lat, lon, d, b);
        return b;
    };
    EXPECT_EQ(bearing_to(0.7), 360.0);
    EXPECT_EQ(bearing_to(0.0), 360.0);
    EXPECT_EQ(bearing_to(0.999), 360.0);
    EXPECT_NEAR(bearing_to(1.001), 1.001, 1e-9);
    EXPECT_NEAR(bearing_to(1.3), 1.3, 1e-9);
    EXPECT_NEAR(bearing_to(359.5), 359.5, 1e-9);
    EXPECT_NEAR(bearing_to(180.0), 180.0, 1e-9);
    // A sweep never yields anything outside 1..360.
    for (int tenth = 0; tenth < 3600; ++tenth) {
        double got = bearing_to(tenth / 10.0);
        ASSERT_GE(got, 1.0) << tenth;
        ASSERT_LE(got, 360.0) << tenth;
    }
}

TEST(Geodesy, ProjectPointTakesThreeSixtyAsZeroAndWrapsTheAntimeridian) {
    double lat360 = 0, lon360 = 0, lat0 = 0, lon0 = 0;
    ProjectPoint(51.5, -0.5, 360.0, 250.0, lat360, lon360);
    ProjectPoint(51.5, -0.5, 0.0, 250.0, lat0, lon0);
    EXPECT_EQ(lat360, lat0);
    EXPECT_EQ(lon360, lon0);
    EXPECT_NEAR(lat0, 51.5 + 250.0 / 60.0, 1e-9);

    // East across the antimeridian along the equator.
    double lat = 0, lon = 0;
    ProjectPoint(0.0, 179.5, 90.0, 60.0, lat, lon);
    EXPECT_NEAR(lat, 0.0, 1e-9);
    EXPECT_NEAR(lon, -179.5, 1e-9);
    // And west back.
    ProjectPoint(0.0, -179.5, 270.0, 60.0, lat, lon);
    EXPECT_NEAR(lon, 179.5, 1e-9);
    // Long ways round stay in -180..180.
    for (double dist : {100.0, 1000.0, 5000.0, 10000.0, 20000.0}) {
        for (double brg : {45.0, 90.0, 135.0, 225.0, 270.0, 315.0}) {
            ProjectPoint(35.0, 170.0, brg, dist, lat, lon);
            EXPECT_GE(lon, -180.0);
            EXPECT_LE(lon, 180.0);
            EXPECT_GE(lat, -90.0);
            EXPECT_LE(lat, 90.0);
        }
    }
    // GreatCircle across it: the short way, 120 nm, east then west.
    double d = 0, b = 0;
    GreatCircle(0.0, 179.0, 0.0, -179.0, d, b);
    EXPECT_NEAR(d, 120.0, 1e-9);
    EXPECT_NEAR(b, 90.0, 1e-9);
    GreatCircle(0.0, -179.0, 0.0, 179.0, d, b);
    EXPECT_NEAR(d, 120.0, 1e-9);
    EXPECT_NEAR(b, 270.0, 1e-9);
    // At 60 degrees north a degree of longitude is about 30 nm, and the
    // great circle crossing the antimeridian starts a hair north of east.
    GreatCircle(60.0, 179.5, 60.0, -179.5, d, b);
    EXPECT_NEAR(d, 30.0, 0.01);
    EXPECT_GT(b, 89.0);
    EXPECT_LT(b, 90.0);
}

TEST(Geodesy, ModuloAngleBetweenAndTurnSide) {
    EXPECT_DOUBLE_EQ(ModuloPositive(-30.0, 360.0), 330.0);
    EXPECT_DOUBLE_EQ(ModuloPositive(725.0, 360.0), 5.0);
    EXPECT_DOUBLE_EQ(ModuloPositive(360.0, 360.0), 0.0);

    EXPECT_DOUBLE_EQ(AngleBetween(10.0, 350.0), 20.0);
    EXPECT_DOUBLE_EQ(AngleBetween(350.0, 10.0), 20.0);
    EXPECT_DOUBLE_EQ(AngleBetween(0.0, 180.0), 180.0);
    EXPECT_DOUBLE_EQ(AngleBetween(90.0, 271.0), 179.0);
    EXPECT_DOUBLE_EQ(AngleBetween(271.0, 90.0), 179.0);
    EXPECT_DOUBLE_EQ(AngleBetween(45.0, 135.0), 90.0);
    EXPECT_DOUBLE_EQ(AngleBetween(360.0, 1.0), 1.0);

    // The short way from 350 to 10 is right, from 10 to 350 left.
    EXPECT_EQ(TurnSideTo(10.0, 350.0), 2);
    EXPECT_EQ(TurnSideTo(350.0, 10.0), 1);
    EXPECT_EQ(TurnSideTo(80.0, 90.0), 1);
    EXPECT_EQ(TurnSideTo(100.0, 90.0), 2);
    EXPECT_EQ(TurnSideTo(90.0, 90.0), 2);
    // Exactly opposite: left when the target is the smaller number.
    EXPECT_EQ(TurnSideTo(90.0, 270.0), 1);
    EXPECT_EQ(TurnSideTo(270.0, 90.0), 2);
}

TEST(Geodesy, MagneticNormalisingUsesHalfADegreeAsTheLowerLimit) {
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(0.4), 360.4);
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(0.5), 0.5);
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(360.0), 0.0);
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(0.0), 360.0);
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(-10.0), 350.0);
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(370.0), 10.0);
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(359.9), 359.9);
    // A true 5 with 15 east variation is magnetic 350.
    EXPECT_DOUBLE_EQ(NormaliseMagnetic(5.0 - 15.0), 350.0);
}

namespace {
// A leg east along the equator from 0,0 to 0,2 (true course 90, 120 nm),
// with the aircraft abeam its middle, `north` degrees off the line.
CrossTrackInput EquatorLeg(double north, double variation = 0.0) {
    CrossTrackInput in;
    in.has_active_waypoint = true;
    in.start_lat = 0.0;
    in.start_lon = 0.0;
    in.waypoint_lat = 0.0;
    in.waypoint_lon = 2.0;
    in.aircraft_lat = north;
    in.aircraft_lon = 1.0;
    in.leg_length = 120.0;
    in.distance_to_go = 60.0;  // abeam the middle
    in.magnetic_variation = variation;
    in.leg_course_magnetic = NormaliseMagnetic(90.0 - variation);
    in.heading_magnetic = in.leg_course_magnetic;
    return in;
}
}  // namespace

TEST(Geodesy, CrossTrackSidesOnBothSidesOfALeg) {
    // 0.1 degree north of an eastbound leg: 6 nm left of it.
    CrossTrackResult left;
    CrossTrackSolve(EquatorLeg(0.1), left);
    EXPECT_NEAR(left.xtk_distance, 6.0, 1e-6);
    EXPECT_EQ(left.xtk_side, 2);
    // The waypoint lies right of north-of-track aircraft's course: bearing above 90.
    EXPECT_EQ(left.bearing_side, 1);
    EXPECT_NEAR(left.bearing_diff, 5.7, 0.05);
    EXPECT_EQ(left.heading_side, 2);
    EXPECT_NEAR(left.heading_diff, 0.0, 1e-9);

    // 0.1 degree south: 6 nm right of it, side 1 (the pages print "L").
    CrossTrackResult right;
    CrossTrackSolve(EquatorLeg(-0.1), right);
    EXPECT_NEAR(right.xtk_distance, 6.0, 1e-6);
    EXPECT_EQ(right.xtk_side, 1);
    EXPECT_EQ(right.bearing_side, 2);
    EXPECT_NEAR(right.bearing_diff, 5.7, 0.05);

    // On the line: no distance.
    CrossTrackResult on;
    CrossTrackSolve(EquatorLeg(0.0), on);
    EXPECT_NEAR(on.xtk_distance, 0.0, 1e-6);

    // A westbound leg flips the sides: north of it is right.
    CrossTrackInput west = EquatorLeg(0.1);
    west.start_lon = 2.0;
    west.waypoint_lon = 0.0;
    west.leg_course_magnetic = 270.0;
    west.heading_magnetic = 270.0;
    CrossTrackResult west_out;
    CrossTrackSolve(west, west_out);
    EXPECT_NEAR(west_out.xtk_distance, 6.0, 1e-6);
    EXPECT_EQ(west_out.xtk_side, 1);
}

TEST(Geodesy, CrossTrackHeadingSideAndVariation) {
    // With 10 degrees east variation the magnetic course is 80; the abeam
    // point is still found on the true line (80 + 10).
    CrossTrackInput in = EquatorLeg(0.1, 10.0);
    ASSERT_DOUBLE_EQ(in.leg_course_magnetic, 80.0);
    in.heading_magnetic = 70.0;
    CrossTrackResult out;
    CrossTrackSolve(in, out);
    EXPECT_NEAR(out.xtk_distance, 6.0, 1e-6);
    EXPECT_EQ(out.heading_side, 2);
    EXPECT_NEAR(out.heading_diff, 10.0, 1e-9);

    in.heading_magnetic = 95.0;
    CrossTrackSolve(in, out);
    EXPECT_EQ(out.heading_side, 1);
    EXPECT_NEAR(out.heading_diff, 15.0, 1e-9);

    // Across north the difference isn't folded: 350 against 80.
    in.heading_magnetic = 350.0;
    CrossTrackSolve(in, out);
    EXPECT_EQ(out.heading_side, 2);
    EXPECT_NEAR(out.heading_diff, 270.0, 1e-9);

    // A northbound leg with 5 east variation: true 360, magnetic 355.
    CrossTrackInput north;
    north.has_active_waypoint = true;
    north.start_lat = 0.0;
    north.waypoint_lat = 2.0;
    north.aircraft_lat = 1.0;
    north.aircraft_lon = 0.05;  // 3 nm east of the line
    north.leg_length = 120.0;
    north.distance_to_go = 60.0;
    north.magnetic_variation = 5.0;
    north.leg_course_magnetic = 355.0;
    north.heading_magnetic = 10.0;
    CrossTrackSolve(north, out);
    EXPECT_NEAR(out.xtk_distance, 3.0 * std::cos(Radians(1.0)), 1e-6);
    EXPECT_EQ(out.xtk_side, 1);  // east of a northbound line is right
    EXPECT_EQ(out.heading_side, 1);
    EXPECT_NEAR(out.heading_diff, 345.0, 1e-9);

    // The same leg with 5 west: the course is only lifted below 0.5, so it
    // reads 365 here, and a heading of 5 is 360 from it, on the far side.
    north.magnetic_variation = -5.0;
    north.leg_course_magnetic = 5.0;
    north.heading_magnetic = 5.0;
    CrossTrackSolve(north, out);
    EXPECT_NEAR(out.xtk_distance, 3.0 * std::cos(Radians(1.0)), 1e-6);
    EXPECT_EQ(out.heading_side, 1);
    EXPECT_NEAR(out.heading_diff, 360.0, 1e-9);
    // Heading 355 against 365: 10 short of it, no flip.
    north.heading_magnetic = 355.0;
    CrossTrackSolve(north, out);
    EXPECT_EQ(out.heading_side, 2);
    EXPECT_NEAR(out.heading_diff, 10.0, 1e-9);
    // A course just below 0.5 is lifted: true 360 with 359.7 east reads 360.3.
    north.magnetic_variation = 359.7;
    north.heading_magnetic = 0.3;
    CrossTrackSolve(north, out);
    EXPECT_EQ(out.heading_side, 1);
    EXPECT_NEAR(out.heading_diff, 360.0, 1e-9);
}

TEST(Geodesy, CrossTrackSentinelAndLimit) {
    CrossTrackInput in = EquatorLeg(0.1);
    in.has_active_waypoint = false;
    CrossTrackResult out;
    out.bearing_side = 7;
    out.bearing_diff = 7.5;
    out.xtk_side = 7;
    out.heading_side = 7;
    out.heading_diff = 7.5;
    out.xtk_distance = 12.0;
    CrossTrackSolve(in, out);
    EXPECT_EQ(out.xtk_distance, -99.0);
    // Nothing else is written.
    EXPECT_EQ(out.bearing_side, 7);
    EXPECT_EQ(out.bearing_diff, 7.5);
    EXPECT_EQ(out.xtk_side, 7);
    EXPECT_EQ(out.heading_side, 7);
    EXPECT_EQ(out.heading_diff, 7.5);

    // 130 nm off the line reads 125; 120 nm reads 120.
    CrossTrackSolve(EquatorLeg(130.0 / 60.0), out);
    EXPECT_EQ(out.xtk_distance, 125.0);
    EXPECT_EQ(out.xtk_side, 2);
    CrossTrackSolve(EquatorLeg(-2.0), out);
    EXPECT_NEAR(out.xtk_distance, 120.0, 1e-6);
    EXPECT_EQ(out.xtk_side, 1);
}

TEST(Geodesy, WindTriangleAboveAndAtTwentyFiveKnots) {
    // Heading north, 30 kt from the east, 120 kt over the ground: all cross
    // wind, drift 30 / (120 / 60) = 15 degrees to the left.
    WindTriangle w = SolveWind(360.0, 90.0, 30.0, 120.0);
    EXPECT_NEAR(w.head_wind, 0.0, 1e-9);
    EXPECT_NEAR(w.cross_wind, 30.0, 1e-9);
    EXPECT_NEAR(w.true_airspeed, 120.0, 1e-9);
    EXPECT_NEAR(w.drift_angle, 15.0, 1e-9);
    // Magnetic heading 10: track 10 - 15 = -5, read as 355.
    EXPECT_NEAR(EstimatedTrack(10.0, w), 355.0, 1e-9);
    EXPECT_NEAR(EstimatedTrack(100.0, w), 85.0, 1e-9);

    // A straight head wind of 20 kt at 100 kt ground speed: 120 kt, no drift.
    w = SolveWind(270.0, 270.0, 20.0, 100.0);
    EXPECT_NEAR(w.head_wind, 20.0, 1e-9);
    EXPECT_NEAR(w.cross_wind, 0.0, 1e-9);
    EXPECT_NEAR(w.true_airspeed, 120.0, 1e-9);
    EXPECT_NEAR(w.drift_angle, 0.0, 1e-9);

    // Tail wind from 225 on heading 45: 40 kt less airspeed than ground speed.
    w = SolveWind(45.0, 225.0, 40.0, 300.0);
    EXPECT_NEAR(w.head_wind, -40.0, 1e-9);
    EXPECT_NEAR(w.true_airspeed, 260.0, 1e-9);

    // 20 kt from 45 on heading 90 at 200 kt: head 20 cos 45, cross -20 sin 45,
    // drift to the right by 14.142 / (214.142 / 60).
    w = SolveWind(90.0, 45.0, 20.0, 200.0);
    const double h = 20.0 * std::sqrt(0.5);
    EXPECT_NEAR(w.head_wind, h, 1e-9);
    EXPECT_NEAR(w.cross_wind, -h, 1e-9);
    EXPECT_NEAR(w.true_airspeed, 200.0 + h, 1e-9);
    EXPECT_NEAR(w.drift_angle, -h / ((200.0 + h) / 60.0), 1e-9);
    EXPECT_NEAR(EstimatedTrack(358.0, w), 358.0 + h / ((200.0 + h) / 60.0) , 1e-9);

    // At 25 kt or less the estimate is 0 and the track is the heading.
    w = SolveWind(360.0, 90.0, 30.0, 25.0);
    EXPECT_EQ(w.true_airspeed, 0.0);
    EXPECT_EQ(EstimatedTrack(10.0, w), 10.0);
    EXPECT_NEAR(w.cross_wind, 30.0, 1e-9);
    w = SolveWind(360.0, 90.0, 30.0, 25.01);
    EXPECT_NEAR(w.true_airspeed, 25.01, 1e-9);
    EXPECT_NEAR(EstimatedTrack(100.0, w), 100.0 - 30.0 / (25.01 / 60.0), 1e-9);
    // Ground speed above 25 but a head wind that cancels it: no drift, no track change.
    w = SolveWind(0.0, 180.0, 30.0, 30.0);
    EXPECT_NEAR(w.true_airspeed, 0.0, 1e-9);
    EXPECT_TRUE(std::isfinite(w.drift_angle));
    EXPECT_EQ(EstimatedTrack(42.0, w), 42.0);
}

TEST(Geodesy, RoughSpeedConversions) {
    // 1.9 % for each 1000 ft: 250 kt at 10000 ft is 297.5 true.
    EXPECT_NEAR(IasToTas(250.0, 10000.0), 297.5, 1e-9);
    EXPECT_NEAR(IasToTas(250.0, 0.0), 250.0, 1e-9);
    EXPECT_NEAR(TasToIas(297.5, 10000.0), 250.0, 1e-9);
    EXPECT_NEAR(TasToIas(IasToTas(280.0, 35000.0), 35000.0), 280.0, 1e-9);
    EXPECT_NEAR(IasToTas(100.0, 15000.0), 128.5, 1e-9);

    // At -17.15 C the absolute temperature is 256 K, whose root is 16.
    const double sound = 16.0 * 38.967854;
    EXPECT_NEAR(IasToMach(250.0, 10000.0, -17.15), 297.5 / sound, 1e-12);
    // Mach to IAS always at 38000 ft: 172.2 % of the IAS.
    EXPECT_NEAR(MachToIas(0.8, -17.15), sound * 0.8 / 172.2 * 100.0, 1e-9);
    // Inverse of each other at 38000 ft.
    EXPECT_NEAR(IasToMach(MachToIas(0.78, -56.5), 38000.0, -56.5), 0.78, 1e-12);
    // An unset temperature (-999) gives 0, never a NaN.
    EXPECT_EQ(IasToMach(250.0, 10000.0, -999.0), 0.0);
    EXPECT_EQ(MachToIas(0.8, -999.0), 0.0);
}

TEST(Geodesy, ToBcdMovesDecimalDigitsIntoHexPositions) {
    EXPECT_EQ(ToBcd(11370), 0x11370u);
    EXPECT_EQ(ToBcd(10800), 0x10800u);
    EXPECT_EQ(ToBcd(344), 0x344u);
    EXPECT_EQ(ToBcd(0), 0u);
    EXPECT_EQ(ToBcd(9), 9u);
    EXPECT_EQ(ToBcd(10), 0x10u);
    EXPECT_EQ(ToBcd(99999999), 0x99999999u);
    // Other radixes: decimal 255 written as octal digits, hex 0x15 back as decimal 15.
    EXPECT_EQ(ToBcd(255, 8, 10), 377u);
    EXPECT_EQ(ToBcd(0x15, 16, 10), 15u);
    // A base with no digits leaves the value alone rather than recurse forever.
    EXPECT_EQ(ToBcd(1234, 1, 16), 1234u);
    EXPECT_EQ(ToBcd(1234, 0, 16), 1234u);
}

namespace {
// Runs orbnav with arguments; returns its exit code and its output (both streams).
int RunOrbnav(const std::string& args, std::string& output) {
    CommandRun run = RunCommand(std::string(ORB_BINARY_DIR) + "/orbnav " + args + " 2>&1");
    output = run.output;
    return run.code;
}
}  // namespace

TEST(Geodesy, OrbnavGreatCircleCommand) {
    std::string out;
    ASSERT_EQ(RunOrbnav("gc 33.95 -118.4 40.633333 -73.783333", out), 0) << out;
    double distance = 0, bearing = 0;
    ASSERT_EQ(std::sscanf(out.c_str(), "%lf nm %lf true", &distance, &bearing), 2) << out;
    EXPECT_NEAR(distance, 2144.0, 0.5);
    EXPECT_NEAR(bearing, 65.89, 0.01);
    ASSERT_EQ(RunOrbnav("gc 10 20 11 20", out), 0) << out;
    EXPECT_EQ(out, "60.00 nm 360.00 true\n");

    EXPECT_EQ(RunOrbnav("gc 10 20 11", out), 2);
    EXPECT_EQ(RunOrbnav("gc 10 20 11 east", out), 2);
    EXPECT_NE(out.find("'east'"), std::string::npos) << out;
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1) << out;
    EXPECT_EQ(RunOrbnav("gc 91 0 0 0", out), 2);
    EXPECT_EQ(RunOrbnav("gc 0 0 0 inf", out), 2);
    ASSERT_EQ(RunOrbnav("gc --help", out), 0);
    EXPECT_NE(out.find("usage: orbnav gc"), std::string::npos);
}
