// profile_plot.h: the vertical picture of a flight: altitude against the
// distance along the route, the module's predicted profile beside the one
// flown, and how far the flight was from each altitude restriction.
//
// The module writes its predictions at each EXEC to orb/vnav_profile.txt
// below the simulator folder:
//   ; comment lines start with ';'
//   CRZ <feet>
//   TC <lat> <lon> <nm from origin>
//   TD <lat> <lon> <nm from origin>
//   ROW <index> <ident> <lat> <lon> <nm from origin> <altitude or -999> <speed or -999> <restricted 0..3>
// The flown profile comes from the CSV that the script's `track` writes.
#pragma once

#include <istream>
#include <string>
#include <vector>

namespace orbsim {

constexpr double kProfileNoValue = -999;        // the file's "none" for an altitude or speed
constexpr int kMaxProfileRows = 1000;           // a plan has far fewer; more is not the module's file
constexpr size_t kMaxTrackRows = 1000000;       // eleven days at a row a second
constexpr int kProjectionLookAheadLegs = 4;     // legs ahead a track point may move on to at once
constexpr size_t kMaxProfileLineLength = 1024;  // longer lines are not the module's

struct ProfileRow {
    int index = 0;                      // the plan's row number
    std::string ident;                  // the row's name
    double lat = 0;                     // degrees, north positive
    double lon = 0;                     // degrees, east positive
    double along_nm = 0;                // nautical miles from the origin along the route
    double altitude = kProfileNoValue;  // feet, predicted or restricted; -999 none
    double speed = kProfileNoValue;     // knots; -999 none
    int restricted = 0;                 // 0 none, 1 altitude and speed, 2 speed only, 3 speed and altitude
};

// A row with an altitude the flight must meet.
bool HasAltitudeRestriction(const ProfileRow& row);

struct ProfileMark {
    bool set = false;                   // the file named it
    double lat = 0;                     // degrees
    double lon = 0;                     // degrees
    double along_nm = 0;                // nautical miles from the origin
};

struct VerticalProfile {
    double cruise_ft = kProfileNoValue; // cruise level, feet; -999 none
    ProfileMark top_of_climb;           // T/C
    ProfileMark top_of_descent;         // T/D
    std::vector<ProfileRow> rows;       // in file order, which is the plan's
};

// Reads the module's file. False with "FILE:LINE: reason" for a line that
// is not one of the four kinds, or "FILE: reason" for a file with no rows.
bool ReadVerticalProfile(const std::string& path, VerticalProfile& profile, std::string& error);
// The same from a stream; `path` names it in errors.
bool ParseVerticalProfile(const std::string& path, std::istream& in, VerticalProfile& profile, std::string& error);

struct FlownPoint {
    double time = 0;                    // simulated seconds
    double lat = 0;                     // degrees
    double lon = 0;                     // degrees
    double altitude = 0;                // feet
};

// Reads the track CSV (time,lat,lon,altitude,...). False with "FILE:LINE: reason".
bool ReadTrackFile(const std::string& path, std::vector<FlownPoint>& track, std::string& error);
bool ParseTrack(const std::string& path, std::istream& in, std::vector<FlownPoint>& track, std::string& error);

// Each flown point's distance along the route: its nearest point on the legs
// between the rows, searched from the leg of the point before and a few
// legs on, never going back.
std::vector<double> AlongRouteDistances(const VerticalProfile& profile, const std::vector<FlownPoint>& track);

// The flown altitude abeam an along-route distance, between the points that
// stand either side of it. False when the flight has not got that far.
bool FlownAltitudeAt(const std::vector<FlownPoint>& track, const std::vector<double>& along, double along_nm,
                     double& altitude);

// One restricted row against the flight.
struct RestrictionCheck {
    int index = 0;                      // the plan's row number
    std::string ident;                  // the row's name
    std::string restriction;            // "12000 ft", "250 kt", "FL240 / 280 kt"
    bool has_altitude = false;          // an altitude restriction (rows 1 and 3 with an altitude)
    bool vnav_target = false;           // kind 1: VNAV must honour it; kind 3 is the approach's published altitude
    double altitude = 0;                // feet, the restriction
    bool passed = false;                // the flight got abeam the row
    double flown_ft = 0;                // feet, flown abeam the row
    double miss_ft = 0;                 // flown - restriction, feet
};

struct ProfileFigures {
    int rows = 0;                       // ROW lines of the file
    int restricted = 0;                 // rows with a restriction of any kind
    int passed = 0;                     // altitude restrictions the flight has passed
    double worst_miss = 0;              // feet, largest |flown - restriction| over VNAV's restrictions passed
    double worst_approach_miss = 0;     // feet, the same over the approach's published altitudes (kind 3)
    double max_altitude = 0;            // feet, the highest point flown
    std::vector<RestrictionCheck> checks;  // the restricted rows in plan order
};

ProfileFigures CompareProfile(const VerticalProfile& profile, const std::vector<FlownPoint>& track,
                              const std::vector<double>& along);

// One line a restricted row: name, restriction, flown altitude, difference.
std::string DescribeCheck(const RestrictionCheck& check);

// Draws and writes the PNG. False with a reason.
bool WriteProfilePlot(const std::string& path, const VerticalProfile& profile, const std::vector<FlownPoint>& track,
                      const std::vector<double>& along, const ProfileFigures& figures, const std::string& title,
                      std::string& error);

}  // namespace orbsim
