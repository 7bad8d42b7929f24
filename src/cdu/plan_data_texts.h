// plan_data_texts.h: the GNS pages' texts of procedure choices not yet made.
// The direction text of a GNS Direct-To is LNAV's (it flies it and sets it
// back to "DEFAULT"). The route's own selections
// (origin, destination, procedures and their saved twins) live with the plan
// in PlanContext::Selections. Start-up presets these texts once, when orb.cfg
// has been read.
#pragma once

#include "plan/plan_tables.h"

// The three GNS procedure pages each keep their choices until ENTER.
struct GnsProcedureTemporaries {
    PlanText airport{};                 // "------" until chosen
    PlanText runway{};
    PlanText procedure{};
    PlanText transition{};
};

struct PlanDataTexts {
    GnsProcedureTemporaries GnsDeparture;
    GnsProcedureTemporaries GnsArrival;
    GnsProcedureTemporaries GnsApproach;
};

extern PlanDataTexts g_plan_texts;

// Every GNS temporary to "------", LNAV's Direct-To direction text "DEFAULT".
void PresetPlanDataTexts();
