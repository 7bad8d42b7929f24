// host_interface.h: the C interface the module's Linux platform layer finds
// in the main program: window messages (the FSUIPC server), SimConnect, and
// the strings the drawing layer reports.
#pragma once

#include <orbhost.h>

namespace orbsim {

// The interface orbsim exports (through orbhost_interface in the program) and
// that tests install directly.
const OrbHostInterface* HostInterface();

}  // namespace orbsim
