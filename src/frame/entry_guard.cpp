// entry_guard.cpp: counting and logging exceptions stopped at the entry
// points. See entry_guard.h.
#include "frame/entry_guard.h"

#include "frame/diagnostic_log.h"

#include <iterator>

EntryGuardState g_entry_guard;

namespace {
constexpr const char* kEntryNames[] = {"ModuleInit", "ModuleDeinit", "gauge routine", "gauge callback", "mouse handler"};
static_assert(std::size(kEntryNames) == static_cast<size_t>(EntryKind::Count));
}  // namespace

void NoteStoppedException(EntryKind kind, const char* what) noexcept {
    size_t index = static_cast<size_t>(kind);
    if (index >= g_entry_guard.stopped.size()) return;
    uint32_t& count = g_entry_guard.stopped[index];
    if (count < UINT32_MAX) ++count;
    // Once a kind: a failure that repeats every frame must not fill the list.
    if (count != 1) return;
    try {
        LogEvent("Exception '%s' stopped in %s", what != nullptr ? what : "unknown", kEntryNames[index]);
    } catch (...) {
        // Nothing more can be done about it here.
    }
}
