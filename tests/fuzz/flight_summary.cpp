// Fuzz target of the flight summary's reader: any bytes as fpl.log (which
// the pilot may edit), cut into lines as the reader cuts them, taken into a
// summary, then the record written out. The bin lists must stay within
// their room and their counts whole. Built with -DORB_FUZZ=ON (clang); the
// unit tests run the same entry over a few hostile inputs by including this
// file with ORB_NO_FUZZ_MAIN defined.
#include "flightlog/flight_log.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

namespace flight_summary_fuzz {
inline void CheckList(const SummaryStageList& list) {
    if (list.bin_count < 0 || list.bin_count > kSummaryAltitudeBins) __builtin_trap();
    if (list.weight_count < 0 || list.weight_count > kSummaryWeightBins) __builtin_trap();
    if (list.dropped_lines < 0) __builtin_trap();
    for (int a = 0; a < list.bin_count; ++a) {
        const SummaryAltitudeBin& bin = list.bins[static_cast<size_t>(a)];
        if (bin.count <= 0 || bin.altitude < 5000) __builtin_trap();
        int flows = 0;
        for (int w = 0; w < kSummaryWeightBins; ++w) {
            if (bin.flow_count[static_cast<size_t>(w)] < 0) __builtin_trap();
            if (w >= list.weight_count && bin.flow_count[static_cast<size_t>(w)] != 0) __builtin_trap();
            flows += bin.flow_count[static_cast<size_t>(w)];
        }
        // Climb and cruise lines count once by altitude and once by weight.
        if (list.weight_count > 0 && flows != bin.count) __builtin_trap();
    }
}

inline int SummarizeBytes(const uint8_t* data, size_t size) {
    static FILE* sink = std::fopen("/dev/null", "w");
    FlightSummary summary{};
    std::string_view text(reinterpret_cast<const char*>(data), size);
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        SummaryAddLine(summary, line);
        start = end + 1;
    }
    CheckList(summary.climb);
    CheckList(summary.cruise);
    CheckList(summary.descent);
    if (summary.descent.weight_count != 0) __builtin_trap();
    if (summary.flight_time.back() != '\0') __builtin_trap();
    if (sink != nullptr) WriteSummaryRecord(sink, summary, "KAAA", "KBBB", 2026, 1, 2, "FUZZ");
    return 0;
}
}  // namespace flight_summary_fuzz

#ifndef ORB_NO_FUZZ_MAIN
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return flight_summary_fuzz::SummarizeBytes(data, size);
}
#endif
