// control_panels.cpp: the control gauges' switches come with their displays;
// until then their areas are inert and their lamps dark.
#include "display/control_panels.h"

#include "cdu/cdu_mouse.h"
#include "resources/panel_layouts.h"

#include <array>
#include <iterator>

void ControlPanelMouseAreas(GaugeId id, MouseAreaList& areas) { PadMouseAreas(areas, SpecOf(id).mouse_rows); }
// The icon layers lie over the knob or button they show turned or lit; the
// boxes and the meaning of each layer are those of resources/panel_layouts.h,
// from which the bitmaps are drawn. Control panels have no surface, so icon
// index i is layer i + 1.
const LayerSpec* ControlPanelIconLayer(GaugeId id, int icon_index) {
    static const auto kLayers = [] {
        std::array<LayerSpec, std::size(kIconSpecs)> layers{};
        for (size_t i = 0; i < layers.size(); ++i) {
            const IconSpec& icon = kIconSpecs[i];
            layers[i] = {icon.x, icon.y, icon.w, icon.h, false, true};
        }
        return layers;
    }();
    if (SpecOf(id).family != GaugeFamily::ControlPanel) return nullptr;
    const IconSpec* icon = IconSpecOf(id, icon_index + 1);
    if (icon == nullptr || icon->w <= 0) return nullptr;
    return &kLayers[static_cast<size_t>(icon - kIconSpecs)];
}
bool ControlPanelLayerShown(GaugeId, int) { return false; }
void ToggleAtcBoundaries() {}
