// gns_draw.cpp: the GNS pair's screen helpers and its page dispatch.
//
// Immediate mode, as on the Boeing-style unit: a click only edited the field
// or set a latch; here, once per drawn frame, the page keys that need the
// plan act, the page of GnsPage reads the line key and ENTER, carries the
// entry out and draws, and the latches are cleared after the frame.
//
// Index:
//   [SECTION] Screen
//   [SECTION] Line keys and page stepping
//   [SECTION] Page keys
//   [SECTION] Dispatcher
#include "cdu/gns_screen.h"

#include "cdu/gns_keys.h"
#include "cdu/gns_plan_edit.h"
#include "frame/data_text.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "frame/aircraft_profile.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"

#include <array>
#include <cmath>
#include <cstdlib>

// [SECTION] Screen
GnsScreen::GnsScreen(gdi::Graphics& graphics)
    : g_(graphics), font_("Courier New", kGnsFontSize, FontStyleBold, UnitPixel), yellow_(kGnsYellow) {}

void GnsScreen::Text(std::string_view text, float x, float y, ARGB colour) { g_.DrawText(text, font_, colour, x, y); }

void GnsScreen::Cursor(std::string_view text, float x, float y) {
    int width = static_cast<int>(kGnsCursorCharWidth * static_cast<float>(text.size()));
    g_.FillRectangle(yellow_, static_cast<int>(x), static_cast<int>(y), width, static_cast<int>(kGnsCursorHeight));
    g_.DrawText(text, font_, kGnsBlack, x, y);
}

void GnsScreen::Field(float x, float y) {
    const GnsPageState& s = g_gns_page;
    std::string_view text(s.GnsField.data());
    if (s.GnsEditing)
        Cursor(text, x, y);
    else
        Text(text, x, y, kGnsCyan);
}

// [SECTION] Line keys and page stepping
int GnsPressLine(int key, int states) {
    GnsPageState& s = g_gns_page;
    if (key < 1 || key > kGnsLineKeys) return 0;
    int next = s.GnsLineState[static_cast<size_t>(key)] + 1;
    if (next > states) next = 0;
    GnsClearLineStates();
    s.GnsLineState[static_cast<size_t>(key)] = next;
    return next;
}

void GnsStepPages(int& page, int count) {
    const GnsPageState& s = g_gns_page;
    if (count < 1) count = 1;
    page += s.GnsNextLatch - s.GnsPrevLatch;
    if (page > count) page = 1;
    if (page < 1) page = count;
}

// [SECTION] Page keys
namespace {
constexpr int kFplEntriesPerPage = 6;
constexpr double kForcedTurnLead = 60;        // degrees the bug leads the heading in a forced turn
constexpr double kForcedTurnResend = 20;      // a new bug once the heading is this near the last

int ActivePageCount() { return (GnsShownLastRow() + 2 + kFplEntriesPerPage - 1) / kFplEntriesPerPage; }

void FplKey() {
    GnsPageState& s = g_gns_page;
    bool on_page_1 = s.GnsPage == gns_page::kFlightPlan;
    GnsGoToPage(gns_page::kFlightPlan);
    s.GnsDeletePending = 0;
    if (!on_page_1) {
        s.GnsSubMode = 1;
        s.GnsPageScroll = 1;
        return;
    }
    if (s.GnsSubMode == 1) {
        // The active plan's pages, then the list.
        if (++s.GnsPageScroll > ActivePageCount()) {
            s.GnsSubMode = 2;
            s.GnsStoredIndex = 0;
            s.GnsListPage = 1;
        }
        return;
    }
    if (s.GnsStoredIndex > 0) {
        s.GnsStoredIndex = 0;
        return;
    }
    int list_pages = (g_stored_plans.count + 7) / 8;
    if (++s.GnsListPage > list_pages) {
        s.GnsSubMode = 1;
        s.GnsPageScroll = 1;
    }
}

void VnavKey() {
    GnsPageState& s = g_gns_page;
    if (s.GnsPage == gns_page::kFlightPlan && s.GnsSubMode == 1 && s.GnsEditing) {
        // From an open field on the active plan: the blank page, the field left.
        GnsGoToPage(gns_page::kVnavBlank);
        return;
    }
    if (s.GnsPage == gns_page::kVnav || s.GnsPage == gns_page::kVnavBlank) {
        s.GnsPage = gns_page::kVnav;
        ++s.GnsSubPage;  // the page wraps it by its page count
        return;
    }
    GnsGoToPage(gns_page::kVnav);
    s.GnsSubPage = 1;
}

void HoldKey() {
    GnsPageState& s = g_gns_page;
    PlanContext& pc = g_plan.context;
    // On the active plan's first page with a marked entry: a hold at it.
    int marked = 0;
    if (s.GnsPage == gns_page::kFlightPlan && s.GnsSubMode == 1 && s.GnsPageScroll == 1 && pc.PlanState >= 3) {
        for (int k = 1; k <= 3; ++k)
            if (s.GnsLineState[static_cast<size_t>(k)] > 0)
                marked = 2 * (k - 1) + s.GnsLineState[static_cast<size_t>(k)];
    }
    int row = marked - 1;
    if (marked > 0 && row >= 1 && row <= pc.ActiveLastRow) {
        BeginModification();
        AddHold(row, kHoldFromGnsPage);
        // The inbound course: from the entry before, magnetic.
        for (int h = 1; h <= g_holds.HoldCount; ++h) {
            HoldRecord& hold = g_holds.HoldTable[static_cast<size_t>(h)];
            if (hold.ModRow != row) continue;
            const PlanWaypoint& from = g_plan.ModPlan[static_cast<size_t>(row - 1)];
            const PlanWaypoint& at = g_plan.ModPlan[static_cast<size_t>(row)];
            double distance = 0;
            double bearing = 0;
            GreatCircle(from.Latitude, from.Longitude, at.Latitude, at.Longitude, distance, bearing);
            hold.InboundCourse = NormaliseMagnetic(bearing - g_sim.magnetic_variation);
            hold.LegMinutes = g_profile.HoldLegMins;
            hold.LegMode = 1;
            hold.TurnRight = 1;
        }
        pc.PlanState = 4;
        PlanExecute();
    }
    GnsGoToPage(gns_page::kHolding);
}

void DirectKey() {
    GnsPageState& s = g_gns_page;
    PlanContext& pc = g_plan.context;
    if (s.GnsPage == gns_page::kDirect) {
        ++s.GnsSubPage;  // the page wraps it
        return;
    }
    if (pc.PlanState < 3 || pc.ActiveLastRow < 1) return;
    GnsGoToPage(gns_page::kDirect);
    s.GnsSubPage = 1;
    s.GnsDirectSelected = 0;
    BeginModification();
    GnsOpenField("******");
    s.GnsReturnPage = gns_page::kDirect;
}

// A turn forced the long way: the bug leads the heading round until LNAV,
// which takes over once the short way is the forced side, clears the force.
void ForcedTurnStep() {
    LnavState& l = g_lnav;
    if (l.ForcedTurnSide == 0 || l.LnavOn == 0 || g_sim.heading_hold == 0) return;
    double heading = g_sim.heading_magnetic.now;
    double bug = NormaliseMagnetic(heading + (l.ForcedTurnSide == 2 ? kForcedTurnLead : -kForcedTurnLead));
    double last = l.LastHeadingSent == 999 ? -1000 : l.LastHeadingSent;
    if (last < -999 || std::fabs(AngleBetween(last, heading)) < kForcedTurnResend) {
        TriggerKeyEvent(0x101FA, static_cast<UINT32>(bug));
        l.LastHeadingSent = static_cast<int>(bug);
    }
}

using PageFunction = void (*)(GnsScreen&);

constexpr std::array<PageFunction, gns_page::kHighest + 1> MakePageTable() {
    std::array<PageFunction, gns_page::kHighest + 1> t{};
    t[gns_page::kFlightPlan] = &GnsFlightPlanPage;
    t[gns_page::kDirect] = &GnsDirectPage;
    t[gns_page::kDatabaseWpt] = &GnsDatabaseWptPage;
    t[gns_page::kNavigation] = &GnsNavigationPage;
    t[gns_page::kDeparture] = &GnsProcedurePage;
    t[gns_page::kArrival] = &GnsProcedurePage;
    t[gns_page::kApproach] = &GnsProcedurePage;
    t[gns_page::kAirway] = &GnsAirwayPage;
    t[gns_page::kSave] = &GnsSavePage;
    t[gns_page::kVnav] = &GnsVnavPage;
    t[gns_page::kVnavData] = &GnsVnavDataPage;
    t[gns_page::kHolding] = &GnsHoldingPage;
    t[gns_page::kPlan] = &GnsPlanDataPage;
    t[gns_page::kPilotWpt] = &GnsPilotWptPage;
    t[gns_page::kOffsetWpt] = &GnsOffsetWptPage;
    return t;
}

constexpr auto kPages = MakePageTable();

void ClearFrameLatches() {
    GnsPageState& s = g_gns_page;
    s.GnsLineSelect = 0;
    s.GnsEnterLatch = 0;
    s.GnsPrevLatch = 0;
    s.GnsNextLatch = 0;
    s.GnsClearLatch = 0;
    s.GnsFplLatch = 0;
    s.GnsVnavLatch = 0;
    s.GnsHoldLatch = 0;
    s.GnsDirectLatch = 0;
}
}  // namespace

// [SECTION] Dispatcher
void GnsPageDispatcher(HDC hdc, int width, int height) {
    GnsPageState& s = g_gns_page;
    gdi::Graphics g(hdc);
    g.SetSmoothing(SmoothingModeHighQuality);
    g.Clear(kGnsBlack);
    g.SetTextHint(TextRenderingHintAntiAlias);
    g.ResetTransform();
    if (width > 0 && height > 0)
        g.Scale(static_cast<float>(width) / kGnsDesignWidth, static_cast<float>(height) / kGnsDesignHeight);
    // Without avionics power the screen stays dark and no key acts.
    if (g_sim.avionics_power == 0) {
        ClearFrameLatches();
        return;
    }
    {
        GnsScreen screen(g);
        // 1. A page change made by a key clears the line states.
        if (s.GnsPage != s.GnsPreviousPage) {
            GnsClearLineStates();
            s.GnsPreviousPage = s.GnsPage;
        }
        // 2. The page keys that work on the plan.
        if (s.GnsFplLatch) FplKey();
        if (s.GnsVnavLatch) VnavKey();
        if (s.GnsHoldLatch) HoldKey();
        if (s.GnsDirectLatch) DirectKey();
        ForcedTurnStep();
        // 3. The page.
        int page = s.GnsPage;
        if (page >= 0 && page <= gns_page::kHighest && kPages[static_cast<size_t>(page)] != nullptr)
            kPages[static_cast<size_t>(page)](screen);
        // 4. A page that handed over to another: the new one draws in this
        // frame, with the keys already spent.
        if (s.GnsPage != page) {
            ClearFrameLatches();
            page = s.GnsPage;
            if (page >= 0 && page <= gns_page::kHighest && kPages[static_cast<size_t>(page)] != nullptr)
                kPages[static_cast<size_t>(page)](screen);
        }
        s.GnsPreviousPage = s.GnsPage;
    }
    ClearFrameLatches();
}
