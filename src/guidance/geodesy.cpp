// geodesy.cpp: still to be written; GreatCircle and friends come next.
#include "guidance/geodesy.h"
