// gauge_table.cpp: the gauge list of the module.
//
// Index:
//   [SECTION] Gauge specifications (sizes, windows, log lines)
//   [SECTION] Layer chains
//   [SECTION] Mouse tables
//   [SECTION] Headers, element chains and the module linkage
#include "frame/gauge_table.h"

#include "cdu/cdu_mouse.h"
#include "display/control_panels.h"
#include "frame/gauge_callback.h"
#include "frame/module_entry.h"

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
    {"C17_MFCP", F::Cdu, 0, 487, 558, 0, 0, 0, 0, 0, 26, nullptr, true, false},
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

// [SECTION] Layer chains
// Layer 0 is the bezel (or, for gauges without one, a black backing of the
// surface's size, so that the surface stays layer 1); then the surface; then
// the icon layers. C17_MFD is the one gauge whose surface is layer 0.
namespace {
// Icon layers sit on the bezel where their lamp or switch is.
LayerSpec IconLayerOf(GaugeId id, int icon_index) {
    const GaugeSpec& shape = SpecOf(id);
    switch (id) {
    case GaugeId::SMITHS_FMS:
    case GaugeId::SMITHS_FMS_BR:
        // EXEC light bar across the top of the EXEC key; MSG lamp left of the keypad.
        return icon_index == 0 ? LayerSpec{323, 341, 34, 6, false, true} : LayerSpec{8, 466, 36, 14, false, true};
    case GaugeId::MCU:
    case GaugeId::MCU_LM:
        // LNAV and HOLD lamps above their keys.
        return icon_index == 0 ? LayerSpec{223, 201, 50, 14, false, true} : LayerSpec{137, 201, 50, 14, false, true};
    case GaugeId::EFS50_EADI:
        return {51, 42, 280, 262, false, true};
    case GaugeId::LNAV:
    case GaugeId::VNAV:
        return {0, 0, 50, 49, false, true};
    default:
        break;
    }
    if (const LayerSpec* layer = ControlPanelIconLayer(id, icon_index)) return *layer;
    // A lamp strip along the panel's bottom edge.
    int n = shape.icon_layers > 0 ? shape.icon_layers : 1;
    int w = shape.bezel_width / n;
    return {icon_index * w, shape.bezel_height - 10, w, 10, false, true};
}
}  // namespace

int LayerCount(GaugeId id) {
    const GaugeSpec& shape = SpecOf(id);
    if (id == GaugeId::SERVER) return 0;
    if (id == GaugeId::C17_MFD) return 1;
    int layers = 1;  // bezel or backing
    if (shape.surface_width > 0) ++layers;
    return layers + shape.icon_layers;
}

LayerSpec LayerOf(GaugeId id, int layer) {
    const GaugeSpec& shape = SpecOf(id);
    if (layer < 0 || layer >= LayerCount(id)) return {};
    if (id == GaugeId::C17_MFD) return {0, 0, shape.surface_width, shape.surface_height, true, false};
    if (layer == 0) {
        if (shape.bezel_width > 0) return {0, 0, shape.bezel_width, shape.bezel_height, false, false};
        return {0, 0, shape.surface_width, shape.surface_height, false, false};
    }
    int first_icon = 1;
    if (shape.surface_width > 0) {
        if (layer == 1) return {shape.surface_x, shape.surface_y, shape.surface_width, shape.surface_height, true, false};
        first_icon = 2;
    }
    return IconLayerOf(id, layer - first_icon);
}

// [SECTION] Mouse tables
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

// [SECTION] Headers, element chains and the module linkage
namespace {
// One gauge's element chain: static images and icons linked through their
// null-terminated next-element arrays, as the SDK's macros lay them out.
struct GaugeElements {
    std::array<ELEMENT_STATIC_IMAGE, kMaxLayers> images{};
    std::array<ELEMENT_ICON, kMaxLayers> icons{};
    std::array<std::array<ELEMENT_HEADER*, 2>, kMaxLayers> next{};
    ELEMENT_HEADER* first = nullptr;    // what the header's elements_list points at
};

struct GaugeTableState {
    std::array<GAUGEHDR, kGaugeCount> headers{};
    std::array<GaugeElements, kGaugeCount> elements{};
    std::array<std::array<MOUSERECT, kMaxMouseRows>, kGaugeCount> mouse{};
    std::array<int, kGaugeCount> mouse_rows{};
    std::array<std::array<char, 32>, kGaugeCount> names{};
    bool built = false;
};
GaugeTableState g_table;

void BuildElements(GaugeId id) {
    GaugeElements& e = g_table.elements[Index(id)];
    const GaugeSpec& shape = SpecOf(id);
    int layers = LayerCount(id);
    ELEMENT_HEADER* previous = nullptr;
    for (int k = layers - 1; k >= 0; --k) {
        LayerSpec layer = LayerOf(id, k);
        ELEMENT_HEADER* header;
        FLAGS32 flags = IMAGE_USE_TRANSPARENCY;
        if (layer.icon) {
            ELEMENT_ICON& icon = e.icons[k];
            icon.header.element_type = ELEMENT_TYPE_ICON;
            icon.num_icons = 1;
            header = &icon.header;
            flags |= IMAGE_HIDDEN;  // lamps start dark; layer switching shows them
        } else {
            ELEMENT_STATIC_IMAGE& image = e.images[k];
            image.header.element_type = ELEMENT_TYPE_STATIC_IMAGE;
            header = &image.header;
            if (layer.surface) flags = IMAGE_USE_ERASE | IMAGE_USE_BRIGHT | IMAGE_CREATE_DIBSECTION;
            if (k == 0 && shape.luminous) flags |= IMAGE_USE_LUMINOUS;
        }
        header->resource_id = ResourceIdOf(id, k);
        header->position = PIXPOINT{layer.x, layer.y};
        header->image_flags = static_cast<FLAGS>(flags);
        e.next[k][0] = previous;
        e.next[k][1] = nullptr;
        header->next_element = previous ? e.next[k].data() : nullptr;
        previous = header;
    }
    e.first = previous;
}

void BuildTable() {
    GaugeTableState& t = g_table;
    if (t.built) return;
    t.built = true;
    for (int i = 0; i < kGaugeCount; ++i) {
        auto id = static_cast<GaugeId>(i);
        const GaugeSpec& shape = SpecOf(id);
        std::snprintf(t.names[i].data(), t.names[i].size(), "%s", shape.name);
        BuildElements(id);

        MouseAreaList areas;
        int width = shape.bezel_width > 0 ? shape.bezel_width : shape.surface_width;
        int height = shape.bezel_width > 0 ? shape.bezel_height : shape.surface_height;
        switch (shape.family) {
        case GaugeFamily::Cdu: CduMouseAreas(id, areas); break;
        case GaugeFamily::ControlPanel: ControlPanelMouseAreas(id, areas); break;
        case GaugeFamily::Display:
            if (id == GaugeId::P1000_MFD || id == GaugeId::C17_MFD) ControlPanelMouseAreas(id, areas);
            else if (shape.mouse_rows > 2) areas.Button(0, 0, width, height, GaugeClickHandler(id));
            break;
        case GaugeFamily::ModeButton:
        case GaugeFamily::WindowOpener:
            areas.Button(0, 0, width, height, GaugeClickHandler(id));
            break;
        case GaugeFamily::Service:
            if (id == GaugeId::DEBUG) areas.Button(0, 0, width, height, GaugeClickHandler(id));
            break;
        }
        t.mouse_rows[i] = BuildMouseTable(areas, PIXBOX{0, 0, width, height}, t.mouse[i].data(), kMaxMouseRows);

        GAUGEHDR& h = t.headers[i];
        h.gauge_header_version = GAUGE_HEADER_VERSION_FS700;
        h.gauge_name = t.names[i].data();
        h.elements_list = &t.elements[i].first;
        h.query_routine = CommonQuery;
        h.install_routine = CommonInstall;
        h.initialize_routine = CommonInitialize;
        h.update_routine = CommonUpdate;
        h.generate_routine = CommonGenerate;
        h.draw_routine = CommonDraw;
        h.kill_routine = CommonKill;
        h.size_x_mm = 312;
        h.size_y_mm = 0;
        h.mouse_rect = t.mouse[i].data();
        h.gauge_callback = shape.has_callback ? GaugeCallbackOf(id) : nullptr;
    }
}

// The table is complete before the simulator reads the linkage.
struct TableBuilder {
    TableBuilder() { BuildTable(); }
};
TableBuilder g_table_builder;
}  // namespace

GAUGEHDR& HeaderOf(GaugeId id) {
    BuildTable();
    return g_table.headers[Index(id)];
}

const MOUSERECT* MouseTableOf(GaugeId id) {
    BuildTable();
    return g_table.mouse[Index(id)].data();
}

int MouseRowCount(GaugeId id) {
    BuildTable();
    return g_table.mouse_rows[Index(id)];
}

// The two exports. Their addresses are constants, so the simulator finds a
// complete list whatever the order of static initialisation.
extern "C" {
ORB_EXPORT IMPORT_TABLE ImportTable = {{kPanelsImportId, nullptr}, {0, nullptr}};

ORB_EXPORT MODULE_LINKAGE Linkage = {
    kModuleId, ModuleInit, ModuleDeinit, 0, 0, kModuleVersion,
    {
        &g_table.headers[0], &g_table.headers[1], &g_table.headers[2], &g_table.headers[3],
        &g_table.headers[4], &g_table.headers[5], &g_table.headers[6], &g_table.headers[7],
        &g_table.headers[8], &g_table.headers[9], &g_table.headers[10], &g_table.headers[11],
        &g_table.headers[12], &g_table.headers[13], &g_table.headers[14], &g_table.headers[15],
        &g_table.headers[16], &g_table.headers[17], &g_table.headers[18], &g_table.headers[19],
        &g_table.headers[20], &g_table.headers[21], &g_table.headers[22], &g_table.headers[23],
        &g_table.headers[24], &g_table.headers[25], &g_table.headers[26], &g_table.headers[27],
        &g_table.headers[28], &g_table.headers[29], &g_table.headers[30], &g_table.headers[31],
        &g_table.headers[32], &g_table.headers[33], &g_table.headers[34], &g_table.headers[35],
        &g_table.headers[36], &g_table.headers[37], &g_table.headers[38], &g_table.headers[39],
        &g_table.headers[40], &g_table.headers[41], &g_table.headers[42], &g_table.headers[43],
        &g_table.headers[44], &g_table.headers[45], &g_table.headers[46], &g_table.headers[47],
        &g_table.headers[48], &g_table.headers[49], &g_table.headers[50], &g_table.headers[51],
        &g_table.headers[52], &g_table.headers[53], nullptr,
    },
};
}
