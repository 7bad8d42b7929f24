// route_files.cpp: the stored-plan list is still to come.
#include "plan/route_files.h"

StoredPlanList g_stored_plans;

void BuildStoredPlanTable() {}
