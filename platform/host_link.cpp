// host_link.cpp: the host's interface is looked up once, in the main program.
#include "host_link.h"

#include <dlfcn.h>

namespace platform {

namespace {
struct HostLink {
    bool looked_up = false;
    const OrbHostInterface* host = nullptr;
    bool overridden = false;
};
HostLink g_host_link;
}  // namespace

const OrbHostInterface* Host() {
    HostLink& link = g_host_link;
    if (link.overridden) return link.host;
    if (!link.looked_up) {
        link.looked_up = true;
        auto fn = reinterpret_cast<OrbHostInterfaceFn>(dlsym(RTLD_DEFAULT, "orbhost_interface"));
        link.host = fn ? fn() : nullptr;
        if (link.host != nullptr && link.host->version < 1) link.host = nullptr;
    }
    return link.host;
}

void SetHostForTesting(const OrbHostInterface* host) {
    g_host_link.overridden = true;
    g_host_link.host = host;
}

}  // namespace platform
