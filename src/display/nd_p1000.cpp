// nd_p1000.cpp: the P1000_MFD page on its 272 x 314 canvas.
//
//   top band     ground speed, true airspeed, heading, the active waypoint
//   map          heading-up: a circle of radius 53 round (134, 148), the card
//                turning with the aircraft; PLAN (the pop-up's key): north-up,
//                radius 75 round (134, 116), around the plan's centre row
//   traffic      the window below the map (DrawTcasWindowOnP1000MFD), with
//                its own range: the map's up to 40 nm, else 5
//   key labels   along the bottom, by the pop-up and the keys' page
//
// The page's own figures (card, own-ship, window, texts) are drawn in the
// eighths frame: the transform takes an eighth, coordinates are times 8.
//
// Index:
//   [SECTION] The eighths frame
//   [SECTION] Map view
//   [SECTION] Compass and own-ship
//   [SECTION] Traffic window
//   [SECTION] Texts
//   [SECTION] The page
#include "display/nd_p1000.h"

#include "display/display_state.h"
#include "display/map_symbols.h"
#include "display/p1000_popup.h"
#include "display/p1000_soft_keys.h"
#include "display/traffic.h"
#include "frame/global_config.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "plan/plan_tables.h"

#include <cmath>
#include <cstdio>
#include <iterator>

// [SECTION] The eighths frame
namespace {
constexpr float kSub = kP1000SubPixels;

float F(double v) { return static_cast<float>(v); }
// A design pixel in the eighths frame.
int E(double px) { return static_cast<int>(std::lround(px * kSub)); }

// Resets the transform to the eighths frame of the canvas.
void BeginEighths(gdi::Graphics& g, const DisplaySurface& surface) {
    g.ResetTransform();
    g.Scale(surface.scale_x / kSub, surface.scale_y / kSub);
}

// Text at a design pixel, in a font of a design pixel size, in eighths.
void Text(gdi::Graphics& g, const char* text, const gdi::Font& font, ARGB colour, double x, double y,
          gdi::TextAlign align = gdi::TextAlign::Left) {
    g.DrawText(text, font, colour, F(x * kSub), F(y * kSub), align);
}
}  // namespace

// [SECTION] Map view
MapView P1000MapView(const DisplaySurface& surface) {
    DisplayState& d = g_display;
    // PLAN stands higher and larger; leaving it puts the map back (the
    // pop-up's key and the window watch do that).
    if (d.p1000_plan == 1) {
        d.p1000_map_x = kP1000MapCentreX;
        d.p1000_map_y = kP1000PlanCentreY;
        d.p1000_map_radius = kP1000PlanRadius;
    }
    MapView view;
    view.ScaleX = surface.scale_x;
    view.ScaleY = surface.scale_y;
    view.instance = surface.instance;
    view.range = d.p1000_range > 0 ? d.p1000_range : 12.5;
    view.CentreX = d.p1000_map_x;
    view.CentreY = d.p1000_map_y;
    view.MapRadiusPx = d.p1000_map_radius;
    view.PixelsPerNm = view.MapRadiusPx / view.range;
    view.MapHeading = std::isfinite(g_sim.heading_true) ? g_sim.heading_true : 0;
    view.MapCentreLatitude = g_sim.latitude;
    view.MapCentreLongitude = g_sim.longitude;
    view.plan_mode = d.p1000_plan == 1;
    if (view.plan_mode) {
        view.MapHeading = 0;
        CentreOnPlan(view);
    }
    return view;
}

double P1000TrafficRange(double map_range) {
    return map_range <= kP1000TrafficMaxRange ? map_range : kP1000TrafficFallbackRange;
}

// [SECTION] Compass and own-ship
namespace {
constexpr int kDigitEvery = 30;          // degrees between the card's digits
constexpr float kDigitFont = 9;          // design pixels
constexpr float kDigitGap = 11;          // digits stand this far outside the circle

// The card round the map: marks every 5 degrees (kinds 30 and 31), digits
// every 30 outside, a lubber pointer at the top; north-up in PLAN, with "N".
void DrawCompass(gdi::Graphics& g, const DisplaySurface& surface, const MapView& view, double heading) {
    float cx = F(view.CentreX * kSub), cy = F(view.CentreY * kSub);
    int r = E(view.MapRadiusPx);
    BeginEighths(g, surface);
    gdi::Pen ring(palette::kWhite, 1.0f * kSub);
    g.DrawEllipse(ring, E(view.CentreX) - r, E(view.CentreY) - r, 2 * r, 2 * r);
    gdi::Font digits(kArialFont, kDigitFont * kSub);
    for (int card = 0; card < 360; card += 5) {
        BeginEighths(g, surface);
        g.Translate(cx, cy);
        g.Rotate(F(card - heading));
        int kind = card % 10 == 0 ? kSymbolTickLong : kSymbolTickShort;
        DrawMapSymbol(g, 0, -r, kind, kNoLabel, kSub, kSub, kMapWhite, view.range);
        if (card % kDigitEvery == 0) {
            // The digits stay upright: placed round the card, not turned with it.
            char text[8];
            std::snprintf(text, sizeof text, "%d", card / 10);
            double a = (card - heading) * kDegToRad;
            double along = view.MapRadiusPx + kDigitGap - kDigitFont / 2;
            BeginEighths(g, surface);
            g.DrawText(text, digits, palette::kWhite, F(cx + std::sin(a) * along * kSub),
                       F(cy - std::cos(a) * along * kSub), gdi::TextAlign::Centre, gdi::TextBaseline::Middle);
        }
    }
    // The lubber pointer over the card's top (heading-up), or "N" in PLAN.
    BeginEighths(g, surface);
    if (view.plan_mode) {
        gdi::Font north(kArialFont, 11 * kSub, FontStyleBold);
        Text(g, "N", north, palette::kGreen, view.CentreX + view.MapRadiusPx - 4, view.CentreY - view.MapRadiusPx - 6);
    } else {
        gdi::SolidBrush white(palette::kWhite);
        int x = E(view.CentreX), top = E(view.CentreY - view.MapRadiusPx);
        const GpPoint pointer[] = {{x, top + E(1)}, {x - E(3.5), top - E(5)}, {x + E(3.5), top - E(5)}};
        g.FillPolygon(white, pointer, 3);
        // The heading bug on the card, magenta.
        double off = ModuloPositive(g_sim.heading_bug.now - heading + 180, 360) - 180;
        if (std::isfinite(off)) {
            gdi::Pen bug(palette::kMagenta, 2.0f * kSub);
            g.Translate(cx, cy);
            g.Rotate(F(off));
            g.DrawRectangle(bug, -E(3), -r - E(3), E(6), E(3));
        }
    }
    BeginEighths(g, surface);
}

// Own-ship: the mark (kind 40) at the centre, nose up; in PLAN at the
// aircraft's place, turned by its heading.
void DrawOwnShip(gdi::Graphics& g, const DisplaySurface& surface, const MapView& view) {
    double x = 0, y = 0;
    double heading = 0;
    if (view.plan_mode) {
        ProjectToMap(view, g_sim.latitude, g_sim.longitude, x, y);
        heading = std::isfinite(g_sim.heading_true) ? g_sim.heading_true : 0;
        // Off the PLAN circle the aircraft isn't shown.
        if (std::hypot(x, y) > view.MapRadiusPx) return;
    }
    BeginEighths(g, surface);
    g.Translate(F((view.CentreX + x) * kSub), F((view.CentreY + y) * kSub));
    g.Rotate(F(heading));
    DrawMapSymbol(g, 0, -E(6), kSymbolOwnShipMark, kNoLabel, kSub, kSub, kMapWhite, view.range);
    if (view.plan_mode) {
        // The plan's centre, where the map turns round.
        BeginEighths(g, surface);
        DrawMapSymbol(g, E(view.CentreX), E(view.CentreY), kSymbolRing, kNoLabel, kSub, kSub, kMapGreen, view.range);
    }
    BeginEighths(g, surface);
}
}  // namespace

// [SECTION] Traffic window
namespace {
constexpr int kWindowBarLeftX = 39;      // the two bars of the frame
constexpr int kWindowBarRightX = 221;
constexpr int kWindowTop = 171;
constexpr int kWindowHeight = 101;
constexpr int kOuterCircle = 130;        // diameters, design pixels
constexpr int kInnerCircle = 60;

void DrawTrafficWindow(gdi::Graphics& g, const DisplaySurface& surface, double map_range) {
    BeginEighths(g, surface);
    // 1. The frame: two bars.
    gdi::Pen frame(palette::kWhite, 1.5f * kSub);
    g.DrawLine(frame, F(E(kWindowBarLeftX)), F(E(kWindowTop)), F(E(kWindowBarLeftX)),
               F(E(kWindowTop + kWindowHeight)));
    g.DrawLine(frame, F(E(kWindowBarRightX)), F(E(kWindowTop)), F(E(kWindowBarRightX)),
               F(E(kWindowTop + kWindowHeight)));
    // 2. The title and the window's range.
    gdi::Font title(kArialFont, 10 * kSub, FontStyleBold);
    gdi::Font small(kArialFont, 9 * kSub);
    Text(g, "TCAS", title, palette::kCyan, kWindowBarLeftX + 4, kWindowTop + 2);
    double range = P1000TrafficRange(map_range);
    char text[16];
    std::snprintf(text, sizeof text, range == std::floor(range) ? "%.0f" : "%.1f", range);
    Text(g, text, small, palette::kWhite, kWindowBarRightX - 4, kWindowTop + 2, gdi::TextAlign::Right);
    // 3. Everything round the window's aircraft keeps inside its polygon.
    gdi::Path clip;
    const GpPoint corners[] = {{E(40), E(191)}, {E(131), E(258)}, {E(225), E(191)}, {E(131), E(171)}};
    clip.AddPolygon(corners, 4);
    g.SetClip(clip);
    gdi::Pen circle(palette::kWhite, 1.0f * kSub);
    circle.SetDash(DashStyleDot);
    int cx = E(kP1000TrafficCentreX), cy = E(kP1000TrafficCentreY);
    g.DrawEllipse(circle, cx - E(kOuterCircle / 2.0), cy - E(kOuterCircle / 2.0), E(kOuterCircle), E(kOuterCircle));
    g.DrawEllipse(circle, cx - E(kInnerCircle / 2.0), cy - E(kInnerCircle / 2.0), E(kInnerCircle), E(kInnerCircle));
    // 4. The own aircraft at the centre; the targets with the traffic switch on.
    DrawMapSymbol(g, cx, cy - E(6), kSymbolOwnShipMark, kNoLabel, kSub, kSub, kMapWhite, range);
    if (g_display.p1000_traffic == 1) {
        ResetToDesign(surface);
        DrawTraffic(surface, kP1000TrafficRadius, range, kP1000TrafficCentreX, kP1000TrafficCentreY,
                    kTrafficKindP1000);
    }
    g.ResetClip();
    BeginEighths(g, surface);
}
}  // namespace

// [SECTION] Texts
namespace {
constexpr double kNoTasBelow = 100;      // knots: TAS shows dashes at or below

void DrawTexts(gdi::Graphics& g, const DisplaySurface& surface, const MapView& view, double heading) {
    BeginEighths(g, surface);
    const SimState& s = g_sim;
    gdi::Font label(kArialFont, 10 * kSub);
    gdi::Font value(kArialFont, 12 * kSub, FontStyleBold);
    char text[48];

    // 1. Ground speed and true airspeed, top left.
    Text(g, "GS", label, palette::kWhite, 6, 4);
    std::snprintf(text, sizeof text, "%.0f", std::isfinite(s.ground_speed) ? s.ground_speed : 0.0);
    Text(g, text, value, palette::kGreen, 28, 2);
    Text(g, "TAS", label, palette::kWhite, 6, 18);
    if (s.true_airspeed.now > kNoTasBelow)
        std::snprintf(text, sizeof text, "%3.0f", s.true_airspeed.now);
    else
        std::snprintf(text, sizeof text, "- - -");
    Text(g, text, value, palette::kGreen, 32, 16);

    // 2. The heading, boxed, top centre; "PLAN" under it in the north-up mode.
    std::snprintf(text, sizeof text, "%03.0f", ModuloPositive(std::round(heading), 360));
    gdi::Pen box(palette::kWhite, 1.0f * kSub);
    g.DrawRectangle(box, E(kP1000MapCentreX - 17), E(2), E(34), E(16));
    Text(g, text, value, palette::kWhite, kP1000MapCentreX, 3, gdi::TextAlign::Centre);
    if (view.plan_mode) Text(g, "PLAN", label, palette::kGreen, kP1000MapCentreX, 20, gdi::TextAlign::Centre);

    // 3. The active waypoint and its distance, top right.
    MapGuidance guidance = ReadMapGuidance();
    if (guidance.has_active) {
        const PlanWaypoint& w = g_plan.ActivePlan[static_cast<size_t>(guidance.active_row)];
        Text(g, w.Ident.data(), value, palette::kMagenta, 266, 2, gdi::TextAlign::Right);
        std::snprintf(text, sizeof text, "%.1f NM", guidance.distance_to_active);
        Text(g, text, label, palette::kWhite, 266, 18, gdi::TextAlign::Right);
    }

    // 4. The map's range, left of the map.
    double range = view.range;
    std::snprintf(text, sizeof text, range == std::floor(range) ? "%.0f NM" : "%.1f NM", range);
    Text(g, text, label, palette::kCyan, kP1000RangeTextX, kP1000RangeTextY);

    // 5. The soft keys' labels along the bottom: names white, values green.
    gdi::Font keys(kArialFont, 10 * kSub);
    P1000Labels labels = P1000SoftKeyLabels();
    for (int i = 0; i < labels.count; ++i) {
        const P1000Label& l = labels.rows[static_cast<size_t>(i)];
        Text(g, l.text.data(), keys, l.value ? palette::kGreen : palette::kWhite, l.x, l.y);
    }
    BeginEighths(g, surface);
}
}  // namespace

// [SECTION] The page
void DrawP1000Mfd(const DisplaySurface& surface) {
    gdi::Graphics& g = *surface.graphics;
    MapView view = P1000MapView(surface);
    bool below_plan = !view.plan_mode;
    double heading = g_sim.heading_magnetic.now;
    if (!std::isfinite(heading)) heading = 0;
    const DisplayState& d = g_display;

    // 1. The map is clipped to its circle.
    BeginEighths(g, surface);
    gdi::Path disc;
    int r = E(view.MapRadiusPx);
    disc.AddEllipse(E(view.CentreX) - r, E(view.CentreY) - r, 2 * r, 2 * r);
    g.SetClip(disc);

    // 2. The ATC boundaries and the airport diagram (each gates itself), the
    //    route, with the selected runways below PLAN.
    DrawAtcBoundariesLayer(g, view);
    DrawAirportDiagramLayer(g, view);
    DrawRouteLayer(g, view);
    if (below_plan) DrawRunwaysLayer(g, view);
    // 3. The fixes' circles; the localiser's course below PLAN.
    DrawFixCirclesLayer(g, view);
    if (below_plan) DrawIlsCourseLine(g, view);
    // 4. Navaids to 160, airports to 80, intersections to 40 (not at instance 3), by their switches.
    RefreshProximitySubsets();
    ObjectLayerStyle style;
    style.navaid_colour = kMapGreen;
    style.fix_kind = kSymbolFix;
    style.fix_colour = kMapBlue;
    style.airport_colour = palette::kCyan;
    if (d.p1000_navaids == 1 && view.range <= kP1000NavaidMaxRange) DrawNavaidsLayer(g, view, style);
    if (d.p1000_airports == 1 && view.range <= kP1000AirportMaxRange) DrawAirportsLayer(g, view, style);
    if (d.p1000_intersections == 1 && view.range <= kP1000FixMaxRange && surface.instance != 3)
        DrawIntersectionsLayer(g, view, style);
    // 5. Holds below PLAN, the modification route.
    if (below_plan) DrawHoldFigureLayer(g, view);
    DrawModificationRouteLayer(g, view);
    // 6. Trend vector, and the altitude range arc by its option, below PLAN.
    if (below_plan) {
        DrawTrendVector(g, view);
        if (g_config.DrawBodArcOnP1000MFD == 1) DrawAltitudeRangeArc(g, view);
    }
    // 7. Traffic on the map itself when there is no window for it.
    if (below_plan && g_config.DrawTcasWindowOnP1000MFD != 1 && d.p1000_traffic == 1) {
        ResetToDesign(surface);
        DrawTraffic(surface, view.MapRadiusPx, view.range, view.CentreX, view.CentreY, kTrafficKindP1000);
    }
    // 8. The T/C and T/D marks, still on the map.
    DrawVerticalMarks(g, view, kVerticalMarksStyleP1000);
    BeginEighths(g, surface);
    g.ResetClip();

    // 9. The card and own-ship over the map; the traffic window; the texts last.
    DrawCompass(g, surface, view, view.plan_mode ? 0 : heading);
    DrawOwnShip(g, surface, view);
    if (g_config.DrawTcasWindowOnP1000MFD == 1) DrawTrafficWindow(g, surface, view.range);
    DrawTexts(g, surface, view, heading);
    ResetToDesign(surface);
}
