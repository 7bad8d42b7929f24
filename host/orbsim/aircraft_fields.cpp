// aircraft_fields.cpp: one table of numeric fields, and the few that are
// written in a form of their own (wind, zulu, payload, title, nav1).
#include "aircraft_fields.h"

#include "text_util.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace orbsim {

namespace {
using Get = double (*)(const AircraftModel&);
using Set = void (*)(AircraftModel&, double);

struct Field {
    const char* key;
    Get get;
    Set set;                                    // null: read only
};

#define G(expr) [](const AircraftModel& a) -> double { return (expr); }
#define S(stmt) [](AircraftModel& a, double v) { stmt; }

const Field kFields[] = {
    {"lat", G(a.lat), S(a.lat = std::clamp(v, -90.0, 90.0))},
    {"lon", G(a.lon), S(a.lon = WrapSigned(v))},
    {"alt", G(a.alt), S(a.alt = v)},
    {"ground", G(a.ground), S(a.ground = v)},
    {"hdg", G(a.hdg), S(a.hdg = WrapDegrees(v))},
    {"mhdg", G(MagneticHeading(a)), S(a.hdg = WrapDegrees(v + a.var))},
    {"var", G(a.var), S(a.var = v)},
    {"ias", G(a.ias), S(a.ias = std::max(0.0, v))},
    {"tas", G(TrueAirspeed(a)), S(a.ias = IasForTas(std::max(0.0, v), a.alt))},
    {"gs", [](const AircraftModel& a) { double gs, t; GroundVector(a, gs, t); return gs; }, S(SetGroundSpeed(a, std::max(0.0, v)))},
    {"track", [](const AircraftModel& a) { double gs, t; GroundVector(a, gs, t); return t; }, nullptr},
    {"mach", G(MachNumber(a)), S(a.ias = IasForTas(std::max(0.0, v) * SpeedOfSound(a), a.alt))},
    {"vs", G(a.vs), S(a.vs = v)},
    {"pitch", G(a.pitch), nullptr},
    {"bank", G(a.bank), nullptr},
    {"wind_dir", G(a.wind_dir), S(a.wind_dir = WrapDegrees(v))},
    {"wind_speed", G(a.wind_speed), S(a.wind_speed = std::max(0.0, v))},
    {"oat", G(OutsideTemperature(a)), nullptr},
    {"isa", G(a.isa_dev), S(a.isa_dev = v)},
    {"qnh", G(a.qnh), S(a.qnh = v)},
    {"baro", G(a.altimeter), S(a.altimeter = v)},
    {"indicated_alt", G(IndicatedAltitude(a)), nullptr},
    {"ap", G(a.ap_master), S(a.ap_master = v != 0)},
    {"ap_hdg_hold", G(a.hdg_hold), S(a.hdg_hold = v != 0)},
    {"ap_nav_hold", G(a.nav_hold), S(a.nav_hold = v != 0)},
    {"ap_alt_hold", G(a.alt_hold), S(a.alt_hold = v != 0)},
    {"ap_vs_hold", G(a.vs_hold), S(a.vs_hold = v != 0)},
    {"ap_spd_hold", G(a.spd_hold), S(a.spd_hold = v != 0)},
    {"ap_mach_hold", G(a.mach_hold), S(a.mach_hold = v != 0)},
    {"ap_app_hold", G(a.app_hold), S(a.app_hold = v != 0)},
    {"ap_loc_hold", G(a.loc_hold), S(a.loc_hold = v != 0)},
    {"yd", G(a.yaw_damper), S(a.yaw_damper = v != 0)},
    {"at", G(a.at_armed), S(a.at_armed = v != 0)},
    {"fd", G(a.fd_on), S(a.fd_on = v != 0)},
    {"hdg_bug", G(a.hdg_bug), S(a.hdg_bug = WrapDegrees(v))},
    {"ap_alt", G(a.ap_alt), S(a.ap_alt = v)},
    {"ap_vs", G(a.ap_vs), S(a.ap_vs = v)},
    {"ap_spd", G(a.ap_spd), S(a.ap_spd = v)},
    {"ap_mach", G(a.ap_mach), S(a.ap_mach = v)},
    {"obs", G(a.obs), S(a.obs = WrapDegrees(v))},
    {"dh", G(a.dh), S(a.dh = std::max(0.0, v))},
    {"vs0", G(a.vs0), S(a.vs0 = v)},
    {"vs1", G(a.vs1), S(a.vs1 = v)},
    {"flaps", G(a.le_flaps), S(a.le_flaps = v)},
    {"avionics", G(a.avionics), S(a.avionics = v != 0)},
    {"rate", G(a.rate), S(a.rate = std::clamp(v, kSimRateMin, kSimRateMax))},
    {"paused", G(a.paused), S(a.paused = v != 0)},
    {"time", G(a.sim_time), nullptr},
    {"zulu_seconds", G(a.zulu), S(a.zulu = std::fmod(std::fabs(v), 86400.0))},
    {"zulu_day", G(a.zulu_day), S(a.zulu_day = std::clamp(static_cast<int>(v), 1, 365))},
    {"zulu_year", G(a.zulu_year), S(a.zulu_year = static_cast<int>(v))},
    {"tz", G(a.tz), S(a.tz = std::clamp(v, -14.0, 14.0))},
    {"engines", G(a.engines), S(a.engines = std::clamp(static_cast<int>(v), 0, kMaxEngines))},
    {"n1", G(EngineN1(a, 0)), S(a.n1_set = std::clamp(v, 0.0, 110.0))},
    {"ff", G(a.flow_factor), S(a.flow_factor = std::clamp(v, 0.0, 1000.0))},
    {"fuel_flow", G(EngineFuelFlow(a, 0)), nullptr},
    {"total_fuel_flow", [](const AircraftModel& a) { double t = 0; for (int e = 0; e < kMaxEngines; ++e) t += EngineFuelFlow(a, e); return t; }, nullptr},
    {"egt", G(EngineTurbineTemperature(a, 0)), nullptr},
    {"egt_add", G(a.egt_add), S(a.egt_add = std::clamp(v, -500.0, 1000.0))},
    {"oil_temp", G(a.oil_temperature), S(a.oil_temperature = std::clamp(v, -60.0, 400.0))},
    {"oil_press", G(a.oil_pressure), S(a.oil_pressure = std::clamp(v, 0.0, 500.0))},
    {"n2", G(EngineN2(a, 0)), nullptr},
    {"epr", G(EnginePressureRatio(a, 0)), nullptr},
    {"ambient_mb", G(AmbientPressureMb(a)), nullptr},
    {"oil_qty", G(a.oil_quantity), S(a.oil_quantity = std::clamp(v, 0.0, 100.0))},
    {"reversers", G(a.reversers), S(a.reversers = v != 0)},
    {"flap_handle", G(a.flap_handle), S(a.flap_handle = std::clamp(v, 0.0, 16383.0))},
    {"spoilers", G(a.spoilers), S(a.spoilers = std::clamp(v, 0.0, 16383.0))},
    {"gear", G(a.gear), S(a.gear = std::clamp(v, 0.0, 1.0))},
    {"elevator_trim", G(a.elevator_trim), S(a.elevator_trim = std::clamp(v, -1.0, 1.0))},
    {"aileron_trim", G(a.aileron_trim), S(a.aileron_trim = std::clamp(v, -1.0, 1.0))},
    {"rudder_trim", G(a.rudder_trim), S(a.rudder_trim = std::clamp(v, -1.0, 1.0))},
    {"fuel", G(FuelPounds(a)), S(LoadFuelPounds(a, v))},
    {"fuel_gal", G(FuelGallons(a)), nullptr},
    {"zfw", G(a.zfw), S(a.zfw = std::max(0.0, v))},
    {"empty", G(a.empty_weight), S(a.empty_weight = std::max(0.0, v))},
    {"gross", G(GrossWeight(a)), nullptr},
    {"climb_limit", G(BookClimbRate(a.alt)), nullptr},
    {"on_ground", G(OnGround(a) ? 1 : 0), nullptr},
    {"lbs_per_gal", G(a.lbs_per_gal), S(a.lbs_per_gal = std::max(0.1, v))},
    {"tank_center", G(a.tank[0]), S(a.tank[0] = std::clamp(v, 0.0, a.tank_capacity[0]))},
    {"tank_left_main", G(a.tank[1]), S(a.tank[1] = std::clamp(v, 0.0, a.tank_capacity[1]))},
    {"tank_left_aux", G(a.tank[2]), S(a.tank[2] = std::clamp(v, 0.0, a.tank_capacity[2]))},
    {"tank_left_tip", G(a.tank[3]), S(a.tank[3] = std::clamp(v, 0.0, a.tank_capacity[3]))},
    {"tank_right_main", G(a.tank[4]), S(a.tank[4] = std::clamp(v, 0.0, a.tank_capacity[4]))},
    {"tank_right_aux", G(a.tank[5]), S(a.tank[5] = std::clamp(v, 0.0, a.tank_capacity[5]))},
    {"tank_right_tip", G(a.tank[6]), S(a.tank[6] = std::clamp(v, 0.0, a.tank_capacity[6]))},
    {"cap_center", G(a.tank_capacity[0]), S(a.tank_capacity[0] = std::max(0.0, v); a.tank[0] = std::min(a.tank[0], a.tank_capacity[0]))},
    {"cap_main", G(a.tank_capacity[1]), S(a.tank_capacity[1] = a.tank_capacity[4] = std::max(0.0, v);
                                          a.tank[1] = std::min(a.tank[1], a.tank_capacity[1]); a.tank[4] = std::min(a.tank[4], a.tank_capacity[4]))},
    {"cap_aux", G(a.tank_capacity[2]), S(a.tank_capacity[2] = a.tank_capacity[5] = std::max(0.0, v);
                                         a.tank[2] = std::min(a.tank[2], a.tank_capacity[2]); a.tank[5] = std::min(a.tank[5], a.tank_capacity[5]))},
    {"cap_tip", G(a.tank_capacity[3]), S(a.tank_capacity[3] = a.tank_capacity[6] = std::max(0.0, v);
                                         a.tank[3] = std::min(a.tank[3], a.tank_capacity[3]); a.tank[6] = std::min(a.tank[6], a.tank_capacity[6]))},
};
#undef G
#undef S

const Field* FindField(std::string_view key) {
    for (const Field& f : kFields)
        if (key == f.key) return &f;
    return nullptr;
}

bool Fail(std::string& error, const std::string& message) {
    error = message;
    return false;
}
}  // namespace

bool SetAircraftField(AircraftModel& a, std::string_view key, std::string_view value, std::string& error) {
    std::string k = Lower(key);
    // Fields with a form of their own.
    if (k == "wind") {
        size_t slash = value.find('/');
        double dir = 0, speed = 0;
        if (slash == std::string_view::npos || !ParseNumber(value.substr(0, slash), dir) ||
            !ParseNumber(value.substr(slash + 1), speed) || speed < 0)
            return Fail(error, "wind must be DIRECTION/SPEED, e.g. wind=270/30");
        a.wind_dir = WrapDegrees(dir);
        a.wind_speed = speed;
        return true;
    }
    if (k == "zulu") {
        int h = 0, m = 0, s = 0;
        char tail = 0;
        std::string v(value);
        int n = std::sscanf(v.c_str(), "%d:%d:%d%c", &h, &m, &s, &tail);
        if (n < 2 || n > 3 || h < 0 || h > 23 || m < 0 || m > 59 || s < 0 || s > 59)
            return Fail(error, "zulu must be HH:MM or HH:MM:SS");
        a.zulu = h * 3600.0 + m * 60.0 + s;
        return true;
    }
    if (k == "payload") {
        std::vector<double> weights;
        size_t start = 0;
        while (start <= value.size()) {
            size_t comma = value.find(',', start);
            if (comma == std::string_view::npos) comma = value.size();
            double w = 0;
            if (!ParseNumber(value.substr(start, comma - start), w) || w < 0)
                return Fail(error, "payload must be pounds a station, e.g. payload=3000,6000");
            weights.push_back(w);
            if (weights.size() > static_cast<size_t>(kMaxStations)) return Fail(error, "payload has more than 61 stations");
            start = comma + 1;
        }
        a.payload = weights;
        return true;
    }
    if (k == "title") {
        a.title = std::string(value.substr(0, 127));
        return true;
    }
    if (k == "nav1_ident") {
        a.nav1_ident = std::string(value.substr(0, 7));
        return true;
    }
    if (k == "nav1") {
        // MHz, 108.00 to 117.95, kept as four BCD digits of the hundredths less 100 MHz.
        double mhz = 0;
        if (!ParseNumber(value, mhz) || mhz < 108 || mhz >= 118) return Fail(error, "nav1 must be a frequency 108.00 to 117.95");
        int n = static_cast<int>(std::lround((mhz - 100) * 100));
        a.nav1_bcd = static_cast<unsigned>(((n / 1000) << 12) | (((n / 100) % 10) << 8) | (((n / 10) % 10) << 4) | (n % 10));
        return true;
    }
    const Field* field = FindField(k);
    if (field == nullptr) return Fail(error, "unknown aircraft key '" + k + "'");
    if (field->set == nullptr) return Fail(error, "aircraft key '" + k + "' is read only");
    double v = 0;
    if (!ParseNumber(value, v)) return Fail(error, "aircraft " + k + "='" + std::string(value) + "' is not a number");
    field->set(a, v);
    return true;
}

bool GetAircraftField(const AircraftModel& a, std::string_view key, double& value, std::string& error) {
    std::string k = Lower(key);
    if (k == "fuel_lbs") k = "fuel";
    const Field* field = FindField(k);
    if (field == nullptr) return Fail(error, "unknown aircraft key '" + k + "'");
    value = field->get(a);
    return true;
}

std::vector<std::string> DescribeAircraft(const AircraftModel& a) {
    std::vector<std::string> lines;
    char buf[128];
    for (const Field& f : kFields) {
        std::snprintf(buf, sizeof buf, "%s=%.6g", f.key, f.get(a));
        lines.emplace_back(buf);
    }
    lines.push_back("title=" + a.title);
    lines.push_back("nav1_ident=" + a.nav1_ident);
    std::snprintf(buf, sizeof buf, "nav1=%04X", a.nav1_bcd);
    lines.emplace_back(buf);
    std::string payload = "payload=";
    for (size_t i = 0; i < a.payload.size(); ++i) {
        std::snprintf(buf, sizeof buf, "%s%.0f", i ? "," : "", a.payload[i]);
        payload += buf;
    }
    lines.push_back(payload);
    return lines;
}

std::vector<std::string> AircraftFieldNames() {
    std::vector<std::string> names;
    for (const Field& f : kFields) names.emplace_back(f.key);
    for (const char* special : {"wind", "zulu", "payload", "title", "nav1_ident", "nav1"}) names.emplace_back(special);
    return names;
}

}  // namespace orbsim
