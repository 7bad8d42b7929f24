// sim_plans.cpp: the simulator planner's .PLN files converted into the
// temporary route file, and the active plan written as the newer simulator's
// XML plan and handed over through SimConnect. The file written is declared
// Windows-1252, so the degree sign is the single byte 0xB0.
#include "plan/sim_plans.h"

#include "cdu/keypad.h"
#include "frame/module_state.h"
#include "frame/simconnect_link.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"
#include "plan/pln_reader.h"
#include "plan/route_files.h"

#include <windows.h>
#include <share.h>

#include <cstdio>
#include <cstring>

namespace {

constexpr char kPlanFile[] = "\\Orb\\Navdata\\tmpfplan.pln";
constexpr char kConvertedFile[] = "temp.rte";
constexpr char kUnableToLoadFp[] = "Unable to load FP";
constexpr char kDegreeSign = static_cast<char>(0xB0);  // Windows-1252

// "N47:26:03" becomes "N47° 26' 03": the file's pattern adds the seconds mark.
void ToPlanPosition(const char* colon_form, char* out, size_t size) {
    size_t n = 0;
    int colons = 0;
    for (const char* p = colon_form; *p != 0 && n + 3 < size; ++p) {
        if (*p != ':') {
            out[n++] = *p;
            continue;
        }
        out[n++] = colons++ == 0 ? kDegreeSign : '\'';
        out[n++] = ' ';
    }
    out[n] = 0;
}

const char* PlanWaypointType(const PlanWaypoint& row) {
    if (std::strcmp(row.WaypointType.data(), "APT") == 0) return "Airport";
    if (std::strcmp(row.WaypointType.data(), "VOR") == 0) return "VOR";
    if (std::strcmp(row.WaypointType.data(), "NDB") == 0) return "NDB";
    return "Intersection";
}

void PositionTexts(const PlanWaypoint& row, char* lat, char* lon, size_t size) {
    char lat_colon[24], lon_colon[24];
    FormatLatLon(row.Latitude, -row.Longitude, lat_colon, sizeof lat_colon, lon_colon, sizeof lon_colon, 1);
    ToPlanPosition(lat_colon, lat, size);
    ToPlanPosition(lon_colon, lon, size);
}

}  // namespace

int ConvertPlanFile(const char* name) {
    // 1. The plan file and the temporary route file, both in the plan folder.
    char folder[MAX_PATH], in_path[MAX_PATH], out_path[MAX_PATH];
    FlightPlanFolder(folder, sizeof folder);
    bool fits = std::snprintf(in_path, sizeof in_path, "%s%s", folder, name ? name : "") < static_cast<int>(sizeof in_path) &&
                std::snprintf(out_path, sizeof out_path, "%s%s", folder, kConvertedFile) < static_cast<int>(sizeof out_path);
    FILE* in = fits && name != nullptr && name[0] != 0 ? _fsopen(in_path, "rb", _SH_DENYNO) : nullptr;
    if (in == nullptr) {
        SetCduMessage(kUnableToLoadFp);
        return kConvertFailed;
    }
    FILE* out = _fsopen(out_path, "w", _SH_DENYNO);
    if (out == nullptr) {
        std::fclose(in);
        SetCduMessage(kUnableToLoadFp);
        return kConvertFailed;
    }
    std::fprintf(out, "[FlightPlan]\n");

    // 2. Line by line; a line longer than the reader takes is cut, its rest dropped.
    static PlnReader reader;  // keeps the frame's stack small
    reader = PlnReader{};
    static char line[kPlnLineSize + 2];
    while (std::fgets(line, sizeof line, in) != nullptr) {
        size_t n = std::strlen(line);
        bool whole = n > 0 && line[n - 1] == '\n';
        if (!whole && n + 1 >= sizeof line) {
            int c = 0;
            while ((c = std::fgetc(in)) != EOF && c != '\n') {
            }
        }
        while (n > 0 && (line[n - 1] == '\n' || line[n - 1] == '\r')) line[--n] = 0;
        PlnRow row;
        if (!ReadPlnLine(reader, std::string_view(line, n), row)) continue;
        // 3. One converted row: four columns, so that the navaids are looked up on loading.
        std::fprintf(out, "%-8s %-3.5f %-3.5f  %s\n", row.ident.data(), row.latitude, row.longitude, row.type.data());
    }
    std::fclose(in);
    std::fclose(out);
    return 0;
}

int WriteSimulatorPlan() {
    PlanContext& pc = g_plan.context;
    if (pc.PlanState <= 2 || pc.ActiveLastRow < 0 || pc.ActiveLastRow >= kPlanRows) return 0;
    char path[MAX_PATH];
    DataPath(kPlanFile, path, sizeof path);
    FILE* file = _fsopen(path, "w", _SH_DENYNO);
    if (file == nullptr) return 0;

    // 1. Header and the plan's own lines, from its first and last rows.
    const PlanWaypoint& first = g_plan.ActivePlan[0];
    const PlanWaypoint& last = g_plan.ActivePlan[static_cast<size_t>(pc.ActiveLastRow)];
    char lat[32], lon[32];
    std::fprintf(file, "<?xml version=\"1.0\" encoding=\"Windows-1252\"?>\n\n");
    std::fprintf(file, "<SimBase.Document Type=\"AceXML\" version=\"1,0\">\n");
    std::fprintf(file, "    <Descr>AceXML Document</Descr>\n");
    std::fprintf(file, "    <FlightPlan.FlightPlan>\n");
    std::fprintf(file, "        <Title>%s to %s</Title>\n", first.Ident.data(), last.Ident.data());
    std::fprintf(file, "        <FPType>IFR</FPType>\n");
    std::fprintf(file, "        <RouteType>HighAlt</RouteType>\n");
    std::fprintf(file, "        <CruisingAlt>%d</CruisingAlt>\n", pc.CruiseAltitude);
    std::fprintf(file, "        <DepartureID>%s</DepartureID>\n", first.Ident.data());
    PositionTexts(first, lat, lon, sizeof lat);
    std::fprintf(file, "        <DepartureLLA>%s\",%s\",+000000.00</DepartureLLA>\n", lat, lon);
    std::fprintf(file, "        <DestinationID>%s</DestinationID>\n", last.Ident.data());
    PositionTexts(last, lat, lon, sizeof lat);
    std::fprintf(file, "        <DestinationLLA>%s\",%s\",+000000.00</DestinationLLA>\n", lat, lon);
    std::fprintf(file, "        <Descr>%s, %s</Descr>\n", first.Ident.data(), last.Ident.data());
    std::fprintf(file, "        <DeparturePosition>%s</DeparturePosition>\n", first.NameCopy.data());
    std::fprintf(file, "        <DepartureName>%s</DepartureName>\n", first.Ident.data());
    std::fprintf(file, "        <DestinationName>%s</DestinationName>\n", last.Ident.data());
    std::fprintf(file, "        <AppVersion>\n");
    std::fprintf(file, "            <AppVersionMajor>10</AppVersionMajor>\n");
    std::fprintf(file, "            <AppVersionBuild>60905</AppVersionBuild>\n");
    std::fprintf(file, "        </AppVersion>\n");

    // 2. The rows from the leg being flown (the row before the active one) on.
    int from = pc.ActiveLeg == kNoActiveLeg ? 0 : pc.ActiveLeg - 1;
    if (from < 0) from = 0;
    for (int i = from; i <= pc.ActiveLastRow; ++i) {
        const PlanWaypoint& row = g_plan.ActivePlan[static_cast<size_t>(i)];
        PositionTexts(row, lat, lon, sizeof lat);
        std::fprintf(file, "        <ATCWaypoint id=\"%s\">\n", row.Ident.data());
        std::fprintf(file, "            <ATCWaypointType>%s</ATCWaypointType>\n", PlanWaypointType(row));
        std::fprintf(file, "            <WorldPosition>%s\",%s\",</WorldPosition>\n", lat, lon);
        std::fprintf(file, "            <ICAO>\n");
        std::fprintf(file, "                <ICAOIdent>%s</ICAOIdent>\n", row.Ident.data());
        std::fprintf(file, "            </ICAO>\n");
        std::fprintf(file, "        </ATCWaypoint>\n");
    }
    std::fprintf(file, "    </FlightPlan.FlightPlan>\n");
    std::fprintf(file, "</SimBase.Document>\n");
    bool written = std::ferror(file) == 0;
    if (std::fclose(file) != 0) written = false;
    return written ? 1 : 0;
}

void SendPlanToSimulator() {
    if (g_plan.context.PlanState <= 2) return;
    if (WriteSimulatorPlan() == 0) return;
    char path[MAX_PATH];
    DataPath(kPlanFile, path, sizeof path);
    SimConnectLoadPlan(path);
}
