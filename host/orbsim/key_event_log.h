// key_event_log.h: the key events of a flight, in bounded memory.
//
// A long flight sends thousands of key events an hour; keeping every one
// made orbsim grow without end. The log keeps the latest kKeyEventRingSize
// events in order for `print keyevents`, and counts (with the last of each
// event number) for every check a script makes, so that a flight of any
// length holds the same memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace orbsim {

constexpr size_t kKeyEventRingSize = 4096;     // latest events kept in full

struct KeyEventRecord {
    double time = 0;                          // simulated seconds
    uint32_t event = 0;
    uint32_t value = 0;
    bool from_module = true;                  // false: the script's `event`
};

struct KeyEventTally {
    uint64_t count = 0;                       // events of this number the module sent
    KeyEventRecord last;                      // the latest of them
};

struct KeyEventLog {
    std::vector<KeyEventRecord> ring;         // the latest events; once full, `next` is the oldest
    size_t next = 0;                          // where the next event goes once the ring is full
    uint64_t total = 0;                       // every event recorded, the module's and the script's
    uint64_t module_total = 0;                // the module's of them
    KeyEventRecord module_last;               // the module's latest; valid when module_total > 0
    std::map<uint32_t, KeyEventTally> module_by_event;  // one entry per event number the module sent

    void Add(const KeyEventRecord& record);
    void Clear();
    size_t Kept() const { return ring.size(); }
    // The i-th event kept, 0 the oldest.
    const KeyEventRecord& KeptAt(size_t i) const;
    // The latest event recorded; only when total > 0.
    const KeyEventRecord& Last() const { return KeptAt(ring.size() - 1); }
    // The module's events of one number: their count, and the latest or null.
    uint64_t ModuleCount(uint32_t event, const KeyEventRecord** last) const;
};

}  // namespace orbsim
