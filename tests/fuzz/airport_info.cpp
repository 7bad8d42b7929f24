// airport_info.cpp: libFuzzer target: any bytes as apt_additional_info.txt and the parking file, read by the module's reader.
#include "airport_extras_entries.h"

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("orb-fuzz-airport_info-" + std::to_string(getpid()));
    extras_fuzz::AirportInfo(data, size, folder);
    return 0;
}
