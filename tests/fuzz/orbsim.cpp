// orbsim.cpp: the libFuzzer target of orbsim's parsers (BMP, ELF sections,
// the resource table, panel.cfg, scripts, FSUIPC requests, the module's
// predictions and track files).
#include "orbsim/fuzz_entry.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return orbsim::FuzzOneInput(data, size); }
