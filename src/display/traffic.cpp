// traffic.cpp: the link to the outside traffic gauge, the reading of its
// block into the own target table, and the traffic layer of the displays.
#include "display/traffic.h"

#include "display/map_symbols.h"
#include "display/nd_map.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"

#include <cmath>
#include <cstdio>
#include <cstring>

TrafficState g_traffic;

namespace {
// The outside gauge's radians-to-degrees constant, kept as it reads its block.
constexpr double kTrafficPi = 3.14159254;
// Class indexes the text from its start, trend (-1..+1) with an offset of 5.
constexpr char kTrafficCharacters[] = "OPTRv-^";
constexpr int kTrendCharacterOffset = 5;
constexpr int kClassCount = 4;
constexpr int kTrafficRingMarginPx = 8;    // a target on the ring keeps its whole symbol

// Text colours of the classes.
constexpr ARGB kTrafficAdvisoryColour = 0xFFFFFF00;
constexpr ARGB kTrafficResolutionColour = 0xFFF10101;
constexpr ARGB kTrafficCyan = 0xFF00E6E9;
constexpr ARGB kTrafficWhite = 0xFFDEE6E9;

// Where each display kind puts its text, which font, which symbols.
struct TrafficKindStyle {
    int text_dx;                        // pixels from the symbol's anchor
    int text_dy;
    float font_size;                    // pixels
    int font_style;
    bool cyan;                          // text colour when neither T nor R: cyan, else white
    int first_symbol;                   // symbol of class 0; the classes follow
};

TrafficKindStyle StyleOf(int kind) {
    switch (kind) {
    case kTrafficKindP1000: return {-9, 8, 10, FontStyleRegular, true, 0x3C};
    case kTrafficKindEfs50:
    case kTrafficKindCduMap: return {-13, 12, 13, FontStyleBold, true, kSymbolTrafficOther};
    case kTrafficKindMd11: return {-13, 12, 11, FontStyleRegular, false, kSymbolTrafficOther};
    default: return {-13, 12, 13, FontStyleBold, false, kSymbolTrafficOther};
    }
}

template <typename T>
T ReadAt(const unsigned char* base, size_t offset) {
    T value{};
    std::memcpy(&value, base + offset, sizeof value);
    return value;
}

// Index of a class character in the text; unknown characters count as other.
int ClassIndex(char target_class) {
    for (int i = 0; i < kClassCount; ++i)
        if (kTrafficCharacters[i] == target_class) return i;
    return 0;
}
}  // namespace

// [SECTION] Link
void* LinkTraffic(const char* key) {
    // Ask the simulator for the outside gauge's export.
    MODULE_VAR var = {};
    InitializeVarByName(&var, kTrafficExportName);
    if (var.var_ptr == nullptr || var.var_type != TYPE_PVOID) {
        g_traffic.status_word = kTrafficLookupFailed;
        return nullptr;
    }
    // The export is the gauge's function: it answers the key with its block.
    auto link = reinterpret_cast<TrafficLinkFunction>(var.var_ptr);
    return link(key, &g_traffic.status_word);
}

void TryTrafficLink(GaugeId) { g_module.traffic_link = LinkTraffic(kTrafficLinkKey); }

void ReadOutsideTrafficVariables() {
    MODULE_VAR targets = {};
    InitializeVarByName(&targets, kOutsideTargetsName);
    g_traffic.outside_targets = targets.var_ptr;
    MODULE_VAR count = {};
    InitializeVarByName(&count, kOutsideTargetCountName);
    g_traffic.outside_target_count = count.var_ptr;
}

void ReadOutsideTargetCount() {
    if (g_traffic.outside_target_count == nullptr) return;
    int32_t count = 0;
    std::memcpy(&count, g_traffic.outside_target_count, sizeof count);
    // Our table has five rows whatever the other source claims.
    if (count < 0) count = 0;
    if (count > kTrafficTableRows) count = kTrafficTableRows;
    g_traffic.TargetCount = count;
}

void ReadTrafficBlock() {
    TrafficState& t = g_traffic;
    // 1. Trying: a missing block is asked for again, up to the attempt limit,
    //    since the outside gauge may load after us.
    t.link_status = kTrafficLinkTrying;
    if (g_module.traffic_link == nullptr) {
        if (t.link_attempts < kTrafficLinkAttemptsMax) {
            ++t.link_attempts;
            g_module.traffic_link = LinkTraffic(kTrafficLinkKey);
        }
        if (g_module.traffic_link == nullptr) {
            t.link_status = kTrafficLinkNone;
            return;
        }
    }
    // 2. Link up; an unchanged counter leaves the table as it stands.
    t.link_status = kTrafficLinkUp;
    auto* block = static_cast<unsigned char*>(g_module.traffic_link);
    uint16_t sequence = ReadAt<uint16_t>(block, kTrafficBlockSequenceOffset);
    if (sequence == t.last_sequence) return;
    // 3. A new sequence: keep it, give the receipt, empty the table.
    t.last_sequence = sequence;
    const uint32_t receipt = 0;
    std::memcpy(block + kTrafficBlockReceiptOffset, &receipt, sizeof receipt);
    t.TargetCount = 0;
    // 4. The last five pointers, from n down, each valid record a row.
    int n = block[kTrafficBlockCountOffset];
    double heading = std::isfinite(g_sim.heading_true) ? g_sim.heading_true : 0;
    for (int i = n; i >= 1 && i > n - kTrafficWalkMax; --i) {
        auto* record = ReadAt<unsigned char*>(block, TrafficPointerOffset(i));
        if (record == nullptr || record[kTargetValidOffset] == 0) continue;
        float altitude = ReadAt<float>(record, kTargetAltitudeOffset);
        uint32_t flags = ReadAt<uint32_t>(record, kTargetFlagsOffset);
        float distance = ReadAt<float>(record, kTargetDistanceOffset);
        float relative_bearing = ReadAt<float>(record, kTargetBearingOffset);
        if (!std::isfinite(altitude) || !std::isfinite(distance) || !std::isfinite(relative_bearing)) continue;
        // The 4-bit fields: the trend signed, the class 0..3 (others count as 0).
        int trend = static_cast<int>((flags >> kTargetTrendShift) & 0xF);
        if (trend >= 8) trend -= 16;
        if (trend < -1 || trend > 1) trend = 0;
        int target_class = static_cast<int>((flags >> kTargetClassShift) & 0xF);
        if (target_class >= kClassCount) target_class = 0;
        TrafficTarget& row = t.targets[static_cast<size_t>(++t.TargetCount)];
        row.bearing = relative_bearing / kTrafficPi * 180 + heading;
        if (row.bearing >= 360) row.bearing -= 360;
        row.distance = distance;
        row.relative_altitude = altitude / 100.0;
        row.trend = kTrafficCharacters[trend + kTrendCharacterOffset];
        row.target_class = kTrafficCharacters[target_class];
    }
}

// [SECTION] Drawing
void TrafficAltitudeText(double relative_altitude, char* out, size_t size) {
    std::snprintf(out, size, "%+02.0f", relative_altitude);
}

ARGB TrafficTextColour(char target_class, int kind) {
    if (target_class == 'T') return kTrafficAdvisoryColour;
    if (target_class == 'R') return kTrafficResolutionColour;
    return StyleOf(kind).cyan ? kTrafficCyan : kTrafficWhite;
}

bool TrafficInVerticalRange(double relative_altitude) {
    double limit = g_config.TcasVertRange;
    return relative_altitude >= -limit && relative_altitude <= limit;
}

void TrafficTargetPixel(const TrafficTarget& target, double scale, double cx, double cy, double& x, double& y) {
    double heading = std::isfinite(g_sim.heading_true) ? g_sim.heading_true : 0;
    PolarToScreen(heading, target.bearing, cx, cy, target.distance * scale, x, y);
}

void DrawTraffic(const DisplaySurface& surface, double radius_px, double range, double cx, double cy, int kind) {
    ReadTrafficBlock();
    if (surface.graphics == nullptr || g_traffic.TargetCount <= 0) return;
    gdi::Graphics& g = *surface.graphics;
    double scale = range > 0 ? radius_px / range : 0;
    TrafficKindStyle style = StyleOf(kind);
    gdi::Font font(kArialFont, style.font_size, style.font_style);
    int rows = g_traffic.TargetCount < kTrafficTableRows ? g_traffic.TargetCount : kTrafficTableRows;
    // Targets beyond the range ring stay off the furniture around it; the
    // caller's own clip (a window, a fan) still holds.
    GraphicsState before = g.Save();
    gdi::Path ring;
    int margin = static_cast<int>(radius_px) + kTrafficRingMarginPx;
    ring.AddEllipse(static_cast<int>(cx) - margin, static_cast<int>(cy) - margin, 2 * margin, 2 * margin);
    g.SetClip(ring, CombineModeIntersect);
    for (int i = 1; i <= rows; ++i) {
        const TrafficTarget& target = g_traffic.targets[static_cast<size_t>(i)];
        // 1. Only targets within the vertical range.
        if (!TrafficInVerticalRange(target.relative_altitude)) continue;
        // 2. Position by the polar placement of the map.
        double fx = 0, fy = 0;
        TrafficTargetPixel(target, scale, cx, cy, fx, fy);
        if (!std::isfinite(fx) || !std::isfinite(fy)) continue;
        int x = static_cast<int>(std::lround(fx)), y = static_cast<int>(std::lround(fy));
        // 3. The relative altitude in the class's colour.
        ARGB colour = TrafficTextColour(target.target_class, kind);
        char text[16];
        TrafficAltitudeText(target.relative_altitude, text, sizeof text);
        g.DrawText(text, font, colour, static_cast<float>(x + style.text_dx), static_cast<float>(y + style.text_dy));
        // 4. The trend arrow beside the symbol: up climbing, down descending.
        if (target.trend != '-') {
            gdi::Pen pen(colour, 1.5f);
            float ax = static_cast<float>(x + 9);
            float sign = target.trend == '^' ? -1.0f : 1.0f;
            float tail = static_cast<float>(y) - sign * 5, head = static_cast<float>(y) + sign * 5;
            g.DrawLine(pen, ax, tail, ax, head);
            g.DrawLine(pen, ax, head, ax - 3, head - sign * 3);
            g.DrawLine(pen, ax, head, ax + 3, head - sign * 3);
        }
        // 5. The symbol of the class.
        DrawMapSymbol(g, x, y, style.first_symbol + ClassIndex(target.target_class), kNoLabel, 1, 1, kMapWhite,
                      range);
    }
    g.Restore(before);
}
