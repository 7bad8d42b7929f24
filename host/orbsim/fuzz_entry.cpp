// fuzz_entry.cpp: hands fuzzed bytes to each parser and checks the few
// promises they make about their output.
#include "fuzz_entry.h"

#include "fsuipc_server.h"
#include "panel_cfg.h"
#include "profile_plot.h"
#include "resources.h"
#include "script.h"

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace orbsim {

int FuzzOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    uint8_t pick = data[0] % 8;
    const uint8_t* body = data + 1;
    size_t length = size - 1;
    std::string error;
    switch (pick) {
    case 0: {
        Bitmap bitmap;
        if (DecodeBmp(body, length, bitmap, error) &&
            bitmap.pixels.size() != static_cast<size_t>(bitmap.width) * static_cast<size_t>(bitmap.height))
            std::abort();
        break;
    }
    case 1: {
        size_t offset = 0, bytes = 0;
        if (FindElfSection(body, length, ".orb_rsrc", offset, bytes, error) && (offset > length || bytes > length - offset))
            std::abort();
        break;
    }
    case 2: {
        std::vector<ResourceEntry> entries;
        if (ParseResourceBlob(body, length, entries, error))
            for (const ResourceEntry& e : entries)
                if (e.offset > length || e.size > length - e.offset) std::abort();
        break;
    }
    case 3: {
        PanelDesc panel;
        if (ParsePanelText(std::string_view(reinterpret_cast<const char*>(body), length), panel, error)) {
            size_t gauges = 0;
            for (const PanelWindowDesc& w : panel.windows) gauges += w.gauges.size();
            if (gauges > static_cast<size_t>(kMaxPanelGauges) || panel.windows.size() > static_cast<size_t>(kMaxPanelWindows))
                std::abort();
        }
        break;
    }
    case 4: {
        std::vector<ScriptLine> lines;
        ParseScript("fuzz", std::string(reinterpret_cast<const char*>(body), length), lines, error);
        break;
    }
    case 5: {
        // A request as the client lays it out: the server reads only what wparam covers, plus the end word.
        if (length < 8 || length > kFsuipcRequestLimit) break;
        std::vector<uint8_t> buffer(body, body + length);
        FsuipcServer server;
        AircraftModel aircraft;
        HandleFsuipcMessage(server, aircraft, length - 8, reinterpret_cast<intptr_t>(buffer.data()));
        if (server.memory.size() != kFsuipcOffsetSpace) std::abort();
        break;
    }
    case 6: {
        // The module's predictions: rows bounded and in order of distance, as the projection needs.
        std::istringstream in(std::string(reinterpret_cast<const char*>(body), length));
        VerticalProfile profile;
        if (ParseVerticalProfile("fuzz", in, profile, error)) {
            if (profile.rows.empty() || profile.rows.size() > static_cast<size_t>(kMaxProfileRows)) std::abort();
            std::vector<FlownPoint> track = {{0, 0, 0, 0}, {1, 10, 10, 1000}};
            std::vector<double> along = AlongRouteDistances(profile, track);
            if (along.size() != track.size() || along[1] < along[0]) std::abort();
        }
        break;
    }
    case 7: {
        std::istringstream in(std::string(reinterpret_cast<const char*>(body), length));
        std::vector<FlownPoint> track;
        if (ParseTrack("fuzz", in, track, error) && track.empty()) std::abort();
        break;
    }
    }
    return 0;
}

}  // namespace orbsim
