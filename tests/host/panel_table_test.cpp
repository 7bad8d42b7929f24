// panel_table_test.cpp: the panel table orbsim hands the module, exercised
// through the module's own calls in one process: token units as the
// accessors convert them, key events and handlers, named and module
// variables, windows, calculator strings, the two generations.
#include "frame/module_entry.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "orbsim/host_state.h"
#include "orbsim/panel_table.h"
#include "orbsim/sim_values.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {
class PanelTableTest : public ::testing::Test {
protected:
    void SetUp() override { Install(10); }
    void TearDown() override {
        ImportTable.PANELSentry.fnptr = nullptr;
        g_module = {};
        orbsim::g_host = {};
    }
    void Install(int generation) {
        orbsim::g_host = {};
        orbsim::g_host.generation = generation;
        orbsim::BuildPanelTable(orbsim::g_host);
        ImportTable.PANELSentry.fnptr = &orbsim::g_host.panels;
        g_module = {};
        g_module.SimGeneration = generation;
    }
    orbsim::AircraftModel& aircraft() { return orbsim::g_host.aircraft; }
};

struct HandlerLog {
    int calls = 0;
    ID32 last_event = 0;
    UINT32 last_value = 0;
    void* last_userdata = nullptr;
};
HandlerLog g_handler_log;

void RecordingHandler(ID32 event, UINT32 value, PVOID userdata) {
    ++g_handler_log.calls;
    g_handler_log.last_event = event;
    g_handler_log.last_value = value;
    g_handler_log.last_userdata = userdata;
}

// A handler that answers every event with another: the host must not loop for ever.
void EchoingHandler(ID32, UINT32, PVOID) { TriggerKeyEvent(0x10163, 0); }
}  // namespace

TEST_F(PanelTableTest, TokensArriveInTheUnitsTheAccessorsConvert) {
    orbsim::AircraftModel& a = aircraft();
    a.lat = 51.4775;
    a.lon = -0.461389;
    a.alt = 12000;
    a.ground = 80;
    a.hdg = 95;
    a.var = 2;
    a.ias = 280;
    a.vs = -1800;
    a.wind_dir = 250;
    a.wind_speed = 35;
    a.rate = 4;
    a.n1_set = 80;
    a.bank = 12.5;
    double gs = 0, track = 0;
    orbsim::GroundVector(a, gs, track);

    EXPECT_NEAR(LatitudeDegrees(), 51.4775, 1e-9);
    EXPECT_NEAR(LongitudeDegrees(), -0.461389, 1e-9);
    a.lon = 120.25;
    EXPECT_NEAR(LongitudeDegrees(), 120.25, 1e-9);
    EXPECT_NEAR(GroundSpeedKnots(), gs, 1e-9);
    EXPECT_NEAR(VerticalSpeedFpm(), -1800, 1e-9);
    EXPECT_NEAR(::MachNumber(), orbsim::MachNumber(a), 1e-9);
    EXPECT_NEAR(RadioAltitudeFeet(), 12000 - 80, 1e-3);  // the module rounds the feet a metre
    EXPECT_NEAR(SimulationRate(), 4, 1e-12);
    EXPECT_NEAR(HeadingMagnetic(), 93, 1e-12);
    EXPECT_NEAR(HeadingTrue(), 95, 1e-12);
    EXPECT_NEAR(BankDegrees(), 12.5, 1e-12);
    EXPECT_NEAR(TokenCelsius(Token::TURBINE_TEMP_1), orbsim::EngineTurbineTemperature(a, 0), 1e-9);
    EXPECT_NEAR(TokenPsi(Token::TURBINE_TEMP_1 - 5), 40, 1e-9);  // engine 1's oil pressure
    EXPECT_NEAR(EngineFuelFlowPph(1), orbsim::EngineFuelFlow(a, 1), 1e-9);
    EXPECT_NEAR(TotalFuelFlowPph(), 2 * orbsim::EngineFuelFlow(a, 0), 1e-9);
    EXPECT_NEAR(ReadToken(Token::N1_2), orbsim::EngineN1(a, 1), 1e-12);
    EXPECT_NEAR(FuelOnBoardPounds(), orbsim::FuelPounds(a), 1e-6);
    EXPECT_NEAR(BcdNavFrequencyMhz(Token::NAV1_FREQUENCY), 111.30, 1e-9);
    EXPECT_NEAR(IndicatedAltitudeFeet(), 12000, 1e-9);
    a.ap_alt = 24000;
    EXPECT_NEAR(AutopilotAltitudeFeet(), 24000, 1e-9);
    EXPECT_NEAR(ReadToken(Token::WIND_DIRECTION), 250, 1e-12);
    EXPECT_EQ(ReadTokenFlag(Token::AVIONICS_POWER), 1);

    // Every read is counted under its token.
    EXPECT_EQ(orbsim::g_host.token_reads[Token::LATITUDE], 1u);
    EXPECT_EQ(orbsim::g_host.token_reads[Token::LONGITUDE], 2u);

    // The older generation's rate is not scaled, and its bank is the other token.
    Install(9);
    aircraft().rate = 2;
    aircraft().bank = -7;
    EXPECT_NEAR(SimulationRate(), 2, 1e-12);
    EXPECT_NEAR(BankDegrees(), -7, 1e-12);
}

TEST_F(PanelTableTest, KeyEventsAreRecordedAppliedAndHandedToHandlers) {
    aircraft().sim_time = 12.5;
    TriggerKeyEvent(0x101FA, 123);
    ASSERT_EQ(orbsim::g_host.key_events.total, 1u);
    EXPECT_EQ(orbsim::g_host.key_events.KeptAt(0).event, 0x101FAu);
    EXPECT_EQ(orbsim::g_host.key_events.KeptAt(0).value, 123u);
    EXPECT_DOUBLE_EQ(orbsim::g_host.key_events.KeptAt(0).time, 12.5);
    EXPECT_TRUE(orbsim::g_host.key_events.KeptAt(0).from_module);
    EXPECT_EQ(aircraft().hdg_bug, 123);

    g_handler_log = {};
    int userdata = 0;
    RegisterKeyEventHandler(&RecordingHandler, &userdata);
    RegisterKeyEventHandler(&RecordingHandler, &userdata);  // the same pair once only
    orbsim::DeliverKeyEvent(orbsim::g_host, 0x10337, 0, false);
    EXPECT_EQ(g_handler_log.calls, 1);
    EXPECT_EQ(g_handler_log.last_event, 0x10337u);
    EXPECT_EQ(g_handler_log.last_userdata, &userdata);
    EXPECT_FALSE(orbsim::g_host.key_events.Last().from_module);
    UnregisterKeyEventHandler(&RecordingHandler, &userdata);
    TriggerKeyEvent(0x10019, 0);
    EXPECT_EQ(g_handler_log.calls, 1);

    // A handler that sends an event from each event it sees stops at the nesting limit.
    RegisterKeyEventHandler(&EchoingHandler, nullptr);
    uint64_t before = orbsim::g_host.key_events.total;
    TriggerKeyEvent(0x10163, 0);
    EXPECT_EQ(orbsim::g_host.key_events.total - before, static_cast<uint64_t>(orbsim::kMaxKeyEventDepth) + 1);
    UnregisterKeyEventHandler(&EchoingHandler, nullptr);

    // The older generation's table has no handler slots; the module doesn't reach them.
    Install(9);
    RegisterKeyEventHandler(&RecordingHandler, nullptr);
    EXPECT_TRUE(orbsim::g_host.key_handlers.empty());
    EXPECT_EQ(orbsim::g_host.panels.header[5], orbsim::kGenerationFs2004);
}

TEST_F(PanelTableTest, NamedAndModuleVariables) {
    ID id = RegisterNamedVariable("orb_lnav");
    ASSERT_GE(id, 0);
    EXPECT_EQ(RegisterNamedVariable("orb_lnav"), id);
    EXPECT_EQ(CheckNamedVariable("ORB_LNAV"), id);  // the simulator's names ignore case
    EXPECT_EQ(CheckNamedVariable("orb_vnav"), -1);
    SetNamedVariableValue(id, 1);
    EXPECT_EQ(GetNamedVariableValue(id), 1);
    EXPECT_EQ(GetNamedVariableValue(9999), 0);
    EXPECT_EQ(ExecuteCalculatorDouble("(L:orb_lnav, number)"), 1);

    double distance = 12.5;
    RegisterVarByName(&distance, TYPE_PFLOAT64, "orb_act_wpt_dist");
    MODULE_VAR var = {};
    InitializeVarByName(&var, "orb_act_wpt_dist");
    void* pointer = var.var_ptr;  // copied out: the packed field is no place for a reference
    VAR_TYPE type = var.var_type;
    EXPECT_EQ(pointer, &distance);
    EXPECT_EQ(type, TYPE_PFLOAT64);
    UnregisterVarByName("orb_act_wpt_dist");
    InitializeVarByName(&var, "orb_act_wpt_dist");
    pointer = var.var_ptr;
    EXPECT_EQ(pointer, nullptr);
}

TEST_F(PanelTableTest, WindowsAreAskedOpenedAndToggledByIdent) {
    orbsim::g_host.gauges.windows = {{"Window00", 0, false, true}, {"Window01", 4011, false, false},
                                     {"VCockpit01", orbsim::kVirtualCockpitIdent, true, true}};
    EXPECT_TRUE(IsPanelWindowVisible(0));
    EXPECT_FALSE(IsPanelWindowVisible(4011));
    PanelWindowToggle(4011);
    EXPECT_TRUE(IsPanelWindowVisible(4011));
    PanelWindowToggle(4011);
    EXPECT_FALSE(IsPanelWindowVisible(4011));
    EXPECT_FALSE(IsPanelWindowVisible(4004));  // no such window
    auto open = reinterpret_cast<PFN_panel_window_open_ident>(PanelSlotFunction(PanelSlot::panel_window_open_ident));
    EXPECT_EQ(open(4011), 1);
    EXPECT_EQ(open(1234), 0);
    EXPECT_TRUE(IsPanelWindowVisible(4011));
    // A cockpit is no window an ident reaches, however its number reads as unsigned.
    EXPECT_FALSE(IsPanelWindowVisible(static_cast<UINT32>(orbsim::kVirtualCockpitIdent)));
}

TEST_F(PanelTableTest, CalculatorStringsAndMissingSlots) {
    aircraft().title = "Orb Twin";
    char title[64];
    ASSERT_TRUE(ExecuteCalculatorText("(A:TITLE,string)", title, sizeof title));
    EXPECT_STREQ(title, "Orb Twin");
    aircraft().dh = 250;
    EXPECT_EQ(ExecuteCalculatorDouble("(A:DECISION HEIGHT,FEET)"), 250);
    aircraft().vs0 = 108;
    EXPECT_EQ(ExecuteCalculatorDouble("(A:Design Speed VS0, knots)"), 108);
    aircraft().loc_hold = 1;
    EXPECT_EQ(ExecuteCalculatorInt("(A:AP_LOC_HOLD_ON,Enum)"), 1);
    aircraft().alt = 1000;
    EXPECT_NEAR(ExecuteCalculatorDouble("(A:INDICATED ALTITUDE, meters)"), 304.8, 1e-9);
    // Unknown strings answer nothing and are reported once.
    EXPECT_EQ(ExecuteCalculatorDouble("(A:NO SUCH THING, feet)"), 0);
    EXPECT_EQ(ExecuteCalculatorDouble("(A:NO SUCH THING, feet)"), 0);
    EXPECT_EQ(ExecuteCalculatorDouble("(A:INDICATED ALTITUDE, knots)"), 0);  // a unit that doesn't fit
    EXPECT_EQ(orbsim::g_host.unknown_calculator.size(), 2u);

    // A slot orbsim leaves out answers 0 and is counted.
    auto tooltip = reinterpret_cast<intptr_t (*)()>(orbsim::g_host.panels.slots[6]);
    EXPECT_EQ(tooltip(), 0);
    EXPECT_EQ(orbsim::g_host.missing_slot_calls, 1u);
    EXPECT_TRUE(orbsim::g_host.slot_warned[6]);
    EXPECT_EQ(orbsim::g_host.panels.header[5], orbsim::kGenerationFsx);
}

TEST_F(PanelTableTest, TokensCanBeNamedAndSetAsTheScriptsDo) {
    int token = 0;
    ASSERT_TRUE(orbsim::TokenByName("plane_latitude", token));
    EXPECT_EQ(token, 0x47);
    ASSERT_TRUE(orbsim::TokenByName("0x6B", token));
    EXPECT_EQ(token, 0x6B);
    EXPECT_FALSE(orbsim::TokenByName("NO_SUCH_TOKEN", token));
    EXPECT_FALSE(orbsim::TokenByName("0x10000", token));
    // Every name of the table leads back to its own number.
    for (int known : orbsim::KnownTokens()) {
        ASSERT_TRUE(orbsim::TokenByName(orbsim::TokenName(known), token)) << known;
        EXPECT_EQ(token, known) << orbsim::TokenName(known);
    }

    std::string error;
    ASSERT_TRUE(orbsim::SetToken(orbsim::g_host, 0x47, 45 * 111130.555557, error));
    EXPECT_NEAR(aircraft().lat, 45, 1e-9);
    ASSERT_TRUE(orbsim::SetToken(orbsim::g_host, 0x48, 359 * 781874935307.4, error));  // one degree west
    EXPECT_NEAR(aircraft().lon, -1, 1e-9);
    EXPECT_FALSE(orbsim::SetToken(orbsim::g_host, 0x01, 5, error));
    EXPECT_FALSE(orbsim::SetToken(orbsim::g_host, 0x4D, 5, error));  // pitch follows the model
    ASSERT_TRUE(orbsim::SetToken(orbsim::g_host, 0x305, 0, error));  // kept as the script's value
    EXPECT_EQ(ReadTokenFlag(Token::AVIONICS_POWER), 0);
    ASSERT_TRUE(orbsim::SetToken(orbsim::g_host, 0x150, 512, error));
    EXPECT_EQ(aircraft().rate, 2);
    EXPECT_EQ(ReadToken(0x143), 1);  // unknown to the model, with its default
    EXPECT_EQ(ReadToken(0x3FF), 0);
}
