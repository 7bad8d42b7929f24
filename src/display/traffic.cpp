// traffic.cpp: traffic comes later; the link stays null.
#include "display/traffic.h"

void TryTrafficLink(GaugeId) {}
void ReadOutsideTrafficVariables() {}
