// panel_click.h: a pilot's left click on a gauge's mouse table, as the
// simulator delivers it, for the tests that press panel keys in-process.
#pragma once

#include "frame/gauge_linkage.h"

namespace test_support {
// A left click at bezel pixel (x, y): the last parent row whose box holds the
// point (an area lying over another, as the traffic button over the range
// knob, comes later in the table), then its child row under the point.
// False when no area takes it.
inline bool Click(GaugeId id, int x, int y) {
    const MOUSERECT* rows = MouseTableOf(id);
    int end = 1;
    while (rows[end].rect_type != MOUSE_RECT_EOL) ++end;
    for (int i = end - 1; i >= 1; --i) {
        const MOUSERECT& parent = rows[i];
        if (parent.rect_type != MOUSE_RECT_PARENT) continue;
        const PIXBOX& box = parent.relative_box;
        if (x < box.x || y < box.y || x >= box.x + box.size_x || y >= box.y + box.size_y) continue;
        for (int c = i + 1; rows[c].rect_type == MOUSE_RECT_CHILD; ++c) {
            const PIXBOX& child = rows[c].relative_box;
            int cx = x - box.x, cy = y - box.y;
            if (cx >= child.x && cy >= child.y && cx < child.x + child.size_x && cy < child.y + child.size_y &&
                rows[c].mouse_function != nullptr) {
                PIXPOINT point{cx, cy};
                rows[c].mouse_function(&point, MOUSE_LEFTSINGLE);
                return true;
            }
        }
    }
    return false;
}
}  // namespace test_support
