// simulator.h: the simulator's own sequence around the module: load it, hand
// it the panel table, load a panel, run frames, reload, shut down.
#pragma once

#include "host_state.h"

#include <string>

namespace orbsim {

// dlopen of SIM_DIR/GAUGES/orb1.gau, its two exports, the panel table in
// ImportTable, the working folder set to SIM_DIR, then ModuleInit. Errors
// name the file.
bool StartModule(HostState& host, const std::string& sim_dir, std::string& error);

// Reads a panel file and walks its gauges through the load services. A panel
// already loaded is killed first.
bool LoadPanel(HostState& host, const std::string& path, std::string& error);

// The kill services for every gauge, then the load services again from the
// same file; windows return to the file's visibility.
bool ReloadPanel(HostState& host, std::string& error);

// Kill services of the loaded panel, ModuleDeinit, dlclose.
void StopModule(HostState& host);

// One frame at the host's frame rate. With advance, the pilot's clock moves
// one frame and the simulation rate times that (nothing while paused); the
// gauges of the visible windows then get their update and draw services.
void RunFrame(HostState& host, bool advance);

}  // namespace orbsim
