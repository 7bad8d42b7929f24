// gauge_store.cpp: building the instances of a panel and walking them
// through the panel services, as the simulator does.
//
// Index:
//   [SECTION] Finding gauges
//   [SECTION] Element chains and layers
//   [SECTION] Building a panel
//   [SECTION] Services
//   [SECTION] Frames
//   [SECTION] Windows
#include "gauge_store.h"

#include <chrono>
#include <ctime>
#include <cstdio>
#include <cstring>

namespace orbsim {

namespace {
bool SameNoCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z') x = static_cast<char>(x + 32);
        if (y >= 'A' && y <= 'Z') y = static_cast<char>(y + 32);
        if (x != y) return false;
    }
    return true;
}

void Service(GaugeInstance& inst, int service, uint32_t extra) {
    if (service >= 0 && service < kServiceCount) ++inst.services[static_cast<size_t>(service)];
    if (inst.header.gauge_callback != nullptr) inst.header.gauge_callback(&inst.header, service, extra);
}

FLAGS32 FlagsOf(const ELEMENT_HEADER* e) { return static_cast<FLAGS32>(e->image_flags); }
void SetFlags(ELEMENT_HEADER* e, FLAGS32 flags) { e->image_flags = static_cast<FLAGS>(flags); }
}  // namespace

// [SECTION] Finding gauges
const GAUGEHDR* FindModuleGauge(const MODULE_LINKAGE* linkage, const std::string& name) {
    if (linkage == nullptr) return nullptr;
    for (int i = 0; i <= kMaxLinkedGauges && linkage->gauge_header_ptr[i] != nullptr; ++i) {
        const GAUGEHDR* h = linkage->gauge_header_ptr[i];
        if (h->gauge_name != nullptr && std::strncmp(h->gauge_name, name.c_str(), 64) == 0 &&
            std::strlen(h->gauge_name) == name.size())
            return h;
    }
    return nullptr;
}

// [SECTION] Element chains and layers
namespace {
size_t ElementSize(const ELEMENT_HEADER* e) {
    switch (e->element_type) {
    case ELEMENT_TYPE_STATIC_IMAGE: return sizeof(ELEMENT_STATIC_IMAGE);
    case ELEMENT_TYPE_ICON: return sizeof(ELEMENT_ICON);
    default: return sizeof(ELEMENT_HEADER);  // kinds the module doesn't use: only the header is read
    }
}

// Copies the tree below `source` depth first; layer k is the k-th element met.
ELEMENT_HEADER* CopyTree(GaugeInstance& inst, const ELEMENT_HEADER* source, ELEMENT_HEADER* previous, bool& too_many) {
    if (source == nullptr) return nullptr;
    if (static_cast<int>(inst.layers.size()) >= kMaxElementsPerGauge) {
        too_many = true;
        return nullptr;
    }
    size_t size = ElementSize(source);
    inst.element_storage.emplace_back(new uint8_t[size]);
    auto* copy = reinterpret_cast<ELEMENT_HEADER*>(inst.element_storage.back().get());
    std::memcpy(copy, source, size);
    copy->gauge_header = &inst.header;
    copy->previous_element = previous;
    copy->next_element = nullptr;
    Layer layer;
    layer.element = copy;
    inst.layers.push_back(std::move(layer));
    if (source->next_element == nullptr) return copy;
    int children = 0;
    while (children < kMaxElementChildren && source->next_element[children] != nullptr) ++children;
    inst.next_arrays.emplace_back(new ELEMENT_HEADER*[static_cast<size_t>(children) + 1]);
    ELEMENT_HEADER** next = inst.next_arrays.back().get();
    for (int i = 0; i < children; ++i) next[i] = CopyTree(inst, source->next_element[i], copy, too_many);
    next[children] = nullptr;
    copy->next_element = next;
    return copy;
}

// Bitmaps from the module's resources and, for DIB-section layers, a drawing
// context whose pixels start as the bitmap.
void MakeLayers(GaugeStore& store, GaugeInstance& inst) {
    for (Layer& layer : inst.layers) {
        ELEMENT_HEADER* e = layer.element;
        layer.bitmap = LayerBitmap(store.resources, static_cast<uint32_t>(e->resource_id), inst.name.c_str());
        SetFlags(e, FlagsOf(e) | IMAGE_ON_SCREEN);
        if (e->element_type != ELEMENT_TYPE_STATIC_IMAGE || !(FlagsOf(e) & IMAGE_CREATE_DIBSECTION)) continue;
        layer.dc_pixels = layer.bitmap.pixels;
        layer.dc = std::make_unique<OrbDeviceContext>();
        layer.dc->magic = kOrbDeviceContextMagic;
        layer.dc->pixels = layer.dc_pixels.data();
        layer.dc->width = layer.bitmap.width;
        layer.dc->height = layer.bitmap.height;
        layer.dc->stride_bytes = layer.bitmap.width * 4;
        auto* image = reinterpret_cast<ELEMENT_STATIC_IMAGE*>(e);
        image->hdc = layer.dc.get();
        image->hbmp = layer.dc_pixels.data();
    }
}
}  // namespace

// [SECTION] Building a panel
bool BuildInstances(GaugeStore& store, const PanelDesc& panel, const MODULE_LINKAGE* linkage,
                    const std::string& panel_path, std::string& error) {
    ClearInstances(store);
    store.panel_path = panel_path;
    for (const PanelWindowDesc& w : panel.windows) {
        store.windows.push_back({w.section, w.ident, w.virtual_cockpit, w.visible});
        int window_index = static_cast<int>(store.windows.size()) - 1;
        for (const PanelGaugeLine& g : w.gauges) {
            if (!SameNoCase(g.module, "orb1")) continue;  // an XML gauge, or skipped (xml_gauge.cpp)
            const GAUGEHDR* source = FindModuleGauge(linkage, g.gauge);
            if (source == nullptr) {
                error = panel_path + ":" + std::to_string(g.line) + ": the module has no gauge '" + g.gauge + "'";
                ClearInstances(store);
                return false;
            }
            auto inst = std::make_unique<GaugeInstance>();
            inst->name = g.gauge;
            for (const auto& other : store.instances)
                if (other->name == g.gauge) ++inst->ordinal;
            inst->window = window_index;
            inst->x = g.x;
            inst->y = g.y;
            inst->w = g.w;
            inst->h = g.h;
            inst->parameters = g.parameters;
            inst->panel_line = g.line;
            inst->source = source;
            inst->header = *source;
            inst->header.parameters = inst->parameters.data();
            inst->header.elements_list = &inst->first_element;
            inst->header.position = PIXPOINT{g.x, g.y};
            bool too_many = false;
            const ELEMENT_HEADER* first = source->elements_list != nullptr ? *source->elements_list : nullptr;
            inst->first_element = CopyTree(*inst, first, nullptr, too_many);
            if (too_many) {
                error = panel_path + ":" + std::to_string(g.line) + ": gauge '" + g.gauge +
                        "' has more than 64 elements; its chain is not a list";
                ClearInstances(store);
                return false;
            }
            MakeLayers(store, *inst);
            int width = g.w > 0 ? g.w : (inst->layers.empty() ? 0 : inst->layers[0].bitmap.width);
            int height = g.h > 0 ? g.h : (inst->layers.empty() ? 0 : inst->layers[0].bitmap.height);
            inst->header.size = PIXPOINT{width, height};
            store.instances.push_back(std::move(inst));
        }
    }
    store.loaded = true;
    return true;
}

void ClearInstances(GaugeStore& store) {
    store.instances.clear();
    store.windows.clear();
    store.loaded = false;
}

// [SECTION] Services
void RunLoadServices(GaugeStore& store) {
    auto* resource = reinterpret_cast<PVOID>(static_cast<uintptr_t>(store.resource_handle));
    for (auto& inst : store.instances) {
        GAUGEHDR& h = inst->header;
        Service(*inst, PANEL_SERVICE_PRE_INSTALL, store.resource_handle);
        if (h.install_routine) h.install_routine(resource);
        Service(*inst, PANEL_SERVICE_POST_INSTALL, store.resource_handle);
        Service(*inst, PANEL_SERVICE_PRE_INITIALIZE, 0);
        if (h.initialize_routine) h.initialize_routine();
        Service(*inst, PANEL_SERVICE_POST_INITIALIZE, 0);
        Service(*inst, PANEL_SERVICE_CONNECT_TO_WINDOW, static_cast<uint32_t>(inst->window + 1));
    }
}

void RunKillServices(GaugeStore& store) {
    for (auto& inst : store.instances) {
        GAUGEHDR& h = inst->header;
        Service(*inst, PANEL_SERVICE_PRE_KILL, 0);
        if (h.kill_routine) h.kill_routine();
        Service(*inst, PANEL_SERVICE_POST_KILL, 0);
        Service(*inst, PANEL_SERVICE_DISCONNECT, static_cast<uint32_t>(inst->window + 1));
    }
}

// [SECTION] Frames
namespace {
// Microseconds of this thread's CPU time: the module's work, not the time
// other programs on the machine took from it meanwhile.
double ThreadCpuMicroseconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e6 + static_cast<double>(t.tv_nsec) / 1e3;
}
}  // namespace

void DrawFrame(GaugeStore& store) {
    // The module's own work is timed apart from the host's bookkeeping
    // (digests, strings), for `measure`.
    double module_us = 0;
    for (auto& inst_ptr : store.instances) {
        GaugeInstance& inst = *inst_ptr;
        const PanelWindow& window = store.windows[static_cast<size_t>(inst.window)];
        if (!window.virtual_cockpit && !window.visible) continue;
        GAUGEHDR& h = inst.header;
        double start = ThreadCpuMicroseconds();
        Service(inst, PANEL_SERVICE_PRE_UPDATE, 0);
        if (h.update_routine) h.update_routine();
        double updated = ThreadCpuMicroseconds();
        inst.text_now.clear();
        double draw_start = ThreadCpuMicroseconds();
        Service(inst, PANEL_SERVICE_PRE_DRAW, 0);
        if (h.draw_routine) h.draw_routine();
        double drawn = ThreadCpuMicroseconds();
        inst.last_module_us = (updated - start) + (drawn - draw_start);
        module_us += inst.last_module_us;
        ++inst.draws;
        // A layer whose on-screen bit the gauge cleared is taken anew, and marked again.
        bool taken = false;
        for (Layer& layer : inst.layers) {
            if (FlagsOf(layer.element) & IMAGE_ON_SCREEN) continue;
            taken = true;
            SetFlags(layer.element, FlagsOf(layer.element) | IMAGE_ON_SCREEN);
        }
        if (taken) ++inst.redraws;
        uint64_t digest = DrawingDigest(inst);
        if (!inst.text_now.empty() || digest != inst.pixels_digest) inst.text_last = std::move(inst.text_now);
        inst.pixels_digest = digest;
        inst.text_now.clear();
    }
    store.last_frame_module_us = module_us;
    ++store.frames;
}

uint64_t DrawingDigest(const GaugeInstance& inst) {
    // FNV-1a over whole pixels: a changed pixel anywhere changes it.
    uint64_t digest = 0xCBF29CE484222325ull;
    for (const Layer& layer : inst.layers) {
        if (!layer.dc) continue;
        for (uint32_t pixel : layer.dc_pixels) digest = (digest ^ pixel) * 0x100000001B3ull;
    }
    return digest;
}

// [SECTION] Windows
bool WindowVisible(const GaugeStore& store, int ident) {
    for (const PanelWindow& w : store.windows)
        if (!w.virtual_cockpit && w.ident == ident) return w.visible;
    return false;
}

bool SetWindowVisible(GaugeStore& store, int ident, bool visible) {
    for (PanelWindow& w : store.windows)
        if (!w.virtual_cockpit && w.ident == ident) {
            w.visible = visible;
            return true;
        }
    return false;
}

bool ToggleWindow(GaugeStore& store, int ident) {
    for (PanelWindow& w : store.windows)
        if (!w.virtual_cockpit && w.ident == ident) {
            w.visible = !w.visible;
            return true;
        }
    return false;
}

GaugeInstance* FindInstance(GaugeStore& store, const std::string& reference) {
    std::string name = reference;
    int ordinal = 1;
    size_t hash = reference.find('#');
    if (hash != std::string::npos) {
        name = reference.substr(0, hash);
        std::string number = reference.substr(hash + 1);
        if (number.empty() || number.size() > 3 || number.find_first_not_of("0123456789") != std::string::npos)
            return nullptr;
        ordinal = std::stoi(number);
    }
    for (auto& inst : store.instances)
        if (SameNoCase(inst->name, name) && inst->ordinal == ordinal) return inst.get();
    return nullptr;
}

GaugeInstance* InstanceOfContext(GaugeStore& store, const void* hdc) {
    if (hdc == nullptr) return nullptr;
    for (auto& inst : store.instances)
        for (Layer& layer : inst->layers)
            if (layer.dc && layer.dc.get() == hdc) return inst.get();
    return nullptr;
}

}  // namespace orbsim
