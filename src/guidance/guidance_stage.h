// guidance_stage.h: the steps the tick runs while an active leg exists, and
// the requests it serves at its end. Each step belongs to lateral guidance,
// holds, vertical guidance, predictions or the radios; the tick only orders them.
#pragma once

// Whether the active plan has an active leg (its index isn't 999).
bool ActiveLegExists();

// Steps of the guidance stage, in the tick's order.
void AbeamTest();                       // a waypoint abeam counts as passed
double DistanceToActiveWaypoint();      // nm
double WaypointChangeThreshold();       // nm, for the next sequencing test
void StampActualTime();                 // "%02.0f:%02.0f" on the active waypoint if it has none
void VnavNextConstraint();              // next-constraint search and VNAV target update
void HoldStep();                        // while the hold table isn't empty
bool SequencingAllowed();               // LNAV or SequenceFPlanWpts on, no hold flown (or one just left)
void SequenceWaypoint();                // the active waypoint is passed
void ComputeLegState();                 // threshold, leg course and length, bearing and distance
void PublishGuidance();                 // named-variable export
void DistancePass();                    // distances along the plan and predictions
double DirectDistanceToDestination();   // nm; negative when there is none
void CruiseDescentTransitions();
void VnavPass();
void RestrictionWrites();
void VnavCommandPass();
bool LastWaypointIsAirport();
double DistanceFromFirstWaypoint();     // nm
void LoadDestinationProcedures();       // the destination's runways and procedures
void CrossTrackAndRabbit(double look_ahead);
double CrossTrackError();               // nm
void HeadingBugWrite();

// Requests served at the end of the tick.
void EnRouteTuning(int requests);
void RunDeferredPlanLoad(int request);
void SetTowerView();                    // the destination's tower view position

// Distances the pause and time-to-go rules need.
double RouteDistanceToDestination();    // nm along the plan; negative when there is none
const char* DestinationIdent();         // the last waypoint's ident, or ""
// The P1000 pop-up was taken for closed: its PLAN mode goes off.
void P1000PopupClosed();
