// nav_files.cpp: libFuzzer target: any bytes as each navigation file and a
// route file, read by the module's file readers.
#include "nav_fuzz_entries.h"

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("orb-fuzz-nav-" + std::to_string(getpid()));
    nav_fuzz::Files(data, size, folder);
    return 0;
}
