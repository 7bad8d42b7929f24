// holds.h: holding patterns of the active plan. Only the first record of the
// hold table is flown. A record hangs on a plan row (ActiveRow in ActivePlan,
// ModRow in ModPlan) and the row carries the record's number (HoldIndex), so
// the plan's row moves re-point the records and the records' removal
// renumbers the rows.
#pragma once

#include <array>

constexpr int kHoldLimit = 10;          // records of the hold table; the pages stop at 5 a plan
constexpr int kHoldsPerPlan = 5;
constexpr int kHoldFromGnsPage = 2;     // AddHold's from_page of the GNS page set: the profile's leg time
constexpr int kHoldCorners = 4;         // the pattern's corners, 1..4; 0 is the fix
constexpr double kHoldMinLegSpeed = 150;      // kt: a timed leg is never worked out slower
constexpr double kHoldPatternLegs = 1.5;      // the pattern is built on one and a half legs (L)
constexpr double kHoldReachFraction = 0.25;   // a corner within 0.25 L counts as reached
constexpr double kHoldOutOfPatternLegs = 2.5; // farther than 2.5 corner legs: out of the pattern
constexpr int kHoldNothingSent = -1;          // LastHoldHeading before the first heading of a pattern

// A pattern corner: 0 the fix ("Fix"), 1..4 "Xwind", "Dwind", "Base", "Final".
struct HoldCornerPoint {
    double Latitude = 0;
    double Longitude = 0;
    std::array<char, 8> Name{};
};

struct HoldRecord {
    std::array<char, 24> Ident{};       // the fix's ident
    int ActiveRow = 0;                  // ActivePlan row the hold stands at; moves with the rows
    int ModRow = 0;                     // the same row of ModPlan
    int TurnRight = 1;                  // 1 right turns, other left
    double LegDistance = 0;             // nm; in time mode worked out at each step
    double LegMinutes = 1.0;            // minutes
    double InboundCourse = 0;           // magnetic degrees
    int LegMode = 1;                    // 1 LegMinutes decides, 2 LegDistance decides
    std::array<HoldCornerPoint, 5> Corners{};
};

struct HoldState {
    std::array<HoldRecord, kHoldLimit + 1> HoldTable{};  // records 1..HoldCount, in ascending row order
    int HoldCount = 0;                  // records in the hold table
    int HoldFlying = 0;                 // 1: sequencing and LNAV's heading held off once a corner is active
    int HoldCorner = 0;                 // 0 entry, then the pattern's corners
    int HoldExitState = 1;              // 1 "MANUAL", 2 "AUTO", 0 in the pattern, 3 leaving, 4 just deleted
    int HoldPrevCorner = 0;             // the corner before HoldCorner, 4 before 1
    double DistToCorner = 0;            // nm, aircraft to corner HoldCorner
    double BearingToCorner = 0;         // true degrees, aircraft to corner HoldCorner
    double CornerLeg = 0;               // nm, previous corner to this one
    double CornerCourse = 0;            // true degrees, previous corner to this one
    double HoldHeading = 0;             // magnetic degrees to the corner, 0.5 .. 360.5
    double LastHoldHeading = kHoldNothingSent;  // magnetic degrees last sent to the heading bug
};

extern HoldState g_holds;

// A hold at ModPlan row `row` (from the hold page or the legs page).
void AddHold(int row, int from_page);
// The hold step of the tick, while the table isn't empty: builds the first
// record's pattern and, with LNAV on, flies it corner by corner.
void HoldStep();
// nm of one leg of a hold now: by time at the ground speed (not below
// 150 kt), or as entered.
double HoldLegDistanceNow(const HoldRecord& hold);
// The pattern's four corners around the fix for a leg of `leg_nm`, the
// inbound course true; corners[0] is the fix itself.
void BuildHoldCorners(double fix_lat, double fix_lon, double inbound_true, int turn_right, double leg_nm,
                      std::array<HoldCornerPoint, 5>& corners);
// The GNS keys "HOLD" and "EXIT HOLD": hold at the active waypoint, or leave
// the hold at its next corner. Nothing with LNAV off.
void ToggleHold();
// Deletes every hold whose fix lies behind the active leg.
void DeleteHoldsBehind(int active_leg);
// Whether the row is the fix of the first hold.
bool IsFirstHoldFix(int row);
// LNAV disengaged: the first record gives up its fix.
void HoldGiveUp();
// The hold standing at ActivePlan row `row` is removed; with `mode` above 0
// the plan counts as changed, awaiting EXEC.
void DeleteHold(int row, int mode);
// Every hold is removed: a new plan or a new origin.
void RemoveAllHolds();
// ERASE: the holds that no row of the plan carries any more are dropped.
void DropUntiedHolds();

// [SECTION] Row keeping for the plan's edits
// Every hold whose row (of ActivePlan or of ModPlan) is `from_row` or later
// moves by `delta` rows.
void MoveHoldRows(bool in_active_plan, int from_row, int delta);
// The hold standing at that row, if any, is removed (the row itself goes).
void RemoveHoldAtRow(bool in_active_plan, int row);
// Each hold's ModPlan row is its active row again: after ERASE (which drops
// the untied holds first) and after a change made straight to ActivePlan.
// Between modifications the two rows are equal, as BeginModification needs.
void TakeActiveHoldRows();
// EXEC: each hold's active row is the row it has in the executed ModPlan.
void CommitHoldRows();
