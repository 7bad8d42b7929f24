// key_event_log.cpp: the bounded key-event record. See key_event_log.h.
#include "key_event_log.h"

namespace orbsim {

void KeyEventLog::Add(const KeyEventRecord& record) {
    if (ring.capacity() < kKeyEventRingSize) ring.reserve(kKeyEventRingSize);
    if (ring.size() < kKeyEventRingSize) {
        ring.push_back(record);
    } else {
        ring[next] = record;
        next = (next + 1) % kKeyEventRingSize;
    }
    ++total;
    if (!record.from_module) return;
    ++module_total;
    module_last = record;
    KeyEventTally& tally = module_by_event[record.event];
    ++tally.count;
    tally.last = record;
}

void KeyEventLog::Clear() { *this = KeyEventLog{}; }

const KeyEventRecord& KeyEventLog::KeptAt(size_t i) const {
    // While the ring fills, next stays 0 and the order is the vector's.
    return ring[(next + i) % ring.size()];
}

uint64_t KeyEventLog::ModuleCount(uint32_t event, const KeyEventRecord** last) const {
    auto found = module_by_event.find(event);
    if (found == module_by_event.end()) {
        if (last != nullptr) *last = nullptr;
        return 0;
    }
    if (last != nullptr) *last = &found->second.last;
    return found->second.count;
}

}  // namespace orbsim
