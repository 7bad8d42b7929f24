// sim_access.cpp: the panel table, token reads, calculator strings, key
// events, windows, named variables, and the accessors with their conversions.
//
// Index:
//   [SECTION] Panel table slots
//   [SECTION] Calls
//   [SECTION] Conversions and accessors
#include "frame/sim_access.h"

#include "frame/module_state.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <initializer_list>

// [SECTION] Panel table slots
PANELS* PanelTable() { return static_cast<PANELS*>(ImportTable.PANELSentry.fnptr); }

void* PanelSlotFunction(PanelSlot slot) {
    PANELS* panels = PanelTable();
    if (panels == nullptr) return nullptr;
    int index = static_cast<int>(slot);
    if (index < 0 || index >= kPanelSlotCount) return nullptr;
    // The older generation's table may end before the newer slots; only the
    // newer simulator (or a table that says it is newer) is asked for them.
    if (index >= kFirstNewerGenerationSlot && g_module.SimGeneration != 10 && panels->header[5] < 0x0A00)
        return nullptr;
    return panels->slots[index];
}

template <typename Fn>
static Fn Slot(PanelSlot slot) {
    return reinterpret_cast<Fn>(PanelSlotFunction(slot));
}

// [SECTION] Calls
double ReadToken(int token) {
    auto lookup = Slot<PFN_lookup_var>(PanelSlot::lookup_var);
    if (lookup == nullptr) return 0;
    MODULE_VAR var = {};
    var.id = token;
    lookup(&var);
    double value = var.var_value.n;
    return std::isfinite(value) ? value : 0;
}

int ReadTokenFlag(int token) { return static_cast<int>(ReadToken(token)); }

static bool ExecuteCalculator(const char* code, double* f, SINT32* i, PCSTRINGZ* s) {
    auto execute = Slot<PFN_execute_calculator_code>(PanelSlot::execute_calculator_code);
    if (execute == nullptr || code == nullptr) return false;
    return execute(code, f, i, s) != 0;
}

double ExecuteCalculatorDouble(const char* code) {
    double value = 0;
    if (!ExecuteCalculator(code, &value, nullptr, nullptr)) return 0;
    return std::isfinite(value) ? value : 0;
}

int ExecuteCalculatorInt(const char* code) {
    SINT32 value = 0;
    if (!ExecuteCalculator(code, nullptr, &value, nullptr)) return 0;
    return value;
}

bool ExecuteCalculatorText(const char* code, char* out, int out_size) {
    if (out == nullptr || out_size <= 0) return false;
    out[0] = 0;
    PCSTRINGZ text = nullptr;
    if (!ExecuteCalculator(code, nullptr, nullptr, &text) || text == nullptr) return false;
    std::snprintf(out, static_cast<size_t>(out_size), "%s", text);
    return true;
}

void TriggerKeyEvent(ID32 event, UINT32 value) {
    if (auto trigger = Slot<PFN_trigger_key_event>(PanelSlot::trigger_key_event)) trigger(event, value);
}

bool IsPanelWindowVisible(UINT32 panel_ident) {
    auto visible = Slot<PFN_is_panel_window_visible_ident>(PanelSlot::is_panel_window_visible_ident);
    return visible != nullptr && visible(panel_ident) != 0;
}

void PanelWindowToggle(UINT32 panel_ident) {
    if (auto toggle = Slot<PFN_panel_window_toggle>(PanelSlot::panel_window_toggle)) toggle(panel_ident);
}

ID RegisterNamedVariable(const char* name) {
    auto reg = Slot<PFN_register_named_variable>(PanelSlot::register_named_variable);
    return reg != nullptr && name != nullptr ? reg(name) : -1;
}

ID CheckNamedVariable(const char* name) {
    auto check = Slot<PFN_check_named_variable>(PanelSlot::check_named_variable);
    return check != nullptr && name != nullptr ? check(name) : -1;
}

double GetNamedVariableValue(ID id) {
    auto get = Slot<PFN_get_named_variable_value>(PanelSlot::get_named_variable_value);
    if (get == nullptr || id < 0) return 0;
    double value = get(id);
    return std::isfinite(value) ? value : 0;
}

void SetNamedVariableValue(ID id, double value) {
    auto set = Slot<PFN_set_named_variable_value>(PanelSlot::set_named_variable_value);
    if (set != nullptr && id >= 0) set(id, value);
}

void RegisterVarByName(void* var, VAR_TYPE type, const char* name) {
    if (auto reg = Slot<PFN_register_var_by_name>(PanelSlot::register_var_by_name))
        reg(var, type, const_cast<PSTRINGZ>(name));
}

void UnregisterVarByName(const char* name) {
    if (auto unreg = Slot<PFN_unregister_var_by_name>(PanelSlot::unregister_var_by_name))
        unreg(const_cast<PSTRINGZ>(name));
}

void InitializeVarByName(MODULE_VAR* var, const char* name) {
    if (auto init = Slot<PFN_initialize_var_by_name>(PanelSlot::initialize_var_by_name))
        init(var, const_cast<PSTRINGZ>(name));
}

void RegisterKeyEventHandler(KEY_EVENT_HANDLER handler, void* userdata) {
    if (auto reg = Slot<PFN_register_key_event_handler>(PanelSlot::register_key_event_handler)) reg(handler, userdata);
}

void UnregisterKeyEventHandler(KEY_EVENT_HANDLER handler, void* userdata) {
    if (auto unreg = Slot<PFN_unregister_key_event_handler>(PanelSlot::unregister_key_event_handler))
        unreg(handler, userdata);
}

void ElementListQuery(ELEMENT_HEADER* e) {
    if (auto fn = Slot<PFN_element_list_query>(PanelSlot::element_list_query)) fn(e);
}
void ElementListInstall(ELEMENT_HEADER* e, PVOID resource) {
    if (auto fn = Slot<PFN_element_list_install>(PanelSlot::element_list_install)) fn(e, resource);
}
void ElementListInitialize(ELEMENT_HEADER* e) {
    if (auto fn = Slot<PFN_element_list_initialize>(PanelSlot::element_list_initialize)) fn(e);
}
void ElementListUpdate(ELEMENT_HEADER* e) {
    if (auto fn = Slot<PFN_element_list_update>(PanelSlot::element_list_update)) fn(e);
}
void ElementListGenerate(ELEMENT_HEADER* e, GENERATE_PHASE phase) {
    if (auto fn = Slot<PFN_element_list_generate>(PanelSlot::element_list_generate)) fn(e, phase);
}
void ElementListPlot(ELEMENT_HEADER* e) {
    if (auto fn = Slot<PFN_element_list_plot>(PanelSlot::element_list_plot)) fn(e);
}
void ElementListKill(ELEMENT_HEADER* e) {
    if (auto fn = Slot<PFN_element_list_kill>(PanelSlot::element_list_kill)) fn(e);
}

// [SECTION] Conversions and accessors
namespace {
constexpr double kSurfaceFullScale = 16383.0;   // raw value of a surface at its stop
constexpr int kEngineCount = 4;                 // engines of the four-engine pages

// One engine's token of a family of four; -1 for an engine out of range.
int EngineToken(const int (&family)[kEngineCount], int engine) {
    return engine < 0 || engine >= kEngineCount ? -1 : family[engine];
}
}  // namespace

namespace Convert {
double GroundSpeedKnots(double raw) { return raw / 1.68781; }
double VerticalSpeedFpm(double raw) { return raw / 1.30048; }
double MachNumber(double raw) { return raw * 3.2 / 65536.0; }
double LatitudeDegrees(double raw) { return raw / 111130.555557; }
double LongitudeDegrees(double raw) {
    double degrees = raw / 781874935307.4;
    if (raw > 140737488355332.0) degrees -= 360.0;
    return degrees;
}
double RadioAltitudeFeet(double raw) { return raw * 3.2808399; }
double Celsius(double rankine) { return (rankine - 491.69) * 5.0 / 9.0; }
double Psi(double psf) { return psf / 144.0; }
double NavRadialDegrees(double raw) {
    double radial = raw * 360.0 / 16384.0 + 180.0;
    if (radial >= 360.0) radial -= 360.0;
    return radial;
}
double BcdToInt(unsigned bcd) {
    return ((bcd >> 12) & 0xF) * 1000 + ((bcd >> 8) & 0xF) * 100 + ((bcd >> 4) & 0xF) * 10 + (bcd & 0xF);
}
double BcdNavFrequencyMhz(unsigned bcd) { return BcdToInt(bcd) / 100.0 + 100.0; }
double SurfaceFraction(double raw) { return raw / kSurfaceFullScale; }
}  // namespace Convert

double GroundSpeedKnots() { return Convert::GroundSpeedKnots(ReadToken(Token::GROUND_VELOCITY)); }
double IndicatedAirspeedKnots() { return ReadToken(Token::AIRSPEED); }
double VerticalSpeedFpm() { return Convert::VerticalSpeedFpm(ReadToken(Token::VERTICAL_SPEED)); }
double MachNumber() { return Convert::MachNumber(ReadToken(Token::MACH)); }
double LatitudeDegrees() { return Convert::LatitudeDegrees(ReadToken(Token::LATITUDE)); }
double LongitudeDegrees() { return Convert::LongitudeDegrees(ReadToken(Token::LONGITUDE)); }
double RadioAltitudeFeet() { return Convert::RadioAltitudeFeet(ReadToken(Token::RADIO_HEIGHT)); }
double BankDegrees() { return ReadToken(g_module.SimGeneration == 9 ? Token::BANK_FS9 : Token::BANK_FSX); }
double SimulationRate() {
    double rate = ReadToken(Token::SIM_RATE);
    return g_module.SimGeneration == 10 ? rate / 256.0 : rate;
}
double HeadingMagnetic() { return ReadToken(Token::HEADING_MAGNETIC); }
double HeadingTrue() { return ReadToken(Token::HEADING_TRUE); }
double HeadingBug() { return ReadToken(Token::AP_HEADING_BUG); }
double MagneticVariationDegrees() { return ReadToken(Token::MAGNETIC_VARIATION); }
double BarometerMillibars() { return ReadToken(Token::BAROMETER_MB); }
double TokenCelsius(int token) { return Convert::Celsius(ReadToken(token)); }
double TokenPsi(int token) { return Convert::Psi(ReadToken(token)); }
double NavRadialDegrees(int token) { return Convert::NavRadialDegrees(ReadToken(token)); }
double FuelOnBoardPounds() { return ReadToken(Token::FUEL_TOTAL_GALLONS) * ReadToken(Token::FUEL_POUNDS_PER_GALLON); }
double BcdNavFrequencyMhz(int token) {
    return Convert::BcdNavFrequencyMhz(static_cast<unsigned>(ReadToken(token)));
}

double EngineFuelFlowPph(int engine) {
    static constexpr int kFlow[4] = {Token::FUEL_FLOW_1, Token::FUEL_FLOW_2, Token::FUEL_FLOW_3, Token::FUEL_FLOW_4};
    static constexpr int kTurbine[4] = {Token::TURBINE_FUEL_FLOW_1, Token::TURBINE_FUEL_FLOW_2,
                                        Token::TURBINE_FUEL_FLOW_3, Token::TURBINE_FUEL_FLOW_4};
    if (engine < 0 || engine > 3) return 0;
    double flow = ReadToken(kFlow[engine]);
    return flow > 0 ? flow : ReadToken(kTurbine[engine]);
}

double EngineN1Percent(int engine) {
    static constexpr int kN1[4] = {Token::N1_1, Token::N1_2, Token::N1_3, Token::N1_4};
    if (engine < 0 || engine > 3) return 0;
    return ReadToken(kN1[engine]);
}

double EicasN2Percent(int engine) {
    static constexpr int kN2[2] = {Token::EICAS_N2_1, Token::EICAS_N2_2};
    if (engine < 0 || engine > 1) return 0;
    return ReadToken(kN2[engine]);
}

double EngineOilPsi(int engine) {
    static constexpr int kPressure[4] = {Token::OIL_PRESSURE_1, Token::OIL_PRESSURE_2, Token::OIL_PRESSURE_3,
                                         Token::OIL_PRESSURE_4};
    if (engine < 0 || engine > 3) return 0;
    return TokenPsi(kPressure[engine]);
}

double EngineOilCelsius(int engine) {
    static constexpr int kTemperature[4] = {Token::OIL_TEMP_1, Token::OIL_TEMP_2, Token::OIL_TEMP_3, Token::OIL_TEMP_4};
    if (engine < 0 || engine > 3) return 0;
    return TokenCelsius(kTemperature[engine]);
}

double TotalFuelFlowPph() {
    // Engine 1's reading chooses the family for all four.
    static constexpr int kFlow[4] = {Token::FUEL_FLOW_1, Token::FUEL_FLOW_2, Token::FUEL_FLOW_3, Token::FUEL_FLOW_4};
    static constexpr int kTurbine[4] = {Token::TURBINE_FUEL_FLOW_1, Token::TURBINE_FUEL_FLOW_2,
                                        Token::TURBINE_FUEL_FLOW_3, Token::TURBINE_FUEL_FLOW_4};
    const int* family = ReadToken(Token::FUEL_FLOW_1) > 0 ? kFlow : kTurbine;
    double total = 0;
    for (int engine = 0; engine < 4; ++engine) total += ReadToken(family[engine]);
    return total;
}

double EngineN2Percent(int engine) {
    static constexpr int kN2[kEngineCount] = {Token::N2_1, Token::N2_2, Token::N2_3, Token::N2_4};
    int token = EngineToken(kN2, engine);
    return token < 0 ? 0 : ReadToken(token);
}

double EngineEgtCelsius(int engine) {
    static constexpr int kEgt[kEngineCount] = {Token::TURBINE_TEMP_1, Token::TURBINE_TEMP_2, Token::TURBINE_TEMP_3,
                                               Token::TURBINE_TEMP_4};
    int token = EngineToken(kEgt, engine);
    return token < 0 ? 0 : TokenCelsius(token);
}

double EngineOilQuarts(int engine) {
    static constexpr int kQuantity[kEngineCount] = {Token::OIL_QUANTITY_1, Token::OIL_QUANTITY_2,
                                                    Token::OIL_QUANTITY_3, Token::OIL_QUANTITY_4};
    int token = EngineToken(kQuantity, engine);
    return token < 0 ? 0 : ReadToken(token);
}

bool EngineReverserInUse(int engine) {
    static constexpr int kReverser[kEngineCount] = {Token::REVERSER_1, Token::REVERSER_2, Token::REVERSER_3,
                                                    Token::REVERSER_4};
    int token = EngineToken(kReverser, engine);
    return token >= 0 && ReadToken(token) < 0;
}

double EngineEprSource(int engine) {
    static constexpr int kSource[kEngineCount] = {Token::EPR_SOURCE_1, Token::EPR_SOURCE_2, Token::EPR_SOURCE_3,
                                                  Token::EPR_SOURCE_4};
    int token = EngineToken(kSource, engine);
    return token < 0 ? 0 : ReadToken(token);
}

double EprAmbientValue() { return ReadToken(Token::EPR_AMBIENT); }
double FlapsRaw() { return ReadToken(Token::FLAPS_HANDLE); }

double GearRaw(int leg) {
    static constexpr int kGear[3] = {Token::GEAR_NOSE, Token::GEAR_LEFT, Token::GEAR_RIGHT};
    return leg < 0 || leg > 2 ? 0 : ReadToken(kGear[leg]);
}

double SpoilerRaw(int side) {
    if (side < 0 || side > 1) return 0;
    return ReadToken(side == 0 ? Token::SPOILER_LEFT : Token::SPOILER_RIGHT);
}

double ElevatorTrimFraction() { return Convert::SurfaceFraction(ReadToken(Token::ELEVATOR_TRIM)); }
double AileronTrimFraction() { return Convert::SurfaceFraction(ReadToken(Token::AILERON_TRIM)); }
double RudderTrimFraction() { return Convert::SurfaceFraction(ReadToken(Token::RUDDER_TRIM)); }

double LeadingEdgeFlapsDegrees() { return ExecuteCalculatorDouble("(A:LEADING EDGE FLAPS LEFT ANGLE,degrees)"); }
double IndicatedAltitudeFeet() { return ExecuteCalculatorDouble("(A:INDICATED ALTITUDE, feet)"); }
double AutopilotAltitudeFeet() { return ExecuteCalculatorDouble("(A:AUTOPILOT ALTITUDE LOCK VAR, feet)"); }
