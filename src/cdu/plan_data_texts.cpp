// plan_data_texts.cpp: the CDUs' route data texts and their preset.
#include "cdu/plan_data_texts.h"

#include <cstdio>

PlanDataTexts g_plan_texts;

namespace {
void Set(PlanText& text, const char* value) { std::snprintf(text.data(), text.size(), "%s", value); }
}  // namespace

void PresetPlanDataTexts() {
    PlanDataTexts& t = g_plan_texts;
    for (PlanText* text : {&t.OriginName, &t.DestinationName, &t.SidName, &t.SidTransition, &t.DepartureRunway,
                           &t.StarName, &t.StarTransition, &t.ArrivalRunway, &t.ApproachName, &t.ApproachTransition,
                           &t.SavedSidName, &t.SavedSidTransition, &t.SavedDepartureRunway, &t.SavedStarName,
                           &t.SavedStarTransition, &t.SavedArrivalRunway, &t.PendingDepartureRunway})
        Set(*text, "------");
    for (GnsProcedureTemporaries* page : {&t.GnsDeparture, &t.GnsArrival, &t.GnsApproach})
        for (PlanText* text : {&page->airport, &page->runway, &page->procedure, &page->transition}) Set(*text, "------");
    Set(t.ModifiedOrigin, "");
    Set(t.ModifiedDestination, "");
    Set(t.DirectToTurnOption, "DEFAULT");
}
