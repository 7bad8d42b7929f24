// cdu.cpp: libFuzzer target: any bytes as key presses and frames of the
// Boeing-style CDU.
#include "cdu_fuzz_entry.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!cdu_fuzz::KeySequence(data, size)) std::abort();
    return 0;
}
