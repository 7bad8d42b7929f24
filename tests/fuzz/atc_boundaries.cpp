// atc_boundaries.cpp: libFuzzer target: any bytes as atc_bdry.txt, read by the module's reader.
#include "airport_extras_entries.h"

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("orb-fuzz-atc_boundaries-" + std::to_string(getpid()));
    extras_fuzz::Boundaries(data, size, folder);
    return 0;
}
