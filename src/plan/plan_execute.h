// plan_execute.h: the life of a plan edit behind "ACT", "MOD" and the EXEC
// key: PlanState and its steps, PlanExecute (ModPlan becomes ActivePlan and
// the predictions follow) and PlanErase (the edit is dropped).
//
// PlanState (g_plan.context.PlanState) is one value for the one ModPlan:
//   0 no route, 1 route being built, 2 activated and waiting for EXEC,
//   3 active, 4 modified and waiting for EXEC or ERASE.
// The EXEC lamp of the Boeing-style CDU is lit in 2 and 4.
#pragma once

// 0 to 1, 1 to 2, 2 to 3, 3 to 4 and 4 to 3. The step from 0 on the ground
// starts a new flight on the fuel the aircraft has.
void PlanStateStep();
// The step that follows a change of plan data: from 3 (to 4) or from 0 (to 1).
void StepAfterPlanChange();
// True while the EXEC lamp is lit.
bool ExecutePending();
// ModPlan becomes ActivePlan; PlanState 3. From PlanState below 3 it is a
// new plan: LNAV's once-per-plan steps rearm and, on the ground, a new flight
// starts. A modification (PlanState 4) keeps guidance as it flies; a direct
// or intercept under way starts LNAV's leg at the present position.
void PlanExecute();
// The modification is dropped: selections, approach indices and undo slots
// back as at the last EXEC, PlanState 4 back to 3, ModPlan copied anew from
// ActivePlan.
void PlanErase();
