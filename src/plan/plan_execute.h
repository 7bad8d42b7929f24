// plan_execute.h: the life of a plan edit behind "ACT", "MOD" and the EXEC
// key: PlanState and its steps, PlanExecute (ModPlan becomes ActivePlan and
// the predictions follow) and PlanErase (the edit is dropped).
//
// PlanState (g_plan.context.PlanState) is one value for the one ModPlan:
//   0 no route, 1 route being built, 2 activated and waiting for EXEC,
//   3 active, 4 modified and waiting for EXEC or ERASE.
// The EXEC lamp of the Boeing-style CDU is lit in 2 and 4.
#pragma once

// 0 to 1, 1 to 2, 2 to 3, 3 to 4 and 4 to 3.
void PlanStateStep();
// The step that follows a change of plan data: from 3 (to 4) or from 0 (to 1).
void StepAfterPlanChange();
// True while the EXEC lamp is lit.
bool ExecutePending();
// ModPlan becomes ActivePlan; PlanState 3.
void PlanExecute();
// The modification is dropped: PlanState 4 goes back to 3 and ModPlan is
// copied anew from ActivePlan.
void PlanErase();
