// plan_tables.h: the flight plan tables. A plan is a flat table of waypoint
// rows; the leg to a row is the path from the row before. ActivePlan is what
// guidance flies, ModPlan the copy the CDU pages edit, PreviewPlan a plan read
// from a file to be looked at. PlanContext holds what goes with them.
#pragma once

#include <array>
#include <string_view>

constexpr int kPlanLastRowLimit = 200;       // rows 0..200: a plan has at most 201 rows
constexpr int kPlanRows = kPlanLastRowLimit + 2;  // and ModPlan's end marker behind row 200
constexpr int kNoActiveLeg = 999;            // ActiveLeg when there is none
constexpr int kRouteRowLimit = 200;          // rows of the route page's list
constexpr double kNoAltitude = -999;         // altitude or speed not set
constexpr double kNoCourse = -1;             // no inbound course

// One row of a plan.
struct PlanWaypoint {
    std::array<char, 24> Ident{};            // name, or "DISCO", "THEN", "******", "HOLD PPOS", "DIRECT"
    double Latitude = 0;                     // degrees, north positive
    double Longitude = 0;                    // degrees, east positive
    std::array<char, 8> WaypointType{};      // "APT", "VOR", "NDB", "INT", "WPT", "OAWY" or empty
    std::array<char, 16> Via{};              // airway or procedure the row was reached by
    std::array<char, 8> SegmentKind{};       // "SID", "STAR", "SIDSTAR", "APPR", "DCT" or empty
    std::array<char, 24> NameCopy{};         // read by the simulator plan writer only
    std::array<char, 8> LegMarker{};         // "IAF", "FAF", "MAP"... on approach rows
    std::array<char, 8> ActualTime{};        // "hh:mm" when sequenced
    double Altitude = kNoAltitude;           // feet; an airport row holds its elevation
    double Speed = kNoAltitude;              // knots
    double InboundCourse = kNoCourse;        // degrees; above -1: a course to intercept
    int Flyover = 0;                         // 1: fly over before turning
    int Restricted = 0;                      // 1: altitude and speed bind VNAV (2, 3 on approach rows)
    int HoldIndex = 0;                       // above 0: row of the hold table
    std::array<char, 12> Frequency{};        // navaid frequency text
};

using PlanTable = std::array<PlanWaypoint, kPlanRows>;

constexpr char kNoSelection[] = "------";

struct PlanSelections {
    std::array<char, 16> Sid{}, SidTransition{}, Star{}, StarTransition{}, Approach{}, ApproachTransition{}, Runway{};
};

struct PlanContext {
    int ActiveLastRow = -1;                  // last row of ActivePlan; -1 = no plan
    int ModLastRow = -1;                     // last row of ModPlan; -1 = none
    int PreviewLastRow = -1;                 // last row of PreviewPlan
    int ActiveLeg = kNoActiveLeg;            // row flown to; 999 = none
    int ModActiveLeg = kNoActiveLeg;
    int NextRestrictionRow = 0;              // row of the next altitude target
    int ModNextRestrictionRow = 0;
    int PlanState = 0;                       // 0..4
    int CruiseAltitude = 0;                  // feet
    int ModCruiseAltitude = 0;               // feet, as a route page loads it
    std::array<char, 16> DestinationIdent{};
    std::array<char, 16> DestinationElevation{};
    double ActiveWaypointLatitude = 0;       // copy of row ActiveLeg's position
    double ActiveWaypointLongitude = 0;
    std::array<char, 260> PlanLoadFile{};    // route file last loaded (or asked for)
    PlanSelections active_selection;         // "------" each when none
    PlanSelections mod_selection;
    int has_leg = 0;                         // 1: the loaded plan has a leg to fly
    // Hand-offs read by the descent logic and the pages.
    double TargetLatitude = 0;               // descent target (the destination)
    double TargetLongitude = 0;
    double TargetAltitude = 0;               // feet
    int NextTargetRow = 0;                   // the plan's next target row
    std::array<char, 16> OriginText{};       // the origin the departure pages show
    std::array<char, 16> ModOriginText{};
    std::array<char, 16> DestinationText{};
    std::array<char, 16> ModDestinationText{};
    int AirportSide = 0;                     // 1 departure, 2 arrival
    std::array<char, 16> MapAirportText{};   // the map pages' airport (load mode 3)
    std::array<char, 16> McuAirportText{};   // the MCU pages' airport (load mode 1)
    int map_redraw = 0;                      // 1: the map pages redraw
    double PlanFuel = 0;                     // pounds, from the route file's header
    double ReserveFuel = 0;                  // pounds
    std::array<char, 64> PendingApproachInfo{};  // "ILS16R_16R": chosen at the next execution
    double AlongRouteFuel = 0;               // pounds, cleared on loading
    int intercept_state = 0;                 // LNAV's intercept leg, cleared on loading
    double OriginLatitude = 0;               // LNAV's origin position
    double OriginLongitude = 0;
    double DistanceToActive = 999;           // nm
};

struct PlanTables {
    PlanTable ActivePlan{};
    PlanTable ModPlan{};
    PlanTable PreviewPlan{};
    PlanContext context;
};

extern PlanTables g_plan;

struct RouteRow {
    std::array<char, 24> ToWaypoint{};
    std::array<char, 16> Airway{};           // "DIRECT" or the Via of its rows
};

struct RouteRowList {
    std::array<RouteRow, kRouteRowLimit + 1> rows{};  // rows 1..count
    int count = 0;
};

extern RouteRowList g_route_rows;

// The defaults of a new row.
void NewPlanRow(PlanWaypoint& row);
// No plan: last rows -1, ActiveLeg 999.
void ClearPlans();
// ActivePlan to ModPlan, ActualTime emptied.
void BeginModification();
// ModPlan over ActivePlan, field by field (all but NameCopy); ActiveLeg 999
// becomes 1 and the active waypoint's position is refreshed. The plan's
// execution step uses it.
void CopyModPlanToActive();
// The route page's rows from ModPlan.
void BuildRouteRows();
// True for a row name that isn't a waypoint of its own.
bool IsDiscontinuity(const PlanWaypoint& row);
