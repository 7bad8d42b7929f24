// cdu_draw.cpp: the page dispatch of the Boeing-style CDU, and the hand-over
// of the GNS and MCU pairs to their own dispatchers.
//
// Immediate mode: a click only set a latch or edited the entry line; here,
// once per drawn frame, the page of CduPage reads the latches, carries the
// entry out and draws, and the latches are cleared after the frame. A key
// pressed while no instance is drawn waits for the next drawn frame.
#include "cdu/cdu_draw.h"

#include "cdu/cdu_screen.h"
#include "cdu/gns_screen.h"
#include "cdu/keypad.h"
#include "cdu/mcu_pages.h"
#include "cdu/nav_ref_pages.h"
#include "cdu/perf_pages.h"
#include "cdu/route_pages.h"
#include "display/display_state.h"
#include "plan/plan_execute.h"

#include <array>

namespace {
using PageFunction = void (*)(CduScreen&);

struct PageEntry {
    PageFunction function;   // the page; null for a page that shows its title only
    const char* title;       // null: an empty number
};

// Pages of other families whose keys already lead to them: the title stands
// until their lines come.
void TitleOnly(CduScreen& screen) { screen.Title(SmithsPageTitle(g_smiths.CduPage)); }

constexpr std::array<PageEntry, cdu_page::kHighest + 1> MakePageTable() {
    std::array<PageEntry, cdu_page::kHighest + 1> t{};
    t[cdu_page::kStoredFlightPlans] = {&StoredFlightPlansPage, "STORED FLIGHT PLANS"};
    t[cdu_page::kPerfInit] = {&PerfInitPage, "PERF  INIT"};
    t[cdu_page::kRteLegs] = {&RteLegsPage, "RTE    LEGS"};
    t[cdu_page::kSelectWaypoint] = {&SelectWaypointPage, "SELECT WAYPOINT"};
    t[cdu_page::kDepartures] = {&DeparturesPage, "DEPARTURES"};
    t[cdu_page::kArrivals] = {&ArrivalsPage, "ARRIVALS"};
    t[cdu_page::kApproachRef] = {&ApproachRefPage, "APPROACH REF"};
    t[cdu_page::kRte] = {&RtePage, "RTE"};
    t[cdu_page::kInitRefIndex] = {&InitRefIndexPage, "INIT/REF INDEX"};
    t[cdu_page::kDepArrIndex] = {&DepArrIndexPage, "DEP/ARR INDEX"};
    t[cdu_page::kIdent] = {&IdentPage, "IDENT"};
    t[cdu_page::kPos] = {&PosPage, "POS"};
    t[cdu_page::kTakeoffRef] = {&TakeoffRefPage, "TAKEOFF  REF"};
    t[cdu_page::kRefNavData] = {&RefNavDataPage, "REF NAV DATA"};
    t[cdu_page::kTempNavSummary] = {&TempNavSummaryPage, "TEMP NAV SUMMARY"};
    t[cdu_page::kNavStatus] = {&NavStatusPage, "NAV STATUS"};
    t[cdu_page::kProgress] = {&ProgressPage, "PROGRESS"};
    t[cdu_page::kEconClb] = {&EconClbPage, "ECON  CLB"};
    t[cdu_page::kEconCrz] = {&EconCrzPage, "ECON  CRZ"};
    t[cdu_page::kEconPathDes] = {&EconPathDesPage, "ECON  PATH  DES"};
    t[cdu_page::kFixInfo] = {&FixInfoPage, "FIX INFO"};
    t[cdu_page::kDesForecasts] = {&DesForecastsPage, "DES  FORECASTS"};
    t[cdu_page::kRteHold] = {&RteHoldPage, "RTE        HOLD"};
    return t;
}

constexpr auto kPages = MakePageTable();

void ClearFrameLatches() {
    SmithsCduState& s = g_smiths;
    s.LineSelectLatch = 0;
    s.PrevPageLatch = 0;
    s.NextPageLatch = 0;
    s.ExecLatch = 0;
    s.RteEntryLatch = 0;
    s.LegsEntryLatch = 0;
    s.HoldEntryLatch = 0;
}
}  // namespace

const char* SmithsPageTitle(int page) {
    if (page < 0 || page > cdu_page::kHighest) return nullptr;
    return kPages[static_cast<size_t>(page)].title;
}

void SmithsPageDispatcher(HDC hdc, int width, int height) {
    SmithsCduState& s = g_smiths;
    // The LEGS page's map centre only lives while a map shows PLAN mode.
    if (!AnyNdInPlanMode()) g_display.PlanCentreIndex = 0;
    // A failed graphics object draws nothing, but the page still acts on its keys.
    gdi::Graphics g(hdc);
    g.SetSmoothing(SmoothingModeHighQuality);
    g.Clear(kCduBlack);
    g.SetTextHint(TextRenderingHintAntiAlias);
    g.ResetTransform();
    if (width > 0 && height > 0)
        g.Scale(static_cast<float>(width) / kCduDesignWidth, static_cast<float>(height) / kCduDesignHeight);
    {
        CduScreen screen(g);
        // EXEC, pressed in state 2 or 4, commits before the page draws the result.
        if (s.ExecLatch && ExecutePending()) PlanExecute();
        int page = s.CduPage;
        if (page >= 0 && page <= cdu_page::kHighest && kPages[static_cast<size_t>(page)].title != nullptr) {
            const PageEntry& entry = kPages[static_cast<size_t>(page)];
            if (entry.function != nullptr)
                entry.function(screen);
            else
                TitleOnly(screen);
            screen.EntryLine();
        }
    }
    ClearFrameLatches();
}

void DrawCdu(GaugeId id, HDC hdc, int width, int height) {
    if (id == GaugeId::SMITHS_FMS || id == GaugeId::SMITHS_FMS_BR) SmithsPageDispatcher(hdc, width, height);
    if (id == GaugeId::MCU || id == GaugeId::MCU_LM) McuPageDispatcher(hdc, width, height);
    if (id == GaugeId::GNSXLS || id == GaugeId::GNSXLS_LM) GnsPageDispatcher(hdc, width, height);
}
