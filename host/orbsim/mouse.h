// mouse.h: delivering a click through a gauge instance's mouse table.
//
// The table is read as the simulator reads it: parent rows open a box
// (relative to the enclosing parent; an empty box at the top level is the
// whole gauge), child rows inside a hit parent are tried in order, and the
// first child under the point whose flags take the click gets it. Its
// function is called with the relative-point record of the FSX generation:
// the point relative to the child's box, then the instance's header.
#pragma once

#include "gauge_store.h"

namespace orbsim {

constexpr int kMaxMouseTableRows = 2048;   // a table longer than this has lost its end row

struct ClickResult {
    bool delivered = false;                // a child row took the click
    int row = -1;                          // its index in the table
    int relative_x = 0, relative_y = 0;    // the point handed over
    bool handler_result = false;           // what the function returned
};

// A click at bezel pixel x, y of the instance with the given mouse flags.
ClickResult DeliverClick(GaugeInstance& inst, int x, int y, FLAGS32 flags);

}  // namespace orbsim
