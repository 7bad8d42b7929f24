// gauge_instance.cpp: copying a gauge's header and element chain.
#include "support/gauge_instance.h"

#include "frame/gauge_callback.h"
#include "frame/gauge_linkage.h"

#include <cstring>

GaugeInstance::GaugeInstance(GaugeId gauge, const char* params) : GaugeInstance(HeaderOf(gauge), gauge, params) {}

GaugeInstance::GaugeInstance(const GAUGEHDR& source_header, GaugeId gauge, const char* params)
    : id(gauge), parameters(params ? params : "") {
    header = source_header;
    header.parameters = parameters.data();
    // Copy the chain element by element, in order.
    std::vector<ELEMENT_HEADER*> copies;
    ELEMENT_HEADER* source = header.elements_list ? *header.elements_list : nullptr;
    for (int layer = 0; source != nullptr; ++layer) {
        size_t size = source->element_type == ELEMENT_TYPE_ICON ? sizeof(ELEMENT_ICON) : sizeof(ELEMENT_STATIC_IMAGE);
        auto bytes = std::make_unique<uint8_t[]>(size);
        std::memcpy(bytes.get(), source, size);
        auto* copy = reinterpret_cast<ELEMENT_HEADER*>(bytes.get());
        copy->gauge_header = &header;
        if (source->element_type == ELEMENT_TYPE_STATIC_IMAGE &&
            (static_cast<FLAGS32>(source->image_flags) & IMAGE_CREATE_DIBSECTION)) {
            LayerSpec shape = LayerOf(gauge, layer);
            pixels.emplace_back(static_cast<size_t>(shape.width * shape.height));
            auto dc = std::make_unique<OrbDeviceContext>();
            *dc = {kOrbDeviceContextMagic, pixels.back().data(), shape.width, shape.height, shape.width * 4};
            reinterpret_cast<ELEMENT_STATIC_IMAGE*>(copy)->hdc = dc.get();
            contexts.push_back(std::move(dc));
        }
        copies.push_back(copy);
        elements.push_back(std::move(bytes));
        source = source->next_element ? source->next_element[0] : nullptr;
    }
    for (size_t i = 0; i < copies.size(); ++i) {
        next_arrays.push_back({i + 1 < copies.size() ? copies[i + 1] : nullptr, nullptr});
        copies[i]->next_element = i + 1 < copies.size() ? next_arrays.back().data() : nullptr;
    }
    first = copies.empty() ? nullptr : copies[0];
    header.elements_list = &first;
}

void GaugeInstance::Service(int service, unsigned extra) {
    if (header.gauge_callback) header.gauge_callback(&header, service, extra);
}

FLAGS32 GaugeInstance::Flags(int layer) const {
    ELEMENT_HEADER* e = LayerElement(const_cast<GAUGEHDR*>(&header), layer);
    return e ? static_cast<FLAGS32>(e->image_flags) : 0;
}

void GaugeInstance::MarkOnScreen(int layer) {
    if (ELEMENT_HEADER* e = LayerElement(&header, layer))
        e->image_flags = static_cast<FLAGS>(static_cast<FLAGS32>(e->image_flags) | IMAGE_ON_SCREEN);
}
