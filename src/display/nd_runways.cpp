// nd_runways.cpp: the runway figures of the origin and the destination and
// the ILS course line, layers every moving map draws.
//
// A runway is drawn only when the pilot has selected it on the route pages:
// the map then shows where the flight starts and ends without reading the
// bulk runway tables on the frame path (the two airports' runways are loaded
// with the plan). Lengths in feet are taken as nm by / 5280, as the figure
// has always been drawn; the side lines stand 0.5 nm either side of the
// threshold so that the runway reads as a strip at the ranges it shows.
#include "display/nd_map.h"

#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "navdata/nav_database.h"
#include "navdata/procedures.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {
constexpr double kRunwayMaxRange = 80;          // nm: drawn below this range
constexpr double kRunwayMaxDistance = 100;      // nm from the map centre
constexpr double kFeetPerLengthUnit = 5280;     // the figure's length unit
constexpr double kCentrelineNm = 18;            // each extension's length
constexpr double kAheadFraction = 0.7;          // of the length: where the departure extension starts
constexpr double kBehindFraction = 0.2;         // of the length: where the approach extension starts
constexpr double kSideOffsetNm = 0.5;           // side lines either side of the threshold
constexpr double kIlsLineNm = 20;               // the localiser course drawn out this far from its antenna
constexpr double kFrequencyMatchMhz = 0.005;    // a tuned frequency equals a runway's ILS within this
constexpr ARGB kDepartureExtension = 0xFFDEE6E9;  // near white: the way out
constexpr ARGB kApproachExtension = 0xFF00E6E9;   // cyan: the way in
constexpr ARGB kRunwaySides = 0xFFDEE6E9;

struct MapPoint {
    double x = 0, y = 0;                        // design pixels around the map centre
};

MapPoint Project(const MapView& view, double lat, double lon) {
    MapPoint p;
    ProjectToMap(view, lat, lon, p.x, p.y);
    return p;
}

// The runway row an airport slot has for the name, or null.
const RunwayRecord* SelectedRunway(const AirportDetail& airport, std::string_view name) {
    if (name.empty() || name == kNoSelection) return nullptr;
    int row = FindRunwayRow(airport, name);
    if (row < 1 || row > kRunwayLimit) return nullptr;
    return &airport.Runways[static_cast<size_t>(row)];
}

void DrawOneRunway(gdi::Graphics& g, const MapView& view, const RunwayRecord& rwy) {
    // 1. Only near the map's centre.
    double distance = 0, bearing = 0;
    GreatCircle(view.MapCentreLatitude, view.MapCentreLongitude, rwy.Latitude, rwy.Longitude, distance, bearing);
    if (!(distance <= kRunwayMaxDistance)) return;
    double length = rwy.LengthFt / kFeetPerLengthUnit;
    if (!(length > 0)) length = 0;
    double heading = ModuloPositive(rwy.Heading + g_sim.magnetic_variation, 360);
    double reciprocal = ModuloPositive(heading + 180, 360);

    // 2. Departure extension from 0.7 L ahead of the threshold, along the heading.
    double lat1 = 0, lon1 = 0, lat2 = 0, lon2 = 0;
    ProjectPoint(rwy.Latitude, rwy.Longitude, heading, kAheadFraction * length, lat1, lon1);
    ProjectPoint(lat1, lon1, heading, kCentrelineNm, lat2, lon2);
    gdi::Pen out_pen(kDepartureExtension, 1.0f);
    out_pen.SetDash(DashStyleDash);
    MapPoint a = Project(view, lat1, lon1), b = Project(view, lat2, lon2);
    g.DrawLine(out_pen, static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(b.x),
               static_cast<float>(b.y));

    // 3. Approach extension from 0.2 L behind the threshold, along the reciprocal.
    ProjectPoint(rwy.Latitude, rwy.Longitude, reciprocal, kBehindFraction * length, lat1, lon1);
    ProjectPoint(lat1, lon1, reciprocal, kCentrelineNm, lat2, lon2);
    gdi::Pen in_pen(kApproachExtension, 1.5f);
    a = Project(view, lat1, lon1);
    b = Project(view, lat2, lon2);
    g.DrawLine(in_pen, static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(b.x),
               static_cast<float>(b.y));

    // 4. The two sides, from abeam the threshold for the runway's length.
    gdi::Pen side_pen(kRunwaySides, 1.5f);
    for (double side : {-90.0, 90.0}) {
        ProjectPoint(rwy.Latitude, rwy.Longitude, ModuloPositive(heading + side, 360), kSideOffsetNm, lat1, lon1);
        ProjectPoint(lat1, lon1, heading, length, lat2, lon2);
        a = Project(view, lat1, lon1);
        b = Project(view, lat2, lon2);
        g.DrawLine(side_pen, static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(b.x),
                   static_cast<float>(b.y));
    }
}

// The destination's runway: the one chosen on the arrivals page, else the
// chosen approach's own runway (a pilot who picks the ILS 21 has picked
// runway 21).
std::string_view ArrivalRunwayName() {
    const PlanSelections& sel = g_plan.context.Selections;
    std::string_view chosen(sel.ArrivalRunway.data());
    if (!chosen.empty() && chosen != kNoSelection) return chosen;
    std::string_view approach(sel.ApproachName.data());
    if (approach.empty() || approach == kNoSelection) return {};
    int name_row = ApproachRowOf(approach);
    const DestinationProcedures& d = g_procedures.destination;
    if (name_row < 1 || name_row > kApproachNameLimit) return {};
    int row = d.ApproachNameTable[static_cast<size_t>(name_row)].Row;
    if (row < 1 || row > kApproachLimit) return {};
    const auto& runways = d.ApproachTable[static_cast<size_t>(row)].Runways;
    return std::string_view(runways.data(), strnlen(runways.data(), runways.size()));
}

// The runway of the two airports whose ILS is on the frequency, or null.
// Both ends of a runway often share one frequency: the end whose course is
// nearest the tuned one is the localiser in use.
const RunwayRecord* RunwayWithIls(double frequency_mhz, double course) {
    const RunwayRecord* best = nullptr;
    double best_off = 1e9;
    for (const AirportDetail* airport : {&g_airports.DestinationAirport, &g_airports.OriginAirport}) {
        int count = airport->RunwayCount < 0 ? 0 : (airport->RunwayCount > kRunwayLimit ? kRunwayLimit : airport->RunwayCount);
        for (int i = 1; i <= count; ++i) {
            const RunwayRecord& r = airport->Runways[static_cast<size_t>(i)];
            if (r.IlsFrequency[0] == 0) continue;
            double f = std::strtod(r.IlsFrequency.data(), nullptr);
            if (!(f > 0 && std::fabs(f - frequency_mhz) < kFrequencyMatchMhz)) continue;
            double off = AngleBetween(r.IlsCourse > 0 ? r.IlsCourse : r.Heading, course);
            if (off < best_off) {
                best = &r;
                best_off = off;
            }
        }
        if (best != nullptr) return best;   // the destination's before the origin's
    }
    return best;
}
}  // namespace

void DrawRunwaysLayer(gdi::Graphics& g, const MapView& view) {
    if (!(view.range < kRunwayMaxRange)) return;
    const PlanSelections& sel = g_plan.context.Selections;
    const RunwayRecord* origin = SelectedRunway(g_airports.OriginAirport, sel.DepartureRunway.data());
    const RunwayRecord* destination = SelectedRunway(g_airports.DestinationAirport, ArrivalRunwayName());
    if (origin == nullptr && destination == nullptr) return;
    BeginMapLayer(g, view);
    if (origin != nullptr) DrawOneRunway(g, view, *origin);
    if (destination != nullptr) DrawOneRunway(g, view, *destination);
    EndMapLayer(g, view);
}

void DrawIlsCourseLine(gdi::Graphics& g, const MapView& view) {
    // 1. A localiser tuned, received and with a course.
    if (g_sim.nav1_is_vor != 0) return;
    if (!(ReadToken(Token::NAV1_SIGNAL) > 0)) return;
    double course = g_sim.nav1_obs;
    if (!(course > 0) || course > 360) return;
    const RunwayRecord* rwy = RunwayWithIls(BcdNavFrequencyMhz(Token::NAV1_FREQUENCY), course);
    if (rwy == nullptr) return;

    // 2. The antenna stands at the far end of the runway; the course runs
    // back out from it over the threshold to the approach.
    double length = rwy->LengthFt > 0 ? rwy->LengthFt / kFeetPerLengthUnit : 0;
    double heading = ModuloPositive(rwy->Heading + g_sim.magnetic_variation, 360);
    double inbound = ModuloPositive(course + g_sim.magnetic_variation, 360);
    double ant_lat = 0, ant_lon = 0, far_lat = 0, far_lon = 0;
    ProjectPoint(rwy->Latitude, rwy->Longitude, heading, length, ant_lat, ant_lon);
    ProjectPoint(ant_lat, ant_lon, ModuloPositive(inbound + 180, 360), kIlsLineNm + length, far_lat, far_lon);
    double distance = 0, bearing = 0;
    GreatCircle(view.MapCentreLatitude, view.MapCentreLongitude, ant_lat, ant_lon, distance, bearing);
    if (!(distance <= 2 * view.range + kIlsLineNm + length)) return;

    // 3. A dashed magenta line, as the course the autopilot will capture.
    BeginMapLayer(g, view);
    gdi::Pen pen(palette::kMagenta, 1.5f);
    pen.SetDash(DashStyleDash);
    MapPoint a = Project(view, ant_lat, ant_lon), b = Project(view, far_lat, far_lon);
    g.DrawLine(pen, static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(b.x), static_cast<float>(b.y));
    EndMapLayer(g, view);
}
