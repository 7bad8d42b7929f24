// aircraft_fields.h: the names under which scripts set and read the aircraft
// (`aircraft KEY=VALUE`, `print aircraft`, `expect aircraft.KEY ...`).
#pragma once

#include "aircraft_model.h"

#include <string>
#include <string_view>
#include <vector>

namespace orbsim {

// Sets one field from its text; false with a reason for an unknown key or a
// value that doesn't read.
bool SetAircraftField(AircraftModel& a, std::string_view key, std::string_view value, std::string& error);

// Reads one field as a number (text fields: false with a reason).
bool GetAircraftField(const AircraftModel& a, std::string_view key, double& value, std::string& error);

// Every field with its present value, "key=value", in a fixed order.
std::vector<std::string> DescribeAircraft(const AircraftModel& a);

// The keys, for help and docs.
std::vector<std::string> AircraftFieldNames();

}  // namespace orbsim
