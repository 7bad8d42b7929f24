// sim_values.cpp: token and calculator answers from the aircraft model.
//
// Index:
//   [SECTION] Raw token scales
//   [SECTION] The token table
//   [SECTION] Token lookups
//   [SECTION] A: variables and units
//   [SECTION] Calculator strings
//   [SECTION] Named variables
#include "sim_values.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace orbsim {

double Tick18(const HostState& host) {
    // A small allowance keeps sums of frame steps from landing a hair short of a tick.
    return std::floor(host.aircraft.sim_time * 18.0 + 1e-6);
}

// [SECTION] Raw token scales
namespace {
constexpr double kLatitudeScale = 111130.555557;    // raw units a degree of latitude
constexpr double kLongitudeScale = 781874935307.4;  // raw units a degree of longitude
constexpr double kVerticalSpeedScale = 1.30048;     // raw units a foot a minute
constexpr double kMachScale = 20480;                // raw units a Mach
constexpr double kMetresPerFoot = 0.3048;
constexpr double kPsfPerPsi = 144;
constexpr int kGeneralEngineStride = 10;            // oil and turbine temperature blocks
constexpr int kTurbineStride = 0x13;                // N1 and turbine flow blocks
constexpr int kFuelFlowStride = 0x27;               // per-engine fuel flow
constexpr int kPropellerStride = 0x23;              // oil quantity and reverser blocks
constexpr double kPressureScale = 16;               // raw ambient units a millibar
constexpr double kEprFactor = 0.32;                 // the module's EPR factor of engine 1
constexpr double kSurfaceFull = 16383;              // raw value of a surface at its stop

// The raw pressure source that reads as this engine's EPR through the
// module's rule, 1 + raw x k / ambient.
double EprSource(const AircraftModel& a, int engine) {
    return (EnginePressureRatio(a, engine) - 1) * AmbientPressureMb(a) * kPressureScale / kEprFactor;
}

double Rankine(double celsius) { return celsius * 9.0 / 5.0 + 491.69; }

double LocalSeconds(const AircraftModel& a) {
    double t = std::fmod(a.zulu + a.tz * 3600.0, 86400.0);
    return t < 0 ? t + 86400.0 : t;
}

using Getter = double (*)(const HostState&);
using Setter = void (*)(HostState&, double);

struct TokenDef {
    int token;
    const char* name;
    Getter get;
    Setter set;                 // null: read only, or kept as an override when settable_override
    bool settable_override;     // no place in the model; the script's value is kept
    double default_value;       // for override tokens
};

#define GET(expr) [](const HostState& h) -> double { const AircraftModel& a = h.aircraft; (void)a; return (expr); }
#define SET(stmt) [](HostState& h, double v) { AircraftModel& a = h.aircraft; (void)a; stmt; }

bool EngineRunning(const AircraftModel& a, int engine) { return EngineN1(a, engine) > 0; }

// [SECTION] The token table
const TokenDef kTokens[] = {
    {0x01, "TICK18", [](const HostState& h) { return Tick18(h); }, nullptr, false, 0},
    {0x02, "GROUND_ALTITUDE", GET(a.ground * kMetresPerFoot * 256), SET(a.ground = v / 256 / kMetresPerFoot), false, 0},
    {0x03, "CLOCK_HOUR", GET(std::floor(LocalSeconds(a) / 3600)), nullptr, false, 0},
    {0x04, "CLOCK_MINUTE", GET(std::floor(std::fmod(LocalSeconds(a), 3600) / 60)), nullptr, false, 0},
    {0x05, "CLOCK_SECOND", GET(std::floor(std::fmod(LocalSeconds(a), 60))), nullptr, false, 0},
    {0x06, "ZULU_HOUR", GET(std::floor(a.zulu / 3600)), SET(a.zulu = std::fmod(std::fabs(v), 24) * 3600 + std::fmod(a.zulu, 3600)), false, 0},
    {0x07, "ZULU_MINUTE", GET(std::floor(std::fmod(a.zulu, 3600) / 60)),
     SET(a.zulu = std::floor(a.zulu / 3600) * 3600 + std::fmod(std::fabs(v), 60) * 60 + std::fmod(a.zulu, 60)), false, 0},
    {0x08, "ZULU_DAY", GET(a.zulu_day), SET(a.zulu_day = std::clamp(static_cast<int>(v), 1, 365)), false, 0},
    {0x09, "ZULU_YEAR", GET(a.zulu_year), SET(a.zulu_year = static_cast<int>(v)), false, 0},
    {0x10, "ADF_FREQUENCY", GET(a.adf_bcd), SET(a.adf_bcd = static_cast<unsigned>(v) & 0xFFFF), false, 0},
    {0x14, "ADF_SIGNAL", nullptr, nullptr, true, 0},
    {0x16, "ADF_NEEDLE_POINTERS", nullptr, nullptr, true, 0},
    {0x18, "NAV1_FREQUENCY", GET(a.nav1_bcd), SET(a.nav1_bcd = static_cast<unsigned>(v) & 0xFFFF), false, 0},
    {0x19, "NAV1_RADIAL", nullptr, nullptr, true, 0},
    {0x1B, "NAV2_FREQUENCY", GET(a.nav2_bcd), SET(a.nav2_bcd = static_cast<unsigned>(v) & 0xFFFF), false, 0},
    {0x1C, "NAV2_RADIAL", nullptr, nullptr, true, 0},
    {0x1F, "DME1_DISTANCE", nullptr, nullptr, true, 0},
    {0x20, "DME1_SPEED", nullptr, nullptr, true, 0},
    {0x23, "DME2_DISTANCE", nullptr, nullptr, true, 0},
    {0x27, "ADF_NEEDLE", nullptr, nullptr, true, 0},
    {0x28, "NAV1_NEEDLE", nullptr, nullptr, true, 0},
    {0x29, "NAV1_GS_NEEDLE", nullptr, nullptr, true, 0},
    {0x2D, "NAV1_OBS", GET(a.obs), SET(a.obs = WrapDegrees(v)), false, 0},
    {0x2E, "NAV1_FLAGS", nullptr, nullptr, true, 0},
    {0x31, "NAV1_SIGNAL", nullptr, nullptr, true, 0},
    {0x3A, "NAV2_SIGNAL", nullptr, nullptr, true, 0},
    {0x3B, "NAV2_RELATIVE_BEARING", nullptr, nullptr, true, 0},
    {0x3D, "AIRSPEED", GET(a.ias), SET(a.ias = std::max(0.0, v)), false, 0},
    {0x40, "MACH", GET(MachNumber(a) * kMachScale), SET(a.ias = IasForTas(v / kMachScale * SpeedOfSound(a), a.alt)), false, 0},
    {0x41, "VERTICAL_SPEED", GET(a.vs * kVerticalSpeedScale), SET(a.vs = v / kVerticalSpeedScale), false, 0},
    {0x47, "PLANE_LATITUDE", GET(a.lat * kLatitudeScale), SET(a.lat = std::clamp(v / kLatitudeScale, -90.0, 90.0)), false, 0},
    {0x48, "PLANE_LONGITUDE", GET((a.lon < 0 ? a.lon + 360 : a.lon) * kLongitudeScale),
     SET(a.lon = WrapSigned(v / kLongitudeScale)), false, 0},
    {0x49, "PLANE_ALTITUDE", GET(a.alt * kMetresPerFoot), SET(a.alt = v / kMetresPerFoot), false, 0},
    {0x4B, "BAROMETER", GET(a.altimeter), SET(a.altimeter = v), false, 0},
    {0x4D, "PLANE_PITCH", GET(a.pitch), nullptr, false, 0},
    {0x4F, "PLANE_BANK", GET(a.bank), nullptr, false, 0},
    {0x50, "PLANE_BANK_FS9", GET(a.bank), nullptr, false, 0},
    {0x51, "PLANE_HEADING_MAGNETIC", GET(MagneticHeading(a)), SET(a.hdg = WrapDegrees(v + a.var)), false, 0},
    {0x52, "MAGNETIC_VAR", GET(a.var), SET(a.var = v), false, 0},
    {0x56, "PLANE_HEADING_TRUE", GET(a.hdg), SET(a.hdg = WrapDegrees(v)), false, 0},
    {0x67, "AUTOPILOT_MASTER", GET(a.ap_master), SET(a.ap_master = v != 0), false, 0},
    {0x69, "AUTOPILOT_NAV_HOLD", GET(a.nav_hold), SET(a.nav_hold = v != 0), false, 0},
    {0x6A, "AUTOPILOT_HEADING_HOLD", GET(a.hdg_hold), SET(a.hdg_hold = v != 0), false, 0},
    {0x6B, "AUTOPILOT_HEADING_LOCK_DIR", GET(a.hdg_bug), SET(a.hdg_bug = WrapDegrees(v)), false, 0},
    {0x6C, "AUTOPILOT_ALTITUDE_HOLD", GET(a.alt_hold), SET(a.alt_hold = v != 0), false, 0},
    {0x70, "AUTOPILOT_APPROACH_HOLD", GET(a.app_hold), SET(a.app_hold = v != 0), false, 0},
    {0x71, "AUTOPILOT_BACKCOURSE_HOLD", GET(a.bc_hold), SET(a.bc_hold = v != 0), false, 0},
    {0x72, "AUTOPILOT_YAW_DAMPER", GET(a.yaw_damper), SET(a.yaw_damper = v != 0), false, 0},
    {0x73, "AUTOPILOT_AIRSPEED_HOLD", GET(a.spd_hold), SET(a.spd_hold = v != 0), false, 0},
    {0x74, "AUTOPILOT_AIRSPEED", GET(a.ap_spd), SET(a.ap_spd = v), false, 0},
    {0x75, "AUTOPILOT_MACH_HOLD", GET(a.mach_hold), SET(a.mach_hold = v != 0), false, 0},
    {0x76, "AUTOPILOT_MACH", GET(a.ap_mach), SET(a.ap_mach = v), false, 0},
    {0x78, "AUTOPILOT_VERTICAL_SPEED", GET(a.ap_vs), SET(a.ap_vs = v), false, 0},
    {0x7B, "AUTOTHROTTLE_ARMED", GET(a.at_armed), SET(a.at_armed = v != 0), false, 0},
    {0x122, "FUEL_CAPACITY_CENTER", GET(a.tank_capacity[0]), nullptr, false, 0},
    {0x124, "FUEL_CAPACITY_LEFT_MAIN", GET(a.tank_capacity[1]), nullptr, false, 0},
    {0x126, "FUEL_CAPACITY_LEFT_AUX", GET(a.tank_capacity[2]), nullptr, false, 0},
    {0x128, "FUEL_CAPACITY_LEFT_TIP", GET(a.tank_capacity[3]), nullptr, false, 0},
    {0x12A, "FUEL_CAPACITY_RIGHT_MAIN", GET(a.tank_capacity[4]), nullptr, false, 0},
    {0x12C, "FUEL_CAPACITY_RIGHT_AUX", GET(a.tank_capacity[5]), nullptr, false, 0},
    {0x12E, "FUEL_CAPACITY_RIGHT_TIP", GET(a.tank_capacity[6]), nullptr, false, 0},
    {0x132, "FUEL_WEIGHT_PER_GALLON", GET(a.lbs_per_gal), SET(a.lbs_per_gal = std::max(0.0, v)), false, 0},
    {0x143, "GEAR_OR_ENGINE_STATE", nullptr, nullptr, true, 1},
    {0x146, "FLAPS_HANDLE", GET(a.flap_handle), SET(a.flap_handle = std::clamp(v, 0.0, kSurfaceFull)), false, 0},
    {0x14C, "GEAR_NOSE_POSITION", GET(a.gear * kSurfaceFull), SET(a.gear = std::clamp(v / kSurfaceFull, 0.0, 1.0)), false, 0},
    {0x14D, "GEAR_LEFT_POSITION", GET(a.gear * kSurfaceFull), SET(a.gear = std::clamp(v / kSurfaceFull, 0.0, 1.0)), false, 0},
    {0x14E, "GEAR_RIGHT_POSITION", GET(a.gear * kSurfaceFull), SET(a.gear = std::clamp(v / kSurfaceFull, 0.0, 1.0)), false, 0},
    {0x156, "AMBIENT_PRESSURE", GET(AmbientPressureMb(a) * kPressureScale), nullptr, false, 0},
    {0x150, "SIM_RATE", GET(a.rate * (h.generation == 10 ? 256.0 : 1.0)),
     SET(a.rate = std::clamp(v / (h.generation == 10 ? 256.0 : 1.0), kSimRateMin, kSimRateMax)), false, 0},
    {0x155, "OUTSIDE_TEMPERATURE", GET(OutsideTemperature(a)), nullptr, false, 0},
    {0x157, "WIND_SPEED", GET(a.wind_speed), SET(a.wind_speed = std::max(0.0, v)), false, 0},
    {0x158, "WIND_DIRECTION", GET(a.wind_dir), SET(a.wind_dir = WrapDegrees(v)), false, 0},
    {0x162, "MARKER_BEACON", nullptr, nullptr, true, 0},
    {0x182, "FUEL_TOTAL_GALLONS", GET(FuelGallons(a)), SET(LoadFuelPounds(a, v * a.lbs_per_gal)), false, 0},
    {0x1A5, "ENG1_FUEL_FLOW", GET(EngineFuelFlow(a, 0)), nullptr, false, 0},
    {0x1A5 + kFuelFlowStride, "ENG2_FUEL_FLOW", GET(EngineFuelFlow(a, 1)), nullptr, false, 0},
    {0x1A5 + 2 * kFuelFlowStride, "ENG3_FUEL_FLOW", GET(EngineFuelFlow(a, 2)), nullptr, false, 0},
    {0x1A5 + 3 * kFuelFlowStride, "ENG4_FUEL_FLOW", GET(EngineFuelFlow(a, 3)), nullptr, false, 0},
    {0x226, "NAV1_RELATIVE_BEARING", nullptr, nullptr, true, 0},
    {0x227, "GROUND_VELOCITY", [](const HostState& h) { double gs, track; GroundVector(h.aircraft, gs, track); return gs * kKnotsToFps; },
     [](HostState& h, double v) { SetGroundSpeed(h.aircraft, v / kKnotsToFps); }, false, 0},
#define ENGINE_BLOCK(e)                                                                                            \
    {0x231 + ((e) - 1) * kGeneralEngineStride, "ENG" #e "_OIL_TEMPERATURE",                                              \
     GET(Rankine(EngineRunning(a, (e) - 1) ? a.oil_temperature : OutsideTemperature(a))), nullptr, false, 0},     \
    {0x232 + ((e) - 1) * kGeneralEngineStride, "ENG" #e "_OIL_PRESSURE",                                                 \
     GET(EngineRunning(a, (e) - 1) ? a.oil_pressure * kPsfPerPsi : 0), nullptr, false, 0},                          \
    {0x237 + ((e) - 1) * kGeneralEngineStride, "ENG" #e "_TURBINE_TEMPERATURE",                                          \
     GET(Rankine(EngineTurbineTemperature(a, (e) - 1))), nullptr, false, 0},                                      \
    {0x272 + ((e) - 1) * kTurbineStride, "ENG" #e "_N1", GET(EngineN1(a, (e) - 1)), nullptr, false, 0},           \
    {0x273 + ((e) - 1) * kTurbineStride, "ENG" #e "_N2", GET(EngineN2(a, (e) - 1)), nullptr, false, 0},           \
    {0x27E + ((e) - 1) * kTurbineStride, "ENG" #e "_TURBINE_FUEL_FLOW", GET(EngineFuelFlow(a, (e) - 1)), nullptr, false, 0}, \
    {0x271 + ((e) - 1) * kTurbineStride, "ENG" #e "_CORE_N2", GET(EngineN2(a, (e) - 1)), nullptr, false, 0},      \
    {0x279 + ((e) - 1) * kTurbineStride, "ENG" #e "_EPR_SOURCE", GET(EprSource(a, (e) - 1)), nullptr, false, 0},  \
    {0x80 + ((e) - 1) * kPropellerStride, "ENG" #e "_REVERSER",                                                   \
     GET((e) <= a.engines && a.reversers ? -1.0 : 0.0), nullptr, false, 0},                                      \
    {0x95 + ((e) - 1) * kPropellerStride, "ENG" #e "_OIL_QUANTITY",                                               \
     GET((e) <= a.engines ? a.oil_quantity : 0.0), nullptr, false, 0}
    ENGINE_BLOCK(1), ENGINE_BLOCK(2), ENGINE_BLOCK(3), ENGINE_BLOCK(4),
#undef ENGINE_BLOCK
    {0x266, "RADIO_HEIGHT", GET((a.alt - a.ground) * kMetresPerFoot), nullptr, false, 0},
    {0x30E, "ELEVATOR_TRIM", GET(a.elevator_trim * kSurfaceFull), SET(a.elevator_trim = std::clamp(v / kSurfaceFull, -1.0, 1.0)), false, 0},
    {0x30F, "AILERON_TRIM", GET(a.aileron_trim * kSurfaceFull), SET(a.aileron_trim = std::clamp(v / kSurfaceFull, -1.0, 1.0)), false, 0},
    {0x310, "RUDDER_TRIM", GET(a.rudder_trim * kSurfaceFull), SET(a.rudder_trim = std::clamp(v / kSurfaceFull, -1.0, 1.0)), false, 0},
    {0x38B, "SPOILERS_LEFT_POSITION", GET(a.spoilers), SET(a.spoilers = std::clamp(v, 0.0, kSurfaceFull)), false, 0},
    {0x38C, "SPOILERS_RIGHT_POSITION", GET(a.spoilers), SET(a.spoilers = std::clamp(v, 0.0, kSurfaceFull)), false, 0},
    {0x305, "AVIONICS_MASTER", GET(a.avionics), SET(a.avionics = v != 0), false, 0},
    {0x318, "FLIGHT_DIRECTOR_ACTIVE", GET(a.fd_on), SET(a.fd_on = v != 0), false, 0},
    {0x319, "FLIGHT_DIRECTOR_PITCH", nullptr, nullptr, true, 0},
    {0x31A, "FLIGHT_DIRECTOR_BANK", nullptr, nullptr, true, 0},
};
#undef GET
#undef SET

const TokenDef* FindToken(int token) {
    for (const TokenDef& def : kTokens)
        if (def.token == token) return &def;
    return nullptr;
}
}  // namespace

// [SECTION] Token lookups
double TokenValue(const HostState& host, int token) {
    auto over = host.token_overrides.find(token);
    if (over != host.token_overrides.end()) return over->second;
    const TokenDef* def = FindToken(token);
    if (def == nullptr) return 0;
    if (def->get == nullptr) return def->default_value;
    double value = def->get(host);
    return std::isfinite(value) ? value : 0;
}

bool SetToken(HostState& host, int token, double raw, std::string& error) {
    const TokenDef* def = FindToken(token);
    if (def != nullptr && def->set != nullptr) {
        def->set(host, raw);
        host.token_overrides.erase(token);
        return true;
    }
    if (def != nullptr && !def->settable_override) {
        error = std::string("token ") + def->name + " follows the aircraft model; set the aircraft instead";
        return false;
    }
    host.token_overrides[token] = raw;
    return true;
}

bool TokenByName(std::string_view text, int& token) {
    if (text.empty()) return false;
    std::string s(text);
    char* end = nullptr;
    long value = std::strtol(s.c_str(), &end, 0);
    if (end != s.c_str() && *end == 0) {
        if (value < 0 || value > 0xFFFF) return false;
        token = static_cast<int>(value);
        return true;
    }
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    for (const TokenDef& def : kTokens)
        if (s == def.name) {
            token = def.token;
            return true;
        }
    return false;
}

const char* TokenName(int token) {
    const TokenDef* def = FindToken(token);
    return def ? def->name : nullptr;
}

std::vector<int> KnownTokens() {
    std::vector<int> tokens;
    for (const TokenDef& def : kTokens) tokens.push_back(def.token);
    std::sort(tokens.begin(), tokens.end());
    return tokens;
}

// [SECTION] A: variables and units
namespace {
enum class UnitKind { Length, Speed, VerticalSpeed, Angle, Number, Text };

struct AircraftVarDef {
    const char* name;           // upper case, single spaces
    UnitKind kind;
    double (*get)(const HostState&);
    void (*set)(HostState&, double);
    const char* (*get_text)(const HostState&);
};

#define AGET(expr) [](const HostState& h) -> double { const AircraftModel& a = h.aircraft; (void)a; return (expr); }
#define ASET(stmt) [](HostState& h, double v) { AircraftModel& a = h.aircraft; (void)a; stmt; }

const AircraftVarDef kAircraftVars[] = {
    {"TITLE", UnitKind::Text, nullptr, nullptr, [](const HostState& h) { return h.aircraft.title.c_str(); }},
    {"NAV IDENT", UnitKind::Text, nullptr, nullptr, [](const HostState& h) { return h.aircraft.nav1_ident.c_str(); }},
    {"INDICATED ALTITUDE", UnitKind::Length, AGET(IndicatedAltitude(a)), ASET(a.alt = v - (IndicatedAltitude(a) - a.alt)), nullptr},
    {"AUTOPILOT ALTITUDE LOCK VAR", UnitKind::Length, AGET(a.ap_alt), ASET(a.ap_alt = v), nullptr},
    {"DECISION HEIGHT", UnitKind::Length, AGET(a.dh), ASET(a.dh = std::max(0.0, v)), nullptr},
    {"DESIGN SPEED VS0", UnitKind::Speed, AGET(a.vs0), ASET(a.vs0 = v), nullptr},
    {"DESIGN SPEED VS1", UnitKind::Speed, AGET(a.vs1), ASET(a.vs1 = v), nullptr},
    {"AP_LOC_HOLD_ON", UnitKind::Number, AGET(a.loc_hold), ASET(a.loc_hold = v != 0), nullptr},
    {"LEADING EDGE FLAPS LEFT ANGLE", UnitKind::Angle, AGET(a.le_flaps), ASET(a.le_flaps = v), nullptr},
    {"LEADING EDGE FLAPS RIGHT ANGLE", UnitKind::Angle, AGET(a.le_flaps), ASET(a.le_flaps = v), nullptr},
    {"AIRSPEED TRUE", UnitKind::Speed, AGET(TrueAirspeed(a)), ASET(a.ias = IasForTas(std::max(0.0, v), a.alt)), nullptr},
    {"AIRSPEED INDICATED", UnitKind::Speed, AGET(a.ias), ASET(a.ias = std::max(0.0, v)), nullptr},
    {"AIRSPEED MACH", UnitKind::Number, AGET(MachNumber(a)), ASET(a.ias = IasForTas(v * SpeedOfSound(a), a.alt)), nullptr},
    {"PLANE ALTITUDE", UnitKind::Length, AGET(a.alt), ASET(a.alt = v), nullptr},
    {"PLANE LATITUDE", UnitKind::Angle, AGET(a.lat), ASET(a.lat = std::clamp(v, -90.0, 90.0)), nullptr},
    {"PLANE LONGITUDE", UnitKind::Angle, AGET(a.lon), ASET(a.lon = WrapSigned(v)), nullptr},
    {"PLANE HEADING DEGREES TRUE", UnitKind::Angle, AGET(a.hdg), ASET(a.hdg = WrapDegrees(v)), nullptr},
    {"PLANE HEADING DEGREES MAGNETIC", UnitKind::Angle, AGET(MagneticHeading(a)), ASET(a.hdg = WrapDegrees(v + a.var)), nullptr},
    {"MAGVAR", UnitKind::Angle, AGET(a.var), ASET(a.var = v), nullptr},
    {"VERTICAL SPEED", UnitKind::VerticalSpeed, AGET(a.vs), ASET(a.vs = v), nullptr},
    {"GROUND VELOCITY", UnitKind::Speed, [](const HostState& h) { double gs, t; GroundVector(h.aircraft, gs, t); return gs; },
     ASET(SetGroundSpeed(a, v)), nullptr},
    {"AMBIENT WIND VELOCITY", UnitKind::Speed, AGET(a.wind_speed), ASET(a.wind_speed = std::max(0.0, v)), nullptr},
    {"AMBIENT WIND DIRECTION", UnitKind::Angle, AGET(a.wind_dir), ASET(a.wind_dir = WrapDegrees(v)), nullptr},
    {"AMBIENT TEMPERATURE", UnitKind::Number, AGET(OutsideTemperature(a)), nullptr, nullptr},
    {"AUTOPILOT HEADING LOCK DIR", UnitKind::Angle, AGET(a.hdg_bug), ASET(a.hdg_bug = WrapDegrees(v)), nullptr},
    {"AUTOPILOT AIRSPEED HOLD VAR", UnitKind::Speed, AGET(a.ap_spd), ASET(a.ap_spd = v), nullptr},
    {"AUTOPILOT VERTICAL HOLD VAR", UnitKind::VerticalSpeed, AGET(a.ap_vs), ASET(a.ap_vs = v), nullptr},
    {"KOHLSMAN SETTING MB", UnitKind::Number, AGET(a.altimeter), ASET(a.altimeter = v), nullptr},
    {"SIMULATION RATE", UnitKind::Number, AGET(a.rate), ASET(a.rate = std::clamp(v, kSimRateMin, kSimRateMax)), nullptr},
    {"FUEL TOTAL QUANTITY WEIGHT", UnitKind::Number, AGET(FuelPounds(a)), ASET(LoadFuelPounds(a, v)), nullptr},
    // A level turn loads the wings by 1 / cos(bank); the model flies coordinated, so the ball stays centred.
    {"G FORCE", UnitKind::Number, AGET(1.0 / std::cos(std::clamp(a.bank, -80.0, 80.0) * 0.017453292519943295)), nullptr,
     nullptr},
    {"TURN COORDINATOR BALL", UnitKind::Number, AGET(0.0), nullptr, nullptr},
    {"AUTOPILOT VERTICAL HOLD", UnitKind::Number, AGET(a.vs_hold), ASET(a.vs_hold = v != 0), nullptr},
};
#undef AGET
#undef ASET

std::string Normalise(std::string_view s, bool upper) {
    std::string out;
    bool space = false;
    for (char c : s) {
        if (c == ' ' || c == '\t') {
            space = !out.empty();
            continue;
        }
        if (space) out += ' ';
        space = false;
        if (upper && c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
        if (!upper && c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
        out += c;
    }
    return out;
}

// Factor from the variable's own unit to the named one; false if the unit doesn't fit.
bool UnitFactor(UnitKind kind, const std::string& unit, double& factor) {
    factor = 1;
    if (unit.empty()) return true;
    switch (kind) {
    case UnitKind::Length:
        if (unit == "feet" || unit == "foot" || unit == "ft") return true;
        if (unit == "meters" || unit == "metres" || unit == "meter" || unit == "m") return factor = 0.3048, true;
        return false;
    case UnitKind::Speed:
        if (unit == "knots" || unit == "knot" || unit == "kts" || unit == "kt") return true;
        if (unit == "meters per second" || unit == "m/s") return factor = 0.514444, true;
        return false;
    case UnitKind::VerticalSpeed:
        if (unit == "feet per minute" || unit == "feet/minute" || unit == "fpm") return true;
        if (unit == "feet per second") return factor = 1.0 / 60, true;
        return false;
    case UnitKind::Angle:
        if (unit == "degrees" || unit == "degree") return true;
        if (unit == "radians" || unit == "radian") return factor = 0.017453292519943295, true;
        return false;
    case UnitKind::Number:
        return unit == "number" || unit == "enum" || unit == "bool" || unit == "celsius" || unit == "millibars" ||
               unit == "pounds" || unit == "percent" || unit == "gforce" || unit == "position 128";
    case UnitKind::Text:
        return unit == "string";
    }
    return false;
}

const AircraftVarDef* FindAircraftVar(const std::string& name) {
    for (const AircraftVarDef& def : kAircraftVars)
        if (name == def.name) return &def;
    return nullptr;
}

void SplitNameUnit(std::string_view text, std::string& name, std::string& unit) {
    size_t comma = text.find(',');
    name = Normalise(text.substr(0, comma), true);
    unit = comma == std::string_view::npos ? "" : Normalise(text.substr(comma + 1), false);
}
}  // namespace

bool SetAircraftVariable(HostState& host, std::string_view name_and_unit, double value, std::string& error) {
    std::string name, unit;
    SplitNameUnit(name_and_unit, name, unit);
    const AircraftVarDef* def = FindAircraftVar(name);
    if (def == nullptr) {
        error = "A:" + name + " is not a variable of the aircraft model";
        return false;
    }
    double factor = 1;
    if (def->set == nullptr || !UnitFactor(def->kind, unit, factor)) {
        error = def->set == nullptr ? "A:" + name + " cannot be set" : "unit '" + unit + "' does not fit A:" + name;
        return false;
    }
    def->set(host, value / factor);
    return true;
}

// [SECTION] Calculator strings
CalculatorAnswer EvaluateCalculator(HostState& host, std::string_view code) {
    CalculatorAnswer answer;
    std::string_view s = code;
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    if (s.size() < 5 || s.front() != '(' || s.back() != ')') return answer;
    s = s.substr(1, s.size() - 2);
    if (s.find('(') != std::string_view::npos || s.find(')') != std::string_view::npos) return answer;
    if (s.size() < 2 || s[1] != ':') return answer;
    char kind = s[0] >= 'a' && s[0] <= 'z' ? static_cast<char>(s[0] - 32) : s[0];
    std::string name, unit;
    SplitNameUnit(s.substr(2), name, unit);
    if (kind == 'L') {
        // Local variables keep their name's case; the lookup ignores it.
        size_t comma = s.find(',');
        std::string raw = Normalise(s.substr(2, comma == std::string_view::npos ? std::string_view::npos : comma - 2), false);
        int id = FindNamedVariable(host, raw);
        answer.ok = true;
        answer.number = id >= 0 ? host.named[static_cast<size_t>(id)].value : 0;
        return answer;
    }
    if (kind != 'A') return answer;
    // An index such as "GENERAL ENG N1:1" names the engine; the model's engines are alike.
    size_t colon = name.find(':');
    if (colon != std::string::npos) name = name.substr(0, colon);
    const AircraftVarDef* def = FindAircraftVar(name);
    double factor = 1;
    if (def == nullptr || !UnitFactor(def->kind, unit, factor)) return answer;
    answer.ok = true;
    if (def->kind == UnitKind::Text) {
        answer.is_text = true;
        answer.text = def->get_text(host);
    } else {
        answer.number = def->get(host) * factor;
    }
    return answer;
}

// [SECTION] Named variables
int FindNamedVariable(const HostState& host, std::string_view name) {
    for (size_t i = 0; i < host.named.size(); ++i) {
        const std::string& n = host.named[i].name;
        if (n.size() != name.size()) continue;
        bool same = true;
        for (size_t k = 0; k < n.size() && same; ++k) {
            char a = n[k], b = name[k];
            if (a >= 'A' && a <= 'Z') a = static_cast<char>(a + 32);
            if (b >= 'A' && b <= 'Z') b = static_cast<char>(b + 32);
            same = a == b;
        }
        if (same) return static_cast<int>(i);
    }
    return -1;
}

int RegisterNamedVariable(HostState& host, std::string_view name) {
    int id = FindNamedVariable(host, name);
    if (id >= 0) return id;
    if (static_cast<int>(host.named.size()) >= kMaxNamedVariables || name.empty()) return -1;
    host.named.push_back({std::string(name), 0});
    return static_cast<int>(host.named.size()) - 1;
}

}  // namespace orbsim
