// traffic.h: the link to an outside traffic gauge, the targets read from it,
// and the traffic layer every traffic-capable display draws.
//
// The module computes no traffic. An outside gauge, when installed, exports
// one module variable (kTrafficExportName): a function that, given the link
// key, returns its traffic block. The block belongs to that gauge; we read
// it at each draw of a traffic layer and copy at most five targets into our
// own table, which the pictures then draw.
//
// Layout of the outside gauge's block, byte offsets:
//   0        4 bytes, written 0 here after each new sequence (our receipt)
//   14       2 bytes, change counter: a new value means new data
//   44       1 byte, n: the number of target pointers
//   pointer slot i, for i from 1 to n: a pointer to target record i
// The 32-bit module has 4-byte pointers with slot i at 44 + 4 i. A 64-bit
// build (the Linux test build) keeps the same meaning with 8-byte pointers:
// slot i at 40 + 8 i, so slot 1 starts at 48, the first aligned offset after
// the count byte, and slot 0 (never read) overlaps the count as it does in
// the 32-bit form. TrafficPointerOffset() is the one place that knows this.
//
// Target record (pointer-free, the same in both builds), byte offsets:
//   0 float altitude relative to own aircraft, feet
//   4 uint32 flags: bits 16..19 signed trend (-1, 0, +1), bits 20..23 class
//   8 byte, not 0 when the record is valid
//   12 float distance, nm
//   16 float bearing relative to the nose, radians
#pragma once

#include "display/display_surface.h"
#include "frame/gauge_table.h"

#include <array>
#include <cstddef>
#include <cstdint>

// [SECTION] Link constants
constexpr int kTrafficLinkAttemptsMax = 20;         // retries at draw time
constexpr int kTrafficWalkMax = 5;                  // pointers read per new sequence
constexpr int kTrafficTableRows = kTrafficWalkMax;  // own table, rows 1..5
// The outside gauge's export (48 characters) and the key it answers to (44).
constexpr const char* kTrafficExportName = "ext_traffic_advisory_gauge_target_block_link_v01";
constexpr const char* kTrafficLinkKey = "b3JiMSBvdXRzaWRlIHRyYWZmaWMgbGluayBrZXkgMDE=";
// HW_B737_ND_NB's second source: only the count is used.
constexpr const char* kOutsideTargetsName = "tcas_targets";
constexpr const char* kOutsideTargetCountName = "tcas_target_cnt";

// Link status as the DEBUG page shows it.
constexpr int kTrafficLinkTrying = 1;
constexpr int kTrafficLinkUp = 2;
constexpr int kTrafficLinkNone = -1;
// Status word when the export is missing or of the wrong type.
constexpr int kTrafficLookupFailed = 1;

// [SECTION] Block layout
constexpr size_t kTrafficBlockReceiptOffset = 0;
constexpr size_t kTrafficBlockSequenceOffset = 14;
constexpr size_t kTrafficBlockCountOffset = 44;
constexpr size_t kTrafficPointerWidth = sizeof(void*);
constexpr size_t TrafficPointerOffset(int i) {
    return kTrafficPointerWidth == 4 ? 44 + 4 * static_cast<size_t>(i) : 40 + 8 * static_cast<size_t>(i);
}
// Enough for the largest n a byte can give.
constexpr size_t kTrafficBlockBytes = TrafficPointerOffset(255) + kTrafficPointerWidth;

constexpr size_t kTargetAltitudeOffset = 0;
constexpr size_t kTargetFlagsOffset = 4;
constexpr size_t kTargetValidOffset = 8;
constexpr size_t kTargetDistanceOffset = 12;
constexpr size_t kTargetBearingOffset = 16;
constexpr size_t kTargetRecordBytes = 20;
constexpr int kTargetTrendShift = 16;               // 4 bits, signed
constexpr int kTargetClassShift = 20;               // 4 bits: 0 other .. 3 resolution advisory

// The outside gauge's export: key and status word in, block out (null: refused).
using TrafficLinkFunction = void* (*)(const char* key, int* status);

// [SECTION] State
// One row of the own target table.
struct TrafficTarget {
    double bearing = 0;                 // degrees true, 0 up to but not including 360
    double distance = 0;                // nm
    double relative_altitude = 0;       // hundreds of feet, signed (+ above us)
    char trend = '-';                   // 'v' descending, '-' level, '^' climbing
    char target_class = 'O';            // 'O' other, 'P' proximate, 'T' advisory, 'R' resolution
};

// The link's counters and the own target table; the block pointer itself is
// the module's (ModuleState::traffic_link).
struct TrafficState {
    int link_attempts = 0;              // retries made at draw time, at most 20
    int link_status = 0;                // 1 set at each draw, 2 link up, -1 no link
    int TargetCount = 0;                // rows of the own target table in use, 0..5
    uint16_t last_sequence = 0;         // last change counter read from the block
    int status_word = 0;                // the outside gauge's answer; 1 when the lookup failed
    std::array<TrafficTarget, kTrafficTableRows + 1> targets{};  // rows 1..TargetCount; [0] unused
    void* outside_targets = nullptr;        // HW_B737_ND_NB's tcas_targets export (not read)
    void* outside_target_count = nullptr;   // its tcas_target_cnt: an int32 count
};

extern TrafficState g_traffic;

// [SECTION] Link
// Looks the export up and calls it with the key; the block, or null.
void* LinkTraffic(const char* key);
// At the install service of the traffic displays: the result overwrites the block pointer.
void TryTrafficLink(GaugeId id);
// HW_B737_ND_NB reads the outside traffic variables before its start-up.
void ReadOutsideTrafficVariables();
// At its update service: TargetCount from tcas_target_cnt, when that exists.
void ReadOutsideTargetCount();
// The reading steps of each traffic draw: link status, retries, a new
// sequence's targets into the table.
void ReadTrafficBlock();

// [SECTION] Drawing
// Display kinds of the traffic layer (symbols, fonts, colours differ).
constexpr int kTrafficKindB737 = 0;     // HW_B737_ND, DU_1000_EHSI
constexpr int kTrafficKindP1000 = 2;    // P1000_MFD
constexpr int kTrafficKindEfs50 = 5;    // EFS50_EHSI, EFS50_TCAS
constexpr int kTrafficKindMd11 = 9;     // HW_MD11_ND, MD80_EHSI_NB, C17_MFD
constexpr int kTrafficKindCduMap = 11;  // the map of the CDU pages

// The relative altitude text ("%+02.0f", hundreds of feet).
void TrafficAltitudeText(double relative_altitude, char* out, size_t size);
// The text colour of a class character on a display kind.
ARGB TrafficTextColour(char target_class, int kind);
// Whether a target's relative altitude is within TcasVertRange.
bool TrafficInVerticalRange(double relative_altitude);
// A target's pixel around (cx, cy): polar placement from the true heading.
void TrafficTargetPixel(const TrafficTarget& target, double scale, double cx, double cy, double& x, double& y);

// Reads the block, then draws every target of the table in the vertical
// range: radius in pixels, range in nm, centre in the current transform's
// pixels. The caller resets the transform it wants.
void DrawTraffic(const DisplaySurface& surface, double radius_px, double range, double cx, double cy, int kind);
