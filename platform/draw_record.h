// draw_record.h: every string the GDI+ stand-in draws goes to the host that
// runs the module, so that a host (orbsim, a test) can read a screen as text.
#pragma once

#include <orbhost.h>

namespace platform {
// Hands one drawn string to the host's text callbacks, those it has set.
void RecordDrawnText(const OrbDrawnText& text);
}  // namespace platform
