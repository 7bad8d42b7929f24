// Fuzz target of the shape calls: strokes, fills, transforms and clips with
// any numbers, through the stand-in's own scan and cairo.
#include "../platform/gdiplus_shapes_fuzz_body.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return GdiplusShapesFuzzOne(data, size); }
