// sim_gps_route.cpp: the route active in the simulator's own GPS, read from
// its "FS2002 GPS DATA" block into ModPlan and executed. The block gives
// idents and positions only; the rows' types come from the database, by name
// within 5 nm of the GPS's position.
//
// Index:
//   [SECTION] The block
//   [SECTION] ClassifyImportedRows
//   [SECTION] ImportSimulatorGpsRoute
#include "plan/sim_plans.h"

#include "cdu/keypad.h"
#include "frame/global_config.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav_state.h"
#include "navdata/nav_database.h"
#include "plan/plan_execute.h"
#include "plan/plan_tables.h"

#include <gps_data_block.h>

#include <cstring>
#include <ctime>
#include <string_view>

SimPlanExchange g_sim_plans;

namespace {
constexpr double kSameFixNm = 5;             // a database row this near is the GPS's fix
constexpr size_t kLongestNavaidIdent = 5;    // longer idents are fixes, never navaids
constexpr int kGpsImportPage = 7;            // the caller that shows no message
constexpr double kOnGroundKnots = 5;
constexpr ID32 kSetZuluHours = 0x1021B;
constexpr ID32 kSetZuluMinutes = 0x1021C;

// [SECTION] The block
// The block's rows as the module reads them; false when it has no route.
struct GpsBlockView {
    const unsigned char* waypoints = nullptr;
    uint32_t count = 0;
};

bool ViewGpsBlock(GpsBlockView& view) {
    SimPlanExchange& x = g_sim_plans;
    // Fetched once; the simulator keeps the block where it is.
    if (!x.gps_fetched) {
        MODULE_VAR var{};
        InitializeVarByName(&var, kGpsDataBlockName);
        x.gps_block = var.var_ptr;
        x.gps_fetched = true;
    }
    const auto* block = static_cast<const unsigned char*>(x.gps_block);
    if (block == nullptr) return false;
    uint32_t length = 0;
    std::memcpy(&length, block, sizeof length);
    if (length < kGpsBlockMinimum) return false;
    std::memcpy(&view.count, block + kGpsCountOffset, sizeof view.count);
    std::memcpy(&view.waypoints, block + kGpsArrayOffset, sizeof view.waypoints);
    return view.waypoints != nullptr && view.count >= 2;
}

// [SECTION] ClassifyImportedRows helpers
double Distance(double lat1, double lon1, double lat2, double lon2) {
    double distance = 0, bearing = 0;
    GreatCircle(lat1, lon1, lat2, lon2, distance, bearing);
    return distance;
}

bool FindAirport(std::string_view ident) {
    const BulkTable& t = TableOf(NavTableId::Airports);
    for (int r = 1; r <= t.count; ++r)
        if (IdentOf(t, r) == ident) return true;
    return false;
}

void SetRowType(PlanWaypoint& w, const char* type, std::string_view frequency) {
    SetText(w.WaypointType, type);
    SetText(w.Frequency, frequency);
}
}  // namespace

// [SECTION] ClassifyImportedRows
void ClassifyImportedRows() {
    PlanContext& pc = g_plan.context;
    int last = pc.ModLastRow;
    if (last < 0 || last >= kPlanRows) return;
    // 1. The first and last rows are airports when the database has them.
    PlanWaypoint& first = g_plan.ModPlan[0];
    PlanWaypoint& final = g_plan.ModPlan[static_cast<size_t>(last)];
    if (FindAirport(TextOf(first.Ident))) SetRowType(first, "APT", "");
    if (FindAirport(TextOf(final.Ident))) SetRowType(final, "APT", "");

    // 2. The rows between: fixes, navaids or plain waypoints.
    const BulkTable& fixes = TableOf(NavTableId::Intersections);
    const BulkTable& navaids = TableOf(NavTableId::Navaids);
    for (int i = 1; i < last; ++i) {
        PlanWaypoint& w = g_plan.ModPlan[static_cast<size_t>(i)];
        std::string_view ident = TextOf(w.Ident);
        bool done = false;
        if (ident.size() > kLongestNavaidIdent) {
            for (int r = 1; r <= fixes.count && !done; ++r) {
                if (IdentOf(fixes, r) != ident) continue;
                const BulkRow& row = fixes.rows[static_cast<size_t>(r)];
                if (Distance(w.Latitude, w.Longitude, row.Latitude, row.Longitude) > kSameFixNm) continue;
                SetRowType(w, "INT", "");
                done = true;
            }
        } else {
            for (int r = 1; r <= navaids.count && !done; ++r) {
                if (IdentOf(navaids, r) != ident) continue;
                const BulkRow& row = navaids.rows[static_cast<size_t>(r)];
                if (Distance(w.Latitude, w.Longitude, row.Latitude, row.Longitude) > kSameFixNm) continue;
                NavRecord record;
                CopyRecord(navaids, r, record);
                if (row.kind == 'V') {
                    SetRowType(w, "VOR", TextOf(record.Frequency));
                    done = true;
                } else if (row.kind == 'N') {
                    SetRowType(w, "NDB", TextOf(record.Frequency));
                    done = true;
                    // An NDB first: the next row of the same name may be the VOR beside it.
                    for (int v = r + 1; v <= navaids.count; ++v) {
                        if (IdentOf(navaids, v) != ident) continue;
                        const BulkRow& vor = navaids.rows[static_cast<size_t>(v)];
                        if (vor.kind == 'V' && Distance(w.Latitude, w.Longitude, vor.Latitude, vor.Longitude) <= kSameFixNm) {
                            CopyRecord(navaids, v, record);
                            SetRowType(w, "VOR", TextOf(record.Frequency));
                        }
                        break;
                    }
                }
            }
        }
        if (!done) SetRowType(w, "WPT", "");
    }
}

// [SECTION] ImportSimulatorGpsRoute
void ImportSimulatorGpsRoute(int show_page) {
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    // 1.-2. A route of two waypoints at least, or nothing changes.
    GpsBlockView view;
    if (!ViewGpsBlock(view)) {
        SetCduMessage(cdu_message::kNoActiveGpsRte);
        return;
    }
    // 3. ModPlan from the waypoint records, up to row 200.
    for (PlanWaypoint& row : g_plan.ModPlan) row = PlanWaypoint{};
    pc.ModLastRow = -1;
    uint32_t count = view.count < static_cast<uint32_t>(kPlanRows) ? view.count : static_cast<uint32_t>(kPlanRows);
    for (uint32_t i = 0; i < count && static_cast<int>(i) <= kPlanLastRowLimit; ++i) {
        const unsigned char* record = view.waypoints + i * kGpsWaypointSize;
        int32_t raw_lat = 0;
        int64_t raw_lon = 0;
        std::memcpy(&raw_lat, record + kGpsLatitudeOffset, sizeof raw_lat);
        std::memcpy(&raw_lon, record + kGpsLongitudeOffset, sizeof raw_lon);
        char ident[kGpsWaypointSize - kGpsIdentOffset + 1] = {};
        std::memcpy(ident, record + kGpsIdentOffset, kGpsWaypointSize - kGpsIdentOffset);
        PlanWaypoint& w = g_plan.ModPlan[i];
        SetText(w.Ident, ident);
        w.Latitude = raw_lat / kGpsLatitudeUnits * 360.0;
        w.Longitude = static_cast<double>(raw_lon) * (360.0 / 4294967296.0 / 4294967296.0);
        pc.ModLastRow = static_cast<int>(i);
    }
    // 4. Types from the database.
    ClassifyImportedRows();

    // 5. Origin and destination from the first and last rows.
    int last = pc.ModLastRow;
    std::array<char, 24> origin = g_plan.ModPlan[0].Ident;
    std::array<char, 24> destination = g_plan.ModPlan[static_cast<size_t>(last)].Ident;
    SetText(sel.OriginName, TextOf(origin));
    SetText(sel.DestinationName, TextOf(destination));
    LoadAirportDetail(TextOf(origin), 1);
    LoadAirportDetail(TextOf(destination), 2);
    for (PlanText* text : {&sel.SidName, &sel.SidTransition, &sel.StarName, &sel.StarTransition, &sel.ApproachName,
                           &sel.ApproachTransition})
        SetText(*text, kNoSelection);
    pc.ModCruiseAltitude = 0;
    pc.ReserveFuel = 0;
    pc.NextRestrictionRow = last;
    pc.ModNextRestrictionRow = last;
    pc.ModActiveLeg = 1;
    g_lnav.DistToActive = 999;
    RemoveAllHolds();

    // 6. Executed as a new plan.
    PlanStateStep();
    PlanExecute();
    if (show_page != kGpsImportPage) SetCduMessage(cdu_message::kActiveFsPlannerRteLoaded);

    // 7. The clock, on the ground.
    if (g_config.SetUTCTimeOnFPLoad == 1 && g_sim.ground_speed < kOnGroundKnots) {
        std::time_t now = std::time(nullptr);
        std::tm utc{};
        if (const std::tm* t = std::gmtime(&now)) utc = *t;
        TriggerKeyEvent(kSetZuluHours, static_cast<UINT32>(utc.tm_hour));
        TriggerKeyEvent(kSetZuluMinutes, static_cast<UINT32>(utc.tm_min));
    }
}
