// attitude_rig.h: what the attitude displays' tests share: a page drawn from
// given inputs on a surface of any size (with the strings it drew recorded),
// and lookups of a string's colour and place.
#pragma once

#include "display/attitude.h"
#include "nd_fixture.h"

#include <string>

namespace attitude_rig {

using nd_test::Frame;
using PageFrom = void (*)(const DisplaySurface&, const AttitudeInputs&);

// The page drawn from `in` on a width x height surface scaled from its
// design canvas; a picture for a person also gets the display's black
// background and smoothing.
inline Frame DrawPage(PageFrom page, const AttitudeInputs& in, int width, int height, float design_width,
                      float design_height, bool picture = false) {
    Frame frame(width, height);
    test_canvas::TextHost host;
    {
        gdi::Graphics graphics(frame.canvas.hdc());
        DisplaySurface surface;
        surface.graphics = &graphics;
        surface.width = width;
        surface.height = height;
        surface.scale_x = static_cast<float>(width) / design_width;
        surface.scale_y = static_cast<float>(height) / design_height;
        ResetToDesign(surface);
        if (picture) {
            graphics.SetSmoothing(SmoothingModeAntiAlias);
            gdi::SolidBrush black(palette::kBlack);
            graphics.FillRectangle(black, 0, 0, static_cast<int>(design_width), static_cast<int>(design_height));
        }
        page(surface, in);
    }
    frame.seen = host.seen();
    return frame;
}

// The colour a string was drawn in, 0 when it was not drawn.
inline ARGB ColourOf(const Frame& f, const char* text) {
    const test_canvas::Seen* s = f.Find(text);
    return s ? s->box.argb : 0;
}
// The middle of a string's line box in surface pixels, far off when not drawn.
inline double MiddleY(const Frame& f, const char* text) {
    const test_canvas::Seen* s = f.Find(text);
    return s ? s->box.text_y + s->box.text_height / 2 : -1e9;
}

}  // namespace attitude_rig
