// module_entry.cpp: start and end of the module, and the seven common routines.
//
// The common routines are the SDK's gauge-header routines, shared by all 54
// gauges; as the SDK's own do, they act on the element list of the first
// gauge of the linkage.
#include "frame/module_entry.h"

#include "frame/sim_access.h"
#include "frame/simconnect_link.h"

extern "C" {

void FSAPI ModuleInit(void) { SimConnectOpenAtModuleInit(); }
void FSAPI ModuleDeinit(void) { SimConnectCloseAtModuleDeinit(); }

static ELEMENT_HEADER* FirstGaugeElements() {
    GAUGEHDR* first = Linkage.gauge_header_ptr[0];
    if (first == nullptr || first->elements_list == nullptr) return nullptr;
    return *first->elements_list;
}

void FSAPI CommonQuery(void) { ElementListQuery(FirstGaugeElements()); }
void FSAPI CommonInstall(PVOID resource_file_handle) { ElementListInstall(FirstGaugeElements(), resource_file_handle); }
void FSAPI CommonInitialize(void) { ElementListInitialize(FirstGaugeElements()); }
void FSAPI CommonUpdate(void) { ElementListUpdate(FirstGaugeElements()); }
void FSAPI CommonGenerate(UINT32 phase) { ElementListGenerate(FirstGaugeElements(), phase); }
void FSAPI CommonDraw(void) { ElementListPlot(FirstGaugeElements()); }
void FSAPI CommonKill(void) { ElementListKill(FirstGaugeElements()); }

}  // extern "C"
