// diagnostic_log.cpp: the log file and event list. The log is opened by
// C17_MFD only; the event list comes with the DEBUG page.
#include "frame/diagnostic_log.h"

#include "frame/module_state.h"

#include <share.h>

#include <cstdarg>
#include <cstdio>

void WriteLogLine(const char* line) {
    if (g_module.diagnostic_log == nullptr || line == nullptr) return;
    std::fputs(line, g_module.diagnostic_log);
    std::fflush(g_module.diagnostic_log);
}

void OpenDiagnosticLog() {
    if (g_module.diagnostic_log != nullptr) return;
    char path[MAX_PATH];
    DataPath("\\orb1.log", path, sizeof path);
    g_module.diagnostic_log = _fsopen(path, "w", _SH_DENYNO);
}

void LogEvent(const char*, ...) {}
