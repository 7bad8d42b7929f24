// orbhost.h: the C interface between the Linux platform layer, compiled into
// the module, and the program that hosts the module (orbsim, or a test).
//
// The host exports `orbhost_interface`; the platform layer looks it up in the
// main program at run time. Without it the module behaves as on a machine
// without the simulator's add-ons: no FSUIPC window, a null SimConnect handle.
#pragma once

#include <cstdint>

extern "C" {

// A drawing context handed to the module as an HDC: the element's pixels.
// 32-bit premultiplied ARGB, as cairo's CAIRO_FORMAT_ARGB32 and GDI's DIB sections.
constexpr uint32_t kOrbDeviceContextMagic = 0x4F524244;  // "ORBD"
struct OrbDeviceContext {
    uint32_t magic;          // kOrbDeviceContextMagic
    uint32_t* pixels;        // owned by the host
    int width;
    int height;
    int stride_bytes;
};

// One string drawn by GdipDrawString, as the host's `text_drawn_box` sees it.
// Boxes are axis-aligned in device pixels, after the world transform; a
// layout rectangle of zero size (text at a point) gives a box of zero size.
struct OrbDrawnText {
    void* hdc;                  // the device context drawn on
    const char* utf8;           // the string, UTF-8, as drawn (all its lines)
    double layout_x, layout_y;  // the layout rectangle's box
    double layout_width, layout_height;
    double text_x, text_y;      // the box of the laid-out lines (their cells)
    double text_width, text_height;
    double baseline_x, baseline_y;  // start of the first line's baseline
    double angle_deg;           // baseline direction, degrees clockwise from +x
    uint32_t argb;              // brush colour
    const char* font_family;    // family as the module named it ("Arial")
    const char* font_face;      // the installed face that drew it ("Liberation Sans")
    double font_size_px;        // em height in device pixels
    int font_style;             // GDI+ FontStyle bits: 1 bold, 2 italic, 4 underline, 8 strikeout
    int line_count;             // lines after wrapping
};

struct OrbHostInterface {
    int version;             // 1, 2 with text_drawn_box, 3 with the keyboard
    // Window messages: FindWindowExA and SendMessageA end here.
    void* (*find_window)(const char* class_name, const char* window_name);
    intptr_t (*send_message)(void* window, unsigned message, uintptr_t wparam, intptr_t lparam);
    // SimConnect: the three calls the module makes. Results are HRESULTs.
    long (*simconnect_open)(void** handle, const char* name);
    long (*simconnect_close)(void* handle);
    long (*simconnect_flight_plan_load)(void* handle, const char* path);
    // Drawing: every string drawn on a device context, UTF-8, in device pixels
    // (the layout box), with its colour and font, so that a host can read a
    // screen. May be null.
    void (*text_drawn)(void* hdc, const char* utf8, double x, double y, double width, double height,
                       uint32_t argb, const char* font_family, double font_size_px, int font_style);
    // Version 2: the same strings with both boxes, the baseline and the angle.
    // May be null.
    void (*text_drawn_box)(const OrbDrawnText* text);
    // Version 3: the PC keyboard. The state of its keys, one byte a
    // DirectInput scan code, bit 0x80 down; the result is 0 while the
    // simulator's window is in the background (the device's input is lost),
    // and the state is filled either way. May be null.
    int (*keyboard_state)(uint8_t state[256]);
    // The thread keyboard hook: the host passes each key stroke meant for the
    // simulator through `proc` first (code 0, the virtual key, the key
    // message's lParam); a result other than 0 keeps it from the simulator.
    // Null removes the hook. May be null.
    void (*keyboard_hook)(intptr_t (*proc)(int code, uintptr_t wparam, intptr_t lparam));
};

// Exported by the host program; may be absent.
typedef const OrbHostInterface* (*OrbHostInterfaceFn)(void);
}
