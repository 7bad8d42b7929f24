// module_entry.h: the module's entry points that the simulator calls through
// the linkage: start and end of the module, and the seven common routines.
#pragma once

#include <panel_sdk.h>

extern "C" {
void FSAPI ModuleInit(void);
void FSAPI ModuleDeinit(void);

void FSAPI CommonQuery(void);
void FSAPI CommonInstall(PVOID resource_file_handle);
void FSAPI CommonInitialize(void);
void FSAPI CommonUpdate(void);
void FSAPI CommonGenerate(UINT32 phase);
void FSAPI CommonDraw(void);
void FSAPI CommonKill(void);

extern MODULE_LINKAGE Linkage;
}
