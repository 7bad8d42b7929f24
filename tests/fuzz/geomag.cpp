// geomag.cpp: libFuzzer target for the magnetic model's coefficient parser
// and synthesis (built with -DORB_FUZZ=ON and clang).
#include "geomag_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return GeomagFuzzOne(data, size); }
