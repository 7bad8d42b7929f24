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
constexpr int kPlanTextSize = 32;            // an ident, runway or procedure name with room to spare

using PlanText = std::array<char, kPlanTextSize>;

constexpr PlanText MakePlanText(const char* text) {
    PlanText out{};
    for (int i = 0; text[i] != 0 && i < kPlanTextSize - 1; ++i) out[i] = text[i];
    return out;
}

// The route's airports and procedures as the pages chose them: one copy,
// which the route pages write and the route writer, EXEC and ERASE read.
// The names hold "------" for none. The working names are the modified
// version; their saved twins are the active version as at the last EXEC,
// which ERASE puts back. The approach has no saved twin.
struct PlanSelections {
    PlanText OriginName = MakePlanText(kNoSelection);
    PlanText DestinationName = MakePlanText(kNoSelection);
    PlanText SidName = MakePlanText(kNoSelection);
    PlanText SidTransition = MakePlanText(kNoSelection);
    PlanText DepartureRunway = MakePlanText(kNoSelection);
    PlanText StarName = MakePlanText(kNoSelection);
    PlanText StarTransition = MakePlanText(kNoSelection);
    PlanText ArrivalRunway = MakePlanText(kNoSelection);
    PlanText ApproachName = MakePlanText(kNoSelection);
    PlanText ApproachTransition = MakePlanText(kNoSelection);
    PlanText SavedSidName = MakePlanText(kNoSelection);
    PlanText SavedSidTransition = MakePlanText(kNoSelection);
    PlanText SavedDepartureRunway = MakePlanText(kNoSelection);
    PlanText SavedStarName = MakePlanText(kNoSelection);
    PlanText SavedStarTransition = MakePlanText(kNoSelection);
    PlanText SavedArrivalRunway = MakePlanText(kNoSelection);
    PlanText PendingDepartureRunway = MakePlanText(kNoSelection);  // a runway entered while the plan is active
    PlanText ModifiedOrigin{};               // empty, or the origin entered while PlanState is 4
    PlanText ModifiedDestination{};          // empty, or the destination entered while PlanState is 4
};

// Values a modification changed, as they stood before it. ERASE puts back
// the slots that are set; EXEC commits the change and empties them.
struct PlanUndoSlots {
    int CruiseAltitude = 0;                  // feet; 0 or less: none
    int CostIndex = -1;                      // -1: none
    int ClimbIas = 0;                        // knots; 0 or less: none
    int CruiseIas = 0;
    int DescentIas = 0;
    double ClimbMach = 0;                    // 0 or less: none
    double CruiseMach = 0;
    double DescentMach = 0;
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
    PlanSelections Selections;
    PlanUndoSlots Undo;
    int has_leg = 0;                         // 1: the loaded plan has a leg to fly
    int AirportSide = 0;                     // 1 departure, 2 arrival
    std::array<char, 16> MapAirportText{};   // the map pages' airport (load mode 3)
    std::array<char, 16> McuAirportText{};   // the MCU pages' airport (load mode 1)
    int map_redraw = 0;                      // 1: the map pages redraw
    double PlanFuel = 0;                     // pounds, from the route file's header
    double ReserveFuel = 0;                  // pounds
    std::array<char, 64> PendingApproachInfo{};  // "ILS16R_16R": chosen at the next execution
    double AlongRouteFuel = 0;               // pounds, cleared on loading
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
