// main.cpp: orbsim's command line. Reads the options and the script, checks
// the whole script, runs it, and shuts the module down as the simulator does.
#include "host_state.h"
#include "png_out.h"
#include "live_server.h"
#include "script.h"
#include "simulator.h"
#include "text_util.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr long kMaxScriptBytes = 16 << 20;  // a script is text a person wrote

const char kHelp[] =
    "usage: orbsim [OPTIONS] SCRIPT\n"
    "       orbsim [OPTIONS] --serve PANEL [--port N] [--start SCRIPT]\n"
    "\n"
    "The simulator stand-in: loads GAUGES/orb1.gau below the simulator folder as the\n"
    "simulator does, and runs SCRIPT against it (one command a line, # comments).\n"
    "With --serve it flies PANEL in real time instead and serves the live panel on\n"
    "http://127.0.0.1:PORT/: every open window's gauges, clicks on them, the PC\n"
    "keyboard as the MCU's keyboard entry, and the aircraft's side panel.\n"
    "\n"
    "options:\n"
    "  --sim DIR          the simulator folder (default data/sim)\n"
    "  --out DIR          where shot and track files go (default: the current folder)\n"
    "  --fps N            frames a second of the pilot's time, 1 to 1000 (default 30)\n"
    "  --generation 9|10  play the FS2004 (9) or FSX (10) generation (default 10)\n"
    "  --no-fsuipc        no FSUIPC server window\n"
    "  --no-simconnect    no SimConnect (the module's open fails)\n"
    "  --serve PANEL      fly PANEL in real time and serve it as a live web page on\n"
    "                     127.0.0.1 (no script); Ctrl-C stops\n"
    "  --port N           the live page's port (default 8080; 0 any free one)\n"
    "  --start SCRIPT     with --serve: a script run once the panel is loaded\n"
    "  --help             this text\n"
    "\n"
    "commands:\n"
    "  panel FILE                  load a panel.cfg (relative to the simulator folder) and\n"
    "                              run the load services of its gauges\n"
    "  run SECONDS                 let time pass: frames at the frame rate, the aircraft\n"
    "                              and TICK18 (18 Hz) at the simulation rate\n"
    "  frames N                    draw N frames without moving time\n"
    "  measure SECONDS             as run, printing the module's work a frame and each gauge's\n"
    "  click GAUGE X Y [BUTTON]    a click at bezel pixel X,Y of GAUGE or GAUGE#N (or an XML gauge's area)\n"
    "  key GAUGE NAME              press a CDU key by its name (EXEC, LSK2L, RTE, ...)\n"
    "  type GAUGE TEXT             press the CDU keys that type TEXT, a frame after each\n"
    "  keyboard TEXT               type on the PC keyboard: each letter or digit, or {NAME}\n"
    "                              ({ENTER} {BACKSPACE} {UP} {DOWN} {PGUP} {PGDN} {SHIFT} ...),\n"
    "                              down for a frame and up for a frame; the module's hook sees\n"
    "                              each stroke before the simulator's bindings\n"
    "  keyboard-key NAME [press|down|up]\n"
    "                              one PC key; down holds it (again: an auto-repeat) until up\n"
    "  keyboard-focus on|off       the simulator's window in front of (on) or behind others\n"
    "  traffic on|off|clear|add ID LAT LON ALT [HDG KT VS]|remove ID\n"
    "                              play the outside traffic gauge: its export and moving targets\n"
    "  gps clear|add IDENT LAT LON the route in the simulator's GPS (its data block)\n"
    "  set NAME VALUE              a token (number or name, raw units), A:NAME[, UNIT] or L:NAME\n"
    "  aircraft KEY=VALUE ...      place and configure the aircraft (lat lon alt hdg ias gs vs\n"
    "                              wind=DIR/SPEED var fuel rate ap_hdg_hold hdg_bug ...)\n"
    "  window IDENT open|close|toggle\n"
    "  event NUMBER [VALUE]        a simulator key event, as a keyboard binding sends it\n"
    "  print WHAT                  a value, or keyevents, aircraft, tokenreads, windows,\n"
    "                              gauges, screen GAUGE, layers GAUGE\n"
    "  shot GAUGE FILE             the gauge's last frame with its layers, as PNG under --out\n"
    "  reload                      kill services, then the load services again\n"
    "  track [FILE]                the flown path as CSV under --out, a row a second; no FILE stops\n"
    "  plot FILE ROUTE|gps [LAT LON NM]\n"
    "                              the route file's legs (or the plan the module handed to the\n"
    "                              simulator's GPS) and the flown path as PNG under --out; with\n"
    "                              LAT LON NM only NM miles around that point\n"
    "  profile FILE [PREDICTIONS]  altitude against distance along the route as PNG under --out:\n"
    "                              the module's orb/vnav_profile.txt (or PREDICTIONS) and the\n"
    "                              track being written; a line a restricted row; sets profile.*\n"
    "  expect WHAT OP VALUE        OP: == != < <= > >= contains !contains; exit 1 when it fails\n"
    "  expect file PATH exists|missing\n"
    "  expect file PATH contains|!contains TEXT\n"
    "                              PATH below the simulator folder, or out:PATH below --out\n"
    "  fsuipc on|off | runways ICAO RWY... | answer_after N | version NUMBER\n"
    "  simconnect on|off           before the first panel\n"
    "  clear tokenreads|keyevents|all\n"
    "  fps N                       the frame rate from here on\n"
    "  echo TEXT\n"
    "\n"
    "exit: 0 done, 1 an expectation failed, 2 a bad option, script line or input file.\n"
    "docs/orbsim.md tells every command and value.\n";

int Usage(const std::string& message) {
    std::fprintf(stderr, "orbsim: %s (orbsim --help tells the options)\n", message.c_str());
    return 2;
}

std::string Absolute(const std::string& path) {
    if (!path.empty() && path[0] == '/') return path;
    char cwd[PATH_MAX];
    if (getcwd(cwd, sizeof cwd) == nullptr) return path;
    return std::string(cwd) + "/" + path;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace orbsim;
    std::string sim_dir = "data/sim";
    std::string out_dir = ".";
    std::string script_path;
    HostState& host = g_host;
    LiveOptions live;
    bool serve = false;

    // 1. Options.
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        auto value = [&]() -> const char* { return i + 1 < argc ? argv[++i] : nullptr; };
        if (arg == "--help" || arg == "-h") {
            std::fputs(kHelp, stdout);
            return 0;
        } else if (arg == "--sim") {
            const char* v = value();
            if (v == nullptr) return Usage("--sim needs a folder");
            sim_dir = v;
        } else if (arg == "--out") {
            const char* v = value();
            if (v == nullptr) return Usage("--out needs a folder");
            out_dir = v;
        } else if (arg == "--fps") {
            const char* v = value();
            double fps = 0;
            if (v == nullptr || !ParseNumber(v, fps) || fps < 1 || fps > 1000 || fps != static_cast<int>(fps))
                return Usage("--fps needs a whole number from 1 to 1000");
            host.fps = static_cast<int>(fps);
        } else if (arg == "--generation") {
            const char* v = value();
            if (v == nullptr || (std::strcmp(v, "9") != 0 && std::strcmp(v, "10") != 0))
                return Usage("--generation needs 9 or 10");
            host.generation = std::atoi(v);
        } else if (arg == "--no-fsuipc") {
            host.fsuipc.enabled = false;
        } else if (arg == "--no-simconnect") {
            host.simconnect.enabled = false;
        } else if (arg == "--serve") {
            const char* v = value();
            if (v == nullptr) return Usage("--serve needs a panel file");
            live.panel = v;
            serve = true;
        } else if (arg == "--start") {
            const char* v = value();
            if (v == nullptr) return Usage("--start needs a script");
            live.start_path = v;
        } else if (arg == "--port") {
            const char* v = value();
            double port = 0;
            if (v == nullptr || !ParseNumber(v, port) || port < 0 || port > 65535 || port != static_cast<int>(port))
                return Usage("--port needs a whole number from 0 to 65535");
            live.port = static_cast<int>(port);
        } else if (!arg.empty() && arg[0] == '-') {
            return Usage("unknown option '" + arg + "'");
        } else if (script_path.empty()) {
            script_path = arg;
        } else {
            return Usage("one script at a time; '" + arg + "' is a second");
        }
    }
    if (serve && !script_path.empty()) return Usage("--serve runs a panel, not a script; '" + script_path + "' is one");
    if (!live.start_path.empty() && !serve) return Usage("--start goes with --serve");
    if (serve) {
        if (!live.start_path.empty()) {
            std::ifstream start(live.start_path, std::ios::binary);
            if (!start) {
                std::fprintf(stderr, "%s: cannot read the script\n", live.start_path.c_str());
                return 2;
            }
            live.start_text.assign(std::istreambuf_iterator<char>(start), std::istreambuf_iterator<char>());
        }
        ScriptRun run;
        run.script_path = "--serve";
        run.sim_dir = Absolute(sim_dir);
        run.out_dir = Absolute(out_dir);
        if (access(run.sim_dir.c_str(), R_OK | X_OK) != 0) {
            std::fprintf(stderr, "orbsim: %s: no such simulator folder\n", sim_dir.c_str());
            return 2;
        }
        std::string error;
        ExitCode code = ServeLivePanel(host, run, live, error);
        FinishRun(run);
        if (code != ExitCode::Ok) std::fprintf(stderr, "%s\n", error.c_str());
        StopModule(host);
        return static_cast<int>(code);
    }
    if (script_path.empty()) return Usage("no script given");

    // 2. The script, read whole and checked before anything runs.
    struct stat script_stat{};
    if (stat(script_path.c_str(), &script_stat) == 0 && S_ISDIR(script_stat.st_mode)) {
        std::fprintf(stderr, "orbsim: %s: is a directory\n", script_path.c_str());
        return 2;
    }
    std::ifstream in(script_path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "%s: cannot read the script\n", script_path.c_str());
        return 2;
    }
    in.seekg(0, std::ios::end);
    if (in.tellg() > kMaxScriptBytes) {
        std::fprintf(stderr, "%s: larger than 16 MiB; not a script\n", script_path.c_str());
        return 2;
    }
    in.seekg(0, std::ios::beg);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<ScriptLine> lines;
    std::string error;
    if (!ParseScript(script_path, text, lines, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 2;
    }

    // 3. Folders, made absolute before the simulator's folder becomes the working one.
    ScriptRun run;
    run.script_path = script_path;
    run.sim_dir = Absolute(sim_dir);
    run.out_dir = Absolute(out_dir);
    if (access(run.sim_dir.c_str(), R_OK | X_OK) != 0) {
        std::fprintf(stderr, "orbsim: %s: no such simulator folder\n", sim_dir.c_str());
        return 2;
    }
    if (!MakeFolders(run.out_dir, error)) {
        std::fprintf(stderr, "orbsim: cannot make the output folder %s\n", error.c_str());
        return 2;
    }

    // 4. Run, then shut down as the simulator does.
    ExitCode code = RunScript(host, run, lines, error);
    FinishRun(run);
    if (code != ExitCode::Ok) std::fprintf(stderr, "%s\n", error.c_str());
    StopModule(host);
    return static_cast<int>(code);
}
