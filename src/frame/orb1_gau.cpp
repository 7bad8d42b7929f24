// orb1_gau.cpp: the product's own translation unit. Everything else comes from
// the module's code library whole, so that the linkage, its gauges and their
// routines are all in; the linker keeps ImportTable and Linkage as the exports.
#include "frame/module_entry.h"

// Referenced so that a linker that drops unused archive members keeps the linkage.
extern "C" MODULE_LINKAGE* const orb1_linkage_anchor = &Linkage;
