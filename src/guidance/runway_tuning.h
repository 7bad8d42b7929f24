// runway_tuning.h: the runway tuning of CheckTuneRoute(1): the ILS of the
// runway the pilot selected on the MCU's airport page, to NAV1 and its course;
// and the NAV1 frequency of a runway's ILS, which VNAV also tunes at T/D.
#pragma once

#include <array>

constexpr int kNoRunwaySelected = -999;

// The runway chosen on the MCU's airport page, as it stood when chosen.
struct RunwayTuningState {
    int selected = kNoRunwaySelected;        // runway row of the airport shown; -999 none
    std::array<char, 8> runway{};            // its designator, "16R"
    std::array<char, 12> ils_frequency{};    // its ILS frequency text, "110.30"; empty none
    double ils_course = 0;                   // degrees; 0 none
};

extern RunwayTuningState g_runway_tuning;

// Sends the selected runway's ILS course and frequency; nothing while no
// runway is selected.
void TuneSelectedRunway();
// NAV1 to an ILS frequency text ("109.50", "110.3"): its hundredths, as BCD,
// by key event 0x100AC. Nothing for a text without a frequency.
void TuneIlsFrequency(const char* frequency_text);
