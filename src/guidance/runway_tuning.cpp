// runway_tuning.cpp: the MCU's airport page, which selects the runway, comes
// with the MCU pages; until then no runway is ever selected, so nothing is
// tuned from there. The frequency helper serves VNAV's tuning at T/D.
#include "guidance/runway_tuning.h"

#include "frame/sim_access.h"
#include "guidance/geodesy.h"

#include <cmath>
#include <cstdlib>

namespace {
constexpr double kLowestNavMhz = 108.0;   // below it the text is no NAV frequency
constexpr double kHighestNavMhz = 118.0;
constexpr unsigned kNav1FrequencyEvent = 0x100AC;
}  // namespace

void TuneSelectedRunway() {}

void TuneIlsFrequency(const char* frequency_text) {
    if (frequency_text == nullptr) return;
    double mhz = std::atof(frequency_text);
    if (!(mhz >= kLowestNavMhz && mhz < kHighestNavMhz)) return;
    // Hundredths rounded, so that "109.50" gives 10950 whatever the binary
    // fraction; 10950 is written digit for digit, 0x10950.
    auto hundredths = static_cast<unsigned>(std::lround(mhz * 100.0));
    TriggerKeyEvent(kNav1FrequencyEvent, ToBcd(hundredths));
}
