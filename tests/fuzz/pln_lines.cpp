// pln_lines.cpp: libFuzzer target: any bytes as the lines of a simulator
// plan file of either form, read as the module converts it.
#include "plan/pln_reader.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static PlnReader reader;
    reader = PlnReader{};
    std::string_view all(reinterpret_cast<const char*>(data), size);
    size_t start = 0;
    while (start <= all.size()) {
        size_t end = all.find('\n', start);
        if (end == std::string_view::npos) end = all.size();
        PlnRow row;
        ReadPlnLine(reader, all.substr(start, end - start), row);
        start = end + 1;
    }
    return 0;
}
