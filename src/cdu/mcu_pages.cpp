// mcu_pages.cpp: the MCU's pages (TO, FPLN, APT, LEGS, DIRTO, ALT/FL), the
// spelling of names with the rocker and from the PC keyboard, and the frame
// that keeps the screen until a repaint is asked for.
//
// Index:
//   [SECTION] Drawing helpers
//   [SECTION] Spelling and candidates
//   [SECTION] Plan helpers
//   [SECTION] TO page
//   [SECTION] FPLN page
//   [SECTION] APT page
//   [SECTION] LEGS page
//   [SECTION] DIRTO page
//   [SECTION] ALT/FL page
//   [SECTION] Dispatcher
#include "cdu/mcu_pages.h"

#include "display/gdi_objects.h"
#include "frame/data_text.h"
#include "frame/fsuipc_client.h"
#include "frame/global_config.h"
#include "frame/input_capture.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/runway_tuning.h"
#include "guidance/vnav.h"
#include "navdata/magnetic_model.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

McuState g_mcu_state;

void ResetMcuState() { g_mcu_state = McuState{}; }

// [SECTION] Drawing helpers
namespace {
constexpr float kRowY[] = {0, 13, 25, 37, 49, 61};   // heading, four lines, the entry row
constexpr float kRightColumnX = 150;                 // TO page's status column
constexpr float kFlyoverMarkX = 50;
constexpr float kLegsAltitudeX = 155;
constexpr float kFieldX = 70;                        // the spelled name's first character
constexpr float kFieldPitch = 10;                    // design units a character of the field
constexpr float kReverseCharWidth = 8;               // a highlighted line's width per character
constexpr float kRowHeight = 12;
constexpr int kTextSize = 160;                   // a line with the longest ident in it
constexpr double kNearOriginNmMcu = 7;               // within it the departure airport is the one shown
constexpr double kMinimumTimeSpeed = 1;              // knots: below it no time is worked out
constexpr int kAptRunwaysPerPage = kMcuLines;
constexpr int kActiveRunwayLines = 4;                // two departure, two arrival runways

// One frame's drawing on the MCU screen.
class McuScreen {
public:
    explicit McuScreen(gdi::Graphics& g) : g_(g), font_("Arial", kMcuFontSize), green_(kMcuGreen), black_(kMcuBlack) {}
    void Heading(std::string_view text, float x = 0) { g_.DrawText(text, font_, kMcuGold, x, kRowY[0]); }
    void Text(std::string_view text, float x, int row, uint32_t colour = kMcuGreen) {
        g_.DrawText(text, font_, colour, x, kRowY[row]);
    }
    // Green bar under black text: the highlighted line.
    void Reverse(std::string_view text, float x, int row) {
        int width = static_cast<int>(kReverseCharWidth * static_cast<float>(text.size()));
        g_.FillRectangle(green_, static_cast<int>(x), static_cast<int>(kRowY[row]), width, static_cast<int>(kRowHeight));
        g_.DrawText(text, font_, kMcuBlack, x, kRowY[row]);
    }
    // A black bar over a line that is drawn anew without the whole screen.
    void Blank(float x, int row, float width) {
        g_.FillRectangle(black_, static_cast<int>(x), static_cast<int>(kRowY[row]), static_cast<int>(width),
                         static_cast<int>(kRowHeight));
    }
    // The six characters of the field, the cursor's reversed while spelling;
    // typed text stands as one string.
    void Field(const McuState& m, int row, bool cursor) {
        if (!cursor) {
            Text(McuFieldText(), kFieldX, row);
            return;
        }
        for (int i = 0; i < kMcuFieldLength; ++i) {
            char c = m.McuField[static_cast<size_t>(i)];
            char one[2] = {c == 0 ? ' ' : c, 0};
            float x = kFieldX + kFieldPitch * static_cast<float>(i);
            if (cursor && i + 1 == m.McuCursor)
                Reverse(one, x, row);
            else if (one[0] != ' ')
                Text(one, x, row);
        }
    }

private:
    gdi::Graphics& g_;
    gdi::Font font_;
    gdi::SolidBrush green_;
    gdi::SolidBrush black_;
};

// Magnetic bearing from true, by the rule of the pages: 360 added below 0.5.
double Magnetic(double true_bearing, double variation) {
    double m = true_bearing - variation;
    if (m < 0.5) m += 360;
    return m;
}

double ModelVariation(double lat, double lon) {
    return static_cast<double>(MagneticVariation(static_cast<int>(lat), static_cast<int>(lon)));
}

const char* TypeOfKind(std::string_view kind) {
    if (kind == "APT") return "APT";
    if (kind == "V") return "VOR";
    if (kind == "N") return "NDB";
    if (kind == "I") return "INT";
    return "WPT";
}
}  // namespace

// [SECTION] Spelling and candidates
namespace {
// The rocker's character cycle: blank, 0 to 9, A to Z, and round again.
constexpr char kCycle[] = " 0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr int kCycleLength = static_cast<int>(sizeof kCycle - 1);

int CycleIndex(char c) {
    for (int i = 0; i < kCycleLength; ++i)
        if (kCycle[i] == c) return i;
    return 0;  // anything else counts as a blank
}

void PadField(McuState& m) {
    for (int i = 0; i < kMcuFieldLength; ++i)
        if (m.McuField[static_cast<size_t>(i)] == 0) m.McuField[static_cast<size_t>(i)] = ' ';
    m.McuField[kMcuFieldLength] = 0;
}

bool HasPrefix(std::string_view ident, std::string_view prefix) {
    return ident.size() >= prefix.size() && ident.substr(0, prefix.size()) == prefix;
}

// The keyboard's text and requests, and the rocker's steps, on pages 2 and 7.
void SpellingStep(McuState& m, bool airports_only) {
    InputCaptureState& c = g_input_capture;
    // The typed text is the field while entry runs, and once more when Return ended it.
    if (g_mcu_page.direct_entry || c.end_of_entry) {
        m.McuField = {};
        std::string_view typed = EntryText();
        size_t n = std::min(typed.size(), static_cast<size_t>(kMcuFieldLength));
        for (size_t i = 0; i < n; ++i) {
            char ch = typed[i];
            // A failure text on the line is no name.
            if (CycleIndex(ch) == 0) {
                m.McuField = {};
                n = 0;
                break;
            }
            m.McuField[i] = ch;
        }
        PadField(m);
        m.McuCursor = std::min(static_cast<int>(n) + 1, kMcuFieldLength);
        m.McuEditing = kMcuEditName;
    }
    // The rocker: the first press opens the field, later ones spell.
    if (m.RockerLatch != 0) {
        if (m.McuEditing != kMcuEditName) {
            m.McuEditing = kMcuEditName;
            m.McuField = {};
            PadField(m);
            m.McuCursor = 1;
        } else {
            PadField(m);
            char& ch = m.McuField[static_cast<size_t>(m.McuCursor - 1)];
            switch (m.RockerLatch) {
            case kRockerLeft: m.McuCursor = std::max(1, m.McuCursor - 1); break;
            case kRockerRight: m.McuCursor = std::min(kMcuFieldLength, m.McuCursor + 1); break;
            case kRockerUp: ch = kCycle[(CycleIndex(ch) + 1) % kCycleLength]; break;
            case kRockerDown: ch = kCycle[(CycleIndex(ch) + kCycleLength - 1) % kCycleLength]; break;
            default: break;
            }
        }
    }
    if (m.McuEditing != kMcuEditName) return;
    // A changed name is looked up again.
    std::string_view name = McuFieldText();
    if (name != TextOf(m.LookedUp)) {
        SetText(m.LookedUp, name);
        BuildMcuCandidates(name, airports_only);
    }
    // PREV and NEXT, or the cursor keys, step through the candidates.
    if (m.candidate_count > 0) {
        if (m.McuPrev) m.candidate = m.candidate <= 1 ? m.candidate_count : m.candidate - 1;
        if (m.McuNext) m.candidate = m.candidate >= m.candidate_count ? 1 : m.candidate + 1;
    }
}
}  // namespace

std::string_view McuFieldText() {
    std::string_view text = TextOf(g_mcu_state.McuField);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    return text;
}

int BuildMcuCandidates(std::string_view prefix, bool airports_only) {
    McuState& m = g_mcu_state;
    m.candidate_count = 0;
    m.candidate = 0;
    if (prefix.empty()) return 0;
    // Navaids, intersections, then airports, as the name search walks them.
    const NavTableId kAll[] = {NavTableId::Navaids, NavTableId::Intersections, NavTableId::Airports};
    const NavTableId kAirports[] = {NavTableId::Airports};
    const NavTableId* tables = airports_only ? kAirports : kAll;
    int table_count = airports_only ? 1 : 3;
    for (int t = 0; t < table_count && m.candidate_count < kCandidateLimit; ++t) {
        const BulkTable& table = TableOf(tables[t]);
        for (int row = 1; row <= table.count && m.candidate_count < kCandidateLimit; ++row) {
            const BulkRow& r = table.rows[static_cast<size_t>(row)];
            if (r.ident_length < prefix.size() || !HasPrefix(IdentOf(table, row), prefix)) continue;
            McuCandidate& c = m.candidates[static_cast<size_t>(++m.candidate_count)];
            CopyRecord(table, row, c.record);
            SetText(c.type, TypeOfKind(TextOf(c.record.Kind)));
            double bearing = 0;
            GreatCircle(g_sim.latitude, g_sim.longitude, c.record.Latitude, c.record.Longitude, c.distance, bearing);
            c.bearing = Magnetic(bearing, g_sim.magnetic_variation);
        }
    }
    // The name itself first, then nearest first: the fix the pilot means is
    // most often the one spelled out, else the one at hand.
    std::stable_sort(m.candidates.begin() + 1, m.candidates.begin() + 1 + m.candidate_count,
                     [prefix](const McuCandidate& a, const McuCandidate& b) {
                         bool a_exact = TextOf(a.record.Ident) == prefix, b_exact = TextOf(b.record.Ident) == prefix;
                         if (a_exact != b_exact) return a_exact;
                         return a.distance < b.distance;
                     });
    m.candidate = m.candidate_count > 0 ? 1 : 0;
    return m.candidate_count;
}

// [SECTION] Plan helpers
namespace {
bool HavePlan() {
    const PlanContext& pc = g_plan.context;
    return pc.ActiveLeg != kNoActiveLeg && pc.ActiveLastRow >= 1 && pc.ActiveLeg <= pc.ActiveLastRow;
}

const PlanWaypoint& ActiveRow(int row) { return g_plan.ActivePlan[static_cast<size_t>(std::clamp(row, 0, kPlanRows - 1))]; }

// The leg flown to becomes `row`; a running intercept starts again from here.
void SetActiveLeg(int row) {
    PlanContext& pc = g_plan.context;
    pc.ActiveLeg = row;
    pc.ModActiveLeg = row;
    pc.ActiveWaypointLatitude = ActiveRow(row).Latitude;
    pc.ActiveWaypointLongitude = ActiveRow(row).Longitude;
    if (g_lnav.InterceptActive) LnavDirectExecuted();
}

// The leg into `row`: distance and magnetic course from the row before.
void LegInto(int row, double& distance, double& course) {
    distance = 0;
    course = 0;
    if (row < 1) return;
    const PlanWaypoint& from = ActiveRow(row - 1);
    const PlanWaypoint& to = ActiveRow(row);
    double bearing = 0;
    GreatCircle(from.Latitude, from.Longitude, to.Latitude, to.Longitude, distance, bearing);
    course = Magnetic(bearing, ModelVariation(from.Latitude, from.Longitude));
}

// hh:mm of a distance at the present ground speed; 00:00 standing still.
void TimeAt(double distance, int& hours, int& minutes) {
    double speed = g_sim.ground_speed;
    int total = speed < kMinimumTimeSpeed ? 0 : static_cast<int>(distance / speed * 60.0);
    total = std::clamp(total, 0, 99 * 60 + 59);
    hours = total / 60;
    minutes = total % 60;
}
}  // namespace

// [SECTION] TO page
namespace {
// The lines that move with the aircraft; `blank` draws each over a black bar.
void DrawToMovingLines(McuScreen& screen, bool blank) {
    const PlanContext& pc = g_plan.context;
    const LnavState& l = g_lnav;
    char text[kTextSize];
    const PlanWaypoint& last = ActiveRow(pc.ActiveLastRow);
    double to_destination = 0, destination_bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, last.Latitude, last.Longitude, to_destination, destination_bearing);
    destination_bearing = Magnetic(destination_bearing, g_sim.magnetic_variation);
    int leg_h = 0, leg_m = 0, dest_h = 0, dest_m = 0;
    TimeAt(std::max(0.0, l.DistToActive), leg_h, leg_m);
    TimeAt(to_destination, dest_h, dest_m);
    if (blank)
        for (int row = 1; row <= 4; ++row) screen.Blank(0, row, kRightColumnX);
    std::snprintf(text, sizeof text, "DIST: %-4.1f NM", std::max(0.0, l.DistToActive));
    screen.Text(text, 0, 1);
    std::snprintf(text, sizeof text, "BRG:  %03.0f", l.BearingToActive);
    screen.Text(text, 0, 2);
    std::snprintf(text, sizeof text, "ETE:  %02d:%02d (%02d:%02d)", leg_h, leg_m, dest_h, dest_m);
    screen.Text(text, 0, 3);
    std::snprintf(text, sizeof text, "%s:%4.0f/%03.0f", last.Ident.data(), to_destination, destination_bearing);
    screen.Text(text, 0, 4);
}

void ToPage(McuScreen* screen, bool moving_only) {
    McuState& m = g_mcu_state;
    const PlanContext& pc = g_plan.context;
    // PREV and NEXT step the active leg round the plan.
    if (HavePlan() && (m.McuPrev || m.McuNext)) {
        int leg = pc.ActiveLeg;
        if (m.McuPrev) leg = leg <= 1 ? pc.ActiveLastRow : leg - 1;
        if (m.McuNext) leg = leg >= pc.ActiveLastRow ? 1 : leg + 1;
        SetActiveLeg(leg);
    }
    if (screen == nullptr) return;
    if (!HavePlan()) {
        if (!moving_only) screen->Heading("TO:");
        return;
    }
    // Once a second the lines are drawn again over black bars, without the
    // whole screen: the distances and times move, and with them the leg
    // count of the heading and the modes of the status column.
    if (moving_only) screen->Blank(0, 0, kMcuDesignWidth);
    // Heading: the active waypoint, its frequency or type, its place in the plan.
    const PlanWaypoint& to = ActiveRow(pc.ActiveLeg);
    char text[kTextSize];
    std::string_view name = TextOf(to.Ident);
    if (to.Frequency[0] != 0)
        std::snprintf(text, sizeof text, "TO:   %-5s %-6s %d/%d", to.Ident.data(), to.Frequency.data(), pc.ActiveLeg,
                      pc.ActiveLastRow);
    else if (name.size() > 7)
        std::snprintf(text, sizeof text, "TO:   %-15s%d/%d", to.Ident.data(), pc.ActiveLeg, pc.ActiveLastRow);
    else
        std::snprintf(text, sizeof text, "TO:   %-7s%-8s%d/%d", to.Ident.data(), to.WaypointType.data(), pc.ActiveLeg,
                      pc.ActiveLastRow);
    if (to.Flyover) std::strncat(text, " (FO)", sizeof text - std::strlen(text) - 1);
    screen->Heading(text);
    DrawToMovingLines(*screen, moving_only);
    // The status column: LNAV, the hold, a forced turn, VNAV.
    if (moving_only)
        for (int row = 1; row <= 4; ++row) screen->Blank(kRightColumnX, row, kMcuDesignWidth - kRightColumnX);
    std::snprintf(text, sizeof text, "LNAV(%s)", g_lnav.LnavOn ? "ON" : "OFF");
    screen->Text(text, kRightColumnX, 1);
    if (g_holds.HoldCount > 0) {
        const PlanWaypoint& fix = ActiveRow(g_holds.HoldTable[1].ActiveRow);
        std::snprintf(text, sizeof text, "HOLD(%s) ", g_holds.HoldFlying ? fix.Ident.data() : "ARM");
        screen->Text(text, kRightColumnX, 2);
    }
    if (g_lnav.ForcedTurnSide != 0) {
        std::snprintf(text, sizeof text, "DCTTO (%3.0fD)", g_lnav.BearingToActive);
        screen->Text(text, kRightColumnX, 3);
    }
    if (g_vnav.VnavOn) screen->Text("VNAV", kRightColumnX, 4);
}
}  // namespace

// [SECTION] FPLN page
namespace {
void FplnPage(McuScreen* screen) {
    McuState& m = g_mcu_state;
    if (m.ListReloadLatch) {
        BuildStoredPlanTable();
        m.FplnSelected = 1;
        m.FplnFirst = 1;
    }
    // The list without its "NEW FPL" entry: the MCU loads stored plans only.
    int count = std::clamp(g_stored_plans.count - 1, 0, kStoredPlanLimit);
    if (count > 0) {
        if (m.McuPrev) m.FplnSelected = m.FplnSelected <= 1 ? count : m.FplnSelected - 1;
        if (m.McuNext) m.FplnSelected = m.FplnSelected >= count ? 1 : m.FplnSelected + 1;
        m.FplnSelected = std::clamp(m.FplnSelected, 1, count);
        if (m.FplnSelected < m.FplnFirst) m.FplnFirst = m.FplnSelected;
        if (m.FplnSelected >= m.FplnFirst + kMcuLines) m.FplnFirst = m.FplnSelected - kMcuLines + 1;
        // ENTER: the plan is loaded as the active plan at the end of the next tick.
        if (m.McuEnter) {
            RequestRouteLoad(g_stored_plans.entries[static_cast<size_t>(m.FplnSelected)].FileName.data(), 1);
            m.McuPage = mcu_page::kTo;
            g_mcu_page.repaint = 1;
            g_tick.slow_refresh = 999;
            return;
        }
    }
    if (screen == nullptr) return;
    screen->Heading("FPLN:");
    for (int line = 0; line < kMcuLines; ++line) {
        int entry = m.FplnFirst + line;
        if (entry > count) break;
        std::string_view name = TextOf(g_stored_plans.entries[static_cast<size_t>(entry)].FileName);
        if (entry == m.FplnSelected)
            screen->Reverse(name, 0, line + 1);
        else
            screen->Text(name, 0, line + 1);
    }
}
}  // namespace

// [SECTION] APT page
namespace {
// The airport under the active plan: the one named by the last load, else
// the departure while near it, else the destination.
std::string_view PlanAirport() {
    const PlanContext& pc = g_plan.context;
    if (pc.McuAirportText[0] != 0) return TextOf(pc.McuAirportText);
    if (pc.ActiveLastRow < 0) return {};
    const PlanWaypoint& first = ActiveRow(0);
    double distance = 0, bearing = 0;
    GreatCircle(g_sim.latitude, g_sim.longitude, first.Latitude, first.Longitude, distance, bearing);
    const PlanWaypoint& airport = distance <= kNearOriginNmMcu ? first : ActiveRow(pc.ActiveLastRow);
    return TextOf(airport.WaypointType) == "APT" ? TextOf(airport.Ident) : std::string_view{};
}

// The airport's runways into InfoAirport; the plan's first row keeps its
// own elevation when another airport is looked at.
void LoadMcuAirport(std::string_view ident) {
    McuState& m = g_mcu_state;
    if (ident.empty()) return;
    std::array<char, kIdentSize> name{};
    SetText(name, ident);
    double first_altitude = g_plan.ActivePlan[0].Altitude;
    SetAirport(TextOf(name), 0);
    if (TextOf(g_plan.ActivePlan[0].Ident) != TextOf(name)) g_plan.ActivePlan[0].Altitude = first_altitude;
    m.apt.page = 1;
    m.AptSelected = 0;
}

void AptPage(McuScreen* screen) {
    McuState& m = g_mcu_state;
    const InfoAirportState& info = g_airports.InfoAirport;
    if (m.AirportLoadLatch) LoadMcuAirport(PlanAirport());
    SpellingStep(m, true);
    bool spelling = m.McuEditing == kMcuEditName;
    // ENTER on a candidate shows that airport.
    if (spelling && m.McuEnter && m.candidate > 0) {
        LoadMcuAirport(TextOf(m.candidates[static_cast<size_t>(m.candidate)].record.Ident));
        m.McuEditing = 0;
        spelling = false;
        m.McuEnter = 0;
    }
    int runways = std::clamp(info.RunwayCount, 0, kRunwayLimit);
    bool active_page = g_config.McuShowActiveRwys == 1;
    m.apt.count = std::max(1, (runways + kAptRunwaysPerPage - 1) / kAptRunwaysPerPage + (active_page ? 1 : 0));
    if (m.McuPrevPage) m.apt.page = m.apt.page <= 1 ? m.apt.count : m.apt.page - 1;
    if (m.McuNextPage) m.apt.page = m.apt.page >= m.apt.count ? 1 : m.apt.page + 1;
    m.apt.page = std::clamp(m.apt.page, 1, m.apt.count);
    // Without a name being spelled PREV and NEXT choose a runway, and ENTER
    // asks the tick to tune its ILS.
    if (!spelling && runways > 0) {
        if (m.McuPrev) m.AptSelected = m.AptSelected <= 1 ? runways : m.AptSelected - 1;
        if (m.McuNext) m.AptSelected = m.AptSelected >= runways ? 1 : m.AptSelected + 1;
        if (m.McuPrev || m.McuNext) m.apt.page = (m.AptSelected - 1) / kAptRunwaysPerPage + 1;
        if (m.McuEnter && m.AptSelected >= 1 && m.AptSelected <= runways) {
            const RunwayRecord& r = info.Runways[static_cast<size_t>(m.AptSelected)];
            RunwayTuningState& t = g_runway_tuning;
            t.selected = m.AptSelected;
            t.runway = r.Ident;
            t.ils_frequency = r.IlsFrequency;
            t.ils_course = r.IlsCourse;
            g_tick.tuning_requests = 1;
        }
    }
    if (screen == nullptr) return;
    char text[kTextSize];
    std::snprintf(text, sizeof text, "APT: %-4s - Elev:%-5s  %d/%d", info.Ident.data(), info.ElevationText.data(),
                  m.apt.page, m.apt.count);
    screen->Heading(text);
    int runway_pages = (runways + kAptRunwaysPerPage - 1) / kAptRunwaysPerPage;
    if (m.apt.page <= runway_pages) {
        for (int line = 0; line < kAptRunwaysPerPage; ++line) {
            int row = (m.apt.page - 1) * kAptRunwaysPerPage + line + 1;
            if (row > runways) break;
            const RunwayRecord& r = info.Runways[static_cast<size_t>(row)];
            std::snprintf(text, sizeof text, "%-3s %3s %-6s %03d %6d", r.Ident.data(), r.IlsIdent.data(),
                          r.IlsFrequency.data(), static_cast<int>(r.IlsCourse), r.LengthFt);
            if (row == m.AptSelected)
                screen->Reverse(text, 0, line + 1);
            else
                screen->Text(text, 0, line + 1);
        }
    } else if (active_page) {
        // The runways in use, as the simulator's weather gives them.
        auto runway = [](int i) {
            std::string_view line = TextOf(g_fsuipc.runway_lines[static_cast<size_t>(i)]);
            while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.remove_suffix(1);
            return std::string(line);
        };
        for (int half = 0; half < 2; ++half) {
            screen->Text(half == 0 ? "AI Departure Rwys:" : "AI Arrival Rwys:", 0, 1 + 2 * half, kMcuGold);
            std::string first = runway(2 * half), second = runway(2 * half + 1);
            screen->Text(first, 0, 2 + 2 * half);
            if (!second.empty()) {
                std::snprintf(text, sizeof text, ",%s", second.c_str());
                screen->Text(text, 8.0f * static_cast<float>(first.size() + 1), 2 + 2 * half, kMcuMagenta);
            }
        }
    }
    // The entry row: the spelled name and its candidate.
    if (spelling || g_mcu_page.direct_entry) {
        screen->Field(m, 5, spelling && !g_mcu_page.direct_entry);
        if (m.candidate > 0) {
            const McuCandidate& c = m.candidates[static_cast<size_t>(m.candidate)];
            std::snprintf(text, sizeof text, "%-5s %3s %03.0f", c.record.Ident.data(), c.type.data(), c.bearing);
            screen->Text(text, kFieldX + kFieldPitch * (kMcuFieldLength + 1), 5);
        }
    }
}
}  // namespace

// [SECTION] LEGS page
namespace {
// A crossing altitude at row r: the restrictions between the active leg and
// the row chosen before go, r becomes the next target, and the plan is
// committed at once (the MCU has no MOD state).
void StoreCrossing(int r, int altitude) {
    McuState& m = g_mcu_state;
    PlanContext& pc = g_plan.context;
    VnavState& v = g_vnav;
    BeginModification();
    int clear_to = std::max(m.LegsRestrictionRow, r);
    for (int i = pc.ActiveLeg; i <= clear_to && i <= pc.ActiveLastRow; ++i) {
        g_plan.ActivePlan[static_cast<size_t>(i)].Restricted = 0;
        g_plan.ModPlan[static_cast<size_t>(i)].Restricted = 0;
    }
    pc.NextRestrictionRow = r;
    pc.ModNextRestrictionRow = r;
    for (PlanTable* plan : {&g_plan.ActivePlan, &g_plan.ModPlan}) {
        PlanWaypoint& row = (*plan)[static_cast<size_t>(r)];
        row.Altitude = altitude;
        row.Restricted = 1;
    }
    v.TargetLatitude = ActiveRow(r).Latitude;
    v.TargetLongitude = ActiveRow(r).Longitude;
    v.TargetAltitude = altitude;
    if (v.CruiseReached) v.DescentActive = 0;
    v.DescentStartAltitude = g_sim.indicated_altitude.now;
    bool to_airport = r == pc.ActiveLastRow && TextOf(ActiveRow(r).WaypointType) == "APT";
    m.LegsRestrictionRow = r;
    pc.PlanState = 4;
    PlanExecute();
    if (to_airport) v.TargetAltitude += 200;  // the airport's crossing is above its elevation
}

void LegsPage(McuScreen* screen) {
    McuState& m = g_mcu_state;
    const PlanContext& pc = g_plan.context;
    bool plan = HavePlan();
    if (plan) {
        int last = pc.ActiveLastRow;
        m.LegsSelected = std::clamp(m.LegsSelected, 1, last);
        if (m.McuPrev || g_input_capture.cursor_up) m.LegsSelected = m.LegsSelected <= 1 ? last : m.LegsSelected - 1;
        if (m.McuNext || g_input_capture.cursor_down) m.LegsSelected = m.LegsSelected >= last ? 1 : m.LegsSelected + 1;
        if (m.LegsSelected < m.LegsFirst) m.LegsFirst = m.LegsSelected;
        if (m.LegsSelected >= m.LegsFirst + kMcuLines) m.LegsFirst = m.LegsSelected - kMcuLines + 1;
        m.LegsFirst = std::clamp(m.LegsFirst, 1, last);
        // The rocker opens the crossing edit, then steps its altitude.
        if (m.RockerLatch != 0) {
            if (!m.McuLegsEdit) {
                m.McuLegsEdit = 1;
                m.McuEditing = kMcuEditValue;
                m.LegsEditValue = 0;
            } else {
                int& v = m.LegsEditValue;
                if (m.RockerLatch == kRockerUp && v + 1000 <= kMcuAltitudeTop) v += 1000;
                if (m.RockerLatch == kRockerDown && v - 1000 >= 0) v -= 1000;
                if (m.RockerLatch == kRockerRight && v + 500 <= kMcuAltitudeTopHalf) v += 500;
                if (m.RockerLatch == kRockerLeft && v - 500 >= 0) v -= 500;
            }
        }
        if (m.McuEnter) {
            if (m.McuLegsEdit) {
                StoreCrossing(m.LegsSelected, m.LegsEditValue);
                m.McuLegsEdit = 0;
                m.McuEditing = 0;
            } else {
                SetActiveLeg(m.LegsSelected);
            }
        }
    }
    if (screen == nullptr) return;
    screen->Heading("LEGS:");
    if (!plan) return;
    char text[kTextSize];
    for (int line = 0; line < kMcuLines; ++line) {
        int row = m.LegsFirst + line;
        if (row > pc.ActiveLastRow) break;
        const PlanWaypoint& w = ActiveRow(row);
        double distance = 0, course = 0;
        LegInto(row, distance, course);
        std::snprintf(text, sizeof text, "%-5s   %5.0f %03.0f", w.Ident.data(), distance, course);
        if (row == m.LegsSelected)
            screen->Reverse(text, 0, line + 1);
        else
            screen->Text(text, 0, line + 1);
        if (w.Flyover) screen->Text("F", kFlyoverMarkX, line + 1, kMcuMagenta);
        if (row == pc.NextRestrictionRow && w.Altitude > kNoAltitude) {
            std::snprintf(text, sizeof text, "%5.0f", w.Altitude);
            screen->Text(text, kLegsAltitudeX, line + 1);
        }
    }
    if (m.McuLegsEdit) {
        char value[16];
        std::snprintf(value, sizeof value, "%05d", m.LegsEditValue);
        std::snprintf(text, sizeof text, "> Cross %s At %s", ActiveRow(m.LegsSelected).Ident.data(), value);
        screen->Text(text, 0, 5);
    }
}
}  // namespace

// [SECTION] DIRTO page
namespace {
// The active plan becomes "DIRECT" at the aircraft, then the candidate; a
// destination airport stays behind a fix, and an airport is the end itself.
void DirectTo(const McuCandidate& c) {
    PlanContext& pc = g_plan.context;
    PlanWaypoint destination = ActiveRow(pc.ActiveLastRow);
    bool keep_destination = pc.ActiveLastRow >= 1 && TextOf(destination.WaypointType) == "APT" &&
                            TextOf(c.type) != "APT" && TextOf(destination.Ident) != TextOf(c.record.Ident);
    PlanWaypoint& start = g_plan.ModPlan[0];
    NewPlanRow(start);
    SetText(start.Ident, "DIRECT");
    start.Latitude = g_sim.latitude;
    start.Longitude = g_sim.longitude;
    SetText(start.WaypointType, "WPT");
    start.Altitude = kNoAltitude;
    PlanWaypoint& fix = g_plan.ModPlan[1];
    NewPlanRow(fix);
    SetText(fix.Ident, TextOf(c.record.Ident));
    fix.Latitude = c.record.Latitude;
    fix.Longitude = c.record.Longitude;
    SetText(fix.WaypointType, TextOf(c.type));
    SetText(fix.Frequency, TextOf(c.record.Frequency));
    if (TextOf(c.type) == "APT") fix.Altitude = std::atof(c.record.Elevation.data());
    pc.ModLastRow = 1;
    if (keep_destination) {
        g_plan.ModPlan[2] = destination;
        g_plan.ModPlan[2].HoldIndex = 0;
        pc.ModLastRow = 2;
    }
    pc.ModActiveLeg = 1;
    pc.ModNextRestrictionRow = pc.ModLastRow;
    RemoveAllHolds();
    PlanExecute();
    SetActiveLeg(1);
    LnavDirectExecuted();
}

void DirtoPage(McuScreen* screen) {
    McuState& m = g_mcu_state;
    SpellingStep(m, false);
    if (m.McuEnter && m.candidate > 0) {
        DirectTo(m.candidates[static_cast<size_t>(m.candidate)]);
        if (g_mcu_page.direct_entry) StopDirectEntry();
        m.McuEditing = 0;
        m.McuPage = mcu_page::kTo;
        g_mcu_page.repaint = 1;
        g_tick.slow_refresh = 999;
        return;
    }
    if (screen == nullptr) return;
    screen->Heading("DIRTO:");
    screen->Text("DIRECT", 0, 1, kMcuGold);
    char text[kTextSize];
    std::snprintf(text, sizeof text, " %s ", std::string(McuFieldText()).c_str());
    if (m.McuEditing == kMcuEditName || g_mcu_page.direct_entry)
        screen->Field(m, 1, !g_mcu_page.direct_entry);
    else
        screen->Text(text, kFieldX, 1);
    // The candidate ENTER takes, and the two after it.
    for (int line = 0; line < 3 && m.candidate > 0; ++line) {
        int i = m.candidate + line;
        if (i > m.candidate_count) break;
        const McuCandidate& c = m.candidates[static_cast<size_t>(i)];
        std::snprintf(text, sizeof text, "%-5s %3s %03.0f", c.record.Ident.data(), c.type.data(), c.bearing);
        if (line == 0)
            screen->Reverse(text, 0, line + 2);
        else
            screen->Text(text, 0, line + 2);
    }
    if (m.candidate_count > 0) {
        std::snprintf(text, sizeof text, "%d/%d", m.candidate, m.candidate_count);
        screen->Text(text, kRightColumnX + 50, 1);
    }
}
}  // namespace

// [SECTION] ALT/FL page
namespace {
constexpr unsigned kAutopilotAltitudeEvent = 0x1024C;

void AltFlPage(McuScreen* screen) {
    McuState& m = g_mcu_state;
    int& v = m.McuAltitudeEntry;
    if (m.RockerLatch == kRockerUp && v + 1000 <= kMcuAltitudeTop) v += 1000;
    if (m.RockerLatch == kRockerDown && v - 1000 >= 0) v -= 1000;
    if (m.RockerLatch == kRockerRight && v + 500 <= kMcuAltitudeTopHalf) v += 500;
    if (m.RockerLatch == kRockerLeft && v - 500 >= 0) v -= 500;
    if (m.McuEnter) {
        TriggerKeyEvent(kAutopilotAltitudeEvent, static_cast<UINT32>(v));
        m.McuEditing = 0;
        m.McuPage = mcu_page::kTo;
        g_mcu_page.repaint = 1;
        g_tick.slow_refresh = 999;
        return;
    }
    if (screen == nullptr) return;
    char text[kTextSize];
    screen->Heading("ALT/FL:");
    std::snprintf(text, sizeof text, "AP ALT:   %05.0f", g_sim.autopilot_altitude.now);
    screen->Text(text, 0, 1);
    std::snprintf(text, sizeof text, "NEW ALT:  %05.0f", static_cast<double>(v));
    screen->Text(text, 0, 2);
}
}  // namespace

// [SECTION] Dispatcher
namespace {
void ClearLatches() {
    McuState& m = g_mcu_state;
    m.McuEnter = m.McuPrev = m.McuNext = m.McuPrevPage = m.McuNextPage = 0;
    m.RockerLatch = 0;
    m.ListReloadLatch = 0;
    m.AirportLoadLatch = 0;
    InputCaptureState& c = g_input_capture;
    c.cursor_up = c.cursor_down = c.page_up = c.page_down = 0;
    c.end_of_entry = 0;
}

// The page of McuPage; a null screen acts on the keys without drawing.
void RunPage(McuScreen* screen, bool moving_only) {
    switch (g_mcu_state.McuPage) {
    case mcu_page::kTo: ToPage(screen, moving_only); break;
    case mcu_page::kFpln: FplnPage(moving_only ? nullptr : screen); break;
    case mcu_page::kApt: AptPage(moving_only ? nullptr : screen); break;
    case mcu_page::kLegs: LegsPage(moving_only ? nullptr : screen); break;
    case mcu_page::kDirto: DirtoPage(moving_only ? nullptr : screen); break;
    case mcu_page::kAltFl: AltFlPage(moving_only ? nullptr : screen); break;
    default: break;  // a number without a page: black, no error
    }
}
}  // namespace

void McuPageDispatcher(HDC hdc, int width, int height) {
    McuState& m = g_mcu_state;
    McuPageState& p = g_mcu_page;
    TickState& t = g_tick;
    // 1. The keyboard's cursor and page keys are the page's PREV, NEXT and page steps.
    const InputCaptureState& c = g_input_capture;
    if (c.cursor_up) m.McuPrev = 1;
    if (c.cursor_down) m.McuNext = 1;
    if (c.page_up) m.McuPrevPage = 1;
    if (c.page_down) m.McuNextPage = 1;
    if (c.cursor_up || c.cursor_down || c.page_up || c.page_down || c.end_of_entry) p.repaint = 1;
    // 2. No avionics power: the screen is cleared once and left.
    if (g_sim.avionics_power == 0) {
        if (p.repaint || t.slow_refresh == 0) {
            gdi::Graphics g(hdc);
            g.Clear(kMcuBlack);
        }
        p.repaint = 0;
        ClearLatches();
        return;
    }
    // 3. The page acts; it draws everything when asked, else on TO only the
    // moving lines once a second, else nothing and the screen stays.
    // (The page may ask for a repaint itself, so the test follows it.)
    bool whole = p.repaint != 0 || t.slow_refresh == 0;
    bool moving = !whole && m.McuPage == mcu_page::kTo && t.second_elapsed != 0;
    if (!whole && !moving) {
        RunPage(nullptr, false);
        whole = p.repaint != 0;  // a key acted on may have asked for it
        if (!whole) {
            ClearLatches();
            return;
        }
        // The page has acted; what it draws now must not act twice.
        ClearLatches();
    }
    gdi::Graphics g(hdc);
    g.SetSmoothing(SmoothingModeHighQuality);
    g.SetTextHint(TextRenderingHintAntiAlias);
    g.ResetTransform();
    if (width > 0 && height > 0)
        g.Scale(static_cast<float>(width) / kMcuDesignWidth, static_cast<float>(height) / kMcuDesignHeight);
    {
        McuScreen screen(g);
        if (whole) {
            g.Clear(kMcuBlack);
            ++m.paints;
            int page = m.McuPage;
            RunPage(&screen, false);
            // A key that led to another page: that page is drawn in the same
            // frame, its latches already spent.
            if (m.McuPage != page) {
                ClearLatches();
                g.Clear(kMcuBlack);
                RunPage(&screen, false);
            }
        } else {
            RunPage(&screen, true);
        }
    }
    if (m.McuPage == mcu_page::kTo) t.second_elapsed = 0;
    p.repaint = 0;
    ClearLatches();
}
