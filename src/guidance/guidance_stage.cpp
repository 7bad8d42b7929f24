// guidance_stage.cpp: until the plan and guidance are in, there is no active
// leg and each step keeps its default.
#include "guidance/guidance_stage.h"

#include "plan/route_files.h"

bool ActiveLegExists() { return false; }
void AbeamTest() {}
double DistanceToActiveWaypoint() { return 0; }
double WaypointChangeThreshold() { return 0; }
void StampActualTime() {}
void VnavNextConstraint() {}
void HoldStep() {}
bool SequencingAllowed() { return false; }
void SequenceWaypoint() {}
void ComputeLegState() {}
void PublishGuidance() {}
void DistancePass() {}
double DirectDistanceToDestination() { return -1; }
void CruiseDescentTransitions() {}
void VnavPass() {}
void RestrictionWrites() {}
void VnavCommandPass() {}
bool LastWaypointIsAirport() { return false; }
double DistanceFromFirstWaypoint() { return 0; }
void LoadDestinationProcedures() {}
void CrossTrackAndRabbit(double) {}
double CrossTrackError() { return 0; }
void HeadingBugWrite() {}
void EnRouteTuning(int) {}
void RunDeferredPlanLoad(int request) { LoadRouteToActive(request); }
void SetTowerView() {}
double RouteDistanceToDestination() { return -1; }
const char* DestinationIdent() { return ""; }
void P1000PopupClosed() {}
