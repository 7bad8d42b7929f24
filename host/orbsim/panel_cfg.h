// panel_cfg.h: reading a panel description in the simulator's panel.cfg form.
//
// [WindowNN] sections with ident=, visible=, size_mm=, position= and
// gaugeNN=module!NAME, x, y, w, h, param lines; [VCockpitNN] sections are
// taken as windows that are always visible. Other sections and keys are the
// simulator's business and are skipped. What orbsim cannot make sense of in a
// window section is an error naming the file and line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbsim {

constexpr size_t kMaxPanelLineLength = 1024;   // panel.cfg lines are short; longer ones are not text
constexpr int kMaxPanelWindows = 64;
constexpr int kMaxPanelGauges = 256;           // placed instances in one panel
constexpr size_t kMaxGaugeParameterLength = 255;
constexpr int kVirtualCockpitIdent = -1;       // windows that no ident reaches

struct PanelGaugeLine {
    std::string module;                        // before '!', e.g. "orb1"
    std::string gauge;                         // after '!', e.g. "LNAV"
    int x = 0, y = 0;                          // panel pixels
    int w = 0, h = 0;                          // 0: the bitmap's size
    std::string parameters;                    // the last field, may be empty
    int line = 0;                              // where it stands in the file
};

struct PanelWindowDesc {
    std::string section;                       // "Window00", "VCockpit01"
    int ident = 0;                             // 0 the main panel; kVirtualCockpitIdent for a cockpit
    bool virtual_cockpit = false;              // always visible, not toggled
    bool visible = false;                      // at load
    int size_w = 0, size_h = 0;                // size_mm, as written
    int position = 0;
    int line = 0;
    std::vector<PanelGaugeLine> gauges;        // in file order
};

struct PanelDesc {
    std::vector<PanelWindowDesc> windows;      // in file order
};

// Parses the text of a panel file. On the first error returns false with
// `error` set to "LINE: message" (the caller adds the file name).
bool ParsePanelText(std::string_view text, PanelDesc& out, std::string& error);

// Reads and parses a file; `error` is "FILE:LINE: message" or "FILE: message".
bool ReadPanelFile(const std::string& path, PanelDesc& out, std::string& error);

}  // namespace orbsim
