// plan_edit_test.cpp: the edits of a plan's rows: discontinuities, deletions,
// pilot waypoints and their names, airways, restrictions, the procedures'
// insertions, Direct-To, and the pointers (restriction row, active leg,
// holds) that must move with the rows.
#include "plan/plan_edit.h"

#include "guidance/geodesy.h"
#include "navdata/magnetic_model.h"
#include "navdata/procedures.h"
#include "plan/plan_execute.h"
#include "navdata/sim_folder.h"

#include <cmath>
#include <initializer_list>
#include <string>

namespace {
constexpr double kR = 10800.0 / 3.14159265358979323846;  // nm: one minute of arc a mile
constexpr double kRad = 3.14159265358979323846 / 180.0;

// [SECTION] Independent sphere formulas
// The point `distance` nm along true `bearing` from (lat, lon).
void Destination(double lat, double lon, double bearing, double distance, double& lat2, double& lon2) {
    double d = distance / kR, t = bearing * kRad, p1 = lat * kRad, l1 = lon * kRad;
    double p2 = std::asin(std::sin(p1) * std::cos(d) + std::cos(p1) * std::sin(d) * std::cos(t));
    double l2 = l1 + std::atan2(std::sin(t) * std::sin(d) * std::cos(p1), std::cos(d) - std::sin(p1) * std::sin(p2));
    lat2 = p2 / kRad;
    lon2 = l2 / kRad;
}

// Initial true bearing, 0..360.
double Bearing(double lat1, double lon1, double lat2, double lon2) {
    double p1 = lat1 * kRad, p2 = lat2 * kRad, dl = (lon2 - lon1) * kRad;
    double b = std::atan2(std::sin(dl) * std::cos(p2), std::cos(p1) * std::sin(p2) - std::sin(p1) * std::cos(p2) * std::cos(dl));
    b /= kRad;
    return b < 0 ? b + 360 : b;
}

// [SECTION] Plan building
void SetModPlan(std::initializer_list<const char*> idents) {
    PlanContext& pc = g_plan.context;
    int i = 0;
    for (const char* ident : idents) {
        g_plan.ModPlan[i] = PlanWaypoint{};
        SetText(g_plan.ModPlan[i].Ident, ident);
        g_plan.ModPlan[i].Latitude = 47.0 + 0.1 * i;
        g_plan.ModPlan[i].Longitude = -122.0;
        // Four letters from K: an airport, as the plan's ends are.
        std::string_view name = ident;
        if (name.size() == 4 && name[0] == 'K') SetText(g_plan.ModPlan[i].WaypointType, "APT");
        ++i;
    }
    pc.ModLastRow = i - 1;
    pc.ModActiveLeg = 1;
    pc.ModNextRestrictionRow = pc.ModLastRow;
}

std::string Idents(const PlanTable& plan, int last) {
    std::string out;
    for (int i = 0; i <= last; ++i) {
        if (i) out += ' ';
        out += TextOf(plan[i].Ident);
    }
    return out;
}

std::string ModIdents() { return Idents(g_plan.ModPlan, g_plan.context.ModLastRow); }

void SetCandidate(const char* ident, double lat, double lon, const char* kind, const char* frequency = "") {
    g_candidates = CandidateList{};
    NavRecord& r = g_candidates.rows[1];
    SetText(r.Ident, ident);
    r.Latitude = lat;
    r.Longitude = lon;
    SetText(r.Kind, kind);
    SetText(r.Frequency, frequency);
    g_candidates.count = 1;
}

void SetLegs(SelectedLegTable& table, std::initializer_list<const char*> fixes) {
    table = SelectedLegTable{};
    int i = 0;
    for (const char* fix : fixes) {
        SelectedLeg& leg = table.rows[++i];
        SetText(leg.Fix, fix);
        leg.Latitude = 46.0 + 0.05 * i;
        leg.Longitude = -121.0;
    }
    table.count = i;
}

void SetAirportSlot(AirportDetail& slot, const char* ident, double lat, double lon) {
    SetText(slot.Ident, ident);
    slot.Latitude = lat;
    slot.Longitude = lon;
}

// Which records sit on which rows: "ident@row" for each record, and each row's HoldIndex agrees.
std::string HoldRows() {
    std::string out;
    for (int k = 1; k <= g_holds.HoldCount; ++k) {
        int row = g_holds.HoldTable[k].ModRow;
        if (k > 1) out += ' ';
        out += std::string(TextOf(g_holds.HoldTable[k].Ident)) + "@" + std::to_string(row);
        if (g_plan.ModPlan[row].HoldIndex != k) out += "(unmarked)";
    }
    return out;
}

class PlanEdit : public ::testing::Test {
protected:
    SimFolder sim;
    void SetUp() override {
        g_selected_legs = SelectedLegSet{};
        g_pilot_waypoint = PilotWaypointState{};
        g_route_rows = RouteRowList{};
    }
    void LoadNavs(const std::string& navs, const std::string& awys = "") {
        sim.Write("orb/navdata/navs.txt", navs);
        if (!awys.empty()) sim.Write("orb/navdata/awys.txt", awys);
        LoadNavDatabase();
    }
};
}  // namespace

// [SECTION] Discontinuities and deletions
TEST_F(PlanEdit, InsertLeavesADiscoBeforeTheRestButNotWhenAppending) {
    SetModPlan({"KSEA", "ALPHA", "BRAVO", "KPDX"});
    g_plan.context.ModActiveLeg = kNoActiveLeg;
    SetCandidate("XRAY", 46.5, -122.5, "I");
    InsertCandidate(3, 1);
    EXPECT_EQ(ModIdents(), "KSEA ALPHA BRAVO XRAY DISCO KPDX");
    EXPECT_STREQ(g_plan.ModPlan[3].WaypointType.data(), "INT");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Latitude, 46.5);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[4].Latitude, 0);
    EXPECT_STREQ(g_plan.ModPlan[6].Ident.data(), "******");  // the end marker behind the last
    EXPECT_EQ(g_plan.context.ModActiveLeg, 1);               // 999 becomes 1 with the first insertion
    EXPECT_EQ(g_plan.context.PlanState, 1);                  // a route being built

    // In front of a "DISCO" no second one comes.
    SetCandidate("YANKY", 46.6, -122.6, "V", "116.80");
    InsertCandidate(4, 1);
    EXPECT_EQ(ModIdents(), "KSEA ALPHA BRAVO XRAY YANKY DISCO KPDX");
    EXPECT_STREQ(g_plan.ModPlan[4].WaypointType.data(), "VOR");
    EXPECT_STREQ(g_plan.ModPlan[4].Frequency.data(), "116.80");

    // Appending behind the last row leaves none.
    SetCandidate("ZULU", 46.7, -122.7, "N");
    InsertCandidate(7, 1);
    EXPECT_EQ(ModIdents(), "KSEA ALPHA BRAVO XRAY YANKY DISCO KPDX ZULU");
    EXPECT_STREQ(g_plan.ModPlan[8].Ident.data(), "******");

    // The plain insertion never leaves one, and takes no row 0 and no last row.
    SetCandidate("MIKE", 46.8, -122.8, "I");
    InsertPlain(2, 1);
    EXPECT_EQ(ModIdents(), "KSEA ALPHA MIKE BRAVO XRAY YANKY DISCO KPDX ZULU");
    InsertPlain(0, 1);
    InsertPlain(g_plan.context.ModLastRow, 1);
    EXPECT_EQ(g_plan.context.ModLastRow, 8);
    // A candidate row outside the list changes nothing.
    InsertCandidate(2, 2);
    EXPECT_EQ(g_plan.context.ModLastRow, 8);
}

TEST_F(PlanEdit, DeletingAnInteriorRowLeavesADiscoTheEndsCloseUp) {
    SetModPlan({"KSEA", "A1", "A2", "A3", "A4", "A5", "KPDX"});
    g_plan.context.PlanState = 3;
    DeleteRow(3, 0);
    EXPECT_EQ(ModIdents(), "KSEA A1 A2 DISCO A4 A5 KPDX");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Latitude, 0);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[3].Altitude, -999);
    EXPECT_EQ(g_plan.context.PlanState, 4);  // an active plan is modified
    DeleteRow(1, 0);                         // the first row closes up
    EXPECT_EQ(ModIdents(), "KSEA A2 DISCO A4 A5 KPDX");
    DeleteRow(5, 0);                         // the last
    EXPECT_EQ(ModIdents(), "KSEA A2 DISCO A4 A5");
    DeleteRow(3, 0);                         // the last but one
    EXPECT_EQ(ModIdents(), "KSEA A2 DISCO A5");
    EXPECT_STREQ(g_plan.ModPlan[4].Ident.data(), "******");
    DeleteRow(2, 1);                         // asked to close up
    EXPECT_EQ(ModIdents(), "KSEA A2 A5");
    // The route page's lines follow at once.
    EXPECT_EQ(g_route_rows.count, 1);
    EXPECT_STREQ(g_route_rows.rows[1].ToWaypoint.data(), "A2");
    DeleteRow(1, 0);
    EXPECT_EQ(ModIdents(), "KSEA A5");
    DeleteRow(1, 0);  // an origin and one row stay
    EXPECT_EQ(ModIdents(), "KSEA A5");
}

TEST_F(PlanEdit, CloseRowsToTakesTheStretchBetween) {
    SetModPlan({"KSEA", "A1", "A2", "A3", "A4", "KPDX"});
    AddHold(2, 1);
    AddHold(4, 1);
    CloseRowsTo(1, 3);
    EXPECT_EQ(ModIdents(), "KSEA A3 A4 KPDX");
    EXPECT_EQ(HoldRows(), "A4@2");  // the hold on a removed row goes, the other moves up
    EXPECT_EQ(g_plan.context.PlanState, 1);
    CloseRowsTo(2, 9);  // past the end: the plan ends at the target
    EXPECT_EQ(ModIdents(), "KSEA A3 A4");
    EXPECT_STREQ(g_plan.ModPlan[3].Ident.data(), "******");
}

// [SECTION] Pointers that move with the rows
TEST_F(PlanEdit, RestrictionRowActiveLegAndHoldsFollowTheirRows) {
    SetModPlan({"KSEA", "A1", "A2", "A3", "A4", "KPDX"});
    PlanContext& pc = g_plan.context;
    pc.ModActiveLeg = 2;            // flying to A2
    pc.ModNextRestrictionRow = 4;   // A4 holds the next altitude
    AddHold(3, 1);
    EXPECT_EQ(HoldRows(), "A3@3");
    auto ident = [](int row) { return std::string(TextOf(g_plan.ModPlan[row].Ident)); };

    // Behind all of them: nothing moves.
    SetCandidate("LATE", 45, -120, "I");
    InsertCandidate(5, 1);  // LATE, DISCO in front of KPDX
    EXPECT_EQ(pc.ModActiveLeg, 2);
    EXPECT_EQ(ident(pc.ModNextRestrictionRow), "A4");
    EXPECT_EQ(HoldRows(), "A3@3");

    // In front of all of them: a row and its "DISCO" move each by two.
    SetCandidate("EARLY", 45, -120, "I");
    InsertCandidate(1, 1);
    EXPECT_EQ(ModIdents(), "KSEA EARLY DISCO A1 A2 A3 A4 LATE DISCO KPDX");
    EXPECT_EQ(ident(pc.ModActiveLeg), "A2");
    EXPECT_EQ(ident(pc.ModNextRestrictionRow), "A4");
    EXPECT_EQ(HoldRows(), "A3@5");

    // At the active leg: the new row comes before the old waypoint and is flown to first.
    SetCandidate("NEXT", 45, -120, "I");
    InsertCandidate(pc.ModActiveLeg, 1);
    EXPECT_EQ(ident(pc.ModActiveLeg), "NEXT");
    EXPECT_EQ(ident(pc.ModActiveLeg + 1), "DISCO");
    EXPECT_EQ(ident(pc.ModNextRestrictionRow), "A4");
    EXPECT_EQ(HoldRows(), "A3@7");

    // Deletions in front close them up again; a "THEN" row in and out.
    DeleteRow(1, 1);
    DeleteRow(1, 1);
    EXPECT_EQ(ModIdents(), "KSEA A1 NEXT DISCO A2 A3 A4 LATE DISCO KPDX");
    EXPECT_EQ(ident(pc.ModActiveLeg), "NEXT");
    EXPECT_EQ(ident(pc.ModNextRestrictionRow), "A4");
    EXPECT_EQ(HoldRows(), "A3@5");
    SetCandidate("J5FIX", 45, -120, "I");
    SetText(g_candidates.rows[1].Spare1, "J5");
    InsertThen(2);
    EXPECT_STREQ(g_plan.ModPlan[2].Via.data(), "J5");
    EXPECT_STREQ(g_plan.ModPlan[2].WaypointType.data(), "OAWY");
    EXPECT_EQ(HoldRows(), "A3@6");
    InsertThen(6);
    EXPECT_EQ(HoldRows(), "A3@7");
    RemoveThenRows();
    EXPECT_EQ(ModIdents(), "KSEA A1 NEXT DISCO A2 A3 A4 LATE DISCO KPDX");
    EXPECT_EQ(HoldRows(), "A3@5");
    EXPECT_EQ(ident(pc.ModNextRestrictionRow), "A4");
    EXPECT_STREQ(g_plan.ModPlan[10].Ident.data(), "******");

    // The hold's own row deleted: the hold goes, and no row keeps its mark.
    DeleteRow(5, 0);
    EXPECT_EQ(g_holds.HoldCount, 0);
    for (int i = 0; i <= pc.ModLastRow; ++i) EXPECT_EQ(g_plan.ModPlan[i].HoldIndex, 0) << i;
}

TEST_F(PlanEdit, HoldRecordsStayInRowOrderAndSurviveExecuteAndErase) {
    SetModPlan({"KSEA", "A1", "A2", "A3", "A4", "KPDX"});
    g_sim.magnetic_variation = 10;
    AddHold(4, 1);
    AddHold(2, 1);  // a hold nearer comes first; the rows' numbers follow
    EXPECT_EQ(HoldRows(), "A2@2 A4@4");
    const HoldRecord& first = g_holds.HoldTable[1];
    EXPECT_EQ(first.TurnRight, 1);
    EXPECT_EQ(first.LegMode, 1);
    EXPECT_DOUBLE_EQ(first.LegMinutes, 1.0);
    EXPECT_EQ(g_holds.HoldFlying, 1);
    // The inbound course is the leg's from A1, magnetic: due north less 10.
    EXPECT_NEAR(first.InboundCourse, 350, 1e-6);
    // A GNS hold takes the profile's leg time.
    g_profile.HoldLegMins = 1.5;
    AddHold(5, kHoldFromGnsPage);
    EXPECT_DOUBLE_EQ(g_holds.HoldTable[3].LegMinutes, 1.5);
    DeleteRow(5, 1);
    EXPECT_EQ(HoldRows(), "A2@2 A4@4");

    // The first record removed: the second becomes the first, rows renumbered.
    DeleteRow(2, 1);
    EXPECT_EQ(HoldRows(), "A4@3");

    // EXEC puts the record on the row the edit gave it.
    g_plan.ActivePlan = g_plan.ModPlan;
    g_plan.context.ActiveLastRow = g_plan.context.ModLastRow;
    CommitHoldRows();
    EXPECT_EQ(g_holds.HoldTable[1].ActiveRow, 3);
    // A hold added in a modification that is erased is dropped; the tied one stays.
    AddHold(1, 1);
    EXPECT_EQ(HoldRows(), "A1@1 A4@3");
    DropUntiedHolds();
    EXPECT_EQ(g_holds.HoldCount, 1);
    EXPECT_STREQ(g_holds.HoldTable[1].Ident.data(), "A4");
    EXPECT_EQ(g_plan.ActivePlan[3].HoldIndex, 1);

    // DeleteHold by the active row: a pilot's deletion waits for EXEC, and the
    // hold page gives way to the legs.
    g_plan.context.PlanState = 3;
    g_smiths.CduPage = cdu_page::kRteHold;
    DeleteHold(3, 1);
    EXPECT_EQ(g_holds.HoldCount, 0);
    EXPECT_EQ(g_holds.HoldFlying, 0);
    EXPECT_EQ(g_plan.ModPlan[3].HoldIndex, 0);
    EXPECT_EQ(g_plan.context.PlanState, 4);
    EXPECT_EQ(g_smiths.CduPage, cdu_page::kRteLegs);
}

// [SECTION] Pilot waypoints
TEST_F(PlanEdit, PositionEntriesAreNamedFromTheHighestWptNumber) {
    SetModPlan({"KSEA", "WPT01", "WPT03", "WPTX4", "KPDX"});
    ASSERT_EQ(ResolveName(0, "N4730.5W12218.2"), 1);
    const NavRecord& r = g_candidates.rows[1];
    EXPECT_STREQ(r.Ident.data(), "WPT04");  // above the highest; the gap at 02 stays
    EXPECT_NEAR(r.Latitude, 47 + 30.0 / 60 + 0.5 / 60, 1e-9);
    EXPECT_NEAR(r.Longitude, -(122 + 18.0 / 60 + 0.2 / 60), 1e-9);
    EXPECT_STREQ(r.Kind.data(), "I");
    ASSERT_EQ(ResolveName(0, "S3345.6E15112.3"), 1);
    EXPECT_NEAR(g_candidates.rows[1].Latitude, -(33 + 45.6 / 60), 1e-9);
    EXPECT_NEAR(g_candidates.rows[1].Longitude, 151 + 12.3 / 60, 1e-9);

    // Inserted, the next one numbers on from it.
    ResolveName(0, "N4730.5W12218.2");
    InsertCandidate(4, 1);
    EXPECT_STREQ(g_plan.ModPlan[4].Ident.data(), "WPT04");
    ResolveName(0, "N4731.0W12219.0");
    EXPECT_STREQ(g_candidates.rows[1].Ident.data(), "WPT05");
    // Not the form: a wrong letter or point.
    EXPECT_EQ(ResolveName(0, "N4730.5X12218.2"), 0);
    EXPECT_EQ(ResolveName(0, "N4730,5W12218.2"), 0);

    // A hold at the present position becomes a WPT of its own, with its hold mark.
    SetCandidate("HOLD PPOS", 47.2, -122.1, "I");
    InsertCandidate(1, 1);
    EXPECT_STREQ(g_plan.ModPlan[1].Ident.data(), "WPT05");
    EXPECT_EQ(g_plan.ModPlan[1].HoldIndex, 1);
}

TEST_F(PlanEdit, PlaceBearingDistanceIsProjectedAndNamedAfterThePlace) {
    LoadNavs("BF BOEING 47.55 -122.31 NDB 362\n"
             "SEA SEATTLE 47.435 -122.3097 VOR 116.80\n");
    SetModPlan({"KSEA", "KPDX"});
    g_sim.magnetic_variation = 20;
    ASSERT_EQ(ResolveName(0, "SEA090/10"), 1);
    EXPECT_STREQ(g_candidates.rows[1].Ident.data(), "SEA");
    EXPECT_DOUBLE_EQ(g_pilot_waypoint.PbdBearing, 90);
    EXPECT_DOUBLE_EQ(g_pilot_waypoint.PbdDistance, 10);
    InsertCandidate(1, 1);
    const PlanWaypoint& w = g_plan.ModPlan[1];
    EXPECT_STREQ(w.Ident.data(), "SEA01");
    EXPECT_STREQ(w.WaypointType.data(), "WPT");
    double lat = 0, lon = 0;
    Destination(47.435, -122.3097, 110, 10, lat, lon);  // magnetic 090 is true 110 here
    EXPECT_NEAR(w.Latitude, lat, 1e-6);
    EXPECT_NEAR(w.Longitude, lon, 1e-6);
    EXPECT_DOUBLE_EQ(g_pilot_waypoint.PbdDistance, 0);
    EXPECT_DOUBLE_EQ(g_pilot_waypoint.PbdBearing, -1);

    // The next from the same place: SEA02. A gap below the highest isn't filled.
    ResolveName(0, "SEA180/5");
    InsertCandidate(2, 1);
    EXPECT_STREQ(g_plan.ModPlan[2].Ident.data(), "SEA02");
    SetText(g_plan.ModPlan[1].Ident, "SEA07");
    ResolveName(0, "SEA270/12");
    InsertCandidate(3, 1);
    EXPECT_STREQ(g_plan.ModPlan[3].Ident.data(), "SEA08");
    // A two-letter place keeps both letters.
    ResolveName(0, "BF045/15");
    InsertCandidate(4, 1);
    EXPECT_STREQ(g_plan.ModPlan[4].Ident.data(), "BF01");

    // Not the form: no three bearing digits before the "/".
    EXPECT_EQ(ResolveName(0, "SEA/10"), 0);
    EXPECT_EQ(ResolveName(0, "SEATTL/10"), 0);
    EXPECT_DOUBLE_EQ(g_pilot_waypoint.PbdDistance, 0);
    // A plain name after a form inserts the place itself, unmoved and unnamed.
    ResolveName(0, "SEA090/10");
    ResolveName(0, "SEA");
    InsertCandidate(5, 1);
    EXPECT_STREQ(g_plan.ModPlan[5].Ident.data(), "SEA");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[5].Latitude, 47.435);
}

TEST_F(PlanEdit, PlaceBearingPlaceBearingIsTheRadialsCrossing) {
    double probe_lat = 0, probe_lon = 0;
    if (RadialIntersection(47, -122, 90, 46, -121, 0, probe_lat, probe_lon) == kNoIntersection)
        GTEST_SKIP() << "RadialIntersection finds no crossing of two radials that cross";
    LoadNavs("OLM OLYMPIA 46.9716 -122.9017 VOR 113.40\n"
             "SEA SEATTLE 47.435 -122.3097 VOR 116.80\n");
    SetModPlan({"KSEA", "KPDX"});
    ASSERT_EQ(ResolveName(0, "SEA180/OLM090"), 1);
    EXPECT_STREQ(g_pilot_waypoint.FirstPlace.Ident.data(), "SEA");
    // The crossing lies on SEA's 180 radial and on OLM's 090 radial (true = magnetic + variation).
    double var_sea = MagneticVariation(47, -122), var_olm = MagneticVariation(46, -122);
    const NavRecord& x = g_candidates.rows[1];
    EXPECT_NEAR(Bearing(47.435, -122.3097, x.Latitude, x.Longitude), 180 + var_sea, 0.01);
    EXPECT_NEAR(Bearing(46.9716, -122.9017, x.Latitude, x.Longitude), 90 + var_olm, 0.01);
    EXPECT_LT(std::fabs(x.Latitude - 47), 1.0);  // near the places, not the antipode
    InsertCandidate(1, 1);
    EXPECT_STREQ(g_plan.ModPlan[1].Ident.data(), "OLM01");
    // Radials that run apart from both places: nothing.
    EXPECT_EQ(ResolveName(0, "SEA020/OLM200"), 0);
}

// [SECTION] Airways
TEST_F(PlanEdit, AirwayIsExpandedBetweenItsFixesEitherWay) {
    LoadNavs("SEA SEATTLE 47.435 -122.3097 VOR 116.80\n",
             "V4 1 OTHER 45.0 -120.0\n"
             "J5 1 AAAAA 47.0 -121.0\n"
             "J5 2 BBBBB 47.2 -121.2\n"
             "J5 3 SEA 47.435 -122.3097\n"
             "J5 4 DDDDD 47.6 -122.6\n"
             "J5 5 EEEEE 47.8 -122.8\n");
    SetModPlan({"KSEA", "BBBBB", "KPDX"});
    g_plan.context.ModActiveLeg = 1;  // the route page's insertion point: behind BBBBB
    FetchAirway("J5");
    ASSERT_EQ(g_airway.AirwayEntryRow, 2);
    g_airway.AirwayExitRow = FindInCandidates("EEEEE");
    InsertAirway();
    EXPECT_EQ(ModIdents(), "KSEA BBBBB SEA DDDDD EEEEE KPDX");
    EXPECT_STREQ(g_plan.ModPlan[2].Via.data(), "J5");
    EXPECT_STREQ(g_plan.ModPlan[4].Via.data(), "J5");
    EXPECT_STREQ(g_plan.ModPlan[3].WaypointType.data(), "INT");
    EXPECT_STREQ(g_plan.ModPlan[2].WaypointType.data(), "VOR");  // a navaid on the airway is found
    EXPECT_STREQ(g_plan.ModPlan[2].Frequency.data(), "116.80");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[4].Latitude, 47.8);

    // Against the file's order, from behind a "THEN" row that then goes.
    SetModPlan({"KSEA", "DDDDD", "KPDX"});
    g_plan.context.ModActiveLeg = 1;
    FetchAirway("#J5");
    InsertThen(2);
    g_airway.AirwayExitRow = FindInCandidates("AAAAA");
    InsertAirway();
    RemoveThenRows();
    EXPECT_EQ(ModIdents(), "KSEA DDDDD SEA BBBBB AAAAA KPDX");

    // An exit that isn't on the airway, or is the entry itself: nothing.
    SetModPlan({"KSEA", "BBBBB", "KPDX"});
    g_plan.context.ModActiveLeg = 1;
    FetchAirway("J5");
    g_airway.AirwayExitRow = FindInCandidates("OTHER");
    EXPECT_EQ(g_airway.AirwayExitRow, 0);
    InsertAirway();
    g_airway.AirwayExitRow = g_airway.AirwayEntryRow;
    InsertAirway();
    EXPECT_EQ(ModIdents(), "KSEA BBBBB KPDX");
}

// [SECTION] Restrictions
TEST_F(PlanEdit, RestrictionsInEverySpellingAndTheBadOnes) {
    struct Case {
        const char* entry;
        double speed;
        double altitude;
    };
    const Case good[] = {{"250/10000", 250, 10000}, {"FL350", -999, 35000}, {"/FL350", -999, 35000},
                         {"350", -999, 35000},      {"35000", -999, 35000}, {"180/FL120", 180, 12000}};
    for (const Case& c : good) {
        SetModPlan({"KSEA", "A1", "KPDX"});
        g_smiths = SmithsCduState{};
        SetScratchpad(c.entry);
        EnterRestriction(1);
        const PlanWaypoint& w = g_plan.ModPlan[1];
        EXPECT_DOUBLE_EQ(w.Altitude, c.altitude) << c.entry;
        EXPECT_DOUBLE_EQ(w.Speed, c.speed) << c.entry;
        EXPECT_EQ(w.Restricted, 1) << c.entry;
        EXPECT_EQ(ScratchpadText(), "") << c.entry;
        EXPECT_EQ(CduMessageText(), "") << c.entry;
    }
    for (const char* bad : {"99999", "450/10000", "ABC", "99/10000", "0"}) {
        SetModPlan({"KSEA", "A1", "KPDX"});
        g_plan.context.PlanState = 3;
        g_smiths = SmithsCduState{};
        SetScratchpad(bad);
        EnterRestriction(1);
        const PlanWaypoint& w = g_plan.ModPlan[1];
        EXPECT_EQ(CduMessageText(), "INVALID ENTRY") << bad;
        EXPECT_DOUBLE_EQ(w.Altitude, -999) << bad;
        EXPECT_DOUBLE_EQ(w.Speed, -999) << bad;
        EXPECT_EQ(w.Restricted, 0) << bad;
        EXPECT_EQ(g_plan.context.PlanState, 3) << bad;
        EXPECT_EQ(ScratchpadText(), bad);
    }
    // On an active plan the edit begins from it and waits for EXEC.
    SetModPlan({"KSEA", "STALE", "KPDX"});
    g_plan.ActivePlan = g_plan.ModPlan;
    SetText(g_plan.ActivePlan[1].Ident, "A1");
    g_plan.context.ActiveLastRow = 2;
    g_plan.context.PlanState = 3;
    SetScratchpad("FL200");
    EnterRestriction(1);
    EXPECT_STREQ(g_plan.ModPlan[1].Ident.data(), "A1");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[1].Altitude, 20000);
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[1].Altitude, -999);
    EXPECT_EQ(g_plan.context.PlanState, 4);
}

// [SECTION] Procedures
TEST_F(PlanEdit, ApproachIsCutAtTheMissedApproachPoint) {
    SetAirportSlot(g_airports.DestinationAirport, "KPDX", 45.59, -122.6);
    SetModPlan({"KSEA", "ENR", "KPDX"});
    SetLegs(g_selected_legs.Approach, {"CIVIC", "BOXER", "STEPS", "RW10R", "MISSD"});
    struct Leg {
        const char* marker;
        const char* restriction;
    };
    const Leg legs[] = {{"IAF", "80"}, {"FAF", "800"}, {"", "1200"}, {"MAP", "0"}, {"", "4000"}};
    for (int i = 0; i < 5; ++i) {
        SetText(g_selected_legs.Approach.rows[i + 1].Marker, legs[i].marker);
        SetText(g_selected_legs.Approach.rows[i + 1].Restriction, legs[i].restriction);
    }
    InsertApproach(0);
    EXPECT_EQ(ModIdents(), "KSEA ENR CIVIC BOXER STEPS KPDX");
    const PlanTable& p = g_plan.ModPlan;
    EXPECT_DOUBLE_EQ(p[2].Speed, 190);
    EXPECT_DOUBLE_EQ(p[3].Speed, 170);
    EXPECT_DOUBLE_EQ(p[4].Speed, 180);
    EXPECT_DOUBLE_EQ(p[2].Altitude, -999);  // 80 is no altitude
    EXPECT_EQ(p[2].Restricted, 0);
    EXPECT_DOUBLE_EQ(p[3].Altitude, 800);
    EXPECT_EQ(p[3].Restricted, 3);
    EXPECT_DOUBLE_EQ(p[4].Altitude, 1200);
    EXPECT_STREQ(p[2].LegMarker.data(), "IAF");
    EXPECT_STREQ(p[3].SegmentKind.data(), "APPR");
    EXPECT_STREQ(p[5].WaypointType.data(), "APT");
    EXPECT_DOUBLE_EQ(p[5].Latitude, 45.59);

    // Again, with a gap: the old approach goes, the gap takes the first fix's place and targets.
    SetText(g_selected_legs.Approach.rows[1].Restriction, "3000");
    InsertApproach(1);
    EXPECT_EQ(ModIdents(), "KSEA ENR DISCO CIVIC BOXER STEPS KPDX");
    EXPECT_DOUBLE_EQ(p[2].Latitude, p[3].Latitude);
    EXPECT_DOUBLE_EQ(p[2].Speed, 190);
    EXPECT_DOUBLE_EQ(p[2].Altitude, 3000);
    EXPECT_EQ(p[2].Restricted, 3);
    // A third time the gap isn't doubled.
    InsertApproach(1);
    EXPECT_EQ(ModIdents(), "KSEA ENR DISCO CIVIC BOXER STEPS KPDX");
}

TEST_F(PlanEdit, ASecondSidReplacesTheFirstAndKeepsTheEnroute) {
    SetAirportSlot(g_airports.OriginAirport, "KSEA", 47.45, -122.31);
    SetModPlan({"KSEA", "ENR1", "ENR2", "KPDX"});
    SetText(g_plan.ModPlan[0].WaypointType, "APT");
    g_plan.context.ActiveLeg = 1;
    g_plan.context.ModActiveLeg = 3;
    SetLegs(g_selected_legs.Sid, {"SID1A", "SID1B", "SID1C"});
    InsertSid();
    EXPECT_EQ(ModIdents(), "KSEA SID1A SID1B SID1C ENR1 ENR2 KPDX");
    EXPECT_STREQ(g_plan.ModPlan[2].SegmentKind.data(), "SID");
    EXPECT_STREQ(g_plan.ModPlan[4].SegmentKind.data(), "");
    EXPECT_EQ(g_plan.context.ModActiveLeg, 1);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[0].Latitude, 47.45);
    SetLegs(g_selected_legs.Sid, {"SID2A"});
    InsertSid();
    EXPECT_EQ(ModIdents(), "KSEA SID2A ENR1 ENR2 KPDX");
    // A plan not yet flown is only its origin.
    g_plan.context.ActiveLeg = kNoActiveLeg;
    InsertSid();
    EXPECT_EQ(ModIdents(), "KSEA SID2A");
}

TEST_F(PlanEdit, ASidEndingWhereTheStarBeginsIsOneSidstarRow) {
    SetAirportSlot(g_airports.OriginAirport, "KSEA", 47.45, -122.31);
    SetAirportSlot(g_airports.DestinationAirport, "KPDX", 45.59, -122.6);
    // The STAR first, then the SID that ends on its first fix.
    SetModPlan({"KSEA", "KPDX"});
    SetText(g_plan.ModPlan[0].WaypointType, "APT");
    SetText(g_plan.ModPlan[1].WaypointType, "APT");
    g_plan.context.ActiveLeg = 1;
    SetLegs(g_selected_legs.Star, {"JOINT", "STAR2"});
    InsertStar();
    EXPECT_EQ(ModIdents(), "KSEA JOINT STAR2 KPDX");
    SetLegs(g_selected_legs.Sid, {"SID1", "JOINT"});
    InsertSid();
    EXPECT_EQ(ModIdents(), "KSEA SID1 JOINT STAR2 KPDX");
    EXPECT_STREQ(g_plan.ModPlan[2].SegmentKind.data(), "SIDSTAR");

    // The SID first, then the STAR; and a new STAR gives the join back to the SID.
    SetModPlan({"KSEA", "KPDX"});
    SetText(g_plan.ModPlan[0].WaypointType, "APT");
    SetText(g_plan.ModPlan[1].WaypointType, "APT");
    InsertSid();
    EXPECT_EQ(ModIdents(), "KSEA SID1 JOINT KPDX");
    InsertStar();
    EXPECT_EQ(ModIdents(), "KSEA SID1 JOINT STAR2 KPDX");
    EXPECT_STREQ(g_plan.ModPlan[2].SegmentKind.data(), "SIDSTAR");
    SetLegs(g_selected_legs.Star, {"OTHER"});
    InsertStar();
    EXPECT_EQ(ModIdents(), "KSEA SID1 JOINT OTHER KPDX");
    EXPECT_STREQ(g_plan.ModPlan[2].SegmentKind.data(), "SID");

    // A STAR goes in front of an approach already there.
    SetLegs(g_selected_legs.Approach, {"FINAL"});
    InsertApproach(0);
    EXPECT_EQ(ModIdents(), "KSEA SID1 JOINT OTHER FINAL KPDX");
    SetLegs(g_selected_legs.Star, {"NEWSTR"});
    InsertStar();
    EXPECT_EQ(ModIdents(), "KSEA SID1 JOINT NEWSTR FINAL KPDX");
}

TEST_F(PlanEdit, ActivatingAnApproachChangesTheFlownPlanAndItsPointers) {
    SetAirportSlot(g_airports.DestinationAirport, "KPDX", 45.59, -122.6);
    PlanContext& pc = g_plan.context;
    SetModPlan({"KSEA", "ENR", "KPDX"});
    g_plan.ActivePlan = g_plan.ModPlan;
    pc.ActiveLastRow = 2;
    pc.ActiveLeg = 1;
    pc.NextRestrictionRow = 2;
    pc.ModLastRow = 1;  // the edit stays as it is
    SetLegs(g_selected_legs.Approach, {"IAFIX", "FAFIX"});
    ActivateApproach();
    EXPECT_EQ(Idents(g_plan.ActivePlan, pc.ActiveLastRow), "KSEA ENR IAFIX FAFIX KPDX");
    EXPECT_EQ(pc.ActiveLeg, 1);
    EXPECT_EQ(pc.ModLastRow, 1);
    EXPECT_STREQ(g_plan.ActivePlan[2].SegmentKind.data(), "APPR");
}

// [SECTION] Direct-To and the route page's lines
TEST_F(PlanEdit, DirectToOnTheLegsStoresTheInboundCourseAndExecuteIntercepts) {
    SetModPlan({"KSEA", "B1", "DISCO", "C1", "D1"});
    g_plan.ModPlan[1].Latitude = 47;
    g_plan.ModPlan[1].Longitude = -122;
    g_plan.ModPlan[3].Latitude = 47.5;
    g_plan.ModPlan[3].Longitude = -121;
    g_plan.ModPlan[4].InboundCourse = 123;
    g_sim.magnetic_variation = 15;
    g_sim.latitude = 46.8;
    g_sim.longitude = -122.4;
    DirectToRow(3);
    EXPECT_EQ(g_plan.context.ModActiveLeg, 3);
    // From B1 (the row before the gap), less the variation.
    EXPECT_NEAR(g_plan.ModPlan[3].InboundCourse, Bearing(47, -122, 47.5, -121) - 15, 1e-4);
    EXPECT_EQ(ModIdents(), "KSEA B1 DISCO C1 D1");  // no row moves
    DirectToRow(4);
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[4].InboundCourse, 123);  // a course of its own stays

    // EXEC makes it the leg and LNAV intercepts from the present position.
    DirectToRow(3);
    g_plan.context.PlanState = 4;
    g_smiths.LegsMode = 1;
    PlanExecute();
    EXPECT_EQ(g_plan.context.ActiveLeg, 3);
    EXPECT_EQ(g_lnav.InterceptActive, 1);
    EXPECT_DOUBLE_EQ(g_lnav.InterceptStart.lat, 46.8);
    EXPECT_DOUBLE_EQ(g_lnav.InterceptStart.lon, -122.4);
    EXPECT_DOUBLE_EQ(g_plan.context.ActiveWaypointLatitude, 47.5);
}

TEST_F(PlanEdit, GnsDirectToPutsADirectRowInFrontOfTheTarget) {
    SetModPlan({"KSEA", "A1", "A2", "A3"});
    g_plan.context.ModNextRestrictionRow = 3;
    AddHold(2, kHoldFromGnsPage);
    g_sim.latitude = 46.1;
    g_sim.longitude = -121.9;
    DirectToFromPresentPosition(2);
    PlanContext& pc = g_plan.context;
    EXPECT_EQ(Idents(g_plan.ActivePlan, pc.ActiveLastRow), "KSEA A1 DIRECT A2 A3");
    EXPECT_STREQ(g_plan.ActivePlan[2].SegmentKind.data(), "DCT");
    EXPECT_DOUBLE_EQ(g_plan.ActivePlan[2].Latitude, 46.1);
    EXPECT_EQ(pc.ActiveLeg, 3);
    EXPECT_EQ(pc.NextRestrictionRow, 4);
    EXPECT_EQ(g_holds.HoldTable[1].ActiveRow, 3);
    EXPECT_DOUBLE_EQ(pc.ActiveWaypointLatitude, g_plan.ModPlan[2].Latitude);
}

TEST_F(PlanEdit, RowOfRouteLineFindsTheLinesLastFix) {
    SetModPlan({"KSEA", "ALPHA", "BRAVO", "CHARL", "KPDX"});
    SetText(g_plan.ModPlan[2].Via, "J5");
    SetText(g_plan.ModPlan[3].Via, "J5");
    BuildRouteRows();
    ASSERT_EQ(g_route_rows.count, 2);  // ALPHA direct, J5 to CHARL
    EXPECT_EQ(RowOfRouteLine(1, 0), 1);
    EXPECT_EQ(RowOfRouteLine(2, 0), 3);
    EXPECT_EQ(RowOfRouteLine(1, 2), 4);  // none at or after row 2: the last row
    EXPECT_EQ(RowOfRouteLine(9, 0), 4);
    SetText(g_route_rows.rows[1].ToWaypoint, "KSEA");
    EXPECT_EQ(RowOfRouteLine(1, 0), 4);  // a match at row 0 is the last row
}

// [SECTION] DEPARTURES and ARRIVALS keys
namespace {
// The plan's rows of a procedure kind, as "FIX FIX ...".
std::string KindRows(const char* kind) {
    std::string out;
    for (int i = 0; i <= g_plan.context.ModLastRow; ++i) {
        if (TextOf(g_plan.ModPlan[i].SegmentKind) != kind) continue;
        if (!out.empty()) out += ' ';
        out += TextOf(g_plan.ModPlan[i].Ident);
    }
    return out;
}

std::string LegFixes(const SelectedLegTable& legs) {
    std::string out;
    for (int i = 1; i <= legs.count; ++i) {
        if (i > 1) out += ' ';
        out += TextOf(legs.rows[i].Fix);
    }
    return out;
}

void SetListRow(ProcedureListEntry& entry, const char* name) { SetText(entry.Name, name); }
}  // namespace

static void ClearRecord(ProcedureRecord& r) {
    r.Name = {};
    r.ApproachIdent = {};
    r.Extra = {};
    r.Runways = {};
    r.LegCount = 0;
}

TEST_F(PlanEdit, ProcedureKeysChooseBuildAndInsert) {
    SetAirportSlot(g_airports.OriginAirport, "KSEA", 47.45, -122.31);
    SetAirportSlot(g_airports.DestinationAirport, "KPDX", 45.59, -122.6);
    SetModPlan({"KSEA", "ENR", "KPDX"});
    g_plan.context.ActiveLeg = 1;
    g_plan.context.PlanState = 3;
    PlanSelections& sel = g_plan.context.Selections;
    OriginProcedures& origin = g_procedures.origin;
    // The tables are megabytes: reset in place, not through a temporary on the stack.
    for (int i = 1; i <= 2; ++i) ClearRecord(origin.SidTable[i]);
    origin.SidCount = 0;
    origin.SelectedSidRow = 0;
    origin.lists = ProcedureLists{};
    SetText(origin.SidTable[1].Name, "HAROB6");
    SetText(origin.SidTable[2].Name, "SUMMA1");
    origin.SidCount = 2;
    auto& names = origin.lists.ProcedureNameList;
    SetListRow(names.rows[1], "HAROB6");
    SetListRow(names.rows[2], "SUMMA1");
    names.count = 2;
    SetLegs(g_selected_legs.Sid, {"SUMMA", "SUMMB"});
    SetText(sel.DepartureRunway, "16L");

    // A SID from its line: named, found in its table, its legs in the plan.
    ChooseSid(2, 0);
    EXPECT_STREQ(sel.SidName.data(), "SUMMA1");
    EXPECT_EQ(origin.SelectedSidRow, 2);
    EXPECT_STREQ(sel.SavedDepartureRunway.data(), "16L");
    // Whatever legs the SID was built to stand in the plan, in front of the enroute rows.
    std::string legs = LegFixes(g_selected_legs.Sid);
    EXPECT_EQ(KindRows("SID"), legs);
    EXPECT_EQ(ModIdents(), "KSEA " + legs + (legs.empty() ? "" : " ") + "ENR KPDX");
    EXPECT_EQ(g_plan.context.PlanState, 4);
    EXPECT_GE(g_route_rows.count, 1);
    ChooseSid(3, 0);  // no such line: nothing changes
    EXPECT_STREQ(sel.SidName.data(), "SUMMA1");

    // A departure runway from the right keys builds the chosen SID again.
    auto& runways = origin.lists.RunwayList;
    SetListRow(runways.rows[1], "16L");
    SetListRow(runways.rows[2], "34R");
    runways.count = 2;
    g_plan.context.PlanState = 3;
    ChooseDepartureRunway(2);
    EXPECT_STREQ(sel.DepartureRunway.data(), "34R");
    EXPECT_EQ(g_smiths.DepartureRunwayChosen, 1);
    EXPECT_STREQ(sel.SidName.data(), "SUMMA1");
    EXPECT_EQ(KindRows("SID"), LegFixes(g_selected_legs.Sid));
    EXPECT_EQ(g_plan.context.PlanState, 4);
    ChooseDepartureRunway(3);
    EXPECT_STREQ(sel.DepartureRunway.data(), "34R");

    // A STAR of one runway chooses that runway too.
    DestinationProcedures& dest = g_procedures.destination;
    ClearRecord(dest.StarTable[1]);
    dest.StarCount = 0;
    dest.ApproachCount = 0;
    dest.SelectedStarRow = 0;
    dest.lists = ProcedureLists{};
    SetText(dest.StarTable[1].Name, "OLM5");
    SetText(dest.StarTable[1].Runways, "10R");  // the runway list is made from it
    dest.StarCount = 1;
    SetListRow(dest.lists.ProcedureNameList.rows[1], "OLM5");
    dest.lists.ProcedureNameList.count = 1;
    SetLegs(g_selected_legs.Star, {"OLM", "RIVER"});
    ChooseStar(1, 0);
    EXPECT_STREQ(sel.StarName.data(), "OLM5");
    EXPECT_EQ(dest.SelectedStarRow, 1);
    EXPECT_STREQ(sel.ArrivalRunway.data(), "10R");
    EXPECT_STREQ(sel.SavedArrivalRunway.data(), "10R");
    EXPECT_EQ(KindRows("STAR"), LegFixes(g_selected_legs.Star));
    EXPECT_EQ(std::string(TextOf(g_plan.ModPlan[g_plan.context.ModLastRow].Ident)), "KPDX");
}

TEST_F(PlanEdit, AFullPlanTakesNoMoreRows) {
    SetModPlan({"KSEA", "KPDX"});
    PlanContext& pc = g_plan.context;
    for (int i = 0; i <= kPlanLastRowLimit; ++i) {
        g_plan.ModPlan[i] = PlanWaypoint{};
        SetText(g_plan.ModPlan[i].Ident, ("R" + std::to_string(i)).c_str());
    }
    pc.ModLastRow = kPlanLastRowLimit;
    SetCandidate("EXTRA", 45, -120, "I");
    InsertCandidate(100, 1);
    InsertThen(50);
    EXPECT_EQ(pc.ModLastRow, kPlanLastRowLimit);
    EXPECT_STREQ(g_plan.ModPlan[100].Ident.data(), "R100");
    // The approach stops at the limit, the end marker still has its row.
    SetLegs(g_selected_legs.Approach, {"A1", "A2", "A3"});
    DeleteRow(kPlanLastRowLimit, 0);
    InsertApproach(0);
    EXPECT_EQ(pc.ModLastRow, kPlanLastRowLimit);
    EXPECT_STREQ(g_plan.ModPlan[kPlanLastRowLimit].Ident.data(), "A1");
    EXPECT_STREQ(g_plan.ModPlan[kPlanLastRowLimit + 1].Ident.data(), "******");
}
