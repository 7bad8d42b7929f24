// traffic.h: the link to an outside traffic gauge, and what it has given.
#pragma once

#include "frame/gauge_table.h"

// The link's counters and the own target count; the block pointer itself is
// the module's (ModuleState::traffic_link).
struct TrafficState {
    int link_attempts = 0;              // retries made at draw time, at most 20
    int link_status = 0;                // 1 set at each draw, 2 link up, -1 no link
    int TargetCount = 0;                // rows of the own target table
};

extern TrafficState g_traffic;

// Looks for the outside traffic gauge's export; a failure leaves a null link.
void TryTrafficLink(GaugeId id);
// HW_B737_ND_NB reads the outside traffic variables before its start-up.
void ReadOutsideTrafficVariables();
