// keypad_test.cpp: the entry line's rules, the message line and its lamp,
// and the latches of one frame, pressed on the keys of a placed CDU.
#include "cdu_rig.h"

using namespace cdu_test;

TEST(CduKeypad, ScratchpadTakesTwentyFourCharactersFromTheKeys) {
    CduRig cdu;
    cdu.Type("ABCDEFGHIJKLMNOPQRSTUVWX");
    EXPECT_EQ(Scratchpad(), "ABCDEFGHIJKLMNOPQRSTUVWX");
    cdu.Type("Y");
    cdu.Type("9");
    cdu.Type("/");
    EXPECT_EQ(Scratchpad().size(), 24u) << "no 25th character";
    cdu.Press("+/-");
    EXPECT_EQ(Scratchpad().size(), 24u) << "+/- at 24 does nothing";
    cdu.Press("SP");
    EXPECT_EQ(Scratchpad(), "ABCDEFGHIJKLMNOPQRSTUVWX ") << "SP has no limit test";
    // Held down, SP goes on only to the end of the line's buffer.
    for (int i = 0; i < 200; ++i) cdu.Press("SP");
    EXPECT_EQ(Scratchpad().size(), kScratchpadCapacity - 1);
    // CLR, repeated while held, takes the line back character by character.
    for (int i = 0; i < 100; ++i) cdu.Press("CLR");
    EXPECT_EQ(Scratchpad(), "");
    cdu.Type("1.5");
    EXPECT_EQ(Scratchpad(), "1.5");
}

TEST(CduKeypad, PlusMinusTogglesTheTrailingSign) {
    CduRig cdu;
    cdu.Press("+/-");
    EXPECT_EQ(Scratchpad(), "-");
    cdu.Press("CLR");
    cdu.Type("12");
    cdu.Press("+/-");
    EXPECT_EQ(Scratchpad(), "12-");
    cdu.Press("+/-");
    EXPECT_EQ(Scratchpad(), "12+");
    cdu.Press("+/-");
    EXPECT_EQ(Scratchpad(), "12-");
}

TEST(CduKeypad, MessagesOverrideTheLineAndClrTakesThemFirst) {
    CduRig cdu;
    cdu.PressAndFrame("RTE");
    cdu.Type("ABC");
    cdu.Frame();
    EXPECT_FALSE(cdu.MessageLit());
    EXPECT_NE(cdu.Screen().find("227|ABC"), std::string::npos) << cdu.Screen();

    // DEL arms the delete over the line; the screen shows it instead of the text.
    cdu.PressAndFrame("DEL");
    EXPECT_EQ(Message(), "DELETE");
    EXPECT_EQ(Scratchpad(), "ABC");
    EXPECT_TRUE(cdu.MessageLit());
    EXPECT_NE(cdu.Screen().find("227|DELETE"), std::string::npos) << cdu.Screen();
    // CLR on a standing message removes only the message, also "DELETE".
    cdu.PressAndFrame("CLR");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Scratchpad(), "ABC");
    EXPECT_FALSE(cdu.MessageLit());
    // A pilot error stands until CLR or another message; DEL goes over it.
    SetCduMessage("INVALID ENTRY");
    cdu.Frame();
    cdu.Frame();
    EXPECT_EQ(Message(), "INVALID ENTRY") << "no timer clears a message";
    cdu.Type("D");
    EXPECT_EQ(Scratchpad(), "ABCD") << "typing goes on under a message";
    cdu.Press("DEL");
    EXPECT_EQ(Message(), "DELETE");
    // DEL then SP is the quick way to empty both lines.
    cdu.PressAndFrame("SP");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Scratchpad(), "");
    EXPECT_FALSE(cdu.MessageLit());
    // CLR on an empty line with no message does nothing harmful.
    cdu.Press("CLR");
    EXPECT_EQ(Scratchpad(), "");
}

TEST(CduKeypad, LatchesLastOneFrameAndTheLaterKeyWins) {
    CduRig cdu;
    cdu.PressAndFrame("RTE");
    // Two line keys before a frame: only the later one acts.
    cdu.Type("KPDXKSEA");
    cdu.Press("LSK1L");  // as ORIGIN it would be an unknown airport
    cdu.Press("LSK2L");  // as CO ROUTE it is a stored plan
    EXPECT_EQ(g_smiths.LineSelectLatch, 2);
    cdu.Frame();
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(g_plan.context.PlanState, 1);
    EXPECT_EQ(Ident(g_plan.ModPlan, 0), "KPDX");
    EXPECT_EQ(g_smiths.LineSelectLatch, 0) << "cleared after the frame";

    // A key pressed while nothing is drawn waits for the next drawn frame.
    cdu.Press("NEXT_PAGE");
    EXPECT_EQ(g_smiths.rte.page, 1);
    cdu.Frame();
    EXPECT_EQ(g_smiths.rte.page, 2);
    cdu.Frame();
    EXPECT_EQ(g_smiths.rte.page, 2) << "a latch acts once";
    EXPECT_EQ(g_smiths.NextPageLatch, 0);
}

TEST(CduKeypad, AnEmptyPageNumberIsABlackScreenWhereKeysDoNothing) {
    CduRig cdu;
    g_smiths.CduPage = 2;
    cdu.Type("KSEA");
    cdu.PressAndFrame("LSK1L");
    EXPECT_EQ(cdu.StringsDrawn(), 0);
    EXPECT_EQ(Scratchpad(), "KSEA");
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(g_plan.context.ActiveLastRow, -1);
    g_smiths.CduPage = 999;  // no table row at all
    cdu.Frame();
    EXPECT_EQ(cdu.StringsDrawn(), 0);
    g_smiths.CduPage = -5;
    cdu.Frame();
    EXPECT_EQ(cdu.StringsDrawn(), 0);
    // The page keys still lead somewhere.
    cdu.PressAndFrame("RTE");
    EXPECT_TRUE(cdu.ScreenHas("RTE"));
}
