// sim_values.h: the simulator's answers to token reads and calculator
// strings, taken from the aircraft model in the units the module expects,
// and the names scripts use for them.
#pragma once

#include "host_state.h"

#include <string>
#include <string_view>
#include <vector>

namespace orbsim {

// A token's raw value, as lookup_var hands it to the module. A value the
// script set (and the model has no place for) wins; unknown tokens read 0.
double TokenValue(const HostState& host, int token);
// Sets a token from its raw value: into the model where it has a place,
// else as an override. False for a token that cannot be set (TICK18).
bool SetToken(HostState& host, int token, double raw, std::string& error);
// "0x47", "71" or a name such as "PLANE_LATITUDE"; false if neither.
bool TokenByName(std::string_view text, int& token);
// The name orbsim gives a token, or null.
const char* TokenName(int token);
// All tokens the model answers, for `print` and the docs.
std::vector<int> KnownTokens();

// A calculator string's answer. Only single variable reads are known:
// "(A:NAME, UNIT)" and "(L:NAME, UNIT)".
struct CalculatorAnswer {
    bool ok = false;                // the string is one orbsim knows
    double number = 0;
    bool is_text = false;
    std::string text;
};
CalculatorAnswer EvaluateCalculator(HostState& host, std::string_view code);

// Sets an A: variable, written "NAME, UNIT" or "NAME" (the variable's own unit).
bool SetAircraftVariable(HostState& host, std::string_view name_and_unit, double value, std::string& error);

// Named (local) variables: the id of a name, -1 when absent; create makes it.
int FindNamedVariable(const HostState& host, std::string_view name);
int RegisterNamedVariable(HostState& host, std::string_view name);

}  // namespace orbsim
