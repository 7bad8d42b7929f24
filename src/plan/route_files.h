// route_files.h: stored plans (.RTE, .PLN) in the flight plan folder.
#pragma once

struct StoredPlanList {
    int count = 0;                      // 0 until the list has been built
};

extern StoredPlanList g_stored_plans;

void BuildStoredPlanTable();
