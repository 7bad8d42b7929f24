// mouse.cpp: the hit test of a mouse table and the call of its handler.
#include "mouse.h"

#include "host_state.h"
#include "panel_table.h"

#include <vector>

namespace orbsim {

namespace {
struct OpenParent {
    int x = 0, y = 0;          // absolute origin in bezel pixels
    bool hit = false;          // the point lies in this parent and all around it
};

bool Inside(int px, int py, int x, int y, int w, int h) { return w > 0 && h > 0 && px >= x && py >= y && px < x + w && py < y + h; }
}  // namespace

ClickResult DeliverClick(GaugeInstance& inst, int x, int y, FLAGS32 flags) {
    ClickResult result;
    MOUSERECT* rows = inst.header.mouse_rect;
    if (rows == nullptr) return result;
    std::vector<OpenParent> open;
    int taker = -1, taker_x = 0, taker_y = 0;   // the child row that takes the click
    for (int i = 0; i < kMaxMouseTableRows && rows[i].rect_type != MOUSE_RECT_EOL; ++i) {
        MOUSERECT& row = rows[i];
        const PIXBOX& box = row.relative_box;
        switch (row.rect_type) {
        case MOUSE_RECT_PARENT: {
            OpenParent parent;
            if (open.empty()) {
                parent.x = box.x;
                parent.y = box.y;
                bool whole = box.size_x == 0 && box.size_y == 0;
                parent.hit = whole || Inside(x, y, box.x, box.y, box.size_x, box.size_y);
            } else {
                const OpenParent& outer = open.back();
                parent.x = outer.x + box.x;
                parent.y = outer.y + box.y;
                parent.hit = outer.hit && Inside(x, y, parent.x, parent.y, box.size_x, box.size_y);
            }
            open.push_back(parent);
            break;
        }
        case MOUSE_RECT_CHILD: {
            if (open.empty() || !open.back().hit) break;
            int cx = open.back().x + box.x, cy = open.back().y + box.y;
            if (!Inside(x, y, cx, cy, box.size_x, box.size_y)) break;
            if ((static_cast<FLAGS32>(row.mouse_flags) & flags) == 0) break;
            // A later area lies over an earlier one (a small knob over the
            // middle of a larger one): the last row that holds the point wins.
            taker = i;
            taker_x = cx;
            taker_y = cy;
            break;
        }
        case MOUSE_RECT_END_PARENT:
            if (!open.empty()) open.pop_back();
            break;
        default:
            break;  // user rows carry tool tips only
        }
    }
    if (taker < 0) return result;
    MOUSERECT& row = rows[taker];
    result.delivered = true;
    result.row = taker;
    result.relative_x = x - taker_x;
    result.relative_y = y - taker_y;
    if (row.mouse_function != nullptr) {
        // The point is the first member of the record the FSX generation passes.
        MOUSECALLBACK record{};
        record.relative_point = PIXPOINT{result.relative_x, result.relative_y};
        record.user_data = &inst.header;
        record.mouse = &row;
        record.screen_point = PIXPOINT{inst.x + x, inst.y + y};
        result.handler_result = row.mouse_function(&record.relative_point, flags) != 0;
    } else if (row.event_id != 0) {
        DeliverKeyEvent(g_host, static_cast<uint32_t>(row.event_id), 0, true);
    }
    return result;
}

}  // namespace orbsim
