// plan_formats.cpp: libFuzzer target: any bytes as a plan file of another
// tool; the first byte picks the reader. Whatever a reader accepts is
// written in every format and read back, which must succeed with the same
// number of waypoints.
#include "plan/route_formats.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    constexpr RouteFormat kFormats[] = {RouteFormat::Rte,  RouteFormat::PlnXml, RouteFormat::PlnText,
                                        RouteFormat::Fms3, RouteFormat::Fms11,  RouteFormat::FlightGear};
    RouteFormat format = kFormats[data[0] % 6];
    std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    RoutePlan plan;
    RouteError error;
    if (!ReadRouteText(format, text, plan, error)) return 0;
    for (RouteFormat out : kFormats) {
        RoutePlan again;
        if (!ReadRouteText(out, WriteRouteText(out, plan), again, error) || again.points.size() != plan.points.size())
            std::abort();  // a plan the writer gives must read back whole
    }
    return 0;
}
