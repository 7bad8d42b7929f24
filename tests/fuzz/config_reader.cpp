// Fuzz target of the configuration reader: any bytes as orb.cfg, then as an
// aircraft profile with its [Lvars] block, then the steps after the profile.
// Built with -DORB_FUZZ=ON (clang); the unit tests run the same entry over a
// few hostile inputs by including this file with ORB_NO_FUZZ_MAIN defined.
#include "frame/aircraft_profile.h"
#include "frame/global_config.h"

#include <cstdint>
#include <cstdio>

namespace config_fuzz {
inline int ReadConfigBytes(const uint8_t* data, size_t size) {
    static const char kEmpty[1] = {0};
    // fmemopen refuses a zero-sized buffer; an empty file is a file of one NUL.
    const void* bytes = size > 0 ? static_cast<const void*>(data) : kEmpty;
    size_t length = size > 0 ? size : 1;
    g_config = {};
    g_profile = {};
    g_lvars = {};
    if (FILE* file = fmemopen(const_cast<void*>(bytes), length, "r")) {
        ReadGlobalConfigFile(file, "orb.cfg");
        std::rewind(file);
        ReadAircraftProfileFile(file, "fuzz.cfg");
        std::fclose(file);
    }
    FinishAircraftProfile();
    // What the reader leaves must stay within its bounds.
    if (g_lvars.count < 0 || g_lvars.count > kLvarRowLimit) __builtin_trap();
    if (g_config.WeightUnit[kConfigTextSize - 1] != 0) __builtin_trap();
    return 0;
}
}  // namespace config_fuzz

#ifndef ORB_NO_FUZZ_MAIN
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return config_fuzz::ReadConfigBytes(data, size);
}
#endif
