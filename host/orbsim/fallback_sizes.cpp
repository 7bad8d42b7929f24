// fallback_sizes.cpp: the layer sizes of the module's gauge table, generated
// at build time, for the grey layers that stand in for missing bitmaps.
#include "resources.h"

namespace orbsim {

namespace {
struct LayerSize {
    uint32_t resource_id;
    int width;
    int height;
};
constexpr LayerSize kLayerSizes[] = {
#include "orbsim_layer_sizes.inc"
};
}  // namespace

bool FallbackLayerSize(uint32_t resource_id, int& width, int& height) {
    for (const LayerSize& size : kLayerSizes)
        if (size.resource_id == resource_id && size.width > 0 && size.height > 0) {
            width = size.width;
            height = size.height;
            return true;
        }
    return false;
}

}  // namespace orbsim
