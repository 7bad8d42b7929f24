// sim_access.h: every call the module makes into the simulator.
//
// Panel calls go through the function table that the simulator puts into
// ImportTable. A slot that is missing (an older table, or a host without it)
// answers as the simulator would with nothing to say: zero, false, no effect.
#pragma once

#include <panel_sdk.h>

#include <cstdint>

// [SECTION] Panel table
// The module's import table, one of its two exports: the simulator fills its
// pointer before the first gauge runs (defined with the linkage).
extern "C" {
extern IMPORT_TABLE ImportTable;
}

PANELS* PanelTable();
// The slot's function, or null when the table or the slot is absent.
void* PanelSlotFunction(PanelSlot slot);

// Token variables: the double at the value field; nothing is cached.
double ReadToken(int token);
int ReadTokenFlag(int token);

// Calculator strings.
double ExecuteCalculatorDouble(const char* code);
int ExecuteCalculatorInt(const char* code);
// Text result copied into out (bounded); false when nothing came back.
bool ExecuteCalculatorText(const char* code, char* out, int out_size);

// Key events to the simulator.
void TriggerKeyEvent(ID32 event, UINT32 value);

// Windows.
bool IsPanelWindowVisible(UINT32 panel_ident);
void PanelWindowToggle(UINT32 panel_ident);

// Named (local) variables and module variables.
ID RegisterNamedVariable(const char* name);
ID CheckNamedVariable(const char* name);
double GetNamedVariableValue(ID id);
void SetNamedVariableValue(ID id, double value);
void RegisterVarByName(void* var, VAR_TYPE type, const char* name);
void UnregisterVarByName(const char* name);
void InitializeVarByName(MODULE_VAR* var, const char* name);
void RegisterKeyEventHandler(KEY_EVENT_HANDLER handler, void* userdata);
void UnregisterKeyEventHandler(KEY_EVENT_HANDLER handler, void* userdata);

// Element lists (the common routines).
void ElementListQuery(ELEMENT_HEADER* element);
void ElementListInstall(ELEMENT_HEADER* element, PVOID resource_file_handle);
void ElementListInitialize(ELEMENT_HEADER* element);
void ElementListUpdate(ELEMENT_HEADER* element);
void ElementListGenerate(ELEMENT_HEADER* element, GENERATE_PHASE phase);
void ElementListPlot(ELEMENT_HEADER* element);
void ElementListKill(ELEMENT_HEADER* element);

// [SECTION] Token numbers whose role the logic depends on
namespace Token {
constexpr int TICK18 = 0x01;
constexpr int CLOCK_HOUR = 0x03, CLOCK_MINUTE = 0x04, CLOCK_SECOND = 0x05;
constexpr int ZULU_HOUR = 0x06, ZULU_MINUTE = 0x07, ZULU_DAY = 0x08, ZULU_YEAR = 0x09;
constexpr int ADF_FREQUENCY = 0x10, ADF_SIGNAL = 0x14, ADF_NEEDLE_POINTERS = 0x16, ADF_NEEDLE = 0x27;
constexpr int NAV1_FREQUENCY = 0x18, NAV1_RADIAL = 0x19, NAV2_FREQUENCY = 0x1B, NAV2_RADIAL = 0x1C;
constexpr int DME1_DISTANCE = 0x1F, DME1_SPEED = 0x20, DME2_DISTANCE = 0x23;
constexpr int NAV1_NEEDLE = 0x28, NAV1_GS_NEEDLE = 0x29, NAV1_OBS = 0x2D, NAV1_FLAGS = 0x2E;
constexpr int NAV1_SIGNAL = 0x31, NAV2_SIGNAL = 0x3A, NAV2_RELATIVE_BEARING = 0x3B;
constexpr int AIRSPEED = 0x3D, MACH = 0x40, VERTICAL_SPEED = 0x41;
constexpr int LATITUDE = 0x47, LONGITUDE = 0x48, ALTITUDE = 0x49, BAROMETER_MB = 0x4B;
constexpr int PITCH = 0x4D, BANK_FSX = 0x4F, BANK_FS9 = 0x50;
constexpr int HEADING_MAGNETIC = 0x51, MAGNETIC_VARIATION = 0x52, HEADING_TRUE = 0x56;
constexpr int AP_MASTER = 0x67, AP_NAV_HOLD = 0x69, AP_HEADING_HOLD = 0x6A, AP_HEADING_BUG = 0x6B;
constexpr int AP_ALTITUDE_HOLD = 0x6C, AP_APPROACH_HOLD = 0x70, AP_BACKCOURSE_HOLD = 0x71;
constexpr int AP_YAW_DAMPER = 0x72, AP_SPEED_HOLD = 0x73, AP_SPEED = 0x74, AP_MACH_HOLD = 0x75;
constexpr int AP_MACH = 0x76, AP_VERTICAL_SPEED = 0x78, AUTOTHROTTLE_ARMED = 0x7B;
constexpr int FUEL_CAP_CENTER = 0x122, FUEL_CAP_LEFT_MAIN = 0x124, FUEL_CAP_LEFT_AUX = 0x126;
constexpr int FUEL_CAP_LEFT_TIP = 0x128, FUEL_CAP_RIGHT_MAIN = 0x12A, FUEL_CAP_RIGHT_AUX = 0x12C;
constexpr int FUEL_CAP_RIGHT_TIP = 0x12E, FUEL_POUNDS_PER_GALLON = 0x132, FUEL_TOTAL_GALLONS = 0x182;
constexpr int SIM_RATE = 0x150, OUTSIDE_TEMPERATURE = 0x155, WIND_SPEED = 0x157, WIND_DIRECTION = 0x158;
constexpr int MARKER_BEACON = 0x162;
constexpr int FUEL_FLOW_1 = 0x1A5, FUEL_FLOW_2 = 0x1CC, FUEL_FLOW_3 = 0x1F3, FUEL_FLOW_4 = 0x21A;
constexpr int NAV1_RELATIVE_BEARING = 0x226, GROUND_VELOCITY = 0x227, RADIO_HEIGHT = 0x266;
constexpr int TURBINE_TEMP_1 = 0x237, TURBINE_TEMP_2 = 0x241, TURBINE_TEMP_3 = 0x24B, TURBINE_TEMP_4 = 0x255;
constexpr int N1_1 = 0x272, N1_2 = 0x285, N1_3 = 0x298, N1_4 = 0x2AB;
constexpr int TURBINE_FUEL_FLOW_1 = 0x27E, TURBINE_FUEL_FLOW_2 = 0x291, TURBINE_FUEL_FLOW_3 = 0x2A4,
              TURBINE_FUEL_FLOW_4 = 0x2B7;
constexpr int OIL_TEMP_1 = 0x231, OIL_TEMP_2 = 0x23B, OIL_TEMP_3 = 0x245, OIL_TEMP_4 = 0x24F;
constexpr int OIL_PRESSURE_1 = 0x232, OIL_PRESSURE_2 = 0x23C, OIL_PRESSURE_3 = 0x246, OIL_PRESSURE_4 = 0x250;
constexpr int EICAS_N2_1 = 0x273, EICAS_N2_2 = 0x286;   // the twin strip's N2 readings
constexpr int N2_1 = 0x271, N2_2 = 0x284, N2_3 = 0x297, N2_4 = 0x2AA;        // the four-engine pages' N2
constexpr int EPR_SOURCE_1 = 0x279, EPR_SOURCE_2 = 0x28C, EPR_SOURCE_3 = 0x29F, EPR_SOURCE_4 = 0x2B2;
constexpr int EPR_AMBIENT = 0x156;      // the ambient value of the EPR rule, one for all engines
constexpr int REVERSER_1 = 0x80, REVERSER_2 = 0xA3, REVERSER_3 = 0xC6, REVERSER_4 = 0xE9;  // below 0: in use
constexpr int OIL_QUANTITY_1 = 0x95, OIL_QUANTITY_2 = 0xB8, OIL_QUANTITY_3 = 0xDB, OIL_QUANTITY_4 = 0xFE;
constexpr int FLAPS_HANDLE = 0x146;     // raw 0..16383
constexpr int GEAR_NOSE = 0x14C, GEAR_LEFT = 0x14D, GEAR_RIGHT = 0x14E;  // raw 0 up .. 16383 down
constexpr int ELEVATOR_TRIM = 0x30E, AILERON_TRIM = 0x30F, RUDDER_TRIM = 0x310;  // raw -16383..16383
constexpr int SPOILER_LEFT = 0x38B, SPOILER_RIGHT = 0x38C;  // raw 0..16383
constexpr int AVIONICS_POWER = 0x305, FD_SWITCH = 0x318, FD_PITCH = 0x319, FD_BANK = 0x31A;
}  // namespace Token

// [SECTION] Accessors: one read with its unit conversion each
double GroundSpeedKnots();              // 0x227 / 1.68781
double IndicatedAirspeedKnots();        // 0x3D
double VerticalSpeedFpm();              // 0x41 / 1.30048
double MachNumber();                    // 0x40 x 3.2 / 65536
double LatitudeDegrees();               // 0x47 / 111130.555557
double LongitudeDegrees();              // 0x48 / 781874935307.4, less 360 above 2^47
double RadioAltitudeFeet();             // 0x266 x 3.2808399
double BankDegrees();                   // 0x50 on FS2004, 0x4F on FSX
double SimulationRate();                // 0x150, / 256 on FSX
double HeadingMagnetic();
double HeadingTrue();
double HeadingBug();
double MagneticVariationDegrees();
double BarometerMillibars();
double TokenCelsius(int token);         // (Rankine - 491.69) x 5 / 9
double TokenPsi(int token);             // pounds a square foot / 144
double NavRadialDegrees(int token);     // x 360 / 16384 + 180, wrapped below 360
double FuelOnBoardPounds();             // 0x182 x 0x132
double BcdNavFrequencyMhz(int token);   // four BCD digits n: n / 100 + 100
double EngineFuelFlowPph(int engine);   // 0..3; the turbine reading stands in for 0 or less
double TotalFuelFlowPph();
double EngineN1Percent(int engine);     // 0..3; other engines read 0
double EicasN2Percent(int engine);      // 0..1, the twin strip's N2; other engines read 0
double EngineOilPsi(int engine);        // 0..3, pounds a square foot / 144
double EngineOilCelsius(int engine);    // 0..3, Rankine converted
double EngineN2Percent(int engine);     // 0..3, the four-engine pages' N2
double EngineEgtCelsius(int engine);    // 0..3, the turbine temperature, Rankine converted
double EngineOilQuarts(int engine);     // 0..3
bool EngineReverserInUse(int engine);   // 0..3: its reverser value is below 0
double EngineEprSource(int engine);     // 0..3, raw pressure source of the EPR rule
double EprAmbientValue();               // the EPR rule's ambient value, raw
double FlapsRaw();                      // 0..16383
double GearRaw(int leg);                // 0 nose, 1 left, 2 right; 0 up .. 16383 down
double SpoilerRaw(int side);            // 0 left, 1 right; 0..16383
double ElevatorTrimFraction();          // -1 nose down .. 1 nose up
double AileronTrimFraction();           // -1 left wing down .. 1 right wing down
double RudderTrimFraction();            // -1 left .. 1 right
double LeadingEdgeFlapsDegrees();       // "(A:LEADING EDGE FLAPS LEFT ANGLE,degrees)"
double IndicatedAltitudeFeet();         // "(A:INDICATED ALTITUDE, feet)"
double AutopilotAltitudeFeet();         // "(A:AUTOPILOT ALTITUDE LOCK VAR, feet)"

// The pure conversions, for tests and the tools.
namespace Convert {
double GroundSpeedKnots(double raw);
double VerticalSpeedFpm(double raw);
double MachNumber(double raw);
double LatitudeDegrees(double raw);
double LongitudeDegrees(double raw);
double RadioAltitudeFeet(double raw);
double Celsius(double rankine);
double Psi(double psf);
double NavRadialDegrees(double raw);
double BcdToInt(unsigned bcd);
double BcdNavFrequencyMhz(unsigned bcd);
double SurfaceFraction(double raw);     // a surface's raw -16383..16383 as -1..1
}  // namespace Convert
