// c17_map_pages.cpp: the C-17 screens' navigation page (0) and map pages
// (3 to 6) over the shared map core, in the C-17 look: Arial bold, white
// data, green radio values, magenta for the active waypoint, the page's
// title in sky blue.
//
// A map page runs the shared layers in the reference order inside its own
// clip path, then lifts the clip for traffic, the T/C and T/D marks and the
// furniture; the corner texts come last so that nothing covers them.
//
// Index:
//   [SECTION] Rules
//   [SECTION] Map view
//   [SECTION] Furniture helpers
//   [SECTION] Corner texts
//   [SECTION] The navigation page
//   [SECTION] The map pages
#include "display/c17_map_pages.h"

#include "display/map_symbols.h"
#include "display/traffic.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "plan/plan_tables.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace {
constexpr double kNeedleFullScale = 127;     // NAV1 needle token at two dots
constexpr double kGlideFullScale = 119;      // glideslope needle token at two dots
constexpr double kDeflectionLimit = 2.5;     // dots: a needle stops here
constexpr double kNoTasBelow = 100;          // knots: TAS shows dashes at or below
constexpr double kNoWindBelow = 1;           // knots: the wind shows dashes below
constexpr double kArcHalfSweep = 45;         // page 3: degrees of the arc each side of the top
constexpr double kRangeHalfSweep = 50;       // page 6: the card's part on the outer ring
constexpr int kDotSpacing = 16;              // page 0: pixels between deviation dots
constexpr int kGlideScaleX = 224;            // page 0: the glideslope scale's column
constexpr int kTitleY = 228;                 // bottom left: the page's title
constexpr int kWindY = 216;                  // above it: the wind
constexpr int kRightEdge = 242;              // right-aligned texts end here
constexpr float kValueFont = 10;             // Arial bold: values
constexpr float kLabelFont = 9;              // Arial bold: labels and corner data
constexpr float kTitleFont = 9;
constexpr float kRingFont = 8;

// The sets the working values choose from.
constexpr int kNavaidColours[] = {kMapWhite, kMapBlue, kMapGreen, kMapMagenta, kMapYellow};
constexpr int kTrafficKinds[] = {kTrafficKindB737, kTrafficKindP1000, kTrafficKindEfs50, kTrafficKindMd11,
                                 kTrafficKindCduMap};

float F(double v) { return static_cast<float>(v); }
double Finite(double v) { return std::isfinite(v) ? v : 0.0; }
// A heading or course as the display writes it: whole degrees, 360 as 000.
double WholeDegrees(double degrees) { return ModuloPositive(std::round(Finite(degrees)), 360); }
const MapSwitches& C17Switches() { return g_display.switches[static_cast<size_t>(MapFamily::C17)]; }
}  // namespace

// [SECTION] Rules
bool C17PageHasMap(int page) { return page >= 3 && page <= 6; }

const char* C17NavSourceText(bool is_vor, int nav_flags) {
    if (is_vor) return "VOR-1";
    return (nav_flags & kC17GlideslopeFlag) != 0 ? "ILS-1" : "LOC-1";
}

int C17NavaidColour(const C17Screen& screen) {
    for (int colour : kNavaidColours)
        if (colour == screen.map_value_a) return colour;
    return kMapGreen;
}

int C17TrafficKind(const C17Screen& screen) {
    for (int kind : kTrafficKinds)
        if (kind == screen.map_value_b) return kind;
    return kTrafficKindMd11;
}

bool C17ShowsIntersections() { return C17Switches().intersections == 1 || g_display.c17_symbols_left == 1; }
bool C17ShowsTraffic() { return C17Switches().traffic == 1 || g_display.c17_symbols_right == 1; }

const char* C17PageTitle(int page) {
    switch (page) {
    case 0: return "NAV";
    case 3: return "MAP ARC";
    case 4: return "MAP CTR";
    case 5: return "MAP PLAN";
    case 6: return "MAP";
    default: return "";
    }
}

// [SECTION] Map view
MapView C17MapView(const DisplaySurface& surface, int page) {
    MapView view;
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    // The C-17's instance is its screen number, not a picture without
    // intersections: every screen draws the full map.
    view.instance = 1;
    view.range = g_display.c17_range > 0 ? g_display.c17_range : 80;
    int radius = kC17DiscRadius, centre_y = kC17DiscCentreY;
    if (page == 3) {
        radius = kC17ArcRadius;
        centre_y = kC17ArcCentreY;
    } else if (page == 6) {
        radius = kC17RangeRadius;
        centre_y = kC17RangeCentreY;
    }
    view.MapRadiusPx = radius;
    view.PixelsPerNm = radius / view.range;
    view.CentreX = kC17MapCentreX;
    view.CentreY = centre_y;
    view.plan_mode = page == 5;
    view.MapHeading = view.plan_mode ? 0 : Finite(g_sim.heading_true);
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    // The LEGS page's centre entry, else the active waypoint, else the aircraft.
    if (view.plan_mode) CentreOnPlan(view);
    return view;
}

// [SECTION] Furniture helpers
namespace {
// The lubber line and the aircraft: a white triangle pointing up the screen.
void DrawOwnShip(gdi::Graphics& g, float cx, float cy) {
    gdi::Pen ship(palette::kWhite, 2.0f);
    INT x = static_cast<INT>(cx), y = static_cast<INT>(cy);
    const GpPoint triangle[] = {{x, y - 12}, {x + 6, y + 4}, {x - 6, y + 4}};
    g.DrawPolygon(ship, triangle, 3);
}

void DrawLubber(gdi::Graphics& g, float cx, float top) {
    gdi::Pen lubber(palette::kWhite, 2.0f);
    g.DrawLine(lubber, cx, top - 8, cx, top + 2);
}

// A dashed ring round the map centre at a fraction of the map radius.
void DrawRangeRing(gdi::Graphics& g, const MapView& view, double fraction) {
    gdi::Pen dashed(palette::kWhite, 1.0f);
    dashed.SetDash(DashStyleDash);
    int r = static_cast<int>(view.MapRadiusPx * fraction);
    g.DrawEllipse(dashed, static_cast<int>(view.CentreX) - r, static_cast<int>(view.CentreY) - r, 2 * r, 2 * r);
}

// A range as the rings and the range text write it: whole miles, or one decimal.
void RangeNumber(double range, char* out, size_t size) {
    if (range == std::floor(range)) std::snprintf(out, size, "%.0f", range);
    else std::snprintf(out, size, "%.1f", range);
}

// The PLAN page's aircraft: where the projection puts it, turned by the true heading.
void DrawPlanOwnShip(gdi::Graphics& g, const DisplaySurface& surface, const MapView& view) {
    double x = 0, y = 0;
    ProjectToMap(view, g_sim.latitude, g_sim.longitude, x, y);
    gdi::Pen ship(palette::kWhite, 2.0f);
    ResetToDesign(surface);
    g.Translate(F(view.CentreX + x), F(view.CentreY + y));
    g.Rotate(F(Finite(g_sim.heading_true)));
    const GpPoint triangle[] = {{0, -10}, {5, 4}, {-5, 4}};
    g.DrawPolygon(ship, triangle, 3);
    ResetToDesign(surface);
}

// The PLAN page's compass: north up, the four points round the ring.
void DrawNorthUpRing(gdi::Graphics& g, const MapView& view) {
    gdi::Pen ring(palette::kWhite, 1.5f);
    int r = static_cast<int>(view.MapRadiusPx);
    float cx = F(view.CentreX), cy = F(view.CentreY);
    g.DrawEllipse(ring, static_cast<int>(cx) - r, static_cast<int>(cy) - r, 2 * r, 2 * r);
    gdi::Font points(kArialFont, kValueFont, FontStyleBold);
    g.DrawText("N", points, palette::kWhite, cx, cy - F(r) - 13, gdi::TextAlign::Centre);
    g.DrawText("S", points, palette::kWhite, cx, cy + F(r) + 1, gdi::TextAlign::Centre);
    g.DrawText("E", points, palette::kWhite, cx + F(r) + 3, cy, gdi::TextAlign::Left, gdi::TextBaseline::Middle);
    g.DrawText("W", points, palette::kWhite, cx - F(r) - 3, cy, gdi::TextAlign::Right, gdi::TextBaseline::Middle);
    DrawRangeRing(g, view, 0.5);
}
}  // namespace

// [SECTION] Corner texts
namespace {
struct CornerFonts {
    gdi::Font value{kArialFont, kValueFont, FontStyleBold};  // the heading, idents, the receiver's name
    gdi::Font label{kArialFont, kLabelFont, FontStyleBold};  // speeds, distances, times, the wind
    gdi::Font title{kArialFont, kTitleFont, FontStyleBold};  // the page's title
};

// The heading, boxed, at the top centre.
void DrawHeadingBox(gdi::Graphics& g, const CornerFonts& fonts, double heading) {
    char text[16];
    std::snprintf(text, sizeof text, "%03.0f", WholeDegrees(heading));
    gdi::Pen box(palette::kWhite, 1.0f);
    g.DrawRectangle(box, kC17MapCentreX - 17, 1, 34, 15);
    g.DrawText(text, fonts.value, palette::kWhite, kC17MapCentreX, 3, gdi::TextAlign::Centre);
}

// Ground speed and true airspeed, top left.
void DrawSpeeds(gdi::Graphics& g, const CornerFonts& fonts, float y) {
    char text[24];
    std::snprintf(text, sizeof text, "GS %3.0f", std::fmin(std::fmax(Finite(g_sim.ground_speed), 0.0), 9999.0));
    g.DrawText(text, fonts.label, palette::kWhite, 4, y);
    double tas = Finite(g_sim.true_airspeed.now);
    if (tas > kNoTasBelow) std::snprintf(text, sizeof text, "TAS %3.0f", std::fmin(tas, 9999.0));
    else std::snprintf(text, sizeof text, "TAS - - -");
    g.DrawText(text, fonts.label, palette::kWhite, 4, y + 11);
}

// The active waypoint, top right: ident, distance, and on the map pages its
// ETA; page 0 gives its magnetic course in place of the ETA.
void DrawActiveWaypoint(gdi::Graphics& g, const CornerFonts& fonts, bool with_course) {
    MapGuidance guidance = ReadMapGuidance();
    if (!guidance.has_active) return;
    const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
    char text[32];
    g.DrawText(w.Ident.data(), fonts.value, palette::kMagenta, kRightEdge, 2, gdi::TextAlign::Right);
    std::snprintf(text, sizeof text, "%.1f NM", std::fmin(std::fmax(Finite(guidance.distance_to_active), 0.0), 99999.0));
    g.DrawText(text, fonts.label, palette::kWhite, kRightEdge, 14, gdi::TextAlign::Right);
    if (with_course) {
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, w.Latitude, w.Longitude, distance, bearing);
        double magnetic = bearing - Finite(g_sim.magnetic_variation);
        if (magnetic < 0.5) magnetic += 360;
        std::snprintf(text, sizeof text, "CRS %03.0f", WholeDegrees(magnetic));
        g.DrawText(text, fonts.label, palette::kMagenta, kRightEdge, 25, gdi::TextAlign::Right);
        return;
    }
    FormatActiveWaypointEta(text, sizeof text);
    g.DrawText(text, fonts.label, palette::kWhite, kRightEdge, 25, gdi::TextAlign::Right);
}

// The wind above the title, and the page's title in the bottom left corner.
void DrawWindAndTitle(gdi::Graphics& g, const CornerFonts& fonts, int page) {
    char text[24];
    double speed = Finite(g_sim.wind_speed);
    if (speed >= kNoWindBelow)
        std::snprintf(text, sizeof text, "%03.0f\xC2\xB0/%2.0f", WholeDegrees(g_sim.wind_direction_display),
                      std::fmin(speed, 999.0));
    else
        std::snprintf(text, sizeof text, "---\xC2\xB0/---");
    g.DrawText(text, fonts.label, palette::kWhite, 4, kWindY);
    g.DrawText(C17PageTitle(page), fonts.title, palette::kSkyBlue, 4, kTitleY);
}
}  // namespace

// [SECTION] The navigation page
void DrawC17Navigation(const DisplaySurface& surface) {
    if (surface.graphics == nullptr) return;
    gdi::Graphics& g = *surface.graphics;
    ResetToDesign(surface);
    CornerFonts fonts;
    const float cx = kC17MapCentreX, cy = kC17RoseCentreY, r = kC17RoseRadius;
    double heading = Finite(g_sim.heading_magnetic.now);
    char text[32];

    // 1. What the receiver gives: its kind, signal, flags and station.
    int flags = ReadTokenFlag(Token::NAV1_FLAGS);
    bool signal = ReadToken(Token::NAV1_SIGNAL) > 0;
    bool is_vor = g_sim.nav1_is_vor != 0;
    const char* source = C17NavSourceText(is_vor, flags);
    bool glideslope = !is_vor && (flags & kC17GlideslopeFlag) != 0;

    // 2. The rose: ring, card, heading bug, lubber line.
    gdi::Pen ring(palette::kWhite, 1.5f);
    g.DrawEllipse(ring, static_cast<int>(cx - r), static_cast<int>(cy - r), static_cast<int>(2 * r),
                  static_cast<int>(2 * r));
    DrawCompassCard(g, surface, cx, cy, r, heading, -180, 180, CompassCardStyle{8, 4, 11, 9, 30, 30, true});
    DrawHeadingBugNotch(g, surface, cx, cy, r, heading, 180, 6);
    DrawLubber(g, cx, cy - r);

    // 3. The course needle through the centre, with its deviation bar and
    //    dots: green for a VOR, magenta for a localiser. No bar without a signal.
    double course = Finite(g_sim.nav1_obs);
    double dots = std::fmax(-kDeflectionLimit, std::fmin(kDeflectionLimit, Finite(g_sim.nav1_needle) / kNeedleFullScale * 2));
    ARGB needle_colour = is_vor ? palette::kGreen : palette::kMagenta;
    {
        gdi::Pen pen(needle_colour, 2.0f);
        gdi::Pen dot_pen(palette::kWhite, 1.5f);
        const float length = r - 16;
        ResetToDesign(surface);
        g.Translate(cx, cy);
        g.Rotate(F(course - heading));
        g.DrawLine(pen, 0, -length, 0, -length / 2);
        g.DrawLine(pen, 0, length / 2, 0, length);
        const GpPoint head[] = {{0, static_cast<INT>(-length - 8)}, {-5, static_cast<INT>(-length)},
                                {5, static_cast<INT>(-length)}};
        g.DrawPolygon(pen, head, 3);
        for (int d : {-2, -1, 1, 2}) g.DrawEllipse(dot_pen, d * kDotSpacing - 3, -3, 6, 6);
        if (signal) {
            float bar = F(dots * kDotSpacing);
            g.DrawLine(pen, bar, -length / 2 + 4, bar, length / 2 - 4);
        }
        ResetToDesign(surface);
    }
    DrawOwnShip(g, cx, cy + 4);

    // 4. The glideslope scale on an ILS: four dots and the diamond.
    if (glideslope) {
        double gs = std::fmax(-kDeflectionLimit,
                              std::fmin(kDeflectionLimit, Finite(g_sim.nav1_gs_needle.now) / kGlideFullScale * 2));
        gdi::Pen dot_pen(palette::kWhite, 1.5f);
        for (int d : {-2, -1, 1, 2})
            g.DrawEllipse(dot_pen, kGlideScaleX - 3, static_cast<int>(cy) + d * kDotSpacing - 3, 6, 6);
        g.DrawLine(dot_pen, F(kGlideScaleX - 7), cy, F(kGlideScaleX + 7), cy);
        if (signal) {
            gdi::SolidBrush magenta(palette::kMagenta);
            INT y = static_cast<INT>(cy + gs * kDotSpacing);
            const GpPoint diamond[] = {{kGlideScaleX, y - 6}, {kGlideScaleX + 5, y}, {kGlideScaleX, y + 6},
                                       {kGlideScaleX - 5, y}};
            g.FillPolygon(magenta, diamond, 4);
        }
    }

    // 5. The receiver, top left: its name, course and distance; its
    //    frequency and station lower right.
    g.DrawText(source, fonts.value, needle_colour, 4, 2);
    std::snprintf(text, sizeof text, "CRS %03.0f", WholeDegrees(course));
    g.DrawText(text, fonts.label, palette::kWhite, 4, 14);
    double dme = Finite(g_sim.dme1_distance);
    if (signal && dme > 0) std::snprintf(text, sizeof text, "DME %.1f", std::fmin(dme, 999.9));
    else std::snprintf(text, sizeof text, "DME ---");
    g.DrawText(text, fonts.label, palette::kWhite, 4, 25);
    std::snprintf(text, sizeof text, "%06.2f", std::fmin(std::fmax(BcdNavFrequencyMhz(Token::NAV1_FREQUENCY), 0.0), 999.99));
    g.DrawText(text, fonts.label, needle_colour, kRightEdge, 190, gdi::TextAlign::Right);
    if (signal) {
        std::array<char, 8> ident{};
        if (!ExecuteCalculatorText("(A:NAV IDENT:1,string)", ident.data(), static_cast<int>(ident.size())))
            ident[0] = '\0';
        ident.back() = '\0';
        g.DrawText(ident.data(), fonts.label, needle_colour, kRightEdge, 201, gdi::TextAlign::Right);
    }

    // 6. The heading, the active waypoint's course and distance, the corners.
    DrawHeadingBox(g, fonts, heading);
    DrawActiveWaypoint(g, fonts, true);
    DrawSpeeds(g, fonts, 190);
    DrawWindAndTitle(g, fonts, 0);
    DrawHeadingBugDigits(g, 150, 3);
}

// [SECTION] The map pages
void DrawC17Map(const DisplaySurface& surface, int page) {
    if (surface.graphics == nullptr || !C17PageHasMap(page)) return;
    gdi::Graphics& g = *surface.graphics;
    const C17Screen& working = g_display.c17_working;
    MapView view = C17MapView(surface, page);
    const bool below_plan = !view.plan_mode;
    double heading = Finite(g_sim.heading_magnetic.now);
    const int cx = static_cast<int>(view.CentreX), cy = static_cast<int>(view.CentreY);
    const int r = static_cast<int>(view.MapRadiusPx);

    // 1. The page's clip path: the arc's fan (3), the disc (4), the plan's
    //    window (5), the outer ring cut to the map's rows (6).
    ResetToDesign(surface);
    gdi::Path clip;
    if (page == 3) {
        clip.AddArc(cx - r, cy - r, 2 * r, 2 * r, 225, 90);
        int side_y = cy - static_cast<int>(r * std::sqrt(0.5));
        clip.AddLine(246, side_y, 246, kC17MapBottom);
        clip.AddLine(246, kC17MapBottom, 0, kC17MapBottom);
        clip.AddLine(0, kC17MapBottom, 0, side_y);
        clip.CloseFigure();
    } else if (page == 4) {
        clip.AddEllipse(cx - r, cy - r, 2 * r, 2 * r);
    } else if (page == 5) {
        clip.AddRectangle(4, kC17MapTop, 238, kC17MapBottom - kC17MapTop);
    } else {
        clip.AddEllipse(cx - r, cy - r, 2 * r, 2 * r);
    }
    g.SetClip(clip);
    if (page == 6) g.SetClipRect(0, kC17MapTop, 246, kC17MapBottom - kC17MapTop, CombineModeIntersect);

    // 2. The route, with the runways below PLAN under it.
    const MapSwitches& toggles = C17Switches();
    DrawAtcBoundariesLayer(g, view);
    DrawAirportDiagramLayer(g, view);
    if (below_plan) DrawRunwaysLayer(g, view);
    DrawRouteLayer(g, view);
    // 3. The fixes of the FIX INFO page, then the localiser's course below PLAN.
    DrawFixCirclesLayer(g, view);
    if (below_plan) DrawIlsCourseLine(g, view);
    // 4. Navaids, airports and intersections to 160 by their switches; the
    //    panel's left symbol flag adds the intersections.
    RefreshProximitySubsets();
    ObjectLayerStyle style;
    style.navaid_colour = C17NavaidColour(working);
    style.fix_kind = kSymbolFix;
    style.fix_colour = kMapBlue;
    style.airport_colour = palette::kCyan;
    if (toggles.navaids == 1 && view.range <= kC17NavaidMaxRange) DrawNavaidsLayer(g, view, style);
    if (toggles.airports == 1 && view.range <= kC17AirportMaxRange) DrawAirportsLayer(g, view, style);
    if (C17ShowsIntersections() && view.range <= kC17FixMaxRange) DrawIntersectionsLayer(g, view, style);
    // 5. Holds below PLAN, the modification route, trend vector and altitude range arc.
    if (below_plan) DrawHoldFigureLayer(g, view);
    DrawModificationRouteLayer(g, view);
    if (below_plan) {
        DrawTrendVector(g, view);
        DrawAltitudeRangeArc(g, view);
    }
    ResetToDesign(surface);
    g.ResetClip();

    // 6. Traffic below PLAN, with the transform reset, by its switch or the
    //    panel's right symbol flag, in the kind of the working value.
    if (below_plan && C17ShowsTraffic()) {
        ResetToDesign(surface);
        DrawTraffic(surface, view.MapRadiusPx, view.range, view.CentreX, view.CentreY, C17TrafficKind(working));
    }

    // 7. T/C and T/D over the map.
    DrawVerticalMarks(g, view, kVerticalMarksStyleC17);
    ResetToDesign(surface);

    // 8. The compass of the page, and the aircraft.
    gdi::Pen ring(palette::kWhite, 1.5f);
    if (page == 3) {
        g.DrawArc(ring, cx - r, cy - r, 2 * r, 2 * r, F(270 - kArcHalfSweep), F(2 * kArcHalfSweep));
        DrawCompassCard(g, surface, F(cx), F(cy), F(r), heading, -kArcHalfSweep, kArcHalfSweep,
                        CompassCardStyle{8, 4, 11, 9, 10, 10, true});
        DrawHeadingBugNotch(g, surface, F(cx), F(cy), F(r), heading, kArcHalfSweep, 6);
        gdi::Pen dashed(palette::kWhite, 1.0f);
        dashed.SetDash(DashStyleDash);
        int half = r / 2;
        g.DrawArc(dashed, cx - half, cy - half, 2 * half, 2 * half, F(270 - kArcHalfSweep), F(2 * kArcHalfSweep));
        DrawLubber(g, F(cx), F(cy - r));
        DrawOwnShip(g, F(cx), F(cy));
    } else if (page == 4) {
        g.DrawEllipse(ring, cx - r, cy - r, 2 * r, 2 * r);
        DrawCompassCard(g, surface, F(cx), F(cy), F(r), heading, -180, 180, CompassCardStyle{8, 4, 11, 9, 30, 30, true});
        DrawHeadingBugNotch(g, surface, F(cx), F(cy), F(r), heading, 180, 6);
        DrawRangeRing(g, view, 0.5);
        DrawLubber(g, F(cx), F(cy - r));
        DrawOwnShip(g, F(cx), F(cy));
    } else if (page == 5) {
        DrawNorthUpRing(g, view);
        DrawPlanOwnShip(g, surface, view);
    } else {
        // Page 6: the rings at half and full range, each labelled with its
        // distance, the card on the outer ring's top, the range written out.
        ResetToDesign(surface);
        g.SetClipRect(0, kC17MapTop - 14, 246, kC17MapBottom - kC17MapTop + 14);
        gdi::Pen outer(palette::kWhite, 1.0f);
        g.DrawEllipse(outer, cx - r, cy - r, 2 * r, 2 * r);
        DrawRangeRing(g, view, 0.5);
        g.ResetClip();
        DrawCompassCard(g, surface, F(cx), F(cy), F(r), heading, -kRangeHalfSweep, kRangeHalfSweep,
                        CompassCardStyle{8, 4, 11, 9, 10, 10, true});
        DrawHeadingBugNotch(g, surface, F(cx), F(cy), F(r), heading, kRangeHalfSweep, 6);
        gdi::Font ring_font(kArialFont, kRingFont, FontStyleBold);
        char text[24];
        for (double fraction : {0.5, 1.0}) {
            RangeNumber(view.range * fraction, text, sizeof text);
            float along = F(view.MapRadiusPx * fraction * std::sqrt(0.5));
            g.DrawText(text, ring_font, palette::kWhite, F(cx) - along - 2, F(cy) - along - 2, gdi::TextAlign::Right,
                       gdi::TextBaseline::Bottom);
        }
        CornerFonts fonts;
        RangeNumber(view.range, text, sizeof text);
        char range_text[32];
        std::snprintf(range_text, sizeof range_text, "RNG %s NM", text);
        g.DrawText(range_text, fonts.label, palette::kWhite, kRightEdge, kTitleY, gdi::TextAlign::Right);
        DrawLubber(g, F(cx), F(cy - r));
        DrawOwnShip(g, F(cx), F(cy));
    }

    // 9. The corner texts, last.
    ResetToDesign(surface);
    CornerFonts fonts;
    DrawHeadingBox(g, fonts, heading);
    DrawSpeeds(g, fonts, 2);
    DrawActiveWaypoint(g, fonts, false);
    DrawWindAndTitle(g, fonts, page);
    if (C17ShowsTraffic() && below_plan) g.DrawText("TFC", fonts.label, palette::kCyan, kRightEdge, kWindY, gdi::TextAlign::Right);
    DrawHeadingBugDigits(g, 150, 3);
}
