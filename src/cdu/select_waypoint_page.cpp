// select_waypoint_page.cpp: SELECT WAYPOINT, the candidates of a name that
// stands for several places, six a page; the pilot's pick goes back to the
// page that asked (RTE, RTE LEGS, REF NAV DATA) and is used there.
//
// Index:
//   [SECTION] The pick
//   [SECTION] SELECT WAYPOINT page
#include "cdu/route_pages.h"

#include "cdu/nav_ref_pages.h"
#include "frame/data_text.h"
#include "navdata/nav_database.h"
#include "plan/plan_edit.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cstdio>

// [SECTION] The pick
namespace {
constexpr float kSelectTitleX = 40;
constexpr float kSelectNameX = 40;
constexpr float kSelectPositionX = 55;
constexpr float kSelectPositionDrop = 15;     // the position line below the name line
constexpr const char* kHoldAtPrefix = "HOLD AT ";

// The kind of a candidate as the list shows it.
const char* CandidateKindText(const NavRecord& r) {
    std::string_view kind = TextOf(r.Kind);
    if (kind == "V") return "VOR";
    if (kind == "N") return "NDB";
    if (kind == "APT") return "APT";
    return "INT";
}

// The pick is used as the asking page wants it; the list keeps only it.
void UsePick(int candidate) {
    SmithsCduState& s = g_smiths;
    KeepOnlyCandidate(candidate);
    int target = s.SelectTargetLine;
    if (s.ReturnPage == cdu_page::kRteLegs && s.SelectPurpose == kSelectForDirect) {
        BeginPlanEdit();
        InsertCandidate(target, 1);
        ChooseDirectTarget(target);
        BuildRouteRows();
    } else if (s.ReturnPage == cdu_page::kRteLegs && s.SelectPurpose == kSelectForHoldAt) {
        s.HoldAtPending = 1;
        s.HoldAtCandidate = g_candidates.rows[1];
        char text[kScratchpadCapacity];
        std::snprintf(text, sizeof text, "%s%s", kHoldAtPrefix, g_candidates.rows[1].Ident.data());
        SetScratchpad(text);
    } else if (s.ReturnPage == cdu_page::kRteLegs || s.ReturnPage == cdu_page::kRte) {
        BeginPlanEdit();
        InsertCandidate(std::max(1, target), 1);
        BuildRouteRows();
        StepAfterPlanChange();
        ClearScratchpad();
    } else if (s.ReturnPage == cdu_page::kRefNavData) {
        TakeRefNavPick(g_candidates.rows[1]);
        ClearScratchpad();
    }
    s.SelectPurpose = kSelectForInsert;
    s.CduPage = s.ReturnPage;
}
}  // namespace

// [SECTION] SELECT WAYPOINT page
void SelectWaypointPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    const CandidateList& c = g_candidates;
    int count = std::clamp(c.count, 0, kCandidateLimit);
    // PREV raises the counter on this page.
    StepPages(s.select, (count + kSelectCandidatesPerPage - 1) / kSelectCandidatesPerPage, true);

    // Any key of a row picks the candidate there, left and right alike.
    int key = s.LineSelectLatch;
    int row = key >= 1 && key <= 10 ? (key - 1) % kRouteLinesPerPage + 1 : (key >= kLeftRow6Key ? 6 : 0);
    int candidate = (s.select.page - 1) * kSelectCandidatesPerPage + row;
    if (row > 0 && candidate <= count) {
        UsePick(candidate);
        return;  // the next frame is the asking page's
    }

    screen.Title("SELECT WAYPOINT", kSelectTitleX);
    screen.Count("%2d/%2d", s.select.page, s.select.count);
    for (int n = 1; n <= kSelectCandidatesPerPage; ++n) {
        int i = (s.select.page - 1) * kSelectCandidatesPerPage + n;
        if (i > count) break;
        const NavRecord& r = c.rows[static_cast<size_t>(i)];
        char line[64];
        std::snprintf(line, sizeof line, "%-6s  %3s  %6s", r.Ident.data(), CandidateKindText(r), r.Frequency.data());
        float y = CduValueY(n);
        screen.Value(line, kSelectNameX, y);
        char lat[20], lon[20];
        FormatLatLon(r.Latitude, -r.Longitude, lat, sizeof lat, lon, sizeof lon, 1);
        std::snprintf(line, sizeof line, "%-12s %-12s", lat, lon);
        screen.Label(line, kSelectPositionX, y + kSelectPositionDrop);
    }
}
