// procedure_files.cpp: libFuzzer target: any bytes as each procedure file
// (sids, stars, approaches and the user files), read, indexed, listed and
// turned into chosen legs by the module's procedure code.
#include "nav_fuzz_entries.h"

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("orb-fuzz-procedures-" + std::to_string(getpid()));
    nav_fuzz::Procedures(data, size, folder);
    return 0;
}
