// resources.cpp: libFuzzer target for the readers of the module's bitmaps
// (ELF section look-up, resource section, BMP decoding, resource script).
#include "../resources/resource_fuzz_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return ResourceFuzzEntry(data, size); }
