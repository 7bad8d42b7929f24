// flight_summary.cpp: the record a finished flight leaves in Flight.log.
//
// At End_Flight the module reads back the flight's own fpl.log and condenses
// its Climb, Cruise and Descent lines into averages by altitude bin (and, for
// climb and cruise, by gross-weight bin), the pilot's record of how the
// aircraft really performed. fpl.log is a text file the pilot may edit, so
// the reader takes any bytes: lines are cut at 299 bytes, missing words read
// empty or 0, numbers are held to a sane range, and the bin lists never grow
// past their room. A line whose altitude or weight bin no longer fits its
// stage's list is left out of the means altogether (and counted), so every
// row of the record stands only for lines of its own bins.
//
// Index:
//   [SECTION] Limits
//   [SECTION] Reading a line
//   [SECTION] The record
//   [SECTION] WriteFlightSummary
#include "flightlog/flight_log.h"

#include "frame/data_text.h"
#include "frame/module_state.h"
#include "plan/plan_tables.h"

#include <share.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <ctime>

// [SECTION] Limits
namespace {
constexpr int kSummaryWords = 11;           // time, segment, waypoint and eight numbers
constexpr double kAltitudeBinFeet = 5000;   // altitude bins, and their floor
constexpr double kHeavyWeight = 95500;      // pounds: from here weight bins are 10000 wide
constexpr double kLightWeightBin = 5000;    // pounds
constexpr double kHeavyWeightBin = 10000;   // pounds
constexpr double kNumberLimit = 1e12;       // any column beyond this is an edit, not a flight
constexpr std::string_view kStartTime = "00:00:00";
constexpr size_t kFlightTimeChars = 5;      // "HH:MM" of "HH:MM:SS"

double Column(const std::array<std::string_view, kSummaryWords>& words, int index) {
    double value = ReadNumber(words[static_cast<size_t>(index)]);
    if (!std::isfinite(value)) return 0;
    return std::clamp(value, -kNumberLimit, kNumberLimit);
}

// The slot of `value` in a list of `count` (adding it when there is room), or -1.
template <size_t N>
int FindOrAdd(std::array<double, N>& values, int& count, double value, bool may_add) {
    for (int i = 0; i < count; ++i)
        if (values[static_cast<size_t>(i)] == value) return i;
    if (!may_add || count >= static_cast<int>(N)) return -1;
    values[static_cast<size_t>(count)] = value;
    return count++;
}

int FindAltitude(SummaryStageList& list, double altitude) {
    for (int i = 0; i < list.bin_count; ++i)
        if (list.bins[static_cast<size_t>(i)].altitude == altitude) return i;
    return -1;
}
}  // namespace

// [SECTION] Reading a line
void SummaryAddLine(FlightSummary& summary, std::string_view line) {
    // 1. Comments are skipped; a line is read up to 299 bytes; eleven words.
    if (!line.empty() && line[0] == ';') return;
    if (line.size() > static_cast<size_t>(kSummaryLineLimit - 1)) line = line.substr(0, kSummaryLineLimit - 1);
    ++summary.lines_read;
    std::array<std::string_view, kSummaryWords> words{};
    SplitColumns(line, words.data(), kSummaryWords);
    std::string_view time = words[0];
    std::string_view segment = words[1];
    double tas = Column(words, 4);
    double vertical_speed = Column(words, 5);
    double altitude = Column(words, 6);
    double fuel_flow = Column(words, 7);
    double fuel_on_board = Column(words, 8);
    double zero_fuel_weight = Column(words, 9);
    double payload = Column(words, 10);

    // 2. Altitude bin: nearest 5000 ft, at least 5000.
    double altitude_bin = std::max(kAltitudeBinFeet, std::round(altitude / kAltitudeBinFeet) * kAltitudeBinFeet);
    // 3. Weight bin: nearest 5000 lb, from 95500 lb the nearest 10000 lb.
    double gross = fuel_on_board + zero_fuel_weight + payload;
    double weight_bin = gross < kHeavyWeight ? std::round(gross / kLightWeightBin) * kLightWeightBin
                                             : std::round(gross / kHeavyWeightBin) * kHeavyWeightBin;
    // 4. The fuel the flight started with.
    if (time == kStartTime) summary.fuel_at_start = fuel_on_board;

    // 5. Climb, cruise and descent lines into their stage's bins.
    SummaryStageList* list = nullptr;
    if (segment == "Climb") list = &summary.climb;
    if (segment == "Cruise") list = &summary.cruise;
    if (segment == "Descent") list = &summary.descent;
    if (list != nullptr) {
        bool by_weight = list != &summary.descent;
        int altitude_index = FindAltitude(*list, altitude_bin);
        bool altitude_fits = altitude_index >= 0 || list->bin_count < kSummaryAltitudeBins;
        // The weight bin is taken only when the altitude bin fits too, so a dropped
        // line leaves no empty bin behind.
        int weight_index = -1;
        if (by_weight) weight_index = FindOrAdd(list->weights, list->weight_count, weight_bin, altitude_fits);
        if (!altitude_fits || (by_weight && weight_index < 0)) {
            ++list->dropped_lines;
        } else {
            if (altitude_index < 0) {
                altitude_index = list->bin_count++;
                list->bins[static_cast<size_t>(altitude_index)] = SummaryAltitudeBin{};
                list->bins[static_cast<size_t>(altitude_index)].altitude = altitude_bin;
            }
            SummaryAltitudeBin& bin = list->bins[static_cast<size_t>(altitude_index)];
            bin.tas_sum += tas;
            bin.vertical_speed_sum += vertical_speed;
            bin.count += 1;
            if (by_weight) {
                bin.flow_sum[static_cast<size_t>(weight_index)] += fuel_flow;
                bin.flow_count[static_cast<size_t>(weight_index)] += 1;
            } else {
                bin.descent_flow_sum += fuel_flow;
            }
        }
    }

    // 6. The end of the flight: its time and the fuel it used.
    if (segment == "End_Flight") {
        std::string_view hours_minutes = time.substr(0, std::min(time.size(), kFlightTimeChars));
        SetText(summary.flight_time, hours_minutes);
        summary.fuel_used = summary.fuel_at_start - fuel_on_board;
    }
}

// [SECTION] The record
void WriteSummaryRecord(FILE* file, const FlightSummary& summary, std::string_view first_ident,
                        std::string_view last_ident, int year, int month, int day, std::string_view aircraft) {
    // 1-5. Route, date, time, aircraft, fuel.
    std::fprintf(file, "[%.*s-%.*s]\n", static_cast<int>(first_ident.size()), first_ident.data(),
                 static_cast<int>(last_ident.size()), last_ident.data());
    std::fprintf(file, "Date=%d/%02d/%02d\n", year, month, day);
    std::fprintf(file, "FlightTime=%s\n", summary.flight_time.data());
    std::fprintf(file, "Aircraft=%.*s\n", static_cast<int>(aircraft.size()), aircraft.data());
    std::fprintf(file, "FuelUsed=%.0f\n", summary.fuel_used);
    // 6. Climb: a row per altitude and weight bin that has lines.
    std::fputs("Climb=", file);
    const SummaryStageList& climb = summary.climb;
    for (int a = 0; a < climb.bin_count; ++a) {
        const SummaryAltitudeBin& bin = climb.bins[static_cast<size_t>(a)];
        for (int w = 0; w < climb.weight_count; ++w) {
            int flows = bin.flow_count[static_cast<size_t>(w)];
            if (flows <= 0) continue;
            std::fprintf(file, "%.0f_%.0f_%.0f_%.0f_%.0f ", bin.altitude, bin.tas_sum / bin.count,
                         bin.vertical_speed_sum / bin.count, climb.weights[static_cast<size_t>(w)],
                         bin.flow_sum[static_cast<size_t>(w)] / flows);
        }
    }
    std::fputc('\n', file);
    // 7. Cruise, the same without the vertical speed.
    std::fputs("Cruise=", file);
    const SummaryStageList& cruise = summary.cruise;
    for (int a = 0; a < cruise.bin_count; ++a) {
        const SummaryAltitudeBin& bin = cruise.bins[static_cast<size_t>(a)];
        for (int w = 0; w < cruise.weight_count; ++w) {
            int flows = bin.flow_count[static_cast<size_t>(w)];
            if (flows <= 0) continue;
            std::fprintf(file, "%.0f_%.0f_%.0f_%.0f ", bin.altitude, bin.tas_sum / bin.count,
                         cruise.weights[static_cast<size_t>(w)], bin.flow_sum[static_cast<size_t>(w)] / flows);
        }
    }
    std::fputc('\n', file);
    // 8. Descent: a row per altitude bin, the vertical speed in whole feet a minute.
    std::fputs("Descent=", file);
    const SummaryStageList& descent = summary.descent;
    for (int a = 0; a < descent.bin_count; ++a) {
        const SummaryAltitudeBin& bin = descent.bins[static_cast<size_t>(a)];
        if (bin.count <= 0) continue;
        double mean_rate = std::clamp(bin.vertical_speed_sum / bin.count, double{INT_MIN}, double{INT_MAX});
        std::fprintf(file, "%.0f_%.0f_%d_%.0f ", bin.altitude, bin.tas_sum / bin.count, static_cast<int>(mean_rate),
                     bin.descent_flow_sum / bin.count);
    }
    std::fputc('\n', file);
    // 9. An empty line between records.
    std::fputc('\n', file);
}

// [SECTION] WriteFlightSummary
void WriteFlightSummary() {
    // 1. Read fpl.log back, line by line.
    char path[MAX_PATH];
    DataPath("\\orb\\FlightLog\\fpl.log", path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return;
    FlightSummary summary{};
    std::array<char, kSummaryLineLimit> line{};
    size_t length = 0;
    while (reader.Next(line.data(), line.size(), length)) SummaryAddLine(summary, std::string_view(line.data(), length));
    reader.file.Close();
    // 2. No profile, no record.
    const auto& name = g_module.AircraftProfileName;
    std::string_view aircraft(name.data(), strnlen(name.data(), name.size()));
    if (aircraft.empty()) return;
    // 3. The route's ends and the machine's local date.
    const PlanContext& pc = g_plan.context;
    std::string_view first_ident;
    std::string_view last_ident;
    if (pc.ActiveLastRow >= 0 && pc.ActiveLastRow < kPlanRows) {
        const auto& first = g_plan.ActivePlan[0].Ident;
        const auto& last = g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLastRow)].Ident;
        first_ident = std::string_view(first.data(), strnlen(first.data(), first.size()));
        last_ident = std::string_view(last.data(), strnlen(last.data(), last.size()));
    }
    std::time_t now = std::time(nullptr);
    std::tm local{};
    if (const std::tm* t = std::localtime(&now)) local = *t;
    // 4. Appended to Flight.log; a file that won't open is skipped.
    DataPath("\\orb\\FlightLog\\Flight.log", path, sizeof path);
    FILE* file = _fsopen(path, "a", _SH_DENYNO);
    if (file == nullptr) return;
    WriteSummaryRecord(file, summary, first_ident, last_ident, local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                       aircraft);
    std::fclose(file);
    ++g_flight_log.summaries_written;
}
