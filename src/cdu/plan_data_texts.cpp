// plan_data_texts.cpp: the GNS pages' texts and their preset.
#include "cdu/plan_data_texts.h"

#include "frame/data_text.h"
#include "guidance/lnav.h"

PlanDataTexts g_plan_texts;

void PresetPlanDataTexts() {
    PlanDataTexts& t = g_plan_texts;
    for (GnsProcedureTemporaries* page : {&t.GnsDeparture, &t.GnsArrival, &t.GnsApproach})
        for (PlanText* text : {&page->airport, &page->runway, &page->procedure, &page->transition})
            SetText(*text, kNoSelection);
    SetText(g_lnav.DirectToTurnOption, "DEFAULT");
}
