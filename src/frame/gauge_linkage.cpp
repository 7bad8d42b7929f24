// gauge_linkage.cpp: what the simulator reads of the module: each gauge's
// header with its element chain and mouse table, and the two exports.
//
// It stands above every family, because a header carries the family's
// callback and a mouse table the family's handlers.
//
// Index:
//   [SECTION] Layer chains
//   [SECTION] Headers, element chains and the module linkage
#include "frame/gauge_linkage.h"

#include "cdu/cdu_mouse.h"
#include "display/control_panels.h"
#include "frame/gauge_callback.h"
#include "frame/module_entry.h"
#include "frame/sim_access.h"

#include <cstdio>
#include <cstring>

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
        case GaugeFamily::Cdu:
            // The C-17 panel is a control panel in the CDU's frame.
            if (id == GaugeId::C17_MFCP) ControlPanelMouseAreas(id, areas);
            else CduMouseAreas(id, areas);
            break;
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
