// procedures_test.cpp: the procedure files read into the airport slots: coded
// legs land where the geometry puts them (worked out here with vector
// spherical geometry, not the module's formulas), runway matching, the page
// lists, the chosen legs, the user files and the section index.
#include "navdata/sim_folder.h"

#include "fuzz/nav_fuzz_entries.h"

#include "frame/data_text.h"
#include "guidance/geodesy.h"
#include "navdata/magnetic_model.h"
#include "navdata/procedures.h"

#include <cmath>
#include <string>
#include <fstream>
#include <sstream>
#include <vector>

namespace {
// [SECTION] Independent spherical geometry: unit vectors on a sphere of one
// minute of arc a mile.
constexpr double kR = 10800.0 / 3.14159265358979323846;
constexpr double kD = 3.14159265358979323846 / 180.0;

struct Vec {
    double x, y, z;
};
Vec Add(Vec a, Vec b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Vec Scale(Vec a, double s) { return {a.x * s, a.y * s, a.z * s}; }
double Dot(Vec a, Vec b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Vec Cross(Vec a, Vec b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
Vec Unit(Vec a) { return Scale(a, 1.0 / std::sqrt(Dot(a, a))); }
Vec ToVec(double lat, double lon) {
    return {std::cos(lat * kD) * std::cos(lon * kD), std::cos(lat * kD) * std::sin(lon * kD), std::sin(lat * kD)};
}
struct Pos {
    double lat, lon;
};
Pos ToPos(Vec v) { return {std::atan2(v.z, std::hypot(v.x, v.y)) / kD, std::atan2(v.y, v.x) / kD}; }
Vec East(Vec p) { return Unit({-p.y, p.x, 0}); }
Vec North(Vec p) { return Cross(p, East(p)); }
// Unit direction of a true bearing at p.
Vec Heading(Vec p, double bearing) { return Add(Scale(North(p), std::cos(bearing * kD)), Scale(East(p), std::sin(bearing * kD))); }
Pos Along(Pos from, double bearing, double nm) {
    Vec p = ToVec(from.lat, from.lon);
    double a = nm / kR;
    return ToPos(Add(Scale(p, std::cos(a)), Scale(Heading(p, bearing), std::sin(a))));
}
double Nm(Pos a, Pos b) {
    Vec u = ToVec(a.lat, a.lon), v = ToVec(b.lat, b.lon);
    return std::atan2(std::sqrt(Dot(Cross(u, v), Cross(u, v))), Dot(u, v)) * kR;
}
double BearingTo(Pos a, Pos b) {
    Vec u = ToVec(a.lat, a.lon), v = ToVec(b.lat, b.lon);
    double br = std::atan2(Dot(v, East(u)), Dot(v, North(u))) / kD;
    return br < 0 ? br + 360 : br;
}
// Where the course from `a` meets the great circle of the radial at `b`, ahead of `a`.
Pos Crossing(Pos a, double course_a, Pos b, double radial_b) {
    Vec pa = ToVec(a.lat, a.lon), pb = ToVec(b.lat, b.lon);
    Vec da = Heading(pa, course_a);
    Vec x = Unit(Cross(Cross(pa, da), Cross(pb, Heading(pb, radial_b))));
    if (Dot(x, da) < 0) x = Scale(x, -1);
    return ToPos(x);
}

// [SECTION] Fixture
void ResetProcedures() {
    // The tables are megabytes: counts and lists start over, not the rows.
    g_procedures.origin.SidCount = 0;
    g_procedures.origin.SelectedSidRow = 0;
    g_procedures.origin.lists = ProcedureLists{};
    g_procedures.destination.StarCount = 0;
    g_procedures.destination.ApproachCount = 0;
    g_procedures.destination.ApproachNameCount = 0;
    g_procedures.destination.SelectedStarRow = 0;
    g_procedures.destination.lists = ProcedureLists{};
    g_selected_legs = SelectedLegSet{};
}

void AddRunway(AirportDetail& a, const char* ident, double lat, double lon, double heading) {
    RunwayRecord& r = a.Runways[++a.RunwayCount];
    r = RunwayRecord{};
    SetText(r.Ident, ident);
    r.Latitude = lat;
    r.Longitude = lon;
    r.Heading = heading;
}

// A made-up airport at 47.0 N 122.0 W, elevation 500 ft: runways 16L/34R and 16R/34L.
void SetAirport(AirportDetail& a) {
    a = AirportDetail{};
    SetText(a.Ident, "KTST");
    a.Latitude = 46.98;
    a.Longitude = -122.0;
    a.ElevationFt = 500;
    AddRunway(a, "16L", 47.0, -122.0, 160);
    AddRunway(a, "34R", 46.96, -122.0, 340);
    AddRunway(a, "16R", 47.0, -122.01, 160);
    AddRunway(a, "34L", 46.96, -122.01, 340);
}

struct ProcedureSim {
    SimFolder sim;
    ProcedureSim() {
        ResetProcedures();
        SetAirport(g_airports.OriginAirport);
        SetAirport(g_airports.DestinationAirport);
    }
};

const ProcedureRecord* Sid(std::string_view name) {
    for (int i = 1; i <= g_procedures.origin.SidCount; ++i)
        if (TextOf(g_procedures.origin.SidTable[i].Name) == name) return &g_procedures.origin.SidTable[i];
    return nullptr;
}

std::string Fixes(const ProcedureRecord& r) {
    std::string out;
    for (int i = 1; i <= r.LegCount; ++i) out += (i > 1 ? " " : "") + std::string(TextOf(r.Legs[i].Fix));
    return out;
}

std::string Rows(const SelectedLegTable& t) {
    std::string out;
    for (int i = 1; i <= t.count; ++i) out += (i > 1 ? " " : "") + std::string(TextOf(t.rows[i].Fix));
    return out;
}

template <int N>
std::string Names(const ProcedureList<N>& list) {
    std::string out;
    for (int i = 1; i <= list.count; ++i) out += (i > 1 ? " " : "") + std::string(TextOf(list.rows[i].Name));
    return out;
}

void Select(PlanText& field, const char* text) { field = MakePlanText(text); }

double Var() { return MagneticVariation(46, -122); }
}  // namespace

// [SECTION] Coded legs
TEST(Procedures, SidCodedLegsLandWhereTheGeometryPutsThem) {
    ProcedureSim p;
    p.sim.Write("orb/navdata/sids.txt",
                "[KAAA]\n"
                "T OTHER1 X 16L\n"
                "OTHER1 ZZZZZ --- --- 1 1\n"
                "[KTST]\n"
                "T DEP1 DEP1 16L,16R\n"
                "DEP1 /T160/UA 3000 16B 0 0\n"
                "DEP1 /RT/H250/UA 6000 16B 0 0\n"
                "DEP1 /H250/UD20 --- 16B 47.0 -122.0\n"
                "DEP1 /LT/H180/IC090 --- 16B 46.8 -122.5\n"
                "DEP1 FIXAA 5000A --- 46.5 -122.6 fo\n"
                "[KZZZ]\n"
                "T LATER1 X 16L\n");
    LoadSids("KTST");
    double var = g_procedures.origin.OriginMagVar;
    EXPECT_EQ(var, Var());
    EXPECT_GT(var, 10);  // the Pacific Northwest is well east
    ASSERT_EQ(g_procedures.origin.SidCount, 1);
    const ProcedureRecord& r = *Sid("DEP1");
    EXPECT_EQ(TextOf(r.Extra), "DEP1");
    EXPECT_EQ(TextOf(r.Runways), "16L,16R");
    EXPECT_EQ(Fixes(r), "TR160 HD250 HD250 HD180 FIXAA");
    ASSERT_EQ(r.LegCount, 5);

    // No turn: 2500 ft at 1500 ft per 3.1667 nm, straight along 160 magnetic from 16L.
    Pos threshold{47.0, -122.0};
    double climb1 = 2500.0 / 1500.0 * (19.0 / 6.0);
    Pos tr160 = Along(threshold, 160 + var, climb1);
    EXPECT_NEAR(Nm(tr160, {r.Legs[1].Latitude, r.Legs[1].Longitude}), 0, 0.005);
    EXPECT_EQ(TextOf(r.Legs[1].Restriction), "3000");

    // A right turn of 90: the chord of a quarter turn (1.25 nm each way), then the rest along 250.
    double chord = std::sqrt(2.0) * 90.0 / 72.0;
    Pos after_turn = Along(tr160, 205 + var, chord);
    double climb2 = 5500.0 / 1500.0 * (19.0 / 6.0);
    Pos hd250 = Along(after_turn, 250 + var, climb2 - chord);
    EXPECT_NEAR(Nm(hd250, {r.Legs[2].Latitude, r.Legs[2].Longitude}), 0, 0.005);

    // Until 20 nm from the reference (13 nm off at the start): on the course line,
    // 20 nm off the reference, near the first such point.
    Pos ref{47.0, -122.0};
    Pos ud{r.Legs[3].Latitude, r.Legs[3].Longitude};
    EXPECT_GT(Nm(hd250, ref), 12);
    EXPECT_NEAR(Nm(ud, ref), 20, 0.1);
    EXPECT_NEAR(BearingTo(hd250, ud), 250 + var, 0.05);
    double lo = 0, hi = 50;  // the exact distance along, by bisection: farther is farther from the reference
    for (int i = 0; i < 60; ++i) {
        double mid = (lo + hi) / 2;
        (Nm(Along(hd250, 250 + var, mid), ref) < 20 ? lo : hi) = mid;
    }
    EXPECT_NEAR(Nm(hd250, ud), lo, 0.25);

    // Intercept R-090 of the reference with a left turn of 70 from 250: the
    // crossing, then 70 x 0.0194 nm on along the radial.
    Pos station{46.8, -122.5};
    Pos cross = Crossing(ud, 180 + var, station, 90 + var);
    Pos ic = Along(cross, 90 + var, 70 * 0.019444444444444445);
    EXPECT_NEAR(Nm(ic, {r.Legs[4].Latitude, r.Legs[4].Longitude}), 0, 0.01);

    // A fix line: its position, restriction, fly-over from a lower-case "fo".
    EXPECT_DOUBLE_EQ(r.Legs[5].Latitude, 46.5);
    EXPECT_EQ(TextOf(r.Legs[5].Restriction), "5000A");
    EXPECT_EQ(r.Legs[5].Flyover, 1);
    EXPECT_EQ(r.Legs[4].Flyover, 0);
}

TEST(Procedures, TurnChordsFollowTheTurnTable) {
    // Quarter-turn units of 72 degrees; the table is symmetric about 180.
    EXPECT_NEAR(TurnChordLength(45), 0.883883, 1e-6);   // 2 x 0.625^2
    EXPECT_NEAR(TurnChordLength(135), 1.976424, 1e-6);  // 1.875^2 + 0.625^2
    EXPECT_NEAR(TurnChordLength(225), 1.976424, 1e-6);
    EXPECT_NEAR(TurnChordLength(315), 0.883883, 1e-6);
    EXPECT_NEAR(TurnAngle(LegTurn::Right, 90, 341), 109, 1e-9);
    EXPECT_NEAR(TurnAngle(LegTurn::Left, 60, 161), 101, 1e-9);
    EXPECT_EQ(TurnAngle(LegTurn::None, 60, 161), 0);

    // A right turn of 110 from runway 34R (340) to 090, climbing to 5000: the chord along 090 - 55.
    ProcedureSim p;
    p.sim.Write("orb/navdata/sids.txt",
                "[KTST]\n"
                "T DEP2 X 34R\n"
                "DEP2 /RT/H090/UA 5000 34R 0 0\n");
    LoadSids("KTST");
    double var = g_procedures.origin.OriginMagVar;
    const ProcedureRecord& r = *Sid("DEP2");
    ASSERT_EQ(r.LegCount, 1);
    double a = 110.0 / 72.0;
    double chord = std::sqrt(a * a + (2.5 - a) * (2.5 - a));
    Pos end_of_turn = Along({46.96, -122.0}, 90 - 110.0 / 2 + var, chord);
    Pos fix = Along(end_of_turn, 90 + var, 4500.0 / 1500.0 * (19.0 / 6.0) - chord);
    EXPECT_NEAR(Nm(fix, {r.Legs[1].Latitude, r.Legs[1].Longitude}), 0, 0.005);
    EXPECT_EQ(TextOf(r.Legs[1].Fix), "HD090");
}

TEST(Procedures, InterceptsWithAndWithoutASolution) {
    ProcedureSim p;
    // Ref to the east; the course north from the west crosses R-090's reciprocal side:
    // the first try (reciprocal) answers. Then a radial at the start itself: no
    // triangle either way, the leg goes and reading goes on.
    p.sim.Write("orb/navdata/sids.txt",
                "[KTST]\n"
                "T DEP3 X 16L\n"
                "DEP3 START --- 16L 46.7 -122.3\n"
                "DEP3 /T000/IC090 --- 16L 46.9 -121.9\n"
                "DEP3 AFTER --- 16L 46.0 -122.3\n"
                "DEP3 /T180/IC270 --- 16L 0 0\n"
                "DEP3 LAST --- 16L 45.0 -122.0\n");
    LoadSids("KTST");
    double var = g_procedures.origin.OriginMagVar;
    const ProcedureRecord& r = *Sid("DEP3");
    EXPECT_EQ(Fixes(r), "START TR000 AFTER LAST");
    Pos cross = Crossing({46.7, -122.3}, var, {46.9, -121.9}, 90 + var);
    EXPECT_NEAR(Nm(cross, {r.Legs[2].Latitude, r.Legs[2].Longitude}), 0, 0.01);
    EXPECT_LT(r.Legs[2].Longitude, -121.9);  // west of the station: the reciprocal side

    // The same crossing straight from the operation, with the radial given either way.
    LegCode code;
    ASSERT_TRUE(ParseLegCode("/T000/IC270", code));
    CodedLegInput in;
    in.start_lat = 46.7;
    in.start_lon = -122.3;
    in.reference_lat = 46.9;
    in.reference_lon = -121.9;
    in.magvar = var;
    double lat = 0, lon = 0;
    ASSERT_TRUE(ComputeCodedFix(code, in, lat, lon));
    EXPECT_NEAR(Nm(cross, {lat, lon}), 0, 0.01);
    // The station at the start: no crossing to find.
    in.reference_lat = in.start_lat;
    in.reference_lon = in.start_lon;
    EXPECT_FALSE(ComputeCodedFix(code, in, lat, lon));
    // A code without a course, or a vectored one, computes nothing.
    ASSERT_TRUE(ParseLegCode("/UA", code));
    EXPECT_FALSE(ComputeCodedFix(code, in, lat, lon));
    ASSERT_TRUE(ParseLegCode("/H180/VT", code));
    EXPECT_EQ(code.terminator, LegTerminator::Vectors);
    EXPECT_FALSE(ComputeCodedFix(code, in, lat, lon));
    EXPECT_FALSE(ParseLegCode("T180", code));
}

TEST(Procedures, RadialIntersectionCrossesOrRefuses) {
    double lat = 0, lon = 0;
    // Due north from one point and due west from another to its north-east.
    ASSERT_EQ(RadialIntersection(40.0, -100.0, 360.0, 41.0, -99.0, 270.0, lat, lon), 0);
    Pos expect = Crossing({40.0, -100.0}, 0, {41.0, -99.0}, 270);
    EXPECT_NEAR(Nm(expect, {lat, lon}), 0, 0.01);
    // Crossing the date line and the equator.
    ASSERT_EQ(RadialIntersection(-1.0, 179.5, 45.0, 1.0, 179.5, 135.0, lat, lon), 0);
    expect = Crossing({-1.0, 179.5}, 45, {1.0, 179.5}, 135);
    EXPECT_NEAR(Nm(expect, {lat, lon}), 0, 0.01);
    // One course along the great circle through both: no triangle.
    EXPECT_EQ(RadialIntersection(40.0, -100.0, 0.0, 41.0, -100.0, 0.0, lat, lon), kNoIntersection);
    // One radial toward the crossing, the other away from it.
    EXPECT_EQ(RadialIntersection(40.0, -100.0, 0.0, 41.0, -99.0, 90.0, lat, lon), kNoIntersection);
    // One place twice, and bytes that aren't numbers.
    EXPECT_EQ(RadialIntersection(40.0, -100.0, 10.0, 40.0, -100.0, 80.0, lat, lon), kNoIntersection);
    EXPECT_EQ(RadialIntersection(NAN, -100.0, 10.0, 40.0, -100.0, 80.0, lat, lon), kNoIntersection);
}

TEST(Procedures, ApproachProcedureTurnAndMarkers) {
    ProcedureSim p;
    p.sim.Write("orb/navdata/apps.txt",
                "[KTST]\n"
                "16L APP16 ALPHA ALPHA --- 47.3 -121.9 ALPHA 6000 0\n"
                "16L APP16 IAFIX IAF 6000A 47.2 -122.0 ALPHA 6000 0\n"
                "16L APP16 BRAVO IAF --- 47.4 -122.1 --- 7000 0\n"
                "16L APP16 STARI IAF* --- 47.25 -122.05 --- 6000 0\n"
                "16L APP16 /RT/H160 --- 6000 47.2 -122.0 --- 6000 0\n"
                "16L APP16 IAFIX --- 5000A 47.2 -122.0 --- 5000 0\n"
                "16L APP16 FAFIX FAF 3000A 47.1 -122.0 --- 3000 150\n"
                "16L APP16 RW16L MAP --- 47.0 -122.0 --- 520 0 FO\n"
                "16L APP16 MISSD MAF --- 46.9 -122.0 --- 4000 0\n"
                "16L APP16 HOLDA HP --- 46.8 -122.0 HOLDS 4000 0\n"
                "-- VOR-A VORFX IAF --- 47.5 -122.5 --- 5000 0\n"
                "* separator\n");
    LoadApproaches("KTST");
    const DestinationProcedures& d = g_procedures.destination;
    ASSERT_EQ(d.ApproachCount, 2);
    ASSERT_EQ(d.ApproachNameCount, 2);
    EXPECT_EQ(ApproachRowOf("APP16"), 1);
    EXPECT_EQ(ApproachRowOf("VOR-A"), 2);
    const ProcedureRecord& r = d.ApproachTable[1];
    EXPECT_EQ(TextOf(r.Runways), "16L");
    EXPECT_EQ(TextOf(d.ApproachTable[2].Runways), "");
    EXPECT_EQ(Fixes(r), "ALPHA IAFIX BRAVO STARI HD340 PT070 IAFIX FAFIX RW16L MISSD HOLDA");
    // The transition column wins over the marker.
    EXPECT_EQ(TextOf(r.Legs[2].Marker), "ALPHA");
    EXPECT_EQ(TextOf(r.Legs[11].Marker), "HOLDS");
    EXPECT_DOUBLE_EQ(r.Legs[8].LegSpeed, 150);
    EXPECT_DOUBLE_EQ(r.Legs[9].LegAltitude, 520);

    // The turn: heading 160 inbound with a right turn is 340 outbound, 3 nm off
    // the reference; then a quarter turn right (070), 1 nm on.
    double var = d.DestinationMagVar;
    Pos out = Along({47.2, -122.0}, 340 + var, 3.0);
    Pos side = Along(out, 70 + var, 1.0);
    EXPECT_NEAR(Nm(out, {r.Legs[5].Latitude, r.Legs[5].Longitude}), 0, 0.005);
    EXPECT_NEAR(Nm(side, {r.Legs[6].Latitude, r.Legs[6].Longitude}), 0, 0.005);

    // Without a transition: the approach's own markers; "IAF" and "MAF" rows
    // belong to none, the shown marker only for IAF, MAP, FAF, ARC, HP.
    PlanSelections& sel = g_plan.context.Selections;
    Select(sel.ApproachName, "APP16");
    Select(sel.ArrivalRunway, "16L");
    BuildApproachLegs();
    EXPECT_EQ(Rows(g_selected_legs.Approach), "STARI HD340 PT070 IAFIX FAFIX RW16L");
    EXPECT_EQ(TextOf(g_selected_legs.Approach.rows[5].Marker), "FAF");
    EXPECT_EQ(TextOf(g_selected_legs.Approach.rows[6].Marker), "MAP");
    EXPECT_EQ(TextOf(g_selected_legs.Approach.rows[1].Marker), "");
    EXPECT_EQ(g_selected_legs.Approach.rows[6].Flyover, 1);
    // With the transition: its legs too, in file order.
    Select(sel.ApproachTransition, "ALPHA");
    BuildApproachLegs();
    EXPECT_EQ(Rows(g_selected_legs.Approach), "ALPHA IAFIX STARI HD340 PT070 IAFIX FAFIX RW16L");
    EXPECT_EQ(TextOf(g_selected_legs.Approach.RouteName), "APP16.ALPHA");
    // Another runway's approach legs stay out.
    Select(sel.ArrivalRunway, "34R");
    BuildApproachLegs();
    EXPECT_EQ(g_selected_legs.Approach.count, 0);

    ListApproaches("16L");
    EXPECT_EQ(Names(d.lists.ApproachNameList), "APP16 VOR-A");  // the circling one serves every runway
    ListApproaches("34R");
    EXPECT_EQ(Names(d.lists.ApproachNameList), "VOR-A");
    ListApproachTransitions("APP16");
    EXPECT_EQ(Names(d.lists.ApproachTransitionList), "ALPHA HOLDS");
    EXPECT_EQ(ApproachTransitionRowOf("APP16", "HOLDS"), 2);
    EXPECT_EQ(ApproachTransitionRowOf("APP16", "NONE"), 0);
}

// [SECTION] Runways, lists and chosen legs
TEST(Procedures, RunwayMatching) {
    EXPECT_TRUE(RunwayNameMatches("16L", "16L"));
    EXPECT_FALSE(RunwayNameMatches("16L", "16R"));
    EXPECT_TRUE(RunwayNameMatches("16B", "16L"));
    EXPECT_TRUE(RunwayNameMatches("16B", "16R"));
    EXPECT_FALSE(RunwayNameMatches("16B", "34R"));
    EXPECT_TRUE(RunwayNameMatches("RW16L", "16L"));
    EXPECT_FALSE(RunwayNameMatches("RW16L", "16R"));
    EXPECT_FALSE(RunwayNameMatches("16", "16L"));
    EXPECT_FALSE(RunwayNameMatches("", "16L"));

    ProcedureSim p;
    p.sim.Write("orb/navdata/sids.txt",
                "[KTST]\n"
                "T TWO1 X 16L,34R\n"
                "TWO1 AAAAA --- --- 47 -122\n"
                "T ALL1 X\n"
                "ALL1 BBBBB --- --- 47 -122\n"
                "T LEFT1 X 16L\n"
                "LEFT1 CCCCC --- --- 47 -122\n"
                "T TWIN1 X 16L,16R\n"
                "TWIN1 NORTH --- --- 47 -122\n"
                "T TWIN1 X 34L,34R\n"
                "TWIN1 SOUTH --- --- 46 -122\n");
    LoadSids("KTST");
    const auto& names = g_procedures.origin.lists.ProcedureNameList;
    ListSids("16", "------");  // ",16," is in none of the lists
    EXPECT_EQ(Names(names), "ALL1");
    ListSids("16L", "------");
    EXPECT_EQ(Names(names), "TWO1 ALL1 LEFT1 TWIN1");
    ListSids("34R", "------");
    EXPECT_EQ(Names(names), "TWO1 ALL1 TWIN1");
    ListSids("------", "------");
    EXPECT_EQ(Names(names), "TWO1 ALL1 LEFT1 TWIN1");
    ListSidRunways("TWO1");
    EXPECT_EQ(Names(g_procedures.origin.lists.RunwayList), "16L 34R");
    ListSidRunways("TWIN1");
    EXPECT_EQ(Names(g_procedures.origin.lists.RunwayList), "16L 16R 34L 34R");
    // One name headed twice: each head keeps its own legs, and the runway chooses.
    ASSERT_EQ(g_procedures.origin.SidCount, 5);
    EXPECT_EQ(Fixes(g_procedures.origin.SidTable[4]), "NORTH");
    EXPECT_EQ(Fixes(g_procedures.origin.SidTable[5]), "SOUTH");
    PlanSelections& sel = g_plan.context.Selections;
    Select(sel.SidName, "TWIN1");
    Select(sel.DepartureRunway, "34L");
    BuildSidLegs();
    EXPECT_EQ(Rows(g_selected_legs.Sid), "SOUTH");
    Select(sel.DepartureRunway, "16R");
    BuildSidLegs();
    EXPECT_EQ(Rows(g_selected_legs.Sid), "NORTH");
}

TEST(Procedures, TransitionsSortedSharedEndAndRunwayLegs) {
    ProcedureSim p;
    p.sim.Write("orb/navdata/sids.txt",
                "[KTST]\n"
                "T MAIN1 X 16L,16R,34R\n"
                "MAIN1 /T160/UA 2000 16B 0 0\n"
                "MAIN1 /T340/UA 2000 34R 0 0\n"
                "MAIN1 COMMN 5000A --- 47.2 -122.2\n"
                "MAIN1.ZULU ZULUU --- --- 47.5 -122.5\n"
                "MAIN1.ALFA ALFAA --- --- 47.6 -122.6\n"
                "MAIN1.MIKE MIKEE --- --- 47.7 -122.7\n"
                "MAIN1.ALFA ALFAB --- --- 47.8 -122.8\n"
                "MAIN1.SKIP --- --- --- 47.9 -122.9\n"
                "MAIN1.SKIP\n"
                "*\n"
                "T RWY1 X 16L,16R,34R\n"
                "RWY1.RW16 /T160/UA 1500 16B 0 0\n"
                "RWY1.RW34 /T340/UA 1500 34R 0 0\n"
                "RWY1.RW34 ENDFX 6000A --- 46.5 -122.5\n"
                ";\n");
    LoadSids("KTST");
    const OriginProcedures& o = g_procedures.origin;
    ASSERT_EQ(o.SidCount, 2);
    // "---" and empty second columns skip their lines.
    EXPECT_EQ(Fixes(*Sid("MAIN1")), "TR160 TR340 COMMN ZULUU ALFAA MIKEE ALFAB");
    // Every leg of RWY1 is a transition's: its last one is the shared end.
    const ProcedureRecord& rwy = *Sid("RWY1");
    ASSERT_EQ(rwy.LegCount, 3);
    EXPECT_EQ(TextOf(rwy.Legs[3].Transition), "ENDFX");
    EXPECT_EQ(TextOf(rwy.Legs[3].EndMark), "*");
    EXPECT_EQ(TextOf(rwy.Legs[2].EndMark), "");
    EXPECT_EQ(TextOf(Sid("MAIN1")->Legs[7].EndMark), "");

    ListSidTransitions("MAIN1", "16L", 0);
    EXPECT_EQ(Names(o.lists.TransitionList), "ALFA MIKE ZULU");
    EXPECT_EQ(o.lists.TransitionList.rows[1].Row, 5);  // the first leg of ALFA
    ListSidTransitions("RWY1", "------", 0);
    EXPECT_EQ(Names(o.lists.TransitionList), "ENDFX RW16 RW34");
    ListSidTransitions("RWY1", "------", 1);
    EXPECT_EQ(Names(o.lists.TransitionList), "RW16 RW34");
    ListSids("16R", "MIKE");
    EXPECT_EQ(Names(o.lists.ProcedureNameList), "MAIN1");

    // A runway transition ends on the shared fix; the other runway's legs stay out.
    PlanSelections& sel = g_plan.context.Selections;
    Select(sel.SidName, "RWY1");
    Select(sel.SidTransition, "RW16");
    Select(sel.DepartureRunway, "16R");
    BuildSidLegs();
    EXPECT_EQ(Rows(g_selected_legs.Sid), "TR160 ENDFX");
    EXPECT_EQ(TextOf(g_selected_legs.Sid.RouteName), "RWY1.RW16");
    EXPECT_EQ(TextOf(g_selected_legs.Sid.rows[1].Via), "");
    EXPECT_EQ(TextOf(g_selected_legs.Sid.rows[2].Via), "RWY1.RW16");
    // "16B" serves 16R; the 34R leg and other transitions don't come along.
    Select(sel.SidName, "MAIN1");
    Select(sel.SidTransition, "ALFA");
    BuildSidLegs();
    EXPECT_EQ(Rows(g_selected_legs.Sid), "TR160 COMMN ALFAA ALFAB");
    EXPECT_EQ(TextOf(g_selected_legs.Sid.rows[1].Restriction), "2000");
    // No runway: only the legs for all runways.
    Select(sel.DepartureRunway, "------");
    Select(sel.SidTransition, "------");
    BuildSidLegs();
    EXPECT_EQ(Rows(g_selected_legs.Sid), "COMMN");
    EXPECT_EQ(TextOf(g_selected_legs.Sid.RouteName), "MAIN1");
}

TEST(Procedures, StarsVectorsAndFirstCodedLeg) {
    ProcedureSim p;
    p.sim.Write("orb/navdata/stars.txt",
                "[KTST]\n"
                "T ARR1 X 16L,16R\n"
                "ARR1.WEST WESTX /H090/UD5 FL200B --- 47.0 -123.0\n"
                "ARR1.WEST WESTY --- --- 47.0 -122.8\n"
                "ARR1.EAST EASTX --- --- 47.2 -121.0\n"
                "ARR1 MERGE 9000A --- 47.3 -122.3\n"
                "ARR1 /H180/VT --- --- 0 0\n"
                "ARR1 /H180/IC270 7000A --- 0 0\n"
                "ARR1 STATN 5000A --- 47.0 -121.6\n"
                "ARR1 /H250/UD3 --- 16B 47.0 -122.0\n"
                "ARR1 /H250/IC999 --- --- 0 0\n");
    LoadStars("KTST");
    const DestinationProcedures& d = g_procedures.destination;
    ASSERT_EQ(d.StarCount, 1);
    const ProcedureRecord& r = d.StarTable[1];
    // The first leg is a plain fix at its columns; the vectored line is dropped; the
    // last intercept has nothing behind it to take its station from.
    EXPECT_EQ(Fixes(r), "WESTX WESTY EASTX MERGE HD180 STATN HD250");
    EXPECT_DOUBLE_EQ(r.Legs[1].Longitude, -123.0);
    EXPECT_EQ(TextOf(r.Legs[1].Restriction), "FL200B");
    // The intercept took the next line's position as its station: south from MERGE onto STATN's R-270.
    double var = d.DestinationMagVar;
    Pos cross = Crossing({47.3, -122.3}, 180 + var, {47.0, -121.6}, 270 + var);
    EXPECT_NEAR(Nm(cross, {r.Legs[5].Latitude, r.Legs[5].Longitude}), 0, 0.01);
    EXPECT_EQ(TextOf(r.Legs[5].Restriction), "7000A");
    // The bearing STATN was reached on is the course the distance leg's turn would start from;
    // the distance leg runs from STATN.
    Pos ud{r.Legs[7].Latitude, r.Legs[7].Longitude};
    EXPECT_NEAR(Nm(ud, {47.0, -122.0}), 3, 0.1);
    EXPECT_NEAR(BearingTo({47.0, -121.6}, ud), 250 + var, 0.05);

    // The transition first, then the body.
    PlanSelections& sel = g_plan.context.Selections;
    Select(sel.StarName, "ARR1");
    Select(sel.StarTransition, "WEST");
    Select(sel.ArrivalRunway, "16L");
    BuildStarLegs();
    EXPECT_EQ(Rows(g_selected_legs.Star), "WESTX WESTY MERGE HD180 STATN HD250");
    Select(sel.ArrivalRunway, "34R");
    BuildStarLegs();
    EXPECT_EQ(Rows(g_selected_legs.Star), "WESTX WESTY MERGE HD180 STATN");
    ListStarTransitions("ARR1", "------", 1);
    EXPECT_EQ(Names(d.lists.TransitionList), "EAST WEST");
    ListStars("16R", "EAST");
    EXPECT_EQ(Names(d.lists.ProcedureNameList), "ARR1");
    ListStarRunways("ARR1");
    EXPECT_EQ(Names(d.lists.RunwayList), "16L 16R");
}

// [SECTION] Files
TEST(Procedures, UserFilesOnlyForAirportsTheMainFileLacks) {
    ProcedureSim p;
    p.sim.Write("orb/navdata/sids.txt", "[KAAA]\nT MAIN1 X 16L\nMAIN1 AAAAA --- --- 1 1\n");
    p.sim.Write("orb/navdata/sids_user.txt",
                "[KAAA]\nT USER1 X 16L\nUSER1 BBBBB --- --- 1 1\n"
                "[KTST]\nT USER2 X 16L\nUSER2 CCCCC --- --- 1 1\n");
    p.sim.Write("orb/navdata/stars_user.txt", "[KTST]\nT USTAR X 16L\nUSTAR DDDDD --- --- 1 1\n");
    LoadSids("KAAA");
    ASSERT_EQ(g_procedures.origin.SidCount, 1);
    EXPECT_NE(Sid("MAIN1"), nullptr);
    LoadSids("KTST");
    ASSERT_EQ(g_procedures.origin.SidCount, 1);
    EXPECT_NE(Sid("USER2"), nullptr);
    // No main STAR file at all: the user file serves.
    LoadStars("KTST");
    ASSERT_EQ(g_procedures.destination.StarCount, 1);
    EXPECT_EQ(TextOf(g_procedures.destination.StarTable[1].Name), "USTAR");
    // An airport in neither file leaves the table empty.
    LoadSids("KNONE");
    EXPECT_EQ(g_procedures.origin.SidCount, 0);
}

TEST(Procedures, SectionIndexFindsSectionsAndNoticesChangedFiles) {
    ProcedureSim p;
    std::string first = "; header\n[KAAA]\nT AAA1 X 16L\nAAA1 AAAAA --- --- 1 1\n[KTST]\nT TST1 X 16L\nTST1 TTTTT --- --- 1 1\n";
    p.sim.Write("orb/navdata/sids.txt", first);
    BuildProcedureSectionIndex(ProcedureFileId::Sids);
    const ProcedureSectionIndex& index = g_navdb.ProcedureSections[static_cast<int>(ProcedureFileId::Sids)];
    ASSERT_TRUE(index.built);
    ASSERT_EQ(index.entries.size(), 2u);
    uint64_t offset = 0;
    ASSERT_EQ(LookUpSection(ProcedureFileId::Sids, "KTST", first.size(), offset), 1);
    EXPECT_EQ(offset, first.find("[KTST]"));
    EXPECT_EQ(LookUpSection(ProcedureFileId::Sids, "KXXX", first.size(), offset), 0);
    EXPECT_EQ(LookUpSection(ProcedureFileId::Sids, "KTST", first.size() + 1, offset), -1);
    LoadSids("KTST");
    ASSERT_EQ(g_procedures.origin.SidCount, 1);
    EXPECT_NE(Sid("TST1"), nullptr);
    // The same size with the sections exchanged: the index leads astray, the reader notices.
    std::string second = "; header\n[KTST]\nT TST2 X 16L\nTST2 TTTTT --- --- 1 1\n[KAAA]\nT AAA1 X 16L\nAAA1 AAAAA --- --- 1 1\n";
    ASSERT_EQ(second.size(), first.size());
    p.sim.Write("orb/navdata/sids.txt", second);
    LoadSids("KTST");
    ASSERT_EQ(g_procedures.origin.SidCount, 1);
    EXPECT_NE(Sid("TST2"), nullptr);
    // A longer file: the index can't tell, the reader reads from the top.
    p.sim.Write("orb/navdata/sids.txt", second + "[KNEW]\nT NEW1 X 16L\nNEW1 NNNNN --- --- 1 1\n");
    LoadSids("KNEW");
    EXPECT_NE(Sid("NEW1"), nullptr);
    // The database load indexes every file it finds.
    LoadNavDatabase();
    EXPECT_TRUE(g_navdb.ProcedureSections[static_cast<int>(ProcedureFileId::Sids)].built);
    EXPECT_FALSE(g_navdb.ProcedureSections[static_cast<int>(ProcedureFileId::Apps)].built);
    LoadSids("KNEW");
    EXPECT_NE(Sid("NEW1"), nullptr);
}

TEST(Procedures, TablesStopAtTheirLimits) {
    ProcedureSim p;
    std::string text = "[KTST]\n";
    for (int i = 0; i < kSidLimit + 5; ++i) text += "T P" + std::to_string(i) + " X 16L\n";
    for (int i = 0; i < kProcedureLegLimit + 10; ++i) text += "P0 F" + std::to_string(i) + " --- --- 47 -122\n";
    p.sim.Write("orb/navdata/sids.txt", text);
    LoadSids("KTST");
    EXPECT_EQ(g_procedures.origin.SidCount, kSidLimit);
    EXPECT_EQ(Sid("P0")->LegCount, kProcedureLegLimit);
    EXPECT_EQ(Sid("P139")->LegCount, 0);
    EXPECT_EQ(Sid("P140"), nullptr);
    // The chosen legs stop at their table's size.
    PlanSelections& sel = g_plan.context.Selections;
    Select(sel.SidName, "P0");
    BuildSidLegs();
    EXPECT_EQ(g_selected_legs.Sid.count, kSelectedLegLimit);
    EXPECT_LE(sizeof(ProcedureTables), size_t{16} << 20);
}

TEST(Procedures, ReadersSurviveHostileSections) {
    SimFolder sim;
    std::vector<std::string> inputs = {
        "",
        "[",
        "[]\n[ ]\n",
        "[KTST]\nT\nT X\n.\n..\n.A B\nA /\nA //\nA /RT/LT/T/UA\nA /T1e999/UA 1e999 16B 1e999 -1e999\n",
        "[KTST]\nA /H090/IC090 --- --- 0 0\n[KTST]\n",
        "[KTST]\n16L X /RT/H360 --- 47 -122\n16L X /LT/T --- nan nan\n-- Y Z /T090/UD999 1 1 1 1 1 1 1 1 1 1 1 1\n",
        "[KTST]\nT P X 16L\n" + std::string(2000, 'A') + "\nP " + std::string(600, '/') + "\n",
    };
    std::string legs = "[KTST]\n";
    for (int i = 0; i < 500; ++i) legs += "P.T" + std::to_string(i % 150) + " F" + std::to_string(i) + " --- 16B 47 -122\n";
    inputs.push_back(legs);
    for (const std::string& input : inputs) {
        nav_fuzz::Procedures(reinterpret_cast<const uint8_t*>(input.data()), input.size(), sim.root());
        ASSERT_LE(g_procedures.origin.SidCount, kSidLimit);
        ASSERT_LE(g_procedures.destination.StarCount, kStarLimit);
        ASSERT_LE(g_procedures.destination.ApproachCount, kApproachLimit);
        ASSERT_LE(g_procedures.origin.lists.TransitionList.count, kTransitionListLimit);
        ASSERT_LE(g_selected_legs.Sid.count, kSelectedLegLimit);
        for (int i = 1; i <= g_procedures.origin.SidCount; ++i) ASSERT_LE(g_procedures.origin.SidTable[i].LegCount, kProcedureLegLimit);
    }
    // The last input: one procedure, its legs stopped at the limit, 120 transitions listed of 150.
    EXPECT_EQ(g_procedures.origin.SidCount, 1);
    EXPECT_EQ(g_procedures.origin.SidTable[1].LegCount, kProcedureLegLimit);
    ListSidTransitions("P", "------", 0);
    EXPECT_EQ(g_procedures.origin.lists.TransitionList.count, kTransitionListLimit);
}

TEST(Procedures, DemonstrationRouteLegs) {
    // The shipped sample files, read through the slots as the pages choose them.
    ProcedureSim p;
    for (const char* name : {"apts.txt", "sids.txt", "sids_user.txt", "stars.txt", "apps.txt"}) {
        std::ifstream in(std::string(ORB_SOURCE_DIR) + "/data/sim/orb/navdata/" + name, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        p.sim.Write(std::string("orb/navdata/") + name, text.str());
    }
    LoadAirportDetail("KSEA", 1);
    LoadAirportDetail("KGEG", 2);
    PlanSelections& sel = g_plan.context.Selections;
    Select(sel.SidName, "CASCD1");
    Select(sel.SidTransition, "NORMY");
    Select(sel.DepartureRunway, "16L");
    BuildSidLegs();
    EXPECT_EQ(Rows(g_selected_legs.Sid), "TR161 HD060 HD090 TAGOR NORMY");
    Select(sel.DepartureRunway, "34R");
    BuildSidLegs();
    EXPECT_EQ(Rows(g_selected_legs.Sid), "TR341 HD090 HD100 TAGOR NORMY");
    Select(sel.StarName, "ODESS1");
    Select(sel.StarTransition, "MWH");
    Select(sel.ArrivalRunway, "21");
    BuildStarLegs();
    EXPECT_EQ(Rows(g_selected_legs.Star), "MWH ODESS HD360 GEG");
    Select(sel.ApproachName, "I21");
    Select(sel.ApproachTransition, "GEG");
    BuildApproachLegs();
    EXPECT_EQ(Rows(g_selected_legs.Approach), "GEG CEBUS TR024 PT294 CEBUS BATKY HUPRA RW21 TR204 GEG");
    // Every computed fix lies within 40 nm of its airport.
    for (const SelectedLegTable* t : {&g_selected_legs.Sid, &g_selected_legs.Star, &g_selected_legs.Approach})
        for (int i = 1; i <= t->count; ++i) {
            const AirportDetail& a = t == &g_selected_legs.Sid ? g_airports.OriginAirport : g_airports.DestinationAirport;
            if (t != &g_selected_legs.Star) {
                EXPECT_LT(Nm({a.Latitude, a.Longitude}, {t->rows[i].Latitude, t->rows[i].Longitude}), 40)
                    << TextOf(t->rows[i].Fix);
            }
        }
    ListApproachTransitions("I21");
    EXPECT_EQ(Names(g_procedures.destination.lists.ApproachTransitionList), "DPY GEG");
}
