// runway_tuning.cpp: the ILS of the runway chosen on the MCU's airport page,
// tuned at the end of the tick that serves the page's request; the
// frequency helper also serves VNAV's tuning at T/D.
#include "guidance/runway_tuning.h"

#include "frame/sim_access.h"
#include "guidance/geodesy.h"

#include <cmath>
#include <cstdlib>

namespace {
constexpr double kLowestNavMhz = 108.0;   // below it the text is no NAV frequency
constexpr double kHighestNavMhz = 118.0;
constexpr unsigned kNav1FrequencyEvent = 0x100AC;
constexpr unsigned kNav1CourseEvent = 0x100B4;
constexpr size_t kFrequencyCharacters = 6;  // "110.30": what of the text is tuned
}  // namespace

RunwayTuningState g_runway_tuning;

void TuneSelectedRunway() {
    const RunwayTuningState& r = g_runway_tuning;
    if (r.selected == kNoRunwaySelected) return;
    // The course first, as the en-route rule sends it, then the frequency.
    auto course = static_cast<int>(r.ils_course);
    if (course != 0) TriggerKeyEvent(kNav1CourseEvent, static_cast<unsigned>(course));
    char frequency[kFrequencyCharacters + 1] = {};
    for (size_t i = 0; i < kFrequencyCharacters && r.ils_frequency[i] != 0; ++i) frequency[i] = r.ils_frequency[i];
    TuneIlsFrequency(frequency);
}

void TuneIlsFrequency(const char* frequency_text) {
    if (frequency_text == nullptr) return;
    double mhz = std::atof(frequency_text);
    if (!(mhz >= kLowestNavMhz && mhz < kHighestNavMhz)) return;
    // Hundredths rounded, so that "109.50" gives 10950 whatever the binary
    // fraction; 10950 is written digit for digit, 0x10950.
    auto hundredths = static_cast<unsigned>(std::lround(mhz * 100.0));
    TriggerKeyEvent(kNav1FrequencyEvent, ToBcd(hundredths));
}
