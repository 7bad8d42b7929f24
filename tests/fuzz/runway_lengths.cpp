// runway_lengths.cpp: libFuzzer target: any bytes as orb_apts.txt, read by the module's reader.
#include "airport_extras_entries.h"

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("orb-fuzz-runway_lengths-" + std::to_string(getpid()));
    extras_fuzz::RunwayLengths(data, size, folder);
    return 0;
}
