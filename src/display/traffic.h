// traffic.h: the link to an outside traffic gauge.
#pragma once

#include "frame/gauge_table.h"

// Looks for the outside traffic gauge's export; a failure leaves a null link.
void TryTrafficLink(GaugeId id);
// HW_B737_ND_NB reads the outside traffic variables before its start-up.
void ReadOutsideTrafficVariables();
