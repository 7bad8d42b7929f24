// traffic.cpp: traffic comes later; the link stays null.
#include "display/traffic.h"

TrafficState g_traffic;

void TryTrafficLink(GaugeId) {}
void ReadOutsideTrafficVariables() {}
