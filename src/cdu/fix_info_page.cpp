// fix_info_page.cpp: FIX INFO, two records of a fix with up to three
// radial and distance rows each: where the aircraft stands from the fix,
// and the time and distance to each entered point. The records are the
// ones the map draws its fix circles from.
//
// Index:
//   [SECTION] Entries
//   [SECTION] FIX INFO page
#include "cdu/nav_ref_pages.h"

#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "guidance/fix_info.h"

#include <cstdio>

// [SECTION] Entries
namespace {
constexpr float kFixNameX = 5;
constexpr float kFixFromX = 150;               // "%03.0f/%5.1f" of the aircraft from the fix
constexpr float kEtaX = 105;
constexpr float kDtgX = 185;

// Key 1: a fix by name; the first candidate whatever their number.
void EnterFix(FixInfoRecord& record, std::string_view text) {
    if (ResolveName(0, text) <= 0) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    const NavRecord& first = g_candidates.rows[1];
    record = FixInfoRecord{};
    SetText(record.Name, TextOf(first.Ident));
    SetText(record.Type, TextOf(first.Kind));
    record.Latitude = first.Latitude;
    record.Longitude = first.Longitude;
    ClearScratchpad();
}

// Keys 2 to 4: a radial, a distance, or both.
void EnterRow(FixInfoRow& row, std::string_view text) {
    FixRowEntry entry;
    if (!ParseFixRowEntry(text, entry)) {
        SetCduMessage(cdu_message::kInvalidEntry);
        return;
    }
    if (entry.has_radial) row.Radial = entry.radial;
    if (entry.has_distance) row.Distance = entry.distance;
    ClearScratchpad();
}

void DrawRow(CduScreen& screen, const FixInfoRecord& record, const FixInfoRow& row, int line) {
    const SimState& sim = g_sim;
    char radial[16], distance[16], value[64];
    if (row.Radial > 0)
        std::snprintf(radial, sizeof radial, "%03.0f", row.Radial);
    else
        std::snprintf(radial, sizeof radial, "---");
    if (row.Distance > 0)
        std::snprintf(distance, sizeof distance, "%.1f", row.Distance);
    else
        std::snprintf(distance, sizeof distance, "---");
    std::snprintf(value, sizeof value, "%s/%s", radial, distance);
    screen.Label("R A D /    D I S    E T A          D T G     A L T", kCduLeftLabelX, CduLabelY(line));
    screen.Value(value, 0, CduValueY(line));
    double eta_hour = 0, eta_minute = 0, to_go = 0;
    if (FixRowEtaAndDistance(record, row, sim.latitude, sim.longitude, sim.magnetic_variation, sim.ground_speed,
                             sim.zulu_hour, sim.zulu_minute, eta_hour, eta_minute, to_go)) {
        std::snprintf(value, sizeof value, "%02.0f%02.0fZ", eta_hour, eta_minute);
        screen.Value(value, kEtaX, CduValueY(line));
        std::snprintf(value, sizeof value, "%3.1f", to_go);
        screen.Value(value, kDtgX, CduValueY(line));
    } else {
        screen.Value("---", kEtaX, CduValueY(line));
        screen.Value("---", kDtgX, CduValueY(line));
    }
}
}  // namespace

// [SECTION] FIX INFO page
void FixInfoPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    // PREV raises the counter on this page.
    StepPages(s.fix, kFixInfoRecords, true);
    FixInfoRecord& record = g_fix_info.Records[static_cast<size_t>(s.fix.page - 1)];

    // The key of this frame.
    int key = s.LineSelectLatch;
    std::string_view text = ScratchpadText();
    if (key == 1) {
        if (DeleteArmed()) {
            record = FixInfoRecord{};
            ClearCduMessage();
        } else if (!text.empty()) {
            EnterFix(record, text);
        }
    }
    if (key >= 2 && key <= 4) {
        FixInfoRow& row = record.Rows[static_cast<size_t>(key - 2)];
        if (DeleteArmed()) {
            if (FixInfoHasFix(record)) {
                row.Radial = 0;
                ClearCduMessage();
            }
        } else if (!text.empty()) {
            EnterRow(row, text);
        }
    }

    // Draw.
    const SimState& sim = g_sim;
    screen.Title("FIX INFO");
    screen.Count("%d / %d", s.fix.page, s.fix.count);
    screen.Label("F I X         R A D / D I S   F R", kCduLeftLabelX, CduLabelY(1));
    if (FixInfoHasFix(record)) {
        screen.Value(record.Name.data(), kFixNameX, CduValueY(1));
        double radial = 0, distance = 0;
        FixRadialOfAircraft(record, sim.latitude, sim.longitude, sim.magnetic_variation, radial, distance);
        char value[32];
        std::snprintf(value, sizeof value, "%03.0f/%5.1f", radial, distance);
        screen.Value(value, kFixFromX, CduValueY(1));
    } else {
        screen.Value("- - - - -", kFixNameX, CduValueY(1));
    }
    for (int r = 0; r < kFixInfoRows; ++r) DrawRow(screen, record, record.Rows[static_cast<size_t>(r)], r + 2);
    screen.Rule();
}
