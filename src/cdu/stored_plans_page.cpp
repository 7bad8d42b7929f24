// stored_plans_page.cpp: STORED FLIGHT PLANS, the plans of the flight plan
// folder as the start-up listed them, six names a page; a key on a name
// loads that plan for the route pages.
//
// Index:
//   [SECTION] STORED FLIGHT PLANS page
#include "cdu/nav_ref_pages.h"

#include "frame/data_text.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"

#include <algorithm>
#include <cstdio>

namespace {
constexpr float kStoredTitleX = 10;
constexpr float kStoredCountX = 225;
constexpr char kNewPlanEntry[] = "NEW FPL";        // the list's last entry: an empty plan
constexpr char kEmptyPlanName[] = "NEXT FPL";      // what the loader takes for an empty plan

// Loads entry e into ModPlan for the route pages; keys 1 to 5 step the plan
// state, key 11 starts the plan over at state 1.
void LoadStoredPlan(int e, bool step) {
    SmithsCduState& s = g_smiths;
    PlanContext& pc = g_plan.context;
    const StoredPlanEntry& entry = g_stored_plans.entries[static_cast<size_t>(e)];
    int state_before = pc.PlanState;
    std::array<char, kFileNameSize> file = entry.FileName;
    if (TextOf(file) == kNewPlanEntry) {
        LoadRouteToMod(kEmptyPlanName, 0);
    } else {
        LoadRouteToMod(file.data(), 0);
        SetText(pc.PlanLoadFile, TextOf(file));
    }
    // The load itself steps a plan from nothing; the key's step is taken
    // from the state before it.
    if (step)
        pc.PlanState = state_before == 0 ? 1 : state_before == 3 ? 4 : state_before;
    else
        pc.PlanState = 1;
    BuildRouteRows();
    s.CduPage = cdu_page::kRte;
    s.rte.page = 1;
}
}  // namespace

// [SECTION] STORED FLIGHT PLANS page
void StoredFlightPlansPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    const StoredPlanTable& plans = g_stored_plans;
    int count = std::clamp(plans.count, 0, kStoredPlanLimit + 1);
    StepPages(s.stored_plans, (count + kStoredPlanNamesPerPage - 1) / kStoredPlanNamesPerPage);

    // The key of this frame: keys 1 to 5 and 11 on a row with a plan.
    int key = s.LineSelectLatch;
    int row = key >= 1 && key <= 5 ? key : (key == kLeftRow6Key ? 6 : 0);
    int e = (s.stored_plans.page - 1) * kStoredPlanNamesPerPage + row;
    if (row > 0 && e <= count) {
        LoadStoredPlan(e, key != kLeftRow6Key);
        return;
    }

    // Draw.
    screen.Title("STORED FLIGHT PLANS", kStoredTitleX);
    screen.Count("%2d / %2d", s.stored_plans.page, s.stored_plans.count, kStoredCountX);
    for (int n = 1; n <= kStoredPlanNamesPerPage; ++n) {
        int i = (s.stored_plans.page - 1) * kStoredPlanNamesPerPage + n;
        if (i > count) break;
        screen.Value(TextOf(plans.entries[static_cast<size_t>(i)].FileName), 0, CduValueY(n));
    }
}
