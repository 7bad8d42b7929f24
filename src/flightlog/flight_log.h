// flight_log.h: flight stages and the flight log.
//
// The flight stage is 999 (no flight) from the module's load until a plan is
// loaded or activated on the ground; then -1, and the stage machine runs
// forward from there, one chained step a tick. Each change of stage, and a
// regular beat within the busy stages, writes a line to orb\FlightLog\fpl.log;
// the End_Flight line condenses that file into one record appended to
// orb\FlightLog\Flight.log. The flight clock (TickState::flight_seconds)
// counts only while the stage is below 11 (End_Flight).
//
// Index:
//   [SECTION] Stages and limits
//   [SECTION] State
//   [SECTION] Stage machine and lines   (flight_stages.cpp)
//   [SECTION] Summary                   (flight_summary.cpp)
#pragma once

#include <array>
#include <cstdio>
#include <string_view>

// [SECTION] Stages and limits
constexpr int kFlightStageNone = 999;       // no flight yet: nothing is logged, the clock stands
constexpr int kFlightStageStarting = -1;    // a flight was started; the next step enters stage 0
constexpr int kFlightStageInitLoad = 0;
constexpr int kFlightStagePushBack = 1;
constexpr int kFlightStageTaxi = 2;
constexpr int kFlightStageTakeoff = 3;
constexpr int kFlightStageClimb = 4;
constexpr int kFlightStageCruise = 5;
constexpr int kFlightStageDescent = 6;
constexpr int kFlightStageApproach = 7;
constexpr int kFlightStageLanding = 8;
constexpr int kFlightStageArrTaxi = 9;
constexpr int kFlightStageStopped = 10;     // stopped after landing; no name in the log
constexpr int kFlightStageEnd = 11;         // End_Flight: clock and log stop until a new flight

// The name a stage has in fpl.log; "" for stage 10 and for stages outside 0..11.
std::string_view FlightStageName(int stage);

constexpr int kSummaryLineLimit = 300;      // fpl.log lines are read up to 299 bytes
constexpr int kSummaryAltitudeBins = 9;     // altitude bins a stage's list holds: 5000 to 45000 ft
constexpr int kSummaryWeightBins = 20;      // weight bins of the climb and cruise lists
constexpr int kStageTimeTextSize = 8;       // "%02.0f:%02.0f" and its terminator

// [SECTION] State
struct FlightLogState {
    int flight_stage = kFlightStageNone;  // 999 no flight, -1 starting, 0..11 the stages above
    int first_pass_done = 0;            // 1: weights read for this flight
    double zero_fuel_weight = 0;        // pounds, from the initial load
    double payload = 0;                 // pounds, sum of the load stations
    // Kept for the line tests
    double last_line_seconds = 0;       // flight clock at the last line
    double last_line_altitude = 0;      // indicated altitude at the last line, feet
    double last_line_vertical_speed = 0;  // vertical speed at the last line, feet a minute
    double last_step_altitude = 0;      // indicated altitude at the last step, feet
    double stopped_since_seconds = 0;   // flight clock when stage 10 was last entered
    // Times of the flight, for the CDU's progress page; texts empty until then
    double takeoff_hours = 0;           // zulu hour of entering Takeoff
    double takeoff_minutes = 0;         // zulu minute of entering Takeoff
    std::array<char, kStageTimeTextSize> takeoff_time{};  // "%02.0f:%02.0f"
    double landing_hours = 0;           // zulu hour of entering Landing
    double landing_minutes = 0;         // zulu minute of entering Landing
    std::array<char, kStageTimeTextSize> landing_time{};  // "%02.0f:%02.0f"
    int lines_written = 0;              // lines of fpl.log written this flight
    int summaries_written = 0;          // records appended to Flight.log since load
};

extern FlightLogState g_flight_log;

// [SECTION] Stage machine and lines
// Modes of FlightLogStep.
constexpr int kFlightLogTick = 0;           // the tick, plan load and activation
constexpr int kFlightLogWaypoint = 1;       // a waypoint passage: a line in any case
constexpr int kFlightLogStartup = 3;        // start-up: first pass only

// The first pass: weights read through FSUIPC (and, in a flight, the fuel
// accessors refreshed). Mode 3 sets the module's initial-load flag and
// leaves the marker clear, so the first step of a flight reads them again.
void FlightLogFirstPass(int mode);
// Mode 3: first pass only. Modes 0 and 1: first pass if due, then the
// chained stage step and the line if one is due (always with mode 1).
void FlightLogStep(int mode);
// A plan loaded or activated: on the ground (below 5 knots) a new flight
// starts, with stage -1, the flight clock at 0 and the weights read afresh,
// and the first step runs at once. In the air nothing changes.
void StartNewFlight();

// [SECTION] Summary
// One altitude bin of a stage's list, with its sums.
struct SummaryAltitudeBin {
    double altitude = 0;                // feet, a multiple of 5000, at least 5000
    double tas_sum = 0;                 // knots, summed over the lines
    double vertical_speed_sum = 0;      // feet a minute, summed
    int count = 0;                      // lines in this bin
    double descent_flow_sum = 0;        // pounds an hour; descent rows have no weight bins
    std::array<double, kSummaryWeightBins> flow_sum{};  // pounds an hour, by weight bin of the list
    std::array<int, kSummaryWeightBins> flow_count{};   // lines by weight bin of the list
};

// What one stage (Climb, Cruise or Descent) collected.
struct SummaryStageList {
    std::array<SummaryAltitudeBin, kSummaryAltitudeBins> bins{};  // first-seen order
    int bin_count = 0;                  // bins in use
    std::array<double, kSummaryWeightBins> weights{};  // pounds, first-seen order (climb, cruise)
    int weight_count = 0;               // weight bins in use
    int dropped_lines = 0;              // lines left out: their bin did not fit the list
};

struct FlightSummary {
    SummaryStageList climb;
    SummaryStageList cruise;
    SummaryStageList descent;
    double fuel_at_start = 0;           // pounds, fuel on board of the "00:00:00" line
    double fuel_used = 0;               // pounds, start less the End_Flight line's
    std::array<char, 8> flight_time{};  // "HH:MM" of the End_Flight line
    int lines_read = 0;                 // lines that were not comments
};

// Takes one line of fpl.log (without its line end) into the summary.
void SummaryAddLine(FlightSummary& summary, std::string_view line);
// The record of the flight, lines 1 to 9, to an open file.
void WriteSummaryRecord(FILE* file, const FlightSummary& summary, std::string_view first_ident,
                        std::string_view last_ident, int year, int month, int day, std::string_view aircraft);
// Reads fpl.log and appends the flight's record to Flight.log; no record
// without an aircraft profile, and nothing at all when a file won't open.
void WriteFlightSummary();
