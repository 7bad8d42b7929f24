// gns_procedure_pages.cpp: DEPARTURE, ARRIVAL and APCH of the GNS pair. A
// procedure is chosen by walking lists until nothing is open any more; each
// page works on its own temporaries, and only the last ENTER changes a plan.
//
// The three pages share one form. Each has a procedure (SID, STAR, approach
// type) and a transition, in the rows at y 80 and 120 (the ARRIVAL page has
// them the other way round), and a runway. Key 6 opens the airport field
// and then the runway list, key 7 the list of the row at 80 and then 120.
//
// Index:
//   [SECTION] Roles and lists
//   [SECTION] Opening
//   [SECTION] Keys
//   [SECTION] ENTER
//   [SECTION] Drawing
#include "cdu/gns_keys.h"
#include "cdu/gns_plan_edit.h"
#include "cdu/gns_screen.h"
#include "cdu/plan_data_texts.h"
#include "frame/data_text.h"
#include "guidance/holds.h"
#include "navdata/procedures.h"
#include "plan/plan_edit.h"
#include "plan/plan_rows.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {
constexpr int kListPerPage = 12;              // two columns of six
constexpr int kLegsPerPage = 8;               // two columns of four
enum class Role { Procedure, Transition };

GnsPageState& S() { return g_gns_page; }
int Index() { return std::clamp(S().GnsPage - gns_page::kDeparture, 0, kGnsProcedurePages - 1); }

GnsProcedureTemporaries& Temps() {
    PlanDataTexts& t = g_plan_texts;
    int i = Index();
    return i == 0 ? t.GnsDeparture : i == 1 ? t.GnsArrival : t.GnsApproach;
}

bool IsSet(const PlanText& text) { return text[0] != 0 && TextOf(text) != kNoSelection; }

// [SECTION] Roles and lists
// The row at y 80 (key 7 state 1) and 120 (state 2); ARRIVAL swaps them.
Role RoleOfState(int state) {
    bool arrival = Index() == 1;
    return (state == 1) != arrival ? Role::Procedure : Role::Transition;
}
int StateOfRole(Role role) { return RoleOfState(1) == role ? 1 : 2; }
PlanText& Value(Role role) { return role == Role::Procedure ? Temps().procedure : Temps().transition; }

template <int N>
void TakeList(const ProcedureList<N>& list) {
    GnsPageState& s = S();
    s.GnsListCount = 0;
    for (int i = 1; i <= list.count && i <= N && s.GnsListCount < kGnsListLimit; ++i) {
        if (list.rows[static_cast<size_t>(i)].Name[0] == 0) continue;
        SetText(s.GnsListNames[static_cast<size_t>(++s.GnsListCount)], TextOf(list.rows[static_cast<size_t>(i)].Name));
    }
}

std::string_view Any(const PlanText& text) { return IsSet(text) ? TextOf(text) : std::string_view(kNoSelection); }

// The names of the procedure or the transitions, for what stands chosen.
void MakeList(Role role) {
    GnsProcedureTemporaries& t = Temps();
    int i = Index();
    if (i == 0) {
        if (role == Role::Procedure) {
            ListSids(Any(t.runway), Any(t.transition));
            TakeList(g_procedures.origin.lists.ProcedureNameList);
        } else {
            ListSidTransitions(Any(t.procedure), Any(t.runway), 0);
            TakeList(g_procedures.origin.lists.TransitionList);
        }
    } else if (i == 1) {
        if (role == Role::Procedure) {
            ListStars(Any(t.runway), Any(t.transition));
            TakeList(g_procedures.destination.lists.ProcedureNameList);
        } else {
            ListStarTransitions(Any(t.procedure), Any(t.runway), 0);
            TakeList(g_procedures.destination.lists.TransitionList);
        }
    } else {
        if (role == Role::Procedure) {
            ListApproaches(Any(t.runway));
            TakeList(g_procedures.destination.lists.ApproachNameList);
        } else {
            ListApproachTransitions(Any(t.procedure));
            TakeList(g_procedures.destination.lists.ApproachTransitionList);
        }
    }
}

void MakeRunwayList() {
    GnsPageState& s = S();
    GnsProcedureTemporaries& t = Temps();
    int i = Index();
    if (i == 0) {
        ListSidRunways(Any(t.procedure));
        TakeList(g_procedures.origin.lists.RunwayList);
        return;
    }
    if (i == 1) {
        ListStarRunways(Any(t.procedure));
        TakeList(g_procedures.destination.lists.RunwayList);
        return;
    }
    // The approaches' runways, of the type chosen or of all.
    const DestinationProcedures& d = g_procedures.destination;
    s.GnsListCount = 0;
    for (int r = 1; r <= d.ApproachCount && r <= kApproachLimit; ++r) {
        const ProcedureRecord& a = d.ApproachTable[static_cast<size_t>(r)];
        if (IsSet(t.procedure) && TextOf(a.ApproachIdent) != TextOf(t.procedure)) continue;
        std::string_view runway = TextOf(a.Runways);
        if (runway.empty()) continue;
        bool seen = false;
        for (int k = 1; k <= s.GnsListCount; ++k) seen = seen || TextOf(s.GnsListNames[static_cast<size_t>(k)]) == runway;
        if (!seen && s.GnsListCount < kGnsListLimit) SetText(s.GnsListNames[static_cast<size_t>(++s.GnsListCount)], runway);
    }
}

// The entry under the cursor goes into the field.
void CursorToField() {
    GnsPageState& s = S();
    int entry = (s.GnsProcedurePage[static_cast<size_t>(Index())] - 1) * kListPerPage + s.GnsListCursor;
    if (s.GnsListCursor < 1 || entry > s.GnsListCount) return;
    GnsOpenField(s.GnsListNames[static_cast<size_t>(entry)].data(), 6);
    GnsCloseField();
}

void ShowList(int key, int state) {
    GnsPageState& s = S();
    s.GnsLineState[6] = key == 6 ? state : 0;
    s.GnsLineState[7] = key == 7 ? state : 0;
    s.GnsListCursor = 1;
    s.GnsProcedurePage[static_cast<size_t>(Index())] = 1;
    s.GnsLegsShown[static_cast<size_t>(Index())] = 0;
    CursorToField();
}

void OpenRoleList(Role role) {
    MakeList(role);
    ShowList(7, StateOfRole(role));
}

void OpenRunwayList() {
    MakeRunwayList();
    ShowList(6, 2);
}

// The legs of what the temporaries choose, built over the plan's selections
// for the moment of the build only.
void BuildLegs() {
    PlanSelections& sel = g_plan.context.Selections;
    PlanSelections kept = sel;
    GnsProcedureTemporaries& t = Temps();
    int i = Index();
    if (i == 0) {
        sel.SidName = t.procedure;
        sel.SidTransition = t.transition;
        sel.DepartureRunway = t.runway;
        BuildSidLegs();
    } else if (i == 1) {
        sel.StarName = t.procedure;
        sel.StarTransition = t.transition;
        sel.ArrivalRunway = t.runway;
        BuildStarLegs();
    } else {
        sel.ApproachName = t.procedure;
        sel.ApproachTransition = t.transition;
        sel.ArrivalRunway = t.runway;
        BuildApproachLegs();
    }
    sel = kept;
    S().GnsLegsShown[static_cast<size_t>(i)] = 1;
}

const SelectedLegTable& Legs() {
    int i = Index();
    return i == 0 ? g_selected_legs.Sid : i == 1 ? g_selected_legs.Star : g_selected_legs.Approach;
}

bool AllSet() {
    GnsProcedureTemporaries& t = Temps();
    return IsSet(t.airport) && IsSet(t.runway) && IsSet(t.procedure) && IsSet(t.transition);
}

// The airport's procedures in their slot, for the lists.
void LoadAirport() {
    GnsProcedureTemporaries& t = Temps();
    int slot = Index() == 0 ? 1 : 2;
    const AirportDetail& d = slot == 1 ? g_airports.OriginAirport : g_airports.DestinationAirport;
    if (TextOf(d.Ident) != TextOf(t.airport)) LoadAirportDetail(TextOf(t.airport), slot);
}
}  // namespace

// [SECTION] Opening
void GnsOpenProcedurePage() {
    GnsPageState& s = S();
    GnsProcedureTemporaries& t = Temps();
    if (!IsSet(t.airport)) {
        s.GnsLineState[6] = 1;
        GnsOpenField("");
        return;
    }
    LoadAirport();
    if (!IsSet(Value(RoleOfState(1)))) {
        OpenRoleList(RoleOfState(1));
    } else if (!IsSet(Value(RoleOfState(2)))) {
        OpenRoleList(RoleOfState(2));
    } else if (!IsSet(t.runway)) {
        OpenRunwayList();
    } else {
        BuildLegs();
        s.GnsLineState[5] = 1;
    }
}

void GnsProcedureAirportChosen(std::string_view ident) {
    GnsPageState& s = S();
    int page = s.GnsReturnPage;
    GnsGoToPage(page);
    GnsProcedureTemporaries& t = Temps();
    SetText(t.airport, ident);
    SetText(t.runway, kNoSelection);
    SetText(t.procedure, kNoSelection);
    SetText(t.transition, kNoSelection);
    s.GnsReturnPage = gns_page::kFlightPlan;
    GnsOpenProcedurePage();
}

namespace {
// [SECTION] Keys
void CursorKey(int key) {
    GnsPageState& s = S();
    static constexpr int kFirst[kGnsLineKeys + 1] = {0, 0, 0, 1, 3, 5, 0, 0, 7, 9, 11};
    // A press clears the states of keys 1 to 5 other than its own.
    for (int k = 1; k <= 5; ++k)
        if (k != key) s.GnsLineState[static_cast<size_t>(k)] = 0;
    int& st = s.GnsLineState[static_cast<size_t>(key)];
    st = (st + 1) % 3;
    if ((key == 5 || key == 10) && st == 2) s.GnsLegsShown[static_cast<size_t>(Index())] = 0;
    s.GnsListCursor = st == 0 ? 0 : kFirst[key] + st - 1;
    CursorToField();
}

void AirportKey(int state_before) {
    GnsPageState& s = S();
    GnsProcedureTemporaries& t = Temps();
    int i = Index();
    s.GnsLineState[7] = 0;
    if (i == 2) {
        if (state_before == 1) {
            SetText(t.runway, kNoSelection);
            s.GnsLegsShown[2] = 0;
            s.GnsListCursor = 0;
            GnsCloseField();
            s.GnsLineState[6] = 2;
            MakeRunwayList();
        } else {
            GnsClearLineStates();
            s.GnsLineState[6] = 1;
            GnsOpenField("");
            MakeRunwayList();
        }
        return;
    }
    if (state_before == 0) {
        s.GnsLineState[6] = 1;
        GnsOpenField("");
    } else if (state_before == 1) {
        if (!IsSet(t.airport)) {
            s.GnsLineState[6] = 0;
            GnsCloseField();
            return;
        }
        SetText(t.runway, kNoSelection);
        OpenRunwayList();
    } else {
        GnsCloseField();
        s.GnsLineState[6] = IsSet(t.airport) ? 1 : 0;
    }
}

void RowKey() {
    GnsPageState& s = S();
    GnsProcedureTemporaries& t = Temps();
    if (!IsSet(t.airport)) return;
    Role role = s.GnsLineState[7] == 1 ? RoleOfState(2) : RoleOfState(1);
    SetText(Value(role), kNoSelection);
    OpenRoleList(role);
}

// [SECTION] ENTER
// The exactly-one rule: a list of one name takes it by itself.
bool TakeSingle(Role role) {
    MakeList(role);
    if (S().GnsListCount != 1) return false;
    SetText(Value(role), TextOf(S().GnsListNames[1]));
    return true;
}

void Commit() {
    GnsPageState& s = S();
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    GnsProcedureTemporaries& t = Temps();
    int i = Index();
    bool active = GnsOnActivePlan() && pc.PlanState >= 3;
    if (i == 0) {
        sel.SidName = t.procedure;
        sel.SidTransition = t.transition;
        sel.DepartureRunway = t.runway;
        BuildSidLegs();
        if (active) {
            ActivateSid();
            pc.ActiveLeg = 1;
            pc.ActiveWaypointLatitude = g_plan.ActivePlan[1].Latitude;
            pc.ActiveWaypointLongitude = g_plan.ActivePlan[1].Longitude;
        } else {
            InsertSid();
        }
    } else if (i == 1) {
        sel.StarName = t.procedure;
        sel.StarTransition = t.transition;
        sel.ArrivalRunway = t.runway;
        sel.DestinationName = t.airport;
        BuildStarLegs();
        if (active)
            ActivateStar();
        else
            InsertStar();
    } else {
        sel.ApproachName = t.procedure;
        sel.ApproachTransition = t.transition;
        sel.ArrivalRunway = t.runway;
        BuildApproachLegs();
        if (active) {
            ActivateApproach();
            if (pc.ActiveLeg == kNoActiveLeg) pc.ActiveLeg = 1;
        } else {
            InsertApproach(0);
        }
    }
    if (active) {
        BeginModification();
        TakeActiveHoldRows();
    }
    WriteEndMarker();
    s.GnsReturnPage = gns_page::kFlightPlan;
    GnsGoToPage(gns_page::kFlightPlan);
}

// APCH's own order: after the type the runway list opens unless a single
// transition completes the choice; after the runway a single type is taken.
void ApproachEnter(int k6, int k7, std::string_view text) {
    GnsProcedureTemporaries& t = Temps();
    GnsClearLineStates();
    if (k6 == 2) {
        SetText(t.runway, text);
        if (!IsSet(t.procedure)) {
            if (!TakeSingle(Role::Procedure)) OpenRoleList(Role::Procedure);
        } else if (!IsSet(t.transition)) {
            OpenRoleList(Role::Transition);
        }
    } else if (k7 == 1) {
        SetText(t.procedure, text);
        if (!IsSet(t.transition) && !TakeSingle(Role::Transition)) {
            OpenRunwayList();
        } else if (!IsSet(t.runway)) {
            OpenRunwayList();
        }
    } else {
        SetText(t.transition, text);
        if (!IsSet(t.procedure) && !TakeSingle(Role::Procedure)) {
            OpenRoleList(Role::Procedure);
        } else if (!IsSet(t.runway)) {
            OpenRunwayList();
        }
    }
}

void ProcedureEnter() {
    GnsPageState& s = S();
    GnsProcedureTemporaries& t = Temps();
    int i = Index();
    int k6 = s.GnsLineState[6];
    int k7 = s.GnsLineState[7];
    std::array<char, kGnsFieldCapacity> field{};
    SetText(field, GnsFieldText());
    std::string_view text = TextOf(field);
    // 1. The legs shown and "SELECT?": the plan takes the procedure.
    if (s.GnsLegsShown[static_cast<size_t>(i)] == 1 && s.GnsLineState[5] == 1) {
        Commit();
        return;
    }
    // 3. The airport field: looked up, and shown for confirmation.
    if (k6 == 1) {
        int slot = i == 0 ? 1 : 2;
        AirportDetail& d = slot == 1 ? g_airports.OriginAirport : g_airports.DestinationAirport;
        d.Ident = {};
        LoadAirportDetail(text, slot);
        if (!text.empty() && TextOf(d.Ident) == text) {
            s.GnsAirportNotFound = 0;
            s.GnsReturnPage = s.GnsPage;
            s.GnsCandidate = 1;
            SetText(s.GnsFlyover, "NO");
            GnsGoToPage(gns_page::kDatabaseWpt);
            return;
        }
        s.GnsAirportNotFound = 1;
        if (i == 2) {
            SetText(t.airport, kNoSelection);
            GnsCloseField();
            s.GnsLineState[6] = 0;
        }
        return;
    }
    if (text.empty() || (k6 != 2 && k7 == 0)) return;
    s.GnsProcedurePage[static_cast<size_t>(i)] = 1;
    if (i == 2) {
        ApproachEnter(k6, k7, text);
    } else if (k6 == 2) {
        // 2. The runway.
        SetText(t.runway, text);
        GnsClearLineStates();
        if (!IsSet(Value(RoleOfState(1))))
            OpenRoleList(RoleOfState(1));
        else if (!IsSet(Value(RoleOfState(2))))
            OpenRoleList(RoleOfState(2));
    } else if (RoleOfState(k7) == Role::Procedure) {
        // 4. The procedure; a single transition is taken by itself.
        SetText(t.procedure, text);
        GnsClearLineStates();
        s.GnsListCursor = 1;
        if (!IsSet(t.transition)) TakeSingle(Role::Transition);
        if (!IsSet(t.transition))
            OpenRoleList(Role::Transition);
        else if (!IsSet(t.runway))
            OpenRunwayList();
    } else {
        // 5. The transition; a single procedure is taken by itself.
        SetText(t.transition, text);
        GnsClearLineStates();
        if (!IsSet(t.procedure)) TakeSingle(Role::Procedure);
        if (!IsSet(t.procedure))
            OpenRoleList(Role::Procedure);
        else if (!IsSet(t.runway))
            OpenRunwayList();
    }
    // 6. Everything chosen: the legs, and "SELECT?".
    if (AllSet() && s.GnsLegsShown[static_cast<size_t>(i)] == 0) {
        GnsClearLineStates();
        BuildLegs();
        s.GnsLineState[5] = 1;
        s.GnsListCursor = 0;
    }
}

// [SECTION] Drawing
void DrawRow(GnsScreen& screen, const char* label, const PlanText& value, bool open, float y, bool runway) {
    screen.Text(label, 53, y, kGnsGreen);
    char text[48];
    if (runway && IsSet(value))
        std::snprintf(text, sizeof text, "RW%s", value.data());
    else
        std::snprintf(text, sizeof text, "%s", IsSet(value) ? value.data() : kNoSelection);
    screen.Text(text, 292, y, open ? kGnsYellow : kGnsGreen);
}
}  // namespace

void GnsProcedurePage(GnsScreen& screen) {
    GnsPageState& s = S();
    int i = Index();
    GnsProcedureTemporaries& t = Temps();
    int& page = s.GnsProcedurePage[static_cast<size_t>(i)];
    bool list_open = s.GnsLineState[6] == 2 || s.GnsLineState[7] != 0;
    bool legs = s.GnsLegsShown[static_cast<size_t>(i)] == 1;
    // 1. Page count and stepping.
    int count = list_open ? (s.GnsListCount + kListPerPage - 1) / kListPerPage
                          : legs ? (Legs().count + kLegsPerPage - 1) / kLegsPerPage : 1;
    if (!list_open && !legs) page = 1;
    int before = page;
    GnsStepPages(page, std::max(count, 1));
    if (page != before && list_open) CursorToField();
    // 2. Keys.
    int key = s.GnsLineSelect;
    if (key == 6) AirportKey(s.GnsLineState[6]);
    if (key == 7) RowKey();
    if (key == 3 || key == 4 || key == 5 || key == 8 || key == 9 || key == 10) CursorKey(key);
    if (s.GnsEnterLatch) ProcedureEnter();
    if (s.GnsPage != gns_page::kDeparture + i) return;
    // 3. Draw.
    list_open = s.GnsLineState[6] == 2 || s.GnsLineState[7] != 0;
    legs = s.GnsLegsShown[static_cast<size_t>(i)] == 1;
    static constexpr const char* kTitles[] = {"DEPARTURE", "ARRIVAL", "APCH"};
    screen.Text(kTitles[i], 32, 0, kGnsWhite);
    if (s.GnsEditing && s.GnsLineState[6] == 1)
        screen.Field(230, 0);
    else
        screen.Text(IsSet(t.airport) ? TextOf(t.airport) : std::string_view(kNoSelection), 230, 0, kGnsCyan);
    count = list_open ? (s.GnsListCount + kListPerPage - 1) / kListPerPage
                      : legs ? (Legs().count + kLegsPerPage - 1) / kLegsPerPage : 1;
    char text[32];
    std::snprintf(text, sizeof text, "%d/%d", page, std::max(count, 1));
    screen.Text(text, 360, 0, kGnsWhite);
    static constexpr const char* kRow80[] = {"SID", "TRANSITION", "TYPE"};
    static constexpr const char* kRow120[] = {"TRANSITION", "STAR", "TRANSITION"};
    DrawRow(screen, "RUNWAY", t.runway, s.GnsLineState[6] == 2, 40, true);
    DrawRow(screen, kRow80[i], Value(RoleOfState(1)), s.GnsLineState[7] == 1, 80, false);
    DrawRow(screen, kRow120[i], Value(RoleOfState(2)), s.GnsLineState[7] == 2, 120, false);
    if (list_open) {
        bool runways = s.GnsLineState[6] == 2;
        for (int place = 1; place <= kListPerPage; ++place) {
            int entry = (page - 1) * kListPerPage + place;
            if (entry > s.GnsListCount) break;
            const char* name = s.GnsListNames[static_cast<size_t>(entry)].data();
            bool at = place == s.GnsListCursor;
            if (runways)
                std::snprintf(text, sizeof text, at ? "RW%-3s?" : "RW%-3s", name);
            else
                std::snprintf(text, sizeof text, at ? "%-6s?" : "%-6s", name);
            float x = place <= 6 ? 30 : 292;
            float y = 160 + kGnsRowPitch * static_cast<float>((place - 1) % 6);
            if (at)
                screen.Cursor(text, x, y);
            else
                screen.Text(text, x, y, kGnsGreen);
        }
    } else if (legs) {
        static constexpr const char* kLegsTitles[] = {"WAYPOINTS OF SID:", "WAYPOINTS OF STAR:", "WPTS OF APPROACH:"};
        screen.Text(kLegsTitles[i], 53, 160, kGnsGreen);
        const SelectedLegTable& l = Legs();
        for (int place = 1; place <= kLegsPerPage; ++place) {
            int row = (page - 1) * kLegsPerPage + place;
            if (row > l.count) break;
            float x = place <= 4 ? 30 : 292;
            float y = 200 + kGnsRowPitch * static_cast<float>((place - 1) % 4);
            screen.Text(TextOf(l.rows[static_cast<size_t>(row)].Fix), x, y, kGnsGreen);
        }
    }
    if (!IsSet(t.airport)) screen.Text("ENTER AIRPORT ID", 53, 360, kGnsCyan);
    if (s.GnsAirportNotFound) screen.Text("AIRPORT NOT FOUND", 53, 340, kGnsYellow);
    if (IsSet(t.airport) && !list_open) {
        if (s.GnsLineState[5] == 1)
            screen.Cursor("SELECT?", 30, 360);
        else
            screen.Text("SELECT", 30, 360, kGnsGreen);
        if (s.GnsLineState[10] == 1)
            screen.Cursor("ERASE?", 320, 360);
        else
            screen.Text("ERASE", 320, 360, kGnsGreen);
    }
}
