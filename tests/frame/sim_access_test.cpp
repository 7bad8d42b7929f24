// Simulator access: token reads through the panel table and the accessors'
// unit conversions, the generation-dependent tokens, and a missing table.
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "support/fake_panels.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

TEST(SimAccess, AccessorsConvertTheSimulatorsUnits) {
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[Token::GROUND_VELOCITY] = 168.781;          // feet a second
    t[Token::VERTICAL_SPEED] = 1300.48;
    t[Token::MACH] = 0.78 * 65536 / 3.2;
    t[Token::LATITUDE] = 47.5 * 111130.555557;
    t[Token::RADIO_HEIGHT] = 100.0;               // metres
    t[Token::NAV1_RADIAL] = 8192;                 // half a turn: 180 + 180 wraps to 0
    t[Token::NAV2_RADIAL] = 4096;
    t[Token::NAV1_FREQUENCY] = 0x1370;            // 113.70
    t[Token::TURBINE_TEMP_1] = 491.69 + 180.0;    // 100 C in Rankine
    t[Token::FUEL_TOTAL_GALLONS] = 1000;
    t[Token::FUEL_POUNDS_PER_GALLON] = 6.7;
    EXPECT_NEAR(GroundSpeedKnots(), 100.0, 1e-9);
    EXPECT_NEAR(VerticalSpeedFpm(), 1000.0, 1e-9);
    EXPECT_NEAR(MachNumber(), 0.78, 1e-12);
    EXPECT_NEAR(LatitudeDegrees(), 47.5, 1e-9);
    EXPECT_NEAR(RadioAltitudeFeet(), 328.08399, 1e-9);
    EXPECT_NEAR(NavRadialDegrees(Token::NAV1_RADIAL), 0.0, 1e-12);
    EXPECT_NEAR(NavRadialDegrees(Token::NAV2_RADIAL), 270.0, 1e-12);
    EXPECT_NEAR(BcdNavFrequencyMhz(Token::NAV1_FREQUENCY), 113.70, 1e-9);
    EXPECT_NEAR(TokenCelsius(Token::TURBINE_TEMP_1), 100.0, 1e-9);
    EXPECT_NEAR(FuelOnBoardPounds(), 6700.0, 1e-9);
    EXPECT_NEAR(Convert::Psi(144.0 * 40), 40.0, 1e-12);
}

TEST(SimAccess, LongitudeWrapsAboveTwoToTheFortySeventh) {
    // East: raw below 2^47 reads directly.
    EXPECT_NEAR(Convert::LongitudeDegrees(10.0 * 781874935307.4), 10.0, 1e-9);
    // West as the simulator sends it: an unsigned 48-bit turn, above 2^47.
    double raw_west = (360.0 - 122.3) * 781874935307.4;
    ASSERT_GT(raw_west, 140737488355332.0);
    EXPECT_NEAR(Convert::LongitudeDegrees(raw_west), -122.3, 1e-9);
}

TEST(SimAccess, GenerationChoosesBankTokenAndRateScale) {
    FakeSimulatorScope scope;
    scope.sim.tokens[Token::BANK_FS9] = 10;
    scope.sim.tokens[Token::BANK_FSX] = 20;
    scope.sim.tokens[Token::SIM_RATE] = 512;
    g_module.SimGeneration = 9;
    EXPECT_EQ(BankDegrees(), 10);
    EXPECT_EQ(SimulationRate(), 512);
    g_module.SimGeneration = 10;
    EXPECT_EQ(BankDegrees(), 20);
    EXPECT_EQ(SimulationRate(), 2.0);
    g_module.SimGeneration = 9;
}

TEST(SimAccess, FuelFlowFallsBackToTheTurbineReading) {
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[Token::FUEL_FLOW_1] = 0;
    t[Token::FUEL_FLOW_2] = 2500;
    t[Token::TURBINE_FUEL_FLOW_1] = 2400;
    t[Token::TURBINE_FUEL_FLOW_2] = 2300;
    EXPECT_EQ(EngineFuelFlowPph(0), 2400);
    EXPECT_EQ(EngineFuelFlowPph(1), 2500);
    EXPECT_EQ(EngineFuelFlowPph(7), 0);
    // Engine 1's reading chooses the family of all four for the total.
    EXPECT_EQ(TotalFuelFlowPph(), 2400 + 2300);
    t[Token::FUEL_FLOW_1] = 100;
    EXPECT_EQ(TotalFuelFlowPph(), 100 + 2500);
}

TEST(SimAccess, CallsWithoutAPanelTableAnswerNothing) {
    ImportTable.PANELSentry.fnptr = nullptr;
    EXPECT_EQ(ReadToken(Token::LATITUDE), 0);
    EXPECT_EQ(ExecuteCalculatorDouble("(A:INDICATED ALTITUDE, feet)"), 0);
    char text[8] = "x";
    EXPECT_FALSE(ExecuteCalculatorText("(A:TITLE,string)", text, sizeof text));
    EXPECT_EQ(text[0], 0);
    EXPECT_FALSE(IsPanelWindowVisible(0));
    TriggerKeyEvent(0x101FA, 90);  // must not crash
    EXPECT_EQ(CheckNamedVariable("x"), -1);
}

TEST(SimAccess, NewerSlotsAreLeftAloneOnAnOlderTable) {
    FakeSimulatorScope scope;
    scope.sim.table.header[5] = 0x0900;
    g_module.SimGeneration = 9;
    EXPECT_EQ(PanelSlotFunction(PanelSlot::register_key_event_handler), nullptr);
    EXPECT_NE(PanelSlotFunction(PanelSlot::lookup_var), nullptr);
    scope.sim.table.slots[static_cast<int>(PanelSlot::register_key_event_handler)] = &scope;
    EXPECT_EQ(PanelSlotFunction(PanelSlot::register_key_event_handler), nullptr);
    g_module.SimGeneration = 10;
    EXPECT_NE(PanelSlotFunction(PanelSlot::register_key_event_handler), nullptr);
    g_module.SimGeneration = 9;
}

TEST(SimAccess, TextResultsAreBoundedAndNonFiniteNumbersReadZero) {
    FakeSimulatorScope scope;
    scope.sim.calculator_text["(A:TITLE,string)"] = std::string(500, 'A');
    char title[16];
    ASSERT_TRUE(ExecuteCalculatorText("(A:TITLE,string)", title, sizeof title));
    EXPECT_EQ(std::string(title), std::string(15, 'A'));
    scope.sim.tokens[Token::LATITUDE] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(ReadToken(Token::LATITUDE), 0);
}

TEST(SimAccess, EngineReadingsConvertOilUnitsAndBoundTheEngine) {
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[Token::N1_1] = 88.5;
    t[Token::N1_4] = 20.0;
    t[Token::EICAS_N2_2] = 97.25;
    t[Token::OIL_PRESSURE_2] = 55 * 144.0;            // pounds a square foot
    t[Token::OIL_TEMP_3] = 491.69 + 75 * 9.0 / 5.0;   // 75 C in Rankine
    EXPECT_EQ(EngineN1Percent(0), 88.5);
    EXPECT_EQ(EngineN1Percent(3), 20.0);
    EXPECT_EQ(EngineN1Percent(4), 0);
    EXPECT_EQ(EngineN1Percent(-1), 0);
    EXPECT_EQ(EicasN2Percent(1), 97.25);
    EXPECT_EQ(EicasN2Percent(2), 0);
    EXPECT_NEAR(EngineOilPsi(1), 55.0, 1e-12);
    EXPECT_EQ(EngineOilPsi(0), 0);
    EXPECT_EQ(EngineOilPsi(9), 0);
    EXPECT_NEAR(EngineOilCelsius(2), 75.0, 1e-9);
    EXPECT_NEAR(EngineOilCelsius(0), -491.69 * 5.0 / 9.0, 1e-9);  // a missing reading of 0 Rankine
    EXPECT_EQ(EngineOilCelsius(4), 0);
}
