// procedures.h: the terminal procedures of an airport (SIDs, STARs,
// approaches), read from sids.txt, stars.txt, apps.txt (and the user files)
// when an airport detail slot is filled, and compiled: a coded leg ("turn
// right, track 270, until 1500 ft") becomes a computed fix with a made-up
// name (TR270) at an estimated position, so that the plan and guidance treat
// every leg as an ordinary waypoint.
//
// The origin slot holds the SIDs, the destination slot the STARs and the
// approaches; each side has the lists its page shows. SelectedLegs are the
// legs of the chosen SID, STAR and approach, which the plan editing inserts.
//
// The tables at their limits are large (370 procedures of 400 legs), so a
// leg is kept compact: texts are cut to the sizes below.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "navdata/nav_database.h"

// [SECTION] Limits
constexpr int kSidLimit = 140;                   // rows of SidTable
constexpr int kStarLimit = 90;                   // rows of StarTable
constexpr int kApproachLimit = 140;              // rows of ApproachTable
constexpr int kApproachNameLimit = 20;           // distinct approach names
constexpr int kProcedureLegLimit = 400;          // legs of one procedure
constexpr int kTransitionListLimit = 120;
constexpr int kApproachTransitionListLimit = 40;
constexpr int kProcedureNameListLimit = 100;
constexpr int kApproachNameListLimit = 249;
constexpr int kProcedureRunwayListLimit = 22;
constexpr int kSelectedLegLimit = 80;            // rows of each SelectedLegs table
constexpr int kProcedureLineSize = 501;          // a line is at most 500 characters

// [SECTION] Tables
struct ProcedureLeg {
    double Latitude = 0;                         // degrees, north positive
    double Longitude = 0;                        // degrees, east positive
    double LegAltitude = 0;                      // approach legs: ninth column
    double LegSpeed = 0;                         // approach legs: tenth column
    int32_t Flyover = 0;                         // 1: the line ended in "FO"
    std::array<char, 10> Transition{};           // enroute or runway transition; empty = common
    std::array<char, 8> Fix{};                   // fix name, or computed ("TR270", "PT090")
    std::array<char, 6> Marker{};                // "IAF", "IAF*", "FAF", "MAP", "ARC", "HP", ...
    std::array<char, 12> Restriction{};          // SID, STAR: third column; approach: fifth
    std::array<char, 12> LegRunway{};            // runway(s) the leg applies to; "---" = all
    std::array<char, 12> ApproachIdent{};        // approach legs: the approach's name
    std::array<char, 2> EndMark{};               // "*" on the shared last leg of a transitions-only procedure
};

struct ProcedureRecord {
    std::array<char, 12> Name{};                 // procedure name; empty on approach rows
    std::array<char, 12> ApproachIdent{};        // approach rows: the approach's name
    std::array<char, 12> Extra{};                // second column of a "T" line; kept, unused
    std::array<char, 40> Runways{};              // "16L,16C" (SID, STAR); the runway (approach)
    int LegCount = 0;                            // legs 1..LegCount
    std::array<ProcedureLeg, kProcedureLegLimit + 1> Legs{};
};

// A name in a selection list, with the table row it came from where the list
// keeps one (the first leg of a transition, the procedure's row).
struct ProcedureListEntry {
    std::array<char, 16> Name{};
    int Row = 0;
};

template <int N>
struct ProcedureList {
    std::array<ProcedureListEntry, N + 1> rows{};  // rows 1..count
    int count = 0;
    static constexpr int kLimit = N;
};

// The lists a departure or arrival page shows, filled from the tables on
// each change of a selection.
struct ProcedureLists {
    ProcedureList<kTransitionListLimit> TransitionList;
    ProcedureList<kApproachTransitionListLimit> ApproachTransitionList;
    ProcedureList<kProcedureNameListLimit> ProcedureNameList;
    ProcedureList<kProcedureNameListLimit> ProcedureNameList2;
    ProcedureList<kApproachNameListLimit> ApproachNameList;
    ProcedureList<kProcedureRunwayListLimit> RunwayList;
};

// The origin slot's procedures.
struct OriginProcedures {
    std::array<ProcedureRecord, kSidLimit + 1> SidTable{};  // rows 1..SidCount
    int SidCount = 0;
    int SelectedSidRow = 0;                      // row of SidTable chosen; 0 none
    double OriginMagVar = 0;                     // whole degrees at the airport; true = magnetic + this
    ProcedureLists lists;
};

// The destination slot's procedures.
struct DestinationProcedures {
    std::array<ProcedureRecord, kStarLimit + 1> StarTable{};          // rows 1..StarCount
    int StarCount = 0;
    std::array<ProcedureRecord, kApproachLimit + 1> ApproachTable{};  // rows 1..ApproachCount
    int ApproachCount = 0;
    std::array<ProcedureListEntry, kApproachNameLimit + 1> ApproachNameTable{};  // distinct approach names
    int ApproachNameCount = 0;
    int SelectedStarRow = 0;                     // row of StarTable chosen; 0 none
    double DestinationMagVar = 0;
    ProcedureLists lists;
};

struct ProcedureTables {
    OriginProcedures origin;
    DestinationProcedures destination;
};

extern ProcedureTables g_procedures;

// [SECTION] SelectedLegs
struct SelectedLeg {
    double Latitude = 0;
    double Longitude = 0;
    int32_t Flyover = 0;
    std::array<char, 8> Marker{};                // approach rows: "IAF", "MAP", "FAF", "ARC", "HP" or empty
    std::array<char, 8> Fix{};
    std::array<char, 12> Restriction{};
    std::array<char, 24> Via{};                  // the route's name, from the second row on
};

struct SelectedLegTable {
    std::array<SelectedLeg, kSelectedLegLimit + 1> rows{};  // rows 1..count
    int count = 0;
    std::array<char, 24> RouteName{};            // "HAROB6" or "HAROB6.SEA"
};

struct SelectedLegSet {
    SelectedLegTable Sid;
    SelectedLegTable Star;
    SelectedLegTable Approach;
};

extern SelectedLegSet g_selected_legs;

// [SECTION] Loading
// Read the airport's section into the origin slot (SIDs) or the destination
// slot (STARs, approaches); the user file only when the main file has no
// section for the airport. They take ElevationFt and the runways of the slot
// as LoadAirportDetail left them.
void LoadSids(std::string_view ident);
void LoadStars(std::string_view ident);
void LoadApproaches(std::string_view ident);

// [SECTION] Lists for the pages ("------" means any)
void ListSidRunways(std::string_view sid);
void ListSids(std::string_view runway, std::string_view transition);
void ListSidTransitions(std::string_view sid, std::string_view runway, int only_unmarked);
void ListStarRunways(std::string_view star);
void ListStars(std::string_view runway, std::string_view transition);
void ListStarTransitions(std::string_view star, std::string_view runway, int only_unmarked);
void ListApproaches(std::string_view runway);
void ListApproachTransitions(std::string_view approach);

// [SECTION] SelectedLegs from the current selections of the plan
void BuildSidLegs();
void BuildStarLegs();
void BuildApproachLegs();

// [SECTION] The reader's parts, open to the tools and the tests
enum class ProcedureFileKind { Sids, Stars, Approaches };
enum class LegTurn { None, Left, Right };
enum class LegTerminator { None, Altitude, Distance, Intercept, Vectors };

// A code such as "/RT/T270/UA", taken apart.
struct LegCode {
    LegTurn turn = LegTurn::None;                // "/RT", "/LT" or none
    char course_letter = 0;                      // 'T' track, 'H' heading, 'C' course
    double course = 0;                           // magnetic degrees
    bool has_course = false;
    LegTerminator terminator = LegTerminator::None;
    double value = 0;                            // "UD": nm; "IC": the radial, magnetic degrees
};

// What a coded leg starts from.
struct CodedLegInput {
    double start_lat = 0, start_lon = 0;         // degrees: threshold or the last fix
    double start_course = 0;                     // magnetic degrees: runway heading or the last course
    double reference_lat = 0, reference_lon = 0; // degrees: the line's position, or the start
    double magvar = 0;                           // degrees east at the airport
    double elevation_ft = 0;                     // feet: the airport's elevation
    double parameter = 0;                        // "UA": the altitude, feet
};

struct ProcedureTurnFix {
    double Latitude = 0;                         // degrees
    double Longitude = 0;
    std::array<char, 8> Fix{};                   // "TR024", "PT294"
};

// The runway matching of the files: equal names, "16B" for both sides, and a
// long name ("RW16L") by its last two characters.
bool RunwayNameMatches(std::string_view leg_runway, std::string_view runway);
// Row of the slot's runways that the leg's runway names; 0 none.
int FindRunwayRow(const AirportDetail& airport, std::string_view leg_runway);
// False for a text that isn't a code (no leading "/").
bool ParseLegCode(std::string_view code, LegCode& out);
// The turn into a leg, 0..360 degrees; 0 without a turn.
double TurnAngle(LegTurn turn, double course, double start_course);
// nm covered in a straight line by a turn of that many degrees.
double TurnChordLength(double turn);
// The computed fix of a coded leg; false when it has none (the leg is dropped).
bool ComputeCodedFix(const LegCode& code, const CodedLegInput& in, double& lat, double& lon);
// An approach's procedure turn: the computed fixes (2), or 0 for another code.
int ComputeProcedureTurn(const LegCode& code, double reference_lat, double reference_lon, double magvar,
                         std::array<ProcedureTurnFix, 2>& out);
// Reads the airport's section of one file into a table; false when the file
// or the section isn't there.
bool ReadProcedureSection(ProcedureFileId file, ProcedureFileKind kind, std::string_view ident, const AirportDetail& airport,
                          double magvar, ProcedureRecord* table, int& count, int limit);

// The row of the destination slot's approach names that holds `approach`,
// and of the chosen approach's transitions that holds `transition`; 0 none.
int ApproachRowOf(std::string_view approach);
int ApproachTransitionRowOf(std::string_view approach, std::string_view transition);
