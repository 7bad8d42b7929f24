// nav_bulk_lines.cpp: libFuzzer target: any bytes as lines of every bulk file.
#include "nav_fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    nav_fuzz::BulkLines(data, size);
    return 0;
}
