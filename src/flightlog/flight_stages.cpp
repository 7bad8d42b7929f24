// flight_stages.cpp: the flight's stage machine and the lines of fpl.log.
//
// The tick calls FlightLogStep every run (mode 0) and LNAV calls it at each
// waypoint passage (mode 1). A step first reads the weights if this flight
// has not yet, then moves the stage as far as the samples allow (one step may
// pass several stages: a touch-and-go's whole landing is a few ticks), then
// writes a line when one is due. The file is rewritten, with its head, when
// the flight enters stage 0 and appended to after that; a missing FlightLog
// folder simply means no lines.
//
// Index:
//   [SECTION] Names and limits
//   [SECTION] First pass
//   [SECTION] Line writing
//   [SECTION] Stage step
//   [SECTION] New flight
#include "flightlog/flight_log.h"

#include "frame/diagnostic_log.h"
#include "frame/fsuipc_client.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/performance.h"
#include "plan/plan_tables.h"

#include <share.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

FlightLogState g_flight_log;

// [SECTION] Names and limits
namespace {
constexpr std::array<std::string_view, 12> kStageNames = {
    "InitLoad", "PushBack", "Taxi", "Takeoff", "Climb", "Cruise",
    "Descent", "Approach", "Landing", "Arr_Taxi", "", "End_Flight"};

constexpr double kOnGroundSpeed = 5;        // knots: below it the aircraft stands
constexpr double kPushBackSpeed = 2;        // knots: moving at all
constexpr double kTaxiSpeed = 10;           // knots: taxiing, and stage 10's way back to 9
constexpr double kTakeoffSpeed = 60;        // knots: on the roll, and the landing's end of it
constexpr double kLiftOffHeight = 50;       // feet of radio altitude: the wheels are up
constexpr double kClimbRate = 400;          // feet a minute, climb and descent
constexpr double kLevelRate = 50;           // feet a minute either side of level
constexpr double kDescentConfirmSeconds = 20;  // a descent must hold this long past a line
constexpr double kApproachMiles = 20;       // direct to the plan's last waypoint
constexpr double kArrTaxiSpeed = 40;        // knots
constexpr double kEndFlightSeconds = 120;   // of flight clock, stopped at stage 10
constexpr double kBusyLineSeconds = 5;      // beat of lines in climb, descent and approach
constexpr double kCruiseLineSeconds = 60;   // beat of lines in cruise
constexpr int kGearOrEngineToken = 0x143;   // its 0 ends a stopped flight at once
constexpr int kChainLimit = 16;             // a step passes at most this many stages
constexpr double kClockLimit = 1e9;         // seconds: keeps the clock's split in integers
// Holds the widest line: nine numbers of up to 309 digits each, the texts and blanks.
constexpr size_t kLineTextSize = 3072;

const char* const kColumnsLine =
    "; TIME   Segment  Waypoint   GSP   TAS       V/S    ALT    FF     FOB       ZFW     PLD  IAS\n";
}  // namespace

std::string_view FlightStageName(int stage) {
    if (stage < 0 || stage >= static_cast<int>(kStageNames.size())) return "";
    return kStageNames[static_cast<size_t>(stage)];
}

// [SECTION] First pass
void FlightLogFirstPass(int mode) {
    FlightLogState& f = g_flight_log;
    if (f.first_pass_done) return;
    // 1. In a flight, fuel on board and total fuel flow, so that their
    // accessors hold current values (the kept fuel is the only one that
    // keeps anything). Not at start-up: a panel loads before the simulator
    // has put the flight's fuel aboard, and the kept value only goes down.
    if (mode != kFlightLogStartup) {
        FuelOnBoardKept();
        TotalFuelFlowPph();
    }
    // 2. Zero fuel weight and payload through FSUIPC; a failure leaves them as they are.
    ReadInitialLoad(f.zero_fuel_weight, f.payload);
    // 3. At start-up only the module's flag; a flight's first step reads again.
    if (mode == kFlightLogStartup) {
        g_module.initial_load_done = true;
        return;
    }
    f.first_pass_done = 1;
}

// [SECTION] Line writing
namespace {
// Ident text of a plan row, bounded; "" for a row outside the plan.
std::string_view ActiveRowIdent(int row) {
    if (row < 0 || row >= kPlanRows || row > g_plan.context.ActiveLastRow) return "";
    const auto& ident = g_plan.ActivePlan[static_cast<size_t>(row)].Ident;
    return std::string_view(ident.data(), strnlen(ident.data(), ident.size()));
}

// Writes one line of fpl.log for the present stage. `rewrite` starts the
// file over with its head. False when the file would not open.
bool WriteStageLine(bool rewrite, std::string_view waypoint) {
    FlightLogState& f = g_flight_log;
    const SimState& s = g_sim;
    // 1. The file, below the simulator folder.
    char path[MAX_PATH];
    DataPath("\\orb\\FlightLog\\fpl.log", path, sizeof path);
    FILE* file = _fsopen(path, rewrite ? "w" : "a", _SH_DENYNO);
    if (file == nullptr) return false;
    // 2. The head, when the flight starts.
    if (rewrite) {
        std::string_view first = ActiveRowIdent(0);
        std::string_view last = ActiveRowIdent(g_plan.context.ActiveLastRow);
        std::string_view aircraft(g_module.AircraftProfileName.data(),
                                  strnlen(g_module.AircraftProfileName.data(), g_module.AircraftProfileName.size()));
        std::fprintf(file, "FlightPlan=%.*s-%.*s\n", static_cast<int>(first.size()), first.data(),
                     static_cast<int>(last.size()), last.data());
        std::fprintf(file, "Aircraft=%.*s\n", static_cast<int>(aircraft.size()), aircraft.data());
        // The dashes run as long as the column titles.
        std::string_view columns(kColumnsLine);
        std::fputc(';', file);
        for (size_t i = 1; i + 1 < columns.size(); ++i) std::fputc('-', file);
        std::fputc('\n', file);
        std::fputs(kColumnsLine, file);
        std::fputc(';', file);
        for (size_t i = 1; i + 1 < columns.size(); ++i) std::fputc('-', file);
        std::fputc('\n', file);
    }
    // 3. The entry: the clock split in whole hours, minutes and seconds.
    double clock = std::clamp(g_tick.flight_seconds, 0.0, kClockLimit);
    if (!(clock == clock)) clock = 0;
    long seconds_total = static_cast<long>(clock);
    int hours = static_cast<int>(seconds_total / 3600);
    int minutes = static_cast<int>(seconds_total % 3600 / 60);
    int seconds = static_cast<int>(seconds_total % 60);
    std::string_view segment = FlightStageName(f.flight_stage);
    std::array<char, 32> segment_text{};
    std::array<char, 32> waypoint_text{};
    std::snprintf(segment_text.data(), segment_text.size(), "%.*s", static_cast<int>(segment.size()),
                  segment.data());
    std::snprintf(waypoint_text.data(), waypoint_text.size(), "%.*s", static_cast<int>(waypoint.size()),
                  waypoint.data());
    std::array<char, kLineTextSize> line{};
    std::snprintf(line.data(), line.size(),
                  "%02d:%02d:%02d %-10s %6s %5.0f  %5.0f   %5.0f  %6.0f  %5.0f %7.0f  %7.0f %7.0f %-3.0f\n", hours,
                  minutes, seconds, segment_text.data(), waypoint_text.data(), s.ground_speed, s.true_airspeed.now,
                  s.vertical_speed.now, s.indicated_altitude.now, TotalFuelFlowPph(), FuelOnBoardKept(),
                  f.zero_fuel_weight, f.payload, s.ias_smoothed);
    std::fputs(line.data(), file);
    std::fclose(file);
    // 4. The same line to the event list, without its line end.
    size_t length = strnlen(line.data(), line.size());
    if (length > 0 && line[length - 1] == '\n') line[length - 1] = '\0';
    LogEvent("%s", line.data());
    ++f.lines_written;
    return true;
}
}  // namespace

// [SECTION] Stage step
void FlightLogStep(int mode) {
    FlightLogState& f = g_flight_log;
    const SimState& s = g_sim;
    const double clock = g_tick.flight_seconds;
    // 1. Start-up: the first pass alone.
    if (mode == kFlightLogStartup) {
        FlightLogFirstPass(kFlightLogStartup);
        return;
    }
    // 2. No flight, or the flight is over: nothing runs until a new one.
    if (f.flight_stage < kFlightStageStarting || f.flight_stage >= kFlightStageEnd) return;
    // 3. The first pass, once a flight.
    if (!f.first_pass_done) FlightLogFirstPass(mode);

    // 4. The stage tests, chained: a stage entered is tested at once.
    const int stage_before = f.flight_stage;
    bool entered_init_load = false;
    for (int pass = 0; pass < kChainLimit; ++pass) {
        int& stage = f.flight_stage;
        const int was = stage;
        switch (stage) {
        case kFlightStageStarting:
            stage = kFlightStageInitLoad;
            entered_init_load = true;
            break;
        case kFlightStageInitLoad:
            if (s.ground_speed > kPushBackSpeed) stage = kFlightStagePushBack;
            break;
        case kFlightStagePushBack:
            if (s.ground_speed > kTaxiSpeed) stage = kFlightStageTaxi;
            break;
        case kFlightStageTaxi:
            // A roll at any speed stays a taxi until the wheels are up.
            if (s.ground_speed > kTakeoffSpeed && s.radio_altitude > kLiftOffHeight) {
                stage = kFlightStageTakeoff;
                f.takeoff_hours = s.zulu_hour;
                f.takeoff_minutes = s.zulu_minute;
                std::snprintf(f.takeoff_time.data(), f.takeoff_time.size(), "%02.0f:%02.0f", s.zulu_hour,
                              s.zulu_minute);
            }
            break;
        case kFlightStageTakeoff:
            if (s.vertical_speed.now > kClimbRate) stage = kFlightStageClimb;
            break;
        case kFlightStageClimb:
            if (s.vertical_speed.now > -kLevelRate && s.vertical_speed.now < kLevelRate) stage = kFlightStageCruise;
            break;
        case kFlightStageCruise:
            // A descent counts when the last line saw it too, and it has held.
            if (s.vertical_speed.now < -kClimbRate && f.last_line_vertical_speed < -kClimbRate &&
                clock - f.last_line_seconds > kDescentConfirmSeconds)
                stage = kFlightStageDescent;
            break;
        case kFlightStageDescent: {
            const PlanContext& pc = g_plan.context;
            if (pc.ActiveLastRow >= 0 && pc.ActiveLastRow < kPlanRows) {
                const PlanWaypoint& last = g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLastRow)];
                double distance = 0;
                double bearing = 0;
                GreatCircle(s.latitude, s.longitude, last.Latitude, last.Longitude, distance, bearing);
                if (distance < kApproachMiles) stage = kFlightStageApproach;
            }
            break;
        }
        case kFlightStageApproach:
            // A go-around climbs away in Approach; only slowing down moves on.
            if (s.ground_speed < kTakeoffSpeed) {
                stage = kFlightStageLanding;
                f.landing_hours = s.zulu_hour;
                f.landing_minutes = s.zulu_minute;
                std::snprintf(f.landing_time.data(), f.landing_time.size(), "%02.0f:%02.0f", s.zulu_hour,
                              s.zulu_minute);
            }
            break;
        case kFlightStageLanding:
            if (s.ground_speed < kArrTaxiSpeed) stage = kFlightStageArrTaxi;
            break;
        case kFlightStageArrTaxi:
            if (s.ground_speed < kOnGroundSpeed) {
                stage = kFlightStageStopped;
                f.stopped_since_seconds = clock;
            }
            break;
        case kFlightStageStopped:
            if (s.ground_speed > kTaxiSpeed) {
                stage = kFlightStageArrTaxi;  // taxiing on: the 120 s start again at the next stop
            } else if (clock - f.stopped_since_seconds > kEndFlightSeconds ||
                       ReadToken(kGearOrEngineToken) == 0) {
                stage = kFlightStageEnd;
            }
            break;
        default: break;
        }
        if (stage == was) break;
    }

    // 5. Is a line due?
    const int stage = f.flight_stage;
    const double since_line = clock - f.last_line_seconds;
    bool due = stage != stage_before || mode == kFlightLogWaypoint;
    if (stage == kFlightStageClimb && s.vertical_speed.now > kClimbRate && since_line > kBusyLineSeconds) due = true;
    if (stage == kFlightStageCruise && since_line > kCruiseLineSeconds) due = true;
    if (stage == kFlightStageDescent && s.vertical_speed.now < -kClimbRate && since_line > kBusyLineSeconds)
        due = true;
    if (stage == kFlightStageApproach && since_line > kBusyLineSeconds) due = true;

    // 6. The line; after the End_Flight line, the flight's record.
    if (due) {
        std::string_view waypoint = "---";
        if (mode == kFlightLogWaypoint) waypoint = ActiveRowIdent(g_plan.context.ActiveLeg);
        if (WriteStageLine(entered_init_load, waypoint)) {
            if (stage == kFlightStageEnd) WriteFlightSummary();
            f.last_line_seconds = clock;
            f.last_line_altitude = s.indicated_altitude.now;
            f.last_line_vertical_speed = s.vertical_speed.now;
        }
    }
    f.last_step_altitude = s.indicated_altitude.now;
}

// [SECTION] New flight
void StartNewFlight() {
    if (!(g_sim.ground_speed < kOnGroundSpeed)) return;
    FlightLogState& f = g_flight_log;
    f.flight_stage = kFlightStageStarting;
    f.first_pass_done = 0;
    // What the last flight left for the line tests and the progress page.
    f.last_line_seconds = 0;
    f.last_line_altitude = 0;
    f.last_line_vertical_speed = 0;
    f.stopped_since_seconds = 0;
    f.takeoff_hours = f.takeoff_minutes = 0;
    f.takeoff_time = {};
    f.landing_hours = f.landing_minutes = 0;
    f.landing_time = {};
    f.lines_written = 0;
    // The flight starts on the fuel aboard now, not the lowest of the last one.
    ReapplyRampFuel();
    g_tick.flight_seconds = 0;
    g_tick.stored_second = -99;
    FlightLogStep(kFlightLogTick);
}
