// performance_table.cpp: the aircraft's performance file and what is made of
// it: the reader (any bytes, bounded rows), the cruise altitude chosen from
// the climb, cruise and descent tables, and the semicircular rule.
//
// The file is optional. With any of the three tables empty the predictions
// fall back to the profile's plain speeds and rates.
#include "guidance/performance.h"

#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "guidance/geodesy.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

// [SECTION] Reading the file

enum class PerformanceSection { None, Units, Climb, Cruise, Descent, AltitudeLimit, Other };

constexpr char kAircraftFolder[] = "\\orb\\aircraft\\";

// A column's number, 0 for a missing column.
double Column(const std::string_view* columns, int count, int index) {
    return index < count ? ReadNumber(columns[index]) : 0.0;
}

void ClearTable(PerformanceTable& table) {
    table.Climb.fill({});
    table.Cruise.fill({});
    table.Descent.fill({});
    table.AltitudeLimit.fill({});
    table.ClimbCount = table.CruiseCount = table.DescentCount = table.AltitudeLimitCount = 0;
    table.CruiseWeights.fill(0);
    table.CruiseWeightCount = 0;
}

// One line of the file, cut to the line limit already.
void ReadPerformanceLine(std::string_view line, PerformanceSection& section, PerformanceTable& table) {
    // Step 1: comments.
    if (line.empty() || line[0] == ';') return;
    std::array<std::string_view, kPerformanceTokenLimit> columns{};
    int count = SplitColumns(line, columns.data(), kPerformanceTokenLimit);
    if (count == 0 || columns[0].empty()) return;

    // Step 2: a section header: brackets dropped, the first word names it.
    if (columns[0][0] == '[') {
        std::array<char, kPerformanceLineLimit + 1> bare{};
        size_t length = 0;
        for (char c : line)
            if (c != '[' && c != ']' && length < kPerformanceLineLimit) bare[length++] = c;
        std::string_view text(bare.data(), length);
        count = SplitColumns(text, columns.data(), kPerformanceTokenLimit);
        std::string_view name = count > 0 ? columns[0] : std::string_view{};
        if (name == "GRWT") {
            // The weights' line opens the cruise rows.
            int weights = std::min(count - 1, kCruiseWeightLimit);
            table.CruiseWeightCount = std::max(weights, 0);
            for (int w = 0; w < table.CruiseWeightCount; ++w) table.CruiseWeights[w] = ReadNumber(columns[w + 1]) * 1000.0;
            section = PerformanceSection::Cruise;
        } else if (name == "UNITS") {
            section = PerformanceSection::Units;
        } else if (name == "CLIMB") {
            section = PerformanceSection::Climb;
        } else if (name == "CRUISE") {
            section = PerformanceSection::Cruise;
        } else if (name == "DESCENT") {
            section = PerformanceSection::Descent;
        } else if (name == "Altitude") {
            section = PerformanceSection::AltitudeLimit;
        } else {
            section = PerformanceSection::Other;
        }
        return;
    }

    // Step 3: a row of the open section; a full table takes no more.
    switch (section) {
    case PerformanceSection::Units:
        // FUEL= and WEIGHT= are recognised and change nothing: figures are pounds.
        return;
    case PerformanceSection::Climb: {
        if (table.ClimbCount >= kPerformanceRowLimit) return;
        ClimbPerformanceRow& row = table.Climb[++table.ClimbCount];
        row.Altitude = Column(columns.data(), count, 0);
        row.Tas = Column(columns.data(), count, 1);
        row.Rate = Column(columns.data(), count, 2);
        for (int f = 0; f < kClimbFlowColumns; ++f) row.FuelFlow[f] = Column(columns.data(), count, 3 + f);
        return;
    }
    case PerformanceSection::Cruise: {
        if (table.CruiseCount >= kPerformanceRowLimit) return;
        CruisePerformanceRow& row = table.Cruise[++table.CruiseCount];
        row.Altitude = Column(columns.data(), count, 0);
        row.Tas = Column(columns.data(), count, 1);
        for (int f = 0; f < kCruiseFlowColumns; ++f) row.FuelFlow[f] = Column(columns.data(), count, 2 + f);
        row.FuelFlowCount = std::clamp(count - 2, 0, kCruiseFlowColumns);
        return;
    }
    case PerformanceSection::Descent: {
        if (table.DescentCount >= kPerformanceRowLimit) return;
        DescentPerformanceRow& row = table.Descent[++table.DescentCount];
        row.Altitude = Column(columns.data(), count, 0);
        row.Tas = Column(columns.data(), count, 1);
        row.Rate = Column(columns.data(), count, 2);
        row.FuelFlow = Column(columns.data(), count, 3);
        return;
    }
    case PerformanceSection::AltitudeLimit: {
        if (table.AltitudeLimitCount >= kPerformanceRowLimit) return;
        AltitudeLimitRow& row = table.AltitudeLimit[++table.AltitudeLimitCount];
        row.Altitude = Column(columns.data(), count, 0);
        row.Second = Column(columns.data(), count, 1);
        return;
    }
    case PerformanceSection::None:
    case PerformanceSection::Other:
        return;
    }
}

}  // namespace

void ReadPerformanceText(const char* text, size_t length, PerformanceTable& table) {
    ClearTable(table);
    if (text == nullptr) return;
    PerformanceSection section = PerformanceSection::None;
    size_t start = 0;
    while (start < length) {
        // Step 1: the next line, without its end, cut to the line limit.
        size_t end = start;
        while (end < length && text[end] != '\n') ++end;
        size_t line_length = end - start;
        if (line_length > 0 && text[start + line_length - 1] == '\r') --line_length;
        line_length = std::min(line_length, static_cast<size_t>(kPerformanceLineLimit));
        ReadPerformanceLine(std::string_view(text + start, line_length), section, table);
        start = end + 1;
    }
}

void LoadPerformanceTable() {
    PerformanceTable& table = g_performance_table;
    ClearTable(table);
    const char* name = g_profile.PerformanceData.data();
    if (name[0] == 0) return;

    // Step 1: the name as it stands, then below the root's aircraft folder.
    static LineReader reader;  // 64 KB: kept off the stack
    bool opened = reader.Open(name);
    if (!opened) {
        char path[kRootFolderSize + kConfigTextSize + sizeof kAircraftFolder];
        int written = std::snprintf(path, sizeof path, "%s%s%s", g_module.RootFolder.data(), kAircraftFolder, name);
        if (written > 0 && static_cast<size_t>(written) < sizeof path) opened = reader.Open(path);
    }
    if (!opened) return;

    // Step 2: line by line.
    PerformanceSection section = PerformanceSection::None;
    std::array<char, kPerformanceLineLimit + 1> line{};
    size_t length = 0;
    while (reader.Next(line.data(), line.size(), length))
        ReadPerformanceLine(std::string_view(line.data(), length), section, table);
    reader.file.Close();
}

// [SECTION] The cruise altitude from the tables

namespace {

constexpr double kStepDistance = 20;             // nm a step of the climb and descent walks
constexpr double kLowAltitude = 10000;           // feet below which the TAS is held down
constexpr double kLowAltitudeTasLimit = 300;     // knots
constexpr double kHalfRouteLimit = 450;          // nm: a longer half route climbs within...
constexpr double kLongRouteHalf = 200;           // ...this
constexpr double kShortHalfRoute = 35;           // nm: above it the half route loses...
constexpr double kHalfRouteMargin = 15;          // ...this margin
constexpr double kLowestCruise = 3000;           // feet: the cruise altitude comes down no lower
constexpr double kCruiseStep = 1000;             // feet a step down
constexpr double kWeightStart = 100;             // pounds on the entered gross weight at the start
constexpr int kOptimisePasses = 5;
constexpr int kWalkStepLimit = 64;               // steps of a walk (450 nm / 20 is 23)
constexpr double kUnreachable = 1e6;             // nm: a walk that never climbs
constexpr double kHighestCeiling = 100000;       // feet: an altitude limit above it is no limit
constexpr double kHighestFigure = 100000;        // knots or ft/min kept from the means; beyond is no figure

// A mean or table figure as the whole number the profile keeps; 0 for none.
int WholeFigure(double value) {
    if (!(value > 0)) return 0;
    return static_cast<int>(std::lround(std::min(value, kHighestFigure)));
}

// The means of one walk: x = (sum t x sum(x / t)) / n^2 over its segments.
struct WalkMeans {
    double tas = 0;                              // knots
    double rate = 0;                             // ft/min
    double flow = 0;                             // pounds an hour
    double distance = 0;                         // nm: C / rate x TAS / 60
};

struct WalkFigures {
    double rate = 0, flow = 0, tas = 0, t = 0;   // ft/min, lb/h, knots, seconds of the step
};

// The row whose altitude is nearest, by the truncated difference; the first on a tie.
template <typename Row>
int NearestRow(const std::array<Row, kPerformanceRowStorage>& rows, int count, double altitude) {
    int best = 1;
    double best_difference = -1;
    for (int r = 1; r <= count; ++r) {
        double difference = std::trunc(std::fabs(altitude - rows[r].Altitude));
        if (best_difference < 0 || difference < best_difference) {
            best = r;
            best_difference = difference;
        }
    }
    return best;
}

// A climb (descending = false) or a descent, both walked upward from `start`
// to `ceiling`, 20 nm at a time, within `half`. Weight goes down by the burn.
WalkMeans Walk(bool descending, double start, double ceiling, double half, double& weight) {
    const PerformanceTable& table = g_performance_table;
    const AircraftProfile& p = g_profile;
    std::array<WalkFigures, kWalkStepLimit + 1> segments{};
    int n = 0;
    WalkFigures previous{};
    bool have_previous = false;
    double altitude = start, distance = 0;
    // Step 1: the steps; a change of TAS closes the segment before it.
    for (int step = 0; step < kWalkStepLimit && altitude < ceiling && distance < half; ++step) {
        WalkFigures now{};
        if (descending) {
            const DescentPerformanceRow& row = table.Descent[NearestRow(table.Descent, table.DescentCount, altitude)];
            now.tas = row.Tas;
            now.rate = row.Rate;
            now.flow = row.FuelFlow;
            if (altitude < kLowAltitude) {
                if (p.ClbSpdRest > 0 && altitude < p.ClbAltRest) now.tas = p.ClbSpdRest;
                now.tas = std::min(now.tas, kLowAltitudeTasLimit);
            }
        } else {
            const ClimbPerformanceRow& row = table.Climb[NearestRow(table.Climb, table.ClimbCount, altitude)];
            now.tas = row.Tas;
            now.rate = row.Rate;
            now.flow = row.FuelFlow[0];
            if (altitude < kLowAltitude) {
                if (p.ClbSpdRest > 0 && altitude < p.ClbAltRest) now.tas = IasToTas(p.ClbSpdRest, altitude);
                now.tas = std::min(now.tas, kLowAltitudeTasLimit);
            }
        }
        if (!(now.tas > 0)) break;  // a row without speed ends the walk
        now.t = kStepDistance / now.tas * 3600.0;
        altitude += now.rate / 60.0 * now.t;
        weight -= now.flow / 3600.0 * now.t;
        distance += kStepDistance;
        if (have_previous && now.tas != previous.tas) segments[n++] = previous;
        previous = now;
        have_previous = true;
    }
    // Step 2: short of the ceiling the last figures count too; so do they when
    // the speed never changed (a table of one speed has no other segment).
    if (have_previous && (altitude < ceiling || n == 0)) segments[n++] = previous;

    // Step 3: the means and the distance.
    WalkMeans means;
    if (n == 0) {
        means.distance = ceiling > start ? kUnreachable : 0;
        return means;
    }
    double sum_t = 0, tas_over_t = 0, rate_over_t = 0, flow_over_t = 0;
    for (int s = 0; s < n; ++s) {
        sum_t += segments[s].t;
        tas_over_t += segments[s].tas / segments[s].t;
        rate_over_t += segments[s].rate / segments[s].t;
        flow_over_t += segments[s].flow / segments[s].t;
    }
    double n2 = static_cast<double>(n) * n;
    means.tas = sum_t * tas_over_t / n2;
    means.rate = sum_t * rate_over_t / n2;
    means.flow = sum_t * flow_over_t / n2;
    means.distance = means.rate > 0 ? ceiling / means.rate * (means.tas / 60.0) : kUnreachable;
    return means;
}

// The cruise fuel flow column: the GRWT weight nearest the estimate; the first without weights.
int CruiseFlowColumn(const CruisePerformanceRow& row, double weight) {
    const PerformanceTable& table = g_performance_table;
    int columns = std::min(table.CruiseWeightCount, row.FuelFlowCount);
    int best = 0;
    for (int c = 1; c < columns; ++c)
        if (std::fabs(table.CruiseWeights[c] - weight) < std::fabs(table.CruiseWeights[best] - weight)) best = c;
    return best;
}

// Hours at a speed; 0 without speed.
double Hours(double distance, double tas) { return tas > 0 && distance > 0 ? distance / tas : 0; }

}  // namespace

double PlanRouteLength() {
    const PlanContext& pc = g_plan.context;
    double total = 0;
    int from = -1;
    for (int row = 0; row <= pc.ActiveLastRow && row < kPlanRows; ++row) {
        const PlanWaypoint& to = g_plan.ActivePlan[row];
        if (IsDiscontinuity(to)) continue;
        if (from >= 0) {
            const PlanWaypoint& start = g_plan.ActivePlan[from];
            double distance = 0, bearing = 0;
            GreatCircle(start.Latitude, start.Longitude, to.Latitude, to.Longitude, distance, bearing);
            total += distance;
        }
        from = row;
    }
    return total;
}

double PlanInitialBearing() {
    const PlanContext& pc = g_plan.context;
    if (pc.ActiveLastRow < 1) return 0;
    const PlanWaypoint& first = g_plan.ActivePlan[0];
    const PlanWaypoint& last = g_plan.ActivePlan[std::min(pc.ActiveLastRow, kPlanRows - 1)];
    double distance = 0, bearing = 0;
    GreatCircle(first.Latitude, first.Longitude, last.Latitude, last.Longitude, distance, bearing);
    return bearing;
}

int SemicircularAltitude(int altitude, double bearing) {
    const int c = altitude;
    if (bearing >= 180) {
        // Westbound: even thousands, and the high levels 43000 up by 4000.
        if (c >= 42000) return c > 55000 ? 55000 : c > 51000 ? 51000 : c > 47000 ? 47000 : 43000;
        return c % 2000 == 0 ? c : c - 1000;
    }
    // Eastbound: odd thousands, and 45000 up by 4000.
    if (c >= 42000) return c > 57000 ? 57000 : c > 53000 ? 53000 : c > 49000 ? 49000 : 45000;
    return c % 2000 != 0 ? c : c - 1000;
}

int OptimizeProfile() {
    const PerformanceTable& table = g_performance_table;
    if (table.ClimbCount == 0 || table.CruiseCount == 0 || table.DescentCount == 0) return 0;
    AircraftProfile& p = g_profile;
    const PlanContext& pc = g_plan.context;
    if (pc.ActiveLastRow < 0) return 0;

    // Step 1: the largest distance a climb or a descent may take.
    const double route = PlanRouteLength();
    double half = route * 0.5;
    if (half > kHalfRouteLimit) half = kLongRouteHalf;
    else if (half > kShortHalfRoute) half -= kHalfRouteMargin;

    // Step 2: the ceiling, raised to the altitude limit table's highest.
    double ceiling = p.MaxCruise;
    for (int r = 1; r <= table.AltitudeLimitCount; ++r) ceiling = std::max(ceiling, table.AltitudeLimit[r].Altitude);
    ceiling = std::clamp(ceiling, 0.0, kHighestCeiling);

    // Step 3: the weight to start from.
    const double gross = g_performance.GrossWeight;
    double weight = gross + kWeightStart;
    const double origin = std::max(0.0, g_plan.ActivePlan[0].Altitude);
    const double destination = std::max(0.0, g_plan.ActivePlan[std::min(pc.ActiveLastRow, kPlanRows - 1)].Altitude);

    // Step 4: five passes of climb, descent, cruise flow and fuel.
    WalkMeans climb, descent;
    int cruise_row = 1;
    for (int pass = 0; pass < kOptimisePasses; ++pass) {
        double walk_weight = weight;
        climb = Walk(false, origin, ceiling, half, walk_weight);
        descent = Walk(true, destination, ceiling, half, walk_weight);
        cruise_row = NearestRow(table.Cruise, table.CruiseCount, ceiling);
        // Down a thousand at a time until both fit.
        while ((descent.distance > half || climb.distance > half) && ceiling > kLowestCruise) {
            ceiling -= kCruiseStep;
            if (climb.distance > half) climb = Walk(false, origin, ceiling, half, walk_weight);
            if (descent.distance > half) descent = Walk(true, destination, ceiling, half, walk_weight);
        }
        cruise_row = NearestRow(table.Cruise, table.CruiseCount, ceiling);
        const CruisePerformanceRow& row = table.Cruise[cruise_row];
        double cruise_flow = row.FuelFlow[CruiseFlowColumn(row, weight)];
        double cruise_distance = std::max(0.0, route - climb.distance - descent.distance);
        double climb_fuel = Hours(climb.distance, climb.tas) * climb.flow;
        double cruise_fuel = Hours(cruise_distance, row.Tas) * cruise_flow;
        double descent_fuel = Hours(std::min(descent.distance, half), descent.tas) * descent.flow;
        weight = gross + climb_fuel + cruise_fuel + descent_fuel;
    }

    // Step 5: the semicircular rule on the first row's bearing to the last.
    int cruise = SemicircularAltitude(static_cast<int>(ceiling), PlanInitialBearing());

    // Step 6: the speeds and rates the predictions fly by.
    const double oat = g_performance.CruiseOat;
    if (climb.tas > 0 && climb.tas < kHighestFigure) {
        p.ClimbTas = climb.tas;
        p.ClimbIas = WholeFigure(TasToIas(climb.tas, 15000));
        g_config.ClimbMach = IasToMach(p.ClimbIas, 15000, oat);
    }
    if (descent.tas > 0 && descent.tas < kHighestFigure) {
        p.DescentTas = descent.tas;
        p.DescentIas = WholeFigure(TasToIas(descent.tas, 15000));
        g_config.DescentMach = IasToMach(p.DescentIas, 15000, oat);
    }
    const CruisePerformanceRow& row = table.Cruise[NearestRow(table.Cruise, table.CruiseCount, cruise)];
    if (row.Tas > 0 && row.Tas < kHighestFigure) {
        p.CruiseIas = WholeFigure(TasToIas(row.Tas, cruise));
        g_config.CruiseMach = IasToMach(p.CruiseIas, cruise, oat);
    }
    if (climb.rate > 0 && climb.rate < kHighestFigure) p.ClimbRate = WholeFigure(climb.rate);
    if (descent.rate > 0 && descent.rate < kHighestFigure) p.DescentRate = descent.rate;
    return cruise;
}
