// Fuzz target of the text paths: UTF-8 and UTF-16 conversion, string layout,
// drawing and measuring.
#include "../platform/gdiplus_fuzz_body.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return GdiplusFuzzOne(data, size); }
