// xml_gauge.h: orbsim plays the simulator's XML gauges, as far as a panel
// that drives the module through its named variables and key events needs:
// a gauge's <Update> script runs every frame and each <Area>'s <Click>
// script runs when the area is clicked. The scripts are the simulator's
// reverse-polish expressions, of which orbsim knows a documented subset.
//
// A panel line "gaugeNN=MODULE!NAME, X, Y, W, H" whose MODULE is not orb1
// names the file GAUGES/MODULE/NAME.xml (in any case of letters).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbsim {

struct HostState;

constexpr size_t kMaxXmlGaugeBytes = 1 << 20;   // a gauge file larger than this is refused
constexpr int kMaxXmlGauges = 64;              // XML gauges of one panel
constexpr int kMaxScriptTokens = 4096;         // tokens of one script
constexpr int kMaxScriptStack = 64;            // values on a script's stack
constexpr int kMaxXmlAreas = 64;               // mouse areas of one gauge

enum class XmlOp {
    Number,        // push the value
    ReadL, ReadA,  // push a local or aircraft variable
    WriteL,        // pop into a local variable
    SendK,         // pop (if any) and send the key event
    Add, Sub, Mul, Div, Mod,
    Eq, Ne, Lt, Gt, Le, Ge, And, Or, Not,
    Dup, Pop,
    If,            // pop; on 0 jump to `jump`
    Else,          // jump to `jump` (the end of the els{ } block)
    End,           // a closing brace: nothing to do
};

struct XmlToken {
    XmlOp op = XmlOp::Number;
    double number = 0;             // Number: the value; SendK: the event's number
    std::string name;              // ReadL, WriteL: the variable; ReadA: the "(A:...)" text
    int jump = 0;                  // If, Else: index of the token after the block
    int line = 0;                  // of the gauge file
};

struct XmlScript {
    std::vector<XmlToken> tokens;
};

struct XmlArea {
    int left = 0, top = 0, width = 0, height = 0;  // gauge pixels
    XmlScript click;
};

struct XmlGauge {
    std::string name;              // the panel line's NAME, for `click NAME X Y`
    std::string file;              // the gauge file it came from
    int window = 0;                // index of its panel window
    XmlScript update;
    std::vector<XmlArea> areas;
    long long runs = 0;            // updates run
    long long clicks = 0;          // clicks that hit an area
};

// Parses one gauge file's text; false with `error` "FILE:LINE: message".
bool ParseXmlGauge(std::string_view text, const std::string& file, XmlGauge& gauge, std::string& error);
// Compiles one script (the text of <Update> or <Click>) whose first line is
// `first_line` of the file; false with `error` "FILE:LINE: message".
bool CompileXmlScript(std::string_view text, const std::string& file, int first_line, XmlScript& script,
                      std::string& error);
// Runs a script against the host: variables, aircraft values, key events.
void RunXmlScript(HostState& host, const XmlScript& script);

// The panel's XML gauges: loaded after the module's gauges are built.
bool LoadXmlGauges(HostState& host, const std::string& panel_path, std::string& error);
// Every frame, before the module's gauges: each gauge's <Update>.
void RunXmlGauges(HostState& host);
// A click at gauge pixel X, Y of the named XML gauge; false when no such gauge.
bool ClickXmlGauge(HostState& host, const std::string& name, int x, int y, bool& hit);

}  // namespace orbsim
