// gauge_layers.cpp: see gauge_layers.h.
#include "frame/gauge_layers.h"

ELEMENT_HEADER* LayerElement(GAUGEHDR* gauge, int layer) {
    if (gauge == nullptr || gauge->elements_list == nullptr) return nullptr;
    ELEMENT_HEADER* element = *gauge->elements_list;
    for (int k = 0; element != nullptr && k < layer; ++k)
        element = element->next_element != nullptr ? element->next_element[0] : nullptr;
    return element;
}

void ShowLayer(GAUGEHDR* gauge, int layer, bool shown) {
    ELEMENT_HEADER* element = LayerElement(gauge, layer);
    if (element == nullptr) return;
    FLAGS32 flags = static_cast<FLAGS32>(element->image_flags);
    flags = shown ? (flags & ~IMAGE_HIDDEN) : (flags | IMAGE_HIDDEN);
    element->image_flags = static_cast<FLAGS>(flags);
}
