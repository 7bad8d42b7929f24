// holds.cpp: the hold table is empty until holds are entered on the CDU; the
// records, the pattern and their deletion come with the hold pages.
#include "guidance/holds.h"

HoldState g_holds;

void HoldStep() {}
void DeleteHoldsBehind(int) {}
bool IsFirstHoldFix(int row) { return g_holds.HoldCount > 0 && g_holds.HoldTable[1].ActiveRow == row; }

void HoldGiveUp() {
    if (g_holds.HoldCount > 0) g_holds.HoldTable[1].ActiveRow = 0;
    g_holds.HoldFlying = 0;
    g_holds.HoldExitState = 1;
}

void AddHold(int, int) {}
void DeleteHold(int, int) {}

void RemoveAllHolds() {
    g_holds.HoldCount = 0;
    g_holds.HoldFlying = 0;
    g_holds.HoldCorner = 0;
    g_holds.HoldTable = {};
}

void DropUntiedHolds() {}
