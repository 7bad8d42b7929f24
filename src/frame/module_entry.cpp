// module_entry.cpp: start and end of the module, and the seven common routines.
//
// The common routines are the SDK's gauge-header routines, shared by all 54
// gauges; as the SDK's own do, they act on the element list of the first
// gauge of the linkage.
#include "frame/module_entry.h"

#include "frame/entry_guard.h"
#include "frame/sim_access.h"
#include "frame/simconnect_link.h"

namespace {
template <typename Body>
void Routine(Body&& body) {
    AtEntry(EntryKind::GaugeRoutine, body);
}
}  // namespace

extern "C" {

// Each routine the simulator calls stops any exception at its edge.
void FSAPI ModuleInit(void) { AtEntry(EntryKind::ModuleInit, [] { SimConnectOpenAtModuleInit(); }); }
void FSAPI ModuleDeinit(void) { AtEntry(EntryKind::ModuleDeinit, [] { SimConnectCloseAtModuleDeinit(); }); }

static ELEMENT_HEADER* FirstGaugeElements() {
    GAUGEHDR* first = Linkage.gauge_header_ptr[0];
    if (first == nullptr || first->elements_list == nullptr) return nullptr;
    return *first->elements_list;
}

void FSAPI CommonQuery(void) { Routine([] { ElementListQuery(FirstGaugeElements()); }); }
void FSAPI CommonInstall(PVOID resource_file_handle) {
    Routine([=] { ElementListInstall(FirstGaugeElements(), resource_file_handle); });
}
void FSAPI CommonInitialize(void) { Routine([] { ElementListInitialize(FirstGaugeElements()); }); }
void FSAPI CommonUpdate(void) { Routine([] { ElementListUpdate(FirstGaugeElements()); }); }
void FSAPI CommonGenerate(UINT32 phase) { Routine([=] { ElementListGenerate(FirstGaugeElements(), phase); }); }
void FSAPI CommonDraw(void) { Routine([] { ElementListPlot(FirstGaugeElements()); }); }
void FSAPI CommonKill(void) { Routine([] { ElementListKill(FirstGaugeElements()); }); }

}  // extern "C"
