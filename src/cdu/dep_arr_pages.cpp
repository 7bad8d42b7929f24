// dep_arr_pages.cpp: DEP/ARR INDEX and the procedure pages it opens:
// DEPARTURES (SIDs, their transitions, the origin's runways) and ARRIVALS
// (STARs and transitions, approaches and theirs, the destination's runways).
//
// A list collapses to the chosen item, marked "<SEL>" (or "<ACT>" on an
// active plan); its key opens the list again. Each choice runs the
// procedure insertion at once, so the route and its lines follow.
//
// Index:
//   [SECTION] Lists and columns
//   [SECTION] DEP/ARR INDEX
//   [SECTION] DEPARTURES
//   [SECTION] ARRIVALS
#include "cdu/route_pages.h"

#include "frame/data_text.h"
#include "navdata/nav_database.h"
#include "navdata/procedures.h"
#include "plan/plan_edit.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cstdio>

// [SECTION] Lists and columns
namespace {
constexpr const char* kNone = "- N O N E -";
constexpr float kRow6Y = 198;
constexpr float kColumnLabelY = 19;
constexpr float kDepTitleX = 25;
constexpr float kArrTitleX = 40;
constexpr float kProcCountX = 230;
constexpr float kSidMarkX = 93;
constexpr float kDepRunwayX = 240;
constexpr float kDepRunwayMarkX = 153;
constexpr float kStarMarkX = 75;
constexpr float kApproachMarkX = 127;
constexpr float kArrRunwayMarkX = 150;
constexpr float kApproachTransLabelX = 220;
constexpr float kIndexNameX = 80;
constexpr float kIndexOtherX = 120;

bool IsSet(const PlanText& text) {
    std::string_view value = TextOf(text);
    return !value.empty() && value != kNoSelection;
}

void SetNone(PlanText& text) { SetText(text, kNoSelection); }

const char* Mark() { return g_plan.context.PlanState == 3 ? "<ACT>" : "<SEL>"; }

int Pages(int lines) { return std::max(1, (lines + kProcedureLinesPerPage - 1) / kProcedureLinesPerPage); }

// The list index of line n (1..5) of the page; lists are 1-based.
int IndexOfLine(int page, int line) { return (page - 1) * kProcedureLinesPerPage + line; }

template <int N>
int ListCount(const ProcedureList<N>& list) {
    return std::clamp(list.count, 0, N);
}

// Row `row` of a list's rows 1..count; empty past them.
std::string_view EntryName(const ProcedureListEntry* rows, int count, int row) {
    if (row < 1 || row > count) return std::string_view("");  // never a null text for the formats
    return TextOf(rows[row].Name);
}

template <int N>
std::string_view NameAt(const ProcedureList<N>& list, int row) {
    return EntryName(list.rows.data(), ListCount(list), row);
}

// A left column: the list while nothing is chosen, else the choice on line
// 1 with its transitions (or only the chosen one) behind it.
struct ProcedureColumn {
    int chosen = 0;                           // the procedure's flag
    int transition_chosen = 0;                // its transition's flag
    int names = 0;                            // entries of the procedure list
    int transitions = 0;                      // entries of the transition list
    int Lines() const {
        if (chosen == 0) return std::max(1, names);
        return 1 + (transition_chosen ? 1 : std::max(1, transitions));
    }
};
}  // namespace

void ReloadDepartureLists() {
    const PlanSelections& t = g_plan.context.Selections;
    ListSids(TextOf(t.DepartureRunway), kNoSelection);
    ListSidRunways(g_smiths.SidChosen ? TextOf(t.SidName) : std::string_view(kNoSelection));
    if (g_smiths.SidChosen) ListSidTransitions(TextOf(t.SidName), TextOf(t.DepartureRunway), 1);
}

void ReloadArrivalLists() {
    const PlanSelections& t = g_plan.context.Selections;
    ListStars(TextOf(t.ArrivalRunway), kNoSelection);
    ListStarRunways(g_smiths.StarChosen ? TextOf(t.StarName) : std::string_view(kNoSelection));
    if (g_smiths.StarChosen) ListStarTransitions(TextOf(t.StarName), TextOf(t.ArrivalRunway), 1);
    ListApproaches(TextOf(t.ArrivalRunway));
    if (g_smiths.ApproachChosen) ListApproachTransitions(TextOf(t.ApproachName));
}

// [SECTION] DEP/ARR INDEX
void DepArrIndexPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    const PlanSelections& t = g_plan.context.Selections;
    bool origin = IsSet(t.OriginName);
    bool destination = IsSet(t.DestinationName);

    // A procedure page opens on page 1 with the transition to choose anew and
    // an earlier procedure kept.
    int key = s.LineSelectLatch;
    if (key == 1 && origin) {
        s.SidTransitionChosen = 0;
        if (s.SidChosen != 0) s.SidChosen = 2;
        s.departures.page = 1;
        ReloadDepartureLists();
        s.CduPage = cdu_page::kDepartures;
        return;
    }
    if (key == 6 && destination) {
        s.StarTransitionChosen = 0;
        s.ApproachTransitionChosen = 0;
        if (s.StarChosen != 0) s.StarChosen = 2;
        if (s.ApproachChosen != 0) s.ApproachChosen = 2;
        s.arrivals.page = 1;
        ReloadArrivalLists();
        s.CduPage = cdu_page::kArrivals;
        return;
    }

    screen.Title("DEP/ARR INDEX");
    screen.Value("< DEP", 0, CduValueY(1));
    if (origin) screen.Value(TextOf(t.OriginName), kIndexNameX, CduValueY(1));
    if (destination) screen.Value(TextOf(t.DestinationName), kCduRightEdge - kIndexNameX, CduValueY(1),
                                  gdi::TextAlign::Right);
    screen.Value("ARR >", kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
    screen.Label("D E P", kCduLeftLabelX, CduLabelY(2));
    screen.Label("O T H E R", kIndexOtherX, CduLabelY(2));
    screen.Label("A R R", kCduRightLabelEdge, CduLabelY(2), gdi::TextAlign::Right);
    screen.Value("< - - - -", 0, CduValueY(2));
    screen.Value("- - - - >", kCduRightEdge, CduValueY(2), gdi::TextAlign::Right);
}

// [SECTION] DEPARTURES
namespace {
ProcedureColumn SidColumn() {
    const ProcedureLists& l = g_procedures.origin.lists;
    return {g_smiths.SidChosen, g_smiths.SidTransitionChosen, ListCount(l.ProcedureNameList),
            ListCount(l.TransitionList)};
}

int DepartureRunwayLines() {
    return g_smiths.DepartureRunwayChosen ? 1 : std::max(1, ListCount(g_procedures.origin.lists.RunwayList));
}

void DeparturesLeftKey(int index) {
    SmithsCduState& s = g_smiths;
    PlanSelections& t = g_plan.context.Selections;
    const ProcedureLists& l = g_procedures.origin.lists;
    BeginPlanEdit();
    if (s.SidChosen == 0) {
        // A SID of the list: a new SID starts without a transition.
        if (index > ListCount(l.ProcedureNameList)) return;
        SetNone(t.SidTransition);
        s.SidTransitionChosen = 0;
        ChooseSid(index, 0);  // lists the SID's transitions too
        s.SidChosen = 1;
        return;
    }
    if (index == 1) {
        // The chosen SID's line opens the list again.
        s.SidChosen = 0;
        s.SidTransitionChosen = 0;
        ReloadDepartureLists();
        return;
    }
    if (s.SidTransitionChosen) {
        if (index == 2) {
            s.SidTransitionChosen = 0;  // the chosen transition's line: the list again
            ListSidTransitions(TextOf(t.SidName), TextOf(t.DepartureRunway), 1);
        }
        return;
    }
    std::string_view transition = NameAt(l.TransitionList, index - 1);
    if (transition.empty()) return;
    SetText(t.SidTransition, transition);
    s.SidTransitionChosen = 1;
    ChooseSid(g_procedures.origin.SelectedSidRow, 1);
}

void DeparturesRightKey(int index) {
    SmithsCduState& s = g_smiths;
    if (s.DepartureRunwayChosen) {
        if (index == 1) {
            s.DepartureRunwayChosen = 0;
            ReloadDepartureLists();
        }
        return;
    }
    if (index > ListCount(g_procedures.origin.lists.RunwayList)) return;
    BeginPlanEdit();
    ChooseDepartureRunway(index);
    s.DepartureRunwayChosen = 1;
}

void DrawSidColumn(CduScreen& screen, int page) {
    const SmithsCduState& s = g_smiths;
    const PlanSelections& t = g_plan.context.Selections;
    const ProcedureLists& l = g_procedures.origin.lists;
    ProcedureColumn column = SidColumn();
    char text[32];
    for (int n = 1; n <= kProcedureLinesPerPage; ++n) {
        int index = IndexOfLine(page, n);
        float y = CduValueY(n);
        if (s.SidChosen == 0) {
            if (column.names == 0 && index == 1) screen.Value(kNone, 0, y);
            std::string_view name = NameAt(l.ProcedureNameList, index);
            if (name.empty()) continue;
            std::snprintf(text, sizeof text, "%-6.*s", static_cast<int>(name.size()), name.data());
            screen.Value(text, 0, y);
            if (name == TextOf(t.SidName)) screen.Label(Mark(), kSidMarkX, y);
            continue;
        }
        if (index == 1) {
            std::snprintf(text, sizeof text, "%-6s", t.SidName.data());
            screen.Value(text, 0, y);
            screen.Label(Mark(), kSidMarkX, y);
            continue;
        }
        if (index == 2) screen.Label("T R A N S", kCduLeftLabelX, y - 11);
        std::string_view name;
        if (s.SidTransitionChosen)
            name = index == 2 ? TextOf(t.SidTransition) : std::string_view{};
        else
            name = NameAt(l.TransitionList, index - 1);
        if (column.transitions == 0 && !s.SidTransitionChosen && index == 2) screen.Value(kNone, 0, y);
        if (name.empty()) continue;
        std::snprintf(text, sizeof text, "%-5.*s", static_cast<int>(name.size()), name.data());
        screen.Value(text, 0, y);
        if (name == TextOf(t.SidTransition)) screen.Label(Mark(), kSidMarkX, y);
    }
}

void DrawDepartureRunways(CduScreen& screen, int page) {
    const PlanSelections& t = g_plan.context.Selections;
    const ProcedureList<kProcedureRunwayListLimit>& runways = g_procedures.origin.lists.RunwayList;
    char text[16];
    if (g_smiths.DepartureRunwayChosen) {
        if (page != 1) return;
        std::snprintf(text, sizeof text, "%-3.8s", t.DepartureRunway.data());
        screen.Label(Mark(), kDepRunwayMarkX, CduValueY(1));
        screen.Value(text, kDepRunwayX, CduValueY(1));
        return;
    }
    if (ListCount(runways) == 0 && page == 1) screen.Value(kNone, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
    for (int n = 1; n <= kProcedureLinesPerPage; ++n) {
        std::string_view name = NameAt(runways, IndexOfLine(page, n));
        if (name.empty()) continue;
        std::snprintf(text, sizeof text, "%-3.*s", static_cast<int>(name.size()), name.data());
        screen.Value(text, kDepRunwayX, CduValueY(n));
    }
}
}  // namespace

void DeparturesPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    int state = g_plan.context.PlanState;
    StepPages(s.departures, Pages(std::max(SidColumn().Lines(), DepartureRunwayLines())));

    int key = s.LineSelectLatch;
    if (key >= 1 && key <= 5) DeparturesLeftKey(IndexOfLine(s.departures.page, key));
    if (key >= 6 && key <= 10) DeparturesRightKey(IndexOfLine(s.departures.page, key - 5));
    if (key == kLeftRow6Key) {
        if (state == 4) {
            // The choices as at the last EXEC, from the top of the lists.
            PlanErase();
            s.departures.page = 1;
            ReloadDepartureLists();
        } else {
            s.CduPage = cdu_page::kDepArrIndex;
        }
    }
    if (key == kRightRow6Key) s.CduPage = cdu_page::kRte;
    if (s.CduPage != cdu_page::kDepartures) return;

    state = g_plan.context.PlanState;
    s.departures.count = Pages(std::max(SidColumn().Lines(), DepartureRunwayLines()));
    if (s.departures.page > s.departures.count) s.departures.page = s.departures.count;
    char title[48];
    std::snprintf(title, sizeof title, "%s DEPARTURES", g_plan.context.Selections.OriginName.data());
    screen.Title(title, kDepTitleX);
    screen.Count("%2d / %2d", s.departures.page, s.departures.count, kProcCountX);
    screen.Label("S I D S", 10, kColumnLabelY);
    screen.Label("R U N W A Y S", 190, kColumnLabelY);
    DrawSidColumn(screen, s.departures.page);
    DrawDepartureRunways(screen, s.departures.page);
    screen.Rule();
    screen.Value(state == 4 ? "< ERASE" : "< INDEX", 0, kRow6Y);
    screen.Value("ROUTE >", kCduRightEdge, kRow6Y, gdi::TextAlign::Right);
}

// [SECTION] ARRIVALS
namespace {
ProcedureColumn StarColumn() {
    const ProcedureLists& l = g_procedures.destination.lists;
    return {g_smiths.StarChosen, g_smiths.StarTransitionChosen, ListCount(l.ProcedureNameList),
            ListCount(l.TransitionList)};
}

// The right column of ARRIVALS: approaches (or the chosen one and its
// transitions), then the runways (or the chosen one).
enum class RightKind { None, Approach, ApproachTransition, Runway };
struct RightLine {
    RightKind kind = RightKind::None;
    int row = 0;                              // row of its list (the chosen one: 0)
    bool first_of_kind = false;               // carries the column's label above it
};

int ApproachLines() {
    const SmithsCduState& s = g_smiths;
    const ProcedureLists& l = g_procedures.destination.lists;
    if (s.ApproachChosen == 0) return ListCount(l.ApproachNameList);
    return 1 + (s.ApproachTransitionChosen ? 1 : ListCount(l.ApproachTransitionList));
}

int ArrivalRunwayLines() {
    return g_smiths.ArrivalRunwayChosen ? 1 : ListCount(g_procedures.destination.lists.RunwayList);
}

RightLine RightLineAt(int index) {
    const SmithsCduState& s = g_smiths;
    int approaches = ApproachLines();
    if (index >= 1 && index <= approaches) {
        if (s.ApproachChosen == 0) return {RightKind::Approach, index, index == 1};
        if (index == 1) return {RightKind::Approach, 0, true};
        return {RightKind::ApproachTransition, s.ApproachTransitionChosen ? 0 : index - 1, index == 2};
    }
    int runway = index - approaches;
    if (runway >= 1 && runway <= ArrivalRunwayLines())
        return {RightKind::Runway, s.ArrivalRunwayChosen ? 0 : runway, runway == 1};
    return {};
}

// "ILS16R" as "%4s %3s": the approach's type and its runway.
void ApproachText(std::string_view name, char* out, size_t size) {
    size_t split = 0;
    while (split < name.size() && !(name[split] >= '0' && name[split] <= '9')) ++split;
    char kind[16] = {};
    char runway[16] = {};
    CopyText(kind, sizeof kind, name.substr(0, split));
    CopyText(runway, sizeof runway, name.substr(split));
    std::snprintf(out, size, "%4s %3s", kind, runway);
}

void ChooseApproachOf(std::string_view approach) {
    SmithsCduState& s = g_smiths;
    PlanSelections& t = g_plan.context.Selections;
    SetText(t.ApproachName, approach);
    SetNone(t.ApproachTransition);
    s.ApproachChosen = 1;
    s.ApproachTransitionChosen = 0;
    s.ApproachIndex = ApproachRowOf(approach);
    s.ApproachTransitionIndex = 0;
    ListApproachTransitions(approach);
    BuildApproachLegs();
    InsertApproach(1);
    BuildRouteRows();
    StepAfterPlanChange();
}

void ChooseApproachTransitionOf(std::string_view transition) {
    SmithsCduState& s = g_smiths;
    PlanSelections& t = g_plan.context.Selections;
    SetText(t.ApproachTransition, transition);
    s.ApproachTransitionChosen = 1;
    s.ApproachTransitionIndex = ApproachTransitionRowOf(TextOf(t.ApproachName), transition);
    BuildApproachLegs();
    InsertApproach(1);
    BuildRouteRows();
    StepAfterPlanChange();
}

void ArrivalsLeftKey(int index) {
    SmithsCduState& s = g_smiths;
    PlanSelections& t = g_plan.context.Selections;
    const ProcedureLists& l = g_procedures.destination.lists;
    BeginPlanEdit();
    if (s.StarChosen == 0) {
        if (index > ListCount(l.ProcedureNameList)) return;
        SetNone(t.StarTransition);
        s.StarTransitionChosen = 0;
        ChooseStar(index, 0);
        s.StarChosen = 1;
        // Again: a STAR of one runway has just chosen that runway.
        ListStarTransitions(TextOf(t.StarName), TextOf(t.ArrivalRunway), 1);
        return;
    }
    if (index == 1) {
        s.StarChosen = 0;
        s.StarTransitionChosen = 0;
        ReloadArrivalLists();
        return;
    }
    if (s.StarTransitionChosen) {
        if (index == 2) {
            s.StarTransitionChosen = 0;
            ListStarTransitions(TextOf(t.StarName), TextOf(t.ArrivalRunway), 1);
        }
        return;
    }
    std::string_view transition = NameAt(l.TransitionList, index - 1);
    if (transition.empty()) return;
    SetText(t.StarTransition, transition);
    s.StarTransitionChosen = 1;
    ChooseStar(g_procedures.destination.SelectedStarRow, 1);
}

void ArrivalsRightKey(int index) {
    SmithsCduState& s = g_smiths;
    const ProcedureLists& l = g_procedures.destination.lists;
    RightLine line = RightLineAt(index);
    if (line.kind == RightKind::None) return;
    BeginPlanEdit();
    switch (line.kind) {
    case RightKind::Approach:
        if (line.row == 0) {
            s.ApproachChosen = 0;  // the chosen approach's line: the list again
            s.ApproachTransitionChosen = 0;
            ReloadArrivalLists();
        } else {
            std::array<char, 16> name = l.ApproachNameList.rows[static_cast<size_t>(line.row)].Name;
            ChooseApproachOf(TextOf(name));
        }
        return;
    case RightKind::ApproachTransition:
        if (line.row == 0) {
            s.ApproachTransitionChosen = 0;
            ListApproachTransitions(TextOf(g_plan.context.Selections.ApproachName));
        } else {
            std::array<char, 16> name = l.ApproachTransitionList.rows[static_cast<size_t>(line.row)].Name;
            ChooseApproachTransitionOf(TextOf(name));
        }
        return;
    case RightKind::Runway:
        if (line.row == 0) {
            s.ArrivalRunwayChosen = 0;
            ReloadArrivalLists();
        } else {
            ChooseArrivalRunway(line.row);
            s.ArrivalRunwayChosen = 1;
        }
        return;
    case RightKind::None: return;
    }
}

void DrawStarColumn(CduScreen& screen, int page) {
    const SmithsCduState& s = g_smiths;
    const PlanSelections& t = g_plan.context.Selections;
    const ProcedureLists& l = g_procedures.destination.lists;
    ProcedureColumn column = StarColumn();
    char text[32];
    for (int n = 1; n <= kProcedureLinesPerPage; ++n) {
        int index = IndexOfLine(page, n);
        float y = CduValueY(n);
        if (s.StarChosen == 0) {
            if (column.names == 0 && index == 1) screen.Value(kNone, 0, y);
            std::string_view name = NameAt(l.ProcedureNameList, index);
            if (name.empty()) continue;
            std::snprintf(text, sizeof text, "%-6.*s", static_cast<int>(name.size()), name.data());
            screen.Value(text, 0, y);
            if (name == TextOf(t.StarName)) screen.Label(Mark(), kStarMarkX, y);
            continue;
        }
        if (index == 1) {
            std::snprintf(text, sizeof text, "%-6s", t.StarName.data());
            screen.Value(text, 0, y);
            screen.Label(Mark(), kStarMarkX, y);
            continue;
        }
        if (index == 2) screen.Label("T R A N S", kCduLeftLabelX, y - 11);
        std::string_view name;
        if (s.StarTransitionChosen)
            name = index == 2 ? TextOf(t.StarTransition) : std::string_view{};
        else
            name = NameAt(l.TransitionList, index - 1);
        if (column.transitions == 0 && !s.StarTransitionChosen && index == 2) screen.Value(kNone, 0, y);
        if (name.empty()) continue;
        std::snprintf(text, sizeof text, "%-5.*s", static_cast<int>(name.size()), name.data());
        screen.Value(text, 0, y);
        if (name == TextOf(t.StarTransition)) screen.Label(Mark(), kStarMarkX, y);
    }
}

void DrawArrivalRightColumn(CduScreen& screen, int page) {
    const PlanSelections& t = g_plan.context.Selections;
    const ProcedureLists& l = g_procedures.destination.lists;
    char text[32];
    if (page == 1 && ApproachLines() == 0) screen.Label("A P P R O A C H E S", 160, kColumnLabelY);
    for (int n = 1; n <= kProcedureLinesPerPage; ++n) {
        RightLine line = RightLineAt(IndexOfLine(page, n));
        float y = CduValueY(n);
        switch (line.kind) {
        case RightKind::Approach: {
            if (line.first_of_kind) screen.Label("A P P R O A C H E S", 160, kColumnLabelY);
            std::string_view name = line.row == 0 ? TextOf(t.ApproachName) : NameAt(l.ApproachNameList, line.row);
            ApproachText(name, text, sizeof text);
            screen.Value(text, kCduRightEdge, y, gdi::TextAlign::Right);
            if (line.row == 0 || name == TextOf(t.ApproachName)) screen.Label(Mark(), kApproachMarkX, y);
            break;
        }
        case RightKind::ApproachTransition: {
            if (line.first_of_kind) screen.Label("T R A N S", kApproachTransLabelX, y - 11);
            std::string_view name =
                line.row == 0 ? TextOf(t.ApproachTransition) : NameAt(l.ApproachTransitionList, line.row);
            std::snprintf(text, sizeof text, "%.*s", static_cast<int>(name.size()), name.data());
            screen.Value(text, kCduRightEdge, y, gdi::TextAlign::Right);
            if (line.row == 0 || name == TextOf(t.ApproachTransition)) screen.Label(Mark(), kApproachMarkX, y);
            break;
        }
        case RightKind::Runway: {
            if (line.first_of_kind) screen.Label("R U N W A Y S", kCduRightLabelEdge, y - 11, gdi::TextAlign::Right);
            std::string_view name = line.row == 0 ? TextOf(t.ArrivalRunway) : NameAt(l.RunwayList, line.row);
            std::snprintf(text, sizeof text, "%-3.*s", static_cast<int>(name.size()), name.data());
            screen.Value(text, kCduRightEdge, y, gdi::TextAlign::Right);
            if (line.row == 0) screen.Label(Mark(), kArrRunwayMarkX, y);
            break;
        }
        case RightKind::None: break;
        }
    }
}

int ArrivalPageCount() {
    int right = ApproachLines() + ArrivalRunwayLines();
    return Pages(std::max(StarColumn().Lines(), right));
}
}  // namespace

void ArrivalsPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    int state = g_plan.context.PlanState;
    StepPages(s.arrivals, ArrivalPageCount());

    int key = s.LineSelectLatch;
    if (key >= 1 && key <= 5) ArrivalsLeftKey(IndexOfLine(s.arrivals.page, key));
    if (key >= 6 && key <= 10) ArrivalsRightKey(IndexOfLine(s.arrivals.page, key - 5));
    if (key == kLeftRow6Key) {
        if (state == 4) {
            PlanErase();
            s.arrivals.page = 1;
            ReloadArrivalLists();
        } else {
            s.CduPage = cdu_page::kDepArrIndex;
        }
    }
    if (key == kRightRow6Key) s.CduPage = cdu_page::kRte;
    if (s.CduPage != cdu_page::kArrivals) return;

    state = g_plan.context.PlanState;
    s.arrivals.count = ArrivalPageCount();
    if (s.arrivals.page > s.arrivals.count) s.arrivals.page = s.arrivals.count;
    char title[48];
    std::snprintf(title, sizeof title, "%s ARRIVALS", g_plan.context.Selections.DestinationName.data());
    screen.Title(title, kArrTitleX);
    screen.Count("%2d / %2d", s.arrivals.page, s.arrivals.count, kProcCountX);
    screen.Label("S T A R S", 10, kColumnLabelY);
    DrawStarColumn(screen, s.arrivals.page);
    DrawArrivalRightColumn(screen, s.arrivals.page);
    screen.Rule();
    screen.Value(state == 4 ? "< ERASE" : "< INDEX", 0, kRow6Y);
    screen.Value("ROUTE >", kCduRightEdge, kRow6Y, gdi::TextAlign::Right);
}
