// route_plot.h: a picture of a flight: the flown track over a route's legs,
// north up, with waypoint names and a scale bar.
#pragma once

#include <string>
#include <vector>

namespace orbsim {

struct TrackPoint {
    double lat = 0;                     // degrees
    double lon = 0;
};

struct RouteFix {
    std::string ident;
    double lat = 0;
    double lon = 0;
};

// Reads the waypoint rows of a route file: the module's .RTE text format, or
// (by the extension .pln) the simulator's XML plan that the module hands over.
// False with "FILE:LINE: reason" for a file that can't be read or has no rows.
bool ReadRouteFile(const std::string& path, std::vector<RouteFix>& fixes, std::string& error);

// A part of the plot to show, for a close look at a procedure: centred on a
// point, NM to each side. Unset: everything drawn fits.
struct PlotWindow {
    bool set = false;
    double lat = 0;                     // degrees
    double lon = 0;
    double half_nm = 0;                 // nautical miles from the centre to the nearer edge
};

// Draws and writes the PNG. False with a reason.
bool WriteRoutePlot(const std::string& path, const std::vector<RouteFix>& route,
                    const std::vector<TrackPoint>& track, const std::string& title, std::string& error,
                    const PlotWindow& window = {});

}  // namespace orbsim
