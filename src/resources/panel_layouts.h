// panel_layouts.h: where the keys, knobs, lamps and legends stand on the
// gauges' bezels.
//
// The bezel bitmaps are drawn from these tables (tools/make_bitmaps), and the
// control panels' icon layers take their boxes from kIconSpecs, so that a lit
// button or a turned knob always lands on the cap the bezel shows. Boxes are
// x, y, width, height in bezel pixels, the same boxes as the gauges' click
// areas wherever those are fixed; the GNS letter and digit keys, whose places
// are free, are fixed here and the keypad's click areas use them.
//
// Index:
//   [SECTION] Kinds and records
//   [SECTION] Key caps and placards
//   [SECTION] Knobs
//   [SECTION] Icon layers
//   [SECTION] Look-ups
#pragma once

#include "frame/gauge_table.h"

#include <array>
#include <cstdint>

// [SECTION] Kinds and records
enum class CapKind : uint8_t {
    Key,         // a rubber key cap with a white legend (CDU keypads)
    LineKey,     // a blank line-select key beside a screen
    PushButton,  // a square push button with an annunciator strip above its legend
    SoftKey,     // a blank key under a screen whose legend the screen writes
    SplitButton, // a push button whose face is a two-line annunciator, each half lit alone
    Placard,     // engraved text on the panel, not a control
    RoundPlate,  // a sunken round plate under a group of keys, not a control
    DimLamp,     // an annunciator that never lights (decoration)
};

// Small drawn symbols, since legends need arrows and pointer shapes that the
// label fonts may lack.
enum class Glyph : uint8_t { None, Up, Down, Left, Right, Circle, Diamond };

struct CapSpec {
    GaugeId gauge;        // base gauge of the layout (twins share it, see LayoutGauge)
    int x, y, w, h;       // bezel pixels
    CapKind kind;
    const char* label;    // first legend line; null for none
    const char* label2;   // second legend line; null for none
    Glyph glyph;          // drawn under (or instead of) the legend
};

constexpr int kMaxKnobLegends = 8;  // the busiest knob has seven positions

struct KnobSpec {
    GaugeId gauge;
    int x, y, w, h;                                    // the click box; the knob is the circle inside
    const char* title;                                 // engraved under the knob; null for none
    std::array<const char*, kMaxKnobLegends> legends;  // positions, from the leftmost clockwise
    int legend_count;                                  // 0: a plain knob (a "-" and "+" at its sides)
    int rest_position;                                 // where the bezel's own pointer stands
};

// Roles of the icon layers that the bitmaps draw.
enum class IconRole : uint8_t {
    LitButton,     // the push button or key at the layer's box, lit
    KnobPosition,  // the knob at the layer's box, turned to `position`
    LitHalf,       // one half of a split annunciator button: `position` 0 top, 1 bottom
    Lamp,          // an annunciator lamp with `label`, lit (the unlit lamp is on the bezel)
    ExecBar,       // the light bar of an execute key
    FailFlag,      // a red failure flag with `label` in the screen's top-left corner
};

struct IconSpec {
    GaugeId gauge;
    int layer;             // layer number in the gauge's chain
    IconRole role;
    int x, y, w, h;        // where the layer sits (control panels); 0 size: LayerOf decides
    int position;          // knob position or annunciator half
    const char* label;     // lamp legend
};

// [SECTION] Key caps and placards
namespace panel_layouts_detail {
using G = GaugeId;
using K = CapKind;
using Y = Glyph;

// The GNS keypad: 6 + 6 keys either side of ENTER, then two rows of 13.
constexpr int kGnsKey = 30;                       // square caps
constexpr int kGnsRow1Left[6] = {22, 57, 92, 127, 162, 197};
constexpr int kGnsRow1Right[6] = {318, 353, 388, 423, 458, 493};
constexpr int kGnsPitch = 39;                      // rows 2 and 3, from x 22
}  // namespace panel_layouts_detail

// clang-format off
inline constexpr CapSpec kCapSpecs[] = {
#define PL_ panel_layouts_detail::
    // ---- SMITHS_FMS: line-select keys (46 x 34 boxes, caps drawn inside)
    {GaugeId::SMITHS_FMS, 7, 68, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 7, 100, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 7, 132, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 7, 165, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 7, 197, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 7, 230, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 379, 68, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 379, 100, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 379, 132, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 379, 165, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 379, 197, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 379, 230, 46, 34, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    // function keys
    {GaugeId::SMITHS_FMS, 51, 298, 44, 30, CapKind::Key, "INIT", "REF", Glyph::None},
    {GaugeId::SMITHS_FMS, 104, 298, 44, 30, CapKind::Key, "RTE", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 153, 298, 44, 30, CapKind::Key, "CLB", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 206, 298, 44, 30, CapKind::Key, "CRZ", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 258, 298, 44, 30, CapKind::Key, "DES", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 51, 338, 44, 30, CapKind::Key, "DIR", "INTC", Glyph::None},
    {GaugeId::SMITHS_FMS, 104, 338, 44, 30, CapKind::Key, "LEGS", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 153, 338, 44, 30, CapKind::Key, "DEP", "ARR", Glyph::None},
    {GaugeId::SMITHS_FMS, 206, 338, 44, 30, CapKind::Key, "HOLD", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 258, 338, 44, 30, CapKind::Key, "PROG", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 318, 338, 44, 30, CapKind::Key, "EXEC", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 104, 377, 44, 30, CapKind::Key, "FIX", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 51, 418, 46, 34, CapKind::Key, "PREV", "PAGE", Glyph::None},
    {GaugeId::SMITHS_FMS, 104, 418, 46, 34, CapKind::Key, "NEXT", "PAGE", Glyph::None},
    // letters, five a row, Z alone
    {GaugeId::SMITHS_FMS, 172, 381, 36, 36, CapKind::Key, "A", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 212, 381, 36, 36, CapKind::Key, "B", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 252, 381, 36, 36, CapKind::Key, "C", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 293, 381, 36, 36, CapKind::Key, "D", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 332, 381, 36, 36, CapKind::Key, "E", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 172, 422, 36, 36, CapKind::Key, "F", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 212, 422, 36, 36, CapKind::Key, "G", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 252, 422, 36, 36, CapKind::Key, "H", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 293, 422, 36, 36, CapKind::Key, "I", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 332, 422, 36, 36, CapKind::Key, "J", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 172, 461, 36, 36, CapKind::Key, "K", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 212, 461, 36, 36, CapKind::Key, "L", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 252, 461, 36, 36, CapKind::Key, "M", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 293, 461, 36, 36, CapKind::Key, "N", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 332, 461, 36, 36, CapKind::Key, "O", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 172, 502, 36, 36, CapKind::Key, "P", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 212, 502, 36, 36, CapKind::Key, "Q", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 252, 502, 36, 36, CapKind::Key, "R", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 293, 502, 36, 36, CapKind::Key, "S", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 332, 502, 36, 36, CapKind::Key, "T", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 172, 542, 36, 36, CapKind::Key, "U", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 212, 542, 36, 36, CapKind::Key, "V", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 252, 542, 36, 36, CapKind::Key, "W", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 293, 542, 36, 36, CapKind::Key, "X", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 332, 542, 36, 36, CapKind::Key, "Y", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 172, 582, 36, 36, CapKind::Key, "Z", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 212, 582, 36, 36, CapKind::Key, "SP", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 252, 582, 36, 36, CapKind::Key, "DEL", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 293, 582, 36, 36, CapKind::Key, "/", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 332, 582, 36, 36, CapKind::Key, "CLR", nullptr, Glyph::None},
    // digits
    {GaugeId::SMITHS_FMS, 51, 461, 34, 34, CapKind::Key, "1", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 90, 461, 34, 34, CapKind::Key, "2", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 130, 461, 34, 34, CapKind::Key, "3", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 51, 502, 34, 34, CapKind::Key, "4", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 90, 502, 34, 34, CapKind::Key, "5", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 130, 502, 34, 34, CapKind::Key, "6", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 51, 542, 34, 34, CapKind::Key, "7", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 90, 542, 34, 34, CapKind::Key, "8", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 130, 542, 34, 34, CapKind::Key, "9", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 51, 582, 34, 34, CapKind::Key, ".", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 90, 582, 34, 34, CapKind::Key, "0", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 130, 582, 34, 34, CapKind::Key, "+/-", nullptr, Glyph::None},
    // annunciators that never light on this unit
    {GaugeId::SMITHS_FMS, 8, 490, 36, 14, CapKind::DimLamp, "FAIL", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 372, 466, 36, 14, CapKind::DimLamp, "DSPY", nullptr, Glyph::None},
    {GaugeId::SMITHS_FMS, 372, 490, 36, 14, CapKind::DimLamp, "OFST", nullptr, Glyph::None},

    // ---- GNSXLS: top keys, HOLD, line keys, paging column, ENTER, BACK/CLR
    {GaugeId::GNSXLS, 55, 11, 36, 28, CapKind::Key, "NAV", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 99, 11, 36, 28, CapKind::Key, "VNAV", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 188, 11, 36, 28, CapKind::Key, "FPL", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 363, 11, 36, 28, CapKind::Key, "PERF", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 428, 48, 36, 28, CapKind::Key, "HOLD", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 60, 70, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 60, 115, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 60, 160, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 60, 204, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 57, 247, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 390, 70, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 390, 115, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 390, 160, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 390, 204, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 390, 247, 24, 17, CapKind::LineKey, nullptr, nullptr, Glyph::None},
    {GaugeId::GNSXLS, 18, 140, 30, 38, CapKind::Key, "PREV", nullptr, Glyph::Up},
    {GaugeId::GNSXLS, 18, 185, 30, 38, CapKind::Key, "NEXT", nullptr, Glyph::Down},
    {GaugeId::GNSXLS, 18, 228, 30, 38, CapKind::Key, "D->", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 242, 310, 62, 30, CapKind::Key, "ENTER", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 430, 262, 34, 26, CapKind::Key, "BACK", "CLR", Glyph::None},
    // letters and digits (places of this module's own choosing)
    {GaugeId::GNSXLS, PL_ kGnsRow1Left[0], 310, 30, 30, CapKind::Key, "A", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Left[1], 310, 30, 30, CapKind::Key, "B", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Left[2], 310, 30, 30, CapKind::Key, "C", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Left[3], 310, 30, 30, CapKind::Key, "D", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Left[4], 310, 30, 30, CapKind::Key, "E", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Left[5], 310, 30, 30, CapKind::Key, "F", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Right[0], 310, 30, 30, CapKind::Key, "G", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Right[1], 310, 30, 30, CapKind::Key, "H", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Right[2], 310, 30, 30, CapKind::Key, "I", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Right[3], 310, 30, 30, CapKind::Key, "J", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Right[4], 310, 30, 30, CapKind::Key, "K", nullptr, Glyph::None},
    {GaugeId::GNSXLS, PL_ kGnsRow1Right[5], 310, 30, 30, CapKind::Key, "L", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 0 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "M", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 1 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "N", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 2 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "O", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 3 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "P", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 4 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "Q", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 5 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "R", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 6 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "S", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 7 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "T", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 8 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "U", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 9 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "V", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 10 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "W", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 11 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "X", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 12 * PL_ kGnsPitch, 350, 30, 30, CapKind::Key, "Y", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 0 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "Z", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 1 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "1", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 2 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "2", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 3 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "3", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 4 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "4", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 5 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "5", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 6 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "6", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 7 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "7", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 8 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "8", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 9 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "9", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 10 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "0", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 11 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "*", nullptr, Glyph::None},
    {GaugeId::GNSXLS, 22 + 12 * PL_ kGnsPitch, 392, 30, 30, CapKind::Key, "#", nullptr, Glyph::None},

    // ---- MCU: twelve mode keys, ENTER, the rocker's four arrows
    {GaugeId::MCU, 40, 224, 70, 25, CapKind::Key, "TO", nullptr, Glyph::None},
    {GaugeId::MCU, 127, 224, 70, 25, CapKind::Key, "FPLN", nullptr, Glyph::None},
    {GaugeId::MCU, 213, 222, 70, 25, CapKind::Key, "LNAV", nullptr, Glyph::None},
    {GaugeId::MCU, 40, 258, 70, 25, CapKind::Key, "DIRTO", nullptr, Glyph::None},
    {GaugeId::MCU, 127, 258, 70, 25, CapKind::Key, "HOLD", nullptr, Glyph::None},
    {GaugeId::MCU, 213, 258, 70, 25, CapKind::Key, "LEGS", "EDIT", Glyph::None},
    {GaugeId::MCU, 40, 292, 70, 25, CapKind::Key, "LEGS", nullptr, Glyph::None},
    {GaugeId::MCU, 127, 292, 70, 25, CapKind::Key, "PREV", nullptr, Glyph::None},
    {GaugeId::MCU, 213, 292, 70, 25, CapKind::Key, "ALT/FL", nullptr, Glyph::None},
    {GaugeId::MCU, 40, 324, 70, 25, CapKind::Key, "APT", nullptr, Glyph::None},
    {GaugeId::MCU, 127, 324, 70, 25, CapKind::Key, "NEXT", nullptr, Glyph::None},
    {GaugeId::MCU, 213, 324, 70, 25, CapKind::Key, "KBD", nullptr, Glyph::None},
    {GaugeId::MCU, 350, 324, 70, 25, CapKind::Key, "ENTER", nullptr, Glyph::None},
    {GaugeId::MCU, 333, 218, 108, 108, CapKind::RoundPlate, nullptr, nullptr, Glyph::None},
    {GaugeId::MCU, 371, 224, 32, 32, CapKind::Key, nullptr, nullptr, Glyph::Up},
    {GaugeId::MCU, 371, 290, 32, 32, CapKind::Key, nullptr, nullptr, Glyph::Down},
    {GaugeId::MCU, 338, 256, 32, 32, CapKind::Key, nullptr, nullptr, Glyph::Left},
    {GaugeId::MCU, 404, 256, 32, 32, CapKind::Key, nullptr, nullptr, Glyph::Right},

    // ---- C17_MFCP
    {GaugeId::C17_MFCP, 94, 198, 50, 50, CapKind::PushButton, "NAV", nullptr, Glyph::None},
    {GaugeId::C17_MFCP, 162, 198, 50, 50, CapKind::PushButton, "APT", nullptr, Glyph::None},
    {GaugeId::C17_MFCP, 35, 131, 48, 48, CapKind::PushButton, "SYM", "1", Glyph::None},
    {GaugeId::C17_MFCP, 344, 130, 48, 48, CapKind::PushButton, "SYM", "2", Glyph::None},
    {GaugeId::C17_MFCP, 84, 291, 42, 38, CapKind::Key, "MAP", nullptr, Glyph::Left},
    {GaugeId::C17_MFCP, 84, 332, 42, 38, CapKind::Key, "MAP", nullptr, Glyph::Right},
    {GaugeId::C17_MFCP, 356, 291, 42, 38, CapKind::Key, "MAP", nullptr, Glyph::Left},
    {GaugeId::C17_MFCP, 356, 332, 42, 38, CapKind::Key, "MAP", nullptr, Glyph::Right},
    {GaugeId::C17_MFCP, 170, 24, 147, 18, CapKind::Placard, "MULTIFUNCTION CONTROL", nullptr, Glyph::None},

    // ---- EFS50_EHSI_CNTR
    {GaugeId::EFS50_EHSI_CNTR, 135, 46, 45, 30, CapKind::PushButton, "FULL", nullptr, Glyph::None},
    {GaugeId::EFS50_EHSI_CNTR, 198, 46, 45, 30, CapKind::PushButton, "ARC", nullptr, Glyph::None},
    {GaugeId::EFS50_EHSI_CNTR, 260, 46, 45, 30, CapKind::PushButton, "NAV", nullptr, Glyph::None},
    {GaugeId::EFS50_EHSI_CNTR, 324, 46, 45, 30, CapKind::PushButton, "RNG", nullptr, Glyph::Up},
    {GaugeId::EFS50_EHSI_CNTR, 135, 83, 45, 30, CapKind::PushButton, "BRG", nullptr, Glyph::Circle},
    {GaugeId::EFS50_EHSI_CNTR, 198, 83, 45, 30, CapKind::PushButton, "BRG", nullptr, Glyph::Diamond},
    {GaugeId::EFS50_EHSI_CNTR, 260, 83, 45, 30, CapKind::PushButton, "TFC", nullptr, Glyph::None},
    {GaugeId::EFS50_EHSI_CNTR, 324, 83, 45, 30, CapKind::PushButton, "RNG", nullptr, Glyph::Down},
    {GaugeId::EFS50_EHSI_CNTR, 198, 120, 45, 30, CapKind::PushButton, "LNAV", nullptr, Glyph::None},
    {GaugeId::EFS50_EHSI_CNTR, 260, 120, 45, 30, CapKind::PushButton, "BDRY", nullptr, Glyph::None},

    // ---- HW_B737_EFIS_CNTR
    {GaugeId::HW_B737_EFIS_CNTR, 122, 174, 34, 36, CapKind::PushButton, "ADF", nullptr, Glyph::None},
    {GaugeId::HW_B737_EFIS_CNTR, 157, 174, 34, 36, CapKind::PushButton, "STA", nullptr, Glyph::None},
    {GaugeId::HW_B737_EFIS_CNTR, 190, 174, 34, 36, CapKind::PushButton, "ARPT", nullptr, Glyph::None},
    {GaugeId::HW_B737_EFIS_CNTR, 223, 174, 34, 36, CapKind::PushButton, "BDRY", nullptr, Glyph::None},
    {GaugeId::HW_B737_EFIS_CNTR, 256, 174, 34, 36, CapKind::PushButton, "WPT", nullptr, Glyph::None},
    {GaugeId::HW_B737_EFIS_CNTR, 256, 48, 14, 14, CapKind::Key, "TFC", nullptr, Glyph::None},
    {GaugeId::HW_B737_EFIS_CNTR, 245, 109, 38, 38, CapKind::PushButton, "DATA", nullptr, Glyph::None},
    {GaugeId::HW_B737_EFIS_CNTR, 16, 14, 80, 14, CapKind::Placard, "EFIS CONTROL", nullptr, Glyph::None},

    // ---- MD11_EFIS_CTRL
    {GaugeId::MD11_EFIS_CTRL, 96, 6, 34, 23, CapKind::PushButton, "BDRY", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 96, 39, 34, 23, CapKind::PushButton, "DATA", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 96, 71, 34, 23, CapKind::PushButton, "WPT", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 96, 104, 34, 23, CapKind::PushButton, "VOR", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 96, 138, 34, 23, CapKind::PushButton, "ARPT", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 155, 22, 34, 23, CapKind::PushButton, "MAP", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 155, 60, 34, 23, CapKind::PushButton, "PLAN", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 210, 22, 34, 23, CapKind::PushButton, "VOR", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 210, 60, 34, 23, CapKind::PushButton, "APPR", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 263, 22, 34, 23, CapKind::PushButton, "TRFC", nullptr, Glyph::None},
    {GaugeId::MD11_EFIS_CTRL, 150, 105, 34, 23, CapKind::PushButton, "VOR", nullptr, Glyph::Circle},
    {GaugeId::MD11_EFIS_CTRL, 150, 138, 34, 23, CapKind::PushButton, "ADF", nullptr, Glyph::Circle},
    {GaugeId::MD11_EFIS_CTRL, 191, 105, 34, 23, CapKind::PushButton, "RNG", nullptr, Glyph::Up},
    {GaugeId::MD11_EFIS_CTRL, 191, 138, 34, 23, CapKind::PushButton, "RNG", nullptr, Glyph::Down},
    {GaugeId::MD11_EFIS_CTRL, 232, 105, 34, 23, CapKind::PushButton, "VOR", nullptr, Glyph::Diamond},
    {GaugeId::MD11_EFIS_CTRL, 14, 80, 70, 12, CapKind::Placard, "ND", "DISPLAY", Glyph::None},

    // ---- A300_EFIS_CTRL
    {GaugeId::A300_EFIS_CTRL, 94, 232, 55, 37, CapKind::PushButton, "WPT", nullptr, Glyph::None},
    {GaugeId::A300_EFIS_CTRL, 158, 232, 55, 37, CapKind::PushButton, "VOR.D", nullptr, Glyph::None},
    {GaugeId::A300_EFIS_CTRL, 221, 232, 55, 37, CapKind::PushButton, "NDB", nullptr, Glyph::None},
    {GaugeId::A300_EFIS_CTRL, 284, 232, 55, 37, CapKind::PushButton, "ARPT", nullptr, Glyph::None},
    {GaugeId::A300_EFIS_CTRL, 21, 92, 55, 37, CapKind::PushButton, "TFC", nullptr, Glyph::None},

    // ---- P1000_MFD (bezel): the soft keys under the screen
    {GaugeId::P1000_MFD, 70, 382, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD, 107, 382, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD, 144, 382, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD, 182, 382, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD, 220, 382, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},

    // ---- P1000_MFD_CNTR
    {GaugeId::P1000_MFD_CNTR, 65, 25, 55, 55, CapKind::PushButton, "PLAN", nullptr, Glyph::None},
    {GaugeId::P1000_MFD_CNTR, 131, 25, 60, 55, CapKind::PushButton, "TFC", nullptr, Glyph::None},
    {GaugeId::P1000_MFD_CNTR, 70, 135, 40, 25, CapKind::Key, nullptr, nullptr, Glyph::Up},
    {GaugeId::P1000_MFD_CNTR, 70, 160, 40, 25, CapKind::Key, nullptr, nullptr, Glyph::Down},
    {GaugeId::P1000_MFD_CNTR, 150, 165, 40, 40, CapKind::PushButton, "APT", nullptr, Glyph::None},
    {GaugeId::P1000_MFD_CNTR, 215, 114, 40, 40, CapKind::PushButton, "NAV", nullptr, Glyph::None},
    {GaugeId::P1000_MFD_CNTR, 60, 192, 60, 12, CapKind::Placard, "RANGE", nullptr, Glyph::None},
    {GaugeId::P1000_MFD_CNTR, 330, 100, 220, 20, CapKind::Placard, "MFD CONTROL", nullptr, Glyph::None},

    // ---- P1000_MFD_NB_CNTR: the same key row for the bezel-less display
    {GaugeId::P1000_MFD_NB_CNTR, 70, 18, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD_NB_CNTR, 107, 18, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD_NB_CNTR, 144, 18, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD_NB_CNTR, 182, 18, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},
    {GaugeId::P1000_MFD_NB_CNTR, 220, 18, 30, 24, CapKind::SoftKey, nullptr, nullptr, Glyph::None},

    // ---- PROLINE4_MFD_CTRL
    {GaugeId::PROLINE4_MFD_CTRL, 177, 55, 26, 26, CapKind::PushButton, "TFC", nullptr, Glyph::None},
    {GaugeId::PROLINE4_MFD_CTRL, 43, 15, 26, 26, CapKind::PushButton, "BRG", nullptr, Glyph::Circle},
    {GaugeId::PROLINE4_MFD_CTRL, 43, 54, 26, 26, CapKind::PushButton, "BRG", nullptr, Glyph::Diamond},
    {GaugeId::PROLINE4_MFD_CTRL, 222, 30, 76, 12, CapKind::Placard, "MFD", nullptr, Glyph::None},

    // ---- PROLINE4_AUX_CTRL
    {GaugeId::PROLINE4_AUX_CTRL, 28, 28, 36, 36, CapKind::PushButton, "TFC", nullptr, Glyph::None},
    {GaugeId::PROLINE4_AUX_CTRL, 73, 28, 36, 36, CapKind::PushButton, "WPT", nullptr, Glyph::None},
    {GaugeId::PROLINE4_AUX_CTRL, 116, 28, 36, 36, CapKind::PushButton, "VOR", nullptr, Glyph::None},
    {GaugeId::PROLINE4_AUX_CTRL, 161, 28, 36, 36, CapKind::PushButton, "NDB", nullptr, Glyph::None},
    {GaugeId::PROLINE4_AUX_CTRL, 205, 28, 36, 36, CapKind::PushButton, "APT", nullptr, Glyph::None},
    {GaugeId::PROLINE4_AUX_CTRL, 250, 28, 36, 36, CapKind::PushButton, "BDRY", nullptr, Glyph::None},
    {GaugeId::PROLINE4_AUX_CTRL, 28, 8, 258, 12, CapKind::Placard, "MAP DISPLAY", nullptr, Glyph::None},

    // ---- MD80_EHSI_CTRL
    {GaugeId::MD80_EHSI_CTRL, 166, 48, 44, 54, CapKind::SplitButton, "ADF", "VOR", Glyph::None},
    {GaugeId::MD80_EHSI_CTRL, 40, 150, 52, 34, CapKind::PushButton, "NAV", nullptr, Glyph::None},
    {GaugeId::MD80_EHSI_CTRL, 97, 150, 52, 34, CapKind::PushButton, "ARPT", nullptr, Glyph::None},
    {GaugeId::MD80_EHSI_CTRL, 155, 150, 52, 34, CapKind::PushButton, "BDRY", nullptr, Glyph::None},
    {GaugeId::MD80_EHSI_CTRL, 215, 150, 52, 34, CapKind::PushButton, "WPT", nullptr, Glyph::None},
    {GaugeId::MD80_EHSI_CTRL, 264, 150, 52, 34, CapKind::PushButton, "TFC", nullptr, Glyph::None},
    {GaugeId::MD80_EHSI_CTRL, 230, 58, 44, 14, CapKind::DimLamp, "MAP", nullptr, Glyph::None},
    {GaugeId::MD80_EHSI_CTRL, 40, 196, 276, 10, CapKind::Placard, "EHSI CONTROL", nullptr, Glyph::None},

    // ---- display bezels: engraved names
    {GaugeId::EFS50_EADI, 152, 322, 80, 14, CapKind::Placard, "EADI", nullptr, Glyph::None},
    {GaugeId::EFS50_EHSI, 152, 322, 80, 14, CapKind::Placard, "EHSI", nullptr, Glyph::None},
    {GaugeId::EFS50_TCAS, 152, 322, 80, 14, CapKind::Placard, "TCAS", nullptr, Glyph::None},
    {GaugeId::HW_MD11_ND, 105, 286, 80, 14, CapKind::Placard, "ND", nullptr, Glyph::None},
    {GaugeId::DU_1000_EHSI, 156, 364, 80, 14, CapKind::Placard, "EHSI", nullptr, Glyph::None},
    {GaugeId::PROLINE4_MFD, 121, 340, 80, 14, CapKind::Placard, "MFD", nullptr, Glyph::None},
    {GaugeId::DEBUG, 54, 232, 80, 14, CapKind::Placard, "DEBUG", nullptr, Glyph::None},

    // ---- mode buttons and window openers: the whole gauge is one button
    {GaugeId::LNAV, 0, 0, 50, 49, CapKind::PushButton, "LNAV", nullptr, Glyph::None},
    {GaugeId::VNAV, 0, 0, 50, 49, CapKind::PushButton, "VNAV", nullptr, Glyph::None},
    {GaugeId::BDRY, 0, 0, 50, 49, CapKind::PushButton, "BDRY", nullptr, Glyph::None},
    {GaugeId::EFIS_CTRL_OPEN, 0, 0, 50, 49, CapKind::PushButton, "EFIS", nullptr, Glyph::None},
    {GaugeId::EHSI_CNTR_OPEN, 0, 0, 50, 49, CapKind::PushButton, "EHSI", nullptr, Glyph::None},
    {GaugeId::EHSI_TCAS_OPEN, 0, 0, 50, 49, CapKind::PushButton, "TCAS", nullptr, Glyph::None},
    {GaugeId::FMS_OPEN, 0, 0, 50, 49, CapKind::PushButton, "FMS", nullptr, Glyph::None},
    {GaugeId::FMS2_OPEN, 0, 0, 50, 49, CapKind::PushButton, "FMS", "2", Glyph::None},
    {GaugeId::MCU_OPEN, 0, 0, 50, 49, CapKind::PushButton, "MCU", nullptr, Glyph::None},
    {GaugeId::P1000_MFD_OPEN, 0, 0, 50, 49, CapKind::PushButton, "MFD", nullptr, Glyph::None},
    {GaugeId::P1000_MFD_CNTR_OPEN, 0, 0, 50, 49, CapKind::PushButton, "MFD", "CTL", Glyph::None},
#undef PL_
};

// [SECTION] Knobs
inline constexpr KnobSpec kKnobSpecs[] = {
    {GaugeId::C17_MFCP, 66, 426, 82, 82, "RANGE", {}, 0, 0},
    {GaugeId::EFS50_EHSI_CNTR, 54, 100, 55, 55, "HDG", {}, 0, 0},
    {GaugeId::EFS50_EHSI_CNTR, 60, 18, 36, 40, "DH", {}, 0, 0},
    {GaugeId::EFS50_EHSI_CNTR, 384, 106, 54, 54, "CRS", {}, 0, 0},
    // Mode 1 to 7 from the left; the bezel's pointer rests at PLN (7), the one
    // mode without a layer of its own.
    {GaugeId::HW_B737_EFIS_CNTR, 145, 35, 52, 44, "MODE", {"NAV", "VOR", "XNAV", "XVOR", "MAP", "CTR", "PLN"}, 7, 6},
    // Range 5 to 320; 20 has no layer, so the bezel's pointer rests there.
    {GaugeId::HW_B737_EFIS_CNTR, 238, 35, 52, 44, "RANGE", {"5", "10", "20", "40", "80", "160", "320"}, 7, 2},
    // Modes 0, 1, 2 have layers; the rest position is mode 3.
    {GaugeId::A300_EFIS_CTRL, 53, 145, 76, 76, "MODE", {"ROSE", "VOR", "MAP", "NAV"}, 4, 3},
    // 15 (and below), 30, 120, 240 have layers; 60 is the rest position.
    {GaugeId::A300_EFIS_CTRL, 240, 145, 76, 76, "RANGE", {"15", "30", "60", "120", "240"}, 5, 2},
    {GaugeId::A300_EFIS_CTRL, 285, 48, 54, 54, "HDG", {}, 0, 0},
    {GaugeId::P1000_MFD, 19, 387, 36, 36, nullptr, {}, 0, 0},
    {GaugeId::P1000_MFD, 274, 387, 36, 36, nullptr, {}, 0, 0},
    {GaugeId::P1000_MFD_NB_CNTR, 19, 23, 36, 36, nullptr, {}, 0, 0},
    {GaugeId::P1000_MFD_NB_CNTR, 274, 23, 36, 36, nullptr, {}, 0, 0},
    // Concentric pair: the outer ring steps the mode, the inner knob the range.
    {GaugeId::PROLINE4_MFD_CTRL, 120, 13, 68, 46, "MODE / RANGE", {}, 0, 0},
    {GaugeId::PROLINE4_MFD_CTRL, 137, 13, 34, 46, nullptr, {}, 0, 0},
    {GaugeId::MD80_EHSI_CTRL, 43, 48, 56, 56, "MODE", {"MAP", "ARC", "VOR", "NAV"}, 4, 0},
    {GaugeId::MD80_EHSI_CTRL, 291, 48, 56, 56, "RANGE", {}, 0, 0},
};

// [SECTION] Icon layers
// Layer numbers as in the gauges' chains. The boxes of the control panels are
// the boxes of their buttons and knobs above; the CDU lamps and the mode
// buttons take their boxes from LayerOf.
inline constexpr IconSpec kIconSpecs[] = {
    {GaugeId::SMITHS_FMS, 2, IconRole::ExecBar, 0, 0, 0, 0, 0, nullptr},
    {GaugeId::SMITHS_FMS, 3, IconRole::Lamp, 0, 0, 0, 0, 0, "MSG"},
    {GaugeId::MCU, 2, IconRole::Lamp, 0, 0, 0, 0, 0, "LNAV"},
    {GaugeId::MCU, 3, IconRole::Lamp, 0, 0, 0, 0, 0, "HOLD"},
    {GaugeId::EFS50_EADI, 2, IconRole::FailFlag, 0, 0, 0, 0, 0, "ATT"},
    {GaugeId::LNAV, 1, IconRole::LitButton, 0, 0, 0, 0, 0, nullptr},
    {GaugeId::VNAV, 1, IconRole::LitButton, 0, 0, 0, 0, 0, nullptr},
    // HW_B737_EFIS_CNTR: layers 1 to 6 the mode knob at modes 1 to 6, 7 to 11
    // the range knob at 10, 40, 80, 160, 320.
    {GaugeId::HW_B737_EFIS_CNTR, 1, IconRole::KnobPosition, 145, 35, 52, 44, 0, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 2, IconRole::KnobPosition, 145, 35, 52, 44, 1, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 3, IconRole::KnobPosition, 145, 35, 52, 44, 2, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 4, IconRole::KnobPosition, 145, 35, 52, 44, 3, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 5, IconRole::KnobPosition, 145, 35, 52, 44, 4, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 6, IconRole::KnobPosition, 145, 35, 52, 44, 5, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 7, IconRole::KnobPosition, 238, 35, 52, 44, 1, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 8, IconRole::KnobPosition, 238, 35, 52, 44, 3, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 9, IconRole::KnobPosition, 238, 35, 52, 44, 4, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 10, IconRole::KnobPosition, 238, 35, 52, 44, 5, nullptr},
    {GaugeId::HW_B737_EFIS_CNTR, 11, IconRole::KnobPosition, 238, 35, 52, 44, 6, nullptr},
    // A300_EFIS_CTRL: 1 to 4 the range knob at 15, 30, 120, 240; 5 to 7 the
    // mode knob at modes 0, 1, 2; 8 to 11 the map switches in the order WPT,
    // VOR.D, NDB, ARPT; 12 the traffic switch.
    {GaugeId::A300_EFIS_CTRL, 1, IconRole::KnobPosition, 240, 145, 76, 76, 0, nullptr},
    {GaugeId::A300_EFIS_CTRL, 2, IconRole::KnobPosition, 240, 145, 76, 76, 1, nullptr},
    {GaugeId::A300_EFIS_CTRL, 3, IconRole::KnobPosition, 240, 145, 76, 76, 3, nullptr},
    {GaugeId::A300_EFIS_CTRL, 4, IconRole::KnobPosition, 240, 145, 76, 76, 4, nullptr},
    {GaugeId::A300_EFIS_CTRL, 5, IconRole::KnobPosition, 53, 145, 76, 76, 0, nullptr},
    {GaugeId::A300_EFIS_CTRL, 6, IconRole::KnobPosition, 53, 145, 76, 76, 1, nullptr},
    {GaugeId::A300_EFIS_CTRL, 7, IconRole::KnobPosition, 53, 145, 76, 76, 2, nullptr},
    {GaugeId::A300_EFIS_CTRL, 8, IconRole::LitButton, 94, 232, 55, 37, 0, nullptr},
    {GaugeId::A300_EFIS_CTRL, 9, IconRole::LitButton, 158, 232, 55, 37, 0, nullptr},
    {GaugeId::A300_EFIS_CTRL, 10, IconRole::LitButton, 221, 232, 55, 37, 0, nullptr},
    {GaugeId::A300_EFIS_CTRL, 11, IconRole::LitButton, 284, 232, 55, 37, 0, nullptr},
    {GaugeId::A300_EFIS_CTRL, 12, IconRole::LitButton, 21, 92, 55, 37, 0, nullptr},
    // PROLINE4_AUX_CTRL: layer k lights the k-th button from the left:
    // traffic, intersections, navaids, NDB, airports, ATC boundaries.
    {GaugeId::PROLINE4_AUX_CTRL, 1, IconRole::LitButton, 28, 28, 36, 36, 0, nullptr},
    {GaugeId::PROLINE4_AUX_CTRL, 2, IconRole::LitButton, 73, 28, 36, 36, 0, nullptr},
    {GaugeId::PROLINE4_AUX_CTRL, 3, IconRole::LitButton, 116, 28, 36, 36, 0, nullptr},
    {GaugeId::PROLINE4_AUX_CTRL, 4, IconRole::LitButton, 161, 28, 36, 36, 0, nullptr},
    {GaugeId::PROLINE4_AUX_CTRL, 5, IconRole::LitButton, 205, 28, 36, 36, 0, nullptr},
    {GaugeId::PROLINE4_AUX_CTRL, 6, IconRole::LitButton, 250, 28, 36, 36, 0, nullptr},
    // MD80_EHSI_CTRL: 1 to 5 the buttons of the lower row from the left
    // (navaids, airports, ATC boundaries, intersections, traffic); 6 and 7 the
    // ADF and VOR halves of the bearing pointer switch; 8 the MAP lamp.
    {GaugeId::MD80_EHSI_CTRL, 1, IconRole::LitButton, 40, 150, 52, 34, 0, nullptr},
    {GaugeId::MD80_EHSI_CTRL, 2, IconRole::LitButton, 97, 150, 52, 34, 0, nullptr},
    {GaugeId::MD80_EHSI_CTRL, 3, IconRole::LitButton, 155, 150, 52, 34, 0, nullptr},
    {GaugeId::MD80_EHSI_CTRL, 4, IconRole::LitButton, 215, 150, 52, 34, 0, nullptr},
    {GaugeId::MD80_EHSI_CTRL, 5, IconRole::LitButton, 264, 150, 52, 34, 0, nullptr},
    {GaugeId::MD80_EHSI_CTRL, 6, IconRole::LitHalf, 166, 48, 44, 27, 0, nullptr},
    {GaugeId::MD80_EHSI_CTRL, 7, IconRole::LitHalf, 166, 75, 44, 27, 1, nullptr},
    {GaugeId::MD80_EHSI_CTRL, 8, IconRole::Lamp, 230, 58, 44, 14, 0, "MAP"},
};
// clang-format on

// [SECTION] Look-ups
// The gauge whose layout a gauge shows: twins that differ only in colour or
// luminous flag share their base's keys and lamps.
constexpr GaugeId LayoutGauge(GaugeId id) {
    switch (id) {
    case GaugeId::SMITHS_FMS_BR: return GaugeId::SMITHS_FMS;
    case GaugeId::GNSXLS_LM: return GaugeId::GNSXLS;
    case GaugeId::MCU_LM: return GaugeId::MCU;
    case GaugeId::EFS50_EHSI_CNTR_LM: return GaugeId::EFS50_EHSI_CNTR;
    case GaugeId::HW_B737_EFIS_CNTR_BR: return GaugeId::HW_B737_EFIS_CNTR;
    case GaugeId::HW_B737_ND_BR: return GaugeId::HW_B737_ND;
    case GaugeId::EHSI_CNTR_OPEN_LM: return GaugeId::EHSI_CNTR_OPEN;
    case GaugeId::FMS_OPEN_LM: return GaugeId::FMS_OPEN;
    default: return id;
    }
}

// The icon record of a gauge's layer, or null.
inline const IconSpec* IconSpecOf(GaugeId id, int layer) {
    GaugeId base = LayoutGauge(id);
    for (const IconSpec& icon : kIconSpecs)
        if (icon.gauge == base && icon.layer == layer) return &icon;
    return nullptr;
}
