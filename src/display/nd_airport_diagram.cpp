// nd_airport_diagram.cpp: the airport diagram of the moving maps at the
// short ranges: the runways of the airports the flight knows (origin,
// destination and the airport last looked at) as strips at their true
// length and width, and the parking position as a small amber arrow.
//
// Unlike the selected-runway figure of nd_runways.cpp, which is a long-range
// guide, the diagram is drawn to scale: a length in feet is / 6076.1 nm here.
#include "display/nd_map.h"

#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "navdata/airport_extras.h"
#include "navdata/nav_database.h"

#include <cmath>

namespace {
constexpr double kDiagramMaxRange = 2.5;         // nm: the diagram shows at this range and below
constexpr double kParkingMaxRange = 0.5;         // nm: the parking mark shows at this range and below
constexpr double kFeetPerNm = 6076.1;
constexpr double kRunwayWidthFt = 150;           // a strip's width on the map
constexpr double kMinRunwayWidthPx = 3;          // a strip stays visible when the scale would thin it
constexpr double kLabelBehindPx = 9;             // the designator stands this far behind its threshold
constexpr ARGB kRunwayFill = 0xFFC0C0C0;         // grey strips
constexpr ARGB kRunwayLabel = 0xFFDEE6E9;        // near white designators
constexpr ARGB kParkingColour = 0xFFE9B73E;      // amber
constexpr float kParkingPenPx = 2.0f;
constexpr float kLabelFontPx = 10;

// Whether an airport's runways lie near enough the map centre to be seen.
template <size_t N>
bool NearCentre(const MapView& view, const std::array<RunwayRecord, N>& runways, int count) {
    if (count < 1) return false;
    double distance = 0, bearing = 0;
    GreatCircle(view.MapCentreLatitude, view.MapCentreLongitude, runways[1].Latitude, runways[1].Longitude, distance,
                bearing);
    return std::isfinite(distance) && distance <= 2 * view.range + kAirportCullMarginNm;
}

template <size_t N>
void DrawRunwayStrips(gdi::Graphics& g, const MapView& view, const std::array<RunwayRecord, N>& runways, int count) {
    if (count > kRunwayLimit) count = kRunwayLimit;
    if (!NearCentre(view, runways, count)) return;
    gdi::SolidBrush fill(kRunwayFill);
    gdi::Font font(kArialFont, kLabelFontPx, FontStyleBold);
    double half_width = std::fmax(kMinRunwayWidthPx, kRunwayWidthFt / kFeetPerNm * view.PixelsPerNm) / 2;
    for (int i = 1; i <= count; ++i) {
        const RunwayRecord& r = runways[static_cast<size_t>(i)];
        // 1. The two ends: the threshold and its length along the true heading.
        double heading = ModuloPositive(r.Heading + g_sim.magnetic_variation, 360);
        double length = r.LengthFt > 0 ? r.LengthFt / kFeetPerNm : 0;
        double end_lat = 0, end_lon = 0;
        ProjectPoint(r.Latitude, r.Longitude, heading, length, end_lat, end_lon);
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        ProjectToMap(view, r.Latitude, r.Longitude, x1, y1);
        ProjectToMap(view, end_lat, end_lon, x2, y2);
        // 2. A strip of the runway's width between them.
        double dx = x2 - x1, dy = y2 - y1;
        double norm = std::hypot(dx, dy);
        double ux = norm > 0 ? dx / norm : 0, uy = norm > 0 ? dy / norm : -1;
        double nx = -uy * half_width, ny = ux * half_width;
        GpPoint corners[4] = {{static_cast<INT>(std::lround(x1 + nx)), static_cast<INT>(std::lround(y1 + ny))},
                              {static_cast<INT>(std::lround(x2 + nx)), static_cast<INT>(std::lround(y2 + ny))},
                              {static_cast<INT>(std::lround(x2 - nx)), static_cast<INT>(std::lround(y2 - ny))},
                              {static_cast<INT>(std::lround(x1 - nx)), static_cast<INT>(std::lround(y1 - ny))}};
        g.FillPolygon(fill, corners, 4);
        // 3. The designator behind its threshold.
        g.DrawText(TextOf(r.Ident), font, kRunwayLabel, static_cast<float>(x1 - ux * kLabelBehindPx),
                   static_cast<float>(y1 - uy * kLabelBehindPx), gdi::TextAlign::Centre, gdi::TextBaseline::Middle);
    }
}

void DrawParkingMark(gdi::Graphics& g, const MapView& view) {
    const ParkingPositionRecord& parking = g_airport_extras.ParkingPosition;
    if (parking.Latitude == 0 || view.range > kParkingMaxRange) return;
    double x = 0, y = 0;
    ProjectToMap(view, parking.Latitude, parking.Longitude, x, y);
    // Three strokes from the place, turned by the parking heading off the map's.
    double turn = (parking.Heading - view.MapHeading) * kPi / 180;
    double c = std::cos(turn), s = std::sin(turn);
    gdi::Pen pen(kParkingColour, kParkingPenPx);
    const double strokes[3][2] = {{4, 3}, {-4, 3}, {0, 12}};
    for (const auto& p : strokes) {
        double ex = x + p[0] * c - p[1] * s;
        double ey = y + p[0] * s + p[1] * c;
        g.DrawLine(pen, static_cast<float>(x), static_cast<float>(y), static_cast<float>(ex), static_cast<float>(ey));
    }
}
}  // namespace

bool AirportDiagramLoaded() {
    return g_airports.OriginAirport.RunwayCount > 0 || g_airports.DestinationAirport.RunwayCount > 0 ||
           g_airports.InfoAirport.RunwayCount > 0 || g_airport_extras.ParkingPosition.Latitude != 0;
}

void DrawAirportDiagramLayer(gdi::Graphics& g, const MapView& view) {
    // Gates: a diagram to draw, maps below PLAN, the short ranges.
    if (view.plan_mode || view.range > kDiagramMaxRange || !AirportDiagramLoaded()) return;
    BeginMapLayer(g, view);
    const AirportSlots& a = g_airports;
    DrawRunwayStrips(g, view, a.OriginAirport.Runways, a.OriginAirport.RunwayCount);
    if (TextOf(a.DestinationAirport.Ident) != TextOf(a.OriginAirport.Ident))
        DrawRunwayStrips(g, view, a.DestinationAirport.Runways, a.DestinationAirport.RunwayCount);
    if (TextOf(a.InfoAirport.Ident) != TextOf(a.OriginAirport.Ident) &&
        TextOf(a.InfoAirport.Ident) != TextOf(a.DestinationAirport.Ident))
        DrawRunwayStrips(g, view, a.InfoAirport.Runways, a.InfoAirport.RunwayCount);
    DrawParkingMark(g, view);
    EndMapLayer(g, view);
}
