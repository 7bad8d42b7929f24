// aircraft_model.h: the aircraft that orbsim flies in place of the simulator.
//
// A point on a sphere with a heading, altitudes and speeds, moved by its own
// simple autopilot and by wind. It is deterministic (no noise, no real
// clock) and changes only by the key events it obeys, by the script's
// `aircraft` and `set` commands, and by time. Units inside are the pilot's:
// degrees, feet, knots, feet a minute, gallons and pounds.
#pragma once

#include "aircraft_performance.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orbsim {

// Fixed figures of the model, with their reason.
constexpr double kEarthRadiusNm = 3437.7467707849396;  // 10800 / pi: a minute of arc is a mile
constexpr double kStandardRateDegPerSec = 3.0;         // a standard-rate turn
constexpr double kBankLimitDeg = 25.0;                 // the autopilot's bank limit
constexpr double kGravityFps2 = 32.174;
constexpr double kFeetPerNm = 6076.11549;
constexpr double kKnotsToFps = 1.68781;
constexpr double kDefaultClimbFpm = 1500;              // altitude hold with no vertical speed set
constexpr double kSpeedChangeKtPerSec = 2.0;           // speed and Mach holds change speed this fast, level
constexpr double kMaxStepSeconds = 0.05;               // integration step; turns stay exact to 0.15 deg
constexpr double kFullTankLevel = 8388608.0;           // 0x800000: a tank level of 100 %
constexpr double kSimRateMin = 0.25, kSimRateMax = 128;
constexpr int kMaxEngines = 4;
constexpr int kMaxStations = 61;                       // payload stations the FSUIPC table has

enum class Tank : int { Center, LeftMain, LeftAux, LeftTip, RightMain, RightAux, RightTip, Count };
constexpr int kTankCount = static_cast<int>(Tank::Count);

struct AircraftModel {
    // Position and attitude
    double lat = 0;                     // degrees, north positive
    double lon = 0;                     // degrees, east positive, -180..180
    double alt = 0;                     // feet above sea level
    double ground = 0;                  // feet, ground elevation below the aircraft
    double hdg = 0;                     // true heading, degrees 0..360
    double var = 0;                     // magnetic variation, degrees; magnetic = true - var
    double pitch = 0;                   // degrees, nose up positive (from the climb angle)
    double bank = 0;                    // degrees, right positive
    // Speeds
    double ias = 0;                     // knots
    double vs = 0;                      // feet a minute: manual vertical speed, and the one flown
    // Air
    double wind_dir = 0;                // degrees true the wind comes from
    double wind_speed = 0;              // knots
    double isa_dev = 0;                 // degrees Celsius above the standard atmosphere
    double qnh = 1013.25;               // sea-level pressure, millibars
    double altimeter = 1013.25;         // the altimeter's setting, millibars
    // Autopilot
    int ap_master = 1;
    int hdg_hold = 0, nav_hold = 0, alt_hold = 0, vs_hold = 0, spd_hold = 0, mach_hold = 0;
    int app_hold = 0, bc_hold = 0, yaw_damper = 0, at_armed = 0, loc_hold = 0, fd_on = 0;
    double hdg_bug = 0;                 // magnetic, degrees
    double ap_alt = 0;                  // feet
    double ap_vs = 0;                   // feet a minute
    double ap_spd = 0;                  // knots
    double ap_mach = 0;                 // Mach number
    double obs = 0;                     // NAV1 course, magnetic degrees; nav hold flies it
    unsigned nav1_bcd = 0x1130;         // four BCD digits: 111.30
    unsigned nav2_bcd = 0x1130;
    unsigned adf_bcd = 0x0350;
    double dh = 200;                    // decision height, feet
    double vs0 = 110, vs1 = 125;        // design stall speeds, knots
    double le_flaps = 0;                // leading-edge flap angle, degrees
    int avionics = 1;
    // Simulation
    double sim_time = 0;                // seconds of simulated time since start
    double rate = 1;                    // simulation rate
    int paused = 0;
    // Clocks
    double zulu = 12 * 3600;            // seconds of the zulu day
    int zulu_day = 172;                 // day of the year, 1..365
    int zulu_year = 2007;
    double tz = 0;                      // local time = zulu + tz hours
    // Engines and fuel
    int engines = 2;
    double n1_set = 85;                 // percent; 0 stops the engines, any other value runs them (N1 then follows the thrust)
    double flow_factor = 100;           // percent of the book's fuel flows the engines burn
    double egt_add = 0;                 // degrees Celsius added to a running engine's turbine temperature
    double oil_temperature = 80;        // degrees Celsius of a running engine's oil
    double oil_pressure = 40;           // psi of a running engine's oil
    double oil_quantity = 14;           // quarts of oil in each engine, running or not
    int reversers = 0;                  // 1: every engine's reverser is in use
    // Surfaces
    double flap_handle = 0;             // trailing-edge flaps, raw 0 up .. 16383 full
    double spoilers = 0;                // both spoiler panels, raw 0 down .. 16383 full
    double gear = 1;                    // every leg, 0 up .. 1 down and locked
    double elevator_trim = 0;           // -1 nose down .. 1 nose up
    double aileron_trim = 0;            // -1 left wing down .. 1 right wing down
    double rudder_trim = 0;             // -1 left .. 1 right
    std::array<double, kTankCount> tank_capacity{};  // gallons
    std::array<double, kTankCount> tank{};            // gallons on board
    double lbs_per_gal = 6.7;
    double zfw = 120000;                // zero fuel weight the FSUIPC server reports, pounds
    double empty_weight = kEmptyWeightLb;  // pounds; gross = empty + payload + fuel
    std::vector<double> payload;        // pounds a station, at most kMaxStations
    std::string title = "orbsim TwinJet";
    std::string nav1_ident;             // the NAV 1 station's ident "(A:NAV IDENT:1,string)" answers
    // What the last step did (for tests and prints)
    double track = 0;                   // true track over the ground, degrees
    double gs = 0;                      // ground speed, knots
};

// A fresh aircraft: parked at 0,0 at sea level, tanks of a twin jet, engines
// running, 18,000 lb of payload and 20,000 lb of fuel (140,000 lb gross).
AircraftModel DefaultAircraft();

// Air data from the state.
double TrueAirspeed(const AircraftModel& a);         // knots, 1.9 % gain a thousand feet
double IasForTas(double tas, double alt);
double SpeedOfSound(const AircraftModel& a);         // knots
double OutsideTemperature(const AircraftModel& a);   // degrees Celsius
double MachNumber(const AircraftModel& a);
double MagneticHeading(const AircraftModel& a);      // 0..360
double IndicatedAltitude(const AircraftModel& a);    // with the altimeter's setting
double FuelGallons(const AircraftModel& a);
double FuelPounds(const AircraftModel& a);
double PayloadPounds(const AircraftModel& a);
double GrossWeight(const AircraftModel& a);          // pounds: empty + payload + fuel
// On the ground: at the ground's elevation and slower than the lift-off speed.
bool OnGround(const AircraftModel& a);
// The thrust the engines give now: climb thrust on the take-off roll, idle
// parked, else by the vertical speed (see ThrustForVerticalSpeed).
ThrustMix EngineThrust(const AircraftModel& a);
// Engines: N1 and the book's flow of the thrust, the flow split over the
// engines. Zero for engines the aircraft does not have, for stopped engines,
// and when the tanks are dry.
double EngineN1(const AircraftModel& a, int engine);          // percent
double EngineFuelFlow(const AircraftModel& a, int engine);    // pounds an hour
double EngineTurbineTemperature(const AircraftModel& a, int engine);  // degrees Celsius
double EngineN2(const AircraftModel& a, int engine);                   // percent, follows N1
double EnginePressureRatio(const AircraftModel& a, int engine);        // 1 at idle .. 1.6 at climb N1; 1 stopped
double AmbientPressureMb(const AircraftModel& a);                      // static pressure at the aircraft
// Ground speed and true track that the heading, airspeed and wind give.
void GroundVector(const AircraftModel& a, double& gs_knots, double& track_deg);

// Advances the aircraft by dt seconds of simulated time (nothing when paused
// or dt <= 0): autopilot, speeds, position, fuel, clocks.
void StepAircraft(AircraftModel& a, double dt);

// Applies a simulator key event. Returns false for an event the model does
// not act on (it is still recorded by the caller).
bool ApplyKeyEvent(AircraftModel& a, uint32_t event, uint32_t value);

// Loads fuel the way a ground crew would: mains, then centre, aux, tips.
void LoadFuelPounds(AircraftModel& a, double pounds);
// Sets the true airspeed that makes this ground speed on the present heading and wind.
void SetGroundSpeed(AircraftModel& a, double gs_knots);

// Helpers shared with the tests.
double WrapDegrees(double deg);      // 0 <= x < 360
double WrapSigned(double deg);       // -180 < x <= 180
void MovePoint(double& lat, double& lon, double track_deg, double distance_nm);
double DistanceNm(double lat1, double lon1, double lat2, double lon2);

}  // namespace orbsim
