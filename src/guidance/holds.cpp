// holds.cpp: holds come later.
#include "guidance/holds.h"

HoldState g_holds;
