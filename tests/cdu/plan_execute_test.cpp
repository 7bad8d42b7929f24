// plan_execute_test.cpp: PlanState's steps, EXEC and ERASE with what they
// commit and drop, and what LNAV flies after an EXEC in the air: a
// modification leaves the steering and the once-per-plan steps alone, a
// direct is flown from where it was executed, a new route rearms them.
#include "cdu_rig.h"

#include "../../platform/host_link.h"
#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/engine_tick.h"
#include "guidance/heading_hold_aircraft.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "plan/plan_execute.h"

#include <cstring>

using namespace cdu_test;
using namespace guidance_test;

namespace {
void Row(PlanTable& plan, int row, const char* ident, double lat, double lon, const char* type) {
    plan[row] = PlanWaypoint{};
    SetText(plan[row].Ident, ident);
    plan[row].Latitude = lat;
    plan[row].Longitude = lon;
    SetText(plan[row].WaypointType, type);
}

std::string Text(const PlanText& text) { return text.data(); }

// RTE, the company route typed and entered on LSK 2L, activated and executed.
void EnterAndExecute(CduRig& cdu, const char* route) {
    cdu.PressAndFrame("RTE");
    cdu.Type(route);
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("LSK6R");
    cdu.PressAndFrame("EXEC");
}

// Every FSUIPC job first looks for the server's window; the departure step's
// runway query is the only one a flight without a tower view makes.
int g_fsuipc_looks = 0;
void* CountFsuipcLooks(const char* class_name, const char*) {
    if (class_name != nullptr && std::strcmp(class_name, "UIPCMAIN") == 0) ++g_fsuipc_looks;
    return nullptr;
}

// Counts the looks on top of the host the rig installed; puts it back after.
class FsuipcWatch {
public:
    FsuipcWatch() : previous_(platform::Host()) {
        if (previous_ != nullptr) host_ = *previous_;
        host_.find_window = &CountFsuipcLooks;
        g_fsuipc_looks = 0;
        platform::SetHostForTesting(&host_);
    }
    ~FsuipcWatch() { platform::SetHostForTesting(previous_); }
    int looks() const { return g_fsuipc_looks; }

private:
    OrbHostInterface host_{};
    const OrbHostInterface* previous_;
};

// Distance of a point from the great circle through two others, nm, unsigned.
double CrossTrack(double from_lat, double from_lon, double to_lat, double to_lon, double lat, double lon) {
    double d13 = 0, b13 = 0, d12 = 0, b12 = 0;
    GreatCircle(from_lat, from_lon, lat, lon, d13, b13);
    GreatCircle(from_lat, from_lon, to_lat, to_lon, d12, b12);
    return std::fabs(std::asin(std::sin(d13 / kEarthRadiusNm) * std::sin((b13 - b12) * kDegToRad)) * kEarthRadiusNm);
}

// The point `off` nm to the right of the leg from one fix to another, half-way along it.
void BesideLeg(const PlanWaypoint& from, const PlanWaypoint& to, double off, double& lat, double& lon,
               double& course_true) {
    double length = 0;
    GreatCircle(from.Latitude, from.Longitude, to.Latitude, to.Longitude, length, course_true);
    double mid_lat = 0, mid_lon = 0;
    ProjectPoint(from.Latitude, from.Longitude, course_true, length / 2, mid_lat, mid_lon);
    ProjectPoint(mid_lat, mid_lon, course_true + 90, off, lat, lon);
}

constexpr unsigned kAltimeterEvent = 0x10030;  // the arrival step's, with SetWptBaro
constexpr int kSea = 1, kNormy = 2, kBluit = 3;  // rows of KSEAKGEG

// A CDU on the demonstration data, the aircraft west of SEA eastbound in the
// air, KSEAKGEG executed and LNAV engaged, flown past SEA onto the leg to
// NORMY, which LNAV then tracks.
class InFlight : public ::testing::Test {
protected:
    void SetUp() override {
        g_module.SimGeneration = 10;
        g_config.SetWptBaro = 1;         // the arrival step sets the altimeter: a key event
        g_config.McuShowActiveRwys = 1;  // the departure step asks FSUIPC for the runways
        ac.Place(47.44, -122.40, 90);
        EnterAndExecute(cdu, "KSEAKGEG");
        ASSERT_EQ(g_plan.context.PlanState, 3);
        LnavToggle();
        for (int i = 0; i < 18 * 120 && g_plan.context.ActiveLeg < kNormy; ++i) ac.Tick();
        ASSERT_EQ(g_plan.context.ActiveLeg, kNormy);
        ac.Fly(20);
    }
    const PlanWaypoint& Fix(int row) const { return g_plan.ActivePlan[row]; }
    CduRig cdu;
    FsuipcWatch fsuipc;
    HeadingHoldAircraft ac{cdu.sim()};
};
}  // namespace

TEST(PlanExecute, PlanStateStepsAndTheExecLamp) {
    ResetModuleState();
    int& state = g_plan.context.PlanState;
    const int expected[] = {1, 2, 3, 4, 3, 4};
    for (int next : expected) {
        PlanStateStep();
        EXPECT_EQ(state, next);
        EXPECT_EQ(ExecutePending(), next == 2 || next == 4);
    }
    // A change of plan data steps only from 0 and 3.
    for (auto [from, to] : {std::pair{0, 1}, std::pair{1, 1}, std::pair{2, 2}, std::pair{3, 4}, std::pair{4, 4}}) {
        state = from;
        StepAfterPlanChange();
        EXPECT_EQ(state, to) << from;
    }
    state = 77;  // a value no step makes: back to no route
    PlanStateStep();
    EXPECT_EQ(state, 0);

    // The step from 0 starts a flight on the ground, not in the air.
    g_flight_log = {};
    g_tick = {};
    g_sim.ground_speed = 250;
    PlanStateStep();
    EXPECT_EQ(g_flight_log.flight_stage, kFlightStageNone);
    EXPECT_EQ(g_tick.flight_seconds, -99);
    state = 0;
    g_sim.ground_speed = 4;
    PlanStateStep();
    EXPECT_EQ(g_flight_log.flight_stage, kFlightStagePushBack);  // the flight's first step ran at once
    EXPECT_EQ(g_tick.flight_seconds, 0);
}

TEST(PlanExecute, ARouteBegunOnTheGroundStartsTheFlightClockAndTakesTheRampFuel) {
    CduRig cdu;
    FakeSimulator& sim = cdu.sim();
    auto seconds = [&](int n) {
        for (int i = 0; i < n; ++i) {
            sim.tokens[Token::CLOCK_SECOND] = std::fmod(sim.tokens[Token::CLOCK_SECOND] + 1, 60);
            for (int t = 0; t < 18; ++t) {
                sim.tokens[Token::TICK18] += 1;
                EngineTick();
            }
        }
    };
    sim.tokens[Token::FUEL_POUNDS_PER_GALLON] = 6.7;
    sim.tokens[Token::FUEL_TOTAL_GALLONS] = 1000;
    seconds(3);
    // No flight since the module loaded: the clock stands.
    EXPECT_EQ(g_tick.flight_seconds, -99);
    EXPECT_EQ(g_flight_log.flight_stage, kFlightStageNone);
    EXPECT_DOUBLE_EQ(FuelOnBoardKept(), 6700);
    sim.tokens[Token::FUEL_TOTAL_GALLONS] = 3000;  // refuelled at the gate
    EXPECT_DOUBLE_EQ(FuelOnBoardKept(), 6700) << "the kept fuel only goes down";

    // A company route on the ground: a new flight, on the fuel now aboard.
    cdu.PressAndFrame("RTE");
    cdu.Type("KSEAKGEG");
    cdu.PressAndFrame("LSK2L");
    ASSERT_EQ(g_plan.context.PlanState, 1);
    EXPECT_EQ(g_flight_log.flight_stage, kFlightStageInitLoad);  // the flight's first step ran at once
    EXPECT_EQ(g_tick.flight_seconds, 0);
    EXPECT_DOUBLE_EQ(FuelOnBoardKept(), 20100);
    seconds(2);
    EXPECT_EQ(g_tick.flight_seconds, 2);

    // Executed in the air, a new route is no new flight: the clock runs on.
    sim.tokens[Token::GROUND_VELOCITY] = 250 * 1.68781;
    sim.tokens[Token::FUEL_TOTAL_GALLONS] = 4000;
    seconds(1);
    cdu.Type("KSEA");
    cdu.PressAndFrame("LSK1L");
    ASSERT_EQ(g_plan.context.PlanState, 0);
    cdu.Type("KSEAKOLM");
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("LSK6R");
    cdu.PressAndFrame("EXEC");
    ASSERT_EQ(g_plan.context.PlanState, 3);
    EXPECT_EQ(g_tick.flight_seconds, 3);
    EXPECT_DOUBLE_EQ(FuelOnBoardKept(), 20100);
}

TEST(PlanExecute, CommitsRowsSelectionsAndTheNewOriginsDefaults) {
    ResetModuleState();
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    Row(g_plan.ModPlan, 0, "KAAA", 47.0, -122.0, "APT");
    Row(g_plan.ModPlan, 1, "FIX1", 47.2, -121.5, "INT");
    Row(g_plan.ModPlan, 2, "KBBB", 47.5, -120.0, "APT");
    SetText(g_plan.ModPlan[1].ActualTime, "12:30");
    pc.ModLastRow = 2;
    pc.ModActiveLeg = kNoActiveLeg;
    pc.PlanState = 2;
    SetText(sel.OriginName, "KAAA");  // the same origin: its departure names and speeds stay
    SetText(sel.ModifiedOrigin, "KAAA");  // as the origin line leaves it on a route begun from nothing
    SetText(sel.SidName, "RNDY1");
    SetText(sel.PendingDepartureRunway, "16L");
    SetText(sel.ModifiedDestination, "KBBB");
    SetText(pc.PendingApproachInfo, "ILS16R_16R");  // from a route file's header
    g_profile.ClimbIas = 300;                        // a target speed entered on the pages
    g_holds.HoldCount = 1;

    PlanExecute();
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(pc.ActiveLastRow, 2);
    EXPECT_EQ(pc.ActiveLeg, 1) << "999 becomes 1";
    EXPECT_EQ(Idents(g_plan.ActivePlan, 2), "KAAA FIX1 KBBB");
    EXPECT_STREQ(g_plan.ActivePlan[1].ActualTime.data(), "12:30") << "the copy takes the times as they stand";
    EXPECT_DOUBLE_EQ(pc.ActiveWaypointLatitude, 47.2);
    EXPECT_EQ(Text(sel.DepartureRunway), "16L");
    EXPECT_EQ(Text(sel.PendingDepartureRunway), "------");
    EXPECT_EQ(Text(sel.SavedSidName), "RNDY1");
    EXPECT_EQ(Text(sel.SavedDepartureRunway), "16L");
    EXPECT_EQ(Text(sel.OriginName), "KAAA");
    EXPECT_EQ(Text(sel.DestinationName), "KBBB");
    EXPECT_EQ(Text(sel.ModifiedDestination), "");
    // The route file's approach is now the selection, and the arrival runway the saved one.
    EXPECT_EQ(Text(sel.ApproachName), "ILS16R");
    EXPECT_EQ(Text(sel.SavedArrivalRunway), "16R");
    EXPECT_STREQ(pc.PendingApproachInfo.data(), "");
    EXPECT_EQ(g_profile.ClimbIas, 300);
    EXPECT_EQ(g_holds.HoldCount, 1);

    // Another origin: its selections are none, the speeds the aircraft's, no holds.
    BeginModification();
    Row(g_plan.ModPlan, 0, "KCCC", 46.0, -122.0, "APT");
    SetText(sel.SidName, "RNDY1");
    pc.PlanState = 4;
    PlanExecute();
    EXPECT_EQ(Text(sel.OriginName), "KCCC");
    EXPECT_EQ(Text(sel.SidName), "------");
    EXPECT_EQ(Text(sel.SavedSidName), "------");
    EXPECT_EQ(Text(sel.DepartureRunway), "------");
    EXPECT_EQ(g_profile.ClimbIas, g_profile.ClimbIasBase);
    EXPECT_EQ(g_holds.HoldCount, 0);
    EXPECT_EQ(Text(sel.ApproachName), "ILS16R") << "the destination stayed";

    // A plan without a leg leaves ActivePlan alone, but the state is active.
    pc.ModLastRow = 0;
    pc.PlanState = 4;
    PlanExecute();
    EXPECT_EQ(pc.ActiveLastRow, 2);
    EXPECT_EQ(pc.PlanState, 3);
}

TEST(PlanExecute, EraseRestoresTheActivePlanItsSelectionsAndTheUndoSlots) {
    ResetModuleState();
    PlanContext& pc = g_plan.context;
    PlanSelections& sel = pc.Selections;
    Row(g_plan.ActivePlan, 0, "KAAA", 47.0, -122.0, "APT");
    Row(g_plan.ActivePlan, 1, "KBBB", 47.5, -120.0, "APT");
    pc.ActiveLastRow = 1;
    pc.ActiveLeg = 1;
    SetText(sel.OriginName, "KAAA");
    SetText(sel.DestinationName, "KBBB");
    SetText(sel.StarName, "OLD1");
    pc.PlanState = 3;
    pc.CruiseAltitude = 31000;
    BeginModification();
    PlanExecute();  // the names as at this EXEC are the saved ones
    // A modification: another STAR, destination, cruise altitude and speed, a direct under way.
    Row(g_plan.ModPlan, 1, "KCCC", 48.0, -119.0, "APT");
    SetText(sel.StarName, "NEW2");
    SetText(sel.ModifiedDestination, "KCCC");
    SetText(sel.PendingDepartureRunway, "34R");
    pc.Undo.CruiseAltitude = pc.CruiseAltitude;  // as the performance pages keep them
    pc.CruiseAltitude = 35000;
    pc.Undo.CruiseIas = g_profile.CruiseIas;
    g_profile.CruiseIas = 290;
    pc.Undo.CostIndex = g_profile.CostIndex;  // -1: none entered before
    g_profile.CostIndex = 80;
    g_smiths.LegsMode = 1;
    g_smiths.StarChosen = 1;
    g_smiths.ApproachIndex = 3;
    g_smiths.CduPage = 11;
    g_smiths.arrivals.page = 3;
    pc.PlanState = 4;

    PlanErase();
    EXPECT_EQ(pc.PlanState, 3);
    EXPECT_EQ(Ident(g_plan.ModPlan, 1), "KBBB");
    EXPECT_EQ(pc.ModLastRow, 1);
    EXPECT_EQ(Text(sel.StarName), "OLD1");
    EXPECT_EQ(Text(sel.ModifiedDestination), "");
    EXPECT_EQ(Text(sel.PendingDepartureRunway), "------");
    EXPECT_EQ(pc.CruiseAltitude, 31000);
    EXPECT_EQ(g_profile.CruiseIas, 250);
    EXPECT_EQ(g_profile.CostIndex, 80) << "an undo slot of -1 holds nothing to put back";
    EXPECT_EQ(g_smiths.ApproachIndex, 0) << "back to the approach EXEC matched";
    EXPECT_EQ(g_smiths.LegsMode, 0);
    EXPECT_EQ(g_smiths.StarChosen, 0);
    EXPECT_EQ(g_smiths.arrivals.page, 1) << "ARRIVALS shown: back to its first page";
    EXPECT_EQ(Ident(g_plan.ActivePlan, 1), "KBBB");

    // What EXEC commits can't be erased any more.
    pc.PlanState = 4;
    pc.Undo.CruiseAltitude = pc.CruiseAltitude;
    pc.CruiseAltitude = 37000;
    PlanExecute();
    pc.PlanState = 4;
    pc.CruiseAltitude = 39000;  // changed again, without a slot this time
    PlanErase();
    EXPECT_EQ(pc.CruiseAltitude, 39000);
}

TEST_F(InFlight, AModificationKeepsTheRejoinAndTheOncePerPlanSteps) {
    // 3 nm right of the leg to NORMY, half-way, eastbound: LNAV steers back
    // onto the leg, at a point 3 nm ahead of where the distance to go puts
    // the aircraft along it.
    double lat = 0, lon = 0, leg_true = 0;
    BesideLeg(Fix(kSea), Fix(kNormy), 3.0, lat, lon, leg_true);
    ac.Place(lat, lon, leg_true);
    int rejoin = LastHeadingSent(cdu.sim());
    double leg_length = 0, to_go = 0, unused = 0, rabbit_lat = 0, rabbit_lon = 0;
    GreatCircle(Fix(kSea).Latitude, Fix(kSea).Longitude, Fix(kNormy).Latitude, Fix(kNormy).Longitude, leg_length, unused);
    GreatCircle(lat, lon, Fix(kNormy).Latitude, Fix(kNormy).Longitude, to_go, unused);
    ProjectPoint(Fix(kSea).Latitude, Fix(kSea).Longitude, leg_true, leg_length - to_go + 3.0, rabbit_lat, rabbit_lon);
    EXPECT_NEAR(DirectionDifference(rejoin, ac.MagneticBearingTo(rabbit_lat, rabbit_lon)), 0, 1.0) << rejoin;
    double to_normy = ac.MagneticBearingTo(Fix(kNormy).Latitude, Fix(kNormy).Longitude);
    EXPECT_LT(DirectionDifference(rejoin, to_normy), -25) << "back to the leg, not straight at the waypoint";
    int altimeter = cdu.sim().CountEvents(kAltimeterEvent);
    int looks = fsuipc.looks();
    EXPECT_EQ(altimeter, 2) << "the arrival step and the passing of SEA";
    EXPECT_EQ(looks, 1) << "the departure step, once away from KSEA";

    // An unrelated change: the departure runway, then EXEC.
    cdu.PressAndFrame("RTE");
    cdu.Type("16L");
    cdu.PressAndFrame("LSK3L");
    cdu.Type("34R");
    cdu.PressAndFrame("LSK3L");
    ASSERT_TRUE(cdu.ExecLit());
    int headings = HeadingEvents(cdu.sim());
    cdu.PressAndFrame("EXEC");
    ASSERT_FALSE(cdu.ExecLit());
    ac.Tick();
    EXPECT_EQ(HeadingEvents(cdu.sim()), headings) << "the wanted whole degree hasn't changed: nothing goes out";
    EXPECT_EQ(ac.bug_magnetic, rejoin);

    // Flown on: it closes on the leg, and neither step runs again.
    ac.Fly(60);
    EXPECT_EQ(g_plan.context.ActiveLeg, kNormy);
    EXPECT_LT(CrossTrack(Fix(kSea).Latitude, Fix(kSea).Longitude, Fix(kNormy).Latitude, Fix(kNormy).Longitude, ac.lat,
                         ac.lon),
              1.0);
    EXPECT_EQ(cdu.sim().CountEvents(kAltimeterEvent), altimeter);
    EXPECT_EQ(fsuipc.looks(), looks);

    // A new route from a new origin is a new plan: both steps run for it.
    cdu.Type("KSEA");
    cdu.PressAndFrame("LSK1L");
    EnterAndExecute(cdu, "KSEAKGEG");
    ASSERT_EQ(g_plan.context.PlanState, 3);
    ac.Tick();
    EXPECT_EQ(cdu.sim().CountEvents(kAltimeterEvent), altimeter + 1);
    EXPECT_EQ(fsuipc.looks(), looks + 1);
}

TEST_F(InFlight, ADirectExecutedIsFlownFromWhereItWasExecuted) {
    // 6 nm right of the leg to NORMY, a direct to BLUIT: DIR/INTC, then the
    // LEGS line of BLUIT as the direct target (what that line does: the step
    // to a modification, the row remembered, its inbound course kept).
    double lat = 0, lon = 0, leg_true = 0;
    BesideLeg(Fix(kSea), Fix(kNormy), 6.0, lat, lon, leg_true);
    ac.Place(lat, lon, leg_true);
    cdu.PressAndFrame("DIR_INTC");
    ASSERT_EQ(g_smiths.LegsMode, 1);
    PlanContext& pc = g_plan.context;
    BeginModification();
    PlanStateStep();
    pc.ModActiveLeg = kBluit;
    g_smiths.DirectPending = 1;
    PlanWaypoint& target = g_plan.ModPlan[kBluit];
    double length = 0, course = 0;
    GreatCircle(g_plan.ModPlan[kNormy].Latitude, g_plan.ModPlan[kNormy].Longitude, target.Latitude, target.Longitude,
                length, course);
    target.InboundCourse = NormaliseMagnetic(course - ac.variation);
    cdu.Frame();
    ASSERT_TRUE(cdu.ExecLit());
    cdu.PressAndFrame("EXEC");
    EXPECT_EQ(pc.ActiveLeg, kBluit);

    // From where it stands: the course to BLUIT, then along that line.
    double from_lat = ac.lat, from_lon = ac.lon;
    double direct = ac.MagneticBearingTo(Fix(kBluit).Latitude, Fix(kBluit).Longitude);
    ac.Tick();
    EXPECT_NEAR(DirectionDifference(LastHeadingSent(cdu.sim()), direct), 0, 1.0)
        << LastHeadingSent(cdu.sim()) << " for " << direct;
    double worst = 0;
    for (int i = 0; i < 18 * 120; ++i) {
        ac.Tick();
        worst = std::max(worst, CrossTrack(from_lat, from_lon, Fix(kBluit).Latitude, Fix(kBluit).Longitude, ac.lat, ac.lon));
    }
    EXPECT_EQ(pc.ActiveLeg, kBluit);
    EXPECT_LT(worst, 0.3) << "the leg from NORMY is not flown back to";
    EXPECT_EQ(g_smiths.LegsMode, 0);
}
