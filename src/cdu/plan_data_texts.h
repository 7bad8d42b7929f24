// plan_data_texts.h: the CDUs' texts of the route data that show an entry not
// yet made. They hold "------" until the pilot or a loaded plan fills them;
// the GNS direction text holds "DEFAULT". Start-up presets them once, when
// orb.cfg has been read, and the route pages set them back to "------" when a
// selection is undone.
#pragma once

#include <array>

constexpr int kPlanTextSize = 32;       // an ident, runway or procedure name with room to spare

using PlanText = std::array<char, kPlanTextSize>;

// The three GNS procedure pages each keep their choices until ENTER.
struct GnsProcedureTemporaries {
    PlanText airport{};                 // "------" until chosen
    PlanText runway{};
    PlanText procedure{};
    PlanText transition{};
};

struct PlanDataTexts {
    // Route identification of the Boeing-style pages
    PlanText OriginName{};
    PlanText DestinationName{};
    PlanText SidName{};
    PlanText SidTransition{};
    PlanText DepartureRunway{};
    PlanText StarName{};
    PlanText StarTransition{};
    PlanText ArrivalRunway{};
    PlanText ApproachName{};
    PlanText ApproachTransition{};
    // The six procedure fields as at the last EXEC, with which ERASE works
    PlanText SavedSidName{};
    PlanText SavedSidTransition{};
    PlanText SavedDepartureRunway{};
    PlanText SavedStarName{};
    PlanText SavedStarTransition{};
    PlanText SavedArrivalRunway{};
    PlanText PendingDepartureRunway{};  // a runway entered while a modification waits
    PlanText ModifiedOrigin{};          // empty, or the origin entered while PlanState is 4
    PlanText ModifiedDestination{};     // empty, or the destination entered while PlanState is 4
    // GNS pages
    GnsProcedureTemporaries GnsDeparture;
    GnsProcedureTemporaries GnsArrival;
    GnsProcedureTemporaries GnsApproach;
    PlanText DirectToTurnOption{};      // "DEFAULT", "LEFT" or "RIGHT"
};

extern PlanDataTexts g_plan_texts;

// Every not-yet-entered text to "------", the modified names empty, the
// direction text "DEFAULT".
void PresetPlanDataTexts();
