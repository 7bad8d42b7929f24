// route_files.cpp: saving and loading .RTE route files, and the list of
// stored plans.
//
// Index
// [SECTION] Folder and saving
// [SECTION] Reading lines
// [SECTION] LoadRouteToActive
// [SECTION] LoadRouteToMod and LoadRoutePreview
// [SECTION] StoredPlanTable
#include "plan/route_files.h"

#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/diagnostic_log.h"
#include "frame/sim_state.h"
#include "frame/fsuipc_client.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"
#include "plan/plan_execute.h"
#include "plan/sim_plans.h"

#include <windows.h>
#include <share.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

StoredPlanTable g_stored_plans;

namespace {
namespace KeyEvent {
constexpr ID32 SetAltimeter = 0x10030;       // altimeter to the current pressure (SetWptBaro)
constexpr ID32 SetAltitudeBug = 0x1024C;     // feet
constexpr ID32 SetSpeedBug = 0x101F5;        // knots
constexpr ID32 SetZuluHours = 0x1021B;
constexpr ID32 SetZuluMinutes = 0x1021C;
}  // namespace KeyEvent
constexpr double kGroundSpeedOnGround = 5;   // knots: below it the aircraft stands
constexpr double kSpeedsBackToDefaults = 50; // knots: below it a loaded plan takes the aircraft's speeds
constexpr int kMaxFolderNames = 2000;        // names of the folder looked at, at most
}  // namespace

// [SECTION] Folder and saving
void FlightPlanFolder(char* out, size_t size) {
    if (out == nullptr || size == 0) return;
    // The aircraft profile's folder first, then orb.cfg's.
    const char* configured = g_profile.FlightPlansFolder.data();
    if (configured[0] == 0) configured = g_config.FlightPlansFolder.data();
    if (configured[0] != 0) {
        size_t n = std::strlen(configured);
        bool has_slash = configured[n - 1] == '\\' || configured[n - 1] == '/';
        // A path that doesn't fit names no folder: nothing is read or written then.
        if (std::snprintf(out, size, "%s%s", configured, has_slash ? "" : "\\") >= static_cast<int>(size)) out[0] = 0;
        return;
    }
    DataPath("\\orb\\flightplans\\", out, size);
}

static void PathInFolder(const char* name, char* out, size_t size) {
    char folder[MAX_PATH];
    FlightPlanFolder(folder, sizeof folder);
    if (std::snprintf(out, size, "%s%s", folder, name ? name : "") >= static_cast<int>(size)) out[0] = 0;
}

int SaveRouteFile(const char* name) {
    char path[MAX_PATH];
    PathInFolder(name, path, sizeof path);
    FILE* file = _fsopen(path, "w", _SH_DENYNO);
    if (file == nullptr) return 0;
    PlanContext& pc = g_plan.context;
    if (g_config.SaveFPLCruiseAlt == 1) std::fprintf(file, "CruiseAlt=%d\n", pc.CruiseAltitude);
    // The approach of the plan flown, with the arrival runway as at the last EXEC.
    const PlanSelections& sel = pc.Selections;
    std::string_view approach = TextOf(sel.ApproachName);
    if (!approach.empty() && approach != kNoSelection)
        std::fprintf(file, "ApproachInfo=%s_%s\n", sel.ApproachName.data(), sel.SavedArrivalRunway.data());
    std::fprintf(file, "[FlightPlan]\n");
    for (int i = 0; i <= pc.ActiveLastRow && i < kPlanRows; ++i) {
        PlanWaypoint& row = g_plan.ActivePlan[i];
        std::string_view type = TextOf(row.WaypointType);
        // Types the file knows; any other is written, and kept, as "WPT".
        if (type != "APT" && type != "VOR" && type != "NDB" && type != "INT") SetText(row.WaypointType, "WPT");
        const char* frequency = row.Frequency[0] ? row.Frequency.data() : "---";
        const char* segment = row.Via[0] ? row.SegmentKind.data() : "";
        std::fprintf(file, "%-16s %-2.5f  %-3.5f  %-3s %-6s %-7s %s\n", row.Ident.data(), row.Latitude, row.Longitude,
                     row.WaypointType.data(), frequency, row.Via.data(), segment);
    }
    bool written = std::ferror(file) == 0;
    if (std::fclose(file) != 0) written = false;
    return written ? 1 : 0;
}

void RequestRouteLoad(const char* file_name, int mode) {
    SetText(g_plan.context.PlanLoadFile, file_name ? file_name : "");
    g_tick.deferred_plan_load = mode;
}

// [SECTION] Reading lines
static PlanTable& TableOf(RouteTarget target) {
    switch (target) {
        case RouteTarget::Active: return g_plan.ActivePlan;
        case RouteTarget::Mod: return g_plan.ModPlan;
        case RouteTarget::Preview: break;
    }
    return g_plan.PreviewPlan;
}

static int& LastRowOf(RouteTarget target) {
    switch (target) {
        case RouteTarget::Active: return g_plan.context.ActiveLastRow;
        case RouteTarget::Mod: return g_plan.context.ModLastRow;
        case RouteTarget::Preview: break;
    }
    return g_plan.context.PreviewLastRow;
}

void BeginRouteRead(RouteReadState& state, RouteTarget target, bool take_header) {
    state = RouteReadState{};
    state.target = target;
    state.take_header = take_header;
    LastRowOf(target) = -1;
    if (target == RouteTarget::Active) g_plan.context.ModLastRow = -1;
}

static void ReadHeaderLine(std::string_view line, RouteReadState& state) {
    if (!state.take_header) return;
    std::array<char, kRouteLineSize + 1> buffer{};
    CopyText(buffer.data(), buffer.size(), line);
    for (char& c : buffer)
        if (c == '=') c = ' ';
    std::array<std::string_view, 2> kv{};
    SplitColumns(std::string_view(buffer.data(), std::strlen(buffer.data())), kv.data(), 2);
    std::string_view key = kv[0], value = kv[1];
    PlanContext& pc = g_plan.context;
    bool active = state.target == RouteTarget::Active;
    if (key == "CruiseAlt") {
        (active ? pc.CruiseAltitude : pc.ModCruiseAltitude) = ReadInteger(value);
    } else if (key == "TripFuel") {
        pc.PlanFuel += ReadNumber(value);
    } else if (key == "ResvFuel") {
        double reserve = ReadNumber(value);
        if (state.target != RouteTarget::Preview) pc.ReserveFuel = reserve;
        pc.PlanFuel += reserve;
    } else if (active && line.size() >= 4 && EqualNoCase(line.substr(0, 4), "FUEL")) {
        pc.PlanFuel = ReadNumber(value);
    } else if (!active && key == "Fuel") {
        pc.PlanFuel = ReadNumber(value);
    } else if (state.target == RouteTarget::Mod && key == "ApproachInfo") {
        SetText(pc.PendingApproachInfo, value);
    }
}

void ReadRouteLine(std::string_view line, RouteReadState& state) {
    if (state.stop) return;
    if (line.size() > kRouteLineSize) line = line.substr(0, kRouteLineSize);
    int& last = LastRowOf(state.target);
    // 4. The table's limit ends the reading.
    if (last >= kPlanLastRowLimit) {
        state.stop = true;
        return;
    }
    std::array<std::string_view, 7> c{};
    int n = SplitColumns(line, c.data(), 7);
    if (n == 0) return;  // a blank line holds no row
    // 5. Comments.
    if (c[0][0] == ';') return;
    // 6. Header lines until "[FlightPlan]".
    if (!state.in_rows) {
        if (c[0] == "[FlightPlan]")
            state.in_rows = true;
        else
            ReadHeaderLine(line, state);
        return;
    }
    // 7. A row: columns 1 to 4 keep the line before's values when missing.
    std::array<std::array<char, kRouteLineSize + 1>*, 4> kept = {&state.c1, &state.c2, &state.c3, &state.c4};
    for (int i = 0; i < n && i < 4; ++i) SetText(*kept[i], c[i]);
    std::string_view frequency = c[4] == "---" ? std::string_view{} : c[4];
    PlanWaypoint row;
    SetText(row.Ident, TextOf(state.c1));
    row.Latitude = ReadNumber(TextOf(state.c2));
    row.Longitude = ReadNumber(TextOf(state.c3));
    SetText(row.WaypointType, TextOf(state.c4));
    SetText(row.Frequency, frequency);
    SetText(row.Via, c[5]);
    SetText(row.SegmentKind, c[6]);
    // 8. A navaid row without a frequency takes the database's.
    std::string_view type = TextOf(row.WaypointType);
    if (row.Frequency[0] == 0 && !type.empty() && type != "APT") {
        int hit = FindNavaid(TextOf(row.Ident), type, row.Latitude);
        if (hit != 0) {
            SetText(row.Frequency, PoolText(g_navdb.NavaidTable.rows[hit].text));
            if (type == "INT" || type.empty()) SetText(row.WaypointType, g_navdb.NavaidTable.rows[hit].kind == 'V' ? "VOR" : "NDB");
        }
    }
    int index = ++last;
    TableOf(state.target)[index] = row;
    PlanContext& pc = g_plan.context;
    if (state.target == RouteTarget::Active) {
        pc.ModLastRow = index;
        g_plan.ModPlan[index] = row;
    }
    if (index == 1 && state.target != RouteTarget::Preview) {
        pc.ModActiveLeg = 1;
        pc.has_leg = 1;
    }
}

// Reads the whole file into the state's target; false when it can't be opened.
static bool ReadRouteFile(const char* path, RouteReadState& state) {
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return false;
    std::array<char, kRouteLineSize + 1> line{};
    size_t length = 0;
    while (!state.stop && reader.Next(line.data(), line.size(), length)) ReadRouteLine(std::string_view(line.data(), length), state);
    reader.file.Close();
    return true;
}

// Fuel, autopilot altitude and speed of a plan loaded on the ground.
static void ApplyGroundLoadOptions(int cruise_altitude) {
    PlanContext& pc = g_plan.context;
    if (g_config.LoadFuelonFlightPlanLoad == 1 && pc.PlanFuel > 5) LoadFuel(pc.PlanFuel);
    if (g_profile.SetMCPCrzAltOnFlightPlanLoad == 1)
        TriggerKeyEvent(KeyEvent::SetAltitudeBug, static_cast<UINT32>(std::max(0, cruise_altitude)));
    if (g_config.SetMCPSpdOnFlightPlanLoad > 0)
        TriggerKeyEvent(KeyEvent::SetSpeedBug, static_cast<UINT32>(g_config.SetMCPSpdOnFlightPlanLoad));
}

static bool IsPlnName(std::string_view name) {
    return name.size() >= 4 && name.substr(name.size() - 4) == ".PLN";
}

// [SECTION] LoadRouteToActive
void LoadRouteToActive(int mode) {
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    // 1. A simulator plan is converted first.
    std::array<char, kFileNameSize> name{};
    SetText(name, TextOf(pc.PlanLoadFile));
    if (IsPlnName(TextOf(name))) {
        if (ConvertPlanFile(name.data()) == kConvertFailed) return;
        SetText(name, "Temp.RTE");
    }
    // 2. Empty tables, no intercept leg.
    pc.ActiveLastRow = -1;
    pc.ModLastRow = -1;
    g_lnav.InterceptActive = 0;
    pc.AlongRouteFuel = 0;
    pc.has_leg = 0;
    // VNAV starts over with the new plan, with climb speeds until a T/D; the
    // file's cruise altitude is the one, whatever a page had read before.
    ResetVnavForNewPlan();
    pc.ModCruiseAltitude = 0;
    // 3. Read.
    pc.CruiseAltitude = 0;
    static RouteReadState state;  // 600 bytes: kept off the stack
    BeginRouteRead(state, RouteTarget::Active, true);
    char path[MAX_PATH];
    PathInFolder(name.data(), path, sizeof path);
    ReadRouteFile(path, state);

    if (pc.ActiveLastRow < 0) {
        // 16. Nothing read (or no file): an empty plan without a leg.
        pc.ActiveLastRow = 0;
        return;
    }
    // 9. An airport in row 0 is the origin.
    PlanWaypoint& first = g_plan.ActivePlan[0];
    if (TextOf(first.WaypointType) == "APT") {
        LoadAirportDetail(TextOf(first.Ident), 1);
        for (PlanText* text : {&sel.SidName, &sel.SidTransition, &sel.SavedSidName, &sel.SavedSidTransition})
            SetText(*text, kNoSelection);
        SetText(sel.OriginName, TextOf(first.Ident));
    }
    int last = pc.ActiveLastRow;
    bool has_leg = last >= 1;
    // 10. The end marker and the airport side.
    if (has_leg) {
        g_plan.ModPlan[last + 1] = PlanWaypoint{};
        SetText(g_plan.ModPlan[last + 1].Ident, "******");
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, first.Latitude, first.Longitude, distance, bearing);
        bool near_origin = distance <= kNearOriginNm;
        pc.AirportSide = near_origin ? 1 : 2;
        std::string_view side_ident = TextOf(near_origin ? first.Ident : g_plan.ActivePlan[last].Ident);
        if (mode == 3) {
            SetText(pc.MapAirportText, side_ident);
            pc.map_redraw = 1;
        } else if (mode == 1) {
            SetText(pc.McuAirportText, side_ident);
        }
    }
    // 11. The destination, and VNAV's target there.
    const PlanWaypoint& destination = g_plan.ActivePlan[last];
    g_vnav.TargetLatitude = destination.Latitude;
    g_vnav.TargetLongitude = destination.Longitude;
    SetText(sel.DestinationName, TextOf(destination.Ident));
    std::array<char, 24> destination_ident = destination.Ident;
    LoadAirportDetail(TextOf(destination_ident), 2);
    for (PlanText* text : {&sel.StarName, &sel.StarTransition, &sel.ApproachName, &sel.ApproachTransition,
                           &sel.SavedStarName, &sel.SavedStarTransition})
        SetText(*text, kNoSelection);
    SetAirport(TextOf(destination_ident), 2);
    // The airports' elevations go to the modified rows too, which the execution copies.
    g_plan.ModPlan[0].Altitude = g_plan.ActivePlan[0].Altitude;
    g_plan.ModPlan[last].Altitude = g_plan.ActivePlan[last].Altitude;
    g_plan.ModPlan[last].Speed = g_plan.ActivePlan[last].Speed;
    // 12. Guidance starts over on the new plan.
    pc.NextRestrictionRow = pc.ActiveLastRow;
    pc.ModNextRestrictionRow = pc.ActiveLastRow;
    g_lnav.DistToActive = 999;
    pc.PlanState = 0;
    RemoveAllHolds();
    // 13. Executed as a new plan: LNAV's once-per-plan steps, the predictions
    // and the distances all follow it as they follow an EXEC.
    if (pc.ModActiveLeg == kNoActiveLeg || pc.ModActiveLeg < 0) pc.ModActiveLeg = has_leg ? 1 : kNoActiveLeg;
    PlanExecute();
    // 14-15. On the ground: the clock, a new flight, fuel, autopilot.
    double ground_speed = g_sim.ground_speed;
    if (g_config.SetUTCTimeOnFPLoad == 1 && ground_speed < kGroundSpeedOnGround) {
        std::time_t now = std::time(nullptr);
        std::tm utc{};
        if (const std::tm* t = std::gmtime(&now)) utc = *t;
        TriggerKeyEvent(KeyEvent::SetZuluHours, static_cast<UINT32>(utc.tm_hour));
        TriggerKeyEvent(KeyEvent::SetZuluMinutes, static_cast<UINT32>(utc.tm_min));
    }
    if (ground_speed < kGroundSpeedOnGround) {
        StartNewFlight();
        ApplyGroundLoadOptions(pc.CruiseAltitude);
        TrimEventList(2);  // the event list starts over with the new flight, but for its first two
    }
    // 16. A plan with a leg is active.
    if (has_leg) {
        pc.PlanState = 3;
        if (ground_speed < kSpeedsBackToDefaults) LoadDefaultSpeeds();
        if (g_config.LnavSetEnRouteFreqs == 1) CheckTuneRoute(2);
        if (g_config.SetWptBaro == 1) TriggerKeyEvent(KeyEvent::SetAltimeter, 0);
    }
}

// [SECTION] LoadRouteToMod and LoadRoutePreview
void LoadRouteToMod(const char* file_name, int keep_header) {
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    std::string_view given = file_name ? file_name : "";
    // 1. "NEXT FPL": an empty plan ready for entry.
    if (given == "NEXT FPL") {
        for (PlanWaypoint& row : g_plan.ModPlan) row = PlanWaypoint{};
        pc.ModLastRow = -1;
        SetText(g_plan.ModPlan[0].Ident, "******");
        pc.ModActiveLeg = 0;
        return;
    }
    // 2. A simulator plan is converted first.
    std::array<char, kFileNameSize> name{};
    SetText(name, given);
    std::array<char, kFileNameSize> upper = name;
    UpperCase(upper.data(), std::strlen(upper.data()));
    if (std::strstr(upper.data(), ".PLN") != nullptr) {
        if (ConvertPlanFile(name.data()) == kConvertFailed) return;
        SetText(name, "Temp.rte");
    }
    // 3. Rows into ModPlan.
    static RouteReadState state;  // kept off the stack
    BeginRouteRead(state, RouteTarget::Mod, keep_header == 0);
    char path[MAX_PATH];
    PathInFolder(name.data(), path, sizeof path);
    ReadRouteFile(path, state);
    int last = pc.ModLastRow;
    // 4. A plan from nothing steps the plan state.
    if (pc.PlanState == 0) {
        PlanStateStep();
        pc.ActiveLeg = 1;
    }
    // 5. Origin and destination of the new plan: the names themselves while
    // no plan is active, else modifications that EXEC commits.
    if (last >= 1 && keep_header == 0) {
        StartNewFlight();
        bool active = pc.PlanState >= 3;
        const PlanWaypoint& first = g_plan.ModPlan[0];
        if (TextOf(first.WaypointType) == "APT") {
            std::array<char, 24> ident = first.Ident;
            if (!active)
                SetText(sel.OriginName, TextOf(ident));
            else if (TextOf(ident) != TextOf(sel.OriginName))
                SetText(sel.ModifiedOrigin, TextOf(ident));
            SetText(pc.MapAirportText, TextOf(ident));
            LoadAirportDetail(TextOf(ident), 1);
            SetText(sel.SidName, kNoSelection);
            SetText(sel.SidTransition, kNoSelection);
        }
        const PlanWaypoint& final_row = g_plan.ModPlan[last];
        if (TextOf(final_row.WaypointType) == "APT") {
            std::array<char, 24> ident = final_row.Ident;
            if (!active)
                SetText(sel.DestinationName, TextOf(ident));
            else if (TextOf(ident) != TextOf(sel.DestinationName))
                SetText(sel.ModifiedDestination, TextOf(ident));
            LoadAirportDetail(TextOf(ident), 2);
        }
    }
    // 6. On the ground: fuel and autopilot.
    if (g_sim.ground_speed < kGroundSpeedOnGround) ApplyGroundLoadOptions(pc.ModCruiseAltitude);
}

void LoadRoutePreview(const char* file_name) {
    std::string_view given = file_name ? file_name : "";
    std::array<char, kFileNameSize> name{};
    SetText(name, given);
    std::array<char, kFileNameSize> upper = name;
    UpperCase(upper.data(), std::strlen(upper.data()));
    static RouteReadState state;  // kept off the stack
    BeginRouteRead(state, RouteTarget::Preview, true);
    if (std::strstr(upper.data(), ".PLN") != nullptr) {
        if (ConvertPlanFile(name.data()) == kConvertFailed) return;
        SetText(name, "Temp.rte");
    }
    char path[MAX_PATH];
    PathInFolder(name.data(), path, sizeof path);
    ReadRouteFile(path, state);
}

// [SECTION] StoredPlanTable
const StoredPlanRow* StoredRow(int entry, int row) {
    const StoredPlanTable& t = g_stored_plans;
    if (entry < 1 || entry > t.count) return nullptr;
    const StoredPlanEntry& e = t.entries[entry];
    if (row < 0 || row > e.LastRow) return nullptr;
    size_t index = static_cast<size_t>(e.first_row + row);
    return index < t.rows.size() ? &t.rows[index] : nullptr;
}

void BuildStoredPlanTable() {
    StoredPlanTable& t = g_stored_plans;
    // 1. Search the folder.
    t.count = 0;
    t.rows.clear();
    char folder[MAX_PATH], pattern[MAX_PATH];
    FlightPlanFolder(folder, sizeof folder);
    if (std::snprintf(pattern, sizeof pattern, "%s*.*", folder) >= static_cast<int>(sizeof pattern)) pattern[0] = 0;
    std::vector<std::string> names;
    WIN32_FIND_DATAA found{};
    HANDLE search = FindFirstFileA(pattern, &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            std::string_view file = found.cFileName;
            // 2. Route and simulator plans; never the conversion's own file.
            if (!(EndsWithNoCase(file, ".PLN") || EndsWithNoCase(file, ".RTE")) || EqualNoCase(file, "temp.rte")) continue;
            if (static_cast<int>(names.size()) >= kMaxFolderNames) break;
            names.emplace_back(file);
        } while (FindNextFileA(search, &found));
        FindClose(search);
    }
    // The folder's own order differs between file systems: list by name.
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        size_t n = std::min(a.size(), b.size());
        for (size_t i = 0; i < n; ++i)
            if (UpperChar(a[i]) != UpperChar(b[i])) return UpperChar(a[i]) < UpperChar(b[i]);
        return a.size() < b.size();
    });
    for (const std::string& file : names) {
        if (t.count >= kStoredPlanLimit) break;
        // 3. Each through the preview; a plan without rows isn't listed.
        LoadRoutePreview(file.c_str());
        int last = g_plan.context.PreviewLastRow;
        if (last < 0) continue;
        StoredPlanEntry& e = t.entries[++t.count];
        e = StoredPlanEntry{};
        SetText(e.FileName, file);
        SetText(e.Origin, TextOf(g_plan.PreviewPlan[0].Ident));
        SetText(e.Destination, TextOf(g_plan.PreviewPlan[last].Ident));
        e.LastRow = last;
        e.first_row = static_cast<int>(t.rows.size());
        for (int i = 0; i <= last; ++i) {
            const PlanWaypoint& w = g_plan.PreviewPlan[i];
            StoredPlanRow r;
            r.Ident = w.Ident;
            r.Latitude = w.Latitude;
            r.Longitude = w.Longitude;
            r.WaypointType = w.WaypointType;
            r.Frequency = w.Frequency;
            r.Via = w.Via;
            r.SegmentKind = w.SegmentKind;
            t.rows.push_back(r);
        }
    }
    // 4. The new-plan entry.
    StoredPlanEntry& e = t.entries[++t.count];
    e = StoredPlanEntry{};
    SetText(e.FileName, "NEW FPL");
    SetText(e.Origin, "NEXT FPL");
    e.LastRow = -1;
    // 5. Pages of eight.
    t.page_count = (t.count + kStoredPlansPerPage - 1) / kStoredPlansPerPage;
    if (t.page_index == 0) t.page_index = 1;
}
