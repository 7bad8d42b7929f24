// script.h: orbsim scripts: one command a line, `#` starts a comment.
//
// A script is read whole and checked line by line before anything runs, so
// a misspelt command stops the run at once with "FILE:LINE: message" and
// exit 2. Commands then run in order; a failed `expect` prints what was
// expected and seen with the file and line and ends the run with exit 1.
#pragma once

#include "host_state.h"
#include "profile_plot.h"

#include <cstdio>
#include <string>
#include <vector>

namespace orbsim {

constexpr size_t kMaxScriptLineLength = 4096;
constexpr int kMaxScriptLines = 100000;
constexpr double kMaxRunSeconds = 24 * 3600;   // one `run` of a day at most
constexpr int kMaxFrames = 10000000;

enum class ExitCode : int { Ok = 0, ExpectFailed = 1, BadInput = 2 };

struct ScriptLine {
    int number = 0;                            // 1-based line of the file
    std::vector<std::string> words;            // quotes removed from quoted words
    std::vector<bool> quoted;                  // per word: it was written in quotes
};

// Splits a line into words: blanks part them, a quoted word keeps its blanks
// (backslash escapes a quote or a backslash in it), and a word starting with
// # begins a comment. False on an open quote.
bool SplitScriptLine(const std::string& line, ScriptLine& out, std::string& error);

// The names of all script commands, in the order orbsim checks them.
std::vector<std::string> ScriptCommandNames();

// Reads and checks a whole script; `error` is "FILE:LINE: message".
bool ParseScript(const std::string& path, const std::string& text, std::vector<ScriptLine>& lines, std::string& error);

// Points of the flown path kept for `plot`: once they fill, every second one
// goes and the spacing doubles, so a flight of any length is drawn whole in
// the same memory.
constexpr size_t kFlownLimit = 8192;

struct ScriptRun {
    std::string script_path;                   // for messages
    std::string sim_dir;                       // absolute
    std::string out_dir;                       // absolute
    std::FILE* track = nullptr;                // the flown path, when `track` is on
    std::string track_path;
    double track_next = 0;                     // simulated time of the next row
    std::FILE* out = stdout;                   // where `print` writes
    std::vector<std::pair<double, double>> flown;  // lat, lon every flown_spacing seconds, for `plot`
    double flown_next = 0;                     // simulated time of the next point
    double flown_spacing = 1;                  // seconds between points; doubles as they thin
    bool profile_drawn = false;                // a `profile` has run: its figures are readable
    ProfileFigures profile;                    // what the last `profile` found
};

// Runs checked lines. Returns the exit code; a message for codes other than
// Ok is in `error` ("FILE:LINE: ...").
ExitCode RunScript(HostState& host, ScriptRun& run, const std::vector<ScriptLine>& lines, std::string& error);

// Closes what a run left open (the track file).
void FinishRun(ScriptRun& run);

// A value of `print` and `expect`: a number or a text.
struct ScriptValue {
    bool is_text = false;
    double number = 0;
    std::string text;
};
// Evaluates WHAT of `print`/`expect`. False with a reason for an unknown name.
bool EvaluateWhat(HostState& host, const ScriptRun& run, const std::string& what, ScriptValue& value, std::string& error);

}  // namespace orbsim
