// perf_pages.h: the Boeing-style CDU pages that feed and show the performance
// side: PERF INIT and PERF LIMITS, the flight-phase pages ECON CLB, ECON CRZ
// and ECON PATH DES, DES FORECASTS, TAKEOFF REF, APPROACH REF, and PROGRESS
// with RTA PROGRESS.
//
// Each page function runs once per drawn frame, as the route pages do: it
// reads the latches, carries the entry out on the shared values (the plan
// context, the profile, the configuration, the performance values), then
// draws. The pages live in perf_init_pages.cpp, phase_pages.cpp,
// ref_pages.cpp and progress_pages.cpp; this header is their one list and
// holds the entry rules they share.
//
// Index:
//   [SECTION] Pages
//   [SECTION] Shared entry rules
//   [SECTION] Shared lines
#pragma once

#include "cdu/cdu_screen.h"

#include <cstddef>
#include <string_view>

constexpr int kPerfPageCount = 2;              // PERF INIT, PERF LIMITS
constexpr int kProgressPageCount = 3;          // PROGRESS 1, 2 and RTA PROGRESS
constexpr int kCruiseAltitudeCeiling = 99999;  // feet; ECON CLB takes only altitudes below
constexpr float kPerfRow6Y = 198;              // row 6 prompts, below the rule

// [SECTION] Pages
void PerfInitPage(CduScreen& screen);          // CduPage 3, pages 1 (PERF INIT) and 2 (PERF LIMITS)
void EconClbPage(CduScreen& screen);           // CduPage 34
void EconCrzPage(CduScreen& screen);           // CduPage 35
void EconPathDesPage(CduScreen& screen);       // CduPage 36
void DesForecastsPage(CduScreen& screen);      // CduPage 38
void TakeoffRefPage(CduScreen& screen);        // CduPage 27
void ApproachRefPage(CduScreen& screen);       // CduPage 12
void ProgressPage(CduScreen& screen);          // CduPage 33, pages 1, 2 and 3 (RTA PROGRESS)

// [SECTION] Shared entry rules
// The line key of this frame. No line of these pages can be deleted: with
// the delete armed the data lines (keys 1 to 10) do nothing, so that the
// text hidden under "DELETE" is not entered unseen.
int PerfLineKey();
// A cruise altitude typed on a page: a leading "FL" stripped, a whole number
// above 0 and below `ceiling` (0: no ceiling), below 1000 in hundreds of
// feet. Returns the feet, or 0 for a text the line refuses.
int ReadCruiseAltitudeEntry(std::string_view text, int ceiling);
// A number typed where 0 is a value: a text that reads 0 must be exactly "0".
bool ZeroWrittenOut(std::string_view text, double value);
// A good cruise altitude entry: the old value to its undo slot, the plan
// modified from ACT, the profile predicted anew, the entry line cleared.
void TakeCruiseAltitude(int feet);
// A change of plan data from a performance page: on an active plan the edit
// begins and PlanState steps from 3 to 4.
void PerfPlanDataChanged();
// The target speed entry of the three phase pages ("250", "/.80",
// "250/.80") into the given speed and Mach, with their undo slots. Returns
// false for a text the line refuses; an empty text is nothing and true.
bool EnterTargetSpeed(std::string_view text, int& ias, double& mach, int& ias_undo, double& mach_undo);
// A SPD/REST pair "240/10000" into speed and altitude; false when refused.
bool EnterSpeedRestriction(std::string_view text, double& speed, double& altitude);

// [SECTION] Shared lines
// The cruise altitude as PERF INIT and the phase pages show it: "FL%03d"
// above the transition altitude, else "%5d"; empty for 0 (box prompts).
void FormatCruiseAltitude(int feet, char* out, size_t size);
// A predicted time distance_nm ahead at ground_speed, with the tenth of a
// minute: "%02.0f%02.0f.%1.0fZ/%.0f NM" (or "L"); with `tc_form` the T/C
// line's "%02.0f%02.0f.%1.0fZ / %.1f". False (out empty) at or below
// min_ground_speed.
bool FormatTimeAndDistance(double distance_nm, double ground_speed, double min_ground_speed, bool tc_form, char* out,
                           size_t size);
// The flap name list of the profile holds this setting (",1,5,10,15,25,").
bool TakeoffFlapsListed(int flaps);
