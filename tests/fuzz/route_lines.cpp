// route_lines.cpp: libFuzzer target: any bytes as lines of a route file.
#include "nav_fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    nav_fuzz::RouteLines(data, size);
    return 0;
}
