// fuzz_entry.h: every parser of orbsim behind one entry, for the fuzz target
// and for the unit test that feeds it hostile inputs.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orbsim {

// The first byte picks the parser (BMP, ELF section table, resource table,
// panel.cfg, script, FSUIPC request, predictions, track); the rest is its
// input. Always returns 0.
int FuzzOneInput(const uint8_t* data, size_t size);

}  // namespace orbsim
