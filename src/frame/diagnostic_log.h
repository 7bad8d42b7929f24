// diagnostic_log.h: the two diagnostic aids of the module.
//
// orb1.log is a trace of gauge callbacks. Only a C17_MFD opens it (at its
// initialisation, truncated), so a panel without one writes nothing; once
// open it stays open for the life of the process. Lines are plain writes
// with no time stamp and no flush; at kDiagnosticLogCap bytes a last line
// says the log stops, so a long flight cannot fill the disk.
//
// The event list keeps the few events worth keeping ("Apts '%d' approaching
// struct_limit", "FUEL '%6.0f' loaded", "TWR Pos '%s' set", ...) in memory,
// from the module's load on, up to its limit; later events are dropped.
#pragma once

#include <array>

constexpr long kDiagnosticLogCap = 32L * 1024 * 1024;  // bytes orb1.log may hold
constexpr int kEventListLimit = 400;    // events kept; the rest are dropped without a word
constexpr int kEventTextSize = 256;     // bytes of one event with its terminator; longer texts are cut

struct EventList {
    std::array<std::array<char, kEventTextSize>, kEventListLimit> texts{};  // 0 .. count - 1 in use
    int count = 0;                      // events kept so far, at most kEventListLimit
};

extern EventList g_events;

// [SECTION] orb1.log
// Opens orb1.log in the simulator's folder, truncated, unless it is open.
void OpenDiagnosticLog();
// Writes a line as it stands (it carries its own line end) while the log is open.
void WriteLogLine(const char* line);
// The same with a printf format.
[[gnu::format(printf, 1, 2)]] void WriteLogFormat(const char* format, ...);

// [SECTION] Event list
// Formats an event and appends it while the list has room.
[[gnu::format(printf, 1, 2)]] void LogEvent(const char* format, ...);
// Cuts the list back to its first `keep` events (a new flight plan on board).
void TrimEventList(int keep);
