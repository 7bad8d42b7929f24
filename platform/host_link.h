// host_link.h: how the platform layer finds the program that hosts the module.
#pragma once

#include <orbhost.h>

namespace platform {
// The host's interface, or null when the module runs without a host.
const OrbHostInterface* Host();
// Tests that link the module's code directly install their host here.
void SetHostForTesting(const OrbHostInterface* host);
}  // namespace platform
