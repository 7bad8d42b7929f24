// module_reset.cpp: fresh state for a test.
#include "support/module_reset.h"

#include "cdu/keypad.h"
#include "cdu/mcu_pages.h"
#include "frame/input_capture.h"
#include "guidance/runway_tuning.h"
#include "display/display_state.h"
#include "display/traffic.h"
#include "cdu/plan_data_texts.h"
#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/diagnostic_log.h"
#include "frame/sim_state.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/named_variables.h"
#include "guidance/fix_info.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"

#include <cstdio>
#include <cstdlib>

std::string ResetModuleState() {
    static std::string root;
    if (root.empty()) {
        char pattern[] = "/tmp/orb-test-root-XXXXXX";
        if (char* made = mkdtemp(pattern)) root = made;
    }
    // A log a C17_MFD opened is closed, as the end of a process would.
    if (g_module.diagnostic_log != nullptr) std::fclose(g_module.diagnostic_log);
    g_module = {};
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root.c_str());
    g_config = {};
    g_profile = {};
    g_tick = {};
    g_sim = {};
    g_smiths = {};
    g_gns = {};
    g_mcu = {};
    // A keyboard a test left taken is given back before its state goes.
    if (g_input_capture.hook_set || g_input_capture.keyboard != nullptr) StopDirectEntry();
    g_input_capture = {};
    g_mcu_page = {};
    ResetMcuState();
    g_runway_tuning = {};
    g_lnav = {};
    g_vnav = {};
    g_holds = {};
    g_fix_info = {};
    g_navdb = {};
    g_stored_plans = {};
    g_route_rows = {};
    g_plan_texts = {};
    g_flight_log = {};
    g_performance = {};
    static const PlanTables kNoPlans{};
    g_plan = kNoPlans;
    ClearPlans();
    g_display = {};
    g_traffic = {};
    g_named = {};
    g_lvars = {};
    g_events.count = 0;
    return root;
}
