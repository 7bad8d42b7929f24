// nd_map.h: the map core every moving-map display shares: the view a map is
// drawn in, the flat polar projection around its centre, the culling rule,
// and the layers (route, modification route, airports, navaids,
// intersections, trend vector, altitude range arc, vertical marks).
//
// Each layer resets the world transform, scales it to the surface and moves
// it to the map centre, so its arithmetic works around (0, 0); it leaves the
// transform at the design scale when it is done.
#pragma once

#include "display/display_surface.h"

#include "plan/plan_tables.h"

#include <array>
#include <cstddef>

struct MapView {
    double CentreX = 0;                 // design pixels of the map centre
    double CentreY = 0;
    double PixelsPerNm = 1;             // MapRadiusPx / range
    double MapRadiusPx = 1;             // pixels from the centre to the top of the compass arc
    double ScaleX = 1;                  // surface size / design size
    double ScaleY = 1;
    double MapHeading = 0;              // true degrees up the screen; 0 on north-up maps
    double MapCentreLatitude = 0;       // degrees: the aircraft, or the PLAN centre row
    double MapCentreLongitude = 0;
    double range = 10;                  // nm
    bool plan_mode = false;             // north-up PLAN: whole plan, no trend vector
    int instance = 1;                   // DrawInstance
};

// Culling: what lies farther from the map centre is skipped before projection.
constexpr double kNavaidCullMarginNm = 50;   // navaids and intersections: 2 x range + 50
constexpr double kAirportCullMarginNm = 10;  // airports: 2 x range + 10
constexpr double kInboundCourseLineNm = 200; // length of an inbound-course line
constexpr double kPrevWaypointMinRange = 5;  // nm: the passed waypoint shows from this range up

// A true bearing and a distance in pixels to a pixel around (cx, cy).
void PolarToScreen(double map_heading, double bearing, int cx, int cy, int radius_px, int& x, int& y);
void PolarToScreen(double map_heading, double bearing, double cx, double cy, double radius_px, double& x, double& y);
// A position to the layer's frame (around the centre). Returns the distance in nm.
double ProjectToMap(const MapView& view, double latitude, double longitude, double& x, double& y);
// Resets the transform, scales to the surface and moves to the map centre.
void BeginMapLayer(gdi::Graphics& g, const MapView& view);
void EndMapLayer(gdi::Graphics& g, const MapView& view);

// [SECTION] Guidance as the map reads it
struct MapGuidance {
    bool has_active = false;            // an active waypoint exists
    int active_row = 0;                 // row of ActivePlan
    double distance_to_active = 0;      // nm
    bool intercept_active = false;      // the leg starts at the intercept point
    double intercept_latitude = 0;
    double intercept_longitude = 0;
};
MapGuidance ReadMapGuidance();
// The active waypoint's ETA by the sampled zulu clock and the time to go;
// a clock or time that is not a number counts as 0.
struct ZuluEta {
    double hours = 0;                   // 0..23
    double minutes = 0;                 // whole minutes, 0..59
    double tenths = 0;                  // tenths of the minute, 0..9
};
ZuluEta ActiveWaypointEta();
// "HHMMZ" of ActiveWaypointEta.
void FormatActiveWaypointEta(char* text, size_t size);
// The centre of a PLAN map: the LEGS page's centre entry (PlanCentreIndex, a
// row of the plan that page shows: ModPlan while a modification waits,
// ActivePlan otherwise), else the active waypoint. False when neither is a
// place (no plan, or a gap row): the map then centres on the aircraft.
bool PlanMapCentre(double& latitude, double& longitude);

// [SECTION] Layers
struct ObjectLayerStyle {
    int navaid_colour = 3;              // MapColour of navaids
    int fix_kind = 3;                   // symbol of intersections
    int fix_colour = 1;
    ARGB airport_colour = 0xFF00E6E9;   // the airport circles and idents
};
// Rebuilds the proximity subsets around the aircraft when it has moved far
// enough; the object layers read them.
void RefreshProximitySubsets();
void DrawAirportsLayer(gdi::Graphics& g, const MapView& view, const ObjectLayerStyle& style);
void DrawNavaidsLayer(gdi::Graphics& g, const MapView& view, const ObjectLayerStyle& style);
void DrawIntersectionsLayer(gdi::Graphics& g, const MapView& view, const ObjectLayerStyle& style);
// ActivePlan from the active waypoint on (PLAN: from row 0).
void DrawRouteLayer(gdi::Graphics& g, const MapView& view);
// ModPlan while a modification is pending.
void DrawModificationRouteLayer(gdi::Graphics& g, const MapView& view);
void DrawTrendVector(gdi::Graphics& g, const MapView& view);
// The circles and radials of the fixes entered on the FIX INFO page
// (nd_fix_circles.cpp).
void DrawFixCirclesLayer(gdi::Graphics& g, const MapView& view);
// The racetrack sketch of each hold of the active plan (nd_hold_figure.cpp).
void DrawHoldFigureLayer(gdi::Graphics& g, const MapView& view);
void DrawAltitudeRangeArc(gdi::Graphics& g, const MapView& view);
// The selected runways of the origin and the destination (range below 80,
// within 100 nm of the centre): extended centreline and side lines
// (nd_runways.cpp).
void DrawRunwaysLayer(gdi::Graphics& g, const MapView& view);
// The ATC boundaries (nd_boundaries.cpp): with the boundaries switch on,
// below PLAN and not at DrawInstance 3; reads the table at its first call.
void DrawAtcBoundariesLayer(gdi::Graphics& g, const MapView& view);
// The airport diagram (nd_airport_diagram.cpp): the known airports' runways
// to scale and the parking position, below PLAN at range 2.5 and less (the
// parking mark at 0.5 and less).
void DrawAirportDiagramLayer(gdi::Graphics& g, const MapView& view);
bool AirportDiagramLoaded();
// The localiser's course through its station, with a localiser tuned,
// received and with a course (nd_runways.cpp).
void DrawIlsCourseLine(gdi::Graphics& g, const MapView& view);
// T/C, T/D and altitude-target marks; style as the display's table.
void DrawVerticalMarks(gdi::Graphics& g, const MapView& view, int style);
// The heading bug's value while it has just moved (at a design pixel).
void DrawHeadingBugDigits(gdi::Graphics& g, float x, float y);

// [SECTION] Compass furniture the families share
// How a family draws its compass card.
struct CompassCardStyle {
    float major_tick = 9;               // design pixels of the tick every 10 degrees
    float minor_tick = 5;               // and of the ticks between
    float big_font = 13;                // digits on the multiples of big_every degrees
    float small_font = 10;              // the other digits
    int big_every = 30;                 // degrees between the big digits
    int digit_step = 30;                // degrees between digits
    bool digits_inside = true;          // digits under the ticks, else outside the card
    const char* font = kHwFont;         // font family of the digits
};
// Ticks and digits round (cx, cy), turned by the heading; only the part of
// the card between from and to (degrees off the top) is drawn.
void DrawCompassCard(gdi::Graphics& g, const DisplaySurface& surface, float cx, float cy, float radius,
                     double heading, double from, double to, const CompassCardStyle& style);
// The heading bug: a magenta notch on the card at the bug's place, left out
// beyond half_sweep degrees off the top.
void DrawHeadingBugNotch(gdi::Graphics& g, const DisplaySurface& surface, float cx, float cy, float radius,
                         double heading, double half_sweep, int half_width);
// A map's clip outline around (cx, cy): the whole circle, or the arc above
// `clip_bottom` closed by its chord, so the map stops level above the texts
// at the bottom of the display.
void AddMapClipOutline(gdi::Path& path, double cx, double cy, int radius, bool full_circle, double clip_bottom);
// A bearing pointer: a needle through the card's centre at a bearing off
// the nose, its shaft from `inner` out to the head, single or double-lined.
struct BearingNeedle {
    float cx = 0, cy = 0;               // design pixels of the card's centre
    double relative = 0;                // degrees off the nose
    float length = 0;                   // centre to the head's point
    float inner = 20;                   // the shaft starts this far from the centre
    float head_half = 6;                // half the head's width; the head is 12 long
    bool double_line = false;           // two shafts 6 pixels apart
    bool tail = false;                  // a tail on the far side, 12 long (full rose cards)
    ARGB colour = palette::kGreen;      // the pen
};
// Nothing for a bearing that isn't a number.
void DrawBearingNeedle(gdi::Graphics& g, const DisplaySurface& surface, const BearingNeedle& needle);

// "GS" over "TAS" in the top left corner, the labels white, the values in the
// family's colour; the true airspeed shows "- - -" at 100 knots and below.
struct SpeedCornerPlaces {
    float label_x;                          // design pixels: both labels' left edge
    float gs_y, gs_value_x, gs_value_y;     // the ground speed's label row and value
    float tas_y, tas_value_x, tas_value_y;  // the true airspeed's label row and value
};
void DrawSpeedCorner(gdi::Graphics& g, const gdi::Font& label, const gdi::Font& value, ARGB value_colour,
                     const SpeedCornerPlaces& at);
// A PLAN map's centre: the LEGS page's centre entry, else the active
// waypoint; the view keeps the aircraft when neither is a place.
void CentreOnPlan(MapView& view);
// Whether a plan row is a discontinuity row the map leaves out.
bool IsMapGap(const char* ident);

// Where each ActivePlan row stood on the last frame, for layers that label
// afterwards (design pixels around the map centre).
struct RouteScreenPoints {
    std::array<int, kPlanRows> x{};
    std::array<int, kPlanRows> y{};
};
extern RouteScreenPoints g_route_screen;
