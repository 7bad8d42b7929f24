// nav_ref_pages.cpp: INIT/REF INDEX, IDENT, the three POS pages, NAV STATUS
// with NAV OPTIONS, and TEMP NAV SUMMARY: reference pages that show the
// identification, the position, the radios and the nearest stations, and
// the index's two plan commands (save the active plan, load the
// simulator's own plan).
//
// Index:
//   [SECTION] Shared helpers
//   [SECTION] INIT/REF INDEX
//   [SECTION] IDENT
//   [SECTION] POS
//   [SECTION] NAV STATUS and NAV OPTIONS
//   [SECTION] TEMP NAV SUMMARY
#include "cdu/nav_ref_pages.h"

#include "frame/aircraft_profile.h"
#include "frame/data_text.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"
#include "plan/sim_plans.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// [SECTION] Shared helpers
namespace {
constexpr double kFrequencyMatchMhz = 0.005;   // a tuned frequency and a file's text agree within this
constexpr float kActiveColumnX = 130;          // IDENT's "A C T I V E" column
constexpr float kCountY = 5;                   // POS and NAV STATUS draw their count lower than the title row
constexpr char kOpProgram[] = "296485 - 04 - 19      (V01.8.9.1)";
constexpr int kDaysInMonth[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr int kDaysInLeapYear = 366;
constexpr int kLatestYear = 9999;             // a year token above this is not a date

// One position part: hemisphere, whole degrees, minutes with the tenth.
void FormatPart(double value, char positive, char negative, int degree_digits, char* out, size_t size) {
    // A position the simulator can't give reads as 0 rather than overflow a conversion.
    if (!std::isfinite(value) || std::fabs(value) > 360) value = 0;
    char hemisphere = value < 0 ? negative : positive;
    double magnitude = std::fabs(value);
    int degrees = static_cast<int>(magnitude);
    // Tenths of a minute counted whole, so that 59.96 carries into the degree.
    long tenths = std::lround((magnitude - degrees) * 600);
    if (tenths >= 600) {
        tenths -= 600;
        ++degrees;
    }
    std::snprintf(out, size, "%c%0*d%02ld.%ld", hemisphere, degree_digits, degrees, tenths / 10, tenths % 10);
}

// A token that counts something, as a whole number within 0..highest.
int TokenInteger(int token, int highest) {
    double value = ReadToken(token);
    if (!std::isfinite(value) || value < 0) return 0;
    return value > highest ? highest : static_cast<int>(value);
}

// Month and day of the Zulu date from the day of the year.
void MonthAndDay(int day_of_year, int year, int& month, int& day) {
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    month = 1;
    day = day_of_year < 1 ? 1 : day_of_year;
    for (int m = 0; m < 12; ++m) {
        int days = kDaysInMonth[m] + (m == 1 && leap ? 1 : 0);
        if (day <= days || m == 11) break;
        day -= days;
        ++month;
    }
}

// The ident of the VOR near the aircraft that the frequency tunes; empty
// when none of the nearby ones has it.
const char* TunedIdent(double frequency_mhz) {
    const auto& navaids = g_nearby.NavaidsNear320;
    const char* best = "";
    double best_distance = 1e9;
    for (int i = 1; i <= navaids.count && i <= navaids.kLimit; ++i) {
        const NearbyRecord& r = navaids.rows[static_cast<size_t>(i)];
        if (std::fabs(std::atof(r.Frequency.data()) - frequency_mhz) > kFrequencyMatchMhz) continue;
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, r.Latitude, r.Longitude, distance, bearing);
        if (distance < best_distance) {
            best_distance = distance;
            best = r.Ident.data();
        }
    }
    return best;
}

void PresentPosition(char* out, size_t size) {
    char lat[16], lon[16];
    FormatDegreesMinutes(g_sim.latitude, g_sim.longitude, lat, sizeof lat, lon, sizeof lon);
    std::snprintf(out, size, "%s %s", lat, lon);
}

// The title of a page of several, with its count at x 220, y 5.
void TitleAndCount(CduScreen& screen, const char* title, int page, int count) {
    screen.Title(title);
    char text[16];
    std::snprintf(text, sizeof text, "%d / %d", page, count);
    screen.Label(text, kCduCountX, kCountY);
}

void RadioLine(CduScreen& screen, int row) {
    screen.Label("R A D I O", kCduRightLabelEdge, CduLabelY(row), gdi::TextAlign::Right);
    if (g_sim.dme1_distance > 0)
        screen.Value(TunedIdent(BcdNavFrequencyMhz(Token::NAV1_FREQUENCY)), kCduRightEdge, CduValueY(row),
                     gdi::TextAlign::Right);
}
}  // namespace

void FormatDegreesMinutes(double latitude, double longitude, char* lat_text, size_t lat_size, char* lon_text,
                          size_t lon_size) {
    FormatPart(latitude, 'N', 'S', 2, lat_text, lat_size);
    FormatPart(longitude, 'E', 'W', 3, lon_text, lon_size);
}

// [SECTION] INIT/REF INDEX
void SaveFlightPlanCommand() {
    const PlanContext& pc = g_plan.context;
    // 1. Only an active plan with entries is saved.
    if (pc.PlanState < 3 || pc.ActiveLastRow < 0 || pc.ActiveLastRow >= kPlanRows) {
        SetCduMessage(cdu_message::kNoActiveFlightPlan);
        return;
    }
    // 2. The name: the entry line, else the first and last idents; ".RTE" when it has no ".".
    char name[kFileNameSize];
    std::string_view typed = ScratchpadText();
    if (typed.empty())
        std::snprintf(name, sizeof name, "%s%s", g_plan.ActivePlan[0].Ident.data(),
                      g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLastRow)].Ident.data());
    else
        std::snprintf(name, sizeof name, "%.*s", static_cast<int>(typed.size()), typed.data());
    if (std::string_view(name).find('.') == std::string_view::npos)
        std::snprintf(name + std::strlen(name), sizeof name - std::strlen(name), ".RTE");
    // 3. Written, and told.
    int written = SaveRouteFile(name);
    char message[kCduMessageCapacity];
    std::snprintf(message, sizeof message, "%s%s", name,
                  written == 1 ? cdu_message::kSavedSuffix : cdu_message::kUnableToSaveSuffix);
    ClearScratchpad();
    SetCduMessage(message);
}

namespace {
// "LOAD ATC RTE>": the simulator's own plan, from its GPS data; the import
// tells the pilot on the message line either way.
void LoadSimulatorRoute() { ImportSimulatorGpsRoute(0); }
}  // namespace

void InitRefIndexPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;

    // The key of this frame.
    switch (s.LineSelectLatch) {
    case 1: s.CduPage = cdu_page::kIdent; break;
    case 2:
        s.CduPage = cdu_page::kPos;
        s.pos.page = 1;
        break;
    case 3:
        s.CduPage = cdu_page::kPerfInit;
        s.perf.page = 1;
        break;
    case 4: s.CduPage = cdu_page::kTakeoffRef; break;
    case 5: s.CduPage = cdu_page::kApproachRef; break;
    case 6:
        s.CduPage = cdu_page::kRefNavData;
        break;
    case 7:
        s.CduPage = cdu_page::kStoredFlightPlans;
        s.stored_plans.page = 1;
        break;
    case 8: LoadSimulatorRoute(); break;
    case kRightRow6Key: SaveFlightPlanCommand(); break;
    default: break;
    }
    if (s.CduPage != cdu_page::kInitRefIndex) return;

    // Draw.
    screen.Title("INIT/REF   INDEX");
    const char* left[] = {"<IDENT", "<POS", "<PERF", "<TAKEOFF", "<APPROACH"};
    for (int row = 1; row <= 5; ++row) screen.Value(left[row - 1], 0, CduValueY(row));
    screen.Value("NAV DATA>", kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
    screen.Value("FLIGHT PLANS>", kCduRightEdge, CduValueY(2), gdi::TextAlign::Right);
    screen.Value("LOAD ATC RTE>", kCduRightEdge, CduValueY(3), gdi::TextAlign::Right);
    screen.Rule();
    screen.Value("SAVE FPL>", kCduRightEdge, kNavRefRow6Y, gdi::TextAlign::Right);
}

// [SECTION] IDENT
void IdentPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    const AircraftProfile& profile = g_profile;

    // The key of this frame.
    if (s.LineSelectLatch == kLeftRow6Key) s.CduPage = cdu_page::kInitRefIndex;
    if (s.LineSelectLatch == kRightRow6Key) {
        s.CduPage = cdu_page::kPos;
        s.pos.page = 1;
    }
    if (s.CduPage != cdu_page::kIdent) return;

    // Draw.
    char value[48];
    screen.Title("IDENT");
    screen.Label("M O D E L", kCduLeftLabelX, CduLabelY(1));
    screen.Value(TextOf(profile.ModelId), 0, CduValueY(1));
    screen.Label("E N G   R A T I N G", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
    std::snprintf(value, sizeof value, "%2d K", profile.EngThrust);
    screen.Value(value, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
    screen.Label("N A V   D A T A", kCduLeftLabelX, CduLabelY(2));
    screen.Value(TextOf(g_navdb.DatabaseCycleText), 0, CduValueY(2));
    screen.Label("A C T I V E", kActiveColumnX, CduLabelY(2));
    screen.Value(TextOf(g_navdb.DatabaseDatesText), kActiveColumnX, CduValueY(2));
    screen.Label("O P   P R O G R A M", kCduLeftLabelX, CduLabelY(3));
    screen.Value(kOpProgram, 0, CduValueY(3));
    screen.Label("S U P P  D A T A", kCduLeftLabelX, CduLabelY(4));
    screen.Rule();
    screen.Value("<INDEX", 0, kNavRefRow6Y);
    screen.Value("POS  INIT>", kCduRightEdge, kNavRefRow6Y, gdi::TextAlign::Right);
}

// [SECTION] POS
void PosPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    StepPages(s.pos, kPosPageCount);

    // The key of this frame: no entry changes the position.
    if (s.LineSelectLatch == kLeftRow6Key) s.CduPage = cdu_page::kInitRefIndex;
    if (s.LineSelectLatch == kRightRow6Key) {
        s.CduPage = cdu_page::kRte;
        s.rte.page = 1;
    }
    if (s.CduPage != cdu_page::kPos) return;

    // Draw.
    char value[64];
    char position[40];
    PresentPosition(position, sizeof position);
    if (s.pos.page == 1) {
        TitleAndCount(screen, "POS   INIT", 1, kPosPageCount);
        screen.Label("L A S T   P O S", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
        screen.Value(position, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
        screen.Label("R E F    A I R P O R T", kCduLeftLabelX, CduLabelY(2));
        if (g_plan.context.ActiveLeg == kNoActiveLeg || g_plan.context.ActiveLastRow < 0)
            std::snprintf(value, sizeof value, "- - - -");
        else
            std::snprintf(value, sizeof value, "%4s", g_plan.ActivePlan[0].Ident.data());
        screen.Value(value, 0, CduValueY(2));
        screen.Label("G A T E", kCduLeftLabelX, CduLabelY(3));
        screen.Label("S E T   I R S    P O S", kCduRightLabelEdge, CduLabelY(4), gdi::TextAlign::Right);
        screen.Label("G M T  -  M O N / D V", kCduLeftLabelX, CduLabelY(5));
        int month = 1, day = 1;
        MonthAndDay(TokenInteger(Token::ZULU_DAY, kDaysInLeapYear), TokenInteger(Token::ZULU_YEAR, kLatestYear),
                    month, day);
        int tenth = std::isfinite(g_sim.clock_second) ? static_cast<int>(std::fmod(std::fabs(g_sim.clock_second), 60) / 6)
                                                      : 0;
        std::snprintf(value, sizeof value, "%02.0f%02.0f.%d z  %02d/%02d", g_sim.zulu_hour, g_sim.zulu_minute, tenth,
                      month, day);
        screen.Value(value, 0, CduValueY(5));
    } else if (s.pos.page == 2) {
        TitleAndCount(screen, "POS  REF", 2, kPosPageCount);
        screen.Label("F M C    P O S", kCduLeftLabelX, CduLabelY(1));
        screen.Value(position, 0, CduValueY(1));
        screen.Label("G S", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
        std::snprintf(value, sizeof value, "%.0f", g_sim.ground_speed);
        screen.Value(value, kCduRightEdge - 25, CduValueY(1), gdi::TextAlign::Right);
        screen.Label("K T", kCduRightEdge, CduValueY(1) + 4, gdi::TextAlign::Right);
        screen.Label("I R S   L", kCduLeftLabelX, CduLabelY(2));
        screen.Label("I R S   R", kCduLeftLabelX, CduLabelY(3));
        RadioLine(screen, 4);
    } else {
        TitleAndCount(screen, "POS  SHIFT", 3, kPosPageCount);
        screen.Label("I R S - L", kCduLeftLabelX, CduLabelY(1));
        screen.Label("I R S - R", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
        screen.Label("R N P / A C T U A L", kCduLeftLabelX, CduLabelY(3));
        screen.Value("1 . 0 0 / 0 . 0 0 N M", 0, CduValueY(3));
        RadioLine(screen, 4);
    }
    screen.Rule();
    screen.Value("<INDEX", 0, kNavRefRow6Y);
    screen.Value("ROUTE >", kCduRightEdge, kNavRefRow6Y, gdi::TextAlign::Right);
}

// [SECTION] NAV STATUS and NAV OPTIONS
namespace {
struct NearStation {
    const NearbyRecord* record = nullptr;      // null: the row is empty
    double distance = 0;                       // nm from the aircraft
};

// The nearest stations of one kind ("V" or "N"), nearest first.
void NearestStations(char kind, std::array<NearStation, kNearestStations>& out) {
    out = {};
    const auto& navaids = g_nearby.NavaidsNear320;
    for (int i = 1; i <= navaids.count && i <= navaids.kLimit; ++i) {
        const NearbyRecord& r = navaids.rows[static_cast<size_t>(i)];
        bool vor = r.Kind[0] == 'V';
        if (vor != (kind == 'V')) continue;
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, r.Latitude, r.Longitude, distance, bearing);
        // Insert in order; the farthest falls off the end.
        for (size_t k = 0; k < out.size(); ++k) {
            if (out[k].record != nullptr && out[k].distance <= distance) continue;
            for (size_t m = out.size() - 1; m > k; --m) out[m] = out[m - 1];
            out[k] = {&r, distance};
            break;
        }
    }
}

const char* IdentOrEmpty(const NearStation& station) { return station.record ? station.record->Ident.data() : ""; }
const char* FrequencyOrEmpty(const NearStation& station) {
    return station.record ? station.record->Frequency.data() : "";
}
}  // namespace

void NavStatusPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    StepPages(s.nav_status, kNavStatusPageCount);

    // The key of this frame; the NAV OPTIONS prompts carry no action.
    if (s.LineSelectLatch == kLeftRow6Key) s.CduPage = cdu_page::kInitRefIndex;
    if (s.LineSelectLatch == kRightRow6Key && s.nav_status.page == 1) {
        s.CduPage = cdu_page::kPos;
        s.pos.page = 3;
    }
    if (s.CduPage != cdu_page::kNavStatus) return;

    // Draw.
    char value[64];
    if (s.nav_status.page == 1) {
        TitleAndCount(screen, "NAV STATUS", 1, kNavStatusPageCount);
        // The nearest stations, fresh each frame.
        UpdateProximitySubsets(g_sim.latitude, g_sim.longitude);
        double nav1 = BcdNavFrequencyMhz(Token::NAV1_FREQUENCY);
        double nav2 = BcdNavFrequencyMhz(Token::NAV2_FREQUENCY);
        const char* ident1 = ReadToken(Token::NAV1_SIGNAL) > 0 ? TunedIdent(nav1) : "";
        const char* ident2 = ReadToken(Token::NAV2_SIGNAL) > 0 ? TunedIdent(nav2) : "";
        screen.Label("V O R - L                       V O R - R", kCduLeftLabelX, CduLabelY(1));
        std::snprintf(value, sizeof value, "%-5s %-3.2f       %-5s %-3.2f", ident1, nav1, ident2, nav2);
        screen.Value(value, 0, CduValueY(1));
        screen.Label("D M E - L                        D M E - R", kCduLeftLabelX, CduLabelY(2));
        std::array<NearStation, kNearestStations> vors, ndbs;
        NearestStations('V', vors);
        NearestStations('N', ndbs);
        for (int k = 0; k < kNearestStations; ++k) {
            const NearStation& v = vors[static_cast<size_t>(k)];
            const NearStation& n = ndbs[static_cast<size_t>(k)];
            std::snprintf(value, sizeof value, "%-5s %6s       %-5s %6s", IdentOrEmpty(v), FrequencyOrEmpty(v),
                          IdentOrEmpty(n), FrequencyOrEmpty(n));
            screen.Value(value, 0, CduValueY(2 + k));
        }
        screen.Rule();
        screen.Label("I R S    ( L )", kCduLeftLabelX, CduLabelY(6) - 2);
        screen.Value("< INDEX", 0, kNavRefRow6Y);
        screen.Value("POS  SHIFT >", kCduRightEdge, kNavRefRow6Y, gdi::TextAlign::Right);
        return;
    }
    TitleAndCount(screen, "NAV  OPTIONS", 2, kNavStatusPageCount);
    screen.Label("D M E    I N H I B I T", kCduLeftLabelX, CduLabelY(1));
    screen.Value("- - - -", 0, CduValueY(1));
    screen.Value("- - - -", kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
    screen.Label("V O R    I N H I B I T", kCduLeftLabelX, CduLabelY(2));
    screen.Value("- - - -", 0, CduValueY(2));
    screen.Value("- - - -", kCduRightEdge, CduValueY(2), gdi::TextAlign::Right);
    screen.Label("D M E    U P D A T E", kCduLeftLabelX, CduLabelY(3));
    screen.Value("<ON/OFF", 0, CduValueY(3));
    screen.Label("V O R    U P D A T E", kCduLeftLabelX, CduLabelY(4));
    screen.Value("<ON/OFF", 0, CduValueY(4));
    screen.Rule();
    screen.Value("< INDEX", 0, kNavRefRow6Y);
}

// [SECTION] TEMP NAV SUMMARY
void TempNavSummaryPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    if (s.LineSelectLatch == kLeftRow6Key) s.CduPage = cdu_page::kInitRefIndex;
    if (s.CduPage != cdu_page::kTempNavSummary) return;
    screen.Title("TEMP NAV SUMMARY");
    screen.Count("%d / %d", 1, 1);
    screen.Rule();
    screen.Value("< INDEX", 0, kNavRefRow6Y);
}
