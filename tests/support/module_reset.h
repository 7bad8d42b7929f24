// module_reset.h: puts the module's process-wide state back to a fresh load,
// with RootFolder at an empty temporary folder (no orb.cfg, no database).
#pragma once

#include <string>

// Returns the temporary root folder.
std::string ResetModuleState();
