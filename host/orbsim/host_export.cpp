// host_export.cpp: the one symbol the module's platform layer looks up in the
// program that hosts it. Only the orbsim program carries it; tests install
// the same interface directly.
#include "host_interface.h"

extern "C" __attribute__((visibility("default"))) const OrbHostInterface* orbhost_interface() {
    return orbsim::HostInterface();
}
