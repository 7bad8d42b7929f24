// gauge_table.cpp: the gauge list of the module.
//
// The table's data, which every layer names; the headers, element chains and
// mouse tables the simulator reads are built from it in gauge_linkage.cpp.
//
// Index:
//   [SECTION] Gauge specifications (sizes, windows, log lines)
//   [SECTION] Mouse tables
#include "frame/gauge_table.h"


#include <cstdio>
#include <cstring>

// [SECTION] Gauge specifications
namespace {
using F = GaugeFamily;
// name, family, window, bezel w/h, surface x/y/w/h, icon layers, rows, log line, callback, luminous
constexpr GaugeSpec kSpecs[kGaugeCount] = {
    {"SMITHS_FMS", F::Cdu, 0, 415, 640, 66, 40, 284, 233, 2, 212, nullptr, true, false},
    {"SMITHS_FMS_BR", F::Cdu, 0, 415, 640, 66, 40, 284, 233, 2, 212, nullptr, true, false},
    {"GNSXLS", F::Cdu, 0, 550, 433, 90, 57, 292, 217, 0, 179, "gnsxls_callback \n", true, false},
    {"GNSXLS_LM", F::Cdu, 0, 550, 433, 90, 57, 292, 217, 0, 176, "gnsxls_lm_callback \n", true, true},
    {"MCU", F::Cdu, 0, 501, 386, 40, 32, 420, 159, 2, 56, nullptr, true, false},
    {"MCU_LM", F::Cdu, 0, 501, 386, 40, 32, 420, 159, 2, 56, "mcu_lm_callback \n", true, true},
    // C17_MFCP: nine working areas (four map keys, the range knob) need 30
    // rows; a 26-row table would leave two of its map keys dead.
    {"C17_MFCP", F::Cdu, 0, 487, 558, 0, 0, 0, 0, 0, 30, nullptr, true, false},
    {"EFS50_EADI", F::Display, 4005, 384, 371, 51, 42, 280, 262, 1, 5, "efs50_eadi_callback \n", true, false},
    {"EFS50_EADI_NB", F::Display, 4005, 0, 0, 0, 0, 280, 262, 0, 5, "efs50_eadi_nb_callback \n", true, false},
    {"EFS50_EHSI", F::Display, 4008, 384, 371, 51, 42, 280, 262, 0, 5, "efs50_ehsi_callback \n", true, false},
    {"EFS50_EHSI_NB", F::Display, 4008, 0, 0, 0, 0, 280, 262, 0, 5, "efs50_ehsi_nb_callback \n", true, false},
    {"EFS50_TCAS", F::Display, 4010, 384, 371, 51, 42, 280, 262, 0, 2, "efs50_tcas_callback \n", true, false},
    {"HW_B737_ND", F::Display, 4011, 281, 337, 18, 25, 247, 294, 0, 5, "hw_b737_ehsi_callback \n", true, false},
    {"HW_B737_ND_BR", F::Display, 4011, 281, 337, 18, 25, 247, 294, 0, 5, "hw_b737_ehsi_br_callback \n", true, false},
    {"HW_B737_ND_NB", F::Display, 4011, 0, 0, 0, 0, 247, 294, 0, 5, "hw_b737_ehsi_nb_callback \n", true, false},
    {"HW_MD11_ND", F::Display, 4014, 291, 319, 20, 28, 246, 241, 0, 5, "hw_md11_nd_callback \n", true, false},
    {"HW_MD11_ND_NB", F::Display, 4014, 0, 0, 0, 0, 246, 241, 0, 5, "hw_md11_nd_nb_callback \n", true, false},
    {"DU_1000_EHSI", F::Display, 4017, 392, 394, 37, 39, 318, 311, 0, 5, "FSAPI du_1000_ehsi_callback \n", true, false},
    {"DU_1000_EHSI_NB", F::Display, 4017, 0, 0, 0, 0, 318, 311, 0, 5, "FSAPI du_1000_ehsi_nb_callback \n", true, false},
    {"P1000_MFD", F::Display, 4002, 326, 433, 28, 33, 272, 314, 0, 28, "p1000_mfd_callback \n", true, false},
    {"P1000_MFD_NB", F::Display, 4002, 0, 0, 0, 0, 272, 314, 0, 5, nullptr, true, false},
    {"PROLINE4_MFD", F::Display, 4018, 322, 368, 38, 40, 247, 285, 0, 5, "proline4_mfd_callback \n", true, false},
    {"PROLINE4_MFD_NB", F::Display, 4018, 0, 0, 0, 0, 247, 285, 0, 5, "proline4_mfd_nb_callback \n", true, false},
    {"PROLINE_EICAS", F::Display, 4018, 0, 0, 0, 0, 486, 110, 0, 5, "proline_eicas_callback \n", true, false},
    {"B777_PFD_NB", F::Display, 4023, 0, 0, 0, 0, 247, 294, 0, 5, "FSAPI d100_callback (B777_PFD) \n", true, false},
    {"A320_EADI_NB", F::Display, 4022, 0, 0, 0, 0, 318, 311, 0, 5, "FSAPI a320_eadi_callback \n", true, false},
    {"MD80_EHSI_NB", F::Display, 4024, 0, 0, 0, 0, 318, 311, 0, 5, "FSAPI md80_ehsi_callback \n", true, false},
    {"C17_MFD", F::Display, 4025, 0, 0, 0, 0, 246, 241, 0, 20, nullptr, true, false},
    {"EFS50_EHSI_CNTR", F::ControlPanel, 0, 500, 169, 0, 0, 0, 0, 0, 44, "efs50_ehsi_cntr_callback \n", true, false},
    {"EFS50_EHSI_CNTR_LM", F::ControlPanel, 0, 500, 169, 0, 0, 0, 0, 0, 44, "efs50_ehsi_cntr_lm_callback \n", true, true},
    {"HW_B737_EFIS_CNTR", F::ControlPanel, 0, 313, 212, 0, 0, 0, 0, 11, 31, "hw_b737_ehsi_cntr_callback \n", true, false},
    {"HW_B737_EFIS_CNTR_BR", F::ControlPanel, 0, 313, 212, 0, 0, 0, 0, 11, 31, "hw_b737_ehsi_cntr_br_callback \n", true, false},
    {"MD11_EFIS_CTRL", F::ControlPanel, 0, 311, 182, 0, 0, 0, 0, 0, 47, "md11_efis_cntr_callback \n", true, false},
    {"A300_EFIS_CTRL", F::ControlPanel, 0, 373, 312, 0, 0, 0, 0, 12, 29, "a300_ehsi_ctrl_callback\n", true, false},
    {"P1000_MFD_CNTR", F::ControlPanel, 0, 605, 234, 0, 0, 0, 0, 0, 18, "p1000_mfd_cntr_callback \n", true, false},
    {"P1000_MFD_NB_CNTR", F::ControlPanel, 0, 326, 72, 0, 0, 0, 0, 0, 25, nullptr, true, false},
    {"PROLINE4_MFD_CTRL", F::ControlPanel, 0, 311, 97, 0, 0, 0, 0, 0, 19, "proline4_mfd_cntr_callback \n", true, false},
    {"PROLINE4_AUX_CTRL", F::ControlPanel, 0, 313, 93, 0, 0, 0, 0, 6, 20, "proline4_mfd_displ_callback \n", true, false},
    {"MD80_EHSI_CTRL", F::ControlPanel, 0, 392, 214, 0, 0, 0, 0, 8, 28, "md80_ehsi_ctrl_callback\n", true, false},
    {"LNAV", F::ModeButton, 0, 50, 49, 0, 0, 0, 0, 1, 5, "lnav_callback \n", true, false},
    {"VNAV", F::ModeButton, 0, 50, 49, 0, 0, 0, 0, 1, 5, "vnav_callback \n", true, false},
    {"BDRY", F::ModeButton, 0, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, true, false},
    {"EFIS_CTRL_OPEN", F::WindowOpener, 4013, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"EHSI_CNTR_OPEN", F::WindowOpener, 4007, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"EHSI_CNTR_OPEN_LM", F::WindowOpener, 4007, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, true},
    {"EHSI_TCAS_OPEN", F::WindowOpener, 4010, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"FMS_OPEN", F::WindowOpener, 4004, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"FMS_OPEN_LM", F::WindowOpener, 4004, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, true},
    {"FMS2_OPEN", F::WindowOpener, 4012, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"MCU_OPEN", F::WindowOpener, 4001, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"P1000_MFD_OPEN", F::WindowOpener, 4002, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"P1000_MFD_CNTR_OPEN", F::WindowOpener, 4003, 50, 49, 0, 0, 0, 0, 0, 5, nullptr, false, false},
    {"SERVER", F::Service, 0, 0, 0, 0, 0, 0, 0, 0, 2, "server_callback \n", true, false},
    {"DEBUG", F::Service, 0, 188, 256, 20, 38, 148, 185, 0, 5, nullptr, true, false},
};
}  // namespace

const GaugeSpec& SpecOf(GaugeId id) { return kSpecs[Index(id)]; }
const char* GaugeName(GaugeId id) { return kSpecs[Index(id)].name; }

GaugeId GaugeIdByName(const char* name) {
    if (name == nullptr) return GaugeId::Count;
    for (int i = 0; i < kGaugeCount; ++i)
        if (std::strcmp(kSpecs[i].name, name) == 0) return static_cast<GaugeId>(i);
    return GaugeId::Count;
}

// [SECTION] Mouse tables
namespace {
BOOL_SDK FSAPI InertKey(PIXPOINT*, FLAGS32) { return 0; }
}  // namespace

void PadMouseAreas(MouseAreaList& areas, int wanted_rows) {
    // Rows: outer parent and closing row, then 3 a button and 4 a knob.
    int rows = 2;
    for (int i = 0; i < areas.count; ++i) rows += areas.areas[i].second ? 4 : 3;
    int missing = wanted_rows - rows;
    while (missing > 0 && missing % 3 != 0 && missing >= 4) {
        areas.Knob(0, 0, 0, 0, InertKey, InertKey);
        missing -= 4;
    }
    while (missing >= 3) {
        areas.Button(0, 0, 0, 0, InertKey);
        missing -= 3;
    }
}

int BuildMouseTable(const MouseAreaList& list, const PIXBOX& whole, MOUSERECT* rows, int max_rows) {
    int n = 0;
    auto put = [&](MOUSE_RECT_TYPE type, PIXBOX box, CURSOR_TYPE cursor, FLAGS32 flags, MOUSE_FUNCTION fn) {
        if (n < max_rows - 1) rows[n++] = MOUSERECT{type, box, cursor, 0, static_cast<FLAGS>(flags), 0, fn, nullptr};
    };
    put(MOUSE_RECT_PARENT, PIXBOX{0, 0, 0, 0}, CURSOR_NONE, 0, nullptr);
    for (int i = 0; i < list.count; ++i) {
        const MouseArea& area = list.areas[i];
        put(MOUSE_RECT_PARENT, area.box, area.cursor, 0, nullptr);
        if (area.second == nullptr) {
            put(MOUSE_RECT_CHILD, PIXBOX{0, 0, area.box.size_x, area.box.size_y}, area.cursor, area.flags, area.first);
        } else if (area.stacked) {
            int half = area.box.size_y / 2;
            put(MOUSE_RECT_CHILD, PIXBOX{0, 0, area.box.size_x, half}, CURSOR_UPARROW, area.flags, area.second);
            put(MOUSE_RECT_CHILD, PIXBOX{0, half, area.box.size_x, area.box.size_y - half}, CURSOR_DOWNARROW,
                area.flags, area.first);
        } else {
            int half = area.box.size_x / 2;
            put(MOUSE_RECT_CHILD, PIXBOX{0, 0, half, area.box.size_y}, CURSOR_DOWNARROW, area.flags, area.first);
            put(MOUSE_RECT_CHILD, PIXBOX{half, 0, area.box.size_x - half, area.box.size_y}, CURSOR_UPARROW,
                area.flags, area.second);
        }
        put(MOUSE_RECT_END_PARENT, PIXBOX{0, 0, 0, 0}, CURSOR_NONE, 0, nullptr);
    }
    put(MOUSE_RECT_END_PARENT, PIXBOX{0, 0, 0, 0}, CURSOR_NONE, 0, nullptr);
    (void)whole;
    rows[n] = MOUSERECT{MOUSE_RECT_EOL, {}, CURSOR_NONE, 0, 0, 0, nullptr, nullptr};
    return n;
}
