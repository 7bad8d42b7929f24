// traffic_source.cpp: the outside traffic gauge that orbsim plays: placed
// targets moved by dead reckoning, the export that answers the link key, and
// the block refreshed once a simulated second.
#include "traffic_source.h"

#include "host_state.h"
#include "text_util.h"

#include <panel_sdk.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orbsim {

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kRad = kPi / 180;
constexpr int kStatusAnswered = 0;
constexpr int kStatusWrongKey = 2;

// The export itself: the module calls it with the key and its status word.
void* TrafficLinkAnswer(const char* key, int* status) {
    TrafficSource& t = g_host.traffic;
    bool match = key != nullptr && std::strncmp(key, kTrafficSourceKey, 45) == 0;
    if (status != nullptr) *status = match ? kStatusAnswered : kStatusWrongKey;
    if (!match) {
        ++t.refusals;
        return nullptr;
    }
    ++t.answers;
    return t.block.data();
}

void Install(HostState& host) {
    host.traffic.installed = true;
    void* pointer = reinterpret_cast<void*>(&TrafficLinkAnswer);
    for (ModuleVariable& v : host.module_vars)
        if (v.name == kTrafficSourceExport) {
            v.pointer = pointer;
            v.type = TYPE_PVOID;
            return;
        }
    host.module_vars.push_back({kTrafficSourceExport, pointer, TYPE_PVOID});
}

void Uninstall(HostState& host) {
    host.traffic.installed = false;
    auto& vars = host.module_vars;
    vars.erase(std::remove_if(vars.begin(), vars.end(),
                              [](const ModuleVariable& v) { return v.name == kTrafficSourceExport; }),
               vars.end());
}

// Great-circle distance (nm) and initial true bearing (degrees) on the sphere.
void DistanceBearing(double lat1, double lon1, double lat2, double lon2, double& nm, double& bearing) {
    double p1 = lat1 * kRad, p2 = lat2 * kRad, dl = (lon2 - lon1) * kRad;
    double a = std::sin((p2 - p1) / 2) * std::sin((p2 - p1) / 2) +
               std::cos(p1) * std::cos(p2) * std::sin(dl / 2) * std::sin(dl / 2);
    nm = 2 * kEarthRadiusNm * std::asin(std::min(1.0, std::sqrt(a)));
    bearing = std::atan2(std::sin(dl) * std::cos(p2), std::cos(p1) * std::sin(p2) - std::sin(p1) * std::cos(p2) * std::cos(dl)) / kRad;
    if (bearing < 0) bearing += 360;
}

template <typename T>
void Put(unsigned char* base, size_t offset, T value) {
    std::memcpy(base + offset, &value, sizeof value);
}
}  // namespace

void TrafficPosition(const TrafficPlacement& target, double t, double& lat, double& lon, double& alt) {
    double dt = std::max(0.0, t - target.placed_at);
    double d = target.kt * dt / 3600 / kEarthRadiusNm;  // radians of arc flown
    double p1 = target.lat * kRad, l1 = target.lon * kRad, h = target.hdg * kRad;
    double p2 = std::asin(std::sin(p1) * std::cos(d) + std::cos(p1) * std::sin(d) * std::cos(h));
    double l2 = l1 + std::atan2(std::sin(h) * std::sin(d) * std::cos(p1), std::cos(d) - std::sin(p1) * std::sin(p2));
    lat = p2 / kRad;
    lon = std::remainder(l2 / kRad, 360.0);
    alt = target.alt + target.vs * dt / 60;
}

// [SECTION] Script command
bool CheckTrafficCommand(const std::vector<std::string>& w, std::string& error) {
    const std::string usage = "traffic on|off|clear|add ID LAT LON ALT [HDG KT VS]|remove ID";
    if (w.size() < 2) return error = usage, false;
    const std::string& sub = w[1];
    if ((sub == "on" || sub == "off" || sub == "clear") && w.size() == 2) return true;
    if (sub == "remove" && w.size() == 3) return true;
    if (sub == "add") {
        if (w.size() != 6 && w.size() != 9) return error = "traffic add ID LAT LON ALT [HDG KT VS]", false;
        double n = 0;
        for (size_t k = 3; k < w.size(); ++k)
            if (!ParseNumber(w[k], n) || !std::isfinite(n))
                return error = "traffic add: '" + w[k] + "' is no number", false;
        double lat = 0, lon = 0;
        ParseNumber(w[3], lat);
        ParseNumber(w[4], lon);
        if (lat < -90 || lat > 90 || lon < -180 || lon > 180)
            return error = "traffic add: the position is off the earth", false;
        return true;
    }
    return error = usage, false;
}

bool RunTrafficCommand(HostState& host, const std::vector<std::string>& w, std::string& error) {
    TrafficSource& t = host.traffic;
    const std::string& sub = w[1];
    if (sub == "on") {
        Install(host);
    } else if (sub == "off") {
        Uninstall(host);
    } else if (sub == "clear") {
        t.targets.clear();
        t.dirty = true;
    } else if (sub == "remove") {
        auto it = std::find_if(t.targets.begin(), t.targets.end(), [&](const TrafficPlacement& p) { return p.id == w[2]; });
        if (it == t.targets.end()) return error = "no traffic target '" + w[2] + "'", false;
        t.targets.erase(it);
        t.dirty = true;
    } else {
        // add: a new target, or the same id placed again; the gauge comes with it.
        TrafficPlacement p;
        p.id = w[2];
        ParseNumber(w[3], p.lat);
        ParseNumber(w[4], p.lon);
        ParseNumber(w[5], p.alt);
        if (w.size() == 9) {
            ParseNumber(w[6], p.hdg);
            ParseNumber(w[7], p.kt);
            ParseNumber(w[8], p.vs);
        }
        p.placed_at = host.aircraft.sim_time;
        auto it = std::find_if(t.targets.begin(), t.targets.end(), [&](const TrafficPlacement& q) { return q.id == p.id; });
        if (it != t.targets.end()) {
            *it = p;
        } else {
            if (static_cast<int>(t.targets.size()) >= kMaxTrafficTargets)
                return error = "traffic add: at most " + std::to_string(kMaxTrafficTargets) + " targets", false;
            t.targets.push_back(p);
        }
        t.dirty = true;
        if (!t.installed) Install(host);
    }
    return true;
}

bool TrafficValue(const HostState& host, const std::string& field, double& value, std::string& error) {
    const TrafficSource& t = host.traffic;
    if (field == "count") return value = static_cast<double>(t.targets.size()), true;
    if (field == "installed") return value = t.installed ? 1 : 0, true;
    if (field == "sequence") return value = t.sequence, true;
    if (field == "answers") return value = t.answers, true;
    if (field == "refusals") return value = t.refusals, true;
    if (field == "receipts") return value = t.receipts, true;
    if (field == "received") {
        uint32_t word = 0;
        std::memcpy(&word, t.block.data(), sizeof word);
        return value = word == 0 && t.sequence != 0 ? 1 : 0, true;
    }
    error = "traffic has count, installed, sequence, answers, refusals, receipts, received";
    return false;
}

// [SECTION] The block
void PublishTraffic(HostState& host) {
    TrafficSource& t = host.traffic;
    double now = host.aircraft.sim_time;
    // A gauge that has gone away refreshes nothing; its last block stays.
    if (!t.installed) return;
    if (!t.dirty && now - t.published_at < kTrafficPublishSeconds) return;
    unsigned char* block = t.block.data();
    // The module writes 0 into the first word when it has read a refresh.
    uint32_t receipt = 0;
    std::memcpy(&receipt, block, sizeof receipt);
    if (t.sequence != 0 && receipt == 0) ++t.receipts;

    // Each target relative to the aircraft; the nearest go last, where the
    // module's walk (the last five pointers) reads.
    struct Relative {
        double nm, bearing_rad, alt_ft, vs;
    };
    std::vector<Relative> rel;
    rel.reserve(t.targets.size());
    const AircraftModel& a = host.aircraft;
    for (const TrafficPlacement& p : t.targets) {
        double lat = 0, lon = 0, alt = 0, nm = 0, bearing = 0;
        TrafficPosition(p, now, lat, lon, alt);
        DistanceBearing(a.lat, a.lon, lat, lon, nm, bearing);
        double relative = std::remainder(bearing - a.hdg, 360.0) * kRad;
        rel.push_back({nm, relative, alt - a.alt, p.vs});
    }
    std::stable_sort(rel.begin(), rel.end(), [](const Relative& x, const Relative& y) { return x.nm > y.nm; });

    for (size_t i = 0; i < rel.size(); ++i) {
        const Relative& r = rel[i];
        unsigned char* rec = t.records[i].data();
        int target_class = 0;
        double above = std::fabs(r.alt_ft);
        if (r.nm <= kResolutionNm && above <= kResolutionFeet) target_class = 3;
        else if (r.nm <= kAdvisoryNm && above <= kAdvisoryFeet) target_class = 2;
        else if (r.nm <= kProximateNm && above <= kProximateFeet) target_class = 1;
        int trend = r.vs >= kTrendFpm ? 1 : r.vs <= -kTrendFpm ? -1 : 0;
        uint32_t flags = (static_cast<uint32_t>(trend) & 0xFu) << 16 | static_cast<uint32_t>(target_class) << 20;
        Put(rec, 0, static_cast<float>(r.alt_ft));
        Put(rec, 4, flags);
        rec[8] = 1;
        Put(rec, 12, static_cast<float>(r.nm));
        Put(rec, 16, static_cast<float>(r.bearing_rad));
        Put(block, TrafficSlotOffset(static_cast<int>(i) + 1), static_cast<void*>(rec));
    }
    block[44] = static_cast<unsigned char>(rel.size());
    Put(block, 0, static_cast<uint32_t>(1));
    // A counter of 0 never follows, so the module's first read (0) sees new data.
    if (++t.sequence == 0) t.sequence = 1;
    Put(block, 14, t.sequence);
    t.dirty = false;
    t.published_at = now;
}

}  // namespace orbsim
