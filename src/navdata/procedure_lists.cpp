// procedure_lists.cpp: what the departure and arrival pages show of an
// airport's procedures (runways, names, transitions, approaches), filled
// again from the tables after every change of a selection, and the legs of
// the chosen SID, STAR and approach (SelectedLegs) that the plan inserts.
//
// Sections:
//   [SECTION] Matching and list helpers
//   [SECTION] SID and STAR lists
//   [SECTION] Approach lists
//   [SECTION] SelectedLegs
#include "navdata/procedures.h"

#include "frame/data_text.h"
#include "plan/plan_tables.h"

#include <algorithm>
#include <cstring>

// [SECTION] Matching and list helpers
namespace {
constexpr std::string_view kAny = "------";  // no selection: everything fits

// ",16L,16C," holds ",16L,"; an empty list serves every runway.
bool RunwayListHas(std::string_view runways, std::string_view runway) {
    if (runway == kAny || runways.empty()) return true;
    if (runway.empty()) return false;
    std::array<char, 64> wrapped{}, wanted{};
    size_t n = 0;
    wrapped[n++] = ',';
    for (char ch : runways)
        if (n + 1 < wrapped.size()) wrapped[n++] = ch;
    if (n + 1 < wrapped.size()) wrapped[n++] = ',';
    size_t m = 0;
    wanted[m++] = ',';
    for (char ch : runway)
        if (m + 1 < wanted.size()) wanted[m++] = ch;
    wanted[m++] = ',';
    return std::string_view(wrapped.data(), n).find(std::string_view(wanted.data(), m)) != std::string_view::npos;
}

template <int N>
bool ListHas(const ProcedureList<N>& list, std::string_view name) {
    for (int i = 1; i <= list.count; ++i)
        if (TextOf(list.rows[i].Name) == name) return true;
    return false;
}

template <int N>
void ListAdd(ProcedureList<N>& list, std::string_view name, int row) {
    if (name.empty() || list.count >= N || ListHas(list, name)) return;
    ProcedureListEntry& e = list.rows[++list.count];
    e = ProcedureListEntry{};
    SetText(e.Name, name);
    e.Row = row;
}

// Ascending by name, by exchange of neighbours.
template <int N>
void ListSort(ProcedureList<N>& list) {
    for (bool swapped = true; swapped;) {
        swapped = false;
        for (int i = 1; i < list.count; ++i) {
            if (std::strcmp(list.rows[i].Name.data(), list.rows[i + 1].Name.data()) > 0) {
                std::swap(list.rows[i], list.rows[i + 1]);
                swapped = true;
            }
        }
    }
}

bool HasTransition(const ProcedureRecord& r, std::string_view transition) {
    if (transition == kAny) return true;
    int n = std::clamp(r.LegCount, 0, kProcedureLegLimit);
    for (int i = 1; i <= n; ++i)
        if (TextOf(r.Legs[i].Transition) == transition) return true;
    return false;
}

// Every runway of the procedures of that name, in the order of their lists.
void ListRunwaysOf(const ProcedureRecord* table, int count, std::string_view name, ProcedureList<kProcedureRunwayListLimit>& out) {
    out.count = 0;
    for (int i = 1; i <= count; ++i) {
        if (name != kAny && TextOf(table[i].Name) != name) continue;
        std::string_view runways = TextOf(table[i].Runways);
        while (!runways.empty()) {
            size_t comma = runways.find(',');
            ListAdd(out, runways.substr(0, comma), i);
            if (comma == std::string_view::npos) break;
            runways.remove_prefix(comma + 1);
        }
    }
}

void ListNamesOf(const ProcedureRecord* table, int count, std::string_view runway, std::string_view transition,
                 ProcedureList<kProcedureNameListLimit>& out) {
    out.count = 0;
    for (int i = 1; i <= count; ++i)
        if (RunwayListHas(TextOf(table[i].Runways), runway) && HasTransition(table[i], transition))
            ListAdd(out, TextOf(table[i].Name), i);
}

void ListTransitionsOf(const ProcedureRecord* table, int count, std::string_view name, std::string_view runway,
                       int only_unmarked, ProcedureList<kTransitionListLimit>& out) {
    out.count = 0;
    for (int i = 1; i <= count; ++i) {
        const ProcedureRecord& r = table[i];
        if (!RunwayListHas(TextOf(r.Runways), runway)) continue;
        if (name != kAny && TextOf(r.Name) != name) continue;
        int n = std::clamp(r.LegCount, 0, kProcedureLegLimit);
        for (int l = 1; l <= n; ++l) {
            const ProcedureLeg& leg = r.Legs[l];
            if (leg.Transition[0] == 0) continue;
            if (only_unmarked == 1 && TextOf(leg.EndMark) == "*") continue;
            ListAdd(out, TextOf(leg.Transition), l);
        }
    }
    ListSort(out);
}
}  // namespace

// [SECTION] SID and STAR lists
void ListSidRunways(std::string_view sid) {
    OriginProcedures& o = g_procedures.origin;
    ListRunwaysOf(o.SidTable.data(), std::clamp(o.SidCount, 0, kSidLimit), sid, o.lists.RunwayList);
}

void ListSids(std::string_view runway, std::string_view transition) {
    OriginProcedures& o = g_procedures.origin;
    ListNamesOf(o.SidTable.data(), std::clamp(o.SidCount, 0, kSidLimit), runway, transition, o.lists.ProcedureNameList);
}

void ListSidTransitions(std::string_view sid, std::string_view runway, int only_unmarked) {
    OriginProcedures& o = g_procedures.origin;
    ListTransitionsOf(o.SidTable.data(), std::clamp(o.SidCount, 0, kSidLimit), sid, runway, only_unmarked, o.lists.TransitionList);
}

void ListStarRunways(std::string_view star) {
    DestinationProcedures& d = g_procedures.destination;
    ListRunwaysOf(d.StarTable.data(), std::clamp(d.StarCount, 0, kStarLimit), star, d.lists.RunwayList);
}

void ListStars(std::string_view runway, std::string_view transition) {
    DestinationProcedures& d = g_procedures.destination;
    ListNamesOf(d.StarTable.data(), std::clamp(d.StarCount, 0, kStarLimit), runway, transition, d.lists.ProcedureNameList);
}

void ListStarTransitions(std::string_view star, std::string_view runway, int only_unmarked) {
    DestinationProcedures& d = g_procedures.destination;
    ListTransitionsOf(d.StarTable.data(), std::clamp(d.StarCount, 0, kStarLimit), star, runway, only_unmarked,
                      d.lists.TransitionList);
}

// [SECTION] Approach lists
void ListApproaches(std::string_view runway) {
    DestinationProcedures& d = g_procedures.destination;
    auto& list = d.lists.ApproachNameList;
    list.count = 0;
    int count = std::clamp(d.ApproachCount, 0, kApproachLimit);
    for (int i = 1; i <= count; ++i) {
        const ProcedureRecord& r = d.ApproachTable[i];
        std::string_view runways = TextOf(r.Runways);
        if (runway != kAny && !runways.empty() && runways != runway && !RunwayNameMatches(runways, runway)) continue;
        ListAdd(list, TextOf(r.ApproachIdent), ApproachRowOf(TextOf(r.ApproachIdent)));
    }
}

void ListApproachTransitions(std::string_view approach) {
    DestinationProcedures& d = g_procedures.destination;
    auto& list = d.lists.ApproachTransitionList;
    list.count = 0;
    int count = std::clamp(d.ApproachCount, 0, kApproachLimit);
    for (int i = 1; i <= count; ++i) {
        const ProcedureRecord& r = d.ApproachTable[i];
        if (approach != kAny && TextOf(r.ApproachIdent) != approach) continue;
        int n = std::clamp(r.LegCount, 0, kProcedureLegLimit);
        for (int l = 1; l <= n; ++l) ListAdd(list, TextOf(r.Legs[l].Transition), l);
    }
    ListSort(list);
}

int ApproachRowOf(std::string_view approach) {
    const DestinationProcedures& d = g_procedures.destination;
    int count = std::clamp(d.ApproachNameCount, 0, kApproachNameLimit);
    for (int i = 1; i <= count; ++i)
        if (TextOf(d.ApproachNameTable[i].Name) == approach) return i;
    return 0;
}

int ApproachTransitionRowOf(std::string_view approach, std::string_view transition) {
    ListApproachTransitions(approach);
    const auto& list = g_procedures.destination.lists.ApproachTransitionList;
    for (int i = 1; i <= list.count; ++i)
        if (TextOf(list.rows[i].Name) == transition) return i;
    return 0;
}

// [SECTION] SelectedLegs
namespace {
bool IsAny(std::string_view text) { return text.empty() || text == kAny; }

// The leg applies to the runway: all, a list that holds it, or its group.
bool LegFitsRunway(std::string_view leg_runway, std::string_view runway) {
    if (leg_runway.empty() || leg_runway == "---") return true;
    if (IsAny(runway)) return false;
    return leg_runway.find(runway) != std::string_view::npos || RunwayNameMatches(leg_runway, runway);
}

void StartTable(SelectedLegTable& table, std::string_view name, std::string_view transition) {
    table = SelectedLegTable{};
    std::array<char, 24> route{};
    SetText(route, name);
    if (!IsAny(transition)) {
        size_t n = std::strlen(route.data());
        if (n + 1 < route.size()) {
            route[n] = '.';
            CopyText(route.data() + n + 1, route.size() - n - 1, transition);
        }
    }
    table.RouteName = route;
}

void AddRow(SelectedLegTable& table, const ProcedureLeg& leg, std::string_view marker) {
    if (table.count >= kSelectedLegLimit) return;
    SelectedLeg& row = table.rows[++table.count];
    row = SelectedLeg{};
    row.Fix = leg.Fix;
    row.Latitude = leg.Latitude;
    row.Longitude = leg.Longitude;
    row.Flyover = leg.Flyover;
    SetText(row.Restriction, TextOf(leg.Restriction));
    SetText(row.Marker, marker);
    if (table.count > 1) row.Via = table.RouteName;
}

// The selected row, or the first of that name that serves the runway.
int SelectedRow(const ProcedureRecord* table, int count, int selected, std::string_view name, std::string_view runway) {
    if (selected >= 1 && selected <= count && TextOf(table[selected].Name) == name) return selected;
    for (int i = 1; i <= count; ++i)
        if (TextOf(table[i].Name) == name && RunwayListHas(TextOf(table[i].Runways), IsAny(runway) ? kAny : runway)) return i;
    for (int i = 1; i <= count; ++i)
        if (TextOf(table[i].Name) == name) return i;
    return 0;
}

bool LegOnRoute(const ProcedureLeg& leg, std::string_view transition) {
    std::string_view t = TextOf(leg.Transition);
    return t.empty() || (!IsAny(transition) && t == transition) || TextOf(leg.EndMark) == "*";
}
}  // namespace

void BuildSidLegs() {
    const PlanSelections& sel = g_plan.context.Selections;
    const OriginProcedures& o = g_procedures.origin;
    std::string_view name = TextOf(sel.SidName), transition = TextOf(sel.SidTransition), runway = TextOf(sel.DepartureRunway);
    // 1. The route's name, and the row of the SID.
    StartTable(g_selected_legs.Sid, name, transition);
    int count = std::clamp(o.SidCount, 0, kSidLimit);
    int row = IsAny(name) ? 0 : SelectedRow(o.SidTable.data(), count, o.SelectedSidRow, name, runway);
    if (row == 0) return;
    // 2. The common legs, the transition's, the shared end; for this runway.
    const ProcedureRecord& r = o.SidTable[row];
    int n = std::clamp(r.LegCount, 0, kProcedureLegLimit);
    for (int i = 1; i <= n; ++i) {
        const ProcedureLeg& leg = r.Legs[i];
        if (LegOnRoute(leg, transition) && LegFitsRunway(TextOf(leg.LegRunway), runway)) AddRow(g_selected_legs.Sid, leg, {});
    }
}

void BuildStarLegs() {
    const PlanSelections& sel = g_plan.context.Selections;
    const DestinationProcedures& d = g_procedures.destination;
    std::string_view name = TextOf(sel.StarName), transition = TextOf(sel.StarTransition), runway = TextOf(sel.ArrivalRunway);
    StartTable(g_selected_legs.Star, name, transition);
    int count = std::clamp(d.StarCount, 0, kStarLimit);
    int row = IsAny(name) ? 0 : SelectedRow(d.StarTable.data(), count, d.SelectedStarRow, name, runway);
    if (row == 0) return;
    const ProcedureRecord& r = d.StarTable[row];
    int n = std::clamp(r.LegCount, 0, kProcedureLegLimit);
    // 1. The transition first, up to the common fix.
    if (!IsAny(transition)) {
        for (int i = 1; i <= n; ++i) {
            const ProcedureLeg& leg = r.Legs[i];
            if (TextOf(leg.Transition) == transition && TextOf(leg.EndMark) != "*" && LegFitsRunway(TextOf(leg.LegRunway), runway))
                AddRow(g_selected_legs.Star, leg, {});
        }
    }
    // 2. Then the body and the shared end.
    for (int i = 1; i <= n; ++i) {
        const ProcedureLeg& leg = r.Legs[i];
        bool body = leg.Transition[0] == 0 || TextOf(leg.EndMark) == "*";
        if (body && LegFitsRunway(TextOf(leg.LegRunway), runway)) AddRow(g_selected_legs.Star, leg, {});
    }
}

void BuildApproachLegs() {
    const PlanSelections& sel = g_plan.context.Selections;
    const DestinationProcedures& d = g_procedures.destination;
    std::string_view approach = TextOf(sel.ApproachName), transition = TextOf(sel.ApproachTransition);
    std::string_view runway = TextOf(sel.ArrivalRunway);
    StartTable(g_selected_legs.Approach, approach, transition);
    if (IsAny(approach)) return;
    int count = std::clamp(d.ApproachCount, 0, kApproachLimit);
    for (int i = 1; i <= count; ++i) {
        const ProcedureRecord& r = d.ApproachTable[i];
        int n = std::clamp(r.LegCount, 0, kProcedureLegLimit);
        for (int l = 1; l <= n; ++l) {
            const ProcedureLeg& leg = r.Legs[l];
            if (TextOf(leg.ApproachIdent) != approach) continue;
            std::string_view leg_runway = TextOf(leg.LegRunway);
            if (!leg_runway.empty() && !IsAny(runway) && leg_runway.find(runway) == std::string_view::npos) continue;
            // Markers of the approach itself always; a transition's legs when chosen.
            std::string_view m = TextOf(leg.Marker);
            bool taken = (!IsAny(transition) && m == transition) || m == "IAF*" || m == "---" || m == "MAP" || m == "FAF" || m.empty();
            if (!taken) continue;
            bool shown = m == "IAF" || m == "MAP" || m == "FAF" || m == "ARC" || m == "HP";
            AddRow(g_selected_legs.Approach, leg, shown ? m : std::string_view{});
        }
    }
}
