// ref_pages.cpp: TAKEOFF REF (take-off flaps, V1, VR, V2, the pre-flight
// status and the prompts to the pages still wanting data) and APPROACH REF
// (gross weight, the profile's three approach flaps with their reference
// speeds, the FLAP/SPD choice and the arrival runway's data).
//
// Index:
//   [SECTION] Helpers
//   [SECTION] TAKEOFF REF
//   [SECTION] APPROACH REF
#include "cdu/perf_pages.h"

#include "cdu/route_pages.h"
#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "guidance/performance.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <array>
#include <cstdio>

// [SECTION] Helpers
namespace {
constexpr int kTakeoffFlapsMax = 50;
constexpr int kV1Limit = 250;                  // knots: V1 and VR below this
constexpr int kV2Limit = 270;                  // knots: V2 below this
constexpr double kFeetToMetres = 0.3048;
constexpr int kApproachRows = 3;               // APPRFLAPSMIN, MID, MAX
constexpr int kFlapNameShown = 12;              // characters of a flap name a line takes
constexpr float kFlapsValueX = 150;            // APPROACH REF's flap column
constexpr float kPreFlightLabelY = 186;        // below the rule

bool IsSet(const PlanText& text) {
    std::string_view value = TextOf(text);
    return !value.empty() && value != kNoSelection;
}

// A V speed: a whole number above 0 and below the limit.
void EnterVSpeed(std::string_view text, int limit, int& speed) {
    int value = ReadInteger(text);
    if (value <= 0 || value >= limit) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    speed = value;
    ClearScratchpad();
}

void DrawVSpeed(CduScreen& screen, const char* label, int speed, int row) {
    char value[16];
    screen.Label(label, kCduRightLabelEdge, CduLabelY(row), gdi::TextAlign::Right);
    if (speed > 0)
        std::snprintf(value, sizeof value, "%3d", speed);
    else
        std::snprintf(value, sizeof value, "- - -");
    screen.Value(value, kCduRightEdge, CduValueY(row), gdi::TextAlign::Right);
}
}  // namespace

// [SECTION] TAKEOFF REF
namespace {
void EnterTakeoffFlaps(std::string_view text) {
    int flaps = ReadInteger(text);
    if (flaps <= 0 || flaps > kTakeoffFlapsMax || !TakeoffFlapsListed(flaps)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    g_profile.TOFLAPS = flaps;
    ClearScratchpad();
}

bool PerfInitWanted() { return g_performance.ZeroFuelWeight <= 0 || g_plan.context.CruiseAltitude <= 0; }

// DEPARTURES opens as from the DEP/ARR index: page 1, the transition to
// choose anew, an earlier SID kept.
void OpenDepartures() {
    SmithsCduState& s = g_smiths;
    s.SidTransitionChosen = 0;
    if (s.SidChosen != 0) s.SidChosen = 2;
    s.departures.page = 1;
    ReloadDepartureLists();
    s.CduPage = cdu_page::kDepartures;
}
}  // namespace

void TakeoffRefPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    AircraftProfile& profile = g_profile;
    const PlanSelections& t = g_plan.context.Selections;

    // The key of this frame.
    int key = PerfLineKey();
    std::string_view text = ScratchpadText();
    if (!text.empty()) {
        if (key == 1) EnterTakeoffFlaps(text);
        if (key == 6) EnterVSpeed(text, kV1Limit, profile.V1);
        if (key == 7) EnterVSpeed(text, kV1Limit, profile.VR);
        if (key == 8) EnterVSpeed(text, kV2Limit, profile.V2);
    }
    if (key == 5 && PerfInitWanted()) {
        s.CduPage = cdu_page::kPerfInit;
        s.perf.page = 1;
    }
    if (key == 9 && g_plan.context.PlanState == 0) {
        s.CduPage = cdu_page::kRte;
        s.rte.page = 1;
    }
    if (key == 10 && !IsSet(t.DepartureRunway) && IsSet(t.OriginName)) OpenDepartures();
    if (key == kLeftRow6Key) s.CduPage = cdu_page::kInitRefIndex;
    if (s.CduPage != cdu_page::kTakeoffRef) return;

    // Draw.
    char value[48];
    screen.Title("TAKEOFF  REF");
    screen.Count("%d / %d", 1, 1);
    screen.Label("F L A P S", kCduLeftLabelX, CduLabelY(1));
    if (profile.TOFLAPS > 0) {
        std::snprintf(value, sizeof value, "%3d", profile.TOFLAPS);
        screen.Value(value, 0, CduValueY(1));
    } else {
        screen.BoxPrompt(0, CduValueY(1), 2);
    }
    if (profile.EngThrust > 0)
        std::snprintf(value, sizeof value, "%d K   N 1", profile.EngThrust);
    else
        std::snprintf(value, sizeof value, "- - K   N 1");
    screen.Value(value, 0, CduValueY(2));
    screen.Label("C G             T R I M      ", kCduLeftLabelX, CduLabelY(3));
    screen.Value("-  -  . - %", 0, CduValueY(3));
    if (PerfInitWanted()) screen.Value("<PERF  INIT", 0, CduValueY(5));
    DrawVSpeed(screen, "V1", profile.V1, 1);
    DrawVSpeed(screen, "V R", profile.VR, 2);
    DrawVSpeed(screen, "V 2", profile.V2, 3);
    if (g_plan.context.PlanState == 0) screen.Value("ROUTE>", kCduRightEdge, CduValueY(4), gdi::TextAlign::Right);
    if (!IsSet(t.DepartureRunway))
        screen.Value("DEPARTURE>", kCduRightEdge, CduValueY(5), gdi::TextAlign::Right);
    // The pre-flight line: complete with a route, weights, cruise altitude and runway.
    bool complete = g_plan.context.PlanState != 0 && !PerfInitWanted() && IsSet(t.DepartureRunway);
    if (complete) {
        screen.Value("------------------------------------------", 0, kCduRuleY);
        screen.Label("P R E     F L T   C O M P L E T E", kCduLeftLabelX, kPreFlightLabelY);
    } else {
        screen.Rule();
        screen.Label("P R E     F L T   S T A T U S", kCduLeftLabelX, kPreFlightLabelY);
    }
    screen.Value("<INDEX", 0, kPerfRow6Y);
}

// [SECTION] APPROACH REF
namespace {
struct ApproachRow {
    const OptionText* flaps;                   // the profile's flap name
    int* vref;                                 // knots
};

std::array<ApproachRow, kApproachRows> ApproachRows() {
    AircraftProfile& p = g_profile;
    return {{{&p.APPRFLAPSMIN, &p.VREFMIN}, {&p.APPRFLAPSMID, &p.VREFMID}, {&p.APPRFLAPSMAX, &p.VREFMAX}}};
}

// Keys 6 to 8: an empty line copies the row up as a FLAP/SPD entry; a
// number replaces the row's reference speed.
void ApproachRowKey(const ApproachRow& row, std::string_view text) {
    char copy[32];
    if (text.empty()) {
        std::snprintf(copy, sizeof copy, "%.*s/%d", kFlapNameShown, TextOf(*row.flaps).data(), *row.vref);
        SetScratchpad(copy);
        return;
    }
    double value = ReadNumber(text);
    if (value < 0 || !ZeroWrittenOut(text, value)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    *row.vref = static_cast<int>(value);
    ClearScratchpad();
}

// Key 9: "30/145", a row's flap name and exactly its reference speed.
void EnterFlapSpeed(std::string_view text) {
    size_t slash = text.find('/');
    bool good = slash != std::string_view::npos && slash > 0;
    std::string_view name = good ? text.substr(0, slash) : std::string_view();
    int speed = good ? ReadInteger(text.substr(slash + 1)) : 0;
    for (const ApproachRow& row : ApproachRows()) {
        if (!good || TextOf(*row.flaps) != name || *row.vref != speed) continue;
        g_performance.FlapSpeedFlaps = ReadInteger(name);
        g_performance.FlapSpeedVref = speed;
        ClearScratchpad();
        return;
    }
    SetCduMessage(cdu_message::kInvalidEntry);
}

// The arrival runway of the destination, or null.
const RunwayRecord* ArrivalRunway() {
    std::string_view wanted = TextOf(g_plan.context.Selections.ArrivalRunway);
    if (wanted.size() > 2 && wanted.substr(0, 2) == "RW") wanted.remove_prefix(2);
    const AirportDetail& destination = g_airports.DestinationAirport;
    for (int i = 1; i <= destination.RunwayCount && i <= kRunwayLimit; ++i)
        if (TextOf(destination.Runways[i].Ident) == wanted) return &destination.Runways[i];
    return nullptr;
}

void DrawRunwayLines(CduScreen& screen) {
    const PlanSelections& t = g_plan.context.Selections;
    char value[48];
    const RunwayRecord* runway = IsSet(t.ApproachName) ? ArrivalRunway() : nullptr;
    std::string_view destination = TextOf(t.DestinationName);
    std::string_view runway_text = TextOf(t.ArrivalRunway);
    if (runway != nullptr) {
        std::snprintf(value, sizeof value, "%.*s %.*s", static_cast<int>(destination.size()), destination.data(),
                      static_cast<int>(runway_text.size()), runway_text.data());
        screen.Value(value, 0, CduValueY(2));
        std::snprintf(value, sizeof value, "%05dFT*%04.0fM", runway->LengthFt, runway->LengthFt * kFeetToMetres);
        screen.Value(value, 0, CduValueY(3));
        screen.Label("F R O N T  C R S", kCduLeftLabelX, CduLabelY(4));
        std::snprintf(value, sizeof value, "%03.0f", runway->IlsCourse > 0 ? runway->IlsCourse : runway->Heading);
        screen.Value(value, 0, CduValueY(4));
    } else {
        std::snprintf(value, sizeof value, " %.*s %.*s", static_cast<int>(destination.size()), destination.data(),
                      static_cast<int>(runway_text.size()), runway_text.data());
        screen.Value(value, 0, CduValueY(2));
        screen.Value("---", 0, CduValueY(3));
        screen.Label("F R O N T  C R S", kCduLeftLabelX, CduLabelY(4));
        screen.Value("------", 0, CduValueY(4));
    }
    screen.Label("E L E V", kCduLeftLabelX, CduLabelY(5));
    if (IsSet(t.DestinationName)) {
        std::snprintf(value, sizeof value, "%5d", g_airports.DestinationAirport.ElevationFt);
        screen.Value(value, 0, CduValueY(5));
    }
}
}  // namespace

void ApproachRefPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    const std::array<ApproachRow, kApproachRows> rows = ApproachRows();

    // The key of this frame.
    int key = PerfLineKey();
    std::string_view text = ScratchpadText();
    if (key >= 6 && key <= 8) ApproachRowKey(rows[static_cast<size_t>(key - 6)], text);
    if (key == 9 && !text.empty()) EnterFlapSpeed(text);
    if (key == kLeftRow6Key) s.CduPage = cdu_page::kInitRefIndex;
    if (s.CduPage != cdu_page::kApproachRef) return;

    // Draw.
    char value[48];
    screen.Title("APPROACH REF");
    screen.Count("%d / %d", 1, 1);
    screen.Label("G R O S S   W T", kCduLeftLabelX, CduLabelY(1));
    std::snprintf(value, sizeof value, "%3.1f", WeightInDisplayUnit(g_performance.GrossWeight) / 1000);
    screen.Value(value, 0, CduValueY(1));
    DrawRunwayLines(screen);
    for (int r = 0; r < kApproachRows; ++r) {
        const ApproachRow& row = rows[static_cast<size_t>(r)];
        screen.Label("F L A P S", kFlapsValueX, CduLabelY(r + 1));
        screen.Label("V R E F", kCduRightLabelEdge, CduLabelY(r + 1), gdi::TextAlign::Right);
        std::snprintf(value, sizeof value, "%3.*s", kFlapNameShown, TextOf(*row.flaps).data());
        screen.Value(value, kFlapsValueX, CduValueY(r + 1));
        std::snprintf(value, sizeof value, "%3d K T", *row.vref);
        screen.Value(value, kCduRightEdge, CduValueY(r + 1), gdi::TextAlign::Right);
    }
    screen.Label("F L A P / S P D", kCduRightLabelEdge, CduLabelY(4), gdi::TextAlign::Right);
    const PerformanceState& p = g_performance;
    if (p.FlapSpeedFlaps > 0 || p.FlapSpeedVref > 0)
        std::snprintf(value, sizeof value, "%2d/%d", p.FlapSpeedFlaps, p.FlapSpeedVref);
    else
        std::snprintf(value, sizeof value, "- -  - - -");
    screen.Value(value, kCduRightEdge, CduValueY(4), gdi::TextAlign::Right);
    screen.Rule();
    screen.Value("< INDEX", 0, kPerfRow6Y);
}
