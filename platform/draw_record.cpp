// draw_record.cpp: delivery of drawn strings to the host. The first callback
// has the layout box only; hosts of version 2 also get the full record.
#include "draw_record.h"

#include "host_link.h"

namespace platform {

void RecordDrawnText(const OrbDrawnText& text) {
    const OrbHostInterface* host = Host();
    if (host == nullptr) return;
    if (host->text_drawn != nullptr) {
        host->text_drawn(text.hdc, text.utf8, text.layout_x, text.layout_y, text.layout_width, text.layout_height,
                         text.argb, text.font_family, text.font_size_px, text.font_style);
    }
    if (host->version >= 2 && host->text_drawn_box != nullptr) host->text_drawn_box(&text);
}

}  // namespace platform
