// diagnostic_log.h: orb1.log and the event list.
#pragma once

// Writes a callback's line while the log is open.
void WriteLogLine(const char* line);
// Opens the log (C17_MFD at start-up).
void OpenDiagnosticLog();
// Adds an event to the event list ("FUEL '%6.0f' loaded", ...).
void LogEvent(const char* format, ...);
