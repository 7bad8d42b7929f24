// performance.cpp: the predictions come later; the calls do nothing yet.
#include "guidance/performance.h"

void PredictProfile(int, int) {}

void PlanDistances() {}
