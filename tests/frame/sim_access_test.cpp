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

TEST(SimAccess, FourEngineReadingsComeFromTheirTokensInTheirUnits) {
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    // The token numbers as the simulator numbers them (decimal), so that a
    // wrong constant shows here rather than as a silent zero on a page.
    const int n2[4] = {625, 644, 663, 682};
    const int egt[4] = {567, 577, 587, 597};
    const int quantity[4] = {149, 184, 219, 254};
    const int reverser[4] = {128, 163, 198, 233};
    const int source[4] = {633, 652, 671, 690};
    for (int e = 0; e < 4; ++e) {
        t[n2[e]] = 90.0 + e;
        t[egt[e]] = 491.69 + (600.0 + 10 * e) * 1.8;   // Celsius in Rankine
        t[quantity[e]] = 12.5 - e;
        t[source[e]] = 1000.0 * (e + 1);
    }
    t[reverser[2]] = -0.5;
    t[reverser[3]] = 0.0;            // stowed: not below 0
    t[342] = 16212;
    for (int e = 0; e < 4; ++e) {
        EXPECT_EQ(EngineN2Percent(e), 90.0 + e) << e;
        EXPECT_NEAR(EngineEgtCelsius(e), 600.0 + 10 * e, 1e-9) << e;
        EXPECT_EQ(EngineOilQuarts(e), 12.5 - e) << e;
        EXPECT_EQ(EngineEprSource(e), 1000.0 * (e + 1)) << e;
        EXPECT_EQ(EngineReverserInUse(e), e == 2) << e;
    }
    EXPECT_EQ(EprAmbientValue(), 16212);
    // Engines out of range read idle, whatever their neighbours hold.
    for (int e : {-1, 4}) {
        EXPECT_EQ(EngineN2Percent(e), 0);
        EXPECT_EQ(EngineEgtCelsius(e), 0);
        EXPECT_EQ(EngineOilQuarts(e), 0);
        EXPECT_EQ(EngineEprSource(e), 0);
        EXPECT_FALSE(EngineReverserInUse(e));
    }
    // The twin strip's N2 (627, 646) stays apart from the four-engine N2.
    t[627] = 50;
    EXPECT_EQ(EicasN2Percent(0), 50);
    EXPECT_EQ(EngineN2Percent(0), 90.0);
}

TEST(SimAccess, SurfacesReadRawPositionsAndTrimsAsFractions) {
    FakeSimulatorScope scope;
    auto& t = scope.sim.tokens;
    t[0x146] = 9362;
    t[0x14C] = 16383;
    t[0x14D] = 8000;
    t[0x14E] = 0;
    t[0x38B] = 4000;
    t[0x38C] = 12000;
    t[0x30E] = -16383 / 2.0;
    t[0x30F] = 16383;
    t[0x310] = -16383;
    EXPECT_EQ(FlapsRaw(), 9362);
    EXPECT_EQ(GearRaw(0), 16383);
    EXPECT_EQ(GearRaw(1), 8000);
    EXPECT_EQ(GearRaw(2), 0);
    EXPECT_EQ(GearRaw(3), 0);
    EXPECT_EQ(SpoilerRaw(0), 4000);
    EXPECT_EQ(SpoilerRaw(1), 12000);
    EXPECT_EQ(SpoilerRaw(2), 0);
    EXPECT_NEAR(ElevatorTrimFraction(), -0.5, 1e-12);
    EXPECT_NEAR(AileronTrimFraction(), 1.0, 1e-12);
    EXPECT_NEAR(RudderTrimFraction(), -1.0, 1e-12);
}
