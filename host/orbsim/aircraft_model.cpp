// aircraft_model.cpp: how the stand-in aircraft moves.
//
// Index:
//   [SECTION] Defaults and air data
//   [SECTION] Geometry on the sphere
//   [SECTION] One step of flight
//   [SECTION] Key events
//   [SECTION] Fuel and speed set-up
#include "aircraft_model.h"

#include <algorithm>
#include <cmath>

namespace orbsim {

namespace {
constexpr double kDegToRad = 0.017453292519943295;
constexpr double kRadToDeg = 57.29577951308232;
constexpr double kIsaLapsePerThousand = 1.98;  // degrees Celsius a thousand feet
constexpr double kTropopauseFt = 36089;
constexpr double kAltimeterFeetPerMb = 27.0;   // the usual rule of thumb near the ground
constexpr double kGroundToleranceFt = 0.01;    // at the ground's elevation, give or take rounding
constexpr double kTurbineTempAt60 = 400;       // degrees Celsius at 60 % N1
constexpr double kTurbineTempPerN1 = 5;        // degrees a percent of N1 above that
constexpr double kN2AtZeroN1 = 60;             // percent N2 of a running engine, less its N1 share
constexpr double kN2PerN1 = 0.4;               // percent N2 a percent of N1

int Sign(double x) { return x > 0 ? 1 : (x < 0 ? -1 : 0); }
}  // namespace

// [SECTION] Defaults and air data
AircraftModel DefaultAircraft() {
    AircraftModel a;
    a.tank_capacity[static_cast<int>(Tank::Center)] = 4300;
    a.tank_capacity[static_cast<int>(Tank::LeftMain)] = 1300;
    a.tank_capacity[static_cast<int>(Tank::RightMain)] = 1300;
    a.n1_set = 22;
    a.payload = {3000, 6000, 6000, 3000};
    LoadFuelPounds(a, 20000);
    return a;
}

double TrueAirspeed(const AircraftModel& a) { return a.ias * (1.0 + 0.019 * a.alt / 1000.0); }

double IasForTas(double tas, double alt) { return tas / (1.0 + 0.019 * alt / 1000.0); }

double OutsideTemperature(const AircraftModel& a) {
    double alt = std::min(a.alt, kTropopauseFt);
    return 15.0 - kIsaLapsePerThousand * alt / 1000.0 + a.isa_dev;
}

double SpeedOfSound(const AircraftModel& a) {
    double kelvin = std::max(1.0, OutsideTemperature(a) + 273.15);
    return 38.967854 * std::sqrt(kelvin);
}

double MachNumber(const AircraftModel& a) { return TrueAirspeed(a) / SpeedOfSound(a); }

double MagneticHeading(const AircraftModel& a) { return WrapDegrees(a.hdg - a.var); }

double IndicatedAltitude(const AircraftModel& a) { return a.alt + (a.altimeter - a.qnh) * kAltimeterFeetPerMb; }

double FuelGallons(const AircraftModel& a) {
    double total = 0;
    for (double gallons : a.tank) total += gallons;
    return total;
}

double FuelPounds(const AircraftModel& a) { return FuelGallons(a) * a.lbs_per_gal; }

double PayloadPounds(const AircraftModel& a) {
    double total = 0;
    for (double pounds : a.payload) total += pounds;
    return total;
}

double GrossWeight(const AircraftModel& a) { return a.empty_weight + PayloadPounds(a) + FuelPounds(a); }

bool OnGround(const AircraftModel& a) { return a.alt <= a.ground + kGroundToleranceFt && a.ias < kLiftOffKt; }

ThrustMix EngineThrust(const AircraftModel& a) {
    ThrustMix mix;
    if (OnGround(a)) {
        // Climb thrust while the autothrottle rolls the jet up to the bug, else idle.
        bool rolling = a.ap_master && a.spd_hold && !a.mach_hold && a.ias < a.ap_spd;
        mix.cruise = 0;
        (rolling ? mix.climb : mix.idle) = 1;
        return mix;
    }
    return ThrustForVerticalSpeed(a.vs);
}

double EngineN1(const AircraftModel& a, int engine) {
    if (engine < 0 || engine >= std::min(a.engines, kMaxEngines) || a.n1_set <= 0 || FuelGallons(a) <= 0) return 0;
    return N1ForThrust(EngineThrust(a));
}

double EngineFuelFlow(const AircraftModel& a, int engine) {
    if (EngineN1(a, engine) <= 0) return 0;
    double total = BookFlow(EngineThrust(a), a.alt, GrossWeight(a)) * a.flow_factor / 100.0;
    return total / std::min(a.engines, kMaxEngines);
}

double EngineTurbineTemperature(const AircraftModel& a, int engine) {
    double n1 = EngineN1(a, engine);
    return n1 > 0 ? kTurbineTempAt60 + kTurbineTempPerN1 * (n1 - 60) + a.egt_add : OutsideTemperature(a);
}

double EngineN2(const AircraftModel& a, int engine) {
    // The core runs ahead of the fan: 60 % at no N1, 100 % at full N1.
    double n1 = EngineN1(a, engine);
    return n1 > 0 ? kN2AtZeroN1 + kN2PerN1 * n1 : 0;
}

double EnginePressureRatio(const AircraftModel& a, int engine) {
    // Linear in N1 between idle (1.0) and climb thrust (1.6), a little beyond at full N1.
    constexpr double kEprRise = 0.6;
    double n1 = EngineN1(a, engine);
    if (n1 <= 0) return 1;
    return 1 + kEprRise * std::clamp((n1 - kIdleN1) / (kClimbN1 - kIdleN1), 0.0, 1.2);
}

double AmbientPressureMb(const AircraftModel& a) {
    // The standard atmosphere's pressure ratio below the tropopause, then
    // its exponential decay above, on the day's sea-level pressure.
    constexpr double kTropopauseFt = 36089;
    constexpr double kLapse = 6.8755856e-6;        // per foot
    constexpr double kExponent = 5.2558797;
    constexpr double kScaleHeightFt = 20805.8;     // above the tropopause
    double alt = std::max(a.alt, -2000.0);
    double ratio = std::pow(1 - kLapse * std::min(alt, kTropopauseFt), kExponent);
    if (alt > kTropopauseFt) ratio *= std::exp(-(alt - kTropopauseFt) / kScaleHeightFt);
    return a.qnh * ratio;
}

void GroundVector(const AircraftModel& a, double& gs_knots, double& track_deg) {
    double tas = TrueAirspeed(a);
    double h = a.hdg * kDegToRad;
    // The wind blows from wind_dir, so it pushes towards wind_dir + 180.
    double w = a.wind_dir * kDegToRad;
    double north = tas * std::cos(h) - a.wind_speed * std::cos(w);
    double east = tas * std::sin(h) - a.wind_speed * std::sin(w);
    gs_knots = std::hypot(north, east);
    track_deg = gs_knots > 1e-9 ? WrapDegrees(std::atan2(east, north) * kRadToDeg) : a.hdg;
}

// [SECTION] Geometry on the sphere
double WrapDegrees(double deg) {
    if (!std::isfinite(deg)) return 0;
    double x = std::fmod(deg, 360.0);
    if (x < 0) x += 360.0;
    if (x >= 360.0) x -= 360.0;
    return x;
}

double WrapSigned(double deg) {
    double x = WrapDegrees(deg);
    return x > 180.0 ? x - 360.0 : x;
}

void MovePoint(double& lat, double& lon, double track_deg, double distance_nm) {
    if (distance_nm == 0) return;
    double phi1 = lat * kDegToRad, lambda1 = lon * kDegToRad, theta = track_deg * kDegToRad;
    double delta = distance_nm / kEarthRadiusNm;
    double sin_phi2 = std::sin(phi1) * std::cos(delta) + std::cos(phi1) * std::sin(delta) * std::cos(theta);
    double phi2 = std::asin(std::clamp(sin_phi2, -1.0, 1.0));
    double lambda2 = lambda1 + std::atan2(std::sin(theta) * std::sin(delta) * std::cos(phi1),
                                          std::cos(delta) - std::sin(phi1) * std::sin(phi2));
    lat = phi2 * kRadToDeg;
    lon = WrapSigned(lambda2 * kRadToDeg);
}

double DistanceNm(double lat1, double lon1, double lat2, double lon2) {
    double p1 = lat1 * kDegToRad, p2 = lat2 * kDegToRad;
    double dp = p2 - p1, dl = (lon2 - lon1) * kDegToRad;
    double h = std::sin(dp / 2) * std::sin(dp / 2) + std::cos(p1) * std::cos(p2) * std::sin(dl / 2) * std::sin(dl / 2);
    return 2 * kEarthRadiusNm * std::asin(std::min(1.0, std::sqrt(h)));
}

// [SECTION] One step of flight
namespace {
void Substep(AircraftModel& a, double h) {
    double tas = TrueAirspeed(a);
    double v_fps = std::max(tas, 1.0) * kKnotsToFps;

    // 1. Lateral: nav hold flies the NAV1 course, heading hold the bug; the
    // turn is standard rate unless the bank limit makes it slower.
    bool steering = a.ap_master && (a.nav_hold || a.hdg_hold);
    a.bank = 0;
    if (steering) {
        double max_rate = std::min(kStandardRateDegPerSec,
                                   kGravityFps2 * std::tan(kBankLimitDeg * kDegToRad) / v_fps * kRadToDeg);
        double target = WrapDegrees((a.nav_hold ? a.obs : a.hdg_bug) + a.var);
        double diff = WrapSigned(target - a.hdg);
        double step = max_rate * h;
        double turned = std::abs(diff) <= step ? diff : Sign(diff) * step;
        a.hdg = std::abs(diff) <= step ? target : WrapDegrees(a.hdg + turned);
        double rate_rad = std::abs(turned) / h * kDegToRad;
        if (turned != 0) a.bank = Sign(turned) * std::atan(v_fps * rate_rad / kGravityFps2) * kRadToDeg;
    }

    // 2. Vertical: the rate asked for. Altitude hold climbs or descends at
    // the set vertical speed's size to the autopilot altitude and levels
    // there; vertical speed hold flies the set vertical speed; otherwise the
    // manual vertical speed stays. On the ground nothing climbs before the
    // lift-off speed.
    bool on_ground = OnGround(a);
    double asked = a.vs;
    double to_target = a.ap_alt - a.alt;
    bool leveling = a.ap_master && a.alt_hold;
    if (leveling) asked = Sign(to_target) * (std::abs(a.ap_vs) > 0 ? std::abs(a.ap_vs) : kDefaultClimbFpm);
    else if (a.ap_master && a.vs_hold) asked = a.ap_vs;
    if (on_ground) asked = 0;

    // 3. Energy: climb thrust sustains the book's rate at this altitude. A
    // steeper climb is flown all the same and pays for it in speed,
    // dV/dt = g x (asked - sustainable) / V, down to the lowest speed that
    // flies (vs1), where the climb falls back to what the thrust sustains.
    // Stopped engines sustain no climb.
    double sustainable = EngineN1(a, 0) > 0 ? BookClimbRate(a.alt) : 0;
    double ias_per_tas = IasForTas(1.0, a.alt);
    double bleed = 0;  // knots indicated a second
    if (!on_ground && asked > sustainable) {
        bleed = kGravityFps2 * (asked - sustainable) / 60.0 / v_fps / kKnotsToFps * ias_per_tas;
        if (a.ias - bleed * h < a.vs1) {
            asked = sustainable;
            bleed = 0;
        }
    }

    // 4. Climb or descend at the rate, levelling at the target; the ground
    // stops a descent.
    a.vs = asked;
    double step = a.vs / 60.0 * h;
    if (leveling && std::abs(step) >= std::abs(to_target)) {
        a.alt = a.ap_alt;
        a.vs = 0;
    } else {
        a.alt += step;
    }
    if (a.alt < a.ground) {
        a.alt = a.ground;
        if (a.vs < 0) a.vs = 0;
    }

    // 5. Speed. The bleed of a climb beyond the thrust comes first: the
    // autothrottle has nothing left to give, though it may slow further.
    // Otherwise Mach hold (winning over speed hold) moves towards its
    // speed: the take-off roll at 4 kt/s; in a climb with the thrust the
    // climb leaves spare, at most 1.5 kt/s; level at most 2 kt/s; in a
    // descent idle and speed brakes hold the speed; slowing at 2 kt/s.
    bool holding_speed = a.ap_master && (a.mach_hold || a.spd_hold);
    double target = a.mach_hold ? IasForTas(a.ap_mach * SpeedOfSound(a), a.alt) : a.ap_spd;
    if (bleed > 0) {
        double fall = bleed * h;
        if (holding_speed && target < a.ias) fall = std::max(fall, std::min(a.ias - target, kDecelKtPerSec * h));
        a.ias = std::max(0.0, a.ias - fall);
    } else if (holding_speed) {
        double d = target - a.ias;
        double rate = kDecelKtPerSec;
        if (d > 0 && on_ground) {
            rate = kTakeoffAccelKtPerSec;
        } else if (d > 0 && a.vs >= 0) {
            // Spare thrust: what the climb at this rate leaves of the climb thrust.
            double spare = kGravityFps2 * (sustainable - a.vs) / 60.0 / v_fps / kKnotsToFps * ias_per_tas;
            rate = std::min(a.vs > 0 ? kClimbAccelKtPerSec : kLevelAccelKtPerSec, std::max(0.0, spare));
        }
        double change = rate * h;
        a.ias = std::abs(d) <= change ? target : a.ias + Sign(d) * change;
    }
    tas = TrueAirspeed(a);
    a.pitch = tas > 0 ? std::atan2(a.vs / 60.0, tas * kKnotsToFps) * kRadToDeg : 0;

    // 6. Position along the ground track.
    GroundVector(a, a.gs, a.track);
    MovePoint(a.lat, a.lon, a.track, a.gs * h / 3600.0);

    // 7. Engines and fuel: the book's flow of the thrust; fuel comes from
    // the centre tank first, then the mains, aux and tips.
    double burn_pounds = 0;
    for (int e = 0; e < kMaxEngines; ++e) burn_pounds += EngineFuelFlow(a, e) * h / 3600.0;
    double burn = a.lbs_per_gal > 0 ? burn_pounds / a.lbs_per_gal : 0;
    auto take = [&](Tank t, double wanted) {
        double& gallons = a.tank[static_cast<int>(t)];
        double taken = std::min(gallons, wanted);
        gallons -= taken;
        return taken;
    };
    burn -= take(Tank::Center, burn);
    for (auto [left, right] : {std::pair{Tank::LeftMain, Tank::RightMain}, std::pair{Tank::LeftAux, Tank::RightAux},
                               std::pair{Tank::LeftTip, Tank::RightTip}}) {
        if (burn <= 0) break;
        double half = burn / 2;
        burn -= take(left, half) + take(right, half);
        burn -= take(left, burn);   // one side ran dry: the other feeds
        burn -= take(right, burn);
    }

    // 8. Clocks.
    a.zulu += h;
    while (a.zulu >= 86400) {
        a.zulu -= 86400;
        if (++a.zulu_day > 365) {
            a.zulu_day = 1;
            ++a.zulu_year;
        }
    }
    a.sim_time += h;
}
}  // namespace

void StepAircraft(AircraftModel& a, double dt) {
    if (a.paused || !(dt > 0)) return;
    int steps = static_cast<int>(std::ceil(dt / kMaxStepSeconds - 1e-9));
    if (steps < 1) steps = 1;
    double h = dt / steps;
    for (int i = 0; i < steps; ++i) Substep(a, h);
}

// [SECTION] Key events
bool ApplyKeyEvent(AircraftModel& a, uint32_t event, uint32_t value) {
    auto signed_value = static_cast<int32_t>(value);
    switch (event) {
    case 0x10019: a.paused = !a.paused; return true;             // pause
    case 0x10030: a.altimeter = a.qnh; return true;              // altimeter to the current pressure
    case 0x100AC: a.nav1_bcd = value & 0xFFFF; return true;      // NAV1 frequency, BCD
    case 0x100B4: a.obs = WrapDegrees(signed_value); return true; // NAV1 course
    case 0x100C1: a.nav_hold = !a.nav_hold; return true;         // autopilot NAV key
    case 0x100FD: a.rate = std::min(a.rate * 2, kSimRateMax); return true;
    case 0x100FE: a.rate = std::max(a.rate / 2, kSimRateMin); return true;
    case 0x1010F: a.hdg_hold = 1; return true;
    case 0x10143: a.spd_hold = 0; return true;
    case 0x10163: a.spd_hold = 1; return true;
    case 0x1017B: a.mach_hold = 1; return true;
    case 0x101F4: a.ap_vs = signed_value; return true;
    case 0x101F5: a.ap_spd = value; return true;
    case 0x101F6: a.ap_mach = value / 100.0; return true;
    case 0x101FA: a.hdg_bug = WrapDegrees(signed_value); return true;
    case 0x1021B: a.zulu = (value % 24) * 3600.0 + std::fmod(a.zulu, 3600.0); return true;
    case 0x1021C: a.zulu = std::floor(a.zulu / 3600.0) * 3600.0 + (value % 60) * 60.0 + std::fmod(a.zulu, 60.0); return true;
    case 0x1022E: a.spd_hold = 0; return true;
    case 0x1023E: a.mach_hold = 0; return true;
    case 0x1024C: a.ap_alt = signed_value; return true;
    case 0x10311: a.dh = std::min(a.dh + 10, 9990.0); return true;
    case 0x10312: a.dh = std::max(a.dh - 10, 0.0); return true;
    default: return false;
    }
}

// [SECTION] Fuel and speed set-up
void LoadFuelPounds(AircraftModel& a, double pounds) {
    double rest = std::max(0.0, pounds) / (a.lbs_per_gal > 0 ? a.lbs_per_gal : 1);
    const Tank groups[4][2] = {{Tank::LeftMain, Tank::RightMain}, {Tank::Center, Tank::Center},
                               {Tank::LeftAux, Tank::RightAux}, {Tank::LeftTip, Tank::RightTip}};
    for (const auto& group : groups) {
        int first = static_cast<int>(group[0]), second = static_cast<int>(group[1]);
        bool pair = first != second;
        double capacity = a.tank_capacity[first] + (pair ? a.tank_capacity[second] : 0);
        double fraction = capacity > 0 ? std::min(1.0, rest / capacity) : 0;
        a.tank[first] = a.tank_capacity[first] * fraction;
        if (pair) a.tank[second] = a.tank_capacity[second] * fraction;
        rest = std::max(0.0, rest - capacity * fraction);
    }
}

void SetGroundSpeed(AircraftModel& a, double gs_knots) {
    // |tas * h - wind| = gs, solved for tas along the heading h.
    double h = a.hdg * kDegToRad, w = a.wind_dir * kDegToRad;
    double wn = -a.wind_speed * std::cos(w), we = -a.wind_speed * std::sin(w);
    double hw = std::cos(h) * wn + std::sin(h) * we;  // wind along the heading
    double disc = hw * hw - (wn * wn + we * we) + gs_knots * gs_knots;
    double tas = disc > 0 ? -hw + std::sqrt(disc) : 0;
    a.ias = IasForTas(std::max(0.0, tas), a.alt);
}

}  // namespace orbsim
