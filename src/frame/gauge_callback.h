// gauge_callback.h: what each gauge does at each panel service.
#pragma once

#include "frame/gauge_layers.h"
#include "frame/gauge_table.h"

// The callback and the whole-gauge click handler of a gauge.
GAUGE_CALLBACK GaugeCallbackOf(GaugeId id);
MOUSE_FUNCTION GaugeClickHandler(GaugeId id);

// The shared body of every gauge's callback.
void GaugeCallback(GaugeId id, GAUGEHDR* gauge, SINT32 service_id, UINT32 extra_data);

// Steps of the callbacks, callable on their own for tests.
void StartupOnce(GaugeId id, const char* parameters);
int WorkOutDrawInstance(GaugeId id, const char* parameters);
void SwitchLayers(GaugeId id, GAUGEHDR* gauge);
