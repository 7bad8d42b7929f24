// sim_generation.h: telling FS2004 (9) from FSX (10) by the simulator folder.
#pragma once

// Counts the FSX signs in RootFolder; 3 or more make SimGeneration 10.
void DetectSimGeneration();
