// ref_nav_data_page.cpp: REF NAV DATA, the look-up of a waypoint, a navaid
// or an airport by name: where it is, its radial and distance from the
// aircraft, a navaid's frequency, an airport's elevation and the length of
// one of its runways. A name with several places goes through SELECT
// WAYPOINT, whose pick comes back here.
//
// Index:
//   [SECTION] The look-up
//   [SECTION] REF NAV DATA page
#include "cdu/nav_ref_pages.h"

#include "cdu/route_pages.h"
#include "frame/data_text.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "navdata/airport_extras.h"
#include "plan/plan_tables.h"

#include <cstdio>
#include <cstdlib>

// [SECTION] The look-up
namespace {
constexpr double kFeetToMetres = 0.3048;

// The mode a record's kind gives on this page.
int ModeOfKind(std::string_view kind) {
    if (kind == "APT") return kRefNavAirport;
    if (kind == "V" || kind == "N") return kRefNavNavaid;
    return kRefNavWaypoint;
}

// Keys 1 to 3 of the index: a single candidate must be of the key's kind.
void LookUp(std::string_view text, int mode) {
    SmithsCduState& s = g_smiths;
    int count = ResolveName(0, text);
    if (count <= 0) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    if (count > 1) {
        s.ReturnPage = cdu_page::kRefNavData;
        s.select.page = 1;
        s.CduPage = cdu_page::kSelectWaypoint;
        ClearScratchpad();
        return;
    }
    const NavRecord& only = g_candidates.rows[1];
    std::string_view kind = TextOf(only.Kind);
    bool fits = (mode == kRefNavWaypoint && kind == "I") || (mode == kRefNavAirport && kind == "APT") ||
                (mode == kRefNavNavaid && (kind == "V" || kind == "N"));
    if (!fits) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    TakeRefNavPick(only);
    ClearScratchpad();
}

// The runway of the shown airport, looked up in the airport's data: a
// loaded slot when it is one of the route's airports, else the file.
const RunwayRecord* FindRunway(std::string_view airport, std::string_view runway) {
    for (const AirportDetail* slot : {&g_airports.OriginAirport, &g_airports.DestinationAirport}) {
        if (TextOf(slot->Ident) != airport) continue;
        for (int i = 1; i <= slot->RunwayCount && i <= kRunwayLimit; ++i)
            if (TextOf(slot->Runways[static_cast<size_t>(i)].Ident) == runway)
                return &slot->Runways[static_cast<size_t>(i)];
    }
    // Reading the airport's line also sets row 0's altitude: a look-up must not.
    double row0_altitude = g_plan.ActivePlan[0].Altitude;
    SetAirport(airport, 0);
    g_plan.ActivePlan[0].Altitude = row0_altitude;
    const InfoAirportState& info = g_airports.InfoAirport;
    if (TextOf(info.Ident) != airport) return nullptr;
    for (int i = 1; i <= info.RunwayCount && i <= kRunwayLimit; ++i)
        if (TextOf(info.Runways[static_cast<size_t>(i)].Ident) == runway) return &info.Runways[static_cast<size_t>(i)];
    return nullptr;
}

void EnterRunway(std::string_view text) {
    SmithsCduState& s = g_smiths;
    std::string_view runway = text;
    if (runway.size() > 2 && runway.substr(0, 2) == "RW") runway.remove_prefix(2);
    // The runway length list answers first; without it the airport's own data does.
    RunwayLengthResult listed = FindRunwayLength(TextOf(s.RefNavFix.Ident), runway);
    if (listed.outcome == RunwayLengthOutcome::NotFound) {
        SetCduMessage(cdu_message::kNotFoundInDatabase);
        return;
    }
    if (listed.outcome == RunwayLengthOutcome::Found) {
        SetText(s.RefNavRunway, TextOf(listed.RunwayNameText));
        s.RefNavRunwayFt = ReadInteger(TextOf(listed.RunwayLengthText));
        ClearScratchpad();
        return;
    }
    const RunwayRecord* found = runway.empty() || runway.size() >= s.RefNavRunway.size()
                                    ? nullptr
                                    : FindRunway(TextOf(s.RefNavFix.Ident), runway);
    if (found == nullptr) {
        SetCduMessage(cdu_message::kNotInDatabase);
        return;
    }
    // Kept with its length, so that no frame reads the file again.
    SetText(s.RefNavRunway, runway);
    s.RefNavRunwayFt = found->LengthFt;
    ClearScratchpad();
}

void DrawPosition(CduScreen& screen, const NavRecord& fix) {
    char lat[16], lon[16];
    FormatDegreesMinutes(fix.Latitude, fix.Longitude, lat, sizeof lat, lon, sizeof lon);
    screen.Label("L A T I T U D E", kCduLeftLabelX, CduLabelY(4));
    screen.Value(lat, 0, CduValueY(4));
    screen.Label("L O N G I T U D E", kCduRightLabelEdge, CduLabelY(4), gdi::TextAlign::Right);
    screen.Value(lon, kCduRightEdge, CduValueY(4), gdi::TextAlign::Right);
}
}  // namespace

void TakeRefNavPick(const NavRecord& pick) {
    SmithsCduState& s = g_smiths;
    s.RefNavFix = pick;
    s.RefNavMode = ModeOfKind(TextOf(pick.Kind));
    s.RefNavRunway = {};
    s.RefNavRunwayFt = 0;
}

// [SECTION] REF NAV DATA page
void RefNavDataPage(CduScreen& screen) {
    SmithsCduState& s = g_smiths;
    if (s.RefNavMode < kRefNavIndex || s.RefNavMode > kRefNavAirport) s.RefNavMode = kRefNavIndex;

    // The key of this frame.
    int key = s.LineSelectLatch;
    std::string_view text = ScratchpadText();
    if (s.RefNavMode == kRefNavIndex) {
        if (!text.empty() && !DeleteArmed()) {
            if (key == 1) LookUp(text, kRefNavWaypoint);
            if (key == 2) LookUp(text, kRefNavAirport);
            if (key == 3) LookUp(text, kRefNavNavaid);
        }
        if (key == 4) s.CduPage = cdu_page::kInitRefIndex;
        if (key == 5) {
            s.CduPage = cdu_page::kNavStatus;
            s.nav_status.page = 2;
        }
    } else {
        if (key == 2 && s.RefNavMode == kRefNavAirport && !text.empty() && !DeleteArmed()) EnterRunway(text);
        if (key == kLeftRow6Key) s.RefNavMode = kRefNavIndex;
    }
    if (s.CduPage != cdu_page::kRefNavData) return;

    // Draw.
    screen.Title("REF  NAV  DATA");
    const NavRecord& fix = s.RefNavFix;
    char value[64];
    switch (s.RefNavMode) {
    case kRefNavIndex:
        screen.Label("W P T    I D E N T        N A V A I D    I D E N T", kCduLeftLabelX, CduLabelY(1));
        screen.Value("- - - - -", 0, CduValueY(1));
        screen.Value("- - - - -", kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
        screen.Label("A I R P O R T    I D E N T", kCduLeftLabelX, CduLabelY(2));
        screen.Value("- - - - -", 0, CduValueY(2));
        screen.Rule();
        screen.Value("NAV    OPTIONS>", kCduRightEdge, kNavRefRow6Y, gdi::TextAlign::Right);
        return;
    case kRefNavWaypoint: {
        screen.Label("W P T    I D E N T", kCduLeftLabelX, CduLabelY(1));
        screen.Value(fix.Ident.data(), 0, CduValueY(1));
        screen.Label("M A G    V A R", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
        screen.Value("- - -", kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
        double distance = 0, bearing = 0;
        GreatCircle(g_sim.latitude, g_sim.longitude, fix.Latitude, fix.Longitude, distance, bearing);
        screen.Label("R A D I A L / D I S T", kCduLeftLabelX, CduLabelY(2));
        std::snprintf(value, sizeof value, "%03.0f/%.1f", NormaliseMagnetic(bearing - g_sim.magnetic_variation),
                      distance);
        screen.Value(value, 0, CduValueY(2));
        break;
    }
    case kRefNavNavaid:
        screen.Label("N A V A I D    I D E N T", kCduLeftLabelX, CduLabelY(1));
        screen.Value(fix.Ident.data(), 0, CduValueY(1));
        screen.Label("F R E Q", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
        std::snprintf(value, sizeof value, "%6s", fix.Frequency.data());
        screen.Value(value, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
        screen.Label("M A G    V A R", kCduLeftLabelX, CduLabelY(2));
        screen.Value("- - -", 0, CduValueY(2));
        break;
    default: {
        screen.Label("A I R P O R T    I D E N T", kCduLeftLabelX, CduLabelY(1));
        screen.Value(fix.Ident.data(), 0, CduValueY(1));
        screen.Label("E L E V A T I O N", kCduRightLabelEdge, CduLabelY(1), gdi::TextAlign::Right);
        std::snprintf(value, sizeof value, "%s FT", fix.Elevation.data());
        screen.Value(value, kCduRightEdge, CduValueY(1), gdi::TextAlign::Right);
        screen.Label("R U N W A Y", kCduLeftLabelX, CduLabelY(2));
        if (s.RefNavRunway[0] != 0) {
            char feet[16];
            std::snprintf(feet, sizeof feet, "%d", s.RefNavRunwayFt);
            screen.Value(s.RefNavRunway.data(), 0, CduValueY(2));
            std::snprintf(value, sizeof value, "%sFT %-5dM", feet, static_cast<int>(s.RefNavRunwayFt * kFeetToMetres));
            screen.Value(value, kCduRightEdge, CduValueY(2), gdi::TextAlign::Right);
        } else {
            screen.Value("- - -", 0, CduValueY(2));
        }
        break;
    }
    }
    DrawPosition(screen, fix);
    screen.Rule();
    screen.Value("< INDEX", 0, kNavRefRow6Y);
}
