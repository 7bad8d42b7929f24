// gauge_instance.h: a placed gauge as the simulator makes it: a copy of the
// module's header with its own parameter string and its own element chain,
// with drawing contexts on the layers that ask for one.
#pragma once

#include "frame/gauge_table.h"

#include <orbhost.h>

#include <memory>
#include <string>
#include <vector>

struct GaugeInstance {
    GaugeInstance(GaugeId id, const char* parameters);
    // An instance of a header from another copy of the module (a loaded .gau).
    GaugeInstance(const GAUGEHDR& source, GaugeId id, const char* parameters);
    GaugeInstance(const GaugeInstance&) = delete;
    GaugeInstance& operator=(const GaugeInstance&) = delete;

    void Service(int service, unsigned extra = 0);   // the gauge's callback
    FLAGS32 Flags(int layer) const;
    bool Hidden(int layer) const { return (Flags(layer) & IMAGE_HIDDEN) != 0; }
    void MarkOnScreen(int layer);                     // as the simulator does after taking pixels

    GaugeId id;
    GAUGEHDR header{};
    std::string parameters;
    std::vector<std::unique_ptr<uint8_t[]>> elements;  // copies of the module's elements
    std::vector<std::vector<ELEMENT_HEADER*>> next_arrays;
    ELEMENT_HEADER* first = nullptr;
    std::vector<std::unique_ptr<OrbDeviceContext>> contexts;
    std::vector<std::vector<uint32_t>> pixels;
};
