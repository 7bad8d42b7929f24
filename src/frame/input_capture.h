// input_capture.h: keyboard entry on the MCU.
#pragma once

// Polls the keyboard while the MCU's direct entry mode is on.
void PollKeyboard();
