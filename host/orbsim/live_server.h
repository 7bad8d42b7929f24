// live_server.h: the live panel. orbsim flies a panel in real time and serves
// it to a web browser on the loopback address: every open window with its
// gauges as pictures pushed at a steady rate, clicks sent back as mouse
// clicks on the bezel, the PC keyboard as the MCU's keyboard entry, and a
// side panel for the aircraft with a small moving map.
//
// The module is not thread-safe and the simulator calls it from one thread:
// so does orbsim. The HTTP threads only queue commands (script lines, checked
// as a script's are) and read the frames the simulation thread published.
#pragma once

#include "script.h"

#include <string>

namespace orbsim {

struct LiveOptions {
    std::string panel;          // panel file, relative to the simulator folder
    std::string start_path;     // a script run once the panel is loaded (where the aircraft stands); empty none
    std::string start_text;     // its text
    std::string address = "127.0.0.1";
    int port = 8080;            // 0: any free port (the one taken is printed)
    double frame_rate = 25;     // pictures a second pushed to the page
};

// Commands a page may send: those that act at once, as a pilot's hands and
// the instructor's station do. `run`, `measure`, `expect` and the file
// writers stay with scripts.
bool LiveCommandAllowed(const std::string& command);

// Runs until SIGINT or SIGTERM. Prints "orbsim: live panel on
// http://ADDRESS:PORT/" once it listens. Exit code as a script's.
ExitCode ServeLivePanel(HostState& host, ScriptRun& run, const LiveOptions& options, std::string& error);

// The page, one HTML file with its script and style.
const char* LivePageHtml();

}  // namespace orbsim
