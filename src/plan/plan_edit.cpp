// plan_edit.cpp: the plan's editing operations come with the route pages;
// until then they leave the plan as it is.
#include "plan/plan_edit.h"

#include "plan/plan_tables.h"

void InsertCandidate(int, int) {}
void InsertPlain(int, int) {}
void InsertFirstCandidate(int) {}
void InsertThen(int) {}
void RemoveThenRows() {}
void DeleteRow(int, int) {}
void CloseRowsTo(int, int) {}
void EnterRestriction(int) {}
void InsertAirway() {}
void InsertSid() {}
void InsertStar() {}
void InsertApproach(int) {}
void ChooseSid(int, int) {}
void ChooseStar(int, int) {}
void ChooseDepartureRunway(int) {}
void ChooseArrivalRunway(int) {}
void ActivateSid() {}
void ActivateStar() {}
void ActivateApproach() {}
int RowOfRouteLine(int, int) { return g_plan.context.ModLastRow; }
