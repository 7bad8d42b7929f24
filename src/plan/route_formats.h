// route_formats.h: flight plans in the file formats of other tools, for the
// converter of the data tool (orbnav convert): the module's own .RTE, the
// simulator planner's .PLN in its XML form and its older text form, the
// .fms of another simulator (versions 3 and 11) and the route file of an
// open-source simulator (.fgfp, an XML property list). The module itself
// reads none of these but its own .RTE and the .PLN forms (sim_plans.h).
//
// Every reader takes any bytes and either fills a plan or says which line
// is wrong; every writer gives the whole text, so that the caller can write
// it to a temporary file and rename it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

constexpr size_t kMaxRoutePoints = 1000;     // far beyond a plan's 201 rows; more is a broken file
constexpr size_t kMaxRouteText = 16 << 20;   // bytes of an input file that are read

enum class RouteFormat { Rte, PlnXml, PlnText, Fms3, Fms11, FlightGear };

enum class PointKind { Airport, Vor, Ndb, Fix, LatLon };

struct RoutePoint {
    std::string ident;                       // as the file names it
    double lat = 0;                          // degrees, north positive
    double lon = 0;                          // degrees, east positive
    PointKind kind = PointKind::Fix;
    std::string via;                         // the airway flown to this point; empty: direct
    double altitude = 0;                     // feet, where the format has one
    std::string frequency;                   // navaids: as the database writes it; may be empty
    bool kind_known = true;                  // false when the format could not say (resolved later)
};

struct RoutePlan {
    std::vector<RoutePoint> points;
    int cruise_altitude = 0;                 // feet; 0 unknown
};

struct RouteError {
    int line = 0;                            // 1-based line of the input; 0 for the file as a whole
    std::string message;
};

// Reads `text` in `format` into `plan`; false with `error` set on bad input.
bool ReadRouteText(RouteFormat format, std::string_view text, RoutePlan& plan, RouteError& error);
// The whole file text of `plan` in `format`.
std::string WriteRouteText(RouteFormat format, const RoutePlan& plan);
// Whether the format carries an airway per point.
bool FormatHasAirways(RouteFormat format);
// Short name for messages: "RTE", "PLN (XML)", ...
const char* FormatName(RouteFormat format);
