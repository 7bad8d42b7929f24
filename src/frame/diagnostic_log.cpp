// diagnostic_log.cpp: orb1.log and the event list.
//
// The log is written many times a second (a line at every callback of every
// gauge), so it is left to the C library's buffer: no flush, no time stamp.
// The process's end closes it. A long flight would grow it without end, so
// it stops at kDiagnosticLogCap bytes with a last line that says so.
#include "frame/diagnostic_log.h"

#include "frame/module_state.h"

#include <share.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

EventList g_events;

// [SECTION] orb1.log
void OpenDiagnosticLog() {
    if (g_module.diagnostic_log != nullptr) return;
    // The simulator's working folder is RootFolder; should it be unknown,
    // the name alone opens in the working folder all the same.
    FindRootFolder();
    char path[MAX_PATH];
    if (g_module.RootFolder[0] != 0)
        DataPath("\\orb1.log", path, sizeof path);
    else
        std::snprintf(path, sizeof path, "orb1.log");
    g_module.diagnostic_log = _fsopen(path, "w", _SH_DENYNO);
    g_module.diagnostic_log_bytes = 0;
}

namespace {
// Counts what a write added; at the cap, the closing line and no more.
bool LogHasRoom(int written) {
    ModuleState& m = g_module;
    if (written > 0) m.diagnostic_log_bytes += written;
    if (m.diagnostic_log_bytes < kDiagnosticLogCap) return true;
    std::fputs("orb1.log stops here: its size limit is reached\n", m.diagnostic_log);
    std::fflush(m.diagnostic_log);
    m.diagnostic_log_bytes = kDiagnosticLogCap;
    return false;
}
bool LogOpen() { return g_module.diagnostic_log != nullptr && g_module.diagnostic_log_bytes < kDiagnosticLogCap; }
}  // namespace

void WriteLogLine(const char* line) {
    if (!LogOpen() || line == nullptr) return;
    if (std::fputs(line, g_module.diagnostic_log) < 0) return;
    LogHasRoom(static_cast<int>(std::strlen(line)));
}

void WriteLogFormat(const char* format, ...) {
    if (!LogOpen() || format == nullptr) return;
    va_list args;
    va_start(args, format);
    int written = std::vfprintf(g_module.diagnostic_log, format, args);
    va_end(args);
    LogHasRoom(written);
}

// [SECTION] Event list
void LogEvent(const char* format, ...) {
    EventList& e = g_events;
    if (format == nullptr || e.count < 0 || e.count >= kEventListLimit) return;
    auto& text = e.texts[static_cast<size_t>(e.count)];
    va_list args;
    va_start(args, format);
    int written = std::vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    if (written < 0) return;  // nothing printable: nothing kept
    ++e.count;
}

void TrimEventList(int keep) {
    EventList& e = g_events;
    if (keep < 0) keep = 0;
    if (e.count > keep) e.count = keep;
}
