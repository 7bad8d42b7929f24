// Fuzz target of the configuration reader: any bytes as orb.cfg, then as an
// aircraft profile with its [Lvars] block, then the steps after the profile.
// Built with -DORB_FUZZ=ON (clang); the unit tests run the same entry over a
// few hostile inputs by including this file with ORB_NO_FUZZ_MAIN defined.
#include "frame/aircraft_profile.h"
#include "frame/global_config.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

namespace config_fuzz {
// The bytes go to a file of their own and are read by the module's reader,
// as orb.cfg and a profile are.
inline int ReadConfigBytes(const uint8_t* data, size_t size) {
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("orb-fuzz-config-" + std::to_string(getpid()) + ".cfg")).string();
    if (FILE* f = std::fopen(path.c_str(), "wb")) {
        if (size > 0) std::fwrite(data, 1, size, f);
        std::fclose(f);
    }
    g_config = {};
    g_profile = {};
    g_lvars = {};
    static ConfigFileReader reader;
    if (reader.Open(path.c_str())) ReadGlobalConfigFile(reader, "orb.cfg");
    if (reader.Open(path.c_str())) ReadAircraftProfileFile(reader, "fuzz.cfg");
    reader.lines.file.Close();
    std::remove(path.c_str());
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
