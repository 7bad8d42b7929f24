// host_state.cpp: the one instance of the host's state.
#include "host_state.h"

namespace orbsim {
HostState g_host;
}  // namespace orbsim
