// predictions_test.cpp: the cruise altitude from the tables and without them,
// the semicircular rule, T/C and T/D, the per-waypoint passes, the distance
// pass and its phase changes, and the profile file. Routes run along the
// equator, so that a degree of longitude is a fixed number of nm and the
// expected figures can be worked out by hand.
#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "frame/sim_state.h"
#include "guidance/geodesy.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "plan/plan_tables.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

// nm in one degree of longitude on the equator, as the module's geodesy has it.
double NmPerDegree() {
    double distance = 0, bearing = 0;
    GreatCircle(0, 0, 0, 1, distance, bearing);
    return distance;
}

// A route of rows at the given longitudes on the equator; row 0 and the last
// are airports at sea level. Clears the predictions' state.
void EquatorRoute(const std::vector<double>& longitudes) {
    for (size_t i = 0; i < longitudes.size(); ++i) {
        PlanWaypoint& row = g_plan.ActivePlan[i];
        row = PlanWaypoint{};
        std::snprintf(row.Ident.data(), row.Ident.size(), "W%zu", i);
        row.Latitude = 0;
        row.Longitude = longitudes[i];
    }
    g_plan.ActivePlan[0].Altitude = 0;
    g_plan.ActivePlan[longitudes.size() - 1].Altitude = 0;
    g_plan.context.ActiveLastRow = static_cast<int>(longitudes.size()) - 1;
    g_plan.context.ActiveLeg = 1;
    g_plan.context.NextRestrictionRow = g_plan.context.ActiveLastRow;
    g_plan.context.CruiseAltitude = 0;
    g_vnav = VnavState{};
    g_plan_distances = PlanDistanceState{};
    g_sim.indicated_altitude.now = 0;
    g_performance_table.ClimbCount = g_performance_table.CruiseCount = 0;
    g_performance_table.DescentCount = g_performance_table.AltitudeLimitCount = 0;
}

void FlatProfile(double climb_tas, int climb_rate, double descent_tas, double descent_rate) {
    g_profile.ClimbTas = climb_tas;
    g_profile.ClimbRate = climb_rate;
    g_profile.DescentTas = descent_tas;
    g_profile.DescentRate = descent_rate;
    g_profile.FPA = 0;
    g_profile.ClbSpdRest = 0;
    g_profile.DescSpdRest = 0;
}

void AircraftAt(double longitude, int active_leg) {
    g_sim.latitude = 0;
    g_sim.longitude = longitude;
    g_plan.context.ActiveLeg = active_leg;
}

// One-row tables of constant figures (the simplest the optimiser accepts).
void ConstantTables(double tas, double rate) {
    const char text[] =
        "[CLIMB]\n0 300 1000 6000\n"
        "[GRWT 100]\n35000 450 3000\n"
        "[DESCENT]\n0 300 1000 1000\n";
    ReadPerformanceText(text, sizeof text - 1, g_performance_table);
    g_performance_table.Climb[1].Tas = g_performance_table.Descent[1].Tas = tas;
    g_performance_table.Climb[1].Rate = g_performance_table.Descent[1].Rate = rate;
}

}  // namespace

TEST(Semicircular, EvenWestOddEastAndTheHighLevels) {
    // Westbound: even thousands stand, odd ones go down.
    EXPECT_EQ(SemicircularAltitude(34000, 270), 34000);
    EXPECT_EQ(SemicircularAltitude(35000, 270), 34000);
    EXPECT_EQ(SemicircularAltitude(35000, 180), 34000) << "180 counts as west";
    // Eastbound: odd thousands stand, even ones go down.
    EXPECT_EQ(SemicircularAltitude(35000, 90), 35000);
    EXPECT_EQ(SemicircularAltitude(34000, 179.9), 33000);
    // From 42000: the 4000 ft steps, whatever lies between.
    EXPECT_EQ(SemicircularAltitude(43500, 270), 43000);
    EXPECT_EQ(SemicircularAltitude(47000, 270), 43000) << "47000 isn't above 47000";
    EXPECT_EQ(SemicircularAltitude(47001, 270), 47000);
    EXPECT_EQ(SemicircularAltitude(60000, 270), 55000);
    EXPECT_EQ(SemicircularAltitude(42000, 90), 45000);
    EXPECT_EQ(SemicircularAltitude(53001, 90), 53000);
    EXPECT_EQ(SemicircularAltitude(58000, 90), 57000);
    // Not rounded to a thousand first: 34500 westbound isn't a whole 2000.
    EXPECT_EQ(SemicircularAltitude(34500, 270), 33500);
}

TEST(OptimizeProfile, HalfRouteRulesOnShortAndLongRoutes) {
    ResetModuleState();
    g_profile.MaxCruise = 45000;
    g_profile.ClbSpdRest = 0;
    // 300 kt and 1000 ft/min: each 1000 ft takes 1 minute, 5 nm, so a climb
    // to C takes C / 200 nm. The descent table is the same.
    const double nm = NmPerDegree();

    // 40 nm westbound: H = 20 (not above 35: nothing taken off), C = 4000.
    EquatorRoute({40 / nm, 0});
    ConstantTables(300, 1000);
    EXPECT_EQ(OptimizeProfile(), 4000);

    // 1000 nm westbound: H = 200 by the long route rule, not 485: C = 40000.
    EquatorRoute({1000 / nm, 0});
    ConstantTables(300, 1000);
    EXPECT_EQ(OptimizeProfile(), 40000);
    // The means become the speeds flown: constant table figures, and no
    // division by zero although the speed never changed.
    EXPECT_DOUBLE_EQ(g_profile.ClimbTas, 300);
    EXPECT_EQ(g_profile.ClimbRate, 1000);
    EXPECT_DOUBLE_EQ(g_profile.DescentTas, 300);
    EXPECT_DOUBLE_EQ(g_profile.DescentRate, 1000);
    EXPECT_EQ(g_profile.ClimbIas, 233) << "300 / 1.285";
    // The cruise row's TAS at C: 450 / (40 x 1.9 + 100) x 100 = 255.7.
    EXPECT_EQ(g_profile.CruiseIas, 256);

    // 300 nm eastbound: H = 135, C = 27000 fits, and east it stands.
    EquatorRoute({0, 300 / nm});
    ConstantTables(300, 1000);
    EXPECT_EQ(OptimizeProfile(), 27000);

    // Any table empty: no altitude.
    g_performance_table.DescentCount = 0;
    EXPECT_EQ(OptimizeProfile(), 0);
}

TEST(OptimizeProfile, SegmentMeansWeighTheStepsTime) {
    ResetModuleState();
    const double nm = NmPerDegree();
    EquatorRoute({0, 200 / nm});  // H = 85
    g_profile.MaxCruise = 22000;
    g_profile.ClbSpdRest = 0;
    // Climb: 240 kt / 2400 ft/min at 0 (a step of 300 s to 12000), 400 kt /
    // 2000 at 12000 (180 s to 18000), 420 kt / 1500 at 18000 (past 22000).
    // Segments: the steps before each change of TAS, (240, 2400, 300 s) and
    // (400, 2000, 180 s). Mean TAS = 480 x (240/300 + 400/180) / 4.
    const char text[] =
        "[CLIMB]\n0 240 2400 6000\n12000 400 2000 5000\n18000 420 1500 4000\n"
        "[CRUISE]\n22000 400 3000\n"
        "[DESCENT]\n0 300 2000 1000\n";
    ReadPerformanceText(text, sizeof text - 1, g_performance_table);
    int cruise = OptimizeProfile();
    double mean_tas = 480.0 * (240.0 / 300 + 400.0 / 180) / 4;
    double mean_rate = 480.0 * (2400.0 / 300 + 2000.0 / 180) / 4;
    EXPECT_NEAR(g_profile.ClimbTas, mean_tas, 1e-9);
    EXPECT_EQ(g_profile.ClimbRate, static_cast<int>(std::lround(mean_rate)));
    // 22000 / 2293 x 362.7 / 60 = 58 nm fits within 85: C stays, east goes to 21000.
    EXPECT_EQ(cruise, 21000);
}

TEST(PredictProfile, CruiseAltitudeWithoutTablesAndTheFpaRates) {
    ResetModuleState();
    const double nm = NmPerDegree();
    // 300 nm eastbound: H = 135. 360 kt is 6 nm a minute; at 1500 ft/min
    // the half route is used up in minute 23 (138 nm) at 34500 ft: 34000,
    // then the east rule: 33000.
    EquatorRoute({0, 100 / nm, 200 / nm, 300 / nm});
    FlatProfile(360, 1500, 360, 2000);
    g_profile.MaxCruise = 41000;
    PredictProfile(0, 0);
    EXPECT_EQ(g_plan.context.CruiseAltitude, 33000);
    // T/C: 33000 / 1500 x 6 = 132 nm, on the leg from row 1.
    EXPECT_EQ(g_plan_distances.TcDistFromOrigin, 132);
    EXPECT_EQ(g_plan_distances.TcRow, 1);
    EXPECT_NEAR(g_vnav.TopOfClimbLongitude, 132 / nm, 1e-6);
    // Without per-waypoint passes the phases start afresh.
    EXPECT_EQ(g_vnav.DescentSpeedPhase, 1);
    EXPECT_EQ(g_plan.ActivePlan[1].Altitude, kNoAltitude) << "no pass ran";

    // A low MaxCruise wins over the half route.
    EquatorRoute({0, 100 / nm, 200 / nm, 300 / nm});
    g_profile.MaxCruise = 25000;
    PredictProfile(0, 0);
    EXPECT_EQ(g_plan.context.CruiseAltitude, 25000);

    // FPA 3 at 300 kt: (5 x 3 x 100 + 50) / 100 truncates to 15: 1500 ft/min,
    // for the descent and for the climb.
    EquatorRoute({0, 100 / nm, 200 / nm, 300 / nm});
    FlatProfile(300, 2500, 300, 2500);
    g_profile.FPA = 3;
    PredictProfile(30000, 0);
    EXPECT_DOUBLE_EQ(g_plan_distances.DescentRateInUse, 1500);
    EXPECT_EQ(g_plan_distances.TcDistFromOrigin, 100) << "30000 / 1500 x 5";
    g_profile.DescentTas = 320;  // 5.333 x 300 + 50 = 1650, / 100 truncates to 16
    PredictProfile(30000, 0);
    EXPECT_DOUBLE_EQ(g_plan_distances.DescentRateInUse, 1600);
}

TEST(PredictProfile, TopOfDescentFromTheNextRestriction) {
    ResetModuleState();
    const double nm = NmPerDegree();
    EquatorRoute({0, 100 / nm, 200 / nm, 300 / nm});
    FlatProfile(360, 2000, 360, 2000);
    // Down from 35000 to the restriction's 10000 at 2000 ft/min and 6 nm a
    // minute: 75 nm back from the last row, 225 nm from the first.
    g_plan.context.NextRestrictionRow = 2;
    g_plan.ActivePlan[2].Altitude = 10000;
    g_plan.ActivePlan[2].Restricted = 1;
    PredictProfile(35000, 0);
    EXPECT_NEAR(g_vnav.TopOfDescentLongitude, 225 / nm, 1e-6);
    EXPECT_NEAR(g_vnav.TopOfDescentLatitude, 0, 1e-9);
    EXPECT_NEAR(g_plan_distances.TdDistFromOrigin, 225, 1e-6);
    EXPECT_EQ(g_plan.context.CruiseAltitude, 35000) << "the plan takes the altitude it had none of";
    // A plan with a cruise altitude keeps it.
    PredictProfile(31000, 0);
    EXPECT_EQ(g_plan.context.CruiseAltitude, 35000);
    // T/D moves with the altitude given: 21000 / 2000 x 6 = 63 nm back.
    EXPECT_NEAR(g_vnav.TopOfDescentLongitude, (300 - 63) / nm, 1e-6);
}

TEST(PredictProfile, PerWaypointPassesAroundRestrictions) {
    ResetModuleState();
    const double nm = NmPerDegree();
    // Rows every 60 nm. Climb 360 kt (10 minutes a leg) at 1000 ft/min:
    // 10000 ft a leg, T/C 210 nm out. Descent the same at 2000: 20000 a leg.
    std::vector<double> lons;
    for (int i = 0; i <= 8; ++i) lons.push_back(i * 60 / nm);
    EquatorRoute(lons);
    FlatProfile(360, 1000, 360, 2000);
    AircraftProfile& p = g_profile;
    p.ClimbIas = 280;
    p.CruiseIas = 300;
    p.DescentIas = 270;
    p.ClbSpdRest = 250;
    p.ClbAltRest = 10000;
    p.DescSpdRest = 240;
    p.DescAltRest = 10000;
    // A climb restriction at row 2 and a descent one at row 6.
    g_plan.ActivePlan[2].Restricted = 1;
    g_plan.ActivePlan[2].Altitude = 15000;
    g_plan.ActivePlan[2].Speed = 250;
    g_plan.ActivePlan[6].Restricted = 1;
    g_plan.ActivePlan[6].Altitude = 11000;
    g_plan.ActivePlan[6].Speed = 250;
    g_plan.ActivePlan[5].Speed = 999;  // a stale figure the passes overwrite
    PredictProfile(35000, 1);
    const PlanTable& plan = g_plan.ActivePlan;
    // Row 1: 10000 ft (not below ClbAltRest: the climb speed), then lowered to
    // the restriction's 250 behind it.
    EXPECT_DOUBLE_EQ(plan[1].Altitude, 10000);
    EXPECT_DOUBLE_EQ(plan[1].Speed, 250);
    // The restriction keeps its figures; the climb goes on from 15000.
    EXPECT_DOUBLE_EQ(plan[2].Altitude, 15000);
    EXPECT_DOUBLE_EQ(plan[2].Speed, 250);
    EXPECT_DOUBLE_EQ(plan[3].Altitude, 25000);
    EXPECT_DOUBLE_EQ(plan[3].Speed, 280);
    EXPECT_DOUBLE_EQ(plan[4].Altitude, 35000);
    EXPECT_DOUBLE_EQ(plan[4].Speed, 300);
    // Backward from the last row: row 7 below the descent restriction is held
    // to its 11000 and its 250; row 5 is 11000 + 20000.
    EXPECT_DOUBLE_EQ(plan[7].Altitude, 11000);
    EXPECT_DOUBLE_EQ(plan[7].Speed, 250);
    EXPECT_DOUBLE_EQ(plan[6].Altitude, 11000);
    EXPECT_DOUBLE_EQ(plan[6].Speed, 250);
    EXPECT_DOUBLE_EQ(plan[5].Altitude, 31000);
    EXPECT_DOUBLE_EQ(plan[5].Speed, 270);
    // The climb ends at its restriction: T/C moves onto row 2.
    EXPECT_DOUBLE_EQ(g_vnav.TopOfClimbLongitude, plan[2].Longitude);

    // A descent restriction without a speed gets the descent speed; below
    // DescAltRest the descent speed restriction applies.
    EquatorRoute(lons);
    g_plan.ActivePlan[6].Restricted = 1;
    g_plan.ActivePlan[6].Altitude = 5000;
    PredictProfile(35000, 1);
    EXPECT_DOUBLE_EQ(plan[6].Speed, 270);
    EXPECT_DOUBLE_EQ(plan[7].Altitude, 5000);
    EXPECT_DOUBLE_EQ(plan[7].Speed, 240);
    EXPECT_DOUBLE_EQ(plan[5].Altitude, 25000);
    EXPECT_DOUBLE_EQ(plan[5].Speed, 270);
}

TEST(PlanDistances, PhasesMoveOnAtTopOfClimbAndTopOfDescent) {
    ResetModuleState();
    const double nm = NmPerDegree();
    // Rows every 60 nm to 300 nm, a "DISCO" row between rows 2 and 3 adding nothing.
    EquatorRoute({0, 60 / nm, 120 / nm, 0, 180 / nm, 240 / nm, 300 / nm});
    std::snprintf(g_plan.ActivePlan[3].Ident.data(), 8, "DISCO");
    g_plan.ActivePlan[3].Longitude = 5;  // far away: counted, it would show
    FlatProfile(360, 2000, 360, 2000);
    g_plan.ActivePlan[6].Altitude = 1000;
    // T/C 105 nm out; T/D 34000 / 2000 x 6 = 102 nm before the end (198 nm).
    PredictProfile(35000, 0);
    VnavState& v = g_vnav;
    PlanDistanceState& d = g_plan_distances;

    // Before T/C: 30 nm out, 270 to go, 75 to T/C, which is also the target distance.
    AircraftAt(30 / nm, 1);
    PlanDistances();
    EXPECT_NEAR(d.DistToGo, 270, 1e-6);
    EXPECT_NEAR(d.DistToTc, 75, 1e-6);
    EXPECT_NEAR(v.TargetDistance, 75, 1e-6);
    EXPECT_EQ(v.CruiseReached, 0);
    // 110 nm out, past T/C on its leg: cruise.
    AircraftAt(110 / nm, 2);
    PlanDistances();
    EXPECT_EQ(v.CruiseReached, 1);
    EXPECT_EQ(v.DescentActive, 0);

    // In cruise at 180 nm: 120 to go, T/D 18 nm ahead.
    AircraftAt(180 / nm, 5);
    PlanDistances();
    EXPECT_NEAR(d.DistToGo, 120, 1e-6);
    EXPECT_NEAR(d.TdFromDest, 102, 1e-6);
    EXPECT_NEAR(v.TargetDistance, 18, 1e-6);
    EXPECT_NEAR(d.DirectDistToDest, 120, 1e-6);
    EXPECT_NEAR(d.BearingToDest, 90, 1e-6);
    EXPECT_EQ(v.DescentActive, 0);
    // Past T/D: the descent, towards the last row's altitude.
    AircraftAt(210 / nm, 5);
    v.TargetAltitude = 35000;
    PlanDistances();
    EXPECT_EQ(v.DescentActive, 1);
    EXPECT_DOUBLE_EQ(v.TargetAltitude, 1000);
    EXPECT_NEAR(v.PathToTarget, 102, 1e-6);

    // In descent at 240 nm: 60 to the target row, 42 since T/D; the path
    // 35000 - 34000 / 102 x 42 = 21000.
    v.DescentStartAltitude = 35000;
    AircraftAt(240 / nm, 6);
    PlanDistances();
    EXPECT_NEAR(v.DistToTargetRow, 60, 1e-6);
    EXPECT_NEAR(v.TargetDistance, 60, 1e-6);
    EXPECT_NEAR(d.DistSinceTd, 42, 1e-6);
    EXPECT_NEAR(v.PathAltitude, 21000, 1e-3);

    // Without a proper cruise altitude the phases stay, the distance to go moves.
    v.CruiseReached = 0;
    v.DescentActive = 0;
    g_plan.context.CruiseAltitude = 1000;
    AircraftAt(110 / nm, 2);
    PlanDistances();
    EXPECT_EQ(v.CruiseReached, 0);
    EXPECT_NEAR(d.DistToGo, 190, 1e-6);
    // No active leg: nothing moves, nothing breaks.
    g_plan.context.ActiveLeg = kNoActiveLeg;
    d.DistToGo = -5;
    PlanDistances();
    EXPECT_DOUBLE_EQ(d.DistToGo, -5);
}

TEST(VerticalProfileFile, WrittenWholeWhenAskedAndNotOtherwise) {
    std::string root = ResetModuleState();
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root.c_str());
    std::string orb = root + "/orb";
    std::string command = "mkdir -p " + orb;
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::string path = orb + "/vnav_profile.txt";
    std::remove(path.c_str());
    const double nm = NmPerDegree();
    EquatorRoute({0, 60 / nm, 120 / nm});
    std::snprintf(g_plan.ActivePlan[1].Ident.data(), 24, "A B");
    g_plan.ActivePlan[1].Altitude = 12000;
    g_plan.ActivePlan[1].Speed = 250;
    g_plan.ActivePlan[1].Restricted = 1;
    g_plan.context.CruiseAltitude = 30000;
    g_vnav.TopOfClimbLatitude = 0.5;
    g_vnav.TopOfClimbLongitude = 0.25;
    g_plan_distances.TcDistFromOrigin = 15;

    g_config.WriteVnavProfile = 0;
    WriteVerticalProfileFile();
    EXPECT_FALSE(std::ifstream(path).good()) << "the option is off";

    g_config.WriteVnavProfile = 1;
    WriteVerticalProfileFile();
    std::ifstream in(path);
    ASSERT_TRUE(in.good());
    std::vector<std::string> records;
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != ';') records.push_back(line);
    ASSERT_EQ(records.size(), 6u);
    EXPECT_EQ(records[0], "CRZ 30000");
    EXPECT_EQ(records[1], "TC 0.500000 0.250000 15.0");
    EXPECT_EQ(records[2], "TD -999 -999 -999") << "no T/D placed";
    EXPECT_EQ(records[3], "ROW 0 W0 0.000000 0.000000 0.0 0 -999 0");
    char want[128];
    std::snprintf(want, sizeof want, "ROW 1 A_B 0.000000 %.6f 60.0 12000 250 1", 60 / nm);
    EXPECT_EQ(records[4], want);
    std::snprintf(want, sizeof want, "ROW 2 W2 0.000000 %.6f 120.0 0 -999 0", 120 / nm);
    EXPECT_EQ(records[5], want);
    EXPECT_FALSE(std::ifstream(orb + "/vnav_profile.tmp").good()) << "the temporary file is gone";

    // A root whose orb folder is missing: nothing written, nothing breaks.
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s/none", root.c_str());
    WriteVerticalProfileFile();
    EXPECT_FALSE(std::ifstream(root + "/none/orb/vnav_profile.txt").good());
}
