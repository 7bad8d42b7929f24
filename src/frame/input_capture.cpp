// input_capture.cpp: keyboard entry comes with the MCU pages.
#include "frame/input_capture.h"

void PollKeyboard() {}
