// entry_guard.h: no exception leaves the module.
//
// The simulator's process is not ours to end: an exception that escaped a
// gauge callback, a mouse handler or the module's start or end would take the
// simulator down with it. Every entry point the simulator calls runs its body
// through AtEntry, which stops any exception there, counts it and logs the
// first of each kind of entry once. Tables keep what they held, a load that
// stopped halfway leaves what it had read, and the next frame goes on.
#pragma once

#include <panel_sdk.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>

enum class EntryKind {
    ModuleInit,       // ModuleInit
    ModuleDeinit,     // ModuleDeinit
    GaugeRoutine,     // the common query, install, ... routines of the gauge headers
    GaugeCallback,    // a gauge's callback, at any panel service
    MouseHandler,     // a mouse area's function
    Count
};

struct EntryGuardState {
    // Exceptions stopped at each kind of entry since the module was loaded.
    std::array<uint32_t, static_cast<size_t>(EntryKind::Count)> stopped{};
};

extern EntryGuardState g_entry_guard;

// Counts a stopped exception; the first of its kind goes to the event list.
void NoteStoppedException(EntryKind kind, const char* what) noexcept;

template <typename Body>
void AtEntry(EntryKind kind, Body&& body) noexcept {
    try {
        body();
    } catch (const std::exception& e) {
        NoteStoppedException(kind, e.what());
    } catch (...) {
        NoteStoppedException(kind, "unknown");
    }
}

// A mouse handler's action, guarded; the simulator gets 0 as from every
// handler of the module.
template <typename Action>
BOOL_SDK AtMouseEntry(Action&& action) noexcept {
    AtEntry(EntryKind::MouseHandler, action);
    return 0;
}
