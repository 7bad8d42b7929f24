// airport_detail.cpp: one airport read again from apts.txt on demand, with
// its runways: the origin and destination slots (LoadAirportDetail) and the
// airport named on the pages (SetAirport).
#include "frame/diagnostic_log.h"
#include "frame/module_state.h"
#include "guidance/vnav.h"
#include "navdata/airport_extras.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"
#include "navdata/procedures.h"
#include "plan/plan_tables.h"

#include <cstdio>
#include <cstring>

AirportSlots g_airports;

namespace {
constexpr int kAirportColumns = 4 + kRunwayColumns;  // name, elevation, latitude, longitude, runways

// The airport's line, found in apts.txt or else apts_user.txt, capitalised,
// with its columns after the ident.
struct AirportLine {
    std::array<char, kBulkLineSize> text{};
    std::array<std::string_view, kAirportColumns> columns{};  // empty when the line is shorter
    int column_count = 0;                                      // columns after the ident
};

bool FindAirportLine(std::string_view ident, AirportLine& found) {
    if (ident.empty()) return false;  // an empty ident matches nothing
    for (const char* relative : {"\\orb\\Navdata\\apts.txt", "\\orb\\Navdata\\apts_user.txt"}) {
        char path[MAX_PATH];
        DataPath(relative, path, sizeof path);
        static LineReader reader;  // 64 KB: kept off the stack
        if (!reader.Open(path)) continue;
        size_t length = 0;
        bool hit = false;
        while (reader.Next(found.text.data(), found.text.size(), length)) {
            UpperCase(found.text.data(), length);
            std::string_view line(found.text.data(), length);
            std::array<std::string_view, 1 + kAirportColumns> c{};
            int n = SplitColumns(line, c.data(), static_cast<int>(c.size()));
            if (n < 1 || c[0] != ident) continue;
            found.columns = {};
            for (int i = 1; i < n; ++i) found.columns[i - 1] = c[i];
            found.column_count = n - 1;
            hit = true;
            break;
        }
        reader.file.Close();
        if (hit) return true;
    }
    return false;
}

// One runway column: Ident_LengthFt_Latitude_Longitude_Heading_IlsFrequency_IlsIdent_IlsCourse.
RunwayRecord ParseRunway(std::string_view column) {
    std::array<char, kBulkLineSize> buffer{};
    CopyText(buffer.data(), buffer.size(), column);
    for (char& c : buffer)
        if (c == '_') c = ' ';
    std::array<std::string_view, 8> f{};
    SplitColumns(std::string_view(buffer.data(), std::strlen(buffer.data())), f.data(), 8);
    RunwayRecord r;
    SetText(r.Ident, f[0]);
    r.LengthFt = ReadInteger(f[1]);
    r.Latitude = ReadNumber(f[2]);
    r.Longitude = ReadNumber(f[3]);
    r.Heading = ReadNumber(f[4]);
    SetText(r.IlsFrequency, f[5]);
    SetText(r.IlsIdent, f[6]);
    r.IlsCourse = ReadNumber(f[7]);
    r.ReciprocalHeading = r.Heading + 180;
    if (r.ReciprocalHeading >= 360) r.ReciprocalHeading -= 360;
    return r;
}

// Appends the line's runways (columns 5 to 24) into a table of 22.
template <size_t N>
int ReadRunways(const AirportLine& line, std::array<RunwayRecord, N>& runways, bool course_from_heading) {
    int count = 0;
    for (int i = 4; i < kAirportColumns; ++i) {
        if (line.columns[i].empty()) continue;
        if (count >= kRunwayLimit) break;
        RunwayRecord r = ParseRunway(line.columns[i]);
        if (course_from_heading && r.IlsCourse == 0) r.IlsCourse = r.Heading;
        runways[++count] = r;
    }
    return count;
}

int ElevationFeet(std::string_view text) {
    double value = ReadNumber(text);
    if (value > 2e9 || value < -2e9) return 0;
    return static_cast<int>(value);
}
}  // namespace

void LoadAirportDetail(std::string_view ident, int slot) {
    if (slot != 1 && slot != 2) return;
    AirportDetail& detail = slot == 1 ? g_airports.OriginAirport : g_airports.DestinationAirport;
    // 1-2. Find the line; the runway count starts over whether or not it is found.
    detail.RunwayCount = 0;
    static AirportLine line;  // 3 KB: kept off the stack
    line = AirportLine{};
    if (!FindAirportLine(ident, line)) return;
    const auto& c = line.columns;
    // 3-4. Runways.
    detail.RunwayCount = ReadRunways(line, detail.Runways, false);
    // 5. The origin's elevation is the altitude of the plan's first row.
    double elevation = ReadNumber(c[1]);
    if (slot == 1) g_plan.ActivePlan[0].Altitude = elevation;
    // 6. The slot itself.
    SetText(g_airports.last_elevation_text, c[1]);
    SetText(detail.Ident, ident);
    SetText(detail.Name, c[0]);
    detail.Latitude = ReadNumber(c[2]);
    detail.Longitude = ReadNumber(c[3]);
    FormatLatLon(detail.Latitude, -detail.Longitude, detail.LatitudeText.data(), detail.LatitudeText.size(),
                 detail.LongitudeText.data(), detail.LongitudeText.size(), 1);
    detail.ElevationFt = ElevationFeet(c[1]);
    // 7. The airport is the candidate list's chosen first row.
    NavRecord& first = g_candidates.rows[1];
    first = NavRecord{};
    SetText(first.Ident, ident);
    SetText(first.Name, c[0]);
    first.Latitude = detail.Latitude;
    first.Longitude = detail.Longitude;
    SetText(first.Kind, "APT");
    SetText(first.Elevation, c[1]);
    if (g_candidates.count < 1) g_candidates.count = 1;
    g_candidates.selected = 1;
    // 8. Procedures.
    if (slot == 1) {
        LoadSids(ident);
    } else {
        LoadStars(ident);
        LoadApproaches(ident);
    }
}

void SetAirport(std::string_view ident, int mode) {
    static AirportLine line;  // 3 KB: kept off the stack
    line = AirportLine{};
    if (!FindAirportLine(ident, line)) return;
    const auto& c = line.columns;
    if (mode != 2) LoadParkingPosition(ident);
    // Modes 2 to 6 need name, elevation and position; a shorter line only gives runways.
    if (mode >= 2 && line.column_count < 4) mode = 0;
    double elevation = ReadNumber(c[1]);
    double latitude = ReadNumber(c[2]);
    double longitude = ReadNumber(c[3]);
    PlanContext& pc = g_plan.context;

    auto last_row_is_this_airport = [&](const PlanTable& plan, int last) {
        return last >= 0 && last < kPlanRows && TextOf(plan[last].WaypointType) == "APT" && TextOf(plan[last].Ident) == ident;
    };
    auto make_origin = [&](PlanWaypoint& row) {
        SetText(row.Ident, ident);
        row.Latitude = latitude;
        row.Longitude = longitude;
        SetText(row.WaypointType, "APT");
        row.Frequency = {};
    };

    switch (mode) {
        case 1:
            SetText(pc.DestinationIdent, ident);
            SetText(pc.DestinationElevation, c[1]);
            if (last_row_is_this_airport(g_plan.ActivePlan, pc.ActiveLastRow)) {
                PlanWaypoint& last = g_plan.ActivePlan[pc.ActiveLastRow];
                last.Altitude = elevation;
                last.Speed = kNoAltitude;
                last.Restricted = 0;
            }
            break;
        case 2:
            SetText(pc.DestinationIdent, ident);
            SetText(pc.DestinationElevation, c[1]);
            g_vnav.TargetAltitude = elevation;
            if (last_row_is_this_airport(g_plan.ActivePlan, pc.ActiveLastRow)) {
                PlanWaypoint& last = g_plan.ActivePlan[pc.ActiveLastRow];
                last.Altitude = elevation;
                last.Speed = kNoAltitude;
            }
            return;  // no runways in mode 2
        case 3: make_origin(g_plan.ActivePlan[0]); break;
        case 4: {
            if (pc.ActiveLastRow + 1 > kPlanLastRowLimit) break;
            int row = ++pc.ActiveLastRow;
            PlanWaypoint& w = g_plan.ActivePlan[row];
            w = PlanWaypoint{};
            make_origin(w);
            w.Altitude = elevation;
            SetText(pc.DestinationIdent, ident);
            SetText(pc.DestinationElevation, c[1]);
            g_vnav.TargetLatitude = latitude;
            g_vnav.TargetLongitude = longitude;
            g_vnav.TargetAltitude = elevation;
            pc.NextRestrictionRow = row;
            break;
        }
        case 5: make_origin(g_plan.ModPlan[0]); break;
        case 6: {
            if (pc.ModLastRow + 1 > kPlanLastRowLimit) break;
            int row = ++pc.ModLastRow;
            PlanWaypoint& w = g_plan.ModPlan[row];
            w.Latitude = latitude;
            w.Longitude = longitude;
            SetText(w.Ident, ident);
            SetText(w.WaypointType, "APT");
            w.Frequency = {};
            w.Via = {};
            w.SegmentKind = {};
            w.NameCopy = {};
            w.LegMarker = {};
            w.ActualTime = {};
            break;
        }
        default: g_plan.ActivePlan[0].Altitude = elevation; break;
    }
    if (mode != 0 && mode != 1) return;

    // Runways for the runway pages.
    InfoAirportState& info = g_airports.InfoAirport;
    info.RunwayCount = ReadRunways(line, info.Runways, true);
    for (int i = 1; i <= info.RunwayCount; ++i) info.Runways[i].RightPattern = 0;
    ReadRightPatterns(ident);
    SetText(info.ElevationText, c[1]);
    SetText(info.Ident, ident);
    info.runway_page_first_row = 1;
    info.runway_page_redraw = 1;
    char ident_text[kIdentSize];
    CopyText(ident_text, sizeof ident_text, ident);
    LogEvent("APT '%s' Set", ident_text);
}
