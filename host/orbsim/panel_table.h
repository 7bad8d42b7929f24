// panel_table.h: the panel function table orbsim hands the module through
// ImportTable, and the key-event path shared by the module and the script.
#pragma once

#include "host_state.h"

namespace orbsim {

// Fills host.panels: header word 5 with the generation's version, every slot
// the module may call. Slots orbsim does not implement answer 0 and say so
// on stderr once each. The FS2004-generation table ends before the newer
// slots.
void BuildPanelTable(HostState& host);

// A key event: recorded with the simulated time, applied to the aircraft,
// then handed to every registered key-event handler.
void DeliverKeyEvent(HostState& host, uint32_t event, uint32_t value, bool from_module);

// The slot names, for messages.
const char* PanelSlotName(int slot);

}  // namespace orbsim
