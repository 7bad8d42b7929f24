// cdu_fuzz_entry.h: any bytes as a pilot's hands on the Boeing-style CDU:
// each byte presses a key, draws a frame or jumps to a page, so that every
// entry the pages read (names, routes, runways, page numbers) meets hostile
// sequences. The libFuzzer target and a unit test call it.
#pragma once

#include "cdu/cdu_draw.h"
#include "cdu/cdu_keys.h"
#include "cdu/keypad.h"
#include "plan/plan_tables.h"

#include <orbhost.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cdu_fuzz {

constexpr int kWidth = 284;   // the gauge's surface
constexpr int kHeight = 233;

// Returns false when a state the module must keep was broken.
inline bool KeySequence(const uint8_t* data, size_t size) {
    static std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), kWidth, kHeight, kWidth * 4};
    const int keys = CduKeyCount(GaugeId::SMITHS_FMS);
    bool ok = true;
    for (size_t i = 0; i < size; ++i) {
        int b = data[i];
        if (b < keys) {
            PressCduKey(*CduKeyAt(GaugeId::SMITHS_FMS, b));
        } else if (b < 0xF0) {
            SmithsPageDispatcher(&dc, kWidth, kHeight);
        } else {
            g_smiths.CduPage = b - 0xF0 + 20;  // 20..35: the route pages and their neighbours
        }
        const SmithsCduState& s = g_smiths;
        ok &= s.Scratchpad.back() == 0 && s.CduMessage.back() == 0;
        ok &= g_plan.context.PlanState >= 0 && g_plan.context.PlanState <= 4;
        ok &= g_plan.context.ModLastRow <= kPlanLastRowLimit && g_plan.context.ActiveLastRow <= kPlanLastRowLimit;
        ok &= g_route_rows.count >= 0 && g_route_rows.count <= kRouteRowLimit;
    }
    return ok;
}

}  // namespace cdu_fuzz
