// gauge_table.h: the 54 gauges of the module, their layers and mouse tables.
//
// The simulator knows a gauge by its header; the module knows it by GaugeId.
// Each gauge has its own small callback and mouse trampolines that carry the
// id, because the simulator hands every placed instance a copy of the header.
#pragma once

#include <panel_sdk.h>

#include <array>
#include <cstdint>

// [SECTION] Gauge ids, in the order of the module's gauge list
enum class GaugeId : int {
    SMITHS_FMS, SMITHS_FMS_BR, GNSXLS, GNSXLS_LM, MCU, MCU_LM, C17_MFCP,
    EFS50_EADI, EFS50_EADI_NB, EFS50_EHSI, EFS50_EHSI_NB, EFS50_TCAS,
    HW_B737_ND, HW_B737_ND_BR, HW_B737_ND_NB, HW_MD11_ND, HW_MD11_ND_NB,
    DU_1000_EHSI, DU_1000_EHSI_NB, P1000_MFD, P1000_MFD_NB, PROLINE4_MFD,
    PROLINE4_MFD_NB, PROLINE_EICAS, B777_PFD_NB, A320_EADI_NB, MD80_EHSI_NB, C17_MFD,
    EFS50_EHSI_CNTR, EFS50_EHSI_CNTR_LM, HW_B737_EFIS_CNTR, HW_B737_EFIS_CNTR_BR,
    MD11_EFIS_CTRL, A300_EFIS_CTRL, P1000_MFD_CNTR, P1000_MFD_NB_CNTR,
    PROLINE4_MFD_CTRL, PROLINE4_AUX_CTRL, MD80_EHSI_CTRL,
    LNAV, VNAV, BDRY,
    EFIS_CTRL_OPEN, EHSI_CNTR_OPEN, EHSI_CNTR_OPEN_LM, EHSI_TCAS_OPEN, FMS_OPEN, FMS_OPEN_LM,
    FMS2_OPEN, MCU_OPEN, P1000_MFD_OPEN, P1000_MFD_CNTR_OPEN,
    SERVER, DEBUG,
    Count
};

constexpr int kGaugeCount = static_cast<int>(GaugeId::Count);
static_assert(kGaugeCount == 54);

enum class GaugeFamily : int { Cdu, Display, ControlPanel, ModeButton, WindowOpener, Service };

// One layer of a gauge's element chain, in bezel pixels.
struct LayerSpec {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool surface = false;  // has a drawing context (the picture is drawn here)
    bool icon = false;     // an icon element (lamp, switch position)
};

constexpr int kMaxLayers = 14;          // bezel, surface and up to 12 icon layers
constexpr int kMaxMouseRows = 240;      // the largest table has 212 rows and its end row

struct GaugeSpec {
    const char* name;
    GaugeFamily family;
    int window;                         // PanelIdent toggled (openers) or tested (displays); 0 none
    int bezel_width;                    // 0: no bezel
    int bezel_height;
    int surface_x, surface_y, surface_width, surface_height;  // surface_width 0: no surface
    int icon_layers;                    // further icon layers behind the surface
    int mouse_rows;                     // rows of the mouse table without the end-of-table row
    const char* log_line;               // written at each callback while the log is open
    bool has_callback;
    bool luminous;                      // _LM: luminous flag on the bezel layer
};

const GaugeSpec& SpecOf(GaugeId id);
const char* GaugeName(GaugeId id);
GaugeId GaugeIdByName(const char* name);  // Count when unknown
constexpr int Index(GaugeId id) { return static_cast<int>(id); }

// Resource number of a layer's bitmap.
constexpr int kResourceBase = 0x1000;
constexpr int ResourceIdOf(GaugeId id, int layer) { return kResourceBase + Index(id) * 0x20 + layer; }

// [SECTION] Mouse areas
// A clickable area of a gauge: a parent row with one child row (a button) or
// two (a knob: the left half turns down, the right half up).
struct MouseArea {
    PIXBOX box = {};
    CURSOR_TYPE cursor = CURSOR_HAND;
    FLAGS32 flags = MOUSE_LEFTSINGLE;
    MOUSE_FUNCTION first = nullptr;     // the button, or the knob's left (down) half
    MOUSE_FUNCTION second = nullptr;    // the knob's right (up) half; null for a button
    bool stacked = false;               // a knob split into upper (second, up) and lower (first, down) halves
};

constexpr int kMaxMouseAreas = 80;
struct MouseAreaList {
    std::array<MouseArea, kMaxMouseAreas> areas{};
    int count = 0;
    void Add(const MouseArea& area) {
        if (count < kMaxMouseAreas) areas[count++] = area;
    }
    void Button(int x, int y, int w, int h, MOUSE_FUNCTION fn, FLAGS32 flags = MOUSE_LEFTSINGLE) {
        Add({{x, y, w, h}, CURSOR_HAND, flags, fn, nullptr});
    }
    void Knob(int x, int y, int w, int h, MOUSE_FUNCTION down, MOUSE_FUNCTION up, FLAGS32 flags = MOUSE_LEFTSINGLE) {
        Add({{x, y, w, h}, CURSOR_HAND, flags, down, up});
    }
    // A knob whose upper half steps up and lower half down.
    void StackedKnob(int x, int y, int w, int h, MOUSE_FUNCTION down, MOUSE_FUNCTION up,
                     FLAGS32 flags = MOUSE_LEFTSINGLE) {
        Add({{x, y, w, h}, CURSOR_HAND, flags, down, up, true});
    }
};

// Writes the SDK form of a table: outer parent, per area parent + children +
// end-of-parent, the closing end row and the end-of-table row. Returns the
// row count without the end-of-table row.
int BuildMouseTable(const MouseAreaList& areas, const PIXBOX& whole, MOUSERECT* rows, int max_rows);

// Pads a list with inert buttons (and knobs, where the count needs them) to
// the row count of the gauge table, for keys whose pages are still to come.
void PadMouseAreas(MouseAreaList& areas, int wanted_rows);
