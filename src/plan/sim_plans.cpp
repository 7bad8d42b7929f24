// sim_plans.cpp: the active plan written as the newer simulator's XML plan
// and handed over through SimConnect. The file written is declared
// Windows-1252, so the degree sign is the single byte 0xB0.
#include "plan/sim_plans.h"

#include "frame/module_state.h"
#include "frame/simconnect_link.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <windows.h>
#include <share.h>

#include <cstdio>
#include <cstring>

namespace {

constexpr char kPlanFile[] = "\\Orb\\Navdata\\tmpfplan.pln";

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
