// fix_info_test.cpp: the FIX INFO arithmetic on the sphere: the point at a
// radial and distance from a fix, seen back from the fix; the time to it,
// carried round the hour and midnight; and what a row entry reads as.
#include "guidance/fix_info.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {
FixInfoRecord FixAt(double latitude, double longitude) {
    FixInfoRecord r;
    r.Name = {'F', 'I', 'X'};
    r.Latitude = latitude;
    r.Longitude = longitude;
    return r;
}
}  // namespace

TEST(FixInfo, TheRadialPointSeenFromTheFixIsOnItsRadialAndDistance) {
    FixInfoRecord fix = FixAt(47.5, -122.3);
    for (double variation : {0.0, 17.0, -12.5}) {
        for (double radial : {10.0, 90.0, 163.0, 180.0, 270.0, 360.0}) {
            double lat = 0, lon = 0, seen_radial = 0, seen_distance = 0;
            FixRadialPoint(fix, radial, 40, variation, lat, lon);
            FixRadialOfAircraft(fix, lat, lon, variation, seen_radial, seen_distance);
            EXPECT_NEAR(seen_distance, 40, 1e-6) << radial << " " << variation;
            // The radial is read as the bearing back to the fix turned round:
            // it differs from the one flown out by the meridians' convergence,
            // the change of longitude times the sine of the latitude (360 and
            // 0 are one direction).
            double difference = std::fmod(seen_radial - radial + 720, 360);
            double convergence = std::fabs(lon - fix.Longitude) * std::sin((lat + fix.Latitude) / 2 * M_PI / 180);
            EXPECT_NEAR(std::min(difference, 360 - difference), convergence, 0.01) << radial << " " << variation;
        }
    }
    // 60 nm due north at no variation is one degree of latitude on the 360 radial.
    double lat = 0, lon = 0;
    FixRadialPoint(fix, 360, 60, 0, lat, lon);
    EXPECT_NEAR(lat, 48.5, 1e-9);
    EXPECT_NEAR(lon, -122.3, 1e-9);
}

TEST(FixInfo, TimeToThePointCarriesRoundTheHourAndMidnight) {
    FixInfoRecord fix = FixAt(0, 0);
    FixInfoRow row{90, 151};
    double hour = 0, minute = 0, to_go = 0;
    // From the fix, 151 nm at 120 kt: 75.5 minutes; 23:50 + 1:15.5 is 01:05 (whole minutes).
    ASSERT_TRUE(FixRowEtaAndDistance(fix, row, 0, 0, 0, 120, 23, 50, hour, minute, to_go));
    EXPECT_NEAR(to_go, 151, 1e-6);
    EXPECT_EQ(hour, 1);
    EXPECT_EQ(minute, 5);
    // Nothing at 75 kt, nor without a distance, nor without a fix.
    EXPECT_FALSE(FixRowEtaAndDistance(fix, row, 0, 0, 0, 75, 23, 50, hour, minute, to_go));
    EXPECT_FALSE(FixRowEtaAndDistance(fix, FixInfoRow{90, 0}, 0, 0, 0, 120, 23, 50, hour, minute, to_go));
    EXPECT_FALSE(FixRowEtaAndDistance(FixInfoRecord{}, row, 0, 0, 0, 120, 23, 50, hour, minute, to_go));
    // A clock the simulator can't give stops the time rather than the frame.
    EXPECT_FALSE(FixRowEtaAndDistance(fix, row, 0, 0, 0, 120, INFINITY, 50, hour, minute, to_go));
}

TEST(FixInfo, RowEntriesReadAsRadialDistanceOrBoth) {
    FixRowEntry e;
    ASSERT_TRUE(ParseFixRowEntry("045/12.5", e));
    EXPECT_TRUE(e.has_radial && e.has_distance);
    EXPECT_EQ(e.radial, 45);
    EXPECT_EQ(e.distance, 12.5);
    ASSERT_TRUE(ParseFixRowEntry("/7", e));
    EXPECT_FALSE(e.has_radial);
    EXPECT_EQ(e.distance, 7);
    ASSERT_TRUE(ParseFixRowEntry("000", e));
    EXPECT_TRUE(e.has_radial);
    EXPECT_EQ(e.radial, 360) << "north stays a set radial";
    for (const char* bad : {"", "/", "45", "4500", "361", "A45", "045/0", "045/-3", "045/999", "045/", "045/1.0000000"})
        EXPECT_FALSE(ParseFixRowEntry(bad, e)) << bad;
}
